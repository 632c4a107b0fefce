#include "FilledProject.h"
#include "ModelChecks.h"
#include "StorageFixtures.h"
#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Ids = QList<int>;

const QString BinderFile = u"Novel.tavelx"_s;

} // namespace

class TstFavoriteSection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    // Favorites
    void favoritesAreReadInTheirOrder();
    void readingFavoritesTouchesNoItem();
    void aFavoriteThatIsNamedTwiceIsOne();
    void favoritesOutsideTheListAreNone();
    void anUnknownFavoriteFailsTheBinder_data();
    void anUnknownFavoriteFailsTheBinder();
    void aFailedReadLeavesTheModelUsable();
    void anUnknownFavoriteMakesTheFallbackCount();
    void removedItemsAreNoFavoritesInTheBinder();
    void favoritesThatWereReadChangeAsOthers();

    // Backups
    void theBackupSectionLeavesTheProjectModified_data();
    void theBackupSectionLeavesTheProjectModified();
    void theIdleSaveFollowsTheBackupSection();
    void aBackupSectionThatWasNotTakenDoesNotCount();
};

void TstFavoriteSection::cleanup()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 10);
}

// --- Favorites

void TstFavoriteSection::favoritesAreReadInTheirOrder()
{
    const auto model = openedWith(favoritesXml({"5", "0", "4"}));
    QVERIFY(model);
    QCOMPARE(model->favoriteIds(), Ids({5, 0, 4}));
    QCOMPARE(model->favorites(),
             QModelIndexList({model->index(5), model->index(0), model->index(4)}));
    for (int id = 0; id <= 6; ++id)
        QCOMPARE(model->isFavorite(model->index(id)), id == 5 || id == 0 || id == 4);
    QVERIFY(model->isSaved());
}

void TstFavoriteSection::readingFavoritesTouchesNoItem()
{
    const auto plain = openedWith({});
    const auto model = openedWith(favoritesXml({"5", "0", "4"}));
    QVERIFY(model && plain);
    for (int id = 0; id <= 6; ++id)
        QCOMPARE(model->lastModified(model->index(id)), plain->lastModified(plain->index(id)));
    // Also one that is moved in the list.
    QCOMPARE(model->lastModified(model->index(5)),
             QDateTime(QDate(2026, 3, 1), QTime(8, 30), Qt::UTC));
}

void TstFavoriteSection::aFavoriteThatIsNamedTwiceIsOne()
{
    const auto model = openedWith(favoritesXml({"5", "4", "5"}));
    QVERIFY(model);
    QCOMPARE(model->favoriteIds(), Ids({4, 5}));
}

void TstFavoriteSection::favoritesOutsideTheListAreNone()
{
    const auto model = openedWith(favoritesXml({"5", "4"}));
    QVERIFY(model);
    model->findNode(6)->mIsFavorite = true;
    model->findNode(5)->mIsFavorite = false;
    QCOMPARE(model->favorites(), QModelIndexList{model->index(4)});
    QCOMPARE(model->favoriteIds(), Ids{4});
}

void TstFavoriteSection::anUnknownFavoriteFailsTheBinder_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("of no item") << QByteArray("99");
    QTest::newRow("minus one") << QByteArray("-1");
    QTest::newRow("far below") << QByteArray("-77");
    QTest::newRow("too large") << QByteArray("99999999999999999999");
}

void TstFavoriteSection::anUnknownFavoriteFailsTheBinder()
{
    QFETCH(const QByteArray, id);
    const TVLUnattendedMessageBoxes boxes;
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(BinderFile, binderXml(someItems(), favoritesXml({"5", id, "4"})));
    const auto before = project.files();
    QVERIFY(!project.open());
    QCOMPARE(project.files(), before);
    QVERIFY(boxes.boxes().isEmpty());

    QByteArray binder = before.value(BinderFile);
    QBuffer buffer(&binder);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const auto model = emptyModel();
    QString error;
    QVERIFY(!Format::readBinder(&buffer, model.get(), &error));
    QCOMPARE(error, QString());
}

