#pragma once

#include "TvlExport.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QString>

#include <memory>

/**
 * Keeps all other processes from changing a project, for as long as it lives.
 *
 * The project's lock (TVLProjectFolderFormat::addLock()) tells people who has a project open. It
 * names a user and a program, and so can't tell a run that is at work from one that was killed. The
 * guard can: it is a hidden file in the project's folder that names a host and a process, and so it
 * holds whatever session, user or environment the processes have.
 *
 * - It is taken before the project is opened to be changed, and let go of when the model is deleted
 *   and the lock removed. Nothing in the library asks for it: all who change a project have to.
 * - The guard of a process of this host that has ended, however it did, is taken over. As long as
 *   its process lives nobody takes it over, however long that takes. That of another host has to
 *   be deleted by hand if that host was switched off in the middle.
 * - Whoever only reads needs none.
 * - It belongs to a folder: a copy of the project has none, and after TVLProjectModel::saveAs() the
 *   new place needs a guard of its own.
 *
 * @code
 * QString error;
 * const std::unique_ptr<TVLProjectGuard> guard = TVLProjectGuard::take(path, &error);
 * if (!guard)
 *     return fail(error);
 * @endcode
 */
class TVL_EXPORT TVLProjectGuard
{
    Q_DECLARE_TR_FUNCTIONS(TVLProjectGuard)

public:
    ~TVLProjectGuard() = default;
    Q_DISABLE_COPY_MOVE(TVLProjectGuard)

    /**
     * Takes the guard of the project that @p path names by its folder or its binder. The folder
     * `Files` is made when it is missing.
     *
     * @param patienceMs how long to wait for another process to let go of it
     * @return null, with a line in @p error, if another process has it or it can't be made
     */
    [[nodiscard]] static std::unique_ptr<TVLProjectGuard>
    take(const QString &path, QString *error = nullptr, int patienceMs = 0);

    /** Where the guard of a project lies while somebody has it. */
    [[nodiscard]] static QString filePath(const QString &path);

private:
    explicit TVLProjectGuard(const QString &projectPath);

    [[nodiscard]] bool lock(int patienceMs);
    [[nodiscard]] QString failure() const;

    QString mProjectPath;
    QLockFile mFile;
};
