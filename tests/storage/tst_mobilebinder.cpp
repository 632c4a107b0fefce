#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFileInfo>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

const QString SyncFile = u"Mobile/binder.sync"_s;

/** A name and how many minutes old the file is; its content is its name. */
using Ages = QList<QPair<QString, int>>;

QByteArray mobileBinder()
{
    return binderXml(itemXml(0, "DraftFolder", "Draft", itemXml(1, "Text", "On the road")));
}

} // namespace

class TstMobileBinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMobileProjectOpensFromItsBinder_data();
    void aMobileProjectOpensFromItsBinder();
    void openingAMobileProjectChangesNothing();
    void withoutAReadableMobileBinderThereIsNoMobileProject_data();
    void withoutAReadableMobileBinderThereIsNoMobileProject();
    void aFailedOpenLeavesNothingWithItsParent();
    void aMobileProjectIsSavedToItsOwnBinderAlone();

    void aBinderFileMayPointToTheMobileBinder_data();
    void aBinderFileMayPointToTheMobileBinder();
    void aMissingBinderFilePointsNowhere();

    void oneSyncFileIsLeft_data();
    void oneSyncFileIsLeft();
    void withoutAMobileFolderThereIsNothingToDo();
    void aFolderOfThatNameMakesTheRenameFail();
    void otherFilesOfTheMobileFolderStay();
};

void TstMobileBinder::aMobileProjectOpensFromItsBinder_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("binder") << u"/Novel.tavelx"_s;
}

void TstMobileBinder::aMobileProjectOpensFromItsBinder()
{
    QFETCH(QString, suffix);

    const TestProject project;
    project.writeFile(SyncFile, mobileBinder());
    project.writeFile(u"Novel.tavelx"_s, binderXml(itemXml(7, "DraftFolder", "At home")));
    QPointer<TVLProjectModel> model;
    {
        QObject parent;
        QString error;
        model = Format::openMobileSyncProject(project.path() + suffix, &parent, &error);
        QVERIFY(model);
        QVERIFY(error.isEmpty());
        QCOMPARE(model->QObject::parent(), &parent);
        QVERIFY(model->isMobileProject());
        QCOMPARE(model->path().path(), project.path());
        QCOMPARE(outlineOf(model), (QStringList{u"0 Draft"_s, u" 1 On the road"_s}));
        QVERIFY(mapsAgreeWithTree(model));
        QVERIFY(model->isSaved());
    }
    QVERIFY(!model);
}

void TstMobileBinder::openingAMobileProjectChangesNothing()
{
    const TestProject project;
    project.writeFile(SyncFile, mobileBinder());
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Novel.tavelx"_s, binderXml({}));
    const Files before = project.files();
    const TestModel model(Format::openMobileSyncProject(project.path(), nullptr));
    QVERIFY(model);
    QCOMPARE(project.files(), before);
}

void TstMobileBinder::withoutAReadableMobileBinderThereIsNoMobileProject_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");

    const QByteArray binder = mobileBinder();
    QTest::newRow("no mobile folder") << u"Files/version.txt"_s << QByteArray("18");
    QTest::newRow("other name") << u"Mobile/other.sync"_s << binder;
    QTest::newRow("a folder") << u"Mobile/binder.sync/file"_s << binder;
    QTest::newRow("empty") << SyncFile << QByteArray("");
    QTest::newRow("cut off") << SyncFile << binder.first(binder.indexOf("the road"));
    QTest::newRow("nonsense") << SyncFile << QByteArray("nonsense");
    QTest::newRow("a zip") << SyncFile << zipOf(u"binder.sync"_s, binder);
}

void TstMobileBinder::withoutAReadableMobileBinderThereIsNoMobileProject()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Novel.tavelx"_s, binderXml({}));
    project.writeFile(file, content);
    const Files before = project.files();
    QString error;
    QVERIFY(!Format::openMobileSyncProject(project.path(), nullptr, &error));
    QVERIFY(error.isEmpty());
    QVERIFY(!Format::openMobileSyncProject(project.path(), nullptr));
    QCOMPARE(project.files(), before);
}

void TstMobileBinder::aFailedOpenLeavesNothingWithItsParent()
{
    const TestProject project;
    project.writeFile(SyncFile, "nonsense");
    QObject parent;
    QVERIFY(!Format::openMobileSyncProject(project.path(), &parent));
    QVERIFY(parent.children().isEmpty());
    QVERIFY(!TVLProjectModel::findProjectModelViaPath(project.path()));
}

void TstMobileBinder::aMobileProjectIsSavedToItsOwnBinderAlone()
{
    const TestProject project;
    project.writeFile(SyncFile, mobileBinder());
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Novel.tavelx"_s, binderXml({}));
    Files expected = project.files();
    expected.remove(SyncFile);
    const TestModel model(Format::openMobileSyncProject(project.path(), nullptr));
    QVERIFY(model);
    QVERIFY(model->setTitle(model->index(1), u"Back home"_s));
    QVERIFY(model->save());
    Files after = project.files();
    QVERIFY(after.take(SyncFile).contains("<Title>Back home</Title>"));
    QCOMPARE(after, expected);
}

