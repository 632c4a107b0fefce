/*
 * New items that are copies of others. Whoever hears of one finds all of it: what it takes from
 * another project is there before it comes, and what lies below it follows with signals of its own.
 */
#include "TVLItemCloner_p.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSiblingTitles_p.h"

#include <QHash>

#include <algorithm>
#include <utility>

bool TVLItemCloner::isOfAProject(const QModelIndex &index)
{
    return index.isValid() && qobject_cast<const TVLProjectModel *>(index.model());
}

/**
 * Inserts copies of an item without what lies below it. What they refer to by ids is taken over
 * before; each copy is whole when it is announced.
 */
TVLItemCloner::Copies TVLItemCloner::insertCopies(const Source &from, const TVLHeldItem &source,
                                                  const TVLHeldPlace &place,
                                                  const TVLCloneOptions &options,
                                                  const NewCopies &copies)
{
    const TVLProjectNode *original = source.node();
    if (!original || !place.parent())
        return {};
    const bool isAllowed = canCloneBelow(source.index(), mModel->createIndex(place.parent()));
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
        TVLProjectNode *node = mRows->createDefaultNode(parent, row, copies.uuid);
        if (copies.begin)
            copies.begin(node);
        if (isCopied && !copyItem(from, sourceNode, node, options, isAllowed ? &ids : nullptr))
            made.areComplete = false;
        if (copies.finish)
            copies.finish(node);
        mFeed->add(node);
        return node;
    };
    made.items = mRows->insert({parent, row}, copies.count, make);
    return made;
}

/** All below an item but a node and what lies in that; none for null. */
QList<TVLItemCloner::Descendant> TVLItemCloner::descendantsOf(const Source &from,
                                                              const TVLProjectNode *top,
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
bool TVLItemCloner::cloneDescendants(const Source &from, const QList<Descendant> &descendants,
                                     const TVLHeldItem &copy, const TVLCloneOptions &options)
{
    if (!copy.node())
        return false;
    const TVLCloneOptions childOptions = {false, options.checkRules, true, true};
    // Where the next copy comes in the copy of each; that of the top comes first.
    QList<TVLHeldPlace> places = {TVLHeldPlace(mModel, copy.node(), 0)};
    places.reserve(descendants.size() + 1);
    for (const Descendant &descendant : descendants) {
        const Copies made =
            insertCopies(from, descendant.item, places.at(descendant.parent + 1), childOptions, {});
        const TVLProjectNode *node = made.items.value(0).node();
        places.append(TVLHeldPlace(mModel, node, 0));
        places[descendant.parent + 1].moveBehind(node);
        if (!made.items.isEmpty() && !made.areComplete)
            return false;
    }
    return true;
}

QList<TVLHeldItem> TVLItemCloner::insertClones(const TVLInsertPlace &place, int count,
                                               const QModelIndex &source,
                                               const TVLCloneOptions &options, const QUuid &uuid)
{
    const Source from = sourceOf(source);
    const TVLProjectNode *node = from.model->projectNode(source);
    const QList<Descendant> descendants =
        descendantsOf(from, options.recursive ? node : nullptr, nullptr);
    NewCopies copies;
    copies.count = count;
    copies.uuid = uuid;
    const Copies made =
        insertCopies(from, TVLHeldItem(from.model, node),
                     TVLHeldPlace(mModel, place.parent, place.row), options, copies);
    for (const TVLHeldItem &item : made.items) {
        if (made.areComplete)
            (void)cloneDescendants(from, descendants, item, options);
    }
    mModel->markProjectAsModified(!made.items.isEmpty());
    return made.items;
}

TVLHeldItem TVLItemCloner::insertCopy(const TVLInsertPlace &place, const QModelIndex &source,
                                      const QUuid &uuid,
                                      const std::function<void(TVLProjectNode *)> &begin)
{
    const Source from = sourceOf(source);
    NewCopies copies;
    copies.uuid = uuid;
    copies.begin = begin;
    const Copies made = insertCopies(from, TVLHeldItem(from.model, from.model->projectNode(source)),
                                     TVLHeldPlace(mModel, place.parent, place.row),
                                     {false, false, true, true}, copies);
    return made.items.value(0);
}

// --- Duplicates

QModelIndexList TVLItemCloner::duplicate(const QModelIndexList &indexes, bool withChildren)
{
    QList<TVLProjectNode *> sources = mRows->itemNodes(TVLProjectModel::sortIndexes(indexes));
    const auto isSystem = [](const TVLProjectNode *node) { return node->mNodeType < TVL::Folder; };
    if (sources.isEmpty() || std::any_of(sources.begin(), sources.end(), isSystem))
        return {};
    if (withChildren)
        sources = TVLItemRows::withoutDescendants(sources);
    // Of the topmost ones that with the largest row.
    const auto comesFirst = [](const TVLProjectNode *a, const TVLProjectNode *b) {
        const int depthOfA = TVLProjectNode::childLevel(a);
        const int depthOfB = TVLProjectNode::childLevel(b);
        return depthOfA != depthOfB ? depthOfA < depthOfB : a->row() > b->row();
    };
    const TVLProjectNode *anchor = *std::min_element(sources.begin(), sources.end(), comesFirst);
    QModelIndexList sourceIndexes;
    for (const TVLProjectNode *source : std::as_const(sources))
        sourceIndexes.append(mModel->createIndex(source));
    return duplicate(sourceIndexes, anchor->row() + 1, mModel->createIndex(anchor->mParent),
                     withChildren, true);
}

QModelIndexList TVLItemCloner::duplicate(const QModelIndexList &indexes, int row,
                                         const QModelIndex &parent, bool withChildren,
                                         bool checkRules)
{
    if (indexes.isEmpty() || !mRows->canInsert(row, 1, parent))
        return {};
    const QList<TVLHeldItem> sources = TVLHeldItem::listOf(mModel, mRows->itemNodes(indexes));
    if (sources.isEmpty())
        return {};
    const Source from = sourceOf(indexes.constFirst());
    const TVLCloneOptions options = {withChildren, checkRules, true, true};
    const TVLInsertPlace begin = mRows->insertPlace(parent, row);
    TVLHeldPlace place(mModel, begin.parent, begin.row);
    TVLSiblingTitles titles(begin.parent, nullptr);
    QList<TVLHeldItem> duplicates;
    for (const TVLHeldItem &source : sources)
        duplicates.append(duplicateOne(from, source, options, &titles, &place));
    mModel->markProjectAsModified(true);
    return TVLHeldItem::indexesOf(duplicates);
}

TVLHeldItem TVLItemCloner::duplicateOne(const Source &from, const TVLHeldItem &source,
                                        const TVLCloneOptions &options, TVLSiblingTitles *titles,
                                        TVLHeldPlace *place)
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
