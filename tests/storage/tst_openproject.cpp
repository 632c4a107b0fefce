#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFileInfo>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString VersionFile = u"Files/version.txt"_s;
const QString BackupFile = u"Files/binder.backup"_s;

/** What a file that should hold a binder holds. */
enum class State {
    Absent,
    Good,
    CutOff, ///< Ends in the middle: a zip in its bytes, so that its directory is gone.
    CutOffInside, ///< For a zip: whole, but the binder in it is cut off.
    Garbage, ///< Of the right kind outside, with nonsense in it.
    Foreign, ///< A zip in place of a binder, a binder in place of a zip.
    Empty,
};

struct StateName
{
    State state;
    const char *name;
};

constexpr StateName PlainStates[] = {
    {State::Absent, "absent"},   {State::Good, "good"},     {State::CutOff, "cut off"},
    {State::Garbage, "garbage"}, {State::Foreign, "a zip"}, {State::Empty, "empty"},
};

constexpr StateName ZipStates[] = {
    {State::Absent, "absent"},   {State::Good, "good"},
    {State::CutOff, "cut off"},  {State::CutOffInside, "cut off inside"},
    {State::Garbage, "garbage"}, {State::Foreign, "not a zip"},
    {State::Empty, "empty"},
};

/** A binder whose items tell where they come from; ids of different first numbers don't meet. */
QByteArray binderOf(const QByteArray &source, int firstId)
{
    const QByteArray texts = itemXml(firstId + 2, "Text", source + " one")
        + itemXml(firstId + 3, "Text", source + " two",
                  itemXml(firstId + 4, "Text", source + " three"));
    const QByteArray items = itemXml(firstId, "DraftFolder", source + " draft",
                                     itemXml(firstId + 1, "Folder", source + " part", texts))
        + itemXml(firstId + 5, "ResearchFolder", source + " research")
        + itemXml(firstId + 6, "TrashFolder", source + " trash");
    return binderXml(items,
                     "<LabelSettings><Title>" + source
                         + " label</Title><DefaultLabelID>-1</DefaultLabelID>"
                           "<Labels><Label ID=\"-1\">No Label</Label><Label ID=\""
                         + QByteArray::number(firstId) + "\" Color=\"1.000 0.000 0.000\">" + source
                         + "</Label></Labels></LabelSettings>");
}

/** The outline of that binder. */
QStringList outlineOfBinder(const QString &source, int firstId)
{
    const auto line = [&](int level, int number, const QString &title) {
        return u"%1%2 %3 %4"_s.arg(QString(level, u' ')).arg(firstId + number).arg(source, title);
    };
    return {line(0, 0, u"draft"_s), line(1, 1, u"part"_s),  line(2, 2, u"one"_s),
            line(2, 3, u"two"_s),   line(3, 4, u"three"_s), line(0, 5, u"research"_s),
            line(0, 6, u"trash"_s)};
}

/** The binder, ended in its second text: the folders and a text before it are whole. */
QByteArray cutOff(const QByteArray &binder)
{
    return binder.first(binder.indexOf(" two"));
}

QByteArray firstHalf(const QByteArray &bytes)
{
    return bytes.first(bytes.size() / 2);
}

QByteArray plainContent(const QByteArray &binder, State state)
{
    switch (state) {
    case State::Good:
        return binder;
    case State::CutOff:
        return cutOff(binder);
    case State::Garbage:
        return "<?xml version=\"1.0\"?>\n<TavelinorProject Version=\"1.5\">\1\2\3\xff\xfe";
    case State::Foreign:
        return zipOf(u"Novel.tavelx"_s, binder);
    default:
        return {};
    }
}

