#include "RandomDocument.h"

#include "TVLTextFormat.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

class Maker
{
public:
    Maker(QRandomGenerator *random, const RandomDocumentOptions &options, QTextDocument *document)
        : mRandom(random)
        , mOptions(options)
        , mDocument(document)
        , mCursor(document)
    {
    }

    void make()
    {
        if (once(3))
            mDocument->setMetaInformation(QTextDocument::DocumentTitle,
                                          makeRandomText(mRandom, 12));
        blocks(1 + below(mOptions.mMaximumBlocks), 0);
    }

private:
    [[nodiscard]] int below(int limit) { return int(mRandom->bounded(limit)); }
    [[nodiscard]] bool once(int times) { return below(times) == 0; }
    template <typename T>
    [[nodiscard]] T anyOf(std::initializer_list<T> choice)
    {
        return *(choice.begin() + below(int(choice.size())));
    }
    /** A distance that twentieths of a point can hold. */
    [[nodiscard]] double distance(int limit) { return below(limit * 20) / 20.0; }
    [[nodiscard]] QColor color()
    {
        QColor color = QColor::fromRgb(mRandom->generate());
        color.setAlpha(once(8) ? below(256) : 255);
        return color;
    }

    void blocks(int count, int depth)
    {
        for (int i = 0; i < count; ++i) {
            if (i > 0)
                mCursor.insertBlock(blockFormat(), charFormat(OfParagraphEnd));
            else
                mCursor.setBlockFormat(blockFormat());
            if (mOptions.mLists && once(3))
                joinList();
            runs();
            if (mOptions.mTables && depth < (mOptions.mNestedTables ? 3 : 1)
                && once(depth == 0 ? 8 : 14))
                table(depth);
        }
    }

    void runs()
    {
        for (int i = below(5); i > 0; --i) {
            if (mOptions.mPictures && once(12))
                picture();
            else
                mCursor.insertText(makeRandomText(mRandom, 30), charFormat());
        }
    }

    void joinList()
    {
        if (!mLists.isEmpty() && once(2)) {
            mLists.at(below(int(mLists.size())))->add(mCursor.block());
            return;
        }
        QTextListFormat format;
        format.setStyle(static_cast<QTextListFormat::Style>(-1 - below(8)));
        format.setIndent(1 + below(once(6) ? 14 : 4));
        if (format.style() <= QTextListFormat::ListDecimal) {
            if (once(3))
                format.setNumberPrefix(u"(\u00a7"_s);
            if (once(3))
                format.setNumberSuffix(once(2) ? u") "_s : QString());
            if (once(4))
                format.setProperty(TVLTextFormat::ListStart, anyOf({0, 2, 30, 4000}));
        }
        mLists.append(mCursor.createList(format));
    }

