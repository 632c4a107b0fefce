#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/** What is about to be written to a file, by its whole path. */
struct TVLFileContent
{
    QString mFilePath;
    QByteArray mContent;
    bool mNeedsPrevious = false; ///< Nothing to do if the one before it can't be written.
};

/**
 * What a save is about to write, kept in one file of the project until all of it is written.
 *
 * A project's files are written in place, so between the opening of one and the end of its write it
 * is empty or cut off: a kill, or a disk that fails there, would leave neither the old words nor
 * the new ones. The journal has the new ones. It lives as long as the object does that a save makes
 * before it opens its first file; when the save could not write a file, it stays until a later save
 * or opening could.
 *
 * What the journal says is always compared with the file before it counts: only a file that is as
 * the save found it, or is a beginning of what the save would write, gets the journal's content.
 */
class TVLRedoJournal
{
public:
    /**
     * Puts contents into the project's journal, together with what an earlier save could not write
     * elsewhere. @p removals are files that this save takes away: what the journal had for them is
     * void. A journal that can't be written is told of in the log, and the save goes on without.
     */
    TVLRedoJournal(const QString &projectPath, const QList<TVLFileContent> &contents,
                   const QStringList &removals = {});
    /** Tries again what could not be written; removes the journal when nothing is left. */
    ~TVLRedoJournal();
    Q_DISABLE_COPY_MOVE(TVLRedoJournal)

    /** Says that the save has written one of its files to the end and closed it. */
    void setWritten(const QString &filePath);

    /** What becomes of a journal's contents. */
    struct Replay
    {
        int mWritten = 0; ///< Files that the save had not written, or not to their end.
        int mSetAside = 0; ///< Contents for files that have changed since, kept in `Recovered`.
        int mLeft = 0; ///< Files that can't be written now either; the journal keeps them.
        [[nodiscard]] bool isEmpty() const { return mWritten + mSetAside + mLeft == 0; }
    };

    /**
     * Completes a save that was interrupted, and says so in the log. A journal that is cut off is
     * dropped: the save that it belongs to had not opened a file yet.
     */
    static void replay(const QString &projectPath);
    /** What replay() would do, without doing it. */
    [[nodiscard]] static Replay pending(const QString &projectPath);

    /** What a file of a project holds by its journal; nothing when the file itself is to be read.
     */
    [[nodiscard]] static std::optional<QByteArray> pendingContent(const QString &projectPath,
                                                                  const QString &filePath);

    [[nodiscard]] static QString filePath(const QString &projectPath);

private:
    QString mProjectPath;
    QSet<QString> mUnwritten; ///< Files, by their paths below the project's folder.
    bool mIsThere = false; ///< Whether there is a journal that can be read.
};

/**
 * Writes a file of a project under the journal's protection. What could not be written stays in the
 * journal.
 */
[[nodiscard]] bool tvlWriteJournaled(const QString &projectPath, const TVLFileContent &content,
                                     QString *error);

/**
 * As tvlWriteJournaled(), for a change that is given up when it fails: the file gets back what it
 * had, now or as soon as it can be written. @p couldOpen as for TVLCoreUtil::WriteBinaryFile().
 */
[[nodiscard]] bool tvlWriteOrUndo(const QString &projectPath, const TVLFileContent &content,
                                  QString *error, bool *couldOpen = nullptr);
