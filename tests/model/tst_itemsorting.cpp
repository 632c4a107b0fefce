#include "ModelChecks.h"
#include "TVLTextDocument.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QString titlesOf(const TVLProjectModel *model, const QModelIndexList &indexes)
{
    return model->titles(indexes).join(u' ');
}

} // namespace

class TstItemSorting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsAreSortedByColumn_data();
    void listsAreSortedByColumn();
    void titlesAreComparedAsTheLocaleDoes();
    void labelsAndStatusItemsAreComparedByTitle();
    void synopsesAreComparedByPlaceInMemory();
    void progressIsCounted();
    void sortingDoesNotCount();
    void otherColumnsGiveTheOrderOfTheBinderWhateverTheOrder();
    void sortingChangesNoTree();
    void equalItemsKeepTheirOrder();
    void indexesOfNothingAndOfOtherModelsAreLeftOut();
    void theBinderOrderIsPreOrder();
    void theHashSortAgreesWithTheOthers();
    void shufflingKeepsAllItems();
    void foldersAndItemsAreCounted();
    void flatteningMakesAllItemsTopLevel();
    void identitiesAndTitlesAreListed();
    void siblingsWithATitleAreFound();
    void titlesAreMadeUnique_data();
    void titlesAreMadeUnique();
};

using Set = std::function<void(TVLProjectNode *, int)>;
Q_DECLARE_METATYPE(Set)

void TstItemSorting::listsAreSortedByColumn_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Set>("set");
    const auto row = [](const char *name, TVL::Columns column, const Set &set) {
        QTest::newRow(name) << int(column) << set;
    };
    const QDateTime start(QDate(2020, 1, 1), QTime(0, 0));
    row("created", TVL::CreatedColumn,
        [start](TVLProjectNode *node, int key) { node->mCreated = start.addDays(key); });
    row("modified", TVL::ModifiedColumn,
        [start](TVLProjectNode *node, int key) { node->mModified = start.addDays(key); });
    row("words are the session's base", TVL::WordCountColumn, [](TVLProjectNode *node, int key) {
        node->mSessionWordCount = key;
        node->mWordCount = -key;
    });
    row("characters", TVL::CharacterCountColumn,
        [](TVLProjectNode *node, int key) { node->mCharacterCount = key; });
    row("total words are the item's", TVL::TotalWordCountColumn, [](TVLProjectNode *node, int key) {
        node->mWordCount = key;
        node->mSessionWordCount = -key;
    });
    row("total characters are the item's", TVL::TotalCharacterCountColumn,
        [](TVLProjectNode *node, int key) { node->mCharacterCount = key; });
    row("target", TVL::TargetColumn, [](TVLProjectNode *node, int key) { node->mTarget = key; });
    row("target type", TVL::TargetTypeColumn,
        [](TVLProjectNode *node, int key) { node->mTargetType = TVL::TargetType(key > 1); });
    row("included", TVL::IncludeInCompileColumn,
        [](TVLProjectNode *node, int key) { node->mIncludeInCompile = key > 1; });
    row("page break", TVL::PageBreakBeforeColumn,
        [](TVLProjectNode *node, int key) { node->mPageBreakBefore = key > 1; });
    row("format kept", TVL::PreserveFormattingColumn,
        [](TVLProjectNode *node, int key) { node->mCompileAsIs = key > 1; });
}

void TstItemSorting::listsAreSortedByColumn()
{
    QFETCH(const int, column);
    QFETCH(const Set, set);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c d"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"a b c d"_s);
    const int keys[] = {2, 0, 3, 1};
    for (int i = 0; i < 4; ++i)
        set(model->projectNode(indexes.at(i)), keys[i]);
    const bool isFlag = column == TVL::TargetTypeColumn
        || (column >= TVL::IncludeInCompileColumn && column <= TVL::PreserveFormattingColumn);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::Columns(column), Qt::AscendingOrder)),
             u"b d a c"_s);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::Columns(column), Qt::DescendingOrder)),
             isFlag ? u"a c b d"_s : u"c a d b"_s);
}

