#include "LogTaker.h"
#include "ModelChecks.h"
#include "TVLProgress.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"
#include "TVLTextMatcher.h"
#include "TVLTextRange.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTextCursor>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Ids = QList<int>;
using Properties = QList<int>;

const QString IndexFile = u"Files/search.indexes"_s;
const QString HashFile = u"Files/Docs/docs.checksum"_s;
/** Where a new project's first item and the two behind it have their texts. */
const QString FirstFile = u"Files/Docs/3.rtf"_s;
const QString SecondFile = u"Files/Docs/4.rtf"_s;

TVLCollectionMetaData searchFor(const QString &text,
                                TVL::DocumentProperty property = TVL::AllProperties)
{
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = text;
    search.mSearchProperty = property;
    return search;
}

Ids found(const TVLProjectModel *model, const QString &text,
          TVL::DocumentProperty property = TVL::AllProperties)
{
    Ids ids = model->nodeIdentityList(model->collectionIndexes(searchFor(text, property)));
    std::sort(ids.begin(), ids.end());
    return ids;
}

/** The texts that a search would ask for, by item. */
QMap<int, Properties> unconfirmed(const TVLProjectModel *model)
{
    QMap<int, Properties> sorted;
    const auto stale = model->searchIndex()->notConfirmedIndexes();
    for (auto item = stale.cbegin(); item != stale.cend(); ++item) {
        Properties properties(item->cbegin(), item->cend());
        std::sort(properties.begin(), properties.end());
        sorted.insert(item.key(), properties);
    }
    return sorted;
}

/** A project on disk with the texts "harbour" in item 3, "lantern" in 4 and "meadow" in 5, closed
 * after all of it was searched. */
void makeProject(const TestProject &project)
{
    const auto model = project.create();
    typeTextForGood(model.get(), firstText(model.get()), u"harbour"_s);
    const QStringList texts = {u"lantern"_s, u"meadow"_s};
    for (const QString &text : texts) {
        const QModelIndex item = addItem(model.get(), model->draftFolder(), TVL::Text);
        typeTextForGood(model.get(), item, text);
    }
    QVERIFY(model->save(true));
    QCOMPARE(found(model.get(), u"e"_s, TVL::TextProperty), (Ids{4, 5}));
    model->prepareToDestroy();
}

void replaceInFile(const TestProject &project, const QString &file, const QByteArray &from,
                   const QByteArray &to)
{
    QByteArray content = project.readFile(file);
    QVERIFY(content.contains(from));
    project.writeFile(file, content.replace(from, to));
}

TVLTextCommentLink comment(const QString &text)
{
    return TVLTextCommentLink(QUuid::createUuid().toString(QUuid::WithoutBraces),
                              "{\\rtf1 " + text.toLatin1() + "}");
}

QString loadWarning()
{
    return u"Search Index was not fully loaded. Your first project search might be slow.This "
           u"might be caused by non-standard characters within the document contents. You might "
           u"also try \"Tools > Save and Rebuild Search Indexes\" to fix the problem."_s;
}

} // namespace

