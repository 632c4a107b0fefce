#pragma once

#include "TVLImportExport.h"
#include "TvlExport.h"

#include <QObject>
#include <QString>
#include <QStringList>

/**
 * A document format, and all that is known of formats.
 *
 * The numbers are kept in settings and in the data of widgets, and never change. A value of this
 * class is a TVLFormat::Format and converts to and from one.
 *
 * The formats' extensions have an order, by which formatsCount(), formatAt(), formatInfo() and
 * formatExtension() go: each format as often as it has extensions, so one that has none isn't in
 * it.
 */
class TVL_EXPORT TVLFormat
{
    Q_GADGET

public:
    enum Format : int {
        NoFormat = 0, ///< None given: a file name's suffix says what it is.
        Print = 1, ///< A printer.
        Preview = 2, ///< What would be printed, on the screen.
        PlainText = 3,
        Rtf = 4,
        Html = 5,
        Xhtml = 6,
        EPub = 7, ///< The text of an ePub book, which somebody else packs.
        Kindle = 8,
        Odt = 9,
        Doc = 10,
        Docx = 11,
        Pdf = 12,
        PostScript = 13,
        Bmp = 14,
        Gif = 15,
        Jpeg = 16,
        Png = 17,
        Tiff = 18,
        Svg = 19,
        WebP = 20,
        Psd = 21,
        WebArchive = 22,
        Mp3 = 23,
        Wav = 24,
        Mpeg4Audio = 25,
        Ogg = 26,
        Mpeg4Video = 27,
        QuickTime = 28,
        Avi = 29,
        MpegVideo = 30,
        FinalDraft = 31,
        MmdToHtml = 32,
        MmdToLatex = 33,
        MmdToOpml = 34,
        MmdToFlatOdf = 35,
        Mmd = 36, ///< MultiMarkdown itself.
        Opml = 37,
        MindMap = 38,
        Markdown = 39,
        EPubBook = 40, ///< A whole ePub book.
        Fountain = 41,
    };
    Q_ENUM(Format)

    /** What a file of a format is to the user. */
    enum Kind : int {
        NoKind = 0, ///< A number that is no format.
        PrinterKind = 1, ///< No file at all.
        TextKind = 2,
        PageKind = 3, ///< Laid out on pages.
        WebKind = 4,
        ScriptKind = 5,
        OutlineKind = 6,
        ImageKind = 7,
        MediaKind = 8,
    };
    Q_ENUM(Kind)

    /** What an extension is to a file dialog. */
    struct Info
    {
        QString description;
        QString extension;
    };

    constexpr TVLFormat(Format format = NoFormat)
        : mFormat(format)
    {
    }
    constexpr operator Format() const { return mFormat; }

    /**
     * The format of a file's suffix, with or without its dot, or of a file's name or path, in
     * capitals or not; NoFormat for one that isn't known. An extension that several formats have is
     * that of the one which is read from files or written by itself: `html` is a web page, `opml`
     * an outline and `epub` a whole book.
     */
    [[nodiscard]] static Format format(const QString &suffixOrPath);

    /** How many extensions there are; a format may have several. */
    [[nodiscard]] static int formatsCount();
    /** The format of the extension at a place in their order; NoFormat if there is no such place.
     */
    [[nodiscard]] static Format formatAt(int index);
    /** The description and the extension at a place in the order of extensions. */
    [[nodiscard]] static Info formatInfo(int index);
    /** The extension at a place in their order, without its dot. */
    [[nodiscard]] static QString formatExtension(int index);
    /** The same as extension(): a format isn't a place, although it would convert to a number. */
    [[nodiscard]] static QString formatExtension(Format format) { return extension(format); }

    /** The first extension of a format, without its dot; empty for one that has none. */
    [[nodiscard]] static QString extension(Format format);
    /** All extensions of a format, without their dots. */
    [[nodiscard]] static QStringList extensions(Format format);
    /** What a file dialog says of a format; formats may share it. */
    [[nodiscard]] static QString description(Format format);
    /** What a list to choose from says of a format, which has it to itself. */
    [[nodiscard]] static QString label(Format format);
    [[nodiscard]] static Kind kind(Format format);

    /** What reads a format where all converters are installed; NoEngine for one that isn't read. */
    [[nodiscard]] static TVLImportExport::Engine tableImportEngine(Format format);
    /** What writes a format where all converters are installed; NoEngine for one that isn't
     * written. */
    [[nodiscard]] static TVLImportExport::Engine tableExportEngine(Format format);

    /** Whether a format is MultiMarkdown or something that is made of it. */
    [[nodiscard]] static bool isMmdVariant(Format format);

    /** A filter of a file dialog, such as `Web Page (*.html *.htm)`; each extension stands there
     * once.
     */
    [[nodiscard]] static QString createFormatFilter(const QString &description,
                                                    const QStringList &extensions);

private:
    Format mFormat;
};
