#include "TestMain.h"
#include "TextChecks.h"

#include "TTextDoc.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"

#include <QImage>
#include <QTest>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

namespace {

std::unique_ptr<QTextDocument> cloneOf(const QTextDocument &document)
{
    return std::unique_ptr<QTextDocument>(TTextDoc::cloneDocumentQtStyle(&document, nullptr));
}

QStringList partsOf(const QTextDocument *document, const QString &separator,
                    Qt::SplitBehavior behavior = Qt::KeepEmptyParts)
{
    QStringList texts;
    for (const auto &part : TTextDoc::split(document, separator, behavior))
        texts.append(describeText(part.get()));
    return texts;
}

QVariant pictureOf(const QTextDocument &document, const QString &name)
{
    return document.resource(QTextDocument::ImageResource, QUrl(name));
}

void addPicture(QTextDocument *document, const QString &name, const QVariant &picture)
{
    document->addResource(QTextDocument::ImageResource, QUrl(name), picture);
}

QString plainText(const QString &text)
{
    QTextDocument document;
    QTextCursor(&document).insertText(text);
    return TTextDoc::toPlainText(&document);
}

/** Whether a document shows the pictures of another one for each picture that it names. */
bool hasPicturesOf(const QTextDocument &document, const QTextDocument &original)
{
    const QStringList names = TTextDoc::imageResourceIds(&document);
    return std::all_of(names.begin(), names.end(), [&](const QString &name) {
        return pictureOf(document, name).isValid()
            && pictureOf(document, name) == pictureOf(original, name);
    });
}

/** A list or table has another number in each document. */
QTextBlockFormat withoutNumber(QTextBlockFormat format)
{
    format.clearProperty(QTextFormat::ObjectIndex);
    return format;
}

QTextCursor endOf(QTextDocument *document)
{
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    return cursor;
}

} // namespace

class TstTTextDoc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCloneIsLikeItsOriginal();
    void aCloneOfAnEmptyTextIsLikeItsOriginal_data();
    void aCloneOfAnEmptyTextIsLikeItsOriginal();
    void aCloneHasTheDocumentsSettings_data();
    void aCloneHasTheDocumentsSettings();
    void aCloneHasPicturesOfAnyKind();
    void aCloneIsIndependent();
    void aCloneBelongsToItsParent();
    void aCloneStartsWithoutHistory();
    void plainTextHasNoSpecialCharacters_data();
    void plainTextHasNoSpecialCharacters();
    void textIsSplitAtSeparators_data();
    void textIsSplitAtSeparators();
    void emptyPartsCanBeSkipped_data();
    void emptyPartsCanBeSkipped();
    void partsKeepTheirFormats();
    void listsAndPicturesSurviveSplitting();
    void tablesAreNotCut();
    void joinedPartsAreTheWhole();
    void theMostCommonFormatsAreFound();
    void marksAreNoCommonFormat();
    void anEmptyTextHasTheFormatsItIsWrittenIn();
    void propertiesAreCleared_data();
    void propertiesAreCleared();
    void picturesAreNamedOnce();
    void missingDocumentsAreEmptyOnes();

    void aDocumentIsAppendedWithItsFormats();
    void nothingButTheDocumentIsInserted();
    void anEmptyDocumentAppendsNothing();
    void textIsAppendedWithinAParagraph_data();
    void textIsAppendedWithinAParagraph();
    void theFirstParagraphsFormatDependsOnTheCursors();
    void selectedTextIsReplaced();
    void picturesComeAlong();
    void anotherPictureOfTheSameNameStays();
    void aDocumentCanBeAppendedToItself();
    void appendingIsOneUndoStep();
    void aListGoesOnOnlyInItself();
};

// --- Clones

void TstTTextDoc::aCloneIsLikeItsOriginal()
{
    for (quint32 seed = 1; seed <= 500; ++seed) {
        const auto document = makeRandomRichText(seed);
        const auto clone = cloneOf(*document);
        const QString difference = differenceOfTexts(*document, *clone);
        QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_qs.arg(seed).arg(difference)));
        QVERIFY(hasPicturesOf(*clone, *document));
        QVERIFY(!document->isModified());
        QVERIFY(!clone->isModified());
    }
}

