#pragma once

#include "EditionsProject.h"
#include "FaultyRun.h"

/** Something that is done to a project and may go wrong, and what must be left of the words then.
 */
struct FaultyAction
{
    const char *name;
    bool isOfTheTool; ///< Which guards and locks the project.
    /** Does it to the project in a place. */
    FaultyRun (*run)(const TestProject &place, const Fault &fault);
    /** What there is to complain of afterwards. */
    QStringList (*complaints)(const EditionsProject &original, const TestProject &place,
                              const FaultyRun &run);
};

namespace FaultyActions {

extern const FaultyAction Edit; ///< Two editions of all texts, saved one after the other.
extern const FaultyAction Save; ///< One edition after another, until a fault ends it.
extern const FaultyAction Import; ///< Of five files, by the tool.
extern const FaultyAction Restore; ///< Of a snapshot, by the tool.
extern const FaultyAction RestoreWithoutBackup;
extern const FaultyAction SaveAs; ///< Between two editions.
extern const FaultyAction Merge; ///< Of all chapters.
extern const FaultyAction EmptyTrash;

} // namespace FaultyActions

/** Kills at random ones of the first operations. */
[[nodiscard]] QList<Fault> killsWithin(qsizetype operations, int count, quint32 seed);

/** The operations of an action that goes well, as a log tells them. */
[[nodiscard]] QStringList operationsOf(const FaultyAction &action, const EditionsProject &original);
/** Does an action to copies of a project, each time with another fault, and tells what there was to
 * complain of; how often there was something. */
[[nodiscard]] int lossesOf(const FaultyAction &action, const EditionsProject &original,
                           const QList<Fault> &faults);
