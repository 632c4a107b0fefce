#pragma once

#include "TVL.h"
#include "TVLSqlStatement_p.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>

#include <optional>

/**
 * Rows of many items. New ones go into the database by the hundred; they are there when flush()
 * says so.
 */
class TVLSearchRows
{
public:
    /** @p handle may be null; see TVLSearchSql::handleOf(). */
    TVLSearchRows(const QSqlDatabase &database, sqlite3 *handle);

    void insertText(int id, TVL::DocumentProperty property, const QString &text, bool isConfirmed);
    void insertInt(int id, TVL::DocumentProperty property, int value);
    /** False if any row could not be written since the object was made or cleared. */
    [[nodiscard]] bool flush();
    /** Drops the rows that aren't in the database yet, for a caller that takes back the others. */
    void clear();

    /** Sets a text of an item whose rows are there; without them, nothing. */
    void update(int id, TVL::DocumentProperty property, const QString &text, bool isConfirmed);

private:
    struct TextRow
    {
        static constexpr int Columns = 4;

        void bindTo(TVLSqlStatement *statement, int place) const;

        int id;
        int property;
        QString text;
        int isConfirmed;
    };
    struct IntRow
    {
        static constexpr int Columns = 3;

        void bindTo(TVLSqlStatement *statement, int place) const;

        int id;
        int property;
        int value;
    };
    template <typename Row>
    struct Batch
    {
        QString start; ///< Of the statement, to which the places of each row are added.
        QList<Row> rows;
        std::optional<TVLSqlStatement> full; ///< For as many rows as go at once.
    };

    template <typename Row>
    void insert(const Row &row, Batch<Row> *batch);
    template <typename Row>
    void write(Batch<Row> *batch);

    QSqlDatabase mDatabase;
    sqlite3 *mHandle; ///< Not owned; may be null.
    Batch<TextRow> mTexts;
    Batch<IntRow> mInts;
    std::optional<TVLSqlStatement> mUpdateText;
    bool mIsWritten = true;
};
