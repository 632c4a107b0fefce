#pragma once

#include "TVLBasicNodeInfo.h"
#include "TVLBinderProject.h"
#include "TVLMetaDataField.h"
#include "TVLProjectNotes.h"
#include "TVLReference.h"
#include "TVLScriptMode.h"
#include "TVLSearchedProject.h"
#include "TVLSnapshotInfo.h"
#include "TVLSuspendModified.h"
#include "TVLTargets.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QIcon>
#include <QMap>
#include <QPersistentModelIndex>
#include <QSet>
#include <QUuid>

#include <memory>

class QImage;
class QPrinter;
class QTextDocument;
class QUrl;
class TVLKeywordModel;
class TVLProjectChecksums;
class TVLProjectFolderFormat;
class TVLProjectModelPrivate;
class TVLProjectNode;
class TVLProjectNodeProperties;
class TVLProjectSettings;
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
class TVL_EXPORT TVLProjectModel : public QAbstractItemModel,
                                   public TVLBinderProject,
                                   public TVLSearchedProject
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
    /**
     * Makes this the model of a project that is only read; to be called before the binder is. It
     * then never saves: save(), saveAll() and the like return false or do nothing, and show no box.
     * Functions that change files at once, as those for images and snapshots, are not to be called.
     * Without @p withSearch the search index has no items, and searches find none.
     */
    void setOnlyRead(bool withSearch);
    /** Where the project lies; it lives as long as the model. */
    [[nodiscard]] const TVLProjectFolderFormat *folderFormat() const;
    /** Whether this is the model of a project that is only read. */
    [[nodiscard]] bool isOnlyRead() const;
    /** Takes over the application's options. */
    void loadOptions();
    /** Takes over what the file of settings() says of the project. */
    void loadProjectSettings();

    /** The error box of a failed save is shown here, and the errors go to @p errors if given. */
    bool saveChanges(QStringList *errors) const;
    /** Saves the documents of one item; false without one, for the root, and on a failure. */
    bool save(const QModelIndex &index);
    /** Does nothing; it is there to keep a document from being taken for a flag. */
    void save(TVLTextDocument *document);
    /** save(), and all that is saved apart from it. */
    void saveAll(bool force);
    /** Writes the texts that the search index keeps between sessions, if they have changed. A
     * mobile project has neither these nor the hashes: their files are the desktop project's. */
    void saveSearchIndex(bool force);
    /** Writes the hashes of the documents' files, if they have changed, behind the texts that they
     * vouch for. */
    void saveChecksums(bool force);
    /**
     * Copies the project to @p path, goes on there and saves. An existing folder there is deleted
     * first. False, with the model still on its old path, when the copy failed, or when @p path is
     * the project's own folder, lies in it or holds it.
     */
    [[nodiscard]] bool saveAs(const QString &path, bool showProgress, bool removeOldLock);
    /**
     * Ends the model's work: saves, also what an earlier save could not write, removes the lock,
     * and takes the model off the list of models.
     */
    void prepareToDestroy();

    /** The open model of a path, which may name the folder or the binder; null when there is none.
     */
    [[nodiscard]] static TVLProjectModel *findProjectModelViaPath(const QString &path);
    /** Folder through which items are dragged between programs, in native separators. */
    [[nodiscard]] static QString dragAndDropPath();
    [[nodiscard]] bool isSaved() const;
    [[nodiscard]] bool isModified() const;
    /** @} */

    /** @name The project @{ */
    [[nodiscard]] QString name() const;
    void setName(const QString &name);
    [[nodiscard]] QDir path() const;
    [[nodiscard]] bool isMobileProject() const override;
    [[nodiscard]] TVL::FormatVersion formatVersion() const override;
    /** What the binder's root element says: versions, and the stamp of the last save. */
    [[nodiscard]] TVLProjectInfo info() const;
    void setInfo(const TVLProjectInfo &info) override;
    /** Name of the device that saved the project last. */
    [[nodiscard]] QString deviceName() const;
    void setDeviceName(const QString &name);
    /** Name of this device. */
    [[nodiscard]] static QString platformDeviceName();
    /** Whether automatic backups take the project; see setExcludeFromBackup(). */
    [[nodiscard]] bool backupIncluded() const;
    /** What a binder says of it; the project counts as modified once the binder is read. */
    void adoptBackupIncluded(bool included);
    /** State of the project's user interface, in a file of its own; never null. It belongs to the
     * model, and saveAs() replaces it. */
    [[nodiscard]] TVLProjectSettings *settings() const;
    /** How long nothing may happen, in seconds, before a modified project saves itself. */
    [[nodiscard]] int autoSaveSeconds() const;
    /** The part of the binder that is kept as raw text. */
    [[nodiscard]] QString userProjectData() const;
    void setUserProjectData(const QString &data);
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
    [[nodiscard]] TVLProjectNode *binderRoot() const override;
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
    [[nodiscard]] bool hasNodeId(int id) const;
    [[nodiscard]] bool hasNodeUuid(const QUuid &uuid) const;
    /** The indexes of uuids, in their order; those that no item has are passed over. */
    [[nodiscard]] QModelIndexList indexesByUuid(const QList<QUuid> &uuids) const;
    /** Whether one of an item's children, not of what lies below these, has a uuid. */
    [[nodiscard]] bool hasChildWithUuid(const QModelIndex &parent, const QUuid &uuid) const;
    /** The items with references, in the order of the binder. */
    [[nodiscard]] QList<TVLProjectNode *> allNodesWithReferences() const;
    /** TVLProjectFolderFormat::toTavelinorLinkMap(). */
    [[nodiscard]] static QMap<TVLTextRange, QString>
    toTavelinorLinkMap(const TVLTextInternalLinkMap &links, const QMap<int, QUuid> &idToUuid);
    /** The uuids of all items that have an id, by that. */
    [[nodiscard]] QMap<int, QUuid> idToUuid() const override;
    /** The largest id in use; -1 for none. */
    [[nodiscard]] int findBiggestNodeId() const;
    /**
     * An id for a new node: above all in use, or the first gap when the largest int is used. One
     * that has files or snapshots in the project's folder is passed over: what another item has
     * left there isn't the new one's.
     */
    [[nodiscard]] int findNextNodeId() const;
    /** The largest value plus 1; 0 for an empty list. With the largest int used, the first gap. */
    [[nodiscard]] static int findNextFreeId(const QList<int> &ids);
    /** All uuids in the order of uuids. */
    [[nodiscard]] QList<QUuid> uuidsList() const;
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
    /** findSyncConflictsFolder(), which is made when there is none. */
    QModelIndex syncConflictsFolder();
    QModelIndex createSyncConflictsFolder();
    [[nodiscard]] QModelIndex findSyncConflictsSubFolder(const QString &name) const;
    QModelIndex syncConflictsSubFolder(const QString &name);
    QModelIndex createSyncConflictsSubFolder(const QString &name);
    QModelIndex syncConflictsSubFolderDevice(const QString &device, const QDateTime &date);
    /** The folder of the device and the date of the last save. */
    QModelIndex syncConflictsSubFolderDevice();
    [[nodiscard]] static QString syncConflictsSubfolderNameFromDeviceName(const QString &device,
                                                                          const QDateTime &date);

    /** The first folder outside the Draft that has the front matter's title; invalid for none. */
    [[nodiscard]] QModelIndex frontMatterFolder() const;
    [[nodiscard]] static QString frontMatterFolderName();
    [[nodiscard]] QModelIndex templateFolder() const { return findTemplateFolder(); }
    [[nodiscard]] QModelIndex findTemplateFolder() const;
    /** Makes an item the template folder; none with an invalid index. Emits
     * templateFolderChanged(). */
    void setTemplateFolder(const QModelIndex &index);
    void clearTemplateFolder();
    /** Whether an ancestor of the item is a template folder. */
    [[nodiscard]] bool templatesContain(const QModelIndex &index) const;
    /** Null when there is none. */
    [[nodiscard]] QUuid templateFolderUuid() const;
    /** What a binder says of it: emits and marks nothing; nothing for what no item has. */
    void adoptTemplateFolder(const QUuid &uuid);
    void adoptTemplateFolder(int id);
    /** @} */

    /** @name Making items
     * Every new item gets the default label and status item. A row of -1 is the end of the parent.
     * It is whole when it is announced: with its texts, counts, card, icon and keywords. Who hears
     * of it may remove it; the functions then return null, a default index, or a list without it.
     * The functions that insert a single item with a given content don't mark the project modified:
     * what follows does, or the caller. Those that insert rows do.
     * @{ */
    /** What insertRowsAndClone() copies and asks. */
    enum CloneFlag {
        NoCloneFlag = 0,
        SkipCloneRules = 1, ///< Clone without asking canClone().
        CloneChildren = 2, ///< The source's descendants come along, with snapshots and files.
        CloneSnapshots = 4,
        CloneWithoutFiles = 8, ///< Copy nothing of the source itself.
    };
    Q_DECLARE_FLAGS(CloneFlags, CloneFlag)
    Q_FLAG(CloneFlags)

    /**
     * Makes a node at @p row of @p parent, or at its end for a negative row, and gives it its id
     * and uuid. A uuid or id that is taken is replaced silently. Emits nothing.
     */
    TVLProjectNode *createProjectNode(TVLProjectNode *parent, int row, QUuid uuid, int id);
    /** Makes an item, with its documents in memory. An empty title gives "Untitled". */
    TVLProjectNode *insertNode(int row, const QModelIndex &parent, TVL::NodeType type,
                               const QString &extension, const QString &title);
    /** Makes a text item with its texts; an empty text leaves its document alone. */
    QModelIndex insertTextNode(int row, const QModelIndex &parent, const QString &title,
                               const QString &text, const QString &synopsis, const QString &notes);
    /**
     * Makes an image item; the image, unless it is null, is written as its PNG file at once. Where
     * items have no id an image has no place: nothing is made, and the index is invalid.
     */
    QModelIndex insertImageNode(int row, const QModelIndex &parent, const QString &title,
                                const QImage &image, const QString &synopsis, const QString &notes);
    QModelIndex insertUserFolder(int row, const QModelIndex &parent, const QString &title);
    /** Makes items side by side, in their order; one for a @p count below 1. */
    QList<TVLProjectNode *> insertMultipleNodes(int row, const QModelIndex &parent,
                                                TVL::NodeType type, const QString &extension,
                                                const QString &title, int count);
    /** insertMultipleNodes() of text items called "Untitled". */
    QList<QModelIndex> insertMultipleTextNodes(int row, const QModelIndex &parent, int count);
    /** Makes an item out of a record, of which it takes the uuid and id too unless they are taken.
     */
    TVLProjectNode *insertNodeWithProperties(int row, const QModelIndex &parent,
                                             const TVLProjectNodeProperties &properties);
    QModelIndex insertRowWithProperties(int row, const QModelIndex &parent,
                                        const TVLProjectNodeProperties &properties);
    /**
     * Makes text items without titles, each a clone of @p source if that is valid. False, with
     * nothing done, for a row out of range, a @p count below 1 and a parent in the Trash.
     */
    bool insertRowsAndClone(int row, int count, const QModelIndex &parent,
                            const QModelIndex &source, CloneFlags flags);
    /** insertRowsAndClone() of one item, whose uuid may be given; a default index when it is
     * refused. */
    QModelIndex insertRowAndClone(int row, const QModelIndex &parent, const QModelIndex &source,
                                  CloneFlags flags, const QUuid &uuid = QUuid());
    QModelIndex createNewItem(int row, const QModelIndex &parent);
    QModelIndex createNewFolder(int row, const QModelIndex &parent);
    /** A new text with the text mode of @p sibling, if that is valid. */
    QModelIndex createNewText(int row, const QModelIndex &parent, const QModelIndex &sibling);
    /** A new item with a given uuid, if @p uuid isn't null, cloned from @p source, if that isn't.
     */
    QModelIndex createNewProjectIndex(int row, const QModelIndex &parent, const QString &title,
                                      const QUuid *uuid, const QModelIndex *source);
    /** createNewProjectIndex() at the end of a folder inside syncConflictsFolder(). */
    QModelIndex createNewItemInConflictsFolder(const QUuid *uuid, const QString &title,
                                               const QString &subfolder, const QModelIndex *source);
    /** Makes a web page that is shown from its address. */
    TVLProjectNode *createUrlNode(const QUrl &url, int row, const QModelIndex &parent);
    /** @} */

    /** @name Moving and removing items
     * A move that is refused for one item is refused for all, and nothing moves:
     *
     * | Item | Target | |
     * |---|---|---|
     * | system folder | anywhere but the top level | refused |
     * | folder or text with only such below it | anything | allowed |
     * | folder or text with another kind of item below it | in the Draft | refused |
     * | any other kind of item | in the Draft | refused |
     * | any other kind of item | outside the Draft | allowed |
     *
     * Moved items keep their identity, their files and their modification time. Removing deletes
     * an item's files and snapshots at once, before the binder is saved.
     * @{ */
    /** Moves items to a row of a folder, -1 for its end, in the order of the list. Those below
     * another one of the list move along with it. */
    bool moveToFolder(const QModelIndex &folder, const QModelIndexList &indexes, int row);
    /**
     * Moves nodes that don't lie in one another. An item that stands right at the
     * destination already stays, and the next ones follow one row further down.
     */
    bool moveToFolder(TVLProjectNode *target, int row, const QList<TVLProjectNode *> &nodes);
    /** Nothing is deleted by this. False if one of the items is in the Trash already. */
    bool moveToTrash(const QModelIndexList &indexes);
    /** Removes an item with its files and saves the project. Items below it go too, but leave
     * their files; false for an invalid index. */
    bool removeIndex(const QModelIndex &index);
    /** removeIndex() without saving, and without looking after what refers to the item. */
    void removeIndexFromModel(const QModelIndex &index);
    /** Removes all below an item, with their files. */
    void removeChildrenForIndex(const QModelIndex &index);
    /** Takes a node out of the maps and deletes its files; the node stays in the tree. */
    bool removeFilesForNode(TVLProjectNode *node);
    /** Takes items out of collections, favorites and the like, before they are removed. */
    void removeIndexesFromDependentStructures(const QModelIndexList &indexes);
    /** Items that made their new children from one of these no longer do. */
    void removeNodeIdsFromDefaultTemplateId(const QList<int> &ids);
    /** Takes ids out of the fixed collections, without a signal. */
    void removeNodeIdsFromCollections(const QList<int> &ids);
    /** @} */

    /** @name Copying items, also between two models @{ */
    /**
     * Whether an item may be copied onto another: not into the Trash, nothing but folders and texts
     * into the Draft, and no system folder within a project.
     */
    [[nodiscard]] bool canClone(const QModelIndex &source, const QModelIndex &target) const;
    /**
     * Makes @p target, which is an index of this model, a copy of @p source, which may be one of
     * another: its files, snapshots if asked for, attributes, keywords, references, label and
     * status item, those of another project by their titles. The source is saved first. Documents
     * of the target that are in memory are let go. Equal indexes are a success without effect.
     * @param recursive  copies of the source's descendants are inserted below the target
     * @param checkRules whether canClone() is asked
     * @param files      without it, nothing of the source itself is copied
     * @return false when it is refused, or when files couldn't be copied; what was copied until
     *         then stays
     */
    bool clone(const QModelIndex &source, const QModelIndex &target, bool recursive,
               bool checkRules, bool snapshots, bool files);
    /** Only the files of clone(). */
    bool cloneProjectFiles(const QModelIndex &source, const QModelIndex &target, bool snapshots);
    [[nodiscard]] static bool cloneProjectFilesNode(bool mobile, const QString &sourcePath,
                                                    const TVLProjectNode *source,
                                                    const QString &targetPath,
                                                    const TVLProjectNode *target);
    /** The attributes of a desktop item, its snapshots if asked for, and none of its other files.
     */
    bool cloneDesktopProperties(const QModelIndex &source, const QModelIndex &target,
                                bool snapshots);
    bool cloneKeywordsAndReferences(const QModelIndex &source, const QModelIndex &target);
    /** Between projects by title; one that the target doesn't have is added to it. */
    bool cloneLabelsAndStatusItems(const QModelIndex &source, const QModelIndex &target);
    /**
     * Copies items into the parent of the topmost of them, right below the last of those there,
     * under unique titles. With @p withChildren all below them comes along. Nothing happens, and
     * the list is empty, when one of them is a system folder.
     */
    QModelIndexList duplicate(const QModelIndexList &indexes, bool withChildren);
    /** Duplicates at a given place, which may not be in the Trash. */
    QModelIndexList duplicate(const QModelIndexList &indexes, int row, const QModelIndex &parent,
                              bool withChildren, bool checkRules);
    QModelIndex duplicate(const QModelIndex &index, int row, const QModelIndex &parent,
                          bool withChildren, bool checkRules);
    /** @} */

    /** @name Arranging items @{ */
    /** Puts items below a new text at the place of the first; its index, or an invalid one. When
     * the move is refused the new text stays. */
    QModelIndex groupIndexes(const QModelIndexList &indexes);
    /** Puts the children of each item behind it; false when none has children. */
    bool ungroupIndexes(const QModelIndexList &indexes);
    /**
     * Joins texts into the first of the list, with their notes, synopses, keywords, references and
     * snapshots, and removes the others; their children move up to their place. The joined text is
     * on disk before a file is deleted; when it can't be written, no file is. An invalid index,
     * with no item changed, unless all are texts or folders, and all their texts and snapshots can
     * be read and the snapshots copied.
     */
    QModelIndex mergeIndexes(const QModelIndexList &indexes);
    /**
     * Sorts a list of items of one model, stably; the tree stays as it is. What isn't in memory
     * isn't counted for it, and synopses are compared by where they are in memory. Columns beyond
     * ProgressColumn give the order of the binder, whatever the @p order.
     */
    [[nodiscard]] static QModelIndexList sort(const QModelIndexList &indexes, TVL::Columns column,
                                              Qt::SortOrder order);
    /** Sorted into the order of the binder. */
    [[nodiscard]] static QModelIndexList sortIndexes(const QModelIndexList &indexes);
    [[nodiscard]] static QModelIndexList sortIndexesStable(const QModelIndexList &indexes);
    /** sortIndexes() with one walk over the binder, for long lists; an item comes out once. */
    [[nodiscard]] QModelIndexList sortIndexesHash(const QModelIndexList &indexes) const;
    [[nodiscard]] static QModelIndexList shuffle(const QModelIndexList &indexes);
    /** Whether @p a comes before @p b in the order of the binder. */
    [[nodiscard]] static bool lessThanIndex(const QModelIndex &a, const QModelIndex &b);
    /** Makes all items top-level ones, without a signal: only for a model that no view shows. */
    void flatten();
    /** Counts those that hold others or could, and those that are no system folders. */
    void countFilesAndFolders(const QModelIndexList &indexes, int *groups, int *items) const;
    [[nodiscard]] QList<int> nodeIdentityList(const QModelIndexList &indexes) const;
    [[nodiscard]] QList<QUuid> nodeUuidList(const QModelIndexList &indexes) const;
    [[nodiscard]] QStringList titles(const QModelIndexList &indexes) const;
    /** Whether another child of the item's parent has exactly that title. */
    [[nodiscard]] bool hasSiblingWithTitle(const QModelIndex &index, const QString &title) const;
    /** The title, or one made of it with a number that no sibling has. */
    [[nodiscard]] QString findUniqueTitle(const QString &title, const QModelIndex &index) const;
    /** @} */

    /** @name Taking over what a merge decides @{ */
    /** A copy of an item's record; a default one without an item. */
    [[nodiscard]] TVLProjectNodeProperties nodeProperties(const QModelIndex &index) const;
    bool applyMobileAttributes(const QModelIndex &index,
                               const TVLProjectNodeProperties &properties);
    bool applyDesktopAttributes(const QModelIndex &index,
                                const TVLProjectNodeProperties &properties);
    /** The source may be an item of another model. */
    bool applyMobileAttributesFromIndex(const QModelIndex &source, const QModelIndex &target);
    bool applyDesktopAttributesFromIndex(const QModelIndex &source, const QModelIndex &target);
    /** @} */

    /** @name Snapshots
     * Only folders and texts have snapshots, which are copies of their main texts; other items are
     * refused by all of these but the two that are given the document. Of a text that could not be
     * read there is no snapshot.
     * @{ */
    [[nodiscard]] QList<TVLSnapshotInfo> snapshots(const QModelIndex &index) const;
    /**
     * Makes a snapshot of the main text. A failure is told in a box; the reference to the main text
     * is kept then, so that it stays in memory.
     */
    bool addSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info);
    /** Makes a snapshot with that title and the present time. */
    bool addSnapshot(const QModelIndex &index, const QString &title);
    /** Makes a snapshot of a text given by the caller, of the item's main text as a rule. */
    bool addSnapshotWithDocument(const QModelIndex &index, const TVLSnapshotInfo &info,
                                 const QTextDocument *document, QString *error);
    bool addSnapshotWithExternalDocument(const QModelIndex &index, const TVLSnapshotInfo &info,
                                         const QTextDocument *document, QString *error);
    /** Reads a snapshot in place of what a document holds, which the caller owns. */
    [[nodiscard]] bool loadSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info,
                                    QTextDocument *document) const;
    /**
     * Puts a snapshot in place of the main text, as one edit that can be undone; the item knows
     * the snapshot's date until its next edit. When the snapshot can't be read, or when the main
     * text is read-only, it is false and the main text stays as it was.
     */
    bool loadSnapshotIntoMainText(const QModelIndex &index, const TVLSnapshotInfo &info);
    bool setSnapshotTitle(const QModelIndex &index, const QDateTime &date, const QString &title);
    /** Emits dataChanged(), and not snapshotsChanged(). */
    bool removeSnapshot(const QModelIndex &index, const TVLSnapshotInfo &info);
    /** @} */

    /** @name Ids and uuids @{ */
    void changeIndexUuid(const QModelIndex &index, const QUuid &uuid);
    /**
     * Takes an item's id away, and with it the files of its texts. What is unsaved of these is
     * written first; an item for which that fails keeps its id.
     */
    void clearIndexId(const QModelIndex &index);
    /** Gives an id to every item without one. */
    void populateMissingIDs();
    /** populateMissingIDs() with ids that @p other doesn't use either. */
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

    /** Brings an item's documents into memory without a reference; nothing if they are there. A
     * file that can't be read is told in a box, behind which the node may be gone. */
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
    /** Hangs a comment or footnote on a run of the main text; false without one, for a range
     * without text, and where the text or its comments could not be read. */
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
    /** The title that the item's main text gives, forced and without an ellipsis. */
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
    [[nodiscard]] const TVLProjectNotes &projectNotes() const;
    /** The ids in the order of the notes; that of the first default note when there are none. */
    [[nodiscard]] QList<int> projectNoteIdentities() const;
    [[nodiscard]] bool hasProjectNoteId(int id) const;
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

    /** @name Attributes of items
     * An index of another model gets what is in brackets; where nothing is, false, 0 or an empty or
     * null value.
     * @{ */
    [[nodiscard]] TVL::NodeType type(const QModelIndex &index) const; ///< [TVL::Other]
    /** The title; with the flag, "Untitled" in place of an empty one. */
    [[nodiscard]] QString title(const QModelIndex &index, bool substituteUntitled = false) const;
    /** "Untitled", translated. */
    [[nodiscard]] static QString trUntitledTitle();
    [[nodiscard]] QString extension(const QModelIndex &index) const; ///< Of the main file.
    [[nodiscard]] QPair<int, int> selection(const QModelIndex &index) const; ///< Place and length.
    [[nodiscard]] QDateTime created(const QModelIndex &index) const;
    [[nodiscard]] QDateTime lastModified(const QModelIndex &index) const;
    /** The date of the snapshot that the text was taken back to and not edited since. */
    [[nodiscard]] QDateTime currentSnapshot(const QModelIndex &index) const;
    [[nodiscard]] int nodeIdentity(const QModelIndex &index) const; ///< [-1]
    [[nodiscard]] QUuid nodeUuid(const QModelIndex &index) const;
    [[nodiscard]] int labelIdentity(const QModelIndex &index) const; ///< [-1]
    [[nodiscard]] int statusIdentity(const QModelIndex &index) const; ///< [-1]
    [[nodiscard]] TVLLabel label(const QModelIndex &index) const;
    [[nodiscard]] TVLStatusItem statusItem(const QModelIndex &index) const;
    [[nodiscard]] bool isTemplateFolder(const QModelIndex &index) const;
    [[nodiscard]] bool isFavorite(const QModelIndex &index) const;
    [[nodiscard]] bool hasSnapshots(const QModelIndex &index) const;
    [[nodiscard]] bool includeInCompile(const QModelIndex &index) const;
    [[nodiscard]] bool pageBreakBefore(const QModelIndex &index) const;
    [[nodiscard]] bool preserveFormatting(const QModelIndex &index) const;
    /** Whether the index card shows its image instead of the synopsis. */
    [[nodiscard]] bool showIndexCardImage(const QModelIndex &index) const;
    [[nodiscard]] double scaleFactor(const QModelIndex &index) const; ///< [1.0]
    [[nodiscard]] bool scaleToFit(const QModelIndex &index) const; ///< [true]
    [[nodiscard]] int rotation(const QModelIndex &index) const; ///< Quarter turns clockwise.
    [[nodiscard]] int countTarget(const QModelIndex &index) const; ///< 0 for none.
    [[nodiscard]] TVL::TargetType targetType(const QModelIndex &index) const;
    /** The text mode; [GeneralFormatMode], for which an empty one stands too. */
    [[nodiscard]] QString textMode(const QModelIndex &index) const;
    [[nodiscard]] bool isScriptMode(const QModelIndex &index) const;
    /** Where a web page or an imported file came from. */
    [[nodiscard]] QUrl webUrl(const QModelIndex &index) const;
    /** Whether the item has a text; one that isn't in memory is judged by when it last was. */
    [[nodiscard]] bool hasText(const QModelIndex &index) const;
    [[nodiscard]] bool hasDocumentNote(const QModelIndex &index) const;
    [[nodiscard]] bool hasSynopsis(const QModelIndex &index) const;
    /** Whether some custom field of the item isn't empty. */
    [[nodiscard]] bool hasCustomMetaData(const QModelIndex &index) const;
    /** Whether a document of the item is in memory; false for system folders. */
    [[nodiscard]] bool referenced(const QModelIndex &index) const override;
    /** Whether the document is in memory and can't be written; false for system folders. */
    [[nodiscard]] bool isReadOnly(const QModelIndex &index, TVL::DocumentType type) const;
    /** Hashes of the texts as they are on disk; empty for one without a file. */
    [[nodiscard]] QByteArray textMd5(const QModelIndex &index) const;
    [[nodiscard]] QByteArray noteMd5(const QModelIndex &index) const;
    [[nodiscard]] QByteArray synopsisMd5(const QModelIndex &index) const;
    /** Titles from the top level down to the item, with slashes between them. */
    [[nodiscard]] QString rootPathTitle(const QModelIndex &index) const;
    /** Whether the node is in this model's tree. */
    [[nodiscard]] bool isLocalNode(const TVLProjectNode *node) const;

    /** What the item is shown from: a web page's address, else its file; empty for neither. */
    [[nodiscard]] QUrl url(const TVLProjectNode *node) const;
    /** url() of an item. With @p search, an item without an extension that has an RTF file gets
     * it. */
    [[nodiscard]] QUrl nodeUrl(const QModelIndex &index, bool search);
    /** Whether the item is a web page that is shown from its address. */
    [[nodiscard]] static bool isDynamicWebNode(const TVLProjectNode *node);
    /** Whether the item is a web page that was stored as a file. */
    [[nodiscard]] bool isHtmlWebNode(const QModelIndex &index) const;
    /** @} */

    /** @name Changing attributes of items
     * Each is false without an item and true, without effect, for a value that the item has.
     * Otherwise it stores the value, marks the project modified, sets the item's modification time
     * and emits dataChanged().
     * @{ */
    bool setTitle(const QModelIndex &index, const QString &title);
    bool setType(const QModelIndex &index, TVL::NodeType type);
    bool setTargetType(const QModelIndex &index, TVL::TargetType type);
    bool setWebUrl(const QModelIndex &index, const QUrl &url);
    /** The name of a custom icon; empty for the icon of the type. */
    bool setCustomIcon(const QModelIndex &index, const QString &name);
    /** Shows an image in its own size: scale 1.0, not scaled to fit. */
    bool setActualSize(const QModelIndex &index);
    /** Turns scaling to fit off as well. */
    bool setScaleFactor(const QModelIndex &index, double factor);
    /** An id that the item has counts as such only if there is a label of it. */
    bool setLabelIdentity(const QModelIndex &index, int id);
    bool setStatusIdentity(const QModelIndex &index, int id);
    bool setIncludeInCompile(const QModelIndex &index, bool include);
    bool setPageBreakBefore(const QModelIndex &index, bool pageBreak);
    bool setPreserveFormatting(const QModelIndex &index, bool preserve);
    bool setShowIndexCardImage(const QModelIndex &index, bool show);
    /** Emits formatModeChanged() before dataChanged(). */
    bool setTextMode(const QModelIndex &index, const QString &mode);
    /** These leave the modification time alone. */
    bool setRotation(const QModelIndex &index, int quarterTurns);
    bool setScaleToFit(const QModelIndex &index, bool fit);
    bool setCountTarget(const QModelIndex &index, int target);
    /** Sets the modification time itself. */
    bool setLastModified(const QModelIndex &index, const QDateTime &dateTime);
    /** Neither sets the modification time nor emits dataChanged(). */
    bool setSelection(const QModelIndex &index, const QPair<int, int> &selection);
    /** Sets both ids, or -1 in place of one that there is no label or status item of. */
    bool verifyLabelStatusIdentity(const QModelIndex &index, int label, int status);
    /** Sets both ids of a record in that way; whether there are both. */
    bool verifyLabelStatusIdentity(TVLProjectNodeProperties *properties) const;
    bool verifyLabelStatusIdentity(TVLProjectNodeProperties &properties) const
    {
        return verifyLabelStatusIdentity(&properties);
    }
    /** @} */

    /** @name Keywords @{ */
    [[nodiscard]] TVLKeywordModel *keywordModel() const;
    [[nodiscard]] QList<int> keywordIds(const QModelIndex &index) const;
    /** As the other setters of attributes. */
    bool setKeywordIds(const QModelIndex &index, const QList<int> &ids);
    /** Stores the keywords of a node of this model. To mark the project modified and to emit
     * dataChanged() is left to the caller. */
    void setKeywordIdsPrivate(TVLProjectNode *node, const QList<int> &ids);
    /** Titles of the item's keywords, in order; an empty one for a keyword that is gone. */
    [[nodiscard]] QStringList keywords(const QModelIndex &index) const;
    /** Makes the keywords that aren't there yet, on top of the list. */
    bool setKeywords(const QModelIndex &index, const QStringList &titles);
    [[nodiscard]] QList<QColor> keywordColors(const QModelIndex &index) const;
    [[nodiscard]] QList<QPair<QString, QColor>> keywordsWithColor(const QModelIndex &index) const;
    /** Empty for an unknown identity. */
    [[nodiscard]] QString keywordTitle(int id) const;
    /** The first items below @p parent with one of the keywords, in pre-order, @p hits at most. */
    [[nodiscard]] QModelIndexList matchKeywords(const QSet<int> &keywords, int hits,
                                                const QModelIndex &parent) const;
    /** Whether an item below @p parent has one of the keywords. */
    [[nodiscard]] bool containsKeywords(const QSet<int> &keywords, const QModelIndex &parent) const;
    /** All keywords of the project, each behind the one that it is part of. */
    [[nodiscard]] QList<TVLBinderKeyword> projectKeywords() const;
    /** Adds keywords that come in such an order; of those with the same identity the last counts.
     */
    void addProjectKeywords(const QList<TVLBinderKeyword> &keywords);
    /** @} */

    /** @name Searching
     * The search index knows the texts of all items, and asks for those that have changed before
     * each search; see collectionIndexes().
     * @{ */
    [[nodiscard]] TVLSearchIndex *searchIndex() const;
    [[nodiscard]] TVLProjectChecksums *checksums() const override;
    /** Whether a text holds the words of a search; @p flags are those of TVLTextMatcher. */
    [[nodiscard]] static bool matchQString(const QString &text, int flags,
                                           const QStringList &words);
    /** Asks all items for their texts anew, and saves search index and hashes. */
    void rebuildSearchIndexes(bool showProgress, QWidget *parent);
    [[nodiscard]] QString searchedPath() const override;
    [[nodiscard]] const TVLProjectNode *searchedNode(int id) const override;
    [[nodiscard]] const TVLProjectNode *searchedNode(const QModelIndex &index) const override;
    [[nodiscard]] QModelIndex searchedIndex(int id) const override { return index(id); }
    /** Lets go again of documents that came into memory for this alone. */
    [[nodiscard]] QStringList
    searchedTexts(const QModelIndex &index,
                  const QList<TVL::DocumentProperty> &properties) const override;
    [[nodiscard]] QList<TVLSearchedText>
    searchedFileTexts(const QModelIndex &index,
                      const QList<TVL::DocumentProperty> &properties) const override;
    /** @} */

    /** @name Images and icons
     * Images of items without an id have no file, and so no place.
     * @{ */
    /** The custom icon that the project holds, else the one of the item's kind of file. */
    [[nodiscard]] QIcon icon(const QModelIndex &index) const;
    [[nodiscard]] QStringList customIconNames() const;
    [[nodiscard]] QPixmap customIcon(const QString &name) const; ///< Null for an unknown name.
    bool addCustomIcon(const QString &name, const QImage &image);
    /** Renames or removes an icon, for the items that have it too; false, with no item changed,
     * when its file can't be. */
    bool renameCustomIcon(const QString &oldName, const QString &newName);
    bool removeCustomIcon(const QString &name);
    [[nodiscard]] bool tintIcons() const;
    /** Whether icons take the colour of the label. Emits dataChanged() for every item. */
    void setTintIcons(bool tint);

    [[nodiscard]] bool hasIndexCardImage(const QModelIndex &index) const;
    /** The index card's image in its full size, else the item's own file as an image. */
    [[nodiscard]] QImage rawDataImage(const QModelIndex &index) const;
    /** rawDataImage() no larger than TVLProjectNode::defaultIndexCardSize(), kept from the first
     * call. */
    [[nodiscard]] QPixmap indexCardPixmap(const QModelIndex &index) const;
    /** Writes the image at once, or removes it for a null one; then as the other setters. False,
     * with the item as it was, when it can't be written. */
    bool setIndexCardImage(const QModelIndex &index, const QImage &image);
    /** Whether the index card or the item itself has a file that is an image by its name. */
    [[nodiscard]] bool isImage(const TVLProjectNode *node) const;
    /** Whether the item's own file can be read as an image, by its name. */
    [[nodiscard]] bool canDisplayAsImage(const QModelIndex &index) const;
    /** @} */

    /** @name Asking about subtrees
     * About what lies below an index, itself not among it, in the order of the binder.
     * @{ */
    /** Whether something else than ordinary folders and texts is there. */
    [[nodiscard]] bool containsNonTextChildren(const QModelIndex &index) const;
    /** Whether there are only folders, system folders too, and texts. */
    [[nodiscard]] bool containsFoldersAndTextOnly(const QModelIndex &index) const;
    [[nodiscard]] bool containsDynamicWebNode(const QModelIndex &index) const;
    [[nodiscard]] QModelIndexList imageIndexes(const QModelIndex &index) const;
    [[nodiscard]] QModelIndexList scriptIndexes(const QModelIndex &index) const;
    [[nodiscard]] QModelIndexList indexesViaType(TVL::NodeType type,
                                                 const QModelIndex &index) const;
    /** All items of the project that can have a text. */
    [[nodiscard]] QModelIndexList textIndexes() const;
    /** Those of them that aren't in the Draft. */
    [[nodiscard]] QModelIndexList nonDraftTextChildrenAndSubChildren() const;
    /** All items but the Draft folder and what is in it. */
    [[nodiscard]] QModelIndexList nonDraftChildrenAndSubChildren() const;
    /**
     * A list of items to choose from.
     * @param foldersAndGroupsOnly leaves out what isn't a folder and holds nothing
     * @param indent whether titles are indented by @p indentText, once per level below the top
     */
    [[nodiscard]] QList<TVLBasicNodeInfo> findBasicNodeInfo(bool foldersAndGroupsOnly,
                                                            bool includeTrash, bool indent,
                                                            const QString &indentText) const;
    /** @} */

    /** @name Values of the project
     * Setters that don't say otherwise store the value and mark the project modified, unless it has
     * the value already.
     * @{ */
    [[nodiscard]] QString directoryName() const;
    [[nodiscard]] bool hasProjectNotes() const;
    /** Changes the format of folder and binder, in the version file too if there is one; nothing is
     * converted. False when that file couldn't be written, as when it names a higher version. */
    bool setFormatVersion(TVL::FormatVersion version);

    [[nodiscard]] QString defaultProjectTitle() const;
    [[nodiscard]] QString defaultProjectAbbreviatedTitle() const;
    [[nodiscard]] static QString defaultAuthorFullName();
    [[nodiscard]] static QString defaultAuthorSurname() { return {}; }
    [[nodiscard]] static QString defaultAuthorForename() { return {}; }
    // These are dynamic properties of the object, named by the binder's tags.
    [[nodiscard]] QString projectProperty(const QString &tag) const;
    void setProjectProperty(const QString &tag, const QString &value);
    [[nodiscard]] QString projectTitle() const;
    void setProjectTitle(const QString &title);
    [[nodiscard]] QString projectAbbreviatedTitle() const;
    void setProjectAbbreviatedTitle(const QString &title);
    [[nodiscard]] QString authorFullName() const;
    void setAuthorFullName(const QString &name);
    [[nodiscard]] QString authorSurname() const;
    void setAuthorSurname(const QString &name);
    [[nodiscard]] QString authorForename() const;
    void setAuthorForename(const QString &name);

    /** The page set-up, never null. It is made on the first call, which takes its time. */
    [[nodiscard]] QPrinter *printer() const;
    /** Takes ownership and deletes the old one; null has the default made anew. Marks nothing. */
    void setPrinter(QPrinter *printer);
    [[nodiscard]] QRectF printerPageRect() const; ///< The page within its margins, in points.
    [[nodiscard]] QSizeF printerPageSize() const; ///< Its size; never empty.

    /** What is behind the text in full screen: an int, the id of an item, or a text, the path of an
     * image; invalid for nothing. */
    [[nodiscard]] QVariant fullScreenBackdrop() const;
    void setFullScreenBackdrop(const QVariant &backdrop);
    void setFullScreenBackdrop(const QString &filePath);
    void setFullScreenBackdrop(int nodeId);
    void clearFullScreenBackdrop();
    [[nodiscard]] bool fullScreenBackdropIsNodeId() const;
    [[nodiscard]] int fullScreenBackdropNodeId() const; ///< -1 when it isn't an item.
    [[nodiscard]] QPixmap fullScreenBackdropPixmap() const;

    [[nodiscard]] TVLDraftTarget draftTarget() const;
    [[nodiscard]] TVLSessionTarget sessionTarget() const;
    /** These mark the project in any case. */
    void setDraftTarget(const TVLDraftTarget &target);
    void setSessionTarget(const TVLSessionTarget &target);
    /** Whether the user is told when one of them is reached; a dynamic property of the object,
     * `notifyTargets`. */
    [[nodiscard]] bool notifyTargets() const;
    void setNotifyTargets(bool notify);

    [[nodiscard]] TVLScriptMode scriptMode() const;
    /** Writes the mode's file at once and emits scriptModeChanged() and metaDataChanged(), in any
     * case. False when the file couldn't be written. */
    bool setScriptMode(const TVLScriptMode &mode);
    /** @} */

    /** @name References
     * To other items or to addresses, of an item or of the project as a whole.
     * @{ */
    [[nodiscard]] QList<TVLReference> references(const QModelIndex &index) const;
    /** As the other setters of attributes. */
    bool setReferences(const QModelIndex &index, const QList<TVLReference> &references);
    /** Appends a reference unless the item has it; false for an invalid index. */
    bool addReference(const QModelIndex &index, const TVLReference &reference);
    [[nodiscard]] QList<TVLReference> projectReferences() const;
    [[nodiscard]] bool hasProjectReferences() const;
    /** Emits referencesChanged() and marks the project modified, unless it has the list already. */
    void setProjectReferences(const QList<TVLReference> &references);
    /** Adds a project reference, unless it is there with its title, type and address. */
    void addProjectReference(const TVLReference &reference);
    /** @} */

    /** @name Custom meta-data
     * Fields that the writer defined for the items of the project. A field that an item has nothing
     * in is empty.
     * @{ */
    [[nodiscard]] TVLCustomMetaDataSettings customMetaDataSettings() const;
    /**
     * Replaces the fields. What items hold in fields that went is removed. Emits
     * customMetaDataSettingsAboutToBeChanged() after that and before the change, and
     * customMetaDataSettingsChanged() after it.
     */
    void setCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings);
    /** Values of an item by the ids of their fields. */
    [[nodiscard]] QMap<QString, QString> customMetaData(const QModelIndex &index) const;
    [[nodiscard]] QString customMetaData(const QModelIndex &index, const QString &id) const;
    /** As the other setters of attributes, and emits customMetaDataChanged(); false for an invalid
     * index and for an empty id. */
    bool setCustomMetaData(const QModelIndex &index, const QString &id, const QString &value);
    /** The project's fields in their order with what the item holds in them. */
    [[nodiscard]] QList<TVLCustomMetaDataInfo> customMetaDataInfo(const QModelIndex &index,
                                                                  bool includeEmpty) const;
    /** Empties a field of all items. Emits customMetaDataChanged() for each that had it. */
    void removeCustomMetaDataFromNodes(const QString &id);
    /** @} */

    /** @name Completion list
     * Words of the project that are offered while typing. Changes emit autoCompleteListChanged().
     * @{ */
    [[nodiscard]] QList<TVLAutoCompleteItem> autoCompleteList() const;
    void setAutoCompleteList(const QList<TVLAutoCompleteItem> &items);
    /** Appends a word, unless it is there in any scope. @p id is that of a script's element. */
    void addToAutoCompleteList(const QString &text, TVLAutoCompleteItem::Scope scope, int id);
    [[nodiscard]] QStringList autoCompleteStrings() const;
    /** @} */

    /** @name Labels and status items @{ */
    [[nodiscard]] QList<TVLLabel> labels() const;
    /**
     * Replaces all labels. Items whose label went or changed are touched; those whose label went
     * get none. A list without "No Label" gets it.
     */
    void setLabels(const QList<TVLLabel> &labels);
    [[nodiscard]] QString labelTitle() const;
    void setLabelTitle(const QString &title);
    [[nodiscard]] int defaultLabelIdentity() const;
    /** Ignored when there is no label of that id. */
    void setDefaultLabelIdentity(int id);
    [[nodiscard]] QList<TVLStatusItem> statusItems() const;
    void setStatusItems(const QList<TVLStatusItem> &items);
    [[nodiscard]] QString statusTitle() const;
    void setStatusTitle(const QString &title);
    [[nodiscard]] int defaultStatusIdentity() const;
    void setDefaultStatusIdentity(int id);
    /** The largest outline column plus 1: the fixed ones and a column per custom field. */
    [[nodiscard]] int maxOutlineColumns() const;
    /** @} */

    /** @name Collections
     * Named lists of items: the binder itself and the search results, which every project has, and
     * the user's own. They are known by position or by identity; what is out of range or may not be
     * changed is passed over. Changes mark the project modified, and emit collectionChanged() with
     * and without the collection unless something else is said.
     * @{ */
    [[nodiscard]] QList<TVLCollectionMetaData> collections() const;
    /** Takes over a list without a signal; ids of no item leave it, missing kinds are added. */
    void setCollections(const QList<TVLCollectionMetaData> &collections);
    void addDefaultCollections();
    /** Inserts a collection at a position or the nearest one; see collectionInserted(). */
    void insertCollection(int position, const TVLCollectionMetaData &collection);
    /** Inserts a list of items in the order of the binder, with a random colour if that is
     * invalid. Returns its identity. */
    QString insertCollection(int position, const QModelIndexList &indexes, const QString &title,
                             const QColor &color);
    void removeCollection(int position);
    /** Moves a collection in front of another, or to the end. Views see it go and come. */
    void moveCollection(int from, int to);
    /** -1 for an unknown identity. */
    [[nodiscard]] int collectionPos(const QString &identity) const;
    [[nodiscard]] bool hasCollectionWithId(const QString &identity) const;
    /** These give a record of TVL::NoCollection when there is none. */
    [[nodiscard]] TVLCollectionMetaData findCollectionByPos(int position) const;
    [[nodiscard]] TVLCollectionMetaData findCollectionById(const QString &identity) const;
    [[nodiscard]] TVLCollectionMetaData findCollectionByTitle(const QString &title) const;
    [[nodiscard]] TVLCollectionMetaData binderCollection() const;
    [[nodiscard]] TVLCollectionMetaData recentSearch() const;
    void setCollectionByPos(int position, const TVLCollectionMetaData &collection);
    void setCollectionById(const QString &identity, const TVLCollectionMetaData &collection);
    void setCollectionColor(int position, const QColor &color);
    void setCollectionColor(const QString &identity, const QColor &color);
    /** Makes a search the one of the search results, whose title stays. */
    void setRecentSearch(const TVLCollectionMetaData &search);
    /** Appends the items that aren't in it to a list kept by hand. */
    void addToCollection(int position, const QModelIndexList &indexes);
    void addToCollection(const QString &identity, const QModelIndexList &indexes);
    void removeFromCollection(int position, const QModelIndexList &indexes);
    void removeFromCollection(const QString &identity, const QModelIndexList &indexes);
    /** Has all searches that are shown run again; marks nothing. */
    void updateSearchCollections();
    /**
     * What a collection shows: a list's items in its order, or what its search finds now.
     * @param context the selection, for a search that is limited to it and what lies below it
     */
    [[nodiscard]] QModelIndexList
    collectionIndexes(const TVLCollectionMetaData &collection,
                      const QModelIndexList &context = QModelIndexList()) const;
    /** The first collection of a title, made if there is none. */
    TVLCollectionMetaData ensureCollection(const QString &title, const QColor &color);
    TVLCollectionMetaData updatedDocumentsCollection();
    [[nodiscard]] bool updatedDocumentsCollectionExists() const;
    void setCollectionUpdatedDocuments(const QList<int> &ids);
    TVLCollectionMetaData syncedDocumentsCollection();
    [[nodiscard]] bool syncedDocumentsCollectionExists() const;
    /** Those that may choose the documents of an external folder sync. */
    [[nodiscard]] QList<TVLCollectionMetaData> collectionsForExternalFolderSync() const;
    [[nodiscard]] bool hasCollectionsForExternalFolderSync() const;
    /** @} */

    /** @name Favorites @{ */
    /** Makes an item a favorite, at either end of the list, or none. */
    bool setFavorite(const QModelIndex &index, bool favorite, bool atEnd);
    bool addToFavorites(const QModelIndex &index, bool atEnd);
    bool removeFromFavorites(const QModelIndex &index);
    /** The favorites in their order. */
    [[nodiscard]] QModelIndexList favorites() const;
    [[nodiscard]] QList<int> favoriteIds() const;
    /** Makes an item the last favorite; false when no item has the id. */
    [[nodiscard]] bool addFavorite(int id);
    /** Replaces all; each id must be that of an item. */
    void setFavorites(const QList<int> &ids);
    void clearFavorites();
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
    /** Marks the project as modified, and so due to be saved; nothing with false, and while a
     * TVLSuspendModified lives. Emits modifiedChanged() if it counted as saved. */
    void markProjectAsModified(bool set = true);
    /** Removes the folder for what is dragged out of projects. */
    void cleanDragAndDrop();
    /** Removes all in the Trash, with its files, and saves the project. */
    bool emptyTrash();

    // Who hears a signal may change the project, and so may others who hear it first; what a signal
    // tells is done when it comes, unless its name says otherwise.
