#include "TVLRtfParser_p.h"

namespace {

/** Deeper tables are read as if they stood this deep. */
constexpr int MaximumTableDepth = 32;

} // namespace

TVLRtfRowProperties &TVLRtfParser::rowProperties()
{
    return mGroup.mInNestedRow ? mNestedRowProperties : mRowProperties;
}

TVLRtfRowProperties TVLRtfParser::propertiesOfRow(int depth, size_t cellCount)
{
    TVLRtfRowProperties &known = depth > 1 ? mNestedRowProperties : mRowProperties;
    // Rows may share one long description; what lies beyond a row's own cells isn't copied.
    std::vector<TVLRtfCellProperties> cells = std::exchange(known.mCells, {});
    TVLRtfRowProperties properties = known;
    properties.mCells.assign(cells.begin(),
                             cells.begin() + std::ptrdiff_t(qMin(cells.size(), cellCount)));
    known.mCells = std::move(cells);
    return properties;
}

void TVLRtfParser::applyWord(TVLRtfTableAction action, int argument, const TVLRtfToken &token)
{
    using A = TVLRtfTableAction;
    // A note's tables become lines of text; only their ends matter.
    const bool isEnd = action == A::CellEnd || action == A::RowEnd || action == A::NestedCellEnd
        || action == A::NestedRowEnd;
    if (mGroup.mDestination != Destination::Body || (mNoteDepth > 0 && !isEnd))
        return;
    switch (action) {
    case A::RowDefaults:
        if (!mGroup.mInNestedRow)
            leaveUndecided(0);
        rowProperties() = {};
        mCellProperties = {};
        break;
    case A::CellEdge:
        mCellProperties.mEdge = token.mParameter;
        rowProperties().mCells.push_back(std::exchange(mCellProperties, {}));
        mRowIsOpen = mRowIsOpen || !mGroup.mInNestedRow;
        break;
    case A::CellEnd:
        endCell(1);
        break;
    case A::RowEnd:
        endRow(1);
        mRowIsOpen = mRowIsOpen && mNoteDepth > 0;
        break;
    case A::NestedCellEnd:
        endCell(qMax(2, tableDepth()));
        break;
    case A::NestedRowEnd:
        endRow(qMax(2, tableDepth()));
        break;
    case A::CellFlag:
        setCellFlag(static_cast<TVLRtfCellFlag>(argument));
        break;
    case A::CellAlignment:
        // Cells are aligned at the top anyway.
        mCellProperties.mVerticalAlignment = argument == QTextCharFormat::AlignTop ? 0 : argument;
        break;
    case A::CellNumber:
        mCellProperties.mBackground = token.mParameter;
        break;
    case A::RowNumber:
        setRowNumber(static_cast<TVLRtfRowNumber>(argument),
                     token.mHasParameter ? token.mParameter : 1);
        break;
    case A::RowAlignment:
        rowProperties().mAlignment = argument;
        break;
    case A::BorderOwner:
        mBorderIsOfTable = argument != 0;
        break;
    case A::BorderWidth:
        if (!mBorderIsOfTable)
            break;
        rowProperties().mBorderSeen =
            qMax(rowProperties().mBorderSeen, qMin(token.mParameter, 1000));
        break;
    }
}

void TVLRtfParser::setCellFlag(TVLRtfCellFlag flag)
{
    // The first cell of a merge needs no mark: it is the one that the others follow.
    if (flag == TVLRtfCellFlag::MergeNext)
        mCellProperties.mMergeNext = true;
    else if (flag == TVLRtfCellFlag::MergeDownNext)
        mCellProperties.mMergeDownNext = true;
}

void TVLRtfParser::setRowNumber(TVLRtfRowNumber number, int value)
{
    TVLRtfRowProperties &row = rowProperties();
    switch (number) {
    case TVLRtfRowNumber::Header:
        row.mHeader = value != 0;
        break;
    case TVLRtfRowNumber::Left:
        row.mLeft = boundedTwips(value);
        break;
    case TVLRtfRowNumber::Border:
        row.mBorder = value;
        break;
    case TVLRtfRowNumber::BorderStyle:
        row.mBorderStyle = qBound(0, value, int(QTextFrameFormat::BorderStyle_Outset));
        break;
    case TVLRtfRowNumber::BorderColor:
        row.mBorderColor = value;
        break;
    case TVLRtfRowNumber::Padding:
        row.mPadding = value;
        break;
    case TVLRtfRowNumber::Spacing:
        row.mSpacing = value;
        break;
    case TVLRtfRowNumber::Background:
        row.mBackground = value;
        break;
    case TVLRtfRowNumber::ConstraintType:
        mCellProperties.mConstraintType = qBound(0, value, int(QTextLength::PercentageLength));
        break;
    case TVLRtfRowNumber::ConstraintValue:
        mCellProperties.mConstraintValue = value;
        break;
    case TVLRtfRowNumber::WidthType:
        row.mWidthType = qBound(0, value, int(QTextLength::PercentageLength));
        break;
    case TVLRtfRowNumber::WidthValue:
        row.mWidthValue = value;
        break;
    }
}

int TVLRtfParser::tableDepth() const
{
    const TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    if (paragraph.mTableDepth > 0)
        return qMax(qMin(paragraph.mTableDepth, MaximumTableDepth), mGroup.mLeastDepth);
    return qMax(paragraph.mInTable ? 1 : 0, mGroup.mLeastDepth);
}

void TVLRtfParser::setTableDepth(int depth)
{
    while (int(mTables.size()) > depth)
        closeTable();
    while (int(mTables.size()) < depth)
        mTables.emplace_back();
}

void TVLRtfParser::closeTable()
{
    OpenTable open = std::move(mTables.back());
    mTables.pop_back();
    if (open.mTable.mRows.empty() && open.mRow.mCells.empty()) {
        // No cell has ever ended here, so this is no table.
        for (TVLRtfCellItem &item : open.mCell.mItems)
            place(std::move(item));
        return;
    }
    // A cell or row that the file leaves open still has its text.
    if (!open.mCell.mItems.empty())
        open.mRow.mCells.push_back(std::move(open.mCell));
    if (!open.mRow.mCells.empty())
        finishRow(&open, int(mTables.size()) + 1);
    place(std::make_unique<TVLRtfTable>(std::move(open.mTable)));
}

void TVLRtfParser::endCell(int depth)
{
    if (mNoteDepth > 0)
        return bodyText(u"\t");
    deliver(depth);
    OpenTable &table = mTables.back();
    table.mRow.mCells.push_back(std::exchange(table.mCell, {}));
}

void TVLRtfParser::endRow(int depth)
{
    if (mNoteDepth > 0)
        return bodyText(QString(QChar(QChar::LineSeparator)));
    if (!mParagraph.mText.isEmpty())
        endCell(depth);
    leaveUndecided(depth);
    setTableDepth(depth);
    OpenTable &table = mTables.back();
    if (!table.mCell.mItems.empty())
        table.mRow.mCells.push_back(std::exchange(table.mCell, {}));
    if (table.mRow.mCells.empty())
        return;
    finishRow(&table, depth);
}

void TVLRtfParser::finishRow(OpenTable *table, int depth)
{
    TVLRtfRow &row = table->mRow;
    const size_t described = (depth > 1 ? mNestedRowProperties : mRowProperties).mCells.size();
    // A program may end more cells than it has described; there is nothing to see of those.
    while (described > 0 && row.mCells.size() > described && !row.mCells.back().hasContent())
        row.mCells.pop_back();
    row.mProperties = propertiesOfRow(depth, row.mCells.size());
    table->mTable.mRows.push_back(std::exchange(row, {}));
}