    void table(int depth)
    {
        const int rows = 1 + below(4);
        const int columns = 1 + below(4);
        QTextTable *table = mCursor.insertTable(rows, columns, tableFormat(columns));
        for (int i = mOptions.mMergedCells ? below(3) : 0; i > 0; --i)
            merge(table, rows, columns);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                QTextTableCell cell = table->cellAt(row, column);
                if (cell.row() != row || cell.column() != column)
                    continue;
                if (once(3))
                    formatCell(&cell);
                mCursor = cell.firstCursorPosition();
                blocks(1 + below(3), depth + 1);
            }
        }
        mCursor.setPosition(table->lastPosition() + 1);
        mCursor.setBlockFormat(blockFormat());
    }

    void merge(QTextTable *table, int rows, int columns)
    {
        const int row = below(rows);
        const int column = below(columns);
        const int rowSpan = 1 + below(rows - row);
        const int columnSpan = 1 + below(columns - column);
        for (int r = row; r < row + rowSpan; ++r) {
            for (int c = column; c < column + columnSpan; ++c) {
                const QTextTableCell cell = table->cellAt(r, c);
                if (cell.rowSpan() > 1 || cell.columnSpan() > 1)
                    return;
            }
        }
        table->mergeCells(row, column, rowSpan, columnSpan);
    }

    QTextTableFormat tableFormat(int columns)
    {
        QTextTableFormat format;
        format.setBorder(below(4));
        if (once(2))
            format.setCellPadding(distance(10));
        format.setCellSpacing(once(2) ? distance(5) : 0);
        if (once(3))
            format.setAlignment(once(2) ? Qt::AlignHCenter : Qt::AlignRight);
        if (once(3))
            format.setHeaderRowCount(1);
        if (once(3))
            format.setBackground(color());
        if (once(3))
            format.setBorderBrush(color());
        if (once(3))
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Dashed);
        if (once(3))
            format.setWidth(QTextLength(QTextLength::PercentageLength, 1 + below(100)));
        if (once(2)) {
            QList<QTextLength> widths;
            for (int i = 0; i < columns; ++i)
                widths.append(QTextLength(static_cast<QTextLength::Type>(below(3)),
                                          10 + below(8000) / 100.0));
            format.setColumnWidthConstraints(widths);
        }
        return format;
    }

    void formatCell(QTextTableCell *cell)
    {
        QTextTableCellFormat format = cell->format().toTableCellFormat();
        if (once(2))
            format.setBackground(color());
        if (once(2))
            format.setVerticalAlignment(once(2) ? QTextCharFormat::AlignMiddle
                                                : QTextCharFormat::AlignBottom);
        cell->setFormat(format);
    }

    void picture()
    {
        QImage image(1 + below(5), 1 + below(5), QImage::Format_RGB32);
        image.fill(color());
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        if (once(4) && mOptions.mBrokenPictures)
            bytes = "\xff\xd8\xff not decoded by anyone";
        QTextImageFormat format;
        format.merge(charFormat());
        format.setName(u"pictures/%1 %2.png"_s.arg(below(1000000)).arg(makeRandomText(mRandom, 4)));
        if (once(2)) {
            format.setWidth(1 + distance(100));
            format.setHeight(1 + distance(100));
        }
        if (once(5) && mOptions.mBrokenPictures) {
            bytes = "metafile";
            format.setProperty(TVLTextFormat::PictureKind, u"\\wmetafile8\\picw100\\pich200"_s);
        }
        mDocument->addResource(QTextDocument::ImageResource, QUrl(format.name()), bytes);
        mCursor.insertImage(format);
    }

    QTextBlockFormat blockFormat()
    {
        QTextBlockFormat format;
        if (once(3))
            format.setAlignment(
                anyOf({Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter, Qt::AlignJustify}));
        if (once(4))
            format.setLeftMargin(distance(100) - 20);
        if (once(4))
            format.setRightMargin(distance(100));
        if (once(4))
            format.setTextIndent(distance(100) - 50);
        if (once(4))
            format.setTopMargin(distance(40));
        if (once(4))
            format.setBottomMargin(distance(40));
        if (once(4))
            lineHeight(&format);
        if (once(8))
            format.setIndent(1 + below(5));
        if (once(6))
            format.setTabPositions(
                {QTextOption::Tab(distance(300), static_cast<QTextOption::TabType>(below(4))),
                 QTextOption::Tab(distance(300), QTextOption::LeftTab)});
        if (once(8))
            format.setBackground(color());
        if (once(8))
            format.setHeadingLevel(1 + below(6));
        if (once(10))
            format.setMarker(once(2) ? QTextBlockFormat::MarkerType::Checked
                                     : QTextBlockFormat::MarkerType::Unchecked);
        if (once(10))
            format.setLayoutDirection(once(2) ? Qt::RightToLeft : Qt::LeftToRight);
        if (once(10))
            format.setPageBreakPolicy(
                static_cast<QTextFormat::PageBreakFlag>(1 << 0 | below(2) << 4));
        if (once(10))
            format.setNonBreakableLines(true);
        if (once(10))
            format.setProperty(TVLTextFormat::KeepWithNext, true);
        // What a paragraph is in a script goes by what else it has.
        if (format.nonBreakableLines())
            format.setProperty(TVLTextFormat::ScriptElement, u"Shot; 5% {\\}\u00e9"_s);
        if (format.headingLevel() > 4)
            format.setProperty(TVLTextFormat::SectionDepth, 7);
        if (format.boolProperty(TVLTextFormat::KeepWithNext))
            format.setProperty(TVLTextFormat::DualDialogue, true);
        return format;
    }

    void lineHeight(QTextBlockFormat *format)
    {
        switch (below(4)) {
        case 0:
            format->setLineHeight(50 + 5 * below(40), QTextBlockFormat::ProportionalHeight);
            break;
        case 1:
            format->setLineHeight(1 + distance(40), QTextBlockFormat::FixedHeight);
            break;
        case 2:
            format->setLineHeight(1 + distance(40), QTextBlockFormat::MinimumHeight);
            break;
        default:
            format->setLineHeight(1 + distance(40), QTextBlockFormat::LineDistanceHeight);
        }
    }

    enum Place { OfRun, OfParagraphEnd };

    /** Links, comments and notes are made of text; the end of a paragraph can't have them. */
    QTextCharFormat charFormat(Place place = OfRun)
    {
        QTextCharFormat format;
        if (once(4))
            return format;
        font(&format);
        if (once(4))
            format.setForeground(color());
        if (once(6))
            format.setBackground(color());
        if (mOptions.mMarks && place == OfRun)
            marks(&format);
        return format;
    }

    void font(QTextCharFormat *format)
    {
        if (once(2))
            format->setFontFamilies(once(4) ? QStringList{u"Font \u00e9{}"_s, u"Other"_s}
                                            : QStringList(u"Family %1"_s.arg(below(5))));
        if (once(2))
            format->setFontPointSize((2 + below(100)) / 2.0);
        if (once(3))
            format->setFontWeight(
                anyOf({QFont::Bold, QFont::Bold, QFont::Light, QFont::DemiBold, QFont::Black}));
        if (once(3))
            format->setFontItalic(true);
        if (once(4)) {
            format->setUnderlineStyle(static_cast<QTextCharFormat::UnderlineStyle>(1 + below(6)));
            if (once(2))
                format->setUnderlineColor(color());
        } else if (once(8)) {
            format->setUnderlineStyle(QTextCharFormat::SingleUnderline);
            format->setProperty(TVLTextFormat::DoubleUnderline, true);
        }
        if (once(8))
            format->setFontStrikeOut(true);
        if (once(12))
            format->setFontOverline(true);
        if (once(6))
            format->setVerticalAlignment(
                static_cast<QTextCharFormat::VerticalAlignment>(1 + below(6)));
        if (once(6))
            format->setFontCapitalization(static_cast<QFont::Capitalization>(1 + below(4)));
        if (once(8)) {
            format->setFontLetterSpacingType(QFont::AbsoluteSpacing);
            format->setFontLetterSpacing(distance(10) - 5);
        }
        if (once(12))
            format->setFontStretch(50 + below(49));
    }

    void marks(QTextCharFormat *format)
    {
        if (once(8))
            format->setProperty(TVLTextFormat::PresetHighlight, 1 + below(5));
        if (once(12))
            format->setProperty(TVLTextFormat::Hidden, true);
        if (mOptions.mInlineNotes && once(10))
            format->setProperty(TVLTextFormat::InlineAnnotation, true);
        if (mOptions.mInlineNotes && once(10))
            format->setProperty(TVLTextFormat::InlineFootnote, true);
        if (once(8)) {
            const QString addresses[] = {u"https://example.org/?a=\"b\"&c=\\d#e"_s, u"#place"_s,
                                         u"tavellnk://%1"_s.arg(below(100)),
                                         TVLTextFormat::internalLinkAddress(QUuid::createUuidV5(
                                             QUuid(), QByteArray::number(below(5))))};
            TVLTextFormat::setLink(format, addresses[below(4)]);
            if (once(3))
                format->setToolTip(makeRandomText(mRandom, 8));
        }
        if (once(8))
            TVLTextFormat::setComment(format,
                                      TVLTextCommentLink(u"comment \"%1\""_s.arg(below(20)), {}));
        if (once(12)) {
            format->setAnchor(true);
            format->setAnchorNames({u"place %1"_s.arg(below(5))});
        }
    }

    QRandomGenerator *mRandom;
    RandomDocumentOptions mOptions;
    QTextDocument *mDocument;
    QTextCursor mCursor;
    QList<QTextList *> mLists;
};

} // namespace

