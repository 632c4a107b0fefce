#include "TVLAutoCompleteItem.h"

#include <algorithm>

int TVLAutoCompleteItem::scopeId(Scope scope, int id)
{
    if (scope == Everywhere)
        return EverywhereId;
    if (scope == GeneralText)
        return GeneralTextId;
    return id >= 0 ? id : EverywhereId;
}

qsizetype TVLAutoCompleteItem::indexOf(const QString &text, const QList<TVLAutoCompleteItem> &items)
{
    const auto found =
        std::find_if(items.begin(), items.end(),
                     [&text](const TVLAutoCompleteItem &item) { return item.mText == text; });
    return found == items.end() ? -1 : found - items.begin();
}

QStringList TVLAutoCompleteItem::toStringList(const QList<TVLAutoCompleteItem> &items)
{
    QStringList texts;
    texts.reserve(items.size());
    for (const TVLAutoCompleteItem &item : items)
        texts.append(item.mText);
    return texts;
}
