#include "TestMain.h"
#include "TextChecks.h"

#include "TTextDoc.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

TVLTextCommentLink noteOf(const QString &identity, const QString &text, bool isFootnote)
{
    QTextDocument document;
    document.setPlainText(text);
    TVLTextCommentLink note(identity, TVLTextRtf::toRtfCData(&document));
    note.mIsFootnote = isFootnote;
    return note;
}

/** A document whose notes 1 to 3 have the texts "one", "two" and two lines. */
std::unique_ptr<QTextDocument> textWithNotes(const QString &notation, bool areFootnotes)
{
    auto document = makeText(notation);
    TVLTextDoc::setComments(document.get(),
                            {noteOf(u"1"_s, u"one"_s, areFootnotes),
                             noteOf(u"2"_s, u"two"_s, areFootnotes),
                             noteOf(u"3"_s, u"first\nsecond"_s, areFootnotes)});
    document->clearUndoRedoStacks();
    return document;
}

using Texts = QMap<int, QString>;

} // namespace

class TstTextNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesAreEmbraced_data();
    void notesAreEmbraced();
    void onlySelectedNotesAreEmbraced();
    void commentsBecomeAnnotations_data();
    void commentsBecomeAnnotations();
    void footnotesOfTheInspectorBecomeInlineOnes();
    void onlySelectedCommentsAreConverted();
    void convertingIsOneUndoStep();
    void notesBecomeBraces_data();
    void notesBecomeBraces();
    void bracesBecomeNotes_data();
    void bracesBecomeNotes();
    void bracesComeBack();
    void aTextWithoutNotesOrBracesIsLeftAlone();
    void runsAreRemoved_data();
    void runsAreRemoved();
    void runsInTablesAreRemoved();
    void whatFollowsARemovedParagraphKeepsItsFormat();
    void removingIsOneUndoStep();
    void inspectorNotesAreRemovedByKind();
    void annotationsAreListed_data();
    void annotationsAreListed();
    void missingDocumentsHaveNoNotes();
};

void TstTextNotes::notesAreEmbraced_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("marks");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << u"a<b:b>"_s << u"a"_s << u"a<b:b>"_s;
    QTest::newRow("annotation") << u"a<a:b>c"_s << u"a"_s << u"a[b]c"_s;
    QTest::newRow("over formats") << u"<a:a><a,b:b>"_s << u"a"_s << u"[a<b:b]>"_s;
    QTest::newRow("over paragraphs") << u"<a:a\n\nb>"_s << u"a"_s << u"[a\n\nb]"_s;
    QTest::newRow("other kind stays") << u"<a:a>b<f:c>"_s << u"f"_s << u"<a:a>b[c]"_s;
    QTest::newRow("both kinds lose one") << u"<a,f:a>"_s << u"f"_s << u"<a:[a]>"_s;
    QTest::newRow("only where all is borne")
        << u"<a:a><a,f:b><f:c>"_s << u"a,f"_s << u"<a:a>[b]<f:c>"_s;
    QTest::newRow("picture") << u"<a,p:x.png>"_s << u"a"_s << u"[<p:x.png>]"_s;
    QTest::newRow("side by side with text") << u"<a:a>b<a:c>"_s << u"a"_s << u"[a]b[c]"_s;
}

void TstTextNotes::notesAreEmbraced()
{
    QFETCH(const QString, text);
    QFETCH(const QString, marks);
    const auto document = makeText(text);
    TVLTextDoc::embraceInlineNotes(markedFormat(marks), document.get(), QTextCursor(), u"["_s,
                                   u"]"_s);
    QTEST(describeText(document.get()), "expected");
}

void TstTextNotes::onlySelectedNotesAreEmbraced()
{
    const auto document = makeText(u"<a:abc>d<a:efg>"_s);
    QTextCursor cursor(document.get());
    cursor.setPosition(5);
    cursor.setPosition(1, QTextCursor::KeepAnchor);
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_s), document.get(), cursor, u"(("_s, u"))"_s);
    QCOMPARE(describeText(document.get()), u"<a:a>((bc))d((e))<a:fg>"_s);
}

