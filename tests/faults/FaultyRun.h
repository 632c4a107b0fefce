#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/** What goes wrong in a run of a program. */
struct Fault
{
    enum Deed {
        Nothing,
        Fail, ///< One operation fails.
        FailForEver, ///< An operation and all behind it fail.
        Kill, ///< The process is killed in place of an operation.
        KillHalfway, ///< The process is killed when a write is half done.
    };

    Deed deed = Nothing;
    int at = 0; ///< The number of the operation, from 1 on.
    int error = 0; ///< What a failing operation ends with.

    /** The fault in words, for messages. */
    [[nodiscard]] QString describe() const;
};

/** A run of a program that has come to its end. */
struct FaultyRun
{
    bool hasEnded = false; ///< By itself, and before patience did.
    bool isKilled = false;
    int status = -1;
    QStringList output; ///< Lines of standard output.
    QByteArray errors; ///< Standard error.
    QStringList operations; ///< What changed files, in its order: what it was and the path.
};

/**
 * Runs a program with a fault in the operations that change something below a folder. Its own
 * files, such as those that the home folder holds, are out of it.
 */
[[nodiscard]] FaultyRun runWithFault(const QString &program, const QStringList &arguments,
                                     const QString &folder, const Fault &fault = {});

/** Why no run can have a fault here; empty when they can. */
[[nodiscard]] QString whyNoFaults();
