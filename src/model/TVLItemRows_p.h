#pragma once

#include "TVLHeldItem_p.h"

#include <functional>
#include <initializer_list>

class TVLProjectModel;

/** Where new items go: a row that is there, of a node that is. */
struct TVLInsertPlace
{
    TVLProjectNode *parent;
    int row;
};

/**
 * Changes of a model's rows, as Qt wants to be told of them.
 *
 * Each goes through here, because the root has an index of its own and Qt compares with a default
 * one: in its signals, in the persistent indexes that a change concerns, and in its checks of
 * moves.
 */
class TVLItemRows
{
public:
    /** The model is to live as long, and to ask isRootIndexPlain() in its parent(). */
    explicit TVLItemRows(TVLProjectModel *model);
    Q_DISABLE_COPY_MOVE(TVLItemRows)

    /** Whether parent() has to give a default index in place of rootIndex(). */
    [[nodiscard]] bool isRootIndexPlain() const { return mIsRootIndexPlain; }

    /** The nodes of a list of items; empty if one isn't an item of this model. */
    [[nodiscard]] QList<TVLProjectNode *> itemNodes(const QModelIndexList &indexes) const;
    /** Without nodes that lie in another one of the list, and so are moved or removed with it. */
    [[nodiscard]] static QList<TVLProjectNode *> withoutDescendants(QList<TVLProjectNode *> nodes);

    [[nodiscard]] bool canInsert(int row, int count, const QModelIndex &parent) const;
    /** A row of -1 and one that isn't there are the end. */
    [[nodiscard]] TVLInsertPlace insertPlace(const QModelIndex &parent, int row) const;
    /** A node with the project's default label and status item; emits nothing. */
    TVLProjectNode *createDefaultNode(TVLProjectNode *parent, int row, const QUuid &uuid);
    /**
     * Inserts items side by side. Views see them for the first time at the end of it, so @p make,
     * which is given the number of each, hands them over as they will stay, and emits nothing.
     */
    QList<TVLHeldItem> insert(const TVLInsertPlace &place, int count,
                              const std::function<TVLProjectNode *(int)> &make);
    /** Moves a node to a place, which is then behind it; false if the node stays where it is. */
    bool move(TVLProjectNode *node, TVLHeldPlace *place);
    /** Come before and behind the removal of children from a node. */
    void beginRemove(const TVLProjectNode *parent, int first, int last);
    void endRemove();

private:
    [[nodiscard]] QModelIndex signalParent(const TVLProjectNode *parent) const;
    /** Persistent indexes of top-level items, if the root is one of the parents. */
    [[nodiscard]] QModelIndexList
    topLevelPersistents(std::initializer_list<const TVLProjectNode *> parents) const;
    void follow(const QModelIndexList &indexes);
    bool beginMove(const TVLProjectNode *source, int row, const TVLProjectNode *target,
                   int targetRow);

    TVLProjectModel *mModel;
    bool mIsRootIndexPlain = false;
};
