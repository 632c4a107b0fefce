#include "TVLLoadedDocuments_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLDocumentSave_p.h"
#include "TVLHeldItem_p.h"
#include "TVLMessageBox.h"
#include "TVLNodeDocuments_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLTextCounts_p.h"
#include "TVLTextDocument.h"

#include <QApplication>
#include <QPersistentModelIndex>
#include <QRegExp>
#include <QSignalBlocker>
#include <QTextCursor>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int TextChangeMs = 1000;
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

TVLLoadedDocuments::TVLLoadedDocuments(TVLProjectModel *model, const TVLProjectFolderFormat *folder,
                                       TVLSearchFeed *feed)
    : mModel(model)
    , mFolder(folder)
    , mFeed(feed)
{
    mTextChangeTimer.setSingleShot(true);
    mTextChangeTimer.setInterval(TextChangeMs);
    QObject::connect(&mTextChangeTimer, &QTimer::timeout, model, [this] { announceChanges(); });
}

// --- The list

QList<TVLProjectNode *> TVLLoadedDocuments::nodes() const
{
    QList<TVLProjectNode *> nodes = mNodes;
    nodes.removeAll(nullptr);
    return nodes;
}

void TVLLoadedDocuments::enter(TVLProjectNode *node)
{
    if (mPositions.contains(node))
        return;
    mPositions.insert(node, mNodes.size());
    mNodes.append(node);
}

void TVLLoadedDocuments::leave(const TVLProjectNode *node)
{
    const auto position = mPositions.constFind(node);
    if (position == mPositions.cend())
        return;
    mNodes[*position] = nullptr;
    mPositions.erase(position);
    // Closing the gap at once would move all that came later, for every node that leaves.
    if (mNodes.size() < 2 * mPositions.size() + FewLoadedNodes)
        return;
    mNodes.removeAll(nullptr);
    for (qsizetype i = 0; i < mNodes.size(); ++i)
        mPositions.insert(mNodes.at(i), i);
}

// --- Coming into memory

void TVLLoadedDocuments::load(TVLProjectNode *node)
{
    if (!node || node->mSynopsisDocument)
        return;
    const TVLHeldItem held(mModel, node);
    mFolder->inspectTexts(node->mId);
    if (held.node() != node || node->mSynopsisDocument)
        return;
    const QString title = node->mTitle;
    QStringList errors;
    // Comes last because the box runs the event loop, where others may want the same documents, or
    // remove the item.
    if (!loadQuietly(node, &errors))
        showErrors(title, errors);
}

bool TVLLoadedDocuments::loadQuietly(TVLProjectNode *node, QStringList *errors)
{
    create(node);
    const bool isRead = node->mId < 0 || mFolder->readDocuments(node, mModel, errors);

    if (node->mTextDocument)
        start(node->mTextDocument);
    start(node->mNotesDocument);
    start(node->mSynopsisDocument);
    if (node->mTextDocument && node->mSessionWordCount == -1)
        tvlBeginSession(node);
    updateHasFlags(node);
    if (node->mId >= 0)
        enter(node);
    return isRead;
}

void TVLLoadedDocuments::create(TVLProjectNode *node)
{
    const auto newDocument = [this, node](TVL::DocumentType type) {
        auto *document = new TVLTextDocument(mModel, mModel, node, type);
        document->updateEditorLayout();
        return document;
    };
    if (node->canHaveText())
        node->mTextDocument = newDocument(TVL::MainText);
    node->mNotesDocument = newDocument(TVL::NotesText);
    node->mSynopsisDocument = newDocument(TVL::SynopsisText);
}

void TVLLoadedDocuments::start(TVLTextDocument *document)
{
    document->setModified(false);
    document->setSaved(true);
    if (document->documentType() == TVL::SynopsisText)
        document->convertTextToDefaultFormat();
    document->clearUndoRedoStacks();
    QObject::connect(document, &QTextDocument::contentsChange, mModel,
                     &TVLProjectModel::onDocumentContentsChange);
    QObject::connect(document, &QTextDocument::contentsChanged, mModel,
                     &TVLProjectModel::onDocumentContentsChanged);
}

void TVLLoadedDocuments::showErrors(const QString &title, const QStringList &errors)
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

