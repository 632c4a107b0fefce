#pragma once

#include "TvlExport.h"

#include <QColor>
#include <QList>
#include <QString>

/** A row of the project's label list. Id -1 stands for "no label". */
struct TVL_EXPORT TVLLabel
{
    int mId = -1;
    QString mTitle;
    QColor mColor; ///< Invalid for a label without colour.

    /** The first label of exactly that title; a default one when there is none. */
    [[nodiscard]] static TVLLabel findLabelTitle(const QString &title,
                                                 const QList<TVLLabel> &labels);
    /** The label of an id; a default one when there is none. */
    [[nodiscard]] static TVLLabel findLabelId(int id, const QList<TVLLabel> &labels);
    /** The lowest id from 0 up that is free. */
    [[nodiscard]] static int findNextLabelId(const QList<TVLLabel> &labels);

    friend bool operator==(const TVLLabel &, const TVLLabel &) = default;
};
