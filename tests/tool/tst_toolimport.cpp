#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextRtf.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringEncoder>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/** `tavel import`. */
class TstToolImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesBecomeTextsAtTheEndOfTheDraft();
    void anItemMayBeNamedToPutThemIn();
    void theProjectIsSoundAndNotLockedAfterwards();
    void importingAgainAddsTheSameOnceMore();
    void aTitleIsTheCompleteBaseName_data();
    void aTitleIsTheCompleteBaseName();
    void newItemsHaveTheDefaultLabelAndStatus();
    void plainTextComesBackAsItWas_data();
    void plainTextComesBackAsItWas();
    void encodingsAreToldByTheirMark_data();
    void encodingsAreToldByTheirMark();
    void aTextInOneLongLineComesBack();
    void richTextKeepsItsFormats();
    void foldersBecomeFoldersInNaturalOrder();
    void hiddenFilesInFoldersAreLeftOut();
    void filesAreSplitIntoItemsSideBySide();
    void partsWithoutATitleAreNumbered();
    void aSeparatorMayHoldLineEndsAndBackslashes_data();
    void aSeparatorMayHoldLineEndsAndBackslashes();
    void aSeparatorThatDoesNotOccurGivesOneItem();
    void outlinesAndMindMapsBecomeTrees();
    void anOutlineWithoutATitleHasThatOfItsFile();
    void notesOfOutlinesGoWhereTheyAreWanted_data();
    void notesOfOutlinesGoWhereTheyAreWanted();
    void aPlaceForNotesThatIsNotKnownIsRefused();
    void aBrokenOutlineIsLeftOutWhole();
    void whatCannotBeImportedIsToldBeforeAnythingChanges_data();
    void whatCannotBeImportedIsToldBeforeAnythingChanges();
    void aBrokenFileIsLeftOutAndTheOthersAreImported_data();
    void aBrokenFileIsLeftOutAndTheOthersAreImported();
    void aPlaceThatTakesNothingIsRefused_data();
    void aPlaceThatTakesNothingIsRefused();
    void filesOfNoItemAreLeftAlone();
    void aTextThatCannotBeWrittenIsLeftOut();
    void aFailedSaveIsAFailure();
    void manyFilesAreImportedInTheirOrder();
    void aTerminalShowsABar();
};

namespace {

/** A folder of files to import, beside a project. */
class Source
{
public:
    explicit Source(const TestProject &project)
        : mPath(project.enclosingPath() + u"/source"_s)
    {
        QDir().mkpath(mPath);
    }
    [[nodiscard]] QString path(const QString &name) const { return mPath + u'/' + name; }
    QString write(const QString &name, const QByteArray &content) const
    {
        writeFileAt(path(name), content);
        return path(name);
    }

private:
    QString mPath;
};

ProgramResult import(const TestProject &project, const QStringList &arguments)
{
    return runTool(QStringList{u"import"_s, project.path()} + arguments);
}

/** Titles below an item, each with those of its children in parentheses. */
QString treeOf(const QJsonArray &items)
{
    QStringList titles;
    for (const QJsonValue &item : items) {
        const QString children = treeOf(item[u"children"].toArray());
        const bool isFolder = item[u"type"] == u"Folder"_s;
        titles.append(item[u"title"].toString()
                      + (isFolder || !children.isEmpty() ? u'(' + children + u')' : QString()));
    }
    return titles.join(u' ');
}

QJsonArray draftOf(const TestProject &project)
{
    const QJsonArray items = runTool({u"outline"_s, u"--json"_s, project.path()}).json().array();
    return items[0][u"children"].toArray();
}

QString draftTreeOf(const TestProject &project)
{
    return treeOf(draftOf(project));
}

/** A project whose Draft is empty. */
void writeEmptyProject(const TestProject &project)
{
    writeProject(project, binderXml(systemFolders({}), labelAndStatusSections()));
}

} // namespace

