#include "ModelChecks.h"
#include "RandomTree.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** A folder stands where the binder should be, so that it can't be written. */
void obstructBinder(const TestProject &project)
{
    QFile::remove(project.binderPath());
    project.writeFile(u"Novel.tavelx/obstacle"_s, "x");
}

/** Times as exact as the binder keeps them. */
void roundTimes(const TVLProjectModel *model)
{
    tvlForEachNode(model->binderRoot(), [](TVLProjectNode *node) {
        node->mCreated = QDateTime::fromSecsSinceEpoch(node->mCreated.toSecsSinceEpoch());
        node->mModified = QDateTime::fromSecsSinceEpoch(node->mModified.toSecsSinceEpoch());
    });
}

/** Takes away what an item has of a session alone, which ends with the model. */
void forgetSession(const TVLProjectModel *model)
{
    tvlForEachNode(model->binderRoot(), [](TVLProjectNode *node) {
        node->mSessionWordCount = -1;
        node->mSessionCharacterCount = -1;
    });
}

void growThroughOperations(TVLProjectModel *model, int nodes)
{
    QRandomGenerator random(42);
    while (model->totalNodesCount() < nodes) {
        const QModelIndexList all = recursiveWalk(model, QModelIndex());
        const QModelIndex parent = all.at(random.bounded(int(all.size())));
        if (random.bounded(3) == 0) {
            model->insertRows(random.bounded(model->rowCount(parent) + 1), 1, parent);
            continue;
        }
        const QString extension = random.bounded(2) ? u"png"_s : QString();
        const QModelIndex index = model->createIndex(model->insertNode(
            -1, parent, TVL::NodeType(random.bounded(10)), extension, randomText(&random, 20)));
        model->setTitle(index, randomText(&random, 20));
        model->setLabelIdentity(index, random.bounded(-1, 2));
        model->setStatusIdentity(index, random.bounded(-1, 6));
        model->setKeywordIds(index, {random.bounded(9), random.bounded(9)});
        if (random.bounded(9) == 0)
            model->changeIndexUuid(index, QUuid::createUuid());
        if (random.bounded(50) == 0)
            model->setTemplateFolder(index);
    }
}

QString difference(const TVLProjectModel *left, const TVLProjectModel *right)
{
    QString where;
    return equalTrees(left->binderRoot(), right->binderRoot(), &where) ? QString() : where;
}

} // namespace

class TstLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void aModelIsNamedAfterItsPath_data();
    void aModelIsNamedAfterItsPath();
    void aNewModelIsEmptyAndSaved();
    void theVersionIsTheOneToldOrThatOfTheFolder();
    void aBlankProjectHasThreeSystemFoldersAndAText();
    void aBlankProjectHasLabelsAndStatusItems();
    void aBlankProjectHasOneNote();
    void aBlankProjectIsOfFormat18();
    void aBlankProjectIsSaved();
    void aProjectWithItemsIsNotMadeBlank();
    void initProjectOnAnEmptyTreeMakesABlankProject();
    void initProjectAddsWhatAProjectCantBeWithout();
    void initProjectDerivesTheSnapshotFlagFromTheFolder();
    void aBinderWithoutItemsOpensAsABlankProject();
    void aFolderWithoutBinderOpensAsABlankProject();
    void aBrokenBinderIsReplacedByItsZippedCopies_data();
    void aBrokenBinderIsReplacedByItsZippedCopies();
    void withOnlyBrokenBindersNothingOpens();
    void openingMarksOnlyWhatTheBinderSaysOfBackups();
    void openingTakesTheRawPartOfTheBinder();

    void aSavedProjectReopensWithTheSameTree();
    void aLargeTreeSurvivesSaveAndReopen();
    void aBlankProjectIsWrittenToDisk();
    void aForcedSaveOfASavedProjectWritesTheBinder();
    void anUnforcedSaveOfASavedProjectWritesNothingButAsksTheEditors();
    void editorsAreAskedBeforeTheBinderIsWritten();
    void aSaveStampsTheProject();
    void aMissingVersionFileIsWritten();
    void anExistingVersionFileIsLeftAlone();
    void aFailedBinderWriteShowsOneBoxAndGoesOn();
    void aFailedSaveLeavesTheProjectSaved();
    void theErrorsOfASaveAreHandedOut();
    void aPlaceThatCantBeWrittenIsToldOnce();
    void withoutPathNothingIsSaved();
    void allIsSaved();

    void aChangeMarksTheProjectOnce();
    void markingWithFalseDoesNotClear();
    void whileABinderIsReadNothingIsMarked();
    void anEditedNoteMarksTheProject();
    void excludingFromBackupsAlwaysMarks();
    void optionsAreTakenOnConstructionAndOnChange();
    void onlySomeGroupsOfOptionsMatter_data();
    void onlySomeGroupsOfOptionsMatter();

    void saveAsMovesTheModelToTheNewPlace();
    void saveAsNamesTheBinderOfAModifiedProjectAfterItsFolder();
    void saveAsTreatsTheOldLockAsTold_data();
    void saveAsTreatsTheOldLockAsTold();
    void saveAsReplacesWhatIsThere_data();
    void saveAsReplacesWhatIsThere();
    void saveAsOntoTheProjectItselfIsRefused_data();
    void saveAsOntoTheProjectItselfIsRefused();
    void saveAsThroughALinkToTheProjectsFolderIsRefused();
    void saveAsNowhereIsRefused();
    void aFailedSaveAsLeavesTheModelAndHasTakenTheTarget();

    void prepareToDestroySavesAndUnlocks();
    void prepareToDestroyRemovesTheDragAndDropFolder();
    void aNewModelCleansUpTheDragAndDropFolderLater();
    void aModelIsFoundByFolderAndByBinder();
    void theFirstOfSeveralModelsIsFound();
    void aModelIsNotFoundAfterItsEnd();
    void aDeletedModelIsNotFound();
};

