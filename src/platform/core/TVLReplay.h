#pragma once

#include "TvlExport.h"

#include <QDateTime>
#include <QUuid>

#include <memory>

/**
 * Makes a run that can be repeated: while it lives, tvlNow(), tvlNewUuid() and tvlRandom() give
 * what follows from a seed and a time to begin with, for tests of histories.
 *
 * Each of the three goes its own way, so that a step which is left out of a history shifts as
 * little as can be: identities don't change because a number was asked for. What is asked for in
 * the same order is the same in each run and on each machine.
 *
 * The clock stands until it is set. With a step it goes on by that after each look, so that no two
 * looks see the same time.
 *
 * One may be made while another lives; it then counts alone, and has to go first. A replay is made
 * and destroyed while no other thread uses the library. In between all may, but which of them gets
 * which value is then up to chance.
 */
class TVL_EXPORT TVLReplay
{
public:
    /** @p start of an invalid date is the beginning of the year 2020 in UTC. */
    explicit TVLReplay(quint32 seed, const QDateTime &start = {});
    ~TVLReplay();
    Q_DISABLE_COPY_MOVE(TVLReplay)

    /** Sets the clock, back too. An invalid time is refused. */
    void setNow(const QDateTime &now);
    /** Puts the clock on, or back. */
    void advance(qint64 milliseconds);
    /** How far the clock goes on by itself after each look; 0 to begin with. */
    void setStep(qint64 milliseconds);

private:
    friend QDateTime tvlNow();
    friend QUuid tvlNewUuid();
    friend quint32 tvlRandom();

    [[nodiscard]] static TVLReplay *present();
    [[nodiscard]] QDateTime nextTime();
    [[nodiscard]] QUuid nextUuid();
    [[nodiscard]] quint32 nextNumber();

    struct State;
    std::unique_ptr<State> mState;
    TVLReplay *mOuter; ///< The one that counts again when this goes.
};
