#include "ScreenplayDescription.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLScriptMode.h"
#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"
#include "TvlFountain.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

namespace {

TVLScriptElement elementNamed(const QString &name)
{
    for (const TVLScriptElement &element : TVLScriptMode::factoryDefaults().mElements) {
        if (element.name() == name)
            return element;
    }
    return {};
}

/** Adds a paragraph that looks like an element and doesn't say that it has it. */
void addParagraph(const QString &element, const QString &text, QTextDocument *document)
{
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    if (!document->isEmpty())
        cursor.insertBlock();
    cursor.setBlockFormat(elementNamed(element).blockFormat());
    cursor.setBlockCharFormat(elementNamed(element).charFormat());
    cursor.insertText(text, elementNamed(element).charFormat());
}

QString asFountain(const QTextDocument &document, const QList<TVLScriptElement> &elements = {})
{
    return TvlFountain::toText(&document, elements);
}

} // namespace

/** Documents to Fountain and back: elements, looks, files. */
class TstFountainFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paragraphsAreKnownByTheirLooks();
    void paragraphsStayKnownInRichText_data();
    void paragraphsStayKnownInRichText();
    void proseIsAction();
    void headingsAreSections();
    void pagesThatElementsBeginAreNoBreaks();
    void namesAreForcedWhereTheyHaveTo_data();
    void namesAreForcedWhereTheyHaveTo();
    void elementsOfOtherNamesServe();
    void aMissingElementIsKeptAsAType();
    void boldElementsHaveNoEmphasisOfTheirOwn();
    void aFileIsWrittenInUtf8();
    void whatWasThereIsReplaced();
    void aFileThatCannotBeWrittenSaysWhy();
    void aLinkIsNotWrittenThrough();
    void withoutADocumentNothingIsDone();
    void readingEndsTheUndoHistory();
};

void TstFountainFiles::paragraphsAreKnownByTheirLooks()
{
    QTextDocument document;
    addParagraph(u"Scene Heading"_qs, u"int. shed - day"_qs, &document);
    addParagraph(u"Action"_qs, u"Rain."_qs, &document);
    addParagraph(u"Character"_qs, u"Steel"_qs, &document);
    addParagraph(u"Parenthetical"_qs, u"(quiet)"_qs, &document);
    addParagraph(u"Dialogue"_qs, u"Where?"_qs, &document);
    addParagraph(u"Transition"_qs, u"Cut to:"_qs, &document);
    QCOMPARE(asFountain(document),
             u"int. shed - day\n\nRain.\n\n@Steel\n(quiet)\nWhere?\n\n> Cut to:\n"_qs);
}

void TstFountainFiles::paragraphsStayKnownInRichText_data()
{
    QTest::addColumn<bool>("exporting");
    QTest::newRow("of a project") << false;
    QTest::newRow("for other programs") << true;
}

void TstFountainFiles::paragraphsStayKnownInRichText()
{
    QFETCH(bool, exporting);
    const QString fountain =
        u"Title: A\n    B\n\nINT. SHED #1A#\n\nRain *falls* on.\n\nSTEEL\n(quiet)\nWhere?\n\n"
        "MARA ^\n~La.\n\n> END <\n\n===\n\nCUT TO:\n\n/*:element Shot*/CLOSE\n\n"
        "/*:element Cast; List*/\n\n## Two\n\n######## Eight\n\n= Why.\n"_qs.replace(
            u"Cast; List"_qs, u"Cast%003b List"_qs);
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(fountain, &document, {}));
    QCOMPARE(asFountain(document), fountain);
    QTextDocument again;
    TVLTextRtfWriter writer(nullptr);
    writer.setExportingMode(exporting);
    QVERIFY(TVLTextRtfReader(&again).read(writer.toRtf(&document, false)));
    QCOMPARE(asFountain(again), fountain);
}

void TstFountainFiles::proseIsAction()
{
    QTextDocument document;
    document.setPlainText(u"Once upon a time.\nTHE END"_qs);
    QCOMPARE(asFountain(document), u"Once upon a time.\n\nTHE END\n"_qs);
}

void TstFountainFiles::headingsAreSections()
{
    QTextDocument document;
    document.setPlainText(u"Act one"_qs);
    QTextBlockFormat format;
    format.setHeadingLevel(2);
    QTextCursor(&document).setBlockFormat(format);
    QCOMPARE(asFountain(document), u"## Act one\n"_qs);
}

void TstFountainFiles::pagesThatElementsBeginAreNoBreaks()
{
    QTextBlockFormat format;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    const QList<TVLScriptElement> elements = {TVLScriptElement(u"Scene Heading"_qs, format),
                                              elementNamed(u"Action"_qs)};
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(u"INT. SHED\n\n===\n\nOn.\n"_qs, &document, elements));
    QCOMPARE(asFountain(document, elements), u"INT. SHED\n\n===\n\nOn.\n"_qs);
}

