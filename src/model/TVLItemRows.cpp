#include "TVLItemRows_p.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QSet>

#include <algorithm>

TVLItemRows::TVLItemRows(TVLProjectModel *model)
    : mModel(model)
{
    // Before anybody else connects; see beginMove().
    QObject::connect(model, &QAbstractItemModel::rowsAboutToBeMoved, model,
                     [this] { mIsRootIndexPlain = false; });
}

// --- Lists of items

QList<TVLProjectNode *> TVLItemRows::itemNodes(const QModelIndexList &indexes) const
{
    QList<TVLProjectNode *> nodes;
    nodes.reserve(indexes.size());
    for (const QModelIndex &index : indexes) {
        TVLProjectNode *node = mModel->projectNode(index);
        if (!node || node == mModel->binderRoot())
            return {};
        nodes.append(node);
    }
    return nodes;
}

QList<TVLProjectNode *> TVLItemRows::withoutDescendants(QList<TVLProjectNode *> nodes)
{
    const QSet<const TVLProjectNode *> all(nodes.begin(), nodes.end());
    nodes.removeIf([&all](const TVLProjectNode *node) {
        for (const TVLProjectNode *ancestor = node->mParent; ancestor;
             ancestor = ancestor->mParent) {
            if (all.contains(ancestor))
                return true;
        }
        return false;
    });
    return nodes;
}

// --- What Qt is told of

QModelIndex TVLItemRows::signalParent(const TVLProjectNode *parent) const
{
    // Qt wants a default index for the root in its row signals.
    return parent == mModel->binderRoot() ? QModelIndex() : mModel->createIndex(parent);
}

// Qt finds the persistent indexes that a change of rows concerns by their parents. At the top level
// it is told of a default index, which the root index isn't, so those are seen to here.

QModelIndexList
TVLItemRows::topLevelPersistents(std::initializer_list<const TVLProjectNode *> parents) const
{
    const TVLProjectNode *root = mModel->binderRoot();
    if (std::find(parents.begin(), parents.end(), root) == parents.end())
        return {};
    QModelIndexList indexes = mModel->persistentIndexList();
    indexes.removeIf([this, root](const QModelIndex &index) {
        return mModel->projectNode(index)->mParent != root;
    });
    return indexes;
}

void TVLItemRows::follow(const QModelIndexList &indexes)
{
    for (const QModelIndex &index : indexes)
        mModel->changePersistentIndex(index, mModel->createIndex(mModel->projectNode(index)));
}

// --- Inserting

bool TVLItemRows::canInsert(int row, int count, const QModelIndex &parent) const
{
    const TVLProjectNode *node = mModel->projectNode(parent);
    return node && row >= -1 && row <= node->mChildren.size() && count >= 1
        && !mModel->isTrashChild(parent);
}

TVLInsertPlace TVLItemRows::insertPlace(const QModelIndex &parent, int row) const
{
    TVLProjectNode *node = mModel->projectNode(parent);
    if (!node)
        node = mModel->binderRoot();
    const int end = int(node->mChildren.size());
    return {node, row < 0 || row > end ? end : row};
}

TVLProjectNode *TVLItemRows::createDefaultNode(TVLProjectNode *parent, int row, const QUuid &uuid)
{
    TVLProjectNode *node = mModel->createProjectNode(parent, row, uuid, -1);
    node->mLabelId = mModel->defaultLabelIdentity();
    node->mStatusId = mModel->defaultStatusIdentity();
    return node;
}

QList<TVLHeldItem> TVLItemRows::insert(const TVLInsertPlace &place, int count,
                                       const std::function<TVLProjectNode *(int)> &make)
{
    mModel->beginInsertRows(signalParent(place.parent), place.row, place.row + count - 1);
    const QModelIndexList topLevel = topLevelPersistents({place.parent});
    QList<TVLHeldItem> items;
    items.reserve(count);
    for (int i = 0; i < count; ++i)
        items.append(TVLHeldItem(mModel, make(i)));
    follow(topLevel);
    mModel->endInsertRows();
    return items;
}

// --- Moving

/**
 * Qt refuses to move an item into itself, and tells afterwards of parents whose own rows the move
 * has shifted. For both it compares parents with those that it is given, so the top level must be a
 * default index to it until it has done so; the first slot to hear of the move ends that.
 */
bool TVLItemRows::beginMove(const TVLProjectNode *source, int row, const TVLProjectNode *target,
                            int targetRow)
{
    mIsRootIndexPlain = true;
    const bool isAllowed =
        mModel->beginMoveRows(signalParent(source), row, row, signalParent(target), targetRow);
    mIsRootIndexPlain = false;
    return isAllowed;
}

bool TVLItemRows::move(TVLProjectNode *node, TVLHeldPlace *place)
{
    TVLProjectNode *source = node->mParent;
    TVLProjectNode *target = place->parent();
    const int row = place->row();
    const int oldRow = node->row();
    const int count = int(target->mChildren.size());
    if (source == target && (oldRow == row || oldRow == row - 1)) {
        *place = TVLHeldPlace(mModel, target, std::min(row + 1, count));
        return false;
    }
    const bool isFromBefore = source == target && oldRow < row;
    const int position = std::clamp(isFromBefore ? row - 1 : row, 0, count);
    if (!beginMove(source, oldRow, target, row)) {
        *place = TVLHeldPlace(mModel, target, position);
        return false;
    }
    const QModelIndexList topLevel = topLevelPersistents({source, target});
    target->insertChild(position, source->takeChild(oldRow));
    follow(topLevel);
    *place = TVLHeldPlace(mModel, target, position + 1);
    mModel->endMoveRows();
    return true;
}

// --- Removing

void TVLItemRows::beginRemove(const TVLProjectNode *parent, int first, int last)
{
    // Who hears of it compares the parents of what it keeps with that of the signal, as selection
    // models do with their current item, and Qt with its persistent indexes.
    mIsRootIndexPlain = true;
    mModel->beginRemoveRows(signalParent(parent), first, last);
    mIsRootIndexPlain = false;
}

void TVLItemRows::endRemove()
{
    mModel->endRemoveRows();
}
