#include "TestMain.h"

#include "TVL.h"

#include <QMetaEnum>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(TVL::NodeType)

// Enumerations of TVL are compared as numbers: QCOMPARE would look for their texts and find the
// toString() of TVL.

class TstTvl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNodeTypeHasAWord_data();
    void aNodeTypeHasAWord();
    void everyNodeTypeIsTested();
    void aKindOfCollectionHasAWord();
    void otherWordsAreTextNodes_data();
    void otherWordsAreTextNodes();

    void aBinderVersionHasATextAndAFormat_data();
    void aBinderVersionHasATextAndAFormat();
    void otherVersionsAreUnknown_data();
    void otherVersionsAreUnknown();

    void everyColorReadsBack_data();
    void everyColorReadsBack();
    void aColorHasThreeDecimals();
    void colorTextsAreRead_data();
    void colorTextsAreRead();
    void otherTextsAreNoColor_data();
    void otherTextsAreNoColor();

    void fileNamesAreCleaned_data();
    void fileNamesAreCleaned();
    void autoNumbersAreStripped_data();
    void autoNumbersAreStripped();
    void toolTipsAreEscaped_data();
    void toolTipsAreEscaped();
    void numbersAreComparedFuzzily_data();
    void numbersAreComparedFuzzily();
};

void TstTvl::aNodeTypeHasAWord_data()
{
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("word");

    QTest::newRow("draft") << TVL::DraftFolder << 0 << u"DraftFolder"_s;
    QTest::newRow("research") << TVL::ResearchFolder << 1 << u"ResearchFolder"_s;
    QTest::newRow("trash") << TVL::TrashFolder << 2 << u"TrashFolder"_s;
    QTest::newRow("folder") << TVL::Folder << 3 << u"Folder"_s;
    QTest::newRow("text") << TVL::Text << 4 << u"Text"_s;
    QTest::newRow("image") << TVL::Image << 5 << u"Image"_s;
    QTest::newRow("pdf") << TVL::PDF << 6 << u"PDF"_s;
    QTest::newRow("media") << TVL::Media << 7 << u"Media"_s;
    QTest::newRow("web") << TVL::WebArchive << 8 << u"WebArchive"_s;
    QTest::newRow("other") << TVL::Other << 9 << u"Other"_s;
}

void TstTvl::aNodeTypeHasAWord()
{
    QFETCH(TVL::NodeType, type);
    QFETCH(QString, word);
    QTEST(int(type), "number");
    QCOMPARE(TVL::wordOf(type), word);
    QCOMPARE(int(TVL::toNodeType(word)), int(type));
}

void TstTvl::everyNodeTypeIsTested()
{
    QCOMPARE(QMetaEnum::fromType<TVL::NodeType>().keyCount(), 10);
}

void TstTvl::aKindOfCollectionHasAWord()
{
    const std::pair<TVL::CollectionType, QString> rows[] = {
        {TVL::BinderCollection, u"Binder"_s},
        {TVL::RecentSearchCollection, u"RecentSearch"_s},
        {TVL::SavedSearchCollection, u"SavedSearch"_s},
        {TVL::ArbitraryCollection, u"Arbitrary"_s},
    };
    for (const auto &[type, word] : rows) {
        QCOMPARE(TVL::wordOf(type), word);
        QCOMPARE(int(TVL::toCollectionType(word, TVL::NoCollection)), int(type));
    }
    QCOMPARE(TVL::wordOf(TVL::NoCollection), u"Arbitrary"_s);
    QCOMPARE(int(TVL::toCollectionType(u"binder", TVL::NoCollection)), int(TVL::NoCollection));
}

void TstTvl::otherWordsAreTextNodes_data()
{
    QTest::addColumn<QString>("word");

    for (const char *word : {"", "folder", "TEXT", " Folder", "Folder ", "Draft", "3"})
        QTest::newRow(word) << QString::fromLatin1(word);
}

void TstTvl::otherWordsAreTextNodes()
{
    QFETCH(QString, word);
    QCOMPARE(int(TVL::toNodeType(word)), int(TVL::Text));
    QCOMPARE(TVL::wordOf(TVL::NodeType(-1)), u"Text"_s);
    QCOMPARE(TVL::wordOf(TVL::NodeType(10)), u"Text"_s);
}

void TstTvl::aBinderVersionHasATextAndAFormat_data()
{
    QTest::addColumn<int>("binder");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("format");

    QTest::newRow("1") << 1 << u"1.0"_s << 16;
    QTest::newRow("2") << 2 << u"1.5"_s << 18;
    QTest::newRow("3") << 3 << u"2.0"_s << 23;
}

