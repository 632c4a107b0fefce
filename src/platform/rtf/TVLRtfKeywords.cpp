#include "TVLRtfKeywords_p.h"

#include <QFont>
#include <QTextCharFormat>
#include <QTextListFormat>
#include <QTextOption>

#include <array>

namespace {

using A = TVLRtfAction;
using D = TVLRtfDestination;

template <typename Enum>
constexpr int n(Enum value)
{
    return static_cast<int>(value);
}

constexpr TVLRtfKeyword Keywords[] = {
    // The file
    {"rtf", A::Rtf},
    {"deff", A::DefaultFont},
    {"cocoartf", A::Cocoa},
    {"ansicpg", A::CodePage},
    {"ansi", A::NamedCodePage, 1252},
    {"mac", A::NamedCodePage, 10000},
    {"pc", A::NamedCodePage, 437},
    {"pca", A::NamedCodePage, 850},

    // Characters' formats
    {"plain", A::Plain},
    {"b", A::Bold},
    {"i", A::Italic},
    {"ul", A::Underline, QTextCharFormat::SingleUnderline},
    {"ulw", A::Underline, QTextCharFormat::SingleUnderline},
    {"ulth", A::Underline, QTextCharFormat::SingleUnderline},
    {"uldash", A::Underline, QTextCharFormat::DashUnderline},
    {"ulthdash", A::Underline, QTextCharFormat::DashUnderline},
    {"ulldash", A::Underline, QTextCharFormat::DashUnderline},
    {"ulthldash", A::Underline, QTextCharFormat::DashUnderline},
    {"uld", A::Underline, QTextCharFormat::DotLine},
    {"ulthd", A::Underline, QTextCharFormat::DotLine},
    {"uldashd", A::Underline, QTextCharFormat::DashDotLine},
    {"ulthdashd", A::Underline, QTextCharFormat::DashDotLine},
    {"uldashdd", A::Underline, QTextCharFormat::DashDotDotLine},
    {"ulthdashdd", A::Underline, QTextCharFormat::DashDotDotLine},
    {"ulwave", A::Underline, QTextCharFormat::WaveUnderline},
    {"ulhwave", A::Underline, QTextCharFormat::WaveUnderline},
    {"ululdbwave", A::Underline, QTextCharFormat::WaveUnderline},
    {"ulnone", A::Underline, QTextCharFormat::NoUnderline},
    {"uldb", A::UnderlineDouble},
    {"strike", A::StrikeOut},
    {"striked", A::StrikeOut},
    {"deleted", A::StrikeOut},
    {"tvlover", A::Overline},
    {"v", A::Hidden},
    {"caps", A::Capitalization, QFont::AllUppercase},
    {"scaps", A::Capitalization, QFont::SmallCaps},
    {"tvllower", A::Capitalization, QFont::AllLowercase},
    {"tvlcapital", A::Capitalization, QFont::Capitalize},
    {"super", A::VerticalAlignment, QTextCharFormat::AlignSuperScript},
    {"sub", A::VerticalAlignment, QTextCharFormat::AlignSubScript},
    {"nosupersub", A::VerticalAlignment, QTextCharFormat::AlignNormal},
    {"up", A::VerticalShift, 1},
    {"dn", A::VerticalShift, -1},
    {"tvlvalign", A::VerticalAlignmentNumber},
    {"tvlweight", A::Weight},
    {"f", A::CharNumber, n(TVLRtfCharNumber::Font)},
    {"fs", A::CharNumber, n(TVLRtfCharNumber::HalfPoints)},
    {"cf", A::CharNumber, n(TVLRtfCharNumber::Foreground)},
    {"cb", A::CharNumber, n(TVLRtfCharNumber::Background)},
    {"chcbpat", A::CharNumber, n(TVLRtfCharNumber::Background)},
    {"highlight", A::CharNumber, n(TVLRtfCharNumber::Highlight)},
    {"ulc", A::CharNumber, n(TVLRtfCharNumber::UnderlineColor)},
    {"expndtw", A::CharNumber, n(TVLRtfCharNumber::LetterSpacing)},
    {"expnd", A::CharNumber, n(TVLRtfCharNumber::LetterSpacingQuarters)},
    {"charscalex", A::CharNumber, n(TVLRtfCharNumber::Stretch)},
    {"tvlpreset", A::CharNumber, n(TVLRtfCharNumber::Preset)},

    // Paragraphs' formats
    {"pard", A::ParagraphDefault},
    {"ql", A::Alignment, Qt::AlignLeft},
    {"qr", A::Alignment, Qt::AlignRight},
    {"qc", A::Alignment, Qt::AlignHCenter},
    {"qj", A::Alignment, Qt::AlignJustify},
    {"li", A::ParagraphNumber, n(TVLRtfParagraphNumber::LeftIndent)},
    {"lin", A::ParagraphNumber, n(TVLRtfParagraphNumber::LeftIndent)},
    {"ri", A::ParagraphNumber, n(TVLRtfParagraphNumber::RightIndent)},
    {"rin", A::ParagraphNumber, n(TVLRtfParagraphNumber::RightIndent)},
    {"fi", A::ParagraphNumber, n(TVLRtfParagraphNumber::FirstIndent)},
    {"sb", A::ParagraphNumber, n(TVLRtfParagraphNumber::SpaceBefore)},
    {"sa", A::ParagraphNumber, n(TVLRtfParagraphNumber::SpaceAfter)},
    {"sl", A::ParagraphNumber, n(TVLRtfParagraphNumber::LineHeight)},
    {"slmult", A::LineHeightMultiple},
    {"tvlsldist", A::ParagraphNumber, n(TVLRtfParagraphNumber::LineDistance)},
    {"tvlindent", A::ParagraphNumber, n(TVLRtfParagraphNumber::IndentLevel)},
    {"cbpat", A::ParagraphNumber, n(TVLRtfParagraphNumber::Background)},
    {"tvlmarker", A::ParagraphNumber, n(TVLRtfParagraphNumber::Marker)},
    {"ls", A::ParagraphNumber, n(TVLRtfParagraphNumber::List)},
    {"ilvl", A::ParagraphNumber, n(TVLRtfParagraphNumber::ListLevel)},
    {"itap", A::ParagraphNumber, n(TVLRtfParagraphNumber::TableDepth)},
    {"s", A::ParagraphNumber, n(TVLRtfParagraphNumber::Style)},
    {"sbasedon", A::ParagraphNumber, n(TVLRtfParagraphNumber::StyleBase)},
    {"intbl", A::ParagraphFlag, n(TVLRtfParagraphFlag::InTable)},
    {"pagebb", A::ParagraphFlag, n(TVLRtfParagraphFlag::BreakBefore)},
    {"tvlscript", A::Destination, n(D::Script)},
    {"tvlpageba", A::ParagraphFlag, n(TVLRtfParagraphFlag::BreakAfter)},
    {"keep", A::ParagraphFlag, n(TVLRtfParagraphFlag::Keep)},
    {"keepn", A::ParagraphFlag, n(TVLRtfParagraphFlag::KeepWithNext)},
    {"outlinelevel", A::OutlineLevel},
    {"ltrpar", A::Direction, Qt::LeftToRight},
    {"rtlpar", A::Direction, Qt::RightToLeft},
    {"tx", A::Tab},
    {"tqr", A::TabKind, QTextOption::RightTab},
    {"tqc", A::TabKind, QTextOption::CenterTab},
    {"tqdec", A::TabKind, QTextOption::DelimiterTab},
    {"jclisttab", A::TabKind, -1},

    // Text
    {"par", A::Paragraph},
    {"sect", A::PageBreak},
    {"page", A::PageBreak},
    {"sbknone", A::ContinuousSection},
    {"chpgn", A::PageNumber},
    {"u", A::Unicode},
    {"uc", A::UnicodeSkip},
    {"tab", A::Character, u'\t'},
    {"line", A::Character, QChar::LineSeparator},
    {"lbr", A::Character, QChar::LineSeparator},
    {"column", A::Character, QChar::LineSeparator},
    {"emdash", A::Character, 0x2014},
    {"endash", A::Character, 0x2013},
    {"emspace", A::Character, 0x2003},
    {"enspace", A::Character, 0x2002},
    {"qmspace", A::Character, 0x2005},
    {"bullet", A::Character, 0x2022},
    {"lquote", A::Character, 0x2018},
    {"rquote", A::Character, 0x2019},
    {"ldblquote", A::Character, 0x201c},
    {"rdblquote", A::Character, 0x201d},
    {"ltrmark", A::Character, 0x200e},
    {"rtlmark", A::Character, 0x200f},
    {"zwj", A::Character, 0x200d},
    {"zwnj", A::Character, 0x200c},
    {"zwbo", A::Character, 0x200b},
    {"zwnbo", A::Character, 0x2060},

    // Fonts, colours, document information
    {"fonttbl", A::Destination, n(D::FontTable)},
    {"fcharset", A::FontCharset},
    {"cpg", A::FontCodePage},
    {"falt", A::Destination, n(D::FontAlternative)},
    {"colortbl", A::Destination, n(D::ColorTable)},
    {"red", A::ColorPart, 0},
    {"green", A::ColorPart, 1},
    {"blue", A::ColorPart, 2},
    {"tvlalpha", A::ColorPart, 3},
    {"info", A::Destination, n(D::Container)},
    {"title", A::Destination, n(D::Title)},
    {"stylesheet", A::Destination, n(D::StyleSheet)},

    // Lists
    {"listtable", A::Destination, n(D::ListTable)},
    {"list", A::Destination, n(D::List)},
    {"listlevel", A::Destination, n(D::ListLevel)},
    {"leveltext", A::Destination, n(D::LevelText)},
    {"listid", A::ListId},
    {"levelnfc", A::LevelNumbering},
    {"levelnfcn", A::LevelNumbering},
    {"levelstartat", A::LevelStart},
    {"tvllistindent", A::LevelIndent},
    {"listoverridetable", A::Destination, n(D::ListOverrides)},
    {"listoverride", A::Destination, n(D::ListOverride)},
    {"lfolevel", A::OverrideLevel},
    {"listoverridestartat", A::ListRestart},
    {"listtext", A::Destination, n(D::ListMarker)},
    {"pntext", A::Destination, n(D::ListMarker)},
    {"pn", A::Destination, n(D::OldList)},
    {"pnlvl", A::OldListLevel, -1},
    {"pnlvlbody", A::OldListLevel, 0},
    {"pnlvlcont", A::OldListGoesOn},
    {"pnstart", A::OldListStart},
    {"pnlvlblt", A::OldListStyle, QTextListFormat::ListDisc},
    {"pndec", A::OldListStyle, QTextListFormat::ListDecimal},
    {"pncard", A::OldListStyle, QTextListFormat::ListDecimal},
    {"pnord", A::OldListStyle, QTextListFormat::ListDecimal},
    {"pnlcltr", A::OldListStyle, QTextListFormat::ListLowerAlpha},
    {"pnucltr", A::OldListStyle, QTextListFormat::ListUpperAlpha},
    {"pnlcrm", A::OldListStyle, QTextListFormat::ListLowerRoman},
    {"pnucrm", A::OldListStyle, QTextListFormat::ListUpperRoman},
    {"pntxtb", A::Destination, n(D::OldListBefore)},
    {"pntxta", A::Destination, n(D::OldListAfter)},

    // Tables
    {"trowd", A::RowDefaults},
    {"cellx", A::CellEdge},
    {"cell", A::CellEnd},
    {"row", A::RowEnd},
    {"nestcell", A::NestedCellEnd},
    {"nestrow", A::NestedRowEnd},
    {"nesttableprops", A::Destination, n(D::NestedRow)},
    {"clmgf", A::CellFlag, n(TVLRtfCellFlag::MergeFirst)},
    {"clmrg", A::CellFlag, n(TVLRtfCellFlag::MergeNext)},
    {"clvmgf", A::CellFlag, n(TVLRtfCellFlag::MergeDownFirst)},
    {"clvmrg", A::CellFlag, n(TVLRtfCellFlag::MergeDownNext)},
    {"clvertalt", A::CellAlignment, QTextCharFormat::AlignTop},
    {"clvertalc", A::CellAlignment, QTextCharFormat::AlignMiddle},
    {"clvertalb", A::CellAlignment, QTextCharFormat::AlignBottom},
    {"clcbpat", A::CellNumber, n(TVLRtfCellNumber::Background)},
    {"trhdr", A::RowNumber, n(TVLRtfRowNumber::Header)},
    {"trleft", A::RowNumber, n(TVLRtfRowNumber::Left)},
    {"tvlborder", A::RowNumber, n(TVLRtfRowNumber::Border)},
    {"tvlborderstyle", A::RowNumber, n(TVLRtfRowNumber::BorderStyle)},
    {"tvlbordercolor", A::RowNumber, n(TVLRtfRowNumber::BorderColor)},
    {"tvlpadding", A::RowNumber, n(TVLRtfRowNumber::Padding)},
    {"tvlspacing", A::RowNumber, n(TVLRtfRowNumber::Spacing)},
    {"tvltablebg", A::RowNumber, n(TVLRtfRowNumber::Background)},
    {"tvlcoltype", A::RowNumber, n(TVLRtfRowNumber::ConstraintType)},
    {"tvlcolwidth", A::RowNumber, n(TVLRtfRowNumber::ConstraintValue)},
    {"tvlwidthtype", A::RowNumber, n(TVLRtfRowNumber::WidthType)},
    {"tvlwidth", A::RowNumber, n(TVLRtfRowNumber::WidthValue)},
    {"trql", A::RowAlignment, Qt::AlignLeft},
    {"trqc", A::RowAlignment, Qt::AlignHCenter},
    {"trqr", A::RowAlignment, Qt::AlignRight},
    {"clbrdrt", A::BorderOwner, 1},
    {"clbrdrl", A::BorderOwner, 1},
    {"clbrdrb", A::BorderOwner, 1},
    {"clbrdrr", A::BorderOwner, 1},
    {"trbrdrt", A::BorderOwner, 1},
    {"trbrdrl", A::BorderOwner, 1},
    {"trbrdrb", A::BorderOwner, 1},
    {"trbrdrr", A::BorderOwner, 1},
    {"trbrdrh", A::BorderOwner, 1},
    {"trbrdrv", A::BorderOwner, 1},
    {"brdrt", A::BorderOwner, 0},
    {"brdrl", A::BorderOwner, 0},
    {"brdrb", A::BorderOwner, 0},
    {"brdrr", A::BorderOwner, 0},
    {"brdrbtw", A::BorderOwner, 0},
    {"brdrbar", A::BorderOwner, 0},
    {"box", A::BorderOwner, 0},
    {"chbrdr", A::BorderOwner, 0},
    {"brdrnone", A::BorderOwner, 0},
    {"brdrnil", A::BorderOwner, 0},
    {"brdrw", A::BorderWidth},

    // Pictures
    {"pict", A::Destination, n(D::Picture)},
    {"tvlname", A::Destination, n(D::PictureName)},
    {"pngblip", A::PictureKind},
    {"jpegblip", A::PictureKind},
    {"emfblip", A::PictureKind},
    {"macpict", A::PictureKind},
    {"pmmetafile", A::PictureKind},
    {"wmetafile", A::PictureKind},
    {"dibitmap", A::PictureKind},
    {"wbitmap", A::PictureKind},
    {"tvlblip", A::PictureKind},
    {"picw", A::PictureNumber, n(TVLRtfPictureNumber::Width)},
    {"pich", A::PictureNumber, n(TVLRtfPictureNumber::Height)},
    {"picwgoal", A::PictureNumber, n(TVLRtfPictureNumber::GoalWidth)},
    {"pichgoal", A::PictureNumber, n(TVLRtfPictureNumber::GoalHeight)},
    {"picscalex", A::PictureNumber, n(TVLRtfPictureNumber::ScaleX)},
    {"picscaley", A::PictureNumber, n(TVLRtfPictureNumber::ScaleY)},
    {"NeXTGraphic", A::Destination, n(D::Attachment)},
    {"shppict", A::Destination, n(D::Transparent)},
    {"shp", A::Destination, n(D::Transparent)},
    {"shpinst", A::Destination, n(D::Transparent)},
    {"shptxt", A::Destination, n(D::TextBox)},

    // Fields, notes, bookmarks
    {"field", A::Destination, n(D::Field)},
    {"fldinst", A::Destination, n(D::FieldInstruction)},
    {"fldrslt", A::Destination, n(D::FieldResult)},
    {"footnote", A::Destination, n(D::Footnote)},
    {"annotation", A::Destination, n(D::Annotation)},
    {"bkmkstart", A::Destination, n(D::BookmarkStart)},
    {"bkmkend", A::Destination, n(D::BookmarkEnd)},
    {"upr", A::Destination, n(D::UnicodePair)},
    {"ud", A::Destination, n(D::UnicodePart)},
    {"result", A::Destination, n(D::Transparent)},
    {"object", A::Destination, n(D::Transparent)},

    // What belongs to no text, or stands there a second time
    {"levelnumbers", A::Destination, n(D::Skipped)},
    {"listname", A::Destination, n(D::Skipped)},
    {"nonshppict", A::Destination, n(D::Skipped)},
    {"nonesttables", A::Destination, n(D::Skipped)},
    {"shprslt", A::Destination, n(D::Skipped)},
    {"sp", A::Destination, n(D::Container)},
    {"sv", A::Destination, n(D::Container)},
    {"sn", A::Destination, n(D::Skipped)},
    {"objdata", A::Destination, n(D::Skipped)},
    {"objclass", A::Destination, n(D::Skipped)},
    {"objname", A::Destination, n(D::Skipped)},
    {"header", A::Destination, n(D::Skipped)},
    {"headerl", A::Destination, n(D::Skipped)},
    {"headerr", A::Destination, n(D::Skipped)},
    {"headerf", A::Destination, n(D::Skipped)},
    {"footer", A::Destination, n(D::Skipped)},
    {"footerl", A::Destination, n(D::Skipped)},
    {"footerr", A::Destination, n(D::Skipped)},
    {"footerf", A::Destination, n(D::Skipped)},
    {"ftnsep", A::Destination, n(D::Skipped)},
    {"ftnsepc", A::Destination, n(D::Skipped)},
    {"ftncn", A::Destination, n(D::Skipped)},
    {"aftnsep", A::Destination, n(D::Skipped)},
    {"aftnsepc", A::Destination, n(D::Skipped)},
    {"aftncn", A::Destination, n(D::Skipped)},
    {"atnid", A::Destination, n(D::Skipped)},
    {"atnauthor", A::Destination, n(D::Skipped)},
    {"atntime", A::Destination, n(D::Skipped)},
    {"atndate", A::Destination, n(D::Skipped)},
    {"atnref", A::Destination, n(D::Skipped)},
    {"atnparent", A::Destination, n(D::Skipped)},
    {"atnicn", A::Destination, n(D::Skipped)},
    {"atrfstart", A::Destination, n(D::Skipped)},
    {"atrfend", A::Destination, n(D::Skipped)},
    {"author", A::Destination, n(D::Skipped)},
    {"operator", A::Destination, n(D::Skipped)},
    {"subject", A::Destination, n(D::Skipped)},
    {"keywords", A::Destination, n(D::Skipped)},
    {"comment", A::Destination, n(D::Skipped)},
    {"doccomm", A::Destination, n(D::Skipped)},
    {"company", A::Destination, n(D::Skipped)},
    {"manager", A::Destination, n(D::Skipped)},
    {"category", A::Destination, n(D::Skipped)},
    {"hlinkbase", A::Destination, n(D::Skipped)},
    {"revtbl", A::Destination, n(D::Skipped)},
    {"rsidtbl", A::Destination, n(D::Skipped)},
    {"filetbl", A::Destination, n(D::Skipped)},
    {"template", A::Destination, n(D::Skipped)},
    {"private", A::Destination, n(D::Skipped)},
    {"xe", A::Destination, n(D::Skipped)},
    {"tc", A::Destination, n(D::Skipped)},
    {"tcn", A::Destination, n(D::Skipped)},
    {"rxe", A::Destination, n(D::Skipped)},
    {"txe", A::Destination, n(D::Skipped)},
    {"do", A::Destination, n(D::Skipped)},
    {"background", A::Destination, n(D::Skipped)},
    {"pgdsctbl", A::Destination, n(D::Skipped)},
    {"themedata", A::Destination, n(D::Skipped)},
    {"colorschememapping", A::Destination, n(D::Skipped)},
    {"datastore", A::Destination, n(D::Skipped)},
    {"latentstyles", A::Destination, n(D::Skipped)},
    {"blipuid", A::Destination, n(D::Skipped)},
    {"picprop", A::Destination, n(D::Skipped)},
    {"fontemb", A::Destination, n(D::Skipped)},
    {"fontfile", A::Destination, n(D::Skipped)},
    {"panose", A::Destination, n(D::Skipped)},
    {"fname", A::Destination, n(D::Skipped)},
    {"abiframeprops", A::Destination, n(D::Skipped)},
};

/**
 * The keywords by their names. Every second token of a file is looked up here, so it is an open
 * table with a hash that costs next to nothing; the names were chosen for people, and differ
 * enough.
 */
class KeywordTable
{
public:
    KeywordTable()
    {
        for (const TVLRtfKeyword &keyword : Keywords) {
            const QByteArrayView name(keyword.name);
            size_t slot = slotOf(name);
            while (mSlots[slot].keyword)
                slot = (slot + 1) % SlotCount;
            mSlots[slot] = {name, &keyword};
        }
    }

    [[nodiscard]] const TVLRtfKeyword *find(QByteArrayView name) const
    {
        for (size_t slot = slotOf(name); mSlots[slot].keyword; slot = (slot + 1) % SlotCount) {
            if (mSlots[slot].name == name)
                return mSlots[slot].keyword;
        }
        return nullptr;
    }

private:
    struct Slot
    {
        QByteArrayView name;
        const TVLRtfKeyword *keyword = nullptr;
    };

    static constexpr size_t SlotCount = 2048;
    static_assert(std::size(Keywords) < SlotCount / 4);

    /** Names aren't empty. */
    [[nodiscard]] static size_t slotOf(QByteArrayView name)
    {
        size_t hash = size_t(name.size());
        for (const char c : name)
            hash = hash * 31 + static_cast<unsigned char>(c);
        return hash % SlotCount;
    }

    std::array<Slot, SlotCount> mSlots{};
};

} // namespace

const TVLRtfKeyword *tvlRtfKeyword(QByteArrayView name)
{
    static const KeywordTable table;
    return table.find(name);
}
