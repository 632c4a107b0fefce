#include "SqlTrace.h"
#include "TVLCollectionMetaData.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QSqlError>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Request = TestSearchedProject::Request;

const QString UpdateText =
    u"UPDATE DocumentSearchProperties SET propertyValue = :v, confirmed = :c WHERE identity = :id AND type = :t"_s;
const QString UpdateConfirmed =
    u"UPDATE DocumentSearchProperties SET confirmed = :c WHERE identity = :id AND type = :t"_s;
const QString SelectUnconfirmed =
    u"SELECT identity, type FROM DocumentSearchProperties WHERE type != :t AND confirmed = :c"_s;

const QList<TVL::DocumentProperty> Rebuilt = {TVL::SynopsisProperty, TVL::TextProperty,
                                              TVL::NotesProperty, TVL::CustomMetaDataProperty,
                                              TVL::CommentsProperty};

QStringList validatedRows(const TVLSearchIndex &index, int id)
{
    return rowsOf(index,
                  u"SELECT type, propertyValue, confirmed FROM DocumentSearchProperties "
                  "WHERE identity = %1 ORDER BY type"_s.arg(id));
}

} // namespace

class TstSearchValidation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void newItemsAreUnconfirmedButForTheirTitles();
    void titlesAreNeverUnconfirmed();
    void allUnconfirmedTextsAreAskedForInOrder();
    void onlyUnconfirmedTextsAreAskedFor();
    void whatIsConfirmedIsNotAskedForAgain();
    void itemsThatAreNoMoreAreNotAskedFor();
    void aStoreWithoutProjectAsksNobody();
    void aSearchAsksFirst();
    void aSearchWithoutWordsAsksForNothing();

    void checksumsAreNotUsedUnlessAskedFor();
    void withADialogTextsAreConfirmedByTheirFiles_data();
    void withADialogTextsAreConfirmedByTheirFiles();
    void withADialogChangedTextsAreAskedFor();
    void withADialogTextsInMemoryAreAskedFor();
    void withADialogMetaDataIsAskedFor();
    void aMissingFolderStopsAnUpdateByChecksums();
    void theDialogIsLeftAlone();

    void everyPropertyHasItsSource_data();
    void everyPropertyHasItsSource();
    void nothingIsUpdatedWithoutPropertiesOrItem();
    void anUpdateHasNoHashRecorded();
    void aTextOfAFileHasItsHashRecorded();
    void aFileThatChangesWhileItIsReadHasNoHash();
    void commentsThatTheTextDoesNotKnowHaveNoHash();
    void aTextThatIsNoFilesLosesItsHash();
    void anItemThatGoesWhileItIsAskedForIsPassedOver();
    void anItemThatIsNewHasNoHashes();
    void anUpdateMarksTheStoreAsModified();
    void theStatementsOfAnUpdate();

    void theTransactionStaysOpen();
    void anotherConnectionIsCommitted();
    void labelsAreReplacedInTheOpenTransaction();
    void failedReplacementsAreTakenBackInTheOpenTransaction();
    void keywordsWorkOnInTheOpenTransaction();
    void theFileIsSavedAndLoadedInTheOpenTransaction();

private:
    void addItems(int count);
    void openTransaction();

    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstSearchValidation::init()
{
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
}

void TstSearchValidation::cleanup()
{
    mIndex.reset();
    mProject.reset();
}

/** Items with every text of their own, in falling order of their ids. */
void TstSearchValidation::addItems(int count)
{
    for (int id = count; id-- > 0;) {
        TVLProjectNode *node = mProject->addNode(id, u"Title %1"_s.arg(id));
        for (const TVL::DocumentProperty property : Rebuilt)
            mProject->setText(id, property, u"%1 of %2"_s.arg(int(property)).arg(id));
        QVERIFY(mIndex->addProjectNode(node));
    }
}

