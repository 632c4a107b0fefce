#pragma once

#include <QDateTime>
#include <QHash>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUuid>

class TVLProjectNode;

/** The title that an item is shown with. */
[[nodiscard]] QString shownTitle(const TVLProjectNode *node);
/** A uuid as project files spell it; null for a null one. */
[[nodiscard]] QJsonValue toJson(const QUuid &uuid);
/** A date as ISO 8601 in UTC; null for an invalid one. */
[[nodiscard]] QJsonValue toJson(const QDateTime &dateTime);
/** A text; null for an empty one. */
[[nodiscard]] QJsonValue textOrNull(const QString &text);
/** An id; null for the -1 of an item that has none. */
[[nodiscard]] QJsonValue idOrNull(int id);

/** Titles of labels or status items by id, without the one that stands for none. */
template <typename Item>
[[nodiscard]] QHash<int, QString> titlesById(const QList<Item> &items)
{
    QHash<int, QString> titles;
    for (const Item &item : items) {
        if (item.mId >= 0)
            titles.insert(item.mId, item.mTitle);
    }
    return titles;
}
