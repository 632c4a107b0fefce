#include "FaultyActions.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

constexpr int Imports = 5;
constexpr int EditionsOfAnEdit = 2;

FaultyRun runWorker(const TestProject &place, const QStringList &work, const Fault &fault)
{
    return runWithFault(QStringLiteral(FAULT_WORKER), QStringList{place.path()} + work,
                        place.enclosingPath(), fault);
}

FaultyRun runTavel(const QStringList &arguments, const TestProject &place, const Fault &fault)
{
    return runWithFault(QStringLiteral(TAVEL_EXECUTABLE), arguments, place.path(), fault);
}

/** The last edition of which the run says that it was saved. */
int savedEdition(const FaultyRun &run)
{
    int edition = FirstEdition;
    for (const QString &line : run.output) {
        if (line.startsWith(u"saved "))
            edition = line.section(u' ', 1, 1).toInt();
    }
    return edition;
}

bool wentWell(const FaultyRun &run, const QString &step)
{
    return run.output.contains(step + u" well"_s);
}

// --- Edits

FaultyRun doEdit(const TestProject &place, const Fault &fault)
{
    return runWorker(place, {u"edit"_s}, fault);
}

QStringList afterEdit(const EditionsProject &original, const TestProject &place,
                      const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    project.expectAll({savedEdition(run), FirstEdition + EditionsOfAnEdit});
    return project.complaints();
}

FaultyRun doSaves(const TestProject &place, const Fault &fault)
{
    return runWorker(place, {u"loop"_s}, fault);
}

QStringList afterSaving(const EditionsProject &original, const TestProject &place,
                        const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    project.expectAll({savedEdition(run), savedEdition(run) + 1});
    return project.complaints();
}

// --- Imports

QString importedTitle(int i)
{
    return u"New %1"_s.arg(i);
}

FaultyRun doImport(const TestProject &place, const Fault &fault)
{
    const QTemporaryDir folder;
    QStringList arguments{u"import"_s, place.path()};
    for (int i = 0; i < Imports; ++i) {
        const QString title = importedTitle(i);
        QFile file(folder.filePath(title + u".txt"_s));
        if (!file.open(QIODevice::WriteOnly)
            || file.write(editionText(title, TVL::MainText, FirstEdition).toUtf8()) < 0)
            qFatal("the files could not be made");
        arguments.append(file.fileName());
    }
    return runTavel(arguments, place, fault);
}

QStringList afterImport(const EditionsProject &original, const TestProject &place,
                        const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    project.expectAll({});
    if (!project.model())
        return project.complaints();
    const TVLProjectModel &model = *project.model();
    int whole = 0;
    int listed = 0;
    for (int i = 0; i < Imports; ++i) {
        const QModelIndex index =
            model.findDirectIndexByTitle(importedTitle(i), model.draftFolder());
        listed += index.isValid() ? 1 : 0;
        whole += index.isValid()
                && editionOf(model.documentPlainText(index, false), importedTitle(i), TVL::MainText)
                    == FirstEdition
            ? 1
            : 0;
    }
    if (whole != listed || (run.status == 0 && whole != Imports))
        project.complain(
            u"status %1, %2 texts listed, %3 whole"_s.arg(run.status).arg(listed).arg(whole));
    return project.complaints();
}

// --- Snapshots

FaultyRun doRestore(const TestProject &place, const Fault &fault)
{
    return runTavel({u"snapshot"_s, u"restore"_s, place.path(), u"Draft/Chapter 1"_s, u"1"_s},
                    place, fault);
}

FaultyRun doRestoreWithoutBackup(const TestProject &place, const Fault &fault)
{
    return runTavel(
        {u"snapshot"_s, u"restore"_s, u"--no-backup"_s, place.path(), u"Draft/Chapter 1"_s, u"1"_s},
        place, fault);
}

/** Complains unless the first chapter is what it was or what it is to be; whether it is the
 * latter. */
bool expectRestored(ReopenedProject *project, const FaultyRun &run)
{
    const QString title = EditionsProject::Chapters.constFirst();
    const int edition = editionOf(project->words(title, TVL::MainText), title, TVL::MainText);
    if (edition != SnapshotEdition && (edition != FirstEdition || run.status == 0))
        project->complain(u"status %1, the text is of edition %2: %3"_s.arg(run.status)
                              .arg(edition)
                              .arg(project->words(title, TVL::MainText).left(60)));
    return edition == SnapshotEdition;
}

void expectTheRest(ReopenedProject *project)
{
    project->expectTexts(EditionsProject::Chapters.mid(1), {});
    project->expectBinder({});
    project->expectNote({});
    project->expectSnapshots();
}

QStringList afterRestore(const EditionsProject &original, const TestProject &place,
                         const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    if (!project.model())
        return project.complaints();
    const QString title = EditionsProject::Chapters.constFirst();
    if (expectRestored(&project, run)
        && !project.hasSnapshot(title, editionText(title, TVL::MainText, FirstEdition)))
        project.complain(u"what was replaced is in no snapshot"_s);
    expectTheRest(&project);
    return project.complaints();
}

QStringList afterRestoreWithoutBackup(const EditionsProject &original, const TestProject &place,
                                      const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    if (!project.model())
        return project.complaints();
    expectRestored(&project, run);
    expectTheRest(&project);
    return project.complaints();
}

// --- Copies

QString copyPath(const TestProject &place)
{
    return place.enclosingPath() + u"/Copy.tavel"_s;
}

FaultyRun doSaveAs(const TestProject &place, const Fault &fault)
{
    return runWorker(place, {u"saveAs"_s, copyPath(place)}, fault);
}