/** As any search of an item that isn't confirmed does. */
void TstSearchValidation::openTransaction()
{
    addItems(1);
    mIndex->validateIndexes(nullptr);
    QVERIFY(!mIndex->transaction());
}

// --- What is asked for

void TstSearchValidation::newItemsAreUnconfirmedButForTheirTitles()
{
    addItems(2);
    const auto unconfirmed = mIndex->notConfirmedIndexes();
    QCOMPARE(unconfirmed.keys(), (QList<int>{0, 1}));
    for (QList<TVL::DocumentProperty> properties : unconfirmed) {
        std::sort(properties.begin(), properties.end());
        QVERIFY(properties
                == (QList<TVL::DocumentProperty>{TVL::TextProperty, TVL::NotesProperty,
                                                 TVL::SynopsisProperty, TVL::CustomMetaDataProperty,
                                                 TVL::CommentsProperty}));
    }
}

void TstSearchValidation::titlesAreNeverUnconfirmed()
{
    addItems(1);
    execute(*mIndex, u"UPDATE DocumentSearchProperties SET confirmed = 1"_s);
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
    mIndex->invalidateProperty(0, TVL::TitleProperty);
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
    QCOMPARE(trace.take(), QStringList{SelectUnconfirmed});
}

void TstSearchValidation::allUnconfirmedTextsAreAskedForInOrder()
{
    addItems(3);
    QList<Request> expected;
    for (int id = 0; id < 3; ++id) {
        for (const int property : TVLSearchIndex::stringDocumentProperties()) {
            if (property != TVL::TitleProperty)
                expected.append({id, property});
        }
    }
    mIndex->validateIndexes(nullptr);
    QCOMPARE(mProject->takeRequests(), expected);
    for (int id = 0; id < 3; ++id)
        QCOMPARE(validatedRows(*mIndex, id),
                 QStringList({u"1|Title %1|1"_s.arg(id), u"2|2 of %1|1"_s.arg(id),
                              u"3|3 of %1|1"_s.arg(id), u"4|4 of %1|1"_s.arg(id),
                              u"8|8 of %1|1"_s.arg(id), u"9|9 of %1|1"_s.arg(id)}));
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
}

void TstSearchValidation::onlyUnconfirmedTextsAreAskedFor()
{
    addItems(3);
    mIndex->validateIndexes(nullptr);
    (void)mProject->takeRequests();
    mIndex->invalidateDocument(1, TVL::NotesText);
    mIndex->invalidateProperty(2, TVL::TextProperty);
    mIndex->invalidateProperty(0, TVL::TitleProperty);
    mProject->setText(1, TVL::NotesProperty, u"changed"_s);
    mProject->setText(1, TVL::TextProperty, u"changed"_s);
    mIndex->validateIndexes(nullptr);
    QCOMPARE(mProject->takeRequests(),
             (QList<Request>{{1, TVL::NotesProperty}, {2, TVL::TextProperty}}));
    QVERIFY(validatedRows(*mIndex, 1).contains(u"3|changed|1"_s));
    QVERIFY(validatedRows(*mIndex, 1).contains(u"2|2 of 1|1"_s));
}

void TstSearchValidation::whatIsConfirmedIsNotAskedForAgain()
{
    addItems(3);
    mIndex->validateIndexes(nullptr);
    (void)mProject->takeRequests();
    mIndex->validateIndexes(nullptr);
    QVERIFY(mProject->takeRequests().isEmpty());
}

void TstSearchValidation::itemsThatAreNoMoreAreNotAskedFor()
{
    addItems(2);
    QVERIFY(mIndex->removeDocument(0));
    mProject->removeNode(0);
    mIndex->validateIndexes(nullptr);
    for (const Request &request : mProject->takeRequests())
        QCOMPARE(request.first, 1);
    QCOMPARE(mIndex->notConfirmedIndexes().keys(), QList<int>{0});
    // By its title it is still found; who asks has to know.
    QCOMPARE(mIndex->indexes(searchFor(u"Title 0"_s)), QList<int>{0});
}

