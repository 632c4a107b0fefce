#include "TVLItemMerger_p.h"

#include "TVLHeldDocument_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextCopy_p.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextFormat.h"
#include "TVLTextRuns_p.h"

#include <QSet>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr TVL::DocumentType TextTypes[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText};

void appendSynopsis(QString *joined, const QString &synopsis)
{
    if (!joined->isEmpty() && !joined->endsWith(u"\n\n"))
        joined->append(joined->endsWith(u'\n') ? u"\n" : u"\n\n");
    joined->append(synopsis);
}

/** Comments with fresh identities, so that they can stand beside any others. */
QList<TVLTextCommentLink> renamed(QList<TVLTextCommentLink> comments)
{
    for (TVLTextCommentLink &comment : comments)
        comment.mIdentity = TVLTextFormat::newCommentIdentity();
    return comments;
}

/** Puts a text in place of a document's, without a way to undo it, as long as it is there. */
void replaceContent(const TVLHeldDocument &document, const QTextDocument &content)
{
    if (document)
        document->setUndoRedoEnabled(false);
    if (document)
        document->clear();
    if (document)
        TVLTextDoc::appendDocument(QTextCursor(document.get()), &content);
    if (document)
        document->setUndoRedoEnabled(true);
}

bool areAllThere(const QList<TVLHeldItem> &items)
{
    return std::all_of(items.begin(), items.end(),
                       [](const TVLHeldItem &item) { return item.node(); });
}

/** A second after a snapshot's own of which there is none yet; dates are exact to the second. */
QDateTime freeSecond(QDateTime date, const QSet<qint64> &taken)
{
    while (taken.contains(date.toSecsSinceEpoch()))
        date = date.addSecs(1);
    return date;
}

} // namespace

TVLItemMerger::TVLItemMerger(TVLProjectModel *model, TVLLoadedDocuments *documents)
    : mModel(model)
    , mDocuments(documents)
{
}

/** What the texts that are merged have together. */
struct TVLItemMerger::Texts
{
    /** A list to which each value is added once. */
    template <typename Value>
    class Gathered
    {
    public:
        void add(const QList<Value> &more)
        {
            for (const Value &value : more) {
                if (mKnown.contains(value))
                    continue;
                mKnown.insert(value);
                mValues.append(value);
            }
        }
        [[nodiscard]] const QList<Value> &values() const { return mValues; }

    private:
        QList<Value> mValues;
        QSet<Value> mKnown;
    };

    struct Joined
    {
        Joined() { document.setUndoRedoEnabled(false); }
        void append(const QTextDocument *text);

        QTextDocument document;
        TVLCommentTexts comments;
    };

    Joined text;
    Joined notes;
    QString synopsis;
    Gathered<int> keywords;
    Gathered<TVLReference> references;
    QList<int> idsWithSnapshots;
    QList<TVLTextCommentLink> filedComments;
    int sessionWordCount = -1;
    int sessionCharacterCount = -1;

    void addSessionCounts(const TVLProjectNode &node)
    {
        const bool isTaken = sessionCharacterCount != -1;
        sessionWordCount = node.mSessionWordCount + (isTaken ? sessionWordCount : 0);
        sessionCharacterCount = node.mSessionCharacterCount + (isTaken ? sessionCharacterCount : 0);
    }
};

/** Puts a text behind those that are there, with an empty paragraph between them. */
void TVLItemMerger::Texts::Joined::append(const QTextDocument *text)
{
    if (text->isEmpty())
        return;
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    if (!document.isEmpty()) {
        cursor.insertBlock();
        cursor.insertBlock();
    }
    tvlInsertText(cursor, text, 0, tvlEndOf(text), &comments);
}

TVLItemMerger::Result TVLItemMerger::join(const QList<TVLHeldItem> &items)
{
    Texts joined;
    if (items.isEmpty() || !canJoin(items) || !gather(items, &joined))
        return Result::Nothing;
    const TVLHeldItem survivor = items.constFirst();
    // First of all: where a snapshot can't come along, nothing has changed but copies that were
    // made.
    if (!takeSnapshots(survivor.node(), joined.idsWithSnapshots))
        return Result::SomeSnapshots;
    return takeTexts(survivor, joined) ? Result::OnDisk : Result::InMemory;
}

// --- Before anything changes

bool TVLItemMerger::canJoin(const QList<TVLHeldItem> &items) const
{
    const auto canBeJoined = [this](const TVLHeldItem &item) {
        // What can't be read can't be joined, and joined into what can't be read it isn't saved.
        return std::all_of(std::begin(TextTypes), std::end(TextTypes), [&](auto type) {
            if (!item.node() || !item.node()->canHaveText())
                return false;
            const TVLHeldDocument document(mModel, item.index(), type);
            return document && !document->isReadOnly() && !document->areCommentsReadOnly();
        });
    };
    return std::all_of(items.begin(), items.end(), canBeJoined);
}

