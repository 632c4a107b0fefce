#pragma once

#include "TVLCollectionMetaData.h"

#include <QMap>
#include <QRandomGenerator>
#include <QStringList>

/** What an item has for searches to look at. */
struct SearchedItem
{
    QMap<int, QString> texts; ///< By the TVL::DocumentProperty values that are texts.
    QMap<int, QStringList> titles; ///< Those of its keywords, its label and its status, as well.
};

/** What it means for a search to find an item, one step after the other and nothing kept. */
class ReferenceSearch
{
public:
    explicit ReferenceSearch(const TVLCollectionMetaData &search);

    [[nodiscard]] bool finds(const SearchedItem &item) const;

private:
    [[nodiscard]] bool isSearched(int property) const;
    [[nodiscard]] bool findsText(const SearchedItem &item) const;
    [[nodiscard]] bool findsTitle(const SearchedItem &item) const;
    [[nodiscard]] bool findsTitle(const SearchedItem &item, const QString &word) const;

    QStringList mWords;
    int mFlags = 0;
    int mProperty;
};

/** A text of words that are parts of each other, with marks around them and other cases. */
[[nodiscard]] QString randomSearchedText(QRandomGenerator *random, int mostWords);

/** A search by any operator, also by none that there is, in any property and either case. */
[[nodiscard]] TVLCollectionMetaData randomSearch(QRandomGenerator *random);
