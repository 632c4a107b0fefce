#include "LockFixtures.h"
#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QDir>
#include <QHostInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

/** `tavel info`, and how a project is opened that is only read. */
class TstToolInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theKeysAreStable();
    void theValuesAreTheProjects();
    void countsAreByType();
    void wordsAndCharactersAreThoseOfAllTexts();
    void aTextThatCannotBeReadIsCountedApart();
    void labelsAndStatusItemsAreListed();
    void keywordsAndFieldsAreListedWithTheItemsThatHaveThem();
    void anItemThatHasAKeywordTwiceCountsOnce();
    void veryDeepKeywordsAreListed();
    void listsOfItemsAreTold();
    void notesAreToldByTheirTitles();
    void whatTheProjectSaysOfItselfIsTold();
    void whatAProjectDoesNotSayIsNullOrEmpty();
    void aSaveStampThatIsMissingIsNull();
    void aLockIsToldAndKept();
    void whoHasTheProjectIsTold_data();
    void whoHasTheProjectIsTold();
    void aProjectOfEveryFormatIsTold_data();
    void aProjectOfEveryFormatIsTold();
    void theTextFormSaysTheSame();
    void theTextFormOfAFullProject();
    void aProjectMayBeNamedInOtherWays_data();
    void aProjectMayBeNamedInOtherWays();
    void nothingIsWritten();
    void aBrokenBinderIsReplacedByTheAutosave();
    void whatIsNoProjectIsAFailure_data();
    void whatIsNoProjectIsAFailure();
};

namespace {

QJsonObject infoOf(const QString &path, const ProgramPlace &place = {})
{
    const ProgramResult result = runTool({u"info"_s, path, u"--json"_s}, place);
    if (result.status != 0 || !result.errors.isEmpty())
        qCritical("%s", result.errors.constData());
    return result.json().object();
}

void writeFullProject(const TestProject &project)
{
    writeSoundProject(project);
    project.writeFile(u"Novel.tavelx"_s, fullBinder());
}

QSet<QString> keysOf(const QJsonValue &value)
{
    const QStringList keys = value.toObject().keys();
    return QSet<QString>(keys.begin(), keys.end());
}

} // namespace

void TstToolInfo::theKeysAreStable()
{
    const TestProject project;
    writeFullProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(keysOf(info),
             QSet<QString>({u"name"_s,
                            u"path"_s,
                            u"formatVersion"_s,
                            u"binderVersion"_s,
                            u"binderVersionText"_s,
                            u"items"_s,
                            u"counts"_s,
                            u"words"_s,
                            u"characters"_s,
                            u"draftWords"_s,
                            u"draftCharacters"_s,
                            u"unreadableTexts"_s,
                            u"labelTitle"_s,
                            u"labels"_s,
                            u"statusTitle"_s,
                            u"statusItems"_s,
                            u"keywords"_s,
                            u"customMetaData"_s,
                            u"collections"_s,
                            u"favorites"_s,
                            u"references"_s,
                            u"notes"_s,
                            u"completions"_s,
                            u"properties"_s,
                            u"targets"_s,
                            u"inBackups"_s,
                            u"save"_s,
                            u"locked"_s,
                            u"lock"_s}));
    QCOMPARE(
        keysOf(info[u"counts"]),
        QSet<QString>({u"DraftFolder"_s, u"ResearchFolder"_s, u"TrashFolder"_s, u"Folder"_s,
                       u"Text"_s, u"Image"_s, u"PDF"_s, u"Media"_s, u"WebArchive"_s, u"Other"_s}));
    QCOMPARE(keysOf(info[u"labels"][0]),
             QSet<QString>({u"id"_s, u"title"_s, u"color"_s, u"default"_s}));
    QCOMPARE(keysOf(info[u"statusItems"][0]), QSet<QString>({u"id"_s, u"title"_s, u"default"_s}));
    QCOMPARE(keysOf(info[u"keywords"][0]),
             QSet<QString>({u"id"_s, u"parent"_s, u"title"_s, u"color"_s, u"items"_s}));
    QCOMPARE(keysOf(info[u"customMetaData"][0]),
             QSet<QString>({u"id"_s, u"title"_s, u"color"_s, u"wraps"_s, u"items"_s}));
    QCOMPARE(keysOf(info[u"collections"][0]), QSet<QString>({u"title"_s, u"kind"_s, u"members"_s}));
    QCOMPARE(keysOf(info[u"favorites"][0]), QSet<QString>({u"id"_s, u"title"_s}));
    QCOMPARE(keysOf(info[u"references"][0]), QSet<QString>({u"title"_s, u"item"_s, u"url"_s}));
    QCOMPARE(keysOf(info[u"notes"][0]), QSet<QString>({u"id"_s, u"title"_s}));
    QCOMPARE(keysOf(info[u"properties"]),
             QSet<QString>({u"ProjectTitle"_s, u"AbbreviatedTitle"_s, u"FullName"_s, u"LastName"_s,
                            u"FirstName"_s}));
    QCOMPARE(keysOf(info[u"targets"]), QSet<QString>({u"draft"_s, u"session"_s, u"notify"_s}));
    QCOMPARE(keysOf(info[u"lock"]),
             QSet<QString>({u"state"_s, u"host"_s, u"user"_s, u"program"_s}));
    QCOMPARE(keysOf(info[u"save"]), QSet<QString>({u"device"_s, u"time"_s, u"id"_s}));
}

