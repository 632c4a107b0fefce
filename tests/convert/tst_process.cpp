#include "StandIn.h"
#include "TestMain.h"

#include "TVLProcess.h"
#include "TVLProgress.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

TVLProcess::Result runStandIn(const QStringList &arguments, int limit,
                              TVLProgress *progress = nullptr)
{
    return TVLProcess::execute(standInPath(), arguments, limit, QString(), progress);
}

/** Cancels after so many steps. */
class CancelingProgress : public TVLProgress
{
public:
    explicit CancelingProgress(int steps)
        : mStepsLeft(steps)
    {
    }
    void advance(int steps = 1) override { mStepsLeft -= steps; }
    [[nodiscard]] bool isCanceled() const override { return mStepsLeft <= 0; }

private:
    int mStepsLeft;
};

} // namespace

/** Programs that are started and waited for. */
class TstProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProgramGetsItsArgumentsAndItsPlace();
    void aCommandIsTakenApart_data();
    void aCommandIsTakenApart();
    void noShellReadsACommand();
    void anExitCodeIsToldWithTheOutput();
    void standardInputIsEmpty();
    void aMissingProgramFails_data();
    void aMissingProgramFails();
    void aMissingPlaceFails();
    void aProgramThatDiesHasCrashed();
    void aProgramThatHangsIsKilledWithItsChildren();
    void aMuteProgramThatHangsIsKilled();
    void aProgramThatIgnoresTerminationIsKilled();
    void endlessOutputIsCutOffAndKilled();
    void cancellingKills();
    void whatAProgramLeavesBehindIsKilled();
    void errorsHaveWords();
};

void TstProcess::aProgramGetsItsArgumentsAndItsPlace()
{
    const StandInRecord record;
    const QTemporaryDir place;
    const QString target = place.filePath(u"out"_s);
    const QStringList arguments = {u"record"_s, u"a b"_s, u"-x=\"1\""_s, u"$HOME *"_s, target};
    const auto result = TVLProcess::execute(standInPath(), arguments, LongLimit, place.path());
    QVERIFY(result.isDone());
    QCOMPARE(result.error, QProcess::UnknownError);
    QCOMPARE(record.lines(), QStringList(place.path()) + arguments);
}

void TstProcess::aCommandIsTakenApart_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("plain") << u"plain"_s;
    QTest::newRow("blanks") << u"two words"_s;
    QTest::newRow("quotes") << u"the \"best\" one"_s;
    QTest::newRow("quotes at the ends") << u"\"all\""_s;
    QTest::newRow("other signs") << u"'$x' \\ & ; | `y` ü"_s;
}

void TstProcess::aCommandIsTakenApart()
{
    QFETCH(QString, argument);
    const StandInRecord record;
    const QTemporaryDir place;
    const QString target = place.filePath(u"the out"_s);
    const QString command =
        u"%1 record %2 --flag %3"_s.arg(TVLProcess::quoted(standInPath()),
                                        TVLProcess::quoted(argument), TVLProcess::quoted(target));
    const auto result = TVLProcess::executeProcess(command, LongLimit, place.path());
    QVERIFY(result.isDone());
    QCOMPARE(record.lines(),
             QStringList({place.path(), u"record"_s, argument, u"--flag"_s, target}));
}

void TstProcess::noShellReadsACommand()
{
    const StandInRecord record;
    const QTemporaryDir place;
    const auto result = TVLProcess::executeProcess(
        u"\"%1\" record ; echo $HOME > out"_s.arg(standInPath()), LongLimit, place.path());
    QVERIFY(result.isDone());
    QCOMPARE(record.lines().mid(1),
             QStringList({u"record"_s, u";"_s, u"echo"_s, u"$HOME"_s, u">"_s, u"out"_s}));
}

void TstProcess::anExitCodeIsToldWithTheOutput()
{
    const auto result = runStandIn({u"complain"_s, u"3"_s}, LongLimit);
    QCOMPARE(result.exitStatus, QProcess::NormalExit);
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.output, "out of ink\n");
    QVERIFY(!result.isDone());
}

void TstProcess::standardInputIsEmpty()
{
    QVERIFY(runStandIn({u"listen"_s}, LongLimit).isDone());
}

