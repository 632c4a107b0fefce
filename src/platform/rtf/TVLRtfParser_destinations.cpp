#include "TVLRtfParser_p.h"

#include "TVLTextFormat.h"

using namespace Qt::StringLiterals;

namespace {

/** A run can be the target of so many bookmarks at once; more are not for reading. */
constexpr int MaximumBookmarks = 16;
/** See TVLRtfFormats::MaximumSets. */
constexpr qsizetype MaximumBookmarkSets = 2 * TVLRtfFormats::MaximumSets;

/** The words of a field's instruction; a quoted one is one word, with its quotes taken off. */
QStringList instructionWords(const QString &instruction)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool inQuotes = false;
    for (qsizetype i = 0; i < instruction.size(); ++i) {
        const QChar c = instruction.at(i);
        const QChar next = i + 1 < instruction.size() ? instruction.at(i + 1) : QChar();
        if (inQuotes && c == u'\\' && (next == u'\\' || next == u'"')) {
            word.append(next);
            ++i;
        } else if (c == u'"') {
            inQuotes = !inQuotes;
            inWord = true;
        } else if (!inQuotes && c.isSpace()) {
            if (inWord)
                words.append(std::exchange(word, {}));
            inWord = false;
        } else {
            word.append(c);
            inWord = true;
        }
    }
    if (inWord)
        words.append(word);
    return words;
}

} // namespace

void TVLRtfParser::collectText(Destination destination)
{
    mTexts.emplace_back();
    mGroup.mDestination = destination;
    mGroup.mOpened = destination;
}

QString TVLRtfParser::takeText()
{
    QString text = std::move(mTexts.back());
    mTexts.pop_back();
    tvlReplaceHalfSurrogates(&text);
    return text;
}

/** Groups that have no state of their own either give their text to those around them or skip it.
 */
void TVLRtfParser::openDeepDestination(Destination destination)
{
    switch (destination) {
    case Destination::Field:
    case Destination::FieldResult:
    case Destination::Footnote:
    case Destination::Annotation:
    case Destination::NestedRow:
    case Destination::Transparent:
    case Destination::TextBox:
    case Destination::UnicodePair:
    case Destination::UnicodePart:
        return;
    default:
        mGroup.mDestination = Destination::Skipped;
    }
}

void TVLRtfParser::openDestination(Destination destination)
{
    if (!mDeepDestinations.empty())
        return openDeepDestination(destination);
    // A group that has opened one destination can't open a second one: files that try are damaged,
    // and what stands there is better read than lost.
    if (mGroup.mOpened)
        return;
    // The first of two encodings of one text counts for nothing, whatever is in it.
    if (mGroup.mDestination == Destination::UnicodePair
        && destination != Destination::UnicodePart) {
        mGroup.mDestination = Destination::Skipped;
        return;
    }
    switch (destination) {
    case Destination::FontAlternative:
    case Destination::Title:
    case Destination::FieldInstruction:
    case Destination::LevelText:
    case Destination::OldListBefore:
    case Destination::OldListAfter:
    case Destination::BookmarkStart:
    case Destination::BookmarkEnd:
    case Destination::PictureName:
        return collectText(destination);
    case Destination::Script:
    case Destination::ListMarker:
        if (mGroup.mDestination == Destination::Body && mNoteDepth == 0)
            return collectText(destination);
        mGroup.mDestination = Destination::Skipped;
        return;
    case Destination::Field:
        return openField();
    case Destination::FieldResult:
        return openFieldResult();
    case Destination::Footnote:
        return openNote(&TVLRtfCharState::mFootnote);
    case Destination::Annotation:
        return openNote(&TVLRtfCharState::mAnnotation);
    case Destination::NestedRow:
        mGroup.mInNestedRow = true;
        return;
    case Destination::Transparent:
        return;
    case Destination::TextBox:
        return openTextBox();
    case Destination::UnicodePair:
        mGroup.mOuter = mGroup.mDestination;
        mGroup.mDestination = destination;
        return;
    case Destination::UnicodePart:
        mGroup.mDestination = mGroup.mOuter;
        return;
    case Destination::Picture:
        mPicture = {};
        break;
    case Destination::List:
        mList = {};
        break;
    case Destination::ListLevel:
        mListLevel = {};
        break;
    case Destination::ListOverride:
        mOverride = {};
        break;
    case Destination::OldList:
        mOldList = {};
        break;
    case Destination::FontTable:
    case Destination::ColorTable:
        forgetFormats();
        break;
    default:
        break;
    }
    mGroup.mDestination = destination;
    mGroup.mOpened = destination;
}

