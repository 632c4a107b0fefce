/*
 * Feeds the entries of a journal, to which the frame and the hash are put here, to the reading of a
 * project's files. Nothing may be read for a path that leads out of the project.
 */
#include "FuzzSupport.h"

#include "TVLProjectFolderFormat.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

const QString &projectPath()
{
    static const QTemporaryDir directory;
    static const QString path = directory.path() + QStringLiteral("/Novel.tavel");
    return path;
}

void writeJournal(const QByteArray &payload)
{
    QDir().mkpath(projectPath() + QStringLiteral("/Files/Docs"));
    QFile file(projectPath() + QStringLiteral("/Files/redo.journal"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("the journal can't be written");
    file.write("TVL redo journal 1\n" + payload
               + QCryptographicHash::hash(payload, QCryptographicHash::Sha256));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    writeJournal(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const int files = TVLProjectFolderFormat::interruptedSaveFiles(projectPath());
    if (files < 0 || size_t(files) > size)
        tvlReportFinding("more files than the journal has room for");
    const QString outside = projectPath() + QStringLiteral("/../stolen");
    if (TVLProjectFolderFormat::openFile(projectPath(), outside, nullptr))
        tvlReportFinding("a file outside the project has content");
    return 0;
}
