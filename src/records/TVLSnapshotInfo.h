#pragma once

#include "TVLTextCommentLink.h"
#include "TVLTextInternalLinkMap.h"

#include <QDateTime>
#include <QList>
#include <QString>

/** A snapshot of an item's text. Its date identifies it within the item. */
struct TVLSnapshotInfo
{
    QString mTitle;
    QDateTime mDate;
    TVLTextInternalLinkMap mLinks;
    QList<TVLTextCommentLink> mComments;

    friend bool operator==(const TVLSnapshotInfo &, const TVLSnapshotInfo &) = default;
};
