#include "DocumentFixtures.h"
#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "ProjectNoteFixtures.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QUuid>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

void writeInNote(TVLProjectModel *model, int id, const QString &text)
{
    QTextCursor(model->projectNote(id)).insertText(text);
}

/** A saved project whose note 10 says `general`, and which has a note 11, `Places`, that says
 * `places`. */
void makeTwoNotes(const TestProject &project)
{
    const auto model = project.create();
    writeInNote(model.get(), 10, u"general"_s);
    writeInNote(model.get(), model->addProjectNote(u"Places"_s), u"places"_s);
    if (!model->save())
        qFatal("could not save the notes");
}

/** `id title: text` of each note. */
QStringList noteLines(TVLProjectModel *model)
{
    QStringList lines;
    const QList<int> ids = model->projectNoteIdentities();
    for (const int id : ids)
        lines.append(u"%1 %2: %3"_s.arg(QString::number(id), model->projectNoteTitle(id),
                                        model->projectNote(id)->toPlainText()));
    return lines;
}

/** Opens a project as if what its binder says didn't leave it modified. */
TestModel openUnmodified(const TestProject &project)
{
    TestModel model = project.open();
    if (model)
        TVLProjectModelTestAccess::setSaved(model.get());
    return model;
}

/** Opens a project and takes the text of the one box that tells of errors. */
TestModel openWithErrors(const TestProject &project, QString *text)
{
    TVLUnattendedMessageBoxes boxes;
    TestModel model = project.open();
    const QList<TVLUnattendedMessageBoxes::Box> shown = boxes.takeBoxes();
    if (!model || shown.size() != 1 || shown.constFirst().title != u"Project Loader")
        qFatal("there should be a project and one box");
    *text = shown.constFirst().text;
    return model;
}

/** The errors of a save, which shows them in a box. */
QStringList saveErrors(const TVLProjectModel *model)
{
    const TVLUnattendedMessageBoxes boxes;
    QStringList errors;
    if (model->saveChanges(&errors) != errors.isEmpty()
        || boxes.boxes().size() != (errors.isEmpty() ? 0 : 1))
        qFatal("the result of the save and its errors don't agree");
    return errors;
}

} // namespace

class TstProjectNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutNotesTheFirstIsMadeOnDemand();
    void anUnknownNoteIsTheFirst();
    void aNoteIsAdded();
    void aNewNoteTakesTheLowestFreeId();
    void aNoteMayHaveNoTitle();
    void aNoteIsRenamed();
    void anEqualTitleChangesNothing();
    void anUnknownNoteIsNotRenamed();
    void aNoteIsMoved_data();
    void aNoteIsMoved();
    void aMoveOutOfRangeIsRefused_data();
    void aMoveOutOfRangeIsRefused();
    void aNoteIsRemoved();
    void removingAnUnknownNoteIsFine();
    void theLastNoteMayBeRemoved();
    void anEditedNoteMarksTheProject();
    void aSaveLeavesNoNoteModified();

    // On disk
    void notesAreSavedAndReadAgain();
    void aReadNoteBelongsToTheModel();
    void anUntouchedNoteHasNoFile();
    void openingMakesNoFolderForNotes();
    void aReadOnlyProjectWithoutNotesOpensWithoutErrors();
    void notesThatHaveNotChangedAreNotWritten();
    void aMoveARenameAndARemovalAreSaved();
    void aRemovedNoteHasNoFileAtOnce();
    void aNoteWhoseFileCannotBeRemovedStays();
    void aFailedSaveIsReportedAndLeavesNoNoteModified();
    void aNoteThatCouldNotBeSavedIsSavedWithTheNextChange();
    void linksOfOldAreSetOnOpening();

    // What could not be read
    void anUnreadNoteIsKeptAndTheOthersAreSaved();
    void anUnreadNoteCanBeRemoved();
    void anUnreadListIsKeptWithAllItsNotes();
    void anUnreadListThatIsNotTouchedIsNoErrorOfASave();
    void aListThatCanBeReadAgainComesBack();
    void anUnseenFolderIsKeptWithAllItsNotes();
    void aNewNoteKeepsOffFilesThatTheListDoesNotKnow();
    void theFirstNoteKeepsOffAFileWithoutAList();
};

