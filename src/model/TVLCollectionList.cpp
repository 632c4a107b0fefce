#include "TVLCollectionList_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"
#include "TVLSuspendModified.h"

#include <QHash>

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

TVLCollectionList::TVLCollectionList(TVLProjectModel *model)
    : mModel(model)
{
}

// --- The list

QString TVLCollectionList::searchResultsTitle()
{
    return TVLProjectModel::tr("Search Results", "Search results collection");
}

void TVLCollectionList::addDefaults()
{
    if (!mCollections.isEmpty())
        return;
    mCollections.append(
        newCollection(TVL::BinderCollection, TVLProjectModel::tr("Binder", "Binder collection")));
    mCollections.append(newCollection(TVL::RecentSearchCollection, searchResultsTitle()));
}

void TVLCollectionList::setCollections(const QList<TVLCollectionMetaData> &collections)
{
    mCollections = collections;
    for (TVLCollectionMetaData &collection : mCollections) {
        if (collection.mType == TVL::ArbitraryCollection)
            collection.mIds.removeIf([this](int id) { return !mModel->index(id).isValid(); });
    }
    for (const auto type : {TVL::BinderCollection, TVL::RecentSearchCollection}) {
        if (firstOfType(mCollections, type) < 0)
            mCollections.append(newCollection(type, QString()));
    }
}

bool TVLCollectionList::isPos(int position) const
{
    return position >= 0 && position < mCollections.size();
}

// Positions hold from one signal to the next: who hears of one collection may remove it or others.

/** Where a collection is now that was at a position; -1 once it is gone. */
int TVLCollectionList::presentPos(int position, const QString &identity) const
{
    // First where it was: a damaged binder may have an identity twice.
    const bool hasStayed = isPos(position) && mCollections.at(position).mId == identity;
    return hasStayed ? position : pos(identity);
}

void TVLCollectionList::announce(int position, const QString &identity)
{
    const int present = presentPos(position, identity);
    if (present < 0)
        return;
    // By value: who hears of it may change the list.
    const TVLCollectionMetaData collection = mCollections.at(present);
    Q_EMIT mModel->collectionChanged(present, collection);
    Q_EMIT mModel->collectionChanged();
}

void TVLCollectionList::store(int position, const TVLCollectionMetaData &collection)
{
    const QString identity = collection.mId;
    mCollections[position] = collection;
    mModel->markProjectAsModified(true);
    announce(position, identity);
}

void TVLCollectionList::insertRow(int position, const TVLCollectionMetaData &collection)
{
    const TVLCollectionMetaData inserted = collection;
    position = std::clamp(position, 0, int(mCollections.size()));
    Q_EMIT mModel->collectionAboutToBeInserted(position, inserted);
    position = std::clamp(position, 0, int(mCollections.size()));
    mCollections.insert(position, inserted);
    mModel->markProjectAsModified(true);
    const int present = presentPos(position, inserted.mId);
    if (present >= 0)
        Q_EMIT mModel->collectionInserted(present, inserted);
}

bool TVLCollectionList::removeRow(int position)
{
    const QString identity = mCollections.at(position).mId;
    Q_EMIT mModel->collectionAboutToBeRemoved(position);
    const int present = presentPos(position, identity);
    if (present < 0)
        return false;
    mCollections.removeAt(present);
    mModel->markProjectAsModified(true);
    Q_EMIT mModel->collectionRemoved(present);
    return true;
}

void TVLCollectionList::insert(int position, const TVLCollectionMetaData &collection)
{
    if (isBuiltIn(collection))
        return;
    insertRow(position, collection);
    Q_EMIT mModel->collectionChanged();
}

QString TVLCollectionList::insertItems(int position, const QModelIndexList &indexes,
                                       const QString &title, const QColor &color)
{
    TVLCollectionMetaData collection = newCollection(TVL::ArbitraryCollection, title);
    if (color.isValid())
        collection.mColor = color;
    collection.mIds = mModel->nodeIdentityList(TVLProjectModel::sortIndexes(indexes));
    insert(position, collection);
    return collection.mId;
}

void TVLCollectionList::remove(int position)
{
    if (!isPos(position) || isBuiltIn(mCollections.at(position)))
        return;
    if (removeRow(position))
        Q_EMIT mModel->collectionChanged();
}

