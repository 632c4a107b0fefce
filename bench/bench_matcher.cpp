#include "BenchMain.h"
#include "BenchProse.h"
#include "RatioMeter.h"

#include "TVLMatchFunction_p.h"
#include "TVLTextMatcher.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegExp>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int Texts = 10'000;
constexpr int TextBytes = 5'000;
constexpr int SmallTextBytes = 500;
constexpr int RareRank = 19'000;

constexpr double LiteralTarget = 1.0;
constexpr double ExpressionTarget = 1.2;
constexpr double ProgramTarget = 1.0;
// Ten times the rows may cost ten times the time and what the caches no longer hold.
constexpr double GrowthTarget = 13;

/** Texts in memory, and in a table of a database in memory. */
class SearchedTexts
{
public:
    SearchedTexts(int count, int bytes)
        : mTexts(makeBenchProse(count, bytes))
        , mConnection(u"bench %1 %2"_s.arg(count).arg(bytes))
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, mConnection);
        database.setDatabaseName(u":memory:"_s);
        mOk = database.open() && tvlInstallMatchFunction(database) && fill(database);
    }

    ~SearchedTexts() { QSqlDatabase::removeDatabase(mConnection); }
    Q_DISABLE_COPY_MOVE(SearchedTexts)

    [[nodiscard]] bool isOk() const { return mOk; }
    [[nodiscard]] const QStringList &texts() const { return mTexts; }
    [[nodiscard]] double bytes() const { return mBytes; }

    /** The number of texts that a statement finds, as a search asks it; -1 if it fails. */
    [[nodiscard]] int search(int flags, const QStringList &words) const
    {
        QSqlQuery query(QSqlDatabase::database(mConnection));
        query.setForwardOnly(true);
        const QString statement = u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE "
                                  "type is ? AND matchQString(propertyValue, ?, ?%1)"_s;
        if (!query.prepare(statement.arg(u", ?"_s.repeated(words.size()))))
            return -1;
        for (const QVariant &value : {QVariant(2), QVariant(flags), QVariant(int(words.size()))})
            query.addBindValue(value);
        for (const QString &word : words)
            query.addBindValue(word);
        if (!query.exec())
            return -1;
        int found = 0;
        while (query.next())
            ++found;
        return found;
    }

private:
    bool fill(QSqlDatabase &database)
    {
        QSqlQuery query(database);
        bool ok = query.exec(
            u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, propertyValue TEXT, "
            "confirmed BOOLEAN, UNIQUE(identity, type))"_s);
        ok = database.transaction()
            && query.prepare(u"INSERT INTO DocumentSearchProperties VALUES (?, 2, ?, 1)"_s) && ok;
        for (int i = 0; i < mTexts.size(); ++i) {
            mBytes += double(mTexts.at(i).toUtf8().size());
            query.bindValue(0, i);
            query.bindValue(1, mTexts.at(i));
            ok = query.exec() && ok;
        }
        return database.commit() && ok;
    }

    QStringList mTexts;
    QString mConnection;
    double mBytes = 0;
    bool mOk = false;
};

const SearchedTexts &prose()
{
    static const SearchedTexts texts(Texts, TextBytes);
    return texts;
}

TimedWork timedSearch(const SearchedTexts *texts, int flags, const QStringList &words, bool *ok)
{
    return [=] { return processorSeconds([&] { *ok = texts->search(flags, words) >= 0 && *ok; }); };
}

void finish(benchmark::State &state, bool ok)
{
    if (!ok)
        state.SkipWithError("the statement failed");
}

void literalAgainstIndexOf(benchmark::State &state, int flags, const QStringList &words)
{
    const SearchedTexts &texts = prose();
    bool ok = texts.isOk();
    measureAgainst(
        state,
        {"QString::indexOf of one rare word, without case, over the same texts in memory",
         texts.bytes(), LiteralTarget},
        timedSearch(&texts, flags, words, &ok), [&] {
            return processorSeconds([&] {
                const QString word = benchProseWord(RareRank);
                for (const QString &text : texts.texts())
                    benchmark::DoNotOptimize(text.indexOf(word, 0, Qt::CaseInsensitive));
            });
        });
    finish(state, ok);
}

void expressionAgainstBare(benchmark::State &state, const QString &pattern)
{
    const SearchedTexts &texts = prose();
    bool ok = texts.isOk();
    measureAgainst(state,
                   {"a bare QRegExp, built once, over the same texts in memory", texts.bytes(),
                    ExpressionTarget},
                   timedSearch(&texts, TVLTextMatcher::RegularExpression, {pattern}, &ok), [&] {
                       return processorSeconds([&] {
                           const QRegExp expression(pattern, Qt::CaseInsensitive, QRegExp::RegExp2);
                           for (const QString &text : texts.texts())
                               benchmark::DoNotOptimize(expression.indexIn(text));
                       });
                   });
    finish(state, ok);
}

