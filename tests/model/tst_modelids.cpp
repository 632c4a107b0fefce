#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int LargestId = std::numeric_limits<int>::max();

const QUuid TakenUuid = QUuid(u"{11111111-2222-3333-4444-555555555555}"_s);
const QUuid FreeUuid = QUuid(u"{66666666-7777-8888-9999-aaaaaaaaaaaa}"_s);

QSet<int> idsOf(const TVLProjectModel *model)
{
    const QList<int> ids = model->orderedChildIDs(nullptr);
    return QSet<int>(ids.begin(), ids.end());
}

} // namespace

class TstModelIds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewNodeGetsItsId_data();
    void aNewNodeGetsItsId();
    void aNewNodeGetsItsUuid_data();
    void aNewNodeGetsItsUuid();
    void aNewNodeOfTheNewestFormatHasNoIdAndNoEntry();
    void aNewNodeStandsAtItsRow_data();
    void aNewNodeStandsAtItsRow();
    void makingANodeEmitsNothingAndMarksNothing();
    void theLargestIdInUseDoesNotOverflow();
    void theLargestIdInABinderDoesNotOverflow();
    void missingIdsAreFilledBelowTheLargestId();
    void mobileIdsAreFilledBelowTheLargestId();
    void changingAUuidKeepsTheMapsInStep();
    void changingTheUuidOfAnItemWithoutIdMakesNoIdEntry();
    void changingTheUuidOfTheRootDoesNothing();
    void changingAUuidThroughAnotherModelDoesNothing();
    void clearingAnIdKeepsTheMapsInStep();
    void clearingTheIdOfTheRootOrAnotherModelDoesNothing();
    void missingIdsAreGivenInPreOrderAboveAllInUse();
    void completeIdsStayAsTheyAre();
    void mobileIdsAvoidThoseOfTheOtherModel_data();
    void mobileIdsAvoidThoseOfTheOtherModel();
    void mobileIdsCountUpInPreOrder();
    void mapsStayInStepThroughRandomChanges_data();
    void mapsStayInStepThroughRandomChanges();
    void reloadedUuidsLeaveTheListOfLoadedItems();
};

void TstModelIds::aNewNodeGetsItsId_data()
{
    QTest::addColumn<TVL::FormatVersion>("version");
    QTest::addColumn<bool>("mobile");
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("given");
    const struct
    {
        const char *name;
        TVL::FormatVersion version;
        bool mobile;
        int next; // What a node gets that may not have the id it asks for.
    } projects[] = {
        {"format 16", TVL::FormatVersion16, false, 6},
        {"format 18", TVL::FormatVersion18, false, 6},
        {"format 23", TVL::FormatVersion23, false, -1},
        {"mobile 16", TVL::FormatVersion16, true, -1},
        {"mobile 18", TVL::FormatVersion18, true, -1},
        {"mobile 23", TVL::FormatVersion23, true, -1},
    };
    // There is an item of id 5.
    for (const auto &project : projects) {
        QTest::addRow("%s, none asked", project.name)
            << project.version << project.mobile << -1 << project.next;
        QTest::addRow("%s, free", project.name) << project.version << project.mobile << 9 << 9;
        QTest::addRow("%s, free and small", project.name)
            << project.version << project.mobile << 0 << 0;
        QTest::addRow("%s, taken", project.name)
            << project.version << project.mobile << 5 << project.next;
    }
}

