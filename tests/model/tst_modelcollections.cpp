#include "ModelChecks.h"
#include "ModelTester.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

namespace {

TVLCollectionMetaData collection(TVL::CollectionType type, const QString &title,
                                 const QList<int> &ids = {})
{
    TVLCollectionMetaData made;
    made.mId = TVLCollectionMetaData::generateIdentity();
    made.mTitle = title;
    made.mColor = QColor(10, 20, 30);
    made.mType = type;
    made.mIds = ids;
    return made;
}

using Collections = QList<TVLCollectionMetaData>;

/** What was asked of a list of favorites. */
struct FavoriteStep
{
    int id;
    bool favorite;
    bool atEnd;
    bool hasEffect;
};

} // namespace

class TstModelCollections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBlankProjectHasBinderAndSearchResults();
    void everyProjectHasIdentitiesOfItsOwn();
    void collectionsAreStoredAsGiven();
    void missingKindsAreAddedWithoutTitle_data();
    void missingKindsAreAddedWithoutTitle();
    void idsOfNoItemLeaveAListKeptByHand();
    void idsOfOtherCollectionsStay();
    void settingCollectionsEmitsAndMarksNothing();
    void collectionsSurviveSaveAndReopen();
    void aFavoriteIsMadeAtEitherEnd();
    void aFavoriteThatIsThereAlreadyIsLeftAlone();
    void aFavoriteElsewhereInTheListMoves();
    void aFavoriteIsTakenBack();
    void favoritesAreMarkedAndAnnounced();
    void favoriteShortcuts();
};

void TstModelCollections::aBlankProjectHasBinderAndSearchResults()
{
    const auto model = blankModel();
    const Collections collections = model->collections();
    QCOMPARE(collections.size(), 2);
    QCOMPARE(collections.at(0).mTitle, u"Binder"_qs);
    QCOMPARE(int(collections.at(0).mType), 0);
    QCOMPARE(collections.at(1).mTitle, u"Search Results"_qs);
    QCOMPARE(int(collections.at(1).mType), 1);
    for (const TVLCollectionMetaData &made : collections) {
        QVERIFY(!made.mId.isEmpty());
        QCOMPARE(made.mSearchText, QString());
        QCOMPARE(made.mIds, QList<int>());
        QVERIFY(made.mColor.isValid());
        QCOMPARE(made.mColor.alpha(), 255);
    }
    QVERIFY(collections.at(0).mId != collections.at(1).mId);
}

void TstModelCollections::everyProjectHasIdentitiesOfItsOwn()
{
    QVERIFY(blankModel()->collections().at(0).mId != blankModel()->collections().at(0).mId);
}

void TstModelCollections::collectionsAreStoredAsGiven()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    const Collections given = {collection(TVL::RecentSearchCollection, u"Found"_qs),
                               collection(TVL::ArbitraryCollection, u"Mine"_qs, {3, 0, 2}),
                               collection(TVL::SavedSearchCollection, u"Search"_qs),
                               collection(TVL::BinderCollection, u"All"_qs)};
    model->setCollections(given);
    QCOMPARE(model->collections(), given);
}

void TstModelCollections::missingKindsAreAddedWithoutTitle_data()
{
    QTest::addColumn<Collections>("given");
    QTest::addColumn<QList<int>>("addedTypes");
    const TVLCollectionMetaData binder = collection(TVL::BinderCollection, u"Binder"_qs);
    const TVLCollectionMetaData recent = collection(TVL::RecentSearchCollection, u"Found"_qs);
    const TVLCollectionMetaData mine = collection(TVL::ArbitraryCollection, u"Mine"_qs, {3});
    QTest::newRow("both") << Collections({binder, recent, mine}) << QList<int>();
    QTest::newRow("no search results") << Collections({binder, mine}) << QList<int>({1});
    QTest::newRow("no binder") << Collections({mine, recent}) << QList<int>({0});
    QTest::newRow("neither") << Collections({mine}) << QList<int>({0, 1});
    QTest::newRow("empty") << Collections() << QList<int>({0, 1});
}

void TstModelCollections::missingKindsAreAddedWithoutTitle()
{
    QFETCH(const Collections, given);
    QFETCH(const QList<int>, addedTypes);
    const auto model = blankModel();
    const ModelTester tester(model.get());
    model->setCollections(given);
    const Collections stored = model->collections();
    QCOMPARE(stored.mid(0, given.size()), given);
    QCOMPARE(stored.size(), given.size() + addedTypes.size());
    for (qsizetype i = 0; i < addedTypes.size(); ++i) {
        const TVLCollectionMetaData &added = stored.at(given.size() + i);
        QCOMPARE(int(added.mType), addedTypes.at(i));
        QCOMPARE(added.mTitle, QString());
        QVERIFY(!added.mId.isEmpty());
        QVERIFY(added.mColor.isValid());
    }
}

void TstModelCollections::idsOfNoItemLeaveAListKeptByHand()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    model->setCollections({collection(TVL::BinderCollection, u"Binder"_qs),
                           collection(TVL::RecentSearchCollection, u"Found"_qs),
                           collection(TVL::ArbitraryCollection, u"Mine"_qs, {99, 3, -1, 0, 77, 3}),
                           collection(TVL::ArbitraryCollection, u"Gone"_qs, {99})});
    QCOMPARE(model->collections().at(2).mIds, QList<int>({3, 0, 3}));
    QCOMPARE(model->collections().at(3).mIds, QList<int>());
}

