#pragma once

#include <QString>

/** Tells a caller what went wrong, where it gave a place for that. */
inline void tvlSetError(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

/** The end of a function that failed: tells the caller why and is false. */
[[nodiscard]] inline bool tvlFail(QString *error, const QString &text)
{
    tvlSetError(error, text);
    return false;
}
