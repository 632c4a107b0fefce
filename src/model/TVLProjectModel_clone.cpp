#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLCloning_p.h"
#include "TVLDoors.h"
#include "TVLKeywordModel.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLRecordList_p.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"

#include <utility>

namespace {

const TVLProjectModel *projectModelOf(const QModelIndex &index)
{
    return qobject_cast<const TVLProjectModel *>(index.model());
}

QColor randomColor()
{
    constexpr quint32 Colors = 0xffffff;
    return QColor(QRgb(tvlRandom(Colors)));
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

/** Forgets what was derived of an item's files: other ones lie there now. */
void forgetDerived(TVLProjectNode *node)
{
    node->mWordCount = -1;
    node->mCharacterCount = -1;
    node->clearIndexCardPixmap();
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

} // namespace

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

/** canClone() for a new item in a parent. */
bool TVLProjectModelPrivate::canCloneBelow(const QModelIndex &source,
                                           const QModelIndex &parent) const
{
    const TVLProjectModel *from = projectModelOf(source);
    if (!source.isValid() || !from || q->isTrashChild(parent))
        return false;
    if (!from->isEditableText(source) && q->isDraftChild(parent))
        return false;
    return from != q || !from->isSystemFolder(source);
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
bool TVLProjectModelPrivate::cloneFiles(const CloneSource &from, const TVLProjectNode *source,
                                        TVLProjectNode *target)
{
    // An editor's text of the target would be written over what is copied here.
    mDocuments->release(target);
    mSearchFeed->noteReplacing(target);
    mSearchFeed->invalidateTexts(target);
    if (mMobileProject)
        return TVLProjectModel::cloneProjectFilesNode(true, from.model->d->mPath, source, mPath,
                                                      target);
    return TVLProjectFolderFormat::cloneProjectFiles(from.model->d->mPath, source->mId, from.files,
                                                     mPath, target->mId);
}

bool TVLProjectModel::cloneProjectFiles(const QModelIndex &source, const QModelIndex &target,
                                        bool snapshots)
{
    if (target.model() != this || !canClone(source, target))
        return false;
    const TVLProjectModelPrivate::CloneSource from = TVLProjectModelPrivate::cloneSource(source);
    const TVLProjectNode *sourceNode = from.model->projectNode(source);
    TVLProjectNode *targetNode = projectNode(target);
    if (!d->cloneFiles(from, sourceNode, targetNode))
        return false;
    copyHasFlags(*sourceNode, targetNode);
    if (snapshots)
        targetNode->mHasSnapshots = sourceNode->mHasSnapshots;
    forgetDerived(targetNode);
    d->mSearchFeed->invalidateTexts(targetNode);
    return true;
}

// --- Whole items

TVLProjectModelPrivate::CloneSource TVLProjectModelPrivate::cloneSource(const QModelIndex &source)
{
    const TVLProjectModel *model = projectModelOf(source);
    return {model, TVLNumberedFiles(model->d->mPath)};
}

bool TVLProjectModel::clone(const QModelIndex &source, const QModelIndex &target, bool recursive,
                            bool checkRules, bool snapshots, bool files)
{
    if (source == target)
        return true;
    if (!source.isValid() || !target.isValid() || target.model() != this || !projectModelOf(source))
        return false;
    const bool isAllowed = canClone(source, target);
    if (checkRules && !isAllowed)
        return false;
    const TVLProjectModelPrivate::CloneSource from = TVLProjectModelPrivate::cloneSource(source);
    const TVLHeldItem heldSource(from.model, from.model->projectNode(source));
    const TVLHeldItem heldTarget(this, projectNode(target));
    const TVLProjectModelPrivate::AdoptedIds ids =
        d->adoptIds(*from.model, *heldSource.node(), files && isAllowed);
    TVLProjectNode *sourceNode = heldSource.node();
    TVLProjectNode *targetNode = heldTarget.node();
    if (!sourceNode || !targetNode)
        return false;

    // Taken before the first copy is made: the copies may come to lie below the source.
    const QList<TVLProjectModelPrivate::Descendant> descendants =
        TVLProjectModelPrivate::descendantsOf(from, recursive ? sourceNode : nullptr, targetNode);
    const TVLProjectModelPrivate::CloneOptions options = {recursive, checkRules, snapshots, files};
    (void)from.model->saveDocuments(sourceNode, false, nullptr);
    if (files) {
        const TVLProjectNodeProperties before = *targetNode;
        d->mSearchFeed->invalidateTexts(targetNode);
        if (!d->copyItem(from, sourceNode, targetNode, options, isAllowed ? &ids : nullptr))
            return false;
        d->mSearchFeed->updateRecord(targetNode);
        if (isAllowed)
            d->markIfReferringChanged(before, *targetNode);
        tvlAnnounceChange(this, heldTarget.index());
    }
    return d->cloneDescendants(from, descendants, heldTarget, options);
}

/** Makes an item's files and record those of another one, and tells nobody. */
bool TVLProjectModelPrivate::copyItem(const CloneSource &from, const TVLProjectNode *source,
                                      TVLProjectNode *target, const CloneOptions &options,
                                      const AdoptedIds *ids)
{
    if (!cloneFiles(from, source, target))
        return false;
    copyAttributes(*source, options.snapshots, target);
    forgetDerived(target);
    if (ids)
        takeIds(*source, *ids, target);
    return true;
}

void TVLProjectModelPrivate::takeIds(const TVLProjectNodeProperties &source, const AdoptedIds &ids,
                                     TVLProjectNode *target)
{
    target->mKeywords = ids.keywords;
    target->mReferences = source.mReferences;
    target->mLabelId = ids.labelId;
    target->mStatusId = ids.statusId;
}

void TVLProjectModelPrivate::markIfReferringChanged(const TVLProjectNodeProperties &before,
                                                    const TVLProjectNodeProperties &now)
{
    q->markProjectAsModified(now.mKeywords != before.mKeywords
                             || now.mReferences != before.mReferences);
}

bool TVLProjectModel::cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                             bool snapshots)
{
    if (source == target)
        return true;
    const TVLProjectModel *from = projectModelOf(source);
    if (!source.isValid() || !target.isValid() || !from || target.model() != this)
        return false;
    const bool isAllowed = canClone(source, target);
    const TVLHeldItem heldSource(from, from->projectNode(source));
    const TVLHeldItem heldTarget(this, projectNode(target));
    const TVLProjectModelPrivate::AdoptedIds ids =
        d->adoptIds(*from, *heldSource.node(), isAllowed);
    const TVLProjectNode *sourceNode = heldSource.node();
    TVLProjectNode *targetNode = heldTarget.node();
    if (!sourceNode || !targetNode)
        return false;
    if (snapshots) {
        (void)TVLProjectFolderFormat::cloneSnapshots(from->d->mPath, sourceNode->mId, d->mPath,
                                                     targetNode->mId);
    }
    const TVLProjectNodeProperties before = *targetNode;
    targetNode->applyDesktopProperties(*sourceNode);
    targetNode->mHasSnapshots = snapshots && sourceNode->mHasSnapshots;
    targetNode->clearIndexCardPixmap();
    if (isAllowed)
        TVLProjectModelPrivate::takeIds(*sourceNode, ids, targetNode);
    d->mSearchFeed->invalidateTexts(targetNode);
    d->mSearchFeed->updateRecord(targetNode);
    d->markIfReferringChanged(before, *targetNode);
    tvlAnnounceChange(this, heldTarget.index());
    return true;
}

// --- What items refer to

/** Has what an item of another project refers to by id in this one too, unless nothing is wanted.
 */
TVLProjectModelPrivate::AdoptedIds
TVLProjectModelPrivate::adoptIds(const TVLProjectModel &from, const TVLProjectNodeProperties &item,
                                 bool isWanted)
{
    // Taken first: who hears of what is added here may remove the item.
    const AdoptedIds own = {item.mKeywords, item.mLabelId, item.mStatusId};
    if (&from == q || !isWanted)
        return own;
    return {adoptKeywords(*from.keywordModel(), own.keywords),
            adoptLabel(*from.d->mSearchIndex, own.labelId),
            adoptStatusItem(*from.d->mSearchIndex, own.statusId)};
}

bool TVLProjectModel::cloneKeywordsAndReferences(const QModelIndex &source,
                                                 const QModelIndex &target)
{
    if (target.model() != this || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const QPersistentModelIndex heldTarget = target;
    const QList<TVLReference> references = from->references(source);
    QList<int> ids = from->keywordIds(source);
    if (from != this)
        ids = d->adoptKeywords(*from->keywordModel(), ids);
    return heldTarget.isValid() && setKeywordIds(heldTarget, ids) && heldTarget.isValid()
        && setReferences(heldTarget, references);
}

QList<int> TVLProjectModelPrivate::adoptKeywords(const TVLKeywordModel &from, const QList<int> &ids)
{
    QList<std::pair<QString, QColor>> keywords;
    for (const int id : ids)
        keywords.append({from.title(from.index(id)), from.color(from.index(id))});
    QList<int> adopted;
    for (const auto &[title, color] : std::as_const(keywords)) {
        const int id = adoptKeyword(title, color);
        if (id >= 0 && !adopted.contains(id))
            adopted.append(id);
    }
    return adopted;
}

/** The id of a keyword of that title, which is added if there is none; -1 without one. */
int TVLProjectModelPrivate::adoptKeyword(const QString &title, const QColor &color)
{
    if (!mKeywordModel->findTitle(title).isValid()
        && mKeywordModel->insertItem(mKeywordModel->rowCount(), QModelIndex(), title))
        mKeywordModel->setColor(mKeywordModel->findTitle(title), color);
    const QModelIndex keyword = mKeywordModel->findTitle(title);
    return keyword.isValid() ? int(keyword.internalId()) : -1;
}

bool TVLProjectModel::cloneLabelsAndStatusItems(const QModelIndex &source,
                                                const QModelIndex &target)
{
    if (source == target)
        return true;
    if (target.model() != this || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const TVLHeldItem heldTarget(this, projectNode(target));
    int labelId = from->labelIdentity(source);
    int statusId = from->statusIdentity(source);
    if (from != this) {
        labelId = d->adoptLabel(*from->d->mSearchIndex, labelId);
        statusId = d->adoptStatusItem(*from->d->mSearchIndex, statusId);
    }
    TVLProjectNode *targetNode = heldTarget.node();
    if (!targetNode)
        return false;
    targetNode->mLabelId = labelId;
    targetNode->mStatusId = statusId;
    d->mSearchFeed->updateValue(targetNode, TVL::LabelProperty, labelId);
    d->mSearchFeed->updateValue(targetNode, TVL::StatusProperty, statusId);
    return true;
}

int TVLProjectModelPrivate::adoptLabel(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    TVLLabel label = from.label(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    if (!label.mColor.isValid())
        label.mColor = randomColor();
    return adoptByTitle(label, q->labels(),
                        [this](const QList<TVLLabel> &items) { q->setLabels(items); });
}

int TVLProjectModelPrivate::adoptStatusItem(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    const TVLStatusItem item = from.statusItem(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    return adoptByTitle(item, q->statusItems(),
                        [this](const QList<TVLStatusItem> &items) { q->setStatusItems(items); });
}
