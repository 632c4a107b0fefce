#include "TestMain.h"
#include "TestScale.h"
#include "TextChecks.h"

#include "TVLCoreUtil.h"
#include "TVLTextFormat.h"
#include "TVLTextXhtmlExporter.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

using Fill = void (*)(QTextCursor *);

/** What stands in the body of a page. */
QString bodyOf(const QString &page)
{
    const qsizetype start = page.indexOf(u"<body>"_s) + 6;
    return page.sliced(start, page.indexOf(u"</body>"_s) - start).trimmed();
}

QTextBlockFormat heading(int level)
{
    QTextBlockFormat format;
    format.setHeadingLevel(level);
    return format;
}

QTextCharFormat link(const QString &address)
{
    QTextCharFormat format;
    TVLTextFormat::setLink(&format, address);
    return format;
}

QTextListFormat listFormat(QTextListFormat::Style style, int indent)
{
    QTextListFormat format;
    format.setStyle(style);
    format.setIndent(indent);
    return format;
}

QTextCharFormat commented(const QString &identity, bool isFootnote)
{
    TVLTextCommentLink comment(identity, "{\\rtf1 a {\\b note}}");
    comment.mIsFootnote = isFootnote;
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, comment);
    return format;
}

void insertRedPicture(QTextCursor *cursor, const QString &name)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    cursor->document()->addResource(QTextDocument::ImageResource, QUrl(name), image);
    QTextImageFormat format;
    format.setName(name);
    cursor->insertImage(format);
}

/** The words of a page's body in their order, without the marks of footnotes and comments. */
QString wordsOf(const QByteArray &page)
{
    QXmlStreamReader xml(page);
    QString text;
    bool isInBody = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"body")
            isInBody = true;
        if (xml.isStartElement() && (xml.name() == u"section" || xml.name() == u"sup")
            && xml.attributes().hasAttribute(u"class"_s))
            xml.skipCurrentElement();
        else if (isInBody && xml.isCharacters())
            text += xml.text();
        else if (xml.isStartElement()
                 && QStringList{u"p"_s, u"li"_s, u"td"_s, u"br"_s}.contains(xml.name()))
            text += u' ';
    }
    return xml.hasError() ? xml.errorString() : text.simplified();
}

} // namespace

/** Documents become web pages. */
class TstHtmlExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void textsHaveTheElementsThatMeanThem_data();
    void textsHaveTheElementsThatMeanThem();
    void notesAreGatheredBehindTheText();
    void aBookSaysWhatIsAFootnote();
    void fontAndSizeOfMostOfTheTextStandOnce();
    void theTitleIsThatOfTheDocumentOrTheFile();
    void picturesGoIntoFilesOrThePage();
    void pictureThatCannotBeShownIsItsWords();
    void aPictureThatCannotBeWrittenLeavesThePageThatWas();
    void aPageThatCannotBeWrittenSaysWhy();
    void noDocumentIsAnEmptyPage();
    void theDocumentStaysAsItWas();
    void randomDocumentsKeepTheirWordsInXml();
    void validatorsFindNothing_data();
    void validatorsFindNothing();

private:
    [[nodiscard]] QString path(const QString &name) const { return mDirectory->filePath(name); }
    [[nodiscard]] QString pageOf(const QTextDocument &document, int pictures = 0);

    std::unique_ptr<QTemporaryDir> mDirectory;
};

void TstHtmlExport::init()
{
    mDirectory = std::make_unique<QTemporaryDir>();
    QVERIFY(mDirectory->isValid());
}

QString TstHtmlExport::pageOf(const QTextDocument &document, int pictures)
{
    TVLTextXhtmlExporter exporter(&document);
    if (!exporter.toHtml(path(u"page.html"_s), pictures))
        return exporter.errorString();
    return QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(path(u"page.html"_s)));
}

