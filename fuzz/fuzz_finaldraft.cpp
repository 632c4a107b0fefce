#include "FuzzSupport.h"

#include "TVLFinalDraftReader.h"
#include "TVLFinalDraftWriter.h"

#include <QTextDocument>

namespace {

bool readFile(const QString &path, QTextDocument *document)
{
    TVLFinalDraftReader reader;
    if (!reader.load(path))
        tvlReportFinding("a file can't be loaded");
    return reader.read(document, {});
}

QByteArray written(const QTextDocument &document)
{
    return TVLFinalDraftWriter::toXml(&document, {});
}

QString asFile(const QByteArray &bytes)
{
    return tvlInputAsFile(reinterpret_cast<const uint8_t *>(bytes.constData()),
                          size_t(bytes.size()));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is a script. What was read, once written, reads back and is written the same. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QTextDocument document;
    const bool isWhole = readFile(tvlInputAsFile(data, size), &document);
    if (!isWhole && document.isEmpty())
        return 0;
    const QByteArray xml = written(document);
    QTextDocument again;
    if (!readFile(asFile(xml), &again))
        tvlReportFinding("what was written can't be read");
    if (again.toRawText() != document.toRawText())
        tvlReportDifference("the text has changed", document.toRawText().toUtf8(),
                            again.toRawText().toUtf8());
    const QByteArray xmlAgain = written(again);
    if (xmlAgain != xml)
        tvlReportDifference("a second writing differs", xml, xmlAgain);
    return 0;
}
