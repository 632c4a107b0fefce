#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/** The rows of a statement, each with blanks between its values. */
QStringList plainRowsOf(const TVLSearchIndex &index, const QString &statement)
{
    QSqlQuery query(index);
    if (!query.exec(statement))
        qFatal("%s", qPrintable(query.lastError().text()));
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int i = 0; query.value(i).isValid(); ++i)
            values.append(query.value(i).toString());
        rows.append(values.join(u' '));
    }
    return rows;
}

QStringList keywordRows(const TVLSearchIndex &index)
{
    return plainRowsOf(index, u"SELECT identity, title FROM ProjectKeywords ORDER BY identity"_s);
}

/** Document, type and value of each row. */
QStringList documentRows(const TVLSearchIndex &index)
{
    return plainRowsOf(index,
                       u"SELECT identity, type, propertyValue FROM DocumentIntProperties "
                       "ORDER BY identity, type, rowid"_s);
}

void ignoreSqlErrors(const QString &text, int times = 1)
{
    for (int i = 0; i < times; ++i)
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(u"^sql error \".*\" \".*%1.*\" \\d+$"_s.arg(text)));
}

} // namespace

class TstKeywordRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mIndex = std::make_unique<TVLSearchIndex>(); }
    void cleanup() { mIndex.reset(); }

    void aKeywordIsAdded();
    void aKeywordOfATakenIdIsRefusedAndLogged();
    void aKeywordIsRenamed();
    void renamingAnUnknownKeywordChangesNothing();
    void aKeywordIsRemovedWithItsDocuments();
    void onlyRowsOfKeywordsGoWithAKeyword();
    void documentsGetKeywords();
    void aKeywordOfADocumentIsRemoved();
    void keywordsOfADocumentAreReplaced();
    void aDocumentIsAffectedOnce();
    void aRemovedDocumentKeepsItsTexts();
    void aNewStoreHasNothingBeyondItsTables();
    void successMarksTheStoreAsModified();
    void aFailureIsLoggedAndTheStoreWorksOn();
    void aReplacementStopsAtTheFirstThatFails();
    void statementsWorkInsideATransaction();
    void manyDocumentsAndKeywords();

private:
    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstKeywordRows::aKeywordIsAdded()
{
    QVERIFY(mIndex->addKeyword(3, u"Sea"_s));
    QVERIFY(mIndex->addKeyword(1, QString()));
    QVERIFY(mIndex->addKeyword(2, u"x'); DROP TABLE ProjectKeywords; -- :i \u6f22"_s));
    QCOMPARE(
        keywordRows(*mIndex),
        QStringList({u"1 "_s, u"2 x'); DROP TABLE ProjectKeywords; -- :i \u6f22"_s, u"3 Sea"_s}));
}

void TstKeywordRows::aKeywordOfATakenIdIsRefusedAndLogged()
{
    QVERIFY(mIndex->addKeyword(3, u"Sea"_s));
    ignoreSqlErrors(u"UNIQUE constraint failed: ProjectKeywords.identity"_s);
    QVERIFY(!mIndex->addKeyword(3, u"Land"_s));
    QCOMPARE(keywordRows(*mIndex), QStringList{u"3 Sea"_s});
    QVERIFY(mIndex->addKeyword(4, u"Land"_s));
}

void TstKeywordRows::aKeywordIsRenamed()
{
    QVERIFY(mIndex->addKeyword(3, u"Sea"_s));
    QVERIFY(mIndex->addKeyword(4, u"Land"_s));
    QVERIFY(mIndex->updateKeyword(3, u"Ocean"_s));
    QCOMPARE(keywordRows(*mIndex), QStringList({u"3 Ocean"_s, u"4 Land"_s}));
}

void TstKeywordRows::renamingAnUnknownKeywordChangesNothing()
{
    QVERIFY(mIndex->updateKeyword(3, u"Ocean"_s));
    QCOMPARE(keywordRows(*mIndex), QStringList());
}

void TstKeywordRows::aKeywordIsRemovedWithItsDocuments()
{
    QVERIFY(mIndex->addKeyword(3, u"Sea"_s));
    QVERIFY(mIndex->addKeyword(4, u"Land"_s));
    QVERIFY(mIndex->setDocumentKeywords(10, {3, 4}));
    QVERIFY(mIndex->setDocumentKeywords(11, {3}));
    QVERIFY(mIndex->removeKeyword(3));
    QCOMPARE(keywordRows(*mIndex), QStringList{u"4 Land"_s});
    QCOMPARE(documentRows(*mIndex), QStringList{u"10 5 4"_s});
    QVERIFY(mIndex->removeKeyword(77));
}

