#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLItemCloner_p.h"
#include "TVLItemMerger_p.h"
#include "TVLItemRows_p.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectNode.h"
#include "TVLSiblingTitles_p.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {

QList<TVLProjectNode *> withoutDoubles(const QList<TVLProjectNode *> &nodes)
{
    QList<TVLProjectNode *> single;
    QSet<const TVLProjectNode *> known;
    for (TVLProjectNode *node : nodes) {
        if (known.contains(node))
            continue;
        known.insert(node);
        single.append(node);
    }
    return single;
}

} // namespace

// --- Groups

QModelIndex TVLProjectModel::groupIndexes(const QModelIndexList &indexes)
{
    const QModelIndexList sorted = sortIndexesStable(indexes);
    const QList<TVLHeldItem> members = TVLHeldItem::listOf(this, d->mRows->itemNodes(sorted));
    if (members.isEmpty())
        return {};
    const QModelIndex first = sorted.constFirst();
    const TVLHeldItem group = d->insertBlankItem(first.row(), first.parent());
    const bool isMoved =
        group.node() && moveToFolder(group.index(), TVLHeldItem::indexesOf(members), -1);
    return isMoved ? group.index() : QModelIndex();
}

bool TVLProjectModel::ungroupIndexes(const QModelIndexList &indexes)
{
    QModelIndexList sorted = sortIndexesStable(indexes);
    sorted.removeIf(
        [this](const QModelIndex &index) { return !index.isValid() || !hasChildren(index); });
    const QList<TVLHeldItem> groups = TVLHeldItem::listOf(this, d->mRows->itemNodes(sorted));
    for (const TVLHeldItem &group : groups) {
        if (TVLProjectNode *node = group.node())
            (void)d->moveChildrenBehind(node);
    }
    return !groups.isEmpty();
}

bool TVLProjectModelPrivate::moveChildrenBehind(TVLProjectNode *node)
{
    const QList<TVLProjectNode *> children = node->mChildren;
    return q->moveToFolder(node->mParent, node->row() + 1, children);
}

// --- Merging

QModelIndex TVLProjectModel::mergeIndexes(const QModelIndexList &indexes)
{
    if (indexes.isEmpty())
        return {};
    if (indexes.size() == 1)
        return indexes.constFirst();
    const QList<TVLHeldItem> items =
        TVLHeldItem::listOf(this, withoutDoubles(d->mRows->itemNodes(indexes)));
    const TVLItemMerger::Result result = d->mMerger->join(items);
    if (result == TVLItemMerger::Result::Nothing)
        return {};
    const TVLHeldItem survivor = items.constFirst();
    if (result == TVLItemMerger::Result::SomeSnapshots) {
        d->announceSnapshots(survivor.index());
        return {};
    }
    // The others keep what there is nobody to take.
    if (!survivor.node())
        return {};
    const QModelIndexList others = sortIndexes(TVLHeldItem::indexesOf(items.sliced(1)));
    d->removeNodeIdsFromDependentStructures(nodeIdentityList(others));
    d->removeMerged(TVLHeldItem::listOf(this, d->mRows->itemNodes(others)),
                    result == TVLItemMerger::Result::OnDisk);

    scheduleDocTextChange(survivor.index());
    markProjectAsModified(true);
    if (survivor.node())
        Q_EMIT snapshotsChanged(survivor.index(), survivor.index());
    tvlAnnounceChange(this, survivor.index());
    return survivor.index();
}

void TVLProjectModelPrivate::removeMerged(const QList<TVLHeldItem> &items, bool withFiles)
{
    const TVLNumberedFiles files(mPath);
    for (const TVLHeldItem &item : items) {
        if (item.node())
            (void)moveChildrenBehind(item.node());
        TVLProjectNode *node = item.node();
        // An item whose children may not stand in its place stays with them.
        if (!node || !node->mChildren.isEmpty())
            continue;
        const int row = node->row();
        mRows->beginRemove(node->mParent, row, row);
        if (withFiles)
            (void)removeFilesForNode(node, files);
        else
            forgetNodeWithoutFiles(node);
        removeRow(node);
        mRows->endRemove();
    }
}

