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

bool TVLReference::contains(const TVLReference &reference, const QList<TVLReference> &references)
{
    return references.contains(reference);
}
