#include "TVLProjectFolderFormat.h"
#include "TestMain.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <memory>

namespace {

using Format = TVLProjectFolderFormat;

const QUuid NodeUuid(u"{0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d}"_qs);

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
    [[nodiscard]] QString project() const
    {
        return mDirectory->filePath(u"deep/My Novel.tavel"_qs);
    }
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
    const QString uuid = u"0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D"_qs;
    add("files", &Format::filesPath, u"/Files"_qs);
    add("documents", &Format::filesDocsPath, u"/Files/Docs"_qs);
    add("data", &Format::filesDataPath, u"/Files/Data"_qs);
    add(
        "data of an item",
        [](const QString &path) { return Format::filesDataNodePath(path, NodeUuid); },
        u"/Files/Data/"_qs + uuid);
    add("settings", &Format::settingsPath, u"/Settings"_qs);
    add("search index", &Format::searchIndexesFilePath, u"/Files/search.indexes"_qs);
    add("checksums by id", &Format::projectChecksumFilePathId, u"/Files/Docs/docs.checksum"_qs);
    add("checksums by uuid", &Format::projectChecksumFilePath, u"/Files/Data/docs.checksum"_qs);
    add("checksums of scripts", &Format::filesMobileScriptsChecksumsFilePath,
        u"/Files/mobilescripts.checksums"_qs);
    add("autosave", &Format::binderAutosaveFilePath, u"/Files/binder.autosave"_qs);
    add("backup", &Format::binderBackupFilePath, u"/Files/binder.backup"_qs);
    add("snapshots", &Format::snapshotsPath, u"/Snapshots"_qs);
    add(
        "snapshots of an item",
        [](const QString &path) { return Format::snapshotsNodePath(path, NodeUuid); },
        u"/Snapshots/"_qs + uuid);
    add("mobile", &Format::mobilePath, u"/Mobile"_qs);
    add("mobile data", &Format::mobileDataPath, u"/Mobile/Data"_qs);
    add(
        "mobile data of an item",
        [](const QString &path) { return Format::mobileDataNodePath(path, NodeUuid); },
        u"/Mobile/Data/"_qs + uuid);
    add("mobile binder", &Format::mobileBinderSyncFilePath, u"/Mobile/binder.sync"_qs);
    add("mobile search index", &Format::mobileSearchIndexesFilePath, u"/Mobile/search.indexes"_qs);
    add("mobile checksums of scripts", &Format::mobileDataScriptsChecksumsFilePath,
        u"/Mobile/Data/scripts.checksums"_qs);
    add(
        "mobile checksums of an item",
        [](const QString &path) { return Format::mobileDataUuidChecksumsFilePath(path, NodeUuid); },
        u"/Mobile/Data/"_qs + uuid + u".checksums"_qs);
    add("script options", &Format::settingsScriptsMobFilePath, u"/Settings/scripts.mob"_qs);
    add("external sync", &Format::externalFolderSyncFilePath,
        u"/Settings/User/folder-sync-win.ini"_qs);
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

    for (const QString &path : {u"Novel.tavel"_qs, u"../Novel.tavel"_qs, u"Novel.tavelx"_qs})
        QCOMPARE(operation.compute(path), path + suffix);
}

void TstLayout::existsOperationsTestTheComputedPath_data()
{
    QTest::addColumn<ExistsOperation>("operation");
    QTest::addColumn<QString>("path");

    const auto add = [](const char *name, bool (*exists)(const QString &), const QString &path) {
        QTest::newRow(name) << ExistsOperation{exists} << path;
    };
    const QString uuid = u"0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D"_qs;
    add(
        "data of an item",
        [](const QString &path) { return Format::filesDataNodePathExists(path, NodeUuid); },
        u"/Files/Data/"_qs + uuid);
    add("mobile binder", &Format::mobileBinderSyncFilePathExists, u"/Mobile/binder.sync"_qs);
    add(
        "mobile data of an item",
        [](const QString &path) { return Format::mobileDataNodePathExists(path, NodeUuid); },
        u"/Mobile/Data/"_qs + uuid);
    add("external sync", &Format::externalFolderSyncFilePathExists,
        u"/Settings/User/folder-sync-win.ini"_qs);
}

void TstLayout::existsOperationsTestTheComputedPath()
{
    QFETCH(ExistsOperation, operation);
    QFETCH(QString, path);

    QVERIFY(!operation.exists(project()));
    QVERIFY(QDir(mDirectory->path()).isEmpty());
    (void)writeFile(project() + path + u"/file"_qs);
    QVERIFY(operation.exists(project()));
}

