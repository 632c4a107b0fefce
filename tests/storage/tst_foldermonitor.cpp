#include "OrdinaryRights.h"
#include "TVLProjectFolderMonitor.h"
#include "TVLProjectModel.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/** The interval of the timer and the time that a busy machine takes over it. */
constexpr int OneInterval = 4000 + 3000;

constexpr int WatcherTimeout = 30000;

const QString FilesFolder = u"Files"_s;
const QString Settings = u"Settings"_s;

QTimer *timerOf(const TVLProjectFolderMonitor &monitor)
{
    return monitor.findChild<QTimer *>();
}

QFileSystemWatcher *watcherOf(const TVLProjectFolderMonitor &monitor)
{
    return monitor.findChild<QFileSystemWatcher *>();
}

bool isWatching(const TVLProjectFolderMonitor &monitor)
{
    return timerOf(monitor)->isActive() && !watcherOf(monitor)->directories().isEmpty();
}

bool isIdle(const TVLProjectFolderMonitor &monitor)
{
    return !timerOf(monitor)->isActive() && watcherOf(monitor)->directories().isEmpty()
        && watcherOf(monitor)->files().isEmpty();
}

/** Leaves the monitor with nothing but its timer. */
void deafen(const TVLProjectFolderMonitor &monitor)
{
    watcherOf(monitor)->removePaths(watcherOf(monitor)->directories());
}

/** Has the timer go off. */
void lookNow(TVLProjectFolderMonitor *monitor)
{
    QMetaObject::invokeMethod(monitor, "onTimerTimeout");
}

void makeFolder(const TestProject &project)
{
    if (!QDir().mkpath(project.path()))
        qFatal("could not make the project's folder");
}

void remove(const TestProject &project, const QString &folder)
{
    if (!QDir(project.path(folder)).removeRecursively())
        qFatal("could not remove %s", qPrintable(folder));
}

QStringList pathsIn(const QSignalSpy &spy)
{
    QStringList paths;
    for (const QList<QVariant> &arguments : spy)
        paths.append(arguments.constFirst().toString());
    return paths;
}

} // namespace

class TstFolderMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Starting and stopping
    void foldersThatAreMissingAreMade();
    void foldersThatAreThereStayAsTheyAre();
    void aProjectWithoutAFolderIsNotWatched_data();
    void aProjectWithoutAFolderIsNotWatched();
    void aFolderThatCannotBeUsedIsNotWatched_data();
    void aFolderThatCannotBeUsedIsNotWatched();
    void aReadOnlyProjectWithoutFoldersIsNotWatched();
    void stoppingEndsIt();
    void anotherPathIsWatchedOnlyWhenStarted();
    void startingWithAPathMovesTheWatch();
    void startingTwiceIsStartingOnce();
    void folderInUse_data();
    void folderInUse();

    // Losses
    void aLossOfFilesGivesOneSignal();
    void aLossOfSettingsIsToldToo();
    void theTimerSeesWhatTheWatcherMisses();
    void readOnlyFilesAreSeenByTheWatcher();
    void readOnlyFilesAreSeenByTheTimer();
    void aFileInTheFoldersPlaceIsALoss();
    void aLossEndsTheRegularLook();
    void afterALossItCanBeStartedAgain();
    void whenTheWholeProjectGoesEachFolderIsToldOnce();
    void aFileThatIsLostIsTold_data();
    void aFileThatIsLostIsTold();

    // What is no loss
    void ordinaryChangesGiveNoSignal();
    void theTimerFindsNothingWrong();
    void afterTheEndOfTheWatchNothingIsTold();

    // With a project
    void aProjectPassesTheSignalOn();
    void aMobileProjectIsNotWatched();
};

void TstFolderMonitor::foldersThatAreMissingAreMade()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    QVERIFY(isWatching(monitor));
    QCOMPARE(timerOf(monitor)->interval(), 4000);
    QVERIFY(!timerOf(monitor)->isSingleShot());
    QCOMPARE(monitor.monitorPath(), project.path());
    QVERIFY(QFileInfo(project.path(FilesFolder)).isDir());
    QVERIFY(QFileInfo(project.path(Settings)).isDir());
    QStringList watched = watcherOf(monitor)->directories();
    watched.sort();
    QCOMPARE(watched, QStringList({project.path(FilesFolder), project.path(Settings)}));
    remove(project, Settings);
    QVERIFY(monitor.startMonitor());
    QVERIFY(QFileInfo(project.path(Settings)).isDir());
}