/** By the clock: the other program is a process of its own. */
double clockSeconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

bool writeFiles(const QStringList &texts, const QTemporaryDir &directory)
{
    for (int i = 0; i < texts.size(); ++i) {
        QFile file(directory.filePath(u"%1.txt"_s.arg(i)));
        const QByteArray utf8 = texts.at(i).toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(utf8) != utf8.size())
            return false;
    }
    return true;
}

void literalAgainstProgram(benchmark::State &state)
{
    const QString program = QStandardPaths::findExecutable(u"rg"_s);
    if (program.isEmpty()) {
        state.SkipWithError("rg is not installed");
        return;
    }
    const SearchedTexts &texts = prose();
    const QString word = benchProseWord(RareRank);
    const QTemporaryDir directory;
    bool ok = texts.isOk() && writeFiles(texts.texts(), directory);
    measureAgainst(
        state, {"rg -i -F -l over the same texts as files", texts.bytes(), ProgramTarget},
        [&] { return clockSeconds([&] { ok = texts.search(0, {word}) >= 0 && ok; }); },
        [&] {
            return clockSeconds([&] {
                QProcess process;
                process.setStandardOutputFile(QProcess::nullDevice());
                process.start(program, {u"-i"_s, u"-F"_s, u"-l"_s, word, directory.path()});
                ok = process.waitForStarted() && process.waitForFinished(-1) && ok;
            });
        });
    finish(state, ok);
}

/**
 * How much longer a search takes through ten times the rows. Both find cold caches: into those a
 * tenth of the rows fits, and what would be measured is how large they are.
 */
void searchGrowth(benchmark::State &state, int rows, int flags, const QString &word)
{
    const SearchedTexts large(rows, SmallTextBytes);
    const SearchedTexts small(rows / 10, SmallTextBytes);
    bool ok = prose().isOk() && large.isOk() && small.isOk();
    const auto timedColdSearch = [&](const SearchedTexts *texts) {
        return [&ok, texts, flags, word] {
            ok = prose().search(flags, {word}) >= 0 && ok;
            return processorSeconds([&] { ok = texts->search(flags, {word}) >= 0 && ok; });
        };
    };
    measureAgainst(state, {"a tenth of the rows", 0, GrowthTarget, "growth"},
                   timedColdSearch(&large), timedColdSearch(&small));
    finish(state, ok);
}

struct LiteralRow
{
    const char *name;
    int flags;
    QStringList words;
};

} // namespace

void registerBenchmarks()
{
    constexpr int Rounds = 7;
    const QString rare = benchProseWord(RareRank);
    const QString rarer = benchProseWord(RareRank + 1);
    const QString rarest = benchProseWord(RareRank + 2);
    const LiteralRow literals[] = {
        {"match_Exact", TVLTextMatcher::ExactText, {rare}},
        {"match_Exact_phrase", TVLTextMatcher::ExactText, {rare + u' ' + rarer}},
        {"match_Exact_quotes", TVLTextMatcher::ExactText, {u'"' + rare}},
        {"match_Exact_by_case", TVLTextMatcher::ExactText | TVLTextMatcher::CaseSensitive, {rare}},
        {"match_All", TVLTextMatcher::EveryWord, {rare, rarer, rarest}},
        {"match_Any", 0, {rare, rarer, rarest}},
        {"match_WholeWord", TVLTextMatcher::WholeWord, {rare, rarer}},
    };
    for (const LiteralRow &row : literals) {
        registerRatio(row.name, Rounds, [row](benchmark::State &state) {
            literalAgainstIndexOf(state, row.flags, row.words);
        });
    }
    const std::pair<const char *, QString> expressions[] = {
        {"match_RegExp_word", rare.left(3) + u"[a-z]?"_s + rare.mid(3)},
        {"match_RegExp_words", rare + u'|' + rarer},
        {"match_RegExp_common", benchProseWord(0) + u"[0-9]"_s},
        {"match_RegExp_classes", u"[xz][a-c]+[q]"_s},
    };
    for (const auto &[name, pattern] : expressions) {
        registerRatio(name, Rounds, [pattern = pattern](benchmark::State &state) {
            expressionAgainstBare(state, pattern);
        });
    }
    registerRatio("match_against_program", Rounds, literalAgainstProgram);
    for (const int rows : {10'000, 100'000}) {
        const std::string size = std::to_string(rows);
        registerRatio("match_growth_Exact/" + size, 9,
                      [=](benchmark::State &state) { searchGrowth(state, rows, 0, rare); });
        registerRatio("match_growth_RegExp/" + size, 9, [=](benchmark::State &state) {
            searchGrowth(state, rows, TVLTextMatcher::RegularExpression, u"[xz][a-c]+[q]"_s);
        });
    }
}
