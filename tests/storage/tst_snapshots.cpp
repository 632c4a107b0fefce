#include "DocumentFixtures.h"
#include "SnapshotFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

constexpr int ItemId = 12;

QList<TVLSnapshotInfo> listed(const TestProject &project, int id = ItemId)
{
    QList<TVLSnapshotInfo> infos;
    if (!Format::readSnapshots(project.path(), id, &infos))
        qFatal("the index can't be read");
    return infos;
}

bool folderExists(const TestProject &project, int id = ItemId)
{
    return QFileInfo::exists(project.path(snapshotsFolder(id)));
}

QByteArray indexXml(const QByteArray &snapshots)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Snapshots Version=\"1.0\">" + snapshots
        + "</Snapshots>\n";
}

QByteArray snapshotXml(const QByteArray &title,
                       const QByteArray &date = "2026-03-01 08:30:00 +0000")
{
    return "<Snapshot><Title>" + title + "</Title><Date>" + date + "</Date></Snapshot>";
}

} // namespace

class TstSnapshots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Listing
    void anItemWithoutAFolderHasNone();
    void aFolderWithoutAnIndexHasNone();
    void snapshotsAreListedInTheOrderOfTheirMaking();
    void titlesSurvive_data();
    void titlesSurvive();
    void datesAreKeptInUtcToTheSecond();
    void commentsAreKeptInTheIndex();
    void aThousandSnapshotsAreListedQuickly();
    void aProjectCanBeNamedByItsBinder();

    // What is kept in memory
    void theIndexIsReadOnce();
    void clearingGoesForOneProject();
    void whatIsWrittenIsNewsToTheNextRead();
    void hasSnapshotsAsksWhatIsKnownFirst();
    void anIdMayComeToAnotherItem();
    void aProjectMayComeToAnothersPath_data();
    void aProjectMayComeToAnothersPath();

    // Writing
    void anEmptyListRemovesTheFolder();
    void aFolderThatCannotBeMadeIsLogged();
    void aFolderThatCannotBeEnteredIsLogged();
    void anIndexThatCannotBeWrittenIsLogged();

    // Damage
    void aDamagedIndexIsNeverTouched_data();
    void aDamagedIndexIsNeverTouched();

    // Removing
    void aSnapshotIsRemovedWithItsText();
    void removingTheLastSnapshotRemovesTheFolder();
    void whatIsRemovedIsFoundByTitleAndSecond_data();
    void whatIsRemovedIsFoundByTitleAndSecond();
    void aTextThatCannotBeRemovedStaysInTheIndex();
    void aTextOfTwoEntriesGoesWithTheSecond();
    void anEntryWithoutADateCanBeRemoved();

    // Titles
    void aTitleIsSet();
    void whoseTitleIsSetIsFoundToTheSecond_data();
    void whoseTitleIsSetIsFoundToTheSecond();
    void aTitleThatCannotBeWrittenIsAFailure();
};

void TstSnapshots::anItemWithoutAFolderHasNone()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "binder");
    QVERIFY(listed(project).isEmpty());
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(!folderExists(project));
    // What the caller has in its list isn't the index's business then.
    QList<TVLSnapshotInfo> infos = {snapshotOf(u"mine"_s, 1)};
    QVERIFY(Format::readSnapshots(project.path(), ItemId, &infos));
    QCOMPARE(infos.size(), 1);
}

void TstSnapshots::aFolderWithoutAnIndexHasNone()
{
    const TestProject project;
    project.writeFile(snapshotFile(0), rtfOf("text"));
    QVERIFY(listed(project).isEmpty());
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    // Nothing is remembered of it.
    project.writeFile(snapshotsIndex(), indexXml(snapshotXml("First")));
    QVERIFY(Format::hasSnapshots(project.path(), ItemId));
    QCOMPARE(listed(project), QList<TVLSnapshotInfo>{snapshotOf(u"First"_s, 0)});
}

