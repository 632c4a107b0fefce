#include "SqlTrace.h"
#include "TVLCollectionMetaData.h"
#include "TVLSearchIndex.h"
#include "TVLTextMatcher.h"
#include "TestMain.h"
#include "TestScale.h"
#include "TestSearchedProject.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString AnyText =
    u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE matchQString(propertyValue, ?, ?"_s;
const QString OneText =
    u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE type is ? AND matchQString(propertyValue, ?, ?"_s;
const QString OfKeywords =
    u"SELECT DocumentIntProperties.identity FROM ProjectKeywords JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectKeywords.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_s;
const QString OfLabels =
    u"SELECT DocumentIntProperties.identity FROM ProjectLabels JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectLabels.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_s;
const QString OfStatus =
    u"SELECT DocumentIntProperties.identity FROM ProjectStatusItems JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectStatusItems.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_s;

QList<int> sorted(QList<int> ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

QStringList numberedWords(int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words.append(u"w%1x"_s.arg(i));
    return words;
}

} // namespace

class TstSearchQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void searchesByOperator_data();
    void searchesByOperator();
    void searchesByProperty_data();
    void searchesByProperty();
    void searchesByCase();
    void anItemIsFoundOnce();

    void anEmptySearchText_data();
    void anEmptySearchText();
    void anUnknownOperatorFindsNothing();
    void anUnknownPropertyFindsNothing();
    void allWordsHaveToBeInOneText();
    void allWordsOverTitlesAndLabelsAreUnited();
    void allWordsOverLabelsAreIntersected();
    void labelsKeywordsAndStatusMatchWholeWords_data();
    void labelsKeywordsAndStatusMatchWholeWords();
    void expressionsAreEscapedForLabels();
    void plainQuotesFindTypographicOnes();
    void wholeWordsAreLookedForFurtherOn();
    void aBadExpressionFindsNothing();
    void nothingIsFoundInNothing();

    void textStatementsAreWordForWord_data();
    void textStatementsAreWordForWord();
    void numberStatementsAreWordForWord_data();
    void numberStatementsAreWordForWord();
    void flagsReachTheDatabase_data();
    void flagsReachTheDatabase();

    void moreWordsThanACallTakes_data();
    void moreWordsThanACallTakes();
    void moreWordsThanTheDatabaseTakes();
    void noWordsMatchByTheFlags();
    void aFailedStatementIsLoggedAndTheNextTableTried();
    void aFailedTextStatementLooksLikeNoMatches();

private:
    void addItem(int id, const QString &title, const QString &text = {}, int label = -1,
                 int status = -1, const QList<int> &keywords = {});
    [[nodiscard]] QList<int> found(const TVLCollectionMetaData &search)
    {
        return sorted(mIndex->indexes(search));
    }

    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstSearchQueries::init()
{
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
}

void TstSearchQueries::cleanup()
{
    mIndex.reset();
    mProject.reset();
}

void TstSearchQueries::addItem(int id, const QString &title, const QString &text, int label,
                               int status, const QList<int> &keywords)
{
    TVLProjectNode *node = mProject->addNode(id, title);
    node->mLabelId = label;
    node->mStatusId = status;
    node->mKeywords = keywords;
    mProject->setText(id, TVL::TextProperty, text);
    QVERIFY(mIndex->addProjectNode(node));
}

// --- Words

void TstSearchQueries::searchesByOperator_data()
{
    QTest::addColumn<int>("searchOperator");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("ids");

    // 1: "red wine"; 2: "dark blue, red"; 3: "tired"; 4: "a,b"; 5: "a.c abc"; 6: "a b"
    const QList<int> none;
    QTest::newRow("exact") << 0 << u"red"_s << QList<int>{1, 2, 3};
    QTest::newRow("exact with a blank") << 0 << u"red wine"_s << QList<int>{1};
    QTest::newRow("exact with a comma") << 0 << u"blue, red"_s << QList<int>{2};
    QTest::newRow("exact escapes") << 0 << u"a.c"_s << QList<int>{5};
    QTest::newRow("all") << 1 << u"wine red"_s << QList<int>{1};
    QTest::newRow("all, one missing") << 1 << u"wine blue"_s << none;
    QTest::newRow("all with commas") << 1 << u"red, dark blue"_s << QList<int>{2};
    QTest::newRow("all with commas, another order") << 1 << u"red, blue dark"_s << none;
    QTest::newRow("all without commas") << 1 << u"red blue dark"_s << QList<int>{2};
    QTest::newRow("all is no whole word") << 1 << u"ire d"_s << QList<int>{3};
    QTest::newRow("any with a comma and a blank") << 2 << u"a, b"_s << QList<int>{2, 4, 5, 6};
    QTest::newRow("any with a blank") << 2 << u"a b"_s << QList<int>{2, 4, 5, 6};
    QTest::newRow("any with a comma alone") << 2 << u"a,b"_s << QList<int>{4};
    QTest::newRow("any with commas keeps blanks") << 2 << u"dark blue, xyz"_s << QList<int>{2};
    QTest::newRow("any, empty parts") << 2 << u", , wine, , "_s << QList<int>{1};
    QTest::newRow("any, a comma at the end") << 2 << u"wine,"_s << none;
    QTest::newRow("any, a comma and a blank at the end") << 2 << u"wine, "_s << QList<int>{1};
    QTest::newRow("any, only commas") << 2 << u", , "_s << none;
    QTest::newRow("any at all kinds of blanks")
        << 2 << u"\twine\u00a0tired\n"_s << QList<int>{1, 3};
    QTest::newRow("whole word") << 3 << u"red"_s << QList<int>{1, 2};
    QTest::newRow("whole words, one is enough") << 3 << u"tire wine"_s << QList<int>{1};
    QTest::newRow("whole words don't split at commas") << 3 << u"wine, xyz"_s << none;
    QTest::newRow("expression") << 4 << u"a.c"_s << QList<int>{5};
    QTest::newRow("expression with classes") << 4 << u"^[abt].*[db]$"_s << QList<int>{3, 4, 6};
    QTest::newRow("expression with blanks") << 4 << u"red|dark b"_s << QList<int>{1, 2, 3};
    QTest::newRow("five") << 5 << u"red"_s << none;
}

void TstSearchQueries::searchesByOperator()
{
    QFETCH(int, searchOperator);
    QFETCH(QString, text);
    QFETCH(QList<int>, ids);
    const QStringList texts = {u"red wine"_s, u"dark blue, red"_s, u"tired"_s,
                               u"a,b"_s,      u"a.c abc"_s,        u"a b"_s};
    for (int i = 0; i < texts.size(); ++i)
        addItem(i + 1, u"-"_s, texts.at(i));
    QCOMPARE(found(searchFor(text, searchOperator)), ids);
    QCOMPARE(found(searchFor(text, searchOperator, TVL::TextProperty)), ids);
    QVERIFY(found(searchFor(text, searchOperator, TVL::NotesProperty)).isEmpty());
}

void TstSearchQueries::searchesByProperty_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QList<int>>("ids");
    QTest::newRow("all") << int(TVL::AllProperties) << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (int property = 1; property <= 9; ++property)
        QTest::addRow("%d", property) << property << QList<int>{property};
    QTest::newRow("ten") << 10 << QList<int>();
    QTest::newRow("minus one") << -1 << QList<int>();
}

void TstSearchQueries::searchesByProperty()
{
    QFETCH(int, property);
    QFETCH(QList<int>, ids);
    QVERIFY(mIndex->addKeyword(1, u"needle"_s));
    QVERIFY(mIndex->addLabel(1, u"needle"_s, QColor()));
    QVERIFY(mIndex->addStatusItem(1, u"needle"_s));
    // Each item has it in the property of its number.
    for (int id = 0; id <= 9; ++id) {
        addItem(id, id == 1 ? u"needle"_s : u"-"_s, {}, id == 6 ? 1 : -1, id == 7 ? 1 : -1,
                id == 5 ? QList<int>{1} : QList<int>());
        if (TVLSearchIndex::stringDocumentProperties().contains(id))
            mProject->setText(id, TVL::DocumentProperty(id), u"a needle here"_s);
    }
    for (const int searchOperator : {0, 1, 2, 3, 4})
        QCOMPARE(found(searchFor(u"needle"_s, searchOperator, property)), ids);
}

void TstSearchQueries::searchesByCase()
{
    QVERIFY(mIndex->addLabel(1, u"Mixed"_s, QColor()));
    addItem(1, u"-"_s, u"Mixed \u00c9t\u00e9"_s);
    addItem(2, u"-"_s, u"mixed \u00e9t\u00e9"_s);
    addItem(3, u"-"_s, QString(), 1);
    QCOMPARE(found(searchFor(u"mIXED"_s)), (QList<int>{1, 2, 3}));
    QCOMPARE(found(searchFor(u"\u00c9T\u00c9"_s)), (QList<int>{1, 2}));
    QCOMPARE(found(searchFor(u"Mixed"_s, 0, 0, Qt::CaseSensitive)), (QList<int>{1, 3}));
    QCOMPARE(found(searchFor(u"mixed"_s, 0, 0, Qt::CaseSensitive)), QList<int>{2});
}

void TstSearchQueries::anItemIsFoundOnce()
{
    QVERIFY(mIndex->addLabel(1, u"needle"_s, QColor()));
    QVERIFY(mIndex->addKeyword(1, u"needle"_s));
    QVERIFY(mIndex->addKeyword(2, u"needle too"_s));
    addItem(1, u"needle"_s, u"needle"_s, 1, 1, {1, 2});
    for (const int property : {0, 1, 2, 5, 6})
        QCOMPARE(mIndex->indexes(searchFor(u"needle"_s, 0, property)), QList<int>{1});
}

// --- Edges

void TstSearchQueries::anEmptySearchText_data()
{
    QTest::addColumn<int>("searchOperator");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasWord");
    QTest::newRow("exact") << 0 << u""_s << true;
    QTest::newRow("exact, null") << 0 << QString() << true;
    QTest::newRow("all") << 1 << u""_s << false;
    QTest::newRow("any") << 2 << u""_s << false;
    QTest::newRow("whole word") << 3 << u""_s << false;
    QTest::newRow("expression") << 4 << u""_s << true;
    QTest::newRow("expression, null") << 4 << QString() << true;
    QTest::newRow("all, blanks") << 1 << u" \n\t"_s << false;
    QTest::newRow("any, blanks") << 2 << u" \n\t"_s << false;
    QTest::newRow("whole word, blanks") << 3 << u" \n\t"_s << false;
}

void TstSearchQueries::anEmptySearchText()
{
    QFETCH(int, searchOperator);
    QFETCH(QString, text);
    QFETCH(bool, hasWord);
    addItem(1, u"Title"_s, u"text"_s);
    addItem(2, QString());
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QCOMPARE(found(searchFor(text, searchOperator)), hasWord ? (QList<int>{1, 2}) : QList<int>());
}

void TstSearchQueries::anUnknownOperatorFindsNothing()
{
    addItem(1, u"needle"_s);
    for (const int searchOperator : {5, 6, 77})
        QVERIFY(found(searchFor(u"needle"_s, searchOperator)).isEmpty());
    QVERIFY(mProject->takeRequests().isEmpty());
}

void TstSearchQueries::anUnknownPropertyFindsNothing()
{
    addItem(1, u"needle"_s);
    SqlTrace trace(*mIndex);
    QVERIFY(found(searchFor(u"needle"_s, 0, 10)).isEmpty());
    for (const QString &statement : trace.take())
        QVERIFY(!statement.contains(u"matchQString"));
}

void TstSearchQueries::allWordsHaveToBeInOneText()
{
    addItem(1, u"red"_s, u"wine"_s);
    addItem(2, u"red wine"_s);
    addItem(3, u"-"_s, u"wine, red"_s);
    QCOMPARE(found(searchFor(u"red wine"_s, 1)), (QList<int>{2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_s, 1, TVL::TitleProperty)), QList<int>{2});
}

void TstSearchQueries::allWordsOverTitlesAndLabelsAreUnited()
{
    QVERIFY(mIndex->addLabel(1, u"Red"_s, QColor()));
    QVERIFY(mIndex->addLabel(2, u"Red wine"_s, QColor()));
    addItem(1, u"wine"_s, QString(), 1);
    addItem(2, u"water"_s, QString(), 2);
    addItem(3, u"red wine"_s);
    QCOMPARE(found(searchFor(u"red wine"_s, 1)), (QList<int>{2, 3}));
}

void TstSearchQueries::allWordsOverLabelsAreIntersected()
{
    QVERIFY(mIndex->addKeyword(1, u"Red"_s));
    QVERIFY(mIndex->addKeyword(2, u"Wine"_s));
    QVERIFY(mIndex->addLabel(1, u"Wine"_s, QColor()));
    addItem(1, u"-"_s, QString(), -1, -1, {1});
    addItem(2, u"-"_s, QString(), -1, -1, {2, 1});
    addItem(3, u"-"_s, QString(), 1, -1, {1});
    // Words may be found with different keywords, and in different tables when all are asked.
    QCOMPARE(found(searchFor(u"red wine"_s, 1, TVL::KeywordsProperty)), QList<int>{2});
    QCOMPARE(found(searchFor(u"red wine"_s, 1)), (QList<int>{2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_s, 2, TVL::KeywordsProperty)), (QList<int>{1, 2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_s, 3, TVL::LabelProperty)), QList<int>{3});
    QVERIFY(found(searchFor(u"red xyz"_s, 1, TVL::KeywordsProperty)).isEmpty());
    QVERIFY(found(searchFor(u"xyz red"_s, 1, TVL::KeywordsProperty)).isEmpty());
}

void TstSearchQueries::labelsKeywordsAndStatusMatchWholeWords_data()
{
    QTest::addColumn<int>("property");
    QTest::newRow("keywords") << int(TVL::KeywordsProperty);
    QTest::newRow("label") << int(TVL::LabelProperty);
    QTest::newRow("status") << int(TVL::StatusProperty);
}

void TstSearchQueries::labelsKeywordsAndStatusMatchWholeWords()
{
    QFETCH(int, property);
    const QStringList titles = {u"Red"_s, u"Tired"_s, u"infra-red light"_s, u"red2"_s};
    for (int i = 0; i < titles.size(); ++i) {
        QVERIFY(mIndex->addKeyword(i, titles.at(i)));
        QVERIFY(mIndex->addLabel(i, titles.at(i), QColor()));
        QVERIFY(mIndex->addStatusItem(i, titles.at(i)));
        addItem(i, u"-"_s, QString(), i, i, {i});
    }
    for (const int searchOperator : {0, 1, 2, 3, 4}) {
        QCOMPARE(found(searchFor(u"red"_s, searchOperator, property)), (QList<int>{0, 2}));
        QCOMPARE(found(searchFor(u"red"_s, searchOperator)), (QList<int>{0, 2}));
    }
    QCOMPARE(found(searchFor(u"red"_s, 0, property, Qt::CaseSensitive)), QList<int>{2});
    QCOMPARE(found(searchFor(u"red light"_s, 0, property)), QList<int>{2});
}

void TstSearchQueries::expressionsAreEscapedForLabels()
{
    QVERIFY(mIndex->addLabel(1, u"Red"_s, QColor()));
    QVERIFY(mIndex->addLabel(2, u"R.d"_s, QColor()));
    addItem(1, u"-"_s, QString(), 1);
    addItem(2, u"-"_s, QString(), 2);
    QCOMPARE(found(searchFor(u"r.d"_s, 4, TVL::LabelProperty)), QList<int>{2});
}

void TstSearchQueries::plainQuotesFindTypographicOnes()
{
    addItem(1, u"-"_s, u"it\u2019s \u201cso\u201d"_s);
    addItem(2, u"-"_s, u"it's \"so\""_s);
    addItem(3, u"-"_s, u"its so"_s);
    QCOMPARE(found(searchFor(u"it's"_s)), (QList<int>{1, 2}));
    QCOMPARE(found(searchFor(u"\"so\""_s)), (QList<int>{1, 2}));
}

void TstSearchQueries::wholeWordsAreLookedForFurtherOn()
{
    addItem(1, u"-"_s, u"cart"_s);
    addItem(2, u"-"_s, u"cart art"_s);
    QCOMPARE(found(searchFor(u"art"_s, 3)), QList<int>{2});
}

void TstSearchQueries::aBadExpressionFindsNothing()
{
    addItem(1, u"("_s, u"("_s);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(found(searchFor(u"("_s, 4, TVL::TextProperty)).isEmpty());
    QCOMPARE(found(searchFor(u"("_s, 0, TVL::TextProperty)), QList<int>{1});
}

void TstSearchQueries::nothingIsFoundInNothing()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    for (const int property : {0, 1, 2, 5, 6, 7})
        QVERIFY(mIndex->indexes(searchFor(u"x"_s, 0, property)).isEmpty());
}

