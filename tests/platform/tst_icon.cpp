#include "TVLIcon.h"
#include "TestMain.h"

#include <QImage>
#include <QTest>

namespace {

/** How many of an image's pixels have exactly a colour. */
int pixelsOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

} // namespace

class TstIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aShapeIsItsColorOnATransparentSquare_data();
    void aShapeIsItsColorOnATransparentSquare();
    void cornersAreRoundedByShape();
    void theOutlineStandsOutFromTheColor_data();
    void theOutlineStandsOutFromTheColor();
    void anInvalidColorHasNoShape();
    void anIconHasTheShapeInItsSizes();
    void colorsDoNotMix();
};

void TstIcon::aShapeIsItsColorOnATransparentSquare_data()
{
    QTest::addColumn<TVLIcon::Shape>("shape");
    QTest::addColumn<double>("share");
    QTest::newRow("circle") << TVLIcon::Shape(0) << 0.785;
    QTest::newRow("rounded square") << TVLIcon::Shape(1) << 0.47;
    QTest::newRow("square") << TVLIcon::Shape(2) << 0.49;
}

void TstIcon::aShapeIsItsColorOnATransparentSquare()
{
    QFETCH(const TVLIcon::Shape, shape);
    QFETCH(const double, share);
    constexpr int Size = 200;
    const QColor color(200, 40, 90);
    const QImage image = TVLIcon::shapePixmap(shape, color, Size).toImage();
    QCOMPARE(image.size(), QSize(Size, Size));
    QCOMPARE(image.pixelColor(Size / 2, Size / 2), color);
    for (const QPoint corner : {QPoint(0, 0), QPoint(Size - 1, 0), QPoint(Size - 1, Size - 1)})
        QCOMPARE(image.pixelColor(corner).alpha(), 0);
    // But for its outline.
    const double filled = double(pixelsOf(image, color)) / (Size * Size);
    QVERIFY2(qAbs(filled - share) < 0.03, qPrintable(QString::number(filled)));
}

void TstIcon::cornersAreRoundedByShape()
{
    constexpr int Size = 200;
    const QPoint nearCorner(36, 36); // The square begins at 30.
    const QImage rounded = TVLIcon::shapePixmap(TVLIcon::RoundedSquare, Qt::red, Size).toImage();
    const QImage square = TVLIcon::shapePixmap(TVLIcon::Square, Qt::red, Size).toImage();
    QCOMPARE(rounded.pixelColor(nearCorner).alpha(), 0);
    QCOMPARE(square.pixelColor(nearCorner), QColor(Qt::red));
    QCOMPARE(rounded.pixelColor(36, 100), QColor(Qt::red));
}

void TstIcon::theOutlineStandsOutFromTheColor_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("isLighter");
    QTest::newRow("white") << QColor(Qt::white) << false;
    QTest::newRow("red") << QColor(Qt::red) << false;
    QTest::newRow("just light enough") << QColor(52, 52, 52) << false;
    QTest::newRow("just dark enough") << QColor(50, 50, 50) << true;
    QTest::newRow("black") << QColor(Qt::black) << true;
}

void TstIcon::theOutlineStandsOutFromTheColor()
{
    QFETCH(const QColor, color);
    QFETCH(const bool, isLighter);
    constexpr int Size = 200;
    const QImage image = TVLIcon::shapePixmap(TVLIcon::Square, color, Size).toImage();
    const int inside = color.lightness();
    int outline = inside;
    for (int x = 25; x < 36; ++x) {
        const QColor pixel = image.pixelColor(x, Size / 2);
        if (pixel.alpha() > 128 && pixel != color)
            outline = pixel.lightness();
    }
    QCOMPARE(outline > inside, isLighter);
    QVERIFY(outline != inside);
}

void TstIcon::anInvalidColorHasNoShape()
{
    QVERIFY(TVLIcon::shapePixmap(TVLIcon::Circle, QColor(), 16).isNull());
    QVERIFY(TVLIcon::shapePixmap(TVLIcon::Circle, Qt::red, 0).isNull());
    QVERIFY(TVLIcon(QColor(), TVLIcon::RoundedSquare).isNull());
}

void TstIcon::anIconHasTheShapeInItsSizes()
{
    const TVLIcon icon(Qt::blue, TVLIcon::RoundedSquare);
    QVERIFY(!icon.isNull());
    for (const int size : {16, 32, 64}) {
        QCOMPARE(icon.pixmap(QSize(size, size), 1.0).toImage(),
                 TVLIcon::shapePixmap(TVLIcon::RoundedSquare, Qt::blue, size).toImage());
    }
}

void TstIcon::colorsDoNotMix()
{
    for (int i = 0; i < 3; ++i) {
        for (const QColor &color : {QColor(1, 2, 3), QColor(1, 2, 4), QColor(1, 2, 3, 99)}) {
            const QImage image = TVLIcon::shapePixmap(TVLIcon::Circle, color, 32).toImage();
            QCOMPARE(image.pixelColor(16, 16).alpha(), color.alpha());
            if (color.alpha() == 255)
                QCOMPARE(image.pixelColor(16, 16), color);
        }
    }
}

TVL_TEST(TstIcon)
#include "tst_icon.moc"
