#include "TestMain.h"
#include "TestScale.h"

#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTextDocument>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

const QString NotRtf = u"This is not a rich text file."_s;
const QString CutOff = u"The file ends before its text does."_s;
const QString TooDeep = u"The file is nested too deeply."_s;
const QString GoesOn = u"The file goes on behind the end of its text."_s;

/** What an unoptimised build under the sanitizers still reads a megabyte in. */
const int Megabyte = testSize(1'000'000);
constexpr qint64 MaximumMilliseconds = 20'000;

struct Reading
{
    bool mDone = false;
    QString mError;
    QString mText;
    qint64 mMilliseconds = 0;
};

Reading readRtf(const QByteArray &rtf)
{
    Reading reading;
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    QElapsedTimer timer;
    timer.start();
    reading.mDone = reader.read(rtf);
    reading.mMilliseconds = timer.elapsed();
    reading.mError = reader.errorString();
    reading.mText = document.toPlainText();
    return reading;
}

QByteArray wrapped(const QByteArray &body)
{
    return "{\\rtf1\\ansi " + body + "}";
}

QByteArray numbered(int count, const char *before, const char *behind)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text.append(before).append(QByteArray::number(i)).append(behind);
    return text;
}

QByteArray numberedTwice(int count, const char *before, const char *between, const char *behind)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        text.append(before).append(number).append(between).append(number).append(behind);
    }
    return text;
}

QList<QByteArray> readCases()
{
    QList<QByteArray> cases;
    const QDir directory(QStringLiteral(TVL_RTF_CASES));
    for (const QFileInfo &info : directory.entryInfoList({u"*.rtf"_s}, QDir::Files)) {
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly))
            cases.append(file.readAll());
    }
    return cases;
}

/** Where the brace that ends the text lies; the cases have raw bytes with braces in one picture. */
qsizetype endOfText(const QByteArray &rtf)
{
    int depth = 0;
    for (qsizetype i = 0; i < rtf.size(); ++i) {
        if (rtf.sliced(i).startsWith("\\bin")) {
            const qsizetype blank = rtf.indexOf(' ', i);
            i = blank + rtf.mid(i + 4, blank - i - 4).toInt();
        } else if (rtf.at(i) == '\\')
            ++i;
        else if (rtf.at(i) == '{')
            ++depth;
        else if (rtf.at(i) == '}' && --depth == 0)
            return i + 1;
    }
    return rtf.size();
}

} // namespace

/** Files that are damaged, that lie or that want to exhaust the reader. */
class TstRtfHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrongIsTold_data();
    void whatIsWrongIsTold();
    void textIsSaved_data();
    void textIsSaved();
    void everyPrefixGivesTheTextUpToThere();
    void flippedBitsDoNoHarm();
    void aMegabyteIsReadInBoundedTime_data();
    void aMegabyteIsReadInBoundedTime();
    void tablesStayInProportionToTheirFile_data();
    void tablesStayInProportionToTheirFile();
    void whatWasReadCanBeWritten();
};

