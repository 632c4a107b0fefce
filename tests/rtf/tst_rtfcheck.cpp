#include "TestMain.h"

#include "TVLRtfCheck_p.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isRead(const QByteArray &rtf)
{
    QTextDocument document;
    return TVLTextRtfReader(&document).read(rtf);
}

QString textOf(const QByteArray &rtf)
{
    QTextDocument document;
    return TVLTextRtfReader(&document).read(rtf) ? document.toPlainText() : u"unreadable"_s;
}

/** Whether the check and the reader are of one mind, control characters set aside. */
bool agree(const QByteArray &rtf)
{
    const TVLRtfCheck::Fault fault = TVLRtfCheck::faultOf(rtf);
    const bool isSound = fault == TVLRtfCheck::NoFault || fault == TVLRtfCheck::InvalidCharacters;
    return isSound == isRead(rtf);
}

QByteArray nested(int depth)
{
    return "{\\rtf1 " + QByteArray(depth - 1, '{') + "x" + QByteArray(depth, '}');
}

} // namespace

/** Finding out whether rich text is sound. */
class TstRtfCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faultsAreFound_data();
    void faultsAreFound();
    void checkAndReaderAgree_data();
    void checkAndReaderAgree();
    void whatIsWrittenIsSound();
    void controlCharactersAreTakenOut_data();
    void controlCharactersAreTakenOut();
    void takingOutChangesNothingElse_data();
    void takingOutChangesNothingElse();
};

void TstRtfCheck::faultsAreFound_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<int>("fault");
    const auto row = [](const char *name, const QByteArray &rtf, TVLRtfCheck::Fault fault) {
        QTest::newRow(name) << rtf << int(fault);
    };
    row("sound", "{\\rtf1 x}", TVLRtfCheck::NoFault);
    row("with a byte order mark", "\xef\xbb\xbf \n{\\rtf1 x}", TVLRtfCheck::NoFault);
    row("the end of a DOS file", QByteArray("{\\rtf1 x}\r\n}\x1a\0", 14), TVLRtfCheck::NoFault);
    row("bytes beyond ASCII", "{\\rtf1 \xe4\xf6}", TVLRtfCheck::NoFault);
    row("a tab", "{\\rtf1 a\tb}", TVLRtfCheck::NoFault);
    row("control characters in a binary", "{\\rtf1 x\\bin4 \x01}{\x02}", TVLRtfCheck::NoFault);
    row("as deep as may be", nested(10'000), TVLRtfCheck::NoFault);
    row("nothing", "", TVLRtfCheck::NotRtf);
    row("plain text", "x", TVLRtfCheck::NotRtf);
    row("another group", "{\\b x}", TVLRtfCheck::NotRtf);
    row("too deep", nested(10'001), TVLRtfCheck::TooDeep);
    row("a brace too few", "{\\rtf1 {x}", TVLRtfCheck::CutOff);
    row("a binary cut off", "{\\rtf1 x\\bin9 ab}", TVLRtfCheck::CutOff);
    row("words behind the end", "{\\rtf1 x} y", TVLRtfCheck::GoesOn);
    row("control characters", "{\\rtf1 a\x01 b}", TVLRtfCheck::InvalidCharacters);
    row("a deleted character", "{\\rtf1 a\x7f}", TVLRtfCheck::InvalidCharacters);
}

void TstRtfCheck::faultsAreFound()
{
    QFETCH(QByteArray, rtf);
    QTEST(int(TVLRtfCheck::faultOf(rtf)), "fault");
    QVERIFY(agree(rtf));
}

void TstRtfCheck::checkAndReaderAgree_data()
{
    QTest::addColumn<QByteArray>("rtf");
    for (const QString &folder : {QStringLiteral(TVL_RTF_CASES), QStringLiteral(TVL_RTF_OUTSIDE),
                                  QStringLiteral(TVL_RTF_SEEDS)}) {
        QDirIterator files(folder, QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                QTest::newRow(qPrintable(files.fileName())) << file.readAll();
        }
    }
}

void TstRtfCheck::checkAndReaderAgree()
{
    QFETCH(QByteArray, rtf);
    QVERIFY(agree(rtf));
    constexpr qsizetype Cuts = 10;
    for (qsizetype i = 1; i < Cuts; ++i)
        QVERIFY(agree(rtf.first(rtf.size() * i / Cuts)));
}

void TstRtfCheck::whatIsWrittenIsSound()
{
    QString text;
    for (char16_t c = 1; c < 0x200; ++c)
        text += QChar(c);
    QTextDocument document;
    QTextCursor(&document).insertText(text);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(TVLTextRtfWriter(&buffer).write(&document, false));
    QCOMPARE(int(TVLRtfCheck::faultOf(buffer.data())), int(TVLRtfCheck::NoFault));
}

void TstRtfCheck::controlCharactersAreTakenOut_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QByteArray>("valid");
    const auto row = [](const char *name, const QByteArray &rtf, const QByteArray &valid) {
        QTest::newRow(name) << rtf << valid;
    };
    row("none", "{\\rtf1 a\tb}", "{\\rtf1 a\tb}");
    row("in a word", "{\\rtf1 a\x01z}", "{\\rtf1 az}");
    row("between words",
        "{\\rtf1 a\x0b"
        "b\x0c"
        "c}",
        "{\\rtf1 a b c}");
    row("behind a control word", "{\\rtf1\\b\x01word}", "{\\rtf1\\b word}");
    row("a blank behind a control word", "{\\rtf1 a\\b\x0bword}", "{\\rtf1 a\\b  word}");
    row("behind a number",
        "{\\rtf1\\fs24\x02"
        "5}",
        "{\\rtf1\\fs24 5}");
    row("behind a line end", "{\\rtf1\\b\n\x01word}", "{\\rtf1\\b\nword}");
    row("behind a mark", "\xef\xbb\xbf{\\rtf1 a\x01}", "\xef\xbb\xbf{\\rtf1 a}");
    row("in a binary", "{\\rtf1 x\\bin2 \x01\x02 y\x03}", "{\\rtf1 x\\bin2 \x01\x02 y}");
    row("behind the end", "{\\rtf1 a\x01}\x1a", "{\\rtf1 a}\x1a");
}

void TstRtfCheck::controlCharactersAreTakenOut()
{
    QFETCH(QByteArray, rtf);
    QTEST(TVLRtfCheck::withoutInvalidCharacters(rtf), "valid");
    const QByteArray valid = TVLRtfCheck::withoutInvalidCharacters(rtf);
    QCOMPARE(int(TVLRtfCheck::faultOf(valid)), int(TVLRtfCheck::NoFault));
}

void TstRtfCheck::takingOutChangesNothingElse_data()
{
    checkAndReaderAgree_data();
}

void TstRtfCheck::takingOutChangesNothingElse()
{
    QFETCH(QByteArray, rtf);
    const QByteArray valid = TVLRtfCheck::withoutInvalidCharacters(rtf);
    if (TVLRtfCheck::faultOf(rtf) == TVLRtfCheck::NoFault)
        QCOMPARE(valid, rtf);
    const auto withoutBlanksAndControls = [](QString text) {
        return text.removeIf([](QChar c) { return c.isSpace() || c < u' ' || c == QChar(0x7f); });
    };
    if (isRead(rtf))
        QCOMPARE(withoutBlanksAndControls(textOf(valid)), withoutBlanksAndControls(textOf(rtf)));
}

TVL_TEST(TstRtfCheck)
#include "tst_rtfcheck.moc"
