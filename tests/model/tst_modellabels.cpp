#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QColor Blue = QColor(192, 192, 255);
const QColor Red = QColor(255, 192, 192);
const QColor Green = QColor(0, 255, 0);

const TVLLabel NoLabel = {-1, u"No Label"_s, QColor()};
const TVLLabel Concept = {0, u"Concept"_s, Blue};
const TVLLabel Chapter = {1, u"Chapter"_s, Red};
const TVLStatusItem NoStatus = {-1, u"No Status"_s};

using Ids = QList<int>;

/**
 * A blank project whose Draft holds the items 3 to 7: 3 and 4 with label and status 0, 5 and 6
 * with 1, and 7 without. Its labels and status items are one of none and the ids 0 and 1.
 */
TestModel labelledModel()
{
    auto model = blankModel();
    model->insertRows(0, 4, model->draftFolder());
    model->setStatusItems({NoStatus, {0, u"To Do"_s}, {1, u"Done"_s}});
    const int used[] = {0, 0, 1, 1, -1};
    for (int i = 0; i < 5; ++i) {
        TVLProjectNode *node = model->findNode(3 + i);
        node->mLabelId = used[i];
        node->mStatusId = used[i];
    }
    makeAllOld(model.get());
    return model;
}

Ids labelIds(const TVLProjectModel *model)
{
    Ids ids;
    for (int id = 3; id <= 7; ++id)
        ids.append(model->labelIdentity(model->index(id)));
    return ids;
}

Ids statusIds(const TVLProjectModel *model)
{
    Ids ids;
    for (int id = 3; id <= 7; ++id)
        ids.append(model->statusIdentity(model->index(id)));
    return ids;
}

QStringList labelDataLines(const Ids &ids)
{
    QStringList lines;
    for (const int id : ids)
        lines.append(u"data %1"_s.arg(id));
    return lines;
}

Ids sortedIds(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

} // namespace

class TstModelLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingLabelsTidiesTheList_data();
    void settingLabelsTidiesTheList();
    void settingStatusItemsTidiesTheList_data();
    void settingStatusItemsTidiesTheList();
    void settingLabelsTouchesTheUsersOfWhatChanged_data();
    void settingLabelsTouchesTheUsersOfWhatChanged();
    void settingStatusItemsTouchesTheUsersOfWhatChanged_data();
    void settingStatusItemsTouchesTheUsersOfWhatChanged();
    void removingTheDefaultLabelResetsIt();
    void removingTheDefaultStatusItemResetsIt();
    void usersOfANegativeIdOtherThanMinusOneAreReset();
    void staleIdsStayUntilTheirLabelGoes();
    void labelsAndStatusItemsDoNotMeddle();
    void labelsAreStoredBeforeTheUsersAreAnnounced();
    void usersAreInPlaceWhenTheyAreAnnounced();
    void usersOfAStatusItemAreInPlaceWhenTheyAreAnnounced();
    void itemsWithoutIdsAreUsersToo();
    void aDefaultOutsideTheNewListIsReset();
    void theOrderOfSignalsIsUsersListModified();
    void settingTheSameLabelsStillMarksAndAnnounces();
    void theDefaultLabelIsGivenToNewItems();
    void theDefaultLabelIsSet_data();
    void theDefaultLabelIsSet();
    void theDefaultIsTakenBack();
    void theDefaultStatusItemIsSet_data();
    void theDefaultStatusItemIsSet();
    void theTitleOfLabelsIsSet();
    void theTitleOfStatusItemsIsSet();
    void keywordsOfAnItemAreSet();
    void theSameColorInAnotherNotationIsNoChange_data();
    void theSameColorInAnotherNotationIsNoChange();
};

