#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

/** `tavel snapshot add`, `list`, `show` and `restore`. */
class TstToolSnapshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSnapshotIsAddedListedAndShown();
    void anAddedSnapshotChangesNothingElse();
    void aSnapshotNeedsNoTitle();
    void snapshotsOfOneSecondGetDatesOfTheirOwn();
    void jsonHasNumberDateAndTitle();
    void theOldestSnapshotIsTheFirst();
    void anItemWithoutSnapshotsHasAnEmptyList();
    void listingTouchesNothingButTheBackup();
    void aSnapshotIsNamedInSeveralWays_data();
    void aSnapshotIsNamedInSeveralWays();
    void anAmbiguousOrUnknownNameIsAFailure_data();
    void anAmbiguousOrUnknownNameIsAFailure();
    void aRestoredTextIsExactlyThatOfTheSnapshot();
    void thePresentTextBecomesASnapshotFirst();
    void withoutABackupNoSnapshotIsTaken();
    void everyCharacterComesBack();
    void whatHasNoTextIsRefused_data();
    void whatHasNoTextIsRefused();
    void aTextThatCannotBeReadIsLeftAlone_data();
    void aTextThatCannotBeReadIsLeftAlone();
    void aTextOutOfSightGetsNoSnapshot_data();
    void aTextOutOfSightGetsNoSnapshot();
    void aDamagedSnapshotIsNotRestored();
    void aDamagedListIsAFailure_data();
    void aDamagedListIsAFailure();
    void aListOutOfSightIsAFailure_data();
    void aListOutOfSightIsAFailure();
    void theProjectIsNotLockedAfterwards();
};

namespace {

const QString Harbour = u"Draft/Part 1/The Harbour"_s;

ProgramResult snapshot(const QString &action, const TestProject &project, const QString &item,
                       const QStringList &rest = {})
{
    return runTool(QStringList{u"snapshot"_s, action, project.path(), item} + rest);
}

QJsonArray listOf(const TestProject &project, const QString &item)
{
    return snapshot(u"list"_s, project, item, {u"--json"_s}).json().array();
}

struct Snapshot
{
    QByteArray title;
    QByteArray date; ///< As the index has it.
    QByteArray text;
};

/** Gives an item snapshots, in this order. */
void writeSnapshots(const TestProject &project, int id, const QList<Snapshot> &snapshots)
{
    const QString folder = u"Snapshots/%1.snapshots/"_s.arg(id);
    QByteArray index;
    for (const Snapshot &snapshot : snapshots) {
        index += "<Snapshot><Title>" + snapshot.title + "</Title><Date>" + snapshot.date
            + "</Date></Snapshot>";
        QByteArray name = snapshot.date;
        name.replace(' ', '-').replace(':', '-').replace("-+", "+");
        project.writeFile(folder + QString::fromLatin1(name) + u".rtf"_s,
                          "{\\rtf1 " + snapshot.text + "}");
    }
    project.writeFile(folder + u"index.xml"_s,
                      "<Snapshots Version=\"1.0\">" + index + "</Snapshots>");
}

/** A sound project whose item 4 has three snapshots; the newest is the first in the index. */
void writeProjectWithSnapshots(const TestProject &project)
{
    writeSoundProject(project);
    writeSnapshots(project, 4,
                   {{"Twin", "2026-03-03 03:00:00 +0000", "Third."},
                    {"Start", "2026-03-01 01:00:00 +0000", "First."},
                    {"Twin", "2026-03-02 02:00:00 +0000", "Second."}});
}

} // namespace

