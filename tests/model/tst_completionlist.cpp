#include "CompletionScopes.h"
#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Item = TVLAutoCompleteItem;
using Items = QList<TVLAutoCompleteItem>;

} // namespace

class TstCompletionList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewProjectHasNoCompletions();
    void theListIsSet();
    void anEqualListHasNoEffect();
    void aListThatDiffersIsTaken_data();
    void aListThatDiffersIsTaken();
    void aWordIsAppendedInItsScope_data();
    void aWordIsAppendedInItsScope();
    void aWordThatIsThereIsNotAddedAgain_data();
    void aWordThatIsThereIsNotAddedAgain();
    void wordsAreComparedExactly();
    void theTextsComeInTheOrderOfTheList();
    void theListIsInPlaceWhenItIsAnnounced();
    void itemsAreNotTouched();
};

void TstCompletionList::aNewProjectHasNoCompletions()
{
    const auto model = blankModel();
    QCOMPARE(model->autoCompleteList(), Items());
    QCOMPARE(model->autoCompleteStrings(), QStringList());
}

void TstCompletionList::theListIsSet()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setAutoCompleteList({{-2, u"Ann"_s}, {3, u"INT."_s}});
    QCOMPARE(log.lines(), QStringList({u"completions"_s, u"modified"_s}));
    QCOMPARE(model->autoCompleteList(), Items({{-2, u"Ann"_s}, {3, u"INT."_s}}));
    model->setAutoCompleteList({});
    QCOMPARE(model->autoCompleteList(), Items());
    QCOMPARE(log.lines().mid(2), QStringList{u"completions"_s});
}

void TstCompletionList::anEqualListHasNoEffect()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setAutoCompleteList({});
    QCOMPARE(log.lines(), QStringList());
    model->setAutoCompleteList({{-1, u"Ann"_s}, {3, u"Ben"_s}});
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog second(model.get());
    model->setAutoCompleteList({{-1, u"Ann"_s}, {3, u"Ben"_s}});
    QCOMPARE(second.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstCompletionList::aListThatDiffersIsTaken_data()
{
    QTest::addColumn<Items>("items");
    QTest::newRow("another scope") << Items({{-2, u"Ann"_s}, {3, u"Ben"_s}});
    QTest::newRow("another text") << Items({{-1, u"ann"_s}, {3, u"Ben"_s}});
    QTest::newRow("another order") << Items({{3, u"Ben"_s}, {-1, u"Ann"_s}});
    QTest::newRow("one less") << Items({{-1, u"Ann"_s}});
    QTest::newRow("a text twice") << Items({{-1, u"Ann"_s}, {3, u"Ben"_s}, {-2, u"Ann"_s}});
}

void TstCompletionList::aListThatDiffersIsTaken()
{
    QFETCH(const Items, items);
    const auto model = blankModel();
    model->setAutoCompleteList({{-1, u"Ann"_s}, {3, u"Ben"_s}});
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->setAutoCompleteList(items);
    QCOMPARE(model->autoCompleteList(), items);
    QCOMPARE(log.lines(), QStringList({u"completions"_s, u"modified"_s}));
}

void TstCompletionList::aWordIsAppendedInItsScope_data()
{
    addCompletionScopes();
    QTest::newRow("another scope") << 3 << 7 << 7;
    QTest::newRow("a negative scope") << -1 << 7 << 7;
}

void TstCompletionList::aWordIsAppendedInItsScope()
{
    QFETCH(const int, scope);
    QFETCH(const int, id);
    QFETCH(const int, number);
    const auto model = blankModel();
    model->setAutoCompleteList({{5, u"Ann"_s}});
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->addToAutoCompleteList(u"Ben"_s, Item::Scope(scope), id);
    QCOMPARE(model->autoCompleteList(), Items({{5, u"Ann"_s}, {number, u"Ben"_s}}));
    QCOMPARE(log.lines(), QStringList({u"completions"_s, u"modified"_s}));
}

void TstCompletionList::aWordThatIsThereIsNotAddedAgain_data()
{
    QTest::addColumn<int>("scope");
    QTest::addColumn<int>("id");
    QTest::newRow("in its scope") << int(TVLAutoCompleteItem::ScriptElement) << 5;
    QTest::newRow("in another element") << int(TVLAutoCompleteItem::ScriptElement) << 6;
    QTest::newRow("everywhere") << int(TVLAutoCompleteItem::Everywhere) << -1;
    QTest::newRow("in general text") << int(TVLAutoCompleteItem::GeneralText) << -1;
}

void TstCompletionList::aWordThatIsThereIsNotAddedAgain()
{
    QFETCH(const int, scope);
    QFETCH(const int, id);
    const auto model = blankModel();
    const Items items = {{-2, u"Ben"_s}, {5, u"Ann"_s}};
    model->setAutoCompleteList(items);
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    model->addToAutoCompleteList(u"Ann"_s, Item::Scope(scope), id);
    QCOMPARE(model->autoCompleteList(), items);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstCompletionList::wordsAreComparedExactly()
{
    const auto model = blankModel();
    const QStringList words = {u"Ann"_s, u"ann"_s, u"Ann "_s, u"\u00e9"_s, u"e\u0301"_s};
    for (int pass = 0; pass < 2; ++pass) {
        for (const QString &word : words)
            model->addToAutoCompleteList(word, Item::Everywhere, -1);
    }
    QCOMPARE(model->autoCompleteStrings(), words);
}

void TstCompletionList::theTextsComeInTheOrderOfTheList()
{
    const auto model = blankModel();
    model->setAutoCompleteList({{3, u"z"_s}, {-1, u"a"_s}, {-2, u"m"_s}, {0, u"a"_s}});
    QCOMPARE(model->autoCompleteStrings(), QStringList({u"z"_s, u"a"_s, u"m"_s, u"a"_s}));
}

void TstCompletionList::theListIsInPlaceWhenItIsAnnounced()
{
    const auto model = blankModel();
    QStringList seen;
    connect(model.get(), &TVLProjectModel::autoCompleteListChanged, this,
            [&] { seen.append(model->autoCompleteStrings().join(u',')); });
    model->setAutoCompleteList({{-2, u"Ann"_s}});
    model->addToAutoCompleteList(u"Ben"_s, Item::GeneralText, -1);
    QCOMPARE(seen, QStringList({u"Ann"_s, u"Ann,Ben"_s}));
}

void TstCompletionList::itemsAreNotTouched()
{
    const auto model = blankModel();
    makeAllOld(model.get());
    model->setAutoCompleteList({{-2, u"Ann"_s}});
    model->addToAutoCompleteList(u"Ben"_s, Item::GeneralText, -1);
    QCOMPARE(touchedIds(model.get()), QList<int>());
}

TVL_TEST(TstCompletionList)
#include "tst_completionlist.moc"
