#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

const QString Separator = u"\n----------------------------------------------------"_s;

const QString AdviceForOneFile =
    u"If this is the first time you have received this message, please restart Linux, then restart "
    "Tavelinor and try opening this project again.\n\nIf you receive this message again for the "
    "same file, back up your project, thencopy the file from your Tavelinor project at the path "
    "above to a safe location and delete the file from the project folder. You can then try "
    "opening the copied file in another program and copying and pasting the contents into a new "
    "document in your Tavelinor project. If this message recurs after doing so, delete the "
    "document from the Tavelinor project, then paste first into Notepad to strip all formatting "
    "and RTF tags and copy and paste from there to Tavelinor.\n\nTo prevent losing work, you will "
    "not be able to modify or save the affected file in Tavelinor until you restart."_s;

const QString AdviceForSeveralFiles =
    u"If this is the first time you have received this message, please restart Linux, then restart "
    "Tavelinor and try opening this project again.\n\nIf you receive this message again for the "
    "same files, back up your project, thencopy the files from your Tavelinor project at the paths "
    "above to a safe location and delete the files from the project folder. You can then try "
    "opening the copied files in another program and copying and pasting the contents into a new "
    "document in your Tavelinor project. If this message recurs after doing so, delete the "
    "document from the Tavelinor project, then paste first into Notepad to strip all formatting "
    "and RTF tags and copy and paste from there to Tavelinor.\n\nTo prevent losing work, you will "
    "not be able to modify or save the affected files in Tavelinor until you restart."_s;

/** A folder stands where a document's file should be, so that it can't be read. */
void obstructDocument(const TestProject &project, const QString &fileName)
{
    project.writeFile(u"Files/Docs/%1/obstacle"_s.arg(fileName), "x");
}

QString obstructionError(const TestProject &project, const QString &fileName)
{
    return u"Error: Trying to read directory as a file: '%1'"_s.arg(
        project.path(u"Files/Docs/"_s + fileName));
}

/** Makes texts use another size while it lives. */
class DefaultFontSize
{
public:
    explicit DefaultFontSize(double pointSize)
        : mBefore(tvlOptions()->value(TVLOptions::DefaultFont))
    {
        QFont font = mBefore;
        font.setPointSizeF(pointSize);
        tvlOptions()->setValue(TVLOptions::DefaultFont, font);
    }
    ~DefaultFontSize() { tvlOptions()->setValue(TVLOptions::DefaultFont, mBefore); }
    Q_DISABLE_COPY_MOVE(DefaultFontSize)

private:
    QFont mBefore;
};

/** What the documents' reader says of the item with id 3. */
QStringList readErrors(const TestProject &project)
{
    TVLProjectNode node({3, QUuid::createUuid()}, nullptr);
    TVLTextDocument text(nullptr, nullptr, &node, TVL::MainText);
    TVLTextDocument notes(nullptr, nullptr, &node, TVL::NotesText);
    TVLTextDocument synopsis(nullptr, nullptr, &node, TVL::SynopsisText);
    node.mTextDocument = &text;
    node.mNotesDocument = &notes;
    node.mSynopsisDocument = &synopsis;
    QStringList errors;
    TVLProjectFolderFormat format(project.path(), TVL::FormatVersion18);
    if (format.readDocuments(&node, nullptr, &errors))
        qFatal("the documents could be read");
    return errors;
}

} // namespace

class TstDocumentLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReferenceLoadsAllDocumentsOfATextOrFolder_data();
    void aReferenceLoadsAllDocumentsOfATextOrFolder();
    void otherItemsHaveNoMainText_data();
    void otherItemsHaveNoMainText();
    void systemFoldersHaveNoDocuments_data();
    void systemFoldersHaveNoDocuments();
    void noItemNoDocument();
    void onlyThreeTypesCanBeReferenced_data();
    void onlyThreeTypesCanBeReferenced();
    void referencesAreCountedPerDocument();
    void giveBackLeavesTheDocumentInMemory();
    void aReferenceGivenBackTwiceCountsOnce();
    void nothingIsThereToGiveBackForNull();
    void aDocumentWithoutItemIsNotCounted();

    void loadingIsDoneOnce();
    void loadedItemsAreListedInTheOrderOfTheirFirstLoad();
    void itemsThatLeaveTheListLeaveItsOrder();
    void theRootAndItemsWithoutIdAreNotListed();
    void anItemWithoutIdStartsEmpty();
    void aLoadReadsTheFiles();
    void aLoadedDocumentIsCleanAndHasNoHistory();
    void aLoadChangesNothingInTheProject();
    void aLoadTellsWhichTextsThereAre();
    void theFirstLoadFixesTheSessionsBase();
    void aSynopsisGetsTheDefaultFormat();

    void aDocumentKnowsItsIndex();
    void theIndexOfADocumentFollowsItsItem();
    void aDocumentOutlivesItsItem();
    void documentsGoWithTheModel();
    void aChangedFontReachesLoadedDocumentsWithoutAnEdit();

    void aFileThatCantBeReadIsTold_data();
    void aFileThatCantBeReadIsTold();
    void severalFilesAreToldInOneBox();
    void aCommentsFileHasNoLineOfItsOwn();
    void anItemWithoutTitleIsToldAsUntitled();
    void aTitleWithAPlaceholderIsToldAsItStands();
    void theBoxComesOnce();
    void whileTheBoxIsShownTheDocumentsAreThere();
    void aFileThatCouldNotBeReadIsNeverWritten();
    void theOtherDocumentsOfADamagedItemAreWritten();
};

void TstDocumentLoading::aReferenceLoadsAllDocumentsOfATextOrFolder_data()
{
    QTest::addColumn<TVL::NodeType>("itemType");
    QTest::addColumn<TVL::DocumentType>("documentType");
    for (const TVL::NodeType itemType : {TVL::Folder, TVL::Text}) {
        for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
            QTest::addRow("type %d document %d", int(itemType), int(type)) << itemType << type;
    }
}

void TstDocumentLoading::aReferenceLoadsAllDocumentsOfATextOrFolder()
{
    QFETCH(const TVL::NodeType, itemType);
    QFETCH(const TVL::DocumentType, documentType);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = addItem(model.get(), model->draftFolder(), itemType);
    const TVLProjectNode *node = model->projectNode(index);
    QVERIFY(!node->mTextDocument && !node->mNotesDocument && !node->mSynopsisDocument);

    TVLTextDocument *document = model->referenceItem(index, documentType);
    QVERIFY(document);
    QCOMPARE(int(document->documentType()), int(documentType));
    QCOMPARE(document->model(), model.get());
    QCOMPARE(document->node(), node);
    QCOMPARE(document->parent(), model.get());
    QVERIFY(node->mTextDocument && node->mNotesDocument && node->mSynopsisDocument);
    QCOMPARE(int(node->mTextDocument->documentType()), int(TVL::MainText));
    QCOMPARE(int(node->mNotesDocument->documentType()), int(TVL::NotesText));
    QCOMPARE(int(node->mSynopsisDocument->documentType()), int(TVL::SynopsisText));
    const int references = node->mTextDocument->referenceCount()
        + node->mNotesDocument->referenceCount() + node->mSynopsisDocument->referenceCount();
    QCOMPARE(references, 1);
    QCOMPARE(document->referenceCount(), 1);
    model->dereferenceItem(document);
}

void TstDocumentLoading::otherItemsHaveNoMainText_data()
{
    QTest::addColumn<TVL::NodeType>("itemType");
    QTest::newRow("image") << TVL::Image;
    QTest::newRow("pdf") << TVL::PDF;
    QTest::newRow("media") << TVL::Media;
    QTest::newRow("web page") << TVL::WebArchive;
    QTest::newRow("other") << TVL::Other;
}

