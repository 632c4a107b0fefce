#include "TVLProjectModel.h"

#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"

#include <utility>

bool TVLProjectModel::setFavorite(const QModelIndex &index, bool favorite, bool atEnd)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (node->mIsFavorite == favorite && !mFavorites.isEmpty()
        && node->mId == (atEnd ? mFavorites.constLast() : mFavorites.constFirst()))
        return true;
    node->mIsFavorite = favorite;
    node->updateModified();
    mFavorites.removeAll(node->mId);
    if (favorite)
        mFavorites.insert(atEnd ? mFavorites.size() : 0, node->mId);
    markAndAnnounce(index);
    return true;
}

QModelIndexList TVLProjectModel::favorites() const
{
    QModelIndexList indexes;
    if (mFavorites.isEmpty())
        return indexes;
    // By the ids that the items have, as one without an id of its own isn't found by it.
    QHash<int, const TVLProjectNode *> nodes;
    tvlForEachNode(mRootNode.get(), [&nodes](const TVLProjectNode *node) {
        if (node->mIsFavorite)
            nodes.insert(node->mId, node);
    });
    for (const int id : mFavorites) {
        if (const TVLProjectNode *node = nodes.value(id))
            indexes.append(createIndex(node));
    }
    return indexes;
}

QList<int> TVLProjectModel::favoriteIds() const
{
    QList<int> ids = mFavorites;
    ids.removeIf([this](int id) { return !hasNodeId(id) || !findNode(id)->mIsFavorite; });
    return ids;
}

bool TVLProjectModel::addFavorite(int id)
{
    const QModelIndex item = index(id);
    if (!item.isValid())
        return false;
    if (!mIsReadingBinder)
        return addToFavorites(item, true);
    // Opening a project changes none of its items.
    TVLProjectNode *node = projectNode(item);
    if (std::exchange(node->mIsFavorite, true))
        mFavorites.removeAll(id);
    mFavorites.append(id);
    return true;
}

bool TVLProjectModel::addToFavorites(const QModelIndex &index, bool atEnd)
{
    return setFavorite(index, true, atEnd);
}

bool TVLProjectModel::removeFromFavorites(const QModelIndex &index)
{
    return setFavorite(index, false, false);
}

void TVLProjectModel::setFavorites(const QList<int> &ids)
{
    if (ids == mFavorites)
        return;
    const QSet<int> oldIds(mFavorites.begin(), mFavorites.end());
    const QSet<int> newIds(ids.begin(), ids.end());
    QList<TVLProjectNode *> touched = changeFavorites(oldIds - newIds, false);
    touched += changeFavorites(newIds - oldIds, true);
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, touched);
    mFavorites = ids;
    markProjectAsModified(true);
    announceChanges(items);
}

QList<TVLProjectNode *> TVLProjectModel::changeFavorites(const QSet<int> &ids, bool favorite)
{
    QList<TVLProjectNode *> nodes;
    for (const int id : ids) {
        if (!hasNodeId(id))
            continue;
        TVLProjectNode *node = findNode(id);
        node->mIsFavorite = favorite;
        node->updateModified();
        nodes.append(node);
    }
    return nodes;
}

void TVLProjectModel::clearFavorites()
{
    QList<TVLProjectNode *> touched;
    tvlForEachNode(mRootNode.get(), [&touched](TVLProjectNode *node) {
        if (!std::exchange(node->mIsFavorite, false))
            return;
        node->updateModified();
        touched.append(node);
    });
    mFavorites.clear();
    if (touched.isEmpty())
        return;
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, touched);
    markProjectAsModified(true);
    announceChanges(items);
}