void TstHtmlExport::textsHaveTheElementsThatMeanThem_data()
{
    QTest::addColumn<Fill>("fill");
    QTest::addColumn<QString>("body");
    const auto row = [](const char *name, Fill fill, const QString &body) {
        QTest::newRow(name) << fill << body;
    };

    row(
        "paragraphs", [](QTextCursor *cursor) { cursor->insertText(u"One\n\nTwo"_s); },
        u"<p>One</p>\n<p><br/></p>\n<p>Two</p>"_s);
    row(
        "what markup is made of",
        [](QTextCursor *cursor) { cursor->insertText(u"a < b & \"c\" > d"_s); },
        u"<p>a &lt; b &amp; &quot;c&quot; &gt; d</p>"_s);
    row(
        "line breaks, blanks and tabs",
        [](QTextCursor *cursor) { cursor->insertText(u"a\u2028b  c\td"_s); },
        u"<p>a<br/>b  c\td</p>"_s);
    row(
        "control characters and half pairs",
        [](QTextCursor *cursor) {
            cursor->insertText(u"a\u0001b"_s + QChar(0xd800) + u"c\u0085d"_s);
        },
        u"<p>ab\ufffdcd</p>"_s);
    row(
        "headings",
        [](QTextCursor *cursor) {
            cursor->setBlockFormat(heading(1));
            cursor->insertText(u"One"_s);
            cursor->insertBlock(heading(6));
            cursor->insertText(u"Six"_s);
        },
        u"<h1>One</h1>\n<h6>Six</h6>"_s);
    row(
        "emphasis",
        [](QTextCursor *cursor) {
            QTextCharFormat all;
            all.setFontWeight(QFont::Bold);
            all.setFontItalic(true);
            all.setFontUnderline(true);
            all.setFontStrikeOut(true);
            cursor->insertText(u"all"_s, all);
            QTextCharFormat high;
            high.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
            cursor->insertText(u"2"_s, high);
            QTextCharFormat low;
            low.setVerticalAlignment(QTextCharFormat::AlignSubScript);
            cursor->insertText(u"3"_s, low);
        },
        u"<p><b><i><u><s>all</s></u></i></b><sup>2</sup><sub>3</sub></p>"_s);
    row(
        "colours",
        [](QTextCursor *cursor) {
            cursor->insertText(u"plain "_s);
            QTextCharFormat format;
            format.setForeground(QColor(255, 0, 0));
            format.setBackground(QColor(0, 0, 255, 51));
            cursor->insertText(u"red"_s, format);
        },
        u"<p>plain <span style=\"color: #ff0000; background-color: rgba(0, 0, 255, 0.2);\">red</span></p>"_s);
    row(
        "alignment and measures",
        [](QTextCursor *cursor) {
            QTextBlockFormat format;
            format.setAlignment(Qt::AlignHCenter);
            format.setTextIndent(18);
            format.setLayoutDirection(Qt::RightToLeft);
            cursor->setBlockFormat(format);
            cursor->insertText(u"centred"_s);
        },
        u"<p dir=\"rtl\" style=\"text-align: center; text-indent: 18px;\">centred</p>"_s);
    row(
        "a list in a list",
        [](QTextCursor *cursor) {
            cursor->insertText(u"one"_s);
            cursor->createList(listFormat(QTextListFormat::ListDecimal, 1));
            cursor->insertBlock();
            cursor->insertText(u"inner"_s);
            cursor->createList(listFormat(QTextListFormat::ListDisc, 2));
            cursor->insertBlock();
            cursor->insertText(u"two"_s);
            cursor->document()->begin().textList()->add(cursor->block());
        },
        u"<ol style=\"list-style-type: decimal;\"><li>one<ul style=\"list-style-type: disc;\"><li>inner</li></ul></li><li>two</li></ol>"_s);
    row(
        "a list that goes on behind a paragraph",
        [](QTextCursor *cursor) {
            cursor->insertText(u"one"_s);
            QTextList *list = cursor->createList(listFormat(QTextListFormat::ListUpperRoman, 1));
            cursor->insertBlock(QTextBlockFormat());
            cursor->insertText(u"between"_s);
            if (cursor->currentList())
                cursor->currentList()->remove(cursor->block());
            cursor->setBlockFormat(QTextBlockFormat());
            cursor->insertBlock(QTextBlockFormat());
            cursor->insertText(u"two"_s);
            list->add(cursor->block());
        },
        u"<ol style=\"list-style-type: upper-roman;\"><li>one</li></ol>\n<p>between</p>\n<ol start=\"2\" style=\"list-style-type: upper-roman;\"><li>two</li></ol>"_s);
    row(
        "a table with a spanning cell",
        [](QTextCursor *cursor) {
            QTextTableFormat format;
            format.setHeaderRowCount(1);
            format.setBorder(0);
            QTextTable *table = cursor->insertTable(2, 2, format);
            table->mergeCells(0, 0, 1, 2);
            table->cellAt(0, 0).firstCursorPosition().insertText(u"head"_s);
            table->cellAt(1, 0).firstCursorPosition().insertText(u"a"_s);
            table->cellAt(1, 1).firstCursorPosition().insertText(u"b"_s);
        },
        u"<p><br/></p>\n<table>\n<tr><th colspan=\"2\"><p>head</p>\n</th></tr>\n<tr><td><p>a</p>\n</td><td><p>b</p>\n</td></tr>\n</table>\n<p><br/></p>"_s);
    row(
        "links",
        [](QTextCursor *cursor) {
            cursor->insertText(u"see "_s);
            cursor->insertText(u"there"_s, link(u"https://example.org/a b?c=1&d=\"2\""_s));
            cursor->insertText(u"!"_s, QTextCharFormat());
        },
        u"<p>see <a href=\"https://example.org/a%20b?c=1&amp;d=%222%22\">there</a>!</p>"_s);
    row(
        "a link to an item of the project is its text",
        [](QTextCursor *cursor) {
            cursor->insertText(u"item"_s, link(TVLTextFormat::internalLinkAddress(12)));
        },
        u"<p>item</p>"_s);
    row(
        "a link to a place of the text",
        [](QTextCursor *cursor) {
            QTextCharFormat place;
            place.setAnchorNames({u"the place"_s});
            cursor->insertText(u"here"_s, place);
            cursor->insertText(u" and "_s, QTextCharFormat());
            cursor->insertText(u"there"_s, link(u"#the place"_s));
        },
        u"<p><span id=\"the_place\"></span>here and <a href=\"#the_place\">there</a></p>"_s);
    row(
        "a remark in the text",
        [](QTextCursor *cursor) {
            cursor->insertText(u"text "_s);
            QTextCharFormat remark;
            remark.setProperty(TVLTextFormat::InlineAnnotation, true);
            cursor->insertText(u"remark"_s, remark);
        },
        u"<p>text <span class=\"annotation\">remark</span></p>"_s);
}