void TstSearchValidation::aStoreWithoutProjectAsksNobody()
{
    addItems(1);
    TVLSearchIndex index;
    QVERIFY(index.addProjectNode(mProject->nodes().constFirst()));
    index.validateIndexes(nullptr);
    index.updateIndexProperties(mProject->searchedIndex(0), Rebuilt, false);
    index.updateIndexProperties(mProject->searchedIndex(0), Rebuilt, true);
    QCOMPARE(index.notConfirmedIndexes().size(), 1);
    QVERIFY(mProject->takeRequests().isEmpty());
    QCOMPARE(index.indexes(searchFor(u"Title"_s)), QList<int>{0});
}

void TstSearchValidation::aSearchAsksFirst()
{
    addItems(2);
    QCOMPARE(mIndex->indexes(searchFor(u"9 of 1"_s)), QList<int>{1});
    QCOMPARE(mProject->takeRequests().size(), 10);
    mProject->setText(0, TVL::TextProperty, u"needle"_s);
    QVERIFY(mIndex->indexes(searchFor(u"needle"_s)).isEmpty());
    QVERIFY(mProject->takeRequests().isEmpty());
    mIndex->invalidateDocument(0, TVL::MainText);
    QCOMPARE(mIndex->indexes(searchFor(u"needle"_s)), QList<int>{0});
    QCOMPARE(mProject->takeRequests(), (QList<Request>{{0, TVL::TextProperty}}));
}

void TstSearchValidation::aSearchWithoutWordsAsksForNothing()
{
    addItems(1);
    SqlTrace trace(*mIndex);
    for (const int searchOperator : {1, 2, 3, 5, -1}) {
        TVLCollectionMetaData search = searchFor(u" \n"_s);
        search.mSearchOperator = TVL::SearchOperator(searchOperator);
        QVERIFY(mIndex->indexes(search).isEmpty());
    }
    QCOMPARE(trace.take(), QStringList());
    QVERIFY(mProject->takeRequests().isEmpty());
}

// --- Checksums

void TstSearchValidation::checksumsAreNotUsedUnlessAskedFor()
{
    addItems(1);
    for (const int type : {0, 1, 2, 4})
        mProject->writeDocument(0, TVL::DocumentType(type), "content");
    mProject->recordHashes();
    mIndex->validateIndexes(nullptr);
    QCOMPARE(mProject->takeRequests().size(), 5);
}

void TstSearchValidation::withADialogTextsAreConfirmedByTheirFiles_data()
{
    QTest::addColumn<bool>("hasFiles");
    QTest::newRow("with files") << true;
    QTest::newRow("without files and hashes") << false;
}

void TstSearchValidation::withADialogTextsAreConfirmedByTheirFiles()
{
    QFETCH(bool, hasFiles);
    addItems(1);
    for (const int type : {0, 1, 2, 4}) {
        if (hasFiles)
            mProject->writeDocument(0, TVL::DocumentType(type), "content");
    }
    mProject->recordHashes();
    QProgressDialog dialog;
    SqlTrace trace(*mIndex);
    mIndex->validateIndexes(&dialog);
    QCOMPARE(mProject->takeRequests(), (QList<Request>{{0, TVL::CustomMetaDataProperty}}));
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
    QCOMPARE(trace.take().count(UpdateConfirmed), 4);
    // What is stored stays, whatever the project has.
    QCOMPARE(validatedRows(*mIndex, 0),
             QStringList(
                 {u"1|Title 0|1"_s, u"2||1"_s, u"3||1"_s, u"4||1"_s, u"8|8 of 0|1"_s, u"9||1"_s}));
}

