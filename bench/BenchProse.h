#pragma once

#include <QString>
#include <QStringList>

/**
 * Texts of about @p bytes each in UTF-8, always the same: sentences of words that come as often as
 * words do, with capitals, typographic quotation marks and paragraphs.
 */
[[nodiscard]] QStringList makeBenchProse(int texts, int bytes);

/** A word of that prose by its rank: 0 is in every sentence, 19,999 in hardly any text. */
[[nodiscard]] QString benchProseWord(int rank);
