#pragma once

#include <QList>
#include <QPersistentModelIndex>
#include <QUuid>

class TVLProjectModel;
class TVLProjectNode;

/**
 * An item of a model, or its root, held while others may act: at a signal, behind a message box and
 * in any event loop it may be removed, and a node or an index from before is then one of nothing.
 *
 * It goes by the item's uuid, so that many of them cost a change of rows nothing. Persistent
 * indexes do, as each such change looks through all of them.
 */
class TVLHeldItem
{
public:
    /** Holds nothing, like one of a null node. */
    TVLHeldItem() = default;
    TVLHeldItem(const TVLProjectModel *model, const TVLProjectNode *node);

    [[nodiscard]] static QList<TVLHeldItem> listOf(const TVLProjectModel *model,
                                                   const QList<TVLProjectNode *> &nodes);
    /** The indexes of those that are there. */
    [[nodiscard]] static QModelIndexList indexesOf(const QList<TVLHeldItem> &items);

    /** Null once the item is gone. */
    [[nodiscard]] TVLProjectNode *node() const;
    /** A default index once the item is gone. */
    [[nodiscard]] QModelIndex index() const;

private:
    enum class By { Nothing, BeingRoot, Uuid, Index };

    const TVLProjectModel *mModel = nullptr;
    By mBy = By::Nothing;
    QUuid mUuid;
    QPersistentModelIndex mIndex; ///< Of an item that its uuid doesn't lead to.
};

/** A place among the children of an item, held in the same way by those that it lies between. */
class TVLHeldPlace
{
public:
    /** Holds nothing. */
    TVLHeldPlace() = default;
    TVLHeldPlace(const TVLProjectModel *model, const TVLProjectNode *parent, int row);

    /** Null once the parent is gone. */
    [[nodiscard]] TVLProjectNode *parent() const { return mParent.node(); }
    /** The row of the place now, as long as the parent is there. */
    [[nodiscard]] int row() const;
    /** Goes on behind a child; nothing for null and for one that is elsewhere. */
    void moveBehind(const TVLProjectNode *child);

private:
    const TVLProjectModel *mModel = nullptr;
    TVLHeldItem mParent;
    TVLHeldItem mBefore; ///< Nothing at the beginning.
    TVLHeldItem mBehind; ///< Nothing at the end.
    int mRow = 0;
};