bool TVLLoadedDocuments::editUnseen(TVLProjectNode *node, TVL::DocumentType type,
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

bool TVLLoadedDocuments::fill(TVLProjectNode *node, TVL::DocumentType type, const QString &text)
{
    return !text.isEmpty()
        && editUnseen(node, type, [&text](QTextCursor cursor) { cursor.insertText(text); });
}

// --- Saving and letting go

void TVLLoadedDocuments::askEditors()
{
    // What an editor does now may load and remove items.
    QList<QPersistentModelIndex> indexes;
    const QList<TVLProjectNode *> loaded = nodes();
    indexes.reserve(loaded.size());
    for (const TVLProjectNode *node : loaded)
        indexes.append(mModel->createIndex(node));
    for (const QPersistentModelIndex &index : std::as_const(indexes)) {
        if (index.isValid())
            Q_EMIT mModel->aboutToSave(index);
    }
}

void TVLLoadedDocuments::saveAll(QStringList *failures)
{
    const QList<TVLProjectNode *> loaded = nodes();
    TVLDocumentSave together(mModel->searchedPath());
    for (const TVLProjectNode *node : loaded)
        together.add(node);
    together.begin();
    for (TVLProjectNode *node : loaded) {
        const QString title = node->mTitle;
        QStringList errors;
        if (!save(node, false, &errors, &together))
            failures->append(TVLProjectModel::tr("Could not save project document '%1'\n%2")
                                 .arg(title, errors.join(u'\n')));
    }
}

bool TVLLoadedDocuments::save(TVLProjectNode *node, bool forceRelease, QStringList *errors,
                              TVLDocumentSave *save)
{
    if (!node || !hasDirtyDocument(node))
        return true;
    const bool result = write(node, errors, save);
    if (forceRelease || !areDocumentsWanted(node))
        release(node);
    return result;
}

bool TVLLoadedDocuments::write(TVLProjectNode *node, QStringList *errors, TVLDocumentSave *save)
{
    const QList<TVLTextDocument *> dirty = dirtyDocuments(node);
    if (dirty.isEmpty())
        return true;
    mFeed->noteWriting(node, dirty);
    const bool result =
        save ? mFolder->writeDocuments(node, save, errors) : mFolder->writeDocuments(node, errors);
    updateHasFlags(node);
    mFeed->updateTexts(node, dirty);
    mFeed->noteWritten(node, dirty);
    return result;
}

QList<TVLTextDocument *> TVLLoadedDocuments::take(TVLProjectNode *node)
{
    leave(node);
    QList<TVLTextDocument *> documents;
    for (TVLTextDocument **document :
         {&node->mTextDocument, &node->mNotesDocument, &node->mSynopsisDocument}) {
        TVLTextDocument *released = std::exchange(*document, nullptr);
        if (!released)
            continue;
        QObject::disconnect(released, nullptr, mModel, nullptr);
        released->detach();
        documents.append(released);
    }
    return documents;
}

void TVLLoadedDocuments::release(TVLProjectNode *node)
{
    // Not at once: one of their signals may be on the way right now.
    const QList<TVLTextDocument *> documents = take(node);
    for (TVLTextDocument *document : documents)
        document->deleteLater();
}

void TVLLoadedDocuments::letGo(TVLProjectNode *node)
{
    if (!areDocumentsHeld(node) && !hasDirtyDocument(node))
        qDeleteAll(take(node));
}

void TVLLoadedDocuments::unload(TVLProjectNode *node)
{
    for (TVLTextDocument *document :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument}) {
        if (document)
            document->setModified(false);
    }
    (void)save(node, true, nullptr);
    // Saving lets go only of what it had to write.
    release(node);
}

// --- Changes of texts

void TVLLoadedDocuments::onContentsChange(TVLTextDocument *document, int position, int charsRemoved,
                                          int charsAdded)
{
    TVLProjectNode *node = document->node();
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
    const QPersistentModelIndex index = mModel->createIndex(node);
    const TVL::DocumentType type = document->documentType();
    mFeed->invalidateText(node, type);
    scheduleChange(node);
    mModel->markProjectAsModified(true);
    // Who hears that the project has changed may remove the item.
    if (index.isValid())
        Q_EMIT mModel->documentContentsChange(index, type, position, charsRemoved, charsAdded);
}

void TVLLoadedDocuments::onContentsChanged(const TVLTextDocument *document)
{
    const TVLProjectNode *node = document->node();
    if (node && node->mParent)
        Q_EMIT mModel->documentContentsChanged(mModel->createIndex(node), document->documentType());
}

void TVLLoadedDocuments::scheduleChange(TVLProjectNode *node)
{
    mTextChanges.insert(node);
    if (!mTextChangeTimer.isActive())
        mTextChangeTimer.start();
}

void TVLLoadedDocuments::announceChanges()
{
    // Views may remove items and schedule others meanwhile.
    QList<QPersistentModelIndex> indexes;
    const QSet<TVLProjectNode *> changes = std::exchange(mTextChanges, {});
    for (const TVLProjectNode *node : changes)
        indexes.append(mModel->createIndex(node));
    for (const QPersistentModelIndex &index : std::as_const(indexes))
        tvlAnnounceChange(mModel, index);
}
