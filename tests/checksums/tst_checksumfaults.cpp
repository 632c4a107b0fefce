#include "ChecksumFixtures.h"
#include "SmallDisk.h"
#include "StorageFixtures.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

/** What the disk doesn't take is reported, and what was there before stays where it can. */
class TstChecksumFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void recordsThatHaveNoRoomLeaveTheirFileAsItWas();
    void anUnwritableFolderLeavesTheRecordsModified();
    void aFileThatCannotBeRemovedIsAFailure();
};

namespace {

constexpr qint64 DiskBytes = 1'000'000;
constexpr qint64 RoomForFewRecords = 20'000;

ChecksumMap records(int count)
{
    ChecksumMap checksums;
    for (int id = 0; id < count; ++id)
        checksums.insert(key(u"%1.rtf"_s.arg(id)), hashOf(QByteArray::number(id)));
    return checksums;
}

} // namespace

void TstChecksumFaults::init()
{
    if (!SmallDisk::canMount())
        QSKIP("this machine lets the test mount no disk of its own");
}

void TstChecksumFaults::recordsThatHaveNoRoomLeaveTheirFileAsItWas()
{
    const TestProject project;
    SmallDisk disk(project.enclosingPath(), DiskBytes);
    const TVLProjectFolderFormat folder(project.path(), TVL::FormatVersion18);
    TVLProjectChecksums checksums(&folder);
    checksums.setChecksums(records(10));
    QVERIFY(checksums.saveChecksums());
    const QByteArray before = project.readFile(RecordsFile);

    disk.fillUpTo(RoomForFewRecords);
    checksums.setChecksums(records(5'000));
    QVERIFY(!checksums.saveChecksums());
    QVERIFY(checksums.isModified());
    QCOMPARE(project.readFile(RecordsFile), before);

    disk.empty();
    QVERIFY(checksums.saveChecksums());
    QVERIFY(!checksums.isModified());
    QVERIFY(checksums.loadChecksums());
    QCOMPARE(checksums.checksums(), records(5'000));
}

void TstChecksumFaults::anUnwritableFolderLeavesTheRecordsModified()
{
    const TestProject project;
    const TVLProjectFolderFormat folder(project.path(), TVL::FormatVersion18);
    TVLProjectChecksums checksums(&folder);
    checksums.setChecksums(records(10));
    QVERIFY(QDir().mkpath(project.path()));
    {
        const UnwritableFolder unwritable(project.path());
        QVERIFY(!checksums.saveChecksums());
        QVERIFY(checksums.isModified());
    }
    QVERIFY(project.files().isEmpty());
    QVERIFY(checksums.saveChecksums());
}

void TstChecksumFaults::aFileThatCannotBeRemovedIsAFailure()
{
    const TestProject project;
    for (int number = 1; number <= 3; ++number) {
        const QString name = uuidOf(number).toString(QUuid::WithoutBraces).toUpper();
        project.writeFile(u"Mobile/Data/"_s + name + u".checksums"_s, "x");
    }
    {
        const UnwritableFolder unwritable(project.path(u"Mobile/Data"_s));
        QVERIFY(!TVLProjectChecksums::removeOldMobileChecksumFiles(project.path()));
    }
    QCOMPARE(project.files().size(), 3);
    {
        // What is mounted on can't be removed; the files behind the first go all the same.
        const UnwritableFolder unwritable(project.path(project.files().firstKey()));
        QVERIFY(!TVLProjectChecksums::removeOldMobileChecksumFiles(project.path()));
        QCOMPARE(project.files().size(), 1);
    }
    QVERIFY(TVLProjectChecksums::removeOldMobileChecksumFiles(project.path()));
    QVERIFY(project.files().isEmpty());
}

// A name space of its own can be entered only before there are threads.
TVL_TEST_PREPARED(TstChecksumFaults, [] { SmallDisk::enterPrivateNameSpace(); })
#include "tst_checksumfaults.moc"
