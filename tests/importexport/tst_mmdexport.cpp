#include "StandIn.h"
#include "TestMain.h"

#include "TTextDoc.h"
#include "TVLCoreUtil.h"
#include "TVLTextFormat.h"
#include "TVLTextTransform.h"

#include <QDir>
#include <QImage>
#include <QStandardPaths>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLFormat::Format;

QTextCharFormat weight(int weight, bool italic = false)
{
    QTextCharFormat format;
    format.setFontWeight(weight);
    format.setFontItalic(italic);
    return format;
}

QTextCharFormat aligned(QTextCharFormat::VerticalAlignment alignment)
{
    QTextCharFormat format;
    format.setVerticalAlignment(alignment);
    return format;
}

void insertPicture(QTextDocument *document)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::blue);
    document->addResource(QTextDocument::ImageResource, QUrl(u"blue"_s), image);
    QTextImageFormat format;
    format.setName(u"blue"_s);
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertImage(format);
}

} // namespace

/** Documents become MultiMarkdown, and what its converter makes of that. */
class TstMmdExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void formatsBecomeSigns();
    void picturesBecomeFiles();
    void theConverterIsCalled_data();
    void theConverterIsCalled();
    void headersComeFirst_data();
    void headersComeFirst();
    void aFileOfTheNameOfTheIntermediateOneComesBack();
    void theSourceItselfNeedsNoConverter();
    void documentsStayAsTheyWere();
    void otherFormatsAndNoDocumentAreRefused();
    void withoutConverterNothingIsWritten();
    void textsWithPicturesOrLinksGetAFolder_data();
    void textsWithPicturesOrLinksGetAFolder();
    void theRealConverterWritesBesideTheSource();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    [[nodiscard]] unsigned int write(Format format, const QString &name,
                                     const QStringList &parameters = {});

    std::unique_ptr<QTemporaryDir> mFolder;
    QTextDocument mDocument;
};

void TstMmdExport::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mDocument.clear();
    QTextCursor(&mDocument).insertText(u"Words"_s);
}

unsigned int TstMmdExport::write(Format format, const QString &name, const QStringList &parameters)
{
    return TVLTextTransform::exportAsMmd(&mDocument, path(name), format, "UTF-8",
                                         {{u"--mmdcommandparameters"_s, parameters}});
}

void TstMmdExport::formatsBecomeSigns()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"plain "_s, QTextCharFormat());
    cursor.insertText(u" bold "_s, weight(QFont::Bold));
    cursor.insertText(u"and both"_s, weight(QFont::Bold, true));
    cursor.insertText(u" bold"_s, weight(QFont::Bold));
    cursor.insertText(u" x"_s, QTextCharFormat());
    cursor.insertText(u"2"_s, aligned(QTextCharFormat::AlignSuperScript));
    cursor.insertText(u"3"_s, aligned(QTextCharFormat::AlignSubScript));
    cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    cursor.insertText(u"slanted"_s, weight(QFont::Normal, true));
    cursor.insertText(u"   "_s, weight(QFont::Bold));
    TTextDoc::charFormatToMmd(&document);
    QCOMPARE(document.toPlainText(), u"plain  **bold *and both* bold** x^2^~3~\n*slanted*   "_s);
    TTextDoc::charFormatToMmd(nullptr);
}

void TstMmdExport::picturesBecomeFiles()
{
    insertPicture(&mDocument);
    insertPicture(&mDocument);
    TTextDoc::exportImagesToMmd(&mDocument, mFolder->path());
    const QStringList files = QDir(mFolder->path()).entryList(QDir::Files);
    QCOMPARE(files.size(), 1);
    QCOMPARE(QImage(path(files.constFirst())).size(), QSize(3, 2));
    QCOMPARE(mDocument.toPlainText(), u"Words![](%1)![](%1)"_s.arg(files.constFirst()));
}

