#include "ModelChecks.h"
#include "TestMain.h"

#include "TVLOptions.h"

#include <QLocale>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

enum Place { AtTopLevel, InDraft, InResearch, InTrash, InFolder, DeepInTrash };

QModelIndex addAt(TVLProjectModel *model, Place place, TVL::NodeType type)
{
    switch (place) {
    case AtTopLevel:
        return addItem(model, QModelIndex(), type);
    case InDraft:
        return addItem(model, model->draftFolder(), type);
    case InResearch:
        return addItem(model, model->researchFolder(), type);
    case InTrash:
        return addItem(model, model->trashFolder(), type);
    case InFolder:
        return addItem(model, addItem(model, QModelIndex(), TVL::Folder), type);
    case DeepInTrash:
        return addItem(model, addItem(model, model->trashFolder(), TVL::DraftFolder), type);
    }
    Q_UNREACHABLE();
}

} // namespace

class TstSystemFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void systemFoldersAreFoundByTheirType();
    void onlyTheTopLevelIsSearched();
    void theFirstOfSeveralIsTaken();
    void aSystemFolderIsWhatItsTypeSaysNow();
    void whatATypeStandsFor_data();
    void whatATypeStandsFor();
    void anInvalidIndexIsNoSystemFolder();
    void anIndexOfAnotherModelIsNoFolder();
    void whatCountsAsAFolder_data();
    void whatCountsAsAFolder();
    void whatASystemFolderContains_data();
    void whatASystemFolderContains();
    void aSystemFolderIsNotInsideItself();
    void theRootIsInsideNothing();
    void theConflictsFolderStandsBelowTheResearchFolder();
    void theConflictsFolderIsMadeOnce();
    void theConflictsFolderIsFoundByItsTitleAtTopLevelOnly();
    void withoutResearchFolderTheConflictsFolderComesLast();
    void aConflictsSubFolderIsMadeAsTheLastRow();
    void lookingForAConflictsSubFolderMakesNothing();
    void aConflictsSubFolderIsNamedAfterDeviceAndDate_data();
    void aConflictsSubFolderIsNamedAfterDeviceAndDate();
    void theConflictsSubFolderOfTheLastSave();
    void theFrontMatterIsAFolderOutsideTheDraft_data();
    void theFrontMatterIsAFolderOutsideTheDraft();
    void theFirstFrontMatterInTheTreeIsTaken();
    void withoutFrontMatterThereIsNone();
};

void TstSystemFolders::cleanup()
{
    tvlOptions()->setValue(TVLOptions::TreatTextWithChildrenAsFolder, true);
}

void TstSystemFolders::systemFoldersAreFoundByTheirType()
{
    const auto model = blankModel();
    QCOMPARE(model->draftFolder(), model->index(0, 0));
    QCOMPARE(model->researchFolder(), model->index(1, 0));
    QCOMPARE(model->trashFolder(), model->index(2, 0));
    QCOMPARE(model->findSystemFolder(TVL::DraftFolder), model->index(0, 0));
    QCOMPARE(model->findSystemFolder(TVL::ResearchFolder), model->index(1, 0));
    QCOMPARE(model->findSystemFolder(TVL::TrashFolder), model->index(2, 0));
    QVERIFY(!model->findSystemFolder(TVL::Text).isValid());
}

void TstSystemFolders::onlyTheTopLevelIsSearched()
{
    const auto model = emptyModel();
    QVERIFY(!model->draftFolder().isValid());
    const QModelIndex folder = addItem(model.get(), QModelIndex(), TVL::Folder);
    addItem(model.get(), folder, TVL::DraftFolder);
    QVERIFY(!model->draftFolder().isValid());
    const QModelIndex draft = addItem(model.get(), QModelIndex(), TVL::DraftFolder);
    QCOMPARE(model->draftFolder(), draft);
}

