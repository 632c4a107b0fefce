#include "TVLProjectModel.h"

#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"

namespace {

/** A property of a node, or @p fallback without one. */
template <typename Value>
Value propertyOf(const TVLProjectNode *node, Value TVLProjectNodeProperties::*member,
                 Value fallback)
{
    return node ? node->*member : fallback;
}

} // namespace

void TVLProjectModel::announceChange(const QModelIndex &index)
{
    if (index.isValid())
        Q_EMIT dataChanged(index, index);
}

template <typename Value>
bool TVLProjectModel::setNodeValue(const QModelIndex &index,
                                   Value TVLProjectNodeProperties::*member, const Value &value,
                                   bool equalCounts, Touch touch)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (equalCounts && node->*member == value)
        return true;
    node->*member = value;
    markProjectAsModified(true);
    if (touch == Touch::Yes)
        node->updateModified();
    announceChange(index);
    return true;
}

TVL::NodeType TVLProjectModel::type(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mNodeType, TVL::Other);
}

QString TVLProjectModel::title(const QModelIndex &index, bool substituteUntitled) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node)
        return {};
    return substituteUntitled && node->mTitle.isEmpty() ? trUntitledTitle() : node->mTitle;
}

QString TVLProjectModel::trUntitledTitle()
{
    return tr("Untitled");
}

int TVLProjectModel::nodeIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mId, -1);
}

QUuid TVLProjectModel::nodeUuid(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mUuid, QUuid());
}

int TVLProjectModel::labelIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mLabelId, -1);
}

int TVLProjectModel::statusIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mStatusId, -1);
}

bool TVLProjectModel::isFavorite(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mIsFavorite, false);
}

QList<int> TVLProjectModel::keywordIds(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mKeywords, QList<int>());
}

QIcon TVLProjectModel::icon(const QModelIndex &index) const
{
    Q_UNUSED(index)
    return {};
}

bool TVLProjectModel::setTitle(const QModelIndex &index, const QString &title)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mTitle, title);
}

bool TVLProjectModel::setType(const QModelIndex &index, TVL::NodeType type)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mNodeType, type);
}

bool TVLProjectModel::setCustomIcon(const QModelIndex &index, const QString &name)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mIconFileName, name);
}

bool TVLProjectModel::setLabelIdentity(const QModelIndex &index, int id)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mLabelId, id, mSearchIndex->hasLabel(id));
}

bool TVLProjectModel::setStatusIdentity(const QModelIndex &index, int id)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mStatusId, id,
                        mSearchIndex->hasStatusItem(id));
}

bool TVLProjectModel::setKeywordIds(const QModelIndex &index, const QList<int> &ids)
{
    return setNodeValue(index, &TVLProjectNodeProperties::mKeywords, ids);
}
