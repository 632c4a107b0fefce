#include "TVLRtfKeywords_p.h"

#include <QFont>
#include <QTextCharFormat>
#include <QTextListFormat>
#include <QTextOption>

#include <array>

namespace {

using C = TVLRtfCharAction;
using P = TVLRtfParagraphAction;
using X = TVLRtfTextAction;
using H = TVLRtfHeaderAction;
using L = TVLRtfListAction;
using T = TVLRtfTableAction;
using D = TVLRtfDestination;

template <typename Enum>
constexpr int n(Enum value)
{
    return static_cast<int>(value);
}

constexpr TVLRtfKeyword Keywords[] = {
    // The file
    {"rtf", H::Rtf},
    {"deff", H::DefaultFont},
    {"cocoartf", H::Cocoa},
    {"ansicpg", H::CodePage},
    {"ansi", H::NamedCodePage, 1252},
    {"mac", H::NamedCodePage, 10000},
    {"pc", H::NamedCodePage, 437},
    {"pca", H::NamedCodePage, 850},

    // Characters' formats
    {"plain", C::Plain},
    {"b", C::Bold},
    {"i", C::Italic},
    {"ul", C::Underline, QTextCharFormat::SingleUnderline},
    {"ulw", C::Underline, QTextCharFormat::SingleUnderline},
    {"ulth", C::Underline, QTextCharFormat::SingleUnderline},
    {"uldash", C::Underline, QTextCharFormat::DashUnderline},
    {"ulthdash", C::Underline, QTextCharFormat::DashUnderline},
    {"ulldash", C::Underline, QTextCharFormat::DashUnderline},
    {"ulthldash", C::Underline, QTextCharFormat::DashUnderline},
    {"uld", C::Underline, QTextCharFormat::DotLine},
    {"ulthd", C::Underline, QTextCharFormat::DotLine},
    {"uldashd", C::Underline, QTextCharFormat::DashDotLine},
    {"ulthdashd", C::Underline, QTextCharFormat::DashDotLine},
    {"uldashdd", C::Underline, QTextCharFormat::DashDotDotLine},
    {"ulthdashdd", C::Underline, QTextCharFormat::DashDotDotLine},
    {"ulwave", C::Underline, QTextCharFormat::WaveUnderline},
    {"ulhwave", C::Underline, QTextCharFormat::WaveUnderline},
    {"ululdbwave", C::Underline, QTextCharFormat::WaveUnderline},
    {"ulnone", C::Underline, QTextCharFormat::NoUnderline},
    {"uldb", C::UnderlineDouble},
    {"strike", C::StrikeOut},
    {"striked", C::StrikeOut},
    {"deleted", C::StrikeOut},
    {"tvlover", C::Overline},
    {"v", C::Hidden},
    {"caps", C::Capitalization, QFont::AllUppercase},
    {"scaps", C::Capitalization, QFont::SmallCaps},
    {"tvllower", C::Capitalization, QFont::AllLowercase},
    {"tvlcapital", C::Capitalization, QFont::Capitalize},
    {"super", C::VerticalAlignment, QTextCharFormat::AlignSuperScript},
    {"sub", C::VerticalAlignment, QTextCharFormat::AlignSubScript},
    {"nosupersub", C::VerticalAlignment, QTextCharFormat::AlignNormal},
    {"up", C::VerticalShift, 1},
    {"dn", C::VerticalShift, -1},
    {"tvlvalign", C::VerticalAlignmentNumber},
    {"tvlweight", C::Weight},
    {"f", C::CharNumber, n(TVLRtfCharNumber::Font)},
    {"fs", C::CharNumber, n(TVLRtfCharNumber::HalfPoints)},
    {"cf", C::CharNumber, n(TVLRtfCharNumber::Foreground)},
    {"cb", C::CharNumber, n(TVLRtfCharNumber::Background)},
    {"chcbpat", C::CharNumber, n(TVLRtfCharNumber::Background)},
    {"highlight", C::CharNumber, n(TVLRtfCharNumber::Highlight)},
    {"ulc", C::CharNumber, n(TVLRtfCharNumber::UnderlineColor)},
    {"expndtw", C::CharNumber, n(TVLRtfCharNumber::LetterSpacing)},
    {"expnd", C::CharNumber, n(TVLRtfCharNumber::LetterSpacingQuarters)},
    {"charscalex", C::CharNumber, n(TVLRtfCharNumber::Stretch)},
    {"tvlpreset", C::CharNumber, n(TVLRtfCharNumber::Preset)},

    // Paragraphs' formats
    {"pard", P::ParagraphDefault},
    {"ql", P::Alignment, Qt::AlignLeft},
    {"qr", P::Alignment, Qt::AlignRight},
    {"qc", P::Alignment, Qt::AlignHCenter},
    {"qj", P::Alignment, Qt::AlignJustify},
    {"li", P::ParagraphNumber, n(TVLRtfParagraphNumber::LeftIndent)},
    {"lin", P::ParagraphNumber, n(TVLRtfParagraphNumber::LeftIndent)},
    {"ri", P::ParagraphNumber, n(TVLRtfParagraphNumber::RightIndent)},
    {"rin", P::ParagraphNumber, n(TVLRtfParagraphNumber::RightIndent)},
    {"fi", P::ParagraphNumber, n(TVLRtfParagraphNumber::FirstIndent)},
    {"sb", P::ParagraphNumber, n(TVLRtfParagraphNumber::SpaceBefore)},
    {"sa", P::ParagraphNumber, n(TVLRtfParagraphNumber::SpaceAfter)},
    {"sl", P::ParagraphNumber, n(TVLRtfParagraphNumber::LineHeight)},
    {"slmult", P::LineHeightMultiple},
    {"tvlsldist", P::ParagraphNumber, n(TVLRtfParagraphNumber::LineDistance)},
    {"tvlindent", P::ParagraphNumber, n(TVLRtfParagraphNumber::IndentLevel)},
    {"cbpat", P::ParagraphNumber, n(TVLRtfParagraphNumber::Background)},
    {"tvlmarker", P::ParagraphNumber, n(TVLRtfParagraphNumber::Marker)},
    {"ls", P::ParagraphNumber, n(TVLRtfParagraphNumber::List)},
    {"ilvl", P::ParagraphNumber, n(TVLRtfParagraphNumber::ListLevel)},
    {"itap", P::ParagraphNumber, n(TVLRtfParagraphNumber::TableDepth)},
    {"s", P::ParagraphNumber, n(TVLRtfParagraphNumber::Style)},
    {"sbasedon", P::ParagraphNumber, n(TVLRtfParagraphNumber::StyleBase)},
    {"intbl", P::ParagraphFlag, n(TVLRtfParagraphFlag::InTable)},
    {"pagebb", P::ParagraphFlag, n(TVLRtfParagraphFlag::BreakBefore)},
    {"tvlscript", X::Destination, n(D::Script)},
    {"tvlpageba", P::ParagraphFlag, n(TVLRtfParagraphFlag::BreakAfter)},
    {"keep", P::ParagraphFlag, n(TVLRtfParagraphFlag::Keep)},
    {"keepn", P::ParagraphFlag, n(TVLRtfParagraphFlag::KeepWithNext)},
    {"outlinelevel", P::OutlineLevel},
    {"ltrpar", P::Direction, Qt::LeftToRight},
    {"rtlpar", P::Direction, Qt::RightToLeft},
    {"tx", P::Tab},
    {"tqr", P::TabKind, QTextOption::RightTab},
    {"tqc", P::TabKind, QTextOption::CenterTab},
    {"tqdec", P::TabKind, QTextOption::DelimiterTab},
    {"jclisttab", P::TabKind, -1},

    // Text
    {"par", X::Paragraph},
    {"sect", X::PageBreak},
    {"page", X::PageBreak},
    {"sbknone", X::ContinuousSection},
    {"chpgn", X::PageNumber},
    {"u", X::Unicode},
    {"uc", X::UnicodeSkip},
    {"tab", X::Character, u'\t'},
    {"line", X::Character, QChar::LineSeparator},
    {"lbr", X::Character, QChar::LineSeparator},
    {"column", X::Character, QChar::LineSeparator},
    {"emdash", X::Character, 0x2014},
    {"endash", X::Character, 0x2013},
    {"emspace", X::Character, 0x2003},
    {"enspace", X::Character, 0x2002},
    {"qmspace", X::Character, 0x2005},
    {"bullet", X::Character, 0x2022},
    {"lquote", X::Character, 0x2018},
    {"rquote", X::Character, 0x2019},
    {"ldblquote", X::Character, 0x201c},
    {"rdblquote", X::Character, 0x201d},
    {"ltrmark", X::Character, 0x200e},
    {"rtlmark", X::Character, 0x200f},
    {"zwj", X::Character, 0x200d},
    {"zwnj", X::Character, 0x200c},
    {"zwbo", X::Character, 0x200b},
    {"zwnbo", X::Character, 0x2060},

    // Fonts, colours, document information
    {"fonttbl", X::Destination, n(D::FontTable)},
    {"fcharset", H::FontCharset},
    {"cpg", H::FontCodePage},
    {"falt", X::Destination, n(D::FontAlternative)},
    {"colortbl", X::Destination, n(D::ColorTable)},
    {"red", H::ColorPart, 0},
    {"green", H::ColorPart, 1},
    {"blue", H::ColorPart, 2},
    {"tvlalpha", H::ColorPart, 3},
    {"info", X::Destination, n(D::Container)},
    {"title", X::Destination, n(D::Title)},
    {"stylesheet", X::Destination, n(D::StyleSheet)},

    // Lists
    {"listtable", X::Destination, n(D::ListTable)},
    {"list", X::Destination, n(D::List)},
    {"listlevel", X::Destination, n(D::ListLevel)},
    {"leveltext", X::Destination, n(D::LevelText)},
    {"listid", L::ListId},
    {"levelnfc", L::LevelNumbering},
    {"levelnfcn", L::LevelNumbering},
    {"levelstartat", L::LevelStart},
    {"tvllistindent", L::LevelIndent},
    {"listoverridetable", X::Destination, n(D::ListOverrides)},
    {"listoverride", X::Destination, n(D::ListOverride)},
    {"lfolevel", L::OverrideLevel},
    {"listoverridestartat", L::ListRestart},
    {"listtext", X::Destination, n(D::ListMarker)},
    {"pntext", X::Destination, n(D::ListMarker)},
    {"pn", X::Destination, n(D::OldList)},
    {"pnlvl", L::OldListLevel, -1},
    {"pnlvlbody", L::OldListLevel, 0},
    {"pnlvlcont", L::OldListGoesOn},
    {"pnstart", L::OldListStart},
    {"pnlvlblt", L::OldListStyle, QTextListFormat::ListDisc},
    {"pndec", L::OldListStyle, QTextListFormat::ListDecimal},
    {"pncard", L::OldListStyle, QTextListFormat::ListDecimal},
    {"pnord", L::OldListStyle, QTextListFormat::ListDecimal},
    {"pnlcltr", L::OldListStyle, QTextListFormat::ListLowerAlpha},
    {"pnucltr", L::OldListStyle, QTextListFormat::ListUpperAlpha},
    {"pnlcrm", L::OldListStyle, QTextListFormat::ListLowerRoman},
    {"pnucrm", L::OldListStyle, QTextListFormat::ListUpperRoman},
    {"pntxtb", X::Destination, n(D::OldListBefore)},
    {"pntxta", X::Destination, n(D::OldListAfter)},

    // Tables
    {"trowd", T::RowDefaults},
    {"cellx", T::CellEdge},
    {"cell", T::CellEnd},
    {"row", T::RowEnd},
    {"nestcell", T::NestedCellEnd},
    {"nestrow", T::NestedRowEnd},
    {"nesttableprops", X::Destination, n(D::NestedRow)},
    {"clmgf", T::CellFlag, n(TVLRtfCellFlag::MergeFirst)},
    {"clmrg", T::CellFlag, n(TVLRtfCellFlag::MergeNext)},
    {"clvmgf", T::CellFlag, n(TVLRtfCellFlag::MergeDownFirst)},
    {"clvmrg", T::CellFlag, n(TVLRtfCellFlag::MergeDownNext)},
    {"clvertalt", T::CellAlignment, QTextCharFormat::AlignTop},
    {"clvertalc", T::CellAlignment, QTextCharFormat::AlignMiddle},
    {"clvertalb", T::CellAlignment, QTextCharFormat::AlignBottom},
    {"clcbpat", T::CellNumber, n(TVLRtfCellNumber::Background)},
    {"trhdr", T::RowNumber, n(TVLRtfRowNumber::Header)},
    {"trleft", T::RowNumber, n(TVLRtfRowNumber::Left)},
    {"tvlborder", T::RowNumber, n(TVLRtfRowNumber::Border)},
    {"tvlborderstyle", T::RowNumber, n(TVLRtfRowNumber::BorderStyle)},
    {"tvlbordercolor", T::RowNumber, n(TVLRtfRowNumber::BorderColor)},
    {"tvlpadding", T::RowNumber, n(TVLRtfRowNumber::Padding)},
    {"tvlspacing", T::RowNumber, n(TVLRtfRowNumber::Spacing)},
    {"tvltablebg", T::RowNumber, n(TVLRtfRowNumber::Background)},
    {"tvlcoltype", T::RowNumber, n(TVLRtfRowNumber::ConstraintType)},
    {"tvlcolwidth", T::RowNumber, n(TVLRtfRowNumber::ConstraintValue)},
    {"tvlwidthtype", T::RowNumber, n(TVLRtfRowNumber::WidthType)},
    {"tvlwidth", T::RowNumber, n(TVLRtfRowNumber::WidthValue)},
    {"trql", T::RowAlignment, Qt::AlignLeft},
    {"trqc", T::RowAlignment, Qt::AlignHCenter},
    {"trqr", T::RowAlignment, Qt::AlignRight},
    {"clbrdrt", T::BorderOwner, 1},
    {"clbrdrl", T::BorderOwner, 1},
    {"clbrdrb", T::BorderOwner, 1},
    {"clbrdrr", T::BorderOwner, 1},
    {"trbrdrt", T::BorderOwner, 1},
    {"trbrdrl", T::BorderOwner, 1},
    {"trbrdrb", T::BorderOwner, 1},
    {"trbrdrr", T::BorderOwner, 1},
    {"trbrdrh", T::BorderOwner, 1},
    {"trbrdrv", T::BorderOwner, 1},
    {"brdrt", T::BorderOwner, 0},
    {"brdrl", T::BorderOwner, 0},
    {"brdrb", T::BorderOwner, 0},
    {"brdrr", T::BorderOwner, 0},
    {"brdrbtw", T::BorderOwner, 0},
    {"brdrbar", T::BorderOwner, 0},
    {"box", T::BorderOwner, 0},
    {"chbrdr", T::BorderOwner, 0},
    {"brdrnone", T::BorderOwner, 0},
    {"brdrnil", T::BorderOwner, 0},
    {"brdrw", T::BorderWidth},

    // Pictures
    {"pict", X::Destination, n(D::Picture)},
    {"tvlname", X::Destination, n(D::PictureName)},
    {"pngblip", X::PictureKind},
    {"jpegblip", X::PictureKind},
    {"emfblip", X::PictureKind},
    {"macpict", X::PictureKind},
    {"pmmetafile", X::PictureKind},
    {"wmetafile", X::PictureKind},
    {"dibitmap", X::PictureKind},
    {"wbitmap", X::PictureKind},
    {"tvlblip", X::PictureKind},
    {"picw", X::PictureNumber, n(TVLRtfPictureNumber::Width)},
    {"pich", X::PictureNumber, n(TVLRtfPictureNumber::Height)},
    {"picwgoal", X::PictureNumber, n(TVLRtfPictureNumber::GoalWidth)},
    {"pichgoal", X::PictureNumber, n(TVLRtfPictureNumber::GoalHeight)},
    {"picscalex", X::PictureNumber, n(TVLRtfPictureNumber::ScaleX)},
    {"picscaley", X::PictureNumber, n(TVLRtfPictureNumber::ScaleY)},
    {"NeXTGraphic", X::Destination, n(D::Attachment)},
    {"shppict", X::Destination, n(D::Transparent)},
    {"shp", X::Destination, n(D::Transparent)},
    {"shpinst", X::Destination, n(D::Transparent)},
    {"shptxt", X::Destination, n(D::TextBox)},

    // Fields, notes, bookmarks
    {"field", X::Destination, n(D::Field)},
    {"fldinst", X::Destination, n(D::FieldInstruction)},
    {"fldrslt", X::Destination, n(D::FieldResult)},
    {"footnote", X::Destination, n(D::Footnote)},
    {"annotation", X::Destination, n(D::Annotation)},
    {"bkmkstart", X::Destination, n(D::BookmarkStart)},
    {"bkmkend", X::Destination, n(D::BookmarkEnd)},
    {"upr", X::Destination, n(D::UnicodePair)},
    {"ud", X::Destination, n(D::UnicodePart)},
    {"result", X::Destination, n(D::Transparent)},
    {"object", X::Destination, n(D::Transparent)},

    // What belongs to no text, or stands there a second time
    {"levelnumbers", X::Destination, n(D::Skipped)},
    {"listname", X::Destination, n(D::Skipped)},
    {"nonshppict", X::Destination, n(D::Skipped)},
    {"nonesttables", X::Destination, n(D::Skipped)},
    {"shprslt", X::Destination, n(D::Skipped)},
    {"sp", X::Destination, n(D::Container)},
    {"sv", X::Destination, n(D::Container)},
    {"sn", X::Destination, n(D::Skipped)},
    {"objdata", X::Destination, n(D::Skipped)},
    {"objclass", X::Destination, n(D::Skipped)},
    {"objname", X::Destination, n(D::Skipped)},
    {"header", X::Destination, n(D::Skipped)},
    {"headerl", X::Destination, n(D::Skipped)},
    {"headerr", X::Destination, n(D::Skipped)},
    {"headerf", X::Destination, n(D::Skipped)},
    {"footer", X::Destination, n(D::Skipped)},
    {"footerl", X::Destination, n(D::Skipped)},
    {"footerr", X::Destination, n(D::Skipped)},
    {"footerf", X::Destination, n(D::Skipped)},
    {"ftnsep", X::Destination, n(D::Skipped)},
    {"ftnsepc", X::Destination, n(D::Skipped)},
    {"ftncn", X::Destination, n(D::Skipped)},
    {"aftnsep", X::Destination, n(D::Skipped)},
    {"aftnsepc", X::Destination, n(D::Skipped)},
    {"aftncn", X::Destination, n(D::Skipped)},
    {"atnid", X::Destination, n(D::Skipped)},
    {"atnauthor", X::Destination, n(D::Skipped)},
    {"atntime", X::Destination, n(D::Skipped)},
    {"atndate", X::Destination, n(D::Skipped)},
    {"atnref", X::Destination, n(D::Skipped)},
    {"atnparent", X::Destination, n(D::Skipped)},
    {"atnicn", X::Destination, n(D::Skipped)},
    {"atrfstart", X::Destination, n(D::Skipped)},
    {"atrfend", X::Destination, n(D::Skipped)},
    {"author", X::Destination, n(D::Skipped)},
    {"operator", X::Destination, n(D::Skipped)},
    {"subject", X::Destination, n(D::Skipped)},
    {"keywords", X::Destination, n(D::Skipped)},
    {"comment", X::Destination, n(D::Skipped)},
    {"doccomm", X::Destination, n(D::Skipped)},
    {"company", X::Destination, n(D::Skipped)},
    {"manager", X::Destination, n(D::Skipped)},
    {"category", X::Destination, n(D::Skipped)},
    {"hlinkbase", X::Destination, n(D::Skipped)},
    {"revtbl", X::Destination, n(D::Skipped)},
    {"rsidtbl", X::Destination, n(D::Skipped)},
    {"filetbl", X::Destination, n(D::Skipped)},
    {"template", X::Destination, n(D::Skipped)},
    {"private", X::Destination, n(D::Skipped)},
    {"xe", X::Destination, n(D::Skipped)},
    {"tc", X::Destination, n(D::Skipped)},
    {"tcn", X::Destination, n(D::Skipped)},
    {"rxe", X::Destination, n(D::Skipped)},
    {"txe", X::Destination, n(D::Skipped)},
    {"do", X::Destination, n(D::Skipped)},
    {"background", X::Destination, n(D::Skipped)},
    {"pgdsctbl", X::Destination, n(D::Skipped)},
    {"themedata", X::Destination, n(D::Skipped)},
    {"colorschememapping", X::Destination, n(D::Skipped)},
    {"datastore", X::Destination, n(D::Skipped)},
    {"latentstyles", X::Destination, n(D::Skipped)},
    {"blipuid", X::Destination, n(D::Skipped)},
    {"picprop", X::Destination, n(D::Skipped)},
    {"fontemb", X::Destination, n(D::Skipped)},
    {"fontfile", X::Destination, n(D::Skipped)},
    {"panose", X::Destination, n(D::Skipped)},
    {"fname", X::Destination, n(D::Skipped)},
    {"abiframeprops", X::Destination, n(D::Skipped)},
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
