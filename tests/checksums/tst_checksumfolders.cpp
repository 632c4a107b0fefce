#include "ChecksumFixtures.h"
#include "DocumentFixtures.h"
#include "StorageFixtures.h"
#include "TUuid.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Checksums = TVLProjectChecksums;

/** Hashes all files of a folder of items; where that folder lies. */
struct ItemFolders
{
    ChecksumMap (*calculate)(const QString &path);
    QString (*path)(int number, const QString &name);
    QString root;
};

const ItemFolders Desktop = {&Checksums::calcFilesDataChecksums, &desktopPath, u"Files/Data/"_s};
const ItemFolders Mobile = {&Checksums::calcMobileDataChecksums, &mobilePath, u"Mobile/Data/"_s};

QString nameOfRow()
{
    return QString::fromUtf8(QTest::currentDataTag());
}

} // namespace

class TstChecksumFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberedFilesAreKnownByTheirNames_data();
    void numberedFilesAreKnownByTheirNames();
    void filesOfItemsAreKnownByTheirNames_data();
    void filesOfItemsAreKnownByTheirNames();
    void onlyFilesAreHashed();
    void onlyFoldersOfUuidsAreItems();
    void foldersOfItemsAreFoundInEitherCase();
    void ofTwoFoldersForAnItemTheOneInCapitalsCounts();
    void everyFileOfEveryItemIsHashed();
    void theLayoutsDoNotSeeEachOther();
    void anUnreadableFileHasAnEmptyHash();
    void aMissingFolderHasNoFiles();
    void theProjectMayBeNamedByItsBinder();
    void aThousandFilesAreHashed();

    void allRecordsAreReplacedFromTheDisk();
};

void TstChecksumFolders::numberedFilesAreKnownByTheirNames_data()
{
    QTest::addColumn<bool>("isHashed");

    const auto add = [](const char *name, bool isHashed) { QTest::newRow(name) << isHashed; };
    add("12.rtf", true);
    add("12.RTF", true);
    add("0.rtf", true);
    add("12.draft.rtf", true);
    add("12_notes.rtf", true);
    add("12_synopsis.txt", true);
    add("12.links", true);
    add("12.comments", true);
    add("abc_notes.rtf", true);
    add("\xc3\xa9.links", true);
    // These have no type by their names, or one that says only that they are there.
    add("12.styles", false);
    add("12_notes.styles", false);
    add("12.pdf", false);
    add("12.rtf.bak", false);
    add("12", false);
    add("abc.rtf", false);
    add("-12.rtf", false);
    add("12_icImage.png", false);
    add("docs.checksum", false);
    add("12.checksum", false);
    add("12.rtf.checksum", false);
    add("12_notes.rtf.checksum", false);
    add("readme.txt", false);
}

void TstChecksumFolders::numberedFilesAreKnownByTheirNames()
{
    QFETCH(const bool, isHashed);

    const TestProject project;
    project.writeFile(u"Files/Docs/"_s + nameOfRow(), "text");
    ChecksumMap expected;
    if (isHashed)
        expected.insert(key(nameOfRow()), hashOf("text"));
    QCOMPARE(toText(Checksums::calcFilesDocsChecksums(project.path())), toText(expected));
}

void TstChecksumFolders::filesOfItemsAreKnownByTheirNames_data()
{
    QTest::addColumn<bool>("isHashed");

    const auto add = [](const char *name, bool isHashed) { QTest::newRow(name) << isHashed; };
    add("content.rtf", true);
    add("notes.rtf", true);
    add("synopsis.txt", true);
    add("content.links", true);
    add("content.comments", true);
    add("content.styles", true);
    add("note.styles", true);
    add("content.rtf.bak", false);
    add("content.pdf", false);
    add("content.RTF", false);
    add("content", false);
    add("contents.fountain", false);
    add("Content.rtf", false);
    add("notes.styles", false);
    add("12.rtf", false);
    add("docs.checksum", false);
}

