#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

const QUuid One = uuidOf(1);
const QUuid Two = uuidOf(2);

QString desktop(const QUuid &uuid, const QString &name)
{
    return Format::filesDataNodePath(QString(), uuid).mid(1) + u'/' + name;
}

QString mobile(const QUuid &uuid, const QString &name)
{
    return Format::mobileDataNodePath(QString(), uuid).mid(1) + u'/' + name;
}

/** The files of a folder, with what they hold. */
Files filesIn(const TestProject &project, const QString &folder)
{
    Files found;
    const QString start = folder.endsWith(u'/') ? folder : folder + u'/';
    const Files all = project.files();
    for (auto file = all.cbegin(); file != all.cend(); ++file) {
        if (file.key().startsWith(start))
            found.insert(file.key().mid(start.size()), file.value());
    }
    return found;
}

Files desktopFiles(const TestProject &project, const QUuid &uuid)
{
    return filesIn(project, desktop(uuid, QString()));
}

Files mobileFiles(const TestProject &project, const QUuid &uuid)
{
    return filesIn(project, mobile(uuid, QString()));
}

const Files Texts = {{u"content.rtf"_s, "text"}, {u"synopsis.txt"_s, "synopsis"}};

void writeMobile(const TestProject &project, const QUuid &uuid)
{
    for (auto file = Texts.cbegin(); file != Texts.cend(); ++file)
        project.writeFile(mobile(uuid, file.key()), file.value());
}

void writeDesktop(const TestProject &project, const QUuid &uuid)
{
    for (auto file = Texts.cbegin(); file != Texts.cend(); ++file)
        project.writeFile(desktop(uuid, file.key()), file.value());
}

} // namespace

class TstItemLayouts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDesktopItemIsCopiedToTheMobileCopy();
    void aMobileItemIsCopiedToAnother();
    void copiesReplaceNothing();
    void copiesNeedASource();

    void aMobileItemTakesTheDesktopItemsPlace_data();
    void aMobileItemTakesTheDesktopItemsPlace();
    void withoutAMobileFolderTheDesktopItemStays();
    void aFolderThatCannotBeEmptiedIsAFailure();

    void numberedFilesGetTheNamesOfAnItemsFolder_data();
    void numberedFilesGetTheNamesOfAnItemsFolder();
    void numberedFilesReplaceThoseInTheFolder();
    void numberedFilesGoToEitherFolder();
    void aFolderThatCannotBeMadeIsAFailure();

    void foldersAreListedByTheirUuids();
    void foldersOfTheMobileCopyMayBeInSmallLetters();
};

void TstItemLayouts::foldersOfTheMobileCopyMayBeInSmallLetters()
{
    const QUuid uuid(u"4f0a1f3b-8c70-4f6e-9b3f-0d2b6a2a1c44"_s);
    const TestProject project;
    const QString folder = u"Mobile/Data/"_s + uuid.toString(QUuid::WithoutBraces);
    const auto write = [&] {
        for (auto file = Texts.cbegin(); file != Texts.cend(); ++file)
            project.writeFile(folder + u'/' + file.key(), file.value());
    };
    write();
    QCOMPARE(Format::findMobileDataNodePath(project.path(), uuid), project.path(folder));
    QVERIFY(Format::mobileDocumentFolderExists(project.path(), uuid));
    QVERIFY(Format::mobileDocumentExists(project.path(), uuid, TVL::MainText));
    QVERIFY(!Format::mobileDocumentExists(project.path(), uuid, TVL::NotesText));
    QVERIFY(!Format::md5Mobile(project.path(), uuid, TVL::SynopsisText).isEmpty());
    QCOMPARE(Format::mobileDataNodePathFiles(project.path(), uuid).size(), 2);
    QCOMPARE(Format::findMobileContentDocument(project.path(), uuid),
             project.path(folder + u"/content.rtf"_s));
    QVERIFY(Format::copyMobileToMobile(project.path(), uuid, Two));
    QCOMPARE(mobileFiles(project, Two), Texts);
    QVERIFY(Format::cloneMobileProjectFiles(project.path(), uuid, project.path(), One));
    QCOMPARE(mobileFiles(project, One), Texts);
    QVERIFY(Format::syncMobileToDesktopV23(project.path(), uuid));
    QCOMPARE(desktopFiles(project, uuid), Texts);
    QVERIFY(Format::moveMobileToDesktopV23(project.path(), uuid));
    QCOMPARE(filesIn(project, folder), Files());
    write();
    QVERIFY(Format::removeProjectFilesMobile(project.path(), uuid));
    QVERIFY(!QFileInfo::exists(project.path(folder)));
    // Where there is none, a new one is called as the others.
    QCOMPARE(Format::findMobileDataNodePath(project.path(), uuid),
             Format::mobileDataNodePath(project.path(), uuid));
}

