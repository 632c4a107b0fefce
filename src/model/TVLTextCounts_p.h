#pragma once

#include "TVLProjectNode.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"

#include <algorithm>

/** A document ends in a paragraph separator that nobody typed. */
inline int tvlTypedCharacters(const QTextDocument *document)
{
    return std::max(document->characterCount() - 1, 0);
}

/** A writing session begins with what a text in memory holds now. */
inline void tvlBeginSession(TVLProjectNode *node)
{
    node->mSessionCharacterCount = tvlTypedCharacters(node->mTextDocument);
    node->mSessionWordCount = TVLTextDoc::wordCount(node->mTextDocument, false, false);
}
