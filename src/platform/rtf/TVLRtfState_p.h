#pragma once

#include <QHashFunctions>
#include <QList>
#include <QTextFormat>
#include <QTextOption>

#include <optional>

/** Distances are in twentieths of a point. */
constexpr double TwipsPerPoint = 20;
/** Distances are cut off here, far beyond any page, so that sums of them stay in range. */
constexpr int MaximumTwips = 1'000'000;

/** A list's levels, and with them the lists within its items. */
constexpr int MaximumListLevels = 9;

inline int boundedTwips(int twips)
{
    return qBound(-MaximumTwips, twips, MaximumTwips);
}

/** What RTF says of characters at one place, in RTF's units; -1 where nothing was said. */
struct TVLRtfCharState
{
    int mFont = -1; ///< Number in the font table.
    int mHalfPoints = -1;
    int mForeground = -1; ///< Colours are places in the colour table.
    int mBackground = 0; ///< Of a background or a line, 0 is none.
    int mHighlight = 0;
    int mUnderlineColor = 0;
    int mWeight = -1; ///< As QFont has it.
    int mLetterSpacing = 0; ///< Twentieths of a point.
    int mStretch = -1; ///< Per cent.
    int mPreset = 0; ///< Highlight of the options; 0 for none.
    int mLink = -1; ///< Place in the reader's list of addresses.
    int mComment = -1; ///< Place in the reader's list of comments' identities.
    int mBookmarks = 0; ///< Place in the reader's list of sets of names; 0 for none.
    quint8 mUnderline = 0; ///< A QTextCharFormat::UnderlineStyle.
    quint8 mVerticalAlignment = 0; ///< A QTextCharFormat::VerticalAlignment.
    quint8 mCapitalization = 0; ///< A QFont::Capitalization.
    bool mItalic = false;
    bool mStrikeOut = false;
    bool mOverline = false;
    bool mDoubleUnderline = false;
    bool mHidden = false;
    bool mAnnotation = false;
    bool mFootnote = false;

    friend bool operator==(const TVLRtfCharState &, const TVLRtfCharState &) = default;

    /** Back to plain text; links, comments, bookmarks and notes aren't formats and stay. */
    void reset()
    {
        *this = {.mLink = mLink,
                 .mComment = mComment,
                 .mBookmarks = mBookmarks,
                 .mAnnotation = mAnnotation,
                 .mFootnote = mFootnote};
    }
};

/** Asked for once per run of text, so it is as cheap as can be. */
inline size_t qHash(const TVLRtfCharState &state, size_t seed = 0)
{
    const int flags = state.mItalic | state.mStrikeOut << 1 | state.mOverline << 2
        | state.mDoubleUnderline << 3 | state.mHidden << 4 | state.mAnnotation << 5
        | state.mFootnote << 6 | state.mUnderline << 8 | state.mVerticalAlignment << 12
        | state.mCapitalization << 16;
    size_t hash = seed;
    for (const int value :
         {state.mFont, state.mHalfPoints, state.mForeground, state.mBackground, state.mHighlight,
          state.mUnderlineColor, state.mWeight, state.mLetterSpacing, state.mStretch, state.mPreset,
          state.mLink, state.mComment, state.mBookmarks, flags})
        hash = hash * 0x9e3779b97f4a7c15 + static_cast<size_t>(value);
    return hash ^ hash >> 32;
}

/** What RTF says of a paragraph, in twentieths of a point unless noted. */
struct TVLRtfParagraphState
{
    int mAlignment = 0; ///< A Qt::Alignment; 0 when nothing was said.
    std::optional<int> mLeftIndent; ///< None leaves it to the paragraph's list, if any.
    std::optional<int> mFirstIndent; ///< None leaves it to the paragraph's list, if any.
    int mRightIndent = 0;
    int mSpaceBefore = 0;
    int mSpaceAfter = 0;
    int mLineHeight = 0; ///< As `\sl` has it.
    bool mLineHeightIsMultiple = false; ///< The height is in 240ths of a line.
    bool mLineHeightIsDistance = false; ///< It is what is added to a line.
    int mIndentLevel = 0; ///< Steps of the document's own indent.
    int mBackground = 0; ///< Place in the colour table.
    int mHeadingLevel = -1; ///< 0 for none, -1 when nothing was said.
    int mStyleHeadingLevel = 0; ///< What the paragraph's style says of it.
    int mMarker = 0; ///< A QTextBlockFormat::MarkerType.
    int mList = -1; ///< Number in the list override table; -1 for none.
    int mListLevel = 0;
    /** Place in the reader's list of old-style lists; or one of the constants below. */
    int mOldList = NoOldList;
    static constexpr int NoOldList = -1;
    static constexpr int WithinOldList = -2; ///< Between two items, with no number of its own.
    int mTableDepth = 0;
    int mDirection = -1; ///< A Qt::LayoutDirection; -1 when nothing was said.
    bool mInTable = false;
    bool mBreakBefore = false;
    bool mBreakAfter = false;
    bool mKeep = false;
    bool mKeepWithNext = false;
    QList<QTextOption::Tab> mTabs;
    QString mScript; ///< What it is in a script, as the file has it.
    int mTabType = 0; ///< A QTextOption::TabType for the next tab; -1 to leave that tab out.

    friend bool operator==(const TVLRtfParagraphState &, const TVLRtfParagraphState &) = default;
};