void TstLayout::addDirectoryRows()
{
    QTest::addColumn<DirectoryOperation>("operation");
    QTest::addColumn<QString>("subfolder");

    QTest::newRow("files") << DirectoryOperation{&Format::filesDirectory} << u"Files"_qs;
    QTest::newRow("icons") << DirectoryOperation{&Format::iconsDirectory} << u"Icons"_qs;
    QTest::newRow("documents") << DirectoryOperation{&Format::docsDirectory} << u"Files/Docs"_qs;
    QTest::newRow("settings") << DirectoryOperation{&Format::settingsDirectory} << u"Settings"_qs;
    QTest::newRow("snapshots") << DirectoryOperation{&Format::snapshotsDirectory}
                               << u"Snapshots"_qs;
    QTest::newRow("mobile") << DirectoryOperation{&Format::mobileDirectory} << u"Mobile"_qs;
    QTest::newRow("mobile data") << DirectoryOperation{&Format::mobileDataDirectory}
                                 << u"Mobile/Data"_qs;
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

    const QString file = writeFile(project() + u'/' + subfolder + u"/file"_qs);
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
    const QDir directory = operation.make(project() + u"/My Novel.tavelx"_qs, &ok);
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
    const QString below = writeFile(mDirectory->filePath(u"file"_qs)) + u"/Novel.tavel"_qs;
    (void)operation.make(below, nullptr);
    QVERIFY(!QFileInfo::exists(below));
}

void TstLayout::directoryOperationsFailBelowARegularFile()
{
    QFETCH(DirectoryOperation, operation);

    const QString file = writeFile(mDirectory->filePath(u"file"_qs));
    bool ok = true;
    (void)operation.make(file + u"/Novel.tavel"_qs, &ok);
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
    (void)writeFile(project() + u"/Files"_qs);
    bool ok = true;
    QCOMPARE(Format::filesDirectory(project(), &ok).absolutePath(), project());
    QVERIFY(!ok);
}

void TstLayout::theDocumentsFolderFailsWithTheFilesFolder()
{
    (void)writeFile(project() + u"/Files"_qs);
    bool ok = true;
    QCOMPARE(Format::docsDirectory(project(), &ok).absolutePath(), project());
    QVERIFY(!ok);
    QVERIFY(!QFileInfo::exists(project() + u"/Docs"_qs));
}

void TstLayout::filePathOperationsMakeTheirFolderButNotTheFile_data()
{
    QTest::addColumn<PathOperation>("operation");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("fileName");

    QTest::newRow("version") << PathOperation{&Format::versionFilePath} << u"Files"_qs
                             << u"version.txt"_qs;
    QTest::newRow("settings") << PathOperation{&Format::settingsUiFilePath} << u"Settings"_qs
                              << u"ui.ini"_qs;
    QTest::newRow("script format") << PathOperation{&Format::scriptformatXmlFilePath}
                                   << u"Settings"_qs << u"scriptformat.xml"_qs;
    QTest::newRow("template") << PathOperation{&Format::templateInfoXmlFilePath} << u"Settings"_qs
                              << u"templateinfo.xml"_qs;
}

void TstLayout::filePathOperationsMakeTheirFolderButNotTheFile()
{
    QFETCH(PathOperation, operation);
    QFETCH(QString, folder);
    QFETCH(QString, fileName);

    const QString expected = project() + u'/' + folder + u'/' + fileName;
    const QString binder = project() + u"/My Novel.tavelx"_qs;
    for (const QString &path : {project(), project() + u'/', binder}) {
        QCOMPARE(operation.compute(path), expected);
        QVERIFY(QFileInfo(project() + u'/' + folder).isDir());
        QVERIFY(!QFileInfo::exists(expected));
    }
}

void TstLayout::ensurePathExistsMakesAllFoldersOfAPath()
{
    const QString path = mDirectory->filePath(u"a/b/c"_qs);
    QStringList errors = {u"earlier"_qs};
    for (int pass = 0; pass < 2; ++pass) {
        bool ok = false;
        QCOMPARE(Format::ensurePathExists(path, &ok, &errors).absolutePath(), path);
        QVERIFY(ok);
        QVERIFY(QFileInfo(path).isDir());
    }
    QCOMPARE(errors, QStringList(u"earlier"_qs));
}

void TstLayout::ensurePathExistsReportsAFolderThatCannotBeMade()
{
    const QString path = writeFile(mDirectory->filePath(u"file"_qs)) + u"/folder"_qs;
    QStringList errors = {u"earlier"_qs};
    bool ok = true;
    (void)Format::ensurePathExists(path, &ok, &errors);
    QVERIFY(!ok);
    QCOMPARE(errors,
             (QStringList{u"earlier"_qs, u"Could not create directory: '%1'"_qs.arg(path)}));

    ok = true;
    (void)Format::ensurePathExists(path, &ok);
    QVERIFY(!ok);
}

