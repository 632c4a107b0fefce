#include "TestMain.h"

#include "TVLScriptMode.h"
#include "TVLTextFormat.h"

#include <QBrush>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/** A mode in which each property that is kept has a value of its own. */
TVLScriptMode fullMode()
{
    QTextBlockFormat block;
    block.setAlignment(Qt::AlignJustify);
    block.setLeftMargin(72.25);
    block.setRightMargin(0.1);
    block.setTextIndent(-36);
    block.setTopMargin(12);
    block.setBottomMargin(1e-9);
    block.setLineHeight(14.4, QTextBlockFormat::FixedHeight);
    block.setNonBreakableLines(true);
    block.setProperty(TVLTextFormat::KeepWithNext, true);
    block.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCharFormat text;
    text.setFontFamilies({u"Courier"_s, u"DejaVu Sans Mono"_s});
    text.setFontPointSize(11.5);
    text.setFontWeight(QFont::DemiBold);
    text.setFontItalic(true);
    text.setFontUnderline(true);
    text.setFontStrikeOut(true);
    text.setFontCapitalization(QFont::SmallCaps);
    text.setForeground(QColor(10, 20, 30, 40));
    text.setBackground(QColor(Qt::yellow));
    TVLScriptMode mode;
    mode.mTitle = u"Stage play"_s;
    mode.mElements = {TVLScriptElement(u"Cue"_s, block, text), TVLScriptElement(u"Plain"_s)};
    return mode;
}

/** A mode's file with something in the place of its elements. */
QByteArray modeXml(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ScriptFormat Version=\"1.0\" "
           "Title=\"Mode\">"
        + content + "</ScriptFormat>\n";
}

QStringList namesOf(const TVLScriptMode &mode)
{
    QStringList names;
    for (const TVLScriptElement &element : mode.mElements)
        names.append(element.name());
    return names;
}

} // namespace

class TstScriptMode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewModeIsEmpty();
    void theFactoryDefaultsAreAScreenplay();
    void theElementsOfAScreenplayHaveTheirLook_data();
    void theElementsOfAScreenplayHaveTheirLook();
    void loadingTheDefaultsReplacesWhatWas();
    void aModeReadsBackEqual_data();
    void aModeReadsBackEqual();
    void anElementKeepsWhatAFileHolds();
    void anElementDropsWhatAFileDoesNotHold();
    void formatsThatAreSetAreCutDownToo();
    void modesAreEqualByTheirValues();
    void namesWithOddCharactersReadBack_data();
    void namesWithOddCharactersReadBack();
    void aNameThatXmlCannotHoldGivesNoXml_data();
    void aNameThatXmlCannotHoldGivesNoXml();
    void unknownPartsArePassedOver();
    void aDamagedFileLeavesTheModeAsItWas_data();
    void aDamagedFileLeavesTheModeAsItWas();
    void everyCutOffFileIsRefused();
    void randomDamageGivesAllOrNothing();
    void aDeeplyNestedFileIsRead();
    void aFileThatIsNotThereIsRefused();
    void aFolderIsRefused();
};

void TstScriptMode::aNewModeIsEmpty()
{
    const TVLScriptMode mode;
    QCOMPARE(mode.mTitle, QString());
    QCOMPARE(mode.mElements.size(), 0);
}

void TstScriptMode::theFactoryDefaultsAreAScreenplay()
{
    const TVLScriptMode mode = TVLScriptMode::factoryDefaults();
    QCOMPARE(mode.mTitle, u"Screenplay"_s);
    QCOMPARE(namesOf(mode),
             QStringList({u"Scene Heading"_s, u"Action"_s, u"Character"_s, u"Parenthetical"_s,
                          u"Dialogue"_s, u"Transition"_s, u"Shot"_s, u"General"_s}));
}

void TstScriptMode::theElementsOfAScreenplayHaveTheirLook_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("left");
    QTest::addColumn<double>("right");
    QTest::addColumn<double>("before");
    QTest::addColumn<bool>("capitals");
    QTest::addColumn<bool>("leadsOn");
    QTest::newRow("Scene Heading") << 0 << 0.0 << 0.0 << 24.0 << true << true;
    QTest::newRow("Action") << 1 << 0.0 << 0.0 << 12.0 << false << false;
    QTest::newRow("Character") << 2 << 158.4 << 0.0 << 12.0 << true << true;
    QTest::newRow("Parenthetical") << 3 << 115.2 << 144.0 << 0.0 << false << true;
    QTest::newRow("Dialogue") << 4 << 72.0 << 108.0 << 0.0 << false << false;
    QTest::newRow("Transition") << 5 << 288.0 << 0.0 << 12.0 << true << false;
    QTest::newRow("Shot") << 6 << 0.0 << 0.0 << 24.0 << true << true;
    QTest::newRow("General") << 7 << 0.0 << 0.0 << 0.0 << false << false;
}

