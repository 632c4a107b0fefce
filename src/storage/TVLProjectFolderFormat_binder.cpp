#include "TVLProjectFolderFormat.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLWholeXml_p.h"
#include "TVLZipReader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <private/qzipwriter_p.h>

#include <optional>

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

bool isWholeXmlFile(const QString &filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) && tvlIsWholeXml(&file);
}

/*
 * A save that was killed behind the binder and before its zipped copy leaves a copy that is older
 * than the binder. The next save would then have nothing but that older state to fall back on while
 * it overwrites the binder, so the copy is made up for first; but never from a binder that is cut
 * off itself, for then the copy is the better of the two.
 */
void refreshStaleAutosave(const QString &path, const QString &binderFile)
{
    const QFileInfo binder(binderFile);
    const QFileInfo autosave(TVLProjectFolderFormat::binderAutosaveFilePath(
        TVLProjectFolderFormat::calcEnclosingPath(path)));
    if (binder.exists() && autosave.exists() && autosave.lastModified() < binder.lastModified()
        && isWholeXmlFile(binderFile))
        TVLProjectFolderFormat::compressBinder(path, autosave.fileName(), binderFile);
}

} // namespace

QString TVLProjectFolderFormat::readProjectBinderVersion(const QString &path)
{
    const QString binderPath = findOpenBinderFilePath(path);
    QString version;
    QFile file(binderPath);
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

bool TVLProjectFolderFormat::readBinder(QIODevice *device, TVLBinderProject *project,
                                        QString *error)
{
    TVLBinderReader reader(device);
    const bool ok = reader.readProject(project, project->binderRoot());
    if (!ok)
        tvlSetError(error, QString());
    return ok;
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
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
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
    refreshStaleAutosave(path, filePath);
    if (!writeBinderFile(filePath, project, error))
        return false;
    compressBinder(path, u"binder.autosave"_qs, filePath);
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
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter(&buffer).writeProject(project, project->binderRoot());

    // A disk that is full cuts the file off; saying so keeps the zipped copy of the last good one.
    bool couldOpen = false;
    const bool isWritten = TVLCoreUtil::WriteBinaryFile(buffer.data(), filePath, error, &couldOpen);
    if (!couldOpen)
        tvlSetError(error, tr("Could not open binder file."));
    return isWritten;
}

bool TVLProjectFolderFormat::compressBinder(const QString &path, const QString &zipName,
                                            const QString &binderFile)
{
    if (!QFileInfo::exists(binderFile))
        return false;
    bool ok = false;
    const QDir directory = filesDirectory(path, &ok);
    QFile binder(binderFile);
    if (!ok || !binder.open(QIODevice::ReadOnly))
        return false;

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QZipWriter zip(&buffer);
    zip.setCreationPermissions(QFile::Permissions(0x7755));
    zip.addFile(QFileInfo(binderFile).fileName(), binder.readAll());
    zip.close();

    return TVLCoreUtil::WriteBinaryFile(buffer.data(), directory.filePath(zipName), nullptr);
}

bool TVLProjectFolderFormat::isNewMobileProjectTavelxContents(const QString &path)
{
    constexpr qint64 LongestPointer = 64;
    QFile file(findOpenBinderFilePath(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QTextStream stream(&file);
    const QString line = stream.readLine(LongestPointer);
    return line == u"mobile/binder.sync" || line == u"/mobile/binder.sync";
}

bool TVLProjectFolderFormat::ensureMobileBinderSyncFileName(const QString &path)
{
    static const QString syncName = u"binder.sync"_qs;
    QDir directory(mobilePath(calcEnclosingPath(path)));
    if (!directory.exists())
        return true;
    QStringList names =
        directory.entryList({u"*.sync"_qs}, QDir::Files, QDir::Time | QDir::Reversed);
    if (names.isEmpty() || names == QStringList(syncName))
        return true;

    const QString oldest = names.takeFirst();
    bool ok = true;
    for (const QString &name : std::as_const(names))
        ok = directory.remove(name) && ok;
    return (oldest == syncName || directory.rename(oldest, syncName)) && ok;
}
