#include "TVLProjectFolderFormat.h"

#include "TVLBinderCopy_p.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLErrorText_p.h"
#include "TVLFileWriting_p.h"
#include "TVLProjectFile_p.h"
#include "TVLRedoJournal_p.h"
#include "TVLRegularFile.h"
#include "TVLZipReader.h"
#include "TVLZipWriter.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/** Reads the `Version` text of the entry called @p entryName of a zipped binder. */
QString zippedBinderVersion(const QString &zipPath, const QString &entryName)
{
    const TVLZipReader zip(zipPath);
    std::optional<QByteArray> content = zip.content(zip.indexOf(entryName));
    if (!content)
        return {};
    QBuffer buffer(&*content);
    buffer.open(QIODevice::ReadOnly);
    return TVLProjectFolderFormat::readBinderVersion(&buffer);
}

QByteArray bytesOfBinder(const TVLBinderProject *project)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter(&buffer).writeProject(project, project->binderRoot());
    return buffer.data();
}

bool writeBinderBytes(const QByteArray &bytes, const QString &filePath, QString *error)
{
    // A disk that is full cuts the file off; saying so keeps the zipped copy of the last good one.
    bool couldOpen = false;
    const bool isWritten = tvlWriteOwnFile(bytes, filePath, error, &couldOpen);
    if (!couldOpen && !QFileInfo(filePath).isSymbolicLink())
        tvlSetError(error, TVLProjectFolderFormat::tr("Could not open binder file."));
    return isWritten;
}

} // namespace

QString TVLProjectFolderFormat::readProjectBinderVersion(const QString &path)
{
    const QString binderPath = findOpenBinderFilePath(path);
    QString version;
    TVLRegularFile file(binderPath);
    if (file.exists() && file.open(QIODevice::ReadOnly))
        version = readBinderVersion(&file);

    const QString projectPath = calcEnclosingPath(path);
    const QString entryName = QFileInfo(binderPath).fileName();
    if (version.isEmpty())
        version = zippedBinderVersion(binderAutosaveFilePath(projectPath), entryName);
    if (version.isEmpty())
        version = zippedBinderVersion(binderBackupFilePath(projectPath), entryName);
    return version;
}

std::unique_ptr<QIODevice> TVLProjectFolderFormat::openFile(const QString &path,
                                                            const QString &filePath, QString *error)
{
    return TVLProjectFile(path, filePath).open(error);
}

int TVLProjectFolderFormat::interruptedSaveFiles(const QString &path)
{
    const TVLRedoJournal::Replay replay = TVLRedoJournal::pending(path);
    return replay.mWritten + replay.mSetAside + replay.mLeft;
}

bool TVLProjectFolderFormat::readBinder(QIODevice *device, TVLBinderProject *project,
                                        QString *error)
{
    TVLBinderReader reader(device);
    return reader.readProject(project, project->binderRoot()) || tvlFail(error, QString());
}

bool TVLProjectFolderFormat::readZippedBinderFilePath(const QString &zipPath,
                                                      TVLBinderProject *project)
{
    std::optional<QByteArray> content = TVLZipReader(zipPath).content(0);
    if (!content)
        return false;
    QBuffer buffer(&*content);
    return buffer.open(QIODevice::ReadOnly) && readBinder(&buffer, project, nullptr);
}

QString TVLProjectFolderFormat::readUserProjectData(const QString &filePath)
{
    static const QByteArray startTag = "<UserProjectData>";
    static const QByteArray endTag = "</UserProjectData>";
    const std::unique_ptr<QIODevice> file = openFile(filePath, filePath, nullptr);
    const QByteArray content = file ? file->readAll() : QByteArray();
    const qsizetype start = content.indexOf(startTag);
    const qsizetype end = start < 0 ? -1 : content.indexOf(endTag, start);
    if (end < 0)
        return {};
    return QString::fromUtf8(content.sliced(start, end + endTag.size() - start));
}

