#include "TestMain.h"

#include "TVLModel.h"

#include <QRandomGenerator>
#include <QStandardItemModel>
#include <QTest>

namespace {

void appendRecursively(const QStandardItem *parent, QModelIndexList *indexes)
{
    for (int row = 0; row < parent->rowCount(); ++row) {
        indexes->append(parent->child(row)->index());
        appendRecursively(parent->child(row), indexes);
    }
}

/** All items of a model below one in pre-order, by the plainest of recursions. */
QModelIndexList recursiveWalk(const QStandardItem *parent)
{
    QModelIndexList indexes;
    appendRecursively(parent, &indexes);
    return indexes;
}

} // namespace

class TstTvlModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void directChildrenComeInOrder();
    void onlyTheFirstColumnIsListed();
    void anIndexWithoutModelHasNoChildren();
    void anItemWithoutChildrenHasNone();
    void descendantsComeInPreOrder_data();
    void descendantsComeInPreOrder();
    void aLongChainIsWalked();
    void parentsComeNearestFirst();
    void aTopLevelItemHasNoValidParent();
    void parentsContainAncestorsAndNothingElse();
    void indexesAreComparedInPreOrder();
    void siblingsInOneRowAreComparedByColumn();
};

void TstTvlModel::directChildrenComeInOrder()
{
    QStandardItemModel model;
    QStandardItem *const parent = new QStandardItem;
    model.appendRow(parent);
    for (int i = 0; i < 4; ++i)
        parent->appendRow(new QStandardItem);
    parent->child(1)->appendRow(new QStandardItem);
    QCOMPARE(TVLModel::directChildren(parent->index()),
             QModelIndexList({parent->child(0)->index(), parent->child(1)->index(),
                              parent->child(2)->index(), parent->child(3)->index()}));
}

void TstTvlModel::onlyTheFirstColumnIsListed()
{
    QStandardItemModel model;
    QStandardItem *const parent = new QStandardItem;
    model.appendRow(parent);
    parent->appendRow({new QStandardItem, new QStandardItem, new QStandardItem});
    QCOMPARE(TVLModel::directChildren(parent->index()),
             QModelIndexList({parent->child(0)->index()}));
    QCOMPARE(TVLModel::childrenAndSubChildren(parent->index()),
             QModelIndexList({parent->child(0)->index()}));
}

void TstTvlModel::anIndexWithoutModelHasNoChildren()
{
    QCOMPARE(TVLModel::directChildren(QModelIndex()), QModelIndexList());
    QCOMPARE(TVLModel::childrenAndSubChildren(QModelIndex()), QModelIndexList());
    QCOMPARE(TVLModel::parents(QModelIndex()), QModelIndexList());
    QVERIFY(!TVLModel::parentsContain(QModelIndex(), QModelIndex()));
}

void TstTvlModel::anItemWithoutChildrenHasNone()
{
    QStandardItemModel model;
    model.appendRow(new QStandardItem);
    QCOMPARE(TVLModel::directChildren(model.index(0, 0)), QModelIndexList());
    QCOMPARE(TVLModel::childrenAndSubChildren(model.index(0, 0)), QModelIndexList());
}

void TstTvlModel::descendantsComeInPreOrder_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<quint32>("seed");
    for (const int items : {1, 2, 10, 300}) {
        for (quint32 seed = 1; seed <= 4; ++seed)
            QTest::addRow("%d items, seed %u", items, seed) << items << seed;
    }
}

void TstTvlModel::descendantsComeInPreOrder()
{
    QFETCH(const int, items);
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
    QStandardItemModel model;
    QList<QStandardItem *> all = {new QStandardItem};
    model.appendRow(all.constFirst());
    for (int i = 0; i < items; ++i) {
        QStandardItem *const parent = all.at(random.bounded(int(all.size())));
        QStandardItem *const item = new QStandardItem;
        parent->insertRow(random.bounded(parent->rowCount() + 1), item);
        all.append(item);
    }
    for (const QStandardItem *item : std::as_const(all)) {
        const QModelIndexList descendants = recursiveWalk(item);
        QCOMPARE(TVLModel::childrenAndSubChildren(item->index()), descendants);
        for (const QModelIndex &descendant : descendants)
            QVERIFY(TVLModel::parents(descendant).contains(item->index()));
    }
}

