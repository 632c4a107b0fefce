#include "Command.h"
#include "ProjectOpener.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <memory>

namespace {

/** What is wrong with the name of a project to be; empty when nothing is. */
QString nameError(const QString &path, const QString &projectPath)
{
    if (!TVLProjectFolderFormat::isCompatible(QIODevice::WriteOnly, path))
        return u"the path of a project must end in .tavel or .tavelx: '%1'"_qs.arg(path);
    if (TVLProjectFolderFormat::directoryName(projectPath).isEmpty())
        return u"the path has no name in front of its extension: '%1'"_qs.arg(path);
    // A binder of another name would be renamed by the first opening.
    const QString binderPath = TVLProjectFolderFormat::defaultBinderFilePath(projectPath);
    if (projectPath != path && binderPath != path)
        return u"the binder must bear the name of its folder: '%1'"_qs.arg(binderPath);
    return {};
}

/** What stands in the way of a new project; empty when nothing does. */
QString placeError(const QString &projectPath)
{
    const QFileInfo info(projectPath);
    if (!info.exists())
        return {};
    if (!info.isDir())
        return u"there is a file at '%1'"_qs.arg(projectPath);
    if (!QDir(projectPath)
             .isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        return u"the folder '%1' isn't empty"_qs.arg(projectPath);
    return {};
}

ExitStatus runNew(const QCommandLineParser &parser, Console *console)
{
    const QString path = normalizedPath(parser.positionalArguments().last());
    const QString projectPath = TVLProjectFolderFormat::calcEnclosingPath(path);
    if (const QString error = nameError(path, projectPath); !error.isEmpty())
        return console->refuse(error);
    if (const QString error = placeError(projectPath); !error.isEmpty())
        return console->fail(error);

    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectModel::createBlankProjectInMemory(projectPath));
    if (!model->save(true))
        return console->fail(u"the project could not be saved: '%1'"_qs.arg(projectPath));
    model->prepareToDestroy();
    console->writeLine(u"Created %1"_qs.arg(projectPath));
    return ExitStatus::Done;
}

} // namespace

Command newCommand()
{
    return {
        u"new"_qs,
        u"Makes a blank project."_qs,
        {{u"PATH"_qs, u"The folder to make, ending in .tavel. It may exist if it is empty."_qs}},
        {},
        runNew};
}
