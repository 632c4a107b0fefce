#include "Outcome.h"

#include "TVLCoreUtil.h"

#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace TTextTransform;

namespace {

QString lastWords(const QByteArray &output)
{
    constexpr qsizetype Longest = 1000;
    return QString::fromUtf8(output).trimmed().right(Longest);
}

} // namespace

Outcome outcomeOf(const TVLProcess::Result &result, const QString &name)
{
    if (result.isDone())
        return {};
    if (result.isCanceled)
        return {Canceled};
    switch (result.error) {
    case QProcess::FailedToStart:
        return {ConverterNotFound, u"%1 isn't installed."_s.arg(name)};
    case QProcess::Timedout:
        return {TimedOut, u"%1 did not end in time."_s.arg(name)};
    case QProcess::Crashed:
        return {ConverterFailed, u"%1 has crashed."_s.arg(name)};
    default:
        break;
    }
    const QString said = lastWords(result.output);
    return {ConverterFailed,
            said.isEmpty() ? u"%1 has ended with exit code %2."_s.arg(name).arg(result.exitCode)
                           : said};
}

Outcome outcomeOfFile(const QString &path, const QByteArray &said)
{
    if (QFileInfo(path).isFile())
        return {};
    return {WritingFailed, lastWords(said)};
}

Outcome copyFile(const QString &source, const QString &target)
{
    bool isRead = false;
    const QByteArray bytes = TVLCoreUtil::ReadBinaryFile(source, &isRead);
    if (!isRead)
        return {InputUnreadable};
    QString error;
    bool couldOpen = false;
    if (TVLCoreUtil::WriteBinaryFile(bytes, target, &error, &couldOpen))
        return {};
    return {couldOpen ? WritingFailed : OutputNotOpened, error};
}

int exitStatusOf(const Outcome &outcome)
{
    if (outcome.isDone())
        return 0;
    const QString words =
        outcome.reason.isEmpty() ? errorDescription(outcome.code) : outcome.reason;
    std::fprintf(stderr, "%s\n", words.toUtf8().constData());
    return FirstExitStatus + int(outcome.code);
}
