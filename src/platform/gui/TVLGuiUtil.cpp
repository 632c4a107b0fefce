#include "TVLGuiUtil.h"

#include "TVLMessageBox.h"
#include "TVLModel.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

namespace {

/** What the file system says at this moment. */
QFileInfo freshInfo(const QString &path)
{
    QFileInfo info(path);
    info.setCaching(false);
    return info;
}

bool canWriteFolder(const QString &path)
{
    QFileInfo info = freshInfo(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    // A link that leads nowhere takes up its name, so nothing can be made under it.
    while (!info.exists() && !info.isSymbolicLink() && !info.isRoot())
        info = freshInfo(info.absolutePath());
    return info.isDir() && info.isWritable();
}

bool canWriteFile(const QString &path)
{
    const QFileInfo info = freshInfo(path);
    return info.exists() ? info.isFile() && info.isWritable() : canWriteFolder(info.absolutePath());
}

QStringList extensionsOfImages(const QList<QByteArray> &formats)
{
    QStringList extensions;
    for (const QByteArray &format : formats)
        extensions.append(QString::fromLatin1(format).toLower());
    return extensions;
}

} // namespace

bool TVLGuiUtil::CanWriteLocation(const QString &path, bool isFolder, bool notifyUser,
                                  QWidget *parent)
{
    const bool canWrite = !path.isEmpty() && (isFolder ? canWriteFolder(path) : canWriteFile(path));
    if (!canWrite && notifyUser) {
        TVLMessageBox::showMessageBox(
            parent, tr("Write Error"),
            tr("Cannot write to the location: '%1'").arg(QDir::toNativeSeparators(path)),
            tr("Check that the disk is connected and isn't write-protected and that you have "
               "permission to write there, or choose another location."),
            QMessageBox::Critical);
    }
    return canWrite;
}

bool TVLGuiUtil::CanReadLocation(const QString &path, bool notifyUser, QWidget *parent)
{
    const QFileInfo info = freshInfo(path);
    const bool canRead = !path.isEmpty() && info.exists() && info.isReadable();
    if (!canRead && notifyUser) {
        TVLMessageBox::showMessageBox(
            parent, tr("Read Error"),
            tr("Cannot read the location: '%1'").arg(QDir::toNativeSeparators(path)),
            tr("Check that the disk is connected, that nothing there was moved or renamed, "
               "and that you have permission to read it."),
            QMessageBox::Critical);
    }
    return canRead;
}

bool TVLGuiUtil::allowMove(const QModelIndex &source, const QModelIndex &sourceParent,
                           const QModelIndex &targetParent, int row, Qt::DropAction action)
{
    if (!source.isValid())
        return false;
    if (action != Qt::MoveAction)
        return true;
    if (targetParent == source || TVLModel::parentsContain(targetParent, source))
        return false;
    const int targetRow = row < 0 ? source.model()->rowCount(targetParent) : row;
    const bool staysThere = targetRow == source.row() || targetRow == source.row() + 1;
    return targetParent != sourceParent || !staysThere;
}

QStringList TVLGuiUtil::readImageFormats()
{
    static const QStringList extensions = extensionsOfImages(QImageReader::supportedImageFormats());
    return extensions;
}

QStringList TVLGuiUtil::readWriteImageFormats()
{
    static const QStringList extensions = [] {
        QStringList both = readImageFormats();
        const QStringList written = extensionsOfImages(QImageWriter::supportedImageFormats());
        both.removeIf(
            [&written](const QString &extension) { return !written.contains(extension); });
        return both;
    }();
    return extensions;
}
