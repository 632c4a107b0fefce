#include "DocumentDescription.h"
#include "TestMain.h"

#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextList>

using namespace Qt::StringLiterals;

namespace {

QByteArray inFile(const QByteArray &body)
{
    return "{\\rtf1\\ansi " + body + "}";
}

/** A table of lists with one list of numbers, whose identity is 7. */
QByteArray listTable(const QByteArray &level, const QByteArray &overrides)
{
    return "{\\*\\listtable{\\list{\\listlevel" + level
        + "{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}\\fi-360\\li720}\\listid7}}"
          "{\\*\\listoverridetable"
        + overrides + "}";
}

QByteArray listOverride(const QByteArray &number, const QByteArray &levels = {})
{
    return "{\\listoverride\\listid7\\listoverridecount0" + levels + "\\ls" + number + "}";
}

/** An item of an old-style list as a paragraph. */
QByteArray oldItem(const QByteArray &number, const QByteArray &properties, const QByteArray &text)
{
    return "\\pard{\\pntext " + number + ".\\tab}{\\*\\pn\\pnlvlbody" + properties
        + "{\\pntxta .}}\\fi-360\\li720 " + text + "\\par ";
}

} // namespace

/** What files of other programs say at places that are easily misread. */
class TstRtfDetails : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextReadsAsItIsMeant_data();
    void aTextReadsAsItIsMeant();
    void numbersOfListsSurviveARoundTrip_data();
    void numbersOfListsSurviveARoundTrip();
    void sizesOfPicturesAreKeptFromTheFirstTimeOn_data();
    void sizesOfPicturesAreKeptFromTheFirstTimeOn();
    void aPairOfSurrogatesMayStandInTwoGroups();

private:
    void addStars();
    void addLists();
    void addOldLists();
    void addLooseMarkers();
    void addTables();
    void addCharacters();
    void addStyles();
};

void TstRtfDetails::aTextReadsAsItIsMeant_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");

    addStars();
    addLists();
    addOldLists();
    addLooseMarkers();
    addTables();
    addCharacters();
    addStyles();
}

void TstRtfDetails::addStars()
{
    QTest::newRow("a star right behind a brace hides what isn't known")
        << inFile("a{\\*\\unknown hidden}b") << u"paragraph\n  \"ab\"\n"_s;
    QTest::newRow("a star behind a brace and a line end")
        << inFile("a{\r\n\\*\\unknown hidden}b") << u"paragraph\n  \"ab\"\n"_s;
    QTest::newRow("two stars behind a brace")
        << inFile("a{\\*\\*\\unknown hidden}b") << u"paragraph\n  \"ab\"\n"_s;
    QTest::newRow("a star amid the text")
        << inFile("a\\*\\unknown b\\par c") << u"paragraph\n  \"ab\"\nparagraph\n  \"c\"\n"_s;
    QTest::newRow("a star amid a group")
        << inFile("a{\\b b\\*\\unknown c}d") << u"paragraph\n  \"a\"\n  \"bc\": bold\n  \"d\"\n"_s;
    QTest::newRow("a star behind a group's first word")
        << inFile("a{\\b\\*\\unknown b}c") << u"paragraph\n  \"a\"\n  \"b\": bold\n  \"c\"\n"_s;
    QTest::newRow("a star behind the file's first word")
        << QByteArray("{\\rtf1\\*\\unknown text}") << u"paragraph\n  \"text\"\n"_s;
    QTest::newRow("a blank before the file's first word")
        << QByteArray("{ \\rtf1 text}") << u"paragraph\n  \"text\"\n"_s;
    QTest::newRow("blanks and line ends before the file's first word")
        << QByteArray("\r\n \n{\r\n \t\\rtf1 text}") << u"paragraph\n  \"text\"\n"_s;
}

