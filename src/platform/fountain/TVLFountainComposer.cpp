#include "TVLFountainComposer_p.h"

#include "TVLFountainDirective_p.h"
#include "TVLFountainSyntax_p.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Style = TVLScreenplayRun::Style;

bool mayNeedCare(QChar ch)
{
    switch (ch.unicode()) {
    case u'*':
    case u'_':
    case u'\\':
    case u'[':
    case u'\t':
    case u'\n':
    case u'\r':
    case char16_t(QChar::LineSeparator):
        return true;
    default:
        return false;
    }
}

bool isLineEnd(QChar ch)
{
    return ch == QChar(QChar::LineSeparator) || ch == u'\n' || ch == u'\r';
}

/** Whether a line says the same as it stands. */
bool isPlainLine(const QString &text, TVLFountainComposer::KeptBlanks kept)
{
    if (tvlIsFountainBlankLine(text) || std::any_of(text.cbegin(), text.cend(), mayNeedCare))
        return false;
    return (kept == TVLFountainComposer::AllBlanks || !tvlIsFountainBlank(text.front()))
        && (kept != TVLFountainComposer::NoBlanks || !tvlIsFountainBlank(text.back()));
}

} // namespace

QStringList TVLFountainComposer::compose(const TVLScreenplayParagraph &paragraph, KeptBlanks kept)
{
    if (paragraph.mRuns.empty() && paragraph.mComments.empty()
        && isPlainLine(paragraph.mText, kept))
        return {paragraph.mText};

    mParagraph = &paragraph;
    mKept = kept;
    mComments.clear();
    for (size_t i = 0; i < paragraph.mComments.size(); ++i) {
        const TVLScreenplayComment &comment = paragraph.mComments[i];
        mComments.emplace_back(comment.mStart + comment.mLength, i);
    }
    std::sort(mComments.begin(), mComments.end());
    mNextComment = 0;
    mLines.clear();
    mLine.clear();
    mStart = 0;
    mStyles = Style::Plain;
    mLastLiteral = {};
    mIsBehindSign = false;
    mHasText = false;
    composeRuns();
    addComments(paragraph.mText.size());
    setStyles(Style::Plain);
    finishLine();
    return std::exchange(mLines, {});
}

void TVLFountainComposer::composeRuns()
{
    if (mParagraph->mRuns.empty()) {
        for (qsizetype i = 0; i < mParagraph->mText.size(); ++i)
            addCharacter(i, Style::Plain, false);
        return;
    }
    qsizetype place = 0;
    for (const TVLScreenplayRun &run : mParagraph->mRuns) {
        const qsizetype end = place + run.mLength;
        for (; place < end; ++place)
            addCharacter(place, run.mStyles, place + 1 == end);
    }
}

void TVLFountainComposer::addCharacter(qsizetype place, quint8 styles, bool isLastOfRun)
{
    addComments(place);
    const QChar ch = mParagraph->mText.at(place);
    if (isLineEnd(ch)) {
        addLineEnd(styles & quint8(~Style::Emphasis));
        return;
    }
    setStyles(styles);
    if (tvlIsFountainBlank(ch)) {
        addBlank(ch, isLastOfRun || hasCommentAt(place + 1), isLineEndAt(place + 1));
        return;
    }
    const bool isInNote = (mStyles & (Style::Note | Style::Footnote)) != 0;
    const bool isEscaped = ch == u'*' || ch == u'_' || ch == u'\\' || (ch == u']' && isInNote)
        || (ch == u'[' && mLastLiteral == u'[') || (ch == u'/' && mLine.endsWith(u'*'))
        || (ch == u':' && mLine.endsWith(u"/*"));
    if (isEscaped)
        mLine += u'\\';
    mLine += ch;
    mLastLiteral = isEscaped ? QChar() : ch;
    mIsBehindSign = false;
    mHasText = mHasText || (mStyles & Style::Boneyard) == 0;
}

void TVLFountainComposer::addBlank(QChar blank, bool isLastOfRun, bool isLastOfLine)
{
    const bool isFirst = mLine.size() == mStart;
    // Blanks alone make an empty line.
    const bool isInMark = (mStyles & Style::Apart) != 0;
    const bool isAlone = isLastOfLine
        && (isInMark ? tvlIsFountainBlankLine(QStringView(mLine).sliced(mStart)) : !mHasText);
    const bool isDropped = (isFirst && mKept != AllBlanks) || (isLastOfLine && mKept == NoBlanks);
    // A sign that ends emphasis has no blank before it.
    const bool isBeforeSign = (isLastOfRun || isLastOfLine) && (mStyles & Style::Emphasis) != 0;
    if (blank == u'\t' || mIsBehindSign || isAlone || isDropped || isBeforeSign) {
        mLine += u'\\';
        mHasText = mHasText || (mStyles & Style::Boneyard) == 0;
    }
    mLine += blank;
    mLastLiteral = {};
    mIsBehindSign = false;
}

