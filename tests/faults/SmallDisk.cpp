#include "SmallDisk.h"

#include <QFile>

#include <filesystem>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool hasNameSpace = false;

void writeText(const char *path, const QByteArray &text)
{
    QFile file(QString::fromLatin1(path));
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        file.write(text);
}

QString fillingPath(const QString &path)
{
    return path + u"/filling"_s;
}

} // namespace

bool SmallDisk::enterPrivateNameSpace()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    const bool isRoot = getuid() == 0;
    hasNameSpace = unshare(isRoot ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0;
    if (hasNameSpace && !isRoot) {
        writeText("/proc/self/setgroups", "deny");
        writeText("/proc/self/uid_map", "0 " + user + " 1");
        writeText("/proc/self/gid_map", "0 " + group + " 1");
    }
    // What is mounted here must not be seen by others.
    hasNameSpace = hasNameSpace && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return hasNameSpace;
}

bool SmallDisk::canMount()
{
    return hasNameSpace;
}

SmallDisk::SmallDisk(const QString &path, qint64 bytes)
    : mPath(path)
{
    const QByteArray options = "size=" + QByteArray::number(bytes);
    if (mount("tmpfs", QFile::encodeName(path).constData(), "tmpfs", 0, options.constData()) != 0)
        qFatal("the disk can't be mounted");
}

SmallDisk::~SmallDisk()
{
    umount2(QFile::encodeName(mPath).constData(), MNT_DETACH);
}

void SmallDisk::fillUpTo(qint64 bytesLeft)
{
    const auto available = qint64(std::filesystem::space(mPath.toStdString()).available);
    QFile filling(fillingPath(mPath));
    if (!filling.open(QIODevice::WriteOnly) || available < bytesLeft)
        qFatal("the disk can't be filled");
    filling.write(QByteArray(available - bytesLeft, 'x'));
}

void SmallDisk::empty()
{
    QFile::remove(fillingPath(mPath));
}

UnwritableFolder::UnwritableFolder(const QString &path)
    : mPath(QFile::encodeName(path))
{
    const bool isBound = mount(mPath, mPath, nullptr, MS_BIND, nullptr) == 0;
    if (!isBound || mount(nullptr, mPath, nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        qFatal("the folder can't be made unwritable");
}

UnwritableFolder::~UnwritableFolder()
{
    umount2(mPath, MNT_DETACH);
}
