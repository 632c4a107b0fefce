#include "StorageFixtures.h"
#include "TVLFileUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNodeProperties.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString Docs = u"Files/Docs/"_s;

QString dataFolder(const QUuid &uuid)
{
    return u"Files/Data/"_s + uuid.toString(QUuid::WithoutBraces).toUpper() + u'/';
}

QString mobileFolder(const QUuid &uuid)
{
    return u"Mobile/Data/"_s + uuid.toString(QUuid::WithoutBraces).toUpper() + u'/';
}

/** Makes files in a folder of a project and returns their paths. */
QStringList writeFiles(const TestProject &project, const QString &folder, const QStringList &names)
{
    QStringList paths;
    for (const QString &name : names) {
        project.writeFile(folder + name, "content");
        paths.append(project.path(folder + name));
    }
    return paths;
}

/** The forms in which operations without `Path` in their name take a project. */
QStringList namesOf(const TestProject &project)
{
    return {project.path(), project.path() + u'/', project.binderPath()};
}

TVLProjectNodeProperties propertiesOf(int id, const QString &extension)
{
    TVLProjectNodeProperties properties;
    properties.mId = id;
    properties.mUuid = uuidOf(id);
    properties.mFileExtension = extension;
    return properties;
}

const QByteArray Sha1OfNothing = QByteArray::fromHex("da39a3ee5e6b4b0d3255bfef95601890afd80709");
const QByteArray Sha1OfAbc = QByteArray::fromHex("a9993e364706816aba3e25717850c26c9cd0d89d");

} // namespace

class TstDocumentPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Existence
    void numberedDocumentsAreFound();
    void documentsInAnItemsFolderAreFound();
    void aTypeWithoutAFileDoesNotExist();
    void foldersOfItemsAreFound();
    void anItemHasFiles_data();
    void anItemHasFiles();
    void anItemWithAFolderHasFiles();

    // Main files
    void theMainFileOfAnItemsFolder_data();
    void theMainFileOfAnItemsFolder();
    void theMainFileIsSearchedOnBothSides();
    void theFilesOfAMobileItem();
    void theNumberedMainFileHasTheExtension_data();
    void theNumberedMainFileHasTheExtension();
    void theRtfIsTheMainFileWhenItIsThere();
    void theExtensionOfANumberedItem_data();
    void theExtensionOfANumberedItem();

    // Enumerations
    void theNumberedFilesBesideTheMainOne();
    void allNumberedFiles();
    void theNumberedFilesThatExist();
    void theFilesThatExistInAnItemsFolder();
    void theVersionDecidesWhichFilesAreMeant_data();
    void theVersionDecidesWhichFilesAreMeant();

    // Hashes
    void aHashIsTheRawSha1OfTheContent_data();
    void aHashIsTheRawSha1OfTheContent();
    void theHashesOfAnItemsFiles();
    void whatCannotBeReadHasNoHash();
    void otherAlgorithmsCanBeAskedFor();
};

void TstDocumentPaths::numberedDocumentsAreFound()
{
    const TestProject project;
    writeFiles(project, Docs, {u"12.rtf"_s, u"13_notes.rtf"_s});
    for (const QString &path : namesOf(project)) {
        QVERIFY(Format::docsDocumentExists(path, 12, TVL::MainText));
        QVERIFY(!Format::docsDocumentExists(path, 12, TVL::NotesText));
        QVERIFY(Format::docsDocumentExists(path, 13, TVL::NotesText));
        QVERIFY(!Format::docsDocumentExists(path, 13, TVL::MainText));
        QVERIFY(!Format::docsDocumentExists(path, 14, TVL::MainText));
    }
}