// --- Statements

void TstSearchQueries::textStatementsAreWordForWord_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<int>("words");
    QTest::addColumn<QString>("statement");
    QTest::newRow("all, one word") << int(TVL::AllProperties) << 1 << AnyText + u", ?)"_s;
    QTest::newRow("all, three words") << int(TVL::AllProperties) << 3 << AnyText + u", ?, ?, ?)"_s;
    QTest::newRow("text, one word") << int(TVL::TextProperty) << 1 << OneText + u", ?)"_s;
    QTest::newRow("notes, two words") << int(TVL::NotesProperty) << 2 << OneText + u", ?, ?)"_s;
    QTest::newRow("text, as many words as a call takes")
        << int(TVL::TextProperty) << 124 << OneText + u", ?"_s.repeated(124) + u')';
}

void TstSearchQueries::textStatementsAreWordForWord()
{
    QFETCH(int, property);
    QFETCH(int, words);
    QFETCH(QString, statement);
    addItem(1, numberedWords(words).join(u' '), numberedWords(words).join(u' '));
    mProject->setText(1, TVL::NotesProperty, numberedWords(words).join(u' '));
    mIndex->validateIndexes(nullptr);
    SqlTrace trace(*mIndex);
    QCOMPARE(
        mIndex->searchTextProperties(numberedWords(words), 32, TVL::DocumentProperty(property)),
        QSet<int>{1});
    QCOMPARE(trace.take(), QStringList{statement});
}

