#pragma once

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QVariant>

#include <optional>

// Formats in an ini file. Qt's own form of them there is that of its version 4, which has no tab
// stops and only one font family.

QVariant tvlStorableFormat(const QTextFormat &format);

/** What tvlStorableFormat() made of a format of characters; nothing for any other value. */
std::optional<QTextCharFormat> tvlStoredCharFormat(const QVariant &stored);
/** What tvlStorableFormat() made of a format of paragraphs; nothing for any other value. */
std::optional<QTextBlockFormat> tvlStoredBlockFormat(const QVariant &stored);