void TstItemSorting::titlesAreComparedAsTheLocaleDoes()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"b a ä C"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"b a ä C"_s);
    QStringList expected = model->titles(indexes);
    std::sort(expected.begin(), expected.end(), [](const QString &a, const QString &b) {
        return QString::localeAwareCompare(a, b) < 0;
    });
    QCOMPARE(model->titles(TVLProjectModel::sort(indexes, TVL::TitleColumn, Qt::AscendingOrder)),
             expected);
    std::reverse(expected.begin(), expected.end());
    QCOMPARE(model->titles(TVLProjectModel::sort(indexes, TVL::TitleColumn, Qt::DescendingOrder)),
             expected);
}

void TstItemSorting::labelsAndStatusItemsAreComparedByTitle()
{
    const auto model = blankModel();
    model->setLabels({{0, u"z"_s, QColor()}, {1, u"b"_s, QColor()}, {2, u"m"_s, QColor()}});
    model->setStatusItems({{0, u"m"_s}, {1, u"z"_s}, {2, u"b"_s}});
    addTree(model.get(), model->researchFolder(), u"a b c d"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"a b c d"_s);
    for (int i = 0; i < 3; ++i) {
        model->setLabelIdentity(indexes.at(i), i);
        model->setStatusIdentity(indexes.at(i), i);
    }
    // "No Label" has a title too, but an item without one counts as having none.
    model->setLabelIdentity(indexes.at(3), -1);
    model->setStatusIdentity(indexes.at(3), -1);
    QCOMPARE(
        titlesOf(model.get(), TVLProjectModel::sort(indexes, TVL::LabelColumn, Qt::AscendingOrder)),
        u"d b c a"_s);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::LabelColumn, Qt::DescendingOrder)),
             u"a c b d"_s);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::StatusColumn, Qt::AscendingOrder)),
             u"d c a b"_s);
}

void TstItemSorting::synopsesAreComparedByPlaceInMemory()
{
    const TestProject project;
    auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b c"_s);
    QVERIFY(model->save(true));
    model->prepareToDestroy();
    model = project.open();
    const QModelIndexList indexes = itemsTitled(model.get(), u"a b c"_s);
    (void)model->synopsis(indexes.at(0));
    (void)model->synopsis(indexes.at(2));
    const bool isAFirst = quintptr(model->projectNode(indexes.at(0))->mSynopsisDocument)
        < quintptr(model->projectNode(indexes.at(2))->mSynopsisDocument);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::SynopsisColumn, Qt::AscendingOrder)),
             isAFirst ? u"b a c"_s : u"b c a"_s);
    QCOMPARE(titlesOf(model.get(),
                      TVLProjectModel::sort(indexes, TVL::SynopsisColumn, Qt::DescendingOrder)),
             isAFirst ? u"c a b"_s : u"a c b"_s);
}

void TstItemSorting::progressIsCounted()
{
    const auto model = blankModel();
    for (const QString &words : {u"one two three"_s, u"one"_s, u"one two"_s}) {
        const QModelIndex index =
            model->insertTextNode(-1, model->researchFolder(), words, words, {}, {});
        model->projectNode(index)->mTarget = 10;
    }
    const QModelIndexList indexes = recursiveWalk(model.get(), model->researchFolder());
    const QModelIndexList sorted =
        TVLProjectModel::sort(indexes, TVL::ProgressColumn, Qt::AscendingOrder);
    QCOMPARE(model->titles(sorted), QStringList({u"one"_s, u"one two"_s, u"one two three"_s}));
}

