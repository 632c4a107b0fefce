#pragma once

#include <QStringView>

/**
 * Whether a name comes before another one in the order that people expect: numbers in it count by
 * their value, so that `Chapter 9` comes before `Chapter 10`, and capitals don't matter unless the
 * names are equal otherwise. It is the same on every machine, whatever its language.
 */
[[nodiscard]] bool naturalLessThan(QStringView left, QStringView right);
