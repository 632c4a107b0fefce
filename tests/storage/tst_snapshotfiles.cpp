#include "DocumentComparison.h"
#include "DocumentFixtures.h"
#include "RandomDocument.h"
#include "SnapshotFixtures.h"
#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

constexpr int Id = 12;

bool addDocument(const TestProject &project, const QTextDocument &document, int second = 0,
                 QString *error = nullptr)
{
    return Format::addSnapshot(project.path(), Id, snapshotOf(u"Title"_s, second), &document,
                               error);
}

QString alreadyExists(const TestProject &project, const QString &file)
{
    return u"Snapshot file already exists. Will not overwrite snapshot file: '%1'"_s.arg(
        project.path(file));
}

/** The record of an item's only snapshot. */
TVLSnapshotInfo onlySnapshot(const TestProject &project)
{
    Format::clearSnapshotsCache(project.path());
    QList<TVLSnapshotInfo> infos;
    if (!Format::readSnapshots(project.path(), Id, &infos) || infos.size() != 1)
        qFatal("there should be one snapshot");
    return infos.constFirst();
}

QStringList snapshotAddresses(const QTextDocument &document)
{
    return TVLTextDoc::internalLinks(&document).values();
}

QByteArray indexWithLinks(const QByteArray &links)
{
    return "<Snapshots Version=\"1.0\"><Snapshot><Title>Old</Title>"
           "<Date>2026-03-01 08:30:00 +0000</Date><Links><TavelinorLinks><TextLinks>"
        + links + "</TextLinks></TavelinorLinks></Links></Snapshot></Snapshots>";
}

} // namespace

class TstSnapshotFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Paths
    void aFileIsNamedByItsDateInUtc();
    void aFileOfNoFolderOrNoDateHasNoPath();

    // Texts
    void aTextIsReadAsItWas_data();
    void aTextIsReadAsItWas();
    void commentsFootnotesAndLinksAreReadAsTheyWere();
    void anEmptyTextHasASnapshotToo();
    void theTextItselfIsNotTouched();
    void readingReplacesWhatADocumentHolds();
    void linksByIdBecomeLinksByUuid();
    void linksOfAnOldIndexAreSet();
    void whatCannotBeReadIsAFailure_data();
    void whatCannotBeReadIsAFailure();
    void readingMakesNoFolder();

    // Adding
    void noDocumentIsAFailureWithoutAMessage();
    void aTextThatCouldNotBeReadMakesNone();
    void aSecondSnapshotInTheSameSecondFails();
    void aFileThatCannotBeOpenedIsReported();
    void aFolderThatCannotBeMadeIsReported();
    void aTextThatCannotBeWrittenIsReported();
    void aFailedIndexLeavesTheTextOnDisk();

    // Names of older versions
    void anOldNameIsBroughtIntoItsPresentFormOnce();
    void presentNamesAndIndexesAreLeftAlone();
    void anIndexIsBroughtIntoItsPresentForm();
    void anIndexWithOldLinksStaysAsItIs();
    void aNameThatIsTakenOrNoDateStays();
    void textsThatNoIndexKnowsOfSurviveTheRepair_data();
    void textsThatNoIndexKnowsOfSurviveTheRepair();

    // Merging
    void snapshotsOfOthersAreAdded();
    void theSourceKeepsItsSnapshots();
    void aSnapshotOfTheSameSecondIsDropped();
    void aMissingTextIsDropped();
    void filesOfOldNamesAreMergedToo();
    void mergingNothingMakesNothing();
    void aDiskThatTakesNoCopyIsAFailure();

    // Cloning
    void anItemGetsTheSnapshotsOfAnother_data();
    void anItemGetsTheSnapshotsOfAnother();
    void aSourceWithoutSnapshotsLeavesNoFolder();
    void aTargetsSnapshotsAreReplaced();
    void clonedFilesOfOldNamesAreFound();
    void cloningOntoItselfChangesNothing();
    void clonedFilesCanBeWritten();
    void aCloneThatFailsIsAFailure();
};

