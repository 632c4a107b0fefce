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

namespace {

/** What the log says of a statement that fails on a row's uniqueness, with the line of the source.
 */
QRegularExpression sqlError(const QString &statement, const QString &column)
{
    return QRegularExpression(
        u"^sql error \"%1\\b.*\" \"UNIQUE constraint failed: %2.*\" \\d+$"_qs.arg(
            QRegularExpression::escape(statement), QRegularExpression::escape(column)));
}

const QString InsertLabel = u"INSERT INTO ProjectLabels"_qs;
const QString InsertStatus = u"INSERT INTO ProjectStatusItems"_qs;
const QString LabelId = u"ProjectLabels.identity"_qs;
const QString StatusId = u"ProjectStatusItems.identity"_qs;

void ignoreSqlError(const QString &statement, const QString &column)
{
    QTest::ignoreMessage(QtCriticalMsg, sqlError(statement, column));
}

/** Also a statement that can't be prepared is told with whatever the driver has to say of it. */
void ignoreSqlErrorsOfTable(const QString &table, int times)
{
    const QRegularExpression message(u"^sql error \".*\\b%1\\b.*\" \".+\" \\d+$"_qs.arg(table));
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
        labels.append({id, u"Label %1"_qs.arg(count - i), QColor(i % 256, i / 4, 7)});
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

    QTest::newRow("plain") << u"Chapter"_qs;
    QTest::newRow("empty") << u""_qs;
    QTest::newRow("Unicode") << u"\u6f22\u5b57 \U0001d11e \u00e9"_qs;
    QTest::newRow("quotes") << u"it's \"so\" `so`"_qs;
    QTest::newRow("a statement") << u"x'); DROP TABLE ProjectLabels; --"_qs;
    QTest::newRow("a placeholder") << u":t ? @t $t"_qs;
    QTest::newRow("line ends") << u"one\ntwo\r\n"_qs;
    QTest::newRow("a byte order mark") << u"\ufeffChapter"_qs;
    QTest::newRow("nothing but byte order marks") << u"\ufeff\ufeff"_qs;
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
        << u"DocumentSearchProperties"_qs
        << u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, propertyValue TEXT, "
           u"confirmed BOOLEAN, UNIQUE(identity, type))"_qs;
    QTest::newRow("keywords")
        << u"ProjectKeywords"_qs
        << u"CREATE TABLE ProjectKeywords (identity INT, title TEXT, UNIQUE(identity))"_qs;
    QTest::newRow("labels")
        << u"ProjectLabels"_qs
        << u"CREATE TABLE ProjectLabels (identity INT, title TEXT, color TEXT, ordinal INT, "
           u"UNIQUE(identity), UNIQUE(ordinal))"_qs;
    QTest::newRow("status items")
        << u"ProjectStatusItems"_qs
        << u"CREATE TABLE ProjectStatusItems (identity INT, title TEXT, ordinal INT, "
           u"UNIQUE (identity) UNIQUE (ordinal))"_qs;
    QTest::newRow("numbers")
        << u"DocumentIntProperties"_qs
        << u"CREATE TABLE DocumentIntProperties (identity INT, type INT, propertyValue INT)"_qs;
    QTest::newRow("index")
        << u"dspIndex"_qs
        << u"CREATE INDEX dspIndex ON DocumentSearchProperties (identity, type)"_qs;
}

void TstLabels::theTablesAreMadeWordForWord()
{
    QFETCH(QString, name);
    QFETCH(QString, statement);

    QCOMPARE(column(*mIndex, u"SELECT sql FROM sqlite_master WHERE name = '%1'"_qs.arg(name)),
             QVariantList{statement});
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM sqlite_master WHERE sql IS NOT NULL"_qs),
             QVariantList{6});
}

void TstLabels::theStoreIsNoFile()
{
    QCOMPARE(mIndex->driverName(), u"QSQLITE"_qs);
    QCOMPARE(mIndex->databaseName(), QString());
}

void TstLabels::twoStoresShareNothing()
{
    TVLSearchIndex other;
    QVERIFY(other.connectionName() != mIndex->connectionName());
    QVERIFY(mIndex->addLabel(1, u"Mine"_qs, Qt::red));
    QVERIFY(!other.hasLabel(1));
    QVERIFY(other.addLabel(1, u"Other"_qs, Qt::blue));
    QVERIFY(other.addStatusItem(1, u"Other"_qs));
    QCOMPARE(mIndex->label(1).mTitle, u"Mine"_qs);
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
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    QCOMPARE(mIndex->labels().size(), 1);
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->addLabel(1, u"One"_qs, Qt::red));
    // Qt warns of a connection that is removed while something still uses it.
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    mIndex.reset();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

void TstLabels::aStoreMayOutliveTheOneMadeBeforeIt()
{
    TVLSearchIndex second;
    QVERIFY(second.addLabel(1, u"One"_qs, Qt::red));
    mIndex.reset();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList(second.connectionName()));
    QVERIFY(second.addLabel(2, u"Two"_qs, Qt::red));
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
    QCOMPARE(column(*mIndex, u"SELECT color FROM ProjectLabels"_qs), QVariantList{u"#0180ff"_qs});
}