void TstLifecycle::cleanup()
{
    tvlOptions()->setValue(TVLOptions::TreatTextWithChildrenAsFolder, true);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 10);
}

// --- Coming to life

void TstLifecycle::aModelIsNamedAfterItsPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("project") << u"/nowhere/Novel.tavel"_s << u"Novel"_s;
    QTest::newRow("with dots") << u"/nowhere/My.First.Novel.tavel"_s << u"My.First.Novel"_s;
    QTest::newRow("without extension") << u"/nowhere/Novel"_s << u"Novel"_s;
}

void TstLifecycle::aModelIsNamedAfterItsPath()
{
    QFETCH(const QString, path);
    QFETCH(const QString, name);
    const TVLProjectModel model(path, nullptr, false, TVL::FormatVersion18);
    QCOMPARE(model.name(), name);
    QCOMPARE(model.path(), QDir(path));
}

void TstLifecycle::aNewModelIsEmptyAndSaved()
{
    QObject parent;
    const auto *model =
        new TVLProjectModel(u"/nowhere/Novel.tavel"_s, &parent, false, TVL::FormatVersion18);
    QCOMPARE(model->QObject::parent(), &parent);
    QCOMPARE(model->rowCount(), 0);
    QVERIFY(model->isSaved());
    QVERIFY(!model->isModified());
    QVERIFY(!model->isMobileProject());
    QVERIFY(!model->tintIcons());
    QVERIFY(model->backupIncluded());
    QCOMPARE(model->defaultLabelIdentity(), -1);
    QCOMPARE(model->defaultStatusIdentity(), -1);
    QCOMPARE(model->labelTitle(), QString());
    QCOMPARE(model->statusTitle(), QString());
    QCOMPARE(model->labels(), QList<TVLLabel>());
    QCOMPARE(model->statusItems(), QList<TVLStatusItem>());
    QCOMPARE(model->collections(), QList<TVLCollectionMetaData>());
    QVERIFY(model->projectNotes().isEmpty());
    QCOMPARE(int(model->info().mBinderVersion), 0);
    QVERIFY(model->info().mModId.isNull());
    QCOMPARE(model->deviceName(), QString());
    QVERIFY(emptyModel(TVL::FormatVersion18, true)->isMobileProject());
}

void TstLifecycle::theVersionIsTheOneToldOrThatOfTheFolder()
{
    const TestProject project;
    QCOMPARE(int(TVLProjectModel(project.path()).formatVersion()), 0);
    project.writeFile(u"Files/version.txt"_s, "23");
    QCOMPARE(int(TVLProjectModel(project.path()).formatVersion()), 23);
    QCOMPARE(
        int(TVLProjectModel(project.path(), nullptr, false, TVL::FormatVersion16).formatVersion()),
        16);
}

void TstLifecycle::aBlankProjectHasThreeSystemFoldersAndAText()
{
    const auto model = blankModel();
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QCOMPARE(model->rowCount(), 3);
    const QStringList titles = {u"Draft"_s, u"Research"_s, u"Trash"_s};
    for (int row = 0; row < 3; ++row) {
        const QModelIndex index = model->index(row, 0);
        QCOMPARE(int(model->type(index)), row);
        QCOMPARE(model->title(index), titles.at(row));
        QCOMPARE(model->nodeIdentity(index), row);
        QCOMPARE(model->labelIdentity(index), -1);
        QCOMPARE(model->statusIdentity(index), -1);
    }
    const QModelIndex text = firstText(model.get());
    QCOMPARE(int(model->type(text)), int(TVL::Text));
    QCOMPARE(model->title(text), QString());
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstLifecycle::aBlankProjectHasLabelsAndStatusItems()
{
    const auto model = blankModel();
    QCOMPARE(model->labelTitle(), u"Label"_s);
    QCOMPARE(model->statusTitle(), u"Status"_s);
    QCOMPARE(model->labels(),
             QList<TVLLabel>({{-1, u"No Label"_s, QColor()},
                              {0, u"Concept"_s, QColor(192, 192, 255)},
                              {1, u"Chapter"_s, QColor(255, 192, 192)}}));
    QCOMPARE(model->statusItems(),
             QList<TVLStatusItem>({{-1, u"No Status"_s},
                                   {0, u"N/A"_s},
                                   {1, u"To Do"_s},
                                   {2, u"First Draft"_s},
                                   {3, u"Revised Draft"_s},
                                   {4, u"Final Draft"_s},
                                   {5, u"Done"_s}}));
    QCOMPARE(model->defaultLabelIdentity(), -1);
    QCOMPARE(model->defaultStatusIdentity(), -1);
}

void TstLifecycle::aBlankProjectHasOneNote()
{
    const auto model = blankModel();
    const auto &notes = model->projectNotes().mNotes;
    QCOMPARE(notes.size(), 1);
    QCOMPARE(notes.at(0).first, 10);
    const QTextDocument *note = notes.at(0).second;
    QCOMPARE(note->metaInformation(QTextDocument::DocumentTitle), u"General"_s);
    QCOMPARE(note->toPlainText(), QString());
    QCOMPARE(note->QObject::parent(), model.get());
    QVERIFY(!model->projectNotes().isModified());
}

void TstLifecycle::aBlankProjectIsOfFormat18()
{
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "23");
    const TestModel model(new TVLProjectModel(project.path()));
    model->initBlankProject();
    QCOMPARE(int(model->formatVersion()), 18);
    QCOMPARE(int(model->info().mBinderVersion), 2);
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QCOMPARE(int(blankModel()->formatVersion()), 18);
    QCOMPARE(int(blankModel()->info().mBinderVersion), 2);
}

