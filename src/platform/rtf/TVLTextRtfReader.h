#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QString>

class QIODevice;
class QTextDocument;

/**
 * Reads Rich Text Format into a document.
 *
 * What word processors write is understood as far as a text document can hold it; what it can't
 * hold is left out without harm to the text around it. Pictures become resources of the document
 * with their bytes as they are in the file; they aren't decoded. The memory used is bounded by a
 * small multiple of the input's size, whatever the input.
 */
class TVL_EXPORT TVLTextRtfReader
{
public:
    /** The document isn't owned. */
    explicit TVLTextRtfReader(QTextDocument *document);
    ~TVLTextRtfReader();
    Q_DISABLE_COPY_MOVE(TVLTextRtfReader)

    /**
     * Replaces the document's content with what the device, which must be open, holds from its
     * position on. The undo history of the document goes.
     *
     * False when the input isn't RTF, which nothing at all isn't either, is cut off, goes on behind
     * the end of its text, is nested too deeply or could not be read; errorString() then says so,
     * and the document holds what could be read of it.
     */
    [[nodiscard]] bool read(QIODevice *device);
    [[nodiscard]] bool read(const QByteArray &rtf);

    /** What went wrong in the last read; empty when nothing did. */
    [[nodiscard]] QString errorString() const { return mErrorString; }

private:
    QTextDocument *mDocument;
    QString mErrorString;
};
