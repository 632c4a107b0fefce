#include "TVLItemCloner_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLDoors.h"
#include "TVLKeywordModel.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
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

TVLItemCloner::TVLItemCloner(TVLProjectModel *model, TVLItemRows *rows,
                             TVLLoadedDocuments *documents, TVLSearchFeed *feed)
    : mModel(model)
    , mRows(rows)
    , mDocuments(documents)
    , mFeed(feed)
{
}

// --- What may be copied where

bool TVLItemCloner::canClone(const QModelIndex &source, const QModelIndex &target)
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
bool TVLItemCloner::canCloneBelow(const QModelIndex &source, const QModelIndex &parent) const
{
    const TVLProjectModel *from = projectModelOf(source);
    if (!source.isValid() || !from || mModel->isTrashChild(parent))
        return false;
    if (!from->isEditableText(source) && mModel->isDraftChild(parent))
        return false;
    return from != mModel || !from->isSystemFolder(source);
}

// --- Files

/** Snapshots are among the files, asked for or not. */
bool TVLItemCloner::copyFiles(const Source &from, const TVLProjectNode *source,
                              TVLProjectNode *target)
{
    // An editor's text of the target would be written over what is copied here.
    mDocuments->release(target);
    mFeed->noteReplacing(target);
    mFeed->invalidateTexts(target);
    if (mModel->isMobileProject())
        return TVLProjectModel::cloneProjectFilesNode(true, from.model->searchedPath(), source,
                                                      mModel->searchedPath(), target);
    return TVLProjectFolderFormat::cloneProjectFiles(
        from.model->searchedPath(), source->mId, from.files, mModel->searchedPath(), target->mId);
}

bool TVLItemCloner::cloneProjectFiles(const QModelIndex &source, const QModelIndex &target,
                                      bool snapshots)
{
    if (target.model() != mModel || !canClone(source, target))
        return false;
    const Source from = sourceOf(source);
    const TVLProjectNode *sourceNode = from.model->projectNode(source);
    TVLProjectNode *targetNode = mModel->projectNode(target);
    if (!copyFiles(from, sourceNode, targetNode))
        return false;
    copyHasFlags(*sourceNode, targetNode);
    if (snapshots)
        targetNode->mHasSnapshots = sourceNode->mHasSnapshots;
    forgetDerived(targetNode);
    mFeed->invalidateTexts(targetNode);
    return true;
}

// --- Whole items

TVLItemCloner::Source TVLItemCloner::sourceOf(const QModelIndex &source)
{
    const TVLProjectModel *model = projectModelOf(source);
    return {model, TVLNumberedFiles(model->searchedPath())};
}

bool TVLItemCloner::clone(const QModelIndex &source, const QModelIndex &target,
                          const TVLCloneOptions &options)
{
    if (source == target)
        return true;
    if (!source.isValid() || !target.isValid() || target.model() != mModel
        || !projectModelOf(source))
        return false;
    const bool isAllowed = canClone(source, target);
    if (options.checkRules && !isAllowed)
        return false;
    const Source from = sourceOf(source);
    const TVLHeldItem heldSource(from.model, from.model->projectNode(source));
    const TVLHeldItem heldTarget(mModel, mModel->projectNode(target));
    const AdoptedIds ids = adoptIds(*from.model, *heldSource.node(), options.files && isAllowed);
    TVLProjectNode *sourceNode = heldSource.node();
    TVLProjectNode *targetNode = heldTarget.node();
    if (!sourceNode || !targetNode)
        return false;

    // Taken before the first copy is made: the copies may come to lie below the source.
    const QList<Descendant> descendants =
        descendantsOf(from, options.recursive ? sourceNode : nullptr, targetNode);
    (void)from.model->saveDocuments(sourceNode, false, nullptr);
    const auto copy = [&](TVLProjectNode *node) {
        mFeed->invalidateTexts(node);
        return copyItem(from, sourceNode, node, options, isAllowed ? &ids : nullptr);
    };
    if (options.files
        && !takeRecord(targetNode, heldTarget.index(), Marks::IfReferencesChanged, copy))
        return false;
    return cloneDescendants(from, descendants, heldTarget, options);
}

bool TVLItemCloner::takeRecord(TVLProjectNode *node, const QModelIndex &index, Marks marks,
                               const std::function<bool(TVLProjectNode *)> &take)
{
    const TVLProjectNodeProperties before = *node;
    if (!take(node))
        return false;
    node->clearIndexCardPixmap();
    mFeed->updateRecord(node);
    if (marks == Marks::Always || node->mKeywords != before.mKeywords
        || node->mReferences != before.mReferences)
        tvlMarkAndAnnounce(mModel, index);
    else
        tvlAnnounceChange(mModel, index);
    return true;
}

/** Makes an item's files and record those of another one, and tells nobody. */
bool TVLItemCloner::copyItem(const Source &from, const TVLProjectNode *source,
                             TVLProjectNode *target, const TVLCloneOptions &options,
                             const AdoptedIds *ids)
{
    if (!copyFiles(from, source, target))
        return false;
    copyAttributes(*source, options.snapshots, target);
    forgetDerived(target);
    if (ids)
        takeIds(*source, *ids, target);
    return true;
}