void TstDocumentPaths::documentsInAnItemsFolderAreFound()
{
    const TestProject project;
    writeFiles(project, dataFolder(uuidOf(1)), {u"content.rtf"_s});
    writeFiles(project, mobileFolder(uuidOf(1)), {u"notes.rtf"_s});
    for (const QString &path : namesOf(project)) {
        QVERIFY(Format::dataDocumentExists(path, uuidOf(1), TVL::MainText));
        QVERIFY(!Format::dataDocumentExists(path, uuidOf(1), TVL::NotesText));
        QVERIFY(!Format::dataDocumentExists(path, uuidOf(2), TVL::MainText));
        QVERIFY(Format::mobileDocumentExists(path, uuidOf(1), TVL::NotesText));
        QVERIFY(!Format::mobileDocumentExists(path, uuidOf(1), TVL::MainText));
    }
}

void TstDocumentPaths::aTypeWithoutAFileDoesNotExist()
{
    const TestProject project;
    writeFiles(project, Docs, {u"12.pdf"_s});
    writeFiles(project, dataFolder(uuidOf(1)), {u"content.pdf"_s});
    QVERIFY(!Format::docsDocumentExists(project.path(), 12, TVL::ForeignFile));
    QVERIFY(!Format::dataDocumentExists(project.path(), uuidOf(1), TVL::ForeignFile));
    QVERIFY(!Format::mobileDocumentExists(project.path(), uuidOf(1), TVL::ForeignFile));
    QVERIFY(Format::md5(project.path(), 12, TVL::ForeignFile).isEmpty());
}

void TstDocumentPaths::foldersOfItemsAreFound()
{
    const TestProject project;
    writeFiles(project, dataFolder(uuidOf(1)), {u"x"_s});
    writeFiles(project, mobileFolder(uuidOf(2)), {u"x"_s});
    for (const QString &path : namesOf(project)) {
        QVERIFY(Format::dataDocumentFolderExists(path, uuidOf(1)));
        QVERIFY(!Format::dataDocumentFolderExists(path, uuidOf(2)));
        QVERIFY(!Format::mobileDocumentFolderExists(path, uuidOf(1)));
        QVERIFY(Format::mobileDocumentFolderExists(path, uuidOf(2)));
    }
}

void TstDocumentPaths::anItemHasFiles_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("expected");

    for (const char *name : {"12.rtf", "12.styles", "12.comments", "12_notes.rtf",
                             "12_notes.styles", "12_synopsis.txt"})
        QTest::newRow(name) << QString::fromLatin1(name) << true;
    for (const char *name : {"12.pdf", "12.links", "13.rtf", "112.rtf", "-1.rtf"})
        QTest::newRow(name) << QString::fromLatin1(name) << false;
}

void TstDocumentPaths::anItemHasFiles()
{
    QFETCH(QString, fileName);
    QFETCH(bool, expected);

    const TestProject project;
    writeFiles(project, Docs, {fileName});
    for (const QString &path : namesOf(project)) {
        QCOMPARE(Format::hasFiles(path, 12), expected);
        QVERIFY(!Format::hasFiles(path, -1));
    }
}

void TstDocumentPaths::anItemWithAFolderHasFiles()
{
    const TestProject project;
    QVERIFY(!Format::hasFiles(project.path(), uuidOf(1)));
    QVERIFY(QDir().mkpath(project.path(dataFolder(uuidOf(1)))));
    for (const QString &path : namesOf(project))
        QVERIFY(Format::hasFiles(path, uuidOf(1)));
}

void TstDocumentPaths::theMainFileOfAnItemsFolder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QStringList{u"x"_s} << QString();
    QTest::newRow("text") << QStringList{u"content.rtf"_s} << u"content.rtf"_s;
    QTest::newRow("PDF beside all others")
        << QStringList{u"content.comments"_s, u"content.pdf"_s,  u"content.styles"_s,
                       u"content.links"_s,    u"notes.rtf"_s,    u"synopsis.txt"_s,
                       u"notes.styles"_s,     u"content2.jpg"_s, u"Content.jpg"_s}
        << u"content.pdf"_s;
    QTest::newRow("only others") << QStringList{u"content.comments"_s, u"content.styles"_s,
                                                u"content.links"_s}
                                 << QString();
    QTest::newRow("no extension") << QStringList{u"content"_s} << u"content"_s;
    QTest::newRow("two extensions") << QStringList{u"content.tar.gz"_s} << u"content.tar.gz"_s;
    QTest::newRow("folder") << QStringList{u"content.rtf/file"_s} << QString();
}

