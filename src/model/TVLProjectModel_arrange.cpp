#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLItemCloner_p.h"
#include "TVLItemRows_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLModel.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSiblingTitles_p.h"
#include "TVLTextCopy_p.h"
#include "TVLTextDoc.h"
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

} // namespace

// --- Groups

QModelIndex TVLProjectModel::groupIndexes(const QModelIndexList &indexes)
{
    const QModelIndexList sorted = sortIndexesStable(indexes);
    const QList<TVLHeldItem> members = TVLHeldItem::listOf(this, d->mRows->itemNodes(sorted));
    if (members.isEmpty())
        return {};
    const QModelIndex first = sorted.constFirst();
    const TVLHeldItem group = d->insertBlankItem(first.row(), first.parent());
    const bool isMoved =
        group.node() && moveToFolder(group.index(), TVLHeldItem::indexesOf(members), -1);
    return isMoved ? group.index() : QModelIndex();
}

bool TVLProjectModel::ungroupIndexes(const QModelIndexList &indexes)
{
    QModelIndexList sorted = sortIndexesStable(indexes);
    sorted.removeIf(
        [this](const QModelIndex &index) { return !index.isValid() || !hasChildren(index); });
    const QList<TVLHeldItem> groups = TVLHeldItem::listOf(this, d->mRows->itemNodes(sorted));
    for (const TVLHeldItem &group : groups) {
        if (TVLProjectNode *node = group.node())
            (void)d->moveChildrenBehind(node);
    }
    return !groups.isEmpty();
}

bool TVLProjectModelPrivate::moveChildrenBehind(TVLProjectNode *node)
{
    const QList<TVLProjectNode *> children = node->mChildren;
    return q->moveToFolder(node->mParent, node->row() + 1, children);
}

// --- Merging

/** What the texts that are merged have together. */
struct TVLProjectModelPrivate::MergedTexts
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
void TVLProjectModelPrivate::MergedTexts::Joined::append(const QTextDocument *text)
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

/** False, with no more use for what was gathered, when an item has gone meanwhile. */
bool TVLProjectModelPrivate::gatherTexts(const QList<TVLHeldItem> &items, MergedTexts *merged)
{
    for (const TVLHeldItem &item : items) {
        if (!item.node())
            return false;
        const TVLHeldDocument text(q, item.index(), TVL::MainText);
        const TVLHeldDocument notes(q, item.index(), TVL::NotesText);
        const TVLHeldDocument card(q, item.index(), TVL::SynopsisText);
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
        if (node->mHasSnapshots || TVLProjectFolderFormat::hasSnapshots(mPath, node->mId))
            merged->idsWithSnapshots.append(node->mId);
    }
    return areAllThere(items);
}

bool TVLProjectModelPrivate::takeMergedTexts(const TVLHeldItem &survivor, const MergedTexts &merged)
{
    // Each step is heard of, and may be the last.
    if (survivor.node()) {
        const TVLHeldDocument text(q, survivor.index(), TVL::MainText);
        replaceContent(text, merged.text.document);
        if (text)
            text->setFiledComments(merged.filedComments);
    }
    if (survivor.node()) {
        replaceContent(TVLHeldDocument(q, survivor.index(), TVL::NotesText), merged.notes.document);
    }
    if (survivor.node())
        q->setSynopsis(survivor.index(), merged.synopsis);
    if (survivor.node()) {
        q->setKeywordIdsPrivate(survivor.node(), merged.keywords.values());
        q->setReferences(survivor.index(), merged.references.values());
    }
    TVLProjectNode *node = survivor.node();
    if (!node)
        return false;
    node->mSessionWordCount = merged.sessionWordCount;
    node->mSessionCharacterCount = merged.sessionCharacterCount;
    // The words of the others are in their files only as long as these are there.
    return node->mId < 0 || mDocuments->write(node, nullptr);
}

bool TVLProjectModelPrivate::takeMergedSnapshots(TVLProjectNode *survivor, QList<int> ids)
{
    ids.removeAll(survivor->mId);
    if (ids.isEmpty())
        return true;
    const bool isComplete = mergeSnapshots(survivor->mId, ids);
    survivor->mHasSnapshots = TVLProjectFolderFormat::hasSnapshots(mPath, survivor->mId);
    return isComplete;
}

bool TVLProjectModelPrivate::canMerge(const QList<TVLHeldItem> &items) const
{
    const auto canBeJoined = [this](const TVLHeldItem &item) {
        // What can't be read can't be joined, and joined into what can't be read it isn't saved.
        return std::all_of(std::begin(TextTypes), std::end(TextTypes), [&](auto type) {
            if (!item.node() || !item.node()->canHaveText())
                return false;
            const TVLHeldDocument document(q, item.index(), type);
            return document && !document->isReadOnly() && !document->areCommentsReadOnly();
        });
    };
    return std::all_of(items.begin(), items.end(), canBeJoined);
}

