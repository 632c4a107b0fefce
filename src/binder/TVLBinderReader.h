#pragma once

#include "TVLBinderProject.h"
#include "TVLBinderText.h"
#include "TVLReference.h"
#include "TVLSnapshotInfo.h"

#include <QMap>
#include <QXmlStreamReader>

#include <optional>

class TVLProjectNodeProperties;

/**
 * Reads a binder: the XML file that holds a project's tree and its project-level sections. Reads
 * the small XML files beside it as well.
 *
 * - The tree is read without recursion, so its depth is bounded by memory alone.
 * - Elements that aren't known are skipped at every level, except among items, where anything but
 *   an item is an error.
 * - The sections may stand in any order, also before the items. Of one that is there more than once
 *   the last counts.
 * - A read that fails leaves the nodes made so far in the tree; what to do with them is the
 *   caller's decision. The error is in errorString() and in the debug output.
 *
 * The history of the format, by the version that the root element says:
 *
 * - "1.0", in folders of format 16: items have an id and no uuid. Each read gives them new uuids.
 * - "1.5", in folders of format 18: items have an id and a uuid.
 * - "2.0", in folders of format 23: items have a uuid and no id. Favorites name items by id, and so
 *   TVLBinderWriter leaves them out.
 * - Any other version is read as far as it is known, with items that have neither id nor uuid.
 *
 * Two names have changed within a version, and both are read: `TemplateFolderID` became
 * `TemplateFolderUUID`, and `BreakBeforeParagraph` became `PageBreakBefore`. TVLBinderWriter writes
 * the newer ones only.
 *
 * One object reads one binder, on one thread.
 */
class TVL_EXPORT TVLBinderReader : public QXmlStreamReader
{
public:
    TVLBinderReader();
    /** Reads from @p device, which stays the caller's and must be open. */
    explicit TVLBinderReader(QIODevice *device);
    Q_DISABLE_COPY_MOVE(TVLBinderReader)

    /** Reads a whole binder into @p project, its items below @p root. */
    [[nodiscard]] bool readProject(TVLBinderProject *project, TVLProjectNode *root);

    /** What the root element says; steps to it if the reading hasn't begun. */
    [[nodiscard]] TVLProjectInfo readProjectInfo();

    /** What the root element of the binder at @p filePath says; an empty record when there is no
     * such file or it can't be opened. */
    [[nodiscard]] static TVLProjectInfo readProjectInfo(const QString &filePath);

    /** Reads the root element and hands it to @p project, if given. False without a version. */
    [[nodiscard]] bool readStartDocument(TVLBinderProject *project);

    /** Reads the element `Binder` at the current position; its items become children of @p root. */
    [[nodiscard]] bool readNodeList(TVLProjectNode *root);

    /** Reads the `BinderItem` at the current position with all below it, as last child of @p
     * parent. */
    [[nodiscard]] bool readNode(TVLProjectNode *parent);

    /** Reads `CustomMetaData`; ask hasError() whether it went well. */
    [[nodiscard]] QMap<QString, QString> readCustomMetaData();
    [[nodiscard]] bool readKeywords(TVLProjectNode *node);
    [[nodiscard]] bool readReferences(TVLProjectNode *node);
    [[nodiscard]] bool readCorkboardAndOutliner(TVLProjectNode *node);
    [[nodiscard]] bool readCorkboardSettings(TVLProjectNode *node);

    /** Reads `Collections`, appending to @p collections in file order. */
    [[nodiscard]] bool readCollections(QList<TVLCollectionMetaData> *collections);
    [[nodiscard]] bool readCollections(QList<TVLCollectionMetaData> &collections)
    {
        return readCollections(&collections);
    }

    /** Reads `ProjectReferences`, appending to @p references. */
    [[nodiscard]] bool readProjectReferences(QList<TVLReference> *references);

    /** Skips `UserProjectData`, which is cut from the file as raw text; see
     * TVLProjectFolderFormat::readUserProjectData(). Nothing depends on @p text. */
    bool readUserProjectData(const QString &text);

    /**
     * @name Files beside the binder
     * Each of these begins with the element at the current position, or with the file's first one
     * if the reading hasn't begun. What is not known in them is skipped. After an error the results
     * hold what came before it.
     * @{
     */
    /** Reads `Comments`, appending to @p comments. */
    [[nodiscard]] bool readComments(QList<TVLTextCommentLink> *comments);
    /**
     * Reads `Links`, in which older projects keep an item's links and comments. The links are added
     * to the maps, the comments appended. A link without a target or without a range that makes
     * sense is left out.
     */
    [[nodiscard]] bool readLinks(TVLTextInternalLinkMap *textLinks,
                                 TVLTextInternalLinkMap *noteLinks,
                                 QList<TVLTextCommentLink> *comments);
    /** Reads the index of an item's snapshots, appending to @p snapshots. */
    [[nodiscard]] bool readSnapshots(QList<TVLSnapshotInfo> *snapshots);
    /** Reads the index of the project's notes, appending each note's id and its links of old. One
     * without an id is left out. */
    [[nodiscard]] bool readProjectNotes(QList<QPair<int, TVLTextInternalLinkMap>> *notes);
    /** @} */

