#include "DocumentFixtures.h"
#include "OrdinaryRights.h"
#include "ProjectNoteFixtures.h"
#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTextDocument>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

QString couldNotGenerate(const QString &reason)
{
    return u"Could not generate project notes file\nError: '%1'"_s.arg(reason);
}

} // namespace

class TstProjectNoteFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The folder
    void theFolderIsMadeOnDemand();
    void aFolderThatCannotBeMadeIsReported_data();
    void aFolderThatCannotBeMadeIsReported();
    void aFolderThatCannotBeEnteredIsReported_data();
    void aFolderThatCannotBeEnteredIsReported();

    // Writing
    void notesAreWrittenBesideTheirIndex();
    void anEmptyListIsAnEmptyIndex();
    void aNoteWithoutADocumentIsInTheIndexOnly();
    void anEmptyNoteHasAFile();
    void whatHasNotChangedIsNotWritten();
    void anIndexThatCannotBeWrittenIsReportedAndTheNotesAreWritten_data();
    void anIndexThatCannotBeWrittenIsReportedAndTheNotesAreWritten();
    void aFailedNoteDoesNotStopTheOthers_data();
    void aFailedNoteDoesNotStopTheOthers();
    void aReadOnlyFolderKeepsWhatItHas();
    void withoutTheFolderNothingIsWritten();

    // What could not be read is kept
    void anUnreadNoteIsNeverWrittenOver_data();
    void anUnreadNoteIsNeverWrittenOver();
    void anUnreadNoteIsWrittenAgainOnceItCanBeRead();

    // Removing
    void aRemovedNoteIsInTheIndexUntilTheNextWrite();
    void removingWhatIsNotThereIsFine();
    void aFailedRemovalIsReported_data();
    void aFailedRemovalIsReported();

    // Paths
    void aProjectCanBeNamedByItsBinder();
    void aMessageHoldsAnyPath();
    void errorsNeedNotBeAskedFor();
};

// --- The folder

void TstProjectNoteFiles::theFolderIsMadeOnDemand()
{
    const TestProject project;
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        QStringList errors;
        bool ok = false;
        const QDir directory = Format::projectNotesDirectory(path, &ok, &errors);
        QVERIFY(ok);
        QCOMPARE(directory.absolutePath(), project.path(NotesFolder));
        QVERIFY(directory.exists());
        QCOMPARE(errors, QStringList());
    }
    QCOMPARE(Format::projectNotesDirectory(project.path(), nullptr, nullptr).path(),
             project.path(NotesFolder));
}

void TstProjectNoteFiles::aFolderThatCannotBeMadeIsReported_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("the project is a file") << QString();
    QTest::newRow("its files are a file") << u"Files"_s;
    QTest::newRow("a link leads nowhere") << u"link"_s;
    QTest::newRow("nothing may be made") << u"Files/read-only"_s;
}

void TstProjectNoteFiles::aFolderThatCannotBeMadeIsReported()
{
    QFETCH(const QString, file);
    const TestProject project;
    if (file.isEmpty()) {
        QFile projectFile(project.path());
        QVERIFY(projectFile.open(QIODevice::WriteOnly));
    } else {
        project.writeFile(file == u"link" ? u"Files/file"_s : file, "text");
    }
    if (file == u"link")
        QVERIFY(QFile::link(project.path(u"missing"_s), project.path(NotesFolder)));
    const QString files = file.isEmpty() ? project.path() : project.path(u"Files"_s);
    const ReducedPermissions reduced(files,
                                     file == u"Files/read-only" ? ReducedPermissions::ReadOnly
                                                                : QFile::permissions(files));

    expectLog(u"ERROR: Could not create project notes directory: "_s + project.path(NotesFolder));
    QStringList errors = {u"before"_s};
    bool ok = true;
    (void)Format::projectNotesDirectory(project.path(), &ok, &errors);
    QVERIFY(!ok);
    QCOMPARE(errors,
             QStringList({u"before"_s,
                          u"Could not create project notes directory: '%1'"_s.arg(
                              project.path(NotesFolder))}));
}

