#pragma once

#include "TVL.h"

#include <QColor>
#include <QList>
#include <QString>

/** A named list of binder items: one kept by hand, or one defined by a search. */
class TVL_EXPORT TVLCollectionMetaData
{
public:
    QString mId; ///< Identity; see generateIdentity().
    QString mTitle;
    QString mSearchText;
    QColor mColor; ///< See color() for what is shown.
    TVL::CollectionType mType = TVL::BinderCollection;
    int mSearchOperator = TVL::ExactOperator; ///< A TVL::SearchOperator.
    TVL::DocumentProperty mSearchProperty = TVL::AllProperties;
    int mSearchScope = TVL::AllScope; ///< Bits of TVL::SearchScope.
    int mSearchCompile = TVL::AnyCompile; ///< A TVL::SearchCompile.
    Qt::CaseSensitivity mCaseSensitivity = Qt::CaseInsensitive;
    QList<int> mIds; ///< Members of a list kept by hand.

    static const QColor mBinderColor; ///< Colour of every binder collection.
    static QColor mRecentSearchCollColor; ///< Colour of every search results collection.

    /** Sets the colour of the search results of all projects. */
    static void setRecentSearchCollectionColor(const QColor &color);

    /** A fresh identity. */
    [[nodiscard]] static QString generateIdentity();

    /** A random opaque colour, as a collection gets that was given none. */
    [[nodiscard]] static QColor randomColor();

    /** The colour to show: class-wide for the binder and the search results, else mColor. */
    [[nodiscard]] QColor color() const;

    /** Whether the title is one of the two that external folder sync reserves for its results. */
    [[nodiscard]] static bool isSyncResultsCollectionTitle(const QString &title);
    [[nodiscard]] bool isSyncResultsCollection() const;

    /** Whether the collection may choose the documents of an external folder sync. */
    [[nodiscard]] bool isSuitableExternalFolderSync() const;

    friend bool operator==(const TVLCollectionMetaData &, const TVLCollectionMetaData &) = default;
};
