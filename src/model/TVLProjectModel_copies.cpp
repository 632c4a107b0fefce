/*
 * New items that are copies of others. Whoever hears of one finds all of it: what it takes from
 * another project is there before it comes, and what lies below it follows with signals of its own.
 */
#include "TVLProjectModel_p.h"

#include "TVLCloning_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSiblingTitles_p.h"

#include <algorithm>
#include <utility>

namespace {

bool isOfAProject(const QModelIndex &index)
{
    return index.isValid() && qobject_cast<const TVLProjectModel *>(index.model());
}

} // namespace

/**
 * Inserts copies of an item without what lies below it. What they refer to by ids is taken over
 * before; each copy is whole when it is announced.
 */
TVLProjectModelPrivate::Copies TVLProjectModelPrivate::insertCopies(const CloneSource &from,
                                                                    const TVLHeldItem &source,
                                                                    const TVLHeldPlace &place,
                                                                    const CloneOptions &options,
                                                                    const NewCopies &copies)
{
    const TVLProjectNode *original = source.node();
    if (!original || !place.parent())
        return {};
    const bool isAllowed = canCloneBelow(source.index(), q->createIndex(place.parent()));
    const bool isRefused = options.checkRules && !isAllowed;
    const bool isCopied = options.files && !isRefused;
    const AdoptedIds ids = adoptIds(*from.model, *original, isCopied && isAllowed);
    TVLProjectNode *sourceNode = source.node();
    TVLProjectNode *parent = place.parent();
    if (!sourceNode || !parent)
        return {};
    if (!isRefused)
        (void)from.model->saveDocuments(sourceNode, false, nullptr);

    Copies made;
    made.areComplete = !isRefused;
    const int row = place.row();
    const auto make = [&](int) {
        TVLProjectNode *node = createDefaultNode(parent, row, copies.uuid);
        if (copies.begin)
            copies.begin(node);
        if (isCopied && !copyItem(from, sourceNode, node, options, isAllowed ? &ids : nullptr))
            made.areComplete = false;
        if (copies.finish)
            copies.finish(node);
        mSearchFeed->add(node);
        return node;
    };
    made.items = insertItems({parent, row}, copies.count, make);
    return made;
}

/** All below an item but a node and what lies in that; none for null. */
QList<TVLProjectModelPrivate::Descendant>
TVLProjectModelPrivate::descendantsOf(const CloneSource &from, const TVLProjectNode *top,
                                      const TVLProjectNode *excluded)
{
    QList<Descendant> descendants;
    if (!top)
        return descendants;
    QHash<const TVLProjectNode *, qsizetype> positions = {{top, -1}};
    tvlForEachNode(top, [&](const TVLProjectNode *node) {
        const auto parent = positions.constFind(node->mParent);
        if (node == excluded || parent == positions.cend())
            return;
        const qsizetype parentPosition = *parent;
        positions.insert(node, descendants.size());
        descendants.append({TVLHeldItem(from.model, node), parentPosition});
    });
    return descendants;
}

/** Inserts copies of what lies below an item in front of what lies below its copy. Whose original
 * or copied parent has gone meanwhile is passed over. */
bool TVLProjectModelPrivate::cloneDescendants(const CloneSource &from,
                                              const QList<Descendant> &descendants,
                                              const TVLHeldItem &copy, const CloneOptions &options)
{
    if (!copy.node())
        return false;
    const CloneOptions childOptions = {false, options.checkRules, true, true};
    // Where the next copy comes in the copy of each; that of the top comes first.
    QList<TVLHeldPlace> places = {TVLHeldPlace(q, copy.node(), 0)};
    places.reserve(descendants.size() + 1);
    for (const Descendant &descendant : descendants) {
        const Copies made =
            insertCopies(from, descendant.item, places.at(descendant.parent + 1), childOptions, {});
        const TVLProjectNode *node = made.items.value(0).node();
        places.append(TVLHeldPlace(q, node, 0));
        places[descendant.parent + 1].moveBehind(node);
        if (!made.items.isEmpty() && !made.areComplete)
            return false;
    }
    return true;
}

QList<TVLHeldItem> TVLProjectModelPrivate::insertClones(const InsertPlace &place, int count,
                                                        const QModelIndex &source,
                                                        TVLProjectModel::CloneFlags flags,
                                                        const QUuid &uuid)
{
    if (!isOfAProject(source))
        return insertBlankItems(place, count, uuid);
    const CloneSource from = cloneSource(source);
    const TVLProjectNode *node = from.model->projectNode(source);
    const bool isRecursive = flags.testFlag(TVLProjectModel::CloneChildren);
    const CloneOptions options = {isRecursive, !flags.testFlag(TVLProjectModel::SkipCloneRules),
                                  flags.testFlag(TVLProjectModel::CloneSnapshots),
                                  !flags.testFlag(TVLProjectModel::CloneWithoutFiles)};
    const QList<Descendant> descendants =
        descendantsOf(from, isRecursive ? node : nullptr, nullptr);
    NewCopies copies;
    copies.count = count;
    copies.uuid = uuid;
    const Copies made = insertCopies(from, TVLHeldItem(from.model, node),
                                     TVLHeldPlace(q, place.parent, place.row), options, copies);
    for (const TVLHeldItem &item : made.items) {
        if (made.areComplete)
            (void)cloneDescendants(from, descendants, item, options);
    }
    q->markProjectAsModified(!made.items.isEmpty());
    return made.items;
}