void TstSearchValidation::withADialogChangedTextsAreAskedFor()
{
    addItems(1);
    for (const int type : {0, 1, 2, 4})
        mProject->writeDocument(0, TVL::DocumentType(type), "content");
    mProject->recordHashes();
    mProject->writeDocument(0, TVL::CommentsFile, "changed");
    QVERIFY(QFile::remove(
        TVLProjectFolderFormat::docsNodeTypeFilePath(mProject->searchedPath(), 0, TVL::NotesText)));
    mIndex->updateIndexProperties(mProject->searchedIndex(0), Rebuilt, true);
    QCOMPARE(mProject->takeRequests(),
             (QList<Request>{{0, TVL::NotesProperty},
                             {0, TVL::CustomMetaDataProperty},
                             {0, TVL::CommentsProperty}}));
}

void TstSearchValidation::withADialogTextsInMemoryAreAskedFor()
{
    addItems(2);
    mProject->setReferenced(1);
    QProgressDialog dialog;
    mIndex->validateIndexes(&dialog);
    const QList<Request> requests = mProject->takeRequests();
    QCOMPARE(requests.size(), 6);
    QCOMPARE(requests.constFirst(), (Request{0, TVL::CustomMetaDataProperty}));
    QVERIFY(validatedRows(*mIndex, 1).contains(u"2|2 of 1|1"_s));
}

void TstSearchValidation::withADialogMetaDataIsAskedFor()
{
    addItems(1);
    mIndex->updateIndexProperties(
        mProject->searchedIndex(0),
        {TVL::CustomMetaDataProperty, TVL::TitleProperty, TVL::TextProperty}, true);
    QCOMPARE(mProject->takeRequests(),
             (QList<Request>{{0, TVL::CustomMetaDataProperty}, {0, TVL::TitleProperty}}));
}

void TstSearchValidation::aMissingFolderStopsAnUpdateByChecksums()
{
    addItems(1);
    const QString docs = TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath());
    QVERIFY(QDir(docs).removeRecursively());
    QFile inTheWay(docs);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QProgressDialog dialog;
    mIndex->validateIndexes(&dialog);
    QVERIFY(mProject->takeRequests().isEmpty());
    QCOMPARE(mIndex->notConfirmedIndexes().size(), 1);
    mIndex->validateIndexes(nullptr);
    QCOMPARE(mProject->takeRequests().size(), 5);
}

void TstSearchValidation::theDialogIsLeftAlone()
{
    addItems(3);
    QProgressDialog dialog(u"label"_s, QString(), 5, 10);
    dialog.setMinimumDuration(0);
    dialog.setValue(6);
    mIndex->validateIndexes(&dialog);
    QCOMPARE(dialog.value(), 6);
    QCOMPARE(dialog.minimum(), 5);
    QCOMPARE(dialog.maximum(), 10);
    QCOMPARE(dialog.labelText(), u"label"_s);
}

// --- Updating

void TstSearchValidation::everyPropertyHasItsSource_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<bool>("isText");
    for (const int property : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})
        QTest::addRow("%d", property)
            << property << TVLSearchIndex::stringDocumentProperties().contains(property);
}

void TstSearchValidation::everyPropertyHasItsSource()
{
    QFETCH(int, property);
    QFETCH(bool, isText);
    TVLProjectNode *node = mProject->addNode(7, u"Title"_s);
    node->mLabelId = 3;
    node->mStatusId = 4;
    node->mKeywords = {5};
    QVERIFY(mIndex->addProjectNode(node));
    mProject->setText(7, TVL::DocumentProperty(property), u"its text"_s);
    mIndex->updateIndexProperties(mProject->searchedIndex(7), {TVL::DocumentProperty(property)},
                                  false);
    QCOMPARE(mProject->takeRequests().size(), isText ? 1 : 0);
    QCOMPARE(rowsOf(*mIndex,
                    u"SELECT type FROM DocumentSearchProperties WHERE propertyValue = 'its text' "
                    "AND confirmed"_s),
             isText ? QStringList{QString::number(property)} : QStringList());
    // A label and a status have no text, and are set to that.
    QStringList numbers = {u"5|5"_s, u"6|3"_s, u"7|4"_s};
    if (property == 6)
        numbers[1] = u"6|"_s;
    if (property == 7)
        numbers[2] = u"7|"_s;
    QCOMPARE(
        rowsOf(*mIndex, u"SELECT type, propertyValue FROM DocumentIntProperties ORDER BY type"_s),
        numbers);
}

