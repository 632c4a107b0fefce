#include "FaultyActions.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QTest>

/** A process that is killed while it saves several texts, the binder and its copy. */
class TstKilledSaves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextIsOfTheLastSaveOrTheOneBehindIt();
};

void TstKilledSaves::everyTextIsOfTheLastSaveOrTheOneBehindIt()
{
    if (const QString reason = whyNoFaults(); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    constexpr quint32 Seed = 32;
    const int kills = testCases(2000);
    const EditionsProject original = EditionsProject::make();
    // An edit opens the project and saves twice; here it is twice as much as that.
    const qsizetype operations = 2 * operationsOf(FaultyActions::Edit, original).size();
    QCOMPARE(lossesOf(FaultyActions::Save, original, killsWithin(operations, kills, Seed)), 0);
}

TVL_TEST(TstKilledSaves)
#include "tst_killedsaves.moc"
