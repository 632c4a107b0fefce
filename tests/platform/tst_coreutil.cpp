#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TvlCore.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <memory>
#include <utility>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr QDir::Filters Everything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

/** Sets environment variables for as long as it lives. */
class Environment
{
public:
    explicit Environment(const QMap<QByteArray, QByteArray> &values)
    {
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            mOldValues.insert(it.key(), qgetenv(it.key()));
            qputenv(it.key(), it.value());
        }
    }
    ~Environment()
    {
        for (auto it = mOldValues.cbegin(); it != mOldValues.cend(); ++it) {
            if (it.value().isNull())
                qunsetenv(it.key());
            else
                qputenv(it.key(), it.value());
        }
    }
    Q_DISABLE_COPY_MOVE(Environment)

private:
    QMap<QByteArray, QByteArray> mOldValues;
};

} // namespace

// What must fail is made to fail by wrong kinds of entries and not by permissions, which don't stop
// the superuser.
class TstCoreUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewUuidIsUpperCaseWithoutBraces();

    void deletingAFolderDeletesEverythingInIt();
    void deletingWhatIsNotThereSucceeds();
    void deletingAFolderAlsoTakesAFile();
    void deletingAFolderKeepsTheTargetOfALink();
    void deletingALinkKeepsItsTarget_data();
    void deletingALinkKeepsItsTarget();
    void deletingReadOnlyFilesSucceeds();
    void deletingAnEmptyPathIsRefused();

    void deletingContentsKeepsTheFolder();
    void deletingContentsKeepsTheTargetOfALink();
    void deletingContentsIsRefused_data();
    void deletingContentsIsRefused();

    void deletingAFileDeletesIt_data();
    void deletingAFileDeletesIt();
    void deletingAFileRefusesAFolder();
    void deletingAFileBelowAFileSucceeds();

    void pathsAreComparedBehindLinks_data();
    void pathsAreComparedBehindLinks();

    void copyingAFolderCopiesEverything();
    void copyingIntoAnExistingFolderAddsToIt();
    void copyingReplacesNoFile();
    void copyingDoesNotFollowLinksToFolders();
    void copyingIsRefused_data();
    void copyingIsRefused();
    void copyingIntoItselfThroughALinkIsRefused();
    void copyingBesideAFolderOfSimilarNameWorks();
    void copyingStopsAtAPipe();

    void movingAFolderMovesEverything_data();
    void movingAFolderMovesEverything();
    void movingIntoAFolderThatIsNotEmptyAddsToIt();
    void movingToAnotherFileSystemCopies();
    void movingThatCannotReplaceAFileKeepsTheSource();
    void movingIsRefused_data();
    void movingIsRefused();

    void entriesAreCountedOnAllLevels();
    void countingDoesNotFollowLinks();

    void onlyWhatCertainlyIsNotThereIsMissing();
    void readabilityIsTold_data();
    void readabilityIsTold();
    void writabilityIsTold_data();
    void writabilityIsTold();

    void textReadsBack_data();
    void textReadsBack();
    void textIsWrittenWithoutByteOrderMark_data();
    void textIsWrittenWithoutByteOrderMark();
    void aByteOrderMarkWinsOverTheEncoding_data();
    void aByteOrderMarkWinsOverTheEncoding();
    void withoutDetectionTheEncodingWins();
    void bytesThatMeanNothingBecomeReplacementCharacters_data();
    void bytesThatMeanNothingBecomeReplacementCharacters();
    void charactersThatTheEncodingLacksAreReplaced();
    void readingTextFails_data();
    void readingTextFails();
    void writingTextFails_data();
    void writingTextFails();
    void writingToAFullDiskFails();
    void anUnknownEncodingLeavesTheFileAsItWas();
    void bytesReplaceThoseOfAFile();
    void whetherAFileCouldBeOpenedIsToldApart();
    void writingReplacesALongerText();

    void bytesAreReadAsTheyAre();
    void readingBytesFails_data();
    void readingBytesFails();

    void fileNamesAreSorted();
    void thereAreNoFileNamesWithoutAFolder_data();
    void thereAreNoFileNamesWithoutAFolder();

    void theTempFolderIsMade();
    void theTempFolderIsPrivate();
    void aTempPathIsFree_data();
    void aTempPathIsFree();
    void aFileNameIsMadeUnique_data();
    void aFileNameIsMadeUnique();

    void theLoginNameComesFromTheEnvironment_data();
    void theLoginNameComesFromTheEnvironment();
    void theUserHasAName();

private:
    using Tree = QMap<QString, QByteArray>;

    [[nodiscard]] QString path(const QString &name) const
    {
        return name.isEmpty() ? QString() : mFolder->filePath(name);
    }
    void makeFile(const QString &name, const QByteArray &content = "content") const;
    [[nodiscard]] QByteArray contentOf(const QString &name) const;
    /** Makes a folder with files on two levels, a hidden one and an empty folder. */
    void makeTree(const QString &name) const;
    /** Every entry below a folder: a file with its content, a folder as "/", a link as "->". */
    [[nodiscard]] Tree tree(const QString &name) const;

    std::unique_ptr<QTemporaryDir> mFolder;
};

void TstCoreUtil::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(mFolder->isValid());
}

void TstCoreUtil::cleanup()
{
    mFolder.reset();
}

