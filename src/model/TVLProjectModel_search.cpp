#include "TVLProjectModel_p.h"

#include "TVLDialogProgress.h"
#include "TVLMessageBox.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextMatcher.h"

#include <QApplication>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace {

/** The types of text files whose hashes say what a search may rely on. */
constexpr TVL::DocumentType SearchedFiles[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText,
                                               TVL::CommentsFile};

/** The document that a searched text is taken from. */
TVL::DocumentType documentTypeOf(TVL::DocumentProperty property)
{
    return property == TVL::CommentsProperty ? TVL::MainText : TVL::toDocumentType(property);
}

QString commentsText(const QTextDocument *text)
{
    return TVLTextDoc::inspectorNotesToPlainText(text).join(u'\n');
}

/** The types of the files that documents are written to. */
QList<TVL::DocumentType> fileTypesOf(const QList<TVLTextDocument *> &documents)
{
    QList<TVL::DocumentType> types;
    for (const TVLTextDocument *document : documents) {
        types.append(document->documentType());
        if (document->documentType() == TVL::MainText)
            types.append(TVL::CommentsFile);
    }
    return types;
}

} // namespace

bool TVLProjectModel::matchQString(const QString &text, int flags, const QStringList &words)
{
    return tvlMatchQString(text, flags, words);
}

// --- What the search index is told

void TVLProjectModelPrivate::addToSearchIndex(const TVLProjectNode *node)
{
    // The texts of an item that is gone stay in the index under its id.
    if (mForgottenIds.remove(node->mId))
        mSearchIndex->forgetTexts(node->mId);
    mSearchIndex->addProjectNode(node);
    if (!node->mCustomMetaData.isEmpty())
        updateSearchedCustomMetaData(node);
}

void TVLProjectModelPrivate::updateSearched(const TVLProjectNode *node,
                                            TVL::DocumentProperty property,
                                            const QVariant &value) const
{
    mSearchIndex->updatePropertyNode(node, property, value, true);
}

void TVLProjectModelPrivate::updateSearchedTexts(const TVLProjectNode *node,
                                                 const QList<TVLTextDocument *> &written) const
{
    for (const TVL::DocumentType type : {TVL::NotesText, TVL::SynopsisText, TVL::MainText}) {
        const TVLTextDocument *document = documentOf(node, type);
        // What can't be read, or could not be written, isn't known from its file.
        if (document && (document->isReadOnly() || !document->isSaved()))
            continue;
        if (std::find(written.begin(), written.end(), document) != written.end()) {
            updateSearchedText(node, document);
            continue;
        }
        refreshSearchedText(node, TVL::toDocumentProperty(type));
        if (type == TVL::MainText)
            refreshSearchedText(node, TVL::CommentsProperty);
    }
}

/** Of a document that was just written. */
void TVLProjectModelPrivate::updateSearchedText(const TVLProjectNode *node,
                                                const TVLTextDocument *document) const
{
    updateSearched(node, TVL::toDocumentProperty(document->documentType()),
                   document->toPlainText());
    if (document->documentType() == TVL::MainText && !document->areCommentsReadOnly())
        updateSearched(node, TVL::CommentsProperty, commentsText(document));
}

/** Of a document that wasn't: its file may have been changed since it was read. */
void TVLProjectModelPrivate::refreshSearchedText(const TVLProjectNode *node,
                                                 TVL::DocumentProperty property) const
{
    const QModelIndex index = q->createIndex(node);
    if (!mSearchIndex->isConfirmed(node->mId, property, searchedText(index, property)))
        mSearchIndex->updateIndexProperties(index, {property}, false);
}

void TVLProjectModelPrivate::invalidateSearchedTexts(const TVLProjectNode *node) const
{
    mSearchIndex->invalidateDocuments(node->mId);
}

void TVLProjectModelPrivate::updateSearchedComments(const TVLProjectNode *node,
                                                    const QTextDocument *text) const
{
    // They are not on disk yet.
    mSearchIndex->updatePropertyNode(node, TVL::CommentsProperty, commentsText(text), false);
}

void TVLProjectModelPrivate::updateSearchedCustomMetaData(const TVLProjectNode *node) const
{
    updateSearched(node, TVL::CustomMetaDataProperty, TVLSearchIndex::customMetaDataText(node));
}

void TVLProjectModelPrivate::updateSearchedRecord(const TVLProjectNode *node)
{
    updateSearched(node, TVL::TitleProperty, node->mTitle);
    updateSearched(node, TVL::LabelProperty, node->mLabelId);
    updateSearched(node, TVL::StatusProperty, node->mStatusId);
    updateSearchedCustomMetaData(node);
    if (node->mId >= 0)
        mSearchIndex->setDocumentKeywords(node->mId, node->mKeywords);
}

