/* The snapshots of items: the list that each folder of them has, and every text. */
#include "ProjectCheck.h"

#include "Console.h"
#include "SnapshotFinder.h"

#include "TVLCoreUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSnapshotInfo.h"
#include "TVLTextFiles.h"

#include <QFileInfo>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString ListName = u"index.xml"_s;

/** The name of a snapshot's file as it is now; older versions wrote the date in other forms. */
QString presentName(const QString &fileName)
{
    const QDateTime date = Format::stringToDateTime(QFileInfo(fileName).baseName(), true);
    return Format::dateTimeToString(date, true);
}

QStringList textsIn(const QDir &folder)
{
    return folder.entryList({u"*.rtf"_s}, QDir::Files | QDir::System);
}

/** The path of a snapshot's text, whether there is one or not. */
QString textPathOf(const QDir &folder, const TVLSnapshotInfo &snapshot)
{
    const QString name = Format::dateTimeToString(snapshot.mDate, true);
    const QString path = folder.filePath(name + u".rtf"_s);
    if (!TVLCoreUtil::IsMissing(path))
        return path;
    const QStringList names = textsIn(folder);
    const auto found = std::find_if(names.begin(), names.end(), [&name](const QString &fileName) {
        return presentName(fileName) == name;
    });
    return found == names.end() ? path : folder.filePath(*found);
}

} // namespace

void ProjectCheck::checkSnapshots()
{
    const QString path = Format::snapshotsPath(mFiles.projectPath);
    const QFileInfo all(path);
    if (!all.isDir() || !all.isReadable() || !all.isExecutable()) {
        if (!TVLCoreUtil::IsMissing(path))
            add(u"unreadableSnapshots"_s, relative(path),
                u"the folder of the snapshots can't be looked into"_s);
        return;
    }
    const QDir directory(path);
    const QStringList names = directory.entryList(
        QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        const std::optional<int> id = leadingNumber(name, u".snapshots"_s);
        const QUuid uuid = QUuid::fromString(name);
        const bool isOrphan = id ? !mById.contains(*id) : !uuid.isNull() && !mByUuid.contains(uuid);
        if (isOrphan)
            add(u"orphanedSnapshots"_s, relative(directory.filePath(name)),
                u"the snapshots belong to no item"_s);
        else if (id)
            checkSnapshotsOf(*id, directory.filePath(name));
    }
}

void ProjectCheck::checkSnapshotsOf(int id, const QString &folderPath)
{
    const QDir folder(folderPath);
    const QString listPath = folder.filePath(ListName);
    const bool isOutOfSight = !QFileInfo::exists(listPath) && !TVLCoreUtil::IsMissing(listPath);
    QList<TVLSnapshotInfo> snapshots;
    if (isOutOfSight || !Format::readSnapshots(mFiles.projectPath, id, &snapshots))
        add(u"unreadableSnapshots"_s, relative(listPath),
            u"the list of the item's snapshots can't be read"_s);
    else if (!QFileInfo::exists(listPath) && !textsIn(folder).isEmpty())
        add(u"missingSnapshots"_s, relative(listPath),
            u"there are texts of snapshots, but no list of them"_s);
    for (const TVLSnapshotInfo &snapshot : std::as_const(snapshots))
        checkSnapshot(folder, snapshot);
}

void ProjectCheck::checkSnapshot(const QDir &folder, const TVLSnapshotInfo &snapshot)
{
    const QString path = textPathOf(folder, snapshot);
    const QString what =
        u"the snapshot '%1' of %2"_s.arg(oneLine(snapshot.mTitle), dateTextOf(snapshot));
    if (TVLCoreUtil::IsMissing(path)) {
        add(u"missingSnapshot"_s, relative(path), u"%1 has no text"_s.arg(what));
        return;
    }
    QString error = u"it is no file"_s;
    if (!QFileInfo(path).isFile() || !tvlReadRichTextFile(path, &error))
        add(u"unreadableSnapshot"_s, relative(path),
            u"%1 can't be read: %2"_s.arg(what, oneLine(error)));
}