QModelIndex TVLProjectModel::createNewProjectIndex(int row, const QModelIndex &parent,
                                                   const QString &title, const QUuid *uuid,
                                                   const QModelIndex *source)
{
    const TVLProjectModelPrivate::InsertPlace place = d->insertPlace(parent, row);
    TVLProjectModelPrivate::NewCopies copies;
    copies.uuid = uuid ? *uuid : QUuid();
    copies.begin = [&title](TVLProjectNode *node) {
        node->mLabelId = -1;
        node->mStatusId = -1;
        node->mTitle = title;
    };
    if (source && isOfAProject(*source)) {
        const TVLProjectModelPrivate::CloneSource from =
            TVLProjectModelPrivate::cloneSource(*source);
        const TVLProjectModelPrivate::Copies made = d->insertCopies(
            from, TVLHeldItem(from.model, from.model->projectNode(*source)),
            TVLHeldPlace(this, place.parent, place.row), {false, false, true, true}, copies);
        return made.items.value(0).index();
    }
    const auto make = [&](int) {
        TVLProjectNode *node = d->createDefaultNode(place.parent, place.row, copies.uuid);
        copies.begin(node);
        d->mSearchFeed->add(node);
        return node;
    };
    return d->insertItems(place, 1, make).constFirst().index();
}

QModelIndex TVLProjectModel::createNewItemInConflictsFolder(const QUuid *uuid, const QString &title,
                                                            const QString &subfolder,
                                                            const QModelIndex *source)
{
    const QPersistentModelIndex heldSource = source ? *source : QModelIndex();
    const QModelIndex folder = syncConflictsSubFolder(subfolder);
    if (!folder.isValid())
        return {};
    const QModelIndex present = heldSource;
    return createNewProjectIndex(-1, folder, title, uuid, source ? &present : nullptr);
}

// --- Duplicates

QModelIndexList TVLProjectModel::duplicate(const QModelIndexList &indexes, bool withChildren)
{
    QList<TVLProjectNode *> sources = d->itemNodes(sortIndexes(indexes));
    const auto isSystem = [](const TVLProjectNode *node) { return node->mNodeType < TVL::Folder; };
    if (sources.isEmpty() || std::any_of(sources.begin(), sources.end(), isSystem))
        return {};
    if (withChildren)
        sources = TVLProjectModelPrivate::withoutDescendants(sources);
    // Of the topmost ones that with the largest row.
    const auto comesFirst = [](const TVLProjectNode *a, const TVLProjectNode *b) {
        const int depthOfA = TVLProjectNode::childLevel(a);
        const int depthOfB = TVLProjectNode::childLevel(b);
        return depthOfA != depthOfB ? depthOfA < depthOfB : a->row() > b->row();
    };
    const TVLProjectNode *anchor = *std::min_element(sources.begin(), sources.end(), comesFirst);
    QModelIndexList sourceIndexes;
    for (const TVLProjectNode *source : std::as_const(sources))
        sourceIndexes.append(createIndex(source));
    return duplicate(sourceIndexes, anchor->row() + 1, createIndex(anchor->mParent), withChildren,
                     true);
}

QModelIndexList TVLProjectModel::duplicate(const QModelIndexList &indexes, int row,
                                           const QModelIndex &parent, bool withChildren,
                                           bool checkRules)
{
    if (indexes.isEmpty() || !d->canInsertRows(row, 1, parent))
        return {};
    const QList<TVLHeldItem> sources = TVLHeldItem::listOf(this, d->itemNodes(indexes));
    if (sources.isEmpty())
        return {};
    const TVLProjectModelPrivate::CloneSource from =
        TVLProjectModelPrivate::cloneSource(indexes.constFirst());
    const TVLProjectModelPrivate::CloneOptions options = {withChildren, checkRules, true, true};
    const TVLProjectModelPrivate::InsertPlace begin = d->insertPlace(parent, row);
    TVLHeldPlace place(this, begin.parent, begin.row);
    TVLSiblingTitles titles(begin.parent, nullptr);
    QList<TVLHeldItem> duplicates;
    for (const TVLHeldItem &source : sources)
        duplicates.append(d->duplicateOne(from, source, options, &titles, &place));
    markProjectAsModified(true);
    return TVLHeldItem::indexesOf(duplicates);
}

TVLHeldItem TVLProjectModelPrivate::duplicateOne(const CloneSource &from, const TVLHeldItem &source,
                                                 const CloneOptions &options,
                                                 TVLSiblingTitles *titles, TVLHeldPlace *place)
{
    const TVLProjectNode *original = source.node();
    if (!original)
        return {};
    const QString title = titles->findUnique(original->mTitle);
    const QList<Descendant> descendants =
        descendantsOf(from, options.recursive ? original : nullptr, nullptr);
    NewCopies copies;
    copies.finish = [&title](TVLProjectNode *node) { node->mTitle = title; };
    const Copies made = insertCopies(from, source, *place, options, copies);
    const TVLHeldItem copy = made.items.value(0);
    titles->add(title);
    place->moveBehind(copy.node());
    if (made.areComplete)
        (void)cloneDescendants(from, descendants, copy, options);
    return copy;
}

QModelIndex TVLProjectModel::duplicate(const QModelIndex &index, int row, const QModelIndex &parent,
                                       bool withChildren, bool checkRules)
{
    const QModelIndexList copies =
        duplicate(QModelIndexList{index}, row, parent, withChildren, checkRules);
    return copies.isEmpty() ? QModelIndex() : copies.constFirst();
}
