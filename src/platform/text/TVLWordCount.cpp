#include "TVLWordCount_p.h"

#include <QTextBoundaryFinder>

#include <array>
#include <optional>

namespace {

// Most text is made of a few hundred characters whose part in Unicode's rules for word boundaries
// is simple. They are counted here; a text with any other character goes to Qt's boundary finder,
// which is many times slower.

/** What a character does at a word boundary. */
enum class WordClass : quint8 {
    Other, ///< Stands alone.
    Letter,
    Number,
    Connector, ///< Joins what it touches, but is no word by itself.
    MidNumber, ///< Joins two numbers.
    MidBoth, ///< Joins two letters or two numbers.
    Unknown, ///< Not simple.
};

constexpr WordClass asciiClass(char16_t character)
{
    if ((character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z'))
        return WordClass::Letter;
    if (character >= u'0' && character <= u'9')
        return WordClass::Number;
    switch (character) {
    case u'_':
        return WordClass::Connector;
    case u'.': // Unicode lets it join letters, too; Qt doesn't.
    case u',':
    case u';':
        return WordClass::MidNumber;
    case u'\'':
        return WordClass::MidBoth;
    default:
        return WordClass::Other;
    }
}

constexpr auto AsciiClasses = [] {
    std::array<WordClass, 0x80> classes{};
    for (size_t character = 0; character < classes.size(); ++character)
        classes[character] = asciiClass(static_cast<char16_t>(character));
    return classes;
}();

constexpr bool isBetween(char16_t character, char16_t first, char16_t last)
{
    return character >= first && character <= last;
}

/** Latin and Cyrillic letters and what typesetting puts between words. */
constexpr WordClass wideClass(char16_t character)
{
    if (isBetween(character, 0xc0, 0x24f))
        return character == 0xd7 || character == 0xf7 ? WordClass::Other : WordClass::Letter;
    if (isBetween(character, 0x400, 0x481) || isBetween(character, 0x48a, 0x52f))
        return WordClass::Letter;
    switch (character) {
    case 0xa0: // No-break space
    case 0xab: // Guillemets
    case 0xbb:
    case 0x2013: // Dashes
    case 0x2014:
    case 0x201c: // Quotation marks
    case 0x201d:
    case 0x201e:
    case 0x2026: // Ellipsis
    case 0x2028: // Line end within a paragraph
    case 0xfffc: // Picture
        return WordClass::Other;
    case 0x2018: // Single quotation marks, one of which is the apostrophe
    case 0x2019:
        return WordClass::MidBoth;
    default:
        return WordClass::Unknown;
    }
}

constexpr bool isWordCharacter(WordClass wordClass)
{
    return wordClass == WordClass::Letter || wordClass == WordClass::Number
        || wordClass == WordClass::Connector;
}

/** Whether a character in the middle joins what it stands between, which must be alike. */
constexpr bool joins(WordClass middle, WordClass around)
{
    switch (middle) {
    case WordClass::MidNumber:
        return around == WordClass::Number;
    case WordClass::MidBoth:
        return around == WordClass::Letter || around == WordClass::Number;
    default:
        return false;
    }
}

/** The number of words of a text of simple characters; none for another one. */
std::optional<int> countSimpleWords(QStringView text)
{
    int words = 0;
    bool isCounted = false; // The stretch that goes on here.
    WordClass last = WordClass::Other; // The stretch's last character, or Other when none goes on.
    WordClass middle = WordClass::Other; // What stands behind it and may join it to the next.
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        const WordClass current = unit < AsciiClasses.size() ? AsciiClasses[unit] : wideClass(unit);
        if (current == WordClass::Unknown)
            return {};
        if (isWordCharacter(current)) {
            const bool goesOn = last != WordClass::Other
                && (middle == WordClass::Other || (current == last && joins(middle, last)));
            isCounted = isCounted && goesOn;
            if (!isCounted && current != WordClass::Connector) {
                ++words;
                isCounted = true;
            }
            last = current;
            middle = WordClass::Other;
        } else if (middle == WordClass::Other && last != WordClass::Other) {
            middle = current;
            if (current == WordClass::Other)
                last = WordClass::Other;
        } else {
            last = WordClass::Other;
            middle = WordClass::Other;
        }
    }
    return words;
}

bool holdsLetterOrNumber(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (QChar::isLetterOrNumber(character))
            return true;
        i += isPair;
    }
    return false;
}

int countWordsByBoundaries(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int words = 0;
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        words += holdsLetterOrNumber(text.sliced(start, end - start));
        start = end;
    }
    return words;
}

} // namespace

int tvlCountWords(QStringView text)
{
    const std::optional<int> simple = countSimpleWords(text);
    return simple ? *simple : countWordsByBoundaries(text);
}
