#include "CollectionChecks.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const Lines Announced = {u"changed 2 Mine of 5"_s, u"changed of 5"_s};
const Lines AnnouncedFirst = Lines({u"modified of 5"_s}) + Announced;

/** A search for items with an x in their titles. */
TVLCollectionMetaData searchForX(int scope = TVL::AllScope,
                                 TVL::CollectionType type = TVL::SavedSearchCollection)
{
    TVLCollectionMetaData search;
    search.mId = u"search"_s;
    search.mType = type;
    search.mSearchText = u"x"_s;
    search.mSearchProperty = TVL::TitleProperty;
    search.mSearchScope = scope;
    return search;
}

/**
 * A project in which every item but one has an x in its title; the capital in front says where it
 * lies: in the Draft, in Research, in the Trash or at top level. The items with an o in their
 * titles aren't to be compiled.
 */
TestModel modelToSearch()
{
    auto model = blankModel();
    addTree(model.get(), model->draftFolder(), u"Dx1(Dx2(Dxo3) Dx4) Dn Dxo5"_s);
    addTree(model.get(), model->researchFolder(), u"Rx1:3(Rxo2)"_s);
    addTree(model.get(), model->trashFolder(), u"Tx1:3(Txo2)"_s);
    addTree(model.get(), model->rootIndex(), u"Lx1:3(Lxo2)"_s);
    const QModelIndexList items = recursiveWalk(model.get(), model->rootIndex());
    for (const QModelIndex &item : items)
        model->setIncludeInCompile(item, !model->title(item).contains(u'o'));
    TVLProjectModelTestAccess::setSaved(model.get());
    return model;
}

const QString InDraft = u"Dx1 Dx2 Dx4 Dxo3 Dxo5"_s;
const QString Outside = u"Lx1 Lxo2 Rx1 Rxo2"_s;
const QString InTrash = u"Tx1 Txo2"_s;

/** The titles of what a collection shows, sorted, as a search finds in no order. */
QString shownTitles(const TVLProjectModel *model, const TVLCollectionMetaData &collection,
                    const QModelIndexList &context = {})
{
    Lines shown;
    const QModelIndexList indexes = model->collectionIndexes(collection, context);
    for (const QModelIndex &index : indexes)
        shown.append(model->title(index));
    shown.sort();
    return shown.join(u' ');
}

QString shownTitles(const TVLProjectModel *model, int scope, const QString &contextTitles)
{
    return shownTitles(model, searchForX(scope), itemsTitled(model, contextTitles));
}

} // namespace

class TstCollectionItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Adding and removing
    void itemsAreAddedBehindThoseThatAreThere();
    void itemsAreAddedByIdentity();
    void addingAnItemThatIsInTheListChangesNothingAndEmitsNothing();
    void onlyItemsThatAreNotInTheListAreAdded();
    void whatIsNoItemIsNotAdded();
    void itemsAreAddedToListsKeptByHandOnly();
    void itemsAreRemoved();
    void itemsAreRemovedByIdentity();
    void removingNothingIsAnnouncedToo();
    void idsAreRemovedFromEveryKind();

    // Items that go
    void idsLeaveAllListsKeptByHandWithoutAWord();
    void aDeletedItemLeavesAllLists();
    void deletedGroupsLeaveWithAllBelowThem();
    void itemsInTheTrashStayInListsUntilItIsEmptied();
    void deletedItemsStayOutOfTheBinder();

    // What a collection shows
    void theBinderCollectionShowsNoItems();
    void somethingThatIsNoCollectionShowsNoItems();
    void aListKeptByHandShowsItsItemsInItsOrder();
    void aListKeptByHandLooksAtNoOption();
    void bothKindsOfSearchFind();
    void aSearchWithoutTextFindsNothing();
    void theRecordAndNotTheProjectSaysWhatIsSearched();
    void everyPropertyIsSearched_data();
    void everyPropertyIsSearched();
    void aSearchIsRunEachTime();
    void itemsThatAreGoneAreNotFound();
    void systemFoldersAreNotFound();
    void whatIsCompiledIsFiltered_data();
    void whatIsCompiledIsFiltered();

    // Where a search looks
    void aSearchLooksWhereItsBitsSay_data();
    void aSearchLooksWhereItsBitsSay();
    void aSearchOfTheDraftDoesNotLookAtTheTrashBit();
    void aSearchOfTheDraftDoesNotLookAtTheSelection();
    void theSelectionCountsWithAllBelowIt_data();
    void theSelectionCountsWithAllBelowIt();
    void aSelectionOfNothingFindsNothing();
    void aSelectionOfTheRootIsTheWholeBinder();
    void aSelectionOfAnotherProjectFindsNothing();
    void filtersAreJoined();
    void searchingMarksAndAnnouncesNothing();

    // Many items
    void manyItemsAreKeptInOrder();
};

