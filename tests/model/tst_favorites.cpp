#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Ids = QList<int>;
using Lines = QStringList;

/** What was asked of a list of favorites and what it is then. */
struct FavoriteStep
{
    int id;
    bool favorite;
    bool atEnd;
    bool hasEffect;
    Ids favorites;
};

/** A blank project with the texts a, b and c, 4 to 6; 3 is there already. */
TestModel modelWithTexts(const Ids &favorites = {})
{
    auto model = blankModel();
    addTree(model.get(), model->draftFolder(), u"a b c"_s);
    model->setFavorites(favorites);
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    return model;
}

/** The ids of the favorites, which must be the same for who asks for indexes and for ids. */
Ids favoritesOf(const TVLProjectModel *model)
{
    const Ids ids = model->nodeIdentityList(model->favorites());
    return ids == model->favoriteIds() ? ids : Ids{-99};
}

/** The items with the flag, by the tree. */
Ids flagged(const TVLProjectModel *model)
{
    Ids ids;
    tvlForEachNode(model->binderRoot(), [&ids](const TVLProjectNode *node) {
        if (node->mIsFavorite)
            ids.append(node->mId);
    });
    std::sort(ids.begin(), ids.end());
    return ids;
}

Ids sorted(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

/** Does the steps and tells the first one whose effect isn't the one told; -1 for none. */
int firstWrongStep(TVLProjectModel *model, const QList<FavoriteStep> &steps)
{
    for (int i = 0; i < steps.size(); ++i) {
        const FavoriteStep &step = steps.at(i);
        makeAllOld(model);
        TVLProjectModelTestAccess::setSaved(model);
        const SignalLog log(model);
        const bool done = model->setFavorite(model->index(step.id), step.favorite, step.atEnd);
        const Lines lines = {u"modified"_s, u"data %1"_s.arg(step.id)};
        const bool isWrong = !done || log.lines() != (step.hasEffect ? lines : Lines())
            || touchedIds(model) != (step.hasEffect ? Ids{step.id} : Ids())
            || model->isModified() != step.hasEffect
            || model->isFavorite(model->index(step.id)) != step.favorite
            || favoritesOf(model) != step.favorites || flagged(model) != sorted(step.favorites);
        if (isWrong)
            return i;
    }
    return -1;
}

} // namespace

class TstFavorites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One item
    void aFavoriteIsMadeAtEitherEnd();
    void aFavoriteThatIsAtItsEndAlreadyIsLeftAlone();
    void aFavoriteAtTheHeadOfTheListMovesToTheEnd();
    void aFavoriteElsewhereInTheListMoves();
    void aFavoriteIsTakenBack();
    void takingBackWhatIsNoFavoriteTouchesTheItem();
    void aFavoriteIsMarkedBeforeItIsAnnounced();
    void everyItemMayBeAFavorite();
    void anItemOfAnotherProjectIsRefused();
    void theRootIsNeverListedOrSaved();
    void theRoleMakesFavoritesAtTheHead();
    void theRoleTakesWhatIsABool_data();
    void theRoleTakesWhatIsABool();
    void shortcutsDoTheSame();
    void aFlagWithoutAnEntryIsRepaired();
    void anEntryWithoutAFlagIsRepaired();

    // The list
    void noFavoritesAreAnEmptyList();
    void favoritesComeInTheOrderOfTheList();
    void anEntryWithoutAFlagIsNoFavorite();
    void aFlagWithoutAnEntryIsNoFavorite();
    void itemsWithoutIdsAreFavoritesButNotSaved();

    // All at once
    void anEqualListChangesNothing();
    void itemsLeaveAndCome();
    void leavingAndComingIsMarkedBeforeItIsAnnounced();
    void reorderingTouchesNoItem();
    void anEmptyListTakesAllBack();
    void theListIsStoredAsGiven();
    void anItemThatStaysKeepsItsFlagAsItIs();
    void idsOfNoItemArePassedOver();
    void clearingTakesAllBack();
    void clearingTakesFlagsWithoutEntriesToo();
    void clearingAListWithoutFlagsMarksNothing();
    void clearingNothingDoesNothing();

    // With the project
    void deletedItemsLeaveTheList();
    void itemsInTheTrashStayFavorites();
    void aReusedIdIsNoFavorite();
    void favoritesSurviveSaveAndReopen();
    void manyFavorites();
};

