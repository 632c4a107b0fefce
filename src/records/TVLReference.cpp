#include "TVLReference.h"

void TVLReference::setInternalLink(int id)
{
    mInternalLink = id;
    mUrl.clear();
}

void TVLReference::setUrl(const QUrl &url)
{
    mUrl = url;
    mInternalLink = -1;
}