QByteArray zipContent(const QByteArray &binder, State state)
{
    const QByteArray zip = zipOf(u"Novel.tavelx"_s, binder);
    switch (state) {
    case State::Good:
        return zip;
    case State::CutOff:
        return firstHalf(zip);
    case State::CutOffInside:
        return zipOf(u"Novel.tavelx"_s, cutOff(binder));
    case State::Garbage:
        return zipOf(u"Novel.tavelx"_s, "no binder at all");
    case State::Foreign:
        return binder;
    default:
        return {};
    }
}

constexpr int PlainId = 100;
constexpr int AutosaveId = 200;
constexpr int BackupId = 300;

const QStringList BlankOutline = {u"0 Draft"_s, u" 3 "_s, u"1 Research"_s, u"2 Trash"_s};

} // namespace

Q_DECLARE_METATYPE(State)

class TstOpenProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyOrMissingFolderGivesABlankProject_data();
    void anEmptyOrMissingFolderGivesABlankProject();
    void aTemplateThatIsNotThereGivesNoProject();

    void theFirstReadableBinderIsOpened_data();
    void theFirstReadableBinderIsOpened();
    void aCutOffBinderOpensFromTheAutosaveAndTheBackupStays();
    void aGoodBinderIsOpenedThoughTheAutosaveIsNewer();
    void aFolderInTheBindersPlaceIsPassedOver();
    void aFallbackTakesTheFirstFileOfTheZipWhateverItsName();
    void aFallbackThatTheUserSavesHealsTheBinder();

    void openingWritesTheBackupAndNothingElse();
    void openingWithoutAVersionFileWritesIt_data();
    void openingWithoutAVersionFileWritesIt();
    void openingRenamesABinderOfAnotherName();
    void aBackupThatCannotBeWrittenIsIgnored();
    void aProjectOpensByEitherPath_data();
    void aProjectOpensByEitherPath();
    void anOpenedProjectBelongsToItsParent();
    void aFailedOpenLeavesNoModelBehind();

    void aBookOpensWhole();
};

void TstOpenProject::anEmptyOrMissingFolderGivesABlankProject_data()
{
    QTest::addColumn<bool>("folderExists");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("empty folder") << true << QString();
    QTest::newRow("empty folder with a slash") << true << u"/"_s;
    QTest::newRow("binder in an empty folder") << true << u"/Novel.tavelx"_s;
    QTest::newRow("missing folder") << false << QString();
    QTest::newRow("binder in a missing folder") << false << u"/Novel.tavelx"_s;
}

void TstOpenProject::anEmptyOrMissingFolderGivesABlankProject()
{
    QFETCH(bool, folderExists);
    QFETCH(QString, suffix);

    const TestProject project;
    QVERIFY(!folderExists || QDir().mkpath(project.path()));
    const TestModel model(Format::openProject(project.path() + suffix));
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()).size(), 4);
    QCOMPARE(model->title(model->draftFolder()), u"Draft"_s);
    QCOMPARE(model->title(model->researchFolder()), u"Research"_s);
    QCOMPARE(model->title(model->trashFolder()), u"Trash"_s);
    QCOMPARE(model->rowCount(model->draftFolder()), 1);
    QCOMPARE(model->formatVersion(), TVL::FormatVersion18);
    QCOMPARE(model->path().path(), project.path());
    QVERIFY(mapsAgreeWithTree(model.get()));
    QVERIFY(model->isSaved());
    QVERIFY(project.files().isEmpty());
}

