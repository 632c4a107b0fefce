#include "DocumentDescription.h"
#include "TestMain.h"

#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

enum Note { Annotation, Footnote, InspectorComment, InspectorFootnote };

/** A format on which a note of some kind hangs, or that makes its run one. */
QTextCharFormat noteFormat(Note note)
{
    QTextCharFormat format;
    if (note == Annotation)
        format.setProperty(TVLTextFormat::InlineAnnotation, true);
    if (note == Footnote)
        format.setProperty(TVLTextFormat::InlineFootnote, true);
    if (note == InspectorComment || note == InspectorFootnote) {
        QTextDocument text;
        text.setPlainText(u"note"_s);
        TVLTextCommentLink comment(u"ID"_s, TVLTextRtf::toRtfCData(&text));
        comment.mIsFootnote = note == InspectorFootnote;
        TVLTextFormat::setComment(&format, comment);
    }
    return format;
}

/** A paragraph "Text note more", in which "note" is a note or a note hangs on "Text". */
std::unique_ptr<QTextDocument> makeDocument(Note note)
{
    auto document = std::make_unique<QTextDocument>();
    QTextCursor cursor(document.get());
    const bool isInline = note == Annotation || note == Footnote;
    cursor.insertText(u"Text"_s, isInline ? QTextCharFormat() : noteFormat(note));
    if (isInline)
        cursor.insertText(u"note"_s, noteFormat(note));
    cursor.insertText(u" more"_s, QTextCharFormat());
    return document;
}

TVLTextRtfWriter makeWriter()
{
    TVLTextRtfWriter writer(nullptr);
    writer.setExportingMode(true);
    return writer;
}

/** What another reader that knows nothing of this application sees, without fonts. */
QString describeExport(const QByteArray &rtf)
{
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    if (!reader.read(rtf))
        return reader.errorString();
    QString text = describeDocument(document);
    const QString font = u"font %1, size %2"_s.arg(QTextDocument().defaultFont().family())
                             .arg(QTextDocument().defaultFont().pointSizeF());
    text.replace(u": "_s + font + u'\n', u"\n"_s);
    return text.replace(font, u"*"_s);
}

} // namespace

Q_DECLARE_METATYPE(Note)

class TstRtfExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesGoWhereTheyShall_data();
    void notesGoWhereTheyShall();
    void notesKeepTheirFormats();
    void aNoteOverTwoParagraphsBecomesTwo();
    void aDamagedInspectorNoteLosesNothingElse();
    void footnotesStartWithABlankWhenAsked();
    void anEmptyInspectorCommentIsStillThere();
    void backgroundsBecomeHighlightsWhenAsked_data();
    void backgroundsBecomeHighlightsWhenAsked();
    void linksAreDecoratedWhenAsked_data();
    void linksAreDecoratedWhenAsked();
    void defaultFontsAreSpelledOut();
    void commentLinksAndMarksStayAtHome();
    void picturesBecomeOnesThatOthersKnow();
    void everyPlaceOfAPictureHasItsBytes();
    void textFromRightToLeftSaysWhereItStarts();
    void raisedAndLoweredTextStandsInGroupsOfItsOwn_data();
    void raisedAndLoweredTextStandsInGroupsOfItsOwn();
    void raisedTextOfAnInspectorsNoteStandsInAGroupOfItsOwn();
    void aCommentHasNoBookmarks();
    void theNormalModeKeepsNotesAsMarks();
    void aFileIsWrittenAndAFailureTold();
};

