#include "TVLCoreUtil.h"

#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"

#include "TUuid.h"
#include "TVLDoors.h"
#include "TVLRegularFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringConverter>

#include <cerrno>
#include <filesystem>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// With System also links that lead nowhere are listed.
constexpr QDir::Filters EverythingInside =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

/** Whether a name is taken, be it by a link that leads nowhere. */
bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymbolicLink();
}

bool isRealFolder(const QFileInfo &info)
{
    return info.isDir() && !info.isSymbolicLink();
}

/** Without a slash at the end, which would make the file system look behind a link. */
QString cleanAbsolutePath(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

bool deleteEntry(const QFileInfo &entry)
{
    const QString path = entry.absoluteFilePath();
    return isRealFolder(entry) ? QDir(path).removeRecursively() : QFile::remove(path);
}

/** The absolute path with links resolved, as far as it exists. */
QString resolvedPath(const QString &path)
{
    QFileInfo existing(cleanAbsolutePath(path));
    QString rest;
    while (!existing.exists() && !existing.isRoot()) {
        rest.prepend(u'/' + existing.fileName());
        existing.setFile(existing.absolutePath());
    }
    return QDir::cleanPath(existing.canonicalFilePath() + rest);
}

/** Whether a resolved path is a folder's resolved path or lies below it. */
bool isWithin(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/');
}

bool copyLink(const QFileInfo &link, const QString &target)
{
    std::error_code error;
    std::filesystem::copy_symlink(link.filesystemFilePath(), QFileInfo(target).filesystemFilePath(),
                                  error);
    return !error;
}

bool copyFolder(const QString &source, const QString &target);

bool copyEntry(const QFileInfo &entry, const QString &target)
{
    if (isRealFolder(entry))
        return copyFolder(entry.absoluteFilePath(), target);
    if (entry.isFile())
        return QFile::copy(entry.absoluteFilePath(), target);
    // What is none of these is a pipe or a device, and reading one might never end.
    return entry.isSymbolicLink() && copyLink(entry, target);
}

bool copyFolder(const QString &source, const QString &target)
{
    // A folder that can't be looked into lists as empty, which must not pass for a copy of it.
    const QFileInfo folder(source);
    if (!folder.isReadable() || !folder.isExecutable() || !QDir().mkpath(target))
        return false;
    const QFileInfoList entries = QDir(source).entryInfoList(EverythingInside);
    for (const QFileInfo &entry : entries) {
        if (!copyEntry(entry, target + u'/' + entry.fileName()))
            return false;
    }
    return true;
}

/** Reads a file to its end; nothing when it can't be, with the reason in @p error. */
std::optional<QByteArray> readFile(const QString &path, QString *error)
{
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        tvlSetError(error, file.errorString());
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        tvlSetError(error, file.errorString());
        return std::nullopt;
    }
    return bytes;
}

/**
 * Whether a disk has room for a file's new content. To open a file for writing empties it, so what
 * is known to fail must not begin. A file system that can't tell how large it is has room.
 */
bool hasRoom(const QString &path, qint64 size)
{
    const QFileInfo info(path);
    const qint64 oldSize = info.exists() ? info.size() : 0;
    if (size <= oldSize || (info.exists() && !info.isFile()))
        return true;
    std::error_code failure;
    const std::filesystem::space_info space = std::filesystem::space(
        std::filesystem::path(info.absolutePath().toStdU16String()), failure);
    return failure || space.capacity == 0 || std::uintmax_t(size - oldSize) <= space.available;
}

/** Writes all bytes. Whoever takes fewer has no error yet; the attempt to write the rest has. */
bool writeAll(QFile *file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const qint64 written = file->write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return file->flush();
}

QString unknownEncodingText(const char *codecName)
{
    return TVLCoreUtil::tr("Unknown text encoding: %1").arg(QString::fromLatin1(codecName));
}

// Stateless, so that a character which is cut off at the end shows as U+FFFD and isn't swallowed.
QStringDecoder decoderFor(const QByteArray &bytes, const char *codecName, bool detectUnicode)
{
    if (detectUnicode) {
        if (const auto encoding = QStringConverter::encodingForData(bytes))
            return QStringDecoder(*encoding, QStringDecoder::Flag::Stateless);
    }
    return QStringDecoder(codecName, QStringDecoder::Flag::Stateless);
}

} // namespace

QString TVLCoreUtil::CreateUUID()
{
    return TUuid::toStringNoBraces(tvlNewUuid(), true);
}

bool TVLCoreUtil::DeleteFolderAndFiles(const QString &path)
{
    if (path.isEmpty())
        return false;
    const QString folder = cleanAbsolutePath(path);
    if (QFileInfo(folder).isRoot())
        return false;
    return !isTaken(folder) || deleteEntry(QFileInfo(folder));
}

bool TVLCoreUtil::DeleteFolderContents(const QString &path)
{
    if (path.isEmpty() || !isRealFolder(QFileInfo(cleanAbsolutePath(path))))
        return false;
    bool isEmpty = true;
    const QFileInfoList entries = QDir(path).entryInfoList(EverythingInside);
    for (const QFileInfo &entry : entries)
        isEmpty = deleteEntry(entry) && isEmpty;
    return isEmpty;
}

bool TVLCoreUtil::DeleteFile(const QString &path, QString *error)
{
    if (path.isEmpty())
        return tvlFail(error, tr("No file name given"));
    if (!isTaken(path))
        return true;
    if (isRealFolder(QFileInfo(path)))
        return tvlFail(error, tr("Is a folder"));
    QFile file(path);
    return file.remove() || tvlFail(error, file.errorString());
}