void TstProjectNotes::withoutNotesTheFirstIsMadeOnDemand()
{
    const auto model = emptyModel();
    const SignalLog log(model.get());
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QVERIFY(model->projectNotes().isEmpty());
    QVERIFY(!model->hasProjectNoteId(10));
    QTextDocument *note = model->projectNote(10);
    QVERIFY(note);
    QCOMPARE(note->parent(), model.get());
    QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    QVERIFY(model->hasProjectNoteId(10));
    QCOMPARE(model->projectNoteTitle(10), u"General"_s);
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QVERIFY(model->isSaved());
    QVERIFY(!model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList());
    QTextCursor(note).insertText(u"words"_s);
    QVERIFY(model->isModified());
}

void TstProjectNotes::anUnknownNoteIsTheFirst()
{
    const auto model = blankModel();
    const int second = model->addProjectNote(u"Second"_s);
    QCOMPARE(second, 11);
    QCOMPARE(model->projectNote(999), model->projectNote(10));
    QCOMPARE(model->projectNoteTitle(999), u"General"_s);
    QVERIFY(model->projectNote(11) != model->projectNote(10));
    QVERIFY(!model->hasProjectNoteId(999));
    const auto empty = emptyModel();
    QVERIFY(empty->projectNote(999));
    QCOMPARE(empty->projectNoteIdentities(), QList<int>({10}));
}

void TstProjectNotes::aNoteIsAdded()
{
    const auto model = blankModel();
    SignalLog log(model.get());
    connect(model.get(), &TVLProjectModel::projectNoteAboutToBeAdded, this,
            [&](int id) { QVERIFY(!model->hasProjectNoteId(id)); });
    connect(model.get(), &TVLProjectModel::projectNoteAdded, this,
            [&](int id) { QVERIFY(model->hasProjectNoteId(id)); });
    QCOMPARE(model->addProjectNote(u"Places"_s), 11);
    QCOMPARE(log.lines(), QStringList({u"note 11 to come"_s, u"modified"_s, u"note 11 came"_s}));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10, 11}));
    QCOMPARE(model->projectNoteTitle(11), u"Places"_s);
    const QTextDocument *note = model->projectNote(11);
    QCOMPARE(note->parent(), model.get());
    QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    QVERIFY(note->isModified());
    QVERIFY(note->isEmpty());
    QVERIFY(model->projectNotes().isModified());
}

void TstProjectNotes::aNewNoteTakesTheLowestFreeId()
{
    const auto model = blankModel();
    QCOMPARE(model->addProjectNote(u"a"_s), 11);
    QCOMPARE(model->addProjectNote(u"b"_s), 12);
    QCOMPARE(model->addProjectNote(u"c"_s), 13);
    QVERIFY(model->removeProjectNote(11, nullptr));
    QVERIFY(model->removeProjectNote(10, nullptr));
    QCOMPARE(model->addProjectNote(u"d"_s), 10);
    QCOMPARE(model->addProjectNote(u"e"_s), 11);
    QCOMPARE(model->addProjectNote(u"f"_s), 14);
    QCOMPARE(model->projectNoteIdentities(), QList<int>({12, 13, 10, 11, 14}));
}

void TstProjectNotes::aNoteMayHaveNoTitle()
{
    const auto model = blankModel();
    QCOMPARE(model->addProjectNote(QString()), 11);
    QCOMPARE(model->projectNoteTitle(11), QString());
}

void TstProjectNotes::aNoteIsRenamed()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->renameProjectNote(10, u"Places"_s));
    QCOMPARE(model->projectNoteTitle(10), u"Places"_s);
    QVERIFY(model->projectNote(10)->isModified());
    QVERIFY(model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"note 10 renamed"_s}));
}

