#include "TVLModel.h"

#include <QAbstractItemModel>

#include <algorithm>

namespace {

void appendChildren(const QModelIndex &parent, QModelIndexList *indexes)
{
    const QAbstractItemModel *model = parent.model();
    const int rows = model ? model->rowCount(parent) : 0;
    indexes->reserve(indexes->size() + rows);
    for (int row = 0; row < rows; ++row)
        indexes->append(model->index(row, 0, parent));
}

/** The index's ancestors from the top down, and the index itself. */
QModelIndexList pathTo(const QModelIndex &index)
{
    QModelIndexList path = TVLModel::parents(index);
    std::reverse(path.begin(), path.end());
    path.append(index);
    return path;
}

} // namespace

QModelIndexList TVLModel::directChildren(const QModelIndex &parent)
{
    QModelIndexList children;
    appendChildren(parent, &children);
    return children;
}

QModelIndexList TVLModel::childrenAndSubChildren(const QModelIndex &parent)
{
    QModelIndexList found;
    QModelIndexList pending = directChildren(parent);
    std::reverse(pending.begin(), pending.end());
    while (!pending.isEmpty()) {
        const QModelIndex index = pending.takeLast();
        found.append(index);
        const qsizetype first = pending.size();
        appendChildren(index, &pending);
        std::reverse(pending.begin() + first, pending.end());
    }
    return found;
}

QModelIndexList TVLModel::parents(const QModelIndex &index)
{
    QModelIndexList found;
    for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
        found.append(parent);
    return found;
}

bool TVLModel::parentsContain(const QModelIndex &index, const QModelIndex &parent)
{
    for (QModelIndex ancestor = index.parent(); ancestor.isValid(); ancestor = ancestor.parent()) {
        if (ancestor == parent)
            return true;
    }
    return false;
}

bool TVLModel::lessThanIndex(const QModelIndex &a, const QModelIndex &b)
{
    if (a.parent() == b.parent())
        return a.row() != b.row() ? a.row() < b.row() : a.column() < b.column();
    const QModelIndexList pathToA = pathTo(a);
    const QModelIndexList pathToB = pathTo(b);
    const auto [linkOfA, linkOfB] =
        std::mismatch(pathToA.begin(), pathToA.end(), pathToB.begin(), pathToB.end());
    if (linkOfA == pathToA.end() || linkOfB == pathToB.end())
        return pathToA.size() < pathToB.size();
    return linkOfA->row() < linkOfB->row();
}
