#include "TVLProjectModel_p.h"

#include "TVLDialogProgress.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLMessageBox.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"
#include "TVLTextMatcher.h"

#include <QApplication>
#include <QFileInfo>

bool TVLProjectModel::matchQString(const QString &text, int flags, const QStringList &words)
{
    return tvlMatchQString(text, flags, words);
}

// --- What the search index asks

const TVLProjectNode *TVLProjectModel::searchedNode(int id) const
{
    const TVLProjectNode *node = findNode(id);
    return node == binderRoot() ? nullptr : node;
}

const TVLProjectNode *TVLProjectModel::searchedNode(const QModelIndex &index) const
{
    return index.isValid() ? projectNode(index) : nullptr;
}

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
    const QList<TVLSearchedText> texts = d->mSearchFeed->texts(id, properties, wasLoaded);
    if (!wasLoaded && hasNodeId(id))
        d->mDocuments->letGo(findNode(id));
    return texts;
}

// --- Between sessions

void TVLProjectModelPrivate::fillSearchIndex()
{
    // Who only reads has nothing to mend: a search asks for the texts that the file doesn't give.
    if (!mSearchFeed->fill(mRootNode.get()) && !mIsOnlyRead)
        warnOfSearchIndex();
    mSearchFeed->takeHasFlags(mRootNode.get());
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

/** Not of a project of which nothing is saved, nor what belongs to the desktop project of a mobile
 * one. */
bool TVLProjectModelPrivate::canSaveSearch() const
{
    return !mMobileProject && !mIsOnlyRead && !isIncompatible();
}

void TVLProjectModel::saveSearchIndex(bool force)
{
    if (d->canSaveSearch())
        d->mSearchFeed->saveTexts(force);
}

void TVLProjectModel::saveChecksums(bool force)
{
    if (d->canSaveSearch())
        d->mSearchFeed->saveChecksums(force);
}

void TVLProjectModelPrivate::saveSearch(bool force)
{
    // A project that isn't on disk has no place for them.
    if (canSaveSearch() && QFileInfo::exists(TVLProjectFolderFormat::filesPath(mPath)))
        mSearchFeed->save(force);
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
        d->mSearchFeed->rebuild(id);
        progress->advance();
    }
    d->mChecksums->dropChangedFilesDocsChecksums();
    d->saveSearch(true);
}