void TstHtmlExport::textsHaveTheElementsThatMeanThem()
{
    QFETCH(Fill, fill);
    QFETCH(QString, body);

    QTextDocument document;
    QTextCursor cursor(&document);
    fill(&cursor);
    QCOMPARE(bodyOf(pageOf(document)), body);
}

void TstHtmlExport::notesAreGatheredBehindTheText()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat footnote;
    footnote.setProperty(TVLTextFormat::InlineFootnote, true);
    cursor.insertText(u"first"_s);
    cursor.insertText(u"foot"_s, footnote);
    cursor.insertText(u" second"_s, commented(u"F"_s, true));
    cursor.insertText(u" third"_s, commented(u"C"_s, false));
    cursor.insertText(u" plain "_s, QTextCharFormat());
    cursor.insertText(u"again"_s, commented(u"C"_s, false));
    QCOMPARE(bodyOf(pageOf(document)),
             u"<p>first<sup class=\"footnote\"><a id=\"tvl-footnote-mark-1\" "
             u"href=\"#tvl-footnote-1\">1</a></sup>"
             " second<sup class=\"footnote\"><a id=\"tvl-footnote-mark-2\" "
             "href=\"#tvl-footnote-2\">2</a></sup>"
             " third<sup class=\"comment\"><a id=\"tvl-comment-mark-1\" "
             "href=\"#tvl-comment-1\">a</a></sup>"
             " plain again</p>\n"
             "<section class=\"footnotes\">\n<ol>\n"
             "<li id=\"tvl-footnote-1\">foot</li>\n"
             "<li id=\"tvl-footnote-2\"><p>a <b>note</b></p></li>\n"
             "</ol>\n</section>\n"
             "<section class=\"comments\">\n<ol type=\"a\">\n"
             "<li id=\"tvl-comment-1\"><p>a <b>note</b></p></li>\n"
             "</ol>\n</section>"_s);
}

