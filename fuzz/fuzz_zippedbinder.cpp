#include "BinderRoundTrip.h"
#include "FuzzSupport.h"

#include "TVLProjectFolderFormat.h"
#include "TestBinderProject.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is the zipped copy of a binder. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    TestBinderProject project;
    if (TVLProjectFolderFormat::readZippedBinderFilePath(tvlInputAsFile(data, size), &project))
        tvlCheckBinderRoundTrip(&project);
    return 0;
}