// --- One item

void TstFavorites::aFavoriteIsMadeAtEitherEnd()
{
    const auto model = modelWithTexts();
    QCOMPARE(firstWrongStep(model.get(),
                            {{3, true, true, true, {3}},
                             {4, true, true, true, {3, 4}},
                             {5, true, false, true, {5, 3, 4}},
                             {6, true, false, true, {6, 5, 3, 4}}}),
             -1);
}

void TstFavorites::aFavoriteThatIsAtItsEndAlreadyIsLeftAlone()
{
    for (const bool atEnd : {true, false}) {
        const auto alone = modelWithTexts({4});
        QCOMPARE(firstWrongStep(alone.get(), {{4, true, atEnd, false, {4}}}), -1);
    }
    const auto model = modelWithTexts({3, 4, 5});
    QCOMPARE(
        firstWrongStep(model.get(),
                       {{3, true, false, false, {3, 4, 5}}, {5, true, true, false, {3, 4, 5}}}),
        -1);
}

void TstFavorites::aFavoriteAtTheHeadOfTheListMovesToTheEnd()
{
    const auto model = modelWithTexts({3, 4, 5});
    QCOMPARE(firstWrongStep(model.get(), {{3, true, true, true, {4, 5, 3}}}), -1);
}

void TstFavorites::aFavoriteElsewhereInTheListMoves()
{
    const auto model = modelWithTexts({3, 4, 5, 6});
    QCOMPARE(firstWrongStep(model.get(),
                            {{6, true, false, true, {6, 3, 4, 5}},
                             {4, true, false, true, {4, 6, 3, 5}},
                             {6, true, true, true, {4, 3, 5, 6}},
                             {6, true, true, false, {4, 3, 5, 6}}}),
             -1);
}

void TstFavorites::aFavoriteIsTakenBack()
{
    const auto model = modelWithTexts({3, 4, 5, 6});
    QCOMPARE(firstWrongStep(model.get(),
                            {{4, false, false, true, {3, 5, 6}},
                             {3, false, false, true, {5, 6}},
                             {6, false, true, true, {5}},
                             {5, false, true, true, {}},
                             {5, true, false, true, {5}}}),
             -1);
}

void TstFavorites::takingBackWhatIsNoFavoriteTouchesTheItem()
{
    const auto model = modelWithTexts({3});
    QCOMPARE(
        firstWrongStep(model.get(), {{4, false, false, true, {3}}, {4, false, true, true, {3}}}),
        -1);
}

void TstFavorites::aFavoriteIsMarkedBeforeItIsAnnounced()
{
    const auto model = modelWithTexts();
    const SignalLog log(model.get());
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    QVERIFY(model->setFavorite(model->researchFolder(), true, false));
    QCOMPARE(log.lines(), Lines({u"modified"_s, u"data 1"_s}));
    QCOMPARE(changes.size(), 1);
    for (const int argument : {0, 1})
        QCOMPARE(changes.at(0).at(argument).toModelIndex(), model->researchFolder());
    QCOMPARE(model->data(model->researchFolder(), TVLProjectModel::FavoriteRole), QVariant(true));
}

void TstFavorites::everyItemMayBeAFavorite()
{
    const auto model = modelWithTexts();
    const QModelIndexList items = recursiveWalk(model.get(), model->rootIndex());
    for (const QModelIndex &item : items)
        QVERIFY(model->setFavorite(item, true, true));
    QCOMPARE(model->favorites(), items);
}

