#include "TVLTextCommentLink.h"

TVLTextCommentLink::TVLTextCommentLink() = default;

TVLTextCommentLink::TVLTextCommentLink(const QString &identity, const QByteArray &rtf)
    : mIdentity(identity)
    , mRtf(rtf)
{
}
