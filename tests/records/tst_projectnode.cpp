#include "RandomTree.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include "TestMain.h"
#include "TestScale.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using NodePtr = std::unique_ptr<TVLProjectNode>;

NodePtr makeRoot()
{
    return std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, QUuid::createUuid()), nullptr);
}

TVLProjectNode *addChild(TVLProjectNode *parent, int id)
{
    return new TVLProjectNode({id, QUuid::createUuid()}, parent);
}

/** The descendants of a node in pre-order, by the plain definition. */
void collect(const TVLProjectNode *node, QList<const TVLProjectNode *> *nodes)
{
    for (const TVLProjectNode *child : node->mChildren) {
        nodes->append(child);
        collect(child, nodes);
    }
}

QList<const TVLProjectNode *> plainWalk(const TVLProjectNode *top)
{
    QList<const TVLProjectNode *> nodes;
    collect(top, &nodes);
    return nodes;
}

QList<const TVLProjectNode *> walk(const TVLProjectNode *top)
{
    QList<const TVLProjectNode *> nodes;
    for (const TVLProjectNode *node = top->nextInPreOrder(top); node;
         node = node->nextInPreOrder(top))
        nodes.append(node);
    return nodes;
}

/** Whether every child of a node says the row that it really has. */
bool rowsAreRight(const TVLProjectNode *parent)
{
    for (int row = 0; row < parent->mChildren.size(); ++row) {
        if (parent->mChildren.at(row)->row() != row)
            return false;
    }
    return true;
}

QPixmap pixmapOf(int width, int height)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::red);
    return pixmap;
}

void addTreeRows()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("deepest");
    for (quint32 seed = 1; seed <= 5; ++seed) {
        QTest::addRow("bushy %u", seed) << seed << 400 << 6;
        QTest::addRow("deep %u", seed) << seed << 400 << 60;
    }
    QTest::newRow("flat") << 9U << 400 << 1;
    QTest::newRow("one") << 9U << 1 << 1;
    QTest::newRow("none") << 9U << 0 << 1;
}

NodePtr fetchedTree()
{
    QFETCH(quint32, seed);
    QFETCH(int, nodes);
    QFETCH(int, deepest);
    return makeRandomTree({.nodes = nodes, .deepest = deepest, .seed = seed});
}

} // namespace

class TstProjectNode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Making
    void aNewNodeHasItsIdentityAndIsCreatedNow();
    void aNewNodeHasNoDocumentsAndNoImage();
    void aNodeMayHaveNeitherIdNorUuid();
    void aNodeMadeWithAParentIsItsLastChildAtOnce();
    void aNodeMadeAtARowStandsThere_data();
    void aNodeMadeAtARowStandsThere();

    // Place in the tree
    void childLevelCountsAncestors();
    void ancestorsRunFromTheParentToTheRoot();
    void rowPositionsRunFromTheTopDown();
    void aNodeIsFoundByItsRowPositions();
    void rowsThatLeadNowhereFindNothing_data();
    void rowsThatLeadNowhereFindNothing();
    void everyNodeOfATreeIsFoundByItsRowPositions_data() { addTreeRows(); }
    void everyNodeOfATreeIsFoundByItsRowPositions();
    void rowPositionsFindTheSamePlaceInAnotherTree();
    void childIdsAreThoseOfDirectChildrenInOrder();

    // Rows
    void theRootHasNoRow();
    void aNodeThatWasTakenOutHasNoRow();
    void rowStaysRightThroughRandomChanges_data();
    void rowStaysRightThroughRandomChanges();
    void rowIsRightInANewParent();
    void rowStaysRightHoweverFarItHasShifted_data();
    void rowStaysRightHoweverFarItHasShifted();
    void aChildIsTakenAndInserted();
    void askingAllOfManySiblingsForTheirRowsIsQuick();

    // Walks
    void theWalkVisitsEveryDescendantInPreOrder_data() { addTreeRows(); }
    void theWalkVisitsEveryDescendantInPreOrder();
    void theWalkOfASubtreeStaysInIt_data() { addTreeRows(); }
    void theWalkOfASubtreeStaysInIt();
    void theLastNodeInPreOrderIsTheEndOfTheWalk_data() { addTreeRows(); }
    void theLastNodeInPreOrderIsTheEndOfTheWalk();
    void forEachNodeVisitsWhatTheWalkVisits();

    // Destruction
    void destroyingANodeDestroysItsDescendants();
    void destroyingANodeCutsItsDocumentsLooseAndLeavesThemAlive();
    void destroyingANodeCutsDocumentsOfDescendantsLoose();
    void aTreeOfAMillionLevelsIsDestroyed();
    void aTreeOfManySiblingsIsDestroyed();

    // Index card image
    void theLargestIndexCardImageIs640By480();
    void anIndexCardImageIsScaledIntoTheLimits_data();
    void anIndexCardImageIsScaledIntoTheLimits();
    void aNullIndexCardImageCountsAsCached();
    void aNewIndexCardImageReplacesTheOldOne();
    void theIndexCardImageCanBeCleared();
    void theIndexCardImageHandedOutIsACopy();
};

