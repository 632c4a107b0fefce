#include "RandomScreenplay.h"
#include "ScreenplayDescription.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLFountainParser_p.h"
#include "TVLFountainWriter_p.h"
#include "TVLScreenplayDocument_p.h"
#include "TvlFountain.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int Groups = 20;

QString describedValues(const TVLScreenplay &screenplay)
{
    QTextDocument document;
    tvlSetScreenplay(screenplay, {}, &document);
    return describeScreenplay(document);
}

/** The first paragraphs that differ, and the whole text that they went through. */
QByteArray differenceOf(const TVLScreenplay &a, const TVLScreenplay &b, const QString &text)
{
    TVLScreenplay first;
    TVLScreenplay second;
    for (size_t i = 0; i < std::max(a.mParagraphs.size(), b.mParagraphs.size()); ++i) {
        if (i < a.mParagraphs.size() && i < b.mParagraphs.size()
            && a.mParagraphs[i] == b.mParagraphs[i])
            continue;
        if (i < a.mParagraphs.size())
            first.mParagraphs.push_back(a.mParagraphs[i]);
        if (i < b.mParagraphs.size())
            second.mParagraphs.push_back(b.mParagraphs[i]);
        break;
    }
    return (QByteArray("\n") + describedValues(first).toUtf8() + "--- becomes\n"
            + describedValues(second).toUtf8() + "--- by\n" + text.toUtf8());
}

} // namespace

class TstFountainRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomScreenplaysComeBackEqual_data();
    void randomScreenplaysComeBackEqual();
    void anyTextReadsTheSameOnceItWasWritten_data();
    void anyTextReadsTheSameOnceItWasWritten();
    void aFilmComesBackEqual();
    void aFilmNeedsNoMarksOfOurOwn();
};

void TstFountainRoundTrip::randomScreenplaysComeBackEqual_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 0; seed < Groups; ++seed)
        QTest::addRow("screenplays %u to %u", seed * 100, seed * 100 + 99) << seed;
}

void TstFountainRoundTrip::randomScreenplaysComeBackEqual()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < testCases(100); ++i) {
        const auto texts = i % 2 == 0 ? RandomTexts::Nasty : RandomTexts::Likely;
        const TVLScreenplay screenplay = makeRandomScreenplay(&random, texts);
        const QString text = TVLFountainWriter::write(screenplay);
        const TVLScreenplay read = TVLFountainParser::parse(text);
        QVERIFY2(read.mParagraphs == screenplay.mParagraphs,
                 differenceOf(screenplay, read, text).constData());

        QTextDocument document;
        tvlSetScreenplay(screenplay, {}, &document);
        QTextDocument again;
        QVERIFY(TvlFountain::parseText(TvlFountain::toText(&document, {}), &again, {}));
        QCOMPARE(describeScreenplay(again), describeScreenplay(document));
    }
}

void TstFountainRoundTrip::anyTextReadsTheSameOnceItWasWritten_data()
{
    randomScreenplaysComeBackEqual_data();
}

void TstFountainRoundTrip::anyTextReadsTheSameOnceItWasWritten()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < testCases(500); ++i) {
        const QString text = makeRandomFountain(&random);
        const TVLScreenplay screenplay = TVLFountainParser::parse(text);
        const QString written = TVLFountainWriter::write(screenplay);
        const TVLScreenplay read = TVLFountainParser::parse(written);
        QVERIFY2(read.mParagraphs == screenplay.mParagraphs,
                 text.toUtf8() + "\n--- reads\n" + differenceOf(screenplay, read, written));
        QCOMPARE(TVLFountainWriter::write(read), written);
    }
}

void TstFountainRoundTrip::aFilmComesBackEqual()
{
    QRandomGenerator random(1);
    const TVLScreenplay film = makeFilm(&random, 120);
    QTextDocument document;
    tvlSetScreenplay(film, {}, &document);
    const QString text = TvlFountain::toText(&document, {});
    QTextDocument again;
    QVERIFY(TvlFountain::parseText(text, &again, {}));
    QCOMPARE(describeScreenplay(again), describeScreenplay(document));
    QCOMPARE(TvlFountain::toText(&again, {}), text);
}

void TstFountainRoundTrip::aFilmNeedsNoMarksOfOurOwn()
{
    QRandomGenerator random(2);
    const QString text = TVLFountainWriter::write(makeFilm(&random, 120));
    QVERIFY(!text.contains(u"/*"_s));
    QVERIFY(!text.contains(u'\\'));
}

TVL_TEST(TstFountainRoundTrip)
#include "tst_fountainroundtrip.moc"