void TstRtfExport::notesGoWhereTheyShall_data()
{
    QTest::addColumn<Note>("note");
    QTest::addColumn<int>("destination");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QByteArray>("words");

    const QString none = u"paragraph\n  \"Text more\"\n"_s;
    const QString footnote = u"paragraph\n  \"Text\"\n  \"note\": *, footnote\n  \" more\"\n"_s;
    const QString annotation = u"paragraph\n  \"Text\"\n  \"note\": *, annotation\n  \" more\"\n"_s;
    const QString inText = u"paragraph\n  \"Text[note] more\"\n"_s;
    const QByteArray footnoteWords = "{\\footnote\\pard";
    const QByteArray endnoteWords = "{\\footnote\\ftnalt\\pard";
    const QByteArray annotationWords = "{\\*\\annotation";
    const auto rows = [](const char *kind, Note note, int destination, const QString &expected,
                         const QByteArray &words) {
        QTest::addRow("%s %d", kind, destination) << note << destination << expected << words;
    };
    for (const Note note : {Footnote, InspectorFootnote}) {
        const char *kind = note == Footnote ? "inline footnote to" : "inspector footnote to";
        rows(kind, note, TVLTextRtfWriter::FootnotesDropped, none, {});
        rows(kind, note, TVLTextRtfWriter::FootnotesAtPageEnd, footnote, footnoteWords);
        rows(kind, note, TVLTextRtfWriter::FootnotesAtDocumentEnd, footnote, endnoteWords);
    }
    for (const Note note : {Annotation, InspectorComment}) {
        const char *kind = note == Annotation ? "inline annotation to" : "inspector comment to";
        rows(kind, note, TVLTextRtfWriter::AnnotationsAsComments, annotation, annotationWords);
        rows(kind, note, TVLTextRtfWriter::AnnotationsAsFootnotes, footnote, footnoteWords);
        rows(kind, note, TVLTextRtfWriter::AnnotationsInText, inText, "[");
        rows(kind, note, TVLTextRtfWriter::AnnotationsDropped, none, {});
    }
}

void TstRtfExport::notesGoWhereTheyShall()
{
    QFETCH(Note, note);
    QFETCH(int, destination);
    QFETCH(QString, expected);
    QFETCH(QByteArray, words);
    TVLTextRtfWriter writer = makeWriter();
    writer.setFootnoteDestination(note == Footnote || note == InspectorFootnote ? destination : 0);
    writer.setAnnotationDestination(note == Footnote || note == InspectorFootnote ? 3
                                                                                  : destination);
    const QByteArray rtf = writer.toRtf(makeDocument(note).get(), false);
    QCOMPARE(describeExport(rtf), expected);
    QVERIFY2(rtf.contains(words), rtf);
    QCOMPARE(rtf.contains("\\footnote"), words.contains("\\footnote"));
    QCOMPARE(rtf.contains("\\annotation"), words.contains("\\annotation"));
}

void TstRtfExport::notesKeepTheirFormats()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"Text"_s, QTextCharFormat());
    QTextCharFormat format = noteFormat(Footnote);
    cursor.insertText(u"plain "_s, format);
    format.setFontItalic(true);
    TVLTextFormat::setLink(&format, u"http://example.org/"_s);
    cursor.insertText(u"slanted link"_s, format);
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(u" bold"_s, bold);
    QCOMPARE(describeExport(makeWriter().toRtf(&document, false)),
             u"paragraph\n  \"Text\"\n  \"plain \": *, footnote\n"
             "  \"slanted link\": *, italic, footnote, link http://example.org/\n"
             "  \" bold\": *, bold\n"_s);
}

void TstRtfExport::aNoteOverTwoParagraphsBecomesTwo()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"one\ntwo"_s, noteFormat(Footnote));
    QCOMPARE(describeExport(makeWriter().toRtf(&document, false)),
             u"paragraph\n  \"one\": *, footnote\nparagraph\n  \"two\": *, footnote\n"_s);
}

void TstRtfExport::aDamagedInspectorNoteLosesNothingElse()
{
    QTextDocument document;
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, TVLTextCommentLink(u"ID"_s, "{\\rtf1 saved\\par {\\b par"));
    QTextCursor(&document).insertText(u"Text"_s, format);
    QCOMPARE(describeExport(makeWriter().toRtf(&document, false)),
             u"paragraph\n  \"Text\"\n  \"saved<line>\": *, annotation\n"
             "  \"par\": *, bold, annotation\n"_s);
}

