#include "ModelChecks.h"
#include "OutlineItems.h"
#include "TestMain.h"

#include "TVLOpmlReader.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

/** Items of OPML files. */
class TstOutlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outlinesBecomeItems_data();
    void outlinesBecomeItems();
    void theTypeSaysWhatBecomesOfNotes_data();
    void theTypeSaysWhatBecomesOfNotes();
    void withoutARootOutlinesLandAtTheRowInReverse_data();
    void withoutARootOutlinesLandAtTheRowInReverse();
    void aRootIsAFolderOfTheTitleAtTheRow_data();
    void aRootIsAFolderOfTheTitleAtTheRow();
    void itemsAreTextsOrFolders();
    void theShortFormReadsNotesAsTexts();
    void whatIsNotAnOutlineChangesNothing_data();
    void whatIsNotAnOutlineChangesNothing();
    void aFileMayBeLoadedAndParsedApart();
    void withoutAModelNothingIsRead();
    void otherProgramsOutlinesAreRead_data();
    void otherProgramsOutlinesAreRead();
    void aListenerMayRemoveWhatIsMade();
};

namespace {

struct Imported
{
    bool isRead;
    QString error;
    QString items; ///< In the Draft, behind the blank text that is there.
};

Imported imported(const QByteArray &file, TVL::OpmlImportType type = TVL::OpmlNoteAsText,
                  bool createRoot = false, int row = -1)
{
    const TestModel model = blankModel();
    TVLOpmlReader reader(model.get());
    const bool isRead = reader.read(outlineFile(file), type, createRoot, model->draftFolder(), row);
    return {isRead, reader.errorString(), itemsText(model.get(), model->draftFolder())};
}

/** What a blank project's only text is called. */
QString untitled()
{
    return TVLProjectModel::trUntitledTitle();
}

} // namespace

void TstOutlines::outlinesBecomeItems_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("items");
    const auto row = [](const char *name, const char *body, const QString &items) {
        QTest::newRow(name) << QByteArray(body) << items;
    };
    row("none", "", u""_s);
    row("one", "<outline text='One'/>", u"One"_s);
    row("side by side", "<outline text='One'/><outline text='Two'/>", u"One, Two"_s);
    row("nested",
        "<outline text='A'><outline text='B'><outline text='C'/></outline><outline text='D'/>"
        "</outline><outline text='E'/>",
        u"A(B(C), D), E"_s);
    row("with a note", "<outline text='One' _note='  Words. '/>", u"One{Words.|Words.|}"_s);
    row("with a note of lines", "<outline text='One' _note='a&#10;b'/>", u"One{a\nb|a\nb|}"_s);
    row("with a note of written references", "<outline text='One' _note='a&amp;#10;b'/>",
        u"One{a\nb|a\nb|}"_s);
    row("a note's references are taken behind its ends", "<outline text='One' _note='&amp;#10;a'/>",
        u"One{\na|\na|}"_s);
    row("without a text", "<outline/><outline title='x'/>", untitled() + u", "_s + untitled());
    row("of any type", "<outline text='One' type='link' url='http://a'/>", u"One"_s);
    row("among others",
        "<x text='no'><outline text='no'/></x><outline text='A'><x><outline text='no'/></x>"
        "<outline text='B'/>words</outline>",
        u"A(B)"_s);
    row("with other names", "<Outline text='no'/><outline TEXT='x'/>", untitled());
    row("beyond ASCII", "<outline text='caf\xc3\xa9 \xf0\x9f\x8e\x89'/>",
        u"caf\u00e9 \U0001f389"_s);
    row("in a second body", "</body><body><outline text='One'/>", u"One"_s);
}

void TstOutlines::outlinesBecomeItems()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, items);
    const Imported result = imported(opml(body));
    QVERIFY2(result.isRead, qPrintable(result.error));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.items, items.isEmpty() ? untitled() : untitled() + u", "_s + items);
}

void TstOutlines::theTypeSaysWhatBecomesOfNotes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("texts");
    QTest::newRow("dropped") << 0 << u""_s;
    QTest::newRow("synopsis") << 1 << u"{|n|}"_s;
    QTest::newRow("text and synopsis") << 2 << u"{n|n|}"_s;
    QTest::newRow("synopsis and notes") << 3 << u"{|n|n}"_s;
}

