#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectModel.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QTest>
#include <QTextDocument>

#include <functional>

using namespace Qt::StringLiterals;

/** Does something bad to a sound project. */
using Damage = ProjectChange;
Q_DECLARE_METATYPE(Damage)

/** `tavel check`. */
class TstToolCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSoundProjectHasNoProblems_data();
    void aSoundProjectHasNoProblems();
    void damageIsFound_data();
    void damageIsFound();
    void everyKindOfProblemHasARow();
    void theKeysAreStable();
    void anInterruptedSaveIsToldInOneLine();
    void theXmlErrorIsToldWithItsLine_data();
    void theXmlErrorIsToldWithItsLine();
    void theItemsOfAFallbackAreChecked();
    void aDeadFavoriteIsToldWithItsIdAndWhatItDoes();
    void aDeadFavoriteMakesAnOpeningFallBack();
    void aTextIsOneLineWhateverTheTitle();
    void whatIsNoProjectIsAFailure_data();
    void whatIsNoProjectIsAFailure();
    void aVeryDeepTreeIsChecked();
};

namespace {

const QString Binder = u"Novel.tavelx"_s;
const QString Autosave = u"Files/binder.autosave"_s;
const QString Backup = u"Files/binder.backup"_s;
const QString VersionFile = u"Files/version.txt"_s;

/** Replaces a text in the binder, which must be there once. */
Damage inBinder(const QByteArray &from, const QByteArray &to)
{
    return [from, to](const TestProject &project) {
        QByteArray binder = project.readFile(Binder);
        if (binder.count(from) != 1)
            qFatal("'%s' is not in the binder once", from.constData());
        project.writeFile(Binder, binder.replace(from, to));
    };
}

/** Replaces a text as inBinder() does, in the binder that has something in every part. */
Damage inFullBinder(const QByteArray &from, const QByteArray &to)
{
    return [from, to](const TestProject &project) {
        project.writeFile(Binder, fullBinder());
        inBinder(from, to)(project);
    };
}

/** A line of the checksum file with as many digits as are asked for. */
QByteArray ofHash(const QByteArray &name, int digits)
{
    return name + '=' + QByteArray(digits, '0') + '\n';
}

Damage renamingBinder(const QString &name)
{
    return [name](const TestProject &project) {
        if (!QFile::rename(project.binderPath(), project.path(name)))
            qFatal("could not rename the binder");
    };
}

Damage zipping(const QString &zipName)
{
    return [zipName](const TestProject &project) { zipBinder(project, zipName); };
}

Damage all(const QList<Damage> &damages)
{
    return [damages](const TestProject &project) {
        for (const Damage &damage : damages)
            damage(project);
    };
}

Damage removingFolder(const QString &relativePath)
{
    return [relativePath](const TestProject &project) {
        if (!QDir(project.path(relativePath)).removeRecursively())
            qFatal("could not remove %s", qPrintable(relativePath));
    };
}

Damage linkingToNowhere(const QString &relativePath)
{
    return [relativePath](const TestProject &project) {
        if (!QFile::link(u"nowhere"_s, project.path(relativePath)))
            qFatal("could not make the link %s", qPrintable(relativePath));
    };
}

/** Writes texts to search by in which an item has one. */
Damage recordingText(int id, const QByteArray &element)
{
    return writing(IndexFile,
                   "<SearchIndexes Version=\"1.0\"><Documents><Document ID=\"3\"><Title>Part"
                   "</Title></Document><Document ID=\""
                       + QByteArray::number(id) + "\"><Title>x</Title><" + element + ">Gulls</"
                       + element + "></Document></Documents></SearchIndexes>");
}

const QString SnapshotList = u"Snapshots/4.snapshots/index.xml"_s;
const QString SnapshotText = u"Snapshots/4.snapshots/2026-03-01-01-00-00+0000.rtf"_s;
const QString OldSnapshotText = u"Snapshots/4.snapshots/2026-03-02-00-00-00+0200.rtf"_s;

/** Gives an item two snapshots, one of which is named as older versions did. */
void withSnapshots(const TestProject &project)
{
    project.writeFile(SnapshotList,
                      "<Snapshots Version=\"1.0\"><Snapshot><Title>One</Title>"
                      "<Date>2026-03-01 01:00:00 +0000</Date></Snapshot><Snapshot>"
                      "<Title>Two</Title><Date>2026-03-02 02:00:00 +0000</Date></Snapshot>"
                      "</Snapshots>");
    project.writeFile(SnapshotText, "{\\rtf1 One.}");
    project.writeFile(OldSnapshotText, "{\\rtf1 Two.}");
}

/** A project of the form with an id or a uuid alone, in which nothing is wrong but what is told. */
Damage formed(const QByteArray &versionText, const QByteArray &formatVersion,
              const QByteArray &items)
{
    return [=](const TestProject &project) {
        QDir(project.path()).removeRecursively();
        writeProject(project, binderXml(items, {}, versionText), formatVersion);
    };
}

struct DamageRow
{
    const char *name;
    Damage damage;
    QStringList problems; ///< Each as its kind, a blank and its place.
};

QString uuidText(int id)
{
    return QString::fromLatin1(uuidOf(id));
}

QList<DamageRow> damageRows()
{
    const Damage cutOff = [](const TestProject &project) {
        project.writeFile(Binder, soundBinder().first(soundBinder().size() / 2));
    };
    const QByteArray fifth = itemAttributes(5);
    const QByteArray fifthUuid = "UUID=\"" + uuidOf(5) + '"';
    const auto fifthWith = [fifth](const char *from, const char *to) {
        return QByteArray(fifth).replace(from, to);
    };
    const QByteArray trash = item(2, "TrashFolder", "Trash");
    const QByteArray research = item(1, "ResearchFolder", "Research");

    return {
        // The binder
        {"no binder", removing(Binder), {u"noBinder Novel.tavelx"_s}},
        {"no binder, an autosave",
         all({zipping(u"binder.autosave"_s), removing(Binder)}),
         {u"noBinder Novel.tavelx"_s, u"fallback "_s + Autosave}},
        {"a binder that is cut off", cutOff, {u"binderUnreadable Novel.tavelx"_s}},
        {"a binder that is cut off, an autosave",
         all({zipping(u"binder.autosave"_s), cutOff}),
         {u"binderUnreadable Novel.tavelx"_s, u"fallback "_s + Autosave}},
        {"a binder that is cut off, a backup",
         all({zipping(u"binder.backup"_s), cutOff}),
         {u"binderUnreadable Novel.tavelx"_s, u"fallback "_s + Backup}},
        {"a binder that is cut off, both copies",
         all({zipping(u"binder.autosave"_s), zipping(u"binder.backup"_s), cutOff}),
         {u"binderUnreadable Novel.tavelx"_s, u"fallback "_s + Autosave}},
        {"a binder that is cut off, an autosave that isn't a zip, a backup",
         all({writing(Autosave, "no zip"), zipping(u"binder.backup"_s), cutOff}),
         {u"binderUnreadable Novel.tavelx"_s, u"autosaveUnreadable "_s + Autosave,
          u"fallback "_s + Backup}},
        {"nothing readable",
         all({writing(Autosave, "no zip"), writing(Backup, {}), cutOff}),
         {u"binderUnreadable Novel.tavelx"_s, u"autosaveUnreadable "_s + Autosave,
          u"backupUnreadable "_s + Backup}},
        {"a good binder, an autosave that isn't a zip",
         writing(Autosave, "no zip"),
         {u"autosaveUnreadable "_s + Autosave}},
        {"a good binder, a backup of a binder that is cut off",
         all({cutOff, zipping(u"binder.backup"_s), writing(Binder, soundBinder())}),
         {u"backupUnreadable "_s + Backup}},
        {"a folder in the binder's place",
         all({removing(Binder),
              [](const TestProject &project) { QDir().mkpath(project.binderPath()); }}),
         {u"binderUnreadable Novel.tavelx"_s}},
        {"a renamed binder", renamingBinder(u"Story.tavelx"_s), {u"binderName Story.tavelx"_s}},
        {"the binder's older name",
         renamingBinder(u"project.tavelx"_s),
         {u"binderName project.tavelx"_s}},
        {"a second binder",
         writing(u"Copy.tavelx"_s, soundBinder()),
         {u"severalBinders Copy.tavelx"_s}},
        {"the older name beside a stranger",
         all({renamingBinder(u"project.tavelx"_s), writing(u"Zebra.tavelx"_s, "x")}),
         {u"binderName project.tavelx"_s, u"severalBinders Zebra.tavelx"_s}},

        // Versions
        {"no version file", removing(VersionFile), {u"formatVersionMissing "_s + VersionFile}},
        {"an empty version file",
         writing(VersionFile, {}),
         {u"formatVersionInvalid "_s + VersionFile}},
        {"a version that doesn't exist",
         writing(VersionFile, "17"),
         {u"formatVersionInvalid "_s + VersionFile}},
        {"another version than the binder's",
         writing(VersionFile, "23"),
         {u"formatVersionMismatch "_s + VersionFile}},
        {"an unknown binder version",
         formed("9.9", "18", systemFolders({})),
         {u"binderVersionUnknown Novel.tavelx"_s,
          u"nullUuid 00000000-0000-0000-0000-000000000000"_s,
          u"nullUuid 00000000-0000-0000-0000-000000000000"_s,
          u"nullUuid 00000000-0000-0000-0000-000000000000"_s}},

        // Identities
        {"an id used twice",
         inBinder("ID=\"5\" U", "ID=\"4\" U"),
         {u"duplicateId #4"_s, u"unknownCollectionMember Picks"_s,
          u"orphanedSnapshots Snapshots/5.snapshots"_s}},
        {"a uuid used twice",
         inBinder(fifthUuid, "UUID=\"" + uuidOf(4) + '"'),
         {u"duplicateUuid "_s + uuidText(4)}},
        {"a null uuid",
         inBinder(fifthUuid, "UUID=\"00000000-0000-0000-0000-000000000000\""),
         {u"nullUuid #5"_s}},
        {"no uuid", inBinder(fifthUuid, {}), {u"nullUuid #5"_s}},
        {"no id",
         inBinder("ID=\"5\" U", "U"),
         {u"missingId "_s + uuidText(5), u"unknownCollectionMember Picks"_s,
          u"orphanedSnapshots Snapshots/5.snapshots"_s}},
        {"an id that is no number",
         inBinder("ID=\"5\" U", "ID=\"five\" U"),
         {u"missingId "_s + uuidText(5), u"unknownCollectionMember Picks"_s,
          u"orphanedSnapshots Snapshots/5.snapshots"_s}},
        {"a uuid used twice where there are no ids",
         formed("2.0", "23", systemFolders(item(3, "Text", "One") + item(3, "Text", "Two"))),
         {u"duplicateUuid "_s + uuidText(3)}},

        // Dates
        {"a creation date of another form",
         inBinder(fifth, fifthWith("Created=\"2026", "Created=\"26")),
         {u"invalidDate #5"_s}},
        {"a day that doesn't exist",
         inBinder(fifth, fifthWith("03-02", "02-30")),
         {u"invalidDate #5"_s}},
        {"no dates",
         inBinder(fifth, fifth.first(fifth.indexOf(" Created"))),
         {u"invalidDate #5"_s, u"invalidDate #5"_s}},

        // Texts
        {"the folder of the texts behind a link to nowhere",
         all({removingFolder(u"Files/Docs"_s), linkingToNowhere(u"Files/Docs"_s)}),
         {u"unreadableDocuments Files/Docs"_s, u"unreadableHashes Files/Docs/docs.checksum"_s}},
        {"a file in the place of the folder of the texts",
         all({removingFolder(u"Files/Docs"_s), writing(u"Files/Docs"_s, "x")}),
         {u"unreadableDocuments Files/Docs"_s, u"unreadableHashes Files/Docs/docs.checksum"_s}},
        {"no folder of the texts that there were",
         all({recordingText(4, "Text"), removingFolder(u"Files/Docs"_s)}),
         {u"missingDocuments Files/Docs"_s}},
        {"no folder of the notes that there were",
         all({recordingText(4, "Notes"), removingFolder(u"Files/Docs"_s)}),
         {u"missingDocuments Files/Docs"_s}},
        {"texts behind links to nowhere",
         all({linkingToNowhere(u"Files/Docs/5.rtf"_s),
              linkingToNowhere(u"Files/Docs/5.comments"_s)}),
         {u"unreadableDocument Files/Docs/5.rtf"_s, u"unreadableComments Files/Docs/5.comments"_s}},
        {"texts that are damaged",
         all({writing(u"Files/Docs/3.rtf"_s, "no rich text"),
              writing(u"Files/Docs/4.rtf"_s, "{\\rtf1 Cut off"),
              writing(u"Files/Docs/5_notes.rtf"_s, "{\\rtf1 Cut off"),
              writing(u"Files/Docs/5_synopsis.txt/file"_s, "in a folder")}),
         {u"unreadableDocument Files/Docs/3.rtf"_s, u"unreadableDocument Files/Docs/4.rtf"_s,
          u"unreadableDocument Files/Docs/5_notes.rtf"_s,
          u"unreadableDocument Files/Docs/5_synopsis.txt"_s,
          u"changedDocument Files/Docs/4.rtf"_s}},
        {"comments that are damaged",
         all({writing(u"Files/Docs/4.comments"_s, "<Comments><Comment"),
              writing(u"Files/Docs/5.links"_s, "<Links><TavelinorLinks>")}),
         {u"unreadableComments Files/Docs/4.comments"_s,
          u"unreadableComments Files/Docs/5.links"_s}},

        {"project notes whose index is damaged",
         writing(u"Files/ProjectNotes/index.xml"_s, "<ProjectNotes><Note ID=\"1\">"),
         {u"unreadableNotes Files/ProjectNotes"_s}},
        {"project notes of which one is damaged",
         all({writing(u"Files/ProjectNotes/index.xml"_s,
                      "<ProjectNotes><Note ID=\"1\"><Title>A</Title></Note>"
                      "<Note ID=\"2\"><Title>B</Title></Note></ProjectNotes>"),
              writing(u"Files/ProjectNotes/Note-1.rtf"_s, "{\\rtf1 Whole.}"),
              writing(u"Files/ProjectNotes/Note-2.rtf"_s, "{\\rtf1 Cut off")}),
         {u"unreadableNotes Files/ProjectNotes"_s}},

        // What was recorded of texts
        {"texts that were changed outside",
         all({writing(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}"),
              writing(u"Files/Docs/4_synopsis.txt"_s, {})}),
         {u"changedDocument Files/Docs/4.rtf"_s, u"changedDocument Files/Docs/4_synopsis.txt"_s}},
        {"a folder in the place of a text",
         all({removing(u"Files/Docs/4_synopsis.txt"_s),
              writing(u"Files/Docs/4_synopsis.txt/file"_s, "in a folder")}),
         {u"unreadableDocument Files/Docs/4_synopsis.txt"_s,
          u"changedDocument Files/Docs/4_synopsis.txt"_s}},
        {"texts that are gone",
         all({removing(u"Files/Docs/4.rtf"_s), removing(u"Files/Docs/4_synopsis.txt"_s)}),
         {u"missingDocument Files/Docs/4.rtf"_s, u"missingDocument Files/Docs/4_synopsis.txt"_s}},
        {"hashes that aren't whole",
         writing(HashesFile,
                 "4.rtf=0\n4_synopsis.txt=\n" + ofHash("5.rtf", 39) + ofHash("5.rtf", 41)),
         QStringList(4, u"unreadableHashes "_s + HashesFile)},
        {"lines that are no hashes",
         writing(HashesFile,
                 "gulls\n" + ofHash("", 40) + ofHash("../4.rtf", 40) + ofHash(uuidOf(4) + '/', 40)
                     + ofHash(uuidOf(4) + "/a/b", 40) + "4.rtf=" + QByteArray(40, 'g') + '\n'
                     + QByteArray("\xff\xfe\0=\n", 5)),
         QStringList(7, u"unreadableHashes "_s + HashesFile)},
        {"hashes that are cut off", cuttingOff(HashesFile), {u"unreadableHashes "_s + HashesFile}},
        {"a folder in the place of the hashes",
         all({removing(HashesFile), writing(HashesFile + u"/file"_s, "in a folder")}),
         {u"unreadableHashes "_s + HashesFile}},
        {"a search index that is empty",
         writing(IndexFile, {}),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a search index that is no XML",
         writing(IndexFile, "gulls"),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a search index that is cut off",
         writing(IndexFile, "<SearchIndexes><Documents><Document ID=\"4\"><Text>Gu"),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a search index of another root",
         writing(IndexFile, "<Documents/>"),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a search index without documents",
         writing(IndexFile, "<SearchIndexes><Other><Documents/></Other></SearchIndexes>"),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a search index with a document type",
         writing(IndexFile, "<!DOCTYPE SearchIndexes><SearchIndexes><Documents/></SearchIndexes>"),
         {u"unreadableSearchIndex "_s + IndexFile}},
        {"a folder in the place of the search index",
         writing(IndexFile + u"/file"_s, "in a folder"),
         {u"unreadableSearchIndex "_s + IndexFile}},

        // System folders
        {"no Trash", inBinder(trash, {}), {u"missingSystemFolder TrashFolder"_s}},
        {"two Trash folders",
         inBinder(trash, trash + item(8, "TrashFolder", "Bin")),
         {u"doubledSystemFolder TrashFolder"_s}},
        {"a system folder further down",
         inBinder(
             research,
             item(8, "Folder", "Shelf", {.attributes = {}, .metaData = {}, .children = research})),
         {u"missingSystemFolder ResearchFolder"_s}},
        {"a second Draft further down",
         inBinder(
             research,
             item(1, "ResearchFolder", "Research",
                  {.attributes = {}, .metaData = {}, .children = item(8, "DraftFolder", "Old")})),
         {u"doubledSystemFolder DraftFolder"_s}},
        {"no items at all",
         formed("1.5", "18", {}),
         {u"missingSystemFolder DraftFolder"_s, u"missingSystemFolder ResearchFolder"_s,
          u"missingSystemFolder TrashFolder"_s}},

        // The project's tables
        {"two labels of one id",
         inFullBinder("<Label ID=\"7\"", "<Label ID=\"1\" Color=\"\"/><Label ID=\"7\""),
         {u"duplicateLabel LabelSettings"_s}},
        {"two status items of one id",
         inFullBinder("<Status ID=\"3\"", "<Status ID=\"2\"/><Status ID=\"3\""),
         {u"duplicateStatus StatusSettings"_s}},
        {"two keywords of one id",
         inFullBinder("<Keyword ID=\"9\">", "<Keyword ID=\"5\"/><Keyword ID=\"9\">"),
         {u"duplicateKeyword Keywords"_s}},
        {"two custom fields of one id",
         inFullBinder("<MetaDataField ID=\"place\"",
                      "<MetaDataField ID=\"pov\"/><MetaDataField ID=\"place\""),
         {u"duplicateField CustomMetaDataSettings"_s}},
        {"a default label that doesn't exist",
         inFullBinder("<DefaultLabelID>7<", "<DefaultLabelID>70<"),
         {u"unknownDefaultLabel LabelSettings"_s}},
        {"a default status that doesn't exist",
         inFullBinder("<DefaultStatusID>2<", "<DefaultStatusID>0<"),
         {u"unknownDefaultStatus StatusSettings"_s}},

        // What refers to something
        {"a label that doesn't exist",
         inBinder("<LabelID>1</LabelID>", "<LabelID>99</LabelID>"),
         {u"unknownLabel #4"_s}},
        {"a status that doesn't exist",
         inBinder("<StatusID>3</StatusID>", "<StatusID>-7</StatusID>"),
         {u"unknownStatus #5"_s}},
        {"a keyword that doesn't exist",
         inFullBinder("<KeywordID>5</KeywordID>", "<KeywordID>55</KeywordID>"),
         {u"unknownKeyword #4"_s}},
        {"a value in a custom field that doesn't exist",
         inFullBinder("<FieldID>place</FieldID><Value>Quay",
                      "<FieldID>plaice</FieldID><Value>Quay"),
         {u"unknownField #5"_s}},
        {"a template for children that doesn't exist",
         inFullBinder("<DefaultChildTemplateID>7<", "<DefaultChildTemplateID>77<"),
         {u"unknownChildTemplate #3"_s}},
        {"an item's reference to one that doesn't exist",
         inFullBinder("<Reference BinderID=\"5\">", "<Reference BinderID=\"55\">"),
         {u"unknownReference #4"_s}},
        {"an item's reference to an id that none can have",
         inFullBinder("<Reference BinderID=\"5\">", "<Reference BinderID=\"-5\">"),
         {u"unknownReference #4"_s}},
        {"the project's reference to an item that doesn't exist",
         inFullBinder("<Reference BinderID=\"4\">", "<Reference BinderID=\"44\">"),
         {u"unknownReference ProjectReferences"_s}},
        {"a backdrop that is an item that doesn't exist",
         inFullBinder("\"BinderID\">8<", "\"BinderID\">88<"),
         {u"unknownBackdrop FullScreenBackdrop"_s}},
        {"a template folder that doesn't exist",
         inFullBinder("<TemplateFolderUUID>" + uuidOf(6), "<TemplateFolderUUID>" + uuidOf(66)),
         {u"unknownTemplateFolder TemplateFolderUUID"_s}},
        {"a template folder's id that doesn't exist",
         inFullBinder("<TemplateFolderUUID>" + uuidOf(6) + "</TemplateFolderUUID>",
                      "<TemplateFolderID>66</TemplateFolderID>"),
         {u"unknownTemplateFolder TemplateFolderID"_s}},
        {"a favorite that doesn't exist",
         inFullBinder("<Favorites><BinderID>5<", "<Favorites><BinderID>55<"),
         {u"unknownFavorite Novel.tavelx"_s}},
        {"favorites that can't exist",
         inFullBinder("<Favorites><BinderID>5</BinderID><BinderID>3<",
                      "<Favorites><BinderID>-1</BinderID><BinderID>three<"),
         {u"unknownFavorite Novel.tavelx"_s, u"unknownFavorite Novel.tavelx"_s}},
        {"a favorite whose item has no uuid",
         inFullBinder(fifthUuid, {}),
         {u"unknownFavorite Novel.tavelx"_s, u"nullUuid #5"_s}},
        {"a good binder, a backup with a favorite that doesn't exist",
         all({inFullBinder("<Favorites><BinderID>5<", "<Favorites><BinderID>55<"),
              zipping(u"binder.backup"_s), writing(Binder, fullBinder())}),
         {u"unknownFavorite "_s + Backup}},
        {"a collection member that doesn't exist",
         inBinder("<BinderID>5</BinderID>", "<BinderID>55</BinderID>"),
         {u"unknownCollectionMember Picks"_s}},
        {"files of no item",
         all({writing(u"Files/Docs/9.rtf"_s, "x"), writing(u"Files/Docs/9_notes.rtf"_s, "x"),
              writing(u"Files/Docs/99999999999.pdf"_s, "x"),
              writing(u"Files/Docs/cover.png"_s, "x")}),
         {u"orphanedFile Files/Docs/9.rtf"_s, u"orphanedFile Files/Docs/99999999999.pdf"_s,
          u"orphanedFile Files/Docs/9_notes.rtf"_s}},
        {"snapshots of no item",
         all({writing(u"Snapshots/9.snapshots/index.xml"_s, "x"),
              writing(u"Snapshots/other/index.xml"_s, "x"),
              writing(u"Snapshots/"_s + uuidText(4) + u"/index.xml"_s, "x"),
              writing(u"Snapshots/"_s + uuidText(77) + u"/index.xml"_s, "x")}),
         {u"orphanedSnapshots Snapshots/"_s + uuidText(77),
          u"orphanedSnapshots Snapshots/9.snapshots"_s}},

        // Snapshots
        {"snapshots behind a link to nowhere",
         all({removingFolder(u"Snapshots"_s), linkingToNowhere(u"Snapshots"_s)}),
         {u"unreadableSnapshots Snapshots"_s}},
        {"snapshots of an item behind a link to nowhere",
         all({removingFolder(u"Snapshots/5.snapshots"_s),
              linkingToNowhere(u"Snapshots/5.snapshots"_s)}),
         {u"unreadableSnapshots Snapshots/5.snapshots/index.xml"_s}},
        {"a list of snapshots that is cut off",
         all({withSnapshots, cuttingOff(SnapshotList)}),
         {u"unreadableSnapshots "_s + SnapshotList}},
        {"a list of snapshots that is empty",
         all({withSnapshots, writing(SnapshotList, {})}),
         {u"unreadableSnapshots "_s + SnapshotList}},
        {"a list of snapshots behind a link to nowhere",
         all({withSnapshots, removing(SnapshotList), linkingToNowhere(SnapshotList)}),
         {u"unreadableSnapshots "_s + SnapshotList}},
        {"snapshots without a list",
         all({withSnapshots, removing(SnapshotList)}),
         {u"missingSnapshots "_s + SnapshotList}},
        {"snapshots that are damaged",
         all({withSnapshots, cuttingOff(SnapshotText), cuttingOff(OldSnapshotText)}),
         {u"unreadableSnapshot "_s + SnapshotText, u"unreadableSnapshot "_s + OldSnapshotText}},
        {"a snapshot in the place of which is a folder",
         all({withSnapshots, removing(SnapshotText), writing(SnapshotText + u"/file"_s, "x")}),
         {u"unreadableSnapshot "_s + SnapshotText}},
        {"a snapshot behind a link to nowhere",
         all({withSnapshots, removing(SnapshotText), linkingToNowhere(SnapshotText)}),
         {u"unreadableSnapshot "_s + SnapshotText}},
        {"a snapshot that is gone",
         all({withSnapshots, removing(SnapshotText)}),
         {u"missingSnapshot "_s + SnapshotText}},
    };
}

/** The problems that the tool told, each as its kind, a blank and its place. */
QStringList problemsOf(const QJsonObject &report)
{
    QStringList problems;
    const QJsonArray array = report[u"problems"].toArray();
    for (const QJsonValue &problem : array)
        problems.append(problem[u"kind"].toString() + u' ' + problem[u"where"].toString());
    return problems;
}

} // namespace

