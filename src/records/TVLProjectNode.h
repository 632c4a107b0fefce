#pragma once

#include "TVLProjectNodeProperties.h"

#include <QPixmap>
#include <QSize>

#include <memory>

class TVLTextDocument;

/**
 * One item of the binder tree: its properties, its place in the tree, and the documents that are
 * in memory for it right now.
 *
 * A node owns its children and its index card image. It does not own its documents: destroying
 * the node cuts them loose (TVLTextDocument::detach()) and leaves them alive. Destroying a node
 * that is still in its parent's list leaves a dangling entry there; taking it out first is the
 * caller's work.
 */
class TVL_EXPORT TVLProjectNode : public TVLProjectNodeProperties
{
public:
    /** Makes a node and, given a parent, appends it there. Created and modified are now. */
    TVLProjectNode(const QPair<int, QUuid> &identity, TVLProjectNode *parent);

    /** Makes a node and inserts it at @p row of the parent. Created and modified are now. */
    TVLProjectNode(const QPair<int, QUuid> &identity, TVLProjectNode *parent, int row);

    /**
     * Makes a node without dates as last child of @p parent, for a caller that knows them, such as
     * the reader of a binder: asking for the local time costs more than all else about a node.
     */
    [[nodiscard]] static TVLProjectNode *appendUndated(const QPair<int, QUuid> &identity,
                                                       TVLProjectNode *parent);

    ~TVLProjectNode();
    Q_DISABLE_COPY_MOVE(TVLProjectNode)

    QList<TVLProjectNode *> mChildren; ///< In binder order; owned.
    TVLProjectNode *mParent = nullptr; ///< Null for the root; not owned.
    TVLTextDocument *mTextDocument = nullptr; ///< Loaded main text, or null; not owned.
    TVLTextDocument *mSynopsisDocument = nullptr; ///< Loaded synopsis, or null; not owned.
    TVLTextDocument *mNotesDocument = nullptr; ///< Loaded notes, or null; not owned.

    /** The size that index card images are scaled into: 640 by 480. */
    [[nodiscard]] static QSize defaultIndexCardSize();

    /** Caches an image; one that is larger than defaultIndexCardSize() is scaled down into it. */
    void setIndexCardPixmap(const QPixmap &pixmap);

    /** The cached image; a null pixmap when none is cached. */
    [[nodiscard]] QPixmap indexCardPixmap() const;

    /** Whether an image is cached, even a null one. */
    [[nodiscard]] bool hasIndexCardPixmap() const { return mIndexCardPixmap != nullptr; }
    void clearIndexCardPixmap();

    /** Number of ancestors; 0 for null and for the root. */
    [[nodiscard]] static int childLevel(const TVLProjectNode *node);

    /** The ancestors, parent first and root last; empty for null and for the root. */
    [[nodiscard]] static QList<TVLProjectNode *> ancestors(const TVLProjectNode *node);

    /** The row of each link from the root down to this node, topmost first; empty for the root. */
    [[nodiscard]] QList<int> parentRowPositions() const;

    /** Walks down from this node by rows; null for an empty list and for a row that isn't there. */
    [[nodiscard]] TVLProjectNode *findNodeViaRowPositions(const QList<int> &rows);

    /** The ids of the direct children, in order. */
    [[nodiscard]] QList<int> childIDs() const;

    /**
     * The position in the parent's list, -1 without a parent. The answer is kept as a hint that is
     * verified on each call: a node whose row has shifted is looked for from there outwards, and
     * asking all siblings in turn costs a few passes over them at most.
     */
    [[nodiscard]] int row() const;

    /** Takes a child out of the list, into the hands of the caller. */
    [[nodiscard]] std::unique_ptr<TVLProjectNode> takeChild(int row);
    /** Takes a node without parent into the list, at @p row. */
    void insertChild(int row, std::unique_ptr<TVLProjectNode> child);

    /**
     * The node that follows in pre-order within the subtree of @p top, which is this node or an
     * ancestor; null behind the last. Starting with @p top itself visits all below it.
     */
    [[nodiscard]] TVLProjectNode *nextInPreOrder(const TVLProjectNode *top) const;

    /** The last node of this subtree in pre-order; the node itself when it has no children. */
    [[nodiscard]] TVLProjectNode *lastInPreOrder();

private:
    /** Takes the place in the parent and nothing else. */
    TVLProjectNode(TVLProjectNode *parent, int row, const QPair<int, QUuid> &identity);
    [[nodiscard]] TVLProjectNode *nextSibling() const;

    std::unique_ptr<QPixmap> mIndexCardPixmap;
    mutable int mRowHint = 0;
};

/** Calls @p visit for every node below @p top in pre-order; the tree must keep its shape meanwhile.
 */
template <typename Visit>
void tvlForEachNode(const TVLProjectNode *top, Visit &&visit)
{
    for (TVLProjectNode *node = top->nextInPreOrder(top); node; node = node->nextInPreOrder(top))
        visit(node);
}
