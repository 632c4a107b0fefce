#include "TestMain.h"
#include "TextChecks.h"

#include "TVLTextDoc.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextCursor>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

/** What a word is, in the plainest of ways. */
int plainWordCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int words = 0;
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        const QList<uint> characters = text.mid(start, end - start).toUcs4();
        words += std::any_of(characters.begin(), characters.end(),
                             [](uint character) { return QChar::isLetterOrNumber(character); });
        start = end;
    }
    return words;
}

int wordsIn(const QString &text)
{
    QTextDocument document;
    QTextCursor(&document).insertText(text);
    return TVLTextDoc::wordCount(&document, false, false);
}

/** Texts of characters from a set, so short that each combination of neighbours comes up. */
QString randomTextOf(const QList<char32_t> &characters, QRandomGenerator *random)
{
    QString text;
    for (int i = random->bounded(12); i >= 0; --i) {
        const char32_t character = characters.at(random->bounded(int(characters.size())));
        text += QString::fromUcs4(&character, 1);
    }
    return text;
}

QList<char32_t> charactersBetween(char32_t first, char32_t last)
{
    QList<char32_t> characters;
    for (char32_t character = first; character <= last; ++character) {
        // What ends a paragraph when it is inserted.
        if (character != U'\n' && character != U'\r' && character != 0x2029)
            characters.append(character);
    }
    return characters;
}

} // namespace

class TstWordCount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreCounted_data();
    void wordsAreCounted();
    void notesCountOnDemand_data();
    void notesCountOnDemand();
    void cellsOfTablesCount();
    void anEmptyOrMissingDocumentHasNoWords();
    void eachSimpleCharacterIsLikeUnicodeSays();
    void anyTextCountsLikeUnicodeSays_data();
    void anyTextCountsLikeUnicodeSays();
    void notesAddToTheRest();
};

void TstWordCount::wordsAreCounted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("words");
    QTest::newRow("nothing") << u""_s << 0;
    QTest::newRow("blanks") << u" \t  "_s << 0;
    QTest::newRow("one") << u"word"_s << 1;
    QTest::newRow("two") << u"two words"_s << 2;
    QTest::newRow("many blanks") << u"  two   words  "_s << 2;
    QTest::newRow("marks alone") << u"... -- !? ***"_s << 0;
    QTest::newRow("sentence") << u"\"Well,\" she said, \"it's 3:15 now.\""_s << 7;
    QTest::newRow("apostrophe") << u"don't can\u2019t"_s << 2;
    QTest::newRow("quoted") << u"'quoted' \u2018quoted\u2019 \u201cquoted\u201d"_s << 3;
    QTest::newRow("hyphen parts") << u"well-known"_s << 2;
    QTest::newRow("dash parts") << u"now\u2014then"_s << 2;
    QTest::newRow("soft hyphen joins") << u"sof\u00adten"_s << 1;
    QTest::newRow("no-break space parts") << u"10\u00a0km"_s << 2;
    QTest::newRow("numbers") << u"1,000.50 and 7;8 1'000"_s << 4;
    QTest::newRow("comma between letters parts") << u"a,b"_s << 2;
    QTest::newRow("point between letters parts") << u"e.g. example.org"_s << 4;
    QTest::newRow("colon parts") << u"a:b 3:15"_s << 4;
    QTest::newRow("point between unlike parts") << u"a.1"_s << 2;
    QTest::newRow("two points part") << u"wait..what"_s << 2;
    QTest::newRow("underscore joins") << u"snake_case __init__"_s << 2;
    QTest::newRow("underscores alone") << u"___ _"_s << 0;
    QTest::newRow("paragraphs") << u"one\ntwo\n\nthree"_s << 3;
    QTest::newRow("line ends within a paragraph") << u"one\u2028two"_s << 2;
    QTest::newRow("picture parts") << u"one\ufffctwo"_s << 2;
    QTest::newRow("accents") << u"\u00c9t\u00e9 nai\u0308ve"_s << 2;
    QTest::newRow("Cyrillic") << u"\u0432\u043e\u0439\u043d\u0430 \u0438 \u043c\u0438\u0440"_s << 3;
    QTest::newRow("Greek") << u"\u03bb\u03cc\u03b3\u03bf\u03c2"_s << 1;
    QTest::newRow("Hebrew with inner quote") << u"\u05e6\u05d4\"\u05dc"_s << 1;
    QTest::newRow("Arabic digits") << u"\u0661\u0662\u0663"_s << 1;
    QTest::newRow("ideographs one by one") << u"\u6f22\u5b57"_s << 2;
    QTest::newRow("Katakana together") << u"\u30ab\u30bf\u30ab\u30ca"_s << 1;
    QTest::newRow("astral letters") << u"\U00010400\U00010401 \U0001d7d9"_s << 2;
    QTest::newRow("emoji") << u"\U0001f600 \U0001f468\u200d\U0001f469"_s << 0;
    QTest::newRow("numbers of other kinds") << u"\u00bd \u2163"_s << 2;
    QTest::newRow("half a surrogate pair") << QString(QChar(0xd801)) << 0;
}

