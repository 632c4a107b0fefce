#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

class QRegExp;

/**
 * Looks for a word in UTF-8 as it is.
 *
 * It finds exactly what the word's expression finds in the decoded text. Which characters the
 * expression takes at a place of the word (both cases, a long s or a Kelvin sign, the forms of a
 * quotation mark) is not assumed but asked of the expression itself, character by character. A word
 * for which that doesn't give a clear answer has no such search.
 *
 * UTF-8 allows this: no character's bytes are part of another's, so an occurrence in the bytes
 * is one in the characters, even among bytes that are damaged.
 */
class TVLLiteralSearch
{
public:
    /** What is looked for, and what may not stand around it. */
    struct Request
    {
        QString word;
        bool caseSensitive = false;
        bool notAfterLetter = false;
        bool notBeforeLetter = false;
    };

    /** @p expression is that of the word; it is asked, not kept. */
    [[nodiscard]] static std::optional<TVLLiteralSearch> make(const Request &request,
                                                              QRegExp *expression);

    /**
     * A search that finds a text wherever an expression could see it, and maybe in places where it
     * doesn't.
     */
    [[nodiscard]] static std::optional<TVLLiteralSearch> makeFilter(const QString &text,
                                                                    bool caseSensitive);

    [[nodiscard]] bool isIn(std::string_view text) const;

private:
    /** A character of the basic plane in UTF-8. */
    struct Utf8Character
    {
        std::array<char, 3> bytes = {};
        std::uint8_t size = 0;
    };
    /** The characters that fit a place of the word. */
    using Place = std::vector<Utf8Character>;

    /**
     * A byte at a fixed distance from the start of a run of places. As many as two values fit it,
     * which differ in the bits that the mask leaves out.
     */
    struct Column
    {
        std::ptrdiff_t offset = 0;
        unsigned char mask = 0;
        unsigned char value = 0;
        int commonness = 0;

        /** 0 for a byte that fits. */
        [[nodiscard]] int differingBits(unsigned char byte) const { return (byte & mask) ^ value; }
    };
    /** Places side by side whose characters all take the same number of bytes. */
    struct Run
    {
        std::size_t firstPlace = 0;
        std::ptrdiff_t size = 0;
        std::vector<Column> columns;
    };

    TVLLiteralSearch() = default;

    [[nodiscard]] static Utf8Character utf8Character(QChar character);
    [[nodiscard]] static Place placeOf(const Request &request, qsizetype position,
                                       QRegExp *expression);
    [[nodiscard]] static std::optional<TVLLiteralSearch> makeOfPlaces(const Request &request,
                                                                      QRegExp *expression);
    [[nodiscard]] static std::optional<Column> columnOf(const Place &place, int byte);
    [[nodiscard]] static std::vector<Run> runsOf(const std::vector<Place> &places);
    [[nodiscard]] bool choosePivot();

    [[nodiscard]] bool isAt(std::string_view text, std::size_t pivot) const;

    std::vector<Place> mPlaces;
    bool mNotAfterLetter = false;
    bool mNotBeforeLetter = false;

    // Where the two rarest columns of a run fit, the word may be.
    std::size_t mPivotPlace = 0;
    Column mRarest;
    Column mNextRarest;
};
