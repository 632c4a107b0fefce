#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QTest>

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
    void labelsStatusItemsAndCollectionsAreListed();
    void aSaveStampThatIsMissingIsNull();
    void aLockIsToldAndKept();
    void aProjectOfEveryFormatIsTold_data();
    void aProjectOfEveryFormatIsTold();
    void theTextFormSaysTheSame();
    void aProjectMayBeNamedInOtherWays_data();
    void aProjectMayBeNamedInOtherWays();
    void onlyTheBackupIsWritten();
    void aBrokenBinderIsReplacedByTheAutosave();
    void whatIsNoProjectIsAFailure_data();
    void whatIsNoProjectIsAFailure();
};

namespace {

QJsonObject infoOf(const QString &path, const ProgramPlace &place = {})
{
    const ProgramResult result = runTool({u"info"_qs, path, u"--json"_qs}, place);
    if (result.status != 0 || !result.errors.isEmpty())
        qCritical("%s", result.errors.constData());
    return result.json().object();
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
    writeSoundProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(keysOf(info),
             QSet<QString>({u"name"_qs, u"path"_qs, u"formatVersion"_qs, u"binderVersion"_qs,
                            u"binderVersionText"_qs, u"items"_qs, u"counts"_qs, u"words"_qs,
                            u"characters"_qs, u"draftWords"_qs, u"draftCharacters"_qs,
                            u"unreadableTexts"_qs, u"labels"_qs, u"statusItems"_qs,
                            u"collections"_qs, u"save"_qs, u"locked"_qs}));
    QCOMPARE(keysOf(info[u"counts"]),
             QSet<QString>({u"DraftFolder"_qs, u"ResearchFolder"_qs, u"TrashFolder"_qs,
                            u"Folder"_qs, u"Text"_qs, u"Image"_qs, u"PDF"_qs, u"Media"_qs,
                            u"WebArchive"_qs, u"Other"_qs}));
    QCOMPARE(keysOf(info[u"labels"][0]), QSet<QString>({u"id"_qs, u"title"_qs, u"color"_qs}));
    QCOMPARE(keysOf(info[u"statusItems"][0]), QSet<QString>({u"id"_qs, u"title"_qs}));
    QCOMPARE(keysOf(info[u"collections"][0]), QSet<QString>({u"title"_qs, u"kind"_qs}));
    QCOMPARE(keysOf(info[u"save"]), QSet<QString>({u"device"_qs, u"time"_qs, u"id"_qs}));
}

void TstToolInfo::theValuesAreTheProjects()
{
    const TestProject project;
    writeSoundProject(project);
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"name"], QJsonValue(u"Novel"_qs));
    QCOMPARE(info[u"path"], QJsonValue(project.path()));
    QCOMPARE(info[u"formatVersion"], QJsonValue(18));
    QCOMPARE(info[u"binderVersion"], QJsonValue(2));
    QCOMPARE(info[u"binderVersionText"], QJsonValue(u"1.5"_qs));
    QCOMPARE(info[u"save"],
             QJsonValue(QJsonObject{{u"device"_qs, u"desk"_qs},
                                    {u"time"_qs, u"2026-03-04T10:11:12Z"_qs},
                                    {u"id"_qs, u"11111111-2222-4333-8444-555555555555"_qs}}));
    QCOMPARE(info[u"locked"], QJsonValue(false));
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
             QJsonValue(QJsonObject{{u"DraftFolder"_qs, 1},
                                    {u"ResearchFolder"_qs, 1},
                                    {u"TrashFolder"_qs, 1},
                                    {u"Folder"_qs, 1},
                                    {u"Text"_qs, 2},
                                    {u"Image"_qs, 1},
                                    {u"PDF"_qs, 1},
                                    {u"Media"_qs, 1},
                                    {u"WebArchive"_qs, 1},
                                    {u"Other"_qs, 1}}));
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
    project.writeFile(u"Files/Docs/3.rtf"_qs, "{\\rtf1 Two words}");
    project.writeFile(u"Files/Docs/4.rtf"_qs, "{\\rtf1 Three more\\par words}");
    project.writeFile(u"Files/Docs/5.rtf"_qs, "{\\rtf1 Aside}");
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
    project.writeFile(u"Files/Docs/5.rtf"_qs, "{\\rtf1 Cut off");
    const QJsonObject info = infoOf(project.path());
    QCOMPARE(info[u"words"], QJsonValue(1));
    QCOMPARE(info[u"unreadableTexts"], QJsonValue(1));
    QVERIFY(runTool({u"info"_qs, project.path()}).output.contains("\nUnreadable texts: 1\n"));
}

