#pragma once

#include <QSettings>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

// What settings in an ini file have in common.
//
// A file has texts for simple values. Taking the text also of values that weren't through the file
// yet makes them read the same before and after. Each reader gives nothing for a value of another
// kind.

std::optional<QString> tvlStoredText(const QVariant &stored);
/** As QVariant makes a flag of a text: false for an empty one, 0 and false, true for any other. */
std::optional<bool> tvlStoredFlag(const QVariant &stored);
std::optional<int> tvlStoredInt(const QVariant &stored);
/** A finite number only. */
std::optional<double> tvlStoredReal(const QVariant &stored);
std::optional<QStringList> tvlStoredTexts(const QVariant &stored);
/** Nothing also when one of several elements isn't a number. An empty list also for a value that
 * can't be decoded: a file doesn't tell the two apart. */
std::optional<QList<int>> tvlStoredInts(const QVariant &stored);

/**
 * The form in which tvlStoredInts() reads a list: the numbers as texts, which stay readable in the
 * file, or one empty text for none.
 */
QVariant tvlStorableInts(const QList<int> &numbers);

/** A value of just this type, not by conversion: that takes any text for the name of a font. */
template <typename Value>
std::optional<Value> tvlStoredExactly(const QVariant &stored)
{
    return stored.metaType() == QMetaType::fromType<Value>() ? std::optional(stored.value<Value>())
                                                             : std::nullopt;
}

/** What @p read finds under a key; @p fallback for no key, no value or one of another kind. */
template <typename Value>
Value tvlStoredOr(const QSettings &settings, const QString &key,
                  std::optional<Value> (*read)(const QVariant &), Value fallback)
{
    if (key.isEmpty() || !settings.contains(key))
        return fallback;
    return read(settings.value(key)).value_or(std::move(fallback));
}

/** A setting with its key in the file and what it is when nothing is stored. */
template <typename Setting, typename Value>
struct TVLSettingRow
{
    Setting setting;
    QStringView key;
    Value defaultValue;
};

/** The row of a setting; null for a table without it. */
template <typename Setting, typename Value, std::size_t Size>
const TVLSettingRow<Setting, Value> *
tvlFindSetting(const TVLSettingRow<Setting, Value> (&table)[Size], Setting setting)
{
    const auto row = std::find_if(std::begin(table), std::end(table),
                                  [=](const auto &each) { return each.setting == setting; });
    return row == std::end(table) ? nullptr : &*row;
}
