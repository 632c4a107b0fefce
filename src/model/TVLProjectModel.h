#pragma once

#include "TVLBinderProject.h"
#include "TVLMetaDataField.h"
#include "TVLProjectNotes.h"
#include "TVLReference.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QHash>
#include <QIcon>
#include <QMap>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSet>
#include <QUuid>

#include <memory>

class QTextDocument;
class TVLProjectFolderFormat;
class TVLProjectNode;
class TVLProjectNodeProperties;
class TVLSearchIndex;
class TVLTextCommentLink;
class TVLTextDocument;
struct TVLTextRange;

/**
 * One open project: an item model over its binder, with all that is asked of it and done to it.
 *
 * A model never opens itself. TVLProjectFolderFormat::openProject() makes one from a folder,
 * createBlankProjectInMemory() a new one. Before deleting a model that was saved or locked, its
 * owner calls prepareToDestroy().
 *
 * **Indexes.** The tree has one column; an index's internal pointer is its TVLProjectNode. The
 * root has an index of its own, rootIndex(): row and column -1, but with this model as its model.
 * parent() of a top-level item gives it, so compare with isValid() and not with `QModelIndex()`.
 * Wherever an index is asked for, an invalid one stands for the root; an index of another model
 * gets the answer that each accessor gives for "no item".
 *
 * **Saving.** A change marks the project modified and starts a countdown; after
 * tvlOptions()' number of idle seconds the project saves itself. Each save writes the binder, then
 * what else has changed. A step that fails is reported and the others go on.
 *
 * **Documents.** An item's main text, notes and synopsis come into memory together, with the first
 * reference to one of them or the first question that only they can answer. Whoever shows or edits
 * a document takes a reference with referenceItem() and gives it back with dereferenceItem(). A
 * document leaves memory in a save that has written it, if nobody holds any of the item's three
 * and the main text has nothing to undo or redo; until then it stays, however long nobody wants it.
 * Items without a main text keep their documents.
 *
 * An edit makes the document unsaved at once and marks the project modified. It is followed by
 * documentContentsChange() and documentContentsChanged() at once and by one dataChanged() of the
 * item within a second.
 *
 * All of it runs on the application's main thread.
 */
class TVL_EXPORT TVLProjectModel : public QAbstractItemModel, public TVLBinderProject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName)
    Q_PROPERTY(QDir path READ path)