void TstFavorites::anItemOfAnotherProjectIsRefused()
{
    const auto model = modelWithTexts({3});
    const auto other = modelWithTexts();
    const SignalLog log(model.get());
    const SignalLog otherLog(other.get());
    for (const bool favorite : {true, false}) {
        QVERIFY(!model->setFavorite(other->index(4), favorite, true));
        QVERIFY(!model->setFavorite(other->index(3), favorite, false));
    }
    QVERIFY(!model->addToFavorites(other->index(4), true));
    QVERIFY(!model->removeFromFavorites(other->index(3)));
    QVERIFY(!model->isFavorite(other->index(3)));
    QCOMPARE(favoritesOf(model.get()), Ids{3});
    QCOMPARE(log.lines() + otherLog.lines(), Lines());
    QVERIFY(model->isSaved() && other->isSaved());
}

void TstFavorites::theRootIsNeverListedOrSaved()
{
    const TestProject project;
    const auto model = project.create();
    const SignalLog log(model.get());
    // An invalid index stands for the root, as everywhere.
    QVERIFY(model->setFavorite(QModelIndex(), true, true));
    QVERIFY(model->isFavorite(QModelIndex()));
    QCOMPARE(log.lines(), Lines{u"modified"_s});
    QCOMPARE(favoritesOf(model.get()), Ids());
    QVERIFY(model->setFavorite(model->index(3), true, true));
    QCOMPARE(favoritesOf(model.get()), Ids{3});
    QVERIFY(model->save(true));
    model->prepareToDestroy();
    const auto read = project.open();
    QVERIFY(read);
    QCOMPARE(favoritesOf(read.get()), Ids{3});
}

void TstFavorites::theRoleMakesFavoritesAtTheHead()
{
    const auto model = modelWithTexts({3, 4});
    const int role = TVLProjectModel::FavoriteRole;
    QVERIFY(model->setData(model->index(5), true, role));
    QCOMPARE(favoritesOf(model.get()), Ids({5, 3, 4}));
    QVERIFY(model->setData(model->index(4), true, role));
    QCOMPARE(favoritesOf(model.get()), Ids({4, 5, 3}));
    QCOMPARE(model->data(model->index(4), role), QVariant(true));
    QVERIFY(model->setData(model->index(5), false, role));
    QCOMPARE(favoritesOf(model.get()), Ids({4, 3}));
    QCOMPARE(model->data(model->index(5), role), QVariant(false));
    QCOMPARE(touchedIds(model.get()), Ids({4, 5}));

    TVLProjectModelTestAccess::setSaved(model.get());
    QVERIFY(model->setData(model->index(4), true, role));
    QVERIFY(model->isSaved());
}

void TstFavorites::theRoleTakesWhatIsABool_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("taken");
    QTest::newRow("bool") << QVariant(true) << true;
    QTest::newRow("number") << QVariant(1) << true;
    QTest::newRow("text") << QVariant(u"true"_s) << true;
    QTest::newRow("none") << QVariant() << false;
    QTest::newRow("colour") << QVariant(QColor(1, 2, 3)) << false;
}

void TstFavorites::theRoleTakesWhatIsABool()
{
    QFETCH(const QVariant, value);
    QFETCH(const bool, taken);
    const auto model = modelWithTexts();
    QCOMPARE(model->setData(model->index(4), value, TVLProjectModel::FavoriteRole), taken);
    QCOMPARE(model->isFavorite(model->index(4)), taken);
    QCOMPARE(model->isModified(), taken);
}