void TstSystemFolders::theFirstOfSeveralIsTaken()
{
    const auto model = emptyModel();
    addItem(model.get(), QModelIndex(), TVL::Text);
    const QModelIndex first = addItem(model.get(), QModelIndex(), TVL::TrashFolder);
    addItem(model.get(), QModelIndex(), TVL::TrashFolder);
    QCOMPARE(model->trashFolder(), first);
}

void TstSystemFolders::aSystemFolderIsWhatItsTypeSaysNow()
{
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), QModelIndex(), TVL::Folder);
    QVERIFY(model->setType(folder, TVL::ResearchFolder));
    QCOMPARE(model->researchFolder(), model->index(1, 0));
    QVERIFY(model->setType(model->index(1, 0), TVL::Folder));
    QCOMPARE(model->researchFolder(), folder);
    QVERIFY(model->isResearchFolder(folder));
    QVERIFY(!model->isSystemFolder(model->index(1, 0)));
}

void TstSystemFolders::whatATypeStandsFor_data()
{
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isSystemFolder");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("isFolderOrText");
    QTest::addColumn<bool>("canHaveText");
    QTest::newRow("DraftFolder") << TVL::DraftFolder << 0 << true << true << true << false;
    QTest::newRow("ResearchFolder") << TVL::ResearchFolder << 1 << true << true << true << false;
    QTest::newRow("TrashFolder") << TVL::TrashFolder << 2 << true << true << true << false;
    QTest::newRow("Folder") << TVL::Folder << 3 << false << true << true << true;
    QTest::newRow("Text") << TVL::Text << 4 << false << false << true << true;
    QTest::newRow("Image") << TVL::Image << 5 << false << false << false << false;
    QTest::newRow("PDF") << TVL::PDF << 6 << false << false << false << false;
    QTest::newRow("Media") << TVL::Media << 7 << false << false << false << false;
    QTest::newRow("WebArchive") << TVL::WebArchive << 8 << false << false << false << false;
    QTest::newRow("Other") << TVL::Other << 9 << false << false << false << false;
}

void TstSystemFolders::whatATypeStandsFor()
{
    QFETCH(const TVL::NodeType, type);
    QFETCH(const int, number);
    QFETCH(const bool, isSystemFolder);
    QFETCH(const bool, isFolder);
    QFETCH(const bool, isFolderOrText);
    QFETCH(const bool, canHaveText);
    QCOMPARE(int(type), number);
    for (const Place place : {AtTopLevel, InDraft, InTrash, InFolder}) {
        const auto model = blankModel();
        const QModelIndex index = addAt(model.get(), place, type);
        QCOMPARE(model->isSystemFolder(index), isSystemFolder);
        QCOMPARE(model->isDraftFolder(index), type == TVL::DraftFolder);
        QCOMPARE(model->isResearchFolder(index), type == TVL::ResearchFolder);
        QCOMPARE(model->isTrashFolder(index), type == TVL::TrashFolder);
        QCOMPARE(model->isFolder(index), isFolder);
        QCOMPARE(model->isFolderOrText(index), isFolderOrText);
        QCOMPARE(model->canHaveText(index), canHaveText);
        QCOMPARE(model->isEditableText(index), canHaveText);
    }
}

void TstSystemFolders::anInvalidIndexIsNoSystemFolder()
{
    const auto model = blankModel();
    model->binderRoot()->mNodeType = TVL::DraftFolder;
    QVERIFY(!model->isSystemFolder(QModelIndex()));
    QVERIFY(!model->isSystemFolder(model->rootIndex()));
}

void TstSystemFolders::anIndexOfAnotherModelIsNoFolder()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex index = other->draftFolder();
    QVERIFY(!model->isSystemFolder(index));
    QVERIFY(!model->isDraftFolder(index));
    QVERIFY(!model->isFolder(index));
    QVERIFY(!model->isFolderOrText(index));
    QVERIFY(!model->canHaveText(index));
    QVERIFY(!model->treatAsFolder(index));
    QVERIFY(!model->draftContains(firstText(other.get())));
    QVERIFY(!model->isDraftChild(index));
}

