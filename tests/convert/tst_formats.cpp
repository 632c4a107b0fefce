#include "TestMain.h"

#include "TVLFormat.h"
#include "TVLImportExportConfig.h"
#include "TVLOptions.h"

#include <QMetaEnum>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

using Format = TVLFormat::Format;

QList<Format> allFormats()
{
    QList<Format> formats;
    const auto values = QMetaEnum::fromType<Format>();
    for (int i = 0; i < values.keyCount(); ++i) {
        if (values.value(i) != TVLFormat::NoFormat)
            formats.append(Format(values.value(i)));
    }
    return formats;
}

TVLImportExportConfig withAll()
{
    return TVLImportExportConfig({.hasOffice = true, .hasMarkup = true});
}

TVLImportExportConfig withNone()
{
    return TVLImportExportConfig({});
}

QList<int> sorted(const QSet<Format> &formats)
{
    QList<int> numbers(formats.begin(), formats.end());
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

/** The table of formats and what serves them. */
class TstFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFormatHasItsNumberAndLabel_data();
    void aFormatHasItsNumberAndLabel();
    void everyFormatIsWhole();
    void labelsAreDistinct();
    void aSuffixLeadsToItsFormat_data();
    void aSuffixLeadsToItsFormat();
    void whatIsNoSuffixLeadsToNoFormat_data();
    void whatIsNoSuffixLeadsToNoFormat();
    void anExtensionComesBackAsItsFormat();
    void extensionsHaveAnOrder();
    void aPlaceThatIsNoneHasNothing();
    void anExtensionIsThatOfAPlaceOrOfAFormat();
    void formatsMayShareADescription();
    void aFilterHasEachExtensionOnce();
    void fiveFormatsAreMultiMarkdown();
    void aFormatIsAValue();

    void enginesKeepTheirNumbers();
    void anEngineServesAFormat_data();
    void anEngineServesAFormat();
    void withoutConvertersThereAreFewerFormats();
    void anEngineIsFoundForAPair_data();
    void anEngineIsFoundForAPair();
    void aMissingConverterIsNamedForAPair();
    void theConfigurationOfThisComputerStaysOne();
    void theKindleProgramIsThatOfTheOptions();
};

void TstFormats::aFormatHasItsNumberAndLabel_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<TVLFormat::Format>("format");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("label");
    const auto row = [](int number, Format format, const char *extension, const char *label) {
        QTest::newRow(label) << number << format << QString::fromLatin1(extension)
                             << QString::fromLatin1(label);
    };
    row(1, TVLFormat::Print, "", "Print");
    row(2, TVLFormat::Preview, "", "Preview");
    row(3, TVLFormat::PlainText, "txt", "Plain Text (.txt)");
    row(4, TVLFormat::Rtf, "rtf", "Rich Text Format (.rtf - Word compatible)");
    row(5, TVLFormat::Html, "html", "Web Page (.html)");
    row(6, TVLFormat::Xhtml, "xhtml", "eXtensible Web Page (.xhtml)");
    row(7, TVLFormat::EPub, "epub", "ePub eBook (.epub)");
    row(8, TVLFormat::Kindle, "mobi", "Kindle(Mobi) Book (.mobi)");
    row(9, TVLFormat::Odt, "odt", "OpenDocument Format (.odt)");
    row(10, TVLFormat::Doc, "doc", "Word Document (.doc)");
    row(11, TVLFormat::Docx, "docx", "Word Document (.docx)");
    row(12, TVLFormat::Pdf, "pdf", "PDF (.pdf)");
    row(13, TVLFormat::PostScript, "ps", "PostScript (.ps)");
    row(31, TVLFormat::FinalDraft, "fdx", "Final Draft (.fdx)");
    row(32, TVLFormat::MmdToHtml, "html", "MultiMarkdown to Web Page (.html)");
    row(33, TVLFormat::MmdToLatex, "tex", "MultiMarkdown to Latex (.tex)");
    row(34, TVLFormat::MmdToOpml, "opml",
        "MultiMarkdown to Outline Processor Markup Language (.opml)");
    row(35, TVLFormat::MmdToFlatOdf, "fodt", "MultiMarkdown to OpenDocument Flat XML (.fodt)");
    row(36, TVLFormat::Mmd, "mmd", "MultiMarkdown (.mmd)");
    row(37, TVLFormat::Opml, "opml", "Outline (.opml)");
    row(38, TVLFormat::MindMap, "mm", "Mind Map (.mm)");
    row(39, TVLFormat::Markdown, "md", "Markdown (.md)");
    row(40, TVLFormat::EPubBook, "epub", "ePub eBook, whole (.epub)");
    row(41, TVLFormat::Fountain, "fountain", "Fountain (.fountain)");
}