void TstDocumentLoading::otherItemsHaveNoMainText()
{
    QFETCH(const TVL::NodeType, itemType);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = addItem(model.get(), model->researchFolder(), itemType);
    const TVLProjectNode *node = model->projectNode(index);
    QVERIFY(!model->referenceText(index));
    QVERIFY(!node->mTextDocument);
    QVERIFY(node->mNotesDocument);
    QVERIFY(node->mSynopsisDocument);
    QCOMPARE(node->mNotesDocument->referenceCount(), 0);
    QCOMPARE(node->mSynopsisDocument->referenceCount(), 0);
    QCOMPARE(model->referenceNote(index), node->mNotesDocument);
    QCOMPARE(model->referenceSynopsis(index), node->mSynopsisDocument);
}

void TstDocumentLoading::systemFoldersHaveNoDocuments_data()
{
    QTest::addColumn<TVL::NodeType>("folder");
    QTest::newRow("draft") << TVL::DraftFolder;
    QTest::newRow("research") << TVL::ResearchFolder;
    QTest::newRow("trash") << TVL::TrashFolder;
}

void TstDocumentLoading::systemFoldersHaveNoDocuments()
{
    QFETCH(const TVL::NodeType, folder);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = model->findSystemFolder(folder);
    QVERIFY(!model->referenceText(index));
    QVERIFY(!model->referenceNote(index));
    QVERIFY(!model->referenceSynopsis(index));
    QVERIFY(!model->projectNode(index)->mSynopsisDocument);
    QVERIFY(model->loadedNodes().isEmpty());
}

void TstDocumentLoading::noItemNoDocument()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->referenceText(firstText(other.get())));
    QVERIFY(!model->referenceSynopsis(firstText(other.get())));
    QVERIFY(other->loadedNodes().isEmpty());
    model->loadDocuments(nullptr);
    QVERIFY(model->loadedNodes().isEmpty());
}

void TstDocumentLoading::onlyThreeTypesCanBeReferenced_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 3, 4, 7, 8, 9, 100})
        QTest::addRow("%d", type) << type;
}

void TstDocumentLoading::onlyThreeTypesCanBeReferenced()
{
    QFETCH(const int, type);
    const TestProject project;
    const auto model = project.create();
    QVERIFY(!model->referenceItem(firstText(model.get()), TVL::DocumentType(type)));
}

void TstDocumentLoading::referencesAreCountedPerDocument()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *text = model->referenceText(index);
    QCOMPARE(model->referenceText(index), text);
    TVLTextDocument *notes = model->referenceNote(index);
    QCOMPARE(text->referenceCount(), 2);
    QCOMPARE(notes->referenceCount(), 1);
    model->dereferenceItem(text);
    QCOMPARE(text->referenceCount(), 1);
    QCOMPARE(notes->referenceCount(), 1);
    QCOMPARE(model->projectNode(index)->mSynopsisDocument->referenceCount(), 0);
}

void TstDocumentLoading::giveBackLeavesTheDocumentInMemory()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QPointer<TVLTextDocument> text(model->referenceText(index));
    model->dereferenceItem(text);
    deleteReleasedObjects();
    QVERIFY(text);
    QCOMPARE(text->referenceCount(), 0);
    QCOMPARE(model->referenceText(index), text.data());
}

void TstDocumentLoading::aReferenceGivenBackTwiceCountsOnce()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *text = model->referenceText(firstText(model.get()));
    model->dereferenceItem(text);
    model->dereferenceItem(text);
    QCOMPARE(text->referenceCount(), 0);
    QCOMPARE(model->referenceText(firstText(model.get()))->referenceCount(), 1);
}

void TstDocumentLoading::nothingIsThereToGiveBackForNull()
{
    const auto model = blankModel();
    model->dereferenceItem(nullptr);
    QVERIFY(model->isSaved());
}

void TstDocumentLoading::aDocumentWithoutItemIsNotCounted()
{
    const auto model = blankModel();
    TVLTextDocument document;
    document.setReferenceCount(2);
    model->dereferenceItem(&document);
    QCOMPARE(document.referenceCount(), 2);
}

void TstDocumentLoading::loadingIsDoneOnce()
{
    const TestProject project;
    const auto model = project.create();
    TVLProjectNode *node = model->findNode(3);
    model->loadDocuments(node);
    const auto *text = node->mTextDocument;
    const auto *synopsis = node->mSynopsisDocument;
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "came too late");
    model->loadDocuments(node);
    QCOMPARE(node->mTextDocument, text);
    QCOMPARE(node->mSynopsisDocument, synopsis);
    QVERIFY(synopsis->isEmpty());
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({node}));
}

