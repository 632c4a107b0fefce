#include "ProjectOpener.h"

#include "TVLProjectModel.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString ifExists(const QString &path)
{
    return QFileInfo::exists(path) ? path : QString();
}

} // namespace

bool BinderFiles::isEmpty() const
{
    return binder.isEmpty() && autosave.isEmpty() && backup.isEmpty();
}

QString normalizedPath(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

std::optional<BinderFiles> findBinderFiles(const QString &path, QString *error)
{
    const QString fullPath = normalizedPath(path);
    BinderFiles files;
    files.projectPath = TVLProjectFolderFormat::calcEnclosingPath(fullPath);
    if (path.isEmpty() || !QFileInfo::exists(fullPath) || !QFileInfo(files.projectPath).isDir()) {
        *error = u"there is no project at '%1'"_s.arg(path);
        return std::nullopt;
    }
    files.binder = TVLProjectFolderFormat::presentBinderFilePath(fullPath);
    files.allBinders = QDir(files.projectPath).entryList({u"*.tavelx"_s}, QDir::Files, QDir::Name);
    files.autosave = ifExists(TVLProjectFolderFormat::binderAutosaveFilePath(files.projectPath));
    files.backup = ifExists(TVLProjectFolderFormat::binderBackupFilePath(files.projectPath));
    return files;
}

bool isOfLaterFormat(const QString &path)
{
    return TVLProjectFolderFormat::projectFormatVersion(normalizedPath(path))
        > TVL::FormatVersion18;
}

std::optional<BinderFiles> requireBinderFiles(const QString &path, QString *error)
{
    std::optional<BinderFiles> files = findBinderFiles(path, error);
    if (files && files->isEmpty()) {
        *error = u"there is no project in the folder '%1'"_s.arg(path);
        return std::nullopt;
    }
    return files;
}

std::unique_ptr<TVLProjectModel> openToRead(const QString &path, QString *error,
                                            TVLProjectFolderFormat::ReadingScope scope)
{
    if (!requireBinderFiles(path, error))
        return nullptr;
    std::unique_ptr<TVLProjectModel> model(
        TVLProjectFolderFormat::openProjectToRead(normalizedPath(path), scope));
    if (!model)
        *error = unreadableProject(path);
    return model;
}

QString unreadableProject(const QString &path)
{
    return u"the project can't be read: '%1'; 'tavel check' tells more"_s.arg(path);
}
