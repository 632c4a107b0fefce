#include "TVLProjectModel.h"

#include "TVLKeywordModel.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLRecordList_p.h"
#include "TVLSearchIndex.h"
#include "TVLSiblingTitles_p.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace {

const TVLProjectModel *projectModelOf(const QModelIndex &index)
{
    return qobject_cast<const TVLProjectModel *>(index.model());
}

QColor randomColor()
{
    constexpr int Colors = 0xffffff;
    return QColor(QRgb(QRandomGenerator::global()->bounded(Colors)));
}

/** What clone() makes of a record: all that a desktop item can give, and the flags that a merge
 * leaves alone. */
void copyAttributes(const TVLProjectNodeProperties &source, bool snapshots, TVLProjectNode *target)
{
    target->applyDesktopProperties(source);
    target->mTargetAllowOver = source.mTargetAllowOver;
    target->mTargetBuffer = source.mTargetBuffer;
    target->mIsAlias = source.mIsAlias;
    target->mHasSnapshots = snapshots && source.mHasSnapshots;
    target->updateModified();
}

void copyHasFlags(const TVLProjectNodeProperties &source, TVLProjectNode *target)
{
    target->mHasText = source.mHasText;
    target->mHasSynopsis = source.mHasSynopsis;
    target->mHasDocumentNote = source.mHasDocumentNote;
}

/**
 * The id under which a project has the title of another one's label or status item. One that it
 * doesn't have it gets, under a free id.
 */
template <typename Item, typename SetItems>
int adoptByTitle(Item item, QList<Item> ownItems, SetItems setItems)
{
    for (const Item &own : std::as_const(ownItems)) {
        if (own.mTitle == item.mTitle)
            return own.mId;
    }
    item.mId = tvlLowestFreeId(ownItems);
    ownItems.append(item);
    setItems(ownItems);
    return item.mId;
}

/** All below a node but another one and what lies in that. */
QList<TVLProjectNode *> descendantsOutside(const TVLProjectNode *top,
                                           const TVLProjectNode *excluded)
{
    QList<TVLProjectNode *> found;
    QSet<const TVLProjectNode *> inside = {excluded};
    tvlForEachNode(top, [&](TVLProjectNode *node) {
        if (node == excluded || inside.contains(node->mParent))
            inside.insert(node);
        else
            found.append(node);
    });
    return found;
}

} // namespace

/** The project that is copied from, and what lies in its folder of numbered files. */
struct TVLProjectModel::CloneSource
{
    const TVLProjectModel *model;
    TVLNumberedFiles files;
};

struct TVLProjectModel::CloneOptions
{
    bool recursive;
    bool checkRules;
    bool snapshots;
    bool files;
};

// --- What may be copied where

bool TVLProjectModel::canClone(const QModelIndex &source, const QModelIndex &target) const
{
    const TVLProjectModel *from = projectModelOf(source);
    const TVLProjectModel *to = projectModelOf(target);
    if (!source.isValid() || !target.isValid() || source == target || !from || !to)
        return false;
    if (to->trashContains(target))
        return false;
    if (!from->isEditableText(source) && to->isDraftChild(target))
        return false;
    return from != to || (!from->isSystemFolder(source) && !to->isSystemFolder(target));
}

// --- Files

bool TVLProjectModel::cloneProjectFilesNode(bool mobile, const QString &sourcePath,
                                            const TVLProjectNode *source, const QString &targetPath,
                                            const TVLProjectNode *target)
{
    return mobile ? TVLProjectFolderFormat::cloneMobileProjectFiles(sourcePath, source->mUuid,
                                                                    targetPath, target->mUuid)
                  : TVLProjectFolderFormat::cloneProjectFiles(sourcePath, source->mId, targetPath,
                                                              target->mId);
}

/** Snapshots are among the files, asked for or not. */
bool TVLProjectModel::cloneFiles(const CloneSource &from, const TVLProjectNode *source,
                                 TVLProjectNode *target)
{
    // An editor's text of the target would be written over what is copied here.
    releaseDocuments(target);
    noteReplacing(target);
    invalidateSearchedTexts(target);
    if (mMobileProject)
        return cloneProjectFilesNode(true, from.model->mPath, source, mPath, target);
    return TVLProjectFolderFormat::cloneProjectFiles(from.model->mPath, source->mId, from.files,
                                                     mPath, target->mId);
}

