#pragma once

#include <QColor>
#include <QString>

/** A keyword of a project as the binder tells it. */
struct TVLBinderKeyword
{
    int mId = -1;
    int mParentId = -1; ///< The keyword that it is part of; -1 for none.
    QString mTitle;
    QColor mColor; ///< Invalid for a keyword without colour.

    friend bool operator==(const TVLBinderKeyword &, const TVLBinderKeyword &) = default;
};