void TstToolSnapshot::aSnapshotIsAddedListedAndShown()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult added = snapshot(u"add"_s, project, Harbour, {u"First / version"_s});
    QCOMPARE(added.errors, QByteArray());
    QCOMPARE(added.status, 0);
    QCOMPARE(added.output, QByteArray("Took a snapshot of 'The Harbour'\n"));

    const QByteArray line = snapshot(u"list"_s, project, Harbour).output;
    QVERIFY2(line.startsWith("  1  20") && line.endsWith("Z  First / version\n"), line);
    QCOMPARE(snapshot(u"show"_s, project, Harbour, {u"1"_s}).output, QByteArray("Gulls.\n"));
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolSnapshot::anAddedSnapshotChangesNothingElse()
{
    const TestProject project;
    writeSoundProject(project);
    auto before = project.files();
    QCOMPARE(snapshot(u"add"_s, project, u"4"_s, {u"A"_s}).status, 0);
    auto after = project.files();
    const auto isExpected = [](const auto &file) {
        return file.key().startsWith(u"Snapshots/4.snapshots/")
            || file.key() == u"Files/binder.backup"_s;
    };
    QVERIFY(after.removeIf(isExpected) == 3);
    QCOMPARE(after, before);
}

void TstToolSnapshot::aSnapshotNeedsNoTitle()
{
    const TestProject project;
    writeSoundProject(project);
    QCOMPARE(snapshot(u"add"_s, project, Harbour).status, 0);
    QCOMPARE(listOf(project, Harbour).at(0)[u"title"], QJsonValue(QString()));
}

void TstToolSnapshot::snapshotsOfOneSecondGetDatesOfTheirOwn()
{
    const TestProject project;
    writeSoundProject(project);
    for (const QString &title : {u"A"_s, u"B"_s, u"C"_s})
        QCOMPARE(snapshot(u"add"_s, project, Harbour, {title}).status, 0);
    const QJsonArray list = listOf(project, Harbour);
    QCOMPARE(list.size(), 3);
    QSet<QString> dates;
    for (const QJsonValue &entry : list)
        dates.insert(entry[u"date"].toString());
    QCOMPARE(dates.size(), 3);
}

void TstToolSnapshot::jsonHasNumberDateAndTitle()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    const QJsonObject first = listOf(project, Harbour).at(0).toObject();
    QCOMPARE(first.keys(), QStringList({u"date"_s, u"number"_s, u"title"_s}));
    QCOMPARE(first[u"number"], QJsonValue(1));
    QCOMPARE(first[u"date"], QJsonValue(u"2026-03-01T01:00:00Z"_s));
    QCOMPARE(first[u"title"], QJsonValue(u"Start"_s));
}

void TstToolSnapshot::theOldestSnapshotIsTheFirst()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    QCOMPARE(snapshot(u"list"_s, project, Harbour).output,
             QByteArray("  1  2026-03-01T01:00:00Z  Start\n"
                        "  2  2026-03-02T02:00:00Z  Twin\n"
                        "  3  2026-03-03T03:00:00Z  Twin\n"));
}

void TstToolSnapshot::anItemWithoutSnapshotsHasAnEmptyList()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult text = snapshot(u"list"_s, project, Harbour);
    QCOMPARE(text.status, 0);
    QCOMPARE(text.output, QByteArray());
    const ProgramResult json = snapshot(u"list"_s, project, Harbour, {u"--json"_s});
    QVERIFY(json.json().isArray());
    QCOMPARE(json.json().array().size(), 0);
}

void TstToolSnapshot::listingTouchesNothingButTheBackup()
{
    const TestProject project;
    writeProject(project, soundBinder());
    project.writeFile(u"Files/user.lock"_s, "host=elsewhere");
    const auto before = everythingBelow(project.path());
    QCOMPARE(snapshot(u"list"_s, project, Harbour).status, 0);
    QCOMPARE(snapshot(u"show"_s, project, Harbour, {u"1"_s}).status, 1);
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolSnapshot::aSnapshotIsNamedInSeveralWays_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("by its number") << u"2"_s << QByteArray("Second.\n");
    QTest::newRow("by its date") << u"2026-03-03T03:00:00Z"_s << QByteArray("Third.\n");
    QTest::newRow("by its title") << u"Start"_s << QByteArray("First.\n");
}

