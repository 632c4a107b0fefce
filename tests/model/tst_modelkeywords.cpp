#include "ModelChecks.h"
#include "TVLKeywordModel.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include <QElapsedTimer>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Ids = QList<int>;

const QByteArray Dates = "Created='2024-01-02 03:04:05 +0000' Modified='2024-01-02 03:04:05 +0000'";

/** A blank project with the keywords a to d, 1 to 4, of which c is in b, and the items 3 to 6. */
TestModel modelWithKeywords()
{
    auto model = blankModel();
    addTree(model.get(), model->draftFolder(), u"x y z"_s);
    TVLKeywordModel *keywords = model->keywordModel();
    keywords->insertItem(0, QModelIndex(), u"a"_s);
    keywords->insertItem(1, QModelIndex(), u"b"_s);
    keywords->insertItem(0, keywords->index(2), u"c"_s);
    keywords->insertItem(2, QModelIndex(), u"d"_s);
    for (int id = 1; id <= 4; ++id)
        keywords->setColor(keywords->index(id), QColor(id, id, id));
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    return model;
}

/** What is wrong between the items and the rows of the search index; empty when they agree. */
QString documentsOutOfStep(const TVLProjectModel *model)
{
    QMap<int, QSet<int>> documents;
    const QModelIndexList items = recursiveWalk(model, QModelIndex());
    for (const QModelIndex &index : items) {
        const Ids ids = model->keywordIds(index);
        for (const int id : ids)
            documents[id].insert(model->nodeIdentity(index));
    }
    for (int id = 0; id < 200; ++id) {
        if (TVLProjectModelTestAccess::searchIndex(model).affectedDocuments(id)
            != documents.take(id))
            return u"the search index has other items for keyword %1"_s.arg(id);
    }
    return documents.isEmpty() ? QString() : u"an item has an unexpected keyword"_s;
}

QStringList dataLines(const Ids &ids)
{
    QStringList lines;
    for (const int id : ids)
        lines.append(u"data %1"_s.arg(id));
    return lines;
}

} // namespace

class TstModelKeywords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keywordIdsAreSet();
    void anEqualListChangesNothing();
    void anIndexOfAnotherModelHasNoKeywords();
    void keywordsComeInTheItemsOrder();
    void aKeywordThatIsGoneHasNeitherTitleNorColor();
    void keywordsAreSetByTitle();
    void anUnknownTitleMakesTheKeywordOnce();
    void titlesWithoutContentMakeNoKeyword();
    void settingKeywordsOfAnotherModelsItemMakesNone();
    void itemsAreMatched_data();
    void itemsAreMatched();
    void itemsAreMatchedBelowTheirParentOnly();
    void itemsAreMatchedInTheOrderOfTheBinder();

    void aRenamedKeywordIsAnnouncedOncePerItem();
    void aRecoloredKeywordIsAnnounced();
    void severalChangedKeywordsAreAnnouncedTogether();
    void changedKeywordsAreARangeOfSiblings_data();
    void changedKeywordsAreARangeOfSiblings();
    void aRemovedKeywordLeavesAllItems();
    void aRemovedKeywordIsGoneFromAnItemThatIsAnnounced();
    void removingAKeywordOfNoItemMarksTheProject();
    void everyChangeOfAKeywordMarksTheProject();
    void aReusedIdentityIsOnNoItem();
    void itemsWithoutIdsAreFoundToo();
    void itemsWithTheSameIdAreFoundToo();
    void itemsThatGetIdsAreFound();
    void anItemWithoutItsIdIsFound();

    void keywordsSurviveSavingAndOpening();
    void itemsOfAnOpenedProjectAreFound();
    void openingDoesNotMarkTheProject();
    void aDoubledIdentityLeavesOneKeyword();
    void randomEditsKeepItemsInStep();
    void manyItemsAndKeywordsOpen();
};