void TstKeywordRows::onlyRowsOfKeywordsGoWithAKeyword()
{
    // A label and a status of the keyword's number.
    execute(*mIndex, u"INSERT INTO DocumentIntProperties VALUES (10, 6, 3), (10, 7, 3)"_s);
    QVERIFY(mIndex->addDocumentKeyword(10, 3));
    QCOMPARE(mIndex->affectedDocuments(3), QSet<int>{10});
    QVERIFY(mIndex->removeDocumentKeyword(10, 3));
    QVERIFY(mIndex->removeKeyword(3));
    QVERIFY(mIndex->setDocumentKeywords(10, {}));
    QCOMPARE(documentRows(*mIndex), QStringList({u"10 6 3"_s, u"10 7 3"_s}));
    QVERIFY(mIndex->affectedDocuments(3).isEmpty());
}

void TstKeywordRows::documentsGetKeywords()
{
    QVERIFY(mIndex->addDocumentKeyword(10, 3));
    QVERIFY(mIndex->addDocumentKeyword(10, 1));
    QVERIFY(mIndex->addDocumentKeyword(0, 3));
    QCOMPARE(documentRows(*mIndex), QStringList({u"0 5 3"_s, u"10 5 3"_s, u"10 5 1"_s}));
    QCOMPARE(mIndex->affectedDocuments(3), QSet<int>({0, 10}));
    QCOMPARE(mIndex->affectedDocuments(1), QSet<int>{10});
    QVERIFY(mIndex->affectedDocuments(2).isEmpty());
}

void TstKeywordRows::aKeywordOfADocumentIsRemoved()
{
    QVERIFY(mIndex->setDocumentKeywords(10, {3, 4}));
    QVERIFY(mIndex->setDocumentKeywords(11, {3}));
    QVERIFY(mIndex->removeDocumentKeyword(10, 3));
    QVERIFY(mIndex->removeDocumentKeyword(11, 4));
    QCOMPARE(documentRows(*mIndex), QStringList({u"10 5 4"_s, u"11 5 3"_s}));
}

void TstKeywordRows::keywordsOfADocumentAreReplaced()
{
    QVERIFY(mIndex->setDocumentKeywords(10, {3, 4}));
    QVERIFY(mIndex->setDocumentKeywords(11, {3}));
    QVERIFY(mIndex->setDocumentKeywords(10, {7, 3}));
    QCOMPARE(documentRows(*mIndex), QStringList({u"10 5 7"_s, u"10 5 3"_s, u"11 5 3"_s}));
    QVERIFY(mIndex->setDocumentKeywords(10, {}));
    QCOMPARE(documentRows(*mIndex), QStringList{u"11 5 3"_s});
}

void TstKeywordRows::aDocumentIsAffectedOnce()
{
    QVERIFY(mIndex->addDocumentKeyword(10, 3));
    QVERIFY(mIndex->addDocumentKeyword(10, 3));
    QCOMPARE(documentRows(*mIndex).size(), 2);
    QCOMPARE(mIndex->affectedDocuments(3), QSet<int>{10});
}

void TstKeywordRows::aRemovedDocumentKeepsItsTexts()
{
    execute(*mIndex,
            u"INSERT INTO DocumentSearchProperties VALUES (10, 1, 'Title', 1), (10, 2, 'x', 0)"_s);
    execute(*mIndex, u"INSERT INTO DocumentIntProperties VALUES (10, 6, 1), (10, 7, 2)"_s);
    QVERIFY(mIndex->setDocumentKeywords(10, {3, 4}));
    QVERIFY(mIndex->setDocumentKeywords(11, {3}));
    QVERIFY(mIndex->removeDocument(10));
    QCOMPARE(documentRows(*mIndex), QStringList{u"11 5 3"_s});
    QCOMPARE(plainRowsOf(*mIndex, u"SELECT count(*) FROM DocumentSearchProperties"_s),
             QStringList{u"2"_s});
    QVERIFY(mIndex->removeDocument(99));
}

void TstKeywordRows::aNewStoreHasNothingBeyondItsTables()
{
    const QString objects = u"SELECT count(*) FROM sqlite_master WHERE sql IS NOT NULL"_s;
    QVERIFY(mIndex->affectedDocuments(1).isEmpty());
    QCOMPARE(plainRowsOf(*mIndex, objects), QStringList{u"6"_s});
}

