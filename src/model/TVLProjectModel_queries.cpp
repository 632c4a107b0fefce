#include "TVLProjectModel_p.h"

#include "TVLBasicNodeInfo.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextRange.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The extension of a text's main file, and of a web page that was stored as one.
const QString RtfExtension = u"rtf"_s;
const QString HtmlExtension = u"html"_s;

/** Whether the predicate is true of a node below @p top; looks no further than the first. */
template <typename Predicate>
bool hasNodeBelow(const TVLProjectNode *top, Predicate predicate)
{
    const TVLProjectNode *node = top->nextInPreOrder(top);
    while (node && !predicate(node))
        node = node->nextInPreOrder(top);
    return node != nullptr;
}

} // namespace

// --- Where an item is and what it is shown from

QString TVLProjectModel::rootPathTitle(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || node == d->mRootNode.get())
        return {};
    QList<TVLProjectNode *> ancestors = TVLProjectNode::ancestors(node);
    ancestors.removeLast();
    std::reverse(ancestors.begin(), ancestors.end());
    QString path;
    for (const TVLProjectNode *ancestor : std::as_const(ancestors))
        path = path.isEmpty() ? ancestor->mTitle : path + u'/' + ancestor->mTitle;
    return path.isEmpty() ? node->mTitle : path + u'/' + node->mTitle;
}

bool TVLProjectModel::isLocalNode(const TVLProjectNode *node) const
{
    while (node && node->mParent)
        node = node->mParent;
    return node == d->mRootNode.get();
}

QUrl TVLProjectModel::url(const TVLProjectNode *node) const
{
    if (node && node->mNodeType == TVL::WebArchive && !node->mOriginalUrl.isEmpty())
        return QUrl(node->mOriginalUrl);
    if (node && !node->mFileExtension.isEmpty())
        return TVLProjectFolderFormat::url(d->mPath, node->mId, node->mFileExtension);
    return {};
}

QUrl TVLProjectModel::nodeUrl(const QModelIndex &index, bool search)
{
    TVLProjectNode *node = projectNode(index);
    if (node && search && node->mFileExtension.isEmpty()
        && TVLProjectFolderFormat::findExtension(d->mPath, node->mId) == RtfExtension)
        node->mFileExtension = RtfExtension;
    return url(node);
}

bool TVLProjectModel::isDynamicWebNode(const TVLProjectNode *node)
{
    return node && !node->mOriginalUrl.isEmpty() && node->mFileExtension.isEmpty();
}

bool TVLProjectModel::isHtmlWebNode(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && !node->mOriginalUrl.isEmpty() && node->mFileExtension == HtmlExtension;
}

// --- What is below an index

template <typename Predicate>
bool TVLProjectModelPrivate::hasBelow(const QModelIndex &index, Predicate predicate) const
{
    const TVLProjectNode *top = q->projectNode(index);
    return top && hasNodeBelow(top, predicate);
}

template <typename Predicate>
QModelIndexList TVLProjectModelPrivate::indexesBelow(const QModelIndex &index,
                                                     Predicate predicate) const
{
    QModelIndexList indexes;
    if (const TVLProjectNode *top = q->projectNode(index)) {
        tvlForEachNode(top, [&](const TVLProjectNode *node) {
            if (predicate(node))
                indexes.append(q->createIndex(node));
        });
    }
    return indexes;
}

bool TVLProjectModelPrivate::containsNonTextChildren(const TVLProjectNode *node)
{
    return hasNodeBelow(node, [](const TVLProjectNode *below) { return !below->canHaveText(); });
}

bool TVLProjectModel::containsNonTextChildren(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && TVLProjectModelPrivate::containsNonTextChildren(node);
}

bool TVLProjectModel::containsFoldersAndTextOnly(const QModelIndex &index) const
{
    return !d->hasBelow(index,
                        [](const TVLProjectNode *node) { return node->mNodeType > TVL::Text; });
}

bool TVLProjectModel::containsDynamicWebNode(const QModelIndex &index) const
{
    return d->hasBelow(index, isDynamicWebNode);
}

