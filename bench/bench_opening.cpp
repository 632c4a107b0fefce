#include "BenchMain.h"
#include "BenchMemory.h"
#include "BenchProject.h"
#include "RatioMeter.h"

#include "TVLBinderContents.h"
#include "TVLCollectionMetaData.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QFile>
#include <QXmlStreamReader>

#include <map>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int TextBytes = 500;
constexpr double GrowthTarget = 13;
constexpr int LargeProject = 100'000; ///< To which the targets are.
constexpr double TargetWithoutTexts = 2.5;
constexpr double TargetWithTexts = 3.0;

/** Each is made once, as that takes longer than what is measured. */
const BenchProject &projectWithTexts(int items)
{
    static std::map<int, std::unique_ptr<BenchProject>> projects;
    std::unique_ptr<BenchProject> &project = projects[items];
    if (!project) {
        project = std::make_unique<BenchProject>(items, BenchShape::Nested);
        project->addTexts(TextBytes);
    }
    return *project;
}

QStringList xmlFilesOf(const BenchProject &project)
{
    QStringList paths = {project.binderPath()};
    const QString indexPath = TVLProjectFolderFormat::searchIndexesFilePath(project.path());
    if (QFile::exists(indexPath))
        paths.append(indexPath);
    return paths;
}

double bytesOf(const QStringList &paths)
{
    double bytes = 0;
    for (const QString &path : paths)
        bytes += double(QFile(path).size());
    return bytes;
}

/** The least that reading files as XML takes. */
void readBare(const QStringList &paths)
{
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s", qPrintable(file.errorString()));
        QXmlStreamReader reader(&file);
        while (!reader.atEnd())
            reader.readNext();
    }
}

TimedWork timedOpening(const BenchProject *project, int items, bool *ok)
{
    return [=] {
        std::unique_ptr<TVLProjectModel> model;
        const double time = processorSeconds([&] { model = project->open(); });
        *ok = *ok && model && model->totalNodesCount() == items;
        return time;
    };
}

void open(benchmark::State &state, const BenchProject &project, int items,
          const std::string &against, double target)
{
    const QStringList paths = xmlFilesOf(project);
    bool ok = true;
    const std::optional<double> targetOfSize =
        items == LargeProject ? std::optional(target) : std::nullopt;
    measureAgainst(state, {against, bytesOf(paths), targetOfSize},
                   timedOpening(&project, items, &ok),
                   [&] { return processorSeconds([&] { readBare(paths); }); });
    if (!ok)
        state.SkipWithError("the project could not be opened");
}

void openWithoutTexts(benchmark::State &state, int items, BenchShape shape)
{
    open(state, BenchProject(items, shape), items, "bare QXmlStreamReader pass over the binder",
         TargetWithoutTexts);
}

void openWithTexts(benchmark::State &state, int items)
{
    open(state, projectWithTexts(items), items,
         "bare QXmlStreamReader pass over the binder and search.indexes", TargetWithTexts);
}

void growth(benchmark::State &state, int items)
{
    bool ok = true;
    measureAgainst(state, {"the same of a tenth of the items", 0, GrowthTarget, "growth"},
                   timedOpening(&projectWithTexts(items), items, &ok),
                   timedOpening(&projectWithTexts(items / 10), items / 10, &ok));
    if (!ok)
        state.SkipWithError("the project could not be opened");
}

/** What it takes to read one text of a project, by reading its binder alone. */
void readOneText(benchmark::State &state, int items)
{
    constexpr double Target = 1.3;
    const BenchProject &project = projectWithTexts(items);
    bool ok = true;
    const auto readText = [&] {
        const std::unique_ptr<TVLProjectModel> model(TVLProjectFolderFormat::openProjectToRead(
            project.path(), TVLProjectFolderFormat::ItemsAlone));
        TVLProjectNode *node = model ? model->findNode(items / 2) : nullptr;
        TVLTextDocument text(nullptr, nullptr, node, TVL::MainText);
        QString error;
        ok =
            ok && node && TVLProjectFolderFormat::readDocument(project.path(), node, &text, &error);
    };
    const auto readBinder = [&] {
        TVLBinderContents binder;
        ok = ok && binder.read(project.binderPath()).isEmpty();
    };
    measureAgainst(
        state, {"TVLBinderReader over the binder", bytesOf({project.binderPath()}), Target},
        [&] { return processorSeconds(readText); }, [&] { return processorSeconds(readBinder); });
    if (!ok)
        state.SkipWithError("the text could not be read");
}

/** The first search of a session, to which nothing is new, by a later one. */
void searchFirst(benchmark::State &state, int items)
{
    const BenchProject &project = projectWithTexts(items);
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = u"no such words"_s;
    std::unique_ptr<TVLProjectModel> model;
    const auto timedSearch = [&] {
        return processorSeconds([&] { (void)model->collectionIndexes(search, {}); });
    };
    measureAgainst(
        state, {"the next search"},
        [&] {
            model = project.open();
            return timedSearch();
        },
        timedSearch);
}

/** What an open project has taken of the memory, by the size of the files that it was read from. */
void memoryOf(benchmark::State &state, int items)
{
    const BenchProject &project = projectWithTexts(items);
    double bytes = 0;
    for ([[maybe_unused]] auto round : state) {
        const double before = benchMemory();
        std::unique_ptr<TVLProjectModel> model;
        const double time = processorSeconds([&] { model = project.open(); });
        bytes = benchMemory() - before;
        state.SetIterationTime(time);
        state.counters["median_ms"] = time * 1000;
    }
    state.SetLabel("the size of binder and search.indexes, by memory");
    state.counters["memory_MB"] = bytes / 1e6;
    state.counters["ratio"] = bytes / bytesOf(xmlFilesOf(project));
}

} // namespace

void registerBenchmarks()
{
    const std::pair<int, int> sizesAndRounds[] = {{1'000, 31}, {10'000, 11}, {100'000, 5}};
    for (const BenchShape shape : {BenchShape::Nested, BenchShape::Flat}) {
        for (const auto &[items, rounds] : sizesAndRounds)
            registerRatio(benchName("openProject", shape, items), rounds,
                          [items = items, shape](benchmark::State &state) {
                              openWithoutTexts(state, items, shape);
                          });
    }
    // Memory first, while there is no memory to be used again.
    for (const int items : {10'000, 100'000})
        registerRatio("openProject_with_texts_memory/" + std::to_string(items), 1,
                      [items](benchmark::State &state) { memoryOf(state, items); });
    for (const auto &[items, rounds] : sizesAndRounds)
        registerRatio("openProject_with_texts/" + std::to_string(items), std::min(rounds, 11),
                      [items = items](benchmark::State &state) { openWithTexts(state, items); });
    for (const int items : {10'000, 100'000})
        registerRatio("openProject_with_texts_growth/" + std::to_string(items), 3,
                      [items](benchmark::State &state) { growth(state, items); });
    for (const auto &[items, rounds] : sizesAndRounds)
        registerRatio("read_one_text/" + std::to_string(items), rounds,
                      [items = items](benchmark::State &state) { readOneText(state, items); });
    registerRatio("first_search/10000", 5,
                  [](benchmark::State &state) { searchFirst(state, 10'000); });
}
