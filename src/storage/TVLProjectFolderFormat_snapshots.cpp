#include "TVLProjectFolderFormat.h"

#include "TVLBinderReader.h"
#include "TVLBinderText.h"
#include "TVLBinderWriter.h"
#include "TVLProjectFileNames_p.h"
#include "TVLRedoJournal_p.h"
#include "TVLTextDocument.h"

#include "TTextDoc.h"
#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLRegularFile.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

QHash<TVLProjectFolderFormat::SnapshotsKey, QList<TVLSnapshotInfo>>
    TVLProjectFolderFormat::mCachedSnapshotInfo;

namespace {

using Format = TVLProjectFolderFormat;

const QString SnapshotIndexName = u"index.xml"_s;

/** Where an item's snapshots lie, if it has any. */
QString folderOfSnapshots(const QString &path, int id)
{
    return Format::snapshotsPath(Format::calcEnclosingPath(path)) + u'/'
        + TVLProjectFileNames::snapshotsFolder(id);
}

/** The name of a snapshot's file, which is also what identifies it; empty for no date. */
QString fileName(const QDateTime &date)
{
    const QString name = tvlDateTimeToString(date, true);
    return name.isEmpty() ? QString() : name + u".rtf"_s;
}

/** The file of a snapshot, with no folder made for it; empty for no date. */
QString pathOfSnapshot(const QString &path, int id, const QDateTime &date)
{
    const QString name = fileName(date);
    return name.isEmpty() ? QString() : folderOfSnapshots(path, id) + u'/' + name;
}

QByteArray snapshotIndexOf(const QList<TVLSnapshotInfo> &snapshots)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.writeSnapshots(snapshots);
    return buffer.data();
}

bool readSnapshotIndex(const QString &filePath, QList<TVLSnapshotInfo> *snapshots)
{
    TVLRegularFile file(filePath);
    if (QFileInfo(file).isDir() || !file.open(QIODevice::ReadOnly))
        return false;
    TVLBinderReader reader(&file);
    return reader.readSnapshots(snapshots);
}

bool hasOldLinks(const TVLSnapshotInfo &snapshot)
{
    return !snapshot.mLinks.mTargets.isEmpty();
}

/** The links of a text that lead to items by their ids; all others are in its file as they are. */
TVLTextInternalLinkMap linksById(const QTextDocument *document)
{
    TVLTextInternalLinkMap links;
    const QMap<TVLTextRange, QString> addresses = TVLTextDoc::internalLinks(document);
    for (auto address = addresses.cbegin(); address != addresses.cend(); ++address) {
        if (const auto id = TVLTextFormat::linkedNodeId(*address))
            links.mTargets.insert(address.key(), *id);
    }
    return links;
}

enum class Copied {
    Yes,
    Not, ///< There is nothing to copy, or the target has a snapshot of that second.
    Failed,
};

Copied copySnapshotFile(const QString &path, int sourceId, int targetId, const QDateTime &date)
{
    const QString source = pathOfSnapshot(path, sourceId, date);
    if (!QFileInfo::exists(source) || QFileInfo::exists(pathOfSnapshot(path, targetId, date)))
        return Copied::Not;
    const QString target = Format::snapshotFilePath(path, targetId, date);
    return QFile::copy(source, target) ? Copied::Yes : Copied::Failed;
}

} // namespace

// --- What is known of an index

TVLProjectFolderFormat::SnapshotsKey TVLProjectFolderFormat::snapshotsKey(const QString &path,
                                                                          int id)
{
    return {calcEnclosingPath(path), id};
}

QSet<TVLProjectFolderFormat::SnapshotsKey> &TVLProjectFolderFormat::fixedSnapshots()
{
    static QSet<SnapshotsKey> alreadyFixed;
    return alreadyFixed;
}

void TVLProjectFolderFormat::clearSnapshotsCache(const QString &path)
{
    const QString projectPath = calcEnclosingPath(path);
    mCachedSnapshotInfo.removeIf(
        [&projectPath](const auto &entry) { return entry.key().first == projectPath; });
}

void TVLProjectFolderFormat::forgetSnapshots(const QString &path, int id)
{
    const SnapshotsKey key = snapshotsKey(path, id);
    mCachedSnapshotInfo.remove(key);
    fixedSnapshots().remove(key);
}