void TstSearchValidation::nothingIsUpdatedWithoutPropertiesOrItem()
{
    addItems(1);
    mProject->addNode(-1, u"No id"_s);
    SqlTrace trace(*mIndex);
    mIndex->updateIndexProperties(mProject->searchedIndex(0), {}, false);
    mIndex->updateIndexProperties({}, Rebuilt, false);
    mIndex->updateIndexProperties(mProject->searchedIndex(-1), Rebuilt, true);
    QCOMPARE(trace.take(), QStringList());
    QVERIFY(mProject->takeRequests().isEmpty());
}

void TstSearchValidation::anUpdateHasNoHashRecorded()
{
    addItems(1);
    mProject->writeDocument(0, TVL::MainText, "content");
    mIndex->updateIndexProperties(mProject->searchedIndex(0), Rebuilt, false);
    QVERIFY(!mProject->checksums()->isModified());
}

void TstSearchValidation::aTextOfAFileHasItsHashRecorded()
{
    addItems(1);
    mProject->writeDocument(0, TVL::MainText, "content");
    mProject->writeDocument(0, TVL::CommentsFile, "comments");
    mProject->setTextsOfFiles({});
    mIndex->validateIndexes(nullptr);
    const TVLProjectChecksums *checksums = mProject->checksums();
    QCOMPARE(checksums->checksums().size(), 2);
    for (const auto type : {TVL::MainText, TVL::CommentsFile})
        QCOMPARE(checksums->loadedChecksum(0, type), checksums->currentHddChecksum(0, type));
    QVERIFY(checksums->isModified());
    // Once more, nothing is new.
    mProject->checksums()->setModified(false);
    mIndex->updateIndexProperties(mProject->searchedIndex(0), Rebuilt, false);
    QVERIFY(!checksums->isModified());
}

void TstSearchValidation::aFileThatChangesWhileItIsReadHasNoHash()
{
    addItems(1);
    mProject->writeDocument(0, TVL::MainText, "content");
    mProject->writeDocument(0, TVL::NotesText, "content");
    mProject->recordHashes();
    mProject->setTextsOfFiles([this] {
        mProject->writeDocument(0, TVL::MainText, "changed");
        mProject->writeDocument(0, TVL::SynopsisText, "new");
    });
    mIndex->validateIndexes(nullptr);
    QVERIFY(mProject->checksums()->loadedChecksum(0, TVL::MainText).isEmpty());
    QVERIFY(mProject->checksums()->loadedChecksum(0, TVL::SynopsisText).isEmpty());
    QVERIFY(!mProject->checksums()->loadedChecksum(0, TVL::NotesText).isEmpty());
}

void TstSearchValidation::commentsThatTheTextDoesNotKnowHaveNoHash()
{
    addItems(1);
    mProject->setText(0, TVL::CommentsProperty, QString());
    mProject->writeDocument(0, TVL::CommentsFile, "comments");
    mProject->recordHashes();
    mProject->setTextsOfFiles({});
    mIndex->validateIndexes(nullptr);
    QVERIFY(mProject->checksums()->checksums().isEmpty());
}

void TstSearchValidation::aTextThatIsNoFilesLosesItsHash()
{
    addItems(1);
    for (const int type : {0, 1, 2, 4})
        mProject->writeDocument(0, TVL::DocumentType(type), "content");
    mProject->recordHashes();
    mProject->checksums()->setModified(false);
    mIndex->updateIndexProperties(mProject->searchedIndex(0), {TVL::TextProperty}, false);
    QVERIFY(!mProject->checksums()->checksums().contains({QUuid(), u"0.rtf"_s}));
    QCOMPARE(mProject->checksums()->checksums().size(), 3);
    QVERIFY(mProject->checksums()->isModified());
    // One that isn't confirmed is none, too.
    mIndex->updatePropertyNode(mProject->nodes().constFirst(), TVL::NotesProperty, u"typed"_s,
                               false);
    QCOMPARE(mProject->checksums()->checksums().size(), 2);
}

