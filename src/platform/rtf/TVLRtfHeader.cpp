#include "TVLRtfHeader_p.h"

#include "TVLTextFormat.h"

#include <QTextList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaximumLevel = 8;
constexpr int MaximumListStart = 32767;
constexpr int TwipsPerLevel = 720;
constexpr int MarkerTwips = 360;
/** The length of a level's text is one byte. */
constexpr qsizetype MaximumAffix = 100;

struct ListStyleRow
{
    QTextListFormat::Style style;
    int numbering;
    char16_t bullet; ///< 0 for numbers.
};

constexpr ListStyleRow ListStyleRows[] = {
    {QTextListFormat::ListDisc, 23, 0x2022},   {QTextListFormat::ListCircle, 23, 0x25e6},
    {QTextListFormat::ListSquare, 23, 0x25aa}, {QTextListFormat::ListDecimal, 0, 0},
    {QTextListFormat::ListLowerAlpha, 4, 0},   {QTextListFormat::ListUpperAlpha, 3, 0},
    {QTextListFormat::ListLowerRoman, 2, 0},   {QTextListFormat::ListUpperRoman, 1, 0},
};

const ListStyleRow &rowOfStyle(QTextListFormat::Style style)
{
    for (const ListStyleRow &row : ListStyleRows) {
        if (row.style == style)
            return row;
    }
    return ListStyleRows[0];
}

QString letters(int number)
{
    QString text;
    for (; number > 0; number = (number - 1) / 26)
        text.prepend(QChar(u'a' + (number - 1) % 26));
    return text;
}

QString roman(int number)
{
    struct Row
    {
        int value;
        const char16_t *text;
    };
    constexpr Row Rows[] = {{1000, u"m"}, {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"},
                            {90, u"xc"},  {50, u"l"},   {40, u"xl"}, {10, u"x"},   {9, u"ix"},
                            {5, u"v"},    {4, u"iv"},   {1, u"i"}};
    if (number >= 4000)
        return QString::number(number);
    QString text;
    for (const Row &row : Rows) {
        for (; number >= row.value; number -= row.value)
            text += QStringView(row.text);
    }
    return text;
}

QString numberText(QTextListFormat::Style style, int number)
{
    switch (style) {
    case QTextListFormat::ListLowerAlpha:
        return letters(number);
    case QTextListFormat::ListUpperAlpha:
        return letters(number).toUpper();
    case QTextListFormat::ListLowerRoman:
        return roman(number);
    case QTextListFormat::ListUpperRoman:
        return roman(number).toUpper();
    default:
        return QString::number(number);
    }
}

QString prefix(const QTextListFormat &format)
{
    return format.numberPrefix().left(MaximumAffix);
}

QString suffix(const QTextListFormat &format)
{
    return format.hasProperty(QTextFormat::ListNumberSuffix)
        ? format.numberSuffix().left(MaximumAffix)
        : u"."_s;
}

void appendHexByte(QByteArray *rtf, int byte)
{
    constexpr char Digits[] = "0123456789abcdef";
    rtf->append("\\'").append(Digits[byte >> 4 & 15]).append(Digits[byte & 15]);
}

void appendLevelText(QByteArray *rtf, const QTextListFormat &format, int level)
{
    const ListStyleRow &row = rowOfStyle(format.style());
    rtf->append("{\\leveltext");
    if (row.bullet) {
        appendHexByte(rtf, 1);
        tvlAppendRtfText(rtf, QString(QChar(row.bullet)));
        rtf->append(";}{\\levelnumbers;}");
        return;
    }
    appendHexByte(rtf, int(prefix(format).size() + 1 + suffix(format).size()));
    tvlAppendRtfText(rtf, prefix(format));
    appendHexByte(rtf, level);
    tvlAppendRtfText(rtf, suffix(format));
    rtf->append(";}{\\levelnumbers");
    appendHexByte(rtf, int(prefix(format).size()) + 1);
    rtf->append(";}");
}

void appendLevel(QByteArray *rtf, const QTextListFormat &format, int level, bool isOwnLevel)
{
    rtf->append("{\\listlevel");
    tvlAppendRtfWord(rtf, "levelnfc", rowOfStyle(format.style()).numbering);
    rtf->append("\\leveljc0\\levelfollow0");
    tvlAppendRtfWord(rtf, "levelstartat", isOwnLevel ? TVLRtfHeader::listStart(format) : 1);
    if (isOwnLevel)
        tvlAppendRtfWord(rtf, "tvllistindent", format.indent());
    appendLevelText(rtf, format, level);
    tvlAppendRtfWord(rtf, "fi", TVLRtfHeader::listFirst());
    tvlAppendRtfWord(rtf, "li", TVLRtfHeader::listLeft(level));
    rtf->append('}');
}

} // namespace

QColor tvlSolidColor(const QBrush &brush)
{
    return brush.style() == Qt::SolidPattern ? brush.color() : QColor();
}

int tvlToTwips(double points)
{
    constexpr double Limit = 1'000'000;
    return int(std::lround(qBound(-Limit, points * 20, Limit)));
}

void tvlAppendRtfWord(QByteArray *rtf, const char *word, int number)
{
    rtf->append('\\').append(word).append(QByteArray::number(number));
}

