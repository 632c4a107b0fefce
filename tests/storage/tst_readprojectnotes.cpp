#include "DocumentComparison.h"
#include "DocumentFixtures.h"
#include "OrdinaryRights.h"
#include "ProjectNoteFixtures.h"
#include "RandomDocument.h"
#include "StorageFixtures.h"
#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TestBinderProject.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include <cerrno>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

QByteArray linksXml(const QByteArray &textLinks)
{
    return "<Links><TavelinorLinks><TextLinks>" + textLinks
        + "</TextLinks></TavelinorLinks></Links>";
}

QString couldNotOpen(const TestProject &project, const QString &file, const QString &reason)
{
    return u"Could not open project notes file: '%1'\nError: %2"_s.arg(project.path(file), reason);
}

/** A project whose items with the ids 1 to 9 are known by their uuids. */
const TestBinderProject &itemsOfNotes()
{
    static TestBinderProject project;
    for (int id = 1; id < 10; ++id)
        project.mIdMap.insert(id, uuidOf(id));
    return project;
}

QString addressOf(int id)
{
    return TVLTextFormat::internalLinkAddress(uuidOf(id));
}

QStringList addressesIn(const QTextDocument *note)
{
    return TVLTextDoc::internalLinks(note).values();
}

} // namespace

class TstReadProjectNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Reading
    void aProjectWithoutNotesIsLeftUntouched_data();
    void aProjectWithoutNotesIsLeftUntouched();
    void aFolderWithoutAnIndexIsAnEmptyList();
    void notesAreReadInTheOrderOfTheIndex();
    void whatIsReadIsAppended();
    void aReadNoteIsNobodysAndUnmodified();
    void aNoteWithoutAFileIsEmpty();
    void aNoteOfNoBytesIsEmpty();
    void aTitleThatIsOnlyInTheIndexIsKept();
    void twoEntriesOfOneIdAreOneNote();
    void entriesWithoutAnIdAreLeftOut();
    void anIndexThatCannotBeOpenedIsReported_data();
    void anIndexThatCannotBeOpenedIsReported();
    void anIndexThatIsDamagedIsReported_data();
    void anIndexThatIsDamagedIsReported();
    void aFolderThatCannotBeUsedIsReported();
    void aNoteThatCannotBeOpenedIsReportedAndTheOthersAreRead_data();
    void aNoteThatCannotBeOpenedIsReportedAndTheOthersAreRead();
    void aNoteThatIsDamagedIsReportedAndTheOthersAreRead_data();
    void aNoteThatIsDamagedIsReportedAndTheOthersAreRead();
    void whatCanBeReadOfADamagedNoteIsShown();

    // There and back
    void titlesSurvive_data();
    void titlesSurvive();
    void idsSurvive_data();
    void idsSurvive();
    void manyNotesSurvive();
    void richTextSurvives_data();
    void richTextSurvives();
    void inlineNotesSurvive();
    void linksSurvive();

    // Links of old
    void linksOfTheIndexAreSet();
    void linksByUuidInTheFileWin();
    void linksNeedAModel();
    void linksToUnknownItemsAreLeftOut();
    void writtenLinksOfOldAreInTheFile();
    void fileWithLinksByUuid_data();
    void fileWithLinksByUuid();
    void aFileThatIsNotThereHasNoLinks();
};

// --- Reading

void TstReadProjectNotes::aProjectWithoutNotesIsLeftUntouched_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isReadOnly");
    QTest::newRow("no project") << QString() << false;
    QTest::newRow("a project without files") << u"Settings"_s << false;
    QTest::newRow("a project without notes") << u"Files"_s << false;
    QTest::newRow("a read-only project without files") << u"Settings"_s << true;
    QTest::newRow("a read-only project without notes") << u"Files"_s << true;
}

void TstReadProjectNotes::aProjectWithoutNotesIsLeftUntouched()
{
    QFETCH(const QString, folder);
    QFETCH(const bool, isReadOnly);
    const TestProject project;
    if (!folder.isEmpty())
        QVERIFY(QDir().mkpath(project.path(folder)));
    const auto permissions = [&](const QString &path) {
        return isReadOnly ? ReducedPermissions::ReadOnly : QFile::permissions(path);
    };
    const QString lowest = folder.isEmpty() ? project.enclosingPath() : project.path(folder);
    const QString above = folder.isEmpty() ? project.enclosingPath() : project.path();
    const ReducedPermissions reducedLowest(lowest, permissions(lowest));
    const ReducedPermissions reducedAbove(above, permissions(above));
    Notes notes;
    QStringList errors;
    QVERIFY(notes.read(project, &errors));
    QCOMPARE(errors, QStringList());
    QCOMPARE(notes.lines(), QStringList());
    QVERIFY(!QFileInfo::exists(project.path(NotesFolder)));
    QCOMPARE(QFileInfo::exists(project.path()), !folder.isEmpty());
    QCOMPARE(QFileInfo::exists(project.path(u"Files"_s)), folder == u"Files");
}