void TstProjectNotes::anEqualTitleChangesNothing()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->renameProjectNote(10, u"General"_s));
    QVERIFY(!model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::anUnknownNoteIsNotRenamed()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(!model->renameProjectNote(999, u"Places"_s));
    QCOMPARE(model->projectNoteTitle(10), u"General"_s);
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::aNoteIsMoved_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("to the end") << 0 << 2 << QList<int>({11, 12, 10});
    QTest::newRow("to the front") << 2 << 0 << QList<int>({12, 10, 11});
    QTest::newRow("one up") << 1 << 0 << QList<int>({11, 10, 12});
    QTest::newRow("one down") << 1 << 2 << QList<int>({10, 12, 11});
}

void TstProjectNotes::aNoteIsMoved()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QList<int>, expected);
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_s);
    model->addProjectNote(u"b"_s);
    QVERIFY(model->save());
    QVERIFY(!model->projectNotes().isModified());
    const SignalLog log(model.get());
    QVERIFY(model->moveProjectNote(from, to));
    QCOMPARE(model->projectNoteIdentities(), expected);
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(!model->projectNotes().notesModified());
    QCOMPARE(log.lines(),
             QStringList({u"note at %1 to move to %2"_s.arg(from).arg(to), u"modified"_s,
                          u"note at %1 moved to %2"_s.arg(from).arg(to)}));
}

void TstProjectNotes::aMoveOutOfRangeIsRefused_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("to itself") << 1 << 1;
    QTest::newRow("from before") << -1 << 0;
    QTest::newRow("from behind") << 2 << 0;
    QTest::newRow("to before") << 0 << -1;
    QTest::newRow("to behind") << 0 << 2;
}

void TstProjectNotes::aMoveOutOfRangeIsRefused()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    const auto model = blankModel();
    model->addProjectNote(u"a"_s);
    const SignalLog log(model.get());
    QVERIFY(!model->moveProjectNote(from, to));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10, 11}));
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::aNoteIsRemoved()
{
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_s);
    QVERIFY(model->save());
    const QPointer<QTextDocument> note(model->projectNote(10));
    SignalLog log(model.get());
    connect(model.get(), &TVLProjectModel::projectNoteAboutToBeRemoved, this,
            [&](int id) { QVERIFY(model->hasProjectNoteId(id)); });
    connect(model.get(), &TVLProjectModel::projectNoteRemoved, this,
            [&](int id) { QVERIFY(!model->hasProjectNoteId(id)); });
    QStringList errors;
    QVERIFY(model->removeProjectNote(10, &errors));
    QCOMPARE(errors, QStringList());
    QCOMPARE(log.lines(), QStringList({u"note 10 to go"_s, u"modified"_s, u"note 10 gone"_s}));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({11}));
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(note);
    log.clear();
    note->setModified(true);
    QCOMPARE(log.lines(), QStringList());
    deleteReleasedObjects();
    QVERIFY(!note);
}

void TstProjectNotes::removingAnUnknownNoteIsFine()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->removeProjectNote(999, nullptr));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!model->projectNotes().isModified());
}

void TstProjectNotes::theLastNoteMayBeRemoved()
{
    const auto model = blankModel();
    QVERIFY(model->removeProjectNote(10, nullptr));
    QVERIFY(model->projectNotes().isEmpty());
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QCOMPARE(model->projectNoteTitle(10), u"General"_s);
}

void TstProjectNotes::anEditedNoteMarksTheProject()
{
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_s);
    QVERIFY(model->save());
    for (const int id : {10, 11}) {
        QTextCursor(model->projectNote(id)).insertText(u"words"_s);
        QVERIFY(model->isModified());
        QVERIFY(model->projectNotes().notesModified());
        QVERIFY(model->save());
    }
}