void TstTvl::aBinderVersionHasATextAndAFormat()
{
    QFETCH(int, binder);
    QFETCH(QString, text);
    QFETCH(int, format);
    QCOMPARE(TVL::toString(TVL::BinderVersion(binder)), text);
    QCOMPARE(int(TVL::toBinderVersion(text)), binder);
    QCOMPARE(int(TVL::toBinderVersion(TVL::FormatVersion(format))), binder);
    QVERIFY(TVL::isValidFormatVersion(format));
}

void TstTvl::otherVersionsAreUnknown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("format");

    QTest::newRow("none") << QString() << 0;
    QTest::newRow("older") << u"0.9"_s << 15;
    QTest::newRow("between 1 and 2") << u"1.1"_s << 17;
    QTest::newRow("between 2 and 3") << u"1.50"_s << 22;
    QTest::newRow("newer") << u"3.0"_s << 24;
    QTest::newRow("negative") << u"-1.0"_s << -16;
    QTest::newRow("blank") << u" 1.0"_s << 1;
}

void TstTvl::otherVersionsAreUnknown()
{
    QFETCH(QString, text);
    QFETCH(int, format);
    QCOMPARE(int(TVL::toBinderVersion(text)), int(TVL::NoBinderVersion));
    QCOMPARE(int(TVL::toBinderVersion(TVL::FormatVersion(format))), int(TVL::NoBinderVersion));
    QVERIFY(!TVL::isValidFormatVersion(format));
    QCOMPARE(TVL::toString(TVL::NoBinderVersion), QString());
    QCOMPARE(TVL::toString(TVL::BinderVersion(4)), QString());
}

void TstTvl::everyColorReadsBack_data()
{
    QTest::addColumn<QColor>("strength");

    QTest::newRow("red") << QColor(1, 0, 0);
    QTest::newRow("green") << QColor(0, 1, 0);
    QTest::newRow("blue") << QColor(0, 0, 1);
    QTest::newRow("grey") << QColor(1, 1, 1);
}

void TstTvl::everyColorReadsBack()
{
    QFETCH(QColor, strength);
    for (int value = 0; value < 256; ++value) {
        const QColor color(value * strength.red(), value * strength.green(),
                           value * strength.blue());
        QCOMPARE(TVL::floatStringToColor(TVL::colorToFloatString(color)), color);
    }
}

void TstTvl::aColorHasThreeDecimals()
{
    QCOMPARE(TVL::colorToFloatString(QColor(0, 255, 128)), u"0.000 1.000 0.502"_s);
    QCOMPARE(TVL::colorToFloatString(QColor(1, 2, 3, 4)), u"0.004 0.008 0.012"_s);
    QCOMPARE(TVL::colorToFloatString(QColor::fromHsv(0, 255, 255)), u"1.000 0.000 0.000"_s);
    QCOMPARE(TVL::colorToFloatString(QColor()), QString());
}

void TstTvl::colorTextsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QColor>("color");

    QTest::newRow("whole") << u"0 1 0"_s << QColor(0, 255, 0);
    QTest::newRow("many decimals") << u"0.50196078 0.2 0.4"_s << QColor(128, 51, 102);
    QTest::newRow("blanks") << u"  1.0   0.0 0.0 "_s << QColor(255, 0, 0);
}

void TstTvl::colorTextsAreRead()
{
    QFETCH(QString, text);
    QTEST(TVL::floatStringToColor(text), "color");
}

void TstTvl::otherTextsAreNoColor_data()
{
    QTest::addColumn<QString>("text");

    const char *const texts[] = {"",        " ",           "1",       "1 1",       "1 1 1 1",
                                 "1,1,1",   "0,5 0,5 0,5", "a b c",   "1.001 0 0", "0 -0.001 0",
                                 "0 0 nan", "inf 0 0",     "#ff0000", "red"};
    for (const char *text : texts)
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TstTvl::otherTextsAreNoColor()
{
    QFETCH(QString, text);
    QVERIFY(!TVL::floatStringToColor(text).isValid());
}

void TstTvl::fileNamesAreCleaned_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("clean");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("plain") << u"Chapter One"_s << u"Chapter One"_s;
    QTest::newRow("inner dot") << u"Dr. No.txt"_s << u"Dr. No.txt"_s;
    QTest::newRow("leading dot and blank") << u" .hidden"_s << u" .hidden"_s;
    QTest::newRow("less") << u"a<b"_s << u"a_b"_s;
    QTest::newRow("greater") << u"a>b"_s << u"a_b"_s;
    QTest::newRow("colon") << u"a:b"_s << u"a_b"_s;
    QTest::newRow("quote") << u"a\"b"_s << u"a_b"_s;
    QTest::newRow("slash") << u"a/b"_s << u"a_b"_s;
    QTest::newRow("backslash") << u"a\\b"_s << u"a_b"_s;
    QTest::newRow("bar") << u"a|b"_s << u"a_b"_s;
    QTest::newRow("question mark") << u"a?b"_s << u"a_b"_s;
    QTest::newRow("asterisk") << u"a*b"_s << u"a_b"_s;
    QTest::newRow("several") << u"<>:\"/\\|?*"_s << u"_________"_s;
    QTest::newRow("tab and line end") << u"a\tb\nc"_s << u"a_b_c"_s;
    QTest::newRow("null") << QString(u'a') + QChar(0) + u'b' << u"a_b"_s;
    QTest::newRow("delete and next line") << u"a\u007fb\u0085c"_s << u"a_b_c"_s;
    QTest::newRow("trailing dots and blanks") << u"Wait. . ."_s << u"Wait"_s;
    QTest::newRow("nothing left") << u". ."_s << QString();
    QTest::newRow("beyond ASCII") << u"\u00c4\u4e2d\U0001f600"_s << u"\u00c4\u4e2d\U0001f600"_s;
}

