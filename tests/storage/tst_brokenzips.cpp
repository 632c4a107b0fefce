#include "RandomTree.h"
#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TestBinderProject.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include <QTest>
#include <QtEndian>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** A binder whose text has little in it that repeats, so that its zip isn't all headers. */
std::unique_ptr<TestBinderProject> randomBinder(int nodes)
{
    RandomTreeOptions options;
    options.nodes = nodes;
    options.seed = 4711;
    auto binder = std::make_unique<TestBinderProject>(makeRandomTree(options));
    binder->mLabelTitle = u"Label"_s;
    binder->mLabels = {{-1, u"No Label"_s, QColor()}, {1, u"Idea"_s, QColor(10, 20, 30)}};
    binder->mStatusItems = {{-1, u"No Status"_s}, {1, u"Draft"_s}};
    binder->mInfo.mModified = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    return binder;
}

/** Whether a read project says what a written one did; if not, @p where tells what differs. */
bool equalProjects(const TestBinderProject &left, const TestBinderProject &right, QString *where)
{
    *where = u"labels or status items"_s;
    return left.mLabelTitle == right.mLabelTitle && left.mLabels == right.mLabels
        && left.mStatusItems == right.mStatusItems
        && equalTrees(left.binderRoot(), right.binderRoot(), where);
}

/** Place of a 32-bit number in a header of a zip. */
struct Field
{
    const char *signature;
    int offset;
};

constexpr Field LocalCompressed = {"PK\3\4", 18};
constexpr Field LocalSize = {"PK\3\4", 22};
constexpr Field DirectoryCrc = {"PK\1\2", 16};
constexpr Field DirectoryCompressed = {"PK\1\2", 20};
constexpr Field DirectorySize = {"PK\1\2", 24};

void setField(QByteArray *zip, const Field &field, quint32 value)
{
    const qsizetype header = zip->lastIndexOf(field.signature);
    if (header < 0)
        qFatal("no such header in the zip");
    qToLittleEndian(value, zip->data() + header + field.offset);
}

/** The most memory that the process ever had mapped, in bytes. */
qint64 peakMemory()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (line.startsWith("VmPeak:"))
            return line.mid(7).simplified().split(' ').constFirst().toLongLong() * 1024;
    }
    return -1;
}

/** Keeps the many lines that broken files give out of the log. */
class Silence
{
public:
    Silence()
        : mHandler(
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    {
    }
    ~Silence() { qInstallMessageHandler(mHandler); }
    Q_DISABLE_COPY_MOVE(Silence)

private:
    QtMessageHandler mHandler;
};

} // namespace

Q_DECLARE_METATYPE(Field)

class TstBrokenZips : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeZipReadsBack();
    void aVeryCompressibleBinderReadsBack();
    void aCutOffZipOpensAsNothing();
    void aZipWithAChangedByteOpensAsItWasOrNotAtAll_data();
    void aZipWithAChangedByteOpensAsItWasOrNotAtAll();
    void aZipWithAnyChangedBitReadsAsItWasOrNotAtAll();
    void aZipThatClaimsAnImpossibleSizeIsRefusedWithoutAllocatingIt_data();
    void aZipThatClaimsAnImpossibleSizeIsRefusedWithoutAllocatingIt();
    void aZipWhoseChecksumIsWrongIsRefused();
    void aZipThatClaimsLessThanItHoldsIsRefused();
    void aBinderVersionIsNotReadFromAZipWhoseChecksumIsWrong();
    void aZipWithNothingReadableInItIsRefused_data();
    void aZipWithNothingReadableInItIsRefused();
};

void TstBrokenZips::aWholeZipReadsBack()
{
    const auto binder = randomBinder(60);
    const TestProject project;
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binder->write()));
    TestBinderProject read;
    QVERIFY(Format::readZippedBinderFilePath(project.path(AutosaveFile), &read));
    QString where;
    QVERIFY2(equalProjects(read, *binder, &where), qPrintable(where));
}

