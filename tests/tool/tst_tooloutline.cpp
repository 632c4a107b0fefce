#include "TestMain.h"
#include "ToolFixtures.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

/** `tavel outline`. */
class TstToolOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextFormIsIndentedByLevel();
    void anItemWithoutATitleIsShownAsUntitled();
    void aTitleStaysOnItsLine();
    void everyTypeHasItsMark();
    void theJsonFormIsATreeOfItems();
    void theKeysOfAnItemAreStable();
    void anItemWithoutAnIdIsNamedByItsUuid();
    void aLabelThatDoesNotExistIsNone();
    void titlesKeepEveryCharacter();
    void aVeryDeepTreeIsShownAsText();
    void aVeryDeepTreeIsShownAsJson();
    void manySiblingsAreShown();
    void wordsAreCountedInEachText();
};

namespace {

constexpr int Depth = 5000;

ProgramResult outlineOf(const TestProject &project)
{
    return runTool({u"outline"_s, project.path()});
}

QJsonArray jsonOutlineOf(const TestProject &project)
{
    const ProgramResult result = runTool({u"outline"_s, u"--json"_s, project.path()});
    if (result.status != 0 || !result.errors.isEmpty())
        qCritical("%s", result.errors.constData());
    return result.json().array();
}

QJsonObject itemJson(int id, const char *type, const QString &title, const QJsonValue &label = {},
                     const QJsonValue &status = {}, const QJsonArray &children = {}, int words = 0)
{
    const bool hasText = qstrcmp(type, "Text") == 0 || qstrcmp(type, "Folder") == 0;
    return {{u"id"_s, id},
            {u"uuid"_s, QString::fromLatin1(uuidOf(id))},
            {u"type"_s, QString::fromLatin1(type)},
            {u"title"_s, title},
            {u"label"_s, label},
            {u"status"_s, status},
            {u"words"_s, hasText ? QJsonValue(words) : QJsonValue()},
            {u"children"_s, children}};
}

/** A project in whose Draft each folder holds the next one; their ids begin with 3. */
void writeDeepProject(const TestProject &project)
{
    QByteArray items;
    for (int id = 3; id < Depth + 3; ++id)
        items += (id == 3 ? "<BinderItem " : "<Children><BinderItem ") + itemAttributes(id)
            + " Type=\"Folder\"><Title>T</Title>";
    items += QByteArray("</BinderItem></Children>").repeated(Depth - 1) + "</BinderItem>";
    writeProject(project, binderXml(systemFolders(items)));
}

} // namespace

void TstToolOutline::theTextFormIsIndentedByLevel()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult result = outlineOf(project);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(
        result.output,
        QByteArray("[DraftFolder] Draft (#0)\n"
                   "  [Folder] Part 1 (#3)\n"
                   "    [Text] The Harbour (#4) [label: Chapter] [status: First Draft] [words: 1]\n"
                   "    [Text] First Watch (#5) [status: Done]\n"
                   "[ResearchFolder] Research (#1)\n"
                   "[TrashFolder] Trash (#2)\n"));
}

void TstToolOutline::anItemWithoutATitleIsShownAsUntitled()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders(item(3, "Text", ""))));
    QVERIFY(outlineOf(project).output.contains("\n  [Text] Untitled (#3)\n"));
    QCOMPARE(jsonOutlineOf(project)[0][u"children"][0][u"title"], QJsonValue(QString()));
}

void TstToolOutline::aTitleStaysOnItsLine()
{
    const TestProject project;
    writeProject(
        project,
        binderXml(systemFolders(item(3, "Text", "One&#10;two&#9;three&#x9b;four&#x2028;five"))));
    QVERIFY(outlineOf(project).output.contains("\n  [Text] One two three four five (#3)\n"));
}

void TstToolOutline::everyTypeHasItsMark()
{
    const TestProject project;
    QByteArray items;
    int id = 3;
    for (const char *type : {"Folder", "Text", "Image", "PDF", "Media", "WebArchive", "Other"})
        items += item(id++, type, "Item");
    writeProject(project, binderXml(systemFolders(items)));
    QCOMPARE(outlineOf(project).output,
             QByteArray("[DraftFolder] Draft (#0)\n  [Folder] Item (#3)\n  [Text] Item (#4)\n"
                        "  [Image] Item (#5)\n  [PDF] Item (#6)\n  [Media] Item (#7)\n"
                        "  [WebArchive] Item (#8)\n  [Other] Item (#9)\n"
                        "[ResearchFolder] Research (#1)\n[TrashFolder] Trash (#2)\n"));
}

void TstToolOutline::theJsonFormIsATreeOfItems()
{
    const TestProject project;
    writeSoundProject(project);
    const QJsonArray texts{
        itemJson(4, "Text", u"The Harbour"_s, u"Chapter"_s, u"First Draft"_s, {}, 1),
        itemJson(5, "Text", u"First Watch"_s, QJsonValue(), u"Done"_s)};
    const QJsonArray parts{itemJson(3, "Folder", u"Part 1"_s, QJsonValue(), QJsonValue(), texts)};
    const QJsonArray expected{
        itemJson(0, "DraftFolder", u"Draft"_s, QJsonValue(), QJsonValue(), parts),
        itemJson(1, "ResearchFolder", u"Research"_s), itemJson(2, "TrashFolder", u"Trash"_s)};
    QCOMPARE(jsonOutlineOf(project), expected);
}

