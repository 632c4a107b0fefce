#pragma once

#include <QFile>
#include <QString>

/**
 * Has permissions count for this process and those that it starts, even if the superuser runs it;
 * there is no way back. To be called before any thread is started.
 */
void dropRightsOfTheSuperuser();

/** Takes the permission to write a file or a folder, or to do anything with it, away for as long as
 * the object lives. */
class ReducedPermissions
{
public:
    ReducedPermissions(const QString &path, QFile::Permissions permissions);
    ~ReducedPermissions();
    Q_DISABLE_COPY_MOVE(ReducedPermissions)

    /** A folder or file that can be read, and a folder that can be entered. */
    static constexpr QFile::Permissions ReadOnly = QFile::ReadOwner | QFile::ExeOwner;
    static constexpr QFile::Permissions None = {};

private:
    QString mPath;
    QFile::Permissions mBefore;
};
