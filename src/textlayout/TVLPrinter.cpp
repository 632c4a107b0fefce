#include "TVLPrinter.h"

#include "TTextDoc.h"

#include <QAbstractTextDocumentLayout>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace {

/** Lengths of a layout to those of the printer: documents count 96 where paper counts 72. */
constexpr double Scale = 1.3333333333333333;

QSizeF pageSize(const QPrinter *printer)
{
    return printer->pageRect(QPrinter::DevicePixel).size() / Scale;
}

/** A copy of a document that is laid out for a printer. */
std::unique_ptr<QTextDocument> laidOut(const QTextDocument *document, QPrinter *printer)
{
    std::unique_ptr<QTextDocument> copy(TTextDoc::cloneDocumentQtStyle(document, nullptr));
    copy->documentLayout()->setPaintDevice(printer);
    copy->setPageSize(pageSize(printer));
    return copy;
}

void printPage(const QTextDocument &document, int page, QPainter *painter)
{
    const QRectF area(QPointF(0, (page - 1) * document.pageSize().height()), document.pageSize());
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = area;
    context.palette.setColor(QPalette::Text, Qt::black);
    painter->save();
    painter->translate(0, -area.top());
    painter->setClipRect(area);
    document.documentLayout()->draw(painter, context);
    painter->restore();
}

struct PageRange
{
    int first;
    int last;
};

/** The pages that a printer is asked for; none if there are none of them. */
std::optional<PageRange> rangeOf(const QPrinter *printer, int pageCount)
{
    PageRange range{std::max(printer->fromPage(), 1), std::min(printer->toPage(), pageCount)};
    if (printer->fromPage() == 0 && printer->toPage() == 0)
        range = {1, pageCount};
    if (range.last < range.first)
        return std::nullopt;
    return range;
}

bool isStopped(const QPrinter *printer)
{
    return printer->printerState() == QPrinter::Aborted
        || printer->printerState() == QPrinter::Error;
}

void printPages(QPrinter *printer, const QTextDocument &document, const PageRange &range)
{
    QPainter painter;
    if (!painter.begin(printer))
        return;
    painter.scale(Scale, Scale);
    // A printer that makes copies by itself wants one of each page.
    const int copies = printer->supportsMultipleCopies() ? 1 : printer->copyCount();
    const int documentCopies = printer->collateCopies() ? copies : 1;
    const int pageCopies = printer->collateCopies() ? 1 : copies;
    const bool isBackwards = printer->pageOrder() == QPrinter::LastPageFirst;
    const int step = isBackwards ? -1 : 1;
    const int count = range.last - range.first + 1;
    bool isFirst = true;
    for (int i = 0; i < documentCopies * count * pageCopies; ++i) {
        if (isStopped(printer) || (!isFirst && !printer->newPage()))
            return;
        isFirst = false;
        const int index = (i / pageCopies) % count;
        printPage(document, (isBackwards ? range.last : range.first) + step * index, &painter);
    }
}

bool isFirstPageCounted(const QTextDocument *document)
{
    const QVariant isCounted = document->property("countFirstPage");
    return !isCounted.isValid() || isCounted.toBool();
}

/** The page of a range that shows a position; -1 if none does. */
int pageOfPosition(const QTextDocument &document, const PageRange &range, int position,
                   bool isFirstCounted)
{
    const QTextBlock block = document.findBlock(position);
    if (!block.isValid())
        return -1;
    double top = document.documentLayout()->blockBoundingRect(block).top();
    if (const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
        line.isValid())
        top += line.y();
    const int page = int(top / document.pageSize().height()) + 1;
    return page >= range.first && page <= range.last ? page - (isFirstCounted ? 0 : 1) : -1;
}

} // namespace

void TVLPrinter::preparePrinterForDocument(QPrinter *printer, const QTextDocument *document)
{
    if (!printer || !document)
        return;
    const QSizeF paper = document->property("paperSize").toSizeF();
    if (paper.isValid() && !paper.isEmpty())
        printer->setPageSize(QPageSize(paper, QPageSize::Point));
    const std::array margins = {document->property("leftMargin"), document->property("topMargin"),
                                document->property("rightMargin"),
                                document->property("bottomMargin")};
    const bool areGiven = std::all_of(margins.begin(), margins.end(),
                                      [](const QVariant &margin) { return margin.isValid(); });
    if (areGiven)
        printer->setPageMargins(QMarginsF(margins[0].toDouble(), margins[1].toDouble(),
                                          margins[2].toDouble(), margins[3].toDouble()),
                                QPageLayout::Point);
}

void TVLPrinter::print(QPrinter *printer, const QTextDocument *document, bool /*indexCards*/,
                       const int *cursorPosition, int *pageOut)
{
    if (!document || !printer || !printer->isValid() || (cursorPosition && !pageOut))
        return;
    if (pageOut)
        *pageOut = -1;
    if (pageSize(printer).isEmpty())
        return;
    const QString title = document->metaInformation(QTextDocument::DocumentTitle);
    if (!title.isEmpty())
        printer->setDocName(title);
    const std::unique_ptr<QTextDocument> copy = laidOut(document, printer);
    const std::optional<PageRange> range = rangeOf(printer, copy->pageCount());
    if (range && !cursorPosition)
        printPages(printer, *copy, *range);
    else if (range)
        *pageOut = pageOfPosition(*copy, *range, *cursorPosition, isFirstPageCounted(document));
}
