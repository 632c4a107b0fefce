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

using namespace Qt::StringLiterals;

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
        QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_s.arg(seed).arg(difference)));
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
        cursor.setBlockCharFormat(markedFormat(u"b"_s));
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
    QTest::newRow("text") << u"abc"_s;
    QTest::newRow("empty") << u""_s;
}

void TstTTextDoc::aCloneHasTheDocumentsSettings()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    document->setMetaInformation(QTextDocument::DocumentTitle, u"Title"_s);
    document->setMetaInformation(QTextDocument::DocumentUrl, u"https://example.org"_s);
    document->setDefaultFont(QFont(u"Some Serif"_s, 17));
    document->setDocumentMargin(13);
    document->setIndentWidth(21);
    document->setBaseUrl(QUrl(u"https://example.org/base/"_s));
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
    QCOMPARE(clone->metaInformation(QTextDocument::DocumentTitle), u"Title"_s);
    QCOMPARE(clone->metaInformation(QTextDocument::DocumentUrl), u"https://example.org"_s);
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
    const auto document = makeText(u"<p:bytes><p:image><p:none>"_s);
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    addPicture(document.get(), u"bytes"_s, QByteArray("abc"));
    addPicture(document.get(), u"image"_s, image);
    const auto clone = cloneOf(*document);
    QCOMPARE(pictureOf(*clone, u"bytes"_s).toByteArray(), QByteArray("abc"));
    QCOMPARE(pictureOf(*clone, u"image"_s).value<QImage>(), image);
    QVERIFY(!pictureOf(*clone, u"none"_s).isValid());
}

void TstTTextDoc::aCloneIsIndependent()
{
    const auto document = makeText(u"abc"_s);
    const auto clone = cloneOf(*document);
    endOf(clone.get()).insertText(u"d"_s);
    QCOMPARE(document->toPlainText(), u"abc"_s);
    QCOMPARE(clone->toPlainText(), u"abcd"_s);
}

void TstTTextDoc::aCloneBelongsToItsParent()
{
    const auto document = makeText(u"abc"_s);
    QObject parent;
    QCOMPARE(TTextDoc::cloneDocumentQtStyle(document.get(), &parent)->parent(), &parent);
    QCOMPARE(TTextDoc::cloneDocumentQtStyle(nullptr, &parent), nullptr);
}

void TstTTextDoc::aCloneStartsWithoutHistory()
{
    const auto document = makeText(u"abc"_s);
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
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("paragraphs") << u"a\nb\n\nc\n"_s << u"a\nb\n\nc\n"_s;
    QTest::newRow("line ends") << u"a\u2028b"_s << u"a\nb"_s;
    QTest::newRow("no-break space") << u"a\u00a0b"_s << u"a b"_s;
    QTest::newRow("picture") << u"a\ufffcb"_s << u"ab"_s;
    QTest::newRow("others stay") << u"a\tb\u00ad\u2014\U0001f600"_s
                                 << u"a\tb\u00ad\u2014\U0001f600"_s;
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
    row("none", u"abc"_s, u"#"_s, {u"abc"_s});
    row("empty text", u""_s, u"#"_s, {u""_s});
    row("empty separator", u"abc"_s, u""_s, {u"abc"_s});
    row("within a paragraph", u"ab#cd"_s, u"#"_s, {u"ab"_s, u"cd"_s});
    row("on its own line", u"ab\n#\ncd"_s, u"#"_s, {u"ab"_s, u"cd"_s});
    row("at a line's end", u"ab#\ncd"_s, u"#"_s, {u"ab"_s, u"cd"_s});
    row("at a line's start", u"ab\n#cd"_s, u"#"_s, {u"ab"_s, u"cd"_s});
    row("only one line end goes", u"ab\n\n#\n\ncd"_s, u"#"_s, {u"ab\n"_s, u"\ncd"_s});
    row("line ends within paragraphs", u"ab\u2028#\u2028cd"_s, u"#"_s, {u"ab"_s, u"cd"_s});
    row("at both ends", u"#ab#"_s, u"#"_s, {u""_s, u"ab"_s, u""_s});
    row("side by side", u"a##b"_s, u"#"_s, {u"a"_s, u""_s, u"b"_s});
    row("on lines side by side", u"a\n#\n#\nb"_s, u"#"_s, {u"a"_s, u""_s, u"b"_s});
    row("nothing else", u"#"_s, u"#"_s, {u""_s, u""_s});
    row("longer", u"a***b**c"_s, u"***"_s, {u"a"_s, u"b**c"_s});
    row("repeating itself", u"a***b"_s, u"**"_s, {u"a"_s, u"*b"_s});
    row("over formats", u"a*<b:*>*b"_s, u"***"_s, {u"a"_s, u"b"_s});
    row("case", u"aXbxc"_s, u"x"_s, {u"aXb"_s, u"c"_s});
    row("over paragraphs", u"a\n*\n*\nb"_s, u"*\n*"_s, {u"a"_s, u"b"_s});
    row("over paragraphs with carriage returns", u"a*\n*b"_s, u"*\r\n*"_s, {u"a"_s, u"b"_s});
    row("paragraph ends alone", u"a\n\nb"_s, u"\n\n"_s, {u"a"_s, u"b"_s});
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
    QTest::newRow("nothing") << u""_s << QStringList();
    QTest::newRow("only separators") << u"##"_s << QStringList();
    QTest::newRow("at both ends") << u"#\nab\n#"_s << QStringList(u"ab"_s);
    QTest::newRow("blanks and paragraphs") << u"a#\n \n\n#b"_s << QStringList({u"a"_s, u"b"_s});
    QTest::newRow("pictures are something")
        << u"a#<p:x.png>#b"_s << QStringList({u"a"_s, u"<p:x.png>"_s, u"b"_s});
}