void TstProjectNode::aNewNodeHasItsIdentityAndIsCreatedNow()
{
    const QUuid uuid = QUuid::createUuid();
    const QDateTime before = QDateTime::currentDateTime();
    const TVLProjectNode node({7, uuid}, nullptr);
    QCOMPARE(node.mId, 7);
    QCOMPARE(node.mUuid, uuid);
    QVERIFY(node.mCreated >= before);
    QVERIFY(node.mCreated <= QDateTime::currentDateTime());
    QCOMPARE(node.mModified, node.mCreated);

    TVLProjectNodeProperties expected;
    expected.mId = 7;
    expected.mUuid = uuid;
    expected.mCreated = node.mCreated;
    expected.mModified = node.mCreated;
    QVERIFY(static_cast<const TVLProjectNodeProperties &>(node) == expected);
}

void TstProjectNode::aNewNodeHasNoDocumentsAndNoImage()
{
    const TVLProjectNode node({7, QUuid::createUuid()}, nullptr);
    QVERIFY(!node.mParent);
    QVERIFY(!node.mTextDocument);
    QVERIFY(!node.mSynopsisDocument);
    QVERIFY(!node.mNotesDocument);
    QVERIFY(!node.hasIndexCardPixmap());
    QVERIFY(node.indexCardPixmap().isNull());
}

void TstProjectNode::aNodeMayHaveNeitherIdNorUuid()
{
    const TVLProjectNode node({-1, QUuid()}, nullptr);
    QCOMPARE(node.mId, -1);
    QVERIFY(node.mUuid.isNull());
    QVERIFY(!node.isValid());
}

void TstProjectNode::aNodeMadeWithAParentIsItsLastChildAtOnce()
{
    const NodePtr root = makeRoot();
    addChild(root.get(), 4);
    TVLProjectNode *second = addChild(root.get(), 2);
    QCOMPARE(root->childIDs(), QList<int>({4, 2}));
    QCOMPARE(second->mParent, root.get());
    QCOMPARE(root->mChildren.constLast(), second);
}

void TstProjectNode::aNodeMadeAtARowStandsThere_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("ids");
    QTest::newRow("first") << 0 << QList<int>{9, 1, 2};
    QTest::newRow("between") << 1 << QList<int>{1, 9, 2};
    QTest::newRow("last") << 2 << QList<int>{1, 2, 9};
}

void TstProjectNode::aNodeMadeAtARowStandsThere()
{
    QFETCH(int, row);
    const NodePtr root = makeRoot();
    addChild(root.get(), 1);
    addChild(root.get(), 2);
    const auto *node = new TVLProjectNode({9, QUuid::createUuid()}, root.get(), row);
    QTEST(root->childIDs(), "ids");
    QCOMPARE(node->row(), row);
    QVERIFY(rowsAreRight(root.get()));
}

void TstProjectNode::childLevelCountsAncestors()
{
    const NodePtr root = makeRoot();
    const TVLProjectNode *first = addChild(root.get(), 1);
    const TVLProjectNode *second = addChild(root->mChildren.at(0), 2);
    QCOMPARE(TVLProjectNode::childLevel(nullptr), 0);
    QCOMPARE(TVLProjectNode::childLevel(root.get()), 0);
    QCOMPARE(TVLProjectNode::childLevel(first), 1);
    QCOMPARE(TVLProjectNode::childLevel(second), 2);
}

