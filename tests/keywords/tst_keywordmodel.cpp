#include "KeywordChecks.h"
#include "TVLDoors.h"
#include "TVLIcon.h"
#include "TVLReplay.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QString keywordRow(const TVLSearchIndex &index, int id)
{
    QSqlQuery query(index);
    query.exec(u"SELECT title FROM ProjectKeywords WHERE identity = %1"_s.arg(id));
    return query.next() ? query.value(0).toString() : u"none"_s;
}

} // namespace

class TstKeywordModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewModelIsEmpty();
    void theHeaderSaysClickToSort();
    void keywordsOfferEverythingToViews();
    void theTopLevelHasNoParent();
    void anUnknownIdentityHasNoIndex();
    void indexesOutOfRangeAreInvalid();
    void aKeywordShowsTitleAndColor();
    void otherRolesGiveNothing();
    void valuesAreSetByRole_data();
    void valuesAreSetByRole();
    void valuesThatDoNotConvertAreRefused_data();
    void valuesThatDoNotConvertAreRefused();

    void aKeywordIsInsertedAtItsRow_data();
    void aKeywordIsInsertedAtItsRow();
    void aKeywordIsInsertedBelowAnother();
    void aNewKeywordHasARandomOpaqueColor();
    void aTitleIsSimplified();
    void aTitleOfOnlySpacesIsRefused();
    void aTitleThatIsTakenAnywhereIsRefused_data();
    void aTitleThatIsTakenAnywhereIsRefused();
    void aKeywordCannotBeInsertedBelowAnotherModelsKeyword();
    void findTitleIgnoresBlanksAndCase_data();
    void findTitleIgnoresBlanksAndCase();
    void titlesAreEqualAsAComparisonWithoutCaseSays();
    void theLowestIdentityAnswersToATitle();

    void identitiesCountFromOne();
    void aRemovedIdentityComesBackFirst();
    void identitiesThatWereLoadedArePassedOver();
    void theLargestIdentityIsNoEnd();

    void renamingAllowsATitleThatIsTaken();
    void aRenamedKeywordAnswersToItsNewTitleOnly();
    void aColorIsSet();
    void settersRefuseWhatIsNoKeyword();
    void aLoadedKeywordStartsWithoutTitleAndColor();
    void loadingAppends();
    void loadingBelowAnUnknownKeywordGoesToTheTopLevel();
    void loadingANegativeIdentityIsRefused();
    void loadingAgainMakesTheKeywordAnew_data();
    void loadingAgainMakesTheKeywordAnew();

    void removingAKeywordTellsAllBelowItOnce();
    void whatIsRemovedIsStillKnownWhenItIsTold();
    void removingWhatIsNoKeywordIsRefused();
    void everyChangeIsTold();
    void theSearchIndexFollows();
    void aModelWorksWithoutSearchIndex();

    void randomEditsKeepEverythingInStep();
    void manyKeywordsLoad();
    void manyKeywordsOfOneTitleLoad();
    void aDeepTreeLoads();

private:
    std::unique_ptr<TVLSearchIndex> mIndex;
    std::unique_ptr<TVLKeywordModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

void TstKeywordModel::init()
{
    mIndex = std::make_unique<TVLSearchIndex>();
    mModel = std::make_unique<TVLKeywordModel>(mIndex.get());
    mTester = std::make_unique<QAbstractItemModelTester>(
        mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

void TstKeywordModel::cleanup()
{
    mTester.reset();
    mModel.reset();
    mIndex.reset();
}

void TstKeywordModel::aNewModelIsEmpty()
{
    QCOMPARE(mModel->rowCount(), 0);
    QCOMPARE(mModel->columnCount(), 1);
    QCOMPARE(mModel->createId(), 1);
    QVERIFY(mModel->orderedIds().isEmpty());
    QVERIFY(mModel->allChidren(1).isEmpty());
    QVERIFY(!mModel->findTitle(u"a"_s).isValid());
}

void TstKeywordModel::theHeaderSaysClickToSort()
{
    QCOMPARE(TVLKeywordModel::headers(), QStringList{u"Click to sort"_s});
    for (const int role : {Qt::DisplayRole, Qt::EditRole})
        QCOMPARE(mModel->headerData(0, Qt::Horizontal, role), QVariant(u"Click to sort"_s));
    QCOMPARE(mModel->headerData(0, Qt::Horizontal, Qt::ToolTipRole), QVariant());
    QCOMPARE(mModel->headerData(4, Qt::Vertical, Qt::DisplayRole), QVariant(5));
}

void TstKeywordModel::keywordsOfferEverythingToViews()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    const Qt::ItemFlags flags = mModel->flags(mModel->index(1));
    for (const Qt::ItemFlag flag : {Qt::ItemIsSelectable, Qt::ItemIsEditable, Qt::ItemIsDragEnabled,
                                    Qt::ItemIsDropEnabled, Qt::ItemIsEnabled})
        QVERIFY(flags.testFlag(flag));
    QCOMPARE(mModel->flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsDropEnabled));
}

