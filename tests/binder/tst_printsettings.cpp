#include "BinderSamples.h"
#include "TVLBinderWriter.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"

#include <QPrinter>
#include <QTest>

#include <algorithm>
#include <numeric>

namespace {

/** The words of papers in the order of the format's table. */
const QList<QPair<QPageSize::PageSizeId, QByteArray>> &papers()
{
    static const QList<QPair<QPageSize::PageSizeId, QByteArray>> papers = {
        {QPageSize::A0, "A0"},           {QPageSize::A1, "A2"},
        {QPageSize::A2, "A2"},           {QPageSize::A3, "A3"},
        {QPageSize::A4, "A4"},           {QPageSize::A5, "A5"},
        {QPageSize::A6, "A6"},           {QPageSize::A7, "A7"},
        {QPageSize::A8, "A8"},           {QPageSize::A9, "A9"},
        {QPageSize::B0, "B0"},           {QPageSize::B10, "B10"},
        {QPageSize::B2, "B2"},           {QPageSize::B3, "B3"},
        {QPageSize::B4, "B4"},           {QPageSize::B5, "B5"},
        {QPageSize::B6, "B6"},           {QPageSize::B7, "B7"},
        {QPageSize::B8, "B8"},           {QPageSize::Executive, "Executive"},
        {QPageSize::Folio, "Folio"},     {QPageSize::Ledger, "Ledger"},
        {QPageSize::Legal, "Legal"},     {QPageSize::Letter, "Letter"},
        {QPageSize::Tabloid, "Tabloid"},
    };
    return papers;
}

QByteArray writtenSettings(const QPrinter &printer)
{
    return written([&](TVLBinderWriter *writer) { writer->writePrintSettings(&printer); });
}

/** Reads `PrintSettings` with the given content. */
bool readSettings(TestBinderProject *project, const QByteArray &content)
{
    return project->read(binderXml({}, "<PrintSettings>" + content + "</PrintSettings>"));
}

QPageLayout readLayout(const QByteArray &content)
{
    TestBinderProject project;
    return readSettings(&project, content) ? project.printer()->pageLayout() : QPageLayout();
}

QMarginsF readMargins(const QByteArray &content)
{
    return readLayout(content).margins(QPageLayout::Point);
}

/** What a printer has that nothing was said to. */
QPageLayout freshLayout()
{
    return QPrinter(QPrinter::PrinterResolution).pageLayout();
}

} // namespace

class TstPrintSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePageSetupIsWritten();
    void thePageSetupIsRead();
    void aFreshPageSetupSurvives();
    void thePrinterIsOneOfPrinterResolution();

    void everyPaperIsWrittenAndRead_data();
    void everyPaperIsWrittenAndRead();
    void a1AndA2AreBothReadAsA1();
    void aPaperWithoutAWordIsWrittenAsA4_data();
    void aPaperWithoutAWordIsWrittenAsA4();
    void aPaperOfNoStandardIsWrittenAsA4();
    void everySizeOfPaperIsStableFromTheFirstWriting();
    void anUnknownWordLeavesThePrinterAlone_data();
    void anUnknownWordLeavesThePrinterAlone();
    void flagsAreYesOnlyForTheWord_data();
    void flagsAreYesOnlyForTheWord();

    void marginsAreWrittenInPointsToSixDigits_data();
    void marginsAreWrittenInPointsToSixDigits();
    void marginsAreReadToAsManyDigits();
    void marginsInAnotherUnitAreWrittenInPoints();
    void aMarginThatIsNoneLeavesThePrinterAlone_data();
    void aMarginThatIsNoneLeavesThePrinterAlone();
    void marginsThatLeaveNoPaperLeaveThePrinterAlone_data();
    void marginsThatLeaveNoPaperLeaveThePrinterAlone();
    void aPairOfMarginsThatFitsIsKeptWhenTheOtherDoesNot();
    void marginsMayLeaveLittleOfThePaper();
    void theOrderOfElementsCountsForNothing();
    void theLastOfRepeatedElementsCounts();
    void unknownElementsAreSkipped();
    void elementsInsideTheTextsAreSkipped();
    void anEmptySectionGivesAFreshPrinter();

    void withoutTheSectionNoPrinterIsSet();
    void theLastOfRepeatedSectionsCountsAsAWhole();
    void aSectionThatIsCutOffSetsNoPrinter();
    void writingLeavesThePrinterAlone();
};