void TVLFountainComposer::addLineEnd(quint8 styles)
{
    setStyles(mStyles & quint8(~Style::Emphasis));
    setStyles(styles);
    if ((styles & Style::Apart) == 0) {
        finishLine();
        return;
    }
    // An empty line would end a note.
    if (mLine.size() == mStart && (styles & Style::Boneyard) == 0)
        mLine += u"  "_s;
    mLine += u'\n';
    mStart = mLine.size();
    mLastLiteral = {};
    mIsBehindSign = false;
}

void TVLFountainComposer::addComments(qsizetype place)
{
    for (; hasCommentAt(place); ++mNextComment) {
        // What goes on is turned on again by what comes next.
        setStyles(Style::Plain);
        const TVLScreenplayComment &comment = mParagraph->mComments[mComments[mNextComment].second];
        TVLScreenplayParagraph note;
        note.append(comment.mText, Style::Note);
        mLine += TVLFountainDirective::ofComment(comment);
        mLine += note.mText.isEmpty() ? u"[[]]"_s
                                      : TVLFountainComposer().compose(note, AllBlanks).constFirst();
        mLastLiteral = {};
        mIsBehindSign = false;
        mHasText = true;
    }
}

void TVLFountainComposer::finishLine()
{
    mLines.append(mHasText ? mLine : nothing() + mLine);
    mLine.clear();
    mStart = 0;
    mLastLiteral = {};
    mIsBehindSign = false;
    mHasText = false;
}

void TVLFountainComposer::setStyles(quint8 styles)
{
    if (styles == mStyles)
        return;
    const auto apartOf = [](quint8 some) { return quint8(some & Style::Apart); };
    if (apartOf(styles) == apartOf(mStyles)) {
        addSigns(styles ^ mStyles);
        return;
    }
    addSigns(mStyles & quint8(~styles) & Style::Emphasis);
    if (apartOf(mStyles) != Style::Plain)
        closeApart();
    openApart(apartOf(styles));
    addSigns(styles & quint8(~mStyles) & Style::Emphasis);
}

void TVLFountainComposer::addSigns(quint8 styles)
{
    if (styles == Style::Plain)
        return;
    const bool hasUnderline = (styles & Style::Underline) != 0;
    const bool endsUnderline = hasUnderline && (mStyles & Style::Underline) != 0;
    const int stars =
        ((styles & Style::Bold) != 0 ? 2 : 0) + ((styles & Style::Italic) != 0 ? 1 : 0);
    if (endsUnderline) {
        mLine += u'_';
        mLastLiteral = {};
    }
    if (stars > 0) {
        escapeLast(u'/');
        mLine += QString(stars, u'*');
    }
    if (hasUnderline && !endsUnderline)
        mLine += u'_';
    mStyles ^= styles;
    mLastLiteral = {};
    mIsBehindSign = (mStyles & styles) != 0;
}

void TVLFountainComposer::closeApart()
{
    if ((mStyles & (Style::Note | Style::Footnote)) != 0)
        // The first two brackets end a note, whatever stands before them.
        mLine += mLine.endsWith(u']') ? nothing() + u"]]"_s : u"]]"_s;
    else if ((mStyles & Style::Boneyard) != 0)
        mLine += u"*/"_s;
    mStyles &= quint8(~Style::Apart);
    mLastLiteral = {};
    mIsBehindSign = false;
}

void TVLFountainComposer::openApart(quint8 styles)
{
    if (styles == Style::Plain)
        return;
    if ((styles & (Style::Note | Style::Footnote)) != 0) {
        escapeLast(u'[');
        if ((styles & Style::Footnote) != 0)
            mLine += TVLFountainDirective::ofFootnote();
        mLine += u"[["_s;
        mHasText = true;
    } else {
        mLine += u"/*"_s;
    }
    mStyles |= styles;
    mLastLiteral = {};
    mIsBehindSign = false;
}

void TVLFountainComposer::escapeLast(QChar literal)
{
    if (mLastLiteral == literal)
        mLine.insert(mLine.size() - 1, u'\\');
}

bool TVLFountainComposer::isLineEndAt(qsizetype place) const
{
    return place >= mParagraph->mText.size() || isLineEnd(mParagraph->mText.at(place));
}

bool TVLFountainComposer::hasCommentAt(qsizetype place) const
{
    return mNextComment < mComments.size() && mComments[mNextComment].first <= place;
}
