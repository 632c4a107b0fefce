#include "CollectionChecks.h"
#include "TVLReplay.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

#include <climits>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

/** Something that is done to a model. */
using Action = std::function<void(TVLProjectModel *)>;

} // namespace

class TstModelCollections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Changing
    void aCollectionIsReplacedWithAllFields();
    void replacingACollectionByItsEqualCountsToo();
    void aCollectionIsReplacedByIdentity();
    void theBinderAndTheSearchResultsAreNotReplaced();
    void aColorIsSet();
    void aColorIsSetByIdentity();
    void somethingWithoutColorOfItsOwnTakesNone();
    void theSearchResultsBecomeASearch();
    void aRecordOfAnotherKindGoesToTheFirstOfIt();
    void aRecordOfNoKindInTheListGoesNowhere();
    void theTitleOfTheSearchResultsIsTranslated();
    void nothingHappensOutsideTheList_data();
    void nothingHappensOutsideTheList();
    void everyChangeMarksASavedProject_data();
    void everyChangeMarksASavedProject();

    // Searching again
    void allSearchesAreAnnouncedToSearchAgain();

    // External folder sync
    void aMissingTitleIsMadeAtTheEnd();
    void aKnownTitleIsNotMadeAgain();
    void aTitleWithoutIdentityIsMadeOnceMore();
    void syncResultsAreMadeOnceWithARandomColor_data();
    void syncResultsAreMadeOnceWithARandomColor();
    void titlesOfSyncResultsAreTranslated();
    void updatedDocumentsAreReplacedWhenTheyDiffer();
    void updatedDocumentsOfAMissingCollectionMakeIt();
    void collectionsForSyncAreNeitherBuiltInNorResults();
    void aProjectMayHaveNoCollectionsForSync();
};

// --- Changing

void TstModelCollections::aCollectionIsReplacedWithAllFields()
{
    for (const int position : {2, 3, 4}) {
        const auto model = modelOfFive();
        const CollectionLog log(model.get());
        model->setCollectionByPos(position, fullRecord());
        Collections expected = Five;
        expected[position] = fullRecord();
        QCOMPARE(model->collections(), expected);
        QCOMPARE(log.lines(),
                 Lines({u"modified of 5"_s, u"changed %1 Full of 5"_s.arg(position),
                        u"changed of 5"_s}));
        QCOMPARE(log.records(), Collections({fullRecord()}));
    }
}

void TstModelCollections::replacingACollectionByItsEqualCountsToo()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setCollectionByPos(2, Five.at(2));
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines({u"modified of 5"_s, u"changed 2 Mine of 5"_s, u"changed of 5"_s}));
}

void TstModelCollections::aCollectionIsReplacedByIdentity()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setCollectionById(Five.at(4).mId, fullRecord());
    QCOMPARE(model->findCollectionByPos(4), fullRecord());
    QCOMPARE(log.lines(), Lines({u"modified of 5"_s, u"changed 4 Full of 5"_s, u"changed of 5"_s}));
    QVERIFY(!model->hasCollectionWithId(Five.at(4).mId));
}

void TstModelCollections::theBinderAndTheSearchResultsAreNotReplaced()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    for (const int position : {0, 1}) {
        model->setCollectionByPos(position, fullRecord());
        model->setCollectionById(Five.at(position).mId, fullRecord());
    }
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstModelCollections::aColorIsSet()
{
    for (const QColor &color : {QColor(1, 2, 3, 4), QColor()}) {
        const auto model = modelOfFive();
        const CollectionLog log(model.get());
        model->setCollectionColor(3, color);
        TVLCollectionMetaData expected = Five.at(3);
        expected.mColor = color;
        QCOMPARE(model->findCollectionByPos(3), expected);
        QCOMPARE(log.lines(),
                 Lines({u"modified of 5"_s, u"changed 3 Search of 5"_s, u"changed of 5"_s}));
        QCOMPARE(log.records(), Collections({expected}));
    }
}

void TstModelCollections::aColorIsSetByIdentity()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setCollectionColor(Five.at(2).mId, QColor(1, 2, 3));
    QCOMPARE(model->findCollectionByPos(2).mColor, QColor(1, 2, 3));
    QCOMPARE(log.lines(), Lines({u"modified of 5"_s, u"changed 2 Mine of 5"_s, u"changed of 5"_s}));
}

