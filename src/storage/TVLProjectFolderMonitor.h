#pragma once

#include "TvlExport.h"

#include <QObject>
#include <QString>

class QFileSystemWatcher;
class QTimer;

/**
 * Watches the folder of an open project for the one thing that can't be survived quietly: its
 * folders going away or turning read-only, as when the disk that they lie on is unplugged.
 *
 * What changes inside the folders is of no interest here.
 */
class TVL_EXPORT TVLProjectFolderMonitor : public QObject
{
    Q_OBJECT

public:
    /** Starts at once, unless @p path is no folder. */
    explicit TVLProjectFolderMonitor(const QString &path, QObject *parent = nullptr);

    /** Stops watching; the next startMonitor() watches @p path. */
    void setMonitorPath(const QString &path);
    [[nodiscard]] QString monitorPath() const { return mMonitorPath; }

    /**
     * Watches the folders `Files` and `Settings` of the project; one that is missing is made.
     * False, with nothing watched, if the project has no folder or one of the two can't be used.
     */
    bool startMonitor();
    /** setMonitorPath() and startMonitor(). */
    bool startMonitor(const QString &path);
    /** Nothing is watched any more until startMonitor(); the path stays. */
    void stopMonitor();

    /** Whether a path is at this moment a folder that can be written to. */
    [[nodiscard]] bool isOk(const QString &path) const;

Q_SIGNALS:
    /** A folder is gone or read-only. The regular look at the folders has ended with it, until
     * startMonitor() is called again. */
    void externallyModified(const QString &path);

private Q_SLOTS:
    void onDirChanged(const QString &path);
    void onFileChanged(const QString &path);
    void onTimerTimeout();

private:
    void notifyModified(const QString &path);

    QFileSystemWatcher *mWatcher; ///< Child object.
    QTimer *mTimer; ///< Child object. It sees what the watcher misses.
    QString mMonitorPath;
};
