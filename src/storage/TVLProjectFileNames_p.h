#pragma once

#include <QString>

/** Names in a project's folder that more than one source needs. */
namespace TVLProjectFileNames {

inline const QString Version = QStringLiteral("version.txt");
inline const QString WindowSettings = QStringLiteral("ui.ini");
inline const QString BinderAutosave = QStringLiteral("binder.autosave");
inline const QString BinderBackup = QStringLiteral("binder.backup");
/** What the name of an item's folder of snapshots ends in, behind its id. */
inline const QString SnapshotsEnd = QStringLiteral(".snapshots");

[[nodiscard]] inline QString snapshotsFolder(int id)
{
    return QString::number(id) + SnapshotsEnd;
}

} // namespace TVLProjectFileNames
