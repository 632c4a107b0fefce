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

namespace {

const QString AnyText =
    u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE matchQString(propertyValue, ?, ?"_qs;
const QString OneText =
    u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE type is ? AND matchQString(propertyValue, ?, ?"_qs;
const QString OfKeywords =
    u"SELECT DocumentIntProperties.identity FROM ProjectKeywords JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectKeywords.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_qs;
const QString OfLabels =
    u"SELECT DocumentIntProperties.identity FROM ProjectLabels JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectLabels.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_qs;
const QString OfStatus =
    u"SELECT DocumentIntProperties.identity FROM ProjectStatusItems JOIN DocumentIntProperties ON DocumentIntProperties.propertyValue = ProjectStatusItems.identity AND type = ?  WHERE matchQString(title, ?, ?, ?)"_qs;

QList<int> sorted(QList<int> ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

QStringList numberedWords(int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words.append(u"w%1x"_qs.arg(i));
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
    QTest::newRow("exact") << 0 << u"red"_qs << QList<int>{1, 2, 3};
    QTest::newRow("exact with a blank") << 0 << u"red wine"_qs << QList<int>{1};
    QTest::newRow("exact with a comma") << 0 << u"blue, red"_qs << QList<int>{2};
    QTest::newRow("exact escapes") << 0 << u"a.c"_qs << QList<int>{5};
    QTest::newRow("all") << 1 << u"wine red"_qs << QList<int>{1};
    QTest::newRow("all, one missing") << 1 << u"wine blue"_qs << none;
    QTest::newRow("all with commas") << 1 << u"red, dark blue"_qs << QList<int>{2};
    QTest::newRow("all with commas, another order") << 1 << u"red, blue dark"_qs << none;
    QTest::newRow("all without commas") << 1 << u"red blue dark"_qs << QList<int>{2};
    QTest::newRow("all is no whole word") << 1 << u"ire d"_qs << QList<int>{3};
    QTest::newRow("any with a comma and a blank") << 2 << u"a, b"_qs << QList<int>{2, 4, 5, 6};
    QTest::newRow("any with a blank") << 2 << u"a b"_qs << QList<int>{2, 4, 5, 6};
    QTest::newRow("any with a comma alone") << 2 << u"a,b"_qs << QList<int>{4};
    QTest::newRow("any with commas keeps blanks") << 2 << u"dark blue, xyz"_qs << QList<int>{2};
    QTest::newRow("any, empty parts") << 2 << u", , wine, , "_qs << QList<int>{1};
    QTest::newRow("any, a comma at the end") << 2 << u"wine,"_qs << none;
    QTest::newRow("any, a comma and a blank at the end") << 2 << u"wine, "_qs << QList<int>{1};
    QTest::newRow("any, only commas") << 2 << u", , "_qs << none;
    QTest::newRow("any at all kinds of blanks")
        << 2 << u"\twine\u00a0tired\n"_qs << QList<int>{1, 3};
    QTest::newRow("whole word") << 3 << u"red"_qs << QList<int>{1, 2};
    QTest::newRow("whole words, one is enough") << 3 << u"tire wine"_qs << QList<int>{1};
    QTest::newRow("whole words don't split at commas") << 3 << u"wine, xyz"_qs << none;
    QTest::newRow("expression") << 4 << u"a.c"_qs << QList<int>{5};
    QTest::newRow("expression with classes") << 4 << u"^[abt].*[db]$"_qs << QList<int>{3, 4, 6};
    QTest::newRow("expression with blanks") << 4 << u"red|dark b"_qs << QList<int>{1, 2, 3};
    QTest::newRow("five") << 5 << u"red"_qs << none;
}

void TstSearchQueries::searchesByOperator()
{
    QFETCH(int, searchOperator);
    QFETCH(QString, text);
    QFETCH(QList<int>, ids);
    const QStringList texts = {u"red wine"_qs, u"dark blue, red"_qs, u"tired"_qs,
                               u"a,b"_qs,      u"a.c abc"_qs,        u"a b"_qs};
    for (int i = 0; i < texts.size(); ++i)
        addItem(i + 1, u"-"_qs, texts.at(i));
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
    QVERIFY(mIndex->addKeyword(1, u"needle"_qs));
    QVERIFY(mIndex->addLabel(1, u"needle"_qs, QColor()));
    QVERIFY(mIndex->addStatusItem(1, u"needle"_qs));
    // Each item has it in the property of its number.
    for (int id = 0; id <= 9; ++id) {
        addItem(id, id == 1 ? u"needle"_qs : u"-"_qs, {}, id == 6 ? 1 : -1, id == 7 ? 1 : -1,
                id == 5 ? QList<int>{1} : QList<int>());
        if (TVLSearchIndex::stringDocumentProperties().contains(id))
            mProject->setText(id, TVL::DocumentProperty(id), u"a needle here"_qs);
    }
    for (const int searchOperator : {0, 1, 2, 3, 4})
        QCOMPARE(found(searchFor(u"needle"_qs, searchOperator, property)), ids);
}

void TstSearchQueries::searchesByCase()
{
    QVERIFY(mIndex->addLabel(1, u"Mixed"_qs, QColor()));
    addItem(1, u"-"_qs, u"Mixed \u00c9t\u00e9"_qs);
    addItem(2, u"-"_qs, u"mixed \u00e9t\u00e9"_qs);
    addItem(3, u"-"_qs, QString(), 1);
    QCOMPARE(found(searchFor(u"mIXED"_qs)), (QList<int>{1, 2, 3}));
    QCOMPARE(found(searchFor(u"\u00c9T\u00c9"_qs)), (QList<int>{1, 2}));
    QCOMPARE(found(searchFor(u"Mixed"_qs, 0, 0, Qt::CaseSensitive)), (QList<int>{1, 3}));
    QCOMPARE(found(searchFor(u"mixed"_qs, 0, 0, Qt::CaseSensitive)), QList<int>{2});
}

void TstSearchQueries::anItemIsFoundOnce()
{
    QVERIFY(mIndex->addLabel(1, u"needle"_qs, QColor()));
    QVERIFY(mIndex->addKeyword(1, u"needle"_qs));
    QVERIFY(mIndex->addKeyword(2, u"needle too"_qs));
    addItem(1, u"needle"_qs, u"needle"_qs, 1, 1, {1, 2});
    for (const int property : {0, 1, 2, 5, 6})
        QCOMPARE(mIndex->indexes(searchFor(u"needle"_qs, 0, property)), QList<int>{1});
}

// --- Edges

void TstSearchQueries::anEmptySearchText_data()
{
    QTest::addColumn<int>("searchOperator");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasWord");
    QTest::newRow("exact") << 0 << u""_qs << true;
    QTest::newRow("exact, null") << 0 << QString() << true;
    QTest::newRow("all") << 1 << u""_qs << false;
    QTest::newRow("any") << 2 << u""_qs << false;
    QTest::newRow("whole word") << 3 << u""_qs << false;
    QTest::newRow("expression") << 4 << u""_qs << true;
    QTest::newRow("expression, null") << 4 << QString() << true;
    QTest::newRow("all, blanks") << 1 << u" \n\t"_qs << false;
    QTest::newRow("any, blanks") << 2 << u" \n\t"_qs << false;
    QTest::newRow("whole word, blanks") << 3 << u" \n\t"_qs << false;
}

void TstSearchQueries::anEmptySearchText()
{
    QFETCH(int, searchOperator);
    QFETCH(QString, text);
    QFETCH(bool, hasWord);
    addItem(1, u"Title"_qs, u"text"_qs);
    addItem(2, QString());
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    QCOMPARE(found(searchFor(text, searchOperator)), hasWord ? (QList<int>{1, 2}) : QList<int>());
}

void TstSearchQueries::anUnknownOperatorFindsNothing()
{
    addItem(1, u"needle"_qs);
    for (const int searchOperator : {5, 6, 77})
        QVERIFY(found(searchFor(u"needle"_qs, searchOperator)).isEmpty());
    QVERIFY(mProject->takeRequests().isEmpty());
}

void TstSearchQueries::anUnknownPropertyFindsNothing()
{
    addItem(1, u"needle"_qs);
    SqlTrace trace(*mIndex);
    QVERIFY(found(searchFor(u"needle"_qs, 0, 10)).isEmpty());
    for (const QString &statement : trace.take())
        QVERIFY(!statement.contains(u"matchQString"));
}

void TstSearchQueries::allWordsHaveToBeInOneText()
{
    addItem(1, u"red"_qs, u"wine"_qs);
    addItem(2, u"red wine"_qs);
    addItem(3, u"-"_qs, u"wine, red"_qs);
    QCOMPARE(found(searchFor(u"red wine"_qs, 1)), (QList<int>{2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_qs, 1, TVL::TitleProperty)), QList<int>{2});
}

void TstSearchQueries::allWordsOverTitlesAndLabelsAreUnited()
{
    QVERIFY(mIndex->addLabel(1, u"Red"_qs, QColor()));
    QVERIFY(mIndex->addLabel(2, u"Red wine"_qs, QColor()));
    addItem(1, u"wine"_qs, QString(), 1);
    addItem(2, u"water"_qs, QString(), 2);
    addItem(3, u"red wine"_qs);
    QCOMPARE(found(searchFor(u"red wine"_qs, 1)), (QList<int>{2, 3}));
}

void TstSearchQueries::allWordsOverLabelsAreIntersected()
{
    QVERIFY(mIndex->addKeyword(1, u"Red"_qs));
    QVERIFY(mIndex->addKeyword(2, u"Wine"_qs));
    QVERIFY(mIndex->addLabel(1, u"Wine"_qs, QColor()));
    addItem(1, u"-"_qs, QString(), -1, -1, {1});
    addItem(2, u"-"_qs, QString(), -1, -1, {2, 1});
    addItem(3, u"-"_qs, QString(), 1, -1, {1});
    // Words may be found with different keywords, and in different tables when all are asked.
    QCOMPARE(found(searchFor(u"red wine"_qs, 1, TVL::KeywordsProperty)), QList<int>{2});
    QCOMPARE(found(searchFor(u"red wine"_qs, 1)), (QList<int>{2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_qs, 2, TVL::KeywordsProperty)), (QList<int>{1, 2, 3}));
    QCOMPARE(found(searchFor(u"red wine"_qs, 3, TVL::LabelProperty)), QList<int>{3});
    QVERIFY(found(searchFor(u"red xyz"_qs, 1, TVL::KeywordsProperty)).isEmpty());
    QVERIFY(found(searchFor(u"xyz red"_qs, 1, TVL::KeywordsProperty)).isEmpty());
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
    const QStringList titles = {u"Red"_qs, u"Tired"_qs, u"infra-red light"_qs, u"red2"_qs};
    for (int i = 0; i < titles.size(); ++i) {
        QVERIFY(mIndex->addKeyword(i, titles.at(i)));
        QVERIFY(mIndex->addLabel(i, titles.at(i), QColor()));
        QVERIFY(mIndex->addStatusItem(i, titles.at(i)));
        addItem(i, u"-"_qs, QString(), i, i, {i});
    }
    for (const int searchOperator : {0, 1, 2, 3, 4}) {
        QCOMPARE(found(searchFor(u"red"_qs, searchOperator, property)), (QList<int>{0, 2}));
        QCOMPARE(found(searchFor(u"red"_qs, searchOperator)), (QList<int>{0, 2}));
    }
    QCOMPARE(found(searchFor(u"red"_qs, 0, property, Qt::CaseSensitive)), QList<int>{2});
    QCOMPARE(found(searchFor(u"red light"_qs, 0, property)), QList<int>{2});
}

void TstSearchQueries::expressionsAreEscapedForLabels()
{
    QVERIFY(mIndex->addLabel(1, u"Red"_qs, QColor()));
    QVERIFY(mIndex->addLabel(2, u"R.d"_qs, QColor()));
    addItem(1, u"-"_qs, QString(), 1);
    addItem(2, u"-"_qs, QString(), 2);
    QCOMPARE(found(searchFor(u"r.d"_qs, 4, TVL::LabelProperty)), QList<int>{2});
}

void TstSearchQueries::plainQuotesFindTypographicOnes()
{
    addItem(1, u"-"_qs, u"it\u2019s \u201cso\u201d"_qs);
    addItem(2, u"-"_qs, u"it's \"so\""_qs);
    addItem(3, u"-"_qs, u"its so"_qs);
    QCOMPARE(found(searchFor(u"it's"_qs)), (QList<int>{1, 2}));
    QCOMPARE(found(searchFor(u"\"so\""_qs)), (QList<int>{1, 2}));
}

void TstSearchQueries::wholeWordsAreLookedForFurtherOn()
{
    addItem(1, u"-"_qs, u"cart"_qs);
    addItem(2, u"-"_qs, u"cart art"_qs);
    QCOMPARE(found(searchFor(u"art"_qs, 3)), QList<int>{2});
}

void TstSearchQueries::aBadExpressionFindsNothing()
{
    addItem(1, u"("_qs, u"("_qs);
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    QVERIFY(found(searchFor(u"("_qs, 4, TVL::TextProperty)).isEmpty());
    QCOMPARE(found(searchFor(u"("_qs, 0, TVL::TextProperty)), QList<int>{1});
}

void TstSearchQueries::nothingIsFoundInNothing()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    for (const int property : {0, 1, 2, 5, 6, 7})
        QVERIFY(mIndex->indexes(searchFor(u"x"_qs, 0, property)).isEmpty());
}

// --- Statements

void TstSearchQueries::textStatementsAreWordForWord_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<int>("words");
    QTest::addColumn<QString>("statement");
    QTest::newRow("all, one word") << int(TVL::AllProperties) << 1 << AnyText + u", ?)"_qs;
    QTest::newRow("all, three words") << int(TVL::AllProperties) << 3 << AnyText + u", ?, ?, ?)"_qs;
    QTest::newRow("text, one word") << int(TVL::TextProperty) << 1 << OneText + u", ?)"_qs;
    QTest::newRow("notes, two words") << int(TVL::NotesProperty) << 2 << OneText + u", ?, ?)"_qs;
    QTest::newRow("text, as many words as a call takes")
        << int(TVL::TextProperty) << 124 << OneText + u", ?"_qs.repeated(124) + u')';
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
    QVERIFY(mIndex->searchIntProperties({u"a"_qs}, 0, TVL::DocumentProperty(property)).isEmpty());
    QCOMPARE(trace.take(), statements);
    QVERIFY(mIndex->searchIntProperties({u"a"_qs, u"b"_qs}, 32, TVL::DocumentProperty(property))
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
    const QStringList part = {u"ART"_qs};
    QTest::newRow("none") << 0 << part << true;
    QTest::newRow("case") << 2 << part << false;
    QTest::newRow("not behind a letter") << 4 << part << false;
    QTest::newRow("not before a letter") << 8 << part << true;
    QTest::newRow("exact") << 16 << part << true;
    QTest::newRow("every word") << 32 << QStringList{u"art"_qs, u"dog"_qs} << false;
    QTest::newRow("one word") << 0 << QStringList{u"art"_qs, u"dog"_qs} << true;
    QTest::newRow("no expression") << 0 << QStringList{u"c.rt"_qs} << false;
    QTest::newRow("an expression") << 64 << QStringList{u"c.rt"_qs} << true;
}

void TstSearchQueries::flagsReachTheDatabase()
{
    QFETCH(int, flags);
    QFETCH(QStringList, words);
    QFETCH(bool, isFound);
    addItem(1, u"cart"_qs);
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
    addItem(4, u"none"_qs);
    // All but one, in one text and spread over two.
    addItem(5, words.mid(1).join(u' '));
    addItem(6, words.mid(0, 100).join(u' '), words.mid(100).join(u' '));
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
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
    addItem(1, u"w1x"_qs);
    QCOMPARE(mIndex->searchTextProperties(numberedWords(Most), 0, TVL::AllProperties),
             QSet<int>{1});
    expectSqlErrors(u"SELECT DISTINCT identity FROM DocumentSearchProperties.*too many words"_qs,
                    2);
    QVERIFY(mIndex->searchTextProperties(numberedWords(Most), 0, TVL::TitleProperty).isEmpty());
    QVERIFY(mIndex->searchTextProperties(numberedWords(Most + 1), 0, TVL::AllProperties).isEmpty());
    QCOMPARE(found(searchFor(u"w1x"_qs)), QList<int>{1});
}

void TstSearchQueries::noWordsMatchByTheFlags()
{
    addItem(1, u"x"_qs);
    QCOMPARE(mIndex->searchTextProperties({}, TVLTextMatcher::EveryWord, TVL::TitleProperty),
             QSet<int>{1});
    QVERIFY(mIndex->searchTextProperties({}, 0, TVL::TitleProperty).isEmpty());
}

void TstSearchQueries::aFailedStatementIsLoggedAndTheNextTableTried()
{
    QVERIFY(mIndex->addKeyword(1, u"needle"_qs));
    QVERIFY(mIndex->addStatusItem(1, u"needle"_qs));
    addItem(1, u"-"_qs, QString(), -1, -1, {1});
    addItem(2, u"-"_qs, QString(), 1, -1);
    addItem(3, u"-"_qs, QString(), -1, 1);
    execute(*mIndex, u"DROP TABLE ProjectLabels"_qs);
    expectSqlErrors(u"JOIN DocumentIntProperties.*no such table: ProjectLabels"_qs, 2);
    QCOMPARE(found(searchFor(u"needle"_qs)), (QList<int>{1, 3}));
    QVERIFY(found(searchFor(u"needle"_qs, 0, TVL::LabelProperty)).isEmpty());
    QCOMPARE(found(searchFor(u"needle"_qs, 0, TVL::StatusProperty)), QList<int>{3});
}

void TstSearchQueries::aFailedTextStatementLooksLikeNoMatches()
{
    addItem(1, u"needle"_qs);
    execute(*mIndex, u"ALTER TABLE DocumentSearchProperties RENAME TO Away"_qs);
    expectSqlErrors(u"no such table: DocumentSearchProperties"_qs, 3);
    QVERIFY(found(searchFor(u"needle"_qs)).isEmpty());
    QVERIFY(mIndex->searchTextProperties({u"x"_qs}, 0, TVL::TitleProperty).isEmpty());
    execute(*mIndex, u"ALTER TABLE Away RENAME TO DocumentSearchProperties"_qs);
    QCOMPARE(found(searchFor(u"needle"_qs)), QList<int>{1});
}

TVL_TEST(TstSearchQueries)
#include "tst_searchqueries.moc"
