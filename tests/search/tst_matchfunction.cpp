#include "RandomMatches.h"
#include "ReferenceMatch.h"
#include "TVLMatchFunction_p.h"
#include "TVLTextMatcher.h"
#include "TestMain.h"
#include "TestScale.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString Connection = u"matchfunction"_s;

/** What a statement gives in the first column of all its rows; what went wrong if it fails. */
QVariantList rows(const QString &statement, const QVariantList &bindings = {})
{
    QSqlQuery query(QSqlDatabase::database(Connection));
    if (!query.prepare(statement))
        return {query.lastError().databaseText()};
    for (const QVariant &binding : bindings)
        query.addBindValue(binding);
    if (!query.exec())
        return {query.lastError().databaseText()};
    QVariantList values;
    while (query.next())
        values.append(query.value(0));
    if (query.lastError().isValid())
        return {query.lastError().databaseText()};
    return values;
}

/** The function's result for arguments that are bound. */
QVariant called(const QVariantList &arguments)
{
    const QStringList placeholders(arguments.size(), u"?"_s);
    return rows(u"SELECT matchQString(%1)"_s.arg(placeholders.join(u", "_s)), arguments).value(0);
}

QVariant called(const QVariant &value, int flags, const QStringList &words)
{
    QVariantList arguments{value, flags, int(words.size())};
    for (const QString &word : words)
        arguments.append(word);
    return called(arguments);
}

/** How the database keeps a text: without what UTF-8 has no bytes for. */
QString kept(const QString &text)
{
    return rows(u"SELECT ?"_s, {text}).value(0).toString();
}

/** Whether SQLite gets to see a text as it is: it has its own idea of half a pair, and takes a byte
 * order mark away. */
bool arrivesAsItIs(const QString &text)
{
    return QString::fromUtf8(text.toUtf8()) == text && !text.startsWith(u'\ufeff')
        && !text.startsWith(QChar(0xfffe));
}

} // namespace

