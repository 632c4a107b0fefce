// Copies of items; see TVLItemCloner.
#include "TVLProjectModel_p.h"

#include "TVLItemCloner_p.h"
#include "TVLItemRows_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"

// --- Onto items that are there

bool TVLProjectModel::canClone(const QModelIndex &source, const QModelIndex &target) const
{
    return TVLItemCloner::canClone(source, target);
}

bool TVLProjectModel::cloneProjectFilesNode(bool mobile, const QString &sourcePath,
                                            const TVLProjectNode *source, const QString &targetPath,
                                            const TVLProjectNode *target)
{
    return mobile ? TVLProjectFolderFormat::cloneMobileProjectFiles(sourcePath, source->mUuid,
                                                                    targetPath, target->mUuid)
                  : TVLProjectFolderFormat::cloneProjectFiles(sourcePath, source->mId, targetPath,
                                                              target->mId);
}

bool TVLProjectModel::cloneProjectFiles(const QModelIndex &source, const QModelIndex &target,
                                        bool snapshots)
{
    return d->mCloner->cloneProjectFiles(source, target, snapshots);
}

bool TVLProjectModel::clone(const QModelIndex &source, const QModelIndex &target, bool recursive,
                            bool checkRules, bool snapshots, bool files)
{
    return d->mCloner->clone(source, target, {recursive, checkRules, snapshots, files});
}

bool TVLProjectModel::cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                             bool snapshots)
{
    return d->mCloner->cloneDesktopProperties(source, target, snapshots);
}

bool TVLProjectModel::cloneKeywordsAndReferences(const QModelIndex &source,
                                                 const QModelIndex &target)
{
    return d->mCloner->cloneKeywordsAndReferences(source, target);
}

bool TVLProjectModel::cloneLabelsAndStatusItems(const QModelIndex &source,
                                                const QModelIndex &target)
{
    return d->mCloner->cloneLabelsAndStatusItems(source, target);
}

// --- As new items

QList<TVLHeldItem> TVLProjectModelPrivate::insertClones(const TVLInsertPlace &place, int count,
                                                        const QModelIndex &source,
                                                        TVLProjectModel::CloneFlags flags,
                                                        const QUuid &uuid)
{
    if (!TVLItemCloner::isOfAProject(source))
        return insertBlankItems(place, count, uuid);
    return mCloner->insertClones(place, count, source,
                                 {flags.testFlag(TVLProjectModel::CloneChildren),
                                  !flags.testFlag(TVLProjectModel::SkipCloneRules),
                                  flags.testFlag(TVLProjectModel::CloneSnapshots),
                                  !flags.testFlag(TVLProjectModel::CloneWithoutFiles)},
                                 uuid);
}

QModelIndex TVLProjectModel::createNewProjectIndex(int row, const QModelIndex &parent,
                                                   const QString &title, const QUuid *uuid,
                                                   const QModelIndex *source)
{
    const TVLInsertPlace place = d->mRows->insertPlace(parent, row);
    const QUuid givenUuid = uuid ? *uuid : QUuid();
    const auto begin = [&title](TVLProjectNode *node) {
        node->mLabelId = -1;
        node->mStatusId = -1;
        node->mTitle = title;
    };
    if (source && TVLItemCloner::isOfAProject(*source))
        return d->mCloner->insertCopy(place, *source, givenUuid, begin).index();
    const auto make = [&](int) {
        TVLProjectNode *node = d->mRows->createDefaultNode(place.parent, place.row, givenUuid);
        begin(node);
        d->mSearchFeed->add(node);
        return node;
    };
    return d->mRows->insert(place, 1, make).constFirst().index();
}

QModelIndex TVLProjectModel::createNewItemInConflictsFolder(const QUuid *uuid, const QString &title,
                                                            const QString &subfolder,
                                                            const QModelIndex *source)
{
    const QPersistentModelIndex heldSource = source ? *source : QModelIndex();
    const QModelIndex folder = syncConflictsSubFolder(subfolder);
    if (!folder.isValid())
        return {};
    const QModelIndex present = heldSource;
    return createNewProjectIndex(-1, folder, title, uuid, source ? &present : nullptr);
}

// --- Duplicates

QModelIndexList TVLProjectModel::duplicate(const QModelIndexList &indexes, bool withChildren)
{
    return d->mCloner->duplicate(indexes, withChildren);
}

QModelIndexList TVLProjectModel::duplicate(const QModelIndexList &indexes, int row,
                                           const QModelIndex &parent, bool withChildren,
                                           bool checkRules)
{
    return d->mCloner->duplicate(indexes, row, parent, withChildren, checkRules);
}

QModelIndex TVLProjectModel::duplicate(const QModelIndex &index, int row, const QModelIndex &parent,
                                       bool withChildren, bool checkRules)
{
    const QModelIndexList copies =
        duplicate(QModelIndexList{index}, row, parent, withChildren, checkRules);
    return copies.isEmpty() ? QModelIndex() : copies.constFirst();
}
