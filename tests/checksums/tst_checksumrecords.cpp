#include "ChecksumFixtures.h"
#include "DocumentFixtures.h"
#include "StorageFixtures.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

constexpr int Id = 12;
const QUuid ItemUuid = uuidOf(Id);

/** All types, and some numbers that are none. */
constexpr int AllTypes[] = {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

bool isTracked(int type)
{
    return type == 0 || type == 1 || type == 2 || type == 4;
}

bool hasFile(int type)
{
    return isTracked(type) || type == 3 || type == 7 || type == 8;
}

/** Where a file lies, and what goes with that place. */
enum class Place { Docs, Data, Mobile };

/** A project in a folder of its own with its checksums. */
class ProjectWithChecksums
{
public:
    explicit ProjectWithChecksums(TVL::FormatVersion version = TVL::FormatVersion18)
        : mFolder(mProject.path(), version)
        , mChecksums(&mFolder)
    {
    }

    [[nodiscard]] const TestProject &project() const { return mProject; }
    [[nodiscard]] TVLProjectFolderFormat *folder() { return &mFolder; }
    [[nodiscard]] TVLProjectChecksums *checksums() { return &mChecksums; }

    /** Path of the item's file below the project's folder. */
    [[nodiscard]] static QString filePath(Place place, TVL::DocumentType type)
    {
        switch (place) {
        case Place::Docs:
            return docsPath(type, Id);
        case Place::Data:
            return desktopPath(Id, Format::docTypeToFileName(type));
        case Place::Mobile:
            break;
        }
        return mobilePath(Id, Format::docTypeToFileName(type));
    }
    [[nodiscard]] static ChecksumKey keyOf(Place place, TVL::DocumentType type)
    {
        return place == Place::Docs ? key(Format::documentFileNameId(Id, type))
                                    : key(Id, Format::docTypeToFileName(type));
    }
    [[nodiscard]] bool match(Place place, TVL::DocumentType type) const
    {
        return place == Place::Docs ? mChecksums.checksumsMatch(Id, type)
                                    : mChecksums.checksumsMatch(ItemUuid, type);
    }
    [[nodiscard]] QByteArray current(Place place, TVL::DocumentType type) const
    {
        switch (place) {
        case Place::Docs:
            return mChecksums.currentHddChecksum(Id, type);
        case Place::Data:
            return mChecksums.currentHddChecksumData(ItemUuid, type);
        case Place::Mobile:
            break;
        }
        return mChecksums.currentHddChecksumMobile(ItemUuid, type);
    }
    /** Refreshes a record; the item's own folder is only reached through its node. */
    void update(Place place, TVL::DocumentType type)
    {
        switch (place) {
        case Place::Docs:
            return mChecksums.updateHashSum(Id, type);
        case Place::Data:
            return mChecksums.updateHashSumNode(mItem.node(), type);
        case Place::Mobile:
            return mChecksums.updateHashSumMobile(ItemUuid, type);
        }
    }
    void updateLoaded(Place place, TVL::DocumentType type)
    {
        switch (place) {
        case Place::Docs:
            return mChecksums.updateLoadedCheckSums(Id, type);
        case Place::Data:
            return mChecksums.updateLoadedCheckSumsData(ItemUuid, type);
        case Place::Mobile:
            return mChecksums.updateLoadedCheckSumsMobile(ItemUuid, type);
        }
    }

private:
    TestProject mProject;
    TVLProjectFolderFormat mFolder;
    TVLProjectChecksums mChecksums;
    LoadedItem mItem{Id};
};

struct NamedPlace
{
    Place place;
    const char *name;
};
constexpr NamedPlace Places[] = {
    {Place::Docs, "numbered"}, {Place::Data, "own folder"}, {Place::Mobile, "mobile copy"}};

void addPlaceRows()
{
    QTest::addColumn<Place>("place");
    for (const NamedPlace &each : Places)
        QTest::newRow(each.name) << each.place;
}

/** Only the places whose files are compared with records. */
void addDesktopRows()
{
    QTest::addColumn<Place>("place");
    for (const NamedPlace &each : Places) {
        if (each.place != Place::Mobile)
            QTest::newRow(each.name) << each.place;
    }
}

/** The version in which a node's files lie there. */
TVL::FormatVersion versionOf(Place place)
{
    return place == Place::Data ? TVL::FormatVersion23 : TVL::FormatVersion18;
}

} // namespace

class TstChecksumRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewObjectHasNoRecords();
    void aKeyIsTheUuidAndTheNameOfTheType_data();
    void aKeyIsTheUuidAndTheNameOfTheType();
    void theCurrentHashIsThatOfTheFile_data() { addPlaceRows(); }
    void theCurrentHashIsThatOfTheFile();
    void aHashIsTheSha1OfTheContent();
    void aRecordIsFoundByItsKey();

    void whatWasModifiedOnceStaysKnown();
    void otherRecordsCountAsModified();

    void aFileMatchesAHash();
    void aFileMatchesItsRecord_data();
    void aFileMatchesItsRecord();
    void anUnreadableFileMatchesNothing_data() { addDesktopRows(); }
    void anUnreadableFileMatchesNothing();
    void aFolderInThePlaceOfAFileMatchesNothing();
    void aFileThatCannotBeSeenMatchesNothing();
    void theLayoutsHaveRecordsOfTheirOwn();

    void aRecordIsRefreshedFromItsFile_data() { addPlaceRows(); }
    void aRecordIsRefreshedFromItsFile();
    void everyRefreshingModifies_data() { addPlaceRows(); }
    void everyRefreshingModifies();
    void otherTypesAreNotRefreshed_data() { addPlaceRows(); }
    void otherTypesAreNotRefreshed();
    void otherTypesAreRefreshedWhenAskedForDirectly_data() { addPlaceRows(); }
    void otherTypesAreRefreshedWhenAskedForDirectly();
    void anUnreadableFileIsRecordedAsSuch();
    void aNodeIsRefreshedInTheFoldersLayout_data();
    void aNodeIsRefreshedInTheFoldersLayout();
    void noNodeIsNothingToRefresh();

    void savingMakesTheFolder();
    void aFailedSaveLeavesTheRecordsModified();
    void loadingReplacesAllRecords();
    void withoutAFileThereAreNoRecords();
    void whatWasSavedIsLoaded();
    void textsChangedBehindTheProjectsBackAreFound();
    void aHashThatIsKnownIsRecorded();
    void nothingIsKnownOfAnItemThatIsForgotten();
    void ofALineThatWasCutOffNothingStays_data();
    void ofALineThatWasCutOffNothingStays();
    void notesTellHowFilesWereLeft();
    void notesNeedTheFileThatTheyStandIn();
    void whatIsOutdatedIsTakenOutOfTheFile();
    void theProjectsPathIsFollowed();
    void theProjectMayBeNamedByItsBinder();
};

void TstChecksumRecords::aNewObjectHasNoRecords()
{
    ProjectWithChecksums project;
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(!project.checksums()->isModified());
    QVERIFY(!project.checksums()->wasEverModified());
    QVERIFY(!QFile::exists(project.project().path()));
}

void TstChecksumRecords::aKeyIsTheUuidAndTheNameOfTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");

    QTest::newRow("text") << int(TVL::MainText) << u"content.rtf"_s;
    QTest::newRow("notes") << int(TVL::NotesText) << u"notes.rtf"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisText) << u"synopsis.txt"_s;
    QTest::newRow("links") << int(TVL::LinksFile) << u"content.links"_s;
    QTest::newRow("comments") << int(TVL::CommentsFile) << u"content.comments"_s;
    QTest::newRow("text styles") << int(TVL::TextStyles) << u"content.styles"_s;
    QTest::newRow("note styles") << int(TVL::NotesStyles) << u"note.styles"_s;
    QTest::newRow("unknown file") << int(TVL::ForeignFile) << QString();
}

void TstChecksumRecords::aKeyIsTheUuidAndTheNameOfTheType()
{
    QFETCH(const int, type);
    QFETCH(const QString, name);

    const auto documentType = TVL::DocumentType(type);
    QCOMPARE(TVLProjectChecksums::checksumKey(ItemUuid, documentType), ChecksumKey(ItemUuid, name));
    QCOMPARE(TVLProjectChecksums::checksumKey(QUuid(), documentType), ChecksumKey(QUuid(), name));
}

void TstChecksumRecords::theCurrentHashIsThatOfTheFile()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project;
    for (const int number : AllTypes) {
        const auto type = TVL::DocumentType(number);
        QCOMPARE(project.current(place, type), QByteArray());
        if (!hasFile(number))
            continue;
        const QString path = project.filePath(place, type);
        project.project().writeFile(path, path.toUtf8());
        QCOMPARE(project.current(place, type), hashOf(path.toUtf8()));
        project.project().writeFile(path, "changed");
        QCOMPARE(project.current(place, type), hashOf("changed"));
        linkToUnreadableFile(project.project(), path);
        QCOMPARE(project.current(place, type), QByteArray());
    }
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(!project.checksums()->isModified());
}

