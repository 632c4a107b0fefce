#include "TVLProjectModel_p.h"

#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLMessageBox.h"
#include "TVLNodeDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"
#include "TVLTextDoc.h"
#include "TVLTextFinder.h"

#include <QApplication>
#include <QRegExp>
#include <QSignalBlocker>
#include <QTextCursor>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int DocTextChangeMs = 1000;
// Below this many entries a list of loaded nodes isn't worth tidying.
constexpr qsizetype FewLoadedNodes = 32;

bool isDirty(const TVLTextDocument *document)
{
    return document && document->isDirty();
}

QList<TVLTextDocument *> dirtyDocuments(const TVLProjectNode *node)
{
    QList<TVLTextDocument *> documents = {node->mNotesDocument, node->mSynopsisDocument,
                                          node->mTextDocument};
    documents.removeIf([](const TVLTextDocument *document) { return !isDirty(document); });
    return documents;
}

bool hasDirtyDocument(const TVLProjectNode *node)
{
    return !dirtyDocuments(node).isEmpty();
}

/** Whether somebody holds a document of the node. */
bool areDocumentsHeld(const TVLProjectNode *node)
{
    const auto isReferenced = [](const TVLTextDocument *document) {
        return document && document->referenceCount() > 0;
    };
    return isReferenced(node->mTextDocument) || isReferenced(node->mNotesDocument)
        || isReferenced(node->mSynopsisDocument);
}

/** Whether somebody still wants a document of the node. Only the main text's history counts. */
bool areDocumentsWanted(const TVLProjectNode *node)
{
    const TVLTextDocument *text = node->mTextDocument;
    return !text || text->isUndoAvailable() || text->isRedoAvailable() || areDocumentsHeld(node);
}

void updateHasFlags(TVLProjectNode *node)
{
    const auto update = [](bool *flag, const TVLTextDocument *document) {
        if (document)
            *flag = !document->isEmpty();
    };
    update(&node->mHasText, node->mTextDocument);
    update(&node->mHasDocumentNote, node->mNotesDocument);
    update(&node->mHasSynopsis, node->mSynopsisDocument);
}

/** The line that a load's box has for a file, by what its error names; empty for none. */
QString loadErrorLine(const QString &error)
{
    // Kept as it stands: the dot is any character.
    static const QRegExp mainText(u"(\\d+).rtf"_s, Qt::CaseSensitive);
    if (QRegExp(mainText).indexIn(error) >= 0)
        return TVLProjectModel::tr("Could not load document '%1'");
    if (error.contains(u"_notes.rtf"))
        return TVLProjectModel::tr("Could not load document notes for '%1'");
    if (error.contains(u"_synopsis.txt"))
        return TVLProjectModel::tr("Could not load document synopsis for '%1'");
    return {};
}

} // namespace

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
    if (!node || node->mSynopsisDocument)
        return;
    const QString title = node->mTitle;
    QStringList errors;
    // Comes last because the box runs the event loop, where others may want the same documents, or
    // remove the item.
    if (!d->loadQuietly(node, &errors))
        d->showLoadErrors(title, errors);
}

bool TVLProjectModelPrivate::loadQuietly(TVLProjectNode *node, QStringList *errors) const
{
    createDocuments(node);
    const bool isRead = node->mId < 0 || mFolderFormat->readDocuments(node, q, errors);

    if (node->mTextDocument)
        startDocument(node->mTextDocument);
    startDocument(node->mNotesDocument);
    startDocument(node->mSynopsisDocument);
    if (node->mTextDocument && node->mSessionWordCount == -1)
        takeSessionCounts(node);
    updateHasFlags(node);
    if (node->mId >= 0)
        enterLoadedNodes(node);
    return isRead;
}

bool TVLProjectModelPrivate::editUnseen(TVLProjectNode *node, TVL::DocumentType type,
                                        const std::function<void(QTextCursor)> &edit)
{
    TVLTextDocument *document = tvlDocumentOf(node, type);
    if (!document)
        return false;
    const QSignalBlocker blocker(document);
    edit(QTextCursor(document));
    document->setSaved(false);
    updateHasFlags(node);
    return true;
}

