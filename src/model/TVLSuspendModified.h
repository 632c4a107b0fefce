#pragma once

#include "TVL.h"

#include <QScopedValueRollback>

class TVLProjectModel;

/**
 * Keeps a project from being marked as modified for as long as it lives, as for changes that come
 * from its own files. One inside another leaves it as it is.
 */
class [[nodiscard]] TVLSuspendModified
{
public:
    /** The model has to live as long. */
    TVL_EXPORT explicit TVLSuspendModified(TVLProjectModel *model);

private:
    QScopedValueRollback<bool> mSuspended;
};
