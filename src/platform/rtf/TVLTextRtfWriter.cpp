#include "TVLTextRtfWriter.h"

#include "TVLInlineMarkup.h"
#include "TVLRtfComposer_p.h"
#include "TVLTextCopy_p.h"

#include <QIODevice>
#include <QTextDocument>

#include <memory>

TVLTextRtfWriter::TVLTextRtfWriter(QIODevice *device)
    : mDevice(device)
{
}

QByteArray TVLTextRtfWriter::toRtf(const QTextDocument *document, bool hasInlineMarkup) const
{
    std::unique_ptr<QTextDocument> markedUp;
    if (!hasInlineMarkup && !mExportingMode) {
        markedUp.reset(tvlCloneDocument(document, nullptr));
        markedUp->setUndoRedoEnabled(false);
        TVLInlineMarkup::toMarkup(markedUp.get());
        document = markedUp.get();
    }
    return TVLRtfComposer(document,
                          {.mExporting = mExportingMode,
                           .mHighlightForMsWord = mHighlightForMsWord,
                           .mDecorateHyperlinks = mDecorateHyperlinks,
                           .mFootnotesWithLeadingSpace = mFootnotesWithLeadingSpace,
                           .mFootnoteDestination = mFootnoteDestination,
                           .mAnnotationDestination = mAnnotationDestination})
        .compose();
}

bool TVLTextRtfWriter::write(const QTextDocument *document, bool hasInlineMarkup)
{
    const QByteArray rtf = toRtf(document, hasInlineMarkup);
    const bool written = mDevice->write(rtf) == rtf.size();
    mErrorString = written ? QString() : mDevice->errorString();
    return written;
}