void TstToolImport::filesBecomeTextsAtTheEndOfTheDraft()
{
    const TestProject project;
    writeSoundProject(project);
    const Source source(project);
    const ProgramResult result =
        import(project, {source.write(u"b.txt"_s, "Bees.\n"), source.write(u"a.txt"_s, "Ants.\n")});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Imported 2 texts and 0 folders into 'Draft'\n"));
    QCOMPARE(draftTreeOf(project), u"Part 1(The Harbour First Watch) b a"_s);
    QCOMPARE(catOf(project, u"Draft/b"_s), QByteArray("Bees.\n"));
    QCOMPARE(catOf(project, u"Draft/a"_s), QByteArray("Ants.\n"));
    QCOMPARE(catOf(project, u"4"_s), QByteArray("Gulls.\n"));
}

void TstToolImport::anItemMayBeNamedToPutThemIn()
{
    const TestProject project;
    writeSoundProject(project);
    const Source source(project);
    const ProgramResult result = import(
        project, {source.write(u"a.txt"_s, "Ants."), u"--into"_s, u"Draft/Part 1/First Watch"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Imported 1 text and 0 folders into 'First Watch'\n"));
    QCOMPARE(draftTreeOf(project), u"Part 1(The Harbour First Watch(a))"_s);
}

void TstToolImport::theProjectIsSoundAndNotLockedAfterwards()
{
    const TestProject project;
    writeSoundProject(project);
    const Source source(project);
    QCOMPARE(import(project, {source.write(u"a.txt"_s, "Ants.")}).status, 0);
    const ProgramResult check = runTool({u"check"_s, project.path()});
    QVERIFY2(check.status == 0, check.output);
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstToolImport::importingAgainAddsTheSameOnceMore()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString file = source.write(u"a.txt"_s, "Ants.\n");
    QCOMPARE(import(project, {file, file}).status, 0);
    QCOMPARE(import(project, {file}).status, 0);
    const QJsonArray items = draftOf(project);
    QCOMPARE(treeOf(items), u"a a a"_s);
    QSet<int> ids;
    for (const QJsonValue &item : items) {
        ids.insert(item[u"id"].toInt());
        QCOMPARE(catOf(project, QString::number(item[u"id"].toInt())), QByteArray("Ants.\n"));
    }
    QCOMPARE(ids.size(), 3);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolImport::aTitleIsTheCompleteBaseName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("plain") << u"Loomings.txt"_s << u"Loomings"_s;
    QTest::newRow("dots") << u"1. The Carpet.Bag.txt"_s << u"1. The Carpet.Bag"_s;
    QTest::newRow("capitals in the suffix") << u"Chowder.TXT"_s << u"Chowder"_s;
    QTest::newRow("beyond ASCII") << u"\u4e2d \U0001f30d.txt"_s << u"\u4e2d \U0001f30d"_s;
    QTest::newRow("markup") << u"a <b> & c.txt"_s << u"a <b> & c"_s;
    QTest::newRow("nothing but a suffix") << u".txt"_s << u"Untitled"_s;
}

void TstToolImport::aTitleIsTheCompleteBaseName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, title);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    QCOMPARE(import(project, {source.write(name, "x")}).status, 0);
    QCOMPARE(draftTreeOf(project), title);
    QCOMPARE(catOf(project, u"Draft/"_s + title), QByteArray("x\n"));
}

void TstToolImport::newItemsHaveTheDefaultLabelAndStatus()
{
    const TestProject project;
    QByteArray sections = labelAndStatusSections();
    sections.replace("<DefaultLabelID>-1", "<DefaultLabelID>7");
    sections.replace("<DefaultStatusID>-1", "<DefaultStatusID>3");
    writeProject(project, binderXml(systemFolders({}), sections));
    const Source source(project);
    source.write(u"folder/a.txt"_s, "x");
    QCOMPARE(import(project, {source.path(u"folder"_s)}).status, 0);
    const QJsonValue folder = draftOf(project).at(0);
    for (const QJsonValue &item : {folder, folder[u"children"][0]}) {
        QCOMPARE(item[u"label"], QJsonValue(u"Idea"_s));
        QCOMPARE(item[u"status"], QJsonValue(u"Done"_s));
    }
}

