#include "TVLSearchFeed_p.h"

#include "TVLNodeDocuments_p.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"

#include <algorithm>
#include <utility>

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

TVLSearchFeed::TVLSearchFeed(const TVLProjectModel *model, TVLSearchIndex *index,
                             TVLProjectChecksums *checksums)
    : mModel(model)
    , mIndex(index)
    , mChecksums(checksums)
{
}

// --- Items that come and go

bool TVLSearchFeed::fill(const TVLProjectNode *root)
{
    QList<const TVLProjectNode *> nodes;
    tvlForEachNode(root, [&nodes](const TVLProjectNode *node) { nodes.append(node); });
    if (!mModel->isMobileProject())
        return mIndex->fill(nodes);
    // The file is that of the desktop project.
    for (const TVLProjectNode *node : std::as_const(nodes))
        add(node);
    return true;
}

void TVLSearchFeed::takeHasFlags(const TVLProjectNode *root) const
{
    const QHash<TVL::DocumentProperty, QSet<int>> ids = mIndex->idsWithTexts();
    const QSet<int> texts = ids.value(TVL::TextProperty);
    const QSet<int> synopses = ids.value(TVL::SynopsisProperty);
    const QSet<int> notes = ids.value(TVL::NotesProperty);
    tvlForEachNode(root, [&](TVLProjectNode *node) {
        node->mHasText = texts.contains(node->mId);
        node->mHasSynopsis = synopses.contains(node->mId);
        node->mHasDocumentNote = notes.contains(node->mId);
    });
}

void TVLSearchFeed::add(const TVLProjectNode *node)
{
    // The texts of an item that is gone stay in the index under its id.
    if (mForgottenIds.remove(node->mId))
        mIndex->forgetTexts(node->mId);
    mIndex->addProjectNode(node);
    if (!node->mCustomMetaData.isEmpty())
        updateCustomMetaData(node);
}

void TVLSearchFeed::forget(const TVLProjectNode *node)
{
    (void)mIndex->removeDocument(node->mId);
    mForgottenIds.insert(node->mId);
}

void TVLSearchFeed::rebuild(int id)
{
    if (!mModel->hasNodeId(id))
        return;
    // In place of the rows that are there, which would refuse others beside them.
    (void)mIndex->removeDocument(id);
    mIndex->forgetTexts(id);
    add(mModel->findNode(id));
    mIndex->updateIndexProperties(mModel->index(id),
                                  {TVL::SynopsisProperty, TVL::TextProperty, TVL::NotesProperty,
                                   TVL::CustomMetaDataProperty, TVL::CommentsProperty},
                                  false);
}

// --- What is searched of an item's record

void TVLSearchFeed::updateValue(const TVLProjectNode *node, TVL::DocumentProperty property,
                                const QVariant &value)
{
    mIndex->updatePropertyNode(node, property, value, true);
}

void TVLSearchFeed::updateCustomMetaData(const TVLProjectNode *node)
{
    updateValue(node, TVL::CustomMetaDataProperty, TVLSearchIndex::customMetaDataText(node));
}

void TVLSearchFeed::updateKeywords(const TVLProjectNode *node)
{
    if (node->mId >= 0)
        mIndex->setDocumentKeywords(node->mId, node->mKeywords);
}

void TVLSearchFeed::updateRecord(const TVLProjectNode *node)
{
    updateValue(node, TVL::TitleProperty, node->mTitle);
    updateValue(node, TVL::LabelProperty, node->mLabelId);
    updateValue(node, TVL::StatusProperty, node->mStatusId);
    updateCustomMetaData(node);
    updateKeywords(node);
}

// --- Texts

void TVLSearchFeed::invalidateText(const TVLProjectNode *node, TVL::DocumentType type)
{
    mIndex->invalidateDocumentNode(node, type);
    if (type == TVL::MainText) // Notes in the margin come and go with the words they stand at.
        mIndex->invalidatePropertyNode(node, TVL::CommentsProperty);
}

void TVLSearchFeed::invalidateTexts(const TVLProjectNode *node)
{
    mIndex->invalidateDocuments(node->mId);
}

void TVLSearchFeed::updateComments(const TVLProjectNode *node, const QTextDocument *text)
{
    mIndex->updatePropertyNode(node, TVL::CommentsProperty, commentsText(text), false);
}

void TVLSearchFeed::updateTexts(const TVLProjectNode *node, const QList<TVLTextDocument *> &written)
{
    for (const TVL::DocumentType type : {TVL::NotesText, TVL::SynopsisText, TVL::MainText}) {
        const TVLTextDocument *document = tvlDocumentOf(node, type);
        // What can't be read, or could not be written, isn't known from its file.
        if (document && (document->isReadOnly() || !document->isSaved()))
            continue;
        if (std::find(written.begin(), written.end(), document) != written.end()) {
            updateText(node, document);
            continue;
        }
        refreshText(node, TVL::toDocumentProperty(type));
        if (type == TVL::MainText)
            refreshText(node, TVL::CommentsProperty);
    }
}

/** Of a document that was just written. */
void TVLSearchFeed::updateText(const TVLProjectNode *node, const TVLTextDocument *document)
{
    updateValue(node, TVL::toDocumentProperty(document->documentType()), document->toPlainText());
    if (document->documentType() == TVL::MainText && !document->areCommentsReadOnly())
        updateValue(node, TVL::CommentsProperty, commentsText(document));
}

