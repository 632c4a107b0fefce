#include "KeywordChecks.h"
#include "TestMain.h"

#include "TVLSearchIndex.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QTest>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

/** Who hears of a change of keywords may remove any of them. */
class TstKeywordReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aListenerMayRemoveKeywords_data();
    void aListenerMayRemoveKeywords();
    void whileKeywordsGoNoOtherRowsChange();
    void aKeywordThatIsAnnouncedIsKnownToTheSearch();
};

namespace {

enum class Victim { First, Last, Announced };

const std::pair<Victim, const char *> Victims[] = {
    {Victim::First, "first"},
    {Victim::Last, "last"},
    {Victim::Announced, "announced"},
};

bool drop(TVLKeywordModel *model, const QString &titles, Qt::DropAction action, int row,
          const QModelIndex &parent)
{
    QMimeData mime;
    mime.setText(QString(titles).replace(u' ', QChar::LineSeparator));
    return model->dropMimeData(&mime, action, row, 0, parent);
}

using Change = void (*)(TVLKeywordModel *model);

const std::pair<const char *, Change> Changes[] = {
    {"insertItem",
     [](TVLKeywordModel *model) { model->insertItem(1, model->findTitle(u"b"_s), u"n"_s); }},
    {"addChild", [](TVLKeywordModel *model) { model->addChild(20, 2); }},
    {"addChild of one that is there", [](TVLKeywordModel *model) { model->addChild(1, 4); }},
    {"setTitle", [](TVLKeywordModel *model) { model->setTitle(model->findTitle(u"b"_s), u"n"_s); }},
    {"setColor",
     [](TVLKeywordModel *model) { model->setColor(model->findTitle(u"b"_s), Qt::red); }},
    {"removeItem", [](TVLKeywordModel *model) { model->removeItem(model->findTitle(u"b"_s)); }},
    {"dropping copies",
     [](TVLKeywordModel *model) {
         drop(model, u"m a n o"_s, Qt::CopyAction, 1, model->findTitle(u"b"_s));
     }},
    {"dropping copies at the top",
     [](TVLKeywordModel *model) { drop(model, u"m a n o"_s, Qt::CopyAction, 1, {}); }},
    {"moving",
     [](TVLKeywordModel *model) {
         drop(model, u"e a f"_s, Qt::MoveAction, 1, model->findTitle(u"b"_s));
     }},
    {"moving to the top",
     [](TVLKeywordModel *model) { drop(model, u"d e c"_s, Qt::MoveAction, 1, {}); }},
};

/** Removes a keyword when it is told of the n-th change. */
class Remover : public QObject
{
public:
    Remover(TVLKeywordModel *model, Victim victim, int turn)
        : mModel(model)
        , mVictim(victim)
        , mTurn(turn)
    {
        connect(model, &TVLKeywordModel::rowsInserted, this,
                [this](const QModelIndex &parent, int row) { act(mModel->index(row, 0, parent)); });
        connect(model, &TVLKeywordModel::rowsRemoved, this,
                [this](const QModelIndex &parent) { act(parent); });
        connect(model, &TVLKeywordModel::rowsMoved, this,
                [this](const QModelIndex &, int, int, const QModelIndex &target, int row) {
                    act(mModel->index(std::min(row, mModel->rowCount(target) - 1), 0, target));
                });
        connect(model, &TVLKeywordModel::dataChanged, this,
                [this](const QModelIndex &index) { act(index); });
        connect(model, &TVLKeywordModel::modelChanged, this, [this] { act({}); });
    }

    [[nodiscard]] int count() const { return mCount; }

private:
    void act(const QModelIndex &announced)
    {
        if (std::exchange(mIsActing, true))
            return;
        if (++mCount == mTurn) {
            const QList<int> ids = mModel->orderedIds();
            mModel->removeItem(mVictim == Victim::Announced   ? announced
                                   : mVictim == Victim::First ? mModel->index(ids.constFirst())
                                                              : mModel->index(ids.constLast()));
        }
        mIsActing = false;
    }

    TVLKeywordModel *mModel;
    Victim mVictim;
    int mTurn;
    int mCount = 0;
    bool mIsActing = false;
};

/** Makes a change under which a keyword goes at the n-th signal; how many there were. */
int runOnce(Change change, Victim victim, int turn, QString *wrong)
{
    TVLSearchIndex index;
    TVLKeywordModel model(&index);
    addKeywords(&model, {}, u"a b(c d) e(f)"_s);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const Remover remover(&model, victim, turn);
    change(&model);
    *wrong = keywordsOutOfStep(&model, index);
    return remover.count();
}

} // namespace

void TstKeywordReentrancy::aListenerMayRemoveKeywords_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<int>("victim");
    for (std::size_t i = 0; i < std::size(Changes); ++i) {
        for (const auto &[victim, name] : Victims)
            QTest::addRow("%s, %s", Changes[i].first, name) << int(i) << int(victim);
    }
}

void TstKeywordReentrancy::aListenerMayRemoveKeywords()
{
    QFETCH(const int, change);
    QFETCH(const int, victim);
    QString wrong;
    const int turns = runOnce(Changes[change].second, Victim(victim), 0, &wrong);
    QVERIFY(turns > 0);
    for (int turn = 1; turn <= turns; ++turn) {
        (void)runOnce(Changes[change].second, Victim(victim), turn, &wrong);
        QVERIFY2(wrong.isEmpty(), qPrintable(u"turn %1: "_s.arg(turn) + wrong));
    }
}

void TstKeywordReentrancy::whileKeywordsGoNoOtherRowsChange()
{
    TVLSearchIndex index;
    TVLKeywordModel model(&index);
    addKeywords(&model, {}, u"a b(c d) e(f)"_s);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int calls = 0;
    connect(&model, &TVLKeywordModel::keywordsAboutToBeRemoved, this, [&] {
        ++calls;
        QVERIFY(!model.removeItem(model.findTitle(u"a"_s)));
        QVERIFY(!model.insertItem(0, QModelIndex(), u"n"_s));
        QVERIFY(!model.addChild(20, 1).isValid());
        QVERIFY(!drop(&model, u"a"_s, Qt::MoveAction, 0, model.findTitle(u"e"_s)));
        QVERIFY(!drop(&model, u"n"_s, Qt::CopyAction, 0, {}));
    });
    QVERIFY(model.removeItem(model.findTitle(u"b"_s)));
    QCOMPARE(calls, 1);
    QCOMPARE(keywordText(&model), u"a e(f)"_s);
    QVERIFY(model.insertItem(0, QModelIndex(), u"n"_s));
    QCOMPARE(keywordsOutOfStep(&model, index), QString());
}

void TstKeywordReentrancy::aKeywordThatIsAnnouncedIsKnownToTheSearch()
{
    TVLSearchIndex index;
    TVLKeywordModel model(&index);
    QString wrong = u"not told"_s;
    connect(&model, &TVLKeywordModel::rowsInserted, this,
            [&] { wrong = keywordsOutOfStep(&model, index); });
    QVERIFY(model.insertItem(0, QModelIndex(), u"a"_s));
    QCOMPARE(wrong, QString());
}

TVL_TEST(TstKeywordReentrancy)
#include "tst_keywordreentrancy.moc"
