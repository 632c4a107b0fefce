#include "TVLProjectChecksums.h"

#include "TUuid.h"
#include "TVLCoreUtil.h"
#include "TVLFilePresence_p.h"
#include "TVLFileWriting_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** The types whose records are kept in step with their files. */
constexpr TVL::DocumentType TrackedTypes[] = {
    TVL::MainText,
    TVL::NotesText,
    TVL::SynopsisText,
    TVL::CommentsFile,
};

const qsizetype HashSize = QCryptographicHash::hashLength(QCryptographicHash::Sha1);

bool isTracked(TVL::DocumentType type)
{
    return std::find(std::begin(TrackedTypes), std::end(TrackedTypes), type)
        != std::end(TrackedTypes);
}

// --- Lines of a checksum file

constexpr QByteArrayView ByteOrderMark = "\xef\xbb\xbf";

/** What a note has behind the name of its file. */
const QString NoteSuffix = u".saved"_s;

ChecksumKey noteKey(const ChecksumKey &key)
{
    return {key.first, key.second + NoteSuffix};
}

/** The key of a line. Only a name of an item's own folder has a slash. */
ChecksumKey keyOf(QString &&text)
{
    const qsizetype slash = text.indexOf(u'/');
    if (slash <= 0)
        return {QUuid(), std::move(text)};
    return {TUuid::fromWholeText(QStringView(text).first(slash)), text.sliced(slash + 1)};
}

void appendLine(const ChecksumKey &key, const QByteArray &checksum, QByteArray *lines)
{
    const auto &[uuid, name] = key;
    if (!uuid.isNull())
        lines->append(TUuid::toStringNoBraces(uuid, true).toLatin1()).append('/');
    lines->append(name.toUtf8()).append('=').append(checksum.toHex()).append('\n');
}

QByteArray linesOf(const ChecksumMap &checksums)
{
    QByteArray lines;
    for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry)
        appendLine(entry.key(), entry.value(), &lines);
    return lines;
}

/** The value of each hexadecimal digit; 16 for any other byte. */
constexpr auto DigitValues = [] {
    std::array<uchar, 256> values = {};
    values.fill(16);
    for (uchar digit = 0; digit < 10; ++digit)
        values['0' + digit] = digit;
    for (uchar digit = 10; digit < 16; ++digit)
        values['a' + digit - 10] = values['A' + digit - 10] = digit;
    return values;
}();

/** What a line says behind its equal sign. What isn't a hexadecimal digit is passed over, and with
 * it the rest of another line end. */
QByteArray hashIn(QByteArrayView line, qsizetype equalSign)
{
    const QByteArrayView hash = line.sliced(equalSign + 1);
    // As nearly all are; QByteArray::fromHex() takes several times longer.
    if (hash.size() == 2 * HashSize) {
        QByteArray bytes(HashSize, Qt::Uninitialized);
        char *byte = bytes.data();
        uint strange = 0;
        for (qsizetype i = 0; i < HashSize; ++i) {
            const uchar high = DigitValues[uchar(hash[2 * i])];
            const uchar low = DigitValues[uchar(hash[2 * i + 1])];
            strange |= high | low;
            *byte++ = char(high << 4 | low);
        }
        if (strange < 16)
            return bytes;
    }
    return QByteArray::fromHex(QByteArray::fromRawData(hash.data(), hash.size()));
}

/** A name as it stands; only in front of a whole file a byte order mark isn't part of one. */
QString nameIn(QByteArrayView utf8)
{
    QString marks;
    while (utf8.startsWith(ByteOrderMark)) {
        marks += QChar(QChar::ByteOrderMark);
        utf8 = utf8.sliced(ByteOrderMark.size());
    }
    return marks.isEmpty() ? QString::fromUtf8(utf8) : marks + QString::fromUtf8(utf8);
}

/** The records of a checksum file; of several of one key the last one counts. */
ChecksumMap recordsIn(QByteArrayView lines)
{
    if (lines.startsWith(ByteOrderMark))
        lines = lines.sliced(ByteOrderMark.size());
    std::map<ChecksumKey, QByteArray> records;
    while (!lines.isEmpty()) {
        const qsizetype end = lines.indexOf('\n');
        const QByteArrayView line = end < 0 ? lines : lines.first(end);
        const qsizetype equalSign = line.indexOf('=');
        // A whole file is in the order of the map, so the end is the place to try first.
        if (equalSign > 0)
            records.insert_or_assign(records.cend(), keyOf(nameIn(line.first(equalSign))),
                                     hashIn(line, equalSign));
        lines = end < 0 ? QByteArrayView() : lines.sliced(end + 1);
    }
    return ChecksumMap(std::move(records));
}

