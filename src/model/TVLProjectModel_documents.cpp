#include "TVLProjectModel_p.h"

#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLNodeDocuments_p.h"
#include "TVLSearchFeed_p.h"
#include "TVLTextDoc.h"
#include "TVLTextFinder.h"

#include <QTextCursor>

#include <algorithm>

// --- References

TVLTextDocument *TVLProjectModel::referenceItem(const QModelIndex &index,
                                                TVL::DocumentType type) const
{
    TVLProjectNode *node = projectNode(index);
    if (!node || isSystemFolder(index))
        return nullptr;
    const TVLHeldItem item(this, node);
    loadDocuments(node);
    // A box about a file that can't be read runs the event loop, where the item may go.
    const TVLProjectNode *present = item.node();
    TVLTextDocument *document = present ? tvlDocumentOf(present, type) : nullptr;
    if (document)
        document->setReferenceCount(document->referenceCount() + 1);
    return document;
}

TVLTextDocument *TVLProjectModel::referenceText(const QModelIndex &index) const
{
    return referenceItem(index, TVL::MainText);
}

TVLTextDocument *TVLProjectModel::referenceNote(const QModelIndex &index) const
{
    return referenceItem(index, TVL::NotesText);
}

TVLTextDocument *TVLProjectModel::referenceSynopsis(const QModelIndex &index) const
{
    return referenceItem(index, TVL::SynopsisText);
}

void TVLProjectModel::dereferenceItem(TVLTextDocument *document) const
{
    if (!document || !document->model() || !document->node())
        return;
    // A reference given back twice must not make that of another holder count for nothing.
    document->setReferenceCount(std::max(document->referenceCount() - 1, 0));
}

// --- Loading

void TVLProjectModel::loadDocuments(TVLProjectNode *node) const
{
    d->mDocuments->load(node);
}

// --- The list of nodes with documents in memory

QList<TVLProjectNode *> TVLProjectModel::loadedNodes() const
{
    return d->mDocuments->nodes();
}

// --- Saving and letting go

bool TVLProjectModel::saveDocuments(TVLProjectNode *node, bool forceRelease,
                                    QStringList *errors) const
{
    return d->mDocuments->save(node, forceRelease, errors);
}

bool TVLProjectModel::save(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    return node && node != d->mRootNode.get() && saveDocuments(node, false, nullptr);
}

void TVLProjectModel::save(TVLTextDocument *document)
{
    Q_UNUSED(document)
}

// --- Changes

void TVLProjectModel::onDocumentContentsChange(int position, int charsRemoved, int charsAdded)
{
    if (auto *document = qobject_cast<TVLTextDocument *>(sender()))
        d->mDocuments->onContentsChange(document, position, charsRemoved, charsAdded);
}

void TVLProjectModel::onDocumentContentsChanged()
{
    if (const auto *document = qobject_cast<TVLTextDocument *>(sender()))
        d->mDocuments->onContentsChanged(document);
}

void TVLProjectModel::scheduleDocTextChange(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    if (index.isValid() && node)
        d->mDocuments->scheduleChange(node);
}

void TVLProjectModel::markDocumentContentsDirty(QTextDocument *document)
{
    if (!document)
        return;
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    document->markContentsDirty(cursor.selectionStart(), cursor.selectionEnd());
}

// --- Texts

QString TVLProjectModel::synopsis(const QModelIndex &index) const
{
    const TVLHeldDocument synopsis(this, index, TVL::SynopsisText);
    return synopsis ? synopsis->toPlainText() : QString();
}

bool TVLProjectModel::setSynopsis(const QModelIndex &index, const QString &text)
{
    const TVLHeldDocument synopsis(this, index, TVL::SynopsisText);
    if (!synopsis)
        return false;
    if (synopsis->toPlainText() != text) {
        synopsis->clear();
        if (synopsis)
            QTextCursor(synopsis.get()).insertText(text);
    }
    return true;
}

QString TVLProjectModel::documentNoteAsPlainText(const QModelIndex &index) const
{
    const TVLHeldDocument notes(this, index, TVL::NotesText);
    return notes ? notes->toPlainText() : QString();
}

bool TVLProjectModel::isDocumentNoteEmpty(const QModelIndex &index) const
{
    const TVLHeldDocument notes(this, index, TVL::NotesText);
    return !notes || notes->isEmpty();
}

QString TVLProjectModel::documentPlainText(const QModelIndex &index, bool replaceObjects) const
{
    const TVLHeldDocument document(this, index, TVL::MainText);
    if (!document)
        return {};
    QString text = document->toPlainText();
    if (replaceObjects)
        text.replace(QChar::ObjectReplacementCharacter, u' ');
    return text;
}

bool TVLProjectModel::overwriteText(const QModelIndex &index, const QTextDocument *document)
{
    if (!document)
        return false;
    const TVLHeldDocument text(this, index, TVL::MainText);
    // Emptying the text first would leave nothing to put in its own place.
    if (text && text.get() != document) {
        QTextCursor cursor(text.get());
        cursor.beginEditBlock();
        cursor.select(QTextCursor::Document);
        cursor.removeSelectedText();
        TVLTextDoc::appendDocument(cursor, document);
        cursor.endEditBlock();
    }
    return true;
}

// --- Notes of the inspector

bool TVLProjectModel::hasInspectorNotes(const QModelIndex &index) const
{
    const TVLHeldDocument text(this, index, TVL::MainText);
    return text && TVLTextDoc::hasInspectorCommentsOrFootnotes(text.get());
}

QStringList TVLProjectModel::inspectorNotesToPlainText(const QModelIndex &index) const
{
    const TVLHeldDocument text(this, index, TVL::MainText);
    return text ? TVLTextDoc::inspectorNotesToPlainText(text.get()) : QStringList();
}

bool TVLProjectModel::setInspectorNote(const QModelIndex &index, const TVLTextRange &range,
                                       const TVLTextCommentLink &link)
{
    const TVLHeldItem item(this, projectNode(index));
    const TVLHeldDocument text(this, index, TVL::MainText);
    if (!text || text->areCommentsReadOnly() || !TVLTextDoc::setComment(text.get(), range, link))
        return false;
    if (text)
        text->setModified(true);
    TVLProjectNode *node = item.node();
    if (!node || !text)
        return false;
    text->setSaved(false);
    d->mSearchFeed->updateComments(node, text.get());
    node->updateModified();
    markProjectAsModified(true);
    return true;
}

bool TVLProjectModel::removeInspectorNotes(const QModelIndex &index, const QList<int> &positions)
{
    if (!index.isValid())
        return false;
    const TVLHeldItem item(this, projectNode(index));
    const TVLHeldDocument text(this, index, TVL::MainText);
    if (!text)
        return true;
    for (const int position : positions) {
        if (!text)
            break;
        const QTextCursor run = TVLTextFinder::findCommentViaStartPos(text.get(), position);
        if (!run.isNull())
            TVLTextDoc::removeComment(run);
    }
    if (item.node() && text)
        d->mSearchFeed->updateComments(item.node(), text.get());
    return true;
}

bool TVLProjectModel::removeInspectorNote(const QModelIndex &index, int position)
{
    return removeInspectorNotes(index, {position});
}