void TVLProjectModelPrivate::forgetChecksums(const TVLProjectNode *node) const
{
    for (const TVL::DocumentType type : SearchedFiles)
        mChecksums->updateHashSumNode(node, type);
}

// --- What checks are told

void TVLProjectModelPrivate::noteWriting(const TVLProjectNode *node,
                                         const QList<TVLTextDocument *> &documents) const
{
    if (!mMobileProject)
        mChecksums->noteWriting(node, fileTypesOf(documents));
}

void TVLProjectModelPrivate::noteWritten(const TVLProjectNode *node,
                                         const QList<TVLTextDocument *> &documents) const
{
    QList<TVLTextDocument *> saved = documents;
    saved.removeIf([](const TVLTextDocument *document) { return !document->isSaved(); });
    if (!mMobileProject)
        mChecksums->noteWritten(node, fileTypesOf(saved));
}

void TVLProjectModelPrivate::noteReplacing(const TVLProjectNode *node) const
{
    QList<TVL::DocumentType> recorded;
    for (const TVL::DocumentType type : SearchedFiles) {
        if (!mChecksums->loadedChecksum(node->mId, type).isEmpty())
            recorded.append(type);
    }
    if (!mMobileProject)
        mChecksums->noteWriting(node, recorded);
}

// --- What it asks

QStringList TVLProjectModel::searchedTexts(const QModelIndex &index,
                                           const QList<TVL::DocumentProperty> &properties) const
{
    QStringList texts;
    const QList<TVLSearchedText> fileTexts = searchedFileTexts(index, properties);
    for (const TVLSearchedText &text : fileTexts)
        texts.append(text.text);
    return texts;
}

QList<TVLSearchedText>
TVLProjectModel::searchedFileTexts(const QModelIndex &index,
                                   const QList<TVL::DocumentProperty> &properties) const
{
    const int id = nodeIdentity(index);
    const bool wasLoaded = hasNodeId(id) && findNode(id)->mSynopsisDocument;
    QList<TVLSearchedText> texts;
    // Found anew each time: a box about a file that can't be read runs the event loop.
    for (const TVL::DocumentProperty property : properties) {
        TVLSearchedText text;
        text.text = d->searchedText(this->index(id), property);
        text.isOfFile = TVL::canConvertToDocType(property) && hasNodeId(id)
            && d->isAsInFile(findNode(id), property, text.text, wasLoaded);
        texts.append(text);
    }
    if (!wasLoaded && hasNodeId(id))
        d->letGoOfDocuments(findNode(id));
    return texts;
}

/** Whether a document's text, which is in memory, is that of its file: it was just read, or the
 * file gives the same when it is read once more. */
bool TVLProjectModelPrivate::isAsInFile(const TVLProjectNode *node, TVL::DocumentProperty property,
                                        const QString &text, bool wasLoaded) const
{
    const TVLTextDocument *document = documentOf(node, documentTypeOf(property));
    if (!document || document->isReadOnly() || !document->isSaved()
        || (property == TVL::CommentsProperty && document->areCommentsReadOnly()))
        return false;
    return !wasLoaded || fileGives(node, property, text);
}

bool TVLProjectModelPrivate::fileGives(const TVLProjectNode *node, TVL::DocumentProperty property,
                                       const QString &text) const
{
    const TVL::DocumentType type = documentTypeOf(property);
    TVLTextDocument document(nullptr, nullptr, nullptr, type);
    document.setUndoRedoEnabled(false);
    TVLProjectNode reader({node->mId, node->mUuid}, nullptr);
    (type == TVL::MainText        ? reader.mTextDocument
         : type == TVL::NotesText ? reader.mNotesDocument
                                  : reader.mSynopsisDocument) = &document;
    const bool isRead = mFolderFormat->readDocuments(&reader, q, nullptr);
    return isRead
        && text
        == (property == TVL::CommentsProperty ? commentsText(&document) : document.toPlainText());
}

QString TVLProjectModelPrivate::searchedText(const QModelIndex &index,
                                             TVL::DocumentProperty property) const
{
    switch (property) {
    case TVL::TitleProperty:
        return q->title(index, false);
    case TVL::TextProperty:
        return q->documentPlainText(index, false);
    case TVL::NotesProperty:
        return q->documentNoteAsPlainText(index);
    case TVL::SynopsisProperty:
        return q->synopsis(index);
    case TVL::CustomMetaDataProperty:
        return TVLSearchIndex::customMetaDataText(q->projectNode(index));
    case TVL::CommentsProperty:
        return q->inspectorNotesToPlainText(index).join(u'\n');
    default:
        return {};
    }
}

