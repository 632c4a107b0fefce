#include "TVLAnnouncing_p.h"

#include "TVLProjectModel.h"

void tvlAnnounceChange(TVLProjectModel *model, const QModelIndex &index)
{
    const TVLProjectNode *node = index.isValid() ? model->projectNode(index) : nullptr;
    if (!node)
        return;
    // Who kept an index may have kept it over a change of rows.
    const QModelIndex present = model->createIndex(node).siblingAtColumn(index.column());
    Q_EMIT model->dataChanged(present, present);
}

void tvlAnnounceChanges(TVLProjectModel *model, const QList<TVLHeldItem> &items)
{
    for (const TVLHeldItem &item : items)
        tvlAnnounceChange(model, item.index());
}

void tvlMarkAndAnnounce(TVLProjectModel *model, const QModelIndex &index)
{
    // Who hears that the project has changed may remove the item.
    const QPersistentModelIndex changed = index;
    model->markProjectAsModified(true);
    tvlAnnounceChange(model, changed);
}