void TstChecksumRecords::aHashIsTheSha1OfTheContent()
{
    ProjectWithChecksums project;
    project.project().writeFile(docsPath(TVL::MainText, Id), {});
    project.project().writeFile(docsPath(TVL::NotesText, Id), "abc");
    QCOMPARE(project.checksums()->currentHddChecksum(Id, TVL::MainText).toHex(),
             "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    QCOMPARE(project.checksums()->currentHddChecksum(Id, TVL::NotesText).toHex(),
             "a9993e364706816aba3e25717850c26c9cd0d89d");
}

void TstChecksumRecords::aRecordIsFoundByItsKey()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    checksums->setChecksums({{key(u"12.rtf"_s), "a"},
                             {key(u"12.styles"_s), "b"},
                             {key(Id, u"content.rtf"_s), "c"},
                             {key(Id, u"note.styles"_s), "d"}});
    QCOMPARE(checksums->loadedChecksum(Id, TVL::MainText), "a");
    QCOMPARE(checksums->loadedChecksum(Id, TVL::TextStyles), "b");
    QCOMPARE(checksums->loadedChecksum(Id, TVL::NotesText), QByteArray());
    QCOMPARE(checksums->loadedChecksum(Id, TVL::ForeignFile), QByteArray());
    QCOMPARE(checksums->loadedChecksum(Id + 1, TVL::MainText), QByteArray());
    QCOMPARE(checksums->loadedChecksum(ItemUuid, TVL::MainText), "c");
    QCOMPARE(checksums->loadedChecksum(ItemUuid, TVL::NotesStyles), "d");
    QCOMPARE(checksums->loadedChecksum(ItemUuid, TVL::NotesText), QByteArray());
    QCOMPARE(checksums->loadedChecksum(uuidOf(Id + 1), TVL::MainText), QByteArray());
    QCOMPARE(checksums->loadedChecksum(QUuid(), TVL::MainText), QByteArray());
}

void TstChecksumRecords::whatWasModifiedOnceStaysKnown()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    checksums->setModified(false);
    QVERIFY(!checksums->isModified() && !checksums->wasEverModified());
    checksums->setModified(true);
    QVERIFY(checksums->isModified() && checksums->wasEverModified());
    checksums->setModified(false);
    QVERIFY(!checksums->isModified() && checksums->wasEverModified());
    QVERIFY(checksums->saveChecksums());
    QVERIFY(checksums->loadChecksums());
    QVERIFY(!checksums->isModified() && checksums->wasEverModified());
}

void TstChecksumRecords::otherRecordsCountAsModified()
{
    ProjectWithChecksums project;
    const ChecksumMap records = {{key(u"12.rtf"_s), "a"}};
    project.checksums()->setChecksums(records);
    QCOMPARE(project.checksums()->checksums(), records);
    QVERIFY(project.checksums()->isModified());
    QVERIFY(project.checksums()->wasEverModified());
    project.checksums()->setModified(false);
    project.checksums()->setChecksums({});
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(project.checksums()->isModified());
}

void TstChecksumRecords::aFileMatchesAHash()
{
    const TestProject project;
    project.writeFile(u"file"_s, "content");
    project.writeFile(u"empty"_s, {});
    linkToUnreadableFile(project, u"unreadable"_s);
    const auto match = [&project](const QString &name, const QByteArray &checksum) {
        return TVLProjectChecksums::checksumsMatch(project.path(name), checksum);
    };
    QVERIFY(match(u"file"_s, hashOf("content")));
    QVERIFY(match(u"empty"_s, hashOf({})));
    QVERIFY(!match(u"file"_s, hashOf("Content")));
    QVERIFY(!match(u"file"_s, hashOf("content").toHex()));
    QVERIFY(!match(u"file"_s, hashOf("content").first(19)));
    QVERIFY(!match(u"file"_s, {}));
    QVERIFY(!match(u"empty"_s, {}));
    // A hash that could not be made is no hash.
    QVERIFY(!match(u"missing"_s, {}));
    QVERIFY(!match(u"unreadable"_s, {}));
    QVERIFY(!match(QString(), {}));
    QVERIFY(!match(u"missing"_s, hashOf("content")));
}

