#include "TVLFountainInline_p.h"

#include "TVLFountainDirective_p.h"
#include "TVLFountainLines_p.h"
#include "TVLFountainSyntax_p.h"

#include <algorithm>

namespace {

using Style = TVLScreenplayRun::Style;

constexpr quint8 StyleBits[] = {Style::Bold, Style::Italic, Style::Underline};
constexpr qsizetype SignLength = TVLFountainMarks::SignLength;

bool isSpecial(QChar ch)
{
    switch (ch.unicode()) {
    case u'*':
    case u'_':
    case u'\\':
    case u'[':
    case u'/':
    case u'\t':
    case u'\n':
        return true;
    default:
        return false;
    }
}

/** What a run of signs stands for; nothing when it is too long. */
quint8 stylesOfSigns(QChar sign, qsizetype count)
{
    if (sign == u'_')
        return count == 1 ? Style::Underline : Style::Plain;
    constexpr quint8 ByCount[] = {Style::Plain, Style::Italic, Style::Bold,
                                  Style::Italic | Style::Bold};
    return count < qsizetype(std::size(ByCount)) ? ByCount[count] : quint8(Style::Plain);
}

/** How many signs say that. */
qsizetype signCountOf(quint8 styles)
{
    return ((styles & Style::Bold) != 0 ? 2 : 0) + ((styles & Style::Italic) != 0 ? 1 : 0)
        + ((styles & Style::Underline) != 0 ? 1 : 0);
}

} // namespace

void TVLFountainInline::read(QStringView line, TVLScreenplayParagraph *paragraph)
{
    if (std::none_of(line.begin(), line.end(), isSpecial)) {
        paragraph->append(line);
        return;
    }
    mLine = line;
    mPieces.clear();
    split();
    pairEmphasis();
    emitPieces(paragraph);
}

void TVLFountainInline::split()
{
    TVLFountainMarks marks(mLine);
    qsizetype start = 0;
    qsizetype i = 0;
    while (i < mLine.size()) {
        const QChar ch = mLine.at(i);
        if (ch == u'\\' && i + 1 < mLine.size() && tvlIsFountainEscapable(mLine.at(i + 1))) {
            i += 2;
            continue;
        }
        const qsizetype end = ch == u'/' || ch == u'[' ? marks.endOfMarkAt(i) : -1;
        if (end < 0) {
            ++i;
            continue;
        }
        splitStretch(start, i);
        i = splitMark(i, end, &marks);
        start = i;
    }
    splitStretch(start, mLine.size());
}

void TVLFountainInline::splitStretch(qsizetype start, qsizetype end)
{
    qsizetype textStart = start;
    qsizetype i = start;
    const auto closeText = [&](qsizetype next) {
        addText(textStart, i - textStart);
        i = next;
        textStart = next;
    };
    while (i < end) {
        const QChar ch = mLine.at(i);
        if (ch == u'\\' && i + 1 < end && tvlIsFountainEscapable(mLine.at(i + 1))) {
            const bool isNothing = mLine.at(i + 1) == u'&';
            closeText(isNothing ? i + 2 : i + 1);
            i = textStart + (isNothing ? 0 : 1);
        } else if (ch == u'*' || ch == u'_') {
            const qsizetype place = i;
            closeText(i);
            i = addEmphasis(place, end);
            textStart = i;
        } else if (ch == u'\n') {
            const qsizetype place = i;
            closeText(i);
            i = addLineEnd(place, end);
            textStart = i;
        } else if (ch == u'\t') {
            closeText(i + 1);
            mPieces.push_back({.mKind = PieceKind::Tab});
        } else {
            ++i;
        }
    }
    closeText(end);
}

qsizetype TVLFountainInline::splitMark(qsizetype start, qsizetype end, TVLFountainMarks *marks)
{
    if (mLine.at(start) == u'[') {
        mPieces.push_back({.mKind = PieceKind::NoteStart});
        splitStretch(start + SignLength, end - SignLength);
        mPieces.push_back({.mKind = PieceKind::NoteEnd});
        return end;
    }
    if (const qsizetype behindNote = splitToldNote(start, end, marks); behindNote >= 0)
        return behindNote;
    mPieces.push_back({.mKind = PieceKind::BoneyardStart});
    splitStretch(start + SignLength, end - SignLength);
    mPieces.push_back({.mKind = PieceKind::BoneyardEnd});
    return end;
}

qsizetype TVLFountainInline::splitToldNote(qsizetype start, qsizetype end, TVLFountainMarks *marks)
{
    if (mLine.at(start + SignLength) != u':' || end >= mLine.size())
        return -1;
    const qsizetype noteEnd = marks->endOfMarkAt(end);
    if (mLine.at(end) != u'[' || noteEnd < 0)
        return -1;
    const auto directive =
        TVLFountainDirective::read(mLine.sliced(start + SignLength, end - start - 2 * SignLength));
    if (!directive || !directive->mIsOfNote)
        return -1;
    const bool isComment = directive->mHangsOn >= 0;
    mPieces.push_back({.mKind = isComment ? PieceKind::CommentStart : PieceKind::FootnoteStart});
    splitStretch(end + SignLength, noteEnd - SignLength);
    mPieces.push_back({.mKind = isComment ? PieceKind::CommentEnd : PieceKind::FootnoteEnd,
                       .mIsFootnote = directive->mIsFootnote,
                       .mLength = directive->mHangsOn});
    return noteEnd;
}

