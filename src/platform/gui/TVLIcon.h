#pragma once

#include "TvlExport.h"

#include <QColor>
#include <QIcon>
#include <QPixmap>

/** The icons of what has no picture but a colour. */
class TVL_EXPORT TVLIcon : public QIcon
{
public:
    enum Shape {
        Circle = 0,
        RoundedSquare = 1,
        Square = 2,
    };

    /** A shape in a colour; a null icon for an invalid colour. */
    TVLIcon(const QColor &color, Shape shape);

    /**
     * A shape in a colour on a transparent square of @p size pixels, with a faint outline that
     * stands out from the colour. Null for an invalid colour and without a size.
     */
    [[nodiscard]] static QPixmap shapePixmap(Shape shape, const QColor &color, int size);
};
