/*
 * What an application does with a project, from opening it to closing it:
 *
 *     example_book PROJECT.tavel
 *
 * It puts the last three chapters of the book into a folder of their own, takes a snapshot of the
 * very last one, writes a line under it and saves the project.
 */
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QFileInfo>
#include <QTextCursor>
#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int LastChapters = 3;

void say(const QString &text)
{
    QTextStream(stdout) << text << Qt::endl;
}

int fail(const QString &text)
{
    QTextStream(stderr) << "example_book: " << text << Qt::endl;
    return 1;
}

/** The last folder that stands right in the Draft; an invalid index for none. */
QModelIndex lastFolder(const TVLProjectModel &model)
{
    const QModelIndex draft = model.draftFolder();
    for (int row = model.rowCount(draft) - 1; row >= 0; --row) {
        const QModelIndex index = model.index(row, 0, draft);
        if (model.type(index) == TVL::Folder)
            return index;
    }
    return {};
}

/** The last chapters of a folder, in their order. */
QModelIndexList lastChapters(const TVLProjectModel &model, const QModelIndex &folder)
{
    QModelIndexList chapters;
    const int count = model.rowCount(folder);
    for (int row = qMax(0, count - LastChapters); row < count; ++row)
        chapters.append(model.index(row, 0, folder));
    return chapters;
}

/** Moves chapters to a new folder at the end of the Draft. */
bool moveToNewFolder(TVLProjectModel *model, const QModelIndexList &chapters, const QString &title)
{
    const int atEnd = -1;
    const QModelIndex folder = model->insertUserFolder(atEnd, model->draftFolder(), title);
    return model->moveToFolder(folder, chapters, atEnd);
}

/** Whether a chapter's text can be written. */
bool canWrite(const TVLProjectModel &model, const QModelIndex &chapter)
{
    // The text comes into memory and stays there until the reference is given back.
    TVLTextDocument *text = model.referenceText(chapter);
    // A text whose file can't be read is shown as far as it goes, and never written.
    const bool result = text && !text->isReadOnly();
    model.dereferenceItem(text);
    return result;
}

/** Writes a line at the end of a chapter's text, as an editor would. */
void appendLine(TVLProjectModel *model, const QModelIndex &chapter, const QString &line)
{
    TVLTextDocument *text = model->referenceText(chapter);
    QTextCursor cursor(text);
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock();
    cursor.insertText(line);
    model->dereferenceItem(text);
}

/** The work on an open project; empty, or what went wrong. */
QString workOn(TVLProjectModel *model)
{
    const QModelIndexList chapters = lastChapters(*model, lastFolder(*model));
    if (chapters.isEmpty())
        return u"the Draft has no folder with chapters"_s;
    // Rows shift when items move; a persistent index goes along with its item.
    const QPersistentModelIndex last(chapters.constLast());

    if (!moveToNewFolder(model, chapters, u"The End"_s))
        return u"the chapters can't be moved"_s;
    say(u"Moved the last chapters to the new folder 'The End': %1"_s.arg(chapters.size()));

    if (!canWrite(*model, last))
        return u"the chapter can't be written"_s;
    if (!model->addSnapshot(last, u"Before the last line"_s))
        return u"the snapshot can't be taken"_s;
    say(u"Took a snapshot of '%1'"_s.arg(model->title(last)));

    appendLine(model, last, u"THE END"_s);
    say(u"Wrote THE END under it"_s);
    return model->save() ? QString() : u"the project can't be saved"_s;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // Nobody watches this program: a box that says what went wrong must not wait for an answer.
    const TVLUnattendedMessageBoxes boxes;
    QObject::connect(&boxes, &TVLUnattendedMessageBoxes::answered,
                     [](const auto &box) { QTextStream(stderr) << box.text << Qt::endl; });

    const QStringList arguments = QCoreApplication::arguments();
    // Opening a folder that isn't there would begin a new project.
    if (arguments.size() != 2 || !QFileInfo::exists(arguments.at(1)))
        return fail(u"give a project that exists"_s);
    const QString &path = arguments.at(1);

    // One program at a time: the lock says who has the project open.
    if (!TVLProjectFolderFormat::addLock(path))
        return fail(u"'%1' is locked or can't be"_s.arg(path));
    const std::unique_ptr<TVLProjectModel> model(TVLProjectFolderFormat::openProject(path));
    if (!model) {
        TVLProjectFolderFormat::removeLock(path);
        return fail(u"'%1' can't be read"_s.arg(path));
    }
    const QString error = workOn(model.get());
    // Saves what isn't saved yet, and removes the lock.
    model->prepareToDestroy();
    return error.isEmpty() ? 0 : fail(error);
}
