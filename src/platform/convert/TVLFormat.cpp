#include "TVLFormat.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

constexpr int MostExtensions = 3;
constexpr int LastFormat = TVLFormat::Fountain;

/** Whether an extension leads to a format. */
enum class Suffix {
    Own, ///< It does.
    Shared, ///< It leads to another format, to which it belongs more.
};

struct FormatRow
{
    TVLFormat::Format format;
    const char *label;
    const char *description;
    std::array<QStringView, MostExtensions> extensions;
    Suffix suffix;
    TVLFormat::Kind kind;
    Engine importEngine;
    Engine exportEngine;
};

#define TEXT(text) QT_TRANSLATE_NOOP("TVLFormat", text)

// clang-format off
constexpr FormatRow FormatRows[] = {
    {TVLFormat::Print, TEXT("Print"), TEXT("Print"), {},
     Suffix::Own, TVLFormat::PrinterKind, NoEngine, NoEngine},
    {TVLFormat::Preview, TEXT("Preview"), TEXT("Preview"), {},
     Suffix::Own, TVLFormat::PrinterKind, NoEngine, NoEngine},
    {TVLFormat::PlainText, TEXT("Plain Text (.txt)"), TEXT("Plain Text"), {u"txt", u"text"},
     Suffix::Own, TVLFormat::TextKind, LibraryEngine, LibraryEngine},
    {TVLFormat::Rtf, TEXT("Rich Text Format (.rtf - Word compatible)"), TEXT("Rich Text Format"),
     {u"rtf"}, Suffix::Own, TVLFormat::TextKind, LibraryEngine, LibraryEngine},
    {TVLFormat::Html, TEXT("Web Page (.html)"), TEXT("Web Page"), {u"html", u"htm"},
     Suffix::Own, TVLFormat::WebKind, MarkupEngine, LibraryEngine},
    {TVLFormat::Xhtml, TEXT("eXtensible Web Page (.xhtml)"), TEXT("eXtensible Web Page"),
     {u"xhtml"}, Suffix::Own, TVLFormat::WebKind, MarkupEngine, LibraryEngine},
    {TVLFormat::EPub, TEXT("ePub eBook (.epub)"), TEXT("ePub eBook"), {u"epub"},
     Suffix::Shared, TVLFormat::TextKind, NoEngine, LibraryEngine},
    {TVLFormat::Kindle, TEXT("Kindle(Mobi) Book (.mobi)"), TEXT("Kindle(Mobi) Book"), {u"mobi"},
     Suffix::Own, TVLFormat::TextKind, NoEngine, LibraryEngine},
    {TVLFormat::Odt, TEXT("OpenDocument Format (.odt)"), TEXT("OpenDocument Format"), {u"odt"},
     Suffix::Own, TVLFormat::TextKind, OfficeEngine, OfficeEngine},
    {TVLFormat::Doc, TEXT("Word Document (.doc)"), TEXT("Word Document"), {u"doc"},
     Suffix::Own, TVLFormat::TextKind, OfficeEngine, OfficeEngine},
    {TVLFormat::Docx, TEXT("Word Document (.docx)"), TEXT("Word Document"), {u"docx"},
     Suffix::Own, TVLFormat::TextKind, OfficeEngine, OfficeEngine},
    {TVLFormat::Pdf, TEXT("PDF (.pdf)"), TEXT("PDF"), {u"pdf"},
     Suffix::Own, TVLFormat::PageKind, NoEngine, QtEngine},
    {TVLFormat::PostScript, TEXT("PostScript (.ps)"), TEXT("PostScript"), {u"ps"},
     Suffix::Own, TVLFormat::PageKind, NoEngine, QtEngine},
    {TVLFormat::Bmp, TEXT("BMP Image (.bmp)"), TEXT("Image"), {u"bmp"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Gif, TEXT("GIF Image (.gif)"), TEXT("Image"), {u"gif"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Jpeg, TEXT("JPEG Image (.jpg)"), TEXT("Image"), {u"jpg", u"jpeg"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Png, TEXT("PNG Image (.png)"), TEXT("Image"), {u"png"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Tiff, TEXT("TIFF Image (.tiff)"), TEXT("Image"), {u"tiff", u"tif"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Svg, TEXT("SVG Image (.svg)"), TEXT("Image"), {u"svg"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::WebP, TEXT("WebP Image (.webp)"), TEXT("Image"), {u"webp"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::Psd, TEXT("Layered Image (.psd)"), TEXT("Image"), {u"psd"},
     Suffix::Own, TVLFormat::ImageKind, NoEngine, NoEngine},
    {TVLFormat::WebArchive, TEXT("Web Archive (.mht)"), TEXT("Web Archive"),
     {u"mht", u"mhtml", u"webarchive"}, Suffix::Own, TVLFormat::WebKind, NoEngine, NoEngine},
    {TVLFormat::Mp3, TEXT("MP3 Audio (.mp3)"), TEXT("Audio"), {u"mp3"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::Wav, TEXT("Wave Audio (.wav)"), TEXT("Audio"), {u"wav"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::Mpeg4Audio, TEXT("MPEG-4 Audio (.m4a)"), TEXT("Audio"), {u"m4a", u"aac"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::Ogg, TEXT("Ogg Audio (.ogg)"), TEXT("Audio"), {u"ogg", u"oga"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::Mpeg4Video, TEXT("MPEG-4 Video (.mp4)"), TEXT("Video"), {u"mp4", u"m4v"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::QuickTime, TEXT("QuickTime Video (.mov)"), TEXT("Video"), {u"mov"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::Avi, TEXT("AVI Video (.avi)"), TEXT("Video"), {u"avi"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::MpegVideo, TEXT("MPEG Video (.mpg)"), TEXT("Video"), {u"mpg", u"mpeg"},
     Suffix::Own, TVLFormat::MediaKind, NoEngine, NoEngine},
    {TVLFormat::FinalDraft, TEXT("Final Draft (.fdx)"), TEXT("Final Draft"), {u"fdx"},
     Suffix::Own, TVLFormat::ScriptKind, LibraryEngine, LibraryEngine},
    {TVLFormat::MmdToHtml, TEXT("MultiMarkdown to Web Page (.html)"),
     TEXT("MultiMarkdown to Web Page"), {u"html"},
     Suffix::Shared, TVLFormat::WebKind, NoEngine, MultiMarkdownEngine},
    {TVLFormat::MmdToLatex, TEXT("MultiMarkdown to Latex (.tex)"), TEXT("MultiMarkdown to Latex"),
     {u"tex"}, Suffix::Own, TVLFormat::TextKind, NoEngine, MultiMarkdownEngine},
    {TVLFormat::MmdToOpml,
     TEXT("MultiMarkdown to Outline Processor Markup Language (.opml)"),
     TEXT("MultiMarkdown to Outline Processor Markup Language"), {u"opml"},
     Suffix::Shared, TVLFormat::OutlineKind, NoEngine, MultiMarkdownEngine},
    {TVLFormat::MmdToFlatOdf, TEXT("MultiMarkdown to OpenDocument Flat XML (.fodt)"),
     TEXT("MultiMarkdown to OpenDocument Flat XML"), {u"fodt"},
     Suffix::Own, TVLFormat::TextKind, NoEngine, MultiMarkdownEngine},
    {TVLFormat::Mmd, TEXT("MultiMarkdown (.mmd)"), TEXT("MultiMarkdown"), {u"mmd"},
     Suffix::Own, TVLFormat::TextKind, LibraryEngine, MultiMarkdownEngine},
    {TVLFormat::Opml, TEXT("Outline (.opml)"), TEXT("Outline"), {u"opml"},
     Suffix::Own, TVLFormat::OutlineKind, NoEngine, NoEngine},
    {TVLFormat::MindMap, TEXT("Mind Map (.mm)"), TEXT("Mind Map"), {u"mm"},
     Suffix::Own, TVLFormat::OutlineKind, NoEngine, NoEngine},
    {TVLFormat::Markdown, TEXT("Markdown (.md)"), TEXT("Markdown"), {u"md", u"markdown"},
     Suffix::Own, TVLFormat::TextKind, MarkupEngine, MarkupEngine},
    {TVLFormat::EPubBook, TEXT("ePub eBook, whole (.epub)"), TEXT("ePub eBook"), {u"epub"},
     Suffix::Own, TVLFormat::TextKind, MarkupEngine, MarkupEngine},
    {TVLFormat::Fountain, TEXT("Fountain (.fountain)"), TEXT("Fountain"), {u"fountain"},
     Suffix::Own, TVLFormat::ScriptKind, LibraryEngine, LibraryEngine},
};
// clang-format on

#undef TEXT

/** Whether each number has its row, at the place that follows from it. */
constexpr bool isFormatTableComplete()
{
    if (std::size(FormatRows) != LastFormat)
        return false;
    for (int i = 0; i < LastFormat; ++i) {
        if (FormatRows[i].format != i + 1 || FormatRows[i].kind == TVLFormat::NoKind)
            return false;
    }
    return true;
}

static_assert(isFormatTableComplete(), "every format has a row, in the order of their numbers");

const FormatRow *rowOfFormat(TVLFormat::Format format)
{
    const bool isFormat = format > TVLFormat::NoFormat && format <= LastFormat;
    return isFormat ? &FormatRows[format - 1] : nullptr;
}

QString translated(const char *text)
{
    return QCoreApplication::translate("TVLFormat", text);
}

struct ExtensionPlace
{
    const FormatRow *row;
    QStringView extension;
};

const QList<ExtensionPlace> &extensionPlaces()
{
    static const QList<ExtensionPlace> places = [] {
        QList<ExtensionPlace> list;
        for (const FormatRow &row : FormatRows) {
            for (const QStringView extension : row.extensions) {
                if (!extension.isEmpty())
                    list.append({&row, extension});
            }
        }
        return list;
    }();
    return places;
}

const ExtensionPlace *extensionPlace(int index)
{
    const QList<ExtensionPlace> &places = extensionPlaces();
    return index >= 0 && index < places.size() ? &places.at(index) : nullptr;
}

/** The suffix of a path or of a file's name; a text that has no dot is a suffix itself. */
QString suffixIn(const QString &suffixOrPath)
{
    const bool isName = suffixOrPath.contains(u'.') || suffixOrPath.contains(u'/');
    return isName ? QFileInfo(suffixOrPath).suffix() : suffixOrPath;
}

} // namespace

TVLFormat::Format TVLFormat::format(const QString &suffixOrPath)
{
    const QString suffix = suffixIn(suffixOrPath);
    for (const ExtensionPlace &place : extensionPlaces()) {
        const bool isOwn = place.row->suffix == Suffix::Own;
        if (isOwn && place.extension.compare(suffix, Qt::CaseInsensitive) == 0)
            return place.row->format;
    }
    return NoFormat;
}

int TVLFormat::formatsCount()
{
    return int(extensionPlaces().size());
}

TVLFormat::Format TVLFormat::formatAt(int index)
{
    const ExtensionPlace *place = extensionPlace(index);
    return place ? place->row->format : NoFormat;
}

TVLFormat::Info TVLFormat::formatInfo(int index)
{
    const ExtensionPlace *place = extensionPlace(index);
    return place ? Info{translated(place->row->description), place->extension.toString()} : Info{};
}

QString TVLFormat::formatExtension(int index)
{
    const ExtensionPlace *place = extensionPlace(index);
    return place ? place->extension.toString() : QString();
}

QString TVLFormat::extension(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? row->extensions.front().toString() : QString();
}

QStringList TVLFormat::extensions(Format format)
{
    QStringList list;
    for (const ExtensionPlace &place : extensionPlaces()) {
        if (place.row->format == format)
            list.append(place.extension.toString());
    }
    return list;
}

QString TVLFormat::description(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? translated(row->description) : QString();
}

QString TVLFormat::label(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? translated(row->label) : QString();
}

TVLFormat::Kind TVLFormat::kind(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? row->kind : NoKind;
}

Engine TVLFormat::tableImportEngine(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? row->importEngine : NoEngine;
}

Engine TVLFormat::tableExportEngine(Format format)
{
    const FormatRow *row = rowOfFormat(format);
    return row ? row->exportEngine : NoEngine;
}

bool TVLFormat::isMmdVariant(Format format)
{
    return format >= MmdToHtml && format <= Mmd;
}

QString TVLFormat::createFormatFilter(const QString &description, const QStringList &extensions)
{
    QStringList patterns;
    for (const QString &extension : extensions) {
        const QString pattern = u"*."_s + extension;
        if (!patterns.contains(pattern))
            patterns.append(pattern);
    }
    return u"%1 (%2)"_s.arg(description, patterns.join(u' '));
}
