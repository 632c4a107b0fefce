#include "TVLRtfComposer_p.h"

#include <QTextTable>

namespace {

constexpr int TableTwips = 9000;
constexpr int MinimumColumnTwips = 40;

} // namespace

QList<int> TVLRtfComposer::columnEdges(const QTextTable *table) const
{
    const QList<QTextLength> widths = table->format().columnWidthConstraints();
    const int columns = table->columns();
    const int share = qMax(TableTwips / columns, MinimumColumnTwips);
    QList<int> edges;
    int edge = 0;
    for (int column = 0; column < columns; ++column) {
        const QTextLength width = widths.value(column);
        int twips = share;
        if (width.type() == QTextLength::FixedLength)
            twips = tvlToTwips(width.rawValue());
        else if (width.type() == QTextLength::PercentageLength)
            twips = int(TableTwips * width.rawValue() / 100);
        edge += qBound(MinimumColumnTwips, twips, 30000);
        edges.append(edge);
    }
    return edges;
}

void TVLRtfComposer::table(QTextTable *table, int depth)
{
    const QList<int> edges = columnEdges(table);
    for (int row = 0; row < table->rows(); ++row) {
        if (depth == 1) {
            rowProperties(table, row, edges);
            rowContent(table, row, depth);
            mBody.append("\\row\n");
        } else {
            rowContent(table, row, depth);
            mBody.append("{\\*\\nesttableprops");
            rowProperties(table, row, edges);
            mBody.append("\\nestrow}{\\nonesttables\\par}\n");
        }
    }
}

void TVLRtfComposer::rowProperties(QTextTable *table, int row, const QList<int> &edges)
{
    const QTextTableFormat format = table->format();
    mBody.append("\\trowd");
    tvlAppendRtfWord(&mBody, "trgaph", tvlToTwips(format.cellPadding()));
    if (format.alignment() & Qt::AlignHCenter)
        mBody.append("\\trqc");
    else if (format.alignment() & Qt::AlignRight)
        mBody.append("\\trqr");
    else if (format.hasProperty(QTextFormat::BlockAlignment))
        mBody.append("\\trql");
    if (row < format.headerRowCount())
        mBody.append("\\trhdr");
    if (row == 0)
        tableProperties(table);
    for (int column = 0; column < table->columns(); ++column) {
        if (row == 0)
            columnConstraint(table, column);
        cellProperties(table, row, column, edges.at(column));
    }
    mBody.append('\n');
}

void TVLRtfComposer::tableProperties(const QTextTable *table)
{
    const QTextTableFormat format = table->format();
    tvlAppendRtfWord(&mBody, "tvlborder", tvlToTwips(format.border()));
    if (format.hasProperty(QTextFormat::FrameBorderStyle))
        tvlAppendRtfWord(&mBody, "tvlborderstyle", format.borderStyle());
    if (const QColor color = tvlSolidColor(format.borderBrush()); color.isValid())
        tvlAppendRtfWord(&mBody, "tvlbordercolor", mHeader.color(color));
    if (format.hasProperty(QTextFormat::TableCellPadding))
        tvlAppendRtfWord(&mBody, "tvlpadding", tvlToTwips(format.cellPadding()));
    tvlAppendRtfWord(&mBody, "tvlspacing", tvlToTwips(format.cellSpacing()));
    if (const QColor color = tvlSolidColor(format.background()); color.isValid())
        tvlAppendRtfWord(&mBody, "tvltablebg", mHeader.color(color));
    if (format.hasProperty(QTextFormat::FrameWidth)) {
        tvlAppendRtfWord(&mBody, "tvlwidthtype", format.width().type());
        tvlAppendRtfWord(&mBody, "tvlwidth", qRound(format.width().rawValue() * 100));
    }
}

void TVLRtfComposer::columnConstraint(const QTextTable *table, int column)
{
    const QTextLength width = table->format().columnWidthConstraints().value(column);
    tvlAppendRtfWord(&mBody, "tvlcoltype", width.type());
    if (width.type() != QTextLength::VariableLength)
        tvlAppendRtfWord(&mBody, "tvlcolwidth", qRound(width.rawValue() * 100));
}

void TVLRtfComposer::cellProperties(QTextTable *table, int row, int column, int edge)
{
    const QTextTableCell cell = table->cellAt(row, column);
    // A merged cell keeps its columns' edges, so the table has as many columns when it comes back.
    if (cell.columnSpan() > 1)
        mBody.append(cell.column() == column ? "\\clmgf" : "\\clmrg");
    if (cell.rowSpan() > 1)
        mBody.append(cell.row() == row ? "\\clvmgf" : "\\clvmrg");
    const QTextTableCellFormat format = cell.format().toTableCellFormat();
    if (format.verticalAlignment() == QTextCharFormat::AlignMiddle)
        mBody.append("\\clvertalc");
    else if (format.verticalAlignment() == QTextCharFormat::AlignBottom)
        mBody.append("\\clvertalb");
    if (const double border = table->format().border(); border > 0) {
        for (const char *side : {"\\clbrdrt", "\\clbrdrl", "\\clbrdrb", "\\clbrdrr"}) {
            mBody.append(side).append("\\brdrs");
            tvlAppendRtfWord(&mBody, "brdrw", qMin(tvlToTwips(border), 75));
        }
    }
    if (const QColor color = tvlSolidColor(format.background()); color.isValid())
        tvlAppendRtfWord(&mBody, "clcbpat", mHeader.color(color));
    tvlAppendRtfWord(&mBody, "cellx", edge);
}

void TVLRtfComposer::rowContent(QTextTable *table, int row, int depth)
{
    const char *end = depth == 1 ? "\\cell\n" : "\\nestcell\n";
    for (int column = 0; column < table->columns(); ++column) {
        const QTextTableCell cell = table->cellAt(row, column);
        if (cell.row() == row && cell.column() == column) {
            frame(cell.begin(), depth, end);
            continue;
        }
        // The place that another cell covers.
        QByteArray words = "\\intbl";
        if (depth > 1)
            tvlAppendRtfWord(&words, "itap", depth);
        if (words != mParagraphWords)
            mBody.append("\\pard").append(words).append(' ');
        mParagraphWords = words;
        mBody.append(end);
    }
}