void TstLifecycle::aBlankProjectIsSaved()
{
    const auto model = emptyModel();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    model->initBlankProject();
    QVERIFY(model->isSaved());
    QCOMPARE(modified.count(), 0);
}

void TstLifecycle::aProjectWithItemsIsNotMadeBlank()
{
    const auto model = emptyModel();
    addItem(model.get(), QModelIndex(), TVL::Text);
    model->initBlankProject();
    QCOMPARE(model->totalNodesCount(), 1);
    QCOMPARE(model->labels(), QList<TVLLabel>());
}

void TstLifecycle::initProjectOnAnEmptyTreeMakesABlankProject()
{
    const auto model = emptyModel(TVL::FormatVersion16);
    QStringList errors;
    model->initProject(&errors);
    QCOMPARE(errors, QStringList());
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QCOMPARE(int(model->formatVersion()), 18);
    QCOMPARE(model->labels().size(), 3);
    QCOMPARE(model->statusItems().size(), 7);
    QCOMPARE(model->collections().size(), 2);
    QCOMPARE(model->projectNotes().mNotes.size(), 1);
    QVERIFY(model->isSaved());
}

void TstLifecycle::initProjectAddsWhatAProjectCantBeWithout()
{
    const auto model = emptyModel();
    addItem(model.get(), QModelIndex(), TVL::Text);
    QStringList errors;
    model->initProject(&errors);
    QCOMPARE(errors, QStringList());
    QCOMPARE(model->totalNodesCount(), 1);
    QCOMPARE(model->collections().size(), 2);
    QCOMPARE(model->projectNotes().mNotes.size(), 1);
    QCOMPARE(model->projectNotes().mNotes.at(0).first, 10);
    QVERIFY(model->isSaved());

    const QString binderIdentity = model->collections().at(0).mId;
    model->initProject(&errors);
    QCOMPARE(model->collections().size(), 2);
    QCOMPARE(model->collections().at(0).mId, binderIdentity);
    QCOMPARE(model->projectNotes().mNotes.size(), 1);
}

void TstLifecycle::initProjectDerivesTheSnapshotFlagFromTheFolder()
{
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(model->insertRows(0, 2, model->draftFolder()));
        model->findNode(2)->mHasSnapshots = true;
        QVERIFY(model->save(true));
        model->prepareToDestroy();
    }
    QVERIFY(!project.open()->findNode(2)->mHasSnapshots);
    project.writeFile(u"Snapshots/3.snapshots/index.xml"_s, "<x/>");
    project.writeFile(u"Snapshots/4.snapshots/other.xml"_s, "<x/>");
    project.writeFile(u"Snapshots/5.snapshots"_s, "a file");
    project.writeFile(u"Snapshots/99.snapshots/index.xml"_s, "<x/>");
    const auto model = project.open();
    QList<int> ids;
    tvlForEachNode(model->binderRoot(), [&ids](const TVLProjectNode *node) {
        if (node->mHasSnapshots)
            ids.append(node->mId);
    });
    QCOMPARE(ids, QList<int>({3}));

    model->findNode(4)->mHasSnapshots = true;
    QStringList errors;
    model->initProject(&errors);
    QVERIFY(!model->findNode(4)->mHasSnapshots);
}

void TstLifecycle::aBinderWithoutItemsOpensAsABlankProject()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderXml({}));
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QCOMPARE(model->labels(), blankModel()->labels());
    QCOMPARE(model->statusItems(), blankModel()->statusItems());
    QVERIFY(model->isSaved());
}

void TstLifecycle::aFolderWithoutBinderOpensAsABlankProject()
{
    const TestProject project;
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QVERIFY(model->isSaved());
    QCOMPARE(project.files(), (QMap<QString, QByteArray>()));
}

void TstLifecycle::aBrokenBinderIsReplacedByItsZippedCopies_data()
{
    QTest::addColumn<QStringList>("broken");
    QTest::addColumn<QString>("title");
    QTest::newRow("none broken") << QStringList() << u"third"_s;
    QTest::newRow("binder broken") << QStringList({u"Novel.tavelx"_s}) << u"third"_s;
    QTest::newRow("binder and autosave broken")
        << QStringList({u"Novel.tavelx"_s, u"Files/binder.autosave"_s}) << u"first"_s;
}

