#include "TVLReplay.h"

#include <QMutex>
#include <QRandomGenerator>

#include <atomic>

namespace {

std::atomic<TVLReplay *> presentReplay = nullptr;

/** A generator of its own for each of two purposes. */
QRandomGenerator seededGenerator(quint32 seed, quint32 purpose)
{
    const quint32 words[] = {seed, purpose};
    return QRandomGenerator(words);
}

} // namespace

struct TVLReplay::State
{
    QMutex mutex;
    QDateTime now;
    qint64 step = 0;
    QRandomGenerator numbers;
    QRandomGenerator identities;
};

TVLReplay::TVLReplay(quint32 seed, const QDateTime &start)
    : mState(std::make_unique<State>())
    , mOuter(presentReplay)
{
    mState->now =
        start.isValid() ? start.toUTC() : QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC);
    mState->numbers = seededGenerator(seed, 0);
    mState->identities = seededGenerator(seed, 1);
    presentReplay = this;
}

TVLReplay::~TVLReplay()
{
    Q_ASSERT_X(presentReplay == this, Q_FUNC_INFO, "one that was made later is still there");
    presentReplay = mOuter;
}

void TVLReplay::setNow(const QDateTime &now)
{
    const QMutexLocker locker(&mState->mutex);
    if (now.isValid())
        mState->now = now.toUTC();
}

void TVLReplay::advance(qint64 milliseconds)
{
    const QMutexLocker locker(&mState->mutex);
    mState->now = mState->now.addMSecs(milliseconds);
}

void TVLReplay::setStep(qint64 milliseconds)
{
    const QMutexLocker locker(&mState->mutex);
    mState->step = milliseconds;
}

TVLReplay *TVLReplay::present()
{
    return presentReplay;
}

QDateTime TVLReplay::nextTime()
{
    const QMutexLocker locker(&mState->mutex);
    const QDateTime now = mState->now;
    mState->now = now.addMSecs(mState->step);
    return now.toLocalTime();
}

QUuid TVLReplay::nextUuid()
{
    const QMutexLocker locker(&mState->mutex);
    quint32 words[4];
    mState->identities.fillRange(words);
    // The bits that say which kind of identity it is.
    const auto byte = [&words](int i) { return uchar(words[2 + i / 4] >> (8 * (i % 4))); };
    const auto version = ushort((words[1] & 0x0fff) | 0x4000);
    const auto variant = uchar((byte(0) & 0x3f) | 0x80);
    return {words[0], ushort(words[1] >> 16),
            version,  variant,
            byte(1),  byte(2),
            byte(3),  byte(4),
            byte(5),  byte(6),
            byte(7)};
}

quint32 TVLReplay::nextNumber()
{
    const QMutexLocker locker(&mState->mutex);
    return mState->numbers.generate();
}