// --- Adding and removing

void TstCollectionItems::itemsAreAddedBehindThoseThatAreThere()
{
    const auto model = modelOfFive();
    addTree(model.get(), model->draftFolder(), u"a b"_s);
    TVLProjectModelTestAccess::setSaved(model.get());
    const CollectionLog log(model.get());
    model->addToCollection(2, {model->index(5), model->index(0), model->index(4)});
    QCOMPARE(model->findCollectionByPos(2).mIds, Ids({3, 1, 5, 0, 4}));
    QCOMPARE(log.lines(), AnnouncedFirst);
    QCOMPARE(log.records(), Collections({model->findCollectionByPos(2)}));
}

void TstCollectionItems::itemsAreAddedByIdentity()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->addToCollection(u"id of Mine"_s, {model->index(0)});
    QCOMPARE(model->findCollectionByPos(2).mIds, Ids({3, 1, 0}));
    QCOMPARE(log.lines(), AnnouncedFirst);
}

void TstCollectionItems::addingAnItemThatIsInTheListChangesNothingAndEmitsNothing()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->addToCollection(2, {model->index(1)});
    model->addToCollection(u"id of Mine"_s, {model->index(3), model->index(1)});
    model->addToCollection(2, {});
    QCOMPARE(model->collections(), fiveCollections());
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionItems::onlyItemsThatAreNotInTheListAreAdded()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->addToCollection(
        2, {model->index(1), model->index(2), model->index(3), model->index(0), model->index(2)});
    QCOMPARE(model->findCollectionByPos(2).mIds, Ids({3, 1, 2, 0}));
    QCOMPARE(log.lines(), AnnouncedFirst);
}

void TstCollectionItems::whatIsNoItemIsNotAdded()
{
    const auto model = modelOfFive();
    const auto other = blankModel();
    const CollectionLog log(model.get());
    model->addToCollection(2, {QModelIndex(), model->rootIndex(), other->index(0)});
    QCOMPARE(model->collections(), fiveCollections());
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());

    const auto newer = emptyModel(TVL::FormatVersion23);
    const QModelIndex item = addItem(newer.get(), newer->rootIndex(), TVL::Folder);
    newer->setCollections(fiveCollections());
    newer->addToCollection(2, {item});
    QCOMPARE(newer->findCollectionByPos(2).mIds, Ids());
}

void TstCollectionItems::itemsAreAddedToListsKeptByHandOnly()
{
    const auto model = blankModel();
    const Collections given =
        fiveCollections() + Collections({collection(TVL::NoCollection, u"None"_s)});
    model->setCollections(given);
    const CollectionLog log(model.get());
    for (const int position : {0, 1, 3, 5}) {
        model->addToCollection(position, {model->index(0)});
        model->addToCollection(given.at(position).mId, {model->index(0)});
    }
    QCOMPARE(model->collections(), given);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionItems::itemsAreRemoved()
{
    const auto model = blankModel();
    Collections given = fiveCollections();
    given[2].mIds = {3, 1, 3, 0, 2, 3};
    given[4].mIds = {3};
    model->setCollections(given);
    const CollectionLog log(model.get());
    model->removeFromCollection(2, {model->index(0), model->index(3)});
    given[2].mIds = {1, 2};
    QCOMPARE(model->collections(), given);
    QCOMPARE(log.lines(), AnnouncedFirst);
    QCOMPARE(log.records(), Collections({given.at(2)}));
}

void TstCollectionItems::itemsAreRemovedByIdentity()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->removeFromCollection(u"id of Mine"_s, {model->index(3)});
    QCOMPARE(model->findCollectionByPos(2).mIds, Ids{1});
    QCOMPARE(log.lines(), AnnouncedFirst);
}