void TstTTextDoc::emptyPartsCanBeSkipped()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(partsOf(document.get(), u"#"_s, Qt::SkipEmptyParts), "parts");
}

void TstTTextDoc::partsKeepTheirFormats()
{
    const auto document = makeText(u"a<a:b>\nc\n#\n<c1:d>\n<b:e>#f\ng"_s);
    document->setDefaultFont(QFont(u"Some Serif"_s, 17));
    int indent = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format;
        format.setIndent(indent++);
        QTextCursor(block).setBlockFormat(format);
    }
    const auto parts = TTextDoc::split(document.get(), u"#"_s);
    const QStringList texts = {u"a<a:b>\nc"_s, u"<c1:d>\n<b:e>"_s, u"f\ng"_s};
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
    const auto document = makeText(u"one\ntwo\n#\nthree\n<p:x.png>"_s);
    addPicture(document.get(), u"x.png"_s, QByteArray("abc"));
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListUpperRoman);
    const auto parts = TTextDoc::split(document.get(), u"#"_s);
    QCOMPARE(parts.size(), 2U);
    for (const auto &part : parts) {
        const QTextList *list = part->begin().textList();
        QVERIFY(list);
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->format().style(), QTextListFormat::ListUpperRoman);
    }
    QCOMPARE(pictureOf(*parts[1], u"x.png"_s).toByteArray(), QByteArray("abc"));
}

void TstTTextDoc::tablesAreNotCut()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"a#b"_s);
    const QTextTable *table = cursor.insertTable(1, 2);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"c#d"_s);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"e\n#\nf"_s);
    endOf(&document).insertText(u"g#h"_s);
    QCOMPARE(partsOf(&document, u"#"_s),
             QStringList({u"a"_s, u"b\n[c#d]\n[e\n#\nf]\ng"_s, u"h"_s}));
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
        endOf(&joined).insertText(u"#"_s, QTextCharFormat());
        endOf(&joined).insertBlock(QTextBlockFormat(), QTextCharFormat());
        TVLTextDoc::appendDocument(endOf(&joined), second.get());
        const auto parts = TTextDoc::split(&joined, u"#"_s);
        QCOMPARE(parts.size(), 2U);
        // Where a text is empty the paragraph that was there keeps its format.
        if (!first->isEmpty()) {
            const QString difference = differenceOfTexts(*first, *parts[0]);
            QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_s.arg(seed).arg(difference)));
        }
        if (!second->isEmpty()) {
            const QString difference = differenceOfTexts(*second, *parts[1]);
            QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_s.arg(seed).arg(difference)));
        }
        QVERIFY(hasPicturesOf(*parts[0], *first));
        QVERIFY(hasPicturesOf(*parts[1], *second));
    }
}

// --- Formats

void TstTTextDoc::theMostCommonFormatsAreFound()
{
    const auto document = makeText(u"a<b:bcdef>\nghi<p:xyz.png>\nj"_s);
    QTextBlockFormat format;
    format.setIndent(2);
    QTextCursor(document->begin()).setBlockFormat(format);
    QTextCharFormat charFormat;
    QTextBlockFormat blockFormat;
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, &blockFormat);
    QCOMPARE(charFormat, QTextCharFormat());
    QCOMPARE(blockFormat.indent(), 2);
    endOf(document.get()).insertText(u"klm"_s, markedFormat(u"b"_s));
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, nullptr);
    QCOMPARE(charFormat, markedFormat(u"b"_s));
    TTextDoc::findMostCommonProperties(document.get(), nullptr, nullptr);
}

