#include "TVLSearchSql_p.h"

#include <QDebug>
#include <QSqlDriver>
#include <QSqlError>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

const QString MemorySettings[] = {
    u"PRAGMA journal_mode = MEMORY"_s,
    u"PRAGMA temp_store = MEMORY"_s,
};

/** Beyond any project; the library's own limit is one gigabyte. */
constexpr sqlite3_int64 MostBytes = sqlite3_int64(1) << 40;

const QString BeginPart = u"SAVEPOINT bundle"_s;
const QString KeepPart = u"RELEASE bundle"_s;
const QString DropPart = u"ROLLBACK TO bundle"_s;

QString withoutHalfPairs(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

sqlite3 *TVLSearchSql::handleOf(const QSqlDatabase &database)
{
    if (!database.isOpen())
        return nullptr;
    const QVariant handle = database.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    QSqlQuery query(database);
    const bool isOurs = query.exec(u"SELECT sqlite_source_id()"_s) && query.next()
        && query.value(0).toString() == QLatin1String(sqlite3_sourceid());
    return isOurs ? *static_cast<sqlite3 *const *>(handle.constData()) : nullptr;
}

void TVLSearchSql::keepInMemory(const QSqlDatabase &database, sqlite3 *handle)
{
    if (!handle)
        return;
    constexpr unsigned flags = SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE;
    sqlite3_int64 mostBytes = MostBytes;
    if (sqlite3_deserialize(handle, "main", nullptr, 0, 0, flags) != SQLITE_OK
        || sqlite3_file_control(handle, "main", SQLITE_FCNTL_SIZE_LIMIT, &mostBytes) != SQLITE_OK)
        qCritical() << "sql error" << sqlite3_errmsg(handle) << __LINE__;
    QSqlQuery query(database);
    for (const QString &setting : MemorySettings)
        (void)run(&query, setting, __LINE__);
}

bool TVLSearchSql::succeeded(const QSqlQuery &query, bool result, int line)
{
    if (!result)
        qCritical() << "sql error" << query.lastQuery() << query.lastError().text() << line;
    return result;
}

bool TVLSearchSql::prepare(QSqlQuery *query, const QString &statement, int line)
{
    return succeeded(*query, query->prepare(statement), line);
}

bool TVLSearchSql::run(QSqlQuery *query, const QString &statement, int line)
{
    return succeeded(*query, query->exec(statement), line);
}

QVariant TVLSearchSql::textValue(const QString &text)
{
    return text.isNull() ? u""_s : storedText(text);
}

QString TVLSearchSql::storedText(const QString &text)
{
    QString value = text.isValidUtf16() ? text : withoutHalfPairs(text);
    // The database takes one byte order mark off, and believes what it says.
    if (value.startsWith(QChar::ByteOrderMark) || value.startsWith(QChar::ByteOrderSwapped))
        value.prepend(QChar::ByteOrderMark);
    return value;
}

TVLSearchSql::Bundle::Bundle(QSqlDatabase *database)
    : mDatabase(database)
{
    if (mDatabase->transaction()) {
        mState = Transaction;
        return;
    }
    QSqlQuery query(*mDatabase);
    if (run(&query, BeginPart, __LINE__))
        mState = Savepoint;
}

TVLSearchSql::Bundle::~Bundle()
{
    if (mState == Transaction)
        mDatabase->rollback();
    if (mState != Savepoint)
        return;
    QSqlQuery query(*mDatabase);
    (void)(run(&query, DropPart, __LINE__) && run(&query, KeepPart, __LINE__));
}

bool TVLSearchSql::Bundle::keep()
{
    QSqlQuery query(*mDatabase);
    const bool kept = mState == Transaction ? mDatabase->commit() : run(&query, KeepPart, __LINE__);
    if (kept)
        mState = Closed;
    else if (mState == Transaction)
        qCritical() << "sql error" << mDatabase->lastError().text() << __LINE__;
    return kept;
}