void TstLifecycle::aBrokenBinderIsReplacedByItsZippedCopies()
{
    QFETCH(const QStringList, broken);
    QFETCH(const QString, title);
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(model->setTitle(firstText(model.get()), u"first"_s));
        QVERIFY(model->save(false));
    }
    {
        // Opening a good binder keeps it as backup, saving keeps each as autosave.
        const auto model = project.open();
        QVERIFY(QFileInfo::exists(project.path(u"Files/binder.backup"_s)));
        QVERIFY(model->setTitle(firstText(model.get()), u"third"_s));
        QVERIFY(model->save(false));
    }
    for (const QString &file : broken)
        project.writeFile(file, "<TavelinorProject Version=\"1.5\"><Binder><BinderItem ID=\"0\"");
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->title(firstText(model.get())), title);
    QCOMPARE(model->totalNodesCount(), 4);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstLifecycle::withOnlyBrokenBindersNothingOpens()
{
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Novel.tavelx"_s, "no binder");
    project.writeFile(u"Files/binder.autosave"_s, "no zip");
    project.writeFile(u"Files/binder.backup"_s, "");
    const auto before = project.files();
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!project.open());
    QCOMPARE(project.files(), before);
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), nullptr);
}

void TstLifecycle::openingMarksOnlyWhatTheBinderSaysOfBackups()
{
    const TestProject project;
    QVERIFY(project.create());
    const auto model = project.open();
    QVERIFY(model);
    // What a binder says of backups is told in every save, and marks each project that has it.
    QVERIFY(model->isModified());
    QVERIFY(!model->projectNotes().isModified());
}

void TstLifecycle::openingTakesTheRawPartOfTheBinder()
{
    const TestProject project;
    {
        const auto model = project.create();
        model->setUserProjectData(u"<UserProjectData><a b=\"c\"/></UserProjectData>"_s);
        QVERIFY(model->save(true));
    }
    QCOMPARE(project.open()->userProjectData(),
             u"<UserProjectData><a b=\"c\"/></UserProjectData>"_s);
}

// --- Saving

void TstLifecycle::aSavedProjectReopensWithTheSameTree()
{
    const TestProject project;
    const auto model = project.create();
    model->setLabelTitle(u"Colour"_s);
    model->setStatusTitle(u"Stage"_s);
    model->setDefaultLabelIdentity(1);
    model->setDefaultStatusIdentity(4);
    roundTimes(model.get());
    QVERIFY(model->save(true));
    const auto reopened = project.open();
    QVERIFY(reopened);
    QCOMPARE(difference(model.get(), reopened.get()), QString());
    QCOMPARE(reopened->labels(), model->labels());
    QCOMPARE(reopened->statusItems(), model->statusItems());
    QCOMPARE(reopened->labelTitle(), u"Colour"_s);
    QCOMPARE(reopened->statusTitle(), u"Stage"_s);
    QCOMPARE(reopened->defaultLabelIdentity(), 1);
    QCOMPARE(reopened->defaultStatusIdentity(), 4);
    QCOMPARE(int(reopened->formatVersion()), 18);
    QCOMPARE(reopened->info().mModId, model->info().mModId);
    QCOMPARE(reopened->deviceName(), TVLProjectModel::platformDeviceName());
}

void TstLifecycle::aLargeTreeSurvivesSaveAndReopen()
{
    const TestProject project;
    const auto model = project.create();
    {
        growThroughOperations(model.get(), 500);
    }
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    roundTimes(model.get());
    QVERIFY(model->save(false));
    const auto reopened = project.open();
    QVERIFY(reopened);
    forgetSession(model.get());
    QCOMPARE(difference(model.get(), reopened.get()), QString());
    QCOMPARE(reopened->uuidsListBinderOrder(), model->uuidsListBinderOrder());
    QCOMPARE(reopened->templateFolderUuid(), model->templateFolderUuid());
    QCOMPARE(mapsOutOfStep(reopened.get()), QString());
}

void TstLifecycle::aBlankProjectIsWrittenToDisk()
{
    const TestProject project;
    const TVLUnattendedMessageBoxes boxes;
    TVLProjectModel::createBlankProjectOnHdd(project.path());
    QCOMPARE(boxes.boxes().size(), 0);
    QVERIFY(QFileInfo::exists(project.binderPath()));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
    QVERIFY(QFileInfo::exists(project.path(u"Files/binder.autosave"_s)));
    QVERIFY(!Format::lockExists(project.path()));
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), nullptr);
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->orderedChildIDs(nullptr), QList<int>({0, 3, 1, 2}));
    QCOMPARE(model->collections().at(1).mTitle, u"Search Results"_s);
}

void TstLifecycle::aForcedSaveOfASavedProjectWritesTheBinder()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QFile::remove(project.binderPath()));
    const SignalLog log(model.get());
    QVERIFY(model->save(true));
    QVERIFY(QFileInfo::exists(project.binderPath()));
    QCOMPARE(log.lines(), QStringList({u"saved"_s}));
}

void TstLifecycle::anUnforcedSaveOfASavedProjectWritesNothingButAsksTheEditors()
{
    const TestProject project;
    const auto model = project.create();
    model->loadDocuments(model->findNode(3));
    model->loadDocuments(model->findNode(1));
    const auto before = project.files();
    const SignalLog log(model.get());
    QVERIFY(model->save(false));
    QCOMPARE(log.lines(), QStringList({u"about to save 3"_s, u"about to save 1"_s}));
    QVERIFY(model->save());
    QCOMPARE(project.files(), before);
    QVERIFY(model->isSaved());
}

