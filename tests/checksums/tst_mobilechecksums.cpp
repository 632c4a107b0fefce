#include "ChecksumFixtures.h"
#include "DocumentFixtures.h"
#include "OpenedFiles.h"
#include "StorageFixtures.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Checksums = TVLProjectChecksums;

const QString Content = u"content.rtf"_s;
const QString Notes = u"notes.rtf"_s;

/** What a comparison of the mobile copy with a map tells. */
struct Findings
{
    bool newFiles;
    bool missingFiles;
    bool modifiedFiles;

    [[nodiscard]] bool hasConflicts() const { return newFiles || modifiedFiles; }
};

/** Items 1 to count, each with a text; the result is what a client expects then. */
ChecksumMap writeItems(const TestProject &project, int count)
{
    for (int number = 1; number <= count; ++number)
        project.writeFile(mobilePath(number, Content), "text " + QByteArray::number(number));
    return Checksums::calcMobileDataChecksums(project.path());
}

QStringList itemFolders(const TestProject &project, int count)
{
    QStringList folders;
    for (int number = 1; number <= count; ++number)
        folders.append(project.path(mobilePath(number, QString())).chopped(1));
    return folders;
}

QString checksumFile(const QString &name)
{
    return u"Mobile/Data/"_s + name;
}

QString upperCaseUuid(int number)
{
    return uuidOf(number).toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

class TstMobileChecksums : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newFilesAreFoldedInAndOldOnesKeepTheirHash();
    void foldingInReadsNewFilesOnly();
    void foldingInPassesOverOtherFiles();
    void foldingInNeedsAMapAndAPath();
    void withoutAFolderNothingIsExpected();
    void anUnreadableNewFileIsFoldedInAsSuch();

    void conflictsAreFound_data();
    void conflictsAreFound();
    void whatTheFlagsWereDoesNotCount();
    void filesThatNobodyKnowsAreNoConflict_data();
    void filesThatNobodyKnowsAreNoConflict();
    void anExpectedFileThatNobodyKnowsIsMissing();
    void anUnreadableFileIsModified();
    void aFolderInThePlaceOfAFileIsAConflict();
    void withoutAFolderAllIsMissing();
    void theFirstConflictEndsAFastComparison_data();
    void theFirstConflictEndsAFastComparison();
    void aFastComparisonReadsAllFilesThatAreAsExpected();
    void aFullComparisonReadsNoFileInVain();
    void theProjectMayBeNamedByItsBinder();
    void foldersInSmallLettersAreCompared();

    void checksumFilesOfUuidsAreRemoved_data();
    void checksumFilesOfUuidsAreRemoved();
    void nothingToRemoveIsNoFailure();
    void onlyFilesInTheFolderItselfAreRemoved();
};

void TstMobileChecksums::newFilesAreFoldedInAndOldOnesKeepTheirHash()
{
    const TestProject project;
    ChecksumMap checksums = writeItems(project, 4);
    project.writeFile(mobilePath(1, Content), "changed");
    project.writeFile(mobilePath(2, Notes), "added");
    project.writeFile(mobilePath(5, Content), "added too");
    QVERIFY(QFile::remove(project.path(mobilePath(3, Content))));
    QVERIFY(QDir(project.path(mobilePath(4, QString()))).removeRecursively());
    checksums.insert(key(6, Content), "never was there");
    checksums.insert(key(u"12.rtf"_s), "no file of an item's folder");

    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(toText(checksums),
             toText({{key(1, Content), hashOf("text 1")},
                     {key(2, Content), hashOf("text 2")},
                     {key(2, Notes), hashOf("added")},
                     {key(5, Content), hashOf("added too")}}));
}

void TstMobileChecksums::foldingInReadsNewFilesOnly()
{
    const TestProject project;
    ChecksumMap checksums = writeItems(project, 3);
    checksums.remove(key(2, Content));
    OpenedFiles opened(itemFolders(project, 3));
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(opened.take().files, {project.path(mobilePath(2, Content))});
    QCOMPARE(checksums.size(), 3);
}

void TstMobileChecksums::foldingInPassesOverOtherFiles()
{
    const TestProject project;
    ChecksumMap checksums = writeItems(project, 1);
    const ChecksumMap before = checksums;
    for (const QString &name : {u"content.rtf.bak"_s, u"content.pdf"_s, u"readme.txt"_s})
        project.writeFile(mobilePath(1, name), "x");
    project.writeFile(checksumFile(u"scripts.checksums"_s), "x");
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(checksums, before);
    // Nor are they kept.
    checksums.insert(key(1, u"content.pdf"_s), hashOf("x"));
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(checksums, before);
}

