#pragma once

#include "TvlExport.h"

#include <QPointF>
#include <QSet>
#include <QString>
#include <QStringView>

/**
 * Texts of small values as files hold them. Always in the C locale, so that a file reads the same
 * on every computer.
 */
class TVL_EXPORT TCoreType
{
public:
    /**
     * A point as `x,y`, each number in its shorter form of decimal and exponent with at most
     * @p precision significant digits. QLocale::FloatingPointShortest gives as many digits as it
     * takes to read back the very same point.
     */
    [[nodiscard]] static QString toString(const QPointF &point, int precision);

    /**
     * Reads what toString() wrote; blanks around a number are accepted. For any other text, and
     * for numbers that are infinite or not a number, the result is the zero point and @p ok false.
     */
    [[nodiscard]] static QPointF toPointF(QStringView text, bool *ok = nullptr);

    /** Ids in ascending order, separated by commas. The same set always gives the same text. */
    [[nodiscard]] static QString toString(const QSet<int> &ids);

    /** Reads what toString() wrote. Pieces that are no decimal integer are left out. */
    [[nodiscard]] static QSet<int> splitToIds(QStringView text);
};