void TVLProjectFolderFormat::forgetSnapshots(const QString &path)
{
    clearSnapshotsCache(path);
    const QString projectPath = calcEnclosingPath(path);
    fixedSnapshots().removeIf(
        [&projectPath](const SnapshotsKey &key) { return key.first == projectPath; });
}

// --- The index

QString TVLProjectFolderFormat::snapshotFilePath(const QString &path, int id, const QDateTime &date)
{
    bool ok = false;
    QDir directory = snapshotsDirectory(path, &ok);
    const QString name = fileName(date);
    if (!ok || name.isEmpty())
        return {};
    const QString folder = TVLProjectFileNames::snapshotsFolder(id);
    if (!directory.exists(folder) && !directory.mkdir(folder))
        return {};
    return directory.cd(folder) ? directory.filePath(name) : QString();
}

bool TVLProjectFolderFormat::hasSnapshots(const QString &path, int id)
{
    const auto cached = mCachedSnapshotInfo.constFind(snapshotsKey(path, id));
    if (cached != mCachedSnapshotInfo.cend())
        return !cached->isEmpty();
    return hasSnapshotsViaSnapshotsDir(QDir(snapshotsPath(calcEnclosingPath(path))), id);
}

bool TVLProjectFolderFormat::readSnapshots(const QString &path, int id,
                                           QList<TVLSnapshotInfo> *snapshots)
{
    const SnapshotsKey key = snapshotsKey(path, id);
    const auto cached = mCachedSnapshotInfo.constFind(key);
    if (cached != mCachedSnapshotInfo.cend()) {
        *snapshots = *cached;
        return true;
    }
    QDir directory(snapshotsPath(calcEnclosingPath(path)));
    // Most items have no folder, which isn't the same as one that can't be looked into.
    const QString folder = directory.filePath(TVLProjectFileNames::snapshotsFolder(id));
    if (tvlIsMissing(folder))
        return true;
    if (!QFileInfo(folder).isExecutable()
        || !directory.cd(TVLProjectFileNames::snapshotsFolder(id)))
        return false;
    if (!directory.exists(SnapshotIndexName))
        return true;
    QList<TVLSnapshotInfo> found;
    if (!readSnapshotIndex(directory.filePath(SnapshotIndexName), &found))
        return false;
    mCachedSnapshotInfo.insert(key, found);
    *snapshots = found;
    return true;
}

bool TVLProjectFolderFormat::writeSnapshots(const QString &path, int id,
                                            const QList<TVLSnapshotInfo> &snapshots)
{
    const QString folder = TVLProjectFileNames::snapshotsFolder(id);
    bool ok = false;
    QDir directory = snapshotsDirectory(path, &ok);
    if (!ok || (!directory.exists(folder) && !directory.mkdir(folder))) {
        qDebug() << "could not create subdir" << folder;
        return false;
    }
    if (!directory.cd(folder)) {
        qDebug() << "could not enter subdir" << folder;
        return false;
    }
    if (snapshots.isEmpty()) {
        mCachedSnapshotInfo.remove(snapshotsKey(path, id));
        return removeDirectory(directory);
    }
    const QString filePath = directory.filePath(SnapshotIndexName);
    if (!tvlWriteOrUndo(path, {filePath, snapshotIndexOf(snapshots)}, nullptr)) {
        qDebug() << "failed to open file" << filePath;
        return false;
    }
    // The next question gets what the file says, as it will in the next run.
    mCachedSnapshotInfo.remove(snapshotsKey(path, id));
    return true;
}

void TVLProjectFolderFormat::fixSnapshotFileNames(const QString &path, int id)
{
    const SnapshotsKey key = snapshotsKey(path, id);
    if (fixedSnapshots().contains(key))
        return;
    fixedSnapshots().insert(key);
    QDir directory(folderOfSnapshots(path, id));
    if (!directory.exists())
        return;

    // An index of the present form has no place for old links, so it keeps its own form as long as
    // nothing else is to be written. An empty one would take with it the texts it doesn't know of.
    QList<TVLSnapshotInfo> snapshots;
    if (readSnapshots(path, id, &snapshots) && !snapshots.isEmpty()
        && std::none_of(snapshots.begin(), snapshots.end(), hasOldLinks)
        && TVLCoreUtil::ReadBinaryFile(directory.filePath(SnapshotIndexName))
            != snapshotIndexOf(snapshots))
        (void)writeSnapshots(path, id, snapshots);

    const QFileInfoList files = directory.entryInfoList({u"*.rtf"_s}, QDir::Files);
    for (const QFileInfo &file : files) {
        const QString name = fileName(tvlStringToDateTime(file.baseName(), true));
        if (!name.isEmpty() && name != file.fileName())
            (void)directory.rename(file.fileName(), name);
    }
}

