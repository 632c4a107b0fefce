#include "TestMain.h"

#include "TVLOptions.h"
#include "TVLTextFormat.h"

#include <QTest>
#include <QTextDocument>
#include <QUuid>

using namespace Qt::StringLiterals;

class TstTextFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressesAreToldApart_data();
    void addressesAreToldApart();
    void addressesOfItemsAreRead();
    void aLinkIsPutOnAFormat();
    void aLinkToElsewhereIsNoInternalOne();
    void aLinkIsTakenOffAFormat();
    void aPlaceStaysWhenItsLinkGoes();
    void aCommentComesBackFromAFormat_data();
    void aCommentComesBackFromAFormat();
    void aCommentReplacesTheOneBefore();
    void aCommentIsTakenOffAFormat();
    void aFormatWithoutCommentHasNone();
    void defaultsHaveNoProperty();
    void theOptionsFontIsTheDefault();
};

void TstTextFormat::addressesAreToldApart_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("byId");
    QTest::addColumn<bool>("byUuid");
    QTest::newRow("id") << u"tavellnk://12"_s << true << false;
    QTest::newRow("id 0") << u"tavellnk://0"_s << true << false;
    QTest::newRow("highest id") << u"tavellnk://2147483647"_s << true << false;
    QTest::newRow("id too high") << u"tavellnk://2147483648"_s << false << false;
    QTest::newRow("negative id") << u"tavellnk://-1"_s << false << false;
    QTest::newRow("id with a sign") << u"tavellnk://+1"_s << false << false;
    QTest::newRow("id with more behind") << u"tavellnk://12/3"_s << false << false;
    QTest::newRow("id in other digits") << u"tavellnk://\u0661"_s << false << false;
    QTest::newRow("uuid") << u"tavellnk://0F8FAD5B-D9CB-469F-A165-70867728950E"_s << false << true;
    QTest::newRow("lower case") << u"tavellnk://0f8fad5b-d9cb-469f-a165-70867728950e"_s << false
                                << true;
    QTest::newRow("braces") << u"tavellnk://{0f8fad5b-d9cb-469f-a165-70867728950e}"_s << false
                            << true;
    QTest::newRow("blanks around")
        << u" tavellnk://0f8fad5b-d9cb-469f-a165-70867728950e "_s << false << true;
    QTest::newRow("half braces") << u"tavellnk://{0f8fad5b-d9cb-469f-a165-70867728950e"_s << false
                                 << false;
    QTest::newRow("more behind") << u"tavellnk://0f8fad5b-d9cb-469f-a165-70867728950e0"_s << false
                                 << false;
    QTest::newRow("null uuid") << u"tavellnk://00000000-0000-0000-0000-000000000000"_s << false
                               << false;
    QTest::newRow("nothing behind") << u"tavellnk://"_s << false << false;
    QTest::newRow("other case") << u"TAVELLNK://12"_s << false << false;
    QTest::newRow("comment") << u"tavelcmt://12"_s << false << false;
    QTest::newRow("elsewhere") << u"https://example.org/tavellnk://12"_s << false << false;
    QTest::newRow("number") << u"12"_s << false << false;
    QTest::newRow("empty") << QString() << false << false;
}

void TstTextFormat::addressesAreToldApart()
{
    QFETCH(const QString, address);
    QFETCH(const bool, byId);
    QFETCH(const bool, byUuid);
    QCOMPARE(TVLTextFormat::isTavelinorLinkWithNodeId(address), byId);
    QCOMPARE(TVLTextFormat::isTavelinorLinkWithUuid(address), byUuid);
    QCOMPARE(TVLTextFormat::isTavelinorLink(address), byId || byUuid);
    QCOMPARE(TVLTextFormat::linkedNodeId(address).has_value(), byId);
    QCOMPARE(TVLTextFormat::linkedNodeUuid(address).isNull(), !byUuid);
}

void TstTextFormat::addressesOfItemsAreRead()
{
    const QUuid uuid = QUuid::createUuid();
    QCOMPARE(TVLTextFormat::internalLinkAddress(QUuid(u"0f8fad5b-d9cb-469f-a165-70867728950e"_s)),
             u"tavellnk://0F8FAD5B-D9CB-469F-A165-70867728950E"_s);
    QCOMPARE(TVLTextFormat::linkedNodeUuid(TVLTextFormat::internalLinkAddress(uuid)), uuid);
    QCOMPARE(TVLTextFormat::internalLinkAddress(34), u"tavellnk://34"_s);
    QCOMPARE(TVLTextFormat::linkedNodeId(TVLTextFormat::internalLinkAddress(34)).value_or(-1), 34);
}

void TstTextFormat::aLinkIsPutOnAFormat()
{
    QTextCharFormat format;
    TVLTextFormat::setLink(&format, u"tavellnk://3"_s);
    QVERIFY(format.isAnchor());
    QCOMPARE(format.anchorHref(), u"tavellnk://3"_s);
    QVERIFY(format.boolProperty(0x100003));
}