void TstRtfExport::footnotesStartWithABlankWhenAsked()
{
    const auto document = makeDocument(Footnote);
    TVLTextRtfWriter writer = makeWriter();
    QVERIFY(writer.toRtf(document.get(), false).contains("{\\super\\chftn}\\plain"));
    writer.setFootnotesWithLeadingSpace(true);
    QVERIFY(writer.toRtf(document.get(), false).contains("{\\super\\chftn} \\plain"));
}

void TstRtfExport::anEmptyInspectorCommentIsStillThere()
{
    QTextDocument document;
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, TVLTextCommentLink(u"ID"_s, {}));
    QTextCursor(&document).insertText(u"Text"_s, format);
    const QByteArray rtf = makeWriter().toRtf(&document, false);
    QVERIFY2(rtf.contains("{\\*\\annotation\\pard\\plain{\\chatn}}"), rtf);
    QCOMPARE(describeExport(rtf), u"paragraph\n  \"Text\"\n"_s);
}

void TstRtfExport::backgroundsBecomeHighlightsWhenAsked_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("highlight");

    QTest::newRow("one of the sixteen") << QColor(0xffff00) << QColor(0xffff00);
    QTest::newRow("near yellow") << QColor(0xf8f030) << QColor(0xffff00);
    QTest::newRow("near a dark one") << QColor(0x100078) << QColor(0x000080);
    QTest::newRow("light grey") << QColor(0xc8c8c8) << QColor(0xc0c0c0);
    QTest::newRow("white") << QColor(0xffffff) << QColor(0xffffff);
}

void TstRtfExport::backgroundsBecomeHighlightsWhenAsked()
{
    QFETCH(QColor, background);
    QFETCH(QColor, highlight);
    QTextDocument document;
    QTextCharFormat format;
    format.setBackground(background);
    QTextCursor(&document).insertText(u"Text"_s, format);

    TVLTextRtfWriter writer = makeWriter();
    QVERIFY(!writer.toRtf(&document, false).contains("\\highlight"));
    writer.setHightlightForMsWord(true);
    QByteArray rtf = writer.toRtf(&document, false);
    // The shading keeps the exact colour for those who prefer it.
    QCOMPARE(describeExport(rtf),
             u"paragraph\n  \"Text\": *, background %1\n"_s.arg(background.name()));
    rtf.replace("\\cb", "\\unknown").replace("\\chcbpat", "\\unknown");
    QCOMPARE(describeExport(rtf),
             u"paragraph\n  \"Text\": *, background %1\n"_s.arg(highlight.name()));
}

void TstRtfExport::linksAreDecoratedWhenAsked_data()
{
    QTest::addColumn<bool>("decorate");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("underline");
    QTest::addColumn<QString>("expected");

    QTest::newRow("not asked") << false << QColor() << 0 << u""_s;
    QTest::newRow("plain") << true << QColor() << 0 << u", underlined, colour #0000ff"_s;
    QTest::newRow("with a colour of its own")
        << true << QColor(0xff0000) << 0 << u", underlined, colour #ff0000"_s;
    QTest::newRow("with a line of its own")
        << true << QColor() << int(QTextCharFormat::WaveUnderline)
        << u", underlined with a wave, colour #0000ff"_s;
}

void TstRtfExport::linksAreDecoratedWhenAsked()
{
    QFETCH(bool, decorate);
    QFETCH(QColor, color);
    QFETCH(int, underline);
    QFETCH(QString, expected);
    QTextDocument document;
    QTextCharFormat format;
    TVLTextFormat::setLink(&format, u"http://example.org/"_s);
    if (color.isValid())
        format.setForeground(color);
    if (underline)
        format.setUnderlineStyle(static_cast<QTextCharFormat::UnderlineStyle>(underline));
    QTextCursor cursor(&document);
    cursor.insertText(u"link"_s, format);
    cursor.insertText(u" text"_s, QTextCharFormat());
    TVLTextRtfWriter writer = makeWriter();
    writer.setDecorateHyperlinks(decorate);
    QCOMPARE(
        describeExport(writer.toRtf(&document, false)),
        u"paragraph\n  \"link\": *%1, link http://example.org/\n  \" text\"\n"_s.arg(expected));
}

