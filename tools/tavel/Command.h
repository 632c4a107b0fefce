#pragma once

#include "Console.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

class QCommandLineParser;

/** An argument that a command asks for. */
struct CommandArgument
{
    /** How often it may be given; only the last argument may differ from Once. */
    enum Count {
        Once,
        AtMostOnce,
        OnceOrMore,
    };

    QString name;
    QString description;
    Count count = Once;
};

/** One of the tool's commands: what it is called, what it takes, what it does. */
struct Command
{
    /** The parser has the arguments as its positional ones, without the command itself. */
    using Run = ExitStatus (*)(const QCommandLineParser &parser, Console *console);

    QString name; ///< One word, or two where several commands are about the same thing.
    QString summary;
    QList<CommandArgument> arguments;
    QList<QCommandLineOption> options;
    Run run;
};

[[nodiscard]] Command newCommand();
[[nodiscard]] Command infoCommand();
[[nodiscard]] Command outlineCommand();
[[nodiscard]] Command catCommand();
[[nodiscard]] Command importCommand();
[[nodiscard]] Command searchCommand();
[[nodiscard]] QList<Command> snapshotCommands();
[[nodiscard]] Command checkCommand();
[[nodiscard]] Command convertCommand();

/** Runs what the command line asks for; @p arguments begin with the program's name. */
[[nodiscard]] ExitStatus runCommandLine(const QStringList &arguments, Console *console);

/** The argument that names a project. */
[[nodiscard]] CommandArgument projectArgument();
/** The argument that names an item. */
[[nodiscard]] CommandArgument itemArgument();
/** The option for machine-readable output. */
[[nodiscard]] QCommandLineOption jsonOption();
/** Whether that option was given. */
[[nodiscard]] bool wantsJson(const QCommandLineParser &parser);
