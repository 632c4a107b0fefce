#include "TVLProjectChecksums.h"

#include "TUuid.h"
#include "TVLCoreUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStringTokenizer>

#include <algorithm>
#include <iterator>

namespace {

using Format = TVLProjectFolderFormat;

/** The types whose records are kept in step with their files. */
constexpr TVL::DocumentType TrackedTypes[] = {
    TVL::MainText,
    TVL::NotesText,
    TVL::SynopsisText,
    TVL::CommentsFile,
};

constexpr qsizetype UuidLength = 36;

bool isTracked(TVL::DocumentType type)
{
    return std::find(std::begin(TrackedTypes), std::end(TrackedTypes), type)
        != std::end(TrackedTypes);
}

/** Whether a look-up by name has found a type that tells what is in the file. */
bool isClassified(int type)
{
    return type != -1 && type != TVL::ForeignFile;
}

/** A whole text as a uuid. QUuid alone takes anything that begins like one. */
QUuid wholeUuid(QStringView text)
{
    return text.size() == UuidLength ? QUuid::fromString(text) : QUuid();
}

// --- Lines of a checksum file

ChecksumKey keyOf(QStringView text)
{
    const qsizetype slash = text.indexOf(u'/');
    if (slash <= 0)
        return {QUuid(), text.toString()};
    return {wholeUuid(text.first(slash)), text.sliced(slash + 1).toString()};
}

void appendLine(const ChecksumKey &key, const QByteArray &checksum, QByteArray *lines)
{
    const auto &[uuid, name] = key;
    if (!uuid.isNull())
        lines->append(TUuid::toStringNoBraces(uuid, true).toLatin1()).append('/');
    lines->append(name.toUtf8()).append('=').append(checksum.toHex()).append('\n');
}

void addLine(QStringView line, ChecksumMap *checksums)
{
    const qsizetype equalSign = line.indexOf(u'=');
    if (equalSign <= 0)
        return;
    // What isn't a hexadecimal digit is passed over, and with it the rest of another line end.
    const QByteArray checksum = QByteArray::fromHex(line.sliced(equalSign + 1).toLatin1());
    // A whole file is in the order of the map, so the end is the place to try first.
    checksums->insert(checksums->cend(), keyOf(line.first(equalSign)), checksum);
}

// --- Folders with a folder for each item

/** Where they lie in a project. */
struct DataFolder
{
    QString (*path)(const QString &projectPath);
    QString (*itemPath)(const QString &projectPath, const QUuid &uuid);
};

constexpr DataFolder DesktopData = {&Format::filesDataPath, &Format::filesDataNodePath};
constexpr DataFolder MobileData = {&Format::mobileDataPath, &Format::mobileDataNodePath};

/**
 * Calls @p visit with the key and the path of each document in such a folder, until it returns
 * false.
 */
template <typename Visit>
void visitDocuments(const DataFolder &data, const QString &projectPath, QDir::Filters filters,
                    Visit &&visit)
{
    const QList<QUuid> uuids = Format::folderUUIDs(data.path(projectPath));
    for (const QUuid &uuid : uuids) {
        const QDir folder(data.itemPath(projectPath, uuid));
        const QStringList names = folder.entryList(filters, QDir::Unsorted);
        for (const QString &name : names) {
            if (!isClassified(Format::findDocumentTypeUuid(name)))
                continue;
            if (!visit(ChecksumKey(uuid, name), folder.filePath(name)))
                return;
        }
    }
}

ChecksumMap calcDataChecksums(const DataFolder &data, const QString &path)
{
    ChecksumMap checksums;
    const auto add = [&](const ChecksumKey &key, const QString &filePath) {
        checksums.insert(key, Format::calcChecksum(filePath));
        return true;
    };
    visitDocuments(data, Format::calcEnclosingPath(path), QDir::Files, add);
    return checksums;
}

void store(bool *target, bool value)
{
    if (target)
        *target = value;
}

} // namespace

