#include "TestMain.h"
#include "TestScale.h"

#include "TVLFountainParser_p.h"
#include "TVLFountainWriter_p.h"
#include "TvlFountain.h"

#include <QTest>
#include <QTextDocument>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

double processorSecondsOf(const std::function<void()> &work)
{
    const std::clock_t start = std::clock();
    work();
    return double(std::clock() - start) / CLOCKS_PER_SEC;
}

} // namespace

/** Texts that are made to break a reader. */
class TstFountainHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTimeGrowsWithTheText_data();
    void theTimeGrowsWithTheText();
    void oddCharactersAreText_data();
    void oddCharactersAreText();
};

void TstFountainHostile::theTimeGrowsWithTheText_data()
{
    QTest::addColumn<QString>("piece");
    QTest::newRow("one line without end") << u"word "_s;
    QTest::newRow("signs of emphasis") << u"*"_s;
    QTest::newRow("signs of emphasis with blanks") << u" *"_s;
    QTest::newRow("signs of emphasis with letters") << u"a*"_s;
    QTest::newRow("signs of all emphasis") << u"a***b_"_s;
    QTest::newRow("boneyards without end") << u"/*"_s;
    QTest::newRow("boneyards") << u"/**/ "_s;
    QTest::newRow("notes without end") << u"[["_s;
    QTest::newRow("notes with an end") << u"[[a]]"_s;
    QTest::newRow("notes over lines") << u"[[a\n"_s;
    QTest::newRow("notes that blank lines end") << u"[[a\n\n]]"_s;
    QTest::newRow("backslashes") << u"\\"_s;
    QTest::newRow("parentheses") << u"A("_s;
    QTest::newRow("line ends") << u"\n"_s;
    QTest::newRow("page breaks") << u"===\n"_s;
    QTest::newRow("sections") << u"#"_s;
    QTest::newRow("scene numbers") << u"INT. A#"_s;
    QTest::newRow("comments") << u"a/*:comment 1*/[[b]]"_s;
    QTest::newRow("told paragraphs") << u"/*:element Shot*/a\n"_s;
    QTest::newRow("lines of action") << u"a\n"_s;
    QTest::newRow("paragraphs of action") << u"a\n\n\n"_s;
    QTest::newRow("speeches") << u"A\nb\n  \n(c)\n\n"_s;
    QTest::newRow("zeros") << QString(QChar(u'\0'));
}

void TstFountainHostile::theTimeGrowsWithTheText()
{
    QFETCH(QString, piece);
    const int large = testSize(10'000'000) / int(piece.size());
    // So small that growth by the square would take hours, and so large that linear work doesn't.
    // Many times what it takes, also under sanitizers on a busy machine; a square takes far longer.
    constexpr double SecondsPerMillion = 20;
    const QString text = piece.repeated(large);
    QString written;
    const double seconds = processorSecondsOf(
        [&] { written = TVLFountainWriter::write(TVLFountainParser::parse(text)); });
    QVERIFY2(seconds < SecondsPerMillion * double(text.size()) / 1e6,
             qPrintable(QString::number(seconds)));
    QVERIFY(written.size() < 40 * text.size() + 100);
}

void TstFountainHostile::oddCharactersAreText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::newRow("zero") << u"a\0b"_s << u"a\0b"_s;
    QTest::newRow("half a pair") << u"a"_s + QChar(0xd83c) << u"a"_s + QChar(0xd83c);
    QTest::newRow("edges of cells") << u"a"_s + QChar(0xfdd0) + QChar(0xfdd1) << u"a\ufffd\ufffd"_s;
    QTest::newRow("place of a picture") << u"a\ufffc"_s << u"a\ufffd"_s;
    QTest::newRow("end of a paragraph") << u"a\u2029b"_s << u"a\nb"_s;
    QTest::newRow("end of a line") << u"a\u2028b"_s << u"a\nb"_s;
    QTest::newRow("form feed") << u"a\fb"_s << u"a\fb"_s;
}

void TstFountainHostile::oddCharactersAreText()
{
    QFETCH(QString, text);
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(text, &document, {}));
    QCOMPARE(document.blockCount(), 1);
    QTEST(document.toPlainText(), "plain");
}

TVL_TEST(TstFountainHostile)
#include "tst_fountainhostile.moc"