void TstSearchValidation::anItemThatGoesWhileItIsAskedForIsPassedOver()
{
    addItems(2);
    mProject->writeDocument(0, TVL::MainText, "content");
    mProject->setTextsOfFiles([this] { mProject->removeNode(0); });
    mIndex->validateIndexes(nullptr);
    QVERIFY(mProject->checksums()->checksums().isEmpty());
    QCOMPARE(mIndex->notConfirmedIndexes().size(), 0);
}

void TstSearchValidation::anItemThatIsNewHasNoHashes()
{
    for (const int id : {0, 1})
        mProject->writeDocument(id, TVL::MainText, "of another item");
    mProject->recordHashes();
    QCOMPARE(mProject->checksums()->checksums().size(), 2);
    QVERIFY(mIndex->addProjectNode(mProject->addNode(0, u"Title"_s)));
    QCOMPARE(mProject->checksums()->checksums().keys(),
             QList<ChecksumKey>({{QUuid(), u"1.rtf"_s}}));
    mIndex->forgetTexts(1);
    QVERIFY(mProject->checksums()->checksums().isEmpty());
}

void TstSearchValidation::anUpdateMarksTheStoreAsModified()
{
    addItems(1);
    QVERIFY(mIndex->load());
    QVERIFY(!mIndex->isModified());
    mIndex->validateIndexes(nullptr);
    QVERIFY(mIndex->isModified());
    mIndex->save();
    mIndex->validateIndexes(nullptr);
    QVERIFY(!mIndex->isModified());
}

void TstSearchValidation::theStatementsOfAnUpdate()
{
    addItems(1);
    const QModelIndex index = mProject->searchedIndex(0);
    SqlTrace trace(*mIndex);
    mIndex->updateIndexProperties(index, {TVL::TextProperty, TVL::NotesProperty}, false);
    QCOMPARE(trace.take(), QStringList({u"BEGIN"_s, UpdateText, UpdateText}));
    // Refused by the database now, but that doesn't matter.
    mIndex->updateIndexProperties(index, {TVL::TextProperty}, false);
    QCOMPARE(trace.take().constLast(), UpdateText);
}

// --- The open transaction

void TstSearchValidation::theTransactionStaysOpen()
{
    addItems(2);
    mIndex->validateIndexes(nullptr);
    QVERIFY(!mIndex->transaction());
    // Its values are there all the same.
    QVERIFY(mIndex->hasText(1, TVL::TextProperty));
    QCOMPARE(mIndex->indexes(searchFor(u"2 of 1"_s)), QList<int>{1});
    QVERIFY(mIndex->addDocumentData(9, u"later"_s, 1, 1, {}));
    QVERIFY(mIndex->rollback());
    QVERIFY(!mIndex->hasText(1, TVL::TextProperty));
    QVERIFY(!mIndex->hasText(9, TVL::TitleProperty));
    QVERIFY(mIndex->hasText(1, TVL::TitleProperty));
}

void TstSearchValidation::anotherConnectionIsCommitted()
{
    addItems(1);
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"searchindex"_s);
        QVERIFY(other.open());
        QVERIFY(other.transaction());
        mIndex->validateIndexes(nullptr);
        QVERIFY(!other.rollback());
        QVERIFY(!mIndex->transaction());
    }
    QSqlDatabase::removeDatabase(u"searchindex"_s);
    // Without one nothing is said.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    mIndex->invalidateProperty(0, TVL::TextProperty);
    mIndex->validateIndexes(nullptr);
    QVERIFY(!QSqlDatabase::connectionNames().contains(u"searchindex"_s));
}