void TstRtfDetails::addLists()
{
    const QByteArray numbers = "\\levelnfc0\\levelstartat1";
    QTest::newRow("list 0 is one when the file has it")
        << inFile(listTable(numbers, listOverride("0")) + "\\pard\\ls0 one\\par\\pard two\\par")
        << u"paragraph: item 1 of list 1 (1., level 1)\n  \"one\"\nparagraph\n  \"two\"\n"_s;
    QTest::newRow("list 0 is none when the file hasn't")
        << inFile(listTable(numbers, listOverride("1")) + "\\pard\\ls0 one\\par")
        << u"paragraph\n  \"one\"\n"_s;
    QTest::newRow("no list where list 0 is one but isn't named")
        << inFile(listTable(numbers, listOverride("0")) + "\\pard one\\par")
        << u"paragraph\n  \"one\"\n"_s;
    QTest::newRow("an old description outweighs a list that isn't there")
        << inFile("\\pard{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}\\ls5 one\\par"
                  "\\pard{\\pntext 2.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}\\ls5 two\\par")
        << u"paragraph: item 1 of list 1 (1., level 1)\n  \"one\"\n"
           "paragraph: item 2 of list 1 (1., level 1)\n  \"two\"\n"_s;
    QTest::newRow("a list that is there outweighs an old description")
        << inFile(listTable("\\levelnfc4\\levelstartat1", listOverride("5"))
                  + "\\pard{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}\\ls5 one\\par")
        << u"paragraph: item 1 of list 1 (a., level 1)\n  \"one\"\n"_s;
    QTest::newRow("a list's first number")
        << inFile(listTable("\\levelnfc0\\levelstartat5", listOverride("1"))
                  + "\\pard\\ls1 five\\par")
        << u"paragraph: item 1 of list 1 (1., from 5, level 1)\n  \"five\"\n"_s;
    QTest::newRow("a list's first number that is zero")
        << inFile(listTable("\\levelnfc0\\levelstartat0", listOverride("1"))
                  + "\\pard\\ls1 zero\\par")
        << u"paragraph: item 1 of list 1 (1., from 0, level 1)\n  \"zero\"\n"_s;
    QTest::newRow("another first number for a list that starts anew")
        << inFile(listTable(numbers,
                            listOverride("1")
                                + listOverride("2",
                                               "{\\lfolevel\\listoverridestartat"
                                               "\\levelstartat3}"))
                  + "\\pard\\ls1 one\\par\\pard\\ls2 three\\par")
        << u"paragraph: item 1 of list 1 (1., level 1)\n  \"one\"\n"
           "paragraph: item 1 of list 2 (1., from 3, level 1)\n  \"three\"\n"_s;
    QTest::newRow("no first number for bullets")
        << inFile(listTable("\\levelnfc23\\levelstartat5", listOverride("1"))
                  + "\\pard\\ls1 dot\\par")
        << u"paragraph: item 1 of list 1 (disc, level 1)\n  \"dot\"\n"_s;
}

void TstRtfDetails::addOldLists()
{
    const QByteArray first =
        oldItem("1", "\\pndec\\pnstart1", "one") + oldItem("2", "\\pndec\\pnstart1", "two");
    const QString start = u"paragraph: item 1 of list 1 (1., level 1)\n  \"one\"\n"
                          "paragraph: item 2 of list 1 (1., level 1)\n  \"two\"\n"_s;
    QTest::newRow("an old list that goes on behind a plain paragraph by its number")
        << inFile(first + "\\pard plain\\par" + oldItem("3", "\\pndec\\pnstart3", "three")
                  + oldItem("4", "\\pndec\\pnstart3", "four"))
        << start
            + u"paragraph\n  \"plain\"\n"
              "paragraph: item 3 of list 1 (1., level 1)\n  \"three\"\n"
              "paragraph: item 4 of list 1 (1., level 1)\n  \"four\"\n"_s;
    QTest::newRow("an old list with a paragraph that says that it goes on")
        << inFile(first + "\\pard{\\*\\pn\\pnlvlcont\\pnstart1{\\pntxta .}}\\li720 plain\\par"
                  + oldItem("3", "\\pndec\\pnstart1", "three"))
        << start
            + u"paragraph: left 36\n  \"plain\"\n"
              "paragraph: item 3 of list 1 (1., level 1)\n  \"three\"\n"_s;
    QTest::newRow("an old list that starts anew behind a plain paragraph")
        << inFile(first + "\\pard plain\\par" + oldItem("1", "\\pndec\\pnstart1", "one again"))
        << start
            + u"paragraph\n  \"plain\"\n"
              "paragraph: item 1 of list 2 (1., level 1)\n  \"one again\"\n"_s;
    QTest::newRow("an old list behind a plain paragraph with another number")
        << inFile(first + "\\pard plain\\par" + oldItem("7", "\\pndec\\pnstart7", "seven"))
        << start
            + u"paragraph\n  \"plain\"\n"
              "paragraph: item 1 of list 2 (1., from 7, level 1)\n  \"seven\"\n"_s;
    QTest::newRow("an old list of another look behind a plain paragraph")
        << inFile(first + "\\pard plain\\par" + oldItem("c", "\\pnlcltr\\pnstart3", "c"))
        << start
            + u"paragraph\n  \"plain\"\n"
              "paragraph: item 1 of list 2 (a., from 3, level 1)\n  \"c\"\n"_s;
    QTest::newRow("an old list whose items each have their number")
        << inFile(oldItem("4", "\\pndec\\pnstart4", "four")
                  + oldItem("5", "\\pndec\\pnstart5", "five")
                  + oldItem("6", "\\pndec\\pnstart6", "six"))
        << u"paragraph: item 1 of list 1 (1., from 4, level 1)\n  \"four\"\n"
           "paragraph: item 2 of list 1 (1., from 4, level 1)\n  \"five\"\n"
           "paragraph: item 3 of list 1 (1., from 4, level 1)\n  \"six\"\n"_s;
}