void TstSnapshotFiles::aFileIsNamedByItsDateInUtc()
{
    const TestProject project;
    const QDateTime date(QDate(2026, 3, 1), QTime(1, 2, 3, 456), Qt::OffsetFromUTC, -3600);
    QCOMPARE(Format::snapshotFilePath(project.path(), 7, date),
             project.path(u"Snapshots/7.snapshots/2026-03-01-02-02-03+0000.rtf"_s));
    QVERIFY(QFileInfo(project.path(u"Snapshots/7.snapshots"_s)).isDir());
    QVERIFY(project.files().isEmpty());
    QCOMPARE(Format::snapshotFilePath(project.binderPath(), 7, date),
             Format::snapshotFilePath(project.path(), 7, date));
}

void TstSnapshotFiles::aFileOfNoFolderOrNoDateHasNoPath()
{
    const TestProject project;
    QCOMPARE(Format::snapshotFilePath(project.path(), 7, QDateTime()), QString());
    project.writeFile(u"Snapshots/8.snapshots"_s, "a file");
    QCOMPARE(Format::snapshotFilePath(project.path(), 8, momentOf(0)), QString());
    const TestProject other;
    other.writeFile(u"Snapshots"_s, "a file");
    QCOMPARE(Format::snapshotFilePath(other.path(), 7, momentOf(0)), QString());
}

void TstSnapshotFiles::aTextIsReadAsItWas_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < 40; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TstSnapshotFiles::aTextIsReadAsItWas()
{
    QFETCH(const int, seed);
    const TestProject project;
    QRandomGenerator random(quint32(seed) + 1);
    const auto document = makeRandomDocument(&random);
    QString error;
    QVERIFY2(addDocument(project, *document, 0, &error), qPrintable(error));
    QTextDocument read;
    QVERIFY(Format::readSnapshot(project.path(), Id, onlySnapshot(project), &read, {}));
    QCOMPARE(differenceOfDocuments(read, *document), QString());
}

void TstSnapshotFiles::commentsFootnotesAndLinksAreReadAsTheyWere()
{
    const TestProject project;
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"Comment Footnote Link Web annotation footnote "_s);
    TVLTextCommentLink footnote = numberedComment(2);
    footnote.mIsFootnote = true;
    footnote.mNumber = 3;
    TVLTextDoc::setComment(&document, {0, 7}, numberedComment(1));
    TVLTextDoc::setComment(&document, {8, 8}, footnote);
    TVLTextDoc::setInternalLinks(&document,
                                 {{{17, 4}, TVLTextFormat::internalLinkAddress(uuidOf(4))}});
    QTextCharFormat web;
    TVLTextFormat::setLink(&web, u"https://example.org/"_s);
    QTextCharFormat note;
    note.setProperty(TVLTextFormat::InlineAnnotation, true);
    cursor.insertText(u"web"_s, web);
    cursor.insertText(u"annotation {footnote| |annotation}"_s, note);
    cursor.insertTable(2, 3);

    QVERIFY(addDocument(project, document));
    QTextDocument read;
    QVERIFY(Format::readSnapshot(project.path(), Id, onlySnapshot(project), &read, {}));
    QCOMPARE(differenceOfDocuments(read, document), QString());
    QCOMPARE(TVLTextDoc::comments(&read, -1, -1), (QList{numberedComment(1), footnote}));
    QCOMPARE(snapshotAddresses(read), QStringList{TVLTextFormat::internalLinkAddress(uuidOf(4))});
}

void TstSnapshotFiles::anEmptyTextHasASnapshotToo()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"Empty"_s, 0, QString()), QString());
    QVERIFY(QFileInfo::exists(project.path(snapshotFile(0))));
    QCOMPARE(snapshotText(project, 0), QString());
    QCOMPARE(snapshotTitles(project), QStringList{u"Empty"_s});
}

