#include "WritableProject.h"

#include "BinderSections.h"
#include "ProjectOpener.h"
#include "TVLBinderContents.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectGuard.h"
#include "TVLProjectModel.h"

#include <QFileInfo>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

/** Whether a lock that names another folder came with a copy, and not by another way to this one.
 */
bool isLockOfAnotherFolder(const QString &projectPath)
{
    const QSettings lock(TVLProjectFolderFormat::filesPath(projectPath) + u"/user.lock"_s,
                         QSettings::IniFormat);
    const QString lockedPath = lock.value(u"project_path"_s).toString();
    return QFileInfo(lockedPath).canonicalFilePath() != QFileInfo(projectPath).canonicalFilePath();
}

QString orUnknown(const QString &text)
{
    return text.isEmpty() ? u"unknown"_s : text;
}

/** Whether a model would take a binder in. */
bool isLoadable(const QString &projectPath, const QString &binderPath)
{
    const std::unique_ptr<QIODevice> binder =
        TVLProjectFolderFormat::openFile(projectPath, binderPath, nullptr);
    TVLBinderContents project;
    return binder && project.read(binder.get()).isEmpty() && project.isLoadable();
}

/** Who has the project open; empty when nobody has. */
QString lockError(const QString &projectPath)
{
    QString host;
    QString user;
    QString program;
    switch (TVLProjectFolderFormat::compareLockFile(projectPath, &host, &user, &program)) {
    case TVLProjectFolderFormat::NotLocked:
    case TVLProjectFolderFormat::LockedHere: // By a run that has ended: no other has the guard.
        return {};
    case TVLProjectFolderFormat::LockedElsewhere:
        if (isLockOfAnotherFolder(projectPath))
            return {};
        break;
    default:
        break;
    }
    return u"'%1' is locked by user %2 on host %3, program %4; if nobody has it open, delete "
           "Files/user.lock in it"_s.arg(projectPath, orUnknown(user), orUnknown(host),
                                         orUnknown(program));
}

} // namespace

WritableProject::WritableProject(const BinderFiles &files)
    : mPath(files.projectPath)
{
}

WritableProject::~WritableProject()
{
    // The model isn't prepared for its end, which would save: what a command has done is saved by
    // save() or not at all, and a project may count as modified as soon as it is open.
    mModel.reset();
    if (mIsLocked)
        TVLProjectFolderFormat::removeLock(mPath);
}

std::unique_ptr<WritableProject> WritableProject::open(const QString &path, QString *error)
{
    const std::optional<BinderFiles> files = requireBinderFiles(path, error);
    if (!files)
        return nullptr;
    std::unique_ptr<WritableProject> project(new WritableProject(*files));
    *error = project->lock();
    if (error->isEmpty())
        *error = project->read(path, files->binder);
    return error->isEmpty() ? std::move(project) : nullptr;
}

QString WritableProject::lock()
{
    QString error;
    mGuard = TVLProjectGuard::take(mPath, &error);
    if (mGuard)
        error = lockError(mPath);
    if (!error.isEmpty())
        return error;
    TVLProjectFolderFormat::removeLock(mPath);
    mIsLocked = TVLProjectFolderFormat::addLock(mPath);
    return mIsLocked ? QString() : u"'%1' can't be locked"_s.arg(mPath);
}

QString WritableProject::read(const QString &path, const QString &binderPath)
{
    if (!binderPath.isEmpty() && !isLoadable(mPath, binderPath))
        return u"the binder of '%1' is damaged and so is left alone; 'tavel check' tells more"_s
            .arg(path);
    const TVLProjectInfo info = TVLProjectFolderFormat::readBinderFileProjectInfo(binderPath);
    if (!info.mVersion.isEmpty() && info.mBinderVersion == TVL::NoBinderVersion)
        return u"Project '%1' is incompatible with this version of Tavelinor."_s.arg(
            TVLProjectFolderFormat::projectPathToProjectName(path));
    if (isOfLaterFormat(path))
        return u"projects of format version 23 can't be changed yet: '%1'"_s.arg(path);
    // Not prepared for its end, the model leaves the lock to its owner.
    mModel.reset(TVLProjectFolderFormat::openProject(normalizedPath(path)));
    return mModel ? QString() : unreadableProject(path);
}

QString WritableProject::path() const
{
    return mModel->path().absolutePath();
}

bool WritableProject::canSave(QString *error) const
{
    const QStringList lost =
        sectionsLostBySaving(TVLProjectFolderFormat::findOpenBinderFilePath(mPath), *mModel);
    if (lost.isEmpty())
        return true;
    *error =
        u"a save by this version would drop parts of '%1': %2"_s.arg(mPath, lost.join(u", "_s));
    return false;
}

bool WritableProject::save(QString *error)
{
    if (mModel->save(true)) {
        mModel->saveAll(false);
        return true;
    }
    *error = u"the project could not be saved: '%1'"_s.arg(mPath);
    return false;
}
