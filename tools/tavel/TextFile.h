#pragma once

#include <QString>

#include <memory>

class QTextDocument;

/**
 * Reads plain text: UTF-8, or what a byte order mark says, with line ends of any kind. A line end
 * that closes the last line is no paragraph of its own. Null, and what is wrong in @p error, if the
 * file can't be read or isn't such a text.
 */
[[nodiscard]] std::unique_ptr<QTextDocument> readPlainTextFile(const QString &path, QString *error);

/** Reads rich text, with inline annotations and footnotes; as above. */
[[nodiscard]] std::unique_ptr<QTextDocument> readRichTextFile(const QString &path, QString *error);