void TstBrokenZips::aVeryCompressibleBinderReadsBack()
{
    TestBinderProject binder;
    auto *node = new TVLProjectNode({0, uuidOf(0)}, binder.binderRoot());
    node->mTitle = QString(5'000'000, u'x');
    const TestProject project;
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binder.write()));
    TestBinderProject read;
    QVERIFY(Format::readZippedBinderFilePath(project.path(AutosaveFile), &read));
    QCOMPARE(read.binderRoot()->mChildren.constFirst()->mTitle, node->mTitle);
}

void TstBrokenZips::aCutOffZipOpensAsNothing()
{
    const QByteArray zip = zipOf(u"Novel.tavelx"_s, randomBinder(60)->write());
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    const Silence silence;
    for (qsizetype size = 0; size < zip.size(); size += 97) {
        project.writeFile(AutosaveFile, zip.first(size));
        QVERIFY2(!project.open(), qPrintable(QString::number(size)));
        QCOMPARE(project.readFile(AutosaveFile), zip.first(size));
    }
}

void TstBrokenZips::aZipWithAChangedByteOpensAsItWasOrNotAtAll_data()
{
    QTest::addColumn<int>("mask");

    QTest::newRow("all bits") << 0xff;
    QTest::newRow("highest bit") << 0x80;
    QTest::newRow("lowest bit") << 0x01;
}

void TstBrokenZips::aZipWithAChangedByteOpensAsItWasOrNotAtAll()
{
    QFETCH(int, mask);

    const auto binder = randomBinder(60);
    const QByteArray zip = zipOf(u"Novel.tavelx"_s, binder->write());
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    const Silence silence;
    for (qsizetype position = 0; position < zip.size(); position += testStep(61)) {
        QByteArray broken = zip;
        broken[position] = char(broken.at(position) ^ mask);
        project.writeFile(AutosaveFile, broken);
        const TestModel model = project.open();
        QString where;
        QVERIFY2(!model || equalTrees(model->binderRoot(), binder->binderRoot(), &where),
                 qPrintable(u"byte %1: %2"_s.arg(position).arg(where)));
    }
}

void TstBrokenZips::aZipWithAnyChangedBitReadsAsItWasOrNotAtAll()
{
    const auto binder = randomBinder(4);
    const QByteArray zip = zipOf(u"Novel.tavelx"_s, binder->write());
    const TestProject project;
    const Silence silence;
    for (qsizetype bit = 0; bit < zip.size() * 8; ++bit) {
        QByteArray broken = zip;
        broken[bit / 8] = char(broken.at(bit / 8) ^ (1 << (bit % 8)));
        project.writeFile(AutosaveFile, broken);
        TestBinderProject read;
        QString where;
        QVERIFY2(!Format::readZippedBinderFilePath(project.path(AutosaveFile), &read)
                     || equalProjects(read, *binder, &where),
                 qPrintable(u"byte %1, bit %2: %3"_s.arg(bit / 8).arg(bit % 8).arg(where)));
    }
}

void TstBrokenZips::aZipThatClaimsAnImpossibleSizeIsRefusedWithoutAllocatingIt_data()
{
    QTest::addColumn<QList<Field>>("fields");
    QTest::addColumn<quint32>("claim");

    const QList<Field> sizes = {LocalSize, DirectorySize};
    const QList<Field> compressedSizes = {LocalCompressed, DirectoryCompressed};
    const QList<Field> both = sizes + compressedSizes;
    QTest::newRow("size of 4 GiB") << sizes << 0xffffffffU;
    QTest::newRow("size of 2 GiB") << sizes << 0x7fffffffU;
    QTest::newRow("size of 1 GiB") << sizes << 0x40000000U;
    QTest::newRow("compressed size of 4 GiB") << compressedSizes << 0xffffffffU;
    QTest::newRow("compressed size of 2 GiB") << compressedSizes << 0x7fffffffU;
    QTest::newRow("compressed size of 1 GiB") << compressedSizes << 0x40000000U;
    QTest::newRow("both of 4 GiB") << both << 0xffffffffU;
    QTest::newRow("both of 1 GiB") << both << 0x40000000U;
}

