#include "TestMain.h"

#include "TVLDoors.h"
#include "TVLReplay.h"

#include <QSet>
#include <QTest>

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QDateTime NewYear2020(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC);

QList<quint32> nextNumbers(int count)
{
    QList<quint32> numbers;
    while (numbers.size() < count)
        numbers.append(tvlRandom());
    return numbers;
}

QList<QUuid> nextUuids(int count)
{
    QList<QUuid> uuids;
    while (uuids.size() < count)
        uuids.append(tvlNewUuid());
    return uuids;
}

} // namespace

/** The time, new identities and chance, with and without a replay of them. */
class TstDoors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTimeIsThePresent();
    void theTimeIsLocal();
    void identitiesAreNewAndRandom();
    void numbersDiffer();
    void numbersStayBelowAnEnd_data();
    void numbersStayBelowAnEnd();
    void allNumbersBelowAnEndComeUp();

    void theSameSeedGivesTheSame();
    void anotherSeedGivesAnother();
    void theValuesAreThoseOfEveryMachine();
    void numbersDoNotShiftIdentities();
    void replayedIdentitiesAreNewAndRandom();

    void theReplayedClockStands();
    void theClockBeginsWhereItIsTold();
    void theClockIsSetAndPutOn();
    void anInvalidTimeIsRefused();
    void theClockGoesOnByItsStep();
    void theReplayedTimeIsLocal();

    void afterAReplayAllIsAsBefore();
    void anInnerReplayCountsAlone();
    void severalThreadsMayAsk();
};

// --- Without a replay

void TstDoors::theTimeIsThePresent()
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const QDateTime now = tvlNow();
    QVERIFY(before <= now);
    QVERIFY(now <= QDateTime::currentDateTimeUtc());
}

void TstDoors::theTimeIsLocal()
{
    QCOMPARE(tvlNow().timeSpec(), Qt::LocalTime);
}

void TstDoors::identitiesAreNewAndRandom()
{
    const QList<QUuid> uuids = nextUuids(1000);
    QCOMPARE(QSet<QUuid>(uuids.cbegin(), uuids.cend()).size(), 1000);
    for (const QUuid &uuid : uuids) {
        QCOMPARE(uuid.version(), QUuid::Random);
        QCOMPARE(uuid.variant(), QUuid::DCE);
    }
}

void TstDoors::numbersDiffer()
{
    const QList<quint32> numbers = nextNumbers(100);
    QVERIFY(QSet<quint32>(numbers.cbegin(), numbers.cend()).size() > 90);
}

void TstDoors::numbersStayBelowAnEnd_data()
{
    QTest::addColumn<quint32>("end");
    QTest::newRow("one") << 1U;
    QTest::newRow("two") << 2U;
    QTest::newRow("a colour") << 256U;
    QTest::newRow("the most") << 0xffffffffU;
}

void TstDoors::numbersStayBelowAnEnd()
{
    QFETCH(const quint32, end);
    for (int i = 0; i < 1000; ++i)
        QVERIFY(tvlRandom(end) < end);
    QCOMPARE(tvlRandom(0), 0U);
}

void TstDoors::allNumbersBelowAnEndComeUp()
{
    const TVLReplay replay(1);
    QList<int> counts(10, 0);
    for (int i = 0; i < 10000; ++i)
        ++counts[tvlRandom(10)];
    for (const int count : std::as_const(counts))
        QVERIFY2(count > 800 && count < 1200, qPrintable(QString::number(count)));
}

// --- Seeds

void TstDoors::theSameSeedGivesTheSame()
{
    QList<quint32> numbers;
    QList<QUuid> uuids;
    {
        const TVLReplay replay(42);
        numbers = nextNumbers(100);
        uuids = nextUuids(100);
    }
    const TVLReplay replay(42);
    QCOMPARE(nextNumbers(100), numbers);
    QCOMPARE(nextUuids(100), uuids);
}

void TstDoors::anotherSeedGivesAnother()
{
    const TVLReplay first(42);
    const QList<quint32> numbers = nextNumbers(10);
    const QList<QUuid> uuids = nextUuids(10);
    const TVLReplay second(43);
    QVERIFY(nextNumbers(10) != numbers);
    QVERIFY(nextUuids(10) != uuids);
}