void TstItemSorting::sortingDoesNotCount()
{
    const TestProject project;
    auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    QVERIFY(model->save(true));
    model->prepareToDestroy();
    model = project.open();
    const QModelIndexList indexes = itemsTitled(model.get(), u"a b"_s);
    for (int column = TVL::TitleColumn; column <= TVL::ProgressColumn; ++column)
        (void)TVLProjectModel::sort(indexes, TVL::Columns(column), Qt::AscendingOrder);
    QCOMPARE(model->loadedNodes().size(), 0);
    QCOMPARE(model->projectNode(indexes.constFirst())->mWordCount, -1);
}

void TstItemSorting::otherColumnsGiveTheOrderOfTheBinderWhateverTheOrder()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"c a b"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"b a c"_s);
    for (const int column : {16, 20, -1}) {
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            QCOMPARE(
                titlesOf(model.get(), TVLProjectModel::sort(indexes, TVL::Columns(column), order)),
                u"c a b"_s);
        }
    }
}

void TstItemSorting::sortingChangesNoTree()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"c a b"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"b a c"_s);
    (void)TVLProjectModel::sort(indexes, TVL::TitleColumn, Qt::AscendingOrder);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"c a b"_s);
    QVERIFY(model->isSaved());
}

void TstItemSorting::equalItemsKeepTheirOrder()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c d"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"c a d b"_s);
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder})
        QCOMPARE(TVLProjectModel::sort(indexes, TVL::TargetColumn, order), indexes);
}

void TstItemSorting::indexesOfNothingAndOfOtherModelsAreLeftOut()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex research = model->researchFolder();
    const QModelIndex b = model->insertTextNode(-1, research, u"b"_s, {}, {}, {});
    const QModelIndex a = model->insertTextNode(-1, research, u"a"_s, {}, {}, {});
    const QModelIndexList mixed = {QModelIndex(), b, firstText(other.get()), a, QModelIndex()};
    QCOMPARE(TVLProjectModel::sort(mixed, TVL::TitleColumn, Qt::AscendingOrder),
             QModelIndexList({a, b}));
    QCOMPARE(model->sortIndexesHash(mixed), QModelIndexList({b, a}));
    QCOMPARE(TVLProjectModel::sort({}, TVL::TitleColumn, Qt::AscendingOrder), QModelIndexList());
    QCOMPARE(TVLProjectModel::sort({QModelIndex()}, TVL::TitleColumn, Qt::AscendingOrder),
             QModelIndexList());
}

void TstItemSorting::theBinderOrderIsPreOrder()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 60, 4);
    const QModelIndexList walk = recursiveWalk(model.get(), model->rootIndex());
    for (qsizetype a = 0; a < walk.size(); ++a) {
        for (qsizetype b = 0; b < walk.size(); ++b)
            QCOMPARE(TVLProjectModel::lessThanIndex(walk.at(a), walk.at(b)), a < b);
    }
}

void TstItemSorting::theHashSortAgreesWithTheOthers()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 200, 5);
    const QModelIndexList walk = recursiveWalk(model.get(), model->rootIndex());
    const QModelIndexList shuffled = TVLProjectModel::shuffle(walk);
    QCOMPARE(TVLProjectModel::sortIndexes(shuffled), walk);
    QCOMPARE(TVLProjectModel::sortIndexesStable(shuffled), walk);
    QCOMPARE(model->sortIndexesHash(shuffled), walk);
    QCOMPARE(model->sortIndexesHash(shuffled.mid(0, 9) + shuffled.mid(0, 9)),
             TVLProjectModel::sortIndexes(shuffled.mid(0, 9)));
}

void TstItemSorting::shufflingKeepsAllItems()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 100, 6);
    const QModelIndexList walk = recursiveWalk(model.get(), model->rootIndex());
    const QModelIndexList shuffled = TVLProjectModel::shuffle(walk);
    QVERIFY(shuffled != walk);
    QCOMPARE(TVLProjectModel::sortIndexes(shuffled), walk);
    QCOMPARE(TVLProjectModel::shuffle({}), QModelIndexList());
}

