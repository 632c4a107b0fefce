#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTextCursor>

// What a sanitizer keeps back of freed memory would be taken for a leak.
#ifdef TVL_SANITIZED
#define TVL_MEMORY_IS_MEASURABLE 0
#else
#define TVL_MEMORY_IS_MEASURABLE 1
#endif

using namespace Qt::StringLiterals;

namespace {

/** What happens to an item's documents before a save; the values are bits. */
enum Deed : int {
    Nothing = 0,
    EditText = 1,
    EditNotes = 2,
    EditSynopsis = 4,
    HoldText = 8,
    HoldNotes = 16,
    HoldSynopsis = 32,
    KeepUndo = 64, ///< The edits can be undone.
    UndoEdits = 128, ///< They have been, and can be redone.
    Obstruct = 256, ///< No file can be written.
    Force = 512, ///< The save lets go of documents in any case.
};

const QList<QPair<int, TVL::DocumentType>> EditsAndTypes = {
    {EditText, TVL::MainText}, {EditNotes, TVL::NotesText}, {EditSynopsis, TVL::SynopsisText}};
const QList<QPair<int, TVL::DocumentType>> HoldsAndTypes = {
    {HoldText, TVL::MainText}, {HoldNotes, TVL::NotesText}, {HoldSynopsis, TVL::SynopsisText}};

QStringList filesOfDocuments(int id)
{
    return {u"Files/Docs/%1.rtf"_s.arg(id), u"Files/Docs/%1_notes.rtf"_s.arg(id),
            u"Files/Docs/%1_synopsis.txt"_s.arg(id)};
}

/** Folders stand where an item's files should be, so that they can't be written. */
void obstructFiles(const TestProject &project, int id)
{
    for (const QString &file : filesOfDocuments(id)) {
        QFile::remove(project.path(file));
        project.writeFile(file + u"/obstacle"_s, "x");
    }
}

void removeObstacles(const TestProject &project, int id)
{
    for (const QString &file : filesOfDocuments(id))
        QDir(project.path(file)).removeRecursively();
}

QString synopsisWriteError(const TestProject &project, int id)
{
    QFile file(project.path(filesOfDocuments(id).at(2)));
    return file.open(QIODevice::WriteOnly) ? QString() : file.errorString();
}

void doDeeds(const TVLProjectModel *model, const QModelIndex &index, int deeds)
{
    for (const auto &[deed, type] : EditsAndTypes) {
        if (!(deeds & deed))
            continue;
        typeText(model, index, u"words"_s, type);
        TVLTextDocument *document = model->referenceItem(index, type);
        if (deeds & UndoEdits)
            document->undo();
        else if (!(deeds & KeepUndo))
            document->clearUndoRedoStacks();
        model->dereferenceItem(document);
    }
    for (const auto &[deed, type] : HoldsAndTypes) {
        if (deeds & deed)
            model->referenceItem(index, type);
    }
}

#if TVL_MEMORY_IS_MEASURABLE
/** Memory of this process that is in use, in bytes. */
qint64 residentMemory()
{
    constexpr qint64 PageSize = 4096;
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the process can't be measured");
    return file.readAll().split(' ').at(1).toLongLong() * PageSize;
}
#endif

} // namespace

class TstDocumentSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSaveLetsGoOfDocumentsThatNobodyWants_data();
    void aSaveLetsGoOfDocumentsThatNobodyWants();
    void aSaveOfTheProjectFollowsTheSameRule();
    void typingAndUndoingLeavesTheDocumentDirty();
    void onlyDirtyDocumentsAreWritten();
    void anEmptiedDocumentLosesItsFile();
    void aSaveTellsWhichTextsThereAre();
    void savingNoItemIsFine();
    void oneItemIsSaved();
    void thereIsNoItemToSave();
    void savingADocumentDoesNothing();

    void aFailedDocumentIsToldAndTheRestIsWritten();
    void eachFailedItemIsTold();
    void aFailedDocumentIsTriedAgain();
    void theErrorsOfAFailedDocumentAreHandedOut();

    void editorsAreAskedInTheOrderOfTheFirstLoads();
    void whatAnEditorPushesGetsIntoTheSave();
    void anEditorMayRemoveItemsWhenAsked();
    void aReleasedDocumentIsCutLoose();
    void aDocumentMayBeReleasedWhileItSignals();
    void aReleasedItemIsLoadedAnew();
    void thousandsOfItemsComeAndGo_data();
    void thousandsOfItemsComeAndGo();
    void loadingAndSavingLeavesNothingBehind();
};

