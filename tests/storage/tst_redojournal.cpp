#include "TVLRedoJournal_p.h"

#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/** What a save is about to write survives whatever ends it. */
class TstRedoJournal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLeftWhenAllWasWritten();
    void aSaveOfNothingMakesNoJournal();
    void anInterruptedSaveIsCompleted_data();
    void anInterruptedSaveIsCompleted();
    void otherWordsThatCameSinceStay();
    void aJournalThatIsCutOffAnywhereIsDropped();
    void aJournalThatCannotBeReadStays();
    void aJournalNeverWritesOutsideItsProject_data();
    void aJournalNeverWritesOutsideItsProject();
    void aJournalThatWasNeverFinishedIsSwept();
    void whatCouldNotBeWrittenStaysUntilItCan();
    void theNextSaveKeepsWhatTheLastCouldNotWrite();
    void aLaterSaveOfTheFileCounts_data();
    void aLaterSaveOfTheFileCounts();
    void commentsWaitForTheirText();
    void aFileIsReadAsTheJournalHasIt();
    void rawTextsOfABinderAreReadAsTheJournalHasThem();
    void aGivenUpChangeLeavesWhatWasThere();
    void aLinkInTheJournalsPlaceIsReplaced();
};

namespace {

const QString JournalFile = u"Files/redo.journal"_s;
const QString TextFile = u"Files/Docs/5.rtf"_s;
const QByteArray OldWords = "{\\rtf1 Old words}";
const QByteArray NewWords = "{\\rtf1 New words, and more of them}";

/** Begins to save a text and is killed before it has opened the file. */
void beginAndBeKilled(const TestProject &project, const QList<TVLFileContent> &contents)
{
    QByteArray journal;
    {
        const TVLRedoJournal save(project.path(), contents);
        journal = project.readFile(JournalFile);
        for (const TVLFileContent &content : contents)
            const_cast<TVLRedoJournal &>(save).setWritten(content.mFilePath);
    }
    project.writeFile(JournalFile, journal);
}

QByteArray sealed(const QByteArray &payload)
{
    return "TVL redo journal 1\n" + payload
        + QCryptographicHash::hash(payload, QCryptographicHash::Sha256);
}

QByteArray journalOf(const QString &relativePath)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << relativePath << QByteArray() << NewWords << false;
    return sealed(payload);
}

void expectLine(const char *pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(pattern)));
}

/** The one file in the folder of words that have no place any more. */
QByteArray recoveredWords(const TestProject &project)
{
    const QStringList names = QDir(project.path(u"Recovered"_s)).entryList(QDir::Files);
    return names.size() == 1 ? project.readFile(u"Recovered/"_s + names.constFirst())
                             : QByteArray::number(names.size());
}

} // namespace

void TstRedoJournal::nothingIsLeftWhenAllWasWritten()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    QVERIFY(tvlWriteJournaled(project.path(), {project.path(TextFile), NewWords}, nullptr));
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{TextFile, NewWords}}));
}

void TstRedoJournal::aSaveOfNothingMakesNoJournal()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    const TVLRedoJournal journal(project.path(), {});
    QVERIFY(!QFile::exists(project.path(JournalFile)));
}

void TstRedoJournal::anInterruptedSaveIsCompleted_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray missing;
    QTest::newRow("before the file was opened") << OldWords << OldWords;
    QTest::newRow("when it was empty") << OldWords << QByteArray("");
    QTest::newRow("when half was written") << OldWords << NewWords.first(9);
    QTest::newRow("when all was written") << OldWords << NewWords;
    QTest::newRow("of a file that is new") << missing << missing;
    QTest::newRow("of a new file that is empty") << missing << QByteArray("");
    QTest::newRow("of a file that has gone since") << OldWords << missing;
}

void TstRedoJournal::anInterruptedSaveIsCompleted()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    const TestProject project;
    project.writeFile(u"Files/Docs/1.rtf"_s, "another");
    if (!before.isNull())
        project.writeFile(TextFile, before);
    beginAndBeKilled(project, {{project.path(TextFile), NewWords}});
    if (after.isNull())
        QFile::remove(project.path(TextFile));
    else
        project.writeFile(TextFile, after);

    if (after != NewWords)
        expectLine("Completing an interrupted save of .*: 1 files written, 0 kept.*, 0 can't");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.readFile(TextFile), NewWords);
    QVERIFY(!QFile::exists(project.path(JournalFile)));
    QVERIFY(!QFile::exists(project.path(u"Recovered"_s)));
}

