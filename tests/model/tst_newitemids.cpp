#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <ctime>
#include <functional>

using namespace Qt::StringLiterals;

/** A new item never shows or overwrites what another one has left under its id. */
class TstNewItemIds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesBelowARemovedItemStayItsOwn();
    void filesOfASessionThatWasNotSavedStay();
    void whateverWasLeftKeepsItsId_data();
    void whateverWasLeftKeepsItsId();
    void filesThatCouldNotBeDeletedKeepTheirId();
    void aMergedItemWhoseFilesStayKeepsItsId();
    void anItemThatLosesItsIdLeavesItsFiles();
    void itemsWithoutIdsTakeNothingOver();
    void mobileItemsTakeNothingOver();
    void aProjectWithoutBinderKeepsItsTexts();
    void aFolderThatCanNotBeListedIsAskedByName();
    void anIdThatWasAskedForIsGiven();
    void noIdIsPassedOverForAnItemWithoutFiles();
    void aReusedIdBringsNoOldTextsAfterAKill();
    void manyNewItemsAreCheap();
};

namespace {

QString docPath(int id, const QString &ending = u".rtf"_s)
{
    return u"Files/Docs/%1"_s.arg(id) + ending;
}

/** A new item, with what it shows and after something was typed and saved. */
int newItemWithText(TVLProjectModel *model, const QString &text)
{
    const QModelIndex item = model->createNewText(-1, model->draftFolder(), QModelIndex());
    if (!model->documentPlainText(item, false).isEmpty() || !model->synopsis(item).isEmpty()
        || !model->documentNoteAsPlainText(item).isEmpty() || model->hasSnapshots(item)
        || model->hasIndexCardImage(item))
        qFatal("a new item has something already");
    typeText(model, item, text);
    return model->nodeIdentity(item);
}

} // namespace

void TstNewItemIds::filesBelowARemovedItemStayItsOwn()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const int left = model->nodeIdentity(addTextItem(model.get(), a, u"b"_s));
    QVERIFY(model->removeIndex(a));
    const QByteArray before = project.readFile(docPath(left));
    QVERIFY(before.contains("b text"));

    // The first gets the id of the removed item, whose own files are gone.
    QCOMPARE(newItemWithText(model.get(), u"new words"_s), left - 1);
    QCOMPARE(newItemWithText(model.get(), u"more words"_s), left + 1);
    QVERIFY(model->save());
    QCOMPARE(project.readFile(docPath(left)), before);
    QVERIFY(project.readFile(docPath(left - 1)).contains("new words"));
    QVERIFY(project.readFile(docPath(left + 1)).contains("more words"));
}

void TstNewItemIds::filesOfASessionThatWasNotSavedStay()
{
    const TestProject project;
    int left = -1;
    {
        const auto model = project.create();
        const QModelIndex item = addTextItem(model.get(), model->draftFolder(), u"lost"_s);
        left = model->nodeIdentity(item);
        // The text is on disk, and the binder doesn't know of it when the session ends.
        QVERIFY(model->saveDocuments(model->projectNode(item), false, nullptr));
    }
    const QByteArray before = project.readFile(docPath(left));
    QVERIFY(before.contains("lost text"));
    const auto model = project.open();
    QVERIFY(!model->hasNodeId(left));
    QVERIFY(newItemWithText(model.get(), u"new words"_s) != left);
    QVERIFY(model->save());
    QCOMPARE(project.readFile(docPath(left)), before);
}

void TstNewItemIds::whateverWasLeftKeepsItsId_data()
{
    QTest::addColumn<QString>("left");
    for (const char *left :
         {"Files/Docs/4.rtf", "Files/Docs/4_notes.rtf", "Files/Docs/4_synopsis.txt",
          "Files/Docs/4.comments", "Files/Docs/4.links", "Files/Docs/4.styles",
          "Files/Docs/4_notes.styles", "Files/Docs/4.pdf", "Files/Docs/4_icImage.png",
          "Snapshots/4.snapshots/index.xml", "Files/Docs/4.rtf/obstacle"})
        QTest::newRow(left) << QString::fromLatin1(left);
    QTest::newRow("link to nothing") << QString();
}