void TstTTextDoc::aCloneOfAnEmptyTextIsLikeItsOriginal_data()
{
    QTest::addColumn<bool>("isFormatted");
    QTest::addColumn<bool>("isListItem");
    QTest::newRow("plain") << false << false;
    QTest::newRow("formatted") << true << false;
    QTest::newRow("list item") << false << true;
    QTest::newRow("formatted list item") << true << true;
}

void TstTTextDoc::aCloneOfAnEmptyTextIsLikeItsOriginal()
{
    QFETCH(const bool, isFormatted);
    QFETCH(const bool, isListItem);
    QTextDocument document;
    QTextCursor cursor(&document);
    if (isFormatted) {
        QTextBlockFormat format;
        format.setAlignment(Qt::AlignRight);
        cursor.setBlockFormat(format);
        cursor.setBlockCharFormat(markedFormat(u"b"_qs));
    }
    if (isListItem)
        cursor.createList(QTextListFormat::ListDecimal);
    const auto clone = cloneOf(document);
    QCOMPARE(differenceOfTexts(document, *clone), QString());
    QVERIFY(clone->isEmpty());
}

void TstTTextDoc::aCloneHasTheDocumentsSettings_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << u"abc"_qs;
    QTest::newRow("empty") << u""_qs;
}

void TstTTextDoc::aCloneHasTheDocumentsSettings()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    document->setMetaInformation(QTextDocument::DocumentTitle, u"Title"_qs);
    document->setMetaInformation(QTextDocument::DocumentUrl, u"https://example.org"_qs);
    document->setDefaultFont(QFont(u"Some Serif"_qs, 17));
    document->setDocumentMargin(13);
    document->setIndentWidth(21);
    document->setBaseUrl(QUrl(u"https://example.org/base/"_qs));
    document->setDefaultCursorMoveStyle(Qt::VisualMoveStyle);
    document->setPageSize(QSizeF(300, 400));
    QTextOption option(Qt::AlignRight);
    option.setTabStopDistance(33);
    option.setUseDesignMetrics(true);
    document->setDefaultTextOption(option);
    QTextFrameFormat frameFormat = document->rootFrame()->frameFormat();
    frameFormat.setPadding(5);
    document->rootFrame()->setFrameFormat(frameFormat);

    const auto clone = cloneOf(*document);
    QCOMPARE(clone->metaInformation(QTextDocument::DocumentTitle), u"Title"_qs);
    QCOMPARE(clone->metaInformation(QTextDocument::DocumentUrl), u"https://example.org"_qs);
    QCOMPARE(clone->defaultFont(), document->defaultFont());
    QCOMPARE(clone->documentMargin(), 13);
    QCOMPARE(clone->indentWidth(), 21);
    QCOMPARE(clone->baseUrl(), document->baseUrl());
    QCOMPARE(clone->defaultCursorMoveStyle(), Qt::VisualMoveStyle);
    QVERIFY(clone->useDesignMetrics());
    QCOMPARE(clone->pageSize(), QSizeF(300, 400));
    QCOMPARE(clone->defaultTextOption().alignment(), Qt::AlignRight);
    QCOMPARE(clone->defaultTextOption().tabStopDistance(), 33);
    QCOMPARE(clone->rootFrame()->frameFormat(), document->rootFrame()->frameFormat());
}

void TstTTextDoc::aCloneHasPicturesOfAnyKind()
{
    const auto document = makeText(u"<p:bytes><p:image><p:none>"_qs);
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    addPicture(document.get(), u"bytes"_qs, QByteArray("abc"));
    addPicture(document.get(), u"image"_qs, image);
    const auto clone = cloneOf(*document);
    QCOMPARE(pictureOf(*clone, u"bytes"_qs).toByteArray(), QByteArray("abc"));
    QCOMPARE(pictureOf(*clone, u"image"_qs).value<QImage>(), image);
    QVERIFY(!pictureOf(*clone, u"none"_qs).isValid());
}

void TstTTextDoc::aCloneIsIndependent()
{
    const auto document = makeText(u"abc"_qs);
    const auto clone = cloneOf(*document);
    endOf(clone.get()).insertText(u"d"_qs);
    QCOMPARE(document->toPlainText(), u"abc"_qs);
    QCOMPARE(clone->toPlainText(), u"abcd"_qs);
}