void TstCoreUtil::makeFile(const QString &name, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).absolutePath()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray TstCoreUtil::contentOf(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void TstCoreUtil::makeTree(const QString &name) const
{
    makeFile(name + u"/one.txt"_s, "1");
    makeFile(name + u"/.hidden"_s, "2");
    makeFile(name + u"/inner/two \u00e4\u4e2d.txt"_s, "3");
    makeFile(name + u"/inner/deep/three"_s, "");
    QVERIFY(QDir().mkpath(path(name + u"/empty"_s)));
}

TstCoreUtil::Tree TstCoreUtil::tree(const QString &name) const
{
    Tree entries;
    const QDir folder(path(name));
    QDirIterator all(path(name), Everything, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QFileInfo info(all.next());
        const QString relativePath = folder.relativeFilePath(info.filePath());
        if (info.isSymbolicLink())
            entries.insert(relativePath, "->");
        else
            entries.insert(relativePath,
                           info.isDir() ? QByteArray("/") : contentOf(name + u'/' + relativePath));
    }
    return entries;
}

void TstCoreUtil::aNewUuidIsUpperCaseWithoutBraces()
{
    const QString text = TVLCoreUtil::CreateUUID();
    QCOMPARE(text.size(), 36);
    QCOMPARE(text, text.toUpper());
    QVERIFY(!QUuid(text).isNull());
    QVERIFY(text != TVLCoreUtil::CreateUUID());
}

void TstCoreUtil::deletingAFolderDeletesEverythingInIt()
{
    makeTree(u"folder"_s);
    makeFile(u"beside"_s);
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"folder"_s)));
    QVERIFY(!QFileInfo::exists(path(u"folder"_s)));
    QVERIFY(QFileInfo::exists(path(u"beside"_s)));
}

void TstCoreUtil::deletingWhatIsNotThereSucceeds()
{
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"missing"_s)));
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"missing/inner"_s)));
}

void TstCoreUtil::deletingAFolderAlsoTakesAFile()
{
    makeFile(u"file"_s);
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"file"_s)));
    QVERIFY(!QFileInfo::exists(path(u"file"_s)));
}

void TstCoreUtil::deletingAFolderKeepsTheTargetOfALink()
{
    makeTree(u"target"_s);
    makeFile(u"target file"_s);
    const Tree before = tree(u"target"_s);
    QVERIFY(QDir().mkpath(path(u"folder/inner"_s)));
    QVERIFY(QFile::link(path(u"target"_s), path(u"folder/link"_s)));
    QVERIFY(QFile::link(path(u"target"_s), path(u"folder/inner/link"_s)));
    QVERIFY(QFile::link(path(u"target file"_s), path(u"folder/link to file"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"folder/dead link"_s)));
    QVERIFY(QFile::link(path(u"folder"_s), path(u"folder/circle"_s)));

    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"folder"_s)));
    QVERIFY(!QFileInfo::exists(path(u"folder"_s)));
    QCOMPARE(tree(u"target"_s), before);
    QCOMPARE(contentOf(u"target file"_s), "content");
}

void TstCoreUtil::deletingALinkKeepsItsTarget_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("to a folder") << u"target"_s << QString();
    QTest::newRow("to a folder, with a slash") << u"target"_s << u"/"_s;
    QTest::newRow("to a folder, with dots") << u"target"_s << u"/inner/.."_s;
    QTest::newRow("to a file") << u"target/one.txt"_s << QString();
    QTest::newRow("to nothing") << u"nowhere"_s << QString();
}

void TstCoreUtil::deletingALinkKeepsItsTarget()
{
    QFETCH(QString, target);
    QFETCH(QString, suffix);
    makeTree(u"target"_s);
    const Tree before = tree(u"target"_s);
    QVERIFY(QFile::link(path(target), path(u"link"_s)));
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"link"_s) + suffix));
    QVERIFY(!QFileInfo(path(u"link"_s)).isSymbolicLink());
    QCOMPARE(tree(u"target"_s), before);
}

void TstCoreUtil::deletingReadOnlyFilesSucceeds()
{
    makeFile(u"folder/file"_s);
    QVERIFY(QFile::setPermissions(path(u"folder/file"_s), QFile::ReadOwner));
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"folder"_s)));
    QVERIFY(!QFileInfo::exists(path(u"folder"_s)));
}

void TstCoreUtil::deletingAnEmptyPathIsRefused()
{
    makeFile(u"file"_s);
    const QString current = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mFolder->path()));
    const bool isDeleted = TVLCoreUtil::DeleteFolderAndFiles(QString());
    const bool isEmptied = TVLCoreUtil::DeleteFolderContents(QString());
    const bool isFileDeleted = TVLCoreUtil::DeleteFile(QString());
    QVERIFY(QDir::setCurrent(current));
    QVERIFY(!isDeleted);
    QVERIFY(!isEmptied);
    QVERIFY(!isFileDeleted);
    QCOMPARE(contentOf(u"file"_s), "content");
}

void TstCoreUtil::deletingContentsKeepsTheFolder()
{
    makeTree(u"folder"_s);
    QVERIFY(TVLCoreUtil::DeleteFolderContents(path(u"folder"_s)));
    QVERIFY(QFileInfo(path(u"folder"_s)).isDir());
    QVERIFY(tree(u"folder"_s).isEmpty());
    QVERIFY(TVLCoreUtil::DeleteFolderContents(path(u"folder"_s)));
}