/** Searches of a project: what the model tells the search index, and what it gets back. */
class TstModelSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRecordOfAnIdIsHandedOut();
    // Edits
    void itemsAreFoundByEachProperty_data();
    void itemsAreFoundByEachProperty();
    void aTextBeingTypedIsFound();
    void aTypedTextMakesOnlyItsOwnRowsStale();
    void savingConfirmsWhatWasWritten();
    void aTextThatCouldNotBeWrittenStaysStale();
    void newItemsAreFound_data();
    void newItemsAreFound();
    void removedItemsAreNotFoundAlthoughTheirTextsStay();
    void aNewItemIsNotFoundByTheTextsOfOneWhoseIdItHas();
    void anOverwrittenItemIsFoundByItsNewTexts();
    void labelsThatAreGoneAreNotFound();
    void labelsAndStatusItemsTakenOverAreFound();
    void commentsGoWithTheWordsTheyStandAt();
    void systemFoldersAreNeverFound();

    // Memory
    void aSearchLeavesNoDocumentsInMemory();
    void aSearchLeavesHeldDocumentsAlone();

    // Between sessions
    void withoutAFileTheFirstSearchAsksForAllTexts();
    void nothingIsReadAgainAfterASearchAndASave();
    void aTextChangedOutsideIsFoundByTheNextSearch();
    void aTextRemovedOutsideIsNotFound();
    void anItemThatIsGoneDoesNoHarmInTheFile();
    void itemsKnowFromTheFileWhetherTheyHaveTexts();
    void aDamagedFileWarnsAndOpeningGoesOn_data();
    void aDamagedFileWarnsAndOpeningGoesOn();
    void damagedHashesOnlyMakeTheNextSearchSlower();
    void textsAreWrittenBeforeTheirHashes();
    void hashesAreNotWrittenWhenTextsCouldNotBe();
    void hashesOfRemovedItemsAreForgotten();
    void savingWritesWhatChanged();
    void aProjectThatWasNeverSavedHasNothingToWrite();
    void aMobileProjectLeavesTheFilesOfItsDesktopProjectAlone();

    // Rebuilding
    void rebuildingRepairsFilesAndRows();
    void rebuildingTwiceIsAsGoodAsOnce();
    void rebuildingShowsProgress();
    void rebuildingShowsWhatStandsInForTheDialog();
    void unreadableTextsDoNotStopARebuild();

    void matchingIsOpenToAll();
};

void TstModelSearch::theRecordOfAnIdIsHandedOut()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    const TVLSearchedProject *searched = model.get();
    QCOMPARE(searched->searchedNode(4), model->findNode(4));
    QCOMPARE(searched->searchedNode(model->index(4)), model->findNode(4));
    // The root is nobody's record, whatever leads to it elsewhere.
    QVERIFY(!searched->searchedNode(-1));
    QVERIFY(!searched->searchedNode(4711));
    QVERIFY(!searched->searchedNode(model->rootIndex()));
    QVERIFY(!searched->searchedNode(QModelIndex()));
}

// --- Edits

void TstModelSearch::itemsAreFoundByEachProperty_data()
{
    using Edit = std::function<void(TVLProjectModel *, const QModelIndex &)>;
    QTest::addColumn<int>("property");
    QTest::addColumn<Edit>("edit");

    const auto row = [](const char *name, TVL::DocumentProperty property, const Edit &edit) {
        QTest::newRow(name) << int(property) << edit;
    };
    row("title", TVL::TitleProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        QVERIFY(model->setTitle(item, u"needle"_s));
    });
    row("text", TVL::TextProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        typeText(model, item, u"needle"_s);
    });
    row("notes", TVL::NotesProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        typeText(model, item, u"needle"_s, TVL::NotesText);
    });
    row("synopsis", TVL::SynopsisProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        QVERIFY(model->setSynopsis(item, u"needle"_s));
    });
    row("keywords", TVL::KeywordsProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        QVERIFY(model->setKeywords(item, {u"a needle"_s}));
    });
    row("label", TVL::LabelProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        model->setLabels({{-1, u"No Label"_s, QColor()}, {7, u"Needle"_s, QColor(Qt::red)}});
        QVERIFY(model->setLabelIdentity(item, 7));
    });
    row("status", TVL::StatusProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        model->setStatusItems({{-1, u"No Status"_s}, {7, u"Needle"_s}});
        QVERIFY(model->setStatusIdentity(item, 7));
    });
    row("custom meta-data", TVL::CustomMetaDataProperty,
        [](TVLProjectModel *model, const QModelIndex &item) {
            QVERIFY(model->setCustomMetaData(item, u"pov"_s, u"needle"_s));
            QVERIFY(model->setCustomMetaData(item, u"place"_s, u"hay"_s));
            QVERIFY(found(model, u"needle hay"_s) != found(model, u"hay needle"_s));
        });
    row("comments", TVL::CommentsProperty, [](TVLProjectModel *model, const QModelIndex &item) {
        typeText(model, item, u"some words"_s);
        QVERIFY(model->setInspectorNote(item, {0, 4}, comment(u"needle"_s)));
    });
}