void TstOpenProject::aTemplateThatIsNotThereGivesNoProject()
{
    const TestProject project;
    const TestModel model(Format::openProject(project.path(), project.path(u"no.template"_s)));
    QVERIFY(!model);
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstOpenProject::theFirstReadableBinderIsOpened_data()
{
    QTest::addColumn<State>("plain");
    QTest::addColumn<State>("autosave");
    QTest::addColumn<State>("backup");

    for (const StateName &plain : PlainStates) {
        for (const StateName &autosave : ZipStates) {
            for (const StateName &backup : ZipStates) {
                QTest::addRow("%s, %s, %s", plain.name, autosave.name, backup.name)
                    << plain.state << autosave.state << backup.state;
            }
        }
    }
}

void TstOpenProject::theFirstReadableBinderIsOpened()
{
    QFETCH(State, plain);
    QFETCH(State, autosave);
    QFETCH(State, backup);

    const TestProject project;
    const QByteArray plainBinder = binderOf("plain", PlainId);
    project.writeFile(VersionFile, "18");
    if (plain != State::Absent)
        project.writeFile(u"Novel.tavelx"_s, plainContent(plainBinder, plain));
    if (autosave != State::Absent)
        project.writeFile(AutosaveFile, zipContent(binderOf("autosave", AutosaveId), autosave));
    if (backup != State::Absent)
        project.writeFile(BackupFile, zipContent(binderOf("backup", BackupId), backup));
    const auto before = project.files();

    // A message box would say something that is the caller's to say.
    TVLUnattendedMessageBoxes boxes;
    const TestModel model = project.open();
    QCOMPARE(boxes.boxes().size(), 0);

    auto after = project.files();
    if (plain == State::Good) {
        const QList<ZipEntry> entries = zipEntries(after.value(BackupFile));
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.constFirst().name, u"Novel.tavelx"_s);
        QCOMPARE(entries.constFirst().content, plainBinder);
        after.remove(BackupFile);
        auto expected = before;
        expected.remove(BackupFile);
        QCOMPARE(after, expected);
    } else {
        QCOMPARE(after, before);
    }

    if (plain == State::Absent && autosave == State::Absent && backup == State::Absent) {
        QVERIFY(model);
        QCOMPARE(outlineOf(model.get()), BlankOutline);
        return;
    }
    const QString source = plain == State::Good ? u"plain"_s
        : autosave == State::Good               ? u"autosave"_s
        : backup == State::Good                 ? u"backup"_s
                                                : QString();
    QCOMPARE(model != nullptr, !source.isEmpty());
    if (!model)
        return;
    const int firstId = source == u"plain" ? PlainId
        : source == u"autosave"            ? AutosaveId
                                           : BackupId;
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(source, firstId));
    QVERIFY(mapsAgreeWithTree(model.get()));
    for (const int otherId : {PlainId, AutosaveId, BackupId}) {
        QCOMPARE(model->hasNodeId(otherId), otherId == firstId);
        QCOMPARE(model->hasNodeUuid(uuidOf(otherId)), otherId == firstId);
    }
    QCOMPARE(model->labelTitle(), source + u" label"_s);
    QCOMPARE(model->labels().size(), 2);
    QCOMPARE(model->labels().constLast().mId, firstId);
    QVERIFY(model->statusItems().isEmpty());
    QVERIFY(model->isSaved());
}

void TstOpenProject::aCutOffBinderOpensFromTheAutosaveAndTheBackupStays()
{
    const TestProject project;
    const QByteArray backup = zipOf(u"Novel.tavelx"_s, binderOf("backup", BackupId));
    project.writeFile(VersionFile, "18");
    project.writeFile(u"Novel.tavelx"_s, cutOff(binderOf("plain", PlainId)));
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binderOf("autosave", AutosaveId)));
    project.writeFile(BackupFile, backup);
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"autosave"_s, AutosaveId));
    QCOMPARE(project.readFile(BackupFile), backup);
}

void TstOpenProject::aGoodBinderIsOpenedThoughTheAutosaveIsNewer()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderOf("plain", PlainId));
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binderOf("autosave", AutosaveId)));
    setAge(project.binderPath(), 24 * 60);
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"plain"_s, PlainId));
}

void TstOpenProject::aFolderInTheBindersPlaceIsPassedOver()
{
    const TestProject project;
    project.writeFile(VersionFile, "18");
    project.writeFile(u"Novel.tavelx/file"_s, "in a folder");
    const auto before = project.files();
    QVERIFY(!project.open());
    QCOMPARE(project.files(), before);

    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binderOf("autosave", AutosaveId)));
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"autosave"_s, AutosaveId));
}