void TstProjectNode::ancestorsRunFromTheParentToTheRoot()
{
    const NodePtr root = makeRoot();
    TVLProjectNode *first = addChild(root.get(), 1);
    TVLProjectNode *second = addChild(first, 2);
    const TVLProjectNode *third = addChild(second, 3);
    using Nodes = QList<TVLProjectNode *>;
    QCOMPARE(TVLProjectNode::ancestors(nullptr), Nodes());
    QCOMPARE(TVLProjectNode::ancestors(root.get()), Nodes());
    QCOMPARE(TVLProjectNode::ancestors(first), Nodes{root.get()});
    QCOMPARE(TVLProjectNode::ancestors(third), (Nodes{second, first, root.get()}));
}

void TstProjectNode::rowPositionsRunFromTheTopDown()
{
    const NodePtr root = makeRoot();
    addChild(root.get(), 1);
    TVLProjectNode *parent = addChild(root.get(), 2);
    addChild(parent, 3);
    addChild(parent, 4);
    const TVLProjectNode *node = addChild(parent, 5);
    QCOMPARE(node->parentRowPositions(), QList<int>({1, 2}));
    QCOMPARE(parent->parentRowPositions(), QList<int>{1});
    QCOMPARE(root->parentRowPositions(), QList<int>());
}

void TstProjectNode::aNodeIsFoundByItsRowPositions()
{
    const NodePtr root = makeRoot();
    addChild(root.get(), 1);
    TVLProjectNode *parent = addChild(root.get(), 2);
    addChild(parent, 3);
    addChild(parent, 4);
    TVLProjectNode *node = addChild(parent, 5);
    QCOMPARE(root->findNodeViaRowPositions({1, 2}), node);
    QCOMPARE(root->findNodeViaRowPositions({1}), parent);
    QCOMPARE(parent->findNodeViaRowPositions({2}), node);
}

void TstProjectNode::rowsThatLeadNowhereFindNothing_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::newRow("no rows") << QList<int>();
    QTest::newRow("below a childless node") << QList<int>{1, 0, 0};
    QTest::newRow("row behind the last") << QList<int>{2};
    QTest::newRow("row behind the last, further down") << QList<int>{1, 1};
    QTest::newRow("negative row") << QList<int>{-1};
    QTest::newRow("greatest row") << QList<int>{std::numeric_limits<int>::max()};
}

void TstProjectNode::rowsThatLeadNowhereFindNothing()
{
    QFETCH(QList<int>, rows);
    const NodePtr root = makeRoot();
    addChild(root.get(), 1);
    addChild(addChild(root.get(), 2), 3);
    QVERIFY(!root->findNodeViaRowPositions(rows));
}

void TstProjectNode::everyNodeOfATreeIsFoundByItsRowPositions()
{
    const NodePtr root = fetchedTree();
    tvlForEachNode(root.get(), [&](TVLProjectNode *node) {
        QCOMPARE(root->findNodeViaRowPositions(node->parentRowPositions()), node);
    });
}

void TstProjectNode::rowPositionsFindTheSamePlaceInAnotherTree()
{
    const RandomTreeOptions options{.nodes = 200, .deepest = 8, .seed = 5};
    const NodePtr left = makeRandomTree(options);
    const NodePtr right = makeRandomTree(options);
    tvlForEachNode(left.get(), [&](TVLProjectNode *node) {
        const TVLProjectNode *twin = right->findNodeViaRowPositions(node->parentRowPositions());
        QVERIFY(twin && twin != node);
        QCOMPARE(twin->mId, node->mId);
    });
}

void TstProjectNode::childIdsAreThoseOfDirectChildrenInOrder()
{
    const NodePtr root = makeRoot();
    QCOMPARE(root->childIDs(), QList<int>());
    addChild(addChild(root.get(), 8), 1);
    addChild(root.get(), 3);
    addChild(root.get(), -1);
    QCOMPARE(root->childIDs(), QList<int>({8, 3, -1}));
}

void TstProjectNode::theRootHasNoRow()
{
    QCOMPARE(makeRoot()->row(), -1);
}