bool TVLProjectModelPrivate::fillDocument(TVLProjectNode *node, TVL::DocumentType type,
                                          const QString &text)
{
    return !text.isEmpty()
        && editUnseen(node, type, [&text](QTextCursor cursor) { cursor.insertText(text); });
}

void TVLProjectModelPrivate::createDocuments(TVLProjectNode *node) const
{
    // The documents are the model's children, also when they load behind a question to it.
    auto *self = const_cast<TVLProjectModel *>(q);
    const auto create = [self, node](TVL::DocumentType type) {
        auto *document = new TVLTextDocument(self, self, node, type);
        document->updateEditorLayout();
        return document;
    };
    if (node->canHaveText())
        node->mTextDocument = create(TVL::MainText);
    node->mNotesDocument = create(TVL::NotesText);
    node->mSynopsisDocument = create(TVL::SynopsisText);
}

void TVLProjectModelPrivate::startDocument(TVLTextDocument *document) const
{
    document->setModified(false);
    document->setSaved(true);
    if (document->documentType() == TVL::SynopsisText)
        document->convertTextToDefaultFormat();
    document->clearUndoRedoStacks();
    QObject::connect(document, &QTextDocument::contentsChange, q,
                     &TVLProjectModel::onDocumentContentsChange);
    QObject::connect(document, &QTextDocument::contentsChanged, q,
                     &TVLProjectModel::onDocumentContentsChanged);
}

void TVLProjectModelPrivate::showLoadErrors(const QString &title, const QStringList &errors) const
{
    const QString name = title.isEmpty() ? TVLProjectModel::trUntitledTitle() : title;
    QStringList lines;
    for (const QString &error : errors) {
        const QString line = loadErrorLine(error);
        if (!line.isEmpty())
            lines.append(line.arg(name));
    }
    const QString separator = u"\n----------------------------------------------------"_s;
    const QString plural = errors.size() > 1 ? u"s"_s : QString();

    TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), TVLProjectModel::tr("Project Document Loader"),
        lines.join(u'\n') + separator + u'\n' + errors.join(separator + u'\n') + separator,
        TVLProjectModel::tr(
            "If this is the first time you have received this message, please restart %1, then "
            "restart Tavelinor and try opening this project again.\n\nIf you receive this message "
            "again for the same file%2, back up your project, then%3copy the file%2 from your "
            "Tavelinor project at the path%2 above to a safe location and delete the file%2 from "
            "the project folder. You can then try opening the copied file%2 in another program and "
            "copying and pasting the contents into a new document in your Tavelinor project. If "
            "this message recurs after doing so, delete the document from the Tavelinor project, "
            "then paste first into Notepad to strip all formatting and RTF tags and copy and paste "
            "from there to Tavelinor.\n\nTo prevent losing work, you will not be able to modify or "
            "save the affected file%2 in Tavelinor until you restart.")
            .arg(u"Linux"_s, plural, QString()),
        QMessageBox::Critical);
}

// --- The list of nodes with documents in memory

QList<TVLProjectNode *> TVLProjectModel::loadedNodes() const
{
    QList<TVLProjectNode *> nodes = d->mLoadedNodes;
    nodes.removeAll(nullptr);
    return nodes;
}

void TVLProjectModelPrivate::enterLoadedNodes(TVLProjectNode *node) const
{
    if (mLoadedPositions.contains(node))
        return;
    mLoadedPositions.insert(node, mLoadedNodes.size());
    mLoadedNodes.append(node);
}

void TVLProjectModelPrivate::leaveLoadedNodes(const TVLProjectNode *node) const
{
    const auto position = mLoadedPositions.constFind(node);
    if (position == mLoadedPositions.cend())
        return;
    mLoadedNodes[*position] = nullptr;
    mLoadedPositions.erase(position);
    // Closing the gap at once would move all that came later, for every node that leaves.
    if (mLoadedNodes.size() < 2 * mLoadedPositions.size() + FewLoadedNodes)
        return;
    mLoadedNodes.removeAll(nullptr);
    for (qsizetype i = 0; i < mLoadedNodes.size(); ++i)
        mLoadedPositions.insert(mLoadedNodes.at(i), i);
}

// --- Saving and letting go

bool TVLProjectModel::saveDocuments(TVLProjectNode *node, bool forceRelease,
                                    QStringList *errors) const
{
    return d->saveDocuments(node, forceRelease, errors);
}

