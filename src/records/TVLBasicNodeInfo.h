#pragma once

#include <QIcon>
#include <QString>
#include <QUuid>

/** What a list of items to choose from shows of each. */
struct TVLBasicNodeInfo
{
    QUuid mUuid;
    QString mTitle; ///< With the indentation that was asked for.
    QIcon mIcon;
};