void TstToolImport::plainTextComesBackAsItWas_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("text");
    const QByteArray lines = "One\ntwo\n\nthree\n";
    QTest::newRow("line feeds") << lines << lines;
    QTest::newRow("no line end at the end") << QByteArray("One\ntwo\n\nthree") << lines;
    QTest::newRow("CRLF") << QByteArray("One\r\ntwo\r\n\r\nthree\r\n") << lines;
    QTest::newRow("CR") << QByteArray("One\rtwo\r\rthree\r") << lines;
    QTest::newRow("a mixture") << QByteArray("One\r\ntwo\n\rthree") << lines;
    QTest::newRow("empty lines at the end") << QByteArray("One\n\n\n") << QByteArray("One\n\n\n");
    QTest::newRow("blanks and tabs")
        << QByteArray("  One\ttwo  \n") << QByteArray("  One\ttwo  \n");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("many scripts")
        << u"na\u00efve \u4e2d\u6587 \u0634 \U0001f30d \u2014\n"_s.toUtf8()
        << u"na\u00efve \u4e2d\u6587 \u0634 \U0001f30d \u2014\n"_s.toUtf8();
    QTest::newRow("what looks like rich text")
        << QByteArray("{\\rtf1 {\\b x}}\\par\n") << QByteArray("{\\rtf1 {\\b x}}\\par\n");
    QTest::newRow("what looks like HTML")
        << QByteArray("<p>&amp;</p>\n") << QByteArray("<p>&amp;</p>\n");
}

void TstToolImport::plainTextComesBackAsItWas()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, text);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const ProgramResult result = import(project, {source.write(u"a.txt"_s, content)});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(catOf(project, u"Draft/a"_s), text);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolImport::encodingsAreToldByTheirMark_data()
{
    QTest::addColumn<QStringConverter::Encoding>("encoding");
    QTest::newRow("UTF-8") << QStringConverter::Utf8;
    QTest::newRow("UTF-16, little end first") << QStringConverter::Utf16LE;
    QTest::newRow("UTF-16, big end first") << QStringConverter::Utf16BE;
    QTest::newRow("UTF-32, little end first") << QStringConverter::Utf32LE;
    QTest::newRow("UTF-32, big end first") << QStringConverter::Utf32BE;
}

void TstToolImport::encodingsAreToldByTheirMark()
{
    QFETCH(const QStringConverter::Encoding, encoding);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString text = u"na\u00efve\r\n\U0001f30d\r\n"_s;
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    const QByteArray content = encoder(text);
    QCOMPARE(import(project, {source.write(u"a.txt"_s, content)}).status, 0);
    QCOMPARE(catOf(project, u"Draft/a"_s), u"na\u00efve\n\U0001f30d\n"_s.toUtf8());
}

void TstToolImport::aTextInOneLongLineComesBack()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QByteArray text = QByteArray("Seven whole words without any line end ").repeated(135000);
    QVERIFY(text.size() > 5000000);
    QCOMPARE(import(project, {source.write(u"a.txt"_s, text)}).status, 0);
    QVERIFY(catOf(project, u"Draft/a"_s) == text + '\n');
}

