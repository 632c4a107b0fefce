#include "TVLLiteralSearch_p.h"

#include "TVLQuote.h"

#include <QRegExp>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

/** Getting a word ready takes time that grows with the square of its length. */
constexpr qsizetype MaxWordSize = 1000;

/** As many bytes are compared at once; a compiler makes vector instructions of it. */
constexpr std::ptrdiff_t BlockSize = 64;

// --- Characters that an expression may take for each other

/** A character and the forms that its cases have. */
std::array<char16_t, 4> caseForms(QChar character)
{
    return {character.unicode(), character.toLower().unicode(), character.toUpper().unicode(),
            character.toCaseFolded().unicode()};
}

using FormAndCharacter = std::pair<char16_t, char16_t>;

/** The forms of all characters that have more than one, in the order of the forms. */
std::vector<FormAndCharacter> makeFormTable()
{
    std::vector<FormAndCharacter> table;
    for (char32_t code = 0; code <= 0xffff; ++code) {
        const auto character = char16_t(code);
        const auto forms = caseForms(character);
        if (std::all_of(forms.begin(), forms.end(),
                        [&](char16_t form) { return form == character; }))
            continue;
        for (const char16_t form : forms)
            table.emplace_back(form, character);
    }
    std::sort(table.begin(), table.end());
    return table;
}

/** All characters that have a form in common with a character; they are only candidates. */
std::vector<char16_t> caseRelatives(QChar character)
{
    static const std::vector<FormAndCharacter> table = makeFormTable();
    std::vector<char16_t> relatives;
    for (const char16_t form : caseForms(character)) {
        relatives.push_back(form);
        auto row = std::lower_bound(table.begin(), table.end(), FormAndCharacter(form, 0));
        for (; row != table.end() && row->first == form; ++row)
            relatives.push_back(row->second);
    }
    return relatives;
}