    /** The grammar's version: NoBinderVersion until the root element was read. */
    [[nodiscard]] TVL::BinderVersion binderVersion() const { return mBinderVersion; }

    /** The grammar's version as the root element says it. */
    [[nodiscard]] QString versionText() const { return mVersionText; }

    /** Ends the reading with an error, which is logged with the line of the source that found it.
     */
    void raiseError(const QString &message, int sourceLine);
    /** The error for an element that stands where another was expected. */
    void raiseIncorrectTagError(const QString &expected, const QString &actual, int sourceLine);

private:
    using SectionReader = bool (TVLBinderReader::*)();
    struct Section;
    struct ListTags;
    struct PageSetup;

    [[nodiscard]] bool readProjectPrivate(TVLProjectNode *root);
    [[nodiscard]] bool expectElement(const QString &tag, int sourceLine);
    /** The text of the element, without that of elements in it. */
    [[nodiscard]] QString readText();
    [[nodiscard]] bool readYes();
    void readNumber(int *number);

    // Items
    [[nodiscard]] bool readNodes(TVLProjectNode *root);
    [[nodiscard]] TVLProjectNode *startNode(TVLProjectNode *parent);
    [[nodiscard]] bool readItemElement(TVLProjectNode *node);
    [[nodiscard]] bool readMetaData(TVLProjectNode *node);
    void readMetaDataField(TVLProjectNodeProperties *properties);
    void readTextSettings(TVLProjectNode *node);
    void readMediaSettings(TVLProjectNode *node);
    void readTarget(TVLProjectNode *node);
    /** Reads `location,length`; leaves @p selection alone for any other text. */
    static void parseSelection(QStringView text, QPair<int, int> *selection);
    void readSelection(QPair<int, int> *selection);
    void readDefaultChildTemplateId(TVLProjectNode *node);
    void readFreeformPosition(TVLProjectNode *node);
    [[nodiscard]] QList<TVLReference> readReferenceList();

    // Project sections
    [[nodiscard]] bool readLabels();
    [[nodiscard]] bool readStatusItems();
    template <typename Item>
    [[nodiscard]] bool readListSection(const ListTags &tags, Item (TVLBinderReader::*readItem)(),
                                       QString *title, int *defaultId, QList<Item> *items);
    [[nodiscard]] TVLLabel readLabel();
    [[nodiscard]] TVLStatusItem readStatusItem();
    [[nodiscard]] bool readTemplateFolderUuid();
    [[nodiscard]] bool readTemplateFolderId();
    [[nodiscard]] bool readProjectCollections();
    [[nodiscard]] bool readProjectKeywords();
    [[nodiscard]] bool readKeywordTree(QList<TVLBinderKeyword> *keywords);
    [[nodiscard]] bool readKeywordId(int *id);
    void readKeywordElement(TVLBinderKeyword *keyword);
    [[nodiscard]] bool readCustomMetaDataSettings();
    [[nodiscard]] bool readProjectProperties();
    [[nodiscard]] bool readProjectTargets();
    [[nodiscard]] TVLDraftTarget readDraftTarget();
    [[nodiscard]] TVLSessionTarget readSessionTarget();
    [[nodiscard]] bool readFavorites();
    [[nodiscard]] bool readAutoCompleteList();
    [[nodiscard]] bool readBackupSettings();
    [[nodiscard]] bool readFullScreenBackdrop();
    [[nodiscard]] bool readReferencesOfProject();
    [[nodiscard]] bool readPrintSettings();
    void readPageSetupElement(PageSetup *setup);
    [[nodiscard]] bool readUserProjectData();
    /** Hands over what had to wait for all items. */
    [[nodiscard]] bool settleSections();
    [[nodiscard]] TVLCollectionMetaData readCollection();
    void readSearchSettings(TVLCollectionMetaData *collection);
    void readCollectionIds(QList<int> *ids);

    // Files beside the binder
    [[nodiscard]] bool expectFirstElement(const QString &tag, int sourceLine);
    [[nodiscard]] QByteArray readRtf();
    void readCommentList(TVLTextCommentLink (TVLBinderReader::*readOne)(),
                         QList<TVLTextCommentLink> *comments);
    [[nodiscard]] TVLTextCommentLink readComment();
    void readLinksTextNote(TVLTextInternalLinkMap *links);
    [[nodiscard]] TVLTextCommentLink readLinksComment();
    [[nodiscard]] bool readSnapshot(TVLSnapshotInfo *snapshot);
    [[nodiscard]] bool readProjectNote(QPair<int, TVLTextInternalLinkMap> *note);

    TVLBinderProject *mProject = nullptr;
    TVLBinderSections *mSections = nullptr; ///< The project's.
    // What refers to items waits for all of them.
    QList<TVLBinderSections::ItemName> mTemplateFolders;
    std::optional<QList<TVLCollectionMetaData>> mCollections;
    std::optional<TVLCustomMetaDataSettings> mCustomMetaDataSettings;
    QList<int> mFavorites;
    std::optional<bool> mBackupIncluded;
    QList<TVLProjectNode *> mNewNodes; ///< Read but not yet entered in the project's maps.
    TVL::BinderVersion mBinderVersion = TVL::NoBinderVersion;
    QString mVersionText;
    TVLDateFormatter mDates;
};
