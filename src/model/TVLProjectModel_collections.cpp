#include "TVLProjectModel_p.h"

#include "TVLCollectionList_p.h"

#include <QCoreApplication>

namespace {

// The titles that records of collections know their own sync results by.
QString updatedDocumentsTitle()
{
    return QCoreApplication::translate("TVLCollectionMetaData", "Updated Documents");
}

QString syncedDocumentsTitle()
{
    return QCoreApplication::translate("TVLCollectionMetaData", "Synced Documents");
}

} // namespace

// --- The list; see TVLCollectionList

void TVLProjectModel::addDefaultCollections()
{
    d->mCollectionList->addDefaults();
}

void TVLProjectModel::setCollections(const QList<TVLCollectionMetaData> &collections)
{
    d->mCollectionList->setCollections(collections);
}

void TVLProjectModel::insertCollection(int position, const TVLCollectionMetaData &collection)
{
    d->mCollectionList->insert(position, collection);
}

QString TVLProjectModel::insertCollection(int position, const QModelIndexList &indexes,
                                          const QString &title, const QColor &color)
{
    return d->mCollectionList->insertItems(position, indexes, title, color);
}

void TVLProjectModel::removeCollection(int position)
{
    d->mCollectionList->remove(position);
}

void TVLProjectModel::moveCollection(int from, int to)
{
    d->mCollectionList->move(from, to);
}

// --- Looking up

int TVLProjectModel::collectionPos(const QString &identity) const
{
    return d->mCollectionList->pos(identity);
}

bool TVLProjectModel::hasCollectionWithId(const QString &identity) const
{
    return collectionPos(identity) >= 0;
}

TVLCollectionMetaData TVLProjectModel::findCollectionByPos(int position) const
{
    return d->mCollectionList->findByPos(position);
}

TVLCollectionMetaData TVLProjectModel::findCollectionById(const QString &identity) const
{
    return findCollectionByPos(collectionPos(identity));
}

TVLCollectionMetaData TVLProjectModel::findCollectionByTitle(const QString &title) const
{
    return d->mCollectionList->findByTitle(title);
}

TVLCollectionMetaData TVLProjectModel::binderCollection() const
{
    return d->mCollectionList->ofType(TVL::BinderCollection);
}

TVLCollectionMetaData TVLProjectModel::recentSearch() const
{
    return d->mCollectionList->ofType(TVL::RecentSearchCollection);
}

// --- Changing one

void TVLProjectModel::setCollectionByPos(int position, const TVLCollectionMetaData &collection)
{
    d->mCollectionList->setByPos(position, collection);
}

void TVLProjectModel::setCollectionById(const QString &identity,
                                        const TVLCollectionMetaData &collection)
{
    setCollectionByPos(collectionPos(identity), collection);
}

void TVLProjectModel::setCollectionColor(int position, const QColor &color)
{
    d->mCollectionList->setColor(position, color);
}

void TVLProjectModel::setCollectionColor(const QString &identity, const QColor &color)
{
    setCollectionColor(collectionPos(identity), color);
}

void TVLProjectModel::setRecentSearch(const TVLCollectionMetaData &search)
{
    d->mCollectionList->setRecentSearch(search);
}

void TVLProjectModel::addToCollection(int position, const QModelIndexList &indexes)
{
    d->mCollectionList->addItems(position, indexes);
}

void TVLProjectModel::addToCollection(const QString &identity, const QModelIndexList &indexes)
{
    addToCollection(collectionPos(identity), indexes);
}

void TVLProjectModel::removeFromCollection(int position, const QModelIndexList &indexes)
{
    d->mCollectionList->removeItems(position, indexes);
}

void TVLProjectModel::removeFromCollection(const QString &identity, const QModelIndexList &indexes)
{
    removeFromCollection(collectionPos(identity), indexes);
}

void TVLProjectModel::removeNodeIdsFromCollections(const QList<int> &ids)
{
    d->mCollectionList->removeIds(ids);
}

// --- What a collection shows

void TVLProjectModel::updateSearchCollections()
{
    d->mCollectionList->announceSearches(TVL::AllScope);
}

QModelIndexList TVLProjectModel::collectionIndexes(const TVLCollectionMetaData &collection,
                                                   const QModelIndexList &context) const
{
    return d->mCollectionList->indexes(collection, context);
}

// --- For external folder sync

TVLCollectionMetaData TVLProjectModel::ensureCollection(const QString &title, const QColor &color)
{
    const TVLCollectionMetaData collection = findCollectionByTitle(title);
    if (collection.mType != TVL::NoCollection && !collection.mId.isEmpty())
        return collection;
    return findCollectionById(insertCollection(int(collections().size()), {}, title, color));
}

TVLCollectionMetaData TVLProjectModel::updatedDocumentsCollection()
{
    return ensureCollection(updatedDocumentsTitle(), QColor());
}

bool TVLProjectModel::updatedDocumentsCollectionExists() const
{
    return findCollectionByTitle(updatedDocumentsTitle()).mType != TVL::NoCollection;
}

void TVLProjectModel::setCollectionUpdatedDocuments(const QList<int> &ids)
{
    TVLCollectionMetaData collection = updatedDocumentsCollection();
    if (collection.mType == TVL::NoCollection || collection.mIds == ids)
        return;
    collection.mIds = ids;
    setCollectionById(collection.mId, collection);
}

TVLCollectionMetaData TVLProjectModel::syncedDocumentsCollection()
{
    return ensureCollection(syncedDocumentsTitle(), QColor());
}

bool TVLProjectModel::syncedDocumentsCollectionExists() const
{
    return findCollectionByTitle(syncedDocumentsTitle()).mType != TVL::NoCollection;
}

QList<TVLCollectionMetaData> TVLProjectModel::collectionsForExternalFolderSync() const
{
    QList<TVLCollectionMetaData> collections = d->mCollectionList->collections();
    collections.removeIf([](const TVLCollectionMetaData &collection) {
        return !collection.isSuitableExternalFolderSync();
    });
    return collections;
}

bool TVLProjectModel::hasCollectionsForExternalFolderSync() const
{
    return !collectionsForExternalFolderSync().isEmpty();
}

// --- Favorites

bool TVLProjectModel::setFavorite(const QModelIndex &index, bool favorite, bool atEnd)
{
    return d->mCollectionList->setFavorite(index, favorite, atEnd);
}

QModelIndexList TVLProjectModel::favorites() const
{
    return d->mCollectionList->favorites();
}

QList<int> TVLProjectModel::favoriteIds() const
{
    return d->mCollectionList->favoriteIds();
}

bool TVLProjectModel::addFavorite(int id)
{
    const QModelIndex item = index(id);
    return item.isValid() && addToFavorites(item, true);
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
    d->mCollectionList->setFavorites(ids);
}

void TVLProjectModel::clearFavorites()
{
    d->mCollectionList->clearFavorites();
}
