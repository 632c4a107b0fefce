#pragma once

#include "TvlExport.h"

class QPrinter;
class QTextDocument;

/**
 * Prints documents, on paper or as PDF. What a print looks like stands in dynamic properties of the
 * document: `paperSize` (QSizeF, in points) and `topMargin`, `bottomMargin`, `leftMargin` and
 * `rightMargin` (in points).
 */
class TVL_EXPORT TVLPrinter
{
public:
    /** Takes paper size and margins from the document; margins only if all four are given. */
    static void preparePrinterForDocument(QPrinter *printer, const QTextDocument *document);

    /**
     * Prints a document's pages, those of the printer's range, as often as the printer's copies
     * ask for. Its title becomes the job's name, its links those of a PDF. The document stays as it
     * is. Nothing is printed without a document or a valid printer; a printer that fails or is
     * aborted ends the print.
     *
     * @param indexCards      has no effect yet
     * @param cursorPosition  if given, nothing is printed: @p pageOut gets the page, from 1, that
     *                        shows this position; -1 for none
     */
    static void print(QPrinter *printer, const QTextDocument *document, bool indexCards,
                      const int *cursorPosition, int *pageOut);
};
