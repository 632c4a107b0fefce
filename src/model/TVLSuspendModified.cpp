#include "TVLSuspendModified.h"

#include "TVLProjectModel_p.h"

TVLSuspendModified::TVLSuspendModified(TVLProjectModel *model)
    : mSuspended(model->d->mSuspendModified, true)
{
}
