#include "TVLFountainParser_p.h"

#include "TVLFountainDirective_p.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = TVLScreenplayKind;
using Form = TVLFountainForm;

/** With line feeds as the only line ends and without the mark of an encoding. */
QString settled(QString text)
{
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    if (text.contains(u'\r')) {
        text.replace(u"\r\n"_s, u"\n"_s);
        text.replace(u'\r', u'\n');
    }
    return text;
}

/** How long the sign is that tells what a line is. */
qsizetype signLengthOf(Form form, QStringView visible)
{
    qsizetype length = 0;
    switch (form) {
    case Form::Section:
        while (length < visible.size() && visible.at(length) == u'#')
            ++length;
        return length;
    case Form::Synopsis:
    case Form::Lyrics:
    case Form::Centered:
    case Form::ForcedAction:
    case Form::ForcedSceneHeading:
    case Form::ForcedCharacter:
    case Form::ForcedTransition:
        return 1;
    default:
        return 0;
    }
}

bool isKeptWithBlanks(Form form)
{
    return form == Form::Action || form == Form::ForcedAction;
}

} // namespace

TVLScreenplay TVLFountainParser::parse(const QString &text)
{
    const QString lines = settled(text);
    TVLFountainParser parser(lines);
    parser.parseAll();
    return std::move(parser.mScreenplay);
}

TVLFountainParser::TVLFountainParser(QStringView text)
    : mLines(text)
{
    advance();
}

void TVLFountainParser::advance()
{
    TVLFountainLine next;
    mNext = mLines.next(&next) ? std::optional(next) : std::nullopt;
}

bool TVLFountainParser::nextIsBlank() const
{
    return !mNext || !mNext->mHasText;
}

void TVLFountainParser::parseAll()
{
    parseTitlePage();
    while (mNext) {
        mLine = *mNext;
        advance();
        parseLine();
    }
    if (mPageBreak)
        addParagraph(Kind::Action);
}

// --- Title page

void TVLFountainParser::parseTitlePage()
{
    while (mNext && mNext->mText.isEmpty())
        advance();
    if (!mNext || !tvlBeginsTitlePage(mNext->mText))
        return;
    while (mNext && !tvlIsFountainBlankLine(mNext->mText)) {
        const QStringView text = tvlFountainTrimmedEnd(mNext->mText);
        if (tvlIsTitleEntry(text)) {
            addParagraph(Kind::TitlePage);
            addText(text);
        } else {
            addLine(tvlFountainTrimmedStart(text));
        }
        advance();
    }
}

// --- Lines

void TVLFountainParser::parseLine()
{
    if (mLine.mText.isEmpty() || (!mLine.mHasMarks && tvlIsFountainBlankLine(mLine.mText))) {
        parseBlankLine();
        return;
    }
    if (!mLine.mHasText && !parseToldParagraph()) {
        parseBoneyard();
        return;
    }
    if (!mLine.mHasText || (mLine.mHasMarks && parseToldParagraph()))
        return;
    if (mOpen == Open::Speech) {
        parseSpeech();
        return;
    }
    if (mOpen == Open::Told) {
        addLine(mLine.mText);
        return;
    }

    QStringView visible = mLine.mText;
    if (mLine.mHasMarks) {
        mVisible = mLine.visible();
        visible = mVisible;
    }
    visible = tvlFountainTrimmedStart(visible);
    const Form form = tvlFountainForm(tvlFountainTrimmedStart(mLine.mText), visible, nextIsBlank());
    QStringView text = mLine.mText;
    if (const qsizetype length = signLengthOf(form, visible); length > 0) {
        const qsizetype start = mLine.mHasMarks
            ? mLine.visibleStart()
            : text.size() - tvlFountainTrimmedStart(text).size();
        if (start == 0 || tvlIsFountainBlankLine(text.first(start))) {
            text = text.sliced(start + length);
        } else {
            mWithoutSign = text.first(start).toString() + text.sliced(start + length).toString();
            text = mWithoutSign;
        }
    }
    if (!isKeptWithBlanks(form))
        text = tvlFountainTrimmed(text);
    if (!goOnWithAction(form, text))
        parseForm(form, text);
}

void TVLFountainParser::parseBlankLine()
{
    if (mOpen == Open::Speech && tvlIsKeptBlankLine(mLine.mText)) {
        if (mScreenplay.mParagraphs.back().mKind == Kind::Dialogue)
            addLine({});
        return;
    }
    mOpen = Open::Nothing;
    ++mBlankLines;
    mIsBehindBlank = true;
}

void TVLFountainParser::parseBoneyard()
{
    addParagraph(Kind::Action);
    addText(tvlFountainTrimmed(mLine.mText));
    mOpen = Open::Nothing;
    mIsBehindBlank = true;
}

bool TVLFountainParser::parseToldParagraph()
{
    const QStringView text = tvlFountainTrimmedStart(mLine.mText);
    if (!text.startsWith(u"/*:"))
        return false;
    const qsizetype end = text.indexOf(u"*/", TVLFountainMarks::SignLength);
    const auto directive = end < 0
        ? std::nullopt
        : TVLFountainDirective::read(
            text.sliced(TVLFountainMarks::SignLength, end - TVLFountainMarks::SignLength));
    if (!directive || !directive->mIsOfParagraph)
        return false;
    const bool isSpeech = mOpen == Open::Speech && directive->mParagraph.isCharacterOrSpeech()
        && directive->mParagraph.mKind != Kind::Character;
    addParagraph(directive->mParagraph);
    addText(text.sliced(end + TVLFountainMarks::SignLength));
    mOpen = isSpeech ? Open::Speech : Open::Told;
    return true;
}