void TstLayout::theEnclosingPathIsTheProjectsFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    const QString current = QDir::currentPath();
    QTest::newRow("folder") << u"/books/Novel.tavel"_qs << u"/books/Novel.tavel"_qs;
    QTest::newRow("folder with a slash") << u"/books/Novel.tavel/"_qs << u"/books/Novel.tavel"_qs;
    QTest::newRow("binder") << u"/books/Novel.tavel/Novel.tavelx"_qs << u"/books/Novel.tavel"_qs;
    QTest::newRow("binder of another name")
        << u"/books/Novel.tavel/Other.tavelx"_qs << u"/books/Novel.tavel"_qs;
    QTest::newRow("binder in capitals")
        << u"/books/Novel.tavel/Novel.TAVELX"_qs << u"/books/Novel.tavel/Novel.TAVELX"_qs;
    QTest::newRow("any extension") << u"/books/Novel"_qs << u"/books/Novel"_qs;
    QTest::newRow("relative folder") << u"Novel.tavel"_qs << current + u"/Novel.tavel"_qs;
    QTest::newRow("relative binder")
        << u"Novel.tavel/Novel.tavelx"_qs << current + u"/Novel.tavel"_qs;
    QTest::newRow("binder alone") << u"Novel.tavelx"_qs << current;
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

    QTest::newRow("folder") << u"/books/My Novel.tavel"_qs << u"My Novel"_qs;
    QTest::newRow("folder with a slash") << u"/books/My Novel.tavel/"_qs << u"My Novel"_qs;
    QTest::newRow("folder with dots") << u"/books/My.Novel.2.tavel"_qs << u"My.Novel.2"_qs;
    QTest::newRow("folder without an extension") << u"/books/Novel"_qs << u"Novel"_qs;
    QTest::newRow("binder") << u"/books/Novel.tavel/Other.tavelx"_qs << u"Novel"_qs;
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

    const QString older = u"/books/My Novel.tavel/project.tavelx"_qs;
    QTest::newRow("folder") << u"/books/My Novel.tavel"_qs
                            << u"/books/My Novel.tavel/My Novel.tavelx"_qs << older;
    QTest::newRow("folder with a slash")
        << u"/books/My Novel.tavel/"_qs << u"/books/My Novel.tavel/My Novel.tavelx"_qs << older;
    QTest::newRow("binder") << u"/books/My Novel.tavel/Other.tavelx"_qs
                            << u"/books/My Novel.tavel/Other.tavelx"_qs << older;
    QTest::newRow("folder with dots") << u"/books/a.b.tavel"_qs << u"/books/a.b.tavel/a.b.tavelx"_qs
                                      << u"/books/a.b.tavel/project.tavelx"_qs;
    QTest::newRow("folder without an extension")
        << u"/books/Novel"_qs << u"/books/Novel/Novel.tavelx"_qs
        << u"/books/Novel/project.tavelx"_qs;
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
    QCOMPARE(Format::nameFilter(), u"Tavelinor Folder (*.tavel)"_qs);
}

void TstLayout::ensureProjectPathExistsMakesTheFolder_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_qs;
    QTest::newRow("binder") << u"/My Novel.tavelx"_qs;
}

void TstLayout::ensureProjectPathExistsMakesTheFolder()
{
    QFETCH(QString, suffix);

    for (int pass = 0; pass < 2; ++pass) {
        QString error = u"untouched"_qs;
        QVERIFY(Format::ensureProjectPathExists(project() + suffix, &error));
        QCOMPARE(error, u"untouched"_qs);
        QVERIFY(QFileInfo(project()).isDir());
        QVERIFY(QDir(project()).isEmpty());
    }
}

void TstLayout::ensureProjectPathExistsReportsTheAbsolutePath()
{
    const QString path = writeFile(mDirectory->filePath(u"file"_qs)) + u"/Novel.tavel"_qs;
    QString error;
    QVERIFY(!Format::ensureProjectPathExists(QDir::current().relativeFilePath(path), &error));
    QCOMPARE(error, u"Could not create project directory: %1"_qs.arg(QDir::cleanPath(path)));
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
    Format format(u"/elsewhere"_qs, TVL::FormatVersion18);
    format.setProjectPath(project() + u"/My Novel.tavelx"_qs);
    QCOMPARE(format.projectPath(), project());
}

TVL_TEST(TstLayout)
#include "tst_layout.moc"