void TstToolCheck::aSoundProjectHasNoProblems_data()
{
    QTest::addColumn<Damage>("make");
    QTest::newRow("a project of format 18") << Damage(writeSoundProject);
    QTest::newRow("with something in every part of the binder")
        << all({writeSoundProject, writing(Binder, fullBinder())});
    QTest::newRow("with both copies of its binder")
        << all({writeSoundProject, zipping(u"binder.autosave"_s), zipping(u"binder.backup"_s)});
    QTest::newRow("of format 16") << formed(
        "1.0", "16",
        systemFolders(soundDraftItems())
            .replace("<LabelID>1</LabelID><StatusID>2</StatusID>", {})
            .replace("<StatusID>3</StatusID>", {}));
    QTest::newRow("of format 23") << formed("2.0", "23", systemFolders({}));
    QTest::newRow("with snapshots") << all({writeSoundProject, withSnapshots});
    QTest::newRow("without a folder of texts or of snapshots")
        << all({writeSoundProject, removingFolder(u"Files/Docs"_s), removingFolder(u"Snapshots"_s),
                recordingText(77, "Text"), recordingText(4, "CustomMetaData")});
    QTest::newRow("as the tool makes it") << Damage([](const TestProject &project) {
        if (runTool({u"new"_s, project.path()}).status != 0)
            qFatal("could not make a project");
    });
}