void TstPrintSettings::thePageSetupIsWritten()
{
    QPrinter printer(QPrinter::PrinterResolution);
    printer.setPageSize(QPageSize(QPageSize::Legal));
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setPageMargins({72, 36.5, 0, 28.3465}, QPageLayout::Point); // Left, top, right, bottom.
    printer.setCollateCopies(false);
    printer.setPageOrder(QPrinter::LastPageFirst);
    QCOMPARE(writtenSettings(printer),
             QByteArray("<PrintSettings><PaperType>Legal</PaperType><LeftMargin>72</LeftMargin>"
                        "<RightMargin>0</RightMargin><TopMargin>36.5</TopMargin>"
                        "<BottomMargin>28.3465</BottomMargin><Orientation>Landscape</Orientation>"
                        "<Collates>No</Collates><ReverseOrder>Yes</ReverseOrder></PrintSettings>"));
}

void TstPrintSettings::thePageSetupIsRead()
{
    TestBinderProject project;
    QVERIFY(readSettings(
        &project,
        "<PaperType>B5</PaperType><LeftMargin>1</LeftMargin><RightMargin>2.5</RightMargin>"
        "<TopMargin>3</TopMargin><BottomMargin>4e1</BottomMargin><Orientation>Landscape</"
        "Orientation>"
        "<Collates>No</Collates><ReverseOrder>Yes</ReverseOrder>"));
    const QPrinter *printer = project.printer();
    QCOMPARE(printer->pageLayout().pageSize().id(), QPageSize::B5);
    QCOMPARE(printer->pageLayout().orientation(), QPageLayout::Landscape);
    QCOMPARE(printer->pageLayout().margins(QPageLayout::Point), QMarginsF(1, 3, 2.5, 40));
    QVERIFY(!printer->collateCopies());
    QCOMPARE(printer->pageOrder(), QPrinter::LastPageFirst);
}

void TstPrintSettings::aFreshPageSetupSurvives()
{
    const QPrinter fresh(QPrinter::PrinterResolution);
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, writtenSettings(fresh))));
    QCOMPARE(project.printer()->pageLayout(), fresh.pageLayout());
    QCOMPARE(writtenSettings(*project.printer()), writtenSettings(fresh));
}

void TstPrintSettings::thePrinterIsOneOfPrinterResolution()
{
    TestBinderProject project;
    QVERIFY(readSettings(&project, {}));
    QCOMPARE(project.printer()->resolution(), QPrinter(QPrinter::PrinterResolution).resolution());
}

void TstPrintSettings::everyPaperIsWrittenAndRead_data()
{
    QTest::addColumn<int>("paper");
    QTest::addColumn<QByteArray>("word");
    QCOMPARE(papers().size(), 25);
    for (const auto &[paper, word] : papers())
        QTest::addRow("%s, %d", word.constData(), int(paper)) << int(paper) << word;
}

void TstPrintSettings::everyPaperIsWrittenAndRead()
{
    QFETCH(int, paper);
    QFETCH(QByteArray, word);
    for (const QPageLayout::Orientation orientation :
         {QPageLayout::Portrait, QPageLayout::Landscape}) {
        QPrinter printer(QPrinter::PrinterResolution);
        printer.setPageSize(QPageSize(QPageSize::PageSizeId(paper)));
        printer.setPageOrientation(orientation);
        const QByteArray xml = writtenSettings(printer);
        QVERIFY2(xml.contains("<PaperType>" + word + "</PaperType>"), xml.constData());

        TestBinderProject project;
        QVERIFY(project.read(binderXml({}, xml)));
        const QPageLayout layout = project.printer()->pageLayout();
        QCOMPARE(int(layout.pageSize().id()), paper == QPageSize::A2 ? int(QPageSize::A1) : paper);
        QCOMPARE(layout.orientation(), orientation);
        QCOMPARE(writtenSettings(*project.printer()), xml);
    }
}

