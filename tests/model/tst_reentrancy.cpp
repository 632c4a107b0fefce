#include "ChangingFunctions.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLKeywordModel.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

/** Who hears of a change, or answers a box, may remove any item, and the function goes on safely.
 */
class TstReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aListenerMayRemoveItems_data();
    void aListenerMayRemoveItems();
    void aBoxMayBeAnsweredByRemovingItems_data();
    void aBoxMayBeAnsweredByRemovingItems();
};

namespace {

constexpr int TurnsOfEveryDay = 1;

/** Which item, and which collection, keyword and project note, is removed. */
enum class Victim { First, Last, Announced };

const std::pair<Victim, const char *> Victims[] = {
    {Victim::First, "first"},
    {Victim::Last, "last"},
    {Victim::Announced, "announced"},
};

/** Removes items of a project when it is told to for the n-th time. */
class Remover
{
public:
    Remover(const ChangingProject &project, Victim victim, int turn)
        : mModel(project.model())
        , mVictim(victim)
        , mTurn(turn)
    {
    }

    /** How often it was told so far. */
    [[nodiscard]] int count() const { return mCount; }

    void act(const QPersistentModelIndex &announced)
    {
        // What it sets off itself doesn't count.
        if (mIsActing)
            return;
        mIsActing = true;
        if (++mCount == mTurn) {
            removeItem(announced);
            removeRecords();
        }
        mIsActing = false;
    }

private:
    void removeItem(const QModelIndex &announced)
    {
        QModelIndexList items = recursiveWalk(mModel, mModel->rootIndex());
        items.removeIf([this](const QModelIndex &index) { return mModel->isSystemFolder(index); });
        if (mVictim == Victim::Announced)
            mModel->removeIndex(mModel->isSystemFolder(announced) ? QModelIndex() : announced);
        else
            mModel->removeIndex(mVictim == Victim::First ? items.value(0)
                                                         : items.value(items.size() - 1));
    }

    /** The announced ones aren't among these, as their numbers mean something else each time. */
    void removeRecords()
    {
        const bool isFirst = mVictim == Victim::First;
        mModel->removeCollection(isFirst ? 0 : 2);
        TVLKeywordModel *keywords = mModel->keywordModel();
        keywords->removeItem(keywords->index(isFirst ? 0 : keywords->rowCount() - 1, 0));
        const QList<int> notes = mModel->projectNoteIdentities();
        QStringList errors;
        if (mModel->hasProjectNotes())
            mModel->removeProjectNote(isFirst ? notes.constFirst() : notes.constLast(), &errors);
    }