void TstToolOutline::theKeysOfAnItemAreStable()
{
    const TestProject project;
    writeSoundProject(project);
    const QStringList keys{u"children"_s, u"id"_s,   u"label"_s, u"status"_s,
                           u"title"_s,    u"type"_s, u"uuid"_s,  u"words"_s};
    const QJsonArray items = jsonOutlineOf(project);
    QCOMPARE(items.size(), 3);
    for (const QJsonValue &item : items)
        QCOMPARE(item.toObject().keys(), keys);
    QCOMPARE(items[0][u"children"][0].toObject().keys(), keys);
}

void TstToolOutline::anItemWithoutAnIdIsNamedByItsUuid()
{
    const TestProject project;
    writeProject(project, binderXml(systemFolders({}), {}, "2.0"), "23");
    QVERIFY(outlineOf(project).output.startsWith("[DraftFolder] Draft (" + uuidOf(0) + ")\n"));
    const QJsonValue draft = jsonOutlineOf(project).at(0);
    QCOMPARE(draft[u"id"].type(), QJsonValue::Null);
    QCOMPARE(draft[u"uuid"], QJsonValue(QString::fromLatin1(uuidOf(0))));
}

void TstToolOutline::aLabelThatDoesNotExistIsNone()
{
    const TestProject project;
    const QByteArray text = item(3, "Text", "One",
                                 {.attributes = {},
                                  .metaData = "<LabelID>99</LabelID><StatusID>99</StatusID>",
                                  .children = {}});
    writeProject(project, binderXml(systemFolders(text)));
    QVERIFY(outlineOf(project).output.contains("\n  [Text] One (#3)\n"));
    const QJsonValue shown = jsonOutlineOf(project)[0][u"children"][0];
    QCOMPARE(shown[u"label"].type(), QJsonValue::Null);
    QCOMPARE(shown[u"status"].type(), QJsonValue::Null);
}

void TstToolOutline::titlesKeepEveryCharacter()
{
    const TestProject project;
    const QString title = u"\"Quoted\" \\ {[,]} \u00e9\u4e2d\U0001f6a2 \n end"_s;
    const QByteArray xml = title.toHtmlEscaped().replace(u'\n', u"&#10;"_s).toUtf8();
    writeProject(project, binderXml(systemFolders(item(3, "Text", xml) + item(4, "Text", "Next"))));
    const QJsonValue children = jsonOutlineOf(project)[0][u"children"];
    QCOMPARE(children[0][u"title"], QJsonValue(title));
    QCOMPARE(children[1][u"title"], QJsonValue(u"Next"_s));
}

void TstToolOutline::aVeryDeepTreeIsShownAsText()
{
    const TestProject project;
    writeDeepProject(project);
    const ProgramResult result = outlineOf(project);
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, 0);
    const QList<QByteArray> lines = result.output.split('\n');
    QCOMPARE(lines.size(), Depth + 3 + 1);
    // From some depth on the number of it takes the place of more blanks.
    QCOMPARE(lines.at(32), QByteArray(64, ' ') + "[Folder] T (#34)");
    QCOMPARE(lines.at(Depth),
             QByteArray(64, ' ') + "(depth " + QByteArray::number(Depth) + ") [Folder] T (#"
                 + QByteArray::number(Depth + 2) + ')');
    QCOMPARE(lines.at(Depth + 1), QByteArray("[ResearchFolder] Research (#1)"));
}

void TstToolOutline::aVeryDeepTreeIsShownAsJson()
{
    const TestProject project;
    writeDeepProject(project);
    const ProgramResult result = runTool({u"outline"_s, u"--json"_s, project.path()});
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());

    // Qt's own parser gives up at a depth of 1024, so the nesting is followed by hand.
    qsizetype depth = 0;
    qsizetype deepest = 0;
    for (const char ch : result.output) {
        if (ch == '[')
            deepest = qMax(deepest, ++depth);
        else if (ch == ']')
            QVERIFY(--depth >= 0);
    }
    QCOMPARE(depth, 0);
    // A list around each item, one around the Draft, and the empty one in the innermost.
    QCOMPARE(deepest, Depth + 2);
    QCOMPARE(result.output.count("\"id\":"), Depth + 3);
    QCOMPARE(result.output.count('{'), Depth + 3);
    QCOMPARE(result.output.count('}'), Depth + 3);
}

void TstToolOutline::manySiblingsAreShown()
{
    constexpr int Count = 20000;
    const TestProject project;
    QByteArray items;
    for (int id = 3; id < Count + 3; ++id)
        items += item(id, "Text", "T");
    writeProject(project, binderXml(systemFolders(items)));
    const QJsonArray children = jsonOutlineOf(project)[0][u"children"].toArray();
    QCOMPARE(children.size(), Count);
    QCOMPARE(children.last()[u"id"], QJsonValue(Count + 2));
}

void TstToolOutline::wordsAreCountedInEachText()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 A word\\par on the part}");
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 Cut off");
    const QByteArray text = outlineOf(project).output;
    QVERIFY(text.contains("Part 1 (#3) [words: 5]\n"));
    QVERIFY(text.contains("First Watch (#5) [status: Done]\n"));

    const QJsonValue part = jsonOutlineOf(project)[0][u"children"][0];
    QCOMPARE(part[u"words"], QJsonValue(5));
    QCOMPARE(part[u"children"][0][u"words"], QJsonValue(1));
    // Nobody knows how many there are in a text that can't be read.
    QCOMPARE(part[u"children"][1][u"words"], QJsonValue());
}

TVL_TEST(TstToolOutline)
#include "tst_tooloutline.moc"