void TstKeywordModel::theTopLevelHasNoParent()
{
    addKeywords(mModel.get(), {}, u"a(b)"_s);
    const QModelIndex a = mModel->findTitle(u"a"_s);
    QCOMPARE(a.parent(), QModelIndex());
    QCOMPARE(mModel->findTitle(u"b"_s).parent(), a);
}

void TstKeywordModel::anUnknownIdentityHasNoIndex()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    for (const int id : {-1, 0, 2, std::numeric_limits<int>::max(), -5})
        QCOMPARE(mModel->index(id), QModelIndex());
    QCOMPARE(mModel->index(1).internalId(), quintptr(1));
    QCOMPARE(mModel->index(1).column(), 0);
}

void TstKeywordModel::indexesOutOfRangeAreInvalid()
{
    addKeywords(mModel.get(), {}, u"a b(c)"_s);
    QVERIFY(!mModel->index(-1, 0).isValid());
    QVERIFY(!mModel->index(2, 0).isValid());
    QVERIFY(!mModel->index(0, 1).isValid());
    QVERIFY(!mModel->index(0, 0, mModel->findTitle(u"a"_s)).isValid());
    QVERIFY(mModel->index(0, 0, mModel->findTitle(u"b"_s)).isValid());
}

void TstKeywordModel::aKeywordShowsTitleAndColor()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    const QModelIndex index = mModel->index(1);
    QVERIFY(mModel->setColor(index, Qt::red));
    QCOMPARE(index.data(Qt::DisplayRole).toString(), u"a"_s);
    QCOMPARE(index.data(Qt::EditRole).toString(), u"a"_s);
    QCOMPARE(index.data(33).value<QColor>(), QColor(Qt::red));
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    QCOMPARE(icon.pixmap(QSize(16, 16), 1.0).toImage(),
             TVLIcon(Qt::red, TVLIcon::Shape(1)).pixmap(QSize(16, 16), 1.0).toImage());
    QCOMPARE(mModel->title(index), u"a"_s);
    QCOMPARE(mModel->color(index), QColor(Qt::red));
    QCOMPARE(mModel->title(QModelIndex()), QString());
    QVERIFY(!mModel->color(QModelIndex()).isValid());
}

void TstKeywordModel::otherRolesGiveNothing()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    for (const int role : {int(Qt::ToolTipRole), int(Qt::UserRole), 32, 34})
        QCOMPARE(mModel->index(1).data(role), QVariant());
    QCOMPARE(mModel->data(QModelIndex()), QVariant());
}

void TstKeywordModel::valuesAreSetByRole_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QColor>("color");
    QTest::newRow("display") << int(Qt::DisplayRole) << QVariant(u" b  c "_s) << u"b c"_s
                             << QColor(Qt::red);
    QTest::newRow("edit") << int(Qt::EditRole) << QVariant(12) << u"12"_s << QColor(Qt::red);
    QTest::newRow("decoration") << int(Qt::DecorationRole) << QVariant(QColor(Qt::blue)) << u"a"_s
                                << QColor(Qt::blue);
    QTest::newRow("color") << 33 << QVariant(u"#00ff00"_s) << u"a"_s << QColor(0, 255, 0);
}

void TstKeywordModel::valuesAreSetByRole()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    addKeywords(mModel.get(), {}, u"a"_s);
    QVERIFY(mModel->setColor(mModel->index(1), Qt::red));
    QVERIFY(mModel->setData(mModel->index(1), value, role));
    QTEST(mModel->title(mModel->index(1)), "title");
    QTEST(mModel->color(mModel->index(1)), "color");
}

