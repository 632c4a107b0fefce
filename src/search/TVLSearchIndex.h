#pragma once

#include "TVL.h"
#include "TVLLabel.h"
#include "TVLSearchHit.h"
#include "TVLStatusItem.h"
#include "TvlExport.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <array>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

struct sqlite3;

class QIODevice;
class QModelIndex;
class QProgressDialog;
class TVLCollectionMetaData;
class TVLFiledTexts;
class TVLNumberedChecksums;
class TVLProjectNode;
class TVLSearchedProject;

/**
 * What a project can be searched by: the texts of its items, which keywords, label and status each
 * has, and the project's labels, status items and keywords themselves, of which it is the store.
 *
 * It is a private SQLite database that lives only as long as the object, in memory, and the object
 * is the connection. Every project has one of its own, under a random name. The texts are kept
 * between sessions in the file `search.indexes`; what else it holds comes from the binder each
 * time.
 *
 * A text is **confirmed** when it is known to be the present one. A search first asks the project
 * for all that aren't, so it never misses what was written a moment ago. What a file says of a text
 * is confirmed when the document file still has the hash that was recorded with it.
 *
 * So a hash belongs to a text: both are set at once, and a text that isn't exactly that of its file
 * has none. So it is on disk, too, in whatever order the two files are written and wherever a
 * session ends.
 *
 * The first such update opens a transaction that stays open: all later changes belong to it, and it
 * ends with the database. What is to be taken back on a failure is so by itself.
 *
 * The texts of a removed item stay, in the file as well, and are found; who asks for items has to
 * pass over ids that no item has.
 *
 * Failures are logged at critical level with the words "sql error", the statement, the driver's
 * text and a line number; the operation then returns false or an empty result and the store stays
 * usable.
 */
class TVL_EXPORT TVLSearchIndex : public QSqlDatabase
{
public:
    /**
     * Opens the database and creates its tables. The project isn't owned and has to outlive the
     * object; without one there is no file and nothing to ask for texts.
     */
    explicit TVLSearchIndex(TVLSearchedProject *project = nullptr);
    /** Closes the database; what it held is gone. */
    ~TVLSearchIndex();
    Q_DISABLE_COPY_MOVE(TVLSearchIndex)

    /** Whether load() has been called, with whatever result. */
    [[nodiscard]] bool isLoaded() const { return mIsLoaded; }
    /** Whether something changed since the index was made, loaded or saved. */
    [[nodiscard]] bool isModified() const { return mIsModified; }

    /** The TVL::DocumentProperty values that are texts. */
    [[nodiscard]] static const QSet<int> &stringDocumentProperties();

    /** Makes the tables, as the constructor does. False, with a message at critical level, when one
     * couldn't be made; those before it are there then. */
    bool createTables();
    /** Drops all tables, with what they hold; false as createTables(). */
    bool dropTables();

    /** @name The file of the texts @{ */
    [[nodiscard]] QString searchIndexesFilePath() const;
    /**
     * Reads the file into the rows of items that were added before; an item that it doesn't name,
     * or all if there is no file, stay unconfirmed. False when it can't be read to its end, with
     * the reason in @p error; nothing of it is taken over then.
     */
    bool load(QString *error = nullptr);
    /**
     * Makes the rows of all items of a project that is opened: as addProjectNode() of each, load(),
     * and the custom meta-data of the items in place of the file's. Each row is written once. What
     * load() returns.
     */
    bool fill(const QList<const TVLProjectNode *> &nodes, QString *error = nullptr);
    /** Why such a file can't be read; empty for one that can be. */
    [[nodiscard]] static QString fileError(const QString &path);
    /**
     * Writes the file, in place and all at once. isModified() stays set when that fails.
     *
     * First the hashes on disk that vouch for other texts are taken back. Where that isn't possible
     * the file stays as it is.
     */
    void save();
    /** Does nothing. */
    void readSearchIndexes() const { }
    /** @} */

