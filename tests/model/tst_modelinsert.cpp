#include "ModelChecks.h"
#include "TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 LongestTestMs = 60 * 1000;

QStringList insertedTitles(const TVLProjectModel *model, const QModelIndex &parent)
{
    QStringList found;
    for (int row = 0; row < model->rowCount(parent); ++row)
        found.append(model->title(model->index(row, 0, parent)));
    return found;
}

bool isNow(const QDateTime &time)
{
    return time.isValid() && qAbs(time.msecsTo(QDateTime::currentDateTime())) < LongestTestMs;
}

} // namespace

class TstModelInsert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anInsertedItemIsAsTold();
    void anInsertedItemWithoutTitleIsUntitled();
    void anInsertedItemGetsTheDefaultLabelAndStatus();
    void anItemIsInsertedAtItsRow_data();
    void anItemIsInsertedAtItsRow();
    void anInvalidParentIsTheRoot_data();
    void anInvalidParentIsTheRoot();
    void insertingAnItemMarksNothing();
    void insertingAnItemAnnouncesTheRow();
    void topLevelRowsAreAnnouncedWithADefaultParent();
    void itemsMayBeInsertedInTheTrashFolderOneByOne();
    void aUserFolderIsAFolder();
    void rowsAreInsertedWhereTheyMay_data();
    void rowsAreInsertedWhereTheyMay();
    void rowsAreRefusedInTheTrash_data();
    void rowsAreRefusedInTheTrash();
    void rowsAreRefusedInAnotherModel();
    void insertedRowsAreUntitledTextsWithDefaults();
    void severalRowsAreAllMadeAtTheSameRow();
    void insertedRowsAreAnnouncedAtOnce();
    void insertedRowsMarkTheProject();
    void insertedItemsAreInTheMaps();
    void deepAndWideTreesGrowUnderTheTester();
};

void TstModelInsert::anInsertedItemIsAsTold()
{
    const auto model = blankModel();
    const TVLProjectNode *node =
        model->insertNode(-1, model->researchFolder(), TVL::PDF, u"pdf"_s, u"Paper"_s);
    QCOMPARE(node->mTitle, u"Paper"_s);
    QCOMPARE(int(node->mNodeType), int(TVL::PDF));
    QCOMPARE(node->mFileExtension, u"pdf"_s);
    QCOMPARE(node->mId, 4);
    QVERIFY(!node->mUuid.isNull());
    QVERIFY(isNow(node->mCreated));
    QVERIFY(isNow(node->mModified));
    QCOMPARE(node->mParent, model->projectNode(model->researchFolder()));
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstModelInsert::anInsertedItemWithoutTitleIsUntitled()
{
    const auto model = blankModel();
    const TVLProjectNode *node =
        model->insertNode(-1, QModelIndex(), TVL::Text, QString(), QString());
    QCOMPARE(node->mTitle, u"Untitled"_s);
}

void TstModelInsert::anInsertedItemGetsTheDefaultLabelAndStatus()
{
    const auto model = blankModel();
    model->setDefaultLabelIdentity(1);
    model->setDefaultStatusIdentity(3);
    const TVLProjectNode *node = model->insertNode(-1, QModelIndex(), TVL::Text, QString(), u"x"_s);
    QCOMPARE(node->mLabelId, 1);
    QCOMPARE(node->mStatusId, 3);
    const QModelIndex folder = model->insertUserFolder(-1, QModelIndex(), u"x"_s);
    QCOMPARE(model->labelIdentity(folder), 1);
    QCOMPARE(model->statusIdentity(folder), 3);
}

void TstModelInsert::anItemIsInsertedAtItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("first") << 0 << QStringList({u"new"_s, u"a"_s, u"b"_s});
    QTest::newRow("in between") << 1 << QStringList({u"a"_s, u"new"_s, u"b"_s});
    QTest::newRow("behind the last") << 2 << QStringList({u"a"_s, u"b"_s, u"new"_s});
    QTest::newRow("at the end") << -1 << QStringList({u"a"_s, u"b"_s, u"new"_s});
}

void TstModelInsert::anItemIsInsertedAtItsRow()
{
    QFETCH(const int, row);
    QFETCH(const QStringList, expected);
    const auto model = blankModel();
    const QModelIndex research = model->researchFolder();
    addItem(model.get(), research, TVL::Text, u"a"_s);
    addItem(model.get(), research, TVL::Text, u"b"_s);
    const TVLProjectNode *node = model->insertNode(row, research, TVL::Text, QString(), u"new"_s);
    QCOMPARE(insertedTitles(model.get(), research), expected);
    QCOMPARE(model->title(model->createIndex(node)), u"new"_s);
}

