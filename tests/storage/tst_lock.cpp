#include "LockFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QHostInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QUuid>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString LockFile = u"Files/user.lock"_s;
const QString OwnUser = u"M\u00fcller"_s;

/** Changes to the keys of a lock; an invalid value removes the key. */
using Edits = QMap<QString, QVariant>;

void edit(const TestProject &project, const Edits &edits)
{
    QSettings lock(project.path(LockFile), QSettings::IniFormat);
    for (auto row = edits.cbegin(); row != edits.cend(); ++row) {
        if (row.value().isValid())
            lock.setValue(row.key(), row.value());
        else
            lock.remove(row.key());
    }
}

} // namespace

class TstLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theUsersIdentityIsMadeOnFirstUseAndKept();
    void aLockHoldsSixKeys();
    void aLockCanBeAddedByEitherPath_data();
    void aLockCanBeAddedByEitherPath();
    void aSecondLockIsRefusedAndLeavesTheFirst();
    void anyFileInTheLocksPlaceCountsAsALock();
    void aPipeInTheLocksPlaceIsNotOpened();
    void aLockThatCannotBeWrittenIsRefused();
    void whatAProcessKilledWhileItLockedLeavesIsNotWaitedFor();
    void lookingForALockCreatesNothing();
    void removingALock();
    void removingALockThatIsAFolderFails();
    void aRemovedLockCanBeAddedAgain();

    void withoutALockTheResultIs0();
    void aLockComparesByItsKeys_data();
    void aLockComparesByItsKeys();
    void aLockWithoutAUserComparesAsTheCurrentUsers();
    void aCopiedProjectComparesAs2();
    void aMovedProjectComparesAs2();
    void aLockFromAnotherHostComparesAs4AndItsValuesAreTold();
    void theValuesOfALockNeedNotBeAskedFor();
    void comparingChangesNothing();
    void anyFolderNameCompares_data();
    void anyFolderNameCompares();
};

void TstLock::initTestCase()
{
    qputenv("USER", OwnUser.toLocal8Bit());
}

void TstLock::theUsersIdentityIsMadeOnFirstUseAndKept()
{
    QVERIFY(!QFileInfo::exists(identityPath()));
    const QUuid id = Format::userLockId();
    QVERIFY(!id.isNull());
    QCOMPARE(Format::userLockId(), id);

    QFile file(identityPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.size(), 16);
    QUuid stored;
    QDataStream stream(&file);
    stream >> stored;
    QCOMPARE(stored, id);
}

void TstLock::aLockHoldsSixKeys()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    QCOMPARE(project.files().keys(), QStringList(LockFile));
    QVERIFY(project.readFile(LockFile).startsWith("[General]\n"));

    const QSettings lock(project.path(LockFile), QSettings::IniFormat);
    QStringList keys = lock.allKeys();
    keys.sort();
    QCOMPARE(keys,
             (QStringList{u"app_path"_s, u"host"_s, u"platform"_s, u"project_path"_s, u"user"_s,
                          u"uuid"_s}));
    QCOMPARE(lock.value(u"platform"_s).toString(), u"win"_s);
    QCOMPARE(lock.value(u"host"_s).toString(), QHostInfo::localHostName());
    QCOMPARE(lock.value(u"user"_s).toString(), OwnUser);
    QCOMPARE(lock.value(u"uuid"_s).toString(), Format::userLockId().toString());
    QVERIFY(lock.value(u"uuid"_s).toString().startsWith(u'{'));
    QCOMPARE(lock.value(u"project_path"_s).toString(), project.path());
    QCOMPARE(lock.value(u"app_path"_s).toString(), QCoreApplication::applicationFilePath());
}

void TstLock::aLockCanBeAddedByEitherPath_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("binder") << u"/Novel.tavelx"_s;
}

void TstLock::aLockCanBeAddedByEitherPath()
{
    QFETCH(QString, suffix);

    const TestProject project;
    QVERIFY(Format::addLock(project.path() + suffix));
    QCOMPARE(project.files().keys(), QStringList(LockFile));
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        QVERIFY(Format::lockExists(path));
        QCOMPARE(Format::compareLockFile(path, nullptr, nullptr, nullptr), int(Format::LockedHere));
    }
    QVERIFY(Format::removeLock(project.path() + suffix));
    QVERIFY(!Format::lockExists(project.path()));
}

void TstLock::aSecondLockIsRefusedAndLeavesTheFirst()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    edit(project, {{u"user"_s, u"Someone"_s}});
    const auto before = project.files();
    QVERIFY(!Format::addLock(project.path()));
    QCOMPARE(project.files(), before);
}

