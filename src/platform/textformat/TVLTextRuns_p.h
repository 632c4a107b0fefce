#pragma once

#include <QString>
#include <QTextCharFormat>

#include <functional>
#include <vector>

class QTextBlock;
class QTextDocument;
class QTextFragment;
class TVLTextEdits;

/** A stretch of text with one mark on it, whatever its other formats. */
struct TVLMarkedRun
{
    int mStart;
    int mEnd;
    QString mMark;
    QTextCharFormat mFirstFormat;
    QTextCharFormat mLastFormat;
};

/** The mark that a format bears; empty for none. */
using TVLMarkOf = std::function<QString(const QTextFormat &)>;

/** Whether a run goes on over the end of a paragraph when the next one begins with its mark. */
enum class TVLRunEnd { AtParagraphEnd, AtOtherText };

/**
 * The runs with a mark in the paragraphs that reach into a stretch of text, in order. No run
 * reaches from one cell of a table to another or into or out of a table.
 */
[[nodiscard]] std::vector<TVLMarkedRun> tvlMarkedRuns(const QTextDocument *document, int from,
                                                      int to, const TVLMarkOf &markOf,
                                                      TVLRunEnd runEnd);
/** Those of a whole document. */
[[nodiscard]] std::vector<TVLMarkedRun> tvlMarkedRuns(const QTextDocument *document,
                                                      const TVLMarkOf &markOf, TVLRunEnd runEnd);

/** The inspector comment or footnote of a format, by its identity. */
[[nodiscard]] QString tvlCommentMark(const QTextFormat &format);
/** For marks that are there or not. */
[[nodiscard]] TVLMarkOf tvlMarkOfFlag(int property);

/** Visits the stretches of one format between two positions; a visit that returns false ends it. */
void tvlVisitFragments(const QTextDocument *document, int from, int to,
                       const std::function<bool(const QTextFragment &)> &visit);
/** Whether any text of a document has such a format. */
[[nodiscard]] bool tvlHasFormat(const QTextDocument *document,
                                const std::function<bool(const QTextFormat &)> &isWanted);

/**
 * Plans the change of the formats between two positions, the ends of paragraphs among them.
 * @param change  returns whether it changed its argument
 */
void tvlChangeFormats(const QTextDocument *document, int from, int to,
                      const std::function<bool(QTextCharFormat *)> &change, TVLTextEdits *edits);
/** Changes the formats of a whole document at once. */
void tvlChangeFormats(QTextDocument *document,
                      const std::function<bool(QTextCharFormat *)> &change);

/**
 * Whether the format of a paragraph's end may be set. At the start of a table's cell and behind a
 * table it is the table's, which it would tear apart.
 */
[[nodiscard]] bool tvlHasOwnEndFormat(const QTextBlock &block);

/** The position behind the last character of a document. */
[[nodiscard]] int tvlEndOf(const QTextDocument *document);
/** Whether what lies between two positions is nothing but ends of paragraphs of one frame. */
[[nodiscard]] bool tvlAreParagraphEnds(const QTextDocument *document, int from, int to);