void TstCoreUtil::deletingContentsKeepsTheTargetOfALink()
{
    makeTree(u"target"_s);
    const Tree before = tree(u"target"_s);
    QVERIFY(QDir().mkpath(path(u"folder/inner"_s)));
    QVERIFY(QFile::link(path(u"target"_s), path(u"folder/link"_s)));
    QVERIFY(QFile::link(path(u"target"_s), path(u"folder/inner/link"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"folder/dead link"_s)));
    QVERIFY(TVLCoreUtil::DeleteFolderContents(path(u"folder"_s)));
    QVERIFY(tree(u"folder"_s).isEmpty());
    QCOMPARE(tree(u"target"_s), before);
}

void TstCoreUtil::deletingContentsIsRefused_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << u"missing"_s;
    QTest::newRow("file") << u"target/one.txt"_s;
    QTest::newRow("link") << u"link"_s;
    QTest::newRow("link with a slash") << u"link/"_s;
}

void TstCoreUtil::deletingContentsIsRefused()
{
    QFETCH(QString, name);
    makeTree(u"target"_s);
    const Tree before = tree(u"target"_s);
    QVERIFY(QFile::link(path(u"target"_s), path(u"link"_s)));
    QVERIFY(!TVLCoreUtil::DeleteFolderContents(path(name)));
    QCOMPARE(tree(u"target"_s), before);
    QVERIFY(!QFileInfo::exists(path(u"missing"_s)));
}

void TstCoreUtil::deletingAFileDeletesIt_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("file") << u"file"_s;
    QTest::newRow("missing") << u"missing"_s;
    QTest::newRow("link to a file") << u"link to file"_s;
    QTest::newRow("link to a folder") << u"link to folder"_s;
    QTest::newRow("dead link") << u"dead link"_s;
}

void TstCoreUtil::deletingAFileDeletesIt()
{
    QFETCH(QString, name);
    makeTree(u"folder"_s);
    makeFile(u"file"_s);
    makeFile(u"other file"_s);
    const Tree before = tree(u"folder"_s);
    QVERIFY(QFile::link(path(u"other file"_s), path(u"link to file"_s)));
    QVERIFY(QFile::link(path(u"folder"_s), path(u"link to folder"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dead link"_s)));

    QString error;
    QVERIFY(TVLCoreUtil::DeleteFile(path(name), &error));
    QCOMPARE(error, QString());
    QVERIFY(!QDir(mFolder->path()).entryList(Everything).contains(name));
    QCOMPARE(tree(u"folder"_s), before);
    QCOMPARE(contentOf(u"other file"_s), "content");
}

void TstCoreUtil::deletingAFileRefusesAFolder()
{
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QString error;
    QVERIFY(!TVLCoreUtil::DeleteFile(path(u"folder"_s), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!TVLCoreUtil::DeleteFile(path(u"folder"_s)));
    QVERIFY(QFileInfo::exists(path(u"folder"_s)));
}

void TstCoreUtil::deletingAFileBelowAFileSucceeds()
{
    makeFile(u"file"_s);
    QVERIFY(TVLCoreUtil::DeleteFile(path(u"file/inner"_s)));
    QVERIFY(QFileInfo::exists(path(u"file"_s)));
}

void TstCoreUtil::pathsAreComparedBehindLinks_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isInside");

    QTest::newRow("same") << u"folder"_s << u"folder"_s << true;
    QTest::newRow("same with a slash") << u"folder/"_s << u"folder"_s << true;
    QTest::newRow("same with dots") << u"folder/inner/.."_s << u"./folder"_s << true;
    QTest::newRow("inside") << u"folder/inner"_s << u"folder"_s << true;
    QTest::newRow("new and inside") << u"folder/new/a"_s << u"folder"_s << true;
    QTest::newRow("both new") << u"new/a/b"_s << u"new/a"_s << true;
    QTest::newRow("same by a link") << u"link"_s << u"folder"_s << true;
    QTest::newRow("inside a link's target") << u"folder/inner"_s << u"link"_s << true;
    QTest::newRow("new and inside by a link") << u"link/new"_s << u"folder"_s << true;
    QTest::newRow("above") << u"folder"_s << u"folder/inner"_s << false;
    QTest::newRow("beside") << u"folder/one.txt"_s << u"folder/inner"_s << false;
    QTest::newRow("similar name") << u"folder 2"_s << u"folder"_s << false;
}

void TstCoreUtil::pathsAreComparedBehindLinks()
{
    QFETCH(QString, name);
    QFETCH(QString, folder);
    makeTree(u"folder"_s);
    QVERIFY(QFile::link(path(u"folder"_s), path(u"link"_s)));
    QTEST(TVLCoreUtil::IsSameOrInside(path(name), path(folder)), "isInside");
    QVERIFY(TVLCoreUtil::IsSameOrInside(path(name), u"/"_s));
}

void TstCoreUtil::copyingAFolderCopiesEverything()
{
    makeTree(u"source"_s);
    const Tree before = tree(u"source"_s);
    QVERIFY(TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"new/target"_s)));
    QCOMPARE(tree(u"new/target"_s), before);
    QCOMPARE(tree(u"source"_s), before);
}

void TstCoreUtil::copyingIntoAnExistingFolderAddsToIt()
{
    makeTree(u"source"_s);
    makeFile(u"target/inner/own"_s, "own");
    Tree expected = tree(u"source"_s);
    expected.insert(u"inner/own"_s, "own");
    QVERIFY(TVLCoreUtil::CopyDirectory(path(u"source/"_s), path(u"target/"_s)));
    QCOMPARE(tree(u"target"_s), expected);
}

void TstCoreUtil::copyingReplacesNoFile()
{
    makeFile(u"source/file"_s, "new");
    makeFile(u"target/file"_s, "old");
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"target"_s)));
    QCOMPARE(contentOf(u"target/file"_s), "old");

    makeFile(u"source2/file/inner"_s, "new");
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"source2"_s), path(u"target"_s)));
    QCOMPARE(contentOf(u"target/file"_s), "old");
}