void TstItemLayouts::aDesktopItemIsCopiedToTheMobileCopy()
{
    const TestProject project;
    writeDesktop(project, One);
    QVERIFY(Format::copyDesktopToMobileV23(project.binderPath(), One, Two));
    QCOMPARE(mobileFiles(project, Two), Texts);
    QCOMPARE(desktopFiles(project, One), Texts);
}

void TstItemLayouts::aMobileItemIsCopiedToAnother()
{
    const TestProject project;
    writeMobile(project, One);
    QVERIFY(Format::copyMobileToMobile(project.binderPath(), One, Two));
    QCOMPARE(mobileFiles(project, Two), Texts);
    QCOMPARE(mobileFiles(project, One), Texts);
}

void TstItemLayouts::copiesReplaceNothing()
{
    const TestProject project;
    writeDesktop(project, One);
    writeMobile(project, One);
    project.writeFile(mobile(Two, u"content.rtf"_s), "mine");
    QVERIFY(!Format::copyDesktopToMobileV23(project.path(), One, Two));
    QVERIFY(!Format::copyMobileToMobile(project.path(), One, Two));
    QCOMPARE(project.readFile(mobile(Two, u"content.rtf"_s)), "mine");
}

void TstItemLayouts::copiesNeedASource()
{
    const TestProject project;
    QVERIFY(!Format::copyDesktopToMobileV23(project.path(), One, Two));
    QVERIFY(!Format::copyMobileToMobile(project.path(), One, Two));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstItemLayouts::aMobileItemTakesTheDesktopItemsPlace_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<bool>("isThere");
    for (const bool isThere : {false, true}) {
        const char *target = isThere ? "old" : "new";
        QTest::addRow("copy to a %s folder", target) << 0 << isThere;
        QTest::addRow("sync to a %s folder", target) << 1 << isThere;
        QTest::addRow("move to a %s folder", target) << 2 << isThere;
    }
}

void TstItemLayouts::aMobileItemTakesTheDesktopItemsPlace()
{
    QFETCH(const int, form);
    QFETCH(const bool, isThere);
    const TestProject project;
    writeMobile(project, One);
    writeDesktop(project, Two);
    if (isThere) {
        project.writeFile(desktop(One, u"content.rtf"_s), "old");
        project.writeFile(desktop(One, u"notes.rtf"_s), "old");
        project.writeFile(desktop(One, u"folder/.hidden"_s), "old");
    }
    if (form == 0)
        QVERIFY(Format::copyMobileToDesktopV23(project.binderPath(), One));
    else if (form == 1)
        QVERIFY(Format::syncMobileToDesktopV23(project.binderPath(), One));
    else
        QVERIFY(Format::moveMobileToDesktopV23(project.binderPath(), One));
    QCOMPARE(desktopFiles(project, One), Texts);
    QCOMPARE(desktopFiles(project, Two), Texts);
    QCOMPARE(mobileFiles(project, One), form == 2 ? Files() : Texts);
    QCOMPARE(QFileInfo::exists(project.path(mobile(One, QString()))), form != 2);
}

void TstItemLayouts::withoutAMobileFolderTheDesktopItemStays()
{
    const TestProject project;
    writeDesktop(project, One);
    QVERIFY(!Format::copyMobileToDesktopV23(project.path(), One));
    QVERIFY(Format::syncMobileToDesktopV23(project.path(), One));
    QVERIFY(Format::moveMobileToDesktopV23(project.path(), One));
    QCOMPARE(desktopFiles(project, One), Texts);
}

void TstItemLayouts::aFolderThatCannotBeEmptiedIsAFailure()
{
    const TestProject project;
    writeMobile(project, One);
    project.writeFile(desktop(One, QString()).chopped(1), "a file");
    QVERIFY(!Format::copyMobileToDesktopV23(project.path(), One));
    QVERIFY(!Format::syncMobileToDesktopV23(project.path(), One));
    QVERIFY(!Format::moveMobileToDesktopV23(project.path(), One));
    QCOMPARE(mobileFiles(project, One), Texts);
}