void TstDocumentSaving::aSaveLetsGoOfDocumentsThatNobodyWants_data()
{
    QTest::addColumn<TVL::NodeType>("itemType");
    QTest::addColumn<int>("deeds");
    QTest::addColumn<bool>("isReleased");

    const auto row = [](const char *name, int deeds, bool isReleased,
                        TVL::NodeType itemType = TVL::Text) {
        QTest::newRow(name) << itemType << deeds << isReleased;
    };
    row("clean", Nothing, false);
    row("clean, forced", Force, false);
    row("clean, held, forced", HoldText | Force, false);
    row("text", EditText, true);
    row("notes", EditNotes, true);
    row("synopsis", EditSynopsis, true);
    row("all three", EditText | EditNotes | EditSynopsis, true);
    row("text of a folder", EditText, true, TVL::Folder);
    row("text, held", EditText | HoldText, false);
    row("text, notes held", EditText | HoldNotes, false);
    row("text, synopsis held", EditText | HoldSynopsis, false);
    row("notes, text held", EditNotes | HoldText, false);
    row("text, undo", EditText | KeepUndo, false);
    row("text, redo", EditText | UndoEdits, false);
    row("notes, undo of the notes", EditNotes | KeepUndo, true);
    row("synopsis, undo of the synopsis", EditSynopsis | KeepUndo, true);
    row("no main text", EditNotes, false, TVL::Image);
    row("no main text, forced", EditNotes | Force, true, TVL::Image);
    row("text, held, forced", EditText | HoldText | Force, true);
    row("text, undo, forced", EditText | KeepUndo | Force, true);
    row("text, failed write", EditText | Obstruct, true);
    row("text, held, failed write", EditText | HoldText | Obstruct, false);
    row("text, undo, failed write", EditText | KeepUndo | Obstruct, false);
    row("text, failed write, forced", EditText | Obstruct | Force | HoldText, true);
}

void TstDocumentSaving::aSaveLetsGoOfDocumentsThatNobodyWants()
{
    QFETCH(const TVL::NodeType, itemType);
    QFETCH(const int, deeds);
    QFETCH(const bool, isReleased);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = addItem(model.get(), model->draftFolder(), itemType);
    TVLProjectNode *node = model->projectNode(index);
    model->loadDocuments(node);
    const QList<TVLTextDocument *> documents = {node->mTextDocument, node->mNotesDocument,
                                                node->mSynopsisDocument};
    QList<QPointer<TVLTextDocument>> present;
    for (TVLTextDocument *document : documents) {
        if (document)
            present.append(document);
    }
    doDeeds(model.get(), index, deeds);
    if (deeds & Obstruct)
        obstructFiles(project, node->mId);

    QStringList errors;
    QCOMPARE(model->saveDocuments(node, deeds & Force, &errors), !(deeds & Obstruct));
    QCOMPARE(errors.isEmpty(), !(deeds & Obstruct));
    QCOMPARE(model->loadedNodes().contains(node), !isReleased);
    if (!isReleased) {
        deleteReleasedObjects();
        QCOMPARE(QList<TVLTextDocument *>(
                     {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument}),
                 documents);
        QVERIFY(std::none_of(present.begin(), present.end(),
                             [](const auto &document) { return document.isNull(); }));
        return;
    }
    QVERIFY(!node->mTextDocument && !node->mNotesDocument && !node->mSynopsisDocument);
    for (const auto &document : present) {
        QVERIFY(document);
        QVERIFY(!document->model());
        QVERIFY(!document->node());
    }
    deleteReleasedObjects();
    QVERIFY(std::all_of(present.begin(), present.end(),
                        [](const auto &document) { return document.isNull(); }));
}

