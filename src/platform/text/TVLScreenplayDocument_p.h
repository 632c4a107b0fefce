#pragma once

#include "TVLScreenplay_p.h"
#include "TVLScriptElement.h"

class QTextDocument;

/**
 * What a document says as a screenplay. A null document is an empty one. Pictures and the frames of
 * tables have no place in it; the text of tables' cells does.
 */
[[nodiscard]] TVLScreenplay tvlScreenplayOf(const QTextDocument *document,
                                            const QList<TVLScriptElement> &elements);

/**
 * Replaces a document's content with a screenplay; its undo history goes. With no elements those
 * that new projects have serve.
 */
void tvlSetScreenplay(const TVLScreenplay &screenplay, const QList<TVLScriptElement> &elements,
                      QTextDocument *document);