void TstModelCollections::somethingWithoutColorOfItsOwnTakesNone()
{
    const auto model = blankModel();
    TVLCollectionMetaData nameless = Five.at(2);
    nameless.mId.clear();
    const Collections given =
        Five + Collections({nameless, collection(TVL::NoCollection, u"None"_s)});
    model->setCollections(given);
    const CollectionLog log(model.get());
    for (const int position : {0, 1, 5, 6}) {
        model->setCollectionColor(position, QColor(1, 2, 3));
        model->setCollectionColor(given.at(position).mId, QColor(1, 2, 3));
    }
    QCOMPARE(model->collections(), given);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstModelCollections::theSearchResultsBecomeASearch()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setRecentSearch(fullRecord(TVL::RecentSearchCollection));
    TVLCollectionMetaData expected = fullRecord(TVL::RecentSearchCollection);
    expected.mTitle = u"Search Results"_s;
    expected.mColor = QColor();
    QCOMPARE(model->recentSearch(), expected);
    QCOMPARE(model->findCollectionByPos(1), expected);
    QCOMPARE(titles(model.get()), u"Binder Search Results Mine Search Yours"_s);
    QCOMPARE(log.lines(),
             Lines({u"modified of 5"_s, u"changed 1 Search Results of 5"_s, u"changed of 5"_s}));
    QCOMPARE(log.records(), Collections({expected}));
}

void TstModelCollections::aRecordOfAnotherKindGoesToTheFirstOfIt()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setRecentSearch(fullRecord(TVL::ArbitraryCollection));
    QCOMPARE(titles(model.get()), u"Binder Found Search Results Search Yours"_s);
    QCOMPARE(model->findCollectionByPos(2).mId, fullRecord().mId);
    QCOMPARE(model->findCollectionByPos(2).mColor, QColor());
    QCOMPARE(log.lines().at(1), u"changed 2 Search Results of 5"_s);
}

void TstModelCollections::aRecordOfNoKindInTheListGoesNowhere()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->setRecentSearch(fullRecord(TVL::NoCollection));
    const auto empty = emptyModel();
    const CollectionLog emptyLog(empty.get());
    empty->setRecentSearch(fullRecord(TVL::RecentSearchCollection));
    QCOMPARE(model->collections(), Five);
    QCOMPARE(empty->collections(), Collections());
    QCOMPARE(log.lines() + emptyLog.lines(), Lines());
    QVERIFY(model->isSaved() && empty->isSaved());
}

void TstModelCollections::theTitleOfTheSearchResultsIsTranslated()
{
    const auto model = modelOfFive();
    const EchoTranslator translator;
    model->setRecentSearch(fullRecord(TVL::RecentSearchCollection));
    QCOMPARE(model->recentSearch().mTitle,
             u"TVLProjectModel|Search Results|Search results collection"_s);
}

void TstModelCollections::nothingHappensOutsideTheList_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("lowest") << INT_MIN;
    QTest::newRow("before the first") << -1;
    QTest::newRow("behind the last") << 5;
    QTest::newRow("highest") << INT_MAX;
}

