#include "TVLRtfParser_p.h"

#include <algorithm>

namespace {

/** Whether bytes are characters of ASCII that text has, so in nearly every code page. */
bool isPlainAscii(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return (c >= 0x20 && c < 0x7f) || c == '\t'; });
}

/** Characters that a document takes for the structure of its own. */
bool breaksDocument(QChar c)
{
    return c.isNull() || c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator
        || c == QChar(0xfdd0) || c == QChar(0xfdd1);
}

QChar harmless(QChar c)
{
    if (!breaksDocument(c))
        return c;
    return c.unicode() >= 0xfdd0 ? QChar(QChar::ReplacementCharacter) : QChar(QChar::LineSeparator);
}

/** A text without characters that mean something to a document. */
QString harmlessText(QString text)
{
    if (std::any_of(text.cbegin(), text.cend(), breaksDocument)) {
        text.remove(QChar(QChar::Null));
        std::transform(text.cbegin(), text.cend(), text.begin(), harmless);
    }
    return text;
}

} // namespace

void tvlReplaceHalfSurrogates(QString *text)
{
    for (qsizetype i = 0; i < text->size(); ++i) {
        if (!text->at(i).isSurrogate())
            continue;
        if (text->at(i).isHighSurrogate() && i + 1 < text->size()
            && text->at(i + 1).isLowSurrogate())
            ++i;
        else
            (*text)[i] = QChar::ReplacementCharacter;
    }
}

/** A font of symbols has them in the text alone; names and instructions are of letters. */
const TVLRtfCodePage *TVLRtfParser::pageOfText() const
{
    return mGroup.mPage->isSymbol() && mGroup.mDestination != Destination::Body ? mDocumentPage
                                                                                : mGroup.mPage;
}

void TVLRtfParser::bytes(QByteArrayView bytes)
{
    const qsizetype skipped = qMin<qsizetype>(mToSkip, bytes.size());
    mToSkip -= int(skipped);
    bytes = bytes.sliced(skipped);
    if (bytes.isEmpty())
        return;
    const TVLRtfCodePage *page = pageOfText();
    if (mPending.isEmpty() && !page->isSymbol() && isPlainAscii(bytes)) {
        // By far the most of any file: no string is made of it on the way.
        const QLatin1StringView ascii(bytes);
        if (mGroup.mDestination == Destination::Body && !mNoteStarts)
            return appendToBody(ascii);
        return text(ascii);
    }
    QString decoded;
    decoded.reserve(bytes.size());
    for (const char byte : bytes) {
        if (page->isSingleByte())
            decoded.append(QChar(page->character(byte)));
        else
            decoded.append(page->decode(&mPending, byte));
    }
    text(decoded);
}

void TVLRtfParser::flushPending()
{
    if (!mPending.isEmpty())
        text(pageOfText()->flush(&mPending));
}

void TVLRtfParser::unicode(int value)
{
    mToSkip = mGroup.mUnicodeSkip;
    if (value > 0xffff && value <= 0x10ffff) {
        const char32_t character = static_cast<char32_t>(value);
        return text(QString::fromUcs4(&character, 1));
    }
    // Units above 32767 are written as negative numbers.
    text(QString(QChar(static_cast<char16_t>(value & 0xffff))));
}

void TVLRtfParser::text(const QString &text)
{
    switch (mGroup.mDestination) {
    case Destination::Body:
        mHasSurrogates = mHasSurrogates
            || std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isSurrogate(); });
        return bodyText(harmlessText(text));
    case Destination::FontTable:
        return fontText(text);
    case Destination::ColorTable:
        return colorText(text);
    case Destination::StyleSheet:
        if (text.contains(u';'))
            finishStyle();
        return;
    case Destination::FontAlternative:
    case Destination::Title:
    case Destination::FieldInstruction:
    case Destination::LevelText:
    case Destination::ListMarker:
    case Destination::OldListBefore:
    case Destination::OldListAfter:
    case Destination::BookmarkStart:
    case Destination::BookmarkEnd:
    case Destination::PictureName:
    case Destination::Script:
        mTexts.back().append(text);
        return;
    default:
        return;
    }
}

void TVLRtfParser::bodyText(QStringView text)
{
    if (mNoteStarts) {
        while (!text.isEmpty() && text.front().isSpace())
            text = text.sliced(1);
        if (text.isEmpty())
            return;
        mNoteStarts = false;
    }
    appendToBody(text);
}