void TstProjectNotes::aSaveLeavesNoNoteModified()
{
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_s);
    QVERIFY(model->moveProjectNote(0, 1));
    QTextCursor(model->projectNote(10)).insertText(u"words"_s);
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(model->save());
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(!model->projectNote(10)->isModified());
    QVERIFY(!model->projectNote(11)->isModified());
    QVERIFY(model->isSaved());
}

// --- On disk

void TstProjectNotes::notesAreSavedAndReadAgain()
{
    const TestProject project;
    QStringList expected;
    {
        const auto model = project.create();
        model->addProjectNote(u"Places \u6f22 <&> {\\par}"_s);
        model->addProjectNote(QString());
        for (const int id : {10, 11, 12})
            writeInNote(model.get(), id, u"text of %1\nand more \U0001d11e"_s.arg(id));
        QVERIFY(model->moveProjectNote(2, 0));
        QVERIFY(model->save());
        expected = noteLines(model.get());
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(noteLines(model.get()), expected);
    QCOMPARE(model->projectNoteIdentities(), QList<int>({12, 10, 11}));
    QVERIFY(!model->projectNotes().isModified());
}

void TstProjectNotes::aReadNoteBelongsToTheModel()
{
    const TestProject project;
    makeTwoNotes(project);
    auto model = openUnmodified(project);
    QVERIFY(model);
    const QPointer<QTextDocument> note(model->projectNote(11));
    QCOMPARE(note->parent(), model.get());
    QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    const SignalLog log(model.get());
    writeInNote(model.get(), 11, u"more "_s);
    QCOMPARE(log.lines(), QStringList(u"modified"_s));
    QVERIFY(model->isModified());
    QVERIFY(model->save());
}

void TstProjectNotes::anUntouchedNoteHasNoFile()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->projectNote(10));
    QVERIFY(model->save(true));
    QVERIFY(!QFileInfo::exists(project.path(NotesFolder)));
}

void TstProjectNotes::openingMakesNoFolderForNotes()
{
    const TestProject project;
    QVERIFY(project.create() != nullptr);
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(noteLines(model.get()), QStringList(u"10 General: "_s));
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(!QFileInfo::exists(project.path(NotesFolder)));
}

void TstProjectNotes::aReadOnlyProjectWithoutNotesOpensWithoutErrors()
{
    const TestProject project;
    QVERIFY(project.create() != nullptr);
    const ReducedPermissions reducedFiles(project.path(u"Files"_s), ReducedPermissions::ReadOnly);
    const ReducedPermissions reduced(project.path(), ReducedPermissions::ReadOnly);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(noteLines(model.get()), QStringList(u"10 General: "_s));
}

void TstProjectNotes::notesThatHaveNotChangedAreNotWritten()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(QFile::remove(project.path(noteFile(10))));
    QVERIFY(QFile::remove(project.path(NotesIndex)));
    QVERIFY(model->save(true));
    QVERIFY(!QFileInfo::exists(project.path(noteFile(10))));
    QVERIFY(!QFileInfo::exists(project.path(NotesIndex)));
    writeInNote(model.get(), 11, u"more "_s);
    QVERIFY(model->save());
    QVERIFY(QFileInfo::exists(project.path(noteFile(10))));
    QVERIFY(QFileInfo::exists(project.path(NotesIndex)));
}

void TstProjectNotes::aMoveARenameAndARemovalAreSaved()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto changed = [&](const std::function<bool(TVLProjectModel *)> &change) {
        const auto model = project.open();
        if (!change(model.get()) || !model->save())
            return QStringList(u"failed"_s);
        return noteLines(project.open().get());
    };
    QCOMPARE(changed([](TVLProjectModel *model) { return model->moveProjectNote(0, 1); }),
             QStringList({u"11 Places: places"_s, u"10 General: general"_s}));
    QCOMPARE(
        changed([](TVLProjectModel *model) { return model->renameProjectNote(11, u"Persons"_s); }),
        QStringList({u"11 Persons: places"_s, u"10 General: general"_s}));
    QCOMPARE(changed([](TVLProjectModel *model) { return model->removeProjectNote(11, nullptr); }),
             QStringList(u"10 General: general"_s));
}

