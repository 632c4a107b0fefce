#include "TestMain.h"

#include "TTextTransform.h"
#include "TVLConverters.h"
#include "TVLCoreUtil.h"
#include "TVLImportExportConfig.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

/** What stands before letters of a format. */
QString markOf(const QTextCharFormat &format)
{
    const bool isBold = format.fontWeight() >= QFont::Bold;
    return u"{%1%2}"_s.arg(isBold ? u"b"_s : QString(), format.fontItalic() ? u"i"_s : QString());
}

/** A paragraph's text, with a mark wherever letters are bold or italic from there on, or aren't any
 * more. What blanks are doesn't count. */
QString describedParagraph(const QTextBlock &block)
{
    QString line;
    QString last = markOf({});
    for (auto part = block.begin(); part != block.end(); ++part) {
        const QString mark = markOf(part.fragment().charFormat());
        for (const QChar c : part.fragment().text()) {
            if (!c.isSpace() && mark != last) {
                line += mark;
                last = mark;
            }
            line += c.isSpace() ? QChar(u' ') : c;
        }
    }
    return line.simplified();
}

/** The paragraphs that have words. */
QString described(const QTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString line = describedParagraph(block);
        if (!line.isEmpty())
            lines.append(line);
    }
    return lines.join(u'\n');
}

void addParagraph(QTextCursor *cursor, const QStringList &texts)
{
    // One text is plain, the next bold, the next italic, the next both, and so on.
    for (qsizetype i = 0; i < texts.size(); ++i) {
        QTextCharFormat format;
        format.setFontWeight(i % 2 == 1 ? QFont::Bold : QFont::Normal);
        format.setFontItalic(i % 4 > 1);
        cursor->insertText(texts.at(i), format);
    }
    cursor->insertBlock();
}

/** Words that a converter may stumble over. */
void fill(QTextDocument *document)
{
    QTextCursor cursor(document);
    addParagraph(&cursor, {u"The harbour was "_s, u"never"_s, u" quiet "_s, u"at night"_s, u"."_s});
    addParagraph(&cursor,
                 {u"\u201cWhat\u2019s that?\u201d she asked\u2014\u00fcberrascht\u2026"_s,
                  u" caf\u00e9 \u20ac5"_s, u" \u0421\u043b\u043e\u0432\u0430"_s});
    addParagraph(&cursor, {u"5 * 3 # 2 _is_ [not] <b>a</b> \\ `sign` ~ of ^ $markup$ | {x}"_s});
    addParagraph(&cursor,
                 {u"\U0001d538\U0001f600abc \u65e5\u672c\u8a9e 'single' \"double\" -- ---"_s});
    addParagraph(&cursor, {u"1. No list, 2) and none here"_s, u"bold"_s, u"glued"_s});
    for (int i = 0; i < 20; ++i)
        addParagraph(&cursor, {u"Paragraph %1 of many, "_s.arg(i), u"each with its own words."_s});
}

bool writeRtf(const QString &path, const QTextDocument &document)
{
    QFile file(path);
    TVLTextRtfWriter writer(&file);
    writer.setExportingMode(true);
    return file.open(QIODevice::WriteOnly) && writer.write(&document, false);
}

QString describedRtf(const QString &path)
{
    QFile file(path);
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    if (!file.open(QIODevice::ReadOnly) || !reader.read(&file))
        return u"unreadable: "_s + reader.errorString();
    return described(document);
}

QByteArray contentOfFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isXml(const QByteArray &content)
{
    QXmlStreamReader xml(content);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

} // namespace

/** Conversions by the real programs, where they are installed. */
class TstRealConversions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aTextComesBackEqual_data();
    void aTextComesBackEqual();
    void whatIsNoDocumentIsTold_data();
    void whatIsNoDocumentIsTold();
    void aPageHasItsOwnPicturesOnly();
    void aBookKeepsItsPictures();
    void theHeadOfAMarkdownFileIsText();
    void multiMarkdownIsConverted_data();
    void multiMarkdownIsConverted();
    void aFlatTextOpensInTheOffice();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    [[nodiscard]] QString convert(const QString &source, const QString &target) const;
    void write(const QString &name, const QByteArray &content) const;

    std::unique_ptr<QTemporaryDir> mFolder;
};

