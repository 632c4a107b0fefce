#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <QUuid>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/** What the log says of a statement that fails on a row's uniqueness, with the line of the source.
 */
QRegularExpression sqlError(const QString &statement, const QString &column)
{
    return QRegularExpression(
        u"^sql error \"%1\\b.*\" \"UNIQUE constraint failed: %2.*\" \\d+$"_s.arg(
            QRegularExpression::escape(statement), QRegularExpression::escape(column)));
}

const QString InsertLabel = u"INSERT INTO ProjectLabels"_s;
const QString InsertStatus = u"INSERT INTO ProjectStatusItems"_s;
const QString LabelId = u"ProjectLabels.identity"_s;
const QString StatusId = u"ProjectStatusItems.identity"_s;

void ignoreSqlError(const QString &statement, const QString &column)
{
    QTest::ignoreMessage(QtCriticalMsg, sqlError(statement, column));
}

/** Also a statement that can't be prepared is told with whatever the driver has to say of it. */
void ignoreSqlErrorsOfTable(const QString &table, int times)
{
    const QRegularExpression message(u"^sql error \".*\\b%1\\b.*\" \".+\" \\d+$"_s.arg(table));
    for (int i = 0; i < times; ++i)
        QTest::ignoreMessage(QtCriticalMsg, message);
}

/** The values of a statement's first column. */
QVariantList column(const TVLSearchIndex &index, const QString &statement)
{
    QSqlQuery query(index);
    if (!query.exec(statement))
        qFatal("%s", qPrintable(query.lastError().text()));
    QVariantList values;
    while (query.next())
        values.append(query.value(0));
    return values;
}

QList<TVLLabel> manyLabels(int count)
{
    QList<TVLLabel> labels;
    for (int i = 0; i < count; ++i) {
        // Neither in the order of ids nor in that of titles.
        const int id = (i * 7919) % count;
        labels.append({id, u"Label %1"_s.arg(count - i), QColor(i % 256, i / 4, 7)});
    }
    return labels;
}

} // namespace

class TstLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mIndex = std::make_unique<TVLSearchIndex>(); }
    void cleanup() { mIndex.reset(); }

    void aNewStoreIsOpenEmptyAndUnmodified();
    void theTablesAreMadeWordForWord_data();
    void theTablesAreMadeWordForWord();
    void theStoreIsNoFile();
    void twoStoresShareNothing();
    void theConnectionHasTheNameOfAUuid();
    void noConnectionIsLeftBehind();
    void aStoreMayOutliveTheOneMadeBeforeIt();

    void aLabelReadsBack_data();
    void aLabelReadsBack();
    void anInvalidColourIsKeptAsNone();
    void anUnknownLabelReadsAsNone();
    void labelsKeepTheOrderOfInsertion();
    void labelOrdinalsAreNullUntilOneIsSet();
    void labelsFollowTheirOrdinals();
    void aLabelOfATakenIdIsRefusedAndLogged();
    void setLabelsReplacesAll();
    void setLabelsWithAnEmptyListRemovesAll();
    void setLabelsWithADuplicateIdKeepsTheOldLabels();
    void aStoreWorksOnAfterAFailedReplacement();
    void aThousandLabelsKeepTheirOrder();

    void aStatusItemReadsBack_data() { addTitleRows(); }
    void aStatusItemReadsBack();
    void anUnknownStatusItemReadsAsNone();
    void statusItemsKeepTheOrderOfInsertion();
    void theOrdinalOfAStatusItemComesFromTheLabels();
    void statusItemsFollowTheirOrdinals();
    void aStatusItemOfATakenIdIsRefusedAndLogged();
    void setStatusItemsReplacesAll();
    void setStatusItemsWithADuplicateIdKeepsTheOldItems();
    void aThousandStatusItemsKeepTheirOrder();
    void labelsAndStatusItemsDoNotTouchEachOther();

    void failuresAreLoggedAndGiveEmptyResults();

private:
    static void addTitleRows();

    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstLabels::addTitleRows()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("plain") << u"Chapter"_s;
    QTest::newRow("empty") << u""_s;
    QTest::newRow("Unicode") << u"\u6f22\u5b57 \U0001d11e \u00e9"_s;
    QTest::newRow("quotes") << u"it's \"so\" `so`"_s;
    QTest::newRow("a statement") << u"x'); DROP TABLE ProjectLabels; --"_s;
    QTest::newRow("a placeholder") << u":t ? @t $t"_s;
    QTest::newRow("line ends") << u"one\ntwo\r\n"_s;
    QTest::newRow("a byte order mark") << u"\ufeffChapter"_s;
    QTest::newRow("nothing but byte order marks") << u"\ufeff\ufeff"_s;
    QTest::newRow("long") << QString(100000, u'x');
}

