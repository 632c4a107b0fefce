#include "FuzzSupport.h"

#include "ReferenceMatch.h"
#include "TVLTextMatcher.h"

#include <QByteArrayList>

#include <algorithm>

namespace {

// Expressions may take time that grows with a power of what they look through.
constexpr qsizetype MaxTextSize = 2000;
constexpr qsizetype MaxExpressionSize = 20;
constexpr qsizetype MaxExpressionTextSize = 100;
constexpr qsizetype MaxWords = 4;

QString decoded(const QByteArray &utf8)
{
    // Behind another character a byte order mark is a character as well.
    return QString::fromUtf8(QByteArray("x") + utf8).mid(1);
}

/** The first byte has the flags; then lines: the words, and all behind an empty line is text. */
struct Input
{
    explicit Input(const QByteArray &input)
        : flags(input.isEmpty() ? 0 : (input.front() & 0x7f) & ~1)
    {
        const qsizetype end = input.indexOf("\n\n");
        const QByteArray head =
            end < 0 ? input.mid(1) : input.mid(1, std::max<qsizetype>(0, end - 1));
        text = end < 0 ? QByteArray() : input.mid(end + 2);
        const bool areExpressions = (flags & TVLTextMatcher::RegularExpression) != 0;
        text.truncate(areExpressions ? MaxExpressionTextSize : MaxTextSize);
        const QByteArrayList lines = head.split('\n').mid(0, MaxWords);
        for (const QByteArray &line : lines) {
            const QString word = decoded(line);
            words.append(areExpressions ? word.left(MaxExpressionSize) : word);
        }
    }

    int flags;
    QStringList words;
    QByteArray text;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** A matcher finds in text what a plain expression finds, and the same in the text's bytes. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const Input input(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const QString text = decoded(input.text);
    const bool expected = referenceMatch(text, input.flags, input.words);
    TVLTextMatcher matcher(input.flags, input.words);
    if (matcher.matches(text) != expected)
        tvlReportFinding("a matcher doesn't find what an expression finds");
    if (matcher.matchesUtf8(input.text.constData(), input.text.size()) != expected)
        tvlReportFinding("a matcher doesn't find in UTF-8 what it finds in text");
    return 0;
}