void TstToolCheck::aSoundProjectHasNoProblems()
{
    QFETCH(const Damage, make);
    const TestProject project;
    make(project);
    const auto before = everythingBelow(project.enclosingPath());

    const ProgramResult json = runTool({u"check"_s, project.path(), u"--json"_s});
    QVERIFY2(json.status == 0, json.output);
    QCOMPARE(json.errors, QByteArray());
    QCOMPARE(
        json.json().object(),
        QJsonObject({{u"path"_s, project.path()}, {u"ok"_s, true}, {u"problems"_s, QJsonArray()}}));
    const ProgramResult text = runTool({u"check"_s, project.path()});
    QCOMPARE(text.status, 0);
    QCOMPARE(text.errors, QByteArray());
    QCOMPARE(text.output, u"No problems in %1\n"_s.arg(project.path()).toUtf8());
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolCheck::damageIsFound_data()
{
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<QStringList>("problems");
    const QList<DamageRow> rows = damageRows();
    for (const DamageRow &row : rows)
        QTest::newRow(row.name) << row.damage << row.problems;
}

void TstToolCheck::damageIsFound()
{
    QFETCH(const Damage, damage);
    QFETCH(const QStringList, problems);
    const TestProject project;
    writeSoundProject(project);
    damage(project);
    const auto before = everythingBelow(project.enclosingPath());

    const ProgramResult json = runTool({u"check"_s, project.path(), u"--json"_s});
    QVERIFY(!json.crashed);
    const QJsonObject report = json.json().object();
    QCOMPARE(problemsOf(report), problems);
    QCOMPARE(report[u"ok"], QJsonValue(false));
    QCOMPARE(json.status, 1);
    const QByteArray summary = problems.size() == 1
        ? u"tavel: 1 problem in '%1'\n"_s.arg(project.path()).toUtf8()
        : u"tavel: %1 problems in '%2'\n"_s.arg(problems.size()).arg(project.path()).toUtf8();
    QCOMPARE(json.errors, summary);

    QByteArray lines;
    const QJsonArray array = report[u"problems"].toArray();
    for (const QJsonValue &problem : array) {
        QVERIFY(!problem[u"text"].toString().isEmpty());
        lines += u"%1: %2: %3\n"_s
                     .arg(problem[u"kind"].toString(), problem[u"where"].toString(),
                          problem[u"text"].toString())
                     .toUtf8();
    }
    const ProgramResult text = runTool({u"check"_s, project.path()});
    QCOMPARE(text.status, 1);
    QCOMPARE(text.output, lines);
    QCOMPARE(text.errors, summary);
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolCheck::everyKindOfProblemHasARow()
{
    const QStringList kinds{u"noBinder"_s,
                            u"binderUnreadable"_s,
                            u"autosaveUnreadable"_s,
                            u"backupUnreadable"_s,
                            u"fallback"_s,
                            u"binderName"_s,
                            u"severalBinders"_s,
                            u"binderVersionUnknown"_s,
                            u"formatVersionMissing"_s,
                            u"formatVersionInvalid"_s,
                            u"formatVersionMismatch"_s,
                            u"missingId"_s,
                            u"duplicateId"_s,
                            u"nullUuid"_s,
                            u"duplicateUuid"_s,
                            u"invalidDate"_s,
                            u"unknownLabel"_s,
                            u"unknownStatus"_s,
                            u"unknownKeyword"_s,
                            u"unknownField"_s,
                            u"unknownChildTemplate"_s,
                            u"unknownReference"_s,
                            u"unknownBackdrop"_s,
                            u"unknownTemplateFolder"_s,
                            u"unknownFavorite"_s,
                            u"duplicateLabel"_s,
                            u"duplicateStatus"_s,
                            u"duplicateKeyword"_s,
                            u"duplicateField"_s,
                            u"unknownDefaultLabel"_s,
                            u"unknownDefaultStatus"_s,
                            u"missingSystemFolder"_s,
                            u"doubledSystemFolder"_s,
                            u"unreadableDocuments"_s,
                            u"missingDocuments"_s,
                            u"unreadableDocument"_s,
                            u"unreadableComments"_s,
                            u"unreadableNotes"_s,
                            u"changedDocument"_s,
                            u"missingDocument"_s,
                            u"unreadableHashes"_s,
                            u"unreadableSearchIndex"_s,
                            u"unknownCollectionMember"_s,
                            u"orphanedFile"_s,
                            u"orphanedSnapshots"_s,
                            u"unreadableSnapshots"_s,
                            u"missingSnapshots"_s,
                            u"unreadableSnapshot"_s,
                            u"missingSnapshot"_s};
    QSet<QString> tested;
    const QList<DamageRow> rows = damageRows();
    for (const DamageRow &row : rows) {
        for (const QString &problem : row.problems)
            tested.insert(problem.section(u' ', 0, 0));
    }
    QCOMPARE(tested, QSet<QString>(kinds.begin(), kinds.end()));
}

void TstToolCheck::theKeysAreStable()
{
    const TestProject project;
    writeSoundProject(project);
    removing(VersionFile)(project);
    const QJsonObject report = runTool({u"check"_s, project.path(), u"--json"_s}).json().object();
    QCOMPARE(report.keys(), QStringList({u"ok"_s, u"path"_s, u"problems"_s}));
    QCOMPARE(report[u"path"], QJsonValue(project.path()));
    QCOMPARE(report[u"problems"][0].toObject().keys(),
             QStringList({u"kind"_s, u"text"_s, u"where"_s}));
}

void TstToolCheck::theXmlErrorIsToldWithItsLine_data()
{
    QTest::addColumn<QByteArray>("binder");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end");
    const QByteArray head = "<?xml version=\"1.0\"?>\n<TavelinorProject Version=\"1.5\">\n";
    QTest::newRow("markup that is wrong") << QByteArray(head + "<Binder>\n<BinderItem></Binder>")
                                          << u"line 4, column "_s << QString();
    QTest::newRow("an element that doesn't belong there")
        << QByteArray(head + "<Binder><Foo/></Binder></TavelinorProject>") << u"line 3, column "_s
        << u"Unexpected tag Foo on line 3.  Expected tag BinderItem"_s;
    QTest::newRow("no version") << QByteArray("<TavelinorProject>\n</TavelinorProject>")
                                << u"line 1, column "_s << u": the root element has no version"_s;
    QTest::newRow("an empty file") << QByteArray() << u"line 1, column 0: "_s << QString();
}

void TstToolCheck::theXmlErrorIsToldWithItsLine()
{
    QFETCH(const QByteArray, binder);
    QFETCH(const QString, start);
    QFETCH(const QString, end);
    const TestProject project;
    writeProject(project, binder);
    const QJsonObject report = runTool({u"check"_s, project.path(), u"--json"_s}).json().object();
    QCOMPARE(problemsOf(report), QStringList(u"binderUnreadable Novel.tavelx"_s));
    const QString text = report[u"problems"][0][u"text"].toString();
    QVERIFY2(text.startsWith(start), qPrintable(text));
    QVERIFY2(text.endsWith(end), qPrintable(text));
    QVERIFY2(text.size() > start.size(), qPrintable(text));
}

void TstToolCheck::theItemsOfAFallbackAreChecked()
{
    const TestProject project;
    writeSoundProject(project);
    inBinder("<StatusID>3</StatusID>", "<StatusID>33</StatusID>")(project);
    all({zipping(u"binder.backup"_s), removing(Binder)})(project);
    const QJsonObject report = runTool({u"check"_s, project.path(), u"--json"_s}).json().object();
    QCOMPARE(
        problemsOf(report),
        QStringList({u"noBinder Novel.tavelx"_s, u"fallback "_s + Backup, u"unknownStatus #5"_s}));
}

void TstToolCheck::aDeadFavoriteIsToldWithItsIdAndWhatItDoes()
{
    const TestProject project;
    writeSoundProject(project);
    inFullBinder("<Favorites><BinderID>5<", "<Favorites><BinderID>55<")(project);
    const ProgramResult result = runTool({u"check"_s, project.path()});
    QCOMPARE(result.output,
             QByteArray("unknownFavorite: Novel.tavelx: the favorites hold the id 55, which stands "
                        "for no item; that keeps the binder from loading\n"));
    QCOMPARE(runTool({u"info"_s, project.path()}).status, 1);
}

void TstToolCheck::aDeadFavoriteMakesAnOpeningFallBack()
{
    const TestProject project;
    writeSoundProject(project);
    inBinder("<StatusID>3</StatusID>", "<StatusID>33</StatusID>")(project);
    zipping(u"binder.backup"_s)(project);
    inFullBinder("<Favorites><BinderID>5<", "<Favorites><BinderID>55<")(project);
    zipping(u"binder.autosave"_s)(project);
    const QJsonObject report = runTool({u"check"_s, project.path(), u"--json"_s}).json().object();
    QCOMPARE(problemsOf(report),
             QStringList({u"unknownFavorite Novel.tavelx"_s, u"unknownFavorite "_s + Autosave,
                          u"fallback "_s + Backup, u"unknownStatus #5"_s}));
    QCOMPARE(runTool({u"info"_s, project.path()}).status, 0);
}

void TstToolCheck::aTextIsOneLineWhateverTheTitle()
{
    const TestProject project;
    writeProject(project,
                 binderXml(systemFolders(item(
                     3, "Text", "One&#10;two",
                     {.attributes = {}, .metaData = "<LabelID>9</LabelID>", .children = {}}))));
    const ProgramResult result = runTool({u"check"_s, project.path()});
    QCOMPARE(result.output,
             QByteArray("unknownLabel: #3: 'One two' has the label 9, which doesn't exist\n"));
}

void TstToolCheck::whatIsNoProjectIsAFailure_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << u"Nothing.tavel"_s;
    QTest::newRow("no path") << QString();
    QTest::newRow("a file") << u"Novel.tavel/Files/version.txt"_s;
    QTest::newRow("a binder that isn't there") << u"Novel.tavel/Other.tavelx"_s;
}

void TstToolCheck::whatIsNoProjectIsAFailure()
{
    QFETCH(const QString, path);
    const TestProject project;
    writeSoundProject(project);
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const auto before = everythingBelow(project.enclosingPath());
    const ProgramResult result = runTool({u"check"_s, u"--json"_s, path}, place);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, u"tavel: there is no project at '%1'\n"_s.arg(path).toUtf8());
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolCheck::aVeryDeepTreeIsChecked()
{
    constexpr int Depth = 5000;
    const TestProject project;
    QByteArray items;
    for (int id = 3; id < Depth + 3; ++id)
        items += "<Children><BinderItem " + itemAttributes(id) + " Type=\"Folder\">";
    items += QByteArray("</BinderItem></Children>").repeated(Depth);
    const QByteArray draft =
        "<BinderItem " + itemAttributes(0) + " Type=\"DraftFolder\">" + items + "</BinderItem>";
    writeProject(
        project,
        binderXml(draft + item(1, "ResearchFolder", "Research") + item(2, "TrashFolder", "Trash")));
    const ProgramResult result = runTool({u"check"_s, project.path()});
    QVERIFY(!result.crashed);
    QVERIFY2(result.status == 0, result.output);
}

void TstToolCheck::anInterruptedSaveIsToldInOneLine()
{
    const TestProject project;
    writeSoundProject(project);
    const QString path = project.path(u"Files/Docs/4.rtf"_s);
    const QString elsewhere = project.enclosingPath() + u"/4.rtf"_s;
    {
        const TVLUnattendedMessageBoxes boxes;
        const auto model = project.open();
        QVERIFY(model);
        QVERIFY(QFile::rename(path, elsewhere));
        QVERIFY(QFile::link(elsewhere, path));
        QTextDocument words;
        words.setPlainText(u"Terns."_s);
        QVERIFY(model->overwriteText(model->index(4), &words));
        QVERIFY(!model->save());
    }
    QVERIFY(QFile::remove(path));
    project.writeFile(u"Files/Docs/4.rtf"_s, {});

    const ProgramResult text = runTool({u"check"_s, project.path()});
    QCOMPARE(text.output.split('\n').constFirst(),
             QByteArray("a save was interrupted; the next opening completes it (1 files)"));
    // Who reads sees the words, and leaves it to others to complete the save.
    QCOMPARE(runTool({u"cat"_s, project.path(), u"4"_s}).output, QByteArray("Terns.\n"));
    QCOMPARE(runTool({u"check"_s, project.path()}).output, text.output);
    QVERIFY(project.open());
    QVERIFY(!runTool({u"check"_s, project.path()}).output.contains("interrupted"));
}

TVL_TEST(TstToolCheck)
#include "tst_toolcheck.moc"
