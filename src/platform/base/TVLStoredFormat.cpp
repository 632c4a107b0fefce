#include "TVLStoredFormat_p.h"

#include "TVLStoredValue_p.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <QMap>
#include <QTextOption>

#include <algorithm>

namespace {

using Tab = QTextOption::Tab;

constexpr auto StreamVersion = QDataStream::Qt_6_0;

/** Goes before the bytes of a format: a stream believes whatever size a damaged list claims. */
QByteArray checksum(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(bytes);
    return hash.result();
}

/** The bytes behind their checksum; nothing when it isn't theirs. */
std::optional<QByteArray> checkedBytes(const QByteArray &stored)
{
    const auto size = QCryptographicHash::hashLength(QCryptographicHash::Md5);
    const QByteArray bytes = stored.mid(size);
    return stored.first(std::min<qsizetype>(size, stored.size())) == checksum(bytes)
        ? std::optional(bytes)
        : std::nullopt;
}

/** Tab stops as a list of lists, because a stream doesn't take them as they are. */
QVariantList storableTabs(const QVariantList &tabs)
{
    QVariantList stored;
    for (const QVariant &each : tabs) {
        const Tab tab = each.value<Tab>();
        stored += QVariant(QVariantList{tab.position, int(tab.type), QString(tab.delimiter)});
    }
    return stored;
}

QTextOption::TabType toTabType(int number)
{
    return number < QTextOption::LeftTab || number > QTextOption::DelimiterTab
        ? QTextOption::LeftTab
        : QTextOption::TabType(number);
}

QVariantList storedTabs(const QVariantList &stored)
{
    QVariantList tabs;
    for (const QVariant &each : stored) {
        const QVariantList parts = each.toList();
        const QString delimiter = parts.value(2).toString();
        tabs +=
            QVariant::fromValue(Tab(parts.value(0).toDouble(), toTabType(parts.value(1).toInt()),
                                    delimiter.isEmpty() ? QChar() : delimiter.front()));
    }
    return tabs;
}

/** The properties of a format of a type; nothing for any other value. */
std::optional<QTextFormat> storedFormat(const QVariant &stored, QTextFormat::FormatType type)
{
    const std::optional<QByteArray> bytes =
        checkedBytes(tvlStoredExactly<QByteArray>(stored).value_or(QByteArray()));
    if (!bytes)
        return std::nullopt;
    QDataStream stream(*bytes);
    stream.setVersion(StreamVersion);
    qint32 storedType = QTextFormat::InvalidFormat;
    QMap<int, QVariant> properties;
    stream >> storedType >> properties;
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || storedType != type)
        return std::nullopt;
    QTextFormat format(type);
    for (auto each = properties.cbegin(); each != properties.cend(); ++each) {
        format.setProperty(each.key(),
                           each.key() == QTextFormat::TabPositions
                               ? QVariant(storedTabs(each.value().toList()))
                               : each.value());
    }
    return format;
}

} // namespace

QVariant tvlStorableFormat(const QTextFormat &format)
{
    QMap<int, QVariant> properties = format.properties();
    const auto tabs = properties.find(QTextFormat::TabPositions);
    if (tabs != properties.end())
        *tabs = storableTabs(tabs->toList());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(StreamVersion);
    stream << qint32(format.type()) << properties;
    return checksum(bytes) + bytes;
}

std::optional<QTextCharFormat> tvlStoredCharFormat(const QVariant &stored)
{
    const std::optional<QTextFormat> format = storedFormat(stored, QTextFormat::CharFormat);
    return format ? std::optional(format->toCharFormat()) : std::nullopt;
}

std::optional<QTextBlockFormat> tvlStoredBlockFormat(const QVariant &stored)
{
    const std::optional<QTextFormat> format = storedFormat(stored, QTextFormat::BlockFormat);
    return format ? std::optional(format->toBlockFormat()) : std::nullopt;
}
