// What goes through faults beside the tool. `fault_worker PROJECT edit|merge|emptyTrash|loop` and
// `fault_worker PROJECT saveAs TARGET` open a project and do what they are called. `fault_worker
// PROJECT steps` does what it reads from its input: open, edit, save, search, close.
//
// Each step is told on a line of its own when it has come to its end: what it is, and whether the
// library says that it went well. `saved N` tells that edition N has been saved.
#include "Editions.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QTextCursor>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

namespace {

constexpr int Chapters = 3;

void tell(const QString &step, bool ok)
{
    std::printf("%s %s\n", qPrintable(step), ok ? "well" : "badly");
    std::fflush(stdout);
}

/** Somebody who has the chapters of a project open and writes new editions of them. */
class Writer
{
public:
    explicit Writer(TVLProjectModel *model);
    ~Writer();
    Q_DISABLE_COPY_MOVE(Writer)

    /** Writes the next edition of all texts, and doesn't save it. */
    void write();
    /** Saves what was written. */
    bool save();

private:
    TVLProjectModel *mModel;
    QList<TVLTextDocument *> mDocuments; ///< By chapters, and for each by EditedTypes.
    QPersistentModelIndex mEditionItem; ///< Is called by the edition.
    int mEdition = FirstEdition;
};

Writer::Writer(TVLProjectModel *model)
    : mModel(model)
    , mEditionItem(model->index(0, 0, model->researchFolder()))
{
    mEdition = model->title(mEditionItem).section(u' ', -1).toInt();
    for (int row = 0; row < Chapters; ++row) {
        for (const TVL::DocumentType type : EditedTypes)
            mDocuments.append(
                model->referenceItem(model->index(row, 0, model->draftFolder()), type));
    }
}

Writer::~Writer()
{
    for (TVLTextDocument *document : std::as_const(mDocuments))
        mModel->dereferenceItem(document);
}

void Writer::write()
{
    ++mEdition;
    auto document = mDocuments.cbegin();
    for (int row = 0; row < Chapters; ++row) {
        const QString title = mModel->title(mModel->index(row, 0, mModel->draftFolder()));
        for (const TVL::DocumentType type : EditedTypes)
            setEdition(*document++, title, type, mEdition);
    }
    const TVLProjectNotes &notes = mModel->projectNotes();
    if (!notes.isEmpty())
        notes.mNotes.constFirst().second->setPlainText(
            editionText(QStringLiteral("Note"), TVL::MainText, mEdition));
    mModel->setTitle(mEditionItem, QStringLiteral("Edition %1").arg(mEdition));
}

bool Writer::save()
{
    const bool ok = mModel->save();
    if (ok)
        tell(QStringLiteral("saved %1").arg(mEdition), true);
    return ok;
}

// --- What is done

int writeTwoEditions(TVLProjectModel *model, const QString &)
{
    {
        Writer writer(model);
        for (int i = 0; i < 2; ++i) {
            writer.write();
            writer.save();
        }
    }
    model->prepareToDestroy();
    return 0;
}

int saveForEver(TVLProjectModel *model, const QString &)
{
    Writer writer(model);
    do {
        writer.write();
    } while (writer.save());
    return 1;
}

int copyBetweenEditions(TVLProjectModel *model, const QString &target)
{
    {
        Writer writer(model);
        writer.write();
        const bool isThere = model->saveAs(target, false, true);
        tell(QStringLiteral("saveAs"), isThere);
        writer.write();
        writer.save();
    }
    model->prepareToDestroy();
    return 0;
}

int mergeChapters(TVLProjectModel *model, const QString &)
{
    QModelIndexList chapters;
    for (int row = 0; row < Chapters; ++row)
        chapters.append(model->index(row, 0, model->draftFolder()));
    const bool isMerged = model->mergeIndexes(chapters).isValid();
    tell(QStringLiteral("merge"), isMerged);
    tell(QStringLiteral("save"), model->save(true));
    return 0;
}

int throwWasteAway(TVLProjectModel *model, const QString &)
{
    tell(QStringLiteral("emptyTrash"), model->emptyTrash());
    return 0;
}

struct Work
{
    const char *name;
    int (*run)(TVLProjectModel *, const QString &target);
};

constexpr Work Works[] = {{"edit", writeTwoEditions},
                          {"loop", saveForEver},
                          {"saveAs", copyBetweenEditions},
                          {"merge", mergeChapters},
                          {"emptyTrash", throwWasteAway}};

TVLProjectModel *open(const QString &path)
{
    TVLProjectModel *model = TVLProjectFolderFormat::openProject(path);
    tell(QStringLiteral("open"), model != nullptr);
    return model;
}

// --- Step by step

bool search(const TVLProjectModel &model)
{
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = QStringLiteral("edition");
    return !model.collectionIndexes(search).isEmpty();
}

/** What a writer does with a project in a session of his, one step after another. */
class Session
{
public:
    explicit Session(const QString &path)
        : mPath(path)
    {
    }

    bool doStep(const std::string &step)
    {
        if (step == "open")
            mModel.reset(TVLProjectFolderFormat::openProject(mPath));
        if (!mModel)
            return false;
        if (step == "edit")
            writeAnEdition();
        if (step == "search")
            return search(*mModel);
        if (step == "close")
            close();
        return step != "save" || mModel->save(true);
    }

private:
    void writeAnEdition()
    {
        mWriter = std::make_unique<Writer>(mModel.get());
        mWriter->write();
        mModel->addSnapshot(mModel->index(0, 0, mModel->draftFolder()), QStringLiteral("Another"));
    }

    void close()
    {
        mWriter.reset();
        mModel->prepareToDestroy();
        mModel.reset();
    }

    QString mPath;
    std::unique_ptr<TVLProjectModel> mModel;
    std::unique_ptr<Writer> mWriter;
};

int doSteps(const QString &path)
{
    Session session(path);
    std::string step;
    while (std::getline(std::cin, step))
        tell(QString::fromStdString(step), session.doStep(step));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const TVLUnattendedMessageBoxes boxes;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const QByteArray name(argv[2]);
    if (name == "steps")
        return doSteps(path);
    const std::unique_ptr<TVLProjectModel> model(open(path));
    if (!model)
        return 1;
    for (const Work &work : Works) {
        if (name == work.name)
            return work.run(model.get(), QString::fromLocal8Bit(argc > 3 ? argv[3] : ""));
    }
    return 2;
}