TVLProjectChecksums::TVLProjectChecksums(const TVLProjectFolderFormat *folder)
    : mFolder(folder)
{
}

ChecksumKey TVLProjectChecksums::checksumKey(const QUuid &uuid, TVL::DocumentType type)
{
    return {uuid, Format::docTypeToFileName(type)};
}

bool TVLProjectChecksums::checksumMapContains(const ChecksumMap &checksums, const QUuid &uuid)
{
    // No name comes before the empty one.
    const auto first = checksums.lowerBound({uuid, QString()});
    return first != checksums.cend() && first.key().first == uuid;
}

ChecksumMap TVLProjectChecksums::toUuidChecksumMap(const QMap<QString, QByteArray> &checksums)
{
    ChecksumMap result;
    for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry) {
        ChecksumKey key = keyOf(entry.key());
        if (key.first.isNull())
            key.second = entry.key();
        result.insert(key, entry.value());
    }
    return result;
}

QByteArray TVLProjectChecksums::currentHddChecksum(int id, TVL::DocumentType type) const
{
    return Format::md5(path(), id, type);
}

QByteArray TVLProjectChecksums::currentHddChecksumData(const QUuid &uuid,
                                                       TVL::DocumentType type) const
{
    return Format::md5Data(path(), uuid, type);
}

QByteArray TVLProjectChecksums::currentHddChecksumMobile(const QUuid &uuid,
                                                         TVL::DocumentType type) const
{
    return Format::md5Mobile(path(), uuid, type);
}

void TVLProjectChecksums::setChecksums(const ChecksumMap &checksums)
{
    mChecksums = checksums;
    setModified(true);
}

QByteArray TVLProjectChecksums::loadedChecksum(int id, TVL::DocumentType type) const
{
    return mChecksums.value(numberedFile(id, type).key);
}

QByteArray TVLProjectChecksums::loadedChecksum(const QUuid &uuid, TVL::DocumentType type) const
{
    return mChecksums.value(checksumKey(uuid, type));
}

void TVLProjectChecksums::setModified(bool modified)
{
    mModified = modified;
    mWasEverModified = mWasEverModified || modified;
}

bool TVLProjectChecksums::checksumsMatch(const QString &filePath, const QByteArray &checksum)
{
    const QByteArray current = Format::calcChecksum(filePath);
    return !current.isEmpty() && current == checksum;
}

bool TVLProjectChecksums::checksumsMatch(int id, TVL::DocumentType type) const
{
    return isTracked(type) && matches(numberedFile(id, type));
}

bool TVLProjectChecksums::checksumsMatch(const QUuid &uuid, TVL::DocumentType type) const
{
    return isTracked(type) && matches(dataFile(uuid, type));
}

void TVLProjectChecksums::updateHashSum(int id, TVL::DocumentType type)
{
    if (isTracked(type))
        updateLoadedCheckSums(id, type);
}

void TVLProjectChecksums::updateHashSumNode(const TVLProjectNode *node, TVL::DocumentType type)
{
    if (!node || !isTracked(type))
        return;
    if (mFolder->formatVersion() == TVL::FormatVersion23)
        updateLoadedCheckSumsData(node->mUuid, type);
    else
        updateLoadedCheckSums(node->mId, type);
}

void TVLProjectChecksums::updateHashSumMobile(const QUuid &uuid, TVL::DocumentType type)
{
    if (isTracked(type))
        updateLoadedCheckSumsMobile(uuid, type);
}

void TVLProjectChecksums::updateLoadedCheckSums(int id, TVL::DocumentType type)
{
    refresh(numberedFile(id, type));
}

void TVLProjectChecksums::updateLoadedCheckSumsData(const QUuid &uuid, TVL::DocumentType type)
{
    refresh(dataFile(uuid, type));
}

void TVLProjectChecksums::updateLoadedCheckSumsMobile(const QUuid &uuid, TVL::DocumentType type)
{
    refresh(mobileFile(uuid, type));
}

