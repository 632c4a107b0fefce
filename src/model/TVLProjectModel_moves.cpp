#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLCollectionList_p.h"
#include "TVLFilesLeft_p.h"
#include "TVLHeldItem_p.h"
#include "TVLItemRows_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLModel.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"

#include <algorithm>
#include <utility>

namespace {

/** The node and all below it that have children, in post-order. */
QList<TVLProjectNode *> parentsDeepestFirst(TVLProjectNode *top)
{
    QList<TVLProjectNode *> pending = {top};
    QList<TVLProjectNode *> parents;
    while (!pending.isEmpty()) {
        TVLProjectNode *node = pending.takeLast();
        if (node->mChildren.isEmpty())
            continue;
        parents.append(node);
        pending.append(node->mChildren);
    }
    std::reverse(parents.begin(), parents.end());
    return parents;
}

/** Whether a node is another one or lies below it. */
bool isInSubtree(const TVLProjectNode *node, const TVLProjectNode *top)
{
    while (node && node != top)
        node = node->mParent;
    return node != nullptr;
}

} // namespace

// --- Moving

bool TVLProjectModelPrivate::isMoveRefused(const TVLProjectNode *node,
                                           const TVLProjectNode *target) const
{
    if (node->mNodeType < TVL::Folder)
        return target != mRootNode.get();
    if (!q->isDraftChild(q->createIndex(target)))
        return false;
    return !node->canHaveText() || containsNonTextChildren(node);
}

bool TVLProjectModel::moveToFolder(const QModelIndex &folder, const QModelIndexList &indexes,
                                   int row)
{
    if (indexes.isEmpty())
        return true;
    TVLProjectNode *target = projectNode(folder);
    const QList<TVLProjectNode *> nodes =
        TVLItemRows::withoutDescendants(d->mRows->itemNodes(indexes));
    return target && !nodes.isEmpty() && moveToFolder(target, row, nodes);
}

bool TVLProjectModel::moveToFolder(TVLProjectNode *target, int row,
                                   const QList<TVLProjectNode *> &nodes)
{
    if (std::any_of(nodes.begin(), nodes.end(), [this, target](const TVLProjectNode *node) {
            return d->isMoveRefused(node, target);
        }))
        return false;
    const int count = int(target->mChildren.size());
    TVLHeldPlace place(this, target, row < 0 || row > count ? count : row);
    bool isMoved = false;
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, nodes);
    for (const TVLHeldItem &item : items) {
        TVLProjectNode *node = item.node();
        if (node && place.parent())
            isMoved = d->mRows->move(node, &place) || isMoved;
    }
    if (isMoved)
        markProjectAsModified(true);
    return true;
}

bool TVLProjectModel::moveToTrash(const QModelIndexList &indexes)
{
    const QModelIndex trash = trashFolder();
    const auto isInTrash = [this](const QModelIndex &index) {
        return rootParentType(index) == TVL::TrashFolder;
    };
    if (!trash.isValid() || std::any_of(indexes.begin(), indexes.end(), isInTrash))
        return false;
    if (!moveToFolder(trash, indexes, -1))
        return false;
    d->mCollectionList->announceSearches(TVL::ExcludeTrashScope);
    return true;
}

// --- Removing

void TVLProjectModel::removeNodeIdsFromDefaultTemplateId(const QList<int> &ids)
{
    const QSet<int> removed(ids.begin(), ids.end());
    tvlForEachNode(d->mRootNode.get(), [&removed](TVLProjectNode *node) {
        if (removed.contains(node->mDefaultChildTemplateId))
            node->mDefaultChildTemplateId = -1;
    });
}

void TVLProjectModelPrivate::removeNodeIdsFromDependentStructures(QList<int> ids)
{
    // Items of newer formats have no ids, and -1 stands for "none" wherever an id does.
    ids.removeAll(-1);
    if (ids.isEmpty())
        return;
    q->removeNodeIdsFromCollections(ids);
    q->removeNodeIdsFromDefaultTemplateId(ids);
    mCollectionList->removeFavorites(ids);
}

void TVLProjectModel::removeIndexesFromDependentStructures(const QModelIndexList &indexes)
{
    d->removeNodeIdsFromDependentStructures(nodeIdentityList(indexes));
}