void TstModelLabels::settingLabelsTidiesTheList_data()
{
    QTest::addColumn<QList<TVLLabel>>("given");
    QTest::addColumn<QList<TVLLabel>>("kept");
    const TVLLabel other = {3, u"Other"_s, Green};
    const TVLLabel again = {3, u"Again"_s, Blue};
    const TVLLabel noneByAnotherName = {-1, u"Nothing"_s, QColor()};
    const TVLLabel noneByAnotherId = {-7, u"Nothing"_s, QColor()};
    using List = QList<TVLLabel>;
    QTest::newRow("empty") << List() << List({NoLabel});
    QTest::newRow("complete") << List({NoLabel, Chapter, other}) << List({NoLabel, Chapter, other});
    QTest::newRow("out of order") << List({other, Chapter, NoLabel})
                                  << List({other, Chapter, NoLabel});
    QTest::newRow("without none") << List({other, Chapter}) << List({NoLabel, other, Chapter});
    QTest::newRow("an id twice") << List({NoLabel, other, again}) << List({NoLabel, other});
    QTest::newRow("an id twice, without none")
        << List({other, again, Chapter, again}) << List({NoLabel, other, Chapter});
    QTest::newRow("none by another name")
        << List({Chapter, noneByAnotherName}) << List({Chapter, noneByAnotherName});
    QTest::newRow("none by another id")
        << List({Chapter, noneByAnotherId}) << List({Chapter, noneByAnotherId});
    QTest::newRow("none twice") << List({NoLabel, noneByAnotherName}) << List({NoLabel});
    QTest::newRow("equal titles") << List({NoLabel, {5, u"x"_s, Red}, {6, u"x"_s, Red}})
                                  << List({NoLabel, {5, u"x"_s, Red}, {6, u"x"_s, Red}});
}

void TstModelLabels::settingLabelsTidiesTheList()
{
    QFETCH(const QList<TVLLabel>, given);
    QFETCH(const QList<TVLLabel>, kept);
    const auto model = blankModel();
    model->setLabels(given);
    QCOMPARE(model->labels(), kept);
}

void TstModelLabels::settingStatusItemsTidiesTheList_data()
{
    QTest::addColumn<QList<TVLStatusItem>>("given");
    QTest::addColumn<QList<TVLStatusItem>>("kept");
    const TVLStatusItem done = {1, u"Done"_s};
    const TVLStatusItem other = {3, u"Other"_s};
    const TVLStatusItem again = {3, u"Again"_s};
    const TVLStatusItem noneByAnotherName = {-1, u"Nothing"_s};
    using List = QList<TVLStatusItem>;
    QTest::newRow("empty") << List() << List({NoStatus});
    QTest::newRow("complete") << List({NoStatus, done, other}) << List({NoStatus, done, other});
    QTest::newRow("out of order") << List({other, done, NoStatus}) << List({other, done, NoStatus});
    QTest::newRow("without none") << List({other, done}) << List({NoStatus, other, done});
    QTest::newRow("an id twice") << List({NoStatus, other, again}) << List({NoStatus, other});
    QTest::newRow("an id twice, without none")
        << List({other, again, done, again}) << List({NoStatus, other, done});
    QTest::newRow("none by another name")
        << List({done, noneByAnotherName}) << List({done, noneByAnotherName});
    QTest::newRow("none by another id")
        << List({done, {-7, u"Nothing"_s}}) << List({done, {-7, u"Nothing"_s}});
    QTest::newRow("none twice") << List({NoStatus, noneByAnotherName}) << List({NoStatus});
}

void TstModelLabels::settingStatusItemsTidiesTheList()
{
    QFETCH(const QList<TVLStatusItem>, given);
    QFETCH(const QList<TVLStatusItem>, kept);
    const auto model = blankModel();
    model->setStatusItems(given);
    QCOMPARE(model->statusItems(), kept);
}