void TVLCollectionList::move(int from, int to)
{
    if (!isPos(from) || to < 0 || to > mCollections.size())
        return;
    const TVLCollectionMetaData collection = mCollections.at(from);
    {
        // Who is told that the project has changed must not find the list without one of its own.
        const TVLSuspendModified suspend(mModel);
        // Out and in again, so that views need no word for a move.
        if (removeRow(from))
            insertRow(from < to ? to - 1 : to, collection);
    }
    mModel->markProjectAsModified(true);
    Q_EMIT mModel->collectionChanged();
}

// --- Looking up

int TVLCollectionList::pos(const QString &identity) const
{
    return firstPosition(mCollections, [&identity](const TVLCollectionMetaData &collection) {
        return collection.mId == identity;
    });
}

TVLCollectionMetaData TVLCollectionList::findByPos(int position) const
{
    return isPos(position) ? mCollections.at(position) : noCollection();
}

TVLCollectionMetaData TVLCollectionList::findByTitle(const QString &title) const
{
    return findByPos(firstPosition(mCollections, [&title](const TVLCollectionMetaData &collection) {
        return collection.mTitle == title;
    }));
}

TVLCollectionMetaData TVLCollectionList::ofType(TVL::CollectionType type) const
{
    const int position = firstOfType(mCollections, type);
    return position >= 0 ? mCollections.at(position) : newCollection(type, QString());
}

// --- Changing one

void TVLCollectionList::setByPos(int position, const TVLCollectionMetaData &collection)
{
    if (isPos(position) && !isBuiltIn(mCollections.at(position)))
        store(position, collection);
}

void TVLCollectionList::setColor(int position, const QColor &color)
{
    TVLCollectionMetaData collection = findByPos(position);
    if (isBuiltIn(collection) || collection.mType == TVL::NoCollection || collection.mId.isEmpty())
        return;
    collection.mColor = color;
    store(position, collection);
}

void TVLCollectionList::setRecentSearch(const TVLCollectionMetaData &search)
{
    const int position = firstOfType(mCollections, search.mType);
    if (position < 0)
        return;
    TVLCollectionMetaData collection = search;
    collection.mTitle = searchResultsTitle();
    collection.mColor = QColor();
    store(position, collection);
}

void TVLCollectionList::addItems(int position, const QModelIndexList &indexes)
{
    TVLCollectionMetaData collection = findByPos(position);
    if (collection.mType != TVL::ArbitraryCollection)
        return;
    QSet<int> known(collection.mIds.begin(), collection.mIds.end());
    const qsizetype oldCount = collection.mIds.size();
    const QList<int> ids = mModel->nodeIdentityList(indexes);
    for (const int id : ids) {
        if (id < 0 || known.contains(id))
            continue;
        known.insert(id);
        collection.mIds.append(id);
    }
    if (collection.mIds.size() != oldCount)
        store(position, collection);
}

void TVLCollectionList::removeItems(int position, const QModelIndexList &indexes)
{
    if (!isPos(position))
        return;
    TVLCollectionMetaData collection = mCollections.at(position);
    const QList<int> ids = mModel->nodeIdentityList(indexes);
    const QSet<int> removed(ids.begin(), ids.end());
    collection.mIds.removeIf([&removed](int id) { return removed.contains(id); });
    store(position, collection);
}

void TVLCollectionList::removeIds(const QList<int> &ids)
{
    const QSet<int> removed(ids.begin(), ids.end());
    for (TVLCollectionMetaData &collection : mCollections) {
        if (collection.mType == TVL::ArbitraryCollection)
            collection.mIds.removeIf([&removed](int id) { return removed.contains(id); });
    }
}

// --- What a collection shows

void TVLCollectionList::announceSearches(int scope)
{
    const QList<TVLCollectionMetaData> collections = mCollections;
    for (qsizetype position = 0; position < collections.size(); ++position) {
        const TVLCollectionMetaData &collection = collections.at(position);
        if (isSearch(collection) && (collection.mSearchScope & scope) == scope)
            announce(int(position), collection.mId);
    }
}

QModelIndexList TVLCollectionList::indexes(const TVLCollectionMetaData &collection,
                                           const QModelIndexList &context) const
{
    QModelIndexList indexes;
    if (collection.mType == TVL::ArbitraryCollection) {
        for (const int id : collection.mIds) {
            const QModelIndex item = mModel->index(id);
            if (item.isValid())
                indexes.append(item);
        }
    } else if (isSearch(collection) && !collection.mSearchText.isEmpty()) {
        QList<TVLHeldItem> selection;
        for (const QModelIndex &selected : context)
            selection.append(TVLHeldItem(mModel, mModel->projectNode(selected)));
        // Searching may read texts, and show a box about one that can't be read.
        const QList<int> ids = mModel->searchIndex()->indexes(collection);
        QSet<const TVLProjectNode *> scope;
        for (const TVLHeldItem &selected : std::as_const(selection))
            scope.insert(selected.node());
        for (const int id : ids) {
            const QModelIndex item = mModel->index(id);
            if (isFoundBy(collection, scope, item))
                indexes.append(item);
        }
    }
    return indexes;
}

