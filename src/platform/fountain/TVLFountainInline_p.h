#pragma once

#include "TVLScreenplay_p.h"

#include <QStringView>

#include <array>
#include <vector>

class TVLFountainMarks;

/** Reads emphasis, notes, what was taken out and what stands behind backslashes within lines. */
class TVLFountainInline
{
public:
    /** Adds a line's text to a paragraph. */
    void read(QStringView line, TVLScreenplayParagraph *paragraph);

private:
    enum class PieceKind : quint8 {
        Text,
        Emphasis,
        LineEnd,
        Tab,
        NoteStart,
        NoteEnd,
        FootnoteStart,
        FootnoteEnd,
        CommentStart,
        CommentEnd,
        BoneyardStart,
        BoneyardEnd,
    };
    struct Piece
    {
        PieceKind mKind;
        quint8 mStyles = 0; ///< Of signs of emphasis: what each could turn on or off.
        quint8 mUsed = 0; ///< What it does.
        bool mIsFootnote = false; ///< Of a comment.
        qsizetype mStart = 0;
        qsizetype mLength = 0; ///< Of a comment: how much text it hangs on.
    };

    void split();
    void splitStretch(qsizetype start, qsizetype end);
    /** Splits what begins with an opening sign; returns the place behind it. */
    qsizetype splitMark(qsizetype start, qsizetype end, TVLFountainMarks *marks);
    /** Splits a note of which a directive says what it is; -1 if it is not one. */
    [[nodiscard]] qsizetype splitToldNote(qsizetype start, qsizetype end, TVLFountainMarks *marks);
    void addText(qsizetype start, qsizetype length);
    /** Adds a run of signs of emphasis; returns the place behind it. */
    qsizetype addEmphasis(qsizetype place, qsizetype end);
    qsizetype addLineEnd(qsizetype place, qsizetype end);
    void pairEmphasis();
    void pair(Piece *piece);
    [[nodiscard]] bool canOpen(const Piece &piece) const;
    [[nodiscard]] bool canClose(const Piece &piece) const;
    void emitPieces(TVLScreenplayParagraph *paragraph);

    static constexpr qsizetype NoPiece = -1;

    QStringView mLine;
    std::vector<Piece> mPieces;
    std::array<qsizetype, 3> mOpen = {NoPiece, NoPiece, NoPiece}; ///< By place of the style's bit.
};
