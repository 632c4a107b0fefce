#include "TVLLabel.h"

#include "TVLRecordList_p.h"

TVLLabel TVLLabel::findLabelTitle(const QString &title, const QList<TVLLabel> &labels)
{
    return tvlFindRecord(labels, &TVLLabel::mTitle, title);
}

TVLLabel TVLLabel::findLabelId(int id, const QList<TVLLabel> &labels)
{
    return tvlFindRecord(labels, &TVLLabel::mId, id);
}

int TVLLabel::findNextLabelId(const QList<TVLLabel> &labels)
{
    return tvlLowestFreeId(labels);
}
