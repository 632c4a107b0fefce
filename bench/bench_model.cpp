#include "BenchItems.h"
#include "BenchMain.h"
#include "BenchProject.h"
#include "RatioMeter.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

namespace {

// Ten times the siblings may cost ten times the time and what the caches no longer hold.
constexpr double WalkGrowthTarget = 13;
constexpr int ManyItems = 100'000;
constexpr int FewerItems = ManyItems / 10;

/** A way through all items of a model; returns how many it came by. */
using Walk = int (*)(const TVLProjectModel &);

int walkForward(const TVLProjectModel &model)
{
    const QModelIndex first = model.index(0, 0);
    int count = 0;
    QModelIndex index = first;
    do {
        ++count;
        index = model.nextIndex(index);
    } while (index != first);
    return count;
}

int walkBackward(const TVLProjectModel &model)
{
    const QModelIndex first = model.index(0, 0);
    int count = 0;
    QModelIndex index = first;
    do {
        ++count;
        index = model.previousIndex(index);
    } while (index != first);
    return count;
}

int listUuids(const TVLProjectModel &model)
{
    return int(model.uuidsListBinderOrder().size());
}

/** The least that any walk does: touches every node and copies its uuid. */
int walkBare(const TVLProjectModel &model)
{
    QList<QUuid> uuids;
    QList<const TVLProjectNode *> waiting = {model.binderRoot()};
    while (!waiting.isEmpty()) {
        const TVLProjectNode *node = waiting.takeLast();
        uuids.append(node->mUuid);
        for (auto child = node->mChildren.crbegin(); child != node->mChildren.crend(); ++child)
            waiting.append(*child);
    }
    return int(uuids.size()) - 1;
}

struct WalkRow
{
    const char *name;
    Walk walk;
};

constexpr WalkRow Walks[] = {
    {"nextIndex_walk", walkForward},
    {"previousIndex_walk", walkBackward},
    {"uuidsListBinderOrder", listUuids},
};

/** The seconds of one walk; small models are walked often enough to be measured well. */
TimedWork timedWalk(Walk walk, const TVLProjectModel *model, int items, bool *ok)
{
    return [=] {
        const int times = std::max(1, 3 * ManyItems / items);
        const double time = processorSeconds([&] {
            for (int i = 0; i < times; ++i)
                *ok = walk(*model) == items && *ok;
        });
        return time / times;
    };
}

void walk(benchmark::State &state, Walk walk, int items, BenchShape shape)
{
    const std::unique_ptr<TVLProjectModel> model = BenchProject(items, shape).open();
    bool ok = true;
    measureAgainst(state, {"bare pass over the nodes"}, timedWalk(walk, model.get(), items, &ok),
                   timedWalk(walkBare, model.get(), items, &ok));
    if (!ok)
        state.SkipWithError("the walk missed items");
}

/**
 * How much longer a walk takes through ten times the items. Both walks find cold caches: a project
 * of a tenth of the size fits into them, and what would be measured is how large they are.
 */
void growth(benchmark::State &state, Walk walk, BenchShape shape)
{
    const std::unique_ptr<TVLProjectModel> model = BenchProject(ManyItems, shape).open();
    const std::unique_ptr<TVLProjectModel> smallModel = BenchProject(FewerItems, shape).open();
    bool ok = true;
    const auto timedColdWalk = [&](const TVLProjectModel *walked, int items) {
        return [&ok, walk, walked, items, evictor = model.get()] {
            ok = walkBare(*evictor) == ManyItems && ok;
            return processorSeconds([&] { ok = walk(*walked) == items && ok; });
        };
    };
    measureAgainst(state, {"the same over a tenth of the items", 0, WalkGrowthTarget, "growth"},
                   timedColdWalk(model.get(), ManyItems),
                   timedColdWalk(smallModel.get(), FewerItems));
    if (!ok)
        state.SkipWithError("the walk missed items");
}

} // namespace

void registerBenchmarks()
{
    constexpr int WalkRounds = 31;
    for (const WalkRow &row : Walks) {
        for (const BenchShape shape : {BenchShape::Nested, BenchShape::Flat}) {
            for (const int items : {1'000, FewerItems, ManyItems})
                registerRatio(benchName(row.name, shape, items), WalkRounds,
                              [&row, items, shape](benchmark::State &state) {
                                  walk(state, row.walk, items, shape);
                              });
            registerRatio(
                benchName(row.name + std::string("_growth"), shape, ManyItems), WalkRounds,
                [&row, shape](benchmark::State &state) { growth(state, row.walk, shape); });
        }
    }
}
