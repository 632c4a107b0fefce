#include "TVLProjectGuard.h"

#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLProjectFolderFormat.h"

#include <QFileInfo>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace {

// Hidden, as nothing is that is copied with a project.
const QString GuardName = u"Files/.guard"_s;

/** Who has a guard, as far as its file tells. */
struct GuardHolder
{
    qint64 process = 0; ///< 0 if the file doesn't say.
    QString host;
    QString program;
};

/** Nobody if the file isn't whole. */
GuardHolder holderOf(const QLockFile &file)
{
    GuardHolder holder;
    const bool isWhole = TVLCoreUtil::ReadBinaryFile(file.fileName()).endsWith('\n');
    if (!isWhole || !file.getLockInfo(&holder.process, &holder.host, &holder.program))
        return {};
    return holder;
}

} // namespace

TVLProjectGuard::TVLProjectGuard(const QString &projectPath)
    : mProjectPath(projectPath)
    , mFile(filePath(projectPath))
{
    // However long its process takes, it is no stale one as long as that lives.
    mFile.setStaleLockTime(0);
}

std::unique_ptr<TVLProjectGuard> TVLProjectGuard::take(const QString &path, QString *error,
                                                       int patienceMs)
{
    std::unique_ptr<TVLProjectGuard> guard(
        new TVLProjectGuard(TVLProjectFolderFormat::calcEnclosingPath(path)));
    (void)TVLProjectFolderFormat::filesDirectory(guard->mProjectPath);
    if (guard->lock(patienceMs))
        return guard;
    tvlSetError(error, guard->failure());
    return nullptr;
}

QString TVLProjectGuard::filePath(const QString &path)
{
    return TVLProjectFolderFormat::calcEnclosingPath(path) + u'/' + GuardName;
}

bool TVLProjectGuard::lock(int patienceMs)
{
    constexpr int MomentMs = 1000;
    // Opening a pipe in its place would wait for the other end.
    const QFileInfo file(mFile.fileName());
    if (file.exists() && !file.isFile())
        return false;
    if (mFile.tryLock(patienceMs))
        return true;
    if (mFile.error() != QLockFile::LockFailedError || holderOf(mFile).process != 0)
        return false;
    // Another process is just making it or letting go of it. If it isn't, one was killed while it
    // made it: then no process has the file open, or it would not be removed.
    if (mFile.tryLock(MomentMs))
        return true;
    return holderOf(mFile).process == 0 && mFile.removeStaleLockFile() && mFile.tryLock();
}

QString TVLProjectGuard::failure() const
{
    if (mFile.error() != QLockFile::LockFailedError)
        return tr("'%1' can't be locked: there is no way to make '%2'")
            .arg(mProjectPath, mFile.fileName());
    const GuardHolder holder = holderOf(mFile);
    const QFileInfo file(mFile.fileName());
    // Had that process ended, the guard would have been taken over.
    if (holder.process != 0 && holder.host == QSysInfo::machineHostName() && file.isWritable())
        return tr("another run of %1 is at work on '%2'").arg(holder.program, mProjectPath);
    const auto orUnknown = [](const QString &text) {
        return text.isEmpty() ? tr("unknown") : text;
    };
    return tr("'%1' is locked by user %2 on host %3, program %4; if nobody has it open, delete %5 "
              "in it")
        .arg(mProjectPath, orUnknown(file.owner()), orUnknown(holder.host),
             orUnknown(holder.program), GuardName);
}