void TstToolImport::richTextKeepsItsFormats()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString file =
        source.write(u"a.rtf"_s, "{\\rtf1\\ansi Plain {\\b bold}\\par na\\'efve\\par}");
    QCOMPARE(import(project, {file}).status, 0);
    QCOMPARE(catOf(project, u"Draft/a"_s), u"Plain bold\nna\u00efve\n"_s.toUtf8());
    const QString id = QString::number(draftOf(project).at(0)[u"id"].toInt());
    const QByteArray written = project.readFile(u"Files/Docs/%1.rtf"_s.arg(id));
    QTextDocument document;
    QTextCursor(&document).insertFragment(TVLTextRtf::fromRtfCData(written));
    QTextCursor cursor(&document);
    for (const auto &[position, isBold] : {std::pair(3, false), std::pair(8, true)}) {
        cursor.setPosition(position);
        QCOMPARE(cursor.charFormat().fontWeight() == QFont::Bold, isBold);
    }
}

void TstToolImport::foldersBecomeFoldersInNaturalOrder()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    for (const char *name : {"Book/10.txt", "Book/9.txt", "Book/Part 2/x.txt", "Book/Part 10/y.txt",
                             "Book/part 1/b 02.txt", "Book/part 1/B 1.txt", "Book/part 1/a.txt"})
        source.write(QString::fromLatin1(name), "x");
    QDir().mkpath(source.path(u"Book/Zero"_s));
    const ProgramResult result =
        import(project, {source.path(u"Book/"_s), source.write(u"After.txt"_s, "x")});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Imported 8 texts and 5 folders into 'Draft'\n"));
    QCOMPARE(draftTreeOf(project),
             u"Book(9 10 part 1(a B 1 b 02) Part 2(x) Part 10(y) Zero()) After"_s);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolImport::hiddenFilesInFoldersAreLeftOut()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    source.write(u"Book/a.txt"_s, "x");
    source.write(u"Book/.index"_s, "x");
    source.write(u"Book/.hidden/b.png"_s, "x");
    QCOMPARE(import(project, {source.path(u"Book"_s)}).status, 0);
    QCOMPARE(draftTreeOf(project), u"Book(a)"_s);
}

void TstToolImport::filesAreSplitIntoItemsSideBySide()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QByteArray text =
        "Call me Ishmael\nSome years ago\n#\n\n#\nThe bag\n#\n"
        "This first line is too long for a title and so it ends in the middle\n";
    const QString file = source.write(u"a.txt"_s, text);
    const ProgramResult result = import(project, {file, u"--split"_s, u"#"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Imported 3 texts and 0 folders into 'Draft'\n"));
    const QJsonArray items = draftOf(project);
    QCOMPARE(items.size(), 3);
    QCOMPARE(items.at(0)[u"title"], QJsonValue(u"Call me Ishmael"_s));
    QCOMPARE(items.at(1)[u"title"], QJsonValue(u"The bag"_s));
    QCOMPARE(items.at(2)[u"title"],
             QJsonValue(u"This first line is too long for a title and so it..."_s));
    QCOMPARE(catOf(project, u"Draft/Call me Ishmael"_s),
             QByteArray("Call me Ishmael\nSome years ago\n"));
    QCOMPARE(catOf(project, u"Draft/The bag"_s), QByteArray("The bag\n"));
}

void TstToolImport::partsWithoutATitleAreNumbered()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QByteArray longWord(60, 'a');
    const QString file = source.write(u"My text.txt"_s, longWord + "\n#\nShort\n#\n" + longWord);
    QCOMPARE(import(project, {file, u"--split"_s, u"#"_s}).status, 0);
    QCOMPARE(draftTreeOf(project), u"My text 1 Short My text 3"_s);
}

void TstToolImport::aSeparatorMayHoldLineEndsAndBackslashes_data()
{
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("an empty line") << u"\\n\\n"_s << QByteArray("one\n\ntwo\n\nthree\n");
    QTest::newRow("a line of its own") << u"\\n***\\n"_s << QByteArray("one\n***\ntwo\n***\nthree");
    QTest::newRow("a backslash") << u"\\\\"_s << QByteArray("one\\two\\three");
    QTest::newRow("a backslash and an n") << u"\\\\n"_s << QByteArray("one\\ntwo\\nthree");
    QTest::newRow("a backslash before another letter")
        << u"\\x"_s << QByteArray("one\\xtwo\\xthree");
    QTest::newRow("a backslash at the end") << u"#\\"_s << QByteArray("one#\\two#\\three");
}