void TstModelSearch::itemsAreFoundByEachProperty()
{
    using Edit = std::function<void(TVLProjectModel *, const QModelIndex &)>;
    QFETCH(int, property);
    QFETCH(Edit, edit);
    const TestProject project;
    makeProject(project);
    auto model = project.open();
    {
        QCOMPARE(found(model.get(), u"needle"_s), Ids());
        edit(model.get(), model->index(4));
        QCOMPARE(found(model.get(), u"needle"_s), Ids{4});
        QCOMPARE(found(model.get(), u"needle"_s, TVL::DocumentProperty(property)), Ids{4});
        for (int other = TVL::TitleProperty; other <= TVL::CommentsProperty; ++other) {
            if (other != property)
                QCOMPARE(found(model.get(), u"needle"_s, TVL::DocumentProperty(other)), Ids());
        }
    }
    // It is the same in the next session.
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(found(model.get(), u"needle"_s, TVL::DocumentProperty(property)), Ids{4});
}

void TstModelSearch::aTextBeingTypedIsFound()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    const QByteArray file = project.readFile(SecondFile);
    typeText(model.get(), model->index(4), u"unsaved "_s);
    QCOMPARE(found(model.get(), u"unsaved lantern"_s), Ids{4});
    typeText(model.get(), model->index(4), u"still "_s);
    QCOMPARE(found(model.get(), u"still unsaved lantern"_s), Ids{4});
    QCOMPARE(project.readFile(SecondFile), file);
}

void TstModelSearch::aTypedTextMakesOnlyItsOwnRowsStale()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(found(model.get(), u"nothing"_s).isEmpty());
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    typeText(model.get(), model->index(4), u"x"_s);
    QCOMPARE(unconfirmed(model.get()),
             (QMap<int, Properties>{{4, {TVL::TextProperty, TVL::CommentsProperty}}}));
    typeText(model.get(), model->index(5), u"x"_s, TVL::NotesText);
    QCOMPARE(unconfirmed(model.get()).value(5), Properties{TVL::NotesProperty});
    QVERIFY(model->setSynopsis(model->index(5), u"x"_s));
    QCOMPARE(unconfirmed(model.get()).value(5),
             (Properties{TVL::NotesProperty, TVL::SynopsisProperty}));
    QVERIFY(!unconfirmed(model.get()).contains(3));
    QVERIFY(found(model.get(), u"nothing"_s).isEmpty());
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
}

void TstModelSearch::savingConfirmsWhatWasWritten()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(found(model.get(), u"nothing"_s).isEmpty());
    typeText(model.get(), model->index(4), u"x "_s);
    QVERIFY(!model->checksums()->checksumsMatch(5, TVL::NotesText)
            || !QFile::exists(project.path(u"Files/Docs/5_notes.rtf"_s)));
    QVERIFY(model->save());
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    QVERIFY(model->checksums()->checksumsMatch(4, TVL::MainText));
    QCOMPARE(model->checksums()->loadedChecksum(4, TVL::MainText),
             model->checksums()->currentHddChecksum(4, TVL::MainText));
    QCOMPARE(found(model.get(), u"x lantern"_s), Ids{4});
}

void TstModelSearch::aTextThatCouldNotBeWrittenStaysStale()
{
    const TestProject project;
    makeProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(found(model.get(), u"nothing"_s).isEmpty());
    typeText(model.get(), model->index(4), u"x "_s);
    // A folder is where the file would be.
    QVERIFY(QFile::remove(project.path(SecondFile)));
    QVERIFY(QDir().mkpath(project.path(SecondFile + u"/in the way"_s)));
    QVERIFY(!model->save());
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(unconfirmed(model.get()).contains(4));
    QCOMPARE(found(model.get(), u"x lantern"_s), Ids{4});
}

