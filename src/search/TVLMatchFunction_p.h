#pragma once

#include "TvlExport.h"

class QSqlDatabase;

/**
 * Gives an open SQLite connection the SQL function `matchQString(value, flags, count, words...)`,
 * which says with 1 or 0 whether a value matches words as a TVLTextMatcher does.
 *
 * NULL counts as an empty text. A count above the number of words takes all of them. Words that are
 * the same from row to row are made ready only once in a statement.
 *
 * False, with the reason logged at critical level, when the connection isn't one.
 */
[[nodiscard]] TVL_EXPORT bool tvlInstallMatchFunction(const QSqlDatabase &database);