void TstToolImport::aSeparatorMayHoldLineEndsAndBackslashes()
{
    QFETCH(const QString, separator);
    QFETCH(const QByteArray, content);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    QCOMPARE(import(project, {source.write(u"a.txt"_s, content), u"--split"_s, separator}).status,
             0);
    QCOMPARE(draftTreeOf(project), u"one two three"_s);
}

void TstToolImport::aSeparatorThatDoesNotOccurGivesOneItem()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString file = source.write(u"a.txt"_s, "Call me\nIshmael\n");
    QCOMPARE(import(project, {file, u"--split"_s, u"#"_s}).status, 0);
    QCOMPARE(draftTreeOf(project), u"Call me"_s);
    QCOMPARE(catOf(project, u"Draft/Call me"_s), QByteArray("Call me\nIshmael\n"));
}

void TstToolImport::outlinesAndMindMapsBecomeTrees()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    source.write(u"f/1.opml"_s,
                 "<opml><head><title>Book</title></head><body><outline text='a' _note='words'>"
                 "<outline text='b'/></outline><outline text='c'/></body></opml>");
    source.write(u"f/2.mm"_s,
                 "<map><node TEXT='d'><node TEXT='e'><richcontent><p>more</p></richcontent></node>"
                 "<node TEXT='g'/></node></map>");
    source.write(u"f/3.txt"_s, "x");
    const ProgramResult result = import(project, {source.path(u"f"_s)});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray("Imported 7 texts and 2 folders into 'Draft'\n"));
    QCOMPARE(draftTreeOf(project), u"f(Book(a(b) c) d(e g) 3)"_s);
    QCOMPARE(catOf(project, u"Draft/f/Book/a"_s), QByteArray("words\n"));
    QCOMPARE(catOf(project, u"Draft/f/d/e"_s), QByteArray("more\n"));
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolImport::anOutlineWithoutATitleHasThatOfItsFile()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString file = source.write(u"My.Book.opml"_s, "<opml><body/></opml>");
    QCOMPARE(import(project, {file}).status, 0);
    QCOMPARE(draftTreeOf(project), u"My.Book()"_s);
}

void TstToolImport::notesOfOutlinesGoWhereTheyAreWanted_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("notes");
    QTest::addColumn<QByteArray>("synopsis");
    const QByteArray words = "words\n";
    const auto row = [](const char *word, const QByteArray &text, const QByteArray &notes,
                        const QByteArray &synopsis) {
        QTest::newRow(word) << QStringList{u"--outline-notes"_s, QString::fromLatin1(word)} << text
                            << notes << synopsis;
    };
    row("text", words, {}, words);
    row("notes", {}, words, words);
    row("synopsis", {}, {}, words);
    row("none", {}, {}, {});
    QTest::newRow("nothing said") << QStringList() << words << QByteArray() << words;
}

void TstToolImport::notesOfOutlinesGoWhereTheyAreWanted()
{
    QFETCH(QStringList, options);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString file =
        source.write(u"a.opml"_s, "<opml><body><outline text='b' _note='words'/></body></opml>");
    const ProgramResult result = import(project, QStringList{file} + options);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    const QString item = u"Draft/a/b"_s;
    QTEST(catOf(project, item), "text");
    QTEST(runTool({u"cat"_s, project.path(), item, u"--notes"_s}).output, "notes");
    QTEST(runTool({u"cat"_s, project.path(), item, u"--synopsis"_s}).output, "synopsis");
}

