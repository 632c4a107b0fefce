#include "TVLBinderText.h"

#include "TCoreType.h"

#include <QDebug>

using namespace Qt::StringLiterals;

namespace {

/*
 * QDateTime's own parser and formatter interpret the pattern on every call, and reading a binder
 * would spend most of its time on dates. The form is fixed, so the digits are read and written in
 * place.
 */
constexpr QStringView PatternInText = u"dddd-dd-dd dd:dd:dd";
constexpr QStringView PatternInFileName = u"dddd-dd-dd-dd-dd-dd";
constexpr int StampLength = 19;
constexpr int ZoneLength = 5;
constexpr int MinutesPerHour = 60;
constexpr qint64 SecondsPerMinute = 60;
constexpr int LastYear = 9999;

bool matches(QStringView text, QStringView pattern)
{
    for (int i = 0; i < pattern.size(); ++i) {
        const bool fits = pattern.at(i) == u'd' ? (text.at(i) >= u'0' && text.at(i) <= u'9')
                                                : text.at(i) == pattern.at(i);
        if (!fits)
            return false;
    }
    return true;
}

int numberAt(QStringView text, int position, int digits)
{
    int number = 0;
    for (int i = position; i < position + digits; ++i)
        number = number * 10 + (text.at(i).unicode() - u'0');
    return number;
}

QDateTime parseStamp(QStringView text, bool isFileName)
{
    if (!matches(text, isFileName ? PatternInFileName : PatternInText))
        return {};
    const QDate date(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2));
    const QTime time(numberAt(text, 11, 2), numberAt(text, 14, 2), numberAt(text, 17, 2));
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

QDateTime parse(QStringView text, bool isFileName)
{
    if (text.size() != StampLength + ZoneLength + (isFileName ? 0 : 1))
        return {};
    QDateTime stamp = parseStamp(text.first(StampLength), isFileName);
    const QStringView zone = text.last(ZoneLength);
    if (zone == u"+0000" || !stamp.isValid())
        return stamp;
    bool hoursOk = false;
    bool minutesOk = false;
    const int hours = zone.sliced(1, 2).toInt(&hoursOk);
    const int minutes = zone.sliced(3, 2).toInt(&minutesOk) + hours * MinutesPerHour;
    if (!hoursOk || !minutesOk)
        return {};
    return stamp.addSecs(SecondsPerMinute * (zone.front() == u'-' ? -minutes : minutes));
}

void putNumber(QString &text, int position, int digits, int number)
{
    for (int i = position + digits - 1; i >= position; --i) {
        text[i] = QChar(u'0' + number % 10);
        number /= 10;
    }
}

QString utcText(const QDateTime &utc, bool isFileName)
{
    const QDate date = utc.date();
    const QTime time = utc.time();
    if (date.year() < 0 || date.year() > LastYear)
        return {};
    QString text = isFileName ? u"yyyy-MM-dd-hh-mm-ss+0000"_s : u"yyyy-MM-dd hh:mm:ss +0000"_s;
    putNumber(text, 0, 4, date.year());
    putNumber(text, 5, 2, date.month());
    putNumber(text, 8, 2, date.day());
    putNumber(text, 11, 2, time.hour());
    putNumber(text, 14, 2, time.minute());
    putNumber(text, 17, 2, time.second());
    return text;
}

/** The moment that a text says; invalid, with a debug line, if it says none. */
QDateTime parseOrTell(QStringView text, bool isFileName)
{
    QDateTime utc = parse(text, isFileName);
    if (!utc.isValid())
        qDebug() << "Failed to parse date time(was file name=" << isFileName
                 << "):" << text.toString();
    return utc;
}

/** What the clock shows, as if it showed UTC. */
QDateTime clockOf(const QDateTime &local)
{
    return QDateTime(local.date(), local.time(), Qt::UTC);
}

/**
 * Whether the clock shows the same at another moment, and QDateTime can't tell the two: it knows
 * them by summer time alone, and where a zone was moved for good neither has it.
 */
bool hasTwin(const QDateTime &utc, const QDateTime &local)
{
    constexpr int SecondsPerDay = 24 * 60 * 60;
    const qint64 offset = utc.secsTo(clockOf(local));
    for (const int distance : {-SecondsPerDay, SecondsPerDay}) {
        const QDateTime other = utc.addSecs(distance);
        const qint64 otherOffset = other.secsTo(clockOf(other.toLocalTime()));
        if (otherOffset == offset)
            continue;
        const QDateTime twin = utc.addSecs(offset - otherOffset).toLocalTime();
        if (clockOf(twin) == clockOf(local) && twin.isDaylightTime() == local.isDaylightTime())
            return true;
    }
    return false;
}

/** A moment as local time. One whose local time comes twice, as when clocks are set back, keeps its
 * distance from UTC, so that it can be told from its twin. */
QDateTime localTimeOf(const QDateTime &utc)
{
    QDateTime local = utc.toLocalTime();
    return hasTwin(utc, local) ? utc.toOffsetFromUtc(int(utc.secsTo(clockOf(local)))) : local;
}

} // namespace

QString tvlDateTimeToString(const QDateTime &dateTime, bool isFileName)
{
    return dateTime.isValid() ? utcText(dateTime.toUTC(), isFileName) : QString();
}

QString TVLDateFormatter::toString(const QDateTime &dateTime)
{
    if (!dateTime.isValid() || dateTime.timeSpec() != Qt::LocalTime)
        return tvlDateTimeToString(dateTime, false);
    const QDate date = dateTime.date();
    const std::optional<int> offset = offsetAround(date);
    if (!offset)
        return tvlDateTimeToString(dateTime, false);
    return utcText(QDateTime(date, dateTime.time(), Qt::UTC).addSecs(-*offset), false);
}

QDateTime TVLDateFormatter::toDateTime(QStringView text)
{
    const QDateTime utc = parseOrTell(text, false);
    if (!utc.isValid())
        return {};
    return offsetAround(utc.date()) ? utc.toLocalTime() : localTimeOf(utc);
}

std::optional<int> TVLDateFormatter::offsetAround(const QDate &day)
{
    const qint64 fortnight = day.toJulianDay() / DaysPerFortnight;
    auto offset = mOffsets.constFind(fortnight);
    if (offset == mOffsets.cend())
        offset = mOffsets.insert(fortnight, offsetOfFortnight(fortnight));
    return *offset;
}

std::optional<int> TVLDateFormatter::offsetOfFortnight(qint64 fortnight)
{
    const QDate first = QDate::fromJulianDay(fortnight * DaysPerFortnight);
    const auto offsetOfDay = [first](int day) {
        return QDateTime(first.addDays(day), QTime(0, 0)).offsetFromUtc();
    };
    const int offset = offsetOfDay(-1);
    for (int day = 0; day <= DaysPerFortnight + 1; ++day) {
        if (offsetOfDay(day) != offset)
            return std::nullopt;
    }
    return offset;
}

QDateTime tvlStringToDateTime(QStringView text, bool isFileName)
{
    const QDateTime utc = parseOrTell(text, isFileName);
    return utc.isValid() ? localTimeOf(utc) : QDateTime();
}

QString tvlPointFToString(const QPointF &point)
{
    return TCoreType::toString(point, 6);
}

QPointF tvlStringToPointF(QStringView text, bool *ok)
{
    return TCoreType::toPointF(text, ok);
}
