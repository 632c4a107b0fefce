#include "CollectionChecks.h"
#include "TVLReplay.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <climits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool isNone(const TVLCollectionMetaData &record)
{
    return record.mType == TVL::NoCollection && record.mId.isEmpty();
}

} // namespace

class TstCollectionList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What every project has
    void aBlankProjectHasBinderAndSearchResults();
    void everyProjectHasIdentitiesOfItsOwn();
    void defaultCollectionsAreForAnEmptyListOnly();
    void defaultCollectionsEmitAndMarkNothing();
    void defaultTitlesAreTranslated();
    void randomColorsStayBelowTheBrightestValue();
    void randomColorsAreRedThenGreenThenBlue();

    // The whole list
    void collectionsAreStoredAsGiven();
    void missingKindsAreAddedWithoutTitle_data();
    void missingKindsAreAddedWithoutTitle();
    void aListWithoutSearchResultsGainsThem();
    void anItemThatNoLongerExistsLeavesAListKeptByHand();
    void idsOfOtherCollectionsStay();
    void settingCollectionsEmitsAndMarksNothing();
    void collectionsSurviveSaveAndReopen();

    // Inserting
    void aCollectionIsInserted();
    void anInsertedCollectionIsToldOfAsItIs();
    void positionsOfInsertionsAreTakenFromTheList_data();
    void positionsOfInsertionsAreTakenFromTheList();
    void insertingASecondSearchResultsDoesNothing();
    void insertingASecondBinderDoesNothing();
    void itemsAreInsertedInTheOrderOfTheBinder();
    void insertedItemsHaveAFreshIdentityAndTheirColor();
    void anInvalidColorBecomesARandomOne();
    void itemsAreInsertedWithTheSameSignals();

    // Removing
    void aCollectionIsRemoved();
    void removingTheBinderCollectionDoesNothing();
    void removingTheSearchResultsDoesNothing();

    // Moving
    void aCollectionMoves_data();
    void aCollectionMoves();
    void aBinderReadWhileACollectionMovesEndsNothing();
    void movingFromTheFirstToBeforeTheFourthLandsAtPositionTwo();
    void positionsOutsideTheListMoveNothing_data();
    void positionsOutsideTheListMoveNothing();
    void aMoveMarksTheProjectWithItsListComplete();
    void aMovedCollectionKeepsAllItsFields();
    void aMoveSurvivesAListenerThatRemovesOthers();

    // Looking up
    void collectionsAreFoundByPosition();
    void collectionsAreFoundByIdentity();
    void collectionsAreFoundByTitle();
    void theFirstBinderAndSearchResultsCount();
    void aMissingBinderOrSearchIsMadeButNotEntered();
};

// --- What every project has

void TstCollectionList::aBlankProjectHasBinderAndSearchResults()
{
    const auto model = blankModel();
    const Collections collections = model->collections();
    QCOMPARE(collections.size(), 2);
    QCOMPARE(collections.at(0).mTitle, u"Binder"_s);
    QCOMPARE(int(collections.at(0).mType), 0);
    QCOMPARE(collections.at(1).mTitle, u"Search Results"_s);
    QCOMPARE(int(collections.at(1).mType), 1);
    for (const TVLCollectionMetaData &made : collections) {
        QVERIFY(!made.mId.isEmpty());
        QCOMPARE(made.mSearchText, QString());
        QCOMPARE(made.mIds, Ids());
        QVERIFY(made.mColor.isValid());
        QCOMPARE(made.mColor.alpha(), 255);
    }
    QVERIFY(collections.at(0).mId != collections.at(1).mId);
}

void TstCollectionList::everyProjectHasIdentitiesOfItsOwn()
{
    QVERIFY(blankModel()->collections().at(0).mId != blankModel()->collections().at(0).mId);
}

void TstCollectionList::defaultCollectionsAreForAnEmptyListOnly()
{
    const auto model = emptyModel();
    QCOMPARE(model->collections(), Collections());
    model->addDefaultCollections();
    const Collections made = model->collections();
    QCOMPARE(titles(model.get()), u"Binder Search Results"_s);
    model->addDefaultCollections();
    QCOMPARE(model->collections(), made);
    const auto other = modelOfFive();
    other->addDefaultCollections();
    QCOMPARE(other->collections(), Five);
}

