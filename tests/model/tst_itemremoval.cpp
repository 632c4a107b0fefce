#include "ModelChecks.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

class TstItemRemoval : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removingAnItemTakesItsFilesAndSaves();
    void removingAnInvalidIndexIsRefused();
    void whatLiesBelowGoesToo();
    void unsavedTextsBelowStayOnDisk();
    void removedItemsLeaveWhatReferredToThem();
    void aBinderWithRemovedFavoritesOpens();
    void removingFromTheModelAloneSavesNothing();
    void childrenAreRemovedWithTheirFiles();
    void theRootKeepsItsChildren();
    void emptyingTheTrashRemovesAllInIt();
    void emptyingAnEmptyTrashDoesNotSave();
    void emptyingTheTrashForgetsItsCorkboard();
    void removalIsAnnouncedDeepestFirst();
    void aDirtyTextDoesNotComeBack();
    void aHeldDocumentLosesItsItem();
    void anIdIsFreeAgain();
    void deepTreesAreRemoved();
    void persistentIndexesOfRemovedItemsBecomeInvalid();
    void selectionModelsHearThatTheirCurrentItemGoes_data();
    void selectionModelsHearThatTheirCurrentItemGoes();
};

void TstItemRemoval::removingAnItemTakesItsFilesAndSaves()
{
    const TestProject project;
    auto model = project.create();
    const QModelIndex keep = addTextItem(model.get(), model->draftFolder(), u"keep"_qs);
    const QString keptId = QString::number(model->nodeIdentity(keep));
    const QPersistentModelIndex gone = addTextItem(model.get(), model->draftFolder(), u"gone"_qs);
    const int goneId = model->nodeIdentity(gone);
    const QUuid goneUuid = model->nodeUuid(gone);
    QVERIFY(model->save(true));
    project.writeFile(u"Files/Docs/%1.pdf"_qs.arg(goneId), "x");

    QVERIFY(model->removeIndex(gone));
    QVERIFY(!gone.isValid());
    QVERIFY(model->isSaved());
    QVERIFY(!model->hasNodeId(goneId));
    QVERIFY(!model->hasNodeUuid(goneUuid));
    QCOMPARE(documentFiles(project.path()),
             QStringList(
                 {keptId + u".rtf"_qs, keptId + u"_notes.rtf"_qs, keptId + u"_synopsis.txt"_qs}));
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(treeText(model.get(), model->draftFolder()), u" keep"_qs);
}

void TstItemRemoval::removingAnInvalidIndexIsRefused()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->removeIndex(QModelIndex()));
    QVERIFY(!model->removeIndex(model->rootIndex()));
    QVERIFY(!model->removeIndex(firstText(other.get())));
    QVERIFY(model->isSaved());
}

void TstItemRemoval::whatLiesBelowGoesToo()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b(c) d) e"_qs);
    const QPersistentModelIndex c = itemTitled(model.get(), u"c"_qs);
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_qs)));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"e"_qs);
    QVERIFY(!c.isValid());
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    for (const TVLProjectNode *node : model->loadedNodes())
        QVERIFY(model->hasNodeUuid(node->mUuid));
}

void TstItemRemoval::unsavedTextsBelowStayOnDisk()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    const int id = model->nodeIdentity(addTextItem(model.get(), a, u"b"_qs));
    QVERIFY(model->removeIndex(a));
    QVERIFY(project.readFile(u"Files/Docs/%1.rtf"_qs.arg(id)).contains("b text"));
}

void TstItemRemoval::removedItemsLeaveWhatReferredToThem()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b) c"_qs);
    const int a = model->nodeIdentity(itemTitled(model.get(), u"a"_qs));
    const int b = model->nodeIdentity(itemTitled(model.get(), u"b"_qs));
    const int c = model->nodeIdentity(itemTitled(model.get(), u"c"_qs));
    TVLCollectionMetaData list;
    list.mType = TVL::ArbitraryCollection;
    list.mIds = {a, b, c};
    TVLCollectionMetaData search = list;
    search.mType = TVL::SavedSearchCollection;
    model->setCollections({list, search});
    model->projectNode(model->index(c))->mDefaultChildTemplateId = a;
    model->projectNode(firstText(model.get()))->mDefaultChildTemplateId = c;
    const QSignalSpy changed(model.get(), qOverload<>(&TVLProjectModel::collectionChanged));

    QVERIFY(model->removeIndex(model->index(a)));
    QCOMPARE(model->collections().at(0).mIds, QList<int>({c}));
    QCOMPARE(model->collections().at(1).mIds, QList<int>({a, b, c}));
    QCOMPARE(model->projectNode(model->index(c))->mDefaultChildTemplateId, -1);
    QCOMPARE(model->projectNode(firstText(model.get()))->mDefaultChildTemplateId, c);
    QCOMPARE(changed.size(), 0);
}

