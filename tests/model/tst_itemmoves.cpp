#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TstItemMoves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moveRules_data();
    void moveRules();
    void oneRefusedItemKeepsAllWhereTheyAre();
    void systemFoldersMoveAtTheTopLevel();
    void itemsMoveToTheRowAsked_data();
    void itemsMoveToTheRowAsked();
    void aParentTakesItsChildAlong();
    void anItemCanNotMoveIntoItself();
    void anEmptyListIsASuccess();
    void foreignAndInvalidIndexesAreRefused();
    void aMoveMarksTheProjectOnlyIfSomethingMoved();
    void aMoveTouchesNoModificationTime();
    void movedItemsKeepIdentityAndPersistentIndexes();
    void persistentIndexesAtTheTopLevelFollow();
    void movesAreAnnouncedOneByOne();
    void trashTakesItemsAndDeletesNothing();
    void whatIsInTheTrashCanNotBeTrashed();
    void collectionsKeepTrashedItems();
    void searchesThatLeaveTheTrashOutAreAnnounced();
    void withoutTrashFolderNothingIsTrashed();
};

void TstItemMoves::moveRules_data()
{
    QTest::addColumn<QString>("research");
    QTest::addColumn<QString>("moved");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isMoved");
    const auto row = [](const char *name, const QString &research, const QString &moved,
                        const QString &target, bool isMoved) {
        QTest::newRow(name) << research << moved << target << isMoved;
    };
    row("system folder below an item", u""_s, u"Draft"_s, u"Research"_s, false);
    row("system folder at the top", u""_s, u"Draft"_s, u""_s, true);
    row("text into the Draft", u"a"_s, u"a"_s, u"Draft"_s, true);
    row("text at the top", u"a"_s, u"a"_s, u""_s, true);
    row("text into a picture", u"a b:5"_s, u"a"_s, u"b"_s, true);
    row("folder with texts into the Draft", u"a:3(b c:3(d))"_s, u"a"_s, u"Draft"_s, true);
    row("folder with texts below a text of the Draft", u"a:3(b)"_s, u"a"_s, u"first"_s, true);
    row("folder with a picture into the Draft", u"a:3(b c:3(d:5))"_s, u"a"_s, u"Draft"_s, false);
    row("text with a web page below a text of the Draft", u"a(b:8)"_s, u"a"_s, u"first"_s, false);
    row("folder with a picture outside the Draft", u"a:3(b:5) c"_s, u"a"_s, u"c"_s, true);
    row("folder with a picture into the Trash", u"a:3(b:5)"_s, u"a"_s, u"Trash"_s, true);
    for (const int type : {5, 6, 7, 8, 9}) {
        const QString item = u"a:%1 b"_s.arg(type);
        row(qPrintable(u"type %1 into the Draft"_s.arg(type)), item, u"a"_s, u"Draft"_s, false);
        row(qPrintable(u"type %1 below a text of the Draft"_s.arg(type)), item, u"a"_s, u"first"_s,
            false);
        row(qPrintable(u"type %1 outside the Draft"_s.arg(type)), item, u"a"_s, u"b"_s, true);
        row(qPrintable(u"type %1 at the top"_s.arg(type)), item, u"a"_s, u""_s, true);
    }
}

void TstItemMoves::moveRules()
{
    QFETCH(const QString, research);
    QFETCH(const QString, moved);
    QFETCH(const QString, target);
    QFETCH(const bool, isMoved);
    const auto model = blankModel();
    model->setTitle(firstText(model.get()), u"first"_s);
    addTree(model.get(), model->researchFolder(), research);
    const QPersistentModelIndex item = itemTitled(model.get(), moved);
    const QPersistentModelIndex folder = itemTitled(model.get(), target);
    const QString before = treeText(model.get(), QModelIndex());
    const TVLProjectNode *oldParent = model->projectNode(item)->mParent;

    QCOMPARE(model->moveToFolder(folder, {item}, -1), isMoved);
    if (isMoved) {
        QCOMPARE(model->projectNode(item)->mParent, model->projectNode(folder));
        QCOMPARE(item.row(), model->rowCount(folder) - 1);
    } else {
        QCOMPARE(treeText(model.get(), QModelIndex()), before);
        QCOMPARE(model->projectNode(item)->mParent, oldParent);
    }
}

