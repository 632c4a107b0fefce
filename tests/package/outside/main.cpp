// A program that knows the library only from its installed headers: makes a project, saves it,
// opens it again and compares.
#include <TVLProjectFolderFormat.h>
#include <TVLProjectModel.h>

#include <QApplication>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QString path = QString::fromLocal8Bit(argv[1]);

    const std::unique_ptr<TVLProjectModel> model(TVLProjectModel::createBlankProjectInMemory(path));
    const QModelIndex chapter = model->index(0, 0, model->draftFolder());
    model->setTitle(chapter, QStringLiteral("Chapter One"));
    if (!model->save(true))
        return 1;
    model->prepareToDestroy();

    const std::unique_ptr<TVLProjectModel> reopened(TVLProjectFolderFormat::openProject(path));
    if (!reopened)
        return 2;
    const QString title = reopened->title(reopened->index(0, 0, reopened->draftFolder()));
    std::printf("%s\n", qPrintable(title));
    return title == QStringLiteral("Chapter One") ? 0 : 3;
}