void TstFavorites::shortcutsDoTheSame()
{
    const auto model = modelWithTexts();
    QVERIFY(model->addToFavorites(model->index(3), true));
    QVERIFY(model->addToFavorites(model->index(4), true));
    QVERIFY(model->addToFavorites(model->index(5), false));
    QCOMPARE(favoritesOf(model.get()), Ids({5, 3, 4}));
    QVERIFY(model->addToFavorites(model->index(5), true));
    QCOMPARE(favoritesOf(model.get()), Ids({3, 4, 5}));
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->removeFromFavorites(model->index(4)));
    QVERIFY(!model->isFavorite(model->index(4)));
    QCOMPARE(favoritesOf(model.get()), Ids({3, 5}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
    QCOMPARE(log.lines(), Lines{u"data 4"_s});
}

void TstFavorites::aFlagWithoutAnEntryIsRepaired()
{
    for (const bool atEnd : {true, false}) {
        const auto model = modelWithTexts({3, 5});
        model->findNode(4)->mIsFavorite = true;
        const Ids expected = atEnd ? Ids({3, 5, 4}) : Ids({4, 3, 5});
        QCOMPARE(firstWrongStep(model.get(), {{4, true, atEnd, true, expected}}), -1);
    }
    // The list may be empty beside it.
    const auto model = modelWithTexts();
    model->findNode(4)->mIsFavorite = true;
    QCOMPARE(firstWrongStep(model.get(), {{4, true, true, true, {4}}}), -1);
}

void TstFavorites::anEntryWithoutAFlagIsRepaired()
{
    const auto model = modelWithTexts({3, 4, 5});
    model->findNode(4)->mIsFavorite = false;
    QCOMPARE(firstWrongStep(model.get(), {{4, true, true, true, {3, 5, 4}}}), -1);
    model->findNode(3)->mIsFavorite = false;
    QCOMPARE(firstWrongStep(model.get(), {{3, true, false, true, {3, 5, 4}}}), -1);
}

// --- The list

void TstFavorites::noFavoritesAreAnEmptyList()
{
    const auto model = modelWithTexts();
    QCOMPARE(model->favorites(), QModelIndexList());
    QCOMPARE(emptyModel()->favorites(), QModelIndexList());
    model->findNode(4)->mIsFavorite = true;
    QCOMPARE(model->favorites(), QModelIndexList());
}

void TstFavorites::favoritesComeInTheOrderOfTheList()
{
    const auto model = modelWithTexts({5, 0, 6, 3});
    QCOMPARE(model->favorites(),
             QModelIndexList({model->index(5), model->index(0), model->index(6), model->index(3)}));
    // Where the items stand is nothing to them.
    QVERIFY(model->moveToFolder(model->researchFolder(), {model->index(6)}, 0));
    QCOMPARE(favoritesOf(model.get()), Ids({5, 0, 6, 3}));
}

void TstFavorites::anEntryWithoutAFlagIsNoFavorite()
{
    const auto model = modelWithTexts({3, 4, 5});
    model->findNode(4)->mIsFavorite = false;
    QCOMPARE(favoritesOf(model.get()), Ids({3, 5}));
    QVERIFY(!model->isFavorite(model->index(4)));
}

void TstFavorites::aFlagWithoutAnEntryIsNoFavorite()
{
    const auto model = modelWithTexts({3, 5});
    model->findNode(4)->mIsFavorite = true;
    QCOMPARE(favoritesOf(model.get()), Ids({3, 5}));
    QVERIFY(model->isFavorite(model->index(4)));
}

void TstFavorites::itemsWithoutIdsAreFavoritesButNotSaved()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex item = addItem(model.get(), model->rootIndex(), TVL::Folder);
    QCOMPARE(model->nodeIdentity(item), -1);
    QVERIFY(model->addToFavorites(item, true));
    QCOMPARE(model->favorites(), QModelIndexList{item});
    // Nothing could be found by such an id, and a binder with one can't be read.
    QCOMPARE(model->favoriteIds(), Ids());
    QVERIFY(model->removeFromFavorites(item));
    QCOMPARE(model->favorites(), QModelIndexList());
}

// --- All at once

void TstFavorites::anEqualListChangesNothing()
{
    for (const Ids &ids : {Ids(), Ids({3, 5})}) {
        const auto model = modelWithTexts(ids);
        const SignalLog log(model.get());
        model->setFavorites(ids);
        QCOMPARE(favoritesOf(model.get()), ids);
        QCOMPARE(log.lines(), Lines());
        QCOMPARE(touchedIds(model.get()), Ids());
        QVERIFY(model->isSaved());
    }
}

