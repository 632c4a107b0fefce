#include "TCoreType.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

std::optional<double> toFiniteNumber(QStringView text)
{
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    return ok && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<QPointF> readPoint(QStringView text)
{
    const qsizetype comma = text.indexOf(u',');
    if (comma < 0)
        return std::nullopt;
    const std::optional<double> x = toFiniteNumber(text.first(comma));
    const std::optional<double> y = toFiniteNumber(text.sliced(comma + 1));
    return x && y ? std::optional(QPointF(*x, *y)) : std::nullopt;
}

} // namespace

QString TCoreType::toString(const QPointF &point, int precision)
{
    return QString::number(point.x(), 'g', precision) + u','
        + QString::number(point.y(), 'g', precision);
}

QPointF TCoreType::toPointF(QStringView text, bool *ok)
{
    const std::optional<QPointF> point = readPoint(text);
    if (ok)
        *ok = point.has_value();
    return point.value_or(QPointF());
}

QString TCoreType::toString(const QSet<int> &ids)
{
    QList<int> sorted(ids.cbegin(), ids.cend());
    std::sort(sorted.begin(), sorted.end());
    QString text;
    for (const int id : sorted) {
        if (!text.isEmpty())
            text += u',';
        text += QString::number(id);
    }
    return text;
}

QSet<int> TCoreType::splitToIds(QStringView text)
{
    QSet<int> ids;
    for (const QStringView piece : text.tokenize(u',')) {
        bool ok = false;
        const int id = piece.trimmed().toInt(&ok);
        if (ok)
            ids.insert(id);
    }
    return ids;
}