bool TVLProjectModel::cloneProjectFiles(const QModelIndex &source, const QModelIndex &target,
                                        bool snapshots)
{
    if (target.model() != this || !canClone(source, target))
        return false;
    const CloneSource from = cloneSource(source);
    const TVLProjectNode *sourceNode = from.model->projectNode(source);
    TVLProjectNode *targetNode = projectNode(target);
    if (!cloneFiles(from, sourceNode, targetNode))
        return false;
    copyHasFlags(*sourceNode, targetNode);
    if (snapshots)
        targetNode->mHasSnapshots = sourceNode->mHasSnapshots;
    return true;
}

// --- Whole items

TVLProjectModel::CloneSource TVLProjectModel::cloneSource(const QModelIndex &source)
{
    const TVLProjectModel *model = projectModelOf(source);
    return {model, TVLNumberedFiles(model->mPath)};
}

bool TVLProjectModel::clone(const QModelIndex &source, const QModelIndex &target, bool recursive,
                            bool checkRules, bool snapshots, bool files)
{
    if (source == target)
        return true;
    if (!source.isValid() || !target.isValid() || target.model() != this || !projectModelOf(source))
        return false;
    return clone(cloneSource(source), source, target, {recursive, checkRules, snapshots, files});
}

bool TVLProjectModel::clone(const CloneSource &from, const QModelIndex &source,
                            const QModelIndex &target, const CloneOptions &options)
{
    if (options.checkRules && !canClone(source, target))
        return false;
    TVLProjectNode *top = from.model->projectNode(source);
    TVLProjectNode *targetNode = projectNode(target);
    // Taken before the first copy is made: the copies may come to lie below the source.
    const QList<TVLProjectNode *> descendants =
        options.recursive ? descendantsOutside(top, targetNode) : QList<TVLProjectNode *>();
    if (!cloneNode(from, top, targetNode, options))
        return false;

    struct Copy
    {
        TVLProjectNode *node;
        int children; ///< So many have been inserted in front of those that it had.
    };
    QHash<const TVLProjectNode *, Copy> copies = {{top, {targetNode, 0}}};
    const CloneOptions childOptions = {false, options.checkRules, true, true};
    for (TVLProjectNode *descendant : descendants) {
        Copy &parent = copies[descendant->mParent];
        const int row = parent.children++;
        TVLProjectNode *copy = insertDefaultNode(parent.node, row);
        if (options.checkRules && !canClone(from.model->createIndex(descendant), createIndex(copy)))
            return false;
        if (!cloneNode(from, descendant, copy, childOptions))
            return false;
        copies.insert(descendant, {copy, 0});
    }
    return true;
}

bool TVLProjectModel::cloneNode(const CloneSource &from, TVLProjectNode *source,
                                TVLProjectNode *target, const CloneOptions &options)
{
    (void)from.model->saveDocuments(source, false, nullptr);
    if (!options.files)
        return true;
    if (!cloneFiles(from, source, target))
        return false;
    copyAttributes(*source, options.snapshots, target);
    const QModelIndex sourceIndex = from.model->createIndex(source);
    const QModelIndex targetIndex = createIndex(target);
    cloneKeywordsAndReferences(sourceIndex, targetIndex);
    cloneLabelsAndStatusItems(sourceIndex, targetIndex);
    updateSearched(target, TVL::TitleProperty, target->mTitle);
    updateSearchedCustomMetaData(target);
    announceChange(targetIndex);
    return true;
}

bool TVLProjectModel::cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                             bool snapshots)
{
    if (source == target)
        return true;
    const TVLProjectModel *from = projectModelOf(source);
    if (!source.isValid() || !target.isValid() || !from || target.model() != this)
        return false;
    const TVLProjectNode *sourceNode = from->projectNode(source);
    TVLProjectNode *targetNode = projectNode(target);
    if (snapshots) {
        (void)TVLProjectFolderFormat::cloneSnapshots(from->mPath, sourceNode->mId, mPath,
                                                     targetNode->mId);
    }
    targetNode->applyDesktopProperties(*sourceNode);
    targetNode->mHasSnapshots = snapshots && sourceNode->mHasSnapshots;
    cloneKeywordsAndReferences(source, target);
    cloneLabelsAndStatusItems(source, target);
    invalidateSearchedTexts(targetNode);
    updateSearched(targetNode, TVL::TitleProperty, targetNode->mTitle);
    updateSearchedCustomMetaData(targetNode);
    announceChange(target);
    return true;
}

