#include "ModelChecks.h"
#include "TestMain.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class TstModelLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anIdLeadsToItsNode();
    void aNegativeIdLeadsToTheRoot();
    void anUnknownIdLeadsToNoNodeAndTheRootIndex();
    void aUuidLeadsToItsNode();
    void anUnknownUuidLeadsToTheRoot();
    void aNullUuidLeadsToTheRoot();
    void aUuidMissingInTheMapIsFoundInTheTree();
    void theIdOfAUuid();
    void theIdOfAnUnknownUuidIsZero();
    void theIdOfAUuidMissingInTheMapByUuidIsLookedUpInTheMapById();
    void knowingIdsAndUuids();
    void theNextIdIsAboveAllInUse();
    void theNextFreeIdOfAList_data();
    void theNextFreeIdOfAList();
    void theRootIsInNeitherMap();
    void uuidsInBothOrders();
    void theIdsBelowANodeComeInPreOrder();
    void itemsAreCountedWithoutTheRoot();
    void ancestryTests();
    void anItemIsNoChildOfItself();
    void ancestryIsTestedAgainstSeveralParents();
    void anIndexOfAnotherModelIsNoChild();
    void aTitleIsFoundAmongDirectChildren();
    void aTitleIsMatchedExactly_data();
    void aTitleIsMatchedExactly();
};

void TstModelLookup::anIdLeadsToItsNode()
{
    const auto model = blankModel();
    for (const TVLProjectNode *node : model->binderRoot()->mChildren) {
        QCOMPARE(model->findNode(node->mId), node);
        QCOMPARE(model->index(node->mId), model->createIndex(node));
        QCOMPARE(model->findNodeUuidById(node->mId), node->mUuid);
    }
}

void TstModelLookup::aNegativeIdLeadsToTheRoot()
{
    const auto model = blankModel();
    QCOMPARE(model->findNode(-1), model->binderRoot());
    QCOMPARE(model->findNode(-12), model->binderRoot());
    QCOMPARE(model->index(-1), model->rootIndex());
}

void TstModelLookup::anUnknownIdLeadsToNoNodeAndTheRootIndex()
{
    const auto model = blankModel();
    QCOMPARE(model->findNode(12345), nullptr);
    QCOMPARE(model->index(12345), model->rootIndex());
    QCOMPARE(model->findNodeUuidById(12345), QUuid());
    QCOMPARE(model->findNodeUuidById(-1), QUuid());
}

void TstModelLookup::aUuidLeadsToItsNode()
{
    const auto model = blankModel();
    const TVLProjectNode *node = model->binderRoot()->mChildren.at(1);
    QCOMPARE(model->findNodeByUuid(node->mUuid), node);
    QCOMPARE(model->indexByUuid(node->mUuid), model->researchFolder());
}

void TstModelLookup::anUnknownUuidLeadsToTheRoot()
{
    const auto model = blankModel();
    const QUuid unknown = QUuid::createUuid();
    QCOMPARE(model->findNodeByUuid(unknown), model->binderRoot());
    QCOMPARE(model->indexByUuid(unknown), model->rootIndex());
    QVERIFY(!model->hasNodeUuid(unknown));
    QCOMPARE(emptyModel()->totalNodesCount(), 0);
}

void TstModelLookup::aNullUuidLeadsToTheRoot()
{
    const auto model = blankModel();
    QCOMPARE(model->findNodeByUuid(QUuid()), model->binderRoot());
    QCOMPARE(model->indexByUuid(QUuid()), model->rootIndex());
}

void TstModelLookup::aUuidMissingInTheMapIsFoundInTheTree()
{
    const auto model = blankModel();
    const QUuid uuid = QUuid::createUuid();
    auto *node = new TVLProjectNode({77, uuid}, model->projectNode(firstText(model.get())));
    QVERIFY(!model->hasNodeUuid(uuid));
    QCOMPARE(model->findNodeByUuid(uuid), node);
    QCOMPARE(model->indexByUuid(uuid), model->createIndex(node));
}

void TstModelLookup::theIdOfAUuid()
{
    const auto model = blankModel();
    for (const TVLProjectNode *node : model->binderRoot()->mChildren)
        QCOMPARE(model->findNodeIdByUuid(node->mUuid), node->mId);
}

