#pragma once

#include <QRandomGenerator>
#include <QString>
#include <QStringList>

/** A text, the words that are looked for in it, and how. */
struct MatchCase
{
    QString text;
    int flags = 0;
    QStringList words;
};

/**
 * Random cases of small alphabets, so that words nearly match everywhere: letters of special case
 * folding, quotation marks, combining marks, characters beyond the basic plane and halves of them,
 * null characters, expressions good and bad. Some texts are long enough for other algorithms.
 */
[[nodiscard]] MatchCase randomMatchCase(QRandomGenerator *random);

/** A case as words for a test's failure. */
[[nodiscard]] QString described(const MatchCase &match);
