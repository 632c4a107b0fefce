#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLDoors.h"
#include "TVLErrorText_p.h"
#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLMessageBox.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDoc.h"

#include <QApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

namespace {

/** Puts a text in place of a document's, as one edit. */
void replaceText(QTextDocument *document, const QTextDocument *text)
{
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    // What is left of the old text is an empty paragraph with its formats, and it may stay one.
    const QTextBlock first = text->begin();
    QTextBlockFormat format = first.blockFormat();
    format.clearProperty(QTextFormat::ObjectIndex);
    cursor.setBlockFormat(format);
    cursor.setBlockCharFormat(first.charFormat());
    if (text->isEmpty() && first.textList())
        cursor.createList(first.textList()->format());
    TVLTextDoc::appendDocument(cursor, text);
    cursor.endEditBlock();
    document->setMetaInformation(QTextDocument::DocumentTitle,
                                 text->metaInformation(QTextDocument::DocumentTitle));
}

/** Why there can be no snapshot of a text; empty if there can be one. */
QString snapshotError(const TVLProjectNode *node, const QTextDocument *document)
{
    const QString title =
        node->mTitle.isEmpty() ? TVLProjectModel::trUntitledTitle() : node->mTitle;
    if (node->mId < 0)
        return TVLProjectModel::tr("'%1' has no id, so there is no place for a snapshot of it.")
            .arg(title);
    const auto *text = qobject_cast<const TVLTextDocument *>(document);
    if (text && text->isReadOnly())
        return TVLProjectModel::tr(
                   "The text of '%1' could not be read, so there is no snapshot of it.")
            .arg(title);
    if (text && text->areCommentsReadOnly())
        return TVLProjectModel::tr(
                   "The comments of '%1' could not be read, so there is no snapshot of it.")
            .arg(title);
    return {};
}

} // namespace

QList<TVLSnapshotInfo> TVLProjectModel::snapshots(const QModelIndex &index) const
{
    QList<TVLSnapshotInfo> snapshots;
    if (index.isValid() && canHaveText(index))
        (void)TVLProjectFolderFormat::readSnapshots(d->mPath, nodeIdentity(index), &snapshots);
    return snapshots;
}

bool TVLProjectModel::addSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info)
{
    if (!index.isValid() || !canHaveText(index))
        return false;
    const QPersistentModelIndex item = index;
    TVLTextDocument *text = referenceText(index);
    QString error;
    if (addSnapshotWithDocument(item, info, text, &error)) {
        dereferenceItem(text);
        return true;
    }
    TVLMessageBox::showMessageBox(QApplication::activeWindow(), tr("Snapshot Writer"), error,
                                  QString(), QMessageBox::Critical);
    return false;
}

bool TVLProjectModel::addSnapshot(const QModelIndex &index, const QString &title)
{
    TVLSnapshotInfo info;
    info.mTitle = title;
    info.mDate = tvlNow();
    return addSnapshot(index, info);
}

bool TVLProjectModel::addSnapshotWithDocument(const QModelIndex &index, const TVLSnapshotInfo &info,
                                              const QTextDocument *document, QString *error)
{
    TVLProjectNode *node = index.isValid() ? projectNode(index) : nullptr;
    if (!node)
        return false;
    const QString failure = snapshotError(node, document);
    if (!failure.isEmpty())
        return tvlFail(error, failure);
    if (!TVLProjectFolderFormat::addSnapshot(d->mPath, node->mId, info, document, error))
        return false;
    node->mHasSnapshots = true;
    d->announceSnapshots(index);
    return true;
}

void TVLProjectModelPrivate::announceSnapshots(const QModelIndex &index)
{
    const QPersistentModelIndex changed = index;
    Q_EMIT q->snapshotsChanged(index, index);
    tvlAnnounceChange(q, changed);
}

bool TVLProjectModel::addSnapshotWithExternalDocument(const QModelIndex &index,
                                                      const TVLSnapshotInfo &info,
                                                      const QTextDocument *document, QString *error)
{
    return addSnapshotWithDocument(index, info, document, error);
}

bool TVLProjectModel::loadSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info,
                                   QTextDocument *document) const
{
    if (!index.isValid() || !canHaveText(index))
        return false;
    const bool isRead = TVLProjectFolderFormat::readSnapshot(d->mPath, nodeIdentity(index), info,
                                                             document, d->mIdMap);
    markDocumentContentsDirty(document);
    return isRead;
}

bool TVLProjectModel::loadSnapshotIntoMainText(const QModelIndex &index,
                                               const TVLSnapshotInfo &info)
{
    if (!index.isValid() || !canHaveText(index))
        return false;
    // The reader can't take back what it did to a text when the file turns out to be damaged.
    QTextDocument snapshot;
    snapshot.setUndoRedoEnabled(false);
    const int id = nodeIdentity(index);
    const TVLHeldItem item(this, projectNode(index));
    const TVLHeldDocument text(this, index, TVL::MainText);
    if (!text || text->isReadOnly()
        || !TVLProjectFolderFormat::readSnapshot(d->mPath, id, info, &snapshot, d->mIdMap))
        return false;
    replaceText(text.get(), &snapshot);
    TVLProjectNode *node = item.node();
    if (!node)
        return false;
    node->mRestoredSnapshotDate = info.mDate;
    markDocumentContentsDirty(text.get());
    return true;
}

bool TVLProjectModel::setSnapshotTitle(const QModelIndex &index, const QDateTime &date,
                                       const QString &title)
{
    if (!index.isValid() || !canHaveText(index)
        || !TVLProjectFolderFormat::setSnapshotTitle(d->mPath, nodeIdentity(index), date, title))
        return false;
    d->announceSnapshots(index);
    return true;
}

bool TVLProjectModel::removeSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info)
{
    if (!index.isValid() || !canHaveText(index)
        || !TVLProjectFolderFormat::removeSnapshot(d->mPath, nodeIdentity(index), info))
        return false;
    projectNode(index)->mHasSnapshots = !snapshots(index).isEmpty();
    tvlAnnounceChange(this, index);
    return true;
}