void TstSystemFolders::whatCountsAsAFolder_data()
{
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<bool>("isFolder");
    for (int type = TVL::DraftFolder; type <= TVL::Other; ++type)
        QTest::newRow(qPrintable(TVL::wordOf(TVL::NodeType(type))))
            << TVL::NodeType(type) << (type <= TVL::Folder);
}

void TstSystemFolders::whatCountsAsAFolder()
{
    QFETCH(const TVL::NodeType, type);
    QFETCH(const bool, isFolder);
    const auto model = blankModel();
    const QModelIndex childless = addItem(model.get(), QModelIndex(), type);
    const QModelIndex parent = addItem(model.get(), QModelIndex(), type);
    addItem(model.get(), parent, TVL::Text);

    QCOMPARE(model->treatAsFolder(childless), isFolder);
    QVERIFY(model->treatAsFolder(parent));
    tvlOptions()->setValue(TVLOptions::TreatTextWithChildrenAsFolder, false);
    QCOMPARE(model->treatAsFolder(childless), isFolder);
    QCOMPARE(model->treatAsFolder(parent), isFolder);
}

void TstSystemFolders::whatASystemFolderContains_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<bool>("inDraft");
    QTest::addColumn<bool>("inResearch");
    QTest::addColumn<bool>("inTrash");
    QTest::newRow("top level") << int(AtTopLevel) << false << false << false;
    QTest::newRow("in the Draft") << int(InDraft) << true << false << false;
    QTest::newRow("in the Research") << int(InResearch) << false << true << false;
    QTest::newRow("in the Trash") << int(InTrash) << false << false << true;
    QTest::newRow("in a folder") << int(InFolder) << false << false << false;
    QTest::newRow("in a Draft that is in the Trash") << int(DeepInTrash) << false << false << true;
}

void TstSystemFolders::whatASystemFolderContains()
{
    QFETCH(const int, place);
    QFETCH(const bool, inDraft);
    QFETCH(const bool, inResearch);
    QFETCH(const bool, inTrash);
    const auto model = blankModel();
    const QModelIndex item = addAt(model.get(), Place(place), TVL::Text);
    const QModelIndex child = addItem(model.get(), item, TVL::Image);
    for (const QModelIndex &index : {item, child}) {
        QCOMPARE(model->draftContains(index), inDraft);
        QCOMPARE(model->researchContains(index), inResearch);
        QCOMPARE(model->trashContains(index), inTrash);
        QCOMPARE(model->isDraftChild(index), inDraft);
        QCOMPARE(model->isTrashChild(index), inTrash);
    }
}

void TstSystemFolders::aSystemFolderIsNotInsideItself()
{
    const auto model = blankModel();
    QVERIFY(!model->draftContains(model->draftFolder()));
    QVERIFY(!model->researchContains(model->researchFolder()));
    QVERIFY(!model->trashContains(model->trashFolder()));
    QVERIFY(model->isDraftChild(model->draftFolder()));
    QVERIFY(model->isTrashChild(model->trashFolder()));
    QVERIFY(!model->isTrashChild(model->draftFolder()));
    QVERIFY(!model->isDraftChild(model->trashFolder()));
}

void TstSystemFolders::theRootIsInsideNothing()
{
    const auto model = blankModel();
    QVERIFY(!model->draftContains(QModelIndex()));
    QVERIFY(!model->researchContains(model->rootIndex()));
    QVERIFY(!model->trashContains(model->rootIndex()));
    QVERIFY(!model->isDraftChild(model->rootIndex()));
    QVERIFY(!model->isTrashChild(QModelIndex()));
}

