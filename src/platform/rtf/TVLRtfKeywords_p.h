#pragma once

#include <QByteArrayView>

#include <variant>

/** What a control word does to the formats of characters; the argument tells more where it says so.
 */
enum class TVLRtfCharAction : quint8 {
    Bold,
    Italic,
    Underline, ///< Argument: a QTextCharFormat::UnderlineStyle; a parameter of 0 ends it.
    UnderlineDouble,
    StrikeOut,
    Overline,
    Hidden,
    Capitalization, ///< Argument: a QFont::Capitalization.
    VerticalAlignment, ///< Argument: a QTextCharFormat::VerticalAlignment.
    VerticalShift, ///< Argument: 1 up, -1 down.
    VerticalAlignmentNumber,
    Weight,
    CharNumber, ///< Argument: a TVLRtfCharNumber.
    Plain,
};

/** What it does to the formats of paragraphs. */
enum class TVLRtfParagraphAction : quint8 {
    Alignment, ///< Argument: a Qt::AlignmentFlag.
    ParagraphNumber, ///< Argument: a TVLRtfParagraphNumber.
    ParagraphFlag, ///< Argument: a TVLRtfParagraphFlag.
    LineHeightMultiple,
    OutlineLevel,
    Direction, ///< Argument: a Qt::LayoutDirection.
    Tab,
    TabKind, ///< Argument: a QTextOption::TabType; -1 for a tab that belongs to a list's marker.
    ParagraphDefault,
};

/** What it adds to the text, or where it has the text go. */
enum class TVLRtfTextAction : quint8 {
    Character, ///< Argument: a UTF-16 unit.
    Unicode,
    UnicodeSkip,
    Paragraph,
    PageBreak,
    ContinuousSection,
    PageNumber,
    PictureKind, ///< The word itself says what the bytes are.
    PictureNumber, ///< Argument: a TVLRtfPictureNumber.
    Destination,
};

/** What it says of the file, its fonts and its colours. */
enum class TVLRtfHeaderAction : quint8 {
    Rtf,
    DefaultFont,
    Cocoa, ///< The file comes from a text system whose first colour is that of its paper.
    CodePage,
    NamedCodePage, ///< Argument: a code page.
    FontCharset,
    FontCodePage,
    ColorPart, ///< Argument: 0 red, 1 green, 2 blue, 3 alpha.
};

/** What it says of lists. */
enum class TVLRtfListAction : quint8 {
    ListId,
    ListRestart,
    LevelNumbering,
    LevelStart,
    LevelIndent,
    OverrideLevel,
    OldListStart,
    OldListGoesOn,
    OldListLevel, ///< Argument: -1 for the parameter, else a level.
    OldListStyle, ///< Argument: a QTextListFormat::Style.
};

/** What it does to tables. */
enum class TVLRtfTableAction : quint8 {
    RowDefaults,
    CellEdge,
    CellEnd,
    RowEnd,
    NestedCellEnd,
    NestedRowEnd,
    CellFlag, ///< Argument: a TVLRtfCellFlag.
    CellAlignment, ///< Argument: a QTextCharFormat::VerticalAlignment.
    CellNumber, ///< Argument: a TVLRtfCellNumber.
    RowNumber, ///< Argument: a TVLRtfRowNumber.
    RowAlignment, ///< Argument: a Qt::AlignmentFlag.
    BorderOwner, ///< Argument: whether the borders that follow are a table's.
    BorderWidth,
};

/** What a control word does to the reader: each kind has a function of its own there. */
using TVLRtfAction = std::variant<TVLRtfCharAction, TVLRtfParagraphAction, TVLRtfTextAction,
                                  TVLRtfHeaderAction, TVLRtfListAction, TVLRtfTableAction>;

enum class TVLRtfCharNumber : quint8 {
    Font,
    HalfPoints,
    Foreground,
    Background,
    Highlight,
    UnderlineColor,
    LetterSpacing,
    LetterSpacingQuarters,
    Stretch,
    Preset,
};

enum class TVLRtfParagraphNumber : quint8 {
    LeftIndent,
    RightIndent,
    FirstIndent,
    SpaceBefore,
    SpaceAfter,
    LineHeight,
    LineDistance,
    IndentLevel,
    Background,
    Marker,
    List,
    ListLevel,
    TableDepth,
    Style,
    StyleBase,
};

enum class TVLRtfParagraphFlag : quint8 { InTable, BreakBefore, BreakAfter, Keep, KeepWithNext };

enum class TVLRtfCellFlag : quint8 { MergeFirst, MergeNext, MergeDownFirst, MergeDownNext };

enum class TVLRtfCellNumber : quint8 { Background };

enum class TVLRtfRowNumber : quint8 {
    Header,
    Left,
    Border,
    BorderStyle,
    BorderColor,
    Padding,
    Spacing,
    Background,
    ConstraintType,
    ConstraintValue,
    WidthType,
    WidthValue,
};

enum class TVLRtfPictureNumber : quint8 { Width, Height, GoalWidth, GoalHeight, ScaleX, ScaleY };

/** Where text goes. */
enum class TVLRtfDestination : quint8 {
    Body,
    Skipped,
    FontTable,
    FontAlternative,
    ColorTable,
    StyleSheet,
    Container, ///< Text of its own counts for nothing, what is nested in it may.
    Title,
    Picture,
    PictureName,
    Attachment, ///< A file beside this one; a character that stands in for it follows.
    Field,
    FieldInstruction,
    FieldResult,
    ListTable,
    List,
    ListLevel,
    LevelText,
    ListMarker, ///< What stands before an item where a program knows no lists.
    ListOverrides,
    ListOverride,
    OldList,
    OldListBefore,
    OldListAfter,
    Footnote,
    Annotation,
    BookmarkStart,
    BookmarkEnd,
    Script, ///< What a paragraph is in a script.
    NestedRow, ///< Properties of a row of a nested table.
    Transparent, ///< A wrapper whose content counts.
    TextBox, ///< Paragraphs of their own in the midst of others.
    UnicodePair,
    UnicodePart,
};

struct TVLRtfKeyword
{
    const char *name;
    TVLRtfAction action;
    int argument = 0;
};

/** What a control word means; null for one that isn't known here. */
const TVLRtfKeyword *tvlRtfKeyword(QByteArrayView name);
