#include "StandIn.h"
#include "TestMain.h"

#include "TTextTransform.h"
#include "TVLCoreUtil.h"
#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLScriptElement.h"
#include "TVLScriptMode.h"
#include "TVLSelectTextCodecDialog.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextFormat.h"
#include "TVLTextTransform.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QTextCursor>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;
using Options = TVLTextTransform::Options;

QByteArray bytesOf(const QString &path)
{
    return TVLCoreUtil::ReadBinaryFile(path);
}

void put(const QString &path, const QByteArray &bytes)
{
    if (!TVLCoreUtil::WriteBinaryFile(bytes, path, nullptr))
        qFatal("could not write %s", qPrintable(path));
}

std::unique_ptr<QTextDocument> documentOf(const QString &text)
{
    auto document = std::make_unique<QTextDocument>();
    QTextCursor(document.get()).insertText(text);
    return document;
}

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/** Answers the next codec dialog and keeps what it showed. */
class CodecAnswer
{
public:
    CodecAnswer(const QByteArray &codec, bool isAccepted)
    {
        QTimer::singleShot(0, &mContext, [this, codec, isAccepted] {
            auto *dialog =
                qobject_cast<TVLSelectTextCodecDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            mQuestion = dialog->findChild<QLabel *>()->text();
            auto *codecs = dialog->findChild<QComboBox *>();
            for (int i = 0; i < codecs->count(); ++i)
                mShown.append(codecs->itemText(i));
            if (!codec.isEmpty())
                codecs->setCurrentIndex(codecs->findData(codec));
            isAccepted ? dialog->accept() : dialog->reject();
        });
    }

    QString mQuestion;
    QStringList mShown;

private:
    QObject mContext;
};

} // namespace

/** Documents go to files of other formats and come back. */
class TstTransforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void documentsAreWritten_data();
    void documentsAreWritten();
    void filesThatCannotBeOpenedAreTold_data();
    void filesThatCannotBeOpenedAreTold();
    void pdfHasTitleWordsFontsAndLinks();
    void postScriptIsMadeOfThePages();
    void anEncodingIsAskedForOrTaken();
    void aDefaultEncodingIsNotAskedFor();
    void commentsGoBesideADocumentOfAProject();
    void otherFormatsGoByWayOfRichText();
    void aConverterThatFailsLeavesNoTemporaryFile();
    void filesAreRead_data();
    void filesAreRead();
    void filesThatCannotBeReadAreTold();
    void screenplaysKeepTheirElements();
    void foundFormatsComeFromSuffixes();
    void unknownWaysGoToConverters();
    void theInteractiveExportTellsWhatWentWrong_data();
    void theInteractiveExportTellsWhatWentWrong();
    void theInteractiveExportAsksBeforeItOverwrites();
    void theInteractiveExportRefusesNothingness();
    void picturesAreSaved();
    void soundsAreConverted();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<EnvironmentValue> mTemporaryPlace;
    std::unique_ptr<TVLUnattendedMessageBoxes> mBoxes;
};

void TstTransforms::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(mFolder->path()).mkdir(u"tmp"_s));
    mTemporaryPlace = std::make_unique<EnvironmentValue>("TMPDIR", path(u"tmp"_s).toUtf8());
    mBoxes = std::make_unique<TVLUnattendedMessageBoxes>();
    tvlOptions()->setFilePath(path(u"options.ini"_s));
}

