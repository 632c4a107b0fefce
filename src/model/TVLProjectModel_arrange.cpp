#include "TVLProjectModel.h"

#include "TVLHeldDocument_p.h"
#include "TVLModel.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSiblingTitles_p.h"
#include "TVLTextCopy_p.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRuns_p.h"

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

template <typename Value>
void appendMissing(QList<Value> *values, const QList<Value> &more)
{
    for (const Value &value : more) {
        if (!values->contains(value))
            values->append(value);
    }
}

/** Puts a text in place of a document's, without a way to undo it. */
void replaceContent(QTextDocument *document, const QTextDocument &content)
{
    document->setUndoRedoEnabled(false);
    document->clear();
    TVLTextDoc::appendDocument(QTextCursor(document), &content);
    document->setUndoRedoEnabled(true);
}

void addSessionCounts(const TVLProjectNode &node, TVLProjectNode *survivor)
{
    const bool isTaken = survivor->mSessionCharacterCount != -1;
    survivor->mSessionWordCount =
        node.mSessionWordCount + (isTaken ? survivor->mSessionWordCount : 0);
    survivor->mSessionCharacterCount =
        node.mSessionCharacterCount + (isTaken ? survivor->mSessionCharacterCount : 0);
}

} // namespace

// --- Groups

QModelIndex TVLProjectModel::groupIndexes(const QModelIndexList &indexes)
{
    const QModelIndexList sorted = sortIndexesStable(indexes);
    const QList<TVLProjectNode *> nodes = itemNodes(sorted);
    if (nodes.isEmpty())
        return {};
    const int row = sorted.constFirst().row();
    const QModelIndex parent = sorted.constFirst().parent();
    if (!insertRows(row, 1, parent))
        return {};
    QModelIndexList members;
    members.reserve(nodes.size());
    for (const TVLProjectNode *node : nodes)
        members.append(createIndex(node));
    const QPersistentModelIndex group = index(row, 0, parent);
    return moveToFolder(group, members, -1) ? QModelIndex(group) : QModelIndex();
}

bool TVLProjectModel::ungroupIndexes(const QModelIndexList &indexes)
{
    QModelIndexList groups = sortIndexesStable(indexes);
    groups.removeIf(
        [this](const QModelIndex &index) { return !index.isValid() || !hasChildren(index); });
    const QList<TVLProjectNode *> nodes = itemNodes(groups);
    for (TVLProjectNode *node : nodes)
        (void)moveChildrenBehind(node);
    return !nodes.isEmpty();
}

bool TVLProjectModel::moveChildrenBehind(TVLProjectNode *node)
{
    const QList<TVLProjectNode *> children = node->mChildren;
    return moveToFolder(node->mParent, node->row() + 1, children);
}

// --- Merging

/** What the texts that are merged have together. */
struct TVLProjectModel::MergedTexts
{
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
    QList<int> keywords;
    QList<TVLReference> references;
    QList<int> idsWithSnapshots;
    QList<TVLTextCommentLink> filedComments;
};

/** Puts a text behind those that are there, with an empty paragraph between them. */
void TVLProjectModel::MergedTexts::Joined::append(const QTextDocument *text)
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

void TVLProjectModel::gatherTexts(const QList<TVLProjectNode *> &nodes, MergedTexts *merged)
{
    for (TVLProjectNode *node : nodes) {
        const QModelIndex index = createIndex(node);
        // Asked for once more: when the project was opened, they may have been out of sight.
        if (node->mHasSnapshots || TVLProjectFolderFormat::hasSnapshots(mPath, node->mId))
            merged->idsWithSnapshots.append(node->mId);
        const TVLHeldDocument text(this, index, TVL::MainText);
        merged->text.append(text.get());
        // No text names these, and so none will miss the others' identities.
        merged->filedComments.append(node == nodes.constFirst() ? text->filedComments()
                                                                : renamed(text->filedComments()));
        merged->notes.append(TVLHeldDocument(this, index, TVL::NotesText).get());
        appendSynopsis(&merged->synopsis, synopsis(index));
        appendMissing(&merged->keywords, node->mKeywords);
        appendMissing(&merged->references, node->mReferences);
        if (node != nodes.constFirst())
            addSessionCounts(*node, nodes.constFirst());
    }
}

