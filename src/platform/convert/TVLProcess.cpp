#include "TVLProcess.h"

#include "TVLProcessTree_p.h"
#include "TVLProgress.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int StepMilliseconds = 100;
constexpr int GraceMilliseconds = 2000;

/** A process that is being waited for. */
class RunningProcess
{
public:
    RunningProcess(int timeoutMilliseconds, TVLProgress *progress)
        : mDeadline(timeoutMilliseconds < 0 ? QDeadlineTimer(QDeadlineTimer::Forever)
                                            : QDeadlineTimer(timeoutMilliseconds))
        , mProgress(progress)
    {
    }

    TVLProcess::Result run(const QString &program, const QStringList &arguments,
                           const QString &workingDirectory);

private:
    void waitForEnd();
    void end();
    void takeOutput();
    [[nodiscard]] bool isToBeKilled();

    QProcess mProcess;
    TVLProcessTree mTree;
    QDeadlineTimer mDeadline;
    QElapsedTimer mSinceStep;
    TVLProgress *mProgress;
    TVLProcess::Result mResult;
    bool mIsOverTime = false;
};

TVLProcess::Result RunningProcess::run(const QString &program, const QStringList &arguments,
                                       const QString &workingDirectory)
{
    mTree.prepare(&mProcess);
    mProcess.setWorkingDirectory(workingDirectory);
    mProcess.setStandardInputFile(QProcess::nullDevice());
    mProcess.setProcessChannelMode(QProcess::MergedChannels);
    mProcess.start(program, arguments, QIODevice::ReadOnly);
    if (!mProcess.waitForStarted(-1)) {
        mResult.error = mProcess.error();
        return mResult;
    }
    mTree.setRoot(mProcess.processId());
    waitForEnd();
    if (!mIsOverTime && !mResult.isCanceled && mProcess.exitStatus() == QProcess::NormalExit) {
        mResult.exitStatus = QProcess::NormalExit;
        mResult.exitCode = mProcess.exitCode();
    } else {
        mResult.error = mIsOverTime ? QProcess::Timedout : QProcess::Crashed;
    }
    return mResult;
}

void RunningProcess::waitForEnd()
{
    mSinceStep.start();
    while (mProcess.state() != QProcess::NotRunning) {
        if (isToBeKilled()) {
            end();
            break;
        }
        mProcess.waitForReadyRead(StepMilliseconds);
        takeOutput();
    }
    takeOutput();
    // A program may have left others behind.
    if (mProcess.exitStatus() == QProcess::NormalExit)
        mTree.killGroup();
    else
        mTree.killAll();
}

/** Gives the program a moment to clear away what it has made, and then kills it. */
void RunningProcess::end()
{
    mProcess.terminate();
    const QDeadlineTimer grace(GraceMilliseconds);
    while (mProcess.state() != QProcess::NotRunning && !grace.hasExpired()) {
        mProcess.waitForReadyRead(StepMilliseconds);
        takeOutput();
    }
    mTree.killAll();
    if (mProcess.state() != QProcess::NotRunning) {
        mProcess.kill();
        mProcess.waitForFinished(-1);
    }
}

void RunningProcess::takeOutput()
{
    const QByteArray bytes = mProcess.readAll();
    mResult.output.append(bytes.first(
        std::min<qsizetype>(bytes.size(), TVLProcess::MostOutput - mResult.output.size())));
}

bool RunningProcess::isToBeKilled()
{
    mIsOverTime = mDeadline.hasExpired();
    if (mProgress && mSinceStep.hasExpired(StepMilliseconds)) {
        mSinceStep.start();
        mProgress->advance();
    }
    mResult.isCanceled = mProgress && mProgress->isCanceled();
    return mIsOverTime || mResult.isCanceled;
}

} // namespace

TVLProcess::Result TVLProcess::executeProcess(const QString &command, int timeoutMilliseconds,
                                              const QString &workingDirectory)
{
    QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty())
        return {.error = QProcess::FailedToStart, .output = {}};
    const QString program = words.takeFirst();
    return execute(program, words, timeoutMilliseconds, workingDirectory);
}

TVLProcess::Result TVLProcess::execute(const QString &program, const QStringList &arguments,
                                       int timeoutMilliseconds, const QString &workingDirectory,
                                       TVLProgress *progress)
{
    return RunningProcess(timeoutMilliseconds, progress).run(program, arguments, workingDirectory);
}

QString TVLProcess::quoted(const QString &argument)
{
    // Three of them in a row stand for one.
    QString text = argument;
    return u'"' + text.replace(u'"', u"\"\"\""_s) + u'"';
}

QString TVLProcess::toString(QProcess::ExitStatus status)
{
    return status == QProcess::NormalExit ? tr("The program has ended.")
                                          : tr("The program has crashed.");
}

QString TVLProcess::toString(QProcess::ProcessError error)
{
    switch (error) {
    case QProcess::FailedToStart:
        return tr("The program could not be started.");
    case QProcess::Crashed:
        return tr("The program has crashed.");
    case QProcess::Timedout:
        return tr("The program did not end in time.");
    case QProcess::WriteError:
        return tr("The program did not take what was written to it.");
    case QProcess::ReadError:
        return tr("What the program has written could not be read.");
    case QProcess::UnknownError:
        break;
    }
    return tr("Unknown error");
}