// --- Lists of items

void TVLProjectModel::flatten()
{
    // The list grows while it is walked, until no child of a child is left.
    QList<TVLProjectNode *> &nodes = d->mRootNode->mChildren;
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        const QList<TVLProjectNode *> children = std::exchange(nodes.at(i)->mChildren, {});
        for (TVLProjectNode *child : children)
            child->mParent = d->mRootNode.get();
        nodes.append(children);
    }
}

void TVLProjectModel::countFilesAndFolders(const QModelIndexList &indexes, int *groups,
                                           int *items) const
{
    *groups = 0;
    *items = 0;
    for (const QModelIndex &index : indexes) {
        if (!index.isValid() || !projectNode(index))
            continue;
        if (isFolder(index) || hasChildren(index))
            ++*groups;
        if (!isSystemFolder(index))
            ++*items;
    }
}

QList<int> TVLProjectModel::nodeIdentityList(const QModelIndexList &indexes) const
{
    QList<int> ids;
    ids.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        ids.append(nodeIdentity(index));
    return ids;
}

QList<QUuid> TVLProjectModel::nodeUuidList(const QModelIndexList &indexes) const
{
    QList<QUuid> uuids;
    uuids.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        uuids.append(nodeUuid(index));
    return uuids;
}

QStringList TVLProjectModel::titles(const QModelIndexList &indexes) const
{
    QStringList found;
    found.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        found.append(title(index));
    return found;
}

bool TVLProjectModel::hasSiblingWithTitle(const QModelIndex &index, const QString &title) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || !node->mParent)
        return false;
    const QList<TVLProjectNode *> &siblings = node->mParent->mChildren;
    return std::any_of(siblings.begin(), siblings.end(), [&](const TVLProjectNode *sibling) {
        return sibling != node && sibling->mTitle == title;
    });
}

QString TVLProjectModel::findUniqueTitle(const QString &title, const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || !node->mParent)
        return title;
    return TVLSiblingTitles(node->mParent, node).findUnique(title);
}

// --- Merges of projects

TVLProjectNodeProperties TVLProjectModel::nodeProperties(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node ? static_cast<const TVLProjectNodeProperties &>(*node) : TVLProjectNodeProperties();
}

bool TVLProjectModelPrivate::applyAttributes(
    const QModelIndex &index, const TVLProjectNodeProperties &properties,
    void (TVLProjectNodeProperties::*apply)(const TVLProjectNodeProperties &))
{
    TVLProjectNode *node = q->projectNode(index);
    const auto take = [&](TVLProjectNode *target) {
        (target->*apply)(properties);
        return true;
    };
    return node && mCloner->takeRecord(node, index, TVLItemCloner::Marks::Always, take);
}

bool TVLProjectModel::applyMobileAttributes(const QModelIndex &index,
                                            const TVLProjectNodeProperties &properties)
{
    return d->applyAttributes(index, properties, &TVLProjectNodeProperties::applyMobileProperties);
}

bool TVLProjectModel::applyDesktopAttributes(const QModelIndex &index,
                                             const TVLProjectNodeProperties &properties)
{
    return d->applyAttributes(index, properties, &TVLProjectNodeProperties::applyDesktopProperties);
}

bool TVLProjectModel::applyMobileAttributesFromIndex(const QModelIndex &source,
                                                     const QModelIndex &target)
{
    const auto *from = qobject_cast<const TVLProjectModel *>(source.model());
    return from && applyMobileAttributes(target, from->nodeProperties(source));
}

bool TVLProjectModel::applyDesktopAttributesFromIndex(const QModelIndex &source,
                                                      const QModelIndex &target)
{
    const auto *from = qobject_cast<const TVLProjectModel *>(source.model());
    return from && applyDesktopAttributes(target, from->nodeProperties(source));
}
