#include "RandomMatches.h"
#include "ReferenceMatch.h"
#include "TVLTextMatcher.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QRegExp>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

using namespace Qt::StringLiterals;

using Flag = TVLTextMatcher::Flag;

namespace {

const int RandomCases = testCases(200'000);

/** All flags that have a meaning, each way. */
constexpr int FlagCombinations = 64;

QString decoded(const QByteArray &utf8)
{
    // A byte order mark is dropped at the start only.
    return QString::fromUtf8(QByteArray("x") + utf8).mid(1);
}

/** Matches a text in all ways there are; a failed test when they don't agree. */
bool matches(const QString &text, int flags, const QStringList &words)
{
    const bool expected = referenceMatch(text, flags, words);
    TVLTextMatcher matcher(flags, words);
    const QByteArray utf8 = text.toUtf8();
    const bool agree = tvlMatchQString(text, flags, words) == expected
        && matcher.matches(text) == expected
        && matcher.matchesUtf8(utf8.constData(), utf8.size())
            == referenceMatch(decoded(utf8), flags, words)
        && matcher.matches(text) == expected;
    if (!agree)
        QTest::qFail(qPrintable(described({text, flags, words})), __FILE__, __LINE__);
    return expected;
}

/** Characters that have more than one case, or are the case of another. */
QString casedCharacters()
{
    std::set<char16_t> characters;
    for (int code = 0; code <= 0xffff; ++code) {
        const QChar character(code);
        for (const QChar form : {character.toLower(), character.toUpper(), character.toTitleCase(),
                                 character.toCaseFolded()}) {
            if (form != character)
                characters.insert({character.unicode(), form.unicode()});
        }
    }
    QString text;
    for (const char16_t character : characters)
        text += QChar(character);
    return text;
}

/** One damage or some to bytes, so that they hardly ever are UTF-8 still. */
void damage(QByteArray *bytes, QRandomGenerator *random)
{
    for (int i = 1 + random->bounded(3); i > 0 && !bytes->isEmpty(); --i) {
        const int at = random->bounded(int(bytes->size()));
        if (random->bounded(2))
            (*bytes)[at] = char(random->bounded(256));
        else
            bytes->remove(at, 1);
    }
}

} // namespace

class TstTextMatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsAreThoseOfStatements()
    {
        QCOMPARE(int(Flag::CaseSensitive), 2);
        QCOMPARE(int(Flag::NotAfterLetter), 4);
        QCOMPARE(int(Flag::NotBeforeLetter), 8);
        QCOMPARE(int(Flag::WholeWord), 12);
        QCOMPARE(int(Flag::ExactText), 16);
        QCOMPARE(int(Flag::EveryWord), 32);
        QCOMPARE(int(Flag::RegularExpression), 64);
    }

