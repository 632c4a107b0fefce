#include "TVLRtfParser_p.h"

#include "TVLRtfCheck_p.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** More characters than this don't stand in for one. */
constexpr int MaximumUnicodeSkip = 64;

QString tr(const char *text)
{
    return QCoreApplication::translate("TVLTextRtfReader", text);
}

struct FontSuffixRow
{
    int charset;
    const char16_t *suffix;
};

/** What Windows puts behind a font's name for each part of it that has letters of its own. */
constexpr FontSuffixRow FontSuffixRows[] = {
    {161, u" Greek"},    {162, u" Tur"},      {163, u" (Vietnamese)"},
    {177, u" (Hebrew)"}, {178, u" (Arabic)"}, {186, u" Baltic"},
    {204, u" Cyr"},      {222, u" (Thai)"},   {238, u" CE"},
};

/** The family that a font of some character set belongs to. */
QString familyOfFont(const QString &name, int charset)
{
    for (const FontSuffixRow &row : FontSuffixRows) {
        const QStringView suffix(row.suffix);
        if (row.charset == charset && name.endsWith(suffix) && name.size() > suffix.size())
            return name.chopped(suffix.size());
    }
    return name;
}

} // namespace

TVLRtfParser::TVLRtfParser(QByteArrayView input, QTextDocument *document)
    : mTokenizer(input)
    , mBuilder(document, &mFormats)
    , mDocumentPage(TVLRtfCodePage::page(1252))
{
    mGroup.mPage = mDocumentPage;
}

QString TVLRtfParser::parse()
{
    if (!startsAsRtf())
        return tr("This is not a rich text file.");
    TVLRtfToken token;
    do {
        token = mTokenizer.next();
        handle(token);
    } while (token.mKind != TVLRtfToken::End && !mGroups.empty());
    const bool isCutOff = !mGroups.empty() || mTokenizer.isBinaryCutOff();
    const bool goesOn = !isCutOff && hasTextBehindItsEnd();
    readToTheEnd();

    if (mTooDeep)
        return tr("The file is nested too deeply.");
    if (isCutOff)
        return tr("The file ends before its text does.");
    return goesOn ? tr("The file goes on behind the end of its text.") : QString();
}

bool TVLRtfParser::hasTextBehindItsEnd()
{
    return TVLRtfCheck::hasWords(mTokenizer.rest());
}

/** What stands behind the brace that ends the text is read as well as it can be. */
void TVLRtfParser::readToTheEnd()
{
    if (mGroups.empty() && hasTextBehindItsEnd()) {
        mGroup = {};
        mGroup.mPage = mDocumentPage;
        mIsBehindEnd = true;
        TVLRtfToken token;
        do {
            token = mTokenizer.next();
            handle(token);
        } while (token.mKind != TVLRtfToken::End);
    }
    flushPending();
    finishText();
    while (!mGroups.empty())
        closeGroup();
}

bool TVLRtfParser::startsAsRtf()
{
    if (mTokenizer.next().mKind != TVLRtfToken::Open)
        return false;
    openGroup();
    TVLRtfToken token = mTokenizer.next();
    if (token.mKind == TVLRtfToken::Text && token.mText.trimmed().isEmpty())
        token = mTokenizer.next();
    return token.mKind == TVLRtfToken::Word && token.mText == "rtf";
}

void TVLRtfParser::handle(const TVLRtfToken &token)
{
    switch (token.mKind) {
    case TVLRtfToken::End:
        break;
    case TVLRtfToken::Open:
        openGroup();
        break;
    case TVLRtfToken::Close:
        closeGroup();
        break;
    case TVLRtfToken::Word:
        word(token);
        break;
    case TVLRtfToken::Symbol:
        symbol(token.mText.at(0));
        break;
    case TVLRtfToken::Byte:
    case TVLRtfToken::Text:
        mIgnorable = false;
        if (mGroup.mDestination == Destination::Picture && token.mKind == TVLRtfToken::Text)
            pictureDigits(token.mText);
        else if (mGroup.mDestination != Destination::Skipped)
            bytes(token.mText);
        break;
    case TVLRtfToken::Binary:
        if (mToSkip > 0)
            --mToSkip;
        else if (mGroup.mDestination == Destination::Picture)
            mPicture.mBytes.append(token.mText);
        break;
    }
    mLastKind = token.mKind;
}

