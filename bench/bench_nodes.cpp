#include "BenchMain.h"
#include "RatioMeter.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"
#include "TVLTextRtfWriter.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// Ten times the items may cost ten times the time and what the caches no longer hold.
constexpr double GrowthTarget = 13;
constexpr int MovedItems = 1'000;
constexpr int WordsPerText = 300;

using Nodes = QList<TVLProjectNode *>;
using Target = std::optional<double>;

/** A project on disk whose Research folder holds one folder, the place of all that is measured. */
class NodesProject
{
public:
    explicit NodesProject(int items)
        : mModel(TVLProjectModel::createBlankProjectInMemory(mDirectory.filePath(u"Novel.tavel"_s)))
    {
        mModel->saveAll(true);
        TVLProjectFolderFormat::docsDirectory(mModel->path().absolutePath());
        mPlace = mModel->createNewFolder(0, mModel->researchFolder());
        insertItems(items);
    }

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    [[nodiscard]] QModelIndex place() const { return mPlace; }
    [[nodiscard]] Nodes items() const { return mModel->projectNode(mPlace)->mChildren; }
    [[nodiscard]] QModelIndexList indexes() const { return indexesOf(items()); }
    [[nodiscard]] QModelIndexList indexesOf(const Nodes &nodes) const
    {
        QModelIndexList indexes;
        indexes.reserve(nodes.size());
        for (const TVLProjectNode *node : nodes)
            indexes.append(mModel->createIndex(node));
        return indexes;
    }
    [[nodiscard]] QString fileOf(int id) const
    {
        return TVLProjectFolderFormat::filesDocsNodeTypeFilePath(mModel->path().absolutePath(), id,
                                                                 TVL::MainText);
    }

    void insertItems(int items) const
    {
        if (items > 0 && !mModel->insertRows(0, items, mPlace))
            qFatal("the items could not be made");
    }
    void removeItems() const { mModel->removeChildrenForIndex(mPlace); }
    /** Gives every item a text file. */
    void writeFiles() const
    {
        const Nodes nodes = items();
        for (const TVLProjectNode *node : nodes)
            writeFile(fileOf(node->mId));
    }
    static void writeFile(const QString &filePath)
    {
        static const QByteArray content = [] {
            QTextDocument document(u"word "_s.repeated(WordsPerText));
            return TVLTextRtfWriter(nullptr).toRtf(&document, false);
        }();
        QFile file(filePath);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("a text file could not be written");
    }

private:
    QTemporaryDir mDirectory;
    std::unique_ptr<TVLProjectModel> mModel;
    QPersistentModelIndex mPlace;
};

QString otherName(const QString &filePath)
{
    return filePath + u".other"_s;
}

/** Nodes in a random order, as many as are moved. */
Nodes chooseNodes(Nodes nodes, QRandomGenerator *random)
{
    const qsizetype count = std::min<qsizetype>(MovedItems, nodes.size());
    for (qsizetype i = 0; i < count; ++i)
        nodes.swapItemsAt(i, i + random->bounded(int(nodes.size() - i)));
    return nodes.first(count);
}

// --- Moving

struct Move
{
    qsizetype from;
    qsizetype to; ///< When it has been taken out.
};

/** What has to be done to a bare list to bring nodes to a row, one after another. */
QList<Move> movesToRow(Nodes list, const Nodes &nodes, qsizetype row)
{
    QList<Move> moves;
    for (TVLProjectNode *node : nodes) {
        const qsizetype from = list.indexOf(node);
        const qsizetype to = from < row ? row - 1 : row;
        list.move(from, to);
        moves.append({from, to});
        row = to + 1;
    }
    return moves;
}

enum class MoveForm { Nodes, Indexes };

/** The seconds of a move of random items into the middle of their siblings. */
TimedWork timedMove(const NodesProject *project, MoveForm form, QRandomGenerator *random, bool *ok)
{
    return [=] {
        const Nodes nodes = chooseNodes(project->items(), random);
        const int row = int(project->items().size()) / 2;
        TVLProjectModel *model = project->model();
        if (form == MoveForm::Nodes) {
            TVLProjectNode *target = model->projectNode(project->place());
            return processorSeconds([&] { *ok = model->moveToFolder(target, row, nodes) && *ok; });
        }
        const QModelIndexList indexes = project->indexesOf(nodes);
        return processorSeconds(
            [&] { *ok = model->moveToFolder(project->place(), indexes, row) && *ok; });
    };
}