void TstKeywordRows::successMarksTheStoreAsModified()
{
    QVERIFY(mIndex->affectedDocuments(1).isEmpty());
    QVERIFY(!mIndex->isModified());
    const QList<std::function<bool(TVLSearchIndex *)>> changes = {
        [](TVLSearchIndex *index) { return index->addKeyword(1, u"a"_s); },
        [](TVLSearchIndex *index) { return index->updateKeyword(1, u"b"_s); },
        [](TVLSearchIndex *index) { return index->removeKeyword(1); },
        [](TVLSearchIndex *index) { return index->addDocumentKeyword(1, 1); },
        [](TVLSearchIndex *index) { return index->removeDocumentKeyword(1, 1); },
        [](TVLSearchIndex *index) { return index->setDocumentKeywords(1, {1}); },
    };
    for (const auto &change : changes) {
        TVLSearchIndex index;
        QVERIFY(change(&index));
        QVERIFY(index.isModified());
    }
}

void TstKeywordRows::aFailureIsLoggedAndTheStoreWorksOn()
{
    execute(*mIndex, u"ALTER TABLE ProjectKeywords RENAME TO Away"_s);
    execute(*mIndex, u"ALTER TABLE DocumentIntProperties RENAME TO AwayToo"_s);
    ignoreSqlErrors(u"no such table: ProjectKeywords"_s, 3);
    ignoreSqlErrors(u"no such table: .*DocumentIntProperties"_s, 8);
    QVERIFY(!mIndex->addKeyword(1, u"a"_s));
    QVERIFY(!mIndex->updateKeyword(1, u"a"_s));
    QVERIFY(!mIndex->removeKeyword(1));
    QVERIFY(!mIndex->addDocumentKeyword(1, 1));
    QVERIFY(!mIndex->removeDocumentKeyword(1, 1));
    QVERIFY(!mIndex->setDocumentKeywords(1, {1}));
    QVERIFY(mIndex->affectedDocuments(1).isEmpty());
    QVERIFY(!mIndex->removeDocument(1));
    QVERIFY(!mIndex->isModified());

    execute(*mIndex, u"ALTER TABLE Away RENAME TO ProjectKeywords"_s);
    execute(*mIndex, u"ALTER TABLE AwayToo RENAME TO DocumentIntProperties"_s);
    QVERIFY(mIndex->addKeyword(1, u"a"_s));
    QVERIFY(mIndex->setDocumentKeywords(1, {1}));
    QCOMPARE(mIndex->affectedDocuments(1), QSet<int>{1});
}

void TstKeywordRows::aReplacementStopsAtTheFirstThatFails()
{
    QVERIFY(mIndex->setDocumentKeywords(10, {3, 4}));
    execute(*mIndex,
            u"CREATE TRIGGER refuse BEFORE INSERT ON DocumentIntProperties "
            "WHEN NEW.propertyValue = 9 BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
    ignoreSqlErrors(u"refused"_s, 1);
    QVERIFY(!mIndex->setDocumentKeywords(10, {1, 9, 2}));
    QCOMPARE(documentRows(*mIndex), QStringList{u"10 5 1"_s});
}

void TstKeywordRows::statementsWorkInsideATransaction()
{
    QVERIFY(mIndex->transaction());
    QVERIFY(mIndex->addKeyword(1, u"a"_s));
    QVERIFY(mIndex->setDocumentKeywords(5, {1}));
    QCOMPARE(mIndex->affectedDocuments(1), QSet<int>{5});
    QVERIFY(mIndex->rollback());
    QCOMPARE(keywordRows(*mIndex), QStringList());
    QVERIFY(mIndex->affectedDocuments(1).isEmpty());
    QVERIFY(mIndex->addKeyword(1, u"b"_s));
}

void TstKeywordRows::manyDocumentsAndKeywords()
{
    constexpr int Count = 100000;
    QElapsedTimer timer;
    timer.start();
    for (int id = 0; id < Count; ++id)
        QVERIFY(mIndex->addDocumentKeyword(id, id % 5000));
    qInfo("%d rows entered in %lld ms", Count, timer.restart());
    // Each of these would look at all rows if it were left to the tables alone.
    for (int id = 0; id < 5000; ++id) {
        QCOMPARE(mIndex->affectedDocuments(id).size(), Count / 5000);
        QVERIFY(mIndex->setDocumentKeywords(id, {id, 6000}));
    }
    for (int id = 0; id < 5000; ++id)
        QVERIFY(mIndex->removeKeyword(id));
    qInfo("asked, replaced and removed in %lld ms", timer.elapsed());
    QCOMPARE(plainRowsOf(*mIndex, u"SELECT count(*) FROM DocumentIntProperties"_s),
             QStringList{u"5000"_s});
}

TVL_TEST(TstKeywordRows)
#include "tst_keywordrows.moc"
