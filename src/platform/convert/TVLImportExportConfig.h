#pragma once

#include "TVLFormat.h"
#include "TVLImportExport.h"

#include <QSet>
#include <QString>

/**
 * Which formats can be read and written on this computer, and by what. A format that only a
 * converter serves which isn't installed can't; one that the library has a plainer way for takes
 * that.
 */
class TVL_EXPORT TVLImportExportConfig
{
public:
    using Format = TVLFormat::Format;
    using Engine = TVLImportExport::Engine;

    /** The outside converters that are installed. */
    struct Converters
    {
        bool hasOffice = false; ///< LibreOffice and the document converter.
        bool hasMarkup = false; ///< pandoc and the document converter.
    };

    explicit TVLImportExportConfig(Converters converters);

    /** What this computer had when it was asked for first. */
    [[nodiscard]] static const TVLImportExportConfig *instance();
    [[nodiscard]] static Converters installedConverters();

    [[nodiscard]] const QSet<Format> &importFormats() const { return mImportFormats; }
    [[nodiscard]] const QSet<Format> &exportFormats() const { return mExportFormats; }

    /** What reads a format; NoEngine if nothing does. */
    [[nodiscard]] Engine importEngine(Format format) const;
    /** What writes a format; NoEngine if nothing does. */
    [[nodiscard]] Engine exportEngine(Format format) const;
    /**
     * What takes a file from one format to another: the converter that reads the source or, for a
     * source that needs none, what writes the target. A converter that isn't installed is named all
     * the same, because it is the one that is missing.
     */
    [[nodiscard]] Engine findEngine(Format from, Format to) const;

    /** The program that makes Kindle books: the path in the options, else what is installed; empty
     * if there is none. */
    [[nodiscard]] QString kindleGenFilePath() const;
    [[nodiscard]] bool kindleGenExists() const;

private:
    [[nodiscard]] bool isInstalled(Engine engine) const;

    Converters mConverters;
    QSet<Format> mImportFormats;
    QSet<Format> mExportFormats;
};
