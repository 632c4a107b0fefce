#pragma once

#include "TVL.h"

#include <QString>

/** One place of an item's text, title or other property that a search has found. */
struct TVLSearchHit
{
    TVL::DocumentProperty property = TVL::AllProperties;
    QString text; ///< The whole text of the property, shared with the property's other hits.
    qsizetype position = 0;
    qsizetype length = 0;
};