void TstModelIds::aNewNodeGetsItsId()
{
    QFETCH(const TVL::FormatVersion, version);
    QFETCH(const bool, mobile);
    QFETCH(const int, asked);
    QFETCH(const int, given);
    const auto model = emptyModel(version, mobile);
    const TVLProjectNode *other = model->createProjectNode(model->binderRoot(), -1, QUuid(), 5);
    const TVLProjectNode *node = model->createProjectNode(model->binderRoot(), -1, QUuid(), asked);
    QCOMPARE(node->mId, given);
    QCOMPARE(other->mId, 5);
    QCOMPARE(model->hasNodeId(given), given >= 0);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::aNewNodeGetsItsUuid_data()
{
    QTest::addColumn<QUuid>("asked");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("null") << QUuid() << false;
    QTest::newRow("taken") << TakenUuid << false;
    QTest::newRow("free") << FreeUuid << true;
}

void TstModelIds::aNewNodeGetsItsUuid()
{
    QFETCH(const QUuid, asked);
    QFETCH(const bool, isKept);
    for (const TVL::FormatVersion version : {TVL::FormatVersion18, TVL::FormatVersion23}) {
        const auto model = emptyModel(version);
        model->createProjectNode(model->binderRoot(), -1, TakenUuid, -1);
        const TVLProjectNode *node = model->createProjectNode(model->binderRoot(), -1, asked, -1);
        QVERIFY(!node->mUuid.isNull());
        QCOMPARE(node->mUuid == asked, isKept);
        QCOMPARE(model->findNodeByUuid(node->mUuid), node);
        QCOMPARE(mapsOutOfStep(model.get()), QString());
    }
}

void TstModelIds::aNewNodeOfTheNewestFormatHasNoIdAndNoEntry()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    QVERIFY(model->insertRows(0, 1));
    const TVLProjectNode *node = model->binderRoot()->mChildren.constFirst();
    QCOMPARE(node->mId, -1);
    QVERIFY(!model->hasNodeId(-1));
    QCOMPARE(model->findBiggestNodeId(), -1);
    QCOMPARE(model->findNodeUuidById(-1), QUuid());
    QVERIFY(model->hasNodeUuid(node->mUuid));
    QCOMPARE(model->findNodeByUuid(node->mUuid), node);
}

void TstModelIds::aNewNodeStandsAtItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("expected");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("in between") << 1 << 1;
    QTest::newRow("behind the last") << 2 << 2;
    QTest::newRow("at the end") << -1 << 2;
}

void TstModelIds::aNewNodeStandsAtItsRow()
{
    QFETCH(const int, row);
    QFETCH(const int, expected);
    const auto model = emptyModel();
    TVLProjectNode *parent = model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    model->createProjectNode(parent, -1, QUuid(), -1);
    model->createProjectNode(parent, -1, QUuid(), -1);
    const TVLProjectNode *node = model->createProjectNode(parent, row, QUuid(), -1);
    QCOMPARE(parent->mChildren.size(), 3);
    QCOMPARE(parent->mChildren.at(expected), node);
    QCOMPARE(node->mParent, parent);
}