void TstProjectNotes::aRemovedNoteHasNoFileAtOnce()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto model = project.open();
    QVERIFY(model);
    const QByteArray index = project.readFile(NotesIndex);
    QStringList errors;
    QVERIFY(model->removeProjectNote(11, &errors));
    QCOMPARE(errors, QStringList());
    QVERIFY(!QFileInfo::exists(project.path(noteFile(11))));
    QVERIFY(QFileInfo::exists(project.path(noteFile(10))));
    QCOMPARE(project.readFile(NotesIndex), index);
    QVERIFY(model->save());
    QVERIFY(!project.readFile(NotesIndex).contains("Places"));
}

void TstProjectNotes::aNoteWhoseFileCannotBeRemovedStays()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto model = openUnmodified(project);
    QVERIFY(model);
    const SignalLog log(model.get());
    const QStringList before = noteLines(model.get());
    QStringList errors;
    {
        const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::ReadOnly);
        QVERIFY(!model->removeProjectNote(11, &errors));
    }
    QCOMPARE(errors,
             QStringList(
                 u"Could not delete project notes file: '%1'"_s.arg(project.path(noteFile(11)))));
    QCOMPARE(noteLines(model.get()), before);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(model->removeProjectNote(11, nullptr));
}

void TstProjectNotes::aFailedSaveIsReportedAndLeavesNoNoteModified()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto model = project.open();
    QVERIFY(model);
    const int id = model->addProjectNote(u"Persons"_s);
    makeUnwritable(project, noteFile(11));
    for (const int each : {10, 11, id})
        writeInNote(model.get(), each, u"more "_s);
    {
        const TVLUnattendedMessageBoxes boxes;
        QVERIFY(!model->save());
        QCOMPARE(boxes.boxes().size(), 1);
        QCOMPARE(boxes.boxes().constFirst().title, u"Project Writer"_s);
        QVERIFY(boxes.boxes().constFirst().informativeText.startsWith(
            u"Could not save project notes.\nCould not generate project notes file\nError: '%1'\n"_s
                .arg(unwritableText(project, noteFile(11)))));
    }
    QVERIFY(project.readFile(noteFile(10)).contains("more general"));
    QVERIFY(project.readFile(noteFile(id)).contains("more "));
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(!model->projectNote(11)->isModified());
    QVERIFY(model->isSaved());
    QCOMPARE(saveErrors(model.get()), QStringList());
}

void TstProjectNotes::aNoteThatCouldNotBeSavedIsSavedWithTheNextChange()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto model = project.open();
    QVERIFY(model);
    makeUnwritable(project, noteFile(11));
    writeInNote(model.get(), 11, u"more "_s);
    QCOMPARE(saveErrors(model.get()).size(), 1);
    QVERIFY(QFile::remove(project.path(noteFile(11))));
    writeInNote(model.get(), 10, u"another "_s);
    QCOMPARE(saveErrors(model.get()), QStringList());
    QCOMPARE(noteLines(project.open().get()),
             QStringList({u"10 General: another general"_s, u"11 Places: more places"_s}));
}

void TstProjectNotes::linksOfOldAreSetOnOpening()
{
    const TestProject project;
    QUuid uuid;
    {
        const auto model = project.create();
        const QModelIndex text = firstText(model.get());
        uuid = model->nodeUuid(text);
        project.writeFile(
            NotesIndex,
            noteIndexXml(noteXml(10,
                                 "<Links><TavelinorLinks><TextLinks><LinkID Range=\"5,4\">"
                                     + QByteArray::number(model->nodeIdentity(text))
                                     + "</LinkID></TextLinks></TavelinorLinks></Links>")));
        project.writeFile(noteFile(10), rtfOf("Once upon a time"));
    }
    const auto model = project.open();
    QVERIFY(model);
    const QMap<TVLTextRange, QString> expected = {
        {{5, 4}, TVLTextFormat::internalLinkAddress(uuid)}};
    QCOMPARE(TVLTextDoc::internalLinks(model->projectNote(10)), expected);
    QVERIFY(!model->projectNotes().isModified());
    writeInNote(model.get(), 10, u"x"_s);
    QVERIFY(model->save());
    QCOMPARE(TVLTextDoc::internalLinks(project.open()->projectNote(10)).values(),
             expected.values());
}

