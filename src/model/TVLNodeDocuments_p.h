#pragma once

#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

/** A document of an item that is in memory; null for one that isn't, and for any other file. */
inline TVLTextDocument *tvlDocumentOf(const TVLProjectNode *node, TVL::DocumentType type)
{
    switch (type) {
    case TVL::MainText:
        return node->mTextDocument;
    case TVL::NotesText:
        return node->mNotesDocument;
    case TVL::SynopsisText:
        return node->mSynopsisDocument;
    default:
        return nullptr;
    }
}