void TVLFountainParser::parseSpeech()
{
    const QStringView text = tvlFountainTrimmedStart(mLine.mText);
    QStringView visible = text;
    if (mLine.mHasMarks) {
        mVisible = mLine.visible();
        visible = mVisible;
    }
    if (tvlIsParenthetical(text, visible)) {
        addParagraph(Kind::Parenthetical);
        addText(text);
    } else if (text.startsWith(u'~')) {
        addParagraph(Kind::Lyrics);
        addText(tvlFountainTrimmedStart(text.sliced(1)));
    } else if (mScreenplay.mParagraphs.back().mKind == Kind::Dialogue) {
        addLine(text);
    } else {
        addParagraph(Kind::Dialogue);
        addText(text);
    }
}

bool TVLFountainParser::goOnWithAction(TVLFountainForm form, QStringView text)
{
    if (mOpen == Open::Centered && form == Form::Centered) {
        addLine(tvlFountainTrimmed(text.chopped(1)));
        return true;
    }
    if (mOpen != Open::Action)
        return false;
    switch (form) {
    case Form::Centered:
    case Form::Lyrics:
    case Form::Section:
    case Form::Synopsis:
    case Form::PageBreak:
        return false;
    default:
        // Only what stands behind an empty line is anything else.
        addLine(form == Form::ForcedAction ? text : QStringView(mLine.mText));
        return true;
    }
}

void TVLFountainParser::parseForm(TVLFountainForm form, QStringView text)
{
    const bool isBehindBlank = mIsBehindBlank;
    mOpen = Open::Nothing;
    switch (form) {
    case Form::PageBreak:
        addPageBreak();
        return;
    case Form::Section: {
        const auto isSign = [](QChar ch) { return ch == u'#'; };
        const QStringView line = mLine.mHasMarks ? QStringView(mVisible) : mLine.mText;
        const QStringView signs = tvlFountainTrimmedStart(line);
        const auto end = std::find_if_not(signs.begin(), signs.end(), isSign);
        addParagraph(Kind::Section).mDepth = int(end - signs.begin());
        addText(text);
        mIsBehindBlank = true;
        return;
    }
    case Form::Synopsis:
        addParagraph(Kind::Synopsis);
        addText(text);
        mIsBehindBlank = true;
        return;
    case Form::Lyrics:
        addParagraph(Kind::Lyrics);
        addText(text);
        return;
    case Form::Centered:
        addParagraph(Kind::Action).mAlignment = Qt::AlignHCenter;
        addText(tvlFountainTrimmed(text.chopped(1)));
        mOpen = Open::Centered;
        return;
    case Form::ForcedTransition:
        addParagraph(Kind::Transition);
        addText(text);
        return;
    case Form::ForcedSceneHeading:
        parseHeading(text);
        return;
    case Form::ForcedCharacter:
        parseCharacter(text);
        return;
    case Form::SceneHeading:
        if (isBehindBlank) {
            parseHeading(text);
            return;
        }
        break;
    case Form::Transition:
        if (isBehindBlank) {
            addParagraph(Kind::Transition);
            addText(text);
            return;
        }
        break;
    case Form::Character:
        if (isBehindBlank) {
            parseCharacter(text);
            return;
        }
        break;
    case Form::Action:
    case Form::ForcedAction:
        break;
    }
    addParagraph(Kind::Action);
    addText(isKeptWithBlanks(form) ? text : mLine.mText);
    mOpen = Open::Action;
}

void TVLFountainParser::parseHeading(QStringView text)
{
    TVLScreenplayParagraph &paragraph = addParagraph(Kind::SceneHeading);
    if (const qsizetype length = tvlSceneNumberLength(text); length > 0) {
        paragraph.mSceneNumber = text.last(length).sliced(1).chopped(1).toString();
        text = tvlFountainTrimmedEnd(text.chopped(length));
    }
    addText(text);
}

void TVLFountainParser::parseCharacter(QStringView text)
{
    TVLScreenplayParagraph &paragraph = addParagraph(Kind::Character);
    if (text.endsWith(u'^') && !text.endsWith(u"\\^")) {
        paragraph.mIsDual = true;
        text = tvlFountainTrimmedEnd(text.chopped(1));
    }
    addText(text);
    mOpen = Open::Speech;
}

// --- Paragraphs

TVLScreenplayParagraph &TVLFountainParser::addParagraph(TVLScreenplayKind kind)
{
    return addParagraph(TVLScreenplayParagraph(kind));
}

TVLScreenplayParagraph &TVLFountainParser::addParagraph(const TVLScreenplayParagraph &paragraph)
{
    if (paragraph.mKind == Kind::Action)
        addKeptBlankLines();
    TVLScreenplayParagraph &added = mScreenplay.mParagraphs.emplace_back(paragraph);
    added.mStartsPage = mPageBreak;
    mPageBreak = false;
    mBlankLines = 0;
    mIsBehindBlank = false;
    return added;
}

void TVLFountainParser::addKeptBlankLines()
{
    const auto &paragraphs = mScreenplay.mParagraphs;
    if (mPageBreak || paragraphs.empty() || paragraphs.back().mKind != Kind::Action)
        return;
    for (; mBlankLines > 1; --mBlankLines)
        mScreenplay.mParagraphs.emplace_back(Kind::Action);
}

void TVLFountainParser::addPageBreak()
{
    if (mPageBreak)
        addParagraph(Kind::Action);
    mPageBreak = true;
    mIsBehindBlank = true;
}

void TVLFountainParser::addText(QStringView text)
{
    mInline.read(text, &mScreenplay.mParagraphs.back());
}

void TVLFountainParser::addLine(QStringView text)
{
    mScreenplay.mParagraphs.back().append(QStringView(u"\u2028"));
    addText(text);
}
