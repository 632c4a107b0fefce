#pragma once

#include "TVLCollectionMetaData.h"

#include <QList>
#include <QModelIndex>
#include <QSet>

class TVLProjectModel;
class TVLProjectNode;

/**
 * The collections and the favorites of a project: lists of items beside the binder.
 *
 * Each change marks the project modified and is signalled by the model, in the order that
 * collectionInserted() and its like promise. Who hears of one may change the lists, so a collection
 * is found anew by its identity behind each signal.
 */
class TVLCollectionList
{
public:
    /** The model is to live as long. */
    explicit TVLCollectionList(TVLProjectModel *model);
    Q_DISABLE_COPY_MOVE(TVLCollectionList)

    /** @name The list @{ */
    [[nodiscard]] const QList<TVLCollectionMetaData> &collections() const { return mCollections; }
    /** Takes over a list without a signal; ids of no item leave it, missing kinds are added. */
    void setCollections(const QList<TVLCollectionMetaData> &collections);
    void addDefaults();
    /** Inserts a collection at a position or the nearest one, unless every project has it. */
    void insert(int position, const TVLCollectionMetaData &collection);
    /** Inserts a list of items in the order of the binder, with a random colour if that is invalid.
     * Returns its identity. */
    QString insertItems(int position, const QModelIndexList &indexes, const QString &title,
                        const QColor &color);
    void remove(int position);
    /** In front of another, or to the end. */
    void move(int from, int to);
    /** -1 for an unknown identity. */
    [[nodiscard]] int pos(const QString &identity) const;
    /** These give a record of TVL::NoCollection when there is none. */
    [[nodiscard]] TVLCollectionMetaData findByPos(int position) const;
    [[nodiscard]] TVLCollectionMetaData findByTitle(const QString &title) const;
    /** The first of a type; a new one that isn't in the list when there is none. */
    [[nodiscard]] TVLCollectionMetaData ofType(TVL::CollectionType type) const;
    /** @} */

    /** @name Changing one
     * What is out of range or may not be changed is passed over.
     * @{ */
    void setByPos(int position, const TVLCollectionMetaData &collection);
    void setColor(int position, const QColor &color);
    /** Makes a search the one of the search results, whose title stays. */
    void setRecentSearch(const TVLCollectionMetaData &search);
    /** Appends the items that aren't in it to a list kept by hand. */
    void addItems(int position, const QModelIndexList &indexes);
    void removeItems(int position, const QModelIndexList &indexes);
    /** Takes ids out of the lists kept by hand, without a signal. */
    void removeIds(const QList<int> &ids);
    /** @} */

    /** @name What a collection shows @{ */
    /** Announces the searches that have all bits of a scope. */
    void announceSearches(int scope);
    /** TVLProjectModel::collectionIndexes(). A search may show a box. */
    [[nodiscard]] QModelIndexList indexes(const TVLCollectionMetaData &collection,
                                          const QModelIndexList &context) const;
    /** @} */

    /** @name Favorites @{ */
    bool setFavorite(const QModelIndex &index, bool favorite, bool atEnd);
    /** The favorites in their order. */
    [[nodiscard]] QModelIndexList favorites() const;
    [[nodiscard]] QList<int> favoriteIds() const;
    /** What a binder says of the item of an id: opening a project changes none. */
    void adoptFavorite(TVLProjectNode *node, int id);
    /** Makes list and flag agree for a record that has come from elsewhere. */
    void enterFlag(TVLProjectNode *node);
    void setFavorites(const QList<int> &ids);
    void clearFavorites();
    /** Without a signal. */
    void removeFavorites(const QList<int> &ids);
    /** @} */

private:
    [[nodiscard]] static QString searchResultsTitle();
    [[nodiscard]] bool isPos(int position) const;
    [[nodiscard]] int presentPos(int position, const QString &identity) const;
    void announce(int position, const QString &identity);
    void store(int position, const TVLCollectionMetaData &collection);
    void insertRow(int position, const TVLCollectionMetaData &collection);
    bool removeRow(int position);
    [[nodiscard]] bool isFoundBy(const TVLCollectionMetaData &collection,
                                 const QSet<const TVLProjectNode *> &context,
                                 const QModelIndex &item) const;
    QList<TVLProjectNode *> changeFavorites(const QSet<int> &ids, bool favorite);

    TVLProjectModel *mModel;
    QList<TVLCollectionMetaData> mCollections;
    QList<int> mFavorites;
};
