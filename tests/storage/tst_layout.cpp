#include "TVLProjectFolderFormat.h"
#include "TestMain.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QUuid NodeUuid(u"{0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d}"_s);

/** An operation that computes a path. */
struct PathOperation
{
    QString (*compute)(const QString &path);
};

/** An operation that makes a folder. */
struct DirectoryOperation
{
    QDir (*make)(const QString &path, bool *ok);
};

/** An operation that tells whether something is there. */
struct ExistsOperation
{
    bool (*exists)(const QString &path);
};

} // namespace

class TstLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void pathOperationsComputeTextAndCreateNothing_data() { addPathRows(); }
    void pathOperationsComputeTextAndCreateNothing();
    void pathOperationsPutTheirSuffixBehindThePathAsGiven_data() { addPathRows(); }
    void pathOperationsPutTheirSuffixBehindThePathAsGiven();
    void existsOperationsTestTheComputedPath_data();
    void existsOperationsTestTheComputedPath();

    void directoryOperationsCreateWhatIsMissing_data() { addDirectoryRows(); }
    void directoryOperationsCreateWhatIsMissing();
    void directoryOperationsLeaveWhatIsThere_data() { addDirectoryRows(); }
    void directoryOperationsLeaveWhatIsThere();
    void directoryOperationsAcceptTheBinderFile_data() { addDirectoryRows(); }
    void directoryOperationsAcceptTheBinderFile();
    void directoryOperationsTolerateATrailingSlash_data() { addDirectoryRows(); }
    void directoryOperationsTolerateATrailingSlash();
    void directoryOperationsWorkWithoutTheResultPointer_data() { addDirectoryRows(); }
    void directoryOperationsWorkWithoutTheResultPointer();
    void directoryOperationsFailBelowARegularFile_data() { addDirectoryRows(); }
    void directoryOperationsFailBelowARegularFile();
    void directoryOperationsFailWhereAFileTakesTheName_data() { addDirectoryRows(); }
    void directoryOperationsFailWhereAFileTakesTheName();
    void aFolderThatCannotBeEnteredGivesTheFolderAboveIt();
    void theDocumentsFolderFailsWithTheFilesFolder();

    void filePathOperationsMakeTheirFolderButNotTheFile_data();
    void filePathOperationsMakeTheirFolderButNotTheFile();

    void ensurePathExistsMakesAllFoldersOfAPath();
    void ensurePathExistsReportsAFolderThatCannotBeMade();

    void theEnclosingPathIsTheProjectsFolder_data();
    void theEnclosingPathIsTheProjectsFolder();
    void theProjectsNameComesFromItsFolder_data();
    void theProjectsNameComesFromItsFolder();
    void theDefaultBinderIsNamedAfterThePath_data();
    void theDefaultBinderIsNamedAfterThePath();
    void theNameFilterShowsProjectFolders();

    void ensureProjectPathExistsMakesTheFolder_data();
    void ensureProjectPathExistsMakesTheFolder();
    void ensureProjectPathExistsReportsTheAbsolutePath();

    void anObjectKeepsItsPathAndVersion();
    void settingAnObjectsPathTakesTheEnclosingPath();

private:
    static void addPathRows();
    static void addDirectoryRows();
    [[nodiscard]] QString project() const { return mDirectory->filePath(u"deep/My Novel.tavel"_s); }
    [[nodiscard]] QString writeFile(const QString &path) const;

    std::unique_ptr<QTemporaryDir> mDirectory;
};

void TstLayout::init()
{
    mDirectory = std::make_unique<QTemporaryDir>();
    QVERIFY(mDirectory->isValid());
}

void TstLayout::cleanup()
{
    mDirectory.reset();
}

QString TstLayout::writeFile(const QString &path) const
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("content") != 7)
        qFatal("could not write %s", qPrintable(path));
    return path;
}

