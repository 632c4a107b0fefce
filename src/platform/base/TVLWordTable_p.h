#pragma once

#include <QString>
#include <QStringView>

/** One row of a table that pairs an enumeration's value with the word that files use for it. */
template <typename Value>
struct TVLWord
{
    Value value;
    QStringView word;
};

/** The word of a value; the first row that holds it wins, and @p fallback is for a value without
 * one. */
template <typename Value, std::size_t Size>
[[nodiscard]] constexpr QStringView tvlWordOf(const TVLWord<Value> (&table)[Size], Value value,
                                              QStringView fallback)
{
    for (const TVLWord<Value> &row : table) {
        if (row.value == value)
            return row.word;
    }
    return fallback;
}

/** The value of a word, case-sensitive; the first row wins, @p fallback is for an unknown word. */
template <typename Value, std::size_t Size>
[[nodiscard]] constexpr Value tvlValueOf(const TVLWord<Value> (&table)[Size], QStringView word,
                                         Value fallback)
{
    for (const TVLWord<Value> &row : table) {
        if (row.word == word)
            return row.value;
    }
    return fallback;
}
