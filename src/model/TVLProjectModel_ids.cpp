/*
 * Ids and uuids: how items come to them, get others and lose them, and what a binder says of them.
 */
#include "TVLProjectModel_p.h"

#include "TVLFilesLeft_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLTextDocument.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <limits>

namespace {

constexpr int LargestId = std::numeric_limits<int>::max();

/** The smallest id of 0 or more that isn't used. Needed only where a damaged binder used up the
 * top. */
int firstGap(const QSet<int> &used)
{
    int id = 0;
    while (used.contains(id))
        ++id;
    return id;
}

/** Hands out ids that aren't among those in use: upwards from the largest, then from the gaps. */
class FreeIds
{
public:
    /** @p isTaken may be true of more ids than those. */
    FreeIds(const QList<int> &used, const std::function<bool(int)> &isTaken)
        : mUsed(used.begin(), used.end())
        , mIsTaken(isTaken)
        , mNext(TVLProjectModel::findNextFreeId(used))
    {
    }

    int take()
    {
        while (mUsed.contains(mNext) || mIsTaken(mNext))
            mNext = mNext < LargestId ? mNext + 1 : 0;
        mUsed.insert(mNext);
        return mNext;
    }

private:
    QSet<int> mUsed;
    std::function<bool(int)> mIsTaken;
    int mNext;
};

} // namespace

// --- Ids

int TVLProjectModel::findBiggestNodeId() const
{
    return d->mIdMap.isEmpty() ? -1 : d->mIdMap.lastKey();
}

int TVLProjectModel::findNextNodeId() const
{
    int id = findBiggestNodeId();
    while (id < LargestId) {
        if (!d->isLeftBehind(++id))
            return id;
    }
    id = 0;
    while (d->mIdMap.contains(id) || d->isLeftBehind(id))
        ++id;
    return id;
}

bool TVLProjectModelPrivate::isLeftBehind(int id) const
{
    return mFilesLeft->has(mPath, id);
}

int TVLProjectModel::findNextFreeId(const QList<int> &ids)
{
    if (ids.isEmpty())
        return 0;
    const int biggest = *std::max_element(ids.begin(), ids.end());
    return biggest < LargestId ? biggest + 1 : firstGap(QSet<int>(ids.begin(), ids.end()));
}

void TVLProjectModel::changeIndexUuid(const QModelIndex &index, const QUuid &uuid)
{
    TVLProjectNode *node = projectNode(index);
    if (!node || node == d->mRootNode.get())
        return;
    d->mUuidMap.remove(node->mUuid);
    if (d->mTemplateFolderUuid == node->mUuid)
        d->mTemplateFolderUuid = uuid;
    node->mUuid = uuid;
    d->mUuidMap.insert(uuid, node);
    if (node->mId >= 0)
        d->mIdMap.insert(node->mId, uuid);
}

void TVLProjectModel::clearIndexId(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return;
    // Without its id the item has no files that its words could still go to.
    if (!d->mDocuments->write(node, nullptr)) {
        qWarning("An item keeps its id %d, because its texts can't be written", node->mId);
        return;
    }
    d->mIdMap.remove(node->mId);
    d->mSearchFeed->forget(node);
    d->mFilesLeft->add(d->mPath, *node);
    node->mId = -1;
}

void TVLProjectModel::populateMissingIDs()
{
    tvlForEachNode(d->mRootNode.get(), [this](TVLProjectNode *node) {
        if (node->mId >= 0)
            return;
        d->takeId(node, findNextNodeId());
    });
}

/** Gives an item without id one, and with it files that what is in memory of its texts goes to. */
void TVLProjectModelPrivate::takeId(TVLProjectNode *node, int id)
{
    node->mId = id;
    mIdMap.insert(id, node->mUuid);
    mSearchFeed->add(node);
    if (!node->mSynopsisDocument)
        return;
    mDocuments->enter(node);
    for (TVLTextDocument *document :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument}) {
        if (document && !document->isEmpty())
            document->setSaved(false);
    }
}

void TVLProjectModel::populateMobileProjectMissingIDs(const TVLProjectModel *other)
{
    FreeIds freeIds(orderedChildIDs(nullptr) + other->orderedChildIDs(nullptr),
                    [this](int id) { return d->isLeftBehind(id); });
    tvlForEachNode(d->mRootNode.get(), [&](TVLProjectNode *node) {
        if (node->mId >= 0)
            return;
        d->takeId(node, freeIds.take());
    });
}

void TVLProjectModel::reloadCachedUuids(const QSet<QUuid> &uuids)
{
    const QList<TVLProjectNode *> nodes = loadedNodes();
    for (const TVLProjectNode *node : nodes) {
        if (uuids.contains(node->mUuid))
            d->mDocuments->leave(node);
    }
}