void TstWordCount::wordsAreCounted()
{
    QFETCH(const QString, text);
    QFETCH(const int, words);
    QCOMPARE(wordsIn(text), words);
}

void TstWordCount::notesCountOnDemand_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("plain");
    QTest::addColumn<int>("withAnnotations");
    QTest::addColumn<int>("withFootnotes");
    QTest::addColumn<int>("withBoth");
    QTest::newRow("none") << u"one two"_s << 2 << 2 << 2 << 2;
    QTest::newRow("annotation") << u"one <a:two three> four"_s << 2 << 4 << 2 << 4;
    QTest::newRow("footnote") << u"one <f:two three> four"_s << 2 << 2 << 4 << 4;
    QTest::newRow("each") << u"one<a:two><f:three four>"_s << 1 << 2 << 3 << 4;
    QTest::newRow("annotation in a footnote takes both")
        << u"<f:one ><a,f:two>"_s << 0 << 0 << 1 << 2;
    QTest::newRow("a note parts what it stands between") << u"foo<a:x>bar"_s << 2 << 3 << 2 << 3;
    QTest::newRow("other formats part nothing") << u"fo<b:o>bar"_s << 1 << 1 << 1 << 1;
    QTest::newRow("nor within a note") << u"<a:fo><a,b:o>"_s << 0 << 1 << 0 << 1;
    QTest::newRow("inspector comments never count")
        << u"one <c1:two> <n2:three>"_s << 3 << 3 << 3 << 3;
    QTest::newRow("whole paragraphs") << u"<a:one\ntwo>\nthree"_s << 1 << 3 << 1 << 3;
}

void TstWordCount::notesCountOnDemand()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(TVLTextDoc::wordCount(document.get(), false, false), "plain");
    QTEST(TVLTextDoc::wordCount(document.get(), true, false), "withAnnotations");
    QTEST(TVLTextDoc::wordCount(document.get(), false, true), "withFootnotes");
    QTEST(TVLTextDoc::wordCount(document.get(), true, true), "withBoth");
}

void TstWordCount::cellsOfTablesCount()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"before"_s);
    const QTextTable *table = cursor.insertTable(1, 2);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"left cell"_s);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"right"_s);
    QCOMPARE(TVLTextDoc::wordCount(&document, false, false), 4);
}

void TstWordCount::anEmptyOrMissingDocumentHasNoWords()
{
    const QTextDocument document;
    QCOMPARE(TVLTextDoc::wordCount(&document, true, true), 0);
    QCOMPARE(TVLTextDoc::wordCount(nullptr, true, true), 0);
}

