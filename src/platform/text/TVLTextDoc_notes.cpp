#include "TVLTextDoc.h"

#include "TVLNoteMarks_p.h"
#include "TVLTextEdits_p.h"
#include "TVLTextRtf.h"
#include "TVLTextRuns_p.h"

#include <QSet>
#include <QTextBlock>
#include <QTextDocument>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

// --- Brackets around notes

bool bearsAll(const QTextFormat &format, const QMap<int, QVariant> &properties)
{
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (format.property(it.key()) != *it)
            return false;
    }
    return true;
}

QTextCharFormat without(QTextCharFormat format, const QMap<int, QVariant> &properties)
{
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        format.clearProperty(it.key());
    return format;
}

/** The stretch that an operation works on: the cursor's selection, or all without one. */
TVLTextRange scopeOf(const QTextDocument *document, const QTextCursor &cursor)
{
    if (!cursor.hasSelection())
        return {0, tvlEndOf(document)};
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
}

// --- Notes of the inspector

/** The text of a comment in a form that doesn't break the paragraph it is put in. */
QString textOfComment(const TVLTextCommentLink &comment)
{
    QString text = TVLTextRtf::rtfToPlainText(comment.mRtf);
    text.replace(u'\n', QChar::LineSeparator);
    return text;
}

void convertInspectorNotes(QTextDocument *document, const QTextCursor &cursor, bool inBrackets,
                           int inspectorProperty, int inlineProperty)
{
    if (!document)
        return;
    const TVLMarkOf markOf = [inspectorProperty](const QTextFormat &format) {
        return format.boolProperty(inspectorProperty) ? tvlCommentMark(format) : QString();
    };
    const TVLTextRange scope = scopeOf(document, cursor);
    const int scopeEnd = scope.mLocation + scope.mLength;
    TVLTextEdits edits;
    QSet<QString> known;
    for (const TVLMarkedRun &run : tvlMarkedRuns(document, markOf, TVLRunEnd::AtOtherText)) {
        if (run.mEnd <= scope.mLocation || run.mStart >= scopeEnd)
            continue;
        tvlChangeFormats(
            document, run.mStart, run.mEnd,
            [&markOf](QTextCharFormat *format) {
                if (markOf(*format).isEmpty())
                    return false;
                TVLTextFormat::clearComment(format);
                return true;
            },
            &edits);
        // A comment that hangs on several runs is told once.
        const QString text = textOfComment(TVLTextFormat::comment(run.mFirstFormat));
        if (known.contains(run.mMark) || text.isEmpty())
            continue;
        known.insert(run.mMark);
        QTextCharFormat format = run.mLastFormat;
        TVLTextFormat::clearComment(&format);
        TVLTextFormat::clearLink(&format);
        if (!inBrackets)
            format.setProperty(inlineProperty, true);
        edits.insertText(run.mEnd, inBrackets ? u'[' + text + u']' : text, format);
    }
    edits.apply(document);
}

// --- Braces

constexpr TVLNoteKinds Braces = {{
    {TVLTextFormat::InlineFootnote, u"{{", u"}}"},
    {TVLTextFormat::InlineAnnotation, u"((", u"))"},
}};

/** One note of a paragraph; offsets of its opening and closing pair. */
struct BracedNote
{
    qsizetype mOpening;
    qsizetype mClosing;
};

/** Finds the pairs of doubled brackets of one kind in a paragraph. */
class BracePairs
{
public:
    BracePairs(QStringView text, const TVLNoteKind &kind)
        : mText(text)
        , mKind(kind)
    {
    }

    std::vector<BracedNote> find()
    {
        std::vector<BracedNote> notes;
        qsizetype opening = mText.indexOf(mKind.mOpening);
        while (opening >= 0) {
            const qsizetype inside = opening + mKind.mOpening.size();
            const qsizetype closing = closingFor(inside);
            if (closing < 0)
                break;
            // Nothing is no note; a text may well hold such brackets.
            if (closing > inside)
                notes.push_back({opening, closing});
            opening = mText.indexOf(mKind.mOpening, closing + mKind.mClosing.size());
        }
        return notes;
    }

private:
    /** The closing pair at which all single brackets are closed, or else just the next one. */
    qsizetype closingFor(qsizetype inside)
    {
        const qsizetype balanced = mIsBalanced ? balancedClosing(inside) : -1;
        // One unbalanced note leaves the rest of the paragraph so; to look again for each of its
        // openings would take its length squared.
        mIsBalanced = balanced >= 0;
        return mIsBalanced ? balanced : mText.indexOf(mKind.mClosing, inside);
    }

