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
#include <memory>
#include <utility>

class QPrinter;
class TVLCollectionList;
class TVLFilesLeft;
class TVLItemCloner;
class TVLItemMerger;
class TVLItemRows;
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
struct TVLInsertPlace;

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

    /** What a new list of labels or status items brings with it. */
    enum class ListEffect {
        ItemsFollow, ///< Items whose label or status item went or changed are touched.
        ItemsStay, ///< What a binder says of items stays as it stands, whatever else it says.
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

    struct NewItem;
    using NewTexts = QList<std::pair<TVL::DocumentType, QString>>;

    void enterFlags(TVLProjectNode *node);
    /** Whether files may lie under an id that no item has. */
    [[nodiscard]] bool isLeftBehind(int id) const;
    [[nodiscard]] bool givesIds() const;
    QList<TVLHeldItem> insertNewItems(int row, const QModelIndex &parent, int count,
                                      const NewItem &item);
    QModelIndex insertWithTexts(int row, const QModelIndex &parent, const NewItem &item,
                                const NewTexts &texts);
    QList<TVLHeldItem>
    insertBlankItems(const TVLInsertPlace &place, int count, const QUuid &uuid,
                     const std::function<void(TVLProjectNode *)> &finish = nullptr);
    TVLHeldItem insertBlankItem(int row, const QModelIndex &parent,
                                const std::function<void(TVLProjectNode *)> &finish = nullptr);
    QList<TVLHeldItem> insertClones(const TVLInsertPlace &place, int count,
                                    const QModelIndex &source, TVLProjectModel::CloneFlags flags,
                                    const QUuid &uuid);
    void startAsScript(TVLProjectNode *node, QStringList *errors);

    [[nodiscard]] bool isMoveRefused(const TVLProjectNode *node,
                                     const TVLProjectNode *target) const;
    bool moveChildrenBehind(TVLProjectNode *node);
    void removeNodeIdsFromDependentStructures(QList<int> ids);
    void forgetNode(TVLProjectNode *node);
    /** forgetNode() for a node whose files stay. */
    void forgetNodeWithoutFiles(TVLProjectNode *node);
    bool removeFilesForNode(TVLProjectNode *node, const TVLNumberedFiles &files);
    void removeChildren(TVLProjectNode *parent, const TVLNumberedFiles &files);
    void removeRow(TVLProjectNode *node);

    void removeMerged(const QList<TVLHeldItem> &items, bool withFiles);
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
                      int *defaultId, SetItems setItems, ListEffect effect);
    void setListTitle(QString *stored, const QString &title,
                      void (TVLProjectModel::*changed)(QString));
    template <typename Item>
    void setDefaultIdentity(int *stored, int id, const QList<Item> &items);
    void replaceLabels(const QList<TVLLabel> &labels, ListEffect effect);
    void replaceStatusItems(const QList<TVLStatusItem> &items, ListEffect effect);
    [[nodiscard]] bool adoptFavorites(const QList<int> &ids);

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
    TVLBinderSections mRead; ///< What the binder says that is being read; empty otherwise.
    bool mIsModifiedByRead = false; ///< What the binder says leaves the project modified.
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
    std::unique_ptr<TVLItemRows> mRows;
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
    std::unique_ptr<TVLItemCloner> mCloner;
    std::unique_ptr<TVLItemMerger> mMerger;
    std::unique_ptr<TVLFilesLeft> mFilesLeft; ///< Asking it for an id lists the folder.
    TVLKeywordModel *mKeywordModel; ///< Child object.
    std::shared_ptr<QPrinter> mPrinter; ///< Null until somebody asks for it.
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
