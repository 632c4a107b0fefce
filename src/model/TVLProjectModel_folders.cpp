#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectNode.h"

#include <QLocale>

#include <algorithm>

template <typename Predicate>
QModelIndex TVLProjectModelPrivate::findTopLevel(Predicate predicate) const
{
    const QList<TVLProjectNode *> &nodes = mRootNode->mChildren;
    const auto found = std::find_if(nodes.begin(), nodes.end(), predicate);
    return found == nodes.end() ? QModelIndex() : q->createIndex(*found);
}

QModelIndex TVLProjectModel::findSystemFolder(TVL::NodeType type) const
{
    return d->findTopLevel([type](const TVLProjectNode *node) { return node->mNodeType == type; });
}

bool TVLProjectModel::isSystemFolder(const QModelIndex &index) const
{
    return index.isValid() && type(index) <= TVL::TrashFolder;
}

bool TVLProjectModel::isDraftFolder(const QModelIndex &index) const
{
    return type(index) == TVL::DraftFolder;
}

bool TVLProjectModel::isResearchFolder(const QModelIndex &index) const
{
    return type(index) == TVL::ResearchFolder;
}

bool TVLProjectModel::isTrashFolder(const QModelIndex &index) const
{
    return type(index) == TVL::TrashFolder;
}

bool TVLProjectModel::isFolder(const QModelIndex &index) const
{
    return type(index) <= TVL::Folder;
}

bool TVLProjectModel::isFolderOrText(const QModelIndex &index) const
{
    return type(index) <= TVL::Text;
}

bool TVLProjectModel::canHaveText(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node && node->canHaveText();
}

bool TVLProjectModel::treatAsFolder(const QModelIndex &index) const
{
    return isFolder(index) || (d->mTreatTextWithChildrenAsFolder && hasChildren(index));
}

bool TVLProjectModel::draftContains(const QModelIndex &index) const
{
    return parent(index).isValid() && rootParentType(index) == TVL::DraftFolder;
}

bool TVLProjectModel::researchContains(const QModelIndex &index) const
{
    return parent(index).isValid() && rootParentType(index) == TVL::ResearchFolder;
}

bool TVLProjectModel::trashContains(const QModelIndex &index) const
{
    return parent(index).isValid() && rootParentType(index) == TVL::TrashFolder;
}

bool TVLProjectModel::isDraftChild(const QModelIndex &index) const
{
    return isDraftFolder(index) || draftContains(index);
}

bool TVLProjectModel::isTrashChild(const QModelIndex &index) const
{
    return isTrashFolder(index) || trashContains(index);
}

QModelIndex TVLProjectModel::findSyncConflictsFolder() const
{
    return d->findTopLevel([title = tr("Sync Conflicts")](const TVLProjectNode *node) {
        return node->mTitle == title;
    });
}

QModelIndex TVLProjectModel::syncConflictsFolder()
{
    const QModelIndex found = findSyncConflictsFolder();
    return found.isValid() ? found : createSyncConflictsFolder();
}

QModelIndex TVLProjectModel::findSyncConflictsSubFolder(const QString &name) const
{
    const QModelIndex folder = findSyncConflictsFolder();
    return folder.isValid() ? findViaTitle(name, folder) : QModelIndex();
}

QModelIndex TVLProjectModel::syncConflictsSubFolder(const QString &name)
{
    const QModelIndex found = findSyncConflictsSubFolder(name);
    return found.isValid() ? found : createSyncConflictsSubFolder(name);
}

QModelIndex TVLProjectModel::createSyncConflictsSubFolder(const QString &name)
{
    const QModelIndex folder = syncConflictsFolder();
    return folder.isValid() ? insertUserFolder(-1, folder, name) : QModelIndex();
}

QModelIndex TVLProjectModel::syncConflictsSubFolderDevice(const QString &device,
                                                          const QDateTime &date)
{
    return syncConflictsSubFolder(syncConflictsSubfolderNameFromDeviceName(device, date));
}