void TstToolInfo::theValuesAreTheProjects()
{
    const TestProject project;
    writeSoundProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"name"], QJsonValue(u"Novel"_s));
    QCOMPARE(info[u"path"], QJsonValue(project.path()));
    QCOMPARE(info[u"formatVersion"], QJsonValue(18));
    QCOMPARE(info[u"binderVersion"], QJsonValue(2));
    QCOMPARE(info[u"binderVersionText"], QJsonValue(u"1.5"_s));
    QCOMPARE(info[u"save"],
             QJsonValue(QJsonObject{{u"device"_s, u"desk"_s},
                                    {u"time"_s, u"2026-03-04T10:11:12Z"_s},
                                    {u"id"_s, u"11111111-2222-4333-8444-555555555555"_s}}));
    QCOMPARE(info[u"locked"], QJsonValue(false));
    QCOMPARE(info[u"lock"],
             QJsonValue(QJsonObject{{u"state"_s, u"none"_s},
                                    {u"host"_s, QJsonValue()},
                                    {u"user"_s, QJsonValue()},
                                    {u"program"_s, QJsonValue()}}));
}

void TstToolInfo::countsAreByType()
{
    const TestProject project;
    const QByteArray media = item(3, "Image", "Map") + item(4, "PDF", "Log")
        + item(5, "Media", "Shanty") + item(6, "WebArchive", "Tides") + item(7, "Other", "Table")
        + item(8, "Text", "One") + item(9, "Text", "Two") + item(10, "Folder", "Part");
    writeProject(project, binderXml(systemFolders(media)));
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"items"], QJsonValue(11));
    QCOMPARE(info[u"counts"],
             QJsonValue(QJsonObject{{u"DraftFolder"_s, 1},
                                    {u"ResearchFolder"_s, 1},
                                    {u"TrashFolder"_s, 1},
                                    {u"Folder"_s, 1},
                                    {u"Text"_s, 2},
                                    {u"Image"_s, 1},
                                    {u"PDF"_s, 1},
                                    {u"Media"_s, 1},
                                    {u"WebArchive"_s, 1},
                                    {u"Other"_s, 1}}));
}

void TstToolInfo::wordsAndCharactersAreThoseOfAllTexts()
{
    const TestProject project;
    const QByteArray research = item(1, "ResearchFolder", "Research");
    QByteArray items = systemFolders(item(3, "Folder", "Part") + item(4, "Text", "One"));
    items.replace(research,
                  item(1, "ResearchFolder", "Research",
                       {.attributes = {}, .metaData = {}, .children = item(5, "Text", "Notes")}));
    writeProject(project, binderXml(items));
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 Two words}");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Three more\\par words}");
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 Aside}");
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"words"], QJsonValue(6));
    QCOMPARE(info[u"characters"], QJsonValue(9 + 16 + 5));
    QCOMPARE(info[u"draftWords"], QJsonValue(5));
    QCOMPARE(info[u"draftCharacters"], QJsonValue(9 + 16));
    QCOMPARE(info[u"unreadableTexts"], QJsonValue(0));
}