void TstFavorites::itemsLeaveAndCome()
{
    const auto model = modelWithTexts({4, 5, 6});
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    model->setFavorites({6, 3, 4});
    QCOMPARE(favoritesOf(model.get()), Ids({6, 3, 4}));
    QCOMPARE(flagged(model.get()), Ids({3, 4, 6}));
    QCOMPARE(sorted(touchedIds(model.get())), Ids({3, 5}));
    QVERIFY(model->isModified());
    Ids announced;
    for (const QVariantList &change : changes) {
        QCOMPARE(change.at(0).toModelIndex(), change.at(1).toModelIndex());
        announced.append(model->nodeIdentity(change.at(0).toModelIndex()));
    }
    QCOMPARE(sorted(announced), Ids({3, 5}));
}

void TstFavorites::leavingAndComingIsMarkedBeforeItIsAnnounced()
{
    const auto model = modelWithTexts({4});
    Ids seen;
    connect(model.get(), &TVLProjectModel::modifiedChanged, this,
            [&] { seen = favoritesOf(model.get()); });
    const SignalLog log(model.get());
    model->setFavorites({});
    QCOMPARE(log.lines(), Lines({u"modified"_s, u"data 4"_s}));
    model->setFavorites({5});
    QCOMPARE(log.lines().mid(2), Lines{u"data 5"_s});
    TVLProjectModelTestAccess::setSaved(model.get());
    model->setFavorites({5, 6});
    QCOMPARE(log.lines().mid(3), Lines({u"modified"_s, u"data 6"_s}));
    QCOMPARE(seen, Ids({5, 6}));
}

void TstFavorites::reorderingTouchesNoItem()
{
    const auto model = modelWithTexts({3, 4, 5});
    const SignalLog log(model.get());
    model->setFavorites({5, 3, 4});
    QCOMPARE(favoritesOf(model.get()), Ids({5, 3, 4}));
    QCOMPARE(log.lines(), Lines{u"modified"_s});
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstFavorites::anEmptyListTakesAllBack()
{
    const auto model = modelWithTexts({3, 4});
    model->setFavorites({});
    QCOMPARE(favoritesOf(model.get()), Ids());
    QCOMPARE(flagged(model.get()), Ids());
    QCOMPARE(sorted(touchedIds(model.get())), Ids({3, 4}));
}

void TstFavorites::theListIsStoredAsGiven()
{
    const auto model = modelWithTexts();
    model->setFavorites({5, 3, 5});
    QCOMPARE(favoritesOf(model.get()), Ids({5, 3, 5}));
    QVERIFY(model->removeFromFavorites(model->index(5)));
    QCOMPARE(favoritesOf(model.get()), Ids{3});
}

void TstFavorites::anItemThatStaysKeepsItsFlagAsItIs()
{
    const auto model = modelWithTexts({3, 4});
    model->findNode(3)->mIsFavorite = false;
    model->setFavorites({4, 3, 5});
    QCOMPARE(flagged(model.get()), Ids({4, 5}));
    QCOMPARE(favoritesOf(model.get()), Ids({4, 5}));
    QCOMPARE(touchedIds(model.get()), Ids{5});
}

void TstFavorites::idsOfNoItemArePassedOver()
{
    const auto model = modelWithTexts();
    const SignalLog log(model.get());
    model->setFavorites({99, 3, -1, 77});
    QCOMPARE(favoritesOf(model.get()), Ids{3});
    QCOMPARE(log.lines(), Lines({u"modified"_s, u"data 3"_s}));
    QVERIFY(!model->isFavorite(model->rootIndex()));
    model->setFavorites({4});
    QCOMPARE(favoritesOf(model.get()), Ids{4});
    QCOMPARE(log.lines().size(), 4);
}

void TstFavorites::clearingTakesAllBack()
{
    const auto model = modelWithTexts({5, 3});
    const SignalLog log(model.get());
    model->clearFavorites();
    QCOMPARE(favoritesOf(model.get()), Ids());
    QCOMPARE(flagged(model.get()), Ids());
    QCOMPARE(touchedIds(model.get()), Ids({3, 5}));
    QCOMPARE(log.lines(), Lines({u"modified"_s, u"data 3"_s, u"data 5"_s}));
}

void TstFavorites::clearingTakesFlagsWithoutEntriesToo()
{
    const auto model = modelWithTexts();
    model->findNode(4)->mIsFavorite = true;
    const SignalLog log(model.get());
    model->clearFavorites();
    QCOMPARE(flagged(model.get()), Ids());
    QCOMPARE(log.lines(), Lines({u"modified"_s, u"data 4"_s}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
}

void TstFavorites::clearingAListWithoutFlagsMarksNothing()
{
    const auto model = modelWithTexts({4});
    model->findNode(4)->mIsFavorite = false;
    const SignalLog log(model.get());
    model->clearFavorites();
    QCOMPARE(log.lines(), Lines());
    QCOMPARE(touchedIds(model.get()), Ids());
    QVERIFY(model->isSaved());
    // The list is empty all the same.
    model->findNode(4)->mIsFavorite = true;
    QCOMPARE(favoritesOf(model.get()), Ids());
}

void TstFavorites::clearingNothingDoesNothing()
{
    const auto model = modelWithTexts();
    const SignalLog log(model.get());
    model->clearFavorites();
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

// --- With the project

void TstFavorites::deletedItemsLeaveTheList()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"a(b) c"_s);
    model->setFavorites({6, 5, 4, 3});
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    QCOMPARE(favoritesOf(model.get()), Ids({6, 3}));
    model->removeIndexesFromDependentStructures({model->index(6)});
    QCOMPARE(favoritesOf(model.get()), Ids{3});
}

void TstFavorites::itemsInTheTrashStayFavorites()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"a b"_s);
    model->setFavorites({5, 4});
    QVERIFY(model->moveToTrash({model->index(5)}));
    QCOMPARE(favoritesOf(model.get()), Ids({5, 4}));
    QVERIFY(model->emptyTrash());
    QCOMPARE(favoritesOf(model.get()), Ids{4});
}

