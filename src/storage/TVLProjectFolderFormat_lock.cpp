#include "TVLProjectFolderFormat.h"

#include "TVLDoors.h"
#include "TVLSettingsFile_p.h"
#include "TvlCore.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHostInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

// The word that every platform writes, so that a lock can be compared on any.
constexpr QStringView LockPlatform = u"win";

QString lockFilePath(const QString &path)
{
    return TVLProjectFolderFormat::filesPath(TVLProjectFolderFormat::calcEnclosingPath(path))
        + u"/user.lock"_s;
}

QUuid readOrMakeUserLockId()
{
    const QDir directory(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    QFile file(directory.filePath(u"userlock.id"_s));
    QUuid id;
    if (!file.exists()) {
        QDir::root().mkpath(directory.absolutePath());
        if (file.open(QIODevice::WriteOnly)) {
            id = tvlNewUuid();
            QDataStream stream(&file);
            stream << id;
            return id;
        }
    } else if (file.open(QIODevice::ReadOnly)) {
        QDataStream stream(&file);
        stream >> id;
        return id;
    }
    qDebug() << "Could not open userlock.id file:" << file.fileName();
    return id;
}

void setText(QString *target, const QString &text)
{
    if (target)
        *target = text;
}

} // namespace

bool TVLProjectFolderFormat::lockExists(const QString &path)
{
    return QFileInfo::exists(lockFilePath(path));
}

bool TVLProjectFolderFormat::addLock(const QString &path)
{
    bool ok = false;
    if (lockExists(path))
        return false;
    filesDirectory(path, &ok);
    if (!ok)
        return false;
    tvlRemoveLeftOverGuard(lockFilePath(path));
    QSettings lock(lockFilePath(path), QSettings::IniFormat);
    lock.setValue(u"platform"_s, LockPlatform.toString());
    lock.setValue(u"host"_s, QHostInfo::localHostName());
    lock.setValue(u"user"_s, TvlCore::systemUsernameEnv());
    lock.setValue(u"uuid"_s, userLockId().toString());
    lock.setValue(u"project_path"_s, enclosingDirectory(path).path());
    lock.setValue(u"app_path"_s, QCoreApplication::applicationFilePath());
    lock.sync();
    return lock.status() == QSettings::NoError;
}

bool TVLProjectFolderFormat::removeLock(const QString &path)
{
    return !lockExists(path) || QFile::remove(lockFilePath(path));
}

int TVLProjectFolderFormat::compareLockFile(const QString &path, QString *host, QString *user,
                                            QString *appPath)
{
    const QFileInfo file(lockFilePath(path));
    if (!file.exists())
        return NotLocked;
    if (!file.isFile()) // Opening a pipe would wait for its other end.
        return LockedByOther;
    const QSettings lock(file.filePath(), QSettings::IniFormat);
    const QString ownUser = TvlCore::systemUsernameEnv();
    const QString lockHost = lock.value(u"host"_s).toString();
    const QString lockUser = lock.value(u"user"_s, ownUser).toString();
    const QString lockAppPath = lock.value(u"app_path"_s).toString();
    setText(host, lockHost);
    setText(user, lockUser);
    setText(appPath, lockAppPath);

    const bool isOwn = lock.value(u"platform"_s).toString() == LockPlatform
        && lockHost == QHostInfo::localHostName()
        && lock.value(u"uuid"_s).toString() == userLockId().toString() && lockUser == ownUser;
    if (!isOwn)
        return LockedByOther;
    if (lock.value(u"project_path"_s).toString() != enclosingDirectory(path).path())
        return LockedElsewhere;
    return lockAppPath == QCoreApplication::applicationFilePath() ? LockedHere
                                                                  : LockedByOtherProgram;
}

QUuid TVLProjectFolderFormat::userLockId()
{
    static QUuid id;
    if (id.isNull())
        id = readOrMakeUserLockId();
    return id;
}
