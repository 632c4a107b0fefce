#include "TVLTextRtf.h"

#include "TVLCoreUtil.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QTextDocument>

namespace {

void readAsFarAsPossible(const QByteArray &rtf, QTextDocument *document)
{
    document->setUndoRedoEnabled(false);
    TVLTextRtfReader reader(document);
    if (!rtf.isEmpty())
        static_cast<void>(reader.read(rtf));
}

} // namespace

bool TVLTextRtf::toRtfFile(const QString &filePath, const QTextDocument *document, QString *error,
                           bool hasInlineMarkup, bool exporting)
{
    TVLTextRtfWriter composer(nullptr);
    composer.setExportingMode(exporting);
    const QByteArray rtf = composer.toRtf(document, hasInlineMarkup);
    return TVLCoreUtil::WriteBinaryFile(rtf, filePath, error);
}

QByteArray TVLTextRtf::toRtfCData(const QTextDocument *document)
{
    return TVLTextRtfWriter(nullptr).toRtf(document, false);
}

QTextDocumentFragment TVLTextRtf::fromRtfCData(const QByteArray &rtf)
{
    QTextDocument document;
    readAsFarAsPossible(rtf, &document);
    return QTextDocumentFragment(&document);
}

QString TVLTextRtf::rtfToPlainText(const QByteArray &rtf)
{
    QTextDocument document;
    readAsFarAsPossible(rtf, &document);
    return document.toPlainText();
}