void TstFavoriteSection::aFailedReadLeavesTheModelUsable()
{
    QByteArray binder = binderXml(someItems(),
                                  "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>"
                                      + favoritesXml({"5", "99", "4"}));
    QBuffer buffer(&binder);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const auto model = emptyModel();
    QVERIFY(!Format::readBinder(&buffer, model.get(), nullptr));
    // What was read in part must never be saved by itself.
    QVERIFY(model->isSaved());
    QCOMPARE(timersOf(model.get()), 0);
    TVLProjectModelTestAccess::markModified(model.get());
    QVERIFY(model->isModified());
}

void TstFavoriteSection::anUnknownFavoriteMakesTheFallbackCount()
{
    const TestProject project;
    project.writeFile(AutosaveFile,
                      zipOf(BinderFile, binderXml(someItems(), favoritesXml({"4", "3"}))));
    const auto model = openedWith(project, favoritesXml({"5", "99"}));
    QVERIFY(model);
    QCOMPARE(model->favoriteIds(), Ids({4, 3}));
    QVERIFY(!model->isFavorite(model->index(5)));
}

void TstFavoriteSection::removedItemsAreNoFavoritesInTheBinder()
{
    const TestProject project;
    {
        const auto model = openedWith(project, favoritesXml({"5", "6"}));
        QVERIFY(model);
        const TVLUnattendedMessageBoxes boxes;
        QVERIFY(model->moveToFolder(model->trashFolder(), {model->index(5)}, 0));
        QVERIFY(model->emptyTrash());
        QVERIFY(model->save(true));
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->favoriteIds(), Ids{6});
    QVERIFY(model->removeFromFavorites(model->index(6)));
    QVERIFY(model->save(true));
    QVERIFY(!project.readFile(BinderFile).contains("Favorites"));
}

// --- Backups

void TstFavoriteSection::theBackupSectionLeavesTheProjectModified_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<bool>("modified");
    QTest::addColumn<bool>("included");
    QTest::newRow("absent") << QByteArray() << false << true;
    QTest::newRow("excluded") << QByteArray(
        "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>")
                              << true << false;
    QTest::newRow("included") << QByteArray(
        "<BackupSettings><Exclude>No</Exclude></BackupSettings>")
                              << true << true;
    QTest::newRow("empty") << QByteArray("<BackupSettings/>") << true << true;
}

void TstFavoriteSection::theBackupSectionLeavesTheProjectModified()
{
    QFETCH(const QByteArray, section);
    QFETCH(const bool, modified);
    QFETCH(const bool, included);
    const auto model = openedWith(section);
    QVERIFY(model);
    QCOMPARE(model->isModified(), modified);
    QCOMPARE(timersOf(model.get()), modified ? 1 : 0);
    QCOMPARE(model->backupIncluded(), included);
}

void TstFavoriteSection::theIdleSaveFollowsTheBackupSection()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 1);
    const TestProject project;
    const auto model =
        openedWith(project, "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>");
    QVERIFY(model && model->isModified());
    const QByteArray before = project.readFile(BinderFile);
    QTRY_VERIFY_WITH_TIMEOUT(model->isSaved(), PatienceMs);
    QVERIFY(project.readFile(BinderFile) != before);
    QVERIFY(project.readFile(BinderFile).contains("<Exclude>Yes</Exclude>"));
    // It happens once.
    QCOMPARE(timersOf(model.get()), 0);
}

void TstFavoriteSection::aBackupSectionThatWasNotTakenDoesNotCount()
{
    const TestProject project;
    project.writeFile(AutosaveFile, zipOf(BinderFile, binderXml(someItems())));
    const auto model = openedWith(
        project, "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>" + favoritesXml({"99"}));
    QVERIFY(model);
    QVERIFY(model->isSaved());
    QVERIFY(model->backupIncluded());
}

void TstFavoriteSection::favoritesThatWereReadChangeAsOthers()
{
    const TestProject project;
    filledProject(project).reset();
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(model->setFavorite(model->index(5), true, true));
    QCOMPARE(model->favoriteIds(), Ids({3, 4, 5}));
    QVERIFY(model->removeFromFavorites(model->index(4)));
    QCOMPARE(model->favoriteIds(), Ids({3, 5}));
    QVERIFY(!model->isFavorite(model->index(4)));
}

TVL_TEST(TstFavoriteSection)
#include "tst_favoritesection.moc"
