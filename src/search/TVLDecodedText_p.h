#pragma once

#include <QString>

#include <string>
#include <string_view>

/**
 * The text that bytes in UTF-8 stand for. Those that are no UTF-8 become replacement characters; a
 * byte order mark at the start is a character of the text like any other.
 */
[[nodiscard]] inline QString tvlDecodedText(std::string_view utf8)
{
    constexpr std::string_view ByteOrderMark = "\xef\xbb\xbf";
    if (!utf8.starts_with(ByteOrderMark))
        return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    // Only behind another character it isn't dropped.
    const std::string guarded = ' ' + std::string(utf8);
    return QString::fromUtf8(guarded.data(), qsizetype(guarded.size())).mid(1);
}
