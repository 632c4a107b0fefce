#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLNodeDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"
#include "TVLTextDocument.h"

#include <QUrl>

#include <algorithm>

namespace {

/** A property of a node, or @p fallback without one. */
template <typename Value>
Value propertyOf(const TVLProjectNode *node, Value TVLProjectNodeProperties::*member,
                 Value fallback = Value())
{
    return node ? node->*member : fallback;
}

/** A cached flag, refreshed from the document while that is in memory. */
bool refreshedFlag(TVLProjectNode *node, bool TVLProjectNodeProperties::*flag,
                   const TVLTextDocument *document)
{
    if (document)
        node->*flag = !document->isEmpty();
    return node->*flag;
}

/** The text mode with its name, which an item of the general mode may be without. */
QString namedMode(const QString &mode)
{
    return mode.isEmpty() ? TVLProjectModel::GeneralFormatMode : mode;
}

} // namespace

TVL::NodeType TVLProjectModel::type(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mNodeType, TVL::Other);
}

QString TVLProjectModel::title(const QModelIndex &index, bool substituteUntitled) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node)
        return {};
    return substituteUntitled && node->mTitle.isEmpty() ? trUntitledTitle() : node->mTitle;
}

QString TVLProjectModel::trUntitledTitle()
{
    return tr("Untitled");
}

QString TVLProjectModel::extension(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mFileExtension);
}

QPair<int, int> TVLProjectModel::selection(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mTextSelection);
}

QDateTime TVLProjectModel::created(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mCreated);
}

QDateTime TVLProjectModel::lastModified(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mModified);
}

QDateTime TVLProjectModel::currentSnapshot(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mRestoredSnapshotDate);
}

int TVLProjectModel::nodeIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mId, -1);
}

QUuid TVLProjectModel::nodeUuid(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mUuid);
}

int TVLProjectModel::labelIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mLabelId, -1);
}

int TVLProjectModel::statusIdentity(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mStatusId, -1);
}

TVLLabel TVLProjectModel::label(const QModelIndex &index) const
{
    return d->mSearchIndex->label(labelIdentity(index));
}

TVLStatusItem TVLProjectModel::statusItem(const QModelIndex &index) const
{
    return d->mSearchIndex->statusItem(statusIdentity(index));
}

bool TVLProjectModel::isTemplateFolder(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mIsTemplateFolder);
}

bool TVLProjectModel::isFavorite(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mIsFavorite);
}

bool TVLProjectModel::hasSnapshots(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mHasSnapshots);
}

bool TVLProjectModel::includeInCompile(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mIncludeInCompile);
}

bool TVLProjectModel::pageBreakBefore(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mPageBreakBefore);
}

bool TVLProjectModel::preserveFormatting(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mCompileAsIs);
}

bool TVLProjectModel::showIndexCardImage(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mShowSynopsisImage);
}

double TVLProjectModel::scaleFactor(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mImageScaleFactor, 1.0);
}

bool TVLProjectModel::scaleToFit(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mImageScalesProportionally, true);
}

int TVLProjectModel::rotation(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mImageRotation);
}

int TVLProjectModel::countTarget(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mTarget);
}

TVL::TargetType TVLProjectModel::targetType(const QModelIndex &index) const
{
    return TVL::TargetType(propertyOf(projectNode(index), &TVLProjectNode::mTargetType));
}

QString TVLProjectModel::textMode(const QModelIndex &index) const
{
    return propertyOf(projectNode(index), &TVLProjectNode::mTextMode, GeneralFormatMode);
}

bool TVLProjectModel::isScriptMode(const QModelIndex &index) const
{
    return textMode(index) == ScriptFormatMode;
}

QUrl TVLProjectModel::webUrl(const QModelIndex &index) const
{
    return QUrl(propertyOf(projectNode(index), &TVLProjectNode::mOriginalUrl));
}

bool TVLProjectModel::hasText(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node && refreshedFlag(node, &TVLProjectNode::mHasText, node->mTextDocument);
}

bool TVLProjectModel::hasDocumentNote(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node && refreshedFlag(node, &TVLProjectNode::mHasDocumentNote, node->mNotesDocument);
}

bool TVLProjectModel::hasSynopsis(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (node && node->mSynopsisDocument)
        return !node->mSynopsisDocument->isEmpty();
    return propertyOf(node, &TVLProjectNode::mHasSynopsis);
}

