#include "FailingDevice.h"
#include "TestMain.h"

#include "TVLXmlReading_p.h"

#include <QBuffer>
#include <QTest>

namespace {

bool isWholeXml(QIODevice *device)
{
    QXmlStreamReader reader(device);
    tvlReadToEnd(&reader);
    return !reader.hasError();
}

} // namespace

/** The test that a file is XML to its end, which has to come to an end itself. */
class TstWholeXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyWholeXmlIsWhole_data();
    void onlyWholeXmlIsWhole();
    void aDeviceThatFailsAnywhereEndsTheReading();
    void aDeviceThatFailsEndsWhatIsReadOfIt();
};

void TstWholeXml::onlyWholeXmlIsWhole_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("one element") << QByteArray("<a/>") << true;
    QTest::newRow("cut off") << QByteArray("<a><b></b>") << false;
    QTest::newRow("a second root") << QByteArray("<a/><b/>") << false;
    QTest::newRow("text behind the root") << QByteArray("<a/>words") << false;
    QTest::newRow("a line end behind the root") << QByteArray("<a/>\n") << true;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TstWholeXml::onlyWholeXmlIsWhole()
{
    QFETCH(QByteArray, xml);
    QBuffer buffer(&xml);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTEST(isWholeXml(&buffer), "isWhole");
}

void TstWholeXml::aDeviceThatFailsAnywhereEndsTheReading()
{
    const QByteArray xml = "<?xml version='1.0'?>\n<a><b c='d'>words &amp; more</b></a>\n";
    for (qsizetype readable = 0; readable < xml.size() - 1; ++readable) {
        FailingDevice device(xml, readable);
        QVERIFY2(!isWholeXml(&device), xml.first(readable).constData());
    }
}

void TstWholeXml::aDeviceThatFailsEndsWhatIsReadOfIt()
{
    FailingDevice device("<a><b>words</b><b>", 10);
    QXmlStreamReader reader(&device);
    int tokens = 0;
    while (tvlHasMore(reader)) {
        reader.readNext();
        QVERIFY(++tokens < 20);
    }
    QVERIFY(reader.hasError());
}

TVL_TEST(TstWholeXml)
#include "tst_wholexml.moc"
