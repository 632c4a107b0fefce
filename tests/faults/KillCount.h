#pragma once

#include <QtGlobal>

/** How often a process is killed: as told by the environment, where one takes many times as long to
 * come up, else as usual. */
inline int killCount(int usual)
{
    const int kills = qEnvironmentVariableIntValue("TVL_KILLS");
    return kills > 0 ? kills : usual;
}
