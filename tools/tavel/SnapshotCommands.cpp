#include "Command.h"
#include "ItemDocuments.h"
#include "ItemFinder.h"
#include "ItemTexts.h"
#include "ProjectOpener.h"
#include "SnapshotFinder.h"
#include "WritableProject.h"

#include "TVLDoors.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QCommandLineOption noBackupOption()
{
    return QCommandLineOption(u"no-backup"_s, u"Takes no snapshot of the present text first."_s);
}

CommandArgument whichArgument()
{
    return {u"WHICH"_s, u"A snapshot's number, date or title, as 'snapshot list' tells them."_s};
}

QString projectPath(const TVLProjectModel &model)
{
    return model.path().absolutePath();
}

/** An item with its snapshots, the oldest first. */
struct ItemSnapshots
{
    TVLProjectNode *node;
    QList<TVLSnapshotInfo> snapshots;
};

/** Finds an item and its snapshots. Nothing, and a line in @p error, when it can't have any. */
std::optional<ItemSnapshots> findItemSnapshots(const TVLProjectModel &model, const QString &name,
                                               QString *error)
{
    TVLProjectNode *node = findItem(model, name);
    if (!node)
        *error = u"there is no item '%1'"_s.arg(name);
    else if (!node->canHaveText())
        *error = u"'%1' has no text of its own"_s.arg(node->mTitle);
    else if (auto snapshots = readSnapshotList(projectPath(model), node->mId, error))
        return ItemSnapshots{node, *snapshots};
    return std::nullopt;
}

/**
 * Waits until the second in which one of the snapshots was taken is over: a snapshot's date is what
 * tells it from others, and it is exact to the second.
 */
QDateTime newSnapshotDate(const QList<TVLSnapshotInfo> &snapshots)
{
    TVLSnapshotInfo present;
    const auto isTaken = [&present](const TVLSnapshotInfo &snapshot) {
        return dateTextOf(snapshot) == dateTextOf(present);
    };
    for (;;) {
        present.mDate = tvlNow();
        if (std::none_of(snapshots.begin(), snapshots.end(), isTaken))
            return present.mDate;
        QThread::msleep(1000 - ulong(present.mDate.time().msec()));
    }
}

/**
 * What is wrong with an item's present text; empty when nothing is. One that can't be read makes no
 * snapshot, and nothing is ever put in its place.
 */
QString presentTextError(const TVLProjectModel &model, TVLProjectNode *node)
{
    QString error;
    (void)readItemText(projectPath(model), node, TVL::MainText, &error);
    return error;
}

/** Takes a snapshot of an item's present text; empty, or what went wrong. */
QString takeSnapshot(TVLProjectModel *model, const ItemSnapshots &item, const QString &title)
{
    const QModelIndex index = model->createIndex(item.node);
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = title;
    snapshot.mDate = newSnapshotDate(item.snapshots);
    TVLTextDocument *text = model->referenceText(index);
    QString error;
    const bool isTaken = model->addSnapshotWithDocument(index, snapshot, text, &error);
    model->dereferenceItem(text);
    if (isTaken)
        return {};
    return error.isEmpty() ? u"the snapshot could not be written"_s : error;
}

/** A snapshot in words. */
QString describeSnapshot(const TVLSnapshotInfo &snapshot)
{
    return snapshot.mTitle.isEmpty() ? dateTextOf(snapshot)
                                     : u"%1 '%2'"_s.arg(dateTextOf(snapshot), snapshot.mTitle);
}

QString unreadable(const TVLSnapshotInfo &snapshot)
{
    return u"the snapshot can't be read: %1"_s.arg(describeSnapshot(snapshot));
}

// --- add

ExitStatus add(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    QString error;
    const auto project = WritableProject::open(arguments.at(0), &error);
    const auto item =
        project ? findItemSnapshots(*project->model(), arguments.at(1), &error) : std::nullopt;
    if (!item)
        return console->fail(error);
    error = presentTextError(*project->model(), item->node);
    if (error.isEmpty())
        error = takeSnapshot(project->model(), *item, arguments.value(2));
    if (!error.isEmpty())
        return console->fail(error);
    console->writeLine(oneLine(u"Took a snapshot of '%1'"_s.arg(item->node->mTitle)));
    return ExitStatus::Done;
}

// --- list

