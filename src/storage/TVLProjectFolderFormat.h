#pragma once

#include "TVL.h"
#include "TVLProjectInfo.h"

#include <QDir>
#include <QIODevice>
#include <QObject>
#include <QString>
#include <QStringList>

class QDateTime;
class QPointF;
class QProgressDialog;
class QUuid;
class QWidget;
class TVLBinderProject;
class TVLProjectModel;

/**
 * All that is known of a project's folder: what is called what, where it lies, which of several
 * binder files counts, which format the folder has.
 *
 * Nearly everything is static and takes the project's path first, so that it works with no model
 * around. A project may be named by its folder or by its binder file; operations with `Path` in
 * their name are the exception and want the folder.
 *
 * Two families of path operations stand side by side. Those with `Path` compute text and touch
 * nothing. Those with `Directory`, and the four file paths that build on them, create what is
 * missing.
 */
class TVL_EXPORT TVLProjectFolderFormat : public QObject
{
    Q_OBJECT

public:
    TVLProjectFolderFormat(const QString &path, TVL::FormatVersion version,
                           QObject *parent = nullptr);

    [[nodiscard]] QString projectPath() const { return mProjectPath; }
    /** Stores calcEnclosingPath() of @p path. */
    void setProjectPath(const QString &path);
    [[nodiscard]] TVL::FormatVersion formatVersion() const { return mFormatVersion; }
    void setFormatVersion(TVL::FormatVersion version) { mFormatVersion = version; }

    /** @name Paths as text; nothing is touched. @{ */
    [[nodiscard]] static QString filesPath(const QString &path);
    [[nodiscard]] static QString filesDocsPath(const QString &path);
    [[nodiscard]] static QString filesDataPath(const QString &path);
    [[nodiscard]] static QString filesDataNodePath(const QString &path, const QUuid &uuid);
    [[nodiscard]] static QString settingsPath(const QString &path);
    [[nodiscard]] static QString searchIndexesFilePath(const QString &path);
    [[nodiscard]] static QString projectChecksumFilePathId(const QString &path);
    [[nodiscard]] static QString projectChecksumFilePath(const QString &path);
    [[nodiscard]] static QString filesMobileScriptsChecksumsFilePath(const QString &path);
    [[nodiscard]] static QString snapshotsPath(const QString &path);
    [[nodiscard]] static QString snapshotsNodePath(const QString &path, const QUuid &uuid);
    [[nodiscard]] static QString mobilePath(const QString &path);
    [[nodiscard]] static QString mobileDataPath(const QString &path);
    [[nodiscard]] static QString mobileDataNodePath(const QString &path, const QUuid &uuid);
    [[nodiscard]] static QString mobileBinderSyncFilePath(const QString &path);
    [[nodiscard]] static QString mobileSearchIndexesFilePath(const QString &path);
    [[nodiscard]] static QString mobileDataScriptsChecksumsFilePath(const QString &path);
    [[nodiscard]] static QString mobileDataUuidChecksumsFilePath(const QString &path,
                                                                 const QUuid &uuid);
    [[nodiscard]] static QString settingsScriptsMobFilePath(const QString &path);
    [[nodiscard]] static QString externalFolderSyncFilePath(const QString &path);

    [[nodiscard]] static bool filesDataNodePathExists(const QString &path, const QUuid &uuid);
    [[nodiscard]] static bool mobileBinderSyncFilePathExists(const QString &path);
    [[nodiscard]] static bool mobileDataNodePathExists(const QString &path, const QUuid &uuid);
    [[nodiscard]] static bool externalFolderSyncFilePathExists(const QString &path);
    /** @} */

    /**
     * @name Folders, created when missing.
     * Each sets @p ok, which may be null, to whether the folder is there and could be entered. When
     * it isn't, the folder returned is as far as the way led.
     * @{
     */
    static QDir filesDirectory(const QString &path, bool *ok = nullptr);
    static QDir iconsDirectory(const QString &path, bool *ok = nullptr);
    static QDir docsDirectory(const QString &path, bool *ok = nullptr);
    static QDir settingsDirectory(const QString &path, bool *ok = nullptr);
    static QDir snapshotsDirectory(const QString &path, bool *ok = nullptr);
    static QDir mobileDirectory(const QString &path, bool *ok = nullptr);
    static QDir mobileDataDirectory(const QString &path, bool *ok = nullptr);
    /** Makes a folder with all above it; appends "Could not create directory: '%1'" to @p errors.
     */
    static QDir ensurePathExists(const QString &path, bool *ok = nullptr,
                                 QStringList *errors = nullptr);

