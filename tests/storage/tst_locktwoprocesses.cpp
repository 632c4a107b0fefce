#include "LockFixtures.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"

#include <QFile>
#include <QHostInfo>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString LockFile = u"Files/user.lock"_s;

/** Changes who a process is. */
using Change = void (*)(LockIdentity *identity, const QTemporaryDir &place);

void changeNothing(LockIdentity *, const QTemporaryDir &) { }

void changeProgram(LockIdentity *identity, const QTemporaryDir &place)
{
    const QString copy = place.filePath(u"lock_program"_s);
    if (!QFile::copy(lockProgramFile(), copy))
        qFatal("could not copy %s", qPrintable(lockProgramFile()));
    identity->file = copy;
}

void changeUser(LockIdentity *identity, const QTemporaryDir &)
{
    identity->user = u"berta"_s;
}

void changeHome(LockIdentity *identity, const QTemporaryDir &place)
{
    identity->home = place.filePath(u"home"_s);
}

/** An application of another name has its user's identity elsewhere. */
void changeApplication(LockIdentity *identity, const QTemporaryDir &)
{
    identity->name = u"reader"_s;
}

void changeProgramAndUser(LockIdentity *identity, const QTemporaryDir &place)
{
    changeProgram(identity, place);
    changeUser(identity, place);
}

void changeProgramAndHome(LockIdentity *identity, const QTemporaryDir &place)
{
    changeProgram(identity, place);
    changeHome(identity, place);
}

void makeProject(const TestProject &project)
{
    project.create()->prepareToDestroy();
}

/** Copies a project as a file manager would, lock and all. */
void copyProject(const TestProject &from, const TestProject &to)
{
    const QMap<QString, QByteArray> files = from.files();
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        to.writeFile(file.key(), file.value());
}

} // namespace

Q_DECLARE_METATYPE(Change)

/** Locks between processes that know nothing of each other. */
class TstLockTwoProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutALockThereIsNobody();
    void anotherProcessSeesWhoHasTheProject_data();
    void anotherProcessSeesWhoHasTheProject();
    void aCopyOfALockedProjectIsKnownAsOne_data();
    void aCopyOfALockedProjectIsKnownAsOne();
    void aLockOfAnotherHostIsSomeoneElses();
    void onlyTheFirstOfTwoProcessesGetsTheLock();
    void closingTheProjectFreesIt();
    void aLockOutlivesAKilledProcessAndStillTellsWho_data();
    void aLockOutlivesAKilledProcessAndStillTellsWho();
    void whoeverComesAfterAKilledProcessMayTakeTheLockOver();
};

void TstLockTwoProcesses::withoutALockThereIsNobody()
{
    const TestProject project;
    makeProject(project);
    const LockReport report = compareLock({}, project.path());
    QCOMPARE(report.result, 0);
    QCOMPARE(report.host, QString());
    QCOMPARE(report.user, QString());
    QCOMPARE(report.program, QString());
}

void TstLockTwoProcesses::anotherProcessSeesWhoHasTheProject_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("result");

    QTest::newRow("the same program and user") << Change(changeNothing) << 1;
    QTest::newRow("another program of the user") << Change(changeProgram) << 3;
    QTest::newRow("another user") << Change(changeUser) << 4;
    QTest::newRow("another identity") << Change(changeHome) << 4;
    QTest::newRow("another application") << Change(changeApplication) << 4;
    QTest::newRow("another program and user") << Change(changeProgramAndUser) << 4;
    QTest::newRow("another program and identity") << Change(changeProgramAndHome) << 4;
}

void TstLockTwoProcesses::anotherProcessSeesWhoHasTheProject()
{
    QFETCH(const Change, change);
    QFETCH(const int, result);

    const TestProject project;
    makeProject(project);
    LockHolder holder({}, project.path());
    QVERIFY(holder.isHolding());
    const QByteArray lock = project.readFile(LockFile);

    const QTemporaryDir place;
    LockIdentity onlooker;
    change(&onlooker, place);
    const LockReport report = compareLock(onlooker, project.path());
    QCOMPARE(report.result, result);
    QCOMPARE(report.host, QHostInfo::localHostName());
    QCOMPARE(report.user, u"anna"_s);
    QCOMPARE(report.program, lockProgramFile());
    QCOMPARE(project.readFile(LockFile), lock);
    QVERIFY(holder.close());
}

void TstLockTwoProcesses::aCopyOfALockedProjectIsKnownAsOne_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("result");

    QTest::newRow("by the same program") << Change(changeNothing) << 2;
    QTest::newRow("by another program of the user") << Change(changeProgram) << 2;
    QTest::newRow("by another user") << Change(changeUser) << 4;
    QTest::newRow("under another identity") << Change(changeHome) << 4;
}

