#pragma once

#include "TVLAutoCompleteItem.h"
#include "TVLBinderKeyword.h"
#include "TVLCollectionMetaData.h"
#include "TVLLabel.h"
#include "TVLMetaDataField.h"
#include "TVLProjectInfo.h"
#include "TVLReference.h"
#include "TVLStatusItem.h"
#include "TVLTargets.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>
#include <QVariant>

#include <memory>
#include <variant>

class QPrinter;
class TVLProjectNode;

/** The parts of a binder that a project takes over from its reader, each as a whole. */
enum class TVLBinderSection {
    Labels,
    StatusItems,
    TemplateFolder,
    Collections,
    Keywords,
    CustomMetaDataSettings,
    Properties,
    Targets,
    Favorites,
    AutoCompleteList,
    Backup,
    FullScreenBackdrop,
    ProjectReferences,
    Printer,
};

/**
 * What a binder says beside its items: the reader fills it, the writer writes it. Nothing in it
 * acts by itself.
 */
struct TVLBinderSections
{
    /** A template folder as a binder names it: by its uuid, or by its id in older ones. */
    using ItemName = std::variant<QUuid, int>;

    TVLProjectInfo mInfo; ///< What the root element says.
    QString mLabelTitle;
    int mDefaultLabelId = -1;
    QList<TVLLabel> mLabels;
    QString mStatusTitle;
    int mDefaultStatusId = -1;
    QList<TVLStatusItem> mStatusItems;
    QUuid mTemplateFolderUuid; ///< What is written; null for none. The reader leaves it alone.
    QList<ItemName> mTemplateFolderNames; ///< What was read; the last one of an item counts.
    QList<TVLCollectionMetaData> mCollections;
    /** Each behind the one that it is part of. Of those with the same identity the last counts. */
    QList<TVLBinderKeyword> mKeywords;
    TVLCustomMetaDataSettings mCustomMetaDataSettings;
    QMap<QString, QString> mProperties; ///< By the tags of `ProjectProperties`.
    TVLDraftTarget mDraftTarget;
    TVLSessionTarget mSessionTarget;
    bool mNotifyTargets = false; ///< Whether the user is told when a target is reached.
    QList<int> mFavorites; ///< Ids in their order.
    QList<TVLAutoCompleteItem> mAutoCompleteList;
    bool mBackupIncluded = true; ///< Whether automatic backups take the project.
    /** An int, the id of an item, or a QString, the path of an image; invalid for nothing. */
    QVariant mFullScreenBackdrop;
    QList<TVLReference> mProjectReferences;
    std::shared_ptr<QPrinter> mPrinter; ///< The page set-up; null only where none is written.
    QString mUserProjectData; ///< Raw text with its tags; empty for none. The reader skips it.
};

/**
 * What the binder's reader and writer know of a project: the writer asks it for a record of
 * sections, the reader fills one and tells when.
 *
 * TVLProjectModel implements it, and TVLBinderContents does, which holds a binder as it stands.
 */
class TVL_EXPORT TVLBinderProject
{
public:
    TVLBinderProject();
    virtual ~TVLBinderProject();
    Q_DISABLE_COPY_MOVE(TVLBinderProject)

    /** The hidden root of the tree. */
    [[nodiscard]] virtual TVLProjectNode *binderRoot() const = 0;
    /** Whether this is the mobile copy of a project, whose binder says less. */
    [[nodiscard]] virtual bool isMobileProject() const = 0;
    [[nodiscard]] virtual TVL::FormatVersion formatVersion() const = 0;
    /** Which item an id stands for; only items that have an id are in it. */
    [[nodiscard]] virtual QMap<int, QUuid> idToUuid() const = 0;
    /** What is to be written. That of a mobile project may lack what its binder doesn't say. */
    [[nodiscard]] virtual TVLBinderSections binderSections() const = 0;

    /**
     * A read begins: changes don't count as the user's, and the node maps become empty. Gives the
     * record that the reader puts each section into once it has read the whole of it; the record is
     * the project's and stays until endBinderRead().
     */
    virtual TVLBinderSections *beginBinderRead() = 0;
    /** The read is over, successful or not. */
    virtual void endBinderRead() = 0;
    virtual void setInfo(const TVLProjectInfo &info) = 0;
    /**
     * Enters the nodes that the reader made, in binder order, in the maps by uuid and, if they have
     * one, by id; see tvlEnterNodes(). Comes once all items have been read, or as many as could be.
     */
    virtual void enterNodes(const QList<TVLProjectNode *> &nodes) = 0;
    /**
     * A section stands in the record. Those that name items come once all items have been entered.
     * False when the project can't take it, with which the read fails.
     */
    [[nodiscard]] virtual bool adoptSection(TVLBinderSection section) = 0;
};

/**
 * Enters nodes in a map of ids to uuids and in one of uuids to nodes; of nodes with the same id or
 * uuid the last counts. Much quicker than one by one: a map that is filled in order needs no
 * search.
 */
TVL_EXPORT void tvlEnterNodes(const QList<TVLProjectNode *> &nodes, QMap<int, QUuid> *idMap,
                              QMap<QUuid, TVLProjectNode *> *uuidMap);