/** How long the hash of a line is; -1 for a line without one. */
qsizetype hashSizeOf(QByteArrayView line)
{
    const qsizetype equalSign = line.indexOf('=');
    return equalSign > 0 ? hashIn(line, equalSign).size() : -1;
}

/** The last line of a file if a kill has cut it off: it has no end, and no hash as long as that of
 * the first line or of a file. Nothing otherwise. */
QByteArrayView cutOffLine(QByteArrayView lines)
{
    const QByteArrayView last = lines.sliced(lines.lastIndexOf('\n') + 1);
    const qsizetype size = hashSizeOf(last);
    const qsizetype firstEnd = lines.indexOf('\n');
    const bool isWhole = size == HashSize
        || (size > 0 && firstEnd >= 0 && hashSizeOf(lines.first(firstEnd)) == size);
    return isWhole ? QByteArrayView() : last;
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
        ChecksumKey key = keyOf(QString(entry.key()));
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

QByteArray TVLProjectChecksums::currentHddChecksumNode(const TVLProjectNode *node,
                                                       TVL::DocumentType type) const
{
    return Format::calcChecksum(nodeFile(node, type).path);
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

void TVLProjectChecksums::setHashSumNode(const TVLProjectNode *node, TVL::DocumentType type,
                                         const QByteArray &checksum)
{
    if (!node || !isTracked(type))
        return;
    const ChecksumKey key = nodeFile(node, type).key;
    if (mChecksums.value(key) == checksum && mChecksums.contains(key) != checksum.isEmpty())
        return;
    forget(key);
    if (!checksum.isEmpty()) {
        mChecksums.insert(key, checksum);
        if (mNotes.value(key).isEmpty()) // It may hold anything no more.
            mNotes.remove(key);
    }
    setModified(true);
}

void TVLProjectChecksums::forgetHashSums(int id)
{
    if (mChecksums.isEmpty()) // As it is while a project is opened, with all its items.
        return;
    for (const TVL::DocumentType type : TrackedTypes)
        forget(numberedFile(id, type).key);
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
    if (node && isTracked(type))
        refresh(nodeFile(node, type));
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
    return tvlWriteOwnFile(linesOf(checksums), filePath, nullptr);
}

bool TVLProjectChecksums::loadChecksumFile(const QString &filePath, ChecksumMap *checksums)
{
    if (!checksums)
        return false;
    bool ok = false;
    *checksums = recordsIn(TVLCoreUtil::ReadBinaryFile(filePath, &ok));
    return ok;
}

bool TVLProjectChecksums::saveChecksums()
{
    bool ok = false;
    const QString filePath = Format::projectChecksumFilePathId(path());
    Format::ensurePathExists(QFileInfo(filePath).path(), &ok);
    ChecksumMap content = mChecksums;
    for (auto entry = mNotes.cbegin(); entry != mNotes.cend(); ++entry) {
        if (entry.value() != mChecksums.value(entry.key()))
            content.insert(noteKey(entry.key()), entry.value());
    }
    if (!ok || !saveChecksumFile(filePath, content))
        return false;
    setModified(false);
    return true;
}

bool TVLProjectChecksums::loadChecksums()
{
    setModified(false);
    bool isLoaded = false;
    const QByteArray lines =
        TVLCoreUtil::ReadBinaryFile(Format::projectChecksumFilePathId(path()), &isLoaded);
    mChecksums = recordsIn(lines);
    mNotes = takeNotes(&mChecksums);
    // Of a line that a kill has cut off nothing is to stay.
    if (const QByteArrayView line = cutOffLine(lines); !line.isEmpty()) {
        mChecksums.remove(keyOf(QString::fromUtf8(line.first(qMax(line.indexOf('='), 0)))));
        setModified(true);
    }
    const auto isPartOfANote = [](const auto &note) {
        return !note.value().isEmpty() && note.value().size() != HashSize;
    };
    if (mNotes.removeIf(isPartOfANote) > 0)
        setModified(true);
    return isLoaded;
}

bool TVLProjectChecksums::isFileMissing() const
{
    return QFileInfo(Format::filesDocsPath(path())).isDir()
        && tvlIsMissing(Format::projectChecksumFilePathId(path()));
}

void TVLProjectChecksums::makeFile() const
{
    if (isFileMissing())
        (void)saveChecksumFile(Format::projectChecksumFilePathId(path()), {});
}

bool TVLProjectChecksums::withdrawOutdated() const
{
    const QString filePath = Format::projectChecksumFilePathId(path());
    if (tvlIsMissing(filePath))
        return true;
    ChecksumMap content;
    const bool isLoaded = loadChecksumFile(filePath, &content);
    ChecksumMap outdated = content;
    outdated.removeIf([this](const auto &entry) {
        return isNote(entry.key().second) || mChecksums.value(entry.key()) == entry.value();
    });
    if (isLoaded && outdated.isEmpty())
        return true;
    for (auto entry = outdated.cbegin(); entry != outdated.cend(); ++entry) {
        content.remove(entry.key());
        if (!content.contains(noteKey(entry.key())))
            content.insert(noteKey(entry.key()), entry.value());
    }
    return saveChecksumFile(filePath, content);
}

void TVLProjectChecksums::noteWriting(const TVLProjectNode *node,
                                      const QList<TVL::DocumentType> &types)
{
    ChecksumMap notes;
    for (const TVL::DocumentType type : types)
        notes.insert(nodeFile(node, type).key, {});
    note(notes);
}

void TVLProjectChecksums::noteWritten(const TVLProjectNode *node,
                                      const QList<TVL::DocumentType> &types)
{
    ChecksumMap notes;
    for (const TVL::DocumentType type : types) {
        const ChecksumKey key = nodeFile(node, type).key;
        notes.insert(key, mChecksums.value(key));
    }
    note(notes);
}

void TVLProjectChecksums::note(const ChecksumMap &notes)
{
    // In a line of its own, even if somebody has left the last one without an end.
    QByteArray lines = "\n";
    for (auto entry = notes.cbegin(); entry != notes.cend(); ++entry) {
        mNotes.insert(entry.key(), entry.value());
        appendLine(noteKey(entry.key()), entry.value(), &lines);
    }
    const QString filePath = Format::projectChecksumFilePathId(path());
    const QString textsPath = Format::searchIndexesFilePath(path());
    // Where the texts can't be, nothing is done to their hashes either. What a link leads to isn't
    // the project's.
    if (notes.isEmpty() || !QFileInfo(filePath).isFile() || QFileInfo(filePath).isSymbolicLink()
        || (!tvlIsMissing(textsPath) && !QFileInfo(textsPath).isFile()))
        return;
    QFile file(filePath);
    if (file.open(QIODevice::Append | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        file.write(lines);
}

bool TVLProjectChecksums::isNote(const QString &name)
{
    return name.endsWith(NoteSuffix);
}

ChecksumMap TVLProjectChecksums::takeNotes(ChecksumMap *checksums)
{
    ChecksumMap notes;
    checksums->removeIf([&notes](const auto &entry) {
        const auto &[uuid, name] = entry.key();
        if (isNote(name))
            notes.insert({uuid, name.chopped(NoteSuffix.size())}, entry.value());
        return isNote(name);
    });
    return notes;
}

QString TVLProjectChecksums::path() const
{
    return Format::calcEnclosingPath(mFolder->projectPath());
}

TVLProjectChecksums::RecordedFile TVLProjectChecksums::nodeFile(const TVLProjectNode *node,
                                                                TVL::DocumentType type) const
{
    return mFolder->formatVersion() == TVL::FormatVersion23 ? dataFile(node->mUuid, type)
                                                            : numberedFile(node->mId, type);
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
    return {checksumKey(uuid, type), Format::findMobileDataNodeTypeFilePath(path(), uuid, type)};
}

bool TVLProjectChecksums::matches(const RecordedFile &file) const
{
    const auto record = mChecksums.constFind(file.key);
    if (record == mChecksums.cend())
        return tvlIsMissing(file.path);
    return checksumsMatch(file.path, *record);
}

void TVLProjectChecksums::refresh(const RecordedFile &file)
{
    if (tvlIsMissing(file.path))
        mChecksums.remove(file.key);
    else
        mChecksums.insert(file.key, Format::calcChecksum(file.path));
    mNotes.remove(file.key);
    setModified(true);
}

/** Takes a record away. Of the file it is still known how it was left. */
void TVLProjectChecksums::forget(const ChecksumKey &key)
{
    const auto record = mChecksums.constFind(key);
    if (record == mChecksums.cend())
        return;
    if (!mNotes.contains(key))
        mNotes.insert(key, *record);
    mChecksums.erase(record);
    setModified(true);
}