void TstProjectNode::aNodeThatWasTakenOutHasNoRow()
{
    const NodePtr root = makeRoot();
    addChild(root.get(), 1);
    const NodePtr node(addChild(root.get(), 2));
    addChild(root.get(), 3);
    QCOMPARE(node->row(), 1);
    root->mChildren.removeAt(1);
    QCOMPARE(node->row(), -1);
    QVERIFY(rowsAreRight(root.get()));
    root->mChildren.insert(0, node.get());
    QCOMPARE(node->row(), 0);
    root->mChildren.removeFirst();
    QCOMPARE(node->row(), -1);
}

void TstProjectNode::rowStaysRightThroughRandomChanges_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 10; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void TstProjectNode::rowStaysRightThroughRandomChanges()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const NodePtr root = makeRoot();
    QList<TVLProjectNode *> &children = root->mChildren;
    for (int step = 0; step < 2000; ++step) {
        const int size = int(children.size());
        const int action = random.bounded(4);
        if (action == 0 || size < 2) {
            new TVLProjectNode({step, QUuid::createUuid()}, root.get(), random.bounded(size + 1));
        } else if (action == 1 && size > 30) {
            delete children.takeAt(random.bounded(size));
        } else if (action == 2) {
            children.move(random.bounded(size), random.bounded(size));
        } else {
            children.swapItemsAt(random.bounded(size), random.bounded(size));
        }
        // One at random, so that most hints are stale when they are asked for.
        const int row = random.bounded(int(children.size()));
        QCOMPARE(children.at(row)->row(), row);
        if (step % 50 == 0)
            QVERIFY(rowsAreRight(root.get()));
    }
}

void TstProjectNode::rowStaysRightHoweverFarItHasShifted_data()
{
    QTest::addColumn<int>("inserted");
    QTest::addColumn<int>("removed");
    QTest::newRow("by one") << 1 << 0;
    QTest::newRow("back by one") << 0 << 1;
    QTest::newRow("by most of the list") << 5000 << 0;
    QTest::newRow("back by most of the list") << 0 << 900;
}

void TstProjectNode::rowStaysRightHoweverFarItHasShifted()
{
    QFETCH(const int, inserted);
    QFETCH(const int, removed);
    const auto root = makeRoot();
    for (int i = 0; i < 1000; ++i)
        (void)TVLProjectNode::appendUndated({i, QUuid::createUuid()}, root.get());
    QVERIFY(rowsAreRight(root.get()));
    for (int i = 0; i < inserted; ++i)
        new TVLProjectNode({2000 + i, QUuid::createUuid()}, root.get(), 0);
    for (int i = 0; i < removed; ++i)
        (void)root->takeChild(0);
    const QList<TVLProjectNode *> &children = root->mChildren;
    QCOMPARE(children.constLast()->row(), int(children.size()) - 1);
    QCOMPARE(children.at(children.size() / 2)->row(), int(children.size()) / 2);
    QVERIFY(rowsAreRight(root.get()));
}

void TstProjectNode::aChildIsTakenAndInserted()
{
    const auto root = makeRoot();
    auto *a = new TVLProjectNode({1, QUuid::createUuid()}, root.get());
    auto *b = new TVLProjectNode({2, QUuid::createUuid()}, root.get());
    std::unique_ptr<TVLProjectNode> taken = root->takeChild(0);
    QCOMPARE(taken.get(), a);
    QVERIFY(!a->mParent);
    QCOMPARE(a->row(), -1);
    QCOMPARE(root->childIDs(), QList<int>({2}));
    b->insertChild(0, std::move(taken));
    QCOMPARE(a->mParent, b);
    QCOMPARE(a->row(), 0);
    root->insertChild(1, b->takeChild(0));
    QCOMPARE(root->childIDs(), QList<int>({2, 1}));
    QCOMPARE(a->row(), 1);
}

void TstProjectNode::rowIsRightInANewParent()
{
    const NodePtr root = makeRoot();
    TVLProjectNode *left = addChild(root.get(), 1);
    TVLProjectNode *right = addChild(root.get(), 2);
    for (int id = 10; id < 15; ++id)
        addChild(left, id);
    addChild(right, 20);
    TVLProjectNode *moved = left->mChildren.takeAt(4);
    moved->mParent = right;
    right->mChildren.prepend(moved);
    QCOMPARE(moved->row(), 0);
    QVERIFY(rowsAreRight(left));
    QVERIFY(rowsAreRight(right));
}