void TstTransforms::cleanup()
{
    mBoxes.reset();
    QCOMPARE(QDir(TVLCoreUtil::GetTavelinorTempPath())
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
    QCOMPARE(QDir(path(u"tmp"_s)).entryList({u"tavel-import*"_s}), QStringList());
    mTemporaryPlace.reset();
}

void TstTransforms::documentsAreWritten_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QByteArray>("beginning");

    const auto row = [](const char *title, Format format, const QString &name,
                        const QByteArray &beginning, const QString &written = {}) {
        QTest::newRow(title) << format << name << (written.isEmpty() ? name : written) << beginning;
    };
    row("plain text", TVLFormat::PlainText, u"a.txt"_s, "Words \xc3\xa9\nin two lines");
    row("rich text", TVLFormat::Rtf, u"a.rtf"_s, "{\\rtf1");
    row("web page", TVLFormat::Html, u"a.html"_s, "<!DOCTYPE html>");
    row("page of XML", TVLFormat::Xhtml, u"a.xhtml"_s, "<?xml version=");
    row("book", TVLFormat::EPub, u"a.epub"_s, "<?xml version=", u"a.xhtml"_s);
    row("book of the other kind", TVLFormat::Kindle, u"a.mobi"_s, "<?xml version=", u"a.xhtml"_s);
    row("book with a suffix in capitals", TVLFormat::EPub, u"a.EPUB"_s, "<?xml version=");
    row("PDF", TVLFormat::Pdf, u"a.pdf"_s, "%PDF-");
    row("Final Draft", TVLFormat::FinalDraft, u"a.fdx"_s, "<?xml version=");
    row("Fountain", TVLFormat::Fountain, u"a.fountain"_s, "");
}

void TstTransforms::documentsAreWritten()
{
    QFETCH(Format, format);
    QFETCH(QString, name);
    QFETCH(QString, written);
    QFETCH(QByteArray, beginning);

    const auto document = documentOf(u"Words \u00e9\nin two lines"_s);
    QString error;
    QCOMPARE(TVLTextTransform::exportDocument(document.get(), path(name), format, "UTF-8", {},
                                              &error, false),
             0U);
    QCOMPARE(error, QString());
    const QByteArray bytes = bytesOf(path(written));
    QVERIFY2(bytes.startsWith(beginning) && !bytes.isEmpty(), bytes.left(80));
    QCOMPARE(QFileInfo::exists(path(name)), name == written);
}

void TstTransforms::filesThatCannotBeOpenedAreTold_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<unsigned int>("code");

    QTest::newRow("plain text") << TVLFormat::PlainText << 7U;
    QTest::newRow("rich text") << TVLFormat::Rtf << 7U;
    QTest::newRow("web page") << TVLFormat::Html << 6U;
    QTest::newRow("page of XML") << TVLFormat::Xhtml << 6U;
    QTest::newRow("book") << TVLFormat::EPub << 6U;
    QTest::newRow("Final Draft") << TVLFormat::FinalDraft << 7U;
    QTest::newRow("Fountain") << TVLFormat::Fountain << 10U;
    QTest::newRow("PDF says nothing of its file") << TVLFormat::Pdf << 0U;
}

void TstTransforms::filesThatCannotBeOpenedAreTold()
{
    QFETCH(Format, format);
    const auto document = documentOf(u"Words"_s);
    QTEST(TVLTextTransform::exportDocument(document.get(), path(u"no folder/a"_s), format, "UTF-8",
                                           {}, nullptr, false),
          "code");
    if (format == TVLFormat::PlainText)
        QCOMPARE(TVLTextTransform::exportOdfViaQt(document.get(), path(u"no folder/a"_s)), 7U);
}

void TstTransforms::pdfHasTitleWordsFontsAndLinks()
{
    const auto document = documentOf(u"Words to find "_s);
    document->setMetaInformation(QTextDocument::DocumentTitle, u"The title"_s);
    QTextCharFormat link;
    TVLTextFormat::setLink(&link, u"https://example.org/"_s);
    QTextCursor cursor(document.get());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u"a link"_s, link);
    const QString pdf = path(u"a.pdf"_s);
    QCOMPARE(TVLTextTransform::exportPdfPsViaQt(document.get(), QPrinter::PdfFormat, pdf), 0U);
    QVERIFY2(bytesOf(pdf).contains("/URI"), "the PDF has no link");
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        QSKIP("The tools of poppler aren't installed.");
    const QString words = outputOf(u"pdftotext"_s, {pdf, u"-"_s}).simplified();
    QCOMPARE(words.normalized(QString::NormalizationForm_KC), u"Words to find a link"_s);
    QVERIFY(outputOf(u"pdfinfo"_s, {pdf}).contains(u"The title"_s));
    const QStringList fonts =
        outputOf(u"pdffonts"_s, {pdf}).split(u'\n', Qt::SkipEmptyParts).sliced(2);
    QVERIFY(!fonts.isEmpty());
    for (const QString &font : fonts)
        QVERIFY2(font.simplified().section(u' ', -5, -5) == u"yes", qPrintable(font));
}