void TstSnapshots::snapshotsAreListedInTheOrderOfTheirMaking()
{
    const TestProject project;
    for (const int second : {5, 1, 3})
        QCOMPARE(addSnapshot(project, u"Snapshot %1"_s.arg(second), second, u"text"_s), QString());
    const QList<TVLSnapshotInfo> expected = {snapshotOf(u"Snapshot 5"_s, 5),
                                             snapshotOf(u"Snapshot 1"_s, 1),
                                             snapshotOf(u"Snapshot 3"_s, 3)};
    QCOMPARE(listed(project), expected);
    Format::clearSnapshotsCache(project.path());
    QCOMPARE(listed(project), expected);
    QVERIFY(listed(project, 13).isEmpty());
}

void TstSnapshots::titlesSurvive_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("empty") << QString();
    QTest::newRow("XML") << u"<Title> & \"quotes\" ]]> &amp;"_s;
    QTest::newRow("blanks") << u" two  blanks "_s;
    QTest::newRow("Unicode") << u"d\u00e9j\u00e0 \u6f22\u5b57 \U0001f4d6"_s;
    QTest::newRow("long") << QString(100000, u'x');
}

void TstSnapshots::titlesSurvive()
{
    QFETCH(const QString, title);
    const TestProject project;
    QCOMPARE(addSnapshot(project, title, 1, u"text"_s), QString());
    QCOMPARE(addSnapshot(project, u"another"_s, 2, u"text"_s), QString());
    QCOMPARE(snapshotTitles(project), (QStringList{title, u"another"_s}));
    QVERIFY(Format::setSnapshotTitle(project.path(), ItemId, momentOf(2), title));
    QCOMPARE(snapshotTitles(project), (QStringList{title, title}));
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(title, 1)));
    QCOMPARE(snapshotTitles(project), QStringList{title});
}

void TstSnapshots::datesAreKeptInUtcToTheSecond()
{
    const TestProject project;
    TVLSnapshotInfo info = snapshotOf(u"Now"_s, 0);
    info.mDate = QDateTime(QDate(2026, 7, 1), QTime(1, 2, 3, 987), Qt::OffsetFromUTC, 2 * 3600);
    const QTextDocument document;
    QVERIFY(Format::addSnapshot(project.path(), ItemId, info, &document, nullptr));
    QVERIFY(
        QFileInfo::exists(project.path(snapshotsFolder() + u"/2026-06-30-23-02-03+0000.rtf"_s)));
    QVERIFY(project.readFile(snapshotsIndex()).contains("2026-06-30 23:02:03 +0000"));
    const QDateTime expected(QDate(2026, 6, 30), QTime(23, 2, 3), Qt::UTC);
    QCOMPARE(listed(project).constFirst().mDate, expected);
    // The caller may go on with what it has.
    QTextDocument read;
    QVERIFY(Format::readSnapshot(project.path(), ItemId, info, &read, {}));
    QVERIFY(Format::setSnapshotTitle(project.path(), ItemId, info.mDate, u"Now"_s));
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, info));
    QVERIFY(!folderExists(project));
}

void TstSnapshots::commentsAreKeptInTheIndex()
{
    const TestProject project;
    QTextDocument document;
    document.setPlainText(u"some words of text"_s);
    TVLTextDoc::setComment(&document, {5, 5}, numberedComment(1));
    TVLTextDoc::setComment(&document, {0, 4}, numberedComment(2));
    // Those that come with the record are not those of the text.
    TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    info.mComments = {numberedComment(3)};
    QVERIFY(Format::addSnapshot(project.path(), ItemId, info, &document, nullptr));
    Format::clearSnapshotsCache(project.path());
    const QList<TVLTextCommentLink> comments = listed(project).constFirst().mComments;
    QCOMPARE(comments, TVLTextDoc::comments(&document, -1, -1));
    QCOMPARE(comments.size(), 2);
}