void TstFormats::aFormatHasItsNumberAndLabel()
{
    QFETCH(int, number);
    QFETCH(TVLFormat::Format, format);
    QTEST(TVLFormat::label(format), "label");
    QTEST(TVLFormat::extension(format), "extension");
    QCOMPARE(int(format), number);
}

void TstFormats::everyFormatIsWhole()
{
    const QList<Format> formats = allFormats();
    QCOMPARE(formats.size(), 41);
    for (const Format format : formats) {
        QVERIFY(!TVLFormat::label(format).isEmpty());
        QVERIFY(!TVLFormat::description(format).isEmpty());
        QVERIFY(TVLFormat::kind(format) != TVLFormat::NoKind);
        const bool isFile = TVLFormat::kind(format) != TVLFormat::PrinterKind;
        QCOMPARE(!TVLFormat::extensions(format).isEmpty(), isFile);
        QCOMPARE(TVLFormat::extension(format), TVLFormat::extensions(format).value(0));
    }
}

void TstFormats::labelsAreDistinct()
{
    QSet<QString> labels;
    const QList<Format> formats = allFormats();
    for (const Format format : formats)
        labels.insert(TVLFormat::label(format));
    QCOMPARE(labels.size(), formats.size());
}

void TstFormats::aSuffixLeadsToItsFormat_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<TVLFormat::Format>("format");
    const auto row = [](const char *text, Format format) {
        QTest::newRow(text) << QString::fromLatin1(text) << format;
    };
    row("txt", TVLFormat::PlainText);
    row(".txt", TVLFormat::PlainText);
    row("TXT", TVLFormat::PlainText);
    row("Chapter 1.rtf", TVLFormat::Rtf);
    row("/home/a.b/Chapter.1.RTF", TVLFormat::Rtf);
    row("html", TVLFormat::Html);
    row("htm", TVLFormat::Html);
    row("xhtml", TVLFormat::Xhtml);
    row("epub", TVLFormat::EPubBook);
    row("opml", TVLFormat::Opml);
    row("mm", TVLFormat::MindMap);
    row("md", TVLFormat::Markdown);
    row("markdown", TVLFormat::Markdown);
    row("mmd", TVLFormat::Mmd);
    row("tex", TVLFormat::MmdToLatex);
    row("fodt", TVLFormat::MmdToFlatOdf);
    row("jpeg", TVLFormat::Jpeg);
    row("tif", TVLFormat::Tiff);
    row("webarchive", TVLFormat::WebArchive);
    row("fdx", TVLFormat::FinalDraft);
    row("fountain", TVLFormat::Fountain);
}

void TstFormats::aSuffixLeadsToItsFormat()
{
    QFETCH(QString, text);
    QTEST(TVLFormat::format(text), "format");
}

void TstFormats::whatIsNoSuffixLeadsToNoFormat_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a dot") << u"."_s;
    QTest::newRow("unknown") << u"xyz"_s;
    QTest::newRow("a path without a suffix") << u"/home/txt"_s;
    QTest::newRow("a folder's suffix") << u"/home/a.txt/b"_s;
    QTest::newRow("a part of one") << u"tx"_s;
}

void TstFormats::whatIsNoSuffixLeadsToNoFormat()
{
    QFETCH(QString, text);
    QCOMPARE(TVLFormat::format(text), TVLFormat::NoFormat);
}

