#include "LockFixtures.h"
#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TvlCore.h"

#include <QDataStream>
#include <QFile>
#include <QHostInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/** What the commands that change a project make of locks and of damaged binders. */
class TstToolLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aProjectOfSomeoneElseIsNotChanged_data();
    void aProjectOfSomeoneElseIsNotChanged();
    void aProjectThatAnotherProcessHasIsNotChanged_data();
    void aProjectThatAnotherProcessHasIsNotChanged();
    void aLockThatIsInNobodysWayGivesPlace_data();
    void aLockThatIsInNobodysWayGivesPlace();
    void aLockByAnotherWayToTheProjectHolds();
    void onlyOneOfTwoRunsAtOnceChangesAProject();
    void aDamagedBinderIsLeftAlone();
    void aBinderThatIsGoneIsMadeAnewFromItsCopy();
    void aProjectOfALaterFormatIsNotChanged();
    void aBinderOfAnUnknownVersionIsNotChanged();
    void whatASaveWouldDropIsLeftAlone();
    void anEntityOfAnotherFileIsLeftAlone();
    void userDataThatCannotBeKeptIsLeftAlone_data();
    void userDataThatCannotBeKeptIsLeftAlone();
    void aPartThatHoldsNothingKeepsNoSave_data();
    void aPartThatHoldsNothingKeepsNoSave();
    void everyPartOfABinderIsKept();
    void aBinderWithADeadFavoriteIsLeftAlone();
    void whereThereIsNoProjectNothingIsMade_data();
    void whereThereIsNoProjectNothingIsMade();

private:
    QUuid mUserId; ///< The tool's user.
};

namespace {

const QString LockName = u"Files/user.lock"_s;

/** A command of each kind that changes a project. */
QList<QStringList> changesOf(const TestProject &project)
{
    const QString file = project.enclosingPath() + u"/a.txt"_s;
    writeFileAt(file, "Ants.");
    return {{u"import"_s, project.path(), file},
            {u"snapshot"_s, u"add"_s, project.path(), u"4"_s},
            {u"snapshot"_s, u"restore"_s, project.path(), u"4"_s, u"1"_s}};
}

/** What a lock says of who has a project. */
struct Lock
{
    QString host = QSysInfo::machineHostName();
    QString user = TvlCore::systemUsernameEnv();
    QUuid userId;
    QString projectPath;
    QString program = QStringLiteral(TAVEL_EXECUTABLE);
};

void writeLock(const TestProject &project, const Lock &lock)
{
    const QString text = u"[General]\nplatform=win\nhost=%1\nuser=%2\nuuid=%3\nproject_path=%4\n"
                         "app_path=%5\n"_s.arg(lock.host, lock.user, lock.userId.toString(),
                                               lock.projectPath, lock.program);
    project.writeFile(LockName, text.toUtf8());
}

/** A change is refused because a save would lose those parts of the binder, which stays as it is.
 */
void aChangeWouldDrop(const QString &parts, const QStringList &change, const TestProject &project)
{
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    const ProgramResult result = runTool(change);
    QCOMPARE(result.status, 1);
    QCOMPARE(
        result.errors,
        u"tavel: a save by this version would drop parts of '%1': %2\n"_s.arg(project.path(), parts)
            .toUtf8());
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
}

/** Every change is refused because the binder is damaged, and nothing on disk changes. */
void everyChangeFindsADamagedBinder(const TestProject &project)
{
    const auto before = everythingBelow(project.path());
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 u"tavel: the binder of '%1' is damaged and so is left alone; 'tavel check' tells "
                 "more\n"_s.arg(project.path())
                     .toUtf8());
        QCOMPARE(everythingBelow(project.path()), before);
    }
}

} // namespace

void TstToolLock::initTestCase()
{
    qputenv("USER", "berta");
    mUserId = QUuid::createUuid();
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << mUserId;
    writeFileAt(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                    + u"/tavel/userlock.id"_s,
                bytes);
}

void TstToolLock::aProjectOfSomeoneElseIsNotChanged_data()
{
    QTest::addColumn<Lock>("lock");
    QTest::addColumn<QString>("who");
    Lock lock;
    lock.host = u"attic"_s;
    lock.user = u"anna"_s;
    lock.program = u"/opt/writer"_s;
    QTest::newRow("someone else") << lock << u"user anna on host attic, program /opt/writer"_s;
    lock = {};
    lock.userId = mUserId;
    lock.program = u"/opt/writer"_s;
    QTest::newRow("another program of the same user")
        << lock
        << u"user %1 on host %2, program /opt/writer"_s.arg(TvlCore::systemUsernameEnv(),
                                                            QSysInfo::machineHostName());
    lock = {};
    lock.host.clear();
    lock.user.clear();
    lock.program.clear();
    QTest::newRow("a lock that was cut off")
        << lock << u"user unknown on host unknown, program unknown"_s;
}

