#include "TestMain.h"
#include "TextChecks.h"

#include "TVLInlineMarkup.h"
#include "TVLTextFormat.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

/** Texts that look like marks or parts of them, with any number of backslashes. */
QString randomMarkText(QRandomGenerator *random)
{
    static const QString pieces[] = {
        u"{annotation|"_s,
        u"|annotation}"_s,
        u"{footnote|"_s,
        u"|footnote}"_s,
        u"{"_s,
        u"|"_s,
        u"}"_s,
        u"\\"_s,
        u"\\\\"_s,
        u"annotation"_s,
        u"footnote"_s,
        u"{\\annotation|"_s,
        u"|\\\\footnote}"_s,
        u"x"_s,
        u" "_s,
        u"\u2028"_s,
    };
    QString text;
    for (int i = 1 + random->bounded(5); i > 0; --i)
        text += pieces[random->bounded(int(std::size(pieces)))];
    return text;
}

QTextCharFormat randomFormat(QRandomGenerator *random)
{
    QTextCharFormat format;
    const int kind = random->bounded(8);
    if (kind & 1)
        format.setProperty(TVLTextFormat::InlineAnnotation, true);
    if (kind & 2)
        format.setProperty(TVLTextFormat::InlineFootnote, true);
    if (kind & 4)
        format.setFontItalic(true);
    if (random->bounded(10) == 0)
        format.setProperty(TVLTextFormat::InlineAnnotation, false);
    if (random->bounded(4) == 0)
        TVLTextFormat::setComment(&format, {QString::number(random->bounded(3)), {}});
    return format;
}

void insertRandomRuns(QTextCursor *cursor, QRandomGenerator *random)
{
    for (int i = random->bounded(6); i > 0; --i) {
        if (random->bounded(8) == 0) {
            QTextImageFormat image;
            image.merge(randomFormat(random));
            image.setName(u"picture"_s);
            image.setWidth(3);
            cursor->insertImage(image);
        } else {
            cursor->insertText(randomMarkText(random), randomFormat(random));
        }
    }
}

std::unique_ptr<QTextDocument> randomDocument(quint32 seed)
{
    QRandomGenerator random(seed);
    auto document = std::make_unique<QTextDocument>();
    QTextCursor cursor(document.get());
    for (int block = random.bounded(4); block >= 0; --block) {
        insertRandomRuns(&cursor, &random);
        if (random.bounded(6) == 0) {
            const QTextTable *table = cursor.insertTable(1 + random.bounded(2), 2);
            QTextCursor inCell = table->cellAt(0, random.bounded(2)).firstCursorPosition();
            insertRandomRuns(&inCell, &random);
        } else if (block > 0) {
            cursor.insertBlock(QTextBlockFormat(), randomFormat(&random));
        }
    }
    return document;
}

} // namespace

class TstInlineMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesBecomeMarks_data();
    void notesBecomeMarks();
    void damagedMarksStayAsText_data();
    void damagedMarksStayAsText();
    void anyDocumentComesBack();
    void marksHaveTheFormatOfTheirRun();
    void eachDirectionIsOneUndoStep();
    void aTextWithoutMarksIsLeftAlone();
    void noDocumentIsNoTrouble();
};