bool TVLProjectModel::hasCustomMetaData(const QModelIndex &index) const
{
    const auto values = propertyOf(projectNode(index), &TVLProjectNode::mCustomMetaData);
    return std::any_of(values.begin(), values.end(),
                       [](const QString &value) { return !value.isEmpty(); });
}

bool TVLProjectModel::referenced(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && !isSystemFolder(index)
        && (node->mTextDocument || node->mNotesDocument || node->mSynopsisDocument);
}

bool TVLProjectModel::isReadOnly(const QModelIndex &index, TVL::DocumentType type) const
{
    const TVLProjectNode *node = projectNode(index);
    const TVLTextDocument *document =
        node && !isSystemFolder(index) ? tvlDocumentOf(node, type) : nullptr;
    return document && document->isReadOnly();
}

QByteArray TVLProjectModelPrivate::storedMd5(const QModelIndex &index, TVL::DocumentType type) const
{
    const TVLProjectNode *node = q->projectNode(index);
    return node ? TVLProjectFolderFormat::md5(mPath, node->mId, type) : QByteArray();
}

QByteArray TVLProjectModel::textMd5(const QModelIndex &index) const
{
    return d->storedMd5(index, TVL::MainText);
}

QByteArray TVLProjectModel::noteMd5(const QModelIndex &index) const
{
    return d->storedMd5(index, TVL::NotesText);
}

QByteArray TVLProjectModel::synopsisMd5(const QModelIndex &index) const
{
    return d->storedMd5(index, TVL::SynopsisText);
}

// --- Changing

void TVLProjectModelPrivate::followChange(TVLProjectNode *node, const QModelIndex &index,
                                          Effects effects)
{
    if (effects == Effects::TouchAndAnnounce)
        node->updateModified();
    if (effects == Effects::None)
        q->markProjectAsModified(true);
    else
        tvlMarkAndAnnounce(q, index);
}

/** @p store is false, having changed nothing, for a node that has the value already. */
template <typename Store>
bool TVLProjectModelPrivate::changeNode(const QModelIndex &index, Effects effects, Store store)
{
    TVLProjectNode *node = q->projectNode(index);
    if (!node)
        return false;
    if (store(node))
        followChange(node, index, effects);
    return true;
}

template <typename Value>
bool TVLProjectModelPrivate::setNodeValue(const QModelIndex &index,
                                          Value TVLProjectNodeProperties::*member,
                                          const Value &value, Effects effects, bool equalCounts)
{
    return changeNode(index, effects, [&](TVLProjectNode *node) {
        if (equalCounts && node->*member == value)
            return false;
        node->*member = value;
        return true;
    });
}

template <typename Value>
bool TVLProjectModelPrivate::setSearchedValue(const QModelIndex &index,
                                              Value TVLProjectNodeProperties::*member,
                                              const Value &value, TVL::DocumentProperty property,
                                              bool equalCounts)
{
    return changeNode(index, Effects::TouchAndAnnounce, [&](TVLProjectNode *node) {
        if (equalCounts && node->*member == value)
            return false;
        node->*member = value;
        mSearchFeed->updateValue(node, property, value);
        return true;
    });
}

bool TVLProjectModel::setTitle(const QModelIndex &index, const QString &title)
{
    return d->setSearchedValue(index, &TVLProjectNode::mTitle, title, TVL::TitleProperty);
}

bool TVLProjectModel::setType(const QModelIndex &index, TVL::NodeType type)
{
    return d->setNodeValue(index, &TVLProjectNode::mNodeType, type);
}

bool TVLProjectModel::setTargetType(const QModelIndex &index, TVL::TargetType type)
{
    return d->setNodeValue(index, &TVLProjectNode::mTargetType, int(type));
}

bool TVLProjectModel::setCustomIcon(const QModelIndex &index, const QString &name)
{
    return d->setNodeValue(index, &TVLProjectNode::mIconFileName, name);
}

bool TVLProjectModel::setIncludeInCompile(const QModelIndex &index, bool include)
{
    return d->setNodeValue(index, &TVLProjectNode::mIncludeInCompile, include);
}

bool TVLProjectModel::setPageBreakBefore(const QModelIndex &index, bool pageBreak)
{
    return d->setNodeValue(index, &TVLProjectNode::mPageBreakBefore, pageBreak);
}

bool TVLProjectModel::setPreserveFormatting(const QModelIndex &index, bool preserve)
{
    return d->setNodeValue(index, &TVLProjectNode::mCompileAsIs, preserve);
}