    void textMatches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<bool>("expected");
        addWordRows();
        addBoundaryRows();
        addQuoteRows();
        addCaseRows();
        addExpressionRows();
        addOddRows();
    }

    void textMatches()
    {
        QFETCH(QString, text);
        QFETCH(int, flags);
        QFETCH(QStringList, words);
        QFETCH(bool, expected);
        QCOMPARE(matches(text, flags, words), expected);
    }

    void exactTextChangesNothing()
    {
        for (int flags = 0; flags < 2 * FlagCombinations; flags += 2) {
            for (const QString &word : {u"art"_s, u"Cart"_s, u"x"_s, QString()}) {
                QCOMPARE(matches(u"cart art"_s, flags | Flag::ExactText, {word}),
                         matches(u"cart art"_s, flags & ~Flag::ExactText, {word}));
            }
        }
    }

    /** One matcher, one text after another, in both forms. */
    void matcherKeepsNothingOfTheTextBefore()
    {
        const QStringList texts = {u"a cart"_s, u"art"_s, {},          u"no"_s,
                                   u"Art!"_s,   u"art"_s, u"artful"_s, u"the art of it"_s};
        for (const int flags : {0, int(Flag::WholeWord), int(Flag::RegularExpression)}) {
            TVLTextMatcher matcher(flags, {u"art"_s});
            for (const QString &text : texts) {
                const bool expected = referenceMatch(text, flags, {u"art"_s});
                const QByteArray utf8 = text.toUtf8();
                QCOMPARE(matcher.matches(text), expected);
                QCOMPARE(matcher.matchesUtf8(utf8.constData(), utf8.size()), expected);
            }
        }
    }

    void movedMatcherMatches()
    {
        TVLTextMatcher first(Flag::WholeWord, {u"art"_s});
        QVERIFY(first.matchesUtf8("an art"));
        TVLTextMatcher second(std::move(first));
        QVERIFY(second.matchesUtf8("an art"));
        QVERIFY(!second.matchesUtf8("a cart"));
        TVLTextMatcher third(0, {});
        third = std::move(second);
        QVERIFY(third.matches(u"art"_s));
    }

    /** A character at any place of a word takes the same characters as in an expression. */
    void everyCharacterOfTheBasicPlaneFindsWhatAnExpressionFinds_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("behind");
        QTest::addColumn<int>("flags");
        QTest::newRow("alone") << QString() << QString() << 0;
        QTest::newRow("behind a letter") << u"x"_s << QString() << 0;
        QTest::newRow("before a quotation mark") << QString() << u"'"_s << 0;
        QTest::newRow("alone, by case") << QString() << QString() << int(Flag::CaseSensitive);
    }

    void everyCharacterOfTheBasicPlaneFindsWhatAnExpressionFinds()
    {
        QFETCH(QString, before);
        QFETCH(QString, behind);
        QFETCH(int, flags);
        const QString cased = casedCharacters();
        QString separated;
        for (const QChar character : cased)
            separated += before + character + behind + u'\n';
        for (int code = 0; code <= 0xffff; code += testStep(1)) {
            const QChar character(code);
            const QStringList words{before + character + behind};
            const bool isCased = cased.contains(character);
            // What has no case finds itself alone; it is enough to look through all others at once.
            const QString text = isCased ? QString() : separated;
            TVLTextMatcher matcher(flags, words);
            const auto check = [&](const QString &checked) {
                const QByteArray utf8 = checked.toUtf8();
                if (matcher.matchesUtf8(utf8.constData(), utf8.size())
                    != referenceMatch(decoded(utf8), flags, words))
                    QFAIL(qPrintable(described({checked, flags, words})));
            };
            check(words.front());
            if (!isCased) {
                if (code % 16 == 0)
                    check(text);
                continue;
            }
            for (const QChar other : relatives(character, cased))
                check(before + other + behind);
        }
    }

    void randomCasesMatchAsStepByStep()
    {
        const quint32 first = firstSeed();
        int matching = 0;
        const qint64 rejectedBefore = rejectedReferenceMatches();
        for (quint32 seed = first; seed < first + quint32(RandomCases); ++seed) {
            QRandomGenerator random(seed);
            const MatchCase match = randomMatchCase(&random);
            const bool expected = referenceMatch(match.text, match.flags, match.words);
            TVLTextMatcher matcher(match.flags, match.words);
            QByteArray utf8 = match.text.toUtf8();
            if (random.bounded(4) == 0)
                damage(&utf8, &random);
            const bool expectedOfUtf8 = referenceMatch(decoded(utf8), match.flags, match.words);
            // Each form of text twice and in turns, as a matcher is kept.
            const bool agrees = matcher.matches(match.text) == expected
                && matcher.matchesUtf8(utf8.constData(), utf8.size()) == expectedOfUtf8
                && matcher.matches(match.text) == expected
                && matcher.matchesUtf8(utf8.constData(), utf8.size()) == expectedOfUtf8;
            if (!agrees) {
                QFAIL(qPrintable(u"seed %1: %2, in UTF-8 %3"_s.arg(seed).arg(
                    described(match), QString::fromLatin1(utf8.toHex()))));
            }
            matching += expected ? 1 : 0;
        }
        // Cases that all end the same way would show nothing.
        QVERIFY(matching > RandomCases / 10);
        QVERIFY(matching < RandomCases * 9 / 10);
        QVERIFY(rejectedReferenceMatches() - rejectedBefore > RandomCases / 4);
    }

    /** Damage next to a match must not make another match of it. */
    void everyBytePairBesideAMatchCountsAsItsCharacters()
    {
        const int flags = Flag::WholeWord;
        TVLTextMatcher matcher(flags, {u"a"_s});
        for (int pair = 0; pair < 0x10000; pair += testStep(1)) {
            const QByteArray beside{char(pair >> 8), char(pair & 0xff)};
            QByteArrayList texts;
            for (const char *lead : {"", "\xe0", "\xe2", "\xed", "\xf0"})
                texts << QByteArray(lead + beside + "a") << QByteArray("a" + (lead + beside));
            for (const QByteArray &text : texts) {
                if (matcher.matchesUtf8(text.constData(), text.size())
                    != referenceMatch(decoded(text), flags, {u"a"_s}))
                    QFAIL(text.toHex().constData());
            }
        }
    }

    void expressionsThatBeginAtTheStartOfATextMatchAsStepByStep()
    {
        const QStringList patterns = {
            u"^Z.*x$"_s,   u"^Zx"_s,      u"^Z?x"_s,         u"^Z*x"_s,  u"^Z+x"_s,
            u"^Z{0,2}x"_s, u"^(Z)x"_s,    u"^Z|x"_s,         u"^\\Zx"_s, u"^\\.x"_s,
            u"^^Zx"_s,     u"^*Zx"_s,     u"Z^x"_s,          u"^[Z]x"_s, u"^kx"_s,
            u"^\u017f"_s,  u"^\u00e9x"_s, u"^\U0001f600x"_s, u"^it's"_s, u"^ZxZxZx"_s,
        };
        const QStringList texts = {
            u"Zx"_s,          u"zx"_s,        u"aZx"_s,    u"x"_s,        u"Z"_s,
            u"ZZx"_s,         u"Z more x"_s,  u"\nZx"_s,   u".x"_s,       u"\u212ax"_s,
            u"Kx"_s,          u"s"_s,         u"\u017f"_s, u"\u00c9x"_s,  u"e\u0301x"_s,
            u"\U0001f600x"_s, u"it\u2019s"_s, u"ZxZxZx"_s, u"\ufeffZx"_s, u""_s,
        };
        for (const QString &pattern : patterns) {
            for (const QString &text : texts) {
                for (const int flags : {0, int(Flag::CaseSensitive), int(Flag::WholeWord)})
                    (void)matches(text, flags | Flag::RegularExpression, {pattern});
            }
        }
    }

    void longTextIsSearchedToItsEnd()
    {
        for (int size = 0; size < 300; ++size) {
            const QString filling(size, u'-');
            QVERIFY(matches(filling + u"needle"_s, 0, {u"needle"_s}));
            QVERIFY(matches(filling + u"needle"_s + filling, Flag::WholeWord, {u"Needle"_s}));
            QVERIFY(!matches(filling + u"needl"_s, 0, {u"needle"_s}));
            QVERIFY(matches(filling + u"it\u2019s"_s + filling, 0, {u"it's"_s}));
        }
    }

    void manyRejectedMatchesTakeLinearTime()
    {
        const QString text = u"art"_s.repeated(300'000);
        QVERIFY(!matches(text, Flag::WholeWord, {u"art"_s}));
        QVERIFY(!matches(text, Flag::WholeWord, {u"a'"_s}));
    }

    void longWordIsFound()
    {
        const QString word = u"Lorem\u00e4 ipsum's "_s.repeated(400);
        QVERIFY(matches(u"x"_s + word + u"y"_s, 0, {word.toUpper()}));
        QVERIFY(!matches(word.chopped(1), 0, {word}));
    }

private:
    static quint32 firstSeed() { return qEnvironmentVariable("TVL_TEST_SEED", u"1"_s).toUInt(); }

    /** Cased characters that some mapping takes for one, and their neighbours. */
    static QString relatives(QChar character, const QString &cased)
    {
        QString found;
        for (const QChar other : cased) {
            if (other.toCaseFolded() == character.toCaseFolded()
                || other.toLower() == character.toLower() || other.toUpper() == character.toUpper()
                || other.toTitleCase() == character.toTitleCase()
                || std::abs(other.unicode() - character.unicode()) <= 1)
                found += other;
        }
        return found;
    }

    static void addRow(const char *name, const QString &text, int flags, const QStringList &words,
                       bool expected)
    {
        QTest::newRow(name) << text << flags << words << expected;
    }

    static void addWordRows()
    {
        const QString text = u"The red fox and the blue hare"_s;
        addRow("one of some words is enough", text, 0, {u"green"_s, u"fox"_s}, true);
        addRow("none of some words", text, 0, {u"green"_s, u"wolf"_s}, false);
        addRow("every word is there", text, Flag::EveryWord, {u"hare"_s, u"fox"_s}, true);
        addRow("one word of all is missing", text, Flag::EveryWord, {u"fox"_s, u"wolf"_s}, false);
        addRow("words may overlap", u"abc"_s, Flag::EveryWord, {u"ab"_s, u"bc"_s}, true);
        addRow("no words, every one", text, Flag::EveryWord, {}, true);
        addRow("no words, any one", text, 0, {}, false);
        addRow("no words, no text, every one", {}, Flag::EveryWord, {}, true);
        addRow("a word with a blank", text, 0, {u"red fox"_s}, true);
        addRow("a word as long as the text", text, Flag::WholeWord, {text}, true);
        addRow("a word longer than the text", u"fox"_s, 0, {u"foxes"_s}, false);
        addRow("no text", {}, 0, {u"fox"_s}, false);
        addRow("what has a meaning in expressions is plain", u"a+b (c)? [d] $5.00 ^\\|{}*"_s, 32,
               {u"a+b"_s, u"(c)?"_s, u"[d]"_s, u"$5.00"_s, u"^\\|{}*"_s}, true);
        addRow("a full stop is only that", u"axb"_s, 0, {u"a.b"_s}, false);
    }

    static void addBoundaryRows()
    {
        const int whole = Flag::WholeWord;
        addRow("inside a word", u"cart"_s, whole, {u"art"_s}, false);
        addRow("behind a rejected match", u"cart art"_s, whole, {u"art"_s}, true);
        addRow("overlapping a rejected match", u"xaa a-a-a y"_s, whole, {u"a-a"_s}, true);
        addRow("match inside a rejected match", u"aaa aaa"_s, Flag::NotAfterLetter, {u"aa"_s},
               true);
        addRow("before a letter", u"arts"_s, whole, {u"art"_s}, false);
        addRow("before a number", u"art2"_s, whole, {u"art"_s}, false);
        addRow("behind a number", u"2art"_s, whole, {u"art"_s}, false);
        addRow("between marks", u"(art)"_s, whole, {u"art"_s}, true);
        addRow("between low lines", u"_art_"_s, whole, {u"art"_s}, true);
        addRow("the whole text", u"art"_s, whole, {u"art"_s}, true);
        addRow("start only: before a letter", u"arts"_s, Flag::NotAfterLetter, {u"art"_s}, true);
        addRow("start only: behind one", u"cart"_s, Flag::NotAfterLetter, {u"art"_s}, false);
        addRow("end only: behind a letter", u"cart"_s, Flag::NotBeforeLetter, {u"art"_s}, true);
        addRow("end only: before one", u"arts"_s, Flag::NotBeforeLetter, {u"art"_s}, false);
        addRow("behind a letter of two bytes", u"\u00e9art"_s, whole, {u"art"_s}, false);
        addRow("before a letter of two bytes", u"art\u00e9"_s, whole, {u"art"_s}, false);
        addRow("behind a letter of three bytes", u"\u4e2dart"_s, whole, {u"art"_s}, false);
        addRow("before a letter of three bytes", u"art\u4e2d"_s, whole, {u"art"_s}, false);
        addRow("between curly quotes", u"\u201cart\u201d"_s, whole, {u"art"_s}, true);
        addRow("before a combining mark", u"art\u0301"_s, whole, {u"art"_s}, true);
        addRow("beside pictures", u"\U0001f600art\U0001f600"_s, whole, {u"art"_s}, true);
        // Half a pair is no letter, whatever the pair is.
        addRow("beside letters of four bytes", u"\U00010400art\U00010400"_s, whole, {u"art"_s},
               true);
        addRow("a word of marks", u"a -- b"_s, whole, {u"--"_s}, true);
        addRow("a word of marks between letters", u"a--b"_s, whole, {u"--"_s}, false);
    }

    static void addQuoteRows()
    {
        addRow("plain apostrophe, curly text", u"and it\u2019s"_s, 0, {u"it's"_s}, true);
        addRow("plain apostrophe, plain text", u"and it's"_s, 0, {u"it's"_s}, true);
        addRow("curly apostrophe, plain text", u"and it's"_s, 0, {u"it\u2019s"_s}, false);
        addRow("curly apostrophe, curly text", u"and it\u2019s"_s, 0, {u"IT\u2019S"_s}, true);
        addRow("plain double quotes", u"so \u201cyes\u201d, she"_s, 0, {u"\"yes\""_s}, true);
        addRow("double quotes pointing", u"\u00abOui\u00bb"_s, 0, {u"\"oui\""_s}, true);
        addRow("double is not single", u"it\u201ds"_s, 0, {u"it's"_s}, false);
        addRow("both marks", u"\u2018\u201cNo\u201d\u2019"_s, 0, {u"'\"no\"'"_s}, true);
        addRow("only a quote", u"a \u2019 b"_s, 0, {u"'"_s}, true);
        addRow("a quote and whole words", u"it\u2019s"_s, Flag::WholeWord, {u"'s"_s}, false);
        addRow("quote in an expression", u"it\u2019s"_s, Flag::RegularExpression, {u"t's?$"_s},
               true);
        addRow("a quote and case", u"It\u2019s"_s, Flag::CaseSensitive, {u"it's"_s}, false);
    }

    static void addCaseRows()
    {
        const int sensitive = Flag::CaseSensitive;
        addRow("another case", u"The FOX"_s, 0, {u"fox"_s}, true);
        addRow("another case, by case", u"The FOX"_s, sensitive, {u"fox"_s}, false);
        addRow("same case, by case", u"The Fox fox"_s, sensitive, {u"fox"_s}, true);
        addRow("another case beyond ASCII", u"\u00c4RGER"_s, 0, {u"\u00e4rger"_s}, true);
        addRow("another case of two lead bytes", u"\u041f\u0420\u0418\u0412\u0415\u0422"_s, 0,
               {u"\u043f\u0440\u0438\u0432\u0435\u0442"_s}, true);
        addRow("long s", u"Congre\u017fs"_s, 0, {u"congress"_s}, true);
        addRow("Kelvin sign", u"100 \u212a"_s, Flag::WholeWord, {u"k"_s}, true);
        addRow("final sigma", u"\u03bb\u03cc\u03b3\u03bf\u03c2"_s, 0,
               {u"\u039b\u038c\u0393\u039f\u03a3"_s}, true);
        addRow("sharp s stays alone", u"Strasse"_s, 0, {u"stra\u00dfe"_s}, false);
        addRow("ligature stays alone", u"\ufb01nd"_s, 0, {u"find"_s}, false);
        addRow("dotless i is no i", u"\u0131"_s, 0, {u"i"_s}, false);
        // Its small form is two characters, and these are what an expression looks for.
        addRow("capital i with dot does not find itself", u"\u0130"_s, 0, {u"\u0130"_s}, false);
        addRow("capital i with dot finds its small form", u"i\u0307"_s, 0, {u"\u0130"_s}, true);
        addRow("capital i with dot, by case", u"\u0130"_s, sensitive, {u"\u0130"_s}, true);
        addRow("letters beyond the basic plane", u"\U00010400"_s, 0, {u"\U00010428"_s}, true);
    }

    static void addExpressionRows()
    {
        const int expression = Flag::RegularExpression;
        addRow("expression", u"many colours"_s, expression, {u"colou?rs\\b"_s}, true);
        addRow("expression without match", u"many colors"_s, expression, {u"colours"_s}, false);
        addRow("expression by case", u"Grey"_s, expression | 2, {u"gr[ae]y"_s}, false);
        addRow("alternatives", u"a hare"_s, expression, {u"fox|hare"_s}, true);
        addRow("repeated expression", u"ab"_s, expression, {u"abc*"_s}, true);
        addRow("anchored at the start", u"a fox"_s, expression, {u"^fox"_s}, false);
        addRow("anchored at the end", u"a fox"_s, expression, {u"fox$"_s}, true);
        addRow("back reference", u"bookkeeper"_s, expression, {u"(o)\\1(k)\\2"_s}, true);
        addRow("matches of no length", u"abc"_s, expression, {u"x*"_s}, true);
        addRow("matches of no length are passed over", u"abc"_s, expression | 12, {u"x*"_s}, false);
        addRow("a match of no length between blanks", u"ab  c"_s, expression | 12, {u"x*"_s}, true);
        addRow("a match of no length between letters", u"ab"_s, expression | 12, {u"\\B"_s}, false);
        addRow("expressions with boundaries", u"xa1 b2"_s, expression | 12, {u"[a-b]\\d"_s}, true);
        addRow("a bad expression", u"fox("_s, expression, {u"fox("_s}, false);
        addRow("a bad expression among good ones", u"fox"_s, expression, {u"["_s, u"fox"_s}, true);
        addRow("a bad expression where all are asked", u"fox"_s, expression | 32,
               {u"fox"_s, u"*"_s}, false);
        addRow("a small form of two characters in an expression", u"i\u0307."_s, expression,
               {u"\u0130\\."_s}, true);
        addRow("a plain expression", u"The Fox"_s, expression, {u"fox"_s}, true);
    }

    static void addOddRows()
    {
        const QString null(QChar(0));
        addRow("empty word", u"abc"_s, 0, {QString()}, true);
        addRow("empty word, no text", {}, Flag::WholeWord, {QString()}, true);
        addRow("empty word before a letter", u"a"_s, Flag::NotBeforeLetter, {QString()}, true);
        addRow("empty word among letters", u"abc"_s, Flag::WholeWord, {QString()}, false);
        addRow("empty word beside a mark", u"ab  c"_s, Flag::WholeWord, {QString()}, true);
        addRow("null string as word", u"abc"_s, Flag::RegularExpression, {QString()}, true);
        addRow("null character in the text", u"a"_s + null + u"b"_s, 0, {u"b"_s}, true);
        addRow("null character in the word", u"a"_s + null + u"b"_s, 0, {null + u"b"_s}, true);
        addRow("null character that is missing", u"ab"_s, 0, {u"a"_s + null + u"b"_s}, false);
        addRow("combining mark", u"e\u0301a"_s, 0, {u"\u0301a"_s}, true);
        addRow("composed is not decomposed", u"\u00e9"_s, 0, {u"e\u0301"_s}, false);
        addRow("picture", u"a\U0001f600b"_s, 0, {u"\U0001f600"_s}, true);
        addRow("half a picture", u"a\U0001f600b"_s, Flag::CaseSensitive, {QString(QChar(0xd83d))},
               true);
        addRow("byte order mark", u"\ufeffabc"_s, 0, {u"\ufeffa"_s}, true);
        addRow("start behind a byte order mark", u"\ufeffabc"_s, Flag::RegularExpression,
               {u"^abc"_s}, false);
        addRow("two byte order marks", u"\ufeff\ufeffa"_s, Flag::RegularExpression,
               {u"^\ufeff\ufeffa"_s}, true);
    }
};

TVL_TEST(TstTextMatcher)
#include "tst_textmatcher.moc"
