#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TVLPropertyWords_p.h"
#include "TVLTextCommentLink.h"
#include "TVLTextRange.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

/** Does something to a project that can be searched. */
using Change = ProjectChange;
Q_DECLARE_METATYPE(Change)

/** `tavel search`. */
class TstToolSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOperatorSaysHowTheTextIsTaken_data();
    void anOperatorSaysHowTheTextIsTaken();
    void aPropertySaysWhereToLook_data();
    void aPropertySaysWhereToLook();
    void thePropertiesAreTheWordsOfTheBinder();
    void wordsOfOptionsMayBeInAnyCase();
    void nothingFoundIsNoFailure();
    void eachItemIsALine();
    void theFirstHitIsShownInItsWords_data();
    void theFirstHitIsShownInItsWords();
    void aTextMayBeginWithAHyphen();
    void itemsComeInTheOrderOfTheBinder();
    void aTitleStaysOnItsLine();
    void theJsonFormIsAnArrayOfItems();
    void systemFoldersAreNotFoundButWhatIsInTheTrashIs();
    void wrongUseIsToldBeforeTheProjectIsTouched_data();
    void wrongUseIsToldBeforeTheProjectIsTouched();
    void whatIsNoProjectIsAFailure_data();
    void whatIsNoProjectIsAFailure();
    void aProjectWithIdsAloneIsSearched();
    void aProjectWithoutIdsIsRefused();
    void nothingIsWritten_data();
    void nothingIsWritten();
    void aLockedProjectIsSearchedAndStaysLocked();
    void aTextThatWasChangedOutsideIsReadAgain();
    void aTextThatIsGoneIsNotFound();
    void aDamagedIndexStopsNoSearch_data();
    void aDamagedIndexStopsNoSearch();
    void damagedHashesStopNoSearch_data();
    void damagedHashesStopNoSearch();
    void aDamagedTextIsToldAndTheOthersAreSearched();
    void whatWasImportedIsFoundByItsIndex();
    void hashesAreNotSavedWithoutTheIndexThatTheyVouchFor();
};

namespace {

const QString HashFile = u"Files/Docs/docs.checksum"_s;

/** Lets the library give an item a comment, and save all that it keeps of a project. */
void addCommentAndSave(const TestProject &project, int id, const QByteArray &text)
{
    const TestModel model = project.open();
    const TVLTextCommentLink comment(u"comment"_s, "{\\rtf1 " + text + "}");
    if (!model->setInspectorNote(model->index(id), {0, 3}, comment))
        qFatal("item %d takes no comment", id);
    model->prepareToDestroy();
}

/** A project with something to find in every property of its items 3 to 8. */
void writeSearchedProject(const TestProject &project)
{
    writeProject(project, fullBinder());
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1\\ansi Grey morning, na\\'efve as ever.}");
    project.writeFile(u"Files/Docs/4.rtf"_s,
                      "{\\rtf1 Grey gulls over the harbour wall.\\par It\\u8217?s late.}");
    project.writeFile(u"Files/Docs/4_synopsis.txt"_s, "A boat comes in");
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 The red cart left. Dark art remained.}");
    project.writeFile(u"Files/Docs/5_notes.rtf"_s, "{\\rtf1 Ask the keeper}");
    project.writeFile(u"Files/Docs/7.rtf"_s, "{\\rtf1 Colours: red, dark blue}");
    project.writeFile(u"Files/Docs/8_notes.rtf"_s, "{\\rtf1 Drawn from an old chart}");
    addCommentAndSave(project, 5, "Check the tides");
}

ProgramResult search(const TestProject &project, const QString &text,
                     const QStringList &options = {})
{
    return runTool(QStringList{u"search"_s, project.path(), text} + options);
}

/** Lines of found items without what was found in each. */
QByteArray itemLines(const QByteArray &output)
{
    QByteArray items;
    const QList<QByteArray> lines = output.split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            items += line.left(line.indexOf("  (")) + '\n';
    }
    return items;
}