public:
    /** Roles of the model's own; of Qt's it answers the display, edit, decoration and tool tip
     * roles. */
    enum Role {
        NodeIdRole = 132, ///< int; can't be set.
        NodeUuidRole = 133, ///< QUuid; can't be set.
        NodeTypeRole = 134, ///< int, a TVL::NodeType.
        LabelIdRole = 135, ///< int.
        StatusIdRole = 136, ///< int.
        CreatedRole = 137, ///< QDateTime; can't be set.
        ModifiedRole = 138, ///< QDateTime; can't be set.
        TemplateFolderRole = 139, ///< bool; can't be set.
        FavoriteRole = 140, ///< bool.
        KeywordIdsRole = 141, ///< QVariantList of ints.
    };
    Q_ENUM(Role)

    static const QString GeneralFormatMode; ///< Text mode of an ordinary text.
    static const QString ScriptFormatMode; ///< Text mode of a script.

    /**
     * An empty model for the project at @p path. A @p version of 0 is looked up in the folder.
     * Nothing is read but that and the settings.
     */
    explicit TVLProjectModel(const QString &path, QObject *parent = nullptr,
                             bool mobileProject = false,
                             TVL::FormatVersion version = TVL::NoFormatVersion);
    /** Saves nothing; see prepareToDestroy(). */
    ~TVLProjectModel() override;
    Q_DISABLE_COPY_MOVE(TVLProjectModel)

    /** @name Lifecycle @{ */
    /** A new model that holds a blank project; nothing is on disk yet. The caller owns it. */
    [[nodiscard]] static TVLProjectModel *createBlankProjectInMemory(const QString &path,
                                                                     QObject *parent = nullptr);
    /** Writes a blank project to disk. Failures are shown as by save(). */
    static void createBlankProjectOnHdd(const QString &path, QObject *parent = nullptr);
    /** Fills an empty tree with what a new project holds; does nothing otherwise. Marks nothing. */
    void initBlankProject();
    /**
     * Completes a model whose binder has been read: derives what the binder doesn't say and adds
     * what a project can't be without. A binder without items gives a blank project.
     */
    void initProject(QStringList *errors);
    /** Takes over the application's options. */
    void loadOptions();

    /** The error box of a failed save is shown here, and the errors go to @p errors if given. */
    bool saveChanges(QStringList *errors) const;
    /** Saves the documents of one item; false without one, for the root, and on a failure. */
    bool save(const QModelIndex &index);
    /** Does nothing; it is there to keep a document from being taken for a flag. */
    void save(TVLTextDocument *document);
    /** save(), and all that is saved apart from it. */
    void saveAll(bool force);
    /**
     * Copies the project to @p path, goes on there and saves. An existing folder there is deleted
     * first. False, with the model still on its old path, when the copy failed, or when @p path is
     * the project's own folder, lies in it or holds it.
     */
    [[nodiscard]] bool saveAs(const QString &path, bool showProgress, bool removeOldLock);
    /** Ends the model's work: saves, removes the lock, and takes the model off the list of models.
     */
    void prepareToDestroy();

    /** The open model of a path, which may name the folder or the binder; null when there is none.
     */
    [[nodiscard]] static TVLProjectModel *findProjectModelViaPath(const QString &path);
    /** Folder through which items are dragged between programs, in native separators. */
    [[nodiscard]] static QString dragAndDropPath();
    [[nodiscard]] bool isSaved() const { return mSaved; }
    [[nodiscard]] bool isModified() const { return !mSaved; }
    /** @} */

    /** @name The project @{ */
    [[nodiscard]] QString name() const { return mName; }
    void setName(const QString &name);
    [[nodiscard]] QDir path() const { return QDir(mPath); }
    [[nodiscard]] bool isMobileProject() const override { return mMobileProject; }
    [[nodiscard]] TVL::FormatVersion formatVersion() const override;
    [[nodiscard]] TVLProjectInfo info() const override { return mInfo; }
    void setInfo(const TVLProjectInfo &info) override { mInfo = info; }
    /** Name of the device that saved the project last. */
    [[nodiscard]] QString deviceName() const override { return mInfo.mDevice; }
    void setDeviceName(const QString &name) { mInfo.mDevice = name; }
    /** Name of this device. */
    [[nodiscard]] static QString platformDeviceName();
    [[nodiscard]] bool tintIcons() const { return mTintIcons; }
    [[nodiscard]] bool backupIncluded() const { return mBackupIncluded; }
    [[nodiscard]] int autoSaveSeconds() const { return mAutoSaveSeconds; }
    /** The part of the binder that is kept as raw text. */
    [[nodiscard]] QString userProjectData() const override { return mUserProjectData; }
    void setUserProjectData(const QString &data) { mUserProjectData = data; }
    /** @} */

    /** @name The item model @{ */
    using QAbstractItemModel::index;
    using QAbstractItemModel::parent;
    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index,
                                int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override;
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    /** The index that stands for the root; it isn't valid, and it isn't a default index. */
    [[nodiscard]] QModelIndex rootIndex() const;
    /** The index of a node: rootIndex() of the root, a default one of null. */
    [[nodiscard]] QModelIndex createIndex(const TVLProjectNode *node) const;
    [[nodiscard]] QModelIndex toIndex(const TVLProjectNode *node) const
    {
        return createIndex(node);
    }
    /** The node of an index: the root's for an invalid one, null for one of another model. */
    [[nodiscard]] TVLProjectNode *projectNode(const QModelIndex &index) const;
    [[nodiscard]] TVLProjectNode *binderRoot() const override { return mRootNode.get(); }
    /** @} */

    /** @name Finding items @{ */
    /** The node of an id: the root for a negative id, null for an unknown one. */
    [[nodiscard]] TVLProjectNode *findNode(int id) const;
    /** The node of a uuid; the root, and never null, for a null or unknown one. */
    [[nodiscard]] TVLProjectNode *findNodeByUuid(const QUuid &uuid) const;
    /** The index of a uuid; the root index for a null or unknown one. */
    [[nodiscard]] QModelIndex indexByUuid(const QUuid &uuid) const;
    /** The index of an id; the root index for a negative or unknown one. */
    [[nodiscard]] QModelIndex index(int id) const;
    /** The uuid of an id; null for an unknown one. */
    [[nodiscard]] QUuid findNodeUuidById(int id) const;
    /** The id of a uuid; 0, which is an item's id in most projects, for an unknown one. */
    [[nodiscard]] int findNodeIdByUuid(const QUuid &uuid) const;
    [[nodiscard]] bool hasNodeId(int id) const { return mIdMap.contains(id); }
    [[nodiscard]] bool hasNodeUuid(const QUuid &uuid) const { return mUuidMap.contains(uuid); }
    /** The uuids of all items that have an id, by that. */
    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return mIdMap; }
    /** The largest id in use; -1 for none. */
    [[nodiscard]] int findBiggestNodeId() const;
    /** An id for a new node: above all in use, or the first gap when the largest int is used. */
    [[nodiscard]] int findNextNodeId() const;
    /** The largest value plus 1; 0 for an empty list. With the largest int used, the first gap. */
    [[nodiscard]] static int findNextFreeId(const QList<int> &ids);
    /** All uuids in the order of uuids. */
    [[nodiscard]] QList<QUuid> uuidsList() const { return mUuidMap.keys(); }
    /** All uuids in the order of the binder. */
    [[nodiscard]] QList<QUuid> uuidsListBinderOrder() const;
    [[nodiscard]] QSet<QUuid> uniqueUuids() const;
    [[nodiscard]] int totalNodesCount() const;
    /** Ids of all descendants of a node, of the root for null, in pre-order. */
    [[nodiscard]] QList<int> orderedChildIDs(const TVLProjectNode *node) const;
    /** Whether a descendant of the index has the uuid. */
    [[nodiscard]] bool indexContainsUuid(const QModelIndex &index, const QUuid &uuid) const;
    /** Whether @p inner is a descendant of @p outer. */
    [[nodiscard]] bool containsIndex(const QModelIndex &outer, const QModelIndex &inner) const;
    [[nodiscard]] bool isChildOf(const QModelIndex &child, const QModelIndex &parent) const;
    /** Whether the item is a descendant of one of the parents. */
    [[nodiscard]] bool isChildOf(const QModelIndex &child, const QModelIndexList &parents) const;
    /** The first direct child with exactly that title; an invalid index for none. */
    [[nodiscard]] QModelIndex findViaTitle(const QString &title, const QModelIndex &parent) const;
    [[nodiscard]] QModelIndex findDirectIndexByTitle(const QString &title,
                                                     const QModelIndex &parent) const;
    /** The next item in pre-order; the first behind the last. Invalid for the root. */
    [[nodiscard]] QModelIndex nextIndex(const QModelIndex &index) const;
    /** The previous item in pre-order; the last before the first. Invalid for the root. */
    [[nodiscard]] QModelIndex previousIndex(const QModelIndex &index) const;
    /** 1 for a top-level item and 1 more for each level; 0 for an invalid index. */
    [[nodiscard]] int indexDepth(const QModelIndex &index) const;
    /** The top-level ancestor, or the item itself at top level. */
    [[nodiscard]] QModelIndex rootParentIndex(const QModelIndex &index) const;
    [[nodiscard]] TVL::NodeType rootParentType(const QModelIndex &index) const;
    /** @} */

    /** @name System folders and other folders with a meaning @{ */
    /** The first top-level item of a type. */
    [[nodiscard]] QModelIndex findSystemFolder(TVL::NodeType type) const;
    [[nodiscard]] QModelIndex draftFolder() const { return findSystemFolder(TVL::DraftFolder); }
    [[nodiscard]] QModelIndex researchFolder() const
    {
        return findSystemFolder(TVL::ResearchFolder);
    }
    [[nodiscard]] QModelIndex trashFolder() const { return findSystemFolder(TVL::TrashFolder); }
    [[nodiscard]] bool isSystemFolder(const QModelIndex &index) const;
    [[nodiscard]] bool isDraftFolder(const QModelIndex &index) const;
    [[nodiscard]] bool isResearchFolder(const QModelIndex &index) const;
    [[nodiscard]] bool isTrashFolder(const QModelIndex &index) const;
    /** Whether the item is a folder of any kind, system folders among them. */
    [[nodiscard]] bool isFolder(const QModelIndex &index) const;
    [[nodiscard]] bool isFolderOrText(const QModelIndex &index) const;
    /** Whether the item has a main text of its own. */
    [[nodiscard]] bool canHaveText(const QModelIndex &index) const;
    [[nodiscard]] bool isEditableText(const QModelIndex &index) const { return canHaveText(index); }
    /** Whether views show the item as a folder: by its type or, by an option, for its children. */
    [[nodiscard]] bool treatAsFolder(const QModelIndex &index) const;
    /** Whether the item lies inside the Draft folder, which isn't inside itself. */
    [[nodiscard]] bool draftContains(const QModelIndex &index) const;
    [[nodiscard]] bool researchContains(const QModelIndex &index) const;
    [[nodiscard]] bool trashContains(const QModelIndex &index) const;
    /** Whether the item is the Draft folder or lies inside it. */
    [[nodiscard]] bool isDraftChild(const QModelIndex &index) const;
    [[nodiscard]] bool isTrashChild(const QModelIndex &index) const;

    /** The top-level folder for what a merge could not settle; invalid when there is none. */
    [[nodiscard]] QModelIndex findSyncConflictsFolder() const;
    /** The same, made when there is none. */
    QModelIndex syncConflictsFolder();
    QModelIndex createSyncConflictsFolder();
    [[nodiscard]] QModelIndex findSyncConflictsSubFolder(const QString &name) const;
    QModelIndex syncConflictsSubFolder(const QString &name);
    QModelIndex createSyncConflictsSubFolder(const QString &name);
    QModelIndex syncConflictsSubFolderDevice(const QString &device, const QDateTime &date);
    /** The same for the device and the date of the last save. */
    QModelIndex syncConflictsSubFolderDevice();
    [[nodiscard]] static QString syncConflictsSubfolderNameFromDeviceName(const QString &device,
                                                                          const QDateTime &date);

    /** The first folder outside the Draft that has the front matter's title; invalid for none. */
    [[nodiscard]] QModelIndex frontMatterFolder() const;
    [[nodiscard]] static QString frontMatterFolderName();
    [[nodiscard]] QModelIndex templateFolder() const { return findTemplateFolder(); }
    /** Makes an item the template folder; none with an invalid index. Emits
     * templateFolderChanged(). */
    void setTemplateFolder(const QModelIndex &index);
    void clearTemplateFolder();
    /** Whether an ancestor of the item is a template folder. */
    [[nodiscard]] bool templatesContain(const QModelIndex &index) const;
    [[nodiscard]] QUuid templateFolderUuid() const override;
    void adoptTemplateFolder(const QUuid &uuid) override;
    void adoptTemplateFolder(int id) override;
    /** @} */

    /** @name Making items @{ */
    /**
     * Makes a node at @p row of @p parent, or at its end for a negative row, and gives it its id
     * and uuid. A uuid or id that is taken is replaced silently. Emits nothing.
     */
    TVLProjectNode *createProjectNode(TVLProjectNode *parent, int row, QUuid uuid, int id);
    /** Makes an item. The project isn't marked modified: the caller does that. */
    TVLProjectNode *insertNode(int row, const QModelIndex &parent, TVL::NodeType type,
                               const QString &extension, const QString &title);
    QModelIndex insertUserFolder(int row, const QModelIndex &parent, const QString &title);
    /** @} */

    /** @name Ids and uuids @{ */
    void changeIndexUuid(const QModelIndex &index, const QUuid &uuid);
    void clearIndexId(const QModelIndex &index);
    /** Gives an id to every item without one. */
    void populateMissingIDs();
    /** The same, with ids that @p other doesn't use either. */
    void populateMobileProjectMissingIDs(const TVLProjectModel *other);
    /** Takes the items out of the list of those with loaded documents. */
    void reloadCachedUuids(const QSet<QUuid> &uuids);
    /** @} */

    /** @name Documents in memory @{ */
    /**
     * A counted reference to one of an item's documents, which come into memory if they aren't
     * there. Each is given back with dereferenceItem() exactly once.
     *
     * The document belongs to the model. A holder may use it until it gives the reference back, as
     * long as the model lives; when its item is removed or its files are, the document loses model
     * and node and may go as soon as the event loop runs, so long-time holders keep a QPointer.
     *
     * Null, with nothing to give back, for an index of another model, for a system folder, for a
     * @p type that is neither main text, notes nor synopsis, and for the main text of an item that
     * can't have one. A file that can't be read is told in a box; its document is empty then, and
     * never written.
     */
    TVLTextDocument *referenceItem(const QModelIndex &index, TVL::DocumentType type) const;
    TVLTextDocument *referenceText(const QModelIndex &index) const;
    TVLTextDocument *referenceNote(const QModelIndex &index) const;
    TVLTextDocument *referenceSynopsis(const QModelIndex &index) const;
    /** Gives a reference back; null and a document that has lost its item are passed over. The
     * document stays in memory: only a save lets go of it. */
    void dereferenceItem(TVLTextDocument *document) const;

    /** Brings an item's documents into memory without a reference; nothing if they are there. */
    void loadDocuments(TVLProjectNode *node) const;
    /**
     * Writes an item's documents if one of them is unsaved, and then lets go of all three if they
     * may go, or in any case with @p forceRelease. With nothing to write it does neither. True when
     * all was written; else @p errors, if given, says what wasn't.
     */
    bool saveDocuments(TVLProjectNode *node, bool forceRelease, QStringList *errors) const;
    /** The items that saves go through for documents, in the order of their first load. */
    [[nodiscard]] QList<TVLProjectNode *> loadedNodes() const;

    /** Has the whole text laid out anew; null is allowed. */
    static void markDocumentContentsDirty(QTextDocument *document);
    /** Sees to one dataChanged() of the item within a second, however often it is called. */
    void scheduleDocTextChange(const QModelIndex &index);
    /** @} */

    /** @name Texts of items
     * The texts come into memory for each of these. Without one, texts are empty.
     * @{ */
    [[nodiscard]] QString synopsis(const QModelIndex &index) const;
    /** Replaces the synopsis, without a way to undo it; false without one. */
    bool setSynopsis(const QModelIndex &index, const QString &text);
    [[nodiscard]] QString documentNoteAsPlainText(const QModelIndex &index) const;
    [[nodiscard]] bool isDocumentNoteEmpty(const QModelIndex &index) const;
    /** The main text; with the flag, blanks stand in place of pictures and other objects. */
    [[nodiscard]] QString documentPlainText(const QModelIndex &index, bool replaceObjects) const;
    /** Puts a copy of @p document in place of the main text; false for null. An item that can't
     * have a text stays as it is. */
    bool overwriteText(const QModelIndex &index, const QTextDocument *document);

    [[nodiscard]] bool hasInspectorNotes(const QModelIndex &index) const;
    /** The inspector's comments and footnotes in the order of the text. */
    [[nodiscard]] QStringList inspectorNotesToPlainText(const QModelIndex &index) const;
    /** Hangs a comment or footnote on a run of the main text; false without one. */
    bool setInspectorNote(const QModelIndex &index, const TVLTextRange &range,
                          const TVLTextCommentLink &link);
    /** Takes those off that start at the positions; false only for an invalid index. */
    bool removeInspectorNotes(const QModelIndex &index, const QList<int> &positions);
    bool removeInspectorNote(const QModelIndex &index, int position);

    /**
     * A title made of the words that the text begins with: the first paragraph with words gives as
     * many as fit in 50 characters. Without @p force only for a text that isn't a title itself, by
     * its length or its lines. @p ellipsis adds "..." when words were left over.
     */
    [[nodiscard]] static QString calcTitleFromText(const QTextDocument *document, bool force,
                                                   bool ellipsis);
    /** The same of the main text, forced and without an ellipsis. */
    [[nodiscard]] QString calcTitleFromText(const QModelIndex &index) const;
    /** The first 20 words of the first paragraph that has any. */
    [[nodiscard]] QString autoGenerateSynopsisText(const QModelIndex &index) const;
    /** The items, other than system folders, with @p text in a synopsis that is in memory; others
     * aren't looked into. The case matters. */
    [[nodiscard]] QList<QModelIndex> searchInSynopsis(const QString &text, bool regExp) const;
    /** @} */

    /** @name Counts
     * Counts of an item are kept until its documents change; the first brings them into memory. The
     * two flags go to TVLTextDoc::wordCount() as they are; a count that is kept doesn't remember
     * them.
     * @{ */
    [[nodiscard]] int wordCount(const QModelIndex &index, bool withAnnotations,
                                bool withFootnotes) const;
    [[nodiscard]] int characterCount(const QModelIndex &index) const;
    /** The count of the item and of all below it. */
    [[nodiscard]] int totalWordCount(const QModelIndex &index, bool withAnnotations,
                                     bool withFootnotes) const;
    [[nodiscard]] int totalCharacterCount(const QModelIndex &index) const;
    /** What was written since the session began; below 0 when text was deleted. */
    [[nodiscard]] int sessionWordCount(const QModelIndex &index, bool withAnnotations,
                                       bool withFootnotes) const;
    [[nodiscard]] int sessionCharacterCount(const QModelIndex &index) const;
    /** The count that the item's target is about. */
    [[nodiscard]] int countActual(const QModelIndex &index, bool withAnnotations,
                                  bool withFootnotes) const;
    /** The part of the target that is reached, 1.0 for all of it; 0.0 without a target. */
    [[nodiscard]] double progress(const QModelIndex &index, bool withAnnotations,
                                  bool withFootnotes) const;
    [[nodiscard]] double progressPercent(const QModelIndex &index) const;

    /** Sums over a project. */
    struct WordCharSessionCount
    {
        int mDraftWords = 0;
        int mDraftCharacters = 0;
        int mSessionWords = 0;
        int mSessionCharacters = 0;

        friend bool operator==(const WordCharSessionCount &,
                               const WordCharSessionCount &) = default;
    };
    /**
     * Sums up a project; all are 0 for null.
     * @param draft        whether to count what lies inside the Draft
     * @param session      whether to sum up the session's counts, inside the Draft or not
     * @param compileOnly  whether only items that take part in compiling count in the Draft
     */
    [[nodiscard]] static WordCharSessionCount
    wordCharSessionCount(const TVLProjectModel *model, bool draft, bool session, bool compileOnly);
    [[nodiscard]] WordCharSessionCount wordCharSessionCount(bool draft, bool session,
                                                            bool compileOnly) const;
    /** A line for a status bar; a target of 0 is none. */
    [[nodiscard]] static QString statisticsText(int words, int characters, int target,
                                                TVL::TargetType type);
    /** @} */

    /** @name Project notes
     * A note's document belongs to the model and lives until the note is removed.
     * @{ */
    [[nodiscard]] const TVLProjectNotes &projectNotes() const { return mProjectNotes; }
    /** The ids in the order of the notes; that of the first default note when there are none. */
    [[nodiscard]] QList<int> projectNoteIdentities() const;
    [[nodiscard]] bool hasProjectNoteId(int id) const { return mProjectNotes.hasId(id); }
    /** A note's text, never null: an unknown id gives the first note, which is made if there is
     * none. */
    QTextDocument *projectNote(int id);
    /** The title of what projectNote() gives. */
    QString projectNoteTitle(int id);
    /** Appends a note and returns its id. */
    int addProjectNote(const QString &title);
    /** False for an unknown id. */
    bool renameProjectNote(int id, const QString &title);
    /** Moves a note from one position to another; false when they are equal or out of range. */
    bool moveProjectNote(int from, int to);
    /** True also for an unknown id. */
    bool removeProjectNote(int id, QStringList *errors);
    /** @} */

    /** @name Attributes of items @{ */
    /** The type; TVL::Other for an index of another model. */
    [[nodiscard]] TVL::NodeType type(const QModelIndex &index) const;
    /** The title; with the flag, "Untitled" in place of an empty one. */
    [[nodiscard]] QString title(const QModelIndex &index, bool substituteUntitled = false) const;
    /** "Untitled", translated. */
    [[nodiscard]] static QString trUntitledTitle();
    [[nodiscard]] int nodeIdentity(const QModelIndex &index) const;
    [[nodiscard]] QUuid nodeUuid(const QModelIndex &index) const;
    [[nodiscard]] int labelIdentity(const QModelIndex &index) const;
    [[nodiscard]] int statusIdentity(const QModelIndex &index) const;
    [[nodiscard]] bool isFavorite(const QModelIndex &index) const;
    /** The icon; null without an icon set. */
    [[nodiscard]] QIcon icon(const QModelIndex &index) const;

    /*
     * The setters return false without an item and true without effect for an equal value.
     * Otherwise they store it, mark the project modified, set the item's modification time and
     * emit dataChanged().
     */
    bool setTitle(const QModelIndex &index, const QString &title);
    bool setType(const QModelIndex &index, TVL::NodeType type);
    /** The name of a custom icon; empty for the icon of the type. */
    bool setCustomIcon(const QModelIndex &index, const QString &name);
    /** An equal id counts as such only if there is a label of that id. */
    bool setLabelIdentity(const QModelIndex &index, int id);
    /** An equal id counts as such only if there is a status item of that id. */
    bool setStatusIdentity(const QModelIndex &index, int id);
    [[nodiscard]] QList<int> keywordIds(const QModelIndex &index) const;
    bool setKeywordIds(const QModelIndex &index, const QList<int> &ids);
    /** @} */

    /** @name Labels and status items @{ */
    [[nodiscard]] QList<TVLLabel> labels() const override;
    /**
     * Replaces all labels. Items whose label went or changed are touched; those whose label went
     * get none. A list without "No Label" gets it.
     */
    void setLabels(const QList<TVLLabel> &labels) override;
    [[nodiscard]] QString labelTitle() const override { return mLabelTitle; }
    void setLabelTitle(const QString &title) override;
    [[nodiscard]] int defaultLabelIdentity() const override { return mDefaultLabelId; }
    /** Ignored when there is no label of that id. */
    void setDefaultLabelIdentity(int id) override;
    [[nodiscard]] QList<TVLStatusItem> statusItems() const override;
    void setStatusItems(const QList<TVLStatusItem> &items) override;
    [[nodiscard]] QString statusTitle() const override { return mStatusTitle; }
    void setStatusTitle(const QString &title) override;
    [[nodiscard]] int defaultStatusIdentity() const override { return mDefaultStatusId; }
    void setDefaultStatusIdentity(int id) override;
    /** The largest outline column plus 1: the fixed ones and a column per custom field. */
    [[nodiscard]] int maxOutlineColumns() const;
    /** @} */

    /** @name Collections and favorites @{ */
    [[nodiscard]] QList<TVLCollectionMetaData> collections() const override { return mCollections; }
    /** Takes over a list without a signal; ids of no item leave it, missing kinds are added. */
    void setCollections(const QList<TVLCollectionMetaData> &collections) override;
    /** Makes an item a favorite, at either end of the list, or none. */
    bool setFavorite(const QModelIndex &index, bool favorite, bool atEnd);
    bool addToFavorites(const QModelIndex &index, bool atEnd);
    bool removeFromFavorites(const QModelIndex &index);
    /** @} */

