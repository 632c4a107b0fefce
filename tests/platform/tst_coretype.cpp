#include "TestMain.h"

#include "TCoreType.h"
#include "TUuid.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TstCoreType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aPointIsWrittenWithTheGivenPrecision_data();
    void aPointIsWrittenWithTheGivenPrecision();
    void aPointReadsBack_data();
    void aPointReadsBack();
    void pointTextsAreRead_data();
    void pointTextsAreRead();
    void otherTextsAreNoPoint_data();
    void otherTextsAreNoPoint();

    void idsAreWrittenInAscendingOrder_data();
    void idsAreWrittenInAscendingOrder();
    void idTextsAreRead_data();
    void idTextsAreRead();

    void aUuidIsWrittenWithoutBraces();
    void onlyAWholeTextIsAUuid();
    void anyUuidReadsBackInBothCases();
};

void TstCoreType::initTestCase()
{
    // A locale with a decimal comma and grouped thousands, which must not reach any text.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void TstCoreType::aPointIsWrittenWithTheGivenPrecision_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << QPointF(0, 0) << 6 << u"0,0"_s;
    QTest::newRow("whole") << QPointF(12, -34) << 6 << u"12,-34"_s;
    QTest::newRow("fraction") << QPointF(1.5, -0.25) << 6 << u"1.5,-0.25"_s;
    QTest::newRow("rounded") << QPointF(1.23456789, 2) << 3 << u"1.23,2"_s;
    QTest::newRow("thousands") << QPointF(123456, 1234.5) << 6 << u"123456,1234.5"_s;
    QTest::newRow("exponent") << QPointF(1234567, 1e-10) << 6 << u"1.23457e+06,1e-10"_s;
    QTest::newRow("shortest") << QPointF(0.1, 1.0 / 3) << int(QLocale::FloatingPointShortest)
                              << u"0.1,0.3333333333333333"_s;
}

void TstCoreType::aPointIsWrittenWithTheGivenPrecision()
{
    QFETCH(QPointF, point);
    QFETCH(int, precision);
    QTEST(TCoreType::toString(point, precision), "text");
}

void TstCoreType::aPointReadsBack_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");

    using Limits = std::numeric_limits<double>;
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("not representable") << 0.1 << -1.0 / 3;
    QTest::newRow("largest") << Limits::max() << Limits::lowest();
    QTest::newRow("smallest") << Limits::min() << -Limits::min();
    QTest::newRow("next to one") << 1 + Limits::epsilon() << 1 - Limits::epsilon();
}

void TstCoreType::aPointReadsBack()
{
    QFETCH(double, x);
    QFETCH(double, y);
    const QString text = TCoreType::toString(QPointF(x, y), QLocale::FloatingPointShortest);
    bool ok = false;
    const QPointF point = TCoreType::toPointF(text, &ok);
    QVERIFY(ok);
    // Not QPointF's own comparison, which is fuzzy.
    QVERIFY(point.x() == x);
    QVERIFY(point.y() == y);
}

void TstCoreType::pointTextsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QPointF>("point");

    QTest::newRow("whole") << u"12,-34"_s << QPointF(12, -34);
    QTest::newRow("fraction") << u"1.5,.25"_s << QPointF(1.5, 0.25);
    QTest::newRow("exponent") << u"1.5e+06,2E-1"_s << QPointF(1500000, 0.2);
    QTest::newRow("blanks") << u" 1 , 2 "_s << QPointF(1, 2);
    QTest::newRow("plus") << u"+1,+2"_s << QPointF(1, 2);
}

void TstCoreType::pointTextsAreRead()
{
    QFETCH(QString, text);
    bool ok = false;
    QTEST(TCoreType::toPointF(text, &ok), "point");
    QVERIFY(ok);
    QTEST(TCoreType::toPointF(text), "point");
}