void TstDocumentPaths::theMainFileOfAnItemsFolder()
{
    QFETCH(QStringList, names);
    QFETCH(QString, expected);

    const TestProject project;
    writeFiles(project, u"folder/"_s, names);
    QCOMPARE(Format::findContentDocument(project.path(u"folder"_s)),
             expected.isEmpty() ? QString() : project.path(u"folder/"_s + expected));
    QCOMPARE(Format::findContentDocument(project.path(u"nowhere"_s)), QString());
}

void TstDocumentPaths::theMainFileIsSearchedOnBothSides()
{
    const TestProject project;
    const QStringList desktop = writeFiles(project, dataFolder(uuidOf(1)), {u"content.pdf"_s});
    const QStringList mobile = writeFiles(project, mobileFolder(uuidOf(1)), {u"content.rtf"_s});
    for (const QString &path : namesOf(project)) {
        QCOMPARE(Format::findDesktopContentDocument(path, uuidOf(1)), desktop.constFirst());
        QCOMPARE(Format::findMobileContentDocument(path, uuidOf(1)), mobile.constFirst());
        QCOMPARE(Format::findDesktopContentDocument(path, uuidOf(2)), QString());
        QCOMPARE(Format::findMobileContentDocument(path, uuidOf(2)), QString());
    }
}

void TstDocumentPaths::theFilesOfAMobileItem()
{
    const TestProject project;
    writeFiles(project, mobileFolder(uuidOf(1)),
               {u"content.rtf"_s, u"notes.rtf"_s, u"folder/file"_s});
    QStringList names = Format::mobileDataNodePathFiles(project.path(), uuidOf(1));
    names.sort();
    QCOMPARE(names, (QStringList{u"content.rtf"_s, u"notes.rtf"_s}));
    QVERIFY(Format::mobileDataNodePathFiles(project.path(), uuidOf(2)).isEmpty());
}

void TstDocumentPaths::theNumberedMainFileHasTheExtension_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QString() << u"12.rtf"_s;
    QTest::newRow("without a dot") << u"pdf"_s << u"12.pdf"_s;
    QTest::newRow("with a dot") << u".pdf"_s << u"12.pdf"_s;
    QTest::newRow("two") << u"tar.gz"_s << u"12.tar.gz"_s;
}

void TstDocumentPaths::theNumberedMainFileHasTheExtension()
{
    QFETCH(QString, extension);
    QFETCH(QString, expected);

    QCOMPARE(Format::constructMainNodeFilePath(u"/P.tavel"_s, 12, extension),
             u"/P.tavel/Files/Docs/"_s + expected);
}

void TstDocumentPaths::theRtfIsTheMainFileWhenItIsThere()
{
    const TestProject project;
    QCOMPARE(Format::findMainNodeFilePathHdd(project.path(), 12), QString());
    writeFiles(project, Docs, {u"112.pdf"_s, u"12_notes.rtf"_s, u"2.pdf"_s});
    QCOMPARE(Format::findMainNodeFilePathHdd(project.path(), 12), QString());
    writeFiles(project, Docs, {u"12.pdf"_s});
    QCOMPARE(Format::findMainNodeFilePathHdd(project.path(), 12), project.path(Docs + u"12.pdf"_s));
    writeFiles(project, Docs, {u"12.rtf"_s, u"12.avi"_s});
    QCOMPARE(Format::findMainNodeFilePathHdd(project.path(), 12), project.path(Docs + u"12.rtf"_s));
}

void TstDocumentPaths::theExtensionOfANumberedItem_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QStringList{u"13.rtf"_s, u"12_notes.rtf"_s} << QString();
    QTest::newRow("text") << QStringList{u"12.rtf"_s} << u"rtf"_s;
    QTest::newRow("PDF beside others")
        << QStringList{u"12.comments"_s, u"12.links"_s, u"12.pdf"_s, u"12.styles"_s} << u"pdf"_s;
    QTest::newRow("only others") << QStringList{u"12.comments"_s, u"12.links"_s, u"12.styles"_s}
                                 << QString();
    QTest::newRow("two extensions") << QStringList{u"12.tar.gz"_s} << u"gz"_s;
    QTest::newRow("folder") << QStringList{u"12.rtfd/file"_s} << QString();
    QTest::newRow("case") << QStringList{u"12.PDF"_s} << u"PDF"_s;
}

