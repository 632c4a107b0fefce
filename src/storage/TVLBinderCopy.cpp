#include "TVLBinderCopy_p.h"

#include "TVLBinderContents.h"
#include "TVLProjectFileNames_p.h"
#include "TVLProjectFolderFormat.h"

#include "TVLCoreUtil.h"
#include "TVLZipReader.h"

#include <QHash>

#include <filesystem>

namespace {

using Format = TVLProjectFolderFormat;

/** What a look at a file shows without reading it. */
struct Stamp
{
    std::filesystem::file_time_type mTime;
    std::uintmax_t mSize = 0;

    friend bool operator==(const Stamp &, const Stamp &) = default;
};

std::optional<Stamp> stampOf(const QString &path)
{
    std::error_code failure;
    const std::filesystem::path file(path.toStdU16String());
    const auto time = std::filesystem::last_write_time(file, failure);
    if (failure)
        return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(file, failure);
    return failure ? std::nullopt : std::optional(Stamp{time, size});
}

struct VerifiedCopy
{
    Stamp mBinder;
    Stamp mAutosave;

    friend bool operator==(const VerifiedCopy &, const VerifiedCopy &) = default;
};

std::optional<VerifiedCopy> lookAt(const QString &binderFile, const QString &autosave)
{
    const std::optional<Stamp> binderStamp = stampOf(binderFile);
    const std::optional<Stamp> autosaveStamp = stampOf(autosave);
    if (!binderStamp || !autosaveStamp)
        return std::nullopt;
    return VerifiedCopy{*binderStamp, *autosaveStamp};
}

/** The copies that have been compared with their binders, by the paths of those. */
QHash<QString, VerifiedCopy> &verifiedCopies()
{
    static QHash<QString, VerifiedCopy> copies;
    return copies;
}

bool areEqual(const QString &binderFile, const QString &autosave)
{
    bool isRead = false;
    const QByteArray binder = TVLCoreUtil::ReadBinaryFile(binderFile, &isRead);
    return isRead && TVLZipReader(autosave).content(0) == binder;
}

QString autosavePath(const QString &projectPath)
{
    return Format::binderAutosaveFilePath(Format::calcEnclosingPath(projectPath));
}

} // namespace

bool tvlHasAutosaveOf(const QString &projectPath, const QString &binderFile)
{
    const QString autosave = autosavePath(projectPath);
    const std::optional<VerifiedCopy> seen = lookAt(binderFile, autosave);
    if (!seen)
        return false;
    const auto known = verifiedCopies().constFind(binderFile);
    if (known != verifiedCopies().cend() && *known == *seen)
        return true;
    // The look was before the reading, so that a change meanwhile is seen the next time.
    if (!areEqual(binderFile, autosave))
        return false;
    verifiedCopies().insert(binderFile, *seen);
    return true;
}

bool tvlMakeAutosaveOf(const QString &projectPath, const QString &binderFile)
{
    verifiedCopies().remove(binderFile);
    return Format::compressBinder(projectPath, TVLProjectFileNames::BinderAutosave, binderFile)
        && tvlHasAutosaveOf(projectPath, binderFile);
}

bool tvlEnsureAutosaveOf(const QString &projectPath, const QString &binderFile)
{
    if (tvlHasAutosaveOf(projectPath, binderFile))
        return true;
    TVLBinderContents contents;
    return contents.read(binderFile).isEmpty() && contents.isLoadable()
        && tvlMakeAutosaveOf(projectPath, binderFile);
}