void TstHtmlExport::aBookSaysWhatIsAFootnote()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"word"_s, commented(u"F"_s, true));
    cursor.insertText(u"item"_s, link(TVLTextFormat::internalLinkAddress(12)));
    insertRedPicture(&cursor, u"red"_s);
    QStringList pictures;
    QString error;
    TVLTextXhtmlExporter exporter(&document);
    QVERIFY(exporter.toEPubXhtml(path(u"one.xhtml"_s),
                                 {{TVLTextFormat::internalLinkAddress(12), u"two.xhtml"_s}},
                                 &pictures, &error));
    QCOMPARE(error, QString());
    QCOMPARE(pictures, QStringList(path(u"one_files/picture-1.png"_s)));
    const QByteArray page = TVLCoreUtil::ReadBinaryFile(path(u"one.xhtml"_s));
    for (const QByteArray &part : {QByteArrayLiteral("xmlns=\"http://www.w3.org/1999/xhtml\""),
                                   QByteArrayLiteral("xmlns:epub=\"http://www.idpf.org/2007/ops\""),
                                   QByteArrayLiteral("epub:type=\"noteref\">1</a>"),
                                   QByteArrayLiteral("<aside epub:type=\"footnote\"><p>a "),
                                   QByteArrayLiteral("<a href=\"two.xhtml\">item</a>")})
        QVERIFY2(page.contains(part), part + '\n' + page);
}

void TstHtmlExport::fontAndSizeOfMostOfTheTextStandOnce()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat common;
    common.setFontFamilies({u"Odd'Name & \"Sons\""_s});
    common.setFontPointSize(12);
    cursor.insertText(u"most of the text "_s, common);
    common.setFontPointSize(20);
    cursor.insertText(u"big"_s, common);
    const QString page = pageOf(document);
    QVERIFY2(page.contains(
                 u"body { font-family: 'Odd\\27 Name \\26  \\22 Sons\\22 '; font-size: 12pt; }"_s),
             qPrintable(page));
    QCOMPARE(bodyOf(page),
             u"<p>most of the text <span style=\"font-size: 20pt;\">big</span></p>"_s);
}

void TstHtmlExport::theTitleIsThatOfTheDocumentOrTheFile()
{
    QTextDocument document;
    QVERIFY(pageOf(document).contains(u"<title>page</title>"_s));
    document.setMetaInformation(QTextDocument::DocumentTitle, u"My <Book>"_s);
    QVERIFY(pageOf(document).contains(u"<title>My &lt;Book&gt;</title>"_s));
}

void TstHtmlExport::picturesGoIntoFilesOrThePage()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    insertRedPicture(&cursor, u"red"_s);
    insertRedPicture(&cursor, u"red"_s);
    TVLTextXhtmlExporter exporter(&document);
    const QString page = path(u"A page.html"_s);
    QVERIFY(exporter.toHtml(page, TVLTextXhtmlExporter::PicturesBeside));
    const QString img = u"<img src=\"A%20page_files/picture-1.png\" alt=\"\"/>"_s;
    QCOMPARE(bodyOf(QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(page))),
             u"<p>%1%1</p>"_s.arg(img));
    const QImage written(path(u"A page_files/picture-1.png"_s));
    QCOMPARE(written.size(), QSize(3, 2));
    QCOMPARE(QDir(path(u"A page_files"_s)).entryList(QDir::Files).size(), 1);

    const QString inside = pageOf(document, TVLTextXhtmlExporter::PicturesInside);
    QVERIFY2(inside.contains(u"<img src=\"data:image/png;base64,iVBOR"_s), qPrintable(inside));
    QVERIFY(!QFileInfo::exists(path(u"page_files"_s)));
}

