#pragma once

#include "TVLRtfBuilder_p.h"
#include "TVLRtfCodePages_p.h"
#include "TVLRtfFormats_p.h"
#include "TVLRtfKeywords_p.h"
#include "TVLRtfState_p.h"
#include "TVLRtfTokenizer_p.h"

#include <QHash>
#include <QPair>

#include <array>
#include <optional>
#include <vector>

/** Half a surrogate pair is no character; what stands there instead says that there was one. */
void tvlReplaceHalfSurrogates(QString *text);

/**
 * Understands the tokens of an RTF file and hands paragraphs and tables to the builder.
 *
 * Each opening brace saves the state, each closing one restores it. Text goes where the group's
 * destination says; text of the body gathers until its paragraph ends, because only then it is
 * known what the paragraph looks like.
 */
class TVLRtfParser
{
public:
    /** The input must outlive the parser, the document too. */
    TVLRtfParser(QByteArrayView input, QTextDocument *document);

    /** Parses all of the input; what is wrong with it, or an empty text. */
    [[nodiscard]] QString parse();
    /** The document's title by the file. */
    [[nodiscard]] QString title() const { return mTitle; }

private:
    using Destination = TVLRtfDestination;

    struct Group
    {
        TVLRtfCharState mChars;
        TVLRtfParagraphState mParagraph;
        const TVLRtfCodePage *mPage = nullptr;
        Destination mDestination = Destination::Body;
        Destination mOuter = Destination::Body; ///< Around a pair of one text in two encodings.
        std::optional<Destination> mOpened; ///< What ends with this group.
        int mUnicodeSkip = 1;
        int mLeastDepth = 0; ///< In tables: that of the paragraph that holds a text box.
        bool mInNestedRow = false;
    };

    struct Field
    {
        QString mInstruction;
        Destination mDestination = Destination::Body; ///< Where its result goes.
        bool mHasResult = false;
        qsizetype mTextBefore = 0; ///< Length of the paragraph where its result begins.
    };

    struct Style
    {
        int mNumber = -1;
        int mBase = -1;
        int mHeadingLevel = -1; ///< 0 for none; -1 for that of the base.
    };

    struct ListLevel
    {
        int mStyle = 0; ///< A QTextListFormat::Style; 0 for a level without marker.
        int mIndent = 0; ///< 0 when it follows from the level.
        int mLeft = 0;
        int mFirst = 0;
        int mStart = 1; ///< The first item's number.
        QString mText;
        bool mIsExact = false; ///< What a paragraph's indents add to it is the paragraph's own.
    };

    struct List
    {
        int mId = 0;
        std::vector<ListLevel> mLevels;
    };

    /** What a list's number in the text leads to. */
    struct ListOverride
    {
        int mId = -1;
        bool mRestarts = false; ///< Counts for itself, not on with others of the same list.
        int mLevel = -1; ///< That is being described.
        QHash<int, int> mStarts; ///< The first items' numbers by their levels.
    };

    struct OldList
    {
        int mStyle = 0;
        int mLevel = 0;
        int mStart = 1;
        bool mGoesOn = false; ///< What it describes stands between two items.
        QString mBefore;
        QString mAfter;

        friend bool operator==(const OldList &, const OldList &) = default;
        /** Whether items look the same but for their numbers. */
        [[nodiscard]] bool looksLike(const OldList &other) const
        {
            return mStyle == other.mStyle && mBefore == other.mBefore && mAfter == other.mAfter;
        }
    };

    /** The last old-style list of some level. */
    struct LastOldList
    {
        OldList mProperties;
        int mList = -1; ///< The builder's.
        int mItems = 0;
        int mLastStart = 1; ///< The number at which it starts by the last item.
        bool mIsOpen = false; ///< Nothing has come behind its last item that isn't in a list.

        [[nodiscard]] bool goesOnWith(const OldList &properties) const;
    };

    struct Picture
    {
        QByteArray mBytes;
        QByteArray mKind;
        QString mName;
        int mNumbers[6] = {0, 0, 0, 0, 100, 100}; ///< By TVLRtfPictureNumber.
        int mHalfByte = -1;
    };

    struct OpenTable
    {
        TVLRtfTable mTable;
        TVLRtfRow mRow;
        TVLRtfCell mCell;
    };

    // The loop over the tokens
    [[nodiscard]] bool startsAsRtf();
    void readToTheEnd();
    [[nodiscard]] bool hasTextBehindItsEnd();
    void handle(const TVLRtfToken &token);
    void openGroup();
    void closeGroup();
    void finishText();
    void word(const TVLRtfToken &token);
    void apply(const TVLRtfKeyword &keyword, const TVLRtfToken &token);
    void applyWord(TVLRtfTextAction action, int argument, const TVLRtfToken &token);
    void symbol(char symbol);

    // Destinations
    void openDestination(Destination destination);
    void openDeepDestination(Destination destination);
    void finishDestination(const Group &group);
    void collectText(Destination destination);
    [[nodiscard]] QString takeText();
    void openField();
    void openFieldResult();
    void finishField();
    void finishFieldResult(const Group &group);
    void insertSymbol(const QString &instruction);
    void applyInstruction(const QString &instruction);
    void followLink(const QString &address, const QString &tip);
    void openNote(bool TVLRtfCharState::*mark);
    void finishNote();
    void startBookmark(const QString &name);
    void endBookmark(const QString &name);
    [[nodiscard]] int bookmarkSet();
    void openTextBox();
    void finishTextBox();