/** The ids of the items that a search finds, in its order. */
QList<int> found(const TestProject &project, const QString &text, const QStringList &options = {})
{
    const ProgramResult result = search(project, text, options + QStringList(u"--json"_s));
    if (result.crashed || result.status != 0 || !result.errors.isEmpty())
        qCritical("%d: %s", result.status, result.errors.constData());
    QList<int> ids;
    const QJsonArray items = result.json().array();
    for (const QJsonValue &item : items)
        ids.append(item[u"id"].toInt(-1));
    return ids;
}

Change puttingAFolderInPlaceOf(const QString &relativePath)
{
    return [=](const TestProject &project) {
        removing(relativePath)(project);
        QDir().mkpath(project.path(relativePath));
    };
}

/** A word that is in one property alone, and the items that have it there. */
struct PropertyRow
{
    const char *property;
    QString word;
    QList<int> ids;
};

QList<PropertyRow> propertyRows()
{
    return {
        {"Title", u"sheet"_s, {7}},        {"Text", u"gulls"_s, {4}},
        {"Notes", u"keeper"_s, {5}},       {"Synopsis", u"boat"_s, {4}},
        {"Keywords", u"people"_s, {4, 5}}, {"Label", u"chapter"_s, {4}},
        {"Status", u"done"_s, {5}},        {"CustomMetaData", u"quay"_s, {5}},
        {"Comments", u"tides"_s, {5}},
    };
}

} // namespace

void TstToolSearch::anOperatorSaysHowTheTextIsTaken_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QList<int>>("ids");
    const auto by = [](const char *word) {
        return QStringList{u"--operator"_s, QString::fromLatin1(word)};
    };
    const QStringList sensitive{u"--case"_s};

    QTest::newRow("a phrase") << u"grey gulls"_s << by("exact") << QList<int>{4};
    QTest::newRow("a phrase in another order") << u"gulls grey"_s << by("exact") << QList<int>();
    QTest::newRow("a phrase is the default") << u"grey gulls"_s << QStringList() << QList<int>{4};
    QTest::newRow("a part of words") << u"art"_s << QStringList() << QList<int>{3, 5, 8};
    QTest::newRow("no letters of ASCII") << u"NA\u00cfVE"_s << QStringList() << QList<int>{3};
    QTest::newRow("a straight apostrophe") << u"it's"_s << QStringList() << QList<int>{4};
    QTest::newRow("over the end of a paragraph") << u"wall. It"_s << QStringList() << QList<int>();
    QTest::newRow("blanks alone are a phrase") << u"  "_s << QStringList() << QList<int>();

    QTest::newRow("all words") << u"wall grey"_s << by("all") << QList<int>{4};
    QTest::newRow("all words, in several texts") << u"wall cart"_s << by("all") << QList<int>();
    QTest::newRow("all words between blanks") << u"dark red"_s << by("all") << QList<int>{5, 7};
    QTest::newRow("all words between commas") << u"dark blue, red"_s << by("all") << QList<int>{7};
    QTest::newRow("all of no words") << u" \t"_s << by("all") << QList<int>();

    QTest::newRow("any word") << u"wall cart nothing"_s << by("any") << QList<int>{4, 5};
    QTest::newRow("any word between commas")
        << u"dark blue, grey m"_s << by("any") << QList<int>{3, 7};

    QTest::newRow("a whole word") << u"art"_s << by("word") << QList<int>{5};
    QTest::newRow("any whole word") << u"art wall"_s << by("word") << QList<int>{4, 5};
    QTest::newRow("a part is no whole word") << u"harb"_s << by("word") << QList<int>();

    QTest::newRow("an expression") << u"gr[ae]y .*wall"_s << by("regexp") << QList<int>{4};
    QTest::newRow("an expression at the start") << u"^grey"_s << by("regexp") << QList<int>{3, 4};
    QTest::newRow("an expression that is a text") << u"late\\."_s << by("regexp") << QList<int>{4};
    QTest::newRow("no expression without being asked")
        << u"gr[ae]y"_s << QStringList() << QList<int>();

    QTest::newRow("the right case") << u"Grey"_s << sensitive << QList<int>{3, 4};
    QTest::newRow("the wrong case") << u"grey"_s << sensitive << QList<int>();
    QTest::newRow("words in the right case")
        << u"Grey wall"_s << sensitive + by("all") << QList<int>{4};
    QTest::newRow("words in the wrong case")
        << u"grey wall"_s << sensitive + by("all") << QList<int>();
    QTest::newRow("an expression in the wrong case")
        << u"^grey"_s << sensitive + by("regexp") << QList<int>();
    QTest::newRow("a label in the wrong case") << u"chapter"_s << sensitive << QList<int>();
}