void TstDocumentSaving::aSaveOfTheProjectFollowsTheSameRule()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex held = addItem(model.get(), model->draftFolder(), TVL::Text);
    const QModelIndex clean = addItem(model.get(), model->draftFolder(), TVL::Text);
    const QModelIndex free = addItem(model.get(), model->draftFolder(), TVL::Text);
    TVLTextDocument *text = model->referenceText(held);
    QCOMPARE(model->referenceText(held), text);
    model->dereferenceItem(text);
    typeTextForGood(model.get(), held, u"held"_s);
    model->loadDocuments(model->projectNode(clean));
    typeTextForGood(model.get(), free, u"free"_s);
    QVERIFY(model->save());
    QCOMPARE(model->loadedNodes(),
             QList<TVLProjectNode *>({model->projectNode(held), model->projectNode(clean)}));
    QCOMPARE(text->referenceCount(), 1);
    QVERIFY(text->isSaved());
    for (const QModelIndex &index : {held, free})
        QVERIFY(
            QFileInfo::exists(project.path(filesOfDocuments(model->nodeIdentity(index)).at(0))));

    // Given back, the text is clean, and it takes another edit until a save lets go of it.
    model->dereferenceItem(text);
    QVERIFY(model->save(true));
    QVERIFY(model->loadedNodes().contains(model->projectNode(held)));
    typeTextForGood(model.get(), held, u"again "_s);
    QVERIFY(model->save());
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({model->projectNode(clean)}));
}

void TstDocumentSaving::typingAndUndoingLeavesTheDocumentDirty()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeTextForGood(model.get(), index, u"text"_s);
    QVERIFY(model->save());
    TVLTextDocument *text = model->referenceText(index);
    QVERIFY(text->isSaved());
    QTextCursor(text).insertText(u"x"_s);
    text->undo();
    QCOMPARE(text->toPlainText(), u"text"_s);
    QVERIFY(!text->isSaved());
    model->dereferenceItem(text);

    QVERIFY(QFile::remove(project.path(u"Files/Docs/3.rtf"_s)));
    QVERIFY(model->save());
    QVERIFY(QFileInfo::exists(project.path(u"Files/Docs/3.rtf"_s)));
    QVERIFY(text->isSaved());
    QCOMPARE(model->findNode(3)->mTextDocument, text);
}

void TstDocumentSaving::onlyDirtyDocumentsAreWritten()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"text"_s);
    typeText(model.get(), index, u"notes"_s, TVL::NotesText);
    typeText(model.get(), index, u"synopsis"_s, TVL::SynopsisText);
    QVERIFY(model->save());
    for (const QString &file : filesOfDocuments(3))
        project.writeFile(file, "sentinel");
    typeText(model.get(), index, u"more "_s, TVL::NotesText);
    QVERIFY(model->save());
    QCOMPARE(project.readFile(u"Files/Docs/3.rtf"_s), QByteArray("sentinel"));
    QVERIFY(project.readFile(u"Files/Docs/3_notes.rtf"_s).contains("more notes"));
    QCOMPARE(project.readFile(u"Files/Docs/3_synopsis.txt"_s), QByteArray("sentinel"));
    project.writeFile(u"Files/Docs/3_notes.rtf"_s, "sentinel");
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(u"Files/Docs/3_notes.rtf"_s), QByteArray("sentinel"));
}

void TstDocumentSaving::anEmptiedDocumentLosesItsFile()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"synopsis"_s));
    QVERIFY(model->save());
    QVERIFY(QFileInfo::exists(project.path(u"Files/Docs/3_synopsis.txt"_s)));
    QVERIFY(model->setSynopsis(index, QString()));
    QVERIFY(model->isModified());
    QVERIFY(model->save());
    QVERIFY(!QFileInfo::exists(project.path(u"Files/Docs/3_synopsis.txt"_s)));
    QCOMPARE(model->synopsis(index), QString());
}