void TstScriptMode::theElementsOfAScreenplayHaveTheirLook()
{
    QFETCH(const int, position);
    const TVLScriptElement element = TVLScriptMode::factoryDefaults().mElements.at(position);
    const QTextBlockFormat block = element.blockFormat();
    QCOMPARE(element.name(), QString::fromLatin1(QTest::currentDataTag()));
    QTEST(block.leftMargin(), "left");
    QTEST(block.rightMargin(), "right");
    QTEST(block.topMargin(), "before");
    QTEST(element.charFormat().fontCapitalization() == QFont::AllUppercase, "capitals");
    QTEST(block.boolProperty(TVLTextFormat::KeepWithNext), "leadsOn");
    QCOMPARE(block.alignment() == Qt::AlignRight, position == 5);
    QCOMPARE(element.charFormat().fontPointSize(), 12.0);
    QCOMPARE(element.charFormat().fontFamilies().toStringList().constLast(), u"Courier"_s);
}

void TstScriptMode::loadingTheDefaultsReplacesWhatWas()
{
    TVLScriptMode mode = fullMode();
    mode.loadFactoryDefaults();
    QVERIFY(mode == TVLScriptMode::factoryDefaults());
}

void TstScriptMode::aModeReadsBackEqual_data()
{
    QTest::addColumn<TVLScriptMode>("mode");
    QTest::newRow("screenplay") << TVLScriptMode::factoryDefaults();
    QTest::newRow("every property") << fullMode();
    QTest::newRow("empty") << TVLScriptMode();
    TVLScriptMode twins;
    twins.mElements = {TVLScriptElement(u"Twin"_s), TVLScriptElement(u"Twin"_s)};
    QTest::newRow("equal names") << twins;
}

void TstScriptMode::aModeReadsBackEqual()
{
    QFETCH(const TVLScriptMode, mode);
    const QByteArray xml = mode.toXml();
    QVERIFY(!xml.isEmpty());
    TVLScriptMode readBack = fullMode();
    QString error = u"untouched"_s;
    QVERIFY(readBack.fromXml(xml, &error));
    QVERIFY(readBack == mode);
    QCOMPARE(error, u"untouched"_s);
    QCOMPARE(readBack.toXml(), xml);
}

void TstScriptMode::anElementKeepsWhatAFileHolds()
{
    TVLScriptMode mode;
    QVERIFY(mode.fromXml(fullMode().toXml()));
    const TVLScriptElement element = mode.mElements.constFirst();
    const QTextBlockFormat block = element.blockFormat();
    QCOMPARE(block.alignment(), Qt::AlignJustify);
    QCOMPARE(block.leftMargin(), 72.25);
    QCOMPARE(block.rightMargin(), 0.1);
    QCOMPARE(block.textIndent(), -36.0);
    QCOMPARE(block.topMargin(), 12.0);
    QCOMPARE(block.bottomMargin(), 1e-9);
    QCOMPARE(block.lineHeight(), 14.4);
    QCOMPARE(block.lineHeightType(), int(QTextBlockFormat::FixedHeight));
    QVERIFY(block.nonBreakableLines());
    QVERIFY(block.boolProperty(TVLTextFormat::KeepWithNext));
    QCOMPARE(int(block.pageBreakPolicy()), int(QTextFormat::PageBreak_AlwaysBefore));
    const QTextCharFormat text = element.charFormat();
    QCOMPARE(text.fontFamilies().toStringList(),
             QStringList({u"Courier"_s, u"DejaVu Sans Mono"_s}));
    QCOMPARE(text.fontPointSize(), 11.5);
    QCOMPARE(text.fontWeight(), int(QFont::DemiBold));
    QVERIFY(text.fontItalic());
    QVERIFY(text.fontUnderline());
    QCOMPARE(text.underlineStyle(), QTextCharFormat::SingleUnderline);
    QVERIFY(text.fontStrikeOut());
    QCOMPARE(text.fontCapitalization(), QFont::SmallCaps);
    QCOMPARE(text.foreground().color(), QColor(10, 20, 30, 40));
    QCOMPARE(text.background().color(), QColor(Qt::yellow));
}

