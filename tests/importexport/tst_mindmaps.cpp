#include "ModelChecks.h"
#include "OutlineItems.h"
#include "TestMain.h"

#include "TVLOpmlReader.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** Items of FreeMind's mind maps. */
class TstMindMaps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nodesBecomeItems_data();
    void nodesBecomeItems();
    void notesAreParagraphsOfRichContent_data();
    void notesAreParagraphsOfRichContent();
    void theMiddleOfAMapIsAnItemAtTheRow_data();
    void theMiddleOfAMapIsAnItemAtTheRow();
    void aMapAsFreeMindWritesItIsRead();
    void paragraphsInEachOtherDontGrowWithoutBound();
};

namespace {

QString itemsOfMap(const QByteArray &map, TVL::OpmlImportType type = TVL::OpmlNoteAsNotes)
{
    const TestModel model = emptyModel();
    TVLOpmlReader reader(model.get());
    if (!reader.read(outlineFile(map), type, false, QModelIndex(), -1))
        return u"error: "_s + reader.errorString();
    return itemsText(model.get(), QModelIndex());
}

} // namespace

void TstMindMaps::nodesBecomeItems_data()
{
    QTest::addColumn<QByteArray>("map");
    QTest::addColumn<QString>("items");
    const QString untitled = TVLProjectModel::trUntitledTitle();
    const auto row = [](const char *name, const char *map, const QString &items) {
        QTest::newRow(name) << QByteArray(map) << items;
    };
    row("no node", "<map/>", untitled);
    row("no node, though the map has what one has",
        "<map TEXT='x'><richcontent><p>x</p></richcontent></map>", untitled);
    row("one", "<map><node TEXT='A'/></map>", u"A"_s);
    row("without a text", "<map><node/></map>", untitled);
    row("tree",
        "<map><node TEXT='A'><node TEXT='B'><node TEXT='C'/><node TEXT='D'/></node>"
        "<node TEXT='E'/></node></map>",
        u"A(B(C, D), E)"_s);
    row("among others",
        "<map version='1.0.1'><attribute_registry/><node TEXT='A'><edge WIDTH='thin'/>"
        "<node TEXT='B'><font NAME='x'/><icon BUILTIN='y'/><node TEXT='C'/></node>"
        "<cloud><node TEXT='no'/></cloud></node></map>",
        u"A(B(C))"_s);
    row("text in lower case", "<map><node text='A'/></map>", untitled);
    row("references in a text", "<map><node TEXT='a&amp;#10;b &#xe9;'/></map>",
        u"a&#10;b \u00e9"_s);
    row("another root", "<node TEXT='A'/>", u"error: Unknown or invalid file"_s);
}

void TstMindMaps::nodesBecomeItems()
{
    QFETCH(QByteArray, map);
    QTEST(itemsOfMap(map), "items");
}

void TstMindMaps::notesAreParagraphsOfRichContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("notes");
    const auto row = [](const char *name, const char *content, const QString &notes) {
        QTest::newRow(name) << QByteArray(content) << notes;
    };
    row("none", "", u""_s);
    row("no paragraph", "<richcontent TYPE='NOTE'><html><body>words</body></html></richcontent>",
        u""_s);
    row("one",
        "<richcontent TYPE='NOTE'><html><head/><body><p>\n  Some\n  words \n</p></body></html>"
        "</richcontent>",
        u"Some words"_s);
    row("several",
        "<richcontent><html><body><p>a</p><div><p>b</p></div><p/><p>c</p></body></html>"
        "</richcontent>",
        u"a\nb\n\nc"_s);
    row("of several",
        "<richcontent TYPE='NODE'><p>a</p></richcontent><x/>"
        "<richcontent TYPE='NOTE'><p>b</p></richcontent>",
        u"a\nb"_s);
    row("words apart by their format only",
        "<richcontent><p>one <b>two</b> <i>three</i> four</p></richcontent>",
        u"one two three four"_s);
    row("character data", "<richcontent><p><![CDATA[a <b> c]]></p></richcontent>", u"a <b> c"_s);
    row("one in another", "<richcontent><p>a<p>b</p>c</p></richcontent>", u"abc\nb"_s);
    row("elsewhere", "<hook><richcontent><p>a</p></richcontent></hook><p>b</p>", u""_s);
    row("written references stay", "<richcontent><p>a&amp;#10;b</p></richcontent>", u"a&#10;b"_s);
}