bool TVLCoreUtil::IsSameOrInside(const QString &path, const QString &folder)
{
    return !path.isEmpty() && !folder.isEmpty()
        && isWithin(resolvedPath(path), resolvedPath(folder));
}

bool TVLCoreUtil::CopyDirectory(const QString &source, const QString &target)
{
    if (source.isEmpty() || target.isEmpty() || !QFileInfo(source).isDir()
        || IsSameOrInside(target, source))
        return false;
    return copyFolder(source, target);
}

bool TVLCoreUtil::MoveDirectoryQuick(const QString &source, const QString &target)
{
    if (source.isEmpty() || target.isEmpty() || !QFileInfo(source).isDir()
        || IsSameOrInside(target, source) || IsSameOrInside(source, target))
        return false;
    const QFileInfo targetInfo(cleanAbsolutePath(target));
    // Renaming needs a free name; an empty folder that holds the name goes, a full one stays.
    if (targetInfo.isDir())
        QDir().rmdir(targetInfo.filePath());
    else if (!QDir().mkpath(targetInfo.path()))
        return false;
    return QDir().rename(cleanAbsolutePath(source), targetInfo.filePath())
        || (CopyDirectory(source, target) && DeleteFolderAndFiles(source));
}

int TVLCoreUtil::getFileAndDirCount(const QString &path)
{
    if (path.isEmpty())
        return 0;
    int count = 0;
    QDirIterator entries(path, EverythingInside, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        ++count;
    }
    return count;
}

bool TVLCoreUtil::IsMissing(const QString &path)
{
    return tvlIsMissing(path);
}

bool TVLCoreUtil::IsReadable(const QString &path, QString *error)
{
    if (path.isEmpty())
        return tvlFail(error, tr("No file name given"));
    const QFileInfo info(path);
    if (info.isDir())
        return info.isReadable() || tvlFail(error, tr("The folder can't be read"));
    TVLRegularFile file(path);
    return file.open(QIODevice::ReadOnly) || tvlFail(error, file.errorString());
}

bool TVLCoreUtil::IsWritable(const QString &path, QString *error)
{
    if (path.isEmpty())
        return tvlFail(error, tr("No file name given"));
    const QFileInfo info(path);
    if (info.isDir())
        return info.isWritable() || tvlFail(error, tr("The folder can't be written to"));
    if (info.exists()) {
        TVLRegularFile file(path);
        return file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)
            || tvlFail(error, file.errorString());
    }
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return tvlFail(error, tr("The folder doesn't exist"));
    return folder.isWritable() || tvlFail(error, tr("The folder can't be written to"));
}

QString TVLCoreUtil::ReadUnicodeTextFile(const QString &path, QString *error, const char *codecName,
                                         bool detectUnicode)
{
    const std::optional<QByteArray> bytes = readFile(path, error);
    if (!bytes)
        return {};
    QStringDecoder decoder = decoderFor(*bytes, codecName, detectUnicode);
    if (!decoder.isValid()) {
        tvlSetError(error, unknownEncodingText(codecName));
        return {};
    }
    return decoder(*bytes);
}

bool TVLCoreUtil::WriteBinaryFile(const QByteArray &bytes, const QString &path, QString *error,
                                  bool *couldOpen)
{
    if (couldOpen)
        *couldOpen = true;
    if (!hasRoom(path, bytes.size()))
        return tvlFail(error, qt_error_string(ENOSPC));
    QFile file(path);
    // Unbuffered, so that a full disk shows in the write itself.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        if (couldOpen)
            *couldOpen = false;
        return tvlFail(error, file.errorString());
    }
    if (!writeAll(&file, bytes))
        return tvlFail(error, file.errorString());
    file.close();
    return file.error() == QFileDevice::NoError || tvlFail(error, file.errorString());
}

bool TVLCoreUtil::WriteUnicodeTextFile(const QString &text, const QString &path, QString *error,
                                       const char *codecName)
{
    QStringEncoder encoder(codecName, QStringEncoder::Flag::Stateless);
    if (!encoder.isValid())
        return tvlFail(error, unknownEncodingText(codecName));
    const QByteArray bytes = encoder(text);
    return WriteBinaryFile(bytes, path, error);
}

QByteArray TVLCoreUtil::ReadBinaryFile(const QString &path, bool *ok)
{
    const std::optional<QByteArray> bytes = readFile(path, nullptr);
    if (ok)
        *ok = bytes.has_value();
    return bytes.value_or(QByteArray());
}

QStringList TVLCoreUtil::fileNames(const QString &path)
{
    return path.isEmpty() ? QStringList() : QDir(path).entryList(QDir::Files, QDir::Name);
}

QString TVLCoreUtil::GetNewTempFilePath(const QString &extension)
{
    const QString folder = GetTavelinorTempPath();
    const QString dot = extension.isEmpty() || extension.startsWith(u'.') ? QString() : u"."_s;
    QString path;
    do {
        path = folder + u'/' + CreateUUID() + dot + extension;
    } while (isTaken(path));
    return path;
}

QString TVLCoreUtil::GetTavelinorTempPath()
{
    const QString path = QDir::tempPath() + u"/Tavelinor"_s;
    // A writer's texts pass through here, in a place that all users of the computer share.
    if (!QFileInfo::exists(path))
        QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

QString TVLCoreUtil::GetUniqueFileName(const QString &folder, const QString &fileName)
{
    // A dot in front hides a file and begins no extension.
    const qsizetype dot = fileName.lastIndexOf(u'.');
    const qsizetype nameLength = dot > 0 ? dot : fileName.size();
    const QDir directory(folder);
    QString name = fileName;
    for (int number = 1; isTaken(directory.filePath(name)); ++number) {
        name = fileName.first(nameLength) + u' ' + QString::number(number)
            + fileName.sliced(nameLength);
    }
    return name;
}