void TstLifecycle::editorsAreAskedBeforeTheBinderIsWritten()
{
    const TestProject project;
    const auto model = project.create();
    const QList<TVLProjectNode *> nodes = {model->findNode(3), model->findNode(1)};
    for (TVLProjectNode *node : nodes)
        model->loadDocuments(node);
    const QByteArray before = project.readFile(u"Novel.tavelx"_s);
    int calls = 0;
    connect(model.get(), &TVLProjectModel::aboutToSave, this, [&](const QModelIndex &index) {
        QCOMPARE(model->projectNode(index), nodes.at(calls));
        QCOMPARE(project.readFile(u"Novel.tavelx"_s), before);
        ++calls;
        // What an editor does now still gets into this save, and the list may change meanwhile.
        QVERIFY(model->setTitle(index, u"pushed %1"_s.arg(calls)));
        model->reloadCachedUuids(model->uniqueUuids());
    });
    QVERIFY(model->save(false));
    QCOMPARE(calls, 2);
    QVERIFY(model->isSaved());
    const auto reopened = project.open();
    QCOMPARE(reopened->title(reopened->index(3)), u"pushed 1"_s);
    QCOMPARE(reopened->title(reopened->index(1)), u"pushed 2"_s);
}

void TstLifecycle::aSaveStampsTheProject()
{
    const TestProject project;
    const auto model = project.create();
    const TVLProjectInfo first = model->info();
    QVERIFY(!first.mModId.isNull());
    model->setDeviceName(u"elsewhere"_s);
    const QDateTime before = QDateTime::currentDateTimeUtc();
    QVERIFY(model->save(true));
    const TVLProjectInfo second = model->info();
    QVERIFY(!second.mModId.isNull());
    QVERIFY(second.mModId != first.mModId);
    QVERIFY(second.mModified >= before);
    QVERIFY(second.mModified <= QDateTime::currentDateTimeUtc());
    QCOMPARE(second.mModified.timeSpec(), Qt::UTC);
    QCOMPARE(second.mDevice, TVLProjectModel::platformDeviceName());

    const TVLProjectInfo written = Format::readBinderFileProjectInfo(project.binderPath());
    QCOMPARE(written.mModId, second.mModId);
    QCOMPARE(written.mDevice, second.mDevice);
    QCOMPARE(written.mModified.toSecsSinceEpoch(), second.mModified.toSecsSinceEpoch());
    QCOMPARE(int(written.mBinderVersion), 2);
}

void TstLifecycle::aMissingVersionFileIsWritten()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QFile::remove(project.path(u"Files/version.txt"_s)));
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
}

void TstLifecycle::anExistingVersionFileIsLeftAlone()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/version.txt"_s, "16 and more");
    QVERIFY(model->save(true));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("16 and more"));
}

namespace {

QString binderError(const TestProject &project)
{
    return u"Could not save Binder.\nError: Could not open binder file.\nLocation: '%1'"_s.arg(
        project.path());
}

const QString SaveAdvice =
    u"\n\nTo avoid losing your latest changes, make sure you have enough space and write access on "
    "your storage device.\nYou can create a copy of your project into another location using the "
    "menu File > SaveAs.\nYou might also try to Compile and Save to RTF or DOC format to avoid "
    "losing your latest changes."_s;

} // namespace

void TstLifecycle::aFailedBinderWriteShowsOneBoxAndGoesOn()
{
    const TestProject project;
    const auto model = project.create();
    obstructBinder(project);
    QVERIFY(QFile::remove(project.path(u"Files/version.txt"_s)));
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save(true));

    const auto shown = boxes.takeBoxes();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.at(0).title, u"Project Writer"_s);
    QCOMPARE(shown.at(0).text, u"The following errors occurred while saving your project."_s);
    QCOMPARE(shown.at(0).informativeText, binderError(project) + SaveAdvice);
    QCOMPARE(shown.at(0).icon, QMessageBox::Critical);
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
}

void TstLifecycle::aFailedSaveLeavesTheProjectSaved()
{
    const TestProject project;
    const auto model = project.create();
    obstructBinder(project);
    QVERIFY(model->setTitle(firstText(model.get()), u"x"_s));
    QVERIFY(model->isModified());
    TVLUnattendedMessageBoxes boxes;
    const SignalLog log(model.get());
    QVERIFY(!model->save(false));
    QVERIFY(model->isSaved());
    QCOMPARE(log.lines(), QStringList({u"saved"_s}));
    QCOMPARE(boxes.takeBoxes().size(), 1);
    QVERIFY(model->setTitle(firstText(model.get()), u"y"_s));
    QVERIFY(model->isModified());
    QVERIFY(!model->save(false));
    QCOMPARE(boxes.takeBoxes().size(), 1);
}

void TstLifecycle::theErrorsOfASaveAreHandedOut()
{
    const TestProject project;
    const auto model = project.create();
    QStringList errors = {u"from before"_s};
    QVERIFY(model->saveChanges(&errors));
    QCOMPARE(errors, QStringList());
    obstructBinder(project);
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->saveChanges(&errors));
    QCOMPARE(errors, QStringList({binderError(project)}));
    QVERIFY(!model->saveChanges(nullptr));
    QCOMPARE(boxes.boxes().size(), 2);
}