    // Text
    [[nodiscard]] const TVLRtfCodePage *pageOfText() const;
    void bytes(QByteArrayView bytes);
    void unicode(int value);
    void text(const QString &text);
    void bodyText(QStringView text);
    template <typename Text>
    void appendToBody(Text text);
    void appendRun(qsizetype length, int format);
    void flushPending();
    void endParagraph();
    void deliver(int depth);
    void place(TVLRtfCellItem &&item);
    void leaveUndecided(int depth);
    void breakPage();
    void completeParagraph();
    void keepLooseMarker();

    // Formats
    void applyWord(TVLRtfCharAction action, int argument, const TVLRtfToken &token);
    void setCharNumber(TVLRtfCharNumber number, const TVLRtfToken &token);
    void setFont(int number);
    void applyWord(TVLRtfParagraphAction action, int argument, const TVLRtfToken &token);
    void setParagraphNumber(TVLRtfParagraphNumber number, int value);
    void addTab(int twips);

    // Style sheet
    void applyStyleWord(TVLRtfParagraphAction action, int argument, const TVLRtfToken &token);
    void finishStyle();
    [[nodiscard]] int headingLevelOfStyle(int number) const;

    // Tables of the file
    void applyWord(TVLRtfHeaderAction action, int argument, const TVLRtfToken &token);
    void forgetFormats();
    void setCodePage(const TVLRtfCodePage *page);
    void fontText(const QString &text);
    void finishFont();
    void colorText(const QString &text);
    void setColorPart(int part, int value);

    // Lists
    void applyWord(TVLRtfListAction action, int argument, const TVLRtfToken &token);
    void finishListLevel();
    void finishOldList();
    [[nodiscard]] int paragraphList(int *left, int *first);
    [[nodiscard]] qint64 counterOfList(int number) const;
    [[nodiscard]] int newStyleList(int *left, int *first);
    [[nodiscard]] QTextListFormat newStyleFormat(const ListLevel *properties) const;
    [[nodiscard]] int oldStyleList(int *left, int *first);
    [[nodiscard]] const ListLevel *listLevel(int number, int level) const;

    // Tables of the text
    void applyWord(TVLRtfTableAction action, int argument, const TVLRtfToken &token);
    void setRowNumber(TVLRtfRowNumber number, int value);
    void setCellFlag(TVLRtfCellFlag flag);
    [[nodiscard]] int tableDepth() const;
    void setTableDepth(int depth);
    void closeTable();
    void endCell(int depth);
    void endRow(int depth);
    void finishRow(OpenTable *table, int depth);
    [[nodiscard]] TVLRtfRowProperties &rowProperties();
    [[nodiscard]] TVLRtfRowProperties propertiesOfRow(int depth, size_t cellCount);

    // Pictures
    void setPictureKind(const TVLRtfToken &token);
    void pictureDigits(QByteArrayView digits);
    void finishPicture();

    TVLRtfTokenizer mTokenizer;
    TVLRtfFormats mFormats;
    TVLRtfBuilder mBuilder;

    Group mGroup;
    std::vector<Group> mGroups;
    /** Of the groups that are nested too deeply to have a state of their own. */
    std::vector<Destination> mDeepDestinations;
    TVLRtfToken::Kind mLastKind = TVLRtfToken::End; ///< Of the token before.
    bool mIgnorable = false; ///< A `\*` has just been read.
    bool mTooDeep = false;
    bool mIsBehindEnd = false; ///< The brace that ends the text has been read.
    int mToSkip = 0; ///< Characters that stand in for one in Unicode.
    QByteArray mPending; ///< First bytes of a character that takes several.
    const TVLRtfCodePage *mDocumentPage;

    std::vector<QString> mTexts; ///< Of the open destinations that collect text.
    std::vector<Field> mFields;
    QString mTitle;
    QHash<QPair<QString, QString>, int> mLinkPlaces;
    QHash<QString, int> mCommentPlaces;
    QStringList mBookmarks; ///< That are open.
    QStringList mNewBookmarks; ///< Those of them with no text yet.
    QStringList mPointBookmarks; ///< Those without text to come; they mark what comes next.

    TVLRtfParagraph mParagraph;
    bool mHasSurrogates = false; ///< In the paragraph's text.
    QString mMarker; ///< Of the paragraph as an item of a list.
    TVLRtfCharState mMarkerState;
    TVLRtfCharState mRunState;
    int mRunFormat = -1; ///< Of mRunState; -1 when it isn't known.
    std::optional<TVLRtfParagraphState> mKnownBlockState;
    QTextBlockFormat mKnownBlockFormat; ///< Of mKnownBlockState.
    bool mBreakPending = false;
    bool mAnythingDelivered = false;
    int mNoteDepth = 0;
    bool mNoteStarts = false;

    int mFontNumber = -1;
    TVLRtfFont mFont;
    int mColorParts[4] = {0, 0, 0, 255};
    bool mColorSet = false;
    bool mFirstColorIsPaper = false; ///< As a background the first colour means none.

    QHash<int, Style> mStyles; ///< By number.
    Style mStyle;

    QHash<int, List> mLists; ///< By identity.
    List mList;
    ListLevel mListLevel;
    ListOverride mOverride;
    QHash<int, ListOverride> mOverrides; ///< By the number of a list in the text.
    QHash<QPair<qint64, int>, int> mOpenLists; ///< What counts and its level to the builder's list.
    std::vector<OldList> mOldLists;
    OldList mOldList;
    std::array<LastOldList, MaximumListLevels> mLastOldLists; ///< By level.

    TVLRtfRowProperties mRowProperties;
    TVLRtfRowProperties mNestedRowProperties;
    TVLRtfCellProperties mCellProperties;
    std::vector<OpenTable> mTables;
    bool mRowIsOpen = false; ///< A row has been described whose end is still to come.
    bool mBorderIsOfTable = false;
    /** Paragraphs inside of such a row that don't say that they are in a table. */
    std::vector<TVLRtfParagraph> mUndecided;

    Picture mPicture;
};
