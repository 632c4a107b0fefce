#include "TestMain.h"
#include "TestScale.h"

#include "TVLFountainParser_p.h"
#include "TVLFountainWriter_p.h"
#include "TvlFountain.h"

#include <QTest>
#include <QTextDocument>

#include <ctime>

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
    QTest::newRow("one line without end") << u"word "_qs;
    QTest::newRow("signs of emphasis") << u"*"_qs;
    QTest::newRow("signs of emphasis with blanks") << u" *"_qs;
    QTest::newRow("signs of emphasis with letters") << u"a*"_qs;
    QTest::newRow("signs of all emphasis") << u"a***b_"_qs;
    QTest::newRow("boneyards without end") << u"/*"_qs;
    QTest::newRow("boneyards") << u"/**/ "_qs;
    QTest::newRow("notes without end") << u"[["_qs;
    QTest::newRow("notes with an end") << u"[[a]]"_qs;
    QTest::newRow("notes over lines") << u"[[a\n"_qs;
    QTest::newRow("notes that blank lines end") << u"[[a\n\n]]"_qs;
    QTest::newRow("backslashes") << u"\\"_qs;
    QTest::newRow("parentheses") << u"A("_qs;
    QTest::newRow("line ends") << u"\n"_qs;
    QTest::newRow("page breaks") << u"===\n"_qs;
    QTest::newRow("sections") << u"#"_qs;
    QTest::newRow("scene numbers") << u"INT. A#"_qs;
    QTest::newRow("comments") << u"a/*:comment 1*/[[b]]"_qs;
    QTest::newRow("told paragraphs") << u"/*:element Shot*/a\n"_qs;
    QTest::newRow("lines of action") << u"a\n"_qs;
    QTest::newRow("paragraphs of action") << u"a\n\n\n"_qs;
    QTest::newRow("speeches") << u"A\nb\n  \n(c)\n\n"_qs;
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
    QTest::newRow("zero") << u"a\0b"_qs << u"a\0b"_qs;
    QTest::newRow("half a pair") << u"a"_qs + QChar(0xd83c) << u"a"_qs + QChar(0xd83c);
    QTest::newRow("edges of cells")
        << u"a"_qs + QChar(0xfdd0) + QChar(0xfdd1) << u"a\ufffd\ufffd"_qs;
    QTest::newRow("place of a picture") << u"a\ufffc"_qs << u"a\ufffd"_qs;
    QTest::newRow("end of a paragraph") << u"a\u2029b"_qs << u"a\nb"_qs;
    QTest::newRow("end of a line") << u"a\u2028b"_qs << u"a\nb"_qs;
    QTest::newRow("form feed") << u"a\fb"_qs << u"a\fb"_qs;
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
