#include "SnapshotFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TestProject.h"

#include <QTextDocument>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

using Format = TVLProjectFolderFormat;

QDateTime momentOf(int second)
{
    return QDateTime(QDate(2026, 3, 1), QTime(8, 30), Qt::UTC).addSecs(second).toLocalTime();
}

TVLSnapshotInfo snapshotOf(const QString &title, int second)
{
    TVLSnapshotInfo info;
    info.mTitle = title;
    info.mDate = momentOf(second);
    return info;
}

QString snapshotsFolder(int id)
{
    return u"Snapshots/%1.snapshots"_s.arg(id);
}

QString snapshotsIndex(int id)
{
    return snapshotsFolder(id) + u"/index.xml"_s;
}

QString snapshotFile(int second, int id)
{
    return snapshotsFolder(id) + u'/' + Format::dateTimeToString(momentOf(second), true)
        + u".rtf"_s;
}

QString addSnapshot(const TestProject &project, const QString &title, int second,
                    const QString &text, int id)
{
    QTextDocument document;
    document.setPlainText(text);
    QString error;
    const bool ok =
        Format::addSnapshot(project.path(), id, snapshotOf(title, second), &document, &error);
    return ok || !error.isEmpty() ? error : u"failed"_s;
}

QStringList snapshotTitles(const TestProject &project, int id)
{
    Format::clearSnapshotsCache(project.path());
    QList<TVLSnapshotInfo> infos;
    if (!Format::readSnapshots(project.path(), id, &infos))
        return {u"unreadable"_s};
    QStringList titles;
    for (const TVLSnapshotInfo &info : std::as_const(infos))
        titles.append(info.mTitle);
    return titles;
}

QString snapshotText(const TestProject &project, int second, int id)
{
    QTextDocument document;
    const bool ok =
        Format::readSnapshot(project.path(), id, snapshotOf(QString(), second), &document, {});
    return ok ? document.toPlainText() : u"unreadable"_s;
}

FileSizeLimit::FileSizeLimit(int bytes)
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
        qFatal("could not ask for the largest file size");
    mOldLimit = limit.rlim_cur;
    limit.rlim_cur = rlim_t(bytes);
    // Without a handler a write beyond the limit would end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
        qFatal("could not limit the file size");
}

FileSizeLimit::~FileSizeLimit()
{
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = mOldLimit;
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_DFL);
}
