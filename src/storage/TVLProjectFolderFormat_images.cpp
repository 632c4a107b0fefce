#include "TVLProjectFolderFormat.h"

#include "TVLCoreUtil.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPixmap>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** Where an icon lies; empty for a name that isn't one of a file in the folder. */
QString iconPath(const QString &path, const QString &name)
{
    if (name.isEmpty() || name == u"." || name == u".." || name.contains(u'/'))
        return {};
    return Format::calcEnclosingPath(path) + u"/Icons/"_s + name;
}

/** Writes an image in one go, so that one which can't be composed leaves the old file alone. */
bool writeImage(const QImage &image, const QString &filePath, const QByteArray &format, int quality)
{
    QBuffer buffer;
    return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format.constData(), quality)
        && TVLCoreUtil::WriteBinaryFile(buffer.data(), filePath, nullptr);
}

QByteArray formatOf(const QString &filePath)
{
    return QFileInfo(filePath).suffix().toLower().toLatin1();
}

bool isInDocs(const QString &path)
{
    bool ok = false;
    Format::docsDirectory(path, &ok);
    return ok;
}

} // namespace

bool TVLProjectFolderFormat::writeImageFile(const QString &path, int id, const QString &extension,
                                            const QImage &image, int quality)
{
    const QString filePath = url(path, id, extension).toLocalFile();
    // All items without id would share one file.
    return id >= 0 && isInDocs(path) && writeImage(image, filePath, formatOf(filePath), quality);
}

// --- Index cards

QString TVLProjectFolderFormat::indexCardImagePath(const QString &path, int id,
                                                   const QString &extension)
{
    return filesDocsPath(calcEnclosingPath(path))
        + u"/%1_icImage.%2"_s.arg(QString::number(id), extension);
}

QImage TVLProjectFolderFormat::indexCardImage(const QString &path, int id, const QString &extension)
{
    return QImage(indexCardImagePath(path, id, extension));
}

QPixmap TVLProjectFolderFormat::indexCardPixmap(const QString &path, int id,
                                                const QString &extension)
{
    return QPixmap::fromImage(indexCardImage(path, id, extension));
}

bool TVLProjectFolderFormat::setIndexCardImage(const QString &path, int id,
                                               const QString &extension, const QImage &image)
{
    const QString filePath = indexCardImagePath(path, id, extension);
    if (image.isNull())
        return TVLCoreUtil::DeleteFile(filePath);
    return id >= 0 && isInDocs(path) && writeImage(image, filePath, formatOf(filePath), -1);
}

bool TVLProjectFolderFormat::setIndexCardPixmap(const QString &path, int id,
                                                const QString &extension, const QPixmap &pixmap)
{
    return setIndexCardImage(path, id, extension, pixmap.toImage());
}

// --- Icons

QPixmap TVLProjectFolderFormat::icon(const QString &path, const QString &name)
{
    const QString filePath = iconPath(path, name);
    return filePath.isEmpty() ? QPixmap() : QPixmap(filePath);
}

bool TVLProjectFolderFormat::addIcon(const QString &path, const QString &name, const QImage &image)
{
    const QString filePath = iconPath(path, name);
    bool ok = false;
    iconsDirectory(path, &ok);
    if (filePath.isEmpty() || !ok)
        return false;
    // An icon is called as its user likes, which need not end in a format.
    const QByteArray format = formatOf(filePath);
    const bool isKnown = QImageWriter::supportedImageFormats().contains(format);
    return writeImage(image, filePath, isKnown ? format : QByteArrayLiteral("png"), -1);
}

bool TVLProjectFolderFormat::removeIcon(const QString &path, const QString &name)
{
    const QString filePath = iconPath(path, name);
    return !filePath.isEmpty() && QFile::remove(filePath);
}

bool TVLProjectFolderFormat::renameIcon(const QString &path, const QString &oldName,
                                        const QString &newName)
{
    const QString oldPath = iconPath(path, oldName);
    const QString newPath = iconPath(path, newName);
    return !oldPath.isEmpty() && !newPath.isEmpty() && QFile::rename(oldPath, newPath);
}

QStringList TVLProjectFolderFormat::icons(const QString &path)
{
    return TVLCoreUtil::fileNames(calcEnclosingPath(path) + u"/Icons"_s);
}
