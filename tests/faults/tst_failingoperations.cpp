#include "FaultyActions.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QTest>

#include <cerrno>

/** Whatever operation on a file fails, no text is gone that a completed save held. */
class TstFailingOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void noTextIsLost_data();
    void noTextIsLost();

private:
    EditionsProject mOriginal;
};

namespace {

/** The ways in which an operation is made to fail. */
constexpr Fault FaultRows[] = {{Fault::Fail, 0, ENOSPC},
                               {Fault::FailForEver, 0, EIO},
                               {Fault::Fail, 0, EIO},
                               {Fault::FailForEver, 0, ENOSPC}};

/** What is tried of so many operations: all, or one of each of some of them. */
QList<Fault> faultsOf(qsizetype operations)
{
    constexpr int Kinds = int(std::size(FaultRows));
    const int stride = testStride();
    QList<Fault> faults;
    for (int at = 1; at <= operations; at += stride) {
        for (int kind = 0; kind < Kinds; ++kind) {
            if (stride > 1 && kind != at / stride % Kinds)
                continue;
            faults.append(FaultRows[kind]);
            faults.last().at = at;
        }
    }
    return faults;
}

} // namespace

void TstFailingOperations::initTestCase()
{
    const QString reason = whyNoFaults();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    mOriginal = EditionsProject::make();
}

void TstFailingOperations::noTextIsLost_data()
{
    QTest::addColumn<FaultyAction>("action");
    using namespace FaultyActions;
    for (const FaultyAction &action :
         {Edit, Import, Restore, RestoreWithoutBackup, SaveAs, Merge, EmptyTrash})
        QTest::newRow(action.name) << action;
}

void TstFailingOperations::noTextIsLost()
{
    QFETCH(const FaultyAction, action);
    const qsizetype operations = operationsOf(action, mOriginal).size();
    QVERIFY(operations > 0);
    const QList<Fault> faults = faultsOf(operations);
    QCOMPARE(lossesOf(action, mOriginal, faults), 0);
    qInfo("%d faults of %d operations", int(faults.size()), int(operations));
}

TVL_TEST(TstFailingOperations)
#include "tst_failingoperations.moc"
