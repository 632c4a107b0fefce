#include "TVLQuote.h"

namespace {

// None of the characters has a meaning of its own between the brackets of an expression.
constexpr char16_t SingleQuotes[] = {
    u'\'',
    0x2018, // left
    0x2019, // right, and the apostrophe
    0x201a, // low
    0x201b, // reversed
    0x2039, // pointing left
    0x203a, // pointing right
    0x02bc, // the apostrophe as a letter
    0x275b, // ornament, left
    0x275c, // ornament, right
    0x275f, // ornament, low
    0xff07, // wide
};

constexpr char16_t DoubleQuotes[] = {
    u'"',
    0x201c, // left
    0x201d, // right
    0x201e, // low
    0x201f, // reversed
    0x00ab, // pointing left
    0x00bb, // pointing right
    0x2e42, // low and reversed
    0x301d, // prime, reversed
    0x301e, // prime
    0x301f, // prime, low
    0x275d, // ornament, left
    0x275e, // ornament, right
    0x2760, // ornament, low
    0xff02, // wide
};

QString oneOf(QStringView characters)
{
    return u'[' + characters.toString() + u']';
}

} // namespace

QStringView TVLQuote::singleQuotes()
{
    return {SingleQuotes, std::size(SingleQuotes)};
}

QStringView TVLQuote::doubleQuotes()
{
    return {DoubleQuotes, std::size(DoubleQuotes)};
}

QString TVLQuote::singleQuotesSearchPattern()
{
    return oneOf(singleQuotes());
}

QString TVLQuote::doubleQuotesSearchPattern()
{
    return oneOf(doubleQuotes());
}