/** False, with no more use for what was gathered, when an item has gone meanwhile. */
bool TVLItemMerger::gather(const QList<TVLHeldItem> &items, Texts *merged) const
{
    for (const TVLHeldItem &item : items) {
        if (!item.node())
            return false;
        const TVLHeldDocument text(mModel, item.index(), TVL::MainText);
        const TVLHeldDocument notes(mModel, item.index(), TVL::NotesText);
        const TVLHeldDocument card(mModel, item.index(), TVL::SynopsisText);
        const TVLProjectNode *node = item.node();
        if (!node || !text || !notes || !card)
            return false;
        merged->text.append(text.get());
        // No text names these, and so none will miss the others' identities.
        merged->filedComments.append(&item == &items.constFirst() ? text->filedComments()
                                                                  : renamed(text->filedComments()));
        merged->notes.append(notes.get());
        appendSynopsis(&merged->synopsis, card->toPlainText());
        merged->keywords.add(node->mKeywords);
        merged->references.add(node->mReferences);
        merged->addSessionCounts(*node);
        // Asked for once more: when the project was opened, they may have been out of sight.
        if (node->mHasSnapshots
            || TVLProjectFolderFormat::hasSnapshots(mModel->searchedPath(), node->mId))
            merged->idsWithSnapshots.append(node->mId);
    }
    return areAllThere(items);
}

// --- What the first one takes

bool TVLItemMerger::takeSnapshots(TVLProjectNode *survivor, QList<int> ids) const
{
    ids.removeAll(survivor->mId);
    if (ids.isEmpty())
        return true;
    const bool isComplete = mergeSnapshots(survivor->mId, ids);
    survivor->mHasSnapshots =
        TVLProjectFolderFormat::hasSnapshots(mModel->searchedPath(), survivor->mId);
    return isComplete;
}

/**
 * Gives an item the snapshots of others. Those that were taken in one and the same second, as when
 * all of a selection get one, are given the next seconds that are free.
 */
bool TVLItemMerger::mergeSnapshots(int id, const QList<int> &sourceIds) const
{
    QSet<qint64> taken;
    QList<std::pair<int, TVLSnapshotInfo>> crowded;
    const auto gather = [&](int itemId) {
        QList<TVLSnapshotInfo> snapshots;
        if (!TVLProjectFolderFormat::readSnapshots(mModel->searchedPath(), itemId, &snapshots))
            return false;
        for (const TVLSnapshotInfo &snapshot : std::as_const(snapshots)) {
            const qint64 second = snapshot.mDate.toSecsSinceEpoch();
            if (taken.contains(second))
                crowded.append({itemId, snapshot});
            taken.insert(second);
        }
        return true;
    };
    if (!gather(id) || !std::all_of(sourceIds.begin(), sourceIds.end(), gather)
        || !TVLProjectFolderFormat::mergeSnapshots(mModel->searchedPath(), id, sourceIds))
        return false;

    for (const auto &[sourceId, snapshot] : std::as_const(crowded)) {
        QTextDocument text;
        text.setUndoRedoEnabled(false);
        TVLSnapshotInfo moved = snapshot;
        moved.mDate = freeSecond(snapshot.mDate, taken);
        taken.insert(moved.mDate.toSecsSinceEpoch());
        if (!TVLProjectFolderFormat::readSnapshot(mModel->searchedPath(), sourceId, snapshot, &text,
                                                  mModel->idToUuid())
            || !TVLProjectFolderFormat::addSnapshot(mModel->searchedPath(), id, moved, &text,
                                                    nullptr))
            return false;
    }
    return true;
}

bool TVLItemMerger::takeTexts(const TVLHeldItem &survivor, const Texts &merged)
{
    // Each step is heard of, and may be the last.
    if (survivor.node()) {
        const TVLHeldDocument text(mModel, survivor.index(), TVL::MainText);
        replaceContent(text, merged.text.document);
        if (text)
            text->setFiledComments(merged.filedComments);
    }
    if (survivor.node()) {
        replaceContent(TVLHeldDocument(mModel, survivor.index(), TVL::NotesText),
                       merged.notes.document);
    }
    if (survivor.node())
        mModel->setSynopsis(survivor.index(), merged.synopsis);
    if (survivor.node()) {
        mModel->setKeywordIdsPrivate(survivor.node(), merged.keywords.values());
        mModel->setReferences(survivor.index(), merged.references.values());
    }
    TVLProjectNode *node = survivor.node();
    if (!node)
        return false;
    node->mSessionWordCount = merged.sessionWordCount;
    node->mSessionCharacterCount = merged.sessionCharacterCount;
    // The words of the others are in their files only as long as these are there.
    return node->mId < 0 || mDocuments->write(node, nullptr);
}
