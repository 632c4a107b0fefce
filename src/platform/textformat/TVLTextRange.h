#pragma once

#include <compare>

/** A run of characters in a document: where it starts and how long it is, in UTF-16 units. */
struct TVLTextRange
{
    int mLocation = 0;
    int mLength = 0;

    // The linter takes the comparison with 0 behind this for one of a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const TVLTextRange &, const TVLTextRange &) = default;
};
