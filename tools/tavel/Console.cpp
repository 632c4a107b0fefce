#include "Console.h"

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &ch : line) {
        if (ch.category() == QChar::Other_Control || ch == QChar::LineSeparator
            || ch == QChar::ParagraphSeparator)
            ch = u' ';
    }
    return line;
}

Console::Console()
    : mIsTerminal(isatty(fileno(stderr)) == 1)
{
    mOutput.open(fileno(stdout), QIODevice::WriteOnly);
    mErrors.open(fileno(stderr), QIODevice::WriteOnly | QIODevice::Unbuffered);
}

void Console::write(const QByteArray &text)
{
    removeProgress();
    mOutput.write(text);
}

void Console::writeLine(const QString &line)
{
    write(line.toUtf8() + '\n');
}

void Console::complain(const QString &text)
{
    removeProgress();
    mErrors.write(u"tavel: %1\n"_s.arg(oneLine(text)).toUtf8());
}

void Console::showProgress(qsizetype done, qsizetype total)
{
    if (!mIsTerminal || total <= 0)
        return;
    const int percent = int(done * 100 / total);
    if (done >= total) {
        removeProgress();
    } else if (percent != mShownPercent) {
        constexpr int Width = 40;
        const int filled = percent * Width / 100;
        mErrors.write("\r[" + QByteArray(filled, '#') + QByteArray(Width - filled, ' ') + "] "
                      + QByteArray::number(percent).rightJustified(3) + " %");
        mShownPercent = percent;
    }
}

void Console::removeProgress()
{
    if (mShownPercent < 0)
        return;
    // Back to the first column, and the line is empty.
    mErrors.write("\r\x1b[K");
    mShownPercent = -1;
}

ExitStatus Console::fail(const QString &text)
{
    complain(text);
    return ExitStatus::Failed;
}

ExitStatus Console::refuse(const QString &text)
{
    complain(text);
    return ExitStatus::WrongUse;
}

bool Console::finish()
{
    return mOutput.flush() && mOutput.error() == QFileDevice::NoError;
}
