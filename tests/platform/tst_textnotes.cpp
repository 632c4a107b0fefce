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
                            {noteOf(u"1"_qs, u"one"_qs, areFootnotes),
                             noteOf(u"2"_qs, u"two"_qs, areFootnotes),
                             noteOf(u"3"_qs, u"first\nsecond"_qs, areFootnotes)});
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
    QTest::newRow("none") << u"a<b:b>"_qs << u"a"_qs << u"a<b:b>"_qs;
    QTest::newRow("annotation") << u"a<a:b>c"_qs << u"a"_qs << u"a[b]c"_qs;
    QTest::newRow("over formats") << u"<a:a><a,b:b>"_qs << u"a"_qs << u"[a<b:b]>"_qs;
    QTest::newRow("over paragraphs") << u"<a:a\n\nb>"_qs << u"a"_qs << u"[a\n\nb]"_qs;
    QTest::newRow("other kind stays") << u"<a:a>b<f:c>"_qs << u"f"_qs << u"<a:a>b[c]"_qs;
    QTest::newRow("both kinds lose one") << u"<a,f:a>"_qs << u"f"_qs << u"<a:[a]>"_qs;
    QTest::newRow("only where all is borne")
        << u"<a:a><a,f:b><f:c>"_qs << u"a,f"_qs << u"<a:a>[b]<f:c>"_qs;
    QTest::newRow("picture") << u"<a,p:x.png>"_qs << u"a"_qs << u"[<p:x.png>]"_qs;
    QTest::newRow("side by side with text") << u"<a:a>b<a:c>"_qs << u"a"_qs << u"[a]b[c]"_qs;
}

void TstTextNotes::notesAreEmbraced()
{
    QFETCH(const QString, text);
    QFETCH(const QString, marks);
    const auto document = makeText(text);
    TVLTextDoc::embraceInlineNotes(markedFormat(marks), document.get(), QTextCursor(), u"["_qs,
                                   u"]"_qs);
    QTEST(describeText(document.get()), "expected");
}

void TstTextNotes::onlySelectedNotesAreEmbraced()
{
    const auto document = makeText(u"<a:abc>d<a:efg>"_qs);
    QTextCursor cursor(document.get());
    cursor.setPosition(5);
    cursor.setPosition(1, QTextCursor::KeepAnchor);
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_qs), document.get(), cursor, u"(("_qs,
                                   u"))"_qs);
    QCOMPARE(describeText(document.get()), u"<a:a>((bc))d((e))<a:fg>"_qs);
}

void TstTextNotes::commentsBecomeAnnotations_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("inBrackets");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << u"a<b:b>"_qs << false << u"a<b:b>"_qs;
    QTest::newRow("mark") << u"a<c1:b>c"_qs << false << u"ab<a:one>c"_qs;
    QTest::newRow("brackets") << u"a<c1:b>c"_qs << true << u"ab[one]c"_qs;
    QTest::newRow("format of the run's end")
        << u"<c1:a><c1,b:b>c"_qs << false << u"a<b:b><a,b:one>c"_qs;
    QTest::newRow("a link doesn't go on")
        << u"<c1,ltavellnk://1:a>"_qs << true << u"<ltavellnk://1:a>[one]"_qs;
    QTest::newRow("over paragraphs") << u"<c1:a\nb>c"_qs << true << u"a\nb[one]c"_qs;
    QTest::newRow("several lines stay in the paragraph")
        << u"<c3:a>b"_qs << true << u"a[first\u2028second]b"_qs;
    QTest::newRow("each once") << u"<c1:a>b<c1:c><c2:d>"_qs << true << u"a[one]bcd[two]"_qs;
    QTest::newRow("without text") << u"<cnone:a>b"_qs << true << u"ab"_qs;
    QTest::newRow("footnotes stay") << u"<nother:a><c1:b>"_qs << false << u"<nother:a>b<a:one>"_qs;
    QTest::newRow("on a picture") << u"<c1,p:x.png>b"_qs << false << u"<p:x.png><a:one>b"_qs;
    QTest::newRow("within an inline footnote") << u"<c1,f:a>"_qs << false << u"<f:a><a,f:one>"_qs;
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
    const auto document = textWithNotes(u"<c1:a>b<cother:c>"_qs, true);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(document.get(), QTextCursor(), false);
    QCOMPARE(describeText(document.get()), u"a<f:one>b<cother:c>"_qs);
    const auto bracketed = textWithNotes(u"<c1:a>b"_qs, true);
    TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(bracketed.get(), QTextCursor(), true);
    QCOMPARE(describeText(bracketed.get()), u"a[one]b"_qs);
}

