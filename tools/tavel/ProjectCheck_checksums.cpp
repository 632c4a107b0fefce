/* What was recorded of the texts for other sessions: hashes of their files, and the texts to search
 * by. */
#include "ProjectCheck.h"

#include "TUuid.h"
#include "TVLCoreUtil.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"

#include <QCryptographicHash>
#include <QStringTokenizer>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** What a line of the checksum file says: a file, as the line names it, and its hash. */
struct HashRecord
{
    QString name;
    QByteArray hash;
};

bool isHexDigit(QChar ch)
{
    return (ch >= u'0' && ch <= u'9') || (ch >= u'a' && ch <= u'f') || (ch >= u'A' && ch <= u'F');
}

/** Whether a hash is written out in full. */
bool isWholeHash(QStringView text)
{
    const qsizetype digits =
        2 * qsizetype(QCryptographicHash::hashLength(QCryptographicHash::Sha1));
    return text.size() == digits && std::all_of(text.begin(), text.end(), isHexDigit);
}

/** Whether a line names a file of the folder of documents, or of an item's own folder. */
bool isFileName(QStringView name)
{
    const qsizetype slash = name.indexOf(u'/');
    if (slash < 0)
        return !name.isEmpty();
    return !TUuid::fromWholeText(name.first(slash)).isNull() && slash + 1 < name.size()
        && !name.sliced(slash + 1).contains(u'/');
}

std::optional<HashRecord> recordOf(QStringView line)
{
    const qsizetype equalSign = line.indexOf(u'=');
    if (equalSign < 0 || !isFileName(line.first(equalSign)))
        return std::nullopt;
    const QString name = line.first(equalSign).toString();
    const QStringView hash = line.sliced(equalSign + 1).trimmed();
    // What a file is like that was being written is known to nobody.
    if (!isWholeHash(hash) && !(hash.isEmpty() && TVLProjectChecksums::isNote(name)))
        return std::nullopt;
    return HashRecord{name, QByteArray::fromHex(hash.toLatin1())};
}

} // namespace

void ProjectCheck::checkHashes()
{
    const QString filePath = Format::projectChecksumFilePathId(mFiles.projectPath);
    if (TVLCoreUtil::IsMissing(filePath))
        return;
    bool isRead = false;
    const QString lines = QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(filePath, &isRead));
    if (!isRead)
        add(u"unreadableHashes"_s, relative(filePath), u"the file can't be read"_s);

    // Of several lines for one file the last one counts.
    QMap<QString, QByteArray> hashes;
    int number = 0;
    for (const QStringView line : qTokenize(lines, u'\n')) {
        ++number;
        if (line.trimmed().isEmpty())
            continue;
        if (const std::optional<HashRecord> record = recordOf(line))
            hashes.insert(record->name, record->hash);
        else
            add(u"unreadableHashes"_s, relative(filePath),
                u"line %1 isn't a file with its hash"_s.arg(number));
    }
    ChecksumMap checksums = TVLProjectChecksums::toUuidChecksumMap(hashes);
    // Where the project has noted how it left a file, a record is of what others made of it.
    checksums.insert(TVLProjectChecksums::takeNotes(&checksums));
    for (auto record = checksums.cbegin(); record != checksums.cend(); ++record)
        checkHash(record.key().first, record.key().second, record.value());
}

void ProjectCheck::checkHash(const QUuid &uuid, const QString &name, const QByteArray &hash)
{
    if (hash.isEmpty()) // A save was at it when it was last heard of.
        return;
    const QString folder = uuid.isNull() ? Format::filesDocsPath(mFiles.projectPath)
                                         : Format::filesDataNodePath(mFiles.projectPath, uuid);
    const QString filePath = folder + u'/' + name;
    if (!TVLCoreUtil::IsMissing(filePath)) {
        if (!TVLProjectChecksums::checksumsMatch(filePath, hash))
            add(u"changedDocument"_s, relative(filePath),
                u"the file differs from its recorded hash: it was changed behind the project's "
                "back"_s);
    } else if (isOfItem(uuid, name)) {
        add(u"missingDocument"_s, relative(filePath),
            u"the file's hash is recorded, but the file is gone"_s);
    }
}

void ProjectCheck::checkSearchIndex()
{
    const QString filePath = Format::searchIndexesFilePath(mFiles.projectPath);
    if (TVLCoreUtil::IsMissing(filePath))
        return;
    if (const QString error = TVLSearchIndex::fileError(filePath); !error.isEmpty())
        add(u"unreadableSearchIndex"_s, relative(filePath), error);
}
