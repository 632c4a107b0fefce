#include "TVLProjectModel.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextMatcher.h"

#include <QApplication>
#include <QMessageBox>
#include <QProgressDialog>

#include <initializer_list>
#include <memory>

namespace {

QString plainText(const QTextDocument *document)
{
    return document ? document->toPlainText() : QString();
}

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
    if (mForgottenIds.contains(node->mId)) {
        mSearchIndex->forgetTexts(node->mId);
        mForgottenIds.remove(node->mId);
    }
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
                                     const QVariant &value, bool isConfirmed) const
{
    mSearchIndex->updatePropertyNode(node, property, value, isConfirmed);
}

void TVLProjectModel::updateSearchedTexts(const TVLProjectNode *node,
                                          const TVLProjectNode *textsOf) const
{
    struct Row
    {
        TVL::DocumentProperty property;
        const TVLTextDocument *document;
    };
    // A text that isn't in memory is asked for by the next search.
    for (const Row &row : {Row{TVL::NotesProperty, textsOf->mNotesDocument},
                           Row{TVL::SynopsisProperty, textsOf->mSynopsisDocument},
                           Row{TVL::TextProperty, textsOf->mTextDocument}})
        updateSearched(node, row.property, plainText(row.document), row.document != nullptr);
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

// --- What it asks

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
    QString error;
    if (mSearchIndex->load(&error))
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
    if (force || mSearchIndex->isModified())
        mSearchIndex->save();
}

void TVLProjectModel::saveChecksums(bool force)
{
    if (force || mChecksums->isModified())
        (void)mChecksums->saveChecksums();
}

void TVLProjectModel::rebuildSearchIndexes(bool showProgress, QWidget *parent)
{
    std::unique_ptr<QProgressDialog> progress;
    if (showProgress) {
        progress = std::make_unique<QProgressDialog>(tr("Rebuilding search indexes. Please wait."),
                                                     QString(), 0, totalNodesCount(), parent);
        progress->setWindowModality(Qt::ApplicationModal);
        progress->show();
    }
    int done = 0;
    tvlForEachNode(mRootNode.get(), [&](const TVLProjectNode *node) {
        addToSearchIndex(node);
        mSearchIndex->updateIndexProperties(createIndex(node),
                                            {TVL::SynopsisProperty, TVL::TextProperty,
                                             TVL::NotesProperty, TVL::CustomMetaDataProperty,
                                             TVL::CommentsProperty},
                                            false);
        if (progress)
            progress->setValue(++done);
    });
    saveSearchIndex(true);
    saveChecksums(true);
}
