#pragma once

#include <QByteArrayView>

/** What a control word does to the reader. */
enum class TVLRtfAction : quint8 {
    // Formats of characters; the argument tells more where it says so.
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
    // Formats of paragraphs.
    Alignment, ///< Argument: a Qt::AlignmentFlag.
    ParagraphNumber, ///< Argument: a TVLRtfParagraphNumber.
    ParagraphFlag, ///< Argument: a TVLRtfParagraphFlag.
    LineHeightMultiple,
    OutlineLevel,
    Direction, ///< Argument: a Qt::LayoutDirection.
    Tab,
    TabKind, ///< Argument: a QTextOption::TabType; -1 for a tab that belongs to a list's marker.
    ParagraphDefault,
    // Text.
    Character, ///< Argument: a UTF-16 unit.
    Unicode,
    UnicodeSkip,
    Paragraph,
    PageBreak,
    ContinuousSection,
    PageNumber,
    // The file.
    Rtf,
    DefaultFont,
    Cocoa, ///< The file comes from a text system whose first colour is that of its paper.
    CodePage,
    NamedCodePage, ///< Argument: a code page.
    // Fonts, colours, lists.
    FontCharset,
    FontCodePage,
    ColorPart, ///< Argument: 0 red, 1 green, 2 blue, 3 alpha.
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
    // Tables.
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
    // Pictures.
    PictureKind, ///< The word itself says what the bytes are.
    PictureNumber, ///< Argument: a TVLRtfPictureNumber.
    // Destinations; argument: a TVLRtfDestination.
    Destination,
};

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
