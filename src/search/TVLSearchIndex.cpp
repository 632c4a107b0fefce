#include "TVLSearchIndex.h"

#include "TVL.h"

#include <QDebug>
#include <QSqlError>
#include <QUuid>

#include <algorithm>

namespace {

namespace Statement {

const QString CreateTables[] = {
    u"CREATE TABLE DocumentSearchProperties (identity INT, type INT, propertyValue TEXT, confirmed BOOLEAN, UNIQUE(identity, type))"_qs,
    u"CREATE TABLE ProjectKeywords (identity INT, title TEXT, UNIQUE(identity))"_qs,
    u"CREATE TABLE ProjectLabels (identity INT, title TEXT, color TEXT, ordinal INT, UNIQUE(identity), UNIQUE(ordinal))"_qs,
    u"CREATE TABLE ProjectStatusItems (identity INT, title TEXT, ordinal INT, UNIQUE (identity) UNIQUE (ordinal))"_qs,
    u"CREATE TABLE DocumentIntProperties (identity INT, type INT, propertyValue INT)"_qs,
    u"CREATE INDEX dspIndex ON DocumentSearchProperties (identity, type)"_qs,
};

// Without these the keywords of one document, and the documents of one keyword, could only be found
// by looking at all rows. They are made when there are rows, as many at once cost less without.
const QString CreateDocumentIndexes[] = {
    u"CREATE INDEX dipDocumentIndex ON DocumentIntProperties (identity, type)"_qs,
    u"CREATE INDEX dipValueIndex ON DocumentIntProperties (type, propertyValue)"_qs,
};

const QString InsertLabel =
    u"INSERT INTO ProjectLabels (identity, title, color, ordinal) VALUES (:i, :t, :c, (SELECT max(ordinal) +1 FROM ProjectLabels))"_qs;
const QString SelectLabel =
    u"SELECT identity, title, color FROM ProjectLabels WHERE identity = :i"_qs;
const QString SelectLabels =
    u"SELECT identity, title, color FROM ProjectLabels ORDER BY ordinal"_qs;
const QString SelectLabelIds = u"SELECT identity FROM ProjectLabels"_qs;
const QString DeleteLabels = u"DELETE FROM ProjectLabels"_qs;

// The ordinal comes from the labels on purpose; with none there it is NULL and the order of
// insertion decides.
const QString InsertStatusItem =
    u"INSERT INTO ProjectStatusItems (identity, title, ordinal) VALUES(:i, :t, (SELECT max(ordinal) +1 FROM ProjectLabels))"_qs;
const QString SelectStatusItem =
    u"SELECT identity, title FROM ProjectStatusItems WHERE identity = :i"_qs;
const QString SelectStatusItems =
    u"SELECT identity, title FROM ProjectStatusItems ORDER BY ordinal"_qs;
const QString SelectStatusIds = u"SELECT identity FROM ProjectStatusItems"_qs;
const QString DeleteStatusItems = u"DELETE FROM ProjectStatusItems"_qs;

const QString InsertKeyword = u"INSERT INTO ProjectKeywords (identity, title) VALUES (:i, :t)"_qs;
const QString UpdateKeyword = u"UPDATE ProjectKeywords SET title = :t WHERE identity = :i"_qs;
const QString DeleteKeyword = u"DELETE FROM ProjectKeywords WHERE identity = :i"_qs;
const QString DeleteKeywordOfDocuments =
    u"DELETE FROM DocumentIntProperties WHERE propertyValue = :i AND type = :t"_qs;

const QString InsertDocumentInt =
    u"INSERT INTO DocumentIntProperties (identity, type, propertyValue) VALUES (:i, :t, :v)"_qs;
const QString DeleteDocumentKeyword =
    u"DELETE FROM DocumentIntProperties WHERE identity = :i AND propertyValue = :v AND type = :t"_qs;
const QString DeleteDocumentKeywords =
    u"DELETE FROM DocumentIntProperties WHERE identity = :i AND type = :t"_qs;
const QString DeleteAllDocumentKeywords = u"DELETE FROM DocumentIntProperties WHERE type = %1"_qs;
const QString SelectKeywordDocuments =
    u"SELECT DISTINCT identity FROM DocumentIntProperties WHERE type = :t AND propertyValue = :v"_qs;
const QString DeleteDocumentInts = u"DELETE FROM DocumentIntProperties WHERE identity = :i"_qs;

} // namespace Statement

bool succeeded(const QSqlQuery &query, bool result, int line)
{
    if (!result)
        qCritical() << "sql error" << query.lastQuery() << query.lastError().text() << line;
    return result;
}

bool prepare(QSqlQuery *query, const QString &statement, int line)
{
    return succeeded(*query, query->prepare(statement), line);
}

bool run(QSqlQuery *query, const QString &statement, int line)
{
    return succeeded(*query, query->exec(statement), line);
}

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
    query.bindValue(u":i"_qs, id);
    const bool found = prepared && succeeded(query, query.exec(), line) && query.next();
    if (ok)
        *ok = found;
    return found ? recordOf(query) : Record();
}

} // namespace

TVLSearchIndex::TVLSearchIndex()
    : QSqlDatabase(QSqlDatabase::addDatabase(u"QSQLITE"_qs, QUuid::createUuid().toString()))
{
    // Without a name the driver opens a private temporary database that vanishes when it is closed.
    setDatabaseName(QString());
    if (!open()) {
        qCritical() << "could not open QSQLITE connection" << lastError().text();
        return;
    }
    (void)createTables();
}

