#include "TVLMatchFunction_p.h"

#include "TVLDecodedText_p.h"
#include "TVLSearchSql_p.h"
#include "TVLTextMatcher.h"

#include <QDebug>
#include <QSqlDatabase>

#include <sqlite3.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const char *FunctionName = "matchQString";

enum Argument : int { ValueArgument, FlagsArgument, CountArgument, FirstWordArgument };

const void *bytesOf(sqlite3_value *value)
{
#if SQLITE_VERSION_NUMBER >= 3040000
    // As a text it would be copied to get a zero behind it.
    if (sqlite3_value_type(value) == SQLITE_TEXT && sqlite3_value_encoding(value) == SQLITE_UTF8)
        return sqlite3_value_blob(value);
#endif
    return sqlite3_value_text(value);
}

/** The text of a value, valid until it is asked for something else; empty for NULL. */
std::string_view textOf(sqlite3_value *value)
{
    // The size is that of the form asked for last, so the text has to come first.
    const auto *text = static_cast<const char *>(bytesOf(value));
    if (!text)
        return {};
    return {text, std::size_t(sqlite3_value_bytes(value))};
}

/** The arguments of a call that say what to look for. */
class Request
{
public:
    Request(int argumentCount, sqlite3_value **arguments)
        : mFlags(sqlite3_value_int(arguments[FlagsArgument]))
        , mWordCount(std::clamp(sqlite3_value_int(arguments[CountArgument]), 0,
                                argumentCount - FirstWordArgument))
        , mWords(arguments + FirstWordArgument)
    {
    }

    [[nodiscard]] int flags() const { return mFlags; }
    [[nodiscard]] int wordCount() const { return mWordCount; }
    [[nodiscard]] std::string_view word(int index) const { return textOf(mWords[index]); }

private:
    int mFlags;
    int mWordCount;
    sqlite3_value **mWords;
};

/** A matcher that stays with a statement, and what it was made for. */
class KeptMatcher
{
public:
    explicit KeptMatcher(const Request &request)
        : mWords(wordsOf(request))
        , mFlags(request.flags())
        , mMatcher(mFlags, decoded(mWords))
    {
    }

    /** SQLite tells of the flags that they are the same as before, but not of all the words. */
    [[nodiscard]] bool isFor(const Request &request) const
    {
        if (request.flags() != mFlags || request.wordCount() != int(mWords.size()))
            return false;
        for (int i = 0; i < request.wordCount(); ++i) {
            if (request.word(i) != mWords[std::size_t(i)])
                return false;
        }
        return true;
    }

    [[nodiscard]] bool matches(std::string_view text) { return mMatcher.matchesUtf8(text); }

private:
    static std::vector<std::string> wordsOf(const Request &request)
    {
        std::vector<std::string> words;
        for (int i = 0; i < request.wordCount(); ++i)
            words.emplace_back(request.word(i));
        return words;
    }

    static QStringList decoded(const std::vector<std::string> &words)
    {
        QStringList texts;
        for (const std::string &word : words)
            texts.append(tvlDecodedText(word));
        return texts;
    }

    std::vector<std::string> mWords;
    int mFlags;
    TVLTextMatcher mMatcher;
};

void removeKeptMatcher(void *matcher)
{
    delete static_cast<KeptMatcher *>(matcher);
}

/** The matcher of the row before, or a new one that is kept for the next row; null without memory.
 */
KeptMatcher *keptMatcher(sqlite3_context *context, const Request &request)
{
    auto *kept = static_cast<KeptMatcher *>(sqlite3_get_auxdata(context, FlagsArgument));
    if (kept && kept->isFor(request))
        return kept;
    // SQLite owns it from here, and deletes it at once if it can't keep it.
    sqlite3_set_auxdata(context, FlagsArgument, new KeptMatcher(request), removeKeptMatcher);
    return static_cast<KeptMatcher *>(sqlite3_get_auxdata(context, FlagsArgument));
}

/** The function as SQLite calls it. */
void matchQString(sqlite3_context *context, int argumentCount, sqlite3_value **arguments)
{
    if (argumentCount < FirstWordArgument) {
        sqlite3_result_error(context, "wrong number of arguments to function matchQString()", -1);
        return;
    }
    // SQLite is no place for exceptions to fly through.
    try {
        KeptMatcher *matcher = keptMatcher(context, Request(argumentCount, arguments));
        if (matcher)
            sqlite3_result_int(context, matcher->matches(textOf(arguments[ValueArgument])) ? 1 : 0);
        else
            sqlite3_result_error_nomem(context);
    } catch (const std::bad_alloc &) {
        sqlite3_result_error_nomem(context);
    }
}

} // namespace

bool tvlInstallMatchFunction(const QSqlDatabase &database)
{
    sqlite3 *handle = TVLSearchSql::handleOf(database);
    if (!handle) {
        qCritical() << "sql error" << FunctionName << "needs an open connection of SQLite"
                    << sqlite3_libversion();
        return false;
    }
    const int result =
        sqlite3_create_function_v2(handle, FunctionName, -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                   nullptr, matchQString, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        qCritical() << "sql error" << FunctionName << sqlite3_errmsg(handle);
    return result == SQLITE_OK;
}