void TVLRtfParser::finishDestination(const Group &group)
{
    switch (*group.mOpened) {
    case Destination::FontAlternative:
        mFont.mAlternatives = takeText().split(u',', Qt::SkipEmptyParts);
        break;
    case Destination::FontTable:
        fontText(u";"_s);
        setFont(mGroup.mChars.mFont); // Its bytes may be of another code page now.
        break;
    case Destination::ColorTable:
        if (mColorSet)
            colorText(u";"_s);
        break;
    case Destination::Title:
        mTitle = takeText();
        break;
    case Destination::FieldInstruction: {
        const QString text = takeText();
        if (!mFields.empty())
            mFields.back().mInstruction += text;
        break;
    }
    case Destination::Field:
        finishField();
        break;
    case Destination::FieldResult:
        finishFieldResult(group);
        break;
    case Destination::TextBox:
        finishTextBox();
        break;
    case Destination::Attachment:
        mToSkip = 1;
        break;
    case Destination::StyleSheet:
        finishStyle();
        break;
    case Destination::ListMarker:
        mMarker += takeText();
        mMarkerState = group.mChars;
        break;
    case Destination::Script:
        mGroup.mParagraph.mScript = takeText();
        break;
    case Destination::LevelText:
        mListLevel.mText = takeText();
        break;
    case Destination::ListLevel:
        finishListLevel();
        break;
    case Destination::List:
        mLists.insert(mList.mId, mList);
        break;
    case Destination::OldListBefore:
        mOldList.mBefore = takeText();
        break;
    case Destination::OldListAfter:
        mOldList.mAfter = takeText();
        break;
    case Destination::OldList:
        finishOldList();
        break;
    case Destination::Picture:
        finishPicture();
        break;
    case Destination::PictureName:
        mPicture.mName = takeText();
        break;
    case Destination::Footnote:
    case Destination::Annotation:
        finishNote();
        break;
    case Destination::BookmarkStart:
        startBookmark(takeText());
        break;
    case Destination::BookmarkEnd:
        endBookmark(takeText());
        break;
    default:
        break;
    }
}

// --- Fields

void TVLRtfParser::openField()
{
    mFields.push_back({{}, mGroup.mDestination, false});
    mGroup.mDestination = Destination::Field;
    mGroup.mOpened = Destination::Field;
}

void TVLRtfParser::openFieldResult()
{
    if (mFields.empty() || mGroup.mDestination != Destination::Field)
        return;
    Field &field = mFields.back();
    mGroup.mDestination = field.mDestination;
    // One result is enough for an instruction, however many a damaged file has.
    if (std::exchange(field.mHasResult, true))
        return;
    field.mTextBefore = mParagraph.mText.size();
    mGroup.mOpened = Destination::FieldResult;
    applyInstruction(field.mInstruction);
}

void TVLRtfParser::finishFieldResult(const Group &group)
{
    if (mFields.empty() || mParagraph.mText.size() != mFields.back().mTextBefore)
        return;
    // The result holds nothing but the font of the symbol that the instruction names.
    const Group outer = std::exchange(mGroup, group);
    insertSymbol(mFields.back().mInstruction);
    mGroup = outer;
}

void TVLRtfParser::finishField()
{
    const Field field = std::move(mFields.back());
    mFields.pop_back();
    if (field.mHasResult)
        return;
    if (instructionWords(field.mInstruction).value(0).toUpper() == u"PAGE")
        text(u"<$p>"_s);
    insertSymbol(field.mInstruction);
}

void TVLRtfParser::insertSymbol(const QString &instruction)
{
    const QStringList words = instructionWords(instruction);
    if (words.value(0).toUpper() != u"SYMBOL")
        return;
    const ushort number = words.value(1).toUShort(nullptr, 0);
    if (words.contains(u"\\u") || number > 0xff)
        text(QString(QChar(number)));
    else if (words.contains(u"\\f"))
        text(QString(TVLRtfCodePage::symbol(char(number))));
    else if (number > 0)
        text(QString(QChar(TVLRtfCodePage::page(1252)->character(char(number)))));
}