void TstCollectionList::defaultCollectionsEmitAndMarkNothing()
{
    const auto model = emptyModel();
    const CollectionLog log(model.get());
    model->addDefaultCollections();
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::defaultTitlesAreTranslated()
{
    const auto model = emptyModel();
    const EchoTranslator translator;
    model->addDefaultCollections();
    QCOMPARE(model->collections().at(0).mTitle, u"TVLProjectModel|Binder|Binder collection"_s);
    QCOMPARE(model->collections().at(1).mTitle,
             u"TVLProjectModel|Search Results|Search results collection"_s);
}

void TstCollectionList::randomColorsStayBelowTheBrightestValue()
{
    QSet<int> values;
    for (int i = 0; i < 4000; ++i) {
        const QColor color = TVLCollectionMetaData::randomColor();
        QVERIFY(color.isValid());
        QCOMPARE(color.alpha(), 255);
        values += {color.red(), color.green(), color.blue()};
    }
    QVERIFY(!values.contains(255));
    QVERIFY(values.size() > 200);
}

void TstCollectionList::randomColorsAreRedThenGreenThenBlue()
{
    const TVLReplay seed(7);
    const QColor first = nextColor();
    const QColor second = nextColor();
    const auto model = emptyModel();
    const TVLReplay again(7);
    model->addDefaultCollections();
    QCOMPARE(model->collections().at(0).mColor, first);
    QCOMPARE(model->collections().at(1).mColor, second);
}

// --- The whole list

void TstCollectionList::collectionsAreStoredAsGiven()
{
    const auto model = blankModel();
    const Collections given = {collection(TVL::RecentSearchCollection, u"Found"_s),
                               collection(TVL::ArbitraryCollection, u"Mine"_s, {3, 0, 2}),
                               fullRecord(), collection(TVL::BinderCollection, u"All"_s),
                               collection(TVL::BinderCollection, u"Once more"_s)};
    model->setCollections(given);
    QCOMPARE(model->collections(), given);
}

void TstCollectionList::missingKindsAreAddedWithoutTitle_data()
{
    QTest::addColumn<Collections>("given");
    QTest::addColumn<Ids>("addedTypes");
    const TVLCollectionMetaData binder = collection(TVL::BinderCollection, u"Binder"_s);
    const TVLCollectionMetaData recent = collection(TVL::RecentSearchCollection, u"Found"_s);
    const TVLCollectionMetaData mine = collection(TVL::ArbitraryCollection, u"Mine"_s, {3});
    QTest::newRow("both") << Collections({binder, recent, mine}) << Ids();
    QTest::newRow("no search results") << Collections({binder, mine}) << Ids({1});
    QTest::newRow("no binder") << Collections({mine, recent}) << Ids({0});
    QTest::newRow("neither") << Collections({mine}) << Ids({0, 1});
    QTest::newRow("empty") << Collections() << Ids({0, 1});
}

void TstCollectionList::missingKindsAreAddedWithoutTitle()
{
    QFETCH(const Collections, given);
    QFETCH(const Ids, addedTypes);
    const auto model = blankModel();
    model->setCollections(given);
    const Collections stored = model->collections();
    QCOMPARE(stored.mid(0, given.size()), given);
    QCOMPARE(stored.size(), given.size() + addedTypes.size());
    for (qsizetype i = 0; i < addedTypes.size(); ++i) {
        const TVLCollectionMetaData &added = stored.at(given.size() + i);
        QCOMPARE(int(added.mType), addedTypes.at(i));
        QCOMPARE(added.mTitle, QString());
        QCOMPARE(added.mSearchText, QString());
        QVERIFY(!added.mId.isEmpty());
        QVERIFY(added.mColor.isValid());
    }
}

void TstCollectionList::aListWithoutSearchResultsGainsThem()
{
    const auto model = blankModel();
    model->setCollections({Five.at(0), Five.at(2)});
    const Collections stored = model->collections();
    QCOMPARE(stored.size(), 3);
    QCOMPARE(int(stored.at(2).mType), int(TVL::RecentSearchCollection));
    QCOMPARE(model->recentSearch(), stored.at(2));
}

void TstCollectionList::anItemThatNoLongerExistsLeavesAListKeptByHand()
{
    const auto model = blankModel();
    model->setCollections({collection(TVL::BinderCollection, u"Binder"_s),
                           collection(TVL::RecentSearchCollection, u"Found"_s),
                           collection(TVL::ArbitraryCollection, u"Mine"_s, {99, 3, -1, 0, 77, 3}),
                           collection(TVL::ArbitraryCollection, u"Gone"_s, {99})});
    QCOMPARE(model->collections().at(2).mIds, Ids({3, 0, 3}));
    QCOMPARE(model->collections().at(3).mIds, Ids());
}

void TstCollectionList::idsOfOtherCollectionsStay()
{
    const auto model = blankModel();
    model->setCollections({collection(TVL::BinderCollection, u"Binder"_s, {99}),
                           collection(TVL::RecentSearchCollection, u"Found"_s, {98}),
                           collection(TVL::SavedSearchCollection, u"Search"_s, {97})});
    QCOMPARE(model->collections().at(0).mIds, Ids({99}));
    QCOMPARE(model->collections().at(1).mIds, Ids({98}));
    QCOMPARE(model->collections().at(2).mIds, Ids({97}));
}

void TstCollectionList::settingCollectionsEmitsAndMarksNothing()
{
    const auto model = blankModel();
    const CollectionLog log(model.get());
    const SignalLog others(model.get());
    model->setCollections({collection(TVL::ArbitraryCollection, u"Mine"_s, {99})});
    QCOMPARE(log.lines(), Lines());
    QCOMPARE(others.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::collectionsSurviveSaveAndReopen()
{
    const TestProject project;
    Collections given;
    {
        const auto model = project.create();
        model->insertCollection(2, collection(TVL::ArbitraryCollection, u"Mine <&>"_s, {3, 1}));
        TVLCollectionMetaData search = fullRecord();
        search.mSearchScope = TVL::ExcludeTrashScope; // A binder has no word for two at once.
        model->insertCollection(0, search);
        given = model->collections();
        QCOMPARE(given.size(), 4);
        QVERIFY(model->save(true));
        model->prepareToDestroy();
    }
    const auto model = project.open();
    QVERIFY(model);
    // A search keeps no ids, and the two that every project has show colours of their class.
    given[0].mIds.clear();
    Collections read = model->collections();
    for (const int position : {1, 2}) {
        QCOMPARE(read.at(position).color(), given.at(position).color());
        read[position].mColor = given.at(position).mColor;
    }
    QCOMPARE(read, given);
}

// --- Inserting

void TstCollectionList::aCollectionIsInserted()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->insertCollection(3, collection(TVL::ArbitraryCollection, u"New"_s, {3}));
    QCOMPARE(titles(model.get()), u"Binder Found Mine New Search Yours"_s);
    QCOMPARE(log.lines(),
             Lines({u"to come 3 New of 5"_s, u"modified of 6"_s, u"came 3 New of 6"_s,
                    u"changed of 6"_s}));
    QVERIFY(model->isModified());
}

void TstCollectionList::anInsertedCollectionIsToldOfAsItIs()
{
    for (const auto type :
         {TVL::SavedSearchCollection, TVL::ArbitraryCollection, TVL::NoCollection}) {
        const auto model = modelOfFive();
        const CollectionLog log(model.get());
        model->insertCollection(5, fullRecord(type));
        QCOMPARE(log.records(), Collections({fullRecord(type), fullRecord(type)}));
        QCOMPARE(model->collections(), Five + Collections({fullRecord(type)}));
    }
}

void TstCollectionList::positionsOfInsertionsAreTakenFromTheList_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("expected");
    QTest::newRow("lowest") << INT_MIN << 0;
    QTest::newRow("before the first") << -1 << 0;
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("last") << 4 << 4;
    QTest::newRow("end") << 5 << 5;
    QTest::newRow("behind the end") << 6 << 5;
    QTest::newRow("highest") << INT_MAX << 5;
}

void TstCollectionList::positionsOfInsertionsAreTakenFromTheList()
{
    QFETCH(const int, position);
    QFETCH(const int, expected);
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->insertCollection(position, collection(TVL::ArbitraryCollection, u"New"_s));
    QCOMPARE(model->findCollectionByPos(expected).mTitle, u"New"_s);
    QCOMPARE(log.lines().constFirst(), u"to come %1 New of 5"_s.arg(expected));
    QCOMPARE(log.lines().at(2), u"came %1 New of 6"_s.arg(expected));

    const auto other = modelOfFive();
    const QString identity = other->insertCollection(position, {}, u"New"_s, QColor());
    QCOMPARE(other->collectionPos(identity), expected);
}

void TstCollectionList::insertingASecondSearchResultsDoesNothing()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->insertCollection(2, collection(TVL::RecentSearchCollection, u"New"_s));
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::insertingASecondBinderDoesNothing()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->insertCollection(2, collection(TVL::BinderCollection, u"New"_s));
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::itemsAreInsertedInTheOrderOfTheBinder()
{
    const auto model = modelOfFive();
    addTree(model.get(), model->draftFolder(), u"a(b c) d"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"d c a b"_s);
    const QString identity = model->insertCollection(
        5, QModelIndexList(indexes) << model->researchFolder(), u"New"_s, QColor(1, 2, 3));
    const TVLCollectionMetaData made = model->findCollectionById(identity);
    QCOMPARE(made.mIds,
             model->nodeIdentityList(itemsTitled(model.get(), u"a b c d"_s))
                 + Ids({model->nodeIdentity(model->researchFolder())}));
    QCOMPARE(model->collectionIndexes(made),
             itemsTitled(model.get(), u"a b c d"_s) << model->researchFolder());
}

void TstCollectionList::insertedItemsHaveAFreshIdentityAndTheirColor()
{
    const auto model = modelOfFive();
    const QModelIndexList items = {firstText(model.get())};
    const QString first = model->insertCollection(0, items, u"New"_s, QColor(1, 2, 3, 4));
    const QString second = model->insertCollection(0, items, u"New"_s, QColor(1, 2, 3, 4));
    QVERIFY(!first.isEmpty());
    QVERIFY(first != second);
    TVLCollectionMetaData expected;
    expected.mId = second;
    expected.mTitle = u"New"_s;
    expected.mColor = QColor(1, 2, 3, 4);
    expected.mType = TVL::ArbitraryCollection;
    expected.mIds = {3};
    QCOMPARE(model->findCollectionByPos(0), expected);
    QCOMPARE(model->findCollectionByPos(1).mId, first);
}

void TstCollectionList::anInvalidColorBecomesARandomOne()
{
    const TVLReplay first(11);
    const QColor expected = nextColor();
    const auto model = modelOfFive();
    const TVLReplay again(11);
    const QString identity = model->insertCollection(5, {}, u"New"_s, QColor());
    QCOMPARE(model->findCollectionById(identity).mColor, expected);
}

void TstCollectionList::itemsAreInsertedWithTheSameSignals()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    const QString identity =
        model->insertCollection(9, {firstText(model.get())}, u"New"_s, QColor());
    QCOMPARE(log.lines(),
             Lines({u"to come 5 New of 5"_s, u"modified of 6"_s, u"came 5 New of 6"_s,
                    u"changed of 6"_s}));
    const TVLCollectionMetaData made = model->findCollectionById(identity);
    QCOMPARE(log.records(), Collections({made, made}));
}