void TstWordCount::eachSimpleCharacterIsLikeUnicodeSays()
{
    const QString sides[] = {u"a"_s, u"1"_s, u"_"_s, u" "_s, u"'"_s, u"."_s, u""_s};
    QList<char32_t> characters = charactersBetween(1, 0x530);
    characters += charactersBetween(0x2000, 0x2070);
    characters += {0xfffc, 0x3000, 0x30a2, 0x5b57, 0x10400};
    for (const char32_t character : std::as_const(characters)) {
        for (const QString &left : sides) {
            for (const QString &right : sides) {
                const QString text = left + QString::fromUcs4(&character, 1) + right;
                if (wordsIn(text) != plainWordCount(text))
                    QFAIL(qPrintable(u"U+%1 in '%2'"_s.arg(uint(character), 0, 16).arg(text)));
            }
        }
    }
}

void TstWordCount::anyTextCountsLikeUnicodeSays_data()
{
    QTest::addColumn<QList<char32_t>>("characters");
    QTest::newRow("joints") << QList<char32_t>{U'a', U'1',  U'_', U':', U',', U';',
                                               U'.', U'\'', U'"', U'-', U' ', U'\t'};
    QTest::newRow("wide joints") << QList<char32_t>{U'a', 0xe9, 0x43b, U'1',   U'_', 0x2019, 0x2018,
                                                    U'.', U':', U',',  0x2014, 0xa0, U' '};
    QTest::newRow("ASCII") << charactersBetween(1, 0x7f);
    QTest::newRow("Latin") << charactersBetween(1, 0x24f);
    QTest::newRow("mixed") << QList<char32_t>{
        U'a',   U'1',   U' ',   U'.',    U'\'',   0x301,   0xad,  0x200d, 0x5d0, U'"',
        0x30a2, 0x3042, 0x5b57, 0x10400, 0x1f600, 0x1f1e6, 0x661, 0x66b,  0x2d,  0xb7};
    QTest::newRow("general punctuation and words")
        << charactersBetween(0x2000, 0x206f) + charactersBetween(U'a', U'z');
}

void TstWordCount::anyTextCountsLikeUnicodeSays()
{
    QFETCH(const QList<char32_t>, characters);
    QRandomGenerator random(7);
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomTextOf(characters, &random);
        if (wordsIn(text) != plainWordCount(text))
            QFAIL(qPrintable(
                u"'%1': %2 for %3"_s.arg(text).arg(wordsIn(text)).arg(plainWordCount(text))));
    }
}

void TstWordCount::notesAddToTheRest()
{
    QRandomGenerator random(11);
    const QString marks[] = {u"b"_s, u"a"_s, u"f"_s, u"a,f"_s};
    for (int i = 0; i < 300; ++i) {
        QTextDocument whole;
        QTextDocument notes;
        QTextDocument rest;
        for (int run = random.bounded(8); run >= 0; --run) {
            const QString text =
                randomTextOf({U'a', U'b', U'1', U' ', U'.', 0x2019, 0x5b57}, &random);
            const int kind = random.bounded(4);
            QTextCursor cursor(&whole);
            cursor.movePosition(QTextCursor::End);
            cursor.insertText(text, markedFormat(marks[kind]));
            // Runs of one kind are one text; what stood between them parts them.
            QTextCursor other(kind ? &notes : &rest);
            other.movePosition(QTextCursor::End);
            other.insertText(text, markedFormat(marks[kind]));
            QTextCursor gap(kind ? &rest : &notes);
            gap.movePosition(QTextCursor::End);
            gap.insertBlock();
        }
        QCOMPARE(TVLTextDoc::wordCount(&whole, false, false),
                 TVLTextDoc::wordCount(&rest, true, true));
        QCOMPARE(TVLTextDoc::wordCount(&whole, true, true),
                 TVLTextDoc::wordCount(&rest, true, true)
                     + TVLTextDoc::wordCount(&notes, true, true));
    }
}

TVL_TEST(TstWordCount)
#include "tst_wordcount.moc"
