#include "TVLIcon.h"

#include <QPainter>
#include <QPixmapCache>

using namespace Qt::StringLiterals;

namespace {

/** The sizes at which lists and menus ask for icons, and their doubles for fine screens. */
constexpr int Sizes[] = {16, 24, 32, 48, 64};

constexpr double SquareShare = 0.7; ///< Of the pixmap.
constexpr double CornerShare = 45.0; ///< Of half the square, in percent.
constexpr float DarkBelow = 0.2F;
constexpr int OutlineAlpha = 128;

QColor outlineColor(const QColor &color)
{
    const int gray = color.lightnessF() < DarkBelow ? 255 : 0;
    return QColor(gray, gray, gray, OutlineAlpha);
}

QPixmap paintedShape(TVLIcon::Shape shape, const QColor &color, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outlineColor(color));
    painter.setBrush(color);
    if (shape == TVLIcon::Circle) {
        painter.drawEllipse(QRectF(0.5, 0.5, size - 1.0, size - 1.0));
        return pixmap;
    }
    const double side = size * SquareShare;
    const double margin = (size - side) / 2.0;
    const double corner = shape == TVLIcon::RoundedSquare ? CornerShare : 0.0;
    painter.drawRoundedRect(QRectF(margin, margin, side, side), corner, corner, Qt::RelativeSize);
    return pixmap;
}

} // namespace

TVLIcon::TVLIcon(const QColor &color, Shape shape)
{
    if (!color.isValid())
        return;
    for (const int size : Sizes)
        addPixmap(shapePixmap(shape, color, size));
}

QPixmap TVLIcon::shapePixmap(Shape shape, const QColor &color, int size)
{
    if (!color.isValid() || size <= 0)
        return {};
    // Lists ask for the same few again with each repaint.
    const QString key = u"TVLIcon %1 %2 %3"_s.arg(int(shape)).arg(color.rgba()).arg(size);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = paintedShape(shape, color, size);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}
