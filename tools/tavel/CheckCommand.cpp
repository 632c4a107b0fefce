#include "Command.h"
#include "ProjectCheck.h"
#include "ProjectOpener.h"

#include "TVLProjectFolderFormat.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QJsonObject reportToJson(const QString &projectPath, const QList<Problem> &problems,
                         int interruptedFiles)
{
    QJsonArray array;
    for (const Problem &problem : problems)
        array.append(QJsonObject{
            {u"kind"_s, problem.kind}, {u"where"_s, problem.where}, {u"text"_s, problem.text}});
    QJsonObject report = {
        {u"path"_s, projectPath}, {u"ok"_s, problems.isEmpty()}, {u"problems"_s, array}};
    if (interruptedFiles > 0)
        report.insert(u"interruptedFiles"_s, interruptedFiles);
    return report;
}

void writeText(const QString &projectPath, const QList<Problem> &problems, int interruptedFiles,
               Console *console)
{
    if (interruptedFiles > 0)
        console->writeLine(
            u"a save was interrupted; the next opening completes it (%1 files)"_s.arg(
                interruptedFiles));
    for (const Problem &problem : problems)
        console->writeLine(oneLine(u"%1: %2: %3"_s.arg(problem.kind, problem.where, problem.text)));
    if (problems.isEmpty())
        console->writeLine(u"No problems in %1"_s.arg(oneLine(projectPath)));
}

ExitStatus runCheck(const QCommandLineParser &parser, Console *console)
{
    QString error;
    const std::optional<BinderFiles> files =
        findBinderFiles(parser.positionalArguments().last(), &error);
    if (!files)
        return console->fail(error);

    const QList<Problem> problems = ProjectCheck(*files).run();
    const int interruptedFiles = TVLProjectFolderFormat::interruptedSaveFiles(files->projectPath);
    if (wantsJson(parser))
        console->write(
            QJsonDocument(reportToJson(files->projectPath, problems, interruptedFiles)).toJson());
    else
        writeText(files->projectPath, problems, interruptedFiles, console);
    if (problems.isEmpty())
        return ExitStatus::Done;
    return console->fail(
        problems.size() == 1
            ? u"1 problem in '%1'"_s.arg(files->projectPath)
            : u"%1 problems in '%2'"_s.arg(problems.size()).arg(files->projectPath));
}

} // namespace

Command checkCommand()
{
    return {u"check"_s,
            u"Reports what is wrong with a project; changes nothing."_s,
            {projectArgument()},
            {jsonOption()},
            runCheck};
}