void TstToolLock::aProjectOfSomeoneElseIsNotChanged()
{
    QFETCH(Lock, lock);
    QFETCH(const QString, who);
    const TestProject project;
    writeSoundProject(project);
    lock.projectPath = project.path();
    writeLock(project, lock);
    const auto before = everythingBelow(project.path());
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors,
                 u"tavel: '%1' is locked by %2; if nobody has it open, delete Files/user.lock in "
                 "it\n"_s.arg(project.path(), who)
                     .toUtf8());
        QCOMPARE(everythingBelow(project.path()), before);
    }
}

void TstToolLock::aProjectThatAnotherProcessHasIsNotChanged_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("another program of the same user") << u"berta"_s << false;
    QTest::newRow("another user's program") << u"anna"_s << false;
    QTest::newRow("another program of the same user, killed") << u"berta"_s << true;
    QTest::newRow("another user's program, killed") << u"anna"_s << true;
}

void TstToolLock::aProjectThatAnotherProcessHasIsNotChanged()
{
    QFETCH(const QString, user);
    QFETCH(const bool, isKilled);
    const TestProject project;
    writeSoundProject(project);
    LockHolder holder({.name = u"tavel"_s, .user = user, .home = {}}, project.path());
    QVERIFY(holder.isHolding());
    if (isKilled)
        holder.kill();
    const auto before = everythingBelow(project.path());
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors,
                 u"tavel: '%1' is locked by user %2 on host %3, program %4; if nobody has it open, "
                 "delete Files/user.lock in it\n"_s
                     .arg(project.path(), user, QHostInfo::localHostName(), lockProgramFile())
                     .toUtf8());
        QCOMPARE(everythingBelow(project.path()), before);
    }
}

void TstToolLock::aLockThatIsInNobodysWayGivesPlace_data()
{
    QTest::addColumn<QString>("projectPath"); // nothing for the project's own
    QTest::newRow("of a run that was killed") << QString();
    QTest::newRow("of the project that this one is a copy of") << u"/elsewhere/Novel.tavel"_s;
}

void TstToolLock::aLockThatIsInNobodysWayGivesPlace()
{
    QFETCH(const QString, projectPath);
    const TestProject project;
    writeSoundProject(project);
    Lock lock;
    lock.userId = mUserId;
    lock.projectPath = projectPath.isEmpty() ? project.path() : projectPath;
    for (const QStringList &change : changesOf(project)) {
        writeLock(project, lock);
        const ProgramResult result = runTool(change);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
    }
}

void TstToolLock::aLockByAnotherWayToTheProjectHolds()
{
    const TestProject project;
    writeSoundProject(project);
    const QString link = project.enclosingPath() + u"/Link.tavel"_s;
    QVERIFY(QFile::link(project.path(), link));
    Lock lock;
    lock.userId = mUserId;
    lock.projectPath = link;
    writeLock(project, lock);
    const auto before = everythingBelow(project.path());
    for (const QStringList &change : changesOf(project)) {
        QCOMPARE(runTool(change).status, 1);
        QCOMPARE(everythingBelow(project.path()), before);
    }
}

