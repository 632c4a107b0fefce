#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>

/** What is asked of single files, whatever is in them. */
class TVL_EXPORT TVLFileUtil
{
public:
    /**
     * The raw hash of a file's content, which is read piece by piece, so its size doesn't matter.
     * Empty if the file can't be read to its end.
     */
    [[nodiscard]] static QByteArray calcChecksum(const QString &filePath,
                                                 QCryptographicHash::Algorithm algorithm);
};