void TstTextNotes::commentsBecomeAnnotations_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("inBrackets");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << u"a<b:b>"_s << false << u"a<b:b>"_s;
    QTest::newRow("mark") << u"a<c1:b>c"_s << false << u"ab<a:one>c"_s;
    QTest::newRow("brackets") << u"a<c1:b>c"_s << true << u"ab[one]c"_s;
    QTest::newRow("format of the run's end")
        << u"<c1:a><c1,b:b>c"_s << false << u"a<b:b><a,b:one>c"_s;
    QTest::newRow("a link doesn't go on")
        << u"<c1,ltavellnk://1:a>"_s << true << u"<ltavellnk://1:a>[one]"_s;
    QTest::newRow("over paragraphs") << u"<c1:a\nb>c"_s << true << u"a\nb[one]c"_s;
    QTest::newRow("several lines stay in the paragraph")
        << u"<c3:a>b"_s << true << u"a[first\u2028second]b"_s;
    QTest::newRow("each once") << u"<c1:a>b<c1:c><c2:d>"_s << true << u"a[one]bcd[two]"_s;
    QTest::newRow("without text") << u"<cnone:a>b"_s << true << u"ab"_s;
    QTest::newRow("footnotes stay") << u"<nother:a><c1:b>"_s << false << u"<nother:a>b<a:one>"_s;
    QTest::newRow("on a picture") << u"<c1,p:x.png>b"_s << false << u"<p:x.png><a:one>b"_s;
    QTest::newRow("within an inline footnote") << u"<c1,f:a>"_s << false << u"<f:a><a,f:one>"_s;
}

void TstTextNotes::commentsBecomeAnnotations()
{
    QFETCH(const QString, text);
    QFETCH(const bool, inBrackets);
    const auto document = textWithNotes(text, false);
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(document.get(), QTextCursor(),
                                                            inBrackets);
    QTEST(describeText(document.get()), "expected");
}

void TstTextNotes::footnotesOfTheInspectorBecomeInlineOnes()
{
    const auto document = textWithNotes(u"<c1:a>b<cother:c>"_s, true);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(document.get(), QTextCursor(), false);
    QCOMPARE(describeText(document.get()), u"a<f:one>b<cother:c>"_s);
    const auto bracketed = textWithNotes(u"<c1:a>b"_s, true);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(bracketed.get(), QTextCursor(), true);
    QCOMPARE(describeText(bracketed.get()), u"a[one]b"_s);
}

void TstTextNotes::onlySelectedCommentsAreConverted()
{
    const auto document = textWithNotes(u"<c1:ab>c<c2:de>"_s, false);
    QTextCursor cursor(document.get());
    cursor.setPosition(0);
    cursor.setPosition(1, QTextCursor::KeepAnchor);
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(document.get(), cursor, true);
    QCOMPARE(describeText(document.get()), u"ab[one]c<c2:de>"_s);
}

void TstTextNotes::convertingIsOneUndoStep()
{
    const auto document = textWithNotes(u"<c1:a>b\n<c2,a:c>"_s, false);
    const QString before = describeText(document.get());
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(document.get(), QTextCursor(), false);
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_s), document.get(), QTextCursor(), u"["_s,
                                   u"]"_s);
    QCOMPARE(describeText(document.get()), u"a[one]b\n[ctwo]"_s);
    document->undo();
    document->undo();
    QCOMPARE(describeText(document.get()), before);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextNotes::notesBecomeBraces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("braced");
    QTest::newRow("none") << u"a<b:b>"_s << u"a<b:b>"_s;
    QTest::newRow("annotation") << u"a<a:b>c"_s << u"a((b))c"_s;
    QTest::newRow("footnote") << u"a<f:b>c"_s << u"a{{b}}c"_s;
    QTest::newRow("annotation in a footnote") << u"<f:a><a,f:b><f:c>"_s << u"{{a((b))c}}"_s;
    QTest::newRow("side by side") << u"<a:a><f:b>"_s << u"((a)){{b}}"_s;
    QTest::newRow("over formats") << u"<a:a><a,b:b>"_s << u"((a<b:b))>"_s;
    QTest::newRow("paragraph by paragraph") << u"<a:a>\n<a:b>"_s << u"((a))\n((b))"_s;
    QTest::newRow("with single brackets") << u"<a:a (b)><f:{c} d>"_s << u"((a (b))){{{c} d}}"_s;
}

void TstTextNotes::notesBecomeBraces()
{
    QFETCH(const QString, text);
    QFETCH(const QString, braced);
    const auto document = makeText(text);
    TVLTextDoc::convertInlineNotesToBraces(document.get());
    QCOMPARE(describeText(document.get()), braced);
    TVLTextDoc::convertBracesToInlineNotes(document.get());
    QCOMPARE(describeText(document.get()), text);
    document->undo();
    QCOMPARE(describeText(document.get()), braced);
}