void TstLabels::anInvalidColourIsKeptAsNone()
{
    QVERIFY(mIndex->addLabel(-1, u"No Label"_qs, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT color IS NULL FROM ProjectLabels"_qs), QVariantList{1});
    bool ok = false;
    const TVLLabel label = mIndex->label(-1, &ok);
    QVERIFY(ok);
    QCOMPARE(label.mId, -1);
    QCOMPARE(label.mTitle, u"No Label"_qs);
    QVERIFY(!label.mColor.isValid());
    QVERIFY(mIndex->hasLabel(-1));
    QVERIFY(!mIndex->labels().constFirst().mColor.isValid());
}

void TstLabels::anUnknownLabelReadsAsNone()
{
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
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
        {5, u"B"_qs, Qt::red}, {-1, u"C"_qs, QColor()}, {2, u"A"_qs, Qt::blue}};
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
        QVERIFY(mIndex->addLabel(id, u"x"_qs, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM ProjectLabels WHERE ordinal IS NULL"_qs),
             QVariantList{3});
}

void TstLabels::labelsFollowTheirOrdinals()
{
    for (int id = 0; id < 3; ++id)
        QVERIFY(mIndex->addLabel(id, QString::number(id), QColor()));
    execute(*mIndex, u"UPDATE ProjectLabels SET ordinal = 9 - identity"_qs);
    QVERIFY(mIndex->addLabel(7, u"7"_qs, QColor()));
    QCOMPARE(column(*mIndex, u"SELECT ordinal FROM ProjectLabels WHERE identity = 7"_qs),
             QVariantList{10});
    QList<int> ids;
    const QList<TVLLabel> labels = mIndex->labels();
    for (const TVLLabel &label : labels)
        ids.append(label.mId);
    QCOMPARE(ids, (QList<int>{2, 1, 0, 7}));
}

void TstLabels::aLabelOfATakenIdIsRefusedAndLogged()
{
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->addLabel(1, u"Other"_qs, Qt::blue));
    QCOMPARE(mIndex->labels(), (QList<TVLLabel>{{1, u"One"_qs, QColor(Qt::red).toRgb()}}));
    QVERIFY(mIndex->addLabel(2, u"Two"_qs, Qt::blue));
}

void TstLabels::setLabelsReplacesAll()
{
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    QVERIFY(mIndex->addLabel(2, u"Two"_qs, Qt::red));
    const QList<TVLLabel> labels = {{3, u"Three"_qs, QColor(1, 2, 3)},
                                    {-1, u"None"_qs, QColor()},
                                    {1, u"Uno"_qs, QColor(4, 5, 6)}};
    QVERIFY(mIndex->setLabels(labels));
    QCOMPARE(mIndex->labels(), labels);
    QCOMPARE(mIndex->labelsIDs(), (QSet<int>{-1, 1, 3}));
}

void TstLabels::setLabelsWithAnEmptyListRemovesAll()
{
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    QVERIFY(mIndex->setLabels({}));
    QVERIFY(mIndex->labels().isEmpty());
    QVERIFY(mIndex->setLabels({}));
}

void TstLabels::setLabelsWithADuplicateIdKeepsTheOldLabels()
{
    const QList<TVLLabel> old = {{2, u"Two"_qs, QColor(1, 2, 3)}, {1, u"One"_qs, QColor()}};
    QVERIFY(mIndex->setLabels(old));
    ignoreSqlError(InsertLabel, LabelId);
    QVERIFY(!mIndex->setLabels({{7, u"a"_qs, QColor()},
                                {8, u"b"_qs, QColor()},
                                {7, u"c"_qs, QColor()},
                                {9, u"d"_qs, QColor()}}));
    QCOMPARE(mIndex->labels(), old);
    QCOMPARE(mIndex->labelsIDs(), (QSet<int>{1, 2}));
}

void TstLabels::aStoreWorksOnAfterAFailedReplacement()
{
    for (int pass = 0; pass < 3; ++pass) {
        ignoreSqlError(InsertLabel, LabelId);
        QVERIFY(!mIndex->setLabels({{7, u"a"_qs, QColor()}, {7, u"b"_qs, QColor()}}));
        const QList<TVLLabel> labels = {{pass, u"One"_qs, QColor(1, 2, 3)}};
        QVERIFY(mIndex->setLabels(labels));
        QCOMPARE(mIndex->labels(), labels);
        QVERIFY(mIndex->setStatusItems({{pass, u"One"_qs}}));
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
    QVERIFY(mIndex->addStatusItem(1, u"One"_qs));
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
    const QList<TVLStatusItem> items = {{5, u"B"_qs}, {-1, u"C"_qs}, {2, u"A"_qs}};
    // The labels have no ordinals either.
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    for (const TVLStatusItem &item : items)
        QVERIFY(mIndex->addStatusItem(item.mId, item.mTitle));
    QCOMPARE(mIndex->statusItems(), items);
    QCOMPARE(column(*mIndex, u"SELECT count(*) FROM ProjectStatusItems WHERE ordinal IS NULL"_qs),
             QVariantList{3});
}

void TstLabels::theOrdinalOfAStatusItemComesFromTheLabels()
{
    QVERIFY(mIndex->addLabel(1, u"One"_qs, Qt::red));
    execute(*mIndex, u"UPDATE ProjectLabels SET ordinal = 41"_qs);
    QVERIFY(mIndex->addStatusItem(1, u"One"_qs));
    QCOMPARE(column(*mIndex, u"SELECT ordinal FROM ProjectStatusItems"_qs), QVariantList{42});
    // The next one would get the same.
    ignoreSqlError(InsertStatus, u"ProjectStatusItems.ordinal"_qs);
    QVERIFY(!mIndex->addStatusItem(2, u"Two"_qs));
    QCOMPARE(mIndex->statusIDs(), QSet<int>{1});
}

void TstLabels::statusItemsFollowTheirOrdinals()
{
    for (int id = 0; id < 3; ++id)
        QVERIFY(mIndex->addStatusItem(id, QString::number(id)));
    execute(*mIndex, u"UPDATE ProjectStatusItems SET ordinal = 9 - identity"_qs);
    QCOMPARE(mIndex->statusItems(),
             (QList<TVLStatusItem>{{2, u"2"_qs}, {1, u"1"_qs}, {0, u"0"_qs}}));
}

void TstLabels::aStatusItemOfATakenIdIsRefusedAndLogged()
{
    QVERIFY(mIndex->addStatusItem(1, u"One"_qs));
    ignoreSqlError(InsertStatus, StatusId);
    QVERIFY(!mIndex->addStatusItem(1, u"Other"_qs));
    QCOMPARE(mIndex->statusItems(), (QList<TVLStatusItem>{{1, u"One"_qs}}));
}

void TstLabels::setStatusItemsReplacesAll()
{
    QVERIFY(mIndex->addStatusItem(1, u"One"_qs));
    QVERIFY(mIndex->addStatusItem(2, u"Two"_qs));
    const QList<TVLStatusItem> items = {{3, u"Three"_qs}, {-1, u"None"_qs}, {1, u"Uno"_qs}};
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->statusItems(), items);
    QCOMPARE(mIndex->statusIDs(), (QSet<int>{-1, 1, 3}));
    QVERIFY(mIndex->setStatusItems({}));
    QVERIFY(mIndex->statusItems().isEmpty());
}

void TstLabels::setStatusItemsWithADuplicateIdKeepsTheOldItems()
{
    const QList<TVLStatusItem> old = {{2, u"Two"_qs}, {1, u"One"_qs}};
    QVERIFY(mIndex->setStatusItems(old));
    ignoreSqlError(InsertStatus, StatusId);
    QVERIFY(!mIndex->setStatusItems({{7, u"a"_qs}, {8, u"b"_qs}, {7, u"c"_qs}}));
    QCOMPARE(mIndex->statusItems(), old);
    QCOMPARE(mIndex->statusIDs(), (QSet<int>{1, 2}));
}

void TstLabels::aThousandStatusItemsKeepTheirOrder()
{
    QList<TVLStatusItem> items;
    for (int i = 0; i < 1000; ++i)
        items.append({(i * 7919) % 1000, u"Status %1"_qs.arg(1000 - i)});
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->statusItems(), items);
}

