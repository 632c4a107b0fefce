#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>

/**
 * Whether rich text is sound, found out without reading it into a document. A text is sound here if
 * and only if TVLTextRtfReader reads it without an error and it has no characters that are no text.
 */
class TVLRtfCheck
{
public:
    enum Fault {
        NoFault,
        NotRtf, ///< It doesn't begin as rich text does.
        TooDeep, ///< Its groups are nested too deeply.
        CutOff, ///< It ends before its text does.
        GoesOn, ///< There are words behind the end of its text.
        InvalidCharacters, ///< Control characters stand in the text.
    };

    /** Far above what any program writes, far below what would exhaust memory. */
    static constexpr std::size_t MaximumDepth = 10'000;

    /** What begins with the first brace: without a mark of its encoding and blanks before that. */
    [[nodiscard]] static QByteArrayView beginOf(QByteArrayView rtf);
    /** Whether what stands behind the end of a text has words; a needless brace or the mark that
     * ends a file of DOS hasn't. */
    [[nodiscard]] static bool hasWords(QByteArrayView rest);

    [[nodiscard]] static Fault faultOf(QByteArrayView rtf);

    /** The same bytes without control characters in the text; those that part words become blanks.
     */
    [[nodiscard]] static QByteArray withoutInvalidCharacters(QByteArrayView rtf);
};