void TstModelKeywords::keywordIdsAreSet()
{
    const auto model = modelWithKeywords();
    const SignalLog log(model.get());
    QVERIFY(model->setKeywordIds(model->index(4), {3, 1}));
    QCOMPARE(model->keywordIds(model->index(4)), Ids({3, 1}));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 4"_s}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
    QCOMPARE(documentsOutOfStep(model.get()), QString());
    QVERIFY(model->setKeywordIds(model->index(4), {}));
    QCOMPARE(documentsOutOfStep(model.get()), QString());
}

void TstModelKeywords::anEqualListChangesNothing()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {3, 1}));
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setKeywordIds(model->index(4), {3, 1}));
    QVERIFY(model->setKeywords(model->index(4), {u"C"_s, u" a "_s, u"c"_s}));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstModelKeywords::anIndexOfAnotherModelHasNoKeywords()
{
    const auto model = modelWithKeywords();
    const auto other = modelWithKeywords();
    const QModelIndex foreign = other->index(4);
    QVERIFY(other->setKeywordIds(foreign, {1}));
    QVERIFY(!model->setKeywordIds(foreign, {2}));
    QCOMPARE(model->keywordIds(foreign), Ids());
    QCOMPARE(model->keywords(foreign), QStringList());
    QVERIFY(model->keywordColors(foreign).isEmpty());
    QVERIFY(model->keywordsWithColor(foreign).isEmpty());
    QVERIFY(!model->containsKeywords({1}, foreign));
    QCOMPARE(other->keywordIds(foreign), Ids{1});
}

void TstModelKeywords::keywordsComeInTheItemsOrder()
{
    const auto model = modelWithKeywords();
    const QModelIndex index = model->index(5);
    QVERIFY(model->setKeywordIds(index, {4, 1, 3}));
    QCOMPARE(model->keywords(index), QStringList({u"d"_s, u"a"_s, u"c"_s}));
    QCOMPARE(model->keywordColors(index),
             QList<QColor>({QColor(4, 4, 4), QColor(1, 1, 1), QColor(3, 3, 3)}));
    const QList<QPair<QString, QColor>> expected = {
        {u"d"_s, QColor(4, 4, 4)}, {u"a"_s, QColor(1, 1, 1)}, {u"c"_s, QColor(3, 3, 3)}};
    QCOMPARE(model->keywordsWithColor(index), expected);
    QCOMPARE(model->keywordTitle(2), u"b"_s);
}

void TstModelKeywords::aKeywordThatIsGoneHasNeitherTitleNorColor()
{
    const auto model = modelWithKeywords();
    const QModelIndex index = model->index(5);
    QVERIFY(model->setKeywordIds(index, {77, 1}));
    QCOMPARE(model->keywords(index), QStringList({QString(), u"a"_s}));
    QCOMPARE(model->keywordColors(index), QList<QColor>({QColor(), QColor(1, 1, 1)}));
    QCOMPARE(model->keywordTitle(77), QString());
    QCOMPARE(model->keywordTitle(-1), QString());
    // Set by title, it goes.
    QVERIFY(model->setKeywords(index, model->keywords(index)));
    QCOMPARE(model->keywordIds(index), Ids{1});
}

void TstModelKeywords::keywordsAreSetByTitle()
{
    const auto model = modelWithKeywords();
    const SignalLog log(model.get());
    QVERIFY(model->setKeywords(model->index(6), {u"d"_s, u"C"_s}));
    QCOMPARE(model->keywordIds(model->index(6)), Ids({4, 3}));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 6"_s}));
    QCOMPARE(model->keywordModel()->orderedIds(), Ids({1, 2, 3, 4}));
    QVERIFY(model->setKeywords(model->index(6), {}));
    QCOMPARE(model->keywordIds(model->index(6)), Ids());
}

void TstModelKeywords::anUnknownTitleMakesTheKeywordOnce()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywords(model->index(6), {u"new one"_s, u"a"_s, u"New  One"_s, u"last"_s}));
    QCOMPARE(model->keywordIds(model->index(6)), Ids({5, 1, 6}));
    QCOMPARE(model->keywords(model->index(6)), QStringList({u"new one"_s, u"a"_s, u"last"_s}));
    QCOMPARE(model->keywordModel()->orderedIds(), Ids({6, 5, 1, 2, 3, 4}));
    QCOMPARE(documentsOutOfStep(model.get()), QString());
}

