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
    QString name;
    QString description;
};

/** One of the tool's commands: what it is called, what it takes, what it does. */
struct Command
{
    using Run = ExitStatus (*)(const QCommandLineParser &parser, Console *console);

    QString name;
    QString summary;
    QList<CommandArgument> arguments; ///< All of them must be given.
    QList<QCommandLineOption> options;
    Run run;
};

[[nodiscard]] Command newCommand();
[[nodiscard]] Command infoCommand();
[[nodiscard]] Command outlineCommand();
[[nodiscard]] Command catCommand();
[[nodiscard]] Command checkCommand();

/** Runs what the command line asks for; @p arguments begin with the program's name. */
[[nodiscard]] ExitStatus runCommandLine(const QStringList &arguments, Console *console);

/** The argument that names a project. */
[[nodiscard]] CommandArgument projectArgument();
/** The option for machine-readable output. */
[[nodiscard]] QCommandLineOption jsonOption();
/** Whether that option was given. */
[[nodiscard]] bool wantsJson(const QCommandLineParser &parser);
