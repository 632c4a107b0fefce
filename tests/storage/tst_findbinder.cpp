#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {

using Format = TVLProjectFolderFormat;

/** A name so long that the folder can bear it and the binder, one character longer, cannot. */
QString longestFolderName()
{
    constexpr int LongestFileName = 255;
    return QString(LongestFileName - int(qstrlen(".tavel")), u'n');
}

} // namespace

class TstFindBinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMissingFolderGivesTheDefaultName();
    void anEmptyFolderGivesTheDefaultName();
    void theDefaultNameWinsAndNothingIsRenamed();
    void anOlderBinderIsRenamedToItsDefaultNameByTheFirstLook();
    void anOlderBinderComesBeforeANewerOne();
    void aBinderOfAnotherNameIsRenamed();
    void ofTwoOtherBindersTheNewestIsRenamedAndTheOtherStays();
    void aSecondLookChangesNothing();
    void aTrailingSlashIsTolerated();
    void aPathWithoutANameOfItsOwnStandsForItsFolder_data();
    void aPathWithoutANameOfItsOwnStandsForItsFolder();
    void aBinderPathThatExistsIsItself();
    void aBinderPathThatDoesNotExistIsNotHealed();
    void otherFilesAreNoBinders();
    void aFolderUnderTheDefaultNameIsNotRenamedOver();
    void aFailedRenameGivesTheOldName_data();
    void aFailedRenameGivesTheOldName();
    void aLinkToNowhereUnderTheDefaultNameMakesTheRenameFail();

    void theNewestBinderIsFoundByItsTime();
    void theNewestBinderIsAFile();
    void withoutBindersThereIsNoNewestOne();
};

void TstFindBinder::aMissingFolderGivesTheDefaultName()
{
    const TestProject project;
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstFindBinder::anEmptyFolderGivesTheDefaultName()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path()));
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QVERIFY(QDir(project.path()).isEmpty());
}

void TstFindBinder::theDefaultNameWinsAndNothingIsRenamed()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_qs, "default");
    project.writeFile(u"project.tavelx"_qs, "older");
    project.writeFile(u"Other.tavelx"_qs, "other");
    setAge(project.path(u"Novel.tavelx"_qs), 10);
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::anOlderBinderIsRenamedToItsDefaultNameByTheFirstLook()
{
    const TestProject project(u"My Novel"_qs);
    project.writeFile(u"project.tavelx"_qs, "older");
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.path(u"My Novel.tavelx"_qs));
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{u"My Novel.tavelx"_qs, "older"}}));
}

void TstFindBinder::anOlderBinderComesBeforeANewerOne()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_qs, "older");
    project.writeFile(u"Other.tavelx"_qs, "other");
    setAge(project.path(u"project.tavelx"_qs), 10);
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(
        project.files(),
        (QMap<QString, QByteArray>{{u"Novel.tavelx"_qs, "older"}, {u"Other.tavelx"_qs, "other"}}));
}

void TstFindBinder::aBinderOfAnotherNameIsRenamed()
{
    const TestProject project;
    project.writeFile(u"Other.tavelx"_qs, "other");
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{u"Novel.tavelx"_qs, "other"}}));
}

void TstFindBinder::ofTwoOtherBindersTheNewestIsRenamedAndTheOtherStays()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_qs, "a");
    project.writeFile(u"B.tavelx"_qs, "b");
    project.writeFile(u"C.tavelx"_qs, "c");
    setAge(project.path(u"A.tavelx"_qs), 10);
    setAge(project.path(u"B.tavelx"_qs), 1);
    setAge(project.path(u"C.tavelx"_qs), 20);
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(),
             (QMap<QString, QByteArray>{
                 {u"A.tavelx"_qs, "a"}, {u"C.tavelx"_qs, "c"}, {u"Novel.tavelx"_qs, "b"}}));
}

void TstFindBinder::aSecondLookChangesNothing()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_qs, "a");
    project.writeFile(u"B.tavelx"_qs, "b");
    setAge(project.path(u"A.tavelx"_qs), 10);
    (void)Format::findOpenBinderFilePath(project.path());
    const auto after = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), after);
}

void TstFindBinder::aTrailingSlashIsTolerated()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_qs, "older");
    QCOMPARE(Format::findOpenBinderFilePath(project.path() + u'/'), project.binderPath());
    QCOMPARE(project.files().keys(), QStringList(u"Novel.tavelx"_qs));
}