void TstNewItemIds::whateverWasLeftKeepsItsId()
{
    QFETCH(const QString, left);
    const TestProject project;
    (void)project.create();
    project.writeFile(u"Files/Docs/readme.txt"_s, "no item's");
    if (left.isEmpty())
        QVERIFY(QFile::link(project.path(u"nowhere"_s), project.path(docPath(4))));
    else
        project.writeFile(left, "left");
    const auto model = project.open();
    const QModelIndex research = model->researchFolder();
    const std::function<int()> makers[] = {
        [&] { return model->nodeIdentity(model->createNewItem(0, research)); },
        [&] { return model->insertNode(0, research, TVL::Text, u"rtf"_s, u"n"_s)->mId; },
        [&] { return model->nodeIdentity(model->insertUserFolder(0, research, u"n"_s)); },
        [&] { return model->nodeIdentity(addItem(model.get(), research, TVL::Text)); },
        [&] {
            return model->nodeIdentity(model->duplicate({firstText(model.get())}, true).value(0));
        },
    };
    int expected = 5;
    for (const auto &make : makers)
        QCOMPARE(make(), expected++);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstNewItemIds::filesThatCouldNotBeDeletedKeepTheirId()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex item = addTextItem(model.get(), model->draftFolder(), u"a"_s);
    const int id = model->nodeIdentity(item);
    project.writeFile(docPath(id, u".rtf/in the way"_s), "x");
    QVERIFY(model->removeIndex(item));
    QVERIFY(QFile::exists(project.path(docPath(id))));
    QCOMPARE(model->nodeIdentity(model->createNewItem(0, model->draftFolder())), id + 1);
}

void TstNewItemIds::aMergedItemWhoseFilesStayKeepsItsId()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->draftFolder(), u"a"_s);
    const QPersistentModelIndex b = addTextItem(model.get(), model->draftFolder(), u"b"_s);
    QVERIFY(model->save());
    const int id = model->nodeIdentity(b);
    {
        // The joined text can't be written, so the others keep their files.
        const ReducedPermissions readOnly(project.path(docPath(model->nodeIdentity(a))),
                                          ReducedPermissions::ReadOnly);
        QVERIFY(model->mergeIndexes({a, b}).isValid());
    }
    QVERIFY(!b.isValid());
    QVERIFY(project.readFile(docPath(id)).contains("b text"));
    QCOMPARE(newItemWithText(model.get(), u"new words"_s), id + 1);
}

void TstNewItemIds::anItemThatLosesItsIdLeavesItsFiles()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex item = addTextItem(model.get(), model->draftFolder(), u"a"_s);
    const int id = model->nodeIdentity(item);
    QVERIFY(model->save());
    model->clearIndexId(item);
    QCOMPARE(newItemWithText(model.get(), u"new words"_s), id + 1);
}

void TstNewItemIds::itemsWithoutIdsTakeNothingOver()
{
    const TestProject project;
    (void)project.create();
    project.writeFile(docPath(4), "left");
    project.writeFile(docPath(6), "left");
    const auto model = project.open();
    QList<TVLProjectNode *> nodes;
    for (int i = 0; i < 3; ++i) {
        nodes.append(model->projectNode(addItem(model.get(), model->draftFolder(), TVL::Text)));
        model->clearIndexId(model->createIndex(nodes.constLast()));
    }
    model->populateMissingIDs();
    QCOMPARE(nodes.at(0)->mId, 5);
    QCOMPARE(nodes.at(1)->mId, 7);
    QCOMPARE(nodes.at(2)->mId, 8);
}

void TstNewItemIds::mobileItemsTakeNothingOver()
{
    const TestProject project;
    (void)project.create();
    project.writeFile(docPath(4), "left");
    const auto model = project.open();
    const auto other = blankModel();
    const QModelIndex item = addItem(model.get(), model->draftFolder(), TVL::Text);
    model->clearIndexId(item);
    model->populateMobileProjectMissingIDs(other.get());
    QCOMPARE(model->nodeIdentity(item), 5);
}