void TstToolImport::aPlaceForNotesThatIsNotKnownIsRefused()
{
    const TestProject project;
    writeEmptyProject(project);
    const auto before = everythingBelow(project.path());
    const ProgramResult result =
        import(project, {u"--outline-notes"_s, u"Text"_s, project.binderPath()});
    QCOMPARE(result.status, 2);
    QCOMPARE(result.errors, QByteArray("tavel: --outline-notes knows no 'Text'\n"));
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolImport::aBrokenOutlineIsLeftOutWhole()
{
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    const QString broken =
        source.write(u"a.opml"_s, "<opml><body><outline text='b'/><outline text='c'>");
    const ProgramResult result = import(project, {broken, source.write(u"d.txt"_s, "x")});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors,
             QByteArray("tavel: '" + broken.toUtf8()
                        + "' is not imported: Premature end of document.\n"));
    QCOMPARE(draftTreeOf(project), u"d"_s);
}

void TstToolImport::whatCannotBeImportedIsToldBeforeAnythingChanges_data()
{
    QTest::addColumn<QString>("path"); // below the folder of the test
    QTest::addColumn<QString>("error");
    const QString otherKind = u"'%1' is neither plain text (.txt) nor rich text (.rtf)"_s;
    QTest::newRow("an image") << u"source/map.png"_s << otherKind;
    QTest::newRow("no suffix") << u"source/README"_s << otherKind;
    QTest::newRow("no such file") << u"source/none.txt"_s << u"there is no file '%1'"_s;
    QTest::newRow("a file of the project")
        << u"Novel.tavel/Files/Docs/4.rtf"_s << u"'%1' lies in the project itself"_s;
    QTest::newRow("the project") << u"Novel.tavel"_s << u"'%1' lies in the project itself"_s;
    QTest::newRow("a link to a folder") << u"source/link"_s << u"'%1' is a link to a folder"_s;
    QTest::newRow("a link to nothing") << u"source/dead.txt"_s << u"there is no file '%1'"_s;
}

void TstToolImport::whatCannotBeImportedIsToldBeforeAnythingChanges()
{
    QFETCH(const QString, path);
    QFETCH(const QString, error);
    const TestProject project;
    writeSoundProject(project);
    const Source source(project);
    const QString good = source.write(u"a.txt"_s, "Ants.");
    source.write(u"map.png"_s, "x");
    source.write(u"README"_s, "x");
    QVERIFY(QFile::link(project.enclosingPath(), source.path(u"link"_s)));
    QVERIFY(QFile::link(source.path(u"nowhere.txt"_s), source.path(u"dead.txt"_s)));
    const auto before = everythingBelow(project.path());

    const QString named = project.enclosingPath() + u'/' + path;
    const ProgramResult result = import(project, {good, named});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(error.arg(named)).toUtf8());
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolImport::aBrokenFileIsLeftOutAndTheOthersAreImported_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("cut-off rich text") << u"x.rtf"_s << QByteArray("{\\rtf1 Half a")
                                       << QByteArray("The file ends before its text does.");
    QTest::newRow("empty rich text") << u"x.rtf"_s << QByteArray() << QByteArray();
    QTest::newRow("plain text under the wrong name")
        << u"x.rtf"_s << QByteArray("Plain") << QByteArray();
    const QByteArray noText =
        "it isn't text in UTF-8, nor in another encoding with a byte order mark";
    QTest::newRow("Latin-1") << u"x.txt"_s << QByteArray("na\xefve") << noText;
    QTest::newRow("a character cut off") << u"x.txt"_s << QByteArray("na\xc3") << noText;
    QTest::newRow("bytes of anything") << u"x.txt"_s << QByteArray("\x89PNG\0\1\2\3", 8) << noText;
    QTest::newRow("UTF-16 cut off in a character") << u"x.txt"_s
                                                   << QByteArray("\xff\xfe"
                                                                 "a\0b",
                                                                 5)
                                                   << noText;
    QTest::newRow("UTF-16 cut off in a pair") << u"x.txt"_s
                                              << QByteArray("\xff\xfe"
                                                            "a\0\x3d\xd8",
                                                            6)
                                              << noText;
    QTest::newRow("UTF-8 with a byte too many") << u"x.txt"_s << QByteArray("a\x80z") << noText;
    QTest::newRow("a surrogate in UTF-8") << u"x.txt"_s << QByteArray("a\xed\xa0\x80z") << noText;
    QTest::newRow("an overlong character") << u"x.txt"_s << QByteArray("a\xc1\x81z") << noText;
    QTest::newRow("UTF-16 without a mark") << u"x.txt"_s << QByteArray("a\0b\0", 4) << noText;
}

