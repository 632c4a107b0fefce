#include "Command.h"
#include "ProjectOpener.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectGuard.h"
#include "TVLProjectModel.h"

#include <QCommandLineParser>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/** What is wrong with the name of a project to be; empty when nothing is. */
QString nameError(const QString &path, const QString &projectPath)
{
    if (!TVLProjectFolderFormat::isCompatible(QIODevice::WriteOnly, path))
        return u"the path of a project must end in .tavel or .tavelx: '%1'"_s.arg(path);
    if (TVLProjectFolderFormat::directoryName(projectPath).isEmpty())
        return u"the path has no name in front of its extension: '%1'"_s.arg(path);
    // A binder of another name would be renamed by the first opening.
    const QString binderPath = TVLProjectFolderFormat::defaultBinderFilePath(projectPath);
    if (projectPath != path && binderPath != path)
        return u"the binder must bear the name of its folder: '%1'"_s.arg(binderPath);
    return {};
}

/** Whether a folder holds nothing, be it for a project's guard and the folder that this lies in. */
bool isEmptyBesideItsGuard(const QString &projectPath)
{
    const QString guardPath = TVLProjectGuard::filePath(projectPath);
    QDirIterator entries(projectPath,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    bool isEmpty = true;
    while (isEmpty && entries.hasNext()) {
        const QString path = entries.next();
        isEmpty = path == guardPath || guardPath.startsWith(path + u'/');
    }
    return isEmpty;
}

/** What stands in the way of a new project; empty when nothing does. */
QString placeError(const QString &projectPath)
{
    const QFileInfo info(projectPath);
    if (!info.exists())
        return {};
    if (!info.isDir())
        return u"there is a file at '%1'"_s.arg(projectPath);
    if (!isEmptyBesideItsGuard(projectPath))
        return u"the folder '%1' isn't empty"_s.arg(projectPath);
    return {};
}

ExitStatus runNew(const QCommandLineParser &parser, Console *console)
{
    const QString path = normalizedPath(parser.positionalArguments().last());
    const QString projectPath = TVLProjectFolderFormat::calcEnclosingPath(path);
    if (const QString error = nameError(path, projectPath); !error.isEmpty())
        return console->refuse(error);
    QString error = placeError(projectPath);
    if (!error.isEmpty())
        return console->fail(error);
    // Another run may have made the project, and filled it, before this one came to have the guard.
    // A place where no folder can be made is for the save to tell of.
    std::unique_ptr<TVLProjectGuard> guard;
    if (QDir().mkpath(projectPath)) {
        guard = TVLProjectGuard::take(projectPath, &error);
        if (guard)
            error = placeError(projectPath);
        if (!error.isEmpty())
            return console->fail(error);
    }

    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectModel::createBlankProjectInMemory(projectPath));
    if (!model->save(true))
        return console->fail(u"the project could not be saved: '%1'"_s.arg(projectPath));
    model->prepareToDestroy();
    console->writeLine(oneLine(u"Created %1"_s.arg(projectPath)));
    return ExitStatus::Done;
}

} // namespace

Command newCommand()
{
    return {u"new"_s,
            u"Makes a blank project."_s,
            {{u"PATH"_s, u"The folder to make, ending in .tavel. It may exist if it is empty."_s}},
            {},
            runNew};
}