void TstPrintSettings::a1AndA2AreBothReadAsA1()
{
    for (const QPageSize::PageSizeId paper : {QPageSize::A1, QPageSize::A2}) {
        QPrinter printer(QPrinter::PrinterResolution);
        printer.setPageSize(QPageSize(paper));
        TestBinderProject project;
        QVERIFY(project.read(binderXml({}, writtenSettings(printer))));
        QCOMPARE(project.printer()->pageLayout().pageSize().id(), QPageSize::A1);
    }
    QCOMPARE(readLayout("<PaperType>A1</PaperType>").pageSize().id(),
             freshLayout().pageSize().id()); // No word of the format.
}

void TstPrintSettings::aPaperWithoutAWordIsWrittenAsA4_data()
{
    QTest::addColumn<int>("paper");
    QTest::newRow("B1") << int(QPageSize::B1);
    QTest::newRow("B9") << int(QPageSize::B9);
    QTest::newRow("C5E") << int(QPageSize::C5E);
    QTest::newRow("Comm10E") << int(QPageSize::Comm10E);
    QTest::newRow("DLE") << int(QPageSize::DLE);
}

void TstPrintSettings::aPaperWithoutAWordIsWrittenAsA4()
{
    QFETCH(int, paper);
    QPrinter printer(QPrinter::PrinterResolution);
    printer.setPageSize(QPageSize(QPageSize::PageSizeId(paper)));
    QCOMPARE(int(printer.pageLayout().pageSize().id()), paper);
    QVERIFY(writtenSettings(printer).contains("<PaperType>A4</PaperType>"));
}

void TstPrintSettings::aPaperOfNoStandardIsWrittenAsA4()
{
    QPrinter printer(QPrinter::PrinterResolution);
    printer.setPageSize(QPageSize(QSizeF(333, 444), QPageSize::Point));
    QCOMPARE(printer.pageLayout().pageSize().id(), QPageSize::Custom);
    QVERIFY(writtenSettings(printer).contains("<PaperType>A4</PaperType>"));
}

void TstPrintSettings::everySizeOfPaperIsStableFromTheFirstWriting()
{
    for (int paper = 0; paper <= QPageSize::LastPageSize; ++paper) {
        QPrinter printer(QPrinter::PrinterResolution);
        printer.setPageSize(QPageSize(QPageSize::PageSizeId(paper)));
        const QByteArray xml = writtenSettings(printer);
        TestBinderProject project;
        QVERIFY(project.read(binderXml({}, xml)));
        QCOMPARE(writtenSettings(*project.printer()), xml);
    }
}

void TstPrintSettings::anUnknownWordLeavesThePrinterAlone_data()
{
    QTest::addColumn<QByteArray>("xml");
    for (const char *tag : {"PaperType", "Orientation"}) {
        for (const char *word : {"", "A1", "a4", " A5", "A5 ", "B1", "Custom", "portrait",
                                 "LANDSCAPE", "0", "1", "Yes", "\xc3\xa4"}) {
            QTest::addRow("%s '%s'", tag, word)
                << QByteArray("<") + tag + '>' + word + "</" + tag + '>';
        }
    }
}

void TstPrintSettings::anUnknownWordLeavesThePrinterAlone()
{
    QFETCH(QByteArray, xml);
    QCOMPARE(readLayout(xml), freshLayout());
}

void TstPrintSettings::flagsAreYesOnlyForTheWord_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("Yes") << QByteArray("Yes") << true;
    for (const char *text : {"No", "", "yes", "YES", " Yes", "1", "true"})
        QTest::newRow(text) << QByteArray(text) << false;
}

void TstPrintSettings::flagsAreYesOnlyForTheWord()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, expected);
    TestBinderProject project;
    QVERIFY(readSettings(
        &project, "<Collates>" + text + "</Collates><ReverseOrder>" + text + "</ReverseOrder>"));
    QCOMPARE(project.printer()->collateCopies(), expected);
    QCOMPARE(project.printer()->pageOrder() == QPrinter::LastPageFirst, expected);
}