void TstSnapshots::aThousandSnapshotsAreListedQuickly()
{
    const TestProject project;
    QList<TVLSnapshotInfo> infos;
    for (int second = 0; second < 1000; ++second) {
        infos.append(snapshotOf(u"Snapshot %1"_s.arg(second), second));
        project.writeFile(snapshotFile(second), rtfOf("text"));
    }
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, infos));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(listed(project), infos);
    QVERIFY(timer.elapsed() < 2000);
    timer.restart();
    QVERIFY(Format::setSnapshotTitle(project.path(), ItemId, momentOf(500), u"Renamed"_s));
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, infos.at(999)));
    QVERIFY(timer.elapsed() < 5000);
    QCOMPARE(listed(project).size(), 999);
    QCOMPARE(listed(project).at(500).mTitle, u"Renamed"_s);
}

void TstSnapshots::aProjectCanBeNamedByItsBinder()
{
    const TestProject project;
    const QTextDocument document;
    QVERIFY(Format::addSnapshot(project.binderPath(), ItemId, snapshotOf(u"First"_s, 0), &document,
                                nullptr));
    QVERIFY(QFileInfo::exists(project.path(snapshotFile(0))));
    QVERIFY(Format::hasSnapshots(project.binderPath(), ItemId));
    QCOMPARE(listed(project).size(), 1);
    project.writeFile(snapshotsIndex(), indexXml({}));
    Format::clearSnapshotsCache(project.binderPath());
    QVERIFY(listed(project).isEmpty());
}

void TstSnapshots::theIndexIsReadOnce()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(), indexXml(snapshotXml("First")));
    QCOMPARE(listed(project).size(), 1);
    project.writeFile(snapshotsIndex(), indexXml(snapshotXml("Other")));
    QCOMPARE(listed(project).constFirst().mTitle, u"First"_s);
    Format::clearSnapshotsCache(project.path());
    QCOMPARE(listed(project).constFirst().mTitle, u"Other"_s);
}

void TstSnapshots::clearingGoesForOneProject()
{
    const TestProject project;
    const TestProject other(u"Other"_s);
    for (const TestProject *each : {&project, &other}) {
        for (const int id : {1, 2}) {
            each->writeFile(snapshotsIndex(id), indexXml(snapshotXml("First")));
            QCOMPARE(listed(*each, id).size(), 1);
            each->writeFile(snapshotsIndex(id), indexXml({}));
        }
    }
    Format::clearSnapshotsCache(project.path());
    for (const int id : {1, 2}) {
        QVERIFY(listed(project, id).isEmpty());
        QCOMPARE(listed(other, id).size(), 1);
    }
}

void TstSnapshots::whatIsWrittenIsNewsToTheNextRead()
{
    const TestProject project;
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, {snapshotOf(u"First"_s, 1)}));
    QCOMPARE(listed(project).size(), 1);
    QVERIFY(Format::writeSnapshots(project.path(), ItemId,
                                   {snapshotOf(u"First"_s, 1), snapshotOf(u"Second"_s, 2)}));
    QCOMPARE(listed(project).size(), 2);
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, {}));
    QVERIFY(listed(project).isEmpty());
}

void TstSnapshots::hasSnapshotsAsksWhatIsKnownFirst()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(), indexXml({}));
    // By the folder alone there are some.
    QVERIFY(Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(Format::hasSnapshotsViaSnapshotsDir(QDir(project.path(u"Snapshots"_s)), ItemId));
    QVERIFY(listed(project).isEmpty());
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    Format::clearSnapshotsCache(project.path());
    QVERIFY(Format::hasSnapshots(project.path(), ItemId));
}

void TstSnapshots::anIdMayComeToAnotherItem()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    QCOMPARE(listed(project).size(), 1);
    QVERIFY(Format::removeProjectFiles(project.path(), ItemId));
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(listed(project).isEmpty());
    // Another snapshot may bear the same second again.
    QCOMPARE(addSnapshot(project, u"Second"_s, 0, u"other text"_s), QString());
    QCOMPARE(snapshotTitles(project), QStringList{u"Second"_s});
    QCOMPARE(snapshotText(project, 0), u"other text"_s);
    // The new item's files are looked at anew.
    QVERIFY(Format::removeProjectFiles(project.path(), ItemId));
    project.writeFile(snapshotsFolder() + u"/2026-03-01-07-30-00+0100.rtf"_s, rtfOf("old form"));
    project.writeFile(snapshotsIndex(), indexXml(snapshotXml("Old")));
    QCOMPARE(snapshotText(project, 0), u"old form"_s);
}