bool TVLProjectModelPrivate::saveDocuments(TVLProjectNode *node, bool forceRelease,
                                           QStringList *errors, TVLDocumentSave *save) const
{
    if (!node || !hasDirtyDocument(node))
        return true;
    const bool result = writeDocuments(node, errors, save);
    if (forceRelease || !areDocumentsWanted(node))
        releaseDocuments(node);
    return result;
}

bool TVLProjectModelPrivate::writeDocuments(TVLProjectNode *node, QStringList *errors,
                                            TVLDocumentSave *save) const
{
    const QList<TVLTextDocument *> dirty = dirtyDocuments(node);
    if (dirty.isEmpty())
        return true;
    mSearchFeed->noteWriting(node, dirty);
    const bool result = save ? mFolderFormat->writeDocuments(node, save, errors)
                             : mFolderFormat->writeDocuments(node, errors);
    updateHasFlags(node);
    mSearchFeed->updateTexts(node, dirty);
    mSearchFeed->noteWritten(node, dirty);
    return result;
}

QList<TVLTextDocument *> TVLProjectModelPrivate::takeDocuments(TVLProjectNode *node) const
{
    leaveLoadedNodes(node);
    QList<TVLTextDocument *> documents;
    for (TVLTextDocument **document :
         {&node->mTextDocument, &node->mNotesDocument, &node->mSynopsisDocument}) {
        TVLTextDocument *released = std::exchange(*document, nullptr);
        if (!released)
            continue;
        QObject::disconnect(released, nullptr, q, nullptr);
        released->detach();
        documents.append(released);
    }
    return documents;
}

void TVLProjectModelPrivate::releaseDocuments(TVLProjectNode *node) const
{
    // Not at once: one of their signals may be on the way right now.
    const QList<TVLTextDocument *> documents = takeDocuments(node);
    for (TVLTextDocument *document : documents)
        document->deleteLater();
}

void TVLProjectModelPrivate::letGoOfDocuments(TVLProjectNode *node) const
{
    if (!areDocumentsHeld(node) && !hasDirtyDocument(node))
        qDeleteAll(takeDocuments(node));
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
    auto *document = qobject_cast<TVLTextDocument *>(sender());
    TVLProjectNode *node = document ? document->node() : nullptr;
    if (!node || !node->mParent)
        return;
    // That somebody begins to look at a text doesn't change it.
    if (document->isChangeOfLayout(position, charsRemoved, charsAdded))
        return;
    document->setSaved(false);
    node->mRestoredSnapshotDate = QDateTime();
    node->updateModified();
    node->mWordCount = -1;
    node->mCharacterCount = -1;
    const QPersistentModelIndex index = createIndex(node);
    const TVL::DocumentType type = document->documentType();
    d->mSearchFeed->invalidateText(node, type);
    scheduleDocTextChange(index);
    markProjectAsModified(true);
    // Who hears that the project has changed may remove the item.
    if (index.isValid())
        Q_EMIT documentContentsChange(index, type, position, charsRemoved, charsAdded);
}

void TVLProjectModel::onDocumentContentsChanged()
{
    const auto *document = qobject_cast<TVLTextDocument *>(sender());
    const TVLProjectNode *node = document ? document->node() : nullptr;
    if (node && node->mParent)
        Q_EMIT documentContentsChanged(createIndex(node), document->documentType());
}

void TVLProjectModel::scheduleDocTextChange(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    if (!index.isValid() || !node)
        return;
    d->mDocTextChanges.insert(node);
    if (d->mDocTextChangeTimer == -1)
        d->mDocTextChangeTimer = startTimer(DocTextChangeMs);
}

void TVLProjectModelPrivate::announceDocTextChanges()
{
    q->killTimer(mDocTextChangeTimer);
    mDocTextChangeTimer = -1;
    // Views may remove items and schedule others meanwhile.
    QList<QPersistentModelIndex> indexes;
    const QSet<TVLProjectNode *> changes = std::exchange(mDocTextChanges, {});
    for (const TVLProjectNode *node : changes)
        indexes.append(q->createIndex(node));
    for (const QPersistentModelIndex &index : std::as_const(indexes))
        announceChange(index);
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