void TstModelCollections::nothingHappensOutsideTheList()
{
    QFETCH(const int, position);
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    const QModelIndexList items = {model->index(3)};
    model->removeCollection(position);
    model->setCollectionByPos(position, fullRecord());
    model->setCollectionById(u"no such"_s, fullRecord());
    model->setCollectionColor(position, QColor(1, 2, 3));
    model->setCollectionColor(u"no such"_s, QColor(1, 2, 3));
    model->addToCollection(position, items);
    model->addToCollection(u"no such"_s, items);
    model->removeFromCollection(position, items);
    model->removeFromCollection(u"no such"_s, items);
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstModelCollections::everyChangeMarksASavedProject_data()
{
    QTest::addColumn<Action>("change");
    using Model = TVLProjectModel;
    const auto add = [](const char *name, const Action &change) { QTest::newRow(name) << change; };
    add("insert", [](Model *model) { model->insertCollection(2, fullRecord()); });
    add("insert items", [](Model *model) { model->insertCollection(2, {}, u"New"_s, QColor()); });
    add("remove", [](Model *model) { model->removeCollection(2); });
    add("move", [](Model *model) { model->moveCollection(2, 0); });
    add("replace", [](Model *model) { model->setCollectionByPos(2, fullRecord()); });
    add("colour", [](Model *model) { model->setCollectionColor(2, QColor(1, 2, 3)); });
    add("search",
        [](Model *model) { model->setRecentSearch(fullRecord(TVL::RecentSearchCollection)); });
    add("add item", [](Model *model) { model->addToCollection(2, {model->index(0)}); });
    add("remove item", [](Model *model) { model->removeFromCollection(2, {model->index(3)}); });
    add("updated", [](Model *model) { model->setCollectionUpdatedDocuments({3}); });
    add("ensure", [](Model *model) { (void)model->ensureCollection(u"New"_s, QColor()); });
}

void TstModelCollections::everyChangeMarksASavedProject()
{
    QFETCH(const Action, change);
    const TestProject project;
    const auto model = project.create();
    model->setCollections(Five);
    QVERIFY(model->save(true));
    QSignalSpy marks(model.get(), &TVLProjectModel::modifiedChanged);
    change(model.get());
    QCOMPARE(marks.size(), 1);
    QVERIFY(model->isModified());
    QVERIFY(model->save(false));
    const Collections saved = model->collections();
    model->prepareToDestroy();
    QCOMPARE(titles(project.open().get()).split(u' '), [&] {
        Lines expected;
        for (const TVLCollectionMetaData &each : saved)
            expected.append(each.mTitle.split(u' '));
        return expected;
    }());
}

// --- Searching again

void TstModelCollections::allSearchesAreAnnouncedToSearchAgain()
{
    const auto model = modelOfFive();
    model->insertCollection(0, fullRecord());
    TVLProjectModelTestAccess::setSaved(model.get());
    const Collections before = model->collections();
    const CollectionLog log(model.get());
    model->updateSearchCollections();
    QCOMPARE(log.lines(),
             Lines({u"changed 0 Full of 6"_s, u"changed of 6"_s, u"changed 2 Found of 6"_s,
                    u"changed of 6"_s, u"changed 4 Search of 6"_s, u"changed of 6"_s}));
    QCOMPARE(log.records(), Collections({before.at(0), before.at(2), before.at(4)}));
    QCOMPARE(model->collections(), before);
    QVERIFY(model->isSaved());
}

// --- External folder sync

void TstModelCollections::aMissingTitleIsMadeAtTheEnd()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    const TVLCollectionMetaData made = model->ensureCollection(u"New"_s, QColor(1, 2, 3));
    QCOMPARE(made, model->findCollectionByPos(5));
    QCOMPARE(made.mTitle, u"New"_s);
    QCOMPARE(made.mColor, QColor(1, 2, 3));
    QCOMPARE(int(made.mType), int(TVL::ArbitraryCollection));
    QCOMPARE(made.mIds, Ids());
    QVERIFY(!made.mId.isEmpty());
    QCOMPARE(log.lines(),
             Lines({u"to come 5 New of 5"_s, u"modified of 6"_s, u"came 5 New of 6"_s,
                    u"changed of 6"_s}));
}

void TstModelCollections::aKnownTitleIsNotMadeAgain()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    for (const TVLCollectionMetaData &each : Five)
        QCOMPARE(model->ensureCollection(each.mTitle, QColor(1, 2, 3)), each);
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstModelCollections::aTitleWithoutIdentityIsMadeOnceMore()
{
    const auto model = blankModel();
    TVLCollectionMetaData nameless = Five.at(2);
    nameless.mId.clear();
    model->setCollections(
        {Five.at(0), Five.at(1), nameless, collection(TVL::NoCollection, u"None"_s)});
    for (const QString &title : {u"Mine"_s, u"None"_s}) {
        const TVLCollectionMetaData made = model->ensureCollection(title, QColor());
        QVERIFY(!made.mId.isEmpty());
        QCOMPARE(made.mTitle, title);
        QCOMPARE(int(made.mType), int(TVL::ArbitraryCollection));
        QCOMPARE(made, model->collections().constLast());
    }
    QCOMPARE(titles(model.get()), u"Binder Found Mine None Mine None"_s);
}

namespace {

/** One of the two collections that external folder sync keeps its results in. */
struct SyncResults
{
    TVLCollectionMetaData (TVLProjectModel::*get)();
    bool (TVLProjectModel::*exists)() const;
};

} // namespace

void TstModelCollections::syncResultsAreMadeOnceWithARandomColor_data()
{
    QTest::addColumn<SyncResults>("results");
    QTest::addColumn<QString>("title");
    QTest::newRow("updated") << SyncResults{&TVLProjectModel::updatedDocumentsCollection,
                                            &TVLProjectModel::updatedDocumentsCollectionExists}
                             << u"Updated Documents"_s;
    QTest::newRow("synced") << SyncResults{&TVLProjectModel::syncedDocumentsCollection,
                                           &TVLProjectModel::syncedDocumentsCollectionExists}
                            << u"Synced Documents"_s;
}

