#pragma once

#include "TVLFormat.h"
#include "TVLImportExport.h"
#include "TvlExport.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QPrinter>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <concepts>

class QComboBox;
class QImage;
class QPixmap;
class QTextDocument;

/**
 * Changes texts from one format to another: the one front for all that reads foreign files into
 * documents and writes documents to them.
 *
 * It decides for each format whether the library does the work itself (plain text, RTF, web pages,
 * screenplays, Qt's ODF and PDF) or an outside converter. Results are numbers of
 * TTextTransform::Error, 0 for success; TTextTransform::errorDescription() has their words. Which
 * formats there are is settled at the first question and doesn't change while the program runs.
 *
 * Temporary files go on every path. Only isRtfSafeToLoad(), the export that asks, and questions for
 * an encoding show boxes. Main thread only.
 */
class TVL_EXPORT TVLTextTransform
{
    Q_DECLARE_TR_FUNCTIONS(TVLTextTransform)

public:
    using Format = TVLFormat::Format;
    /**
     * Options of a conversion by name:
     *
     * | Name | Type | Without it |
     * | --- | --- | --- |
     * | `ExportingMode` | bool, see TVLTextRtfWriter::setExportingMode() | true |
     * | `HighlightForMsWord` | bool, see TVLTextRtfWriter | true |
     * | `DecorateHyperlinks` | bool, see TVLTextRtfWriter | false |
     * | `FootnotesWithLeadingSpace` | bool, see TVLTextRtfWriter | false |
     * | `FootnoteDest` | int, see TVLTextRtfWriter | 1 |
     * | `AnnotationDest` | int, see TVLTextRtfWriter | 0 |
     * | `--fdxscriptelements` | TVLScriptElement::toVariant(), for screenplays | those of a new one
     * | | `--fdxcommandparameters` | a list of strings, without effect | | |
     * `--mmdcommandparameters` | a list of strings for the MultiMarkdown converter | |
     */
    using Options = QHash<QString, QVariant>;

    /** @name What there is @{ */
    [[nodiscard]] static QList<Format> exportFormats();
    [[nodiscard]] static QList<Format> importFormats();
    [[nodiscard]] static bool canExport(const QString &suffix);
    [[nodiscard]] static bool canExport(Format format);
    [[nodiscard]] static bool canImport(const QString &suffix);
    [[nodiscard]] static bool canImport(Format format);
    /** Whether a format can be imported, and is one that becomes a text. */
    [[nodiscard]] static bool canImportAsRtf(Format format);
    /** Those of importFormats() that canImportAsRtf(). */
    [[nodiscard]] static QList<Format> importAsRtfFormats();
    /** The extensions of exportFormats(), without dots, in the order of TVLFormat::formatAt(). */
    [[nodiscard]] static QStringList exportExtensions();
    [[nodiscard]] static QStringList importExtensions();
    /** Whether an item of a format is exported by copying its file as it is. */
    [[nodiscard]] static bool exportViaCopy(Format format);
    /** Whether links to items of the project survive in files of a format. */
    [[nodiscard]] static bool supportsTavelinorLinksExport(Format format);
    [[nodiscard]] static TVLImportExport::Engine exportEngine(Format format);
    [[nodiscard]] static TVLImportExport::Engine importEngine(Format format);
    [[nodiscard]] static TVLImportExport::Engine findEngine(Format from, Format to);
    [[nodiscard]] static QString kindleGenFilePath();
    [[nodiscard]] static bool kindleGenExists();
    [[nodiscard]] static bool multiMarkDownExists();
    /** Fills a combo box with formats, their numbers as data; with @p full also books, previews and
     * MultiMarkdown. */
    static void setupFormats(QComboBox *combo, bool full);
    /**
     * Filters of a file dialog for formats, sorted by description; with @p allSupported one for all
     * of them stands first.
     */
    [[nodiscard]] static QStringList toFilter(const QList<Format> &formats, bool allSupported);
    [[nodiscard]] static QStringList importFileFilter(bool allSupported);
    /** @} */