void TstToolSnapshot::aSnapshotIsNamedInSeveralWays()
{
    QFETCH(const QString, which);
    QFETCH(const QByteArray, text);
    const TestProject project;
    writeProjectWithSnapshots(project);
    const ProgramResult result = snapshot(u"show"_s, project, Harbour, {which});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.output, text);
}

void TstToolSnapshot::anAmbiguousOrUnknownNameIsAFailure_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("a title of two")
        << u"Twin"_s << QByteArray("'Twin' may mean snapshot 2 or 3; give its date");
    QTest::newRow("a number and a title")
        << u"4"_s << QByteArray("'4' may mean snapshot 1 or 4; give its date");
    QTest::newRow("a number behind the last") << u"5"_s << QByteArray("there is no snapshot '5'");
    QTest::newRow("no number") << u"0"_s << QByteArray("there is no snapshot '0'");
    QTest::newRow("a title of none") << u"start"_s << QByteArray("there is no snapshot 'start'");
    QTest::newRow("nothing") << QString() << QByteArray("there is no snapshot ''");
}

void TstToolSnapshot::anAmbiguousOrUnknownNameIsAFailure()
{
    QFETCH(const QString, which);
    QFETCH(const QByteArray, error);
    const TestProject project;
    writeSoundProject(project);
    writeSnapshots(project, 4,
                   {{"4", "2026-03-01 01:00:00 +0000", "First."},
                    {"Twin", "2026-03-02 02:00:00 +0000", "Second."},
                    {"Twin", "2026-03-03 03:00:00 +0000", "Third."},
                    {"", "2026-03-04 04:00:00 +0000", "Fourth."}});
    for (const QString &action : {u"show"_s, u"restore"_s}) {
        const ProgramResult result = snapshot(action, project, Harbour, {which});
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors, "tavel: " + error + '\n');
    }
    QCOMPARE(catOf(project, Harbour), QByteArray("Gulls.\n"));
    QCOMPARE(listOf(project, Harbour).size(), 4);
}

void TstToolSnapshot::aRestoredTextIsExactlyThatOfTheSnapshot()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    const ProgramResult result = snapshot(u"restore"_s, project, Harbour, {u"Start"_s});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output,
             QByteArray("Took a snapshot of the present text\n"
                        "Restored 'The Harbour' as of 2026-03-01T01:00:00Z 'Start'\n"));
    QCOMPARE(catOf(project, Harbour), QByteArray("First.\n"));
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolSnapshot::thePresentTextBecomesASnapshotFirst()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    QCOMPARE(snapshot(u"restore"_s, project, Harbour, {u"1"_s}).status, 0);
    QCOMPARE(listOf(project, Harbour).size(), 4);
    QCOMPARE(listOf(project, Harbour).at(3)[u"title"],
             QJsonValue(u"Before going back to 2026-03-01T01:00:00Z 'Start'"_s));
    // And so the way back is open.
    QCOMPARE(snapshot(u"restore"_s, project, Harbour, {u"4"_s}).status, 0);
    QCOMPARE(catOf(project, Harbour), QByteArray("Gulls.\n"));
}

void TstToolSnapshot::withoutABackupNoSnapshotIsTaken()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    const ProgramResult result =
        snapshot(u"restore"_s, project, Harbour, {u"2"_s, u"--no-backup"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output,
             QByteArray("Restored 'The Harbour' as of 2026-03-02T02:00:00Z 'Twin'\n"));
    QCOMPARE(listOf(project, Harbour).size(), 3);
    QCOMPARE(catOf(project, Harbour), QByteArray("Second.\n"));
}

