#include "BenchMain.h"
#include "RatioMeter.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QColor>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Ten times the items may cost ten times the time and what the caches no longer hold.
constexpr double GrowthTarget = 13;
// Each item gets the time of the change; on small projects the store of the labels weighs most.
constexpr double RenamingTarget = 20;
constexpr int Labels = 1'000;

using Target = std::optional<double>;

/** A project in memory whose items share the labels out among themselves. */
class LabelledProject
{
public:
    explicit LabelledProject(int items)
        : mModel(TVLProjectModel::createBlankProjectInMemory(mDirectory.filePath(u"Novel.tavel"_s)))
    {
        mModel->setLabels(labels());
        if (!mModel->insertRows(0, items, mModel->researchFolder()))
            qFatal("the items could not be made");
        int number = 0;
        tvlForEachNode(mModel->binderRoot(),
                       [&number](TVLProjectNode *node) { node->mLabelId = number++ % Labels; });
        QObject::connect(mModel.get(), &TVLProjectModel::dataChanged, mModel.get(),
                         [this] { ++mAnnounced; });
    }

    /** Every label with a title that it didn't have before. */
    [[nodiscard]] QList<TVLLabel> labels()
    {
        ++mPass;
        QList<TVLLabel> labels = {{-1, u"No Label"_s, QColor()}};
        for (int id = 0; id < Labels; ++id)
            labels.append(
                {id, u"Label %1 of pass %2"_s.arg(id).arg(mPass), QColor(id % 256, 1, 2)});
        return labels;
    }
    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    [[nodiscard]] int takeAnnounced() { return std::exchange(mAnnounced, 0); }

private:
    QTemporaryDir mDirectory;
    std::unique_ptr<TVLProjectModel> mModel;
    int mPass = 0;
    int mAnnounced = 0;
};

/** The seconds that it takes to rename all labels, which every item has one of. */
TimedWork timedRenaming(LabelledProject *project, bool *ok)
{
    return [=] {
        const QList<TVLLabel> labels = project->labels();
        const double time = processorSeconds([&] { project->model()->setLabels(labels); });
        *ok = project->takeAnnounced() == project->model()->totalNodesCount() && *ok;
        return time;
    };
}

/** The seconds of a pass over the nodes and of telling that as many items have changed. */
TimedWork timedBareAnnouncements(LabelledProject *project, bool *ok)
{
    return [=] {
        TVLProjectModel *model = project->model();
        const QModelIndex index = model->draftFolder();
        const double time = processorSeconds([&] {
            int changed = 0;
            const TVLProjectNode *root = model->binderRoot();
            for (const TVLProjectNode *node = root->nextInPreOrder(root); node;
                 node = node->nextInPreOrder(root))
                changed += node->mLabelId >= 0 ? 1 : 0;
            for (int i = 0; i < changed; ++i)
                Q_EMIT model->dataChanged(index, index);
        });
        *ok = project->takeAnnounced() == model->totalNodesCount() && *ok;
        return time;
    };
}

void renameLabels(benchmark::State &state, int items, Target target)
{
    LabelledProject project(items);
    bool ok = true;
    measureAgainst(state, {"bare pass over the nodes, and dataChanged of each", 0, target},
                   timedRenaming(&project, &ok), timedBareAnnouncements(&project, &ok));
    if (!ok)
        state.SkipWithError("not every item was announced once");
}

void renameLabelsGrowth(benchmark::State &state, int items, Target target)
{
    LabelledProject project(items);
    LabelledProject smaller(items / 10);
    bool ok = true;
    measureAgainst(state, {"a tenth of the items", 0, target, "growth"},
                   timedRenaming(&project, &ok), timedRenaming(&smaller, &ok));
    if (!ok)
        state.SkipWithError("not every item was announced once");
}

} // namespace

void registerBenchmarks()
{
    struct Row
    {
        const char *name;
        void (*run)(benchmark::State &, int, Target);
        int items;
        Target target;
    };
    constexpr int Rounds = 11;
    const Row rows[] = {
        {"setLabels", renameLabels, 1'000, {}},
        {"setLabels", renameLabels, 10'000, {}},
        {"setLabels", renameLabels, 100'000, RenamingTarget},
        {"setLabels_growth", renameLabelsGrowth, 10'000, {}},
        {"setLabels_growth", renameLabelsGrowth, 100'000, GrowthTarget},
    };
    for (const Row &row : rows)
        registerRatio(row.name + ('/' + std::to_string(row.items)), Rounds,
                      [row](benchmark::State &state) { row.run(state, row.items, row.target); });
}