    /** @name Documents @{ */
    /**
     * Writes a document to a file.
     * @param codec         of plain text and MultiMarkdown; the user is asked for an empty one
     * @param error         if given, gets what an outside converter said
     * @param showProgress  whether a dialog shows that an outside converter works
     */
    [[nodiscard]] static unsigned int exportDocument(const QTextDocument *document,
                                                     const QString &path, Format format,
                                                     const QByteArray &codec,
                                                     const Options &options, QString *error,
                                                     bool showProgress);
    /**
     * Writes a document to a file, gives that the format's extension, and tells the user what went
     * wrong. False then, or when an existing file is to stay.
     */
    template <std::same_as<bool> Confirm> // Else `{}` for an encoding would be taken for this.
    static bool exportDocument(const QTextDocument *document, const QString &path, Format format,
                               const Options &options, Confirm confirmOverwrite, QWidget *parent,
                               bool showProgress)
    {
        return exportWithQuestions(document, path, format, options, confirmOverwrite, parent,
                                   showProgress);
    }
    /**
     * Replaces a document's content with that of a file.
     * @param codec  of plain text; the user is asked for an empty one
     */
    [[nodiscard]] static unsigned int importDocument(QTextDocument *document, const QString &path,
                                                     Format format, const Options &options,
                                                     const QByteArray &codec);
    /** Writes MultiMarkdown, or what its converter makes of it beside the file. */
    [[nodiscard]] static unsigned int exportAsMmd(const QTextDocument *document,
                                                  const QString &path, Format format,
                                                  const QByteArray &codec, const Options &options);
    /** Where MultiMarkdown goes: a text with pictures or links gets a folder of its own. */
    [[nodiscard]] static QString mmdExportPath(const QString &path, const QTextDocument *document);
    [[nodiscard]] static unsigned int transformDocumentViaTools(const QTextDocument *document,
                                                                const QString &path,
                                                                Options options, Format format,
                                                                QString *error, bool showProgress);
    [[nodiscard]] static unsigned int transformDocumentViaDoc2Any(const QTextDocument *document,
                                                                  const QString &path,
                                                                  TVLImportExport::Engine engine,
                                                                  Format format, bool showProgress,
                                                                  QString *error = nullptr);
    [[nodiscard]] static unsigned int exportOdfViaQt(const QTextDocument *document,
                                                     const QString &path);
    /** Always 0. */
    static unsigned int exportPdfPsViaQt(const QTextDocument *document,
                                         QPrinter::OutputFormat outputFormat, const QString &path);
    /** @} */

    /** @name Files; a format of 0 is that of the suffix @{ */
    [[nodiscard]] static unsigned int transformFile(const QString &source, Format sourceFormat,
                                                    const QString &target, Format targetFormat,
                                                    const Options &options);
    /** By the library alone; TTextTransform::Unsupported where it knows no way. */
    [[nodiscard]] static unsigned int transformDocQt(const QString &source, Format sourceFormat,
                                                     const QString &target, Format targetFormat,
                                                     const Options &options);
    [[nodiscard]] static unsigned int
    transformFileViaTools(const QString &source, Format sourceFormat, const QString &target,
                          Format targetFormat, QString *error, bool showProgress);
    /**
     * Whether a file of rich text may be read: the program `rtfi` beside the application looks
     * through it first, and where it finds errors the user decides. Without that program, and with
     * a suffix other than `.rtf`, any file may.
     * @param remember  whether the verdict holds for the file until the program ends
     */
    [[nodiscard]] static bool isRtfSafeToLoad(const QString &path, bool remember);
    /** Makes an MP3 of a sound, with the author and the year in it. */
    [[nodiscard]] static unsigned int wavToMp3(const QString &wav, const QString &mp3,
                                               const QString &title);
    /** @} */

    /** @name Pictures; a null one is written nowhere @{ */
    static bool exportPixmap(const QPixmap &pixmap, const QString &path, Format format);
    static bool exportImage(const QImage &image, const QString &path, Format format);
    /** The bytes of a PDF that shows a picture; empty on any failure. */
    [[nodiscard]] static QByteArray toPdf(const QImage &image);
    /** @} */

private:
    static bool exportWithQuestions(const QTextDocument *document, const QString &path,
                                    Format format, const Options &options, bool confirmOverwrite,
                                    QWidget *parent, bool showProgress);
    [[nodiscard]] static unsigned int exportViaTools(const QTextDocument *document,
                                                     const QString &path, Format format,
                                                     const QByteArray &codec,
                                                     const Options &options, QString *error,
                                                     bool showProgress);
};
