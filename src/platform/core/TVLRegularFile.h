#pragma once

#include "TvlExport.h"

#include <QFile>

/**
 * A file that is only opened when it is one: opening a pipe would wait for somebody at its other
 * end, and reading a device need never end. A link counts as what it leads to.
 */
class TVL_EXPORT TVLRegularFile : public QFile
{
public:
    using QFile::QFile;

    /** As QFile::open(); false, with errorString() saying so, for a pipe, a socket or a device. */
    [[nodiscard]] bool open(OpenMode mode) override;

    /** What is said of a path at which there is a pipe, a socket or a device; else nothing. */
    [[nodiscard]] static QString errorTextAt(const QString &path);
};
