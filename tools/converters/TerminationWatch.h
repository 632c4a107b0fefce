#pragma once

#include "TVLProgress.h"

/**
 * Cancels when the process is told to terminate, so that what it has started goes before it does,
 * and its files with it. Only one may live at a time.
 */
class TerminationWatch : public TVLProgress
{
public:
    TerminationWatch();

    [[nodiscard]] bool isCanceled() const override;
};
