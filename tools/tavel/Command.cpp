#include "Command.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

namespace {

const QString HelpName = u"help"_qs;
const QString VersionName = u"version"_qs;
const QString JsonName = u"json"_qs;

QCommandLineOption helpOption()
{
    return QCommandLineOption({u"h"_qs, HelpName}, u"Shows this help."_qs);
}

/** A line on wrong use, with a hint at the help. The parser closes its own texts with a full stop.
 */
ExitStatus refuseUse(QString text, const QString &helpCommand, Console *console)
{
    if (text.endsWith(u'.'))
        text.chop(1);
    return console->refuse(u"%1; see '%2 --help'"_qs.arg(text, helpCommand));
}

QString commandList(const QList<Command> &commands)
{
    QStringList lines{u"Works on writing projects.\n\nCommands:"_qs};
    for (const Command &command : commands)
        lines.append(u"  %1 %2"_qs.arg(command.name, -9).arg(command.summary));
    lines.append(u"\nExit status: 0 done, 1 the operation failed, 2 wrong use."_qs);
    return lines.join(u'\n');
}

void setUp(QCommandLineParser *parser, const Command &command)
{
    parser->setApplicationDescription(command.summary);
    parser->addOption(helpOption());
    parser->addOptions(command.options);
    parser->addPositionalArgument(command.name, u"This command."_qs);
    for (const CommandArgument &argument : command.arguments)
        parser->addPositionalArgument(argument.name, argument.description);
}

/** The help of a command. The parser knows no commands and would put the options before them. */
QString commandHelp(const QCommandLineParser &parser, const QString &name)
{
    return parser.helpText().replace(u"[options] %1"_qs.arg(name), u"%1 [options]"_qs.arg(name));
}

ExitStatus runCommand(const Command &command, const QStringList &arguments, Console *console)
{
    QCommandLineParser parser;
    setUp(&parser, command);
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(HelpName)) {
        console->write(commandHelp(parser, command.name).toUtf8());
        return ExitStatus::Done;
    }
    const QString self = u"tavel "_qs + command.name;
    if (!parsed)
        return refuseUse(parser.errorText(), self, console);
    // The first one is the command itself.
    const QStringList given = parser.positionalArguments().mid(1);
    const qsizetype wanted = command.arguments.size();
    if (given.size() < wanted)
        return refuseUse(u"%1 is missing"_qs.arg(command.arguments.at(given.size()).name), self,
                         console);
    if (given.size() > wanted)
        return refuseUse(u"one argument too many: '%1'"_qs.arg(given.at(wanted)), self, console);
    return command.run(parser, console);
}

} // namespace

ExitStatus runCommandLine(const QStringList &arguments, Console *console)
{
    const QList<Command> commands{newCommand(), infoCommand(), outlineCommand(), catCommand(),
                                  checkCommand()};

    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.setApplicationDescription(commandList(commands));
    parser.addOption(helpOption());
    parser.addOption({{u"v"_qs, VersionName}, u"Shows the version."_qs});
    parser.addPositionalArgument(u"COMMAND"_qs, u"See 'tavel COMMAND --help'."_qs);
    const QString self = u"tavel"_qs;
    if (!parser.parse(arguments))
        return refuseUse(parser.errorText(), self, console);
    if (parser.isSet(HelpName)) {
        console->write(parser.helpText().toUtf8());
        return ExitStatus::Done;
    }
    if (parser.isSet(VersionName)) {
        console->writeLine(u"tavel "_qs + QCoreApplication::applicationVersion());
        return ExitStatus::Done;
    }

    const QStringList given = parser.positionalArguments();
    if (given.isEmpty())
        return refuseUse(u"no command given"_qs, self, console);
    const auto command =
        std::find_if(commands.begin(), commands.end(),
                     [&given](const Command &row) { return row.name == given.constFirst(); });
    if (command == commands.end())
        return refuseUse(u"unknown command '%1'"_qs.arg(given.constFirst()), self, console);
    return runCommand(*command, arguments.first(1) + given, console);
}

CommandArgument projectArgument()
{
    return {u"PATH"_qs, u"The project: its folder, or the binder file in it."_qs};
}

QCommandLineOption jsonOption()
{
    return QCommandLineOption(JsonName, u"Writes the result as JSON."_qs);
}

bool wantsJson(const QCommandLineParser &parser)
{
    return parser.isSet(JsonName);
}
