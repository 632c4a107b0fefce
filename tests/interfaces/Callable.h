#pragma once

#include <QTest>

#include <type_traits>

/**
 * Has calls of public names compiled and linked, which nobody makes: a program that uses the shared
 * library as these do can be built. @p calls is a lambda without a capture; what it needs, it takes
 * as parameters.
 */
template <typename Calls>
void areCallable(Calls calls)
{
    const auto address = +calls;
    QVERIFY(address != nullptr);
}

/** Takes a value, of which the type has to be just this one. */
template <typename Type, typename Value>
void gives(Value && /*value*/)
{
    static_assert(std::is_same_v<Type, std::remove_cvref_t<Value>>);
}
