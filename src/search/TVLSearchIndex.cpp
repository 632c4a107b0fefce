#include "TVLSearchIndex.h"

#include "TVLMatchFunction_p.h"
#include "TVLSearchSql_p.h"

#include <QDebug>
#include <QSqlError>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace TVLSearchSql;

namespace {

namespace Statement {

const QString CreateTables[] = {
    u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, propertyValue TEXT, confirmed BOOLEAN, UNIQUE(identity, type))"_s,
    u"CREATE TABLE ProjectKeywords (identity INT, title TEXT, UNIQUE(identity))"_s,
    u"CREATE TABLE ProjectLabels (identity INT, title TEXT, color TEXT, ordinal INT, UNIQUE(identity), UNIQUE(ordinal))"_s,
    u"CREATE TABLE ProjectStatusItems (identity INT, title TEXT, ordinal INT, UNIQUE (identity) UNIQUE (ordinal))"_s,
    u"CREATE TABLE DocumentIntProperties (identity INT, type INT, propertyValue INT)"_s,
    u"CREATE INDEX dspIndex ON DocumentSearchProperties (identity, type)"_s,
};

// Never valid SQL to this driver; nothing in the library calls for them.
const QString DropTables[] = {
    u"DROP TABLE IF EXISTS DocumentSearchProperties, ProjectKeywords, ProjectLabels, ProjectStatusItems, DocumentIntProperties;"_s,
    u"DROP INDEX dspIndex ON DocumentSearchProperties;"_s,
};

const QString InsertLabel =
    u"INSERT INTO ProjectLabels (identity, title, color, ordinal) VALUES (:i, :t, :c, (SELECT max(ordinal) +1 FROM ProjectLabels))"_s;
const QString SelectLabel =
    u"SELECT identity, title, color FROM ProjectLabels WHERE identity = :i"_s;
const QString SelectLabels = u"SELECT identity, title, color FROM ProjectLabels ORDER BY ordinal"_s;
const QString SelectLabelIds = u"SELECT identity FROM ProjectLabels"_s;
const QString DeleteLabels = u"DELETE FROM ProjectLabels"_s;

// The ordinal comes from the labels on purpose; with none there it is NULL and the order of
// insertion decides.
const QString InsertStatusItem =
    u"INSERT INTO ProjectStatusItems (identity, title, ordinal) VALUES(:i, :t, (SELECT max(ordinal) +1 FROM ProjectLabels))"_s;
const QString SelectStatusItem =
    u"SELECT identity, title FROM ProjectStatusItems WHERE identity = :i"_s;
const QString SelectStatusItems =
    u"SELECT identity, title FROM ProjectStatusItems ORDER BY ordinal"_s;
const QString SelectStatusIds = u"SELECT identity FROM ProjectStatusItems"_s;
const QString DeleteStatusItems = u"DELETE FROM ProjectStatusItems"_s;

} // namespace Statement

/** A null string for an invalid colour: the column then holds NULL. */
QVariant colorValue(const QColor &color)
{
    return color.isValid() ? QVariant(color.name()) : QVariant(QString());
}

TVLLabel labelOf(const QSqlQuery &row)
{
    TVLLabel label;
    label.mId = row.value(0).toInt();
    label.mTitle = row.value(1).toString();
    if (!row.value(2).isNull())
        label.mColor = QColor(row.value(2).toString());
    return label;
}

TVLStatusItem statusItemOf(const QSqlQuery &row)
{
    return {row.value(0).toInt(), row.value(1).toString()};
}

/** All rows of a statement, each made into a record. */
template <typename Record>
QList<Record> selectRows(const QSqlDatabase &database, const QString &statement,
                         Record (*recordOf)(const QSqlQuery &), int line)
{
    QList<Record> found;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!run(&query, statement, line))
        return found;
    while (query.next())
        found.append(recordOf(query));
    return found;
}

/** The row of an id; a default record and false in @p ok when there is none. */
template <typename Record>
Record selectRow(const QSqlDatabase &database, const QString &statement, int id,
                 Record (*recordOf)(const QSqlQuery &), bool *ok, int line)
{
    QSqlQuery query(database);
    const bool prepared = prepare(&query, statement, line);
    query.bindValue(u":i"_s, id);
    const bool found = prepared && succeeded(query, query.exec(), line) && query.next();
    if (ok)
        *ok = found;
    return found ? recordOf(query) : Record();
}

} // namespace

TVLSearchIndex::TVLSearchIndex(TVLSearchedProject *project)
    : QSqlDatabase(QSqlDatabase::addDatabase(u"QSQLITE"_s, QUuid::createUuid().toString()))
    , mProject(project)
{
    // Without a name the driver opens a private temporary database that vanishes when it is closed.
    setDatabaseName(QString());
    if (!open()) {
        qCritical() << "could not open QSQLITE connection" << lastError().text();
        return;
    }
    mHandle = handleOf(*this);
    keepInMemory(*this, mHandle);
    (void)tvlInstallMatchFunction(*this);
    if (createTables())
        prepareInserts();
}