void TstToolInfo::labelsStatusItemsAndCollectionsAreListed()
{
    const TestProject project;
    writeSoundProject(project);
    const QJsonObject info = infoOf(project.path());
    const QJsonArray labels{
        QJsonObject{{u"id"_qs, -1}, {u"title"_qs, u"No Label"_qs}, {u"color"_qs, QJsonValue()}},
        QJsonObject{{u"id"_qs, 1}, {u"title"_qs, u"Chapter"_qs}, {u"color"_qs, u"#ffc080"_qs}},
        QJsonObject{{u"id"_qs, 7}, {u"title"_qs, u"Idea"_qs}, {u"color"_qs, u"#0000ff"_qs}}};
    QCOMPARE(info[u"labels"].toArray(), labels);
    const QJsonArray statusItems{QJsonObject{{u"id"_qs, -1}, {u"title"_qs, u"No Status"_qs}},
                                 QJsonObject{{u"id"_qs, 2}, {u"title"_qs, u"First Draft"_qs}},
                                 QJsonObject{{u"id"_qs, 3}, {u"title"_qs, u"Done"_qs}}};
    QCOMPARE(info[u"statusItems"].toArray(), statusItems);
    const QJsonArray collections{
        QJsonObject{{u"title"_qs, u"Binder"_qs}, {u"kind"_qs, u"Binder"_qs}},
        QJsonObject{{u"title"_qs, u"Search Results"_qs}, {u"kind"_qs, u"RecentSearch"_qs}},
        QJsonObject{{u"title"_qs, u"Ships"_qs}, {u"kind"_qs, u"SavedSearch"_qs}},
        QJsonObject{{u"title"_qs, u"Picks"_qs}, {u"kind"_qs, u"Arbitrary"_qs}}};
    QCOMPARE(info[u"collections"].toArray(), collections);
}

void TstToolInfo::aSaveStampThatIsMissingIsNull()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders({})));
    QCOMPARE(infoOf(project.path())[u"save"],
             QJsonValue(QJsonObject{{u"device"_qs, QJsonValue()},
                                    {u"time"_qs, QJsonValue()},
                                    {u"id"_qs, QJsonValue()}}));
}

void TstToolInfo::aLockIsToldAndKept()
{
    const TestProject project;
    writeSoundProject(project);
    QVERIFY(TVLProjectFolderFormat::addLock(project.path()));
    const QByteArray lock = project.readFile(u"Files/user.lock"_qs);
    QCOMPARE(infoOf(project.path())[u"locked"], QJsonValue(true));
    QCOMPARE(project.readFile(u"Files/user.lock"_qs), lock);
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
    const ProgramResult result = runTool({u"info"_qs, project.path()});
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
          "Label -1:         No Label\n"
          "Label 1:          Chapter #ffc080\n"
          "Label 7:          Idea #0000ff\n"
          "Status -1:        No Status\n"
          "Status 2:         First Draft\n"
          "Status 3:         Done\n"
          "Collection:       Binder (Binder)\n"
          "Collection:       Search Results (RecentSearch)\n"
          "Collection:       Ships (SavedSearch)\n"
          "Collection:       Picks (Arbitrary)\n"
          "Saved by:         desk\n"
          "Saved at:         2026-03-04T10:11:12Z\n"
          "Save:             11111111-2222-4333-8444-555555555555\n"
          "Locked:           no\n";
    QCOMPARE(result.output, expected);
}

