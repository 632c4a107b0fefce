#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestBinderProject.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** A project with one item, whose title makes its binder known. */
std::unique_ptr<TestBinderProject> makeBinder(const QString &title, bool isMobile = false)
{
    auto binder = std::make_unique<TestBinderProject>();
    auto *node = new TVLProjectNode({0, uuidOf(0)}, binder->binderRoot());
    node->mTitle = title;
    node->mCreated = node->mModified = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    binder->mInfo.mModified = node->mModified;
    binder->mIsMobile = isMobile;
    return binder;
}

/** The files but the journal, which keeps a binder that could not be written. */
QMap<QString, QByteArray> filesWithoutJournal(const TestProject &project)
{
    QMap<QString, QByteArray> files = project.files();
    if (!files.remove(u"Files/redo.journal"_s))
        qFatal("there is no journal");
    return files;
}

} // namespace

class TstWriteBinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBinderIsWrittenUnderItsDefaultName_data();
    void aBinderIsWrittenUnderItsDefaultName();
    void theProjectsFolderIsMade();
    void theBinderIsOverwrittenInPlace();
    void aLinkInTheBindersPlaceIsNotWrittenThrough();
    void aShorterBinderLeavesNothingOfALongerOne();
    void theSameProjectGivesTheSameBytes();
    void anOlderBinderGetsItsDefaultNameAndTheNewContent();
    void aBinderThatCannotBeRenamedIsWrittenUnderItsOldName_data();
    void aBinderThatCannotBeRenamedIsWrittenUnderItsOldName();
    void aFolderInTheBindersPlaceIsReported();
    void aFailedWriteLeavesTheAutosaveAlone();
    void aProjectFolderThatCannotBeMadeIsReported();
    void errorsNeedNotBeAskedFor();

    void theAutosaveHoldsTheBinderUnderItsName();
    void theAutosaveFollowsEverySave();
    void aFailedAutosaveIsIgnored_data();
    void aFailedAutosaveIsIgnored();
    void savingMakesNoBackup();

    void aMobileBinderIsWrittenToTheMobileFolderAndNotZipped();
    void aMobileBinderThatCannotBeOpenedIsReported();
    void theDesktopBinderCanBeAskedForByName();

    void compressingNeedsAFile();
    void compressingNeedsTheFilesFolder();
    void compressingReplacesTheZip();
    void compressingFailsWhereTheZipCannotBe();
    void compressingABinderOfAnyContentKeepsIt_data();
    void compressingABinderOfAnyContentKeepsIt();
};

void TstWriteBinder::aBinderIsWrittenUnderItsDefaultName_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("binder") << u"/Novel.tavelx"_s;
}

void TstWriteBinder::aBinderIsWrittenUnderItsDefaultName()
{
    QFETCH(QString, suffix);

    const TestProject project;
    QVERIFY(QDir().mkpath(project.path()));
    const auto binder = makeBinder(u"One"_s);
    QString error = u"untouched"_s;
    QVERIFY(Format::writeBinder(project.path() + suffix, binder.get(), &error));
    QCOMPARE(error, u"untouched"_s);
    QCOMPARE(project.files().keys(), (QStringList{AutosaveFile, u"Novel.tavelx"_s}));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder->write());
}

void TstWriteBinder::theProjectsFolderIsMade()
{
    const TestProject project;
    const QString path = project.path(u"deep/down/Inner.tavel"_s);
    QVERIFY(Format::writeBinder(path, makeBinder(u"One"_s).get(), nullptr));
    QVERIFY(QFileInfo(path + u"/Inner.tavelx"_s).isFile());
}

void TstWriteBinder::theBinderIsOverwrittenInPlace()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "old");
    QFile openBefore(project.binderPath());
    QVERIFY(openBefore.open(QIODevice::ReadOnly));
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    // A file put in its place would leave the old one to who has it open.
    QCOMPARE(openBefore.readAll(), binder->write());
}

void TstWriteBinder::aLinkInTheBindersPlaceIsNotWrittenThrough()
{
    const TestProject project;
    project.writeFile(u"elsewhere"_s, "old");
    QVERIFY(QFile::link(project.path(u"elsewhere"_s), project.binderPath()));
    const auto binder = makeBinder(u"One"_s);
    QString error;
    QVERIFY(!Format::writeBinder(project.path(), binder.get(), &error));
    QCOMPARE(error,
             u"'%1' is a link, and what it leads to is not written"_s.arg(project.binderPath()));
    QVERIFY(QFileInfo(project.binderPath()).isSymLink());
    QCOMPARE(project.readFile(u"elsewhere"_s), QByteArray("old"));
}

void TstWriteBinder::aShorterBinderLeavesNothingOfALongerOne()
{
    const TestProject project;
    QVERIFY(Format::writeBinder(project.path(), makeBinder(QString(100000, u'x')).get(), nullptr));
    const auto binder = makeBinder(u"short"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder->write());
}

