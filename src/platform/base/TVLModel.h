#pragma once

#include "TvlExport.h"

#include <QModelIndex>
#include <QModelIndexList>

/** Walks over the indexes of any item model, by its first column. */
class TVL_EXPORT TVLModel
{
public:
    /** The children of an index, in order. The index's model must be set, its row need not be. */
    [[nodiscard]] static QModelIndexList directChildren(const QModelIndex &parent);

    /** All descendants of an index in pre-order. */
    [[nodiscard]] static QModelIndexList childrenAndSubChildren(const QModelIndex &parent);

    /** The ancestors of an index that are valid, nearest first. */
    [[nodiscard]] static QModelIndexList parents(const QModelIndex &index);

    /** Whether @p parent is an ancestor of @p index. */
    [[nodiscard]] static bool parentsContain(const QModelIndex &index, const QModelIndex &parent);

    /**
     * Whether @p a comes before @p b when the tree is read from top to bottom: an ancestor before
     * what lies in it, siblings by row and then by column.
     */
    [[nodiscard]] static bool lessThanIndex(const QModelIndex &a, const QModelIndex &b);
};
