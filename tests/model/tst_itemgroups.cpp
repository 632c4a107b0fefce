#include "ModelChecks.h"
#include "TestMain.h"

#include <QTest>

class TstItemGroups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aGroupStandsWhereItsFirstMemberStood_data();
    void aGroupStandsWhereItsFirstMemberStood();
    void aGroupIsAnOrdinaryText();
    void aGroupOfNothingIsNone();
    void aRefusedGroupLeavesItsEmptyRow();
    void noGroupIsMadeInTheTrash();
    void membersComeOutBehindTheirGroup_data();
    void membersComeOutBehindTheirGroup();
    void ungroupingUndoesAGroup();
};

void TstItemGroups::aGroupStandsWhereItsFirstMemberStood_data()
{
    QTest::addColumn<QString>("members");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one") << u"b"_qs << u"a (b) c(d) e"_qs;
    QTest::newRow("neighbours") << u"a b"_qs << u"(a b) c(d) e"_qs;
    QTest::newRow("in the order of the binder") << u"e a"_qs << u"(a e) b c(d)"_qs;
    QTest::newRow("a parent takes its child along") << u"c d"_qs << u"a b (c(d)) e"_qs;
    QTest::newRow("from different parents") << u"b d e"_qs << u"a (b d e) c"_qs;
    QTest::newRow("the first lies below") << u"d e"_qs << u"a b c((d e))"_qs;
}

void TstItemGroups::aGroupStandsWhereItsFirstMemberStood()
{
    QFETCH(const QString, members);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c(d) e"_qs);
    const QModelIndex group = model->groupIndexes(itemsTitled(model.get(), members));
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QVERIFY(group.isValid());
    QVERIFY(model->title(group).isEmpty());
    QVERIFY(model->hasChildren(group));
    QVERIFY(model->isModified());
}

void TstItemGroups::aGroupIsAnOrdinaryText()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a"_qs);
    const QModelIndex group = model->groupIndexes(itemsTitled(model.get(), u"a"_qs));
    QCOMPARE(int(model->type(group)), int(TVL::Text));
}

void TstItemGroups::aGroupOfNothingIsNone()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->groupIndexes({}).isValid());
    QVERIFY(!model->groupIndexes({QModelIndex()}).isValid());
    QVERIFY(!model->groupIndexes({firstText(other.get())}).isValid());
    QVERIFY(!model->ungroupIndexes({}));
    QVERIFY(model->isSaved());
}

void TstItemGroups::aRefusedGroupLeavesItsEmptyRow()
{
    const auto model = blankModel();
    QVERIFY(!model->groupIndexes({model->researchFolder(), model->draftFolder()}).isValid());
    QCOMPARE(model->rowCount(), 4);
    QCOMPARE(model->draftFolder().row(), 1);
    QVERIFY(model->title(model->index(0, 0)).isEmpty());
}

void TstItemGroups::noGroupIsMadeInTheTrash()
{
    const auto model = blankModel();
    addTree(model.get(), model->trashFolder(), u"a b"_qs);
    QVERIFY(!model->groupIndexes(itemsTitled(model.get(), u"a b"_qs)).isValid());
    QCOMPARE(treeText(model.get(), model->trashFolder()), u"a b"_qs);
}

void TstItemGroups::membersComeOutBehindTheirGroup_data()
{
    QTest::addColumn<QString>("groups");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("isDone");
    QTest::newRow("one") << u"a"_qs << u"a b c d(e(f)) g"_qs << true;
    QTest::newRow("two") << u"d a"_qs << u"a b c d e(f) g"_qs << true;
    QTest::newRow("one in another") << u"d e"_qs << u"a(b c) d e f g"_qs << true;
    QTest::newRow("childless ones are passed over") << u"g a b"_qs << u"a b c d(e(f)) g"_qs << true;
    QTest::newRow("only childless ones") << u"g b"_qs << u"a(b c) d(e(f)) g"_qs << false;
}

void TstItemGroups::membersComeOutBehindTheirGroup()
{
    QFETCH(const QString, groups);
    QFETCH(const QString, expected);
    QFETCH(const bool, isDone);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b c) d(e(f)) g"_qs);
    QCOMPARE(model->ungroupIndexes(itemsTitled(model.get(), groups)), isDone);
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QCOMPARE(model->isModified(), isDone);
}

void TstItemGroups::ungroupingUndoesAGroup()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c"_qs);
    const QPersistentModelIndex group = model->groupIndexes(itemsTitled(model.get(), u"b c"_qs));
    QVERIFY(model->ungroupIndexes({group}));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a  b c"_qs);
    QVERIFY(!model->hasChildren(group));
}

TVL_TEST(TstItemGroups)
#include "tst_itemgroups.moc"