void TstFindBinder::aPathWithoutANameOfItsOwnStandsForItsFolder_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("dot") << u"/."_qs;
    QTest::newRow("dot dot") << u"/Files/.."_qs;
    QTest::newRow("slashes") << u"//"_qs;
}

void TstFindBinder::aPathWithoutANameOfItsOwnStandsForItsFolder()
{
    QFETCH(const QString, suffix);
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_qs, "the binder");
    project.writeFile(u"Files/version.txt"_qs, "18");
    const auto before = project.files();
    const QString path = project.path() + suffix;
    QCOMPARE(Format::calcEnclosingPath(path), project.path());
    QCOMPARE(Format::defaultBinderFilePath(path), project.binderPath());
    QCOMPARE(Format::findOpenBinderFilePath(path), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aBinderPathThatExistsIsItself()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_qs, "default");
    project.writeFile(u"Other.tavelx"_qs, "other");
    const auto before = project.files();
    for (const QString &name : {u"Novel.tavelx"_qs, u"Other.tavelx"_qs})
        QCOMPARE(Format::findOpenBinderFilePath(project.path(name)), project.path(name));
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aBinderPathThatDoesNotExistIsNotHealed()
{
    const TestProject project;
    project.writeFile(u"Other.tavelx"_qs, "other");
    QCOMPARE(Format::findOpenBinderFilePath(project.binderPath()), project.binderPath());
    QCOMPARE(project.files().keys(), QStringList(u"Other.tavelx"_qs));
}

void TstFindBinder::otherFilesAreNoBinders()
{
    const TestProject project;
    project.writeFile(u"Novel.txt"_qs, "text");
    project.writeFile(u"Novel.tavel"_qs, "text");
    project.writeFile(u"Novel.tavelx.bak"_qs, "text");
    project.writeFile(u"Files/Novel.tavelx"_qs, "text");
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aFolderUnderTheDefaultNameIsNotRenamedOver()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx/file"_qs, "in a folder");
    project.writeFile(u"project.tavelx"_qs, "older");
    project.writeFile(u"Other.tavelx"_qs, "other");
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aFailedRenameGivesTheOldName_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("older name") << u"project.tavelx"_qs;
    QTest::newRow("other name") << u"Other.tavelx"_qs;
}

void TstFindBinder::aFailedRenameGivesTheOldName()
{
    QFETCH(QString, name);

    const TestProject project(longestFolderName());
    project.writeFile(name, "binder");
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.path(name));
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{name, "binder"}}));
}

void TstFindBinder::aLinkToNowhereUnderTheDefaultNameMakesTheRenameFail()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_qs, "older");
    QVERIFY(QFile::link(project.path(u"nowhere/file"_qs), project.binderPath()));
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.path(u"project.tavelx"_qs));
    QCOMPARE(project.readFile(u"project.tavelx"_qs), QByteArray("older"));
    QVERIFY(QFileInfo(project.binderPath()).isSymLink());
}

void TstFindBinder::theNewestBinderIsFoundByItsTime()
{
    const TestProject project;
    for (const QString &name : {u"A.tavelx"_qs, u"B.tavelx"_qs, u"C.tavelx"_qs})
        project.writeFile(name, {});
    setAge(project.path(u"A.tavelx"_qs), 2);
    setAge(project.path(u"B.tavelx"_qs), 1);
    setAge(project.path(u"C.tavelx"_qs), 3);
    for (const QString &path :
         {project.path(), project.path() + u'/', project.path(u"A.tavelx"_qs)})
        QCOMPARE(Format::findNewestBinderFilePath(path), project.path(u"B.tavelx"_qs));
}

void TstFindBinder::theNewestBinderIsAFile()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_qs, {});
    setAge(project.path(u"A.tavelx"_qs), 10);
    project.writeFile(u"B.tavelx/file"_qs, {});
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), project.path(u"A.tavelx"_qs));
}

void TstFindBinder::withoutBindersThereIsNoNewestOne()
{
    const TestProject project;
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), QString());
    project.writeFile(u"Novel.txt"_qs, {});
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), QString());
}

TVL_TEST(TstFindBinder)
#include "tst_findbinder.moc"
