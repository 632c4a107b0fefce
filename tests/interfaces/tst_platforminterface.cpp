#include "Callable.h"
#include "TestMain.h"

#include "TVLDoors.h"
#include "TVLReplay.h"

/** What a program can call of the doors between the library and the world. */
class TstPlatformInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeIdentitiesAndChance();
    void replays();
};

void TstPlatformInterface::timeIdentitiesAndChance()
{
    areCallable([] {
        gives<QDateTime>(tvlNow());
        gives<QUuid>(tvlNewUuid());
        gives<quint32>(tvlRandom());
        gives<quint32>(tvlRandom(6));
    });
}

void TstPlatformInterface::replays()
{
    areCallable([](const QDateTime &time) {
        const TVLReplay fixed(1);
        TVLReplay replay(1, time);
        replay.setNow(time);
        replay.advance(1000);
        replay.setStep(1);
    });
}

TVL_TEST(TstPlatformInterface)
#include "tst_platforminterface.moc"
