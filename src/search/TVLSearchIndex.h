#pragma once

#include "TVLLabel.h"
#include "TVLStatusItem.h"
#include "TvlExport.h"

#include <QList>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <initializer_list>
#include <unordered_map>
#include <utility>

/**
 * The store of a project's labels and status items, of its keywords' titles and of which item
 * carries which keyword, and the ground of its search index: a private SQLite database that lives
 * only as long as the object.
 *
 * The object is the connection. Every project has one of its own, under a random name.
 *
 * Failures are logged at critical level with the words "sql error", the statement, the driver's
 * text and a line number; the operation then returns false or an empty result and the store stays
 * usable.
 */
class TVL_EXPORT TVLSearchIndex : public QSqlDatabase
{
public:
    /** Opens the database and creates its tables. */
    TVLSearchIndex();
    /** Closes the database; what it held is gone. */
    ~TVLSearchIndex();
    Q_DISABLE_COPY_MOVE(TVLSearchIndex)

    /** Whether something changed since the index was made. */
    [[nodiscard]] bool isModified() const { return mIsModified; }

    /** Appends a label; false when its id is taken. An invalid colour is kept as none. */
    bool addLabel(int id, const QString &title, const QColor &color);
    /** The label of an id; id -1 and an invalid colour, and false in @p ok, when there is none. */
    [[nodiscard]] TVLLabel label(int id, bool *ok = nullptr) const;
    [[nodiscard]] bool hasLabel(int id) const;
    /** All labels, in their order. */
    [[nodiscard]] QList<TVLLabel> labels() const;
    /** Replaces all labels; on a failure none is replaced. */
    bool setLabels(const QList<TVLLabel> &labels);
    [[nodiscard]] QSet<int> labelsIDs() const;

    /** Appends a status item; false when its id is taken. */
    bool addStatusItem(int id, const QString &title);
    /** The status item of an id; id -1, and false in @p ok, when there is none. */
    [[nodiscard]] TVLStatusItem statusItem(int id, bool *ok = nullptr) const;
    [[nodiscard]] bool hasStatusItem(int id) const;
    /** All status items, in their order. */
    [[nodiscard]] QList<TVLStatusItem> statusItems() const;
    /** Replaces all status items; on a failure none is replaced. */
    bool setStatusItems(const QList<TVLStatusItem> &items);
    [[nodiscard]] QSet<int> statusIDs() const;

    /** Adds a keyword; false when its identity is taken. */
    bool addKeyword(int id, const QString &title);
    /** Removes a keyword, from the documents that carry it as well. */
    bool removeKeyword(int id);
    /** Gives a keyword another title. One that isn't there changes nothing, without error. */
    bool updateKeyword(int id, const QString &title);

    /** @name Keywords of documents, which are known by their node id @{ */
    bool addDocumentKeyword(int id, int keywordId);
    bool removeDocumentKeyword(int id, int keywordId);
    /** Replaces the keywords of a document; what comes behind a failure is missing then. */
    bool setDocumentKeywords(int id, const QList<int> &keywordIds);
    /** Replaces the keywords of all documents by pairs of document and keyword, or none of them on
     * a failure. */
    bool setAllDocumentKeywords(const QList<std::pair<int, int>> &rows);
    /** The documents that carry a keyword. */
    [[nodiscard]] QSet<int> affectedDocuments(int keywordId) const;
    /** @} */

    /** Forgets a document's keywords, label and status. Its texts stay. */
    bool removeDocument(int id);

private:
    using Bindings = std::initializer_list<std::pair<QString, QVariant>>;

    [[nodiscard]] bool createTables();
    [[nodiscard]] QSqlQuery *execute(const QString &statement, Bindings bindings, int line) const;
    bool change(const QString &statement, Bindings bindings, int line);
    void createDocumentIndexes();
    [[nodiscard]] QSet<int> identities(const QString &statement) const;
    template <typename Row, typename Add>
    bool replaceRows(const QString &deleteStatement, const QList<Row> &rows, Add add);

    bool mIsModified = false;
    bool mHasDocumentIndexes = false;
    /** Those statements that run for item after item, each prepared once. */
    mutable std::unordered_map<QString, QSqlQuery> mQueries;
};
