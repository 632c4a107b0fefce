#include "Callable.h"
#include "TestMain.h"
#include "TestModel.h"

#include "TVLModel.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QMetaMethod>

using namespace Qt::StringLiterals;

/** What a program can call of a project model: the tree, the finding of items, the lifecycle. */
class TstModelInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theItemModel();
    void rolesAndTextModes();
    void indexesAndNodes();
    void findingItemsByIdAndUuid();
    void askingForManyItems();
    void askingForAncestors();
    void walkingTheTree();
    void systemFolders();
    void placesOfItems();
    void syncConflicts();
    void otherFolders();
    void makingModels();
    void saving();
    void endingAndFinding();
    void theSuspendedFlag();
    void idsThatChange();
    void listsOfIndexes();

    void signalsStandInTheirOrder();
    void signalsOfCollectionsAreOfTwoKinds();
    void slotsAreFoundByName_data();
    void slotsAreFoundByName();
    void propertiesAreFoundByName();
};

void TstModelInterface::theItemModel()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.index(0, 0, index));
        gives<QModelIndex>(model.parent(index));
        gives<int>(model.rowCount(index));
        gives<int>(model.columnCount(index));
        gives<bool>(model.hasChildren(index));
        gives<QVariant>(model.data(index, Qt::DisplayRole));
        gives<bool>(model.setData(index, QVariant(), Qt::EditRole));
        gives<Qt::ItemFlags>(model.flags(index));
        gives<Qt::DropActions>(model.supportedDropActions());
        gives<bool>(model.insertRows(0, 1, index));
        gives<QStringList>(model.mimeTypes());
        gives<QMimeData *>(model.mimeData({index}));
        gives<bool>(model.dropMimeData(nullptr, Qt::CopyAction, 0, 0, index));
    });
}

void TstModelInterface::rolesAndTextModes()
{
    QCOMPARE(int(TVLProjectModel::NodeIdRole), 132);
    QCOMPARE(int(TVLProjectModel::NodeUuidRole), 133);
    QCOMPARE(int(TVLProjectModel::NodeTypeRole), 134);
    QCOMPARE(int(TVLProjectModel::LabelIdRole), 135);
    QCOMPARE(int(TVLProjectModel::StatusIdRole), 136);
    QCOMPARE(int(TVLProjectModel::CreatedRole), 137);
    QCOMPARE(int(TVLProjectModel::ModifiedRole), 138);
    QCOMPARE(int(TVLProjectModel::TemplateFolderRole), 139);
    QCOMPARE(int(TVLProjectModel::FavoriteRole), 140);
    QCOMPARE(int(TVLProjectModel::KeywordIdsRole), 141);
    QCOMPARE(TVLProjectModel::GeneralFormatMode, u"General"_s);
    QCOMPARE(TVLProjectModel::ScriptFormatMode, u"Script"_s);
}

void TstModelInterface::indexesAndNodes()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index, TVLProjectNode *node) {
        gives<QModelIndex>(model.rootIndex());
        gives<QModelIndex>(model.createIndex(node));
        gives<QModelIndex>(model.toIndex(node));
        gives<TVLProjectNode *>(model.projectNode(index));
        gives<QString>(TVLProjectModel::trUntitledTitle());
    });
}

void TstModelInterface::findingItemsByIdAndUuid()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &parent, const QUuid &uuid) {
        gives<TVLProjectNode *>(model.findNode(1));
        gives<TVLProjectNode *>(model.findNodeByUuid(uuid));
        gives<QModelIndex>(model.indexByUuid(uuid));
        gives<QModelIndex>(model.index(1));
        gives<QUuid>(model.findNodeUuidById(1));
        gives<int>(model.findNodeIdByUuid(uuid));
        gives<bool>(model.hasNodeId(1));
        gives<bool>(model.hasNodeUuid(uuid));
        gives<bool>(model.hasChildWithUuid(parent, uuid));
        gives<QModelIndexList>(model.indexesByUuid(QList<QUuid>{uuid}));
        gives<int>(model.findBiggestNodeId());
        gives<int>(model.findNextNodeId());
    });
}

void TstModelInterface::askingForManyItems()
{
    areCallable([](const TVLProjectModel &model, TVLProjectNode *node) {
        gives<QList<QUuid>>(model.uuidsList());
        gives<QList<QUuid>>(model.uuidsListBinderOrder());
        gives<QSet<QUuid>>(model.uniqueUuids());
        gives<int>(model.totalNodesCount());
        gives<QList<int>>(model.orderedChildIDs(node));
        gives<QList<TVLProjectNode *>>(model.allNodesWithReferences());
    });
}