void TstLifecycle::aPlaceThatCantBeWrittenIsToldOnce()
{
    const TestProject project;
    project.writeFile(u"file"_s, "x");
    const QString path = project.path(u"file/Novel.tavel"_s);
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(path));
    TVLProjectModelTestAccess::markModified(model.get());
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->save(false));
    QVERIFY(model->isSaved());
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, u"Write Error"_s);
    QCOMPARE(boxes.boxes().at(0).text,
             u"Cannot write to the location: '%1'"_s.arg(QDir::toNativeSeparators(path)));

    QStringList errors = {u"from before"_s};
    QVERIFY(!model->saveChanges(&errors));
    QCOMPARE(errors, QStringList({u"from before"_s}));
    QCOMPARE(boxes.boxes().size(), 2);
}

void TstLifecycle::withoutPathNothingIsSaved()
{
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(QString()));
    const TVLUnattendedMessageBoxes boxes;
    const TVLProjectInfo before = model->info();
    QVERIFY(!model->saveChanges(nullptr));
    QVERIFY(!model->save(true));
    QVERIFY(model->isSaved());
    QCOMPARE(boxes.boxes().size(), 0);
    QVERIFY(model->info() == before);
}

void TstLifecycle::allIsSaved()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QFile::remove(project.binderPath()));
    model->saveAll(false);
    QVERIFY(!QFileInfo::exists(project.binderPath()));
    model->saveAll(true);
    QVERIFY(QFileInfo::exists(project.binderPath()));
    QVERIFY(QFile::remove(project.binderPath()));
    QVERIFY(model->setTitle(firstText(model.get()), u"x"_s));
    model->saveAll(false);
    QVERIFY(QFileInfo::exists(project.binderPath()));
    QVERIFY(model->isSaved());
}

// --- Modification and options

void TstLifecycle::aChangeMarksTheProjectOnce()
{
    const auto model = blankModel();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    for (int i = 0; i < 3; ++i) {
        TVLProjectModelTestAccess::markModified(model.get());
        QVERIFY(model->isModified());
        QVERIFY(!model->isSaved());
    }
    QCOMPARE(modified.count(), 1);
    QCOMPARE(modified.at(0).at(0).toBool(), true);
}

void TstLifecycle::markingWithFalseDoesNotClear()
{
    const auto model = blankModel();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    TVLProjectModelTestAccess::markModified(model.get(), false);
    QVERIFY(model->isSaved());
    TVLProjectModelTestAccess::markModified(model.get());
    TVLProjectModelTestAccess::markModified(model.get(), false);
    QVERIFY(model->isModified());
    QCOMPARE(modified.count(), 1);
}

void TstLifecycle::whileABinderIsReadNothingIsMarked()
{
    const auto model = blankModel();
    TVLBinderProject *const binder = model.get();
    binder->beginBinderRead();
    TVLProjectModelTestAccess::markModified(model.get());
    model->setName(u"x"_s);
    QVERIFY(model->isSaved());
    binder->endBinderRead();
    QVERIFY(model->isSaved());
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(model->isModified());
}

void TstLifecycle::anEditedNoteMarksTheProject()
{
    const TestProject project;
    QVERIFY(project.create());
    for (const bool reopened : {true, false}) {
        const auto model = reopened ? project.open() : blankModel();
        QVERIFY(!reopened || model->save(true));
        QTextDocument *note =
            TVLProjectModelTestAccess::projectNotes(model.get()).mNotes.at(0).second;
        QVERIFY(model->isSaved());
        QTextCursor(note).insertText(u"A thought"_s);
        QVERIFY(model->isModified());
        QVERIFY(model->projectNotes().isModified());
    }
}

void TstLifecycle::excludingFromBackupsAlwaysMarks()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->backupIncluded());
    model->setExcludeFromBackup(true);
    QVERIFY(!model->backupIncluded());
    QVERIFY(model->isModified());
    QVERIFY(model->save(false));
    model->setExcludeFromBackup(true);
    QVERIFY(!model->backupIncluded());
    QVERIFY(model->isModified());
    model->setExcludeFromBackup(false);
    QVERIFY(model->backupIncluded());
}

void TstLifecycle::optionsAreTakenOnConstructionAndOnChange()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 33);
    const auto model = blankModel();
    QCOMPARE(model->autoSaveSeconds(), 33);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 44);
    QCOMPARE(model->autoSaveSeconds(), 44);
    const QModelIndex parent = firstText(model.get());
    addItem(model.get(), parent, TVL::Text);
    QVERIFY(model->treatAsFolder(parent));
    tvlOptions()->setValue(TVLOptions::TreatTextWithChildrenAsFolder, false);
    QVERIFY(!model->treatAsFolder(parent));
    QCOMPARE(blankModel()->autoSaveSeconds(), 44);
}

void TstLifecycle::onlySomeGroupsOfOptionsMatter_data()
{
    QTest::addColumn<QStringList>("groups");
    QTest::addColumn<bool>("areTaken");
    QTest::newRow("General") << QStringList({u"General"_s}) << true;
    QTest::newRow("Navigation") << QStringList({u"Navigation"_s}) << true;
    QTest::newRow("among others") << QStringList(
        {u"TextEditing"_s, u"Navigation"_s, u"Appearance"_s})
                                  << true;
    QTest::newRow("TextEditing") << QStringList({u"TextEditing"_s}) << false;
    QTest::newRow("other case") << QStringList({u"general"_s}) << false;
    QTest::newRow("a part") << QStringList({u"GeneralOptions"_s}) << false;
    QTest::newRow("none") << QStringList() << false;
}

