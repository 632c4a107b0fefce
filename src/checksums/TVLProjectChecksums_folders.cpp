/*
 * Records of whole folders: hashing what lies in them, and comparing them with what was recorded.
 */
#include "TVLProjectChecksums.h"

#include "TUuid.h"
#include "TVLProjectFolderFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** Whether a look-up by name has found a type that tells what is in the file. */
bool isClassified(int type)
{
    return type != -1 && type != TVL::ForeignFile;
}

/**
 * Calls @p visit with the key and the path of each document in the items' folders of a folder,
 * until it returns false. A folder is found by the name that it has: a uuid is the same in either
 * case.
 */
template <typename Visit>
void visitDocuments(const QString &dataPath, QDir::Filters filters, Visit &&visit)
{
    const QDir data(dataPath);
    // Of two for one item, the one in capitals comes first: that is how the project calls it.
    const QStringList folderNames = data.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &folderName : folderNames) {
        const QUuid uuid = TUuid::fromWholeText(folderName);
        if (uuid.isNull())
            continue;
        const QDir folder(data.filePath(folderName));
        const QStringList names = folder.entryList(filters, QDir::Unsorted);
        for (const QString &name : names) {
            if (!isClassified(Format::findDocumentTypeUuid(name)))
                continue;
            if (!visit(ChecksumKey(uuid, name), folder.filePath(name)))
                return;
        }
    }
}

ChecksumMap calcDataChecksums(const QString &dataPath)
{
    ChecksumMap checksums;
    const auto add = [&](const ChecksumKey &key, const QString &filePath) {
        if (!checksums.contains(key))
            checksums.insert(key, Format::calcChecksum(filePath));
        return true;
    };
    visitDocuments(dataPath, QDir::Files, add);
    return checksums;
}

void store(bool *target, bool value)
{
    if (target)
        *target = value;
}

} // namespace

ChecksumMap TVLProjectChecksums::calcFilesDataChecksums(const QString &path)
{
    return calcDataChecksums(Format::filesDataPath(Format::calcEnclosingPath(path)));
}

ChecksumMap TVLProjectChecksums::calcMobileDataChecksums(const QString &path)
{
    return calcDataChecksums(Format::mobileDataPath(Format::calcEnclosingPath(path)));
}

ChecksumMap TVLProjectChecksums::calcFilesDocsChecksums(const QString &path)
{
    ChecksumMap checksums;
    const QDir folder(Format::filesDocsPath(Format::calcEnclosingPath(path)));
    const QStringList names = folder.entryList(QDir::Files, QDir::Unsorted);
    for (const QString &name : names) {
        if (isClassified(Format::findDocumentTypeId(name)))
            checksums.insert({QUuid(), name}, Format::calcChecksum(folder.filePath(name)));
    }
    return checksums;
}

void TVLProjectChecksums::dropChangedFilesDocsChecksums()
{
    ChecksumMap checksums = mChecksums;
    const ChecksumMap files = calcFilesDocsChecksums(path());
    checksums.removeIf([&files](const auto &entry) {
        return entry.key().first.isNull() && files.value(entry.key()) != entry.value();
    });
    setChecksums(checksums);
    mNotes.clear();
}

void TVLProjectChecksums::updateFilesDataChecksumsFromHdd()
{
    setChecksums(calcFilesDataChecksums(path()));
}

void TVLProjectChecksums::updateFilesDocsChecksumsFromHdd()
{
    setChecksums(calcFilesDocsChecksums(path()));
}

void TVLProjectChecksums::updateMobileDataChecksums(const QString &path, ChecksumMap *checksums)
{
    if (!checksums || path.isEmpty())
        return;
    ChecksumMap files;
    const auto add = [&](const ChecksumKey &key, const QString &filePath) {
        const auto known = checksums->constFind(key);
        if (!files.contains(key))
            files.insert(key, known == checksums->cend() ? Format::calcChecksum(filePath) : *known);
        return true;
    };
    visitDocuments(Format::mobileDataPath(Format::calcEnclosingPath(path)), QDir::Files, add);
    *checksums = files;
}

bool TVLProjectChecksums::mobileDataHasConflicts(const QString &path, const ChecksumMap &checksums,
                                                 bool *newFiles, bool *missingFiles,
                                                 bool *modifiedFiles)
{
    const bool isFast = !newFiles && !missingFiles && !modifiedFiles;
    bool hasNew = false;
    bool hasModified = false;
    QSet<ChecksumKey> missing(checksums.keyBegin(), checksums.keyEnd());
    const auto compare = [&](const ChecksumKey &key, const QString &filePath) {
        missing.remove(key);
        const auto expected = checksums.constFind(key);
        if (expected == checksums.cend())
            hasNew = true;
        else if (!hasModified) // One such file is enough; no other has to be read.
            hasModified = !checksumsMatch(filePath, *expected);
        return !isFast || !(hasNew || hasModified);
    };
    // Folders too: one in the place of a file is no file as expected.
    visitDocuments(Format::mobileDataPath(Format::calcEnclosingPath(path)),
                   QDir::AllEntries | QDir::NoDotAndDotDot, compare);
    store(newFiles, hasNew);
    store(missingFiles, !missing.isEmpty());
    store(modifiedFiles, hasModified);
    return hasNew || hasModified;
}

bool TVLProjectChecksums::removeOldMobileChecksumFiles(const QString &path)
{
    const QDir folder(Format::mobileDataPath(Format::calcEnclosingPath(path)));
    const QFileInfoList files = folder.entryInfoList({u"*.checksums"_s}, QDir::Files);
    bool allRemoved = true;
    for (const QFileInfo &file : files) {
        if (!TUuid::fromWholeText(file.baseName()).isNull())
            allRemoved = TVLCoreUtil::DeleteFile(file.filePath()) && allRemoved;
    }
    return allRemoved;
}
