#include "TVLProjectModel.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextMatcher.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>

#include <memory>

namespace {

/** The types of text files whose hashes say what a search may rely on. */
constexpr TVL::DocumentType SearchedFiles[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText,
                                               TVL::CommentsFile};

QString joinedValues(const QMap<QString, QString> &values)
{
    return QStringList(values.values()).join(u' ');
}

} // namespace

bool TVLProjectModel::matchQString(const QString &text, int flags, const QStringList &words)
{
    return tvlMatchQString(text, flags, words);
}

// --- What the search index is told

void TVLProjectModel::addToSearchIndex(const TVLProjectNode *node)
{
    // The texts of an item that is gone stay in the index under its id.
    if (mForgottenIds.remove(node->mId))
        mSearchIndex->forgetTexts(node->mId);
    mSearchIndex->addProjectNode(node);
    if (!node->mCustomMetaData.isEmpty())
        updateSearchedCustomMetaData(node);
}

void TVLProjectModel::addAllToSearchIndex()
{
    // Only quicker: each row stands for itself.
    const bool isBundled = mSearchIndex->transaction();
    tvlForEachNode(mRootNode.get(),
                   [this](const TVLProjectNode *node) { mSearchIndex->addProjectNode(node); });
    if (isBundled)
        mSearchIndex->commit();
}

void TVLProjectModel::updateSearched(const TVLProjectNode *node, TVL::DocumentProperty property,
                                     const QVariant &value) const
{
    mSearchIndex->updatePropertyNode(node, property, value, true);
}

void TVLProjectModel::updateSearchedText(const TVLProjectNode *node,
                                         const TVLTextDocument *document) const
{
    updateSearched(node, TVL::toDocumentProperty(document->documentType()),
                   document->toPlainText());
    if (document->documentType() == TVL::MainText)
        updateSearchedComments(node, document);
}

void TVLProjectModel::invalidateSearchedTexts(const TVLProjectNode *node) const
{
    for (const TVL::DocumentType type : SearchedFiles)
        mSearchIndex->invalidateDocumentNode(node, type);
}

void TVLProjectModel::updateSearchedComments(const TVLProjectNode *node,
                                             const QTextDocument *text) const
{
    updateSearched(node, TVL::CommentsProperty,
                   TVLTextDoc::inspectorNotesToPlainText(text).join(u'\n'));
}

void TVLProjectModel::updateSearchedCustomMetaData(const TVLProjectNode *node) const
{
    updateSearched(node, TVL::CustomMetaDataProperty, joinedValues(node->mCustomMetaData));
}

void TVLProjectModel::forgetChecksums(const TVLProjectNode *node) const
{
    for (const TVL::DocumentType type : SearchedFiles)
        mChecksums->updateHashSumNode(node, type);
}

// --- What it asks

QStringList TVLProjectModel::searchedTexts(const QModelIndex &index,
                                           const QList<TVL::DocumentProperty> &properties) const
{
    const int id = nodeIdentity(index);
    const bool wasLoaded = hasNodeId(id) && findNode(id)->mSynopsisDocument;
    QStringList texts;
    // Found anew each time: a box about a file that can't be read runs the event loop.
    for (const TVL::DocumentProperty property : properties)
        texts.append(searchedText(this->index(id), property));
    if (!wasLoaded && hasNodeId(id))
        letGoOfDocuments(findNode(id));
    return texts;
}

QString TVLProjectModel::searchedText(const QModelIndex &index,
                                      TVL::DocumentProperty property) const
{
    switch (property) {
    case TVL::TitleProperty:
        return title(index, false);
    case TVL::TextProperty:
        return documentPlainText(index, false);
    case TVL::NotesProperty:
        return documentNoteAsPlainText(index);
    case TVL::SynopsisProperty:
        return synopsis(index);
    case TVL::CustomMetaDataProperty:
        return joinedValues(customMetaData(index));
    case TVL::CommentsProperty:
        return inspectorNotesToPlainText(index).join(u'\n');
    default:
        return {};
    }
}

// --- Between sessions

void TVLProjectModel::loadSearchIndex()
{
    if (mMobileProject || mSearchIndex->load())
        return;
    QMessageBox(QMessageBox::Warning, tr("Loading Search Index"),
                tr("Search Index was not fully loaded. Your first project search "
                   "might be slow."
                   "This might be caused by non-standard characters within the "
                   "document contents. "
                   "You might also try \"Tools > Save and Rebuild Search "
                   "Indexes\" to fix the "
                   "problem."),
                QMessageBox::Ok, QApplication::activeWindow())
        .exec();
}

void TVLProjectModel::updateHasTextSynopsisNotesFromDB()
{
    tvlForEachNode(mRootNode.get(), [this](TVLProjectNode *node) {
        node->mHasText = mSearchIndex->hasText(node->mId, TVL::TextProperty);
        node->mHasSynopsis = mSearchIndex->hasText(node->mId, TVL::SynopsisProperty);
        node->mHasDocumentNote = mSearchIndex->hasText(node->mId, TVL::NotesProperty);
    });
}

void TVLProjectModel::saveSearchIndex(bool force)
{
    if (!mMobileProject && (force || mSearchIndex->isModified()))
        mSearchIndex->save();
}

void TVLProjectModel::saveChecksums(bool force)
{
    if (!mMobileProject && (force || mChecksums->isModified()))
        (void)mChecksums->saveChecksums();
}

void TVLProjectModel::saveSearch(bool force)
{
    // A project that isn't on disk has no place for them.
    if (!QFileInfo::exists(TVLProjectFolderFormat::filesPath(mPath)))
        return;
    saveSearchIndex(force);
    // New hashes would vouch for the old texts, which are still in the file when that fails.
    if (!mSearchIndex->isModified())
        saveChecksums(force);
}

void TVLProjectModel::rebuildSearchIndexes(bool showProgress, QWidget *parent)
{
    QList<int> ids;
    tvlForEachNode(mRootNode.get(), [&ids](const TVLProjectNode *node) { ids.append(node->mId); });
    std::unique_ptr<QProgressDialog> progress;
    if (showProgress) {
        progress = std::make_unique<QProgressDialog>(tr("Rebuilding search indexes. Please wait."),
                                                     QString(), 0, int(ids.size()), parent);
        progress->setWindowModality(Qt::ApplicationModal);
        progress->setMinimumDuration(0);
        progress->setValue(0);
    }
    // By id: the dialog, or a box about a file that can't be read, runs the event loop.
    for (const int id : std::as_const(ids)) {
        rebuildSearchRows(id);
        if (progress)
            progress->setValue(progress->value() + 1);
    }
    mChecksums->updateFilesDocsChecksumsFromHdd();
    saveSearch(true);
}

void TVLProjectModel::rebuildSearchRows(int id)
{
    if (!hasNodeId(id))
        return;
    // In place of the rows that are there, which would refuse others beside them.
    (void)mSearchIndex->removeDocument(id);
    mSearchIndex->forgetTexts(id);
    addToSearchIndex(findNode(id));
    mSearchIndex->updateIndexProperties(index(id),
                                        {TVL::SynopsisProperty, TVL::TextProperty,
                                         TVL::NotesProperty, TVL::CustomMetaDataProperty,
                                         TVL::CommentsProperty},
                                        false);
}
