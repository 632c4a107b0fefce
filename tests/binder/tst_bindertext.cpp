#include "LocalZone.h"

#include "TVLBinderText.h"

#include "TestMain.h"
#include "TestScale.h"

#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace {

QDateTime utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

/** The changes of a zone's time between 1970 and 2060. */
QList<QDateTime> changesOf(const QByteArray &zone)
{
    QList<QDateTime> changes;
    for (const QTimeZone::OffsetData &change :
         QTimeZone(zone).transitions(utc(1970, 1, 1), utc(2060, 12, 31)))
        changes.append(change.atUtc);
    return changes;
}

/** Moments around a change, in seconds from it: near ones, and as far as a fortnight reaches. */
QList<int> secondsAround()
{
    constexpr int Hour = 3600;
    constexpr int Day = 24 * Hour;
    QList<int> seconds = {0};
    for (const int distance : {1, Hour / 2, Hour - 1, Hour, Hour + Hour / 2, 3 * Hour, Day, 4 * Day,
                               8 * Day, 13 * Day, 15 * Day}) {
        seconds.append(distance);
        seconds.append(-distance);
    }
    return seconds;
}

/** What the ways of writing and reading dates make of moments around changes of the local time;
 * empty when every moment survives in each. */
QString faultAround(const QList<QDateTime> &changes)
{
    TVLDateFormatter formatter;
    for (const QDateTime &change : changes) {
        for (const int seconds : secondsAround()) {
            const QDateTime moment = change.addSecs(seconds);
            const QString text = tvlDateTimeToString(moment, false);
            const QDateTime read = tvlStringToDateTime(text, false);
            const QDateTime readFast = formatter.toDateTime(text);
            if (read != moment || readFast != moment)
                return u"%1 is read as %2, in a row as %3"_s.arg(text, read.toString(Qt::ISODate),
                                                                 readFast.toString(Qt::ISODate));
            for (const QString &written :
                 {tvlDateTimeToString(read, false), formatter.toString(read),
                  tvlDateTimeToString(readFast, false), formatter.toString(readFast)}) {
                if (written != text)
                    return u"%1 becomes %2"_s.arg(text, written);
            }
            // What a program has from the clock.
            const QDateTime local = moment.toLocalTime();
            if (formatter.toString(local) != tvlDateTimeToString(local, false))
                return u"%1 is not as QDateTime has it"_s.arg(text);
            if (read.date() != local.date() || read.time() != local.time())
                return u"%1 shows another clock"_s.arg(text);
        }
    }
    return {};
}

void addZoneRows()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::newRow("utc") << QByteArray("UTC0");
    // Written out, so that no data base of zones is needed.
    QTest::newRow("summer time, east") << QByteArray("CET-1CEST,M3.5.0,M10.5.0/3");
    QTest::newRow("summer time, west") << QByteArray("EST5EDT,M3.2.0,M11.1.0");
    QTest::newRow("half hours") << QByteArray("IST-5:30");
}

} // namespace

class TstBinderText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDateIsWrittenInItsForm_data();
    void aDateIsWrittenInItsForm();
    void aDateOfAnyZoneIsWrittenAsUtc_data();
    void aDateOfAnyZoneIsWrittenAsUtc();
    void anInvalidDateIsWrittenAsNothing();

    void aDateIsReadByItsRules_data();
    void aDateIsReadByItsRules();
    void aTextOfAnotherFormIsRefusedWithADebugLine_data();
    void aTextOfAnotherFormIsRefusedWithADebugLine();
    void theDebugLineSaysWhetherAFileNameWasExpected();
    void aDateIsReadAsLocalTime_data() { addZoneRows(); }
    void aDateIsReadAsLocalTime();
    void everyHourOfAYearSurvivesInEveryZone_data() { addZoneRows(); }
    void everyHourOfAYearSurvivesInEveryZone();
    void everyMomentSurvivesWhereATimeIsChangedTwiceInAFortnight_data();
    void everyMomentSurvivesWhereATimeIsChangedTwiceInAFortnight();
    void everyMomentSurvivesAroundTheChangesOfAllZones();

    void aPointSurvives_data();
    void aPointSurvives();
    void aPointKeepsSixDigits();
    void aTextThatIsNoPointReadsAsZero_data();
    void aTextThatIsNoPointReadsAsZero();
};