void TstSearchValidation::labelsAreReplacedInTheOpenTransaction()
{
    openTransaction();
    const QList<TVLLabel> labels = {{3, u"Three"_s, QColor(1, 2, 3)}, {1, u"Uno"_s, QColor()}};
    const QList<TVLStatusItem> items = {{3, u"Three"_s}, {1, u"Uno"_s}};
    QVERIFY(mIndex->setLabels({{7, u"Old"_s, QColor()}}));
    QVERIFY(mIndex->setLabels(labels));
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->labels(), labels);
    QCOMPARE(mIndex->statusItems(), items);
    QVERIFY(!mIndex->transaction());
}

void TstSearchValidation::failedReplacementsAreTakenBackInTheOpenTransaction()
{
    openTransaction();
    const QList<TVLLabel> labels = {{3, u"Three"_s, QColor(1, 2, 3)}, {1, u"Uno"_s, QColor()}};
    const QList<TVLStatusItem> items = {{3, u"Three"_s}, {1, u"Uno"_s}};
    QVERIFY(mIndex->setLabels(labels));
    QVERIFY(mIndex->setStatusItems(items));
    QVERIFY(mIndex->setDocumentKeywords(0, {1, 2}));
    for (int pass = 0; pass < 3; ++pass) {
        expectSqlErrors(u"UNIQUE constraint failed: ProjectLabels.identity"_s);
        QVERIFY(!mIndex->setLabels({{7, u"a"_s, QColor()}, {7, u"b"_s, QColor()}}));
        expectSqlErrors(u"UNIQUE constraint failed: ProjectStatusItems.identity"_s);
        QVERIFY(!mIndex->setStatusItems({{7, u"a"_s}, {7, u"b"_s}}));
        QCOMPARE(mIndex->labels(), labels);
        QCOMPARE(mIndex->statusItems(), items);
        QCOMPARE(mIndex->affectedDocuments(2), QSet<int>{0});
        // What came before in the same transaction is still there.
        QVERIFY(mIndex->hasText(0, TVL::TextProperty));
        QVERIFY(!mIndex->transaction());
    }
    QVERIFY(mIndex->setLabels({}));
    QVERIFY(mIndex->labels().isEmpty());
}

void TstSearchValidation::keywordsWorkOnInTheOpenTransaction()
{
    openTransaction();
    QVERIFY(mIndex->addKeyword(1, u"Sea"_s));
    QVERIFY(mIndex->setDocumentKeywords(0, {1}));
    QCOMPARE(mIndex->indexes(searchFor(u"Sea"_s)), QList<int>{0});
    execute(*mIndex,
            u"CREATE TRIGGER refuse BEFORE INSERT ON DocumentIntProperties "
            "WHEN NEW.propertyValue = 9 BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
    expectSqlErrors(u"refused"_s);
    QVERIFY(!mIndex->setDocumentKeywords(0, {1, 9}));
    QCOMPARE(mIndex->affectedDocuments(1), QSet<int>{0});
    QVERIFY(mIndex->removeKeyword(1));
    QVERIFY(mIndex->affectedDocuments(1).isEmpty());
}

void TstSearchValidation::theFileIsSavedAndLoadedInTheOpenTransaction()
{
    openTransaction();
    mIndex->save();
    QVERIFY(!mIndex->isModified());
    QVERIFY(mProject->readIndex().contains("<Text>2 of 0</Text>"));
    mIndex->invalidateProperty(0, TVL::TextProperty);
    QVERIFY(mIndex->load());
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
    mProject->writeIndex("<SearchIndexes><Documents><Document ID=\"0\"><Text>no</Text></Document>");
    QVERIFY(!mIndex->load());
    QVERIFY(validatedRows(*mIndex, 0).contains(u"2|2 of 0|1"_s));
    QVERIFY(!mIndex->transaction());
}

TVL_TEST(TstSearchValidation)
#include "tst_searchvalidation.moc"