void TstFavorites::aReusedIdIsNoFavorite()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"a"_s);
    model->setFavorites({4, 3});
    QVERIFY(model->removeIndex(model->index(4)));
    addTree(model.get(), model->draftFolder(), u"b"_s);
    QCOMPARE(model->title(model->index(4)), u"b"_s);
    QVERIFY(!model->isFavorite(model->index(4)));
    QCOMPARE(favoritesOf(model.get()), Ids{3});
}

void TstFavorites::favoritesSurviveSaveAndReopen()
{
    const TestProject project;
    {
        const auto model = project.create();
        addTree(model.get(), model->draftFolder(), u"a b c"_s);
        model->setFavorites({6, 4});
        QVERIFY(model->addToFavorites(model->index(5), false));
        QVERIFY(model->save(true));
        model->prepareToDestroy();
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(favoritesOf(model.get()), Ids({5, 6, 4}));
    QCOMPARE(flagged(model.get()), Ids({4, 5, 6}));
    model->clearFavorites();
    QVERIFY(model->save(false));
    model->prepareToDestroy();
    QCOMPARE(favoritesOf(project.open().get()), Ids());
}

void TstFavorites::manyFavorites()
{
    constexpr int Many = 20000;
    const auto model = blankModel().release();
    QVERIFY(model->insertRows(0, Many, model->draftFolder()));
    Ids ids = model->orderedChildIDs(model->projectNode(model->draftFolder()));
    std::reverse(ids.begin(), ids.end());
    model->setFavorites(ids);
    QCOMPARE(favoritesOf(model.get()), ids);
    const Ids half = ids.mid(Many / 2);
    model->setFavorites(half);
    QCOMPARE(favoritesOf(model.get()), half);
    QCOMPARE(flagged(model.get()), sorted(half));
    model->clearFavorites();
    QCOMPARE(favoritesOf(model.get()), Ids());
}

TVL_TEST(TstFavorites)
#include "tst_favorites.moc"