void TstReadProjectNotes::aFolderWithoutAnIndexIsAnEmptyList()
{
    const TestProject project;
    project.writeFile(noteFile(10), rtfOf("Text"));
    const Files before = project.files();
    QCOMPARE(noteLinesIn(project), QStringList());
    QCOMPARE(project.files(), before);
}

void TstReadProjectNotes::notesAreReadInTheOrderOfTheIndex()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(30) + noteXml(10) + "<Other/>" + noteXml(20)));
    for (const int id : {10, 20, 30})
        project.writeFile(noteFile(id), rtfOf("Text " + QByteArray::number(id)));
    const Files before = project.files();
    QCOMPARE(noteLinesIn(project),
             QStringList({u"30 : Text 30"_s, u"10 : Text 10"_s, u"20 : Text 20"_s}));
    QCOMPARE(project.files(), before);
}

void TstReadProjectNotes::whatIsReadIsAppended()
{
    const TestProject project;
    writeThreeNotes(project);
    Notes notes;
    notes.add(5, u"First"_s, u"Text"_s);
    QVERIFY(notes.read(project));
    QCOMPARE(notes.lines(), QStringList(u"5 First: Text"_s) + ThreeNotes);
}

void TstReadProjectNotes::aReadNoteIsNobodysAndUnmodified()
{
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(NotesIndex, noteIndexXml(noteXml(10) + noteXml(11) + noteXml(99)));
    Notes notes;
    QVERIFY(notes.read(project));
    QCOMPARE(notes.mList.size(), 3);
    for (const auto &[id, note] : std::as_const(notes.mList)) {
        QVERIFY(!note->parent());
        QVERIFY(!note->isModified());
        QVERIFY(note->isUndoRedoEnabled());
        QVERIFY(!note->isUndoAvailable());
        QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    }
}

void TstReadProjectNotes::aNoteWithoutAFileIsEmpty()
{
    const TestProject project;
    writeThreeNotes(project);
    QVERIFY(QFile::remove(project.path(noteFile(11))));
    QCOMPARE(noteLinesIn(project),
             QStringList({ThreeNotes.at(0), u"11 Title 11: "_s, ThreeNotes.at(2)}));
    QVERIFY(!QFileInfo::exists(project.path(noteFile(11))));
    Notes notes;
    QVERIFY(notes.read(project));
    setNoteText(notes.at(1), u"Back"_s);
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project).at(1), u"11 Title 11: Back"_s);
}

void TstReadProjectNotes::aNoteOfNoBytesIsEmpty()
{
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(noteFile(11), {});
    QCOMPARE(noteLinesIn(project),
             QStringList({ThreeNotes.at(0), u"11 Title 11: "_s, ThreeNotes.at(2)}));
    Notes notes;
    QStringList errors;
    QVERIFY(notes.read(project, &errors));
    QCOMPARE(errors, QStringList());
    setNoteText(notes.at(1), u"Back"_s);
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project).at(1), u"11 Title 11: Back"_s);
}

void TstReadProjectNotes::aTitleThatIsOnlyInTheIndexIsKept()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10, "<Title>Of the index</Title>")
                                   + noteXml(11, "<Title>Of the index</Title>") + noteXml(12)));
    project.writeFile(noteFile(10), rtfOf("Text"));
    project.writeFile(noteFile(11), rtfOf("{\\info{\\title Of the file}}Text"));
    project.writeFile(noteFile(12), rtfOf("Text"));
    const QStringList expected = {u"10 Of the index: Text"_s, u"11 Of the file: Text"_s,
                                  u"12 : Text"_s};
    QCOMPARE(noteLinesIn(project), expected);
    Notes notes;
    QVERIFY(notes.read(project));
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), expected);
}

