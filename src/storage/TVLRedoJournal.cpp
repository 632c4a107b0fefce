#include "TVLRedoJournal_p.h"

#include "TVLProjectFolderFormat.h"

#include "TVLCoreUtil.h"
#include "TVLDoors.h"
#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLFileWriting_p.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStorageInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

constexpr auto HashAlgorithm = QCryptographicHash::Sha256;
const QByteArray Magic = "TVL redo journal 1\n";
const QString JournalName = u"redo.journal"_s;

struct Entry
{
    QString mPath; ///< Below the project's folder.
    QByteArray mOldHash; ///< Of the file as the save found it; empty when there was none.
    QByteArray mContent;
    bool mNeedsPrevious = false;
};

QDataStream &operator<<(QDataStream &stream, const Entry &entry)
{
    return stream << entry.mPath << entry.mOldHash << entry.mContent << entry.mNeedsPrevious;
}

QDataStream &operator>>(QDataStream &stream, Entry &entry)
{
    return stream >> entry.mPath >> entry.mOldHash >> entry.mContent >> entry.mNeedsPrevious;
}

void setUp(QDataStream *stream)
{
    stream->setVersion(QDataStream::Qt_6_0);
}

QByteArray hashOf(QByteArrayView content)
{
    return QCryptographicHash::hash(content, HashAlgorithm);
}

/** The bytes of an ordinary file; nothing when it can't be read to its end. */
std::optional<QByteArray> bytesOf(const QString &path)
{
    bool isRead = false;
    QByteArray bytes = TVLCoreUtil::ReadBinaryFile(path, &isRead);
    return isRead ? std::optional(std::move(bytes)) : std::nullopt;
}

// --- The journal's file

/**
 * Whether a path leads to a file inside the project's folder. A journal may come with a project
 * that somebody else has sent, and must not be a way to write elsewhere.
 */
bool isInside(const QString &projectPath, const QString &relativePath)
{
    if (relativePath.isEmpty() || QDir::isAbsolutePath(relativePath)
        || QDir::cleanPath(relativePath) != relativePath || relativePath.startsWith(u".."))
        return false;
    const QFileInfo folder(QFileInfo(projectPath + u'/' + relativePath).path());
    const QString project = QFileInfo(projectPath).canonicalFilePath();
    const QString canonical = folder.canonicalFilePath();
    // A folder that isn't there leads nowhere yet.
    return canonical.isEmpty() || canonical == project || canonical.startsWith(project + u'/');
}

/** The entries of a journal; nothing when it isn't whole. */
std::optional<QList<Entry>> entriesIn(const QByteArray &journal, const QString &projectPath)
{
    const qsizetype hashSize = QCryptographicHash::hashLength(HashAlgorithm);
    const qsizetype size = journal.size() - Magic.size() - hashSize;
    if (size < 0 || !journal.startsWith(Magic))
        return std::nullopt;
    const auto payload = QByteArray::fromRawData(journal.constData() + Magic.size(), size);
    if (hashOf(payload) != journal.last(hashSize))
        return std::nullopt;
    QList<Entry> entries;
    QDataStream stream(payload);
    setUp(&stream);
    while (!stream.atEnd()) {
        Entry entry;
        stream >> entry;
        if (stream.status() != QDataStream::Ok || !isInside(projectPath, entry.mPath))
            return std::nullopt;
        entries.append(entry);
    }
    return entries;
}

/** Whether the disk has room for a journal, and for what the save itself may add besides. */
bool hasRoomTwice(const QString &folder, qint64 size)
{
    const QStorageInfo disk(folder);
    return !disk.isValid() || disk.bytesTotal() <= 0 || disk.bytesAvailable() >= 2 * size;
}

/** The journal that was read last: reading a project asks it for each of many texts. */
struct LastRead
{
    QString mPath;
    QDateTime mModified;
    qint64 mSize = 0;
    QHash<QString, Entry> mEntries;
};

LastRead &lastRead()
{
    static LastRead read;
    return read;
}

/** Replaces the journal at once, so that there is always the old one or the new one, whole. */
bool writeJournal(const QString &projectPath, const QList<Entry> &entries, QString *error)
{
    QByteArray journal = Magic;
    QDataStream stream(&journal, QIODevice::WriteOnly | QIODevice::Append);
    setUp(&stream);
    for (const Entry &entry : entries)
        stream << entry;
    journal += hashOf(QByteArrayView(journal).sliced(Magic.size()));

    bool isThere = false;
    const QDir folder = Format::filesDirectory(projectPath, &isThere);
    if (!isThere || !hasRoomTwice(folder.absolutePath(), journal.size()))
        return tvlFail(error, qt_error_string(isThere ? ENOSPC : ENOENT));
    lastRead() = {};
    const QString path = TVLRedoJournal::filePath(projectPath);
    // QSaveFile would write to what a link leads to.
    if (QFileInfo(path).isSymbolicLink())
        QFile::remove(path);
    QSaveFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(journal) == journal.size() && file.commit();
    return isWritten || tvlFail(error, file.errorString());
}

