#include "TVLRtfParser_p.h"

#include <QFont>

namespace {

/** As many as word processors take. */
constexpr int MaximumTabs = 64;
constexpr int MaximumIndentLevel = 1000;

/** Whether a word that switches something switches it on. */
bool isOn(const TVLRtfToken &token)
{
    return !token.mHasParameter || token.mParameter != 0;
}

/** By the word that counts levels from 0 and has 9 for the text between headings. */
int headingLevel(const TVLRtfToken &token)
{
    return token.mHasParameter && token.mParameter >= 0 && token.mParameter < 9
        ? token.mParameter + 1
        : 0;
}

/** Sets one of several values that exclude each other; off, a word ends no value but its own. */
void switchTo(quint8 *value, int own, bool on)
{
    if (on)
        *value = quint8(own);
    else if (*value == own)
        *value = 0;
}

} // namespace

void TVLRtfParser::applyWord(TVLRtfCharAction action, int argument, const TVLRtfToken &token)
{
    using A = TVLRtfCharAction;
    TVLRtfCharState &chars = mGroup.mChars;
    switch (action) {
    case A::Bold:
        chars.mWeight = isOn(token) ? int(QFont::Bold) : -1;
        break;
    case A::Weight:
        chars.mWeight = token.mParameter >= 1 && token.mParameter <= 1000 ? token.mParameter : -1;
        break;
    case A::Italic:
        chars.mItalic = isOn(token);
        break;
    case A::Underline:
        chars.mUnderline = isOn(token) ? quint8(argument) : 0;
        chars.mDoubleUnderline = false;
        break;
    case A::UnderlineDouble:
        chars.mUnderline = isOn(token) ? QTextCharFormat::SingleUnderline : 0;
        chars.mDoubleUnderline = isOn(token);
        break;
    case A::StrikeOut:
        chars.mStrikeOut = isOn(token);
        break;
    case A::Overline:
        chars.mOverline = isOn(token);
        break;
    case A::Hidden:
        chars.mHidden = isOn(token);
        break;
    case A::Capitalization:
        switchTo(&chars.mCapitalization, argument, isOn(token));
        break;
    case A::VerticalAlignment:
        switchTo(&chars.mVerticalAlignment, argument, isOn(token));
        break;
    case A::VerticalShift: {
        const int shift = argument * (token.mHasParameter ? token.mParameter : 6);
        const bool isUp = shift > 0 || (shift == 0 && argument > 0);
        switchTo(&chars.mVerticalAlignment,
                 isUp ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignSubScript,
                 shift != 0);
        break;
    }
    case A::VerticalAlignmentNumber:
        if (token.mParameter >= 0 && token.mParameter <= QTextCharFormat::AlignBaseline)
            chars.mVerticalAlignment = quint8(token.mParameter);
        break;
    case A::CharNumber:
        setCharNumber(static_cast<TVLRtfCharNumber>(argument), token);
        break;
    case A::Plain:
        chars.reset();
        setFont(-1);
        break;
    }
}

void TVLRtfParser::setCharNumber(TVLRtfCharNumber number, const TVLRtfToken &token)
{
    constexpr int TwipsPerQuarterPoint = 5;
    constexpr int MaximumHalfPoints = 6400;
    TVLRtfCharState &chars = mGroup.mChars;
    const int value = token.mParameter;
    switch (number) {
    case TVLRtfCharNumber::Font:
        setFont(value);
        break;
    case TVLRtfCharNumber::HalfPoints:
        chars.mHalfPoints = value > 0 ? qMin(value, MaximumHalfPoints) : -1;
        break;
    case TVLRtfCharNumber::Foreground:
        chars.mForeground = value;
        break;
    case TVLRtfCharNumber::Background:
        chars.mBackground = mFirstColorIsPaper && value == 1 ? 0 : value;
        break;
    case TVLRtfCharNumber::Highlight:
        chars.mHighlight = value;
        break;
    case TVLRtfCharNumber::UnderlineColor:
        chars.mUnderlineColor = value;
        break;
    case TVLRtfCharNumber::LetterSpacing:
        chars.mLetterSpacing = boundedTwips(value);
        break;
    case TVLRtfCharNumber::LetterSpacingQuarters:
        chars.mLetterSpacing = boundedTwips(value) * TwipsPerQuarterPoint;
        break;
    case TVLRtfCharNumber::Stretch:
        chars.mStretch = value > 0 && value != QFont::Unstretched ? qMin(value, 4000) : -1;
        break;
    case TVLRtfCharNumber::Preset:
        chars.mPreset = value;
        break;
    }
}

void TVLRtfParser::setFont(int number)
{
    if (mGroup.mDestination == Destination::FontTable) {
        // The semicolon behind a font's name is easily forgotten.
        if (!mFont.mName.isEmpty())
            finishFont();
        mFontNumber = number;
        return;
    }
    mGroup.mChars.mFont = number;
    const TVLRtfCodePage *page = mFormats.font(number).mCodePage;
    mGroup.mPage = page ? page : mDocumentPage;
}