void TstSearchQueries::numberStatementsAreWordForWord_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QStringList>("statements");
    QTest::newRow("all") << int(TVL::AllProperties) << QStringList{OfKeywords, OfLabels, OfStatus};
    QTest::newRow("keywords") << int(TVL::KeywordsProperty) << QStringList{OfKeywords};
    QTest::newRow("label") << int(TVL::LabelProperty) << QStringList{OfLabels};
    QTest::newRow("status") << int(TVL::StatusProperty) << QStringList{OfStatus};
    QTest::newRow("text") << int(TVL::TextProperty) << QStringList();
}

void TstSearchQueries::numberStatementsAreWordForWord()
{
    QFETCH(int, property);
    QFETCH(QStringList, statements);
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->searchIntProperties({u"a"_s}, 0, TVL::DocumentProperty(property)).isEmpty());
    QCOMPARE(trace.take(), statements);
    QVERIFY(mIndex->searchIntProperties({u"a"_s, u"b"_s}, 32, TVL::DocumentProperty(property))
                .isEmpty());
    QCOMPARE(trace.take(), statements + statements);
    QVERIFY(mIndex->searchIntProperties({}, 32, TVL::DocumentProperty(property)).isEmpty());
    QCOMPARE(trace.take(), QStringList());
}

void TstSearchQueries::flagsReachTheDatabase_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<bool>("isFound");
    const QStringList part = {u"ART"_s};
    QTest::newRow("none") << 0 << part << true;
    QTest::newRow("case") << 2 << part << false;
    QTest::newRow("not behind a letter") << 4 << part << false;
    QTest::newRow("not before a letter") << 8 << part << true;
    QTest::newRow("exact") << 16 << part << true;
    QTest::newRow("every word") << 32 << QStringList{u"art"_s, u"dog"_s} << false;
    QTest::newRow("one word") << 0 << QStringList{u"art"_s, u"dog"_s} << true;
    QTest::newRow("no expression") << 0 << QStringList{u"c.rt"_s} << false;
    QTest::newRow("an expression") << 64 << QStringList{u"c.rt"_s} << true;
}