void TstOutlines::theTypeSaysWhatBecomesOfNotes()
{
    QFETCH(int, type);
    QFETCH(QString, texts);
    const QByteArray file = opml("<outline text='a' _note=' n '><outline text='b' _note='n'/>"
                                 "</outline>");
    const QString items = untitled() + u", a%1(b%1)"_s.arg(texts);
    QCOMPARE(imported(file, TVL::OpmlImportType(type)).items, items);
    const QByteArray map = "<map><node TEXT='a'><richcontent><p>n</p></richcontent><node TEXT='b'>"
                           "<richcontent><p> n</p></richcontent></node></node></map>";
    QCOMPARE(imported(map, TVL::OpmlImportType(type)).items, items);
}

void TstOutlines::withoutARootOutlinesLandAtTheRowInReverse_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("items");
    QTest::newRow("first") << 0 << u"3, 2, 1(a, b), x, y"_s;
    QTest::newRow("between") << 1 << u"x, 3, 2, 1(a, b), y"_s;
    // The row is there for all of them.
    QTest::newRow("behind the last") << 2 << u"x, y, 3, 2, 1(a, b)"_s;
    QTest::newRow("none") << -1 << u"x, y, 1(a, b), 2, 3"_s;
    QTest::newRow("far behind") << 9 << u"x, y, 1(a, b), 2, 3"_s;
    // It's there for the second one.
    QTest::newRow("one behind") << 3 << u"x, y, 1(a, b), 3, 2"_s;
}

void TstOutlines::withoutARootOutlinesLandAtTheRowInReverse()
{
    QFETCH(int, row);
    const TestModel model = emptyModel();
    addTree(model.get(), model->rootIndex(), u"x y"_s);
    TVLOpmlReader reader(model.get());
    QVERIFY(reader.read(outlineFile(opml("<outline text='1'><outline text='a'/><outline text='b'/>"
                                         "</outline><outline text='2'/><outline text='3'/>")),
                        TVL::OpmlTitlesOnly, false, QModelIndex(), row));
    QTEST(itemsText(model.get(), QModelIndex()), "items");
}

void TstOutlines::aRootIsAFolderOfTheTitleAtTheRow_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("title");
    QTest::newRow("title") << QByteArray("<head><title>A &lt;b&gt; c</title></head>")
                           << u"A <b> c"_s;
    QTest::newRow("no head") << QByteArray() << untitled();
    QTest::newRow("no title") << QByteArray("<head><dateCreated>x</dateCreated></head>")
                              << untitled();
    QTest::newRow("empty title") << QByteArray("<head><title/></head>") << untitled();
    QTest::newRow("title elsewhere") << QByteArray("<title>x</title>") << untitled();
}

void TstOutlines::aRootIsAFolderOfTheTitleAtTheRow()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, title);
    const TestModel model = blankModel();
    TVLOpmlReader reader(model.get());
    const QModelIndex draft = model->draftFolder();
    QVERIFY(reader.read(outlineFile(opml("<outline text='1' _note='n'/><outline text='2'/>", head)),
                        TVL::OpmlNoteAsNotes, true, draft, 0));
    QCOMPARE(itemsText(model.get(), draft), title + u"(1{|n|n}, 2), "_s + untitled());
    QCOMPARE(model->type(model->index(0, 0, draft)), TVL::Folder);
    // Whatever is in it.
    QVERIFY(reader.read(outlineFile(opml("", head)), TVL::OpmlNoteAsNotes, true, draft, -1));
    QCOMPARE(model->rowCount(draft), 3);
    QCOMPARE(model->title(model->index(2, 0, draft)), title);
}

void TstOutlines::itemsAreTextsOrFolders()
{
    const TestModel model = blankModel();
    TVLOpmlReader reader(model.get());
    QVERIFY(reader.read(outlineFile(opml("<outline text='a'><outline text='b'/></outline>")),
                        TVL::OpmlTitlesOnly, false, model->draftFolder(), -1));
    for (const QString &title : {u"a"_s, u"b"_s})
        QCOMPARE(model->type(itemTitled(model.get(), title)), TVL::Text);
    QCOMPARE(reader.fileKind(), TVLOpmlReader::OpmlFile);
}