void TstModelCollections::idsOfOtherCollectionsStay()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    model->setCollections({collection(TVL::BinderCollection, u"Binder"_qs, {99}),
                           collection(TVL::RecentSearchCollection, u"Found"_qs, {98}),
                           collection(TVL::SavedSearchCollection, u"Search"_qs, {97})});
    QCOMPARE(model->collections().at(0).mIds, QList<int>({99}));
    QCOMPARE(model->collections().at(1).mIds, QList<int>({98}));
    QCOMPARE(model->collections().at(2).mIds, QList<int>({97}));
}

void TstModelCollections::settingCollectionsEmitsAndMarksNothing()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    const SignalLog log(model.get());
    model->setCollections({});
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstModelCollections::collectionsSurviveSaveAndReopen()
{
    const TestProject project;
    Collections given;
    {
        const auto model = project.create();
        given = model->collections();
        given.append(collection(TVL::ArbitraryCollection, u"Mine <&>"_qs, {3, 1}));
        TVLCollectionMetaData search = collection(TVL::SavedSearchCollection, u"Search"_qs);
        search.mSearchText = u"a & b"_qs;
        given.append(search);
        model->setCollections(given);
        QVERIFY(model->save(true));
        model->prepareToDestroy();
    }
    const auto model = project.open();
    QVERIFY(model);
    const Collections read = model->collections();
    QCOMPARE(read.size(), given.size());
    for (qsizetype i = 0; i < given.size(); ++i) {
        QCOMPARE(read.at(i).mId, given.at(i).mId);
        QCOMPARE(read.at(i).mTitle, given.at(i).mTitle);
        QCOMPARE(int(read.at(i).mType), int(given.at(i).mType));
        QCOMPARE(read.at(i).mIds, given.at(i).mIds);
        QCOMPARE(read.at(i).mSearchText, given.at(i).mSearchText);
    }
}

namespace {

/** Does the steps and tells the first one whose effect isn't the one told; -1 for none. */
int firstWrongStep(TVLProjectModel *model, const QList<FavoriteStep> &steps)
{
    for (int i = 0; i < steps.size(); ++i) {
        const FavoriteStep &step = steps.at(i);
        makeAllOld(model);
        const SignalLog log(model);
        const QModelIndex index = model->index(step.id);
        const bool done = model->setFavorite(index, step.favorite, step.atEnd);
        const bool hadEffect = log.lines().contains(u"data %1"_qs.arg(step.id));
        const QList<int> touched = step.hasEffect ? QList<int>({step.id}) : QList<int>();
        if (!done || hadEffect != step.hasEffect || touchedIds(model) != touched
            || model->isFavorite(index) != step.favorite)
            return i;
    }
    return -1;
}

} // namespace

void TstModelCollections::aFavoriteIsMadeAtEitherEnd()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    // What stands at an end shows by asking for it there once more: that has no effect.
    QCOMPARE(firstWrongStep(model.get(),
                            {{0, true, true, true},
                             {1, true, true, true},
                             {1, true, true, false},
                             {0, true, false, false},
                             {2, true, false, true},
                             {2, true, false, false},
                             {1, true, true, false}}),
             -1);
}

void TstModelCollections::aFavoriteThatIsThereAlreadyIsLeftAlone()
{
    for (const bool atEnd : {true, false}) {
        const auto model = blankModel();
        const ModelTester tester(model.get());
        QVERIFY(model->setFavorite(firstText(model.get()), true, true));
        makeAllOld(model.get());
        const SignalLog log(model.get());
        QVERIFY(model->setFavorite(firstText(model.get()), true, atEnd));
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(touchedIds(model.get()), QList<int>());
    }
}

void TstModelCollections::aFavoriteElsewhereInTheListMoves()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    QCOMPARE(firstWrongStep(model.get(),
                            {{0, true, true, true},
                             {1, true, true, true},
                             {2, true, true, true}, // 0, 1, 2
                             {0, true, true, true}, // 1, 2, 0
                             {0, true, true, false},
                             {1, true, false, false},
                             {2, true, false, true}, // 2, 1, 0
                             {2, true, false, false},
                             {0, true, true, false}}),
             -1);
}

void TstModelCollections::aFavoriteIsTakenBack()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    QCOMPARE(firstWrongStep(model.get(),
                            {{0, true, true, true},
                             {1, true, true, true},
                             {2, true, true, true},
                             {0, false, false, true}, // 1, 2
                             {1, true, false, false},
                             {2, false, false, true}, // 1
                             {1, true, true, false},
                             {1, false, false, true}, // none
                             {1, true, false, true}}),
             -1);
}

void TstModelCollections::favoritesAreMarkedAndAnnounced()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setFavorite(model->researchFolder(), true, false));
    QCOMPARE(log.lines(), QStringList({u"modified"_qs, u"data 1"_qs}));
    QCOMPARE(model->data(model->researchFolder(), TVLProjectModel::FavoriteRole), QVariant(true));
}

void TstModelCollections::favoriteShortcuts()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    QVERIFY(model->addToFavorites(model->index(0), true));
    QVERIFY(model->addToFavorites(model->index(1), true));
    QVERIFY(model->addToFavorites(model->index(2), false));
    // 2, 0, 1
    QCOMPARE(firstWrongStep(model.get(), {{2, true, false, false}, {1, true, true, false}}), -1);
    QVERIFY(model->removeFromFavorites(model->index(2)));
    QVERIFY(!model->isFavorite(model->index(2)));
    QCOMPARE(firstWrongStep(model.get(), {{0, true, false, false}, {1, true, true, false}}), -1);
}

TVL_TEST_MAIN(TstModelCollections)
#include "tst_modelcollections.moc"
