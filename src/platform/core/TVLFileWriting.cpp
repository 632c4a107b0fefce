#include "TVLFileWriting_p.h"

#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLRegularFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace {

bool hasSecondName(const QString &path)
{
    std::error_code failure;
    const std::uintmax_t names = std::filesystem::hard_link_count(path.toStdU16String(), failure);
    return !failure && names > 1;
}

/** What stands against opening a file for writing; empty for nothing. */
QString obstacleAt(const QString &path)
{
    if (QFileInfo(path).isSymbolicLink())
        return QCoreApplication::translate("TVLProjectFolderFormat",
                                           "'%1' is a link, and what it leads to is not written")
            .arg(path);
    return TVLRegularFile::errorTextAt(path);
}

} // namespace

bool tvlWriteOwnFile(const QByteArray &bytes, const QString &path, QString *error, bool *couldOpen)
{
    const QString obstacle = obstacleAt(path);
    if (obstacle.isEmpty())
        return TVLCoreUtil::WriteBinaryFile(bytes, path, error, couldOpen);
    if (couldOpen)
        *couldOpen = false;
    return tvlFail(error, obstacle);
}

bool tvlWriteDerivedFile(const QByteArray &bytes, const QString &path, QString *error)
{
    const QFileInfo info(path);
    const bool isShared = !obstacleAt(path).isEmpty() || (info.isFile() && hasSecondName(path));
    if (isShared && !QFile::remove(path))
        return tvlFail(
            error,
            QCoreApplication::translate("TVLProjectFolderFormat", "'%1' can't be replaced")
                .arg(path));
    return TVLCoreUtil::WriteBinaryFile(bytes, path, error);
}