void TstItemLayouts::numberedFilesGetTheNamesOfAnItemsFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("copy");
    QTest::newRow("main text") << u"12.rtf"_s << u"content.rtf"_s;
    QTest::newRow("notes") << u"12_notes.rtf"_s << u"notes.rtf"_s;
    QTest::newRow("synopsis") << u"12_synopsis.txt"_s << u"synopsis.txt"_s;
    QTest::newRow("links") << u"12.links"_s << u"content.links"_s;
    QTest::newRow("comments") << u"12.comments"_s << u"content.comments"_s;
    QTest::newRow("styles") << u"12.styles"_s << u"content.styles"_s;
    QTest::newRow("main file of another kind") << u"12.pdf"_s << u"content.pdf"_s;
    QTest::newRow("upper case") << u"12.PDF"_s << u"content.PDF"_s;
    // These have no type by their numbered names.
    QTest::newRow("styles of the notes") << u"12_notes.styles"_s << QString();
    QTest::newRow("index card image") << u"12_icImage.png"_s << QString();
    QTest::newRow("another item") << u"123.rtf"_s << QString();
}

void TstItemLayouts::numberedFilesGetTheNamesOfAnItemsFolder()
{
    QFETCH(const QString, name);
    QFETCH(const QString, copy);
    const TestProject project;
    project.writeFile(u"Files/Docs/"_s + name, "content");
    QVERIFY(Format::copyDesktopV18ToPath(project.binderPath(), 12, project.path(u"a/b"_s)));
    QCOMPARE(filesIn(project, u"a/b"_s), copy.isEmpty() ? Files() : Files({{copy, "content"}}));
    QCOMPARE(project.readFile(u"Files/Docs/"_s + name), "content");
}

void TstItemLayouts::numberedFilesReplaceThoseInTheFolder()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12.rtf"_s, "new");
    QVERIFY(QFile::setPermissions(project.path(u"Files/Docs/12.rtf"_s), QFileDevice::ReadOwner));
    project.writeFile(u"Files/Docs/12_notes.rtf"_s, "new notes");
    project.writeFile(u"target/content.rtf"_s, "old");
    project.writeFile(u"target/content.comments"_s, "old");
    QVERIFY(Format::copyDesktopV18ToPath(project.path(), 12, project.path(u"target"_s)));
    QCOMPARE(filesIn(project, u"target"_s),
             (Files{{u"content.rtf"_s, "new"},
                    {u"content.comments"_s, "old"},
                    {u"notes.rtf"_s, "new notes"}}));
    QVERIFY(QFile::permissions(project.path(u"target/content.rtf"_s))
                .testFlag(QFileDevice::WriteOwner));
    // One that can't be replaced doesn't keep the others back.
    project.writeFile(u"blocked/notes.rtf/file"_s, "in its place");
    QVERIFY(!Format::copyDesktopV18ToPath(project.path(), 12, project.path(u"blocked"_s)));
    QCOMPARE(project.readFile(u"blocked/content.rtf"_s), "new");
}

void TstItemLayouts::numberedFilesGoToEitherFolder()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12.rtf"_s, "text");
    project.writeFile(u"Files/Docs/12_synopsis.txt"_s, "synopsis");
    QVERIFY(Format::copyDesktopV18ToDesktopV23(project.binderPath(), 12, One));
    QCOMPARE(desktopFiles(project, One), Texts);
    QVERIFY(mobileFiles(project, One).isEmpty());
    QVERIFY(Format::copyDesktopToMobileV18(project.binderPath(), 12, Two));
    QCOMPARE(mobileFiles(project, Two), Texts);
    QVERIFY(desktopFiles(project, Two).isEmpty());
}

void TstItemLayouts::aFolderThatCannotBeMadeIsAFailure()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12.rtf"_s, "text");
    project.writeFile(u"file"_s, "a file");
    QVERIFY(!Format::copyDesktopV18ToPath(project.path(), 12, project.path(u"file/folder"_s)));
    QVERIFY(!Format::copyDesktopV18ToPath(project.path(), 12, project.path(u"file"_s)));
    QCOMPARE(project.readFile(u"file"_s), "a file");
}

void TstItemLayouts::foldersAreListedByTheirUuids()
{
    const TestProject project;
    writeDesktop(project, One);
    writeDesktop(project, Two);
    project.writeFile(u"Files/Data/docs.checksum"_s, "checksums");
    project.writeFile(u"Files/Data/no uuid/file"_s, "file");
    project.writeFile(desktop(QUuid(), u"content.rtf"_s), "text");
    project.writeFile(desktop(uuidOf(3), QString()).chopped(1), "a file");
    project.writeFile(desktop(One, QString()).chopped(1) + u" (2)/content.rtf"_s, "a copy");
    QList<QUuid> uuids = Format::folderUUIDs(Format::filesDataPath(project.path()));
    std::sort(uuids.begin(), uuids.end());
    QCOMPARE(uuids, (QList{One, Two}));
    QCOMPARE(Format::folderUUIDs(project.path(u"missing"_s)), QList<QUuid>());
}

TVL_TEST(TstItemLayouts)
#include "tst_itemlayouts.moc"