void TstTTextDoc::aCloneBelongsToItsParent()
{
    const auto document = makeText(u"abc"_qs);
    QObject parent;
    QCOMPARE(TTextDoc::cloneDocumentQtStyle(document.get(), &parent)->parent(), &parent);
    QCOMPARE(TTextDoc::cloneDocumentQtStyle(nullptr, &parent), nullptr);
}

void TstTTextDoc::aCloneStartsWithoutHistory()
{
    const auto document = makeText(u"abc"_qs);
    QVERIFY(!cloneOf(*document)->isUndoAvailable());
    QVERIFY(cloneOf(*document)->isUndoRedoEnabled());
    document->setUndoRedoEnabled(false);
    QVERIFY(!cloneOf(*document)->isUndoRedoEnabled());
    document->setModified(true);
    QVERIFY(cloneOf(*document)->isModified());
}

// --- Plain text

void TstTTextDoc::plainTextHasNoSpecialCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::newRow("empty") << u""_qs << u""_qs;
    QTest::newRow("paragraphs") << u"a\nb\n\nc\n"_qs << u"a\nb\n\nc\n"_qs;
    QTest::newRow("line ends") << u"a\u2028b"_qs << u"a\nb"_qs;
    QTest::newRow("no-break space") << u"a\u00a0b"_qs << u"a b"_qs;
    QTest::newRow("picture") << u"a\ufffcb"_qs << u"ab"_qs;
    QTest::newRow("others stay") << u"a\tb\u00ad\u2014\U0001f600"_qs
                                 << u"a\tb\u00ad\u2014\U0001f600"_qs;
}

void TstTTextDoc::plainTextHasNoSpecialCharacters()
{
    QFETCH(const QString, text);
    QFETCH(const QString, plain);
    QCOMPARE(plainText(text), plain);
    QCOMPARE(TTextDoc::toPlainText(text), plain);
    QCOMPARE(TTextDoc::toPlainText(QString(text).replace(u'\n', QChar::ParagraphSeparator)), plain);
}

// --- Splitting

void TstTTextDoc::textIsSplitAtSeparators_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("parts");
    const auto row = [](const char *name, const QString &text, const QString &separator,
                        const QStringList &parts) {
        QTest::newRow(name) << text << separator << parts;
    };
    row("none", u"abc"_qs, u"#"_qs, {u"abc"_qs});
    row("empty text", u""_qs, u"#"_qs, {u""_qs});
    row("empty separator", u"abc"_qs, u""_qs, {u"abc"_qs});
    row("within a paragraph", u"ab#cd"_qs, u"#"_qs, {u"ab"_qs, u"cd"_qs});
    row("on its own line", u"ab\n#\ncd"_qs, u"#"_qs, {u"ab"_qs, u"cd"_qs});
    row("at a line's end", u"ab#\ncd"_qs, u"#"_qs, {u"ab"_qs, u"cd"_qs});
    row("at a line's start", u"ab\n#cd"_qs, u"#"_qs, {u"ab"_qs, u"cd"_qs});
    row("only one line end goes", u"ab\n\n#\n\ncd"_qs, u"#"_qs, {u"ab\n"_qs, u"\ncd"_qs});
    row("line ends within paragraphs", u"ab\u2028#\u2028cd"_qs, u"#"_qs, {u"ab"_qs, u"cd"_qs});
    row("at both ends", u"#ab#"_qs, u"#"_qs, {u""_qs, u"ab"_qs, u""_qs});
    row("side by side", u"a##b"_qs, u"#"_qs, {u"a"_qs, u""_qs, u"b"_qs});
    row("on lines side by side", u"a\n#\n#\nb"_qs, u"#"_qs, {u"a"_qs, u""_qs, u"b"_qs});
    row("nothing else", u"#"_qs, u"#"_qs, {u""_qs, u""_qs});
    row("longer", u"a***b**c"_qs, u"***"_qs, {u"a"_qs, u"b**c"_qs});
    row("repeating itself", u"a***b"_qs, u"**"_qs, {u"a"_qs, u"*b"_qs});
    row("over formats", u"a*<b:*>*b"_qs, u"***"_qs, {u"a"_qs, u"b"_qs});
    row("case", u"aXbxc"_qs, u"x"_qs, {u"aXb"_qs, u"c"_qs});
    row("over paragraphs", u"a\n*\n*\nb"_qs, u"*\n*"_qs, {u"a"_qs, u"b"_qs});
    row("over paragraphs with carriage returns", u"a*\n*b"_qs, u"*\r\n*"_qs, {u"a"_qs, u"b"_qs});
    row("paragraph ends alone", u"a\n\nb"_qs, u"\n\n"_qs, {u"a"_qs, u"b"_qs});
}

