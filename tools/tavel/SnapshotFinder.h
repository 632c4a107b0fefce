#pragma once

#include "TVLSnapshotInfo.h"

#include <QList>
#include <QString>

#include <optional>

/**
 * The snapshots of an item, the oldest first; their numbers on the command line are their places in
 * this list, from 1. Nothing, and a line in @p error, when they can't be read. An item without
 * snapshots stays as it is on disk.
 */
[[nodiscard]] std::optional<QList<TVLSnapshotInfo>> readSnapshotList(const QString &projectPath,
                                                                     int itemId, QString *error);

/** The date of a snapshot as the tool writes and reads it: ISO 8601 in UTC; empty for none. */
[[nodiscard]] QString dateTextOf(const TVLSnapshotInfo &snapshot);

/**
 * Where in the list the snapshot is that a command line names by its number, its date or its title.
 * Nothing, and a line in @p error, when there is none, or when the name fits several.
 */
[[nodiscard]] std::optional<qsizetype> findSnapshot(const QList<TVLSnapshotInfo> &snapshots,
                                                    const QString &name, QString *error);
