#include "TVLTextTransform.h"

#include "TTextDoc.h"
#include "TTextTransform.h"
#include "TVLConverters.h"
#include "TVLCoreUtil.h"
#include "TVLFinalDraftWriter.h"
#include "TVLMessageBox.h"
#include "TVLPrinter.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextRtfWriter.h"
#include "TVLTextXhtmlExporter.h"
#include "TVLTransforming_p.h"
#include "TvlFountain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextDocument>
#include <QTextDocumentWriter>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;
using Options = TVLTextTransform::Options;

// --- RTF

/** The comments file of a document in a project's folder; empty for any other file. */
QString commentsFileOf(const QString &path)
{
    const QFileInfo file(path);
    bool isNumber = false;
    const int id = file.baseName().toInt(&isNumber);
    if (!isNumber)
        return {};
    QDir project = file.absoluteDir();
    bool isThere = project.cdUp() && project.cdUp();
    const QDir texts =
        isThere ? TVLProjectFolderFormat::docsDirectory(project.absolutePath(), &isThere) : QDir();
    return isThere
        ? texts.filePath(TVLProjectFolderFormat::documentFileNameId(id, TVL::CommentsFile))
        : QString();
}

bool writeCommentsBeside(const QTextDocument *document, const QString &path)
{
    if (!qobject_cast<const TVLTextDocument *>(document))
        return true;
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document, -1, -1);
    if (comments.isEmpty())
        return true;
    const QString commentsPath = commentsFileOf(path);
    return commentsPath.isEmpty()
        || TVLProjectFolderFormat::writeCommentsFile(commentsPath, comments, nullptr);
}

unsigned int exportRtf(const QTextDocument *document, const QString &path, const Options &options)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return TTextTransform::OutputNotOpened;
    TVLTextRtfWriter writer(&file);
    writer.setExportingMode(options.value(u"ExportingMode"_s, true).toBool());
    writer.setHightlightForMsWord(options.value(u"HighlightForMsWord"_s, true).toBool());
    writer.setDecorateHyperlinks(options.value(u"DecorateHyperlinks"_s, false).toBool());
    writer.setFootnotesWithLeadingSpace(
        options.value(u"FootnotesWithLeadingSpace"_s, false).toBool());
    writer.setFootnoteDestination(options.value(u"FootnoteDest"_s, 1).toInt());
    writer.setAnnotationDestination(options.value(u"AnnotationDest"_s, 0).toInt());
    if (!writer.write(document, false) || !file.flush())
        return TTextTransform::WritingFailed;
    file.close();
    return writeCommentsBeside(document, path) ? TTextTransform::NoError
                                               : TTextTransform::WritingFailed;
}

// --- Other formats that the library writes

unsigned int exportPlainText(const QTextDocument *document, const QString &path,
                             const QByteArray &codec)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return TTextTransform::OutputNotOpened;
    const QByteArray name = tvlExportCodec(codec, path);
    return tvlWriteEncoded(&file, TTextDoc::toPlainText(document), name)
        ? TTextTransform::NoError
        : TTextTransform::WritingFailed;
}

unsigned int exportFinalDraft(const QTextDocument *document, const QString &path,
                              const Options &options)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return TTextTransform::OutputNotOpened;
    const bool isWritten =
        TVLFinalDraftWriter::write(&file, document, tvlScriptElementsOf(options)) && file.flush();
    return isWritten ? TTextTransform::NoError : TTextTransform::WritingFailed;
}

unsigned int exportWebPage(const QTextDocument *document, const QString &path, Format format)
{
    TVLTextXhtmlExporter exporter(document);
    bool isWritten = false;
    if (format == TVLFormat::Html) {
        isWritten = exporter.toHtml(path, TVLTextXhtmlExporter::PicturesBeside);
    } else if (format == TVLFormat::Xhtml) {
        isWritten = exporter.toXhtml(path, TVLTextXhtmlExporter::PicturesBeside);
    } else {
        const bool isBook = path.endsWith(u".epub"_s) || path.endsWith(u".mobi"_s);
        isWritten = exporter.toEPubXhtml(isBook ? path.chopped(5) + u".xhtml"_s : path, {}, nullptr,
                                         nullptr);
    }
    return isWritten ? TTextTransform::NoError : TTextTransform::WritingFailed;
}