void TstOutlines::theShortFormReadsNotesAsTexts()
{
    const TestModel model = blankModel();
    TVLOpmlReader reader(model.get());
    QString error = u"old"_s;
    const QModelIndex draft = model->draftFolder();
    QVERIFY(reader.read(outlineFile(opml("<outline text='a' _note='n'/><outline text='b'/>")),
                        draft, 0, &error));
    QCOMPARE(error, QString());
    QCOMPARE(itemsText(model.get(), draft), u"b, a{n|n|}, "_s + untitled());
    QVERIFY(!reader.read(outlineFile("<x/>"), draft, 0, &error));
    QCOMPARE(error, u"Unknown or invalid file"_s);
    QVERIFY(!reader.read(outlineFile("<x/>"), draft, 0, nullptr));
}

void TstOutlines::whatIsNotAnOutlineChangesNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &file, const QString &error) {
        QTest::newRow(name) << file << error;
    };
    const QString unknown = u"Unknown or invalid file"_s;
    row("another root", "<html><body/></html>", unknown);
    row("in another element", "<x><opml><body><outline text='a'/></body></opml></x>", unknown);
    row("another case", "<OPML/>", unknown);
    row("empty", "", u"Premature end of document."_s);
    row("not XML", "Chapter 1\n", u"Start tag expected."_s);
    row("cut off", opml("<outline text='a'/><outline text='b'/>").left(70),
        u"Premature end of document."_s);
    row("a tag that isn't closed", opml("<outline text='a'>"),
        u"Opening and ending tag mismatch."_s);
    row("behind the end", opml("<outline text='a'/>") + "<x/>",
        u"Extra content at end of document."_s);
    row("an entity of nobody", opml("<outline text='&nbsp;'/>"), u"Entity 'nbsp' not declared."_s);
    row("not in its encoding", opml("<outline text='\xff'/>"),
        u"Encountered incorrectly encoded content."_s);
    row("of an encoding that isn't known", "<?xml version='1.0' encoding='x-none'?><opml/>",
        u"Encoding x-none is unsupported"_s);
    row("entities of its own",
        "<!DOCTYPE opml [<!ENTITY a 'words'>]>" + opml("<outline text='&a;'/>").mid(39),
        u"The file has a document type of its own."_s);
    const QByteArray depth(500, ' ');
    row("nested too deeply",
        opml(QByteArray(depth).replace(" ", "<outline>")
             + QByteArray(depth).replace(" ", "</outline>")),
        u"The file is nested too deeply."_s);
}

void TstOutlines::whatIsNotAnOutlineChangesNothing()
{
    QFETCH(QByteArray, file);
    for (const bool createRoot : {false, true}) {
        const Imported result = imported(file, TVL::OpmlNoteAsText, createRoot);
        QVERIFY(!result.isRead);
        QTEST(result.error, "error");
        QCOMPARE(result.items, untitled());
    }
}

void TstOutlines::aFileMayBeLoadedAndParsedApart()
{
    const TestModel model = emptyModel();
    TVLOpmlReader reader(model.get());
    QVERIFY(!reader.load(u"/nowhere/at/all.opml"_s));
    QCOMPARE(reader.errorString(), u"No such file or directory"_s);
    QVERIFY(!reader.parseFile(QModelIndex(), -1));
    QCOMPARE(reader.fileKind(), TVLOpmlReader::UnknownFile);

    QBuffer buffer;
    buffer.setData(opml("<outline text='a'/>"));
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(reader.load(&buffer));
    QCOMPARE(reader.errorString(), QString());
    QVERIFY(reader.parseFile(QModelIndex(), -1));
    QVERIFY(reader.parseFile(QModelIndex(), -1));
    QCOMPARE(itemsText(model.get(), QModelIndex()), u"a, a"_s);
    reader.clear();
    QVERIFY(!reader.parseFile(QModelIndex(), -1));
    QCOMPARE(reader.errorString(), u"Unknown or invalid file"_s);
}

