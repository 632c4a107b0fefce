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

class QPrinter;
class TVLProjectNode;

/**
 * What the binder's reader and writer know of a project: the writer asks it, the reader fills it.
 *
 * TVLProjectModel implements it.
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
    [[nodiscard]] virtual QString deviceName() const = 0;
    [[nodiscard]] virtual TVLProjectInfo info() const = 0;

    [[nodiscard]] virtual QString labelTitle() const = 0;
    [[nodiscard]] virtual int defaultLabelIdentity() const = 0;
    [[nodiscard]] virtual QList<TVLLabel> labels() const = 0;
    [[nodiscard]] virtual QString statusTitle() const = 0;
    [[nodiscard]] virtual int defaultStatusIdentity() const = 0;
    [[nodiscard]] virtual QList<TVLStatusItem> statusItems() const = 0;

    /** Uuid of the template folder; null when there is none in the tree. */
    [[nodiscard]] virtual QUuid templateFolderUuid() const = 0;
    [[nodiscard]] virtual QList<TVLCollectionMetaData> collections() const = 0;
    /** All keywords, each behind the one that it is part of. */
    [[nodiscard]] virtual QList<TVLBinderKeyword> projectKeywords() const = 0;

    [[nodiscard]] virtual TVLCustomMetaDataSettings customMetaDataSettings() const = 0;
    /** What the project says under one of the tags of `ProjectProperties`; empty for nothing. */
    [[nodiscard]] virtual QString projectProperty(const QString &tag) const = 0;
    [[nodiscard]] virtual TVLDraftTarget draftTarget() const = 0;
    [[nodiscard]] virtual TVLSessionTarget sessionTarget() const = 0;
    /** Whether the user is told when a target is reached. */
    [[nodiscard]] virtual bool notifyTargets() const = 0;
    /** Ids of the favorite items in their order; only of items that are there. */
    [[nodiscard]] virtual QList<int> favoriteIds() const = 0;
    [[nodiscard]] virtual QList<TVLAutoCompleteItem> autoCompleteList() const = 0;
    /** Whether automatic backups take the project. */
    [[nodiscard]] virtual bool backupIncluded() const = 0;
    /** An int, the id of an item, or a QString, the path of an image; invalid for nothing. */
    [[nodiscard]] virtual QVariant fullScreenBackdrop() const = 0;
    [[nodiscard]] virtual QList<TVLReference> projectReferences() const = 0;
    /** The page set-up, never null; the project's own. */
    [[nodiscard]] virtual QPrinter *printer() const = 0;

    /** The part of the binder that is kept as raw text, with its tags; empty for none. */
    [[nodiscard]] virtual QString userProjectData() const = 0;

    /** Which item an id stands for; only items that have an id are in it. */
    [[nodiscard]] virtual QMap<int, QUuid> idToUuid() const = 0;

    /** A read begins: changes don't count as the user's, and the node maps become empty. */
    virtual void beginBinderRead() = 0;
    /** The read is over, successful or not. */
    virtual void endBinderRead() = 0;

    virtual void setInfo(const TVLProjectInfo &info) = 0;

    /**
     * Enters the nodes that the reader made, in binder order, in the maps by uuid and, if they have
     * one, by id; see tvlEnterNodes(). Comes once all items have been read, or as many as could be.
     */
    virtual void enterNodes(const QList<TVLProjectNode *> &nodes) = 0;

    virtual void setLabels(const QList<TVLLabel> &labels) = 0;
    virtual void setDefaultLabelIdentity(int id) = 0;
    virtual void setLabelTitle(const QString &title) = 0;
    virtual void setStatusItems(const QList<TVLStatusItem> &items) = 0;
    virtual void setDefaultStatusIdentity(int id) = 0;
    virtual void setStatusTitle(const QString &title) = 0;

    /** The item becomes the template folder; ignored when no item has the uuid. */
    virtual void adoptTemplateFolder(const QUuid &uuid) = 0;
    /** The item with the id becomes the template folder, as older binders name it;
     * ignored when no item has it. */
    virtual void adoptTemplateFolder(int id) = 0;
    virtual void setCollections(const QList<TVLCollectionMetaData> &collections) = 0;
    /** Adds keywords, each behind the one that it is part of. Of those with the same identity the
     * last counts. */
    virtual void addProjectKeywords(const QList<TVLBinderKeyword> &keywords) = 0;

    virtual void setCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings) = 0;
    virtual void setProjectProperty(const QString &tag, const QString &value) = 0;
    virtual void setDraftTarget(const TVLDraftTarget &target) = 0;
    virtual void setSessionTarget(const TVLSessionTarget &target) = 0;
    virtual void setNotifyTargets(bool notify) = 0;
    /** Makes an item the last favorite; false when no item has the id. */
    [[nodiscard]] virtual bool addFavorite(int id) = 0;
    virtual void setAutoCompleteList(const QList<TVLAutoCompleteItem> &items) = 0;
    /** Takes over what a binder says of backups; the project counts as modified after the read. */
    virtual void adoptBackupIncluded(bool included) = 0;
    virtual void setFullScreenBackdrop(int nodeId) = 0;
    virtual void setFullScreenBackdrop(const QString &filePath) = 0;
    virtual void setProjectReferences(const QList<TVLReference> &references) = 0;
    /** Takes ownership of @p printer. */
    virtual void setPrinter(QPrinter *printer) = 0;
};

/**
 * Enters nodes in a map of ids to uuids and in one of uuids to nodes; of nodes with the same id or
 * uuid the last counts. Much quicker than one by one: a map that is filled in order needs no
 * search.
 */
TVL_EXPORT void tvlEnterNodes(const QList<TVLProjectNode *> &nodes, QMap<int, QUuid> *idMap,
                              QMap<QUuid, TVLProjectNode *> *uuidMap);
