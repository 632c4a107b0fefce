#include "TVLScriptFormats_p.h"

#include "TVLTextFormat.h"
#include "TVLWordTable_p.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QXmlStreamAttributes>

#include <cmath>
#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Words = TVLWord<int>;
// What no table of words holds.
constexpr int NoWord = std::numeric_limits<int>::min();

constexpr Words AlignmentWords[] = {
    {Qt::AlignLeft, u"Left"},
    {Qt::AlignRight, u"Right"},
    {Qt::AlignHCenter, u"Center"},
    {Qt::AlignJustify, u"Justify"},
};

constexpr Words LineHeightWords[] = {
    {QTextBlockFormat::SingleHeight, u"Single"},
    {QTextBlockFormat::ProportionalHeight, u"Percent"},
    {QTextBlockFormat::FixedHeight, u"Fixed"},
    {QTextBlockFormat::MinimumHeight, u"Minimum"},
    {QTextBlockFormat::LineDistanceHeight, u"Distance"},
};

constexpr Words PageBreakWords[] = {
    {QTextFormat::PageBreak_Auto, u"Auto"},
    {QTextFormat::PageBreak_AlwaysBefore, u"Before"},
    {QTextFormat::PageBreak_AlwaysAfter, u"After"},
};

constexpr Words CapitalsWords[] = {
    {QFont::MixedCase, u"AsTyped"},  {QFont::AllUppercase, u"Upper"},
    {QFont::AllLowercase, u"Lower"}, {QFont::SmallCaps, u"Small"},
    {QFont::Capitalize, u"Words"},
};

constexpr Words UnderlineWords[] = {
    {QTextCharFormat::NoUnderline, u"No"},
    {QTextCharFormat::SingleUnderline, u"Yes"},
};

constexpr Words FlagWords[] = {{0, u"No"}, {1, u"Yes"}};

/** How the values of a property are written. A value without a text isn't kept. */
struct Kind
{
    std::function<QString(const QVariant &)> toText;
    std::function<QVariant(QStringView)> fromText; ///< Invalid for what isn't a value's text.
};

const Kind Real = {
    [](const QVariant &value) {
        bool ok = false;
        const double number = value.toDouble(&ok);
        return ok && std::isfinite(number) ? QString::number(number, 'g', 17) : QString();
    },
    [](QStringView text) {
        bool ok = false;
        const double number = text.toDouble(&ok);
        return ok && std::isfinite(number) ? QVariant(number) : QVariant();
    },
};

const Kind Weight = {
    [](const QVariant &value) { return QString::number(value.toInt()); },
    [](QStringView text) {
        const int number = text.toInt();
        return number >= 1 && number <= 1000 ? QVariant(number) : QVariant();
    },
};

template <std::size_t Size>
Kind wordKind(const Words (&words)[Size])
{
    return {
        [&words](const QVariant &value) {
            return tvlWordOf(words, value.toInt(), QStringView()).toString();
        },
        [&words](QStringView text) {
            const int number = tvlValueOf(words, text, NoWord);
            return number == NoWord ? QVariant() : QVariant(number);
        },
    };
}

const Kind Flag = {
    [](const QVariant &value) {
        return tvlWordOf(FlagWords, int(value.toBool()), QStringView()).toString();
    },
    [](QStringView text) {
        const int number = tvlValueOf(FlagWords, text, NoWord);
        return number == NoWord ? QVariant() : QVariant(number != 0);
    },
};

const Kind Families = {
    [](const QVariant &value) { return value.toStringList().join(u','); },
    [](QStringView text) {
        return text.isEmpty() ? QVariant() : QVariant(text.toString().split(u','));
    },
};

const Kind Color = {
    [](const QVariant &value) {
        const auto brush = value.value<QBrush>();
        return brush.style() == Qt::SolidPattern ? brush.color().name(QColor::HexArgb) : QString();
    },
    [](QStringView text) {
        const QColor color(text.toString());
        return text.startsWith(u'#') && color.isValid() ? QVariant::fromValue(QBrush(color))
                                                        : QVariant();
    },
};

struct Row
{
    int property;
    QString name;
    Kind kind;
};

const QList<Row> &rows(TVLScriptFormats::Scope scope)
{
    static const QList<Row> block = {
        {QTextFormat::BlockAlignment, u"Alignment"_s, wordKind(AlignmentWords)},
        {QTextFormat::BlockLeftMargin, u"LeftIndent"_s, Real},
        {QTextFormat::BlockRightMargin, u"RightIndent"_s, Real},
        {QTextFormat::TextIndent, u"FirstLineIndent"_s, Real},
        {QTextFormat::BlockTopMargin, u"SpaceBefore"_s, Real},
        {QTextFormat::BlockBottomMargin, u"SpaceAfter"_s, Real},
        {QTextFormat::LineHeight, u"LineHeight"_s, Real},
        {QTextFormat::LineHeightType, u"LineHeightType"_s, wordKind(LineHeightWords)},
        {QTextFormat::BlockNonBreakableLines, u"KeepTogether"_s, Flag},
        {TVLTextFormat::KeepWithNext, u"KeepWithNext"_s, Flag},
        {QTextFormat::PageBreakPolicy, u"PageBreak"_s, wordKind(PageBreakWords)},
    };
    static const QList<Row> character = {
        {QTextFormat::FontFamilies, u"Font"_s, Families},
        {QTextFormat::FontPointSize, u"Size"_s, Real},
        {QTextFormat::FontWeight, u"Weight"_s, Weight},
        {QTextFormat::FontItalic, u"Italic"_s, Flag},
        {QTextFormat::TextUnderlineStyle, u"Underline"_s, wordKind(UnderlineWords)},
        {QTextFormat::FontStrikeOut, u"StrikeOut"_s, Flag},
        {QTextFormat::FontCapitalization, u"Capitals"_s, wordKind(CapitalsWords)},
        {QTextFormat::ForegroundBrush, u"Color"_s, Color},
        {QTextFormat::BackgroundBrush, u"Background"_s, Color},
    };
    return scope == TVLScriptFormats::BlockScope ? block : character;
}

} // namespace

QList<QPair<QString, QString>> TVLScriptFormats::toAttributes(const QTextFormat &format,
                                                              Scope scope)
{
    QList<QPair<QString, QString>> attributes;
    for (const Row &row : rows(scope)) {
        if (!format.hasProperty(row.property))
            continue;
        const QString text = row.kind.toText(format.property(row.property));
        if (row.kind.fromText(text).isValid())
            attributes.append({row.name, text});
    }
    return attributes;
}

QString TVLScriptFormats::fromAttributes(const QXmlStreamAttributes &attributes, Scope scope,
                                         QTextFormat *format)
{
    for (const Row &row : rows(scope)) {
        if (!attributes.hasAttribute(row.name))
            continue;
        const QVariant value = row.kind.fromText(attributes.value(row.name));
        if (!value.isValid())
            return row.name;
        format->setProperty(row.property, value);
    }
    return {};
}

QTextFormat TVLScriptFormats::kept(const QTextFormat &format, Scope scope)
{
    QTextFormat result(scope == BlockScope ? QTextFormat::BlockFormat : QTextFormat::CharFormat);
    for (const Row &row : rows(scope)) {
        if (!format.hasProperty(row.property))
            continue;
        // By way of its text, so that what is kept is what reading gives.
        const QVariant value = row.kind.fromText(row.kind.toText(format.property(row.property)));
        if (value.isValid())
            result.setProperty(row.property, value);
    }
    return result;
}
