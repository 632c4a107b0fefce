#include "FilledProject.h"
#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using References = QList<TVLReference>;
using Ids = QList<int>;

TVLReference toWebAddress(const QString &address, const QString &title)
{
    TVLReference reference;
    reference.setUrl(QUrl(address));
    reference.mTitle = title;
    return reference;
}

const TVLReference Map = toWebAddress(u"https://example.org/map"_s, u"Map"_s);
const TVLReference Diary = toItem(5, u"Diary"_s);

/** A blank project with the items 3 to 5 in its Draft. */
TestModel modelWithItems()
{
    auto model = blankModel();
    addTree(model.get(), model->draftFolder(), u"x y"_s);
    makeAllOld(model.get());
    return model;
}

/** An internal and an external reference of the same title and with the same address. */
std::pair<TVLReference, TVLReference> twinsOfTwoTypes()
{
    TVLReference internal = Map;
    internal.mInternalLink = 4;
    return {Map, internal};
}

/** References that differ from Map or from Diary, each in one thing. */
void addDifferentReferences()
{
    QTest::addColumn<TVLReference>("there");
    QTest::addColumn<TVLReference>("other");
    const auto [external, internal] = twinsOfTwoTypes();
    QTest::newRow("another title") << Map << toWebAddress(u"https://example.org/map"_s, u"map"_s);
    QTest::newRow("no title") << Map << toWebAddress(u"https://example.org/map"_s, QString());
    QTest::newRow("another address") << Map << toWebAddress(u"https://example.org/Map"_s, u"Map"_s);
    QTest::newRow("no address") << Map << toWebAddress(QString(), u"Map"_s);
    QTest::newRow("another item") << Diary << toItem(4, u"Diary"_s);
    QTest::newRow("the other type, internal") << external << internal;
    QTest::newRow("the other type, external") << internal << external;
}

} // namespace

class TstReferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Of items
    void aNewItemHasNoReferences();
    void referencesOfAnItemAreSet();
    void equalReferencesHaveNoEffect();
    void anotherOrderIsAnotherList();
    void referencesOfAnotherModelsItemAreRefused();
    void aReferenceIsAppended();
    void aReferenceThatIsThereHasNoEffect();
    void aReferenceOfAnItemThatDiffersIsAdded_data() { addDifferentReferences(); }
    void aReferenceOfAnItemThatDiffersIsAdded();
    void aReferenceIsRefusedWithoutAnItem();
    void theReferencesAreInPlaceWhenTheyAreAnnounced();

    // Of the project
    void aNewProjectHasNoReferences();
    void referencesOfTheProjectAreSet();
    void equalReferencesOfTheProjectHaveNoEffect();
    void aReferenceOfTheProjectIsAppended();
    void aReferenceOfTheProjectThatIsThereHasNoEffect();
    void aReferenceOfTheProjectThatDiffersIsAdded_data() { addDifferentReferences(); }
    void aReferenceOfTheProjectThatDiffersIsAdded();
    void aListMayHoldAReferenceTwice();
    void referencesOfTheProjectAreInPlaceWhenTheyAreAnnounced();
    void referencesOfProjectAndItemsDoNotMeddle();
};

// --- Of items

void TstReferences::aNewItemHasNoReferences()
{
    const auto model = modelWithItems();
    QCOMPARE(model->references(model->index(4)), References());
}

void TstReferences::referencesOfAnItemAreSet()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    QVERIFY(model->setReferences(model->index(4), {Map, Diary}));
    QCOMPARE(model->references(model->index(4)), References({Map, Diary}));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 4"_s}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
    QCOMPARE(model->references(model->index(3)), References());
    QVERIFY(model->setReferences(model->index(4), {}));
    QCOMPARE(model->references(model->index(4)), References());
    QCOMPARE(log.lines().size(), 3);
}

