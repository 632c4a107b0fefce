#include "LogTaker.h"

namespace {

QStringList theLines;

void take(QtMsgType, const QMessageLogContext &, const QString &text)
{
    theLines.append(text);
}

} // namespace

LogTaker::LogTaker()
    : mBefore(qInstallMessageHandler(take))
{
    theLines.clear();
}

LogTaker::~LogTaker()
{
    qInstallMessageHandler(mBefore);
}

QStringList LogTaker::lines() const
{
    return theLines;
}
