#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSnapshotInfo.h"
#include "TVLTextDocument.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

/** A process that is killed in an edit that deletes files must have deleted none too early. */
class TstKillDuringEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledEmptyingTouchesOnlyWhatIsInTheTrash();
    void aKilledMergeLeavesEachWordAndSnapshotSomewhere();
    void aKilledRemovalTouchesOnlyTheItemThatItWasAt();
};

namespace {

const int Kills = testCases(200);
constexpr int LinesPerText = 40;
constexpr int SnapshotEvery = 15; ///< So many chapters for one that has one.
constexpr TVL::DocumentType TextTypes[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText};

/** The words of one document of an item; they are in no other. */
QString wordsOf(const QString &title, TVL::DocumentType type)
{
    const QString line = u"%1, %2"_s.arg(title).arg(int(type));
    return (line + u" and so on.\n"_s).repeated(LinesPerText).chopped(1);
}

QModelIndex insertText(TVLProjectModel *model, const QModelIndex &parent, const QString &title)
{
    return model->insertTextNode(-1, parent, title, wordsOf(title, TVL::MainText),
                                 wordsOf(title, TVL::SynopsisText), wordsOf(title, TVL::NotesText));
}

TVLSnapshotInfo snapshotOf(int chapter)
{
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = u"Snapshot of chapter %1"_s.arg(chapter);
    snapshot.mDate = QDateTime(QDate(2020, 1, 1), QTime(12, 0)).addSecs(chapter);
    return snapshot;
}

/** A project's files by their paths in it. */
using ProjectFiles = QMap<QString, QByteArray>;

/** What a project holds. */
struct Contents
{
    int chapters; ///< In the Draft, some with snapshots.
    int sources; ///< In the Research folder, with a text below each.
    int waste; ///< In the Trash.
};

ProjectFiles fillProject(const TestProject &project, const Contents &contents)
{
    const TestModel model = project.create();
    model->removeChildrenForIndex(model->draftFolder());
    for (int i = 0; i < contents.chapters; ++i) {
        const QModelIndex index =
            insertText(model.get(), model->draftFolder(), u"Chapter %1"_s.arg(i));
        if (i % SnapshotEvery == 0 && !model->addSnapshot(index, snapshotOf(i)))
            qFatal("the snapshot could not be made");
    }
    for (int i = 0; i < contents.sources; ++i) {
        const QModelIndex index =
            insertText(model.get(), model->researchFolder(), u"Source %1"_s.arg(i));
        insertText(model.get(), index, u"Excerpt %1"_s.arg(i));
    }
    for (int i = 0; i < contents.waste; ++i)
        insertText(model.get(), model->trashFolder(), u"Waste %1"_s.arg(i));
    if (!model->save(true))
        qFatal("the project could not be saved");
    model->prepareToDestroy();
    return project.files();
}

/** A copy of a project in which a child process does an edit. */
class EditedCopy
{
public:
    explicit EditedCopy(const ProjectFiles &files);

    /** The milliseconds that the edit takes; negative when it fails. */
    [[nodiscard]] double timeEdit(const QString &edit);
    /** Kills the process so long after it began; whether it had not come to its end. */
    [[nodiscard]] bool killEdit(const QString &edit, double afterMs);

    [[nodiscard]] QString path() const { return mCopy.path(); }
    [[nodiscard]] TestModel open() const;

private:
    void start(const QString &edit);
    [[nodiscard]] bool waitFor(const QByteArray &word);

