#include "TTextDoc.h"

#include "TVLTextCopy_p.h"
#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRuns_p.h"

#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t CellStart = 0xfdd0; ///< How a document's text shows tables and frames.
constexpr char16_t FrameEnd = 0xfdd1;

bool isLineEnd(QChar character)
{
    return character == QChar::ParagraphSeparator || character == QChar::LineSeparator;
}

// --- Splitting

struct Stretch
{
    int mStart;
    int mEnd;
};

/** Where a separator stands outside of tables and frames. */
std::vector<Stretch> separators(const QTextDocument *document, const QString &text,
                                QString separator)
{
    separator.replace(u"\r\n"_s, u"\n"_s);
    separator.replace(u'\n', QChar::ParagraphSeparator);
    std::vector<Stretch> found;
    if (separator.isEmpty())
        return found;
    QTextCursor cursor(const_cast<QTextDocument *>(document));
    for (qsizetype start = text.indexOf(separator); start >= 0;) {
        cursor.setPosition(int(start));
        const bool isOutside = cursor.currentFrame() == document->rootFrame();
        const qsizetype end = start + separator.size();
        if (isOutside)
            found.push_back({int(start), int(end)});
        start = text.indexOf(separator, isOutside ? end : start + 1);
    }
    return found;
}

/** What lies between separators, without the line ends beside them. */
std::vector<Stretch> stretchesBetween(const QString &text, const std::vector<Stretch> &separators)
{
    std::vector<Stretch> stretches;
    int start = 0;
    for (const Stretch &separator : separators) {
        int end = separator.mStart;
        if (end > start && isLineEnd(text[end - 1]))
            --end;
        stretches.push_back({start, end});
        start = separator.mEnd;
        if (start < text.size() && isLineEnd(text[start]))
            ++start;
    }
    stretches.push_back({start, int(text.size())});
    return stretches;
}

bool holdsText(QStringView text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar character) { return !character.isSpace(); });
}

std::unique_ptr<QTextDocument> copyOfStretch(const QTextDocument *document, const Stretch &stretch)
{
    auto part = std::make_unique<QTextDocument>();
    part->setUndoRedoEnabled(false);
    part->setDefaultFont(document->defaultFont());
    TVLCommentTexts noComments;
    tvlInsertText(QTextCursor(part.get()), document, stretch.mStart, stretch.mEnd, &noComments);
    part->setModified(false);
    part->setUndoRedoEnabled(true);
    return part;
}

// --- Most common formats

/** Sums up how much text has each format and tells the first of those with the most. */
template <typename Format>
class MostCommon
{
public:
    void add(const Format &format, int length)
    {
        auto known = std::find_if(mFormats.begin(), mFormats.end(),
                                  [&](const auto &entry) { return entry.first == format; });
        if (known == mFormats.end())
            known = mFormats.insert(known, {format, 0});
        known->second += length;
    }

    [[nodiscard]] Format format() const
    {
        const auto most =
            std::max_element(mFormats.begin(), mFormats.end(),
                             [](const auto &a, const auto &b) { return a.second < b.second; });
        return most->first;
    }

private:
    std::vector<std::pair<Format, qint64>> mFormats;
};

/** A run's format without what belongs to this one run of text. */
QTextCharFormat withoutMarks(QTextCharFormat format)
{
    TVLTextFormat::clearComment(&format);
    TVLTextFormat::clearLink(&format);
    for (const int property :
         {int(QTextFormat::IsAnchor), int(QTextFormat::AnchorName), int(QTextFormat::TextToolTip),
          int(TVLTextFormat::InlineAnnotation), int(TVLTextFormat::InlineFootnote)})
        format.clearProperty(property);
    return format;
}

// --- Removing runs

/** Plans to remove a row of paragraphs as a whole, with one of the ends that part it from others.
 */
void removeParagraphs(const QTextDocument *document, int start, int end, TVLTextEdits *edits)
{
    // With the end behind it a paragraph goes without a trace; the end in front is as good only
    // where there is no other.
    if (tvlAreParagraphEnds(document, end, end + 1) && end < tvlEndOf(document))
        ++end;
    else if (start > 0 && tvlAreParagraphEnds(document, start - 1, start))
        --start;
    edits->removeText(start, end - start);
}

/** Removes the text with a mark; paragraphs that had nothing else go with it. */
void removeRuns(QTextDocument *document, int property)
{
    TVLTextEdits edits;
    std::optional<Stretch> paragraphs;
    const auto finishParagraphs = [&] {
        if (paragraphs)
            removeParagraphs(document, paragraphs->mStart, paragraphs->mEnd, &edits);
        paragraphs.reset();
    };
    const TVLMarkOf markOf = tvlMarkOfFlag(property);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const int start = block.position();
        const int end = start + block.length() - 1;
        const std::vector<TVLMarkedRun> runs =
            tvlMarkedRuns(document, start, start, markOf, TVLRunEnd::AtParagraphEnd);
        const bool isWhole = runs.size() == 1 && runs[0].mStart == start && runs[0].mEnd == end;
        if (isWhole && paragraphs && tvlAreParagraphEnds(document, paragraphs->mEnd, start)) {
            paragraphs->mEnd = end;
            continue;
        }
        finishParagraphs();
        if (isWhole) {
            paragraphs = {start, end};
            continue;
        }
        for (const TVLMarkedRun &run : runs)
            edits.removeText(run.mStart, run.mEnd - run.mStart);
    }
    finishParagraphs();
    edits.apply(document);
}