void TstToolLock::onlyOneOfTwoRunsAtOnceChangesAProject()
{
    constexpr int Runs = 8;
    const TestProject project;
    writeSoundProject(project);
    const QStringList import = changesOf(project).constFirst();
    std::vector<std::unique_ptr<QProcess>> runs;
    for (int i = 0; i < Runs; ++i) {
        runs.push_back(std::make_unique<QProcess>());
        runs.back()->start(QStringLiteral(TAVEL_EXECUTABLE), import);
    }
    int imports = 0;
    for (const auto &run : runs) {
        QVERIFY(run->waitForFinished());
        const QByteArray errors = run->readAllStandardError();
        if (run->exitCode() == 0)
            ++imports;
        else
            QCOMPARE(
                errors,
                u"tavel: another run of tavel is at work on '%1'\n"_s.arg(project.path()).toUtf8());
    }
    QVERIFY(imports > 0);
    const QByteArray outline = runTool({u"outline"_s, project.path()}).output;
    QCOMPARE(outline.count("[Text] a "), imports);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolLock::aDamagedBinderIsLeftAlone()
{
    const TestProject project;
    writeSoundProject(project);
    zipBinder(project, u"binder.autosave"_s);
    project.writeFile(u"Novel.tavelx"_s, soundBinder().chopped(100));
    everyChangeFindsADamagedBinder(project);
}

void TstToolLock::aBinderThatIsGoneIsMadeAnewFromItsCopy()
{
    const TestProject project;
    writeSoundProject(project);
    zipBinder(project, u"binder.autosave"_s);
    QVERIFY(QFile::remove(project.binderPath()));
    QCOMPARE(runTool(changesOf(project).constFirst()).status, 0);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
    QCOMPARE(runTool({u"cat"_s, project.path(), u"4"_s}).output, QByteArray("Gulls.\n"));
    QCOMPARE(runTool({u"cat"_s, project.path(), u"Draft/a"_s}).output, QByteArray("Ants.\n"));
}

void TstToolLock::aProjectOfALaterFormatIsNotChanged()
{
    const TestProject project;
    QByteArray items = systemFolders(::item(4, "Text", "The Harbour"));
    for (int id = 0; id <= 4; ++id)
        items.replace("ID=\"" + QByteArray::number(id) + "\" UUID", "UUID");
    writeProject(project, binderXml(items, {}, "2.0"), "23");
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 u"tavel: projects of format version 23 can't be changed yet: '%1'\n"_s
                     .arg(project.path())
                     .toUtf8());
        QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
        QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
    }
}

void TstToolLock::aBinderOfAnUnknownVersionIsNotChanged()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders(::item(4, "Text", "The Harbour")), {}, "9.9"),
                 "18");
    const auto before = project.files();
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 QByteArray("tavel: Project 'Novel' is incompatible with this version of "
                            "Tavelinor.\n"));
        QCOMPARE(project.files(), before);
    }
}

void TstToolLock::whatASaveWouldDropIsLeftAlone()
{
    const TestProject project;
    writeSoundProject(project);
    QByteArray binder = soundBinder();
    binder.replace("</Binder>",
                   "</Binder><Unheard><Word/></Unheard><Of Width=\"1\"/><Text>x</Text><Nothing/>"
                   "<Blank>\n</Blank><TemplateFolderID>99</TemplateFolderID>"
                   // With this a project counts as modified once it is open.
                   "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>");
    project.writeFile(u"Novel.tavelx"_s, binder);
    const QList<QStringList> changes = changesOf(project);
    QCOMPARE(runTool(changes.at(1)).status, 0); // A snapshot takes no save.
    for (const QStringList &change : {changes.at(0), changes.at(2)}) {
        aChangeWouldDrop(u"Unheard, Of, Text"_s, change, project);
    }
}

void TstToolLock::anEntityOfAnotherFileIsLeftAlone()
{
    const TestProject project;
    writeSoundProject(project);
    QByteArray binder = soundBinder();
    const qsizetype root = binder.indexOf("<TavelinorProject");
    binder.insert(root, "<!DOCTYPE TavelinorProject [<!ENTITY part SYSTEM \"part.xml\">]>\n");
    binder.replace("The Harbour", "The &part; Harbour");
    project.writeFile(u"Novel.tavelx"_s, binder);
    aChangeWouldDrop(u"the entity 'part'"_s, changesOf(project).constFirst(), project);
}

void TstToolLock::userDataThatCannotBeKeptIsLeftAlone_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::newRow("its tag has attributes")
        << QByteArray("<UserProjectData Version=\"1\">x</UserProjectData>");
    QTest::newRow("its end tag stands in a comment as well")
        << QByteArray("<UserProjectData><!-- </UserProjectData> --><Word/></UserProjectData>");
}

void TstToolLock::userDataThatCannotBeKeptIsLeftAlone()
{
    QFETCH(const QByteArray, section);
    const TestProject project;
    writeSoundProject(project);
    const QByteArray binder = soundBinder().replace("</Binder>", "</Binder>" + section);
    project.writeFile(u"Novel.tavelx"_s, binder);
    aChangeWouldDrop(u"UserProjectData"_s, changesOf(project).constFirst(), project);
}

