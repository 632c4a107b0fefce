#include "TVLProjectFolderFormat.h"

#include "TUuid.h"
#include "TVLErrorText_p.h"
#include "TVLProjectFileNames_p.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView BinderSuffix = u".tavelx";

// A path such as "." or one that ends in a slash has no name in its text.
QFileInfo absoluteInfo(const QString &path)
{
    return QFileInfo(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

QString uuidName(const QUuid &uuid)
{
    return TUuid::toStringNoBraces(uuid, true);
}

bool setOk(bool *ok, bool value)
{
    if (ok)
        *ok = value;
    return value;
}

/** Enters a subfolder, which is made if it is missing. */
bool enterSubdirectory(QDir *directory, const QString &name)
{
    if (!directory->exists(name) && !directory->mkdir(name))
        return false;
    return directory->cd(name);
}

/** A subfolder of the project's folder; both are made if missing. */
QDir projectSubdirectory(const QString &path, const QString &name, bool *ok)
{
    QDir directory = TVLProjectFolderFormat::enclosingDirectory(path);
    const bool exists = directory.exists() || QDir::root().mkpath(directory.absolutePath());
    setOk(ok, exists && enterSubdirectory(&directory, name));
    return directory;
}

} // namespace

QString TVLProjectFolderFormat::filesPath(const QString &path)
{
    return path + u"/Files"_s;
}

QString TVLProjectFolderFormat::filesDocsPath(const QString &path)
{
    return filesPath(path) + u"/Docs"_s;
}

QString TVLProjectFolderFormat::filesDataPath(const QString &path)
{
    return filesPath(path) + u"/Data"_s;
}

QString TVLProjectFolderFormat::filesDataNodePath(const QString &path, const QUuid &uuid)
{
    return filesDataPath(path) + u'/' + uuidName(uuid);
}

QString TVLProjectFolderFormat::settingsPath(const QString &path)
{
    return path + u"/Settings"_s;
}

QString TVLProjectFolderFormat::searchIndexesFilePath(const QString &path)
{
    return filesPath(path) + u"/search.indexes"_s;
}

QString TVLProjectFolderFormat::projectChecksumFilePathId(const QString &path)
{
    return filesDocsPath(path) + u"/docs.checksum"_s;
}

QString TVLProjectFolderFormat::projectChecksumFilePath(const QString &path)
{
    return filesDataPath(path) + u"/docs.checksum"_s;
}

QString TVLProjectFolderFormat::filesMobileScriptsChecksumsFilePath(const QString &path)
{
    return filesPath(path) + u"/mobilescripts.checksums"_s;
}

QString TVLProjectFolderFormat::snapshotsPath(const QString &path)
{
    return path + u"/Snapshots"_s;
}

QString TVLProjectFolderFormat::snapshotsNodePath(const QString &path, const QUuid &uuid)
{
    return snapshotsPath(path) + u'/' + uuidName(uuid);
}

QString TVLProjectFolderFormat::mobilePath(const QString &path)
{
    return path + u"/Mobile"_s;
}

QString TVLProjectFolderFormat::mobileDataPath(const QString &path)
{
    return mobilePath(path) + u"/Data"_s;
}

QString TVLProjectFolderFormat::mobileDataNodePath(const QString &path, const QUuid &uuid)
{
    return mobileDataPath(path) + u'/' + uuidName(uuid);
}

QString TVLProjectFolderFormat::findMobileDataNodePath(const QString &path, const QUuid &uuid)
{
    const QString filePath = mobileDataNodePath(path, uuid);
    const QString other = mobileDataPath(path) + u'/' + TUuid::toStringNoBraces(uuid, false);
    return !QFileInfo::exists(filePath) && QFileInfo::exists(other) ? other : filePath;
}

QString TVLProjectFolderFormat::mobileBinderSyncFilePath(const QString &path)
{
    return mobilePath(path) + u"/binder.sync"_s;
}

QString TVLProjectFolderFormat::mobileSearchIndexesFilePath(const QString &path)
{
    return mobilePath(path) + u"/search.indexes"_s;
}

QString TVLProjectFolderFormat::mobileDataScriptsChecksumsFilePath(const QString &path)
{
    return mobileDataPath(path) + u"/scripts.checksums"_s;
}

QString TVLProjectFolderFormat::mobileDataUuidChecksumsFilePath(const QString &path,
                                                                const QUuid &uuid)
{
    return mobileDataNodePath(path, uuid) + u".checksums"_s;
}

QString TVLProjectFolderFormat::settingsScriptsMobFilePath(const QString &path)
{
    return settingsPath(path) + u"/scripts.mob"_s;
}

QString TVLProjectFolderFormat::externalFolderSyncFilePath(const QString &path)
{
    return settingsPath(path) + u"/User/folder-sync-win.ini"_s;
}

QString TVLProjectFolderFormat::binderAutosaveFilePath(const QString &path)
{
    return filesPath(path) + u'/' + TVLProjectFileNames::BinderAutosave;
}

QString TVLProjectFolderFormat::binderBackupFilePath(const QString &path)
{
    return filesPath(path) + u'/' + TVLProjectFileNames::BinderBackup;
}

bool TVLProjectFolderFormat::filesDataNodePathExists(const QString &path, const QUuid &uuid)
{
    return QFileInfo::exists(filesDataNodePath(path, uuid));
}

bool TVLProjectFolderFormat::mobileBinderSyncFilePathExists(const QString &path)
{
    return QFileInfo::exists(mobileBinderSyncFilePath(path));
}

bool TVLProjectFolderFormat::mobileDataNodePathExists(const QString &path, const QUuid &uuid)
{
    return QFileInfo::exists(mobileDataNodePath(path, uuid));
}

bool TVLProjectFolderFormat::externalFolderSyncFilePathExists(const QString &path)
{
    return QFileInfo::exists(externalFolderSyncFilePath(path));
}

QDir TVLProjectFolderFormat::filesDirectory(const QString &path, bool *ok)
{
    return projectSubdirectory(path, u"Files"_s, ok);
}

QDir TVLProjectFolderFormat::iconsDirectory(const QString &path, bool *ok)
{
    return projectSubdirectory(path, u"Icons"_s, ok);
}

QDir TVLProjectFolderFormat::docsDirectory(const QString &path, bool *ok)
{
    QDir directory = enclosingDirectory(path);
    bool isThere = directory.cd(u"Files/Docs"_s); // As a rule, and asked for very often.
    if (!isThere) {
        directory = filesDirectory(path, &isThere);
        isThere = isThere && enterSubdirectory(&directory, u"Docs"_s);
    }
    setOk(ok, isThere);
    return directory;
}

QDir TVLProjectFolderFormat::settingsDirectory(const QString &path, bool *ok)
{
    return projectSubdirectory(path, u"Settings"_s, ok);
}

QDir TVLProjectFolderFormat::snapshotsDirectory(const QString &path, bool *ok)
{
    return projectSubdirectory(path, u"Snapshots"_s, ok);
}

QDir TVLProjectFolderFormat::mobileDirectory(const QString &path, bool *ok)
{
    return ensurePathExists(mobilePath(calcEnclosingPath(path)), ok);
}

QDir TVLProjectFolderFormat::mobileDataDirectory(const QString &path, bool *ok)
{
    return ensurePathExists(mobileDataPath(calcEnclosingPath(path)), ok);
}

QDir TVLProjectFolderFormat::ensurePathExists(const QString &path, bool *ok, QStringList *errors)
{
    const QDir directory(path);
    if (!setOk(ok, directory.exists() || QDir::root().mkpath(directory.absolutePath())) && errors)
        errors->append(tr("Could not create directory: '%1'").arg(path));
    return directory;
}

QString TVLProjectFolderFormat::versionFilePath(const QString &path)
{
    return filesDirectory(path).filePath(TVLProjectFileNames::Version);
}

QString TVLProjectFolderFormat::settingsUiFilePath(const QString &path)
{
    return settingsDirectory(path).filePath(TVLProjectFileNames::WindowSettings);
}

QString TVLProjectFolderFormat::scriptformatXmlFilePath(const QString &path)
{
    return settingsDirectory(path).filePath(u"scriptformat.xml"_s);
}

QString TVLProjectFolderFormat::templateInfoXmlFilePath(const QString &path)
{
    return settingsDirectory(path).filePath(u"templateinfo.xml"_s);
}

QString TVLProjectFolderFormat::calcEnclosingPath(const QString &path)
{
    const QFileInfo info = absoluteInfo(path);
    return path.endsWith(BinderSuffix) ? info.absolutePath() : info.absoluteFilePath();
}

QString TVLProjectFolderFormat::canonicalPath(const QString &path)
{
    return calcEnclosingPath(path);
}

QDir TVLProjectFolderFormat::enclosingDirectory(const QString &path)
{
    return QDir(calcEnclosingPath(path));
}

QString TVLProjectFolderFormat::directoryName(const QString &path)
{
    return QFileInfo(calcEnclosingPath(path)).completeBaseName();
}

QString TVLProjectFolderFormat::projectPathToProjectName(const QString &path)
{
    return directoryName(path);
}

QString TVLProjectFolderFormat::nameFilter()
{
    return tr("Tavelinor Folder (*.tavel)");
}

bool TVLProjectFolderFormat::ensureProjectPathExists(const QString &path, QString *error)
{
    const QString projectPath = calcEnclosingPath(path);
    if (QDir::root().mkpath(projectPath))
        return true;
    return tvlFail(error, tr("Could not create project directory: %1").arg(projectPath));
}

QString TVLProjectFolderFormat::defaultBinderFilePath(const QString &path)
{
    const QString name = absoluteInfo(path).completeBaseName();
    return enclosingDirectory(path).filePath(name + BinderSuffix.toString());
}

QString TVLProjectFolderFormat::binderFilePathProjectTavelx(const QString &path)
{
    return enclosingDirectory(path).filePath(u"project.tavelx"_s);
}

QString TVLProjectFolderFormat::findNewestBinderFilePath(const QString &path)
{
    const QFileInfoList files =
        enclosingDirectory(path).entryInfoList({u"*.tavelx"_s}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : files.constFirst().absoluteFilePath();
}

QString TVLProjectFolderFormat::presentBinderFilePath(const QString &path)
{
    for (const QString &candidate :
         {defaultBinderFilePath(path), binderFilePathProjectTavelx(path)}) {
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return findNewestBinderFilePath(path);
}

QString TVLProjectFolderFormat::findOpenBinderFilePath(const QString &path)
{
    const QString defaultPath = defaultBinderFilePath(path);
    if (!QFileInfo::exists(path))
        return defaultPath;
    const QString foundPath = presentBinderFilePath(path);
    if (foundPath.isEmpty() || foundPath == defaultPath)
        return defaultPath;
    return QFile::rename(foundPath, defaultPath) ? defaultPath : foundPath;
}
