#pragma once

#include "TVL.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QUuid>

class TVLProjectFolderFormat;
class TVLProjectModel;
class TVLProjectNode;

/** A numbered file: a null uuid and the file's name. A file in an item's own folder: the item's
 * uuid and the file's name. */
using ChecksumKey = QPair<QUuid, QString>;
/** The raw SHA-1 of files; empty for one that could not be read. */
using ChecksumMap = QMap<ChecksumKey, QByteArray>;

/**
 * What the document files of a project were like when somebody last knew them: a hash of each.
 *
 * The search index asks whether the texts that it keeps are still those on disk, the mobile sync
 * which files have been touched since they were written. Nothing here is ever more than a reason to
 * look again: a file that can't be read is like no hash, and a checksum file that is damaged or
 * can't be read is as good as one that lacks what it lost.
 *
 * Static operations work on any map and take the project's path, which may be that of its binder.
 * The others work on the map of one project, the records of which are the hashes of the numbered
 * files as a rule. A record may be stale; what says `currentHdd` reads the file.
 *
 * A record vouches for the text that the search index has of a file: whoever changes one of the two
 * changes the other, in memory and on disk. How this project has left a file is another matter:
 * texts are written to disk at the end of a session, but documents with every save, and a file that
 * others have changed gets a record again when it is read. Where the two differ, the project's own
 * file has a note beside the record, which only says whether somebody else has changed the
 * document.
 */
class TVL_EXPORT TVLProjectChecksums
{
public:
    /** Without any records. The folder isn't owned and has to outlive the object; when the project
     * moves, its path is followed. */
    explicit TVLProjectChecksums(const TVLProjectFolderFormat *folder);
    /** Without any records, for the folder of @p model, which isn't owned and has to outlive the
     * object. */
    explicit TVLProjectChecksums(const TVLProjectModel *model);
    Q_DISABLE_COPY_MOVE(TVLProjectChecksums)

    /** The key of a file in an item's own folder. */
    [[nodiscard]] static ChecksumKey checksumKey(const QUuid &uuid, TVL::DocumentType type);
    /** Whether a map has any file of an item's own folder. */
    [[nodiscard]] static bool checksumMapContains(const ChecksumMap &checksums, const QUuid &uuid);
    /** A map with its keys as they stand in a checksum file; what doesn't begin with a uuid and a
     * slash is the name of a numbered file. */
    [[nodiscard]] static ChecksumMap toUuidChecksumMap(const QMap<QString, QByteArray> &checksums);

    /** @name Hashes of the files as they are; empty for a file that can't be read @{ */
    [[nodiscard]] QByteArray currentHddChecksum(int id, TVL::DocumentType type) const;
    [[nodiscard]] QByteArray currentHddChecksumData(const QUuid &uuid,
                                                    TVL::DocumentType type) const;
    [[nodiscard]] QByteArray currentHddChecksumMobile(const QUuid &uuid,
                                                      TVL::DocumentType type) const;
    /** Of the file that a node has in the folder's format. */
    [[nodiscard]] QByteArray currentHddChecksumNode(const TVLProjectNode *node,
                                                    TVL::DocumentType type) const;
    /** @} */

    /** @name Records @{ */
    [[nodiscard]] const ChecksumMap &checksums() const { return mChecksums; }
    /** Puts other records in place of all; they count as modified. */
    void setChecksums(const ChecksumMap &checksums);
    /** The record of a numbered file; empty for none. */
    [[nodiscard]] QByteArray loadedChecksum(int id, TVL::DocumentType type) const;
    /** The record of a file in an item's own folder; empty for none. */
    [[nodiscard]] QByteArray loadedChecksum(const QUuid &uuid, TVL::DocumentType type) const;

    /** Records the hash of the file that a node's text was read from, whoever wrote it; an empty
     * one for a text that is no file's. For the four types that are refreshed. */
    void setHashSumNode(const TVLProjectNode *node, TVL::DocumentType type,
                        const QByteArray &checksum);
    /** Takes the records of all numbered files of an item away: nothing is known of them any more.
     */
    void forgetHashSums(int id);

    /** Whether the records differ from what was last loaded or saved. */
    [[nodiscard]] bool isModified() const { return mModified; }
    /** Whether they ever did, saved or not. */
    [[nodiscard]] bool wasEverModified() const { return mWasEverModified; }
    /** A save clears the flag; set, it has the next save write the records. */
    void setModified(bool modified);
    /** @} */

    /**
     * @name Comparing a file with its record
     * A file that can't be read is like no record, not even an empty one.
     * @{
     */
    /** Whether the file has that hash. */
    [[nodiscard]] static bool checksumsMatch(const QString &filePath, const QByteArray &checksum);
    /**
     * Whether a text, notes, a synopsis or comments are as recorded; a file that isn't there agrees
     * with having no record. False for any other type, since those aren't kept in step.
     */
    [[nodiscard]] bool checksumsMatch(int id, TVL::DocumentType type) const;
    /** Whether a file in an item's own folder is as recorded, as the function above says it of a
     * numbered one. */
    [[nodiscard]] bool checksumsMatch(const QUuid &uuid, TVL::DocumentType type) const;
    /** @} */

    /**
     * @name Refreshing a record from its file
     * A file that is gone loses its record. The first three do nothing for types other than text,
     * notes, synopsis and comments.
     * @{
     */
    void updateHashSum(int id, TVL::DocumentType type);
    /** Refreshes the record of the file that a node has in the folder's format. */
    void updateHashSumNode(const TVLProjectNode *node, TVL::DocumentType type);
    /** Refreshes the record of a uuid from the mobile copy. */
    void updateHashSumMobile(const QUuid &uuid, TVL::DocumentType type);

