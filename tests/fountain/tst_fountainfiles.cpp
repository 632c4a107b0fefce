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

using namespace Qt::StringLiterals;

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
    addParagraph(u"Scene Heading"_s, u"int. shed - day"_s, &document);
    addParagraph(u"Action"_s, u"Rain."_s, &document);
    addParagraph(u"Character"_s, u"Steel"_s, &document);
    addParagraph(u"Parenthetical"_s, u"(quiet)"_s, &document);
    addParagraph(u"Dialogue"_s, u"Where?"_s, &document);
    addParagraph(u"Transition"_s, u"Cut to:"_s, &document);
    QCOMPARE(asFountain(document),
             u"int. shed - day\n\nRain.\n\n@Steel\n(quiet)\nWhere?\n\n> Cut to:\n"_s);
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
        "/*:element Cast; List*/\n\n## Two\n\n######## Eight\n\n= Why.\n"_s.replace(
            u"Cast; List"_s, u"Cast%003b List"_s);
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
    document.setPlainText(u"Once upon a time.\nTHE END"_s);
    QCOMPARE(asFountain(document), u"Once upon a time.\n\nTHE END\n"_s);
}

void TstFountainFiles::headingsAreSections()
{
    QTextDocument document;
    document.setPlainText(u"Act one"_s);
    QTextBlockFormat format;
    format.setHeadingLevel(2);
    QTextCursor(&document).setBlockFormat(format);
    QCOMPARE(asFountain(document), u"## Act one\n"_s);
}

void TstFountainFiles::pagesThatElementsBeginAreNoBreaks()
{
    QTextBlockFormat format;
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    const QList<TVLScriptElement> elements = {TVLScriptElement(u"Scene Heading"_s, format),
                                              elementNamed(u"Action"_s)};
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(u"INT. SHED\n\n===\n\nOn.\n"_s, &document, elements));
    QCOMPARE(asFountain(document, elements), u"INT. SHED\n\n===\n\nOn.\n"_s);
}

void TstFountainFiles::namesAreForcedWhereTheyHaveTo_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fountain");
    QTest::newRow("heading") << u"Scene Heading"_s << u"The shed"_s << u".The shed\n"_s;
    QTest::newRow("character") << u"Character"_s << u"Steel"_s << u"@Steel\n"_s;
    QTest::newRow("name without speech") << u"Character"_s << u"STEEL"_s << u"@STEEL\n"_s;
    QTest::newRow("transition") << u"Transition"_s << u"Fade out."_s << u"> Fade out.\n"_s;
    QTest::newRow("heading as action") << u"Action"_s << u"INT. SHED"_s << u"!INT. SHED\n"_s;
    QTest::newRow("transition as action") << u"Action"_s << u"CUT TO:"_s << u"!CUT TO:\n"_s;
    QTest::newRow("name as action")
        << u"Action"_s << u"BANG\u2028goes it"_s << u"!BANG\ngoes it\n"_s;
    QTest::newRow("section as action") << u"Action"_s << u"# 1"_s << u"!# 1\n"_s;
    QTest::newRow("title page as action") << u"Action"_s << u"Title: A"_s << u"!Title: A\n"_s;
    QTest::newRow("dots") << u"Action"_s << u"...and on"_s << u"...and on\n"_s;
    QTest::newRow("signs of emphasis") << u"Action"_s << u"5 * 3_2"_s << u"5 \\* 3\\_2\n"_s;
    QTest::newRow("speech without a name")
        << u"Dialogue"_s << u"Where?"_s << u"/*:element Dialogue*/Where?\n"_s;
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
        TVLScriptElement(u"Slugline"_s, elementNamed(u"Scene Heading"_s).blockFormat()),
        TVLScriptElement(u"description"_s, elementNamed(u"Action"_s).blockFormat())};
    QCOMPARE(describeFountain(u"INT. SHED\n\nOn.\n"_s, elements),
             u"Slugline: INT. SHED\ndescription: On.\n"_s);
}

void TstFountainFiles::aMissingElementIsKeptAsAType()
{
    const QList<TVLScriptElement> elements = {elementNamed(u"General"_s)};
    const QString fountain = u"INT. SHED\n\nSTEEL\nYes.\n"_s;
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(fountain, &document, elements));
    QCOMPARE(describeScreenplay(document),
             u"General (Scene Heading): INT. SHED\nGeneral (Character): STEEL\n"
             "General (Dialogue): Yes.\n"_s);
    QCOMPARE(asFountain(document, elements), fountain);
}

void TstFountainFiles::boldElementsHaveNoEmphasisOfTheirOwn()
{
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    const QList<TVLScriptElement> elements = {TVLScriptElement(u"Scene Heading"_s, {}, bold)};
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(u"INT. *SHED*\n"_s, &document, elements));
    QCOMPARE(asFountain(document, elements), u"INT. *SHED*\n"_s);
}

void TstFountainFiles::aFileIsWrittenInUtf8()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"scene.fountain"_s);
    QTextDocument document;
    document.setPlainText(u"Caf\u00e9"_s);
    QString error;
    QVERIFY2(TvlFountain::writeFile(path, &document, {}, &error), qPrintable(error));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path), QByteArray("Caf\xc3\xa9\n"));
}

void TstFountainFiles::whatWasThereIsReplaced()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"scene.fountain"_s);
    QVERIFY(TVLCoreUtil::WriteBinaryFile("something much longer than that", path, nullptr));
    QTextDocument document;
    document.setPlainText(u"On."_s);
    QVERIFY(TvlFountain::writeFile(path, &document, {}, nullptr));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path), QByteArray("On.\n"));
}

void TstFountainFiles::aFileThatCannotBeWrittenSaysWhy()
{
    const QTemporaryDir directory;
    const QTextDocument document;
    QString error;
    QVERIFY(!TvlFountain::writeFile(directory.filePath(u"missing/scene.fountain"_s), &document, {},
                                    &error));
    QVERIFY(!error.isEmpty());
    error.clear();
    QVERIFY(!TvlFountain::writeFile(directory.path(), &document, {}, &error));
    QVERIFY(!error.isEmpty());
}

void TstFountainFiles::aLinkIsNotWrittenThrough()
{
    const QTemporaryDir directory;
    const QString other = directory.filePath(u"other"_s);
    const QString path = directory.filePath(u"scene.fountain"_s);
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
    const QString path = directory.filePath(u"scene.fountain"_s);
    QString error;
    QVERIFY(!TvlFountain::writeFile(path, nullptr, {}, &error));
    QCOMPARE(error, u"There is no document."_s);
    QVERIFY(!QFileInfo::exists(path));
    error.clear();
    QVERIFY(!TvlFountain::parseText(u"On."_s, nullptr, {}, &error));
    QCOMPARE(error, u"There is no document."_s);
    QCOMPARE(TvlFountain::toText(nullptr, {}), QString());
}

void TstFountainFiles::readingEndsTheUndoHistory()
{
    QTextDocument document;
    QTextCursor(&document).insertText(u"before"_s);
    QVERIFY(TvlFountain::parseText(u"On.\n"_s, &document, {}));
    QVERIFY(document.isUndoRedoEnabled());
    QVERIFY(!document.isUndoAvailable());
    QCOMPARE(document.toPlainText(), u"On."_s);
}

TVL_TEST(TstFountainFiles)
#include "tst_fountainfiles.moc"