void TstModelKeywords::titlesWithoutContentMakeNoKeyword()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywords(model->index(6), {u"  "_s, QString(), u"d"_s}));
    QCOMPARE(model->keywordIds(model->index(6)), Ids{4});
    QCOMPARE(model->keywordModel()->rowCount(), 3);
}

void TstModelKeywords::settingKeywordsOfAnotherModelsItemMakesNone()
{
    const auto model = modelWithKeywords();
    const auto other = modelWithKeywords();
    QVERIFY(!model->setKeywords(other->index(4), {u"new"_s}));
    QCOMPARE(model->keywordModel()->rowCount(), 3);
    QVERIFY(model->isSaved());
}

void TstModelKeywords::itemsAreMatched_data()
{
    QTest::addColumn<QSet<int>>("keywords");
    QTest::addColumn<int>("hits");
    QTest::addColumn<Ids>("found");
    QTest::newRow("all of one keyword") << QSet<int>{1} << 99 << Ids({3, 5});
    QTest::newRow("exactly as many") << QSet<int>{1} << 2 << Ids({3, 5});
    QTest::newRow("the first") << QSet<int>{1} << 1 << Ids{3};
    QTest::newRow("any of several") << QSet<int>{2, 4} << 99 << Ids({4, 5, 6});
    QTest::newRow("the first two of several") << QSet<int>{2, 4} << 2 << Ids({4, 5});
    QTest::newRow("without a limit") << QSet<int>{2, 4} << -1 << Ids({4, 5, 6});
    QTest::newRow("no hits") << QSet<int>{1} << 0 << Ids();
    QTest::newRow("no keywords") << QSet<int>() << 99 << Ids();
    QTest::newRow("a keyword of no item") << QSet<int>{3} << 99 << Ids();
}

void TstModelKeywords::itemsAreMatched()
{
    QFETCH(const QSet<int>, keywords);
    QFETCH(const int, hits);
    QFETCH(const Ids, found);
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(3), {1}));
    QVERIFY(model->setKeywordIds(model->index(4), {2}));
    QVERIFY(model->setKeywordIds(model->index(5), {4, 1}));
    QVERIFY(model->setKeywordIds(model->index(6), {2, 4}));
    const QModelIndexList indexes = model->matchKeywords(keywords, hits, QModelIndex());
    Ids ids;
    for (const QModelIndex &index : indexes)
        ids.append(model->nodeIdentity(index));
    QCOMPARE(ids, found);
    QCOMPARE(model->containsKeywords(keywords, QModelIndex()),
             !keywords.isEmpty() && keywords != QSet<int>{3});
}

void TstModelKeywords::itemsAreMatchedBelowTheirParentOnly()
{
    const auto model = modelWithKeywords();
    const QModelIndex inner = addItem(model.get(), model->index(4), TVL::Text);
    const QModelIndex research = addItem(model.get(), model->researchFolder(), TVL::Text);
    for (const QModelIndex &index : {model->index(4), inner, research})
        QVERIFY(model->setKeywordIds(index, {1}));
    QCOMPARE(model->matchKeywords({1}, 9, model->index(4)), QModelIndexList{inner});
    QCOMPARE(model->matchKeywords({1}, 9, model->draftFolder()),
             QModelIndexList({model->index(4), inner}));
    QVERIFY(!model->containsKeywords({1}, inner));
    QVERIFY(model->containsKeywords({1}, model->researchFolder()));
    QVERIFY(!model->containsKeywords({1}, model->trashFolder()));
}