void TstTTextDoc::marksAreNoCommonFormat()
{
    const auto document = makeText(u"<a,b:ab><f,b:cd><b,c1:ef><b,ltavellnk://1:gh>ijklm"_s);
    QTextCharFormat charFormat;
    TTextDoc::findMostCommonProperties(document.get(), &charFormat, nullptr);
    QCOMPARE(charFormat, markedFormat(u"b"_s));
}

void TstTTextDoc::anEmptyTextHasTheFormatsItIsWrittenIn()
{
    QTextDocument document;
    QTextBlockFormat format;
    format.setIndent(2);
    QTextCursor cursor(&document);
    cursor.setBlockFormat(format);
    cursor.setBlockCharFormat(markedFormat(u"b"_s));
    QTextCharFormat charFormat;
    QTextBlockFormat blockFormat;
    TTextDoc::findMostCommonProperties(&document, &charFormat, &blockFormat);
    QCOMPARE(charFormat, markedFormat(u"b"_s));
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
    QTest::newRow("one") << u"a"_s << true << u"ab<c1:c>\n<b:d><f:e>"_s;
    QTest::newRow("one of any value") << u"a"_s << false << u"ab<c1:c>\n<b:d><f:e>"_s;
    QTest::newRow("several") << u"a,b,f"_s << true << u"ab<c1:c>\nde"_s;
    QTest::newRow("other value") << u"c2"_s << true << u"a<a:b>c\n<a,b:d><f:e>"_s;
}

void TstTTextDoc::propertiesAreCleared()
{
    QFETCH(const QString, marks);
    QFETCH(const bool, onlyEqual);
    const QString text = u"a<a:b><c1:c>\n<a,b:d><f:e>"_s;
    const auto document = makeText(text);
    TTextDoc::clearAll(document.get(), markedFormat(marks), onlyEqual);
    QTEST(describeText(document.get()), "expected");
    document->undo();
    QCOMPARE(describeText(document.get()), text);
}

void TstTTextDoc::picturesAreNamedOnce()
{
    const auto document = makeText(u"<p:b.png>x<p:a.png>\n<p:b.png><a,p:c.png>"_s);
    QCOMPARE(TTextDoc::imageResourceIds(document.get()),
             QStringList({u"b.png"_s, u"a.png"_s, u"c.png"_s}));
}

void TstTTextDoc::missingDocumentsAreEmptyOnes()
{
    QCOMPARE(TTextDoc::toPlainText(nullptr), QString());
    QCOMPARE(TTextDoc::imageResourceIds(nullptr), QStringList());
    QCOMPARE(partsOf(nullptr, u"#"_s), QStringList(QString()));
    QCOMPARE(partsOf(nullptr, u"#"_s, Qt::SkipEmptyParts), QStringList());
    TTextDoc::clearAll(nullptr, markedFormat(u"b"_s), false);
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
        QVERIFY2(difference.isEmpty(), qPrintable(u"seed %1: %2"_s.arg(seed).arg(difference)));
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
    const auto target = makeText(u"a<b:b>"_s);
    QTextDocument empty;
    QTextBlockFormat format;
    format.setIndent(3);
    QTextCursor(&empty).setBlockFormat(format);
    TVLTextDoc::appendDocument(endOf(target.get()), &empty);
    TVLTextDoc::appendDocument(endOf(target.get()), nullptr);
    QCOMPARE(describeText(target.get()), u"a<b:b>"_s);
    QCOMPARE(target->begin().blockFormat().indent(), 0);
    QVERIFY(!target->isUndoAvailable());
}

void TstTTextDoc::textIsAppendedWithinAParagraph_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("expected");
    QTest::newRow("at the end") << u"<a:x>y"_s << 4 << u"ab<b:cd><a:x>y"_s;
    QTest::newRow("at the start") << u"<a:x>y"_s << 0 << u"<a:x>yab<b:cd>"_s;
    QTest::newRow("in a run") << u"<a:x>y"_s << 3 << u"ab<b:c><a:x>y<b:d>"_s;
    QTest::newRow("paragraphs") << u"x\n\ny"_s << 3 << u"ab<b:c>x\n\ny<b:d>"_s;
}

void TstTTextDoc::textIsAppendedWithinAParagraph()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    const auto target = makeText(u"ab<b:cd>"_s);
    QTextCursor cursor(target.get());
    cursor.setPosition(position);
    TVLTextDoc::appendDocument(cursor, makeText(text).get());
    QTEST(describeText(target.get()), "expected");
}

