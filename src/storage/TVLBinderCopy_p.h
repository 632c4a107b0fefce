#pragma once

#include <QString>

// The binder is written in place, and `binder.autosave` is what an opening falls back on when that
// went wrong. So a save has to know whether that copy really holds the binder that it is about to
// write over; times and the mere presence of a file don't say so.

/**
 * Whether the project's zipped copy holds exactly what its binder file does. Found out by reading
 * both, and known by a look at their sizes and times until one of them changes.
 */
[[nodiscard]] bool tvlHasAutosaveOf(const QString &projectPath, const QString &binderFile);

/** Makes the zipped copy of a binder file; whether it now holds what the binder does. */
[[nodiscard]] bool tvlMakeAutosaveOf(const QString &projectPath, const QString &binderFile);

/**
 * Makes the zipped copy if it isn't that of the binder file; never from a binder that can't be
 * opened, for then the copy is the better of the two. Whether there is such a copy now.
 */
[[nodiscard]] bool tvlEnsureAutosaveOf(const QString &projectPath, const QString &binderFile);