void TstTextNotes::bracesBecomeNotes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("single ones") << u"a (b) {c}"_s << u"a (b) {c}"_s;
    QTest::newRow("no end") << u"a ((b"_s << u"a ((b"_s;
    QTest::newRow("no start") << u"a b))"_s << u"a b))"_s;
    QTest::newRow("end first") << u")) a (("_s << u")) a (("_s;
    QTest::newRow("other kind of end") << u"((a}}"_s << u"((a}}"_s;
    QTest::newRow("in another paragraph") << u"((a\nb))"_s << u"((a\nb))"_s;
    QTest::newRow("nothing between") << u"a(())b {{}}"_s << u"a(())b {{}}"_s;
    QTest::newRow("balanced within") << u"((a (b (c)) d))e"_s << u"<a:a (b (c)) d>e"_s;
    QTest::newRow("a face within") << u"((sad :())b"_s << u"<a:sad :(>b"_s;
    QTest::newRow("one closing too much") << u"((a)))b"_s << u"<a:a>)b"_s;
    QTest::newRow("two starts") << u"((a ((b))"_s << u"<a:a ((b>"_s;
    QTest::newRow("several") << u"((a)) ((b)) {{c}}"_s << u"<a:a> <a:b> <f:c>"_s;
    QTest::newRow("several after an unbalanced one")
        << u"((a :()) ((b (c) d))"_s << u"<a:a :(> <a:b (c) d>"_s;
    QTest::newRow("crossed") << u"((a {{b)) c}}"_s << u"<a:a ><a,f:b><f: c>"_s;
    QTest::newRow("footnote in an annotation") << u"((a {{b}}))"_s << u"<a:a ><a,f:b>"_s;
    QTest::newRow("formats stay") << u"((a<b:b))c>"_s << u"<a:a><a,b:b><b:c>"_s;
}

void TstTextNotes::bracesBecomeNotes()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    TVLTextDoc::convertBracesToInlineNotes(document.get());
    QTEST(describeText(document.get()), "expected");
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextNotes::bracesComeBack()
{
    QRandomGenerator random(3);
    const QString marks[] = {u"b"_s, u"a"_s, u"f"_s, u"a,f"_s};
    for (int round = 0; round < 500; ++round) {
        QTextDocument document;
        QTextCursor cursor(&document);
        for (int run = random.bounded(8); run > 0; --run) {
            if (random.bounded(5) == 0)
                cursor.insertBlock();
            else
                cursor.insertText(QString(1 + random.bounded(3), QChar(u'w' + random.bounded(4))),
                                  markedFormat(marks[random.bounded(4)]));
        }
        const QString text = describeText(&document);
        TVLTextDoc::convertInlineNotesToBraces(&document);
        TVLTextDoc::convertBracesToInlineNotes(&document);
        QCOMPARE(describeText(&document), text);
    }
}

void TstTextNotes::aTextWithoutNotesOrBracesIsLeftAlone()
{
    const auto document = makeText(u"a (b) {c} <c1:d>\n<b:e>"_s);
    const QSignalSpy changes(document.get(), &QTextDocument::contentsChange);
    TVLTextDoc::convertInlineNotesToBraces(document.get());
    TVLTextDoc::convertBracesToInlineNotes(document.get());
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_s), document.get(), QTextCursor(), u"["_s,
                                   u"]"_s);
    TVLTextDoc::embraceInlineNotes(QTextCharFormat(), document.get(), QTextCursor(), u"["_s,
                                   u"]"_s);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(document.get(), QTextCursor(), true);
    TTextDoc::removeAnnotations(document.get());
    TTextDoc::removeInlineFootnotes(document.get());
    TTextDoc::removeInspectorFootnotes(document.get());
    QCOMPARE(changes.count(), 0);
}

void TstTextNotes::runsAreRemoved_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("withoutAnnotations");
    QTest::addColumn<QString>("withoutFootnotes");
    QTest::newRow("none") << u"a\n\nb"_s << u"a\n\nb"_s << u"a\n\nb"_s;
    QTest::newRow("within") << u"a<a:b>c<f:d>e"_s << u"ac<f:d>e"_s << u"a<a:b>ce"_s;
    QTest::newRow("both kinds") << u"a<a,f:b>c"_s << u"ac"_s << u"ac"_s;
    QTest::newRow("over formats") << u"a<a:b><a,b:c>d"_s << u"ad"_s << u"a<a:b><a,b:c>d"_s;
    QTest::newRow("all") << u"<a:ab>"_s << u""_s << u"<a:ab>"_s;
    QTest::newRow("a paragraph goes") << u"a\n<a:b>\nc"_s << u"a\nc"_s << u"a\n<a:b>\nc"_s;
    QTest::newRow("the first one goes") << u"<a:a>\nb"_s << u"b"_s << u"<a:a>\nb"_s;
    QTest::newRow("the last one goes") << u"a\n<a:b>"_s << u"a"_s << u"a\n<a:b>"_s;
    QTest::newRow("several go") << u"a\n<a:b\nc>\nd"_s << u"a\nd"_s << u"a\n<a:b>\n<a:c>\nd"_s;
    QTest::newRow("the last ones go") << u"a\n<a:b\nc>"_s << u"a"_s << u"a\n<a:b>\n<a:c>"_s;
    QTest::newRow("all go") << u"<a:a\nb>"_s << u""_s << u"<a:a>\n<a:b>"_s;
    QTest::newRow("empty ones stay")
        << u"a\n\n<a:b>\n\nc"_s << u"a\n\n\nc"_s << u"a\n\n<a:b>\n\nc"_s;
    QTest::newRow("parts of paragraphs") << u"a<a:b\nc>d"_s << u"a\nd"_s << u"a<a:b>\n<a:c>d"_s;
    QTest::newRow("picture") << u"a<a,p:x.png>b"_s << u"ab"_s << u"a<a,p:x.png>b"_s;
}

