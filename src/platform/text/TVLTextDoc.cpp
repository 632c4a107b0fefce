#include "TVLTextDoc.h"

#include "TVLInlineMarkup.h"
#include "TVLTextCopy_p.h"
#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRuns_p.h"
#include "TVLWordCount_p.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace {

QString internalLinkMark(const QTextFormat &format)
{
    const QString address = format.stringProperty(QTextFormat::AnchorHref);
    return TVLTextFormat::isTavelinorLink(address) ? address : QString();
}

/** The words of one paragraph. */
int countWords(const QTextBlock &block, bool withAnnotations, bool withFootnotes)
{
    enum Kind { NoNote = 0, Annotation = 1, Footnote = 2 };
    const auto kindOf = [](const QTextFormat &format) {
        return (format.boolProperty(TVLTextFormat::InlineAnnotation) ? Annotation : NoNote)
            | (format.boolProperty(TVLTextFormat::InlineFootnote) ? Footnote : NoNote);
    };
    const int leftOut =
        (withAnnotations ? NoNote : Annotation) | (withFootnotes ? NoNote : Footnote);

    const QString text = block.text();
    int words = 0;
    int start = 0;
    int kind = NoNote;
    const auto countUntil = [&](int end) {
        if (!(kind & leftOut))
            words += tvlCountWords(QStringView(text).sliced(start, end - start));
        start = end;
    };
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const int next = kindOf(it.fragment().charFormat());
        if (next == kind)
            continue;
        countUntil(it.fragment().position() - block.position());
        kind = next;
    }
    countUntil(int(text.size()));
    return words;
}

} // namespace

void TVLTextDoc::toInlineMarkup(QTextDocument *document)
{
    TVLInlineMarkup::toMarkup(document);
}

void TVLTextDoc::fromInlineMarkup(QTextDocument *document)
{
    TVLInlineMarkup::fromMarkup(document);
}

// --- Links to items of the project

bool TVLTextDoc::hasTavelinorLinksWithNodeIDs(const QTextDocument *document)
{
    return document && tvlHasFormat(document, [](const QTextFormat &format) {
               return TVLTextFormat::isTavelinorLinkWithNodeId(
                   format.stringProperty(QTextFormat::AnchorHref));
           });
}

bool TVLTextDoc::hasTavelinorLinksWithNodeUuids(const QTextDocument *document)
{
    return document && tvlHasFormat(document, [](const QTextFormat &format) {
               return TVLTextFormat::isTavelinorLinkWithUuid(
                   format.stringProperty(QTextFormat::AnchorHref));
           });
}

void TVLTextDoc::convertTavelinorLinkIDsToUuids(QTextDocument *document,
                                                const QMap<int, QUuid> &idToUuid)
{
    if (!document)
        return;
    tvlChangeFormats(document, [&idToUuid](QTextCharFormat *format) {
        const std::optional<int> id = TVLTextFormat::linkedNodeId(format->anchorHref());
        const auto uuid = id ? idToUuid.constFind(*id) : idToUuid.cend();
        if (uuid == idToUuid.cend())
            return false;
        TVLTextFormat::setLink(format, TVLTextFormat::internalLinkAddress(*uuid));
        return true;
    });
}

QMap<TVLTextRange, QString> TVLTextDoc::internalLinks(const QTextDocument *document)
{
    QMap<TVLTextRange, QString> links;
    if (!document)
        return links;
    for (const TVLMarkedRun &run :
         tvlMarkedRuns(document, internalLinkMark, TVLRunEnd::AtParagraphEnd))
        links.insert({run.mStart, run.mEnd - run.mStart}, run.mMark);
    return links;
}

void TVLTextDoc::setInternalLinks(QTextDocument *document,
                                  const QMap<TVLTextRange, QString> &addresses)
{
    if (!document)
        return;
    TVLTextEdits edits;
    for (auto link = addresses.cbegin(); link != addresses.cend(); ++link) {
        QTextCharFormat format;
        TVLTextFormat::setLink(&format, *link);
        // A link of another kind may be in the way.
        format.setProperty(TVLTextFormat::InternalLink, TVLTextFormat::isTavelinorLink(*link));
        const int from = std::max(link.key().mLocation, 0);
        const qint64 end = qint64(link.key().mLocation) + link.key().mLength;
        // The ends of paragraphs don't become part of a link.
        for (QTextBlock block = document->findBlock(from);
             block.isValid() && block.position() < end; block = block.next()) {
            const int start = std::max(block.position(), from);
            const qint64 stop = std::min(qint64(block.position()) + block.length() - 1, end);
            edits.mergeCharFormat(start, int(stop - start), format);
        }
    }
    edits.apply(document);
}

// --- Words

int TVLTextDoc::wordCount(const QTextDocument *document, bool withAnnotations, bool withFootnotes)
{
    if (!document)
        return 0;
    int words = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        words += countWords(block, withAnnotations, withFootnotes);
    return words;
}

// --- Text of other documents

void TVLTextDoc::appendDocument(const QTextCursor &cursor, const QTextDocument *document)
{
    if (cursor.isNull() || !document || document->isEmpty())
        return;
    std::unique_ptr<QTextDocument> copy;
    if (cursor.document() == document) {
        copy.reset(tvlCloneDocument(document, nullptr));
        document = copy.get();
    }
    QTextCursor place(cursor);
    place.beginEditBlock();
    place.removeSelectedText();
    TVLCommentTexts comments;
    if (hasInspectorCommentsOrFootnotes(document))
        comments = tvlCommentTexts(place.document());
    tvlInsertText(place, document, 0, tvlEndOf(document), &comments);
    place.endEditBlock();
}