QModelIndex TVLProjectModel::syncConflictsSubFolderDevice()
{
    return syncConflictsSubFolderDevice(deviceName(), d->mInfo.mModified);
}

QString TVLProjectModel::syncConflictsSubfolderNameFromDeviceName(const QString &device,
                                                                  const QDateTime &date)
{
    return tr("%1 (%2)").arg(device.isEmpty() ? tr("Mobile Device Conflicts") : device,
                             QLocale::system().toString(date, QLocale::ShortFormat));
}

QString TVLProjectModel::frontMatterFolderName()
{
    return tr("Front Matter");
}

QModelIndex TVLProjectModel::frontMatterFolder() const
{
    const QString name = frontMatterFolderName();
    const TVLProjectNode *root = d->mRootNode.get();
    for (const TVLProjectNode *node = root->nextInPreOrder(root); node;
         node = node->nextInPreOrder(root)) {
        if (node->mNodeType != TVL::Folder || node->mTitle != name)
            continue;
        const QModelIndex index = createIndex(node);
        if (rootParentType(index) != TVL::DraftFolder)
            return index;
    }
    return {};
}

QModelIndex TVLProjectModel::findTemplateFolder() const
{
    const TVLProjectNode *node =
        d->mTemplateFolderUuid.isNull() ? nullptr : d->mUuidMap.value(d->mTemplateFolderUuid);
    return createIndex(node);
}

QUuid TVLProjectModel::templateFolderUuid() const
{
    return templateFolder().isValid() ? d->mTemplateFolderUuid : QUuid();
}

void TVLProjectModel::setTemplateFolder(const QModelIndex &index)
{
    const QPersistentModelIndex oldIndex = templateFolder();
    const QPersistentModelIndex newIndex = index;
    if (newIndex == oldIndex || !projectNode(index))
        return;
    if (oldIndex.isValid())
        d->markTemplateFolder(oldIndex, false);
    if (newIndex.isValid())
        d->markTemplateFolder(newIndex, true);
    markProjectAsModified(true);
    Q_EMIT templateFolderChanged(newIndex, oldIndex);
}

void TVLProjectModel::clearTemplateFolder()
{
    setTemplateFolder(QModelIndex());
}

void TVLProjectModelPrivate::markTemplateFolder(const QModelIndex &index, bool isTemplateFolder)
{
    TVLProjectNode *node = q->projectNode(index);
    node->mIsTemplateFolder = isTemplateFolder;
    mTemplateFolderUuid = isTemplateFolder ? node->mUuid : QUuid();
    node->updateModified();
    // The icons of all below it show that they belong to the template folder.
    announceSubtree(index);
}

void TVLProjectModelPrivate::announceSubtree(const QModelIndex &index)
{
    QList<TVLHeldItem> items = {TVLHeldItem(q, q->projectNode(index))};
    tvlForEachNode(q->projectNode(index),
                   [&](const TVLProjectNode *node) { items.append(TVLHeldItem(q, node)); });
    tvlAnnounceChanges(q, items);
}

bool TVLProjectModel::templatesContain(const QModelIndex &index) const
{
    const QList<TVLProjectNode *> ancestors = TVLProjectNode::ancestors(projectNode(index));
    return std::any_of(ancestors.begin(), ancestors.end(),
                       [](const TVLProjectNode *node) { return node->mIsTemplateFolder; });
}

void TVLProjectModel::adoptTemplateFolder(const QUuid &uuid)
{
    TVLProjectNode *node = findNodeByUuid(uuid);
    if (node == d->mRootNode.get())
        return;
    // There is one, whatever a binder says.
    findNodeByUuid(d->mTemplateFolderUuid)->mIsTemplateFolder = false;
    node->mIsTemplateFolder = true;
    d->mTemplateFolderUuid = node->mUuid;
}

void TVLProjectModel::adoptTemplateFolder(int id)
{
    adoptTemplateFolder(findNodeUuidById(id));
}
