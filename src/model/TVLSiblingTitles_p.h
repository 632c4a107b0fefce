#pragma once

#include <QHash>
#include <QSet>
#include <QString>

class TVLProjectNode;

/**
 * The titles of an item's children, gathered once, and new ones that don't clash with them.
 *
 * Titles can only be added, so numbers that were found taken stay so and aren't tried again: many
 * items of one title cost no more than so many titles.
 */
class TVLSiblingTitles
{
public:
    /** The titles of all children but @p excluded, which may be null. */
    TVLSiblingTitles(const TVLProjectNode *parent, const TVLProjectNode *excluded);

    /** The title itself, or its stem with the first number above its own that no sibling has. */
    [[nodiscard]] QString findUnique(const QString &title);
    void add(const QString &title) { mTitles.insert(title); }

private:
    /** A run of numbers that are all taken; none when the last comes before the first. */
    struct Numbers
    {
        int first = 0;
        int last = -1;
    };

    QSet<QString> mTitles;
    QHash<QString, Numbers> mTaken; ///< By stem.
};