template <typename Text>
void TVLRtfParser::appendToBody(Text text)
{
    mGroup.mChars.mBookmarks = bookmarkSet();
    if (mRunFormat < 0 || mGroup.mChars != mRunState) {
        mRunState = mGroup.mChars;
        mRunFormat = mFormats.charFormatIndex(mRunState);
    }
    mParagraph.mText.append(text);
    appendRun(text.size(), mRunFormat);
}

void TVLRtfParser::appendRun(qsizetype length, int format)
{
    std::vector<TVLRtfParagraph::Run> &runs = mParagraph.mRuns;
    if (!runs.empty() && runs.back().mFormat == format)
        runs.back().mLength += int(length);
    else
        runs.push_back({int(length), format});
}

void TVLRtfParser::endParagraph()
{
    if (mGroup.mDestination != Destination::Body)
        return;
    if (mNoteDepth > 0)
        return bodyText(QString(QChar(QChar::LineSeparator)));
    if (mRowIsOpen && tableDepth() == 0) {
        completeParagraph();
        mUndecided.push_back(std::exchange(mParagraph, {}));
        return;
    }
    deliver(tableDepth());
}

void TVLRtfParser::completeParagraph()
{
    int listLeft = 0;
    int listFirst = 0;
    mParagraph.mList = paragraphList(&listLeft, &listFirst);
    keepLooseMarker();
    if (std::exchange(mHasSurrogates, false))
        tvlReplaceHalfSurrogates(&mParagraph.mText);
    // Most paragraphs look like the one before.
    if (!mKnownBlockState || *mKnownBlockState != mGroup.mParagraph) {
        mKnownBlockState = mGroup.mParagraph;
        mKnownBlockFormat = mFormats.blockFormat(mGroup.mParagraph, listLeft, listFirst);
    }
    mParagraph.mBlockFormat = mKnownBlockFormat;
    if (std::exchange(mBreakPending, false))
        mParagraph.mBlockFormat.setPageBreakPolicy(mParagraph.mBlockFormat.pageBreakPolicy()
                                                   | QTextFormat::PageBreak_AlwaysBefore);
    TVLRtfCharState chars = mGroup.mChars;
    chars.mBookmarks = 0;
    chars.mLink = -1;
    chars.mComment = -1;
    mParagraph.mBlockCharFormat =
        mRunFormat >= 0 && chars == mRunState ? mRunFormat : mFormats.charFormatIndex(chars);
}

/** Where there is no list after all, the marker of an item is the only one that there is. */
void TVLRtfParser::keepLooseMarker()
{
    const QString marker = harmlessText(std::exchange(mMarker, {}));
    if (mParagraph.mList >= 0 || marker.trimmed().isEmpty())
        return;
    mParagraph.mText.prepend(marker);
    mParagraph.mRuns.insert(mParagraph.mRuns.begin(),
                            {int(marker.size()), mFormats.charFormatIndex(mMarkerState)});
}

void TVLRtfParser::deliver(int depth)
{
    leaveUndecided(depth);
    setTableDepth(depth);
    completeParagraph();
    if (!mTables.empty())
        return place(std::exchange(mParagraph, {}));
    mAnythingDelivered = true;
    mBuilder.addParagraph(mParagraph);
    // The memory serves the next paragraph.
    mParagraph.mText.resize(0);
    mParagraph.mRuns.clear();
}

void TVLRtfParser::place(TVLRtfCellItem &&item)
{
    mAnythingDelivered = true;
    if (!mTables.empty())
        mTables.back().mCell.mItems.push_back(std::move(item));
    else if (const auto *paragraph = std::get_if<TVLRtfParagraph>(&item))
        mBuilder.addParagraph(*paragraph);
    else
        mBuilder.addTable(*std::get<std::unique_ptr<TVLRtfTable>>(item));
}

/** What has been left open goes where the text that follows it goes. */
void TVLRtfParser::leaveUndecided(int depth)
{
    if (mUndecided.empty())
        return;
    setTableDepth(qMin(depth, 1));
    for (TVLRtfParagraph &paragraph : std::exchange(mUndecided, {}))
        place(std::move(paragraph));
}

void TVLRtfParser::breakPage()
{
    if (mGroup.mDestination != Destination::Body || mNoteDepth > 0 || tableDepth() > 0)
        return;
    if (!mParagraph.mText.isEmpty())
        endParagraph();
    mBreakPending = true;
}
