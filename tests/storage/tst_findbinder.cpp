#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

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
    project.writeFile(u"Novel.tavelx"_s, "default");
    project.writeFile(u"project.tavelx"_s, "older");
    project.writeFile(u"Other.tavelx"_s, "other");
    setAge(project.path(u"Novel.tavelx"_s), 10);
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::anOlderBinderIsRenamedToItsDefaultNameByTheFirstLook()
{
    const TestProject project(u"My Novel"_s);
    project.writeFile(u"project.tavelx"_s, "older");
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.path(u"My Novel.tavelx"_s));
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{u"My Novel.tavelx"_s, "older"}}));
}

void TstFindBinder::anOlderBinderComesBeforeANewerOne()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_s, "older");
    project.writeFile(u"Other.tavelx"_s, "other");
    setAge(project.path(u"project.tavelx"_s), 10);
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(
        project.files(),
        (QMap<QString, QByteArray>{{u"Novel.tavelx"_s, "older"}, {u"Other.tavelx"_s, "other"}}));
}

void TstFindBinder::aBinderOfAnotherNameIsRenamed()
{
    const TestProject project;
    project.writeFile(u"Other.tavelx"_s, "other");
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), (QMap<QString, QByteArray>{{u"Novel.tavelx"_s, "other"}}));
}

void TstFindBinder::ofTwoOtherBindersTheNewestIsRenamedAndTheOtherStays()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_s, "a");
    project.writeFile(u"B.tavelx"_s, "b");
    project.writeFile(u"C.tavelx"_s, "c");
    setAge(project.path(u"A.tavelx"_s), 10);
    setAge(project.path(u"B.tavelx"_s), 1);
    setAge(project.path(u"C.tavelx"_s), 20);
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(),
             (QMap<QString, QByteArray>{
                 {u"A.tavelx"_s, "a"}, {u"C.tavelx"_s, "c"}, {u"Novel.tavelx"_s, "b"}}));
}

void TstFindBinder::aSecondLookChangesNothing()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_s, "a");
    project.writeFile(u"B.tavelx"_s, "b");
    setAge(project.path(u"A.tavelx"_s), 10);
    (void)Format::findOpenBinderFilePath(project.path());
    const auto after = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), after);
}

void TstFindBinder::aTrailingSlashIsTolerated()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_s, "older");
    QCOMPARE(Format::findOpenBinderFilePath(project.path() + u'/'), project.binderPath());
    QCOMPARE(project.files().keys(), QStringList(u"Novel.tavelx"_s));
}

void TstFindBinder::aPathWithoutANameOfItsOwnStandsForItsFolder_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("dot") << u"/."_s;
    QTest::newRow("dot dot") << u"/Files/.."_s;
    QTest::newRow("slashes") << u"//"_s;
}

void TstFindBinder::aPathWithoutANameOfItsOwnStandsForItsFolder()
{
    QFETCH(const QString, suffix);
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "the binder");
    project.writeFile(u"Files/version.txt"_s, "18");
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
    project.writeFile(u"Novel.tavelx"_s, "default");
    project.writeFile(u"Other.tavelx"_s, "other");
    const auto before = project.files();
    for (const QString &name : {u"Novel.tavelx"_s, u"Other.tavelx"_s})
        QCOMPARE(Format::findOpenBinderFilePath(project.path(name)), project.path(name));
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aBinderPathThatDoesNotExistIsNotHealed()
{
    const TestProject project;
    project.writeFile(u"Other.tavelx"_s, "other");
    QCOMPARE(Format::findOpenBinderFilePath(project.binderPath()), project.binderPath());
    QCOMPARE(project.files().keys(), QStringList(u"Other.tavelx"_s));
}

void TstFindBinder::otherFilesAreNoBinders()
{
    const TestProject project;
    project.writeFile(u"Novel.txt"_s, "text");
    project.writeFile(u"Novel.tavel"_s, "text");
    project.writeFile(u"Novel.tavelx.bak"_s, "text");
    project.writeFile(u"Files/Novel.tavelx"_s, "text");
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aFolderUnderTheDefaultNameIsNotRenamedOver()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx/file"_s, "in a folder");
    project.writeFile(u"project.tavelx"_s, "older");
    project.writeFile(u"Other.tavelx"_s, "other");
    const auto before = project.files();
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.binderPath());
    QCOMPARE(project.files(), before);
}

void TstFindBinder::aFailedRenameGivesTheOldName_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("older name") << u"project.tavelx"_s;
    QTest::newRow("other name") << u"Other.tavelx"_s;
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
    project.writeFile(u"project.tavelx"_s, "older");
    QVERIFY(QFile::link(project.path(u"nowhere/file"_s), project.binderPath()));
    QCOMPARE(Format::findOpenBinderFilePath(project.path()), project.path(u"project.tavelx"_s));
    QCOMPARE(project.readFile(u"project.tavelx"_s), QByteArray("older"));
    QVERIFY(QFileInfo(project.binderPath()).isSymLink());
}

void TstFindBinder::theNewestBinderIsFoundByItsTime()
{
    const TestProject project;
    for (const QString &name : {u"A.tavelx"_s, u"B.tavelx"_s, u"C.tavelx"_s})
        project.writeFile(name, {});
    setAge(project.path(u"A.tavelx"_s), 2);
    setAge(project.path(u"B.tavelx"_s), 1);
    setAge(project.path(u"C.tavelx"_s), 3);
    for (const QString &path : {project.path(), project.path() + u'/', project.path(u"A.tavelx"_s)})
        QCOMPARE(Format::findNewestBinderFilePath(path), project.path(u"B.tavelx"_s));
}

void TstFindBinder::theNewestBinderIsAFile()
{
    const TestProject project;
    project.writeFile(u"A.tavelx"_s, {});
    setAge(project.path(u"A.tavelx"_s), 10);
    project.writeFile(u"B.tavelx/file"_s, {});
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), project.path(u"A.tavelx"_s));
}

void TstFindBinder::withoutBindersThereIsNoNewestOne()
{
    const TestProject project;
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), QString());
    project.writeFile(u"Novel.txt"_s, {});
    QCOMPARE(Format::findNewestBinderFilePath(project.path()), QString());
}

TVL_TEST(TstFindBinder)
#include "tst_findbinder.moc"
