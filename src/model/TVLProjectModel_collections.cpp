#include "TVLProjectModel_p.h"

#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"

#include <QCoreApplication>
#include <QScopedValueRollback>
#include <QSet>

#include <algorithm>
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

/** What a look-up that finds nothing gives. */
TVLCollectionMetaData noCollection()
{
    TVLCollectionMetaData collection;
    collection.mType = TVL::NoCollection;
    return collection;
}

/** Whether every project has one, which comes with it and goes with it. */
bool isBuiltIn(const TVLCollectionMetaData &collection)
{
    return collection.mType == TVL::BinderCollection
        || collection.mType == TVL::RecentSearchCollection;
}

bool isSearch(const TVLCollectionMetaData &collection)
{
    return collection.mType == TVL::RecentSearchCollection
        || collection.mType == TVL::SavedSearchCollection;
}

template <typename Predicate>
int firstPosition(const QList<TVLCollectionMetaData> &collections, Predicate predicate)
{
    const auto found = std::find_if(collections.begin(), collections.end(), predicate);
    return found == collections.end() ? -1 : int(found - collections.begin());
}

int firstOfType(const QList<TVLCollectionMetaData> &collections, TVL::CollectionType type)
{
    return firstPosition(collections, [type](const TVLCollectionMetaData &collection) {
        return collection.mType == type;
    });
}

// The titles that records of collections know their own sync results by.
QString updatedDocumentsTitle()
{
    return QCoreApplication::translate("TVLCollectionMetaData", "Updated Documents");
}

QString syncedDocumentsTitle()
{
    return QCoreApplication::translate("TVLCollectionMetaData", "Synced Documents");
}

bool isCompileMatch(int filter, bool isIncluded)
{
    switch (filter) {
    case TVL::IncludedInCompile:
        return isIncluded;
    case TVL::ExcludedFromCompile:
        return !isIncluded;
    default:
        return true;
    }
}

bool isInOrBelow(const TVLProjectNode *node, const QSet<const TVLProjectNode *> &tops)
{
    while (node && !tops.contains(node))
        node = node->mParent;
    return node != nullptr;
}

} // namespace

// --- The list

QString TVLProjectModelPrivate::trSearchResultsTitle()
{
    return TVLProjectModel::tr("Search Results", "Search results collection");
}

void TVLProjectModel::addDefaultCollections()
{
    if (!d->mCollections.isEmpty())
        return;
    d->mCollections.append(newCollection(TVL::BinderCollection, tr("Binder", "Binder collection")));
    d->mCollections.append(
        newCollection(TVL::RecentSearchCollection, TVLProjectModelPrivate::trSearchResultsTitle()));
}

void TVLProjectModel::setCollections(const QList<TVLCollectionMetaData> &collections)
{
    d->mCollections = collections;
    for (TVLCollectionMetaData &collection : d->mCollections) {
        if (collection.mType == TVL::ArbitraryCollection)
            collection.mIds.removeIf([this](int id) { return !index(id).isValid(); });
    }
    for (const auto type : {TVL::BinderCollection, TVL::RecentSearchCollection}) {
        if (firstOfType(d->mCollections, type) < 0)
            d->mCollections.append(newCollection(type, QString()));
    }
}

bool TVLProjectModelPrivate::isCollectionPos(int position) const
{
    return position >= 0 && position < mCollections.size();
}

// Positions hold from one signal to the next: who hears of one collection may remove it or others.

/** Where a collection is now that was at a position; -1 once it is gone. */
int TVLProjectModelPrivate::presentCollectionPos(int position, const QString &identity) const
{
    // First where it was: a damaged binder may have an identity twice.
    const bool hasStayed = isCollectionPos(position) && mCollections.at(position).mId == identity;
    return hasStayed ? position : q->collectionPos(identity);
}

void TVLProjectModelPrivate::announceCollection(int position, const QString &identity)
{
    const int present = presentCollectionPos(position, identity);
    if (present < 0)
        return;
    // By value: who hears of it may change the list.
    const TVLCollectionMetaData collection = mCollections.at(present);
    Q_EMIT q->collectionChanged(present, collection);
    Q_EMIT q->collectionChanged();
}

void TVLProjectModelPrivate::storeCollection(int position, const TVLCollectionMetaData &collection)
{
    const QString identity = collection.mId;
    mCollections[position] = collection;
    q->markProjectAsModified(true);
    announceCollection(position, identity);
}

void TVLProjectModelPrivate::insertCollectionRow(int position,
                                                 const TVLCollectionMetaData &collection)
{
    const TVLCollectionMetaData inserted = collection;
    position = std::clamp(position, 0, int(mCollections.size()));
    Q_EMIT q->collectionAboutToBeInserted(position, inserted);
    position = std::clamp(position, 0, int(mCollections.size()));
    mCollections.insert(position, inserted);
    q->markProjectAsModified(true);
    const int present = presentCollectionPos(position, inserted.mId);
    if (present >= 0)
        Q_EMIT q->collectionInserted(present, inserted);
}