Q_SIGNALS:
    /** A save is about to look for what to write; comes for each item with documents in memory, in
     * the order of their first load, also if the project isn't modified. Who holds edits back puts
     * them into the documents now. */
    void aboutToSave(QModelIndex index);
    /** A document was edited: at a position, so many characters went and so many came. It is
     * unsaved by now. */
    void documentContentsChange(QModelIndex index, TVL::DocumentType docType, int position,
                                int charsRemoved, int charsAdded);
    /** Follows documentContentsChange(), once for each edit block; dataChanged() of the item comes
     * within a second. */
    void documentContentsChanged(QModelIndex index, TVL::DocumentType docType);
    /** There is another list of labels. dataChanged() of the items that show one which went or
     * looks different came before; the project is marked as modified after it. */
    void labelsChanged();
    /** As labelsChanged(), of status items. */
    void statusItemsChanged();
    /** The references of the project, not those of an item; it is marked as modified after it. */
    void referencesChanged();
    /** One of both is invalid if there was or is none. Comes after dataChanged() of both folders
     * and of all below them. */
    void templateFolderChanged(QModelIndex newIndex, QModelIndex oldIndex);
    /** What the user calls labels; metaDataChanged() follows. */
    void labelTitleChanged(QString title);
    /** What the user calls status items; metaDataChanged() follows. */
    void statusTitleChanged(QString title);
    /** Comes also if the mode's file couldn't be written; metaDataChanged() follows. */
    void scriptModeChanged(TVLScriptMode mode);
    /** An item has another text mode, or a new one has its sibling's; dataChanged() follows. */
    void formatModeChanged(QModelIndex index, QString mode);
    /** True comes with the first change after a save, false at the end of a save, a failed one too,
     * unless something was changed meanwhile. */
    void modifiedChanged(bool modified);
    /** A folder of the project, whose path it is, has gone or can't be written any more. Comes once
     * until the next saveAs(), and never for a mobile project. */
    void externallyModified(QString path);
    /** An item has got snapshots, or one of them has another title; both indexes are the item's.
     * dataChanged() follows. A snapshot that is removed is told by dataChanged() alone. */
    void snapshotsChanged(QModelIndex first, QModelIndex last);
    /** The note is still there, its file isn't. */
    void projectNoteAboutToBeRemoved(int noteId);
    void projectNoteRemoved(int noteId);
    /** The id is that of projectNoteAdded(), unless who hears this adds a note too. */
    void projectNoteAboutToBeAdded(int noteId);
    void projectNoteAdded(int noteId);
    /** @name Positions in the list of notes; those of the second are of where it was and is. @{ */
    void projectNoteAboutToBeMoved(int from, int to);
    void projectNoteMoved(int from, int to);
    /** @} */
    void projectNoteRenamed(int noteId);
    /** What views show of the project beside its items may have changed: titles and defaults of
     * labels and status items, the script mode, or the counts of the writing session. */
    void metaDataChanged();
    /** An item holds something else in a custom field. dataChanged() follows, but for items that
     * lose what they hold in a field that goes. */
    void customMetaDataChanged(QModelIndex index);
    /** The fields are the old ones, and no item holds anything any more in one that will go. */
    void customMetaDataSettingsAboutToBeChanged(QStringList oldIds, QStringList newIds);
    void customMetaDataSettingsChanged(QStringList oldIds, QStringList newIds);
    /** Follows each of the other signals of collections that tells what is done; for a collection
     * that moves, once behind the four. */
    void collectionChanged();
    /** A collection has another record, or has to be shown anew because its search may find
     * something else. */
    void collectionChanged(int position, TVLCollectionMetaData collection);
    void collectionAboutToBeInserted(int position, TVLCollectionMetaData collection);
    void collectionInserted(int position, TVLCollectionMetaData collection);
    /** The collection is still in the list. */
    void collectionAboutToBeRemoved(int position);
    void collectionRemoved(int position);
    /** The project is marked as modified after it. */
    void autoCompleteListChanged();

protected:
    void timerEvent(QTimerEvent *event) override;

private Q_SLOTS:
    void onOptionsChanged(const QStringList &groups);
    void onProjectNoteModifiedChanged(bool modified);
    void onDocumentContentsChange(int position, int charsRemoved, int charsAdded);
    void onDocumentContentsChanged();
    void removeKeywordsFromDocuments(const QSet<int> &ids);
    void updateKeywordsForDocuments(const QModelIndex &topLeft, const QModelIndex &bottomRight);

private:
    friend class TVLHeldItem;
    friend class TVLItemRows;
    friend class TVLLoadedDocuments;
    friend class TVLProjectModelPrivate;
    friend class TVLProjectModelTestAccess;
    friend class TVLSuspendModified;

    [[nodiscard]] TVLBinderSections binderSections() const override;
    TVLBinderSections *beginBinderRead() override;
    void endBinderRead() override;
    [[nodiscard]] bool adoptSection(TVLBinderSection section) override;
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;

    std::unique_ptr<TVLProjectModelPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TVLProjectModel::CloneFlags)