void TstModelLookup::theIdOfAnUnknownUuidIsZero()
{
    const auto model = blankModel();
    QCOMPARE(model->findNodeIdByUuid(QUuid::createUuid()), 0);
    QCOMPARE(model->findNodeIdByUuid(QUuid()), 0);
    QCOMPARE(model->findNodeIdByUuid(model->binderRoot()->mUuid), 0);
    QCOMPARE(emptyModel()->findNodeIdByUuid(QUuid::createUuid()), 0);
}

void TstModelLookup::theIdOfAUuidMissingInTheMapByUuidIsLookedUpInTheMapById()
{
    const auto model = blankModel();
    const QModelIndex research = model->researchFolder();
    const QUuid uuid = model->nodeUuid(research);
    // Another item borrows the uuid for a while, which costs its owner the entry by uuid.
    model->changeIndexUuid(model->trashFolder(), uuid);
    model->changeIndexUuid(model->trashFolder(), QUuid::createUuid());
    QVERIFY(!model->hasNodeUuid(uuid));
    QCOMPARE(model->findNodeIdByUuid(uuid), model->nodeIdentity(research));
    QCOMPARE(model->findNode(model->nodeIdentity(research)), model->projectNode(research));
}

void TstModelLookup::knowingIdsAndUuids()
{
    const auto model = blankModel();
    QVERIFY(model->hasNodeId(0));
    QVERIFY(model->hasNodeId(3));
    QVERIFY(!model->hasNodeId(4));
    QVERIFY(!model->hasNodeId(-1));
    QVERIFY(model->hasNodeUuid(model->nodeUuid(model->draftFolder())));
    QVERIFY(!model->hasNodeUuid(QUuid()));
}

void TstModelLookup::theNextIdIsAboveAllInUse()
{
    const auto model = emptyModel();
    QCOMPARE(model->findBiggestNodeId(), -1);
    QCOMPARE(model->findNextNodeId(), 0);
    model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    QCOMPARE(model->findBiggestNodeId(), 0);
    QCOMPARE(model->findNextNodeId(), 1);
    model->createProjectNode(model->binderRoot(), -1, QUuid(), 50);
    QCOMPARE(model->findBiggestNodeId(), 50);
    QCOMPARE(model->findNextNodeId(), 51);
}

void TstModelLookup::theNextFreeIdOfAList_data()
{
    QTest::addColumn<QList<int>>("ids");
    QTest::addColumn<int>("next");
    QTest::newRow("empty") << QList<int>() << 0;
    QTest::newRow("one") << QList<int>({0}) << 1;
    QTest::newRow("with a gap") << QList<int>({0, 1, 3}) << 4;
    QTest::newRow("out of order") << QList<int>({9, 2, 4}) << 10;
    QTest::newRow("only missing ids") << QList<int>({-1, -1}) << 0;
}

void TstModelLookup::theNextFreeIdOfAList()
{
    QFETCH(const QList<int>, ids);
    QFETCH(const int, next);
    QCOMPARE(TVLProjectModel::findNextFreeId(ids), next);
}

void TstModelLookup::theRootIsInNeitherMap()
{
    const auto model = emptyModel();
    QCOMPARE(model->binderRoot()->mId, -1);
    QVERIFY(!model->binderRoot()->mUuid.isNull());
    QVERIFY(!model->hasNodeUuid(model->binderRoot()->mUuid));
    QVERIFY(!model->hasNodeId(-1));
    QVERIFY(emptyModel()->binderRoot()->mUuid != model->binderRoot()->mUuid);
}

void TstModelLookup::uuidsInBothOrders()
{
    const auto model = emptyModel();
    growRandomTree(model.get(), 60, 5);
    QList<QUuid> treeOrder;
    for (const QModelIndex &index : recursiveWalk(model.get(), QModelIndex()))
        treeOrder.append(model->nodeUuid(index));
    QCOMPARE(model->uuidsListBinderOrder(), treeOrder);
    QCOMPARE(model->uniqueUuids(), QSet<QUuid>(treeOrder.begin(), treeOrder.end()));
    QList<QUuid> sorted = treeOrder;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(model->uuidsList(), sorted);
    QVERIFY(sorted != treeOrder);
}

void TstModelLookup::theIdsBelowANodeComeInPreOrder()
{
    const auto model = emptyModel();
    growRandomTree(model.get(), 60, 6);
    const auto idsBelow = [&model](const QModelIndex &parent) {
        QList<int> ids;
        for (const QModelIndex &index : recursiveWalk(model.get(), parent))
            ids.append(model->nodeIdentity(index));
        return ids;
    };
    QCOMPARE(model->orderedChildIDs(nullptr), idsBelow(QModelIndex()));
    QCOMPARE(model->orderedChildIDs(model->binderRoot()), idsBelow(QModelIndex()));
    for (const QModelIndex &index : recursiveWalk(model.get(), QModelIndex()))
        QCOMPARE(model->orderedChildIDs(model->projectNode(index)), idsBelow(index));
}