void TstLayout::addPathRows()
{
    QTest::addColumn<PathOperation>("operation");
    QTest::addColumn<QString>("suffix");

    const auto add = [](const char *name, QString (*compute)(const QString &),
                        const QString &suffix) {
        QTest::newRow(name) << PathOperation{compute} << suffix;
    };
    const QString uuid = u"0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D"_s;
    add("files", &Format::filesPath, u"/Files"_s);
    add("documents", &Format::filesDocsPath, u"/Files/Docs"_s);
    add("data", &Format::filesDataPath, u"/Files/Data"_s);
    add(
        "data of an item",
        [](const QString &path) { return Format::filesDataNodePath(path, NodeUuid); },
        u"/Files/Data/"_s + uuid);
    add("settings", &Format::settingsPath, u"/Settings"_s);
    add("search index", &Format::searchIndexesFilePath, u"/Files/search.indexes"_s);
    add("checksums by id", &Format::projectChecksumFilePathId, u"/Files/Docs/docs.checksum"_s);
    add("checksums by uuid", &Format::projectChecksumFilePath, u"/Files/Data/docs.checksum"_s);
    add("checksums of scripts", &Format::filesMobileScriptsChecksumsFilePath,
        u"/Files/mobilescripts.checksums"_s);
    add("autosave", &Format::binderAutosaveFilePath, u"/Files/binder.autosave"_s);
    add("backup", &Format::binderBackupFilePath, u"/Files/binder.backup"_s);
    add("snapshots", &Format::snapshotsPath, u"/Snapshots"_s);
    add(
        "snapshots of an item",
        [](const QString &path) { return Format::snapshotsNodePath(path, NodeUuid); },
        u"/Snapshots/"_s + uuid);
    add("mobile", &Format::mobilePath, u"/Mobile"_s);
    add("mobile data", &Format::mobileDataPath, u"/Mobile/Data"_s);
    add(
        "mobile data of an item",
        [](const QString &path) { return Format::mobileDataNodePath(path, NodeUuid); },
        u"/Mobile/Data/"_s + uuid);
    add("mobile binder", &Format::mobileBinderSyncFilePath, u"/Mobile/binder.sync"_s);
    add("mobile search index", &Format::mobileSearchIndexesFilePath, u"/Mobile/search.indexes"_s);
    add("mobile checksums of scripts", &Format::mobileDataScriptsChecksumsFilePath,
        u"/Mobile/Data/scripts.checksums"_s);
    add(
        "mobile checksums of an item",
        [](const QString &path) { return Format::mobileDataUuidChecksumsFilePath(path, NodeUuid); },
        u"/Mobile/Data/"_s + uuid + u".checksums"_s);
    add("script options", &Format::settingsScriptsMobFilePath, u"/Settings/scripts.mob"_s);
    add("external sync", &Format::externalFolderSyncFilePath,
        u"/Settings/User/folder-sync-win.ini"_s);
}

void TstLayout::pathOperationsComputeTextAndCreateNothing()
{
    QFETCH(PathOperation, operation);
    QFETCH(QString, suffix);

    QCOMPARE(operation.compute(project()), project() + suffix);
    QVERIFY(QDir(mDirectory->path()).isEmpty());
}

void TstLayout::pathOperationsPutTheirSuffixBehindThePathAsGiven()
{
    QFETCH(PathOperation, operation);
    QFETCH(QString, suffix);

    for (const QString &path : {u"Novel.tavel"_s, u"../Novel.tavel"_s, u"Novel.tavelx"_s})
        QCOMPARE(operation.compute(path), path + suffix);
}

void TstLayout::existsOperationsTestTheComputedPath_data()
{
    QTest::addColumn<ExistsOperation>("operation");
    QTest::addColumn<QString>("path");

    const auto add = [](const char *name, bool (*exists)(const QString &), const QString &path) {
        QTest::newRow(name) << ExistsOperation{exists} << path;
    };
    const QString uuid = u"0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D"_s;
    add(
        "data of an item",
        [](const QString &path) { return Format::filesDataNodePathExists(path, NodeUuid); },
        u"/Files/Data/"_s + uuid);
    add("mobile binder", &Format::mobileBinderSyncFilePathExists, u"/Mobile/binder.sync"_s);
    add(
        "mobile data of an item",
        [](const QString &path) { return Format::mobileDataNodePathExists(path, NodeUuid); },
        u"/Mobile/Data/"_s + uuid);
    add("external sync", &Format::externalFolderSyncFilePathExists,
        u"/Settings/User/folder-sync-win.ini"_s);
}

void TstLayout::existsOperationsTestTheComputedPath()
{
    QFETCH(ExistsOperation, operation);
    QFETCH(QString, path);

    QVERIFY(!operation.exists(project()));
    QVERIFY(QDir(mDirectory->path()).isEmpty());
    (void)writeFile(project() + path + u"/file"_s);
    QVERIFY(operation.exists(project()));
}

