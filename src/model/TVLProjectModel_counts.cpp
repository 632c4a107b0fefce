#include "TVLProjectModel_p.h"

#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"
#include "TVLTextCounts_p.h"
#include "TVLTextDoc.h"

#include <algorithm>
#include <utility>

namespace {

int sinceSessionBegan(int count, int base)
{
    return std::max(count, 0) - std::max(base, 0);
}

/** Whether a node lies in the Draft, which doesn't lie in itself. */
bool isInDraft(const TVLProjectNode *node)
{
    const TVLProjectNode *top = node;
    while (top->mParent && top->mParent->mParent)
        top = top->mParent;
    return top != node && top->mNodeType == TVL::DraftFolder;
}

} // namespace

// --- Counts of one item

// Counting may bring a text into memory, and with that show a box about one that can't be read, in
// which the item may go: then its counts are 0.

bool TVLProjectModelPrivate::areCounted(const TVLProjectNode *node)
{
    return node->mWordCount >= 0 && node->mCharacterCount >= 0;
}

/** Brings a node's texts into memory, so that nothing happens when it is counted; null if it has
 * gone meanwhile. */
TVLProjectNode *TVLProjectModelPrivate::withTexts(TVLProjectNode *node) const
{
    if (node->mSynopsisDocument || q->isSystemFolder(q->createIndex(node)))
        return node;
    const TVLHeldItem item(q, node);
    q->loadDocuments(node);
    return item.node();
}

int TVLProjectModelPrivate::wordCountOf(TVLProjectNode *node, bool withAnnotations,
                                        bool withFootnotes) const
{
    if (node->mWordCount >= 0)
        return node->mWordCount;
    node = withTexts(node);
    if (!node)
        return 0;
    const TVLHeldDocument text(q, q->createIndex(node), TVL::MainText);
    if (text)
        node->mWordCount =
            std::max(TVLTextDoc::wordCount(text.get(), withAnnotations, withFootnotes), 0);
    return std::max(node->mWordCount, 0);
}

int TVLProjectModelPrivate::characterCountOf(TVLProjectNode *node) const
{
    if (node->mCharacterCount >= 0)
        return node->mCharacterCount;
    node = withTexts(node);
    if (!node)
        return 0;
    const TVLHeldDocument text(q, q->createIndex(node), TVL::MainText);
    if (text)
        node->mCharacterCount = tvlTypedCharacters(text.get());
    return std::max(node->mCharacterCount, 0);
}

int TVLProjectModelPrivate::sessionWordCountOf(TVLProjectNode *node, bool withAnnotations,
                                               bool withFootnotes) const
{
    // The text comes first: loading it fixes what the session began with.
    if (node->mWordCount < 0)
        node = withTexts(node);
    return node ? sinceSessionBegan(wordCountOf(node, withAnnotations, withFootnotes),
                                    node->mSessionWordCount)
                : 0;
}

int TVLProjectModelPrivate::sessionCharacterCountOf(TVLProjectNode *node) const
{
    if (node->mCharacterCount < 0)
        node = withTexts(node);
    return node ? sinceSessionBegan(characterCountOf(node), node->mSessionCharacterCount) : 0;
}

int TVLProjectModel::wordCount(const QModelIndex &index, bool withAnnotations,
                               bool withFootnotes) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? d->wordCountOf(node, withAnnotations, withFootnotes) : 0;
}

int TVLProjectModel::characterCount(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? d->characterCountOf(node) : 0;
}

int TVLProjectModel::sessionWordCount(const QModelIndex &index, bool withAnnotations,
                                      bool withFootnotes) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? d->sessionWordCountOf(node, withAnnotations, withFootnotes) : 0;
}

int TVLProjectModel::sessionCharacterCount(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? d->sessionCharacterCountOf(node) : 0;
}

int TVLProjectModel::countActual(const QModelIndex &index, bool withAnnotations,
                                 bool withFootnotes) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node)
        return 0;
    switch (node->mTargetType) {
    case TVL::WordsTarget:
        return wordCount(index, withAnnotations, withFootnotes);
    case TVL::CharactersTarget:
        return characterCount(index);
    }
    return 0;
}