/** Of a document that wasn't: its file may have been changed since it was read. */
void TVLSearchFeed::refreshText(const TVLProjectNode *node, TVL::DocumentProperty property)
{
    const QModelIndex index = mModel->createIndex(node);
    if (!mIndex->isConfirmed(node->mId, property, text(index, property)))
        mIndex->updateIndexProperties(index, {property}, false);
}

QList<TVLSearchedText> TVLSearchFeed::texts(int id, const QList<TVL::DocumentProperty> &properties,
                                            bool wasLoaded) const
{
    QList<TVLSearchedText> texts;
    // Found anew each time: a box about a file that can't be read runs the event loop.
    for (const TVL::DocumentProperty property : properties) {
        TVLSearchedText searched;
        searched.text = text(mModel->index(id), property);
        searched.isOfFile = TVL::canConvertToDocType(property) && mModel->hasNodeId(id)
            && isAsInFile(mModel->findNode(id), property, searched.text, wasLoaded);
        texts.append(searched);
    }
    return texts;
}

/** Whether a document's text, which is in memory, is that of its file: it was just read, or the
 * file gives the same when it is read once more. */
bool TVLSearchFeed::isAsInFile(const TVLProjectNode *node, TVL::DocumentProperty property,
                               const QString &text, bool wasLoaded) const
{
    const TVLTextDocument *document = tvlDocumentOf(node, documentTypeOf(property));
    if (!document || document->isReadOnly() || !document->isSaved()
        || (property == TVL::CommentsProperty && document->areCommentsReadOnly()))
        return false;
    return !wasLoaded || fileGives(node, property, text);
}

bool TVLSearchFeed::fileGives(const TVLProjectNode *node, TVL::DocumentProperty property,
                              const QString &text) const
{
    const TVL::DocumentType type = documentTypeOf(property);
    TVLTextDocument document(nullptr, nullptr, nullptr, type);
    document.setUndoRedoEnabled(false);
    TVLProjectNode reader({node->mId, node->mUuid}, nullptr);
    (type == TVL::MainText        ? reader.mTextDocument
         : type == TVL::NotesText ? reader.mNotesDocument
                                  : reader.mSynopsisDocument) = &document;
    const bool isRead = mModel->folderFormat()->readDocuments(&reader, mModel, nullptr);
    return isRead
        && text
        == (property == TVL::CommentsProperty ? commentsText(&document) : document.toPlainText());
}

QString TVLSearchFeed::text(const QModelIndex &index, TVL::DocumentProperty property) const
{
    switch (property) {
    case TVL::TitleProperty:
        return mModel->title(index, false);
    case TVL::TextProperty:
        return mModel->documentPlainText(index, false);
    case TVL::NotesProperty:
        return mModel->documentNoteAsPlainText(index);
    case TVL::SynopsisProperty:
        return mModel->synopsis(index);
    case TVL::CustomMetaDataProperty:
        return TVLSearchIndex::customMetaDataText(mModel->projectNode(index));
    case TVL::CommentsProperty:
        return mModel->inspectorNotesToPlainText(index).join(u'\n');
    default:
        return {};
    }
}

// --- Files

void TVLSearchFeed::noteWriting(const TVLProjectNode *node,
                                const QList<TVLTextDocument *> &documents)
{
    if (!mModel->isMobileProject())
        mChecksums->noteWriting(node, fileTypesOf(documents));
}

void TVLSearchFeed::noteWritten(const TVLProjectNode *node,
                                const QList<TVLTextDocument *> &documents)
{
    QList<TVLTextDocument *> saved = documents;
    saved.removeIf([](const TVLTextDocument *document) { return !document->isSaved(); });
    if (!mModel->isMobileProject())
        mChecksums->noteWritten(node, fileTypesOf(saved));
}

void TVLSearchFeed::noteReplacing(const TVLProjectNode *node)
{
    QList<TVL::DocumentType> recorded;
    for (const TVL::DocumentType type : SearchedFiles) {
        if (!mChecksums->loadedChecksum(node->mId, type).isEmpty())
            recorded.append(type);
    }
    if (!mModel->isMobileProject())
        mChecksums->noteWriting(node, recorded);
}

void TVLSearchFeed::forgetChecksums(const TVLProjectNode *node)
{
    for (const TVL::DocumentType type : SearchedFiles)
        mChecksums->updateHashSumNode(node, type);
}

// --- Between sessions

void TVLSearchFeed::saveTexts(bool force)
{
    if (!force && !mIndex->isModified())
        return;
    // Beside hashes, a text that has none isn't taken for that of its file.
    mChecksums->makeFile();
    mIndex->save();
}

void TVLSearchFeed::saveChecksums(bool force)
{
    if (!force && !mChecksums->isModified())
        return;
    // New hashes would vouch for the old texts, which are still in the file when this fails.
    saveTexts(false);
    if (!mIndex->isModified())
        (void)mChecksums->saveChecksums();
}

void TVLSearchFeed::save(bool force)
{
    saveTexts(force);
    if (!mIndex->isModified())
        saveChecksums(force);
}
