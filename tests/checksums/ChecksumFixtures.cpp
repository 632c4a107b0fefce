#include "ChecksumFixtures.h"

#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;

namespace {

/** A path below the project's folder out of one below no folder at all. */
QString relative(const QString &folder, const QString &name)
{
    return folder.mid(1) + u'/' + name;
}

} // namespace

QByteArray hashOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

ChecksumKey key(const QString &name)
{
    return {QUuid(), name};
}

ChecksumKey key(int number, const QString &name)
{
    return {uuidOf(number), name};
}

QString desktopPath(int number, const QString &name)
{
    return relative(TVLProjectFolderFormat::filesDataNodePath(QString(), uuidOf(number)), name);
}

QString mobilePath(int number, const QString &name)
{
    return relative(TVLProjectFolderFormat::mobileDataNodePath(QString(), uuidOf(number)), name);
}

QString toText(const ChecksumMap &checksums)
{
    QString text;
    for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry) {
        const auto &[uuid, name] = entry.key();
        text += u"%1 | %2 | %3\n"_s.arg(uuid.toString(), name,
                                        QString::fromLatin1(entry.value().toHex()));
    }
    return text;
}