void TstToolImport::aBrokenFileIsLeftOutAndTheOthersAreImported()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, reason);
    for (const bool isSplit : {false, true}) {
        const TestProject project;
        writeEmptyProject(project);
        const Source source(project);
        const QString broken = source.write(name, content);
        QStringList arguments{source.write(u"a.txt"_s, "a"), broken, source.write(u"b.txt"_s, "b")};
        if (isSplit)
            arguments += {u"--split"_s, u"#"_s};
        const ProgramResult result = import(project, arguments);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray("Imported 2 texts and 0 folders into 'Draft'\n"));
        QCOMPARE(result.errorLines().size(), 1);
        const QByteArray start = u"tavel: '%1' is not imported: "_s.arg(broken).toUtf8();
        QVERIFY2(result.errors.startsWith(start + reason), result.errors);
        QVERIFY(result.errors.size() > start.size() + 1);
        QCOMPARE(draftTreeOf(project), u"a b"_s);
        QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
    }
}

void TstToolImport::aPlaceThatTakesNothingIsRefused_data()
{
    QTest::addColumn<QString>("into");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("the Trash") << u"Trash"_s
                               << QByteArray("nothing can be imported into the Trash: 'Trash'");
    QTest::newRow("an item in the Trash")
        << u"9"_s << QByteArray("nothing can be imported into the Trash: '9'");
    QTest::newRow("no item") << u"Nowhere"_s << QByteArray("there is no item 'Nowhere'");
}

void TstToolImport::aPlaceThatTakesNothingIsRefused()
{
    QFETCH(const QString, into);
    QFETCH(const QByteArray, error);
    const TestProject project;
    const QByteArray old = ::item(9, "Folder", "Old");
    writeProject(project,
                 binderXml(::item(0, "DraftFolder", "Draft")
                           + ::item(1, "ResearchFolder", "Research")
                           + ::item(2, "TrashFolder", "Trash",
                                    {.attributes = {}, .metaData = {}, .children = old})));
    const Source source(project);
    const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
    const ProgramResult result =
        import(project, {source.write(u"a.txt"_s, "a"), u"--into"_s, into});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors, "tavel: " + error + '\n');
    QCOMPARE(project.readFile(u"Novel.tavelx"_s), binder);
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstToolImport::filesOfNoItemAreLeftAlone()
{
    const TestProject project;
    writeSoundProject(project);
    // Such as an import leaves that was killed, or a removed item with others in it.
    const QMap<QString, QByteArray> leftBehind{
        {u"Files/Docs/6.rtf"_s, "{\\rtf1 Old.}"},
        {u"Files/Docs/7_notes.rtf"_s, "{\\rtf1 Old notes.}"},
        {u"Files/Docs/8.rtf"_s, "{\\rtf1 damag"},
        {u"Snapshots/11.snapshots/index.xml"_s, "<Snapshots/>"}};
    for (auto file = leftBehind.begin(); file != leftBehind.end(); ++file)
        project.writeFile(file.key(), file.value());
    const Source source(project);
    source.write(u"Book/a.txt"_s, "New.\n");
    source.write(u"Book/b.txt"_s, "");
    source.write(u"Book/c.txt"_s, "New.\n");

    const ProgramResult result = import(project, {source.path(u"Book"_s)});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(catOf(project, u"Draft/Book"_s), QByteArray());
    QCOMPARE(catOf(project, u"Draft/Book/a"_s), QByteArray("New.\n"));
    QCOMPARE(catOf(project, u"Draft/Book/b"_s), QByteArray());
    QCOMPARE(catOf(project, u"Draft/Book/c"_s), QByteArray("New.\n"));
    for (auto file = leftBehind.begin(); file != leftBehind.end(); ++file)
        QCOMPARE(project.readFile(file.key()), file.value());
}

