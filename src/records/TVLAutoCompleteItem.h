#pragma once

#include <QString>

/** A word of the project's completion list. */
struct TVLAutoCompleteItem
{
    int mScope = -2; ///< Where the word is offered; -2 everywhere.
    QString mText;

    friend bool operator==(const TVLAutoCompleteItem &, const TVLAutoCompleteItem &) = default;
};
