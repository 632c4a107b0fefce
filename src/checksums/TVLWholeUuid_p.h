#pragma once

#include <QStringView>
#include <QUuid>

/** A whole text as a uuid; null when it is none. QUuid alone takes anything that begins like one.
 */
[[nodiscard]] inline QUuid tvlWholeUuid(QStringView text)
{
    constexpr qsizetype Length = 36;
    return text.size() == Length ? QUuid::fromString(text) : QUuid();
}
