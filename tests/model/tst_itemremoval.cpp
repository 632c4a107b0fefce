#include "ModelChecks.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

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
    const QModelIndex keep = addTextItem(model.get(), model->draftFolder(), u"keep"_s);
    const QString keptId = QString::number(model->nodeIdentity(keep));
    const QPersistentModelIndex gone = addTextItem(model.get(), model->draftFolder(), u"gone"_s);
    const int goneId = model->nodeIdentity(gone);
    const QUuid goneUuid = model->nodeUuid(gone);
    QVERIFY(model->save(true));
    project.writeFile(u"Files/Docs/%1.pdf"_s.arg(goneId), "x");

    QVERIFY(model->removeIndex(gone));
    QVERIFY(!gone.isValid());
    QVERIFY(model->isSaved());
    QVERIFY(!model->hasNodeId(goneId));
    QVERIFY(!model->hasNodeUuid(goneUuid));
    QCOMPARE(
        documentFiles(project.path()),
        QStringList({keptId + u".rtf"_s, keptId + u"_notes.rtf"_s, keptId + u"_synopsis.txt"_s}));
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(treeText(model.get(), model->draftFolder()), u" keep"_s);
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
    addTree(model.get(), model->researchFolder(), u"a(b(c) d) e"_s);
    const QPersistentModelIndex c = itemTitled(model.get(), u"c"_s);
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"e"_s);
    QVERIFY(!c.isValid());
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    for (const TVLProjectNode *node : model->loadedNodes())
        QVERIFY(model->hasNodeUuid(node->mUuid));
}

void TstItemRemoval::unsavedTextsBelowStayOnDisk()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const int id = model->nodeIdentity(addTextItem(model.get(), a, u"b"_s));
    QVERIFY(model->removeIndex(a));
    QVERIFY(project.readFile(u"Files/Docs/%1.rtf"_s.arg(id)).contains("b text"));
}

void TstItemRemoval::removedItemsLeaveWhatReferredToThem()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b) c"_s);
    const int a = model->nodeIdentity(itemTitled(model.get(), u"a"_s));
    const int b = model->nodeIdentity(itemTitled(model.get(), u"b"_s));
    const int c = model->nodeIdentity(itemTitled(model.get(), u"c"_s));
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
    addTree(model.get(), model->researchFolder(), u"a(b) c d e"_s);
    for (const QModelIndex &index : itemsTitled(model.get(), u"a b c d e"_s))
        QVERIFY(model->addToFavorites(index, true));
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    QVERIFY(model->moveToTrash({itemTitled(model.get(), u"c"_s)}));
    QVERIFY(model->emptyTrash());
    QVERIFY(model->mergeIndexes(itemsTitled(model.get(), u"d e"_s)).isValid());
    model->prepareToDestroy();
    model = project.open();
    QVERIFY(model);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"d"_s);
}

void TstItemRemoval::removingFromTheModelAloneSavesNothing()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    QVERIFY(model->save(true));
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    model->removeIndexFromModel(itemTitled(model.get(), u"a"_s));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"b"_s);
    QVERIFY(model->isSaved());
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
    model->removeIndexFromModel(QModelIndex());
    QCOMPARE(model->rowCount(), 3);
}

void TstItemRemoval::childrenAreRemovedWithTheirFiles()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const QPersistentModelIndex b = addTextItem(model.get(), a, u"b"_s);
    addTextItem(model.get(), b, u"c"_s);
    addTextItem(model.get(), a, u"d"_s);
    QVERIFY(model->save(true));
    model->removeChildrenForIndex(a);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a"_s);
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
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    addTextItem(model.get(), a, u"b"_s);
    const QModelIndex c = addTextItem(model.get(), model->researchFolder(), u"c"_s);
    const int cId = model->nodeIdentity(c);
    QVERIFY(model->moveToTrash({a}));
    QVERIFY(model->save(true));

    SignalLog log(model.get());
    QVERIFY(model->emptyTrash());
    QCOMPARE(log.lines().last(), u"data %1"_s.arg(model->nodeIdentity(model->trashFolder())));
    QVERIFY(model->isSaved());
    QCOMPARE(model->rowCount(model->trashFolder()), 0);
    QCOMPARE(documentFiles(project.path()).size(), 3);
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(model->rowCount(model->trashFolder()), 0);
    QCOMPARE(model->documentPlainText(model->index(cId), false), u"c text"_s);
}

void TstItemRemoval::emptyingAnEmptyTrashDoesNotSave()
{
    const TestProject project;
    const auto model = project.create();
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    model->setTitle(firstText(model.get()), u"changed"_s);
    QVERIFY(model->emptyTrash());
    QVERIFY(model->isModified());
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
}

void TstItemRemoval::emptyingTheTrashForgetsItsCorkboard()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->trashFolder(), u"a"_s);
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
    addTree(model.get(), model->trashFolder(), u"a(b(c d) e(f)) g"_s);
    QStringList removed;
    connect(model.get(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [&](const QModelIndex &parent, int first, int last) {
                removed.append(u"%1 %2-%3"_s.arg(model->title(parent)).arg(first).arg(last));
            });
    QVERIFY(model->emptyTrash());
    QCOMPARE(removed, QStringList({u"b 0-1"_s, u"e 0-0"_s, u"a 0-1"_s, u"Trash 0-1"_s}));
}

void TstItemRemoval::aDirtyTextDoesNotComeBack()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    typeText(model.get(), a, u"more "_s);
    QVERIFY(model->removeIndex(a));
    QVERIFY(model->save(true));
    QCOMPARE(documentFiles(project.path()), QStringList());
}

void TstItemRemoval::aHeldDocumentLosesItsItem()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
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
    const QModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const int id = model->nodeIdentity(a);
    QVERIFY(model->removeIndex(a));
    const QModelIndex b = model->insertTextNode(-1, model->researchFolder(), u"b"_s, {}, {}, {});
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
    addTree(model.get(), model->trashFolder(), u"a(b) c"_s);
    addTree(model.get(), model->researchFolder(), u"d"_s);
    QList<QPersistentModelIndex> gone;
    for (const QModelIndex &index : itemsTitled(model.get(), u"a b c"_s))
        gone.append(index);
    const QPersistentModelIndex kept = itemTitled(model.get(), u"d"_s);
    QVERIFY(model->emptyTrash());
    for (const QPersistentModelIndex &index : std::as_const(gone))
        QVERIFY(!index.isValid());
    QCOMPARE(model->title(kept), u"d"_s);
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
    const QPersistentModelIndex before = model->insertTextNode(0, parent, u"a"_s, {}, {}, {});
    const QPersistentModelIndex current = model->insertTextNode(1, parent, u"b"_s, {}, {}, {});
    const QPersistentModelIndex behind = model->insertTextNode(2, parent, u"c"_s, {}, {}, {});
    const QPersistentModelIndex below = model->insertTextNode(0, current, u"d"_s, {}, {}, {});
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
    QCOMPARE(model->title(behind), u"c"_s);
}

TVL_TEST(TstItemRemoval)
#include "tst_itemremoval.moc"