void TstChecksumRecords::aFileMatchesItsRecord_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<QByteArray>("record"); // Null for none.
    QTest::addColumn<QByteArray>("content"); // Null for no file.
    QTest::addColumn<bool>("match");

    for (const NamedPlace &each : Places) {
        if (each.place == Place::Mobile)
            continue;
        const auto add = [&each](const char *name, const QByteArray &record,
                                 const QByteArray &content, bool match) {
            QTest::addRow("%s, %s", each.name, name) << each.place << record << content << match;
        };
        add("no record and no file", {}, {}, true);
        add("no record and a file", {}, "text", false);
        add("no record and an empty file", {}, "", false);
        add("a record and no file", hashOf("text"), {}, false);
        add("a record and the file", hashOf("text"), "text", true);
        add("a record and another file", hashOf("text"), "Text", false);
        add("the record of an empty file", hashOf({}), "", true);
        add("an empty record and no file", "", {}, false);
        add("an empty record and a file", "", "text", false);
        add("a damaged record", hashOf("text").first(10), "text", false);
    }
}

void TstChecksumRecords::aFileMatchesItsRecord()
{
    QFETCH(const Place, place);
    QFETCH(const QByteArray, record);
    QFETCH(const QByteArray, content);
    QFETCH(const bool, match);

    ProjectWithChecksums project;
    for (const int number : AllTypes) {
        const auto type = TVL::DocumentType(number);
        ChecksumMap records;
        if (!record.isNull())
            records.insert(project.keyOf(place, type), record);
        project.checksums()->setChecksums(records);
        if (!content.isNull() && hasFile(number))
            project.project().writeFile(project.filePath(place, type), content);
        QCOMPARE(project.match(place, type), isTracked(number) && match);
    }
}

void TstChecksumRecords::anUnreadableFileMatchesNothing()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project(versionOf(place));
    const QString path = project.filePath(place, TVL::MainText);
    linkToUnreadableFile(project.project(), path);
    QVERIFY(!project.match(place, TVL::MainText));
    project.update(place, TVL::MainText);
    QCOMPARE(project.checksums()->checksums().value(project.keyOf(place, TVL::MainText), "x"),
             QByteArray());
    QVERIFY(!project.match(place, TVL::MainText));
}

void TstChecksumRecords::aFolderInThePlaceOfAFileMatchesNothing()
{
    ProjectWithChecksums project;
    QVERIFY(QDir().mkpath(project.project().path(docsPath(TVL::MainText, Id))));
    QVERIFY(!project.checksums()->checksumsMatch(Id, TVL::MainText));
    project.checksums()->updateHashSum(Id, TVL::MainText);
    QVERIFY(!project.checksums()->checksumsMatch(Id, TVL::MainText));
}

void TstChecksumRecords::theLayoutsHaveRecordsOfTheirOwn()
{
    ProjectWithChecksums project;
    for (const NamedPlace &each : Places)
        project.project().writeFile(project.filePath(each.place, TVL::MainText), each.name);
    TVLProjectChecksums *checksums = project.checksums();
    checksums->setChecksums({{key(u"12.rtf"_s), hashOf("own folder")},
                             {key(Id, u"content.rtf"_s), hashOf("numbered")}});
    QVERIFY(!checksums->checksumsMatch(Id, TVL::MainText));
    QVERIFY(!checksums->checksumsMatch(ItemUuid, TVL::MainText));
    checksums->updateHashSum(Id, TVL::MainText);
    QVERIFY(checksums->checksumsMatch(Id, TVL::MainText));
    QVERIFY(!checksums->checksumsMatch(ItemUuid, TVL::MainText));
    checksums->updateHashSumMobile(ItemUuid, TVL::MainText);
    QCOMPARE(checksums->loadedChecksum(ItemUuid, TVL::MainText), hashOf("mobile copy"));
    // A uuid is compared with the desktop's file, wherever its record is from.
    QVERIFY(!checksums->checksumsMatch(ItemUuid, TVL::MainText));
    checksums->updateLoadedCheckSumsData(ItemUuid, TVL::MainText);
    QVERIFY(checksums->checksumsMatch(ItemUuid, TVL::MainText));
    QVERIFY(checksums->checksumsMatch(Id, TVL::MainText));
    QCOMPARE(checksums->checksums().size(), 2);
}

void TstChecksumRecords::aRecordIsRefreshedFromItsFile()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project(versionOf(place));
    const ChecksumMap others = {{key(u"1.rtf"_s), "a"}, {key(1, u"content.rtf"_s), "b"}};
    for (const TVL::DocumentType type :
         {TVL::MainText, TVL::NotesText, TVL::SynopsisText, TVL::CommentsFile}) {
        const QString path = project.filePath(place, type);
        ChecksumMap expected = others;
        project.checksums()->setChecksums(others);
        for (const char *content : {"one", "two", ""}) {
            project.project().writeFile(path, content);
            project.update(place, type);
            expected.insert(project.keyOf(place, type), hashOf(content));
            QCOMPARE(project.checksums()->checksums(), expected);
        }
        QVERIFY(QFile::remove(project.project().path(path)));
        project.update(place, type);
        QCOMPARE(project.checksums()->checksums(), others);
    }
}

