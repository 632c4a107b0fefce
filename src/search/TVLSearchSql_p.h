#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

using namespace Qt::StringLiterals;

struct sqlite3;

/** What the sources of the search index share in talking to its database. */
namespace TVLSearchSql {

inline const QString InsertText =
    u"INSERT INTO DocumentSearchProperties (identity, type, propertyValue, confirmed) VALUES (:i, :t, :v, :c)"_s;
inline const QString InsertInt =
    u"INSERT INTO DocumentIntProperties (identity, type, propertyValue) VALUES (:i, :t, :v)"_s;
inline const QString UpdateText =
    u"UPDATE DocumentSearchProperties SET propertyValue = :v, confirmed = :c WHERE identity = :id AND type = :t"_s;

/**
 * The handle of a connection that is open and uses the same SQLite as this library; else null. One
 * of its own inside the driver would take our calls on its handle badly.
 */
[[nodiscard]] sqlite3 *handleOf(const QSqlDatabase &database);

/**
 * Moves a new connection's private database into memory, with what could be taken back and the
 * temporary tables of searches.
 *
 * In a file for temporary data it would be lost whole to the first disk that is full, with the
 * labels and status items, of which there is no other copy until the project is saved. It is also
 * searched and changed faster. Without a handle the connection is left as it is.
 */
void keepInMemory(const QSqlDatabase &database, sqlite3 *handle);

/** Passes a result on; a failure is logged with the statement and the driver's text. */
bool succeeded(const QSqlQuery &query, bool result, int line);
[[nodiscard]] bool prepare(QSqlQuery *query, const QString &statement, int line);
[[nodiscard]] bool run(QSqlQuery *query, const QString &statement, int line);

/**
 * A text as it is bound so that it is stored as it is. Half surrogate pairs become U+FFFD, as the
 * database would take each for a pair with whatever follows.
 */
[[nodiscard]] QString storedText(const QString &text);
/** storedText() as a value that is never NULL, of which SQL knows neither a length nor a match. */
[[nodiscard]] QVariant textValue(const QString &text);

/**
 * Changes that are kept or dropped together: a transaction, or a part of the one that is open
 * already. Drops them when it goes unless they were kept.
 */
class Bundle
{
public:
    explicit Bundle(QSqlDatabase *database);
    ~Bundle();
    Q_DISABLE_COPY_MOVE(Bundle)

    [[nodiscard]] bool isOpen() const { return mState != Closed; }
    /** Keeps the changes; on a failure they are dropped. */
    [[nodiscard]] bool keep();

private:
    enum State { Closed, Transaction, Savepoint };

    QSqlDatabase *mDatabase;
    State mState = Closed;
};

} // namespace TVLSearchSql