/** Qt's printers write PDF alone, of which a program of the system makes PostScript. */
unsigned int exportPostScript(const QTextDocument *document, const QString &path, QString *error,
                              bool showProgress)
{
    const QString program = TVLConverters::findProgram(u"pdftops"_s);
    if (program.isEmpty())
        return TTextTransform::ConverterNotFound;
    const TVLTemporaryFile pdf(u"pdf"_s);
    (void)TVLTextTransform::exportPdfPsViaQt(document, QPrinter::PdfFormat, pdf.path());
    return TTextTransform::transformProcess(program,
                                            {pdf.path(), QFileInfo(path).absoluteFilePath()},
                                            QDir::tempPath(), error, showProgress);
}

// --- What went wrong

QString tr(const char *text)
{
    return QCoreApplication::translate("TVLTextTransform", text);
}

void showExportError(unsigned int result, const QString &path, const QString &converterError,
                     QWidget *parent)
{
    QString message;
    switch (result) {
    case TTextTransform::ConverterNotFound:
        message = tr("Format Converter not found.");
        break;
    case TTextTransform::WordNeeded:
        message = tr("May require MS Word to be installed.");
        break;
    case TTextTransform::Unsupported:
        message = tr("Document type is unsupported.");
        break;
    case TTextTransform::WritingFailed:
        TVLMessageBox::couldNotWrite(parent, TVLMessageBox::FileEntity, path, tr("Export Error"));
        break;
    case TTextTransform::OutputNotOpened:
        TVLMessageBox::couldNotOpenForWrite(parent, TVLMessageBox::FileEntity, path);
        break;
    default:
        message = tr("Unknown error");
    }
    if (!converterError.isEmpty())
        message += u'\n' + tr("Converter Error: %1").arg(converterError);
    if (!message.isEmpty())
        TVLMessageBox::showMessageBox(parent, tr("Document Converter"),
                                      tr("Could not convert to required format"), message,
                                      QMessageBox::Warning);
}

} // namespace

unsigned int TVLTextTransform::exportDocument(const QTextDocument *document, const QString &path,
                                              Format format, const QByteArray &codec,
                                              const Options &options, QString *error,
                                              bool showProgress)
{
    const TVLImportExport::Engine engine = exportEngine(format);
    if (format == TVLFormat::Doc && engine == TVLImportExport::RtfEngine)
        return exportRtf(document, path, options);
    switch (format) {
    case TVLFormat::PlainText:
        return exportPlainText(document, path, codec);
    case TVLFormat::Rtf:
        return exportRtf(document, path, options);
    case TVLFormat::Html:
    case TVLFormat::Xhtml:
    case TVLFormat::EPub:
    case TVLFormat::Kindle:
        return exportWebPage(document, path, format);
    case TVLFormat::Odt:
        return engine == TVLImportExport::QtEngine
            ? exportOdfViaQt(document, path)
            : transformDocumentViaDoc2Any(document, path, engine, format, showProgress, error);
    case TVLFormat::Pdf:
        return engine == TVLImportExport::QtEngine
            ? exportPdfPsViaQt(document, QPrinter::PdfFormat, path)
            : transformDocumentViaDoc2Any(document, path, engine, format, showProgress, error);
    case TVLFormat::PostScript:
        return engine == TVLImportExport::QtEngine
            ? exportPostScript(document, path, error, showProgress)
            : transformDocumentViaDoc2Any(document, path, engine, format, showProgress, error);
    case TVLFormat::FinalDraft:
        return exportFinalDraft(document, path, options);
    case TVLFormat::MmdToHtml:
    case TVLFormat::MmdToLatex:
    case TVLFormat::MmdToOpml:
    case TVLFormat::MmdToFlatOdf:
    case TVLFormat::Mmd:
        return multiMarkDownExists() ? exportAsMmd(document, path, format, codec, options)
                                     : TTextTransform::ConverterNotFound;
    case TVLFormat::Fountain:
        return TvlFountain::writeFile(path, document, tvlScriptElementsOf(options), error)
            ? TTextTransform::NoError
            : TTextTransform::IntermediateMissing;
    default:
        return exportViaTools(document, path, format, codec, options, error, showProgress);
    }
}

