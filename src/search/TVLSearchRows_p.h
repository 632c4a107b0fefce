#pragma once

#include "TVLSearchIndex.h"
#include "TVLSearchSql_p.h"

#include <algorithm>

template <typename Row, typename Add>
bool TVLSearchIndex::replaceRows(const QString &deleteStatement, const QList<Row> &rows, Add add)
{
    const bool wasModified = mIsModified;
    TVLSearchSql::Bundle bundle(this);
    QSqlQuery query(*this);
    const bool replaced = bundle.isOpen() && TVLSearchSql::run(&query, deleteStatement, __LINE__)
        && std::all_of(rows.begin(), rows.end(), add) && bundle.keep();
    mIsModified = wasModified || replaced;
    return replaced;
}
