#pragma once

#include <QPointF>
#include <QString>

/** Where a card lies on a freeform corkboard. */
struct TVLFreeformPositionInfo
{
    int mId = -1; ///< Id of the child that the card shows.
    QPointF mPosition;
    QString mTimeStamp; ///< When it was put there, as it stands in the binder; never parsed.

    friend bool operator==(const TVLFreeformPositionInfo &,
                           const TVLFreeformPositionInfo &) = default;
};