// --- What could not be read

void TstProjectNotes::anUnreadNoteIsKeptAndTheOthersAreSaved()
{
    const TestProject project;
    makeTwoNotes(project);
    const QByteArray damaged = project.readFile(noteFile(11)).chopped(5);
    project.writeFile(noteFile(11), damaged);
    QString text;
    const auto model = openWithErrors(project, &text);
    const QString readError =
        u"Could not open project notes file: '%1'\nError: "_s.arg(project.path(noteFile(11)));
    QVERIFY2(text.startsWith(u"Errors reading project.\nError: "_s + readError), qPrintable(text));
    QCOMPARE(model->projectNoteTitle(11), u"Places"_s);

    writeInNote(model.get(), 10, u"more "_s);
    QCOMPARE(saveErrors(model.get()), QStringList());
    QCOMPARE(project.readFile(noteFile(11)), damaged);
    QVERIFY(project.readFile(noteFile(10)).contains("more general"));

    writeInNote(model.get(), 11, u"lost "_s);
    writeInNote(model.get(), 10, u"even "_s);
    const QStringList errors = saveErrors(model.get());
    QCOMPARE(errors.size(), 1);
    QVERIFY2(errors.constFirst().startsWith(
                 u"Could not save project notes.\nCould not generate project notes file\nError: '"_s
                 + readError),
             qPrintable(errors.constFirst()));
    QCOMPARE(project.readFile(noteFile(11)), damaged);
    QVERIFY(project.readFile(noteFile(10)).contains("even more general"));
}

void TstProjectNotes::anUnreadNoteCanBeRemoved()
{
    const TestProject project;
    makeTwoNotes(project);
    project.writeFile(noteFile(11), "Once upon a time");
    QString text;
    const auto model = openWithErrors(project, &text);
    QVERIFY(model->removeProjectNote(11, nullptr));
    QCOMPARE(model->addProjectNote(u"New"_s), 11);
    writeInNote(model.get(), 11, u"words"_s);
    QCOMPARE(saveErrors(model.get()), QStringList());
    QCOMPARE(noteLines(project.open().get()),
             QStringList({u"10 General: general"_s, u"11 New: words"_s}));
}

void TstProjectNotes::anUnreadListIsKeptWithAllItsNotes()
{
    const TestProject project;
    makeTwoNotes(project);
    const QByteArray damaged = project.readFile(NotesIndex).chopped(5);
    project.writeFile(NotesIndex, damaged);
    const auto before = project.files();
    QString text;
    const auto model = openWithErrors(project, &text);
    const QString readError = u"Error reading project notes inside 'index.xml'.\nError: "_s;
    QVERIFY2(text.startsWith(u"Errors reading project.\nError: "_s + readError), qPrintable(text));
    QCOMPARE(noteLines(model.get()), QStringList(u"12 General: "_s));
    QCOMPARE(model->projectNote(10), model->projectNote(12));

    writeInNote(model.get(), 12, u"new words"_s);
    QCOMPARE(model->addProjectNote(u"Another"_s), 13);
    for (int save = 0; save < 2; ++save) {
        writeInNote(model.get(), 13, u"more "_s);
        const QStringList errors = saveErrors(model.get());
        QCOMPARE(errors.size(), 1);
        QVERIFY2(errors.constFirst().startsWith(u"Could not save project notes.\n"_s + readError),
                 qPrintable(errors.constFirst()));
        for (const QString &file : {NotesIndex, noteFile(10), noteFile(11)})
            QCOMPARE(project.readFile(file), before.value(file));
    }
    QVERIFY(project.readFile(noteFile(12)).contains("new words"));
    QVERIFY(project.readFile(noteFile(13)).contains("more more "));
}