void TstFolderMonitor::foldersThatAreThereStayAsTheyAre()
{
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Settings/ui.ini"_s, "[General]");
    const auto before = project.files();
    const TVLProjectFolderMonitor monitor(project.path());
    QVERIFY(isWatching(monitor));
    QCOMPARE(project.files(), before);
}

void TstFolderMonitor::aProjectWithoutAFolderIsNotWatched_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing there") << u"missing"_s;
    QTest::newRow("a file") << u"file"_s;
    QTest::newRow("an empty path") << QString();
}

void TstFolderMonitor::aProjectWithoutAFolderIsNotWatched()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.writeFile(u"file"_s, "no folder");
    const QString path = name.isEmpty() ? QString() : project.path(name);
    const auto before = project.files();
    TVLProjectFolderMonitor monitor(path);
    QVERIFY(isIdle(monitor));
    QCOMPARE(monitor.monitorPath(), path);
    QVERIFY(!monitor.startMonitor());
    QVERIFY(!monitor.startMonitor(path));
    QVERIFY(isIdle(monitor));
    QCOMPARE(project.files(), before);
    QVERIFY(!QFileInfo::exists(project.path(u"missing"_s)));
}

void TstFolderMonitor::aFolderThatCannotBeUsedIsNotWatched_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isFile");
    for (const QString &folder : {FilesFolder, Settings}) {
        QTest::addRow("%s is a file", qPrintable(folder)) << folder << true;
        QTest::addRow("%s is read-only", qPrintable(folder)) << folder << false;
    }
}

void TstFolderMonitor::aFolderThatCannotBeUsedIsNotWatched()
{
    QFETCH(const QString, folder);
    QFETCH(const bool, isFile);
    const TestProject project;
    if (isFile)
        project.writeFile(folder, "no folder");
    else
        project.writeFile(folder + u"/file"_s, "in a folder");
    {
        const ReducedPermissions reduced(project.path(folder),
                                         isFile ? QFile::permissions(project.path(folder))
                                                : ReducedPermissions::ReadOnly);
        TVLProjectFolderMonitor monitor(project.path());
        QVERIFY(isIdle(monitor));
        QVERIFY(!monitor.startMonitor());
        QVERIFY(isIdle(monitor));
    }
    const TVLProjectFolderMonitor monitor(project.path());
    QCOMPARE(isWatching(monitor), !isFile);
}

void TstFolderMonitor::aReadOnlyProjectWithoutFoldersIsNotWatched()
{
    const TestProject project;
    makeFolder(project);
    const ReducedPermissions reduced(project.path(), ReducedPermissions::ReadOnly);
    TVLProjectFolderMonitor monitor(project.path());
    QVERIFY(isIdle(monitor));
    QVERIFY(!monitor.startMonitor());
}

void TstFolderMonitor::stoppingEndsIt()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    monitor.stopMonitor();
    QVERIFY(isIdle(monitor));
    QCOMPARE(monitor.monitorPath(), project.path());
    monitor.stopMonitor();
    QVERIFY(isIdle(monitor));
    QVERIFY(monitor.startMonitor());
    QVERIFY(isWatching(monitor));
}

void TstFolderMonitor::anotherPathIsWatchedOnlyWhenStarted()
{
    const TestProject project;
    const TestProject other;
    makeFolder(project);
    makeFolder(other);
    TVLProjectFolderMonitor monitor(project.path());
    monitor.setMonitorPath(other.path());
    QVERIFY(isIdle(monitor));
    QCOMPARE(monitor.monitorPath(), other.path());
    QVERIFY(!QFileInfo::exists(other.path(FilesFolder)));
    QVERIFY(monitor.startMonitor());
    QVERIFY(isWatching(monitor));
    QVERIFY(watcherOf(monitor)->directories().contains(other.path(FilesFolder)));
    QVERIFY(!watcherOf(monitor)->directories().contains(project.path(FilesFolder)));
}

void TstFolderMonitor::startingWithAPathMovesTheWatch()
{
    const TestProject project;
    const TestProject other;
    makeFolder(project);
    makeFolder(other);
    TVLProjectFolderMonitor monitor(project.path());
    QVERIFY(monitor.startMonitor(other.path()));
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    remove(other, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList(other.path(FilesFolder)));
    // One that can't be watched ends the watch all the same.
    QVERIFY(!monitor.startMonitor(other.path(u"missing"_s)));
    QVERIFY(isIdle(monitor));
}

