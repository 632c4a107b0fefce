#include "DocumentFixtures.h"
#include "SnapshotFixtures.h"
#include "StorageFixtures.h"
#include "TVLNumberedFiles_p.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

/** The functions that take a listing of the folder. */
class TVLProjectFolderFormatTestAccess
{
public:
    static bool removeProjectFiles(const QString &path, int id, const TVLNumberedFiles &files)
    {
        return TVLProjectFolderFormat::removeProjectFiles(path, id, files);
    }
    static bool cloneProjectFiles(const QString &sourcePath, int sourceId,
                                  const TVLNumberedFiles &sourceFiles, const QString &targetPath,
                                  int targetId)
    {
        return TVLProjectFolderFormat::cloneProjectFiles(sourcePath, sourceId, sourceFiles,
                                                         targetPath, targetId);
    }
};

namespace {

using Access = TVLProjectFolderFormatTestAccess;

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

constexpr int Id = 12;

// What stands behind the id in the names of an item's files.
const QStringList Tails = {u".rtf"_s,         u".pdf"_s,          u".comments"_s,
                           u".links"_s,       u".styles"_s,       u".tar.gz"_s,
                           u"_notes.rtf"_s,   u"_notes.styles"_s, u"_synopsis.txt"_s,
                           u"_icImage.jpg"_s, u"_icImage.png"_s};

QString docsFile(const QString &name)
{
    return u"Files/Docs/"_s + name;
}

/** Writes a file of each kind for an item; each holds its own name. */
void writeAllFiles(const TestProject &project, int id)
{
    for (const QString &tail : Tails) {
        const QString name = QString::number(id) + tail;
        project.writeFile(docsFile(name), name.toUtf8());
    }
}

/** Names of the numbered files. */
QStringList docs(const TestProject &project)
{
    return QDir(project.path(u"Files/Docs"_s)).entryList(QDir::Files, QDir::Name);
}

/** Writes a file beside the project's folder. */
QString writeOutside(const TestProject &project, const QString &name, const QByteArray &content)
{
    const QString path = project.enclosingPath() + u'/' + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(path));
    return path;
}

bool isWritable(const QString &path)
{
    return QFile::permissions(path).testFlag(QFileDevice::WriteOwner);
}

} // namespace

class TstItemFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Into the project
    void aFileIsImportedUnderItsSuffix_data();
    void aFileIsImportedUnderItsSuffix();
    void whatCannotBeImportedIsAFailure();
    void aCopiedFileReplacesTheOldOne();
    void whatCannotBeCopiedLeavesTheOldOne();
    void aFileCopiedOntoItselfStays();
    void anAddressLeadsToTheFile();

    // Removing
    void removingAnItemRemovesAllItsFilesAndNoOthers();
    void removingFollowsNamesAndNotTheirStart_data();
    void removingFollowsNamesAndNotTheirStart();
    void removingAnItemRemovesItsSnapshots();
    void anItemWithoutFilesIsRemoved();
    void aListingServesManyItems();
    void aListingNeedNotBeUpToDate();
    void whatCannotBeRemovedIsAFailure();
    void linksAreRemovedAndNotWhatTheyLeadTo();
    void manyItemsAreClonedAndRemovedInNoTime();
    void anItemsOwnFoldersAreRemoved();
    void aMobileFolderIsRemoved();
    void theMobileCopyIsRemoved();
    void theMobileCopyIsRemovedAsFarAsPossible();

    // Cloning
    void aCloneHasAllFiles_data();
    void aCloneHasAllFiles();
    void aCloneHasTheSnapshots();
    void aCloneReplacesWhatTheTargetHas();
    void aCloneOfNothingIsASuccess();
    void aCloneOntoItselfChangesNothing();
    void aCloneKnowsWhatCameAfterItsListing();
    void clonedFilesCanBeWritten();
    void aCloneGoesOnAfterAFailure();
    void aDiskThatTakesNoCopyIsAFailure();
    void aMobileItemIsCloned();
};

void TstItemFiles::aFileIsImportedUnderItsSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("imported");
    QTest::newRow("plain") << u"picture.png"_s << u"12.png"_s;
    QTest::newRow("several dots") << u"archive.tar.gz"_s << u"12.gz"_s;
    QTest::newRow("upper case") << u"Book.PDF"_s << u"12.PDF"_s;
    QTest::newRow("no suffix") << u"README"_s << u"12."_s;
}

