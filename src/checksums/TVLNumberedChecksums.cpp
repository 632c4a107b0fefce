#include "TVLNumberedChecksums_p.h"

#include "TVLNumberedFiles_p.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"

#include <QFileInfo>

#include <array>
#include <filesystem>
#include <optional>

namespace {

using Format = TVLProjectFolderFormat;

struct TypedTail
{
    TVL::DocumentType type;
    QString tail; ///< What follows the id.
};

const std::array<TypedTail, 4> &typedTails()
{
    static const auto tails = [] {
        const auto tailOf = [](TVL::DocumentType type) {
            return TypedTail{type, Format::documentFileNameId(0, type).sliced(1)};
        };
        return std::array{tailOf(TVL::MainText), tailOf(TVL::NotesText), tailOf(TVL::SynopsisText),
                          tailOf(TVL::CommentsFile)};
    }();
    return tails;
}

quint64 numberedKey(int id, TVL::DocumentType type)
{
    constexpr int BitsOfTypes = 8;
    return (quint64(id) << BitsOfTypes) | quint64(type);
}

/** The document that a file name stands for; none for a name that no id gives. */
std::optional<quint64> keyOfName(QStringView name, Qt::CaseSensitivity sensitivity)
{
    const std::optional<TVLNumberedName> numbered = tvlNumberedName(name);
    if (!numbered)
        return std::nullopt;
    for (const TypedTail &typed : typedTails()) {
        if (numbered->tail.compare(typed.tail, sensitivity) == 0)
            return numberedKey(numbered->id, typed.type);
    }
    return std::nullopt;
}

} // namespace

TVLNumberedChecksums::TVLNumberedChecksums(const TVLProjectChecksums *checksums)
    : mChecksums(checksums)
    , mDocsPath(Format::filesDocsPath(checksums->path()) + u'/')
{
    const ChecksumMap &records = checksums->mChecksums;
    mRecords.reserve(records.size());
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        const auto &[uuid, name] = record.key();
        const auto key = uuid.isNull() ? keyOfName(name, Qt::CaseSensitive) : std::nullopt;
        if (key)
            mRecords.insert(*key, *record);
    }
    mListed = listedKeys(&mIsListed);
}

/** Reads the whole folder or nothing: what a failure has hidden isn't missing. */
QSet<TVLNumberedChecksums::Key> TVLNumberedChecksums::listedKeys(bool *isListed) const
{
    QSet<Key> keys;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFileInfo(mDocsPath).filesystemFilePath(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        // Names that aren't in the system's encoding are none of ours, and no reason to throw.
        const QString name = QFileInfo(entry->path()).fileName();
        if (const auto key = keyOfName(name, Qt::CaseInsensitive))
            keys.insert(*key);
    }
    *isListed = !error;
    return keys;
}

bool TVLNumberedChecksums::checksumsMatch(int id, TVL::DocumentType type) const
{
    const Key key = numberedKey(id, type);
    const auto record = mRecords.constFind(key);
    if (record != mRecords.cend())
        return TVLProjectChecksums::checksumsMatch(mDocsPath + Format::documentFileNameId(id, type),
                                                   *record);
    return (mIsListed && !mListed.contains(key)) || mChecksums->checksumsMatch(id, type);
}

QByteArray TVLNumberedChecksums::loadedChecksum(int id, TVL::DocumentType type) const
{
    return mRecords.value(numberedKey(id, type));
}
