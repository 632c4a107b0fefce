#pragma once

#include <QSqlQuery>
#include <QString>

#include <optional>

struct sqlite3;
struct sqlite3_stmt;

/**
 * A statement for work with many rows. It runs on the database's own handle, because QSqlQuery
 * takes several times longer to bind a value or to hand one out than the database takes for the
 * row; without a handle it is a QSqlQuery.
 *
 * Places and columns count from 0. Failures are logged as those of all statements are.
 */
class TVLSqlStatement
{
public:
    /** @p handle may be null; see TVLSearchSql::handleOf(). */
    TVLSqlStatement(const QSqlDatabase &database, sqlite3 *handle, const QString &statement);
    ~TVLSqlStatement();
    Q_DISABLE_COPY(TVLSqlStatement)
    TVLSqlStatement(TVLSqlStatement &&other) noexcept;
    TVLSqlStatement &operator=(TVLSqlStatement &&) = delete;

    void bind(int place, int value);
    /** The text isn't copied and has to last until the statement has run. */
    void bind(int place, const QString &text);
    void bind(int place, const QString &&text) = delete;

    /** Runs a statement of whose rows none is wanted; false when that fails. */
    [[nodiscard]] bool run();
    /**
     * Goes on to the next row, at first to the first one; false behind the last one and on a
     * failure. Then, or after reset(), the statement can be bound and run again.
     */
    [[nodiscard]] bool next();
    /** Whether the statement could not be prepared, or the last run of it failed. */
    [[nodiscard]] bool hasFailed() const { return mHasFailed; }
    void reset();

    [[nodiscard]] int intAt(int column) const;
    [[nodiscard]] QString textAt(int column) const;

private:
    [[nodiscard]] bool nextOfQuery();

    sqlite3 *mHandle; ///< Not owned; may be null.
    sqlite3_stmt *mStatement = nullptr; ///< Owned.
    std::optional<QSqlQuery> mQuery; ///< In place of the statement.
    bool mIsRunning = false;
    bool mHasFailed = false;
};
