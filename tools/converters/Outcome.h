#pragma once

#include "TTextTransform.h"
#include "TVLProcess.h"

#include <QString>

/** How a conversion, or a step of one, has ended. */
struct Outcome
{
    TTextTransform::Error code = TTextTransform::NoError;
    QString reason = {}; ///< What is said of it; if empty, what the error says itself.

    [[nodiscard]] bool isDone() const { return code == TTextTransform::NoError; }
};

/** How a run of an outside program has ended; @p name is what users know it by. */
[[nodiscard]] Outcome outcomeOf(const TVLProcess::Result &result, const QString &name);

/** Whether a file that should have been written is there; @p said is what its writer said. */
[[nodiscard]] Outcome outcomeOfFile(const QString &path, const QByteArray &said);

/** Copies a file, also over one that is there. */
[[nodiscard]] Outcome copyFile(const QString &source, const QString &target);

/** Says what went wrong on standard error, and gives the exit status of the program. */
[[nodiscard]] int exitStatusOf(const Outcome &outcome);
