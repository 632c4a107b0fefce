#include "TVLProjectModel_p.h"

#include "TVLGuiUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString CardExtension = u"png"_s;

/** Whether a file is one of an image that is shown, by its name, and is there. */
bool isShownImageFile(const QString &path, const QString &extension)
{
    return TVL::displayImageFormats().contains(extension.toLower()) && QFileInfo::exists(path);
}

QImage imageFrom(const QString &path)
{
    return path.isEmpty() ? QImage() : QImage(path);
}

QIcon fileIcon(const QString &path)
{
    const QFileIconProvider provider;
    const QIcon icon = QFileInfo::exists(path) ? provider.icon(QFileInfo(path)) : QIcon();
    return icon.isNull() ? provider.icon(QFileIconProvider::File) : icon;
}

} // namespace

// --- Icons

QIcon TVLProjectModel::icon(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node)
        return {};
    const QPixmap custom = customIcon(node->mIconFileName);
    if (!custom.isNull())
        return custom;
    return node->mFileExtension.isEmpty() ? QIcon() : fileIcon(url(node).toLocalFile());
}

QStringList TVLProjectModel::customIconNames() const
{
    return TVLProjectFolderFormat::icons(d->mPath);
}

QPixmap TVLProjectModel::customIcon(const QString &name) const
{
    if (name.isEmpty())
        return {};
    // Views ask for every icon that they show each time that they paint it.
    const auto known = d->mCustomIcons.constFind(name);
    if (known != d->mCustomIcons.cend())
        return *known;
    const QPixmap pixmap = TVLProjectFolderFormat::icon(d->mPath, name);
    if (!pixmap.isNull())
        d->mCustomIcons.insert(name, pixmap);
    return pixmap;
}

bool TVLProjectModel::addCustomIcon(const QString &name, const QImage &image)
{
    d->mCustomIcons.remove(name);
    if (!TVLProjectFolderFormat::addIcon(d->mPath, name, image))
        return false;
    markProjectAsModified(true);
    return true;
}

bool TVLProjectModel::renameCustomIcon(const QString &oldName, const QString &newName)
{
    if (!TVLProjectFolderFormat::renameIcon(d->mPath, oldName, newName))
        return false;
    d->replaceCustomIcon(oldName, newName);
    return true;
}

bool TVLProjectModel::removeCustomIcon(const QString &name)
{
    if (!TVLProjectFolderFormat::removeIcon(d->mPath, name))
        return false;
    d->replaceCustomIcon(name, QString());
    return true;
}

void TVLProjectModelPrivate::replaceCustomIcon(const QString &oldName, const QString &newName)
{
    mCustomIcons.remove(oldName);
    mCustomIcons.remove(newName);
    // Who hears of one change may move or remove items before the next.
    QList<QPersistentModelIndex> indexes;
    tvlForEachNode(mRootNode.get(), [&](const TVLProjectNode *node) {
        if (node->mIconFileName == oldName)
            indexes.append(q->createIndex(node));
    });
    for (const QPersistentModelIndex &index : std::as_const(indexes)) {
        if (index.isValid())
            q->setCustomIcon(index, newName);
    }
}

void TVLProjectModel::setTintIcons(bool tint)
{
    d->mTintIcons = tint;
    d->announceSubtree(rootIndex());
}

// --- Index cards

QString TVLProjectModelPrivate::indexCardImagePath(const TVLProjectNode *node) const
{
    // Without an id all items would share one file.
    if (node->mId < 0 || node->mIndexCardImageFileExtension.isEmpty())
        return {};
    return TVLProjectFolderFormat::indexCardImagePath(mPath, node->mId,
                                                      node->mIndexCardImageFileExtension);
}

bool TVLProjectModel::hasIndexCardImage(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && QFileInfo::exists(d->indexCardImagePath(node));
}

QImage TVLProjectModel::rawDataImage(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node)
        return {};
    const QImage image = imageFrom(d->indexCardImagePath(node));
    return image.isNull() ? imageFrom(url(node).toLocalFile()) : image;
}

QPixmap TVLProjectModel::indexCardPixmap(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return {};
    if (!node->hasIndexCardPixmap())
        node->setIndexCardPixmap(QPixmap::fromImage(rawDataImage(index)));
    return node->indexCardPixmap();
}

bool TVLProjectModel::setIndexCardImage(const QModelIndex &index, const QImage &image)
{
    TVLProjectNode *node = projectNode(index);
    // The file comes first: an item must not lose its image to one that the disk didn't take.
    if (!node || node->mId < 0
        || !TVLProjectFolderFormat::setIndexCardImage(d->mPath, node->mId, CardExtension, image))
        return false;
    node->mIndexCardImageFileExtension = CardExtension;
    if (image.isNull())
        node->clearIndexCardPixmap();
    else
        node->setIndexCardPixmap(QPixmap::fromImage(image));
    d->followChange(node, index, TVLProjectModelPrivate::Effects::TouchAndAnnounce);
    return true;
}

// --- What is an image

bool TVLProjectModel::isImage(const TVLProjectNode *node) const
{
    return node
        && (isShownImageFile(d->indexCardImagePath(node), node->mIndexCardImageFileExtension)
            || isShownImageFile(url(node).toLocalFile(), node->mFileExtension));
}

bool TVLProjectModel::canDisplayAsImage(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && (node->mNodeType == TVL::Image || node->mNodeType == TVL::Other)
        && TVLGuiUtil::readImageFormats().contains(node->mFileExtension.toLower());
}