bool TVLProjectModelPrivate::removeCollectionRow(int position)
{
    const QString identity = mCollections.at(position).mId;
    Q_EMIT q->collectionAboutToBeRemoved(position);
    const int present = presentCollectionPos(position, identity);
    if (present < 0)
        return false;
    mCollections.removeAt(present);
    q->markProjectAsModified(true);
    Q_EMIT q->collectionRemoved(present);
    return true;
}

void TVLProjectModel::insertCollection(int position, const TVLCollectionMetaData &collection)
{
    if (isBuiltIn(collection))
        return;
    d->insertCollectionRow(position, collection);
    Q_EMIT collectionChanged();
}

QString TVLProjectModel::insertCollection(int position, const QModelIndexList &indexes,
                                          const QString &title, const QColor &color)
{
    TVLCollectionMetaData collection = newCollection(TVL::ArbitraryCollection, title);
    if (color.isValid())
        collection.mColor = color;
    collection.mIds = nodeIdentityList(sortIndexes(indexes));
    insertCollection(position, collection);
    return collection.mId;
}

void TVLProjectModel::removeCollection(int position)
{
    if (!d->isCollectionPos(position) || isBuiltIn(d->mCollections.at(position)))
        return;
    if (d->removeCollectionRow(position))
        Q_EMIT collectionChanged();
}

void TVLProjectModel::moveCollection(int from, int to)
{
    if (!d->isCollectionPos(from) || to < 0 || to > d->mCollections.size())
        return;
    const TVLCollectionMetaData collection = d->mCollections.at(from);
    {
        // Who is told that the project has changed must not find the list without one of its own.
        const QScopedValueRollback suspend(d->mSuspendModified, true);
        // Out and in again, so that views need no word for a move.
        if (d->removeCollectionRow(from))
            d->insertCollectionRow(from < to ? to - 1 : to, collection);
    }
    markProjectAsModified(true);
    Q_EMIT collectionChanged();
}

// --- Looking up

int TVLProjectModel::collectionPos(const QString &identity) const
{
    return firstPosition(d->mCollections, [&identity](const TVLCollectionMetaData &collection) {
        return collection.mId == identity;
    });
}

bool TVLProjectModel::hasCollectionWithId(const QString &identity) const
{
    return collectionPos(identity) >= 0;
}

TVLCollectionMetaData TVLProjectModel::findCollectionByPos(int position) const
{
    return d->isCollectionPos(position) ? d->mCollections.at(position) : noCollection();
}

TVLCollectionMetaData TVLProjectModel::findCollectionById(const QString &identity) const
{
    return findCollectionByPos(collectionPos(identity));
}

TVLCollectionMetaData TVLProjectModel::findCollectionByTitle(const QString &title) const
{
    return findCollectionByPos(
        firstPosition(d->mCollections, [&title](const TVLCollectionMetaData &collection) {
            return collection.mTitle == title;
        }));
}

TVLCollectionMetaData TVLProjectModel::binderCollection() const
{
    const int position = firstOfType(d->mCollections, TVL::BinderCollection);
    return position >= 0 ? d->mCollections.at(position)
                         : newCollection(TVL::BinderCollection, QString());
}

TVLCollectionMetaData TVLProjectModel::recentSearch() const
{
    const int position = firstOfType(d->mCollections, TVL::RecentSearchCollection);
    return position >= 0 ? d->mCollections.at(position)
                         : newCollection(TVL::RecentSearchCollection, QString());
}

// --- Changing one

void TVLProjectModel::setCollectionByPos(int position, const TVLCollectionMetaData &collection)
{
    if (d->isCollectionPos(position) && !isBuiltIn(d->mCollections.at(position)))
        d->storeCollection(position, collection);
}

void TVLProjectModel::setCollectionById(const QString &identity,
                                        const TVLCollectionMetaData &collection)
{
    setCollectionByPos(collectionPos(identity), collection);
}

void TVLProjectModel::setCollectionColor(int position, const QColor &color)
{
    TVLCollectionMetaData collection = findCollectionByPos(position);
    if (isBuiltIn(collection) || collection.mType == TVL::NoCollection || collection.mId.isEmpty())
        return;
    collection.mColor = color;
    d->storeCollection(position, collection);
}

void TVLProjectModel::setCollectionColor(const QString &identity, const QColor &color)
{
    setCollectionColor(collectionPos(identity), color);
}

void TVLProjectModel::setRecentSearch(const TVLCollectionMetaData &search)
{
    const int position = firstOfType(d->mCollections, search.mType);
    if (position < 0)
        return;
    TVLCollectionMetaData collection = search;
    collection.mTitle = TVLProjectModelPrivate::trSearchResultsTitle();
    collection.mColor = QColor();
    d->storeCollection(position, collection);
}