void TstScriptMode::anElementDropsWhatAFileDoesNotHold()
{
    QTextBlockFormat block;
    block.setIndent(3);
    block.setLeftMargin(std::numeric_limits<double>::infinity());
    block.setRightMargin(std::numeric_limits<double>::quiet_NaN());
    block.setLineHeight(1, 77);
    QTextCharFormat text;
    text.setAnchorHref(u"tavellnk://1"_s);
    text.setForeground(QBrush(Qt::red, Qt::Dense4Pattern));
    text.setFontWeight(0);
    text.setFontFamilies({});
    text.setProperty(QTextFormat::FontPointSize, u"large"_s);
    const TVLScriptElement element(u"Name"_s, block, text);
    QCOMPARE(element.blockFormat().properties().keys(), QList<int>({QTextFormat::LineHeight}));
    QCOMPARE(element.charFormat().propertyCount(), 0);
}

void TstScriptMode::formatsThatAreSetAreCutDownToo()
{
    TVLScriptElement element(u"Name"_s);
    QTextBlockFormat block;
    block.setIndent(3);
    block.setTopMargin(5);
    element.setBlockFormat(block);
    QTextCharFormat text;
    text.setToolTip(u"tip"_s);
    text.setFontItalic(false);
    element.setCharFormat(text);
    element.setName(u"Other"_s);
    QCOMPARE(element.name(), u"Other"_s);
    QCOMPARE(element.blockFormat().properties().keys(), QList<int>({QTextFormat::BlockTopMargin}));
    QCOMPARE(element.charFormat().properties().keys(), QList<int>({QTextFormat::FontItalic}));
}

void TstScriptMode::modesAreEqualByTheirValues()
{
    // The order in which a caller sets properties makes no difference.
    QTextBlockFormat first;
    first.setTopMargin(1);
    first.setLeftMargin(2);
    QTextBlockFormat second;
    second.setLeftMargin(2);
    second.setTopMargin(1);
    QVERIFY(TVLScriptElement(u"A"_s, first) == TVLScriptElement(u"A"_s, second));
    QVERIFY(TVLScriptElement(u"A"_s, first) != TVLScriptElement(u"B"_s, first));
    QVERIFY(fullMode() == fullMode());
    TVLScriptMode renamed = fullMode();
    renamed.mTitle = u"Other"_s;
    QVERIFY(renamed != fullMode());
}

void TstScriptMode::namesWithOddCharactersReadBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString(u""_s);
    QTest::newRow("markup") << u"<a b=\"c\">'&amp;'</a>]]>"_s;
    QTest::newRow("white space") << u"  a\tb\nc\rd\r\ne  "_s;
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\xf0\x9f\x8e\xac \xc3\xa9");
}

void TstScriptMode::namesWithOddCharactersReadBack()
{
    QFETCH(const QString, name);
    TVLScriptMode mode;
    mode.mTitle = name;
    mode.mElements = {TVLScriptElement(name)};
    TVLScriptMode readBack;
    QVERIFY(readBack.fromXml(mode.toXml()));
    QCOMPARE(readBack.mTitle, name);
    QCOMPARE(readBack.mElements.constFirst().name(), name);
}

void TstScriptMode::aNameThatXmlCannotHoldGivesNoXml_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("control character") << QString(QChar(1));
    QTest::newRow("null character") << QString(QChar(0));
    QTest::newRow("half a pair") << QString(QChar(0xd83c));
    QTest::newRow("no character") << QString(QChar(0xffff));
}

void TstScriptMode::aNameThatXmlCannotHoldGivesNoXml()
{
    QFETCH(const QString, name);
    TVLScriptMode inTitle;
    inTitle.mTitle = name;
    QCOMPARE(inTitle.toXml(), QByteArray());
    TVLScriptMode inElement;
    inElement.mElements = {TVLScriptElement(name)};
    QCOMPARE(inElement.toXml(), QByteArray());
}

void TstScriptMode::unknownPartsArePassedOver()
{
    TVLScriptMode mode;
    QVERIFY(mode.fromXml(
        modeXml("<!-- later --><Colors><Element Title=\"no\"/></Colors>text<Element Title=\"A\" "
                "Key=\"Return\"><Next>B</Next><Paragraph LeftIndent=\"3\" Tabs=\"x\">y<z/>"
                "</Paragraph></Element>")));
    QCOMPARE(mode.mTitle, u"Mode"_s);
    QCOMPARE(namesOf(mode), QStringList({u"A"_s}));
    QCOMPARE(mode.mElements.constFirst().blockFormat().leftMargin(), 3.0);
}