void TstSnapshotFiles::theTextItselfIsNotTouched()
{
    const TestProject project;
    QTextDocument document;
    QTextCharFormat note;
    note.setProperty(TVLTextFormat::InlineFootnote, true);
    QTextCursor(&document).insertText(u"a footnote"_s, note);
    document.setModified(false);
    const int revision = document.revision();
    QVERIFY(addDocument(project, document));
    QCOMPARE(document.revision(), revision);
    QVERIFY(!document.isModified());
    QVERIFY(document.isUndoAvailable());
}

void TstSnapshotFiles::readingReplacesWhatADocumentHolds()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text\nof a snapshot"_s), QString());
    QTextDocument document;
    document.setPlainText(u"what was there"_s);
    QVERIFY(Format::readSnapshot(project.path(), Id, snapshotOf(u"First"_s, 0), &document, {}));
    QCOMPARE(document.toPlainText(), u"text\nof a snapshot"_s);
}

void TstSnapshotFiles::linksByIdBecomeLinksByUuid()
{
    const TestProject project;
    QTextDocument document;
    document.setPlainText(u"first second third"_s);
    TVLTextDoc::setInternalLinks(&document,
                                 {{{0, 5}, TVLTextFormat::internalLinkAddress(4)},
                                  {{13, 5}, TVLTextFormat::internalLinkAddress(uuidOf(6))}});
    QVERIFY(addDocument(project, document));
    TVLSnapshotInfo info = onlySnapshot(project);
    info.mLinks.mTargets = {{{0, 5}, 4}};
    QTextDocument read;
    QVERIFY(Format::readSnapshot(project.path(), Id, info, &read, {{4, uuidOf(4)}}));
    QCOMPARE(snapshotAddresses(read),
             (QStringList{TVLTextFormat::internalLinkAddress(uuidOf(4)),
                          TVLTextFormat::internalLinkAddress(uuidOf(6))}));
    // The live text keeps its links.
    QCOMPARE(snapshotAddresses(document).constFirst(), TVLTextFormat::internalLinkAddress(4));
}

void TstSnapshotFiles::linksOfAnOldIndexAreSet()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(),
                      indexWithLinks("<LinkID Range=\"0,5\">4</LinkID>"
                                     "<LinkID Range=\"6,6\">5</LinkID>"));
    project.writeFile(snapshotFile(0), rtfOf("first second third"));
    QTextDocument read;
    QVERIFY(
        Format::readSnapshot(project.path(), Id, onlySnapshot(project), &read, {{4, uuidOf(4)}}));
    QCOMPARE(
        TVLTextDoc::internalLinks(&read),
        (QMap<TVLTextRange, QString>{{{0, 5}, TVLTextFormat::internalLinkAddress(uuidOf(4))}}));
}

void TstSnapshotFiles::whatCannotBeReadIsAFailure_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no RTF") << QByteArray("text");
    QTest::newRow("cut off") << QByteArray("{\\rtf1 text");
    QTest::newRow("text behind the end") << QByteArray("{\\rtf1 text} more");
}

void TstSnapshotFiles::whatCannotBeReadIsAFailure()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    if (!content.isEmpty())
        project.writeFile(snapshotFile(0), content);
    const Files before = project.files();
    QTextDocument document;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(!Format::readSnapshot(project.path(), Id, info, &document, {}));
    QVERIFY(!Format::readSnapshot(project.path(), Id, info, nullptr, {}));
    QCOMPARE(project.files(), before);
}

void TstSnapshotFiles::readingMakesNoFolder()
{
    const TestProject project;
    QTextDocument document;
    for (const int second : {0, 1})
        QVERIFY(!Format::readSnapshot(project.path(), Id, snapshotOf(u"First"_s, second), &document,
                                      {}));
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
}

void TstSnapshotFiles::noDocumentIsAFailureWithoutAMessage()
{
    const TestProject project;
    QString error;
    QVERIFY(!Format::addSnapshot(project.path(), Id, snapshotOf(u"First"_s, 0), nullptr, &error));
    QCOMPARE(error, QString());
    QVERIFY(!Format::hasSnapshots(project.path(), Id));
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
}