void TstPrintSettings::marginsAreWrittenInPointsToSixDigits_data()
{
    QTest::addColumn<qreal>("margin");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("none") << 0.0 << QByteArray("0");
    QTest::newRow("an inch") << 72.0 << QByteArray("72");
    QTest::newRow("a centimetre") << 72 / 2.54 << QByteArray("28.3465");
    QTest::newRow("hundreds") << 123.45678 << QByteArray("123.457");
    QTest::newRow("rounded up") << 99.99999 << QByteArray("100");
    QTest::newRow("hardly any") << 0.00001234567 << QByteArray("1.23457e-05");
}

void TstPrintSettings::marginsAreWrittenInPointsToSixDigits()
{
    QFETCH(qreal, margin);
    QFETCH(QByteArray, text);
    QPrinter printer(QPrinter::PrinterResolution);
    QVERIFY(printer.setPageMargins({margin, margin, margin, margin}, QPageLayout::Point));
    const QByteArray xml = writtenSettings(printer);
    QCOMPARE(xml.count("Margin>" + text + "</"), 4);
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, xml)));
    QCOMPARE(writtenSettings(*project.printer()), xml);
}

void TstPrintSettings::marginsAreReadToAsManyDigits()
{
    QCOMPARE(readMargins("<LeftMargin>12.3456789</LeftMargin>").left(), 12.3457);
    QCOMPARE(readMargins("<LeftMargin> 1e1 </LeftMargin>").left(), 10.0);
}

void TstPrintSettings::marginsInAnotherUnitAreWrittenInPoints()
{
    QPrinter printer(QPrinter::PrinterResolution);
    QVERIFY(printer.setPageMargins({25.4, 12.7, 6.35, 0}, QPageLayout::Millimeter));
    const QByteArray xml = writtenSettings(printer);
    QVERIFY2(xml.contains("<LeftMargin>72</LeftMargin><RightMargin>18</RightMargin>"
                          "<TopMargin>36</TopMargin><BottomMargin>0</BottomMargin>"),
             xml.constData());
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, xml)));
    QCOMPARE(writtenSettings(*project.printer()), xml);
}

void TstPrintSettings::aMarginThatIsNoneLeavesThePrinterAlone_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"", "wide", "nan", "-nan", "inf", "-inf", "1e999", "-1", "-1e-300",
                             "1,5", "12pt", "0x20", "1 2"})
        QTest::newRow(text) << QByteArray(text);
}

void TstPrintSettings::aMarginThatIsNoneLeavesThePrinterAlone()
{
    QFETCH(QByteArray, text);
    const QMarginsF fresh = freshLayout().margins(QPageLayout::Point);
    // The others are taken all the same.
    QCOMPARE(readMargins("<LeftMargin>" + text + "</LeftMargin><TopMargin>20</TopMargin>"),
             QMarginsF(fresh.left(), 20, fresh.right(), fresh.bottom()));
    QCOMPARE(readMargins("<TopMargin>" + text + "</TopMargin><RightMargin>20</RightMargin>"),
             QMarginsF(fresh.left(), fresh.top(), 20, fresh.bottom()));
    QCOMPARE(readMargins("<RightMargin>" + text + "</RightMargin><BottomMargin>20</BottomMargin>"),
             QMarginsF(fresh.left(), fresh.top(), fresh.right(), 20));
    QCOMPARE(readMargins("<BottomMargin>" + text + "</BottomMargin><LeftMargin>20</LeftMargin>"),
             QMarginsF(20, fresh.top(), fresh.right(), fresh.bottom()));
}