void TstProjectNoteFiles::aFolderThatCannotBeEnteredIsReported_data()
{
    QTest::addColumn<bool>("isFile");
    QTest::newRow("a file") << true;
    QTest::newRow("no permission") << false;
}

void TstProjectNoteFiles::aFolderThatCannotBeEnteredIsReported()
{
    QFETCH(const bool, isFile);
    const TestProject project;
    project.writeFile(isFile ? NotesFolder : NotesIndex, "text");
    const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::None);
    expectLog(u"ERROR: Could not enter project notes directory: "_s + project.path(NotesFolder));
    QStringList errors;
    bool ok = true;
    (void)Format::projectNotesDirectory(project.path(), &ok, &errors);
    QVERIFY(!ok);
    QCOMPARE(errors,
             QStringList(u"Could not enter project notes directory: '%1'"_s.arg(
                 project.path(NotesFolder))));
}

// --- Writing

void TstProjectNoteFiles::notesAreWrittenBesideTheirIndex()
{
    const TestProject project;
    Notes notes;
    notes.add(11, u"Places & more"_s, u"The text of places"_s);
    notes.add(10, u"General"_s, u"The general text"_s);
    QStringList errors;
    QVERIFY(notes.write(project, &errors));
    QCOMPARE(errors, QStringList());
    const Files files = project.files();
    QCOMPARE(files.keys(), QStringList({noteFile(10), noteFile(11), NotesIndex}));
    QCOMPARE(QString::fromUtf8(files.value(NotesIndex)).remove(u'\n').remove(u"    "_s),
             u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><ProjectNotes Version=\"1.0\">"
             "<Note ID=\"11\"><Title>Places &amp; more</Title></Note>"
             "<Note ID=\"10\"><Title>General</Title></Note></ProjectNotes>"_s);
    QVERIFY(files.value(noteFile(11)).startsWith("{\\rtf1"));
    QVERIFY(files.value(noteFile(11)).contains("The text of places"));
    QVERIFY(files.value(noteFile(10)).contains("The general text"));
}

void TstProjectNoteFiles::anEmptyListIsAnEmptyIndex()
{
    const TestProject project;
    QVERIFY(Notes().write(project));
    QCOMPARE(project.files().keys(), QStringList(NotesIndex));
    QCOMPARE(noteLinesIn(project), QStringList());
}

void TstProjectNoteFiles::aNoteWithoutADocumentIsInTheIndexOnly()
{
    const TestProject project;
    Notes notes;
    notes.add(10, u"General"_s, u"Text"_s);
    notes.mList.append({11, nullptr});
    QVERIFY(notes.write(project));
    QCOMPARE(project.files().keys(), QStringList({noteFile(10), NotesIndex}));
    QCOMPARE(noteLinesIn(project), QStringList({u"10 General: Text"_s, u"11 : "_s}));
}

void TstProjectNoteFiles::anEmptyNoteHasAFile()
{
    const TestProject project;
    Notes notes;
    notes.add(10, u"General"_s, QString());
    QVERIFY(notes.write(project));
    QVERIFY(project.readFile(noteFile(10)).startsWith("{\\rtf1"));
    QCOMPARE(noteLinesIn(project), QStringList(u"10 General: "_s));
}