void TstTTextDoc::textIsSplitAtSeparators()
{
    QFETCH(const QString, text);
    QFETCH(const QString, separator);
    QFETCH(const QStringList, parts);
    const auto document = makeText(text);
    QCOMPARE(partsOf(document.get(), separator), parts);
    QCOMPARE(describeText(document.get()), text);
}

void TstTTextDoc::emptyPartsCanBeSkipped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("nothing") << u""_qs << QStringList();
    QTest::newRow("only separators") << u"##"_qs << QStringList();
    QTest::newRow("at both ends") << u"#\nab\n#"_qs << QStringList(u"ab"_qs);
    QTest::newRow("blanks and paragraphs") << u"a#\n \n\n#b"_qs << QStringList({u"a"_qs, u"b"_qs});
    QTest::newRow("pictures are something")
        << u"a#<p:x.png>#b"_qs << QStringList({u"a"_qs, u"<p:x.png>"_qs, u"b"_qs});
}

void TstTTextDoc::emptyPartsCanBeSkipped()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(partsOf(document.get(), u"#"_qs, Qt::SkipEmptyParts), "parts");
}

void TstTTextDoc::partsKeepTheirFormats()
{
    const auto document = makeText(u"a<a:b>\nc\n#\n<c1:d>\n<b:e>#f\ng"_qs);
    document->setDefaultFont(QFont(u"Some Serif"_qs, 17));
    int indent = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format;
        format.setIndent(indent++);
        QTextCursor(block).setBlockFormat(format);
    }
    const auto parts = TTextDoc::split(document.get(), u"#"_qs);
    const QStringList texts = {u"a<a:b>\nc"_qs, u"<c1:d>\n<b:e>"_qs, u"f\ng"_qs};
    const QList<int> indents[] = {{0, 1}, {3, 4}, {4, 5}};
    QCOMPARE(parts.size(), 3U);
    for (int i = 0; i < 3; ++i) {
        const QTextDocument &part = *parts[size_t(i)];
        QCOMPARE(describeText(&part), texts[i]);
        QCOMPARE(part.defaultFont(), document->defaultFont());
        QList<int> found;
        for (QTextBlock block = part.begin(); block.isValid(); block = block.next())
            found.append(block.blockFormat().indent());
        QCOMPARE(found, indents[i]);
        QVERIFY(!part.isUndoAvailable());
        QVERIFY(part.isUndoRedoEnabled());
    }
}

void TstTTextDoc::listsAndPicturesSurviveSplitting()
{
    const auto document = makeText(u"one\ntwo\n#\nthree\n<p:x.png>"_qs);
    addPicture(document.get(), u"x.png"_qs, QByteArray("abc"));
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListUpperRoman);
    const auto parts = TTextDoc::split(document.get(), u"#"_qs);
    QCOMPARE(parts.size(), 2U);
    for (const auto &part : parts) {
        const QTextList *list = part->begin().textList();
        QVERIFY(list);
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->format().style(), QTextListFormat::ListUpperRoman);
    }
    QCOMPARE(pictureOf(*parts[1], u"x.png"_qs).toByteArray(), QByteArray("abc"));
}

void TstTTextDoc::tablesAreNotCut()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"a#b"_qs);
    const QTextTable *table = cursor.insertTable(1, 2);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"c#d"_qs);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"e\n#\nf"_qs);
    endOf(&document).insertText(u"g#h"_qs);
    QCOMPARE(partsOf(&document, u"#"_qs),
             QStringList({u"a"_qs, u"b\n[c#d]\n[e\n#\nf]\ng"_qs, u"h"_qs}));
}

