#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"

#include <algorithm>

namespace {

/** Drops items whose id came before, and makes sure of one with a negative id, in front. */
template <typename Item>
QMap<int, Item> tidyItems(QList<Item> *items, const Item &noneItem)
{
    QMap<int, Item> byId;
    items->removeIf([&byId](const Item &item) {
        if (byId.contains(item.mId))
            return true;
        byId.insert(item.mId, item);
        return false;
    });
    if (byId.isEmpty() || byId.firstKey() >= 0) {
        items->prepend(noneItem);
        byId.insert(noneItem.mId, noneItem);
    }
    return byId;
}

template <typename Item>
bool containsId(const QList<Item> &items, int id)
{
    return std::any_of(items.begin(), items.end(),
                       [id](const Item &item) { return item.mId == id; });
}

} // namespace

/*
 * Replaces the labels or the status items. Every item must be left pointing at something real, and
 * every item that shows a row which went or looks different now has to be drawn anew.
 */
template <typename Item, typename SetItems>
void TVLProjectModelPrivate::replaceItems(QList<Item> items, const QList<Item> &oldItems,
                                          const Item &noneItem,
                                          int TVLProjectNodeProperties::*member,
                                          TVL::DocumentProperty property, int *defaultId,
                                          SetItems setItems, ListEffect effect)
{
    const QMap<int, Item> byId = tidyItems(&items, noneItem);
    QSet<int> changedIds;
    for (const Item &old : oldItems) {
        const auto current = byId.constFind(old.mId);
        if (current == byId.cend() || *current != old)
            changedIds.insert(old.mId);
    }
    QList<TVLProjectNode *> touched;
    if (!changedIds.isEmpty() && effect == ListEffect::ItemsFollow) {
        tvlForEachNode(mRootNode.get(), [&](TVLProjectNode *node) {
            if (changedIds.contains(node->*member))
                touched.append(node);
        });
    }
    if (!byId.contains(*defaultId))
        *defaultId = -1;
    setItems(items);
    for (TVLProjectNode *node : std::as_const(touched)) {
        if (!byId.contains(node->*member)) {
            node->*member = -1;
            mSearchFeed->updateValue(node, property, -1);
        }
        node->updateModified();
    }
    tvlAnnounceChanges(q, TVLHeldItem::listOf(q, touched));
}

void TVLProjectModelPrivate::setListTitle(QString *stored, const QString &title,
                                          void (TVLProjectModel::*changed)(QString))
{
    if (title == *stored)
        return;
    q->markProjectAsModified(true);
    *stored = title;
    Q_EMIT(q->*changed)(title);
    Q_EMIT q->metaDataChanged();
}

template <typename Item>
void TVLProjectModelPrivate::setDefaultIdentity(int *stored, int id, const QList<Item> &items)
{
    if (id == *stored)
        return;
    if (containsId(items, id)) {
        q->markProjectAsModified(true);
        *stored = id;
    }
    Q_EMIT q->metaDataChanged();
}

QList<TVLLabel> TVLProjectModel::labels() const
{
    return d->mSearchIndex->labels();
}

void TVLProjectModel::setLabels(const QList<TVLLabel> &labels)
{
    d->replaceLabels(labels, TVLProjectModelPrivate::ListEffect::ItemsFollow);
}

void TVLProjectModelPrivate::replaceLabels(const QList<TVLLabel> &labels, ListEffect effect)
{
    QList<TVLLabel> plainLabels = labels;
    for (TVLLabel &label : plainLabels) {
        // As it is stored; the same colour in another notation is no change.
        if (label.mColor.isValid())
            label.mColor = QColor(label.mColor.rgb());
    }
    replaceItems(
        plainLabels, q->labels(), TVLLabel{-1, TVLProjectModel::tr("No Label"), QColor()},
        &TVLProjectNodeProperties::mLabelId, TVL::LabelProperty, &mDefaultLabelId,
        [this](const QList<TVLLabel> &items) { mSearchIndex->setLabels(items); }, effect);
    Q_EMIT q->labelsChanged();
    q->markProjectAsModified(true);
}

void TVLProjectModel::setLabelTitle(const QString &title)
{
    d->setListTitle(&d->mLabelTitle, title, &TVLProjectModel::labelTitleChanged);
}

void TVLProjectModel::setDefaultLabelIdentity(int id)
{
    d->setDefaultIdentity(&d->mDefaultLabelId, id, labels());
}

QList<TVLStatusItem> TVLProjectModel::statusItems() const
{
    return d->mSearchIndex->statusItems();
}

void TVLProjectModel::setStatusItems(const QList<TVLStatusItem> &items)
{
    d->replaceStatusItems(items, TVLProjectModelPrivate::ListEffect::ItemsFollow);
}

void TVLProjectModelPrivate::replaceStatusItems(const QList<TVLStatusItem> &items,
                                                ListEffect effect)
{
    replaceItems(
        items, q->statusItems(), TVLStatusItem{-1, TVLProjectModel::tr("No Status")},
        &TVLProjectNodeProperties::mStatusId, TVL::StatusProperty, &mDefaultStatusId,
        [this](const QList<TVLStatusItem> &tidy) { mSearchIndex->setStatusItems(tidy); }, effect);
    Q_EMIT q->statusItemsChanged();
    q->markProjectAsModified(true);
}

void TVLProjectModel::setStatusTitle(const QString &title)
{
    d->setListTitle(&d->mStatusTitle, title, &TVLProjectModel::statusTitleChanged);
}

void TVLProjectModel::setDefaultStatusIdentity(int id)
{
    d->setDefaultIdentity(&d->mDefaultStatusId, id, statusItems());
}

int TVLProjectModel::maxOutlineColumns() const
{
    return TVL::FirstCustomColumn + int(d->mCustomMetaDataSettings.size());
}