void TstTextNotes::onlySelectedCommentsAreConverted()
{
    const auto document = textWithNotes(u"<c1:ab>c<c2:de>"_qs, false);
    QTextCursor cursor(document.get());
    cursor.setPosition(0);
    cursor.setPosition(1, QTextCursor::KeepAnchor);
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(document.get(), cursor, true);
    QCOMPARE(describeText(document.get()), u"ab[one]c<c2:de>"_qs);
}

void TstTextNotes::convertingIsOneUndoStep()
{
    const auto document = textWithNotes(u"<c1:a>b\n<c2,a:c>"_qs, false);
    const QString before = describeText(document.get());
    TVLTextDoc::convertInspectorCommentsToInlineAnnotations(document.get(), QTextCursor(), false);
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_qs), document.get(), QTextCursor(), u"["_qs,
                                   u"]"_qs);
    QCOMPARE(describeText(document.get()), u"a[one]b\n[ctwo]"_qs);
    document->undo();
    document->undo();
    QCOMPARE(describeText(document.get()), before);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextNotes::notesBecomeBraces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("braced");
    QTest::newRow("none") << u"a<b:b>"_qs << u"a<b:b>"_qs;
    QTest::newRow("annotation") << u"a<a:b>c"_qs << u"a((b))c"_qs;
    QTest::newRow("footnote") << u"a<f:b>c"_qs << u"a{{b}}c"_qs;
    QTest::newRow("annotation in a footnote") << u"<f:a><a,f:b><f:c>"_qs << u"{{a((b))c}}"_qs;
    QTest::newRow("side by side") << u"<a:a><f:b>"_qs << u"((a)){{b}}"_qs;
    QTest::newRow("over formats") << u"<a:a><a,b:b>"_qs << u"((a<b:b))>"_qs;
    QTest::newRow("paragraph by paragraph") << u"<a:a>\n<a:b>"_qs << u"((a))\n((b))"_qs;
    QTest::newRow("with single brackets") << u"<a:a (b)><f:{c} d>"_qs << u"((a (b))){{{c} d}}"_qs;
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
    QTest::newRow("single ones") << u"a (b) {c}"_qs << u"a (b) {c}"_qs;
    QTest::newRow("no end") << u"a ((b"_qs << u"a ((b"_qs;
    QTest::newRow("no start") << u"a b))"_qs << u"a b))"_qs;
    QTest::newRow("end first") << u")) a (("_qs << u")) a (("_qs;
    QTest::newRow("other kind of end") << u"((a}}"_qs << u"((a}}"_qs;
    QTest::newRow("in another paragraph") << u"((a\nb))"_qs << u"((a\nb))"_qs;
    QTest::newRow("nothing between") << u"a(())b {{}}"_qs << u"a(())b {{}}"_qs;
    QTest::newRow("balanced within") << u"((a (b (c)) d))e"_qs << u"<a:a (b (c)) d>e"_qs;
    QTest::newRow("a face within") << u"((sad :())b"_qs << u"<a:sad :(>b"_qs;
    QTest::newRow("one closing too much") << u"((a)))b"_qs << u"<a:a>)b"_qs;
    QTest::newRow("two starts") << u"((a ((b))"_qs << u"<a:a ((b>"_qs;
    QTest::newRow("several") << u"((a)) ((b)) {{c}}"_qs << u"<a:a> <a:b> <f:c>"_qs;
    QTest::newRow("several after an unbalanced one")
        << u"((a :()) ((b (c) d))"_qs << u"<a:a :(> <a:b (c) d>"_qs;
    QTest::newRow("crossed") << u"((a {{b)) c}}"_qs << u"<a:a ><a,f:b><f: c>"_qs;
    QTest::newRow("footnote in an annotation") << u"((a {{b}}))"_qs << u"<a:a ><a,f:b>"_qs;
    QTest::newRow("formats stay") << u"((a<b:b))c>"_qs << u"<a:a><a,b:b><b:c>"_qs;
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
    const QString marks[] = {u"b"_qs, u"a"_qs, u"f"_qs, u"a,f"_qs};
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
    const auto document = makeText(u"a (b) {c} <c1:d>\n<b:e>"_qs);
    const QSignalSpy changes(document.get(), &QTextDocument::contentsChange);
    TVLTextDoc::convertInlineNotesToBraces(document.get());
    TVLTextDoc::convertBracesToInlineNotes(document.get());
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_qs), document.get(), QTextCursor(), u"["_qs,
                                   u"]"_qs);
    TVLTextDoc::embraceInlineNotes(QTextCharFormat(), document.get(), QTextCursor(), u"["_qs,
                                   u"]"_qs);
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
    QTest::newRow("none") << u"a\n\nb"_qs << u"a\n\nb"_qs << u"a\n\nb"_qs;
    QTest::newRow("within") << u"a<a:b>c<f:d>e"_qs << u"ac<f:d>e"_qs << u"a<a:b>ce"_qs;
    QTest::newRow("both kinds") << u"a<a,f:b>c"_qs << u"ac"_qs << u"ac"_qs;
    QTest::newRow("over formats") << u"a<a:b><a,b:c>d"_qs << u"ad"_qs << u"a<a:b><a,b:c>d"_qs;
    QTest::newRow("all") << u"<a:ab>"_qs << u""_qs << u"<a:ab>"_qs;
    QTest::newRow("a paragraph goes") << u"a\n<a:b>\nc"_qs << u"a\nc"_qs << u"a\n<a:b>\nc"_qs;
    QTest::newRow("the first one goes") << u"<a:a>\nb"_qs << u"b"_qs << u"<a:a>\nb"_qs;
    QTest::newRow("the last one goes") << u"a\n<a:b>"_qs << u"a"_qs << u"a\n<a:b>"_qs;
    QTest::newRow("several go") << u"a\n<a:b\nc>\nd"_qs << u"a\nd"_qs << u"a\n<a:b>\n<a:c>\nd"_qs;
    QTest::newRow("the last ones go") << u"a\n<a:b\nc>"_qs << u"a"_qs << u"a\n<a:b>\n<a:c>"_qs;
    QTest::newRow("all go") << u"<a:a\nb>"_qs << u""_qs << u"<a:a>\n<a:b>"_qs;
    QTest::newRow("empty ones stay")
        << u"a\n\n<a:b>\n\nc"_qs << u"a\n\n\nc"_qs << u"a\n\n<a:b>\n\nc"_qs;
    QTest::newRow("parts of paragraphs") << u"a<a:b\nc>d"_qs << u"a\nd"_qs << u"a<a:b>\n<a:c>d"_qs;
    QTest::newRow("picture") << u"a<a,p:x.png>b"_qs << u"ab"_qs << u"a<a,p:x.png>b"_qs;
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
    const QTextCharFormat format = markedFormat(u"a"_qs);
    cursor.insertText(u"a"_qs, format);
    const QTextTable *table = cursor.insertTable(1, 3);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"b"_qs, format);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"c\nd"_qs, format);
    QTextCursor last = table->cellAt(0, 2).firstCursorPosition();
    last.insertText(u"e\n"_qs, QTextCharFormat());
    last.insertText(u"f"_qs, format);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u"g"_qs, format);
    TTextDoc::removeAnnotations(&document);
    QCOMPARE(describeText(&document), u"\n[]\n[]\n[e]\n"_qs);
}

