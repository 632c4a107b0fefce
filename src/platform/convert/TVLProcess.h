#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QString>
#include <QStringList>

class TVLProgress;

/**
 * Runs a program to its end and waits for that. No shell is in between, the program's standard
 * input is empty, and neither it nor a program that it has started lives longer than the call: at
 * the time limit and on cancelling it is told to terminate, and a moment later all is killed; so is
 * what it leaves behind when it ends by itself. If the caller's own process dies, the program is
 * told to terminate, on Linux.
 */
class TVL_EXPORT TVLProcess
{
    Q_DECLARE_TR_FUNCTIONS(TVLProcess)

public:
    struct Result
    {
        int exitCode = -1; ///< Of a program that has ended by itself.
        /** A program that couldn't be started, or was killed, counts as crashed. */
        QProcess::ExitStatus exitStatus = QProcess::CrashExit;
        /** UnknownError if there was none. */
        QProcess::ProcessError error = QProcess::UnknownError;
        bool isCanceled = false;
        /** The beginning of what it has printed, on standard output and standard error. */
        QByteArray output;

        /** Whether the program came to its end by itself with exit code 0. */
        [[nodiscard]] bool isDone() const
        {
            return exitStatus == QProcess::NormalExit && exitCode == 0;
        }
    };

    /** More of a program's output isn't kept. */
    static constexpr qsizetype MostOutput = 1 << 20;

    /**
     * Runs a command: a program and its arguments with blanks in between. What has blanks itself
     * stands in double quotes; see quoted().
     *
     * @param timeoutMilliseconds there is no limit if it is negative
     * @param workingDirectory    must exist; the caller's own if it is empty
     */
    [[nodiscard]] static Result executeProcess(const QString &command, int timeoutMilliseconds,
                                               const QString &workingDirectory);

    /**
     * The same with the arguments as they are. A @p progress has a step for each tenth of a second
     * of the limit, and may cancel; it is the caller's to begin and to finish.
     */
    [[nodiscard]] static Result execute(const QString &program, const QStringList &arguments,
                                        int timeoutMilliseconds, const QString &workingDirectory,
                                        TVLProgress *progress = nullptr);

    /** An argument as it has to stand in a command. */
    [[nodiscard]] static QString quoted(const QString &argument);

    [[nodiscard]] static QString toString(QProcess::ExitStatus status);
    [[nodiscard]] static QString toString(QProcess::ProcessError error);
};