void TstToolSearch::anOperatorSaysHowTheTextIsTaken()
{
    QFETCH(const QString, text);
    QFETCH(const QStringList, options);
    QFETCH(const QList<int>, ids);
    const TestProject project;
    writeSearchedProject(project);
    QCOMPARE(found(project, text, options), ids);
    // And when nothing is known of the texts from before.
    removing(IndexFile)(project);
    removing(HashFile)(project);
    QCOMPARE(found(project, text, options), ids);
}

void TstToolSearch::aPropertySaysWhereToLook_data()
{
    QTest::addColumn<int>("row");
    const QList<PropertyRow> rows = propertyRows();
    for (int i = 0; i < rows.size(); ++i)
        QTest::newRow(rows.at(i).property) << i;
}

void TstToolSearch::aPropertySaysWhereToLook()
{
    QFETCH(const int, row);
    QList<PropertyRow> others = propertyRows();
    const PropertyRow own = others.takeAt(row);
    QStringList otherWords;
    for (const PropertyRow &other : std::as_const(others))
        otherWords.append(other.word);
    const QStringList inProperty{u"--in"_s, QString::fromLatin1(own.property)};
    const QStringList anyInProperty = inProperty + QStringList{u"--operator"_s, u"any"_s};

    const TestProject project;
    writeSearchedProject(project);
    QCOMPARE(found(project, own.word, inProperty), own.ids);
    QCOMPARE(found(project, otherWords.join(u' '), anyInProperty), QList<int>());
    QCOMPARE(found(project, own.word, {u"--in"_s, u"All"_s}), own.ids);
    QCOMPARE(found(project, own.word), own.ids);
}

void TstToolSearch::thePropertiesAreTheWordsOfTheBinder()
{
    const TestProject project;
    writeSearchedProject(project);
    for (const auto &row : TVLPropertyWords) {
        const ProgramResult result = search(project, u"gulls"_s, {u"--in"_s, row.word.toString()});
        QVERIFY2(result.status == 0, result.errors);
    }
}

void TstToolSearch::wordsOfOptionsMayBeInAnyCase()
{
    const TestProject project;
    writeSearchedProject(project);
    QCOMPARE(found(project, u"quay"_s, {u"--in"_s, u"CUSTOMmetadata"_s}), QList<int>{5});
    QCOMPARE(found(project, u"wall grey"_s, {u"--operator"_s, u"All"_s}), QList<int>{4});
}

void TstToolSearch::nothingFoundIsNoFailure()
{
    const TestProject project;
    writeSearchedProject(project);
    const ProgramResult lines = search(project, u"nowhere"_s);
    QCOMPARE(lines.status, 0);
    QCOMPARE(lines.output, QByteArray());
    QCOMPARE(lines.errors, QByteArray());
    const ProgramResult json = search(project, u"nowhere"_s, {u"--json"_s});
    QCOMPARE(json.status, 0);
    QVERIFY(json.json().isArray());
    QCOMPARE(json.json().array(), QJsonArray());
}

void TstToolSearch::eachItemIsALine()
{
    const TestProject project;
    writeSearchedProject(project);
    const ProgramResult result = search(project, u"art"_s);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.output,
             QByteArray("3  Part 1  (1 hit; Title: Part 1)\n"
                        "5  First Watch  (2 hits; Text: The red cart left. Dark art remained.)\n"
                        "8  Map  (1 hit; Notes: Drawn from an old chart)\n"));
}

