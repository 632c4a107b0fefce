#pragma once

#include "TVLHeldItem_p.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectModel_p.h"

#include <functional>

/** The project that is copied from, and what lies in its folder of numbered files. */
struct TVLProjectModelPrivate::CloneSource
{
    const TVLProjectModel *model;
    TVLNumberedFiles files;
};

struct TVLProjectModelPrivate::CloneOptions
{
    bool recursive;
    bool checkRules;
    bool snapshots;
    bool files;
};

/** What an item has by ids of its project, by those that another project knows the same by. */
struct TVLProjectModelPrivate::AdoptedIds
{
    QList<int> keywords;
    int labelId;
    int statusId;
};

/** How a new item differs from what it is a copy of. */
struct TVLProjectModelPrivate::NewCopies
{
    int count = 1;
    QUuid uuid;
    std::function<void(TVLProjectNode *)> begin; ///< What the item is without a copy; or none.
    std::function<void(TVLProjectNode *)> finish; ///< Comes behind the copy; or none.
};

struct TVLProjectModelPrivate::Copies
{
    QList<TVLHeldItem> items; ///< None when the source or its place has gone.
    bool areComplete = false;
};

/** An item below one that is copied. */
struct TVLProjectModelPrivate::Descendant
{
    TVLHeldItem item;
    qsizetype parent; ///< The position of its parent in the list; -1 for that which is copied.
};
