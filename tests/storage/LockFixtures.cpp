#include "LockFixtures.h"

#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int PatienceMs = 120'000;

void start(QProcess *process, const LockIdentity &identity, const QString &what,
           const QString &projectPath)
{
    process->setProcessEnvironment(identity.environment());
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(identity.file, {identity.name, what, projectPath});
}

} // namespace

QString identityPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u"/userlock.id"_s;
}

QString lockProgramFile()
{
    return QFileInfo(QStringLiteral(LOCK_PROGRAM)).canonicalFilePath();
}

QProcessEnvironment LockIdentity::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"USER"_s, user);
    if (!home.isEmpty()) {
        environment.insert(u"HOME"_s, home);
        environment.insert(u"XDG_DATA_HOME"_s, home);
    }
    return environment;
}

LockHolder::LockHolder(const LockIdentity &identity, const QString &projectPath,
                       const QString &what)
{
    start(&mProcess, identity, what, projectPath);
}

LockHolder::~LockHolder()
{
    kill();
}

bool LockHolder::isHolding()
{
    while (!mProcess.canReadLine()) {
        if (!mProcess.waitForReadyRead(PatienceMs))
            return false;
    }
    mAnswer = QString::fromLocal8Bit(mProcess.readLine()).chopped(1);
    return mAnswer == u"locked";
}

bool LockHolder::close()
{
    mProcess.closeWriteChannel();
    return mProcess.waitForFinished(PatienceMs) && mProcess.exitStatus() == QProcess::NormalExit
        && mProcess.exitCode() == 0;
}

void LockHolder::kill()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished(PatienceMs);
}

LockReport compareLock(const LockIdentity &identity, const QString &projectPath)
{
    QProcess process;
    start(&process, identity, u"compare"_s, projectPath);
    if (!process.waitForFinished(PatienceMs) || process.exitStatus() != QProcess::NormalExit)
        return {};
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n');
    constexpr int Lines = 4;
    if (lines.size() < Lines)
        return {};
    return {lines.at(0).toInt(), lines.at(1), lines.at(2), lines.at(3)};
}