void TstSystemFolders::theConflictsFolderStandsBelowTheResearchFolder()
{
    const auto model = blankModel();
    QVERIFY(!model->findSyncConflictsFolder().isValid());
    const QModelIndex folder = model->createSyncConflictsFolder();
    QCOMPARE(folder.row(), 2);
    QCOMPARE(model->parent(folder), model->rootIndex());
    QCOMPARE(model->title(folder), u"Sync Conflicts"_s);
    QCOMPARE(int(model->type(folder)), int(TVL::Folder));
    QCOMPARE(model->projectNode(folder)->mIconFileName, u"Warning.tiff"_s);
    QCOMPARE(model->trashFolder().row(), 3);
    QCOMPARE(model->findSyncConflictsFolder(), folder);
}

void TstSystemFolders::theConflictsFolderIsMadeOnce()
{
    const auto model = blankModel();
    const QModelIndex folder = model->syncConflictsFolder();
    QCOMPARE(model->syncConflictsFolder(), folder);
    QCOMPARE(model->findSyncConflictsFolder(), folder);
    QCOMPARE(model->rowCount(), 4);
}

void TstSystemFolders::theConflictsFolderIsFoundByItsTitleAtTopLevelOnly()
{
    const auto model = blankModel();
    addItem(model.get(), model->draftFolder(), TVL::Folder, u"Sync Conflicts"_s);
    QVERIFY(!model->findSyncConflictsFolder().isValid());
    const QModelIndex text = addItem(model.get(), QModelIndex(), TVL::Text, u"Sync Conflicts"_s);
    QCOMPARE(model->findSyncConflictsFolder(), text);
    QCOMPARE(model->syncConflictsFolder(), text);
}

void TstSystemFolders::withoutResearchFolderTheConflictsFolderComesLast()
{
    const auto model = emptyModel();
    addItem(model.get(), QModelIndex(), TVL::DraftFolder);
    addItem(model.get(), QModelIndex(), TVL::TrashFolder);
    QCOMPARE(model->createSyncConflictsFolder().row(), 2);
}

void TstSystemFolders::aConflictsSubFolderIsMadeAsTheLastRow()
{
    const auto model = blankModel();
    const QModelIndex first = model->syncConflictsSubFolder(u"Tablet"_s);
    const QModelIndex second = model->syncConflictsSubFolder(u"Phone"_s);
    const QModelIndex folder = model->findSyncConflictsFolder();
    QVERIFY(folder.isValid());
    QCOMPARE(model->rowCount(folder), 2);
    QCOMPARE(first, model->index(0, 0, folder));
    QCOMPARE(second, model->index(1, 0, folder));
    QCOMPARE(model->title(second), u"Phone"_s);
    QCOMPARE(int(model->type(second)), int(TVL::Folder));
    QCOMPARE(model->syncConflictsSubFolder(u"Tablet"_s), first);
    QCOMPARE(model->findSyncConflictsSubFolder(u"Phone"_s), second);
    const QModelIndex third = model->createSyncConflictsSubFolder(u"Tablet"_s);
    QCOMPARE(third.row(), 2);
    QCOMPARE(model->findSyncConflictsSubFolder(u"Tablet"_s), first);
}

void TstSystemFolders::lookingForAConflictsSubFolderMakesNothing()
{
    const auto model = blankModel();
    addItem(model.get(), QModelIndex(), TVL::Folder, u"Phone"_s);
    QVERIFY(!model->findSyncConflictsSubFolder(u"Phone"_s).isValid());
    model->syncConflictsFolder();
    QVERIFY(!model->findSyncConflictsSubFolder(u"Phone"_s).isValid());
    QCOMPARE(model->rowCount(model->findSyncConflictsFolder()), 0);
}

void TstSystemFolders::aConflictsSubFolderIsNamedAfterDeviceAndDate_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("shownDevice");
    QTest::newRow("named") << u"My Phone"_s << u"My Phone"_s;
    QTest::newRow("nameless") << QString() << u"Mobile Device Conflicts"_s;
    QTest::newRow("looking like a place holder") << u"%2 %1"_s << u"%2 %1"_s;
}