// --- Removing

void TstCollectionList::aCollectionIsRemoved()
{
    for (const int position : {2, 3, 4}) {
        const auto model = modelOfFive();
        const CollectionLog log(model.get());
        model->removeCollection(position);
        Collections expected = Five;
        expected.removeAt(position);
        QCOMPARE(model->collections(), expected);
        QCOMPARE(log.lines(),
                 Lines({u"to go %1 of 5"_s.arg(position), u"modified of 4"_s,
                        u"gone %1 of 4"_s.arg(position), u"changed of 4"_s}));
    }
}

void TstCollectionList::removingTheBinderCollectionDoesNothing()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->removeCollection(0);
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::removingTheSearchResultsDoesNothing()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->removeCollection(1);
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

// --- Moving

void TstCollectionList::aCollectionMoves_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("inserted");
    QTest::addColumn<QString>("expected");
    QTest::newRow("up to the head") << 4 << 0 << 0 << u"Yours Binder Found Mine Search"_s;
    QTest::newRow("up by one") << 3 << 2 << 2 << u"Binder Found Search Mine Yours"_s;
    QTest::newRow("down to the end") << 0 << 5 << 4 << u"Found Mine Search Yours Binder"_s;
    QTest::newRow("down by one") << 1 << 3 << 2 << u"Binder Mine Found Search Yours"_s;
    QTest::newRow("onto itself") << 2 << 2 << 2 << u"Binder Found Mine Search Yours"_s;
    QTest::newRow("before the next") << 2 << 3 << 2 << u"Binder Found Mine Search Yours"_s;
    QTest::newRow("last to the end") << 4 << 5 << 4 << u"Binder Found Mine Search Yours"_s;
}

