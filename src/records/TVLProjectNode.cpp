#include "TVLProjectNode.h"

#include "TVLDoors.h"
#include "TVLNearestPosition_p.h"
#include "TVLTextDocument.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr int StepsAhead = 8;

} // namespace

TVLProjectNode::TVLProjectNode(const QPair<int, QUuid> &identity, TVLProjectNode *parent)
    : TVLProjectNode(identity, parent, parent ? int(parent->mChildren.size()) : 0)
{
}

TVLProjectNode::TVLProjectNode(const QPair<int, QUuid> &identity, TVLProjectNode *parent, int row)
    : TVLProjectNode(parent, row, identity)
{
    mCreated = tvlNow();
    mModified = mCreated;
}

TVLProjectNode::TVLProjectNode(TVLProjectNode *parent, int row, const QPair<int, QUuid> &identity)
    : mParent(parent)
    , mRowHint(row)
{
    mId = identity.first;
    mUuid = identity.second;
    if (parent)
        parent->mChildren.insert(row, this);
}

TVLProjectNode *TVLProjectNode::appendUndated(const QPair<int, QUuid> &identity,
                                              TVLProjectNode *parent)
{
    return new TVLProjectNode(parent, int(parent->mChildren.size()), identity);
}

TVLProjectNode::~TVLProjectNode()
{
    // The descendants are lined up first: a tree that nests deeply must not exhaust the stack.
    QList<TVLProjectNode *> descendants = std::exchange(mChildren, {});
    for (qsizetype i = 0; i < descendants.size(); ++i) {
        const QList<TVLProjectNode *> children = std::exchange(descendants.at(i)->mChildren, {});
        descendants.append(children);
    }
    qDeleteAll(descendants.crbegin(), descendants.crend());

    for (TVLTextDocument *document : {mTextDocument, mSynopsisDocument, mNotesDocument}) {
        if (document)
            document->detach();
    }
}

QSize TVLProjectNode::defaultIndexCardSize()
{
    return QSize(640, 480);
}

void TVLProjectNode::setIndexCardPixmap(const QPixmap &pixmap)
{
    const QSize limit = defaultIndexCardSize();
    const bool fits =
        pixmap.isNull() || (pixmap.width() <= limit.width() && pixmap.height() <= limit.height());
    mIndexCardPixmap = std::make_unique<QPixmap>(
        fits ? pixmap : pixmap.scaled(limit, Qt::KeepAspectRatio, Qt::FastTransformation));
}

QPixmap TVLProjectNode::indexCardPixmap() const
{
    return mIndexCardPixmap ? *mIndexCardPixmap : QPixmap();
}

void TVLProjectNode::clearIndexCardPixmap()
{
    mIndexCardPixmap.reset();
}

int TVLProjectNode::childLevel(const TVLProjectNode *node)
{
    int level = 0;
    for (; node && node->mParent; node = node->mParent)
        ++level;
    return level;
}

QList<TVLProjectNode *> TVLProjectNode::ancestors(const TVLProjectNode *node)
{
    QList<TVLProjectNode *> ancestors;
    for (; node && node->mParent; node = node->mParent)
        ancestors.append(node->mParent);
    return ancestors;
}

QList<int> TVLProjectNode::parentRowPositions() const
{
    QList<int> rows;
    for (const TVLProjectNode *node = this; node->mParent; node = node->mParent)
        rows.append(node->row());
    std::reverse(rows.begin(), rows.end());
    return rows;
}

TVLProjectNode *TVLProjectNode::findNodeViaRowPositions(const QList<int> &rows)
{
    if (rows.isEmpty())
        return nullptr;
    TVLProjectNode *node = this;
    for (const int row : rows) {
        if (row < 0 || row >= node->mChildren.size())
            return nullptr;
        node = node->mChildren.at(row);
    }
    return node;
}

QList<int> TVLProjectNode::childIDs() const
{
    QList<int> ids;
    ids.reserve(mChildren.size());
    for (const TVLProjectNode *child : mChildren)
        ids.append(child->mId);
    return ids;
}

int TVLProjectNode::row() const
{
    if (!mParent)
        return -1;
    const QList<TVLProjectNode *> &siblings = mParent->mChildren;
    const int count = int(siblings.size());
    if (mRowHint < count && siblings.at(mRowHint) == this)
        return mRowHint;
    // A row shifts by as much as was inserted and removed before it, which mostly isn't much.
    const int row = tvlNearestPosition(count, mRowHint,
                                       [&](int position) { return siblings.at(position) == this; });
    if (row < 0)
        return -1;
    // Those around it have shifted likewise, and are asked next as a rule.
    const int shift = std::abs(row - mRowHint);
    const int end = std::min(row + shift, count - 1);
    for (int near = std::max(row - shift, 0); near <= end; ++near)
        siblings.at(near)->mRowHint = near;
    return row;
}

std::unique_ptr<TVLProjectNode> TVLProjectNode::takeChild(int row)
{
    std::unique_ptr<TVLProjectNode> child(mChildren.takeAt(row));
    child->mParent = nullptr;
    return child;
}

void TVLProjectNode::insertChild(int row, std::unique_ptr<TVLProjectNode> child)
{
    child->mParent = this;
    child->mRowHint = row;
    mChildren.insert(row, child.release());
}

TVLProjectNode *TVLProjectNode::nextSibling() const
{
    const int ownRow = row();
    if (ownRow < 0)
        return nullptr;
    const QList<TVLProjectNode *> &siblings = mParent->mChildren;
    // Each step of a walk has to wait for the node that it comes to. Calling up those further on
    // makes a walk through many siblings several times as fast.
    if (ownRow + StepsAhead < siblings.size()) {
        const TVLProjectNode *ahead = siblings.at(ownRow + StepsAhead);
        __builtin_prefetch(&ahead->mChildren);
        __builtin_prefetch(&ahead->mRowHint);
    }
    return ownRow + 1 < siblings.size() ? siblings.at(ownRow + 1) : nullptr;
}

TVLProjectNode *TVLProjectNode::nextInPreOrder(const TVLProjectNode *top) const
{
    if (!mChildren.isEmpty())
        return mChildren.constFirst();
    for (const TVLProjectNode *node = this; node && node != top; node = node->mParent) {
        if (TVLProjectNode *sibling = node->nextSibling())
            return sibling;
    }
    return nullptr;
}

TVLProjectNode *TVLProjectNode::lastInPreOrder()
{
    TVLProjectNode *node = this;
    while (!node->mChildren.isEmpty())
        node = node->mChildren.constLast();
    return node;
}