void TstItemRemoval::aBinderWithRemovedFavoritesOpens()
{
    const TestProject project;
    auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b) c d e"_qs);
    for (const QModelIndex &index : itemsTitled(model.get(), u"a b c d e"_qs))
        QVERIFY(model->addToFavorites(index, true));
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_qs)));
    QVERIFY(model->moveToTrash({itemTitled(model.get(), u"c"_qs)}));
    QVERIFY(model->emptyTrash());
    QVERIFY(model->mergeIndexes(itemsTitled(model.get(), u"d e"_qs)).isValid());
    model->prepareToDestroy();
    model = project.open();
    QVERIFY(model);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"d"_qs);
}

void TstItemRemoval::removingFromTheModelAloneSavesNothing()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b"_qs);
    QVERIFY(model->save(true));
    const QByteArray binder = project.readFile(u"Novel.tavelx"_qs);
    model->removeIndexFromModel(itemTitled(model.get(), u"a"_qs));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"b"_qs);
    QVERIFY(model->isSaved());
    QCOMPARE(project.readFile(u"Novel.tavelx"_qs), binder);
    model->removeIndexFromModel(QModelIndex());
    QCOMPARE(model->rowCount(), 3);
}

void TstItemRemoval::childrenAreRemovedWithTheirFiles()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    const QPersistentModelIndex b = addTextItem(model.get(), a, u"b"_qs);
    addTextItem(model.get(), b, u"c"_qs);
    addTextItem(model.get(), a, u"d"_qs);
    QVERIFY(model->save(true));
    model->removeChildrenForIndex(a);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a"_qs);
    QCOMPARE(documentFiles(project.path()).size(), 3);
    QVERIFY(model->isSaved());
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemRemoval::theRootKeepsItsChildren()
{
    const auto model = blankModel();
    model->removeChildrenForIndex(QModelIndex());
    model->removeChildrenForIndex(model->rootIndex());
    QCOMPARE(model->rowCount(), 3);
}

void TstItemRemoval::emptyingTheTrashRemovesAllInIt()
{
    const TestProject project;
    auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    addTextItem(model.get(), a, u"b"_qs);
    const QModelIndex c = addTextItem(model.get(), model->researchFolder(), u"c"_qs);
    const int cId = model->nodeIdentity(c);
    QVERIFY(model->moveToTrash({a}));
    QVERIFY(model->save(true));

    SignalLog log(model.get());
    QVERIFY(model->emptyTrash());
    QCOMPARE(log.lines().last(), u"data %1"_qs.arg(model->nodeIdentity(model->trashFolder())));
    QVERIFY(model->isSaved());
    QCOMPARE(model->rowCount(model->trashFolder()), 0);
    QCOMPARE(documentFiles(project.path()).size(), 3);
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(model->rowCount(model->trashFolder()), 0);
    QCOMPARE(model->documentPlainText(model->index(cId), false), u"c text"_qs);
}

void TstItemRemoval::emptyingAnEmptyTrashDoesNotSave()
{
    const TestProject project;
    const auto model = project.create();
    const QByteArray binder = project.readFile(u"Novel.tavelx"_qs);
    model->setTitle(firstText(model.get()), u"changed"_qs);
    QVERIFY(model->emptyTrash());
    QVERIFY(model->isModified());
    QCOMPARE(project.readFile(u"Novel.tavelx"_qs), binder);
}

void TstItemRemoval::emptyingTheTrashForgetsItsCorkboard()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->trashFolder(), u"a"_qs);
    TVLProjectNode *trash = model->projectNode(model->trashFolder());
    const int id = trash->mChildren.constFirst()->mId;
    trash->mSelectedSubdocumentIds = {id};
    trash->mFreeformPositions.insert(id, TVLFreeformPositionInfo());
    QVERIFY(model->emptyTrash());
    QVERIFY(trash->mSelectedSubdocumentIds.isEmpty());
    QVERIFY(trash->mFreeformPositions.isEmpty());
}