void TstCoreUtil::copyingDoesNotFollowLinksToFolders()
{
    makeFile(u"outside/file"_s, "outside");
    QVERIFY(QDir().mkpath(path(u"source"_s)));
    QVERIFY(QFile::link(path(u"outside"_s), path(u"source/link"_s)));
    QVERIFY(QFile::link(path(u"source"_s), path(u"source/circle"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"source/dead link"_s)));
    QVERIFY(QFile::link(path(u"outside/file"_s), path(u"source/link to file"_s)));

    QVERIFY(TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"target"_s)));
    const Tree expected = {{u"link"_s, "->"},
                           {u"circle"_s, "->"},
                           {u"dead link"_s, "->"},
                           {u"link to file"_s, "outside"}};
    QCOMPARE(tree(u"target"_s), expected);
    QCOMPARE(QFile::symLinkTarget(path(u"target/link"_s)), path(u"outside"_s));
    QCOMPARE(QFile::symLinkTarget(path(u"target/dead link"_s)), path(u"nowhere"_s));
}

void TstCoreUtil::copyingIsRefused_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");

    QTest::newRow("no source") << u"missing"_s << u"target"_s;
    QTest::newRow("source is a file") << u"file"_s << u"target"_s;
    QTest::newRow("source is empty") << QString() << u"target"_s;
    QTest::newRow("target is empty") << u"source"_s << QString();
    QTest::newRow("target is a file") << u"source"_s << u"file"_s;
    QTest::newRow("target is below a file") << u"source"_s << u"file/target"_s;
    QTest::newRow("into itself") << u"source"_s << u"source"_s;
    QTest::newRow("into itself with a slash") << u"source"_s << u"source/"_s;
    QTest::newRow("into its own folder") << u"source"_s << u"source/inner"_s;
    QTest::newRow("into a new folder of its own") << u"source"_s << u"source/new/target"_s;
    QTest::newRow("into itself with dots") << u"source"_s << u"other/../source/new"_s;
}

void TstCoreUtil::copyingIsRefused()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    makeTree(u"source"_s);
    makeFile(u"file"_s);
    const Tree before = tree(u"."_s);
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(source), path(target)));
    QCOMPARE(tree(u"."_s), before);
}

void TstCoreUtil::copyingIntoItselfThroughALinkIsRefused()
{
    makeTree(u"source"_s);
    QVERIFY(QFile::link(path(u"source"_s), path(u"link"_s)));
    const Tree before = tree(u"."_s);
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"link"_s)));
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"link/new/target"_s)));
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"link"_s), path(u"source/new"_s)));
    QVERIFY(!TVLCoreUtil::MoveDirectoryQuick(path(u"source"_s), path(u"link/new"_s)));
    QCOMPARE(tree(u"."_s), before);
}

void TstCoreUtil::copyingBesideAFolderOfSimilarNameWorks()
{
    makeTree(u"source"_s);
    QVERIFY(TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"source 2"_s)));
    QCOMPARE(tree(u"source 2"_s), tree(u"source"_s));
}

void TstCoreUtil::copyingStopsAtAPipe()
{
#ifdef Q_OS_UNIX
    makeFile(u"source/file"_s);
    const QByteArray pipe = QFile::encodeName(path(u"source/pipe"_s));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(!TVLCoreUtil::CopyDirectory(path(u"source"_s), path(u"target"_s)));
    QVERIFY(TVLCoreUtil::DeleteFolderAndFiles(path(u"source"_s)));
#endif
}

void TstCoreUtil::movingAFolderMovesEverything_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("free name") << u"target"_s;
    QTest::newRow("with a slash") << u"target/"_s;
    QTest::newRow("empty folder") << u"empty"_s;
    QTest::newRow("in a folder that doesn't exist") << u"new/folder/target"_s;
}

void TstCoreUtil::movingAFolderMovesEverything()
{
    QFETCH(QString, target);
    makeTree(u"source"_s);
    QVERIFY(QDir().mkpath(path(u"empty"_s)));
    const Tree before = tree(u"source"_s);
    QVERIFY(TVLCoreUtil::MoveDirectoryQuick(path(u"source"_s), path(target)));
    QCOMPARE(tree(target), before);
    QVERIFY(!QFileInfo::exists(path(u"source"_s)));
}

void TstCoreUtil::movingIntoAFolderThatIsNotEmptyAddsToIt()
{
    makeTree(u"source"_s);
    makeFile(u"target/own"_s, "own");
    Tree expected = tree(u"source"_s);
    expected.insert(u"own"_s, "own");
    QVERIFY(TVLCoreUtil::MoveDirectoryQuick(path(u"source"_s), path(u"target"_s)));
    QCOMPARE(tree(u"target"_s), expected);
    QVERIFY(!QFileInfo::exists(path(u"source"_s)));
}