void TVLProjectModelPrivate::forgetNode(TVLProjectNode *node)
{
    mDocuments->unload(node);
    mDocuments->forgetChange(node);
    if (mIdMap.value(node->mId) == node->mUuid)
        mIdMap.remove(node->mId);
    if (mUuidMap.value(node->mUuid) == node)
        mUuidMap.remove(node->mUuid);
    mSearchFeed->forget(node);
}

void TVLProjectModelPrivate::forgetNodeWithoutFiles(TVLProjectNode *node)
{
    forgetNode(node);
    mFilesLeft->add(mPath, *node);
}

bool TVLProjectModel::removeFilesForNode(TVLProjectNode *node)
{
    return node && d->removeFilesForNode(node, TVLNumberedFiles(d->mPath));
}

bool TVLProjectModelPrivate::removeFilesForNode(TVLProjectNode *node, const TVLNumberedFiles &files)
{
    forgetNode(node);
    mSearchFeed->noteReplacing(node);
    const bool result = TVLProjectFolderFormat::removeProjectFiles(mPath, node->mId, files);
    mFilesLeft->remove(node->mId, result);
    mSearchFeed->forgetChecksums(node);
    return result;
}

void TVLProjectModel::removeChildrenForIndex(const QModelIndex &index)
{
    TVLProjectNode *top = projectNode(index);
    // Not the whole binder on account of an index that just isn't valid.
    if (!top || top == d->mRootNode.get() || top->mChildren.isEmpty())
        return;
    const TVLNumberedFiles files(d->mPath);
    const TVLHeldItem heldTop(this, top);
    const QList<TVLHeldItem> parents = TVLHeldItem::listOf(this, parentsDeepestFirst(top));
    for (const TVLHeldItem &parent : parents) {
        TVLProjectNode *node = parent.node();
        // Who hears of one removal may take an item to safety from the next.
        if (node && isInSubtree(node, heldTop.node()))
            d->removeChildren(node, files);
    }
}

/** There is nothing below the children, unless somebody has put it there on the way. */
void TVLProjectModelPrivate::removeChildren(TVLProjectNode *parent, const TVLNumberedFiles &files)
{
    if (parent->mChildren.isEmpty())
        return;
    mRows->beginRemove(parent, 0, int(parent->mChildren.size()) - 1);
    tvlForEachNode(parent, [&](TVLProjectNode *node) { (void)removeFilesForNode(node, files); });
    qDeleteAll(std::exchange(parent->mChildren, {}));
    mRows->endRemove();
}

void TVLProjectModelPrivate::removeRow(TVLProjectNode *node)
{
    // Those below go with it; their texts stay on disk, the latest words with them.
    QList<int> ids;
    tvlForEachNode(node, [this, &ids](TVLProjectNode *descendant) {
        forgetNodeWithoutFiles(descendant);
        ids.append(descendant->mId);
    });
    removeNodeIdsFromDependentStructures(ids);
    const std::unique_ptr<TVLProjectNode> removed = node->mParent->takeChild(node->row());
}

void TVLProjectModel::removeIndexFromModel(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    if (!node || node == d->mRootNode.get())
        return;
    d->mRows->beginRemove(node->mParent, node->row(), node->row());
    (void)removeFilesForNode(node);
    d->removeRow(node);
    d->mRows->endRemove();
}

bool TVLProjectModel::removeIndex(const QModelIndex &index)
{
    if (!index.isValid() || !projectNode(index))
        return false;
    removeIndexesFromDependentStructures({index});
    removeIndexFromModel(index);
    markProjectAsModified(true);
    save(false);
    return true;
}

bool TVLProjectModel::emptyTrash()
{
    const QPersistentModelIndex trash = trashFolder();
    if (!trash.isValid() || !hasChildren(trash))
        return true;
    TVLProjectNode *node = projectNode(trash);
    node->mSelectedSubdocumentIds.clear();
    node->mFreeformPositions.clear();
    removeIndexesFromDependentStructures(TVLModel::childrenAndSubChildren(trash));
    removeChildrenForIndex(trash);
    markProjectAsModified(true);
    save(false);
    tvlAnnounceChange(this, trash);
    return true;
}
