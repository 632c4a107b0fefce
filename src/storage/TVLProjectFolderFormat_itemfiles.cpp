#include "TVLProjectFolderFormat.h"

#include "TUuid.h"
#include "TVLCoreUtil.h"
#include "TVLFilePresence_p.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFileNames_p.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

QString numberedFilePath(const QString &path, int id, const QString &extension)
{
    return Format::filesDocsPath(Format::calcEnclosingPath(path))
        + u"/%1.%2"_s.arg(QString::number(id), extension);
}

/**
 * The names of an item's files: those of a listing, and those that any text may have, because a
 * text may have been written since.
 */
QStringList fileNames(const QString &path, int id, const TVLNumberedFiles &files)
{
    QStringList names = files.fileNames(id);
    const QStringList textFiles = Format::nodeFilePaths(path, id, QString());
    for (const QString &filePath : textFiles) {
        const QString name = filePath.sliced(filePath.lastIndexOf(u'/') + 1);
        if (!names.contains(name))
            names.append(name);
    }
    return names;
}

/** The name of an item's file in a folder of the item's own; empty for none. */
QString nameInOwnFolder(const QString &fileName)
{
    const int type = Format::findDocumentTypeId(fileName);
    // Of a main file of another kind the extension is what says so.
    if (type == TVL::ForeignFile)
        return u"content."_s + QFileInfo(fileName).suffix();
    return Format::docTypeToFileName(TVL::DocumentType(type));
}

/** Copies a file to where none is. The copy can be written to, whatever the source was. */
bool copyAsWritable(const QFileInfo &source, const QString &target)
{
    if (!QFile::copy(source.filePath(), target))
        return false;
    // The copy has the rights of its source, but is ours.
    return source.permission(QFileDevice::WriteOwner)
        || QFile::setPermissions(target,
                                 QFile::permissions(target) | QFileDevice::WriteOwner
                                     | QFileDevice::WriteUser);
}

/** Has those files of a folder copied that are there; false, too, if one can't be seen. */
template <typename Copy>
bool copyThoseThere(const QDir &folder, const QStringList &names, Copy copy)
{
    bool areCopied = true;
    QString absent;
    for (const QString &name : names) {
        const QString path = folder.filePath(name);
        if (!tvlIsThere(path))
            absent = path;
        else if (!copy(path, name))
            areCopied = false;
    }
    // A folder hides all of its files or none.
    return areCopied && tvlIsMissing(absent);
}

/** Makes a folder, or takes out all that is in it. */
bool ensureEmptyFolder(const QString &path)
{
    if (QFileInfo::exists(path))
        return TVLCoreUtil::DeleteFolderContents(path);
    bool ok = false;
    Format::ensurePathExists(path, &ok);
    return ok;
}

} // namespace

bool TVLProjectFolderFormat::replaceFile(const QString &source, const QString &target)
{
    const QFileInfo sourceFile(source);
    if (!sourceFile.isFile())
        return false;
    if (tvlIsThere(target)) {
        // Making room for the copy must not take what is to be copied.
        if (TVLCoreUtil::IsSameOrInside(target, source))
            return true;
        if (!TVLCoreUtil::IsReadable(source, nullptr) || !TVLCoreUtil::DeleteFile(target))
            return false;
    }
    return copyAsWritable(sourceFile, target);
}

// --- Into the project

bool TVLProjectFolderFormat::importProjectFile(const QString &path, const QFileInfo &source, int id)
{
    if (id < 0)
        return false;
    bool ok = false;
    docsDirectory(path, &ok);
    return ok && source.isFile()
        && copyAsWritable(source, numberedFilePath(path, id, source.suffix()));
}

bool TVLProjectFolderFormat::copyFile(const QString &path, int id, const QString &extension,
                                      const QString &sourceFile)
{
    if (id < 0)
        return false;
    bool ok = false;
    docsDirectory(path, &ok);
    return ok && replaceFile(sourceFile, numberedFilePath(path, id, extension));
}