void TstRedoJournal::otherWordsThatCameSinceStay()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    beginAndBeKilled(project, {{project.path(TextFile), NewWords}});
    project.writeFile(TextFile, "{\\rtf1 From elsewhere}");
    expectLine("Completing an interrupted save of .*: 0 files written, 1 kept.*, 0 can't");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.readFile(TextFile), QByteArray("{\\rtf1 From elsewhere}"));
    QCOMPARE(recoveredWords(project), NewWords);
    QVERIFY(!QFile::exists(project.path(JournalFile)));
}

void TstRedoJournal::aJournalThatIsCutOffAnywhereIsDropped()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    beginAndBeKilled(project, {{project.path(TextFile), NewWords}});
    const QByteArray journal = project.readFile(JournalFile);
    for (qsizetype size = 0; size < journal.size(); ++size) {
        project.writeFile(JournalFile, journal.first(size));
        expectLine("The journal of .* is cut off and was dropped");
        TVLRedoJournal::replay(project.path());
        QCOMPARE(project.files(), (QMap<QString, QByteArray>{{TextFile, OldWords}}));
    }
}

void TstRedoJournal::aJournalThatCannotBeReadStays()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    project.writeFile(JournalFile + u"/file"_s, "in a folder");
    expectLine("The journal of .* can't be read");
    TVLRedoJournal::replay(project.path());
    expectLine("Could not write the journal of .*, saving without");
    QVERIFY(tvlWriteJournaled(project.path(), {project.path(TextFile), NewWords}, nullptr));
    QCOMPARE(project.readFile(TextFile), NewWords);
    QCOMPARE(project.readFile(JournalFile + u"/file"_s), QByteArray("in a folder"));
}

void TstRedoJournal::aJournalNeverWritesOutsideItsProject_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("above") << u"../stolen"_s;
    QTest::newRow("above, from below") << u"Files/../../stolen"_s;
    QTest::newRow("absolute") << u"/stolen"_s;
    QTest::newRow("none") << QString();
    QTest::newRow("through a link") << u"Files/link/stolen"_s;
}

void TstRedoJournal::aJournalNeverWritesOutsideItsProject()
{
    QFETCH(const QString, path);
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    QVERIFY(QFile::link(project.enclosingPath(), project.path(u"Files/link"_s)));
    project.writeFile(JournalFile, journalOf(path));
    expectLine("The journal of .* is cut off and was dropped");
    TVLRedoJournal::replay(project.path());
    QVERIFY(!QFile::exists(project.enclosingPath() + u"/stolen"_s));
    QVERIFY(!QFile::exists(u"/stolen"_s));
}

void TstRedoJournal::aJournalThatWasNeverFinishedIsSwept()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    project.writeFile(JournalFile + u".Ab12Cd"_s, "half a");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{TextFile, OldWords}}));
}

void TstRedoJournal::whatCouldNotBeWrittenStaysUntilItCan()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/5.rtf/file"_s, "in a folder");
    const QString path = project.path(TextFile);
    QString error;
    expectLine("Trying again .*: 0 files written, 0 kept.*, 1 can't");
    QVERIFY(!tvlWriteJournaled(project.path(), {path, NewWords}, &error));
    QVERIFY(!error.isEmpty());
    expectLine("Completing .*: 0 files written, 0 kept.*, 1 can't");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(TVLRedoJournal::pending(project.path()).mLeft, 1);

    QVERIFY(QDir(path).removeRecursively());
    QCOMPARE(TVLRedoJournal::pending(project.path()).mWritten, 1);
    expectLine("Completing .*: 1 files written");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{TextFile, NewWords}}));
}

void TstRedoJournal::theNextSaveKeepsWhatTheLastCouldNotWrite()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/5.rtf/file"_s, "in a folder");
    expectLine("Trying again .*1 can't");
    QVERIFY(!tvlWriteJournaled(project.path(), {project.path(TextFile), NewWords}, nullptr));
    const QString other = u"Files/Docs/6.rtf"_s;
    expectLine("Trying again .*1 can't");
    QVERIFY(tvlWriteJournaled(project.path(), {project.path(other), OldWords}, nullptr));
    QVERIFY(QDir(project.path(TextFile)).removeRecursively());
    // A save that has nothing of its own to write tries it too.
    expectLine("Trying again .*1 files written");
    {
        const TVLRedoJournal save(project.path(), {});
    }
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{TextFile, NewWords}, {other, OldWords}}));
}