void TstSearchQueries::flagsReachTheDatabase()
{
    QFETCH(int, flags);
    QFETCH(QStringList, words);
    QFETCH(bool, isFound);
    addItem(1, u"cart"_s);
    QCOMPARE(!mIndex->searchTextProperties(words, flags, TVL::TitleProperty).isEmpty(), isFound);
}

// --- Limits and failures

void TstSearchQueries::moreWordsThanACallTakes_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {123, 124, 125, 248, 249})
        QTest::addRow("%d", count) << count;
    QTest::newRow("many") << testSize(5000);
}

void TstSearchQueries::moreWordsThanACallTakes()
{
    QFETCH(int, count);
    const QStringList words = numberedWords(count);
    addItem(1, words.join(u' '));
    addItem(2, words.constLast());
    addItem(3, words.constFirst());
    addItem(4, u"none"_s);
    // All but one, in one text and spread over two.
    addItem(5, words.mid(1).join(u' '));
    addItem(6, words.mid(0, 100).join(u' '), words.mid(100).join(u' '));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    for (const int property : {0, 1}) {
        QCOMPARE(found(searchFor(words.join(u' '), 1, property)), QList<int>{1});
        QCOMPARE(found(searchFor(words.join(u", "), 1, property)), QList<int>{1});
        QCOMPARE(found(searchFor(words.join(u' '), 2, property)), (QList<int>{1, 2, 3, 5, 6}));
        QCOMPARE(found(searchFor(words.join(u' '), 3, property)), (QList<int>{1, 2, 3, 5, 6}));
    }
    QVERIFY(found(searchFor(words.join(u' '), 2, TVL::NotesProperty)).isEmpty());
}

