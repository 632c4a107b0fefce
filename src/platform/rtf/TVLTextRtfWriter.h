#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QString>

class QIODevice;
class QTextDocument;

/**
 * Writes a document as Rich Text Format, in plain ASCII, the same bytes each time.
 *
 * In its normal mode it writes the application's own files: TVLTextRtfReader gives the same text
 * and formats back. In exporting mode it writes for other programs: notes and comments become
 * those that word processors know, and defaults are spelled out.
 */
class TVL_EXPORT TVLTextRtfWriter
{
public:
    /** What becomes of inline and inspector footnotes in exporting mode. */
    enum FootnoteDestination : int {
        FootnotesDropped = 0,
        FootnotesAtPageEnd = 1,
        FootnotesAtDocumentEnd = 2,
    };

    /** What becomes of inline annotations and inspector comments in exporting mode. */
    enum AnnotationDestination : int {
        AnnotationsAsComments = 0,
        AnnotationsAsFootnotes = 1,
        AnnotationsInText = 2, ///< In square brackets.
        AnnotationsDropped = 3,
    };

    /** The device isn't owned and must be open for writing. */
    explicit TVLTextRtfWriter(QIODevice *device);

    void setExportingMode(bool exporting) { mExportingMode = exporting; }
    /** Backgrounds of text as highlights, which have sixteen colours, where one comes near. */
    void setHightlightForMsWord(bool highlight) { mHighlightForMsWord = highlight; }
    /** Links in blue and underlined where the text's own format says nothing else. */
    void setDecorateHyperlinks(bool decorate) { mDecorateHyperlinks = decorate; }
    /** A blank in front of each footnote's text. */
    void setFootnotesWithLeadingSpace(bool leadingSpace)
    {
        mFootnotesWithLeadingSpace = leadingSpace;
    }
    void setFootnoteDestination(int destination) { mFootnoteDestination = destination; }
    void setAnnotationDestination(int destination) { mAnnotationDestination = destination; }

    /**
     * Composes the whole text, then writes it at once. False when the device took less than all
     * of it; errorString() then has the device's words.
     * @param hasInlineMarkup  whether TVLInlineMarkup::toMarkup() was applied to the document;
     *     otherwise a copy takes it, unless in exporting mode
     */
    [[nodiscard]] bool write(const QTextDocument *document, bool hasInlineMarkup);
    /** The bytes that write() would write. */
    [[nodiscard]] QByteArray toRtf(const QTextDocument *document, bool hasInlineMarkup) const;

    [[nodiscard]] QString errorString() const { return mErrorString; }

private:
    QIODevice *mDevice;
    QString mErrorString;
    bool mExportingMode = false;
    bool mHighlightForMsWord = false;
    bool mDecorateHyperlinks = false;
    bool mFootnotesWithLeadingSpace = false;
    int mFootnoteDestination = FootnotesAtPageEnd;
    int mAnnotationDestination = AnnotationsAsComments;
};