void clearComments(QTextDocument *document, bool footnotes)
{
    const int property =
        footnotes ? TVLTextFormat::InspectorFootnote : TVLTextFormat::InspectorComment;
    tvlChangeFormats(document, [property](QTextCharFormat *format) {
        if (!format->boolProperty(property))
            return false;
        TVLTextFormat::clearComment(format);
        return true;
    });
}

} // namespace

QTextDocument *TTextDoc::cloneDocumentQtStyle(const QTextDocument *document, QObject *parent)
{
    return document ? tvlCloneDocument(document, parent) : nullptr;
}

QString TTextDoc::toPlainText(const QTextDocument *document)
{
    return document ? toPlainText(document->toRawText()) : QString();
}

QString TTextDoc::toPlainText(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    for (const QChar character : text) {
        switch (character.unicode()) {
        case QChar::ParagraphSeparator:
        case QChar::LineSeparator:
        case CellStart:
        case FrameEnd:
            plain += u'\n';
            break;
        case QChar::Nbsp:
            plain += u' ';
            break;
        case QChar::ObjectReplacementCharacter:
            break;
        default:
            plain += character;
        }
    }
    return plain;
}

std::vector<std::unique_ptr<QTextDocument>>
TTextDoc::split(const QTextDocument *document, const QString &separator, Qt::SplitBehavior behavior)
{
    std::vector<std::unique_ptr<QTextDocument>> parts;
    const QTextDocument empty;
    if (!document)
        document = &empty;
    const QString text = document->toRawText();
    for (const Stretch &stretch : stretchesBetween(text, separators(document, text, separator))) {
        const QStringView stretchText =
            QStringView(text).sliced(stretch.mStart, stretch.mEnd - stretch.mStart);
        if (!behavior.testFlag(Qt::SkipEmptyParts) || holdsText(stretchText))
            parts.push_back(copyOfStretch(document, stretch));
    }
    return parts;
}

void TTextDoc::findMostCommonProperties(const QTextDocument *document, QTextCharFormat *charFormat,
                                        QTextBlockFormat *blockFormat)
{
    const QTextDocument empty;
    if (!document)
        document = &empty;
    // What an empty text is written with next.
    MostCommon<QTextCharFormat> charFormats;
    charFormats.add(withoutMarks(document->begin().charFormat()), 0);
    MostCommon<QTextBlockFormat> blockFormats;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        blockFormats.add(block.blockFormat(), block.length());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            if (format.objectType() == QTextFormat::NoObject)
                charFormats.add(withoutMarks(format), fragment.length());
        }
    }
    if (charFormat)
        *charFormat = charFormats.format();
    if (blockFormat)
        *blockFormat = blockFormats.format();
}

QMap<int, QTextDocumentFragment> TTextDoc::annotationsMap(const QTextDocument *document)
{
    QMap<int, QTextDocumentFragment> annotations;
    if (!document)
        return annotations;
    // A cursor that only selects leaves the document as it is.
    QTextCursor cursor(const_cast<QTextDocument *>(document));
    for (const TVLMarkedRun &run : tvlMarkedRuns(
             document, tvlMarkOfFlag(TVLTextFormat::InlineAnnotation), TVLRunEnd::AtOtherText)) {
        cursor.setPosition(run.mStart);
        cursor.setPosition(run.mEnd, QTextCursor::KeepAnchor);
        annotations.insert(run.mStart, QTextDocumentFragment(cursor));
    }
    return annotations;
}

void TTextDoc::removeInlineFootnotes(QTextDocument *document)
{
    if (document)
        removeRuns(document, TVLTextFormat::InlineFootnote);
}

void TTextDoc::removeAnnotations(QTextDocument *document)
{
    if (document)
        removeRuns(document, TVLTextFormat::InlineAnnotation);
}

void TTextDoc::removeInspectorFootnotes(QTextDocument *document)
{
    if (document)
        clearComments(document, true);
}

void TTextDoc::removeInspectorComments(QTextDocument *document)
{
    if (document)
        clearComments(document, false);
}

void TTextDoc::clearTavelinorLinks(QTextDocument *document)
{
    if (!document)
        return;
    tvlChangeFormats(document, [](QTextCharFormat *format) {
        if (!TVLTextFormat::isTavelinorLink(format->anchorHref()))
            return false;
        TVLTextFormat::clearLink(format);
        return true;
    });
}

void TTextDoc::clearAll(QTextDocument *document, const QTextFormat &format, bool onlyEqual)
{
    if (!document)
        return;
    const QMap<int, QVariant> properties = format.properties();
    tvlChangeFormats(document, [&properties, onlyEqual](QTextCharFormat *charFormat) {
        bool isChanged = false;
        for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
            if (!charFormat->hasProperty(it.key())
                || (onlyEqual && charFormat->property(it.key()) != *it))
                continue;
            charFormat->clearProperty(it.key());
            isChanged = true;
        }
        return isChanged;
    });
}

QStringList TTextDoc::imageResourceIds(const QTextDocument *document)
{
    QStringList names;
    if (!document)
        return names;
    QSet<QString> known;
    tvlVisitFragments(document, 0, tvlEndOf(document), [&](const QTextFragment &fragment) {
        const QTextCharFormat format = fragment.charFormat();
        const QString name = format.stringProperty(QTextFormat::ImageName);
        if (format.isImageFormat() && !known.contains(name)) {
            known.insert(name);
            names.append(name);
        }
        return true;
    });
    return names;
}