void TstDocumentSaving::aSaveTellsWhichTextsThereAre()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const TVLProjectNode *node = model->projectNode(index);
    typeTextForGood(model.get(), index, u"text"_s);
    typeTextForGood(model.get(), index, u"notes"_s, TVL::NotesText);
    QVERIFY(!node->mHasText);
    QVERIFY(model->save());
    QVERIFY(!node->mTextDocument);
    QVERIFY(node->mHasText);
    QVERIFY(node->mHasDocumentNote);
    QVERIFY(!node->mHasSynopsis);
}

void TstDocumentSaving::savingNoItemIsFine()
{
    const auto model = blankModel();
    QStringList errors = {u"untouched"_s};
    QVERIFY(model->saveDocuments(nullptr, false, &errors));
    QVERIFY(model->saveDocuments(model->findNode(3), true, &errors));
    QCOMPARE(errors, QStringList({u"untouched"_s}));
}

void TstDocumentSaving::oneItemIsSaved()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text);
    typeText(model.get(), index, u"one"_s);
    typeText(model.get(), other, u"two"_s);
    QVERIFY(model->save(index));
    QVERIFY(project.readFile(u"Files/Docs/3.rtf"_s).contains("one"));
    QVERIFY(!QFileInfo::exists(project.path(u"Files/Docs/4.rtf"_s)));
    QVERIFY(model->isModified());
    QVERIFY(model->findNode(3)->mTextDocument->isSaved());

    typeText(model.get(), index, u"again "_s);
    obstructFiles(project, 3);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save(index));
    QVERIFY(boxes.boxes().isEmpty());
}

void TstDocumentSaving::thereIsNoItemToSave()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->save(QModelIndex()));
    QVERIFY(!model->save(model->rootIndex()));
    QVERIFY(!model->save(firstText(other.get())));
}

void TstDocumentSaving::savingADocumentDoesNothing()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QTextCursor(text).insertText(u"words"_s);
    const auto before = project.files();
    model->save(text);
    QCOMPARE(project.files(), before);
    QVERIFY(!text->isSaved());
    QVERIFY(model->isModified());
}

void TstDocumentSaving::aFailedDocumentIsToldAndTheRestIsWritten()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text);
    QVERIFY(model->setTitle(index, u"Chapter %1"_s));
    QVERIFY(model->setSynopsis(index, u"synopsis"_s));
    typeText(model.get(), other, u"the rest"_s);
    obstructFiles(project, 3);
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save());
    QCOMPARE(boxes.boxes().size(), 1);
    const TVLUnattendedMessageBoxes::Box box = boxes.boxes().constFirst();
    QCOMPARE(box.title, u"Project Writer"_s);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.text, u"The following errors occurred while saving your project."_s);
    QCOMPARE(box.informativeText,
             QString(u"Could not save project document 'Chapter %1'\nFailed saving document "
                     "synopsis with id: 3 \nError: '"_s
                     + synopsisWriteError(project, 3)
                     + u"'\n\nTo avoid losing your latest changes, make sure you have enough space "
                       "and write access on your storage device.\nYou can create a copy of your "
                       "project into another location using the menu File > SaveAs.\nYou might "
                       "also try to Compile and Save to RTF or DOC format to avoid losing your "
                       "latest changes."_s));
    QVERIFY(project.readFile(u"Novel.tavelx"_s) != binder);
    QVERIFY(project.readFile(u"Files/Docs/4.rtf"_s).contains("the rest"));
    QVERIFY(model->isSaved());
}

void TstDocumentSaving::eachFailedItemIsTold()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text, u"Other"_s);
    QVERIFY(model->setSynopsis(other, u"synopsis"_s));
    QVERIFY(model->setSynopsis(index, u"synopsis"_s));
    obstructFiles(project, 3);
    obstructFiles(project, 4);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save());
    QCOMPARE(boxes.boxes().size(), 1);
    const QString error = synopsisWriteError(project, 3);
    QVERIFY(boxes.boxes().at(0).informativeText.startsWith(
        u"Could not save project document 'Other'\nFailed saving document synopsis with id: 4 "
        "\nError: '%1'\n--------------------\nCould not save project document ''\nFailed saving "
        "document synopsis with id: 3 \nError: '%1'\n\nTo avoid"_s.arg(error)));
}