void TstOpenProject::aFallbackTakesTheFirstFileOfTheZipWhateverItsName()
{
    const TestProject project;
    project.writeFile(VersionFile, "18");
    project.writeFile(AutosaveFile,
                      zipOf({{u"Before the rename.tavelx"_s, binderOf("first", 1), {}},
                             {u"Novel.tavelx"_s, binderOf("second", 50), {}}}));
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"first"_s, 1));

    project.writeFile(AutosaveFile, zipOf(QList<ZipEntry>()));
    QVERIFY(!project.open());
}

void TstOpenProject::aFallbackThatTheUserSavesHealsTheBinder()
{
    const TestProject project;
    project.writeFile(VersionFile, "18");
    project.writeFile(u"Novel.tavelx"_s, cutOff(binderOf("plain", PlainId)));
    project.writeFile(BackupFile, zipOf(u"Novel.tavelx"_s, binderOf("backup", BackupId)));
    {
        const TestModel model = project.open();
        QVERIFY(model);
        QVERIFY(model->save(true));
    }
    project.writeFile(AutosaveFile, {});
    project.writeFile(BackupFile, {});
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"backup"_s, BackupId));
}

void TstOpenProject::openingWritesTheBackupAndNothingElse()
{
    const TestProject project;
    (void)project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 text}");
    project.writeFile(u"Files/user.lock"_s, "[General]\nuser=someone\n");
    project.writeFile(u"Settings/ui.ini"_s, "[General]\n");
    project.writeFile(u"Snapshots/3.snapshots/index.xml"_s, "<Snapshots/>");
    project.writeFile(u"Mobile/binder.sync"_s, "mobile");
    project.writeFile(u"Icons/icon.png"_s, "icon");
    const auto before = project.files();
    for (int pass = 0; pass < 2; ++pass) {
        const TestModel model = project.open();
        QVERIFY(model);
        auto after = project.files();
        const QList<ZipEntry> entries = zipEntries(after.take(BackupFile));
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.constFirst().content, before.value(u"Novel.tavelx"_s));
        QCOMPARE(after, before);
    }
}

void TstOpenProject::openingWithoutAVersionFileWritesIt_data()
{
    QTest::addColumn<QByteArray>("binderVersion");
    QTest::addColumn<int>("formatVersion");

    QTest::newRow("1.0") << QByteArray("1.0") << 16;
    QTest::newRow("1.5") << QByteArray("1.5") << 18;
}

void TstOpenProject::openingWithoutAVersionFileWritesIt()
{
    QFETCH(QByteArray, binderVersion);
    QFETCH(int, formatVersion);

    const TestProject project;
    const QByteArray binder = binderXml(itemXml(0, "DraftFolder", "Draft"), {}, binderVersion);
    project.writeFile(u"Novel.tavelx"_s, binder);
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(int(model->formatVersion()), formatVersion);
    auto after = project.files();
    QVERIFY(after.remove(BackupFile));
    QCOMPARE(after,
             (QMap<QString, QByteArray>{{VersionFile, QByteArray::number(formatVersion)},
                                        {u"Novel.tavelx"_s, binder}}));
}

void TstOpenProject::openingRenamesABinderOfAnotherName()
{
    const TestProject project;
    const QByteArray binder = binderOf("plain", PlainId);
    project.writeFile(VersionFile, "18");
    project.writeFile(u"project.tavelx"_s, binder);
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"plain"_s, PlainId));
    QCOMPARE(project.files().keys(), (QStringList{BackupFile, VersionFile, u"Novel.tavelx"_s}));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
}