void TstToolInfo::aTextThatCannotBeReadIsCountedApart()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 Cut off");
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"words"], QJsonValue(1));
    QCOMPARE(info[u"unreadableTexts"], QJsonValue(1));
    QVERIFY(runTool({u"info"_s, project.path()}).output.contains("\nUnreadable texts: 1\n"));
}

void TstToolInfo::labelsAndStatusItemsAreListed()
{
    const TestProject project;
    writeFullProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"labelTitle"], QJsonValue(u"Strand"_s));
    QCOMPARE(info[u"statusTitle"], QJsonValue(u"Stage"_s));
    const auto label = [](int id, const QString &title, const QJsonValue &color, bool isDefault) {
        return QJsonObject{
            {u"id"_s, id}, {u"title"_s, title}, {u"color"_s, color}, {u"default"_s, isDefault}};
    };
    QCOMPARE(info[u"labels"].toArray(),
             QJsonArray({label(-1, u"No Label"_s, {}, false),
                         label(1, u"Chapter"_s, u"#ffc080"_s, false),
                         label(7, u"Idea"_s, u"#0000ff"_s, true)}));
    const auto status = [](int id, const QString &title, bool isDefault) {
        return QJsonObject{{u"id"_s, id}, {u"title"_s, title}, {u"default"_s, isDefault}};
    };
    QCOMPARE(info[u"statusItems"].toArray(),
             QJsonArray({status(-1, u"No Status"_s, false), status(2, u"First Draft"_s, true),
                         status(3, u"Done"_s, false)}));
}

void TstToolInfo::keywordsAndFieldsAreListedWithTheItemsThatHaveThem()
{
    const TestProject project;
    writeFullProject(project);
    const QJsonObject info = infoOf(project.path());
    const auto keyword = [](int id, const QJsonValue &parent, const QString &title,
                            const QJsonValue &color, int items) {
        return QJsonObject{{u"id"_s, id},
                           {u"parent"_s, parent},
                           {u"title"_s, title},
                           {u"color"_s, color},
                           {u"items"_s, items}};
    };
    QCOMPARE(info[u"keywords"].toArray(),
             QJsonArray({keyword(3, {}, u"People"_s, u"#ff0000"_s, 2),
                         keyword(5, 3, u"Anna"_s, {}, 1), keyword(9, {}, u"Places"_s, {}, 0)}));
    const auto field = [](const QString &id, const QString &title, const QJsonValue &color,
                          bool wraps, int items) {
        return QJsonObject{{u"id"_s, id},
                           {u"title"_s, title},
                           {u"color"_s, color},
                           {u"wraps"_s, wraps},
                           {u"items"_s, items}};
    };
    QCOMPARE(info[u"customMetaData"].toArray(),
             QJsonArray({field(u"pov"_s, u"Point of View"_s, u"#00ff00"_s, false, 2),
                         field(u"place"_s, u"Place"_s, {}, true, 1)}));
}

void TstToolInfo::anItemThatHasAKeywordTwiceCountsOnce()
{
    const TestProject project;
    const QByteArray text =
        item(3, "Text", "One",
             {.attributes = {},
              .metaData = {},
              .children = {},
              .elements = "<Keywords><KeywordID>1</KeywordID><KeywordID>1</KeywordID></Keywords>"});
    writeProject(project,
                 binderXml(systemFolders(text),
                           "<Keywords><Keyword ID=\"1\"><Title>A</Title></Keyword></Keywords>"));
    QCOMPARE(infoOf(project.path())[u"keywords"][0][u"items"], QJsonValue(1));
}

void TstToolInfo::veryDeepKeywordsAreListed()
{
    constexpr int Depth = 5000;
    const TestProject project;
    QByteArray keywords;
    for (int id = 1; id <= Depth; ++id)
        keywords += "<Keyword ID=\"" + QByteArray::number(id) + "\"><Title>k"
            + QByteArray::number(id) + "</Title><Children>";
    keywords += QByteArray("</Children></Keyword>").repeated(Depth);
    writeProject(project, binderXml(systemFolders({}), "<Keywords>" + keywords + "</Keywords>"));
    const QJsonArray told = infoOf(project.path())[u"keywords"].toArray();
    QCOMPARE(told.size(), Depth);
    QCOMPARE(told.last()[u"parent"], QJsonValue(Depth - 1));
    QCOMPARE(runTool({u"info"_s, project.path()}).output.count("\nKeyword "), Depth);
}