void TstModelSearch::newItemsAreFound_data()
{
    using Make = std::function<void(TVLProjectModel *)>;
    QTest::addColumn<Make>("make");
    const auto row = [](const char *name, const Make &make) { QTest::newRow(name) << make; };

    row("inserted", [](TVLProjectModel *model) {
        const QModelIndex item = addItem(model, model->draftFolder(), TVL::Text);
        typeText(model, item, u"lantern"_s);
    });
    row("duplicated", [](TVLProjectModel *model) {
        QCOMPARE(model->duplicate({model->index(4)}, true).size(), 1);
    });
    row("duplicated with unsaved words", [](TVLProjectModel *model) {
        typeText(model, model->index(5), u"lantern "_s);
        QVERIFY(model->save());
        QCOMPARE(model->duplicate({model->index(5)}, true).size(), 1);
    });
    row("by title", [](TVLProjectModel *model) {
        addItem(model, model->researchFolder(), TVL::Text, u"Lantern"_s);
    });
    row("by address", [](TVLProjectModel *model) {
        QVERIFY(
            model->createUrlNode(QUrl(u"https://lantern.example/x"_s), 0, model->researchFolder()));
    });
}

void TstModelSearch::newItemsAreFound()
{
    using Make = std::function<void(TVLProjectModel *)>;
    QFETCH(Make, make);
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    make(model.get());
    const Ids ids = found(model.get(), u"lantern"_s);
    QVERIFY(ids.contains(6));
    QVERIFY(ids.contains(4));
    for (const int id : ids)
        QVERIFY(model->index(id).isValid());
}

void TstModelSearch::removedItemsAreNotFoundAlthoughTheirTextsStay()
{
    const TestProject project;
    makeProject(project);
    auto model = project.open();
    QVERIFY(model->removeIndex(model->index(4)));
    QCOMPARE(found(model.get(), u"lantern"_s), Ids());
    QCOMPARE(model->searchIndex()->indexes(searchFor(u"lantern"_s)), Ids{4});
    // The file has them too, and they do no harm there.
    model->prepareToDestroy();
    QVERIFY(project.readFile(IndexFile).contains("lantern"));
    model = project.open();
    QCOMPARE(found(model.get(), u"lantern"_s), Ids());
    QCOMPARE(model->searchIndex()->indexes(searchFor(u"lantern"_s)), Ids());
}

void TstModelSearch::aNewItemIsNotFoundByTheTextsOfOneWhoseIdItHas()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(model->removeIndex(model->index(5)));
    const QModelIndex item = addItem(model.get(), model->draftFolder(), TVL::Text);
    QCOMPARE(model->nodeIdentity(item), 5);
    QCOMPARE(found(model.get(), u"meadow"_s), Ids());
    typeText(model.get(), item, u"orchard"_s);
    QCOMPARE(found(model.get(), u"orchard"_s), Ids{5});
}

void TstModelSearch::anOverwrittenItemIsFoundByItsNewTexts()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(found(model.get(), u"nothing"_s).isEmpty());
    QVERIFY(model->clone(model->index(4), model->index(5), true, false, true, true));
    QCOMPARE(found(model.get(), u"lantern"_s), (Ids{4, 5}));
    QCOMPARE(found(model.get(), u"meadow"_s), Ids());
}

void TstModelSearch::labelsAndStatusItemsTakenOverAreFound()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    TVLProjectNodeProperties record = model->nodeProperties(model->index(4));
    record.mLabelId = 1;
    record.mStatusId = 5;
    QVERIFY(model->applyMobileAttributes(model->index(4), record));
    QCOMPARE(found(model.get(), u"Chapter"_s, TVL::LabelProperty), Ids{4});
    QCOMPARE(found(model.get(), u"Done"_s, TVL::StatusProperty), Ids{4});
    record.mLabelId = -1;
    record.mStatusId = -1;
    QVERIFY(model->applyMobileAttributes(model->index(4), record));
    QCOMPARE(found(model.get(), u"Chapter"_s, TVL::LabelProperty), Ids());
    QCOMPARE(found(model.get(), u"Done"_s, TVL::StatusProperty), Ids());
}

void TstModelSearch::labelsThatAreGoneAreNotFound()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    const QList<TVLLabel> labels = {{-1, u"No Label"_s, QColor()},
                                    {7, u"Scene"_s, QColor(Qt::red)}};
    model->setLabels(labels);
    QVERIFY(model->setLabelIdentity(model->index(4), 7));
    QCOMPARE(found(model.get(), u"scene"_s), Ids{4});
    model->setLabels({labels.constFirst()});
    QCOMPARE(model->labelIdentity(model->index(4)), -1);
    QCOMPARE(found(model.get(), u"scene"_s), Ids());
    // A label of that number is another one.
    model->setLabels(labels);
    QCOMPARE(found(model.get(), u"scene"_s), Ids());
    QVERIFY(found(model.get(), u"No Label"_s).contains(4));
}

