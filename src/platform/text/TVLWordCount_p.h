#pragma once

#include <QStringView>

/**
 * Number of words in a text: of the stretches between Unicode's word boundaries those that hold a
 * letter or a number.
 */
[[nodiscard]] int tvlCountWords(QStringView text);
