#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QImage>
#include <QUrl>

using namespace Qt::StringLiterals;

/** What a program can call of a project model to change the tree. */
class TstModelChangeInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsOfCloning();
    void makingNodes();
    void makingItemsWithTexts();
    void makingRows();
    void makingItemsForAMerge();
    void moving();
    void removing();
    void cloning();
    void cloningAttributes();
    void duplicating();
    void grouping();
    void sorting();
    void listsOfItems();
    void titles();
    void mergingAttributes();
};

void TstModelChangeInterface::flagsOfCloning()
{
    const auto flags = TVLProjectModel::CloneFlags::fromInt(1 | 2 | 4 | 8);
    QCOMPARE(flags,
             TVLProjectModel::SkipCloneRules | TVLProjectModel::CloneChildren
                 | TVLProjectModel::CloneSnapshots | TVLProjectModel::CloneWithoutFiles);
    gives<QFlags<TVLProjectModel::CloneFlag>>(flags);
}

void TstModelChangeInterface::makingNodes()
{
    areCallable([](TVLProjectModel &model, TVLProjectNode *node, const QModelIndex &parent,
                   const QString &text) {
        gives<TVLProjectNode *>(model.createProjectNode(node, -1, QUuid(), -1));
        gives<TVLProjectNode *>(model.insertNode(0, parent, TVL::Text, text, text));
        gives<QList<TVLProjectNode *>>(
            model.insertMultipleNodes(0, parent, TVL::Text, text, text, 2));
        gives<TVLProjectNode *>(
            model.insertNodeWithProperties(0, parent, TVLProjectNodeProperties()));
        gives<TVLProjectNode *>(model.createUrlNode(QUrl(), 0, parent));
    });
}

void TstModelChangeInterface::makingItemsWithTexts()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &parent, const QString &text,
                   const QImage &image) {
        gives<QModelIndex>(model.insertTextNode(0, parent, text, text, text, text));
        gives<QModelIndex>(model.insertImageNode(0, parent, text, image, text, text));
        gives<QModelIndex>(model.insertUserFolder(0, parent, text));
        gives<QList<QModelIndex>>(model.insertMultipleTextNodes(0, parent, 2));
    });
}

void TstModelChangeInterface::makingRows()
{
    areCallable(
        [](TVLProjectModel &model, const QModelIndex &index, TVLProjectModel::CloneFlags flags) {
            gives<bool>(model.insertRows(0, 1, index));
            gives<bool>(model.insertRowsAndClone(0, 1, index, index, flags));
            gives<QModelIndex>(model.insertRowAndClone(0, index, index, flags, QUuid()));
            gives<QModelIndex>(model.insertRowWithProperties(0, index, TVLProjectNodeProperties()));
            gives<QModelIndex>(model.createNewItem(0, index));
            gives<QModelIndex>(model.createNewFolder(0, index));
            gives<QModelIndex>(model.createNewText(0, index, index));
        });
}

void TstModelChangeInterface::makingItemsForAMerge()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &parent, const QString &text,
                   QUuid *uuid, QModelIndex *source) {
        gives<QModelIndex>(model.createNewProjectIndex(0, parent, text, uuid, source));
        gives<QModelIndex>(model.createNewItemInConflictsFolder(uuid, text, text, source));
    });
}

void TstModelChangeInterface::moving()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &folder, TVLProjectNode *node) {
        gives<bool>(model.moveToFolder(folder, QModelIndexList{folder}, 0));
        gives<bool>(model.moveToFolder(node, 0, QList<TVLProjectNode *>{node}));
        gives<bool>(model.moveToTrash(QModelIndexList{folder}));
        gives<bool>(model.emptyTrash());
    });
}

void TstModelChangeInterface::removing()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLProjectNode *node) {
        gives<bool>(model.removeIndex(index));
        model.removeIndexFromModel(index);
        model.removeChildrenForIndex(index);
        gives<bool>(model.removeFilesForNode(node));
        model.removeIndexesFromDependentStructures(QModelIndexList{index});
        model.removeNodeIdsFromDefaultTemplateId(QList<int>{1});
        model.removeNodeIdsFromCollections(QList<int>{1});
    });
}

void TstModelChangeInterface::cloning()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, const QString &path,
                   TVLProjectNode *node) {
        gives<bool>(model.canClone(index, index));
        gives<bool>(model.clone(index, index, true, true, true, true));
        gives<bool>(model.cloneProjectFiles(index, index, true));
        gives<bool>(model.cloneProjectFilesNode(true, path, node, path, node));
    });
}

void TstModelChangeInterface::cloningAttributes()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &source, const QModelIndex &target) {
        gives<bool>(model.cloneDesktopProperties(source, target, true));
        gives<bool>(model.cloneKeywordsAndReferences(source, target));
        gives<bool>(model.cloneLabelsAndStatusItems(source, target));
    });
}

void TstModelChangeInterface::duplicating()
{
    areCallable([](TVLProjectModel &model, const QModelIndexList &list, const QModelIndex &index) {
        gives<QModelIndexList>(model.duplicate(list, true));
        gives<QModelIndexList>(model.duplicate(list, 0, index, true, true));
        gives<QModelIndex>(model.duplicate(index, 0, index, true, true));
    });
}

void TstModelChangeInterface::grouping()
{
    areCallable([](TVLProjectModel &model, const QModelIndexList &list) {
        gives<QModelIndex>(model.groupIndexes(list));
        gives<bool>(model.ungroupIndexes(list));
        gives<QModelIndex>(model.mergeIndexes(list));
        model.flatten();
    });
}

void TstModelChangeInterface::sorting()
{
    areCallable(
        [](TVLProjectModel &model, const QList<QModelIndex> &list, const QModelIndex &index) {
            gives<QList<QModelIndex>>(model.sort(list, TVL::TitleColumn, Qt::DescendingOrder));
            gives<QList<QModelIndex>>(model.sortIndexes(list));
            gives<QList<QModelIndex>>(model.sortIndexesStable(list));
            gives<QList<QModelIndex>>(model.sortIndexesHash(list));
            gives<QList<QModelIndex>>(model.shuffle(list));
            gives<bool>(model.lessThanIndex(index, index));
        });
}

void TstModelChangeInterface::listsOfItems()
{
    areCallable([](TVLProjectModel &model, const QModelIndexList &list, int *count) {
        model.countFilesAndFolders(list, count, count);
        gives<QList<int>>(model.nodeIdentityList(list));
        gives<QList<QUuid>>(model.nodeUuidList(list));
        gives<QStringList>(model.titles(list));
    });
}

void TstModelChangeInterface::titles()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.hasSiblingWithTitle(index, u"a"_s));
        gives<QString>(model.findUniqueTitle(u"a"_s, index));
    });
}

void TstModelChangeInterface::mergingAttributes()
{
    areCallable(
        [](TVLProjectModel &model, const QModelIndex &index, const TVLProjectNodeProperties &item) {
            gives<TVLProjectNodeProperties>(model.nodeProperties(index));
            gives<bool>(model.applyMobileAttributes(index, item));
            gives<bool>(model.applyDesktopAttributes(index, item));
            gives<bool>(model.applyMobileAttributesFromIndex(index, index));
            gives<bool>(model.applyDesktopAttributesFromIndex(index, index));
        });
}

TVL_TEST(TstModelChangeInterface)
#include "tst_modelchangeinterface.moc"
