#pragma once

#include <QString>

class QXmlStreamWriter;

/**
 * A text as XML can hold it: control characters other than tabs and line ends go, half surrogate
 * pairs and what is no character become U+FFFD. The text itself, unshared, in all but the rarest
 * cases.
 */
[[nodiscard]] QString tvlXmlText(const QString &text);

/**
 * Writes tvlXmlText() of a text as characters, with carriage returns as references: as they stand
 * they would be read as line feeds.
 */
void tvlWriteXmlCharacters(QXmlStreamWriter *writer, const QString &text);

/** Writes a text that XML can hold, such as tvlXmlText() gives, as tvlWriteXmlCharacters() does. */
void tvlWriteXmlText(QXmlStreamWriter *writer, const QString &clean);