void TstTextFormat::aLinkToElsewhereIsNoInternalOne()
{
    QTextCharFormat format;
    TVLTextFormat::setLink(&format, u"tavellnk://3"_s);
    TVLTextFormat::setLink(&format, u"https://example.org"_s);
    QCOMPARE(format.anchorHref(), u"https://example.org"_s);
    QVERIFY(!format.hasProperty(TVLTextFormat::InternalLink));
}

void TstTextFormat::aLinkIsTakenOffAFormat()
{
    QTextCharFormat format;
    format.setFontItalic(true);
    const QTextCharFormat plain = format;
    TVLTextFormat::setLink(&format, u"tavellnk://3"_s);
    TVLTextFormat::clearLink(&format);
    QCOMPARE(format, plain);
}

void TstTextFormat::aPlaceStaysWhenItsLinkGoes()
{
    QTextCharFormat format;
    TVLTextFormat::setLink(&format, u"tavellnk://3"_s);
    format.setAnchorNames({u"here"_s});
    TVLTextFormat::clearLink(&format);
    QVERIFY(format.isAnchor());
    QVERIFY(format.anchorHref().isEmpty());
    QCOMPARE(format.anchorNames(), QStringList(u"here"_s));
}

void TstTextFormat::aCommentComesBackFromAFormat_data()
{
    QTest::addColumn<bool>("isFootnote");
    QTest::addColumn<bool>("isCollapsed");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("rtf");
    QTest::newRow("plain") << false << false << QColor() << 0 << QByteArray();
    QTest::newRow("full comment") << false << true << QColor(10, 20, 30) << 0
                                  << QByteArray("{\\rtf1 a\0b}", 11);
    QTest::newRow("full footnote")
        << true << true << QColor(Qt::white) << 12 << QByteArray("{\\rtf1 x}");
}

void TstTextFormat::aCommentComesBackFromAFormat()
{
    QFETCH(const bool, isFootnote);
    QFETCH(const bool, isCollapsed);
    QFETCH(const QColor, color);
    QFETCH(const int, number);
    QFETCH(const QByteArray, rtf);
    TVLTextCommentLink comment(u"id"_s, rtf);
    comment.mIsFootnote = isFootnote;
    comment.mIsCollapsed = isCollapsed;
    comment.mColor = color;
    comment.mNumber = number;
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, comment);
    QVERIFY(TVLTextFormat::hasComment(format));
    QCOMPARE(TVLTextFormat::comment(format), comment);
    QCOMPARE(format.boolProperty(0x100064), !isFootnote);
    QCOMPARE(format.boolProperty(0x100065), isFootnote);
    QCOMPARE(format.stringProperty(0x100068), u"id"_s);
    QCOMPARE(format.colorProperty(0x100069), color);
}

void TstTextFormat::aCommentReplacesTheOneBefore()
{
    TVLTextCommentLink footnote(u"1"_s, "{\\rtf1 x}");
    footnote.mIsFootnote = true;
    footnote.mColor = Qt::red;
    footnote.mNumber = 4;
    const TVLTextCommentLink comment(u"2"_s, {});
    QTextCharFormat replaced;
    TVLTextFormat::setComment(&replaced, footnote);
    TVLTextFormat::setComment(&replaced, comment);
    QTextCharFormat fresh;
    TVLTextFormat::setComment(&fresh, comment);
    QCOMPARE(replaced, fresh);
}

void TstTextFormat::aCommentIsTakenOffAFormat()
{
    QTextCharFormat format;
    format.setFontItalic(true);
    const QTextCharFormat plain = format;
    TVLTextCommentLink comment(u"1"_s, "{\\rtf1 x}");
    comment.mColor = Qt::red;
    TVLTextFormat::setComment(&format, comment);
    TVLTextFormat::clearComment(&format);
    QCOMPARE(format, plain);
    QVERIFY(!TVLTextFormat::hasComment(format));
}

void TstTextFormat::aFormatWithoutCommentHasNone()
{
    QTextCharFormat format;
    QVERIFY(!TVLTextFormat::hasComment(format));
    QCOMPARE(TVLTextFormat::comment(format), TVLTextCommentLink());
    // Without an identity nothing ties a run to a comment.
    format.setProperty(TVLTextFormat::InspectorComment, true);
    QVERIFY(!TVLTextFormat::hasComment(format));
    TVLTextFormat::setComment(&format, TVLTextCommentLink());
    QCOMPARE(format, QTextCharFormat());
}

void TstTextFormat::defaultsHaveNoProperty()
{
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, TVLTextCommentLink(u"1"_s, {}));
    QCOMPARE(format.propertyCount(), 2);
}

void TstTextFormat::theOptionsFontIsTheDefault()
{
    QFont font(u"Some Serif"_s, 17);
    font.setItalic(true);
    tvlOptions()->setValue(TVLOptions::DefaultFont, font);
    const QFont stored = tvlOptions()->value(TVLOptions::DefaultFont);
    QTextDocument document;
    TVLTextFormat::setDefaultCharFormat(&document);
    QCOMPARE(document.defaultFont(), stored);
    QCOMPARE(TVLTextFormat::defaultCharFormat().font(), stored);
    TVLTextFormat::setDefaultCharFormat(nullptr);
}

TVL_TEST(TstTextFormat)
#include "tst_textformat.moc"
