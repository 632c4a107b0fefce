#include "BinderRoundTrip.h"
#include "FuzzSupport.h"

#include "TVLProjectFolderFormat.h"
#include "TestBinderProject.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is a binder, read as a project's opening reads it. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    TestBinderProject project;
    if (!project.read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size))))
        return 0;
    project.mUserProjectData =
        TVLProjectFolderFormat::readUserProjectData(tvlInputAsFile(data, size));
    tvlCheckBinderRoundTrip(&project);
    return 0;
}