void TstOutlines::withoutAModelNothingIsRead()
{
    TVLOpmlReader reader(nullptr);
    const QString path = outlineFile(opml("<outline text='a'/>"));
    QVERIFY(!reader.read(path, TVL::OpmlTitlesOnly, true, QModelIndex(), 0));
    QVERIFY(reader.load(path));
    QVERIFY(!reader.parseFile(QModelIndex(), 0));
}

void TstOutlines::otherProgramsOutlinesAreRead_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("items");
    // A text converter's: notes in its own markup, and lines as references.
    QTest::newRow("converter") << QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<opml version="2.0">
  <head>
    <title>The Book</title>
    <dateModified></dateModified>
    <ownerName></ownerName>
  </head>
  <body>
<outline text="Part &lt;em&gt;One&lt;/em&gt;" _note="First words.&#10;&#10;More.">
  <outline text="Chapter 1">
  </outline>
</outline>
<outline text="Part Two">
</outline>
  </body>
</opml>
)") << u"The Book(Part <em>One</em>{First words.\n\nMore.|First words.\n\nMore.|}(Chapter 1), Part Two)"_s;
    // An outliner's: state of the window in the head, and attributes of its own.
    QTest::newRow("outliner") << QByteArray(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n"
        "<!-- OPML generated by a program -->\r\n<opml version=\"1.0\">\r\n<head>"
        "<title>workspace.caf\xe9</title><expansionState>1,3,17</expansionState>"
        "<vertScrollState>1</vertScrollState></head>\r\n<body>\r\n"
        "<outline text=\"Changes\" created=\"Tue, 28 Nov 2000 22:30:55 GMT\">"
        "<outline text=\"1/3/02\" isComment=\"true\" isBreakpoint=\"false\"/>"
        "</outline>\r\n</body>\r\n</opml>")
                              << u"workspace.caf\u00e9(Changes(1/3/02))"_s;
    // A list of feeds: titles beside texts, and a name space.
    QTest::newRow("feeds") << QByteArray(R"(<?xml version='1.0' encoding='utf-8'?>
<!DOCTYPE opml SYSTEM "opml.dtd">
<opml xmlns:fz="urn:forumzilla:" version='2.0'><head><title>Subscriptions</title></head>
<body><outline title="News"><outline type="rss" title="A" text="B" fz:quickMode="false"
 xmlUrl="https://example.org/feed"/></outline></body></opml>)")
                           << u"Subscriptions(%1(B))"_s.arg(untitled());
    const QString wide =
        u"<?xml version='1.0' encoding='UTF-16'?><opml><body><outline text='\u4e00'/>"
        "</body></opml>"_s;
    QTest::newRow("wide") << QByteArray("\xff\xfe")
            + QByteArray(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2)
                          << untitled() + u"(\u4e00)"_s;
}

void TstOutlines::otherProgramsOutlinesAreRead()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, items);
    const Imported result = imported(file, TVL::OpmlNoteAsText, true, 0);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.items, items + u", "_s + untitled());
}

void TstOutlines::aListenerMayRemoveWhatIsMade()
{
    for (int turn = 1; turn <= 6; ++turn) {
        for (const bool takesParent : {false, true}) {
            const TestModel model = blankModel();
            const QModelIndex folder =
                model->insertUserFolder(-1, model->draftFolder(), u"folder"_s);
            QPersistentModelIndex target = folder;
            int count = 0;
            QObject::connect(model.get(), &QAbstractItemModel::rowsInserted, model.get(),
                             [&](const QModelIndex &parent, int first) {
                                 if (++count == turn)
                                     model->removeIndexFromModel(
                                         takesParent ? QModelIndex(target)
                                                     : model->index(first, 0, parent));
                             });
            TVLOpmlReader reader(model.get());
            QVERIFY(reader.read(
                outlineFile(opml("<outline text='1'><outline text='2'><outline text='3'/></outline>"
                                 "</outline><outline text='4'/>")),
                TVL::OpmlTitlesOnly, true, folder, 0));
            // Nothing comes to lie where it doesn't belong.
            QCOMPARE(model->rowCount(model->draftFolder()), target.isValid() ? 2 : 1);
            QCOMPARE(model->rowCount(model->rootIndex()), blankModel()->rowCount(QModelIndex()));
        }
    }
}

TVL_TEST(TstOutlines)
#include "tst_outlines.moc"