void TstModelInterface::askingForAncestors()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index, const QUuid &uuid) {
        gives<bool>(model.indexContainsUuid(index, uuid));
        gives<bool>(model.containsIndex(index, index));
        gives<bool>(model.isChildOf(index, index));
        gives<bool>(model.isChildOf(index, QModelIndexList{index}));
        gives<QModelIndex>(model.findViaTitle(u"a"_s, index));
        gives<QModelIndex>(model.findDirectIndexByTitle(u"a"_s, index));
    });
}

void TstModelInterface::walkingTheTree()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.previousIndex(index));
        gives<QModelIndex>(model.nextIndex(index));
        gives<int>(model.indexDepth(index));
        gives<QModelIndex>(model.rootParentIndex(index));
        gives<TVL::NodeType>(model.rootParentType(index));
    });
}

void TstModelInterface::systemFolders()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.findSystemFolder(TVL::DraftFolder));
        gives<QModelIndex>(model.draftFolder());
        gives<QModelIndex>(model.researchFolder());
        gives<QModelIndex>(model.trashFolder());
        gives<bool>(model.isSystemFolder(index));
        gives<bool>(model.isDraftFolder(index));
        gives<bool>(model.isResearchFolder(index));
        gives<bool>(model.isTrashFolder(index));
    });
}

void TstModelInterface::placesOfItems()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.isFolder(index));
        gives<bool>(model.isFolderOrText(index));
        gives<bool>(model.canHaveText(index));
        gives<bool>(model.isEditableText(index));
        gives<bool>(model.treatAsFolder(index));
        gives<bool>(model.draftContains(index));
        gives<bool>(model.researchContains(index));
        gives<bool>(model.trashContains(index));
        gives<bool>(model.isDraftChild(index));
        gives<bool>(model.isTrashChild(index));
    });
}

void TstModelInterface::syncConflicts()
{
    areCallable([](TVLProjectModel &model, const QString &name, const QDateTime &date) {
        gives<QModelIndex>(model.findSyncConflictsFolder());
        gives<QModelIndex>(model.syncConflictsFolder());
        gives<QModelIndex>(model.createSyncConflictsFolder());
        gives<QModelIndex>(model.findSyncConflictsSubFolder(name));
        gives<QModelIndex>(model.syncConflictsSubFolder(name));
        gives<QModelIndex>(model.createSyncConflictsSubFolder(name));
        gives<QModelIndex>(model.syncConflictsSubFolderDevice(name, date));
        gives<QModelIndex>(model.syncConflictsSubFolderDevice());
        gives<QString>(model.syncConflictsSubfolderNameFromDeviceName(name, date));
    });
}

void TstModelInterface::otherFolders()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.frontMatterFolder());
        gives<QString>(model.frontMatterFolderName());
        gives<QModelIndex>(model.findTemplateFolder());
        gives<QModelIndex>(model.templateFolder());
        model.setTemplateFolder(index);
        model.clearTemplateFolder();
        gives<bool>(model.templatesContain(index));
    });
}

void TstModelInterface::makingModels()
{
    areCallable([](const QString &path, QObject *parent, QStringList *errors) {
        const TVLProjectModel smallest(path);
        TVLProjectModel model(path, parent, true, TVL::FormatVersion18);
        gives<TVLProjectModel *>(TVLProjectModel::createBlankProjectInMemory(path, parent));
        TVLProjectModel::createBlankProjectOnHdd(path, parent);
        model.initProject(errors);
        model.initBlankProject();
        model.loadProjectSettings();
        model.loadOptions();
    });
}

void TstModelInterface::saving()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLTextDocument *document,
                   QStringList *errors) {
        gives<bool>(model.save());
        gives<bool>(model.save(true));
        gives<bool>(model.save(index));
        model.save(document);
        gives<bool>(std::as_const(model).saveChanges(errors));
        model.saveAll(true);
        model.saveSearchIndex(true);
        model.saveChecksums(true);
        gives<bool>(model.saveAs(QString(), true, true));
        model.markProjectAsModified();
        model.markProjectAsModified(true);
    });
}

void TstModelInterface::endingAndFinding()
{
    areCallable([](TVLProjectModel &model) {
        gives<TVLProjectModel *>(TVLProjectModel::findProjectModelViaPath(QString()));
        gives<QString>(TVLProjectModel::dragAndDropPath());
        model.cleanDragAndDrop();
        gives<QString>(model.platformDeviceName());
        model.prepareToDestroy();
    });
}

void TstModelInterface::theSuspendedFlag()
{
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(u"/nowhere/Novel.tavel"_s));
    QVERIFY(model->isSaved());
    {
        const TVLSuspendModified suspended(model.get());
        model->markProjectAsModified();
        QVERIFY(model->isSaved());
    }
    model->markProjectAsModified();
    QVERIFY(model->isModified());
}