void TstItemFiles::aFileIsImportedUnderItsSuffix()
{
    QFETCH(const QString, name);
    QFETCH(const QString, imported);
    const TestProject project;
    const QString source = writeOutside(project, name, "content");
    QVERIFY(QFile::setPermissions(source, QFileDevice::ReadOwner));
    QVERIFY(Format::importProjectFile(project.path(), QFileInfo(source), Id));
    QCOMPARE(project.files(), (Files{{docsFile(imported), "content"}}));
    QVERIFY(isWritable(project.path(docsFile(imported))));
    QVERIFY(QFileInfo::exists(source));
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QVERIFY(project.files().isEmpty());
}

void TstItemFiles::whatCannotBeImportedIsAFailure()
{
    const TestProject project;
    const QString source = writeOutside(project, u"picture.png"_s, "content");
    QVERIFY(!Format::importProjectFile(project.path(), QFileInfo(), Id));
    QVERIFY(!Format::importProjectFile(project.path(), QFileInfo(source + u"x"_s), Id));
    QVERIFY(!Format::importProjectFile(project.path(), QFileInfo(project.enclosingPath()), Id));
    QVERIFY(project.files().isEmpty());
    project.writeFile(docsFile(u"12.png"_s), "mine");
    QVERIFY(!Format::importProjectFile(project.path(), QFileInfo(source), Id));
    QCOMPARE(project.readFile(docsFile(u"12.png"_s)), "mine");
}

void TstItemFiles::aCopiedFileReplacesTheOldOne()
{
    const TestProject project;
    const QString source = writeOutside(project, u"picture"_s, "new");
    QVERIFY(QFile::setPermissions(source, QFileDevice::ReadOwner));
    project.writeFile(docsFile(u"12.png"_s), "old and longer");
    for (const char *binder : {"", "/Novel.tavelx"}) {
        QVERIFY(
            Format::copyFile(project.path() + QString::fromLatin1(binder), Id, u"png"_s, source));
        QCOMPARE(project.files(), (Files{{docsFile(u"12.png"_s), "new"}}));
    }
    QVERIFY(isWritable(project.path(docsFile(u"12.png"_s))));
    QVERIFY(Format::copyFile(project.path(), 13, u"png"_s, source));
    QCOMPARE(project.readFile(docsFile(u"13.png"_s)), "new");
}

void TstItemFiles::whatCannotBeCopiedLeavesTheOldOne()
{
    const TestProject project;
    const UnopenableFile unopenable;
    project.writeFile(docsFile(u"12.png"_s), "old");
    unopenable.linkTo(project, u"unopenable"_s);
    for (const QString &source :
         {project.path(u"missing"_s), project.path(), project.path(u"unopenable"_s), QString()})
        QVERIFY(!Format::copyFile(project.path(), Id, u"png"_s, source));
    QCOMPARE(project.readFile(docsFile(u"12.png"_s)), "old");
    // A folder isn't a file to be replaced.
    project.writeFile(docsFile(u"13.png/file"_s), "old");
    QVERIFY(!Format::copyFile(project.path(), 13, u"png"_s, project.path(docsFile(u"12.png"_s))));
    QCOMPARE(project.readFile(docsFile(u"13.png/file"_s)), "old");
}

void TstItemFiles::aFileCopiedOntoItselfStays()
{
    const TestProject project;
    const QString file = project.path(docsFile(u"12.png"_s));
    project.writeFile(docsFile(u"12.png"_s), "content");
    QVERIFY(QFile::link(file, project.path(u"link"_s)));
    QVERIFY(Format::copyFile(project.path(), Id, u"png"_s, file));
    QVERIFY(Format::copyFile(project.path(), Id, u"png"_s, project.path(u"link"_s)));
    QCOMPARE(project.readFile(docsFile(u"12.png"_s)), "content");
}

void TstItemFiles::anAddressLeadsToTheFile()
{
    const TestProject project(u"My Novel #1"_s);
    const QString file = project.path(docsFile(u"12.html"_s));
    QCOMPARE(Format::url(project.path(), Id, u"html"_s), QUrl::fromLocalFile(file));
    QCOMPARE(Format::url(project.binderPath(), Id, u"html"_s).toLocalFile(), file);
    QVERIFY(project.files().isEmpty());
}