    /** These three ask nothing of the type: they refresh the record of a numbered file, of one in
     * an item's own folder and of one of the mobile copy. */
    void updateLoadedCheckSums(int id, TVL::DocumentType type);
    void updateLoadedCheckSumsData(const QUuid &uuid, TVL::DocumentType type);
    void updateLoadedCheckSumsMobile(const QUuid &uuid, TVL::DocumentType type);
    /** @} */

    /**
     * @name Checksum files
     * One record a line, `name=hash` or `uuid/name=hash`, in the order of the map.
     * @{
     */
    /** Replaces the file, in place and all at once. */
    [[nodiscard]] static bool saveChecksumFile(const QString &filePath,
                                               const ChecksumMap &checksums);
    /**
     * Reads a file in place of what the map held. Lines that are no records are passed over, of
     * several for one file the last one counts. False when the file can't be read; the map is empty
     * then.
     */
    [[nodiscard]] static bool loadChecksumFile(const QString &filePath, ChecksumMap *checksums);
    /** Writes the project's own file, in a folder that is made when missing. */
    [[nodiscard]] bool saveChecksums();
    /** Reads the project's own file in place of all records. False when there is none to read. */
    bool loadChecksums();
    /** Whether the project has texts and certainly no file of records. */
    [[nodiscard]] bool isFileMissing() const;
    /** Makes the file when it is missing, with no records: what has none then isn't relied on. */
    void makeFile() const;
    /** Takes those records out of the file that are no more what is known here, before the texts on
     * disk are replaced by others. False when it can't be written. */
    [[nodiscard]] bool withdrawOutdated() const;
    /** @} */

    /**
     * @name Notes of how files were left
     * They are added to the project's own file, if there is one.
     * @{
     */
    /** Files of a node are about to be written, after which they may hold anything. */
    void noteWriting(const TVLProjectNode *node, const QList<TVL::DocumentType> &types);
    /** They were written, and are as recorded now. */
    void noteWritten(const TVLProjectNode *node, const QList<TVL::DocumentType> &types);
    /** Whether that is what a note calls a file in a checksum file. */
    [[nodiscard]] static bool isNote(const QString &name);
    /** Takes the notes out of what was read from a checksum file: the hash of each file as it was
     * left, empty for one that was being written. */
    [[nodiscard]] static ChecksumMap takeNotes(ChecksumMap *checksums);
    /** @} */

    /** @name Hashing all document files of a folder @{ */
    [[nodiscard]] static ChecksumMap calcFilesDataChecksums(const QString &path);
    [[nodiscard]] static ChecksumMap calcMobileDataChecksums(const QString &path);
    /** The numbered files. */
    [[nodiscard]] static ChecksumMap calcFilesDocsChecksums(const QString &path);
    /** Drops the records of numbered files that are no more as recorded, and all notes. */
    void dropChangedFilesDocsChecksums();
    /** Puts the hashes of all files in items' own folders in place of all records. */
    void updateFilesDataChecksumsFromHdd();
    /** Puts the hashes of all numbered files in place of all records. */
    void updateFilesDocsChecksumsFromHdd();
    /** @} */

    /** @name The mobile copy against what is expected of it @{ */
    /**
     * Adds files of the mobile copy that a map doesn't have, and drops those that are gone. What it
     * has of a file stays, whatever became of the file: it says what was expected.
     */
    static void updateMobileDataChecksums(const QString &path, ChecksumMap *checksums);
    /**
     * Whether the mobile copy has files that are new or aren't as expected. A missing file isn't
     * such a conflict; only @p missingFiles tells of it. Any pointer may be null. When all are, the
     * first conflict is the last file that is looked at.
     */
    [[nodiscard]] static bool mobileDataHasConflicts(const QString &path,
                                                     const ChecksumMap &checksums,
                                                     bool *newFiles = nullptr,
                                                     bool *missingFiles = nullptr,
                                                     bool *modifiedFiles = nullptr);
    /** Removes the mobile copy's checksum files that are named by a uuid; true when all of them
     * went. */
    [[nodiscard]] static bool removeOldMobileChecksumFiles(const QString &path);
    /** @} */

private:
    friend class TVLNumberedChecksums;

    /** A file and what it is recorded under. */
    struct RecordedFile
    {
        ChecksumKey key;
        QString path;
    };

    [[nodiscard]] QString path() const;
    [[nodiscard]] RecordedFile nodeFile(const TVLProjectNode *node, TVL::DocumentType type) const;
    [[nodiscard]] RecordedFile numberedFile(int id, TVL::DocumentType type) const;
    [[nodiscard]] RecordedFile dataFile(const QUuid &uuid, TVL::DocumentType type) const;
    [[nodiscard]] RecordedFile mobileFile(const QUuid &uuid, TVL::DocumentType type) const;
    [[nodiscard]] bool matches(const RecordedFile &file) const;
    void refresh(const RecordedFile &file);
    void forget(const ChecksumKey &key);
    void note(const ChecksumMap &notes);

    const TVLProjectFolderFormat *mFolder;
    ChecksumMap mChecksums;
    ChecksumMap mNotes; ///< How files were left, of those whose records don't tell.
    bool mModified = false;
    bool mWasEverModified = false;
};
