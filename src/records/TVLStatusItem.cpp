#include "TVLStatusItem.h"

#include "TVLRecordList_p.h"

TVLStatusItem TVLStatusItem::findStatusTitle(const QString &title,
                                             const QList<TVLStatusItem> &items)
{
    return tvlFindRecord(items, &TVLStatusItem::mTitle, title);
}

TVLStatusItem TVLStatusItem::findStatusId(int id, const QList<TVLStatusItem> &items)
{
    return tvlFindRecord(items, &TVLStatusItem::mId, id);
}

int TVLStatusItem::findNextStatusId(const QList<TVLStatusItem> &items)
{
    return tvlLowestFreeId(items);
}