QModelIndexList TVLProjectModel::imageIndexes(const QModelIndex &index) const
{
    return d->indexesBelow(index, [this](const TVLProjectNode *node) { return isImage(node); });
}

QModelIndexList TVLProjectModel::scriptIndexes(const QModelIndex &index) const
{
    return d->indexesBelow(
        index, [](const TVLProjectNode *node) { return node->mTextMode == ScriptFormatMode; });
}

QModelIndexList TVLProjectModel::indexesViaType(TVL::NodeType type, const QModelIndex &index) const
{
    return d->indexesBelow(index,
                           [type](const TVLProjectNode *node) { return node->mNodeType == type; });
}

QModelIndexList TVLProjectModel::textIndexes() const
{
    return d->indexesBelow(rootIndex(),
                           [](const TVLProjectNode *node) { return node->canHaveText(); });
}

/** Visits all nodes but the top-level ones of a type and what is below them. */
template <typename Visit>
void TVLProjectModelPrivate::forEachNodeOutside(TVL::NodeType topLevelType, Visit visit) const
{
    for (const TVLProjectNode *top : std::as_const(mRootNode->mChildren)) {
        if (top->mNodeType == topLevelType)
            continue;
        visit(top);
        tvlForEachNode(top, visit);
    }
}

QModelIndexList TVLProjectModel::nonDraftTextChildrenAndSubChildren() const
{
    QModelIndexList indexes;
    d->forEachNodeOutside(TVL::DraftFolder, [&](const TVLProjectNode *node) {
        if (node->canHaveText())
            indexes.append(createIndex(node));
    });
    return indexes;
}

QModelIndexList TVLProjectModel::nonDraftChildrenAndSubChildren() const
{
    QModelIndexList indexes;
    d->forEachNodeOutside(TVL::DraftFolder,
                          [&](const TVLProjectNode *node) { indexes.append(createIndex(node)); });
    return indexes;
}

QList<TVLBasicNodeInfo> TVLProjectModel::findBasicNodeInfo(bool foldersAndGroupsOnly,
                                                           bool includeTrash, bool indent,
                                                           const QString &indentText) const
{
    QList<TVLBasicNodeInfo> infos;
    const auto visit = [&](const TVLProjectNode *node) {
        if (foldersAndGroupsOnly && node->mNodeType >= TVL::Text && node->mChildren.isEmpty())
            return;
        const QString indentation =
            indent ? indentText.repeated(TVLProjectNode::childLevel(node) - 1) : QString();
        infos.append({node->mUuid, indentation + node->mTitle, icon(createIndex(node))});
    };
    if (includeTrash)
        tvlForEachNode(d->mRootNode.get(), visit);
    else
        d->forEachNodeOutside(TVL::TrashFolder, visit);
    return infos;
}

QModelIndexList TVLProjectModel::indexesByUuid(const QList<QUuid> &uuids) const
{
    QModelIndexList indexes;
    indexes.reserve(uuids.size());
    for (const QUuid &uuid : uuids) {
        if (hasNodeUuid(uuid))
            indexes.append(indexByUuid(uuid));
    }
    return indexes;
}

bool TVLProjectModel::hasChildWithUuid(const QModelIndex &parent, const QUuid &uuid) const
{
    const TVLProjectNode *child = d->mUuidMap.value(uuid);
    return child && child->mParent && child->mParent == projectNode(parent);
}

QList<TVLProjectNode *> TVLProjectModel::allNodesWithReferences() const
{
    QList<TVLProjectNode *> nodes;
    tvlForEachNode(d->mRootNode.get(), [&nodes](TVLProjectNode *node) {
        if (!node->mReferences.isEmpty())
            nodes.append(node);
    });
    return nodes;
}

QMap<TVLTextRange, QString> TVLProjectModel::toTavelinorLinkMap(const TVLTextInternalLinkMap &links,
                                                                const QMap<int, QUuid> &idToUuid)
{
    return TVLProjectFolderFormat::toTavelinorLinkMap(links, idToUuid);
}