void TstLock::anyFileInTheLocksPlaceCountsAsALock()
{
    const TestProject project;
    project.writeFile(LockFile, "nonsense");
    const auto before = project.files();
    QVERIFY(Format::lockExists(project.path()));
    QVERIFY(!Format::addLock(project.path()));
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr),
             int(Format::LockedByOther));
    QCOMPARE(project.files(), before);
}

void TstLock::aPipeInTheLocksPlaceIsNotOpened()
{
    constexpr mode_t Mode = 0600;
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path(u"Files"_s)));
    QCOMPARE(mkfifo(QFile::encodeName(project.path(LockFile)), Mode), 0);
    QVERIFY(Format::lockExists(project.path()));
    QVERIFY(!Format::addLock(project.path()));
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr),
             int(Format::LockedByOther));
    QVERIFY(Format::removeLock(project.path()));
    QVERIFY(Format::addLock(project.path()));
}

void TstLock::aLockThatCannotBeWrittenIsRefused()
{
    const TestProject project;
    project.writeFile(u"Files"_s, "a file in place of the folder");
    const auto before = project.files();
    QVERIFY(!Format::addLock(project.path()));
    QVERIFY(!Format::lockExists(project.path()));
    QCOMPARE(project.files(), before);
}

void TstLock::whatAProcessKilledWhileItLockedLeavesIsNotWaitedFor()
{
    constexpr int Patience = 5000;
    const TestProject project;
    // By this settings keep others from writing the same file.
    project.writeFile(LockFile + u".lock"_s, {});
    QElapsedTimer timer;
    timer.start();
    QVERIFY(Format::addLock(project.path()));
    QVERIFY(timer.elapsed() < Patience);
    QCOMPARE(project.files().keys(), {LockFile});
}

void TstLock::lookingForALockCreatesNothing()
{
    const TestProject project;
    QVERIFY(!Format::lockExists(project.path()));
    QVERIFY(Format::removeLock(project.path()));
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr),
             int(Format::NotLocked));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstLock::removingALock()
{
    const TestProject project;
    project.writeFile(u"Files/other"_s, "other");
    QVERIFY(Format::removeLock(project.path()));
    QVERIFY(Format::addLock(project.path()));
    QVERIFY(Format::removeLock(project.path()));
    QVERIFY(!Format::lockExists(project.path()));
    QVERIFY(Format::removeLock(project.path()));
    QCOMPARE(project.files().keys(), QStringList(u"Files/other"_s));
}

void TstLock::removingALockThatIsAFolderFails()
{
    const TestProject project;
    project.writeFile(LockFile + u"/file"_s, "in a folder");
    QVERIFY(Format::lockExists(project.path()));
    QVERIFY(!Format::removeLock(project.path()));
    QVERIFY(!Format::addLock(project.path()));
    QVERIFY(Format::lockExists(project.path()));
}

void TstLock::aRemovedLockCanBeAddedAgain()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    const QByteArray lock = project.readFile(LockFile);
    for (int pass = 0; pass < 3; ++pass) {
        QVERIFY(Format::removeLock(project.path()));
        QVERIFY(Format::addLock(project.path()));
        QCOMPARE(project.readFile(LockFile), lock);
        QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr),
                 int(Format::LockedHere));
    }
}

void TstLock::withoutALockTheResultIs0()
{
    const TestProject project;
    project.writeFile(u"Files/other"_s, {});
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr), 0);
}