void TstModelIds::makingANodeEmitsNothingAndMarksNothing()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstModelIds::theLargestIdInUseDoesNotOverflow()
{
    const auto model = emptyModel();
    model->createProjectNode(model->binderRoot(), -1, QUuid(), LargestId);
    QCOMPARE(model->findBiggestNodeId(), LargestId);
    for (int i = 0; i < 4; ++i) {
        const TVLProjectNode *node = model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
        QVERIFY(node->mId >= 0);
        QVERIFY(node->mId < LargestId);
    }
    QCOMPARE(idsOf(model.get()).size(), 5);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::theLargestIdInABinderDoesNotOverflow()
{
    const TestProject project;
    const QByteArray items = "<BinderItem ID=\"2147483647\" "
                             "UUID=\"11111111-2222-3333-4444-555555555555\" Type=\"Text\">"
                             "<Title>Last</Title></BinderItem>";
    project.writeFile(u"Novel.tavelx"_s, binderXml(items));
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->findBiggestNodeId(), LargestId);
    QVERIFY(model->insertRows(0, 3));
    const QModelIndex folder = model->insertUserFolder(-1, QModelIndex(), u"Folder"_s);
    QVERIFY(model->nodeIdentity(folder) >= 0);
    QCOMPARE(idsOf(model.get()).size(), 5);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::missingIdsAreFilledBelowTheLargestId()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    model->createProjectNode(model->binderRoot(), -1, QUuid(), LargestId);
    model->createProjectNode(model->binderRoot(), -1, QUuid(), 0);
    for (int i = 0; i < 3; ++i)
        model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    model->populateMissingIDs();
    const QSet<int> ids = idsOf(model.get());
    QCOMPARE(ids.size(), 5);
    QVERIFY(!ids.contains(-1));
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::mobileIdsAreFilledBelowTheLargestId()
{
    const auto desktop = emptyModel();
    desktop->createProjectNode(desktop->binderRoot(), -1, QUuid(), LargestId);
    desktop->createProjectNode(desktop->binderRoot(), -1, QUuid(), 0);
    const auto mobile = emptyModel(TVL::FormatVersion18, true);
    for (int i = 0; i < 3; ++i)
        mobile->createProjectNode(mobile->binderRoot(), -1, QUuid(), -1);
    mobile->populateMobileProjectMissingIDs(desktop.get());
    const QSet<int> ids = idsOf(mobile.get());
    QCOMPARE(ids.size(), 3);
    for (const int id : ids)
        QVERIFY2(id >= 0, qPrintable(QString::number(id)));
    QVERIFY(!ids.intersects(idsOf(desktop.get())));
    QCOMPARE(mapsOutOfStep(mobile.get()), QString());
}

void TstModelIds::changingAUuidKeepsTheMapsInStep()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    const QUuid oldUuid = model->nodeUuid(index);
    model->changeIndexUuid(index, FreeUuid);
    QCOMPARE(model->nodeUuid(index), FreeUuid);
    QCOMPARE(model->findNodeUuidById(model->nodeIdentity(index)), FreeUuid);
    QVERIFY(!model->hasNodeUuid(oldUuid));
    QCOMPARE(model->indexByUuid(FreeUuid), index);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    model->changeIndexUuid(index, FreeUuid);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::changingTheUuidOfAnItemWithoutIdMakesNoIdEntry()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const TVLProjectNode *node = model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    model->changeIndexUuid(model->createIndex(node), FreeUuid);
    QCOMPARE(node->mUuid, FreeUuid);
    QVERIFY(!model->hasNodeId(-1));
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::changingTheUuidOfTheRootDoesNothing()
{
    const auto model = blankModel();
    const QUuid rootUuid = model->binderRoot()->mUuid;
    model->changeIndexUuid(model->rootIndex(), FreeUuid);
    model->changeIndexUuid(QModelIndex(), FreeUuid);
    QCOMPARE(model->binderRoot()->mUuid, rootUuid);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::changingAUuidThroughAnotherModelDoesNothing()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex index = firstText(other.get());
    const QUuid uuid = other->nodeUuid(index);
    model->changeIndexUuid(index, FreeUuid);
    QCOMPARE(other->nodeUuid(index), uuid);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    QCOMPARE(mapsOutOfStep(other.get()), QString());
}

void TstModelIds::clearingAnIdKeepsTheMapsInStep()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->clearIndexId(index);
    QCOMPARE(model->nodeIdentity(index), -1);
    QVERIFY(!model->hasNodeId(3));
    QCOMPARE(model->findNode(3), nullptr);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    model->clearIndexId(index);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::clearingTheIdOfTheRootOrAnotherModelDoesNothing()
{
    const auto model = blankModel();
    const auto other = blankModel();
    model->clearIndexId(model->rootIndex());
    model->clearIndexId(firstText(other.get()));
    QCOMPARE(model->binderRoot()->mId, -1);
    QCOMPARE(other->nodeIdentity(firstText(other.get())), 3);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    QCOMPARE(mapsOutOfStep(other.get()), QString());
}

void TstModelIds::missingIdsAreGivenInPreOrderAboveAllInUse()
{
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), model->draftFolder(), TVL::Folder);
    const QModelIndex text = addItem(model.get(), folder, TVL::Text);
    QCOMPARE(model->nodeIdentity(text), 5);
    model->clearIndexId(model->draftFolder());
    model->clearIndexId(folder);
    model->clearIndexId(model->trashFolder());

    model->populateMissingIDs();
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({6, 3, 7, 5, 1, 8}));
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::completeIdsStayAsTheyAre()
{
    const auto model = blankModel();
    const QList<int> before = model->orderedChildIDs(nullptr);
    const auto other = blankModel();
    model->populateMissingIDs();
    model->populateMobileProjectMissingIDs(other.get());
    QCOMPARE(model->orderedChildIDs(nullptr), before);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelIds::mobileIdsAvoidThoseOfTheOtherModel_data()
{
    QTest::addColumn<int>("ownId");
    QTest::addColumn<int>("otherId");
    QTest::addColumn<int>("first");
    QTest::newRow("none in use") << -1 << -1 << 0;
    QTest::newRow("own is larger") << 20 << 7 << 21;
    QTest::newRow("other is larger") << 7 << 20 << 21;
    QTest::newRow("only other") << -1 << 4 << 5;
}

void TstModelIds::mobileIdsAvoidThoseOfTheOtherModel()
{
    QFETCH(const int, ownId);
    QFETCH(const int, otherId);
    QFETCH(const int, first);
    const auto mobile = emptyModel(TVL::FormatVersion18, true);
    const auto other = emptyModel(TVL::FormatVersion23);
    mobile->createProjectNode(mobile->binderRoot(), -1, QUuid(), ownId);
    other->createProjectNode(other->binderRoot(), -1, QUuid(), otherId);
    const TVLProjectNode *node = mobile->createProjectNode(mobile->binderRoot(), -1, QUuid(), -1);
    mobile->populateMobileProjectMissingIDs(other.get());
    QCOMPARE(node->mId, ownId < 0 ? first + 1 : first);
    QCOMPARE(mapsOutOfStep(mobile.get()), QString());
    QCOMPARE(mapsOutOfStep(other.get()), QString());
    if (otherId >= 0)
        QVERIFY(!idsOf(mobile.get()).contains(otherId));
}

void TstModelIds::mobileIdsCountUpInPreOrder()
{
    const auto desktop = blankModel();
    const auto mobile = emptyModel(TVL::FormatVersion18, true);
    const QModelIndex folder = addItem(mobile.get(), QModelIndex(), TVL::Folder);
    addItem(mobile.get(), QModelIndex(), TVL::Text);
    addItem(mobile.get(), folder, TVL::Text);
    QCOMPARE(mobile->orderedChildIDs(nullptr), QList<int>({-1, -1, -1}));
    mobile->populateMobileProjectMissingIDs(desktop.get());
    QCOMPARE(mobile->orderedChildIDs(nullptr), QList<int>({4, 5, 6}));
    QCOMPARE(mapsOutOfStep(mobile.get()), QString());
}

void TstModelIds::mapsStayInStepThroughRandomChanges_data()
{
    QTest::addColumn<TVL::FormatVersion>("version");
    QTest::addColumn<bool>("mobile");
    QTest::newRow("format 16") << TVL::FormatVersion16 << false;
    QTest::newRow("format 18") << TVL::FormatVersion18 << false;
    QTest::newRow("format 23") << TVL::FormatVersion23 << false;
    QTest::newRow("mobile") << TVL::FormatVersion18 << true;
}

void TstModelIds::mapsStayInStepThroughRandomChanges()
{
    QFETCH(const TVL::FormatVersion, version);
    QFETCH(const bool, mobile);
    const auto model = emptyModel(version, mobile);
    const auto other = blankModel();
    QRandomGenerator random(11);
    growRandomTree(model.get(), 10, 12);
    for (int i = 0; i < 300; ++i) {
        const QModelIndexList all = recursiveWalk(model.get(), QModelIndex());
        const QModelIndex index = all.at(random.bounded(int(all.size())));
        switch (random.bounded(6)) {
        case 0:
            model->changeIndexUuid(index, QUuid::createUuid());
            break;
        case 1:
            model->clearIndexId(index);
            break;
        case 2:
            model->populateMissingIDs();
            break;
        case 3:
            model->populateMobileProjectMissingIDs(other.get());
            break;
        case 4:
            model->insertRows(-1, random.bounded(1, 4), index);
            break;
        default:
            model->insertUserFolder(0, index, QString());
        }
        QCOMPARE(mapsOutOfStep(model.get()), QString());
    }
}

void TstModelIds::reloadedUuidsLeaveTheListOfLoadedItems()
{
    const TestProject project;
    const auto model = project.create();
    const QList<TVLProjectNode *> nodes = model->binderRoot()->mChildren;
    for (TVLProjectNode *node : nodes)
        model->loadDocuments(node);
    model->reloadCachedUuids({});
    QCOMPARE(model->loadedNodes(), nodes);
    model->reloadCachedUuids({nodes.at(0)->mUuid, nodes.at(2)->mUuid, QUuid::createUuid()});
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({nodes.at(1)}));
    model->reloadCachedUuids(model->uniqueUuids());
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>());
}

TVL_TEST(TstModelIds)
#include "tst_modelids.moc"