/** All characters that an expression may take at a character's place, each once. */
std::vector<char16_t> candidates(QChar character, bool caseSensitive)
{
    std::vector<char16_t> found{character.unicode()};
    if (!caseSensitive)
        found = caseRelatives(character);
    for (const QStringView quotes : {TVLQuote::singleQuotes(), TVLQuote::doubleQuotes()}) {
        if (quotes.front() == character)
            found.insert(found.end(), quotes.utf16(), quotes.utf16() + quotes.size());
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

bool matchesWhole(QRegExp *expression, const QString &text)
{
    return expression->indexIn(text) == 0 && expression->matchedLength() == text.size();
}

/** Half a pair has no bytes of its own, and the replacement character stands for damaged ones. */
bool hasDoubtfulCharacter(const QString &word)
{
    return std::any_of(word.begin(), word.end(), [](QChar character) {
        return character.isSurrogate() || character == QChar::ReplacementCharacter;
    });
}

// --- How common bytes are

struct ByteCommonness
{
    char byte;
    int perMille;
};

constexpr ByteCommonness CommonBytes[] = {
    {' ', 170}, {'e', 100}, {'t', 73}, {'a', 65}, {'o', 61}, {'n', 57}, {'i', 56},
    {'s', 51},  {'h', 49},  {'r', 49}, {'d', 34}, {'l', 33}, {'u', 23}, {'c', 22},
    {'m', 20},  {'w', 19},  {'f', 18}, {'g', 16}, {'y', 16}, {'p', 15}, {'b', 12},
    {'v', 8},   {'k', 6},   {',', 10}, {'.', 10}, {'\n', 8},
};
constexpr int RareCommonness = 2;
// In a language that needs them, few lead bytes make half of the text.
constexpr int LeadByteCommonness = 200;
constexpr int ContinuationByteCommonness = 30;
constexpr int NoFurtherColumn = 1000;

bool isContinuation(unsigned char byte)
{
    return (byte & 0xc0) == 0x80;
}

int commonness(unsigned char byte)
{
    if (isContinuation(byte))
        return ContinuationByteCommonness;
    if (byte >= 0x80)
        return LeadByteCommonness;
    const auto *row = std::find_if(std::begin(CommonBytes), std::end(CommonBytes),
                                   [&](ByteCommonness row) { return row.byte == char(byte); });
    return row == std::end(CommonBytes) ? RareCommonness : row->perMille;
}

// --- Letters beside a match

/** The number of bytes of a character that begins with a byte; 0 if none beyond ASCII does. */
std::size_t sizeOfSequence(unsigned char lead)
{
    if (lead >= 0xc2 && lead < 0xe0)
        return 2;
    return lead >= 0xe0 && lead < 0xf0 ? 3 : 0;
}

/**
 * The character of two or three bytes that begins a text. A null character for anything else: what
 * has four bytes is half a pair to an expression, and damaged bytes are replacement characters;
 * none of these is a letter.
 */
QChar leadingCharacter(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t size = sizeOfSequence(byte(0));
    if (size == 0 || text.size() < size || !isContinuation(byte(1)))
        return {};
    if (size == 2)
        return QChar((byte(0) & 0x1f) << 6 | (byte(1) & 0x3f));
    if (!isContinuation(byte(2)))
        return {};
    const char32_t code = (byte(0) & 0x0f) << 12 | (byte(1) & 0x3f) << 6 | (byte(2) & 0x3f);
    return code < 0x800 ? QChar() : QChar(char16_t(code));
}

bool startsWithLetter(std::string_view text)
{
    if (text.empty())
        return false;
    const auto byte = static_cast<unsigned char>(text.front());
    return (byte < 0x80 ? QChar(char16_t(byte)) : leadingCharacter(text)).isLetterOrNumber();
}

bool endsWithLetter(std::string_view text)
{
    std::size_t size = 1;
    while (size < 3 && size < text.size()
           && isContinuation(static_cast<unsigned char>(text[text.size() - size])))
        ++size;
    if (size > text.size())
        return false;
    const std::string_view last = text.substr(text.size() - size);
    const auto lead = static_cast<unsigned char>(last.front());
    return (lead < 0x80 ? size == 1 : size == sizeOfSequence(lead)) && startsWithLetter(last);
}

} // namespace

// --- Getting a word ready

TVLLiteralSearch::Utf8Character TVLLiteralSearch::utf8Character(QChar character)
{
    const QByteArray bytes = QStringView(&character, 1).toUtf8();
    Utf8Character utf8;
    utf8.size = std::uint8_t(bytes.size());
    std::copy(bytes.begin(), bytes.end(), utf8.bytes.begin());
    return utf8;
}

/** The characters that the expression takes, or all that it could take if there is none to ask. */
TVLLiteralSearch::Place TVLLiteralSearch::placeOf(const Request &request, qsizetype position,
                                                  QRegExp *expression)
{
    Place place;
    QString variant = request.word;
    for (const char16_t candidate : candidates(request.word[position], request.caseSensitive)) {
        variant[position] = QChar(candidate);
        if (!expression || matchesWhole(expression, variant))
            place.push_back(utf8Character(QChar(candidate)));
    }
    return place;
}

std::optional<TVLLiteralSearch> TVLLiteralSearch::makeOfPlaces(const Request &request,
                                                               QRegExp *expression)
{
    const QString &word = request.word;
    if (word.isEmpty() || word.size() > MaxWordSize || hasDoubtfulCharacter(word))
        return std::nullopt;
    // Not every expression finds its own word: a capital I with a dot has two lower characters.
    if (expression && !matchesWhole(expression, word))
        return std::nullopt;
    TVLLiteralSearch search;
    search.mNotAfterLetter = request.notAfterLetter;
    search.mNotBeforeLetter = request.notBeforeLetter;
    for (qsizetype i = 0; i < word.size(); ++i)
        search.mPlaces.push_back(placeOf(request, i, expression));
    if (!search.choosePivot())
        return std::nullopt;
    return search;
}

std::optional<TVLLiteralSearch> TVLLiteralSearch::make(const Request &request, QRegExp *expression)
{
    return makeOfPlaces(request, expression);
}

std::optional<TVLLiteralSearch> TVLLiteralSearch::makeFilter(const QString &text,
                                                             bool caseSensitive)
{
    return makeOfPlaces({text, caseSensitive, false, false}, nullptr);
}

std::optional<TVLLiteralSearch::Column> TVLLiteralSearch::columnOf(const Place &place, int byte)
{
    std::vector<unsigned char> values;
    for (const Utf8Character &character : place)
        values.push_back(static_cast<unsigned char>(character.bytes[byte]));
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    if (values.size() > 2)
        return std::nullopt;
    Column column;
    column.mask = static_cast<unsigned char>(~(values.front() ^ values.back()));
    column.value = values.front() & column.mask;
    for (const unsigned char value : values)
        column.commonness += commonness(value);
    return column;
}

std::vector<TVLLiteralSearch::Run> TVLLiteralSearch::runsOf(const std::vector<Place> &places)
{
    std::vector<Run> runs(1);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Place &place = places[i];
        const int size = place.front().size;
        if (std::any_of(place.begin(), place.end(),
                        [&](const Utf8Character &other) { return other.size != size; })) {
            runs.push_back({i + 1, 0, {}});
            continue;
        }
        Run &run = runs.back();
        for (int byte = 0; byte < size; ++byte) {
            if (std::optional<Column> column = columnOf(place, byte)) {
                column->offset = run.size + byte;
                run.columns.push_back(*column);
            }
        }
        run.size += size;
    }
    return runs;
}