// --- By way of RTF

unsigned int TVLTextTransform::exportViaTools(const QTextDocument *document, const QString &path,
                                              Format format, const QByteArray &codec,
                                              const Options &options, QString *error,
                                              bool showProgress)
{
    const TVLTemporaryFile rtf(u".rtf"_s);
    if (const unsigned int result = exportDocument(document, rtf.path(), TVLFormat::Rtf, codec,
                                                   options, error, showProgress))
        return result;
    if (!QFileInfo::exists(rtf.path()))
        return TTextTransform::IntermediateMissing;
    return transformFileViaTools(rtf.path(), TVLFormat::Rtf, path, format, error, showProgress);
}

unsigned int TVLTextTransform::transformDocumentViaTools(const QTextDocument *document,
                                                         const QString &path, Options options,
                                                         Format format, QString *error,
                                                         bool showProgress)
{
    if (options.isEmpty())
        options = {{u"ExportingMode"_s, true},      {u"HighlightForMsWord"_s, true},
                   {u"DecorateHyperlinks"_s, true}, {u"FootnotesWithLeadingSpace"_s, true},
                   {u"AnnotationDest"_s, 0},        {u"FootnoteDest"_s, 1}};
    return exportViaTools(document, path, format, "UTF-8", options, error, showProgress);
}

unsigned int TVLTextTransform::transformDocumentViaDoc2Any(const QTextDocument *document,
                                                           const QString &path,
                                                           TVLImportExport::Engine engine,
                                                           Format format, bool showProgress,
                                                           QString *error)
{
    const Options options = {
        {u"FootnotesWithLeadingSpace"_s, true}, {u"AnnotationDest"_s, 0}, {u"FootnoteDest"_s, 1}};
    const TVLTemporaryFile rtf(u"rtf"_s);
    if (const unsigned int result = exportDocument(document, rtf.path(), TVLFormat::Rtf, "UTF-8",
                                                   options, error, showProgress))
        return result;
    if (!QFileInfo::exists(rtf.path()))
        return TTextTransform::IntermediateMissing;
    if (!TVLCoreUtil::IsReadable(rtf.path(), nullptr))
        return TTextTransform::InputUnreadable;
    return TTextTransform::transformDoc2Any(rtf.path(), path, format, engine, error, showProgress);
}

// --- By Qt

unsigned int TVLTextTransform::exportOdfViaQt(const QTextDocument *document, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return TTextTransform::OutputNotOpened;
    QTextDocumentWriter writer(&file, "ODF");
    return writer.write(document) && file.flush() ? TTextTransform::NoError
                                                  : TTextTransform::WritingFailed;
}

unsigned int TVLTextTransform::exportPdfPsViaQt(const QTextDocument *document,
                                                QPrinter::OutputFormat outputFormat,
                                                const QString &path)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(outputFormat);
    printer.setOutputFileName(path);
    TVLPrinter::preparePrinterForDocument(&printer, document);
    TVLPrinter::print(&printer, document, false, nullptr, nullptr);
    return TTextTransform::NoError;
}

// --- With questions

bool TVLTextTransform::exportWithQuestions(const QTextDocument *document, const QString &path,
                                           Format format, const Options &options,
                                           bool confirmOverwrite, QWidget *parent,
                                           bool showProgress)
{
    if (!document || path.isEmpty() || format == TVLFormat::Print || !canExport(format))
        return false;
    const QString filePath = tvlWithExtension(path, format);
    if (confirmOverwrite && QFileInfo::exists(filePath)
        && TVLMessageBox::confirmOverwrite(parent, TVLMessageBox::FileEntity, filePath,
                                           QMessageBox::Yes | QMessageBox::No)
            != QMessageBox::Yes)
        return false;
    QString converterError;
    const unsigned int result =
        exportDocument(document, filePath, format, {}, options, &converterError, showProgress);
    if (result != TTextTransform::NoError)
        showExportError(result, filePath, converterError, parent);
    return result == TTextTransform::NoError;
}