void TstSnapshotFiles::aTextThatCouldNotBeReadMakesNone()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), "no rich text");
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QVERIFY(
        !Format::addSnapshot(project.path(), Id, snapshotOf(u"First"_s, 0), item.text(), &error));
    QCOMPARE(error, u"There is no snapshot of a text that could not be read"_s);
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
}

void TstSnapshotFiles::aSecondSnapshotInTheSameSecondFails()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"first text"_s), QString());
    const Files before = project.files();
    QCOMPARE(addSnapshot(project, u"Second"_s, 0, u"second text"_s),
             alreadyExists(project, snapshotFile(0)));
    QTextDocument document;
    TVLSnapshotInfo within = snapshotOf(u"Third"_s, 0);
    within.mDate = within.mDate.addMSecs(999);
    QString error;
    QVERIFY(!Format::writeSnapshotDocument(project.path(), Id, within, &document, &error));
    QCOMPARE(error, alreadyExists(project, snapshotFile(0)));
    QVERIFY(!Format::addSnapshot(project.path(), Id, within, &document, nullptr));
    QCOMPARE(project.files(), before);
    QCOMPARE(snapshotTitles(project), QStringList{u"First"_s});
    QCOMPARE(snapshotText(project, 0), u"first text"_s);
}

void TstSnapshotFiles::aFileThatCannotBeOpenedIsReported()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path(snapshotsFolder())));
    QVERIFY(QFile::link(project.path(u"missing/file"_s), project.path(snapshotFile(0))));
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s),
             u"Could not open snapshot file for writing: '%1'\nError: %2"_s.arg(
                 project.path(snapshotFile(0)),
                 u"'%1' is a link, and what it leads to is not written"_s.arg(
                     project.path(snapshotFile(0)))));
    QVERIFY(!Format::hasSnapshots(project.path(), Id));
}

void TstSnapshotFiles::aFolderThatCannotBeMadeIsReported()
{
    const TestProject project;
    project.writeFile(snapshotsFolder(), "a file");
    const QTextDocument document;
    QString error;
    QVERIFY(!Format::writeSnapshotDocument(project.path(), Id, snapshotOf(u"First"_s, 0), &document,
                                           &error));
    QVERIFY(error.startsWith(u"Could not open snapshot file for writing: ''\nError: "_s));
    QCOMPARE(project.readFile(snapshotsFolder()), "a file");
}

void TstSnapshotFiles::aTextThatCannotBeWrittenIsReported()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"first"_s), QString());
    const Files before = project.files();
    {
        const FileSizeLimit limit(4096);
        QCOMPARE(addSnapshot(project, u"Second"_s, 1, QString(10000, u'x')),
                 u"RTF Writer failed generating RTF contents for snapshot file: '%1'"_s.arg(
                     project.path(snapshotFile(1))));
    }
    // Half a text would stand in the way of the next attempt.
    QCOMPARE(project.files(), before);
    QCOMPARE(addSnapshot(project, u"Second"_s, 1, QString(10000, u'x')), QString());
}

void TstSnapshotFiles::aFailedIndexLeavesTheTextOnDisk()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path(snapshotsFolder())));
    QVERIFY(QFile::link(project.path(u"missing/file"_s), project.path(snapshotsIndex())));
    QCOMPARE(
        addSnapshot(project, u"First"_s, 0, u"text"_s),
        u"Could not write the index of the snapshots: '%1'"_s.arg(project.path(snapshotsIndex())));
    QCOMPARE(snapshotText(project, 0), u"text"_s);
    QVERIFY(!Format::hasSnapshots(project.path(), Id));
}