void TstProjectNoteFiles::whatHasNotChangedIsNotWritten()
{
    const TestProject project;
    writeThreeNotes(project);
    Notes notes;
    QVERIFY(notes.read(project));
    for (const QString &file : {NotesIndex, noteFile(10), noteFile(11), noteFile(12)})
        setAge(project.path(file), 60);
    const auto isWritten = [&](const QString &file) {
        return QFileInfo(project.path(file)).lastModified().secsTo(QDateTime::currentDateTime())
            < 1800;
    };
    setNoteText(notes.at(1), u"Another"_s);
    QVERIFY(notes.write(project));
    QVERIFY(!isWritten(NotesIndex));
    QVERIFY(!isWritten(noteFile(10)));
    QVERIFY(isWritten(noteFile(11)));
    QVERIFY(!isWritten(noteFile(12)));
    // A text of the same length is another one as well.
    setNoteText(notes.at(2), u"Xext 12"_s);
    notes.mList.move(0, 1);
    QVERIFY(notes.write(project));
    QVERIFY(isWritten(NotesIndex));
    QVERIFY(isWritten(noteFile(12)));
    QVERIFY(!isWritten(noteFile(10)));
    QCOMPARE(noteLinesIn(project),
             QStringList({u"11 Title 11: Another"_s, u"10 Title 10: Text 10"_s,
                          u"12 Title 12: Xext 12"_s}));
}

void TstProjectNoteFiles::anIndexThatCannotBeWrittenIsReportedAndTheNotesAreWritten_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("can't be opened") << u"unopenable"_s;
    QTest::newRow("a link") << u"link"_s;
    QTest::newRow("no permission") << u"read-only"_s;
}

void TstProjectNoteFiles::anIndexThatCannotBeWrittenIsReportedAndTheNotesAreWritten()
{
    QFETCH(const QString, obstacle);
    const TestProject project;
    const UnopenableFile unopenable;
    QString reason;
    if (obstacle == u"unopenable") {
        unopenable.linkTo(project, NotesIndex);
        reason = unwritableText(project, NotesIndex);
    } else if (obstacle == u"link") {
        makeUnwritable(project, NotesIndex);
        reason = unwritableText(project, NotesIndex);
    } else {
        project.writeFile(NotesIndex, noteIndexXml({}));
        QVERIFY(QFile::setPermissions(project.path(NotesIndex), QFile::ReadOwner));
        reason = qt_error_string(EACCES);
    }
    Notes notes;
    notes.add(10, u"General"_s, u"Text"_s);
    expectLog(u"ERROR: Failed to open project notes: "_s + project.path(NotesIndex));
    QStringList errors;
    QVERIFY(!notes.write(project, &errors));
    QCOMPARE(errors,
             QStringList(u"Failed to open project notes file: '%1'\nError: '%2'"_s.arg(
                 project.path(NotesIndex), reason)));
    QVERIFY(project.readFile(noteFile(10)).contains("Text"));
}

void TstProjectNoteFiles::aFailedNoteDoesNotStopTheOthers_data()
{
    QTest::addColumn<QList<int>>("failing");
    QTest::newRow("the first") << QList<int>({10});
    QTest::newRow("the one in the middle") << QList<int>({11});
    QTest::newRow("the last") << QList<int>({12});
    QTest::newRow("two") << QList<int>({10, 12});
    QTest::newRow("all") << QList<int>({10, 11, 12});
}

void TstProjectNoteFiles::aFailedNoteDoesNotStopTheOthers()
{
    QFETCH(const QList<int>, failing);
    const TestProject project;
    writeThreeNotes(project);
    Notes notes;
    QVERIFY(notes.read(project));
    QStringList expected;
    for (const int id : failing) {
        makeUnwritable(project, noteFile(id));
        expected.append(couldNotGenerate(unwritableText(project, noteFile(id))));
    }
    for (int place = 0; place < 3; ++place)
        setNoteText(notes.at(place), u"Another %1"_s.arg(place + 10));
    QStringList errors = {u"before"_s};
    QVERIFY(!notes.write(project, &errors));
    QCOMPARE(errors, QStringList(u"before"_s) + expected);
    for (int id = 10; id < 13; ++id) {
        if (!failing.contains(id))
            QVERIFY(project.readFile(noteFile(id)).contains("Another"));
    }
    // What is still in memory is written as soon as there is room.
    for (const int id : failing)
        QVERIFY(QFile::remove(project.path(noteFile(id))));
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), notes.lines());
}

