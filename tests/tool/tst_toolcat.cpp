#include "TestMain.h"
#include "ToolFixtures.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

/** `tavel cat`. */
class TstToolCat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anItemIsNamedInSeveralWays_data();
    void anItemIsNamedInSeveralWays();
    void theFirstItemOfAPathCounts();
    void titlesMayHoldSlashes();
    void notesAndSynopsisAreWrittenWhenAskedFor();
    void paragraphsAndLinesEndWithLineFeeds();
    void everyCharacterIsWrittenInUtf8();
    void anUntitledItemIsFoundByTheTitleThatIsShown();
    void anItemWithoutAFileHasAnEmptyText();
    void whatCannotBeShownIsAFailure_data();
    void whatCannotBeShownIsAFailure();
    void notesAndSynopsisAtOnceAreRefused();
    void aDamagedTextIsToldInOneLine();
    void aTextOutOfSightIsAFailure_data();
    void aTextOutOfSightIsAFailure();
    void anItemWithoutAnIdHasNoTextThatCanBeRead();
    void nothingIsWritten();
};

namespace {

ProgramResult cat(const TestProject &project, const QString &item, const QStringList &options = {})
{
    return runTool(QStringList{u"cat"_s, project.path(), item} + options);
}

} // namespace

void TstToolCat::anItemIsNamedInSeveralWays_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("by its id") << u"4"_s;
    QTest::newRow("by its uuid") << QString::fromLatin1(uuidOf(4));
    QTest::newRow("by its uuid in braces") << u'{' + QString::fromLatin1(uuidOf(4)) + u'}';
    QTest::newRow("by titles") << u"Draft/Part 1/The Harbour"_s;
}

void TstToolCat::anItemIsNamedInSeveralWays()
{
    QFETCH(const QString, name);
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult result = cat(project, name);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Gulls.\n"));
}

void TstToolCat::theFirstItemOfAPathCounts()
{
    const TestProject project;
    writeProject(project,
                 binderXml(systemFolders(item(3, "Text", "Twin") + item(4, "Text", "Twin"))));
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 The first.}");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 The second.}");
    QCOMPARE(cat(project, u"Draft/Twin"_s).output, QByteArray("The first.\n"));
    QCOMPARE(cat(project, u"4"_s).output, QByteArray("The second.\n"));
}

void TstToolCat::titlesMayHoldSlashes()
{
    const TestProject project;
    const QByteArray child = item(4, "Text", "c/d");
    writeProject(
        project,
        binderXml(systemFolders(
            item(3, "Folder", "a")
            + item(5, "Folder", "a/b", {.attributes = {}, .metaData = {}, .children = child}))));
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Found.}");
    QCOMPARE(cat(project, u"Draft/a/b/c/d"_s).output, QByteArray("Found.\n"));
}

void TstToolCat::notesAndSynopsisAreWrittenWhenAskedFor()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/4_notes.rtf"_s, "{\\rtf1 Ask the {\\b keeper}.}");
    QCOMPARE(cat(project, u"4"_s, {u"--notes"_s}).output, QByteArray("Ask the keeper.\n"));
    QCOMPARE(cat(project, u"4"_s, {u"--synopsis"_s}).output, QByteArray("Gulls\n"));
}

void TstToolCat::paragraphsAndLinesEndWithLineFeeds()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 One\\line two\\par three\\par}");
    QCOMPARE(cat(project, u"4"_s).output, QByteArray("One\ntwo\nthree\n"));
}

void TstToolCat::everyCharacterIsWrittenInUtf8()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s,
                      "{\\rtf1\\ansi na\\'efve \\u8212? \\u-10180?\\u-8435?}");
    QCOMPARE(cat(project, u"4"_s).output, u"na\u00efve \u2014 \U0001f30d\n"_s.toUtf8());
}

void TstToolCat::anUntitledItemIsFoundByTheTitleThatIsShown()
{
    const TestProject project;
    writeProject(project,
                 binderXml(systemFolders(item(
                     3, "Text", "",
                     {.attributes = {}, .metaData = {}, .children = item(4, "Text", "Below")}))));
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 Nameless.}");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Below it.}");
    QCOMPARE(cat(project, u"Draft/Untitled"_s).output, QByteArray("Nameless.\n"));
    QCOMPARE(cat(project, u"Draft/Untitled/Below"_s).output, QByteArray("Below it.\n"));
}

