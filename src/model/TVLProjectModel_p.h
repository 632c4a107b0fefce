#pragma once

#include "TVLHeldItem_p.h"
#include "TVLProjectModel.h"

#include <QHash>
#include <QMap>
#include <QPixmap>
#include <QPointer>
#include <QSet>
#include <QUuid>

#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>

class QPrinter;
class TVLCollectionList;
class TVLFilesLeft;
class TVLKeywordModel;
class TVLLoadedDocuments;
class TVLNumberedFiles;
class TVLProjectChecksums;
class TVLProjectFolderMonitor;
class TVLProjectNode;
class TVLProjectNodeProperties;
class TVLProjectSettings;
class TVLSearchFeed;
class TVLSearchIndex;
class TVLSiblingTitles;

/**
 * What a project model holds, and what it does for itself: nobody outside needs to know of either,
 * nor has to be compiled anew when they change.
 */
class TVLProjectModelPrivate
{
public:
    TVLProjectModelPrivate(TVLProjectModel *model, const QString &path, bool isMobileProject);
    ~TVLProjectModelPrivate();
    Q_DISABLE_COPY_MOVE(TVLProjectModelPrivate)

    /** What a change of an item brings with it, beside the project's being modified. */
    enum class Effects {
        TouchAndAnnounce, ///< The modification time is set, and dataChanged() emitted.
        Announce,
        None,
    };

    void setFolderFormatVersion(TVL::FormatVersion version);
    void addDefaultLabelsAndStatusItems();
    void addDefaultProjectNotesAndCollections();
    void addDefaultProjectNotes();
    void ensureProperProjectNotes();
    void updateHasSnapshots();
    void reportItemsWithoutId(QStringList *errors) const;
    [[nodiscard]] TVLProjectSettings *newSettings();
    void takeSettingsAlong();
    void stopAutoSaveTimer();
    bool saveNow(bool force);
    /** Whether the binder is of a version whose ids and uuids could not be read. */
    [[nodiscard]] bool isIncompatible() const;
    [[nodiscard]] bool canSaveSearch() const;
    void fillSearchIndex();
    void saveBinder(QStringList *failures) const;
    void saveProjectNotes(QStringList *failures) const;
    /** The notes count as saved after a failure too; before the end they are tried once more. */
    void askForFailedNotesAgain();
    void readProjectNotes(QStringList *errors);
    void showSaveErrors(const QStringList &errors) const;

    void takeId(TVLProjectNode *node, int id);
    [[nodiscard]] int wordCountOf(TVLProjectNode *node, bool withAnnotations,
                                  bool withFootnotes) const;
    [[nodiscard]] int characterCountOf(TVLProjectNode *node) const;
    [[nodiscard]] int sessionWordCountOf(TVLProjectNode *node, bool withAnnotations,
                                         bool withFootnotes) const;
    [[nodiscard]] int sessionCharacterCountOf(TVLProjectNode *node) const;
    [[nodiscard]] static bool areCounted(const TVLProjectNode *node);
    [[nodiscard]] TVLProjectNode *withTexts(TVLProjectNode *node) const;
    template <typename Visit>
    void visitForCounts(const QList<TVLProjectNode *> &tops, Visit visit) const;
    template <typename Count>
    [[nodiscard]] int totalCount(const QModelIndex &index, Count count) const;
    void addCounts(TVLProjectNode *node, bool draft, bool session, bool compileOnly,
                   TVLProjectModel::WordCharSessionCount *sums) const;
    [[nodiscard]] QTextDocument *newProjectNote(const QString &title);
    void markProjectNotesAsModified();

    /** Where new items go: a row that is there, of a node that is. */
    struct InsertPlace
    {
        TVLProjectNode *parent;
        int row;
    };
    struct NewItem;
    using NewTexts = QList<std::pair<TVL::DocumentType, QString>>;
    struct CloneSource;
    struct CloneOptions;
    struct AdoptedIds;
    struct NewCopies;
    struct Copies;
    struct Descendant;
    struct MergedTexts;

    [[nodiscard]] QModelIndex rowSignalParent(const TVLProjectNode *parent) const;
    /** Persistent indexes of top-level items, if the root is one of the parents. */
    [[nodiscard]] QModelIndexList
    topLevelPersistents(std::initializer_list<const TVLProjectNode *> parents) const;
    void followRows(const QModelIndexList &indexes);
    void beginRemoveNodes(const TVLProjectNode *parent, int first, int last);
    void enterFlags(TVLProjectNode *node);
    [[nodiscard]] InsertPlace insertPlace(const QModelIndex &parent, int row) const;
    [[nodiscard]] bool canInsertRows(int row, int count, const QModelIndex &parent) const;
    /** Whether files may lie under an id that no item has. */
    [[nodiscard]] bool isLeftBehind(int id) const;
    [[nodiscard]] bool givesIds() const;
    TVLProjectNode *createDefaultNode(TVLProjectNode *parent, int row, const QUuid &uuid);
    QList<TVLHeldItem> insertItems(const InsertPlace &place, int count,
                                   const std::function<TVLProjectNode *(int)> &make);
    QList<TVLHeldItem> insertNewItems(int row, const QModelIndex &parent, int count,
                                      const NewItem &item);
    QModelIndex insertWithTexts(int row, const QModelIndex &parent, const NewItem &item,
                                const NewTexts &texts);
    QList<TVLHeldItem>
    insertBlankItems(const InsertPlace &place, int count, const QUuid &uuid,
                     const std::function<void(TVLProjectNode *)> &finish = nullptr);
    TVLHeldItem insertBlankItem(int row, const QModelIndex &parent,
                                const std::function<void(TVLProjectNode *)> &finish = nullptr);
    QList<TVLHeldItem> insertClones(const InsertPlace &place, int count, const QModelIndex &source,
                                    TVLProjectModel::CloneFlags flags, const QUuid &uuid);
    void startAsScript(TVLProjectNode *node, QStringList *errors);