void TstToolSearch::theFirstHitIsShownInItsWords_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("hits");
    QTest::addColumn<QString>("excerpt");
    const QByteArray far(200, 'x');
    QTest::newRow("whole text") << QByteArray("Grey gulls") << u"gulls"_s << QStringList() << 1
                                << u"Grey gulls"_s;
    QTest::newRow("within words")
        << QByteArray("The harbour lay still and grey while the gulls went out to the sea and came "
                      "back again")
        << u"gulls"_s << QStringList() << 1
        << u"…lay still and grey while the gulls went out to the sea and came…"_s;
    QTest::newRow("within a long word")
        << far + "gulls" + far << u"gulls"_s << QStringList() << 1
        << u"…"_s + QString(50, u'x') + u"gulls"_s + QString(50, u'x') + u"…"_s;
    QTest::newRow("over line ends") << QByteArray("one\\par two\\par three") << u"two"_s
                                    << QStringList() << 1 << u"one two three"_s;
    QTest::newRow("several") << QByteArray("a gull, two gulls, GULLS") << u"gull"_s << QStringList()
                             << 3 << u"a gull, two gulls, GULLS"_s;
    QTest::newRow("any of some words")
        << QByteArray("sea and gulls") << u"gulls sea"_s << QStringList({u"--operator"_s, u"any"_s})
        << 2 << u"sea and gulls"_s;
    QTest::newRow("whole words") << QByteArray("cart art") << u"art"_s
                                 << QStringList({u"--operator"_s, u"word"_s}) << 1 << u"cart art"_s;
    QTest::newRow("an expression")
        << QByteArray("b1 b22") << u"b[0-9]+"_s << QStringList({u"--operator"_s, u"regexp"_s}) << 2
        << u"b1 b22"_s;
}

void TstToolSearch::theFirstHitIsShownInItsWords()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, wanted);
    QFETCH(const QStringList, options);
    QFETCH(const int, hits);
    QFETCH(const QString, excerpt);
    const TestProject project;
    writeProject(project, binderXml(systemFolders(item(3, "Text", "Title"))));
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 " + text + '}');
    const ProgramResult json = search(project, wanted, options + QStringList{u"--json"_s});
    QCOMPARE(json.json().array().size(), 1);
    const QJsonObject found = json.json().array().at(0).toObject();
    QCOMPARE(found[u"hits"], QJsonValue(hits));
    QCOMPARE(found[u"first"],
             QJsonValue(QJsonObject{{u"property"_s, u"Text"_s}, {u"text"_s, excerpt}}));
    const QString count = hits == 1 ? u"1 hit"_s : u"%1 hits"_s.arg(hits);
    QCOMPARE(QString::fromUtf8(search(project, wanted, options).output),
             u"3  Title  (%1; Text: %2)\n"_s.arg(count, excerpt));
}

void TstToolSearch::aTextMayBeginWithAHyphen()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders(item(3, "Text", "Card -reverse side"))));
    const ProgramResult result = runTool({u"search"_s, project.path(), u"--"_s, u"-reverse"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(itemLines(result.output), QByteArray("3  Card -reverse side\n"));
}

void TstToolSearch::itemsComeInTheOrderOfTheBinder()
{
    const TestProject project;
    QByteArray chapters;
    QList<int> expected;
    for (int part = 0; part < 5; ++part) {
        QByteArray texts;
        const int folder = 1000 - 100 * part;
        expected.append(folder);
        for (int i = 0; i < 10; ++i) {
            const int id = folder + (7 * i + 3) % 10 + 1;
            texts += item(id, "Text", "Tale");
            expected.append(id);
        }
        chapters +=
            item(folder, "Folder", "Tales", {.attributes = {}, .metaData = {}, .children = texts});
    }
    writeProject(project, binderXml(systemFolders(chapters)));
    QCOMPARE(found(project, u"tale"_s), expected);
}

void TstToolSearch::aTitleStaysOnItsLine()
{
    const TestProject project;
    writeProject(
        project,
        binderXml(systemFolders(item(3, "Text", "One&#10;two %1 \xc3\xa9") + item(4, "Text", ""))));
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 gulls}");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 gulls}");
    QCOMPARE(search(project, u"gulls"_s).output,
             QByteArray("3  One two %1 \xc3\xa9  (1 hit; Text: gulls)\n"
                        "4  Untitled  (1 hit; Text: gulls)\n"));
    const QJsonArray items = search(project, u"gulls"_s, {u"--json"_s}).json().array();
    QCOMPARE(items.at(0)[u"title"], QJsonValue(u"One\ntwo %1 \u00e9"_s));
    QCOMPARE(items.at(1)[u"title"], QJsonValue(u""_s));
}