void TstItemMoves::oneRefusedItemKeepsAllWhereTheyAre()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b:5 c"_s);
    QVERIFY(!model->moveToFolder(model->draftFolder(), itemsTitled(model.get(), u"a b c"_s), 0));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a b c"_s);
    QVERIFY(model->isSaved());
}

void TstItemMoves::systemFoldersMoveAtTheTopLevel()
{
    const auto model = blankModel();
    QVERIFY(!model->moveToFolder(model->researchFolder(), {model->draftFolder()}, 0));
    QVERIFY(model->moveToFolder(QModelIndex(), {model->draftFolder()}, 2));
    QCOMPARE(model->draftFolder().row(), 1);
    QVERIFY(model->moveToFolder(model->rootIndex(), {model->trashFolder()}, 0));
    QCOMPARE(model->trashFolder().row(), 0);
}

void TstItemMoves::itemsMoveToTheRowAsked_data()
{
    QTest::addColumn<QString>("moved");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &moved, const QString &target, int place,
                        const QString &expected) {
        QTest::newRow(name) << moved << target << place << expected;
    };
    row("down", u"a"_s, u"Research"_s, 3, u"b c a d(e f)"_s);
    row("up", u"c"_s, u"Research"_s, 0, u"c a b d(e f)"_s);
    row("to the end", u"a"_s, u"Research"_s, -1, u"b c d(e f) a"_s);
    row("beyond the end", u"a"_s, u"Research"_s, 99, u"b c d(e f) a"_s);
    row("one row down is no move", u"b"_s, u"Research"_s, 2, u"a b c d(e f)"_s);
    row("to its own row", u"b"_s, u"Research"_s, 1, u"a b c d(e f)"_s);
    row("into another", u"a"_s, u"d"_s, 1, u"b c d(e a f)"_s);
    row("out of another", u"f"_s, u"Research"_s, 1, u"a f b c d(e)"_s);
    row("in the order of the list", u"c a"_s, u"d"_s, 0, u"b d(c a e f)"_s);
    row("from both sides of the row", u"a d"_s, u"Research"_s, 2, u"b a d(e f) c"_s);
    row("one that stays moves the row on", u"b d"_s, u"Research"_s, 2, u"a b c d(e f)"_s);
    row("behind one that stays comes the next but one", u"b f"_s, u"Research"_s, 2,
        u"a b c f d(e)"_s);
    row("one that stays at the row", u"c a"_s, u"Research"_s, 2, u"b c a d(e f)"_s);
    row("reversed", u"d c b a"_s, u"Research"_s, 0, u"d(e f) c b a"_s);
    row("each once", u"a a"_s, u"Research"_s, -1, u"b c d(e f) a"_s);
}

void TstItemMoves::itemsMoveToTheRowAsked()
{
    QFETCH(const QString, moved);
    QFETCH(const QString, target);
    QFETCH(const int, row);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c d(e f)"_s);
    QVERIFY(
        model->moveToFolder(itemTitled(model.get(), target), itemsTitled(model.get(), moved), row));
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemMoves::aParentTakesItsChildAlong()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b(c)) d"_s);
    QVERIFY(model->moveToFolder(model->draftFolder(), itemsTitled(model.get(), u"c a b d"_s), 0));
    QCOMPARE(treeText(model.get(), model->draftFolder()), u"a(b(c)) d "_s);
}

void TstItemMoves::anItemCanNotMoveIntoItself()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b(c)) d"_s);
    const QModelIndexList items = itemsTitled(model.get(), u"a d"_s);
    // The item is passed over, and the others move.
    QVERIFY(model->moveToFolder(itemTitled(model.get(), u"c"_s), items, 0));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(b(c(d)))"_s);
    QVERIFY(
        model->moveToFolder(itemTitled(model.get(), u"a"_s), {itemTitled(model.get(), u"a"_s)}, 0));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(b(c(d)))"_s);
}

void TstItemMoves::anEmptyListIsASuccess()
{
    const auto model = blankModel();
    QVERIFY(model->moveToFolder(model->trashFolder(), {}, 0));
    QVERIFY(model->isSaved());
}