void TstSnapshotFiles::anOldNameIsBroughtIntoItsPresentFormOnce()
{
    const TestProject project;
    const QString oldName = snapshotsFolder() + u"/2026-03-01-06-30-00+0200.rtf"_s;
    project.writeFile(oldName, rtfOf("old"));
    QVERIFY(Format::writeSnapshots(project.path(), Id, {snapshotOf(u"Old"_s, 0)}));
    Format::fixSnapshotFileNames(project.path(), Id);
    QVERIFY(!QFileInfo::exists(project.path(oldName)));
    QCOMPARE(project.readFile(snapshotFile(0)), rtfOf("old"));

    const QString laterName = snapshotsFolder() + u"/2026-03-01-06-30-01+0200.rtf"_s;
    project.writeFile(laterName, rtfOf("later"));
    const Files before = project.files();
    Format::fixSnapshotFileNames(project.path(), Id);
    QCOMPARE(project.files(), before);
}

void TstSnapshotFiles::presentNamesAndIndexesAreLeftAlone()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    setAge(project.path(snapshotsIndex()), 10);
    const QDateTime age = QFileInfo(project.path(snapshotsIndex())).lastModified();
    const TestProject copy(u"Copy"_s);
    const Files before = project.files();
    QVERIFY(QDir().rename(project.path(), copy.path()));
    Format::fixSnapshotFileNames(copy.path(), Id);
    QCOMPARE(copy.files(), before);
    QCOMPARE(QFileInfo(copy.path(snapshotsIndex())).lastModified(), age);
}

void TstSnapshotFiles::anIndexIsBroughtIntoItsPresentForm()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(),
                      "<Snapshots><Snapshot><Date>2026-03-01 06:30:00 +0200"
                      "</Date><Title>Old</Title></Snapshot></Snapshots>");
    Format::fixSnapshotFileNames(project.path(), Id);
    const TestProject other(u"Other"_s);
    QVERIFY(Format::writeSnapshots(other.path(), Id, {snapshotOf(u"Old"_s, 0)}));
    QCOMPARE(project.readFile(snapshotsIndex()), other.readFile(snapshotsIndex()));
}

void TstSnapshotFiles::anIndexWithOldLinksStaysAsItIs()
{
    const TestProject project;
    const QByteArray index = indexWithLinks("<LinkID Range=\"0,5\">4</LinkID>");
    project.writeFile(snapshotsIndex(), index);
    Format::fixSnapshotFileNames(project.path(), Id);
    QCOMPARE(project.readFile(snapshotsIndex()), index);
}

void TstSnapshotFiles::aNameThatIsTakenOrNoDateStays()
{
    const TestProject project;
    project.writeFile(snapshotsIndex(), indexWithLinks({}));
    project.writeFile(snapshotFile(0), rtfOf("present"));
    project.writeFile(snapshotsFolder() + u"/2026-03-01-06-30-00+0200.rtf"_s, rtfOf("old"));
    project.writeFile(snapshotsFolder() + u"/draft.rtf"_s, rtfOf("draft"));
    project.writeFile(snapshotsFolder() + u"/2026-03-01-06-30-00+0200.txt"_s, "text");
    Files before = project.files();
    Format::fixSnapshotFileNames(project.path(), Id);
    Files after = project.files();
    before.remove(snapshotsIndex());
    after.remove(snapshotsIndex());
    QCOMPARE(after, before);
}

void TstSnapshotFiles::textsThatNoIndexKnowsOfSurviveTheRepair_data()
{
    QTest::addColumn<QByteArray>("index");
    QTest::newRow("no index") << QByteArray();
    QTest::newRow("empty index") << QByteArray("<Snapshots Version=\"1.0\"></Snapshots>");
}

void TstSnapshotFiles::textsThatNoIndexKnowsOfSurviveTheRepair()
{
    QFETCH(const QByteArray, index);
    const TestProject project;
    project.writeFile(snapshotFile(0), rtfOf("text"));
    if (!index.isEmpty())
        project.writeFile(snapshotsIndex(), index);
    const Files before = project.files();
    Format::fixSnapshotFileNames(project.path(), Id);
    QCOMPARE(snapshotText(project, 0), u"text"_s);
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13}));
    QCOMPARE(project.files(), before);
}

