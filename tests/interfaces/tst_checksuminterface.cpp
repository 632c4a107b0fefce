#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

using namespace Qt::StringLiterals;

/** What a program can call of a project's checksums. */
class TstChecksumInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theMap();
    void hashesOfFiles();
    void comparing();
    void checksumFiles();
    void refreshing();
    void wholeFolders();
    void theMobileCopy();
};

void TstChecksumInterface::theMap()
{
    static_assert(std::is_same_v<ChecksumMap, QMap<QPair<QUuid, QString>, QByteArray>>);
    areCallable([](TVLProjectModel *model, const ChecksumMap &map) {
        TVLProjectChecksums checksums(model);
        checksums.setModified(true);
        checksums.setChecksums(map);
        gives<QPair<QUuid, QString>>(TVLProjectChecksums::checksumKey(QUuid(), TVL::MainText));
        gives<bool>(TVLProjectChecksums::checksumMapContains(map, QUuid()));
        gives<ChecksumMap>(TVLProjectChecksums::toUuidChecksumMap(QMap<QString, QByteArray>()));
    });
}

void TstChecksumInterface::hashesOfFiles()
{
    areCallable([](const TVLProjectChecksums &checksums, TVL::DocumentType type) {
        gives<QByteArray>(checksums.currentHddChecksum(1, type));
        gives<QByteArray>(checksums.currentHddChecksumData(QUuid(), type));
        gives<QByteArray>(checksums.currentHddChecksumMobile(QUuid(), type));
        gives<QByteArray>(checksums.loadedChecksum(1, type));
        gives<QByteArray>(checksums.loadedChecksum(QUuid(), type));
    });
}

void TstChecksumInterface::comparing()
{
    areCallable([](TVLProjectChecksums &checksums, TVL::DocumentType type) {
        gives<bool>(TVLProjectChecksums::checksumsMatch(u"a"_s, QByteArray()));
        gives<bool>(checksums.checksumsMatch(1, type));
        gives<bool>(checksums.checksumsMatch(QUuid(), type));
    });
}

void TstChecksumInterface::checksumFiles()
{
    areCallable([](TVLProjectChecksums &checksums, ChecksumMap *map) {
        gives<bool>(TVLProjectChecksums::saveChecksumFile(u"a"_s, *map));
        gives<bool>(checksums.saveChecksums());
        gives<bool>(TVLProjectChecksums::loadChecksumFile(u"a"_s, map));
        gives<bool>(checksums.loadChecksums());
    });
}

void TstChecksumInterface::refreshing()
{
    areCallable([](TVLProjectChecksums &checksums, TVLProjectNode *node, TVL::DocumentType type) {
        checksums.updateHashSum(1, type);
        checksums.updateHashSumNode(node, type);
        checksums.updateHashSumMobile(QUuid(), type);
        checksums.updateLoadedCheckSums(1, type);
        checksums.updateLoadedCheckSumsMobile(QUuid(), type);
        checksums.updateLoadedCheckSumsData(QUuid(), type);
    });
}

void TstChecksumInterface::wholeFolders()
{
    areCallable([](TVLProjectChecksums &checksums, const QString &path) {
        gives<ChecksumMap>(TVLProjectChecksums::calcFilesDataChecksums(path));
        gives<ChecksumMap>(TVLProjectChecksums::calcMobileDataChecksums(path));
        gives<ChecksumMap>(TVLProjectChecksums::calcFilesDocsChecksums(path));
        checksums.updateFilesDataChecksumsFromHdd();
        checksums.updateFilesDocsChecksumsFromHdd();
    });
}

void TstChecksumInterface::theMobileCopy()
{
    areCallable([](const QString &path, ChecksumMap *map, bool *found) {
        TVLProjectChecksums::updateMobileDataChecksums(path, map);
        gives<bool>(TVLProjectChecksums::mobileDataHasConflicts(path, *map, found, found, found));
        gives<bool>(TVLProjectChecksums::removeOldMobileChecksumFiles(path));
    });
}

TVL_TEST(TstChecksumInterface)
#include "tst_checksuminterface.moc"
