#include "TVLBinderProject.h"

#include "TVLProjectNode.h"

#include <algorithm>
#include <utility>
#include <vector>

TVLBinderProject::TVLBinderProject() = default;
TVLBinderProject::~TVLBinderProject() = default;

void tvlEnterNodes(const QList<TVLProjectNode *> &nodes, QMap<int, QUuid> *idMap,
                   QMap<QUuid, TVLProjectNode *> *uuidMap)
{
    using Entry = std::pair<QUuid, TVLProjectNode *>;
    std::vector<Entry> entries;
    entries.reserve(std::size_t(nodes.size()));
    for (TVLProjectNode *node : nodes) {
        if (node->mId >= 0)
            idMap->insert(idMap->cend(), node->mId, node->mUuid); // Ids mostly ascend.
        entries.emplace_back(node->mUuid, node);
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &left, const Entry &right) {
        return left.first < right.first;
    });
    for (const auto &[uuid, node] : entries)
        uuidMap->insert(uuidMap->cend(), uuid, node);
}
