#pragma once

#include <QTextCursor>

class QObject;
class QTextDocument;

/** A deep copy of a document; see TTextDoc::cloneDocumentQtStyle(). */
[[nodiscard]] QTextDocument *tvlCloneDocument(const QTextDocument *document, QObject *parent);

/**
 * Puts a copy of a stretch of text in place of what a cursor has selected, in one edit block.
 *
 * Pictures come along; one whose name stands for another picture in the target gets a new name.
 * Each paragraph has the format of the original; only the first one keeps the target's, unless
 * the cursor's paragraph is empty. Neither end of the stretch may lie in a table that it doesn't
 * lie in as a whole, and the cursor must belong to another document.
 */
void tvlInsertText(QTextCursor cursor, const QTextDocument *source, int from, int to);