void TstBrokenZips::aZipThatClaimsAnImpossibleSizeIsRefusedWithoutAllocatingIt()
{
    QFETCH(QList<Field>, fields);
    QFETCH(quint32, claim);

    constexpr qint64 Allowance = 256 * 1024 * 1024;
    QByteArray zip = zipOf(u"Novel.tavelx"_s, randomBinder(60)->write());
    for (const Field &field : fields)
        setField(&zip, field, claim);
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(AutosaveFile, zip);
    const qint64 before = peakMemory();
    QVERIFY(before > 0);
    const Silence silence;
    QVERIFY(!project.open());
    QVERIFY(peakMemory() - before < Allowance);
    QCOMPARE(Format::readProjectBinderVersion(project.path()), QString());
    QVERIFY(peakMemory() - before < Allowance);
}

void TstBrokenZips::aZipWhoseChecksumIsWrongIsRefused()
{
    QByteArray zip = zipOf(u"Novel.tavelx"_s, randomBinder(60)->write());
    setField(&zip, DirectoryCrc, 0x12345678);
    const TestProject project;
    project.writeFile(AutosaveFile, zip);
    TestBinderProject read;
    QVERIFY(!Format::readZippedBinderFilePath(project.path(AutosaveFile), &read));
    QVERIFY(read.binderRoot()->mChildren.isEmpty());
}

void TstBrokenZips::aZipThatClaimsLessThanItHoldsIsRefused()
{
    QByteArray zip = zipOf(u"Novel.tavelx"_s, randomBinder(60)->write());
    for (const Field &field : {LocalSize, DirectorySize})
        setField(&zip, field, 17);
    const TestProject project;
    project.writeFile(AutosaveFile, zip);
    TestBinderProject read;
    QVERIFY(!Format::readZippedBinderFilePath(project.path(AutosaveFile), &read));
    QVERIFY(read.binderRoot()->mChildren.isEmpty());
}

void TstBrokenZips::aBinderVersionIsNotReadFromAZipWhoseChecksumIsWrong()
{
    QByteArray zip = zipOf(u"Novel.tavelx"_s, binderXml({}, {}, "1.0"));
    const TestProject project;
    project.writeFile(u"Files/binder.backup"_s, zipOf(u"Novel.tavelx"_s, binderXml({}, {}, "1.5")));
    project.writeFile(AutosaveFile, zip);
    QCOMPARE(Format::readProjectBinderVersion(project.path()), u"1.0"_s);
    setField(&zip, DirectoryCrc, 0x12345678);
    project.writeFile(AutosaveFile, zip);
    QCOMPARE(Format::readProjectBinderVersion(project.path()), u"1.5"_s);
}

void TstBrokenZips::aZipWithNothingReadableInItIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no byte") << QByteArray("");
    QTest::newRow("one byte") << QByteArray("P");
    QTest::newRow("signature alone") << QByteArray("PK\3\4");
    QTest::newRow("end record alone") << QByteArray("PK\5\6") + QByteArray(18, '\0');
    QTest::newRow("end record that claims entries")
        << QByteArray("PK\5\6\0\0\0\0\xff\xff\xff\xff\xff\xff\xff\x7f\0\0\0\0\0\0", 22);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("no entry") << zipOf(QList<ZipEntry>());
    QTest::newRow("empty entry") << zipOf(u"Novel.tavelx"_s, {});
    QTest::newRow("entry of nonsense") << zipOf(u"Novel.tavelx"_s, "nonsense");
    QTest::newRow("entry that is a zip")
        << zipOf(u"Novel.tavelx"_s, zipOf(u"Novel.tavelx"_s, binderXml({})));
    QTest::newRow("binder behind a text")
        << zipOf({{u"read me"_s, "text", {}}, {u"Novel.tavelx"_s, binderXml({}), {}}});
}

void TstBrokenZips::aZipWithNothingReadableInItIsRefused()
{
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(AutosaveFile, content);
    TestBinderProject read;
    QVERIFY(!Format::readZippedBinderFilePath(project.path(AutosaveFile), &read));
    QVERIFY(!Format::readZippedBinderFilePath(project.path(u"Files"_s), &read));
    QVERIFY(!Format::readZippedBinderFilePath(project.path(u"missing"_s), &read));
}

TVL_TEST(TstBrokenZips)
#include "tst_brokenzips.moc"