void TstFolderMonitor::startingTwiceIsStartingOnce()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    QVERIFY(monitor.startMonitor());
    QVERIFY(monitor.startMonitor(project.path()));
    QCOMPARE(watcherOf(monitor)->directories().size(), 2);
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(spy.size(), 1);
}

void TstFolderMonitor::folderInUse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<bool>("expected");
    QTest::newRow("a folder") << u"folder"_s << false << true;
    QTest::newRow("a read-only folder") << u"folder"_s << true << false;
    QTest::newRow("a file") << u"folder/file"_s << false << false;
    QTest::newRow("a read-only file") << u"folder/file"_s << true << false;
}

void TstFolderMonitor::folderInUse()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isReadOnly);
    QFETCH(const bool, expected);
    const TestProject project;
    project.writeFile(u"folder/file"_s, "text");
    const TVLProjectFolderMonitor monitor({});
    const QString filePath = project.path(path);
    const ReducedPermissions reduced(
        filePath, isReadOnly ? ReducedPermissions::ReadOnly : QFile::permissions(filePath));
    QCOMPARE(monitor.isOk(filePath), expected);
    QVERIFY(!monitor.isOk(project.path(u"missing"_s)));
    QVERIFY(!monitor.isOk(QString()));
}

void TstFolderMonitor::aLossOfFilesGivesOneSignal()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/1.rtf"_s, "text");
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QVERIFY(!timerOf(monitor)->isActive());
    QCoreApplication::processEvents();
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
}

void TstFolderMonitor::aLossOfSettingsIsToldToo()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, Settings);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), WatcherTimeout);
    QCOMPARE(pathsIn(spy), QStringList(project.path(Settings)));
    QVERIFY(!timerOf(monitor)->isActive());
}

void TstFolderMonitor::theTimerSeesWhatTheWatcherMisses()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    deafen(monitor);
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
    QVERIFY(!timerOf(monitor)->isActive());
}

void TstFolderMonitor::readOnlyFilesAreSeenByTheWatcher()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    const ReducedPermissions reduced(project.path(FilesFolder), ReducedPermissions::ReadOnly);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
    QVERIFY(!timerOf(monitor)->isActive());
}

void TstFolderMonitor::readOnlyFilesAreSeenByTheTimer()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    deafen(monitor);
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    const ReducedPermissions reduced(project.path(FilesFolder), ReducedPermissions::ReadOnly);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
    QVERIFY(!timerOf(monitor)->isActive());
}

void TstFolderMonitor::aFileInTheFoldersPlaceIsALoss()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    deafen(monitor);
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    project.writeFile(FilesFolder, "no folder");
    lookNow(&monitor);
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
}

void TstFolderMonitor::aLossEndsTheRegularLook()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    deafen(monitor);
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    bool wasActive = true;
    connect(&monitor, &TVLProjectFolderMonitor::externallyModified, this,
            [&] { wasActive = timerOf(monitor)->isActive(); });
    remove(project, FilesFolder);
    lookNow(&monitor);
    QVERIFY(!wasActive);
    QVERIFY(!timerOf(monitor)->isActive());
    // The folder coming back doesn't begin it anew.
    QVERIFY(QDir().mkpath(project.path(FilesFolder)));
    QVERIFY(!timerOf(monitor)->isActive());
    QCOMPARE(spy.size(), 1);
}

void TstFolderMonitor::afterALossItCanBeStartedAgain()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    for (int loss = 1; loss <= 2; ++loss) {
        remove(project, FilesFolder);
        QTRY_COMPARE_WITH_TIMEOUT(int(spy.size()), loss, OneInterval);
        QVERIFY(!timerOf(monitor)->isActive());
        QVERIFY(monitor.startMonitor());
        QVERIFY(isWatching(monitor));
        QVERIFY(QFileInfo(project.path(FilesFolder)).isDir());
        QCOMPARE(watcherOf(monitor)->directories().size(), 2);
    }
    QCOMPARE(pathsIn(spy), QStringList({project.path(FilesFolder), project.path(FilesFolder)}));
}

void TstFolderMonitor::whenTheWholeProjectGoesEachFolderIsToldOnce()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    QVERIFY(QDir(project.path()).removeRecursively());
    QTRY_COMPARE_WITH_TIMEOUT(int(spy.size()), 2, WatcherTimeout);
    QStringList paths = pathsIn(spy);
    paths.sort();
    QCOMPARE(paths, QStringList({project.path(FilesFolder), project.path(Settings)}));
    QVERIFY(isIdle(monitor));
    QVERIFY(!monitor.startMonitor());
}