void TstCoreUtil::movingToAnotherFileSystemCopies()
{
    const QTemporaryDir other(u"/dev/shm/tst_coreutil-XXXXXX"_s);
    if (!other.isValid() || QFile::rename(mFolder->path(), other.filePath(u"probe"_s)))
        QSKIP("There is no other file system.");
    makeTree(u"source"_s);
    makeFile(u"outside"_s);
    QVERIFY(QFile::link(path(u"outside"_s), path(u"source/link"_s)));
    QVERIFY(TVLCoreUtil::MoveDirectoryQuick(path(u"source"_s), other.filePath(u"target"_s)));
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(other.filePath(u"target"_s)), 8);
    QVERIFY(!QFileInfo::exists(path(u"source"_s)));
    QCOMPARE(contentOf(u"outside"_s), "content");
}

void TstCoreUtil::movingThatCannotReplaceAFileKeepsTheSource()
{
    makeTree(u"source"_s);
    makeFile(u"target/one.txt"_s, "old");
    const Tree before = tree(u"source"_s);
    QVERIFY(!TVLCoreUtil::MoveDirectoryQuick(path(u"source"_s), path(u"target"_s)));
    QCOMPARE(tree(u"source"_s), before);
    QCOMPARE(contentOf(u"target/one.txt"_s), "old");
}

void TstCoreUtil::movingIsRefused_data()
{
    copyingIsRefused_data();
    QTest::newRow("out of the target") << u"source/inner"_s << u"source"_s;
    QTest::newRow("far out of the target") << u"source/inner/deep"_s << u"source"_s;
}

void TstCoreUtil::movingIsRefused()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    makeTree(u"source"_s);
    makeFile(u"file"_s);
    const Tree before = tree(u"."_s);
    QVERIFY(!TVLCoreUtil::MoveDirectoryQuick(path(source), path(target)));
    QCOMPARE(tree(u"."_s), before);
}

void TstCoreUtil::entriesAreCountedOnAllLevels()
{
    makeTree(u"folder"_s);
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(path(u"folder"_s)), 7);
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(path(u"folder/empty"_s)), 0);
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(path(u"folder/one.txt"_s)), 0);
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(path(u"missing"_s)), 0);
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(QString()), 0);
}

void TstCoreUtil::countingDoesNotFollowLinks()
{
    makeTree(u"outside"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QVERIFY(QFile::link(path(u"outside"_s), path(u"folder/link"_s)));
    QVERIFY(QFile::link(path(u"folder"_s), path(u"folder/circle"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"folder/dead link"_s)));
    QCOMPARE(TVLCoreUtil::getFileAndDirCount(path(u"folder"_s)), 3);
}

void TstCoreUtil::onlyWhatCertainlyIsNotThereIsMissing()
{
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QVERIFY(QFile::link(u"nowhere"_s, path(u"link"_s)));
    for (const QString &name :
         {u"file"_s, u"folder"_s, u"link"_s, u"link/in nowhere"_s, u"file/in a file"_s})
        QVERIFY2(!TVLCoreUtil::IsMissing(path(name)), qPrintable(name));
    for (const QString &name : {u"other"_s, u"folder/other"_s, u"other/in nothing"_s})
        QVERIFY2(TVLCoreUtil::IsMissing(path(name)), qPrintable(name));
}

void TstCoreUtil::readabilityIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isReadable");

    QTest::newRow("file") << u"file"_s << true;
    QTest::newRow("folder") << u"folder"_s << true;
    QTest::newRow("missing") << u"missing"_s << false;
    QTest::newRow("below a file") << u"file/inner"_s << false;
    QTest::newRow("empty") << QString() << false;
}

void TstCoreUtil::readabilityIsTold()
{
    QFETCH(QString, name);
    QFETCH(bool, isReadable);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QString error;
    QCOMPARE(TVLCoreUtil::IsReadable(path(name), &error), isReadable);
    QCOMPARE(error.isEmpty(), isReadable);
    QCOMPARE(TVLCoreUtil::IsReadable(path(name), nullptr), isReadable);
}

void TstCoreUtil::writabilityIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isWritable");

    QTest::newRow("file") << u"file"_s << true;
    QTest::newRow("folder") << u"folder"_s << true;
    QTest::newRow("new file") << u"folder/new"_s << true;
    QTest::newRow("in a folder that doesn't exist") << u"missing/new"_s << false;
    QTest::newRow("below a file") << u"file/new"_s << false;
    QTest::newRow("empty") << QString() << false;
}

void TstCoreUtil::writabilityIsTold()
{
    QFETCH(QString, name);
    QFETCH(bool, isWritable);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    const Tree before = tree(u"."_s);
    QString error;
    QCOMPARE(TVLCoreUtil::IsWritable(path(name), &error), isWritable);
    QCOMPARE(error.isEmpty(), isWritable);
    QCOMPARE(TVLCoreUtil::IsWritable(path(name), nullptr), isWritable);
    QCOMPARE(tree(u"."_s), before);
}

void TstCoreUtil::textReadsBack_data()
{
    QTest::addColumn<QByteArray>("codecName");
    QTest::addColumn<QString>("text");

    const std::pair<const char *, QString> texts[] = {
        {"empty", QString()},
        {"plain", u"Hello"_s},
        {"line ends", u"a\r\nb\nc\rd\r\n"_s},
        {"beyond ASCII", u"\u00c4\u00e9\u00df"_s},
        {"null character", QString(u'a') + QChar(0) + u'b'},
    };
    for (const char *codecName : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE", "UTF-16",
                                  "UTF-32", "ISO-8859-1"}) {
        for (const auto &[name, text] : texts)
            QTest::addRow("%s in %s", name, codecName) << QByteArray(codecName) << text;
    }
    QTest::newRow("beyond the BMP in UTF-8") << QByteArray("UTF-8") << u"\u4e2d\U0001f600"_s;
    QTest::newRow("beyond the BMP in UTF-16") << QByteArray("UTF-16LE") << u"\u4e2d\U0001f600"_s;
    QTest::newRow("long") << QByteArray("UTF-8") << QString(3'000'000, QChar(0x4e2d));
}

