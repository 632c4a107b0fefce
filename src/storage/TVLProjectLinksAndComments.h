#pragma once

#include "TVLTextCommentLink.h"
#include "TVLTextInternalLinkMap.h"

#include <QList>

/** What the files beside an item's texts say about these: links of older projects, and comments. */
struct TVLProjectLinksAndComments
{
    TVLTextInternalLinkMap mTextLinks;
    TVLTextInternalLinkMap mNotesLinks;
    QList<TVLTextCommentLink> mLinkFileComments; ///< From a links file of old.
    QList<TVLTextCommentLink> mComments; ///< From a comments file.
};