QUrl TVLProjectFolderFormat::url(const QString &path, int id, const QString &extension)
{
    return QUrl::fromLocalFile(numberedFilePath(path, id, extension));
}

// --- Removing

bool TVLProjectFolderFormat::removeProjectFiles(const QString &path, int id)
{
    return removeProjectFiles(path, id, TVLNumberedFiles(path));
}

bool TVLProjectFolderFormat::removeProjectFiles(const QString &path, int id,
                                                const TVLNumberedFiles &files)
{
    const QString projectPath = calcEnclosingPath(path);
    bool areGone = true;
    const QStringList names = fileNames(projectPath, id, files);
    for (const QString &name : names)
        areGone = TVLCoreUtil::DeleteFile(filesDocsPath(projectPath) + u'/' + name) && areGone;
    forgetSnapshots(projectPath, id);
    return removeDirectory(
               QDir(snapshotsPath(projectPath) + u'/' + TVLProjectFileNames::snapshotsFolder(id)))
        && areGone;
}

bool TVLProjectFolderFormat::removeProjectFiles(const QString &path, const QUuid &uuid)
{
    const QString projectPath = calcEnclosingPath(path);
    const bool areGone = TVLCoreUtil::DeleteFolderAndFiles(filesDataNodePath(projectPath, uuid));
    return TVLCoreUtil::DeleteFolderAndFiles(snapshotsNodePath(projectPath, uuid)) && areGone;
}

bool TVLProjectFolderFormat::removeProjectFilesMobile(const QString &path, const QUuid &uuid)
{
    return TVLCoreUtil::DeleteFolderAndFiles(findMobileDataNodePath(calcEnclosingPath(path), uuid));
}

bool TVLProjectFolderFormat::deleteAllMobileFiles(const QString &path)
{
    const QString projectPath = calcEnclosingPath(path);
    const bool isGone = TVLCoreUtil::DeleteFolderAndFiles(mobilePath(projectPath));
    return TVLCoreUtil::DeleteFile(filesMobileScriptsChecksumsFilePath(projectPath)) && isGone;
}

// --- Cloning

bool TVLProjectFolderFormat::cloneProjectFiles(const QString &sourcePath, int sourceId,
                                               const QString &targetPath, int targetId)
{
    return cloneProjectFiles(sourcePath, sourceId, TVLNumberedFiles(sourcePath), targetPath,
                             targetId);
}

bool TVLProjectFolderFormat::cloneProjectFiles(const QString &sourcePath, int sourceId,
                                               const TVLNumberedFiles &sourceFiles,
                                               const QString &targetPath, int targetId)
{
    bool ok = false;
    const QDir target = docsDirectory(targetPath, &ok);
    if (!ok)
        return false;
    const QString sourceProject = calcEnclosingPath(sourcePath);
    const QDir source(filesDocsPath(sourceProject));
    const qsizetype idLength = QString::number(sourceId).size();
    const QStringList names = fileNames(sourceProject, sourceId, sourceFiles);
    const bool areCopied =
        copyThoseThere(source, names, [&](const QString &file, const QString &name) {
            return replaceFile(file,
                               target.filePath(QString::number(targetId) + name.sliced(idLength)));
        });
    return cloneSnapshots(sourcePath, sourceId, targetPath, targetId) && areCopied;
}

bool TVLProjectFolderFormat::cloneDesktopV18(const QString &path, int sourceId, int targetId)
{
    return cloneProjectFiles(path, sourceId, path, targetId);
}

bool TVLProjectFolderFormat::cloneMobileProjectFiles(const QString &path, const QUuid &sourceUuid,
                                                     const QString &targetPath,
                                                     const QUuid &targetUuid)
{
    const QString source = findMobileDataNodePath(calcEnclosingPath(path), sourceUuid);
    return !QFileInfo::exists(source)
        || TVLCoreUtil::CopyDirectory(
            source, findMobileDataNodePath(calcEnclosingPath(targetPath), targetUuid));
}

