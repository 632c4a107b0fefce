#pragma once

#include <QString>
#include <QStringList>

/**
 * What it means for a text to match words, step by step, with a new expression for each word: slow
 * and plain, to measure the library by.
 */
[[nodiscard]] bool referenceMatch(const QString &text, int flags, const QStringList &words);

/** The number of matches that referenceMatch() looked at and passed over since the program began.
 */
[[nodiscard]] qint64 rejectedReferenceMatches();