void TstToolLock::aPartThatHoldsNothingKeepsNoSave_data()
{
    QTest::addColumn<QByteArray>("section");
    for (const char *name :
         {"LabelSettings", "StatusSettings", "TemplateFolderUUID", "TemplateFolderID",
          "Collections", "Keywords", "CustomMetaDataSettings", "ProjectProperties",
          "ProjectTargets", "Favorites", "AutoCompleteList", "BackupSettings", "FullScreenBackdrop",
          "ProjectReferences", "PrintSettings", "UserProjectData"}) {
        const QByteArray tag(name);
        QTest::newRow(name) << "<" + tag + "/><" + tag + ">\n</" + tag + ">";
    }
    QTest::newRow("a project title without a text")
        << QByteArray("<ProjectProperties><ProjectTitle></ProjectTitle></ProjectProperties>");
    QTest::newRow("a backdrop without a path") << QByteArray("<FullScreenBackdrop Type=\"Path\"/>");
    QTest::newRow("a backdrop that is no item")
        << QByteArray("<FullScreenBackdrop Type=\"BinderID\">-1</FullScreenBackdrop>");
    QTest::newRow("a template folder that is no item")
        << "<TemplateFolderUUID>" + uuidOf(99) + "</TemplateFolderUUID>";
    QTest::newRow("a template folder's id that is no item's")
        << QByteArray("<TemplateFolderID>99</TemplateFolderID>");
    QTest::newRow("targets of 0") << QByteArray(
        "<ProjectTargets Notify=\"No\"><DraftTarget>0</DraftTarget>"
        "<SessionTarget>0</SessionTarget></ProjectTargets>");
    QTest::newRow("no exclusion from backups")
        << QByteArray("<BackupSettings><Exclude>No</Exclude></BackupSettings>");
}

void TstToolLock::aPartThatHoldsNothingKeepsNoSave()
{
    QFETCH(const QByteArray, section);
    const TestProject project;
    writeProject(project, binderXml(systemFolders(soundDraftItems()), section));
    const ProgramResult result = runTool(changesOf(project).constFirst());
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(runTool({u"cat"_s, project.path(), u"Draft/a"_s}).output, QByteArray("Ants.\n"));
}

void TstToolLock::everyPartOfABinderIsKept()
{
    const QStringList records{
        u"labelTitle"_s,     u"labels"_s,      u"statusTitle"_s, u"statusItems"_s, u"keywords"_s,
        u"customMetaData"_s, u"collections"_s, u"favorites"_s,   u"references"_s,  u"notes"_s,
        u"completions"_s,    u"properties"_s,  u"targets"_s,     u"inBackups"_s};
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Novel.tavelx"_s, fullBinder());
    const auto recordsOf = [&] {
        const QJsonObject info = runTool({u"info"_s, project.path(), u"--json"_s}).json().object();
        QJsonObject kept;
        for (const QString &key : records)
            kept.insert(key, info.value(key));
        return kept;
    };
    const QJsonObject before = recordsOf();
    QVERIFY(!before[u"favorites"].toArray().isEmpty());

    const ProgramResult result = runTool(changesOf(project).constFirst());
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(recordsOf(), before);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    QVERIFY(binder.contains("<FullScreenBackdrop Type=\"BinderID\">8</FullScreenBackdrop>"));
    QVERIFY(binder.contains("<PaperType>A5</PaperType>"));
    QVERIFY(binder.contains("<UserProjectData><Compile Font=\"Serif\"/></UserProjectData>"));
    QVERIFY(binder.contains(uuidOf(6) + "</TemplateFolderUUID>"));
}

void TstToolLock::aBinderWithADeadFavoriteIsLeftAlone()
{
    const TestProject project;
    writeSoundProject(project);
    // An opening would fall back on this copy, and a save would write over the newer binder.
    zipBinder(project, u"binder.autosave"_s);
    project.writeFile(u"Novel.tavelx"_s,
                      fullBinder().replace("<Favorites><BinderID>5<", "<Favorites><BinderID>55<"));
    everyChangeFindsADamagedBinder(project);
}

void TstToolLock::whereThereIsNoProjectNothingIsMade_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << false << u"there is no project at '%1'"_s;
    QTest::newRow("an empty folder") << true << u"there is no project in the folder '%1'"_s;
}

void TstToolLock::whereThereIsNoProjectNothingIsMade()
{
    QFETCH(const bool, isFolder);
    QFETCH(const QString, error);
    const TestProject project;
    if (isFolder)
        QVERIFY(QDir().mkpath(project.path()));
    for (const QStringList &change : changesOf(project)) {
        const ProgramResult result = runTool(change);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(error.arg(project.path())).toUtf8());
        QCOMPARE(everythingBelow(project.path()).size(), 0);
    }
}

TVL_TEST(TstToolLock)
#include "tst_toollock.moc"