public Q_SLOTS:
    /**
     * Saves the project if it is modified, or in any case with @p force. Emits aboutToSave() for
     * each item with loaded documents first. The project counts as saved afterwards even when the
     * result is false: the user has seen the error.
     */
    bool save(bool force = false);
    /** Begins a new writing session for every item that has taken part in this one. Emits
     * metaDataChanged(). */
    void resetSessionCounts();
    /** Keeps the project out of backups or not; marks the project modified in any case. */
    void setExcludeFromBackup(bool exclude);

Q_SIGNALS:
    /** The item's documents are about to be looked through for what to write. */
    void aboutToSave(QModelIndex index);
    /** A document was edited: at a position, so many characters went and so many came. */
    void documentContentsChange(QModelIndex index, TVL::DocumentType docType, int position,
                                int charsRemoved, int charsAdded);
    /** Follows documentContentsChange(), once for each edit block. */
    void documentContentsChanged(QModelIndex index, TVL::DocumentType docType);
    void labelsChanged();
    void statusItemsChanged();
    void referencesChanged();
    void templateFolderChanged(QModelIndex newIndex, QModelIndex oldIndex);
    void labelTitleChanged(QString title);
    void statusTitleChanged(QString title);
    void formatModeChanged(QModelIndex index, QString mode);
    void modifiedChanged(bool modified);
    void externallyModified(QString path);
    void snapshotsChanged(QModelIndex first, QModelIndex last);
    void projectNoteAboutToBeRemoved(int noteId);
    void projectNoteRemoved(int noteId);
    void projectNoteAboutToBeAdded(int noteId);
    void projectNoteAdded(int noteId);
    void projectNoteAboutToBeMoved(int from, int to);
    void projectNoteMoved(int from, int to);
    void projectNoteRenamed(int noteId);
    void metaDataChanged();
    void customMetaDataChanged(QModelIndex index);
    void customMetaDataSettingsAboutToBeChanged(QStringList oldIds, QStringList newIds);
    void customMetaDataSettingsChanged(QStringList oldIds, QStringList newIds);
    void collectionChanged();
    void collectionChanged(int position, TVLCollectionMetaData collection);
    void collectionAboutToBeInserted(int position, TVLCollectionMetaData collection);
    void collectionInserted(int position, TVLCollectionMetaData collection);
    void collectionAboutToBeRemoved(int position);
    void collectionRemoved(int position);
    void autoCompleteListChanged();

