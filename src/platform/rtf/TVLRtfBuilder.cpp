#include "TVLRtfBuilder_p.h"

#include "TVLRtfFormats_p.h"
#include "TVLRtfTableGrid_p.h"

#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <private/qtextdocument_p.h>

namespace {

/** Above this product of merges and cells a hostile table would take minutes. */
constexpr qint64 MaximumMergeWork = 40'000'000;

QTextTableFormat tableFormat(const TVLRtfRowProperties &row, const TVLRtfFormats &formats)
{
    QTextTableFormat format;
    const int border = row.mBorder >= 0 ? row.mBorder : row.mBorderSeen;
    format.setBorder(border / TwipsPerPoint);
    format.setCellSpacing(qMax(row.mSpacing, 0) / TwipsPerPoint);
    if (row.mPadding >= 0)
        format.setCellPadding(row.mPadding / TwipsPerPoint);
    if (row.mBorderStyle >= 0)
        format.setBorderStyle(static_cast<QTextFrameFormat::BorderStyle>(row.mBorderStyle));
    if (const QColor color = formats.shade(row.mBorderColor); color.isValid())
        format.setBorderBrush(color);
    if (const QColor color = formats.shade(row.mBackground); color.isValid())
        format.setBackground(color);
    if (row.mAlignment)
        format.setAlignment(static_cast<Qt::Alignment>(row.mAlignment));
    if (row.mWidthType >= 0)
        format.setWidth(
            QTextLength(static_cast<QTextLength::Type>(row.mWidthType), row.mWidthValue / 100.0));
    return format;
}

/** The widths of the columns, by what the rows say of them or else by where the edges lie. */
QList<QTextLength> columnWidths(const TVLRtfTable &table, size_t firstRow,
                                const TVLRtfTableGrid &grid)
{
    const TVLRtfRowProperties &row = table.mRows[firstRow].mProperties;
    QList<QTextLength> widths;
    int left = row.mLeft;
    for (int column = 0; column < grid.columnCount(); ++column) {
        const int edge = grid.edges()[size_t(column)];
        widths.append(QTextLength(QTextLength::FixedLength, (edge - left) / TwipsPerPoint));
        left = edge;
    }
    // Only cells of one column each can speak for a column.
    for (size_t cell = 0; cell < grid.places(0).size() && cell < row.mCells.size(); ++cell) {
        const TVLRtfTableGrid::Place &place = grid.places(0)[cell];
        const TVLRtfCellProperties &properties = row.mCells[cell];
        if (properties.mConstraintType >= 0 && place.mColumn < widths.size())
            widths[place.mColumn] =
                QTextLength(static_cast<QTextLength::Type>(properties.mConstraintType),
                            properties.mConstraintValue / 100.0);
    }
    const bool isFree =
        !row.mCells.empty() && row.mCells.front().mConstraintType == QTextLength::VariableLength;
    if (isFree && std::all_of(widths.cbegin(), widths.cend(), [](const QTextLength &width) {
            return width.type() == QTextLength::VariableLength;
        }))
        widths.clear();
    return widths;
}

int headerRowCount(const TVLRtfTable &table, size_t firstRow, size_t count)
{
    size_t headers = 0;
    while (headers < count && table.mRows[firstRow + headers].mProperties.mHeader)
        ++headers;
    return int(headers);
}

void mergeCells(QTextTable *table, const TVLRtfTableGrid &grid)
{
    qint64 work = 0;
    for (size_t row = 0; row < grid.rowCount(); ++row) {
        for (const TVLRtfTableGrid::Place &place : grid.places(row)) {
            if (place.mRowSpan == 0 || (place.mRowSpan == 1 && place.mColumnSpan == 1))
                continue;
            work += qint64(grid.rowCount()) * grid.columnCount();
            if (work > MaximumMergeWork)
                return;
            table->mergeCells(int(row), place.mColumn, place.mRowSpan, place.mColumnSpan);
        }
    }
}

void applyCellProperties(const TVLRtfCellProperties &properties, const TVLRtfFormats &formats,
                         QTextTableCell cell)
{
    const QColor background = formats.shade(properties.mBackground);
    if (!background.isValid() && properties.mVerticalAlignment == 0)
        return;
    QTextTableCellFormat format = cell.format().toTableCellFormat();
    if (background.isValid())
        format.setBackground(background);
    if (properties.mVerticalAlignment != 0)
        format.setVerticalAlignment(
            static_cast<QTextCharFormat::VerticalAlignment>(properties.mVerticalAlignment));
    cell.setFormat(format);
}

} // namespace

bool TVLRtfCell::hasContent() const
{
    return mItems.size() > 1
        || (mItems.size() == 1
            && !(std::holds_alternative<TVLRtfParagraph>(mItems.front())
                 && std::get<TVLRtfParagraph>(mItems.front()).mText.isEmpty()));
}

TVLRtfBuilder::TVLRtfBuilder(QTextDocument *document, const TVLRtfFormats *formats)
    : mDocument(document)
    , mFormats(formats)
    , mCursor(document)
{
    mDocument->clear();
    mCursor = QTextCursor(mDocument);
    mCursor.beginEditBlock();
}