void TstCoreUtil::textReadsBack()
{
    QFETCH(QByteArray, codecName);
    QFETCH(QString, text);
    QString error;
    QVERIFY(TVLCoreUtil::WriteUnicodeTextFile(text, path(u"file"_s), &error, codecName));
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(path(u"file"_s), &error, codecName), text);
    QCOMPARE(error, QString());
}

void TstCoreUtil::textIsWrittenWithoutByteOrderMark_data()
{
    QTest::addColumn<QByteArray>("codecName");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("\xc3\xa4");
    QTest::newRow("UTF-16LE") << QByteArray("UTF-16LE") << QByteArray("\xe4\x00", 2);
    QTest::newRow("UTF-16BE") << QByteArray("UTF-16BE") << QByteArray("\x00\xe4", 2);
    QTest::newRow("UTF-32LE") << QByteArray("UTF-32LE") << QByteArray("\xe4\x00\x00\x00", 4);
    QTest::newRow("ISO-8859-1") << QByteArray("ISO-8859-1") << QByteArray("\xe4");
}

void TstCoreUtil::textIsWrittenWithoutByteOrderMark()
{
    QFETCH(QByteArray, codecName);
    QVERIFY(TVLCoreUtil::WriteUnicodeTextFile(u"\u00e4"_s, path(u"file"_s), nullptr, codecName));
    QTEST(contentOf(u"file"_s), "bytes");
}

void TstCoreUtil::aByteOrderMarkWinsOverTheEncoding_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("UTF-8") << QByteArray("\xef\xbb\xbf\xc3\xa4!");
    QTest::newRow("UTF-16LE") << QByteArray("\xff\xfe\xe4\x00!\x00", 6);
    QTest::newRow("UTF-16BE") << QByteArray("\xfe\xff\x00\xe4\x00!", 6);
    QTest::newRow("UTF-32LE") << QByteArray("\xff\xfe\x00\x00\xe4\x00\x00\x00!\x00\x00\x00", 12);
    QTest::newRow("UTF-32BE") << QByteArray("\x00\x00\xfe\xff\x00\x00\x00\xe4\x00\x00\x00!", 12);
}

void TstCoreUtil::aByteOrderMarkWinsOverTheEncoding()
{
    QFETCH(QByteArray, bytes);
    makeFile(u"file"_s, bytes);
    const QString text = u"\u00e4!"_s;
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(path(u"file"_s), nullptr), text);
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(path(u"file"_s), nullptr, "ISO-8859-1"), text);
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(path(u"file"_s), nullptr, "UTF-16"), text);
}

void TstCoreUtil::withoutDetectionTheEncodingWins()
{
    makeFile(u"file"_s, "\xef\xbb\xbf\xc3\xa4");
    const QString file = path(u"file"_s);
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(file, nullptr, "ISO-8859-1", false),
             u"\u00ef\u00bb\u00bf\u00c3\u00a4"_s);
    // The encoding's own mark is still none of the text.
    QCOMPARE(TVLCoreUtil::ReadUnicodeTextFile(file, nullptr, "UTF-8", false), u"\u00e4"_s);
}

void TstCoreUtil::bytesThatMeanNothingBecomeReplacementCharacters_data()
{
    QTest::addColumn<QByteArray>("codecName");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    const QByteArray utf8 = "UTF-8";
    QTest::newRow("wrong byte") << utf8
                                << QByteArray("a\xff"
                                              "b")
                                << u"a\ufffdb"_s;
    QTest::newRow("cut off") << utf8 << QByteArray("a\xc3") << u"a\ufffd"_s;
    QTest::newRow("cut off in UTF-16") << QByteArray("UTF-16LE")
                                       << QByteArray("a\x00"
                                                     "b",
                                                     3)
                                       << u"a\ufffd"_s;
}

void TstCoreUtil::bytesThatMeanNothingBecomeReplacementCharacters()
{
    QFETCH(QByteArray, codecName);
    QFETCH(QByteArray, bytes);
    makeFile(u"file"_s, bytes);
    QString error;
    QTEST(TVLCoreUtil::ReadUnicodeTextFile(path(u"file"_s), &error, codecName), "text");
    QCOMPARE(error, QString());
}

void TstCoreUtil::charactersThatTheEncodingLacksAreReplaced()
{
    QVERIFY(
        TVLCoreUtil::WriteUnicodeTextFile(u"a\u4e2db"_s, path(u"file"_s), nullptr, "ISO-8859-1"));
    QCOMPARE(contentOf(u"file"_s), "a?b");
}

void TstCoreUtil::readingTextFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("codecName");

    QTest::newRow("missing") << u"missing"_s << QByteArray("UTF-8");
    QTest::newRow("folder") << u"folder"_s << QByteArray("UTF-8");
    QTest::newRow("below a file") << u"file/inner"_s << QByteArray("UTF-8");
    QTest::newRow("unknown encoding") << u"file"_s << QByteArray("No-Such-Encoding");
    QTest::newRow("empty encoding") << u"file"_s << QByteArray("");
}