QStringList afterSaveAs(const EditionsProject &original, const TestProject &place,
                        const FaultyRun &run)
{
    const EditionRange range{savedEdition(run), FirstEdition + EditionsOfAnEdit};
    QStringList complaints;
    if (wentWell(run, u"saveAs"_s)) {
        ReopenedProject copy(original, copyPath(place));
        copy.expectAll(range);
        for (const QString &complaint : copy.complaints())
            complaints.append(u"in the copy "_s + complaint);
    }
    ReopenedProject project(original, place.path());
    project.expectAll(complaints.isEmpty() && wentWell(run, u"saveAs"_s)
                          ? EditionRange{FirstEdition, range.most}
                          : range);
    return complaints + project.complaints();
}

// --- What deletes files

FaultyRun doMerge(const TestProject &place, const Fault &fault)
{
    return runWorker(place, {u"merge"_s}, fault);
}

QStringList afterMerge(const EditionsProject &original, const TestProject &place,
                       const FaultyRun &run)
{
    ReopenedProject project(original, place.path());
    project.expectMerged();
    if (project.model() && wentWell(run, u"merge"_s) && wentWell(run, u"save"_s)
        && project.model()->rowCount(project.model()->draftFolder()) != 1)
        project.complain(u"the items are still there"_s);
    return project.complaints();
}

FaultyRun doEmptyTrash(const TestProject &place, const Fault &fault)
{
    return runWorker(place, {u"emptyTrash"_s}, fault);
}

QStringList afterEmptyTrash(const EditionsProject &original, const TestProject &place,
                            const FaultyRun &)
{
    ReopenedProject project(original, place.path());
    project.expectAll({});
    return project.complaints();
}

/** What is wrong with a project's files when it was opened, saved and closed again. */
QStringList afterTheNextSession(const QString &path)
{
    const TVLUnattendedMessageBoxes boxes;
    const std::unique_ptr<TVLProjectModel> model(TVLProjectFolderFormat::openProject(path));
    if (!model)
        return {};
    QStringList complaints;
    if (!model->save(true))
        complaints.append(u"the next save fails"_s);
    model->saveAll(true);
    model->prepareToDestroy();
    const QStringList broken = brokenFiles(path);
    for (const QString &file : broken)
        complaints.append(u"'%1' is broken"_s.arg(file));
    return complaints;
}

/** What keeps the tool from a project that a run of it was killed at. */
QStringList afterTheNextRun(const TestProject &place)
{
    constexpr int PatienceMs = 5000;
    QElapsedTimer timer;
    timer.start();
    const FaultyRun run =
        runTavel({u"snapshot"_s, u"add"_s, place.path(), u"Draft/Chapter 3"_s}, place, {});
    if (run.status == 0 && timer.elapsed() < PatienceMs)
        return {};
    return {u"the next run of the tool ends with %1 after %2 ms: %3"_s.arg(run.status)
                .arg(timer.elapsed())
                .arg(QString::fromLocal8Bit(run.errors))};
}

/** Does an action to a copy of a project; what there is to complain of. */
QStringList complaintsAfter(const FaultyAction &action, const EditionsProject &original,
                            const Fault &fault, QString *operation)
{
    const TestProject place;
    original.writeTo(place);
    const FaultyRun run = action.run(place, fault);
    *operation = run.operations.value(fault.at - 1);
    if (!run.hasEnded)
        return {u"it hangs"_s};
    const bool isKill = fault.error == 0;
    if (run.isKilled && !isKill)
        return {u"it crashes"_s};
    QStringList complaints = action.complaints(original, place, run);
    if (isKill)
        complaints += afterTheNextSession(place.path());
    if (isKill && action.isOfTheTool)
        complaints += afterTheNextRun(place);
    return complaints;
}

} // namespace

const FaultyAction FaultyActions::Edit{"edit and save", false, doEdit, afterEdit};
const FaultyAction FaultyActions::Save{"save", false, doSaves, afterSaving};
const FaultyAction FaultyActions::Import{"import", true, doImport, afterImport};
const FaultyAction FaultyActions::Restore{"restore a snapshot", true, doRestore, afterRestore};
const FaultyAction FaultyActions::RestoreWithoutBackup{
    "restore a snapshot without a backup", true, doRestoreWithoutBackup, afterRestoreWithoutBackup};
const FaultyAction FaultyActions::SaveAs{"save as", false, doSaveAs, afterSaveAs};
const FaultyAction FaultyActions::Merge{"merge", false, doMerge, afterMerge};
const FaultyAction FaultyActions::EmptyTrash{"empty the Trash", false, doEmptyTrash,
                                             afterEmptyTrash};

QList<Fault> killsWithin(qsizetype operations, int count, quint32 seed)
{
    QRandomGenerator random(seed);
    QList<Fault> kills;
    for (int i = 0; i < count; ++i)
        kills.append({random.bounded(2) == 0 ? Fault::Kill : Fault::KillHalfway,
                      1 + int(random.bounded(operations))});
    return kills;
}

QStringList operationsOf(const FaultyAction &action, const EditionsProject &original)
{
    const TestProject place;
    original.writeTo(place);
    const FaultyRun run = action.run(place, {});
    const QStringList complaints = action.complaints(original, place, run);
    if (!complaints.isEmpty())
        qFatal("without a fault: %s", qPrintable(complaints.join(u"; "_s)));
    return run.operations;
}

int lossesOf(const FaultyAction &action, const EditionsProject &original,
             const QList<Fault> &faults)
{
    int losses = 0;
    for (const Fault &fault : faults) {
        QString operation;
        const QStringList complaints = complaintsAfter(action, original, fault, &operation);
        if (complaints.isEmpty())
            continue;
        ++losses;
        qInfo("%s (%s): %s", qPrintable(fault.describe()), qPrintable(operation),
              qPrintable(complaints.join(u"; "_s)));
    }
    return losses;
}