void TstToolSearch::theJsonFormIsAnArrayOfItems()
{
    const TestProject project;
    writeSearchedProject(project);
    const ProgramResult result = search(project, u"people"_s, {u"--json"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());
    const auto itemJson = [](int id, const QString &title) {
        return QJsonObject{
            {u"id"_s, id},
            {u"uuid"_s, QString::fromLatin1(uuidOf(id))},
            {u"title"_s, title},
            {u"hits"_s, 1},
            {u"first"_s, QJsonObject{{u"property"_s, u"Keywords"_s}, {u"text"_s, u"People"_s}}}};
    };
    QCOMPARE(result.json().array(),
             QJsonArray({itemJson(4, u"The Harbour"_s), itemJson(5, u"First Watch"_s)}));
}

void TstToolSearch::systemFoldersAreNotFoundButWhatIsInTheTrashIs()
{
    const TestProject project;
    const QByteArray scrap = item(4, "Text", "Draft of the Trash");
    const QByteArray items = item(0, "DraftFolder", "Draft") + item(1, "ResearchFolder", "Research")
        + item(2, "TrashFolder", "Trash", {.attributes = {}, .metaData = {}, .children = scrap});
    writeProject(project, binderXml(items));
    QCOMPARE(found(project, u"draft"_s), QList<int>{4});
    QCOMPARE(found(project, u"trash"_s), QList<int>{4});
}

void TstToolSearch::wrongUseIsToldBeforeTheProjectIsTouched_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("an unknown operator")
        << QStringList{u"gulls"_s, u"--operator"_s, u"fuzzy"_s}
        << QByteArray("unknown operator 'fuzzy'; it is one of exact, all, any, word, regexp");
    QTest::newRow("an empty operator")
        << QStringList{u"gulls"_s, u"--operator"_s, QString()}
        << QByteArray("unknown operator ''; it is one of exact, all, any, word, regexp");
    QTest::newRow("an unknown property")
        << QStringList{u"gulls"_s, u"--in"_s, u"Texts"_s}
        << QByteArray("unknown property 'Texts'; it is one of All, Title, Text, Notes, Synopsis, "
                      "Keywords, Label, Status, CustomMetaData, Comments");
    QTest::newRow("an empty text")
        << QStringList{QString()} << QByteArray("the text to look for is empty");
    QTest::newRow("a broken expression")
        << QStringList{u"gr(e"_s, u"--operator"_s, u"regexp"_s}
        << QByteArray("'gr(e' is no regular expression: unexpected end");
    QTest::newRow("no text") << QStringList()
                             << QByteArray("TEXT is missing; see 'tavel search --help'");
    QTest::newRow("two texts") << QStringList{
        u"a"_s, u"b"_s} << QByteArray("one argument too many: 'b'; see 'tavel search --help'");
}

void TstToolSearch::wrongUseIsToldBeforeTheProjectIsTouched()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, line);
    const TestProject project;
    writeSearchedProject(project);
    const auto before = everythingBelow(project.enclosingPath());
    const ProgramResult result = runTool(QStringList{u"search"_s, project.path()} + arguments);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, "tavel: " + line + '\n');
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolSearch::whatIsNoProjectIsAFailure_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << u"Nothing.tavel"_s << u"there is no project at '%1'"_s;
    QTest::newRow("no path") << QString() << u"there is no project at '%1'"_s;
    QTest::newRow("a folder without a binder")
        << u"Empty.tavel"_s << u"there is no project in the folder '%1'"_s;
}

void TstToolSearch::whatIsNoProjectIsAFailure()
{
    QFETCH(const QString, path);
    QFETCH(const QString, error);
    const TestProject project;
    QDir(project.enclosingPath()).mkpath(u"Empty.tavel"_s);
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const auto before = everythingBelow(project.enclosingPath());
    const ProgramResult result = runTool({u"search"_s, path, u"gulls"_s, u"--json"_s}, place);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(error.arg(path)).toUtf8());
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolSearch::aProjectWithIdsAloneIsSearched()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders(soundDraftItems()), {}, "1.0"), "16");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Gulls.}");
    QCOMPARE(found(project, u"gulls"_s), QList<int>{4});
}