void TstItemFiles::removingAnItemRemovesAllItsFilesAndNoOthers()
{
    const TestProject project;
    for (const int id : {1, 2, 123})
        writeAllFiles(project, id);
    project.writeFile(docsFile(u"docs.checksum"_s), "checksums");
    const Files expected = project.files();
    writeAllFiles(project, Id);
    QCOMPARE(docs(project).size(), 4 * Tails.size() + 1);
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QCOMPARE(project.files(), expected);
    writeAllFiles(project, Id);
    QVERIFY(Format::removeProjectFiles(project.binderPath(), Id));
    QCOMPARE(project.files(), expected);
}

void TstItemFiles::removingFollowsNamesAndNotTheirStart_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("12.rtf") << u"12.rtf"_s << true;
    QTest::newRow("12.pdf") << u"12.pdf"_s << true;
    QTest::newRow("12.RTF") << u"12.RTF"_s << true;
    QTest::newRow("12.rtf.bak") << u"12.rtf.bak"_s << true;
    QTest::newRow("123.rtf") << u"123.rtf"_s << false;
    QTest::newRow("1.rtf") << u"1.rtf"_s << false;
    QTest::newRow("012.rtf") << u"012.rtf"_s << false;
    QTest::newRow("-12.rtf") << u"-12.rtf"_s << false;
    QTest::newRow("12") << u"12"_s << false;
    QTest::newRow("12_other.rtf") << u"12_other.rtf"_s << false;
    QTest::newRow("12_icImage") << u"12_icImage"_s << false;
    QTest::newRow("12a.rtf") << u"12a.rtf"_s << false;
    QTest::newRow("Arabic digits") << u"\u0661\u0662.rtf"_s << false;
    QTest::newRow("a number too large") << u"99999999999912.rtf"_s << false;
}

void TstItemFiles::removingFollowsNamesAndNotTheirStart()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isRemoved);
    const TestProject project;
    project.writeFile(docsFile(name), "content");
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QCOMPARE(project.files().isEmpty(), isRemoved);
}

void TstItemFiles::removingAnItemRemovesItsSnapshots()
{
    const TestProject project;
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s, 123), QString());
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder())));
    QVERIFY(!Format::hasSnapshots(project.path(), Id));
    QVERIFY(Format::hasSnapshots(project.path(), 123));
}