void TstTTextDoc::joinedPartsAreTheWhole()
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        // Random text has small letters only.
        const auto first = makeRandomRichText(seed);
        const auto second = makeRandomRichText(seed + 1000);
        QTextDocument joined;
        TVLTextDoc::appendDocument(QTextCursor(&joined), first.get());
        endOf(&joined).insertBlock(QTextBlockFormat(), QTextCharFormat());
        endOf(&joined).insertText(u"#"_qs, QTextCharFormat());
        endOf(&joined).insertBlock(QTextBlockFormat(), QTextCharFormat());
        TVLTextDoc::appendDocument(endOf(&joined), second.get());
        const auto parts = TTextDoc::split(&joined, u"#"_qs);
        QCOMPARE(parts.size(), 2U);
        // Where a text is empty the paragraph that was there keeps its format.
        if (!first->isEmpty()) {
            const QString difference = differenceOfTexts(*first, *parts[0]);
            QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_qs.arg(seed).arg(difference)));
        }
        if (!second->isEmpty()) {
            const QString difference = differenceOfTexts(*second, *parts[1]);
            QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_qs.arg(seed).arg(difference)));
        }
        QVERIFY(hasPicturesOf(*parts[0], *first));
        QVERIFY(hasPicturesOf(*parts[1], *second));
    }
}

// --- Formats

void TstTTextDoc::theMostCommonFormatsAreFound()
{
    const auto document = makeText(u"a<b:bcdef>\nghi<p:xyz.png>\nj"_qs);
    QTextBlockFormat format;
    format.setIndent(2);
    QTextCursor(document->begin()).setBlockFormat(format);
    QTextCharFormat charFormat;
    QTextBlockFormat blockFormat;
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, &blockFormat);
    QCOMPARE(charFormat, QTextCharFormat());
    QCOMPARE(blockFormat.indent(), 2);
    endOf(document.get()).insertText(u"klm"_qs, markedFormat(u"b"_qs));
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, nullptr);
    QCOMPARE(charFormat, markedFormat(u"b"_qs));
    TTextDoc::findMostCommonProperties(document.get(), nullptr, nullptr);
}

void TstTTextDoc::marksAreNoCommonFormat()
{
    const auto document = makeText(u"<a,b:ab><f,b:cd><b,c1:ef><b,ltavellnk://1:gh>ijklm"_qs);
    QTextCharFormat charFormat;
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, nullptr);
    QCOMPARE(charFormat, markedFormat(u"b"_qs));
}

void TstTTextDoc::anEmptyTextHasTheFormatsItIsWrittenIn()
{
    QTextDocument document;
    QTextBlockFormat format;
    format.setIndent(2);
    QTextCursor cursor(&document);
    cursor.setBlockFormat(format);
    cursor.setBlockCharFormat(markedFormat(u"b"_qs));
    QTextCharFormat charFormat;
    QTextBlockFormat blockFormat;
    TTextDoc::findMostCommonProperties(&document, &charFormat, &blockFormat);
    QCOMPARE(charFormat, markedFormat(u"b"_qs));
    QCOMPARE(blockFormat.indent(), 2);
    TTextDoc::findMostCommonProperties(nullptr, &charFormat, &blockFormat);
    QCOMPARE(charFormat, QTextCharFormat());
    QCOMPARE(blockFormat.indent(), 0);
}

void TstTTextDoc::propertiesAreCleared_data()
{
    QTest::addColumn<QString>("marks");
    QTest::addColumn<bool>("onlyEqual");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one") << u"a"_qs << true << u"ab<c1:c>\n<b:d><f:e>"_qs;
    QTest::newRow("one of any value") << u"a"_qs << false << u"ab<c1:c>\n<b:d><f:e>"_qs;
    QTest::newRow("several") << u"a,b,f"_qs << true << u"ab<c1:c>\nde"_qs;
    QTest::newRow("other value") << u"c2"_qs << true << u"a<a:b>c\n<a,b:d><f:e>"_qs;
}

void TstTTextDoc::propertiesAreCleared()
{
    QFETCH(const QString, marks);
    QFETCH(const bool, onlyEqual);
    const QString text = u"a<a:b><c1:c>\n<a,b:d><f:e>"_qs;
    const auto document = makeText(text);
    TTextDoc::clearAll(document.get(), markedFormat(marks), onlyEqual);
    QTEST(describeText(document.get()), "expected");
    document->undo();
    QCOMPARE(describeText(document.get()), text);
}

void TstTTextDoc::picturesAreNamedOnce()
{
    const auto document = makeText(u"<p:b.png>x<p:a.png>\n<p:b.png><a,p:c.png>"_qs);
    QCOMPARE(TTextDoc::imageResourceIds(document.get()),
             QStringList({u"b.png"_qs, u"a.png"_qs, u"c.png"_qs}));
}