void TstItemMoves::foreignAndInvalidIndexesAreRefused()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->moveToFolder(model->draftFolder(), {firstText(other.get())}, 0));
    QVERIFY(!model->moveToFolder(other->draftFolder(), {firstText(model.get())}, 0));
    QVERIFY(!model->moveToFolder(model->draftFolder(), {model->rootIndex()}, 0));
    QVERIFY(!model->moveToFolder(model->draftFolder(), {QModelIndex()}, 0));
}

void TstItemMoves::aMoveMarksTheProjectOnlyIfSomethingMoved()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    QVERIFY(model->moveToFolder(model->researchFolder(), {itemTitled(model.get(), u"a"_s)}, 1));
    QVERIFY(model->isSaved());
    QVERIFY(model->moveToFolder(model->researchFolder(), {itemTitled(model.get(), u"a"_s)}, 2));
    QVERIFY(model->isModified());
}

void TstItemMoves::aMoveTouchesNoModificationTime()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b) c"_s);
    makeAllOld(model.get());
    QVERIFY(model->moveToFolder(model->draftFolder(), itemsTitled(model.get(), u"a c"_s), 0));
    QCOMPARE(touchedIds(model.get()), QList<int>());
}

void TstItemMoves::movedItemsKeepIdentityAndPersistentIndexes()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a(b) c"_s);
    const QPersistentModelIndex a = itemTitled(model.get(), u"a"_s);
    const QPersistentModelIndex b = itemTitled(model.get(), u"b"_s);
    const int id = model->nodeIdentity(a);
    const QUuid uuid = model->nodeUuid(a);
    QVERIFY(model->moveToFolder(model->draftFolder(), {a}, 0));
    QCOMPARE(model->title(a), u"a"_s);
    QCOMPARE(model->title(b), u"b"_s);
    QCOMPARE(a.parent(), model->draftFolder());
    QCOMPARE(b.parent(), QModelIndex(a));
    QCOMPARE(model->nodeIdentity(a), id);
    QCOMPARE(model->nodeUuid(a), uuid);
    QCOMPARE(model->index(id), QModelIndex(a));
}

void TstItemMoves::persistentIndexesAtTheTopLevelFollow()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), QModelIndex(), u"a(b) c"_s);
    QList<QPersistentModelIndex> indexes;
    const QModelIndexList walk = recursiveWalk(model.get(), model->rootIndex());
    for (const QModelIndex &index : walk)
        indexes.append(index);
    const QStringList titles = model->titles(walk);
    const auto titlesOfIndexes = [&] {
        QStringList found;
        for (const QPersistentModelIndex &index : std::as_const(indexes))
            found.append(QModelIndex(index) == model->createIndex(model->projectNode(index))
                             ? model->title(index)
                             : u"astray"_s);
        return found;
    };
    QVERIFY(model->moveToFolder(QModelIndex(), {model->draftFolder()}, 2));
    QCOMPARE(titlesOfIndexes(), titles);
    QVERIFY(model->moveToFolder(QModelIndex(), itemsTitled(model.get(), u"b c"_s), 0));
    QCOMPARE(titlesOfIndexes(), titles);
    QVERIFY(model->moveToFolder(model->draftFolder(), itemsTitled(model.get(), u"b a"_s), 0));
    QCOMPARE(titlesOfIndexes(), titles);
    QVERIFY(model->insertRows(0, 3));
    QCOMPARE(titlesOfIndexes(), titles);
    QVERIFY(model->moveToFolder(QModelIndex(), {itemTitled(model.get(), u"a"_s)}, 1));
    QVERIFY(
        model->moveToFolder(itemTitled(model.get(), u"a"_s), {itemTitled(model.get(), u"b"_s)}, 0));
    QCOMPARE(titlesOfIndexes(), titles);

    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    for (qsizetype i = 0; i < titles.size(); ++i) {
        const bool isGone = titles.at(i) == u"a" || titles.at(i) == u"b";
        QCOMPARE(indexes.at(i).isValid(), !isGone);
        if (!isGone)
            QCOMPARE(titlesOfIndexes().at(i), titles.at(i));
    }
}

void TstItemMoves::movesAreAnnouncedOneByOne()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b c"_s);
    QSignalSpy about(model.get(), &QAbstractItemModel::rowsAboutToBeMoved);
    QSignalSpy done(model.get(), &QAbstractItemModel::rowsMoved);
    QVERIFY(model->moveToFolder(model->draftFolder(), itemsTitled(model.get(), u"a c"_s), 0));
    QCOMPARE(about.size(), 2);
    QCOMPARE(done.size(), 2);
    QCOMPARE(done.at(1).at(1).toInt(), 1);
    QCOMPARE(done.at(1).at(2).toInt(), 1);
    QCOMPARE(done.at(1).at(4).toInt(), 1);
}