void TstFormats::anExtensionComesBackAsItsFormat()
{
    for (const Format format : allFormats()) {
        const Format back = TVLFormat::format(TVLFormat::extension(format));
        switch (format) {
        case TVLFormat::Print:
        case TVLFormat::Preview:
            QCOMPARE(back, TVLFormat::NoFormat);
            break;
        case TVLFormat::EPub:
            QCOMPARE(back, TVLFormat::EPubBook);
            break;
        case TVLFormat::MmdToHtml:
            QCOMPARE(back, TVLFormat::Html);
            break;
        case TVLFormat::MmdToOpml:
            QCOMPARE(back, TVLFormat::Opml);
            break;
        default:
            QCOMPARE(back, format);
        }
    }
}

void TstFormats::extensionsHaveAnOrder()
{
    int last = 0;
    QMap<Format, QStringList> found;
    for (int i = 0; i < TVLFormat::formatsCount(); ++i) {
        const Format format = TVLFormat::formatAt(i);
        QVERIFY(format >= last);
        last = format;
        QVERIFY(!TVLFormat::formatExtension(i).isEmpty());
        QCOMPARE(TVLFormat::formatInfo(i).extension, TVLFormat::formatExtension(i));
        QCOMPARE(TVLFormat::formatInfo(i).description, TVLFormat::description(format));
        found[format].append(TVLFormat::formatExtension(i));
    }
    for (const Format format : allFormats())
        QCOMPARE(found.value(format), TVLFormat::extensions(format));
}

void TstFormats::aPlaceThatIsNoneHasNothing()
{
    for (const int index : {-1, TVLFormat::formatsCount()}) {
        QCOMPARE(TVLFormat::formatAt(index), TVLFormat::NoFormat);
        QCOMPARE(TVLFormat::formatExtension(index), QString());
        QCOMPARE(TVLFormat::formatInfo(index).description, QString());
    }
    QCOMPARE(TVLFormat::extension(Format(42)), QString());
    QCOMPARE(TVLFormat::label(Format(-1)), QString());
    QCOMPARE(TVLFormat::kind(TVLFormat::NoFormat), TVLFormat::NoKind);
}

void TstFormats::anExtensionIsThatOfAPlaceOrOfAFormat()
{
    QCOMPARE(TVLFormat::formatExtension(TVLFormat::Html), u"html"_s);
    QCOMPARE(TVLFormat::formatExtension(0), u"txt"_s);
}

void TstFormats::formatsMayShareADescription()
{
    QCOMPARE(TVLFormat::description(TVLFormat::Doc), TVLFormat::description(TVLFormat::Docx));
    QCOMPARE(TVLFormat::description(TVLFormat::EPub), TVLFormat::description(TVLFormat::EPubBook));
}

void TstFormats::aFilterHasEachExtensionOnce()
{
    QCOMPARE(TVLFormat::createFormatFilter(u"Web Page"_s, {u"html"_s, u"htm"_s, u"html"_s}),
             u"Web Page (*.html *.htm)"_s);
    QCOMPARE(TVLFormat::createFormatFilter(u"None"_s, {}), u"None ()"_s);
}

void TstFormats::fiveFormatsAreMultiMarkdown()
{
    QList<int> variants;
    for (const Format format : allFormats()) {
        if (TVLFormat::isMmdVariant(format))
            variants.append(format);
    }
    QCOMPARE(variants, QList<int>({32, 33, 34, 35, 36}));
}

void TstFormats::aFormatIsAValue()
{
    TVLFormat format;
    QVERIFY(format == TVLFormat::NoFormat);
    format = TVLFormat::FinalDraft;
    QCOMPARE(TVLFormat::extension(format), u"fdx"_s);
    QCOMPARE(int(format), 31);
    const auto takesFormat = [](TVLFormat taken) { return TVLFormat::extension(taken); };
    QCOMPARE(takesFormat(TVLFormat::Rtf), u"rtf"_s);
}