void TstItemRemoval::removalIsAnnouncedDeepestFirst()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->trashFolder(), u"a(b(c d) e(f)) g"_qs);
    QStringList removed;
    connect(model.get(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [&](const QModelIndex &parent, int first, int last) {
                removed.append(u"%1 %2-%3"_qs.arg(model->title(parent)).arg(first).arg(last));
            });
    QVERIFY(model->emptyTrash());
    QCOMPARE(removed, QStringList({u"b 0-1"_qs, u"e 0-0"_qs, u"a 0-1"_qs, u"Trash 0-1"_qs}));
}

void TstItemRemoval::aDirtyTextDoesNotComeBack()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    typeText(model.get(), a, u"more "_qs);
    QVERIFY(model->removeIndex(a));
    QVERIFY(model->save(true));
    QCOMPARE(documentFiles(project.path()), QStringList());
}

void TstItemRemoval::aHeldDocumentLosesItsItem()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    QVERIFY(model->save(true));
    const QPointer<TVLTextDocument> document = model->referenceText(a);
    QVERIFY(model->removeIndex(a));
    QVERIFY(document);
    QVERIFY(!document->model());
    QVERIFY(!document->node());
    model->dereferenceItem(document);
    deleteReleasedObjects();
    QVERIFY(!document);
}

void TstItemRemoval::anIdIsFreeAgain()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_qs);
    const int id = model->nodeIdentity(a);
    QVERIFY(model->removeIndex(a));
    const QModelIndex b = model->insertTextNode(-1, model->researchFolder(), u"b"_qs, {}, {}, {});
    QCOMPARE(model->nodeIdentity(b), id);
    QVERIFY(model->documentPlainText(b, false).isEmpty());
    QVERIFY(model->synopsis(b).isEmpty());
}

void TstItemRemoval::deepTreesAreRemoved()
{
    const TestProject project;
    const auto model = project.create();
    QModelIndex parent = model->trashFolder();
    for (int depth = 0; depth < 500; ++depth)
        parent = addItem(model.get(), parent, TVL::Text);
    QVERIFY(model->emptyTrash());
    QCOMPARE(model->totalNodesCount(), 4);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemRemoval::persistentIndexesOfRemovedItemsBecomeInvalid()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->trashFolder(), u"a(b) c"_qs);
    addTree(model.get(), model->researchFolder(), u"d"_qs);
    QList<QPersistentModelIndex> gone;
    for (const QModelIndex &index : itemsTitled(model.get(), u"a b c"_qs))
        gone.append(index);
    const QPersistentModelIndex kept = itemTitled(model.get(), u"d"_qs);
    QVERIFY(model->emptyTrash());
    for (const QPersistentModelIndex &index : std::as_const(gone))
        QVERIFY(!index.isValid());
    QCOMPARE(model->title(kept), u"d"_qs);
}

void TstItemRemoval::selectionModelsHearThatTheirCurrentItemGoes_data()
{
    QTest::addColumn<bool>("isTopLevel");
    QTest::newRow("at the top") << true;
    QTest::newRow("below an item") << false;
}

void TstItemRemoval::selectionModelsHearThatTheirCurrentItemGoes()
{
    QFETCH(const bool, isTopLevel);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex parent = isTopLevel ? QModelIndex() : model->researchFolder();
    const QPersistentModelIndex before = model->insertTextNode(0, parent, u"a"_qs, {}, {}, {});
    const QPersistentModelIndex current = model->insertTextNode(1, parent, u"b"_qs, {}, {}, {});
    const QPersistentModelIndex behind = model->insertTextNode(2, parent, u"c"_qs, {}, {}, {});
    const QPersistentModelIndex below = model->insertTextNode(0, current, u"d"_qs, {}, {}, {});
    QItemSelectionModel selection(model.get());
    selection.setCurrentIndex(current, QItemSelectionModel::ClearAndSelect);
    QSignalSpy changes(&selection, &QItemSelectionModel::currentChanged);
    model->removeIndexFromModel(current);
    QCOMPARE(changes.size(), 1);
    QVERIFY(selection.currentIndex().isValid());
    QVERIFY(!current.isValid());
    QVERIFY(!below.isValid());
    QCOMPARE(before.row(), 0);
    QCOMPARE(behind.row(), 1);
    QCOMPARE(model->title(behind), u"c"_qs);
}

TVL_TEST(TstItemRemoval)
#include "tst_itemremoval.moc"
