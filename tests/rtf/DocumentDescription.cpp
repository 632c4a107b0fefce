#include "DocumentDescription.h"

#include "TVLTextFormat.h"

#include <QHash>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

template <typename Value>
struct NameRow
{
    Value value;
    const char16_t *name;
};

template <typename Value, size_t Count>
QString nameOf(const NameRow<Value> (&rows)[Count], Value value)
{
    for (const NameRow<Value> &row : rows) {
        if (row.value == value)
            return QString::fromUtf16(row.name);
    }
    return u"? %1"_s.arg(int(value));
}

constexpr NameRow<int> UnderlineNames[] = {
    {QTextCharFormat::SingleUnderline, u"underlined"},
    {QTextCharFormat::DashUnderline, u"underlined with dashes"},
    {QTextCharFormat::DotLine, u"underlined with dots"},
    {QTextCharFormat::DashDotLine, u"underlined with dashes and dots"},
    {QTextCharFormat::DashDotDotLine, u"underlined with dashes and two dots"},
    {QTextCharFormat::WaveUnderline, u"underlined with a wave"},
};

constexpr NameRow<int> CapitalizationNames[] = {
    {QFont::AllUppercase, u"upper case"},
    {QFont::AllLowercase, u"lower case"},
    {QFont::SmallCaps, u"small capitals"},
    {QFont::Capitalize, u"capitalized"},
};

constexpr NameRow<int> VerticalNames[] = {
    {QTextCharFormat::AlignSuperScript, u"superscript"},
    {QTextCharFormat::AlignSubScript, u"subscript"},
    {QTextCharFormat::AlignMiddle, u"middle"},
    {QTextCharFormat::AlignTop, u"top"},
    {QTextCharFormat::AlignBottom, u"bottom"},
    {QTextCharFormat::AlignBaseline, u"baseline"},
};

constexpr NameRow<int> AlignmentNames[] = {
    {Qt::AlignLeft, u"left"},
    {Qt::AlignRight, u"right"},
    {Qt::AlignHCenter, u"centred"},
    {Qt::AlignJustify, u"justified"},
};

constexpr NameRow<int> ListNames[] = {
    {QTextListFormat::ListDisc, u"disc"},     {QTextListFormat::ListCircle, u"circle"},
    {QTextListFormat::ListSquare, u"square"}, {QTextListFormat::ListDecimal, u"1"},
    {QTextListFormat::ListLowerAlpha, u"a"},  {QTextListFormat::ListUpperAlpha, u"A"},
    {QTextListFormat::ListLowerRoman, u"i"},  {QTextListFormat::ListUpperRoman, u"I"},
};

constexpr NameRow<int> TabNames[] = {
    {QTextOption::LeftTab, u""},
    {QTextOption::RightTab, u" right"},
    {QTextOption::CenterTab, u" centred"},
    {QTextOption::DelimiterTab, u" decimal"},
};

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString colorName(const QColor &color)
{
    return color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
}

bool isVisible(char32_t character)
{
    if (character >= 0xe000 && character <= 0xf8ff)
        return false;
    return character == U' '
        || (QChar::isPrint(character) && !QChar::isSpace(character)
            && QChar::category(character) != QChar::Other_Format);
}

/** A text in quotes, with what can't be seen spelt out. */
QString quoted(const QString &text)
{
    QString shown(u'"');
    const auto show = [&shown](char32_t character) {
        if (isVisible(character) && character != U'<')
            shown += QString::fromUcs4(&character, 1);
        else if (character == U'\t')
            shown += u"<tab>";
        else if (character == QChar::LineSeparator)
            shown += u"<line>";
        else
            shown += u"<%1>"_s.arg(uint(character), 4, 16, QChar(u'0'));
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair =
            i + 1 < text.size() && text.at(i).isHighSurrogate() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            show(QChar::surrogateToUcs4(text.at(i), text.at(i + 1)));
            ++i;
        } else {
            show(text.at(i).unicode());
        }
    }
    return shown + u'"';
}

