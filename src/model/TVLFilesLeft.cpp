#include "TVLFilesLeft_p.h"

#include "TVLFilePresence_p.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFileNames_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNodeProperties.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

using Format = TVLProjectFolderFormat;

/** Whether a listing of a folder says all there is to say of it. */
bool canBeListed(const QString &folderPath)
{
    const QFileInfo folder(folderPath);
    return folder.exists() ? folder.isReadable() : tvlIsMissing(folderPath);
}

QSet<int> idsWithSnapshots(const QString &snapshotsPath)
{
    QSet<int> ids;
    const QStringList names =
        QDir(snapshotsPath)
            .entryList({u'*' + TVLProjectFileNames::SnapshotsEnd},
                       QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        bool isNumber = false;
        const int id =
            QStringView(name).chopped(TVLProjectFileNames::SnapshotsEnd.size()).toInt(&isNumber);
        if (isNumber)
            ids.insert(id);
    }
    return ids;
}

/** Whether an item may have files or snapshots, by the names that they have. */
bool mayHaveFiles(const QString &path, const TVLProjectNodeProperties &item)
{
    QStringList filePaths = Format::nodeFilePaths(path, item.mId, item.mFileExtension);
    filePaths.append(Format::constructMainNodeFilePath(path, item.mId, QString()));
    filePaths.append(Format::indexCardImagePath(path, item.mId, item.mIndexCardImageFileExtension));
    filePaths.append(Format::snapshotsPath(path) + u'/'
                     + TVLProjectFileNames::snapshotsFolder(item.mId));
    return !std::all_of(filePaths.begin(), filePaths.end(), tvlIsMissing);
}

} // namespace

bool TVLFilesLeft::has(const QString &projectPath, int id)
{
    if (projectPath.isEmpty())
        return false;
    const QString path = Format::calcEnclosingPath(projectPath);
    if (!mIsListed) {
        const QString docsPath = Format::filesDocsPath(path);
        const QString snapshotsPath = Format::snapshotsPath(path);
        mIds.unite(TVLNumberedFiles(path).ids());
        mIds.unite(idsWithSnapshots(snapshotsPath));
        mIsListed = canBeListed(docsPath) && canBeListed(snapshotsPath);
        // As long as a folder can't be listed, what can be seen of it is asked for by name.
        if (!mIsListed && Format::hasFiles(path, id))
            return true;
    }
    return mIds.contains(id);
}

void TVLFilesLeft::add(const QString &projectPath, const TVLProjectNodeProperties &item)
{
    if (item.mId >= 0 && !projectPath.isEmpty()
        && mayHaveFiles(Format::calcEnclosingPath(projectPath), item))
        mIds.insert(item.mId);
    else
        mIds.remove(item.mId);
}

void TVLFilesLeft::remove(int id, bool areGone)
{
    if (areGone)
        mIds.remove(id);
    else
        mIds.insert(id);
}