TVLSearchIndex::~TVLSearchIndex()
{
    const QString name = connectionName();
    mInsertText.reset();
    mInsertInt.reset();
    mQueries.clear();
    close();
    // The registry holds on to the name until no handle to the connection is left.
    static_cast<QSqlDatabase &>(*this) = QSqlDatabase();
    removeDatabase(name);
}

void TVLSearchIndex::prepareInserts()
{
    mInsertText = std::make_unique<QSqlQuery>(*this);
    mInsertInt = std::make_unique<QSqlQuery>(*this);
    if (!mInsertText->prepare(InsertText) || !mInsertInt->prepare(InsertInt))
        qCritical() << "sql error" << lastError().text();
}

bool TVLSearchIndex::createTables()
{
    QSqlQuery query(*this);
    for (const QString &statement : Statement::CreateTables) {
        if (!query.exec(statement)) {
            qCritical() << "could not create schema:" << query.lastError().text();
            return false;
        }
    }
    return true;
}

bool TVLSearchIndex::dropTables()
{
    QSqlQuery query(*this);
    for (const QString &statement : Statement::DropTables) {
        if (!query.exec(statement)) {
            qCritical() << "could not drop schema:" << query.lastError().text();
            return false;
        }
    }
    return true;
}

template <typename Row, typename Add>
bool TVLSearchIndex::replaceRows(const QString &deleteStatement, const QList<Row> &rows, Add add)
{
    const bool wasModified = mIsModified;
    Bundle bundle(this);
    QSqlQuery query(*this);
    const bool replaced = bundle.isOpen() && run(&query, deleteStatement, __LINE__)
        && std::all_of(rows.begin(), rows.end(), add) && bundle.keep();
    mIsModified = wasModified || replaced;
    return replaced;
}

bool TVLSearchIndex::addLabel(int id, const QString &title, const QColor &color)
{
    return change(Statement::InsertLabel,
                  {{u":i"_s, id}, {u":t"_s, textValue(title)}, {u":c"_s, colorValue(color)}},
                  __LINE__);
}

TVLLabel TVLSearchIndex::label(int id, bool *ok) const
{
    return selectRow(*this, Statement::SelectLabel, id, labelOf, ok, __LINE__);
}

bool TVLSearchIndex::hasLabel(int id) const
{
    bool ok = false;
    (void)label(id, &ok);
    return ok;
}

QList<TVLLabel> TVLSearchIndex::labels() const
{
    return selectRows(*this, Statement::SelectLabels, labelOf, __LINE__);
}

bool TVLSearchIndex::setLabels(const QList<TVLLabel> &labels)
{
    return replaceRows(Statement::DeleteLabels, labels, [this](const TVLLabel &label) {
        return addLabel(label.mId, label.mTitle, label.mColor);
    });
}

QSet<int> TVLSearchIndex::labelsIDs() const
{
    return identities(Statement::SelectLabelIds);
}

bool TVLSearchIndex::addStatusItem(int id, const QString &title)
{
    return change(Statement::InsertStatusItem, {{u":i"_s, id}, {u":t"_s, textValue(title)}},
                  __LINE__);
}

TVLStatusItem TVLSearchIndex::statusItem(int id, bool *ok) const
{
    return selectRow(*this, Statement::SelectStatusItem, id, statusItemOf, ok, __LINE__);
}

bool TVLSearchIndex::hasStatusItem(int id) const
{
    bool ok = false;
    (void)statusItem(id, &ok);
    return ok;
}

QList<TVLStatusItem> TVLSearchIndex::statusItems() const
{
    return selectRows(*this, Statement::SelectStatusItems, statusItemOf, __LINE__);
}

bool TVLSearchIndex::setStatusItems(const QList<TVLStatusItem> &items)
{
    return replaceRows(Statement::DeleteStatusItems, items, [this](const TVLStatusItem &item) {
        return addStatusItem(item.mId, item.mTitle);
    });
}

QSet<int> TVLSearchIndex::statusIDs() const
{
    return identities(Statement::SelectStatusIds);
}

// --- All tables

QSqlQuery *TVLSearchIndex::prepared(const QString &statement, int line) const
{
    const auto known = mQueries.find(statement);
    if (known != mQueries.end())
        return &known->second;
    QSqlQuery query(*this);
    query.setForwardOnly(true);
    if (!prepare(&query, statement, line))
        return nullptr;
    return &mQueries.emplace(statement, std::move(query)).first->second;
}

QSqlQuery *TVLSearchIndex::execute(const QString &statement, Bindings bindings, int line) const
{
    QSqlQuery *query = prepared(statement, line);
    if (!query)
        return nullptr;
    for (const auto &[placeholder, value] : bindings)
        query->bindValue(placeholder, value);
    return succeeded(*query, query->exec(), line) ? query : nullptr;
}

bool TVLSearchIndex::change(const QString &statement, Bindings bindings, int line)
{
    QSqlQuery *query = execute(statement, bindings, line);
    if (!query)
        return false;
    query->finish();
    mIsModified = true;
    return true;
}

QSet<int> TVLSearchIndex::identities(const QString &statement) const
{
    QSet<int> ids;
    QSqlQuery query(*this);
    query.setForwardOnly(true);
    if (!run(&query, statement, __LINE__))
        return ids;
    while (query.next())
        ids.insert(query.value(0).toInt());
    return ids;
}
