#include "ModelChecks.h"
#include "TestMain.h"

#include "TVLModel.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

class TstModelIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRootIndexIsADistinctValue();
    void theRootIndexIsWhatRowAndColumnOfMinusOneGive();
    void aTopLevelItemsParentIsTheRootIndexAndNoDefaultIndex();
    void theRootItselfHasADefaultParent();
    void anItemsParentIsTheItemAroundIt();
    void anIndexOfAnotherModelHasADefaultParent();
    void aRowThatIsNotThereGivesADefaultIndex_data();
    void aRowThatIsNotThereGivesADefaultIndex();
    void theColumnIsKeptAsPassed();
    void rowsAndChildrenAreThoseOfTheNode();
    void thereIsOneColumnEverywhere();
    void theIndexOfANodeIsItsPlaceInItsParent();
    void aNodeOutsideTheTreeHasNoIndex();
    void theNodeOfAnIndex();
    void flagsAreTheSameForEveryItem_data();
    void flagsAreTheSameForEveryItem();
    void theRootOnlyTakesDrops();
    void theTrashFolderCanBeEditedAndDroppedOn();
    void itemsAreCopiedMovedAndLinked();
    void depthCountsFromTheTopLevel();
    void theRootParentIsTheTopLevelAncestor();
    void walksGoThroughTheTreeInPreOrder_data();
    void walksGoThroughTheTreeInPreOrder();
    void theGeneralWalksAgreeWithTheTree();
    void nextOfTheLastItemIsTheFirst();
    void previousOfTheFirstItemIsTheDeepestLast();
    void theOnlyItemFollowsItself();
    void walksGoNowhereFromTheRoot();
    void longChainsAndManySiblingsAreWalked();
    void readingABinderResetsTheModel();
};

void TstModelIndex::theRootIndexIsADistinctValue()
{
    const auto model = blankModel();
    const QModelIndex root = model->rootIndex();
    QCOMPARE(root.row(), -1);
    QCOMPARE(root.column(), -1);
    QCOMPARE(root.internalPointer(), nullptr);
    QCOMPARE(root.model(), model.get());
    QVERIFY(!root.isValid());
    QVERIFY(root != QModelIndex());
}

void TstModelIndex::theRootIndexIsWhatRowAndColumnOfMinusOneGive()
{
    const auto model = blankModel();
    QCOMPARE(model->index(-1, -1, QModelIndex()), model->rootIndex());
    QVERIFY(model->index(-1, -1, QModelIndex()) != QModelIndex());
    QCOMPARE(model->index(-1, -1, model->rootIndex()), model->rootIndex());
    QCOMPARE(model->index(-1, -1, model->draftFolder()), QModelIndex());
}

void TstModelIndex::aTopLevelItemsParentIsTheRootIndexAndNoDefaultIndex()
{
    const auto model = blankModel();
    const QModelIndex parent = model->parent(model->draftFolder());
    QCOMPARE(parent, model->rootIndex());
    QVERIFY(parent != QModelIndex());
    QVERIFY(!parent.isValid());
}

void TstModelIndex::theRootItselfHasADefaultParent()
{
    const auto model = blankModel();
    QCOMPARE(model->parent(model->rootIndex()), QModelIndex());
    QCOMPARE(model->parent(QModelIndex()), QModelIndex());
}

void TstModelIndex::anItemsParentIsTheItemAroundIt()
{
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), model->researchFolder(), TVL::Folder);
    const QModelIndex text = addItem(model.get(), folder, TVL::Text);
    QCOMPARE(model->parent(text), folder);
    QCOMPARE(model->parent(folder), model->researchFolder());
}

void TstModelIndex::anIndexOfAnotherModelHasADefaultParent()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QCOMPARE(model->parent(firstText(other.get())), QModelIndex());
}

void TstModelIndex::aRowThatIsNotThereGivesADefaultIndex_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::newRow("row behind the last") << 5 << 0;
    QTest::newRow("row far behind") << std::numeric_limits<int>::max() << 0;
    QTest::newRow("row before the first") << -1 << 0;
    QTest::newRow("row and column before the first") << -1 << -1;
}