void TstModelKeywords::itemsAreMatchedInTheOrderOfTheBinder()
{
    const auto model = modelWithKeywords();
    // Added last, and deeper than those behind it.
    addTree(model.get(), model->index(3), u"deep(er)"_s);
    const QModelIndex deep = itemTitled(model.get(), u"er"_s);
    for (const QModelIndex &index :
         {model->index(6), deep, model->trashFolder(), model->index(4), model->draftFolder()})
        QVERIFY(model->setKeywordIds(index, {1}));
    const QModelIndexList all = {model->draftFolder(), deep, model->index(4), model->index(6),
                                 model->trashFolder()};
    for (int hits = 1; hits <= 7; ++hits)
        QCOMPARE(model->matchKeywords({1}, hits, QModelIndex()), all.first(std::min(hits, 5)));
    QCOMPARE(model->matchKeywords({1}, 2, model->draftFolder()), all.mid(1, 2));
    QCOMPARE(model->matchKeywords({1}, 9, model->rootIndex()), all);
}

// --- Changes of keywords

void TstModelKeywords::aRenamedKeywordIsAnnouncedOncePerItem()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {1, 2, 1}));
    QVERIFY(model->setKeywordIds(model->index(6), {1}));
    QVERIFY(model->setKeywordIds(model->index(5), {2}));
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->keywordModel()->setTitle(model->keywordModel()->index(1), u"new"_s));
    QStringList lines = log.lines();
    lines.sort();
    QCOMPARE(lines, dataLines({4, 6}));
    QCOMPARE(touchedIds(model.get()), Ids());
    QCOMPARE(model->keywordIds(model->index(4)), Ids({1, 2, 1}));
    QCOMPARE(model->keywords(model->index(6)), QStringList{u"new"_s});
}

void TstModelKeywords::aRecoloredKeywordIsAnnounced()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {3}));
    const SignalLog log(model.get());
    QVERIFY(model->keywordModel()->setColor(model->keywordModel()->index(3), Qt::red));
    QVERIFY(model->keywordModel()->setColor(model->keywordModel()->index(1), Qt::red));
    QCOMPARE(log.lines(), dataLines({4}));
    QCOMPARE(model->keywordColors(model->index(4)), QList<QColor>{Qt::red});
}

void TstModelKeywords::severalChangedKeywordsAreAnnouncedTogether()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(3), {4}));
    QVERIFY(model->setKeywordIds(model->index(4), {1, 2}));
    QVERIFY(model->setKeywordIds(model->index(5), {3}));
    const SignalLog log(model.get());
    TVLKeywordModel *keywords = model->keywordModel();
    Q_EMIT keywords->dataChanged(keywords->index(1), keywords->index(2));
    QCOMPARE(log.lines(), dataLines({4}));
}

void TstModelKeywords::changedKeywordsAreARangeOfSiblings_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<Ids>("announced");
    QTest::newRow("one") << 5 << 5 << Ids{4};
    QTest::newRow("some of their parent's") << 5 << 6 << Ids({4, 5});
    QTest::newRow("all of their parent's") << 3 << 6 << Ids({3, 4, 5});
    // Those that lie in b are none of its siblings.
    QTest::newRow("the parent") << 2 << 2 << Ids{6};
    QTest::newRow("the parent and its siblings") << 1 << 4 << Ids{6};
}

void TstModelKeywords::changedKeywordsAreARangeOfSiblings()
{
    QFETCH(const int, first);
    QFETCH(const int, last);
    QFETCH(const Ids, announced);
    const auto model = modelWithKeywords();
    TVLKeywordModel *keywords = model->keywordModel();
    QVERIFY(keywords->insertItem(1, keywords->index(2), u"e"_s));
    QVERIFY(keywords->insertItem(2, keywords->index(2), u"f"_s));
    QVERIFY(model->setKeywordIds(model->index(3), {3}));
    QVERIFY(model->setKeywordIds(model->index(4), {5, 3}));
    QVERIFY(model->setKeywordIds(model->index(5), {6, 5, 3}));
    QVERIFY(model->setKeywordIds(model->index(6), {2, 4}));
    QVERIFY(model->setKeywordIds(model->index(5), {6}));
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    Q_EMIT keywords->dataChanged(keywords->index(first), keywords->index(last));
    QStringList lines = log.lines();
    lines.sort();
    QCOMPARE(lines, dataLines(announced));
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstModelKeywords::aRemovedKeywordLeavesAllItems()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {2, 1, 3, 4, 3}));
    QVERIFY(model->setKeywordIds(model->index(5), {3}));
    QVERIFY(model->setKeywordIds(model->index(6), {4}));
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(2)));
    QCOMPARE(model->keywordIds(model->index(4)), Ids({1, 4}));
    QCOMPARE(model->keywordIds(model->index(5)), Ids());
    QCOMPARE(model->keywordIds(model->index(6)), Ids{4});
    QStringList lines = log.lines();
    QCOMPARE(lines.takeLast(), u"modified"_s);
    lines.sort();
    QCOMPARE(lines, dataLines({4, 5}));
    QCOMPARE(touchedIds(model.get()), Ids());
    QCOMPARE(documentsOutOfStep(model.get()), QString());
}

