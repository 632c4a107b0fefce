#pragma once

#include "TVLTextCommentLink.h"
#include "TVLTextInternalLinkMap.h"
#include "TVLTextRange.h"

#include <QList>
#include <QMap>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QUuid>

class QTextDocument;

/**
 * What the application does to texts with its own marks: links to items, comments and footnotes,
 * and the counting of words.
 *
 * A null document is an empty one to all of these. Positions count UTF-16 units from the start of
 * the document. Where an operation changes text, it does so in one edit block, so one undo takes
 * it back.
 */
class TVL_EXPORT TVLTextDoc
{
public:
    /** @name Files' form of inline annotations and footnotes; see TVLInlineMarkup @{ */
    static void toInlineMarkup(QTextDocument *document);
    static void fromInlineMarkup(QTextDocument *document);
    /** @} */

    /** @name Inspector comments and footnotes @{ */
    /**
     * The comments that hang on text between two positions, each once, in the order of the text;
     * -1 stands for the start and the end of the document. What ties runs of text to one comment
     * is its identity.
     */
    [[nodiscard]] static QList<TVLTextCommentLink> comments(const QTextDocument *document, int from,
                                                            int to);
    /** What comments() gives, by the position where each comment's text starts. */
    [[nodiscard]] static QMap<int, TVLTextCommentLink> commentsMap(const QTextDocument *document,
                                                                   int from, int to);
    /**
     * Gives the comments that the text names by their identities what else is known of them.
     * Comments that no text names are left out; runs whose comment is not in the list stay as they
     * are.
     */
    static void setComments(QTextDocument *document, const QList<TVLTextCommentLink> &comments);
    /** Whether a comment's identity in the text is a uuid. */
    [[nodiscard]] static bool hasCommentsWithUuids(const QTextDocument *document);
    /**
     * Hangs a comment on a run of text, in place of those that hang there; a range beyond the text
     * is cut. A comment without identity gets a fresh one. With the identity of one that hangs
     * elsewhere too, it takes that one's place there as well.
     * @return false, with nothing changed, if the range has no text or the document has no place
     *         for comments: a document says so with a property `takesComments` that is false
     */
    static bool setComment(QTextDocument *document, const TVLTextRange &range,
                           const TVLTextCommentLink &comment);
    /** Takes the comment off the selected run; the text stays. */
    static void removeComment(const QTextCursor &cursor);
    [[nodiscard]] static bool hasInspectorCommentsOrFootnotes(const QTextDocument *document);
    /** The comments' and footnotes' texts in the order of the text. */
    [[nodiscard]] static QStringList inspectorNotesToPlainText(const QTextDocument *document);
    /** @} */

    /** @name Links to items of the project @{ */
    [[nodiscard]] static bool hasTavelinorLinksWithNodeIDs(const QTextDocument *document);
    [[nodiscard]] static bool hasTavelinorLinksWithNodeUuids(const QTextDocument *document);
    /** Rewrites links by id to links by uuid; those whose id isn't in the map stay. */
    static void convertTavelinorLinkIDsToUuids(QTextDocument *document,
                                               const QMap<int, QUuid> &idToUuid);
    /** Each link's run of text and the address it leads to. */
    [[nodiscard]] static QMap<TVLTextRange, QString> internalLinks(const QTextDocument *document);
    /** Makes runs of text links to the given addresses; ranges beyond the text are cut. */
    static void setInternalLinks(QTextDocument *document,
                                 const QMap<TVLTextRange, QString> &addresses);
    /** @} */

    /** @name Inline annotations and footnotes @{ */
    /**
     * Puts brackets around runs that bear all properties of @p format, and takes these properties
     * off them. With a cursor that has a selection only there.
     */
    static void embraceInlineNotes(const QTextCharFormat &format, QTextDocument *document,
                                   const QTextCursor &cursor, const QString &open,
                                   const QString &close);
    /**
     * Puts each inspector comment's text behind the first run it hangs on, as an inline
     * annotation, and takes the comment off its runs. With @p inBrackets the text gets square
     * brackets and no mark. With a cursor that has a selection only what hangs on selected text.
     */
    static void convertInspectorCommentsToInlineAnnotations(QTextDocument *document,
                                                            const QTextCursor &cursor,
                                                            bool inBrackets);
    /** Puts each inspector footnote's text behind the first run it hangs on, as an inline footnote,
     * as convertInspectorCommentsToInlineAnnotations() does with comments. */
    static void convertInspectorFootnotesToInlineFootnotes(QTextDocument *document,
                                                           const QTextCursor &cursor,
                                                           bool inBrackets);
    /** Inline annotations become `((text))`, inline footnotes `{{text}}`, paragraph by paragraph.
     */
    static void convertInlineNotesToBraces(QTextDocument *document);
    /** The way back; unbalanced brackets and those around nothing stay as text. */
    static void convertBracesToInlineNotes(QTextDocument *document);
    /** @} */

    /**
     * Number of words by Unicode's word boundaries, as Qt finds them: a stretch between boundaries
     * counts when it holds a letter or a number. The ends of an inline note are boundaries, whether
     * it counts or not, so the words of notes and those of the rest add up. Inspector comments
     * never count.
     * @param withAnnotations  whether the words of inline annotations count
     * @param withFootnotes    whether the words of inline footnotes count
     */
    [[nodiscard]] static int wordCount(const QTextDocument *document, bool withAnnotations,
                                       bool withFootnotes);

    /**
     * Puts another document's content at the cursor, formats, pictures and all, in place of what
     * is selected; an empty document changes nothing. The first paragraph becomes part of the
     * cursor's, unless that is empty and takes its format over. A comment whose identity stands for
     * another comment where it comes gets a fresh one.
     */
    static void appendDocument(const QTextCursor &cursor, const QTextDocument *document);
};