void TstLifecycle::onlySomeGroupsOfOptionsMatter()
{
    QFETCH(const QStringList, groups);
    QFETCH(const bool, areTaken);
    const auto model = blankModel();
    {
        const QSignalBlocker blocker(tvlOptions());
        tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 55);
    }
    QCOMPARE(model->autoSaveSeconds(), 10);
    Q_EMIT tvlOptions()->groupsChanged(groups);
    QCOMPARE(model->autoSaveSeconds(), areTaken ? 55 : 10);
}

// --- Save as

void TstLifecycle::saveAsMovesTheModelToTheNewPlace()
{
    for (const bool showProgress : {false, true}) {
        const TestProject project;
        const auto model = project.create();
        project.writeFile(u"Files/Docs/3.rtf"_s, "text");
        const auto oldFiles = project.files();
        const QString target = project.enclosingPath() + u"/deep/Copy.tavel"_s;
        const TVLUnattendedMessageBoxes boxes;
        QVERIFY(model->saveAs(target, showProgress, true));
        QCOMPARE(boxes.boxes().size(), 0);
        QCOMPARE(model->path(), QDir(target));
        QCOMPARE(model->name(), u"Copy"_s);
        QVERIFY(model->isSaved());
        QCOMPARE(TVLProjectModel::findProjectModelViaPath(target), model.get());
        QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), nullptr);
        QCOMPARE(project.files(), oldFiles);
        QVERIFY(QFileInfo::exists(target + u"/Files/Docs/3.rtf"_s));
        QCOMPARE(Format::compareLockFile(target, nullptr, nullptr, nullptr),
                 int(Format::LockedHere));

        // From now on it is the new place that is written.
        QVERIFY(model->setTitle(firstText(model.get()), u"later"_s));
        QVERIFY(model->save(false));
        QCOMPARE(project.files(), oldFiles);
        const TestModel reopened(Format::openProject(target));
        QVERIFY(reopened);
        QCOMPARE(reopened->title(firstText(reopened.get())), u"later"_s);
    }
}

void TstLifecycle::saveAsNamesTheBinderOfAModifiedProjectAfterItsFolder()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->setTitle(firstText(model.get()), u"unsaved"_s));
    roundTimes(model.get());
    const auto oldFiles = project.files();
    const QString target = project.enclosingPath() + u"/Copy.tavel"_s;
    QVERIFY(model->saveAs(target, false, true));
    QVERIFY(QFileInfo::exists(target + u"/Copy.tavelx"_s));
    QVERIFY(!QFileInfo::exists(target + u"/Novel.tavelx"_s));
    QCOMPARE(project.files(), oldFiles);
    QVERIFY(model->isSaved());
    const TestModel reopened(Format::openProject(target));
    QVERIFY(reopened);
    QCOMPARE(difference(model.get(), reopened.get()), QString());
}

void TstLifecycle::saveAsTreatsTheOldLockAsTold_data()
{
    QTest::addColumn<bool>("removeOldLock");
    QTest::newRow("kept") << false;
    QTest::newRow("removed") << true;
}

void TstLifecycle::saveAsTreatsTheOldLockAsTold()
{
    QFETCH(const bool, removeOldLock);
    const TestProject project;
    const auto model = project.create();
    QVERIFY(Format::addLock(project.path()));
    const QString target = project.enclosingPath() + u"/Copy.tavel"_s;
    QVERIFY(model->saveAs(target, false, removeOldLock));
    QCOMPARE(Format::lockExists(project.path()), !removeOldLock);
    QCOMPARE(Format::compareLockFile(target, nullptr, nullptr, nullptr), int(Format::LockedHere));
}

void TstLifecycle::saveAsReplacesWhatIsThere_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("folder") << true;
    QTest::newRow("file") << false;
}

void TstLifecycle::saveAsReplacesWhatIsThere()
{
    QFETCH(const bool, isFolder);
    const TestProject project;
    const TestProject target;
    if (isFolder)
        target.writeFile(u"Files/Docs/old.rtf"_s, "old");
    else
        QVERIFY(QFile(target.path()).open(QIODevice::WriteOnly));
    const auto model = project.create();
    QVERIFY(model->saveAs(target.path(), false, true));
    QVERIFY(!QFileInfo::exists(target.path(u"Files/Docs/old.rtf"_s)));
    QVERIFY(target.open());
    QCOMPARE(model->path(), QDir(target.path()));
}

void TstLifecycle::saveAsOntoTheProjectItselfIsRefused_data()
{
    // %1 stands for the folder around the project.
    QTest::addColumn<QString>("target");
    QTest::newRow("the project") << u"%1/Novel.tavel"_s;
    QTest::newRow("the project with a slash") << u"%1/Novel.tavel/"_s;
    QTest::newRow("the project in a roundabout way") << u"%1/Novel.tavel/../Novel.tavel"_s;
    QTest::newRow("its binder") << u"%1/Novel.tavel/Novel.tavelx"_s;
    QTest::newRow("inside it") << u"%1/Novel.tavel/Copy.tavel"_s;
    QTest::newRow("its files") << u"%1/Novel.tavel/Files"_s;
    QTest::newRow("deep inside it") << u"%1/Novel.tavel/Files/Docs/Copy.tavel"_s;
    QTest::newRow("around it") << u"%1"_s;
    QTest::newRow("around it with a slash") << u"%1/"_s;
}