void TstLockTwoProcesses::aCopyOfALockedProjectIsKnownAsOne()
{
    QFETCH(const Change, change);
    QFETCH(const int, result);

    const TestProject project;
    makeProject(project);
    LockHolder holder({}, project.path());
    QVERIFY(holder.isHolding());
    const TestProject copy;
    copyProject(project, copy);

    const QTemporaryDir place;
    LockIdentity onlooker;
    change(&onlooker, place);
    const LockReport report = compareLock(onlooker, copy.path());
    QCOMPARE(report.result, result);
    QCOMPARE(report.user, u"anna"_s);
    QCOMPARE(report.program, lockProgramFile());

    // The copy's lock goes its own ways.
    QVERIFY(Format::removeLock(copy.path()));
    QCOMPARE(compareLock({}, copy.path()).result, 0);
    QCOMPARE(compareLock({}, project.path()).result, 1);
    QVERIFY(holder.close());
}

void TstLockTwoProcesses::aLockOfAnotherHostIsSomeoneElses()
{
    const TestProject project;
    makeProject(project);
    LockHolder holder({}, project.path());
    QVERIFY(holder.isHolding());
    {
        QSettings lock(project.path(LockFile), QSettings::IniFormat);
        lock.setValue(u"host"_s, u"attic"_s);
    }
    const LockReport report = compareLock({}, project.path());
    QCOMPARE(report.result, 4);
    QCOMPARE(report.host, u"attic"_s);
    QCOMPARE(report.user, u"anna"_s);
    QCOMPARE(report.program, lockProgramFile());
}

void TstLockTwoProcesses::onlyTheFirstOfTwoProcessesGetsTheLock()
{
    const TestProject project;
    makeProject(project);
    LockHolder first({}, project.path());
    QVERIFY(first.isHolding());
    const QByteArray lock = project.readFile(LockFile);
    LockHolder second({.user = u"berta"_s, .home = {}}, project.path());
    QVERIFY(!second.isHolding());
    QCOMPARE(project.readFile(LockFile), lock);
    QVERIFY(first.close());
}

void TstLockTwoProcesses::closingTheProjectFreesIt()
{
    const TestProject project;
    makeProject(project);
    LockHolder first({}, project.path());
    QVERIFY(first.isHolding());
    QVERIFY(first.close());
    QVERIFY(!Format::lockExists(project.path()));

    const LockIdentity berta{.user = u"berta"_s, .home = {}};
    QCOMPARE(compareLock(berta, project.path()).result, 0);
    LockHolder second(berta, project.path());
    QVERIFY(second.isHolding());
    const LockReport report = compareLock({}, project.path());
    QCOMPARE(report.result, 4);
    QCOMPARE(report.user, u"berta"_s);
    QVERIFY(second.close());
}

void TstLockTwoProcesses::aLockOutlivesAKilledProcessAndStillTellsWho_data()
{
    anotherProcessSeesWhoHasTheProject_data();
}

void TstLockTwoProcesses::aLockOutlivesAKilledProcessAndStillTellsWho()
{
    QFETCH(const Change, change);
    QFETCH(const int, result);

    const TestProject project;
    makeProject(project);
    LockHolder holder({}, project.path());
    QVERIFY(holder.isHolding());
    const auto before = project.files();
    holder.kill();
    QCOMPARE(project.files(), before);

    const QTemporaryDir place;
    LockIdentity onlooker;
    change(&onlooker, place);
    const LockReport report = compareLock(onlooker, project.path());
    QCOMPARE(report.result, result);
    QCOMPARE(report.host, QHostInfo::localHostName());
    QCOMPARE(report.user, u"anna"_s);
    QCOMPARE(report.program, lockProgramFile());
}

void TstLockTwoProcesses::whoeverComesAfterAKilledProcessMayTakeTheLockOver()
{
    const TestProject project;
    makeProject(project);
    {
        LockHolder killed({}, project.path());
        QVERIFY(killed.isHolding());
    }
    const LockIdentity berta{.user = u"berta"_s, .home = {}};
    QCOMPARE(compareLock(berta, project.path()).result, 4);
    QVERIFY(Format::removeLock(project.path()));
    LockHolder next(berta, project.path());
    QVERIFY(next.isHolding());
    QCOMPARE(compareLock(berta, project.path()).result, 1);
    QCOMPARE(compareLock({}, project.path()).result, 4);
    QVERIFY(next.close());
}

TVL_TEST(TstLockTwoProcesses)
#include "tst_locktwoprocesses.moc"