void TstFountainFiles::namesAreForcedWhereTheyHaveTo_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fountain");
    QTest::newRow("heading") << u"Scene Heading"_qs << u"The shed"_qs << u".The shed\n"_qs;
    QTest::newRow("character") << u"Character"_qs << u"Steel"_qs << u"@Steel\n"_qs;
    QTest::newRow("name without speech") << u"Character"_qs << u"STEEL"_qs << u"@STEEL\n"_qs;
    QTest::newRow("transition") << u"Transition"_qs << u"Fade out."_qs << u"> Fade out.\n"_qs;
    QTest::newRow("heading as action") << u"Action"_qs << u"INT. SHED"_qs << u"!INT. SHED\n"_qs;
    QTest::newRow("transition as action") << u"Action"_qs << u"CUT TO:"_qs << u"!CUT TO:\n"_qs;
    QTest::newRow("name as action")
        << u"Action"_qs << u"BANG\u2028goes it"_qs << u"!BANG\ngoes it\n"_qs;
    QTest::newRow("section as action") << u"Action"_qs << u"# 1"_qs << u"!# 1\n"_qs;
    QTest::newRow("title page as action") << u"Action"_qs << u"Title: A"_qs << u"!Title: A\n"_qs;
    QTest::newRow("dots") << u"Action"_qs << u"...and on"_qs << u"...and on\n"_qs;
    QTest::newRow("signs of emphasis") << u"Action"_qs << u"5 * 3_2"_qs << u"5 \\* 3\\_2\n"_qs;
    QTest::newRow("speech without a name")
        << u"Dialogue"_qs << u"Where?"_qs << u"/*:element Dialogue*/Where?\n"_qs;
}

void TstFountainFiles::namesAreForcedWhereTheyHaveTo()
{
    QFETCH(QString, element);
    QFETCH(QString, text);
    QTextDocument document;
    addParagraph(element, text, &document);
    QTEST(asFountain(document), "fountain");
}

void TstFountainFiles::elementsOfOtherNamesServe()
{
    const QList<TVLScriptElement> elements = {
        TVLScriptElement(u"Slugline"_qs, elementNamed(u"Scene Heading"_qs).blockFormat()),
        TVLScriptElement(u"description"_qs, elementNamed(u"Action"_qs).blockFormat())};
    QCOMPARE(describeFountain(u"INT. SHED\n\nOn.\n"_qs, elements),
             u"Slugline: INT. SHED\ndescription: On.\n"_qs);
}

void TstFountainFiles::aMissingElementIsKeptAsAType()
{
    const QList<TVLScriptElement> elements = {elementNamed(u"General"_qs)};
    const QString fountain = u"INT. SHED\n\nSTEEL\nYes.\n"_qs;
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(fountain, &document, elements));
    QCOMPARE(describeScreenplay(document),
             u"General (Scene Heading): INT. SHED\nGeneral (Character): STEEL\n"
             "General (Dialogue): Yes.\n"_qs);
    QCOMPARE(asFountain(document, elements), fountain);
}

void TstFountainFiles::boldElementsHaveNoEmphasisOfTheirOwn()
{
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    const QList<TVLScriptElement> elements = {TVLScriptElement(u"Scene Heading"_qs, {}, bold)};
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(u"INT. *SHED*\n"_qs, &document, elements));
    QCOMPARE(asFountain(document, elements), u"INT. *SHED*\n"_qs);
}

void TstFountainFiles::aFileIsWrittenInUtf8()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"scene.fountain"_qs);
    QTextDocument document;
    document.setPlainText(u"Caf\u00e9"_qs);
    QString error;
    QVERIFY2(TvlFountain::writeFile(path, &document, {}, &error), qPrintable(error));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path), QByteArray("Caf\xc3\xa9\n"));
}

void TstFountainFiles::whatWasThereIsReplaced()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"scene.fountain"_qs);
    QVERIFY(TVLCoreUtil::WriteBinaryFile("something much longer than that", path, nullptr));
    QTextDocument document;
    document.setPlainText(u"On."_qs);
    QVERIFY(TvlFountain::writeFile(path, &document, {}, nullptr));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path), QByteArray("On.\n"));
}

void TstFountainFiles::aFileThatCannotBeWrittenSaysWhy()
{
    const QTemporaryDir directory;
    const QTextDocument document;
    QString error;
    QVERIFY(!TvlFountain::writeFile(directory.filePath(u"missing/scene.fountain"_qs), &document, {},
                                    &error));
    QVERIFY(!error.isEmpty());
    error.clear();
    QVERIFY(!TvlFountain::writeFile(directory.path(), &document, {}, &error));
    QVERIFY(!error.isEmpty());
}

void TstFountainFiles::aLinkIsNotWrittenThrough()
{
    const QTemporaryDir directory;
    const QString other = directory.filePath(u"other"_qs);
    const QString path = directory.filePath(u"scene.fountain"_qs);
    QVERIFY(TVLCoreUtil::WriteBinaryFile("kept", other, nullptr));
    QVERIFY(QFile::link(other, path));
    const QTextDocument document;
    QString error;
    QVERIFY(!TvlFountain::writeFile(path, &document, {}, &error));
    QVERIFY(error.contains(u"is a link"));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(other), QByteArray("kept"));
}

void TstFountainFiles::withoutADocumentNothingIsDone()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"scene.fountain"_qs);
    QString error;
    QVERIFY(!TvlFountain::writeFile(path, nullptr, {}, &error));
    QCOMPARE(error, u"There is no document."_qs);
    QVERIFY(!QFileInfo::exists(path));
    error.clear();
    QVERIFY(!TvlFountain::parseText(u"On."_qs, nullptr, {}, &error));
    QCOMPARE(error, u"There is no document."_qs);
    QCOMPARE(TvlFountain::toText(nullptr, {}), QString());
}

void TstFountainFiles::readingEndsTheUndoHistory()
{
    QTextDocument document;
    QTextCursor(&document).insertText(u"before"_qs);
    QVERIFY(TvlFountain::parseText(u"On.\n"_qs, &document, {}));
    QVERIFY(document.isUndoRedoEnabled());
    QVERIFY(!document.isUndoAvailable());
    QCOMPARE(document.toPlainText(), u"On."_qs);
}

TVL_TEST(TstFountainFiles)
#include "tst_fountainfiles.moc"