bool TVLProjectModel::takeMergedTexts(TVLProjectNode *survivor, const MergedTexts &merged)
{
    const QModelIndex index = createIndex(survivor);
    const TVLHeldDocument text(this, index, TVL::MainText);
    replaceContent(text.get(), merged.text.document);
    text->setFiledComments(merged.filedComments);
    replaceContent(TVLHeldDocument(this, index, TVL::NotesText).get(), merged.notes.document);
    setSynopsis(index, merged.synopsis);
    setKeywordIdsPrivate(survivor, merged.keywords);
    setReferences(index, merged.references);

    QList<int> ids = merged.idsWithSnapshots;
    ids.removeAll(survivor->mId);
    bool isSafe = true;
    if (!ids.isEmpty()) {
        isSafe = mergeSnapshots(survivor->mId, ids);
        survivor->mHasSnapshots = TVLProjectFolderFormat::hasSnapshots(mPath, survivor->mId);
    }
    // The words of the others are in their files only as long as these are there.
    return (survivor->mId < 0 || writeDocuments(survivor, nullptr)) && isSafe;
}

bool TVLProjectModel::canMerge(const QList<TVLProjectNode *> &nodes) const
{
    return std::all_of(nodes.begin(), nodes.end(), [this](const TVLProjectNode *node) {
        if (!node->canHaveText())
            return false;
        // What can't be read can't be joined, and joined into what can't be read it isn't saved.
        return std::all_of(std::begin(TextTypes), std::end(TextTypes), [&](auto type) {
            const TVLHeldDocument document(this, createIndex(node), type);
            return document && !document->isReadOnly() && !document->areCommentsReadOnly();
        });
    });
}

QModelIndex TVLProjectModel::mergeIndexes(const QModelIndexList &indexes)
{
    if (indexes.isEmpty())
        return {};
    if (indexes.size() == 1)
        return indexes.constFirst();
    QList<TVLProjectNode *> nodes;
    appendMissing(&nodes, itemNodes(indexes));
    if (nodes.isEmpty() || !canMerge(nodes))
        return {};

    TVLProjectNode *survivor = nodes.constFirst();
    MergedTexts merged;
    gatherTexts(nodes, &merged);
    const bool isSafe = takeMergedTexts(survivor, merged);

    QModelIndexList others;
    for (const TVLProjectNode *node : std::as_const(nodes)) {
        if (node != survivor)
            others.append(createIndex(node));
    }
    others = sortIndexes(others);
    removeNodeIdsFromDependentStructures(nodeIdentityList(others));
    removeMerged(itemNodes(others), isSafe);

    const QModelIndex index = createIndex(survivor);
    scheduleDocTextChange(index);
    markProjectAsModified(true);
    Q_EMIT snapshotsChanged(index, index);
    announceChange(index);
    return index;
}

void TVLProjectModel::removeMerged(const QList<TVLProjectNode *> &nodes, bool withFiles)
{
    const TVLNumberedFiles files(mPath);
    for (TVLProjectNode *node : nodes) {
        // An item whose children may not stand in its place stays with them.
        if (!moveChildrenBehind(node))
            continue;
        const int row = node->row();
        beginRemoveRows(rowSignalParent(node->mParent), row, row);
        if (withFiles)
            (void)removeFilesForNode(node, files);
        else
            forgetNodeWithoutFiles(node);
        removeRow(node);
        endRemoveRows();
    }
}

// --- Lists of items

void TVLProjectModel::flatten()
{
    // The list grows while it is walked, until no child of a child is left.
    QList<TVLProjectNode *> &nodes = mRootNode->mChildren;
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        const QList<TVLProjectNode *> children = std::exchange(nodes.at(i)->mChildren, {});
        for (TVLProjectNode *child : children)
            child->mParent = mRootNode.get();
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

bool TVLProjectModel::applyAttributes(
    const QModelIndex &index, const TVLProjectNodeProperties &properties,
    void (TVLProjectNodeProperties::*apply)(const TVLProjectNodeProperties &))
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    (node->*apply)(properties);
    updateSearched(node, TVL::TitleProperty, node->mTitle);
    updateSearchedCustomMetaData(node);
    markProjectAsModified(true);
    announceChange(index);
    return true;
}

bool TVLProjectModel::applyMobileAttributes(const QModelIndex &index,
                                            const TVLProjectNodeProperties &properties)
{
    return applyAttributes(index, properties, &TVLProjectNodeProperties::applyMobileProperties);
}

bool TVLProjectModel::applyDesktopAttributes(const QModelIndex &index,
                                             const TVLProjectNodeProperties &properties)
{
    return applyAttributes(index, properties, &TVLProjectNodeProperties::applyDesktopProperties);
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