void TstItemMoves::trashTakesItemsAndDeletesNothing()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex text =
        model->insertTextNode(-1, model->researchFolder(), u"a"_s, u"words"_s, {}, {});
    const int id = model->nodeIdentity(text);
    QVERIFY(model->save(true));
    QVERIFY(model->moveToTrash({text}));
    QCOMPARE(treeText(model.get(), model->trashFolder()), u"a"_s);
    QVERIFY(model->save(true));
    QCOMPARE(model->documentPlainText(model->index(id), false), u"words"_s);
    QVERIFY(QFile::exists(project.path(u"Files/Docs/%1.rtf"_s.arg(id))));
    model->prepareToDestroy();
}

void TstItemMoves::whatIsInTheTrashCanNotBeTrashed()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    addTree(model.get(), model->trashFolder(), u"c(d)"_s);
    QVERIFY(!model->moveToTrash({itemTitled(model.get(), u"c"_s)}));
    QVERIFY(!model->moveToTrash({itemTitled(model.get(), u"d"_s)}));
    QVERIFY(!model->moveToTrash({model->trashFolder()}));
    QVERIFY(!model->moveToTrash(itemsTitled(model.get(), u"a d"_s)));
    QVERIFY(!model->moveToTrash({model->draftFolder()}));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a b"_s);
    QVERIFY(model->moveToTrash(itemsTitled(model.get(), u"b a"_s)));
    QCOMPARE(treeText(model.get(), model->trashFolder()), u"c(d) b a"_s);
}

void TstItemMoves::collectionsKeepTrashedItems()
{
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a"_s);
    const QModelIndex a = itemTitled(model.get(), u"a"_s);
    TVLCollectionMetaData collection;
    collection.mType = TVL::ArbitraryCollection;
    collection.mIds = {model->nodeIdentity(a)};
    model->setCollections({collection});
    QVERIFY(model->moveToTrash({a}));
    QCOMPARE(model->collections().constFirst().mIds, collection.mIds);
}

void TstItemMoves::searchesThatLeaveTheTrashOutAreAnnounced()
{
    const auto model = blankModel();
    QList<TVLCollectionMetaData> collections;
    for (const auto &[type, scope] : {std::pair(TVL::BinderCollection, TVL::ExcludeTrashScope),
                                      std::pair(TVL::RecentSearchCollection, TVL::AllScope),
                                      std::pair(TVL::SavedSearchCollection, TVL::ExcludeTrashScope),
                                      std::pair(TVL::ArbitraryCollection, TVL::ExcludeTrashScope),
                                      std::pair(TVL::SavedSearchCollection, TVL::DraftScope)}) {
        TVLCollectionMetaData collection;
        collection.mType = type;
        collection.mSearchScope = scope;
        collections.append(collection);
    }
    collections[4].mSearchScope = TVL::DraftScope | TVL::ExcludeTrashScope;
    model->setCollections(collections);

    QStringList signalLines;
    connect(model.get(), qOverload<>(&TVLProjectModel::collectionChanged), this,
            [&signalLines] { signalLines.append(u"changed"_s); });
    connect(model.get(), qOverload<int, TVLCollectionMetaData>(&TVLProjectModel::collectionChanged),
            this, [&signalLines](int position, const TVLCollectionMetaData &) {
                signalLines.append(QString::number(position));
            });
    QVERIFY(model->moveToTrash({firstText(model.get())}));
    QCOMPARE(signalLines, QStringList({u"2"_s, u"changed"_s, u"4"_s, u"changed"_s}));
}

void TstItemMoves::withoutTrashFolderNothingIsTrashed()
{
    const auto model = emptyModel();
    addTree(model.get(), QModelIndex(), u"a(b)"_s);
    QVERIFY(!model->moveToTrash({itemTitled(model.get(), u"b"_s)}));
    QVERIFY(model->emptyTrash());
    QCOMPARE(treeText(model.get(), QModelIndex()), u"a(b)"_s);
}

TVL_TEST(TstItemMoves)
#include "tst_itemmoves.moc"