    TestProject mCopy;
    QProcess mVictim;
};

EditedCopy::EditedCopy(const ProjectFiles &files)
{
    for (auto file = files.begin(); file != files.end(); ++file)
        mCopy.writeFile(file.key(), file.value());
}

void EditedCopy::start(const QString &edit)
{
    mVictim.setProgram(QStringLiteral(FAULT_EDITOR));
    mVictim.setArguments({mCopy.path(), edit});
    mVictim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mVictim.start();
    if (!waitFor("ready\n"))
        qFatal("the editing process did not start");
}

bool EditedCopy::waitFor(const QByteArray &word)
{
    while (!mVictim.canReadLine()) {
        if (!mVictim.waitForReadyRead(60'000))
            return false;
    }
    return mVictim.readLine() == word;
}

double EditedCopy::timeEdit(const QString &edit)
{
    start(edit);
    QElapsedTimer timer;
    timer.start();
    const bool isDone = waitFor("done\n");
    const double time = double(timer.nsecsElapsed()) / 1e6;
    mVictim.kill();
    mVictim.waitForFinished();
    return isDone ? time : -1;
}

bool EditedCopy::killEdit(const QString &edit, double afterMs)
{
    start(edit);
    QElapsedTimer life;
    life.start();
    while (double(life.nsecsElapsed()) / 1e6 < afterMs)
        mVictim.waitForReadyRead(1);
    mVictim.kill();
    mVictim.waitForFinished();
    return !mVictim.readAllStandardOutput().contains("done");
}

TestModel EditedCopy::open() const
{
    TVLProjectFolderFormat::clearSnapshotsCache(mCopy.path());
    return mCopy.open();
}

/**
 * Kills an edit at random moments, by the pace of this machine and this build: of a span that
 * follows how long the edits take, so that three of four kills fall into them.
 */
class Killer
{
public:
    Killer(const ProjectFiles &files, const QString &edit, quint32 seed);

    /** Kills the edit of a copy once. */
    void kill(EditedCopy *copy);
    [[nodiscard]] int killsInside() const { return mKillsInside; }

private:
    QString mEdit;
    QRandomGenerator mRandom;
    double mSpanMs = 0;
    int mKillsInside = 0;
};

Killer::Killer(const ProjectFiles &files, const QString &edit, quint32 seed)
    : mEdit(edit)
    , mRandom(seed)
{
    // The first run finds cold caches.
    for (int run = 0; run < 2; ++run)
        mSpanMs = EditedCopy(files).timeEdit(edit);
    if (mSpanMs < 0)
        qFatal("the edit failed");
}

void Killer::kill(EditedCopy *copy)
{
    const bool isInside = copy->killEdit(mEdit, mRandom.generateDouble() * mSpanMs);
    mKillsInside += isInside ? 1 : 0;
    mSpanMs *= isInside ? 1.02 : 0.94;
}

enum class TextState { Missing, CutOff, Whole };

/** What has become of the words of an item in an item's file. */
TextState stateOf(TVLProjectModel *model, int id, TVL::DocumentType type, const QString &words)
{
    TVLProjectNode node({id, QUuid::createUuid()}, nullptr);
    TVLTextDocument document(nullptr, model, &node, type);
    QString error;
    if (!TVLProjectFolderFormat::readDocument(model->path().absolutePath(), &node, &document,
                                              &error))
        return TextState::CutOff;
    if (document.toPlainText().contains(words))
        return TextState::Whole;
    return document.isEmpty() ? TextState::Missing : TextState::CutOff;
}

/** The titles below an item, by id. */
QMap<int, QString> titlesBelow(const TVLProjectModel &model, const QModelIndex &top)
{
    QMap<int, QString> titles;
    tvlForEachNode(model.projectNode(top), [&titles](const TVLProjectNode *node) {
        titles.insert(node->mId, node->mTitle);
    });
    return titles;
}

/** The first item that doesn't have all of its words in its own files; empty for none. */
QString incompleteItem(TVLProjectModel *model, const QMap<int, QString> &titles)
{
    for (auto item = titles.begin(); item != titles.end(); ++item) {
        for (const TVL::DocumentType type : TextTypes) {
            if (stateOf(model, item.key(), type, wordsOf(item.value(), type)) != TextState::Whole)
                return item.value();
        }
    }
    return {};
}

/** How many items have lost one of their files; a file that is there must be whole. */
int countOfLosers(TVLProjectModel *model, const QMap<int, QString> &titles)
{
    int losers = 0;
    for (auto item = titles.begin(); item != titles.end(); ++item) {
        bool isLoser = false;
        for (const TVL::DocumentType type : TextTypes) {
            const TextState state = stateOf(model, item.key(), type, wordsOf(item.value(), type));
            if (state == TextState::CutOff)
                qFatal("a deleted file was written");
            isLoser = isLoser || state == TextState::Missing;
        }
        losers += isLoser ? 1 : 0;
    }
    return losers;
}

/** Whether the text of a snapshot is there; the index need not know it. */
bool hasSnapshotText(const TVLProjectModel &model, int id, const TVLSnapshotInfo &snapshot,
                     const QString &words)
{
    QTextDocument document;
    return TVLProjectFolderFormat::readSnapshot(model.path().absolutePath(), id, snapshot,
                                                &document, {})
        && document.toPlainText() == words;
}

/** The snapshots of an item by its index; false when that is cut off. */
bool readIndex(const TVLProjectModel &model, int id, QList<TVLSnapshotInfo> *snapshots)
{
    return TVLProjectFolderFormat::readSnapshots(model.path().absolutePath(), id, snapshots);
}

/** Whether an item has a snapshot of those words; one that the index doesn't know is none. */
bool hasSnapshot(const TVLProjectModel &model, int id, const TVLSnapshotInfo &snapshot,
                 const QString &words)
{
    QList<TVLSnapshotInfo> snapshots;
    return readIndex(model, id, &snapshots)
        && std::any_of(snapshots.cbegin(), snapshots.cend(), [&](const TVLSnapshotInfo &found) {
               return found.mTitle == snapshot.mTitle && hasSnapshotText(model, id, found, words);
           });
}

/** What a killed merge has left of chapters, by their ids and titles. */
struct MergeRemains
{
    int cutOffTexts = 0; ///< Of the survivor's three.
    bool isIndexCutOff = false; ///< Of the survivor's snapshots.
    bool hasEmptied = false; ///< Some that are in the binder have their words in the survivor only.
    QString lost; ///< What was found nowhere; empty for nothing.
};

void findTexts(TVLProjectModel *model, const QMap<int, QString> &chapters, int survivor,
               MergeRemains *remains)
{
    for (const TVL::DocumentType type : TextTypes) {
        const auto isWholeAt = [&](int place, int id) {
            return stateOf(model, place, type, wordsOf(chapters.value(id), type))
                == TextState::Whole;
        };
        // The one window: the survivor's own words while its file is written.
        remains->cutOffTexts += isWholeAt(survivor, survivor) ? 0 : 1;
        for (auto chapter = chapters.begin(); chapter != chapters.end(); ++chapter) {
            const int id = chapter.key();
            if (id == survivor || (model->hasNodeId(id) && isWholeAt(id, id)))
                continue;
            remains->hasEmptied = remains->hasEmptied || model->hasNodeId(id);
            if (!isWholeAt(survivor, id))
                remains->lost = u"text %1 of '%2'"_s.arg(int(type)).arg(chapter.value());
        }
    }
}

void findSnapshots(const TVLProjectModel &model, const QMap<int, QString> &chapters, int survivor,
                   MergeRemains *remains)
{
    QList<TVLSnapshotInfo> snapshots;
    remains->isIndexCutOff = !readIndex(model, survivor, &snapshots);
    for (int i = 0; i < chapters.size(); i += SnapshotEvery) {
        const int id = chapters.key(u"Chapter %1"_s.arg(i));
        const TVLSnapshotInfo snapshot = snapshotOf(i);
        const QString words = wordsOf(chapters.value(id), TVL::MainText);
        // What the survivor itself had stays as a text even without its index.
        const bool isFound = hasSnapshot(model, id, snapshot, words)
            || hasSnapshot(model, survivor, snapshot, words)
            || (id == survivor && remains->isIndexCutOff
                && hasSnapshotText(model, id, snapshot, words));
        if (!isFound)
            remains->lost = snapshot.mTitle;
    }
}

} // namespace

void TstKillDuringEdits::aKilledEmptyingTouchesOnlyWhatIsInTheTrash()
{
    const TestProject project;
    const Contents contents = {.chapters = 10, .sources = 5, .waste = 100};
    const ProjectFiles files = fillProject(project, contents);
    Killer killer(files, u"emptyTrash"_s, 30);
    int withLosers = 0;
    int saved = 0;
    for (int kill = 0; kill < Kills; ++kill) {
        EditedCopy copy(files);
        killer.kill(&copy);
        const TestModel model = copy.open();
        QVERIFY2(model, qPrintable(u"not opened after kill %1"_s.arg(kill)));

        const QMap<int, QString> chapters = titlesBelow(*model, model->draftFolder());
        const QMap<int, QString> sources = titlesBelow(*model, model->researchFolder());
        QCOMPARE(chapters.size(), contents.chapters);
        QCOMPARE(sources.size(), 2 * contents.sources);
        QCOMPARE(incompleteItem(model.get(), chapters), QString());
        QCOMPARE(incompleteItem(model.get(), sources), QString());

        // The binder is of before or of after; the waste is in it as a whole or not at all.
        const QMap<int, QString> waste = titlesBelow(*model, model->trashFolder());
        QVERIFY(waste.isEmpty() || waste.size() == contents.waste);
        withLosers += countOfLosers(model.get(), waste) > 0 ? 1 : 0;
        saved += waste.isEmpty() ? 1 : 0;
    }
    QVERIFY2(killer.killsInside() > Kills / 4,
             "too few kills fell into the edit for them to mean anything");
    qInfo("%d kills, %d inside emptyTrash(); %d left waste without files in the binder, %d none",
          Kills, killer.killsInside(), withLosers, saved);
}

void TstKillDuringEdits::aKilledMergeLeavesEachWordAndSnapshotSomewhere()
{
    const TestProject project;
    const Contents contents = {.chapters = 60, .sources = 0, .waste = 0};
    const ProjectFiles files = fillProject(project, contents);
    const TestModel original = project.open();
    const QMap<int, QString> chapters = titlesBelow(*original, original->draftFolder());
    const int survivor = chapters.key(u"Chapter 0"_s);
    Killer killer(files, u"merge"_s, 31);
    int cutOffTexts = 0;
    int cutOffIndexes = 0;
    int withEmptied = 0;
    int saved = 0;
    for (int kill = 0; kill < Kills; ++kill) {
        EditedCopy copy(files);
        killer.kill(&copy);
        const TestModel model = copy.open();
        QVERIFY2(model, qPrintable(u"not opened after kill %1"_s.arg(kill)));
        const int listed = model->rowCount(model->draftFolder());
        QVERIFY(model->hasNodeId(survivor));
        QVERIFY(listed == 1 || listed == contents.chapters);

        MergeRemains remains;
        findTexts(model.get(), chapters, survivor, &remains);
        findSnapshots(*model, chapters, survivor, &remains);
        QVERIFY2(remains.lost.isEmpty(), qPrintable(u"kill %1: %2"_s.arg(kill).arg(remains.lost)));
        QVERIFY2(remains.cutOffTexts + (remains.isIndexCutOff ? 1 : 0) <= 1,
                 "only one file is written at a time");
        cutOffTexts += remains.cutOffTexts;
        cutOffIndexes += remains.isIndexCutOff ? 1 : 0;
        withEmptied += remains.hasEmptied ? 1 : 0;
        saved += listed == 1 ? 1 : 0;
    }
    QVERIFY2(killer.killsInside() > Kills / 4,
             "too few kills fell into the edit for them to mean anything");
    // A file is open for one write only, a small part of what a merge takes.
    QVERIFY2(cutOffTexts + cutOffIndexes <= Kills / 10 + 3,
             qPrintable(QString::number(cutOffTexts + cutOffIndexes)));
    qInfo("%d kills, %d inside mergeIndexes() and its save; %d cut off a text of the survivor, %d "
          "the index of its snapshots; %d left merged items without files in the binder, %d none",
          Kills, killer.killsInside(), cutOffTexts, cutOffIndexes, withEmptied, saved);
}

void TstKillDuringEdits::aKilledRemovalTouchesOnlyTheItemThatItWasAt()
{
    const TestProject project;
    const Contents contents = {.chapters = 5, .sources = 30, .waste = 5};
    const ProjectFiles files = fillProject(project, contents);
    const TestModel original = project.open();
    const QMap<int, QString> items = titlesBelow(*original, original->researchFolder());
    Killer killer(files, u"remove"_s, 32);
    int withLosers = 0;
    for (int kill = 0; kill < Kills; ++kill) {
        EditedCopy copy(files);
        killer.kill(&copy);
        const TestModel model = copy.open();
        QVERIFY2(model, qPrintable(u"not opened after kill %1"_s.arg(kill)));
        QCOMPARE(incompleteItem(model.get(), titlesBelow(*model, model->draftFolder())), QString());
        QCOMPARE(incompleteItem(model.get(), titlesBelow(*model, model->trashFolder())), QString());

        // Those that are still in the binder, but the first, have lost nothing.
        QMap<int, QString> sources;
        QMap<int, QString> excerpts;
        for (auto item = items.begin(); item != items.end(); ++item)
            (item->startsWith(u"Source"_s) ? sources : excerpts).insert(item.key(), item.value());
        const QMap<int, QString> listed = titlesBelow(*model, model->researchFolder());
        const QModelIndex first = model->index(0, 0, model->researchFolder());
        QMap<int, QString> doomed;
        for (auto source = sources.begin(); source != sources.end(); ++source) {
            if (listed.contains(source.key()))
                doomed.insert(source.key(), source.value());
        }
        const int losers = countOfLosers(model.get(), doomed);
        QVERIFY2(losers <= 1, qPrintable(QString::number(losers)));
        doomed.remove(model->nodeIdentity(first));
        QCOMPARE(countOfLosers(model.get(), doomed), 0);
        withLosers += losers;
        // What lay in removed items leaves the binder with them and stays on disk.
        QCOMPARE(incompleteItem(model.get(), excerpts), QString());
    }
    QVERIFY2(killer.killsInside() > Kills / 4,
             "too few kills fell into the edit for them to mean anything");
    qInfo("%d kills, %d inside removeIndex(); %d left an item without files in the binder", Kills,
          killer.killsInside(), withLosers);
}

TVL_TEST(TstKillDuringEdits)
#include "tst_killduringedits.moc"