void TstTvl::fileNamesAreCleaned()
{
    QFETCH(QString, name);
    const QString clean = TVL::cleanFileName(name);
    QTEST(clean, "clean");
    QCOMPARE(TVL::cleanFileName(clean), clean);
}

void TstTvl::autoNumbersAreStripped_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("stem");
    QTest::addColumn<int>("number");
    const auto row = [](const QString &title, const QString &stem, int number) {
        QTest::newRow(qPrintable(u'"' + title + u'"')) << title << stem << number;
    };
    row(u"Harbour-3"_s, u"Harbour"_s, 3);
    row(u"Harbour-10-12"_s, u"Harbour-10"_s, 12);
    row(u"Harbour-007"_s, u"Harbour"_s, 7);
    row(u"-5"_s, u""_s, 5);
    row(u"Harbour"_s, u"Harbour"_s, 0);
    row(u"Harbour 3"_s, u"Harbour 3"_s, 0);
    row(u"Harbour3"_s, u"Harbour3"_s, 0);
    row(u"Harbour-"_s, u"Harbour-"_s, 0);
    row(u"Harbour-3a"_s, u"Harbour-3a"_s, 0);
    row(u"12"_s, u"12"_s, 0);
    row(u""_s, u""_s, 0);
    row(u"Harbour-999999999"_s, u"Harbour"_s, 999999999);
    row(u"Harbour-1234567890"_s, u"Harbour-1234567890"_s, 0);
    row(u"Harbour-\u0663"_s, u"Harbour-\u0663"_s, 0);
}

void TstTvl::autoNumbersAreStripped()
{
    QFETCH(const QString, title);
    QFETCH(const QString, stem);
    QFETCH(const int, number);
    int found = -1;
    QCOMPARE(TVL::stripAutoNumberEnding(title, &found), stem);
    QCOMPARE(found, number);
}

void TstTvl::toolTipsAreEscaped_data()
{
    QTest::addColumn<QString>("plainText");
    QTest::addColumn<QString>("html");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("plain") << u"Hello"_s << u"<p>Hello</p>"_s;
    QTest::newRow("markup") << u"a < b && \"c\" > d"_s
                            << u"<p>a &lt; b &amp;&amp; &quot;c&quot; &gt; d</p>"_s;
    QTest::newRow("tag") << u"<br/>"_s << u"<p>&lt;br/&gt;</p>"_s;
    QTest::newRow("line ends") << u"a\nb\r\nc"_s << u"<p>a<br/>b<br/>c</p>"_s;
}

void TstTvl::toolTipsAreEscaped()
{
    QFETCH(QString, plainText);
    QTEST(TVL::toHtmlTooltipFormat(plainText), "html");
}

void TstTvl::numbersAreComparedFuzzily_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<bool>("isEqual");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("same") << 1.5 << 1.5 << true;
    QTest::newRow("zero") << 0.0 << -0.0 << true;
    QTest::newRow("rounding") << 0.1 + 0.2 << 0.3 << true;
    QTest::newRow("near zero") << 0.0 << 1e-13 << true;
    QTest::newRow("large") << 1e15 << 1e15 + 1 << true;
    QTest::newRow("different") << 1.0 << 1.000001 << false;
    QTest::newRow("small but not near zero") << 0.0 << 1e-6 << false;
    QTest::newRow("large and different") << 1e15 << 1.001e15 << false;
    QTest::newRow("other sign") << 1.0 << -1.0 << false;
    QTest::newRow("no number") << nan << 1.0 << false;
}

void TstTvl::numbersAreComparedFuzzily()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QTEST(tvlFuzzyCompare(a, b), "isEqual");
    QTEST(tvlFuzzyCompare(b, a), "isEqual");
}

TVL_TEST(TstTvl)

#include "tst_tvl.moc"
