#include "TVLTextMatcher.h"

#include "TVLDecodedText_p.h"
#include "TVLLiteralSearch_p.h"
#include "TVLQuote.h"
#include "TVLRequiredText_p.h"

#include <QRegExp>

#include <algorithm>
#include <optional>

namespace {

QString patternOf(const QString &word, int flags)
{
    QString pattern = (flags & TVLTextMatcher::RegularExpression) ? word : QRegExp::escape(word);
    pattern.replace(TVLQuote::asciiSingleQuote(), TVLQuote::singleQuotesSearchPattern());
    pattern.replace(TVLQuote::asciiDoubleQuote(), TVLQuote::doubleQuotesSearchPattern());
    return pattern;
}

Qt::CaseSensitivity caseSensitivityOf(int flags)
{
    return (flags & TVLTextMatcher::CaseSensitive) ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

class TVLTextMatcher::Word
{
public:
    Word(const QString &word, int flags);

    /** Tries to get ready for texts in UTF-8. */
    void prepareForUtf8();
    /** Whether the word can be looked for in UTF-8 as it is. */
    [[nodiscard]] bool isLiteral() const { return mLiteral.has_value(); }
    [[nodiscard]] bool isIn(std::string_view text) const { return mLiteral->isIn(text); }
    /** Whether a text in UTF-8 is worth to be decoded; what isn't doesn't match. */
    [[nodiscard]] bool mayMatch(std::string_view text) const
    {
        return (!mStartFilter || mStartFilter->isIn(text.substr(0, mStartSize)))
            && (!mFilter || mFilter->isIn(text));
    }

    [[nodiscard]] bool matches(const QString &text) { return firstMatch(text, 0).has_value(); }
    [[nodiscard]] std::optional<Match> firstMatch(const QString &text, qsizetype from);

private:
    [[nodiscard]] bool isAccepted(const QString &text, qsizetype start, qsizetype end) const;

    QString mWord;
    int mFlags;
    QRegExp mExpression;
    std::optional<TVLLiteralSearch> mLiteral;
    std::optional<TVLLiteralSearch> mFilter;
    std::optional<TVLLiteralSearch> mStartFilter;
    std::size_t mStartSize = 0; ///< How many bytes a start of that length can take.
};

TVLTextMatcher::Word::Word(const QString &word, int flags)
    : mWord(word)
    , mFlags(flags)
    , mExpression(patternOf(word, flags), caseSensitivityOf(flags), QRegExp::RegExp2)
{
}

void TVLTextMatcher::Word::prepareForUtf8()
{
    const bool caseSensitive = (mFlags & CaseSensitive) != 0;
    if ((mFlags & RegularExpression) && QRegExp::escape(mWord) != mWord) {
        constexpr std::size_t MostBytesOfAUnit = 4;
        const TVLRequiredText required = tvlRequiredText(mExpression.pattern());
        mFilter = TVLLiteralSearch::makeFilter(required.text, caseSensitive);
        mStartFilter = TVLLiteralSearch::makeFilter(required.start, caseSensitive);
        mStartSize = std::size_t(required.start.size()) * MostBytesOfAUnit;
        return;
    }
    mLiteral = TVLLiteralSearch::make(
        {mWord, caseSensitive, (mFlags & NotAfterLetter) != 0, (mFlags & NotBeforeLetter) != 0},
        &mExpression);
}

bool TVLTextMatcher::Word::isAccepted(const QString &text, qsizetype start, qsizetype end) const
{
    if ((mFlags & NotAfterLetter) && start > 0 && text[start - 1].isLetterOrNumber())
        return false;
    return !(mFlags & NotBeforeLetter) || end == text.size() || !text[end].isLetterOrNumber();
}

std::optional<TVLTextMatcher::Match> TVLTextMatcher::Word::firstMatch(const QString &text,
                                                                      qsizetype from)
{
    if (from > text.size()) // QRegExp would count from the end.
        return std::nullopt;
    int start = mExpression.indexIn(text, int(from));
    while (start >= 0 && !isAccepted(text, start, start + mExpression.matchedLength()))
        start = mExpression.indexIn(text, start + 1);
    return start >= 0 ? std::optional(Match{start, mExpression.matchedLength()}) : std::nullopt;
}

TVLTextMatcher::TVLTextMatcher(int flags, const QStringList &words)
    : mFlags(flags)
{
    mWords.reserve(std::size_t(words.size()));
    for (const QString &word : words)
        mWords.emplace_back(word, flags);
}

TVLTextMatcher::~TVLTextMatcher() = default;
TVLTextMatcher::TVLTextMatcher(TVLTextMatcher &&) noexcept = default;
TVLTextMatcher &TVLTextMatcher::operator=(TVLTextMatcher &&) noexcept = default;

template <typename Matches>
bool TVLTextMatcher::enoughWords(Matches matches)
{
    return (mFlags & EveryWord) ? std::all_of(mWords.begin(), mWords.end(), matches)
                                : std::any_of(mWords.begin(), mWords.end(), matches);
}

bool TVLTextMatcher::matches(const QString &text)
{
    return enoughWords([&](Word &word) { return word.matches(text); });
}

std::optional<TVLTextMatcher::Match> TVLTextMatcher::firstMatch(const QString &text, qsizetype from)
{
    std::optional<Match> first;
    for (Word &word : mWords) {
        const std::optional<Match> match = word.firstMatch(text, from);
        if (match
            && (!first || match->position < first->position
                || (match->position == first->position && match->length > first->length)))
            first = match;
    }
    return first;
}

void TVLTextMatcher::prepareForUtf8()
{
    for (Word &word : mWords)
        word.prepareForUtf8();
    // Their order means nothing, and where the quick ones settle it a text need not be decoded.
    std::stable_partition(mWords.begin(), mWords.end(),
                          [](const Word &word) { return word.isLiteral(); });
    mIsReadyForUtf8 = true;
}

bool TVLTextMatcher::matchesUtf8(std::string_view text)
{
    if (!mIsReadyForUtf8)
        prepareForUtf8();
    std::optional<QString> decodedText;
    return enoughWords([&](Word &word) {
        if (word.isLiteral())
            return word.isIn(text);
        if (!word.mayMatch(text))
            return false;
        if (!decodedText)
            decodedText = tvlDecodedText(text);
        return word.matches(*decodedText);
    });
}

bool tvlMatchQString(const QString &text, int flags, const QStringList &words)
{
    return TVLTextMatcher(flags, words).matches(text);
}
