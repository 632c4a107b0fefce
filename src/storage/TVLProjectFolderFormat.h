#pragma once

#include "TVL.h"
#include "TVLProjectInfo.h"
#include "TVLProjectLinksAndComments.h"
#include "TVLSnapshotInfo.h"

#include <QDir>
#include <QHash>
#include <QIODevice>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class QDateTime;
class QFileInfo;
class QImage;
class QPixmap;
class QPointF;
class QProgressDialog;
class QTextDocument;
class QUrl;
class QUuid;
class QWidget;
class TVLBinderProject;
class TVLDocumentSave;
class TVLNumberedFiles;
class TVLProgress;
class TVLProjectFile;
class TVLProjectModel;
class TVLProjectNode;
class TVLProjectNodeProperties;
class TVLScriptMode;
class TVLTextDocument;

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
    /** What mobileDataNodePath() gives, but named as the folder is on disk, where its uuid may be
     * in small letters. */
    [[nodiscard]] static QString findMobileDataNodePath(const QString &path, const QUuid &uuid);
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
     * it isn't, the folder returned is the last one on its path that could be entered.
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
    /** The binder that findOpenBinderFilePath() would find, under the name that it has; empty for
     * none. */
    [[nodiscard]] static QString presentBinderFilePath(const QString &path);
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
    /** Reads the first file of a zipped binder into a project, as readBinder() does. */
    [[nodiscard]] static bool readZippedBinderFilePath(const QString &zipPath,
                                                       TVLBinderProject *project);
    /** The part of a binder file that is kept as raw text, with its tags; empty for none. */
    [[nodiscard]] static QString readUserProjectData(const QString &filePath);

    /**
     * A file of a project for reading, as it is once an interrupted save is completed. The caller
     * owns it; null, with the reason in @p error, when it can't be opened.
     */
    [[nodiscard]] static std::unique_ptr<QIODevice>
    openFile(const QString &path, const QString &filePath, QString *error);
    /** How many files the last save could not write, or not to their end; openProject() does. */
    [[nodiscard]] static int interruptedSaveFiles(const QString &path);

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

    /** What who only reads a project needs of it. */
    enum ReadingScope {
        ItemsAlone, ///< Its items and their texts; searches find nothing. Much quicker.
        ItemsAndSearch,
    };
    /**
     * Opens a project to read from it alone: nothing in its folder is written, renamed or made, and
     * the model never saves (TVLProjectModel::isOnlyRead()). A save that was interrupted is read as
     * if it had been completed. Null when there is no binder of any kind or none could be read.
     * The caller owns the model, or @p parent does.
     */
    [[nodiscard]] static TVLProjectModel *openProjectToRead(const QString &path,
                                                            ReadingScope scope = ItemsAndSearch,
                                                            QObject *parent = nullptr);
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

    /**
     * @name Names of an item's files
     * Older projects number the files of all items in one folder; newer ones, and the mobile copy
     * of any, give each item a folder. A type that has no name in a layout has an empty path there.
     * @{
     */
    /** The name of a numbered file. */
    [[nodiscard]] static QString documentFileNameId(int id, TVL::DocumentType type);
    /** The name of a file in the item's own folder. */
    [[nodiscard]] static QString docTypeToFileName(TVL::DocumentType type);
    /** What the user calls a text: document, notes or synopsis; empty for other files. */
    [[nodiscard]] static QString docTypeDescr(TVL::DocumentType type);
    /** The type of a numbered file by its name; -1 for a file that is none of an item's. */
    [[nodiscard]] static int findDocumentTypeId(const QString &fileName);
    /** The type of a file in an item's own folder by its name; -1 for a file that is none of an
     * item's. */
    [[nodiscard]] static int findDocumentTypeUuid(const QString &fileName);
    /** Whether such a file is one of the item's texts, or a main file of another kind. */
    [[nodiscard]] static bool isNodeDocumentUuid(const QString &fileName);

    [[nodiscard]] static QString filesDocsNodeTypeFilePath(const QString &path, int id,
                                                           TVL::DocumentType type);
    [[nodiscard]] static QString docsNodeTypeFilePath(const QString &path, int id,
                                                      TVL::DocumentType type);
    [[nodiscard]] static bool docsDocumentExists(const QString &path, int id,
                                                 TVL::DocumentType type);

    /** The folder's name and the file's. */
    [[nodiscard]] static QString nodeTypeFileName(const QUuid &uuid, TVL::DocumentType type,
                                                  bool upperCase);
    [[nodiscard]] static QString filesDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                           TVL::DocumentType type);
    [[nodiscard]] static QString dataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                      TVL::DocumentType type);
    [[nodiscard]] static QString writeDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                           TVL::DocumentType type);
    /** Sets @p platform, if given, to the desktop: it is the one that is read from. */
    [[nodiscard]] static QString readDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                          TVL::DocumentType type,
                                                          TVL::Platform *platform);
    [[nodiscard]] static QString writeDataNodePath(const QString &path, const QUuid &uuid);
    [[nodiscard]] static QString mobileDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                            TVL::DocumentType type);
    /** A file in the folder that findMobileDataNodePath() finds. */
    [[nodiscard]] static QString
    findMobileDataNodeTypeFilePath(const QString &path, const QUuid &uuid, TVL::DocumentType type);
    [[nodiscard]] static bool dataDocumentExists(const QString &path, const QUuid &uuid,
                                                 TVL::DocumentType type);
    [[nodiscard]] static bool mobileDocumentExists(const QString &path, const QUuid &uuid,
                                                   TVL::DocumentType type);
    [[nodiscard]] static bool dataDocumentFolderExists(const QString &path, const QUuid &uuid);
    [[nodiscard]] static bool mobileDocumentFolderExists(const QString &path, const QUuid &uuid);
    /** @} */

    /** @name Hashes
     * SHA-1 of a file's content, whatever the names say; empty for a file that can't be read.
     * @{ */
    [[nodiscard]] static QByteArray md5(const QString &path, int id, TVL::DocumentType type);
    [[nodiscard]] static QByteArray md5Data(const QString &path, const QUuid &uuid,
                                            TVL::DocumentType type);
    [[nodiscard]] static QByteArray md5Mobile(const QString &path, const QUuid &uuid,
                                              TVL::DocumentType type);
    [[nodiscard]] static QByteArray calcChecksum(const QString &filePath);
    /** @} */

    /** @name Finding an item's files @{ */
    /** Names of the files in the item's folder of the mobile copy, in no order. */
    [[nodiscard]] static QStringList mobileDataNodePathFiles(const QString &path,
                                                             const QUuid &uuid);
    /** The main file in an item's own folder, whatever its extension; empty for none. */
    [[nodiscard]] static QString findContentDocument(const QString &folderPath);
    [[nodiscard]] static QString findDesktopContentDocument(const QString &path, const QUuid &uuid);
    [[nodiscard]] static QString findMobileContentDocument(const QString &path, const QUuid &uuid);
    /** The path of a numbered main file; the extension, `rtf` if empty, may have its dot. */
    [[nodiscard]] static QString constructMainNodeFilePath(const QString &path, int id,
                                                           const QString &extension);
    /** The numbered main file: the RTF one, else the first with the item's number; empty for none.
     */
    [[nodiscard]] static QString findMainNodeFilePathHdd(const QString &path, int id);
    /** The extension of the numbered main file; empty for none. */
    [[nodiscard]] static QString findExtension(const QString &path, int id);

    /** The numbered files that an item may have beside its main one. */
    [[nodiscard]] static QStringList supportingNodeFilePaths(const QString &path, int id);
    /** The main one and those. */
    [[nodiscard]] static QStringList nodeFilePaths(const QString &path, int id,
                                                   const QString &extension);
    /** Those of them that exist. */
    [[nodiscard]] static QStringList existingNodeFilePaths(const QString &path, int id,
                                                           const QString &extension);
    /** The files that exist in the item's own folder, of those that it may have. */
    [[nodiscard]] static QStringList existingNodeFilePaths(const QString &path, const QUuid &uuid,
                                                           const QString &extension);
    /** Which of the two it is depends on the version; none for versions other than 18 and 23. */
    [[nodiscard]] static QStringList
    existingNodeFilePaths(const QString &path, const TVLProjectNodeProperties &properties,
                          TVL::FormatVersion version);
    [[nodiscard]] QStringList
    existingNodeFilePaths(const TVLProjectNodeProperties &properties) const;
    /** Whether an item with a text has numbered files. */
    [[nodiscard]] static bool hasFiles(const QString &path, int id);
    /** Whether an item has a folder of its own. */
    [[nodiscard]] static bool hasFiles(const QString &path, const QUuid &uuid);
    /** @} */

    /**
     * @name Reading and writing an item's texts
     * These work on the numbered files. A text is written in place, after its whole content is in
     * memory; an empty text has no file.
     * @{
     */
    /**
     * In the run behind one that came to no regular end, has an item's texts looked through and
     * asks about errors in them, so that readDocuments() needs to ask nothing. Boxes run the event
     * loop.
     */
    void inspectTexts(int id) const;
    /**
     * Reads a document's file, if there is one. On failure the document becomes read-only, so that
     * nothing is ever written over what could not be read.
     */
    [[nodiscard]] static bool readDocument(const QString &path, const TVLProjectNode *node,
                                           TVLTextDocument *document, QString *error);
    /** Writes a document's file, or removes it for an empty document; false for null. */
    [[nodiscard]] static bool writeDocument(const QString &path, const TVLProjectNode *node,
                                            const TVLTextDocument *document, QString *error);
    /** Writes the comments of a main text, or removes their file when there are none; false for
     * null. */
    [[nodiscard]] static bool writeComments(const QString &path, const TVLProjectNode *node,
                                            const QTextDocument *document, QString *error);
    [[nodiscard]] static bool writeCommentsFile(const QString &filePath,
                                                const QList<TVLTextCommentLink> &comments,
                                                QString *error);
    /**
     * Reads the comments file of an item or, only when there is none, the links file that older
     * projects have. True when there is neither. After an error @p result holds what came before
     * it.
     */
    [[nodiscard]] static bool parseLinksAndComments(const QString &path, const TVLProjectNode *node,
                                                    TVLProjectLinksAndComments *result,
                                                    QStringList *errors);
    /** The addresses that links by id lead to; links to an id that isn't in the map are left out.
     */
    [[nodiscard]] static QMap<TVLTextRange, QString>
    toTavelinorLinkMap(const TVLTextInternalLinkMap &links, const QMap<int, QUuid> &idToUuid);

    /**
     * Reads those of an item's documents that the node holds, with links and comments. Links of
     * older projects need a @p model, which tells whom an id means. Goes on after a failure; each
     * appends to @p errors, if given.
     */
    [[nodiscard]] bool readDocuments(TVLProjectNode *node, const TVLBinderProject *model,
                                     QStringList *errors) const;
    /**
     * Writes those of an item's documents that are unsaved and not read-only. Goes on after a
     * failure, which leaves the document unsaved; @p errors, if given and if there was anything to
     * write, becomes the list of failures.
     */
    [[nodiscard]] bool writeDocuments(TVLProjectNode *node, QStringList *errors) const;
    /** @} */

    /**
     * @name Snapshots of items
     * An item's snapshots lie in a folder of their own: the text of each in a file that is named by
     * its date, and an index of titles, dates and comments. Dates within one second of each other
     * have the same file, so an item has one snapshot a second at most. An index that can't be read
     * is never written over or removed by any of these but writeSnapshots() itself.
     *
     * What an index says is kept in memory for all projects, until it is written or
     * clearSnapshotsCache() is called.
     * @{
     */
    /** The file of a snapshot's text, in the item's folder, which is made when missing; empty when
     * it can't be. */
    [[nodiscard]] static QString snapshotFilePath(const QString &path, int id,
                                                  const QDateTime &date);
    [[nodiscard]] static bool hasSnapshots(const QString &path, int id);
    /** Whether the folder `Snapshots`, which @p snapshotsDir is, has snapshots of an item. */
    [[nodiscard]] static bool hasSnapshotsViaSnapshotsDir(const QDir &snapshotsDir, int id);
    /** Sets @p snapshots to what the index says; an item without one leaves it as it is. False,
     * with @p snapshots left alone, for an index that can't be read. */
    [[nodiscard]] static bool readSnapshots(const QString &path, int id,
                                            QList<TVLSnapshotInfo> *snapshots);
    [[nodiscard]] static bool readSnapshots(const QString &path, int id,
                                            QList<TVLSnapshotInfo> &snapshots)
    {
        return readSnapshots(path, id, &snapshots);
    }
    /** Writes the index. An empty list removes the item's folder of snapshots, with all in it. */
    [[nodiscard]] static bool writeSnapshots(const QString &path, int id,
                                             const QList<TVLSnapshotInfo> &snapshots);
    /** Forgets what the indexes of a project say; the next questions go to the disk. */
    static void clearSnapshotsCache(const QString &path);

    /**
     * Reads a snapshot in place of what @p document holds, with its comments, and its links by the
     * map. After a failure the document holds what could be read.
     */
    [[nodiscard]] static bool readSnapshot(const QString &path, int id,
                                           const TVLSnapshotInfo &snapshot, QTextDocument *document,
                                           const QMap<int, QUuid> &idToUuid);
    /** Writes a snapshot's text. A file that is there already is never replaced. */
    [[nodiscard]] static bool writeSnapshotDocument(const QString &path, int id,
                                                    const TVLSnapshotInfo &snapshot,
                                                    const QTextDocument *document, QString *error);
    /**
     * Writes a text as a snapshot and enters it in the index, with the text's links and comments in
     * place of those in @p snapshot. When only the index can't be written, the text stays on disk.
     */
    [[nodiscard]] static bool addSnapshot(const QString &path, int id,
                                          const TVLSnapshotInfo &snapshot,
                                          const QTextDocument *document, QString *error);
    /** Removes the first snapshot with that title and date; false when there is none. */
    [[nodiscard]] static bool removeSnapshot(const QString &path, int id,
                                             const TVLSnapshotInfo &snapshot);
    [[nodiscard]] static bool setSnapshotTitle(const QString &path, int id, const QDateTime &date,
                                               const QString &title);
    /**
     * Copies the snapshots of other items to an item. One that can't be copied, such as one of the
     * same second as another, is passed over. False when an index could not be read or written, or
     * when the disk didn't take a copy; the sources are complete in any case.
     */
    [[nodiscard]] static bool mergeSnapshots(const QString &path, int id,
                                             const QList<int> &sourceIds);
    /**
     * Gives an item the snapshots of another. Files of the same second are replaced; true, with
     * nothing done, when the source has none.
     */
    [[nodiscard]] static bool cloneSnapshots(const QString &sourcePath, int sourceId,
                                             const QString &targetPath, int targetId);
    /** Brings index and file names of an item's snapshots into their present form, once a run. */
    static void fixSnapshotFileNames(const QString &path, int id);
    /** @} */

    /**
     * @name An item's numbered files
     * A numbered file is replaced by removing the old one first. Copies can be written to, whatever
     * the source was. Extensions come without their dot.
     * @{
     */
    /** Copies a file into the project as an item's main file, which must not be there yet. */
    [[nodiscard]] static bool importProjectFile(const QString &path, const QFileInfo &source,
                                                int id);
    [[nodiscard]] static bool writeImageFile(const QString &path, int id, const QString &extension,
                                             const QImage &image, int quality = -1);
    /** Copies a file into the project as one of an item's, in place of one that is there. */
    [[nodiscard]] static bool copyFile(const QString &path, int id, const QString &extension,
                                       const QString &sourceFile);
    [[nodiscard]] static QUrl url(const QString &path, int id, const QString &extension);

    /**
     * Deletes an item's files and its snapshots. True when none is left.
     */
    static bool removeProjectFiles(const QString &path, int id);
    /** Deletes an item's own folder, and that of its snapshots. */
    static bool removeProjectFiles(const QString &path, const QUuid &uuid);
    static bool removeProjectFilesMobile(const QString &path, const QUuid &uuid);
    /** Deletes the mobile copy, with what is known of its scripts. */
    static bool deleteAllMobileFiles(const QString &path);

    /**
     * Gives an item copies of another's files, in place of its own of the same names, and of the
     * other's snapshots. Goes on after a failure.
     */
    [[nodiscard]] static bool cloneProjectFiles(const QString &sourcePath, int sourceId,
                                                const QString &targetPath, int targetId);
    /** Does what cloneProjectFiles() does between two items of one project. */
    [[nodiscard]] static bool cloneDesktopV18(const QString &path, int sourceId, int targetId);
    /** Copies an item's folder of the mobile copy; true when there is none. */
    [[nodiscard]] static bool cloneMobileProjectFiles(const QString &path, const QUuid &sourceUuid,
                                                      const QString &targetPath,
                                                      const QUuid &targetUuid);
    /** @} */

    /** @name An item's files between the layouts and the mobile copy @{ */
    [[nodiscard]] static bool copyDesktopToMobileV23(const QString &path, const QUuid &desktopUuid,
                                                     const QUuid &mobileUuid);
    [[nodiscard]] static bool copyMobileToMobile(const QString &path, const QUuid &sourceUuid,
                                                 const QUuid &targetUuid);
    /** Puts the files of an item's mobile folder in place of those in its desktop folder; false,
     * with nothing done, when there is no mobile one. */
    [[nodiscard]] static bool copyMobileToDesktopV23(const QString &path, const QUuid &uuid);
    /** Does what copyMobileToDesktopV23() does, but gives true when there is no mobile folder. */
    [[nodiscard]] static bool syncMobileToDesktopV23(const QString &path, const QUuid &uuid);
    [[nodiscard]] static bool moveMobileToDesktopV23(const QString &path, const QUuid &uuid);
    /** Copies an item's numbered files into a folder, under the names that they have in a folder of
     * the item's own; a file without such a name is left out. */
    [[nodiscard]] static bool copyDesktopV18ToPath(const QString &path, int id,
                                                   const QString &targetFolder);
    [[nodiscard]] static bool copyDesktopV18ToDesktopV23(const QString &path, int id,
                                                         const QUuid &uuid);
    [[nodiscard]] static bool copyDesktopToMobileV18(const QString &path, int id,
                                                     const QUuid &uuid);
    /** The uuids that sub-folders of a folder are named by. */
    [[nodiscard]] static QList<QUuid> folderUUIDs(const QString &path);
    /** @} */

    /** @name Index card images and custom icons @{ */
    [[nodiscard]] static QString indexCardImagePath(const QString &path, int id,
                                                    const QString &extension);
    /** Null when there is none. */
    [[nodiscard]] static QImage indexCardImage(const QString &path, int id,
                                               const QString &extension);
    [[nodiscard]] static QPixmap indexCardPixmap(const QString &path, int id,
                                                 const QString &extension);
    /** Writes the image's file, or removes it for a null image. */
    [[nodiscard]] static bool setIndexCardImage(const QString &path, int id,
                                                const QString &extension, const QImage &image);
    [[nodiscard]] static bool setIndexCardPixmap(const QString &path, int id,
                                                 const QString &extension, const QPixmap &pixmap);
    /** An icon is named by its file; a name that leads out of the folder is no icon's. */
    [[nodiscard]] static QPixmap icon(const QString &path, const QString &name);
    [[nodiscard]] static bool addIcon(const QString &path, const QString &name,
                                      const QImage &image);
    [[nodiscard]] static bool removeIcon(const QString &path, const QString &name);
    [[nodiscard]] static bool renameIcon(const QString &path, const QString &oldName,
                                         const QString &newName);
    [[nodiscard]] static QStringList icons(const QString &path);
    /** @} */

    /** @name Settings of the project @{ */
    // Names of elements of the binder and of the model's dynamic properties.
    static const QString ProjectTitleTag;
    static const QString AbbreviatedTitleTag;
    static const QString FullNameTag;
    static const QString LastNameTag;
    static const QString FirstNameTag;

    /** Reads the project's script mode; a project without its file leaves @p mode as it is. False,
     * with @p mode as it was, for a file that can't be read. */
    [[nodiscard]] static bool readScriptSettings(const QString &path, TVLScriptMode *mode,
                                                 QString *error = nullptr);
    /** Writes the script mode's file, after its whole content is in memory. */
    [[nodiscard]] static bool writeScriptSettings(const QString &path, const TVLScriptMode &mode,
                                                  QString *error = nullptr);
    /** @} */

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

    /** @name Notes of the project
     * Text pages that belong to the project as a whole: a folder with an index and one RTF file for
     * each note.
     * @{ */
    /** The folder, made if it is missing; a failure goes to @p errors. */
    [[nodiscard]] static QDir projectNotesDirectory(const QString &path, bool *ok,
                                                    QStringList *errors);
    /**
     * Writes the index and all notes. One that can't be written is told in @p errors, and the
     * others are written all the same.
     */
    [[nodiscard]] static bool writeProjectNotes(const QString &path,
                                                const QList<QPair<int, QTextDocument *>> &notes,
                                                QStringList *errors);
    /**
     * Appends the project's notes to @p notes. The caller owns the documents; the links of older
     * projects are given the uuids that @p model knows. A note without a file is empty; false, with
     * @p errors, when something couldn't be read.
     */
    [[nodiscard]] static bool readProjectNotes(const QString &path,
                                               QList<QPair<int, QTextDocument *>> *notes,
                                               const TVLBinderProject *model, QStringList *errors);
    [[nodiscard]] static bool readProjectNotes(const QString &path,
                                               QList<QPair<int, QTextDocument *>> &notes,
                                               const TVLBinderProject *model, QStringList *errors)
    {
        return readProjectNotes(path, &notes, model, errors);
    }
    /** Deletes the file of a note; the index loses it with the next write. */
    static bool removeProjectNote(const QString &path, int id, QStringList *errors);
    /** Whether the first link to an item in a file names it by its uuid. */
    [[nodiscard]] static bool hasLinksInSyncFileFormat(const QString &filePath);
    /** @} */

    /** @name Copying and removing whole projects @{ */
    /** Copies what a folder holds; false at the first failure or when @p progress is cancelled.
     * Each entry is a step. */
    [[nodiscard]] static bool copyDirectory(const QDir &source, const QDir &target,
                                            QProgressDialog *progress = nullptr);
    [[nodiscard]] static bool copyDirectory(const QDir &source, const QDir &target,
                                            TVLProgress &progress);
    /**
     * Copies a project. The target must not lie in the source. A copy that fails or is cancelled
     * leaves what it had written.
     */
    [[nodiscard]] static bool copyProject(const QString &sourcePath, const QString &targetPath,
                                          bool renameBinder, QProgressDialog *progress,
                                          bool clearLock, bool replaceTarget);
    [[nodiscard]] static bool copyProject(const QString &sourcePath, const QString &targetPath,
                                          bool renameBinder, TVLProgress &progress, bool clearLock,
                                          bool replaceTarget);
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
    friend class TVLProjectModel; // It removes, copies and writes many items at once.
    friend class TVLItemCloner;
    friend class TVLLoadedDocuments;
    friend class TVLProjectModelPrivate;
    friend class TVLProjectFolderFormatTestAccess;

    /**
     * removeProjectFiles() of one of many items, with a listing of the folder that was made once
     * for all. It need not be up to date: the files that any text may have are looked for in any
     * case, and files that have gone since are passed over.
     */
    static bool removeProjectFiles(const QString &path, int id, const TVLNumberedFiles &files);
    /** cloneProjectFiles() with such a listing of the source project's folder. */
    [[nodiscard]] static bool cloneProjectFiles(const QString &sourcePath, int sourceId,
                                                const TVLNumberedFiles &sourceFiles,
                                                const QString &targetPath, int targetId);
    // Each of these returns what went wrong, as a text for the user; empty when nothing did.
    [[nodiscard]] static QString openForReading(const TVLProjectFile &file,
                                                const TVLTextDocument *document,
                                                std::unique_ptr<QIODevice> *device);
    [[nodiscard]] static QString
    openFailure(const TVLProjectFile &file, const TVLTextDocument *document, const QString &reason);
    [[nodiscard]] static QString readSynopsisFile(const TVLProjectFile &file,
                                                  TVLTextDocument *document);
    [[nodiscard]] static QString readRtfFile(const TVLProjectFile &file, TVLTextDocument *document);

    /** Reads a document's file, which has to be there. */
    [[nodiscard]] static bool readDocumentFile(const TVLProjectFile &file,
                                               TVLTextDocument *document, QString *error);
    [[nodiscard]] bool hasDocumentsFolder() const;
    /** writeDocuments() of an item of a save that has begun already. */
    [[nodiscard]] bool writeDocuments(TVLProjectNode *node, TVLDocumentSave *save,
                                      QStringList *errors) const;

    [[nodiscard]] static bool parseCommentsFile(const TVLProjectFile &file,
                                                TVLProjectLinksAndComments *result,
                                                QStringList *errors);
    [[nodiscard]] static bool parseLinksFile(const TVLProjectFile &file,
                                             TVLProjectLinksAndComments *result,
                                             QStringList *errors);

    /** Copies a file in place of another, or does nothing if they are the same one. */
    [[nodiscard]] static bool replaceFile(const QString &source, const QString &target);

    /** A project's path and an item's id. */
    using SnapshotsKey = QPair<QString, int>;
    [[nodiscard]] static SnapshotsKey snapshotsKey(const QString &path, int id);
    /** The items whose snapshots have their present form. */
    [[nodiscard]] static QSet<SnapshotsKey> &fixedSnapshots();
    /** Forgets all about an item's snapshots: its files went, and its id may come to another. */
    static void forgetSnapshots(const QString &path, int id);
    /** Forgets all about the snapshots of a project. */
    static void forgetSnapshots(const QString &path);

    static QHash<SnapshotsKey, QList<TVLSnapshotInfo>> mCachedSnapshotInfo;

    QString mProjectPath;
    TVL::FormatVersion mFormatVersion;
    /** The folder of the numbered files has been there since the path was set. */
    mutable bool mHadDocuments;
};
