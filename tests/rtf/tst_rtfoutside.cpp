#include "DocumentDescription.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLTextRtfReader.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

namespace {

/** Starting an office for the first time takes a while. */
constexpr int OfficeMilliseconds = 120'000;

QString sourcePath(const QString &name)
{
    return QStringLiteral(TVL_RTF_OUTSIDE) + u'/' + name;
}

/**
 * A text as words with one blank between them. What stands at the start of a line as the marker of
 * a list goes, since one program makes it part of the text and the other doesn't.
 */
QString normalized(QString text)
{
    static const QRegularExpression marker(
        u"^\\s*([0-9]+\\.|[a-z]\\)|[\u2022\u25e6\u25aa\u2013-])\\s+"_qs,
        QRegularExpression::MultilineOption);
    return text.remove(QChar(QChar::ByteOrderMark)).remove(marker).simplified();
}

} // namespace

/** Documents that other programs write are read as those programs read them. */
class TstRtfOutside : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOfficesTextReadsAsTheOfficeReadsIt();
    void whatWasReadReadsTheSameInAnOffice();
    void exportedNotesAreNotesInAnOffice();
    void aConvertersTextReadsAsItsSource();

private:
    /** Runs the office on a file; the path of the result. */
    [[nodiscard]] QString convert(const QString &path, const QString &format);
    void readOfficesFile(QTextDocument *document, QString *path);

    QTemporaryDir mDirectory;
};

QString TstRtfOutside::convert(const QString &path, const QString &format)
{
    QProcess office;
    office.start(u"soffice"_qs,
                 {u"--headless"_qs,
                  u"-env:UserInstallation=file://%1"_qs.arg(mDirectory.filePath(u"profile"_qs)),
                  u"--convert-to"_qs, format, u"--outdir"_qs, mDirectory.path(), path});
    if (!office.waitForFinished(OfficeMilliseconds))
        return {};
    return mDirectory.filePath(QFileInfo(path).completeBaseName() + u'.'
                               + format.section(u':', 0, 0));
}

void TstRtfOutside::readOfficesFile(QTextDocument *document, QString *path)
{
    if (QStandardPaths::findExecutable(u"soffice"_qs).isEmpty())
        QSKIP("LibreOffice (soffice) isn't installed.");
    *path = convert(sourcePath(u"rich.fodt"_qs), u"rtf"_qs);
    const QByteArray rtf = TVLCoreUtil::ReadBinaryFile(*path);
    QVERIFY(!rtf.isEmpty());
    TVLTextRtfReader reader(document);
    QVERIFY2(reader.read(rtf), qPrintable(reader.errorString()));
}

void TstRtfOutside::anOfficesTextReadsAsTheOfficeReadsIt()
{
    QTextDocument document;
    QString path;
    readOfficesFile(&document, &path);
    if (QTest::currentTestFailed() || path.isEmpty())
        return;
    const QString expected = QString::fromUtf8(
        TVLCoreUtil::ReadBinaryFile(convert(path, u"txt:Text (encoded):UTF8"_qs)));
    QVERIFY(expected.contains(u"Last."));
    QCOMPARE(normalized(document.toPlainText()), normalized(expected));
    const QString description = describeDocument(document);
    for (const QString &part :
         {u"heading 1"_qs, u", bold\n"_qs, u", italic, colour #ff0000, background #ffff00\n"_qs,
          u"link http://example.org/?a=1&b=2\n"_qs, u"item 2 of list 1 (1., level 1)"_qs,
          u"item 2 of list 2 (a), level 2)"_qs, u"table 2 x 2"_qs, u"cell 2,1: spans 1 x 2\n"_qs,
          u"aligned centred"_qs})
        QVERIFY2(description.contains(part), qPrintable(part + u'\n' + description));
}

void TstRtfOutside::whatWasReadReadsTheSameInAnOffice()
{
    QTextDocument document;
    QString path;
    readOfficesFile(&document, &path);
    if (QTest::currentTestFailed() || path.isEmpty())
        return;
    for (const bool exporting : {true, false}) {
        const QString written = mDirectory.filePath(u"written.rtf"_qs);
        QString error;
        QVERIFY2(TVLTextRtf::toRtfFile(written, &document, &error, false, exporting),
                 qPrintable(error));
        const QString text = QString::fromUtf8(
            TVLCoreUtil::ReadBinaryFile(convert(written, u"txt:Text (encoded):UTF8"_qs)));
        QCOMPARE(normalized(text), normalized(document.toPlainText()));
    }
}

void TstRtfOutside::exportedNotesAreNotesInAnOffice()
{
    if (QStandardPaths::findExecutable(u"soffice"_qs).isEmpty())
        QSKIP("LibreOffice (soffice) isn't installed.");
    QTextDocument document;
    QTextCharFormat footnote;
    footnote.setProperty(TVLTextFormat::InlineFootnote, true);
    QTextCharFormat annotation;
    annotation.setProperty(TVLTextFormat::InlineAnnotation, true);
    QTextCursor cursor(&document);
    cursor.insertText(u"Text"_qs, QTextCharFormat());
    cursor.insertText(u"at the foot"_qs, footnote);
    cursor.insertText(u" goes on"_qs, QTextCharFormat());
    cursor.insertText(u"at the side"_qs, annotation);
    cursor.insertText(u" and ends."_qs, QTextCharFormat());
    const QString written = mDirectory.filePath(u"notes.rtf"_qs);
    QString error;
    QVERIFY2(TVLTextRtf::toRtfFile(written, &document, &error, false, true), qPrintable(error));

    QString xml = QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(convert(written, u"fodt"_qs)));
    QVERIFY(!xml.isEmpty());
    xml = xml.mid(xml.indexOf(u"<office:text"_qs));
    const auto content = [&xml](const QString &element) {
        const QRegularExpression whole(u"<%1[ >].*?</%1>"_qs.arg(element),
                                       QRegularExpression::DotMatchesEverythingOption);
        const QRegularExpression tags(u"<[^>]*>"_qs);
        const QString found = whole.match(xml).captured();
        xml.remove(found);
        return QString(found).remove(tags).simplified();
    };
    QVERIFY2(content(u"office:annotation"_qs).endsWith(u"at the side"_qs), qPrintable(xml));
    QVERIFY2(content(u"text:note"_qs).endsWith(u"at the foot"_qs), qPrintable(xml));
    QCOMPARE(content(u"text:p"_qs), u"Text goes on and ends."_qs);
}

void TstRtfOutside::aConvertersTextReadsAsItsSource()
{
    if (QStandardPaths::findExecutable(u"pandoc"_qs).isEmpty())
        QSKIP("pandoc isn't installed.");
    const auto pandoc = [](const QStringList &arguments) {
        QProcess process;
        process.start(u"pandoc"_qs, QStringList(sourcePath(u"rich.md"_qs)) + arguments);
        process.waitForFinished(OfficeMilliseconds);
        return process.readAllStandardOutput();
    };
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    QVERIFY2(reader.read(pandoc({u"-s"_qs, u"-t"_qs, u"rtf"_qs})),
             qPrintable(reader.errorString()));
    const QString expected = QString::fromUtf8(pandoc({u"-t"_qs, u"plain"_qs, u"--wrap=none"_qs}));
    QVERIFY(expected.contains(u"Last."));
    QCOMPARE(normalized(document.toPlainText()), normalized(expected));
}

TVL_TEST(TstRtfOutside)
#include "tst_rtfoutside.moc"
