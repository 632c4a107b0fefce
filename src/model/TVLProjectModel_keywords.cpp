#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLKeywordModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"

#include <algorithm>

namespace {

bool hasAnyKeyword(const TVLProjectNode *node, const QSet<int> &ids)
{
    return std::any_of(node->mKeywords.begin(), node->mKeywords.end(),
                       [&ids](int id) { return ids.contains(id); });
}

} // namespace

// --- Keywords of an item

QList<int> TVLProjectModel::keywordIds(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node ? node->mKeywords : QList<int>();
}

void TVLProjectModel::setKeywordIdsPrivate(TVLProjectNode *node, const QList<int> &ids)
{
    node->mKeywords = ids;
    d->mSearchFeed->updateKeywords(node);
    node->updateModified();
}

bool TVLProjectModel::setKeywordIds(const QModelIndex &index, const QList<int> &ids)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (node->mKeywords == ids)
        return true;
    setKeywordIdsPrivate(node, ids);
    tvlMarkAndAnnounce(this, index);
    return true;
}

QString TVLProjectModel::keywordTitle(int id) const
{
    return d->mKeywordModel->title(d->mKeywordModel->index(id));
}

QStringList TVLProjectModel::keywords(const QModelIndex &index) const
{
    QStringList titles;
    const QList<int> ids = keywordIds(index);
    for (const int id : ids)
        titles.append(keywordTitle(id));
    return titles;
}

QList<QColor> TVLProjectModel::keywordColors(const QModelIndex &index) const
{
    QList<QColor> colors;
    const QList<int> ids = keywordIds(index);
    for (const int id : ids)
        colors.append(d->mKeywordModel->color(d->mKeywordModel->index(id)));
    return colors;
}

QList<QPair<QString, QColor>> TVLProjectModel::keywordsWithColor(const QModelIndex &index) const
{
    QList<QPair<QString, QColor>> keywords;
    const QList<int> ids = keywordIds(index);
    for (const int id : ids) {
        const QModelIndex keyword = d->mKeywordModel->index(id);
        keywords.append({d->mKeywordModel->title(keyword), d->mKeywordModel->color(keyword)});
    }
    return keywords;
}

bool TVLProjectModel::setKeywords(const QModelIndex &index, const QStringList &titles)
{
    if (!projectNode(index))
        return false;
    const TVLHeldItem item(this, projectNode(index));
    QList<int> ids;
    QSet<int> taken;
    for (const QString &title : titles) {
        QModelIndex keyword = d->mKeywordModel->findTitle(title);
        if (!keyword.isValid() && d->mKeywordModel->insertItem(0, QModelIndex(), title))
            keyword = d->mKeywordModel->findTitle(title);
        const int id = keyword.isValid() ? int(keyword.internalId()) : -1;
        if (!keyword.isValid() || taken.contains(id))
            continue;
        taken.insert(id);
        ids.append(id);
    }
    return item.node() && setKeywordIds(item.index(), ids);
}

// --- Items of a keyword

QModelIndexList TVLProjectModel::matchKeywords(const QSet<int> &keywords, int hits,
                                               const QModelIndex &parent) const
{
    QModelIndexList found;
    const TVLProjectNode *top = projectNode(parent);
    if (!top || keywords.isEmpty() || hits == 0)
        return found;
    for (const TVLProjectNode *node = top->nextInPreOrder(top); node && found.size() != hits;
         node = node->nextInPreOrder(top)) {
        if (hasAnyKeyword(node, keywords))
            found.append(createIndex(node));
    }
    return found;
}

bool TVLProjectModel::containsKeywords(const QSet<int> &keywords, const QModelIndex &parent) const
{
    return !matchKeywords(keywords, 1, parent).isEmpty();
}

QList<TVLProjectNode *> TVLProjectModelPrivate::nodesWithKeywords(const QSet<int> &ids) const
{
    QList<TVLProjectNode *> nodes;
    const auto take = [&](TVLProjectNode *node) {
        if (node && hasAnyKeyword(node, ids))
            nodes.append(node);
    };
    // The search index knows documents by id, so it can answer only when each item has its own.
    if (mIdMap.size() != mUuidMap.size()) {
        tvlForEachNode(mRootNode.get(), take);
        return nodes;
    }
    QSet<int> documents;
    for (const int id : ids)
        documents.unite(mSearchIndex->affectedDocuments(id));
    for (const int id : std::as_const(documents))
        take(q->findNode(id));
    return nodes;
}

void TVLProjectModel::removeKeywordsFromDocuments(const QSet<int> &ids)
{
    const QList<TVLProjectNode *> nodes = d->nodesWithKeywords(ids);
    for (TVLProjectNode *node : nodes)
        node->mKeywords.removeIf([&ids](int id) { return ids.contains(id); });
    tvlAnnounceChanges(this, TVLHeldItem::listOf(this, nodes));
    markProjectAsModified(true);
}

void TVLProjectModel::updateKeywordsForDocuments(const QModelIndex &topLeft,
                                                 const QModelIndex &bottomRight)
{
    // While a binder is read nobody has seen an item yet.
    if (d->mSuspendModified)
        return;
    QSet<int> changed;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
        changed.insert(int(topLeft.siblingAtRow(row).internalId()));
    tvlAnnounceChanges(this, TVLHeldItem::listOf(this, d->nodesWithKeywords(changed)));
}

// --- The binder's section

QList<TVLBinderKeyword> TVLProjectModel::projectKeywords() const
{
    return d->mKeywordModel->binderKeywords();
}

void TVLProjectModel::addProjectKeywords(const QList<TVLBinderKeyword> &keywords)
{
    // Only quicker: each row stands for itself.
    const bool isBundled = d->mSearchIndex->transaction();
    for (const TVLBinderKeyword &keyword : keywords) {
        (void)d->mKeywordModel->addChild(keyword.mId, keyword.mParentId);
        d->mKeywordModel->setTitle(d->mKeywordModel->index(keyword.mId), keyword.mTitle);
        if (keyword.mColor.isValid())
            d->mKeywordModel->setColor(d->mKeywordModel->index(keyword.mId), keyword.mColor);
    }
    if (isBundled)
        d->mSearchIndex->commit();
}