void TstRtfDetails::addLooseMarkers()
{
    QTest::newRow("the number of an old item in a group that ends before its paragraph")
        << inFile("\\pard{{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}}one\\par")
        << u"paragraph\n  \"1.<tab>one\"\n"_s;
    QTest::newRow("the number of an old item whose description ends too early")
        << inFile("\\pard{\\pntext\\b 1.\\tab}{\\*\\pn\\pnlvlbody}\\pndec one\\par")
        << u"paragraph\n  \"1.<tab>\": bold\n  \"one\"\n"_s;
    QTest::newRow("the number of an item whose list ends with a group")
        << inFile(listTable("\\levelnfc0", listOverride("1"))
                  + "{\\pard\\ls1{\\listtext 1.\\tab}one}\\par")
        << u"paragraph\n  \"1.<tab>one\"\n"_s;
    QTest::newRow("a number with a character of a document's own structure")
        << inFile("\\pard{\\pntext 1\\u8233?\\'0d.\\tab}one\\par")
        << u"paragraph\n  \"1<line><line>.<tab>one\"\n"_s;
    QTest::newRow("the number of one paragraph alone")
        << inFile("\\pard{\\pntext 1.\\tab}one\\par two\\par")
        << u"paragraph\n  \"1.<tab>one\"\nparagraph\n  \"two\"\n"_s;
    QTest::newRow("a marker of blanks is none")
        << inFile("\\pard{\\listtext\\tab  \\tab}one\\par") << u"paragraph\n  \"one\"\n"_s;
    QTest::newRow("an item of a list has its number once")
        << inFile(listTable("\\levelnfc0", listOverride("1"))
                  + "\\pard\\ls1{\\listtext 1.\\tab}one\\par")
        << u"paragraph: item 1 of list 1 (1., level 1)\n  \"one\"\n"_s;
}

void TstRtfDetails::addTables()
{
    const QByteArray row = "\\trowd\\cellx1000\\cellx2000\\pard\\intbl a\\cell b\\cell";
    const auto describe = [](const QByteArray &rtf) {
        QTextDocument document;
        return TVLTextRtfReader(&document).read(inFile(rtf)) ? describeDocument(document)
                                                             : QString();
    };
    QTest::newRow("empty cells beyond the last edge")
        << inFile(row + "\\cell\\cell\\row\\pard end") << describe(row + "\\row\\pard end");
    QTest::newRow("empty cells beyond the last edge of a row without end")
        << inFile(row + "\\cell\\cell\\pard end") << describe(row + "\\pard end");
    const QByteArray nested = "\\trowd\\cellx9000\\pard\\intbl\\itap2 a\\nestcell";
    const QByteArray end =
        "{\\*\\nesttableprops\\trowd\\cellx1000\\nestrow}\\pard\\intbl\\cell\\row";
    QTest::newRow("an empty cell beyond the last edge of a nested row")
        << inFile(nested + "\\nestcell" + end) << describe(nested + end);
}

