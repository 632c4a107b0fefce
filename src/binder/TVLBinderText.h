#pragma once

#include "TvlExport.h"

#include <QDateTime>
#include <QHash>
#include <QPointF>
#include <QString>

#include <optional>

/**
 * A date as project files keep it: `yyyy-MM-dd hh:mm:ss +0000`, or `yyyy-MM-dd-hh-mm-ss+0000` as
 * part of a file name. The time is converted to UTC first. Empty for an invalid date
 * and for a year that four digits can't hold.
 */
[[nodiscard]] TVL_EXPORT QString tvlDateTimeToString(const QDateTime &dateTime, bool isFileName);

/**
 * Reads such a date, as local time. A zone other than `+0000` is added to the time and not taken
 * from it: that sense is the format's. A text of any other form gives an invalid date and a debug
 * line. A moment that QDateTime can't tell from another one of the same local time comes with its
 * distance from UTC instead.
 */
[[nodiscard]] TVL_EXPORT QDateTime tvlStringToDateTime(QStringView text, bool isFileName);

/**
 * Writes and reads many dates as tvlDateTimeToString() and tvlStringToDateTime() do, in less time.
 *
 * The C library looks at the time zone's file whenever it is asked for a local time. So the
 * distance from UTC is asked for the days of a fortnight at once and kept, though only if all have
 * the same: no hour of such a fortnight is missing or comes twice. Its two ends would not do, for a
 * zone may change its time and take it back in between. An object serves one piece of work and goes
 * with it, because the user may move to another time zone.
 */
class TVL_EXPORT TVLDateFormatter
{
public:
    [[nodiscard]] QString toString(const QDateTime &dateTime);
    [[nodiscard]] QDateTime toDateTime(QStringView text);

private:
    static constexpr int DaysPerFortnight = 14;

    /** The distance from UTC in the fortnight of a day and a day around it; none if it changes. */
    [[nodiscard]] std::optional<int> offsetAround(const QDate &day);
    [[nodiscard]] static std::optional<int> offsetOfFortnight(qint64 fortnight);

    QHash<qint64, std::optional<int>> mOffsets;
};

/** A point as project files keep it. */
[[nodiscard]] TVL_EXPORT QString tvlPointFToString(const QPointF &point);

/** Reads such a point; a zero point and false in @p ok for another text. */
[[nodiscard]] TVL_EXPORT QPointF tvlStringToPointF(QStringView text, bool *ok = nullptr);