void TstChecksumRecords::everyRefreshingModifies()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project(versionOf(place));
    TVLProjectChecksums *checksums = project.checksums();
    project.update(place, TVL::MainText);
    QVERIFY(checksums->isModified());
    project.project().writeFile(project.filePath(place, TVL::MainText), "text");
    for (int round = 0; round < 2; ++round) {
        checksums->setModified(false);
        project.update(place, TVL::MainText);
        QVERIFY(checksums->isModified());
    }
}

void TstChecksumRecords::otherTypesAreNotRefreshed()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project(versionOf(place));
    for (const int number : AllTypes) {
        if (isTracked(number))
            continue;
        const auto type = TVL::DocumentType(number);
        if (hasFile(number))
            project.project().writeFile(project.filePath(place, type), "text");
        project.update(place, type);
    }
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(!project.checksums()->wasEverModified());
}

void TstChecksumRecords::otherTypesAreRefreshedWhenAskedForDirectly()
{
    QFETCH(const Place, place);

    ProjectWithChecksums project;
    ChecksumMap expected;
    for (const int number : AllTypes) {
        const auto type = TVL::DocumentType(number);
        if (hasFile(number)) {
            project.project().writeFile(project.filePath(place, type), "text");
            expected.insert(project.keyOf(place, type), hashOf("text"));
        }
        project.updateLoaded(place, type);
        QCOMPARE(project.checksums()->checksums(), expected);
    }
    QCOMPARE(expected.size(), 7);
}

void TstChecksumRecords::anUnreadableFileIsRecordedAsSuch()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    linkToUnreadableFile(project.project(), docsPath(TVL::MainText, Id));
    checksums->updateHashSum(Id, TVL::MainText);
    QVERIFY(checksums->saveChecksums());
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=\n");
    QVERIFY(checksums->loadChecksums());
    QCOMPARE(checksums->checksums(), (ChecksumMap{{key(u"12.rtf"_s), {}}}));
    QVERIFY(!checksums->checksumsMatch(Id, TVL::MainText));
}

void TstChecksumRecords::aNodeIsRefreshedInTheFoldersLayout_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<Place>("place");

    QTest::newRow("not known") << 0 << Place::Docs;
    QTest::newRow("16") << 16 << Place::Docs;
    QTest::newRow("18") << 18 << Place::Docs;
    QTest::newRow("23") << 23 << Place::Data;
}

void TstChecksumRecords::aNodeIsRefreshedInTheFoldersLayout()
{
    QFETCH(const int, version);
    QFETCH(const Place, place);

    ProjectWithChecksums project{TVL::FormatVersion(version)};
    for (const NamedPlace &each : Places)
        project.project().writeFile(project.filePath(each.place, TVL::NotesText), each.name);
    LoadedItem item(Id);
    project.checksums()->updateHashSumNode(item.node(), TVL::NotesText);
    const QByteArray content = place == Place::Docs ? "numbered" : "own folder";
    QCOMPARE(project.checksums()->checksums(),
             (ChecksumMap{{project.keyOf(place, TVL::NotesText), hashOf(content)}}));
}

void TstChecksumRecords::noNodeIsNothingToRefresh()
{
    ProjectWithChecksums project;
    project.checksums()->updateHashSumNode(nullptr, TVL::MainText);
    QVERIFY(!project.checksums()->isModified());
}

void TstChecksumRecords::savingMakesTheFolder()
{
    ProjectWithChecksums project;
    project.checksums()->setChecksums({{key(u"12.rtf"_s), "a"}, {key(u"1.rtf"_s), "b"}});
    QVERIFY(project.checksums()->saveChecksums());
    QVERIFY(!project.checksums()->isModified());
    QCOMPARE(project.project().files(),
             (QMap<QString, QByteArray>{{RecordsFile, "1.rtf=62\n12.rtf=61\n"}}));
    // What isn't modified is written as well.
    QVERIFY(QFile::remove(project.project().path(RecordsFile)));
    QVERIFY(project.checksums()->saveChecksums());
    QVERIFY(QFile::exists(project.project().path(RecordsFile)));
}