void TstRedoJournal::aLaterSaveOfTheFileCounts_data()
{
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("with other words") << false;
    QTest::newRow("with none") << true;
}

void TstRedoJournal::aLaterSaveOfTheFileCounts()
{
    QFETCH(const bool, isRemoved);
    const TestProject project;
    project.writeFile(u"Files/Docs/5.rtf/file"_s, "in a folder");
    const QString path = project.path(TextFile);
    expectLine("Trying again .*1 can't");
    QVERIFY(!tvlWriteJournaled(project.path(), {path, NewWords}, nullptr));
    QVERIFY(QDir(path).removeRecursively());
    if (isRemoved)
        const TVLRedoJournal save(project.path(), {}, {path});
    else
        QVERIFY(tvlWriteJournaled(project.path(), {path, OldWords}, nullptr));
    QVERIFY(!QFile::exists(project.path(JournalFile)));
    QCOMPARE(project.readFile(TextFile), isRemoved ? QByteArray() : OldWords);
}

void TstRedoJournal::commentsWaitForTheirText()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/5.rtf/file"_s, "in a folder");
    const QString comments = u"Files/Docs/5.comments"_s;
    project.writeFile(comments, "<old/>");
    beginAndBeKilled(
        project, {{project.path(TextFile), NewWords}, {project.path(comments), "<new/>", true}});
    expectLine("Completing .*: 0 files written, 0 kept.*, 2 can't");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.readFile(comments), QByteArray("<old/>"));
    QVERIFY(QDir(project.path(TextFile)).removeRecursively());
    expectLine("Completing .*: 2 files written");
    TVLRedoJournal::replay(project.path());
    QCOMPARE(project.readFile(comments), QByteArray("<new/>"));
}

void TstRedoJournal::aFileIsReadAsTheJournalHasIt()
{
    const TestProject project;
    const QString path = project.path(TextFile);
    project.writeFile(TextFile, OldWords);
    QVERIFY(!TVLRedoJournal::pendingContent(project.path(), path));
    beginAndBeKilled(project, {{path, NewWords}});
    QCOMPARE(TVLRedoJournal::pendingContent(project.path(), path), NewWords);
    QVERIFY(!TVLRedoJournal::pendingContent(project.path(), path + u"x"_s));
    project.writeFile(TextFile, "");
    QCOMPARE(TVLRedoJournal::pendingContent(project.path(), path), NewWords);
    project.writeFile(TextFile, "other");
    QVERIFY(!TVLRedoJournal::pendingContent(project.path(), path));
}

void TstRedoJournal::rawTextsOfABinderAreReadAsTheJournalHasThem()
{
    const TestProject project;
    const QString path = TVLProjectFolderFormat::defaultBinderFilePath(project.path());
    const QByteArray data = "<UserProjectData>new</UserProjectData>";
    project.writeFile(QFileInfo(path).fileName(), "old");
    beginAndBeKilled(project, {{path, "<Project>" + data + "</Project>"}});
    QCOMPARE(TVLProjectFolderFormat::readUserProjectData(path), QString::fromUtf8(data));
}

void TstRedoJournal::aGivenUpChangeLeavesWhatWasThere()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/5.rtf/file"_s, "in a folder");
    const auto before = project.files();
    bool couldOpen = true;
    QString error;
    QVERIFY(
        !tvlWriteOrUndo(project.path(), {project.path(TextFile), NewWords}, &error, &couldOpen));
    QVERIFY(!couldOpen);
    QCOMPARE(project.files(), before);
}

void TstRedoJournal::aLinkInTheJournalsPlaceIsReplaced()
{
    const TestProject project;
    project.writeFile(TextFile, OldWords);
    const QString elsewhere = project.enclosingPath() + u"/elsewhere"_s;
    QFile other(elsewhere);
    QVERIFY(other.open(QIODevice::WriteOnly));
    QCOMPARE(other.write("somebody else's"), 15);
    other.close();
    QVERIFY(QFile::link(elsewhere, project.path(JournalFile)));
    beginAndBeKilled(project, {{project.path(TextFile), NewWords}});
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), QByteArray("somebody else's"));
}

TVL_TEST(TstRedoJournal)
#include "tst_redojournal.moc"