void TstToolImport::aTextThatCannotBeWrittenIsLeftOut()
{
    const TestProject project;
    writeProject(project, soundBinder());
    // Where the folder of texts should be there is a file.
    project.writeFile(u"Files/Docs"_s, "in the way");
    const Source source(project);
    const QString file = source.write(u"a.txt"_s, "Ants.");
    const ProgramResult result = import(project, {file});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errorLines().constLast().startsWith(
                 u"tavel: '%1' is not imported: "_s.arg(file).toUtf8()),
             result.errors);
    QCOMPARE(draftTreeOf(project), u"Part 1(The Harbour First Watch)"_s);
}

void TstToolImport::aFailedSaveIsAFailure()
{
    const TestProject project;
    writeSoundProject(project);
    const Source source(project);
    const QString file = source.write(u"a.txt"_s, "Ants.");
    // No file may be larger than 2 KB: the binder would be.
    const ProgramResult result =
        runProgram(u"sh"_s,
                   {u"-c"_s, u"trap '' XFSZ; ulimit -f 4; exec \"$@\""_s, u"sh"_s,
                    QStringLiteral(TAVEL_EXECUTABLE), u"import"_s, project.path(), file});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorLines().constLast(),
             u"tavel: the project could not be saved: '%1'"_s.arg(project.path()).toUtf8());
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstToolImport::manyFilesAreImportedInTheirOrder()
{
    constexpr int Count = 300;
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    QStringList numbers;
    for (int i = 1; i <= Count; ++i) {
        numbers.append(QString::number(i));
        source.write(u"Book/%1.txt"_s.arg(i), "Text " + QByteArray::number(i));
    }
    QCOMPARE(import(project, {source.path(u"Book"_s)}).status, 0);
    QCOMPARE(draftTreeOf(project), u"Book("_s + numbers.join(u' ') + u')');
    QCOMPARE(catOf(project, u"Draft/Book/299"_s), QByteArray("Text 299\n"));
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolImport::aTerminalShowsABar()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const TestProject project;
    writeEmptyProject(project);
    const Source source(project);
    for (const char *name : {"1.txt", "2.txt", "3.rtf", "4.txt"})
        source.write(QString::fromLatin1(name), "x");
    ProgramPlace place;
    place.errorFile = QString::fromLocal8Bit(ptsname(terminal));
    // Held open, so that what was written stays to be read.
    QFile other(place.errorFile);
    QVERIFY(other.open(QIODevice::ReadWrite | QIODevice::Unbuffered));

    const ProgramResult result =
        runTool({u"import"_s, project.path(), source.path(QString())}, place);
    QCOMPARE(result.status, 1);
    QByteArray shown(100000, '\0');
    const ssize_t size = read(terminal, shown.data(), std::size_t(shown.size()));
    close(terminal);
    QVERIFY(size > 0);
    shown.truncate(size);
    QVERIFY2(shown.startsWith("\r[" + QByteArray(40, ' ') + "]   0 %\r["), shown);
    QVERIFY2(shown.contains("]  60 %\r\x1b[Ktavel: '"), shown);
    QVERIFY2(shown.endsWith("] 80 %\r\x1b[K") || shown.endsWith("]  80 %\r\x1b[K"), shown);
}

TVL_TEST(TstToolImport)
#include "tst_toolimport.moc"