void TstChecksumRecords::aFailedSaveLeavesTheRecordsModified()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    checksums->setChecksums({{key(u"12.rtf"_s), "a"}});
    const QString folder = project.project().path(u"Files/Docs"_s);
    // No folder can be made there.
    project.project().writeFile(u"Files"_s, "a file");
    QVERIFY(!checksums->saveChecksums());
    QVERIFY(checksums->isModified());
    QCOMPARE(project.project().readFile(u"Files"_s), "a file");
    // No file can be written there.
    QVERIFY(QFile::remove(project.project().path(u"Files"_s)));
    QVERIFY(QDir().mkpath(project.project().path(RecordsFile)));
    QVERIFY(!checksums->saveChecksums());
    QVERIFY(checksums->isModified());
    // Nothing is left to write to.
    QVERIFY(QDir(folder).rmdir(u"docs.checksum"_s));
    makeUnwritable(project.project(), RecordsFile);
    QVERIFY(!checksums->saveChecksums());
    QVERIFY(checksums->isModified());

    QVERIFY(QFile::remove(project.project().path(RecordsFile)));
    QVERIFY(checksums->saveChecksums());
    QVERIFY(!checksums->isModified());
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=61\n");
}

void TstChecksumRecords::loadingReplacesAllRecords()
{
    ProjectWithChecksums project;
    project.project().writeFile(RecordsFile, "12.rtf=61\n");
    project.checksums()->setChecksums({{key(u"1.rtf"_s), "b"}});
    QVERIFY(project.checksums()->loadChecksums());
    QCOMPARE(project.checksums()->checksums(), (ChecksumMap{{key(u"12.rtf"_s), "a"}}));
    QVERIFY(!project.checksums()->isModified());
    QVERIFY(project.checksums()->wasEverModified());
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=61\n");
}

void TstChecksumRecords::withoutAFileThereAreNoRecords()
{
    ProjectWithChecksums project;
    project.checksums()->setChecksums({{key(u"1.rtf"_s), "b"}});
    QVERIFY(!project.checksums()->loadChecksums());
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(!project.checksums()->isModified());
    QVERIFY(!QFile::exists(project.project().path()));

    linkToUnreadableFile(project.project(), RecordsFile);
    project.checksums()->setChecksums({{key(u"1.rtf"_s), "b"}});
    QVERIFY(!project.checksums()->loadChecksums());
    QVERIFY(project.checksums()->checksums().isEmpty());
    QVERIFY(!project.checksums()->isModified());
}

void TstChecksumRecords::whatWasSavedIsLoaded()
{
    ProjectWithChecksums project;
    ChecksumMap records;
    for (int id = 0; id < 1000; ++id)
        records.insert(key(u"%1.rtf"_s.arg(id)), hashOf(QByteArray::number(id)));
    project.checksums()->setChecksums(records);
    QVERIFY(project.checksums()->saveChecksums());
    TVLProjectChecksums other(project.folder());
    QVERIFY(other.loadChecksums());
    QCOMPARE(other.checksums(), records);
    QVERIFY(!other.isModified());
    QVERIFY(!other.wasEverModified());
}

void TstChecksumRecords::textsChangedBehindTheProjectsBackAreFound()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    for (int id = 1; id <= 4; ++id) {
        project.project().writeFile(docsPath(TVL::MainText, id), rtfOf("Once upon a time"));
        checksums->updateHashSum(id, TVL::MainText);
    }
    QVERIFY(checksums->saveChecksums());
    project.project().writeFile(docsPath(TVL::MainText, 2), rtfOf("Once upon a tide"));
    QVERIFY(QFile::remove(project.project().path(docsPath(TVL::MainText, 3))));
    project.project().writeFile(docsPath(TVL::NotesText, 4), rtfOf("A note"));
    QVERIFY(checksums->loadChecksums());
    QVERIFY(checksums->checksumsMatch(1, TVL::MainText));
    QVERIFY(!checksums->checksumsMatch(2, TVL::MainText));
    QVERIFY(!checksums->checksumsMatch(3, TVL::MainText));
    QVERIFY(checksums->checksumsMatch(4, TVL::MainText));
    QVERIFY(!checksums->checksumsMatch(4, TVL::NotesText));
    QVERIFY(checksums->checksumsMatch(1, TVL::NotesText));
}

void TstChecksumRecords::aFileThatCannotBeSeenMatchesNothing()
{
    // As one in a folder that can't be looked into, it may be there.
    ProjectWithChecksums project;
    project.project().writeFile(docsPath(TVL::NotesText, Id), "notes");
    QVERIFY(QFile::link(u"nowhere"_s, project.project().path(docsPath(TVL::MainText, Id))));
    QVERIFY(!project.checksums()->checksumsMatch(Id, TVL::MainText));
    project.checksums()->updateHashSum(Id, TVL::MainText);
    QCOMPARE(project.checksums()->checksums(), (ChecksumMap{{key(u"12.rtf"_s), {}}}));
}