void TstRtfHostile::whatIsWrongIsTold_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing at all") << QByteArray() << NotRtf;
    QTest::newRow("blanks") << QByteArray("  \r\n ") << NotRtf;
    QTest::newRow("plain text") << QByteArray("plain text") << NotRtf;
    QTest::newRow("zeros") << QByteArray(1000, '\0') << NotRtf;
    QTest::newRow("an XML file") << QByteArray("<?xml version=\"1.0\"?><a/>") << NotRtf;
    QTest::newRow("a lone brace") << QByteArray("{") << NotRtf;
    QTest::newRow("a group without the first word") << QByteArray("{\\ansi text}") << NotRtf;
    QTest::newRow("a group with text first") << QByteArray("{text \\rtf1}") << NotRtf;
    QTest::newRow("a longer first word") << QByteArray("{\\rtfx text}") << NotRtf;
    QTest::newRow("the first word in capitals") << QByteArray("{\\RTF1 text}") << NotRtf;
    QTest::newRow("a mark of byte order alone") << QByteArray("\xef\xbb\xbf") << NotRtf;
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe{\0\\\0r\0t\0f\0", 12) << NotRtf;

    QTest::newRow("no end") << QByteArray("{\\rtf1 text") << CutOff;
    QTest::newRow("the first word alone") << QByteArray("{\\rtf") << CutOff;
    QTest::newRow("an end that is escaped") << QByteArray("{\\rtf1 text\\}") << CutOff;
    QTest::newRow("an end in half a byte") << QByteArray("{\\rtf1 text\\'f") << CutOff;
    QTest::newRow("an end behind a backslash") << QByteArray("{\\rtf1 text\\") << CutOff;
    QTest::newRow("an end within a picture")
        << QByteArray("{\\rtf1{\\pict\\pngblip 8950") << CutOff;
    QTest::newRow("an end within a note")
        << QByteArray("{\\rtf1 a{\\footnote b}{\\footnote c") << CutOff;
    QTest::newRow("raw bytes that swallow the end")
        << wrapped("text{\\pict\\bin1000 abc}") << CutOff;
    QTest::newRow("raw bytes beyond all bounds")
        << wrapped("{\\*\\x\\bin99999999999 abc}") << CutOff;

    QTest::newRow("deeper than any program nests")
        << wrapped(QByteArray(20'000, '{') + "text" + QByteArray(20'000, '}')) << TooDeep;
    QTest::newRow("100,000 braces deep")
        << wrapped(QByteArray(100'000, '{') + "text" + QByteArray(100'000, '}')) << TooDeep;
    QTest::newRow("deep in what is skipped")
        << wrapped("{\\*\\x" + QByteArray(20'000, '{') + QByteArray(20'000, '}') + "}") << TooDeep;

    QTest::newRow("the least of all") << QByteArray("{\\rtf}") << QString();
    QTest::newRow("a mark of byte order") << "\xef\xbb\xbf" + wrapped("text") << QString();
    QTest::newRow("text behind the last brace") << wrapped("text") + "more } { \\'" << GoesOn;
    QTest::newRow("text behind a brace too many") << QByteArray("{\\rtf1 text}}\n more}") << GoesOn;
    QTest::newRow("a second file behind the first") << wrapped("text") + wrapped("more") << GoesOn;
    QTest::newRow("a character in Unicode behind the last brace")
        << wrapped("text") + "\\u960?" << GoesOn;
    QTest::newRow("blanks and line ends behind the last brace")
        << wrapped("text") + " \t\r\n\n " << QString();
    QTest::newRow("braces alone behind the last one") << wrapped("text") + "}\n{}" << QString();
    QTest::newRow("the mark that ends a file of DOS") << wrapped("text") + "\r\n\x1a" << QString();
    QTest::newRow("zeros behind the last brace")
        << wrapped("text") + QByteArray(512, '\0') << QString();
    QTest::newRow("as deep as programs nest")
        << wrapped(QByteArray(9900, '{') + "text" + QByteArray(9900, '}')) << QString();
    QTest::newRow("raw bytes of a negative length") << wrapped("{\\pict\\bin-5 abc}") << QString();
}

void TstRtfHostile::whatIsWrongIsTold()
{
    QFETCH(QByteArray, rtf);
    QFETCH(QString, error);
    const Reading reading = readRtf(rtf);
    QCOMPARE(reading.mError, error);
    QCOMPARE(reading.mDone, error.isEmpty());
}

void TstRtfHostile::textIsSaved_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("text");

    QTest::newRow("of a file without end")
        << QByteArray("{\\rtf1 one\\par {\\b two") << u"one\ntwo"_s;
    QTest::newRow("of a row without end")
        << QByteArray("{\\rtf1\\trowd\\cellx9\\intbl a\\cell b") << u"\na\nb\n"_s;
    QTest::newRow("of a note without end") << QByteArray("{\\rtf1 a{\\footnote b") << u"ab"_s;
    QTest::newRow("of a field without end")
        << QByteArray("{\\rtf1 a{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt b") << u"ab"_s;
    QTest::newRow("above what is too deep")
        << wrapped("above" + QByteArray(20'000, '{') + "below") << u"abovebelow"_s;
    QTest::newRow("below what is too deep")
        << wrapped(QByteArray(20'000, '{')
                   + "below{\\*\\unknown hidden}{\\fonttbl{\\f0 A;}}{\\pict "
                     "89}{\\footnote note}"
                   + QByteArray(20'000, '}') + " behind")
        << u"belownote behind"_s;
    QTest::newRow("behind the last brace")
        << wrapped("text") + "more\\par end" << u"text\nmore\nend"_s;
    QTest::newRow("behind a brace too many")
        << QByteArray("{\\rtf1\\ansicpg1251 one\\par two}}{\\b \\'ff}\\par four}")
        << u"one\ntwo\n\u044f\nfour"_s;
    QTest::newRow("of a second file") << QByteArray(
        "{\\rtf1{\\fonttbl{\\f0 A;}}one}\n{\\rtf1{\\fonttbl{\\f0 B;}}two}{\\rtf1 three}\n")
                                      << u"one\ntwo\nthree"_s;
    QTest::newRow("among zeros") << wrapped(QByteArray("a\0b\0\0c", 6)) << u"abc"_s;
    QTest::newRow("among zeros in hexadecimal") << wrapped("a\\'00b\\u0?c") << u"abc"_s;
    QTest::newRow("among bytes that are no characters") << wrapped("a\\'81b\x8d"
                                                                   "c")
                                                        << u"a\u0081b\u008dc"_s;
    QTest::newRow("among half surrogates")
        << wrapped("a\\u-10179?b\\u-8704?c") << u"a\ufffdb\ufffdc"_s;
    QTest::newRow("with a document's own structure in it")
        << wrapped("a\\u8233?b\\u-560?c\\u-559?d\\'0de\\'0af") << u"a\nb\ufffdc\ufffdd\ne\nf"_s;
    QTest::newRow("behind a half double byte")
        << QByteArray("{\\rtf1\\ansicpg932 a\\'93 b\\'93{c}\\'93\\b d\\'93}")
        << u"a\u0093 b\u0093c\u0093d\u0093"_s;
    QTest::newRow("behind half an UTF-8 character")
        << QByteArray("{\\rtf1\\ansicpg65001 \\'c3\\'a9 \\'e2\\'82 a \\'ff}")
        << u"\u00e9 \u00e2\u0082 a \u00ff"_s;
    QTest::newRow("of an unknown code page")
        << QByteArray("{\\rtf1\\ansicpg12345 caf\\'e9}") << u"caf\u00e9"_s;
    QTest::newRow("with numbers beyond all bounds") << wrapped(
        "\\fs2147483647\\li99999999999\\fi-99999999999\\sl-2147483648\\sb9999999999\\tx99999999999"
        "\\f-2147483648\\cf2147483647\\cb-99999999999\\expnd99999999999\\expndtw-"
        "99999999999\\charscalex99999999999\\up99999999999\\dn-2147483648"
        "\\ilvl99999999999\\ls2147483647\\outlinelevel-2147483648\\itap-"
        "5\\tvlindent99999999999\\tvlmarker-7\\tvlweight-3\\tvlvalign99\\tvlpreset-9 "
        "text\\u99999999999?\\u-99999999999?\\u1114112?.")
                                                    << u"text\uffff\u0001."_s;
    QTest::newRow("in a table with such numbers") << wrapped(
        "\\trowd\\trleft-99999999999\\tvlborder2147483647\\tvlborderstyle99\\tvlpadding-"
        "99999999999\\tvlspacing2147483647\\tvlwidthtype9\\tvlwidth2147483647"
        "\\clbrdrt\\brdrw2147483647\\tvlcoltype-9\\tvlcolwidth-2147483648\\cellx-"
        "99999999999\\cellx2147483647\\cellx99999999999\\pard\\intbl a\\cell b\\cell c\\cell\\row")
                                                  << u"\na\nb\nc\n"_s;
    QTest::newRow("behind a picture that claims to be enormous")
        << wrapped("{\\pict\\pngblip\\picw2147483647\\pich2147483647\\picwgoal2147483647\\pichgoal2"
                   "147483647\\picscalex2147483647\\picscaley-2147483648 89}a")
        << u"\ufffca"_s;
    QTest::newRow("behind a skip beyond all bounds")
        << wrapped("\\uc2147483647\\u960 " + QByteArray(100, 'x') + "saved")
        << u"\u03c0"_s + QString(36, u'x') + u"saved"_s;
    QTest::newRow("behind a negative skip") << wrapped("\\uc-1\\u960 saved") << u"\u03c0saved"_s;
    QTest::newRow("in a tower of tables")
        << wrapped("\\pard\\intbl\\itap2000000000 deep\\nestcell\\itap1 less\\cell") << QString();
}

void TstRtfHostile::textIsSaved()
{
    QFETCH(QByteArray, rtf);
    QFETCH(QString, text);
    const Reading reading = readRtf(rtf);
    if (!text.isEmpty())
        QCOMPARE(reading.mText, text);
    else
        QVERIFY2(reading.mText.contains(u"deep") && reading.mText.contains(u"less"),
                 qPrintable(reading.mText));
}

void TstRtfHostile::everyPrefixGivesTheTextUpToThere()
{
    for (const QByteArray &rtf : readCases()) {
        const qsizetype start = rtf.indexOf("{\\rtf") + 5;
        const qsizetype end = endOfText(rtf);
        for (qsizetype length = 0; length <= rtf.size(); length += testStep(1)) {
            QTextDocument document;
            TVLTextRtfReader reader(&document);
            const bool done = reader.read(rtf.first(length));
            QCOMPARE(done, length >= end);
            QCOMPARE(reader.errorString(), done ? QString() : length < start ? NotRtf : CutOff);
        }
    }
}

void TstRtfHostile::flippedBitsDoNoHarm()
{
    for (QByteArray rtf : readCases()) {
        for (qsizetype place = 0; place < rtf.size(); place += testStep(10)) {
            for (int bit = 0; bit < 8; ++bit) {
                rtf[place] = char(rtf.at(place) ^ (1 << bit));
                QTextDocument document;
                TVLTextRtfReader reader(&document);
                const bool done = reader.read(rtf);
                QCOMPARE(reader.errorString().isEmpty(), done);
                rtf[place] = char(rtf.at(place) ^ (1 << bit));
            }
        }
    }
}

void TstRtfHostile::aMegabyteIsReadInBoundedTime_data()
{
    QTest::addColumn<QByteArray>("rtf");

    const auto megabyteOf = [](const QByteArray &piece) {
        return wrapped(piece.repeated(Megabyte / piece.size()));
    };
    const auto row = [](const char *name, const QByteArray &rtf) { QTest::newRow(name) << rtf; };
    row("opening braces", megabyteOf("{"));
    row("closing braces", megabyteOf("}"));
    row("empty groups", megabyteOf("{}"));
    row("backslashes", megabyteOf("\\"));
    row("bytes without digits", megabyteOf("\\'"));
    row("stars", megabyteOf("\\*"));
    row("open star groups", megabyteOf("{\\*\\x }"));
    row("one word without end", megabyteOf("a").replace(" a", "\\a"));
    row("one number without end", "{\\rtf1\\b" + QByteArray(Megabyte, '9') + "}");
    row("plain text", megabyteOf("text "));
    row("paragraphs", megabyteOf("\\par"));
    row("paragraphs of one letter", megabyteOf("a\\par "));
    row("pages", megabyteOf("a\\page "));
    row("sections", megabyteOf("\\sect"));
    row("new formats", wrapped(numbered(100'000, "\\fs", " a")));
    row("new fonts",
        "{\\rtf1{\\fonttbl" + numberedTwice(40'000, "{\\f", " A", ";}") + "}"
            + numbered(40'000, "\\f", " a") + "}");
    for (const char *word : {"\\expndtw", "\\charscalex", "\\highlight", "\\ulc", "\\tvlpreset"})
        row(qPrintable(QString::fromLatin1(word)), wrapped(numbered(70'000, word, " a")));
    row("new tabs", wrapped(numbered(60'000, "\\pard\\tx", "\\par")));
    row("tabs by turns", wrapped(numbered(1'000, "\\pard\\tx", "\\par").repeated(60)));
    row("new colours",
        "{\\rtf1{\\colortbl" + numbered(30'000, "\\red1\\green", ";") + "}"
            + numbered(40'000, "\\cf", " a") + "}");
    row("new indents", wrapped(numbered(90'000, "\\li", "\\par")));
    row("tabs", wrapped(numbered(120'000, "\\tx", "")));
    row("tabs and paragraphs", megabyteOf("\\tx1\\par"));
    row("characters in Unicode", megabyteOf("\\u960?"));
    row("bytes in hexadecimal", megabyteOf("\\'e9"));
    row("half double bytes",
        QByteArray(megabyteOf("\\'93 ")).replace("\\ansi ", "\\ansi\\ansicpg932 "));
    row("rows", megabyteOf("\\trowd\\cellx1\\cell\\row"));
    row("rows without description", megabyteOf("\\intbl\\cell\\row "));
    row("cells of one row", megabyteOf("\\cell"));
    row("descriptions without rows", megabyteOf("\\trowd\\cellx1"));
    row("edges", wrapped(numbered(100'000, "\\cellx", "")));
    row("rows that share a long description",
        wrapped(numbered(30'000, "\\cellx", "") + QByteArray("\\cell\\row").repeated(60'000)));
    row("nested rows", megabyteOf("\\intbl\\itap2\\nestcell\\nestrow"));
    row("towers of tables", megabyteOf("\\intbl\\itap32 a\\nestcell\\nestrow\\itap1\\cell\\row"));
    row("tables up and down", megabyteOf("\\itap32\\par\\itap1\\par"));
    row("edges of no order", wrapped(numbered(25'000, "\\trowd\\cellx", "000\\intbl\\cell\\row ")));
    row("merged cells",
        megabyteOf(
            "\\trowd\\clmgf\\cellx1\\clmrg\\cellx20\\clmrg\\cellx40\\cell\\cell\\cell\\row"));
    row("cells merged downwards",
        megabyteOf("\\trowd\\clvmrg\\cellx99\\clvmgf\\cellx199\\cell\\cell\\row"));
    row("paragraphs between a description and its row",
        wrapped("\\trowd\\cellx99" + QByteArray("\\pard a\\par").repeated(90'000) + "\\cell\\row"));
    row("lists",
        "{\\rtf1{\\*\\listtable"
            + numbered(8'000, "{\\list{\\listlevel\\levelnfc0{\\leveltext\\'01\\'00;}}\\listid",
                       "}")
            + "}{\\*\\listoverridetable" + numbered(8'000, "{\\listoverride\\listid1\\ls", "}")
            + "}" + numbered(30'000, "\\ls", " a\\par") + "}");
    row("levels",
        "{\\rtf1{\\*\\listtable{\\list"
            + QByteArray("{\\listlevel{\\leveltext a;}}").repeated(35'000) + "\\listid1}}}");
    row("items of one list",
        "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0}\\listid1}}{\\*\\listoverridetable{"
        "\\listoverride\\listid1\\ls1}}"
            + QByteArray("\\ls1 a\\par").repeated(90'000) + "}");
    row("items up and down",
        "{\\rtf1" + QByteArray("\\ls1\\ilvl0\\par\\ilvl1\\par").repeated(40'000) + "}");
    row("old lists", wrapped(numbered(25'000, "{\\pn\\pnlvlbody\\pndec{\\pntxtb ", "}}\\par")));
    row("bookmarks", wrapped(numbered(18'000, "{\\*\\bkmkstart b", "}a{\\*\\bkmkend x}")));
    row("bookmarks at points",
        wrapped(numberedTwice(25'000, "{\\bkmkstart b", "}{\\bkmkend b", "}a")));
    row("one long bookmark", wrapped("{\\*\\bkmkstart " + QByteArray(1'000'000, 'a') + "}text"));
    row("nested fields",
        wrapped(QByteArray("{\\field{\\fldrslt ").repeated(400) + "a"
                + QByteArray("}}").repeated(400)));
    row("fields", megabyteOf("{\\field{\\*\\fldinst HYPERLINK a}{\\fldrslt b}}"));
    row("new links",
        wrapped(numbered(20'000, "{\\field{\\*\\fldinst HYPERLINK a", "}{\\fldrslt b}}")));
    row("an instruction without end",
        wrapped("{\\field{\\*\\fldinst " + QByteArray("\"a\" \\\\").repeated(150'000)
                + "}{\\fldrslt b}}"));
    row("results of one field",
        wrapped("{\\field{\\*\\fldinst " + QByteArray(500'000, 'a') + "}"
                + QByteArray("{\\fldrslt b}").repeated(40'000) + "}"));
    row("notes", megabyteOf("a{\\footnote b}"));
    row("notes in notes",
        wrapped(QByteArray("{\\footnote a").repeated(900) + QByteArray(900, '}')));
    row("paragraphs of notes",
        wrapped("{\\footnote" + QByteArray("\\par").repeated(240'000) + "}"));
    row("pictures", megabyteOf("{\\pict\\pngblip 89}"));
    row("one picture", wrapped("{\\pict\\pngblip " + QByteArray(1'000'000, '8') + "}"));
    row("raw bytes", megabyteOf("\\bin3 {}\\"));
    row("text boxes", megabyteOf("a{\\shptxt b\\par}"));
    row("pairs of encodings", megabyteOf("{\\upr{a}{\\*\\ud{b}}}"));
    row("symbols", megabyteOf("{\\field{\\fldinst SYMBOL 183 \\\\f a}{\\fldrslt}}"));
    QByteArray garbage;
    for (quint32 state = 1; garbage.size() < 1'000'000;) {
        state = state * 1664525u + 1013904223u;
        garbage.append(char(state >> 24));
    }
    row("garbage", wrapped(garbage));
}

void TstRtfHostile::aMegabyteIsReadInBoundedTime()
{
    QFETCH(QByteArray, rtf);
    const Reading reading = readRtf(rtf);
    qInfo("%lld ms", reading.mMilliseconds);
    QVERIFY2(reading.mMilliseconds < MaximumMilliseconds,
             qPrintable(QString::number(reading.mMilliseconds)));
    QCOMPARE(reading.mError.isEmpty(), reading.mDone);
}

void TstRtfHostile::tablesStayInProportionToTheirFile_data()
{
    QTest::addColumn<QByteArray>("rtf");

    QByteArray thousandRows;
    for (int row = 0; row < 1000; ++row)
        thousandRows += "\\trowd"
            + numbered(10, "\\cellx", QByteArray::number(100 + row).constData())
            + QByteArray("\\cell").repeated(10) + "\\row ";
    QTest::newRow("a thousand rows with edges of their own") << wrapped(thousandRows);
    QTest::newRow("a wide row above a thousand narrow ones")
        << wrapped("\\trowd" + numbered(1000, "\\cellx", "00") + QByteArray("\\cell").repeated(1000)
                   + "\\row " + QByteArray("\\trowd\\cellx9\\cell\\row ").repeated(1000));
    QTest::newRow("a thousand edges for one cell in each of a thousand rows") << wrapped(
        "\\trowd" + numbered(1000, "\\cellx", "00") + QByteArray("\\cell\\row ").repeated(1000));
    QTest::newRow("a thousand rows of a thousand merged cells of no width") << wrapped(
        (QByteArray("\\trowd") + QByteArray("\\clmrg\\cellx1").repeated(1000) + "\\cell\\row ")
            .repeated(100));
}

void TstRtfHostile::tablesStayInProportionToTheirFile()
{
    QFETCH(QByteArray, rtf);
    QTextDocument document;
    QVERIFY(TVLTextRtfReader(&document).read(rtf));
    qint64 places = 0;
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        const auto *table = qobject_cast<QTextTable *>(frame);
        QVERIFY(table);
        places += qint64(table->rows()) * table->columns();
    }
    QVERIFY(places > 0);
    QVERIFY2(places <= rtf.size(), qPrintable(QString::number(places)));
}

void TstRtfHostile::whatWasReadCanBeWritten()
{
    for (QByteArray rtf : readCases()) {
        for (qsizetype place = 5; place < rtf.size(); place += 97) {
            const char byte = std::exchange(rtf[place], '{');
            QTextDocument damaged;
            static_cast<void>(TVLTextRtfReader(&damaged).read(rtf));
            rtf[place] = byte;
            const QByteArray written = TVLTextRtfWriter(nullptr).toRtf(&damaged, true);
            QTextDocument document;
            TVLTextRtfReader reader(&document);
            QVERIFY2(reader.read(written), qPrintable(reader.errorString()));
            QCOMPARE(document.toPlainText(), damaged.toPlainText());
        }
    }
}

TVL_TEST(TstRtfHostile)
#include "tst_rtfhostile.moc"
