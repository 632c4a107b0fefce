#include "TVLFileUtil.h"
#include "TVLRegularFile.h"

#include <array>
#include <cstddef>

QByteArray TVLFileUtil::calcChecksum(const QString &filePath,
                                     QCryptographicHash::Algorithm algorithm)
{
    constexpr std::size_t PieceSize = 64 * 1024;
    TVLRegularFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QCryptographicHash hash(algorithm);
    std::array<char, PieceSize> piece; // NOLINT(*-member-init): filled before it is looked at
    qint64 size = 0;
    while ((size = file.read(piece.data(), PieceSize)) > 0)
        hash.addData(QByteArrayView(piece.data(), size));
    if (size < 0 || file.error() != QFileDevice::NoError)
        return {};
    return hash.result();
}