void TstCollectionItems::removingNothingIsAnnouncedToo()
{
    const auto model = modelOfFive();
    const CollectionLog log(model.get());
    model->removeFromCollection(2, {model->index(0)});
    model->removeFromCollection(2, {});
    QCOMPARE(model->collections(), fiveCollections());
    QCOMPARE(log.lines(), AnnouncedFirst + Announced);
}

void TstCollectionItems::idsAreRemovedFromEveryKind()
{
    const auto model = blankModel();
    Collections given = fiveCollections();
    for (TVLCollectionMetaData &each : given)
        each.mIds = {3, 1};
    model->setCollections(given);
    for (int position = 0; position < 5; ++position)
        model->removeFromCollection(position, {model->index(3)});
    for (TVLCollectionMetaData &each : given)
        each.mIds = {1};
    QCOMPARE(model->collections(), given);
}

// --- Items that go

void TstCollectionItems::idsLeaveAllListsKeptByHandWithoutAWord()
{
    const auto model = blankModel();
    Collections given = fiveCollections();
    for (TVLCollectionMetaData &each : given)
        each.mIds = {0, 3, 1, 3};
    model->setCollections(given);
    const CollectionLog log(model.get());
    model->removeNodeIdsFromCollections({3, 0, 77});
    for (const int position : {2, 4})
        given[position].mIds = {1};
    QCOMPARE(model->collections(), given);
    model->removeNodeIdsFromCollections({});
    QCOMPARE(model->collections(), given);
    QCOMPARE(log.lines(), Lines());
    QVERIFY(model->isSaved());
}

void TstCollectionItems::aDeletedItemLeavesAllLists()
{
    const TestProject project;
    const auto model = project.create();
    Collections given = fiveCollections();
    given[4].mIds = {0, 3, 2};
    model->setCollections(given);
    QSignalSpy changes(model.get(), qOverload<>(&TVLProjectModel::collectionChanged));
    QVERIFY(model->removeIndex(model->index(3)));
    QCOMPARE(model->findCollectionByPos(2).mIds, Ids{1});
    QCOMPARE(model->findCollectionByPos(4).mIds, Ids({0, 2}));
    QCOMPARE(changes.size(), 0);
}

void TstCollectionItems::deletedGroupsLeaveWithAllBelowThem()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"a(b(c) d) e"_s);
    const QString identity =
        model->insertCollection(2, itemsTitled(model.get(), u"a b c d e"_s), u"Mine"_s, QColor());
    const int kept = model->nodeIdentity(itemTitled(model.get(), u"e"_s));
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    QCOMPARE(model->findCollectionById(identity).mIds, Ids{kept});
}

void TstCollectionItems::itemsInTheTrashStayInListsUntilItIsEmptied()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"a(b) c"_s);
    const QModelIndexList items = itemsTitled(model.get(), u"a b c"_s);
    const QString identity = model->insertCollection(2, items, u"Mine"_s, QColor());
    const Ids ids = model->findCollectionById(identity).mIds;
    QVERIFY(model->moveToTrash({itemTitled(model.get(), u"a"_s)}));
    QCOMPARE(model->findCollectionById(identity).mIds, ids);
    QVERIFY(model->emptyTrash());
    QCOMPARE(model->findCollectionById(identity).mIds, ids.mid(2));
}