void TstLabels::labelsAndStatusItemsDoNotTouchEachOther()
{
    const QList<TVLLabel> labels = {{1, u"Label"_qs, QColor(1, 2, 3)}};
    const QList<TVLStatusItem> items = {{1, u"Status"_qs}};
    QVERIFY(mIndex->setLabels(labels));
    QVERIFY(mIndex->setStatusItems(items));
    QCOMPARE(mIndex->labels(), labels);
    QVERIFY(mIndex->setLabels({}));
    QCOMPARE(mIndex->statusItems(), items);
}

void TstLabels::failuresAreLoggedAndGiveEmptyResults()
{
    execute(*mIndex, u"DROP TABLE ProjectLabels"_qs);

    ignoreSqlErrorsOfTable(u"ProjectLabels"_qs, 6);
    bool ok = true;
    QVERIFY(mIndex->labels().isEmpty());
    QVERIFY(mIndex->labelsIDs().isEmpty());
    QCOMPARE(mIndex->label(1, &ok).mId, -1);
    QVERIFY(!ok);
    QVERIFY(!mIndex->hasLabel(1));
    QVERIFY(!mIndex->addLabel(1, u"One"_qs, Qt::red));
    QVERIFY(!mIndex->setLabels({{1, u"One"_qs, Qt::red}}));

    // The status items need the labels for their ordinals when they are written, not when read.
    ignoreSqlErrorsOfTable(u"ProjectLabels"_qs, 1);
    QVERIFY(!mIndex->addStatusItem(1, u"One"_qs));
    QVERIFY(mIndex->statusItems().isEmpty());
}

TVL_TEST(TstLabels)
#include "tst_labels.moc"