void TstMmdExport::theConverterIsCalled_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QStringList>("parameters");
    QTest::addColumn<QStringList>("arguments");

    const QStringList common = {u"--nonotes=false"_s, u"--nosmart=false"_s, u"--nolabels=true"_s,
                                u"--NOSMART=FALSE"_s, u"--nolabels=false"_s};
    const QStringList commonArguments = {u"--nosmart"_s, u"--nolabels"_s, u"--nonotes"_s};
    const auto row = [](const char *name, Format format, const QStringList &parameters,
                        const QStringList &arguments) {
        QTest::newRow(name) << format << parameters << arguments;
    };
    row("HTML", TVLFormat::MmdToHtml, {}, {u"-b"_s, u"-t"_s, u"html"_s});
    row("HTML with all", TVLFormat::MmdToHtml,
        common
            + QStringList{u"--process-html=true"_s, u"--xslt=true"_s, u"--compatibility=true"_s,
                          u"--filter-styles=true"_s, u"--filter-html=true"_s},
        QStringList{u"-b"_s, u"-t"_s, u"html"_s} + commonArguments
            + QStringList{u"--filter-html"_s, u"--filter-styles"_s, u"--compatibility"_s,
                          u"mmd-xslt"_s, u"--process-html"_s});
    row("LaTeX with all", TVLFormat::MmdToLatex, common + QStringList(u"--xslt=true"_s),
        QStringList{u"-b"_s, u"-t"_s, u"latex"_s, u"mmd2tex-xslt"_s} + commonArguments);
    row("OPML with all", TVLFormat::MmdToOpml, common + QStringList(u"--xslt=true"_s),
        QStringList{u"-b"_s, u"-t"_s, u"opml"_s} + commonArguments);
    row("flat ODF with all", TVLFormat::MmdToFlatOdf, common + QStringList(u"--xslt=true"_s),
        QStringList{u"-b"_s, u"-t"_s, u"odf"_s} + commonArguments);
}

void TstMmdExport::theConverterIsCalled()
{
    QFETCH(Format, format);
    QFETCH(QStringList, parameters);
    QFETCH(QStringList, arguments);
    const EnvironmentValue converter("TAVEL_DOC2MMD", standInPath().toUtf8());
    const StandInRecord record("record");
    const QString name = u"a.b."_s + TVLFormat::extension(format);
    QVERIFY(TVLCoreUtil::WriteBinaryFile("old", path(name), nullptr));
    QCOMPARE(write(format, name, parameters), 0U);
    const QString folder = QFileInfo(standInPath()).absolutePath();
    QCOMPARE(record.lines(),
             QStringList(folder) + arguments + QStringList(path(u"a.b.mmd"_s)) + parameters);
    QVERIFY(!QFileInfo::exists(path(u"a.b.mmd"_s)));
    QVERIFY(!QFileInfo::exists(path(name)));
}

void TstMmdExport::headersComeFirst_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QStringList>("parameters");
    QTest::addColumn<QString>("header");

    const auto row = [](const char *name, Format format, const QStringList &parameters,
                        const QString &header) {
        QTest::newRow(name) << format << parameters << header;
    };
    row("none", TVLFormat::MmdToHtml, {}, QString());
    row("of HTML", TVLFormat::MmdToHtml, {u"--x"_s, u"--rawhtmlheader=<b>"_s},
        u"HTML Header: <b>  \n"_s);
    row("of HTML without a value", TVLFormat::MmdToHtml, {u"--x"_s, u"--rawhtmlheader="_s},
        QString());
    row("of HTML behind one without a value", TVLFormat::MmdToHtml,
        {u"--rawhtmlheader="_s, u"--rawhtmlheader=<b>"_s}, QString());
    row("of ODF, without its text", TVLFormat::MmdToFlatOdf, {u"--rawodfxmlheader=<b>"_s},
        u"ODF Header:   \n"_s);
    row("of ODF without a value", TVLFormat::MmdToFlatOdf, {u"--x"_s, u"--rawodfxmlheader="_s},
        u"ODF Header:   \n"_s);
    row("of ODF without a value in the first place", TVLFormat::MmdToFlatOdf,
        {u"--rawodfxmlheader="_s}, QString());
    row("of HTML for another format", TVLFormat::MmdToLatex, {u"--rawhtmlheader=<b>"_s}, QString());
}

void TstMmdExport::headersComeFirst()
{
    QFETCH(Format, format);
    QFETCH(QStringList, parameters);
    // A converter that copies its input shows what stood in the file.
    QFile copier(path(u"copier"_s));
    QVERIFY(copier.open(QIODevice::WriteOnly));
    copier.write("#!/bin/sh\nfor a in \"$@\"; do case $a in *.mmd) cat \"$a\" > \""
                 + path(u"seen"_s).toUtf8() + "\";; esac; done\n");
    copier.close();
    QVERIFY(copier.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const EnvironmentValue converter("TAVEL_DOC2MMD", copier.fileName().toUtf8());
    QCOMPARE(write(format, u"a.out"_s, parameters), 0U);
    QFETCH(QString, header);
    QCOMPARE(QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(path(u"seen"_s))), header + u"Words"_s);
}

void TstMmdExport::aFileOfTheNameOfTheIntermediateOneComesBack()
{
    QVERIFY(TVLCoreUtil::WriteBinaryFile("mine", path(u"a.mmd"_s), nullptr));
    for (const QByteArray &program : {standInPath().toUtf8(), QByteArrayLiteral("/no/program")}) {
        const EnvironmentValue converter("TAVEL_DOC2MMD", program);
        const StandInRecord record("record");
        (void)write(TVLFormat::MmdToHtml, u"a.html"_s);
        QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"a.mmd"_s)), "mine");
        QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"a.mmd"_s));
    }
}