void TstLayout::addDirectoryRows()
{
    QTest::addColumn<DirectoryOperation>("operation");
    QTest::addColumn<QString>("subfolder");

    QTest::newRow("files") << DirectoryOperation{&Format::filesDirectory} << u"Files"_s;
    QTest::newRow("icons") << DirectoryOperation{&Format::iconsDirectory} << u"Icons"_s;
    QTest::newRow("documents") << DirectoryOperation{&Format::docsDirectory} << u"Files/Docs"_s;
    QTest::newRow("settings") << DirectoryOperation{&Format::settingsDirectory} << u"Settings"_s;
    QTest::newRow("snapshots") << DirectoryOperation{&Format::snapshotsDirectory} << u"Snapshots"_s;
    QTest::newRow("mobile") << DirectoryOperation{&Format::mobileDirectory} << u"Mobile"_s;
    QTest::newRow("mobile data") << DirectoryOperation{&Format::mobileDataDirectory}
                                 << u"Mobile/Data"_s;
}

void TstLayout::directoryOperationsCreateWhatIsMissing()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    bool ok = false;
    const QDir directory = operation.make(project(), &ok);
    QVERIFY(ok);
    QCOMPARE(directory.absolutePath(), project() + u'/' + subfolder);
    QVERIFY(QFileInfo(project() + u'/' + subfolder).isDir());
}

void TstLayout::directoryOperationsLeaveWhatIsThere()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    const QString file = writeFile(project() + u'/' + subfolder + u"/file"_s);
    bool ok = false;
    const QDir directory = operation.make(project(), &ok);
    QVERIFY(ok);
    QCOMPARE(directory.absolutePath(), project() + u'/' + subfolder);
    QVERIFY(QFileInfo::exists(file));
}

void TstLayout::directoryOperationsAcceptTheBinderFile()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    bool ok = false;
    const QDir directory = operation.make(project() + u"/My Novel.tavelx"_s, &ok);
    QVERIFY(ok);
    QCOMPARE(directory.absolutePath(), project() + u'/' + subfolder);
    QVERIFY(directory.exists());
}

void TstLayout::directoryOperationsTolerateATrailingSlash()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    bool ok = false;
    const QDir directory = operation.make(project() + u'/', &ok);
    QVERIFY(ok);
    QCOMPARE(directory.absolutePath(), project() + u'/' + subfolder);
    QVERIFY(directory.exists());
}

void TstLayout::directoryOperationsWorkWithoutTheResultPointer()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    QCOMPARE(operation.make(project(), nullptr).absolutePath(), project() + u'/' + subfolder);
    const QString below = writeFile(mDirectory->filePath(u"file"_s)) + u"/Novel.tavel"_s;
    (void)operation.make(below, nullptr);
    QVERIFY(!QFileInfo::exists(below));
}

void TstLayout::directoryOperationsFailBelowARegularFile()
{
    QFETCH(DirectoryOperation, operation);

    const QString file = writeFile(mDirectory->filePath(u"file"_s));
    bool ok = true;
    (void)operation.make(file + u"/Novel.tavel"_s, &ok);
    QVERIFY(!ok);
    QVERIFY(QFileInfo(file).isFile());
}

void TstLayout::directoryOperationsFailWhereAFileTakesTheName()
{
    QFETCH(DirectoryOperation, operation);
    QFETCH(QString, subfolder);

    const QString file = writeFile(project() + u'/' + subfolder);
    bool ok = true;
    (void)operation.make(project(), &ok);
    QVERIFY(!ok);
    QVERIFY(QFileInfo(file).isFile());
}

void TstLayout::aFolderThatCannotBeEnteredGivesTheFolderAboveIt()
{
    (void)writeFile(project() + u"/Files"_s);
    bool ok = true;
    QCOMPARE(Format::filesDirectory(project(), &ok).absolutePath(), project());
    QVERIFY(!ok);
}

void TstLayout::theDocumentsFolderFailsWithTheFilesFolder()
{
    (void)writeFile(project() + u"/Files"_s);
    bool ok = true;
    QCOMPARE(Format::docsDirectory(project(), &ok).absolutePath(), project());
    QVERIFY(!ok);
    QVERIFY(!QFileInfo::exists(project() + u"/Docs"_s));
}

