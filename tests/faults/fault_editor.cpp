// The victim of the tests that kill an edit. `fault_editor PROJECT EDIT` opens a project, prints
// "ready", does the edit and the save that follows it, prints "done" and waits to be killed.
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"

#include <QApplication>

#include <cstdio>
#include <memory>

namespace {

QModelIndexList childrenOf(const TVLProjectModel &model, const QModelIndex &parent)
{
    QModelIndexList children;
    for (int row = 0; row < model.rowCount(parent); ++row)
        children.append(model.index(row, 0, parent));
    return children;
}

bool emptyTrash(TVLProjectModel *model)
{
    return model->emptyTrash();
}

/** Merges all in the Draft into the first. */
bool merge(TVLProjectModel *model)
{
    return model->mergeIndexes(childrenOf(*model, model->draftFolder())).isValid() && model->save();
}

/** Removes all in the Research folder, one after another. */
bool remove(TVLProjectModel *model)
{
    const QPersistentModelIndex research = model->researchFolder();
    bool ok = true;
    while (ok && model->hasChildren(research))
        ok = model->removeIndex(model->index(0, 0, research));
    return ok;
}

struct Edit
{
    const char *name;
    bool (*run)(TVLProjectModel *);
};

constexpr Edit Edits[] = {{"emptyTrash", emptyTrash}, {"merge", merge}, {"remove", remove}};

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectFolderFormat::openProject(QString::fromLocal8Bit(argv[1])));
    if (!model || argc < 3)
        return 1;
    for (const Edit &edit : Edits) {
        if (QByteArray(argv[2]) != edit.name)
            continue;
        say("ready");
        if (!edit.run(model.get()))
            return 2;
        say("done");
        std::getchar();
        return 0;
    }
    return 3;
}