void TstScriptMode::aDamagedFileLeavesTheModeAsItWas_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no XML") << QByteArray("{\\rtf1 text}");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("another root") << QByteArray("<TemplateSettings Version=\"1.0\"/>");
    QTest::newRow("two roots") << modeXml("") + "<ScriptFormat/>";
    QTest::newRow("text behind the end") << modeXml("") + "x";
    QTest::newRow("bad number") << modeXml("<Element><Paragraph LeftIndent=\"1x\"/></Element>");
    QTest::newRow("infinite number")
        << modeXml("<Element><Paragraph LeftIndent=\"inf\"/></Element>");
    QTest::newRow("no number") << modeXml("<Element><Text Size=\"nan\"/></Element>");
    QTest::newRow("bad weight") << modeXml("<Element><Text Weight=\"1001\"/></Element>");
    QTest::newRow("weight of zero") << modeXml("<Element><Text Weight=\"0\"/></Element>");
    QTest::newRow("bad flag") << modeXml("<Element><Text Italic=\"true\"/></Element>");
    QTest::newRow("bad word") << modeXml("<Element><Paragraph Alignment=\"left\"/></Element>");
    QTest::newRow("bad color") << modeXml("<Element><Text Color=\"#12345\"/></Element>");
    QTest::newRow("no family") << modeXml("<Element><Text Font=\"\"/></Element>");
    QTest::newRow("attribute twice") << modeXml("<Element><Text Size=\"1\" Size=\"2\"/></Element>");
    QTest::newRow("unknown entity") << modeXml("<Element Title=\"&nbsp;\"/>");
    QTest::newRow("expanding entities")
        << QByteArray("<!DOCTYPE x [<!ENTITY a \"aaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
                      "<!ENTITY c \"&b;&b;&b;&b;\">]><ScriptFormat><Element>&c;</Element>"
                      "</ScriptFormat>");
    QTest::newRow("bytes that aren't UTF-8") << modeXml("<Element Title=\"\xff\xfe\"/>");
}

void TstScriptMode::aDamagedFileLeavesTheModeAsItWas()
{
    QFETCH(const QByteArray, xml);
    TVLScriptMode mode = fullMode();
    QString error;
    QVERIFY(!mode.fromXml(xml, &error));
    QVERIFY(mode == fullMode());
    QVERIFY(!error.isEmpty());
    QVERIFY(!mode.fromXml(xml));
}

void TstScriptMode::everyCutOffFileIsRefused()
{
    const QByteArray xml = fullMode().toXml().trimmed();
    for (qsizetype size = 0; size < xml.size(); ++size) {
        TVLScriptMode mode;
        QVERIFY2(!mode.fromXml(xml.first(size)), qPrintable(QString::number(size)));
        QVERIFY(mode == TVLScriptMode());
    }
}

void TstScriptMode::randomDamageGivesAllOrNothing()
{
    QRandomGenerator random(7);
    const QByteArray whole = fullMode().toXml();
    for (int i = 0; i < 3000; ++i) {
        QByteArray xml = whole;
        for (int damage = random.bounded(1, 5); damage > 0; --damage)
            xml[random.bounded(int(xml.size()))] = char(random.bounded(256));
        TVLScriptMode mode = TVLScriptMode::factoryDefaults();
        if (mode.fromXml(xml)) {
            TVLScriptMode readBack;
            QVERIFY(readBack.fromXml(mode.toXml()));
            QVERIFY(readBack == mode);
        } else {
            QVERIFY(mode == TVLScriptMode::factoryDefaults());
        }
    }
}

void TstScriptMode::aDeeplyNestedFileIsRead()
{
    const int depth = 200'000;
    TVLScriptMode mode;
    QVERIFY(mode.fromXml(modeXml("<Element Title=\"A\">" + QByteArray("<x>").repeated(depth)
                                 + QByteArray("</x>").repeated(depth) + "</Element>")));
    QCOMPARE(namesOf(mode), QStringList({u"A"_s}));
}

void TstScriptMode::aFileThatIsNotThereIsRefused()
{
    const QTemporaryDir directory;
    TVLScriptMode mode = fullMode();
    QString error;
    QVERIFY(!mode.load(directory.filePath(u"none.xml"_s), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(mode == fullMode());
}

void TstScriptMode::aFolderIsRefused()
{
    const QTemporaryDir directory;
    TVLScriptMode mode = fullMode();
    QVERIFY(!mode.load(directory.path()));
    QVERIFY(mode == fullMode());
}

TVL_TEST(TstScriptMode)
#include "tst_scriptmode.moc"
