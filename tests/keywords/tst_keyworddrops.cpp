#include "KeywordChecks.h"
#include "TVL.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

constexpr QChar Separator = QChar::LineSeparator;

/** The drag of titles with blanks between them, which need not be there. */
std::unique_ptr<QMimeData> dragOf(const QString &titles)
{
    auto mime = std::make_unique<QMimeData>();
    mime->setText(QString(titles).replace(u' ', Separator));
    return mime;
}

} // namespace

class TstKeywordDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void copyAndMoveAreOffered();
    void aDragHoldsTheTitlesInDisplayOrder();
    void aDragOfNothingHasAnEmptyText();
    void aCopyMakesKeywords_data();
    void aCopyMakesKeywords();
    void aMoveBringsKeywordsTogether_data();
    void aMoveBringsKeywordsTogether();
    void aMoveThatMayNotBeMovesNothing_data();
    void aMoveThatMayNotBeMovesNothing();
    void aMoveTellsOfItsRows();
    void aMoveIsOneChange();
    void aDropWithoutTextIsRefused();
    void aDropBelowAnotherModelsKeywordIsRefused();
    void otherActionsAreRefused_data();
    void otherActionsAreRefused();
    void whatIsDraggedCanBeDroppedInAnotherModel();

private:
    bool drop(const QString &titles, Qt::DropAction action, int row, const QString &parent);

    std::unique_ptr<TVLSearchIndex> mIndex;
    std::unique_ptr<TVLKeywordModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