void TstModelKeywords::aRemovedKeywordIsGoneFromAnItemThatIsAnnounced()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {2, 3, 4}));
    int calls = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&](const QModelIndex &index) {
        ++calls;
        QCOMPARE(model->keywordIds(index), Ids{4});
    });
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(2)));
    QCOMPARE(calls, 1);
}

void TstModelKeywords::removingAKeywordOfNoItemMarksTheProject()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->isSaved());
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(1)));
    QVERIFY(model->isModified());
}

void TstModelKeywords::everyChangeOfAKeywordMarksTheProject()
{
    const auto model = modelWithKeywords();
    TVLKeywordModel *keywords = model->keywordModel();
    const QList<std::function<void()>> changes = {
        [&] { keywords->insertItem(0, QModelIndex(), u"n"_s); },
        [&] { keywords->setTitle(keywords->index(1), u"m"_s); },
        [&] { keywords->setColor(keywords->index(1), Qt::red); },
        [&] { keywords->addChild(9, 1); },
        [&] {
            QMimeData mime;
            mime.setText(u"d"_s);
            keywords->dropMimeData(&mime, Qt::MoveAction, 0, 0, QModelIndex());
        },
    };
    for (const auto &change : changes) {
        TVLProjectModelTestAccess::setSaved(model.get());
        change();
        QVERIFY(model->isModified());
    }
}

void TstModelKeywords::aReusedIdentityIsOnNoItem()
{
    const auto model = modelWithKeywords();
    QVERIFY(model->setKeywordIds(model->index(4), {3, 1}));
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(3)));
    QVERIFY(model->keywordModel()->insertItem(0, QModelIndex(), u"new"_s));
    QCOMPARE(model->keywordTitle(3), u"new"_s);
    QVERIFY(!model->containsKeywords({3}, QModelIndex()));
}

void TstModelKeywords::itemsWithoutIdsAreFoundToo()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex first = addItem(model.get(), QModelIndex(), TVL::Text);
    const QModelIndex second = addItem(model.get(), QModelIndex(), TVL::Text);
    QCOMPARE(model->nodeIdentity(first), -1);
    QVERIFY(model->setKeywords(first, {u"a"_s}));
    QVERIFY(model->setKeywords(second, {u"b"_s, u"a"_s}));
    const QSignalSpy data(model.get(), &TVLProjectModel::dataChanged);
    QVERIFY(model->keywordModel()->setColor(model->keywordModel()->index(2), Qt::red));
    QCOMPARE(data.size(), 1);
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->findTitle(u"a"_s)));
    QCOMPARE(model->keywordIds(first), Ids());
    QCOMPARE(model->keywords(second), QStringList{u"b"_s});
}

void TstModelKeywords::itemsWithTheSameIdAreFoundToo()
{
    const TestProject project;
    project.writeFile(
        u"Novel.tavelx"_s,
        binderXml("<BinderItem ID='5' UUID='00000000-0000-4000-8000-000000000001' " + Dates
                      + " Type='Text'><Keywords><KeywordID>1</KeywordID></Keywords>"
                        "</BinderItem>"
                        "<BinderItem ID='5' UUID='00000000-0000-4000-8000-000000000002' "
                      + Dates
                      + " Type='Text'><Keywords><KeywordID>1</KeywordID></Keywords>"
                        "</BinderItem>",
                  "<Keywords><Keyword ID='1'><Title>a</Title></Keyword></Keywords>"));
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(1)));
    QVERIFY(!model->containsKeywords({1}, QModelIndex()));
}

