#pragma once

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextFormat>

class QTextTableCellFormat;

// Formats as declarations of CSS, each with its semicolon; empty for what needs none.

/** What differs from a format that holds for all. */
[[nodiscard]] QString tvlCssOf(const QTextCharFormat &format, const QTextCharFormat &common);
/** A paragraph's measures. In a list the list's own indent is left to the list. */
[[nodiscard]] QString tvlCssOf(const QTextBlockFormat &format, bool isInList);
/** A cell's background, alignment and the borders that its table has. */
[[nodiscard]] QString tvlCssOfCell(const QTextTableCellFormat &format);
/** Font and size of a whole page. */
[[nodiscard]] QString tvlCssOfPage(const QTextCharFormat &common);