QStringList fontWords(const QTextCharFormat &format)
{
    QStringList words;
    if (const QStringList families = format.fontFamilies().toStringList(); !families.isEmpty())
        words += u"font "_s + families.join(u'/');
    if (format.hasProperty(QTextFormat::FontPointSize))
        words += u"size "_s + number(format.fontPointSize());
    if (format.hasProperty(QTextFormat::FontWeight) && format.fontWeight() == QFont::Bold)
        words += u"bold"_s;
    else if (format.hasProperty(QTextFormat::FontWeight))
        words += u"weight %1"_s.arg(format.fontWeight());
    if (format.fontItalic())
        words += u"italic"_s;
    if (format.boolProperty(TVLTextFormat::DoubleUnderline))
        words += u"underlined twice"_s;
    else if (format.underlineStyle() != QTextCharFormat::NoUnderline)
        words += nameOf(UnderlineNames, int(format.underlineStyle()));
    if (format.underlineColor().isValid())
        words += u"line "_s + colorName(format.underlineColor());
    if (format.fontStrikeOut())
        words += u"struck out"_s;
    if (format.fontOverline())
        words += u"overlined"_s;
    if (format.verticalAlignment() != QTextCharFormat::AlignNormal)
        words += nameOf(VerticalNames, int(format.verticalAlignment()));
    if (format.fontCapitalization() != QFont::MixedCase)
        words += nameOf(CapitalizationNames, int(format.fontCapitalization()));
    if (format.hasProperty(QTextFormat::FontLetterSpacing))
        words += u"spacing "_s + number(format.fontLetterSpacing());
    if (format.hasProperty(QTextFormat::FontStretch))
        words += u"stretch %1"_s.arg(format.fontStretch());
    return words;
}

QStringList markWords(const QTextCharFormat &format)
{
    QStringList words;
    if (format.hasProperty(QTextFormat::ForegroundBrush))
        words += u"colour "_s + colorName(format.foreground().color());
    if (format.hasProperty(QTextFormat::BackgroundBrush))
        words += u"background "_s + colorName(format.background().color());
    if (const int preset = format.intProperty(TVLTextFormat::PresetHighlight))
        words += u"preset %1"_s.arg(preset);
    if (format.boolProperty(TVLTextFormat::Hidden))
        words += u"hidden"_s;
    if (format.boolProperty(TVLTextFormat::InlineFootnote))
        words += u"footnote"_s;
    if (format.boolProperty(TVLTextFormat::InlineAnnotation))
        words += u"annotation"_s;
    if (!format.anchorHref().isEmpty())
        words +=
            (format.boolProperty(TVLTextFormat::InternalLink) ? u"internal link "_s : u"link "_s)
            + format.anchorHref();
    if (!format.toolTip().isEmpty())
        words += u"tip "_s + quoted(format.toolTip());
    if (!format.anchorNames().isEmpty())
        words += u"bookmark "_s + format.anchorNames().join(u'/');
    if (TVLTextFormat::hasComment(format))
        words += u"comment "_s + format.stringProperty(TVLTextFormat::CommentIdentity);
    return words;
}

QString lineHeightText(const QTextBlockFormat &format)
{
    const QString height = number(format.lineHeight());
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        return u"lines %1%"_s.arg(height);
    case QTextBlockFormat::FixedHeight:
        return u"lines exactly "_s + height;
    case QTextBlockFormat::MinimumHeight:
        return u"lines at least "_s + height;
    default:
        return u"lines plus "_s + height;
    }
}

QStringList distanceWords(const QTextBlockFormat &format)
{
    constexpr NameRow<int> Names[] = {
        {QTextFormat::BlockLeftMargin, u"left"},    {QTextFormat::BlockRightMargin, u"right"},
        {QTextFormat::TextIndent, u"first"},        {QTextFormat::BlockTopMargin, u"before"},
        {QTextFormat::BlockBottomMargin, u"after"},
    };
    QStringList words;
    for (const auto &row : Names) {
        if (format.hasProperty(row.value))
            words += QString::fromUtf16(row.name) + u' ' + number(format.doubleProperty(row.value));
    }
    return words;
}

