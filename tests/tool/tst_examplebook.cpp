#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;

/** The example program that works on a book, and what the tool says of it afterwards. */
class TstExampleBook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLastChaptersMoveToAFolderOfTheirOwn_data();
    void theLastChaptersMoveToAFolderOfTheirOwn();
    void theLastChapterHasASnapshotAndANewLine();
    void theBookIsSoundAndNotLocked();
    void whatCannotBeWorkedOnStaysAsItIs_data();
    void whatCannotBeWorkedOnStaysAsItIs();
    void aTextThatCannotBeReadIsLeftAlone();
};

namespace {

ProgramResult runExample(const QStringList &arguments)
{
    return runProgram(QStringLiteral(EXAMPLE_BOOK), arguments);
}

/** A book whose last part has chapters with these ids. */
void writeBook(const TestProject &project, const QList<int> &ids)
{
    QByteArray chapters;
    for (const int id : ids) {
        chapters += item(id, "Text", "Chapter " + QByteArray::number(id));
        project.writeFile(u"Files/Docs/%1.rtf"_s.arg(id),
                          "{\\rtf1 Text " + QByteArray::number(id) + "}");
    }
    writeProject(
        project,
        binderXml(systemFolders(
            item(3, "Folder", "Part 1")
            + item(4, "Folder", "Part 2", {.attributes = {}, .metaData = {}, .children = chapters})
            + item(5, "Text", "Epilogue"))));
}

/** The items of the Draft with their children in parentheses. */
QString bookTreeOf(const TestProject &project)
{
    const QJsonArray items = runTool({u"outline"_s, u"--json"_s, project.path()}).json().array();
    QStringList titles;
    for (const QJsonValue &item : items[0][u"children"].toArray()) {
        QStringList children;
        for (const QJsonValue &child : item[u"children"].toArray())
            children.append(child[u"title"].toString());
        titles.append(item[u"title"].toString() + u'(' + children.join(u", ") + u')');
    }
    return titles.join(u' ');
}

} // namespace

void TstExampleBook::theLastChaptersMoveToAFolderOfTheirOwn_data()
{
    QTest::addColumn<QList<int>>("ids");
    QTest::addColumn<QString>("tree");
    QTest::newRow("of many")
        << QList<int>{10, 11, 12, 13, 14}
        << u"Part 1() Part 2(Chapter 10, Chapter 11) Epilogue() The End(Chapter 12, Chapter 13, "
           "Chapter 14)"_s;
    QTest::newRow("of two") << QList<int>{10, 11}
                            << u"Part 1() Part 2() Epilogue() The End(Chapter 10, Chapter 11)"_s;
}

void TstExampleBook::theLastChaptersMoveToAFolderOfTheirOwn()
{
    QFETCH(const QList<int>, ids);
    QFETCH(const QString, tree);
    const TestProject project;
    writeBook(project, ids);
    const ProgramResult result = runExample({project.path()});
    QVERIFY2(result.status == 0, result.errors);
    QCOMPARE(bookTreeOf(project), tree);
}

void TstExampleBook::theLastChapterHasASnapshotAndANewLine()
{
    const TestProject project;
    writeBook(project, {10, 11, 12, 13});
    QCOMPARE(runExample({project.path()}).status, 0);
    QCOMPARE(runTool({u"cat"_s, project.path(), u"13"_s}).output, QByteArray("Text 13\nTHE END\n"));
    QCOMPARE(runTool({u"cat"_s, project.path(), u"12"_s}).output, QByteArray("Text 12\n"));
    QCOMPARE(runTool({u"snapshot"_s, u"show"_s, project.path(), u"13"_s, u"Before the last line"_s})
                 .output,
             QByteArray("Text 13\n"));
}

void TstExampleBook::theBookIsSoundAndNotLocked()
{
    const TestProject project;
    writeBook(project, {10, 11, 12, 13});
    QCOMPARE(runExample({project.path()}).status, 0);
    const ProgramResult check = runTool({u"check"_s, project.path()});
    QVERIFY2(check.status == 0, check.output);
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstExampleBook::whatCannotBeWorkedOnStaysAsItIs_data()
{
    QTest::addColumn<QString>("project"); // of the folder of the test; empty for none named
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("nothing named") << QString() << QByteArray("give a project that exists");
    QTest::newRow("nothing there") << u"None.tavel"_s << QByteArray("give a project that exists");
    QTest::newRow("no chapters") << u"Novel.tavel"_s
                                 << QByteArray("the Draft has no folder with chapters");
    QTest::newRow("locked") << u"Locked.tavel"_s << QByteArray("is locked or can't be");
    QTest::newRow("damaged") << u"Damaged.tavel"_s << QByteArray("can't be read");
}

void TstExampleBook::whatCannotBeWorkedOnStaysAsItIs()
{
    QFETCH(const QString, project);
    QFETCH(const QByteArray, error);
    const TestProject novel;
    writeBook(novel, {});
    const QString folder = novel.enclosingPath();
    writeFileAt(folder + u"/Locked.tavel/Files/user.lock"_s, "host=elsewhere");
    writeFileAt(folder + u"/Damaged.tavel/Damaged.tavelx"_s, "<Tavel");
    writeFileAt(folder + u"/Damaged.tavel/Files/version.txt"_s, "18");
    auto before = everythingBelow(folder);

    const ProgramResult result =
        runExample(project.isEmpty() ? QStringList() : QStringList(folder + u'/' + project));
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith("example_book: ") && result.errors.contains(error),
             result.errors);
    auto after = everythingBelow(folder);
    // What an opening writes.
    for (auto *files : {&before, &after})
        files->removeIf([](const auto &file) {
            return file.key().endsWith(u"binder.backup") || file.key().endsWith(u"/Settings");
        });
    QCOMPARE(after, before);
}

void TstExampleBook::aTextThatCannotBeReadIsLeftAlone()
{
    const TestProject project;
    writeBook(project, {10, 11, 12, 13});
    const QByteArray damaged = "{\\rtf1 Half a";
    project.writeFile(u"Files/Docs/13.rtf"_s, damaged);
    const ProgramResult result = runExample({project.path()});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains("the chapter can't be written"), result.errors);
    QCOMPARE(project.readFile(u"Files/Docs/13.rtf"_s), damaged);
}

TVL_TEST(TstExampleBook)
#include "tst_examplebook.moc"
