#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

/** The example program that makes a book, and what the tool says of it. */
class TstExampleBook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBookHasItsChaptersInFiveParts();
    void someChaptersHaveLabelsAndEveryOneAStatus();
    void theBookIsSoundAndNotLocked();
    void withoutAListTheBookHasItsOwnTitles();
    void titlesComeFromJsonFilesInNumericOrder();
    void chaptersHaveTheirTexts();
    void withoutATextOfItsOwnAChapterHasThePassage();
    void unevenTitlesFillTheFirstPartsMore();
    void whatCannotBeMadeIsRefused_data();
    void whatCannotBeMadeIsRefused();
};

namespace {

const QString TitlesFile = QStringLiteral(EXAMPLE_TITLES);

ProgramResult runExample(const QStringList &arguments)
{
    return runProgram(QStringLiteral(EXAMPLE_BOOK), arguments);
}

QStringList titlesInFile()
{
    QFile file(TitlesFile);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("could not read the titles");
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/** The parts of a book, as the tool tells them. */
QJsonArray partsOf(const TestProject &project)
{
    const QJsonArray items = runTool({u"outline"_qs, u"--json"_qs, project.path()}).json().array();
    if (items.size() != 3 || items[0][u"type"] != u"DraftFolder"_qs)
        return {};
    return items[0][u"children"].toArray();
}

QStringList titlesOf(const QJsonArray &items)
{
    QStringList titles;
    for (const QJsonValue &item : items)
        titles.append(item[u"title"].toString());
    return titles;
}

QStringList chaptersOf(const QJsonArray &parts)
{
    QStringList titles;
    for (const QJsonValue &part : parts)
        titles += titlesOf(part[u"children"].toArray());
    return titles;
}

/** A folder of chapters with these numbers, each with its number in its title. */
QString writeChapters(const TestProject &project, const QList<int> &numbers)
{
    const QString path = project.enclosingPath() + u"/data"_qs;
    for (const int number : numbers)
        writeFileAt(path + u"/chapter_%1.json"_qs.arg(number),
                    "{\"title\": \"No. " + QByteArray::number(number) + "\", \"text\": \"Sea.\"}");
    return path;
}

} // namespace

void TstExampleBook::aBookHasItsChaptersInFiveParts()
{
    const TestProject project;
    const ProgramResult made = runExample({project.path(), TitlesFile});
    QVERIFY2(made.status == 0, made.errors);
    QCOMPARE(made.output, project.path().toUtf8() + '\n');

    const QJsonArray parts = partsOf(project);
    QCOMPARE(titlesOf(parts),
             QStringList({u"Part 1"_qs, u"Part 2"_qs, u"Part 3"_qs, u"Part 4"_qs, u"Part 5"_qs}));
    for (const QJsonValue &part : parts) {
        QCOMPARE(part[u"type"], QJsonValue(u"Folder"_qs));
        const QJsonArray chapters = part[u"children"].toArray();
        QCOMPARE(chapters.size(), 27);
        for (const QJsonValue &chapter : chapters)
            QCOMPARE(chapter[u"type"], QJsonValue(u"Text"_qs));
    }
    QCOMPARE(titlesInFile().size(), 135);
    QCOMPARE(chaptersOf(parts), titlesInFile());
}

void TstExampleBook::someChaptersHaveLabelsAndEveryOneAStatus()
{
    const TestProject project;
    QCOMPARE(runExample({project.path(), TitlesFile}).status, 0);
    const QJsonArray parts = partsOf(project);
    QCOMPARE(parts.size(), 5);
    for (const QJsonValue &part : parts) {
        const QJsonArray chapters = part[u"children"].toArray();
        QCOMPARE(chapters.first()[u"label"], QJsonValue(u"Opening"_qs));
        QCOMPARE(chapters.first()[u"status"], QJsonValue(u"Done"_qs));
        QCOMPARE(chapters.at(1)[u"label"], QJsonValue());
        QCOMPARE(chapters.at(1)[u"status"], QJsonValue(u"First Draft"_qs));
        QCOMPARE(chapters.last()[u"label"], QJsonValue(u"Closing"_qs));
    }
}

void TstExampleBook::theBookIsSoundAndNotLocked()
{
    const TestProject project;
    QCOMPARE(runExample({project.path(), TitlesFile}).status, 0);
    const ProgramResult check = runTool({u"check"_qs, project.path()});
    QVERIFY2(check.status == 0, check.output);
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstExampleBook::withoutAListTheBookHasItsOwnTitles()
{
    const TestProject project;
    QCOMPARE(runExample({project.path()}).status, 0);
    QCOMPARE(chaptersOf(partsOf(project)), titlesInFile());
}

void TstExampleBook::titlesComeFromJsonFilesInNumericOrder()
{
    const TestProject project;
    const QString data = writeChapters(project, {1, 2, 3, 9, 10, 11, 100});
    writeFileAt(data + u"/index.json"_qs, "{}");
    QCOMPARE(runExample({project.path(), u"--json-dir"_qs, data}).status, 0);
    QCOMPARE(chaptersOf(partsOf(project)),
             QStringList({u"No. 1"_qs, u"No. 2"_qs, u"No. 3"_qs, u"No. 9"_qs, u"No. 10"_qs,
                          u"No. 11"_qs, u"No. 100"_qs}));
}

void TstExampleBook::chaptersHaveTheirTexts()
{
    const TestProject project;
    const QString data = writeChapters(project, {1, 2});
    writeFileAt(
        data + u"/chapter_2.json"_qs,
        "{\"title\": \"Storm\", \"text\": \"One\\nline.\\n\\nTwo \u2014 \\u201cx\\u201d.\\n\"}");
    QCOMPARE(runExample({project.path(), u"--json-dir"_qs, data}).status, 0);
    QCOMPARE(runTool({u"cat"_qs, project.path(), u"Draft/Part 1/No. 1"_qs}).output,
             QByteArray("Sea.\n"));
    QCOMPARE(runTool({u"cat"_qs, project.path(), u"Draft/Part 2/Storm"_qs}).output,
             u"One line.\nTwo \u2014 \u201cx\u201d.\n"_qs.toUtf8());
}

void TstExampleBook::withoutATextOfItsOwnAChapterHasThePassage()
{
    const TestProject project;
    QCOMPARE(runExample({project.path()}).status, 0);
    const QString chapter = u"Draft/Part 5/"_qs + titlesInFile().constLast();
    const QByteArray text = runTool({u"cat"_qs, project.path(), chapter}).output;
    QCOMPARE(text.count('\n'), 3);
    QVERIFY(text.startsWith("The rain had stopped"));
}

void TstExampleBook::unevenTitlesFillTheFirstPartsMore()
{
    const TestProject project;
    const QString data = writeChapters(project, {1, 2, 3, 4, 5, 6, 7});
    QCOMPARE(runExample({project.path(), u"--json-dir"_qs, data}).status, 0);
    QList<qsizetype> sizes;
    const QJsonArray parts = partsOf(project);
    for (const QJsonValue &part : parts)
        sizes.append(part[u"children"].toArray().size());
    QCOMPARE(sizes, QList<qsizetype>({2, 2, 1, 1, 1}));
}

void TstExampleBook::whatCannotBeMadeIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments"); // %1 stands for the folder of the test
    QTest::addColumn<int>("status");
    QTest::newRow("nothing asked for") << QStringList() << 2;
    QTest::newRow("no extension") << QStringList(u"%1/Novel"_qs) << 2;
    QTest::newRow("unknown option") << QStringList{u"%1/Novel.tavel"_qs, u"--fly"_qs} << 2;
    QTest::newRow("titles from two places")
        << QStringList{u"%1/Novel.tavel"_qs, u"%1/titles.txt"_qs, u"--json-dir"_qs, u"%1"_qs} << 2;
    QTest::newRow("no list of titles") << QStringList{u"%1/Novel.tavel"_qs, u"%1/none.txt"_qs} << 1;
    QTest::newRow("no titles in the list")
        << QStringList{u"%1/Novel.tavel"_qs, u"%1/empty.txt"_qs} << 1;
    QTest::newRow("no chapters in the folder")
        << QStringList{u"%1/Novel.tavel"_qs, u"--json-dir"_qs, u"%1"_qs} << 1;
    QTest::newRow("a chapter without a title")
        << QStringList{u"%1/Novel.tavel"_qs, u"--json-dir"_qs, u"%1/data"_qs} << 1;
    QTest::newRow("a target that exists") << QStringList(u"%1/Taken.tavel"_qs) << 1;
    QTest::newRow("a file on the way") << QStringList(u"%1/empty.txt/Novel.tavel"_qs) << 1;
}

void TstExampleBook::whatCannotBeMadeIsRefused()
{
    QFETCH(QStringList, arguments);
    QFETCH(const int, status);
    const TestProject project;
    const QString folder = project.enclosingPath();
    writeFileAt(folder + u"/empty.txt"_qs, "\n \n");
    writeFileAt(folder + u"/data/chapter_1.json"_qs, "{\"text\": \"Sea.\"}");
    writeFileAt(folder + u"/Taken.tavel/notes.txt"_qs, "mine");
    arguments.replaceInStrings(u"%1"_qs, folder);
    const auto before = everythingBelow(folder);

    const ProgramResult result = runExample(arguments);
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, status);
    QCOMPARE(result.output, QByteArray());
    QVERIFY2(result.errors.contains("example_book: "), result.errors);
    QCOMPARE(everythingBelow(folder), before);
}

TVL_TEST_MAIN(TstExampleBook)
#include "tst_examplebook.moc"