class TstMatchFunction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, Connection);
        database.setDatabaseName(QString());
        QVERIFY(database.open());
        QVERIFY(tvlInstallMatchFunction(database));
    }

    void cleanup()
    {
        QSqlDatabase::database(Connection).close();
        QSqlDatabase::removeDatabase(Connection);
    }

    void closedConnectionGetsNoFunction()
    {
        QSqlDatabase::database(Connection).close();
        ignoreRefusal();
        QVERIFY(!tvlInstallMatchFunction(QSqlDatabase::database(Connection, false)));
    }

    void noConnectionGetsNoFunction()
    {
        ignoreRefusal();
        QVERIFY(!tvlInstallMatchFunction(QSqlDatabase()));
    }

    void functionCanBeInstalledAgain()
    {
        QVERIFY(tvlInstallMatchFunction(QSqlDatabase::database(Connection)));
        QCOMPARE(called(u"an art"_s, 12, {u"art"_s}), QVariant(1));
    }

    void functionBelongsToItsConnection()
    {
        const QString other = u"other"_s;
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, other);
            database.setDatabaseName(u":memory:"_s);
            QVERIFY(database.open());
            QSqlQuery query(database);
            QVERIFY(!query.exec(u"SELECT matchQString('a', 0, 1, 'a')"_s));
        }
        QSqlDatabase::removeDatabase(other);
    }

    void valueIsMatchedWithWords_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("expected");

        const QVariant text = u"The red fox\u2019s den"_s;
        QTest::newRow("one word") << text << 0 << QStringList{u"FOX"_s} << 1;
        QTest::newRow("by case") << text << 2 << QStringList{u"FOX"_s} << 0;
        QTest::newRow("apostrophe") << text << 0 << QStringList{u"fox's"_s} << 1;
        QTest::newRow("one of two") << text << 0 << QStringList{u"hare"_s, u"den"_s} << 1;
        QTest::newRow("both of two") << text << 32 << QStringList{u"hare"_s, u"den"_s} << 0;
        QTest::newRow("whole words") << text << 12 << QStringList{u"re"_s} << 0;
        QTest::newRow("expression") << text << 64 << QStringList{u"r.d f[aeiou]x"_s} << 1;
        QTest::newRow("bad expression") << text << 64 << QStringList{u"("_s} << 0;
        QTest::newRow("no words, all") << text << 32 << QStringList() << 1;
        QTest::newRow("no words, any") << text << 0 << QStringList() << 0;
        QTest::newRow("a number") << QVariant(1234) << 0 << QStringList{u"23"_s} << 1;
        QTest::newRow("null value") << QVariant() << 0 << QStringList{u"a"_s} << 0;
        QTest::newRow("null value, empty word") << QVariant() << 12 << QStringList{QString()} << 1;
        QTest::newRow("empty value") << QVariant(u""_s) << 0 << QStringList{u"a"_s} << 0;
        QTest::newRow("bytes") << QVariant(QByteArray("an art")) << 12 << QStringList{u"art"_s}
                               << 1;
        QTest::newRow("bytes that are no UTF-8")
            << QVariant(QByteArray("\xff\xfe art\xe2\x82")) << 12 << QStringList{u"art"_s} << 1;
        QTest::newRow("no bytes") << QVariant(QByteArray("")) << 0 << QStringList{u"art"_s} << 0;
        QTest::newRow("null characters") << QVariant(QString::fromLatin1("a\0b\0c", 5)) << 0
                                         << QStringList{QString::fromLatin1("b\0c", 3)} << 1;
        QTest::newRow("what stands behind a null character")
            << QVariant(QString::fromLatin1("a\0b", 3)) << 0 << QStringList{u"b"_s} << 1;
        // Of texts that are bound SQLite takes the mark away, of bytes it doesn't.
        QTest::newRow("byte order mark") << QVariant(QByteArray("\xef\xbb\xbf"
                                                                "a"))
                                         << 64 << QStringList{u"^.a"_s} << 1;
        QTest::newRow("start behind a byte order mark") << QVariant(QByteArray("\xef\xbb\xbf"
                                                                               "a"))
                                                        << 64 << QStringList{u"^a"_s} << 0;
    }

    void valueIsMatchedWithWords()
    {
        QFETCH(QVariant, value);
        QFETCH(int, flags);
        QFETCH(QStringList, words);
        QFETCH(int, expected);
        QCOMPARE(called(value, flags, words), QVariant(expected));
    }

    void countsAndWordsNeedNotAgree_data()
    {
        QTest::addColumn<QVariant>("count");
        QTest::addColumn<QVariantList>("words");
        QTest::addColumn<int>("expected");

        const QVariantList two{u"fox"_s, u"hare"_s};
        QTest::newRow("fewer are counted") << QVariant(1) << two << 1;
        QTest::newRow("all are counted") << QVariant(2) << two << 0;
        QTest::newRow("more are counted") << QVariant(9) << two << 0;
        QTest::newRow("by far more are counted")
            << QVariant(std::numeric_limits<int>::max()) << two << 0;
        QTest::newRow("none is counted") << QVariant(0) << two << 1;
        QTest::newRow("less than none") << QVariant(-3) << two << 1;
        QTest::newRow("least of all") << QVariant(std::numeric_limits<int>::min()) << two << 1;
        QTest::newRow("a null count") << QVariant() << two << 1;
        QTest::newRow("a count that is a text") << QVariant(u"1"_s) << two << 1;
        QTest::newRow("no words but a count") << QVariant(3) << QVariantList() << 1;
        QTest::newRow("a null word is empty") << QVariant(1) << QVariantList{QVariant()} << 1;
        QTest::newRow("a word of bytes") << QVariant(1) << QVariantList{QByteArray("fox")} << 1;
        QTest::newRow("a word of bytes that are no UTF-8")
            << QVariant(1) << QVariantList{QByteArray("\xc3")} << 0;
        QTest::newRow("a word that is a number") << QVariant(1) << QVariantList{12} << 0;
    }

    /** With the flag that all words have to match, so that it shows which are taken. */
    void countsAndWordsNeedNotAgree()
    {
        QFETCH(QVariant, count);
        QFETCH(QVariantList, words);
        QFETCH(int, expected);
        const QVariantList arguments = QVariantList{u"a fox"_s, 32, count} + words;
        QCOMPARE(called(arguments), QVariant(expected));
    }

    void fewerThanThreeArgumentsAreAnError()
    {
        const QVariant error = u"wrong number of arguments to function matchQString()"_s;
        QCOMPARE(called(QVariantList()), error);
        QCOMPARE(called({u"a"_s}), error);
        QCOMPARE(called({u"a"_s, 0}), error);
        QCOMPARE(called({u"a"_s, 0, 0}), QVariant(0));
    }

    /** More words than SQLite remembers constant arguments of. */
    void manyWordsAreMatched()
    {
        QStringList words;
        for (int i = 0; i < 90; ++i)
            words.append(u"word%1."_s.arg(i));
        QCOMPARE(called(words.join(QString()), 32, words), QVariant(1));
        QCOMPARE(called(words.join(QString()).chopped(1), 32, words), QVariant(0));
        QCOMPARE(called(u"word89."_s, 0, words), QVariant(1));
    }

    void wordsMayDifferFromRowToRow()
    {
        QVERIFY(rows(u"CREATE TABLE t (v TEXT, f INT, n INT, a TEXT, b TEXT)"_s).isEmpty());
        const QVariantList table[] = {
            {u"a fox"_s, 0, 1, u"fox"_s, u"x"_s},   {u"a fox"_s, 0, 1, u"hare"_s, u"x"_s},
            {u"a fox"_s, 0, 2, u"hare"_s, u"x"_s},  {u"a fox"_s, 32, 2, u"hare"_s, u"x"_s},
            {u"a fox"_s, 12, 1, u"FOX"_s, u"x"_s},  {u"a fox"_s, 14, 1, u"FOX"_s, u"x"_s},
            {u"a fox"_s, 0, 1, u"f.x"_s, u"x"_s},   {u"a fox"_s, 64, 1, u"f.x"_s, u"x"_s},
            {u"a fox"_s, 0, 2, u"xf"_s, u"oxo"_s},  {u"a fox"_s, 0, 2, u"xfo"_s, u"xo"_s},
            {u"a fox"_s, 0, 2, QVariant(), u"x"_s}, {u"a fox"_s, 0, 0, u"fox"_s, u"x"_s},
        };
        for (const QVariantList &row : table)
            QVERIFY(rows(u"INSERT INTO t VALUES (?, ?, ?, ?, ?)"_s, row).isEmpty());
        const QVariantList expected{1, 0, 1, 0, 1, 0, 0, 1, 0, 0, 1, 0};
        QCOMPARE(rows(u"SELECT matchQString(v, f, n, a, b) FROM t"_s), expected);
        // Some of them stay the same, and which these are must not matter.
        QCOMPARE(rows(u"SELECT matchQString(v, 0, 1, a) FROM t WHERE rowid < 3"_s),
                 QVariantList({1, 0}));
        QCOMPARE(rows(u"SELECT matchQString(v, f, 1, 'FOX') FROM t WHERE rowid IN (5, 6)"_s),
                 QVariantList({1, 0}));
        QCOMPARE(rows(u"SELECT matchQString(v, 0, n, 'hare', 'x') FROM t WHERE rowid < 4"_s),
                 QVariantList({0, 0, 1}));
        QCOMPARE(rows(u"SELECT matchQString('fox', 0, 2, 'hare', a) FROM t WHERE rowid < 3"_s),
                 QVariantList({1, 0}));
    }

    void callsOfOneStatementAreApart()
    {
        QCOMPARE(rows(u"SELECT matchQString('a fox', 0, 1, 'fox') || matchQString('a fox', 0, 1, "
                      "'hare') || matchQString('a fox', 0, 1, 'a')"_s),
                 QVariantList{u"101"_s});
    }

    void statementCanRunAgainWithOtherWords()
    {
        QSqlQuery query(QSqlDatabase::database(Connection));
        QVERIFY(query.prepare(u"SELECT matchQString(?, ?, ?, ?)"_s));
        const auto run = [&](const QString &text, int flags, const QString &word) {
            query.bindValue(0, text);
            query.bindValue(1, flags);
            query.bindValue(2, 1);
            query.bindValue(3, word);
            return query.exec() && query.next() ? query.value(0) : QVariant();
        };
        QCOMPARE(run(u"cart"_s, 0, u"art"_s), QVariant(1));
        QCOMPARE(run(u"cart"_s, 12, u"art"_s), QVariant(0));
        QCOMPARE(run(u"cart"_s, 12, u"CART"_s), QVariant(1));
        QCOMPARE(run(u"cart"_s, 14, u"CART"_s), QVariant(0));
        QCOMPARE(run(u"c.rt"_s, 0, u"c.rt"_s), QVariant(1));
    }

    void databaseOfUtf16IsMatchedAsWell()
    {
        QVERIFY(rows(u"PRAGMA encoding = 'UTF-16'"_s).isEmpty());
        QVERIFY(rows(u"CREATE TABLE t (v TEXT)"_s).isEmpty());
        QVERIFY(
            rows(u"INSERT INTO t VALUES (?)"_s, {u"\u00c4rger, it\u2019s \U0001f600"_s}).isEmpty());
        QCOMPARE(rows(u"PRAGMA encoding"_s), QVariantList{u"UTF-16le"_s});
        QCOMPARE(rows(u"SELECT matchQString(v, 32, 3, ?, ?, ?) FROM t"_s,
                      {u"\u00e4rger"_s, u"it's"_s, u"\U0001f600"_s}),
                 QVariantList{1});
    }

    void statementsOfASearchFindTheirRows()
    {
        createTable();
        for (int i = 0; i < 1000; ++i) {
            const QString text = u"Text %1 is %2 long: %3"_s.arg(i).arg(
                i % 7 ? u"not"_s : u"rather"_s, QString(i * 20, u'.'));
            QVERIFY(rows(u"INSERT INTO DocumentSearchProperties VALUES (?, ?, ?, 1)"_s,
                         {i, i % 2 + 2, text})
                        .isEmpty());
        }
        const QString all = u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE "
                            "matchQString(propertyValue, ?, ?, ?, ?)"_s;
        const QString ofType = u"SELECT DISTINCT identity FROM DocumentSearchProperties WHERE type "
                               "is ? AND matchQString(propertyValue, ?, ?, ?)"_s;
        QCOMPARE(rows(all, {32, 2, u"RATHER"_s, u"long"_s}).size(), 143);
        QCOMPARE(rows(ofType, {2, 12, 1, u"rather"_s}).size(), 72);
        QCOMPARE(rows(ofType, {2, 64, 1, u"^text \\d+4 .*\\.$"_s}).size(), 99);
        QCOMPARE(rows(ofType, {3, 12, 1, u"long:"_s}).size(), 500);
        QCOMPARE(rows(ofType, {5, 12, 1, u"rather"_s}).size(), 0);
    }

    void randomRowsMatchAsStepByStep()
    {
        const auto cases = quint32(testCases(10'000));
        const quint32 first = qEnvironmentVariable("TVL_TEST_SEED", u"1"_s).toUInt();
        int compared = 0;
        for (quint32 seed = first; seed < first + cases; ++seed) {
            QRandomGenerator random(seed);
            const MatchCase match = randomMatchCase(&random);
            if (!arrivesAsItIs(match.text)
                || !std::all_of(match.words.begin(), match.words.end(), arrivesAsItIs))
                continue;
            const bool expected = referenceMatch(match.text, match.flags, match.words);
            if (called(match.text, match.flags, match.words) != QVariant(expected ? 1 : 0))
                QFAIL(qPrintable(u"seed %1: %2"_s.arg(seed).arg(described(match))));
            ++compared;
        }
        QVERIFY(compared > int(cases / 2));
    }

    void halfAPairIsSafe()
    {
        const QString half = u"a"_s + QChar(0xd83d) + u"b"_s;
        QCOMPARE(called(half, 0, {u"a"_s}),
                 QVariant(referenceMatch(kept(half), 0, {u"a"_s}) ? 1 : 0));
        QVERIFY(called(u"ab"_s, 0, {half}).isValid());
    }

private:
    static void ignoreRefusal()
    {
        QTest::ignoreMessage(
            QtCriticalMsg,
            QRegularExpression(
                u"^sql error matchQString needs an open connection of SQLite [\\d.]+$"_s));
    }

    static void createTable()
    {
        QVERIFY(rows(u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, "
                     "propertyValue TEXT, confirmed BOOLEAN, UNIQUE(identity, type))"_s)
                    .isEmpty());
    }
};

TVL_TEST(TstMatchFunction)
#include "tst_matchfunction.moc"
