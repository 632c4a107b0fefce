#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTextCursor>

#include <utility>

class QObject;
class QTextDocument;

/** What comments say, by their identities: whether each is a footnote, and its text. */
using TVLCommentTexts = QHash<QString, std::pair<bool, QByteArray>>;

/** What the comments of a document say. */
[[nodiscard]] TVLCommentTexts tvlCommentTexts(const QTextDocument *document);

/** A deep copy of a document; see TTextDoc::cloneDocumentQtStyle(). */
[[nodiscard]] QTextDocument *tvlCloneDocument(const QTextDocument *document, QObject *parent);

/**
 * Puts a copy of a stretch of text in place of what a cursor has selected, in one edit block.
 *
 * Pictures come along; one whose name stands for another picture in the target gets a new name.
 * Each paragraph has the format of the original; only the first one keeps the target's, unless
 * the cursor's paragraph is empty. Neither end of the stretch may lie in a table that it doesn't
 * lie in as a whole, and the cursor must belong to another document.
 *
 * @param comments  those of the target. One that comes with the identity of another gets a fresh
 *                  one. What has come is added, so that the target need not be asked each time when
 *                  one text after the other is put there.
 */
void tvlInsertText(QTextCursor cursor, const QTextDocument *source, int from, int to,
                   TVLCommentTexts *comments);
