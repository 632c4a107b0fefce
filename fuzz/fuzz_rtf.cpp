#include "FuzzSupport.h"

#include "TVLInlineMarkup.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QTextDocument>

#include <sanitizer/allocator_interface.h>

#include <algorithm>

namespace {

/** No single allocation may be larger; 0 while there is no limit. */
size_t allocationLimit = 0;

void checkAllocation(const volatile void *, size_t size)
{
    if (allocationLimit > 0 && size > allocationLimit) {
        allocationLimit = 0;
        tvlReportFinding("an allocation is out of proportion to the input");
    }
}

void ignoreFree(const volatile void *) { }

QByteArray write(const QTextDocument &document)
{
    return TVLTextRtfWriter(nullptr).toRtf(&document, false);
}

/** What has been written reads without complaint and is written the same again. */
void checkRoundTrip(const QTextDocument &document)
{
    const QByteArray rtf = write(document);
    QTextDocument copy;
    TVLTextRtfReader reader(&copy);
    if (!reader.read(rtf))
        tvlReportFinding("what was written can't be read");
    TVLInlineMarkup::fromMarkup(&copy);
    if (copy.toRawText() != document.toRawText())
        tvlReportDifference("the text has changed", document.toRawText().toUtf8(),
                            copy.toRawText().toUtf8());
    const QByteArray again = write(copy);
    if (again != rtf)
        tvlReportDifference("a second writing differs", rtf, again);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    __sanitizer_install_malloc_and_free_hooks(checkAllocation, ignoreFree);
    return 0;
}

/** The input is a document, read as those of a project are. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t BytesPerByte = 64;
    constexpr size_t SmallestLimit = 1 << 20;
    const QByteArray rtf(reinterpret_cast<const char *>(data), qsizetype(size));
    QTextDocument document;
    allocationLimit = std::max(BytesPerByte * size, SmallestLimit);
    const bool isWhole = TVLTextRtfReader(&document).read(rtf);
    allocationLimit = 0;
    TVLInlineMarkup::fromMarkup(&document);
    if (isWhole || !document.isEmpty())
        checkRoundTrip(document);
    return 0;
}