    [[nodiscard]] static QString versionFilePath(const QString &path);
    [[nodiscard]] static QString settingsUiFilePath(const QString &path);
    [[nodiscard]] static QString scriptformatXmlFilePath(const QString &path);
    [[nodiscard]] static QString templateInfoXmlFilePath(const QString &path);
    /** @} */

    /** @name Naming a project @{ */
    /** The project's folder, absolute, whether @p path names it or its `.tavelx` file. */
    [[nodiscard]] static QString calcEnclosingPath(const QString &path);
    [[nodiscard]] static QString canonicalPath(const QString &path);
    [[nodiscard]] static QDir enclosingDirectory(const QString &path);
    /** Complete base name of the project's folder. */
    [[nodiscard]] static QString directoryName(const QString &path);
    [[nodiscard]] static QString projectPathToProjectName(const QString &path);
    /** Filter for file dialogs. */
    [[nodiscard]] static QString nameFilter();
    /** Makes the project's folder; on failure @p error says so and the result is false. */
    [[nodiscard]] static bool ensureProjectPathExists(const QString &path,
                                                      QString *error = nullptr);
    /** @} */

    /** @name Finding the binder @{ */
    /** The binder's path by the folder's name. */
    [[nodiscard]] static QString defaultBinderFilePath(const QString &path);
    /** The binder's path under the name that older projects use. */
    [[nodiscard]] static QString binderFilePathProjectTavelx(const QString &path);
    /**
     * The binder to open. A binder under another name, as after a rename of the folder by hand, is
     * renamed to its default name first; when that fails the old name is the answer. The file need
     * not exist.
     */
    [[nodiscard]] static QString findOpenBinderFilePath(const QString &path);
    /** The newest `.tavelx` file of the folder; empty for none. */
    [[nodiscard]] static QString findNewestBinderFilePath(const QString &path);
    /** @} */

    /** @name Format version @{ */
    /**
     * The folder's format: from its version file, else from the binder, in which case the version
     * file is written. 0 when neither tells.
     */
    [[nodiscard]] static TVL::FormatVersion projectFormatVersion(const QString &path);
    /** The `Version` text of the binder or of the first of its zipped copies that has one. */
    [[nodiscard]] static QString readProjectBinderVersion(const QString &path);
    /** All digits of a text, wherever they stand, read as one number; 0 for none. */
    [[nodiscard]] static int extractVersionNumber(const QString &text);
    /**
     * Writes the version file; what stands behind the number in an older one survives. False when
     * it could not be written, or when the folder's version is higher already.
     */
    static bool writeFormatVersion(const QString &path, int version);
    /**
     * For QIODevice::ReadOnly, whether the project can be opened; for any other mode, whether the
     * name is that of a project.
     */
    [[nodiscard]] static bool isCompatible(QIODevice::OpenMode mode, const QString &path);
    /** @} */

    /** @name Reading and writing the binder @{ */
    /**
     * Reads a binder into a project, which is a model as a rule. @p error, if given, stays empty:
     * errors of the XML go to the debug output only.
     */
    [[nodiscard]] static bool readBinder(QIODevice *device, TVLBinderProject *project,
                                         QString *error);
    [[nodiscard]] static QString readBinderVersion(QIODevice *device);
    [[nodiscard]] static TVLProjectInfo readBinderFileProjectInfo(const QString &path);
    /** The same from the first file of a zipped binder. */
    [[nodiscard]] static bool readZippedBinderFilePath(const QString &zipPath,
                                                       TVLBinderProject *project);
    /** The part of a binder file that is kept as raw text, with its tags; empty for none. */
    [[nodiscard]] static QString readUserProjectData(const QString &filePath);

    /**
     * Writes the project's binder, the mobile one for a mobile project. A desktop binder is
     * followed by its zipped copy `binder.autosave`. The file is written in place, all at once: it
     * is not touched before its whole content is there.
     */
    [[nodiscard]] static bool writeBinder(const QString &path, const TVLBinderProject *project,
                                          QString *error);
    [[nodiscard]] static bool writeDesktopBinder(const QString &path,
                                                 const TVLBinderProject *project, QString *error);
    [[nodiscard]] static bool writeMobileBinder(const QString &path,
                                                const TVLBinderProject *project, QString *error);
    [[nodiscard]] static bool writeBinderFile(const QString &filePath,
                                              const TVLBinderProject *project, QString *error);
    /** Zips @p binderFile into the folder `Files` as @p zipName. */
    static bool compressBinder(const QString &path, const QString &zipName,
                               const QString &binderFile);

