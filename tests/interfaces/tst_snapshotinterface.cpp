#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"

#include <QTemporaryDir>
#include <QTextDocument>

using namespace Qt::StringLiterals;

/** What a program can call of the files of snapshots and of project notes. */
class TstSnapshotInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsOfSnapshots();
    void textsOfSnapshots();
    void changingSnapshots();
    void projectNotes();

    void snapshotsAreReadIntoAReference();
    void projectNotesAreReadIntoAReference();
};

void TstSnapshotInterface::listsOfSnapshots()
{
    areCallable([](const QString &path, QList<TVLSnapshotInfo> &snapshots) {
        gives<QString>(TVLProjectFolderFormat::snapshotFilePath(path, 1, QDateTime()));
        gives<bool>(TVLProjectFolderFormat::hasSnapshots(path, 1));
        gives<bool>(TVLProjectFolderFormat::hasSnapshotsViaSnapshotsDir(QDir(path), 1));
        gives<bool>(TVLProjectFolderFormat::readSnapshots(path, 1, &snapshots));
        gives<bool>(TVLProjectFolderFormat::readSnapshots(path, 1, snapshots));
        gives<bool>(TVLProjectFolderFormat::writeSnapshots(path, 1, snapshots));
        TVLProjectFolderFormat::clearSnapshotsCache(path);
        TVLProjectFolderFormat::fixSnapshotFileNames(path, 1);
    });
}

void TstSnapshotInterface::textsOfSnapshots()
{
    areCallable([](const QString &path, const TVLSnapshotInfo &info, QTextDocument *text,
                   const QMap<int, QUuid> &idToUuid, QString *error) {
        gives<bool>(TVLProjectFolderFormat::readSnapshot(path, 1, info, text, idToUuid));
        gives<bool>(TVLProjectFolderFormat::writeSnapshotDocument(path, 1, info, text, error));
    });
}

void TstSnapshotInterface::changingSnapshots()
{
    areCallable(
        [](const QString &path, const TVLSnapshotInfo &info, QTextDocument *text, QString *error) {
            gives<bool>(TVLProjectFolderFormat::addSnapshot(path, 1, info, text, error));
            gives<bool>(TVLProjectFolderFormat::removeSnapshot(path, 1, info));
            gives<bool>(TVLProjectFolderFormat::setSnapshotTitle(path, 1, QDateTime(), u"a"_s));
            gives<bool>(TVLProjectFolderFormat::mergeSnapshots(path, 1, QList<int>{2}));
        });
}

void TstSnapshotInterface::projectNotes()
{
    areCallable([](const QString &path, bool *ok, QList<QPair<int, QTextDocument *>> &notes,
                   TVLProjectModel *model, QStringList *errors) {
        gives<QDir>(TVLProjectFolderFormat::projectNotesDirectory(path, ok, errors));
        gives<bool>(TVLProjectFolderFormat::writeProjectNotes(path, notes, errors));
        gives<bool>(TVLProjectFolderFormat::readProjectNotes(path, &notes, model, errors));
        gives<bool>(TVLProjectFolderFormat::readProjectNotes(path, notes, model, errors));
        gives<bool>(TVLProjectFolderFormat::removeProjectNote(path, 1, errors));
        gives<bool>(TVLProjectFolderFormat::hasLinksInSyncFileFormat(path));
    });
}

void TstSnapshotInterface::snapshotsAreReadIntoAReference()
{
    const QTemporaryDir folder;
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = u"First"_s;
    snapshot.mDate = QDateTime::currentDateTime();
    QVERIFY(TVLProjectFolderFormat::writeSnapshots(folder.path(), 1, {snapshot}));
    QList<TVLSnapshotInfo> snapshots;
    QVERIFY(TVLProjectFolderFormat::readSnapshots(folder.path(), 1, snapshots));
    QCOMPARE(snapshots.size(), 1);
    QCOMPARE(snapshots.first().mTitle, u"First"_s);
}

void TstSnapshotInterface::projectNotesAreReadIntoAReference()
{
    const QTemporaryDir folder;
    QTextDocument note(u"Words"_s);
    QVERIFY(TVLProjectFolderFormat::writeProjectNotes(folder.path(), {{10, &note}}, nullptr));
    QList<QPair<int, QTextDocument *>> notes;
    QVERIFY(TVLProjectFolderFormat::readProjectNotes(folder.path(), notes, nullptr, nullptr));
    QCOMPARE(notes.size(), 1);
    const std::unique_ptr<QTextDocument> readBack(notes.first().second);
    QCOMPARE(notes.first().first, 10);
    QCOMPARE(readBack->toPlainText(), u"Words"_s);
}

TVL_TEST(TstSnapshotInterface)
#include "tst_snapshotinterface.moc"
