#include "TestMain.h"

#include "TVLFileKinds.h"
#include "TVLTextFiles.h"
#include "TvlMedia.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

/** What reads a file. */
enum class By { Nothing, PlainTextReader, RichTextReader };

} // namespace

Q_DECLARE_METATYPE(By)

/** What becomes of files that are imported. */
class TstFileKinds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSuffixSaysWhatBecomesOfAFile_data();
    void aSuffixSaysWhatBecomesOfAFile();
    void soundAndFilmAreMedia();
    void aReaderReads();
};

void TstFileKinds::aSuffixSaysWhatBecomesOfAFile_data()
{
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<By>("reader");
    QTest::addColumn<bool>("isTextElsewhere"); ///< Outside the Draft.
    QTest::addColumn<bool>("isTextOnRequest"); ///< The same when web pages are to become texts.
    const auto row = [](const char *suffix, TVL::NodeType type, bool isTextElsewhere,
                        bool isTextOnRequest, By reader = By::Nothing) {
        QTest::newRow(suffix) << type << reader << isTextElsewhere << isTextOnRequest;
    };
    row("txt", TVL::Text, true, true, By::PlainTextReader);
    row("TXT", TVL::Text, true, true, By::PlainTextReader);
    row("rtf", TVL::Text, true, true, By::RichTextReader);
    row("fdx", TVL::Other, true, true);
    row("fountain", TVL::Other, true, true);
    row("opml", TVL::Other, true, true);
    row("mm", TVL::Other, true, true);
    row("html", TVL::WebArchive, false, true);
    row("Htm", TVL::WebArchive, false, true);
    row("mht", TVL::WebArchive, false, false);
    row("webarchive", TVL::WebArchive, true, true);
    row("pdf", TVL::PDF, false, false);
    row("psd", TVL::Image, true, true);
    row("png", TVL::Image, false, false);
    row("JPG", TVL::Image, false, false);
    row("bmp", TVL::Image, false, false);
    row("mp3", TVL::Media, false, false);
    row("MOV", TVL::Media, false, false);
    row("docx", TVL::Other, true, true);
    row("odt", TVL::Other, true, true);
    row("md", TVL::Other, true, true);
    row("xyz", TVL::Other, true, true);
    row("", TVL::Other, true, true);
}

void TstFileKinds::aSuffixSaysWhatBecomesOfAFile()
{
    QFETCH(By, reader);
    const QString suffix = QString::fromLatin1(QTest::currentDataTag());
    QTEST(TVLFileKinds::suffixToNodeType(suffix), "type");
    const TVLFileKinds::Reader readers[] = {nullptr, tvlReadPlainTextFile, tvlReadRichTextFile};
    QVERIFY(TVLFileKinds::textReader(suffix) == readers[int(reader)]);
    QTEST(TVLFileKinds::becomesText(suffix, false, false), "isTextElsewhere");
    QTEST(TVLFileKinds::becomesText(suffix, false, true), "isTextOnRequest");
    QVERIFY(TVLFileKinds::becomesText(suffix, true, false));
    QCOMPARE(TVLFileKinds::isOutline(suffix), suffix == u"opml" || suffix == u"mm");
}

void TstFileKinds::soundAndFilmAreMedia()
{
    const QStringList extensions = TvlMedia::displayMediaFormats();
    QVERIFY(extensions.contains(u"mp3"_s) && extensions.contains(u"mp4"_s));
    for (const QString &extension : extensions) {
        QCOMPARE(extension, extension.toLower());
        QCOMPARE(TVLFileKinds::suffixToNodeType(extension), TVL::Media);
    }
}

void TstFileKinds::aReaderReads()
{
    const QTemporaryDir folder;
    const auto readOf = [&folder](const QString &name, const QByteArray &content) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return u"unwritten"_s;
        file.close();
        QString error;
        const auto document =
            TVLFileKinds::textReader(QFileInfo(name).suffix())(file.fileName(), &error);
        return document ? document->toPlainText() : error;
    };
    QCOMPARE(readOf(u"a.txt"_s, "One\r\ntwo\n"), u"One\ntwo"_s);
    QCOMPARE(readOf(u"a.rtf"_s, "{\\rtf1 One {\\b two}}"), u"One two"_s);
    QCOMPARE(readOf(u"b.rtf"_s, "{\\rtf1 One"), u"The file ends before its text does."_s);
    QCOMPARE(readOf(u"b.txt"_s, "\xff"),
             u"it isn't text in UTF-8, nor in another encoding with a byte order mark"_s);
}

TVL_TEST(TstFileKinds)
#include "tst_filekinds.moc"