void TstProjectNode::askingAllOfManySiblingsForTheirRowsIsQuick()
{
    const NodePtr root = makeRoot();
    for (int id = 0; id < 100'000; ++id)
        addChild(root.get(), id);
    // Each hint is wrong now; a search per sibling would take longer than the test may.
    root->mChildren.move(0, root->mChildren.size() - 1);
    QVERIFY(rowsAreRight(root.get()));
    QCOMPARE(walk(root.get()).size(), 100'000);
}

void TstProjectNode::theWalkVisitsEveryDescendantInPreOrder()
{
    const NodePtr root = fetchedTree();
    QCOMPARE(walk(root.get()), plainWalk(root.get()));
}

void TstProjectNode::theWalkOfASubtreeStaysInIt()
{
    const NodePtr root = fetchedTree();
    tvlForEachNode(root.get(),
                   [](const TVLProjectNode *top) { QCOMPARE(walk(top), plainWalk(top)); });
}

void TstProjectNode::theLastNodeInPreOrderIsTheEndOfTheWalk()
{
    const NodePtr root = fetchedTree();
    const auto check = [](TVLProjectNode *top) {
        const QList<const TVLProjectNode *> nodes = plainWalk(top);
        const TVLProjectNode *last = nodes.isEmpty() ? top : nodes.constLast();
        QCOMPARE(top->lastInPreOrder(), last);
        QVERIFY(!last->nextInPreOrder(top));
    };
    check(root.get());
    tvlForEachNode(root.get(), check);
}

void TstProjectNode::forEachNodeVisitsWhatTheWalkVisits()
{
    const NodePtr root = makeRandomTree({.nodes = 300, .deepest = 10, .seed = 3});
    QList<const TVLProjectNode *> visited;
    tvlForEachNode(root.get(), [&visited](const TVLProjectNode *node) { visited.append(node); });
    QCOMPARE(visited, plainWalk(root.get()));
}

void TstProjectNode::destroyingANodeDestroysItsDescendants()
{
    // A node cuts its documents loose when it goes, which shows that it went.
    NodePtr root = makeRandomTree({.nodes = 300, .deepest = 10, .seed = 4});
    std::vector<std::unique_ptr<TVLTextDocument>> documents;
    tvlForEachNode(root.get(), [&documents](TVLProjectNode *node) {
        documents.push_back(
            std::make_unique<TVLTextDocument>(nullptr, nullptr, node, TVL::MainText));
        node->mTextDocument = documents.back().get();
        node->setIndexCardPixmap(pixmapOf(4, 4));
    });
    QCOMPARE(documents.size(), 300U);
    root.reset();
    for (const auto &document : documents)
        QVERIFY(!document->node());
}

void TstProjectNode::destroyingANodeCutsItsDocumentsLooseAndLeavesThemAlive()
{
    auto node =
        std::make_unique<TVLProjectNode>(QPair<int, QUuid>(1, QUuid::createUuid()), nullptr);
    int place = 0; // The document only keeps the address.
    auto *model = reinterpret_cast<TVLProjectModel *>(&place);
    TVLTextDocument text(nullptr, model, node.get(), TVL::MainText);
    TVLTextDocument synopsis(nullptr, model, node.get(), TVL::SynopsisText);
    TVLTextDocument notes(nullptr, model, node.get(), TVL::NotesText);
    text.setPlainText(u"words"_s);
    node->mTextDocument = &text;
    node->mSynopsisDocument = &synopsis;
    node->mNotesDocument = &notes;
    node.reset();
    for (const TVLTextDocument *document : {&text, &synopsis, &notes}) {
        QVERIFY(!document->model());
        QVERIFY(!document->node());
    }
    QCOMPARE(text.toPlainText(), u"words"_s);
}

void TstProjectNode::destroyingANodeCutsDocumentsOfDescendantsLoose()
{
    NodePtr root = makeRoot();
    TVLProjectNode *leaf = addChild(addChild(root.get(), 1), 2);
    TVLTextDocument notes(nullptr, nullptr, leaf, TVL::NotesText);
    leaf->mNotesDocument = &notes;
    root.reset();
    QVERIFY(!notes.node());
}

void TstProjectNode::aTreeOfAMillionLevelsIsDestroyed()
{
    const int Levels = testSize(1'000'000);
    NodePtr root = makeRoot();
    TVLProjectNode *deepest = root.get();
    for (int id = 0; id < Levels; ++id)
        deepest = new TVLProjectNode({id, QUuid()}, deepest);
    TVLTextDocument text(nullptr, nullptr, deepest, TVL::MainText);
    deepest->mTextDocument = &text;
    QCOMPARE(TVLProjectNode::childLevel(deepest), Levels);
    QCOMPARE(root->lastInPreOrder(), deepest);
    QVERIFY(!deepest->nextInPreOrder(root.get()));
    root.reset();
    QVERIFY(!text.node());
}

void TstProjectNode::aTreeOfManySiblingsIsDestroyed()
{
    NodePtr root = makeRoot();
    for (int id = 0; id < 200'000; ++id)
        new TVLProjectNode({id, QUuid()}, root.get());
    TVLTextDocument text(nullptr, nullptr, root->mChildren.constLast(), TVL::MainText);
    root->mChildren.constLast()->mTextDocument = &text;
    root.reset();
    QVERIFY(!text.node());
}

void TstProjectNode::theLargestIndexCardImageIs640By480()
{
    QCOMPARE(TVLProjectNode::defaultIndexCardSize(), QSize(640, 480));
}

void TstProjectNode::anIndexCardImageIsScaledIntoTheLimits_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("stored");
    QTest::newRow("both sides too large") << QSize(1280, 960) << QSize(640, 480);
    QTest::newRow("too wide") << QSize(1000, 100) << QSize(640, 64);
    QTest::newRow("too high") << QSize(100, 960) << QSize(50, 480);
    QTest::newRow("wide and high") << QSize(1280, 480) << QSize(640, 240);
    QTest::newRow("one pixel too wide") << QSize(641, 1) << QSize(640, 1);
    QTest::newRow("at the limits") << QSize(640, 480) << QSize(640, 480);
    QTest::newRow("inside the limits") << QSize(30, 20) << QSize(30, 20);
    QTest::newRow("one pixel") << QSize(1, 1) << QSize(1, 1);
}

void TstProjectNode::anIndexCardImageIsScaledIntoTheLimits()
{
    QFETCH(QSize, size);
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.setIndexCardPixmap(pixmapOf(size.width(), size.height()));
    QVERIFY(node.hasIndexCardPixmap());
    QTEST(node.indexCardPixmap().size(), "stored");
    QCOMPARE(node.indexCardPixmap().toImage().pixelColor(0, 0), QColor(Qt::red));
}

void TstProjectNode::aNullIndexCardImageCountsAsCached()
{
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.setIndexCardPixmap(QPixmap());
    QVERIFY(node.hasIndexCardPixmap());
    QVERIFY(node.indexCardPixmap().isNull());
}

void TstProjectNode::aNewIndexCardImageReplacesTheOldOne()
{
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.setIndexCardPixmap(pixmapOf(30, 20));
    node.setIndexCardPixmap(pixmapOf(10, 40));
    QCOMPARE(node.indexCardPixmap().size(), QSize(10, 40));
    node.setIndexCardPixmap(QPixmap());
    QVERIFY(node.indexCardPixmap().isNull());
}

void TstProjectNode::theIndexCardImageCanBeCleared()
{
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.clearIndexCardPixmap();
    QVERIFY(!node.hasIndexCardPixmap());
    node.setIndexCardPixmap(pixmapOf(30, 20));
    node.clearIndexCardPixmap();
    QVERIFY(!node.hasIndexCardPixmap());
    QVERIFY(node.indexCardPixmap().isNull());
}

void TstProjectNode::theIndexCardImageHandedOutIsACopy()
{
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.setIndexCardPixmap(pixmapOf(30, 20));
    QPixmap copy = node.indexCardPixmap();
    copy.fill(Qt::blue);
    QCOMPARE(node.indexCardPixmap().toImage().pixelColor(0, 0), QColor(Qt::red));
}

TVL_TEST(TstProjectNode)
#include "tst_projectnode.moc"