void TstTvlModel::aLongChainIsWalked()
{
    constexpr int Length = 2000;
    QStandardItemModel model;
    QStandardItem *item = model.invisibleRootItem();
    for (int i = 0; i <= Length; ++i) {
        QStandardItem *const child = new QStandardItem;
        item->appendRow(child);
        item = child;
    }
    QCOMPARE(TVLModel::childrenAndSubChildren(model.index(0, 0)).size(), Length);
    QCOMPARE(TVLModel::parents(item->index()).size(), Length);
}

void TstTvlModel::parentsComeNearestFirst()
{
    QStandardItemModel model;
    QStandardItem *const top = new QStandardItem;
    QStandardItem *const middle = new QStandardItem;
    QStandardItem *const leaf = new QStandardItem;
    model.appendRow(top);
    top->appendRow(middle);
    middle->appendRow(leaf);
    QCOMPARE(TVLModel::parents(leaf->index()), QModelIndexList({middle->index(), top->index()}));
}

void TstTvlModel::aTopLevelItemHasNoValidParent()
{
    QStandardItemModel model;
    model.appendRow(new QStandardItem);
    QCOMPARE(TVLModel::parents(model.index(0, 0)), QModelIndexList());
}

void TstTvlModel::parentsContainAncestorsAndNothingElse()
{
    QStandardItemModel model;
    QStandardItem *const top = new QStandardItem;
    QStandardItem *const other = new QStandardItem;
    QStandardItem *const middle = new QStandardItem;
    QStandardItem *const leaf = new QStandardItem;
    model.appendRow(top);
    model.appendRow(other);
    top->appendRow(middle);
    middle->appendRow(leaf);
    QVERIFY(TVLModel::parentsContain(leaf->index(), middle->index()));
    QVERIFY(TVLModel::parentsContain(leaf->index(), top->index()));
    QVERIFY(!TVLModel::parentsContain(leaf->index(), leaf->index()));
    QVERIFY(!TVLModel::parentsContain(leaf->index(), other->index()));
    QVERIFY(!TVLModel::parentsContain(middle->index(), leaf->index()));
    QVERIFY(!TVLModel::parentsContain(leaf->index(), QModelIndex()));
    QVERIFY(!TVLModel::parentsContain(top->index(), QModelIndex()));
}

void TstTvlModel::indexesAreComparedInPreOrder()
{
    QStandardItemModel model;
    QList<QStandardItem *> items = {model.invisibleRootItem()};
    QRandomGenerator random(17);
    for (int i = 0; i < 60; ++i) {
        auto *item = new QStandardItem;
        items.at(random.bounded(int(items.size())))->appendRow(item);
        items.append(item);
    }
    const QModelIndexList walk = recursiveWalk(model.invisibleRootItem());
    for (qsizetype a = 0; a < walk.size(); ++a) {
        for (qsizetype b = 0; b < walk.size(); ++b)
            QCOMPARE(TVLModel::lessThanIndex(walk.at(a), walk.at(b)), a < b);
    }
}

void TstTvlModel::siblingsInOneRowAreComparedByColumn()
{
    const QStandardItemModel model(2, 2);
    QVERIFY(TVLModel::lessThanIndex(model.index(0, 0), model.index(0, 1)));
    QVERIFY(!TVLModel::lessThanIndex(model.index(0, 1), model.index(0, 0)));
    QVERIFY(TVLModel::lessThanIndex(model.index(0, 1), model.index(1, 0)));
}

TVL_TEST(TstTvlModel)
#include "tst_tvlmodel.moc"