void TstLabels::aNewStoreIsOpenEmptyAndUnmodified()
{
    QVERIFY(mIndex->isOpen());
    QVERIFY(!mIndex->isModified());
    QVERIFY(mIndex->labels().isEmpty());
    QVERIFY(mIndex->labelsIDs().isEmpty());
    QVERIFY(mIndex->statusItems().isEmpty());
    QVERIFY(mIndex->statusIDs().isEmpty());
}

void TstLabels::theTablesAreMadeWordForWord_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("statement");

    QTest::newRow("texts")
        << u"DocumentSearchProperties"_s
        << u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, propertyValue TEXT, "
           u"confirmed BOOLEAN, UNIQUE(identity, type))"_s;
    QTest::newRow("keywords")
        << u"ProjectKeywords"_s
        << u"CREATE TABLE ProjectKeywords (identity INT, title TEXT, UNIQUE(identity))"_s;
    QTest::newRow("labels")
        << u"ProjectLabels"_s
        << u"CREATE TABLE ProjectLabels (identity INT, title TEXT, color TEXT, ordinal INT, "
           u"UNIQUE(identity), UNIQUE(ordinal))"_s;
    QTest::newRow("status items")
        << u"ProjectStatusItems"_s
        << u"CREATE TABLE ProjectStatusItems (identity INT, title TEXT, ordinal INT, "
           u"UNIQUE (identity) UNIQUE (ordinal))"_s;
    QTest::newRow("numbers")
        << u"DocumentIntProperties"_s
        << u"CREATE TABLE DocumentIntProperties (identity INT, type INT, propertyValue INT)"_s;
    QTest::newRow("index")
        << u"dspIndex"_s << u"CREATE INDEX dspIndex ON DocumentSearchProperties (identity, type)"_s;
}

void TstLabels::theTablesAreMadeWordForWord()
{
    QFETCH(QString, name);
    QFETCH(QString, statement);

    QCOMPARE(column(*mIndex, u"SELECT sql FROM sqlite_master WHERE name = '%1'"_s.arg(name)),
             QVariantList{statement});
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM sqlite_master WHERE sql IS NOT NULL"_s),
             QVariantList{6});
}

void TstLabels::theStoreIsNoFile()
{
    QCOMPARE(mIndex->driverName(), u"QSQLITE"_s);
    QCOMPARE(mIndex->databaseName(), QString());
}

void TstLabels::twoStoresShareNothing()
{
    TVLSearchIndex other;
    QVERIFY(other.connectionName() != mIndex->connectionName());
    QVERIFY(mIndex->addLabel(1, u"Mine"_s, Qt::red));
    QVERIFY(!other.hasLabel(1));
    QVERIFY(other.addLabel(1, u"Other"_s, Qt::blue));
    QVERIFY(other.addStatusItem(1, u"Other"_s));
    QCOMPARE(mIndex->label(1).mTitle, u"Mine"_s);
    QVERIFY(!mIndex->hasStatusItem(1));
}

void TstLabels::theConnectionHasTheNameOfAUuid()
{
    QVERIFY(QSqlDatabase::connectionNames().contains(mIndex->connectionName()));
    QCOMPARE(QUuid(mIndex->connectionName()).toString(), mIndex->connectionName());
    QVERIFY(!QUuid(mIndex->connectionName()).isNull());
}

void TstLabels::noConnectionIsLeftBehind()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    QCOMPARE(mIndex->labels().size(), 1);
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->addLabel(1, u"One"_s, Qt::red));
    // Qt warns of a connection that is removed while something still uses it.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    mIndex.reset();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

void TstLabels::aStoreMayOutliveTheOneMadeBeforeIt()
{
    TVLSearchIndex second;
    QVERIFY(second.addLabel(1, u"One"_s, Qt::red));
    mIndex.reset();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList(second.connectionName()));
    QVERIFY(second.addLabel(2, u"Two"_s, Qt::red));
    QCOMPARE(second.labelsIDs(), (QSet<int>{1, 2}));
}