void TstToolInfo::listsOfItemsAreTold()
{
    const TestProject project;
    writeFullProject(project);
    const QJsonObject info = infoOf(project.path());
    const auto collection = [](const QString &title, const QString &kind,
                               const QJsonValue &members) {
        return QJsonObject{{u"title"_s, title}, {u"kind"_s, kind}, {u"members"_s, members}};
    };
    QCOMPARE(info[u"collections"].toArray(),
             QJsonArray({collection(u"Binder"_s, u"Binder"_s, {}),
                         collection(u"Search Results"_s, u"RecentSearch"_s, {}),
                         collection(u"Ships"_s, u"SavedSearch"_s, {}),
                         collection(u"Picks"_s, u"Arbitrary"_s, 2)}));
    QCOMPARE(info[u"favorites"].toArray(),
             QJsonArray({QJsonObject{{u"id"_s, 5}, {u"title"_s, u"First Watch"_s}},
                         QJsonObject{{u"id"_s, 3}, {u"title"_s, u"Part 1"_s}}}));
    QCOMPARE(info[u"references"].toArray(),
             QJsonArray(
                 {QJsonObject{{u"title"_s, u"Opening"_s}, {u"item"_s, 4}, {u"url"_s, QJsonValue()}},
                  QJsonObject{{u"title"_s, u"Maps"_s},
                              {u"item"_s, QJsonValue()},
                              {u"url"_s, u"https://example.org/maps"_s}}}));
    QCOMPARE(info[u"completions"], QJsonValue(2));
}

void TstToolInfo::notesAreToldByTheirTitles()
{
    const TestProject project;
    const TestModel model = project.create();
    const int id = model->addProjectNote(u"Tides"_s);
    model->prepareToDestroy();
    const QJsonArray notes = infoOf(project.path())[u"notes"].toArray();
    QVERIFY(notes.contains(QJsonObject{{u"id"_s, id}, {u"title"_s, u"Tides"_s}}));
    QVERIFY(
        runTool({u"info"_s, project.path()})
            .output.contains(u"Project note %1:"_s.arg(id).leftJustified(18).toUtf8() + "Tides\n"));
}

void TstToolInfo::whatTheProjectSaysOfItselfIsTold()
{
    const TestProject project;
    writeFullProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"properties"].toObject(),
             QJsonObject({{u"ProjectTitle"_s, u"The Long Harbour"_s},
                          {u"AbbreviatedTitle"_s, u"Harbour"_s},
                          {u"FullName"_s, u"Anna Maria Quist"_s},
                          {u"LastName"_s, u"Quist"_s},
                          {u"FirstName"_s, u"Anna"_s}}));
    QCOMPARE(info[u"targets"][u"draft"].toObject(),
             QJsonObject({{u"count"_s, 80000},
                          {u"type"_s, u"Words"_s},
                          {u"countIncludedOnly"_s, true},
                          {u"currentCompileGroupOnly"_s, true},
                          {u"showOverrun"_s, true},
                          {u"buffer"_s, 50},
                          {u"deadline"_s, u"2026-12-31"_s},
                          {u"ignoreDeadline"_s, true}}));
    QCOMPARE(info[u"targets"][u"session"].toObject(),
             QJsonObject({{u"count"_s, 1200},
                          {u"type"_s, u"Characters"_s},
                          {u"countDraftOnly"_s, true},
                          {u"allowNegatives"_s, true},
                          {u"reset"_s, u"NextDay"_s},
                          {u"fromDeadline"_s, true},
                          {u"canWriteOnDeadlineDate"_s, true},
                          {u"writingDays"_s, u"Mon,Tue"_s}}));
    QCOMPARE(info[u"targets"][u"notify"], QJsonValue(true));
    QCOMPARE(info[u"inBackups"], QJsonValue(false));
}

