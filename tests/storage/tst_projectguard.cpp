#include "LockFixtures.h"
#include "OrdinaryRights.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectGuard.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/** One process at a time changes a project. */
class TstProjectGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theGuardIsThereAsLongAsItIsHeld();
    void aSecondOneIsRefused_data();
    void aSecondOneIsRefused();
    void anotherProcessIsKeptOutWhateverItsEnvironment_data();
    void anotherProcessIsKeptOutWhateverItsEnvironment();
    void whatAKilledProcessLeavesIsTakenOver();
    void whatAProcessKilledWhileItMadeItLeavesIsTakenOver_data();
    void whatAProcessKilledWhileItMadeItLeavesIsTakenOver();
    void theGuardOfAnotherHostHolds();
    void aGuardThatMayNotBeTakenOverTellsWhoseItIs();
    void aPipeInItsPlaceIsNotOpened();
    void whereNothingCanBeMadeThereIsNoGuard();
    void patienceWaitsForTheEndOfTheOther();
    void noCopyOfAProjectIsGuarded();
    void theProjectsFoldersCountAsSound();
};

namespace {

const QString GuardFile = u"Files/.guard"_s;

void makeUnlockedProject(const TestProject &project)
{
    project.create()->prepareToDestroy();
}

QString heldBy(const QString &program, const TestProject &project)
{
    return u"another run of %1 is at work on '%2'"_s.arg(program, project.path());
}

QString ownProgram()
{
    return QFileInfo(QFileInfo(u"/proc/self/exe"_s).symLinkTarget()).fileName();
}

} // namespace

void TstProjectGuard::theGuardIsThereAsLongAsItIsHeld()
{
    const TestProject project;
    makeUnlockedProject(project);
    const auto before = project.files();
    QCOMPARE(TVLProjectGuard::filePath(project.path()), project.path(GuardFile));
    {
        QString error;
        const auto guard = TVLProjectGuard::take(project.path(), &error);
        QVERIFY2(guard, qPrintable(error));
        QVERIFY(QFileInfo::exists(project.path(GuardFile)));
    }
    QCOMPARE(project.files(), before);
    QVERIFY(TVLProjectGuard::take(project.path()));
    QCOMPARE(project.files(), before);
}

void TstProjectGuard::aSecondOneIsRefused_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("by the folder") << u"%1/Novel.tavel"_s;
    QTest::newRow("with a closing slash") << u"%1/Novel.tavel/"_s;
    QTest::newRow("by the binder") << u"%1/Novel.tavel/Novel.tavelx"_s;
    QTest::newRow("by dots") << u"%1/./Novel.tavel/../Novel.tavel"_s;
    QTest::newRow("by a link") << u"%1/Link.tavel"_s;
}

void TstProjectGuard::aSecondOneIsRefused()
{
    QFETCH(const QString, way);
    const TestProject project;
    makeUnlockedProject(project);
    QVERIFY(QFile::link(project.path(), project.enclosingPath() + u"/Link.tavel"_s));
    const auto guard = TVLProjectGuard::take(project.path());
    QVERIFY(guard);
    QString error;
    QVERIFY(!TVLProjectGuard::take(way.arg(project.enclosingPath()), &error));
    QVERIFY2(error.startsWith(u"another run of %1 is at work on '"_s.arg(ownProgram())),
             qPrintable(error));
    // The refused one has taken nothing away.
    QVERIFY(!TVLProjectGuard::take(project.path()));
}

void TstProjectGuard::anotherProcessIsKeptOutWhateverItsEnvironment_data()
{
    QTest::addColumn<LockIdentity>("holder");
    QTest::addColumn<LockIdentity>("other");
    const LockIdentity anna;
    LockIdentity berta;
    berta.user = u"berta"_s;
    LockIdentity elsewhere;
    elsewhere.home = u"/nowhere"_s;
    LockIdentity reader;
    reader.name = u"reader"_s;
    QTest::newRow("the same") << anna << anna;
    QTest::newRow("another user's name") << anna << berta;
    QTest::newRow("another home") << anna << elsewhere;
    QTest::newRow("another application") << anna << reader;
}

void TstProjectGuard::anotherProcessIsKeptOutWhateverItsEnvironment()
{
    QFETCH(const LockIdentity, holder);
    QFETCH(const LockIdentity, other);
    const TestProject project;
    makeUnlockedProject(project);
    LockHolder first(holder, project.path(), u"guard"_s);
    QVERIFY(first.isHolding());
    LockHolder second(other, project.path(), u"guard"_s);
    QVERIFY(!second.isHolding());
    QCOMPARE(second.answer(), heldBy(u"lock_program"_s, project));
    QString error;
    QVERIFY(!TVLProjectGuard::take(project.path(), &error));
    QCOMPARE(error, heldBy(u"lock_program"_s, project));
    QVERIFY(first.close());
    QVERIFY(TVLProjectGuard::take(project.path()));
}

void TstProjectGuard::whatAKilledProcessLeavesIsTakenOver()
{
    const TestProject project;
    makeUnlockedProject(project);
    const auto before = project.files();
    LockHolder holder({}, project.path(), u"guard"_s);
    QVERIFY(holder.isHolding());
    QVERIFY(!TVLProjectGuard::take(project.path()));
    holder.kill();
    QVERIFY(QFileInfo::exists(project.path(GuardFile)));
    QVERIFY(TVLProjectGuard::take(project.path()));
    QCOMPARE(project.files(), before);
}