void TstInlineMarkup::notesBecomeMarks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("marked");
    const auto row = [](const char *name, const QString &text, const QString &marked) {
        QTest::newRow(name) << text << marked;
    };
    row("empty", u""_s, u""_s);
    row("plain", u"one {two} | three"_s, u"one {two} | three"_s);
    row("annotation", u"a<a:b>c"_s, u"a{annotation|b|annotation}c"_s);
    row("footnote", u"a<f:b>c"_s, u"a{footnote|b|footnote}c"_s);
    row("both", u"a<a,f:b>c"_s, u"a{footnote|{annotation|b|annotation}|footnote}c"_s);
    row("annotation within a footnote", u"<f:a><a,f:b><f:c>"_s,
        u"{footnote|a{annotation|b|annotation}c|footnote}"_s);
    row("a footnote within an annotation parts it", u"<a:a><a,f:b><a:c>"_s,
        u"{annotation|a|annotation}{footnote|{annotation|b|annotation}|footnote}"
        u"{annotation|c|annotation}"_s);
    row("one after the other", u"<a:a><f:b>"_s,
        u"{annotation|a|annotation}{footnote|b|footnote}"_s);
    row("other formats do not part it", u"<a:a><a,b:b><a:c>"_s,
        u"{annotation|a<b:b>c|annotation}"_s);
    row("over a paragraph's end", u"<a:a\nb>"_s,
        u"{annotation|a|annotation}\n{annotation|b|annotation}"_s);
    row("over an empty paragraph", u"<a:a\n\nb>"_s,
        u"{annotation|a|annotation}\n\n{annotation|b|annotation}"_s);
    row("picture in an annotation", u"<a,p:x.png>y"_s, u"{annotation|<p:x.png>|annotation}y"_s);
    row("literal marks", u"{annotation|x|annotation}"_s, u"{\\annotation|x|\\annotation}"_s);
    row("literal footnote marks", u"{footnote|x|footnote}"_s, u"{\\footnote|x|\\footnote}"_s);
    row("literal marks with backslashes", u"{\\annotation|x|\\\\annotation}"_s,
        u"{\\\\annotation|x|\\\\\\annotation}"_s);
    row("nearly marks", u"{annotation} {annotations| |annotation| {ann|"_s,
        u"{annotation} {annotations| |annotation| {ann|"_s);
    row("marks are case sensitive", u"{Annotation|"_s, u"{Annotation|"_s);
    row("literal marks in a note", u"<a:{annotation|x>"_s,
        u"{annotation|{\\annotation|x|annotation}"_s);
    row("literal marks with one bar", u"{annotation|annotation}"_s,
        u"{\\annotation|\\annotation}"_s);
    row("a literal mark over two formats", u"{anno<b:tation|>"_s, u"{\\anno<b:tation|>"_s);
    row("a mark's bar after a text's brace", u"<a:{annotation>"_s,
        u"{annotation|{\\annotation|annotation}"_s);
    row("a mark's bar before a text's brace", u"<a:annotation}>"_s,
        u"{annotation|\\annotation}|annotation}"_s);
    row("a mark's bar in another kind of mark", u"<f:{annotation>"_s,
        u"{footnote|{\\annotation|footnote}"_s);
}

void TstInlineMarkup::notesBecomeMarks()
{
    QFETCH(const QString, text);
    QFETCH(const QString, marked);
    const auto document = makeText(text);
    const auto original = makeText(text);
    TVLInlineMarkup::toMarkup(document.get());
    QCOMPARE(describeText(document.get()), marked);
    TVLInlineMarkup::fromMarkup(document.get());
    QCOMPARE(differenceOfTexts(*document, *original), QString());
}

void TstInlineMarkup::damagedMarksStayAsText_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &marked, const QString &text) {
        QTest::newRow(name) << marked << text;
    };
    row("no end", u"a{annotation|b"_s, u"a{annotation|b"_s);
    row("no start", u"a|annotation}b"_s, u"a|annotation}b"_s);
    row("end first", u"|annotation}a{annotation|"_s, u"|annotation}a{annotation|"_s);
    row("two starts", u"{annotation|a{annotation|b|annotation}"_s, u"{annotation|a<a:b>"_s);
    row("two ends", u"{annotation|a|annotation}b|annotation}"_s, u"<a:a>b|annotation}"_s);
    row("other kind of end", u"{annotation|a|footnote}"_s, u"{annotation|a|footnote}"_s);
    row("end in another paragraph", u"{annotation|a\nb|annotation}"_s,
        u"{annotation|a\nb|annotation}"_s);
    row("crossed", u"{annotation|a{footnote|b|annotation}c|footnote}"_s, u"<a:a><a,f:b><f:c>"_s);
    row("footnote within an annotation", u"{annotation|a{footnote|b|footnote}|annotation}"_s,
        u"<a:a><a,f:b>"_s);
    row("nothing between", u"a{annotation||annotation}b"_s, u"ab"_s);
    row("one bar for two", u"{annotation|annotation}"_s, u"{annotation|annotation}"_s);
    row("one bar for two and an end", u"{annotation|annotation}b|annotation}"_s,
        u"<a:annotation}b>"_s);
    row("backslashes without need", u"{\\annotation|a{\\\\footnote|"_s,
        u"{annotation|a{\\footnote|"_s);
    row("cut off", u"{annotation"_s, u"{annotation"_s);
    row("only backslashes", u"{\\\\\\"_s, u"{\\\\\\"_s);
}

