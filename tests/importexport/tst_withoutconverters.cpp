#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextTransform.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

/** Before anything asks, because what is installed is settled by the first question. */
void hideConverters()
{
    for (const char *variable : {"TAVEL_SOFFICE", "TAVEL_PANDOC", "TAVEL_DOC2ANY", "TAVEL_DOC2MMD"})
        qputenv(variable, "/no/such/program");
}

} // namespace

/** What is left of the formats on a computer that has none of the outside converters. */
class TstWithoutConverters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsThatNeedAConverterAreGone();
    void wordFilesHaveRichText();
    void openDocumentsAreWrittenByQt();
    void aFormatThatIsGoneSaysThatItsConverterIs();
};

void TstWithoutConverters::formatsThatNeedAConverterAreGone()
{
    for (const TVLFormat::Format format :
         {TVLFormat::Docx, TVLFormat::Markdown, TVLFormat::EPubBook}) {
        QVERIFY(!TVLTextTransform::canExport(format));
        QVERIFY(!TVLTextTransform::canImport(format));
        QVERIFY(!TVLTextTransform::canImportAsRtf(format));
    }
    QVERIFY(TVLTextTransform::supportsTavelinorLinksExport(TVLFormat::Doc));
    QVERIFY(!TVLTextTransform::supportsTavelinorLinksExport(TVLFormat::Docx));
    QVERIFY(!TVLTextTransform::supportsTavelinorLinksExport(TVLFormat::Pdf));
}

void TstWithoutConverters::wordFilesHaveRichText()
{
    const QTemporaryDir folder;
    const QString docs = folder.filePath(u"Novel.tavel/Files/Docs"_s);
    QVERIFY(QDir().mkpath(docs));
    TVLTextDocument document;
    QTextCursor(&document).insertText(u"Words"_s);
    QVERIFY(TVLTextDoc::setComment(&document, {0, 5}, {u"A"_s, "{\\rtf1 remark}"}));
    QCOMPARE(TVLTextTransform::exportDocument(&document, docs + u"/12.doc"_s, TVLFormat::Doc, {},
                                              {}, nullptr, false),
             0U);
    QVERIFY(TVLCoreUtil::ReadBinaryFile(docs + u"/12.doc"_s).startsWith("{\\rtf1"));
    QVERIFY(TVLCoreUtil::ReadBinaryFile(docs + u"/12.comments"_s).contains("remark"));
}

void TstWithoutConverters::openDocumentsAreWrittenByQt()
{
    const QTemporaryDir folder;
    QTextDocument document;
    QTextCursor(&document).insertText(u"Words"_s);
    QCOMPARE(TVLTextTransform::exportDocument(&document, folder.filePath(u"a.odt"_s),
                                              TVLFormat::Odt, {}, {}, nullptr, false),
             0U);
    QVERIFY(TVLCoreUtil::ReadBinaryFile(folder.filePath(u"a.odt"_s)).startsWith("PK"));
}

void TstWithoutConverters::aFormatThatIsGoneSaysThatItsConverterIs()
{
    const QTemporaryDir folder;
    QTextDocument document;
    QTextCursor(&document).insertText(u"Words"_s);
    QCOMPARE(TVLTextTransform::exportDocument(&document, folder.filePath(u"a.docx"_s),
                                              TVLFormat::Docx, {}, {}, nullptr, false),
             1U);
    QVERIFY(!QFileInfo::exists(folder.filePath(u"a.docx"_s)));
}

TVL_TEST_PREPARED(TstWithoutConverters, hideConverters)
#include "tst_withoutconverters.moc"
