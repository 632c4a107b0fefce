#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

class TVLCollectionMetaData;

/** What a search looks for. */
struct TVLSearchWords
{
    QStringList words;
    int flags = 0; ///< Those of TVLTextMatcher.
};

/** The words of a collection; none for one that can't find anything. */
[[nodiscard]] TVLSearchWords tvlSearchWords(const TVLCollectionMetaData &collection);

/** The flags by which titles of labels, status items and keywords are looked for: as whole words,
 * whatever the search says. */
[[nodiscard]] int tvlTitleFlags(int flags);

/** The tables that the values of properties that aren't texts point into. */
[[nodiscard]] const QMap<int, QString> &tvlTitleTables();