void TstChecksumFolders::filesOfItemsAreKnownByTheirNames()
{
    QFETCH(const bool, isHashed);

    for (const ItemFolders &folders : {Desktop, Mobile}) {
        const TestProject project;
        project.writeFile(folders.path(3, nameOfRow()), "text");
        ChecksumMap expected;
        if (isHashed)
            expected.insert(key(3, nameOfRow()), hashOf("text"));
        QCOMPARE(toText(folders.calculate(project.path())), toText(expected));
    }
}

void TstChecksumFolders::onlyFilesAreHashed()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12.rtf/12.rtf"_s, "text");
    QVERIFY(Checksums::calcFilesDocsChecksums(project.path()).isEmpty());
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        project.writeFile(folders.path(1, u"content.rtf/content.rtf"_s), "text");
        QVERIFY(folders.calculate(project.path()).isEmpty());
    }
}

void TstChecksumFolders::onlyFoldersOfUuidsAreItems()
{
    const QString null = QUuid().toString(QUuid::WithoutBraces);
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        const TestProject project;
        for (const QString &folder : {u"12/"_s, u"abc/"_s, null + u'/', QString()})
            project.writeFile(folders.root + folder + u"content.rtf"_s, "text");
        QVERIFY(folders.calculate(project.path()).isEmpty());
        project.writeFile(folders.root + uuidOf(1).toString(QUuid::WithoutBraces).toUpper(), "x");
        QVERIFY(folders.calculate(project.path()).isEmpty());
    }
}

void TstChecksumFolders::foldersOfItemsAreFoundInEitherCase()
{
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        const TestProject project;
        const QString name = TUuid::toStringNoBraces(uuidOf(0xabc), false);
        QVERIFY(name != name.toUpper());
        project.writeFile(folders.root + name + u"/content.rtf"_s, "text");
        project.writeFile(folders.path(0xabd, u"notes.rtf"_s), "notes");
        // So are those with braces.
        project.writeFile(folders.root + uuidOf(0xabe).toString() + u"/synopsis.txt"_s, "short");
        QCOMPARE(toText(folders.calculate(project.path())),
                 toText({{key(0xabc, u"content.rtf"_s), hashOf("text")},
                         {key(0xabd, u"notes.rtf"_s), hashOf("notes")},
                         {key(0xabe, u"synopsis.txt"_s), hashOf("short")}}));
    }
}

void TstChecksumFolders::ofTwoFoldersForAnItemTheOneInCapitalsCounts()
{
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        const TestProject project;
        const QString other = folders.root + TUuid::toStringNoBraces(uuidOf(0xabc), false);
        project.writeFile(folders.path(0xabc, u"content.rtf"_s), "own");
        project.writeFile(other + u"/content.rtf"_s, "other");
        project.writeFile(other + u"/notes.rtf"_s, "other notes");
        QCOMPARE(toText(folders.calculate(project.path())),
                 toText({{key(0xabc, u"content.rtf"_s), hashOf("own")},
                         {key(0xabc, u"notes.rtf"_s), hashOf("other notes")}}));
    }
}

void TstChecksumFolders::everyFileOfEveryItemIsHashed()
{
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        const TestProject project;
        ChecksumMap expected;
        for (int number = 1; number <= 5; ++number) {
            for (const QString &name : {u"content.rtf"_s, u"note.styles"_s, u"synopsis.txt"_s}) {
                const QByteArray content = name.toUtf8() + QByteArray::number(number);
                project.writeFile(folders.path(number, name), content);
                expected.insert(key(number, name), hashOf(content));
            }
            project.writeFile(folders.path(number, u"content.pdf"_s), "x");
        }
        QVERIFY(QDir().mkpath(project.path(folders.path(6, QString()))));
        QCOMPARE(folders.calculate(project.path()), expected);
        QCOMPARE(expected.size(), 15);
    }
}