void TstMindMaps::notesAreParagraphsOfRichContent()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, notes);
    const QString texts = notes.isEmpty() ? QString() : u"{|%1|%1}"_s.arg(notes);
    QCOMPARE(itemsOfMap("<map><node TEXT='A'>" + content + "<node TEXT='B'>" + content
                        + "<node TEXT='C'>" + content + "</node></node></node></map>"),
             u"A%1(B%1(C%1))"_s.arg(texts));
}

void TstMindMaps::theMiddleOfAMapIsAnItemAtTheRow_data()
{
    QTest::addColumn<bool>("createRoot");
    QTest::newRow("without a root") << false;
    QTest::newRow("with one") << true;
}

void TstMindMaps::theMiddleOfAMapIsAnItemAtTheRow()
{
    QFETCH(bool, createRoot);
    const TestModel model = emptyModel();
    addTree(model.get(), model->rootIndex(), u"x y"_s);
    TVLOpmlReader reader(model.get());
    QVERIFY(reader.read(outlineFile("<map><node TEXT='A'><node TEXT='B'/><node TEXT='C'/></node>"
                                    "</map>"),
                        TVL::OpmlTitlesOnly, createRoot, QModelIndex(), 1));
    QCOMPARE(itemsText(model.get(), QModelIndex()), u"x, A(B, C), y"_s);
    QCOMPARE(model->type(model->index(1, 0)), TVL::Text);
    QCOMPARE(reader.fileKind(), TVLOpmlReader::FreeMindFile);
}

void TstMindMaps::aMapAsFreeMindWritesItIsRead()
{
    // No declaration, ASCII with references, and a line for each element.
    QCOMPARE(itemsOfMap(R"(<map version="1.0.1">
<!-- To view this file, download free mind mapping software -->
<node CREATED="1124560950701" ID="Freemind_Link_784043927" MODIFIED="1189275118015" TEXT="The Book">
<font BOLD="true" NAME="SansSerif" SIZE="12"/>
<richcontent TYPE="NOTE"><html>
  <head>

  </head>
  <body>
    <p>
      On a caf&#xe9;, and
      a street.
    </p>
    <p>
      Nothing else.
    </p>
  </body>
</html>
</richcontent>
<node CREATED="1124560950702" FOLDED="true" ID="a" POSITION="right" TEXT="One">
<arrowlink DESTINATION="b" ENDARROW="Default"/>
<node CREATED="1124560950703" ID="b" TEXT="&quot;Within&quot;"/>
</node>
<node CREATED="1124560950704" ID="c" POSITION="left" TEXT="Two"/>
</node>
</map>
)"),
             u"The Book{|%1|%1}(One(\"Within\"), Two)"_s.arg(
                 u"On a caf\u00e9, and a street.\nNothing else."_s));
}

void TstMindMaps::paragraphsInEachOtherDontGrowWithoutBound()
{
    const int depth = 400;
    const QByteArray words(1000, 'w');
    QByteArray paragraphs = words;
    for (int i = 0; i < depth; ++i)
        paragraphs = "<p>" + paragraphs + "</p>";
    const TestModel model = emptyModel();
    TVLOpmlReader reader(model.get());
    QVERIFY(reader.read(
        outlineFile("<map><node><richcontent>" + paragraphs + "</richcontent></node></map>"),
        TVL::OpmlNoteAsNotes, false, QModelIndex(), -1));
    const QString note = model->documentNoteAsPlainText(model->index(0, 0));
    QCOMPARE(note.count(QString::fromLatin1(words)), 16);
}

TVL_TEST(TstMindMaps)
#include "tst_mindmaps.moc"