void TstInlineMarkup::damagedMarksStayAsText()
{
    QFETCH(const QString, marked);
    QFETCH(const QString, text);
    const auto document = makeText(marked);
    TVLInlineMarkup::fromMarkup(document.get());
    QCOMPARE(describeText(document.get()), text);
    // What was read is then kept.
    TVLInlineMarkup::toMarkup(document.get());
    TVLInlineMarkup::fromMarkup(document.get());
    QCOMPARE(describeText(document.get()), text);
}

void TstInlineMarkup::anyDocumentComesBack()
{
    for (quint32 seed = 1; seed <= 2000; ++seed) {
        const auto document = randomDocument(seed);
        const auto original = randomDocument(seed);
        TVLInlineMarkup::toMarkup(document.get());
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextCharFormat format = it.fragment().charFormat();
                QVERIFY(!format.boolProperty(TVLTextFormat::InlineAnnotation));
                QVERIFY(!format.boolProperty(TVLTextFormat::InlineFootnote));
            }
        }
        const QString marked = describeText(document.get());
        TVLInlineMarkup::fromMarkup(document.get());
        const QString difference = differenceOfTexts(*original, *document);
        QVERIFY2(
            difference.isEmpty(),
            qPrintable(u"seed %1: %2\n%3\n%4\n%5"_s.arg(seed).arg(
                difference, describeText(original.get()), marked, describeText(document.get()))));
    }
}

void TstInlineMarkup::marksHaveTheFormatOfTheirRun()
{
    const auto document = makeText(u"a<a,b:b><a,c1:c>d"_s);
    TVLInlineMarkup::toMarkup(document.get());
    QCOMPARE(describeText(document.get()), u"a<b:{annotation|b><c1:c|annotation}>d"_s);
}

void TstInlineMarkup::eachDirectionIsOneUndoStep()
{
    const QString text = u"a<a:{annotation|b>c\n<f:d><a,f:e>"_s;
    const auto document = makeText(text);
    TVLInlineMarkup::toMarkup(document.get());
    const QString marked = describeText(document.get());
    TVLInlineMarkup::fromMarkup(document.get());
    document->undo();
    QCOMPARE(describeText(document.get()), marked);
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
    document->redo();
    QCOMPARE(describeText(document.get()), marked);
}

void TstInlineMarkup::aTextWithoutMarksIsLeftAlone()
{
    const auto document = makeText(u"a {b} | <b:c> \\ annotation\n\n<c1:d>"_s);
    const QSignalSpy changes(document.get(), &QTextDocument::contentsChange);
    TVLInlineMarkup::toMarkup(document.get());
    TVLInlineMarkup::fromMarkup(document.get());
    QCOMPARE(changes.count(), 0);
    QVERIFY(!document->isModified());
    QVERIFY(!document->isUndoAvailable());
}

void TstInlineMarkup::noDocumentIsNoTrouble()
{
    TVLInlineMarkup::toMarkup(nullptr);
    TVLInlineMarkup::fromMarkup(nullptr);
}

TVL_TEST(TstInlineMarkup)
#include "tst_inlinemarkup.moc"