void TstKeywordModel::valuesThatDoNotConvertAreRefused_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("no text") << int(Qt::EditRole) << QVariant::fromValue(QSize());
    QTest::newRow("only spaces") << int(Qt::EditRole) << QVariant(u"  "_s);
    QTest::newRow("no color") << 33 << QVariant::fromValue(QSize());
    QTest::newRow("other role") << int(Qt::ToolTipRole) << QVariant(u"x"_s);
}

void TstKeywordModel::valuesThatDoNotConvertAreRefused()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    addKeywords(mModel.get(), {}, u"a"_s);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(!mModel->setData(mModel->index(1), value, role));
    QVERIFY(!mModel->setData(QModelIndex(), value, role));
    QCOMPARE(changes.size(), 0);
    QCOMPARE(mModel->title(mModel->index(1)), u"a"_s);
}

// --- Inserting

void TstKeywordModel::aKeywordIsInsertedAtItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::newRow("negative") << -7 << u"n a b c"_s;
    QTest::newRow("first") << 0 << u"n a b c"_s;
    QTest::newRow("inside") << 2 << u"a b n c"_s;
    QTest::newRow("last") << 3 << u"a b c n"_s;
    QTest::newRow("too large") << 99 << u"a b c n"_s;
}

void TstKeywordModel::aKeywordIsInsertedAtItsRow()
{
    QFETCH(const int, row);
    addKeywords(mModel.get(), {}, u"a b c"_s);
    QVERIFY(mModel->insertItem(row, QModelIndex(), u"n"_s));
    QTEST(keywordText(mModel.get()), "text");
}

void TstKeywordModel::aKeywordIsInsertedBelowAnother()
{
    addKeywords(mModel.get(), {}, u"a b"_s);
    QVERIFY(mModel->insertItem(0, mModel->index(2), u"x"_s));
    QVERIFY(mModel->insertItem(0, mModel->index(3), u"y"_s));
    QVERIFY(mModel->insertItem(0, mModel->index(2), u"z"_s));
    QCOMPARE(keywordText(mModel.get()), u"a b(z x(y))"_s);
    QCOMPARE(mModel->allChidren(2), QSet<int>({2, 3, 4, 5}));
    QCOMPARE(mModel->allChidren(3), QSet<int>({3, 4}));
    QCOMPARE(mModel->orderedIds(), QList<int>({1, 2, 5, 3, 4}));
}

void TstKeywordModel::aNewKeywordHasARandomOpaqueColor()
{
    const TVLReplay first(17);
    QList<QColor> expected;
    for (int i = 0; i < 20; ++i) {
        const int blue = int(tvlRandom(256));
        const int green = int(tvlRandom(256));
        const int red = int(tvlRandom(256));
        expected.append(QColor(red, green, blue));
    }
    const TVLReplay again(17);
    for (int i = 0; i < 20; ++i) {
        QVERIFY(mModel->insertItem(i, QModelIndex(), QString::number(i)));
        QCOMPARE(mModel->color(mModel->index(i, 0)), expected.at(i));
        QCOMPARE(mModel->color(mModel->index(i, 0)).alpha(), 255);
    }
}

void TstKeywordModel::aTitleIsSimplified()
{
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"\t two \n words\u00a0"_s));
    QCOMPARE(mModel->title(mModel->index(1)), u"two words"_s);
    QVERIFY(mModel->setTitle(mModel->index(1), u"  other   words "_s));
    QCOMPARE(mModel->title(mModel->index(1)), u"other words"_s);
}

void TstKeywordModel::aTitleOfOnlySpacesIsRefused()
{
    QVERIFY(!mModel->insertItem(0, QModelIndex(), u"  \t\n "_s));
    QVERIFY(!mModel->insertItem(0, QModelIndex(), QString()));
    QCOMPARE(mModel->rowCount(), 0);
    addKeywords(mModel.get(), {}, u"a"_s);
    QVERIFY(!mModel->setTitle(mModel->index(1), u"   "_s));
    QCOMPARE(mModel->title(mModel->index(1)), u"a"_s);
}

void TstKeywordModel::aTitleThatIsTakenAnywhereIsRefused_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("the same") << u"Deep Sea"_s;
    QTest::newRow("other case") << u"dEEP sEA"_s;
    QTest::newRow("runs of spaces") << u"  Deep \t Sea "_s;
    QTest::newRow("both") << u" deep   SEA"_s;
}