void TstLabels::aLabelReadsBack_data()
{
    addTitleRows();
}

void TstLabels::aLabelReadsBack()
{
    QFETCH(QString, title);

    const TVLLabel expected{3, title, QColor(1, 128, 255)};
    QVERIFY(mIndex->addLabel(expected.mId, expected.mTitle, expected.mColor));
    bool ok = false;
    QCOMPARE(mIndex->label(3, &ok), expected);
    QVERIFY(ok);
    QVERIFY(mIndex->hasLabel(3));
    QCOMPARE(mIndex->labels(), QList<TVLLabel>{expected});
    QCOMPARE(mIndex->labelsIDs(), QSet<int>{3});
    QCOMPARE(column(*mIndex, u"SELECT color FROM ProjectLabels"_s), QVariantList{u"#0180ff"_s});
}

void TstLabels::anInvalidColourIsKeptAsNone()
{
    QVERIFY(mIndex->addLabel(-1, u"No Label"_s, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT color IS NULL FROM ProjectLabels"_s), QVariantList{1});
    bool ok = false;
    const TVLLabel label = mIndex->label(-1, &ok);
    QVERIFY(ok);
    QCOMPARE(label.mId, -1);
    QCOMPARE(label.mTitle, u"No Label"_s);
    QVERIFY(!label.mColor.isValid());
    QVERIFY(mIndex->hasLabel(-1));
    QVERIFY(!mIndex->labels().constFirst().mColor.isValid());
}

void TstLabels::anUnknownLabelReadsAsNone()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    for (const int id : {-1, 0, 2}) {
        bool ok = true;
        const TVLLabel label = mIndex->label(id, &ok);
        QVERIFY(!ok);
        QCOMPARE(label.mId, -1);
        QVERIFY(label.mTitle.isEmpty());
        QVERIFY(!label.mColor.isValid());
        QVERIFY(!mIndex->hasLabel(id));
        QCOMPARE(mIndex->label(id), label);
    }
}

void TstLabels::labelsKeepTheOrderOfInsertion()
{
    const QList<TVLLabel> labels = {
        {5, u"B"_s, Qt::red}, {-1, u"C"_s, QColor()}, {2, u"A"_s, Qt::blue}};
    for (const TVLLabel &label : labels)
        QVERIFY(mIndex->addLabel(label.mId, label.mTitle, label.mColor));
    QCOMPARE(mIndex->labels().size(), labels.size());
    for (qsizetype i = 0; i < labels.size(); ++i) {
        QCOMPARE(mIndex->labels().at(i).mId, labels.at(i).mId);
        QCOMPARE(mIndex->labels().at(i).mTitle, labels.at(i).mTitle);
    }
}

void TstLabels::labelOrdinalsAreNullUntilOneIsSet()
{
    for (int id = 0; id < 3; ++id)
        QVERIFY(mIndex->addLabel(id, u"x"_s, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM ProjectLabels WHERE ordinal IS NULL"_s),
             QVariantList{3});
}

void TstLabels::labelsFollowTheirOrdinals()
{
    for (int id = 0; id < 3; ++id)
        QVERIFY(mIndex->addLabel(id, QString::number(id), QColor()));
    execute(*mIndex, u"UPDATE ProjectLabels SET ordinal = 9 - identity"_s);
    QVERIFY(mIndex->addLabel(7, u"7"_s, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT ordinal FROM ProjectLabels WHERE identity = 7"_s),
             QVariantList{10});
    QList<int> ids;
    const QList<TVLLabel> labels = mIndex->labels();
    for (const TVLLabel &label : labels)
        ids.append(label.mId);
    QCOMPARE(ids, (QList<int>{2, 1, 0, 7}));
}

void TstLabels::aLabelOfATakenIdIsRefusedAndLogged()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->addLabel(1, u"Other"_s, Qt::blue));
    QCOMPARE(mIndex->labels(), (QList<TVLLabel>{{1, u"One"_s, QColor(Qt::red).toRgb()}}));
    QVERIFY(mIndex->addLabel(2, u"Two"_s, Qt::blue));
}

void TstLabels::setLabelsReplacesAll()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    QVERIFY(mIndex->addLabel(2, u"Two"_s, Qt::red));
    const QList<TVLLabel> labels = {{3, u"Three"_s, QColor(1, 2, 3)},
                                    {-1, u"None"_s, QColor()},
                                    {1, u"Uno"_s, QColor(4, 5, 6)}};
    QVERIFY(mIndex->setLabels(labels));
    QCOMPARE(mIndex->labels(), labels);
    QCOMPARE(mIndex->labelsIDs(), (QSet<int>{-1, 1, 3}));
}