TVLSearchIndex::~TVLSearchIndex()
{
    const QString name = connectionName();
    mQueries.clear();
    close();
    // The registry holds on to the name until no handle to the connection is left.
    static_cast<QSqlDatabase &>(*this) = QSqlDatabase();
    removeDatabase(name);
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

bool TVLSearchIndex::addLabel(int id, const QString &title, const QColor &color)
{
    QSqlQuery query(*this);
    if (!prepare(&query, Statement::InsertLabel, __LINE__))
        return false;
    query.bindValue(u":i"_qs, id);
    query.bindValue(u":t"_qs, title);
    query.bindValue(u":c"_qs, colorValue(color));
    if (!succeeded(query, query.exec(), __LINE__))
        return false;
    mIsModified = true;
    return true;
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
    QSqlQuery query(*this);
    if (!prepare(&query, Statement::InsertStatusItem, __LINE__))
        return false;
    query.bindValue(u":i"_qs, id);
    query.bindValue(u":t"_qs, title);
    if (!succeeded(query, query.exec(), __LINE__))
        return false;
    mIsModified = true;
    return true;
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

// --- Keywords

QSqlQuery *TVLSearchIndex::execute(const QString &statement, Bindings bindings, int line) const
{
    auto known = mQueries.find(statement);
    if (known == mQueries.end()) {
        QSqlQuery query(*this);
        query.setForwardOnly(true);
        if (!prepare(&query, statement, line))
            return nullptr;
        known = mQueries.emplace(statement, std::move(query)).first;
    }
    QSqlQuery *query = &known->second;
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

bool TVLSearchIndex::addKeyword(int id, const QString &title)
{
    return change(Statement::InsertKeyword, {{u":i"_qs, id}, {u":t"_qs, title}}, __LINE__);
}

bool TVLSearchIndex::removeKeyword(int id)
{
    const bool removed = change(Statement::DeleteKeywordOfDocuments,
                                {{u":i"_qs, id}, {u":t"_qs, int(TVL::KeywordsProperty)}}, __LINE__);
    return change(Statement::DeleteKeyword, {{u":i"_qs, id}}, __LINE__) && removed;
}

bool TVLSearchIndex::updateKeyword(int id, const QString &title)
{
    return change(Statement::UpdateKeyword, {{u":t"_qs, title}, {u":i"_qs, id}}, __LINE__);
}

void TVLSearchIndex::createDocumentIndexes()
{
    if (mHasDocumentIndexes)
        return;
    mHasDocumentIndexes = true;
    QSqlQuery query(*this);
    for (const QString &statement : Statement::CreateDocumentIndexes)
        run(&query, statement, __LINE__);
}

bool TVLSearchIndex::addDocumentKeyword(int id, int keywordId)
{
    createDocumentIndexes();
    return change(Statement::InsertDocumentInt,
                  {{u":i"_qs, id}, {u":t"_qs, int(TVL::KeywordsProperty)}, {u":v"_qs, keywordId}},
                  __LINE__);
}

bool TVLSearchIndex::removeDocumentKeyword(int id, int keywordId)
{
    return change(Statement::DeleteDocumentKeyword,
                  {{u":i"_qs, id}, {u":v"_qs, keywordId}, {u":t"_qs, int(TVL::KeywordsProperty)}},
                  __LINE__);
}

bool TVLSearchIndex::setDocumentKeywords(int id, const QList<int> &keywordIds)
{
    return change(Statement::DeleteDocumentKeywords,
                  {{u":i"_qs, id}, {u":t"_qs, int(TVL::KeywordsProperty)}}, __LINE__)
        && std::all_of(keywordIds.begin(), keywordIds.end(),
                       [&](int keywordId) { return addDocumentKeyword(id, keywordId); });
}

bool TVLSearchIndex::setAllDocumentKeywords(const QList<std::pair<int, int>> &rows)
{
    QSqlQuery insert(*this);
    if (!prepare(&insert, Statement::InsertDocumentInt, __LINE__))
        return false;
    insert.bindValue(u":t"_qs, int(TVL::KeywordsProperty));
    const bool replaced =
        replaceRows(Statement::DeleteAllDocumentKeywords.arg(int(TVL::KeywordsProperty)), rows,
                    [&insert](const std::pair<int, int> &row) {
                        insert.bindValue(u":i"_qs, row.first);
                        insert.bindValue(u":v"_qs, row.second);
                        return succeeded(insert, insert.exec(), __LINE__);
                    });
    if (!rows.isEmpty())
        createDocumentIndexes();
    return replaced;
}

QSet<int> TVLSearchIndex::affectedDocuments(int keywordId) const
{
    QSet<int> ids;
    QSqlQuery *query =
        execute(Statement::SelectKeywordDocuments,
                {{u":t"_qs, int(TVL::KeywordsProperty)}, {u":v"_qs, keywordId}}, __LINE__);
    if (!query)
        return ids;
    while (query->next())
        ids.insert(query->value(0).toInt());
    query->finish();
    return ids;
}

bool TVLSearchIndex::removeDocument(int id)
{
    return change(Statement::DeleteDocumentInts, {{u":i"_qs, id}}, __LINE__);
}

// --- All tables

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

template <typename Row, typename Add>
bool TVLSearchIndex::replaceRows(const QString &deleteStatement, const QList<Row> &rows, Add add)
{
    if (!transaction()) {
        qCritical() << "sql error" << lastError().text() << __LINE__;
        return false;
    }
    const bool wasModified = mIsModified;
    QSqlQuery query(*this);
    const bool replaced =
        run(&query, deleteStatement, __LINE__) && std::all_of(rows.begin(), rows.end(), add);
    if (replaced && commit()) {
        mIsModified = true;
        return true;
    }
    rollback();
    mIsModified = wasModified;
    return false;
}