void TstToolInfo::whatAProjectDoesNotSayIsNullOrEmpty()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders({})));
    const QJsonObject info = infoOf(project.path());
    for (const QString &list :
         {u"keywords"_s, u"customMetaData"_s, u"favorites"_s, u"references"_s})
        QCOMPARE(info[list], QJsonValue(QJsonArray()));
    for (const QString &property : keysOf(info[u"properties"]))
        QCOMPARE(info[u"properties"][property], QJsonValue(QJsonValue::Null));
    QCOMPARE(info[u"targets"][u"draft"][u"count"], QJsonValue(0));
    QCOMPARE(info[u"targets"][u"session"][u"count"], QJsonValue(0));
    QCOMPARE(info[u"completions"], QJsonValue(0));
    QCOMPARE(info[u"inBackups"], QJsonValue(true));
}

void TstToolInfo::aSaveStampThatIsMissingIsNull()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders({})));
    QCOMPARE(infoOf(project.path())[u"save"],
             QJsonValue(QJsonObject{
                 {u"device"_s, QJsonValue()}, {u"time"_s, QJsonValue()}, {u"id"_s, QJsonValue()}}));
}

void TstToolInfo::aLockIsToldAndKept()
{
    const TestProject project;
    writeSoundProject(project);
    QVERIFY(TVLProjectFolderFormat::addLock(project.path()));
    const QByteArray lock = project.readFile(u"Files/user.lock"_s);
    QCOMPARE(infoOf(project.path())[u"locked"], QJsonValue(true));
    QCOMPARE(project.readFile(u"Files/user.lock"_s), lock);
}

void TstToolInfo::whoHasTheProjectIsTold_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("projectPath"); // nothing for the project's own
    QTest::addColumn<QString>("program"); // nothing for that of the process
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("the tool itself, before it was killed")
        << u"berta"_s << QString() << QStringLiteral(TAVEL_EXECUTABLE) << u"own"_s
        << u"by this program and user"_s;
    QTest::newRow("the project that this is a copy of")
        << u"berta"_s << u"/elsewhere/Novel.tavel"_s << QString() << u"copied"_s
        << u"by a lock that was copied with the project"_s;
    QTest::newRow("another program of the user")
        << u"berta"_s << QString() << QString() << u"otherProgram"_s
        << u"by another program of this user"_s;
    QTest::newRow("another user") << u"anna"_s << QString() << QString() << u"other"_s
                                  << u"by someone else"_s;
}

void TstToolInfo::whoHasTheProjectIsTold()
{
    QFETCH(const QString, user);
    QFETCH(const QString, projectPath);
    QFETCH(QString, program);
    QFETCH(const QString, state);
    QFETCH(const QString, text);
    const TestProject project;
    writeSoundProject(project);
    LockHolder holder({.name = u"tavel"_s, .user = user, .home = {}}, project.path());
    QVERIFY(holder.isHolding());
    {
        QSettings lock(project.path(u"Files/user.lock"_s), QSettings::IniFormat);
        if (!projectPath.isEmpty())
            lock.setValue(u"project_path"_s, projectPath);
        if (!program.isEmpty())
            lock.setValue(u"app_path"_s, program);
    }
    if (program.isEmpty())
        program = lockProgramFile();
    const QByteArray lock = project.readFile(u"Files/user.lock"_s);

    ProgramPlace place;
    place.environment.insert(u"USER"_s, u"berta"_s);
    const QJsonObject info = infoOf(project.path(), place);
    QCOMPARE(info[u"locked"], QJsonValue(true));
    QCOMPARE(info[u"lock"].toObject(),
             QJsonObject({{u"state"_s, state},
                          {u"host"_s, QHostInfo::localHostName()},
                          {u"user"_s, user},
                          {u"program"_s, program}}));
    const QByteArray line = u"\nLocked:           %1: user %2 on host %3, program %4\n"_s
                                .arg(text, user, QHostInfo::localHostName(), program)
                                .toUtf8();
    const QByteArray output = runTool({u"info"_s, project.path()}, place).output;
    QVERIFY2(output.contains(line), output);
    QCOMPARE(project.readFile(u"Files/user.lock"_s), lock);
}

void TstToolInfo::aProjectOfEveryFormatIsTold_data()
{
    QTest::addColumn<QByteArray>("versionText");
    QTest::addColumn<int>("formatVersion");
    QTest::addColumn<int>("binderVersion");
    QTest::newRow("16") << QByteArray("1.0") << 16 << 1;
    QTest::newRow("18") << QByteArray("1.5") << 18 << 2;
    QTest::newRow("23") << QByteArray("2.0") << 23 << 3;
}