void TstSnapshots::aProjectMayComeToAnothersPath_data()
{
    QTest::addColumn<bool>("removeFirst");
    QTest::newRow("removed") << true;
    QTest::newRow("replaced by a copy") << false;
}

void TstSnapshots::aProjectMayComeToAnothersPath()
{
    QFETCH(const bool, removeFirst);
    const TestProject project;
    const TestProject other(u"Other"_s);
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    QCOMPARE(listed(project).size(), 1);
    other.writeFile(snapshotsFolder() + u"/2026-03-01-07-30-01+0100.rtf"_s, rtfOf("old form"));
    other.writeFile(snapshotsIndex(), indexXml(snapshotXml("Old", "2026-03-01 08:30:01 +0000")));
    if (removeFirst)
        QVERIFY(Format::removeProject(project.path()));
    QVERIFY(Format::copyProject(other.path(), project.path(), false, nullptr, false, !removeFirst));
    QCOMPARE(listed(project), QList<TVLSnapshotInfo>{snapshotOf(u"Old"_s, 1)});
    QCOMPARE(snapshotText(project, 1), u"old form"_s);
}

void TstSnapshots::anEmptyListRemovesTheFolder()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, {}));
    QVERIFY(!folderExists(project));
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, {}));
    QVERIFY(!folderExists(project));
}

void TstSnapshots::aFolderThatCannotBeMadeIsLogged()
{
    const TestProject project;
    project.writeFile(u"Snapshots"_s, "a file");
    QTest::ignoreMessage(QtDebugMsg, "could not create subdir \"12.snapshots\"");
    QVERIFY(!Format::writeSnapshots(project.path(), ItemId, {snapshotOf(u"First"_s, 0)}));
    QList<TVLSnapshotInfo> infos;
    QVERIFY(!Format::readSnapshots(project.path(), ItemId, &infos));
    QCOMPARE(project.readFile(u"Snapshots"_s), "a file");
}

void TstSnapshots::aFolderThatCannotBeEnteredIsLogged()
{
    const TestProject project;
    project.writeFile(snapshotsFolder(), "a file");
    QTest::ignoreMessage(QtDebugMsg, "could not enter subdir \"12.snapshots\"");
    QVERIFY(!Format::writeSnapshots(project.path(), ItemId, {snapshotOf(u"First"_s, 0)}));
    QList<TVLSnapshotInfo> infos;
    QVERIFY(!Format::readSnapshots(project.path(), ItemId, &infos));
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    QCOMPARE(project.readFile(snapshotsFolder()), "a file");
}

void TstSnapshots::anIndexThatCannotBeWrittenIsLogged()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path(snapshotsIndex())));
    const QString line = u"failed to open file \"%1\""_s.arg(project.path(snapshotsIndex()));
    QTest::ignoreMessage(QtDebugMsg, qPrintable(line));
    QVERIFY(!Format::writeSnapshots(project.path(), ItemId, {snapshotOf(u"First"_s, 0)}));
}

void TstSnapshots::aDamagedIndexIsNeverTouched_data()
{
    QTest::addColumn<QByteArray>("index");
    QTest::newRow("cut off") << QByteArray(
        "<Snapshots Version=\"1.0\"><Snapshot><Title>First</Title>");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("another document") << QByteArray("<Comments/>");
    QTest::newRow("no XML") << QByteArray(1000, '\0');
}

