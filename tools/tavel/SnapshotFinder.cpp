#include "SnapshotFinder.h"

#include "TVLCoreUtil.h"
#include "TVLProjectFolderFormat.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool hasName(const TVLSnapshotInfo &snapshot, qsizetype position, const QString &name)
{
    return !name.isEmpty()
        && (name == QString::number(position + 1) || name == dateTextOf(snapshot)
            || name == snapshot.mTitle);
}

} // namespace

std::optional<QList<TVLSnapshotInfo>> readSnapshotList(const QString &projectPath, int itemId,
                                                       QString *error)
{
    QList<TVLSnapshotInfo> snapshots;
    // Reading them would make the folder of all snapshots.
    if (TVLCoreUtil::IsMissing(TVLProjectFolderFormat::snapshotsPath(projectPath)))
        return snapshots;
    if (!TVLProjectFolderFormat::readSnapshots(projectPath, itemId, &snapshots)) {
        *error =
            u"the list of the item's snapshots can't be read: Snapshots/%1.snapshots"_s.arg(itemId);
        return std::nullopt;
    }
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const TVLSnapshotInfo &left, const TVLSnapshotInfo &right) {
                         return left.mDate < right.mDate;
                     });
    return snapshots;
}

QString dateTextOf(const TVLSnapshotInfo &snapshot)
{
    return snapshot.mDate.isValid() ? snapshot.mDate.toUTC().toString(Qt::ISODate) : QString();
}

std::optional<qsizetype> findSnapshot(const QList<TVLSnapshotInfo> &snapshots, const QString &name,
                                      QString *error)
{
    std::optional<qsizetype> found;
    for (qsizetype i = 0; i < snapshots.size(); ++i) {
        if (!hasName(snapshots.at(i), i, name))
            continue;
        if (found) {
            *error = u"'%1' may mean snapshot %2 or %3; give its date"_s.arg(name)
                         .arg(*found + 1)
                         .arg(i + 1);
            return std::nullopt;
        }
        found = i;
    }
    if (!found)
        *error = u"there is no snapshot '%1'"_s.arg(name);
    return found;
}