void TstToolCat::anItemWithoutAFileHasAnEmptyText()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult result = cat(project, u"5"_s);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray());
}

void TstToolCat::whatCannotBeShownIsAFailure_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("an id of no item") << u"77"_s << QByteArray("tavel: there is no item '77'");
    QTest::newRow("a path to no item")
        << u"Draft/Nowhere"_s << QByteArray("tavel: there is no item 'Draft/Nowhere'");
    QTest::newRow("nothing") << QString() << QByteArray("tavel: there is no item ''");
    QTest::newRow("a system folder")
        << u"Draft"_s << QByteArray("tavel: 'Draft' has no text of its own");
}

void TstToolCat::whatCannotBeShownIsAFailure()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, error);
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult result = cat(project, name);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorLines(), QList<QByteArray>{error});
}

void TstToolCat::notesAndSynopsisAtOnceAreRefused()
{
    const TestProject project;
    writeSoundProject(project);
    QCOMPARE(cat(project, u"4"_s, {u"--notes"_s, u"--synopsis"_s}).status, 2);
    QCOMPARE(runTool({u"cat"_s, project.path()}).status, 2);
}

void TstToolCat::aDamagedTextIsToldInOneLine()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Cut off");
    const ProgramResult result = cat(project, u"4"_s);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errorLines().size(), 1);
    QVERIFY(result.errors.startsWith("tavel: RTF Reader failed loading document file: '"));
    QCOMPARE(project.readFile(u"Files/Docs/4.rtf"_s), QByteArray("{\\rtf1 Cut off"));
}

void TstToolCat::aTextOutOfSightIsAFailure_data()
{
    QTest::addColumn<QString>("hidden");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("what");
    const QString docs = u"Files/Docs"_s;
    QTest::newRow("a text") << docs + u"/4.rtf"_s << QString() << QByteArray("document");
    QTest::newRow("notes") << docs + u"/4_notes.rtf"_s << u"--notes"_s << QByteArray("notes");
    QTest::newRow("a synopsis") << docs + u"/4_synopsis.txt"_s << u"--synopsis"_s
                                << QByteArray("synopsis");
    QTest::newRow("all texts") << docs << QString() << QByteArray("document");
}

void TstToolCat::aTextOutOfSightIsAFailure()
{
    QFETCH(const QString, hidden);
    QFETCH(const QString, option);
    QFETCH(const QByteArray, what);
    const TestProject project;
    writeSoundProject(project);
    const QString path = project.path(hidden);
    QVERIFY(QFile::exists(path) ? QFile::rename(path, path + u".away"_s) : true);
    QVERIFY(QFile::link(u"nowhere"_s, path));
    const ProgramResult result =
        cat(project, u"4"_s, option.isEmpty() ? QStringList() : QStringList(option));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorLines().size(), 1);
    QVERIFY2(result.errors.startsWith("tavel: Could not open " + what + " file for reading: '"),
             result.errors);
    QVERIFY(!QFile::exists(path));
}

void TstToolCat::anItemWithoutAnIdHasNoTextThatCanBeRead()
{
    const TestProject project;
    QByteArray items = systemFolders(item(4, "Text", "The Harbour"));
    items.replace("ID=\"4\" UUID", "UUID");
    writeProject(project, binderXml(items));
    const ProgramResult result = cat(project, u"Draft/The Harbour"_s);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(
        result.errorLines(),
        (QList<QByteArray>{
            "tavel: Project Loader: Errors reading project. Error: Items without an id have no "
            "place for their texts, which can't be read or edited. There are 1, the first of "
            "them is 'The Harbour'.",
            "tavel: 'The Harbour' has no id, and so no text that can be read"}));
}

void TstToolCat::nothingIsWritten()
{
    const TestProject project;
    writeSoundProject(project);
    const auto before = everythingBelow(project.path());
    QCOMPARE(cat(project, u"4"_s).status, 0);
    QCOMPARE(everythingBelow(project.path()), before);
}

TVL_TEST(TstToolCat)
#include "tst_toolcat.moc"