void TstToolSnapshot::everyCharacterComesBack()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s,
                      "{\\rtf1\\ansi na\\'efve \\u8212? \\u-10180?\\u-8435?\\par\\par {\\b x}}");
    const QByteArray before = catOf(project, Harbour);
    QCOMPARE(before, u"na\u00efve \u2014 \U0001f30d\n\nx\n"_s.toUtf8());
    const QString title = u"\u00dcber/\u4e2d \U0001f30d"_s;
    QCOMPARE(snapshot(u"add"_s, project, Harbour, {title}).status, 0);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Something else.}");

    QCOMPARE(snapshot(u"show"_s, project, Harbour, {title}).output, before);
    QCOMPARE(snapshot(u"restore"_s, project, Harbour, {title}).status, 0);
    QCOMPARE(catOf(project, Harbour), before);
}

void TstToolSnapshot::whatHasNoTextIsRefused_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QByteArray>("error");
    const QByteArray noText = "'Draft' has no text of its own";
    const QByteArray noItem = "there is no item 'Draft/Nowhere'";
    for (const QString &action : {u"add"_s, u"list"_s, u"show"_s, u"restore"_s}) {
        QTest::addRow("%s, a system folder", qPrintable(action)) << action << u"Draft"_s << noText;
        QTest::addRow("%s, no item", qPrintable(action)) << action << u"Draft/Nowhere"_s << noItem;
        QTest::addRow("%s, an image", qPrintable(action))
            << action << u"9"_s << QByteArray("'Map' has no text of its own");
    }
}

void TstToolSnapshot::whatHasNoTextIsRefused()
{
    QFETCH(const QString, action);
    QFETCH(const QString, item);
    QFETCH(const QByteArray, error);
    const TestProject project;
    writeProject(project, binderXml(systemFolders({}) + ::item(9, "Image", "Map")));
    const QStringList rest =
        action == u"show"_s || action == u"restore"_s ? QStringList(u"1"_s) : QStringList();
    const ProgramResult result = snapshot(action, project, item, rest);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, "tavel: " + error + '\n');
}

void TstToolSnapshot::aTextThatCannotBeReadIsLeftAlone_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::newRow("add") << QStringList{u"add"_s, u"Title"_s};
    QTest::newRow("restore") << QStringList{u"restore"_s, u"1"_s};
    QTest::newRow("restore without a backup")
        << QStringList{u"restore"_s, u"1"_s, u"--no-backup"_s};
}

void TstToolSnapshot::aTextThatCannotBeReadIsLeftAlone()
{
    QFETCH(const QStringList, command);
    const TestProject project;
    writeProjectWithSnapshots(project);
    const QByteArray damaged = "{\\rtf1 Gulls over the";
    project.writeFile(u"Files/Docs/4.rtf"_s, damaged);
    const ProgramResult result = snapshot(command.constFirst(), project, Harbour, command.mid(1));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorLines().size(), 1);
    QVERIFY2(result.errors.contains("4.rtf"), result.errors);
    QCOMPARE(project.readFile(u"Files/Docs/4.rtf"_s), damaged);
    QCOMPARE(listOf(project, Harbour).size(), 3);
}

void TstToolSnapshot::aTextOutOfSightGetsNoSnapshot_data()
{
    QTest::addColumn<QString>("hidden");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("a text behind a link to nowhere")
        << u"4.rtf"_s << QString() << QByteArray("Could not open document file for reading: '");
    QTest::newRow("comments that are cut off")
        << u"4.comments"_s << u"<Comments><Comm"_s
        << QByteArray("The comments of 'The Harbour' could not be read, so there is no snapshot");
}