// --- Between sessions

void TVLProjectModelPrivate::fillSearchIndex()
{
    QList<const TVLProjectNode *> nodes;
    tvlForEachNode(mRootNode.get(), [&nodes](const TVLProjectNode *node) { nodes.append(node); });
    if (mMobileProject) { // The file is that of the desktop project.
        for (const TVLProjectNode *node : std::as_const(nodes))
            addToSearchIndex(node);
    } else if (!mSearchIndex->fill(nodes) && !mIsOnlyRead) {
        // Who only reads has nothing to mend: a search asks for the texts that the file doesn't
        // give.
        warnOfSearchIndex();
    }
    updateHasTextSynopsisNotesFromDB();
}

void TVLProjectModelPrivate::warnOfSearchIndex()
{
    TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), TVLProjectModel::tr("Loading Search Index"),
        TVLProjectModel::tr("Search Index was not fully loaded. Your first project search "
                            "might be slow."
                            "This might be caused by non-standard characters within the "
                            "document contents. "
                            "You might also try \"Tools > Save and Rebuild Search "
                            "Indexes\" to fix the "
                            "problem."),
        QString(), QMessageBox::Warning);
}

void TVLProjectModelPrivate::updateHasTextSynopsisNotesFromDB()
{
    const QHash<TVL::DocumentProperty, QSet<int>> ids = mSearchIndex->idsWithTexts();
    const QSet<int> texts = ids.value(TVL::TextProperty);
    const QSet<int> synopses = ids.value(TVL::SynopsisProperty);
    const QSet<int> notes = ids.value(TVL::NotesProperty);
    tvlForEachNode(mRootNode.get(), [&](TVLProjectNode *node) {
        node->mHasText = texts.contains(node->mId);
        node->mHasSynopsis = synopses.contains(node->mId);
        node->mHasDocumentNote = notes.contains(node->mId);
    });
}

/** Not of a project of which nothing is saved, nor what belongs to the desktop project of a mobile
 * one. */
bool TVLProjectModelPrivate::canSaveSearch() const
{
    return !mMobileProject && !mIsOnlyRead && !isIncompatible();
}

void TVLProjectModel::saveSearchIndex(bool force)
{
    if (!d->canSaveSearch() || !(force || d->mSearchIndex->isModified()))
        return;
    // Beside hashes, a text that has none isn't taken for that of its file.
    d->mChecksums->makeFile();
    d->mSearchIndex->save();
}

void TVLProjectModel::saveChecksums(bool force)
{
    if (!d->canSaveSearch() || !(force || d->mChecksums->isModified()))
        return;
    // New hashes would vouch for the old texts, which are still in the file when this fails.
    saveSearchIndex(false);
    if (!d->mSearchIndex->isModified())
        (void)d->mChecksums->saveChecksums();
}

void TVLProjectModelPrivate::saveSearch(bool force)
{
    // A project that isn't on disk has no place for them.
    if (!QFileInfo::exists(TVLProjectFolderFormat::filesPath(mPath)))
        return;
    q->saveSearchIndex(force);
    if (!mSearchIndex->isModified())
        q->saveChecksums(force);
}

void TVLProjectModel::rebuildSearchIndexes(bool showProgress, QWidget *parent)
{
    QList<int> ids;
    tvlForEachNode(d->mRootNode.get(),
                   [&ids](const TVLProjectNode *node) { ids.append(node->mId); });
    const auto progress = TVLDialogProgress::make(
        showProgress, {.modality = Qt::ApplicationModal, .isShownAtOnce = true}, parent);
    progress->begin(tr("Rebuilding search indexes. Please wait."), int(ids.size()));
    // By id: the dialog, or a box about a file that can't be read, runs the event loop.
    for (const int id : std::as_const(ids)) {
        d->rebuildSearchRows(id);
        progress->advance();
    }
    d->mChecksums->dropChangedFilesDocsChecksums();
    d->saveSearch(true);
}

void TVLProjectModelPrivate::rebuildSearchRows(int id)
{
    if (!q->hasNodeId(id))
        return;
    // In place of the rows that are there, which would refuse others beside them.
    (void)mSearchIndex->removeDocument(id);
    mSearchIndex->forgetTexts(id);
    addToSearchIndex(q->findNode(id));
    mSearchIndex->updateIndexProperties(q->index(id),
                                        {TVL::SynopsisProperty, TVL::TextProperty,
                                         TVL::NotesProperty, TVL::CustomMetaDataProperty,
                                         TVL::CommentsProperty},
                                        false);
}