    /** The nodes of a list of items; empty if one isn't an item of this model. */
    [[nodiscard]] QList<TVLProjectNode *> itemNodes(const QModelIndexList &indexes) const;
    /** Without nodes that lie in another one of the list, and so are moved or removed with it. */
    [[nodiscard]] static QList<TVLProjectNode *> withoutDescendants(QList<TVLProjectNode *> nodes);
    [[nodiscard]] bool isMoveRefused(const TVLProjectNode *node,
                                     const TVLProjectNode *target) const;
    bool beginMoveRow(const TVLProjectNode *source, int row, const TVLProjectNode *target,
                      int targetRow);
    bool moveNode(TVLProjectNode *node, TVLHeldPlace *place);
    bool moveChildrenBehind(TVLProjectNode *node);
    void removeNodeIdsFromDependentStructures(QList<int> ids);
    void forgetNode(TVLProjectNode *node);
    /** forgetNode() for a node whose files stay. */
    void forgetNodeWithoutFiles(TVLProjectNode *node);
    bool removeFilesForNode(TVLProjectNode *node, const TVLNumberedFiles &files);
    void removeChildren(TVLProjectNode *parent, const TVLNumberedFiles &files);
    void removeRow(TVLProjectNode *node);

    [[nodiscard]] static CloneSource cloneSource(const QModelIndex &source);
    [[nodiscard]] bool canCloneBelow(const QModelIndex &source, const QModelIndex &parent) const;
    bool copyItem(const CloneSource &from, const TVLProjectNode *source, TVLProjectNode *target,
                  const CloneOptions &options, const AdoptedIds *ids);
    bool cloneFiles(const CloneSource &from, const TVLProjectNode *source, TVLProjectNode *target);
    static void takeIds(const TVLProjectNodeProperties &source, const AdoptedIds &ids,
                        TVLProjectNode *target);
    void markIfReferringChanged(const TVLProjectNodeProperties &before,
                                const TVLProjectNodeProperties &now);
    Copies insertCopies(const CloneSource &from, const TVLHeldItem &source,
                        const TVLHeldPlace &place, const CloneOptions &options,
                        const NewCopies &copies);
    [[nodiscard]] static QList<Descendant> descendantsOf(const CloneSource &from,
                                                         const TVLProjectNode *top,
                                                         const TVLProjectNode *excluded);
    bool cloneDescendants(const CloneSource &from, const QList<Descendant> &descendants,
                          const TVLHeldItem &copy, const CloneOptions &options);
    TVLHeldItem duplicateOne(const CloneSource &from, const TVLHeldItem &source,
                             const CloneOptions &options, TVLSiblingTitles *titles,
                             TVLHeldPlace *place);
    AdoptedIds adoptIds(const TVLProjectModel &from, const TVLProjectNodeProperties &item,
                        bool isWanted);
    QList<int> adoptKeywords(const TVLKeywordModel &from, const QList<int> &ids);
    int adoptKeyword(const QString &title, const QColor &color);
    int adoptLabel(const TVLSearchIndex &from, int id);
    int adoptStatusItem(const TVLSearchIndex &from, int id);

    [[nodiscard]] bool canMerge(const QList<TVLHeldItem> &items) const;
    [[nodiscard]] bool gatherTexts(const QList<TVLHeldItem> &items, MergedTexts *merged);
    [[nodiscard]] bool takeMergedSnapshots(TVLProjectNode *survivor, QList<int> ids);
    [[nodiscard]] bool takeMergedTexts(const TVLHeldItem &survivor, const MergedTexts &merged);
    void removeMerged(const QList<TVLHeldItem> &items, bool withFiles);
    [[nodiscard]] bool mergeSnapshots(int id, const QList<int> &sourceIds);
    bool applyAttributes(const QModelIndex &index, const TVLProjectNodeProperties &properties,
                         void (TVLProjectNodeProperties::*apply)(const TVLProjectNodeProperties &));

    void warnOfSearchIndex();
    /** Writes texts and, only when they are safe, hashes. */
    void saveSearch(bool force);
    [[nodiscard]] QList<TVLProjectNode *> nodesWithKeywords(const QSet<int> &ids) const;