void TstNewItemIds::aProjectWithoutBinderKeepsItsTexts()
{
    const TestProject project;
    project.writeFile(docPath(0), "old");
    project.writeFile(docPath(3), "old");
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->nodeIdentity(model->draftFolder()), 0);
    QCOMPARE(model->nodeIdentity(model->researchFolder()), 1);
    QCOMPARE(model->nodeIdentity(model->trashFolder()), 2);
    QCOMPARE(model->nodeIdentity(firstText(model.get())), 4);
    QCOMPARE(model->documentPlainText(firstText(model.get()), false), QString());
}

void TstNewItemIds::aFolderThatCanNotBeListedIsAskedByName()
{
    const TestProject project;
    (void)project.create();
    project.writeFile(docPath(4), "left");
    project.writeFile(docPath(6, u".pdf"_s), "left");
    const auto model = project.open();
    {
        const ReducedPermissions passage(project.path(u"Files/Docs"_s),
                                         QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(model->nodeIdentity(model->createNewItem(0, model->draftFolder())), 5);
    }
    QCOMPARE(model->nodeIdentity(model->createNewItem(0, model->draftFolder())), 7);
}

void TstNewItemIds::anIdThatWasAskedForIsGiven()
{
    const TestProject project;
    (void)project.create();
    project.writeFile(docPath(9), "left");
    const auto model = project.open();
    TVLProjectNodeProperties record;
    record.mId = 9;
    record.mTitle = u"From a merge that brought the file"_s;
    QCOMPARE(model->nodeIdentity(model->insertRowWithProperties(0, model->draftFolder(), record)),
             9);
}

void TstNewItemIds::noIdIsPassedOverForAnItemWithoutFiles()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b(c) d)"_s);
    const int id = model->nodeIdentity(itemTitled(model.get(), u"a"_s));
    QVERIFY(model->removeIndex(itemTitled(model.get(), u"a"_s)));
    QCOMPARE(model->nodeIdentity(model->createNewItem(0, model->researchFolder())), id);
    QCOMPARE(model->findNextNodeId(), model->findBiggestNodeId() + 1);
}

void TstNewItemIds::aReusedIdBringsNoOldTextsAfterAKill()
{
    const TestProject project;
    int id = -1;
    {
        const auto model = project.create();
        id = model->nodeIdentity(addTextItem(model.get(), model->draftFolder(), u"old"_s));
        model->saveAll(true);
        model->prepareToDestroy();
    }
    {
        const auto model = project.open();
        QVERIFY(model->hasText(model->index(id)));
        QVERIFY(model->removeIndex(model->index(id)));
        QCOMPARE(model->nodeIdentity(model->createNewItem(0, model->draftFolder())), id);
        QVERIFY(model->save());
        // The session ends here, before it has written what the search keeps.
    }
    const auto model = project.open();
    QVERIFY(model->hasNodeId(id));
    QVERIFY(!model->hasText(model->index(id)));
    QVERIFY(!model->hasSynopsis(model->index(id)));
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = u"old"_s;
    search.mSearchProperty = TVL::AllProperties;
    QCOMPARE(model->collectionIndexes(search), QModelIndexList());
    QVERIFY(!project.readFile(u"Files/search.indexes"_s).contains("old text"));
}

void TstNewItemIds::manyNewItemsAreCheap()
{
    const TestProject project;
    (void)project.create();
    for (int id = 10; id < 500; ++id)
        project.writeFile(docPath(id), "left");
    const auto model = project.open().release();
    const QModelIndex research = model->researchFolder();
    const int quarter = testSize(10'000) / 4;
    std::clock_t ticks[4] = {};
    for (std::clock_t &spent : ticks) {
        const std::clock_t before = std::clock();
        for (int i = 0; i < quarter; ++i)
            QVERIFY(model->createNewItem(-1, research).isValid());
        spent = std::clock() - before;
    }
    QCOMPARE(model->findBiggestNodeId(), 500 + 4 * quarter - 1 - 6);
    // Were each to look at those before it, the last would take seven times as long as the first.
    const std::clock_t tick = CLOCKS_PER_SEC / 20;
    QVERIFY(ticks[3] < 4 * ticks[0] + tick);
}

TVL_TEST_PREPARED(TstNewItemIds, dropRightsOfTheSuperuser)
#include "tst_newitemids.moc"
