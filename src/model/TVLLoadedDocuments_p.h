#pragma once

#include "TVL.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QTimer>

#include <functional>

class QTextCursor;
class TVLDocumentSave;
class TVLProjectFolderFormat;
class TVLProjectModel;
class TVLProjectNode;
class TVLSearchFeed;
class TVLTextDocument;

/**
 * The documents of a model that are in memory: how they come there, what an edit of them brings
 * with it, and how they are written and go.
 *
 * They come for all of an item together, and are children of the model; an item's node holds them.
 * References to them are counted by the documents themselves, see TVLProjectModel::referenceItem().
 * Items with an id whose documents are here are on a list, in the order of their first load, which
 * saves go through.
 */
class TVLLoadedDocuments
{
public:
    /** All of them are to live as long. */
    TVLLoadedDocuments(TVLProjectModel *model, const TVLProjectFolderFormat *folder,
                       TVLSearchFeed *feed);
    Q_DISABLE_COPY_MOVE(TVLLoadedDocuments)

    /** @name The list @{ */
    [[nodiscard]] QList<TVLProjectNode *> nodes() const;
    void enter(TVLProjectNode *node);
    void leave(const TVLProjectNode *node);
    /** @} */

    /** @name Coming into memory @{ */
    /** Tells of a file that can't be read in a box, behind which the node may be gone. */
    void load(TVLProjectNode *node);
    /** Brings documents into memory that aren't there, and shows no box. */
    [[nodiscard]] bool loadQuietly(TVLProjectNode *node, QStringList *errors);
    /** The box of load(), for errors of loadQuietly(). */
    static void showErrors(const QString &title, const QStringList &errors);
    /** Edits a document of an item that nobody has seen yet, and tells nobody; false without one.
     */
    static bool editUnseen(TVLProjectNode *node, TVL::DocumentType type,
                           const std::function<void(QTextCursor)> &edit);
    /** Puts a text at the beginning of such a document; false, too, for an empty text. */
    static bool fill(TVLProjectNode *node, TVL::DocumentType type, const QString &text);
    /** @} */

    /** @name Saving and letting go @{ */
    /** Has editors put what they hold back into the documents. They may load and remove items. */
    void askEditors();
    /** Saves the documents of all items, as one. */
    void saveAll(QStringList *failures);
    /** TVLProjectModel::saveDocuments(); with @p save, as a part of that. */
    bool save(TVLProjectNode *node, bool forceRelease, QStringList *errors,
              TVLDocumentSave *save = nullptr);
    bool write(TVLProjectNode *node, QStringList *errors, TVLDocumentSave *save = nullptr);
    void release(TVLProjectNode *node);
    /** Deletes documents that nobody else has seen yet, unless somebody holds or edits them. */
    void letGo(TVLProjectNode *node);
    /** Saves and releases the documents of an item that goes. */
    void unload(TVLProjectNode *node);
    /** @} */

    /** @name Changes of texts
     * Of an item whose texts change, dataChanged() is emitted once within a second.
     * @{ */
    void scheduleChange(TVLProjectNode *node);
    /** The model's slots hand on what they hear of a document. */
    void onContentsChange(TVLTextDocument *document, int position, int charsRemoved,
                          int charsAdded);
    void onContentsChanged(const TVLTextDocument *document);
    void forgetChange(TVLProjectNode *node) { mTextChanges.remove(node); }
    void forgetChanges() { mTextChanges.clear(); }
    /** @} */

private:
    void create(TVLProjectNode *node);
    void start(TVLTextDocument *document);
    /** Takes an item's documents out of memory; they are the caller's to delete. */
    [[nodiscard]] QList<TVLTextDocument *> take(TVLProjectNode *node);
    void announceChanges();

    TVLProjectModel *mModel;
    const TVLProjectFolderFormat *mFolder;
    TVLSearchFeed *mFeed;
    QList<TVLProjectNode *> mNodes; ///< Not owned; null in place of those that have left.
    QHash<const TVLProjectNode *, qsizetype> mPositions; ///< In mNodes.
    QSet<TVLProjectNode *> mTextChanges; ///< Waiting for dataChanged(); not owned.
    QTimer mTextChangeTimer;
};