bool TVLProjectFolderFormat::writeBinder(const QString &path, const TVLBinderProject *project,
                                         QString *error)
{
    return project->isMobileProject() ? writeMobileBinder(path, project, error)
                                      : writeDesktopBinder(path, project, error);
}

bool TVLProjectFolderFormat::writeDesktopBinder(const QString &path,
                                                const TVLBinderProject *project, QString *error)
{
    if (!ensureProjectPathExists(path, error))
        return false;

    const QString openPath = findOpenBinderFilePath(path);
    const QString defaultPath = defaultBinderFilePath(path);
    QString filePath = defaultPath;
    if (openPath != defaultPath) {
        const bool isFree = !QFileInfo::exists(defaultPath) || QFile::remove(defaultPath);
        if (!isFree || (QFileInfo::exists(openPath) && !QFile::rename(openPath, defaultPath)))
            filePath = openPath;
    }
    const QByteArray bytes = bytesOfBinder(project);
    // While the file is being written, something else has to hold a binder that can be opened.
    std::optional<TVLRedoJournal> journal;
    if (!tvlEnsureAutosaveOf(path, filePath))
        journal.emplace(path, QList<TVLFileContent>{{filePath, bytes}});
    if (!writeBinderBytes(bytes, filePath, error))
        return false;
    if (journal)
        journal->setWritten(filePath);
    if (!tvlMakeAutosaveOf(path, filePath))
        qWarning("Could not make '%ls' of the binder that was saved",
                 qUtf16Printable(binderAutosaveFilePath(calcEnclosingPath(path))));
    return true;
}

bool TVLProjectFolderFormat::writeMobileBinder(const QString &path, const TVLBinderProject *project,
                                               QString *error)
{
    return ensureProjectPathExists(path, error)
        && writeBinderFile(mobileBinderSyncFilePath(calcEnclosingPath(path)), project, error);
}

bool TVLProjectFolderFormat::writeBinderFile(const QString &filePath,
                                             const TVLBinderProject *project, QString *error)
{
    return writeBinderBytes(bytesOfBinder(project), filePath, error);
}

bool TVLProjectFolderFormat::compressBinder(const QString &path, const QString &zipName,
                                            const QString &binderFile)
{
    if (!QFileInfo::exists(binderFile))
        return false;
    bool ok = false;
    const QDir directory = filesDirectory(path, &ok);
    TVLRegularFile binder(binderFile);
    if (!ok || !binder.open(QIODevice::ReadOnly))
        return false;

    TVLZipWriter zip;
    zip.add(QFileInfo(binderFile).fileName(), binder.readAll());
    const QByteArray bytes = binder.error() == QFile::NoError ? zip.finish() : QByteArray();
    return !bytes.isEmpty() && tvlWriteDerivedFile(bytes, directory.filePath(zipName), nullptr);
}

bool TVLProjectFolderFormat::isNewMobileProjectTavelxContents(const QString &path)
{
    constexpr qint64 LongestPointer = 64;
    TVLRegularFile file(findOpenBinderFilePath(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QTextStream stream(&file);
    const QString line = stream.readLine(LongestPointer);
    return line == u"mobile/binder.sync" || line == u"/mobile/binder.sync";
}

bool TVLProjectFolderFormat::ensureMobileBinderSyncFileName(const QString &path)
{
    static const QString syncName = u"binder.sync"_s;
    QDir directory(mobilePath(calcEnclosingPath(path)));
    if (!directory.exists())
        return true;
    QStringList names =
        directory.entryList({u"*.sync"_s}, QDir::Files, QDir::Time | QDir::Reversed);
    if (names.isEmpty() || names == QStringList(syncName))
        return true;

    const QString oldest = names.takeFirst();
    bool ok = true;
    for (const QString &name : std::as_const(names))
        ok = directory.remove(name) && ok;
    return (oldest == syncName || directory.rename(oldest, syncName)) && ok;
}