    [[nodiscard]] static QString binderAutosaveFilePath(const QString &path);
    [[nodiscard]] static QString binderBackupFilePath(const QString &path);
    /** @} */

    /** @name Opening @{ */
    /**
     * Opens a project, or makes a blank one in memory when the folder holds no binder of any kind.
     * Null when there are binders but none could be read; no binder and none of its copies is
     * written then. The caller owns the model, or @p parent does.
     */
    [[nodiscard]] static TVLProjectModel *
    openProject(const QString &path, const QString &templatePath = {}, QObject *parent = nullptr);
    /** Opens the mobile copy that lies in a project's folder; null when it isn't there or
     * unreadable. */
    [[nodiscard]] static TVLProjectModel *
    openMobileSyncProject(const QString &path, QObject *parent, QString *error = nullptr);
    /** Whether the binder file is only a pointer to the mobile binder. */
    [[nodiscard]] static bool isNewMobileProjectTavelxContents(const QString &path);
    /**
     * Makes sure that the mobile folder holds one `.sync` file, called `binder.sync`. Of several
     * the oldest survives. False when a removal or the renaming failed.
     */
    static bool ensureMobileBinderSyncFileName(const QString &path);
    /** @} */

    /** Whether an item has snapshots by what lies in the folder `Snapshots`. */
    [[nodiscard]] static bool hasSnapshotsViaSnapshotsDir(const QDir &snapshotsDir, int id);

    /** @name The lock: a file that says who has the project open @{ */
    [[nodiscard]] static bool lockExists(const QString &path);
    /** Locks the project for this process; false when it is locked already, or on a failed write.
     */
    static bool addLock(const QString &path);
    /** True when there is no lock afterwards. */
    static bool removeLock(const QString &path);
    /** Whose lock it is. */
    enum LockState {
        NotLocked = 0,
        LockedHere = 1, ///< By this user on this host, from this program.
        LockedElsewhere = 2, ///< This user's lock, but for another folder: the project was copied.
        LockedByOtherProgram = 3, ///< By this user on this host, from another program.
        LockedByOther = 4, ///< By someone else, or on another host.
    };
    Q_ENUM(LockState)
    /** Tells whose lock it is; the pointers may be null and get what the lock says. */
    [[nodiscard]] static int compareLockFile(const QString &path, QString *host, QString *user,
                                             QString *appPath);
    /** This user's identity, made on first use; null when its file could not be opened. */
    [[nodiscard]] static QUuid userLockId();
    /** @} */

    /** @name Copying and removing whole projects @{ */
    /** Copies what a folder holds; false at the first failure or when @p progress is cancelled. */
    [[nodiscard]] static bool copyDirectory(const QDir &source, const QDir &target,
                                            QProgressDialog *progress = nullptr);
    /**
     * Copies a project. The target must not lie in the source. A copy that fails or is cancelled
     * leaves what it had written.
     */
    [[nodiscard]] static bool copyProject(const QString &sourcePath, const QString &targetPath,
                                          bool renameBinder, QProgressDialog *progress,
                                          bool clearLock, bool replaceTarget);
    [[nodiscard]] static bool copyProjectProgress(const QString &sourcePath,
                                                  const QString &targetPath, bool renameBinder,
                                                  bool clearLock, bool replaceTarget,
                                                  bool showProgress, QWidget *parent);
    static bool removeDirectory(const QDir &directory);
    static bool removeProject(const QString &path);
    /** @} */

    /** @name Dates and points as text; see the functions of the same sense in TVLBinderText.h @{ */
    [[nodiscard]] static QString dateTimeToString(const QDateTime &dateTime, bool isFileName);
    [[nodiscard]] static QDateTime stringToDateTime(const QString &text, bool isFileName);
    [[nodiscard]] static QString pointFToString(const QPointF &point);
    [[nodiscard]] static QPointF stringToPointF(const QString &text, bool *ok = nullptr);
    /** @} */

private:
    QString mProjectPath;
    TVL::FormatVersion mFormatVersion;
};