void TstDocumentLoading::loadedItemsAreListedInTheOrderOfTheirFirstLoad()
{
    const TestProject project;
    const auto model = project.create();
    QList<TVLProjectNode *> nodes;
    for (int i = 0; i < 4; ++i)
        nodes.append(model->projectNode(addItem(model.get(), model->draftFolder(), TVL::Text)));
    for (const int i : {2, 0, 3, 0, 2, 1})
        model->loadDocuments(nodes.at(i));
    QCOMPARE(model->loadedNodes(),
             QList<TVLProjectNode *>({nodes.at(2), nodes.at(0), nodes.at(3), nodes.at(1)}));
}

void TstDocumentLoading::itemsThatLeaveTheListLeaveItsOrder()
{
    const TestProject project;
    const auto model = project.create();
    QList<TVLProjectNode *> expected;
    for (int i = 0; i < 300; ++i) {
        expected.append(model->projectNode(addItem(model.get(), model->draftFolder(), TVL::Text)));
        model->loadDocuments(expected.constLast());
    }
    QRandomGenerator random(7);
    while (!expected.isEmpty()) {
        const TVLProjectNode *node = expected.takeAt(random.bounded(int(expected.size())));
        model->reloadCachedUuids({node->mUuid});
        QCOMPARE(model->loadedNodes(), expected);
    }
}

void TstDocumentLoading::theRootAndItemsWithoutIdAreNotListed()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex index = addItem(model.get(), QModelIndex(), TVL::Text);
    QCOMPARE(model->nodeIdentity(index), -1);
    TVLTextDocument *text = model->referenceText(index);
    QVERIFY(text);
    QVERIFY(model->referenceText(QModelIndex()));
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>());
    // It can be edited all the same.
    typeText(model.get(), index, u"words"_s);
    QVERIFY(model->isModified());
    QCOMPARE(model->documentPlainText(index, false), u"words"_s);
}

void TstDocumentLoading::anItemWithoutIdStartsEmpty()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "not this");
    project.writeFile(u"Files/Docs/-1_synopsis.txt"_s, "nor this");
    model->clearIndexId(index);
    QCOMPARE(model->synopsis(index), QString());
}

void TstDocumentLoading::aLoadReadsTheFiles()
{
    const TestProject project;
    {
        const auto model = project.create();
        const QModelIndex index = firstText(model.get());
        typeText(model.get(), index, u"the text\nof two lines"_s);
        typeText(model.get(), index, u"the notes"_s, TVL::NotesText);
        QVERIFY(model->setSynopsis(index, u"the synopsis \u2026"_s));
        QVERIFY(model->save());
    }
    const auto model = project.open();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->documentPlainText(index, false), u"the text\nof two lines"_s);
    QCOMPARE(model->documentNoteAsPlainText(index), u"the notes"_s);
    QCOMPARE(model->synopsis(index), u"the synopsis \u2026"_s);
}

void TstDocumentLoading::aLoadedDocumentIsCleanAndHasNoHistory()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 text}");
    project.writeFile(u"Files/Docs/3_notes.rtf"_s, "{\\rtf1 notes}");
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "synopsis");
    TVLProjectNode *node = model->findNode(3);
    model->loadDocuments(node);
    for (const TVLTextDocument *document :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument}) {
        QVERIFY(!document->isEmpty());
        QVERIFY(document->isSaved());
        QVERIFY(!document->isReadOnly());
        QVERIFY(!document->isUndoAvailable());
        QVERIFY(!document->isRedoAvailable());
        QCOMPARE(document->referenceCount(), 0);
    }
    QVERIFY(!node->mTextDocument->isModified());
    QVERIFY(!node->mNotesDocument->isModified());
}

