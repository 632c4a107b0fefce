#include "ModelChecks.h"
#include "TestMain.h"

#include <QTest>

using namespace Qt::StringLiterals;

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
    QTest::newRow("one") << u"b"_s << u"a (b) c(d) e"_s;
    QTest::newRow("neighbours") << u"a b"_s << u"(a b) c(d) e"_s;
    QTest::newRow("in the order of the binder") << u"e a"_s << u"(a e) b c(d)"_s;
    QTest::newRow("a parent takes its child along") << u"c d"_s << u"a b (c(d)) e"_s;
    QTest::newRow("from different parents") << u"b d e"_s << u"a (b d e) c"_s;
    QTest::newRow("the first lies below") << u"d e"_s << u"a b c((d e))"_s;
}

void TstItemGroups::aGroupStandsWhereItsFirstMemberStood()
{
    QFETCH(const QString, members);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c(d) e"_s);
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
    addTree(model.get(), model->researchFolder(), u"a"_s);
    const QModelIndex group = model->groupIndexes(itemsTitled(model.get(), u"a"_s));
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
    addTree(model.get(), model->trashFolder(), u"a b"_s);
    QVERIFY(!model->groupIndexes(itemsTitled(model.get(), u"a b"_s)).isValid());
    QCOMPARE(treeText(model.get(), model->trashFolder()), u"a b"_s);
}

void TstItemGroups::membersComeOutBehindTheirGroup_data()
{
    QTest::addColumn<QString>("groups");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("isDone");
    QTest::newRow("one") << u"a"_s << u"a b c d(e(f)) g"_s << true;
    QTest::newRow("two") << u"d a"_s << u"a b c d e(f) g"_s << true;
    QTest::newRow("one in another") << u"d e"_s << u"a(b c) d e f g"_s << true;
    QTest::newRow("childless ones are passed over") << u"g a b"_s << u"a b c d(e(f)) g"_s << true;
    QTest::newRow("only childless ones") << u"g b"_s << u"a(b c) d(e(f)) g"_s << false;
}

void TstItemGroups::membersComeOutBehindTheirGroup()
{
    QFETCH(const QString, groups);
    QFETCH(const QString, expected);
    QFETCH(const bool, isDone);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b c) d(e(f)) g"_s);
    QCOMPARE(model->ungroupIndexes(itemsTitled(model.get(), groups)), isDone);
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QCOMPARE(model->isModified(), isDone);
}

void TstItemGroups::ungroupingUndoesAGroup()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c"_s);
    const QPersistentModelIndex group = model->groupIndexes(itemsTitled(model.get(), u"b c"_s));
    QVERIFY(model->ungroupIndexes({group}));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a  b c"_s);
    QVERIFY(!model->hasChildren(group));
}

TVL_TEST(TstItemGroups)
#include "tst_itemgroups.moc"
