#include "TVLFileUtil.h"

#include <QFile>

QByteArray TVLFileUtil::calcChecksum(const QString &filePath,
                                     QCryptographicHash::Algorithm algorithm)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(algorithm);
    if (!hash.addData(&file) || file.error() != QFileDevice::NoError)
        return {};
    return hash.result();
}
