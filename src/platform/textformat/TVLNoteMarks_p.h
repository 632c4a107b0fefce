#pragma once

#include "TVLTextFormat.h"

#include <QStringView>
#include <QTextCharFormat>

#include <array>
#include <vector>

class QTextBlock;
class QTextDocument;
class TVLTextEdits;

/** One kind of inline notes and the marks that stand for it in a text. */
struct TVLNoteKind
{
    int mProperty;
    QStringView mOpening;
    QStringView mClosing;
};

/** All kinds of inline notes, from the outermost to the innermost. */
using TVLNoteKinds = std::array<TVLNoteKind, 2>;

/** A mark to be inserted into a paragraph. */
struct TVLNoteMark
{
    int mOffset; ///< In the paragraph's text.
    QStringView mText;
    QTextCharFormat mFormat;
};

/**
 * The marks for a paragraph's inline notes, in the order of the text. The paragraph's runs lose
 * the formats of notes by @p edits; inserting the marks is left to the caller.
 */
[[nodiscard]] std::vector<TVLNoteMark>
tvlTakeNoteMarks(const QTextBlock &block, const TVLNoteKinds &kinds, TVLTextEdits *edits);

/** The format of text that is no note. */
[[nodiscard]] QTextCharFormat tvlWithoutNotes(QTextCharFormat format, const TVLNoteKinds &kinds);

/** Whether a document may have inline notes; a quick look that never misses any. */
[[nodiscard]] bool tvlMayHaveNotes(const QTextDocument *document);