void TVLItemCloner::takeIds(const TVLProjectNodeProperties &source, const AdoptedIds &ids,
                            TVLProjectNode *target)
{
    target->mKeywords = ids.keywords;
    target->mReferences = source.mReferences;
    target->mLabelId = ids.labelId;
    target->mStatusId = ids.statusId;
}

bool TVLItemCloner::cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                           bool snapshots)
{
    if (source == target)
        return true;
    const TVLProjectModel *from = projectModelOf(source);
    if (!source.isValid() || !target.isValid() || !from || target.model() != mModel)
        return false;
    const bool isAllowed = canClone(source, target);
    const TVLHeldItem heldSource(from, from->projectNode(source));
    const TVLHeldItem heldTarget(mModel, mModel->projectNode(target));
    const AdoptedIds ids = adoptIds(*from, *heldSource.node(), isAllowed);
    const TVLProjectNode *sourceNode = heldSource.node();
    TVLProjectNode *targetNode = heldTarget.node();
    if (!sourceNode || !targetNode)
        return false;
    if (snapshots) {
        (void)TVLProjectFolderFormat::cloneSnapshots(from->searchedPath(), sourceNode->mId,
                                                     mModel->searchedPath(), targetNode->mId);
    }
    const auto take = [&](TVLProjectNode *node) {
        node->applyDesktopProperties(*sourceNode);
        node->mHasSnapshots = snapshots && sourceNode->mHasSnapshots;
        if (isAllowed)
            takeIds(*sourceNode, ids, node);
        mFeed->invalidateTexts(node);
        return true;
    };
    return takeRecord(targetNode, heldTarget.index(), Marks::IfReferencesChanged, take);
}

// --- What items refer to

/** Has what an item of another project refers to by id in this one too, unless nothing is wanted.
 */
TVLItemCloner::AdoptedIds TVLItemCloner::adoptIds(const TVLProjectModel &from,
                                                  const TVLProjectNodeProperties &item,
                                                  bool isWanted)
{
    // Taken first: who hears of what is added here may remove the item.
    const AdoptedIds own = {item.mKeywords, item.mLabelId, item.mStatusId};
    if (&from == mModel || !isWanted)
        return own;
    return {adoptKeywords(*from.keywordModel(), own.keywords),
            adoptLabel(*from.searchIndex(), own.labelId),
            adoptStatusItem(*from.searchIndex(), own.statusId)};
}

bool TVLItemCloner::cloneKeywordsAndReferences(const QModelIndex &source, const QModelIndex &target)
{
    if (target.model() != mModel || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const QPersistentModelIndex heldTarget = target;
    const QList<TVLReference> references = from->references(source);
    QList<int> ids = from->keywordIds(source);
    if (from != mModel)
        ids = adoptKeywords(*from->keywordModel(), ids);
    return heldTarget.isValid() && mModel->setKeywordIds(heldTarget, ids) && heldTarget.isValid()
        && mModel->setReferences(heldTarget, references);
}

QList<int> TVLItemCloner::adoptKeywords(const TVLKeywordModel &from, const QList<int> &ids)
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
int TVLItemCloner::adoptKeyword(const QString &title, const QColor &color)
{
    TVLKeywordModel *keywords = mModel->keywordModel();
    if (!keywords->findTitle(title).isValid()
        && keywords->insertItem(keywords->rowCount(), QModelIndex(), title))
        keywords->setColor(keywords->findTitle(title), color);
    const QModelIndex keyword = keywords->findTitle(title);
    return keyword.isValid() ? int(keyword.internalId()) : -1;
}

bool TVLItemCloner::cloneLabelsAndStatusItems(const QModelIndex &source, const QModelIndex &target)
{
    if (source == target)
        return true;
    if (target.model() != mModel || !canClone(source, target))
        return false;
    const TVLProjectModel *from = projectModelOf(source);
    const TVLHeldItem heldTarget(mModel, mModel->projectNode(target));
    int labelId = from->labelIdentity(source);
    int statusId = from->statusIdentity(source);
    if (from != mModel) {
        labelId = adoptLabel(*from->searchIndex(), labelId);
        statusId = adoptStatusItem(*from->searchIndex(), statusId);
    }
    TVLProjectNode *targetNode = heldTarget.node();
    if (!targetNode)
        return false;
    targetNode->mLabelId = labelId;
    targetNode->mStatusId = statusId;
    mFeed->updateValue(targetNode, TVL::LabelProperty, labelId);
    mFeed->updateValue(targetNode, TVL::StatusProperty, statusId);
    return true;
}

int TVLItemCloner::adoptLabel(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    TVLLabel label = from.label(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    if (!label.mColor.isValid())
        label.mColor = randomColor();
    return adoptByTitle(label, mModel->labels(),
                        [this](const QList<TVLLabel> &items) { mModel->setLabels(items); });
}

int TVLItemCloner::adoptStatusItem(const TVLSearchIndex &from, int id)
{
    bool isKnown = false;
    const TVLStatusItem item = from.statusItem(id, &isKnown);
    if (id < 0 || !isKnown)
        return -1;
    return adoptByTitle(item, mModel->statusItems(), [this](const QList<TVLStatusItem> &items) {
        mModel->setStatusItems(items);
    });
}