void TstModelSearch::commentsGoWithTheWordsTheyStandAt()
{
    const TestProject project;
    makeProject(project);
    auto model = project.open();
    const QModelIndex item = model->index(4);
    QVERIFY(model->setInspectorNote(item, {0, 7}, comment(u"needle"_s)));
    QVERIFY(model->save());
    QCOMPARE(found(model.get(), u"needle"_s), Ids{4});
    QCOMPARE(model->checksums()->loadedChecksum(4, TVL::CommentsFile),
             model->checksums()->currentHddChecksum(4, TVL::CommentsFile));
    TVLTextDocument *text = model->referenceText(item);
    QTextCursor all(text);
    all.select(QTextCursor::Document);
    all.removeSelectedText();
    model->dereferenceItem(text);
    QCOMPARE(found(model.get(), u"needle"_s), Ids());
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(found(model.get(), u"needle"_s), Ids());
}

void TstModelSearch::systemFoldersAreNeverFound()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    for (const QModelIndex &folder :
         {model->draftFolder(), model->researchFolder(), model->trashFolder()}) {
        QVERIFY(model->setTitle(folder, u"needle"_s));
        QVERIFY(found(model.get(), u"needle"_s).isEmpty());
    }
}

// --- Memory

void TstModelSearch::aSearchLeavesNoDocumentsInMemory()
{
    const TestProject project;
    makeProject(project);
    QVERIFY(QFile::remove(project.path(IndexFile)));
    const auto model = project.open();
    addItem(model.get(), model->researchFolder(), TVL::Image);
    TVLProjectModelTestAccess::setSaved(model.get());
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    const QModelIndexList items = recursiveWalk(model.get(), QModelIndex());
    for (const QModelIndex &item : items)
        QVERIFY(!model->referenced(item));
    QCOMPARE(model->findChildren<TVLTextDocument *>().size(), 0);
    // What a look at the texts tells is known all the same.
    QVERIFY(model->hasText(model->index(4)));
    QVERIFY(!model->isModified());
}

void TstModelSearch::aSearchLeavesHeldDocumentsAlone()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    TVLTextDocument *held = model->referenceText(model->index(4));
    typeText(model.get(), model->index(5), u"x "_s);
    const TVLTextDocument *edited = model->projectNode(model->index(5))->mTextDocument;
    QCOMPARE(found(model.get(), u"meadow"_s), Ids{5});
    QCOMPARE(model->projectNode(model->index(4))->mTextDocument, held);
    QCOMPARE(held->referenceCount(), 1);
    QCOMPARE(model->projectNode(model->index(5))->mTextDocument, edited);
    model->dereferenceItem(held);
    model->rebuildSearchIndexes(false, nullptr);
    QCOMPARE(model->projectNode(model->index(5))->mTextDocument, edited);
    QVERIFY(edited->isUndoAvailable());
}

// --- Between sessions

void TstModelSearch::withoutAFileTheFirstSearchAsksForAllTexts()
{
    const TestProject project;
    makeProject(project);
    QVERIFY(QFile::remove(project.path(IndexFile)));
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    const Properties all = {TVL::TextProperty, TVL::NotesProperty, TVL::SynopsisProperty,
                            TVL::CustomMetaDataProperty, TVL::CommentsProperty};
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>{{3, all}, {4, all}, {5, all}}));
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    QVERIFY(boxes.boxes().isEmpty());
}

void TstModelSearch::nothingIsReadAgainAfterASearchAndASave()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    QVERIFY(!model->searchIndex()->isModified());
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
}

