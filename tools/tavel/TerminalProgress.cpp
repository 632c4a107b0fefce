#include "TerminalProgress.h"

#include "Console.h"

TerminalProgress::TerminalProgress(Console *console)
    : mConsole(console)
{
}

TerminalProgress::~TerminalProgress()
{
    TerminalProgress::finish();
}

void TerminalProgress::begin(const QString & /*text*/, int total)
{
    mDone = 0;
    mTotal = total;
    mConsole->showProgress(mDone, mTotal);
}

void TerminalProgress::advance(int steps)
{
    mDone += steps;
    mConsole->showProgress(mDone, mTotal);
}

void TerminalProgress::finish()
{
    mDone = mTotal;
    mConsole->showProgress(mDone, mTotal);
}