void TVLRtfParser::applyWord(TVLRtfParagraphAction action, int argument, const TVLRtfToken &token)
{
    using A = TVLRtfParagraphAction;
    // In the table of lists the indents are those of a level.
    if (mGroup.mDestination == Destination::ListLevel && action == A::ParagraphNumber) {
        if (argument == int(TVLRtfParagraphNumber::LeftIndent))
            mListLevel.mLeft = boundedTwips(token.mParameter);
        else if (argument == int(TVLRtfParagraphNumber::FirstIndent))
            mListLevel.mFirst = boundedTwips(token.mParameter);
        return;
    }
    if (mGroup.mDestination == Destination::StyleSheet)
        return applyStyleWord(action, argument, token);
    if (mGroup.mDestination == Destination::ListOverride && action == A::ParagraphNumber
        && argument == int(TVLRtfParagraphNumber::List)) {
        mOverrides.insert(token.mParameter, mOverride);
        return;
    }
    // What a note's paragraphs look like has no place in the paragraph that holds the note.
    if (mGroup.mDestination != Destination::Body || mNoteDepth > 0)
        return;
    TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    switch (action) {
    case A::ParagraphDefault:
        paragraph = {};
        break;
    case A::Alignment:
        paragraph.mAlignment = argument;
        break;
    case A::ParagraphNumber:
        setParagraphNumber(static_cast<TVLRtfParagraphNumber>(argument), token.mParameter);
        break;
    case A::ParagraphFlag: {
        constexpr bool TVLRtfParagraphState::*Flags[] = {
            &TVLRtfParagraphState::mInTable, &TVLRtfParagraphState::mBreakBefore,
            &TVLRtfParagraphState::mBreakAfter, &TVLRtfParagraphState::mKeep,
            &TVLRtfParagraphState::mKeepWithNext};
        paragraph.*Flags[argument] = isOn(token);
        break;
    }
    case A::LineHeightMultiple:
        paragraph.mLineHeightIsMultiple = isOn(token);
        break;
    case A::OutlineLevel:
        paragraph.mHeadingLevel = headingLevel(token);
        break;
    case A::Direction:
        paragraph.mDirection = argument;
        break;
    case A::Tab:
        addTab(token.mParameter);
        break;
    case A::TabKind:
        paragraph.mTabType = argument;
        break;
    }
}

void TVLRtfParser::setParagraphNumber(TVLRtfParagraphNumber number, int value)
{
    TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    switch (number) {
    case TVLRtfParagraphNumber::LeftIndent:
        paragraph.mLeftIndent = boundedTwips(value);
        break;
    case TVLRtfParagraphNumber::FirstIndent:
        paragraph.mFirstIndent = boundedTwips(value);
        break;
    case TVLRtfParagraphNumber::RightIndent:
        paragraph.mRightIndent = boundedTwips(value);
        break;
    case TVLRtfParagraphNumber::SpaceBefore:
        paragraph.mSpaceBefore = boundedTwips(value);
        break;
    case TVLRtfParagraphNumber::SpaceAfter:
        paragraph.mSpaceAfter = boundedTwips(value);
        break;
    case TVLRtfParagraphNumber::LineHeight:
        paragraph.mLineHeight = boundedTwips(value);
        paragraph.mLineHeightIsDistance = false;
        break;
    case TVLRtfParagraphNumber::LineDistance:
        paragraph.mLineHeight = boundedTwips(value);
        paragraph.mLineHeightIsDistance = true;
        break;
    case TVLRtfParagraphNumber::IndentLevel:
        paragraph.mIndentLevel = qBound(0, value, MaximumIndentLevel);
        break;
    case TVLRtfParagraphNumber::Background:
        paragraph.mBackground = value;
        break;
    case TVLRtfParagraphNumber::Marker:
        paragraph.mMarker =
            value >= 0 && value <= int(QTextBlockFormat::MarkerType::Checked) ? value : 0;
        break;
    case TVLRtfParagraphNumber::List:
        paragraph.mList = value;
        break;
    case TVLRtfParagraphNumber::ListLevel:
        paragraph.mListLevel = qBound(0, value, 8);
        break;
    case TVLRtfParagraphNumber::TableDepth:
        paragraph.mTableDepth = value;
        break;
    case TVLRtfParagraphNumber::Style:
        paragraph.mStyleHeadingLevel = headingLevelOfStyle(value);
        break;
    case TVLRtfParagraphNumber::StyleBase:
        break;
    }
}

void TVLRtfParser::addTab(int twips)
{
    TVLRtfParagraphState &paragraph = mGroup.mParagraph;
    const int type = std::exchange(paragraph.mTabType, 0);
    if (type >= 0 && paragraph.mTabs.size() < MaximumTabs)
        paragraph.mTabs.append(QTextOption::Tab(boundedTwips(twips) / TwipsPerPoint,
                                                static_cast<QTextOption::TabType>(type)));
}

// --- Style sheet

void TVLRtfParser::applyStyleWord(TVLRtfParagraphAction action, int argument,
                                  const TVLRtfToken &token)
{
    if (action == TVLRtfParagraphAction::OutlineLevel)
        mStyle.mHeadingLevel = headingLevel(token);
    else if (action != TVLRtfParagraphAction::ParagraphNumber)
        return;
    else if (argument == int(TVLRtfParagraphNumber::Style))
        mStyle.mNumber = token.mParameter;
    else if (argument == int(TVLRtfParagraphNumber::StyleBase))
        mStyle.mBase = token.mParameter;
}

void TVLRtfParser::finishStyle()
{
    if (mStyle.mNumber >= 0)
        mStyles.insert(mStyle.mNumber, mStyle);
    mStyle = {};
}

int TVLRtfParser::headingLevelOfStyle(int number) const
{
    // Styles that are based on one another in a circle have no level.
    constexpr int MaximumBases = 32;
    for (int i = 0; i < MaximumBases; ++i) {
        const auto style = mStyles.constFind(number);
        if (style == mStyles.cend())
            return 0;
        if (style->mHeadingLevel >= 0)
            return style->mHeadingLevel;
        number = style->mBase;
    }
    return 0;
}
