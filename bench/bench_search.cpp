#include "BenchMain.h"
#include "BenchMemory.h"
#include "BenchProse.h"
#include "RatioMeter.h"
#include "XmlTokens.h"

#include "TVLCollectionMetaData.h"
#include "TVLSearchIndex.h"
#include "TestSearchedProject.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegExp>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int SearchedItems = 10'000;
constexpr int SearchedBytes = 5'000;
constexpr int FileBytes = 500;
constexpr double ScanTarget = 1.0;
constexpr double FileTarget = 2.5;
constexpr double ExpressionTarget = 1.2;
constexpr double RepeatTarget = 1.1;
constexpr double GrowthTarget = 13;

/** A project of which every item has a text, and an index with all of them. */
class SearchedTexts
{
public:
    SearchedTexts(int items, int bytes)
        : mTexts(makeBenchProse(items, bytes))
        , mIndex(&mProject)
    {
        for (int id = 0; id < items; ++id) {
            mProject.setText(id, TVL::TextProperty, mTexts.at(id));
            mIndex.addProjectNode(mProject.addNode(id, u"Item %1"_s.arg(id)));
        }
        mIndex.validateIndexes(nullptr);
        (void)mProject.takeRequests();
    }

    [[nodiscard]] TVLSearchIndex *index() { return &mIndex; }
    [[nodiscard]] const QStringList &texts() const { return mTexts; }
    [[nodiscard]] double bytes() const
    {
        double sum = 0;
        for (const QString &text : mTexts)
            sum += double(text.toUtf8().size());
        return sum;
    }

private:
    TestSearchedProject mProject;
    QStringList mTexts;
    TVLSearchIndex mIndex;
};

SearchedTexts &searchedTexts()
{
    static SearchedTexts texts(SearchedItems, SearchedBytes);
    return texts;
}

TVLCollectionMetaData searchFor(const QString &text, TVL::SearchOperator searchOperator,
                                TVL::DocumentProperty property = TVL::TextProperty)
{
    TVLCollectionMetaData search;
    search.mSearchText = text;
    search.mSearchOperator = searchOperator;
    search.mSearchProperty = property;
    return search;
}

template <typename Work>
double clockSeconds(Work &&work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

// --- Searching

/** How a text in memory is looked through for the same words. */
using Scan = bool (*)(const QString &text, const QStringList &words);

bool containsAll(const QString &text, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(), [&](const QString &word) {
        return text.indexOf(word, 0, Qt::CaseInsensitive) >= 0;
    });
}

bool containsAny(const QString &text, const QStringList &words)
{
    return std::any_of(words.begin(), words.end(), [&](const QString &word) {
        return text.indexOf(word, 0, Qt::CaseInsensitive) >= 0;
    });
}

struct SearchRow
{
    const char *name;
    TVL::SearchOperator searchOperator;
    QList<int> ranks;
    Scan scan;
    bool isScanExact; ///< Whether the scan finds the same items.
};

QStringList wordsOf(const QList<int> &ranks)
{
    QStringList words;
    for (const int rank : ranks)
        words.append(benchProseWord(rank));
    return words;
}

