#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QString>
#include <QTextDocumentFragment>

class QTextDocument;

/** Whole texts to and from Rich Text Format in one call. */
class TVL_EXPORT TVLTextRtf
{
public:
    /**
     * Writes a document to a file in place. All bytes are composed before the file is opened, so
     * what can fail then is the disk alone; @p error, if given, has its words.
     * @param hasInlineMarkup  see TVLTextRtfWriter::write()
     * @param exporting        see TVLTextRtfWriter::setExportingMode()
     */
    [[nodiscard]] static bool toRtfFile(const QString &filePath, const QTextDocument *document,
                                        QString *error, bool hasInlineMarkup, bool exporting);

    /** The RTF of a comment or other small text. */
    [[nodiscard]] static QByteArray toRtfCData(const QTextDocument *document);
    /** The text of a comment; as much as could be read of a damaged one. */
    [[nodiscard]] static QTextDocumentFragment fromRtfCData(const QByteArray &rtf);
    /** The text of a comment without its formats; as much as could be read of a damaged one. */
    [[nodiscard]] static QString rtfToPlainText(const QByteArray &rtf);
};
