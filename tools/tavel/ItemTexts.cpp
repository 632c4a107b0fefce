#include "ItemTexts.h"

#include "TUuid.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

QString shownTitle(const TVLProjectNode *node)
{
    return node->mTitle.isEmpty() ? TVLProjectModel::trUntitledTitle() : node->mTitle;
}

QJsonValue toJson(const QUuid &uuid)
{
    return uuid.isNull() ? QJsonValue() : QJsonValue(TUuid::toStringNoBraces(uuid, true));
}

QJsonValue toJson(const QDateTime &dateTime)
{
    return dateTime.isValid() ? QJsonValue(dateTime.toUTC().toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue idOrNull(int id)
{
    return id < 0 ? QJsonValue() : QJsonValue(id);
}
