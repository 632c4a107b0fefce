#include "TVLProcessTree_p.h"

#include "TVLDoors.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

using namespace Qt::StringLiterals;

namespace {

#ifdef Q_OS_UNIX
/** In the new process, before the program. */
void becomeGroupLeader()
{
    setpgid(0, 0);
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
}
#endif

bool isZombie(const QString &processFolder)
{
    QFile file(processFolder + u"/stat"_s);
    if (!file.open(QIODevice::ReadOnly))
        return true;
    // The state stands behind the name, which is in parentheses and may have some itself.
    const QByteArray line = file.readAll();
    return line.sliced(line.lastIndexOf(')') + 1).trimmed().startsWith('Z');
}

} // namespace

TVLProcessTree::TVLProcessTree()
    : mMark("TAVEL_PROCESS_" + tvlNewUuid().toByteArray(QUuid::Id128))
{
}

void TVLProcessTree::prepare(QProcess *process) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(mMark), u"1"_s);
    process->setProcessEnvironment(environment);
#ifdef Q_OS_UNIX
    process->setChildProcessModifier(becomeGroupLeader);
#endif
}

void TVLProcessTree::killGroup() const
{
#ifdef Q_OS_UNIX
    if (mRoot > 1)
        ::kill(pid_t(-mRoot), SIGKILL);
#endif
}

void TVLProcessTree::killAll() const
{
    killGroup();
    // Each may have started another before it was found; a killed one takes a moment to go.
    constexpr int MostRounds = 100;
    for (int round = 0; round < MostRounds && killMarked() > 0; ++round)
        killGroup();
}

/** Kills what has the variable in its environment, and says how many there were. */
int TVLProcessTree::killMarked() const
{
    int killed = 0;
#ifdef Q_OS_LINUX
    const QStringList names = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        bool isProcess = false;
        const auto id = name.toInt(&isProcess);
        if (!isProcess || id == ::getpid())
            continue;
        const QString folder = u"/proc/"_s + name;
        QFile file(folder + u"/environ"_s);
        if (!file.open(QIODevice::ReadOnly) || !file.readAll().contains(mMark + '=')
            || isZombie(folder))
            continue;
        ::kill(pid_t(id), SIGKILL);
        ++killed;
    }
#endif
    return killed;
}