void TstModelLabels::settingLabelsTouchesTheUsersOfWhatChanged_data()
{
    QTest::addColumn<QList<TVLLabel>>("given");
    QTest::addColumn<Ids>("idsAfter");
    QTest::addColumn<Ids>("touched");
    using List = QList<TVLLabel>;
    const Ids before = {0, 0, 1, 1, -1};
    QTest::newRow("same") << List({NoLabel, Concept, Chapter}) << before << Ids();
    QTest::newRow("another order") << List({Chapter, NoLabel, Concept}) << before << Ids();
    QTest::newRow("one more") << List({NoLabel, Concept, Chapter, {2, u"x"_s, Red}}) << before
                              << Ids();
    QTest::newRow("one renamed") << List({NoLabel, Concept, {1, u"Scene"_s, Red}}) << before
                                 << Ids({5, 6});
    QTest::newRow("one recoloured")
        << List({NoLabel, {0, u"Concept"_s, Green}, Chapter}) << before << Ids({3, 4});
    QTest::newRow("one without colour")
        << List({NoLabel, {0, u"Concept"_s, QColor()}, Chapter}) << before << Ids({3, 4});
    QTest::newRow("one removed") << List({NoLabel, Chapter}) << Ids({-1, -1, 1, 1, -1})
                                 << Ids({3, 4});
    QTest::newRow("one removed, one renamed")
        << List({NoLabel, {1, u"Scene"_s, Red}}) << Ids({-1, -1, 1, 1, -1}) << Ids({3, 4, 5, 6});
    QTest::newRow("all removed") << List() << Ids({-1, -1, -1, -1, -1}) << Ids({3, 4, 5, 6});
    // Also 0 to 2, the system folders, have no label.
    QTest::newRow("none renamed") << List({{-1, u"Nothing"_s, QColor()}, Concept, Chapter})
                                  << before << Ids({0, 1, 2, 7});
    QTest::newRow("a later double doesn't count")
        << List({NoLabel, Concept, Chapter, {1, u"Scene"_s, Green}}) << before << Ids();
    QTest::newRow("an earlier double counts")
        << List({NoLabel, Concept, {1, u"Scene"_s, Green}, Chapter}) << before << Ids({5, 6});
    QTest::newRow("titles exchanged")
        << List({NoLabel, {0, u"Chapter"_s, Blue}, {1, u"Concept"_s, Red}}) << before
        << Ids({3, 4, 5, 6});
    QTest::newRow("ids exchanged")
        << List({NoLabel, {1, u"Concept"_s, Blue}, {0, u"Chapter"_s, Red}}) << before
        << Ids({3, 4, 5, 6});
    QTest::newRow("none removed") << List({Concept, Chapter}) << before << Ids();
    QTest::newRow("none with another id")
        << List({{-7, u"Nothing"_s, QColor()}, Concept, Chapter}) << before << Ids({0, 1, 2, 7});
}

void TstModelLabels::settingLabelsTouchesTheUsersOfWhatChanged()
{
    QFETCH(const QList<TVLLabel>, given);
    QFETCH(const Ids, idsAfter);
    QFETCH(const Ids, touched);
    const auto model = labelledModel();
    QSignalSpy changed(model.get(), &TVLProjectModel::dataChanged);
    model->setLabels(given);
    QCOMPARE(labelIds(model.get()), idsAfter);
    QCOMPARE(sortedIds(touchedIds(model.get())), touched);
    Ids announced;
    for (const QList<QVariant> &arguments : changed) {
        QCOMPARE(arguments.at(0), arguments.at(1));
        announced.append(model->nodeIdentity(arguments.at(0).toModelIndex()));
    }
    QCOMPARE(sortedIds(announced), touched);
    QCOMPARE(statusIds(model.get()), Ids({0, 0, 1, 1, -1}));
}

void TstModelLabels::settingStatusItemsTouchesTheUsersOfWhatChanged_data()
{
    QTest::addColumn<QList<TVLStatusItem>>("given");
    QTest::addColumn<Ids>("idsAfter");
    QTest::addColumn<Ids>("touched");
    using List = QList<TVLStatusItem>;
    const TVLStatusItem toDo = {0, u"To Do"_s};
    const TVLStatusItem done = {1, u"Done"_s};
    const Ids before = {0, 0, 1, 1, -1};
    QTest::newRow("same") << List({NoStatus, toDo, done}) << before << Ids();
    QTest::newRow("another order") << List({done, toDo, NoStatus}) << before << Ids();
    QTest::newRow("one more") << List({NoStatus, toDo, done, {2, u"x"_s}}) << before << Ids();
    QTest::newRow("one renamed") << List({NoStatus, toDo, {1, u"Over"_s}}) << before << Ids({5, 6});
    QTest::newRow("one removed") << List({NoStatus, done}) << Ids({-1, -1, 1, 1, -1})
                                 << Ids({3, 4});
    QTest::newRow("all removed") << List() << Ids({-1, -1, -1, -1, -1}) << Ids({3, 4, 5, 6});
    QTest::newRow("none renamed") << List({{-1, u"Nothing"_s}, toDo, done}) << before
                                  << Ids({0, 1, 2, 7});
    QTest::newRow("a later double doesn't count")
        << List({NoStatus, toDo, done, {1, u"Over"_s}}) << before << Ids();
    QTest::newRow("titles exchanged")
        << List({NoStatus, {0, u"Done"_s}, {1, u"To Do"_s}}) << before << Ids({3, 4, 5, 6});
    QTest::newRow("none with another id")
        << List({{-7, u"Nothing"_s}, toDo, done}) << before << Ids({0, 1, 2, 7});
}

