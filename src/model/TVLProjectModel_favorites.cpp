#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"

#include <utility>

bool TVLProjectModel::setFavorite(const QModelIndex &index, bool favorite, bool atEnd)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (node->mIsFavorite == favorite && !d->mFavorites.isEmpty()
        && node->mId == (atEnd ? d->mFavorites.constLast() : d->mFavorites.constFirst()))
        return true;
    node->mIsFavorite = favorite;
    node->updateModified();
    d->mFavorites.removeAll(node->mId);
    if (favorite)
        d->mFavorites.insert(atEnd ? d->mFavorites.size() : 0, node->mId);
    tvlMarkAndAnnounce(this, index);
    return true;
}

QModelIndexList TVLProjectModel::favorites() const
{
    QModelIndexList indexes;
    if (d->mFavorites.isEmpty())
        return indexes;
    // By the ids that the items have, as one without an id of its own isn't found by it.
    QHash<int, const TVLProjectNode *> nodes;
    tvlForEachNode(d->mRootNode.get(), [&nodes](const TVLProjectNode *node) {
        if (node->mIsFavorite)
            nodes.insert(node->mId, node);
    });
    for (const int id : d->mFavorites) {
        if (const TVLProjectNode *node = nodes.value(id))
            indexes.append(createIndex(node));
    }
    return indexes;
}

QList<int> TVLProjectModel::favoriteIds() const
{
    QList<int> ids = d->mFavorites;
    ids.removeIf([this](int id) { return !hasNodeId(id) || !findNode(id)->mIsFavorite; });
    return ids;
}

bool TVLProjectModel::addFavorite(int id)
{
    const QModelIndex item = index(id);
    if (!item.isValid())
        return false;
    if (!d->mIsReadingBinder)
        return addToFavorites(item, true);
    // Opening a project changes none of its items.
    TVLProjectNode *node = projectNode(item);
    if (std::exchange(node->mIsFavorite, true))
        d->mFavorites.removeAll(id);
    d->mFavorites.append(id);
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
    if (ids == d->mFavorites)
        return;
    const QSet<int> oldIds(d->mFavorites.begin(), d->mFavorites.end());
    const QSet<int> newIds(ids.begin(), ids.end());
    QList<TVLProjectNode *> touched = d->changeFavorites(oldIds - newIds, false);
    touched += d->changeFavorites(newIds - oldIds, true);
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, touched);
    d->mFavorites = ids;
    markProjectAsModified(true);
    tvlAnnounceChanges(this, items);
}

QList<TVLProjectNode *> TVLProjectModelPrivate::changeFavorites(const QSet<int> &ids, bool favorite)
{
    QList<TVLProjectNode *> nodes;
    for (const int id : ids) {
        if (!q->hasNodeId(id))
            continue;
        TVLProjectNode *node = q->findNode(id);
        node->mIsFavorite = favorite;
        node->updateModified();
        nodes.append(node);
    }
    return nodes;
}

void TVLProjectModel::clearFavorites()
{
    QList<TVLProjectNode *> touched;
    tvlForEachNode(d->mRootNode.get(), [&touched](TVLProjectNode *node) {
        if (!std::exchange(node->mIsFavorite, false))
            return;
        node->updateModified();
        touched.append(node);
    });
    d->mFavorites.clear();
    if (touched.isEmpty())
        return;
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, touched);
    markProjectAsModified(true);
    tvlAnnounceChanges(this, items);
}