void TstTransforms::postScriptIsMadeOfThePages()
{
    const auto document = documentOf(u"Words"_s);
    const unsigned int code = TVLTextTransform::exportDocument(
        document.get(), path(u"a.ps"_s), TVLFormat::PostScript, {}, {}, nullptr, false);
    if (QStandardPaths::findExecutable(u"pdftops"_s).isEmpty()) {
        QCOMPARE(code, 1U);
        return;
    }
    QCOMPARE(code, 0U);
    QVERIFY(bytesOf(path(u"a.ps"_s)).startsWith("%!PS"));
}

void TstTransforms::anEncodingIsAskedForOrTaken()
{
    const auto document = documentOf(u"\u00e9"_s);
    const auto write = [&](const QByteArray &codec) {
        return TVLTextTransform::exportDocument(document.get(), path(u"a.txt"_s),
                                                TVLFormat::PlainText, codec, {}, nullptr, false);
    };
    QCOMPARE(write("ISO-8859-1"), 0U);
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "\xe9");
    QCOMPARE(write("no such codec"), 0U);
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "\xc3\xa9");
    {
        const CodecAnswer answer("ISO-8859-1", true);
        QCOMPARE(write({}), 0U);
        QCOMPARE(bytesOf(path(u"a.txt"_s)), "\xe9");
        QCOMPARE(answer.mQuestion, u"Export %1 using codec:"_s.arg(path(u"a.txt"_s)));
        QVERIFY(answer.mShown.value(0).endsWith(u" (Recommended)"_s));
    }
    {
        const CodecAnswer refusal({}, false);
        QCOMPARE(write({}), 0U);
        QCOMPARE(bytesOf(path(u"a.txt"_s)), "\xc3\xa9");
    }
    QTextDocument read;
    put(path(u"a.txt"_s), "\xe9");
    const CodecAnswer answer("ISO-8859-1", true);
    QCOMPARE(
        TVLTextTransform::importDocument(&read, path(u"a.txt"_s), TVLFormat::PlainText, {}, {}),
        0U);
    QCOMPARE(read.toPlainText(), u"\u00e9"_s);
    QCOMPARE(answer.mQuestion, u"Import %1 using codec:"_s.arg(path(u"a.txt"_s)));
}

void TstTransforms::aDefaultEncodingIsNotAskedFor()
{
    tvlOptions()->setDefaultTextEncoding("ISO-8859-1");
    const auto document = documentOf(u"\u00e9"_s);
    QCOMPARE(TVLTextTransform::exportDocument(document.get(), path(u"a.txt"_s),
                                              TVLFormat::PlainText, {}, {}, nullptr, false),
             0U);
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "\xe9");
    tvlOptions()->setDefaultTextEncoding({});
}

void TstTransforms::commentsGoBesideADocumentOfAProject()
{
    TVLTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"Words"_s);
    QVERIFY(TVLTextDoc::setComment(&document, {0, 5}, {u"A"_s, "{\\rtf1 remark}"}));
    const QString docs = path(u"Novel.tavel/Files/Docs"_s);
    QVERIFY(QDir().mkpath(docs));
    const auto write = [&](const QString &file, Format format = TVLFormat::Rtf) {
        return TVLTextTransform::exportDocument(&document, file, format, "UTF-8", {}, nullptr,
                                                false);
    };
    QCOMPARE(write(docs + u"/12.rtf"_s), 0U);
    QVERIFY(bytesOf(docs + u"/12.comments"_s).contains("remark"));
    QCOMPARE(write(docs + u"/twelve.rtf"_s), 0U);
    QCOMPARE(QDir(docs).entryList(QDir::Files).size(), 3);
}