void TstSnapshotFiles::snapshotsOfOthersAreAdded()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"Own"_s, 5, u"own"_s), QString());
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s, 13), QString());
    QCOMPARE(addSnapshot(project, u"B"_s, 2, u"b"_s, 13), QString());
    QCOMPARE(addSnapshot(project, u"C"_s, 3, u"c"_s, 14), QString());
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13, Id, 15, 14, 13}));
    QCOMPARE(snapshotTitles(project), (QStringList{u"Own"_s, u"A"_s, u"B"_s, u"C"_s}));
    QCOMPARE(snapshotText(project, 5), u"own"_s);
    QCOMPARE(snapshotText(project, 2), u"b"_s);
    QCOMPARE(snapshotText(project, 3), u"c"_s);
    // To an item that has none yet.
    QVERIFY(Format::mergeSnapshots(project.path(), 16, {14}));
    QVERIFY(Format::hasSnapshots(project.path(), 16));
    QCOMPARE(snapshotText(project, 3, 16), u"c"_s);
}

void TstSnapshotFiles::theSourceKeepsItsSnapshots()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s, 13), QString());
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13}));
    QCOMPARE(snapshotTitles(project, 13), QStringList{u"A"_s});
    QCOMPARE(snapshotText(project, 1, 13), u"a"_s);
}

void TstSnapshotFiles::aSnapshotOfTheSameSecondIsDropped()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"Own"_s, 1, u"own"_s), QString());
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s, 13), QString());
    QCOMPARE(addSnapshot(project, u"B"_s, 2, u"b"_s, 13), QString());
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13}));
    QCOMPARE(snapshotTitles(project), (QStringList{u"Own"_s, u"B"_s}));
    QCOMPARE(snapshotText(project, 1), u"own"_s);
    QCOMPARE(snapshotText(project, 1, 13), u"a"_s);
}

void TstSnapshotFiles::aMissingTextIsDropped()
{
    const TestProject project;
    QVERIFY(Format::writeSnapshots(project.path(), 13, {snapshotOf(u"Gone"_s, 1)}));
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13}));
    QVERIFY(!Format::hasSnapshots(project.path(), Id));
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
}

void TstSnapshotFiles::filesOfOldNamesAreMergedToo()
{
    const TestProject project;
    project.writeFile(snapshotsFolder(13) + u"/2026-03-01-06-30-00+0200.rtf"_s, rtfOf("old"));
    QVERIFY(Format::writeSnapshots(project.path(), 13, {snapshotOf(u"Old"_s, 0)}));
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13}));
    QCOMPARE(snapshotText(project, 0), u"old"_s);
}

void TstSnapshotFiles::mergingNothingMakesNothing()
{
    const TestProject project;
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {}));
    QVERIFY(Format::mergeSnapshots(project.path(), Id, {13, 14}));
    QVERIFY(project.files().isEmpty());
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
}

void TstSnapshotFiles::aDiskThatTakesNoCopyIsAFailure()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, QString(10000, u'x'), 13), QString());
    QCOMPARE(addSnapshot(project, u"B"_s, 2, u"short"_s, 13), QString());
    {
        const FileSizeLimit limit(4096);
        QVERIFY(!Format::mergeSnapshots(project.path(), Id, {13}));
    }
    QCOMPARE(snapshotTitles(project), QStringList{u"B"_s});
    QCOMPARE(snapshotText(project, 2), u"short"_s);
}

void TstSnapshotFiles::anItemGetsTheSnapshotsOfAnother_data()
{
    QTest::addColumn<bool>("isOtherProject");
    QTest::newRow("of the project") << false;
    QTest::newRow("of another project") << true;
}