void TstMobileChecksums::foldingInNeedsAMapAndAPath()
{
    const TestProject project;
    writeItems(project, 1);
    Checksums::updateMobileDataChecksums(project.path(), nullptr);
    ChecksumMap checksums = {{key(1, Notes), "a"}};
    const ChecksumMap before = checksums;
    Checksums::updateMobileDataChecksums(QString(), &checksums);
    QCOMPARE(checksums, before);
}

void TstMobileChecksums::withoutAFolderNothingIsExpected()
{
    const TestProject project;
    ChecksumMap checksums = {{key(1, Notes), "a"}};
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QVERIFY(checksums.isEmpty());
    QVERIFY(!QDir(project.path()).exists());
}

void TstMobileChecksums::anUnreadableNewFileIsFoldedInAsSuch()
{
    const TestProject project;
    linkToUnreadableFile(project, mobilePath(1, Content));
    ChecksumMap checksums;
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(checksums, (ChecksumMap{{key(1, Content), {}}}));
    QVERIFY(Checksums::mobileDataHasConflicts(project.path(), checksums));
}

void TstMobileChecksums::conflictsAreFound_data()
{
    QTest::addColumn<bool>("newFiles");
    QTest::addColumn<bool>("missingFiles");
    QTest::addColumn<bool>("modifiedFiles");

    for (const bool isNew : {false, true}) {
        for (const bool isMissing : {false, true}) {
            for (const bool isModified : {false, true}) {
                QTest::addRow("%s, %s, %s", isNew ? "new" : "none new",
                              isMissing ? "missing" : "none missing",
                              isModified ? "modified" : "none modified")
                    << isNew << isMissing << isModified;
            }
        }
    }
}

void TstMobileChecksums::conflictsAreFound()
{
    Findings expected = {};
    {
        QFETCH(const bool, newFiles);
        QFETCH(const bool, missingFiles);
        QFETCH(const bool, modifiedFiles);
        expected = {newFiles, missingFiles, modifiedFiles};
    }

    const TestProject project;
    const ChecksumMap checksums = writeItems(project, 5);
    if (expected.newFiles)
        project.writeFile(mobilePath(2, Notes), "new");
    if (expected.missingFiles)
        QVERIFY(QFile::remove(project.path(mobilePath(3, Content))));
    if (expected.modifiedFiles)
        project.writeFile(mobilePath(4, Content), "modified");

    Findings found = {};
    QCOMPARE(Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles,
                                               &found.missingFiles, &found.modifiedFiles),
             expected.hasConflicts());
    QCOMPARE(found.newFiles, expected.newFiles);
    QCOMPARE(found.missingFiles, expected.missingFiles);
    QCOMPARE(found.modifiedFiles, expected.modifiedFiles);

    // Whoever asks for less gets the same answers.
    QCOMPARE(Checksums::mobileDataHasConflicts(project.path(), checksums), expected.hasConflicts());
    found = {};
    QCOMPARE(Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles, nullptr,
                                               nullptr),
             expected.hasConflicts());
    QCOMPARE(found.newFiles, expected.newFiles);
    QCOMPARE(Checksums::mobileDataHasConflicts(project.path(), checksums, nullptr,
                                               &found.missingFiles, nullptr),
             expected.hasConflicts());
    QCOMPARE(found.missingFiles, expected.missingFiles);
    QCOMPARE(Checksums::mobileDataHasConflicts(project.path(), checksums, nullptr, nullptr,
                                               &found.modifiedFiles),
             expected.hasConflicts());
    QCOMPARE(found.modifiedFiles, expected.modifiedFiles);
}

void TstMobileChecksums::whatTheFlagsWereDoesNotCount()
{
    const TestProject project;
    const ChecksumMap checksums = writeItems(project, 1);
    Findings found = {true, true, true};
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles,
                                               &found.missingFiles, &found.modifiedFiles));
    QVERIFY(!found.newFiles && !found.missingFiles && !found.modifiedFiles);
}

void TstMobileChecksums::filesThatNobodyKnowsAreNoConflict_data()
{
    QTest::addColumn<QString>("path");

    for (const char *name : {"content.rtf.bak", "content.pdf", "content", "contents.fountain",
                             "notes.styles", "readme.txt", "Content.rtf", "folder/content.rtf"})
        QTest::newRow(name) << mobilePath(1, QString::fromLatin1(name));
    QTest::newRow("beside the items") << checksumFile(Content);
    QTest::newRow("in a folder of no item") << checksumFile(u"abc/content.rtf"_s);
    QTest::newRow("checksum file") << checksumFile(upperCaseUuid(9) + u".checksums"_s);
    QTest::newRow("in the desktop's folder") << desktopPath(1, Notes);
}