void TstMmdExport::theSourceItselfNeedsNoConverter()
{
    QTextCursor cursor(&mDocument);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u" bold"_s, weight(QFont::Bold));
    QCOMPARE(write(TVLFormat::Mmd, u"a.mmd"_s), 0U);
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"a.mmd"_s)), "Words **bold**");
    QCOMPARE(write(TVLFormat::Mmd, u"no folder/a.mmd"_s), 7U);
}

void TstMmdExport::documentsStayAsTheyWere()
{
    insertPicture(&mDocument);
    const QString before = mDocument.toHtml();
    QCOMPARE(write(TVLFormat::Mmd, u"a.mmd"_s), 0U);
    QCOMPARE(mDocument.toHtml(), before);
}

void TstMmdExport::otherFormatsAndNoDocumentAreRefused()
{
    QCOMPARE(TVLTextTransform::exportAsMmd(nullptr, path(u"a"_s), TVLFormat::Mmd, {}, {}), 9U);
    QCOMPARE(write(TVLFormat::Html, u"a"_s), 10U);
}

void TstMmdExport::withoutConverterNothingIsWritten()
{
    const EnvironmentValue converter("TAVEL_DOC2MMD", "/no/such/converter");
    QVERIFY(!TVLTextTransform::multiMarkDownExists());
    QCOMPARE(TVLTextTransform::exportDocument(&mDocument, path(u"a.mmd"_s), TVLFormat::Mmd, "UTF-8",
                                              {}, nullptr, false),
             1U);
    QVERIFY(!QFileInfo::exists(path(u"a.mmd"_s)));
}

void TstMmdExport::textsWithPicturesOrLinksGetAFolder_data()
{
    QTest::addColumn<bool>("hasPicture");
    QTest::addColumn<bool>("hasLink");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("result");

    QTest::newRow("plain") << false << false << u"/x/Book.mmd"_s << u"/x/Book.mmd"_s;
    QTest::newRow("picture") << true << false << u"/x/Book.mmd"_s << u"/x/Book.mmd/Book.mmd"_s;
    QTest::newRow("link") << false << true << u"/x/Book.mmd"_s << u"/x/Book.mmd/Book.mmd"_s;
    QTest::newRow("in its own folder")
        << true << false << u"/Book.mmd/Book.mmd"_s << u"/Book.mmd/Book.mmd"_s;
    for (const QString &end : {u".mmd"_s, u"_mmd"_s, u"-mmd"_s})
        QTest::newRow(qPrintable(u"in a folder that ends in "_s + end))
            << true << false << u"/x%1/Book.mmd"_s.arg(end) << u"/x%1/Book.mmd"_s.arg(end);
}

void TstMmdExport::textsWithPicturesOrLinksGetAFolder()
{
    QFETCH(bool, hasPicture);
    QFETCH(bool, hasLink);
    QFETCH(QString, path);
    if (hasPicture)
        insertPicture(&mDocument);
    if (hasLink) {
        QTextCharFormat link;
        TVLTextFormat::setLink(&link, TVLTextFormat::internalLinkAddress(3));
        QTextCursor(&mDocument).insertText(u"there"_s, link);
    }
    QTEST(TVLTextTransform::mmdExportPath(path, &mDocument), "result");
}

void TstMmdExport::theRealConverterWritesBesideTheSource()
{
    if (!TVLTextTransform::multiMarkDownExists()
        || QStandardPaths::findExecutable(u"pandoc"_s).isEmpty())
        QSKIP("pandoc or the converter isn't installed.");
    mDocument.setPlainText(u"# Title\n\nSome *words*."_s);
    for (const auto &[format, name, part] :
         {std::tuple(TVLFormat::MmdToHtml, u"a.html"_s, QByteArray("<em>words</em>")),
          std::tuple(TVLFormat::MmdToLatex, u"a.tex"_s, QByteArray("\\emph{words}")),
          std::tuple(TVLFormat::MmdToOpml, u"a.opml"_s, QByteArray("Title")),
          std::tuple(TVLFormat::MmdToFlatOdf, u"a.fodt"_s, QByteArray("words"))}) {
        QCOMPARE(write(format, name), 0U);
        const QByteArray bytes = TVLCoreUtil::ReadBinaryFile(path(name));
        QVERIFY2(bytes.contains(part), bytes);
    }
}

TVL_TEST(TstMmdExport)
#include "tst_mmdexport.moc"