void TstModelCollections::syncResultsAreMadeOnceWithARandomColor()
{
    QFETCH(const SyncResults, results);
    QFETCH(const QString, title);
    const TVLReplay first(13);
    const QColor expected = nextColor();
    const auto model = modelOfFive();
    QVERIFY(!(model.get()->*results.exists)());
    QCOMPARE(model->collections(), Five);
    QVERIFY(model->isSaved());

    const TVLReplay again(13);
    const TVLCollectionMetaData made = (model.get()->*results.get)();
    QCOMPARE(made.mTitle, title);
    QCOMPARE(made.mColor, expected);
    QCOMPARE(int(made.mType), int(TVL::ArbitraryCollection));
    QCOMPARE(model->collections(), Five + Collections({made}));
    QVERIFY((model.get()->*results.exists)());
    QVERIFY(model->isModified());

    QCOMPARE((model.get()->*results.get)(), made);
    QCOMPARE(model->collections().size(), 6);
    model->removeCollection(5);
    QVERIFY(!(model.get()->*results.exists)());
}

void TstModelCollections::titlesOfSyncResultsAreTranslated()
{
    const auto model = modelOfFive();
    const EchoTranslator translator;
    const TVLCollectionMetaData updated = model->updatedDocumentsCollection();
    const TVLCollectionMetaData synced = model->syncedDocumentsCollection();
    QCOMPARE(updated.mTitle, u"TVLCollectionMetaData|Updated Documents|"_s);
    QCOMPARE(synced.mTitle, u"TVLCollectionMetaData|Synced Documents|"_s);
    // The records must know them by the same words.
    QVERIFY(updated.isSyncResultsCollection() && synced.isSyncResultsCollection());
}

void TstModelCollections::updatedDocumentsAreReplacedWhenTheyDiffer()
{
    const auto model = modelOfFive();
    TVLCollectionMetaData expected = model->updatedDocumentsCollection();
    TVLProjectModelTestAccess::setSaved(model.get());
    const CollectionLog log(model.get());
    model->setCollectionUpdatedDocuments({});
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());

    expected.mIds = {3, 1};
    model->setCollectionUpdatedDocuments({3, 1});
    QCOMPARE(model->findCollectionByPos(5), expected);
    const Lines lines = {u"modified of 6"_s, u"changed 5 Updated Documents of 6"_s,
                         u"changed of 6"_s};
    QCOMPARE(log.lines(), lines);
    model->setCollectionUpdatedDocuments({3, 1});
    QCOMPARE(log.lines(), lines);
    model->setCollectionUpdatedDocuments({1, 3});
    QCOMPARE(model->updatedDocumentsCollection().mIds, Ids({1, 3}));
    QCOMPARE(log.lines(), lines + lines.mid(1));
}

void TstModelCollections::updatedDocumentsOfAMissingCollectionMakeIt()
{
    const auto model = modelOfFive();
    model->setCollectionUpdatedDocuments({3});
    QCOMPARE(model->collections().size(), 6);
    QCOMPARE(model->findCollectionByTitle(u"Updated Documents"_s).mIds, Ids{3});
    QVERIFY(!model->syncedDocumentsCollectionExists());
}

void TstModelCollections::collectionsForSyncAreNeitherBuiltInNorResults()
{
    const auto model = modelOfFive();
    (void)model->updatedDocumentsCollection();
    (void)model->syncedDocumentsCollection();
    TVLCollectionMetaData namesake = fullRecord();
    namesake.mTitle = u"Synced Documents"_s;
    model->insertCollection(0, namesake);
    QCOMPARE(model->collectionsForExternalFolderSync(), Five.mid(2));
    QVERIFY(model->hasCollectionsForExternalFolderSync());
}

void TstModelCollections::aProjectMayHaveNoCollectionsForSync()
{
    const auto model = blankModel();
    (void)model->updatedDocumentsCollection();
    (void)model->syncedDocumentsCollection();
    QCOMPARE(model->collectionsForExternalFolderSync(), Collections());
    QVERIFY(!model->hasCollectionsForExternalFolderSync());
    model->insertCollection(0, fullRecord());
    QVERIFY(model->hasCollectionsForExternalFolderSync());
}

TVL_TEST(TstModelCollections)
#include "tst_modelcollections.moc"