void TstSearchQueries::moreWordsThanTheDatabaseTakes()
{
    // With two values for each call of the function, 32,766 values in all are just enough.
    constexpr int Most = 32'766 - 2 * 261;
    addItem(1, u"w1x"_s);
    QCOMPARE(mIndex->searchTextProperties(numberedWords(Most), 0, TVL::AllProperties),
             QSet<int>{1});
    expectSqlErrors(u"SELECT DISTINCT identity FROM DocumentSearchProperties.*too many words"_s, 2);
    QVERIFY(mIndex->searchTextProperties(numberedWords(Most), 0, TVL::TitleProperty).isEmpty());
    QVERIFY(mIndex->searchTextProperties(numberedWords(Most + 1), 0, TVL::AllProperties).isEmpty());
    QCOMPARE(found(searchFor(u"w1x"_s)), QList<int>{1});
}

void TstSearchQueries::noWordsMatchByTheFlags()
{
    addItem(1, u"x"_s);
    QCOMPARE(mIndex->searchTextProperties({}, TVLTextMatcher::EveryWord, TVL::TitleProperty),
             QSet<int>{1});
    QVERIFY(mIndex->searchTextProperties({}, 0, TVL::TitleProperty).isEmpty());
}

void TstSearchQueries::aFailedStatementIsLoggedAndTheNextTableTried()
{
    QVERIFY(mIndex->addKeyword(1, u"needle"_s));
    QVERIFY(mIndex->addStatusItem(1, u"needle"_s));
    addItem(1, u"-"_s, QString(), -1, -1, {1});
    addItem(2, u"-"_s, QString(), 1, -1);
    addItem(3, u"-"_s, QString(), -1, 1);
    execute(*mIndex, u"DROP TABLE ProjectLabels"_s);
    expectSqlErrors(u"JOIN DocumentIntProperties.*no such table: ProjectLabels"_s, 2);
    QCOMPARE(found(searchFor(u"needle"_s)), (QList<int>{1, 3}));
    QVERIFY(found(searchFor(u"needle"_s, 0, TVL::LabelProperty)).isEmpty());
    QCOMPARE(found(searchFor(u"needle"_s, 0, TVL::StatusProperty)), QList<int>{3});
}

void TstSearchQueries::aFailedTextStatementLooksLikeNoMatches()
{
    addItem(1, u"needle"_s);
    execute(*mIndex, u"ALTER TABLE DocumentSearchProperties RENAME TO Away"_s);
    expectSqlErrors(u"no such table: DocumentSearchProperties"_s, 3);
    QVERIFY(found(searchFor(u"needle"_s)).isEmpty());
    QVERIFY(mIndex->searchTextProperties({u"x"_s}, 0, TVL::TitleProperty).isEmpty());
    execute(*mIndex, u"ALTER TABLE Away RENAME TO DocumentSearchProperties"_s);
    QCOMPARE(found(searchFor(u"needle"_s)), QList<int>{1});
}

TVL_TEST(TstSearchQueries)
#include "tst_searchqueries.moc"