void TstDocumentPaths::theExtensionOfANumberedItem()
{
    QFETCH(QStringList, names);
    QFETCH(QString, expected);

    const TestProject project;
    writeFiles(project, Docs, names);
    for (const QString &path : namesOf(project))
        QCOMPARE(Format::findExtension(path, 12), expected);
}

void TstDocumentPaths::theNumberedFilesBesideTheMainOne()
{
    QCOMPARE(Format::supportingNodeFilePaths(u"/P"_s, 12),
             (QStringList{u"/P/Files/Docs/12.styles"_s, u"/P/Files/Docs/12.comments"_s,
                          u"/P/Files/Docs/12_notes.rtf"_s, u"/P/Files/Docs/12_notes.styles"_s,
                          u"/P/Files/Docs/12_synopsis.txt"_s}));
}

void TstDocumentPaths::allNumberedFiles()
{
    for (const QString &extension : {u"pdf"_s, u".pdf"_s}) {
        QCOMPARE(Format::nodeFilePaths(u"/P"_s, 12, extension),
                 QStringList(u"/P/Files/Docs/12.pdf"_s)
                     + Format::supportingNodeFilePaths(u"/P"_s, 12));
    }
}

void TstDocumentPaths::theNumberedFilesThatExist()
{
    const TestProject project;
    QVERIFY(Format::existingNodeFilePaths(project.path(), 12, {}).isEmpty());
    const QStringList some = writeFiles(project, Docs, {u"12_notes.rtf"_s, u"12_synopsis.txt"_s});
    writeFiles(project, Docs, {u"12.links"_s, u"13.rtf"_s, u"12.pdf"_s});
    QCOMPARE(Format::existingNodeFilePaths(project.path(), 12, {}), some);
    const QStringList all =
        writeFiles(project, Docs,
                   {u"12.rtf"_s, u"12.styles"_s, u"12.comments"_s, u"12_notes.rtf"_s,
                    u"12_notes.styles"_s, u"12_synopsis.txt"_s});
    QCOMPARE(Format::existingNodeFilePaths(project.path(), 12, u"rtf"_s), all);
}

void TstDocumentPaths::theFilesThatExistInAnItemsFolder()
{
    const TestProject project;
    const QString folder = dataFolder(uuidOf(1));
    QVERIFY(Format::existingNodeFilePaths(project.path(), uuidOf(1), {}).isEmpty());
    const QStringList all =
        writeFiles(project, folder,
                   {u"content.rtf"_s, u"content.styles"_s, u"content.comments"_s, u"notes.rtf"_s,
                    u"notes.styles"_s, u"synopsis.txt"_s});
    // The name by which the styles of the notes are looked up is another one.
    writeFiles(project, folder, {u"note.styles"_s, u"content.links"_s, u"content.pdf"_s});
    QCOMPARE(Format::existingNodeFilePaths(project.path(), uuidOf(1), {}), all);
    QStringList ofPdf = all;
    ofPdf[0] = project.path(folder + u"content.pdf"_s);
    QCOMPARE(Format::existingNodeFilePaths(project.path(), uuidOf(1), u"pdf"_s), ofPdf);
    QCOMPARE(Format::existingNodeFilePaths(project.path(), uuidOf(1), u".pdf"_s), ofPdf);
    QVERIFY(QFile::remove(all.at(2)));
    QCOMPARE(Format::existingNodeFilePaths(project.path(), uuidOf(1), {}),
             all.mid(0, 2) + all.mid(3));
}