void TVLProjectModel::addToCollection(int position, const QModelIndexList &indexes)
{
    TVLCollectionMetaData collection = findCollectionByPos(position);
    if (collection.mType != TVL::ArbitraryCollection)
        return;
    QSet<int> known(collection.mIds.begin(), collection.mIds.end());
    const qsizetype oldCount = collection.mIds.size();
    const QList<int> ids = nodeIdentityList(indexes);
    for (const int id : ids) {
        if (id < 0 || known.contains(id))
            continue;
        known.insert(id);
        collection.mIds.append(id);
    }
    if (collection.mIds.size() != oldCount)
        d->storeCollection(position, collection);
}

void TVLProjectModel::addToCollection(const QString &identity, const QModelIndexList &indexes)
{
    addToCollection(collectionPos(identity), indexes);
}

void TVLProjectModel::removeFromCollection(int position, const QModelIndexList &indexes)
{
    if (!d->isCollectionPos(position))
        return;
    TVLCollectionMetaData collection = d->mCollections.at(position);
    const QList<int> ids = nodeIdentityList(indexes);
    const QSet<int> removed(ids.begin(), ids.end());
    collection.mIds.removeIf([&removed](int id) { return removed.contains(id); });
    d->storeCollection(position, collection);
}

void TVLProjectModel::removeFromCollection(const QString &identity, const QModelIndexList &indexes)
{
    removeFromCollection(collectionPos(identity), indexes);
}

void TVLProjectModel::removeNodeIdsFromCollections(const QList<int> &ids)
{
    const QSet<int> removed(ids.begin(), ids.end());
    for (TVLCollectionMetaData &collection : d->mCollections) {
        if (collection.mType == TVL::ArbitraryCollection)
            collection.mIds.removeIf([&removed](int id) { return removed.contains(id); });
    }
}

// --- What a collection shows

void TVLProjectModel::updateSearchCollections()
{
    d->announceSearches(TVL::AllScope);
}

void TVLProjectModelPrivate::announceSearches(int scope)
{
    const QList<TVLCollectionMetaData> collections = mCollections;
    for (qsizetype position = 0; position < collections.size(); ++position) {
        const TVLCollectionMetaData &collection = collections.at(position);
        if (isSearch(collection) && (collection.mSearchScope & scope) == scope)
            announceCollection(int(position), collection.mId);
    }
}

QModelIndexList TVLProjectModel::collectionIndexes(const TVLCollectionMetaData &collection,
                                                   const QModelIndexList &context) const
{
    QModelIndexList indexes;
    if (collection.mType == TVL::ArbitraryCollection) {
        for (const int id : collection.mIds) {
            const QModelIndex item = index(id);
            if (item.isValid())
                indexes.append(item);
        }
    } else if (isSearch(collection) && !collection.mSearchText.isEmpty()) {
        QList<TVLHeldItem> selection;
        for (const QModelIndex &selected : context)
            selection.append(TVLHeldItem(this, projectNode(selected)));
        // Searching may read texts, and show a box about one that can't be read.
        const QList<int> ids = d->mSearchIndex->indexes(collection);
        QSet<const TVLProjectNode *> scope;
        for (const TVLHeldItem &selected : std::as_const(selection))
            scope.insert(selected.node());
        for (const int id : ids) {
            const QModelIndex item = index(id);
            if (d->isFoundBy(collection, scope, item))
                indexes.append(item);
        }
    }
    return indexes;
}

bool TVLProjectModelPrivate::isFoundBy(const TVLCollectionMetaData &collection,
                                       const QSet<const TVLProjectNode *> &context,
                                       const QModelIndex &item) const
{
    if (!item.isValid() || q->isSystemFolder(item)
        || !isCompileMatch(collection.mSearchCompile, q->includeInCompile(item)))
        return false;
    if ((collection.mSearchScope & TVL::DraftScope) != 0)
        return q->draftContains(item);
    if ((collection.mSearchScope & TVL::ExcludeTrashScope) != 0 && q->trashContains(item))
        return false;
    return (collection.mSearchScope & TVL::SelectionScope) == 0
        || isInOrBelow(q->projectNode(item), context);
}

// --- For external folder sync

TVLCollectionMetaData TVLProjectModel::ensureCollection(const QString &title, const QColor &color)
{
    const TVLCollectionMetaData collection = findCollectionByTitle(title);
    if (collection.mType != TVL::NoCollection && !collection.mId.isEmpty())
        return collection;
    return findCollectionById(insertCollection(int(d->mCollections.size()), {}, title, color));
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
    QList<TVLCollectionMetaData> collections = d->mCollections;
    collections.removeIf([](const TVLCollectionMetaData &collection) {
        return !collection.isSuitableExternalFolderSync();
    });
    return collections;
}

bool TVLProjectModel::hasCollectionsForExternalFolderSync() const
{
    return !collectionsForExternalFolderSync().isEmpty();
}