/** A journal as it is found. */
struct Found
{
    enum Condition { Missing, Unseen, Damaged, Whole } mCondition = Missing;
    QList<Entry> mEntries;
};

Found findJournal(const QString &projectPath)
{
    const QString path = TVLRedoJournal::filePath(projectPath);
    if (tvlIsMissing(path))
        return {};
    const std::optional<QByteArray> journal = bytesOf(path);
    if (!journal)
        return {Found::Unseen, {}};
    const std::optional<QList<Entry>> entries = entriesIn(*journal, projectPath);
    return {entries ? Found::Whole : Found::Damaged, entries.value_or(QList<Entry>())};
}

/** A kill while QSaveFile writes leaves its file, whose name has something behind the journal's. */
void removeUnfinishedJournals(const QString &projectPath)
{
    QDir folder(Format::filesPath(projectPath));
    const QStringList names = folder.entryList({JournalName + u".??????"_s}, QDir::Files);
    for (const QString &name : names)
        folder.remove(name);
}

// --- Entry by entry

enum class State {
    Written, ///< The file has the journal's content.
    Due, ///< The file is as the save found it, or cut off in the save's write.
    Changed, ///< The file has got other words since.
    Unseen, ///< What the file has can't be told now.
};

State stateOf(const QString &path, const Entry &entry)
{
    if (tvlIsMissing(path))
        return State::Due;
    const std::optional<QByteArray> bytes = bytesOf(path);
    if (!bytes)
        return State::Unseen;
    if (*bytes == entry.mContent)
        return State::Written;
    const bool isDue = entry.mContent.startsWith(*bytes) || hashOf(*bytes) == entry.mOldHash;
    return isDue ? State::Due : State::Changed;
}

/** Keeps words beside the project's files that have no place among them any more. */
bool setAside(const QString &projectPath, const Entry &entry)
{
    QDir folder(projectPath);
    if (!folder.mkpath(u"Recovered"_s) || !folder.cd(u"Recovered"_s))
        return false;
    const QString stamp = tvlNow().toString(u"yyyy-MM-dd hh.mm.ss"_s);
    const QString name = TVLCoreUtil::GetUniqueFileName(
        folder.absolutePath(), stamp + u' ' + QFileInfo(entry.mPath).fileName());
    return tvlWriteOwnFile(entry.mContent, folder.filePath(name), nullptr);
}

/** What becomes of entries; with @p isForReal they are brought to their files too. */
TVLRedoJournal::Replay settle(const QString &projectPath, const QList<Entry> &entries,
                              bool isForReal)
{
    TVLRedoJournal::Replay replay;
    bool isPreviousLeft = false;
    for (const Entry &entry : entries) {
        if (entry.mNeedsPrevious && isPreviousLeft) {
            ++replay.mLeft;
            continue;
        }
        isPreviousLeft = false;
        const QString path = projectPath + u'/' + entry.mPath;
        const State state = stateOf(path, entry);
        if (state == State::Written)
            continue;
        if (state == State::Due && (!isForReal || tvlWriteOwnFile(entry.mContent, path, nullptr)))
            ++replay.mWritten;
        else if (state == State::Changed && (!isForReal || setAside(projectPath, entry)))
            ++replay.mSetAside;
        else
            isPreviousLeft = true;
        replay.mLeft += isPreviousLeft;
    }
    return replay;
}

void complete(const QString &projectPath, const QList<Entry> &entries, const char *when)
{
    const TVLRedoJournal::Replay replay = settle(projectPath, entries, true);
    if (!replay.isEmpty())
        qWarning("%s of '%ls': %d files written, %d kept in 'Recovered', %d can't be written yet",
                 when, qUtf16Printable(projectPath), replay.mWritten, replay.mSetAside,
                 replay.mLeft);
    if (replay.mLeft == 0)
        QFile::remove(TVLRedoJournal::filePath(projectPath));
}

QByteArray oldHashOf(const QString &path)
{
    const std::optional<QByteArray> bytes = bytesOf(path);
    return bytes ? hashOf(*bytes) : QByteArray();
}

} // namespace

QString TVLRedoJournal::filePath(const QString &projectPath)
{
    return Format::filesPath(projectPath) + u'/' + JournalName;
}

