#include "KeywordChecks.h"
#include "TVL.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

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
    addKeywords(mModel.get(), {}, u"a b(c d(e)) f g"_s);
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
    QCOMPARE(mModel->mimeTypes(), QStringList{u"text/plain"_s});
}

void TstKeywordDrops::aDragHoldsTheTitlesInDisplayOrder()
{
    QModelIndexList indexes = keywordsTitled(mModel.get(), u"g e b a"_s);
    indexes.insert(2, QModelIndex());
    const std::unique_ptr<QMimeData> mime(mModel->mimeData(indexes));
    QVERIFY(mime);
    const QString text = QStringList({u"a"_s, u"b"_s, u"e"_s, u"g"_s}).join(Separator);
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
    const QString unchanged = u"a b(c d(e)) f g"_s;
    QTest::newRow("between") << u"x y"_s << 1 << QString() << u"a x y b(c d(e)) f g"_s;
    QTest::newRow("on an item") << u"x y"_s << -1 << u"b"_s << u"a b(x y c d(e)) f g"_s;
    QTest::newRow("on nothing") << u"x"_s << -1 << QString() << u"x a b(c d(e)) f g"_s;
    QTest::newRow("beyond the end") << u"x"_s << 99 << u"d"_s << u"a b(c d(e x)) f g"_s;
    QTest::newRow("a title that is there") << u"E"_s << 0 << QString() << unchanged;
    // The row goes on past what wasn't inserted.
    QTest::newRow("one that is there among others")
        << u"x a y"_s << 1 << QString() << u"a x b(c d(e)) y f g"_s;
    QTest::newRow("one title twice") << u"x x"_s << 0 << u"d"_s << u"a b(c d(x e)) f g"_s;
    QTest::newRow("empty parts") << u"  x  "_s << 0 << QString() << u"x a b(c d(e)) f g"_s;
    QTest::newRow("nothing but separators") << u"   "_s << 0 << QString() << unchanged;
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
    QTest::newRow("down among siblings") << u"a"_s << 3 << QString() << u"b(c d(e)) f a g"_s;
    QTest::newRow("to the end") << u"a"_s << 4 << QString() << u"b(c d(e)) f g a"_s;
    QTest::newRow("beyond the end") << u"a"_s << 99 << QString() << u"b(c d(e)) f g a"_s;
    QTest::newRow("up among siblings") << u"g"_s << 1 << QString() << u"a g b(c d(e)) f"_s;
    QTest::newRow("on nothing") << u"g"_s << -1 << QString() << u"g a b(c d(e)) f"_s;
    QTest::newRow("on an item") << u"f"_s << -1 << u"b"_s << u"a b(f c d(e)) g"_s;
    QTest::newRow("into an item") << u"f"_s << 1 << u"b"_s << u"a b(c f d(e)) g"_s;
    QTest::newRow("with what is in it") << u"d"_s << 0 << u"a"_s << u"a(d(e)) b(c) f g"_s;
    QTest::newRow("out of an item") << u"e"_s << 0 << QString() << u"e a b(c d) f g"_s;
    QTest::newRow("into its grandparent") << u"e"_s << 1 << u"b"_s << u"a b(c e d) f g"_s;
    QTest::newRow("several upwards") << u"f g"_s << 0 << QString() << u"f g a b(c d(e))"_s;
    QTest::newRow("several downwards") << u"a b"_s << 4 << QString() << u"f g a b(c d(e))"_s;
    QTest::newRow("from both sides") << u"a g"_s << 2 << QString() << u"b(c d(e)) a g f"_s;
    QTest::newRow("in another order") << u"g a"_s << 2 << QString() << u"b(c d(e)) g a f"_s;
    QTest::newRow("from several places") << u"a c e g"_s << 0 << u"f"_s << u"b(d) f(a c e g)"_s;
    QTest::newRow("past its own parent's row") << u"a e"_s << 0 << u"f"_s << u"b(c d) f(a e) g"_s;
    QTest::newRow("with one that is in another") << u"b e"_s << 0 << u"f"_s << u"a f(b(c d) e) g"_s;
    QTest::newRow("one twice") << u"a a"_s << 3 << QString() << u"b(c d(e)) f a g"_s;
    QTest::newRow("in another case") << u"A"_s << 4 << QString() << u"b(c d(e)) f g a"_s;
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
    QTest::newRow("on itself") << u"b"_s << -1 << u"b"_s;
    QTest::newRow("into itself") << u"b"_s << 1 << u"b"_s;
    QTest::newRow("into what is in it") << u"b"_s << 0 << u"d"_s;
    QTest::newRow("into what is far below it") << u"b"_s << 0 << u"e"_s;
    QTest::newRow("to where it is") << u"f"_s << 2 << QString();
    QTest::newRow("to behind itself") << u"f"_s << 3 << QString();
    QTest::newRow("an unknown title") << u"x"_s << 0 << QString();
    QTest::newRow("one of several is unknown") << u"f x"_s << 0 << QString();
    QTest::newRow("one of several may not go there") << u"g b"_s << 0 << u"e"_s;
}

