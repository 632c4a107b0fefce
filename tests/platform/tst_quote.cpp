#include "TVLQuote.h"
#include "TestMain.h"

#include <QRegExp>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** All characters that an expression matches as a whole text. */
QString matchedCharacters(const QString &pattern, Qt::CaseSensitivity caseSensitivity)
{
    QRegExp expression(pattern, caseSensitivity, QRegExp::RegExp2);
    QString matched;
    for (int code = 0; code <= 0xffff; ++code) {
        if (expression.exactMatch(QString(QChar(code))))
            matched += QChar(code);
    }
    return matched;
}

QString sorted(QStringView characters)
{
    QString text = characters.toString();
    std::sort(text.begin(), text.end());
    return text;
}

} // namespace

class TstQuote : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainQuotesAreThoseOfAKeyboard()
    {
        QCOMPARE(TVLQuote::asciiSingleQuote(), QChar(u'\''));
        QCOMPARE(TVLQuote::asciiDoubleQuote(), QChar(u'"'));
    }

    void patternMatchesAForm_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("form");

        const QString single = TVLQuote::singleQuotesSearchPattern();
        const QString twofold = TVLQuote::doubleQuotesSearchPattern();
        QTest::newRow("apostrophe") << single << u"'"_s;
        QTest::newRow("left single") << single << u"\u2018"_s;
        QTest::newRow("right single") << single << u"\u2019"_s;
        QTest::newRow("low single") << single << u"\u201a"_s;
        QTest::newRow("reversed single") << single << u"\u201b"_s;
        QTest::newRow("single pointing left") << single << u"\u2039"_s;
        QTest::newRow("single pointing right") << single << u"\u203a"_s;
        QTest::newRow("wide apostrophe") << single << u"\uff07"_s;
        QTest::newRow("plain double") << twofold << u"\""_s;
        QTest::newRow("left double") << twofold << u"\u201c"_s;
        QTest::newRow("right double") << twofold << u"\u201d"_s;
        QTest::newRow("low double") << twofold << u"\u201e"_s;
        QTest::newRow("reversed double") << twofold << u"\u201f"_s;
        QTest::newRow("double pointing left") << twofold << u"\u00ab"_s;
        QTest::newRow("double pointing right") << twofold << u"\u00bb"_s;
        QTest::newRow("wide double") << twofold << u"\uff02"_s;
    }

    void patternMatchesAForm()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, form);
        QRegExp expression(u"a"_s + pattern + u"b"_s, Qt::CaseInsensitive, QRegExp::RegExp2);
        QVERIFY(expression.isValid());
        QCOMPARE(expression.captureCount(), 0);
        QVERIFY(expression.exactMatch(u"a"_s + form + u"b"_s));
        QVERIFY(!expression.exactMatch(u"ab"_s));
        QVERIFY(!expression.exactMatch(u"a"_s + form + form + u"b"_s));
    }

    void patternsMatchTheFormsAndNothingElse()
    {
        for (const Qt::CaseSensitivity cs : {Qt::CaseInsensitive, Qt::CaseSensitive}) {
            QCOMPARE(matchedCharacters(TVLQuote::singleQuotesSearchPattern(), cs),
                     sorted(TVLQuote::singleQuotes()));
            QCOMPARE(matchedCharacters(TVLQuote::doubleQuotesSearchPattern(), cs),
                     sorted(TVLQuote::doubleQuotes()));
        }
    }

    void plainFormsComeFirst()
    {
        QCOMPARE(TVLQuote::singleQuotes().front(), TVLQuote::asciiSingleQuote());
        QCOMPARE(TVLQuote::doubleQuotes().front(), TVLQuote::asciiDoubleQuote());
    }

    /** The one can be put in for its mark first, and the other then, in a text that has both. */
    void patternsDoNotHoldEachOthersMark()
    {
        QVERIFY(!TVLQuote::singleQuotesSearchPattern().contains(TVLQuote::asciiDoubleQuote()));
        QVERIFY(!TVLQuote::doubleQuotesSearchPattern().contains(TVLQuote::asciiSingleQuote()));
    }
};

TVL_TEST(TstQuote)
#include "tst_quote.moc"