// --- One snapshot

bool TVLProjectFolderFormat::readSnapshot(const QString &path, int id,
                                          const TVLSnapshotInfo &snapshot, QTextDocument *document,
                                          const QMap<int, QUuid> &idToUuid)
{
    fixSnapshotFileNames(path, id);
    TVLRegularFile file(pathOfSnapshot(path, id, snapshot.mDate));
    if (!document || QFileInfo(file).isDir() || !file.open(QIODevice::ReadOnly))
        return false;
    TVLTextRtfReader reader(document);
    if (!reader.read(&file))
        return false;
    TVLTextDoc::fromInlineMarkup(document);
    if (hasOldLinks(snapshot)) {
        if (TVLTextDoc::hasTavelinorLinksWithNodeIDs(document))
            TVLTextDoc::convertTavelinorLinkIDsToUuids(document, idToUuid);
        else
            TVLTextDoc::setInternalLinks(document, toTavelinorLinkMap(snapshot.mLinks, idToUuid));
    }
    TVLTextDoc::setComments(document, snapshot.mComments);
    return true;
}

bool TVLProjectFolderFormat::writeSnapshotDocument(const QString &path, int id,
                                                   const TVLSnapshotInfo &snapshot,
                                                   const QTextDocument *document, QString *error)
{
    const QString filePath = snapshotFilePath(path, id, snapshot.mDate);
    if (QFileInfo::exists(filePath))
        return tvlFail(error,
                       tr("Snapshot file already exists. Will not overwrite snapshot file: '%1'")
                           .arg(filePath));

    const std::unique_ptr<QTextDocument> clone(TTextDoc::cloneDocumentQtStyle(document, nullptr));
    clone->setUndoRedoEnabled(false);
    TVLTextDoc::toInlineMarkup(clone.get());
    const QByteArray rtf = TVLTextRtfWriter(nullptr).toRtf(clone.get(), true);

    QString reason;
    bool couldOpen = false;
    if (tvlWriteOrUndo(path, {filePath, rtf}, &reason, &couldOpen))
        return true;
    if (!couldOpen)
        return tvlFail(
            error,
            tr("Could not open snapshot file for writing: '%1'\nError: %2").arg(filePath, reason));
    // Half a text would keep its name from the next attempt.
    TVLCoreUtil::DeleteFile(filePath);
    return tvlFail(
        error,
        tr("RTF Writer failed generating RTF contents for snapshot file: '%1'").arg(filePath));
}

bool TVLProjectFolderFormat::addSnapshot(const QString &path, int id,
                                         const TVLSnapshotInfo &snapshot,
                                         const QTextDocument *document, QString *error)
{
    fixSnapshotFileNames(path, id);
    if (!document)
        return false;
    const auto *text = qobject_cast<const TVLTextDocument *>(document);
    if (text && text->isReadOnly())
        return tvlFail(error, tr("There is no snapshot of a text that could not be read"));
    const QString indexPath = folderOfSnapshots(path, id) + u'/' + SnapshotIndexName;
    QList<TVLSnapshotInfo> snapshots;
    if (!readSnapshots(path, id, &snapshots))
        return tvlFail(error, tr("Could not read the index of the snapshots: '%1'").arg(indexPath));
    if (!writeSnapshotDocument(path, id, snapshot, document, error))
        return false;
    TVLSnapshotInfo added = snapshot;
    added.mLinks = linksById(document);
    added.mComments = TVLTextDoc::comments(document, -1, -1);
    snapshots.append(added);
    return writeSnapshots(path, id, snapshots)
        || tvlFail(error, tr("Could not write the index of the snapshots: '%1'").arg(indexPath));
}

