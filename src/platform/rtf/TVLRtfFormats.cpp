#include "TVLRtfFormats_p.h"

#include "TVLRtfScript_p.h"
#include "TVLTextFormat.h"

#include <QFont>

namespace {

constexpr int DefaultHalfPoints = 24;

double points(int twips)
{
    return twips / TwipsPerPoint;
}

/** Sets a property of a block unless the value is the one that it has without. */
void setUnlessZero(QTextBlockFormat *format, QTextFormat::Property property, int twips)
{
    if (twips != 0)
        format->setProperty(property, points(twips));
}

void setLineHeight(const TVLRtfParagraphState &state, QTextBlockFormat *format)
{
    if (state.mLineHeightIsDistance)
        format->setLineHeight(points(state.mLineHeight), QTextBlockFormat::LineDistanceHeight);
    else if (state.mLineHeight == 0)
        return;
    else if (state.mLineHeightIsMultiple)
        format->setLineHeight(qAbs(state.mLineHeight) * 100.0 / 240,
                              QTextBlockFormat::ProportionalHeight);
    else if (state.mLineHeight < 0)
        format->setLineHeight(points(-state.mLineHeight), QTextBlockFormat::FixedHeight);
    else
        format->setLineHeight(points(state.mLineHeight), QTextBlockFormat::MinimumHeight);
}

/** In text from right to left a document's left is where lines start; RTF's is the page's left. */
Qt::Alignment alignment(const TVLRtfParagraphState &state)
{
    if (state.mDirection != Qt::RightToLeft)
        return static_cast<Qt::Alignment>(state.mAlignment);
    return state.mAlignment == Qt::AlignLeft ? Qt::AlignRight
        : state.mAlignment == Qt::AlignRight ? Qt::AlignLeft
                                             : static_cast<Qt::Alignment>(state.mAlignment);
}

} // namespace

int TVLRtfFormats::charFormatIndex(const TVLRtfCharState &state)
{
    const auto known = mIndexes.constFind(state);
    if (known != mIndexes.cend())
        return *known;
    const int index = addCharFormat(charFormat(state));
    mIndexes.insert(state, index);
    return index;
}

int TVLRtfFormats::addCharFormat(const QTextCharFormat &format)
{
    mCharFormats.append(format);
    return int(mCharFormats.size()) - 1;
}

const TVLRtfFont &TVLRtfFormats::font(int number) const
{
    static const TVLRtfFont none;
    auto known = mFonts.constFind(number);
    if (known == mFonts.cend())
        known = mFonts.constFind(mDefaultFont);
    return known != mFonts.cend() ? *known : none;
}

QTextCharFormat TVLRtfFormats::charFormat(const TVLRtfCharState &state) const
{
    QTextCharFormat format;
    applyFont(state, &format);
    applyColors(state, &format);
    applyMarks(state, &format);
    return format;
}

void TVLRtfFormats::applyFont(const TVLRtfCharState &state, QTextCharFormat *format) const
{
    // A file that names a default font leaves nothing open; one that doesn't leaves the choice of
    // font and size to whoever shows the text.
    const TVLRtfFont &font = this->font(state.mFont);
    if (!font.mName.isEmpty())
        format->setFontFamilies(QStringList(font.mName) + font.mAlternatives);
    const int halfPoints =
        state.mHalfPoints < 0 && mDefaultFont >= 0 ? DefaultHalfPoints : state.mHalfPoints;
    if (halfPoints > 0)
        format->setFontPointSize(halfPoints / 2.0);
    if (state.mWeight >= 0)
        format->setFontWeight(state.mWeight);
    if (state.mItalic)
        format->setFontItalic(true);
    if (state.mUnderline != QTextCharFormat::NoUnderline)
        format->setUnderlineStyle(static_cast<QTextCharFormat::UnderlineStyle>(state.mUnderline));
    if (state.mDoubleUnderline)
        format->setProperty(TVLTextFormat::DoubleUnderline, true);
    if (state.mStrikeOut)
        format->setFontStrikeOut(true);
    if (state.mOverline)
        format->setFontOverline(true);
    if (state.mVerticalAlignment != QTextCharFormat::AlignNormal)
        format->setVerticalAlignment(
            static_cast<QTextCharFormat::VerticalAlignment>(state.mVerticalAlignment));
    if (state.mCapitalization != QFont::MixedCase)
        format->setFontCapitalization(static_cast<QFont::Capitalization>(state.mCapitalization));
    if (state.mLetterSpacing != 0) {
        format->setFontLetterSpacingType(QFont::AbsoluteSpacing);
        format->setFontLetterSpacing(points(state.mLetterSpacing));
    }
    if (state.mStretch > 0)
        format->setFontStretch(state.mStretch);
}

