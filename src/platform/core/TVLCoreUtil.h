#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

/**
 * Work on files and folders.
 *
 * Paths are absolute or relative to the current folder; an empty path names nothing and is refused
 * by every function. An @p error may be null; it is filled on failure and left alone on success.
 */
class TVL_EXPORT TVLCoreUtil
{
    Q_DECLARE_TR_FUNCTIONS(TVLCoreUtil)

public:
    /** A new random uuid as text, without braces, in upper case. */
    [[nodiscard]] static QString CreateUUID();

    /**
     * Deletes a folder with everything in it. A symbolic link, be it the path itself or something
     * below it, is deleted as a link: what it leads to stays. Goes on after a failure, so that as
     * little as possible is left. A file at the path is deleted as well; the root of the file
     * system is refused.
     *
     * @return true if there is nothing at the path afterwards, also when there never was.
     */
    static bool DeleteFolderAndFiles(const QString &path);

    /**
     * Deletes everything in a folder, as DeleteFolderAndFiles() does, and keeps the folder.
     *
     * @return true if the folder is there and empty afterwards. A symbolic link to a folder is
     *         refused.
     */
    static bool DeleteFolderContents(const QString &path);

    /**
     * Deletes a file, or a symbolic link, whatever it leads to.
     *
     * @return true if there is nothing at the path afterwards, also when there never was; false
     *         with nothing deleted if the path is a folder.
     */
    static bool DeleteFile(const QString &path, QString *error = nullptr);

    /**
     * Whether a path is a folder's path or lies below it once symbolic links are followed. Neither
     * need exist; an empty one is nowhere.
     */
    [[nodiscard]] static bool IsSameOrInside(const QString &path, const QString &folder);

    /**
     * Copies a folder with everything in it, hidden files included. The target is made when it is
     * missing; an existing target is added to, but no file in it is replaced. Symbolic links to
     * files are copied as the files they lead to, all other links as links, so that a link never
     * leads the copy out of the tree or round in circles.
     *
     * @return false at the first failure, with what was copied until then left in the target; false
     *         with nothing copied if the target is the source or lies in it.
     */
    [[nodiscard]] static bool CopyDirectory(const QString &source, const QString &target);

    /**
     * Moves a folder: by renaming where the file system can do that, else by copying and deleting.
     * A target that exists and isn't empty is added to, as CopyDirectory() does.
     *
     * @return false if something of the source is still there. Unless the deleting failed, the
     *         source is then complete. False with nothing moved if one folder lies in the other.
     */
    [[nodiscard]] static bool MoveDirectoryQuick(const QString &source, const QString &target);

    /**
     * How many files, folders and links there are below a folder on all levels, hidden ones
     * included. Links aren't followed. 0 for what isn't a folder.
     */
    [[nodiscard]] static int getFileAndDirCount(const QString &path);

    /**
     * Whether there is certainly nothing at a path, not even a link that leads nowhere. What lies
     * in a folder that can't be looked into may be there.
     */
    [[nodiscard]] static bool IsMissing(const QString &path);

    /** Whether a file can be opened for reading or a folder be listed. */
    [[nodiscard]] static bool IsReadable(const QString &path, QString *error);

    /**
     * Whether a file can be written, or made if it doesn't exist in its existing folder; for a
     * folder, whether files can be made in it. Changes nothing.
     */
    [[nodiscard]] static bool IsWritable(const QString &path, QString *error);

    /**
     * The text of a file, with line ends as they are in the file and without a byte order mark.
     * Bytes that mean nothing in the encoding become U+FFFD.
     *
     * @param codecName     the file's encoding
     * @param detectUnicode whether a byte order mark of UTF-8, UTF-16 or UTF-32 wins over it
     * @return an empty text, with @p error filled, if the encoding isn't known or the file can't be
     *         read to its end.
     */
    [[nodiscard]] static QString ReadUnicodeTextFile(const QString &path, QString *error,
                                                     const char *codecName = "UTF-8",
                                                     bool detectUnicode = true);

    /**
     * Writes a text to a file, in place, without a byte order mark. Characters that the encoding
     * doesn't have become its replacement character. The file isn't opened before all its bytes
     * are ready; when a write fails it may be cut off.
     */
    [[nodiscard]] static bool WriteUnicodeTextFile(const QString &text, const QString &path,
                                                   QString *error, const char *codecName = "UTF-8");

    /**
     * Replaces a file's content, in place. When the disk is known to have no room for it, the file
     * stays as it was; when a write fails on the way it may be cut off. @p error, if given, gets
     * the reason; @p couldOpen, if given, whether something other than the opening failed.
     */
    [[nodiscard]] static bool WriteBinaryFile(const QByteArray &bytes, const QString &path,
                                              QString *error, bool *couldOpen = nullptr);

    /** The bytes of a file; empty, with @p ok false, if it can't be read to its end. */
    [[nodiscard]] static QByteArray ReadBinaryFile(const QString &path, bool *ok = nullptr);

    /** Names of the files in a folder, sorted, without hidden ones. */
    [[nodiscard]] static QStringList fileNames(const QString &path);

    /**
     * A path in GetTavelinorTempPath() at which there is nothing yet. Nothing is made there.
     *
     * @param extension with or without its dot; may be empty
     */
    [[nodiscard]] static QString GetNewTempFilePath(const QString &extension);

    /** The application's folder for temporary files, made when it is missing. */
    [[nodiscard]] static QString GetTavelinorTempPath();

    /**
     * A name that is free in a folder: @p fileName itself or, with the first number that does,
     * `name 1.ext`, `name 2.ext` and so on.
     */
    [[nodiscard]] static QString GetUniqueFileName(const QString &folder, const QString &fileName);
};