void TstOpenProject::aBackupThatCannotBeWrittenIsIgnored()
{
    const TestProject project;
    project.writeFile(VersionFile, "18");
    project.writeFile(u"Novel.tavelx"_s, binderOf("plain", PlainId));
    project.writeFile(BackupFile + u"/file"_s, "in a folder");
    const auto before = project.files();
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"plain"_s, PlainId));
    QCOMPARE(project.files(), before);
}

void TstOpenProject::aProjectOpensByEitherPath_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<State>("plain");

    for (const char *suffix : {"", "/", "/Novel.tavelx"}) {
        QTest::addRow("binder by '%s'", suffix) << QString::fromLatin1(suffix) << State::Good;
        QTest::addRow("fallback by '%s'", suffix) << QString::fromLatin1(suffix) << State::Absent;
    }
}

void TstOpenProject::aProjectOpensByEitherPath()
{
    QFETCH(QString, suffix);
    QFETCH(State, plain);

    const TestProject project;
    const QByteArray binder = binderOf("plain", PlainId);
    if (plain == State::Good)
        project.writeFile(u"Novel.tavelx"_s, binder);
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, binder));
    const TestModel model(Format::openProject(project.path() + suffix));
    QVERIFY(model);
    QCOMPARE(outlineOf(model.get()), outlineOfBinder(u"plain"_s, PlainId));
    QCOMPARE(model->path().path(), project.path());
    QCOMPARE(model->name(), u"Novel"_s);
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path() + suffix), model.get());
    QCOMPARE(QFileInfo::exists(Format::binderBackupFilePath(project.path())), plain == State::Good);
}

void TstOpenProject::anOpenedProjectBelongsToItsParent()
{
    const TestProject project;
    (void)project.create();
    QPointer<TVLProjectModel> model;
    {
        QObject parent;
        model = Format::openProject(project.path(), {}, &parent);
        QVERIFY(model);
        QCOMPARE(model->QObject::parent(), &parent);
        QVERIFY(!model->isMobileProject());
    }
    QVERIFY(!model);
}

void TstOpenProject::aFailedOpenLeavesNoModelBehind()
{
    const TestProject project;
    project.writeFile(VersionFile, "18");
    project.writeFile(u"Novel.tavelx"_s, cutOff(binderOf("plain", PlainId)));
    project.writeFile(AutosaveFile, zipOf(u"Novel.tavelx"_s, cutOff(binderOf("autosave", 1))));
    QObject parent;
    QVERIFY(!Format::openProject(project.path(), {}, &parent));
    QVERIFY(parent.children().isEmpty());
    QVERIFY(!TVLProjectModel::findProjectModelViaPath(project.path()));

    project.writeFile(BackupFile, zipOf(u"Novel.tavelx"_s, binderOf("backup", BackupId)));
    const TVLProjectModel *model = Format::openProject(project.path(), {}, &parent);
    QVERIFY(model);
    QCOMPARE(parent.children(), QObjectList{const_cast<TVLProjectModel *>(model)});
    QCOMPARE(TVLProjectModel::findProjectModelViaPath(project.path()), model);
}