void TstDoors::theValuesAreThoseOfEveryMachine()
{
    const TVLReplay replay(42);
    QCOMPARE(nextNumbers(3), QList<quint32>({3548655438, 2003459968, 1553277671}));
    QCOMPARE(tvlNewUuid().toString(), u"{7e56f9a5-0031-4ce7-98cc-284903756c83}"_s);
}

void TstDoors::numbersDoNotShiftIdentities()
{
    const TVLReplay first(42);
    const QList<QUuid> uuids = nextUuids(3);
    const TVLReplay second(42);
    (void)nextNumbers(5);
    (void)tvlNow();
    QCOMPARE(nextUuids(3), uuids);
}

void TstDoors::replayedIdentitiesAreNewAndRandom()
{
    const TVLReplay replay(42);
    identitiesAreNewAndRandom();
}

// --- The clock

void TstDoors::theReplayedClockStands()
{
    const TVLReplay replay(1);
    QCOMPARE(tvlNow(), NewYear2020);
    QCOMPARE(tvlNow(), NewYear2020);
}

void TstDoors::theClockBeginsWhereItIsTold()
{
    const QDateTime start(QDate(1999, 12, 31), QTime(23, 59, 59, 999));
    const TVLReplay replay(1, start);
    QCOMPARE(tvlNow(), start);
}

void TstDoors::theClockIsSetAndPutOn()
{
    TVLReplay replay(1);
    replay.advance(1500);
    QCOMPARE(tvlNow(), NewYear2020.addMSecs(1500));
    replay.advance(-500);
    QCOMPARE(tvlNow(), NewYear2020.addMSecs(1000));
    replay.setNow(NewYear2020.addYears(-30));
    QCOMPARE(tvlNow(), NewYear2020.addYears(-30));
}

void TstDoors::anInvalidTimeIsRefused()
{
    TVLReplay replay(1);
    replay.setNow(QDateTime());
    QCOMPARE(tvlNow(), NewYear2020);
}

void TstDoors::theClockGoesOnByItsStep()
{
    TVLReplay replay(1);
    replay.setStep(1000);
    QCOMPARE(tvlNow(), NewYear2020);
    QCOMPARE(tvlNow(), NewYear2020.addSecs(1));
    replay.setStep(0);
    QCOMPARE(tvlNow(), NewYear2020.addSecs(2));
    QCOMPARE(tvlNow(), NewYear2020.addSecs(2));
}

void TstDoors::theReplayedTimeIsLocal()
{
    const TVLReplay replay(1);
    QCOMPARE(tvlNow().timeSpec(), Qt::LocalTime);
}

// --- Its bounds

void TstDoors::afterAReplayAllIsAsBefore()
{
    {
        const TVLReplay replay(42);
        QCOMPARE(tvlNow(), NewYear2020);
    }
    theTimeIsThePresent();
    const QList<quint32> numbers = nextNumbers(10);
    const QList<QUuid> uuids = nextUuids(10);
    const TVLReplay replay(42);
    QVERIFY(nextNumbers(10) != numbers);
    QVERIFY(nextUuids(10) != uuids);
}

void TstDoors::anInnerReplayCountsAlone()
{
    const TVLReplay alone(42);
    const QList<quint32> numbers = nextNumbers(4);

    const TVLReplay outer(42);
    QCOMPARE(nextNumbers(2), numbers.first(2));
    {
        const TVLReplay inner(42);
        QCOMPARE(nextNumbers(4), numbers);
    }
    QCOMPARE(nextNumbers(2), numbers.last(2));
}

void TstDoors::severalThreadsMayAsk()
{
    constexpr int Threads = 4;
    constexpr int Each = 500;
    TVLReplay replay(42);
    replay.setStep(1);
    std::vector<QList<QUuid>> found(Threads);
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&found, i] {
            for (int n = 0; n < Each; ++n) {
                found.at(i).append(tvlNewUuid());
                (void)tvlNow();
                (void)tvlRandom();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QSet<QUuid> together;
    for (const QList<QUuid> &uuids : found)
        together += QSet<QUuid>(uuids.cbegin(), uuids.cend());
    QCOMPARE(together.size(), Threads * Each);
    QCOMPARE(tvlNow(), NewYear2020.addMSecs(Threads * Each));
    const TVLReplay again(42);
    const QList<QUuid> expected = nextUuids(Threads * Each);
    QCOMPARE(together, QSet<QUuid>(expected.cbegin(), expected.cend()));
}

TVL_TEST(TstDoors)
#include "tst_doors.moc"
