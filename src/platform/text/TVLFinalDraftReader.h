#pragma once

#include "TVLScriptElement.h"
#include "TvlExport.h"

#include <QByteArray>
#include <QList>
#include <QString>

class QTextDocument;

/**
 * Reads screenplays from files of Final Draft.
 *
 * What each element of a script is there is told in `docs/screenplays.md`. Paragraphs of a type for
 * which there is no element keep it; elements of XML that aren't known leave their words.
 */
class TVL_EXPORT TVLFinalDraftReader
{
public:
    /** Takes a file's bytes. False when it can't be read; errorString() says why. */
    [[nodiscard]] bool load(const QString &path);

    /**
     * Replaces a document's content with the screenplay of the file; its undo history goes. With no
     * elements those of a new screenplay serve.
     *
     * False when the file isn't one of Final Draft, is cut off or damaged, is nested too deeply or
     * has a document type of its own; errorString() then says so, and the document holds what could
     * be read of it.
     */
    [[nodiscard]] bool read(QTextDocument *document, const QList<TVLScriptElement> &elements);

    /** What went wrong in the last call; empty when nothing did. */
    [[nodiscard]] QString errorString() const { return mErrorString; }

private:
    QByteArray mBytes;
    QString mErrorString;
};
