#pragma once

#include "TVLScriptElement.h"
#include "TvlExport.h"

#include <QList>
#include <QString>

class QTextDocument;

/**
 * Screenplays as Fountain, the plain text that many programs know.
 *
 * What each element of a script is in Fountain, and what marks of our own there are, is told in
 * `docs/screenplays.md`. With no elements those of a new screenplay serve.
 */
namespace TvlFountain {

/**
 * Writes a document to a file in UTF-8. All bytes are composed before the file is opened; a link
 * isn't written through.
 * @return false, with the reason in @p error, if given, when the file can't be written
 */
[[nodiscard]] TVL_EXPORT bool writeFile(const QString &path, const QTextDocument *document,
                                        const QList<TVLScriptElement> &elements,
                                        QString *error = nullptr);

/** What writeFile() writes. A null document is an empty one. */
[[nodiscard]] TVL_EXPORT QString toText(const QTextDocument *document,
                                        const QList<TVLScriptElement> &elements);

/**
 * Replaces a document's content with a screenplay; its undo history goes. Any text is Fountain, so
 * this fails only without a document.
 */
[[nodiscard]] TVL_EXPORT bool parseText(const QString &text, QTextDocument *document,
                                        const QList<TVLScriptElement> &elements,
                                        QString *error = nullptr);

} // namespace TvlFountain
