/*
 * Copying a project is told here and not with the rest of the folder's class, because it shows its
 * progress and tells of places that can't be read or written: what keeps files knows no windows.
 */
#include "TVLProjectFolderFormat.h"

#include "TVLCoreUtil.h"
#include "TVLDialogProgress.h"
#include "TVLGuiUtil.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

namespace {

QString withSeparator(const QString &path)
{
    return path.endsWith(u'/') ? path : path + u'/';
}

} // namespace

bool TVLProjectFolderFormat::copyDirectory(const QDir &source, const QDir &target,
                                           QProgressDialog *progress)
{
    TVLDialogProgress dialogProgress(progress);
    return copyDirectory(source, target, dialogProgress);
}

bool TVLProjectFolderFormat::copyDirectory(const QDir &source, const QDir &target,
                                           TVLProgress &progress)
{
    const QFileInfoList entries =
        source.entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        progress.advance();
        if (progress.isCanceled())
            return false;
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
    TVLDialogProgress dialogProgress(progress);
    return copyProject(sourcePath, targetPath, renameBinder, dialogProgress, clearLock,
                       replaceTarget);
}

bool TVLProjectFolderFormat::copyProject(const QString &sourcePath, const QString &targetPath,
                                         bool renameBinder, TVLProgress &progress, bool clearLock,
                                         bool replaceTarget)
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
    const TVLDialogProgress::Look look = {.title = tr("Save As"),
                                          .cancelText = tr("Abort Save"),
                                          .flags = Qt::WindowTitleHint | Qt::WindowCloseButtonHint};
    const auto progress = TVLDialogProgress::make(showProgress, look, parent);
    if (showProgress)
        progress->begin(QString(), TVLCoreUtil::getFileAndDirCount(calcEnclosingPath(sourcePath)));
    return copyProject(sourcePath, targetPath, renameBinder, *progress, clearLock, replaceTarget);
}
