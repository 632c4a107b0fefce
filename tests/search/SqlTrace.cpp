#include "SqlTrace.h"

#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <QVariant>

#include <sqlite3.h>

#include <utility>

using namespace Qt::StringLiterals;

SqlTrace::SqlTrace(const QSqlDatabase &database)
    : mHandle(*static_cast<sqlite3 *const *>(database.driver()->handle().constData()))
{
    sqlite3_trace_v2(mHandle, SQLITE_TRACE_STMT, record, this);
}

SqlTrace::~SqlTrace()
{
    sqlite3_trace_v2(mHandle, 0, nullptr, nullptr);
}

QStringList SqlTrace::take()
{
    return std::exchange(mStatements, {});
}

int SqlTrace::record(unsigned, void *trace, void *statement, void *)
{
    // The driver has the database count placeholders that are bound by position.
    static const QRegularExpression counted(u":\\d+"_s);
    QString text = QString::fromUtf8(sqlite3_sql(static_cast<sqlite3_stmt *>(statement)));
    static_cast<SqlTrace *>(trace)->mStatements.append(text.replace(counted, u"?"_s));
    return 0;
}

QStringList rowsOf(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        qFatal("%s", qPrintable(query.lastError().text()));
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int i = 0; query.value(i).isValid(); ++i)
            values.append(query.isNull(i) ? u"NULL"_s : query.value(i).toString());
        rows.append(values.join(u'|'));
    }
    return rows;
}

void execute(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        qFatal("%s", qPrintable(query.lastError().text()));
}

void expectSqlErrors(const QString &part, int times)
{
    for (int i = 0; i < times; ++i)
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(u"^sql error \".*%1.* \\d+$"_s.arg(part),
                                                QRegularExpression::DotMatchesEverythingOption));
}
