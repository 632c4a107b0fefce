#pragma once

#include <QString>

class TVLProjectModel;
class TVLProjectNode;

/**
 * The item that a command line names: by its id, by its uuid, or by the titles that lead to it,
 * with slashes between them, such as `Draft/Part One/Chapter One`. Titles may hold slashes of their
 * own; of several items with one path the first counts. Null when there is none.
 */
[[nodiscard]] TVLProjectNode *findItem(const TVLProjectModel &model, const QString &name);