void TstCollectionItems::deletedItemsStayOutOfTheBinder()
{
    const TestProject project;
    auto model = project.create();
    model->setCollections(fiveCollections());
    QVERIFY(model->removeIndex(model->index(3)));
    // The next item gets the id, which must not bring it into the list.
    const QModelIndex next = addItem(model.get(), model->draftFolder(), TVL::Text);
    QCOMPARE(model->nodeIdentity(next), 3);
    QVERIFY(model->save(true));
    model->prepareToDestroy();
    model = project.open();
    QVERIFY(model);
    QCOMPARE(model->findCollectionByTitle(u"Mine"_s).mIds, Ids{1});
}

// --- What a collection shows

void TstCollectionItems::theBinderCollectionShowsNoItems()
{
    const auto model = modelToSearch();
    TVLCollectionMetaData binder = searchForX(TVL::AllScope, TVL::BinderCollection);
    binder.mIds = {3, 0};
    QCOMPARE(model->collectionIndexes(binder), QModelIndexList());
    QCOMPARE(model->collectionIndexes(model->binderCollection()), QModelIndexList());
}

void TstCollectionItems::somethingThatIsNoCollectionShowsNoItems()
{
    const auto model = modelToSearch();
    TVLCollectionMetaData none = searchForX(TVL::AllScope, TVL::NoCollection);
    none.mIds = {3, 0};
    QCOMPARE(model->collectionIndexes(none), QModelIndexList());
    none.mType = TVL::CollectionType(5);
    QCOMPARE(model->collectionIndexes(none), QModelIndexList());
}

void TstCollectionItems::aListKeptByHandShowsItsItemsInItsOrder()
{
    const auto model = modelToSearch();
    const TVLCollectionMetaData list =
        collection(TVL::ArbitraryCollection, u"Mine"_s, {3, 99, 0, -1, 2, 77, 3});
    QCOMPARE(model->collectionIndexes(list),
             QModelIndexList({model->index(3), model->index(0), model->index(2), model->index(3)}));
    QCOMPARE(model->collectionIndexes(collection(TVL::ArbitraryCollection, u"Empty"_s)),
             QModelIndexList());
}

void TstCollectionItems::aListKeptByHandLooksAtNoOption()
{
    const auto model = modelToSearch();
    TVLCollectionMetaData list = searchForX(
        TVL::SelectionScope | TVL::DraftScope | TVL::ExcludeTrashScope, TVL::ArbitraryCollection);
    list.mSearchCompile = TVL::IncludedInCompile;
    list.mIds = model->nodeIdentityList(itemsTitled(model.get(), u"Txo2 Rxo2"_s));
    QCOMPARE(shownTitles(model.get(), list, {model->researchFolder()}), u"Rxo2 Txo2"_s);
}

void TstCollectionItems::bothKindsOfSearchFind()
{
    const auto model = modelToSearch();
    for (const auto type : {TVL::RecentSearchCollection, TVL::SavedSearchCollection}) {
        QCOMPARE(shownTitles(model.get(), searchForX(TVL::AllScope, type)),
                 InDraft + u' ' + Outside + u' ' + InTrash);
    }
}

void TstCollectionItems::aSearchWithoutTextFindsNothing()
{
    const auto model = modelToSearch();
    TVLCollectionMetaData search = searchForX();
    for (const QString &text : {QString(), u""_s}) {
        search.mSearchText = text;
        for (const auto searchOperator : {TVL::ExactOperator, TVL::RegExpOperator}) {
            search.mSearchOperator = searchOperator;
            QCOMPARE(model->collectionIndexes(search), QModelIndexList());
        }
    }
}

void TstCollectionItems::theRecordAndNotTheProjectSaysWhatIsSearched()
{
    const auto model = modelToSearch();
    TVLCollectionMetaData stored = searchForX();
    model->insertCollection(2, stored);
    stored.mSearchText = u"Dn"_s;
    QCOMPARE(shownTitles(model.get(), stored), u"Dn"_s);
    // Ids in the record of a search are nothing to it.
    stored.mIds = {0, 3};
    QCOMPARE(shownTitles(model.get(), stored), u"Dn"_s);
}

