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

/** A process that is killed while it saves must leave a project that opens as of a whole save. */
class TstKillDuringSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledSaveLeavesTheLastCompletedOneOrALaterOne();
    void aTextIsOfOneSaveOrItsFileIsKnownToBeCutOff();
};

namespace {

const int Items = testSize(1500);
const int SaveKills = testCases(2000);
constexpr qint64 LeastLifeMs = 100;
constexpr qint64 SavesPerLife = 4;

/**
 * Makes a project and tells how long a victim may live at most: long enough for some saves, however
 * slow this machine and this build are.
 */
qint64 makeProject(const TestProject &project, int items = Items)
{
    const std::unique_ptr<TVLProjectModel> model = project.create();
    const QModelIndex draft = model->draftFolder();
    if (items > model->rowCount(draft))
        model->insertRows(0, items - model->rowCount(draft), draft);
    for (int row = 0; row < items; ++row)
        model->setTitle(model->index(row, 0, draft), u"Save 0"_qs);
    QElapsedTimer saving;
    saving.start();
    if (!model->save(true))
        qFatal("the project could not be saved");
    const qint64 lifeMs = qMax(LeastLifeMs, SavesPerLife * saving.elapsed());
    model->prepareToDestroy();
    return lifeMs;
}

/** Runs the victim for a random while and kills it; the number of the last save that it announced.
 */
int saveUntilKilled(const QStringList &arguments, qint64 longestLifeMs, QRandomGenerator *random)
{
    QProcess victim;
    victim.setProgram(QStringLiteral(FAULT_SAVER));
    victim.setArguments(arguments);
    victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    victim.start();
    while (!victim.canReadLine()) {
        if (!victim.waitForReadyRead(60'000))
            return -1;
    }
    if (victim.readLine() != "ready\n")
        return -1;

    QElapsedTimer life;
    life.start();
    const qint64 length = random->bounded(longestLifeMs * 1'000'000);
    while (life.nsecsElapsed() < length)
        victim.waitForReadyRead(1);
    victim.kill();
    victim.waitForFinished();

    int last = 0;
    const QList<QByteArray> lines = victim.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines)
        last = qMax(last, line.toInt());
    return last;
}

} // namespace

void TstKillDuringSave::aKilledSaveLeavesTheLastCompletedOneOrALaterOne()
{
    const TestProject project;
    const qint64 lifeMs = makeProject(project);
    QRandomGenerator random(20);
    int completed = 0;
    int fallbacks = 0;
    for (int kill = 0; kill < SaveKills; ++kill) {
        const int announced = saveUntilKilled({project.path()}, lifeMs, &random);
        QVERIFY2(announced >= 0, "the saving process did not start");
        completed = qMax(completed, announced);

        const QByteArray binder = project.readFile(u"Novel.tavelx"_qs);
        fallbacks += binder.trimmed().endsWith("</TavelinorProject>") ? 0 : 1;
        const std::unique_ptr<TVLProjectModel> model = project.open();
        QVERIFY2(model, qPrintable(u"not opened after kill %1"_qs.arg(kill)));
        const QModelIndex draft = model->draftFolder();
        QCOMPARE(model->rowCount(draft), Items);
        QSet<QString> titles;
        for (int row = 0; row < Items; ++row)
            titles.insert(model->title(model->index(row, 0, draft)));
        QCOMPARE(titles.size(), 1);
        const int found = titles.constBegin()->section(u' ', 1).toInt();
        QVERIFY2(found == completed || found == completed + 1,
                 qPrintable(u"save %1 found, %2 completed"_qs.arg(found).arg(completed)));
        completed = found;
    }
    QVERIFY2(completed > SaveKills / 4, "too few saves took place for the kills to mean anything");
    qInfo("%d kills over %d saves; %d left the binder cut off", SaveKills, completed, fallbacks);
}

void TstKillDuringSave::aTextIsOfOneSaveOrItsFileIsKnownToBeCutOff()
{
    const TestProject project;
    const qint64 lifeMs = makeProject(project, 1);
    QRandomGenerator random(21);
    int completed = 0;
    int cutOff = 0;
    for (int kill = 0; kill < SaveKills; ++kill) {
        const int announced = saveUntilKilled({project.path(), u"texts"_qs}, lifeMs, &random);
        QVERIFY2(announced >= 0, "the saving process did not start");
        const std::unique_ptr<TVLProjectModel> model = project.open();
        QVERIFY(model);
        const QModelIndex index = model->index(0, 0, model->draftFolder());
        TVLTextDocument document(nullptr, model.get(), model->projectNode(index), TVL::MainText);
        QString error;
        if (!TVLProjectFolderFormat::readDocument(project.path(), document.node(), &document,
                                                  &error)) {
            ++cutOff;
            QVERIFY(document.isReadOnly());
            // As a writer would put a copy of the file from elsewhere in its place.
            QVERIFY(QFile::remove(TVLProjectFolderFormat::filesDocsNodeTypeFilePath(
                project.path(), document.node()->mId, TVL::MainText)));
        } else if (!document.isEmpty()) {
            const QStringList lines = document.toPlainText().split(u'\n');
            QCOMPARE(QSet<QString>(lines.begin(), lines.end()).size(), 1);
            const int found = lines.constFirst().section(u' ', 1).toInt();
            QVERIFY2(announced == 0 || found == announced || found == announced + 1,
                     qPrintable(u"save %1 found, %2 completed"_qs.arg(found).arg(announced)));
        }
        completed = qMax(completed, announced);
    }
    QVERIFY2(completed > SaveKills / 4, "too few saves took place for the kills to mean anything");
    // The file is open for one write only, a small part of what a save takes.
    QVERIFY2(cutOff <= SaveKills / 10 + 3, qPrintable(QString::number(cutOff)));
    qInfo("%d kills over %d saves; %d left the text cut off", SaveKills, completed, cutOff);
}

TVL_TEST(TstKillDuringSave)
#include "tst_killduringsave.moc"