    /** @name Items and their properties
     * An item is known by its id. One that the index doesn't know changes nothing, without error.
     * @{
     */
    /** What an item is searched by for its custom meta-data: the values, with blanks between.
     * Empty for null. */
    [[nodiscard]] static QString customMetaDataText(const TVLProjectNode *node);
    /** Adds an item; false for null and for the three root folders, which are never searched. */
    bool addProjectNode(const TVLProjectNode *node);
    /** addProjectNode() of the item of an index of a project model. */
    bool addDocument(const QModelIndex &index);
    /** Adds an item with a title and no confirmed texts. False for a negative id. */
    bool addDocumentData(int id, const QString &title, int labelId, int statusId,
                         const QList<int> &keywordIds);
    /** Forgets an item's keywords, label and status. Its texts stay. */
    bool removeDocument(int id);
    /** Whether the file of the texts names an id that is another item's now. A session that begins
     * with such a file takes the texts of the one for those of the other. */
    [[nodiscard]] bool isFileMisleading() const { return mIsFileMisleading; }
    /** Forgets the texts too, with their hashes: the id is about to be that of another item. */
    void forgetTexts(int id);
    /** Sets a text of all items, which is empty for those that aren't named. Whether it is
     * confirmed stays as it is. */
    void setTexts(TVL::DocumentProperty property, const QHash<int, QString> &texts);

    /** Sets a text, a label or a status. A confirmed text of a document file also has the file's
     * hash recorded; one that isn't confirmed has none. */
    void updatePropertyNode(const TVLProjectNode *node, TVL::DocumentProperty property,
                            const QVariant &value, bool confirmed);
    /** Notes that a text may have changed. */
    void invalidatePropertyNode(const TVLProjectNode *node, TVL::DocumentProperty property);
    /** invalidatePropertyNode() of the item of an id. */
    void invalidateProperty(int id, TVL::DocumentProperty property);
    /** Notes that the text in a document file may have changed. */
    void invalidateDocumentNode(const TVLProjectNode *node, TVL::DocumentType type);
    /** invalidateDocumentNode() of the item of an id. */
    void invalidateDocument(int id, TVL::DocumentType type);
    /** invalidateDocument() for all document files of an item. */
    void invalidateDocuments(int id);
    /** Confirms a text as it is. */
    void validateProperty(int id, TVL::DocumentProperty property);

    /** Whether that text is stored and confirmed. */
    [[nodiscard]] bool isConfirmed(int id, TVL::DocumentProperty property,
                                   const QString &text) const;
    /** Whether a text, confirmed or not, isn't empty. True for null and for a node without id. */
    [[nodiscard]] bool hasText(const TVLProjectNode *node, TVL::DocumentProperty property) const;
    [[nodiscard]] bool hasText(int id, TVL::DocumentProperty property) const;
    /** The ids for which hasText() is true of a text, of the notes or of the synopsis, at the cost
     * of one query. */
    [[nodiscard]] QHash<TVL::DocumentProperty, QSet<int>> idsWithTexts() const;
    /** @} */

    /** @name Searching @{ */
    /** The ids of the items that a collection's search finds, each once and in no order. */
    [[nodiscard]] QList<int> indexes(const TVLCollectionMetaData &collection);
    /**
     * Where an item that a collection's search finds has what it looks for: its texts by property,
     * each from its beginning, and then the titles of its keywords, label and status. They are
     * those of the last indexes(), which brings the texts up to date.
     */
    [[nodiscard]] QList<TVLSearchHit> hits(const TVLCollectionMetaData &collection, int id) const;
    /** The items of which one text matches; @p flags are those of TVLTextMatcher. */
    [[nodiscard]] QSet<int> searchTextProperties(const QStringList &words, int flags,
                                                 TVL::DocumentProperty property) const;
    /** The items of which a keyword, the label or the status matches, always by whole words. */
    [[nodiscard]] QSet<int> searchIntProperties(const QStringList &words, int flags,
                                                TVL::DocumentProperty property) const;
    /** Asks the project for all texts that aren't confirmed; with a dialog given, texts are
     * confirmed by the hashes of their files where that will do. */
    void validateIndexes(QProgressDialog *progress);
    /** The unconfirmed texts of each item. Titles are never among them. */
    [[nodiscard]] QMap<int, QList<TVL::DocumentProperty>> notConfirmedIndexes() const;
    /** Asks the project for some texts of an item. */
    void updateIndexProperties(const QModelIndex &index,
                               const QList<TVL::DocumentProperty> &properties, bool useChecksums);
    /** @} */

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
    /** False, with a "sql error" in the log, when it couldn't be stored. */
    bool addDocumentKeyword(int id, int keywordId);
    bool removeDocumentKeyword(int id, int keywordId);
    /** Replaces the keywords of a document; what comes behind a failure is missing then. */
    bool setDocumentKeywords(int id, const QList<int> &keywordIds);
    /** The documents that carry a keyword. */
    [[nodiscard]] QSet<int> affectedDocuments(int keywordId) const;
    /** @} */

private:
    using Bindings = std::initializer_list<std::pair<QString, QVariant>>;