void TstMobileChecksums::filesThatNobodyKnowsAreNoConflict()
{
    QFETCH(const QString, path);

    const TestProject project;
    const ChecksumMap checksums = writeItems(project, 1);
    project.writeFile(path, "x");
    Findings found = {};
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums));
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles,
                                               &found.missingFiles, &found.modifiedFiles));
    QVERIFY(!found.newFiles && !found.missingFiles && !found.modifiedFiles);
}

void TstMobileChecksums::anExpectedFileThatNobodyKnowsIsMissing()
{
    const TestProject project;
    ChecksumMap checksums = writeItems(project, 1);
    project.writeFile(mobilePath(1, u"content.pdf"_s), "x");
    checksums.insert(key(1, u"content.pdf"_s), hashOf("x"));
    bool missing = false;
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums, nullptr, &missing));
    QVERIFY(missing);
}

void TstMobileChecksums::anUnreadableFileIsModified()
{
    const TestProject project;
    linkToUnreadableFile(project, mobilePath(1, Content));
    for (const QByteArray &expected : {hashOf("text"), QByteArray()}) {
        const ChecksumMap checksums = {{key(1, Content), expected}};
        Findings found = {};
        QVERIFY(Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles,
                                                  &found.missingFiles, &found.modifiedFiles));
        QVERIFY(!found.newFiles && !found.missingFiles && found.modifiedFiles);
    }
}

void TstMobileChecksums::aFolderInThePlaceOfAFileIsAConflict()
{
    const TestProject project;
    const ChecksumMap checksums = writeItems(project, 1);
    QVERIFY(QFile::remove(project.path(mobilePath(1, Content))));
    QVERIFY(QDir().mkpath(project.path(mobilePath(1, Content))));
    QVERIFY(Checksums::mobileDataHasConflicts(project.path(), checksums));
    QVERIFY(Checksums::mobileDataHasConflicts(project.path(), {}));
}

void TstMobileChecksums::withoutAFolderAllIsMissing()
{
    const TestProject project;
    Findings found = {};
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), {{key(1, Content), "a"}},
                                               &found.newFiles, &found.missingFiles,
                                               &found.modifiedFiles));
    QVERIFY(!found.newFiles && found.missingFiles && !found.modifiedFiles);
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), {}, nullptr, &found.missingFiles));
    QVERIFY(!found.missingFiles);
    QVERIFY(!QDir(project.path()).exists());
}

void TstMobileChecksums::theFirstConflictEndsAFastComparison_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<int>("number");

    QTest::newRow("modified, the first") << false << 1;
    QTest::newRow("modified, the third") << false << 3;
    QTest::newRow("new, the first") << true << 1;
    QTest::newRow("new, the third") << true << 3;
}

void TstMobileChecksums::theFirstConflictEndsAFastComparison()
{
    QFETCH(const bool, isNew);
    QFETCH(const int, number);

    constexpr int Count = 100;
    const TestProject project;
    ChecksumMap checksums = writeItems(project, Count);
    // All from that one on are in conflict, and only that one can be known without reading it.
    for (int each = number; each <= Count; ++each)
        checksums.insert(key(each, Content), hashOf("other"));
    if (isNew)
        checksums.remove(key(number, Content));

    const QStringList folders = itemFolders(project, Count);
    OpenedFiles opened(folders);
    QVERIFY(Checksums::mobileDataHasConflicts(project.path(), checksums));
    const OpenedFiles::Paths paths = opened.take();
    QCOMPARE(paths.folders, folders.first(number));
    QStringList files;
    for (const QString &folder : folders.first(isNew ? number - 1 : number))
        files.append(folder + u'/' + Content);
    QCOMPARE(paths.files, files);
}

void TstMobileChecksums::aFastComparisonReadsAllFilesThatAreAsExpected()
{
    constexpr int Count = 100;
    const TestProject project;
    const ChecksumMap checksums = writeItems(project, Count);
    OpenedFiles opened(itemFolders(project, Count));
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums));
    QCOMPARE(opened.take().files.size(), Count);
}

void TstMobileChecksums::aFullComparisonReadsNoFileInVain()
{
    constexpr int Count = 100;
    const TestProject project;
    ChecksumMap checksums = writeItems(project, Count);
    checksums.insert(key(2, Content), hashOf("other"));
    // It comes last, and is found all the same.
    checksums.remove(key(Count, Content));
    OpenedFiles opened(itemFolders(project, Count));
    Findings found = {};
    QVERIFY(Checksums::mobileDataHasConflicts(project.path(), checksums, &found.newFiles,
                                              &found.missingFiles, &found.modifiedFiles));
    QVERIFY(found.newFiles && !found.missingFiles && found.modifiedFiles);
    QCOMPARE(
        opened.take().files,
        (QStringList{project.path(mobilePath(1, Content)), project.path(mobilePath(2, Content))}));
}