void TstChecksumFolders::theLayoutsDoNotSeeEachOther()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/1.rtf"_s, "numbered");
    project.writeFile(desktopPath(1, u"content.rtf"_s), "desktop");
    project.writeFile(mobilePath(1, u"content.rtf"_s), "mobile");
    QCOMPARE(Checksums::calcFilesDocsChecksums(project.path()),
             (ChecksumMap{{key(u"1.rtf"_s), hashOf("numbered")}}));
    const ChecksumKey content = key(1, u"content.rtf"_s);
    QCOMPARE(Desktop.calculate(project.path()), (ChecksumMap{{content, hashOf("desktop")}}));
    QCOMPARE(Mobile.calculate(project.path()), (ChecksumMap{{content, hashOf("mobile")}}));
}

void TstChecksumFolders::anUnreadableFileHasAnEmptyHash()
{
    const TestProject project;
    linkToUnreadableFile(project, u"Files/Docs/1.rtf"_s);
    QCOMPARE(Checksums::calcFilesDocsChecksums(project.path()),
             (ChecksumMap{{key(u"1.rtf"_s), {}}}));
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        linkToUnreadableFile(project, folders.path(1, u"notes.rtf"_s));
        QCOMPARE(folders.calculate(project.path()), (ChecksumMap{{key(1, u"notes.rtf"_s), {}}}));
    }
}

void TstChecksumFolders::aMissingFolderHasNoFiles()
{
    const TestProject project;
    QVERIFY(Checksums::calcFilesDocsChecksums(project.path()).isEmpty());
    QVERIFY(Desktop.calculate(project.path()).isEmpty());
    QVERIFY(Mobile.calculate(project.path()).isEmpty());
    QVERIFY(!QDir(project.path()).exists());
}

void TstChecksumFolders::theProjectMayBeNamedByItsBinder()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/1.rtf"_s, "numbered");
    QCOMPARE(Checksums::calcFilesDocsChecksums(project.binderPath()).size(), 1);
    for (const ItemFolders &folders : {Desktop, Mobile}) {
        project.writeFile(folders.path(1, u"content.rtf"_s), "text");
        QCOMPARE(folders.calculate(project.binderPath()).size(), 1);
    }
}

void TstChecksumFolders::aThousandFilesAreHashed()
{
    const TestProject project;
    ChecksumMap expected;
    for (int id = 0; id < 1000; ++id) {
        const QByteArray content = QByteArray(id * 7, 'x');
        project.writeFile(docsPath(TVL::MainText, id), content);
        expected.insert(key(u"%1.rtf"_s.arg(id)), hashOf(content));
    }
    QCOMPARE(Checksums::calcFilesDocsChecksums(project.path()), expected);
}

void TstChecksumFolders::allRecordsAreReplacedFromTheDisk()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/1.rtf"_s, "numbered");
    project.writeFile(u"Files/Docs/1.styles"_s, "numbered");
    project.writeFile(desktopPath(1, u"content.rtf"_s), "desktop");
    project.writeFile(mobilePath(1, u"content.rtf"_s), "mobile");
    const TVLProjectFolderFormat folder(project.path(), TVL::FormatVersion18);
    Checksums checksums(&folder);
    const ChecksumMap stale = {{key(u"1.rtf"_s), "a"}, {key(u"2.rtf"_s), "b"}};

    checksums.setChecksums(stale);
    checksums.setModified(false);
    checksums.updateFilesDocsChecksumsFromHdd();
    QCOMPARE(checksums.checksums(), (ChecksumMap{{key(u"1.rtf"_s), hashOf("numbered")}}));
    QVERIFY(checksums.isModified());

    checksums.setChecksums(stale);
    checksums.setModified(false);
    checksums.updateFilesDataChecksumsFromHdd();
    QCOMPARE(checksums.checksums(), (ChecksumMap{{key(1, u"content.rtf"_s), hashOf("desktop")}}));
    QVERIFY(checksums.isModified());
}

TVL_TEST(TstChecksumFolders)
#include "tst_checksumfolders.moc"