void TstOpenProject::aBookOpensWhole()
{
    constexpr int Parts = 5;
    constexpr int ChaptersOfAPart = 27;
    int id = 0;
    const int draftId = id++;
    QByteArray parts;
    QStringList outline = {u"0 The Draft & more"_s};
    for (int part = 1; part <= Parts; ++part) {
        const int partId = id++;
        outline.append(u" %1 Part %2"_s.arg(partId).arg(part));
        QByteArray chapters;
        for (int chapter = 1; chapter <= ChaptersOfAPart; ++chapter) {
            QByteArray xml = itemXml(id, "Text",
                                     "Chapter " + QByteArray::number(chapter)
                                         + " \xe2\x80\x9c\xc3\xaf\xe2\x80\x9d");
            xml.replace("<MetaData/>",
                        "<MetaData><LabelID>1</LabelID><StatusID>2</StatusID>"
                        "<IncludeInCompile>Yes</IncludeInCompile><Unknown/></MetaData>"
                        "<TextSettings><Target Type=\"Words\">1000</Target></TextSettings>");
            chapters += xml;
            outline.append(u"  %1 Chapter %2 \u201c\u00ef\u201d"_s.arg(id).arg(chapter));
            ++id;
        }
        parts += itemXml(partId, "Folder", "Part " + QByteArray::number(part), chapters);
    }
    QByteArray items = itemXml(draftId, "DraftFolder", "The Draft &amp; more", parts);
    for (const char *type : {"ResearchFolder", "TrashFolder"}) {
        outline.append(u"%1 %2"_s.arg(id).arg(QString::fromLatin1(type)));
        items += itemXml(id++, type, type);
    }
    const QByteArray binder =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TavelinorProject Template=\"No\" "
        "Version=\"1.5\" "
        "Creator=\"OTHER-1\" Device=\"desk\" Modified=\"2026-03-01 08:30:00 +0000\">"
        "<Unheard><Of x=\"1\">text</Of></Unheard><Binder>\n"
        + items
        + "</Binder><LabelSettings><Title>Point of view</Title><DefaultLabelID>1</DefaultLabelID>"
          "<Labels><Label ID=\"-1\">No Label</Label><Label ID=\"1\" Color=\"0.000 0.502 "
          "1.000\">Idea</Label>"
          "</Labels></LabelSettings><StatusSettings><Title>State</Title>"
          "<DefaultStatusID>2</DefaultStatusID><StatusItems><Status ID=\"-1\">No Status</Status>"
          "<Status ID=\"2\">Draft</Status></StatusItems></StatusSettings></TavelinorProject>\n";

    const TestProject project(u"A Book"_s);
    project.writeFile(VersionFile, "18");
    project.writeFile(u"A Book.tavelx"_s, binder);
    project.writeFile(u"Files/Docs/2.rtf"_s, "{\\rtf1 text}");
    project.writeFile(u"Files/Docs/2_synopsis.txt"_s, "synopsis");
    const auto before = project.files();

    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(model->totalNodesCount(), 1 + Parts * (1 + ChaptersOfAPart) + 2);
    QCOMPARE(outlineOf(model.get()), outline);
    QVERIFY(mapsAgreeWithTree(model.get()));
    auto after = project.files();
    QCOMPARE(zipEntries(after.take(BackupFile)).value(0).content, binder);
    QCOMPARE(after, before);

    QCOMPARE(model->name(), u"A Book"_s);
    QCOMPARE(model->deviceName(), u"desk"_s);
    QCOMPARE(model->labelTitle(), u"Point of view"_s);
    QCOMPARE(model->labels(),
             (QList<TVLLabel>{{-1, u"No Label"_s, QColor()}, {1, u"Idea"_s, QColor(0, 128, 255)}}));
    QCOMPARE(model->defaultLabelIdentity(), 1);
    QCOMPARE(model->statusTitle(), u"State"_s);
    QCOMPARE(model->statusItems(), (QList<TVLStatusItem>{{-1, u"No Status"_s}, {2, u"Draft"_s}}));
    QCOMPARE(model->defaultStatusIdentity(), 2);
    const TVLProjectNode *chapter = model->findNode(2);
    QCOMPARE(int(chapter->mNodeType), int(TVL::Text));
    QCOMPARE(chapter->mLabelId, 1);
    QCOMPARE(chapter->mStatusId, 2);
    QCOMPARE(chapter->mTarget, 1000);
    QVERIFY(chapter->mIncludeInCompile);
    QCOMPARE(chapter->mCreated.toUTC(), QDateTime(QDate(2026, 3, 1), QTime(8, 30), Qt::UTC));
    QVERIFY(!model->findNode(1)->mIncludeInCompile);
    QCOMPARE(model->draftFolder(), model->index(0));
    QVERIFY(model->isSaved());
}

TVL_TEST(TstOpenProject)
#include "tst_openproject.moc"
