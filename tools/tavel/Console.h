#pragma once

#include <QFile>
#include <QString>

/** How the tool ends, as its exit status. */
enum class ExitStatus : int {
    Done = 0,
    Failed = 1, ///< The operation failed; a line on standard error says why.
    WrongUse = 2, ///< The command line is wrong; a line on standard error says how.
};

/**
 * A text fit for one line of a terminal: control characters, which could break the line or drive
 * the terminal, become blanks.
 */
[[nodiscard]] QString oneLine(const QString &text);

/** Standard output and standard error, both in UTF-8. */
class Console
{
public:
    Console();

    /** Writes to standard output as it stands. */
    void write(const QByteArray &text);
    /** Writes a line to standard output. */
    void writeLine(const QString &line);
    /** Writes a line to standard error, under the tool's name. */
    void complain(const QString &text);

    /**
     * Shows how much of a long work is done, as a bar at the foot of the terminal; nothing when
     * standard error isn't one. The bar goes with the last step, and before anything else is said.
     */
    void showProgress(qsizetype done, qsizetype total);

    /** Complains and gives the status to end with. */
    [[nodiscard]] ExitStatus fail(const QString &text);
    [[nodiscard]] ExitStatus refuse(const QString &text);

    /** Whether all that was written has arrived. */
    [[nodiscard]] bool finish();

private:
    void removeProgress();

    QFile mOutput;
    QFile mErrors;
    bool mIsTerminal; ///< Whether somebody watches standard error.
    int mShownPercent = -1; ///< Of the bar that is on the terminal; -1 for no bar.
};
