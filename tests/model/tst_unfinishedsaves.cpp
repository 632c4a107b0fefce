#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>

#include <unistd.h>

#include <functional>

using namespace Qt::StringLiterals;

/** Saves that fail, that are interrupted, and that come while another is under way. */
class TstUnfinishedSaves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Two at once
    void aSaveDuringSaveAsIsPutOff();
    void aSaveWhileTheErrorBoxIsUpIsPutOff();
    void aSaveThatAnEditorAsksForIsPutOff();
    void aChangeWhileTheErrorBoxIsUpIsAChange();

    // After a failure
    void saveAsWritesWhatAFailedSaveLeft();
    void theEndWritesWhatAFailedSaveLeft();
    void theEndWritesNotesThatAFailedSaveLeft();
    void aTextThatLeftMemoryUnwrittenIsReadFromTheJournal();
    void aTextThatLeftMemoryUnwrittenGoesAlongWithSaveAs();
    void anInterruptedSaveIsCompletedOnOpening();

    // The binder and its copies
    void aBinderThatTheReaderRejectsMakesNoAutosave();
    void anAutosaveThatFailedIsMadeAnew();
    void withoutACopyTheBinderIsInTheJournal();
    void aVerifiedCopyIsKnownWithoutReading();
    void derivedCopiesAreNotWrittenThroughALink_data();
    void derivedCopiesAreNotWrittenThroughALink();

    // Versions
    void aBinderOfAnUnknownVersionIsNotSaved();
    void anEmptyVersionFileIsWrittenAnew();
};

namespace {

using Format = TVLProjectFolderFormat;

const QString AutosaveFile = u"Files/binder.autosave"_s;

/** No file below a folder can be written or made for as long as the object lives. */
ReducedPermissions unwritable(const TestProject &project, const QString &relativePath)
{
    return ReducedPermissions(project.path(relativePath), ReducedPermissions::ReadOnly);
}

QString firstTextOf(TVLProjectModel *model)
{
    return model->documentPlainText(firstText(model), false);
}

void setFirstText(TVLProjectModel *model, const QString &words)
{
    TVLTextDocument *text = model->referenceText(firstText(model));
    QTextCursor cursor(text);
    cursor.select(QTextCursor::Document);
    cursor.insertText(words);
    text->clearUndoRedoStacks();
    model->dereferenceItem(text);
}

/** A project with the words "Old words", and the path of their file in it. */
QString makeSavedProject(const TestProject &project)
{
    const auto model = project.create();
    setFirstText(model.get(), u"Old words"_s);
    if (!model->save())
        qFatal("the project could not be saved");
    const QString path = u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(firstText(model.get())));
    model->prepareToDestroy();
    return path;
}

/** The one line of a binder's title in a zipped copy. */
bool isCopyOf(const TestProject &project, const QString &zip)
{
    const TestProject other;
    other.writeFile(zip, project.readFile(zip));
    const auto copy = other.open();
    const auto original = project.open();
    return copy && original
        && treeText(copy.get(), QModelIndex()) == treeText(original.get(), QModelIndex());
}

/** Does something as soon as there is a progress dialog. */
class WhenProgressShows : public QObject
{
public:
    explicit WhenProgressShows(std::function<void()> action)
        : mAction(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    [[nodiscard]] int count() const { return mCount; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::WindowTitleChange && qobject_cast<QProgressDialog *>(watched)
            && ++mCount == 1)
            mAction();
        return false;
    }

private:
    std::function<void()> mAction;
    int mCount = 0;
};

void expectWarning(const char *pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(pattern)));
}

} // namespace

// --- Two at once