void TstReadProjectNotes::twoEntriesOfOneIdAreOneNote()
{
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10, "<Title>First</Title>") + noteXml(11)
                                   + noteXml(10, "<Title>Second</Title>")));
    Notes notes;
    QVERIFY(notes.read(project));
    QCOMPARE(notes.lines(), ThreeNotes.first(2));
    setNoteText(notes.at(0), u"Changed"_s);
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project).at(0), u"10 Title 10: Changed"_s);
}

void TstReadProjectNotes::entriesWithoutAnIdAreLeftOut()
{
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(NotesIndex,
                      noteIndexXml("<Note><Title>a</Title></Note><Note ID=\"x\"/><Note ID=\"-10\"/>"
                                   + noteXml(12)));
    QCOMPARE(noteLinesIn(project), QStringList(ThreeNotes.at(2)));
}

void TstReadProjectNotes::anIndexThatCannotBeOpenedIsReported_data()
{
    QTest::addColumn<bool>("hasPermission");
    QTest::newRow("no file") << true;
    QTest::newRow("no permission") << false;
}

void TstReadProjectNotes::anIndexThatCannotBeOpenedIsReported()
{
    QFETCH(const bool, hasPermission);
    const TestProject project;
    writeThreeNotes(project);
    const UnopenableFile unopenable;
    if (hasPermission)
        unopenable.linkTo(project, NotesIndex);
    else
        QVERIFY(QFile::setPermissions(project.path(NotesIndex), ReducedPermissions::None));
    expectLog(u"failed to open project notes"_s);
    Notes notes;
    QStringList errors = {u"before"_s};
    QVERIFY(!notes.read(project, &errors));
    const QString reason = hasPermission ? UnopenableFile::errorText() : qt_error_string(EACCES);
    QCOMPARE(errors,
             QStringList({u"before"_s,
                          u"Failed to open project notes file: '%1'\nError: %2"_s.arg(
                              project.path(NotesIndex), reason)}));
    QVERIFY(notes.mList.isEmpty());
}

void TstReadProjectNotes::anIndexThatIsDamagedIsReported_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("nothing")
        << QByteArray()
        << u"Unexpected tag  on line 1.  Expected tag ProjectNotes Line:1 Column: 0"_s;
    QTest::newRow("no XML") << QByteArray("Once upon") << QString();
    QTest::newRow("cut off behind a note")
        << QByteArray("<ProjectNotes Version=\"1.0\">\n<Note ID=\"10\"/>\n")
        << u"Premature end of document. Line:3 Column: 0"_s;
    QTest::newRow("cut off in a tag")
        << QByteArray("<ProjectNotes><Note ID=\"10\"/><Note I") << QString();
    QTest::newRow("another file") << QByteArray("<Snapshots Version=\"1.0\"/>") << QString();
    QTest::newRow("zeros") << QByteArray(200, '\0') << QString();
    QTest::newRow("entities that grow")
        << QByteArray("<!DOCTYPE x [<!ENTITY f \"ffff\"><!ENTITY e \"&f;&f;\">]><ProjectNotes>"
                      "<Note ID=\"10\"><Title>&e;&e;</Title></Note></ProjectNotes>")
        << QString();
}

void TstReadProjectNotes::anIndexThatIsDamagedIsReported()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, reason);
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(NotesIndex, content);
    const Files before = project.files();
    Notes notes;
    QStringList errors;
    QVERIFY(!notes.read(project, &errors));
    QVERIFY(notes.mList.isEmpty());
    QCOMPARE(errors.size(), 1);
    const QString start = u"Error reading project notes inside 'index.xml'.\nError: "_s;
    QVERIFY2(errors.constFirst().startsWith(start), qPrintable(errors.constFirst()));
    QVERIFY(errors.constFirst().contains(u" Line:"_s));
    QVERIFY(errors.constFirst().contains(u" Column: "_s));
    if (!reason.isEmpty())
        QCOMPARE(errors.constFirst(), start + reason);
    QCOMPARE(project.files(), before);
}

void TstReadProjectNotes::aFolderThatCannotBeUsedIsReported()
{
    const TestProject project;
    writeThreeNotes(project);
    const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::None);
    expectLog(u"ERROR: Could not enter project notes directory: "_s + project.path(NotesFolder));
    Notes notes;
    QStringList errors;
    QVERIFY(!notes.read(project, &errors));
    QVERIFY(notes.mList.isEmpty());
    QCOMPARE(errors,
             QStringList(u"Could not enter project notes directory: '%1'"_s.arg(
                 project.path(NotesFolder))));
}

