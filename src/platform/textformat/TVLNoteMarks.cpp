#include "TVLNoteMarks_p.h"

#include "TVLTextEdits_p.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace {

/** Which kinds of notes a run belongs to; a bit per place in TVLNoteKinds. */
using NoteSet = unsigned;

NoteSet notesOf(const QTextFormat &format, const TVLNoteKinds &kinds)
{
    NoteSet notes = 0;
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        if (format.boolProperty(kinds[kind].mProperty))
            notes |= 1U << kind;
    }
    return notes;
}

/** Ends the notes that end between two runs, then begins those that begin there. */
void appendMarksBetween(NoteSet before, NoteSet after, const TVLNoteKinds &kinds, int offset,
                        const QTextCharFormat &formatBefore, const QTextCharFormat &formatAfter,
                        std::vector<TVLNoteMark> *marks)
{
    // The inner notes end with an outer one, and begin anew within the next.
    size_t outermost = 0;
    while (outermost < kinds.size() && !((before ^ after) & (1U << outermost)))
        ++outermost;
    for (size_t kind = kinds.size(); kind-- > outermost;) {
        if (before & (1U << kind))
            marks->push_back({offset, kinds[kind].mClosing, formatBefore});
    }
    for (size_t kind = outermost; kind < kinds.size(); ++kind) {
        if (after & (1U << kind))
            marks->push_back({offset, kinds[kind].mOpening, formatAfter});
    }
}

} // namespace

QTextCharFormat tvlWithoutNotes(QTextCharFormat format, const TVLNoteKinds &kinds)
{
    // A property that says false stays, so the marks give back just what they took.
    for (const TVLNoteKind &kind : kinds) {
        if (format.boolProperty(kind.mProperty))
            format.clearProperty(kind.mProperty);
    }
    return format;
}

std::vector<TVLNoteMark> tvlTakeNoteMarks(const QTextBlock &block, const TVLNoteKinds &kinds,
                                          TVLTextEdits *edits)
{
    std::vector<TVLNoteMark> marks;
    NoteSet before = 0;
    QTextCharFormat formatBefore;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        const NoteSet notes = notesOf(format, kinds);
        const QTextCharFormat plain = notes ? tvlWithoutNotes(format, kinds) : format;
        appendMarksBetween(before, notes, kinds, fragment.position() - block.position(),
                           formatBefore, plain, &marks);
        if (notes)
            edits->setCharFormat(fragment.position(), fragment.length(), plain);
        before = notes;
        formatBefore = plain;
    }
    appendMarksBetween(before, 0, kinds, block.length() - 1, formatBefore, formatBefore, &marks);
    return marks;
}

bool tvlMayHaveNotes(const QTextDocument *document)
{
    // Among the formats that a document knows may be some that no text has any more.
    const QList<QTextFormat> formats = document->allFormats();
    return std::any_of(formats.begin(), formats.end(), [](const QTextFormat &format) {
        return format.boolProperty(TVLTextFormat::InlineAnnotation)
            || format.boolProperty(TVLTextFormat::InlineFootnote);
    });
}