void TstPrintSettings::marginsThatLeaveNoPaperLeaveThePrinterAlone_data()
{
    QTest::addColumn<QByteArray>("xml");
    // A4 is 595 points wide and 842 high.
    QTest::newRow("one wider than the paper") << QByteArray("<LeftMargin>596</LeftMargin>");
    QTest::newRow("one as wide as the paper") << QByteArray("<RightMargin>595</RightMargin>");
    QTest::newRow("one higher than the paper") << QByteArray("<TopMargin>900</TopMargin>");
    QTest::newRow("together too wide")
        << QByteArray("<LeftMargin>300</LeftMargin><RightMargin>295</RightMargin>");
    QTest::newRow("together too high")
        << QByteArray("<TopMargin>421</TopMargin><BottomMargin>421</BottomMargin>");
    QTest::newRow("as wide as the paper once it is written")
        << QByteArray("<LeftMargin>594.9999999</LeftMargin><RightMargin>0</RightMargin>");
    QTest::newRow("huge") << QByteArray("<LeftMargin>1e308</LeftMargin>");
    QTest::newRow("together beyond all numbers")
        << QByteArray("<LeftMargin>1e308</LeftMargin><RightMargin>1e308</RightMargin>");
    QTest::newRow("high enough only upright")
        << QByteArray("<TopMargin>500</TopMargin><BottomMargin>100</BottomMargin>"
                      "<Orientation>Landscape</Orientation>");
    QTest::newRow("wide enough only for A4")
        << QByteArray("<LeftMargin>200</LeftMargin><PaperType>A9</PaperType>");
}

void TstPrintSettings::marginsThatLeaveNoPaperLeaveThePrinterAlone()
{
    QFETCH(QByteArray, xml);
    const QByteArray paper = "<PaperType>A4</PaperType>";
    QCOMPARE(readMargins(paper + xml), freshLayout().margins(QPageLayout::Point));
}

void TstPrintSettings::aPairOfMarginsThatFitsIsKeptWhenTheOtherDoesNot()
{
    const QMarginsF fresh = freshLayout().margins(QPageLayout::Point);
    const QByteArray paper = "<PaperType>A4</PaperType>";
    const QByteArray sides = "<LeftMargin>20</LeftMargin><RightMargin>30</RightMargin>";
    const QByteArray ends = "<TopMargin>40</TopMargin><BottomMargin>50</BottomMargin>";
    QCOMPARE(
        readMargins(paper + sides + "<TopMargin>800</TopMargin><BottomMargin>50</BottomMargin>"),
        QMarginsF(20, fresh.top(), 30, fresh.bottom()));
    QCOMPARE(readMargins(paper + ends + "<LeftMargin>600</LeftMargin><RightMargin>9</RightMargin>"),
             QMarginsF(fresh.left(), 40, fresh.right(), 50));
    QCOMPARE(readMargins(paper + ends + "<RightMargin>1e300</RightMargin>"),
             QMarginsF(fresh.left(), 40, fresh.right(), 50));
}

void TstPrintSettings::marginsMayLeaveLittleOfThePaper()
{
    QCOMPARE(readMargins("<PaperType>A4</PaperType><LeftMargin>594</LeftMargin>"
                         "<RightMargin>0.5</RightMargin>")
                 .left(),
             594.0);
    QCOMPARE(readMargins("<PaperType>A4</PaperType><Orientation>Landscape</Orientation>"
                         "<LeftMargin>800</LeftMargin>")
                 .left(),
             800.0);
}

void TstPrintSettings::theOrderOfElementsCountsForNothing()
{
    // Margins that are too wide for the paper and the orientation that a printer begins with.
    QList<QByteArray> elements = {
        "<BottomMargin>1</BottomMargin>",  "<Collates>No</Collates>",
        "<LeftMargin>1500</LeftMargin>",   "<Orientation>Landscape</Orientation>",
        "<PaperType>Letter</PaperType>",   "<PaperType>A0</PaperType>",
        "<RightMargin>1600</RightMargin>", "<TopMargin>2</TopMargin>",
    };
    // The second of the papers counts wherever the others are.
    std::vector<int> order(std::size_t(elements.size()));
    std::iota(order.begin(), order.end(), 0);
    int orders = 0;
    do {
        if (std::find(order.begin(), order.end(), 4) > std::find(order.begin(), order.end(), 5))
            continue;
        if (++orders % 97 != 0)
            continue;
        QByteArray xml;
        for (const int i : order)
            xml += elements.at(i);
        TestBinderProject project;
        QVERIFY(readSettings(&project, xml));
        const QPageLayout layout = project.printer()->pageLayout();
        QCOMPARE(layout.pageSize().id(), QPageSize::A0);
        QCOMPARE(layout.orientation(), QPageLayout::Landscape);
        QCOMPARE(layout.margins(QPageLayout::Point), QMarginsF(1500, 2, 1600, 1));
        QVERIFY(!project.printer()->collateCopies());
    } while (std::next_permutation(order.begin(), order.end()));
    QVERIFY(orders > 1000);
}