void TstFolderMonitor::aFileThatIsLostIsTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<bool>("isLost");
    QTest::newRow("a file") << u"Files/file"_s << false << false;
    QTest::newRow("a read-only file") << u"Files/file"_s << true << true;
    QTest::newRow("a folder") << u"Files"_s << false << true;
    QTest::newRow("nothing") << u"Files/missing"_s << false << true;
}

void TstFolderMonitor::aFileThatIsLostIsTold()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isReadOnly);
    QFETCH(const bool, isLost);
    const TestProject project;
    project.writeFile(u"Files/file"_s, "text");
    const QString filePath = project.path(path);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    if (isReadOnly)
        QVERIFY(QFile::setPermissions(filePath, ReducedPermissions::ReadOnly));
    QMetaObject::invokeMethod(&monitor, "onFileChanged", Q_ARG(QString, filePath));
    QCOMPARE(pathsIn(spy), isLost ? QStringList(filePath) : QStringList());
    QCOMPARE(timerOf(monitor)->isActive(), !isLost);
}

void TstFolderMonitor::ordinaryChangesGiveNoSignal()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    QSignalSpy changes(watcherOf(monitor), &QFileSystemWatcher::directoryChanged);
    const auto isSeen = [&](const auto &change) {
        changes.clear();
        change();
        return QTest::qWaitFor([&] { return !changes.isEmpty(); }, WatcherTimeout);
    };
    const QString file = u"Files/new.txt"_s;
    QVERIFY(isSeen([&] { project.writeFile(file, "text"); }));
    QVERIFY(isSeen([&] { QFile::rename(project.path(file), project.path(u"Files/old.txt"_s)); }));
    QVERIFY(isSeen([&] { QFile::remove(project.path(u"Files/old.txt"_s)); }));
    QVERIFY(isSeen([&] { QDir().mkpath(project.path(u"Files/Docs"_s)); }));
    QVERIFY(isSeen([&] { remove(project, u"Files/Docs"_s); }));
    QVERIFY(isSeen([&] { project.writeFile(u"Settings/ui.ini"_s, "[General]"); }));
    lookNow(&monitor);
    QCOMPARE(pathsIn(spy), QStringList());
    QVERIFY(isWatching(monitor));
}

void TstFolderMonitor::theTimerFindsNothingWrong()
{
    const TestProject project;
    makeFolder(project);
    TVLProjectFolderMonitor monitor(project.path());
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    QSignalSpy looks(timerOf(monitor), &QTimer::timeout);
    QVERIFY(looks.wait(OneInterval));
    QCOMPARE(pathsIn(spy), QStringList());
    QVERIFY(isWatching(monitor));
}

void TstFolderMonitor::afterTheEndOfTheWatchNothingIsTold()
{
    const TestProject project;
    const TestProject other;
    makeFolder(project);
    makeFolder(other);
    TVLProjectFolderMonitor monitor(project.path());
    const TVLProjectFolderMonitor witness(project.path());
    monitor.stopMonitor();
    const QSignalSpy spy(&monitor, &TVLProjectFolderMonitor::externallyModified);
    const QSignalSpy witnessSpy(&witness, &TVLProjectFolderMonitor::externallyModified);
    remove(project, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!witnessSpy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList());
}

void TstFolderMonitor::aProjectPassesTheSignalOn()
{
    const TestProject project;
    // A project that is made in memory has no folder yet.
    QVERIFY(project.create() != nullptr);
    const auto model = project.open();
    QVERIFY(model);
    const QSignalSpy spy(model.get(), &TVLProjectModel::externallyModified);
    remove(project, FilesFolder);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), OneInterval);
    QCOMPARE(pathsIn(spy), QStringList(project.path(FilesFolder)));
}

void TstFolderMonitor::aMobileProjectIsNotWatched()
{
    const TestProject project;
    makeFolder(project);
    const TVLProjectModel model(project.path(), nullptr, true);
    QVERIFY(!model.findChild<TVLProjectFolderMonitor *>());
    const TVLProjectModel desktopModel(project.path(), nullptr, false);
    QVERIFY(desktopModel.findChild<TVLProjectFolderMonitor *>());
}

TVL_TEST_PREPARED(TstFolderMonitor, dropRightsOfTheSuperuser)
#include "tst_foldermonitor.moc"