void TstModelSearch::aTextChangedOutsideIsFoundByTheNextSearch()
{
    const TestProject project;
    makeProject(project);
    replaceInFile(project, SecondFile, "lantern", "lighthouse");
    const auto model = project.open();
    const QMap<int, Properties> stale = unconfirmed(model.get());
    QCOMPARE(stale.keys(), Ids{4});
    // Custom meta-data is relied on when all files of the item are.
    QCOMPARE(stale.value(4), (Properties{TVL::TextProperty, TVL::CustomMetaDataProperty}));
    QCOMPARE(found(model.get(), u"lighthouse"_s), Ids{4});
    QCOMPARE(found(model.get(), u"lantern"_s), Ids());
}

void TstModelSearch::aTextRemovedOutsideIsNotFound()
{
    const TestProject project;
    makeProject(project);
    QVERIFY(QFile::remove(project.path(SecondFile)));
    const auto model = project.open();
    QCOMPARE(found(model.get(), u"lantern"_s), Ids());
    QCOMPARE(found(model.get(), u"harbour"_s), Ids{3});
}

void TstModelSearch::anItemThatIsGoneDoesNoHarmInTheFile()
{
    const TestProject project;
    makeProject(project);
    replaceInFile(project, IndexFile, "<Document ID=\"4\">",
                  "<Document ID=\"999\"><Text>lantern</Text></Document>"
                  "<Document ID=\"-2\"/><Document/><Document ID=\"4\">");
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    QVERIFY(boxes.boxes().isEmpty());
}

void TstModelSearch::itemsKnowFromTheFileWhetherTheyHaveTexts()
{
    const TestProject project;
    makeProject(project);
    auto model = project.open();
    QVERIFY(model->setSynopsis(model->index(5), u"card"_s));
    typeText(model.get(), model->index(3), u"note"_s, TVL::NotesText);
    addItem(model.get(), model->draftFolder(), TVL::Text);
    model->prepareToDestroy();
    model = project.open();
    const auto flags = [&model](int id) {
        const TVLProjectNode *node = model->projectNode(model->index(id));
        return QList<bool>{node->mHasText, node->mHasSynopsis, node->mHasDocumentNote};
    };
    QCOMPARE(flags(3), (QList<bool>{true, false, true}));
    QCOMPARE(flags(4), (QList<bool>{true, false, false}));
    QCOMPARE(flags(5), (QList<bool>{true, true, false}));
    QCOMPARE(flags(6), (QList<bool>{false, false, false}));
    QVERIFY(!model->referenced(model->index(3)));
}

void TstModelSearch::aDamagedFileWarnsAndOpeningGoesOn_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no XML") << QByteArray("lantern");
    QTest::newRow("cut off") << QByteArray(
        "<?xml version=\"1.0\"?><SearchIndexes Version=\"1.0\"><Documents><Document ID=\"4\">"
        "<Text>wrong");
    QTest::newRow("another root") << QByteArray("<Other><Documents/></Other>");
    QTest::newRow("a character that XML doesn't have") << QByteArray(
        "<SearchIndexes Version=\"1.0\"><Documents><Document ID=\"4\"><Text>\x01</Text>"
        "</Document></Documents></SearchIndexes>");
}

void TstModelSearch::aDamagedFileWarnsAndOpeningGoesOn()
{
    QFETCH(QByteArray, content);
    const TestProject project;
    makeProject(project);
    project.writeFile(IndexFile, content);
    TVLUnattendedMessageBoxes boxes;
    auto model = project.open();
    QVERIFY(model);
    const auto shown = boxes.takeBoxes();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.constFirst().title, u"Loading Search Index"_s);
    QCOMPARE(shown.constFirst().text, loadWarning());
    QCOMPARE(shown.constFirst().icon, QMessageBox::Warning);
    QCOMPARE(project.readFile(IndexFile), content);
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    model->rebuildSearchIndexes(false, nullptr);
    model->prepareToDestroy();
    model = project.open();
    QVERIFY(boxes.boxes().isEmpty());
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
}

void TstModelSearch::damagedHashesOnlyMakeTheNextSearchSlower()
{
    const TestProject project;
    makeProject(project);
    project.writeFile(HashFile, "=1\nno line\n4.rtf=zz\n\xff\xfe=\x00");
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(boxes.boxes().isEmpty());
    QCOMPARE(unconfirmed(model.get()).keys(), (Ids{3, 4, 5}));
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
}

