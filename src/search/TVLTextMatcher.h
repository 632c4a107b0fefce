#pragma once

#include "TvlExport.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string_view>
#include <vector>

/**
 * The words of a search, made ready to be looked for in one text after another.
 *
 * A word is a QRegExp of the syntax RegExp2: escaped, unless the words are expressions themselves,
 * and with each plain quotation mark standing for all its typographic forms. One that isn't a valid
 * expression matches nothing. Of a word's matches one that satisfies the flags is enough; a match
 * that doesn't is passed over, and the search goes on one character behind its start.
 *
 * No words at all match every text when every word has to match, and none otherwise.
 */
class TVL_EXPORT TVLTextMatcher
{
public:
    /** The numbers reach SQL statements. */
    enum Flag : int {
        CaseSensitive = 2,
        NotAfterLetter = 4, ///< A match must not follow a letter or number.
        NotBeforeLetter = 8, ///< A match must not precede a letter or number.
        WholeWord = NotAfterLetter | NotBeforeLetter,
        ExactText = 16, ///< The word is a whole search text; nothing depends on it.
        EveryWord = 32, ///< All words have to match; without it one word is enough.
        RegularExpression = 64, ///< The words are expressions and are not escaped.
    };

    TVLTextMatcher(int flags, const QStringList &words);
    ~TVLTextMatcher();
    TVLTextMatcher(TVLTextMatcher &&) noexcept;
    TVLTextMatcher &operator=(TVLTextMatcher &&) noexcept;
    Q_DISABLE_COPY(TVLTextMatcher)

    /** Not const, as the expressions keep what they found. */
    [[nodiscard]] bool matches(const QString &text);

    /** A stretch of a text. */
    struct Match
    {
        qsizetype position;
        qsizetype length;
    };
    /** The first match of any of the words at or behind a place of a text; of several there the
     * longest. */
    [[nodiscard]] std::optional<Match> firstMatch(const QString &text, qsizetype from);

    /**
     * matches() of a text in UTF-8, which is decoded only if that is necessary. Bytes that are no
     * UTF-8 count as replacement characters; a byte order mark counts as the character that it is.
     */
    [[nodiscard]] bool matchesUtf8(std::string_view text);
    [[nodiscard]] bool matchesUtf8(const char *text, qsizetype size)
    {
        return matchesUtf8({text, std::size_t(size)});
    }

private:
    class Word;

    template <typename Matches>
    [[nodiscard]] bool enoughWords(Matches matches);
    void prepareForUtf8();

    int mFlags;
    bool mIsReadyForUtf8 = false;
    std::vector<Word> mWords;
};

/** Whether a text matches words; for more texts than one there is TVLTextMatcher. */
[[nodiscard]] TVL_EXPORT bool tvlMatchQString(const QString &text, int flags,
                                              const QStringList &words);