void TstDocumentLoading::aLoadChangesNothingInTheProject()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 text}");
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "synopsis");
    makeAllOld(model.get());
    const SignalLog log(model.get());
    model->loadDocuments(model->findNode(3));
    QVERIFY(model->isSaved());
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(touchedIds(model.get()), QList<int>());
}

void TstDocumentLoading::aLoadTellsWhichTextsThereAre()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 text}");
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "synopsis");
    TVLProjectNode *node = model->findNode(3);
    node->mHasDocumentNote = true;
    model->loadDocuments(node);
    QVERIFY(node->mHasText);
    QVERIFY(!node->mHasDocumentNote);
    QVERIFY(node->mHasSynopsis);
}

void TstDocumentLoading::theFirstLoadFixesTheSessionsBase()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 three little words}");
    TVLProjectNode *node = model->findNode(3);
    QCOMPARE(node->mSessionWordCount, -1);
    QCOMPARE(node->mSessionCharacterCount, -1);
    model->loadDocuments(node);
    QCOMPARE(node->mSessionWordCount, 3);
    QCOMPARE(node->mSessionCharacterCount, 18);

    // A base that is there stays, also when the text comes into memory again.
    typeTextForGood(model.get(), firstText(model.get()), u"more "_s);
    QVERIFY(model->save(firstText(model.get())));
    QVERIFY(!node->mTextDocument);
    model->loadDocuments(node);
    QCOMPARE(node->mSessionWordCount, 3);
    QCOMPARE(node->mSessionCharacterCount, 18);

    // An item without main text never gets one.
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    model->loadDocuments(model->projectNode(image));
    QCOMPARE(model->projectNode(image)->mSessionWordCount, -1);
    QCOMPARE(model->projectNode(image)->mSessionCharacterCount, -1);
}

void TstDocumentLoading::aSynopsisGetsTheDefaultFormat()
{
    const DefaultFontSize size(17);
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "first\nsecond");
    const TVLTextDocument *synopsis = model->referenceSynopsis(firstText(model.get()));
    QCOMPARE(synopsis->blockCount(), 2);
    QCOMPARE(synopsis->defaultFont().pointSizeF(), 17.0);
    for (QTextBlock block = synopsis->begin(); block.isValid(); block = block.next()) {
        const QFont used = block.begin().fragment().charFormat().font();
        QCOMPARE(used.pointSizeF(), 17.0);
    }
}

void TstDocumentLoading::aDocumentKnowsItsIndex()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        QCOMPARE(model->referenceItem(index, type)->index(), index);
}

void TstDocumentLoading::theIndexOfADocumentFollowsItsItem()
{
    const TestProject project;
    const auto model = project.create();
    const TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QCOMPARE(text->index().row(), 0);
    QVERIFY(model->insertRows(0, 5, model->draftFolder()));
    QCOMPARE(text->index().row(), 5);
    QCOMPARE(model->nodeIdentity(text->index()), 3);
}

void TstDocumentLoading::aDocumentOutlivesItsItem()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex folder = addItem(model.get(), model->draftFolder(), TVL::Folder);
    const QModelIndex index = addItem(model.get(), folder, TVL::Text);
    TVLProjectNode *node = model->projectNode(index);
    const QPointer<TVLTextDocument> text(model->referenceText(index));
    typeText(model.get(), index, u"words"_s);
    model->reloadCachedUuids({node->mUuid});
    model->projectNode(folder)->mChildren.clear();
    delete node;

    QVERIFY(text);
    QVERIFY(!text->model());
    QVERIFY(!text->node());
    QVERIFY(!text->index().isValid());
    QCOMPARE(text->toPlainText(), u"words"_s);
    QVERIFY(model->save());
    const SignalLog log(model.get());
    QTextCursor(text).insertText(u"more "_s);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    model->dereferenceItem(text);
    QCOMPARE(text->referenceCount(), 1);
}

void TstDocumentLoading::documentsGoWithTheModel()
{
    const TestProject project;
    auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const QPointer<TVLTextDocument> text(model->referenceText(index));
    const QPointer<TVLTextDocument> synopsis(model->referenceSynopsis(index));
    typeText(model.get(), index, u"words"_s);
    model.reset();
    QVERIFY(!text);
    QVERIFY(!synopsis);
}

