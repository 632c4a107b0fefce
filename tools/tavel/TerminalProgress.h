#pragma once

#include "TVLProgress.h"

class Console;

/**
 * Shows the progress of long work as a bar on the terminal, and nothing where there is none. The
 * work's own text isn't shown: what is being done stands in the command.
 */
class TerminalProgress : public TVLProgress
{
public:
    /** The console stays the caller's and has to live longer. */
    explicit TerminalProgress(Console *console);
    ~TerminalProgress() override;

    void begin(const QString &text, int total) override;
    void advance(int steps = 1) override;
    void finish() override;

private:
    Console *mConsole;
    int mDone = 0;
    int mTotal = 0;
};