void TstLabels::setLabelsWithAnEmptyListRemovesAll()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    QVERIFY(mIndex->setLabels({}));
    QVERIFY(mIndex->labels().isEmpty());
    QVERIFY(mIndex->setLabels({}));
}

void TstLabels::setLabelsWithADuplicateIdKeepsTheOldLabels()
{
    const QList<TVLLabel> old = {{2, u"Two"_s, QColor(1, 2, 3)}, {1, u"One"_s, QColor()}};
    QVERIFY(mIndex->setLabels(old));
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->setLabels({{7, u"a"_s, QColor()},
                                {8, u"b"_s, QColor()},
                                {7, u"c"_s, QColor()},
                                {9, u"d"_s, QColor()}}));
    QCOMPARE(mIndex->labels(), old);
    QCOMPARE(mIndex->labelsIDs(), (QSet<int>{1, 2}));
}

void TstLabels::aStoreWorksOnAfterAFailedReplacement()
{
    for (int pass = 0; pass < 3; ++pass) {
        ignoreSqlError(InsertLabel, LabelId);
        QVERIFY(!mIndex->setLabels({{7, u"a"_s, QColor()}, {7, u"b"_s, QColor()}}));
        const QList<TVLLabel> labels = {{pass, u"One"_s, QColor(1, 2, 3)}};
        QVERIFY(mIndex->setLabels(labels));
        QCOMPARE(mIndex->labels(), labels);
        QVERIFY(mIndex->setStatusItems({{pass, u"One"_s}}));
    }
}

void TstLabels::aThousandLabelsKeepTheirOrder()
{
    const QList<TVLLabel> labels = manyLabels(1000);
    QVERIFY(mIndex->setLabels(labels));
    QCOMPARE(mIndex->labels(), labels);
    QCOMPARE(mIndex->labelsIDs().size(), 1000);
    for (const TVLLabel &label : labels)
        QCOMPARE(mIndex->label(label.mId), label);

    TVLSearchIndex single;
    for (const TVLLabel &label : labels)
        QVERIFY(single.addLabel(label.mId, label.mTitle, label.mColor));
    QCOMPARE(single.labels(), labels);
}

void TstLabels::aStatusItemReadsBack()
{
    QFETCH(QString, title);

    const TVLStatusItem expected{3, title};
    QVERIFY(mIndex->addStatusItem(expected.mId, expected.mTitle));
    bool ok = false;
    QCOMPARE(mIndex->statusItem(3, &ok), expected);
    QVERIFY(ok);
    QVERIFY(mIndex->hasStatusItem(3));
    QCOMPARE(mIndex->statusItems(), QList<TVLStatusItem>{expected});
    QCOMPARE(mIndex->statusIDs(), QSet<int>{3});
}

void TstLabels::anUnknownStatusItemReadsAsNone()
{
    QVERIFY(mIndex->addStatusItem(1, u"One"_s));
    for (const int id : {-1, 0, 2}) {
        bool ok = true;
        QCOMPARE(mIndex->statusItem(id, &ok), TVLStatusItem());
        QVERIFY(!ok);
        QCOMPARE(mIndex->statusItem(id).mId, -1);
        QVERIFY(!mIndex->hasStatusItem(id));
    }
}

void TstLabels::statusItemsKeepTheOrderOfInsertion()
{
    const QList<TVLStatusItem> items = {{5, u"B"_s}, {-1, u"C"_s}, {2, u"A"_s}};
    // The labels have no ordinals either.
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    for (const TVLStatusItem &item : items)
        QVERIFY(mIndex->addStatusItem(item.mId, item.mTitle));
    QCOMPARE(mIndex->statusItems(), items);
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM ProjectStatusItems WHERE ordinal IS NULL"_s),
             QVariantList{3});
}