void TstDocumentLoading::aChangedFontReachesLoadedDocumentsWithoutAnEdit()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    const TVLTextDocument *text = model->referenceText(index);
    const TVLTextDocument *notes = model->referenceNote(index);
    const SignalLog log(model.get());
    const DefaultFontSize size(23);
    QCOMPARE(text->defaultFont().pointSizeF(), 23.0);
    QCOMPARE(notes->defaultFont().pointSizeF(), 23.0);
    QVERIFY(text->isSaved());
    QVERIFY(model->isSaved());
    QCOMPARE(log.lines(), QStringList());

    // Another group of options doesn't matter to texts.
    TVLTextDocument loose;
    const QFont own = loose.defaultFont();
    loose.reflectSettings({u"General"_s, u"Navigation"_s});
    QCOMPARE(loose.defaultFont(), own);
    loose.reflectSettings({u"General"_s, u"TextEditing"_s});
    QCOMPARE(loose.defaultFont().pointSizeF(), 23.0);
}

void TstDocumentLoading::aFileThatCantBeReadIsTold_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("line");
    QTest::newRow("main text") << u"3.rtf"_s << u"Could not load document 'Chapter'"_s;
    QTest::newRow("notes") << u"3_notes.rtf"_s << u"Could not load document notes for 'Chapter'"_s;
    QTest::newRow("synopsis") << u"3_synopsis.txt"_s
                              << u"Could not load document synopsis for 'Chapter'"_s;
}

void TstDocumentLoading::aFileThatCantBeReadIsTold()
{
    QFETCH(const QString, fileName);
    QFETCH(const QString, line);
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->setTitle(firstText(model.get()), u"Chapter"_s));
    obstructDocument(project, fileName);
    const TVLUnattendedMessageBoxes boxes;
    model->loadDocuments(model->findNode(3));
    QCOMPARE(boxes.boxes().size(), 1);
    const TVLUnattendedMessageBoxes::Box box = boxes.boxes().constFirst();
    QCOMPARE(box.title, u"Project Document Loader"_s);
    QCOMPARE(box.text,
             QString(line + Separator + u'\n' + obstructionError(project, fileName) + Separator));
    QCOMPARE(box.informativeText, AdviceForOneFile);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.standardButtons, QMessageBox::Ok);
}

void TstDocumentLoading::severalFilesAreToldInOneBox()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->setTitle(firstText(model.get()), u"Chapter"_s));
    for (const QString &name : {u"3.rtf"_s, u"3_notes.rtf"_s, u"3_synopsis.txt"_s})
        obstructDocument(project, name);
    const TVLUnattendedMessageBoxes boxes;
    model->loadDocuments(model->findNode(3));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).text,
             QString(u"Could not load document 'Chapter'\n"
                     "Could not load document notes for 'Chapter'\n"
                     "Could not load document synopsis for 'Chapter'"_s
                     + Separator + u'\n' + obstructionError(project, u"3.rtf"_s) + Separator + u'\n'
                     + obstructionError(project, u"3_notes.rtf"_s) + Separator + u'\n'
                     + obstructionError(project, u"3_synopsis.txt"_s) + Separator));
    QCOMPARE(boxes.boxes().at(0).informativeText, AdviceForSeveralFiles);
}

void TstDocumentLoading::aCommentsFileHasNoLineOfItsOwn()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.comments"_s, "no XML");
    const QStringList errors = readErrors(project);
    QCOMPARE(errors.size(), 1);
    const TVLUnattendedMessageBoxes boxes;
    model->loadDocuments(model->findNode(3));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).text,
             QString(Separator + u'\n' + errors.constFirst() + Separator));
    QCOMPARE(boxes.boxes().at(0).informativeText, AdviceForOneFile);
}

void TstDocumentLoading::anItemWithoutTitleIsToldAsUntitled()
{
    const TestProject project;
    const auto model = project.create();
    obstructDocument(project, u"3.rtf"_s);
    const TVLUnattendedMessageBoxes boxes;
    model->loadDocuments(model->findNode(3));
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(boxes.boxes().at(0).text.startsWith(u"Could not load document 'Untitled'\n---"));
}