    TVLProjectModel *mModel;
    Victim mVictim;
    int mTurn;
    int mCount = 0;
    bool mIsActing = false;
};

/**
 * Passes on every signal of a project model and its keywords at which the model may be changed.
 * Between the announcement of rows and their change it may not.
 */
class Listener : public QObject
{
public:
    Listener(TVLProjectModel *model, Remover *remover)
        : mModel(model)
        , mRemover(remover)
    {
        using Model = TVLProjectModel;
        listen(&Model::aboutToSave);
        listen(&Model::documentContentsChange);
        listen(&Model::documentContentsChanged);
        listen(&Model::labelsChanged);
        listen(&Model::statusItemsChanged);
        listen(&Model::referencesChanged);
        listen(&Model::templateFolderChanged);
        listen(&Model::labelTitleChanged);
        listen(&Model::statusTitleChanged);
        listen(&Model::scriptModeChanged);
        listen(&Model::formatModeChanged);
        listen(&Model::modifiedChanged);
        listen(&Model::externallyModified);
        listen(&Model::snapshotsChanged);
        listen(&Model::projectNoteAboutToBeRemoved);
        listen(&Model::projectNoteRemoved);
        listen(&Model::projectNoteAboutToBeAdded);
        listen(&Model::projectNoteAdded);
        listen(&Model::projectNoteAboutToBeMoved);
        listen(&Model::projectNoteMoved);
        listen(&Model::projectNoteRenamed);
        listen(&Model::metaDataChanged);
        listen(&Model::customMetaDataChanged);
        listen(&Model::customMetaDataSettingsAboutToBeChanged);
        listen(&Model::customMetaDataSettingsChanged);
        listen(qOverload<>(&Model::collectionChanged));
        listen(qOverload<int, TVLCollectionMetaData>(&Model::collectionChanged));
        listen(&Model::collectionAboutToBeInserted);
        listen(&Model::collectionInserted);
        listen(&Model::collectionAboutToBeRemoved);
        listen(&Model::collectionRemoved);
        listen(&Model::autoCompleteListChanged);
        listen(&Model::dataChanged);
        const auto act = [this](const QModelIndex &index) { mRemover->act(index); };
        connect(model, &Model::rowsInserted, this, [=, this](const QModelIndex &parent, int first) {
            act(mModel->index(first, 0, parent));
        });
        connect(model, &Model::rowsRemoved, this, act);
        connect(model, &Model::rowsMoved, this,
                [=, this](const QModelIndex &, int, int, const QModelIndex &target, int row) {
                    act(mModel->index(std::min(row, mModel->rowCount(target) - 1), 0, target));
                });
        connect(model, &Model::modelReset, this, [act] { act(QModelIndex()); });

        const auto actAnywhere = [act] { act(QModelIndex()); };
        const TVLKeywordModel *keywords = model->keywordModel();
        connect(keywords, &TVLKeywordModel::rowsInserted, this, actAnywhere);
        connect(keywords, &TVLKeywordModel::rowsRemoved, this, actAnywhere);
        connect(keywords, &TVLKeywordModel::rowsMoved, this, actAnywhere);
        connect(keywords, &TVLKeywordModel::dataChanged, this, actAnywhere);
        connect(keywords, &TVLKeywordModel::modelChanged, this, actAnywhere);
        connect(keywords, &TVLKeywordModel::keywordsAboutToBeRemoved, this, actAnywhere);
    }

private:
    template <typename... Arguments>
    void listen(void (TVLProjectModel::*signal)(Arguments...))
    {
        connect(mModel, signal, this,
                [this](Arguments... arguments) { mRemover->act(announcedIn(arguments...)); });
    }
    template <typename... Others>
    void listen(void (QAbstractItemModel::*signal)(const QModelIndex &, Others...))
    {
        connect(mModel, signal, this, [this](const QModelIndex &index) { mRemover->act(index); });
    }

    template <typename... Others>
    static QModelIndex announcedIn(const QModelIndex &index, const Others &...)
    {
        return index;
    }
    template <typename... Others>
    static QModelIndex announcedIn(const Others &...)
    {
        return {};
    }

