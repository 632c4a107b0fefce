#pragma once

#include "TVLRtfBuilder_p.h"

/**
 * Where the cells of RTF's rows lie in a table with the same columns in each row.
 *
 * RTF gives each row its own right edges. The columns are all the edges of all rows together; a
 * cell spans the columns up to its edge. Rows are taken together only as long as the columns stay
 * in proportion to the cells that there are, so a file can't make a table that is much larger
 * than itself.
 */
class TVLRtfTableGrid
{
public:
    struct Place
    {
        int mColumn;
        int mColumnSpan;
        int mRowSpan; ///< 0 for a cell that another one covers.
    };

    /** Takes rows from @p firstRow on; at least one. */
    TVLRtfTableGrid(const TVLRtfTable &table, size_t firstRow);

    [[nodiscard]] size_t rowCount() const { return mPlaces.size(); }
    [[nodiscard]] int columnCount() const { return int(mEdges.size()); }
    /** The right edge of each column, in twentieths of a point. */
    [[nodiscard]] const std::vector<int> &edges() const { return mEdges; }
    /** Where the cells of a row lie, counted from the grid's first row. */
    [[nodiscard]] const std::vector<Place> &places(size_t row) const { return mPlaces[row]; }

private:
    [[nodiscard]] bool addRow(const TVLRtfRow &row);
    void placeCells(const TVLRtfTable &table, size_t firstRow, size_t count);
    void spanRows(const TVLRtfTable &table, size_t firstRow);

    std::vector<int> mEdges;
    std::vector<std::vector<Place>> mPlaces;
    size_t mCellCount = 0;
    size_t mRowCount = 0;
};
