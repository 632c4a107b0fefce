#include "TVLProjectModel.h"

#include "TVLProjectNode.h"

TVLProjectNode *TVLProjectModel::createProjectNode(TVLProjectNode *parent, int row, QUuid uuid,
                                                   int id)
{
    if (uuid.isNull() || mUuidMap.contains(uuid))
        uuid = QUuid::createUuid();
    if (id == -1 || mIdMap.contains(id)) {
        // Items of newer formats have uuids alone.
        const bool hasIds = formatVersion() <= TVL::FormatVersion18 && !mMobileProject;
        id = hasIds ? findNextNodeId() : -1;
    }
    if (id != -1)
        mIdMap.insert(id, uuid);
    auto *node = row < 0 ? new TVLProjectNode({id, uuid}, parent)
                         : new TVLProjectNode({id, uuid}, parent, row);
    mUuidMap.insert(uuid, node);
    return node;
}

QModelIndex TVLProjectModel::beginInsertParent(const QModelIndex &parent) const
{
    // Qt wants a default index for the root in its row signals.
    return parent.isValid() ? parent : QModelIndex();
}

TVLProjectNode *TVLProjectModel::insertNode(int row, const QModelIndex &parent, TVL::NodeType type,
                                            const QString &extension, const QString &title)
{
    TVLProjectNode *parentNode = projectNode(parent);
    const QModelIndex parentIndex = parentNode ? parent : QModelIndex();
    if (!parentNode)
        parentNode = mRootNode.get();
    const int end = int(parentNode->mChildren.size());
    if (row < 0 || row > end)
        row = end;

    beginInsertRows(beginInsertParent(parentIndex), row, row);
    TVLProjectNode *node = createProjectNode(parentNode, row, QUuid(), -1);
    node->mLabelId = mDefaultLabelId;
    node->mStatusId = mDefaultStatusId;
    node->mFileExtension = extension;
    node->mNodeType = type;
    node->mTitle = title.isEmpty() ? trUntitledTitle() : title;
    endInsertRows();
    return node;
}

QModelIndex TVLProjectModel::insertUserFolder(int row, const QModelIndex &parent,
                                              const QString &title)
{
    return createIndex(insertNode(row, parent, TVL::Folder, QString(), title));
}

bool TVLProjectModel::insertRows(int row, int count, const QModelIndex &parent)
{
    TVLProjectNode *parentNode = projectNode(parent);
    if (!parentNode)
        return false;
    const int end = int(parentNode->mChildren.size());
    if (row == -1)
        row = end;
    if (row < 0 || row > end || count < 1 || isTrashChild(parent))
        return false;

    beginInsertRows(beginInsertParent(parent), row, row + count - 1);
    for (int i = 0; i < count; ++i) {
        TVLProjectNode *node = createProjectNode(parentNode, row, QUuid(), -1);
        node->mLabelId = mDefaultLabelId;
        node->mStatusId = mDefaultStatusId;
    }
    endInsertRows();
    markProjectAsModified(true);
    return true;
}