void TstModelSearch::textsAreWrittenBeforeTheirHashes()
{
    // Had the process ended between the two, the new hash would vouch for the old text.
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    typeText(model.get(), model->index(4), u"new "_s);
    QVERIFY(model->save());
    model->saveSearchIndex(false);
    QVERIFY(project.readFile(IndexFile).contains("new lantern"));
    const auto other = project.open();
    QVERIFY(unconfirmed(other.get()).value(4).contains(TVL::TextProperty));
}

void TstModelSearch::hashesAreNotWrittenWhenTextsCouldNotBe()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    const QByteArray hashes = project.readFile(HashFile);
    typeText(model.get(), model->index(4), u"new "_s);
    QVERIFY(QFile::rename(project.path(IndexFile), project.path(u"kept"_s)));
    QVERIFY(QDir().mkpath(project.path(IndexFile)));
    QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
    model->saveAll(false);
    QCOMPARE(project.readFile(HashFile), hashes);
    QVERIFY(model->searchIndex()->isModified());
    QVERIFY(QDir().rmdir(project.path(IndexFile)));
    QVERIFY(QFile::rename(project.path(u"kept"_s), project.path(IndexFile)));
    QCOMPARE(found(project.open().get(), u"new"_s), Ids{4});
    model->saveAll(false);
    QVERIFY(project.readFile(HashFile) != hashes);
}

void TstModelSearch::hashesOfRemovedItemsAreForgotten()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(project.readFile(HashFile).contains("4.rtf="));
    QVERIFY(model->removeIndex(model->index(4)));
    model->prepareToDestroy();
    QVERIFY(project.readFile(HashFile).contains("3.rtf="));
    QVERIFY(!project.readFile(HashFile).contains("4.rtf="));
}

void TstModelSearch::savingWritesWhatChanged()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(QFile::remove(project.path(IndexFile)));
    QVERIFY(QFile::remove(project.path(HashFile)));
    model->saveSearchIndex(false);
    model->saveChecksums(false);
    QVERIFY(!QFile::exists(project.path(IndexFile)));
    QVERIFY(!QFile::exists(project.path(HashFile)));
    // A save of the binder isn't one of these.
    QVERIFY(model->save(true));
    QVERIFY(!QFile::exists(project.path(IndexFile)));
    model->saveAll(true);
    QVERIFY(project.readFile(IndexFile).contains("lantern"));
    QVERIFY(project.readFile(HashFile).startsWith("3.rtf="));
}

void TstModelSearch::aProjectThatWasNeverSavedHasNothingToWrite()
{
    const TestProject project;
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(project.path()));
    QVERIFY(model->searchIndex()->isModified());
    const LogTaker taker;
    model->prepareToDestroy();
    QCOMPARE(taker.lines(), QStringList());
    QVERIFY(!QFile::exists(project.path()));
}

void TstModelSearch::aMobileProjectLeavesTheFilesOfItsDesktopProjectAlone()
{
    const TestProject project;
    makeProject(project);
    project.writeFile(IndexFile, "damaged");
    const QMap<QString, QByteArray> files = project.files();
    const TVLUnattendedMessageBoxes boxes;
    const TestModel mobile(
        new TVLProjectModel(project.path(), nullptr, true, TVL::FormatVersion18));
    mobile->initBlankProject();
    QStringList errors;
    mobile->initProject(&errors);
    mobile->saveSearchIndex(true);
    mobile->saveChecksums(true);
    QCOMPARE(project.files(), files);
    QVERIFY(boxes.boxes().isEmpty());
}

// --- Rebuilding

void TstModelSearch::rebuildingRepairsFilesAndRows()
{
    const TestProject project;
    makeProject(project);
    QVERIFY(QFile::remove(project.path(IndexFile)));
    project.writeFile(HashFile, "4.rtf=00\n77.rtf=00\n");
    auto model = project.open();
    // Rows may be wrong without anybody knowing.
    model->searchIndex()->updatePropertyNode(model->projectNode(model->index(3)), TVL::TextProperty,
                                             u"lantern"_s, true);
    QCOMPARE(found(model.get(), u"lantern"_s), (Ids{3, 4}));
    model->rebuildSearchIndexes(false, nullptr);
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    model.reset();
    QVERIFY(!project.readFile(HashFile).contains("77.rtf"));
    model = project.open();
    QCOMPARE(unconfirmed(model.get()), (QMap<int, Properties>()));
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
}