void TstModelIndex::aRowThatIsNotThereGivesADefaultIndex()
{
    QFETCH(const int, row);
    QFETCH(const int, column);
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), QModelIndex(), TVL::Folder);
    for (int i = 0; i < 5; ++i)
        addItem(model.get(), folder, TVL::Text);
    QCOMPARE(model->index(row, column, folder), QModelIndex());
    QCOMPARE(model->index(row, column, folder).model(), nullptr);
}

void TstModelIndex::theColumnIsKeptAsPassed()
{
    const auto model = blankModel();
    const QModelIndex index = model->index(1, 7, QModelIndex());
    QCOMPARE(index.row(), 1);
    QCOMPARE(index.column(), 7);
    QCOMPARE(model->projectNode(index), model->projectNode(model->researchFolder()));
}

void TstModelIndex::rowsAndChildrenAreThoseOfTheNode()
{
    const auto model = blankModel();
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(model->rowCount(model->rootIndex()), 3);
    QVERIFY(model->hasChildren());
    QCOMPARE(model->rowCount(model->draftFolder()), 1);
    QVERIFY(model->hasChildren(model->draftFolder()));
    QCOMPARE(model->rowCount(firstText(model.get())), 0);
    QVERIFY(!model->hasChildren(firstText(model.get())));
    QVERIFY(!emptyModel()->hasChildren());
    QCOMPARE(emptyModel()->rowCount(), 0);
}

void TstModelIndex::thereIsOneColumnEverywhere()
{
    const auto model = blankModel();
    QCOMPARE(model->columnCount(), 1);
    QCOMPARE(model->columnCount(model->rootIndex()), 1);
    QCOMPARE(model->columnCount(model->draftFolder()), 1);
    QCOMPARE(model->columnCount(firstText(model.get())), 1);
}

void TstModelIndex::theIndexOfANodeIsItsPlaceInItsParent()
{
    const auto model = blankModel();
    TVLProjectNode *node = model->binderRoot()->mChildren.at(2);
    const QModelIndex index = model->createIndex(node);
    QCOMPARE(index.row(), 2);
    QCOMPARE(index.column(), 0);
    QCOMPARE(index.internalPointer(), static_cast<void *>(node));
    QCOMPARE(index.model(), model.get());
    QCOMPARE(model->toIndex(node), index);
    QCOMPARE(index, model->index(2, 0));
    QCOMPARE(model->createIndex(model->binderRoot()), model->rootIndex());
    QCOMPARE(model->toIndex(model->binderRoot()), model->rootIndex());
}

void TstModelIndex::aNodeOutsideTheTreeHasNoIndex()
{
    const auto model = blankModel();
    const TVLProjectNode stray({5, QUuid::createUuid()}, nullptr);
    QCOMPARE(model->createIndex(nullptr), QModelIndex());
    QCOMPARE(model->createIndex(&stray), QModelIndex());
}

void TstModelIndex::theNodeOfAnIndex()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QCOMPARE(model->projectNode(QModelIndex()), model->binderRoot());
    QCOMPARE(model->projectNode(model->rootIndex()), model->binderRoot());
    QCOMPARE(model->projectNode(other->rootIndex()), model->binderRoot());
    QCOMPARE(model->projectNode(model->index(1, 0)), model->binderRoot()->mChildren.at(1));
    QCOMPARE(model->projectNode(other->index(1, 0)), nullptr);
}

void TstModelIndex::flagsAreTheSameForEveryItem_data()
{
    QTest::addColumn<TVL::NodeType>("type");
    for (int type = TVL::DraftFolder; type <= TVL::Other; ++type)
        QTest::newRow(qPrintable(TVL::wordOf(TVL::NodeType(type)))) << TVL::NodeType(type);
}

void TstModelIndex::flagsAreTheSameForEveryItem()
{
    QFETCH(const TVL::NodeType, type);
    const auto model = blankModel();
    const QModelIndex index = addItem(model.get(), model->trashFolder(), type);
    QCOMPARE(model->flags(index),
             Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled
                 | Qt::ItemIsDropEnabled | Qt::ItemIsEnabled);
}

