#include "Command.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

const QString HelpName = u"help"_s;
const QString VersionName = u"version"_s;
const QString JsonName = u"json"_s;

QCommandLineOption helpOption()
{
    return QCommandLineOption({u"h"_s, HelpName}, u"Shows this help."_s);
}

/** A line on wrong use, with a hint at the help. The parser closes its own texts with a full stop.
 */
ExitStatus refuseUse(QString text, const QString &helpCommand, Console *console)
{
    if (text.endsWith(u'.'))
        text.chop(1);
    return console->refuse(u"%1; see '%2 --help'"_s.arg(text, helpCommand));
}

QString listOf(const QList<Command> &commands)
{
    QStringList lines;
    for (const Command &command : commands)
        lines.append(u"  %1 %2"_s.arg(command.name, -16).arg(command.summary));
    return lines.join(u'\n');
}

/** How the argument stands in the line that shows the use. */
QString syntaxOf(const CommandArgument &argument)
{
    switch (argument.count) {
    case CommandArgument::AtMostOnce:
        return u"[%1]"_s.arg(argument.name);
    case CommandArgument::OnceOrMore:
        return argument.name + u"..."_s;
    default:
        return argument.name;
    }
}

void setUp(QCommandLineParser *parser, const Command &command)
{
    parser->setApplicationDescription(command.summary);
    parser->addOption(helpOption());
    parser->addOptions(command.options);
    for (const CommandArgument &argument : command.arguments)
        parser->addPositionalArgument(argument.name, argument.description, syntaxOf(argument));
}

/** The help of a command. The parser knows nothing of commands, whose names come first. */
QString commandHelp(const QCommandLineParser &parser, const QString &name)
{
    QString help = parser.helpText();
    const qsizetype place = help.indexOf(u" [options]"_s);
    return place < 0 ? help : help.insert(place, u' ' + name);
}

/** What is wrong with the number of arguments; empty when nothing is. */
QString argumentsError(const Command &command, const QStringList &given)
{
    const CommandArgument::Count lastCount = command.arguments.constLast().count;
    const qsizetype known = command.arguments.size();
    const qsizetype least = lastCount == CommandArgument::AtMostOnce ? known - 1 : known;
    if (given.size() < least)
        return u"%1 is missing"_s.arg(command.arguments.at(given.size()).name);
    if (given.size() > known && lastCount != CommandArgument::OnceOrMore)
        return u"one argument too many: '%1'"_s.arg(given.at(known));
    return {};
}

/** Runs a command; @p arguments begin with the program's name, the command isn't among them. */
ExitStatus runCommand(const Command &command, const QStringList &arguments, Console *console)
{
    QCommandLineParser parser;
    setUp(&parser, command);
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(HelpName)) {
        console->write(commandHelp(parser, command.name).toUtf8());
        return ExitStatus::Done;
    }
    const QString self = u"tavel "_s + command.name;
    if (!parsed)
        return refuseUse(parser.errorText(), self, console);
    if (const QString error = argumentsError(command, parser.positionalArguments());
        !error.isEmpty())
        return refuseUse(error, self, console);
    return command.run(parser, console);
}

/** The commands whose names begin with a word and have another one. */
QList<Command> commandsAbout(const QString &word, const QList<Command> &commands)
{
    QList<Command> found;
    std::copy_if(commands.begin(), commands.end(), std::back_inserter(found),
                 [&word](const Command &command) { return command.name.startsWith(word + u' '); });
    return found;
}

/** Deals with the first word of a command line that names no command with what follows it. */
ExitStatus answerWithoutCommand(const QStringList &given, const QList<Command> &commands,
                                Console *console)
{
    const QString &word = given.constFirst();
    const QList<Command> related = commandsAbout(word, commands);
    if (related.isEmpty())
        return refuseUse(u"unknown command '%1'"_s.arg(word), u"tavel"_s, console);
    const QString self = u"tavel "_s + word;
    if (given.size() == 1)
        return refuseUse(u"it isn't said what to do"_s, self, console);
    const QString &second = given.at(1);
    if (second != u"--help" && second != u"-h")
        return refuseUse(u"unknown command '%1 %2'"_s.arg(word, second), self, console);
    console->writeLine(u"Usage: %1 COMMAND\n\nCommands:\n%2\n\nSee '%1 COMMAND --help'."_s.arg(
        self, listOf(related)));
    return ExitStatus::Done;
}

} // namespace

ExitStatus runCommandLine(const QStringList &arguments, Console *console)
{
    const QList<Command> commands = QList<Command>{newCommand(), infoCommand(),   outlineCommand(),
                                                   catCommand(), importCommand(), searchCommand()}
        + snapshotCommands() + QList<Command>{checkCommand(), convertCommand()};

    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.setApplicationDescription(
        u"Works on writing projects.\n\nCommands:\n%1\n\n"
        "Exit status: 0 done, 1 the operation failed, 2 wrong use."_s.arg(listOf(commands)));
    parser.addOption(helpOption());
    parser.addOption({{u"v"_s, VersionName}, u"Shows the version."_s});
    parser.addPositionalArgument(u"COMMAND"_s, u"See 'tavel COMMAND --help'."_s);
    const QString self = u"tavel"_s;
    if (!parser.parse(arguments))
        return refuseUse(parser.errorText(), self, console);
    if (parser.isSet(HelpName)) {
        console->write(parser.helpText().toUtf8());
        return ExitStatus::Done;
    }
    if (parser.isSet(VersionName)) {
        console->writeLine(u"tavel "_s + QCoreApplication::applicationVersion());
        return ExitStatus::Done;
    }

    if (parser.positionalArguments().isEmpty())
        return refuseUse(u"no command given"_s, self, console);
    // As they were given: the parser has dropped the "--" in front of a text that begins with "-".
    const QStringList given =
        arguments.sliced(arguments.indexOf(parser.positionalArguments().constFirst(), 1));
    for (const Command &command : commands) {
        const QStringList words = command.name.split(u' ');
        if (given.mid(0, words.size()) == words)
            return runCommand(command, arguments.first(1) + given.mid(words.size()), console);
    }
    return answerWithoutCommand(given, commands, console);
}

CommandArgument projectArgument()
{
    return {u"PATH"_s, u"The project: its folder, or the binder file in it."_s};
}

CommandArgument itemArgument()
{
    return {u"ITEM"_s, u"An id, a uuid, or titles such as 'Draft/Chapter One'."_s};
}

QCommandLineOption jsonOption()
{
    return QCommandLineOption(JsonName, u"Writes the result as JSON."_s);
}

bool wantsJson(const QCommandLineParser &parser)
{
    return parser.isSet(JsonName);
}
