#include "TVLFileUtil.h"
#include "TVLRegularFile.h"

#include <QFile>

QByteArray TVLFileUtil::calcChecksum(const QString &filePath,
                                     QCryptographicHash::Algorithm algorithm)
{
    TVLRegularFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(algorithm);
    if (!hash.addData(&file) || file.error() != QFileDevice::NoError)
        return {};
    return hash.result();
}
