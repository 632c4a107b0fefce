#pragma once

#include <QString>
#include <QTextCharFormat>
#include <QTextDocument>

#include <memory>

/**
 * A document from a short notation: line feeds part paragraphs, and `<marks:text>` is a run with
 * marks, which commas part:
 *
 *   a, f     inline annotation, inline footnote
 *   b        bold
 *   cID nID  inspector comment, inspector footnote with the identity ID
 *   lADDRESS link to the address
 *   p        picture of the name that the text gives
 */
std::unique_ptr<QTextDocument> makeText(const QString &notation);

/** The format of a run with marks of makeText(). */
QTextCharFormat markedFormat(const QString &marks);

/** A document in the notation of makeText(); tables are told apart by `[` and `]`. */
QString describeText(const QTextDocument *document);

/**
 * Where two documents differ in the text, the formats, lists or tables of any paragraph, run or
 * cell, in words; empty for equal ones. Only the numbers of lists and tables may differ.
 */
QString differenceOfTexts(const QTextDocument &a, const QTextDocument &b);

/**
 * A random document with paragraphs and runs in any format, lists, tables in tables, and pictures
 * with their bytes; the same for the same seed.
 */
std::unique_ptr<QTextDocument> makeRandomRichText(quint32 seed);