bool TVLProjectModel::setShowIndexCardImage(const QModelIndex &index, bool show)
{
    return d->setNodeValue(index, &TVLProjectNode::mShowSynopsisImage, show);
}

bool TVLProjectModel::setLabelIdentity(const QModelIndex &index, int id)
{
    return d->setSearchedValue(index, &TVLProjectNode::mLabelId, id, TVL::LabelProperty,
                               d->mSearchIndex->hasLabel(id));
}

bool TVLProjectModel::setStatusIdentity(const QModelIndex &index, int id)
{
    return d->setSearchedValue(index, &TVLProjectNode::mStatusId, id, TVL::StatusProperty,
                               d->mSearchIndex->hasStatusItem(id));
}

bool TVLProjectModel::setWebUrl(const QModelIndex &index, const QUrl &url)
{
    return d->changeNode(index, TVLProjectModelPrivate::Effects::TouchAndAnnounce,
                         [&url](TVLProjectNode *node) {
                             if (QUrl(node->mOriginalUrl) == url)
                                 return false;
                             node->mOriginalUrl = url.toString();
                             return true;
                         });
}

bool TVLProjectModel::setActualSize(const QModelIndex &index)
{
    return setScaleFactor(index, 1.0);
}

bool TVLProjectModel::setScaleFactor(const QModelIndex &index, double factor)
{
    return d->changeNode(index, TVLProjectModelPrivate::Effects::TouchAndAnnounce,
                         [factor](TVLProjectNode *node) {
                             if (tvlFuzzyCompare(node->mImageScaleFactor, factor)
                                 && !node->mImageScalesProportionally)
                                 return false;
                             node->mImageScaleFactor = factor;
                             node->mImageScalesProportionally = false;
                             return true;
                         });
}

bool TVLProjectModel::setTextMode(const QModelIndex &index, const QString &mode)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (namedMode(node->mTextMode) == namedMode(mode))
        return true;
    node->mTextMode = mode;
    node->updateModified();
    const QPersistentModelIndex changed = index;
    markProjectAsModified(true);
    if (changed.isValid())
        Q_EMIT formatModeChanged(changed, mode);
    tvlAnnounceChange(this, changed);
    return true;
}

bool TVLProjectModel::setRotation(const QModelIndex &index, int quarterTurns)
{
    return d->setNodeValue(index, &TVLProjectNode::mImageRotation, quarterTurns,
                           TVLProjectModelPrivate::Effects::Announce);
}

bool TVLProjectModel::setScaleToFit(const QModelIndex &index, bool fit)
{
    return d->setNodeValue(index, &TVLProjectNode::mImageScalesProportionally, fit,
                           TVLProjectModelPrivate::Effects::Announce);
}

bool TVLProjectModel::setCountTarget(const QModelIndex &index, int target)
{
    return d->setNodeValue(index, &TVLProjectNode::mTarget, target,
                           TVLProjectModelPrivate::Effects::Announce);
}

bool TVLProjectModel::setLastModified(const QModelIndex &index, const QDateTime &dateTime)
{
    return d->setNodeValue(index, &TVLProjectNode::mModified, dateTime,
                           TVLProjectModelPrivate::Effects::Announce);
}

bool TVLProjectModel::setSelection(const QModelIndex &index, const QPair<int, int> &selection)
{
    return d->setNodeValue(index, &TVLProjectNode::mTextSelection, selection,
                           TVLProjectModelPrivate::Effects::None);
}

bool TVLProjectModel::verifyLabelStatusIdentity(const QModelIndex &index, int label, int status)
{
    const TVLHeldItem item(this, projectNode(index));
    const bool hasItem = setLabelIdentity(index, d->mSearchIndex->hasLabel(label) ? label : -1);
    return hasItem && item.node()
        && setStatusIdentity(item.index(), d->mSearchIndex->hasStatusItem(status) ? status : -1);
}

bool TVLProjectModel::verifyLabelStatusIdentity(TVLProjectNodeProperties *properties) const
{
    const bool isLabelKnown = d->mSearchIndex->hasLabel(properties->mLabelId);
    const bool isStatusKnown = d->mSearchIndex->hasStatusItem(properties->mStatusId);
    if (!isLabelKnown)
        properties->mLabelId = -1;
    if (!isStatusKnown)
        properties->mStatusId = -1;
    return isLabelKnown && isStatusKnown;
}