void TstCollectionList::aCollectionMoves()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const int, inserted);
    QFETCH(const QString, expected);
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    const QString title = model->findCollectionByPos(from).mTitle;
    model->moveCollection(from, to);
    QCOMPARE(titles(model.get()), expected);
    QCOMPARE(log.lines(),
             Lines({u"to go %1 of 5"_s.arg(from), u"gone %1 of 4"_s.arg(from),
                    u"to come %1 %2 of 4"_s.arg(inserted).arg(title),
                    u"came %1 %2 of 5"_s.arg(inserted).arg(title), u"modified of 5"_s,
                    u"changed of 5"_s}));
}

void TstCollectionList::aBinderReadWhileACollectionMovesEndsNothing()
{
    // Nobody is told of the change before the list is whole, also when somebody reads meanwhile.
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    connect(model.get(), &TVLProjectModel::collectionAboutToBeRemoved, model.get(), [&model] {
        TVLBinderProject *project = model.get();
        project->beginBinderRead();
        project->endBinderRead();
    });
    model->moveCollection(4, 0);
    QVERIFY(log.lines().contains(u"modified of 5"_s));
    QVERIFY(!log.lines().contains(u"modified of 4"_s));
}

void TstCollectionList::movingFromTheFirstToBeforeTheFourthLandsAtPositionTwo()
{
    const auto model = modelOfFive();
    QSignalSpy toGo(model.get(), &TVLProjectModel::collectionAboutToBeRemoved);
    QSignalSpy gone(model.get(), &TVLProjectModel::collectionRemoved);
    QSignalSpy toCome(model.get(), &TVLProjectModel::collectionAboutToBeInserted);
    QSignalSpy came(model.get(), &TVLProjectModel::collectionInserted);
    model->moveCollection(0, 3);
    QCOMPARE(titles(model.get()), u"Found Mine Binder Search Yours"_s);
    QCOMPARE(model->collectionPos(Five.at(0).mId), 2);
    for (const QSignalSpy *removal : {&toGo, &gone})
        QCOMPARE(QList<QVariantList>(*removal), QList<QVariantList>({{0}}));
    for (const QSignalSpy *insertion : {&toCome, &came}) {
        QCOMPARE(insertion->size(), 1);
        QCOMPARE(insertion->at(0).at(0).toInt(), 2);
        QCOMPARE(insertion->at(0).at(1).value<TVLCollectionMetaData>(), Five.at(0));
    }
}