void TstMobileChecksums::theProjectMayBeNamedByItsBinder()
{
    const TestProject project;
    ChecksumMap checksums = writeItems(project, 1);
    Checksums::updateMobileDataChecksums(project.binderPath(), &checksums);
    QCOMPARE(checksums.size(), 1);
    QVERIFY(Checksums::mobileDataHasConflicts(project.binderPath(), {}));
    project.writeFile(checksumFile(upperCaseUuid(1) + u".checksums"_s), "x");
    QVERIFY(Checksums::removeOldMobileChecksumFiles(project.binderPath()));
    QCOMPARE(project.files().keys(), {mobilePath(1, Content)});
}

void TstMobileChecksums::foldersInSmallLettersAreCompared()
{
    const int number = 0xabc;
    const TestProject project;
    project.writeFile(mobilePath(number, Content), "text");
    ChecksumMap checksums = Checksums::calcMobileDataChecksums(project.path());
    QVERIFY(QDir(project.path(u"Mobile/Data"_s))
                .rename(upperCaseUuid(number), upperCaseUuid(number).toLower()));
    QCOMPARE(Checksums::calcMobileDataChecksums(project.path()), checksums);
    bool isMissing = true;
    QVERIFY(!Checksums::mobileDataHasConflicts(project.path(), checksums, nullptr, &isMissing));
    QVERIFY(!isMissing);
    const ChecksumMap before = checksums;
    Checksums::updateMobileDataChecksums(project.path(), &checksums);
    QCOMPARE(checksums, before);

    const TVLProjectFolderFormat folder(project.path(), TVL::FormatVersion18);
    Checksums records(&folder);
    records.updateHashSumMobile(uuidOf(number), TVL::MainText);
    QCOMPARE(records.checksums(), before);
    QCOMPARE(records.currentHddChecksumMobile(uuidOf(number), TVL::MainText), before.first());
}

void TstMobileChecksums::checksumFilesOfUuidsAreRemoved_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRemoved");

    const QString uuid = upperCaseUuid(0xabc);
    QTest::newRow("upper case") << uuid + u".checksums"_s << true;
    QTest::newRow("lower case") << uuid.toLower() + u".checksums"_s << true;
    QTest::newRow("base name ends at the first dot") << uuid + u".old.checksums"_s << true;
    QTest::newRow("braces") << u'{' + uuid + u"}.checksums"_s << true;
    QTest::newRow("scripts") << u"scripts.checksums"_s << false;
    QTest::newRow("null uuid") << QUuid().toString(QUuid::WithoutBraces) + u".checksums"_s << false;
    QTest::newRow("more than a uuid") << uuid + u" (2).checksums"_s << false;
    QTest::newRow("less than a uuid") << uuid.chopped(1) + u".checksums"_s << false;
    QTest::newRow("no base name") << u".checksums"_s << false;
    QTest::newRow("other extension") << uuid + u".checksum"_s << false;
    QTest::newRow("no extension") << uuid + u".txt"_s << false;
    QTest::newRow("extension before another") << uuid + u".checksums.bak"_s << false;
}

void TstMobileChecksums::checksumFilesOfUuidsAreRemoved()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isRemoved);

    const TestProject project;
    const ChecksumMap checksums = writeItems(project, 2);
    const QMap<QString, QByteArray> before = project.files();
    project.writeFile(checksumFile(name), "x");
    QVERIFY(Checksums::removeOldMobileChecksumFiles(project.path()));
    QCOMPARE(project.files().contains(checksumFile(name)), !isRemoved);
    QCOMPARE(project.files().size(), before.size() + (isRemoved ? 0 : 1));
    QCOMPARE(Checksums::calcMobileDataChecksums(project.path()), checksums);
}

void TstMobileChecksums::nothingToRemoveIsNoFailure()
{
    const TestProject project;
    QVERIFY(Checksums::removeOldMobileChecksumFiles(project.path()));
    QVERIFY(!QDir(project.path()).exists());
    project.writeFile(checksumFile(u"scripts.checksums"_s), "x");
    QVERIFY(Checksums::removeOldMobileChecksumFiles(project.path()));
}

void TstMobileChecksums::onlyFilesInTheFolderItselfAreRemoved()
{
    const TestProject project;
    const QString name = upperCaseUuid(1) + u".checksums"_s;
    project.writeFile(mobilePath(1, name), "x");
    project.writeFile(u"Files/Data/"_s + name, "x");
    project.writeFile(u"Mobile/"_s + name, "x");
    project.writeFile(checksumFile(name + u"/"_s + name), "x");
    project.writeFile(checksumFile(upperCaseUuid(2) + u".checksums"_s), "x");
    QVERIFY(Checksums::removeOldMobileChecksumFiles(project.path()));
    QCOMPARE(project.files().size(), 4);
}

TVL_TEST(TstMobileChecksums)
#include "tst_mobilechecksums.moc"