void TstSnapshotFiles::anItemGetsTheSnapshotsOfAnother()
{
    QFETCH(const bool, isOtherProject);
    const TestProject project;
    const TestProject otherProject(u"Other"_s);
    const TestProject &target = isOtherProject ? otherProject : project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s), QString());
    QCOMPARE(addSnapshot(project, u"B"_s, 2, u"b"_s), QString());
    QVERIFY(!Format::hasSnapshots(target.path(), 20));
    QVERIFY(Format::cloneSnapshots(project.path(), Id, target.path(), 20));
    QVERIFY(Format::hasSnapshots(target.path(), 20));
    QCOMPARE(snapshotTitles(target, 20), (QStringList{u"A"_s, u"B"_s}));
    QCOMPARE(snapshotText(target, 2, 20), u"b"_s);
    QCOMPARE(snapshotTitles(project), (QStringList{u"A"_s, u"B"_s}));
}

void TstSnapshotFiles::aSourceWithoutSnapshotsLeavesNoFolder()
{
    const TestProject project;
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder(20))));
    QCOMPARE(addSnapshot(project, u"Own"_s, 1, u"own"_s, 20), QString());
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    QCOMPARE(snapshotText(project, 1, 20), u"own"_s);
}

void TstSnapshotFiles::aTargetsSnapshotsAreReplaced()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s), QString());
    QCOMPARE(addSnapshot(project, u"Own"_s, 1, u"own"_s, 20), QString());
    QCOMPARE(addSnapshot(project, u"Own too"_s, 2, u"own too"_s, 20), QString());
    QList<TVLSnapshotInfo> known;
    QVERIFY(Format::readSnapshots(project.path(), 20, &known));
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    // Not what was known of it before.
    QVERIFY(Format::readSnapshots(project.path(), 20, &known));
    QCOMPARE(known, QList<TVLSnapshotInfo>{snapshotOf(u"A"_s, 1)});
    QCOMPARE(snapshotText(project, 1, 20), u"a"_s);
    // A second time it is the same.
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    QCOMPARE(snapshotTitles(project, 20), QStringList{u"A"_s});
}

void TstSnapshotFiles::clonedFilesOfOldNamesAreFound()
{
    const TestProject project;
    project.writeFile(snapshotsFolder() + u"/2026-03-01-06-30-00+0200.rtf"_s, rtfOf("old"));
    QVERIFY(Format::writeSnapshots(project.path(), Id, {snapshotOf(u"Old"_s, 0)}));
    // The target was looked through before.
    QCOMPARE(addSnapshot(project, u"Own"_s, 5, u"own"_s, 20), QString());
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    QCOMPARE(snapshotText(project, 0, 20), u"old"_s);
}

void TstSnapshotFiles::cloningOntoItselfChangesNothing()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s), QString());
    const Files before = project.files();
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.binderPath(), Id));
    QCOMPARE(project.files(), before);
}

void TstSnapshotFiles::clonedFilesCanBeWritten()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s), QString());
    for (const QString &file : {snapshotsIndex(), snapshotFile(1)})
        QVERIFY(QFile::setPermissions(project.path(file), QFileDevice::ReadOwner));
    QVERIFY(Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    for (const QString &file : {snapshotsIndex(20), snapshotFile(1, 20)})
        QVERIFY(QFile::permissions(project.path(file)).testFlag(QFileDevice::WriteOwner));
}

void TstSnapshotFiles::aCloneThatFailsIsAFailure()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"A"_s, 1, u"a"_s), QString());
    project.writeFile(snapshotsFolder(20), "a file");
    QVERIFY(!Format::cloneSnapshots(project.path(), Id, project.path(), 20));
    project.writeFile(snapshotFile(1, 21) + u"/folder/file"_s, "in its place");
    QVERIFY(!Format::cloneSnapshots(project.path(), Id, project.path(), 21));
    // No index that names a text which isn't there.
    QVERIFY(!Format::hasSnapshots(project.path(), 21));
}

TVL_TEST(TstSnapshotFiles)
#include "tst_snapshotfiles.moc"
