#include "TVLRtfCheck_p.h"

#include "TVLRtfTokenizer_p.h"

#include <algorithm>

namespace {

bool isInvalidCharacter(char c)
{
    const auto code = static_cast<unsigned char>(c);
    constexpr unsigned char Delete = 0x7f;
    return (code < ' ' && c != '\t') || code == Delete;
}

bool isPartOfWord(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool partsWords(char c)
{
    return c == '\v' || c == '\f';
}

/** Goes through a text, token by token, and counts its groups. */
class RtfWalk
{
public:
    explicit RtfWalk(QByteArrayView rtf)
        : mTokenizer(rtf)
    {
    }

    /** The next token up to the brace that ends the text; an End behind that. */
    TVLRtfToken next();

    [[nodiscard]] bool isTooDeep() const { return mIsTooDeep; }
    [[nodiscard]] bool isCutOff() const { return mDepth > 0 || mTokenizer.isBinaryCutOff(); }
    [[nodiscard]] QByteArrayView rest() const { return mTokenizer.rest(); }

private:
    TVLRtfTokenizer mTokenizer;
    std::size_t mDepth = 0;
    bool mHasBegun = false;
    bool mIsTooDeep = false;
};

TVLRtfToken RtfWalk::next()
{
    if (mHasBegun && mDepth == 0)
        return {};
    mHasBegun = true;
    const TVLRtfToken token = mTokenizer.next();
    if (token.mKind == TVLRtfToken::Open) {
        mIsTooDeep = mIsTooDeep || mDepth >= TVLRtfCheck::MaximumDepth;
        ++mDepth;
    } else if (token.mKind == TVLRtfToken::Close && mDepth > 0) {
        --mDepth;
    }
    return token;
}

bool startsAsRichText(RtfWalk *walk)
{
    if (walk->next().mKind != TVLRtfToken::Open)
        return false;
    TVLRtfToken token = walk->next();
    if (token.mKind == TVLRtfToken::Text && token.mText.trimmed().isEmpty())
        token = walk->next();
    return token.mKind == TVLRtfToken::Word && token.mText == "rtf";
}

/** A text without characters that are none, to be put behind what has been written already. */
void appendValid(QByteArrayView text, QByteArray *bytes)
{
    for (const char c : text) {
        if (partsWords(c))
            bytes->append(' ');
        else if (!isInvalidCharacter(c))
            bytes->append(c);
    }
}

} // namespace

QByteArrayView TVLRtfCheck::beginOf(QByteArrayView rtf)
{
    constexpr QByteArrayView ByteOrderMark = "\xef\xbb\xbf";
    if (rtf.startsWith(ByteOrderMark))
        rtf = rtf.sliced(ByteOrderMark.size());
    while (!rtf.isEmpty() && QByteArrayView(" \t\r\n").contains(rtf.front()))
        rtf = rtf.sliced(1);
    return rtf;
}

bool TVLRtfCheck::hasWords(QByteArrayView rest)
{
    constexpr QByteArrayView NoWords(" \t\r\n\0{}\x1a", 8);
    return std::any_of(rest.begin(), rest.end(),
                       [NoWords](char c) { return !NoWords.contains(c); });
}

TVLRtfCheck::Fault TVLRtfCheck::faultOf(QByteArrayView rtf)
{
    RtfWalk walk(beginOf(rtf));
    if (!startsAsRichText(&walk))
        return NotRtf;
    bool hasInvalidCharacters = false;
    TVLRtfToken token;
    do {
        token = walk.next();
        hasInvalidCharacters = hasInvalidCharacters
            || (token.mKind == TVLRtfToken::Text
                && std::any_of(token.mText.begin(), token.mText.end(), isInvalidCharacter));
    } while (token.mKind != TVLRtfToken::End);
    if (walk.isTooDeep())
        return TooDeep;
    if (walk.isCutOff())
        return CutOff;
    if (hasWords(walk.rest()))
        return GoesOn;
    return hasInvalidCharacters ? InvalidCharacters : NoFault;
}

QByteArray TVLRtfCheck::withoutInvalidCharacters(QByteArrayView rtf)
{
    QByteArray valid;
    valid.reserve(rtf.size() + 1);
    RtfWalk walk(beginOf(rtf));
    const char *done = rtf.begin();
    TVLRtfToken::Kind last = TVLRtfToken::End;
    for (TVLRtfToken token = walk.next(); token.mKind != TVLRtfToken::End; token = walk.next()) {
        if (token.mKind == TVLRtfToken::Text) {
            valid.append(QByteArrayView(done, token.mText.begin()));
            // Or the text would become a part of the word.
            if (last == TVLRtfToken::Word && isInvalidCharacter(token.mText.front())
                && isPartOfWord(valid.back()))
                valid.append(' ');
            appendValid(token.mText, &valid);
            done = token.mText.end();
        }
        last = token.mKind;
    }
    return valid.append(QByteArrayView(done, rtf.end()));
}