void TstTransforms::otherFormatsGoByWayOfRichText()
{
    const EnvironmentValue converter("TAVEL_DOC2ANY", standInPath().toUtf8());
    const StandInRecord record("record");
    const auto document = documentOf(u"Words"_s);
    QString error;
    QCOMPARE(TVLTextTransform::transformDocumentViaTools(document.get(), path(u"a.md"_s), {},
                                                         TVLFormat::Markdown, &error, false),
             0U);
    QCOMPARE(bytesOf(path(u"a.md"_s)), "converted");
    const QStringList lines = record.lines();
    QVERIFY2(lines.at(lines.size() - 2).endsWith(u".rtf"_s), qPrintable(lines.join(u'\n')));
    QCOMPARE(TVLTextTransform::transformDocumentViaDoc2Any(document.get(), path(u"a.docx"_s),
                                                           TVLImportExport::OfficeEngine,
                                                           TVLFormat::Docx, false),
             0U);
    QCOMPARE(bytesOf(path(u"a.docx"_s)), "converted");
}

void TstTransforms::aConverterThatFailsLeavesNoTemporaryFile()
{
    const EnvironmentValue converter("TAVEL_DOC2ANY", "/no/such/converter");
    const auto document = documentOf(u"Words"_s);
    QCOMPARE(TVLTextTransform::transformDocumentViaTools(document.get(), path(u"a.md"_s), {},
                                                         TVLFormat::Markdown, nullptr, false),
             1U);
    QVERIFY(!QFileInfo::exists(path(u"a.md"_s)));
    QTextDocument read;
    put(path(u"a.docx"_s), "x");
    QCOMPARE(TVLTextTransform::importDocument(&read, path(u"a.docx"_s), TVLFormat::Docx, {}, {}),
             1U);
}

void TstTransforms::filesAreRead_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("plain text") << TVLFormat::PlainText << QByteArray("a\r\nb\xc3\xa9")
                                << u"a\nb\u00e9"_s;
    QTest::newRow("plain text with a mark of UTF-16") << TVLFormat::PlainText
                                                      << QByteArray("\xff\xfe"
                                                                    "a\0b\0",
                                                                    6)
                                                      << u"ab"_s;
    QTest::newRow("MultiMarkdown") << TVLFormat::Mmd << QByteArray("# a") << u"# a"_s;
    QTest::newRow("rich text") << TVLFormat::Rtf << QByteArray("{\\rtf1 a\\par b}") << u"a\nb"_s;
    QTest::newRow("Fountain") << TVLFormat::Fountain << QByteArray("INT. HOUSE - DAY\n\nRain.\n")
                              << u"INT. HOUSE - DAY\nRain."_s;
    QTest::newRow("Fountain of nothing") << TVLFormat::Fountain << QByteArray() << u"before"_s;
    QTest::newRow("Final Draft")
        << TVLFormat::FinalDraft
        << QByteArray("<FinalDraft DocumentType=\"Script\"><Content><Paragraph Type=\"Action\">"
                      "<Text>Rain.</Text></Paragraph></Content></FinalDraft>")
        << u"Rain."_s;
}

void TstTransforms::filesAreRead()
{
    QFETCH(Format, format);
    QFETCH(QByteArray, bytes);
    const QString file = path(u"a."_s + TVLFormat::extension(format));
    put(file, bytes);
    const TVLUnattendedTextCodec codec("UTF-8");
    const auto document = documentOf(u"before"_s);
    QCOMPARE(TVLTextTransform::importDocument(document.get(), file, format, {}, "UTF-8"), 0U);
    QTEST(document->toPlainText(), "text");
}