void TstModelLabels::settingStatusItemsTouchesTheUsersOfWhatChanged()
{
    QFETCH(const QList<TVLStatusItem>, given);
    QFETCH(const Ids, idsAfter);
    QFETCH(const Ids, touched);
    const auto model = labelledModel();
    QSignalSpy changed(model.get(), &TVLProjectModel::dataChanged);
    model->setStatusItems(given);
    QCOMPARE(statusIds(model.get()), idsAfter);
    QCOMPARE(sortedIds(touchedIds(model.get())), touched);
    QCOMPARE(changed.count(), touched.size());
    QCOMPARE(labelIds(model.get()), Ids({0, 0, 1, 1, -1}));
}

void TstModelLabels::removingTheDefaultLabelResetsIt()
{
    const auto model = blankModel();
    model->setDefaultLabelIdentity(1);
    model->setLabels({NoLabel, Chapter});
    QCOMPARE(model->defaultLabelIdentity(), 1);
    model->setLabels({NoLabel, {1, u"Renamed"_s, Green}});
    QCOMPARE(model->defaultLabelIdentity(), 1);
    model->setLabels({NoLabel, Concept});
    QCOMPARE(model->defaultLabelIdentity(), -1);
}

void TstModelLabels::removingTheDefaultStatusItemResetsIt()
{
    const auto model = blankModel();
    model->setDefaultStatusIdentity(5);
    model->setStatusItems({NoStatus, {5, u"Renamed"_s}});
    QCOMPARE(model->defaultStatusIdentity(), 5);
    model->setStatusItems({NoStatus, {4, u"x"_s}});
    QCOMPARE(model->defaultStatusIdentity(), -1);
}

void TstModelLabels::usersOfANegativeIdOtherThanMinusOneAreReset()
{
    const auto model = labelledModel();
    model->setLabels({NoLabel, {-5, u"Odd"_s, Red}});
    model->findNode(7)->mLabelId = -5;
    makeAllOld(model.get());
    model->setLabels({NoLabel});
    QCOMPARE(model->labelIdentity(model->index(7)), -1);
    QVERIFY(isTouched(model.get(), model->index(7)));
}

void TstModelLabels::staleIdsStayUntilTheirLabelGoes()
{
    // An id that never had a label is none of the changed ones.
    const auto model = labelledModel();
    model->findNode(7)->mLabelId = 99;
    model->setLabels({NoLabel, Concept, Chapter});
    QCOMPARE(model->labelIdentity(model->index(7)), 99);
    QVERIFY(!isTouched(model.get(), model->index(7)));
}

void TstModelLabels::labelsAndStatusItemsDoNotMeddle()
{
    const auto model = labelledModel();
    const QList<TVLStatusItem> items = model->statusItems();
    model->setLabels({});
    QCOMPARE(model->statusItems(), items);
    model->setLabels({NoLabel, Concept, Chapter, {7, u"x"_s, Red}});
    model->setStatusItems({});
    QCOMPARE(model->labels().size(), 4);
}

void TstModelLabels::labelsAreStoredBeforeTheUsersAreAnnounced()
{
    const auto model = labelledModel();
    const QList<TVLLabel> expected = {NoLabel, {0, u"Renamed"_s, Blue}};
    int calls = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&] {
        ++calls;
        QCOMPARE(model->labels(), expected);
    });
    model->setLabels(expected);
    QCOMPARE(calls, 4);
}