void TstDocumentLoading::aTitleWithAPlaceholderIsToldAsItStands()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->setTitle(firstText(model.get()), u"100%1 %2 <b>"_s));
    obstructDocument(project, u"3.rtf"_s);
    const TVLUnattendedMessageBoxes boxes;
    model->loadDocuments(model->findNode(3));
    QVERIFY(boxes.boxes().at(0).text.startsWith(u"Could not load document '100%1 %2 <b>'\n---"));
}

void TstDocumentLoading::theBoxComesOnce()
{
    const TestProject project;
    const auto model = project.create();
    obstructDocument(project, u"3.rtf"_s);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(model->referenceText(firstText(model.get())));
    QCOMPARE(model->documentPlainText(firstText(model.get()), false), QString());
    QCOMPARE(model->wordCount(firstText(model.get()), true, true), 0);
    QCOMPARE(boxes.boxes().size(), 1);
}

void TstDocumentLoading::whileTheBoxIsShownTheDocumentsAreThere()
{
    const TestProject project;
    const auto model = project.create();
    obstructDocument(project, u"3.rtf"_s);
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "synopsis");
    const TVLUnattendedMessageBoxes boxes;
    int answers = 0;
    connect(&boxes, &TVLUnattendedMessageBoxes::answered, this, [&] {
        ++answers;
        QCOMPARE(model->data(firstText(model.get()), Qt::ToolTipRole).toString(),
                 TVL::toHtmlTooltipFormat(u"synopsis"_s));
        typeText(model.get(), firstText(model.get()), u"notes"_s, TVL::NotesText);
        QVERIFY(model->isModified());
    });
    model->loadDocuments(model->findNode(3));
    QCOMPARE(answers, 1);
    QVERIFY(!model->findNode(3)->mNotesDocument->isSaved());
    QCOMPARE(model->documentNoteAsPlainText(firstText(model.get())), u"notes"_s);
}

void TstDocumentLoading::aFileThatCouldNotBeReadIsNeverWritten()
{
    const TestProject project;
    const auto model = project.create();
    const QByteArray damaged = "no rich text at all";
    project.writeFile(u"Files/Docs/3.rtf"_s, damaged);
    const QStringList errors = readErrors(project);
    const TVLUnattendedMessageBoxes boxes;
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *text = model->referenceText(index);
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).text,
             QString(u"Could not load document 'Untitled'"_s + Separator + u'\n'
                     + errors.join(Separator + u'\n') + Separator));
    QVERIFY(text->isReadOnly());

    typeText(model.get(), index, u"an edit all the same"_s);
    QVERIFY(model->isModified());
    QVERIFY(model->save());
    QVERIFY(model->saveDocuments(model->findNode(3), true, nullptr));
    QVERIFY(model->overwriteText(index, text));
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(u"Files/Docs/3.rtf"_s), damaged);
    // It is never dirty, so nothing lets go of it either.
    QCOMPARE(model->findNode(3)->mTextDocument, text);
    QCOMPARE(boxes.boxes().size(), 1);
}

void TstDocumentLoading::theOtherDocumentsOfADamagedItemAreWritten()
{
    const TestProject project;
    const auto model = project.create();
    const QByteArray damaged = "no rich text at all";
    project.writeFile(u"Files/Docs/3.rtf"_s, damaged);
    const TVLUnattendedMessageBoxes boxes;
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"synopsis"_s));
    typeText(model.get(), index, u"notes"_s, TVL::NotesText);
    QVERIFY(model->save());
    QCOMPARE(project.readFile(u"Files/Docs/3_synopsis.txt"_s), QByteArray("synopsis"));
    QVERIFY(project.readFile(u"Files/Docs/3_notes.rtf"_s).contains("notes"));
    QCOMPARE(project.readFile(u"Files/Docs/3.rtf"_s), damaged);
    QCOMPARE(boxes.boxes().size(), 1);
}

TVL_TEST(TstDocumentLoading)
#include "tst_documentloading.moc"
