/*
 * What the journal costs a save: with it, against the same save of the same texts without. A folder
 * in the journal's place keeps it from being written.
 */
#include "BenchMain.h"
#include "BenchProject.h"
#include "BenchProse.h"
#include "RatioMeter.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"

#include <QDir>
#include <QTextCursor>

namespace {

constexpr int TextBytes = 40'000;

/** An open project with texts in memory. */
class OpenTexts
{
public:
    explicit OpenTexts(int texts)
        : mProject(texts, BenchShape::Flat)
        , mModel(mProject.open())
    {
        const QString prose = makeBenchProse(1, TextBytes).constFirst();
        const QList<int> ids = mModel->idToUuid().keys();
        for (const int id : ids) {
            TVLTextDocument *text = mModel->referenceText(mModel->index(id));
            if (!text || mTexts.size() == texts)
                continue;
            QTextCursor(text).insertText(prose);
            mTexts.append(text);
        }
        if (!mModel->save(true))
            qFatal("the project could not be saved");
    }

    [[nodiscard]] qsizetype count() const { return mTexts.size(); }

    double timeOfSave(bool hasJournal)
    {
        const QString journal =
            TVLProjectFolderFormat::filesPath(mProject.path()) + QStringLiteral("/redo.journal");
        if (hasJournal)
            QDir().rmdir(journal);
        else
            QDir().mkdir(journal);
        for (TVLTextDocument *text : std::as_const(mTexts)) {
            QTextCursor(text).insertText(QStringLiteral("x"));
            text->setSaved(false);
        }
        bool isSaved = false;
        const double seconds = processorSeconds([&] { isSaved = mModel->save(true); });
        if (!isSaved)
            qFatal("the project could not be saved");
        return seconds;
    }

private:
    BenchProject mProject;
    std::unique_ptr<TVLProjectModel> mModel;
    QList<TVLTextDocument *> mTexts;
};

void saveTexts(benchmark::State &state, int texts, double target)
{
    OpenTexts project(texts);
    measureAgainst(
        state,
        {.against = "the same without a journal",
         .bytes = double(TextBytes) * double(project.count()),
         .target = target},
        [&] { return project.timeOfSave(true); }, [&] { return project.timeOfSave(false); });
}

} // namespace

void registerBenchmarks()
{
    // The log's line about a journal that can't be written is no part of what is measured.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    registerRatio("save_changed_texts/1", 31,
                  [](benchmark::State &state) { saveTexts(state, 1, 2.5); });
    registerRatio("save_changed_texts/1000", 5,
                  [](benchmark::State &state) { saveTexts(state, 1000, 1.5); });
}