void TstRealConversions::init()
{
    const auto installed = TVLImportExportConfig::installedConverters();
    if (!installed.hasOffice || !installed.hasMarkup)
        QSKIP("LibreOffice or pandoc isn't installed");
    mFolder = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", mFolder->path().toUtf8());
}

void TstRealConversions::cleanup()
{
    if (mFolder) {
        QCOMPARE(QDir(TVLCoreUtil::GetTavelinorTempPath())
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList());
    }
    qunsetenv("TMPDIR");
}

/** Empty, or what went wrong. */
QString TstRealConversions::convert(const QString &source, const QString &target) const
{
    QString error;
    const auto from = TVLFormat::format(source);
    const auto to = TVLFormat::format(target);
    const auto code = TTextTransform::transformFileViaTools(
        path(source), path(target), to, TVLImportExportConfig::instance()->findEngine(from, to),
        &error, false);
    return code == TTextTransform::NoError ? QString() : u"%1 %2"_s.arg(code).arg(error);
}

void TstRealConversions::write(const QString &name, const QByteArray &content) const
{
    QVERIFY(TVLCoreUtil::WriteBinaryFile(content, path(name), nullptr));
}

void TstRealConversions::aTextComesBackEqual_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char *suffix : {"docx", "odt", "doc", "md", "epub"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
}

void TstRealConversions::aTextComesBackEqual()
{
    QFETCH(QString, suffix);
    QTextDocument document;
    fill(&document);
    QVERIFY(writeRtf(path(u"a.rtf"_s), document));
    const QString expected = described(document);
    QCOMPARE(describedRtf(path(u"a.rtf"_s)), expected);

    QCOMPARE(convert(u"a.rtf"_s, u"My Book."_s + suffix), QString());
    QCOMPARE(convert(u"My Book."_s + suffix, u"b.rtf"_s), QString());
    QString back = describedRtf(path(u"b.rtf"_s));
    // A book begins with its title.
    if (suffix == u"epub")
        back.remove(u"{b}My Book\n"_s);
    QCOMPARE(back.split(u'\n'), expected.split(u'\n'));
}

void TstRealConversions::whatIsNoDocumentIsTold_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a book") << u"epub"_s << QByteArray("no zip at all");
    QTest::newRow("DOCX") << u"docx"_s << QByteArray("PK\x03\x04 and no more");
}

void TstRealConversions::whatIsNoDocumentIsTold()
{
    QFETCH(QString, suffix);
    QFETCH(QByteArray, content);
    write(u"a."_s + suffix, content);
    const QString error = convert(u"a."_s + suffix, u"b.rtf"_s);
    QVERIFY2(!error.isEmpty(), qPrintable(describedRtf(path(u"b.rtf"_s))));
    QVERIFY(!QFile::exists(path(u"b.rtf"_s)));
}

void TstRealConversions::aPageHasItsOwnPicturesOnly()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    QDir().mkpath(path(u"pages/in here"_s));
    QVERIFY(image.save(path(u"outside.png"_s)));
    QVERIFY(image.save(path(u"pages/a.png"_s)));
    QVERIFY(image.save(path(u"pages/in here/b.bmp"_s)));
    write(u"pages/words.png"_s, "secret words");
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png"));
    write(u"pages/page.html"_s,
          "<html><head><title>T</title></head><body><h1>Head</h1><p>One <b>bold</b> and "
          "<i>italic</i> word, \xc3\xbc.</p><p><img src=\"a.png\" alt=\"first\">"
          "<img src=\"in%20here/b.bmp\" alt=\"second\"><img src=\"data:image/png;base64,"
              + buffer.data().toBase64()
              + "\" alt=\"third\"></p><p><img src=\"../outside.png\" alt=\"fourth\"> <img "
                "src=\"file://"
              + path(u"outside.png"_s).toUtf8()
              + "\" alt=\"fifth\"> <img src=\"http://127.0.0.1:9/x.png\" alt=\"sixth\"> <img "
                "src=\"words.png\" alt=\"seventh\"></p><iframe src=\"words.png\"></iframe></body>");
    QCOMPARE(convert(u"pages/page.html"_s, u"b.rtf"_s), QString());
    QString text = describedRtf(path(u"b.rtf"_s));
    QVERIFY(text.contains(u"{b}Head"_s));
    QVERIFY(text.contains(u"One {b}bold {}and {i}italic {}word, \u00fc."_s));
    QVERIFY2(text.contains(u"fourth fifth sixth seventh"_s), qPrintable(text));
    QCOMPARE(text.count(QChar::ObjectReplacementCharacter), 3);
    QVERIFY(!text.contains(u"secret"_s) && !text.contains(u"image:"_s)
            && !text.contains(u"first"_s));
}

