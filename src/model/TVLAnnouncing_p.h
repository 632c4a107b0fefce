#pragma once

#include "TVLHeldItem_p.h"

class TVLProjectModel;

// Items may go at each signal; see TVLHeldItem.

/** Emits dataChanged() of an item where it is now; nothing for an index that isn't an item's. */
void tvlAnnounceChange(TVLProjectModel *model, const QModelIndex &index);
void tvlAnnounceChanges(TVLProjectModel *model, const QList<TVLHeldItem> &items);
/** Marks the project as modified, too. */
void tvlMarkAndAnnounce(TVLProjectModel *model, const QModelIndex &index);