void TstLayout::filePathOperationsMakeTheirFolderButNotTheFile_data()
{
    QTest::addColumn<PathOperation>("operation");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("fileName");

    QTest::newRow("version") << PathOperation{&Format::versionFilePath} << u"Files"_s
                             << u"version.txt"_s;
    QTest::newRow("settings") << PathOperation{&Format::settingsUiFilePath} << u"Settings"_s
                              << u"ui.ini"_s;
    QTest::newRow("script format") << PathOperation{&Format::scriptformatXmlFilePath}
                                   << u"Settings"_s << u"scriptformat.xml"_s;
    QTest::newRow("template") << PathOperation{&Format::templateInfoXmlFilePath} << u"Settings"_s
                              << u"templateinfo.xml"_s;
}

void TstLayout::filePathOperationsMakeTheirFolderButNotTheFile()
{
    QFETCH(PathOperation, operation);
    QFETCH(QString, folder);
    QFETCH(QString, fileName);

    const QString expected = project() + u'/' + folder + u'/' + fileName;
    const QString binder = project() + u"/My Novel.tavelx"_s;
    for (const QString &path : {project(), project() + u'/', binder}) {
        QCOMPARE(operation.compute(path), expected);
        QVERIFY(QFileInfo(project() + u'/' + folder).isDir());
        QVERIFY(!QFileInfo::exists(expected));
    }
}

void TstLayout::ensurePathExistsMakesAllFoldersOfAPath()
{
    const QString path = mDirectory->filePath(u"a/b/c"_s);
    QStringList errors = {u"earlier"_s};
    for (int pass = 0; pass < 2; ++pass) {
        bool ok = false;
        QCOMPARE(Format::ensurePathExists(path, &ok, &errors).absolutePath(), path);
        QVERIFY(ok);
        QVERIFY(QFileInfo(path).isDir());
    }
    QCOMPARE(errors, QStringList(u"earlier"_s));
}

void TstLayout::ensurePathExistsReportsAFolderThatCannotBeMade()
{
    const QString path = writeFile(mDirectory->filePath(u"file"_s)) + u"/folder"_s;
    QStringList errors = {u"earlier"_s};
    bool ok = true;
    (void)Format::ensurePathExists(path, &ok, &errors);
    QVERIFY(!ok);
    QCOMPARE(errors, (QStringList{u"earlier"_s, u"Could not create directory: '%1'"_s.arg(path)}));

    ok = true;
    (void)Format::ensurePathExists(path, &ok);
    QVERIFY(!ok);
}

void TstLayout::theEnclosingPathIsTheProjectsFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    const QString current = QDir::currentPath();
    QTest::newRow("folder") << u"/books/Novel.tavel"_s << u"/books/Novel.tavel"_s;
    QTest::newRow("folder with a slash") << u"/books/Novel.tavel/"_s << u"/books/Novel.tavel"_s;
    QTest::newRow("binder") << u"/books/Novel.tavel/Novel.tavelx"_s << u"/books/Novel.tavel"_s;
    QTest::newRow("binder of another name")
        << u"/books/Novel.tavel/Other.tavelx"_s << u"/books/Novel.tavel"_s;
    QTest::newRow("binder in capitals")
        << u"/books/Novel.tavel/Novel.TAVELX"_s << u"/books/Novel.tavel/Novel.TAVELX"_s;
    QTest::newRow("any extension") << u"/books/Novel"_s << u"/books/Novel"_s;
    QTest::newRow("relative folder") << u"Novel.tavel"_s << current + u"/Novel.tavel"_s;
    QTest::newRow("relative binder")
        << u"Novel.tavel/Novel.tavelx"_s << current + u"/Novel.tavel"_s;
    QTest::newRow("binder alone") << u"Novel.tavelx"_s << current;
}

void TstLayout::theEnclosingPathIsTheProjectsFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);

    QCOMPARE(Format::calcEnclosingPath(path), expected);
    QCOMPARE(Format::canonicalPath(path), expected);
    QCOMPARE(Format::enclosingDirectory(path).path(), expected);
}

void TstLayout::theProjectsNameComesFromItsFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");

    QTest::newRow("folder") << u"/books/My Novel.tavel"_s << u"My Novel"_s;
    QTest::newRow("folder with a slash") << u"/books/My Novel.tavel/"_s << u"My Novel"_s;
    QTest::newRow("folder with dots") << u"/books/My.Novel.2.tavel"_s << u"My.Novel.2"_s;
    QTest::newRow("folder without an extension") << u"/books/Novel"_s << u"Novel"_s;
    QTest::newRow("binder") << u"/books/Novel.tavel/Other.tavelx"_s << u"Novel"_s;
}

void TstLayout::theProjectsNameComesFromItsFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, name);

    QCOMPARE(Format::directoryName(path), name);
    QCOMPARE(Format::projectPathToProjectName(path), name);
}

void TstLayout::theDefaultBinderIsNamedAfterThePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("binder");
    QTest::addColumn<QString>("olderBinder");

    const QString older = u"/books/My Novel.tavel/project.tavelx"_s;
    QTest::newRow("folder") << u"/books/My Novel.tavel"_s
                            << u"/books/My Novel.tavel/My Novel.tavelx"_s << older;
    QTest::newRow("folder with a slash")
        << u"/books/My Novel.tavel/"_s << u"/books/My Novel.tavel/My Novel.tavelx"_s << older;
    QTest::newRow("binder") << u"/books/My Novel.tavel/Other.tavelx"_s
                            << u"/books/My Novel.tavel/Other.tavelx"_s << older;
    QTest::newRow("folder with dots") << u"/books/a.b.tavel"_s << u"/books/a.b.tavel/a.b.tavelx"_s
                                      << u"/books/a.b.tavel/project.tavelx"_s;
    QTest::newRow("folder without an extension")
        << u"/books/Novel"_s << u"/books/Novel/Novel.tavelx"_s << u"/books/Novel/project.tavelx"_s;
}

void TstLayout::theDefaultBinderIsNamedAfterThePath()
{
    QFETCH(QString, path);
    QFETCH(QString, binder);
    QFETCH(QString, olderBinder);

    QCOMPARE(Format::defaultBinderFilePath(path), binder);
    QCOMPARE(Format::binderFilePathProjectTavelx(path), olderBinder);
}

void TstLayout::theNameFilterShowsProjectFolders()
{
    QCOMPARE(Format::nameFilter(), u"Tavelinor Folder (*.tavel)"_s);
}

void TstLayout::ensureProjectPathExistsMakesTheFolder_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("binder") << u"/My Novel.tavelx"_s;
}

void TstLayout::ensureProjectPathExistsMakesTheFolder()
{
    QFETCH(QString, suffix);

    for (int pass = 0; pass < 2; ++pass) {
        QString error = u"untouched"_s;
        QVERIFY(Format::ensureProjectPathExists(project() + suffix, &error));
        QCOMPARE(error, u"untouched"_s);
        QVERIFY(QFileInfo(project()).isDir());
        QVERIFY(QDir(project()).isEmpty());
    }
}

void TstLayout::ensureProjectPathExistsReportsTheAbsolutePath()
{
    const QString path = writeFile(mDirectory->filePath(u"file"_s)) + u"/Novel.tavel"_s;
    QString error;
    QVERIFY(!Format::ensureProjectPathExists(QDir::current().relativeFilePath(path), &error));
    QCOMPARE(error, u"Could not create project directory: %1"_s.arg(QDir::cleanPath(path)));
    QVERIFY(!Format::ensureProjectPathExists(path, nullptr));
}

void TstLayout::anObjectKeepsItsPathAndVersion()
{
    QObject parent;
    auto *format = new Format(project(), TVL::FormatVersion23, &parent);
    QCOMPARE(format->parent(), &parent);
    QCOMPARE(format->projectPath(), project());
    QCOMPARE(format->formatVersion(), TVL::FormatVersion23);
    format->setFormatVersion(TVL::FormatVersion18);
    QCOMPARE(format->formatVersion(), TVL::FormatVersion18);
    QVERIFY(QDir(mDirectory->path()).isEmpty());
}

void TstLayout::settingAnObjectsPathTakesTheEnclosingPath()
{
    Format format(u"/elsewhere"_s, TVL::FormatVersion18);
    format.setProjectPath(project() + u"/My Novel.tavelx"_s);
    QCOMPARE(format.projectPath(), project());
}

TVL_TEST(TstLayout)
#include "tst_layout.moc"
