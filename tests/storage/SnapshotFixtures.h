#pragma once

#include "TVLSnapshotInfo.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QUuid>

class QTextDocument;
class TestProject;

/** A moment that is so many seconds after a certain one, in local time. */
[[nodiscard]] QDateTime momentOf(int second);
/** A snapshot of that moment, as an index names it. */
[[nodiscard]] TVLSnapshotInfo snapshotOf(const QString &title, int second);

/** Path of an item's folder of snapshots below the project's folder. */
[[nodiscard]] QString snapshotsFolder(int id = 12);
/** Path of an item's index below the project's folder. */
[[nodiscard]] QString snapshotsIndex(int id = 12);
/** Path of a snapshot's file below the project's folder. */
[[nodiscard]] QString snapshotFile(int second, int id = 12);

/** Adds a snapshot of a text; the result is the message of a failure, or empty. */
[[nodiscard]] QString addSnapshot(const TestProject &project, const QString &title, int second,
                                  const QString &text, int id = 12);
/** The titles in an item's index as it is on disk, or a word that says that it can't be read. */
[[nodiscard]] QStringList snapshotTitles(const TestProject &project, int id = 12);
/** The text of a snapshot, or a word that says that it can't be read. */
[[nodiscard]] QString snapshotText(const TestProject &project, int second, int id = 12);

/** As long as it lives no file can become larger than that; writing fails then. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(int bytes);
    ~FileSizeLimit();
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    quint64 mOldLimit;
};