bool TVLLiteralSearch::choosePivot()
{
    int least = NoFurtherColumn * NoFurtherColumn;
    for (Run &run : runsOf(mPlaces)) {
        if (run.columns.empty())
            continue;
        std::stable_sort(
            run.columns.begin(), run.columns.end(),
            [](const Column &a, const Column &b) { return a.commonness < b.commonness; });
        const bool hasTwo = run.columns.size() > 1;
        const int both =
            run.columns[0].commonness * (hasTwo ? run.columns[1].commonness : NoFurtherColumn);
        if (both >= least)
            continue;
        least = both;
        mPivotPlace = run.firstPlace;
        mRarest = run.columns[0];
        mNextRarest = run.columns[hasTwo ? 1 : 0];
    }
    return least < NoFurtherColumn * NoFurtherColumn;
}

// --- Searching

bool TVLLiteralSearch::isIn(std::string_view text) const
{
    const std::ptrdiff_t count =
        std::ptrdiff_t(text.size()) - std::max(mRarest.offset, mNextRarest.offset);
    if (count <= 0)
        return false;
    const auto *bytes = reinterpret_cast<const unsigned char *>(text.data());
    const unsigned char *rarest = bytes + mRarest.offset;
    const unsigned char *nextRarest = bytes + mNextRarest.offset;
    const Column first = mRarest;
    const Column second = mNextRarest;
    const auto fits = [=](std::ptrdiff_t at) {
        return (first.differingBits(rarest[at]) | second.differingBits(nextRarest[at])) == 0;
    };

    std::ptrdiff_t at = 0;
    for (; at + BlockSize <= count; at += BlockSize) {
        std::array<unsigned char, BlockSize> hits;
        for (std::ptrdiff_t i = 0; i < BlockSize; ++i)
            hits[i] = fits(at + i) ? 1 : 0;
        for (std::ptrdiff_t i = 0; i < BlockSize; i += 8) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, hits.data() + i, sizeof(eight));
            if (eight == 0)
                continue;
            for (std::ptrdiff_t j = i; j < i + 8; ++j) {
                if (hits[j] && isAt(text, std::size_t(at + j)))
                    return true;
            }
        }
    }
    for (; at < count; ++at) {
        if (fits(at) && isAt(text, std::size_t(at)))
            return true;
    }
    return false;
}

bool TVLLiteralSearch::isAt(std::string_view text, std::size_t pivot) const
{
    const auto matching = [](const Place &place, auto isThere) {
        const auto character = std::find_if(place.begin(), place.end(), isThere);
        return character == place.end() ? std::size_t(0) : std::size_t(character->size);
    };

    std::size_t end = pivot;
    for (std::size_t i = mPivotPlace; i < mPlaces.size(); ++i) {
        const std::string_view rest = text.substr(end);
        const std::size_t size = matching(mPlaces[i], [&](const Utf8Character &character) {
            return rest.starts_with({character.bytes.data(), character.size});
        });
        if (size == 0)
            return false;
        end += size;
    }
    std::size_t start = pivot;
    for (std::size_t i = mPivotPlace; i > 0; --i) {
        const std::string_view rest = text.substr(0, start);
        const std::size_t size = matching(mPlaces[i - 1], [&](const Utf8Character &character) {
            return rest.ends_with({character.bytes.data(), character.size});
        });
        if (size == 0)
            return false;
        start -= size;
    }
    return !(mNotAfterLetter && endsWithLetter(text.substr(0, start)))
        && !(mNotBeforeLetter && startsWithLetter(text.substr(end)));
}