QModelIndex TVLProjectModel::mergeIndexes(const QModelIndexList &indexes)
{
    if (indexes.isEmpty())
        return {};
    if (indexes.size() == 1)
        return indexes.constFirst();
    TVLProjectModelPrivate::MergedTexts::Gathered<TVLProjectNode *> nodes;
    nodes.add(d->mRows->itemNodes(indexes));
    const QList<TVLHeldItem> items = TVLHeldItem::listOf(this, nodes.values());
    TVLProjectModelPrivate::MergedTexts merged;
    if (items.isEmpty() || !d->canMerge(items) || !d->gatherTexts(items, &merged))
        return {};

    const TVLHeldItem survivor = items.constFirst();
    // First of all: where a snapshot can't come along, nothing has changed but copies that were
    // made.
    if (!d->takeMergedSnapshots(survivor.node(), merged.idsWithSnapshots)) {
        d->announceSnapshots(survivor.index());
        return {};
    }
    const bool isSafe = d->takeMergedTexts(survivor, merged);
    // The others keep what there is nobody to take.
    if (!survivor.node())
        return {};
    const QModelIndexList others = sortIndexes(TVLHeldItem::indexesOf(items.sliced(1)));
    d->removeNodeIdsFromDependentStructures(nodeIdentityList(others));
    d->removeMerged(TVLHeldItem::listOf(this, d->mRows->itemNodes(others)), isSafe);

    scheduleDocTextChange(survivor.index());
    markProjectAsModified(true);
    if (survivor.node())
        Q_EMIT snapshotsChanged(survivor.index(), survivor.index());
    tvlAnnounceChange(this, survivor.index());
    return survivor.index();
}

void TVLProjectModelPrivate::removeMerged(const QList<TVLHeldItem> &items, bool withFiles)
{
    const TVLNumberedFiles files(mPath);
    for (const TVLHeldItem &item : items) {
        if (item.node())
            (void)moveChildrenBehind(item.node());
        TVLProjectNode *node = item.node();
        // An item whose children may not stand in its place stays with them.
        if (!node || !node->mChildren.isEmpty())
            continue;
        const int row = node->row();
        mRows->beginRemove(node->mParent, row, row);
        if (withFiles)
            (void)removeFilesForNode(node, files);
        else
            forgetNodeWithoutFiles(node);
        removeRow(node);
        mRows->endRemove();
    }
}

// --- Lists of items

void TVLProjectModel::flatten()
{
    // The list grows while it is walked, until no child of a child is left.
    QList<TVLProjectNode *> &nodes = d->mRootNode->mChildren;
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        const QList<TVLProjectNode *> children = std::exchange(nodes.at(i)->mChildren, {});
        for (TVLProjectNode *child : children)
            child->mParent = d->mRootNode.get();
        nodes.append(children);
    }
}

void TVLProjectModel::countFilesAndFolders(const QModelIndexList &indexes, int *groups,
                                           int *items) const
{
    *groups = 0;
    *items = 0;
    for (const QModelIndex &index : indexes) {
        if (!index.isValid() || !projectNode(index))
            continue;
        if (isFolder(index) || hasChildren(index))
            ++*groups;
        if (!isSystemFolder(index))
            ++*items;
    }
}

QList<int> TVLProjectModel::nodeIdentityList(const QModelIndexList &indexes) const
{
    QList<int> ids;
    ids.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        ids.append(nodeIdentity(index));
    return ids;
}

QList<QUuid> TVLProjectModel::nodeUuidList(const QModelIndexList &indexes) const
{
    QList<QUuid> uuids;
    uuids.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        uuids.append(nodeUuid(index));
    return uuids;
}

QStringList TVLProjectModel::titles(const QModelIndexList &indexes) const
{
    QStringList found;
    found.reserve(indexes.size());
    for (const QModelIndex &index : indexes)
        found.append(title(index));
    return found;
}

bool TVLProjectModel::hasSiblingWithTitle(const QModelIndex &index, const QString &title) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || !node->mParent)
        return false;
    const QList<TVLProjectNode *> &siblings = node->mParent->mChildren;
    return std::any_of(siblings.begin(), siblings.end(), [&](const TVLProjectNode *sibling) {
        return sibling != node && sibling->mTitle == title;
    });
}

QString TVLProjectModel::findUniqueTitle(const QString &title, const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || !node->mParent)
        return title;
    return TVLSiblingTitles(node->mParent, node).findUnique(title);
}

// --- Merges of projects

TVLProjectNodeProperties TVLProjectModel::nodeProperties(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node ? static_cast<const TVLProjectNodeProperties &>(*node) : TVLProjectNodeProperties();
}

bool TVLProjectModelPrivate::applyAttributes(
    const QModelIndex &index, const TVLProjectNodeProperties &properties,
    void (TVLProjectNodeProperties::*apply)(const TVLProjectNodeProperties &))
{
    TVLProjectNode *node = q->projectNode(index);
    const auto take = [&](TVLProjectNode *target) {
        (target->*apply)(properties);
        return true;
    };
    return node && mCloner->takeRecord(node, index, TVLItemCloner::Marks::Always, take);
}

bool TVLProjectModel::applyMobileAttributes(const QModelIndex &index,
                                            const TVLProjectNodeProperties &properties)
{
    return d->applyAttributes(index, properties, &TVLProjectNodeProperties::applyMobileProperties);
}

bool TVLProjectModel::applyDesktopAttributes(const QModelIndex &index,
                                             const TVLProjectNodeProperties &properties)
{
    return d->applyAttributes(index, properties, &TVLProjectNodeProperties::applyDesktopProperties);
}

bool TVLProjectModel::applyMobileAttributesFromIndex(const QModelIndex &source,
                                                     const QModelIndex &target)
{
    const auto *from = qobject_cast<const TVLProjectModel *>(source.model());
    return from && applyMobileAttributes(target, from->nodeProperties(source));
}

bool TVLProjectModel::applyDesktopAttributesFromIndex(const QModelIndex &source,
                                                      const QModelIndex &target)
{
    const auto *from = qobject_cast<const TVLProjectModel *>(source.model());
    return from && applyDesktopAttributes(target, from->nodeProperties(source));
}