void TstLifecycle::saveAsOntoTheProjectItselfIsRefused()
{
    QFETCH(const QString, target);
    const TestProject project;
    const auto model = project.create();
    QVERIFY(Format::addLock(project.path()));
    const auto before = project.files();
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->saveAs(target.arg(project.enclosingPath()), false, true));
    QCOMPARE(project.files(), before);
    QCOMPARE(model->path(), QDir(project.path()));
    QCOMPARE(model->name(), u"Novel"_s);
    QCOMPARE(boxes.boxes().size(), 0);
    QVERIFY(project.open());
}

void TstLifecycle::saveAsThroughALinkToTheProjectsFolderIsRefused()
{
    const TestProject project;
    const auto model = project.create();
    const auto before = project.files();
    const QTemporaryDir elsewhere;
    const QString link = elsewhere.filePath(u"link"_s);
    QVERIFY(QFile::link(project.enclosingPath(), link));
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->saveAs(link + u"/Novel.tavel"_s, false, true));
    QCOMPARE(project.files(), before);
    QVERIFY(!model->saveAs(link + u"/Novel.tavel/Copy.tavel"_s, false, true));
    QCOMPARE(project.files(), before);
    QCOMPARE(model->path(), QDir(project.path()));
}

void TstLifecycle::saveAsNowhereIsRefused()
{
    const TestProject project;
    const auto model = project.create();
    const auto before = project.files();
    QVERIFY(!model->saveAs(QString(), false, true));
    QCOMPARE(project.files(), before);
    QCOMPARE(model->path(), QDir(project.path()));
}

void TstLifecycle::aFailedSaveAsLeavesTheModelAndHasTakenTheTarget()
{
    // A project that was never written has nothing to copy.
    const TestProject project;
    const TestProject target;
    target.writeFile(u"Files/Docs/old.rtf"_s, "old");
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(project.path()));
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!model->saveAs(target.path(), false, true));
    QVERIFY(!QFileInfo::exists(target.path()));
    QCOMPARE(model->path(), QDir(project.path()));
    QCOMPARE(model->name(), u"Novel"_s);
    QVERIFY(!Format::lockExists(target.path()));
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), model.get());
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, u"Read Error"_s);
    QCOMPARE(boxes.boxes().at(0).text,
             u"Cannot read the location: '%1'"_s.arg(QDir::toNativeSeparators(project.path())));
}

// --- Ending

void TstLifecycle::prepareToDestroySavesAndUnlocks()
{
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(Format::addLock(project.path()));
        QVERIFY(model->setTitle(firstText(model.get()), u"last words"_s));
        model->prepareToDestroy();
        QVERIFY(model->isSaved());
        QVERIFY(!Format::lockExists(project.path()));
    }
    const auto model = project.open();
    QCOMPARE(model->title(firstText(model.get())), u"last words"_s);

    QVERIFY(model->save(true));
    const auto before = project.files();
    model->prepareToDestroy();
    QCOMPARE(project.files(), before);
}

void TstLifecycle::prepareToDestroyRemovesTheDragAndDropFolder()
{
    const QString path = TVLProjectModel::dragAndDropPath();
    QCOMPARE(path,
             QDir::toNativeSeparators(QFileInfo(QDir::tempPath()).absoluteFilePath()
                                      + u"/Tavelinor/DnD"_s));
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QDir().mkpath(path + u"/something"_s));
    model->prepareToDestroy();
    QVERIFY(!QFileInfo::exists(path));
}

void TstLifecycle::aNewModelCleansUpTheDragAndDropFolderLater()
{
    const QString path = TVLProjectModel::dragAndDropPath();
    QVERIFY(QDir().mkpath(path + u"/something"_s));
    const auto model = blankModel();
    QVERIFY(QFileInfo::exists(path));
    QTRY_VERIFY(!QFileInfo::exists(path));

    // Only what was there when the model came is left over from an earlier run.
    const auto later = blankModel();
    QVERIFY(QDir().mkpath(path));
    QCoreApplication::processEvents();
    QVERIFY(QFileInfo::exists(path));
    QVERIFY(QDir(path).removeRecursively());
}

void TstLifecycle::aModelIsFoundByFolderAndByBinder()
{
    const TestProject project;
    const TestProject other;
    const auto model = project.create();
    const auto otherModel = other.create();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), model.get());
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.binderPath()), model.get());
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(other.path()), otherModel.get());
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.enclosingPath()), nullptr);
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path(u"Files"_s)), nullptr);
    const auto opened = TestProject(u"Third"_s).open();
    QVERIFY(opened);
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(opened->path().path()), opened.get());
}

void TstLifecycle::theFirstOfSeveralModelsIsFound()
{
    const TestProject project;
    const auto first = project.create();
    const auto second = project.open();
    const auto third = project.open();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), first.get());
    first->prepareToDestroy();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), second.get());
    second->prepareToDestroy();
    second->prepareToDestroy();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), third.get());
}

void TstLifecycle::aModelIsNotFoundAfterItsEnd()
{
    const TestProject project;
    const auto model = project.create();
    model->prepareToDestroy();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), nullptr);
}

void TstLifecycle::aDeletedModelIsNotFound()
{
    const TestProject project;
    auto first = project.create();
    const auto second = project.open();
    first.reset();
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), second.get());
    {
        const auto third = project.open();
    }
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), second.get());
}

TVL_TEST(TstLifecycle)
#include "tst_lifecycle.moc"