void TstKeywordModel::aTitleThatIsTakenAnywhereIsRefused()
{
    QFETCH(const QString, title);
    addKeywords(mModel.get(), {}, u"a(b)"_s);
    QVERIFY(mModel->insertItem(0, mModel->findTitle(u"b"_s), u"Deep Sea"_s));
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(!mModel->insertItem(0, QModelIndex(), title));
    QVERIFY(!mModel->insertItem(0, mModel->findTitle(u"a"_s), title));
    QCOMPARE(changes.size(), 0);
    QCOMPARE(keywordText(mModel.get()), u"a(b(Deep Sea))"_s);
}

void TstKeywordModel::aKeywordCannotBeInsertedBelowAnotherModelsKeyword()
{
    TVLKeywordModel other(nullptr);
    QVERIFY(other.insertItem(0, QModelIndex(), u"x"_s));
    QVERIFY(!mModel->insertItem(0, other.index(1), u"y"_s));
    QCOMPARE(mModel->rowCount(), 0);
    QCOMPARE(mModel->title(other.index(1)), QString());
    QVERIFY(!mModel->removeItem(other.index(1)));
}

void TstKeywordModel::findTitleIgnoresBlanksAndCase_data()
{
    aTitleThatIsTakenAnywhereIsRefused_data();
}

void TstKeywordModel::findTitleIgnoresBlanksAndCase()
{
    QFETCH(const QString, title);
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"Deep Sea"_s));
    QCOMPARE(mModel->findTitle(title), mModel->index(1));
    QVERIFY(!mModel->findTitle(title + u'x').isValid());
    QVERIFY(!mModel->findTitle(u"DeepSea"_s).isValid());
}

void TstKeywordModel::titlesAreEqualAsAComparisonWithoutCaseSays()
{
    // Every character against what its own case forms are.
    mTester.reset();
    addKeywords(mModel.get(), {}, u"a"_s);
    const QModelIndex index = mModel->index(1);
    for (char32_t character = 0x21; character < 0x1e944; ++character) {
        if (QChar::isSurrogate(character) || QChar::isSpace(character))
            continue;
        const QString title = QString::fromUcs4(&character, 1);
        const QString forms[] = {title.toUpper(), title.toLower(), title.toCaseFolded()};
        if (std::all_of(std::begin(forms), std::end(forms),
                        [&title](const QString &form) { return form == title; }))
            continue;
        QVERIFY(mModel->setTitle(index, title));
        for (const QString &form : forms) {
            QCOMPARE(mModel->findTitle(form).isValid(),
                     form.compare(title, Qt::CaseInsensitive) == 0);
        }
    }
}

void TstKeywordModel::theLowestIdentityAnswersToATitle()
{
    for (const int id : {9, 4, 7}) {
        const QModelIndex index = mModel->addChild(id, -1);
        QVERIFY(mModel->setTitle(index, id == 7 ? u"SAME"_s : u"same"_s));
    }
    QCOMPARE(mModel->findTitle(u"Same"_s), mModel->index(4));
    QVERIFY(mModel->removeItem(mModel->index(4)));
    QCOMPARE(mModel->findTitle(u"Same"_s), mModel->index(7));
    QVERIFY(mModel->setTitle(mModel->index(7), u"other"_s));
    QCOMPARE(mModel->findTitle(u"Same"_s), mModel->index(9));
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

// --- Identities

void TstKeywordModel::identitiesCountFromOne()
{
    addKeywords(mModel.get(), {}, u"a b(c)"_s);
    QCOMPARE(mModel->findTitle(u"a"_s).internalId(), quintptr(1));
    QCOMPARE(mModel->findTitle(u"b"_s).internalId(), quintptr(2));
    QCOMPARE(mModel->findTitle(u"c"_s).internalId(), quintptr(3));
    QCOMPARE(mModel->createId(), 4);
}

void TstKeywordModel::aRemovedIdentityComesBackFirst()
{
    addKeywords(mModel.get(), {}, u"a b c d e"_s);
    QVERIFY(mModel->removeItem(mModel->index(3)));
    QCOMPARE(mModel->createId(), 3);
    QVERIFY(mModel->removeItem(mModel->index(2)));
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"x"_s));
    QCOMPARE(mModel->findTitle(u"x"_s), mModel->index(2));
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"y"_s));
    QCOMPARE(mModel->findTitle(u"y"_s), mModel->index(3));
    QCOMPARE(mModel->createId(), 6);
}