void TstToolSearch::aProjectWithoutIdsIsRefused()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders(item(3, "Text", "Gulls")), {}, "2.0"), "23");
    const ProgramResult result = search(project, u"gulls"_s);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(
        result.errors,
        u"tavel: projects of format version 23 can't be searched yet: '%1'\n"_s.arg(project.path())
            .toUtf8());
}

void TstToolSearch::nothingIsWritten_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("with all texts known") << Change([](const TestProject &) {});
    QTest::newRow("with nothing known") << Change([](const TestProject &project) {
        removing(IndexFile)(project);
        removing(HashFile)(project);
    });
    QTest::newRow("with a text that was changed outside")
        << writing(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}");
    QTest::newRow("with a damaged index") << cuttingOff(IndexFile);
    QTest::newRow("with damaged hashes") << writing(HashFile, "4.rtf=0");
}

void TstToolSearch::nothingIsWritten()
{
    QFETCH(const Change, change);
    const TestProject project;
    writeSearchedProject(project);
    change(project);
    const auto before = everythingBelow(project.enclosingPath());
    QCOMPARE(search(project, u"red"_s).status, 0);
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolSearch::aLockedProjectIsSearchedAndStaysLocked()
{
    const TestProject project;
    writeSearchedProject(project);
    QVERIFY(TVLProjectFolderFormat::addLock(project.path()));
    const QByteArray lock = project.readFile(u"Files/user.lock"_s);
    QCOMPARE(found(project, u"gulls"_s), QList<int>{4});
    QVERIFY(TVLProjectFolderFormat::lockExists(project.path()));
    QCOMPARE(project.readFile(u"Files/user.lock"_s), lock);
    TVLProjectFolderFormat::removeLock(project.path());
}

void TstToolSearch::aTextThatWasChangedOutsideIsReadAgain()
{
    const TestProject project;
    writeSearchedProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns over the harbour.}");
    project.writeFile(u"Files/Docs/4_synopsis.txt"_s, "A raft comes in");
    project.writeFile(u"Files/Docs/8_notes.rtf"_s, "{\\rtf1 Traced}");
    QCOMPARE(found(project, u"gulls"_s), QList<int>());
    QCOMPARE(found(project, u"terns"_s), QList<int>{4});
    QCOMPARE(found(project, u"boat"_s), QList<int>());
    QCOMPARE(found(project, u"raft"_s), QList<int>{4});
    QCOMPARE(found(project, u"traced"_s), QList<int>{8});
    QCOMPARE(found(project, u"keeper"_s), QList<int>{5});
}

void TstToolSearch::aTextThatIsGoneIsNotFound()
{
    const TestProject project;
    writeSearchedProject(project);
    removing(u"Files/Docs/4.rtf"_s)(project);
    QCOMPARE(found(project, u"gulls"_s), QList<int>());
    QCOMPARE(found(project, u"boat"_s), QList<int>{4});
}

void TstToolSearch::aDamagedIndexStopsNoSearch_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("missing") << removing(IndexFile);
    QTest::newRow("empty") << writing(IndexFile, {});
    QTest::newRow("no XML") << writing(IndexFile, "gulls");
    QTest::newRow("cut off") << cuttingOff(IndexFile);
    QTest::newRow("another root") << writing(IndexFile, "<Documents/>");
    QTest::newRow("without documents") << writing(IndexFile, "<SearchIndexes/>");
    QTest::newRow("with no document")
        << writing(IndexFile, "<SearchIndexes><Documents/></SearchIndexes>");
    QTest::newRow("a folder") << puttingAFolderInPlaceOf(IndexFile);
}