void TstTextNotes::whatFollowsARemovedParagraphKeepsItsFormat()
{
    const auto document = makeText(u"a\n<a:b>\nc\n<a:d>"_qs);
    int indent = 1;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format;
        format.setIndent(indent++);
        QTextCursor(block).setBlockFormat(format);
    }
    TTextDoc::removeAnnotations(document.get());
    QCOMPARE(describeText(document.get()), u"a\nc"_qs);
    QCOMPARE(document->begin().blockFormat().indent(), 1);
    QCOMPARE(document->begin().next().blockFormat().indent(), 3);
}

void TstTextNotes::removingIsOneUndoStep()
{
    const QString text = u"a<a:b>\n<a:c\nd>\n<f:e>f"_qs;
    const auto document = makeText(text);
    TTextDoc::removeAnnotations(document.get());
    document->undo();
    QCOMPARE(describeText(document.get()), u"a<a:b>\n<a:c>\n<a:d>\n<f:e>f"_qs);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextNotes::inspectorNotesAreRemovedByKind()
{
    const auto document = makeText(u"<c1:a><n2:b><b,c3:c>d"_qs);
    TTextDoc::removeInspectorComments(document.get());
    QCOMPARE(describeText(document.get()), u"a<n2:b><b:c>d"_qs);
    TTextDoc::removeInspectorFootnotes(document.get());
    QCOMPARE(describeText(document.get()), u"ab<b:c>d"_qs);
}

void TstTextNotes::annotationsAreListed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Texts>("annotations");
    QTest::newRow("none") << u"a<f:b>"_qs << Texts();
    QTest::newRow("some") << u"a<a:b>c\n<a:d>"_qs << Texts({{1, u"b"_qs}, {4, u"d"_qs}});
    QTest::newRow("over formats") << u"<a:a><a,b:b><a,f:c>"_qs << Texts({{0, u"abc"_qs}});
    QTest::newRow("over paragraphs") << u"x<a:a\nb>"_qs << Texts({{1, u"a\nb"_qs}});
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
    TVLTextDoc::embraceInlineNotes(markedFormat(u"a"_qs), nullptr, QTextCursor(), u"["_qs, u"]"_qs);
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