void TstKeywordModel::identitiesThatWereLoadedArePassedOver()
{
    for (const int id : {0, 2, 5, 1})
        QVERIFY(mModel->addChild(id, -1).isValid());
    QCOMPARE(mModel->createId(), 3);
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"x"_s));
    QCOMPARE(mModel->createId(), 4);
    QVERIFY(mModel->addChild(4, -1).isValid());
    QCOMPARE(mModel->createId(), 6);
}

void TstKeywordModel::theLargestIdentityIsNoEnd()
{
    QVERIFY(mModel->addChild(std::numeric_limits<int>::max(), -1).isValid());
    QCOMPARE(mModel->createId(), 1);
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"x"_s));
    QVERIFY(mModel->removeItem(mModel->index(std::numeric_limits<int>::max())));
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

// --- Changing and loading

void TstKeywordModel::renamingAllowsATitleThatIsTaken()
{
    addKeywords(mModel.get(), {}, u"a b"_s);
    QVERIFY(mModel->setTitle(mModel->index(2), u"A"_s));
    QCOMPARE(keywordText(mModel.get()), u"a A"_s);
    QCOMPARE(mModel->findTitle(u"a"_s), mModel->index(1));
}

void TstKeywordModel::aRenamedKeywordAnswersToItsNewTitleOnly()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    QSignalSpy data(mModel.get(), &TVLKeywordModel::dataChanged);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(mModel->setTitle(mModel->index(1), u"b"_s));
    QVERIFY(!mModel->findTitle(u"a"_s).isValid());
    QCOMPARE(mModel->findTitle(u"b"_s), mModel->index(1));
    QCOMPARE(data.size(), 1);
    QCOMPARE(data.constFirst().at(0).toModelIndex(), mModel->index(1));
    QCOMPARE(data.constFirst().at(1).toModelIndex(), mModel->index(1));
    QCOMPARE(changes.size(), 1);
}

void TstKeywordModel::aColorIsSet()
{
    addKeywords(mModel.get(), {}, u"a"_s);
    const QSignalSpy data(mModel.get(), &TVLKeywordModel::dataChanged);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(mModel->setColor(mModel->index(1), QColor(1, 2, 3)));
    QCOMPARE(mModel->color(mModel->index(1)), QColor(1, 2, 3));
    QCOMPARE(data.size(), 1);
    QCOMPARE(changes.size(), 1);
}

void TstKeywordModel::settersRefuseWhatIsNoKeyword()
{
    QVERIFY(!mModel->setTitle(QModelIndex(), u"x"_s));
    QVERIFY(!mModel->setColor(QModelIndex(), Qt::red));
    addKeywords(mModel.get(), {}, u"a"_s);
    const QModelIndex gone = mModel->index(1);
    QVERIFY(mModel->removeItem(gone));
    QVERIFY(!mModel->setTitle(gone, u"x"_s));
    QVERIFY(!mModel->setColor(gone, Qt::red));
    QVERIFY(!mModel->removeItem(gone));
}

void TstKeywordModel::aLoadedKeywordStartsWithoutTitleAndColor()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    const QModelIndex index = mModel->addChild(7, -1);
    QCOMPARE(index, mModel->index(7));
    QCOMPARE(mModel->title(index), QString());
    QVERIFY(!mModel->color(index).isValid());
    QVERIFY(index.data(Qt::DecorationRole).value<QIcon>().isNull());
    QCOMPARE(keywordRow(*mIndex, 7), QString());
    QCOMPARE(changes.size(), 1);
}

void TstKeywordModel::loadingAppends()
{
    mModel->addChild(5, -1);
    mModel->addChild(3, -1);
    mModel->addChild(9, 5);
    mModel->addChild(1, 5);
    QCOMPARE(mModel->orderedIds(), QList<int>({5, 9, 1, 3}));
}

void TstKeywordModel::loadingBelowAnUnknownKeywordGoesToTheTopLevel()
{
    QCOMPARE(mModel->addChild(2, 77).parent(), QModelIndex());
    QCOMPARE(mModel->addChild(3, -9).parent(), QModelIndex());
    QCOMPARE(mModel->orderedIds(), QList<int>({2, 3}));
}

void TstKeywordModel::loadingANegativeIdentityIsRefused()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(!mModel->addChild(-1, -1).isValid());
    QVERIFY(!mModel->addChild(-2, -1).isValid());
    QCOMPARE(mModel->rowCount(), 0);
    QCOMPARE(changes.size(), 0);
}

