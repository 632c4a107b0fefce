#include "TVLSearchRows_p.h"

#include "TVLSearchSql_p.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/** From here on the time that a row takes hardly falls, and statements stay short. */
constexpr qsizetype RowsAtOnce = 100;

// A row that is refused ends the statement without taking back those before it, which would need a
// journal for each statement. The caller takes all of them back.
const QString InsertTexts =
    u"INSERT OR FAIL INTO DocumentSearchProperties (identity, type, propertyValue, confirmed) VALUES "_s;
const QString InsertInts =
    u"INSERT OR FAIL INTO DocumentIntProperties (identity, type, propertyValue) VALUES "_s;

/** The places of so many rows. */
QString placesOf(qsizetype rows, int columns)
{
    const QString row = u'(' + QStringList(columns, u"?"_s).join(u',') + u')';
    return QStringList(rows, row).join(u',');
}

} // namespace

TVLSearchRows::TVLSearchRows(const QSqlDatabase &database, sqlite3 *handle)
    : mDatabase(database)
    , mHandle(handle)
    , mTexts{InsertTexts, {}, {}}
    , mInts{InsertInts, {}, {}}
{
}

void TVLSearchRows::insertText(int id, TVL::DocumentProperty property, const QString &text,
                               bool isConfirmed)
{
    insert({id, int(property), TVLSearchSql::storedText(text), int(isConfirmed)}, &mTexts);
}

void TVLSearchRows::insertInt(int id, TVL::DocumentProperty property, int value)
{
    insert({id, int(property), value}, &mInts);
}

bool TVLSearchRows::flush()
{
    write(&mTexts);
    write(&mInts);
    return mIsWritten;
}

void TVLSearchRows::clear()
{
    mTexts.rows.clear();
    mInts.rows.clear();
    mIsWritten = true;
}

void TVLSearchRows::update(int id, TVL::DocumentProperty property, const QString &text,
                           bool isConfirmed)
{
    if (!mUpdateText)
        mUpdateText.emplace(mDatabase, mHandle, TVLSearchSql::UpdateText);
    const QString stored = TVLSearchSql::storedText(text);
    mUpdateText->bind(0, stored);
    mUpdateText->bind(1, int(isConfirmed));
    mUpdateText->bind(2, id);
    mUpdateText->bind(3, int(property));
    mIsWritten = mUpdateText->run() && mIsWritten;
}

void TVLSearchRows::TextRow::bindTo(TVLSqlStatement *statement, int place) const
{
    statement->bind(place, id);
    statement->bind(place + 1, property);
    statement->bind(place + 2, text);
    statement->bind(place + 3, isConfirmed);
}

void TVLSearchRows::IntRow::bindTo(TVLSqlStatement *statement, int place) const
{
    statement->bind(place, id);
    statement->bind(place + 1, property);
    statement->bind(place + 2, value);
}

template <typename Row>
void TVLSearchRows::insert(const Row &row, Batch<Row> *batch)
{
    batch->rows.append(row);
    if (batch->rows.size() == RowsAtOnce)
        write(batch);
}

template <typename Row>
void TVLSearchRows::write(Batch<Row> *batch)
{
    const qsizetype count = batch->rows.size();
    if (count == 0)
        return;
    std::optional<TVLSqlStatement> last;
    std::optional<TVLSqlStatement> &statement = count == RowsAtOnce ? batch->full : last;
    if (!statement)
        statement.emplace(mDatabase, mHandle, batch->start + placesOf(count, Row::Columns));
    int place = 0;
    for (const Row &row : std::as_const(batch->rows)) {
        row.bindTo(&*statement, place);
        place += Row::Columns;
    }
    mIsWritten = statement->run() && mIsWritten;
    batch->rows.clear();
}