    TVLProjectModel *mModel;
    Remover *mRemover;
};

/** What is wrong with a project whose items were removed under a function that returned some. */
QString wrongAfter(const ChangingProject &project, const TVLProjectNodeProperties &root,
                   const QModelIndexList &returned)
{
    TVLProjectModel *model = project.model();
    const QString outOfStep = mapsOutOfStep(model);
    if (!outOfStep.isEmpty())
        return outOfStep;
    const QModelIndexList items = recursiveWalk(model, model->rootIndex());
    for (const QModelIndex &index : items) {
        (void)model->data(index, Qt::DisplayRole);
        (void)model->data(index, Qt::DecorationRole);
        (void)model->data(index, TVLProjectModel::KeywordIdsRole);
    }
    for (const QModelIndex &index : returned) {
        if (index.isValid() && !items.contains(index))
            return u"an item is returned that isn't there"_s;
    }
    // A function that has lost its item must not take the root for it.
    TVLProjectNodeProperties now = model->nodeProperties(model->rootIndex());
    now.mHasText = root.mHasText;
    now.mHasSynopsis = root.mHasSynopsis;
    now.mHasDocumentNote = root.mHasDocumentNote;
    now.mWordCount = root.mWordCount;
    now.mCharacterCount = root.mCharacterCount;
    now.mSessionWordCount = root.mSessionWordCount;
    now.mSessionCharacterCount = root.mSessionCharacterCount;
    if (now != root)
        return u"the root was changed"_s;
    deleteReleasedObjects();
    return {};
}

/** When somebody removes items. */
enum class Occasion { Signal, Box };

/** Runs a function under which items are removed on the n-th occasion; how many there were. */
int runOnce(const ChangingFunction &function, Occasion occasion, Victim victim, int turn,
            QString *wrong)
{
    const TVLUnattendedMessageBoxes boxes;
    const ChangingProject project(occasion == Occasion::Box);
    TVLProjectModel *model = project.model();
    if (function.prepare)
        function.prepare(project);
    TVLProjectModelTestAccess::setSaved(model);
    const QAbstractItemModelTester keywordTester(
        model->keywordModel(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    // The items of a changed keyword are announced while it is; at that it may be removed, before
    // all have heard that it has changed.
    QObject::disconnect(model->keywordModel(), &TVLKeywordModel::dataChanged, &keywordTester,
                        nullptr);
    const TVLProjectNodeProperties root = model->nodeProperties(model->rootIndex());
    Remover remover(project, victim, turn);
    std::optional<Listener> listener;
    if (occasion == Occasion::Signal)
        listener.emplace(model, &remover);
    else
        QObject::connect(&boxes, &TVLUnattendedMessageBoxes::answered, model,
                         [&](const TVLUnattendedMessageBoxes::Box &box) {
                             const QString title = box.text.section(u'\'', 1, 1);
                             remover.act(itemTitled(model, title));
                         });
    const QModelIndexList returned = function.run(project);
    listener.reset();
    *wrong = wrongAfter(project, root, returned);
    return remover.count();
}

void runOnEachOccasion(const ChangingFunction &function, Occasion occasion, Victim victim)
{
    QString wrong;
    static QHash<const ChangingFunction *, int> turnsOf;
    if (!turnsOf.contains(&function)) {
        turnsOf.insert(&function, runOnce(function, occasion, victim, 0, &wrong));
        QCOMPARE(wrong, QString());
    }
    const int turns = turnsOf.value(&function);
    // Where there are many, most of them are of the same kind.
    const int step = testPercent() < 100 ? turns / TurnsOfEveryDay + 1 : 1;
    for (int turn = 1; turn <= turns; turn += step) {
        (void)runOnce(function, occasion, victim, turn, &wrong);
        QVERIFY2(wrong.isEmpty(), qPrintable(u"turn %1: "_s.arg(turn) + wrong));
    }
}

void addRows(const QList<ChangingFunction> &functions)
{
    QTest::addColumn<int>("function");
    QTest::addColumn<int>("victim");
    for (qsizetype i = 0; i < functions.size(); ++i) {
        for (const auto &[victim, name] : Victims)
            QTest::addRow("%s, %s", functions.at(i).name, name) << int(i) << int(victim);
    }
}

} // namespace

void TstReentrancy::aListenerMayRemoveItems_data()
{
    addRows(changingFunctions());
}

void TstReentrancy::aListenerMayRemoveItems()
{
    QFETCH(const int, function);
    QFETCH(const int, victim);
    runOnEachOccasion(changingFunctions().at(function), Occasion::Signal, Victim(victim));
}

void TstReentrancy::aBoxMayBeAnsweredByRemovingItems_data()
{
    addRows(readingFunctions());
}

void TstReentrancy::aBoxMayBeAnsweredByRemovingItems()
{
    QFETCH(const int, function);
    QFETCH(const int, victim);
    runOnEachOccasion(readingFunctions().at(function), Occasion::Box, Victim(victim));
}

TVL_TEST(TstReentrancy)
#include "tst_reentrancy.moc"
