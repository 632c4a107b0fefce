#include "TVLTextTransform.h"

#include "TTextTransform.h"
#include "TVLFinalDraftReader.h"
#include "TVLRegularFile.h"
#include "TVLTextRtfReader.h"
#include "TVLTransforming_p.h"
#include "TvlFountain.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextDocument>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;
using Options = TVLTextTransform::Options;

unsigned int importPlainText(QTextDocument *document, const QString &path, const QByteArray &codec)
{
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return TTextTransform::InputUnreadable;
    const std::optional<QString> text = tvlReadEncoded(&file, tvlImportCodec(codec, path));
    if (!text)
        return TTextTransform::InputUnreadable;
    document->setPlainText(*text);
    return TTextTransform::NoError;
}

unsigned int importRtf(QTextDocument *document, const QString &path)
{
    if (!TVLTextTransform::isRtfSafeToLoad(path, false))
        return TTextTransform::InputNotParsed;
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return TTextTransform::InputUnreadable;
    TVLTextRtfReader reader(document);
    return reader.read(&file) ? TTextTransform::NoError : TTextTransform::InputNotParsed;
}

unsigned int importFinalDraft(QTextDocument *document, const QString &path, const Options &options)
{
    TVLFinalDraftReader reader;
    if (!reader.load(path))
        return TTextTransform::InputUnreadable;
    return reader.read(document, tvlScriptElementsOf(options)) ? TTextTransform::NoError
                                                               : TTextTransform::InputNotParsed;
}

unsigned int importFountain(QTextDocument *document, const QString &path, const Options &options)
{
    QString error;
    const QString text =
        TVLCoreUtil::ReadUnicodeTextFile(path, &error, tvlImportCodec(QByteArray(), path));
    if (!error.isEmpty())
        return TTextTransform::InputUnreadable;
    if (text.isEmpty())
        return TTextTransform::NoError;
    return TvlFountain::parseText(text, document, tvlScriptElementsOf(options))
        ? TTextTransform::NoError
        : TTextTransform::InputNotParsed;
}

unsigned int importViaTools(QTextDocument *document, const QString &path, Format format)
{
    // The text in between is nobody else's to read, and no link in its place leads elsewhere.
    const QTemporaryDir folder(QDir::tempPath() + u"/tavel-import"_s);
    const QString rtf = QDir::toNativeSeparators(folder.filePath(u"transform.rtf"_s));
    const unsigned int result = TTextTransform::transformFileViaTools(
        path, rtf, TVLFormat::Rtf, TVLTextTransform::importEngine(format), nullptr, true);
    return result == TTextTransform::NoError ? importRtf(document, rtf) : result;
}

Format resolved(Format format, const QString &path)
{
    return format == TVLFormat::NoFormat ? TVLFormat::format(path) : format;
}

template <std::size_t Size>
bool isAmong(const std::array<Format, Size> &formats, Format format)
{
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

} // namespace

unsigned int TVLTextTransform::importDocument(QTextDocument *document, const QString &path,
                                              Format format, const Options &options,
                                              const QByteArray &codec)
{
    if (!QFileInfo(path).isReadable())
        return TTextTransform::InputUnreadable;
    switch (resolved(format, path)) {
    case TVLFormat::PlainText:
    case TVLFormat::Mmd:
        return importPlainText(document, path, codec);
    case TVLFormat::Rtf:
        return importRtf(document, path);
    case TVLFormat::FinalDraft:
        return importFinalDraft(document, path, options);
    case TVLFormat::Fountain:
        return importFountain(document, path, options);
    default:
        return importViaTools(document, path, resolved(format, path));
    }
}

// --- File to file

unsigned int TVLTextTransform::transformFile(const QString &source, Format sourceFormat,
                                             const QString &target, Format targetFormat,
                                             const Options &options)
{
    const Format from = resolved(sourceFormat, source);
    const Format to = resolved(targetFormat, target);
    const unsigned int result = transformDocQt(source, from, target, to, options);
    if (result != TTextTransform::Unsupported)
        return result;
    return transformFileViaTools(source, from, target, to, nullptr, true);
}

unsigned int TVLTextTransform::transformDocQt(const QString &source, Format sourceFormat,
                                              const QString &target, Format targetFormat,
                                              const Options &options)
{
    constexpr std::array Sources = {TVLFormat::PlainText,  TVLFormat::Rtf, TVLFormat::Html,
                                    TVLFormat::FinalDraft, TVLFormat::Mmd, TVLFormat::Fountain};
    constexpr std::array Targets = {
        TVLFormat::PlainText, TVLFormat::Rtf,          TVLFormat::Html,      TVLFormat::Odt,
        TVLFormat::Pdf,       TVLFormat::PostScript,   TVLFormat::MmdToHtml, TVLFormat::MmdToLatex,
        TVLFormat::MmdToOpml, TVLFormat::MmdToFlatOdf, TVLFormat::Mmd};
    const Format from = resolved(sourceFormat, source);
    const Format to = resolved(targetFormat, target);
    if (!isAmong(Sources, from) || !isAmong(Targets, to))
        return TTextTransform::Unsupported;
    QTextDocument document;
    if (const unsigned int result = importDocument(&document, source, from, options, {}))
        return result;
    return exportDocument(&document, target, to, {}, {}, nullptr, true);
}

unsigned int TVLTextTransform::transformFileViaTools(const QString &source, Format sourceFormat,
                                                     const QString &target, Format targetFormat,
                                                     QString *error, bool showProgress)
{
    const Format from = resolved(sourceFormat, source);
    const Format to = resolved(targetFormat, target);
    return TTextTransform::transformFileViaTools(source, target, to, findEngine(from, to), error,
                                                 showProgress);
}