void TstModelIndex::theRootOnlyTakesDrops()
{
    const auto model = blankModel();
    QCOMPARE(model->flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsDropEnabled));
    QCOMPARE(model->flags(model->rootIndex()), Qt::ItemFlags(Qt::ItemIsDropEnabled));
}

void TstModelIndex::theTrashFolderCanBeEditedAndDroppedOn()
{
    const auto model = blankModel();
    const Qt::ItemFlags flags = model->flags(model->trashFolder());
    QVERIFY(flags.testFlag(Qt::ItemIsEditable));
    QVERIFY(flags.testFlag(Qt::ItemIsDropEnabled));
}

void TstModelIndex::itemsAreCopiedMovedAndLinked()
{
    const auto model = blankModel();
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QCOMPARE(model->supportedDropActions(), all);
    QCOMPARE(model->supportedDragActions(), all);
}

void TstModelIndex::depthCountsFromTheTopLevel()
{
    const auto model = blankModel();
    QCOMPARE(model->indexDepth(QModelIndex()), 0);
    QCOMPARE(model->indexDepth(model->rootIndex()), 0);
    QModelIndex index = model->researchFolder();
    for (int depth = 1; depth < 6; ++depth) {
        QCOMPARE(model->indexDepth(index), depth);
        index = addItem(model.get(), index, TVL::Folder);
    }
}

void TstModelIndex::theRootParentIsTheTopLevelAncestor()
{
    const auto model = blankModel();
    QCOMPARE(model->rootParentIndex(firstText(model.get())), model->draftFolder());
    QCOMPARE(int(model->rootParentType(firstText(model.get()))), int(TVL::DraftFolder));
    const QModelIndex folder = addItem(model.get(), model->trashFolder(), TVL::Folder);
    const QModelIndex image = addItem(model.get(), folder, TVL::Image);
    QCOMPARE(model->rootParentIndex(image), model->trashFolder());
    QCOMPARE(int(model->rootParentType(image)), int(TVL::TrashFolder));
    QCOMPARE(model->rootParentIndex(model->researchFolder()), model->researchFolder());
    const QModelIndex media = addItem(model.get(), QModelIndex(), TVL::Media);
    QCOMPARE(model->rootParentIndex(media), media);
    QCOMPARE(int(model->rootParentType(media)), int(TVL::Media));
}

void TstModelIndex::walksGoThroughTheTreeInPreOrder_data()
{
    QTest::addColumn<int>("nodes");
    QTest::addColumn<quint32>("seed");
    for (const int nodes : {1, 2, 3, 10, 120}) {
        for (quint32 seed = 1; seed <= 4; ++seed)
            QTest::addRow("%d items, seed %u", nodes, seed) << nodes << seed;
    }
}

void TstModelIndex::walksGoThroughTheTreeInPreOrder()
{
    QFETCH(const int, nodes);
    QFETCH(const quint32, seed);
    const auto model = emptyModel();
    growRandomTree(model.get(), nodes, seed);

    const QModelIndexList expected = recursiveWalk(model.get(), QModelIndex());
    QCOMPARE(expected.size(), nodes);
    QModelIndexList forwards;
    QModelIndex index = expected.constFirst();
    for (int i = 0; i < nodes; ++i) {
        forwards.append(index);
        const QModelIndex next = model->nextIndex(index);
        QCOMPARE(model->previousIndex(next), index);
        QCOMPARE(model->nextIndex(model->previousIndex(index)), index);
        index = next;
    }
    QCOMPARE(forwards, expected);
    QCOMPARE(index, expected.constFirst());

    QModelIndexList backwards;
    for (int i = 0; i < nodes; ++i) {
        index = model->previousIndex(index);
        backwards.prepend(index);
    }
    QCOMPARE(backwards, expected);
}

