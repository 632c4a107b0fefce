#pragma once

#include <QProcess>
#include <QString>

using namespace Qt::StringLiterals;

/** The program that the processes of these tests run, as a lock names it. */
[[nodiscard]] QString lockProgramFile();

/** Where a user's identity for locks lies. */
[[nodiscard]] QString identityPath();

/** Who a process is to a lock. */
struct LockIdentity
{
    QString file = lockProgramFile(); ///< The program, or a copy of it.
    QString name = u"writer"_s; ///< What the application is called.
    QString user = u"anna"_s;
    QString home; ///< Where the user's data is; empty for that of the test.

    [[nodiscard]] QProcessEnvironment environment() const;
};

/** A process that has a project open and locked, or guarded; killed with the object. */
class LockHolder
{
public:
    LockHolder(const LockIdentity &identity, const QString &projectPath,
               const QString &what = u"hold"_s);
    ~LockHolder();
    Q_DISABLE_COPY_MOVE(LockHolder)

    /** Waits until the project is locked; false when the process has ended without it. */
    [[nodiscard]] bool isHolding();
    /** The line that the process wrote when it could not hold the project. */
    [[nodiscard]] QString answer() const { return mAnswer; }
    /** Has the process close the project and waits for its end; whether all went well. */
    [[nodiscard]] bool close();
    /** Has the process close the project, and waits for nothing. */
    void endSoon() { mProcess.closeWriteChannel(); }
    /** Kills the process and waits for its end. */
    void kill();

private:
    QProcess mProcess;
    QString mAnswer;
};

/** What a process sees of a project's lock. */
struct LockReport
{
    int result = -1; ///< That of TVLProjectFolderFormat::compareLockFile(); -1 for no process.
    QString host;
    QString user;
    QString program;
};

/** Has a process look at a project's lock. */
[[nodiscard]] LockReport compareLock(const LockIdentity &identity, const QString &projectPath);