void TstCoreType::otherTextsAreNoPoint_data()
{
    QTest::addColumn<QString>("text");

    const char *const texts[] = {"",        ",",     "1",     "1,",      ",1",
                                 "1,2,3",   "1;2",   "a,b",   "1,b",     "1 2",
                                 "1.2.3,4", "nan,1", "1,inf", "1e999,1", "{1,2}"};
    for (const char *text : texts)
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TstCoreType::otherTextsAreNoPoint()
{
    QFETCH(QString, text);
    bool ok = true;
    const QPointF point = TCoreType::toPointF(text, &ok);
    QVERIFY(!ok);
    QVERIFY(point.isNull());
    QVERIFY(TCoreType::toPointF(text).isNull());
}

void TstCoreType::idsAreWrittenInAscendingOrder_data()
{
    QTest::addColumn<QSet<int>>("ids");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << QSet<int>() << QString();
    QTest::newRow("one") << QSet<int>{7} << u"7"_s;
    QTest::newRow("by number") << QSet<int>{100, 9, 20, 1} << u"1,9,20,100"_s;
    QTest::newRow("negative") << QSet<int>{0, -1, 1} << u"-1,0,1"_s;
    QTest::newRow("limits") << QSet<int>{std::numeric_limits<int>::max(),
                                         std::numeric_limits<int>::min()}
                            << u"-2147483648,2147483647"_s;
}

void TstCoreType::idsAreWrittenInAscendingOrder()
{
    QFETCH(QSet<int>, ids);
    const QString text = TCoreType::toString(ids);
    QTEST(text, "text");
    QCOMPARE(TCoreType::splitToIds(text), ids);
}

void TstCoreType::idTextsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSet<int>>("ids");

    QTest::newRow("empty") << QString() << QSet<int>();
    QTest::newRow("one") << u"5"_s << QSet<int>{5};
    QTest::newRow("unordered") << u"5,3,4"_s << QSet<int>{3, 4, 5};
    QTest::newRow("twice") << u"5,5"_s << QSet<int>{5};
    QTest::newRow("blanks") << u" 5 ,\t6\n"_s << QSet<int>{5, 6};
    QTest::newRow("empty pieces") << u",5,,6,"_s << QSet<int>{5, 6};
    QTest::newRow("no numbers") << u"5,x,6.5,7 8,9"_s << QSet<int>{5, 9};
    QTest::newRow("too large") << u"5,2147483648"_s << QSet<int>{5};
    QTest::newRow("other separator") << u"5;6"_s << QSet<int>();
}

void TstCoreType::idTextsAreRead()
{
    QFETCH(QString, text);
    QTEST(TCoreType::splitToIds(text), "ids");
}

void TstCoreType::aUuidIsWrittenWithoutBraces()
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    QCOMPARE(TUuid::toStringNoBraces(uuid, true), u"01234567-89AB-CDEF-0123-456789ABCDEF"_s);
    QCOMPARE(TUuid::toStringNoBraces(uuid, false), u"01234567-89ab-cdef-0123-456789abcdef"_s);
    QCOMPARE(TUuid::toStringNoBraces(QUuid(), true), u"00000000-0000-0000-0000-000000000000"_s);
}

void TstCoreType::onlyAWholeTextIsAUuid()
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    const QString text = uuid.toString(QUuid::WithoutBraces);
    for (const QString &whole : {text, text.toUpper(), u'{' + text + u'}'})
        QCOMPARE(TUuid::fromWholeText(whole), uuid);
    for (const QString &other :
         {QString(), u"{"_s, u"}"_s, u"{}"_s, text + u" (2)"_s, u'{' + text, text + u'}',
          u'{' + text.chopped(1) + u'}', u"{{"_s + text + u"}}"_s, u'{' + text.chopped(1),
          text.chopped(1), u'x' + text.sliced(1)})
        QVERIFY2(TUuid::fromWholeText(other).isNull(), qPrintable(other));
}

void TstCoreType::anyUuidReadsBackInBothCases()
{
    for (int i = 0; i < 1000; ++i) {
        const QUuid uuid = QUuid::createUuid();
        QCOMPARE(TUuid::fromWholeText(uuid.toString()), uuid);
        const QString lower = TUuid::toStringNoBraces(uuid, false);
        QCOMPARE(lower, uuid.toString(QUuid::WithoutBraces));
        const QString upper = TUuid::toStringNoBraces(uuid, true);
        QCOMPARE(upper, lower.toUpper());
        QCOMPARE(QUuid(upper), uuid);
    }
}

TVL_TEST(TstCoreType)

#include "tst_coretype.moc"