void TstSystemFolders::aConflictsSubFolderIsNamedAfterDeviceAndDate()
{
    QFETCH(const QString, device);
    QFETCH(const QString, shownDevice);
    const QDateTime date(QDate(2021, 4, 5), QTime(16, 7, 8));
    const QString name =
        shownDevice + u" ("_s + QLocale::system().toString(date, QLocale::ShortFormat) + u")"_s;
    QCOMPARE(TVLProjectModel::syncConflictsSubfolderNameFromDeviceName(device, date), name);

    const auto model = blankModel();
    const QModelIndex folder = model->syncConflictsSubFolderDevice(device, date);
    QCOMPARE(model->title(folder), name);
    QCOMPARE(model->parent(folder), model->findSyncConflictsFolder());
    QCOMPARE(model->syncConflictsSubFolderDevice(device, date), folder);
}

void TstSystemFolders::theConflictsSubFolderOfTheLastSave()
{
    const auto model = blankModel();
    TVLProjectInfo info = model->info();
    info.mModified = QDateTime(QDate(2021, 4, 5), QTime(16, 7, 8));
    model->setInfo(info);
    model->setDeviceName(u"Tablet"_s);
    QCOMPARE(model->deviceName(), u"Tablet"_s);
    const QModelIndex folder = model->syncConflictsSubFolderDevice();
    QCOMPARE(
        model->title(folder),
        TVLProjectModel::syncConflictsSubfolderNameFromDeviceName(u"Tablet"_s, info.mModified));
}

void TstSystemFolders::theFrontMatterIsAFolderOutsideTheDraft_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("isFound");
    const QString name = u"Front Matter"_s;
    QTest::newRow("top level") << int(AtTopLevel) << TVL::Folder << name << true;
    QTest::newRow("in the Research") << int(InResearch) << TVL::Folder << name << true;
    QTest::newRow("in the Trash") << int(DeepInTrash) << TVL::Folder << name << true;
    QTest::newRow("in the Draft") << int(InDraft) << TVL::Folder << name << false;
    QTest::newRow("text") << int(InResearch) << TVL::Text << name << false;
    QTest::newRow("system folder") << int(AtTopLevel) << TVL::ResearchFolder << name << false;
    QTest::newRow("other case") << int(InResearch) << TVL::Folder << u"Front matter"_s << false;
}

void TstSystemFolders::theFrontMatterIsAFolderOutsideTheDraft()
{
    QFETCH(const int, place);
    QFETCH(const TVL::NodeType, type);
    QFETCH(const QString, title);
    QFETCH(const bool, isFound);
    const auto model = blankModel();
    const QModelIndex item = addAt(model.get(), Place(place), type);
    QVERIFY(model->setTitle(item, title));
    QCOMPARE(model->frontMatterFolder(), isFound ? item : QModelIndex());
    QCOMPARE(TVLProjectModel::frontMatterFolderName(), u"Front Matter"_s);
}

void TstSystemFolders::theFirstFrontMatterInTheTreeIsTaken()
{
    const auto model = blankModel();
    const QString name = TVLProjectModel::frontMatterFolderName();
    addItem(model.get(), model->draftFolder(), TVL::Folder, name);
    addItem(model.get(), QModelIndex(), TVL::Folder, name);
    const QModelIndex folder = addItem(model.get(), model->researchFolder(), TVL::Folder);
    const QModelIndex first = addItem(model.get(), folder, TVL::Folder, name);
    QCOMPARE(model->frontMatterFolder(), first);
}

void TstSystemFolders::withoutFrontMatterThereIsNone()
{
    QCOMPARE(blankModel()->frontMatterFolder(), QModelIndex());
    QCOMPARE(emptyModel()->frontMatterFolder(), QModelIndex());
}

TVL_TEST(TstSystemFolders)
#include "tst_systemfolders.moc"
