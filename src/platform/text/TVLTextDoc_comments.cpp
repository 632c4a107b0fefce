#include "TVLTextDoc.h"

#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLTextRuns_p.h"

#include <QHash>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace {

/** Whether comments of a document have a place to go to; one that doesn't say has its own. */
bool takesComments(const QTextDocument *document)
{
    const QVariant answer = document->property("takesComments");
    return !answer.isValid() || answer.toBool();
}

/** Plans to give runs that name one of the comments what else is known of it. */
void changeComments(const QTextDocument *document, const QList<TVLTextCommentLink> &comments,
                    TVLTextEdits *edits)
{
    QHash<QString, TVLTextCommentLink> byIdentity;
    byIdentity.reserve(comments.size());
    for (const TVLTextCommentLink &comment : comments)
        byIdentity.insert(comment.mIdentity, comment);
    tvlChangeFormats(
        document, 0, tvlEndOf(document),
        [&byIdentity](QTextCharFormat *format) {
            const QString identity = tvlCommentMark(*format);
            const auto comment = byIdentity.constFind(identity);
            if (identity.isEmpty() || comment == byIdentity.cend())
                return false;
            TVLTextFormat::setComment(format, *comment);
            return true;
        },
        edits);
}

} // namespace

QList<TVLTextCommentLink> TVLTextDoc::comments(const QTextDocument *document, int from, int to)
{
    return commentsMap(document, from, to).values();
}

QMap<int, TVLTextCommentLink> TVLTextDoc::commentsMap(const QTextDocument *document, int from,
                                                      int to)
{
    QMap<int, TVLTextCommentLink> comments;
    if (!document)
        return comments;
    const int end = to < 0 ? document->characterCount() : to;
    QSet<QString> known;
    for (const TVLMarkedRun &run :
         tvlMarkedRuns(document, tvlCommentMark, TVLRunEnd::AtOtherText)) {
        if (std::max(run.mStart, from) >= std::min(run.mEnd, end) || known.contains(run.mMark))
            continue;
        known.insert(run.mMark);
        comments.insert(run.mStart, TVLTextFormat::comment(run.mFirstFormat));
    }
    return comments;
}

void TVLTextDoc::setComments(QTextDocument *document, const QList<TVLTextCommentLink> &comments)
{
    if (!document || comments.isEmpty())
        return;
    TVLTextEdits edits;
    changeComments(document, comments, &edits);
    edits.apply(document);
}

bool TVLTextDoc::hasCommentsWithUuids(const QTextDocument *document)
{
    return document && tvlHasFormat(document, [](const QTextFormat &format) {
               const QString identity = tvlCommentMark(format);
               return !identity.isEmpty() && !QUuid::fromString(identity).isNull();
           });
}

bool TVLTextDoc::setComment(QTextDocument *document, const TVLTextRange &range,
                            const TVLTextCommentLink &comment)
{
    if (!document || !takesComments(document))
        return false;
    TVLTextCommentLink named = comment;
    if (named.mIdentity.isEmpty())
        named.mIdentity = TVLTextFormat::newCommentIdentity();
    const qint64 end =
        std::min(qint64(range.mLocation) + range.mLength, qint64(tvlEndOf(document)));
    TVLTextEdits edits;
    tvlVisitFragments(
        document, std::max(range.mLocation, 0), int(end), [&](const QTextFragment &fragment) {
            const int start = std::max(fragment.position(), range.mLocation);
            const int stop = std::min(fragment.position() + fragment.length(), int(end));
            QTextCharFormat format = fragment.charFormat();
            TVLTextFormat::setComment(&format, named);
            edits.setCharFormat(start, stop - start, format);
            return true;
        });
    if (edits.isEmpty())
        return false;
    // A comment may hang on several runs, and the first of them is what is asked what it says.
    changeComments(document, {named}, &edits);
    edits.apply(document);
    return true;
}

void TVLTextDoc::removeComment(const QTextCursor &cursor)
{
    if (!cursor.hasSelection())
        return;
    TVLTextEdits edits;
    tvlChangeFormats(
        cursor.document(), cursor.selectionStart(), cursor.selectionEnd(),
        [](QTextCharFormat *format) {
            if (!TVLTextFormat::hasComment(*format))
                return false;
            TVLTextFormat::clearComment(format);
            return true;
        },
        &edits);
    edits.apply(cursor.document());
}

bool TVLTextDoc::hasInspectorCommentsOrFootnotes(const QTextDocument *document)
{
    return document && tvlHasFormat(document, &TVLTextFormat::hasComment);
}

QStringList TVLTextDoc::inspectorNotesToPlainText(const QTextDocument *document)
{
    QStringList texts;
    for (const TVLTextCommentLink &comment : comments(document, -1, -1))
        texts.append(TVLTextRtf::rtfToPlainText(comment.mRtf));
    return texts;
}