void TstToolInfo::aProjectOfEveryFormatIsTold()
{
    QFETCH(const QByteArray, versionText);
    QFETCH(const int, formatVersion);
    QFETCH(const int, binderVersion);
    const TestProject project;
    writeProject(project, binderXml(systemFolders({}), {}, versionText),
                 QByteArray::number(formatVersion));
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"formatVersion"], QJsonValue(formatVersion));
    QCOMPARE(info[u"binderVersion"], QJsonValue(binderVersion));
    QCOMPARE(info[u"binderVersionText"], QJsonValue(QString::fromLatin1(versionText)));
    QCOMPARE(info[u"items"], QJsonValue(3));
}

void TstToolInfo::theTextFormSaysTheSame()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult result = runTool({u"info"_s, project.path()});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());
    const QByteArray expected = "Name:             Novel\n"
                                "Path:             "
        + project.path().toUtf8()
        + "\n"
          "Format version:   18\n"
          "Binder version:   2 (1.5)\n"
          "Items:            6\n"
          "  DraftFolder:    1\n"
          "  ResearchFolder: 1\n"
          "  TrashFolder:    1\n"
          "  Folder:         1\n"
          "  Text:           2\n"
          "Words:            1, 1 of them in the draft\n"
          "Characters:       6, 6 of them in the draft\n"
          "Labels:           called 'Label'\n"
          "Label -1:         No Label (default)\n"
          "Label 1:          Chapter #ffc080\n"
          "Label 7:          Idea #0000ff\n"
          "Status items:     called 'Status'\n"
          "Status -1:        No Status (default)\n"
          "Status 2:         First Draft\n"
          "Status 3:         Done\n"
          "Collection:       Binder (Binder)\n"
          "Collection:       Search Results (RecentSearch)\n"
          "Collection:       Ships (SavedSearch)\n"
          "Collection:       Picks (Arbitrary, 2 items)\n"
          "Project note 10:  General\n"
          "In backups:       yes\n"
          "Saved by:         desk\n"
          "Saved at:         2026-03-04T10:11:12Z\n"
          "Save:             11111111-2222-4333-8444-555555555555\n"
          "Locked:           no\n";
    QCOMPARE(result.output, expected);
}

void TstToolInfo::theTextFormOfAFullProject()
{
    const TestProject project;
    writeFullProject(project);
    const QByteArray output = runTool({u"info"_s, project.path()}).output;
    for (const char *lines : {
             "Binder version:   2 (1.5)\n"
             "Title:            The Long Harbour\n"
             "Short title:      Harbour\n"
             "Author:           Anna Maria Quist\n"
             "Surname:          Quist\n"
             "Forename:         Anna\n"
             "Items:            9\n",
             "Labels:           called 'Strand'\n"
             "Label -1:         No Label\n"
             "Label 1:          Chapter #ffc080\n"
             "Label 7:          Idea #0000ff (default)\n"
             "Status items:     called 'Stage'\n"
             "Status -1:        No Status\n"
             "Status 2:         First Draft (default)\n"
             "Status 3:         Done\n"
             "Keyword 3:        People #ff0000 (2 items)\n"
             "Keyword 5:          Anna (1 item)\n"
             "Keyword 9:        Places (0 items)\n"
             "Field pov:        Point of View #00ff00 (2 items)\n"
             "Field place:      Place (wraps, 1 item)\n"
             "Collection:       Binder (Binder)\n",
             "Collection:       Picks (Arbitrary, 2 items)\n"
             "Favorite:         First Watch (#5)\n"
             "Favorite:         Part 1 (#3)\n"
             "Reference:        Opening (#4)\n"
             "Reference:        Maps (https://example.org/maps)\n",
             "Completions:      2\n"
             "Draft target:     80000 words (of what is compiled, of the current compile group, "
             "shows overrun, buffer 50, deadline 2026-12-31, deadline ignored)\n"
             "Session target:   1200 characters (of the draft, negatives allowed, reset NextDay, "
             "from the deadline, deadline's day included, writing days Mon,Tue)\n"
             "Notify:           when a target is reached\n"
             "In backups:       no\n",
         })
        QVERIFY2(output.contains(lines), output + "\nlacks\n" + lines);
}

