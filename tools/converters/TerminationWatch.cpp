#include "TerminationWatch.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t isTerminating = 0;

void noteTermination(int /*signal*/)
{
    isTerminating = 1;
}

} // namespace

TerminationWatch::TerminationWatch()
{
    std::signal(SIGTERM, noteTermination);
    std::signal(SIGINT, noteTermination);
#ifdef SIGHUP
    std::signal(SIGHUP, noteTermination);
#endif
}

bool TerminationWatch::isCanceled() const
{
    return isTerminating != 0;
}
