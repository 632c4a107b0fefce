#include "FuzzSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

QByteArray lineAt(const QByteArray &text, qsizetype position)
{
    const qsizetype before = position > 0 ? text.lastIndexOf('\n', position - 1) : -1;
    const qsizetype behind = text.indexOf('\n', position);
    QByteArray line = text.sliced(before + 1, (behind < 0 ? text.size() : behind) - before - 1);
    return line.replace('\r', "\\r");
}

} // namespace

void tvlInitFuzzing()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    // A page set-up needs an application.
    static int argumentCount = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    // Spelt out, so that no time zone files are needed.
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
}

QString tvlInputAsFile(const uint8_t *data, size_t size)
{
    static const QString sharedMemory = u"/dev/shm"_s;
    static const QTemporaryDir directory(
        (QFileInfo(sharedMemory).isWritable() ? sharedMemory : QDir::tempPath())
        + u"/fuzz-XXXXXX"_s);
    QFile file(directory.filePath(u"input"_s));
    if (!file.open(QIODevice::WriteOnly)
        || file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        tvlReportFinding("the input could not be put on disk");
    return file.fileName();
}

void tvlReportFinding(const char *what)
{
    std::fprintf(stderr, "FINDING: %s\n", what);
    std::abort();
}

void tvlReportDifference(const char *what, const QByteArray &expected, const QByteArray &actual)
{
    const auto [left, right] =
        std::mismatch(expected.cbegin(), expected.cend(), actual.cbegin(), actual.cend());
    const qsizetype position = left - expected.cbegin();
    std::fprintf(stderr, "expected: %s\nactual:   %s\n", lineAt(expected, position).constData(),
                 lineAt(actual, position).constData());
    tvlReportFinding(what);
}