void TstModelKeywords::itemsThatGetIdsAreFound()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex item = addItem(model.get(), QModelIndex(), TVL::Text);
    QVERIFY(model->setKeywords(item, {u"a"_s}));
    model->populateMissingIDs();
    QCOMPARE(model->nodeIdentity(item), 0);
    QCOMPARE(documentsOutOfStep(model.get()), QString());
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(1)));
    QCOMPARE(model->keywordIds(item), Ids());
}

void TstModelKeywords::anItemWithoutItsIdIsFound()
{
    const auto model = modelWithKeywords();
    const QModelIndex item = model->index(4);
    QVERIFY(model->setKeywordIds(item, {1}));
    model->clearIndexId(item);
    QVERIFY(TVLProjectModelTestAccess::searchIndex(model.get()).affectedDocuments(1).isEmpty());
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(1)));
    QCOMPARE(model->keywordIds(item), Ids());
}

// --- Saving and opening

void TstModelKeywords::keywordsSurviveSavingAndOpening()
{
    const TestProject project;
    QList<TVLBinderKeyword> keywords;
    {
        const auto model = project.create();
        const QModelIndex text = firstText(model.get());
        QVERIFY(model->setKeywords(text, {u"a & b"_s, u"<c>"_s}));
        QVERIFY(model->keywordModel()->insertItem(0, model->keywordModel()->index(1), u"d"_s));
        keywords = model->projectKeywords();
        QVERIFY(model->save(true));
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->projectKeywords(), keywords);
    QCOMPARE(model->keywords(firstText(model.get())), QStringList({u"a & b"_s, u"<c>"_s}));
}

void TstModelKeywords::itemsOfAnOpenedProjectAreFound()
{
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(model->setKeywords(firstText(model.get()), {u"a"_s, u"b"_s}));
        QVERIFY(model->save(true));
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(documentsOutOfStep(model.get()), QString());
    TVLProjectModelTestAccess::setSaved(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->findTitle(u"a"_s)));
    QCOMPARE(model->keywords(firstText(model.get())), QStringList{u"b"_s});
    QCOMPARE(log.lines(), QStringList({u"data 3"_s, u"modified"_s}));
}

void TstModelKeywords::openingDoesNotMarkTheProject()
{
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(model->setKeywords(firstText(model.get()), {u"a"_s}));
        QVERIFY(model->save(true));
    }
    // What the binder says of backups marks it in any case.
    QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    const QByteArray endTag = "</BackupSettings>";
    const qsizetype start = binder.indexOf("<BackupSettings>");
    QVERIFY(start > 0);
    binder.remove(start, binder.indexOf(endTag) + endTag.size() - start);
    project.writeFile(u"Novel.tavelx"_s, binder);
    const auto model = project.open();
    QVERIFY(model && model->isSaved());
    const QMap<QString, QByteArray> before = project.files();
    QVERIFY(model->save());
    QCOMPARE(project.files(), before);
}

void TstModelKeywords::aDoubledIdentityLeavesOneKeyword()
{
    const TestProject project;
    project.writeFile(
        u"Novel.tavelx"_s,
        binderXml("<BinderItem ID='5' UUID='00000000-0000-4000-8000-000000000001' " + Dates
                      + " Type='Text'><Keywords><KeywordID>2</KeywordID></Keywords></BinderItem>",
                  "<Keywords>"
                  "<Keyword ID='1'><Title>a</Title><Children>"
                  "<Keyword ID='2'><Title>b</Title><Color>1 0 0</Color><Children>"
                  "<Keyword ID='3'><Title>c</Title></Keyword>"
                  "<Keyword ID='1'><Title>d</Title></Keyword>"
                  "</Children></Keyword></Children></Keyword>"
                  "<Keyword ID='2'><Title>e</Title></Keyword>"
                  "</Keywords>"));
    const auto model = project.open();
    QVERIFY(model);
    const QList<TVLBinderKeyword> expected = {
        {1, -1, u"d"_s, {}}, {2, -1, u"e"_s, {}}, {3, 2, u"c"_s, {}}};
    QCOMPARE(model->projectKeywords(), expected);
    QCOMPARE(model->keywords(model->index(5)), QStringList{u"e"_s});
}