void TstRtfExport::defaultFontsAreSpelledOut()
{
    QTextDocument document;
    document.setDefaultFont(QFont(u"Some Serif"_s, 13));
    QTextCursor cursor(&document);
    QTextCharFormat sized;
    sized.setFontPointSize(20);
    cursor.insertText(u"plain"_s, QTextCharFormat());
    cursor.insertText(u"large"_s, sized);
    const QByteArray rtf = makeWriter().toRtf(&document, false);
    QVERIFY2(rtf.startsWith("{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n{\\fonttbl\n{\\f0"), rtf);
    QCOMPARE(describeExport(rtf),
             u"paragraph\n  \"plain\": font Some Serif, size 13\n"
             "  \"large\": font Some Serif, size 20\n"_s);
    QVERIFY(!TVLTextRtfWriter(nullptr).toRtf(&document, false).contains("\\fonttbl"));
}

void TstRtfExport::commentLinksAndMarksStayAtHome()
{
    for (const Note note : {Annotation, Footnote, InspectorComment, InspectorFootnote}) {
        const QByteArray rtf = makeWriter().toRtf(makeDocument(note).get(), false);
        QVERIFY2(!rtf.contains("tavelcmt"), rtf);
        QVERIFY2(!rtf.contains("annotation|") && !rtf.contains("footnote|"), rtf);
    }
}

void TstRtfExport::picturesBecomeOnesThatOthersKnow()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bitmap;
    QBuffer buffer(&bitmap);
    QVERIFY(image.save(&buffer, "BMP"));
    for (const QVariant &resource : {QVariant(bitmap), QVariant(image)}) {
        QTextDocument document;
        document.addResource(QTextDocument::ImageResource, QUrl(u"red"_s), resource);
        QTextCursor(&document).insertImage(u"red"_s);
        const QByteArray rtf = makeWriter().toRtf(&document, false);
        QVERIFY2(rtf.contains("\\pngblip\\picw3\\pich2"), rtf);
        QVERIFY2(!rtf.contains("tvlname"), rtf);
    }
}

void TstRtfExport::everyPlaceOfAPictureHasItsBytes()
{
    QTextDocument document;
    document.addResource(QTextDocument::ImageResource, QUrl(u"a"_s), QByteArray("\xff\xd8\xff"));
    QTextCursor cursor(&document);
    cursor.insertImage(u"a"_s);
    cursor.insertImage(u"a"_s);
    QCOMPARE(makeWriter().toRtf(&document, false).count("ffd8ff"), 2);
    QCOMPARE(TVLTextRtfWriter(nullptr).toRtf(&document, false).count("ffd8ff"), 1);
}

void TstRtfExport::textFromRightToLeftSaysWhereItStarts()
{
    QTextDocument document;
    QTextBlockFormat format;
    format.setLayoutDirection(Qt::RightToLeft);
    QTextCursor cursor(&document);
    cursor.setBlockFormat(format);
    cursor.insertText(u"\u05d0"_s);
    QVERIFY(makeWriter().toRtf(&document, false).contains("\\qr\\rtlpar"));
    format.setAlignment(Qt::AlignRight);
    cursor.setBlockFormat(format);
    QVERIFY(makeWriter().toRtf(&document, false).contains("\\ql\\rtlpar"));
}

void TstRtfExport::raisedAndLoweredTextStandsInGroupsOfItsOwn_data()
{
    QTest::addColumn<bool>("exporting");
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QByteArray>("word");

    QTest::newRow("raised") << false << int(QTextCharFormat::AlignSuperScript)
                            << QByteArray("\\super ");
    QTest::newRow("raised, exported")
        << true << int(QTextCharFormat::AlignSuperScript) << QByteArray("\\super ");
    QTest::newRow("lowered") << false << int(QTextCharFormat::AlignSubScript)
                             << QByteArray("\\sub ");
    QTest::newRow("lowered, exported")
        << true << int(QTextCharFormat::AlignSubScript) << QByteArray("\\sub ");
}