void TstPrintSettings::theLastOfRepeatedElementsCounts()
{
    const QPageLayout layout = readLayout(
        "<LeftMargin>5</LeftMargin><PaperType>A5</PaperType><LeftMargin>7</LeftMargin>"
        "<PaperType>A6</PaperType><PaperType>unknown</PaperType><LeftMargin>inf</LeftMargin>");
    QCOMPARE(layout.margins(QPageLayout::Point).left(), 7.0);
    QCOMPARE(layout.pageSize().id(), QPageSize::A6);
}

void TstPrintSettings::unknownElementsAreSkipped()
{
    const QPageLayout layout =
        readLayout("text<Foo><PaperType>A5</PaperType></Foo><PaperType>A6</PaperType><Foo/>"
                   "<PrintSettings><PaperType>A7</PaperType></PrintSettings>");
    QCOMPARE(layout.pageSize().id(), QPageSize::A6);
}

void TstPrintSettings::elementsInsideTheTextsAreSkipped()
{
    const QPageLayout layout = readLayout("<PaperType>A<Foo>3</Foo>6<!-- --></PaperType>");
    QCOMPARE(layout.pageSize().id(), QPageSize::A6);
}

void TstPrintSettings::anEmptySectionGivesAFreshPrinter()
{
    TestBinderProject project;
    QPrinter *before = project.printer();
    before->setPageSize(QPageSize(QPageSize::A8));
    QVERIFY(readSettings(&project, {}));
    QCOMPARE(project.printer()->pageLayout(), freshLayout());
}

void TstPrintSettings::withoutTheSectionNoPrinterIsSet()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml({})));
    QVERIFY(!project.hasPrinter());
}

void TstPrintSettings::theLastOfRepeatedSectionsCountsAsAWhole()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<PrintSettings><PaperType>A5</PaperType><Collates>No</Collates></PrintSettings>"
                  "<PrintSettings><LeftMargin>30</LeftMargin></PrintSettings>")));
    QCOMPARE(project.printer()->pageLayout().pageSize().id(), freshLayout().pageSize().id());
    QCOMPARE(project.printer()->pageLayout().margins(QPageLayout::Point).left(), 30.0);
    QVERIFY(project.printer()->collateCopies());
}

void TstPrintSettings::aSectionThatIsCutOffSetsNoPrinter()
{
    const DebugLog log;
    for (const char *xml :
         {"<PrintSettings>", "<PrintSettings><PaperType>A5</PaperType>",
          "<PrintSettings><PaperType>A5", "<PrintSettings><Foo></PrintSettings>"}) {
        TestBinderProject project;
        QString error;
        QVERIFY(!project.read(QByteArray("<TavelinorProject Version='1.5'>") + xml, &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!project.hasPrinter());
    }
}

void TstPrintSettings::writingLeavesThePrinterAlone()
{
    QPrinter printer(QPrinter::PrinterResolution);
    printer.setPageMargins({10.25, 5, 3, 2}, QPageLayout::Millimeter);
    const QPageLayout before = printer.pageLayout();
    QVERIFY(!writtenSettings(printer).isEmpty());
    QCOMPARE(printer.pageLayout(), before);
    QCOMPARE(printer.pageLayout().units(), QPageLayout::Millimeter);
}

TVL_TEST(TstPrintSettings)
#include "tst_printsettings.moc"
