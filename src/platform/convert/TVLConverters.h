#pragma once

#include "TvlExport.h"

#include <QString>

/**
 * Where programs lie that the library starts. Each is looked for when it is asked for, so one that
 * is installed later is found.
 *
 * A program of another house is looked for along `PATH`, one of ours beside the application and
 * then along `PATH`. An environment variable goes before both, for tests and for unusual places; it
 * is taken as it stands, even if there is nothing at that path.
 */
class TVL_EXPORT TVLConverters
{
public:
    /** LibreOffice, or what `TAVEL_SOFFICE` says; empty if it isn't installed. */
    [[nodiscard]] static QString officePath();
    /** pandoc, or what `TAVEL_PANDOC` says; empty if it isn't installed. */
    [[nodiscard]] static QString markupPath();

    /** A program along `PATH`; empty if there is none. */
    [[nodiscard]] static QString findProgram(const QString &name);
    /** A program of ours, or what an environment variable says; its place beside the application if
     * there is none. */
    [[nodiscard]] static QString ownProgram(const QString &name, const char *variable);
};