void TstDocumentSaving::aFailedDocumentIsTriedAgain()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"text"_s);
    obstructFiles(project, 3);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save());
    QVERIFY(!model->findNode(3)->mTextDocument->isSaved());
    removeObstacles(project, 3);
    // The project counts as saved, so the next change has to come first.
    QVERIFY(model->save());
    QVERIFY(!QFileInfo::exists(project.path(u"Files/Docs/3.rtf"_s)));
    QVERIFY(model->setTitle(model->trashFolder(), u"Bin"_s));
    QVERIFY(model->save());
    QVERIFY(project.readFile(u"Files/Docs/3.rtf"_s).contains("text"));
    QVERIFY(model->findNode(3)->mTextDocument->isSaved());
    QCOMPARE(boxes.boxes().size(), 1);
}

void TstDocumentSaving::theErrorsOfAFailedDocumentAreHandedOut()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"synopsis"_s));
    obstructFiles(project, 3);
    const TVLUnattendedMessageBoxes boxes;
    QStringList errors;
    QVERIFY(!model->saveChanges(&errors));
    QCOMPARE(errors,
             QStringList({u"Could not save project document ''\nFailed saving document synopsis "
                          "with id: 3 \nError: '%1'"_s.arg(synopsisWriteError(project, 3))}));
}

void TstDocumentSaving::editorsAreAskedInTheOrderOfTheFirstLoads()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text);
    model->loadDocuments(model->projectNode(other));
    model->loadDocuments(model->findNode(3));
    const SignalLog log(model.get());
    QVERIFY(model->save(false));
    QCOMPARE(log.lines(), QStringList({u"about to save 4"_s, u"about to save 3"_s}));
}

void TstDocumentSaving::whatAnEditorPushesGetsIntoTheSave()
{
    const TestProject project;
    const auto model = project.create();
    model->loadDocuments(model->findNode(3));
    connect(model.get(), &TVLProjectModel::aboutToSave, this,
            [&](const QModelIndex &index) { typeText(model.get(), index, u"pushed"_s); });
    QVERIFY(model->save(false));
    QVERIFY(project.readFile(u"Files/Docs/3.rtf"_s).contains("pushed"));
    QVERIFY(model->isSaved());
}

void TstDocumentSaving::anEditorMayRemoveItemsWhenAsked()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text);
    model->loadDocuments(model->findNode(3));
    model->loadDocuments(model->projectNode(other));
    QList<int> asked;
    connect(model.get(), &TVLProjectModel::aboutToSave, this, [&](const QModelIndex &index) {
        asked.append(model->nodeIdentity(index));
        if (asked.size() > 1)
            return;
        // The tree is read anew, so no index of before is any good.
        TVLBinderProject *reader = model.get();
        reader->beginBinderRead();
        reader->endBinderRead();
    });
    model->save(false);
    QCOMPARE(asked, QList<int>({3}));
}

void TstDocumentSaving::aReleasedDocumentIsCutLoose()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QPointer<TVLTextDocument> text(model->referenceText(index));
    typeText(model.get(), index, u"words"_s);
    QVERIFY(model->saveDocuments(model->findNode(3), true, nullptr));
    QVERIFY(text);
    QVERIFY(model->save());
    const SignalLog log(model.get());
    QTextCursor(text).insertText(u"lost "_s);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    model->dereferenceItem(text);
    QCOMPARE(model->documentPlainText(index, false), u"words"_s);
}

void TstDocumentSaving::aDocumentMayBeReleasedWhileItSignals()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QPointer<TVLTextDocument> text(model->referenceText(index));
    int edits = 0;
    connect(model.get(), &TVLProjectModel::documentContentsChange, this, [&] {
        ++edits;
        QVERIFY(model->saveDocuments(model->findNode(3), true, nullptr));
        QVERIFY(!model->findNode(3)->mTextDocument);
    });
    QTextCursor(text).insertText(u"words"_s);
    QCOMPARE(edits, 1);
    QVERIFY(text);
    QCOMPARE(text->toPlainText(), u"words"_s);
    deleteReleasedObjects();
    QVERIFY(!text);
    QVERIFY(project.readFile(u"Files/Docs/3.rtf"_s).contains("words"));
}

