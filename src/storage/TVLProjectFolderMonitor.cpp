#include "TVLProjectFolderMonitor.h"

#include "TVLProjectFolderFormat.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

namespace {

constexpr int TimerInterval = 4000;

/** What is at a path now; nothing that was known of it before counts. */
QFileInfo freshInfo(const QString &path)
{
    QFileInfo info(path);
    info.setCaching(false);
    info.refresh();
    return info;
}

} // namespace

TVLProjectFolderMonitor::TVLProjectFolderMonitor(const QString &path, QObject *parent)
    : QObject(parent)
    , mWatcher(new QFileSystemWatcher(this))
    , mTimer(new QTimer(this))
{
    connect(mWatcher, &QFileSystemWatcher::directoryChanged, this,
            &TVLProjectFolderMonitor::onDirChanged);
    connect(mWatcher, &QFileSystemWatcher::fileChanged, this,
            &TVLProjectFolderMonitor::onFileChanged);
    connect(mTimer, &QTimer::timeout, this, &TVLProjectFolderMonitor::onTimerTimeout);
    mTimer->setInterval(TimerInterval);
    startMonitor(path);
}

void TVLProjectFolderMonitor::setMonitorPath(const QString &path)
{
    stopMonitor();
    mMonitorPath = path;
}

bool TVLProjectFolderMonitor::startMonitor(const QString &path)
{
    setMonitorPath(path);
    return startMonitor();
}

bool TVLProjectFolderMonitor::startMonitor()
{
    if (!freshInfo(mMonitorPath).isDir())
        return false;
    const QStringList folders = {TVLProjectFolderFormat::filesPath(mMonitorPath),
                                 TVLProjectFolderFormat::settingsPath(mMonitorPath)};
    for (const QString &folder : folders) {
        if (!freshInfo(folder).exists())
            QDir().mkpath(folder);
    }
    for (const QString &folder : folders) {
        if (!isOk(folder))
            return false;
    }
    mWatcher->addPaths(folders);
    mTimer->start();
    return true;
}

void TVLProjectFolderMonitor::stopMonitor()
{
    const QStringList watched = mWatcher->files() + mWatcher->directories();
    if (!watched.isEmpty())
        mWatcher->removePaths(watched);
    mTimer->stop();
}

bool TVLProjectFolderMonitor::isOk(const QString &path) const
{
    const QFileInfo info = freshInfo(path);
    return info.exists() && info.isDir() && info.isWritable();
}

void TVLProjectFolderMonitor::onDirChanged(const QString &path)
{
    if (!isOk(path))
        notifyModified(path);
}

void TVLProjectFolderMonitor::onFileChanged(const QString &path)
{
    const QFileInfo info = freshInfo(path);
    if (!info.exists() || !info.isFile() || !info.isWritable())
        notifyModified(path);
}

void TVLProjectFolderMonitor::onTimerTimeout()
{
    const QString filesPath = TVLProjectFolderFormat::filesPath(mMonitorPath);
    if (!isOk(filesPath))
        notifyModified(filesPath);
}

void TVLProjectFolderMonitor::notifyModified(const QString &path)
{
    mTimer->stop();
    Q_EMIT externallyModified(path);
}
