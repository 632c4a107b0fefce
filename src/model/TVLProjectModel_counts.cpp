#include "TVLProjectModel.h"

#include "TVLHeldDocument_p.h"
#include "TVLProjectNode.h"
#include "TVLTextDoc.h"

#include <algorithm>

namespace {

/** A document ends in a paragraph separator that nobody typed. */
int typedCharacters(const QTextDocument *document)
{
    return std::max(document->characterCount() - 1, 0);
}

int sinceSessionBegan(int count, int base)
{
    return std::max(count, 0) - std::max(base, 0);
}

} // namespace

// --- Counts of one item

int TVLProjectModel::wordCountOf(TVLProjectNode *node, bool withAnnotations,
                                 bool withFootnotes) const
{
    if (node->mWordCount < 0) {
        const TVLHeldDocument text(this, createIndex(node), TVL::MainText);
        if (text)
            node->mWordCount =
                std::max(TVLTextDoc::wordCount(text.get(), withAnnotations, withFootnotes), 0);
    }
    return std::max(node->mWordCount, 0);
}

int TVLProjectModel::characterCountOf(TVLProjectNode *node) const
{
    if (node->mCharacterCount < 0) {
        const TVLHeldDocument text(this, createIndex(node), TVL::MainText);
        if (text)
            node->mCharacterCount = typedCharacters(text.get());
    }
    return std::max(node->mCharacterCount, 0);
}

int TVLProjectModel::sessionWordCountOf(TVLProjectNode *node, bool withAnnotations,
                                        bool withFootnotes) const
{
    // Counting comes first: it may load the text, which fixes what the session began with.
    const int count = wordCountOf(node, withAnnotations, withFootnotes);
    return sinceSessionBegan(count, node->mSessionWordCount);
}

int TVLProjectModel::sessionCharacterCountOf(TVLProjectNode *node) const
{
    const int count = characterCountOf(node);
    return sinceSessionBegan(count, node->mSessionCharacterCount);
}

int TVLProjectModel::wordCount(const QModelIndex &index, bool withAnnotations,
                               bool withFootnotes) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? wordCountOf(node, withAnnotations, withFootnotes) : 0;
}

int TVLProjectModel::characterCount(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? characterCountOf(node) : 0;
}

int TVLProjectModel::sessionWordCount(const QModelIndex &index, bool withAnnotations,
                                      bool withFootnotes) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? sessionWordCountOf(node, withAnnotations, withFootnotes) : 0;
}

int TVLProjectModel::sessionCharacterCount(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    return node ? sessionCharacterCountOf(node) : 0;
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
    return countActual(index, withAnnotations, withFootnotes) / double(node->mTarget);
}

double TVLProjectModel::progressPercent(const QModelIndex &index) const
{
    return progress(index, false, false) * 100.0;
}

// --- Sums over several items

template <typename Count>
int TVLProjectModel::totalCount(const QModelIndex &index, Count count) const
{
    TVLProjectNode *top = projectNode(index);
    if (!top)
        return 0;
    int total = count(top);
    tvlForEachNode(top, [&](TVLProjectNode *node) { total += count(node); });
    return total;
}

int TVLProjectModel::totalWordCount(const QModelIndex &index, bool withAnnotations,
                                    bool withFootnotes) const
{
    return totalCount(index, [&](TVLProjectNode *node) {
        return wordCountOf(node, withAnnotations, withFootnotes);
    });
}

int TVLProjectModel::totalCharacterCount(const QModelIndex &index) const
{
    return totalCount(index, [this](TVLProjectNode *node) { return characterCountOf(node); });
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
    for (TVLProjectNode *top : std::as_const(mRootNode->mChildren)) {
        addCounts(top, false, session, compileOnly, &sums);
        const bool countsDraft = draft && top->mNodeType == TVL::DraftFolder;
        tvlForEachNode(top, [&](TVLProjectNode *node) {
            addCounts(node, countsDraft, session, compileOnly, &sums);
        });
    }
    return sums;
}

void TVLProjectModel::addCounts(TVLProjectNode *node, bool draft, bool session, bool compileOnly,
                                WordCharSessionCount *sums) const
{
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

void TVLProjectModel::takeSessionCounts(TVLProjectNode *node)
{
    node->mSessionCharacterCount = typedCharacters(node->mTextDocument);
    node->mSessionWordCount = TVLTextDoc::wordCount(node->mTextDocument, false, false);
}

void TVLProjectModel::resetSessionCounts()
{
    tvlForEachNode(mRootNode.get(), [](TVLProjectNode *node) {
        if (node->mSessionCharacterCount == -1)
            return;
        if (node->mTextDocument) {
            takeSessionCounts(node);
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