protected:
    void timerEvent(QTimerEvent *event) override;

private Q_SLOTS:
    void onOptionsChanged(const QStringList &groups);
    void onProjectNoteModifiedChanged(bool modified);
    void onDocumentContentsChange(int position, int charsRemoved, int charsAdded);
    void onDocumentContentsChanged();
    void cleanDragAndDrop();
    void markProjectAsModified(bool set = true);
    [[nodiscard]] QModelIndex findTemplateFolder() const;

private:
    friend class TVLProjectModelTestAccess;

    /** Whether a change sets an item's modification time. */
    enum class Touch { Yes, No };

    void beginBinderRead() override;
    void endBinderRead() override;
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;

    void setFolderFormatVersion(TVL::FormatVersion version);
    void addDefaultLabelsAndStatusItems();
    void addDefaultProjectNotesAndCollections();
    void addDefaultProjectNotes();
    void addDefaultCollections();
    void ensureProperProjectNotes();
    void updateHasSnapshots();
    void stopAutoSaveTimer();
    void askEditorsBeforeSave();
    void saveBinder(QStringList *failures) const;
    void saveLoadedDocuments(QStringList *failures) const;
    void saveProjectNotes() const;
    void showSaveErrors(const QStringList &errors) const;

    void createDocuments(TVLProjectNode *node) const;
    void startDocument(TVLTextDocument *document) const;
    void releaseDocuments(TVLProjectNode *node) const;
    void enterLoadedNodes(TVLProjectNode *node) const;
    void leaveLoadedNodes(const TVLProjectNode *node) const;
    void showLoadErrors(const QString &title, const QStringList &errors) const;
    void announceDocTextChanges();
    static void takeSessionCounts(TVLProjectNode *node);
    [[nodiscard]] int wordCountOf(TVLProjectNode *node, bool withAnnotations,
                                  bool withFootnotes) const;
    [[nodiscard]] int characterCountOf(TVLProjectNode *node) const;
    [[nodiscard]] int sessionWordCountOf(TVLProjectNode *node, bool withAnnotations,
                                         bool withFootnotes) const;
    [[nodiscard]] int sessionCharacterCountOf(TVLProjectNode *node) const;
    template <typename Count>
    [[nodiscard]] int totalCount(const QModelIndex &index, Count count) const;
    void addCounts(TVLProjectNode *node, bool draft, bool session, bool compileOnly,
                   WordCharSessionCount *sums) const;
    [[nodiscard]] QTextDocument *newProjectNote(const QString &title);
    void markProjectNotesAsModified();

    [[nodiscard]] QModelIndex beginInsertParent(const QModelIndex &parent) const;
    void announceChange(const QModelIndex &index);
    void announceSubtree(const QModelIndex &index);
    void markTemplateFolder(const QModelIndex &index, bool isTemplateFolder);
    template <typename Value>
    bool setNodeValue(const QModelIndex &index, Value TVLProjectNodeProperties::*member,
                      const Value &value, bool equalCounts = true, Touch touch = Touch::Yes);
    template <typename Predicate>
    [[nodiscard]] QModelIndex findTopLevel(Predicate predicate) const;
    template <typename Item, typename SetItems>
    void replaceItems(QList<Item> items, const QList<Item> &oldItems, const Item &noneItem,
                      int TVLProjectNodeProperties::*member, int *defaultId, SetItems setItems);

    QString mName;
    QString mPath;
    bool mSaved = true;
    bool mSuspendModified = false;
    bool mMobileProject;
    bool mTintIcons = false;
    int mAutoSaveTimer = -1;
    int mDocTextChangeTimer = -1;
    QSet<QPersistentModelIndex> mDocTextChanges; ///< Waiting for dataChanged().
    int mDefaultLabelId = -1;
    int mDefaultStatusId = -1;
    QString mLabelTitle;
    QString mStatusTitle;
    QMap<int, QUuid> mIdMap;
    QMap<QUuid, TVLProjectNode *> mUuidMap;
    QList<TVLCollectionMetaData> mCollections;
    TVLCustomMetaDataSettings mCustomMetaDataSettings;
    std::unique_ptr<TVLProjectNode> mRootNode;
    QList<int> mFavorites;
    QUuid mTemplateFolderUuid;
    // Documents come and go behind a project that stays the same to its callers.
    /** Not owned; in order of first load, with null in place of those that have left. */
    mutable QList<TVLProjectNode *> mLoadedNodes;
    mutable QHash<const TVLProjectNode *, qsizetype> mLoadedPositions; ///< In mLoadedNodes.
    mutable TVLProjectNotes mProjectNotes; ///< Each save clears the flags of what has changed.
    TVLProjectFolderFormat *mFolderFormat; ///< Child object.
    std::unique_ptr<TVLSearchIndex> mSearchIndex; ///< Also the store of labels and status items.
    int mAutoSaveSeconds = 10;
    bool mTreatTextWithChildrenAsFolder = true;
    bool mBackupIncluded = true;
    mutable TVLProjectInfo mInfo; ///< Each save stamps it, though saving changes no project.
    QString mUserProjectData;

    /** Every live model in order of construction; entries of models that were just deleted are
     * null. */
    static QList<QPointer<TVLProjectModel>> mExistingModels;
};
