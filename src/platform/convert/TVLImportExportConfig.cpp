#include "TVLImportExportConfig.h"

#include "TTextTransform.h"
#include "TVLConverters.h"
#include "TVLOptions.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

/** What writes a format where its converter isn't installed. */
Engine plainerExportEngine(TVLFormat::Format format)
{
    switch (format) {
    case TVLFormat::Odt:
        return QtEngine;
    case TVLFormat::Doc:
        return RtfEngine;
    default:
        return NoEngine;
    }
}

/** What reads a format where its converter isn't installed. */
Engine plainerImportEngine(TVLFormat::Format format)
{
    const bool isPage = format == TVLFormat::Html || format == TVLFormat::Xhtml;
    return isPage ? OfficeEngine : NoEngine;
}

bool isOutside(Engine engine)
{
    return engine == OfficeEngine || engine == MarkupEngine || engine == PlainOfficeEngine;
}

/** An engine, or the one that is missing where there is none. */
Engine orMissing(Engine engine, Engine missing)
{
    return engine == NoEngine ? missing : engine;
}

} // namespace

TVLImportExportConfig::TVLImportExportConfig(Converters converters)
    : mConverters(converters)
{
    for (int index = 0; index < TVLFormat::formatsCount(); ++index) {
        const Format format = TVLFormat::formatAt(index);
        if (importEngine(format) != NoEngine)
            mImportFormats.insert(format);
        if (exportEngine(format) != NoEngine)
            mExportFormats.insert(format);
    }
}

const TVLImportExportConfig *TVLImportExportConfig::instance()
{
    static const TVLImportExportConfig config(installedConverters());
    return &config;
}

TVLImportExportConfig::Converters TVLImportExportConfig::installedConverters()
{
    const bool hasConverter = QFileInfo(TTextTransform::doc2AnyPath()).isFile();
    return {.hasOffice = hasConverter && !TVLConverters::officePath().isEmpty(),
            .hasMarkup = hasConverter && !TVLConverters::markupPath().isEmpty()};
}

bool TVLImportExportConfig::isInstalled(Engine engine) const
{
    switch (engine) {
    case OfficeEngine:
    case PlainOfficeEngine:
        return mConverters.hasOffice;
    case MarkupEngine:
        return mConverters.hasMarkup;
    default:
        return true;
    }
}

Engine TVLImportExportConfig::importEngine(Format format) const
{
    const Engine engine = TVLFormat::tableImportEngine(format);
    if (isInstalled(engine))
        return engine;
    const Engine plainer = plainerImportEngine(format);
    return isInstalled(plainer) ? plainer : NoEngine;
}

Engine TVLImportExportConfig::exportEngine(Format format) const
{
    const Engine engine = TVLFormat::tableExportEngine(format);
    // pandoc is given what an office has made of rich text.
    const bool isServed = isInstalled(engine) && (engine != MarkupEngine || mConverters.hasOffice);
    return isServed ? engine : plainerExportEngine(format);
}

Engine TVLImportExportConfig::findEngine(Format from, Format to) const
{
    const Engine reading = orMissing(importEngine(from), TVLFormat::tableImportEngine(from));
    return isOutside(reading) ? reading
                              : orMissing(exportEngine(to), TVLFormat::tableExportEngine(to));
}

QString TVLImportExportConfig::kindleGenFilePath() const
{
    const QString chosen = tvlOptions()->value(u"ImportExport/KindleGenFilePath"_s).toString();
    return chosen.isEmpty() ? TVLConverters::findProgram(u"kindlegen"_s) : chosen;
}

bool TVLImportExportConfig::kindleGenExists() const
{
    const QString path = kindleGenFilePath();
    return !path.isEmpty() && QFileInfo(path).isFile();
}