void TstRtfDetails::addCharacters()
{
    QTest::newRow("the end of capitals isn't that of small ones")
        << inFile("\\scaps\\caps0 a\\scaps0 b")
        << u"paragraph\n  \"a\": small capitals\n  \"b\"\n"_s;
    QTest::newRow("the end of small capitals isn't that of large ones")
        << inFile("\\caps\\scaps0 a\\caps0 b") << u"paragraph\n  \"a\": upper case\n  \"b\"\n"_s;
    QTest::newRow("what isn't lowered can be raised")
        << inFile("\\super\\sub0 a\\super0 b\\up6\\dn0 c\\up0 d")
        << u"paragraph\n  \"a\": superscript\n  \"b\"\n  \"c\": superscript\n  \"d\"\n"_s;
    QTest::newRow("half a character, in a name too")
        << inFile("{\\info{\\title a\\u-10179?b}}a\\u-10179?\\u-10179?\\u-8704?\\u-8704?")
        << u"title \"a\ufffdb\"\nparagraph\n  \"a\ufffd\U0001f600\ufffd\"\n"_s;
    QTest::newRow("properties of a frame")
        << inFile("a{\\shp{\\*\\shpinst{\\abiframeprops frame-type:textbox; xpos:1in}"
                  "{\\shptxt box\\par}}}b")
        << u"paragraph\n  \"a\"\nparagraph\n  \"box\"\nparagraph\n  \"b\"\n"_s;
}

void TstRtfDetails::addStyles()
{
    const QByteArray sheet = "{\\stylesheet{\\ql Normal;}{\\s1\\b\\outlinelevel0 heading 1;}"
                             "{\\s2\\sbasedon3 late;}{\\s3\\sbasedon1\\outlinelevel1\\'e9;}"
                             "{\\s4\\sbasedon1\\outlinelevel9 body;}{\\s5\\sbasedon6 a;}"
                             "{\\s6\\sbasedon5 b;}{\\*\\cs7\\outlinelevel4 letters;}}";
    const auto row = [&sheet](const char *name, const QByteArray &text, const QString &expected) {
        QTest::newRow(name) << inFile(sheet + text) << expected;
    };
    row("a heading by its style", "\\pard\\s1 a\\par\\pard b",
        u"paragraph: heading 1\n  \"a\"\nparagraph\n  \"b\"\n"_s);
    row("a heading by what its style is based on", "\\pard\\s2 a",
        u"paragraph: heading 2\n  \"a\"\n"_s);
    row("a style that is no heading though its base is", "\\pard\\s4 a", u"paragraph\n  \"a\"\n"_s);
    row("styles based on one another", "\\pard\\s5 a", u"paragraph\n  \"a\"\n"_s);
    row("a style of characters", "\\pard\\s7 a", u"paragraph\n  \"a\"\n"_s);
    row("a style that isn't there", "\\pard\\s99 a", u"paragraph\n  \"a\"\n"_s);
    row("a paragraph that knows better than its style", "\\pard\\s1\\outlinelevel2 a",
        u"paragraph: heading 3\n  \"a\"\n"_s);
    row("a paragraph that has known better before its style", "\\pard\\outlinelevel2\\s1 a",
        u"paragraph: heading 3\n  \"a\"\n"_s);
    row("a paragraph that is no heading though its style is", "\\pard\\s1\\outlinelevel9 a",
        u"paragraph\n  \"a\"\n"_s);
    row("one style behind another", "\\pard\\s1 a\\par\\s3 b\\par\\s0 c",
        u"paragraph: heading 1\n  \"a\"\nparagraph: heading 2\n  \"b\"\nparagraph\n  \"c\"\n"_s);
}

void TstRtfDetails::aTextReadsAsItIsMeant()
{
    QFETCH(QByteArray, rtf);
    QFETCH(QString, expected);
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    QVERIFY2(reader.read(rtf), qPrintable(reader.errorString()));
    QCOMPARE(describeDocument(document), expected);
}

