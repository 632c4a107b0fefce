#include "FuzzSupport.h"

#include "TvlFountain.h"

#include <QTextDocument>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is a screenplay. What was read, once written, reads back and is written the same. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    QTextDocument document;
    if (!TvlFountain::parseText(input, &document, {}))
        tvlReportFinding("a text can't be read");
    const QString text = TvlFountain::toText(&document, {});
    QTextDocument again;
    if (!TvlFountain::parseText(text, &again, {}))
        tvlReportFinding("what was written can't be read");
    if (again.toRawText() != document.toRawText())
        tvlReportDifference("the text has changed", document.toRawText().toUtf8(),
                            again.toRawText().toUtf8());
    const QString textAgain = TvlFountain::toText(&again, {});
    if (textAgain != text)
        tvlReportDifference("a second writing differs", text.toUtf8(), textAgain.toUtf8());
    return 0;
}