void TstModelKeywords::randomEditsKeepItemsInStep()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 40, 3);
    TVLKeywordModel *keywords = model->keywordModel();
    QRandomGenerator random(8);
    const QModelIndexList items = recursiveWalk(model.get(), QModelIndex());
    const auto anyItem = [&] { return items.at(random.bounded(int(items.size()))); };
    const auto anyTitle = [&] { return u"W%1"_s.arg(random.bounded(40)); };
    const auto anyKeyword = [&] { return keywords->findTitle(anyTitle()); };
    for (int step = 1; step <= 10000; ++step) {
        switch (random.bounded(6)) {
        case 0:
            model->setKeywords(anyItem(), {anyTitle(), anyTitle(), anyTitle()});
            break;
        case 1:
            model->setKeywordIds(anyItem(), {random.bounded(40), random.bounded(40)});
            break;
        case 2:
            keywords->insertItem(random.bounded(9), anyKeyword(), anyTitle());
            break;
        case 3:
            keywords->setTitle(anyKeyword(), anyTitle());
            break;
        case 4:
            if (random.bounded(4) == 0)
                keywords->removeItem(anyKeyword());
            break;
        default: {
            QMimeData mime;
            mime.setText(anyTitle());
            keywords->dropMimeData(&mime, Qt::MoveAction, random.bounded(9) - 1, 0, anyKeyword());
        }
        }
        if (step % 100 == 0)
            QCOMPARE(documentsOutOfStep(model.get()), QString());
    }
}

void TstModelKeywords::manyItemsAndKeywordsOpen()
{
    const int Count = testSize(100000);
    const TestProject project;
    const auto writeBinder = [&](bool withKeywords) {
        QByteArray items;
        QByteArray keywords;
        for (int id = 1; id <= Count; ++id) {
            const QByteArray number = QByteArray::number(id);
            items += "<BinderItem ID='" + number + "' UUID='00000000-0000-4000-8000-"
                + number.rightJustified(12, '0') + "' " + Dates + " Type='Text'><Title>T</Title>";
            if (withKeywords)
                items += "<Keywords><KeywordID>" + number + "</KeywordID></Keywords>";
            items += "</BinderItem>";
            keywords += "<Keyword ID='" + number + "'><Title>K " + number
                + "</Title><Color>0 1 0</Color></Keyword>";
        }
        project.writeFile(
            u"Novel.tavelx"_s,
            binderXml(items,
                      withKeywords ? "<Keywords>" + keywords + "</Keywords>" : QByteArray()));
    };
    QElapsedTimer timer;
    for (const bool withKeywords : {false, true}) {
        writeBinder(withKeywords);
        timer.start();
        const auto model = project.open().release();
        QVERIFY(model);
        qInfo("%d items opened %s keywords in %lld ms", Count, withKeywords ? "with" : "without",
              timer.restart());
        if (!withKeywords)
            continue;
        QCOMPARE(model->keywordModel()->rowCount(), Count);
        for (int id = Count; id > Count - 5000; --id)
            QVERIFY(model->keywordModel()->removeItem(model->keywordModel()->index(id)));
        for (int id = 1; id <= 5000; ++id)
            QVERIFY(model->setKeywords(model->index(id), {u"k %1"_s.arg(id + 1)}));
        QCOMPARE(model->matchKeywords({Count}, 1, QModelIndex()).size(), 0);
        qInfo("keywords removed and set in %lld ms", timer.elapsed());
    }
}

TVL_TEST(TstModelKeywords)
#include "tst_modelkeywords.moc"