void TstModelInterface::idsThatChange()
{
    areCallable([](TVLProjectModel &model, TVLProjectModel *other, const QModelIndex &index) {
        model.changeIndexUuid(index, QUuid());
        model.clearIndexId(index);
        model.populateMissingIDs();
        model.populateMobileProjectMissingIDs(other);
        model.reloadCachedUuids(QSet<QUuid>());
        gives<int>(model.maxOutlineColumns());
    });
}

void TstModelInterface::listsOfIndexes()
{
    areCallable([](const QModelIndex &index) {
        gives<QModelIndexList>(TVLModel::childrenAndSubChildren(index));
        gives<QModelIndexList>(TVLModel::directChildren(index));
        gives<QModelIndexList>(TVLModel::parents(index));
        gives<bool>(TVLModel::parentsContain(index, index));
    });
}

void TstModelInterface::signalsStandInTheirOrder()
{
    const char *const signatures[] = {
        "aboutToSave(QModelIndex)",
        "documentContentsChange(QModelIndex,TVL::DocumentType,int,int,int)",
        "documentContentsChanged(QModelIndex,TVL::DocumentType)",
        "labelsChanged()",
        "statusItemsChanged()",
        "referencesChanged()",
        "templateFolderChanged(QModelIndex,QModelIndex)",
        "labelTitleChanged(QString)",
        "statusTitleChanged(QString)",
        "scriptModeChanged(TVLScriptMode)",
        "formatModeChanged(QModelIndex,QString)",
        "modifiedChanged(bool)",
        "externallyModified(QString)",
        "snapshotsChanged(QModelIndex,QModelIndex)",
        "projectNoteAboutToBeRemoved(int)",
        "projectNoteRemoved(int)",
        "projectNoteAboutToBeAdded(int)",
        "projectNoteAdded(int)",
        "projectNoteAboutToBeMoved(int,int)",
        "projectNoteMoved(int,int)",
        "projectNoteRenamed(int)",
        "metaDataChanged()",
        "customMetaDataChanged(QModelIndex)",
        "customMetaDataSettingsAboutToBeChanged(QStringList,QStringList)",
        "customMetaDataSettingsChanged(QStringList,QStringList)",
        "collectionChanged()",
        "collectionChanged(int,TVLCollectionMetaData)",
        "collectionAboutToBeInserted(int,TVLCollectionMetaData)",
        "collectionInserted(int,TVLCollectionMetaData)",
        "collectionAboutToBeRemoved(int)",
        "collectionRemoved(int)",
        "autoCompleteListChanged()",
    };
    const QMetaObject &meta = TVLProjectModel::staticMetaObject;
    QByteArrayList own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            own.append(meta.method(i).methodSignature());
    }
    QCOMPARE(own, QByteArrayList(std::begin(signatures), std::end(signatures)));
}

void TstModelInterface::signalsOfCollectionsAreOfTwoKinds()
{
    areCallable([](TVLProjectModel *model, QObject *context) {
        QObject::connect(model, qOverload<>(&TVLProjectModel::collectionChanged), context, [] {});
        QObject::connect(model,
                         qOverload<int, TVLCollectionMetaData>(&TVLProjectModel::collectionChanged),
                         context, [](int, const TVLCollectionMetaData &) {});
    });
}

void TstModelInterface::slotsAreFoundByName_data()
{
    QTest::addColumn<QByteArray>("signature");
    for (const char *signature :
         {"emptyTrash()", "save()", "save(bool)", "resetSessionCounts()",
          "setExcludeFromBackup(bool)", "onOptionsChanged(QStringList)",
          "onProjectNoteModifiedChanged(bool)", "onDocumentContentsChange(int,int,int)",
          "onDocumentContentsChanged()", "cleanDragAndDrop()",
          "removeKeywordsFromDocuments(QSet<int>)",
          "updateKeywordsForDocuments(QModelIndex,QModelIndex)", "markProjectAsModified()",
          "markProjectAsModified(bool)"})
        QTest::newRow(signature) << QByteArray(signature);
}

void TstModelInterface::slotsAreFoundByName()
{
    QFETCH(QByteArray, signature);
    QVERIFY(TVLProjectModel::staticMetaObject.indexOfSlot(signature.constData()) >= 0);
}

void TstModelInterface::propertiesAreFoundByName()
{
    const TestModel model(
        new TVLProjectModel(u"/nowhere/Novel.tavel"_s, nullptr, false, TVL::FormatVersion18));
    QCOMPARE(model->property("name").toString(), u"Novel"_s);
    QVERIFY(model->setProperty("name", u"Other"_s));
    QCOMPARE(model->name(), u"Other"_s);
    QCOMPARE(model->property("path").value<QDir>(), QDir(u"/nowhere/Novel.tavel"_s));
}

TVL_TEST(TstModelInterface)
#include "tst_modelinterface.moc"