void TstFormats::enginesKeepTheirNumbers()
{
    QCOMPARE(int(OfficeEngine), 2);
    QCOMPARE(int(PlainOfficeEngine), 5);
    QCOMPARE(int(QtEngine), 6);
    QCOMPARE(int(RtfEngine), 7);
}

void TstFormats::anEngineServesAFormat_data()
{
    QTest::addColumn<TVLFormat::Format>("format");
    QTest::addColumn<Engine>("importEngine");
    QTest::addColumn<Engine>("exportEngine");
    QTest::addColumn<Engine>("plainImportEngine");
    QTest::addColumn<Engine>("plainExportEngine");
    // The last two without converters.
    const auto row = [](const char *name, Format format, Engine import, Engine exported,
                        Engine plainImport, Engine plainExport) {
        QTest::newRow(name) << format << import << exported << plainImport << plainExport;
    };
    const auto same = [&row](const char *name, Format format, Engine import, Engine exported) {
        row(name, format, import, exported, import, exported);
    };
    same("none", TVLFormat::NoFormat, NoEngine, NoEngine);
    same("print", TVLFormat::Print, NoEngine, NoEngine);
    same("plain text", TVLFormat::PlainText, LibraryEngine, LibraryEngine);
    same("rich text", TVLFormat::Rtf, LibraryEngine, LibraryEngine);
    row("page", TVLFormat::Html, MarkupEngine, LibraryEngine, NoEngine, LibraryEngine);
    row("xml page", TVLFormat::Xhtml, MarkupEngine, LibraryEngine, NoEngine, LibraryEngine);
    same("text of a book", TVLFormat::EPub, NoEngine, LibraryEngine);
    same("kindle", TVLFormat::Kindle, NoEngine, LibraryEngine);
    row("odt", TVLFormat::Odt, OfficeEngine, OfficeEngine, NoEngine, QtEngine);
    row("doc", TVLFormat::Doc, OfficeEngine, OfficeEngine, NoEngine, RtfEngine);
    row("docx", TVLFormat::Docx, OfficeEngine, OfficeEngine, NoEngine, NoEngine);
    same("pdf", TVLFormat::Pdf, NoEngine, QtEngine);
    same("postscript", TVLFormat::PostScript, NoEngine, QtEngine);
    same("image", TVLFormat::Png, NoEngine, NoEngine);
    same("web archive", TVLFormat::WebArchive, NoEngine, NoEngine);
    same("sound", TVLFormat::Mp3, NoEngine, NoEngine);
    same("final draft", TVLFormat::FinalDraft, LibraryEngine, LibraryEngine);
    same("mmd to html", TVLFormat::MmdToHtml, NoEngine, MultiMarkdownEngine);
    same("mmd to latex", TVLFormat::MmdToLatex, NoEngine, MultiMarkdownEngine);
    same("mmd to opml", TVLFormat::MmdToOpml, NoEngine, MultiMarkdownEngine);
    same("mmd to flat odf", TVLFormat::MmdToFlatOdf, NoEngine, MultiMarkdownEngine);
    same("mmd", TVLFormat::Mmd, LibraryEngine, MultiMarkdownEngine);
    same("outline", TVLFormat::Opml, NoEngine, NoEngine);
    same("mind map", TVLFormat::MindMap, NoEngine, NoEngine);
    row("markdown", TVLFormat::Markdown, MarkupEngine, MarkupEngine, NoEngine, NoEngine);
    row("book", TVLFormat::EPubBook, MarkupEngine, MarkupEngine, NoEngine, NoEngine);
    same("fountain", TVLFormat::Fountain, LibraryEngine, LibraryEngine);
}

void TstFormats::anEngineServesAFormat()
{
    QFETCH(TVLFormat::Format, format);
    QTEST(withAll().importEngine(format), "importEngine");
    QTEST(withAll().exportEngine(format), "exportEngine");
    QTEST(withNone().importEngine(format), "plainImportEngine");
    QTEST(withNone().exportEngine(format), "plainExportEngine");
}

