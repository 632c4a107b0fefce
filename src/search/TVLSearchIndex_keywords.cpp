#include "TVLSearchIndex.h"
#include "TVLSearchSql_p.h"

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace TVLSearchSql;

namespace {

namespace Statement {

const QString InsertKeyword = u"INSERT INTO ProjectKeywords (identity, title) VALUES (:i, :t)"_s;
const QString UpdateKeyword = u"UPDATE ProjectKeywords SET title = :t WHERE identity = :i"_s;
const QString DeleteKeyword = u"DELETE FROM ProjectKeywords WHERE identity = :i"_s;
const QString DeleteKeywordOfDocuments =
    u"DELETE FROM DocumentIntProperties WHERE propertyValue = :i AND type = :t"_s;

const QString DeleteDocumentKeyword =
    u"DELETE FROM DocumentIntProperties WHERE identity = :i AND propertyValue = :v AND type = :t"_s;
const QString DeleteDocumentKeywords =
    u"DELETE FROM DocumentIntProperties WHERE identity = :i AND type = :t"_s;
const QString SelectKeywordDocuments =
    u"SELECT DISTINCT identity FROM DocumentIntProperties WHERE type = :t AND propertyValue = :v"_s;

// Without these the keywords of one document, and the documents of one keyword, could only be found
// by looking at all rows. They are made when rows are first looked for, as adding many at once
// costs less without.
const QString CreateDocumentIndexes[] = {
    u"CREATE INDEX dipDocumentIndex ON DocumentIntProperties (identity, type)"_s,
    u"CREATE INDEX dipValueIndex ON DocumentIntProperties (type, propertyValue)"_s,
};

} // namespace Statement

} // namespace

bool TVLSearchIndex::addKeyword(int id, const QString &title)
{
    return change(Statement::InsertKeyword, {{u":i"_s, id}, {u":t"_s, textValue(title)}}, __LINE__);
}

bool TVLSearchIndex::removeKeyword(int id)
{
    createDocumentIndexes();
    const bool removed = change(Statement::DeleteKeywordOfDocuments,
                                {{u":i"_s, id}, {u":t"_s, int(TVL::KeywordsProperty)}}, __LINE__);
    return change(Statement::DeleteKeyword, {{u":i"_s, id}}, __LINE__) && removed;
}

bool TVLSearchIndex::updateKeyword(int id, const QString &title)
{
    return change(Statement::UpdateKeyword, {{u":t"_s, textValue(title)}, {u":i"_s, id}}, __LINE__);
}

void TVLSearchIndex::createDocumentIndexes() const
{
    if (mHasDocumentIndexes || !mHasDocumentInts)
        return;
    mHasDocumentIndexes = true;
    QSqlQuery query(*this);
    for (const QString &statement : Statement::CreateDocumentIndexes)
        (void)run(&query, statement, __LINE__);
}

bool TVLSearchIndex::addDocumentKeyword(int id, int keywordId)
{
    mHasDocumentInts = true;
    return change(InsertInt,
                  {{u":i"_s, id}, {u":t"_s, int(TVL::KeywordsProperty)}, {u":v"_s, keywordId}},
                  __LINE__);
}

bool TVLSearchIndex::removeDocumentKeyword(int id, int keywordId)
{
    createDocumentIndexes();
    return change(Statement::DeleteDocumentKeyword,
                  {{u":i"_s, id}, {u":v"_s, keywordId}, {u":t"_s, int(TVL::KeywordsProperty)}},
                  __LINE__);
}

bool TVLSearchIndex::setDocumentKeywords(int id, const QList<int> &keywordIds)
{
    createDocumentIndexes();
    return change(Statement::DeleteDocumentKeywords,
                  {{u":i"_s, id}, {u":t"_s, int(TVL::KeywordsProperty)}}, __LINE__)
        && std::all_of(keywordIds.begin(), keywordIds.end(),
                       [&](int keywordId) { return addDocumentKeyword(id, keywordId); });
}

QSet<int> TVLSearchIndex::affectedDocuments(int keywordId) const
{
    createDocumentIndexes();
    QSet<int> ids;
    QSqlQuery *query =
        execute(Statement::SelectKeywordDocuments,
                {{u":t"_s, int(TVL::KeywordsProperty)}, {u":v"_s, keywordId}}, __LINE__);
    if (!query)
        return ids;
    while (query->next())
        ids.insert(query->value(0).toInt());
    query->finish();
    return ids;
}