void TstKeywordDrops::init()
{
    mIndex = std::make_unique<TVLSearchIndex>();
    mModel = std::make_unique<TVLKeywordModel>(mIndex.get());
    addKeywords(mModel.get(), {}, u"a b(c d(e)) f g"_qs);
    mTester = std::make_unique<QAbstractItemModelTester>(
        mModel.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

void TstKeywordDrops::cleanup()
{
    mTester.reset();
    mModel.reset();
    mIndex.reset();
}

bool TstKeywordDrops::drop(const QString &titles, Qt::DropAction action, int row,
                           const QString &parent)
{
    const QModelIndex parentIndex = parent.isEmpty() ? QModelIndex() : mModel->findTitle(parent);
    return mModel->dropMimeData(dragOf(titles).get(), action, row, 0, parentIndex);
}

void TstKeywordDrops::copyAndMoveAreOffered()
{
    QCOMPARE(mModel->supportedDropActions(), Qt::CopyAction | Qt::MoveAction);
    QCOMPARE(mModel->supportedDragActions(), Qt::CopyAction | Qt::MoveAction);
    QCOMPARE(mModel->mimeTypes(), QStringList{u"text/plain"_qs});
}

void TstKeywordDrops::aDragHoldsTheTitlesInDisplayOrder()
{
    QModelIndexList indexes = keywordsTitled(mModel.get(), u"g e b a"_qs);
    indexes.insert(2, QModelIndex());
    const std::unique_ptr<QMimeData> mime(mModel->mimeData(indexes));
    QVERIFY(mime);
    const QString text = QStringList({u"a"_qs, u"b"_qs, u"e"_qs, u"g"_qs}).join(Separator);
    QCOMPARE(mime->text(), text);
    QCOMPARE(mime->data(TVL::KeywordsMimeType), text.toUtf8());
}

void TstKeywordDrops::aDragOfNothingHasAnEmptyText()
{
    const QString before = keywordText(mModel.get());
    for (const QModelIndexList &indexes : {QModelIndexList(), QModelIndexList{QModelIndex()}}) {
        const std::unique_ptr<QMimeData> mime(mModel->mimeData(indexes));
        QVERIFY(mime);
        QVERIFY(mime->hasFormat(TVL::KeywordsMimeType));
        QCOMPARE(mime->data(TVL::KeywordsMimeType), QByteArray());
        QCOMPARE(mime->text(), QString());
        // Wherever it is dropped, nothing comes of it.
        mModel->dropMimeData(mime.get(), Qt::CopyAction, 0, 0, QModelIndex());
        mModel->dropMimeData(mime.get(), Qt::MoveAction, 0, 0, QModelIndex());
        QCOMPARE(keywordText(mModel.get()), before);
    }
}

void TstKeywordDrops::aCopyMakesKeywords_data()
{
    QTest::addColumn<QString>("titles");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("text");
    const QString unchanged = u"a b(c d(e)) f g"_qs;
    QTest::newRow("between") << u"x y"_qs << 1 << QString() << u"a x y b(c d(e)) f g"_qs;
    QTest::newRow("on an item") << u"x y"_qs << -1 << u"b"_qs << u"a b(x y c d(e)) f g"_qs;
    QTest::newRow("on nothing") << u"x"_qs << -1 << QString() << u"x a b(c d(e)) f g"_qs;
    QTest::newRow("beyond the end") << u"x"_qs << 99 << u"d"_qs << u"a b(c d(e x)) f g"_qs;
    QTest::newRow("a title that is there") << u"E"_qs << 0 << QString() << unchanged;
    // The row goes on past what wasn't inserted.
    QTest::newRow("one that is there among others")
        << u"x a y"_qs << 1 << QString() << u"a x b(c d(e)) y f g"_qs;
    QTest::newRow("one title twice") << u"x x"_qs << 0 << u"d"_qs << u"a b(c d(x e)) f g"_qs;
    QTest::newRow("empty parts") << u"  x  "_qs << 0 << QString() << u"x a b(c d(e)) f g"_qs;
    QTest::newRow("nothing but separators") << u"   "_qs << 0 << QString() << unchanged;
}

void TstKeywordDrops::aCopyMakesKeywords()
{
    QFETCH(const QString, titles);
    QFETCH(const int, row);
    QFETCH(const QString, parent);
    QVERIFY(drop(titles, Qt::CopyAction, row, parent));
    QTEST(keywordText(mModel.get()), "text");
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

void TstKeywordDrops::aMoveBringsKeywordsTogether_data()
{
    QTest::addColumn<QString>("titles");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("text");
    QTest::newRow("down among siblings") << u"a"_qs << 3 << QString() << u"b(c d(e)) f a g"_qs;
    QTest::newRow("to the end") << u"a"_qs << 4 << QString() << u"b(c d(e)) f g a"_qs;
    QTest::newRow("beyond the end") << u"a"_qs << 99 << QString() << u"b(c d(e)) f g a"_qs;
    QTest::newRow("up among siblings") << u"g"_qs << 1 << QString() << u"a g b(c d(e)) f"_qs;
    QTest::newRow("on nothing") << u"g"_qs << -1 << QString() << u"g a b(c d(e)) f"_qs;
    QTest::newRow("on an item") << u"f"_qs << -1 << u"b"_qs << u"a b(f c d(e)) g"_qs;
    QTest::newRow("into an item") << u"f"_qs << 1 << u"b"_qs << u"a b(c f d(e)) g"_qs;
    QTest::newRow("with what is in it") << u"d"_qs << 0 << u"a"_qs << u"a(d(e)) b(c) f g"_qs;
    QTest::newRow("out of an item") << u"e"_qs << 0 << QString() << u"e a b(c d) f g"_qs;
    QTest::newRow("into its grandparent") << u"e"_qs << 1 << u"b"_qs << u"a b(c e d) f g"_qs;
    QTest::newRow("several upwards") << u"f g"_qs << 0 << QString() << u"f g a b(c d(e))"_qs;
    QTest::newRow("several downwards") << u"a b"_qs << 4 << QString() << u"f g a b(c d(e))"_qs;
    QTest::newRow("from both sides") << u"a g"_qs << 2 << QString() << u"b(c d(e)) a g f"_qs;
    QTest::newRow("in another order") << u"g a"_qs << 2 << QString() << u"b(c d(e)) g a f"_qs;
    QTest::newRow("from several places") << u"a c e g"_qs << 0 << u"f"_qs << u"b(d) f(a c e g)"_qs;
    QTest::newRow("past its own parent's row")
        << u"a e"_qs << 0 << u"f"_qs << u"b(c d) f(a e) g"_qs;
    QTest::newRow("with one that is in another")
        << u"b e"_qs << 0 << u"f"_qs << u"a f(b(c d) e) g"_qs;
    QTest::newRow("one twice") << u"a a"_qs << 3 << QString() << u"b(c d(e)) f a g"_qs;
    QTest::newRow("in another case") << u"A"_qs << 4 << QString() << u"b(c d(e)) f g a"_qs;
}

void TstKeywordDrops::aMoveBringsKeywordsTogether()
{
    QFETCH(const QString, titles);
    QFETCH(const int, row);
    QFETCH(const QString, parent);
    QVERIFY(drop(titles, Qt::MoveAction, row, parent));
    QTEST(keywordText(mModel.get()), "text");
    QCOMPARE(keywordsOutOfStep(mModel.get(), *mIndex), QString());
}

void TstKeywordDrops::aMoveThatMayNotBeMovesNothing_data()
{
    QTest::addColumn<QString>("titles");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("parent");
    QTest::newRow("on itself") << u"b"_qs << -1 << u"b"_qs;
    QTest::newRow("into itself") << u"b"_qs << 1 << u"b"_qs;
    QTest::newRow("into what is in it") << u"b"_qs << 0 << u"d"_qs;
    QTest::newRow("into what is far below it") << u"b"_qs << 0 << u"e"_qs;
    QTest::newRow("to where it is") << u"f"_qs << 2 << QString();
    QTest::newRow("to behind itself") << u"f"_qs << 3 << QString();
    QTest::newRow("an unknown title") << u"x"_qs << 0 << QString();
    QTest::newRow("one of several is unknown") << u"f x"_qs << 0 << QString();
    QTest::newRow("one of several may not go there") << u"g b"_qs << 0 << u"e"_qs;
}

void TstKeywordDrops::aMoveThatMayNotBeMovesNothing()
{
    QFETCH(const QString, titles);
    QFETCH(const int, row);
    QFETCH(const QString, parent);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    const QSignalSpy moves(mModel.get(), &TVLKeywordModel::rowsMoved);
    QVERIFY(!drop(titles, Qt::MoveAction, row, parent));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_qs);
    QCOMPARE(changes.size(), 0);
    QCOMPARE(moves.size(), 0);
}

void TstKeywordDrops::aMoveTellsOfItsRows()
{
    const QPersistentModelIndex e = mModel->findTitle(u"e"_qs);
    QSignalSpy moves(mModel.get(), &TVLKeywordModel::rowsMoved);
    QVERIFY(drop(u"a d"_qs, Qt::MoveAction, 3, QString()));
    QCOMPARE(keywordText(mModel.get()), u"b(c) f a d(e) g"_qs);
    QCOMPARE(moves.size(), 2);
    QCOMPARE(moves.at(0).at(1).toInt(), 0);
    QCOMPARE(moves.at(0).at(4).toInt(), 3);
    QCOMPARE(moves.at(1).at(1).toInt(), 1);
    QCOMPARE(moves.at(1).at(4).toInt(), 3);
    QCOMPARE(QModelIndex(e), mModel->findTitle(u"e"_qs));
}

void TstKeywordDrops::aMoveIsOneChange()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(drop(u"f g"_qs, Qt::MoveAction, 0, QString()));
    QCOMPARE(changes.size(), 1);
}

void TstKeywordDrops::aDropWithoutTextIsRefused()
{
    QMimeData mime;
    mime.setData(TVL::KeywordsMimeType, "x");
    QVERIFY(!mModel->dropMimeData(&mime, Qt::CopyAction, 0, 0, QModelIndex()));
    QVERIFY(!mModel->dropMimeData(nullptr, Qt::CopyAction, 0, 0, QModelIndex()));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_qs);
}