void TstModelLookup::itemsAreCountedWithoutTheRoot()
{
    const auto model = emptyModel();
    QCOMPARE(model->totalNodesCount(), 0);
    growRandomTree(model.get(), 60, 7);
    QCOMPARE(model->totalNodesCount(), 60);
}

void TstModelLookup::ancestryTests()
{
    const auto model = emptyModel();
    growRandomTree(model.get(), 40, 8);
    const QModelIndexList all = recursiveWalk(model.get(), QModelIndex());
    for (const QModelIndex &outer : all) {
        const QModelIndexList inside = recursiveWalk(model.get(), outer);
        for (const QModelIndex &inner : all) {
            const bool isInside = inside.contains(inner);
            QCOMPARE(model->isChildOf(inner, outer), isInside);
            QCOMPARE(model->containsIndex(outer, inner), isInside);
            QCOMPARE(model->indexContainsUuid(outer, model->nodeUuid(inner)), isInside);
        }
        QVERIFY(!model->indexContainsUuid(outer, QUuid::createUuid()));
        QVERIFY(!model->indexContainsUuid(outer, QUuid()));
    }
}

void TstModelLookup::anItemIsNoChildOfItself()
{
    const auto model = blankModel();
    QVERIFY(!model->isChildOf(model->draftFolder(), model->draftFolder()));
    QVERIFY(!model->containsIndex(model->draftFolder(), model->draftFolder()));
    QVERIFY(!model->indexContainsUuid(model->draftFolder(), model->nodeUuid(model->draftFolder())));
}

void TstModelLookup::ancestryIsTestedAgainstSeveralParents()
{
    const auto model = blankModel();
    const QModelIndex text = firstText(model.get());
    const QModelIndex draft = model->draftFolder();
    const QModelIndex trash = model->trashFolder();
    QVERIFY(model->isChildOf(text, QModelIndexList({trash, draft})));
    QVERIFY(!model->isChildOf(text, QModelIndexList({trash, text})));
    QVERIFY(!model->isChildOf(text, QModelIndexList()));
}

void TstModelLookup::anIndexOfAnotherModelIsNoChild()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->isChildOf(firstText(other.get()), model->draftFolder()));
    QVERIFY(!model->isChildOf(firstText(model.get()), other->draftFolder()));
}

void TstModelLookup::aTitleIsFoundAmongDirectChildren()
{
    const auto model = blankModel();
    const QModelIndex folder =
        addItem(model.get(), model->researchFolder(), TVL::Folder, u"People"_s);
    const QModelIndex first = addItem(model.get(), folder, TVL::Text, u"Anna"_s);
    addItem(model.get(), folder, TVL::Text, u"Anna"_s);
    const auto other = blankModel();

    QCOMPARE(model->findViaTitle(u"Anna"_s, folder), first);
    QCOMPARE(model->findDirectIndexByTitle(u"Anna"_s, folder), first);
    QCOMPARE(model->findViaTitle(u"Trash"_s, QModelIndex()), model->trashFolder());
    QCOMPARE(model->findViaTitle(u"Trash"_s, model->rootIndex()), model->trashFolder());
    QCOMPARE(model->findDirectIndexByTitle(u"Trash"_s, QModelIndex()), model->trashFolder());
    QVERIFY(!model->findViaTitle(u"Anna"_s, model->researchFolder()).isValid());
    QVERIFY(!model->findDirectIndexByTitle(u"Anna"_s, QModelIndex()).isValid());
    QVERIFY(!model->findViaTitle(u"Anna"_s, first).isValid());
}

void TstModelLookup::aTitleIsMatchedExactly_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("other case") << u"draft"_s;
    QTest::newRow("a part") << u"Dra"_s;
    QTest::newRow("more") << u"Draft "_s;
    QTest::newRow("empty") << QString();
}

void TstModelLookup::aTitleIsMatchedExactly()
{
    QFETCH(const QString, title);
    const auto model = blankModel();
    QVERIFY(!model->findViaTitle(title, QModelIndex()).isValid());
    QVERIFY(!model->findDirectIndexByTitle(title, QModelIndex()).isValid());
}

TVL_TEST(TstModelLookup)
#include "tst_modellookup.moc"