void TstReferences::equalReferencesHaveNoEffect()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    QVERIFY(model->setReferences(model->index(4), {}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->setReferences(model->index(4), {Map, Diary}));
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog second(model.get());
    QVERIFY(model->setReferences(model->index(4), {Map, Diary}));
    QCOMPARE(second.lines(), QStringList());
    QVERIFY(model->isSaved());
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstReferences::anotherOrderIsAnotherList()
{
    const auto model = modelWithItems();
    QVERIFY(model->setReferences(model->index(4), {Map, Diary}));
    const SignalLog log(model.get());
    QVERIFY(model->setReferences(model->index(4), {Diary, Map}));
    QCOMPARE(model->references(model->index(4)), References({Diary, Map}));
    QCOMPARE(log.lines(), QStringList{u"data 4"_s});
}

void TstReferences::referencesOfAnotherModelsItemAreRefused()
{
    const auto model = modelWithItems();
    const auto other = modelWithItems();
    QVERIFY(other->setReferences(other->index(4), {Map}));
    const SignalLog log(model.get());
    QVERIFY(!model->setReferences(other->index(4), {Diary}));
    QCOMPARE(model->references(other->index(4)), References());
    QCOMPARE(other->references(other->index(4)), References{Map});
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstReferences::aReferenceIsAppended()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    QVERIFY(model->addReference(model->index(4), Map));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 4"_s}));
    QVERIFY(model->addReference(model->index(4), Diary));
    QCOMPARE(model->references(model->index(4)), References({Map, Diary}));
    QCOMPARE(log.lines().mid(2), QStringList{u"data 4"_s});
    QCOMPARE(touchedIds(model.get()), Ids{4});
}

void TstReferences::aReferenceThatIsThereHasNoEffect()
{
    const auto model = modelWithItems();
    QVERIFY(model->setReferences(model->index(4), {Map, Diary}));
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->addReference(model->index(4), Map));
    QVERIFY(model->addReference(model->index(4), Diary));
    QCOMPARE(model->references(model->index(4)), References({Map, Diary}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstReferences::aReferenceOfAnItemThatDiffersIsAdded()
{
    QFETCH(const TVLReference, there);
    QFETCH(const TVLReference, other);
    const auto model = modelWithItems();
    QVERIFY(model->addReference(model->index(4), there));
    QVERIFY(model->addReference(model->index(4), other));
    QCOMPARE(model->references(model->index(4)), References({there, other}));
}

void TstReferences::aReferenceIsRefusedWithoutAnItem()
{
    const auto model = modelWithItems();
    const auto other = modelWithItems();
    const SignalLog log(model.get());
    for (const QModelIndex &index : {QModelIndex(), model->rootIndex(), other->index(4)})
        QVERIFY(!model->addReference(index, Map));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved() && other->isSaved());
    QVERIFY(model->binderRoot()->mReferences.isEmpty());
    QCOMPARE(other->references(other->index(4)), References());
    // Also when the other model's item has it already.
    QVERIFY(other->addReference(other->index(4), Map));
    QVERIFY(!model->addReference(other->index(4), Map));
}

void TstReferences::theReferencesAreInPlaceWhenTheyAreAnnounced()
{
    const auto model = modelWithItems();
    int calls = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&](const QModelIndex &index) {
        ++calls;
        QCOMPARE(model->references(index), References{Map});
        QVERIFY(isTouched(model.get(), index));
    });
    QVERIFY(model->addReference(model->index(4), Map));
    QCOMPARE(calls, 1);
}

// --- Of the project

void TstReferences::aNewProjectHasNoReferences()
{
    const auto model = blankModel();
    QVERIFY(!model->hasProjectReferences());
    QCOMPARE(model->projectReferences(), References());
}

void TstReferences::referencesOfTheProjectAreSet()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    model->setProjectReferences({Map, Diary});
    QCOMPARE(log.lines(), QStringList({u"references"_s, u"modified"_s}));
    QCOMPARE(model->projectReferences(), References({Map, Diary}));
    QVERIFY(model->hasProjectReferences());
    QCOMPARE(touchedIds(model.get()), Ids());
    model->setProjectReferences({Diary, Map});
    QCOMPARE(model->projectReferences(), References({Diary, Map}));
    model->setProjectReferences({});
    QVERIFY(!model->hasProjectReferences());
    QCOMPARE(log.lines().mid(2), QStringList({u"references"_s, u"references"_s}));
}

void TstReferences::equalReferencesOfTheProjectHaveNoEffect()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    model->setProjectReferences({});
    QCOMPARE(log.lines(), QStringList());
    model->setProjectReferences({Map, Diary});
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog second(model.get());
    model->setProjectReferences({Map, Diary});
    QCOMPARE(second.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstReferences::aReferenceOfTheProjectIsAppended()
{
    const auto model = modelWithItems();
    const SignalLog log(model.get());
    model->addProjectReference(Map);
    QCOMPARE(log.lines(), QStringList({u"references"_s, u"modified"_s}));
    model->addProjectReference(Diary);
    QCOMPARE(model->projectReferences(), References({Map, Diary}));
    QCOMPARE(log.lines().mid(2), QStringList{u"references"_s});
}

void TstReferences::aReferenceOfTheProjectThatIsThereHasNoEffect()
{
    const auto model = modelWithItems();
    model->setProjectReferences({Map, Diary});
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->addProjectReference(Map);
    model->addProjectReference(Diary);
    QCOMPARE(model->projectReferences(), References({Map, Diary}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstReferences::aReferenceOfTheProjectThatDiffersIsAdded()
{
    QFETCH(const TVLReference, there);
    QFETCH(const TVLReference, other);
    const auto model = modelWithItems();
    model->addProjectReference(there);
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->addProjectReference(other);
    QCOMPARE(model->projectReferences(), References({there, other}));
    QCOMPARE(log.lines(), QStringList({u"references"_s, u"modified"_s}));
}

void TstReferences::aListMayHoldAReferenceTwice()
{
    const auto model = modelWithItems();
    model->setProjectReferences({Map, Map});
    QCOMPARE(model->projectReferences(), References({Map, Map}));
    QVERIFY(model->setReferences(model->index(4), {Map, Map}));
    QCOMPARE(model->references(model->index(4)), References({Map, Map}));
}

void TstReferences::referencesOfTheProjectAreInPlaceWhenTheyAreAnnounced()
{
    const auto model = modelWithItems();
    int calls = 0;
    connect(model.get(), &TVLProjectModel::referencesChanged, this, [&] {
        ++calls;
        QCOMPARE(model->projectReferences(), References{Map});
    });
    model->addProjectReference(Map);
    QCOMPARE(calls, 1);
}

void TstReferences::referencesOfProjectAndItemsDoNotMeddle()
{
    const auto model = modelWithItems();
    model->setProjectReferences({Map});
    QVERIFY(model->setReferences(model->index(4), {Diary}));
    QCOMPARE(model->projectReferences(), References{Map});
    QCOMPARE(model->references(model->index(4)), References{Diary});
    QCOMPARE(model->references(QModelIndex()), References());
}

TVL_TEST(TstReferences)
#include "tst_references.moc"
