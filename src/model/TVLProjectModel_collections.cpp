#include "TVLProjectModel.h"

#include "TVLProjectNode.h"

#include <utility>

namespace {

TVLCollectionMetaData newCollection(TVL::CollectionType type, const QString &title)
{
    TVLCollectionMetaData collection;
    collection.mId = TVLCollectionMetaData::generateIdentity();
    collection.mType = type;
    collection.mTitle = title;
    collection.mColor = TVLCollectionMetaData::randomColor();
    return collection;
}

} // namespace

void TVLProjectModel::addDefaultCollections()
{
    if (!mCollections.isEmpty())
        return;
    mCollections.append(newCollection(TVL::BinderCollection, tr("Binder", "Binder collection")));
    mCollections.append(newCollection(TVL::RecentSearchCollection,
                                      tr("Search Results", "Search results collection")));
}

void TVLProjectModel::setCollections(const QList<TVLCollectionMetaData> &collections)
{
    mCollections = collections;
    bool hasBinder = false;
    bool hasRecentSearch = false;
    for (TVLCollectionMetaData &collection : mCollections) {
        hasBinder = hasBinder || collection.mType == TVL::BinderCollection;
        hasRecentSearch = hasRecentSearch || collection.mType == TVL::RecentSearchCollection;
        if (collection.mType == TVL::ArbitraryCollection)
            collection.mIds.removeIf([this](int id) { return !index(id).isValid(); });
    }
    if (!hasBinder)
        mCollections.append(newCollection(TVL::BinderCollection, QString()));
    if (!hasRecentSearch)
        mCollections.append(newCollection(TVL::RecentSearchCollection, QString()));
}

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
    markProjectAsModified(true);
    announceChange(index);
    return true;
}

QModelIndexList TVLProjectModel::favorites() const
{
    QModelIndexList indexes;
    const QList<int> ids = favoriteIds();
    indexes.reserve(ids.size());
    for (const int id : ids)
        indexes.append(index(id));
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