void TstProjectNoteFiles::aReadOnlyFolderKeepsWhatItHas()
{
    const TestProject project;
    writeThreeNotes(project);
    const Files before = project.files();
    Notes notes;
    QVERIFY(notes.read(project));
    notes.add(13, u"New"_s, u"Words"_s);
    QStringList errors;
    {
        const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::ReadOnly);
        QVERIFY(!notes.write(project, &errors));
    }
    // Files that are there can be written.
    QCOMPARE(errors, QStringList(couldNotGenerate(qt_error_string(EACCES))));
    for (int id = 10; id < 13; ++id)
        QCOMPARE(project.readFile(noteFile(id)), before.value(noteFile(id)));
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), ThreeNotes + QStringList(u"13 New: Words"_s));
}

void TstProjectNoteFiles::withoutTheFolderNothingIsWritten()
{
    const TestProject project;
    project.writeFile(NotesFolder, "a file");
    const Files before = project.files();
    Notes notes;
    notes.add(10, u"General"_s, u"Text"_s);
    expectLog(u"ERROR: Could not enter project notes directory: "_s + project.path(NotesFolder));
    QStringList errors;
    QVERIFY(!notes.write(project, &errors));
    QCOMPARE(errors,
             QStringList(u"Could not enter project notes directory: '%1'"_s.arg(
                 project.path(NotesFolder))));
    QCOMPARE(project.files(), before);
}

// --- What could not be read is kept

void TstProjectNoteFiles::anUnreadNoteIsNeverWrittenOver_data()
{
    addDamagedNoteRows();
}

void TstProjectNoteFiles::anUnreadNoteIsNeverWrittenOver()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(noteFile(11), content);
    Notes notes;
    QStringList readErrors;
    QVERIFY(!notes.read(project, &readErrors));
    setNoteText(notes.at(0), u"First"_s);
    setNoteText(notes.at(2), u"Third"_s);
    // With nothing new in it there is nothing to report.
    QStringList errors;
    QVERIFY(notes.write(project, &errors));
    QCOMPARE(errors, QStringList());
    QCOMPARE(project.readFile(noteFile(11)), content);
    setNoteText(notes.at(0), u"First again"_s);
    setNoteText(notes.at(1), u"New words"_s);
    setNoteText(notes.at(2), u"Third again"_s);
    QVERIFY(!notes.write(project, &errors));
    QCOMPARE(errors, QStringList(couldNotGenerate(readErrors.constFirst())));
    QCOMPARE(project.readFile(noteFile(11)), content);
    QVERIFY(project.readFile(noteFile(10)).contains("First again"));
    QVERIFY(project.readFile(noteFile(12)).contains("Third again"));
    QVERIFY(project.readFile(NotesIndex).contains("Title 11"));
}

void TstProjectNoteFiles::anUnreadNoteIsWrittenAgainOnceItCanBeRead()
{
    const TestProject project;
    writeThreeNotes(project);
    {
        const ReducedPermissions reduced(project.path(noteFile(11)), ReducedPermissions::None);
        Notes notes;
        QVERIFY(!notes.read(project));
        QVERIFY(notes.write(project));
    }
    QCOMPARE(noteLinesIn(project), ThreeNotes);
    Notes notes;
    QVERIFY(notes.read(project));
    setNoteText(notes.at(1), u"Words"_s);
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project).at(1), u"11 Title 11: Words"_s);
}

// --- Removing

void TstProjectNoteFiles::aRemovedNoteIsInTheIndexUntilTheNextWrite()
{
    const TestProject project;
    writeThreeNotes(project);
    Files expected = project.files();
    QStringList errors;
    QVERIFY(Format::removeProjectNote(project.path(), 11, &errors));
    QCOMPARE(errors, QStringList());
    expected.remove(noteFile(11));
    QCOMPARE(project.files(), expected);
    Notes notes;
    QVERIFY(notes.read(project));
    QCOMPARE(notes.lines().at(1), u"11 Title 11: "_s);
    delete notes.mList.takeAt(1).second;
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), QStringList({ThreeNotes.at(0), ThreeNotes.at(2)}));
}