void TstCollectionList::positionsOutsideTheListMoveNothing_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("from before") << -1 << 2;
    QTest::newRow("from the end") << 5 << 2;
    QTest::newRow("from far behind") << INT_MAX << 2;
    QTest::newRow("to before") << 2 << -1;
    QTest::newRow("to behind the end") << 2 << 6;
    QTest::newRow("to far behind") << 2 << INT_MAX;
    QTest::newRow("both") << -1 << 6;
}

void TstCollectionList::positionsOutsideTheListMoveNothing()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->moveCollection(from, to);
    QCOMPARE(model->collections(), Five);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionList::aMoveMarksTheProjectWithItsListComplete()
{
    const auto model = modelOfFive();
    qsizetype count = 0;
    connect(model.get(), &TVLProjectModel::modifiedChanged, this,
            [&] { count = model->collections().size(); });
    model->moveCollection(4, 0);
    QCOMPARE(count, 5);
    QVERIFY(model->isModified());
}

void TstCollectionList::aMovedCollectionKeepsAllItsFields()
{
    const auto model = modelOfFive();
    model->insertCollection(5, fullRecord());
    model->moveCollection(5, 1);
    QCOMPARE(model->findCollectionByPos(1), fullRecord());
}

void TstCollectionList::aMoveSurvivesAListenerThatRemovesOthers()
{
    const auto model = modelOfFive();
    bool isDone = false;
    connect(model.get(), &TVLProjectModel::collectionRemoved, this, [&] {
        if (std::exchange(isDone, true))
            return;
        model->removeCollection(3);
        model->removeCollection(2);
    });
    model->moveCollection(2, 5);
    QCOMPARE(titles(model.get()), u"Binder Found Mine"_s);
    QVERIFY(model->isModified());
}