void TstBinderText::aDateIsWrittenInItsForm_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<bool>("isFileName");
    QTest::addColumn<QString>("text");
    const QDateTime date = utc(2021, 2, 3, 4, 5, 6);
    QTest::newRow("text") << date << false << u"2021-02-03 04:05:06 +0000"_s;
    QTest::newRow("file name") << date << true << u"2021-02-03-04-05-06+0000"_s;
    QTest::newRow("last second") << utc(2021, 12, 31, 23, 59, 59) << false
                                 << u"2021-12-31 23:59:59 +0000"_s;
    QTest::newRow("leap day") << utc(2020, 2, 29) << false << u"2020-02-29 00:00:00 +0000"_s;
    QTest::newRow("first year") << utc(1, 1, 1) << false << u"0001-01-01 00:00:00 +0000"_s;
    QTest::newRow("last year") << utc(9999, 12, 31) << true << u"9999-12-31-00-00-00+0000"_s;
    QTest::newRow("milliseconds") << date.addMSecs(999) << false << u"2021-02-03 04:05:06 +0000"_s;
}

void TstBinderText::aDateIsWrittenInItsForm()
{
    QFETCH(QDateTime, date);
    QFETCH(bool, isFileName);
    QTEST(tvlDateTimeToString(date, isFileName), "text");
}

void TstBinderText::aDateOfAnyZoneIsWrittenAsUtc_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("east") << 3600;
    QTest::newRow("far east") << 14 * 3600;
    QTest::newRow("west") << -5400;
}

void TstBinderText::aDateOfAnyZoneIsWrittenAsUtc()
{
    QFETCH(int, offset);
    const QDateTime date = utc(2021, 1, 1, 0, 30).toOffsetFromUtc(offset);
    QCOMPARE(tvlDateTimeToString(date, false), u"2021-01-01 00:30:00 +0000"_s);
    QCOMPARE(tvlDateTimeToString(date, true), u"2021-01-01-00-30-00+0000"_s);
}

void TstBinderText::anInvalidDateIsWrittenAsNothing()
{
    QCOMPARE(tvlDateTimeToString(QDateTime(), false), QString());
    QCOMPARE(tvlDateTimeToString(QDateTime(), true), QString());
}

void TstBinderText::aDateIsReadByItsRules_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isFileName");
    QTest::addColumn<QDateTime>("date");
    const auto add = [](const char *name, const QString &text, bool isFileName,
                        const QDateTime &date) {
        QTest::newRow(name) << text << isFileName << date;
    };
    add("text", u"2021-02-03 04:05:06 +0000"_s, false, utc(2021, 2, 3, 4, 5, 6));
    add("file name", u"2021-02-03-04-05-06+0000"_s, true, utc(2021, 2, 3, 4, 5, 6));
    add("one hour later", u"2021-02-03 04:05:06 +0100"_s, false, utc(2021, 2, 3, 5, 5, 6));
    add("ninety minutes earlier", u"2021-02-03 04:05:06 -0130"_s, false, utc(2021, 2, 3, 2, 35, 6));
    add("later in a file name", u"2021-02-03-04-05-06+0100"_s, true, utc(2021, 2, 3, 5, 5, 6));
    add("earlier in a file name", u"2021-02-03-04-05-06-0130"_s, true, utc(2021, 2, 3, 2, 35, 6));
    add("over the year's end", u"2021-12-31 23:30:00 +0100"_s, false, utc(2022, 1, 1, 0, 30));
    add("before the year's start", u"2021-01-01 00:30:00 -0100"_s, false,
        utc(2020, 12, 31, 23, 30));
    add("minus zero", u"2021-02-03 04:05:06 -0000"_s, false, utc(2021, 2, 3, 4, 5, 6));
    add("any sign but minus adds", u"2021-02-03 04:05:06 x0100"_s, false, utc(2021, 2, 3, 5, 5, 6));
    add("minutes beyond an hour", u"2021-02-03 04:05:06 +0090"_s, false, utc(2021, 2, 3, 5, 35, 6));
    add("leap day", u"2020-02-29 00:00:00 +0000"_s, false, utc(2020, 2, 29));
}

