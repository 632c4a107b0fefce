#include "TVLSiblingTitles_p.h"

#include "TVL.h"
#include "TVLProjectNode.h"

#include <algorithm>

TVLSiblingTitles::TVLSiblingTitles(const TVLProjectNode *parent, const TVLProjectNode *excluded)
{
    mTitles.reserve(parent->mChildren.size());
    for (const TVLProjectNode *child : parent->mChildren) {
        if (child != excluded)
            mTitles.insert(child->mTitle);
    }
}

QString TVLSiblingTitles::findUnique(const QString &title)
{
    if (!mTitles.contains(title))
        return title;
    int ownNumber = 0;
    const QString stem = TVL::stripAutoNumberEnding(title, &ownNumber);
    Numbers &taken = mTaken[stem];
    int number = ownNumber + 1;
    const bool isKnown = number >= taken.first && number <= taken.last;
    const int first = isKnown ? taken.first : number;
    if (isKnown)
        number = taken.last + 1;
    const auto numbered = [&] { return stem + u'-' + QString::number(number); };
    while (mTitles.contains(numbered()))
        ++number;
    taken = {first, number - 1};
    return numbered();
}