// --- Between the layouts and the mobile copy

bool TVLProjectFolderFormat::copyDesktopToMobileV23(const QString &path, const QUuid &desktopUuid,
                                                    const QUuid &mobileUuid)
{
    const QString projectPath = calcEnclosingPath(path);
    return TVLCoreUtil::CopyDirectory(filesDataNodePath(projectPath, desktopUuid),
                                      findMobileDataNodePath(projectPath, mobileUuid));
}

bool TVLProjectFolderFormat::copyMobileToMobile(const QString &path, const QUuid &sourceUuid,
                                                const QUuid &targetUuid)
{
    const QString projectPath = calcEnclosingPath(path);
    return TVLCoreUtil::CopyDirectory(findMobileDataNodePath(projectPath, sourceUuid),
                                      findMobileDataNodePath(projectPath, targetUuid));
}

bool TVLProjectFolderFormat::copyMobileToDesktopV23(const QString &path, const QUuid &uuid)
{
    const QString projectPath = calcEnclosingPath(path);
    const QString source = findMobileDataNodePath(projectPath, uuid);
    const QString target = filesDataNodePath(projectPath, uuid);
    // Nothing to copy is no reason to take away what there is.
    return QFileInfo(source).isDir() && ensureEmptyFolder(target)
        && TVLCoreUtil::CopyDirectory(source, target);
}

bool TVLProjectFolderFormat::syncMobileToDesktopV23(const QString &path, const QUuid &uuid)
{
    return !mobileDocumentFolderExists(path, uuid) || copyMobileToDesktopV23(path, uuid);
}

bool TVLProjectFolderFormat::moveMobileToDesktopV23(const QString &path, const QUuid &uuid)
{
    const QString projectPath = calcEnclosingPath(path);
    if (!mobileDocumentFolderExists(path, uuid))
        return true;
    const QString source = findMobileDataNodePath(projectPath, uuid);
    const QString target = filesDataNodePath(projectPath, uuid);
    return QFileInfo(source).isDir() && ensureEmptyFolder(target)
        && TVLCoreUtil::MoveDirectoryQuick(source, target);
}

bool TVLProjectFolderFormat::copyDesktopV18ToPath(const QString &path, int id,
                                                  const QString &targetFolder)
{
    bool ok = false;
    const QDir target = ensurePathExists(targetFolder, &ok);
    if (!ok)
        return false;
    const QString projectPath = calcEnclosingPath(path);
    const QDir source(filesDocsPath(projectPath));
    const QStringList names = fileNames(projectPath, id, TVLNumberedFiles(projectPath));
    return copyThoseThere(source, names, [&](const QString &file, const QString &name) {
        const QString targetName = nameInOwnFolder(name);
        return targetName.isEmpty() || replaceFile(file, target.filePath(targetName));
    });
}

bool TVLProjectFolderFormat::copyDesktopV18ToDesktopV23(const QString &path, int id,
                                                        const QUuid &uuid)
{
    return copyDesktopV18ToPath(path, id, filesDataNodePath(calcEnclosingPath(path), uuid));
}

bool TVLProjectFolderFormat::copyDesktopToMobileV18(const QString &path, int id, const QUuid &uuid)
{
    return copyDesktopV18ToPath(path, id, findMobileDataNodePath(calcEnclosingPath(path), uuid));
}

QList<QUuid> TVLProjectFolderFormat::folderUUIDs(const QString &path)
{
    QList<QUuid> uuids;
    const QStringList names = QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QUuid uuid = TUuid::fromWholeText(name);
        if (!uuid.isNull())
            uuids.append(uuid);
    }
    return uuids;
}

bool TVLProjectFolderFormat::removeDirectory(const QDir &directory)
{
    return TVLCoreUtil::DeleteFolderAndFiles(directory.absolutePath());
}

bool TVLProjectFolderFormat::removeProject(const QString &path)
{
    forgetSnapshots(path);
    return removeDirectory(enclosingDirectory(path));
}