void TstBinderText::aDateIsReadByItsRules()
{
    QFETCH(QString, text);
    QFETCH(bool, isFileName);
    QTEST(tvlStringToDateTime(text, isFileName).toUTC(), "date");
}

void TstBinderText::aTextOfAnotherFormIsRefusedWithADebugLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isFileName");
    const auto add = [](const char *name, const QString &text, bool isFileName = false) {
        QTest::newRow(name) << text << isFileName;
    };
    add("empty", {});
    add("no date", u"yesterday"_s);
    add("24 characters", u"2021-02-03 04:05:06+0000"_s);
    add("26 characters", u"2021-02-03 04:05:06  +0000"_s);
    add("no zone", u"2021-02-03 04:05:06"_s);
    add("zone without digits", u"2021-02-03 04:05:06 +hhmm"_s);
    add("bad hours of the zone", u"2021-02-03 04:05:06 +x100"_s);
    add("bad minutes of the zone", u"2021-02-03 04:05:06 +01x0"_s);
    add("separators of a file name", u"2021-02-03-04-05-06 +0000"_s);
    add("slashes", u"2021/02/03 04:05:06 +0000"_s);
    add("month 13", u"2021-13-03 04:05:06 +0000"_s);
    add("month 0", u"2021-00-03 04:05:06 +0000"_s);
    add("day 30 of February", u"2021-02-30 04:05:06 +0000"_s);
    add("leap day of a common year", u"2021-02-29 04:05:06 +0000"_s);
    add("hour 24", u"2021-02-03 24:00:00 +0000"_s);
    add("minute 60", u"2021-02-03 04:60:06 +0000"_s);
    add("second 60", u"2021-02-03 23:59:60 +0000"_s);
    add("letters", u"2021-02-03 0a:05:06 +0000"_s);
    add("digits of another script", u"２０21-02-03 04:05:06 +0000"_s);
    add("file name, text form", u"2021-02-03 04:05:06+0000"_s, true);
    add("file name, 25 characters", u"2021-02-03-04-05-06 +0000"_s, true);
    add("file name, 23 characters", u"2021-02-03-04-05-06+000"_s, true);
    add("file name, bad zone", u"2021-02-03-04-05-06+00z0"_s, true);
    add("file name, empty", {}, true);
}

void TstBinderText::aTextOfAnotherFormIsRefusedWithADebugLine()
{
    QFETCH(QString, text);
    QFETCH(bool, isFileName);
    const QString line = u"Failed to parse date time(was file name= %1 ): \"%2\""_s.arg(
        isFileName ? u"true"_s : u"false"_s, text);
    QTest::ignoreMessage(QtDebugMsg, line.toUtf8().constData());
    QVERIFY(!tvlStringToDateTime(text, isFileName).isValid());
}

void TstBinderText::theDebugLineSaysWhetherAFileNameWasExpected()
{
    QTest::ignoreMessage(QtDebugMsg, "Failed to parse date time(was file name= false ): \"soon\"");
    QVERIFY(!tvlStringToDateTime(u"soon", false).isValid());
    QTest::ignoreMessage(QtDebugMsg, "Failed to parse date time(was file name= true ): \"soon\"");
    QVERIFY(!tvlStringToDateTime(u"soon", true).isValid());
}

void TstBinderText::aDateIsReadAsLocalTime()
{
    QFETCH(QByteArray, zone);
    const LocalZone local(zone);
    const QDateTime date = tvlStringToDateTime(u"2021-07-03 04:05:06 +0000", false);
    QCOMPARE(date.timeSpec(), Qt::LocalTime);
    QCOMPARE(date, utc(2021, 7, 3, 4, 5, 6));
}