void TVLRtfParser::openGroup()
{
    flushPending();
    mToSkip = 0;
    mIgnorable = false;
    if (mGroups.size() >= TVLRtfCheck::MaximumDepth) {
        mTooDeep = true;
        mDeepDestinations.push_back(mGroup.mDestination);
        return;
    }
    mGroups.push_back(mGroup);
    mGroup.mOpened.reset();
}

void TVLRtfParser::closeGroup()
{
    flushPending();
    mToSkip = 0;
    mIgnorable = false;
    if (!mDeepDestinations.empty()) {
        mGroup.mDestination = mDeepDestinations.back();
        mDeepDestinations.pop_back();
        return;
    }
    if (mGroups.empty())
        return;
    if (mGroups.size() == 1 && !mIsBehindEnd)
        finishText();
    const Group closed = std::move(mGroup);
    mGroup = std::move(mGroups.back());
    mGroups.pop_back();
    if (closed.mOpened)
        finishDestination(closed);
}

void TVLRtfParser::finishText()
{
    // The last paragraph may end with the text, without a word that says so.
    if (!mParagraph.mText.isEmpty() || (!mAnythingDelivered && mUndecided.empty()))
        deliver(tableDepth());
    leaveUndecided(0);
    setTableDepth(0);
}

void TVLRtfParser::word(const TVLRtfToken &token)
{
    flushPending();
    if (mGroup.mDestination == Destination::Skipped)
        return;
    const bool ignorable = std::exchange(mIgnorable, false);
    const TVLRtfKeyword *keyword = tvlRtfKeyword(token.mText);
    if (mToSkip > 0) {
        --mToSkip;
        // Only a character can stand in for one; some programs forget what stands in, and a
        // paragraph's end must not go with it.
        if (keyword && keyword->action == TVLRtfAction(TVLRtfTextAction::Character))
            return;
    }
    if (ignorable && (!keyword || keyword->action != TVLRtfAction(TVLRtfTextAction::Destination)))
        mGroup.mDestination = Destination::Skipped;
    else if (keyword)
        apply(*keyword, token);
}

void TVLRtfParser::apply(const TVLRtfKeyword &keyword, const TVLRtfToken &token)
{
    std::visit([&](auto action) { applyWord(action, keyword.argument, token); }, keyword.action);
}

void TVLRtfParser::applyWord(TVLRtfTextAction action, int argument, const TVLRtfToken &token)
{
    using A = TVLRtfTextAction;
    switch (action) {
    case A::Character:
        return text(QString(QChar(argument)));
    case A::Unicode:
        return unicode(token.mParameter);
    case A::UnicodeSkip:
        mGroup.mUnicodeSkip =
            token.mHasParameter ? qBound(0, token.mParameter, MaximumUnicodeSkip) : 1;
        return;
    case A::Paragraph:
        return endParagraph();
    case A::PageBreak:
        return breakPage();
    case A::ContinuousSection:
        mBreakPending = false;
        return;
    case A::PageNumber:
        return text(u"<$p>"_s);
    case A::PictureKind:
        return setPictureKind(token);
    case A::PictureNumber:
        mPicture.mNumbers[argument] = token.mParameter;
        return;
    case A::Destination:
        return openDestination(static_cast<Destination>(argument));
    }
}