/** A block's alignment as one sees it: where text runs from right to left, its left is the right.
 */
int sideOnPage(const QTextBlockFormat &format)
{
    const bool isMirrored = format.layoutDirection() == Qt::RightToLeft;
    if (isMirrored && format.alignment() == Qt::AlignLeft)
        return Qt::AlignRight;
    return isMirrored && format.alignment() == Qt::AlignRight ? Qt::AlignLeft
                                                              : int(format.alignment());
}

QStringList blockWords(const QTextBlockFormat &format)
{
    QStringList words;
    if (format.hasProperty(QTextFormat::BlockAlignment))
        words += u"aligned "_s + nameOf(AlignmentNames, sideOnPage(format));
    if (format.hasProperty(QTextFormat::LayoutDirection))
        words +=
            format.layoutDirection() == Qt::RightToLeft ? u"right to left"_s : u"left to right"_s;
    words += distanceWords(format);
    if (format.hasProperty(QTextFormat::LineHeightType))
        words += lineHeightText(format);
    if (format.indent() > 0)
        words += u"indent %1"_s.arg(format.indent());
    for (const QTextOption::Tab &tab : format.tabPositions())
        words += u"tab"_s + nameOf(TabNames, int(tab.type)) + u' ' + number(tab.position);
    if (format.hasProperty(QTextFormat::BackgroundBrush))
        words += u"background "_s + colorName(format.background().color());
    if (format.headingLevel() > 0)
        words += u"heading %1"_s.arg(format.headingLevel());
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
        words += u"on a new page"_s;
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
        words += u"ends its page"_s;
    if (format.nonBreakableLines())
        words += u"kept together"_s;
    if (format.boolProperty(TVLTextFormat::KeepWithNext))
        words += u"kept with next"_s;
    for (int property = TVLTextFormat::ScriptElement; property <= TVLTextFormat::SectionDepth;
         ++property) {
        if (format.hasProperty(property))
            words += u"script "_s + format.property(property).toString();
    }
    return words;
}

QString lengthText(const QTextLength &length)
{
    switch (length.type()) {
    case QTextLength::FixedLength:
        return number(length.rawValue());
    case QTextLength::PercentageLength:
        return number(length.rawValue()) + u'%';
    default:
        return u"free"_s;
    }
}

QString numberSuffix(const QTextListFormat &format)
{
    return format.hasProperty(QTextFormat::ListNumberSuffix) ? format.numberSuffix() : u"."_s;
}

class Describer
{
public:
    explicit Describer(const QTextDocument &document)
        : mDocument(document)
    {
    }

    QString describe()
    {
        if (const QString title = mDocument.metaInformation(QTextDocument::DocumentTitle);
            !title.isEmpty())
            line({u"title"_s, quoted(title)});
        frame(mDocument.rootFrame()->begin());
        return mText;
    }

private:
    /** Writes a line: the first two words as they are, the others with commas between them. */
    void line(const QStringList &head, const QStringList &details = {})
    {
        mText += QString(mDepth * 2, u' ') + head.join(u' ');
        if (!details.isEmpty())
            mText += u": "_s + details.join(u", ");
        mText += u'\n';
    }

    void frame(QTextFrame::iterator it)
    {
        for (; !it.atEnd(); ++it) {
            if (auto *child = qobject_cast<QTextTable *>(it.currentFrame()))
                table(child);
            else if (it.currentFrame())
                frame(it.currentFrame()->begin());
            else if (it.currentBlock().isValid())
                block(it.currentBlock());
        }
    }