void TstKeywordModel::loadingAgainMakesTheKeywordAnew_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("parentId");
    QTest::addColumn<QString>("text");
    // All of it: a(b(c) d) e, with the identities 1 to 5.
    QTest::newRow("below another") << 2 << 5 << u"a(d) e((c))"_s;
    QTest::newRow("at the top level") << 2 << -1 << u"a(d) e (c)"_s;
    QTest::newRow("at the end of its parent") << 2 << 1 << u"a(d (c)) e"_s;
    QTest::newRow("where it is") << 4 << 1 << u"a(b(c) ) e"_s;
    QTest::newRow("below itself") << 2 << 2 << u"a((c) d) e"_s;
    QTest::newRow("below what is in it") << 1 << 3 << u"(b(c) d) e"_s;
    QTest::newRow("below an unknown one") << 3 << 40 << u"a(b d) e "_s;
}

void TstKeywordModel::loadingAgainMakesTheKeywordAnew()
{
    QFETCH(const int, id);
    QFETCH(const int, parentId);
    addKeywords(mModel.get(), {}, u"a"_s);
    addKeywords(mModel.get(), mModel->index(1), u"b(c) d"_s);
    addKeywords(mModel.get(), {}, u"e"_s);
    const QModelIndex index = mModel->addChild(id, parentId);
    QCOMPARE(index, mModel->index(id));
    QCOMPARE(mModel->title(index), QString());
    QVERIFY(!mModel->color(index).isValid());
    QTEST(keywordText(mModel.get()), "text");
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

// --- Removing

void TstKeywordModel::removingAKeywordTellsAllBelowItOnce()
{
    addKeywords(mModel.get(), {}, u"a(b(c) d) e"_s);
    QSignalSpy removed(mModel.get(), &TVLKeywordModel::keywordsAboutToBeRemoved);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(mModel->removeItem(mModel->index(1)));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.constFirst().at(0).value<QSet<int>>(), QSet<int>({1, 2, 3, 4}));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(keywordText(mModel.get()), u"e"_s);
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

void TstKeywordModel::whatIsRemovedIsStillKnownWhenItIsTold()
{
    addKeywords(mModel.get(), {}, u"a b(c) d"_s);
    QSet<int> affected;
    bool isIndexGone = false;
    connect(mModel.get(), &TVLKeywordModel::keywordsAboutToBeRemoved, this, [&](const auto &ids) {
        isIndexGone = !mModel->index(2).isValid() && ids.contains(2);
        affected = mIndex->affectedDocuments(3);
    });
    QVERIFY(mIndex->addDocumentKeyword(40, 3));
    QVERIFY(mModel->removeItem(mModel->index(2)));
    QVERIFY(isIndexGone);
    QCOMPARE(affected, QSet<int>{40});
    QVERIFY(mIndex->affectedDocuments(3).isEmpty());
}

void TstKeywordModel::removingWhatIsNoKeywordIsRefused()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(!mModel->removeItem(QModelIndex()));
    QCOMPARE(changes.size(), 0);
}

void TstKeywordModel::everyChangeIsTold()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(mModel->insertItem(0, QModelIndex(), u"a"_s));
    QCOMPARE(changes.size(), 1);
    QVERIFY(mModel->addChild(2, 1).isValid());
    QCOMPARE(changes.size(), 2);
    QVERIFY(mModel->setTitle(mModel->index(2), u"b"_s));
    QCOMPARE(changes.size(), 3);
    QVERIFY(mModel->setColor(mModel->index(2), Qt::red));
    QCOMPARE(changes.size(), 4);
    QVERIFY(mModel->removeItem(mModel->index(2)));
    QCOMPARE(changes.size(), 5);
}

void TstKeywordModel::theSearchIndexFollows()
{
    addKeywords(mModel.get(), {}, u"a(b)"_s);
    QCOMPARE(keywordRow(*mIndex, 1), u"a"_s);
    QCOMPARE(keywordRow(*mIndex, 2), u"b"_s);
    QVERIFY(mModel->setTitle(mModel->index(2), u" c "_s));
    QCOMPARE(keywordRow(*mIndex, 2), u"c"_s);
    QVERIFY(mModel->removeItem(mModel->index(1)));
    QCOMPARE(keywordRow(*mIndex, 1), u"none"_s);
    QCOMPARE(keywordRow(*mIndex, 2), u"none"_s);
}

