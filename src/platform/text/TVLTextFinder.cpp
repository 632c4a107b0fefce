#include "TVLTextFinder.h"

#include "TVLTextRuns_p.h"

#include <QTextBlock>
#include <QTextDocument>

namespace {

/** Whether a paragraph's first character has a comment, so that one from above may go on there. */
bool mayGoOnInto(const QTextBlock &block)
{
    return block.begin().atEnd()
        || !tvlCommentMark(block.begin().fragment().charFormat()).isEmpty();
}

/** The runs of comments around a position, each in its whole length. */
std::vector<TVLMarkedRun> commentsAround(const QTextDocument *document, int position)
{
    QTextBlock first = document->findBlock(position);
    QTextBlock last = first;
    while (mayGoOnInto(first) && first.previous().isValid())
        first = first.previous();
    while (last.next().isValid() && mayGoOnInto(last.next()))
        last = last.next();
    return tvlMarkedRuns(document, first.position(), last.position(), tvlCommentMark,
                         TVLRunEnd::AtOtherText);
}

} // namespace

QTextCursor TVLTextFinder::findCommentViaStartPos(QTextDocument *document, int position)
{
    const QTextCursor cursor = findCommentAt(document, position);
    return cursor.selectionStart() == position ? cursor : QTextCursor();
}

QTextCursor TVLTextFinder::findCommentAt(QTextDocument *document, int position)
{
    if (!document || position < 0 || position >= document->characterCount())
        return {};
    for (const TVLMarkedRun &run : commentsAround(document, position)) {
        if (run.mStart <= position && position < run.mEnd) {
            QTextCursor cursor(document);
            cursor.setPosition(run.mStart);
            cursor.setPosition(run.mEnd, QTextCursor::KeepAnchor);
            return cursor;
        }
    }
    return {};
}
