#pragma once

#include <QString>

// What can't be seen isn't missing: a file in a folder that can't be looked into may hold a
// writer's words, and is not to be taken for one that was never written.

/** Whether there is anything at a path, be it a link that leads nowhere. */
[[nodiscard]] bool tvlIsThere(const QString &path);

/** Whether there is certainly nothing at a path: what can't be looked into may hold it. */
[[nodiscard]] bool tvlIsMissing(const QString &path);
