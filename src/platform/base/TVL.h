#pragma once

#include "TvlExport.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>

/**
 * Vocabulary that the whole library shares: the enumerations that reach files, item roles and the
 * search index, and the texts that stand for them.
 *
 * The numbers of every enumeration are part of the file formats and never change.
 */
namespace TVL {

Q_NAMESPACE_EXPORT(TVL_EXPORT)

/** Kind of a binder item. */
enum NodeType : int {
    DraftFolder = 0, ///< The root folder of the manuscript.
    ResearchFolder = 1, ///< The root folder of everything beside the manuscript.
    TrashFolder = 2, ///< The root folder of what was thrown away.
    Folder = 3, ///< A user's folder; has a text of its own.
    Text = 4, ///< A text document.
    Image = 5, ///< An image file.
    PDF = 6, ///< A PDF file.
    Media = 7, ///< An audio or video file.
    WebArchive = 8, ///< A web page.
    Other = 9, ///< Any other file.
};
Q_ENUM_NS(NodeType)

/** One of the files that an item may own. */
enum DocumentType : int {
    MainText = 0, ///< The text itself.
    NotesText = 1, ///< The writer's notes on the item.
    SynopsisText = 2, ///< The synopsis, plain text.
    LinksFile = 3, ///< Links of older projects; read only.
    CommentsFile = 4, ///< Inspector comments.
    TextStyles = 7, ///< Styles of the main text.
    NotesStyles = 8, ///< Styles of the notes.
    ForeignFile = 9, ///< A main file that isn't RTF.
};
Q_ENUM_NS(DocumentType)

/** A searchable property of an item. */
enum DocumentProperty : int {
    AllProperties = 0, ///< Only a scope of a search, never stored.
    TitleProperty = 1,
    TextProperty = 2,
    NotesProperty = 3,
    SynopsisProperty = 4,
    KeywordsProperty = 5,
    LabelProperty = 6,
    StatusProperty = 7,
    CustomMetaDataProperty = 8,
    CommentsProperty = 9, ///< Known to the search index only; no binder word.
};
Q_ENUM_NS(DocumentProperty)

/** Version of a project folder's layout. Any other number may stand in a folder's version file. */
enum FormatVersion : int {
    NoFormatVersion = 0, ///< Unknown, or "ask the folder".
    FormatVersion16 = 16, ///< Numbered files, items without uuids.
    FormatVersion18 = 18, ///< Numbered files, items with id and uuid.
    FormatVersion23 = 23, ///< A folder per item, items with uuids alone.
};
Q_ENUM_NS(FormatVersion)

/** Version of the binder's grammar. */
enum BinderVersion : int {
    NoBinderVersion = 0, ///< Nothing read yet, or a version text that isn't known.
    BinderVersion1 = 1, ///< Items have an id.
    BinderVersion2 = 2, ///< Items have an id and a uuid.
    BinderVersion3 = 3, ///< Items have a uuid.
};
Q_ENUM_NS(BinderVersion)

/** What the target of a document counts. */
enum TargetType : int {
    WordsTarget = 0,
    CharactersTarget = 1,
};
Q_ENUM_NS(TargetType)

/** Which copy of a project a file was found in. */
enum Platform : int {
    NoPlatform = 0,
    DesktopPlatform = 1,
    MobilePlatform = 2,
};
Q_ENUM_NS(Platform)

/** Columns of an outline; custom meta-data fields follow from FirstCustomColumn on. */
enum Columns : int {
    TitleColumn = 0,
    SynopsisColumn = 1,
    LabelColumn = 2,
    StatusColumn = 3,
    CreatedColumn = 4,
    ModifiedColumn = 5,
    WordCountColumn = 6,
    CharacterCountColumn = 7,
    TotalWordCountColumn = 8,
    TotalCharacterCountColumn = 9,
    IncludeInCompileColumn = 10,
    PageBreakBeforeColumn = 11,
    PreserveFormattingColumn = 12,
    TargetColumn = 13,
    TargetTypeColumn = 14,
    ProgressColumn = 15,
    FirstCustomColumn = 16,
};
Q_ENUM_NS(Columns)

/** Kind of a collection. */
enum CollectionType : int {
    BinderCollection = 0, ///< The binder itself; exactly one.
    RecentSearchCollection = 1, ///< The current search results; exactly one.
    SavedSearchCollection = 2, ///< A search with its own settings.
    ArbitraryCollection = 3, ///< A list kept by hand.
    NoCollection = 4, ///< Not a collection: what a look-up that finds nothing returns.
};
Q_ENUM_NS(CollectionType)

/** How the words of a search are put together. */
enum SearchOperator : int {
    ExactOperator = 0,
    AllOperator = 1,
    AnyOperator = 2,
    WholeWordOperator = 3,
    RegExpOperator = 4,
};
Q_ENUM_NS(SearchOperator)

/** Where a search looks; the values are bits. */
enum SearchScope : int {
    AllScope = 0,
    SelectionScope = 1,
    DraftScope = 2,
    ExcludeTrashScope = 4,
};
Q_ENUM_NS(SearchScope)

/** Which items a search takes by their compile flag. */
enum SearchCompile : int {
    AnyCompile = 0,
    IncludedInCompile = 1,
    ExcludedFromCompile = 2,
};
Q_ENUM_NS(SearchCompile)

/** Which views the binder's selection acts on. The application's windows give the other numbers. */
enum AffectType : int {
    DefaultAffect = 0,
};
Q_ENUM_NS(AffectType)

/** A page of the inspector. The application's windows give the other numbers. */
enum InspectorMode : int {
    DefaultInspectorMode = 0,
};
Q_ENUM_NS(InspectorMode)

/** Titles of keywords in a drag: UTF-8 text with U+2028 between them. */
TVL_EXPORT extern const QString KeywordsMimeType;

/** The binder's word for a node type; `Text` for a value outside the enumeration. */
[[nodiscard]] TVL_EXPORT QString wordOf(NodeType type);

/** The node type of a binder word, case-sensitive; Text for an unknown one. */
[[nodiscard]] TVL_EXPORT NodeType toNodeType(QStringView word);

/** The binder's word for a kind of collection; `Arbitrary` for one that isn't in a binder. */
[[nodiscard]] TVL_EXPORT QString wordOf(CollectionType type);

/** The kind of collection of a binder word, case-sensitive; @p fallback for an unknown one. */
[[nodiscard]] TVL_EXPORT CollectionType toCollectionType(QStringView word, CollectionType fallback);

/** Whether a searchable property is what a document file of its own holds. */
[[nodiscard]] TVL_EXPORT bool canConvertToDocType(DocumentProperty property);

/** The document file that holds a property; MainText for a property that has none. */
[[nodiscard]] TVL_EXPORT DocumentType toDocumentType(DocumentProperty property);

/** The searchable property that a document file holds; AllProperties for a file with none. */
[[nodiscard]] TVL_EXPORT DocumentProperty toDocumentProperty(DocumentType type);

/** The `Version` text of a binder version; empty for an unknown version. */
[[nodiscard]] TVL_EXPORT QString toString(BinderVersion version);

/** The binder version of a `Version` text; NoBinderVersion for an unknown one. */
[[nodiscard]] TVL_EXPORT BinderVersion toBinderVersion(QStringView text);

/** The binder version that goes with a folder format; NoBinderVersion for an unknown format. */
[[nodiscard]] TVL_EXPORT BinderVersion toBinderVersion(FormatVersion version);

/** Whether this build can open a project folder of that format version. */
[[nodiscard]] TVL_EXPORT bool isValidFormatVersion(int version);

/**
 * A colour as the binder keeps it: red, green and blue between 0 and 1 with three decimals,
 * separated by blanks. Empty for an invalid colour. Reading the text back gives the same 8-bit
 * colour; an alpha channel is not kept.
 */
[[nodiscard]] TVL_EXPORT QString colorToFloatString(const QColor &color);

/** Reads what colorToFloatString() wrote; an invalid colour for any other text. */
[[nodiscard]] TVL_EXPORT QColor floatStringToColor(QStringView text);

/**
 * A title made fit to be a file name on every common file system: control characters and
 * `<>:"/\|?*` become `_`, trailing dots and blanks go.
 */
[[nodiscard]] TVL_EXPORT QString cleanFileName(const QString &name);

/**
 * A title without the number that was put behind it to make it unique: digits behind a hyphen. Sets
 * @p number to it, or to 0 for a title without one, which comes back as it is. What has more than
 * nine digits is no such number.
 */
[[nodiscard]] TVL_EXPORT QString stripAutoNumberEnding(const QString &title, int *number);

/** The extensions, in lower case and without a dot, of files that are shown as images, whether or
 * not this machine can read all of them. */
[[nodiscard]] TVL_EXPORT QStringList displayImageFormats();

/** Plain text as rich text for a tool tip, with its line breaks kept; empty for an empty text. */
[[nodiscard]] TVL_EXPORT QString toHtmlTooltipFormat(const QString &plainText);

} // namespace TVL

/** Whether two floating-point values are equal but for rounding; safe for values near zero. */
[[nodiscard]] TVL_EXPORT bool tvlFuzzyCompare(double a, double b);