void TstLock::aLockComparesByItsKeys_data()
{
    QTest::addColumn<Edits>("edits");
    QTest::addColumn<int>("result");

    const QVariant removed;
    const QString platform = u"platform"_s;
    const QString host = u"host"_s;
    const QString user = u"user"_s;
    const QString uuid = u"uuid"_s;
    const QString projectPath = u"project_path"_s;
    const QString appPath = u"app_path"_s;
    const QString other = u"other"_s;

    QTest::newRow("untouched") << Edits() << 1;
    QTest::newRow("extra key") << Edits{{other, other}} << 1;
    QTest::newRow("user missing") << Edits{{user, removed}} << 1;
    QTest::newRow("project path of a copy")
        << Edits{{projectPath, u"/elsewhere/Novel.tavel"_s}} << 2;
    QTest::newRow("project path missing") << Edits{{projectPath, removed}} << 2;
    QTest::newRow("project path and program of others")
        << Edits{{projectPath, other}, {appPath, other}} << 2;
    QTest::newRow("other program") << Edits{{appPath, u"/opt/other"_s}} << 3;
    QTest::newRow("program missing") << Edits{{appPath, removed}} << 3;
    QTest::newRow("user missing, other program") << Edits{{user, removed}, {appPath, other}} << 3;
    QTest::newRow("other platform") << Edits{{platform, u"mac"_s}} << 4;
    QTest::newRow("platform in capitals") << Edits{{platform, u"Win"_s}} << 4;
    QTest::newRow("platform missing") << Edits{{platform, removed}} << 4;
    QTest::newRow("other host") << Edits{{host, other}} << 4;
    QTest::newRow("host missing") << Edits{{host, removed}} << 4;
    QTest::newRow("other identity") << Edits{{uuid, QUuid::createUuid().toString()}} << 4;
    QTest::newRow("identity missing") << Edits{{uuid, removed}} << 4;
    QTest::newRow("other user") << Edits{{user, other}} << 4;
    QTest::newRow("empty user") << Edits{{user, QString(u""_s)}} << 4;
    QTest::newRow("other host and project path") << Edits{{host, other}, {projectPath, other}} << 4;
    QTest::newRow("other user and program") << Edits{{user, other}, {appPath, other}} << 4;
    QTest::newRow("all missing") << Edits{{platform, removed},    {host, removed},
                                          {user, removed},        {uuid, removed},
                                          {projectPath, removed}, {appPath, removed}}
                                 << 4;
}

void TstLock::aLockComparesByItsKeys()
{
    QFETCH(Edits, edits);
    QFETCH(int, result);

    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    edit(project, edits);
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()})
        QCOMPARE(Format::compareLockFile(path, nullptr, nullptr, nullptr), result);
}

void TstLock::aLockWithoutAUserComparesAsTheCurrentUsers()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    edit(project, {{u"user"_s, QVariant()}});
    QString user;
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, &user, nullptr),
             int(Format::LockedHere));
    QCOMPARE(user, OwnUser);
}

void TstLock::aCopiedProjectComparesAs2()
{
    const TestProject project;
    const TestProject copy;
    QVERIFY(Format::addLock(project.path()));
    copy.writeFile(LockFile, project.readFile(LockFile));
    QCOMPARE(Format::compareLockFile(copy.path(), nullptr, nullptr, nullptr), 2);
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr), 1);
}

void TstLock::aMovedProjectComparesAs2()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    const QString moved = project.enclosingPath() + u"/Other.tavel"_s;
    QVERIFY(QDir().rename(project.path(), moved));
    QCOMPARE(Format::compareLockFile(moved, nullptr, nullptr, nullptr), 2);
}

void TstLock::aLockFromAnotherHostComparesAs4AndItsValuesAreTold()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    edit(project,
         {{u"host"_s, u"laptop"_s},
          {u"user"_s, u"\u6f22, \"the\" writer"_s},
          {u"app_path"_s, u"C:/Program Files/app.exe"_s}});
    QString host;
    QString user;
    QString appPath;
    QCOMPARE(Format::compareLockFile(project.path(), &host, &user, &appPath), 4);
    QCOMPARE(host, u"laptop"_s);
    QCOMPARE(user, u"\u6f22, \"the\" writer"_s);
    QCOMPARE(appPath, u"C:/Program Files/app.exe"_s);
}

void TstLock::theValuesOfALockNeedNotBeAskedFor()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    QString host;
    QString appPath;
    QCOMPARE(Format::compareLockFile(project.path(), &host, nullptr, nullptr), 1);
    QCOMPARE(host, QHostInfo::localHostName());
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, &appPath), 1);
    QCOMPARE(appPath, QCoreApplication::applicationFilePath());
}

void TstLock::comparingChangesNothing()
{
    const TestProject project;
    QVERIFY(Format::addLock(project.path()));
    edit(project, {{u"user"_s, QVariant()}, {u"host"_s, u"laptop"_s}});
    const auto before = project.files();
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr), 4);
    QCOMPARE(project.files(), before);
}

void TstLock::anyFolderNameCompares_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("Unicode") << u"\u6f22 \u00dcber \U0001d11e"_s;
    QTest::newRow("characters of the file format") << u"a; b, c=d \"e\" %20 #f [g] @h"_s;
    QTest::newRow("dots") << u"..a.b.."_s;
    QTest::newRow("blanks") << u" a "_s;
}

void TstLock::anyFolderNameCompares()
{
    QFETCH(QString, name);

    const TestProject project(name);
    QVERIFY(Format::addLock(project.path()));
    QCOMPARE(Format::compareLockFile(project.path(), nullptr, nullptr, nullptr), 1);
}

TVL_TEST(TstLock)
#include "tst_lock.moc"