TimedWork timedBareMove(const NodesProject *project, QRandomGenerator *random)
{
    return [=] {
        Nodes list = project->items();
        const QList<Move> moves = movesToRow(list, chooseNodes(list, random), list.size() / 2);
        return processorSeconds([&] {
            for (const Move &move : moves)
                list.insert(move.to, list.takeAt(move.from));
        });
    };
}

void moveItems(benchmark::State &state, MoveForm form, int items, Target target)
{
    const NodesProject project(items);
    QRandomGenerator random(1);
    bool ok = true;
    measureAgainst(state, {"bare QList::takeAt and insert of the same moves", 0, target},
                   timedMove(&project, form, &random, &ok), timedBareMove(&project, &random));
    if (!ok)
        state.SkipWithError("the items could not be moved");
}

// --- Copying and deleting files

void duplicateFolder(benchmark::State &state, int items, Target target)
{
    const NodesProject project(items);
    project.writeFiles();
    TVLProjectModel *model = project.model();
    bool ok = true;
    measureAgainst(
        state, {"bare QFile::copy of the same files", 0, target},
        [&] {
            QModelIndex copy;
            const double time = processorSeconds(
                [&] { copy = model->duplicate({project.place()}, true).value(0); });
            ok = ok && model->rowCount(copy) == items;
            model->removeChildrenForIndex(copy);
            model->removeIndexFromModel(copy);
            return time;
        },
        [&] {
            const Nodes nodes = project.items();
            const double time = processorSeconds([&] {
                for (const TVLProjectNode *node : nodes) {
                    const QString filePath = project.fileOf(node->mId);
                    ok = QFile::copy(filePath, otherName(filePath)) && ok;
                }
            });
            for (const TVLProjectNode *node : nodes)
                ok = QFile::remove(otherName(project.fileOf(node->mId))) && ok;
            return time;
        });
    if (!ok)
        state.SkipWithError("the folder could not be duplicated");
}

void emptyTrash(benchmark::State &state, int items, Target target)
{
    const NodesProject project(0);
    TVLProjectModel *model = project.model();
    bool ok = true;
    measureAgainst(
        state, {"bare QFile::remove of the same files", 0, target},
        [&] {
            project.insertItems(items);
            project.writeFiles();
            ok = model->moveToTrash(project.indexes()) && model->save() && ok;
            return processorSeconds([&] { ok = model->emptyTrash() && ok; });
        },
        [&] {
            QStringList filePaths;
            for (int id = items; id < 2 * items; ++id) {
                filePaths.append(project.fileOf(id));
                NodesProject::writeFile(filePaths.constLast());
            }
            return processorSeconds([&] {
                for (const QString &filePath : std::as_const(filePaths))
                    ok = QFile::remove(filePath) && ok;
            });
        });
    if (!ok)
        state.SkipWithError("the Trash could not be emptied");
}

void mergeTexts(benchmark::State &state, int items, Target target)
{
    const NodesProject project(0);
    TVLProjectModel *model = project.model();
    bool ok = true;
    const auto makeTexts = [&] {
        project.removeItems();
        project.insertItems(items);
        project.writeFiles();
    };
    measureAgainst(
        state, {"reading the same files into one QTextDocument each, and QFile::remove", 0, target},
        [&] {
            makeTexts();
            const QModelIndexList indexes = project.indexes();
            const double time =
                processorSeconds([&] { ok = model->mergeIndexes(indexes).isValid() && ok; });
            ok = ok && project.items().size() == 1;
            return time;
        },
        [&] {
            makeTexts();
            const Nodes nodes = project.items();
            return processorSeconds([&] {
                for (TVLProjectNode *node : nodes) {
                    TVLTextDocument document(nullptr, model, node, TVL::MainText);
                    QString error;
                    ok = TVLProjectFolderFormat::readDocument(model->path().absolutePath(), node,
                                                              &document, &error)
                        && QFile::remove(project.fileOf(node->mId)) && ok;
                }
            });
        });
    if (!ok)
        state.SkipWithError("the texts could not be merged");
}

