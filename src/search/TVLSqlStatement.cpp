#include "TVLSqlStatement_p.h"

#include "TVLSearchSql_p.h"

#include <QDebug>

#include <sqlite3.h>

#include <utility>

using namespace TVLSearchSql;

TVLSqlStatement::TVLSqlStatement(const QSqlDatabase &database, sqlite3 *handle,
                                 const QString &statement)
    : mHandle(handle)
{
    if (!mHandle) {
        mQuery.emplace(database);
        mQuery->setForwardOnly(true);
        mHasFailed = !prepare(&*mQuery, statement, __LINE__);
        return;
    }
    const QByteArray text = statement.toUtf8();
    mHasFailed =
        sqlite3_prepare_v2(mHandle, text.constData(), int(text.size()), &mStatement, nullptr)
        != SQLITE_OK;
    if (mHasFailed)
        qCritical() << "sql error" << statement << QString::fromUtf8(sqlite3_errmsg(mHandle))
                    << __LINE__;
}

TVLSqlStatement::TVLSqlStatement(TVLSqlStatement &&other) noexcept
    : mHandle(other.mHandle)
    , mStatement(std::exchange(other.mStatement, nullptr))
    , mQuery(std::exchange(other.mQuery, std::nullopt))
    , mIsRunning(other.mIsRunning)
    , mHasFailed(other.mHasFailed)
{
}

TVLSqlStatement::~TVLSqlStatement()
{
    sqlite3_finalize(mStatement);
}

void TVLSqlStatement::bind(int place, int value)
{
    if (mQuery)
        mQuery->bindValue(place, value);
    else if (mStatement)
        sqlite3_bind_int(mStatement, place + 1, value);
}

void TVLSqlStatement::bind(int place, const QString &text)
{
    if (mQuery)
        mQuery->bindValue(place, textValue(text));
    else if (mStatement)
        sqlite3_bind_text16(mStatement, place + 1, text.utf16(), int(text.size() * sizeof(QChar)),
                            SQLITE_STATIC);
}

bool TVLSqlStatement::run()
{
    const bool hasRow = next();
    if (hasRow)
        reset();
    return hasRow || !mHasFailed;
}

bool TVLSqlStatement::next()
{
    if (mQuery)
        return nextOfQuery();
    if (!mStatement)
        return false;
    const int result = sqlite3_step(mStatement);
    mHasFailed = result != SQLITE_ROW && result != SQLITE_DONE;
    if (mHasFailed)
        qCritical() << "sql error" << QString::fromUtf8(sqlite3_sql(mStatement))
                    << QString::fromUtf8(sqlite3_errmsg(mHandle)) << __LINE__;
    if (result != SQLITE_ROW)
        reset();
    return result == SQLITE_ROW;
}

bool TVLSqlStatement::nextOfQuery()
{
    if (!mIsRunning) {
        mHasFailed = !succeeded(*mQuery, mQuery->exec(), __LINE__);
        mIsRunning = !mHasFailed;
    }
    if (mIsRunning && mQuery->next())
        return true;
    reset();
    return false;
}

void TVLSqlStatement::reset()
{
    if (mQuery)
        mQuery->finish();
    else
        sqlite3_reset(mStatement);
    mIsRunning = false;
}

int TVLSqlStatement::intAt(int column) const
{
    return mQuery ? mQuery->value(column).toInt() : sqlite3_column_int(mStatement, column);
}

QString TVLSqlStatement::textAt(int column) const
{
    if (mQuery)
        return mQuery->value(column).toString();
    const void *text = sqlite3_column_text16(mStatement, column);
    return QString(static_cast<const QChar *>(text),
                   sqlite3_column_bytes16(mStatement, column) / qsizetype(sizeof(QChar)));
}
