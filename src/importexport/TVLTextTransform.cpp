#include "TVLTextTransform.h"

#include "TTextTransform.h"
#include "TVLImportExportConfig.h"
#include "TVLRtfCheck_p.h"

#include <QComboBox>
#include <QFileInfo>
#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;

const TVLImportExportConfig *config()
{
    return TVLImportExportConfig::instance();
}

/** The formats of a set in the order of their numbers. */
QList<Format> sorted(const QSet<Format> &formats)
{
    QList<Format> list = formats.values();
    std::sort(list.begin(), list.end());
    return list;
}

template <typename Visit>
void forEachExtension(const QList<Format> &formats, Visit visit)
{
    for (int i = 0; i < TVLFormat::formatsCount(); ++i) {
        if (formats.contains(TVLFormat::formatAt(i)))
            visit(i);
    }
}

QStringList extensionsOf(const QList<Format> &formats)
{
    QStringList extensions;
    forEachExtension(formats, [&extensions](int index) {
        extensions.append(TVLFormat::formatExtension(index));
    });
    return extensions;
}

bool isBetween(Format format, Format first, Format last)
{
    return format >= first && format <= last;
}

} // namespace

// --- What there is

QList<Format> TVLTextTransform::exportFormats()
{
    static const QList<Format> formats = sorted(config()->exportFormats());
    return formats;
}

QList<Format> TVLTextTransform::importFormats()
{
    static const QList<Format> formats = sorted(config()->importFormats());
    return formats;
}

bool TVLTextTransform::canExport(const QString &suffix)
{
    return canExport(TVLFormat::format(suffix));
}

bool TVLTextTransform::canExport(Format format)
{
    return exportFormats().contains(format);
}

bool TVLTextTransform::canImport(const QString &suffix)
{
    return canImport(TVLFormat::format(suffix));
}

bool TVLTextTransform::canImport(Format format)
{
    return importFormats().contains(format);
}

bool TVLTextTransform::canImportAsRtf(Format format)
{
    constexpr Format Texts[] = {TVLFormat::PlainText,  TVLFormat::Rtf, TVLFormat::Html,
                                TVLFormat::Odt,        TVLFormat::Doc, TVLFormat::Docx,
                                TVLFormat::FinalDraft, TVLFormat::Mmd, TVLFormat::Markdown,
                                TVLFormat::EPubBook};
    return std::find(std::begin(Texts), std::end(Texts), format) != std::end(Texts)
        && canImport(format);
}

QList<Format> TVLTextTransform::importAsRtfFormats()
{
    QList<Format> formats = importFormats();
    formats.removeIf([](Format format) { return !canImportAsRtf(format); });
    return formats;
}

QStringList TVLTextTransform::exportExtensions()
{
    return extensionsOf(exportFormats());
}

QStringList TVLTextTransform::importExtensions()
{
    return extensionsOf(importFormats());
}

bool TVLTextTransform::exportViaCopy(Format format)
{
    if (isBetween(format, TVLFormat::Pdf, TVLFormat::Psd)
        || isBetween(format, TVLFormat::Mp3, TVLFormat::Mmd))
        return true;
    return format != TVLFormat::NoFormat && format != TVLFormat::Rtf && !canExport(format);
}

bool TVLTextTransform::supportsTavelinorLinksExport(Format format)
{
    const TVLImportExport::Engine engine = exportEngine(format);
    switch (format) {
    case TVLFormat::Html:
    case TVLFormat::Xhtml:
    case TVLFormat::EPub:
    case TVLFormat::Kindle:
    case TVLFormat::PostScript:
        return false;
    case TVLFormat::Doc:
        return engine == TVLImportExport::RtfEngine || engine == TVLImportExport::OfficeEngine;
    case TVLFormat::Docx:
    case TVLFormat::Pdf:
        return engine == TVLImportExport::OfficeEngine;
    default:
        return true;
    }
}

TVLImportExport::Engine TVLTextTransform::exportEngine(Format format)
{
    return config()->exportEngine(format);
}

TVLImportExport::Engine TVLTextTransform::importEngine(Format format)
{
    return config()->importEngine(format);
}

TVLImportExport::Engine TVLTextTransform::findEngine(Format from, Format to)
{
    return config()->findEngine(from, to);
}

QString TVLTextTransform::kindleGenFilePath()
{
    return config()->kindleGenFilePath();
}

bool TVLTextTransform::kindleGenExists()
{
    return config()->kindleGenExists();
}

bool TVLTextTransform::multiMarkDownExists()
{
    return QFileInfo::exists(TTextTransform::tvlDoc2MmdPath());
}

bool TVLTextTransform::isRtfSafeToLoad(const QString &path, bool remember)
{
    return tvlIsRtfSafeToLoad(path, remember);
}

// --- For widgets

void TVLTextTransform::setupFormats(QComboBox *combo, bool full)
{
    struct Entry
    {
        Format format;
        bool isFullOnly = false;
        bool isAsked = false; ///< Whether it is there only if it can be exported.
    };
    constexpr Entry Entries[] = {
        {TVLFormat::Print},
        {TVLFormat::Preview, true},
        {TVLFormat::Pdf},
        {TVLFormat::Rtf},
        {TVLFormat::PlainText},
        {TVLFormat::Doc, false, true},
        {TVLFormat::Docx, false, true},
        {TVLFormat::Odt, false, true},
        {TVLFormat::Html},
        {TVLFormat::Xhtml},
        {TVLFormat::PostScript},
        {TVLFormat::FinalDraft},
        {TVLFormat::EPub, true},
        {TVLFormat::Kindle, true},
        {TVLFormat::Mmd, true},
        {TVLFormat::MmdToHtml, true},
        {TVLFormat::MmdToFlatOdf, true},
        {TVLFormat::MmdToOpml, true},
        {TVLFormat::MmdToLatex, true},
    };
    if (!combo)
        return;
    combo->clear();
    for (const Entry &entry : Entries) {
        if ((full || !entry.isFullOnly) && (!entry.isAsked || canExport(entry.format)))
            combo->addItem(TVLFormat::label(entry.format), int(entry.format));
    }
}

QStringList TVLTextTransform::toFilter(const QList<Format> &formats, bool allSupported)
{
    QMap<QString, QStringList> extensions;
    QStringList all;
    forEachExtension(formats, [&](int index) {
        const TVLFormat::Info info = TVLFormat::formatInfo(index);
        extensions[info.description].append(info.extension);
        all.append(info.extension);
    });
    QStringList filters;
    if (allSupported)
        filters.append(TVLFormat::createFormatFilter(tr("All Supported"), all));
    for (auto it = extensions.cbegin(); it != extensions.cend(); ++it)
        filters.append(TVLFormat::createFormatFilter(it.key(), it.value()));
    return filters;
}

QStringList TVLTextTransform::importFileFilter(bool allSupported)
{
    return toFilter(importFormats(), allSupported);
}