void TstMobileBinder::aBinderFileMayPointToTheMobileBinder_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("points");

    QTest::newRow("pointer") << QByteArray("mobile/binder.sync") << true;
    QTest::newRow("pointer with a slash") << QByteArray("/mobile/binder.sync") << true;
    QTest::newRow("line end") << QByteArray("mobile/binder.sync\n") << true;
    QTest::newRow("line end of two characters") << QByteArray("/mobile/binder.sync\r\n") << true;
    QTest::newRow("more lines") << QByteArray("mobile/binder.sync\nanything") << true;
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbfmobile/binder.sync") << true;
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe", 2)
            + QByteArray(reinterpret_cast<const char *>(u"mobile/binder.sync"), 36)
                            << true;
    QTest::newRow("second line") << QByteArray("\nmobile/binder.sync") << false;
    QTest::newRow("blank in front") << QByteArray(" mobile/binder.sync") << false;
    QTest::newRow("blank behind") << QByteArray("mobile/binder.sync ") << false;
    QTest::newRow("capital") << QByteArray("Mobile/binder.sync") << false;
    QTest::newRow("two slashes") << QByteArray("//mobile/binder.sync") << false;
    QTest::newRow("longer line") << QByteArray("mobile/binder.sync") + QByteArray(100, 'x')
                                 << false;
    QTest::newRow("binder") << mobileBinder() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("one endless line") << QByteArray(3'000'000, 'x') << false;
}

void TstMobileBinder::aBinderFileMayPointToTheMobileBinder()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, points);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, content);
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()})
        QCOMPARE(Format::isNewMobileProjectTavelxContents(path), points);
}

void TstMobileBinder::aMissingBinderFilePointsNowhere()
{
    const TestProject project;
    QVERIFY(!Format::isNewMobileProjectTavelxContents(project.path()));
    project.writeFile(u"Novel.tavelx/file"_s, "mobile/binder.sync");
    QVERIFY(!Format::isNewMobileProjectTavelxContents(project.path()));
}

void TstMobileBinder::oneSyncFileIsLeft_data()
{
    QTest::addColumn<Ages>("files");
    QTest::addColumn<QByteArray>("survivor");

    const QString right = u"binder.sync"_s;
    const QString a = u"a.sync"_s;
    const QString z = u"z (conflict).sync"_s;
    QTest::newRow("none") << Ages() << QByteArray();
    QTest::newRow("the right one") << Ages{{right, 5}} << QByteArray("binder.sync");
    QTest::newRow("one of another name") << Ages{{a, 5}} << QByteArray("a.sync");
    QTest::newRow("the right one is the oldest")
        << Ages{{a, 1}, {right, 9}, {z, 2}} << QByteArray("binder.sync");
    QTest::newRow("the right one is the newest")
        << Ages{{a, 5}, {right, 1}, {z, 9}} << QByteArray("z (conflict).sync");
    QTest::newRow("the right one is missing") << Ages{{a, 9}, {z, 2}} << QByteArray("a.sync");
}

void TstMobileBinder::oneSyncFileIsLeft()
{
    QFETCH(Ages, files);
    QFETCH(QByteArray, survivor);

    for (const QString &suffix : {QString(), u"/"_s, u"/Novel.tavelx"_s}) {
        const TestProject project;
        QVERIFY(QDir().mkpath(project.path(u"Mobile"_s)));
        for (const auto &[name, minutes] : std::as_const(files)) {
            project.writeFile(u"Mobile/"_s + name, name.toUtf8());
            setAge(project.path(u"Mobile/"_s + name), minutes);
        }
        const Files expected = files.isEmpty() ? Files() : Files{{SyncFile, survivor}};
        for (int pass = 0; pass < 2; ++pass) {
            QVERIFY(Format::ensureMobileBinderSyncFileName(project.path() + suffix));
            QCOMPARE(project.files(), expected);
        }
    }
}

void TstMobileBinder::withoutAMobileFolderThereIsNothingToDo()
{
    const TestProject project;
    QVERIFY(Format::ensureMobileBinderSyncFileName(project.path()));
    QVERIFY(!QFileInfo::exists(project.path()));
    project.writeFile(u"Mobile"_s, "a file in place of the folder");
    QVERIFY(Format::ensureMobileBinderSyncFileName(project.path()));
    QCOMPARE(project.files().keys(), QStringList(u"Mobile"_s));
}

void TstMobileBinder::aFolderOfThatNameMakesTheRenameFail()
{
    const TestProject project;
    project.writeFile(u"Mobile/binder.sync/file"_s, "in a folder");
    project.writeFile(u"Mobile/a.sync"_s, "a");
    const Files before = project.files();
    QVERIFY(!Format::ensureMobileBinderSyncFileName(project.path()));
    QCOMPARE(project.files(), before);
}

void TstMobileBinder::otherFilesOfTheMobileFolderStay()
{
    const TestProject project;
    project.writeFile(u"Mobile/a.sync"_s, "a");
    project.writeFile(u"Mobile/search.indexes"_s, "index");
    project.writeFile(u"Mobile/a.sync.bak"_s, "backup");
    project.writeFile(u"Mobile/Data/b.sync"_s, "data");
    Files expected = project.files();
    expected.insert(SyncFile, expected.take(u"Mobile/a.sync"_s));
    QVERIFY(Format::ensureMobileBinderSyncFileName(project.path()));
    QCOMPARE(project.files(), expected);
}

TVL_TEST(TstMobileBinder)
#include "tst_mobilebinder.moc"