void TstToolSnapshot::aTextOutOfSightGetsNoSnapshot()
{
    QFETCH(const QString, hidden);
    QFETCH(const QString, content);
    QFETCH(const QByteArray, error);
    const TestProject project;
    writeSoundProject(project);
    const QString path = project.path(u"Files/Docs/"_s + hidden);
    QFile::remove(path);
    if (content.isEmpty())
        QVERIFY(QFile::link(u"nowhere"_s, path));
    else
        project.writeFile(u"Files/Docs/"_s + hidden, content.toUtf8());
    const ProgramResult result = snapshot(u"add"_s, project, Harbour, {u"Title"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QVERIFY2(result.errorLines().constLast().startsWith("tavel: " + error), result.errors);
    QCOMPARE(listOf(project, Harbour).size(), 0);
    QVERIFY(!QFile::exists(project.path(u"Snapshots/4.snapshots"_s)));
}

void TstToolSnapshot::aDamagedSnapshotIsNotRestored()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    project.writeFile(u"Snapshots/4.snapshots/2026-03-01-01-00-00+0000.rtf"_s, "{\\rtf1 Fir");
    const QByteArray reason = "can't be read: 2026-03-01T01:00:00Z 'Start'\n";
    const ProgramResult shown = snapshot(u"show"_s, project, Harbour, {u"1"_s});
    QCOMPARE(shown.status, 1);
    QCOMPARE(shown.errors, "tavel: the snapshot " + reason);
    const ProgramResult restored = snapshot(u"restore"_s, project, Harbour, {u"1"_s});
    QCOMPARE(restored.status, 1);
    QCOMPARE(restored.errors, "tavel: the snapshot " + reason);
    QCOMPARE(catOf(project, Harbour), QByteArray("Gulls.\n"));
}

void TstToolSnapshot::aDamagedListIsAFailure_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::newRow("add") << QStringList{u"add"_s, u"Title"_s};
    QTest::newRow("list") << QStringList(u"list"_s);
    QTest::newRow("show") << QStringList{u"show"_s, u"1"_s};
    QTest::newRow("restore") << QStringList{u"restore"_s, u"1"_s};
}

void TstToolSnapshot::aDamagedListIsAFailure()
{
    QFETCH(const QStringList, command);
    const TestProject project;
    writeProjectWithSnapshots(project);
    project.writeFile(u"Snapshots/4.snapshots/index.xml"_s, "<Snapshots><Snap");
    const ProgramResult result = snapshot(command.constFirst(), project, Harbour, command.mid(1));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors,
             QByteArray("tavel: the list of the item's snapshots can't be read: "
                        "Snapshots/4.snapshots\n"));
    QCOMPARE(project.readFile(u"Snapshots/4.snapshots/index.xml"_s),
             QByteArray("<Snapshots><Snap"));
}

void TstToolSnapshot::aListOutOfSightIsAFailure_data()
{
    QTest::addColumn<QString>("hidden");
    QTest::newRow("the folder of the item's snapshots") << u"Snapshots/4.snapshots"_s;
    QTest::newRow("the folder of all snapshots") << u"Snapshots"_s;
}

void TstToolSnapshot::aListOutOfSightIsAFailure()
{
    QFETCH(const QString, hidden);
    const TestProject project;
    writeProjectWithSnapshots(project);
    const QString path = project.path(hidden);
    QVERIFY(QFile::rename(path, path + u".away"_s));
    QVERIFY(QFile::link(u"nowhere"_s, path));
    for (const QStringList &command :
         {QStringList(u"list"_s), QStringList{u"show"_s, u"1"_s}, QStringList(u"add"_s)}) {
        const ProgramResult result =
            snapshot(command.constFirst(), project, Harbour, command.mid(1));
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 QByteArray("tavel: the list of the item's snapshots can't be read: "
                            "Snapshots/4.snapshots\n"));
    }
    QVERIFY(!QFile::exists(path));
}

void TstToolSnapshot::theProjectIsNotLockedAfterwards()
{
    const TestProject project;
    writeProjectWithSnapshots(project);
    for (const QStringList &command : {QStringList(u"add"_s), QStringList{u"restore"_s, u"1"_s},
                                       QStringList{u"restore"_s, u"77"_s}}) {
        (void)snapshot(command.constFirst(), project, Harbour, command.mid(1));
        QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
    }
}

TVL_TEST(TstToolSnapshot)
#include "tst_toolsnapshot.moc"