void tvlAppendRtfText(QByteArray *rtf, QStringView text)
{
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        switch (unit) {
        case u'\\':
        case u'{':
        case u'}':
            rtf->append('\\').append(char(unit));
            break;
        case u'\t':
            rtf->append("\\tab ");
            break;
        case u'\u00a0':
            rtf->append("\\~");
            break;
        case u'\u00ad':
            rtf->append("\\-");
            break;
        case u'\u2011':
            rtf->append("\\_");
            break;
        case u'\u2028':
            rtf->append("\\line ");
            break;
        default:
            if (unit >= 0x20 && unit < 0x7f) {
                rtf->append(char(unit));
            } else {
                tvlAppendRtfWord(rtf, "u", static_cast<qint16>(unit));
                rtf->append('?');
            }
        }
    }
}

int TVLRtfHeader::font(const QStringList &families)
{
    const auto known = mFontNumbers.constFind(families);
    if (known != mFontNumbers.cend())
        return *known;
    mFonts.append(families);
    return *mFontNumbers.insert(families, int(mFonts.size()) - 1);
}

int TVLRtfHeader::color(const QColor &color)
{
    const auto known = mColorNumbers.constFind(color.rgba());
    if (known != mColorNumbers.cend())
        return *known;
    mColors.append(color);
    return *mColorNumbers.insert(color.rgba(), int(mColors.size()));
}

int TVLRtfHeader::list(const QTextList *list)
{
    const int index = list->objectIndex();
    const auto known = mListNumbers.constFind(index);
    if (known != mListNumbers.cend())
        return *known;
    mLists.append(list->format());
    return *mListNumbers.insert(index, int(mLists.size()));
}

QByteArray TVLRtfHeader::tables() const
{
    QByteArray rtf;
    appendFonts(&rtf);
    appendColors(&rtf);
    appendLists(&rtf);
    return rtf;
}

void TVLRtfHeader::appendFonts(QByteArray *rtf) const
{
    if (mFonts.isEmpty())
        return;
    rtf->append("{\\fonttbl");
    for (int i = 0; i < mFonts.size(); ++i) {
        rtf->append("\n{");
        tvlAppendRtfWord(rtf, "f", i);
        rtf->append("\\fnil\\fcharset0 ");
        tvlAppendRtfText(rtf, mFonts.at(i).constFirst());
        if (mFonts.at(i).size() > 1) {
            rtf->append("{\\*\\falt ");
            tvlAppendRtfText(rtf, mFonts.at(i).mid(1).join(u','));
            rtf->append('}');
        }
        rtf->append(";}");
    }
    rtf->append("}\n");
}

void TVLRtfHeader::appendColors(QByteArray *rtf) const
{
    if (mColors.isEmpty())
        return;
    rtf->append("{\\colortbl;");
    for (const QColor &color : mColors) {
        tvlAppendRtfWord(rtf, "red", color.red());
        tvlAppendRtfWord(rtf, "green", color.green());
        tvlAppendRtfWord(rtf, "blue", color.blue());
        if (color.alpha() != 255)
            tvlAppendRtfWord(rtf, "tvlalpha", color.alpha());
        rtf->append(';');
    }
    rtf->append("}\n");
}

void TVLRtfHeader::appendLists(QByteArray *rtf) const
{
    if (mLists.isEmpty())
        return;
    rtf->append("{\\*\\listtable");
    for (int i = 0; i < mLists.size(); ++i) {
        rtf->append("\n{\\list");
        tvlAppendRtfWord(rtf, "listtemplateid", i + 1);
        const int ownLevel = listLevel(mLists.at(i).indent());
        for (int level = 0; level <= ownLevel; ++level)
            appendLevel(rtf, mLists.at(i), level, level == ownLevel);
        tvlAppendRtfWord(rtf, "listid", i + 1);
        rtf->append('}');
    }
    rtf->append("}\n{\\*\\listoverridetable");
    for (int i = 0; i < mLists.size(); ++i) {
        rtf->append("{\\listoverride");
        tvlAppendRtfWord(rtf, "listid", i + 1);
        rtf->append("\\listoverridecount0");
        tvlAppendRtfWord(rtf, "ls", i + 1);
        rtf->append('}');
    }
    rtf->append("}\n");
}

int TVLRtfHeader::listLevel(int indent)
{
    return qBound(0, indent - 1, MaximumLevel);
}

int TVLRtfHeader::listLeft(int level)
{
    return TwipsPerLevel * (level + 1);
}

int TVLRtfHeader::listFirst()
{
    return -MarkerTwips;
}

int TVLRtfHeader::listStart(const QTextListFormat &format)
{
    const bool hasStart =
        rowOfStyle(format.style()).bullet == 0 && format.hasProperty(TVLTextFormat::ListStart);
    return hasStart ? qBound(0, format.intProperty(TVLTextFormat::ListStart), MaximumListStart) : 1;
}

QString TVLRtfHeader::listMarker(const QTextListFormat &format, int item)
{
    const ListStyleRow &row = rowOfStyle(format.style());
    if (row.bullet)
        return QString(QChar(row.bullet));
    return prefix(format) + numberText(format.style(), listStart(format) + item) + suffix(format);
}