void TstModelLabels::usersAreInPlaceWhenTheyAreAnnounced()
{
    const auto model = labelledModel();
    model->setDefaultLabelIdentity(0);
    int users = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&](const QModelIndex &index) {
        ++users;
        QCOMPARE(model->labelIdentity(index), -1);
        QVERIFY(isTouched(model.get(), index));
        QCOMPARE(model->defaultLabelIdentity(), -1);
    });
    int lists = 0;
    connect(model.get(), &TVLProjectModel::labelsChanged, this, [&] {
        ++lists;
        QCOMPARE(users, 2);
        QCOMPARE(labelIds(model.get()), Ids({-1, -1, 1, 1, -1}));
    });
    model->setLabels({NoLabel, Chapter});
    QCOMPARE(lists, 1);
}

void TstModelLabels::usersOfAStatusItemAreInPlaceWhenTheyAreAnnounced()
{
    const auto model = labelledModel();
    model->setDefaultStatusIdentity(0);
    const QList<TVLStatusItem> expected = {NoStatus, {1, u"Done"_s}};
    int users = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&](const QModelIndex &index) {
        ++users;
        QCOMPARE(model->statusItems(), expected);
        QCOMPARE(model->statusIdentity(index), -1);
        QVERIFY(isTouched(model.get(), index));
        QCOMPARE(model->defaultStatusIdentity(), -1);
    });
    int lists = 0;
    connect(model.get(), &TVLProjectModel::statusItemsChanged, this, [&] {
        ++lists;
        QCOMPARE(users, 2);
        QCOMPARE(statusIds(model.get()), Ids({-1, -1, 1, 1, -1}));
    });
    model->setStatusItems(expected);
    QCOMPARE(lists, 1);
}

void TstModelLabels::itemsWithoutIdsAreUsersToo()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    model->setLabels({NoLabel, Concept, Chapter});
    const QModelIndex first = addItem(model.get(), QModelIndex(), TVL::Text);
    const QModelIndex second = addItem(model.get(), first, TVL::Text);
    QCOMPARE(model->nodeIdentity(first), -1);
    QVERIFY(model->setLabelIdentity(first, 0));
    QVERIFY(model->setLabelIdentity(second, 1));
    const QSignalSpy changed(model.get(), &TVLProjectModel::dataChanged);
    model->setLabels({NoLabel, Concept});
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), second);
    QCOMPARE(model->labelIdentity(first), 0);
    QCOMPARE(model->labelIdentity(second), -1);
}

void TstModelLabels::aDefaultOutsideTheNewListIsReset()
{
    const auto model = labelledModel();
    const SignalLog log(model.get());
    model->setDefaultLabelIdentity(1);
    model->setLabels({});
    // Nobody is told of the default but by the labels' own signal.
    QVERIFY(!log.lines().mid(2).contains(u"meta data"_s));
    QCOMPARE(model->defaultLabelIdentity(), -1);
    model->setDefaultLabelIdentity(1);
    QCOMPARE(model->defaultLabelIdentity(), -1);
    // Also none of another id leaves the default at -1.
    model->setLabels({{-7, u"Nothing"_s, QColor()}});
    QCOMPARE(model->defaultLabelIdentity(), -1);
}

void TstModelLabels::theOrderOfSignalsIsUsersListModified()
{
    const auto model = blankModel();
    model->projectNode(firstText(model.get()))->mLabelId = 1;
    model->projectNode(model->researchFolder())->mLabelId = 1;
    model->projectNode(firstText(model.get()))->mStatusId = 5;

    SignalLog log(model.get());
    model->setLabels({NoLabel, Concept});
    QCOMPARE(log.lines(), labelDataLines({3, 1}) + QStringList({u"labels"_s, u"modified"_s}));
    log.clear();
    model->setStatusItems({NoStatus});
    QCOMPARE(log.lines(), labelDataLines({3}) + QStringList({u"status items"_s}));
}

void TstModelLabels::settingTheSameLabelsStillMarksAndAnnounces()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setLabels(model->labels());
    model->setStatusItems(model->statusItems());
    QCOMPARE(log.lines(), QStringList({u"labels"_s, u"modified"_s, u"status items"_s}));
}

void TstModelLabels::theDefaultLabelIsGivenToNewItems()
{
    const auto model = blankModel();
    model->setDefaultLabelIdentity(1);
    model->setDefaultStatusIdentity(2);
    QVERIFY(model->insertRows(0, 1));
    QCOMPARE(model->labelIdentity(model->index(0, 0)), 1);
    QCOMPARE(model->statusIdentity(model->index(0, 0)), 2);
}

