#pragma once

#include <QString>

/**
 * A file system of its own in memory, mounted over a folder in a name space that only this process
 * sees; gone with the object.
 */
class SmallDisk
{
public:
    /** Whether this process may mount anything. Asked before any thread is started. */
    static bool enterPrivateNameSpace();
    static bool canMount();

    SmallDisk(const QString &path, qint64 bytes);
    ~SmallDisk();
    Q_DISABLE_COPY_MOVE(SmallDisk)

    /** Fills it but for so many bytes. */
    void fillUpTo(qint64 bytesLeft);
    /** Takes the filling away. */
    void empty();

private:
    QString mPath;
};

/** Makes a folder one that nothing can be written to, even by root; as long as the object lives. */
class UnwritableFolder
{
public:
    explicit UnwritableFolder(const QString &path);
    ~UnwritableFolder();
    Q_DISABLE_COPY_MOVE(UnwritableFolder)

private:
    QByteArray mPath;
};
