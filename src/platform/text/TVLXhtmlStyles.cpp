#include "TVLXhtmlStyles_p.h"

#include "TVLXmlText_p.h"

#include <QStringList>
#include <QTextFormat>

using namespace Qt::StringLiterals;

namespace {

constexpr double PointsPerIndent = 36;

QString declared(QStringView property, const QString &value)
{
    return u"%1: %2; "_s.arg(property, value);
}

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

/** Lengths in documents are pixels, as those of CSS are. */
QString pixels(double value)
{
    return numberText(value) + u"px"_s;
}

QString colorText(const QColor &color)
{
    if (color.alpha() == 255)
        return color.name();
    return u"rgba(%1, %2, %3, %4)"_s.arg(QString::number(color.red()),
                                         QString::number(color.green()),
                                         QString::number(color.blue()), numberText(color.alphaF()));
}

QString brushDeclared(QStringView property, const QBrush &brush)
{
    if (brush.style() == Qt::NoBrush || !brush.color().isValid())
        return {};
    return declared(property, colorText(brush.color()));
}

/** A string of CSS. What would end it, or means something to HTML, stands as a number. */
QString cssString(const QString &text)
{
    constexpr QStringView Special = u"\\'\"<>&";
    QString css(u'\'');
    for (const QChar ch : text) {
        if (ch < u' ' || Special.contains(ch))
            css += u'\\' + QString::number(ch.unicode(), 16) + u' ';
        else
            css += ch;
    }
    return tvlXmlText(css) + u'\'';
}

QString familyOf(const QTextCharFormat &format)
{
    return format.fontFamilies().toStringList().value(0);
}

QString familyDeclared(const QString &family)
{
    return family.isEmpty() ? QString() : declared(u"font-family", cssString(family));
}

QString sizeOf(const QTextCharFormat &format)
{
    if (const double points = format.fontPointSize(); points > 0)
        return numberText(points) + u"pt"_s;
    if (const int size = format.intProperty(QTextFormat::FontPixelSize); size > 0)
        return pixels(size);
    return {};
}

QString sizeDeclared(const QString &size)
{
    return size.isEmpty() ? QString() : declared(u"font-size", size);
}

QString capitalsDeclared(QFont::Capitalization capitals)
{
    switch (capitals) {
    case QFont::AllUppercase:
        return declared(u"text-transform", u"uppercase"_s);
    case QFont::AllLowercase:
        return declared(u"text-transform", u"lowercase"_s);
    case QFont::Capitalize:
        return declared(u"text-transform", u"capitalize"_s);
    case QFont::SmallCaps:
        return declared(u"font-variant", u"small-caps"_s);
    default:
        return {};
    }
}

QString underlineDeclared(const QTextCharFormat &format)
{
    const QTextCharFormat::UnderlineStyle style = format.underlineStyle();
    QString text;
    if (style == QTextCharFormat::DashUnderline || style == QTextCharFormat::DashDotLine
        || style == QTextCharFormat::DashDotDotLine)
        text = declared(u"text-decoration-style", u"dashed"_s);
    else if (style == QTextCharFormat::DotLine)
        text = declared(u"text-decoration-style", u"dotted"_s);
    else if (style == QTextCharFormat::WaveUnderline)
        text = declared(u"text-decoration-style", u"wavy"_s);
    if (style != QTextCharFormat::NoUnderline && format.underlineColor().isValid())
        text += declared(u"text-decoration-color", colorText(format.underlineColor()));
    return text;
}

QString alignmentDeclared(const QTextBlockFormat &format)
{
    if (!format.hasProperty(QTextFormat::BlockAlignment))
        return {};
    const Qt::Alignment alignment = format.alignment();
    if (alignment & Qt::AlignRight)
        return declared(u"text-align", u"right"_s);
    if (alignment & Qt::AlignHCenter)
        return declared(u"text-align", u"center"_s);
    if (alignment & Qt::AlignJustify)
        return declared(u"text-align", u"justify"_s);
    return {};
}

QString lineHeightDeclared(const QTextBlockFormat &format)
{
    const double height = format.lineHeight();
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        return height > 0 && height != 100 ? declared(u"line-height", numberText(height) + u'%')
                                           : QString();
    case QTextBlockFormat::FixedHeight:
    case QTextBlockFormat::MinimumHeight:
        return height > 0 ? declared(u"line-height", pixels(height)) : QString();
    default:
        return {};
    }
}

QString lengthDeclared(QStringView property, double length)
{
    return length != 0 ? declared(property, pixels(length)) : QString();
}

QString borderStyleText(QTextFrameFormat::BorderStyle style)
{
    static const QStringList Styles = {u"none"_s,   u"dotted"_s, u"dashed"_s, u"solid"_s,
                                       u"double"_s, u"dashed"_s, u"dashed"_s, u"groove"_s,
                                       u"ridge"_s,  u"inset"_s,  u"outset"_s};
    return Styles.value(int(style), u"solid"_s);
}

} // namespace

QString tvlCssOf(const QTextCharFormat &format, const QTextCharFormat &common)
{
    QString css;
    if (const QString family = familyOf(format); family != familyOf(common))
        css += familyDeclared(family);
    if (const QString size = sizeOf(format); size != sizeOf(common))
        css += sizeDeclared(size);
    css += capitalsDeclared(format.fontCapitalization());
    if (format.fontUnderline() || format.underlineStyle() != QTextCharFormat::NoUnderline)
        css += underlineDeclared(format);
    if (format.hasProperty(QTextFormat::ForegroundBrush))
        css += brushDeclared(u"color", format.foreground());
    if (format.hasProperty(QTextFormat::BackgroundBrush))
        css += brushDeclared(u"background-color", format.background());
    if (const double spacing = format.fontLetterSpacing();
        spacing != 0 && format.fontLetterSpacingType() == QFont::AbsoluteSpacing)
        css += declared(u"letter-spacing", pixels(spacing));
    return css.trimmed();
}

QString tvlCssOf(const QTextBlockFormat &format, bool isInList)
{
    const double indent = isInList ? 0 : format.indent() * PointsPerIndent;
    QString css = alignmentDeclared(format);
    css += lengthDeclared(u"margin-left", format.leftMargin() + indent);
    css += lengthDeclared(u"margin-right", format.rightMargin());
    css += lengthDeclared(u"margin-top", format.topMargin());
    css += lengthDeclared(u"margin-bottom", format.bottomMargin());
    css += lengthDeclared(u"text-indent", format.textIndent());
    css += lineHeightDeclared(format);
    css += brushDeclared(u"background-color", format.background());
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
        css += declared(u"break-before", u"page"_s);
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
        css += declared(u"break-after", u"page"_s);
    return css.trimmed();
}

QString tvlCssOfCell(const QTextTableCellFormat &format)
{
    QString css = brushDeclared(u"background-color", format.background());
    if (format.verticalAlignment() == QTextCharFormat::AlignMiddle)
        css += declared(u"vertical-align", u"middle"_s);
    else if (format.verticalAlignment() == QTextCharFormat::AlignBottom)
        css += declared(u"vertical-align", u"bottom"_s);
    if (const double width = format.topBorder(); width > 0)
        css += declared(u"border", pixels(width) + u' ' + borderStyleText(format.topBorderStyle()));
    return css.trimmed();
}

QString tvlCssOfPage(const QTextCharFormat &common)
{
    return (familyDeclared(familyOf(common)) + sizeDeclared(sizeOf(common))).trimmed();
}
