#include "TVLZipReader.h"
#include "TestMain.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <private/qzipwriter_p.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray FirstContent = QByteArray("One morning in spring. ").repeated(40);
const QByteArray SecondContent = "Two";

QByteArray sampleZip()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QZipWriter zip(&buffer);
    zip.addDirectory(u"folder"_s);
    zip.addFile(u"folder/first"_s, FirstContent);
    zip.addFile(u"zw\u00f6lf"_s, SecondContent);
    zip.addFile(u"empty"_s, QByteArray());
    zip.close();
    return buffer.data();
}

} // namespace

class TstZipReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAreFoundByNameAndRead_data();
    void entriesAreFoundByNameAndRead();
    void anUnknownNameOrPlaceGivesNothing();
    void whatIsNoZipIsNotOpen_data();
    void whatIsNoZipIsNotOpen();
    void aZipThatIsCutOffAnywhereGivesNothingWrong();
    void aChangedByteNeverGivesAnotherContent();

private:
    [[nodiscard]] QString writeFile(const QByteArray &bytes) const;

    QTemporaryDir mDirectory;
};

QString TstZipReader::writeFile(const QByteArray &bytes) const
{
    QFile file(mDirectory.filePath(u"archive"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("could not write the archive");
    return file.fileName();
}

void TstZipReader::entriesAreFoundByNameAndRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("in a folder") << u"folder/first"_s << FirstContent;
    QTest::newRow("beyond ASCII") << u"zw\u00f6lf"_s << SecondContent;
    QTest::newRow("empty") << u"empty"_s << QByteArray();
}

void TstZipReader::entriesAreFoundByNameAndRead()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    const TVLZipReader zip(writeFile(sampleZip()));
    QVERIFY(zip.isOpen());
    QCOMPARE(zip.count(), 4);
    const std::optional<QByteArray> found = zip.content(zip.indexOf(name));
    QVERIFY(found.has_value());
    QCOMPARE(*found, content);
}

void TstZipReader::anUnknownNameOrPlaceGivesNothing()
{
    const TVLZipReader zip(writeFile(sampleZip()));
    QCOMPARE(zip.indexOf(u"nobody"_s), -1);
    QVERIFY(!zip.content(-1));
    QVERIFY(!zip.content(4));
}

void TstZipReader::whatIsNoZipIsNotOpen_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no zip at all, though long enough to hold an end record");
    QTest::newRow("signature alone") << QByteArray("PK\3\4");
}

void TstZipReader::whatIsNoZipIsNotOpen()
{
    QFETCH(const QByteArray, bytes);
    const TVLZipReader zip(writeFile(bytes));
    QVERIFY(!zip.isOpen());
    QCOMPARE(zip.count(), 0);
    QVERIFY(!zip.content(0));
    QVERIFY(!TVLZipReader(mDirectory.filePath(u"missing"_s)).isOpen());
}

void TstZipReader::aZipThatIsCutOffAnywhereGivesNothingWrong()
{
    const QByteArray whole = sampleZip();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const TVLZipReader zip(writeFile(whole.first(size)));
        QVERIFY2(!zip.content(1), qPrintable(u"cut off at %1"_s.arg(size)));
    }
}

void TstZipReader::aChangedByteNeverGivesAnotherContent()
{
    const QByteArray whole = sampleZip();
    for (qsizetype i = 0; i < whole.size(); ++i) {
        QByteArray changed = whole;
        changed[i] = char(~changed.at(i));
        const TVLZipReader zip(writeFile(changed));
        for (int index = 1; index < qMin(3, zip.count()); ++index) {
            const std::optional<QByteArray> content = zip.content(index);
            QVERIFY2(!content || *content == FirstContent || *content == SecondContent
                         || content->isEmpty(),
                     qPrintable(u"byte %1"_s.arg(i)));
        }
    }
}

TVL_TEST(TstZipReader)
#include "tst_zipreader.moc"
