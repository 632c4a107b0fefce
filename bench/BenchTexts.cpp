#include "BenchTexts.h"

#include <QRandomGenerator>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int RunsPerParagraph = 5;
constexpr int RunLength = 35;
constexpr int RtfBytesPerParagraph = 245;
constexpr char16_t Apostrophe = 0x2019;

QString words(QRandomGenerator *random)
{
    QString text;
    while (text.size() < RunLength) {
        for (int i = 1 + int(random->bounded(8)); i > 0; --i)
            text += QChar(u'a' + int(random->bounded(26)));
        text += u' ';
    }
    // Prose has a character beyond ASCII now and then.
    if (random->bounded(4) == 0)
        text[text.size() / 2] = QChar(Apostrophe);
    return text;
}

std::array<QTextCharFormat, RunsPerParagraph> runFormats()
{
    std::array<QTextCharFormat, RunsPerParagraph> formats;
    for (QTextCharFormat &format : formats) {
        format.setFontFamilies({u"Times New Roman"_s});
        format.setFontPointSize(12);
    }
    formats[1].setFontItalic(true);
    formats[2].setFontWeight(QFont::Bold);
    formats[3].setForeground(QColor(Qt::red));
    formats[4].setFontUnderline(true);
    return formats;
}

} // namespace

std::unique_ptr<QTextDocument> makeBenchText(int rtfBytes)
{
    QRandomGenerator random(1);
    const auto formats = runFormats();
    QTextBlockFormat blockFormat;
    blockFormat.setTextIndent(18);
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    QTextCursor cursor(document.get());
    cursor.beginEditBlock();
    cursor.setBlockFormat(blockFormat);
    for (int paragraph = rtfBytes / RtfBytesPerParagraph; paragraph > 0; --paragraph) {
        for (int run = 0; run < RunsPerParagraph; ++run)
            cursor.insertText(words(&random), formats[random.bounded(RunsPerParagraph)]);
        if (paragraph > 1)
            cursor.insertBlock(blockFormat, formats[0]);
    }
    cursor.endEditBlock();
    return document;
}

std::vector<BenchParagraph> paragraphsOf(const QTextDocument &document)
{
    std::vector<BenchParagraph> paragraphs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        BenchParagraph paragraph{block.blockFormat(), block.charFormat(), {}};
        for (auto it = block.begin(); !it.atEnd(); ++it)
            paragraph.runs.push_back({it.fragment().text(), it.fragment().charFormat()});
        paragraphs.push_back(std::move(paragraph));
    }
    return paragraphs;
}

void insertParagraphs(const std::vector<BenchParagraph> &paragraphs, QTextDocument *document)
{
    document->setUndoRedoEnabled(false);
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    bool isFirst = true;
    for (const BenchParagraph &paragraph : paragraphs) {
        if (isFirst) {
            cursor.setBlockFormat(paragraph.blockFormat);
            cursor.setBlockCharFormat(paragraph.charFormat);
        } else {
            cursor.insertBlock(paragraph.blockFormat, paragraph.charFormat);
        }
        isFirst = false;
        for (const BenchParagraph::Run &run : paragraph.runs)
            cursor.insertText(run.text, run.format);
    }
    cursor.endEditBlock();
}