void TstProjectNoteFiles::removingWhatIsNotThereIsFine()
{
    const TestProject project;
    QStringList errors;
    QVERIFY(Format::removeProjectNote(project.path(), 10, &errors));
    QVERIFY(!QFileInfo::exists(project.path()));
    writeThreeNotes(project);
    QVERIFY(Format::removeProjectNote(project.path(), 99, &errors));
    QCOMPARE(errors, QStringList());
    QCOMPARE(noteLinesIn(project), ThreeNotes);
}

void TstProjectNoteFiles::aFailedRemovalIsReported_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("a folder") << true;
    QTest::newRow("no permission") << false;
}

void TstProjectNoteFiles::aFailedRemovalIsReported()
{
    QFETCH(const bool, isFolder);
    const TestProject project;
    writeThreeNotes(project);
    if (isFolder)
        project.writeFile(noteFile(13) + u"/file"_s, "text");
    const Files before = project.files();
    const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::ReadOnly);
    const int id = isFolder ? 13 : 11;
    const QString reason = isFolder ? u"Is a folder"_s : qt_error_string(EACCES);
    expectLog(u"Project notes delete error: "_s + reason);
    QStringList errors = {u"before"_s};
    QVERIFY(!Format::removeProjectNote(project.path(), id, &errors));
    QCOMPARE(errors,
             QStringList(
                 {u"before"_s,
                  u"Could not delete project notes file: '%1'"_s.arg(project.path(noteFile(id)))}));
    QCOMPARE(project.files(), before);
}

// --- Paths

void TstProjectNoteFiles::aProjectCanBeNamedByItsBinder()
{
    const TestProject project;
    Notes notes;
    notes.add(10, u"General"_s, u"Text"_s);
    QVERIFY(Format::writeProjectNotes(project.binderPath(), notes.mList, nullptr));
    Notes read;
    QVERIFY(Format::readProjectNotes(project.binderPath(), &read.mList, nullptr, nullptr));
    QCOMPARE(read.lines(), notes.lines());
    QCOMPARE(noteLinesIn(project), notes.lines());
    QVERIFY(Format::removeProjectNote(project.binderPath(), 10, nullptr));
    QVERIFY(!QFileInfo::exists(project.path(noteFile(10))));
}

void TstProjectNoteFiles::aMessageHoldsAnyPath()
{
    const TestProject project(u"100%1 %2 %3"_s);
    writeThreeNotes(project);
    makeUnwritable(project, NotesIndex);
    Notes notes;
    QStringList errors;
    QVERIFY(!notes.write(project, &errors));
    QCOMPARE(errors.constFirst(),
             u"Failed to open project notes file: '"_s + project.path(NotesIndex) + u"'\nError: '"_s
                 + unwritableText(project, NotesIndex) + u'\'');
}

void TstProjectNoteFiles::errorsNeedNotBeAskedFor()
{
    const TestProject project;
    writeThreeNotes(project);
    makeUnwritable(project, noteFile(11));
    Notes notes;
    notes.add(11, u"Title"_s, u"Text"_s);
    QVERIFY(!notes.write(project));
    project.writeFile(NotesIndex, "damaged");
    QVERIFY(!notes.read(project));
    const TestProject blocked;
    blocked.writeFile(NotesFolder, "a file");
    QVERIFY(!notes.write(blocked));
    QVERIFY(!notes.read(blocked));
    project.writeFile(noteFile(13) + u"/file"_s, "text");
    QVERIFY(!Format::removeProjectNote(project.path(), 13, nullptr));
}

TVL_TEST_PREPARED(TstProjectNoteFiles, dropRightsOfTheSuperuser)
#include "tst_projectnotefiles.moc"