void TVLFountainInline::addText(qsizetype start, qsizetype length)
{
    if (length > 0)
        mPieces.push_back({.mKind = PieceKind::Text, .mStart = start, .mLength = length});
}

qsizetype TVLFountainInline::addEmphasis(qsizetype place, qsizetype end)
{
    qsizetype next = place;
    while (next < end && mLine.at(next) == mLine.at(place))
        ++next;
    const quint8 styles = stylesOfSigns(mLine.at(place), next - place);
    if (styles == Style::Plain)
        addText(place, next - place);
    else
        mPieces.push_back({.mKind = PieceKind::Emphasis,
                           .mStyles = styles,
                           .mStart = place,
                           .mLength = next - place});
    return next;
}

qsizetype TVLFountainInline::addLineEnd(qsizetype place, qsizetype end)
{
    mPieces.push_back({.mKind = PieceKind::LineEnd});
    // A line of nothing but blanks is how a note has an empty one.
    qsizetype next = place + 1;
    while (next < end && tvlIsFountainBlank(mLine.at(next)))
        ++next;
    return next < end && mLine.at(next) == u'\n' ? next : place + 1;
}

void TVLFountainInline::pairEmphasis()
{
    mOpen.fill(NoPiece);
    for (Piece &piece : mPieces) {
        if (piece.mKind == PieceKind::Emphasis)
            pair(&piece);
        else if (piece.mKind == PieceKind::LineEnd)
            mOpen.fill(NoPiece);
    }
}

void TVLFountainInline::pair(Piece *piece)
{
    const bool opens = canOpen(*piece);
    const bool closes = canClose(*piece);
    for (size_t i = 0; i < mOpen.size(); ++i) {
        const quint8 style = StyleBits[i];
        if ((piece->mStyles & style) == 0)
            continue;
        if (mOpen[i] != NoPiece && closes) {
            mPieces[size_t(mOpen[i])].mUsed |= style;
            piece->mUsed |= style;
            mOpen[i] = NoPiece;
        } else if (opens) {
            mOpen[i] = piece - mPieces.data();
        }
    }
}

bool TVLFountainInline::canOpen(const Piece &piece) const
{
    const qsizetype next = piece.mStart + piece.mLength;
    return next < mLine.size() && !tvlIsFountainBlank(mLine.at(next)) && mLine.at(next) != u'\n';
}

bool TVLFountainInline::canClose(const Piece &piece) const
{
    const qsizetype previous = piece.mStart - 1;
    if (previous < 0 || mLine.at(previous) == u'\n')
        return false;
    if (!tvlIsFountainBlank(mLine.at(previous)))
        return true;
    // A blank behind a backslash is text. It makes a piece of its own, of one character.
    const Piece *before = &piece == mPieces.data() ? nullptr : &piece - 1;
    return before && before->mKind == PieceKind::Text && before->mLength == 1 && previous > 0
        && mLine.at(previous - 1) == u'\\';
}

void TVLFountainInline::emitPieces(TVLScreenplayParagraph *paragraph)
{
    quint8 styles = Style::Plain;
    bool isComment = false;
    QString comment;
    const auto append = [&](QStringView text) {
        if (isComment)
            comment += text;
        else
            paragraph->append(text, styles);
    };
    for (const Piece &piece : mPieces) {
        switch (piece.mKind) {
        case PieceKind::Text:
            append(mLine.sliced(piece.mStart, piece.mLength));
            break;
        case PieceKind::Emphasis:
            append(mLine.sliced(piece.mStart, signCountOf(piece.mStyles & ~piece.mUsed)));
            styles ^= piece.mUsed;
            break;
        case PieceKind::LineEnd: {
            const QChar lineEnd = QChar::LineSeparator;
            append(QStringView(&lineEnd, 1));
            break;
        }
        case PieceKind::Tab:
            append(u"    ");
            break;
        case PieceKind::NoteStart:
            styles |= Style::Note;
            break;
        case PieceKind::FootnoteStart:
            styles |= Style::Footnote;
            break;
        case PieceKind::BoneyardStart:
            styles |= Style::Boneyard;
            break;
        case PieceKind::NoteEnd:
        case PieceKind::FootnoteEnd:
        case PieceKind::BoneyardEnd:
            styles &= Style::Emphasis;
            break;
        case PieceKind::CommentStart:
            isComment = true;
            comment.clear();
            break;
        case PieceKind::CommentEnd: {
            const int end = int(paragraph->mText.size());
            const int length = std::min(int(piece.mLength), end);
            paragraph->mComments.push_back({end - length, length, comment, piece.mIsFootnote});
            isComment = false;
            break;
        }
        }
    }
}