std::unique_ptr<QTextDocument> makeRandomDocument(QRandomGenerator *random,
                                                  const RandomDocumentOptions &options)
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    Maker(random, options, document.get()).make();
    return document;
}

QString makeRandomText(QRandomGenerator *random, int maximumLength)
{
    constexpr QStringView Special =
        u"\\{}\t'\"\u00a0\u00ad\u2011\u2028\u2013\u201c;*~-_|annotation{";
    QString text;
    for (int i = 1 + int(random->bounded(maximumLength)); i > 0; --i) {
        switch (random->bounded(12)) {
        case 0:
            text += Special.at(random->bounded(int(Special.size())));
            break;
        case 1: {
            const char32_t plane = random->bounded(17u) << 16;
            char32_t character = plane | random->bounded(0x10000u);
            // What a document takes for its own structure or what is no character.
            if ((character & 0xfffe) == 0xfffe || (character >= 0xd800 && character < 0xe000)
                || (character >= 0xfdd0 && character <= 0xfdef) || character == 0x2029
                || character == 0xfffc || character < 0x20)
                character = U'\u00e9';
            text += QString::fromUcs4(&character, 1);
            break;
        }
        case 2:
            text += u' ';
            break;
        default:
            text += QChar(u'a' + int(random->bounded(26)));
        }
    }
    return text;
}
