#include "Command.h"
#include "ProjectDescription.h"
#include "ProjectOpener.h"

#include "TVLProjectModel.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

ExitStatus runInfo(const QCommandLineParser &parser, Console *console)
{
    QString error;
    const std::unique_ptr<TVLProjectModel> model =
        openToRead(parser.positionalArguments().last(), &error);
    if (!model)
        return console->fail(error);
    const ProjectDescription project = describe(*model);
    if (wantsJson(parser)) {
        console->write(QJsonDocument(toJson(project)).toJson());
        return ExitStatus::Done;
    }
    const QList<QPair<QString, QString>> lines = toLines(project);
    for (const auto &[what, text] : lines)
        console->writeLine((oneLine(what) + u':').leftJustified(17) + u' ' + oneLine(text));
    return ExitStatus::Done;
}

} // namespace

Command infoCommand()
{
    return {u"info"_s,
            u"Tells what a project is made of."_s,
            {projectArgument()},
            {jsonOption()},
            runInfo};
}