void TstCollectionItems::everyPropertyIsSearched_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("title") << int(TVL::TitleProperty) << u"one"_s << u"one"_s;
    QTest::newRow("text") << int(TVL::TextProperty) << u"one text"_s << u"one"_s;
    QTest::newRow("notes") << int(TVL::NotesProperty) << u"two note"_s << u"two"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisProperty) << u"card"_s << u"one two"_s;
    QTest::newRow("keywords") << int(TVL::KeywordsProperty) << u"storm"_s << u"two"_s;
    QTest::newRow("label") << int(TVL::LabelProperty) << u"chapter"_s << u"one"_s;
    QTest::newRow("status") << int(TVL::StatusProperty) << u"done"_s << u"two"_s;
    QTest::newRow("all") << int(TVL::AllProperties) << u"chapter"_s << u"one"_s;
    QTest::newRow("another") << int(TVL::NotesProperty) << u"chapter"_s << QString();
}

void TstCollectionItems::everyPropertyIsSearched()
{
    QFETCH(const int, property);
    QFETCH(const QString, text);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    const QModelIndex one = addTextItem(model.get(), model->draftFolder(), u"one"_s);
    const QModelIndex two = addTextItem(model.get(), model->draftFolder(), u"two"_s);
    QVERIFY(model->setLabelIdentity(one, 1));
    QVERIFY(model->setStatusIdentity(two, 5));
    QVERIFY(model->setKeywords(two, {u"storm"_s}));
    TVLCollectionMetaData search = searchForX();
    search.mSearchProperty = TVL::DocumentProperty(property);
    search.mSearchText = text;
    QCOMPARE(shownTitles(model.get(), search), expected);
}

void TstCollectionItems::aSearchIsRunEachTime()
{
    const auto model = modelToSearch();
    const QModelIndex item = itemTitled(model.get(), u"Dn"_s);
    TVLCollectionMetaData search = searchForX(TVL::DraftScope);
    QCOMPARE(shownTitles(model.get(), search), InDraft);
    QVERIFY(model->setTitle(item, u"Dx6"_s));
    QCOMPARE(shownTitles(model.get(), search), u"Dx1 Dx2 Dx4 Dx6 Dxo3 Dxo5"_s);

    search.mSearchProperty = TVL::TextProperty;
    QCOMPARE(shownTitles(model.get(), search), QString());
    typeText(model.get(), item, u"An axe."_s);
    QCOMPARE(shownTitles(model.get(), search), u"Dx6"_s);
}

void TstCollectionItems::itemsThatAreGoneAreNotFound()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"Dx1(Dx2) Dx3"_s);
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"Dx1"_s)));
    QCOMPARE(shownTitles(model.get(), searchForX()), u"Dx3"_s);
    QCOMPARE(model->collectionIndexes(searchForX()),
             QModelIndexList{itemTitled(model.get(), u"Dx3"_s)});
}

void TstCollectionItems::systemFoldersAreNotFound()
{
    const auto model = modelToSearch();
    for (const QModelIndex &folder :
         {model->draftFolder(), model->researchFolder(), model->trashFolder()})
        QVERIFY(model->setTitle(folder, u"x"_s));
    // Inside the Draft too: its type makes a folder a system folder, wherever it is.
    QVERIFY(model->setType(itemTitled(model.get(), u"Dx4"_s), TVL::TrashFolder));
    QCOMPARE(shownTitles(model.get(), searchForX(TVL::DraftScope)), u"Dx1 Dx2 Dxo3 Dxo5"_s);
    QVERIFY(!shownTitles(model.get(), searchForX()).split(u' ').contains(u"x"_s));
}