void TstTTextDoc::missingDocumentsAreEmptyOnes()
{
    QCOMPARE(TTextDoc::toPlainText(nullptr), QString());
    QCOMPARE(TTextDoc::imageResourceIds(nullptr), QStringList());
    QCOMPARE(partsOf(nullptr, u"#"_qs), QStringList(QString()));
    QCOMPARE(partsOf(nullptr, u"#"_qs, Qt::SkipEmptyParts), QStringList());
    TTextDoc::clearAll(nullptr, markedFormat(u"b"_qs), false);
    TVLTextDoc::appendDocument(QTextCursor(), nullptr);
}

// --- Appending

void TstTTextDoc::aDocumentIsAppendedWithItsFormats()
{
    for (quint32 seed = 1; seed <= 500; ++seed) {
        const auto document = makeRandomRichText(seed);
        if (document->isEmpty())
            continue;
        QTextDocument target;
        TVLTextDoc::appendDocument(QTextCursor(&target), document.get());
        // A paragraph that stands at the very start keeps the format it is written in.
        QTextCursor(&target).setBlockCharFormat(document->begin().charFormat());
        const QString difference = differenceOfTexts(*document, target);
        QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_qs.arg(seed).arg(difference)));
        QVERIFY(hasPicturesOf(target, *document));
    }
}

void TstTTextDoc::nothingButTheDocumentIsInserted()
{
    for (quint32 seed = 1; seed <= 500; ++seed) {
        const auto document = makeRandomRichText(seed);
        const auto target = makeRandomRichText(seed + 1000);
        const QString before = target->toRawText();
        // Any place between two characters, in tables, too.
        QTextCursor cursor(target.get());
        cursor.setPosition(int(seed * 7919 % uint(before.size() + 1)));
        const qsizetype position = cursor.position();
        QList<QMap<int, QVariant>> formats;
        for (QTextBlock block = document->begin().next(); block.isValid(); block = block.next())
            formats.append(withoutNumber(block.blockFormat()).properties());
        TVLTextDoc::appendDocument(cursor, document.get());
        QCOMPARE(target->toRawText(),
                 before.left(position) + document->toRawText() + before.mid(position));
        QTextBlock block = target->findBlock(int(position));
        for (const auto &format : std::as_const(formats)) {
            block = block.next();
            QCOMPARE(withoutNumber(block.blockFormat()).properties(), format);
        }
        target->undo();
        QCOMPARE(target->toRawText(), before);
    }
}

void TstTTextDoc::anEmptyDocumentAppendsNothing()
{
    const auto target = makeText(u"a<b:b>"_qs);
    QTextDocument empty;
    QTextBlockFormat format;
    format.setIndent(3);
    QTextCursor(&empty).setBlockFormat(format);
    TVLTextDoc::appendDocument(endOf(target.get()), &empty);
    TVLTextDoc::appendDocument(endOf(target.get()), nullptr);
    QCOMPARE(describeText(target.get()), u"a<b:b>"_qs);
    QCOMPARE(target->begin().blockFormat().indent(), 0);
    QVERIFY(!target->isUndoAvailable());
}

void TstTTextDoc::textIsAppendedWithinAParagraph_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("expected");
    QTest::newRow("at the end") << u"<a:x>y"_qs << 4 << u"ab<b:cd><a:x>y"_qs;
    QTest::newRow("at the start") << u"<a:x>y"_qs << 0 << u"<a:x>yab<b:cd>"_qs;
    QTest::newRow("in a run") << u"<a:x>y"_qs << 3 << u"ab<b:c><a:x>y<b:d>"_qs;
    QTest::newRow("paragraphs") << u"x\n\ny"_qs << 3 << u"ab<b:c>x\n\ny<b:d>"_qs;
}

void TstTTextDoc::textIsAppendedWithinAParagraph()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    const auto target = makeText(u"ab<b:cd>"_qs);
    QTextCursor cursor(target.get());
    cursor.setPosition(position);
    TVLTextDoc::appendDocument(cursor, makeText(text).get());
    QTEST(describeText(target.get()), "expected");
}