    void table(QTextTable *table)
    {
        const QTextTableFormat format = table->format();
        QStringList words;
        if (format.border() > 0)
            words += u"border "_s + number(format.border());
        if (format.hasProperty(QTextFormat::BlockAlignment))
            words += u"aligned "_s + nameOf(AlignmentNames, int(format.alignment()));
        if (format.headerRowCount() > 0)
            words += u"header rows %1"_s.arg(format.headerRowCount());
        QStringList widths;
        for (const QTextLength &length : format.columnWidthConstraints())
            widths += lengthText(length);
        words += u"widths "_s + widths.join(u' ');
        line({u"table"_s, u"%1 x %2"_s.arg(table->rows()).arg(table->columns())}, words);
        ++mDepth;
        for (int row = 0; row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                const QTextTableCell cell = table->cellAt(row, column);
                if (cell.row() == row && cell.column() == column)
                    describeCell(cell);
            }
        }
        --mDepth;
    }

    void describeCell(const QTextTableCell &cell)
    {
        QStringList words;
        if (cell.rowSpan() > 1 || cell.columnSpan() > 1)
            words += u"spans %1 x %2"_s.arg(cell.rowSpan()).arg(cell.columnSpan());
        if (cell.format().hasProperty(QTextFormat::BackgroundBrush))
            words += u"background "_s + colorName(cell.format().background().color());
        if (cell.format().verticalAlignment() != QTextCharFormat::AlignNormal)
            words += nameOf(VerticalNames, int(cell.format().verticalAlignment()));
        line({u"cell"_s, u"%1,%2"_s.arg(cell.row() + 1).arg(cell.column() + 1)}, words);
        ++mDepth;
        frame(cell.begin());
        --mDepth;
    }

    void block(const QTextBlock &block)
    {
        QStringList words;
        if (const QTextList *list = block.textList())
            words += item(*list, block);
        line({u"paragraph"_s}, words + blockWords(block.blockFormat()));
        ++mDepth;
        for (auto it = block.begin(); !it.atEnd(); ++it)
            run(it.fragment());
        --mDepth;
    }

    QString item(const QTextList &list, const QTextBlock &block)
    {
        // Lists are named in the order in which they appear.
        const int place = mLists.value(list.objectIndex(), int(mLists.size()));
        mLists.insert(list.objectIndex(), place);
        const QTextListFormat format = list.format();
        const QString marker = format.numberPrefix() + nameOf(ListNames, int(format.style()))
            + (format.style() > QTextListFormat::ListDecimal ? QString() : numberSuffix(format));
        const QString start = format.hasProperty(TVLTextFormat::ListStart)
            ? u", from %1"_s.arg(format.intProperty(TVLTextFormat::ListStart))
            : QString();
        return u"item %1 of list %2 (%3, level %4)"_s.arg(list.itemNumber(block) + 1)
            .arg(place + 1)
            .arg(marker + start)
            .arg(format.indent());
    }

    void run(const QTextFragment &fragment)
    {
        const QTextCharFormat format = fragment.charFormat();
        if (!format.isImageFormat()) {
            line({quoted(fragment.text())}, fontWords(format) + markWords(format));
            return;
        }
        const QTextImageFormat image = format.toImageFormat();
        QStringList words;
        if (image.width() > 0 || image.height() > 0)
            words += u"%1 x %2"_s.arg(number(image.width()), number(image.height()));
        if (const QString kind = image.stringProperty(TVLTextFormat::PictureKind); !kind.isEmpty())
            words += u"kind "_s + kind;
        const QByteArray bytes =
            mDocument.resource(QTextDocument::ImageResource, QUrl(image.name())).toByteArray();
        words += u"bytes "_s + QString::fromLatin1(bytes.toHex());
        line({u"picture"_s}, words + markWords(format));
    }

    const QTextDocument &mDocument;
    QString mText;
    QHash<int, int> mLists;
    int mDepth = 0;
};

} // namespace

QString describeDocument(const QTextDocument &document)
{
    return Describer(document).describe();
}