void TstKeywordDrops::aMoveThatMayNotBeMovesNothing()
{
    QFETCH(const QString, titles);
    QFETCH(const int, row);
    QFETCH(const QString, parent);
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    const QSignalSpy moves(mModel.get(), &TVLKeywordModel::rowsMoved);
    QVERIFY(!drop(titles, Qt::MoveAction, row, parent));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_s);
    QCOMPARE(changes.size(), 0);
    QCOMPARE(moves.size(), 0);
}

void TstKeywordDrops::aMoveTellsOfItsRows()
{
    const QPersistentModelIndex e = mModel->findTitle(u"e"_s);
    QSignalSpy moves(mModel.get(), &TVLKeywordModel::rowsMoved);
    QVERIFY(drop(u"a d"_s, Qt::MoveAction, 3, QString()));
    QCOMPARE(keywordText(mModel.get()), u"b(c) f a d(e) g"_s);
    QCOMPARE(moves.size(), 2);
    QCOMPARE(moves.at(0).at(1).toInt(), 0);
    QCOMPARE(moves.at(0).at(4).toInt(), 3);
    QCOMPARE(moves.at(1).at(1).toInt(), 1);
    QCOMPARE(moves.at(1).at(4).toInt(), 3);
    QCOMPARE(QModelIndex(e), mModel->findTitle(u"e"_s));
}

void TstKeywordDrops::aMoveIsOneChange()
{
    const QSignalSpy changes(mModel.get(), &TVLKeywordModel::modelChanged);
    QVERIFY(drop(u"f g"_s, Qt::MoveAction, 0, QString()));
    QCOMPARE(changes.size(), 1);
}

void TstKeywordDrops::aDropWithoutTextIsRefused()
{
    QMimeData mime;
    mime.setData(TVL::KeywordsMimeType, "x");
    QVERIFY(!mModel->dropMimeData(&mime, Qt::CopyAction, 0, 0, QModelIndex()));
    QVERIFY(!mModel->dropMimeData(nullptr, Qt::CopyAction, 0, 0, QModelIndex()));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_s);
}

void TstKeywordDrops::aDropBelowAnotherModelsKeywordIsRefused()
{
    TVLKeywordModel other(nullptr);
    addKeywords(&other, {}, u"o"_s);
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::MoveAction})
        QVERIFY(!mModel->dropMimeData(dragOf(u"f"_s).get(), action, 0, 0, other.index(1)));
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
    QVERIFY(!drop(u"x"_s, Qt::DropAction(action), 0, QString()));
    QVERIFY(!drop(u"g"_s, Qt::DropAction(action), 0, QString()));
    QCOMPARE(keywordText(mModel.get()), u"a b(c d(e)) f g"_s);
}

void TstKeywordDrops::whatIsDraggedCanBeDroppedInAnotherModel()
{
    TVLKeywordModel other(nullptr);
    addKeywords(&other, {}, u"a z"_s);
    const std::unique_ptr<QMimeData> mime(
        mModel->mimeData(keywordsTitled(mModel.get(), u"e b a"_s)));
    QVERIFY(other.dropMimeData(mime.get(), Qt::CopyAction, 1, 0, QModelIndex()));
    QCOMPARE(keywordText(&other), u"a z b e"_s);
}

TVL_TEST(TstKeywordDrops)
#include "tst_keyworddrops.moc"