TVLRtfBuilder::~TVLRtfBuilder()
{
    for (List &list : mLists)
        list.mItems.finish();
    mCursor.endEditBlock();
}

int TVLRtfBuilder::addList(const QTextListFormat &format)
{
    mLists.push_back({format, {}});
    return int(mLists.size()) - 1;
}

void TVLRtfBuilder::addParagraph(const TVLRtfParagraph &paragraph)
{
    insertParagraph(paragraph);
}

void TVLRtfBuilder::addTable(const TVLRtfTable &table)
{
    insertTable(table);
}

void TVLRtfBuilder::addImage(const QString &name, const QByteArray &bytes)
{
    mDocument->addResource(QTextDocument::ImageResource, QUrl(name), bytes);
}

void TVLRtfBuilder::insertParagraph(const TVLRtfParagraph &paragraph)
{
    QTextBlockFormat format = paragraph.mBlockFormat;
    List *list = paragraph.mList < 0 ? nullptr : &mLists[size_t(paragraph.mList)];
    if (list && list->mItems.list())
        format.setObjectIndex(list->mItems.list()->objectIndex());
    const QTextCharFormat charFormat = mFormats->charFormats().at(paragraph.mBlockCharFormat);
    if (mHasOpenBlock) {
        mCursor.setBlockFormat(format);
        // In a cell's first block that format is the cell's own.
        if (mCursor.blockCharFormat().objectType() != QTextFormat::TableCellObject)
            mCursor.setBlockCharFormat(charFormat);
    } else {
        mCursor.insertBlock(format, charFormat);
    }
    mHasOpenBlock = false;
    if (list) {
        if (!list->mItems.list())
            list->mItems.setList(mCursor.createList(list->mFormat));
        list->mItems.add(mCursor.block());
    }
    insertRuns(paragraph);
}

void TVLRtfBuilder::insertRuns(const TVLRtfParagraph &paragraph)
{
    // A cursor would look for line ends in each run, and for its format by its properties.
    QTextDocumentPrivate *document = QTextDocumentPrivate::get(mDocument);
    const QChar *text = paragraph.mText.constData();
    for (const TVLRtfParagraph::Run &run : paragraph.mRuns) {
        // The document has a copy of its own; there is no need for one on the way.
        document->insert(mCursor.position(), QString::fromRawData(text, run.mLength),
                         indexInDocument(run.mFormat));
        text += run.mLength;
    }
}

int TVLRtfBuilder::indexInDocument(int format)
{
    constexpr int NotYet = -1;
    if (size_t(format) >= mIndexesInDocument.size())
        mIndexesInDocument.resize(size_t(mFormats->charFormats().size()), NotYet);
    int &index = mIndexesInDocument[size_t(format)];
    if (index == NotYet)
        index = QTextDocumentPrivate::get(mDocument)->formatCollection()->indexForFormat(
            mFormats->charFormats().at(format));
    return index;
}

void TVLRtfBuilder::insertItems(const std::vector<TVLRtfCellItem> &items)
{
    for (const TVLRtfCellItem &item : items) {
        if (const auto *paragraph = std::get_if<TVLRtfParagraph>(&item))
            insertParagraph(*paragraph);
        else
            insertTable(*std::get<std::unique_ptr<TVLRtfTable>>(item));
    }
}

void TVLRtfBuilder::insertTable(const TVLRtfTable &source)
{
    for (size_t firstRow = 0; firstRow < source.mRows.size();) {
        const TVLRtfTableGrid grid(source, firstRow);
        QTextTableFormat format = tableFormat(source.mRows[firstRow].mProperties, *mFormats);
        format.setColumnWidthConstraints(columnWidths(source, firstRow, grid));
        if (const int headers = headerRowCount(source, firstRow, grid.rowCount()))
            format.setHeaderRowCount(headers);
        QTextTable *table = mCursor.insertTable(int(grid.rowCount()), grid.columnCount(), format);
        mergeCells(table, grid);
        for (size_t row = 0; row < grid.rowCount(); ++row) {
            const TVLRtfRow &sourceRow = source.mRows[firstRow + row];
            for (size_t cell = 0; cell < sourceRow.mCells.size(); ++cell) {
                const TVLRtfTableGrid::Place &place = grid.places(row)[cell];
                const bool isCovered = place.mRowSpan == 0;
                if (isCovered && !sourceRow.mCells[cell].hasContent())
                    continue;
                const QTextTableCell target =
                    table->cellAt(int(row), qMin(place.mColumn, grid.columnCount() - 1));
                if (!isCovered && cell < sourceRow.mProperties.mCells.size())
                    applyCellProperties(sourceRow.mProperties.mCells[cell], *mFormats, target);
                // What stands in a covered cell goes below the text of the one that covers it.
                mCursor = isCovered ? target.lastCursorPosition() : target.firstCursorPosition();
                mHasOpenBlock = !isCovered;
                insertItems(sourceRow.mCells[cell].mItems);
            }
        }
        mCursor.setPosition(table->lastPosition() + 1);
        mHasOpenBlock = true;
        firstRow += grid.rowCount();
    }
}