void TstUnfinishedSaves::aSaveDuringSaveAsIsPutOff()
{
    const TestProject project;
    makeSavedProject(project);
    const TestProject target(u"Copy"_s);
    const auto model = project.open();
    model->setTitle(firstText(model.get()), u"Changed"_s);
    // The dialog runs the event loop as soon as it is seen, where timers come to their turn.
    WhenProgressShows meanwhile([&] { QVERIFY(!model->save()); });
    QVERIFY(model->saveAs(target.path(), true, true));
    QCOMPARE(meanwhile.count(), 1);
    QVERIFY(target.readFile(u"Copy.tavelx"_s).contains("Changed"));
    QVERIFY(!project.readFile(u"Novel.tavelx"_s).contains("Changed"));
}

void TstUnfinishedSaves::aSaveWhileTheErrorBoxIsUpIsPutOff()
{
    const TestProject project;
    makeSavedProject(project);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
    connect(&boxes, &TVLUnattendedMessageBoxes::answered, model.get(),
            [&] { QVERIFY(!model->save(true)); });
    QVERIFY(!model->save(true));
    QCOMPARE(boxes.boxes().size(), 1);
    // Who insisted gets the save later.
    QVERIFY(model->isModified());
}

void TstUnfinishedSaves::aSaveThatAnEditorAsksForIsPutOff()
{
    const TestProject project;
    makeSavedProject(project);
    const auto model = project.open();
    QCOMPARE(firstTextOf(model.get()), u"Old words"_s);
    int count = 0;
    connect(model.get(), &TVLProjectModel::aboutToSave, this, [&] {
        ++count;
        QVERIFY(!model->save());
    });
    QVERIFY(model->save(true));
    QCOMPARE(count, 1);
}

void TstUnfinishedSaves::aChangeWhileTheErrorBoxIsUpIsAChange()
{
    const TestProject project;
    makeSavedProject(project);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    {
        const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
        connect(&boxes, &TVLUnattendedMessageBoxes::answered, model.get(),
                [&] { model->setTitle(firstText(model.get()), u"While it is up"_s); });
        model->setTitle(firstText(model.get()), u"Before"_s);
        QVERIFY(!model->save());
    }
    QVERIFY(model->isModified());
    QVERIFY(model->save());
    QVERIFY(model->isSaved());
    QVERIFY(project.readFile(u"Novel.tavelx"_s).contains("While it is up"));
}

// --- After a failure

void TstUnfinishedSaves::saveAsWritesWhatAFailedSaveLeft()
{
    const TestProject project;
    makeSavedProject(project);
    const TestProject target(u"Copy"_s);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    {
        const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
        model->setTitle(firstText(model.get()), u"Not written"_s);
        QVERIFY(!model->save());
    }
    QVERIFY(model->isSaved());
    QVERIFY(model->saveAs(target.path(), false, true));
    QVERIFY(target.readFile(u"Copy.tavelx"_s).contains("Not written"));
}

void TstUnfinishedSaves::theEndWritesWhatAFailedSaveLeft()
{
    const TestProject project;
    makeSavedProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    {
        const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
        model->setTitle(firstText(model.get()), u"Not written"_s);
        QVERIFY(!model->save());
    }
    model->prepareToDestroy();
    QVERIFY(project.readFile(u"Novel.tavelx"_s).contains("Not written"));
    QCOMPARE(boxes.boxes().size(), 1);
}

void TstUnfinishedSaves::theEndWritesNotesThatAFailedSaveLeft()
{
    const TestProject project;
    makeSavedProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const int id = model->projectNoteIdentities().constFirst();
    const QString path = u"Files/ProjectNotes/Note-%1.rtf"_s.arg(id);
    QTextCursor(model->projectNote(id)).insertText(u"Written. "_s);
    QVERIFY(model->save());
    {
        const ReducedPermissions reduced = unwritable(project, path);
        QTextCursor(model->projectNote(id)).insertText(u"Not written"_s);
        expectWarning("Trying again");
        QVERIFY(!model->save());
    }
    QVERIFY(!model->projectNotes().isModified());
    model->prepareToDestroy();
    QVERIFY(project.readFile(path).contains("Not written"));
}