void TstToolInfo::aProjectMayBeNamedInOtherWays_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("path");
    QTest::newRow("relative") << QString() << u"Novel.tavel"_qs;
    QTest::newRow("with a closing slash") << QString() << u"Novel.tavel/"_qs;
    QTest::newRow("by its binder") << QString() << u"Novel.tavel/Novel.tavelx"_qs;
    QTest::newRow("as the working folder") << u"/Novel.tavel"_qs << u"."_qs;
    QTest::newRow("as the folder above") << u"/Novel.tavel/Files"_qs << u".."_qs;
    QTest::newRow("by its binder from inside") << u"/Novel.tavel"_qs << u"Novel.tavelx"_qs;
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
    QCOMPARE(project.readFile(u"Novel.tavelx"_qs), soundBinder());
}

void TstToolInfo::onlyTheBackupIsWritten()
{
    const TestProject project;
    writeSoundProject(project);
    const auto before = everythingBelow(project.enclosingPath());
    for (const QString &command : {u"info"_qs, u"outline"_qs}) {
        QCOMPARE(runTool({command, project.path()}).status, 0);
        auto after = everythingBelow(project.enclosingPath());
        QVERIFY(after.remove(u"Novel.tavel/Files/binder.backup"_qs) == 1);
        QCOMPARE(after, before);
    }
}

void TstToolInfo::aBrokenBinderIsReplacedByTheAutosave()
{
    const TestProject project;
    writeSoundProject(project);
    zipBinder(project, u"binder.autosave"_qs);
    project.writeFile(u"Novel.tavelx"_qs, soundBinder().first(soundBinder().size() / 2));
    const auto before = everythingBelow(project.path());

    QCOMPARE(infoOf(project.path())[u"items"], QJsonValue(6));
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolInfo::whatIsNoProjectIsAFailure_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    const QString nothing = u"there is no project at '%1'"_qs;
    const QString noBinder = u"there is no project in the folder '%1'"_qs;
    const QString unreadable = u"the project can't be read: '%1'; 'tavel check' tells more"_qs;
    QTest::newRow("nothing") << QString() << u"Novel.tavel"_qs << nothing;
    QTest::newRow("no path") << QString() << QString() << nothing;
    QTest::newRow("a binder that isn't there")
        << u"Novel.tavel/Novel.tavelx"_qs << u"Novel.tavel/Other.tavelx"_qs << nothing;
    QTest::newRow("a file") << u"Novel.tavel"_qs << u"Novel.tavel"_qs << nothing;
    QTest::newRow("an ordinary folder") << u"shelf/book.txt"_qs << u"shelf"_qs << noBinder;
    QTest::newRow("a project without a binder")
        << u"Novel.tavel/Files/version.txt"_qs << u"Novel.tavel"_qs << noBinder;
    QTest::newRow("a binder that isn't one")
        << u"Novel.tavel/Novel.tavelx"_qs << u"Novel.tavel"_qs << unreadable;
}

void TstToolInfo::whatIsNoProjectIsAFailure()
{
    QFETCH(const QString, file);
    QFETCH(const QString, path);
    QFETCH(const QString, reason);
    const TestProject project;
    if (!file.isEmpty())
        writeFileAt(project.enclosingPath() + u'/' + file, "18");
    // The look-up of a binder may leave a version file; what an opening leaves is not the point.
    if (file.endsWith(u".tavelx"))
        project.writeFile(u"Files/version.txt"_qs, "18");
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const auto before = everythingBelow(project.enclosingPath());

    for (const QString &command : {u"info"_qs, u"outline"_qs}) {
        for (const QStringList &options : {QStringList(), QStringList(u"--json"_qs)}) {
            const ProgramResult result = runTool(QStringList{command, path} + options, place);
            QCOMPARE(result.status, 1);
            QCOMPARE(result.output, QByteArray());
            QCOMPARE(result.errors, u"tavel: %1\n"_qs.arg(reason.arg(path)).toUtf8());
            QCOMPARE(everythingBelow(project.enclosingPath()), before);
        }
    }
}

TVL_TEST_MAIN(TstToolInfo)
#include "tst_toolinfo.moc"
