#pragma once

#include "TvlExport.h"

#include <QList>
#include <QString>
#include <QStringList>

/** A word of the project's completion list. */
class TVL_EXPORT TVLAutoCompleteItem
{
public:
    /** Where a word is offered. */
    enum Scope : int {
        Everywhere = 0,
        GeneralText = 1, ///< In ordinary text.
        ScriptElement = 2, ///< In one element of a script, which an id tells.
    };

    /** The numbers that mScope has for the first two; from 0 on it is the id of an element. */
    static constexpr int EverywhereId = -2;
    static constexpr int GeneralTextId = -1;

    int mScope = EverywhereId;
    QString mText;

    /** What mScope is for a scope; a negative @p id stands for everywhere. */
    [[nodiscard]] static int scopeId(Scope scope, int id);

    /** Position of the item with exactly that text; -1 for none. */
    [[nodiscard]] static qsizetype indexOf(const QString &text,
                                           const QList<TVLAutoCompleteItem> &items);
    /** The texts of the items, in their order. */
    [[nodiscard]] static QStringList toStringList(const QList<TVLAutoCompleteItem> &items);

    friend bool operator==(const TVLAutoCompleteItem &, const TVLAutoCompleteItem &) = default;
};