void TstDocumentPaths::theVersionDecidesWhichFilesAreMeant_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("expected");

    QTest::newRow("unknown") << 0 << QString();
    QTest::newRow("16") << 16 << QString();
    QTest::newRow("18") << 18 << Docs + u"12.pdf"_s;
    QTest::newRow("23") << 23 << dataFolder(uuidOf(12)) + u"content.pdf"_s;
    QTest::newRow("24") << 24 << QString();
}

void TstDocumentPaths::theVersionDecidesWhichFilesAreMeant()
{
    QFETCH(int, version);
    QFETCH(QString, expected);

    const TestProject project;
    writeFiles(project, Docs, {u"12.pdf"_s});
    writeFiles(project, dataFolder(uuidOf(12)), {u"content.pdf"_s});
    const auto formatVersion = TVL::FormatVersion(version);
    const TVLProjectNodeProperties properties = propertiesOf(12, u"pdf"_s);
    const QStringList paths =
        expected.isEmpty() ? QStringList() : QStringList(project.path(expected));
    QCOMPARE(Format::existingNodeFilePaths(project.path(), properties, formatVersion), paths);
    const Format format(project.path(), formatVersion);
    QCOMPARE(format.existingNodeFilePaths(properties), paths);
}

void TstDocumentPaths::aHashIsTheRawSha1OfTheContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("hash");

    QTest::newRow("nothing") << QByteArray("") << Sha1OfNothing;
    QTest::newRow("abc") << QByteArray("abc") << Sha1OfAbc;
    QTest::newRow("a million letters")
        << QByteArray(1'000'000, 'a')
        << QByteArray::fromHex("34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

void TstDocumentPaths::aHashIsTheRawSha1OfTheContent()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, hash);

    const TestProject project;
    project.writeFile(u"file"_s, content);
    QCOMPARE(Format::calcChecksum(project.path(u"file"_s)), hash);
}

void TstDocumentPaths::theHashesOfAnItemsFiles()
{
    const TestProject project;
    project.writeFile(Docs + u"12.comments"_s, "abc");
    project.writeFile(dataFolder(uuidOf(1)) + u"notes.rtf"_s, "abc");
    project.writeFile(mobileFolder(uuidOf(1)) + u"synopsis.txt"_s, "abc");
    for (const QString &path : namesOf(project)) {
        QCOMPARE(Format::md5(path, 12, TVL::CommentsFile), Sha1OfAbc);
        QCOMPARE(Format::md5(path, 12, TVL::MainText), QByteArray());
        QCOMPARE(Format::md5Data(path, uuidOf(1), TVL::NotesText), Sha1OfAbc);
        QCOMPARE(Format::md5Data(path, uuidOf(1), TVL::SynopsisText), QByteArray());
        QCOMPARE(Format::md5Mobile(path, uuidOf(1), TVL::SynopsisText), Sha1OfAbc);
        QCOMPARE(Format::md5Mobile(path, uuidOf(1), TVL::NotesText), QByteArray());
    }
}

void TstDocumentPaths::whatCannotBeReadHasNoHash()
{
    const TestProject project;
    project.writeFile(u"folder/file"_s, "abc");
    QVERIFY(Format::calcChecksum(project.path(u"folder"_s)).isEmpty());
    QVERIFY(Format::calcChecksum(project.path(u"nowhere"_s)).isEmpty());
    QVERIFY(Format::calcChecksum(QString()).isEmpty());
    // It opens, and then can't be read.
    QVERIFY(Format::calcChecksum(u"/proc/self/mem"_s).isEmpty());
}

void TstDocumentPaths::otherAlgorithmsCanBeAskedFor()
{
    const TestProject project;
    project.writeFile(u"file"_s, "abc");
    QCOMPARE(TVLFileUtil::calcChecksum(project.path(u"file"_s), QCryptographicHash::Md5),
             QByteArray::fromHex("900150983cd24fb0d6963f7d28e17f72"));
    QCOMPARE(TVLFileUtil::calcChecksum(project.path(u"file"_s), QCryptographicHash::Sha1),
             Sha1OfAbc);
}

TVL_TEST(TstDocumentPaths)
#include "tst_documentpaths.moc"