void TstTTextDoc::theFirstParagraphsFormatDependsOnTheCursors()
{
    const auto document = makeText(u"x\ny"_s);
    QTextBlockFormat format;
    format.setIndent(3);
    QTextCursor(document->begin()).setBlockFormat(format);
    const auto target = makeText(u"a\n\nb"_s);
    TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    QTextCursor cursor(target.get());
    cursor.setPosition(2);
    TVLTextDoc::appendDocument(cursor, document.get());
    QList<int> indents;
    for (QTextBlock block = target->begin(); block.isValid(); block = block.next())
        indents.append(block.blockFormat().indent());
    QCOMPARE(describeText(target.get()), u"a\nx\ny\nbx\ny"_s);
    QCOMPARE(indents, QList<int>({0, 3, 0, 0, 0}));
}

void TstTTextDoc::selectedTextIsReplaced()
{
    const auto target = makeText(u"a<b:b>c"_s);
    QTextCursor cursor(target.get());
    cursor.setPosition(1);
    cursor.setPosition(3, QTextCursor::KeepAnchor);
    TVLTextDoc::appendDocument(cursor, makeText(u"x"_s).get());
    QCOMPARE(describeText(target.get()), u"ax"_s);
}

void TstTTextDoc::picturesComeAlong()
{
    const auto document = makeText(u"<p:x.png><p:missing.png>"_s);
    addPicture(document.get(), u"x.png"_s, QByteArray("abc"));
    QTextDocument target;
    TVLTextDoc::appendDocument(QTextCursor(&target), document.get());
    TVLTextDoc::appendDocument(endOf(&target), document.get());
    QCOMPARE(pictureOf(target, u"x.png"_s).toByteArray(), QByteArray("abc"));
    QCOMPARE(TTextDoc::imageResourceIds(&target), QStringList({u"x.png"_s, u"missing.png"_s}));
}

void TstTTextDoc::anotherPictureOfTheSameNameStays()
{
    const auto target = makeText(u"<p:x.png>"_s);
    addPicture(target.get(), u"x.png"_s, QByteArray("old"));
    const auto document = makeText(u"<p:x.png>y<b,p:x.png>z"_s);
    addPicture(document.get(), u"x.png"_s, QByteArray("new"));
    for (int i = 0; i < 2; ++i)
        TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    const QStringList names = TTextDoc::imageResourceIds(target.get());
    QCOMPARE(names.size(), 2);
    QCOMPARE(pictureOf(*target, names.at(0)).toByteArray(), QByteArray("old"));
    QCOMPARE(pictureOf(*target, names.at(1)).toByteArray(), QByteArray("new"));
    QCOMPARE(describeText(target.get()),
             u"<p:x.png%1>y<b,p:%1>z<p:%1>y<b,p:%1>z"_s.arg(names.at(1)));
    // The original is as it was.
    QCOMPARE(describeText(document.get()), u"<p:x.png>y<b,p:x.png>z"_s);
}

void TstTTextDoc::aDocumentCanBeAppendedToItself()
{
    const auto document = makeText(u"a<b:b>\nc"_s);
    TVLTextDoc::appendDocument(endOf(document.get()), document.get());
    QCOMPARE(describeText(document.get()), u"a<b:b>\nca<b:b>\nc"_s);
}

void TstTTextDoc::appendingIsOneUndoStep()
{
    for (quint32 seed = 1; seed <= 100; ++seed) {
        const auto target = makeText(u"<b:ab>\n"_s);
        TVLTextDoc::appendDocument(endOf(target.get()), makeRandomRichText(seed).get());
        const QString appended = describeText(target.get());
        if (target->isUndoAvailable())
            target->undo();
        QCOMPARE(describeText(target.get()), u"<b:ab>\n"_s);
        QVERIFY(!target->isUndoAvailable());
        target->redo();
        QCOMPARE(describeText(target.get()), appended);
    }
}

void TstTTextDoc::aListGoesOnOnlyInItself()
{
    const auto document = makeText(u"x\ny"_s);
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListDisc);
    const auto target = makeText(u"a\n"_s);
    cursor = QTextCursor(target.get());
    cursor.select(QTextCursor::Document);
    cursor.createList(QTextListFormat::ListDecimal);
    TVLTextDoc::appendDocument(endOf(target.get()), document.get());
    const QTextBlock first = target->begin();
    QCOMPARE(describeText(target.get()), u"a\nx\ny"_s);
    QCOMPARE(first.textList()->count(), 1);
    QCOMPARE(first.next().textList()->count(), 2);
    QCOMPARE(first.next().textList()->format().style(), QTextListFormat::ListDisc);
}

TVL_TEST(TstTTextDoc)
#include "tst_ttextdoc.moc"