void TVLRtfParser::applyInstruction(const QString &instruction)
{
    const QStringList words = instructionWords(instruction);
    const QString kind = words.value(0).toUpper();
    if (kind == u"PAGE" && mGroup.mDestination == Destination::Body) {
        // What stands there is the number of one page; the token is that of any.
        text(u"<$p>"_s);
        mGroup.mDestination = Destination::Skipped;
    }
    if (kind != u"HYPERLINK")
        return;
    QString address;
    QString tip;
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (words.at(i) == u"\\l")
            address += u'#' + words.value(++i);
        else if (words.at(i) == u"\\o")
            tip = words.value(++i);
        else if (words.at(i) == u"\\t")
            ++i; // The window that it opens in.
        else if (!words.at(i).startsWith(u'\\') && address.isEmpty())
            address = words.at(i);
    }
    followLink(address.trimmed(), tip);
}

void TVLRtfParser::followLink(const QString &address, const QString &tip)
{
    if (address.startsWith(TVLTextFormat::commentPrefix())) {
        const QString identity = address.mid(TVLTextFormat::commentPrefix().size());
        auto known = mCommentPlaces.constFind(identity);
        if (known == mCommentPlaces.cend()) {
            known = mCommentPlaces.insert(identity, int(mFormats.mComments.size()));
            mFormats.mComments.append(identity);
        }
        mGroup.mChars.mComment = *known;
    } else if (!address.isEmpty()) {
        auto known = mLinkPlaces.constFind({address, tip});
        if (known == mLinkPlaces.cend()) {
            known = mLinkPlaces.insert({address, tip}, int(mFormats.mLinks.size()));
            mFormats.mLinks.append(address);
            mFormats.mLinkTips.append(tip);
        }
        mGroup.mChars.mLink = *known;
    }
}

// --- Notes

void TVLRtfParser::openNote(bool TVLRtfCharState::*mark)
{
    if (mGroup.mDestination != Destination::Body) {
        mGroup.mDestination = Destination::Skipped;
        return;
    }
    mGroup.mOpened =
        mark == &TVLRtfCharState::mFootnote ? Destination::Footnote : Destination::Annotation;
    // The mark in the text is raised; the note itself isn't.
    mGroup.mChars.reset();
    setFont(-1);
    mGroup.mChars.*mark = true;
    ++mNoteDepth;
    mNoteStarts = true;
}

void TVLRtfParser::finishNote()
{
    --mNoteDepth;
    mNoteStarts = false;
    // A note's last paragraph ends with the note.
    while (mParagraph.mText.endsWith(QChar::LineSeparator) && !mParagraph.mRuns.empty()) {
        mParagraph.mText.chop(1);
        if (--mParagraph.mRuns.back().mLength == 0)
            mParagraph.mRuns.pop_back();
    }
}

// --- Bookmarks

void TVLRtfParser::startBookmark(const QString &name)
{
    if (name.isEmpty() || mBookmarks.contains(name) || mBookmarks.size() >= MaximumBookmarks)
        return;
    mBookmarks.append(name);
    mNewBookmarks.append(name);
}

void TVLRtfParser::endBookmark(const QString &name)
{
    if (mNewBookmarks.removeOne(name))
        mPointBookmarks.append(name);
    else if (!mPointBookmarks.contains(name))
        mBookmarks.removeOne(name);
}

int TVLRtfParser::bookmarkSet()
{
    if (mBookmarks.isEmpty())
        return 0;
    const bool isKnown = mFormats.mBookmarks.constLast() == mBookmarks;
    if (!isKnown && mFormats.mBookmarks.size() >= MaximumBookmarkSets)
        return 0;
    if (!isKnown)
        mFormats.mBookmarks.append(mBookmarks);
    mNewBookmarks.clear();
    for (const QString &name : std::exchange(mPointBookmarks, {}))
        mBookmarks.removeOne(name);
    return int(mFormats.mBookmarks.size()) - 1;
}

// --- Text boxes

void TVLRtfParser::openTextBox()
{
    mGroup.mOpened = Destination::TextBox;
    if (mGroup.mDestination != Destination::Body)
        return;
    if (!mParagraph.mText.isEmpty())
        endParagraph();
    mGroup.mLeastDepth = tableDepth();
}

void TVLRtfParser::finishTextBox()
{
    if (mGroup.mDestination == Destination::Body && !mParagraph.mText.isEmpty())
        endParagraph();
}