void TstBinderText::everyHourOfAYearSurvivesInEveryZone()
{
    // Also the hours that summer time repeats or leaves out.
    QFETCH(QByteArray, zone);
    const LocalZone local(zone);
    QDateTime date = utc(2021, 1, 1, 0, 30);
    TVLDateFormatter formatter;
    for (int hour = 0; hour < 365 * 24; ++hour, date = date.addSecs(3600)) {
        for (const bool isFileName : {false, true}) {
            const QString text = tvlDateTimeToString(date, isFileName);
            const QDateTime read = tvlStringToDateTime(text, isFileName);
            QCOMPARE(read.toUTC(), date);
            QCOMPARE(tvlDateTimeToString(read, isFileName), text);
            if (!isFileName)
                QCOMPARE(formatter.toString(read), text);
        }
    }
}

void TstBinderText::everyMomentSurvivesWhereATimeIsChangedTwiceInAFortnight_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone : {"America/Recife", "America/Noronha", "America/Boa_Vista", "Asia/Gaza"})
        QTest::newRow(zone) << QByteArray(zone);
}

void TstBinderText::everyMomentSurvivesWhereATimeIsChangedTwiceInAFortnight()
{
    QFETCH(QByteArray, zone);
    const QList<QDateTime> changes = changesOf(zone);
    if (changes.isEmpty())
        QSKIP("The system has no table of this zone.");
    const LocalZone local(zone);
    QCOMPARE(faultAround(changes), QString());
}

void TstBinderText::everyMomentSurvivesAroundTheChangesOfAllZones()
{
    const QList<QByteArray> zones = QTimeZone::availableTimeZoneIds();
    for (int i = 0; i < zones.size(); ++i) {
        const QList<QDateTime> changes = changesOf(zones.at(i));
        QList<QDateTime> tried;
        for (int j = i % testStride(); j < changes.size(); j += testStride())
            tried.append(changes.at(j));
        const LocalZone local(zones.at(i));
        const QString fault = faultAround(tried);
        QVERIFY2(fault.isEmpty(), (zones.at(i) + ": " + fault.toUtf8()).constData());
    }
}

void TstBinderText::aPointSurvives_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::newRow("zero") << QPointF(0, 0);
    QTest::newRow("whole") << QPointF(12, 340);
    QTest::newRow("fraction") << QPointF(1.5, 0.125);
    QTest::newRow("negative") << QPointF(-7.25, -0.5);
    QTest::newRow("large") << QPointF(1e9, -2e12);
    QTest::newRow("small") << QPointF(1e-9, -2e-12);
}

void TstBinderText::aPointSurvives()
{
    QFETCH(QPointF, point);
    bool ok = false;
    const QPointF read = tvlStringToPointF(tvlPointFToString(point), &ok);
    QVERIFY(ok);
    // Not QPointF's own comparison, which is a fuzzy one.
    QCOMPARE(read.x(), point.x());
    QCOMPARE(read.y(), point.y());
}

void TstBinderText::aPointKeepsSixDigits()
{
    const QPointF read = tvlStringToPointF(tvlPointFToString(QPointF(1.23456789, 1234.56789)));
    QCOMPARE(read.x(), 1.23457);
    QCOMPARE(read.y(), 1234.57);
}

void TstBinderText::aTextThatIsNoPointReadsAsZero_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("word") << u"here"_s;
    QTest::newRow("one number") << u"5"_s;
    QTest::newRow("bad second number") << u"5,x"_s;
    QTest::newRow("bad first number") << u"x,5"_s;
    QTest::newRow("infinite") << u"inf,5"_s;
    QTest::newRow("not a number") << u"5,nan"_s;
}

void TstBinderText::aTextThatIsNoPointReadsAsZero()
{
    QFETCH(QString, text);
    bool ok = true;
    QCOMPARE(tvlStringToPointF(text, &ok), QPointF());
    QVERIFY(!ok);
    QCOMPARE(tvlStringToPointF(text), QPointF());
}

TVL_TEST(TstBinderText)
#include "tst_bindertext.moc"
