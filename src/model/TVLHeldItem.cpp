#include "TVLHeldItem_p.h"

#include "TVLProjectModel_p.h"
#include "TVLProjectNode.h"

#include <algorithm>

TVLHeldItem::TVLHeldItem(const TVLProjectModel *model, const TVLProjectNode *node)
{
    if (!node)
        return;
    mModel = model;
    mUuid = node->mUuid;
    if (node == model->binderRoot()) {
        mBy = By::BeingRoot;
    } else if (model->d->mUuidMap.value(mUuid) == node) {
        mBy = By::Uuid;
    } else {
        // A damaged binder may have a uuid twice.
        mBy = By::Index;
        mIndex = model->createIndex(node);
    }
}

QList<TVLHeldItem> TVLHeldItem::listOf(const TVLProjectModel *model,
                                       const QList<TVLProjectNode *> &nodes)
{
    QList<TVLHeldItem> items;
    items.reserve(nodes.size());
    for (const TVLProjectNode *node : nodes)
        items.append(TVLHeldItem(model, node));
    return items;
}

QModelIndexList TVLHeldItem::indexesOf(const QList<TVLHeldItem> &items)
{
    QModelIndexList indexes;
    indexes.reserve(items.size());
    for (const TVLHeldItem &item : items) {
        if (item.node())
            indexes.append(item.index());
    }
    return indexes;
}

TVLProjectNode *TVLHeldItem::node() const
{
    switch (mBy) {
    case By::Nothing:
        break;
    case By::BeingRoot:
        return mModel->binderRoot();
    case By::Uuid:
        return mModel->d->mUuidMap.value(mUuid);
    case By::Index:
        return mIndex.isValid() ? mModel->projectNode(mIndex) : nullptr;
    }
    return nullptr;
}

QModelIndex TVLHeldItem::index() const
{
    const TVLProjectNode *item = node();
    return item ? mModel->createIndex(item) : QModelIndex();
}

TVLHeldPlace::TVLHeldPlace(const TVLProjectModel *model, const TVLProjectNode *parent, int row)
    : mModel(model)
    , mParent(model, parent)
    , mBefore(model, parent ? parent->mChildren.value(row - 1) : nullptr)
    , mBehind(model, parent ? parent->mChildren.value(row) : nullptr)
    , mRow(row)
{
}

int TVLHeldPlace::row() const
{
    const TVLProjectNode *here = parent();
    if (const TVLProjectNode *before = mBefore.node(); before && before->mParent == here)
        return before->row() + 1;
    if (const TVLProjectNode *behind = mBehind.node(); behind && behind->mParent == here)
        return behind->row();
    return std::min(mRow, int(here->mChildren.size()));
}

void TVLHeldPlace::moveBehind(const TVLProjectNode *child)
{
    if (child && child->mParent == parent())
        *this = TVLHeldPlace(mModel, child->mParent, child->row() + 1);
}
