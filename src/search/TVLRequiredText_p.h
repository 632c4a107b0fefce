#pragma once

#include <QString>

/** Pieces that every match of an expression contains as they stand but for case; empty ones where
 * there are none, or none that is beyond doubt. */
struct TVLRequiredText
{
    QString text; ///< The longest that is found.
    QString start; ///< What a match begins with that can only be at the start of a text.
};

/**
 * What a QRegExp pattern (RegExp2) requires. What stands in groups or beside alternatives isn't
 * looked at.
 */
[[nodiscard]] TVLRequiredText tvlRequiredText(const QString &pattern);