// --- Looking up

void TstCollectionList::collectionsAreFoundByPosition()
{
    const auto model = modelOfFive();
    for (int position = 0; position < 5; ++position)
        QCOMPARE(model->findCollectionByPos(position), Five.at(position));
    for (const int position : {INT_MIN, -1, 5, INT_MAX})
        QVERIFY(isNone(model->findCollectionByPos(position)));
}

void TstCollectionList::collectionsAreFoundByIdentity()
{
    const auto model = modelOfFive();
    for (int position = 0; position < 5; ++position) {
        const QString identity = Five.at(position).mId;
        QCOMPARE(model->collectionPos(identity), position);
        QVERIFY(model->hasCollectionWithId(identity));
        QCOMPARE(model->findCollectionById(identity), Five.at(position));
    }
    for (const QString &identity : {u"id of mine"_s, u"Mine"_s, QString()}) {
        QCOMPARE(model->collectionPos(identity), -1);
        QVERIFY(!model->hasCollectionWithId(identity));
        QVERIFY(isNone(model->findCollectionById(identity)));
    }
}

void TstCollectionList::collectionsAreFoundByTitle()
{
    const auto model = modelOfFive();
    TVLCollectionMetaData namesake = fullRecord();
    namesake.mTitle = u"Mine"_s;
    model->insertCollection(5, namesake);
    for (int position = 0; position < 5; ++position)
        QCOMPARE(model->findCollectionByTitle(Five.at(position).mTitle), Five.at(position));
    for (const QString &title : {u"mine"_s, u"Min"_s, u"Mine "_s, u"id of Mine"_s, QString()})
        QVERIFY(isNone(model->findCollectionByTitle(title)));
}

void TstCollectionList::theFirstBinderAndSearchResultsCount()
{
    const auto model = blankModel();
    model->setCollections({Five.at(2), collection(TVL::RecentSearchCollection, u"First"_s),
                           Five.at(1), collection(TVL::BinderCollection, u"Second"_s), Five.at(0)});
    QCOMPARE(model->binderCollection().mTitle, u"Second"_s);
    QCOMPARE(model->recentSearch().mTitle, u"First"_s);
}

void TstCollectionList::aMissingBinderOrSearchIsMadeButNotEntered()
{
    const auto model = emptyModel();
    const CollectionLog log(model.get());
    struct Row
    {
        TVL::CollectionType type;
        TVLCollectionMetaData (TVLProjectModel::*get)() const;
    };
    for (const Row &row : {Row{TVL::BinderCollection, &TVLProjectModel::binderCollection},
                           Row{TVL::RecentSearchCollection, &TVLProjectModel::recentSearch}}) {
        const TVLReplay first(5);
        const QColor expected = nextColor();
        const TVLReplay again(5);
        const TVLCollectionMetaData made = (model.get()->*row.get)();
        QCOMPARE(int(made.mType), int(row.type));
        QCOMPARE(made.mColor, expected);
        QVERIFY(!made.mId.isEmpty());
        QVERIFY(made.mId != (model.get()->*row.get)().mId);
    }
    QCOMPARE(model->collections(), Collections());
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

TVL_TEST(TstCollectionList)
#include "tst_collectionlist.moc"