void TstSnapshots::aDamagedIndexIsNeverTouched()
{
    QFETCH(const QByteArray, index);
    const TestProject project;
    project.writeFile(snapshotFile(0), rtfOf("text"));
    project.writeFile(snapshotsIndex(), index);
    QCOMPARE(addSnapshot(project, u"Source"_s, 5, u"text"_s, 13), QString());
    const QMap<QString, QByteArray> before = project.files();

    QList<TVLSnapshotInfo> infos = {snapshotOf(u"mine"_s, 0)};
    QVERIFY(!Format::readSnapshots(project.path(), ItemId, &infos));
    QCOMPARE(infos.size(), 1);
    QVERIFY(Format::hasSnapshots(project.path(), ItemId));
    QCOMPARE(
        addSnapshot(project, u"Second"_s, 1, u"text"_s),
        u"Could not read the index of the snapshots: '%1'"_s.arg(project.path(snapshotsIndex())));
    QVERIFY(!Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"First"_s, 0)));
    QVERIFY(!Format::setSnapshotTitle(project.path(), ItemId, momentOf(0), u"Other"_s));
    Format::fixSnapshotFileNames(project.path(), ItemId);
    QVERIFY(!Format::mergeSnapshots(project.path(), ItemId, {13}));
    // As a source it is told to be incomplete, so that nobody deletes it.
    QVERIFY(!Format::mergeSnapshots(project.path(), 13, {ItemId}));
    QCOMPARE(project.files(), before);
    // Its texts can still be read.
    QCOMPARE(snapshotText(project, 0), u"text"_s);
}

void TstSnapshots::aSnapshotIsRemovedWithItsText()
{
    const TestProject project;
    for (const int second : {1, 2, 3})
        QCOMPARE(addSnapshot(project, u"Same"_s, second, QString::number(second)), QString());
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"Same"_s, 2)));
    QCOMPARE(listed(project), (QList{snapshotOf(u"Same"_s, 1), snapshotOf(u"Same"_s, 3)}));
    QVERIFY(!QFileInfo::exists(project.path(snapshotFile(2))));
    QCOMPARE(snapshotText(project, 1), u"1"_s);
    QCOMPARE(snapshotText(project, 3), u"3"_s);
    QVERIFY(!Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"Same"_s, 2)));
}

void TstSnapshots::removingTheLastSnapshotRemovesTheFolder()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 1, u"text"_s), QString());
    QCOMPARE(addSnapshot(project, u"Second"_s, 2, u"text"_s), QString());
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"First"_s, 1)));
    QVERIFY(Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"Second"_s, 2)));
    QVERIFY(!Format::hasSnapshots(project.path(), ItemId));
    QVERIFY(!folderExists(project));
    QVERIFY(listed(project).isEmpty());
}

void TstSnapshots::whatIsRemovedIsFoundByTitleAndSecond_data()
{
    QTest::addColumn<TVLSnapshotInfo>("info");
    QTest::addColumn<bool>("isFound");
    const TVLSnapshotInfo first = snapshotOf(u"First"_s, 1);
    TVLSnapshotInfo utc = first;
    utc.mDate = first.mDate.toUTC();
    TVLSnapshotInfo within = first;
    within.mDate = first.mDate.addMSecs(999);
    TVLSnapshotInfo next = first;
    next.mDate = first.mDate.addMSecs(1000);
    QTest::newRow("local time") << first << true;
    QTest::newRow("UTC") << utc << true;
    QTest::newRow("within the second") << within << true;
    QTest::newRow("next second") << next << false;
    QTest::newRow("another title") << snapshotOf(u"first"_s, 1) << false;
    QTest::newRow("no date") << TVLSnapshotInfo{u"First"_s, {}, {}, {}} << false;
}

void TstSnapshots::whatIsRemovedIsFoundByTitleAndSecond()
{
    QFETCH(const TVLSnapshotInfo, info);
    QFETCH(const bool, isFound);
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 1, u"text"_s), QString());
    const QMap<QString, QByteArray> before = project.files();
    QCOMPARE(Format::removeSnapshot(project.path(), ItemId, info), isFound);
    QCOMPARE(folderExists(project), !isFound);
    if (!isFound)
        QCOMPARE(project.files(), before);
}