    [[nodiscard]] qsizetype balancedClosing(qsizetype inside) const
    {
        int depth = 0;
        for (qsizetype i = inside; i < mText.size(); ++i) {
            if (mText[i] == mKind.mOpening[0])
                ++depth;
            else if (mText[i] == mKind.mClosing[0] && depth > 0)
                --depth;
            else if (mText.sliced(i).startsWith(mKind.mClosing))
                return i;
        }
        return -1;
    }

    QStringView mText;
    const TVLNoteKind &mKind;
    bool mIsBalanced = true;
};

/** Takes the doubled brackets out of a paragraph and marks what was between them. */
void readBraces(const QTextBlock &block, TVLTextEdits *edits)
{
    const QString text = block.text();
    QMap<qsizetype, int> removals; // In the order of the text, whatever the kind.
    for (const TVLNoteKind &kind : Braces) {
        QTextCharFormat format;
        format.setProperty(kind.mProperty, true);
        for (const BracedNote &note : BracePairs(text, kind).find()) {
            const qsizetype inside = note.mOpening + kind.mOpening.size();
            edits->mergeCharFormat(block.position() + int(inside), int(note.mClosing - inside),
                                   format);
            removals.insert(note.mOpening, int(kind.mOpening.size()));
            removals.insert(note.mClosing, int(kind.mClosing.size()));
        }
    }
    for (auto removal = removals.cbegin(); removal != removals.cend(); ++removal)
        edits->removeText(block.position() + int(removal.key()), *removal);
}

} // namespace

void TVLTextDoc::embraceInlineNotes(const QTextCharFormat &format, QTextDocument *document,
                                    const QTextCursor &cursor, const QString &open,
                                    const QString &close)
{
    const QMap<int, QVariant> properties = format.properties();
    if (!document || properties.isEmpty())
        return;
    const TVLMarkOf markOf = [&properties](const QTextFormat &runFormat) {
        return bearsAll(runFormat, properties) ? u"+"_s : QString();
    };
    const TVLTextRange scope = scopeOf(document, cursor);
    const int scopeEnd = scope.mLocation + scope.mLength;
    TVLTextEdits edits;
    for (const TVLMarkedRun &run : tvlMarkedRuns(document, markOf, TVLRunEnd::AtOtherText)) {
        const int start = std::max(run.mStart, scope.mLocation);
        const int end = std::min(run.mEnd, scopeEnd);
        if (start >= end)
            continue;
        edits.insertText(start, open, without(run.mFirstFormat, properties));
        edits.insertText(end, close, without(run.mLastFormat, properties));
        tvlChangeFormats(
            document, start, end,
            [&](QTextCharFormat *runFormat) {
                if (!bearsAll(*runFormat, properties))
                    return false;
                *runFormat = without(*runFormat, properties);
                return true;
            },
            &edits);
    }
    edits.apply(document);
}

void TVLTextDoc::convertInspectorCommentsToInlineAnnotations(QTextDocument *document,
                                                             const QTextCursor &cursor,
                                                             bool inBrackets)
{
    convertInspectorNotes(document, cursor, inBrackets, TVLTextFormat::InspectorComment,
                          TVLTextFormat::InlineAnnotation);
}

void TVLTextDoc::convertInspectorFootnotesToInlineFootnotes(QTextDocument *document,
                                                            const QTextCursor &cursor,
                                                            bool inBrackets)
{
    convertInspectorNotes(document, cursor, inBrackets, TVLTextFormat::InspectorFootnote,
                          TVLTextFormat::InlineFootnote);
}

void TVLTextDoc::convertInlineNotesToBraces(QTextDocument *document)
{
    if (!document || !tvlMayHaveNotes(document))
        return;
    TVLTextEdits edits;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (const TVLNoteMark &mark : tvlTakeNoteMarks(block, Braces, &edits))
            edits.insertText(block.position() + mark.mOffset, mark.mText.toString(), mark.mFormat);
    }
    edits.apply(document);
}

void TVLTextDoc::convertBracesToInlineNotes(QTextDocument *document)
{
    if (!document)
        return;
    TVLTextEdits edits;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        readBraces(block, &edits);
    edits.apply(document);
}