void TstKeywordModel::aModelWorksWithoutSearchIndex()
{
    TVLKeywordModel model(nullptr);
    addKeywords(&model, {}, u"a(b) c"_s);
    QVERIFY(model.addChild(9, 3).isValid());
    QVERIFY(model.setTitle(model.index(2), u"x"_s));
    QVERIFY(model.removeItem(model.index(3)));
    QCOMPARE(keywordText(&model), u"a(x)"_s);
}

// --- Many

void TstKeywordModel::randomEditsKeepEverythingInStep()
{
    QRandomGenerator random(5);
    const auto anyIndex = [&] {
        const QList<int> ids = mModel->orderedIds();
        return ids.isEmpty() ? QModelIndex()
                             : mModel->index(ids.at(random.bounded(int(ids.size()))));
    };
    // Few words, so that titles clash.
    const auto anyTitle = [&] { return u"W%1 x"_s.arg(random.bounded(60)); };
    for (int step = 1; step <= 10000; ++step) {
        const QModelIndex index = anyIndex();
        switch (random.bounded(7)) {
        case 0:
        case 1:
            mModel->insertItem(random.bounded(6) - 1, random.bounded(3) ? index : QModelIndex(),
                               anyTitle());
            break;
        case 2:
            mModel->setTitle(index, anyTitle());
            break;
        case 3:
            mModel->setColor(index, QColor(random.generate() | 0xff000000));
            break;
        case 4:
            mModel->addChild(random.bounded(80), random.bounded(80) - 1);
            break;
        case 5:
            if (random.bounded(3) == 0)
                mModel->removeItem(index);
            break;
        default: {
            const std::unique_ptr<QMimeData> mime(mModel->mimeData({index, anyIndex()}));
            if (mime) {
                mModel->dropMimeData(mime.get(),
                                     random.bounded(4) ? Qt::MoveAction : Qt::CopyAction,
                                     random.bounded(6) - 1, 0, anyIndex());
            }
        }
        }
        if (step % 100 == 0)
            QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
    }
}

void TstKeywordModel::manyKeywordsLoad()
{
    const int Count = testSize(100000);
    mTester.reset();
    QElapsedTimer timer;
    timer.start();
    for (int id = Count; id > 0; --id) {
        const QModelIndex index = mModel->addChild(id, id % 10 == 0 ? -1 : id - id % 10 + 10);
        QVERIFY(mModel->setTitle(index, u"Keyword %1"_s.arg(id)));
        QVERIFY(mModel->setColor(index, Qt::red));
    }
    qInfo("%d keywords loaded in %lld ms", Count, timer.restart());
    QCOMPARE(mModel->orderedIds().size(), Count);
    for (int id = 1; id <= Count; ++id)
        QCOMPARE(mModel->findTitle(u"keyword %1"_s.arg(id)).internalId(), quintptr(id));
    for (int i = 0; i < 20000; ++i)
        QVERIFY(mModel->insertItem(0, QModelIndex(), u"New %1"_s.arg(i)));
    QCOMPARE(mModel->createId(), Count + 20001);
    for (int id = 1; id <= 10000; ++id) {
        QVERIFY(mModel->removeItem(mModel->index(Count + 2 * id)));
        QCOMPARE(mModel->createId(), Count + 2);
    }
    qInfo("found, inserted and removed in %lld ms", timer.elapsed());
}

void TstKeywordModel::manyKeywordsOfOneTitleLoad()
{
    mTester.reset();
    for (int id = 50000; id > 0; --id)
        QVERIFY(mModel->setTitle(mModel->addChild(id, -1), u"Same"_s));
    for (int id = 1; id <= 50000; ++id) {
        QCOMPARE(mModel->findTitle(u"same"_s).internalId(), quintptr(id));
        QVERIFY(mModel->setTitle(mModel->index(id), u"Other"_s));
    }
}

void TstKeywordModel::aDeepTreeLoads()
{
    constexpr int Depth = 100000;
    mTester.reset();
    for (int id = 1; id <= Depth; ++id)
        QVERIFY(mModel->addChild(id, id - 1).isValid());
    QCOMPARE(mModel->allChidren(2).size(), Depth - 1);
    QCOMPARE(mModel->orderedIds().size(), Depth);
    QVERIFY(mModel->removeItem(mModel->index(2)));
    QCOMPARE(mModel->orderedIds(), QList<int>{1});
}

TVL_TEST(TstKeywordModel)
#include "tst_keywordmodel.moc"