void TVLRtfParser::symbol(char symbol)
{
    // The second byte of a character may be one that has to be escaped.
    if (!mPending.isEmpty() && (symbol == '\\' || symbol == '{' || symbol == '}'))
        return bytes(QByteArrayView(&symbol, 1));
    flushPending();
    if (symbol == '*') {
        // Elsewhere it would hide text that nobody meant to hide.
        mIgnorable = mIgnorable || mLastKind == TVLRtfToken::Open;
        return;
    }
    if (mGroup.mDestination == Destination::Skipped)
        return;
    if (mToSkip > 0) {
        --mToSkip;
        return;
    }
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        return text(QString(QLatin1Char(symbol)));
    case '~':
        return text(QString(QChar::Nbsp));
    case '-':
        return text(QString(QChar::SoftHyphen));
    case '_':
        return text(QString(QChar(0x2011)));
    case '\t':
        return text(u"\t"_s);
    case '\r':
    case '\n':
        return endParagraph();
    default:
        return;
    }
}

// --- Tables of the file

void TVLRtfParser::applyWord(TVLRtfHeaderAction action, int argument, const TVLRtfToken &token)
{
    switch (action) {
    case TVLRtfHeaderAction::Rtf:
        if (mIsBehindEnd && !mParagraph.mText.isEmpty())
            endParagraph();
        break;
    case TVLRtfHeaderAction::DefaultFont:
        mFormats.mDefaultFont = qMax(token.mParameter, -1);
        forgetFormats();
        break;
    case TVLRtfHeaderAction::Cocoa:
        mFirstColorIsPaper = true;
        break;
    case TVLRtfHeaderAction::CodePage:
        if (token.mParameter > 0)
            setCodePage(TVLRtfCodePage::page(token.mParameter));
        break;
    case TVLRtfHeaderAction::NamedCodePage:
        setCodePage(TVLRtfCodePage::page(argument));
        break;
    case TVLRtfHeaderAction::FontCharset:
        if (mGroup.mDestination == Destination::FontTable) {
            mFont.mCharset = token.mParameter;
            mFont.mCodePage = TVLRtfCodePage::pageOfCharset(token.mParameter);
            mGroup.mPage = mFont.mCodePage ? mFont.mCodePage : mDocumentPage;
        }
        break;
    case TVLRtfHeaderAction::FontCodePage:
        if (mGroup.mDestination == Destination::FontTable && token.mParameter > 0)
            mFont.mCodePage = mGroup.mPage = TVLRtfCodePage::page(token.mParameter);
        break;
    case TVLRtfHeaderAction::ColorPart:
        setColorPart(argument, token.mParameter);
        break;
    }
}

void TVLRtfParser::forgetFormats()
{
    mFormats.forgetFormats();
    mRunFormat = -1;
    mKnownBlockState.reset();
}

void TVLRtfParser::setCodePage(const TVLRtfCodePage *page)
{
    mDocumentPage = page;
    mGroup.mPage = page;
}

void TVLRtfParser::fontText(const QString &text)
{
    for (const QChar c : text) {
        if (c != u';') {
            mFont.mName.append(c);
            continue;
        }
        finishFont();
    }
}

void TVLRtfParser::finishFont()
{
    tvlReplaceHalfSurrogates(&mFont.mName);
    mFont.mName = familyOfFont(mFont.mName.trimmed(), mFont.mCharset);
    if (mFontNumber >= 0 && mFormats.mFonts.size() < TVLRtfFormats::MaximumSets)
        mFormats.mFonts.insert(mFontNumber, mFont);
    mFont = {};
    mFontNumber = -1;
}

void TVLRtfParser::setColorPart(int part, int value)
{
    mColorParts[part] = qBound(0, value, 255);
    mColorSet = true;
}

void TVLRtfParser::colorText(const QString &text)
{
    for (qsizetype i = text.count(u';'); i > 0; --i) {
        mFormats.mColors.append(
            mColorSet ? QColor(mColorParts[0], mColorParts[1], mColorParts[2], mColorParts[3])
                      : QColor());
        mColorParts[0] = mColorParts[1] = mColorParts[2] = 0;
        mColorParts[3] = 255;
        mColorSet = false;
    }
}