void TstRtfDetails::numbersOfListsSurviveARoundTrip_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("start");
    QTest::addColumn<QByteArray>("marker");

    QTest::newRow("numbers") << int(QTextListFormat::ListDecimal) << 12 << QByteArray("13.");
    QTest::newRow("letters") << int(QTextListFormat::ListLowerAlpha) << 26 << QByteArray("aa.");
    QTest::newRow("Roman ones") << int(QTextListFormat::ListUpperRoman) << 3 << QByteArray("IV.");
    QTest::newRow("from zero") << int(QTextListFormat::ListDecimal) << 0 << QByteArray("1.");
    QTest::newRow("from one") << int(QTextListFormat::ListDecimal) << 1 << QByteArray("2.");
}

void TstRtfDetails::numbersOfListsSurviveARoundTrip()
{
    QFETCH(int, style);
    QFETCH(int, start);
    QFETCH(QByteArray, marker);
    QTextDocument document;
    QTextListFormat format;
    format.setStyle(static_cast<QTextListFormat::Style>(style));
    format.setProperty(TVLTextFormat::ListStart, start);
    QTextCursor cursor(&document);
    cursor.insertList(format);
    cursor.insertText(u"first\nsecond"_s);
    for (const bool exporting : {true, false}) {
        TVLTextRtfWriter writer(nullptr);
        writer.setExportingMode(exporting);
        const QByteArray rtf = writer.toRtf(&document, false);
        QVERIFY2(rtf.contains("\\levelstartat" + QByteArray::number(start) + '\\'), rtf);
        QVERIFY2(rtf.contains("{\\listtext\\tab " + marker + "\\tab}"), rtf);
        QTextDocument read;
        QVERIFY(TVLTextRtfReader(&read).read(rtf));
        const QTextList *list = read.lastBlock().textList();
        QVERIFY(list);
        QCOMPARE(list->count(), 2);
        const QVariant property = list->format().property(TVLTextFormat::ListStart);
        QCOMPARE(property.isValid() ? property.toInt() : 1, start);
    }
}

void TstRtfDetails::sizesOfPicturesAreKeptFromTheFirstTimeOn_data()
{
    QTest::addColumn<QByteArray>("size");

    QTest::newRow("scaled") << QByteArray("\\picwgoal1441\\pichgoal777\\picscalex33\\picscaley67");
    QTest::newRow("scaled to nearly nothing") << QByteArray("\\picwgoal3\\picscalex1\\pichgoal10");
    QTest::newRow("enlarged") << QByteArray("\\picwgoal1441\\pichgoal777\\picscalex333");
    QTest::newRow("out of bounds")
        << QByteArray("\\picwgoal2147483647\\pichgoal9\\picscalex2147483647");
}

void TstRtfDetails::sizesOfPicturesAreKeptFromTheFirstTimeOn()
{
    QFETCH(QByteArray, size);
    QTextDocument document;
    QVERIFY(TVLTextRtfReader(&document).read(inFile("{\\pict\\pngblip" + size + " 89}")));
    QTextDocument second;
    QVERIFY(TVLTextRtfReader(&second).read(TVLTextRtfWriter(nullptr).toRtf(&document, true)));
    const auto format = [](const QTextDocument &text) {
        return text.begin().begin().fragment().charFormat().toImageFormat();
    };
    QVERIFY(format(document).isValid());
    QCOMPARE(format(second).width(), format(document).width());
    QCOMPARE(format(second).height(), format(document).height());
    QCOMPARE(format(second).hasProperty(QTextFormat::ImageWidth),
             format(document).hasProperty(QTextFormat::ImageWidth));
}

void TstRtfDetails::aPairOfSurrogatesMayStandInTwoGroups()
{
    QTextDocument document;
    QVERIFY(TVLTextRtfReader(&document).read(inFile("{\\u-10179?}{\\b\\u-8704?}")));
    QCOMPARE(document.toPlainText(), u"\U0001f600"_s);
}

TVL_TEST(TstRtfDetails)
#include "tst_rtfdetails.moc"