void TstRealConversions::aBookKeepsItsPictures()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"Before "_s);
    cursor.insertImage(image);
    cursor.insertText(u" behind."_s);
    QVERIFY(writeRtf(path(u"a.rtf"_s), document));
    QCOMPARE(convert(u"a.rtf"_s, u"b.epub"_s), QString());
    QCOMPARE(convert(u"b.epub"_s, u"c.rtf"_s), QString());
    const QString text = describedRtf(path(u"c.rtf"_s));
    QVERIFY2(text.contains(u"Before \ufffc behind."_s), qPrintable(text));
}

void TstRealConversions::theHeadOfAMarkdownFileIsText()
{
    write(u"a.md"_s, "---\ntitle: The Title\nauthor: The Author\n---\n\nThe *text*.\n");
    QCOMPARE(convert(u"a.md"_s, u"b.rtf"_s), QString());
    QCOMPARE(describedRtf(path(u"b.rtf"_s)), u"{b}The Title\nThe Author\nThe {i}text{}."_s);
}

void TstRealConversions::multiMarkdownIsConverted_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<bool>("isXmlFile");
    QTest::newRow("html") << u"html"_s << u"a.html"_s
                          << QStringList({u"<em>slow</em>"_s, u"<link rel=\"x\"/>"_s, u"A note"_s,
                                          u"<title>a</title>"_s})
                          << false;
    QTest::newRow("latex") << u"latex"_s << u"a.tex"_s
                           << QStringList({u"\\emph{slow}"_s, u"\\section{Head}"_s, u"A note"_s})
                           << false;
    QTest::newRow("opml") << u"opml"_s << u"a.opml"_s
                          << QStringList({u"<outline text=\"Head\""_s, u"*slow*"_s}) << true;
    QTest::newRow("odf") << u"odf"_s << u"a.fodt"_s
                         << QStringList({u"office:document"_s, u"slow"_s, u"A note"_s,
                                         u"application/vnd.oasis.opendocument.text"_s})
                         << true;
}

void TstRealConversions::multiMarkdownIsConverted()
{
    QFETCH(QString, format);
    QFETCH(QString, target);
    QFETCH(QStringList, words);
    QFETCH(bool, isXmlFile);
    write(u"a.mmd"_s, "# Head #\n\nThe *slow* boat.[^n]\n\n[^n]: A note.\n");
    QCOMPARE(TTextTransform::transformProcess(TTextTransform::tvlDoc2MmdPath(),
                                              {u"-b"_s, u"-t"_s, format, path(u"a.mmd"_s),
                                               u"--rawhtmlheader=<link rel=\"x\"/>"_s},
                                              mFolder->path(), nullptr, false),
             TTextTransform::NoError);
    const QByteArray content = contentOfFile(path(target));
    for (const QString &word : words)
        QVERIFY2(content.contains(word.toUtf8()), (word.toUtf8() + '\n' + content).constData());
    QVERIFY(!isXmlFile || isXml(content));
}

void TstRealConversions::aFlatTextOpensInTheOffice()
{
    write(u"a.mmd"_s, "# Head #\n\nThe *slow* boat.\n");
    QCOMPARE(TTextTransform::transformProcess(TTextTransform::tvlDoc2MmdPath(),
                                              {u"-b"_s, u"-t"_s, u"odf"_s, path(u"a.mmd"_s)},
                                              mFolder->path(), nullptr, false),
             TTextTransform::NoError);
    // The office tells by the content what a file is.
    QVERIFY(QFile::rename(path(u"a.fodt"_s), path(u"b.odt"_s)));
    QCOMPARE(convert(u"b.odt"_s, u"c.rtf"_s), QString());
    const QString text = describedRtf(path(u"c.rtf"_s));
    QVERIFY2(text.contains(u"slow"_s) && text.contains(u"Head"_s), qPrintable(text));
}

TVL_TEST(TstRealConversions)
#include "tst_realconversions.moc"