void TstWriteBinder::theSameProjectGivesTheSameBytes()
{
    const TestProject project;
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    const QByteArray first = project.readFile(u"Novel.tavelx"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), first);
}

void TstWriteBinder::anOlderBinderGetsItsDefaultNameAndTheNewContent()
{
    const TestProject project;
    project.writeFile(u"project.tavelx"_s, "older");
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    QCOMPARE(project.files().keys(), (QStringList{AutosaveFile, u"Novel.tavelx"_s}));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder->write());
}

void TstWriteBinder::aBinderThatCannotBeRenamedIsWrittenUnderItsOldName_data()
{
    QTest::addColumn<QString>("projectName");
    QTest::addColumn<bool>("defaultNameIsTaken");

    QTest::newRow("default name too long") << QString(249, u'n') << false;
    QTest::newRow("default name taken by a link to nowhere") << u"Novel"_s << true;
}

void TstWriteBinder::aBinderThatCannotBeRenamedIsWrittenUnderItsOldName()
{
    QFETCH(QString, projectName);
    QFETCH(bool, defaultNameIsTaken);

    const TestProject project(projectName);
    project.writeFile(u"Old.tavelx"_s, "old");
    if (defaultNameIsTaken)
        QVERIFY(QFile::link(project.path(u"nowhere/file"_s), project.binderPath()));
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(Format::writeBinder(project.path(), binder.get(), nullptr));
    QCOMPARE(project.readFile(u"Old.tavelx"_s), binder->write());
    QVERIFY(!QFileInfo::exists(project.binderPath()));
    const QList<ZipEntry> entries = zipEntries(project.readFile(AutosaveFile));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().name, u"Old.tavelx"_s);
}

void TstWriteBinder::aFolderInTheBindersPlaceIsReported()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx/file"_s, "in a folder");
    const auto before = project.files();
    QString error;
    QVERIFY(!Format::writeBinder(project.path(), makeBinder(u"One"_s).get(), &error));
    QCOMPARE(error, u"Could not open binder file."_s);
    QCOMPARE(filesWithoutJournal(project), before);
}

void TstWriteBinder::aFailedWriteLeavesTheAutosaveAlone()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx/file"_s, "in a folder");
    project.writeFile(AutosaveFile, "autosave");
    project.writeFile(u"Files/binder.backup"_s, "backup");
    const auto before = project.files();
    QVERIFY(!Format::writeBinder(project.path(), makeBinder(u"One"_s).get(), nullptr));
    QCOMPARE(filesWithoutJournal(project), before);
}

void TstWriteBinder::aProjectFolderThatCannotBeMadeIsReported()
{
    const TestProject project;
    project.writeFile(u"file"_s, {});
    const QString path = project.path(u"file/Inner.tavel"_s);
    for (const bool isMobile : {false, true}) {
        for (const QString &suffix : {QString(), u"/Inner.tavelx"_s}) {
            QString error;
            QVERIFY(
                !Format::writeBinder(path + suffix, makeBinder(u"One"_s, isMobile).get(), &error));
            QCOMPARE(error, u"Could not create project directory: %1"_s.arg(path));
        }
    }
}

void TstWriteBinder::errorsNeedNotBeAskedFor()
{
    const TestProject project;
    project.writeFile(u"file"_s, {});
    project.writeFile(u"Novel.tavelx/file"_s, {});
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(!Format::writeBinder(project.path(), binder.get(), nullptr));
    QVERIFY(!Format::writeBinder(project.path(u"file/Inner.tavel"_s), binder.get(), nullptr));
}

void TstWriteBinder::theAutosaveHoldsTheBinderUnderItsName()
{
    const TestProject project;
    QVERIFY(Format::writeBinder(project.path(), makeBinder(u"\u00dcber \u6f22"_s).get(), nullptr));
    const QList<ZipEntry> entries = zipEntries(project.readFile(AutosaveFile));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().name, u"Novel.tavelx"_s);
    QCOMPARE(entries.constFirst().content, project.readFile(u"Novel.tavelx"_s));
    const QFile::Permissions permissions = entries.constFirst().permissions;
    QVERIFY(permissions.testFlags(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
                                  | QFile::ReadOther));
    QVERIFY(!(permissions & (QFile::WriteGroup | QFile::WriteOther)));
}

void TstWriteBinder::theAutosaveFollowsEverySave()
{
    const TestProject project;
    for (const QString &title : {u"One"_s, QString(50000, u'2'), u"Three"_s}) {
        QVERIFY(Format::writeBinder(project.path(), makeBinder(title).get(), nullptr));
        const QList<ZipEntry> entries = zipEntries(project.readFile(AutosaveFile));
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.constFirst().content, project.readFile(u"Novel.tavelx"_s));
    }
}

void TstWriteBinder::aFailedAutosaveIsIgnored_data()
{
    QTest::addColumn<QString>("obstacle");

    QTest::newRow("a file in place of the folder") << u"Files"_s;
    QTest::newRow("a folder in place of the file") << AutosaveFile + u"/file"_s;
}