void TstChecksumRecords::aHashThatIsKnownIsRecorded()
{
    for (const TVL::FormatVersion version : {TVL::FormatVersion18, TVL::FormatVersion23}) {
        ProjectWithChecksums project{version};
        TVLProjectChecksums *checksums = project.checksums();
        LoadedItem item(Id);
        const ChecksumKey textKey = ProjectWithChecksums::keyOf(
            version == TVL::FormatVersion23 ? Place::Data : Place::Docs, TVL::MainText);
        checksums->setHashSumNode(item.node(), TVL::MainText, {});
        QVERIFY(!checksums->isModified());
        checksums->setHashSumNode(item.node(), TVL::MainText, "a");
        QCOMPARE(checksums->checksums(), (ChecksumMap{{textKey, "a"}}));
        QVERIFY(checksums->isModified());
        checksums->setModified(false);
        checksums->setHashSumNode(item.node(), TVL::MainText, "a");
        checksums->setHashSumNode(item.node(), TVL::LinksFile, "b");
        checksums->setHashSumNode(nullptr, TVL::MainText, "b");
        QVERIFY(!checksums->isModified());
        checksums->setHashSumNode(item.node(), TVL::MainText, {});
        QVERIFY(checksums->checksums().isEmpty());
        QVERIFY(checksums->isModified());
    }
}

void TstChecksumRecords::nothingIsKnownOfAnItemThatIsForgotten()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    checksums->setChecksums({{key(u"12.rtf"_s), "a"},
                             {key(u"12.comments"_s), "b"},
                             {key(u"12.links"_s), "c"},
                             {key(u"1.rtf"_s), "d"}});
    checksums->setModified(false);
    checksums->forgetHashSums(Id);
    QCOMPARE(checksums->checksums(),
             (ChecksumMap{{key(u"12.links"_s), "c"}, {key(u"1.rtf"_s), "d"}}));
    QVERIFY(checksums->isModified());
    checksums->setModified(false);
    checksums->forgetHashSums(Id);
    QVERIFY(!checksums->isModified());
}

void TstChecksumRecords::ofALineThatWasCutOffNothingStays_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("in the hash") << QByteArray("12.rtf=da39a3ee5e");
    QTest::newRow("in a digit of the hash") << QByteArray("12.rtf=da3");
    QTest::newRow("before the hash") << QByteArray("12.rtf=");
    QTest::newRow("in the name") << QByteArray("12.r");
    QTest::newRow("in a note") << QByteArray("12.rtf.saved=da39a3");
    QTest::newRow("in a note with another behind it")
        << "12.rtf.saved=da39a3\n1.rtf.saved=" + hashOf("text").toHex() + '\n';
}

void TstChecksumRecords::ofALineThatWasCutOffNothingStays()
{
    QFETCH(const QByteArray, end);
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    const QByteArray whole = "1.rtf=" + hashOf("text").toHex() + '\n';
    project.project().writeFile(RecordsFile, whole + end);
    QVERIFY(checksums->loadChecksums());
    QCOMPARE(checksums->checksums(), (ChecksumMap{{key(u"1.rtf"_s), hashOf("text")}}));
    QVERIFY(checksums->isModified());
    QVERIFY(checksums->saveChecksums());
    QCOMPARE(project.project().readFile(RecordsFile), whole);
    QVERIFY(checksums->loadChecksums());
    QVERIFY(!checksums->isModified());
}

void TstChecksumRecords::notesTellHowFilesWereLeft()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    LoadedItem item(Id);
    project.project().writeFile(RecordsFile, "1.rtf=62\n12.rtf=61");
    QVERIFY(checksums->loadChecksums());
    checksums->noteWriting(item.node(), {TVL::MainText, TVL::CommentsFile});
    QCOMPARE(project.project().readFile(RecordsFile),
             "1.rtf=62\n12.rtf=61\n12.comments.saved=\n12.rtf.saved=\n");
    project.project().writeFile(docsPath(TVL::MainText, Id), "text");
    checksums->updateHashSum(Id, TVL::MainText);
    checksums->noteWritten(item.node(), {TVL::MainText});
    const QByteArray hash = hashOf("text").toHex();
    QVERIFY(project.project().readFile(RecordsFile).endsWith("\n12.rtf.saved=" + hash + '\n'));

    // Notes are no records, and are kept when there is no record that says the same.
    TVLProjectChecksums other(project.folder());
    QVERIFY(other.loadChecksums());
    QCOMPARE(other.checksums(), (ChecksumMap{{key(u"1.rtf"_s), "b"}, {key(u"12.rtf"_s), "a"}}));
    other.setHashSumNode(item.node(), TVL::MainText, hashOf("changed"));
    QVERIFY(other.saveChecksums());
    QCOMPARE(project.project().readFile(RecordsFile),
             "1.rtf=62\n12.rtf=" + hashOf("changed").toHex() + "\n12.rtf.saved=" + hash + '\n');
    QVERIFY(checksums->saveChecksums());
    QCOMPARE(project.project().readFile(RecordsFile), "1.rtf=62\n12.rtf=" + hash + '\n');
}

