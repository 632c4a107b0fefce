// The victim of the kill tests: opens a project and saves it for ever. The n-th save gives every
// item of the Draft the title "Save n" or, with `texts` as second argument, the first one a text of
// lines "Save n"; its number is printed once the save has returned.
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLTextDocument.h"

#include <QApplication>
#include <QTextCursor>

#include <cstdio>
#include <memory>

namespace {

constexpr int TextLines = 3000;

void setTitles(TVLProjectModel *model, const QString &title)
{
    const QModelIndex draft = model->draftFolder();
    for (int row = model->rowCount(draft) - 1; row >= 0; --row)
        model->setTitle(model->index(row, 0, draft), title);
}

void setText(TVLProjectModel *model, const QString &line)
{
    const QModelIndex index = model->index(0, 0, model->draftFolder());
    TVLTextDocument *document = model->referenceText(index);
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    cursor.insertText((line + u'\n').repeated(TextLines).chopped(1));
    document->clearUndoRedoStacks();
    model->dereferenceItem(document);
    model->setTitle(index, line);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectFolderFormat::openProject(QString::fromLocal8Bit(argv[1])));
    if (!model)
        return 1;
    const bool hasTexts = argc > 2;
    int save = model->title(model->index(0, 0, model->draftFolder())).section(u' ', 1).toInt();
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        ++save;
        const QString text = QStringLiteral("Save %1").arg(save);
        if (hasTexts)
            setText(model.get(), text);
        else
            setTitles(model.get(), text);
        if (!model->save())
            return 2;
        // Whoever was to kill this process may have been killed itself.
        if (std::printf("%d\n", save) < 0 || std::fflush(stdout) != 0)
            return 3;
    }
}
