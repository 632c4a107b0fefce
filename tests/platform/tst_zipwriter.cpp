#include "TVLZipReader.h"
#include "TVLZipWriter.h"
#include "TestMain.h"

#include <QBuffer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <private/qzipreader_p.h>

using namespace Qt::StringLiterals;

class TstZipWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasAddedIsRead_data();
    void whatWasAddedIsRead();
    void severalFilesKeepTheirOrder();
    void itsOwnerMayChangeAFileAndAllMayReadIt();
    void proseIsPackedToLessThanHalf();
    void aZipWithoutFilesIsNone();
};

void TstZipWriter::whatWasAddedIsRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");

    QByteArray noise(300'000, Qt::Uninitialized);
    QRandomGenerator random(1);
    for (char &byte : noise)
        byte = char(random.bounded(256));
    QTest::newRow("prose") << u"novel.tavelx"_s << QByteArray("One morning. ").repeated(9000);
    QTest::newRow("noise") << u"noise"_s << noise;
    QTest::newRow("a name in other letters") << u"zw\u00f6lf \u4e00.tavelx"_s << QByteArray("text");
    QTest::newRow("nothing") << u"empty"_s << QByteArray();
}

void TstZipWriter::whatWasAddedIsRead()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    TVLZipWriter writer;
    writer.add(name, content);
    QByteArray zip = writer.finish();
    QBuffer buffer(&zip);
    const QZipReader reader(&buffer);
    QCOMPARE(reader.fileInfoList().size(), 1);
    QCOMPARE(reader.fileInfoList().constFirst().filePath, name);
    QCOMPARE(reader.fileData(name), content);

    const QTemporaryDir directory;
    QFile file(directory.filePath(u"zip"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(zip);
    file.close();
    const TVLZipReader own(file.fileName());
    QCOMPARE(own.indexOf(name), 0);
    QCOMPARE(own.content(0).value_or("damaged"), content);
}

void TstZipWriter::severalFilesKeepTheirOrder()
{
    TVLZipWriter writer;
    writer.add(u"b"_s, "second letter");
    writer.add(u"a"_s, "first letter");
    QByteArray zip = writer.finish();
    QBuffer buffer(&zip);
    const QZipReader reader(&buffer);
    QCOMPARE(reader.fileInfoList().size(), 2);
    QCOMPARE(reader.fileInfoList().at(0).filePath, u"b"_s);
    QCOMPARE(reader.fileData(u"a"_s), QByteArray("first letter"));
}

void TstZipWriter::itsOwnerMayChangeAFileAndAllMayReadIt()
{
    TVLZipWriter writer;
    writer.add(u"a"_s, "text");
    QByteArray zip = writer.finish();
    QBuffer buffer(&zip);
    const QZipReader::FileInfo file = QZipReader(&buffer).fileInfoList().constFirst();
    QVERIFY(file.isFile);
    QCOMPARE(file.permissions & QFile::Permissions(0x7055), QFile::Permissions(0x7055));
    QVERIFY(!file.permissions.testAnyFlags(QFile::WriteGroup | QFile::WriteOther));
}

void TstZipWriter::proseIsPackedToLessThanHalf()
{
    QByteArray prose;
    for (int i = 0; i < 20'000; ++i)
        prose += "<Item ID=\"" + QByteArray::number(i) + "\">A title of few words</Item>\n";
    TVLZipWriter writer;
    writer.add(u"a"_s, prose);
    QVERIFY(writer.finish().size() < prose.size() / 2);
}

void TstZipWriter::aZipWithoutFilesIsNone()
{
    QCOMPARE(TVLZipWriter().finish(), QByteArray());
}

TVL_TEST(TstZipWriter)

#include "tst_zipwriter.moc"
