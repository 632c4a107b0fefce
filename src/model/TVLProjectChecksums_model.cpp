/*
 * The records of a model's folder are made here and not with the rest of their class, which lies
 * below the model and doesn't know it.
 */
#include "TVLProjectChecksums.h"

#include "TVLProjectModel.h"

TVLProjectChecksums::TVLProjectChecksums(const TVLProjectModel *model)
    : TVLProjectChecksums(model->folderFormat())
{
}
