#pragma once

#include "TVLTextRange.h"

#include <QMap>
#include <QString>

/** The links of a text that lead to other items of the project, as older projects keep them. */
struct TVLTextInternalLinkMap
{
    QMap<TVLTextRange, int> mTargets; ///< Linked run of text to the id of the item it leads to.
    QString mProject; ///< The project that the ids belong to; empty for the text's own.

    friend bool operator==(const TVLTextInternalLinkMap &,
                           const TVLTextInternalLinkMap &) = default;
};
