#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int SecondMs = 1000;
// The timer may come up to a twentieth early.
constexpr int LeastSecondMs = 950;
// More than enough for another save to come, if there were one.
constexpr int LongerThanASaveMs = 1600;

/** Whether the saved state comes next among the changes of a model's state. */
bool waitForSave(QSignalSpy *modified)
{
    while (modified->isEmpty() || modified->constLast().at(0).toBool()) {
        if (!modified->wait(PatienceMs))
            return false;
    }
    return true;
}

QList<bool> states(const QSignalSpy &modified)
{
    QList<bool> found;
    for (const QList<QVariant> &arguments : modified)
        found.append(arguments.at(0).toBool());
    return found;
}

} // namespace

class TstAutosave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aChangeIsSavedAfterTheIdleTime();
    void twoChangesGiveOneSaveAfterTheSecond();
    void markingWithFalseDoesNotStopTheTimer();
    void savingStopsTheTimer();
    void aSaveThatFindsNothingToDoStopsTheTimer();
    void anUnchangedProjectIsNotSaved();
    void editorsAreAskedByAnAutomaticSaveToo();
    void aChangedIdleTimeCountsFromTheNextChange();
    void aFailedAutomaticSaveIsToldOnce();
    void aDeletedModelIsNotSaved();
};

void TstAutosave::init()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 1);
}

void TstAutosave::cleanup()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 10);
}

void TstAutosave::aChangeIsSavedAfterTheIdleTime()
{
    const TestProject project;
    const auto model = project.create();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    QElapsedTimer sinceChange;
    sinceChange.start();
    QVERIFY(model->setTitle(firstText(model.get()), u"changed"_s));
    QVERIFY(waitForSave(&modified));
    QVERIFY(sinceChange.elapsed() >= LeastSecondMs);
    QVERIFY(model->isSaved());
    QCOMPARE(states(modified), QList<bool>({true, false}));
    const auto reopened = project.open();
    QCOMPARE(reopened->title(firstText(reopened.get())), u"changed"_s);
}

void TstAutosave::twoChangesGiveOneSaveAfterTheSecond()
{
    const TestProject project;
    const auto model = project.create();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    QElapsedTimer sinceSecondChange;
    QVERIFY(model->setTitle(firstText(model.get()), u"first"_s));
    QTimer::singleShot(SecondMs / 2, model.get(), [&] {
        QVERIFY(model->isModified());
        sinceSecondChange.start();
        QVERIFY(model->setTitle(firstText(model.get()), u"second"_s));
    });
    QVERIFY(waitForSave(&modified));
    QVERIFY(sinceSecondChange.isValid());
    QVERIFY2(sinceSecondChange.elapsed() >= LeastSecondMs,
             qPrintable(QString::number(sinceSecondChange.elapsed())));
    QVERIFY(!modified.wait(LongerThanASaveMs));
    QCOMPARE(states(modified), QList<bool>({true, false}));
}

void TstAutosave::markingWithFalseDoesNotStopTheTimer()
{
    const TestProject project;
    const auto model = project.create();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    TVLProjectModelTestAccess::markModified(model.get());
    TVLProjectModelTestAccess::markModified(model.get(), false);
    QVERIFY(waitForSave(&modified));
    QVERIFY(model->isSaved());
}

void TstAutosave::savingStopsTheTimer()
{
    const TestProject project;
    const auto model = project.create();
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(model->save(false));
    model->loadDocuments(model->findNode(3));
    QSignalSpy asked(model.get(), &TVLProjectModel::aboutToSave);
    QVERIFY(!asked.wait(LongerThanASaveMs));
}

void TstAutosave::aSaveThatFindsNothingToDoStopsTheTimer()
{
    const TestProject project;
    const auto model = project.create();
    model->loadDocuments(model->findNode(3));
    QSignalSpy asked(model.get(), &TVLProjectModel::aboutToSave);
    QVERIFY(model->save(false));
    QCOMPARE(asked.count(), 1);
    QVERIFY(!asked.wait(LongerThanASaveMs));
}

void TstAutosave::anUnchangedProjectIsNotSaved()
{
    const TestProject project;
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(project.path()));
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    QVERIFY(!modified.wait(LongerThanASaveMs));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstAutosave::editorsAreAskedByAnAutomaticSaveToo()
{
    const TestProject project;
    const auto model = project.create();
    model->loadDocuments(model->findNode(3));
    model->loadDocuments(model->findNode(0));
    SignalLog log(model.get());
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(waitForSave(&modified));
    QCOMPARE(log.lines(),
             QStringList({u"modified"_s, u"about to save 3"_s, u"about to save 0"_s, u"saved"_s}));
}

void TstAutosave::aChangedIdleTimeCountsFromTheNextChange()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 3600);
    const TestProject project;
    const auto model = project.create();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    TVLProjectModelTestAccess::markModified(model.get());
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 1);
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(waitForSave(&modified));
}

void TstAutosave::aFailedAutomaticSaveIsToldOnce()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QFile::remove(project.binderPath()));
    project.writeFile(u"Novel.tavelx/obstacle"_s, "x");
    const TVLUnattendedMessageBoxes boxes;
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(waitForSave(&modified));
    QVERIFY(model->isSaved());
    QVERIFY(!modified.wait(LongerThanASaveMs));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, u"Project Writer"_s);
}

void TstAutosave::aDeletedModelIsNotSaved()
{
    const TestProject project;
    auto model = project.create();
    const auto before = project.files();
    QVERIFY(model->setTitle(firstText(model.get()), u"changed"_s));
    model.reset();
    QTimer timer;
    timer.setSingleShot(true);
    QSignalSpy passed(&timer, &QTimer::timeout);
    timer.start(LongerThanASaveMs);
    QVERIFY(passed.wait(PatienceMs));
    QCOMPARE(project.files(), before);
}

TVL_TEST(TstAutosave)
#include "tst_autosave.moc"