void TstItemFiles::anItemWithoutFilesIsRemoved()
{
    const TestProject project;
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QVERIFY(Format::removeProjectFiles(project.path(), -1));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstItemFiles::aListingServesManyItems()
{
    const TestProject project;
    for (int id = 0; id < 10; ++id)
        writeAllFiles(project, id);
    const TVLNumberedFiles files(project.binderPath());
    for (int id = 0; id < 10; ++id) {
        QStringList expected;
        for (const QString &tail : Tails)
            expected.append(QString::number(id) + tail);
        QStringList names = files.fileNames(id);
        names.sort();
        expected.sort();
        QCOMPARE(names, expected);
    }
    QCOMPARE(files.fileNames(10), QStringList());
    QCOMPARE(files.fileNames(-1), QStringList());
    for (int id = 0; id < 10; ++id) {
        QVERIFY(Access::removeProjectFiles(project.path(), id, files));
        QCOMPARE(docs(project).size(), (9 - id) * Tails.size());
    }
}

void TstItemFiles::aListingNeedNotBeUpToDate()
{
    const TestProject project;
    project.writeFile(docsFile(u"12.pdf"_s), "goes before");
    const TVLNumberedFiles files(project.path());
    QCOMPARE(files.fileNames(Id), QStringList{u"12.pdf"_s});
    QVERIFY(QFile::remove(project.path(docsFile(u"12.pdf"_s))));
    for (const QString &name : {u"12.rtf"_s, u"12.comments"_s, u"12.styles"_s, u"12_notes.rtf"_s,
                                u"12_notes.styles"_s, u"12_synopsis.txt"_s})
        project.writeFile(docsFile(name), "came later");
    QVERIFY(Access::removeProjectFiles(project.path(), Id, files));
    QVERIFY(project.files().isEmpty());
}

void TstItemFiles::whatCannotBeRemovedIsAFailure()
{
    const TestProject project;
    writeAllFiles(project, Id);
    QVERIFY(QFile::remove(project.path(docsFile(u"12.rtf"_s))));
    project.writeFile(docsFile(u"12.rtf/file"_s), "in a folder");
    QVERIFY(!Format::removeProjectFiles(project.path(), Id));
    // All else is gone.
    QCOMPARE(project.files(), (Files{{docsFile(u"12.rtf/file"_s), "in a folder"}}));
}

void TstItemFiles::linksAreRemovedAndNotWhatTheyLeadTo()
{
    const TestProject project;
    project.writeFile(u"kept.pdf"_s, "kept");
    QVERIFY(QDir().mkpath(project.path(u"Files/Docs"_s)));
    QVERIFY(QFile::link(project.path(u"kept.pdf"_s), project.path(docsFile(u"12.pdf"_s))));
    QVERIFY(QFile::link(project.path(u"missing"_s), project.path(docsFile(u"12.mp3"_s))));
    QVERIFY(Format::removeProjectFiles(project.path(), Id));
    QCOMPARE(project.files(), (Files{{u"kept.pdf"_s, "kept"}}));
    QVERIFY(QDir(project.path(u"Files/Docs"_s))
                .isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
}

void TstItemFiles::manyItemsAreClonedAndRemovedInNoTime()
{
    // A clone takes as long as the disk takes to have it; there need not be many.
    constexpr int Items = 10000;
    constexpr int Clones = 100;
    const TestProject project;
    for (int id = 0; id < Items; ++id)
        project.writeFile(docsFile(u"%1.rtf"_s.arg(id)), "text");
    QElapsedTimer timer;
    timer.start();
    const TVLNumberedFiles files(project.path());
    bool ok = true;
    for (int id = 0; id < Clones; ++id)
        ok = Access::cloneProjectFiles(project.path(), id, files, project.path(), Items + id) && ok;
    for (int id = 0; id < Items; ++id)
        ok = Access::removeProjectFiles(project.path(), id, files) && ok;
    QVERIFY(ok);
    // With a listing for each item it would be minutes.
    QVERIFY2(timer.elapsed() < 30000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(docs(project).size(), Clones);
}

void TstItemFiles::anItemsOwnFoldersAreRemoved()
{
    const TestProject project;
    const QString data = Format::filesDataNodePath(QString(), uuidOf(1)).mid(1);
    const QString snapshots = Format::snapshotsNodePath(QString(), uuidOf(1)).mid(1);
    const QString kept = Format::filesDataNodePath(QString(), uuidOf(2)).mid(1);
    project.writeFile(kept + u"/content.rtf"_s, "kept");
    const Files expected = project.files();
    project.writeFile(data + u"/content.rtf"_s, "text");
    project.writeFile(snapshots + u"/index.xml"_s, "index");
    QVERIFY(Format::removeProjectFiles(project.binderPath(), uuidOf(1)));
    QCOMPARE(project.files(), expected);
    QVERIFY(!QFileInfo::exists(project.path(data)));
    QVERIFY(!QFileInfo::exists(project.path(snapshots)));
    QVERIFY(Format::removeProjectFiles(project.path(), uuidOf(1)));
    QVERIFY(Format::removeProjectFiles(project.path(), QUuid()));
    QCOMPARE(project.files(), expected);
}

void TstItemFiles::aMobileFolderIsRemoved()
{
    const TestProject project;
    const QString mobile = Format::mobileDataNodePath(QString(), uuidOf(1)).mid(1);
    const QString desktop = Format::filesDataNodePath(QString(), uuidOf(1)).mid(1);
    project.writeFile(desktop + u"/content.rtf"_s, "kept");
    const Files expected = project.files();
    project.writeFile(mobile + u"/content.rtf"_s, "text");
    QVERIFY(Format::removeProjectFilesMobile(project.binderPath(), uuidOf(1)));
    QCOMPARE(project.files(), expected);
    QVERIFY(Format::removeProjectFilesMobile(project.path(), uuidOf(1)));
}

void TstItemFiles::theMobileCopyIsRemoved()
{
    const TestProject project;
    project.writeFile(docsFile(u"12.rtf"_s), "kept");
    const Files expected = project.files();
    project.writeFile(u"Mobile/binder.sync"_s, "binder");
    project.writeFile(u"Mobile/Data/x/content.rtf"_s, "text");
    project.writeFile(u"Files/mobilescripts.checksums"_s, "checksums");
    QVERIFY(Format::deleteAllMobileFiles(project.binderPath()));
    QCOMPARE(project.files(), expected);
    QVERIFY(!QFileInfo::exists(project.path(u"Mobile"_s)));
    QVERIFY(Format::deleteAllMobileFiles(project.path()));
}

void TstItemFiles::theMobileCopyIsRemovedAsFarAsPossible()
{
    const TestProject project;
    project.writeFile(u"Mobile/binder.sync"_s, "binder");
    project.writeFile(u"Files/mobilescripts.checksums/file"_s, "in a folder");
    QVERIFY(!Format::deleteAllMobileFiles(project.path()));
    QVERIFY(!QFileInfo::exists(project.path(u"Mobile"_s)));
}

void TstItemFiles::aCloneHasAllFiles_data()
{
    QTest::addColumn<int>("form");
    QTest::newRow("other project") << 0;
    QTest::newRow("same project") << 1;
    QTest::newRow("with a listing") << 2;
}

void TstItemFiles::aCloneHasAllFiles()
{
    QFETCH(const int, form);
    const TestProject project;
    const TestProject other(u"Other"_s);
    writeAllFiles(project, Id);
    writeAllFiles(project, 123);
    const Files before = project.files();
    if (form == 0)
        QVERIFY(Format::cloneProjectFiles(project.binderPath(), Id, other.binderPath(), 5));
    else if (form == 1)
        QVERIFY(Format::cloneDesktopV18(project.path(), Id, 5));
    else
        QVERIFY(Access::cloneProjectFiles(project.path(), Id, TVLNumberedFiles(project.path()),
                                          project.path(), 5));
    Files expected = form == 0 ? Files() : before;
    for (const QString &tail : Tails)
        expected.insert(docsFile(u"5"_s + tail), (u"12"_s + tail).toUtf8());
    QCOMPARE((form == 0 ? other : project).files(), expected);
    if (form == 0)
        QCOMPARE(project.files(), before);
}

void TstItemFiles::aCloneHasTheSnapshots()
{
    const TestProject project;
    const TestProject other(u"Other"_s);
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    QVERIFY(Format::cloneProjectFiles(project.path(), Id, other.path(), 5));
    QCOMPARE(snapshotTitles(other, 5), QStringList{u"First"_s});
    QCOMPARE(snapshotText(other, 0, 5), u"text"_s);
}

void TstItemFiles::aCloneReplacesWhatTheTargetHas()
{
    const TestProject project;
    writeAllFiles(project, Id);
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    Files expected = project.files();
    for (const QString &tail : Tails)
        expected.insert(docsFile(u"5"_s + tail), (u"12"_s + tail).toUtf8());
    expected.insert(snapshotsIndex(5), expected.value(snapshotsIndex()));
    expected.insert(snapshotFile(0, 5), expected.value(snapshotFile(0)));

    writeAllFiles(project, 5);
    QCOMPARE(addSnapshot(project, u"Other"_s, 0, u"other"_s, 5), QString());
    for (int time = 0; time < 2; ++time) {
        QVERIFY(Format::cloneProjectFiles(project.path(), Id, project.path(), 5));
        QCOMPARE(project.files(), expected);
    }
}

void TstItemFiles::aCloneOfNothingIsASuccess()
{
    const TestProject project;
    QVERIFY(Format::cloneProjectFiles(project.path(), Id, project.path(), 5));
    QVERIFY(project.files().isEmpty());
    QVERIFY(!QFileInfo::exists(project.path(snapshotsFolder(5))));
}

void TstItemFiles::aCloneOntoItselfChangesNothing()
{
    const TestProject project;
    writeAllFiles(project, Id);
    QCOMPARE(addSnapshot(project, u"First"_s, 0, u"text"_s), QString());
    const Files before = project.files();
    QVERIFY(Format::cloneProjectFiles(project.path(), Id, project.path(), Id));
    QCOMPARE(project.files(), before);
}

void TstItemFiles::aCloneKnowsWhatCameAfterItsListing()
{
    const TestProject project;
    project.writeFile(docsFile(u"12.pdf"_s), "goes");
    const TVLNumberedFiles files(project.path());
    QCOMPARE(files.fileNames(Id).size(), 1);
    QVERIFY(QFile::remove(project.path(docsFile(u"12.pdf"_s))));
    project.writeFile(docsFile(u"12.rtf"_s), "just saved");
    project.writeFile(docsFile(u"12_notes.rtf"_s), "just saved too");
    QVERIFY(Access::cloneProjectFiles(project.path(), Id, files, project.path(), 5));
    QCOMPARE(project.readFile(docsFile(u"5.rtf"_s)), "just saved");
    QCOMPARE(project.readFile(docsFile(u"5_notes.rtf"_s)), "just saved too");
    QCOMPARE(docs(project).size(), 4);
}

void TstItemFiles::clonedFilesCanBeWritten()
{
    const TestProject project;
    project.writeFile(docsFile(u"12.rtf"_s), "text");
    project.writeFile(docsFile(u"5.rtf"_s), "old");
    QVERIFY(QFile::setPermissions(project.path(docsFile(u"12.rtf"_s)), QFileDevice::ReadOwner));
    QVERIFY(QFile::setPermissions(project.path(docsFile(u"5.rtf"_s)), QFileDevice::ReadOwner));
    QVERIFY(Format::cloneProjectFiles(project.path(), Id, project.path(), 5));
    QCOMPARE(project.readFile(docsFile(u"5.rtf"_s)), "text");
    QVERIFY(isWritable(project.path(docsFile(u"5.rtf"_s))));
    QVERIFY(!isWritable(project.path(docsFile(u"12.rtf"_s))));
}

void TstItemFiles::aCloneGoesOnAfterAFailure()
{
    const TestProject project;
    writeAllFiles(project, Id);
    project.writeFile(docsFile(u"5.comments/file"_s), "in its place");
    QVERIFY(!Format::cloneProjectFiles(project.path(), Id, project.path(), 5));
    for (const QString &tail : Tails) {
        if (tail != u".comments")
            QCOMPARE(project.readFile(docsFile(u"5"_s + tail)), (u"12"_s + tail).toUtf8());
    }
    const TestProject blocked;
    blocked.writeFile(u"Files"_s, "a file");
    QVERIFY(!Format::cloneProjectFiles(project.path(), Id, blocked.path(), 5));
}

void TstItemFiles::aDiskThatTakesNoCopyIsAFailure()
{
    const TestProject project;
    project.writeFile(docsFile(u"12.rtf"_s), QByteArray(10000, 'x'));
    project.writeFile(docsFile(u"12_notes.rtf"_s), "short");
    {
        const FileSizeLimit limit(4096);
        QVERIFY(!Format::cloneProjectFiles(project.path(), Id, project.path(), 5));
    }
    QCOMPARE(docs(project), (QStringList{u"12.rtf"_s, u"12_notes.rtf"_s, u"5_notes.rtf"_s}));
}

void TstItemFiles::aMobileItemIsCloned()
{
    const TestProject project;
    const TestProject other(u"Other"_s);
    const QString source = Format::mobileDataNodePath(QString(), uuidOf(1)).mid(1);
    const QString target = Format::mobileDataNodePath(QString(), uuidOf(2)).mid(1);
    project.writeFile(source + u"/content.rtf"_s, "text");
    project.writeFile(source + u"/notes.rtf"_s, "notes");
    QVERIFY(Format::cloneMobileProjectFiles(project.binderPath(), uuidOf(1), other.binderPath(),
                                            uuidOf(2)));
    QCOMPARE(other.files(),
             (Files{{target + u"/content.rtf"_s, "text"}, {target + u"/notes.rtf"_s, "notes"}}));
    // Nothing is replaced there.
    other.writeFile(target + u"/content.rtf"_s, "mine");
    QVERIFY(!Format::cloneMobileProjectFiles(project.path(), uuidOf(1), other.path(), uuidOf(2)));
    QCOMPARE(other.readFile(target + u"/content.rtf"_s), "mine");
    // An item without a text need not have a folder.
    QVERIFY(Format::cloneMobileProjectFiles(project.path(), uuidOf(3), other.path(), uuidOf(4)));
    QCOMPARE(other.files().size(), 2);
}

TVL_TEST(TstItemFiles)
#include "tst_itemfiles.moc"