void TstDocumentSaving::aReleasedItemIsLoadedAnew()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    for (int round = 0; round < 3; ++round) {
        typeTextForGood(model.get(), index, u"%1."_s.arg(round));
        QVERIFY(model->save());
        QVERIFY(model->loadedNodes().isEmpty());
    }
    QCOMPARE(model->documentPlainText(index, false), u"2.1.0."_s);
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({model->findNode(3)}));
}

void TstDocumentSaving::thousandsOfItemsComeAndGo_data()
{
    QTest::addColumn<bool>("lastFirst");
    QTest::newRow("in the order of their load") << false;
    QTest::newRow("the last first") << true;
}

void TstDocumentSaving::thousandsOfItemsComeAndGo()
{
    constexpr int Items = 3000;
    QFETCH(const bool, lastFirst);
    const TestProject project;
    const auto model = project.create();
    QList<TVLProjectNode *> nodes;
    for (int i = 0; i < Items; ++i) {
        nodes.append(model->projectNode(addItem(model.get(), model->draftFolder(), TVL::Text)));
        typeTextForGood(model.get(), model->createIndex(nodes.constLast()), u"x"_s,
                        TVL::SynopsisText);
    }
    QCOMPARE(model->loadedNodes(), nodes);
    for (int i = 0; i < Items; ++i) {
        TVLProjectNode *node = nodes.at(lastFirst ? Items - 1 - i : i);
        if (i % 3 == 0)
            model->referenceText(model->createIndex(node));
        QVERIFY(model->saveDocuments(node, false, nullptr));
    }
    deleteReleasedObjects();
    QList<TVLProjectNode *> held;
    for (int i = 0; i < Items; ++i) {
        if ((lastFirst ? Items - 1 - i : i) % 3 == 0)
            held.append(nodes.at(i));
    }
    QCOMPARE(model->loadedNodes(), held);
    QCOMPARE(model->findChildren<TVLTextDocument *>().size(), 3 * held.size());
}

void TstDocumentSaving::loadingAndSavingLeavesNothingBehind()
{
    const int Rounds = testSize(10000);
    constexpr int WarmUpRounds = 1000;
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLProjectNode *node = model->projectNode(index);
    const qsizetype childrenBefore = model->children().size();
    int destroyed = 0;
    qint64 memoryBefore = 0;
    for (int round = 0; round < Rounds; ++round) {
#if TVL_MEMORY_IS_MEASURABLE
        if (round == WarmUpRounds)
            memoryBefore = residentMemory();
#endif
        // One character for another, so that what is to be kept stays the same.
        TVLTextDocument *text = model->referenceText(index);
        QTextCursor cursor(text);
        cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        cursor.insertText(QString(QChar(u'a' + round % 26)));
        text->clearUndoRedoStacks();
        model->dereferenceItem(text);
        for (const TVLTextDocument *document :
             {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument})
            connect(document, &QObject::destroyed, this, [&destroyed] { ++destroyed; });
        QVERIFY(model->saveDocuments(node, false, nullptr));
        deleteReleasedObjects();
    }
    QCOMPARE(destroyed, 3 * Rounds);
    QCOMPARE(model->children().size(), childrenBefore);
    QVERIFY(model->loadedNodes().isEmpty());
#if TVL_MEMORY_IS_MEASURABLE
    const qint64 memoryAfter = residentMemory();
    QVERIFY2(memoryAfter <= memoryBefore + memoryBefore / 10,
             qPrintable(u"%1 bytes, then %2"_s.arg(memoryBefore).arg(memoryAfter)));
#else
    Q_UNUSED(memoryBefore)
    Q_UNUSED(WarmUpRounds)
#endif
}

TVL_TEST(TstDocumentSaving)
#include "tst_documentsaving.moc"