void TstItemSorting::foldersAndItemsAreCounted()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a:3 b(c) d:5 e"_s);
    int groups = -1;
    int items = -1;
    model->countFilesAndFolders(itemsTitled(model.get(), u"a b c d e Draft"_s)
                                    + QModelIndexList{QModelIndex()},
                                &groups, &items);
    QCOMPARE(groups, 3);
    QCOMPARE(items, 5);
}

void TstItemSorting::flatteningMakesAllItemsTopLevel()
{
    const auto model = blankModel();
    model->setTitle(firstText(model.get()), u"t"_s);
    addTree(model.get(), model->researchFolder(), u"a(b(c d)) e"_s);
    bool isAnnounced = false;
    connect(model.get(), &QAbstractItemModel::rowsMoved, this, [&] { isAnnounced = true; });
    model->flatten();
    QCOMPARE(treeText(model.get(), QModelIndex()), u"Draft Research Trash t a e b c d"_s);
    QVERIFY(!isAnnounced);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemSorting::identitiesAndTitlesAreListed()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    const QModelIndexList indexes = itemsTitled(model.get(), u"b a"_s);
    QCOMPARE(model->nodeIdentityList(indexes), QList<int>({5, 4}));
    QCOMPARE(model->nodeUuidList(indexes),
             QList<QUuid>({model->nodeUuid(indexes.at(0)), model->nodeUuid(indexes.at(1))}));
    QCOMPARE(model->titles(indexes), QStringList({u"b"_s, u"a"_s}));
}

void TstItemSorting::siblingsWithATitleAreFound()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b(a) c"_s);
    const QModelIndex a = itemTitled(model.get(), u"a"_s);
    QVERIFY(!model->hasSiblingWithTitle(a, u"a"_s));
    QVERIFY(model->hasSiblingWithTitle(a, u"b"_s));
    QVERIFY(!model->hasSiblingWithTitle(a, u"B"_s));
    QVERIFY(
        !model->hasSiblingWithTitle(model->index(0, 0, itemTitled(model.get(), u"b"_s)), u"c"_s));
    QVERIFY(!model->hasSiblingWithTitle(model->rootIndex(), u"Draft"_s));
    QVERIFY(model->hasSiblingWithTitle(model->trashFolder(), u"Draft"_s));
}

void TstItemSorting::titlesAreMadeUnique_data()
{
    QTest::addColumn<QString>("siblings");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("expected");
    QTest::newRow("free") << u"b"_s << u"a"_s << u"a"_s;
    QTest::newRow("taken") << u"a"_s << u"a"_s << u"a-1"_s;
    QTest::newRow("taken with its number") << u"a a-1"_s << u"a"_s << u"a-2"_s;
    QTest::newRow("a gap is filled") << u"a a-2"_s << u"a"_s << u"a-1"_s;
    QTest::newRow("its own number counts on") << u"a-4"_s << u"a-4"_s << u"a-5"_s;
    QTest::newRow("from there past those taken") << u"a-4 a-5 a-6"_s << u"a-4"_s << u"a-7"_s;
    QTest::newRow("digits alone are the title") << u"12"_s << u"12"_s << u"12-1"_s;
    QTest::newRow("leading zeros go") << u"a-07"_s << u"a-07"_s << u"a-8"_s;
    QTest::newRow("too long a number is the title")
        << u"a-12345678901"_s << u"a-12345678901"_s << u"a-12345678901-1"_s;
}

void TstItemSorting::titlesAreMadeUnique()
{
    QFETCH(const QString, siblings);
    QFETCH(const QString, title);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), siblings + u" new"_s);
    const QModelIndex item = itemTitled(model.get(), u"new"_s);
    QCOMPARE(model->findUniqueTitle(title, item), expected);
    model->setTitle(item, title);
    QCOMPARE(model->findUniqueTitle(title, item), expected);
}

TVL_TEST(TstItemSorting)
#include "tst_itemsorting.moc"
