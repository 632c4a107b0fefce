#include "DocumentComparison.h"
#include "RandomDocument.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLInlineMarkup.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

namespace {

QByteArray toRtf(const QTextDocument &document)
{
    return TVLTextRtfWriter(nullptr).toRtf(&document, false);
}

void fromRtf(const QByteArray &rtf, QTextDocument *document)
{
    TVLTextRtfReader reader(document);
    QVERIFY2(reader.read(rtf), qPrintable(reader.errorString()));
    TVLInlineMarkup::fromMarkup(document);
}

} // namespace

class TstRtfRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomDocumentsComeBackEqual_data();
    void randomDocumentsComeBackEqual();
    void aDocumentIsWrittenTheSameEachTime();
    void fragmentsReadOneAfterAnotherMakeTheWholeText();
    void onlyAsciiIsWritten();
};

void TstRtfRoundTrip::randomDocumentsComeBackEqual_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 0; seed < 20; ++seed)
        QTest::addRow("documents %u to %u", seed * 100, seed * 100 + 99) << seed;
}

void TstRtfRoundTrip::randomDocumentsComeBackEqual()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < testCases(100); ++i) {
        const auto document = makeRandomDocument(&random);
        const QByteArray rtf = toRtf(*document);
        QTextDocument read;
        fromRtf(rtf, &read);
        const QString difference = differenceOfDocuments(*document, read);
        QVERIFY2(
            difference.isEmpty(),
            qPrintable(u"document %1, %2\n%3"_s.arg(i).arg(difference, QString::fromLatin1(rtf))));
        const QByteArray second = toRtf(read);
        QTextDocument readAgain;
        fromRtf(second, &readAgain);
        QCOMPARE(toRtf(readAgain), second);
        QCOMPARE(second, rtf);
    }
}

void TstRtfRoundTrip::aDocumentIsWrittenTheSameEachTime()
{
    QRandomGenerator random(99);
    const auto document = makeRandomDocument(&random, {.mMaximumBlocks = 60});
    const std::unique_ptr<QTextDocument> clone(document->clone());
    QCOMPARE(toRtf(*document), toRtf(*document));
    QCOMPARE(toRtf(*clone), toRtf(*document));
}

void TstRtfRoundTrip::fragmentsReadOneAfterAnotherMakeTheWholeText()
{
    QRandomGenerator random(7);
    for (int i = 0; i < 200; ++i) {
        // Qt's fragments of a list begin with a paragraph of their own.
        const auto document = makeRandomDocument(&random, {.mTables = false, .mLists = false});
        QString joined;
        QTextCursor cursor(document.get());
        const int last = document->characterCount() - 1;
        while (cursor.position() < last) {
            int end = qMin(last, cursor.position() + 1 + int(random.bounded(20)));
            // Half a character beyond the basic plane is none.
            if (document->characterAt(end).isLowSurrogate())
                ++end;
            cursor.setPosition(end, QTextCursor::KeepAnchor);
            QTextDocument part;
            QTextCursor(&part).insertFragment(cursor.selection());
            QTextDocument read;
            fromRtf(toRtf(part), &read);
            QCOMPARE(read.toRawText(), part.toRawText());
            joined += read.toRawText();
            cursor.setPosition(cursor.position());
        }
        QCOMPARE(joined, document->toRawText());
    }
}

void TstRtfRoundTrip::onlyAsciiIsWritten()
{
    QRandomGenerator random(3);
    for (int i = 0; i < 50; ++i) {
        const QByteArray rtf = toRtf(*makeRandomDocument(&random));
        QVERIFY(std::all_of(rtf.begin(), rtf.end(),
                            [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7f); }));
    }
}

TVL_TEST(TstRtfRoundTrip)
#include "tst_rtfroundtrip.moc"