void TstTransforms::filesThatCannotBeReadAreTold()
{
    QTextDocument document;
    const auto read = [&](const QString &name, Format format) {
        return TVLTextTransform::importDocument(&document, path(name), format, {}, "UTF-8");
    };
    QCOMPARE(read(u"missing.txt"_s, TVLFormat::PlainText), 5U);
    QCOMPARE(read(u"missing.rtf"_s, TVLFormat::Rtf), 5U);
    put(path(u"bad.rtf"_s), "{\\rtf1 cut off");
    const EnvironmentValue noInspector("TAVEL_RTFI", "/no/such/program");
    QCOMPARE(read(u"bad.rtf"_s, TVLFormat::Rtf), 8U);
    QCOMPARE(document.toPlainText(), u"cut off"_s);
    put(path(u"bad.fdx"_s), "<FinalDraft><cut off");
    QCOMPARE(read(u"bad.fdx"_s, TVLFormat::FinalDraft), 8U);
}

void TstTransforms::screenplaysKeepTheirElements()
{
    const QList<TVLScriptElement> elements = TVLScriptMode::factoryDefaults().mElements;
    QCOMPARE(TVLScriptElement::toScriptElementList(TVLScriptElement::toVariant(elements)),
             elements);
    QCOMPARE(TVLScriptElement::toScriptElementList(QVariant(5)), QList<TVLScriptElement>());
    const Options options = {{u"--fdxscriptelements"_s, TVLScriptElement::toVariant(elements)},
                             {u"--fdxcommandparameters"_s, QStringList(u"ignored"_s)}};
    put(path(u"a.fountain"_s), "INT. HOUSE - DAY\n\nRain.\n");
    const TVLUnattendedTextCodec codec("UTF-8");
    QTextDocument document;
    for (const auto &[format, name] : {std::pair(TVLFormat::FinalDraft, u"b.fdx"_s),
                                       std::pair(TVLFormat::Fountain, u"b.fountain"_s)}) {
        QCOMPARE(TVLTextTransform::importDocument(&document, path(u"a.fountain"_s),
                                                  TVLFormat::Fountain, options, {}),
                 0U);
        QCOMPARE(TVLTextTransform::exportDocument(&document, path(name), format, {}, options,
                                                  nullptr, false),
                 0U);
        QTextDocument again;
        QCOMPARE(TVLTextTransform::importDocument(&again, path(name), format, options, {}), 0U);
        QCOMPARE(again.toPlainText(), document.toPlainText());
        QCOMPARE(again.begin().blockFormat().stringProperty(TVLTextFormat::ScriptElement),
                 u"Scene Heading"_s);
    }
}

void TstTransforms::foundFormatsComeFromSuffixes()
{
    put(path(u"a.rtf"_s), "{\\rtf1 Words}");
    const TVLUnattendedTextCodec codec("UTF-8");
    QCOMPARE(TVLTextTransform::transformFile(path(u"a.rtf"_s), TVLFormat::NoFormat,
                                             path(u"a.txt"_s), TVLFormat::NoFormat, {}),
             0U);
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "Words");
}

void TstTransforms::unknownWaysGoToConverters()
{
    put(path(u"a.docx"_s), "x");
    put(path(u"a.rtf"_s), "{\\rtf1 x}");
    QCOMPARE(TVLTextTransform::transformDocQt(path(u"a.docx"_s), TVLFormat::NoFormat,
                                              path(u"a.txt"_s), TVLFormat::NoFormat, {}),
             3U);
    QCOMPARE(TVLTextTransform::transformDocQt(path(u"a.rtf"_s), TVLFormat::NoFormat,
                                              path(u"a.docx"_s), TVLFormat::NoFormat, {}),
             3U);
    const EnvironmentValue converter("TAVEL_DOC2ANY", standInPath().toUtf8());
    const StandInRecord record("record");
    QCOMPARE(TVLTextTransform::transformFile(path(u"a.rtf"_s), TVLFormat::NoFormat,
                                             path(u"b.docx"_s), TVLFormat::NoFormat, {}),
             0U);
    QCOMPARE(bytesOf(path(u"b.docx"_s)), "converted");
}

void TstTransforms::theInteractiveExportTellsWhatWentWrong_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("information");

    QTest::newRow("writing") << TVLFormat::Html << u"Export Error"_s << QString() << QString();
    QTest::newRow("no converter") << TVLFormat::Mmd << u"Document Converter"_s
                                  << u"Could not convert to required format"_s
                                  << u"Format Converter not found."_s;
}

