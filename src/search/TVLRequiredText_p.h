#pragma once

#include <QString>

/**
 * A piece of text, the longest that is found, that every match of a QRegExp pattern (RegExp2)
 * contains as it stands but for case. Empty when there is none, or none that is beyond doubt: what
 * stands in groups or beside alternatives isn't looked at.
 */
[[nodiscard]] QString tvlRequiredText(const QString &pattern);