double TVLProjectModel::progress(const QModelIndex &index, bool withAnnotations,
                                 bool withFootnotes) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || node->mTarget == 0)
        return 0.0;
    const int target = node->mTarget;
    return countActual(index, withAnnotations, withFootnotes) / double(target);
}

double TVLProjectModel::progressPercent(const QModelIndex &index) const
{
    return progress(index, false, false) * 100.0;
}

// --- Sums over several items

/**
 * Visits nodes for their counts. First those whose counts are there: as long as no text comes into
 * memory, nothing happens to the tree.
 */
template <typename Visit>
void TVLProjectModelPrivate::visitForCounts(const QList<TVLProjectNode *> &tops, Visit visit) const
{
    QList<TVLHeldItem> uncounted;
    const auto visitIfCounted = [&](TVLProjectNode *node) {
        if (areCounted(node))
            visit(node);
        else
            uncounted.append(TVLHeldItem(q, node));
    };
    for (TVLProjectNode *top : tops) {
        visitIfCounted(top);
        tvlForEachNode(top, visitIfCounted);
    }
    for (const TVLHeldItem &item : std::as_const(uncounted)) {
        if (TVLProjectNode *node = item.node())
            visit(node);
    }
}

template <typename Count>
int TVLProjectModelPrivate::totalCount(const QModelIndex &index, Count count) const
{
    TVLProjectNode *top = q->projectNode(index);
    if (!top)
        return 0;
    int total = 0;
    visitForCounts({top}, [&](TVLProjectNode *node) { total += count(node); });
    return total;
}

int TVLProjectModel::totalWordCount(const QModelIndex &index, bool withAnnotations,
                                    bool withFootnotes) const
{
    return d->totalCount(index, [&](TVLProjectNode *node) {
        return d->wordCountOf(node, withAnnotations, withFootnotes);
    });
}

int TVLProjectModel::totalCharacterCount(const QModelIndex &index) const
{
    return d->totalCount(index, [this](TVLProjectNode *node) { return d->characterCountOf(node); });
}

TVLProjectModel::WordCharSessionCount
TVLProjectModel::wordCharSessionCount(const TVLProjectModel *model, bool draft, bool session,
                                      bool compileOnly)
{
    return model ? model->wordCharSessionCount(draft, session, compileOnly)
                 : WordCharSessionCount();
}

TVLProjectModel::WordCharSessionCount
TVLProjectModel::wordCharSessionCount(bool draft, bool session, bool compileOnly) const
{
    WordCharSessionCount sums;
    if (!draft && !session)
        return sums;
    d->visitForCounts(d->mRootNode->mChildren, [&](TVLProjectNode *node) {
        d->addCounts(node, draft && isInDraft(node), session, compileOnly, &sums);
    });
    return sums;
}

void TVLProjectModelPrivate::addCounts(TVLProjectNode *node, bool draft, bool session,
                                       bool compileOnly,
                                       TVLProjectModel::WordCharSessionCount *sums) const
{
    if (!areCounted(node))
        node = withTexts(node);
    if (!node)
        return;
    if (draft && (!compileOnly || node->mIncludeInCompile)) {
        sums->mDraftWords += wordCountOf(node, false, false);
        sums->mDraftCharacters += characterCountOf(node);
    }
    if (session) {
        sums->mSessionWords += sessionWordCountOf(node, false, false);
        sums->mSessionCharacters += sessionCharacterCountOf(node);
    }
}

// --- The writing session

void TVLProjectModel::resetSessionCounts()
{
    tvlForEachNode(d->mRootNode.get(), [](TVLProjectNode *node) {
        if (node->mSessionCharacterCount == -1)
            return;
        if (node->mTextDocument) {
            tvlBeginSession(node);
        } else {
            node->mSessionCharacterCount = node->mCharacterCount;
            node->mSessionWordCount = node->mWordCount;
        }
    });
    Q_EMIT metaDataChanged();
}

QString TVLProjectModel::statisticsText(int words, int characters, int target, TVL::TargetType type)
{
    if (target == 0)
        return tr("Words: %L1    Chars: %L2").arg(words).arg(characters);
    const QString text = type == TVL::CharactersTarget ? tr("Words: %L1    Chars: %L2/%L3")
                                                       : tr("Words: %L1/%L3    Chars: %L2");
    return text.arg(words).arg(characters).arg(target);
}