QJsonArray listToJson(const QList<TVLSnapshotInfo> &snapshots)
{
    QJsonArray array;
    for (const TVLSnapshotInfo &snapshot : snapshots)
        array.append(QJsonObject{{u"number"_s, array.size() + 1},
                                 {u"date"_s, toJson(snapshot.mDate)},
                                 {u"title"_s, snapshot.mTitle}});
    return array;
}

ExitStatus list(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    QString error;
    const auto model = openToRead(arguments.at(0), &error);
    const auto item = model ? findItemSnapshots(*model, arguments.at(1), &error) : std::nullopt;
    if (!item)
        return console->fail(error);
    if (wantsJson(parser)) {
        console->write(QJsonDocument(listToJson(item->snapshots)).toJson());
        return ExitStatus::Done;
    }
    for (qsizetype i = 0; i < item->snapshots.size(); ++i) {
        const TVLSnapshotInfo &snapshot = item->snapshots.at(i);
        const QString place = u"%1  %2  "_s.arg(i + 1, 3).arg(dateTextOf(snapshot), 20);
        console->writeLine(oneLine(place + snapshot.mTitle));
    }
    return ExitStatus::Done;
}

// --- show

ExitStatus show(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    QString error;
    const auto model = openToRead(arguments.at(0), &error);
    const auto item = model ? findItemSnapshots(*model, arguments.at(1), &error) : std::nullopt;
    const auto which = item ? findSnapshot(item->snapshots, arguments.at(2), &error) : std::nullopt;
    if (!which)
        return console->fail(error);
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    const TVLSnapshotInfo &snapshot = item->snapshots.at(*which);
    if (!model->loadSnapshot(model->createIndex(item->node), snapshot, &document))
        return console->fail(unreadable(snapshot));
    console->write(plainTextOf(document));
    return ExitStatus::Done;
}

// --- restore

/** Puts a snapshot in place of an item's text; empty, or what went wrong. */
QString restoreText(WritableProject *project, TVLProjectNode *node, const TVLSnapshotInfo &snapshot)
{
    TVLProjectModel *model = project->model();
    const QModelIndex index = model->createIndex(node);
    // A reference, so that a failed save doesn't let go of the text.
    TVLTextDocument *text = model->referenceText(index);
    QString error;
    if (!model->loadSnapshotIntoMainText(index, snapshot))
        error = unreadable(snapshot);
    else
        (void)project->save(&error);
    model->dereferenceItem(text);
    return error;
}

ExitStatus restore(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    QString error;
    const auto project = WritableProject::open(arguments.at(0), &error);
    const auto item = project && project->canSave(&error)
        ? findItemSnapshots(*project->model(), arguments.at(1), &error)
        : std::nullopt;
    const auto which = item ? findSnapshot(item->snapshots, arguments.at(2), &error) : std::nullopt;
    if (!which)
        return console->fail(error);
    const TVLSnapshotInfo &snapshot = item->snapshots.at(*which);
    error = presentTextError(*project->model(), item->node);
    if (error.isEmpty() && !parser.isSet(noBackupOption())) {
        const QString title = u"Before going back to %1"_s.arg(describeSnapshot(snapshot));
        error = takeSnapshot(project->model(), *item, title);
        if (error.isEmpty())
            console->writeLine(u"Took a snapshot of the present text"_s);
    }
    if (error.isEmpty())
        error = restoreText(project.get(), item->node, snapshot);
    if (!error.isEmpty())
        return console->fail(error);
    console->writeLine(
        oneLine(u"Restored '%1' as of %2"_s.arg(item->node->mTitle, describeSnapshot(snapshot))));
    return ExitStatus::Done;
}

} // namespace

QList<Command> snapshotCommands()
{
    const CommandArgument title{u"TITLE"_s, u"What to call the snapshot."_s,
                                CommandArgument::AtMostOnce};
    return {
        {u"snapshot add"_s,
         u"Takes a snapshot of an item's text."_s,
         {projectArgument(), itemArgument(), title},
         {},
         add},
        {u"snapshot list"_s,
         u"Lists the snapshots of an item, the oldest first."_s,
         {projectArgument(), itemArgument()},
         {jsonOption()},
         list},
        {u"snapshot show"_s,
         u"Writes a snapshot as plain text."_s,
         {projectArgument(), itemArgument(), whichArgument()},
         {},
         show},
        {u"snapshot restore"_s,
         u"Takes an item's text back to a snapshot, and saves the project."_s,
         {projectArgument(), itemArgument(), whichArgument()},
         {noBackupOption()},
         restore},
    };
}
