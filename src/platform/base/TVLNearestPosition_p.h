#pragma once

#include <algorithm>

/**
 * The position of 0 to @p count - 1 at which something stands, looked for from @p hint outwards;
 * -1 for none. What was somewhere a short while ago mostly is not far from there.
 */
template <typename IsThere>
int tvlNearestPosition(int count, int hint, IsThere isThere)
{
    const int start = std::clamp(hint, 0, std::max(0, count - 1));
    for (int distance = 0; distance < count; ++distance) {
        for (const int position : {start - distance, start + distance}) {
            if (position >= 0 && position < count && isThere(position))
                return position;
        }
    }
    return -1;
}