// --- Titles

/** Names the items as duplicates of one: "Chapter", "Chapter-1" and so on. */
void numberTitles(const NodesProject &project)
{
    int number = 0;
    const Nodes nodes = project.items();
    for (TVLProjectNode *node : nodes) {
        node->mTitle = u"Chapter"_s;
        if (number > 0)
            node->mTitle += u'-' + QString::number(number);
        ++number;
    }
}

void findUniqueTitle(benchmark::State &state, int items, Target target)
{
    const NodesProject project(items);
    numberTitles(project);
    const QModelIndex index = project.indexes().constLast();
    const QString expected = u"Chapter-%1"_s.arg(items - 1);
    bool ok = true;
    measureAgainst(
        state, {"putting the siblings' titles into a QSet", 0, target},
        [&] {
            return processorSeconds([&] {
                ok = project.model()->findUniqueTitle(u"Chapter"_s, index) == expected && ok;
            });
        },
        [&] {
            const Nodes nodes = project.items();
            return processorSeconds([&] {
                QSet<QString> titles;
                titles.reserve(nodes.size());
                for (const TVLProjectNode *node : nodes)
                    titles.insert(node->mTitle);
                ok = titles.size() == items && ok;
            });
        });
    if (!ok)
        state.SkipWithError("the title isn't the next one");
}

/** The seconds of a duplication of all items, which have no files and one title. */
TimedWork timedDuplication(const NodesProject *project, int items, bool *ok)
{
    return [=] {
        project->removeItems();
        project->insertItems(items);
        const Nodes nodes = project->items();
        for (TVLProjectNode *node : nodes)
            node->mTitle = u"Chapter"_s;
        const QModelIndexList indexes = project->indexes();
        return processorSeconds(
            [&] { *ok = project->model()->duplicate(indexes, false).size() == items && *ok; });
    };
}

void duplicateOneTitle(benchmark::State &state, int items, Target target)
{
    const NodesProject project(0);
    const NodesProject smaller(0);
    bool ok = true;
    measureAgainst(state, {"a tenth of the siblings", 0, target, "growth"},
                   timedDuplication(&project, items, &ok),
                   timedDuplication(&smaller, items / 10, &ok));
    if (!ok)
        state.SkipWithError("the items could not be duplicated");
}

} // namespace

void registerBenchmarks()
{
    struct Row
    {
        const char *name;
        std::function<void(benchmark::State &, int, Target)> run;
        QList<int> sizes;
        double target; ///< Of the largest size: what is told of an edit weighs most on small ones.
        int rounds;
    };
    constexpr int Rounds = 11;
    constexpr int RoundsWithFiles = 3;
    const auto moveOf = [](MoveForm form) {
        return [form](benchmark::State &state, int items, Target target) {
            moveItems(state, form, items, target);
        };
    };
    const QList<int> allSizes = {1'000, 10'000, 100'000};
    const Row rows[] = {
        {"moveToFolder_nodes", moveOf(MoveForm::Nodes), allSizes, 3, Rounds},
        {"moveToFolder_indexes", moveOf(MoveForm::Indexes), allSizes, 3, Rounds},
        {"duplicate_folder", duplicateFolder, {1'000, 10'000}, 5, RoundsWithFiles},
        {"emptyTrash", emptyTrash, {1'000, 10'000}, 13, RoundsWithFiles},
        {"mergeIndexes", mergeTexts, {100, 1'000}, 10, RoundsWithFiles},
        {"findUniqueTitle", findUniqueTitle, allSizes, 4, Rounds},
        {"duplicate_growth", duplicateOneTitle, {10'000, 100'000}, GrowthTarget, RoundsWithFiles},
    };
    for (const Row &row : rows) {
        for (const int items : row.sizes) {
            const Target target =
                items == row.sizes.constLast() ? Target(row.target) : std::nullopt;
            registerRatio(row.name + ('/' + std::to_string(items)), row.rounds,
                          [run = row.run, items, target](benchmark::State &state) {
                              run(state, items, target);
                          });
        }
    }
}