void TstProjectNotes::anUnreadListThatIsNotTouchedIsNoErrorOfASave()
{
    const TestProject project;
    makeTwoNotes(project);
    project.writeFile(NotesIndex, {});
    QString text;
    const auto model = openWithErrors(project, &text);
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(model->setTitle(firstText(model.get()), u"Another"_s));
    QCOMPARE(saveErrors(model.get()), QStringList());
    QCOMPARE(project.readFile(NotesIndex), QByteArray());
}

void TstProjectNotes::aListThatCanBeReadAgainComesBack()
{
    const TestProject project;
    makeTwoNotes(project);
    {
        const ReducedPermissions reduced(project.path(NotesIndex), ReducedPermissions::None);
        QString text;
        const auto model = openWithErrors(project, &text);
        QVERIFY(text.startsWith(
            u"Errors reading project.\nError: Failed to open project notes file: '%1'\nError: "_s
                .arg(project.path(NotesIndex))));
        writeInNote(model.get(), 10, u"new words"_s);
        QCOMPARE(saveErrors(model.get()).size(), 1);
    }
    QCOMPARE(noteLines(project.open().get()),
             QStringList({u"10 General: general"_s, u"11 Places: places"_s}));
}

void TstProjectNotes::anUnseenFolderIsKeptWithAllItsNotes()
{
    const TestProject project;
    makeTwoNotes(project);
    const auto before = project.files();
    TestModel model;
    {
        const ReducedPermissions reduced(project.path(NotesFolder), ReducedPermissions::None);
        QString text;
        model = openWithErrors(project, &text);
        QCOMPARE(
            text,
            u"Errors reading project.\nError: Could not enter project notes directory: '%1'"_s.arg(
                project.path(NotesFolder)));
        QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
        QCOMPARE(model->addProjectNote(u"New"_s), 11);
    }
    // Now that they can be seen they are still not those that the model has.
    writeInNote(model.get(), 10, u"new words"_s);
    QCOMPARE(saveErrors(model.get()).size(), 1);
    for (const QString &file : {NotesIndex, noteFile(10), noteFile(11)})
        QCOMPARE(project.readFile(file), before.value(file));
    QCOMPARE(model->addProjectNote(u"Another"_s), 12);
    QCOMPARE(saveErrors(model.get()).size(), 1);
    QVERIFY(QFileInfo::exists(project.path(noteFile(12))));
}

void TstProjectNotes::aNewNoteKeepsOffFilesThatTheListDoesNotKnow()
{
    const TestProject project;
    makeTwoNotes(project);
    project.writeFile(noteFile(12), rtfOf("Forgotten"));
    QVERIFY(QFile::link(project.path(u"missing"_s), project.path(noteFile(13))));
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->addProjectNote(u"New"_s), 14);
    QCOMPARE(saveErrors(model.get()), QStringList());
    QCOMPARE(project.readFile(noteFile(12)), rtfOf("Forgotten"));
    QVERIFY(!QFileInfo::exists(project.path(u"missing"_s)));
}

void TstProjectNotes::theFirstNoteKeepsOffAFileWithoutAList()
{
    const TestProject project;
    makeTwoNotes(project);
    QVERIFY(QFile::remove(project.path(NotesIndex)));
    const auto before = project.files();
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(noteLines(model.get()), QStringList(u"12 General: "_s));
    writeInNote(model.get(), 12, u"new words"_s);
    QCOMPARE(saveErrors(model.get()), QStringList());
    for (const QString &file : {noteFile(10), noteFile(11)})
        QCOMPARE(project.readFile(file), before.value(file));
    QVERIFY(project.readFile(NotesIndex).contains("General"));
}

TVL_TEST_PREPARED(TstProjectNotes, dropRightsOfTheSuperuser)
#include "tst_projectnotes.moc"
