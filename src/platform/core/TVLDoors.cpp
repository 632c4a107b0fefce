#include "TVLDoors.h"

#include "TVLReplay.h"

#include <QRandomGenerator>

QDateTime tvlNow()
{
    TVLReplay *replay = TVLReplay::present();
    return replay ? replay->nextTime() : QDateTime::currentDateTime();
}

QUuid tvlNewUuid()
{
    TVLReplay *replay = TVLReplay::present();
    return replay ? replay->nextUuid() : QUuid::createUuid();
}

quint32 tvlRandom()
{
    TVLReplay *replay = TVLReplay::present();
    return replay ? replay->nextNumber() : QRandomGenerator::global()->generate();
}

quint32 tvlRandom(quint32 end)
{
    // The upper half of the product; the bias is below what anybody could count.
    return quint32((quint64(tvlRandom()) * end) >> 32);
}