void TstCollectionItems::whatIsCompiledIsFiltered_data()
{
    QTest::addColumn<int>("filter");
    QTest::addColumn<QString>("expected");
    QTest::newRow("any") << int(TVL::AnyCompile)
                         << u"Dx1 Dx2 Dx4 Dxo3 Dxo5 Lx1 Lxo2 Rx1 Rxo2 Tx1 Txo2"_s;
    QTest::newRow("included") << int(TVL::IncludedInCompile) << u"Dx1 Dx2 Dx4 Lx1 Rx1 Tx1"_s;
    QTest::newRow("excluded") << int(TVL::ExcludedFromCompile) << u"Dxo3 Dxo5 Lxo2 Rxo2 Txo2"_s;
    QTest::newRow("of no meaning") << 3 << u"Dx1 Dx2 Dx4 Dxo3 Dxo5 Lx1 Lxo2 Rx1 Rxo2 Tx1 Txo2"_s;
}

void TstCollectionItems::whatIsCompiledIsFiltered()
{
    QFETCH(const int, filter);
    QFETCH(const QString, expected);
    const auto model = modelToSearch();
    TVLCollectionMetaData search = searchForX();
    search.mSearchCompile = TVL::SearchCompile(filter);
    QCOMPARE(shownTitles(model.get(), search), expected);
}

// --- Where a search looks

void TstCollectionItems::aSearchLooksWhereItsBitsSay_data()
{
    QTest::addColumn<int>("scope");
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char *name, int scope, const QString &context,
                        const QString &expected) {
        QTest::newRow(name) << scope << context << expected;
    };
    const QString selected = u"Dx1 Rx1 Tx1"_s;
    const QString everywhere = InDraft + u' ' + Outside + u' ' + InTrash;
    add("everywhere", 0, QString(), everywhere);
    add("everywhere with a selection", 0, selected, everywhere);
    add("selection", 1, selected, u"Dx1 Dx2 Dx4 Dxo3 Rx1 Rxo2 Tx1 Txo2"_s);
    add("draft", 2, QString(), InDraft);
    add("outside the trash", 4, QString(), InDraft + u' ' + Outside);
    add("outside the trash with a selection", 4, selected, InDraft + u' ' + Outside);
    add("selection outside the trash", 5, selected, u"Dx1 Dx2 Dx4 Dxo3 Rx1 Rxo2"_s);
    add("another bit", 8, selected, everywhere);
    add("another bit and selection", 9, u"Rx1"_s, u"Rx1 Rxo2"_s);
}

void TstCollectionItems::aSearchLooksWhereItsBitsSay()
{
    QFETCH(const int, scope);
    QFETCH(const QString, context);
    QFETCH(const QString, expected);
    const auto model = modelToSearch();
    QCOMPARE(shownTitles(model.get(), scope, context), expected);
}

void TstCollectionItems::aSearchOfTheDraftDoesNotLookAtTheTrashBit()
{
    const auto model = modelToSearch();
    const int draftAndTrash = TVL::DraftScope | TVL::ExcludeTrashScope;
    QCOMPARE(shownTitles(model.get(), draftAndTrash, QString()), InDraft);
    // The top level is neither in the Draft nor in the Trash.
    QVERIFY(!shownTitles(model.get(), draftAndTrash, QString()).contains(u'L'));
    QVERIFY(shownTitles(model.get(), TVL::ExcludeTrashScope, QString()).contains(u'L'));
}

void TstCollectionItems::aSearchOfTheDraftDoesNotLookAtTheSelection()
{
    const auto model = modelToSearch();
    const int draftAndSelection = TVL::DraftScope | TVL::SelectionScope;
    for (const QString &context : {QString(), u"Dx2"_s, u"Rx1"_s}) {
        QCOMPARE(shownTitles(model.get(), draftAndSelection, context), InDraft);
        QCOMPARE(shownTitles(model.get(), draftAndSelection | TVL::ExcludeTrashScope, context),
                 InDraft);
    }
}

void TstCollectionItems::theSelectionCountsWithAllBelowIt_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("expected");
    QTest::newRow("leaf") << u"Dxo5"_s << u"Dxo5"_s;
    QTest::newRow("group") << u"Dx2"_s << u"Dx2 Dxo3"_s;
    QTest::newRow("deep") << u"Dx1"_s << u"Dx1 Dx2 Dx4 Dxo3"_s;
    QTest::newRow("in one another") << u"Dx2 Dx1 Dx2"_s << u"Dx1 Dx2 Dx4 Dxo3"_s;
    QTest::newRow("one that isn't found itself") << u"Dn"_s << QString();
    QTest::newRow("several") << u"Dx4 Lxo2"_s << u"Dx4 Lxo2"_s;
    QTest::newRow("system folder") << u"Research"_s << u"Rx1 Rxo2"_s;
}

