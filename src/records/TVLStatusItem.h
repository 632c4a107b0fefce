#pragma once

#include "TvlExport.h"

#include <QList>
#include <QString>

/** A row of the project's status list. Id -1 stands for "no status". */
struct TVL_EXPORT TVLStatusItem
{
    int mId = -1;
    QString mTitle;

    /** The first status item of exactly that title; a default one when there is none. */
    [[nodiscard]] static TVLStatusItem findStatusTitle(const QString &title,
                                                       const QList<TVLStatusItem> &items);
    /** The status item of an id; a default one when there is none. */
    [[nodiscard]] static TVLStatusItem findStatusId(int id, const QList<TVLStatusItem> &items);
    /** The lowest id from 0 up that is free. */
    [[nodiscard]] static int findNextStatusId(const QList<TVLStatusItem> &items);

    friend bool operator==(const TVLStatusItem &, const TVLStatusItem &) = default;
};
