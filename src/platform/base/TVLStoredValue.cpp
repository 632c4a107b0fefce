#include "TVLStoredValue_p.h"

#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

std::optional<QString> tvlStoredText(const QVariant &stored)
{
    switch (stored.typeId()) {
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return stored.toString();
    case QMetaType::QStringList: {
        // A file doesn't tell a list of one text from a text.
        const QStringList texts = stored.toStringList();
        return texts.size() == 1 ? std::optional(texts.constFirst()) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<bool> tvlStoredFlag(const QVariant &stored)
{
    const std::optional<QString> text = tvlStoredText(stored);
    // As QVariant has it: every text but an empty one, 0 and false is true.
    return text ? std::optional(QVariant(*text).toBool()) : std::nullopt;
}

std::optional<int> tvlStoredInt(const QVariant &stored)
{
    bool ok = false;
    const int number = tvlStoredText(stored).value_or(QString()).toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

std::optional<double> tvlStoredReal(const QVariant &stored)
{
    bool ok = false;
    const double number = tvlStoredText(stored).value_or(QString()).toDouble(&ok);
    return ok && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<QStringList> tvlStoredTexts(const QVariant &stored)
{
    // Nor does it tell an empty list from no value.
    if (!stored.isValid())
        return QStringList();
    if (stored.typeId() == QMetaType::QStringList || stored.typeId() == QMetaType::QVariantList)
        return stored.toStringList();
    if (const std::optional<QString> text = tvlStoredText(stored))
        return QStringList(*text);
    return std::nullopt;
}

std::optional<QList<int>> tvlStoredInts(const QVariant &stored)
{
    if (const auto numbers = tvlStoredExactly<QList<int>>(stored))
        return numbers;
    const std::optional<QStringList> texts = tvlStoredTexts(stored);
    if (!texts)
        return std::nullopt;
    if (*texts == QStringList(QString()))
        return QList<int>();
    QList<int> numbers;
    numbers.reserve(texts->size());
    for (const QString &text : *texts) {
        bool ok = false;
        numbers += text.toInt(&ok);
        if (!ok)
            return std::nullopt;
    }
    return numbers;
}

QVariant tvlStorableInts(const QList<int> &numbers)
{
    if (numbers.isEmpty())
        return u""_s;
    QStringList texts;
    texts.reserve(numbers.size());
    for (const int number : numbers)
        texts += QString::number(number);
    return texts;
}