void TstCollectionItems::theSelectionCountsWithAllBelowIt()
{
    QFETCH(const QString, context);
    QFETCH(const QString, expected);
    const auto model = modelToSearch();
    QCOMPARE(shownTitles(model.get(), TVL::SelectionScope, context), expected);
}

void TstCollectionItems::aSelectionOfNothingFindsNothing()
{
    const auto model = modelToSearch();
    QCOMPARE(model->collectionIndexes(searchForX(TVL::SelectionScope)), QModelIndexList());
}

void TstCollectionItems::aSelectionOfTheRootIsTheWholeBinder()
{
    const auto model = modelToSearch();
    for (const QModelIndex &root : {QModelIndex(), model->rootIndex()}) {
        QCOMPARE(shownTitles(model.get(), searchForX(TVL::SelectionScope), {root}),
                 InDraft + u' ' + Outside + u' ' + InTrash);
    }
}

void TstCollectionItems::aSelectionOfAnotherProjectFindsNothing()
{
    const auto model = modelToSearch();
    const auto other = modelToSearch();
    QCOMPARE(model->collectionIndexes(searchForX(TVL::SelectionScope), {other->draftFolder()}),
             QModelIndexList());
}

void TstCollectionItems::filtersAreJoined()
{
    const auto model = modelToSearch();
    const QModelIndexList selected = itemsTitled(model.get(), u"Dx1 Rx1 Tx1"_s);
    TVLCollectionMetaData search = searchForX(TVL::SelectionScope | TVL::ExcludeTrashScope);
    search.mSearchCompile = TVL::ExcludedFromCompile;
    QCOMPARE(shownTitles(model.get(), search, selected), u"Dxo3 Rxo2"_s);
    search.mSearchScope = TVL::DraftScope;
    QCOMPARE(shownTitles(model.get(), search), u"Dxo3 Dxo5"_s);
    search.mSearchScope = TVL::ExcludeTrashScope;
    search.mSearchCompile = TVL::IncludedInCompile;
    QCOMPARE(shownTitles(model.get(), search), u"Dx1 Dx2 Dx4 Lx1 Rx1"_s);
}

void TstCollectionItems::searchingMarksAndAnnouncesNothing()
{
    const auto model = modelToSearch();
    const CollectionLog log(model.get());
    const SignalLog others(model.get());
    QVERIFY(!shownTitles(model.get(), searchForX()).isEmpty());
    QCOMPARE(log.lines(), Lines());
    QCOMPARE(others.lines(), Lines());
    QVERIFY(model->isSaved());
}

// --- Many items

void TstCollectionItems::manyItemsAreKeptInOrder()
{
    constexpr int Many = 20000;
    const auto model = blankModel();
    QVERIFY(model->insertRows(0, Many, model->draftFolder()));
    QModelIndexList items;
    for (int row = Many - 1; row >= 0; --row)
        items.append(model->index(row, 0, model->draftFolder()));
    model->setCollections(fiveCollections());
    model->addToCollection(4, items);
    const TVLCollectionMetaData full = model->findCollectionByPos(4);
    QCOMPARE(full.mIds, model->nodeIdentityList(items));
    QCOMPARE(model->collectionIndexes(full), items);
    model->removeFromCollection(4, items.mid(0, Many - 2));
    QCOMPARE(model->collectionIndexes(model->findCollectionByPos(4)), items.mid(Many - 2));
    QCOMPARE(model->findCollectionById(model->insertCollection(5, items, u"All"_s, QColor())).mIds,
             Ids(full.mIds.crbegin(), full.mIds.crend()));
}

TVL_TEST(TstCollectionItems)
#include "tst_collectionitems.moc"