void TstWriteBinder::aFailedAutosaveIsIgnored()
{
    QFETCH(QString, obstacle);

    const TestProject project;
    project.writeFile(obstacle, "obstacle");
    const auto binder = makeBinder(u"One"_s);
    QString error;
    QVERIFY(Format::writeBinder(project.path(), binder.get(), &error));
    QVERIFY(error.isEmpty());
    QCOMPARE(
        project.files(),
        (QMap<QString, QByteArray>{{obstacle, "obstacle"}, {u"Novel.tavelx"_s, binder->write()}}));
}

void TstWriteBinder::savingMakesNoBackup()
{
    const TestProject project;
    QVERIFY(Format::writeBinder(project.path(), makeBinder(u"One"_s).get(), nullptr));
    QVERIFY(!QFileInfo::exists(Format::binderBackupFilePath(project.path())));
}

void TstWriteBinder::aMobileBinderIsWrittenToTheMobileFolderAndNotZipped()
{
    const TestProject project;
    bool ok = false;
    (void)Format::mobileDirectory(project.path(), &ok);
    QVERIFY(ok);
    const auto binder = makeBinder(u"One"_s, true);
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        QVERIFY(Format::writeBinder(path, binder.get(), nullptr));
        QCOMPARE(project.files(),
                 (QMap<QString, QByteArray>{{u"Mobile/binder.sync"_s, binder->write()}}));
    }
}

void TstWriteBinder::aMobileBinderThatCannotBeOpenedIsReported()
{
    const TestProject project;
    project.writeFile(u"Mobile/binder.sync/file"_s, "in a folder");
    const auto before = project.files();
    QString error;
    QVERIFY(!Format::writeBinder(project.path(), makeBinder(u"One"_s, true).get(), &error));
    QCOMPARE(error, u"Could not open binder file."_s);
    QCOMPARE(project.files(), before);
}

void TstWriteBinder::theDesktopBinderCanBeAskedForByName()
{
    const TestProject project;
    const auto binder = makeBinder(u"One"_s);
    QVERIFY(Format::writeDesktopBinder(project.path(), binder.get(), nullptr));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder->write());
    QVERIFY(Format::writeBinderFile(project.path(u"copy"_s), binder.get(), nullptr));
    QCOMPARE(project.readFile(u"copy"_s), binder->write());
}

void TstWriteBinder::compressingNeedsAFile()
{
    const TestProject project;
    QVERIFY(!Format::compressBinder(project.path(), u"binder.backup"_s, project.binderPath()));
    QVERIFY(!QFileInfo::exists(project.path()));
    project.writeFile(u"folder/file"_s, {});
    QVERIFY(!Format::compressBinder(project.path(), u"binder.backup"_s, project.path(u"folder"_s)));
    QVERIFY(!QFileInfo::exists(Format::binderBackupFilePath(project.path())));
}

void TstWriteBinder::compressingNeedsTheFilesFolder()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "binder");
    project.writeFile(u"Files"_s, "obstacle");
    const auto before = project.files();
    QVERIFY(!Format::compressBinder(project.path(), u"binder.backup"_s, project.binderPath()));
    QCOMPARE(project.files(), before);
}

void TstWriteBinder::compressingReplacesTheZip()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "binder");
    project.writeFile(u"Files/binder.backup"_s, QByteArray(100000, 'x'));
    QVERIFY(Format::compressBinder(project.path(), u"binder.backup"_s, project.binderPath()));
    const QList<ZipEntry> entries = zipEntries(project.readFile(u"Files/binder.backup"_s));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().name, u"Novel.tavelx"_s);
    QCOMPARE(entries.constFirst().content, QByteArray("binder"));
    QVERIFY(project.readFile(u"Files/binder.backup"_s).size() < 1000);
}

void TstWriteBinder::compressingFailsWhereTheZipCannotBe()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "binder");
    project.writeFile(u"Files/binder.backup/file"_s, "in a folder");
    const auto before = project.files();
    QVERIFY(!Format::compressBinder(project.path(), u"binder.backup"_s, project.binderPath()));
    QCOMPARE(project.files(), before);
}

void TstWriteBinder::compressingABinderOfAnyContentKeepsIt_data()
{
    QTest::addColumn<QByteArray>("content");

    QByteArray allBytes;
    for (int i = 0; i < 256; ++i)
        allBytes.append(char(i));
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("all bytes") << allBytes;
    QTest::newRow("very compressible") << QByteArray(5'000'000, ' ');
    QTest::newRow("Unicode") << u"\u6f22\U0001d11e"_s.repeated(1000).toUtf8();
}

void TstWriteBinder::compressingABinderOfAnyContentKeepsIt()
{
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, content);
    QVERIFY(Format::compressBinder(project.path(), u"binder.backup"_s, project.binderPath()));
    const QList<ZipEntry> entries = zipEntries(project.readFile(u"Files/binder.backup"_s));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().content, content);
}

TVL_TEST(TstWriteBinder)
#include "tst_writebinder.moc"