void TstProjectGuard::whatAProcessKilledWhileItMadeItLeavesIsTakenOver_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half a line") << QByteArray("99");
    QTest::newRow("no program") << QByteArray("999999\n");
    QTest::newRow("half a machine's name")
        << "999999\nwriter\n" + QSysInfo::machineHostName().toUtf8() + "\n01234567";
}

void TstProjectGuard::whatAProcessKilledWhileItMadeItLeavesIsTakenOver()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    makeUnlockedProject(project);
    project.writeFile(GuardFile, content);
    QString error;
    const auto guard = TVLProjectGuard::take(project.path(), &error);
    QVERIFY2(guard, qPrintable(error));
}

void TstProjectGuard::theGuardOfAnotherHostHolds()
{
    const TestProject project;
    makeUnlockedProject(project);
    const QByteArray content = "999999\nwriter\nattic\n0123456789abcdef\nfedcba9876543210\n";
    project.writeFile(GuardFile, content);
    QString error;
    QVERIFY(!TVLProjectGuard::take(project.path(), &error));
    QCOMPARE(error,
             u"'%1' is locked by user %2 on host attic, program writer; if nobody has it open, "
             "delete Files/.guard in it"_s.arg(project.path(),
                                               QFileInfo(project.path(GuardFile)).owner()));
    QCOMPARE(project.readFile(GuardFile), content);
    QVERIFY(QFile::remove(project.path(GuardFile)));
    QVERIFY(TVLProjectGuard::take(project.path()));
}

void TstProjectGuard::aGuardThatMayNotBeTakenOverTellsWhoseItIs()
{
    const TestProject project;
    makeUnlockedProject(project);
    LockHolder holder({}, project.path(), u"guard"_s);
    QVERIFY(holder.isHolding());
    holder.kill();
    // As one that another user has left.
    const ReducedPermissions permissions(project.path(GuardFile), QFile::ReadOwner);
    QString error;
    QVERIFY(!TVLProjectGuard::take(project.path(), &error));
    QCOMPARE(error,
             u"'%1' is locked by user %2 on host %3, program lock_program; if nobody has it open, "
             "delete Files/.guard in it"_s.arg(project.path(),
                                               QFileInfo(project.path(GuardFile)).owner(),
                                               QSysInfo::machineHostName()));
}

void TstProjectGuard::aPipeInItsPlaceIsNotOpened()
{
    constexpr mode_t Mode = 0600;
    const TestProject project;
    makeUnlockedProject(project);
    QCOMPARE(mkfifo(QFile::encodeName(project.path(GuardFile)), Mode), 0);
    QString error;
    QVERIFY(!TVLProjectGuard::take(project.path(), &error));
    QCOMPARE(error,
             u"'%1' can't be locked: there is no way to make '%2'"_s.arg(project.path(),
                                                                         project.path(GuardFile)));
    QVERIFY(QFile::remove(project.path(GuardFile)));
    QVERIFY(TVLProjectGuard::take(project.path()));
}

void TstProjectGuard::whereNothingCanBeMadeThereIsNoGuard()
{
    const TestProject project;
    makeUnlockedProject(project);
    const auto before = project.files();
    const ReducedPermissions permissions(project.path(u"Files"_s), ReducedPermissions::ReadOnly);
    QString error;
    QVERIFY(!TVLProjectGuard::take(project.path(), &error));
    QCOMPARE(error,
             u"'%1' can't be locked: there is no way to make '%2'"_s.arg(project.path(),
                                                                         project.path(GuardFile)));
    QCOMPARE(project.files(), before);
}

void TstProjectGuard::patienceWaitsForTheEndOfTheOther()
{
    constexpr int Patience = 60'000;
    const TestProject project;
    makeUnlockedProject(project);
    LockHolder holder({}, project.path(), u"guard"_s);
    QVERIFY(holder.isHolding());
    holder.endSoon();
    QVERIFY(TVLProjectGuard::take(project.path(), nullptr, Patience));
}

void TstProjectGuard::noCopyOfAProjectIsGuarded()
{
    const TestProject project;
    const TestProject copy(u"Copy"_s);
    const TestProject other(u"Other"_s);
    const TestModel model = project.create();
    const auto guard = TVLProjectGuard::take(project.path());
    QVERIFY(guard);
    QVERIFY(TVLProjectFolderFormat::copyProject(project.path(), copy.path(), false, nullptr, false,
                                                false));
    QVERIFY(!QFileInfo::exists(copy.path(GuardFile)));
    QVERIFY(TVLProjectGuard::take(copy.path()));
    QVERIFY(model->saveAs(other.path(), false, true));
    QVERIFY(!QFileInfo::exists(other.path(GuardFile)));
    QVERIFY(QFileInfo::exists(project.path(GuardFile)));
}

void TstProjectGuard::theProjectsFoldersCountAsSound()
{
    const TestProject project;
    const TestModel model = project.create();
    const QSignalSpy lost(model.get(), &TVLProjectModel::externallyModified);
    {
        const auto guard = TVLProjectGuard::take(project.path());
        QVERIFY(guard);
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    QCOMPARE(lost.size(), 0);
}

TVL_TEST_PREPARED(TstProjectGuard, dropRightsOfTheSuperuser)
#include "tst_projectguard.moc"
