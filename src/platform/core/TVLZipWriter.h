#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QString>

#include <memory>

/**
 * Puts files into a zip in memory, packed for speed: the copies of a binder are made at each
 * opening and each save, and packing them harder would take longer than reading the binder does.
 */
class TVL_EXPORT TVLZipWriter
{
public:
    TVLZipWriter();
    ~TVLZipWriter();
    Q_DISABLE_COPY_MOVE(TVLZipWriter)

    /** Adds a file that its owner may change and all may read and run. */
    void add(const QString &name, const QByteArray &content);
    /** The whole zip; empty if it could not be made. Nothing can be added any more. */
    [[nodiscard]] QByteArray finish();

private:
    class Private;
    std::unique_ptr<Private> d;
};