void TstToolInfo::aProjectMayBeNamedInOtherWays_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("path");
    QTest::newRow("relative") << QString() << u"Novel.tavel"_s;
    QTest::newRow("with a closing slash") << QString() << u"Novel.tavel/"_s;
    QTest::newRow("by its binder") << QString() << u"Novel.tavel/Novel.tavelx"_s;
    QTest::newRow("as the working folder") << u"/Novel.tavel"_s << u"."_s;
    QTest::newRow("as the folder above") << u"/Novel.tavel/Files"_s << u".."_s;
    QTest::newRow("by its binder from inside") << u"/Novel.tavel"_s << u"Novel.tavelx"_s;
}

void TstToolInfo::aProjectMayBeNamedInOtherWays()
{
    QFETCH(const QString, folder);
    QFETCH(const QString, path);
    const TestProject project;
    writeSoundProject(project);
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath() + folder;
    const QJsonObject info = infoOf(path, place);
    QCOMPARE(info[u"path"], QJsonValue(project.path()));
    QCOMPARE(info[u"items"], QJsonValue(6));
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), soundBinder());
}

void TstToolInfo::nothingIsWritten()
{
    const TestProject project;
    writeSoundProject(project);
    const auto before = everythingBelow(project.enclosingPath());
    for (const QString &command : {u"info"_s, u"outline"_s}) {
        QCOMPARE(runTool({command, project.path()}).status, 0);
        QCOMPARE(everythingBelow(project.enclosingPath()), before);
    }
}

void TstToolInfo::aBrokenBinderIsReplacedByTheAutosave()
{
    const TestProject project;
    writeSoundProject(project);
    zipBinder(project, u"binder.autosave"_s);
    project.writeFile(u"Novel.tavelx"_s, soundBinder().first(soundBinder().size() / 2));
    const auto before = everythingBelow(project.path());

    QCOMPARE(infoOf(project.path())[u"items"], QJsonValue(6));
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolInfo::whatIsNoProjectIsAFailure_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    const QString nothing = u"there is no project at '%1'"_s;
    const QString noBinder = u"there is no project in the folder '%1'"_s;
    const QString unreadable = u"the project can't be read: '%1'; 'tavel check' tells more"_s;
    QTest::newRow("nothing") << QString() << u"Novel.tavel"_s << nothing;
    QTest::newRow("no path") << QString() << QString() << nothing;
    QTest::newRow("a binder that isn't there")
        << u"Novel.tavel/Novel.tavelx"_s << u"Novel.tavel/Other.tavelx"_s << nothing;
    QTest::newRow("a file") << u"Novel.tavel"_s << u"Novel.tavel"_s << nothing;
    QTest::newRow("an ordinary folder") << u"shelf/book.txt"_s << u"shelf"_s << noBinder;
    QTest::newRow("a project without a binder")
        << u"Novel.tavel/Files/version.txt"_s << u"Novel.tavel"_s << noBinder;
    QTest::newRow("a binder that isn't one")
        << u"Novel.tavel/Novel.tavelx"_s << u"Novel.tavel"_s << unreadable;
}

void TstToolInfo::whatIsNoProjectIsAFailure()
{
    QFETCH(const QString, file);
    QFETCH(const QString, path);
    QFETCH(const QString, reason);
    const TestProject project;
    if (!file.isEmpty())
        writeFileAt(project.enclosingPath() + u'/' + file, "18");
    // The look-up of a binder may leave a version file, and an opening a folder; that is not the
    // point.
    if (file.endsWith(u".tavelx")) {
        project.writeFile(u"Files/version.txt"_s, "18");
        QDir().mkpath(project.path(u"Settings"_s));
    }
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const auto before = everythingBelow(project.enclosingPath());

    for (const QString &command : {u"info"_s, u"outline"_s}) {
        for (const QStringList &options : {QStringList(), QStringList(u"--json"_s)}) {
            const ProgramResult result = runTool(QStringList{command, path} + options, place);
            QCOMPARE(result.status, 1);
            QCOMPARE(result.output, QByteArray());
            QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(reason.arg(path)).toUtf8());
            QCOMPARE(everythingBelow(project.enclosingPath()), before);
        }
    }
}

TVL_TEST(TstToolInfo)
#include "tst_toolinfo.moc"
