#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

/** A process that is killed while it saves must leave a project that opens as of a whole save. */
class TstKillDuringSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledSaveLeavesTheLastCompletedOneOrALaterOne();
    void aTextIsOfOneSave();
};

namespace {

const int Items = testSize(1500);
const int SaveKills = testCases(500);
constexpr int SavesPerLife = 4;

void makeProject(const TestProject &project, int items = Items)
{
    const TestModel model = project.create();
    const QModelIndex draft = model->draftFolder();
    if (items > model->rowCount(draft))
        model->insertRows(0, items - model->rowCount(draft), draft);
    for (int row = 0; row < items; ++row)
        model->setTitle(model->index(row, 0, draft), u"Save 0"_s);
    if (!model->save(true))
        qFatal("the project could not be saved");
    model->prepareToDestroy();
}

/**
 * Runs the victim and kills it within the save that follows one of its first, or shortly after; the
 * number of the last save that it announced. Its saves are the clock, so it doesn't matter how slow
 * this machine and this build are.
 */
int saveUntilKilled(const QStringList &arguments, QRandomGenerator *random)
{
    constexpr int PatienceMs = 60'000;
    QProcess victim;
    victim.setProgram(QStringLiteral(FAULT_SAVER));
    victim.setArguments(arguments);
    victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    victim.start();
    const auto nextLine = [&victim] {
        while (!victim.canReadLine()) {
            if (!victim.waitForReadyRead(PatienceMs))
                return QByteArray();
        }
        return victim.readLine();
    };
    if (nextLine() != "ready\n")
        return -1;
    int last = 0;
    QElapsedTimer life;
    life.start();
    const int completed = 1 + random->bounded(SavesPerLife);
    for (int save = 0; save < completed; ++save)
        last = qMax(last, nextLine().toInt());
    const qint64 savingNs = life.nsecsElapsed() / completed;

    const qint64 length = life.nsecsElapsed() + random->bounded(savingNs + savingNs / 2);
    while (life.nsecsElapsed() < length)
        victim.waitForReadyRead(1);
    victim.kill();
    victim.waitForFinished();
    const QList<QByteArray> lines = victim.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines)
        last = qMax(last, line.toInt());
    return last;
}

} // namespace

void TstKillDuringSave::aKilledSaveLeavesTheLastCompletedOneOrALaterOne()
{
    const TestProject project;
    makeProject(project);
    QRandomGenerator random(20);
    int completed = 0;
    int fallbacks = 0;
    for (int kill = 0; kill < SaveKills; ++kill) {
        const int announced = saveUntilKilled({project.path()}, &random);
        QVERIFY2(announced >= 0, "the saving process did not start");
        completed = qMax(completed, announced);

        const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
        fallbacks += binder.trimmed().endsWith("</TavelinorProject>") ? 0 : 1;
        const TestModel model = project.open();
        QVERIFY2(model, qPrintable(u"not opened after kill %1"_s.arg(kill)));
        const QModelIndex draft = model->draftFolder();
        QCOMPARE(model->rowCount(draft), Items);
        QSet<QString> titles;
        for (int row = 0; row < Items; ++row)
            titles.insert(model->title(model->index(row, 0, draft)));
        QCOMPARE(titles.size(), 1);
        const int found = titles.constBegin()->section(u' ', 1).toInt();
        QVERIFY2(found == completed || found == completed + 1,
                 qPrintable(u"save %1 found, %2 completed"_s.arg(found).arg(completed)));
        completed = found;
    }
    qInfo("%d kills over %d saves; %d left the binder cut off", SaveKills, completed, fallbacks);
}

void TstKillDuringSave::aTextIsOfOneSave()
{
    const TestProject project;
    makeProject(project, 1);
    QRandomGenerator random(21);
    int completed = 0;
    for (int kill = 0; kill < SaveKills; ++kill) {
        const int announced = saveUntilKilled({project.path(), u"texts"_s}, &random);
        QVERIFY2(announced >= 0, "the saving process did not start");
        const TestModel model = project.open();
        QVERIFY(model);
        const QModelIndex index = model->index(0, 0, model->draftFolder());
        TVLTextDocument document(nullptr, model.get(), model->projectNode(index), TVL::MainText);
        QString error;
        QVERIFY2(TVLProjectFolderFormat::readDocument(project.path(), document.node(), &document,
                                                      &error),
                 qPrintable(error));
        const QStringList lines = document.toPlainText().split(u'\n');
        QCOMPARE(QSet<QString>(lines.begin(), lines.end()).size(), 1);
        const int found = lines.constFirst().section(u' ', 1).toInt();
        QVERIFY2(found == announced || found == announced + 1,
                 qPrintable(u"save %1 found, %2 completed"_s.arg(found).arg(announced)));
        completed = qMax(completed, announced);
    }
    qInfo("%d kills over %d saves", SaveKills, completed);
}

TVL_TEST(TstKillDuringSave)
#include "tst_killduringsave.moc"
