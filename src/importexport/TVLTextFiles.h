#pragma once

#include "TvlExport.h"

#include <QString>

#include <memory>

class QTextDocument;

/**
 * Reads plain text: UTF-8, or what a byte order mark says, with line ends of any kind. A line end
 * that closes the last line is no paragraph of its own. Null, and what is wrong in @p error, if the
 * file can't be read or isn't such a text.
 */
[[nodiscard]] TVL_EXPORT std::unique_ptr<QTextDocument> tvlReadPlainTextFile(const QString &path,
                                                                             QString *error);

/** Reads rich text, with inline annotations and footnotes; as above. */
[[nodiscard]] TVL_EXPORT std::unique_ptr<QTextDocument> tvlReadRichTextFile(const QString &path,
                                                                            QString *error);
