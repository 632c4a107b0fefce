#include "TVLRtfTokenizer_p.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

enum CharClass : quint8 { Plain, Special, LineEnd };

constexpr std::array<CharClass, 256> CharClasses = [] {
    std::array<CharClass, 256> classes{};
    classes['\\'] = classes['{'] = classes['}'] = Special;
    classes['\r'] = classes['\n'] = classes['\0'] = LineEnd;
    return classes;
}();

CharClass classOf(char c)
{
    return CharClasses[static_cast<unsigned char>(c)];
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

TVLRtfTokenizer::TVLRtfTokenizer(QByteArrayView input)
    : mBegin(input.data())
    , mPosition(mBegin)
    , mEnd(mBegin + input.size())
{
}

void TVLRtfTokenizer::skipLineEnds()
{
    while (mPosition != mEnd && classOf(*mPosition) == LineEnd)
        ++mPosition;
}

TVLRtfToken TVLRtfTokenizer::next()
{
    skipLineEnds();
    if (mPosition == mEnd)
        return {};
    switch (*mPosition) {
    case '{':
        ++mPosition;
        return {.mKind = TVLRtfToken::Open};
    case '}':
        ++mPosition;
        return {.mKind = TVLRtfToken::Close};
    case '\\':
        ++mPosition;
        return control();
    default:
        return text();
    }
}

TVLRtfToken TVLRtfTokenizer::text()
{
    const char *start = mPosition;
    mPosition = std::find_if(start, mEnd, [](char c) { return classOf(c) != Plain; });
    return {.mKind = TVLRtfToken::Text, .mText = QByteArrayView(start, mPosition)};
}

TVLRtfToken TVLRtfTokenizer::control()
{
    if (mPosition == mEnd)
        return {};
    if (isLetter(*mPosition))
        return word();
    if (*mPosition == '\'')
        return hexByte();
    const char *symbol = mPosition++;
    return {.mKind = TVLRtfToken::Symbol, .mText = QByteArrayView(symbol, 1)};
}

TVLRtfToken TVLRtfTokenizer::hexByte()
{
    const char *symbol = mPosition++;
    const int high = mEnd - mPosition >= 2 ? hexValue(mPosition[0]) : -1;
    const int low = high >= 0 ? hexValue(mPosition[1]) : -1;
    if (low < 0) // Not a byte after all; what stands there is text.
        return {.mKind = TVLRtfToken::Symbol, .mText = QByteArrayView(symbol, 1)};
    mPosition += 2;
    mByte = static_cast<char>(high * 16 + low);
    return {.mKind = TVLRtfToken::Byte, .mText = QByteArrayView(&mByte, 1)};
}

int TVLRtfTokenizer::parameter(bool *hasParameter)
{
    const bool negative = mEnd - mPosition >= 2 && *mPosition == '-' && isDigit(mPosition[1]);
    if (negative)
        ++mPosition;
    *hasParameter = mPosition != mEnd && isDigit(*mPosition);
    qint64 value = 0;
    for (; mPosition != mEnd && isDigit(*mPosition); ++mPosition)
        value = std::min<qint64>(value * 10 + (*mPosition - '0'), std::numeric_limits<int>::max());
    return static_cast<int>(negative ? -value : value);
}

TVLRtfToken TVLRtfTokenizer::word()
{
    const char *start = mPosition;
    mPosition = std::find_if_not(start, mEnd, isLetter);
    TVLRtfToken token{.mKind = TVLRtfToken::Word, .mText = QByteArrayView(start, mPosition)};
    token.mParameter = parameter(&token.mHasParameter);
    if (mPosition != mEnd && *mPosition == ' ')
        ++mPosition;
    return token.mText == "bin" ? binary(token.mParameter) : token;
}

TVLRtfToken TVLRtfTokenizer::binary(int length)
{
    const qsizetype left = mEnd - mPosition;
    mBinaryCutOff = mBinaryCutOff || length > left;
    const qsizetype taken = std::clamp<qsizetype>(length, 0, left);
    const char *start = mPosition;
    mPosition += taken;
    return {.mKind = TVLRtfToken::Binary, .mText = QByteArrayView(start, taken)};
}
