#pragma once

#include <QtGlobal>

#include <algorithm>

/** How many random cases a test tries: as many as usual, or the share that the environment tells,
 * where one takes many times as long. */
inline int testCases(int usual)
{
    const int percent = qEnvironmentVariableIntValue("TVL_TEST_PERCENT");
    return percent > 0 ? std::max(1, int(qint64(usual) * percent / 100)) : usual;
}
