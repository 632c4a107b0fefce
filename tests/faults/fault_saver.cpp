// The victim of the kill tests: opens a project and saves it for ever. The n-th save gives every
// item the title "Save n", and its number is printed once the save has returned.
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"

#include <QApplication>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectFolderFormat::openProject(QString::fromLocal8Bit(argv[1])));
    if (!model)
        return 1;
    const QModelIndex draft = model->draftFolder();
    const int items = model->rowCount(draft);
    int save = model->title(model->index(0, 0, draft)).section(u' ', 1).toInt();
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        ++save;
        const QString title = QStringLiteral("Save %1").arg(save);
        for (int row = 0; row < items; ++row)
            model->setTitle(model->index(row, 0, draft), title);
        if (!model->save())
            return 2;
        std::printf("%d\n", save);
        std::fflush(stdout);
    }
}