void TstTextNotes::runsAreRemoved()
{
    QFETCH(const QString, text);
    const auto annotated = makeText(text);
    TTextDoc::removeAnnotations(annotated.get());
    QTEST(describeText(annotated.get()), "withoutAnnotations");
    const auto footnoted = makeText(text);
    TTextDoc::removeInlineFootnotes(footnoted.get());
    QTEST(describeText(footnoted.get()), "withoutFootnotes");
}

void TstTextNotes::runsInTablesAreRemoved()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    const QTextCharFormat format = markedFormat(u"a"_s);
    cursor.insertText(u"a"_s, format);
    const QTextTable *table = cursor.insertTable(1, 3);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"b"_s, format);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"c\nd"_s, format);
    QTextCursor last = table->cellAt(0, 2).firstCursorPosition();
    last.insertText(u"e\n"_s, QTextCharFormat());
    last.insertText(u"f"_s, format);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u"g"_s, format);
    TTextDoc::removeAnnotations(&document);
    QCOMPARE(describeText(&document), u"\n[]\n[]\n[e]\n"_s);
}

void TstTextNotes::whatFollowsARemovedParagraphKeepsItsFormat()
{
    const auto document = makeText(u"a\n<a:b>\nc\n<a:d>"_s);
    int indent = 1;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format;
        format.setIndent(indent++);
        QTextCursor(block).setBlockFormat(format);
    }
    TTextDoc::removeAnnotations(document.get());
    QCOMPARE(describeText(document.get()), u"a\nc"_s);
    QCOMPARE(document->begin().blockFormat().indent(), 1);
    QCOMPARE(document->begin().next().blockFormat().indent(), 3);
}

void TstTextNotes::removingIsOneUndoStep()
{
    const QString text = u"a<a:b>\n<a:c\nd>\n<f:e>f"_s;
    const auto document = makeText(text);
    TTextDoc::removeAnnotations(document.get());
    document->undo();
    QCOMPARE(describeText(document.get()), u"a<a:b>\n<a:c>\n<a:d>\n<f:e>f"_s);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextNotes::inspectorNotesAreRemovedByKind()
{
    const auto document = makeText(u"<c1:a><n2:b><b,c3:c>d"_s);
    TTextDoc::removeInspectorComments(document.get());
    QCOMPARE(describeText(document.get()), u"a<n2:b><b:c>d"_s);
    TTextDoc::removeInspectorFootnotes(document.get());
    QCOMPARE(describeText(document.get()), u"ab<b:c>d"_s);
}

void TstTextNotes::annotationsAreListed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Texts>("annotations");
    QTest::newRow("none") << u"a<f:b>"_s << Texts();
    QTest::newRow("some") << u"a<a:b>c\n<a:d>"_s << Texts({{1, u"b"_s}, {4, u"d"_s}});
    QTest::newRow("over formats") << u"<a:a><a,b:b><a,f:c>"_s << Texts({{0, u"abc"_s}});
    QTest::newRow("over paragraphs") << u"x<a:a\nb>"_s << Texts({{1, u"a\nb"_s}});
}

void TstTextNotes::annotationsAreListed()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    const QMap<int, QTextDocumentFragment> found = TTextDoc::annotationsMap(document.get());
    QMap<int, QString> texts;
    for (auto it = found.cbegin(); it != found.cend(); ++it)
        texts.insert(it.key(), it->toPlainText());
    QTEST(texts, "annotations");
}

void TstTextNotes::missingDocumentsHaveNoNotes()
{
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_s), nullptr, QTextCursor(), u"["_s, u"]"_s);
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(nullptr, QTextCursor(), true);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(nullptr, QTextCursor(), true);
    TVLTextDoc::convertInlineNotesToBraces(nullptr);
    TVLTextDoc::convertBracesToInlineNotes(nullptr);
    TTextDoc::removeAnnotations(nullptr);
    TTextDoc::removeInlineFootnotes(nullptr);
    TTextDoc::removeInspectorComments(nullptr);
    TTextDoc::removeInspectorFootnotes(nullptr);
    QVERIFY(TTextDoc::annotationsMap(nullptr).isEmpty());
}

TVL_TEST(TstTextNotes)
#include "tst_textnotes.moc"