void TstReadProjectNotes::aNoteThatCannotBeOpenedIsReportedAndTheOthersAreRead_data()
{
    QTest::addColumn<bool>("hasPermission");
    QTest::newRow("no file") << true;
    QTest::newRow("no permission") << false;
}

void TstReadProjectNotes::aNoteThatCannotBeOpenedIsReportedAndTheOthersAreRead()
{
    QFETCH(const bool, hasPermission);
    const TestProject project;
    writeThreeNotes(project);
    const UnopenableFile unopenable;
    if (hasPermission)
        unopenable.linkTo(project, noteFile(11));
    else
        QVERIFY(QFile::setPermissions(project.path(noteFile(11)), ReducedPermissions::None));
    Notes notes;
    QStringList errors;
    QVERIFY(!notes.read(project, &errors));
    const QString reason = hasPermission ? UnopenableFile::errorText() : qt_error_string(EACCES);
    QCOMPARE(errors, QStringList(couldNotOpen(project, noteFile(11), reason)));
    QCOMPARE(notes.lines(), QStringList({ThreeNotes.at(0), u"11 Title 11: "_s, ThreeNotes.at(2)}));
}

void TstReadProjectNotes::aNoteThatIsDamagedIsReportedAndTheOthersAreRead_data()
{
    addDamagedNoteRows();
}

void TstReadProjectNotes::aNoteThatIsDamagedIsReportedAndTheOthersAreRead()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(noteFile(11), content);
    const Files before = project.files();
    Notes notes;
    QStringList errors;
    QVERIFY(!notes.read(project, &errors));
    QCOMPARE(errors.size(), 1);
    QVERIFY2(errors.constFirst().startsWith(couldNotOpen(project, noteFile(11), QString())),
             qPrintable(errors.constFirst()));
    QVERIFY(!errors.constFirst().endsWith(u"Error: "_s));
    QCOMPARE(notes.mList.size(), 3);
    QCOMPARE(notes.lines().at(0), ThreeNotes.at(0));
    QCOMPARE(notes.lines().at(2), ThreeNotes.at(2));
    QCOMPARE(noteTitle(notes.at(1)), u"Title 11"_s);
    QVERIFY(!notes.at(1)->isModified());
    QCOMPARE(project.files(), before);
}

void TstReadProjectNotes::whatCanBeReadOfADamagedNoteIsShown()
{
    const TestProject project;
    writeThreeNotes(project);
    project.writeFile(noteFile(11), "{\\rtf1\\ansi Once upon");
    Notes notes;
    QVERIFY(!notes.read(project));
    QCOMPARE(notes.lines().at(1), u"11 Title 11: Once upon"_s);
}

// --- There and back

void TstReadProjectNotes::titlesSurvive_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("plain") << u"Places"_s;
    QTest::newRow("none") << QString();
    QTest::newRow("of XML") << u"<Title>&amp;\"'</Title>"_s;
    QTest::newRow("of RTF") << u"\\par {braces} \\'e4;"_s;
    QTest::newRow("of a message") << u"100%1 %2 %n"_s;
    QTest::newRow("of another script") << u"\u6f22\u5b57 \u0639\u0631\u0628\u064a \u00e4\u00df"_s;
    QTest::newRow("beyond the first plane") << u"\U0001d11e \U0001f600"_s;
    QTest::newRow("long") << QString(5000, u'x');
}

void TstReadProjectNotes::titlesSurvive()
{
    QFETCH(const QString, title);
    const TestProject project;
    Notes notes;
    notes.add(10, title, u"Text"_s);
    notes.add(11, title, QString());
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), notes.lines());
}

void TstReadProjectNotes::idsSurvive_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {0, 1, 9, 10, 1000000, std::numeric_limits<int>::max()})
        QTest::addRow("%d", id) << id;
}

void TstReadProjectNotes::idsSurvive()
{
    QFETCH(const int, id);
    const TestProject project;
    Notes notes;
    notes.add(id, u"Title"_s, u"Text"_s);
    QVERIFY(notes.write(project));
    QVERIFY(QFileInfo::exists(project.path(noteFile(id))));
    QCOMPARE(noteLinesIn(project), notes.lines());
}

void TstReadProjectNotes::manyNotesSurvive()
{
    const TestProject project;
    Notes notes;
    for (int id = 1010; id > 10; --id)
        notes.add(id, u"Title %1"_s.arg(id), u"Text %1"_s.arg(id));
    QVERIFY(notes.write(project));
    QCOMPARE(noteLinesIn(project), notes.lines());
}

