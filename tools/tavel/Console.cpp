#include "Console.h"

#include <cstdio>

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
{
    mOutput.open(fileno(stdout), QIODevice::WriteOnly);
    mErrors.open(fileno(stderr), QIODevice::WriteOnly | QIODevice::Unbuffered);
}

void Console::write(const QByteArray &text)
{
    mOutput.write(text);
}

void Console::writeLine(const QString &line)
{
    write(line.toUtf8() + '\n');
}

void Console::complain(const QString &text)
{
    mErrors.write(u"tavel: %1\n"_qs.arg(oneLine(text)).toUtf8());
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