void TstSnapshots::aTextThatCannotBeRemovedStaysInTheIndex()
{
    const TestProject project;
    QVERIFY(Format::writeSnapshots(project.path(), ItemId, {snapshotOf(u"First"_s, 1)}));
    project.writeFile(snapshotFile(1) + u"/a folder"_s, "in its place");
    QVERIFY(!Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"First"_s, 1)));
    QCOMPARE(snapshotTitles(project), QStringList{u"First"_s});
}

void TstSnapshots::aTextOfTwoEntriesGoesWithTheSecond()
{
    const TestProject project;
    QVERIFY(Format::writeSnapshots(
        project.path(), ItemId,
        {snapshotOf(u"First"_s, 1), snapshotOf(u"Second"_s, 1), snapshotOf(u"Third"_s, 3)}));
    project.writeFile(snapshotFile(1), rtfOf("text"));
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"First"_s, 1)));
    QCOMPARE(snapshotText(project, 1), u"text"_s);
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, snapshotOf(u"Second"_s, 1)));
    QVERIFY(!QFileInfo::exists(project.path(snapshotFile(1))));
}

void TstSnapshots::anEntryWithoutADateCanBeRemoved()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(), indexXml(snapshotXml("First") + snapshotXml("Bad", "?")));
    project.writeFile(snapshotFile(0), rtfOf("text"));
    const TVLSnapshotInfo bad = listed(project).constLast();
    QVERIFY(!bad.mDate.isValid());
    QVERIFY(Format::removeSnapshot(project.path(), ItemId, bad));
    QCOMPARE(snapshotTitles(project), QStringList{u"First"_s});
    QCOMPARE(snapshotText(project, 0), u"text"_s);
}

void TstSnapshots::aTitleIsSet()
{
    const TestProject project;
    for (const int second : {1, 2, 3})
        QCOMPARE(addSnapshot(project, u"Same"_s, second, QString::number(second)), QString());
    QMap<QString, QByteArray> before = project.files();
    QVERIFY(Format::setSnapshotTitle(project.path(), ItemId, momentOf(2), u"Other"_s));
    QCOMPARE(snapshotTitles(project), (QStringList{u"Same"_s, u"Other"_s, u"Same"_s}));
    QMap<QString, QByteArray> after = project.files();
    before.remove(snapshotsIndex());
    after.remove(snapshotsIndex());
    QCOMPARE(after, before);
}

void TstSnapshots::whoseTitleIsSetIsFoundToTheSecond_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("local time") << momentOf(1) << true;
    QTest::newRow("UTC") << momentOf(1).toUTC() << true;
    QTest::newRow("within the second") << momentOf(1).addMSecs(999) << true;
    QTest::newRow("next second") << momentOf(2) << false;
    QTest::newRow("no date") << QDateTime() << false;
}

void TstSnapshots::whoseTitleIsSetIsFoundToTheSecond()
{
    QFETCH(const QDateTime, date);
    QFETCH(const bool, isFound);
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 1, u"text"_s), QString());
    QCOMPARE(Format::setSnapshotTitle(project.path(), ItemId, date, u"Other"_s), isFound);
    QCOMPARE(snapshotTitles(project), QStringList{isFound ? u"Other"_s : u"First"_s});
}

void TstSnapshots::aTitleThatCannotBeWrittenIsAFailure()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 1, u"text"_s), QString());
    QCOMPARE(listed(project).size(), 1);
    makeUnwritable(project, snapshotsIndex());
    QVERIFY(!Format::setSnapshotTitle(project.path(), ItemId, momentOf(1), u"Other"_s));
    // What was known is still what the next attempt starts from.
    QCOMPARE(listed(project).constFirst().mTitle, u"First"_s);
    QVERIFY(QFile::remove(project.path(snapshotsIndex())));
    QVERIFY(Format::setSnapshotTitle(project.path(), ItemId, momentOf(1), u"Other"_s));
    QCOMPARE(snapshotTitles(project), QStringList{u"Other"_s});
}

TVL_TEST(TstSnapshots)
#include "tst_snapshots.moc"