TVLRedoJournal::TVLRedoJournal(const QString &projectPath, const QList<TVLFileContent> &contents,
                               const QStringList &removals)
    : mProjectPath(Format::calcEnclosingPath(projectPath))
{
    const QDir project(mProjectPath);
    QList<Entry> entries;
    QSet<QString> touched;
    for (const QString &removal : removals)
        touched.insert(project.relativeFilePath(removal));
    for (const TVLFileContent &content : contents) {
        const QString path = project.relativeFilePath(content.mFilePath);
        touched.insert(path);
        mUnwritten.insert(path);
        entries.append(
            {path, oldHashOf(content.mFilePath), content.mContent, content.mNeedsPrevious});
    }
    const Found earlier = findJournal(mProjectPath);
    for (const Entry &entry : earlier.mEntries) {
        if (touched.contains(entry.mPath))
            continue;
        mUnwritten.insert(entry.mPath);
        entries.append(entry);
    }
    mIsThere = earlier.mCondition == Found::Whole;
    if (entries.isEmpty())
        return;
    QString error = qt_error_string(EACCES);
    // One that can't be read may have words that no file has.
    if (earlier.mCondition != Found::Unseen && writeJournal(mProjectPath, entries, &error))
        mIsThere = true;
    else
        qWarning("Could not write the journal of '%ls', saving without: %ls",
                 qUtf16Printable(mProjectPath), qUtf16Printable(error));
}

TVLRedoJournal::~TVLRedoJournal()
{
    if (!mIsThere)
        return;
    if (mUnwritten.isEmpty()) {
        QFile::remove(filePath(mProjectPath));
        return;
    }
    QList<Entry> entries = findJournal(mProjectPath).mEntries;
    entries.removeIf([this](const Entry &entry) { return !mUnwritten.contains(entry.mPath); });
    complete(mProjectPath, entries, "Trying again what a save could not write");
}

void TVLRedoJournal::setWritten(const QString &filePath)
{
    mUnwritten.remove(QDir(mProjectPath).relativeFilePath(filePath));
}

void TVLRedoJournal::replay(const QString &path)
{
    const QString projectPath = Format::calcEnclosingPath(path);
    removeUnfinishedJournals(projectPath);
    const Found found = findJournal(projectPath);
    switch (found.mCondition) {
    case Found::Missing:
        return;
    case Found::Unseen:
        qWarning("The journal of '%ls' can't be read", qUtf16Printable(projectPath));
        return;
    case Found::Damaged:
        // The save that it belongs to had not opened a file yet.
        qWarning("The journal of '%ls' is cut off and was dropped", qUtf16Printable(projectPath));
        QFile::remove(filePath(projectPath));
        return;
    case Found::Whole:
        complete(projectPath, found.mEntries, "Completing an interrupted save");
    }
}

TVLRedoJournal::Replay TVLRedoJournal::pending(const QString &path)
{
    const QString projectPath = Format::calcEnclosingPath(path);
    return settle(projectPath, findJournal(projectPath).mEntries, false);
}

std::optional<QByteArray> TVLRedoJournal::pendingContent(const QString &path,
                                                         const QString &fileOfProject)
{
    const QString projectPath = Format::calcEnclosingPath(path);
    const QFileInfo file(filePath(projectPath));
    if (!file.exists())
        return std::nullopt;
    LastRead &last = lastRead();
    if (last.mPath != file.filePath() || last.mModified != file.lastModified()
        || last.mSize != file.size()) {
        last = {file.filePath(), file.lastModified(), file.size(), {}};
        const QList<Entry> entries = findJournal(projectPath).mEntries;
        for (const Entry &entry : entries)
            last.mEntries.insert(entry.mPath, entry);
    }
    const auto entry = last.mEntries.constFind(QDir(projectPath).relativeFilePath(fileOfProject));
    if (entry == last.mEntries.cend() || stateOf(fileOfProject, *entry) != State::Due)
        return std::nullopt;
    return entry->mContent;
}

bool tvlWriteJournaled(const QString &projectPath, const TVLFileContent &content, QString *error)
{
    TVLRedoJournal journal(projectPath, {content});
    if (!tvlWriteOwnFile(content.mContent, content.mFilePath, error))
        return false;
    journal.setWritten(content.mFilePath);
    return true;
}

bool tvlWriteOrUndo(const QString &projectPath, const TVLFileContent &content, QString *error,
                    bool *couldOpen)
{
    const QString path = content.mFilePath;
    const bool wasMissing = tvlIsMissing(path);
    const std::optional<QByteArray> before = bytesOf(path);
    {
        TVLRedoJournal journal(projectPath, {content});
        const bool isWritten = tvlWriteOwnFile(content.mContent, path, error, couldOpen);
        // Also after a failure: the caller gives the change up.
        journal.setWritten(path);
        if (isWritten)
            return true;
    }
    if (wasMissing)
        QFile::remove(path);
    else if (before && bytesOf(path) != before)
        const TVLRedoJournal undo(projectPath, {{path, *before}}); // Writes it when it goes.
    return false;
}