void TstTransforms::theInteractiveExportTellsWhatWentWrong()
{
    QFETCH(Format, format);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, information);
    const EnvironmentValue noConverter("TAVEL_DOC2MMD", "/no/such/converter");
    const TVLUnattendedTextCodec codec("UTF-8");
    const auto document = documentOf(u"Words"_s);
    QVERIFY(!TVLTextTransform::exportDocument(document.get(), path(u"no folder/a"_s), format, {},
                                              true, nullptr, false));
    const auto boxes = mBoxes->takeBoxes();
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.constFirst().title, title);
    if (!text.isEmpty())
        QCOMPARE(boxes.constFirst().text, text);
    if (!information.isEmpty())
        QCOMPARE(boxes.constFirst().informativeText, information);
}

void TstTransforms::theInteractiveExportAsksBeforeItOverwrites()
{
    const auto document = documentOf(u"Words"_s);
    put(path(u"a.txt"_s), "mine");
    const TVLUnattendedTextCodec codec("UTF-8");
    const auto write = [&](bool confirm) {
        return TVLTextTransform::exportDocument(document.get(), path(u"a"_s), TVLFormat::PlainText,
                                                {}, confirm, nullptr, false);
    };
    QVERIFY(!write(true));
    QCOMPARE(mBoxes->takeBoxes().size(), 1);
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "mine");
    mBoxes->setAnswer(QMessageBox::Yes);
    QVERIFY(write(true));
    QCOMPARE(bytesOf(path(u"a.txt"_s)), "Words");
    QCOMPARE(mBoxes->takeBoxes().size(), 1);
    QVERIFY(write(false));
    QCOMPARE(mBoxes->takeBoxes().size(), 0);
}

void TstTransforms::theInteractiveExportRefusesNothingness()
{
    const auto document = documentOf(u"Words"_s);
    const auto write = [&](const QTextDocument *text, const QString &file, Format format) {
        return TVLTextTransform::exportDocument(text, file, format, {}, false, nullptr, false);
    };
    QVERIFY(!write(nullptr, path(u"a.txt"_s), TVLFormat::PlainText));
    QVERIFY(!write(document.get(), QString(), TVLFormat::PlainText));
    QVERIFY(!write(document.get(), path(u"a.txt"_s), TVLFormat::Print));
    QVERIFY(!write(document.get(), path(u"a.txt"_s), TVLFormat::Png));
    QCOMPARE(mBoxes->takeBoxes().size(), 0);
}

void TstTransforms::picturesAreSaved()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(TVLTextTransform::exportImage(image, path(u"a"_s), TVLFormat::Png));
    QCOMPARE(QImage(path(u"a.png"_s)).size(), QSize(3, 2));
    QVERIFY(TVLTextTransform::exportPixmap(QPixmap::fromImage(image), path(u"b.PNG"_s),
                                           TVLFormat::Png));
    QCOMPARE(QImage(path(u"b.PNG"_s)).size(), QSize(3, 2));
    QVERIFY(!TVLTextTransform::exportImage({}, path(u"c"_s), TVLFormat::Png));
    QVERIFY(!TVLTextTransform::exportPixmap({}, path(u"c"_s), TVLFormat::Png));
    QVERIFY(TVLTextTransform::toPdf(image).startsWith("%PDF-"));
}

void TstTransforms::soundsAreConverted()
{
    QCOMPARE(TVLTextTransform::wavToMp3(path(u"missing.wav"_s), QString(), QString()), 1U);
    put(path(u"a.wav"_s), "x");
    if (!QFileInfo::exists(QApplication::applicationDirPath() + u"/tools/lame/lame.exe"_s))
        QCOMPARE(TVLTextTransform::wavToMp3(path(u"a.wav"_s), QString(), u"Title"_s), 1U);
}

TVL_TEST(TstTransforms)
#include "tst_transforms.moc"