void TstReadProjectNotes::richTextSurvives_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TstReadProjectNotes::richTextSurvives()
{
    QFETCH(const quint32, seed);
    const TestProject project;
    QRandomGenerator random(seed);
    Notes notes;
    for (int id = 10; id < 13; ++id)
        notes.mList.append({id, makeRandomDocument(&random).release()});
    QVERIFY(notes.write(project));
    Notes read;
    QVERIFY(read.read(project));
    for (int place = 0; place < 3; ++place)
        QCOMPARE(differenceOfDocuments(*notes.at(place), *read.at(place)), QString());
    // Writing what was read changes nothing.
    const Files before = project.files();
    QVERIFY(read.write(project));
    QCOMPARE(project.files(), before);
}

void TstReadProjectNotes::inlineNotesSurvive()
{
    const TestProject project;
    Notes notes;
    QTextDocument *note = notes.add(10, u"Title"_s, u"Once upon a time"_s);
    QTextCursor cursor(note);
    cursor.setPosition(5);
    cursor.setPosition(9, QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setProperty(TVLTextFormat::InlineAnnotation, true);
    cursor.mergeCharFormat(format);
    QVERIFY(notes.write(project));
    // The document itself isn't touched.
    QCOMPARE(note->toPlainText(), u"Once upon a time"_s);
    Notes read;
    QVERIFY(read.read(project));
    QCOMPARE(read.at(0)->toPlainText(), u"Once upon a time"_s);
    QTextCursor inNote(read.at(0));
    inNote.setPosition(7);
    QVERIFY(inNote.charFormat().boolProperty(TVLTextFormat::InlineAnnotation));
    inNote.setPosition(12);
    QVERIFY(!inNote.charFormat().boolProperty(TVLTextFormat::InlineAnnotation));
}

void TstReadProjectNotes::linksSurvive()
{
    const TestProject project;
    Notes notes;
    QTextDocument *note = notes.add(10, u"Title"_s, u"Once upon a time"_s);
    const QMap<TVLTextRange, QString> links = {{{0, 4}, addressOf(1)}, {{10, 6}, addressOf(2)}};
    TVLTextDoc::setInternalLinks(note, links);
    QVERIFY(notes.write(project));
    QVERIFY(Format::hasLinksInSyncFileFormat(project.path(noteFile(10))));
    QVERIFY(!project.readFile(NotesIndex).contains("Links"));
    Notes read;
    QVERIFY(read.read(project, nullptr, &itemsOfNotes()));
    QCOMPARE(TVLTextDoc::internalLinks(read.at(0)), links);
}

// --- Links of old

void TstReadProjectNotes::linksOfTheIndexAreSet()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10,
                                           linksXml("<LinkID Range=\"5,4\">3</LinkID>"
                                                    "<LinkID Range=\"0,4\">4</LinkID>"))
                                   + noteXml(11)
                                   + noteXml(12, linksXml("<LinkID Range=\"0,4\">5</LinkID>"))));
    for (const int id : {10, 11, 12})
        project.writeFile(noteFile(id), rtfOf("Once upon a time"));
    Notes notes;
    QVERIFY(notes.read(project, nullptr, &itemsOfNotes()));
    const QMap<TVLTextRange, QString> expected = {{{0, 4}, addressOf(4)}, {{5, 4}, addressOf(3)}};
    QCOMPARE(TVLTextDoc::internalLinks(notes.at(0)), expected);
    QCOMPARE(addressesIn(notes.at(1)), QStringList());
    QCOMPARE(addressesIn(notes.at(2)), QStringList(addressOf(5)));
    QVERIFY(!notes.at(0)->isModified());
}

void TstReadProjectNotes::linksByUuidInTheFileWin()
{
    const TestProject project;
    Notes notes;
    TVLTextDoc::setInternalLinks(notes.add(10, QString(), u"Once upon a time"_s),
                                 {{{5, 4}, addressOf(1)}});
    QVERIFY(notes.write(project));
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10, linksXml("<LinkID Range=\"0,4\">3</LinkID>"))));
    Notes read;
    QVERIFY(read.read(project, nullptr, &itemsOfNotes()));
    QCOMPARE(addressesIn(read.at(0)), QStringList(addressOf(1)));
}