void TstFormats::withoutConvertersThereAreFewerFormats()
{
    QCOMPARE(sorted(withAll().importFormats()),
             QList<int>({3, 4, 5, 6, 9, 10, 11, 31, 36, 39, 40, 41}));
    QCOMPARE(sorted(withAll().exportFormats()),
             QList<int>({3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 31, 32, 33, 34, 35, 36, 39, 40, 41}));
    QCOMPARE(sorted(withNone().importFormats()), QList<int>({3, 4, 31, 36, 41}));
    QCOMPARE(sorted(withNone().exportFormats()),
             QList<int>({3, 4, 5, 6, 7, 8, 9, 10, 12, 13, 31, 32, 33, 34, 35, 36, 41}));
    const TVLImportExportConfig officeOnly({.hasOffice = true});
    QCOMPARE(officeOnly.importEngine(TVLFormat::Html), OfficeEngine);
    QVERIFY(!officeOnly.importFormats().contains(TVLFormat::Markdown));
    const TVLImportExportConfig markupOnly({.hasMarkup = true});
    QVERIFY(markupOnly.importFormats().contains(TVLFormat::Markdown));
    QVERIFY(!markupOnly.exportFormats().contains(TVLFormat::Markdown));
}

void TstFormats::anEngineIsFoundForAPair_data()
{
    QTest::addColumn<TVLFormat::Format>("from");
    QTest::addColumn<TVLFormat::Format>("to");
    QTest::addColumn<Engine>("engine");
    QTest::newRow("into the office") << TVLFormat::Rtf << TVLFormat::Docx << OfficeEngine;
    QTest::newRow("out of the office") << TVLFormat::Doc << TVLFormat::Rtf << OfficeEngine;
    QTest::newRow("within the office") << TVLFormat::Doc << TVLFormat::Odt << OfficeEngine;
    QTest::newRow("into markup") << TVLFormat::Rtf << TVLFormat::Markdown << MarkupEngine;
    QTest::newRow("out of markup") << TVLFormat::EPubBook << TVLFormat::Rtf << MarkupEngine;
    QTest::newRow("a page") << TVLFormat::Html << TVLFormat::Rtf << MarkupEngine;
    QTest::newRow("the source decides") << TVLFormat::Docx << TVLFormat::Markdown << OfficeEngine;
    QTest::newRow("and again") << TVLFormat::Markdown << TVLFormat::Docx << MarkupEngine;
    QTest::newRow("none needed") << TVLFormat::Rtf << TVLFormat::PlainText << LibraryEngine;
    QTest::newRow("no way") << TVLFormat::Rtf << TVLFormat::Png << NoEngine;
}

void TstFormats::anEngineIsFoundForAPair()
{
    QFETCH(TVLFormat::Format, from);
    QFETCH(TVLFormat::Format, to);
    QTEST(withAll().findEngine(from, to), "engine");
}

void TstFormats::aMissingConverterIsNamedForAPair()
{
    QCOMPARE(withNone().findEngine(TVLFormat::Docx, TVLFormat::Rtf), OfficeEngine);
    QCOMPARE(withNone().findEngine(TVLFormat::Rtf, TVLFormat::Docx), OfficeEngine);
    QCOMPARE(withNone().findEngine(TVLFormat::Rtf, TVLFormat::Odt), QtEngine);
}

void TstFormats::theConfigurationOfThisComputerStaysOne()
{
    QCOMPARE(TVLImportExportConfig::instance(), TVLImportExportConfig::instance());
}

void TstFormats::theKindleProgramIsThatOfTheOptions()
{
    const QTemporaryDir folder;
    tvlOptions()->setFilePath(folder.filePath(u"options.ini"_s));
    const TVLImportExportConfig config = withNone();
    const QString path = folder.filePath(u"bookmaker"_s);
    tvlOptions()->setValue(u"ImportExport/KindleGenFilePath"_s, path);
    QCOMPARE(config.kindleGenFilePath(), path);
    QVERIFY(!config.kindleGenExists());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(config.kindleGenExists());
}

TVL_TEST(TstFormats)
#include "tst_formats.moc"