const SearchRow Searches[] = {
    {"Exact_rare", TVL::ExactOperator, {19'000}, containsAll, true},
    {"Exact_common", TVL::ExactOperator, {150}, containsAll, true},
    {"All_rare", TVL::AllOperator, {19'001, 19'002, 19'003}, containsAll, true},
    {"All_common", TVL::AllOperator, {120, 130, 3'000}, containsAll, true},
    {"Any_rare", TVL::AnyOperator, {19'004, 19'005, 19'006}, containsAny, true},
    {"Any_common", TVL::AnyOperator, {2'000, 3'000, 4'000}, containsAny, true},
    {"WholeWord_rare", TVL::WholeWordOperator, {19'007}, containsAny, false},
    {"WholeWord_common", TVL::WholeWordOperator, {160}, containsAny, false},
};

void search(benchmark::State &state, const SearchRow &row)
{
    SearchedTexts &texts = searchedTexts();
    const QStringList words = wordsOf(row.ranks);
    const TVLCollectionMetaData collection = searchFor(words.join(u' '), row.searchOperator);
    qsizetype found = 0;
    qsizetype scanned = 0;
    measureAgainst(
        state,
        {"QString::indexOf without case over the same texts in memory", texts.bytes(), ScanTarget},
        [&] {
            return processorSeconds([&] { found = texts.index()->indexes(collection).size(); });
        },
        [&] {
            return processorSeconds([&] {
                scanned = std::count_if(texts.texts().begin(), texts.texts().end(),
                                        [&](const QString &text) { return row.scan(text, words); });
            });
        });
    if (row.isScanExact ? found != scanned : found > scanned)
        state.SkipWithError("the search and the scan disagree");
}

void searchExpression(benchmark::State &state, const QString &pattern, std::optional<double> target)
{
    SearchedTexts &texts = searchedTexts();
    const TVLCollectionMetaData collection = searchFor(pattern, TVL::RegExpOperator);
    qsizetype found = 0;
    qsizetype scanned = 0;
    measureAgainst(
        state, {"a bare QRegExp, built once, over the same texts in memory", texts.bytes(), target},
        [&] {
            return processorSeconds([&] { found = texts.index()->indexes(collection).size(); });
        },
        [&] {
            return processorSeconds([&] {
                const QRegExp expression(pattern, Qt::CaseInsensitive, QRegExp::RegExp2);
                scanned = std::count_if(
                    texts.texts().begin(), texts.texts().end(),
                    [&](const QString &text) { return expression.indexIn(text) >= 0; });
            });
        });
    if (found != scanned)
        state.SkipWithError("the search and the expression disagree");
}

/** The second search of two, and any further one, by one that finds a text to be refreshed. */
void searchAgain(benchmark::State &state)
{
    SearchedTexts &texts = searchedTexts();
    const TVLCollectionMetaData collection = searchFor(benchProseWord(19'000), TVL::ExactOperator);
    const auto timedSearch = [&] {
        return processorSeconds([&] { (void)texts.index()->indexes(collection); });
    };
    measureAgainst(state,
                   {"the search that has texts refreshed before it", texts.bytes(), RepeatTarget},
                   timedSearch, [&] {
                       texts.index()->invalidateDocument(0, TVL::MainText);
                       return timedSearch();
                   });
}

void searchAgainstRipgrep(benchmark::State &state)
{
    const QString program = QStandardPaths::findExecutable(u"rg"_s);
    if (program.isEmpty()) {
        state.SkipWithError("rg is not installed");
        return;
    }
    SearchedTexts &texts = searchedTexts();
    const QTemporaryDir directory;
    for (qsizetype i = 0; i < texts.texts().size(); ++i) {
        QFile file(directory.filePath(QString::number(i)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(file.errorString()));
        file.write(texts.texts().at(i).toUtf8());
    }
    const QString word = benchProseWord(19'000);
    const TVLCollectionMetaData collection = searchFor(word, TVL::ExactOperator);
    qsizetype found = 0;
    qsizetype scanned = 0;
    measureAgainst(
        state, {"rg -i over a file of each text, on the clock", texts.bytes(), ScanTarget},
        [&] { return clockSeconds([&] { found = texts.index()->indexes(collection).size(); }); },
        [&] {
            return clockSeconds([&] {
                QProcess process;
                process.start(
                    program, {u"-i"_s, u"-F"_s, u"-l"_s, u"--no-config"_s, word, directory.path()});
                process.waitForFinished();
                scanned = process.readAllStandardOutput().count('\n');
            });
        });
    if (found != scanned)
        state.SkipWithError("the search and rg disagree");
}

/** Labels of many items, by a pass over the items that knows which label it wants. */
void searchLabels(benchmark::State &state, int items)
{
    TestSearchedProject project;
    TVLSearchIndex index(&project);
    for (int label = 0; label < 10; ++label)
        index.addLabel(label, u"Label %1"_s.arg(label), QColor());
    for (int id = 0; id < items; ++id) {
        TVLProjectNode *node = project.addNode(id, u"Item"_s);
        node->mLabelId = id % 10;
        index.addProjectNode(node);
    }
    QSet<int> found;
    QSet<int> scanned;
    measureAgainst(
        state, {"a pass over the nodes that puts the ids of one label into a QSet"},
        [&] {
            return processorSeconds(
                [&] { found = index.searchIntProperties({u"label 7"_s}, 0, TVL::LabelProperty); });
        },
        [&] {
            return processorSeconds([&] {
                scanned.clear();
                for (const TVLProjectNode *node : project.nodes()) {
                    if (node->mLabelId == 7)
                        scanned.insert(node->mId);
                }
            });
        });
    if (found != scanned)
        state.SkipWithError("the search and the pass disagree");
}

// --- Opening and saving

/** A project with a whole file of search indexes, as it is when it is about to be opened. */
class ClosedProject
{
public:
    explicit ClosedProject(int items)
    {
        const QStringList texts = makeBenchProse(items, FileBytes);
        TVLSearchIndex index(&mProject);
        index.transaction();
        for (int id = 0; id < items; ++id) {
            const TVLProjectNode *node = mProject.addNode(id, u"Item %1"_s.arg(id));
            index.addProjectNode(node);
            index.updatePropertyNode(node, TVL::TextProperty, texts.at(id), true);
            index.updatePropertyNode(node, TVL::SynopsisProperty, texts.at(id).left(80), true);
            index.updatePropertyNode(node, TVL::CustomMetaDataProperty, u"one two"_s, true);
        }
        index.save();
        mFile = mProject.readIndex();
    }

    [[nodiscard]] TestSearchedProject *project() { return &mProject; }
    [[nodiscard]] const QByteArray &file() const { return mFile; }

    /** An index that has the items, but none of their texts. */
    [[nodiscard]] std::unique_ptr<TVLSearchIndex> addedIndex()
    {
        auto index = std::make_unique<TVLSearchIndex>(&mProject);
        index->transaction();
        for (const TVLProjectNode *node : mProject.nodes())
            index->addProjectNode(node);
        index->commit();
        return index;
    }

private:
    TestSearchedProject mProject;
    QByteArray mFile;
};

/** Each is made once, as that takes longer than what is measured. */
ClosedProject &closedProject(int items)
{
    static std::map<int, std::unique_ptr<ClosedProject>> projects;
    std::unique_ptr<ClosedProject> &project = projects[items];
    if (!project)
        project = std::make_unique<ClosedProject>(items);
    return *project;
}

void add(benchmark::State &state, int items)
{
    ClosedProject &project = closedProject(items);
    measureAgainst(
        state, {"the same rows by bare prepared queries in a transaction"},
        [&] { return processorSeconds([&] { (void)project.addedIndex(); }); },
        [&] {
            return processorSeconds([&] {
                TVLSearchIndex target;
                target.transaction();
                QSqlQuery texts(target);
                texts.prepare(u"INSERT INTO DocumentSearchProperties VALUES (?, ?, ?, ?)"_s);
                QSqlQuery ints(target);
                ints.prepare(u"INSERT INTO DocumentIntProperties VALUES (?, ?, ?)"_s);
                for (int id = 0; id < items; ++id) {
                    for (const int type : {1, 2, 3, 4, 8, 9}) {
                        texts.bindValue(0, id);
                        texts.bindValue(1, type);
                        texts.bindValue(2, u"Item"_s);
                        texts.bindValue(3, 0);
                        texts.exec();
                    }
                    for (const int type : {6, 7}) {
                        ints.bindValue(0, id);
                        ints.bindValue(1, type);
                        ints.bindValue(2, -1);
                        ints.exec();
                    }
                }
                target.commit();
            });
        });
}

/** The file is read by @p read, which makes what it needs and tells how long the reading took. */
void loadBy(benchmark::State &state, int items, const std::function<double(ClosedProject &)> &read)
{
    ClosedProject &project = closedProject(items);
    bool ok = true;
    measureAgainst(
        state,
        {"bare QXmlStreamReader pass over the file", double(project.file().size()), FileTarget},
        [&] { return read(project); },
        [&] {
            return processorSeconds([&] {
                QFile file(project.project()->indexPath());
                ok = file.open(QIODevice::ReadOnly) && ok;
                QXmlStreamReader reader(&file);
                while (!reader.atEnd())
                    reader.readNext();
            });
        });
    if (!ok)
        state.SkipWithError("the file could not be read");
}

/** As a project is opened: with the rows of all items. */
void load(benchmark::State &state, int items)
{
    loadBy(state, items, [](ClosedProject &project) {
        const QList<TVLProjectNode *> &nodes = project.project()->nodes();
        TVLSearchIndex index(project.project());
        return processorSeconds([&] {
            if (!index.fill({nodes.begin(), nodes.end()}))
                qFatal("the file could not be read");
        });
    });
}

/** Into rows that are there. */
void loadAgain(benchmark::State &state, int items)
{
    loadBy(state, items, [](ClosedProject &project) {
        const std::unique_ptr<TVLSearchIndex> index = project.addedIndex();
        return processorSeconds([&] {
            if (!index->load())
                qFatal("the file could not be read");
        });
    });
}

void save(benchmark::State &state, int items)
{
    ClosedProject &project = closedProject(items);
    const std::unique_ptr<TVLSearchIndex> index = project.addedIndex();
    bool ok = index->load();
    const XmlTokens tokens(project.file());
    measureAgainst(
        state,
        {"bare QXmlStreamWriter pass, same bytes", double(project.file().size()), FileTarget},
        [&] { return processorSeconds([&] { index->save(); }); },
        [&] {
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            const double time = processorSeconds([&] {
                QXmlStreamWriter writer(&buffer);
                writer.setAutoFormatting(true);
                tokens.write(&writer);
            });
            ok = ok && buffer.data() == project.file();
            return time;
        });
    if (!ok || project.project()->readIndex() != project.file())
        state.SkipWithError("the files differ");
}

void growth(benchmark::State &state, int items)
{
    ClosedProject &project = closedProject(items);
    ClosedProject &smallProject = closedProject(items / 10);
    const auto timedOpening = [](ClosedProject *opened) {
        return [=] {
            return processorSeconds([&] {
                const std::unique_ptr<TVLSearchIndex> index = opened->addedIndex();
                (void)index->load();
                index->save();
            });
        };
    };
    measureAgainst(state, {"the same of a tenth of the items", 0, GrowthTarget, "growth"},
                   timedOpening(&project), timedOpening(&smallProject));
}

// --- Memory

/** The memory that opening leaves taken, or that saving takes at its peak, by the file's size. */
void memoryOf(benchmark::State &state, int items, bool isSaved)
{
    ClosedProject &project = closedProject(items);
    double bytes = 0;
    for ([[maybe_unused]] auto round : state) {
        const double before = benchMemory();
        const std::unique_ptr<TVLSearchIndex> index = project.addedIndex();
        double time = processorSeconds([&] { (void)index->load(); });
        const double loaded = benchMemory();
        resetBenchPeakMemory();
        if (isSaved)
            time = processorSeconds([&] { index->save(); });
        bytes = isSaved ? benchPeakMemory() - loaded : loaded - before;
        state.SetIterationTime(time);
        state.counters["median_ms"] = time * 1000;
    }
    state.SetLabel("the size of the file, by memory");
    state.counters["memory_MB"] = bytes / 1e6;
    state.counters["ratio"] = bytes / double(project.file().size());
}

} // namespace

void registerBenchmarks()
{
    for (const SearchRow &row : Searches)
        registerRatio(row.name, 11, [&row](benchmark::State &state) { search(state, row); });
    const QString rare = benchProseWord(19'000);
    registerRatio("RegExp_words", 5, [=](benchmark::State &state) {
        searchExpression(state, rare + u'|' + benchProseWord(19'001), ExpressionTarget);
    });
    registerRatio("RegExp_classes", 5, [](benchmark::State &state) {
        searchExpression(state, u"[xz][a-c]+q"_s, ExpressionTarget);
    });
    // Settled by the first character of a text; what is measured is how the texts are come by.
    registerRatio("RegExp_start", 5,
                  [](benchmark::State &state) { searchExpression(state, u"^Z.*x$"_s, {}); });
    registerRatio("Exact_again", 21, searchAgain);
    registerRatio("Exact_against_rg", 11, searchAgainstRipgrep);

    const std::pair<int, int> sizesAndRounds[] = {{1'000, 11}, {10'000, 5}, {100'000, 3}};
    const std::pair<const char *, void (*)(benchmark::State &, int)> rows[] = {
        {"search_labels", searchLabels},
        {"add_items", add},
        {"load", load},
        {"load_again", loadAgain},
        {"save", save}};
    for (const auto &[name, run] : rows) {
        for (const auto &[items, rounds] : sizesAndRounds)
            registerRatio(
                std::string(name) + '/' + std::to_string(items), rounds,
                [run = run, items = items](benchmark::State &state) { run(state, items); });
    }
    for (const int items : {10'000, 100'000})
        registerRatio("open_and_save_growth/" + std::to_string(items), 3,
                      [items](benchmark::State &state) { growth(state, items); });
    for (const int items : {10'000, 100'000}) {
        registerRatio("load_memory/" + std::to_string(items), 1,
                      [items](benchmark::State &state) { memoryOf(state, items, false); });
        registerRatio("save_memory/" + std::to_string(items), 1,
                      [items](benchmark::State &state) { memoryOf(state, items, true); });
    }
}