void TstLabels::theOrdinalOfAStatusItemComesFromTheLabels()
{
    QVERIFY(mIndex->addLabel(1, u"One"_s, Qt::red));
    execute(*mIndex, u"UPDATE ProjectLabels SET ordinal = 41"_s);
    QVERIFY(mIndex->addStatusItem(1, u"One"_s));
    QCOMPARE(column(*mIndex, u"SELECT ordinal FROM ProjectStatusItems"_s), QVariantList{42});
    // The next one would get the same.
    ignoreSqlError(InsertStatus, u"ProjectStatusItems.ordinal"_s);
    QVERIFY(!mIndex->addStatusItem(2, u"Two"_s));
    QCOMPARE(mIndex->statusIDs(), QSet<int>{1});
}

void TstLabels::statusItemsFollowTheirOrdinals()
{
    for (int id = 0; id < 3; ++id)
        QVERIFY(mIndex->addStatusItem(id, QString::number(id)));
    execute(*mIndex, u"UPDATE ProjectStatusItems SET ordinal = 9 - identity"_s);
    QCOMPARE(mIndex->statusItems(), (QList<TVLStatusItem>{{2, u"2"_s}, {1, u"1"_s}, {0, u"0"_s}}));
}

void TstLabels::aStatusItemOfATakenIdIsRefusedAndLogged()
{
    QVERIFY(mIndex->addStatusItem(1, u"One"_s));
    ignoreSqlError(InsertStatus, StatusId);
    QVERIFY(!mIndex->addStatusItem(1, u"Other"_s));
    QCOMPARE(mIndex->statusItems(), (QList<TVLStatusItem>{{1, u"One"_s}}));
}

void TstLabels::setStatusItemsReplacesAll()
{
    QVERIFY(mIndex->addStatusItem(1, u"One"_s));
    QVERIFY(mIndex->addStatusItem(2, u"Two"_s));
    const QList<TVLStatusItem> items = {{3, u"Three"_s}, {-1, u"None"_s}, {1, u"Uno"_s}};
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->statusItems(), items);
    QCOMPARE(mIndex->statusIDs(), (QSet<int>{-1, 1, 3}));
    QVERIFY(mIndex->setStatusItems({}));
    QVERIFY(mIndex->statusItems().isEmpty());
}

void TstLabels::setStatusItemsWithADuplicateIdKeepsTheOldItems()
{
    const QList<TVLStatusItem> old = {{2, u"Two"_s}, {1, u"One"_s}};
    QVERIFY(mIndex->setStatusItems(old));
    ignoreSqlError(InsertStatus, StatusId);
    QVERIFY(!mIndex->setStatusItems({{7, u"a"_s}, {8, u"b"_s}, {7, u"c"_s}}));
    QCOMPARE(mIndex->statusItems(), old);
    QCOMPARE(mIndex->statusIDs(), (QSet<int>{1, 2}));
}

void TstLabels::aThousandStatusItemsKeepTheirOrder()
{
    QList<TVLStatusItem> items;
    for (int i = 0; i < 1000; ++i)
        items.append({(i * 7919) % 1000, u"Status %1"_s.arg(1000 - i)});
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->statusItems(), items);
}

void TstLabels::labelsAndStatusItemsDoNotTouchEachOther()
{
    const QList<TVLLabel> labels = {{1, u"Label"_s, QColor(1, 2, 3)}};
    const QList<TVLStatusItem> items = {{1, u"Status"_s}};
    QVERIFY(mIndex->setLabels(labels));
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->labels(), labels);
    QVERIFY(mIndex->setLabels({}));
    QCOMPARE(mIndex->statusItems(), items);
}

void TstLabels::failuresAreLoggedAndGiveEmptyResults()
{
    execute(*mIndex, u"DROP TABLE ProjectLabels"_s);

    ignoreSqlErrorsOfTable(u"ProjectLabels"_s, 6);
    bool ok = true;
    QVERIFY(mIndex->labels().isEmpty());
    QVERIFY(mIndex->labelsIDs().isEmpty());
    QCOMPARE(mIndex->label(1, &ok).mId, -1);
    QVERIFY(!ok);
    QVERIFY(!mIndex->hasLabel(1));
    QVERIFY(!mIndex->addLabel(1, u"One"_s, Qt::red));
    QVERIFY(!mIndex->setLabels({{1, u"One"_s, Qt::red}}));

    // The status items need the labels for their ordinals when they are written, not when read.
    ignoreSqlErrorsOfTable(u"ProjectLabels"_s, 1);
    QVERIFY(!mIndex->addStatusItem(1, u"One"_s));
    QVERIFY(mIndex->statusItems().isEmpty());
}

TVL_TEST(TstLabels)
#include "tst_labels.moc"
