#pragma once

#include <QString>

/** A row of the project's status list. Id -1 stands for "no status". */
struct TVLStatusItem
{
    int mId = -1;
    QString mTitle;

    friend bool operator==(const TVLStatusItem &, const TVLStatusItem &) = default;
};
