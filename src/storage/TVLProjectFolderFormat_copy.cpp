#include "TVLProjectFolderFormat.h"

#include "TVLCoreUtil.h"
#include "TVLGuiUtil.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QProgressDialog>

namespace {

QString withSeparator(const QString &path)
{
    return path.endsWith(u'/') ? path : path + u'/';
}

} // namespace

bool TVLProjectFolderFormat::copyDirectory(const QDir &source, const QDir &target,
                                           QProgressDialog *progress)
{
    const QFileInfoList entries =
        source.entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        if (progress) {
            progress->setValue(progress->value() + 1);
            if (progress->wasCanceled())
                return false;
        }
        // A link that leads back to where it lies in would be followed for ever.
        if (entry.isSymbolicLink()
            && TVLCoreUtil::IsSameOrInside(source.absolutePath(), entry.filePath()))
            return false;
        const QString targetPath = target.filePath(entry.fileName());
        const bool copied = entry.isDir() ? target.mkpath(entry.fileName())
                && copyDirectory(QDir(entry.filePath()), QDir(targetPath), progress)
                                          : QFile::copy(entry.filePath(), targetPath);
        if (!copied)
            return false;
    }
    return true;
}

bool TVLProjectFolderFormat::copyProject(const QString &sourcePath, const QString &targetPath,
                                         bool renameBinder, QProgressDialog *progress,
                                         bool clearLock, bool replaceTarget)
{
    const QString source = calcEnclosingPath(sourcePath);
    const QString target = calcEnclosingPath(targetPath);
    forgetSnapshots(target);
    if (replaceTarget && QFileInfo::exists(target)) {
        // Making room for the copy must not take what is to be copied.
        if (TVLCoreUtil::IsSameOrInside(source, target)
            || !TVLCoreUtil::DeleteFolderAndFiles(target))
            return false;
    }
    if (withSeparator(target).startsWith(withSeparator(source))
        || TVLCoreUtil::IsSameOrInside(target, source))
        return false;

    QWidget *window = QApplication::activeWindow();
    if (!TVLGuiUtil::CanReadLocation(source, true, window)
        || !TVLGuiUtil::CanWriteLocation(target, true, true, window))
        return false;
    if (!QDir::root().mkpath(target) || !QFileInfo(target).isDir())
        return false;
    if (!copyDirectory(QDir(source), QDir(target), progress))
        return false;

    if (renameBinder)
        (void)findOpenBinderFilePath(target); // A look-up renames the binder after its folder.
    return !clearLock || removeLock(target);
}

bool TVLProjectFolderFormat::copyProjectProgress(const QString &sourcePath,
                                                 const QString &targetPath, bool renameBinder,
                                                 bool clearLock, bool replaceTarget,
                                                 bool showProgress, QWidget *parent)
{
    if (!showProgress)
        return copyProject(sourcePath, targetPath, renameBinder, nullptr, clearLock, replaceTarget);
    QProgressDialog progress(QString(), tr("Abort Save"), 0,
                             TVLCoreUtil::getFileAndDirCount(calcEnclosingPath(sourcePath)), parent,
                             Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    progress.setWindowTitle(tr("Save As"));
    progress.setWindowModality(Qt::WindowModal);
    return copyProject(sourcePath, targetPath, renameBinder, &progress, clearLock, replaceTarget);
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