void TstRtfExport::raisedAndLoweredTextStandsInGroupsOfItsOwn()
{
    QFETCH(bool, exporting);
    QFETCH(int, alignment);
    QFETCH(QByteArray, word);
    QTextCharFormat shifted;
    shifted.setVerticalAlignment(static_cast<QTextCharFormat::VerticalAlignment>(alignment));
    QTextCharFormat bold = shifted;
    bold.setFontWeight(QFont::Bold);
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"before"_s, QTextCharFormat());
    cursor.insertText(u"first"_s, shifted);
    cursor.insertText(u"second"_s, bold);
    cursor.insertText(u"behind"_s, QTextCharFormat());
    cursor.setBlockCharFormat(shifted);
    TVLTextRtfWriter writer(nullptr);
    writer.setExportingMode(exporting);
    QByteArray rtf = writer.toRtf(&document, false);
    rtf.remove(0, rtf.indexOf("before"));
    const auto isAlone = [&rtf, &word](const QByteArray &text) {
        const qsizetype group = rtf.lastIndexOf("{\\plain", rtf.indexOf(word + text));
        return group >= 0
            && rtf.indexOf('}', group) == rtf.indexOf(word + text) + word.size() + text.size();
    };
    QVERIFY2(isAlone("first"), rtf);
    QVERIFY2(isAlone("second"), rtf);
    QVERIFY2(isAlone("\\par\n"), rtf);
    QCOMPARE(rtf.count(word), 3);
}

void TstRtfExport::raisedTextOfAnInspectorsNoteStandsInAGroupOfItsOwn()
{
    QTextCharFormat raised;
    raised.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    QTextDocument note;
    QTextCursor noteCursor(&note);
    noteCursor.insertText(u"m"_s, QTextCharFormat());
    noteCursor.insertText(u"2"_s, raised);
    noteCursor.insertText(u" of floor"_s, QTextCharFormat());
    QTextCharFormat format;
    TVLTextFormat::setComment(&format, TVLTextCommentLink(u"ID"_s, TVLTextRtf::toRtfCData(&note)));
    QTextDocument document;
    QTextCursor(&document).insertText(u"Text"_s, format);
    const QByteArray rtf = makeWriter().toRtf(&document, false);
    QVERIFY2(rtf.contains("\\super 2} of floor"), rtf);
}

void TstRtfExport::aCommentHasNoBookmarks()
{
    const auto exported = [](Note note) {
        QTextCharFormat format = noteFormat(note);
        format.setAnchor(true);
        format.setAnchorNames({u"place"_s});
        QTextDocument document;
        QTextCursor(&document).insertText(u"note"_s, format);
        return makeWriter().toRtf(&document, false);
    };
    QVERIFY(!exported(Annotation).contains("\\bkmk"));
    QVERIFY(exported(Footnote).contains("\\bkmkstart place}note{\\*\\bkmkend place}"));
}

void TstRtfExport::theNormalModeKeepsNotesAsMarks()
{
    const TVLTextRtfWriter writer(nullptr);
    QVERIFY(writer.toRtf(makeDocument(Footnote).get(), false).contains("\\{footnote|"));
    QVERIFY(
        writer.toRtf(makeDocument(InspectorComment).get(), false).contains("\"tavelcmt://ID\""));
}

void TstRtfExport::aFileIsWrittenAndAFailureTold()
{
    const QTemporaryDir directory;
    const auto document = makeDocument(Footnote);
    const QString path = directory.filePath(u"text.rtf"_s);
    QString error;
    QVERIFY2(TVLTextRtf::toRtfFile(path, document.get(), &error, false, true), qPrintable(error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), makeWriter().toRtf(document.get(), false));
    const QString nowhere = directory.filePath(u"missing/text.rtf"_s);
    QVERIFY(!TVLTextRtf::toRtfFile(nowhere, document.get(), &error, false, false));
    QCOMPARE(error, u"No such file or directory"_s);
    QVERIFY(!TVLTextRtf::toRtfFile(nowhere, document.get(), nullptr, false, false));
}

TVL_TEST(TstRtfExport)
#include "tst_rtfexport.moc"