void TstModelSearch::rebuildingTwiceIsAsGoodAsOnce()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QVERIFY(model->setKeywords(model->index(4), {u"light"_s, u"night"_s}));
    model->rebuildSearchIndexes(false, nullptr);
    const QByteArray once = project.readFile(IndexFile);
    const LogTaker taker;
    model->rebuildSearchIndexes(false, nullptr);
    QCOMPARE(taker.lines(), QStringList());
    QCOMPARE(project.readFile(IndexFile), once);
    QCOMPARE(found(model.get(), u"night"_s), Ids{4});
    QVERIFY(model->setKeywords(model->index(4), {}));
    QCOMPARE(found(model.get(), u"night"_s), Ids());
}

void TstModelSearch::rebuildingShowsProgress()
{
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    // Items load while the dialog is shown, and may then be looked at.
    QString label;
    int maximum = 0;
    bool isModal = false;
    int buttons = -1;
    const auto look = [&] {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (const QWidget *widget : widgets) {
            const auto *dialog = qobject_cast<const QProgressDialog *>(widget);
            if (!dialog || !dialog->isVisible())
                continue;
            label = dialog->labelText();
            maximum = dialog->maximum();
            isModal = dialog->isModal();
            buttons = int(dialog->findChildren<QPushButton *>().size());
        }
    };
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, look);
    timer.start(0);
    model->rebuildSearchIndexes(true, nullptr);
    QCOMPARE(label, u"Rebuilding search indexes. Please wait."_s);
    QCOMPARE(maximum, 6);
    QVERIFY(isModal);
    QCOMPARE(buttons, 0);
}

void TstModelSearch::rebuildingShowsWhatStandsInForTheDialog()
{
    /** Writes down what it is told. */
    class Log : public TVLProgress
    {
    public:
        explicit Log(QStringList *lines)
            : mLines(lines)
        {
        }
        void begin(const QString &text, int total) override
        {
            mLines->append(u"%1 (%2)"_s.arg(text).arg(total));
        }
        void advance(int steps) override { mLines->append(QString::number(steps)); }

    private:
        QStringList *mLines;
    };
    const TestProject project;
    makeProject(project);
    const auto model = project.open();
    QStringList lines;
    TVLProgress::setMaker([&lines] { return std::make_unique<Log>(&lines); });
    model->rebuildSearchIndexes(false, nullptr);
    QCOMPARE(lines, QStringList());
    model->rebuildSearchIndexes(true, nullptr);
    TVLProgress::setMaker({});
    QCOMPARE(lines.takeFirst(), u"Rebuilding search indexes. Please wait. (6)"_s);
    QCOMPARE(lines, QStringList(6, u"1"_s));
}

void TstModelSearch::unreadableTextsDoNotStopARebuild()
{
    const TestProject project;
    makeProject(project);
    project.writeFile(FirstFile, "this is no RTF");
    const QByteArray bytes = project.readFile(FirstFile);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    model->rebuildSearchIndexes(false, nullptr);
    const auto shown = boxes.takeBoxes();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.constFirst().title, u"Project Document Loader"_s);
    QCOMPARE(found(model.get(), u"lantern"_s), Ids{4});
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(FirstFile), bytes);
}

void TstModelSearch::matchingIsOpenToAll()
{
    QVERIFY(TVLProjectModel::matchQString(u"cart art"_s, TVLTextMatcher::WholeWord, {u"art"_s}));
    QVERIFY(!TVLProjectModel::matchQString(u"cart"_s, TVLTextMatcher::WholeWord, {u"art"_s}));
    QVERIFY(TVLProjectModel::matchQString(QString(), TVLTextMatcher::EveryWord, {}));
    QVERIFY(!TVLProjectModel::matchQString(QString(), 0, {}));
}

TVL_TEST(TstModelSearch)
#include "tst_modelsearch.moc"