// --- What items refer to

bool TVLProjectModel::cloneKeywordsAndReferences(const QModelIndex &source,
                                                 const QModelIndex &target)
{
    if (target.model() != this || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const QList<int> ids = from->keywordIds(source);
    if (from == this) {
        setKeywordIds(target, ids);
    } else {
        const QStringList titles = from->keywords(source);
        for (const int id : ids)
            adoptKeyword(*from->keywordModel(), id);
        setKeywords(target, titles);
    }
    return setReferences(target, from->references(source));
}

void TVLProjectModel::adoptKeyword(const TVLKeywordModel &from, int id)
{
    const QModelIndex keyword = from.index(id);
    const QString title = from.title(keyword);
    if (mKeywordModel->findTitle(title).isValid())
        return;
    if (mKeywordModel->insertItem(mKeywordModel->rowCount(), QModelIndex(), title))
        mKeywordModel->setColor(mKeywordModel->findTitle(title), from.color(keyword));
}

bool TVLProjectModel::cloneLabelsAndStatusItems(const QModelIndex &source,
                                                const QModelIndex &target)
{
    if (source == target)
        return true;
    if (target.model() != this || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const TVLProjectNode *sourceNode = from->projectNode(source);
    TVLProjectNode *targetNode = projectNode(target);
    const bool isSameProject = from == this;
    targetNode->mLabelId = isSameProject ? sourceNode->mLabelId
                                         : adoptLabel(*from->mSearchIndex, sourceNode->mLabelId);
    targetNode->mStatusId = isSameProject
        ? sourceNode->mStatusId
        : adoptStatusItem(*from->mSearchIndex, sourceNode->mStatusId);
    updateSearched(targetNode, TVL::LabelProperty, targetNode->mLabelId);
    updateSearched(targetNode, TVL::StatusProperty, targetNode->mStatusId);
    return true;
}

int TVLProjectModel::adoptLabel(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    TVLLabel label = from.label(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    if (!label.mColor.isValid())
        label.mColor = randomColor();
    return adoptByTitle(label, labels(),
                        [this](const QList<TVLLabel> &items) { setLabels(items); });
}

int TVLProjectModel::adoptStatusItem(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    const TVLStatusItem item = from.statusItem(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    return adoptByTitle(item, statusItems(),
                        [this](const QList<TVLStatusItem> &items) { setStatusItems(items); });
}

// --- Duplicates

QModelIndexList TVLProjectModel::duplicate(const QModelIndexList &indexes, bool withChildren)
{
    QList<TVLProjectNode *> sources = itemNodes(sortIndexes(indexes));
    const auto isSystem = [](const TVLProjectNode *node) { return node->mNodeType < TVL::Folder; };
    if (sources.isEmpty() || std::any_of(sources.begin(), sources.end(), isSystem))
        return {};
    if (withChildren)
        sources = withoutDescendants(sources);
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
    if (indexes.isEmpty() || !canInsertRows(row, 1, parent))
        return {};
    const InsertPlace place = insertPlace(parent, row);
    // Rows shift while copies come in; nodes stay where they are.
    const QList<TVLProjectNode *> sources = itemNodes(indexes);
    if (sources.isEmpty())
        return {};
    const CloneSource from = cloneSource(indexes.constFirst());
    TVLSiblingTitles titles(place.parent, nullptr);
    QList<TVLProjectNode *> copies;
    for (const TVLProjectNode *source : sources) {
        const int copyRow = place.row + int(copies.size());
        TVLProjectNode *copy = insertDefaultNode(place.parent, copyRow);
        (void)clone(from, createIndex(source), createIndex(copy),
                    {withChildren, checkRules, true, true});
        setTitle(createIndex(copy), titles.findUnique(source->mTitle));
        titles.add(copy->mTitle);
        copies.append(copy);
    }
    markProjectAsModified(true);
    QModelIndexList duplicates;
    for (const TVLProjectNode *copy : std::as_const(copies))
        duplicates.append(createIndex(copy));
    return duplicates;
}

QModelIndex TVLProjectModel::duplicate(const QModelIndex &index, int row, const QModelIndex &parent,
                                       bool withChildren, bool checkRules)
{
    const QModelIndexList copies =
        duplicate(QModelIndexList{index}, row, parent, withChildren, checkRules);
    return copies.isEmpty() ? QModelIndex() : copies.constFirst();
}