void TstKeywordDrops::aDropBelowAnotherModelsKeywordIsRefused()
{
    TVLKeywordModel other(nullptr);
    addKeywords(&other, {}, u"o"_qs);
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::MoveAction})
        QVERIFY(!mModel->dropMimeData(dragOf(u"f"_qs).get(), action, 0, 0, other.index(1)));
}

void TstKeywordDrops::otherActionsAreRefused_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("link") << int(Qt::LinkAction);
    QTest::newRow("ignore") << int(Qt::IgnoreAction);
    QTest::newRow("target move") << int(Qt::TargetMoveAction);
}

void TstKeywordDrops::otherActionsAreRefused()
{
    QFETCH(const int, action);
    QVERIFY(!drop(u"x"_qs, Qt::DropAction(action), 0, QString()));
    QVERIFY(!drop(u"g"_qs, Qt::DropAction(action), 0, QString()));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_qs);
}

void TstKeywordDrops::whatIsDraggedCanBeDroppedInAnotherModel()
{
    TVLKeywordModel other(nullptr);
    addKeywords(&other, {}, u"a z"_qs);
    const std::unique_ptr<QMimeData> mime(
        mModel->mimeData(keywordsTitled(mModel.get(), u"e b a"_qs)));
    QVERIFY(other.dropMimeData(mime.get(), Qt::CopyAction, 1, 0, QModelIndex()));
    QCOMPARE(keywordText(&other), u"a z b e"_qs);
}

TVL_TEST(TstKeywordDrops)
#include "tst_keyworddrops.moc"