void TstModelInsert::anInvalidParentIsTheRoot_data()
{
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("default index") << true;
    QTest::newRow("root index") << false;
}

void TstModelInsert::anInvalidParentIsTheRoot()
{
    QFETCH(const bool, isDefault);
    const auto model = blankModel();
    const QModelIndex parent = isDefault ? QModelIndex() : model->rootIndex();
    const QModelIndex folder = model->insertUserFolder(1, parent, u"new"_s);
    QCOMPARE(folder, model->index(1, 0));
    QVERIFY(model->insertRows(-1, 1, parent));
    QCOMPARE(insertedTitles(model.get(), QModelIndex()),
             QStringList({u"Draft"_s, u"new"_s, u"Research"_s, u"Trash"_s, QString()}));
}

void TstModelInsert::insertingAnItemMarksNothing()
{
    const auto model = blankModel();
    model->insertNode(-1, QModelIndex(), TVL::Text, QString(), u"x"_s);
    model->insertUserFolder(-1, QModelIndex(), u"x"_s);
    QVERIFY(model->isSaved());
}

void TstModelInsert::insertingAnItemAnnouncesTheRow()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->insertNode(0, model->draftFolder(), TVL::Text, QString(), u"x"_s);
    model->insertNode(-1, model->draftFolder(), TVL::Text, QString(), u"x"_s);
    QCOMPARE(log.lines(),
             QStringList({u"rows 0-0 below 0 to come"_s, u"rows 0-0 below 0"_s,
                          u"rows 2-2 below 0 to come"_s, u"rows 2-2 below 0"_s}));
}

void TstModelInsert::topLevelRowsAreAnnouncedWithADefaultParent()
{
    const auto model = blankModel();
    QSignalSpy aboutToInsert(model.get(), &TVLProjectModel::rowsAboutToBeInserted);
    QSignalSpy inserted(model.get(), &TVLProjectModel::rowsInserted);
    model->insertNode(-1, model->rootIndex(), TVL::Text, QString(), u"x"_s);
    QVERIFY(model->insertRows(0, 2, model->rootIndex()));
    QCOMPARE(aboutToInsert.count(), 2);
    QCOMPARE(inserted.count(), 2);
    for (const QSignalSpy *spy : {&aboutToInsert, &inserted}) {
        QCOMPARE(spy->at(0).at(0).toModelIndex(), QModelIndex());
        QCOMPARE(spy->at(0).at(1).toInt(), 3);
        QCOMPARE(spy->at(0).at(2).toInt(), 3);
        QCOMPARE(spy->at(1).at(0).toModelIndex(), QModelIndex());
        QCOMPARE(spy->at(1).at(1).toInt(), 0);
        QCOMPARE(spy->at(1).at(2).toInt(), 1);
    }
}

void TstModelInsert::itemsMayBeInsertedInTheTrashFolderOneByOne()
{
    const auto model = blankModel();
    const QModelIndex item = addItem(model.get(), model->trashFolder(), TVL::Text);
    QVERIFY(model->trashContains(item));
}

void TstModelInsert::aUserFolderIsAFolder()
{
    const auto model = blankModel();
    const QModelIndex folder = model->insertUserFolder(0, model->draftFolder(), u"Part One"_s);
    QCOMPARE(folder, model->index(0, 0, model->draftFolder()));
    QCOMPARE(int(model->type(folder)), int(TVL::Folder));
    QCOMPARE(model->title(folder), u"Part One"_s);
    QCOMPARE(model->projectNode(folder)->mFileExtension, QString());
    QCOMPARE(model->title(model->insertUserFolder(0, folder, QString())), u"Untitled"_s);
}

void TstModelInsert::rowsAreInsertedWhereTheyMay_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isDone");
    QTest::newRow("first") << 0 << 1 << true;
    QTest::newRow("in between") << 1 << 2 << true;
    QTest::newRow("behind the last") << 2 << 1 << true;
    QTest::newRow("at the end") << -1 << 3 << true;
    QTest::newRow("too far") << 3 << 1 << false;
    QTest::newRow("negative") << -2 << 1 << false;
    QTest::newRow("no rows") << 0 << 0 << false;
    QTest::newRow("negative count") << 0 << -1 << false;
}

void TstModelInsert::rowsAreInsertedWhereTheyMay()
{
    QFETCH(const int, row);
    QFETCH(const int, count);
    QFETCH(const bool, isDone);
    for (const bool atTopLevel : {true, false}) {
        const auto model = emptyModel();
        const QModelIndex folder = addItem(model.get(), QModelIndex(), TVL::Folder);
        const QModelIndex parent = atTopLevel ? QModelIndex() : folder;
        while (model->rowCount(parent) < 2)
            addItem(model.get(), parent, TVL::Text);
        const SignalLog log(model.get());
        QCOMPARE(model->insertRows(row, count, parent), isDone);
        QCOMPARE(model->rowCount(parent), isDone ? 2 + count : 2);
        QCOMPARE(model->isModified(), isDone);
        QCOMPARE(log.lines().isEmpty(), !isDone);
        QCOMPARE(mapsOutOfStep(model.get()), QString());
    }
}