void TstCoreUtil::readingTextFails()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, codecName);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QString error;
    QVERIFY(TVLCoreUtil::ReadUnicodeTextFile(path(name), &error, codecName).isEmpty());
    QVERIFY(!error.isEmpty());
    QVERIFY(TVLCoreUtil::ReadUnicodeTextFile(path(name), nullptr, codecName).isEmpty());
}

void TstCoreUtil::writingTextFails_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("folder") << u"folder"_s;
    QTest::newRow("in a folder that doesn't exist") << u"missing/file"_s;
    QTest::newRow("below a file") << u"file/inner"_s;
}

void TstCoreUtil::writingTextFails()
{
    QFETCH(QString, name);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    const Tree before = tree(u"."_s);
    QString error;
    QVERIFY(!TVLCoreUtil::WriteUnicodeTextFile(u"text"_s, path(name), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!TVLCoreUtil::WriteUnicodeTextFile(u"text"_s, path(name), nullptr));
    QCOMPARE(tree(u"."_s), before);
}

void TstCoreUtil::writingToAFullDiskFails()
{
    const QString fullDisk = u"/dev/full"_s;
    if (!QFileInfo::exists(fullDisk))
        QSKIP("There is no device that is always full.");
    QString error;
    QVERIFY(!TVLCoreUtil::WriteUnicodeTextFile(u"a"_s, fullDisk, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!TVLCoreUtil::WriteUnicodeTextFile(QString(1'000'000, u'a'), fullDisk, nullptr));
}

void TstCoreUtil::bytesReplaceThoseOfAFile()
{
    makeFile(u"file"_s, "a longer content");
    const QByteArray bytes("a\0b\xff", 4);
    bool couldOpen = false;
    QString error;
    QVERIFY(TVLCoreUtil::WriteBinaryFile(bytes, path(u"file"_s), &error, &couldOpen));
    QVERIFY(couldOpen);
    QVERIFY(error.isEmpty());
    QCOMPARE(contentOf(u"file"_s), bytes);
}

void TstCoreUtil::whetherAFileCouldBeOpenedIsToldApart()
{
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    bool couldOpen = true;
    QVERIFY(!TVLCoreUtil::WriteBinaryFile("text", path(u"folder"_s), nullptr, &couldOpen));
    QVERIFY(!couldOpen);
    QVERIFY(!TVLCoreUtil::WriteBinaryFile("text", u"/dev/full"_s, nullptr, &couldOpen));
    QVERIFY(couldOpen);
}

void TstCoreUtil::anUnknownEncodingLeavesTheFileAsItWas()
{
    makeFile(u"file"_s);
    QString error;
    QVERIFY(
        !TVLCoreUtil::WriteUnicodeTextFile(u"text"_s, path(u"file"_s), &error, "No-Such-Encoding"));
    QVERIFY(error.contains(u"No-Such-Encoding"_s));
    QCOMPARE(contentOf(u"file"_s), "content");
}

void TstCoreUtil::writingReplacesALongerText()
{
    makeFile(u"file"_s, "a longer text");
    QVERIFY(TVLCoreUtil::WriteUnicodeTextFile(u"short"_s, path(u"file"_s), nullptr));
    QCOMPARE(contentOf(u"file"_s), "short");
    QVERIFY(TVLCoreUtil::WriteUnicodeTextFile(QString(), path(u"file"_s), nullptr));
    QCOMPARE(contentOf(u"file"_s), "");
}

void TstCoreUtil::bytesAreReadAsTheyAre()
{
    const QByteArray bytes("\xef\xbb\xbf\r\n\x00\xff", 7);
    makeFile(u"file"_s, bytes);
    makeFile(u"empty"_s, "");
    bool ok = false;
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"file"_s), &ok), bytes);
    QVERIFY(ok);
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"file"_s)), bytes);
    ok = false;
    QVERIFY(TVLCoreUtil::ReadBinaryFile(path(u"empty"_s), &ok).isEmpty());
    QVERIFY(ok);
}

void TstCoreUtil::readingBytesFails_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << u"missing"_s;
    QTest::newRow("folder") << u"folder"_s;
    QTest::newRow("below a file") << u"file/inner"_s;
}

void TstCoreUtil::readingBytesFails()
{
    QFETCH(QString, name);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    bool ok = true;
    QVERIFY(TVLCoreUtil::ReadBinaryFile(path(name), &ok).isEmpty());
    QVERIFY(!ok);
    QVERIFY(TVLCoreUtil::ReadBinaryFile(path(name)).isEmpty());
}

void TstCoreUtil::fileNamesAreSorted()
{
    for (const char *name : {"b", "a.txt", "c", "10", "9", ".hidden"})
        makeFile(u"folder/"_s + QString::fromLatin1(name));
    QVERIFY(QDir().mkpath(path(u"folder/inner"_s)));
    QCOMPARE(TVLCoreUtil::fileNames(path(u"folder"_s)),
             QStringList({u"10"_s, u"9"_s, u"a.txt"_s, u"b"_s, u"c"_s}));
}

void TstCoreUtil::thereAreNoFileNamesWithoutAFolder_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty path") << QString();
    QTest::newRow("missing") << u"missing"_s;
    QTest::newRow("file") << u"file"_s;
    QTest::newRow("empty folder") << u"folder"_s;
}