void TstChecksumRecords::notesNeedTheFileThatTheyStandIn()
{
    LoadedItem item(Id);
    ProjectWithChecksums project;
    project.checksums()->noteWriting(item.node(), {TVL::MainText});
    QVERIFY(!QFile::exists(project.project().path()));
    project.project().writeFile(RecordsFile, "12.rtf=61\n");
    // No texts can be written to a folder.
    const QString texts = project.project().path(u"Files/search.indexes"_s);
    QVERIFY(QDir().mkpath(texts));
    project.checksums()->noteWriting(item.node(), {TVL::MainText});
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=61\n");
    QVERIFY(QDir().rmdir(texts));
    project.checksums()->noteWriting(item.node(), {});
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=61\n");
    project.checksums()->noteWriting(item.node(), {TVL::MainText});
    QCOMPARE(project.project().readFile(RecordsFile), "12.rtf=61\n\n12.rtf.saved=\n");
}

void TstChecksumRecords::whatIsOutdatedIsTakenOutOfTheFile()
{
    ProjectWithChecksums project;
    TVLProjectChecksums *checksums = project.checksums();
    LoadedItem item(Id);
    QVERIFY(checksums->withdrawOutdated());
    QVERIFY(!QFile::exists(project.project().path()));

    project.project().writeFile(RecordsFile, "1.rtf=62\n\n12.rtf=61");
    QVERIFY(checksums->loadChecksums());
    QVERIFY(checksums->withdrawOutdated());
    QCOMPARE(project.project().readFile(RecordsFile), "1.rtf=62\n\n12.rtf=61");
    checksums->setHashSumNode(item.node(), TVL::MainText, "b");
    QVERIFY(checksums->withdrawOutdated());
    QCOMPARE(project.project().readFile(RecordsFile), "1.rtf=62\n12.rtf.saved=61\n");
    QVERIFY(checksums->isModified());
    // What can't be read may vouch for anything.
    QVERIFY(QFile::remove(project.project().path(RecordsFile)));
    QVERIFY(QDir().mkpath(project.project().path(RecordsFile)));
    QVERIFY(!checksums->withdrawOutdated());
}

void TstChecksumRecords::theProjectsPathIsFollowed()
{
    ProjectWithChecksums project;
    const TestProject other;
    other.writeFile(docsPath(TVL::MainText, Id), "other");
    project.project().writeFile(docsPath(TVL::MainText, Id), "text");
    TVLProjectChecksums *checksums = project.checksums();
    checksums->updateHashSum(Id, TVL::MainText);
    project.folder()->setProjectPath(other.path());
    QVERIFY(!checksums->checksumsMatch(Id, TVL::MainText));
    QCOMPARE(checksums->currentHddChecksum(Id, TVL::MainText), hashOf("other"));
    checksums->updateHashSum(Id, TVL::MainText);
    QVERIFY(checksums->saveChecksums());
    QVERIFY(other.files().contains(RecordsFile));
    QVERIFY(!project.project().files().contains(RecordsFile));
}

void TstChecksumRecords::theProjectMayBeNamedByItsBinder()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText, Id), "text");
    const TVLProjectFolderFormat folder(project.binderPath(), TVL::FormatVersion18);
    TVLProjectChecksums checksums(&folder);
    checksums.updateHashSum(Id, TVL::MainText);
    QCOMPARE(checksums.loadedChecksum(Id, TVL::MainText), hashOf("text"));
    QVERIFY(checksums.checksumsMatch(Id, TVL::MainText));
    QVERIFY(checksums.saveChecksums());
    QVERIFY(project.files().contains(RecordsFile));
    QVERIFY(checksums.loadChecksums());
}

TVL_TEST(TstChecksumRecords)
#include "tst_checksumrecords.moc"