void TVLRtfFormats::applyColors(const TVLRtfCharState &state, QTextCharFormat *format) const
{
    if (const QColor foreground = color(state.mForeground); foreground.isValid())
        format->setForeground(foreground);
    const int background = state.mBackground ? state.mBackground : state.mHighlight;
    if (const QColor brush = shade(background); brush.isValid())
        format->setBackground(brush);
    if (const QColor underline = shade(state.mUnderlineColor); underline.isValid())
        format->setUnderlineColor(underline);
}

void TVLRtfFormats::applyMarks(const TVLRtfCharState &state, QTextCharFormat *format) const
{
    if (state.mPreset > 0)
        format->setProperty(TVLTextFormat::PresetHighlight, state.mPreset);
    if (state.mHidden)
        format->setProperty(TVLTextFormat::Hidden, true);
    if (state.mAnnotation)
        format->setProperty(TVLTextFormat::InlineAnnotation, true);
    if (state.mFootnote)
        format->setProperty(TVLTextFormat::InlineFootnote, true);
    if (state.mLink >= 0) {
        TVLTextFormat::setLink(format, mLinks.at(state.mLink));
        if (const QString tip = mLinkTips.at(state.mLink); !tip.isEmpty())
            format->setToolTip(tip);
    }
    if (state.mComment >= 0)
        TVLTextFormat::setComment(format, TVLTextCommentLink(mComments.at(state.mComment), {}));
    if (state.mBookmarks > 0) {
        format->setAnchor(true);
        format->setAnchorNames(mBookmarks.at(state.mBookmarks));
    }
}

bool TVLRtfFormats::canHaveTabs(const QList<QTextOption::Tab> &tabs)
{
    size_t hash = 0;
    for (const QTextOption::Tab &tab : tabs)
        hash = qHashMulti(hash, tab.position, int(tab.type));
    if (mTabSets.size() < MaximumSets / 2)
        mTabSets.insert(hash);
    return mTabSets.contains(hash);
}

QTextBlockFormat TVLRtfFormats::blockFormat(const TVLRtfParagraphState &state, int listLeft,
                                            int listFirst)
{
    QTextBlockFormat format;
    if (state.mAlignment)
        format.setAlignment(alignment(state));
    setUnlessZero(&format, QTextFormat::BlockLeftMargin,
                  state.mLeftIndent.value_or(listLeft) - listLeft);
    setUnlessZero(&format, QTextFormat::BlockRightMargin, state.mRightIndent);
    setUnlessZero(&format, QTextFormat::TextIndent,
                  state.mFirstIndent.value_or(listFirst) - listFirst);
    setUnlessZero(&format, QTextFormat::BlockTopMargin, state.mSpaceBefore);
    setUnlessZero(&format, QTextFormat::BlockBottomMargin, state.mSpaceAfter);
    setLineHeight(state, &format);
    if (state.mIndentLevel != 0)
        format.setIndent(state.mIndentLevel);
    if (!state.mTabs.isEmpty() && canHaveTabs(state.mTabs))
        format.setTabPositions(state.mTabs);
    if (const QColor background = shade(state.mBackground); background.isValid())
        format.setBackground(background);
    const int heading = state.mHeadingLevel >= 0 ? state.mHeadingLevel : state.mStyleHeadingLevel;
    if (heading > 0)
        format.setHeadingLevel(heading);
    if (state.mMarker > 0)
        format.setMarker(static_cast<QTextBlockFormat::MarkerType>(state.mMarker));
    if (state.mDirection >= 0)
        format.setLayoutDirection(static_cast<Qt::LayoutDirection>(state.mDirection));
    if (state.mBreakBefore || state.mBreakAfter) {
        QTextFormat::PageBreakFlags breaks;
        breaks.setFlag(QTextFormat::PageBreak_AlwaysBefore, state.mBreakBefore);
        breaks.setFlag(QTextFormat::PageBreak_AlwaysAfter, state.mBreakAfter);
        format.setPageBreakPolicy(breaks);
    }
    if (state.mKeep)
        format.setNonBreakableLines(true);
    if (state.mKeepWithNext)
        format.setProperty(TVLTextFormat::KeepWithNext, true);
    if (!state.mScript.isEmpty())
        tvlSetRtfScript(state.mScript, &format);
    return format;
}