void TstToolSearch::aDamagedIndexStopsNoSearch()
{
    QFETCH(const Change, change);
    const TestProject project;
    writeSearchedProject(project);
    change(project);
    const ProgramResult result =
        search(project, u"gulls keeper boat tides sheet"_s, {u"--operator"_s, u"any"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(itemLines(result.output),
             QByteArray("4  The Harbour\n5  First Watch\n7  Scene Sheet\n"));
    QCOMPARE(result.errors, QByteArray());
}

void TstToolSearch::damagedHashesStopNoSearch_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("missing") << removing(HashFile);
    QTest::newRow("empty") << writing(HashFile, {});
    QTest::newRow("no hashes") << writing(HashFile, "gulls\n4.rtf=\n=0\n\xff\xfe");
    QTest::newRow("cut off") << cuttingOff(HashFile);
    QTest::newRow("of other files")
        << writing(HashFile, "4.rtf=da39a3ee5e6b4b0d3255bfef95601890afd80709\n");
    QTest::newRow("a folder") << puttingAFolderInPlaceOf(HashFile);
}

void TstToolSearch::damagedHashesStopNoSearch()
{
    QFETCH(const Change, change);
    const TestProject project;
    writeSearchedProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns over the harbour.}");
    change(project);
    const ProgramResult result =
        search(project, u"terns gulls keeper tides"_s, {u"--operator"_s, u"any"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(itemLines(result.output), QByteArray("4  The Harbour\n5  First Watch\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(found(project, u"gulls"_s), QList<int>());
}

void TstToolSearch::aDamagedTextIsToldAndTheOthersAreSearched()
{
    const TestProject project;
    writeSearchedProject(project);
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 Cut off");
    const auto before = project.readFile(u"Files/Docs/5.rtf"_s);
    const ProgramResult result = search(project, u"gulls keeper"_s, {u"--operator"_s, u"any"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(itemLines(result.output), QByteArray("4  The Harbour\n5  First Watch\n"));
    QCOMPARE(result.errorLines().size(), 1);
    QVERIFY2(result.errors.startsWith("tavel: Project Document Loader: Could not load document "
                                      "'First Watch' "),
             result.errors);
    QCOMPARE(project.readFile(u"Files/Docs/5.rtf"_s), before);
}

void TstToolSearch::whatWasImportedIsFoundByItsIndex()
{
    const TestProject project;
    QCOMPARE(runTool({u"new"_s, project.path()}).status, 0);
    const QString text = project.enclosingPath() + u"/Watch.txt"_s;
    writeFileAt(text, "All is well.\n");
    QCOMPARE(runTool({u"import"_s, project.path(), text}).status, 0);
    QVERIFY(project.readFile(IndexFile).contains("<Text>All is well.</Text>"));
    QCOMPARE(found(project, u"is well"_s).size(), 1);

    const QString item = u"Draft/Watch"_s;
    QCOMPARE(runTool({u"snapshot"_s, u"add"_s, project.path(), item, u"First"_s}).status, 0);
    const QString id = QString::number(found(project, u"is well"_s).value(0));
    project.writeFile(u"Files/Docs/%1.rtf"_s.arg(id), "{\\rtf1 Fog.}");
    QCOMPARE(found(project, u"fog"_s).size(), 1);
    QCOMPARE(runTool({u"snapshot"_s, u"restore"_s, project.path(), item, u"First"_s}).status, 0);
    QCOMPARE(found(project, u"fog"_s).size(), 0);
    QCOMPARE(found(project, u"is well"_s).size(), 1);
    QVERIFY(project.readFile(IndexFile).contains("<Text>All is well.</Text>"));
}

void TstToolSearch::hashesAreNotSavedWithoutTheIndexThatTheyVouchFor()
{
    const TestProject project;
    writeSearchedProject(project);
    const QByteArray hashes = project.readFile(HashFile);
    const QString text = project.enclosingPath() + u"/Watch.txt"_s;
    writeFileAt(text, "All is well.\n");
    puttingAFolderInPlaceOf(IndexFile)(project);
    const ProgramResult result = runTool({u"import"_s, project.path(), text});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errorLines(),
             QList<QByteArray>(
                 {"tavel: Loading Search Index: Search Index was not fully loaded. Your first "
                  "project search might be slow.This might be caused by non-standard characters "
                  "within the document contents.",
                  "could not write to search indexes file"}));
    QCOMPARE(project.readFile(HashFile), hashes);
    QVERIFY(QDir().rmdir(project.path(IndexFile)));
    QCOMPARE(found(project, u"is well"_s).size(), 1);
}

TVL_TEST(TstToolSearch)
#include "tst_toolsearch.moc"