    void prepareInserts();
    [[nodiscard]] QSqlQuery *prepared(const QString &statement, int line) const;
    [[nodiscard]] QSqlQuery *execute(const QString &statement, Bindings bindings, int line) const;
    bool change(const QString &statement, Bindings bindings, int line);
    void createDocumentIndexes() const;
    [[nodiscard]] QSet<int> identities(const QString &statement) const;
    template <typename Row, typename Add>
    bool replaceRows(const QString &deleteStatement, const QList<Row> &rows, Add add);

    void insertText(int id, int property, const QString &text, bool confirmed);
    void insertInt(int id, int property, int value);
    void updatePropertyPrivate(int id, TVL::DocumentProperty property, const QVariant &value,
                               bool confirmed);
    void setConfirmed(int id, TVL::DocumentProperty property, bool confirmed);

    /** What is relied on when a text has no recorded hash, and no file. */
    enum class WithoutHash { AnyText, NoText };
    /** A text of the file, and whether it is the present one. */
    struct LoadedText
    {
        TVL::DocumentProperty property;
        QString text;
        bool isConfirmed;
    };
    using LoadedTexts = std::array<LoadedText, 5>; ///< All of an item but the title.
    using TakeTexts = std::function<void(int id, const LoadedTexts &texts)>;

    [[nodiscard]] bool readFile(const TakeTexts &take, QString *error);
    [[nodiscard]] bool readTexts(QIODevice *device, WithoutHash withoutHash, const TakeTexts &take,
                                 QString *error);
    [[nodiscard]] static LoadedTexts loadedTexts(const TVLNumberedChecksums &checksums, int id,
                                                 const TVLFiledTexts &texts,
                                                 WithoutHash withoutHash);
    class Filling;
    [[nodiscard]] std::optional<bool> fillAtOnce(const QList<const TVLProjectNode *> &nodes,
                                                 QString *error);
    bool fillOneByOne(const QList<const TVLProjectNode *> &nodes, QString *error);
    [[nodiscard]] static bool isSearchable(const TVLProjectNode *node);
    [[nodiscard]] bool canLookIntoDocs() const;
    [[nodiscard]] bool canReplaceFile() const;
    void refreshTexts(const QModelIndex &index, const QList<TVL::DocumentProperty> &properties);

    [[nodiscard]] QSet<int> documentsOfTitle(const QString &word, int flags,
                                             TVL::DocumentProperty property) const;
    [[nodiscard]] bool isUpToDate(const QModelIndex &index, TVL::DocumentProperty property) const;

    TVLSearchedProject *mProject; ///< Not owned; may be null.
    sqlite3 *mHandle = nullptr; ///< Of the connection; null for one of another SQLite.
    bool mIsLoaded = false;
    bool mIsModified = false;
    QSet<int> mStoredIds; ///< Of the items in the file.
    bool mIsFileMisleading = false;
    std::unique_ptr<QSqlQuery> mInsertText; ///< Null until the tables are there.
    std::unique_ptr<QSqlQuery> mInsertInt; ///< Null until the tables are there.
    bool mHasDocumentInts = false;
    mutable bool mHasDocumentIndexes = false;
    bool mHasConfirmedIndex = false;
    /** Those statements that run for item after item, each prepared once. */
    mutable std::unordered_map<QString, QSqlQuery> mQueries;
};