    // Items may go at each signal; see TVLHeldItem.
    void announceSnapshots(const QModelIndex &index);
    void announceSubtree(const QModelIndex &index);
    void markTemplateFolder(const QModelIndex &index, bool isTemplateFolder);
    void followChange(TVLProjectNode *node, const QModelIndex &index, Effects effects);
    template <typename Store>
    bool changeNode(const QModelIndex &index, Effects effects, Store store);
    template <typename Value>
    bool setSearchedValue(const QModelIndex &index, Value TVLProjectNodeProperties::*member,
                          const Value &value, TVL::DocumentProperty property,
                          bool equalCounts = true);
    template <typename Value>
    bool setNodeValue(const QModelIndex &index, Value TVLProjectNodeProperties::*member,
                      const Value &value, Effects effects = Effects::TouchAndAnnounce,
                      bool equalCounts = true);
    [[nodiscard]] QByteArray storedMd5(const QModelIndex &index, TVL::DocumentType type) const;
    [[nodiscard]] static bool containsNonTextChildren(const TVLProjectNode *node);
    template <typename Predicate>
    [[nodiscard]] bool hasBelow(const QModelIndex &index, Predicate predicate) const;
    template <typename Predicate>
    [[nodiscard]] QModelIndexList indexesBelow(const QModelIndex &index, Predicate predicate) const;
    template <typename Visit>
    void forEachNodeOutside(TVL::NodeType topLevelType, Visit visit) const;
    [[nodiscard]] QString indexCardImagePath(const TVLProjectNode *node) const;
    void replaceCustomIcon(const QString &oldName, const QString &newName);
    template <typename Predicate>
    [[nodiscard]] QModelIndex findTopLevel(Predicate predicate) const;
    template <typename Item, typename SetItems>
    void replaceItems(QList<Item> items, const QList<Item> &oldItems, const Item &noneItem,
                      int TVLProjectNodeProperties::*member, TVL::DocumentProperty property,
                      int *defaultId, SetItems setItems);

    TVLProjectModel *const q; ///< Whose these are.
    QString mName;
    QString mPath;
    bool mSaved = true;
    bool mIsOnlyRead = false;
    bool mHasSearch = true; ///< Whether the search index has the items.
    bool mIsSaving = false; ///< A save, or a Save As, is under way.
    bool mIsDiskBehind = false; ///< The last save failed, also where mSaved says otherwise.
    mutable bool mAreNotesBehind = false; ///< The last try to write the project notes failed.
    quint64 mChangeCount = 0; ///< How often the project was marked as modified.
    bool mSuspendModified = false;
    bool mWasSuspended = false; ///< Before a binder was read.
    bool mIsReadingBinder = false;
    bool mIsModifiedByRead = false; ///< What the binder says leaves the project modified.
    bool mIsRootIndexPlain = false; ///< parent() gives a default index in place of rootIndex().
    bool mMobileProject;
    bool mTintIcons = false;
    QVariant mFullScreenBackdrop;
    int mAutoSaveTimer = -1;
    int mDefaultLabelId = -1;
    int mDefaultStatusId = -1;
    QString mLabelTitle;
    QString mStatusTitle;
    QMap<int, QUuid> mIdMap;
    QMap<QUuid, TVLProjectNode *> mUuidMap;
    std::unique_ptr<TVLCollectionList> mCollectionList;
    TVLCustomMetaDataSettings mCustomMetaDataSettings;
    QList<TVLAutoCompleteItem> mAutoCompleteList;
    QList<TVLReference> mProjectReferences;
    TVLDraftTarget mDraftTarget;
    TVLSessionTarget mSessionTarget;
    std::unique_ptr<TVLProjectNode> mRootNode;
    QUuid mTemplateFolderUuid;
    mutable TVLProjectNotes mProjectNotes; ///< Each save clears the flags of what has changed.
    TVLScriptMode mScriptMode = TVLScriptMode::factoryDefaults();
    TVLProjectFolderFormat *mFolderFormat; ///< Child object.
    TVLProjectFolderMonitor *mFolderMonitor = nullptr; ///< Child object; null in a mobile project.
    TVLProjectSettings *mSettings = nullptr; ///< Child object.
    std::unique_ptr<TVLProjectChecksums> mChecksums;
    std::unique_ptr<TVLSearchIndex> mSearchIndex; ///< Also the store of labels and status items.
    std::unique_ptr<TVLSearchFeed> mSearchFeed;
    std::unique_ptr<TVLLoadedDocuments> mDocuments;
    std::unique_ptr<TVLFilesLeft> mFilesLeft; ///< Asking it for an id lists the folder.
    TVLKeywordModel *mKeywordModel; ///< Child object.
    std::unique_ptr<QPrinter> mPrinter; ///< Null until somebody asks for it.
    QHash<QString, QPixmap> mCustomIcons; ///< Those that were asked for and found.
    int mAutoSaveSeconds = 10;
    bool mTreatTextWithChildrenAsFolder = true;
    bool mBackupIncluded = true;
    TVLProjectInfo mInfo; ///< Each save stamps it, though saving changes no project.
    QString mUserProjectData;

    /** Every live model in order of construction; entries of models that were just deleted are
     * null. */
    static QList<QPointer<TVLProjectModel>> mExistingModels;
};