void TstProcess::aMissingProgramFails_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no such path") << u"\"/no/such program\" x"_s;
    QTest::newRow("no such name") << u"no-such-program-at-all"_s;
    QTest::newRow("a folder") << u"/tmp"_s;
}

void TstProcess::aMissingProgramFails()
{
    QFETCH(QString, command);
    const auto result = TVLProcess::executeProcess(command, LongLimit, QString());
    QCOMPARE(result.error, QProcess::FailedToStart);
    QCOMPARE(result.exitStatus, QProcess::CrashExit);
    QVERIFY(!result.isDone());
}

void TstProcess::aMissingPlaceFails()
{
    const auto result =
        TVLProcess::execute(standInPath(), {u"silent"_s}, LongLimit, u"/no/such/place"_s);
    QCOMPARE(result.error, QProcess::FailedToStart);
}

void TstProcess::aProgramThatDiesHasCrashed()
{
    const auto result = runStandIn({u"die"_s}, LongLimit);
    QCOMPARE(result.exitStatus, QProcess::CrashExit);
    QCOMPARE(result.error, QProcess::Crashed);
}

void TstProcess::aProgramThatHangsIsKilledWithItsChildren()
{
    const StandInRecord record;
    const QTemporaryDir place;
    QElapsedTimer time;
    time.start();
    const auto result = runStandIn({u"hang"_s, place.filePath(u"out"_s)}, ShortLimit);
    QVERIFY(time.elapsed() < ShortLimit + Patience);
    QCOMPARE(result.error, QProcess::Timedout);
    QCOMPARE(result.exitStatus, QProcess::CrashExit);
    QVERIFY(!result.isCanceled);
    QCOMPARE(record.lines().size(), 3);
    QTRY_COMPARE(record.livingProcesses(), QStringList());
}

void TstProcess::aMuteProgramThatHangsIsKilled()
{
    QCOMPARE(runStandIn({u"mute"_s}, ShortLimit).error, QProcess::Timedout);
}

void TstProcess::aProgramThatIgnoresTerminationIsKilled()
{
    const StandInRecord record;
    QCOMPARE(runStandIn({u"ignore"_s}, ShortLimit).error, QProcess::Timedout);
    QCOMPARE(record.lines().size(), 1);
    QTRY_COMPARE(record.livingProcesses(), QStringList());
}

void TstProcess::endlessOutputIsCutOffAndKilled()
{
    const auto result = runStandIn({u"endless"_s}, ShortLimit);
    QCOMPARE(result.error, QProcess::Timedout);
    QCOMPARE(result.output.size(), TVLProcess::MostOutput);
}

void TstProcess::cancellingKills()
{
    const StandInRecord record;
    const QTemporaryDir place;
    CancelingProgress progress(5);
    const auto result = runStandIn({u"hang"_s, place.filePath(u"out"_s)}, LongLimit, &progress);
    QVERIFY(result.isCanceled);
    QCOMPARE(result.exitStatus, QProcess::CrashExit);
    QTRY_COMPARE(record.livingProcesses(), QStringList());
}

void TstProcess::whatAProgramLeavesBehindIsKilled()
{
    const StandInRecord record;
    const QTemporaryDir place;
    const auto result = runStandIn({u"leave"_s, place.filePath(u"out"_s)}, LongLimit);
    QVERIFY(result.isDone());
    QCOMPARE(record.lines().size(), 4);
    QTRY_COMPARE(record.livingProcesses(), QStringList());
}

void TstProcess::errorsHaveWords()
{
    QSet<QString> words;
    const QProcess::ProcessError errors[] = {QProcess::FailedToStart, QProcess::Crashed,
                                             QProcess::Timedout,      QProcess::WriteError,
                                             QProcess::ReadError,     QProcess::UnknownError};
    for (const QProcess::ProcessError error : errors)
        words.insert(TVLProcess::toString(error));
    QCOMPARE(words.size(), 6);
    QCOMPARE(TVLProcess::toString(QProcess::CrashExit), u"The program has crashed."_s);
    QCOMPARE(TVLProcess::toString(QProcess::NormalExit), u"The program has ended."_s);
}

TVL_TEST(TstProcess)
#include "tst_process.moc"