void TstUnfinishedSaves::aTextThatLeftMemoryUnwrittenIsReadFromTheJournal()
{
    const TestProject project;
    const QString path = makeSavedProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    {
        const ReducedPermissions reduced = unwritable(project, path);
        setFirstText(model.get(), u"New words"_s);
        expectWarning("Trying again");
        QVERIFY(!model->save());
        // It left memory with the save.
        QCOMPARE(firstTextOf(model.get()), u"New words"_s);
        setFirstText(model.get(), u"New words, and newer ones"_s);
        expectWarning("Trying again");
        QVERIFY(!model->save());
    }
    QVERIFY(project.readFile(path).contains("Old words"));
    expectWarning("Trying again .*1 files written");
    QVERIFY(model->save(true));
    QVERIFY(project.readFile(path).contains("New words, and newer ones"));
    QCOMPARE(firstTextOf(model.get()), u"New words, and newer ones"_s);
}

void TstUnfinishedSaves::aTextThatLeftMemoryUnwrittenGoesAlongWithSaveAs()
{
    const TestProject project;
    const QString path = makeSavedProject(project);
    const TestProject target(u"Copy"_s);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const ReducedPermissions reduced = unwritable(project, path);
    setFirstText(model.get(), u"New words"_s);
    expectWarning("Trying again");
    QVERIFY(!model->save());
    expectWarning("Trying again");
    QVERIFY(model->saveAs(target.path(), false, true));
    QCOMPARE(firstTextOf(model.get()), u"New words"_s);
}

void TstUnfinishedSaves::anInterruptedSaveIsCompletedOnOpening()
{
    const TestProject project;
    const QString path = makeSavedProject(project);
    {
        const TVLUnattendedMessageBoxes boxes;
        const auto model = project.open();
        const ReducedPermissions reduced = unwritable(project, path);
        setFirstText(model.get(), u"New words"_s);
        expectWarning("Trying again");
        QVERIFY(!model->save());
    }
    // As a kill leaves it in the middle of the write.
    project.writeFile(path, {});
    expectWarning("Completing an interrupted save of .*: 1 files written");
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(project.readFile(path).contains("New words"));
    QVERIFY(!QFile::exists(project.path(u"Files/redo.journal"_s)));
}

// --- The binder and its copies

void TstUnfinishedSaves::aBinderThatTheReaderRejectsMakesNoAutosave()
{
    const TestProject project;
    makeSavedProject(project);
    const QByteArray autosave = project.readFile(AutosaveFile);
    const auto model = project.open();
    // Well-formed, newer than its copy, and nothing that opens.
    project.writeFile(u"Novel.tavelx"_s, "<?xml version=\"1.0\"?><Novel/>");
    const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
    const TVLUnattendedMessageBoxes boxes;
    expectWarning("Trying again");
    QVERIFY(!model->save(true));
    QCOMPARE(project.readFile(AutosaveFile), autosave);
    expectWarning("Completing .* 1 can't be written yet");
    QVERIFY(project.open());
}

void TstUnfinishedSaves::anAutosaveThatFailedIsMadeAnew()
{
    const TestProject project;
    makeSavedProject(project);
    const auto model = project.open();
    {
        const ReducedPermissions reduced = unwritable(project, AutosaveFile);
        model->setTitle(firstText(model.get()), u"Second"_s);
        expectWarning("Could not make '.*binder.autosave' of the binder that was saved");
        QVERIFY(model->save());
    }
    const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
    const TVLUnattendedMessageBoxes boxes;
    model->setTitle(firstText(model.get()), u"Third"_s);
    QVERIFY(!model->save());
    QVERIFY(isCopyOf(project, AutosaveFile));
}

