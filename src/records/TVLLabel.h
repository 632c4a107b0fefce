#pragma once

#include <QColor>
#include <QString>

/** A row of the project's label list. Id -1 stands for "no label". */
struct TVLLabel
{
    int mId = -1;
    QString mTitle;
    QColor mColor; ///< Invalid for a label without colour.

    friend bool operator==(const TVLLabel &, const TVLLabel &) = default;
};