namespace {

void addDefaultIds()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("known") << 1 << 1 << QStringList({u"modified"_s, u"meta data"_s});
    QTest::newRow("equal") << -1 << -1 << QStringList();
    QTest::newRow("unknown") << 77 << -1 << QStringList({u"meta data"_s});
    QTest::newRow("unknown and negative") << -2 << -1 << QStringList({u"meta data"_s});
}

} // namespace

void TstModelLabels::theDefaultLabelIsSet_data()
{
    addDefaultIds();
}

void TstModelLabels::theDefaultLabelIsSet()
{
    QFETCH(const int, id);
    QFETCH(const int, expected);
    QFETCH(const QStringList, lines);
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setDefaultLabelIdentity(id);
    QCOMPARE(model->defaultLabelIdentity(), expected);
    QCOMPARE(log.lines(), lines);
    QCOMPARE(model->defaultStatusIdentity(), -1);
}

void TstModelLabels::theDefaultIsTakenBack()
{
    const auto model = blankModel();
    model->setDefaultLabelIdentity(1);
    model->setDefaultStatusIdentity(2);
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->setDefaultLabelIdentity(-1);
    model->setDefaultStatusIdentity(-1);
    QCOMPARE(model->defaultLabelIdentity(), -1);
    QCOMPARE(model->defaultStatusIdentity(), -1);
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"meta data"_s, u"meta data"_s}));
}

void TstModelLabels::theDefaultStatusItemIsSet_data()
{
    addDefaultIds();
}

void TstModelLabels::theDefaultStatusItemIsSet()
{
    QFETCH(const int, id);
    QFETCH(const int, expected);
    QFETCH(const QStringList, lines);
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setDefaultStatusIdentity(id);
    QCOMPARE(model->defaultStatusIdentity(), expected);
    QCOMPARE(log.lines(), lines);
    QCOMPARE(model->defaultLabelIdentity(), -1);
}

void TstModelLabels::theTitleOfLabelsIsSet()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setLabelTitle(u"Label"_s);
    QCOMPARE(log.lines(), QStringList());
    model->setLabelTitle(u"Colour"_s);
    QCOMPARE(model->labelTitle(), u"Colour"_s);
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"label title Colour"_s, u"meta data"_s}));
}

void TstModelLabels::theTitleOfStatusItemsIsSet()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setStatusTitle(u"Status"_s);
    QCOMPARE(log.lines(), QStringList());
    model->setStatusTitle(u"Stage"_s);
    QCOMPARE(model->statusTitle(), u"Stage"_s);
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"status title Stage"_s, u"meta data"_s}));
}

void TstModelLabels::keywordsOfAnItemAreSet()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setKeywordIds(index, {}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->setKeywordIds(index, {8, 2, 5}));
    QCOMPARE(model->keywordIds(index), QList<int>({8, 2, 5}));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QCOMPARE(touchedIds(model.get()), QList<int>({3}));
    // Another order is another list.
    QVERIFY(model->setKeywordIds(index, {2, 8, 5}));
    QCOMPARE(model->keywordIds(index), QList<int>({2, 8, 5}));
}

void TstModelLabels::theSameColorInAnotherNotationIsNoChange_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("by hue") << QColor(255, 0, 0).toHsv();
    QTest::newRow("by fractions") << QColor::fromRgbF(0.3f, 0.6f, 0.7f);
    QTest::newRow("translucent") << QColor(1, 2, 3, 100);
}

void TstModelLabels::theSameColorInAnotherNotationIsNoChange()
{
    QFETCH(const QColor, color);
    const auto model = blankModel();
    const QList<TVLLabel> labels = {{-1, u"No Label"_s, QColor()}, {0, u"Concept"_s, color}};
    model->setLabels(labels);
    model->findNode(3)->mLabelId = 0;
    makeAllOld(model.get());
    model->setLabels(labels);
    QCOMPARE(touchedIds(model.get()), Ids());
}

TVL_TEST(TstModelLabels)
#include "tst_modellabels.moc"