bool TVLCollectionList::isFoundBy(const TVLCollectionMetaData &collection,
                                  const QSet<const TVLProjectNode *> &context,
                                  const QModelIndex &item) const
{
    if (!item.isValid() || mModel->isSystemFolder(item)
        || !isCompileMatch(collection.mSearchCompile, mModel->includeInCompile(item)))
        return false;
    if ((collection.mSearchScope & TVL::DraftScope) != 0)
        return mModel->draftContains(item);
    if ((collection.mSearchScope & TVL::ExcludeTrashScope) != 0 && mModel->trashContains(item))
        return false;
    return (collection.mSearchScope & TVL::SelectionScope) == 0
        || isInOrBelow(mModel->projectNode(item), context);
}

// --- Favorites

bool TVLCollectionList::setFavorite(const QModelIndex &index, bool favorite, bool atEnd)
{
    TVLProjectNode *node = mModel->projectNode(index);
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
    tvlMarkAndAnnounce(mModel, index);
    return true;
}

QModelIndexList TVLCollectionList::favorites() const
{
    QModelIndexList indexes;
    if (mFavorites.isEmpty())
        return indexes;
    // By the ids that the items have, as one without an id of its own isn't found by it.
    QHash<int, const TVLProjectNode *> nodes;
    tvlForEachNode(mModel->binderRoot(), [&nodes](const TVLProjectNode *node) {
        if (node->mIsFavorite)
            nodes.insert(node->mId, node);
    });
    for (const int id : mFavorites) {
        if (const TVLProjectNode *node = nodes.value(id))
            indexes.append(mModel->createIndex(node));
    }
    return indexes;
}

QList<int> TVLCollectionList::favoriteIds() const
{
    QList<int> ids = mFavorites;
    ids.removeIf(
        [this](int id) { return !mModel->hasNodeId(id) || !mModel->findNode(id)->mIsFavorite; });
    return ids;
}

void TVLCollectionList::adoptFavorite(TVLProjectNode *node, int id)
{
    if (std::exchange(node->mIsFavorite, true))
        mFavorites.removeAll(id);
    mFavorites.append(id);
}

void TVLCollectionList::enterFlag(TVLProjectNode *node)
{
    if (node->mId < 0)
        node->mIsFavorite = false;
    else if (node->mIsFavorite && !mFavorites.contains(node->mId))
        mFavorites.append(node->mId);
}

void TVLCollectionList::setFavorites(const QList<int> &ids)
{
    if (ids == mFavorites)
        return;
    const QSet<int> oldIds(mFavorites.begin(), mFavorites.end());
    const QSet<int> newIds(ids.begin(), ids.end());
    QList<TVLProjectNode *> touched = changeFavorites(oldIds - newIds, false);
    touched += changeFavorites(newIds - oldIds, true);
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(mModel, touched);
    mFavorites = ids;
    mModel->markProjectAsModified(true);
    tvlAnnounceChanges(mModel, items);
}

QList<TVLProjectNode *> TVLCollectionList::changeFavorites(const QSet<int> &ids, bool favorite)
{
    QList<TVLProjectNode *> nodes;
    for (const int id : ids) {
        if (!mModel->hasNodeId(id))
            continue;
        TVLProjectNode *node = mModel->findNode(id);
        node->mIsFavorite = favorite;
        node->updateModified();
        nodes.append(node);
    }
    return nodes;
}

void TVLCollectionList::clearFavorites()
{
    QList<TVLProjectNode *> touched;
    tvlForEachNode(mModel->binderRoot(), [&touched](TVLProjectNode *node) {
        if (!std::exchange(node->mIsFavorite, false))
            return;
        node->updateModified();
        touched.append(node);
    });
    mFavorites.clear();
    if (touched.isEmpty())
        return;
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(mModel, touched);
    mModel->markProjectAsModified(true);
    tvlAnnounceChanges(mModel, items);
}

void TVLCollectionList::removeFavorites(const QList<int> &ids)
{
    const QSet<int> removed(ids.begin(), ids.end());
    mFavorites.removeIf([&removed](int id) { return removed.contains(id); });
}