bool TVLProjectFolderFormat::removeSnapshot(const QString &path, int id,
                                            const TVLSnapshotInfo &snapshot)
{
    fixSnapshotFileNames(path, id);
    QList<TVLSnapshotInfo> snapshots;
    if (!readSnapshots(path, id, &snapshots))
        return false;
    // What an index says is exact to the second.
    const QString name = fileName(snapshot.mDate);
    const auto isOfThatSecond = [&name](const TVLSnapshotInfo &info) {
        return fileName(info.mDate) == name;
    };
    const auto found =
        std::find_if(snapshots.begin(), snapshots.end(), [&](const TVLSnapshotInfo &info) {
            return info.mTitle == snapshot.mTitle && isOfThatSecond(info);
        });
    if (found == snapshots.end())
        return false;
    snapshots.erase(found);
    // The text may be that of another entry too, in an index that wasn't made here.
    const bool isShared = std::any_of(snapshots.begin(), snapshots.end(), isOfThatSecond);
    if (!isShared && !name.isEmpty()
        && !TVLCoreUtil::DeleteFile(pathOfSnapshot(path, id, snapshot.mDate)))
        return false;
    return writeSnapshots(path, id, snapshots);
}

bool TVLProjectFolderFormat::setSnapshotTitle(const QString &path, int id, const QDateTime &date,
                                              const QString &title)
{
    fixSnapshotFileNames(path, id);
    QList<TVLSnapshotInfo> snapshots;
    if (!readSnapshots(path, id, &snapshots))
        return false;
    const auto dateText = [](const QDateTime &dateTime) {
        return dateTime.toUTC().toString(Qt::TextDate);
    };
    const auto found = std::find_if(
        snapshots.begin(), snapshots.end(),
        [&, text = dateText(date)](const auto &info) { return dateText(info.mDate) == text; });
    if (found == snapshots.end())
        return false;
    found->mTitle = title;
    return writeSnapshots(path, id, snapshots);
}

// --- From item to item

bool TVLProjectFolderFormat::mergeSnapshots(const QString &path, int id,
                                            const QList<int> &sourceIds)
{
    fixSnapshotFileNames(path, id);
    QList<TVLSnapshotInfo> snapshots;
    if (!readSnapshots(path, id, &snapshots))
        return false;
    bool isComplete = true;
    for (const int sourceId : sourceIds) {
        if (sourceId == id)
            continue;
        // A file under a name of old would not be found.
        fixSnapshotFileNames(path, sourceId);
        QList<TVLSnapshotInfo> additions;
        isComplete = readSnapshots(path, sourceId, &additions) && isComplete;
        for (const TVLSnapshotInfo &addition : std::as_const(additions)) {
            const Copied copied = copySnapshotFile(path, sourceId, id, addition.mDate);
            isComplete = copied != Copied::Failed && isComplete;
            if (copied == Copied::Yes)
                snapshots.append(addition);
        }
    }
    // With nothing to enter, texts that no index knows of stay where they are.
    return (snapshots.isEmpty() || writeSnapshots(path, id, snapshots)) && isComplete;
}

bool TVLProjectFolderFormat::cloneSnapshots(const QString &sourcePath, int sourceId,
                                            const QString &targetPath, int targetId)
{
    if (snapshotsKey(sourcePath, sourceId) == snapshotsKey(targetPath, targetId))
        return true;
    const QDir source(folderOfSnapshots(sourcePath, sourceId));
    if (tvlIsMissing(source.path()))
        return true;
    // Of a folder that can't be listed nothing would come along, without a word.
    if (!QFileInfo(source.path()).isReadable() || !source.exists())
        return false;
    forgetSnapshots(targetPath, targetId);
    bool ok = false;
    const QDir target = ensurePathExists(folderOfSnapshots(targetPath, targetId), &ok);
    if (!ok)
        return false;
    // The index comes last: it never names a text that isn't there.
    QStringList names = source.entryList(QDir::Files);
    if (names.removeOne(SnapshotIndexName))
        names.append(SnapshotIndexName);
    for (const QString &name : std::as_const(names)) {
        if (!replaceFile(source.filePath(name), target.filePath(name)))
            return false;
    }
    return true;
}