bool TVLProjectChecksums::saveChecksumFile(const QString &filePath, const ChecksumMap &checksums)
{
    QByteArray lines;
    for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry)
        appendLine(entry.key(), entry.value(), &lines);
    return TVLCoreUtil::WriteBinaryFile(lines, filePath, nullptr);
}

bool TVLProjectChecksums::loadChecksumFile(const QString &filePath, ChecksumMap *checksums)
{
    if (!checksums)
        return false;
    checksums->clear();
    bool ok = false;
    const QString lines = QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(filePath, &ok));
    for (const QStringView line : qTokenize(lines, u'\n'))
        addLine(line, checksums);
    return ok;
}

bool TVLProjectChecksums::saveChecksums()
{
    bool ok = false;
    const QString filePath = Format::projectChecksumFilePathId(path());
    Format::ensurePathExists(QFileInfo(filePath).path(), &ok);
    if (!ok || !saveChecksumFile(filePath, mChecksums))
        return false;
    setModified(false);
    return true;
}

bool TVLProjectChecksums::loadChecksums()
{
    setModified(false);
    return loadChecksumFile(Format::projectChecksumFilePathId(path()), &mChecksums);
}

ChecksumMap TVLProjectChecksums::calcFilesDataChecksums(const QString &path)
{
    return calcDataChecksums(DesktopData, path);
}

ChecksumMap TVLProjectChecksums::calcMobileDataChecksums(const QString &path)
{
    return calcDataChecksums(MobileData, path);
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
        files.insert(key, known == checksums->cend() ? Format::calcChecksum(filePath) : *known);
        return true;
    };
    visitDocuments(MobileData, Format::calcEnclosingPath(path), QDir::Files, add);
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
    visitDocuments(MobileData, Format::calcEnclosingPath(path),
                   QDir::AllEntries | QDir::NoDotAndDotDot, compare);
    store(newFiles, hasNew);
    store(missingFiles, !missing.isEmpty());
    store(modifiedFiles, hasModified);
    return hasNew || hasModified;
}

bool TVLProjectChecksums::removeOldMobileChecksumFiles(const QString &path)
{
    const QDir folder(Format::mobileDataPath(Format::calcEnclosingPath(path)));
    const QFileInfoList files = folder.entryInfoList({u"*.checksums"_qs}, QDir::Files);
    bool allRemoved = true;
    for (const QFileInfo &file : files) {
        if (!wholeUuid(file.baseName()).isNull())
            allRemoved = TVLCoreUtil::DeleteFile(file.filePath()) && allRemoved;
    }
    return allRemoved;
}

QString TVLProjectChecksums::path() const
{
    return Format::calcEnclosingPath(mFolder->projectPath());
}

TVLProjectChecksums::RecordedFile TVLProjectChecksums::numberedFile(int id,
                                                                    TVL::DocumentType type) const
{
    return {{QUuid(), Format::documentFileNameId(id, type)},
            Format::docsNodeTypeFilePath(path(), id, type)};
}

TVLProjectChecksums::RecordedFile TVLProjectChecksums::dataFile(const QUuid &uuid,
                                                                TVL::DocumentType type) const
{
    return {checksumKey(uuid, type), Format::dataNodeTypeFilePath(path(), uuid, type)};
}

TVLProjectChecksums::RecordedFile TVLProjectChecksums::mobileFile(const QUuid &uuid,
                                                                  TVL::DocumentType type) const
{
    return {checksumKey(uuid, type), Format::mobileDataNodeTypeFilePath(path(), uuid, type)};
}

bool TVLProjectChecksums::matches(const RecordedFile &file) const
{
    const auto record = mChecksums.constFind(file.key);
    if (record == mChecksums.cend())
        return !QFileInfo::exists(file.path);
    return checksumsMatch(file.path, *record);
}

void TVLProjectChecksums::refresh(const RecordedFile &file)
{
    if (QFileInfo::exists(file.path))
        mChecksums.insert(file.key, Format::calcChecksum(file.path));
    else
        mChecksums.remove(file.key);
    setModified(true);
}