void TstModelInsert::rowsAreRefusedInTheTrash_data()
{
    QTest::addColumn<int>("depth");
    QTest::newRow("in the folder") << 0;
    QTest::newRow("inside it") << 1;
    QTest::newRow("deep inside it") << 3;
}

void TstModelInsert::rowsAreRefusedInTheTrash()
{
    QFETCH(const int, depth);
    const auto model = blankModel();
    QModelIndex parent = model->trashFolder();
    for (int i = 0; i < depth; ++i)
        parent = addItem(model.get(), parent, TVL::Folder);
    const SignalLog log(model.get());
    QVERIFY(!model->insertRows(0, 1, parent));
    QVERIFY(!model->insertRows(-1, 1, parent));
    QCOMPARE(model->rowCount(parent), 0);
    QCOMPARE(log.lines(), QStringList());
}

void TstModelInsert::rowsAreRefusedInAnotherModel()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->insertRows(0, 1, other->draftFolder()));
    QCOMPARE(model->totalNodesCount(), 4);
    QCOMPARE(other->totalNodesCount(), 4);
}

void TstModelInsert::insertedRowsAreUntitledTextsWithDefaults()
{
    const auto model = blankModel();
    model->setDefaultLabelIdentity(0);
    model->setDefaultStatusIdentity(2);
    QVERIFY(model->insertRows(1, 2, model->draftFolder()));
    for (const int row : {1, 2}) {
        const QModelIndex index = model->index(row, 0, model->draftFolder());
        QCOMPARE(int(model->type(index)), int(TVL::Text));
        QCOMPARE(model->title(index), QString());
        QCOMPARE(model->data(index), QVariant(u"Untitled"_s));
        QCOMPARE(model->labelIdentity(index), 0);
        QCOMPARE(model->statusIdentity(index), 2);
        QCOMPARE(model->projectNode(index)->mFileExtension, QString());
        QVERIFY(isNow(model->data(index, TVLProjectModel::CreatedRole).toDateTime()));
    }
}

void TstModelInsert::severalRowsAreAllMadeAtTheSameRow()
{
    const auto model = blankModel();
    addItem(model.get(), model->draftFolder(), TVL::Text);
    QVERIFY(model->insertRows(1, 3, model->draftFolder()));
    QCOMPARE(model->projectNode(model->draftFolder())->childIDs(), QList<int>({3, 7, 6, 5, 4}));
}

void TstModelInsert::insertedRowsAreAnnouncedAtOnce()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->insertRows(-1, 3, model->draftFolder()));
    QCOMPARE(log.lines(),
             QStringList({u"rows 1-3 below 0 to come"_s, u"rows 1-3 below 0"_s, u"modified"_s}));
}

void TstModelInsert::insertedRowsMarkTheProject()
{
    const auto model = blankModel();
    QSignalSpy modified(model.get(), &TVLProjectModel::modifiedChanged);
    QVERIFY(model->insertRows(0, 1));
    QVERIFY(model->insertRows(0, 1));
    QVERIFY(model->isModified());
    QCOMPARE(modified.count(), 1);
    QCOMPARE(modified.at(0).at(0).toBool(), true);
}

void TstModelInsert::insertedItemsAreInTheMaps()
{
    for (const TVL::FormatVersion version : {TVL::FormatVersion16, TVL::FormatVersion23}) {
        const auto model = emptyModel(version);
        model->insertUserFolder(-1, QModelIndex(), u"x"_s);
        QCOMPARE(mapsOutOfStep(model.get()), QString());
        QVERIFY(model->insertRows(0, 5, model->index(0, 0)));
        QCOMPARE(mapsOutOfStep(model.get()), QString());
    }
}

void TstModelInsert::deepAndWideTreesGrowUnderTheTester()
{
    const auto model = emptyModel();
    QModelIndex parent;
    for (int i = 0; i < 40; ++i)
        parent = addItem(model.get(), parent, TVL::Text);
    QVERIFY(model->insertRows(0, 200, parent));
    QCOMPARE(model->totalNodesCount(), 240);
    QCOMPARE(recursiveWalk(model.get(), QModelIndex()).size(), 240);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

TVL_TEST(TstModelInsert)
#include "tst_modelinsert.moc"