void TstCoreUtil::thereAreNoFileNamesWithoutAFolder()
{
    QFETCH(QString, name);
    makeFile(u"file"_s);
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QCOMPARE(TVLCoreUtil::fileNames(path(name)), QStringList());
}

void TstCoreUtil::theTempFolderIsMade()
{
    const Environment environment({{"TMPDIR", QFile::encodeName(mFolder->path())}});
    const QString expected = path(u"Tavelinor"_s);
    QVERIFY(!QFileInfo::exists(expected));
    QCOMPARE(TVLCoreUtil::GetTavelinorTempPath(), expected);
    QVERIFY(QFileInfo(expected).isDir());
    QCOMPARE(TVLCoreUtil::GetTavelinorTempPath(), expected);
}

void TstCoreUtil::theTempFolderIsPrivate()
{
    const Environment environment({{"TMPDIR", QFile::encodeName(mFolder->path())}});
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(!(QFileInfo(TVLCoreUtil::GetTavelinorTempPath()).permissions() & others));
}

void TstCoreUtil::aTempPathIsFree_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("tail");

    QTest::newRow("without dot") << u"xml"_s << u".xml"_s;
    QTest::newRow("with dot") << u".rtf"_s << u".rtf"_s;
    QTest::newRow("double") << u"tar.gz"_s << u".tar.gz"_s;
    QTest::newRow("none") << QString() << QString();
}

void TstCoreUtil::aTempPathIsFree()
{
    QFETCH(QString, extension);
    QFETCH(QString, tail);
    const Environment environment({{"TMPDIR", QFile::encodeName(mFolder->path())}});
    const QString first = TVLCoreUtil::GetNewTempFilePath(extension);
    QCOMPARE(QFileInfo(first).absolutePath(), path(u"Tavelinor"_s));
    QVERIFY(first.endsWith(tail));
    QCOMPARE(QFileInfo(first).fileName().size(), 36 + tail.size());
    QVERIFY(!QFileInfo::exists(first));
    QVERIFY(first != TVLCoreUtil::GetNewTempFilePath(extension));
    QVERIFY(TVLCoreUtil::WriteUnicodeTextFile(u"text"_s, first, nullptr));
}

void TstCoreUtil::aFileNameIsMadeUnique_data()
{
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("unique");

    const QStringList none;
    QTest::newRow("free") << none << u"a.txt"_s << u"a.txt"_s;
    QTest::newRow("taken") << QStringList{u"a.txt"_s} << u"a.txt"_s << u"a 1.txt"_s;
    QTest::newRow("taken twice") << QStringList{u"a.txt"_s, u"a 1.txt"_s} << u"a.txt"_s
                                 << u"a 2.txt"_s;
    QTest::newRow("gap") << QStringList{u"a.txt"_s, u"a 2.txt"_s} << u"a.txt"_s << u"a 1.txt"_s;
    QTest::newRow("no extension") << QStringList{u"a"_s} << u"a"_s << u"a 1"_s;
    QTest::newRow("several dots") << QStringList{u"a.b.txt"_s} << u"a.b.txt"_s << u"a.b 1.txt"_s;
    QTest::newRow("leading dot") << QStringList{u".a"_s} << u".a"_s << u".a 1"_s;
    QTest::newRow("folder of that name")
        << QStringList{u"a.txt/inner"_s} << u"a.txt"_s << u"a 1.txt"_s;
    QTest::newRow("other extension") << QStringList{u"a.rtf"_s} << u"a.txt"_s << u"a.txt"_s;
    QTest::newRow("dead link of that name") << none << u"dead.txt"_s << u"dead 1.txt"_s;
}

void TstCoreUtil::aFileNameIsMadeUnique()
{
    QFETCH(QStringList, taken);
    QFETCH(QString, name);
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dead.txt"_s)));
    for (const QString &each : taken)
        makeFile(each);
    QTEST(TVLCoreUtil::GetUniqueFileName(mFolder->path(), name), "unique");
}

void TstCoreUtil::theLoginNameComesFromTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<QByteArray>("logName");
    QTest::addColumn<QByteArray>("userName");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all") << QByteArray("a") << QByteArray("b") << QByteArray("c") << u"a"_s;
    QTest::newRow("second") << QByteArray("") << QByteArray("b") << QByteArray("c") << u"b"_s;
    QTest::newRow("third") << QByteArray("") << QByteArray("") << QByteArray("c") << u"c"_s;
    QTest::newRow("none") << QByteArray("") << QByteArray("") << QByteArray("") << QString();
    QTest::newRow("beyond ASCII") << QByteArray("J\xc3\xb6rg") << QByteArray("") << QByteArray("")
                                  << u"J\u00f6rg"_s;
}

void TstCoreUtil::theLoginNameComesFromTheEnvironment()
{
    QFETCH(QByteArray, user);
    QFETCH(QByteArray, logName);
    QFETCH(QByteArray, userName);
    const Environment environment({{"USER", user}, {"LOGNAME", logName}, {"USERNAME", userName}});
    QTEST(TvlCore::systemUsernameEnv(), "expected");
}

void TstCoreUtil::theUserHasAName()
{
    const Environment environment({{"USER", "someone"}});
    const QString name = TvlCore::systemUsername();
    QVERIFY(!name.isEmpty());
    QVERIFY(!name.contains(u','));
    QCOMPARE(name, name.trimmed());
}

TVL_TEST(TstCoreUtil)

#include "tst_coreutil.moc"