void TstHtmlExport::pictureThatCannotBeShownIsItsWords()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextImageFormat format;
    format.setName(u"nowhere"_s);
    format.setProperty(QTextFormat::ImageAltText, u"a <cat>"_s);
    cursor.insertImage(format);
    QCOMPARE(bodyOf(pageOf(document)), u"<p>a &lt;cat&gt;</p>"_s);
}

void TstHtmlExport::aPictureThatCannotBeWrittenLeavesThePageThatWas()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    insertRedPicture(&cursor, u"red"_s);
    QVERIFY(TVLCoreUtil::WriteBinaryFile("mine", path(u"page.html"_s), nullptr));
    QVERIFY(TVLCoreUtil::WriteBinaryFile("a file", path(u"page_files"_s), nullptr));
    TVLTextXhtmlExporter exporter(&document);
    QVERIFY(!exporter.toHtml(path(u"page.html"_s)));
    QCOMPARE(exporter.errorString(), u"The folder can't be made: %1"_s.arg(path(u"page_files"_s)));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"page.html"_s)), QByteArray("mine"));
}

void TstHtmlExport::aPageThatCannotBeWrittenSaysWhy()
{
    QTextDocument document;
    TVLTextXhtmlExporter exporter(&document);
    QVERIFY(!exporter.toHtml(path(u"no folder/page.html"_s)));
    QVERIFY(!exporter.errorString().isEmpty());
    QVERIFY(exporter.toXhtml(path(u"page.xhtml"_s)));
    QCOMPARE(exporter.errorString(), QString());
}

void TstHtmlExport::noDocumentIsAnEmptyPage()
{
    TVLTextXhtmlExporter exporter(nullptr);
    QVERIFY(exporter.toHtml(path(u"page.html"_s)));
    QCOMPARE(bodyOf(QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(path(u"page.html"_s)))),
             QString());
}

void TstHtmlExport::theDocumentStaysAsItWas()
{
    const auto document = makeRandomRichText(7);
    const auto copy = makeRandomRichText(7);
    (void)pageOf(*document);
    QCOMPARE(differenceOfTexts(*document, *copy), QString());
}

void TstHtmlExport::randomDocumentsKeepTheirWordsInXml()
{
    for (int seed = testCases(1'000); seed > 0; --seed) {
        const auto document = makeRandomRichText(quint32(seed));
        TVLTextXhtmlExporter exporter(document.get());
        QVERIFY(exporter.toXhtml(path(u"page.xhtml"_s), TVLTextXhtmlExporter::PicturesInside));
        QString expected;
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
            expected += block.text().remove(QChar::ObjectReplacementCharacter) + u' ';
        QCOMPARE(wordsOf(TVLCoreUtil::ReadBinaryFile(path(u"page.xhtml"_s))),
                 expected.simplified());
    }
}

void TstHtmlExport::validatorsFindNothing_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isXml");

    QTest::newRow("tidy") << u"tidy"_s << QStringList{u"-errors"_s,
                                                      u"-quiet"_s,
                                                      u"-utf8"_s,
                                                      u"--drop-empty-elements"_s,
                                                      u"no"_s,
                                                      u"--mute"_s,
                                                      u"TRIM_EMPTY_ELEMENT"_s}
                          << false;
    QTest::newRow("xmllint") << u"xmllint"_s << QStringList{u"--noout"_s, u"--nonet"_s} << true;
}

void TstHtmlExport::validatorsFindNothing()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(bool, isXml);
    if (QStandardPaths::findExecutable(program).isEmpty())
        QSKIP(qPrintable(program + u" isn't installed."_s));
    QStringList pages;
    for (int seed = testCases(200); seed > 0; --seed) {
        const auto document = makeRandomRichText(quint32(seed));
        pages.append(path(QString::number(seed)));
        TVLTextXhtmlExporter exporter(document.get());
        QVERIFY(isXml ? exporter.toXhtml(pages.constLast()) : exporter.toHtml(pages.constLast()));
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments + pages);
    QVERIFY(process.waitForFinished());
    QCOMPARE(QString::fromUtf8(process.readAll()), QString());
    QCOMPARE(process.exitCode(), 0);
}

TVL_TEST(TstHtmlExport)
#include "tst_htmlexport.moc"
