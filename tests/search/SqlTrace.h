#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

struct sqlite3;

/**
 * Records the statements that a connection runs, as they were prepared, with their placeholders.
 * They are recorded as long as the object lives; the connection has to live longer.
 */
class SqlTrace
{
public:
    explicit SqlTrace(const QSqlDatabase &database);
    ~SqlTrace();
    Q_DISABLE_COPY_MOVE(SqlTrace)

    /** What was run since the last call. */
    [[nodiscard]] QStringList take();

private:
    static int record(unsigned event, void *trace, void *statement, void *);

    sqlite3 *mHandle;
    QStringList mStatements;
};

/** The rows of a statement, each with bars between its values; NULL is `NULL`. */
[[nodiscard]] QStringList rowsOf(const QSqlDatabase &database, const QString &statement);

/** Runs a statement that has to succeed. */
void execute(const QSqlDatabase &database, const QString &statement);

/** Expects so many "sql error" messages of which the statement or the driver's text has @p part. */
void expectSqlErrors(const QString &part, int times = 1);