void TstModelIndex::theGeneralWalksAgreeWithTheTree()
{
    const auto model = emptyModel();
    growRandomTree(model.get(), 80, 9);
    const QModelIndexList all = recursiveWalk(model.get(), QModelIndex());
    QCOMPARE(TVLModel::childrenAndSubChildren(model->rootIndex()), all);
    QCOMPARE(TVLModel::directChildren(model->rootIndex()).size(), model->rowCount());
    for (const QModelIndex &index : all) {
        const QModelIndexList inside = recursiveWalk(model.get(), index);
        QCOMPARE(TVLModel::childrenAndSubChildren(index), inside);
        QCOMPARE(TVLModel::directChildren(index).size(), model->rowCount(index));
        const QModelIndexList parents = TVLModel::parents(index);
        QCOMPARE(parents.size(), model->indexDepth(index) - 1);
        for (const QModelIndex &other : all) {
            QCOMPARE(parents.contains(other), model->containsIndex(other, index));
            QCOMPARE(TVLModel::parentsContain(index, other), parents.contains(other));
        }
        QVERIFY(!TVLModel::parentsContain(index, model->rootIndex()));
    }
    QCOMPARE(TVLModel::directChildren(QModelIndex()), QModelIndexList());
}

void TstModelIndex::nextOfTheLastItemIsTheFirst()
{
    const auto model = blankModel();
    QCOMPARE(model->nextIndex(model->trashFolder()), model->draftFolder());
}

void TstModelIndex::previousOfTheFirstItemIsTheDeepestLast()
{
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), model->trashFolder(), TVL::Folder);
    addItem(model.get(), folder, TVL::Text);
    const QModelIndex last = addItem(model.get(), folder, TVL::Text);
    QCOMPARE(model->previousIndex(model->draftFolder()), last);
    QCOMPARE(model->nextIndex(last), model->draftFolder());
}

void TstModelIndex::theOnlyItemFollowsItself()
{
    const auto model = emptyModel();
    const QModelIndex only = addItem(model.get(), QModelIndex(), TVL::Text);
    QCOMPARE(model->nextIndex(only), only);
    QCOMPARE(model->previousIndex(only), only);
}

void TstModelIndex::walksGoNowhereFromTheRoot()
{
    const auto model = blankModel();
    const auto other = blankModel();
    for (const QModelIndex &index :
         {QModelIndex(), model->rootIndex(), emptyModel()->rootIndex(), other->draftFolder()}) {
        QCOMPARE(model->nextIndex(index), QModelIndex());
        QCOMPARE(model->previousIndex(index), QModelIndex());
    }
    const auto empty = emptyModel();
    QCOMPARE(empty->nextIndex(empty->rootIndex()), QModelIndex());
    QCOMPARE(empty->previousIndex(empty->rootIndex()), QModelIndex());
}

void TstModelIndex::longChainsAndManySiblingsAreWalked()
{
    constexpr int Count = 20000;
    const auto model = emptyModel();
    TVLProjectNode *parent = model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);
    for (int i = 0; i < Count; ++i)
        parent = model->createProjectNode(parent, -1, QUuid(), -1);
    for (int i = 0; i < Count; ++i)
        model->createProjectNode(model->binderRoot(), -1, QUuid(), -1);

    QModelIndex index = model->index(0, 0);
    const QModelIndex first = index;
    int steps = 0;
    do {
        index = model->nextIndex(index);
        ++steps;
    } while (index != first && steps <= 2 * Count + 1);
    QCOMPARE(steps, 2 * Count + 1);
    QCOMPARE(model->totalNodesCount(), steps);
}

void TstModelIndex::readingABinderResetsTheModel()
{
    const auto model = emptyModel();
    QSignalSpy aboutToReset(model.get(), &TVLProjectModel::modelAboutToBeReset);
    QSignalSpy reset(model.get(), &TVLProjectModel::modelReset);
    TVLBinderProject *const binder = model.get();
    binder->beginBinderRead();
    binder->enterNodes({new TVLProjectNode({3, QUuid::createUuid()}, model->binderRoot())});
    QCOMPARE(aboutToReset.count(), 1);
    QCOMPARE(reset.count(), 0);
    binder->endBinderRead();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    QVERIFY(model->isSaved());
}

TVL_TEST(TstModelIndex)
#include "tst_modelindex.moc"