void TstReadProjectNotes::linksNeedAModel()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10, linksXml("<LinkID Range=\"0,4\">3</LinkID>"))));
    project.writeFile(noteFile(10), rtfOf("Once upon a time"));
    Notes notes;
    QVERIFY(notes.read(project));
    QCOMPARE(addressesIn(notes.at(0)), QStringList());
}

void TstReadProjectNotes::linksToUnknownItemsAreLeftOut()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(10,
                                           linksXml("<LinkID Range=\"0,4\">3</LinkID>"
                                                    "<LinkID Range=\"5,4\">77</LinkID>"
                                                    "<LinkID Range=\"5\">4</LinkID>"
                                                    "<LinkID Range=\"900,4\">5</LinkID>"))));
    project.writeFile(noteFile(10), rtfOf("Once upon a time"));
    Notes notes;
    QVERIFY(notes.read(project, nullptr, &itemsOfNotes()));
    QCOMPARE(addressesIn(notes.at(0)), QStringList(addressOf(3)));
}

void TstReadProjectNotes::writtenLinksOfOldAreInTheFile()
{
    const TestProject project;
    project.writeFile(NotesIndex,
                      noteIndexXml(noteXml(
                          10, "<Title>a</Title>" + linksXml("<LinkID Range=\"5,4\">3</LinkID>"))));
    project.writeFile(noteFile(10), rtfOf("Once upon a time"));
    QVERIFY(!Format::hasLinksInSyncFileFormat(project.path(noteFile(10))));
    Notes notes;
    QVERIFY(notes.read(project, nullptr, &itemsOfNotes()));
    QVERIFY(notes.write(project));
    QVERIFY(Format::hasLinksInSyncFileFormat(project.path(noteFile(10))));
    QVERIFY(!project.readFile(NotesIndex).contains("Links"));
    Notes read;
    QVERIFY(read.read(project));
    QCOMPARE(addressesIn(read.at(0)), QStringList(addressOf(3)));
}

void TstReadProjectNotes::fileWithLinksByUuid_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("expected");
    const QByteArray uuid = "0123ABCD-4567-89AB-CDEF-0123456789AB";
    const auto field = [](const QByteArray &address) {
        return rtfOf("a {\\field{\\*\\fldinst{HYPERLINK \"" + address + "\"}}{\\fldrslt b}} c");
    };
    QTest::newRow("no link") << rtfOf("a") << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("by uuid") << field("tavellnk://" + uuid) << true;
    QTest::newRow("by uuid in lower case") << field("tavellnk://" + uuid.toLower()) << true;
    QTest::newRow("by uuid behind a blank") << field(" tavellnk://" + uuid) << true;
    QTest::newRow("by id") << field("tavellnk://12") << false;
    QTest::newRow("to nothing") << field("tavellnk://") << false;
    QTest::newRow("half a uuid") << field("tavellnk://" + uuid.first(20)) << false;
    QTest::newRow("another scheme") << field("https://" + uuid) << false;
    QTest::newRow("a scheme that ends alike") << field("xtavellnk://" + uuid) << false;
    QTest::newRow("a scheme that ends alike before")
        << field("xtavellnk://12") + field("tavellnk://" + uuid) << true;
    QTest::newRow("without its quote") << QByteArray("\"tavellnk://" + uuid) << false;
    QTest::newRow("the first by uuid")
        << field("tavellnk://" + uuid) + field("tavellnk://12") << true;
    QTest::newRow("the first by id")
        << field("tavellnk://12") + field("tavellnk://" + uuid) << false;
    QTest::newRow("bytes of no encoding") << "\xff\xfe\xfd" + field("tavellnk://" + uuid) << true;
    QTest::newRow("at the very beginning") << "tavellnk://" + uuid + '"' << false;
}

void TstReadProjectNotes::fileWithLinksByUuid()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    project.writeFile(u"file.rtf"_s, content);
    QTEST(Format::hasLinksInSyncFileFormat(project.path(u"file.rtf"_s)), "expected");
}

void TstReadProjectNotes::aFileThatIsNotThereHasNoLinks()
{
    const TestProject project;
    QVERIFY(!Format::hasLinksInSyncFileFormat(project.path(u"file.rtf"_s)));
    QVERIFY(!Format::hasLinksInSyncFileFormat(QString()));
    QVERIFY(!Format::hasLinksInSyncFileFormat(project.enclosingPath()));
}

TVL_TEST_PREPARED(TstReadProjectNotes, dropRightsOfTheSuperuser)
#include "tst_readprojectnotes.moc"