void TstTTextDoc::theFirstParagraphsFormatDependsOnTheCursors()
{
    const auto document = makeText(u"x\ny"_qs);
    QTextBlockFormat format;
    format.setIndent(3);
    QTextCursor(document->begin()).setBlockFormat(format);
    const auto target = makeText(u"a\n\nb"_qs);
    TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    QTextCursor cursor(target.get());
    cursor.setPosition(2);
    TVLTextDoc::appendDocument(cursor, document.get());
    QList<int> indents;
    for (QTextBlock block = target->begin(); block.isValid(); block = block.next())
        indents.append(block.blockFormat().indent());
    QCOMPARE(describeText(target.get()), u"a\nx\ny\nbx\ny"_qs);
    QCOMPARE(indents, QList<int>({0, 3, 0, 0, 0}));
}

void TstTTextDoc::selectedTextIsReplaced()
{
    const auto target = makeText(u"a<b:b>c"_qs);
    QTextCursor cursor(target.get());
    cursor.setPosition(1);
    cursor.setPosition(3, QTextCursor::KeepAnchor);
    TVLTextDoc::appendDocument(cursor, makeText(u"x"_qs).get());
    QCOMPARE(describeText(target.get()), u"ax"_qs);
}

void TstTTextDoc::picturesComeAlong()
{
    const auto document = makeText(u"<p:x.png><p:missing.png>"_qs);
    addPicture(document.get(), u"x.png"_qs, QByteArray("abc"));
    QTextDocument target;
    TVLTextDoc::appendDocument(QTextCursor(&target), document.get());
    TVLTextDoc::appendDocument(endOf(&target), document.get());
    QCOMPARE(pictureOf(target, u"x.png"_qs).toByteArray(), QByteArray("abc"));
    QCOMPARE(TTextDoc::imageResourceIds(&target), QStringList({u"x.png"_qs, u"missing.png"_qs}));
}

void TstTTextDoc::anotherPictureOfTheSameNameStays()
{
    const auto target = makeText(u"<p:x.png>"_qs);
    addPicture(target.get(), u"x.png"_qs, QByteArray("old"));
    const auto document = makeText(u"<p:x.png>y<b,p:x.png>z"_qs);
    addPicture(document.get(), u"x.png"_qs, QByteArray("new"));
    for (int i = 0; i < 2; ++i)
        TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    const QStringList names = TTextDoc::imageResourceIds(target.get());
    QCOMPARE(names.size(), 2);
    QCOMPARE(pictureOf(*target, names.at(0)).toByteArray(), QByteArray("old"));
    QCOMPARE(pictureOf(*target, names.at(1)).toByteArray(), QByteArray("new"));
    QCOMPARE(describeText(target.get()),
             u"<p:x.png%1>y<b,p:%1>z<p:%1>y<b,p:%1>z"_qs.arg(names.at(1)));
    // The original is as it was.
    QCOMPARE(describeText(document.get()), u"<p:x.png>y<b,p:x.png>z"_qs);
}

void TstTTextDoc::aDocumentCanBeAppendedToItself()
{
    const auto document = makeText(u"a<b:b>\nc"_qs);
    TVLTextDoc::appendDocument(endOf(document.get()), document.get());
    QCOMPARE(describeText(document.get()), u"a<b:b>\nca<b:b>\nc"_qs);
}

void TstTTextDoc::appendingIsOneUndoStep()
{
    for (quint32 seed = 1; seed <= 100; ++seed) {
        const auto target = makeText(u"<b:ab>\n"_qs);
        TVLTextDoc::appendDocument(endOf(target.get()), makeRandomRichText(seed).get());
        const QString appended = describeText(target.get());
        if (target->isUndoAvailable())
            target->undo();
        QCOMPARE(describeText(target.get()), u"<b:ab>\n"_qs);
        QVERIFY(!target->isUndoAvailable());
        target->redo();
        QCOMPARE(describeText(target.get()), appended);
    }
}

void TstTTextDoc::aListGoesOnOnlyInItself()
{
    const auto document = makeText(u"x\ny"_qs);
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListDisc);
    const auto target = makeText(u"a\n"_qs);
    cursor = QTextCursor(target.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListDecimal);
    TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    const QTextBlock first = target->begin();
    QCOMPARE(describeText(target.get()), u"a\nx\ny"_qs);
    QCOMPARE(first.textList()->count(), 1);
    QCOMPARE(first.next().textList()->count(), 2);
    QCOMPARE(first.next().textList()->format().style(), QTextListFormat::ListDisc);
}

TVL_TEST(TstTTextDoc)
#include "tst_ttextdoc.moc"
