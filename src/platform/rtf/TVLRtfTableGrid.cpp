#include "TVLRtfTableGrid_p.h"

#include <algorithm>

namespace {

/** Edges that differ by less are the same: what they show is rounding, not a column. */
constexpr int EdgeTolerance = 10;
constexpr int DefaultCellWidth = 1440;
constexpr int MaximumEdge = 1'000'000;
/** Grid places that a table may have for each of its cells. */
constexpr size_t PlacesPerCell = 8;

/** The right edges of a row's cells, rising; cells that the row says nothing
 * of, or nothing possible, get a width. */
std::vector<int> cellEdges(const TVLRtfRow &row)
{
    std::vector<int> edges;
    edges.reserve(row.mCells.size());
    int last = row.mProperties.mLeft;
    for (size_t cell = 0; cell < row.mCells.size(); ++cell) {
        const auto &properties = row.mProperties.mCells;
        const int edge =
            cell < properties.size() ? std::min(properties[cell].mEdge, MaximumEdge) : last;
        const bool isMerged = cell < properties.size() && properties[cell].mMergeNext;
        const int step = isMerged || last >= MaximumEdge ? EdgeTolerance + 1 : DefaultCellWidth;
        last = edge > last + EdgeTolerance ? edge : last + step;
        edges.push_back(last);
    }
    return edges;
}

/** The edges of two rows together. */
std::vector<int> unitedEdges(const std::vector<int> &a, const std::vector<int> &b)
{
    std::vector<int> all;
    all.reserve(a.size() + b.size());
    std::merge(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(all));
    std::vector<int> united;
    united.reserve(all.size());
    for (int edge : all) {
        if (united.empty() || edge - united.back() > EdgeTolerance)
            united.push_back(edge);
    }
    return united;
}

int columnOfEdge(const std::vector<int> &edges, int edge)
{
    const auto found = std::lower_bound(edges.begin(), edges.end(), edge - EdgeTolerance);
    return int(std::min<std::ptrdiff_t>(found - edges.begin(), std::ssize(edges) - 1));
}

} // namespace

TVLRtfTableGrid::TVLRtfTableGrid(const TVLRtfTable &table, size_t firstRow)
{
    size_t row = firstRow;
    while (row < table.mRows.size() && addRow(table.mRows[row]))
        ++row;
    placeCells(table, firstRow, row - firstRow);
    spanRows(table, firstRow);
}

bool TVLRtfTableGrid::addRow(const TVLRtfRow &row)
{
    std::vector<int> edges = unitedEdges(mEdges, cellEdges(row));
    const size_t cellCount = mCellCount + row.mCells.size();
    if (mRowCount > 0 && edges.size() * (mRowCount + 1) > PlacesPerCell * cellCount)
        return false;
    mEdges = std::move(edges);
    mCellCount = cellCount;
    ++mRowCount;
    return true;
}

void TVLRtfTableGrid::placeCells(const TVLRtfTable &table, size_t firstRow, size_t count)
{
    mPlaces.resize(count);
    for (size_t row = 0; row < count; ++row) {
        const TVLRtfRow &source = table.mRows[firstRow + row];
        const std::vector<int> edges = cellEdges(source);
        const auto &properties = source.mProperties.mCells;
        int column = 0;
        for (size_t cell = 0; cell < edges.size(); ++cell) {
            const int end = std::max(columnOfEdge(mEdges, edges[cell]) + 1, column);
            const bool covered = column == end
                || (cell > 0 && cell < properties.size() && properties[cell].mMergeNext);
            mPlaces[row].push_back({column, end - column, covered ? 0 : 1});
            if (covered && column != end) {
                // The nearest cell on the left that isn't covered takes the place over.
                auto left = std::find_if(mPlaces[row].rbegin() + 1, mPlaces[row].rend(),
                                         [](const Place &place) { return place.mRowSpan > 0; });
                if (left != mPlaces[row].rend())
                    left->mColumnSpan = end - left->mColumn;
            }
            column = end;
        }
    }
}

void TVLRtfTableGrid::spanRows(const TVLRtfTable &table, size_t firstRow)
{
    struct Top
    {
        Place *mPlace = nullptr;
        size_t mNextRow = 0; ///< The row in which a cell may go on downwards.
    };
    std::vector<Top> tops(mEdges.size()); // By the column where each starts.
    for (size_t row = 0; row < mPlaces.size(); ++row) {
        const auto &properties = table.mRows[firstRow + row].mProperties.mCells;
        for (size_t cell = 0; cell < mPlaces[row].size(); ++cell) {
            Place &place = mPlaces[row][cell];
            if (place.mRowSpan == 0)
                continue;
            Top &top = tops[place.mColumn];
            if (cell < properties.size() && properties[cell].mMergeDownNext && top.mPlace
                && top.mNextRow == row && top.mPlace->mColumnSpan == place.mColumnSpan) {
                ++top.mPlace->mRowSpan;
                place.mRowSpan = 0;
                top.mNextRow = row + 1;
            } else {
                top = {&place, row + 1};
            }
        }
    }
}