void TstUnfinishedSaves::withoutACopyTheBinderIsInTheJournal()
{
    const TestProject project;
    makeSavedProject(project);
    {
        const TVLUnattendedMessageBoxes boxes;
        const auto model = project.open();
        const ReducedPermissions noCopy = unwritable(project, AutosaveFile);
        project.writeFile(u"Novel.tavelx"_s, "<damaged");
        const ReducedPermissions reduced = unwritable(project, u"Novel.tavelx"_s);
        model->setTitle(firstText(model.get()), u"Second"_s);
        expectWarning("Trying again");
        QVERIFY(!model->save());
    }
    expectWarning("Completing an interrupted save of .*: 1 files written");
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->title(firstText(model.get())), u"Second"_s);
}

void TstUnfinishedSaves::aVerifiedCopyIsKnownWithoutReading()
{
    const TestProject project;
    makeSavedProject(project);
    const auto model = project.open();
    QVERIFY(model->save(true));
    // One that can't be read any more can't have been compared again, nor made anew from.
    const ReducedPermissions reduced(project.path(AutosaveFile), ReducedPermissions::None);
    model->setTitle(firstText(model.get()), u"Second"_s);
    expectWarning("Could not make");
    QVERIFY(model->save());
    QVERIFY(!QFile::exists(project.path(u"Files/redo.journal"_s)));
}

void TstUnfinishedSaves::derivedCopiesAreNotWrittenThroughALink_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isSymbolic");
    for (const QString &name : {u"binder.autosave"_s, u"binder.backup"_s}) {
        QTest::addRow("%s, a link", qPrintable(name)) << name << true;
        QTest::addRow("%s, a second name", qPrintable(name)) << name << false;
    }
}

void TstUnfinishedSaves::derivedCopiesAreNotWrittenThroughALink()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isSymbolic);
    const TestProject project;
    makeSavedProject(project);
    QVERIFY(project.open());
    const QString path = project.path(u"Files/"_s + name);
    const QString elsewhere = project.enclosingPath() + u"/elsewhere"_s;
    QVERIFY(QFile::rename(path, elsewhere));
    QFile other(elsewhere);
    QVERIFY(other.open(QIODevice::ReadOnly));
    const QByteArray before = other.readAll();
    QVERIFY(isSymbolic ? QFile::link(elsewhere, path)
                       : link(QFile::encodeName(elsewhere), QFile::encodeName(path)) == 0);

    const auto model = project.open();
    QVERIFY(model);
    model->setTitle(firstText(model.get()), u"Second"_s);
    QVERIFY(model->save());
    QVERIFY(!QFileInfo(path).isSymbolicLink());
    QVERIFY(other.seek(0));
    QCOMPARE(other.readAll(), before);
}

// --- Versions

void TstUnfinishedSaves::aBinderOfAnUnknownVersionIsNotSaved()
{
    const TestProject project;
    makeSavedProject(project);
    QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    binder.replace("Version=\"1.5\"", "Version=\"9.9\"");
    project.writeFile(u"Novel.tavelx"_s, binder);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    // Without that version the items have no ids, which is told on opening.
    QCOMPARE(boxes.takeBoxes().size(), 1);
    const auto before = project.files();
    setFirstText(model.get(), u"New words"_s);
    QVERIFY(!model->save(true));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().constFirst().title, u"Project Writer"_s);
    QVERIFY(boxes.boxes().constFirst().informativeText.startsWith(
        u"Project 'Novel' is incompatible with this version of Tavelinor."_s));
    model->saveAll(true);
    model->rebuildSearchIndexes(false, nullptr);
    QCOMPARE(project.files(), before);
}

void TstUnfinishedSaves::anEmptyVersionFileIsWrittenAnew()
{
    const TestProject project;
    makeSavedProject(project);
    const auto model = project.open();
    project.writeFile(u"Files/version.txt"_s, {});
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
}

TVL_TEST_PREPARED(TstUnfinishedSaves, dropRightsOfTheSuperuser)
#include "tst_unfinishedsaves.moc"
