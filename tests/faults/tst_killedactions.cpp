#include "FaultyActions.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QTest>

/** A process that is killed while it imports, restores, copies or merges. */
class TstKilledActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyTextIsWhatItWasOrIsToBe_data();
    void everyTextIsWhatItWasOrIsToBe();

private:
    EditionsProject mOriginal;
};

void TstKilledActions::initTestCase()
{
    if (const QString reason = whyNoFaults(); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    mOriginal = EditionsProject::make();
}

void TstKilledActions::everyTextIsWhatItWasOrIsToBe_data()
{
    QTest::addColumn<FaultyAction>("action");
    using namespace FaultyActions;
    for (const FaultyAction &action : {Import, Restore, SaveAs, Merge})
        QTest::newRow(action.name) << action;
}

void TstKilledActions::everyTextIsWhatItWasOrIsToBe()
{
    constexpr quint32 Seed = 33;
    QFETCH(const FaultyAction, action);
    const int kills = testCases(500);
    const qsizetype operations = operationsOf(action, mOriginal).size();
    QCOMPARE(lossesOf(action, mOriginal, killsWithin(operations, kills, Seed)), 0);
}

TVL_TEST(TstKilledActions)
#include "tst_killedactions.moc"
