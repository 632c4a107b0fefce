#pragma once

#include "TVLBinderProject.h"
#include "TVLProjectNode.h"

#include <QCoreApplication>

#include <memory>
#include <optional>

class QIODevice;

/**
 * What a binder says, and nothing more. In contrast to a model it repairs nothing, adds nothing
 * and knows no folder, so that a check sees the binder as it stands.
 */
class TVL_EXPORT TVLBinderContents : public TVLBinderProject
{
    Q_DECLARE_TR_FUNCTIONS(TVLBinderContents)

public:
    TVLBinderContents();
    ~TVLBinderContents() override;

    /** Reads a binder file; empty, or what is wrong with it and where. */
    [[nodiscard]] QString read(const QString &filePath);
    /** Reads a binder from an open device that the caller owns; empty, or what is wrong with it. */
    [[nodiscard]] QString read(QIODevice *device);

    /** Whether a model would take what was read. */
    [[nodiscard]] bool isLoadable() const { return mDeadFavorites.isEmpty(); }
    /**
     * Ids among the favorites that stand for no item. A binder with one is sound otherwise, but a
     * model refuses it.
     */
    [[nodiscard]] QList<int> deadFavorites() const { return mDeadFavorites; }
    /** What the binder names the template folder by; nothing when it names none. */
    [[nodiscard]] std::optional<QUuid> namedTemplateFolderUuid() const
    {
        return mTemplateFolderUuid;
    }
    [[nodiscard]] std::optional<int> namedTemplateFolderId() const { return mTemplateFolderId; }

    [[nodiscard]] TVLProjectNode *binderRoot() const override { return mRoot.get(); }
    [[nodiscard]] bool isMobileProject() const override { return false; }
    [[nodiscard]] TVL::FormatVersion formatVersion() const override { return TVL::NoFormatVersion; }
    [[nodiscard]] QString deviceName() const override { return mInfo.mDevice; }
    [[nodiscard]] TVLProjectInfo info() const override { return mInfo; }

    [[nodiscard]] QString labelTitle() const override { return mLabelTitle; }
    [[nodiscard]] int defaultLabelIdentity() const override { return mDefaultLabelId; }
    [[nodiscard]] QList<TVLLabel> labels() const override { return mLabels; }
    [[nodiscard]] QString statusTitle() const override { return mStatusTitle; }
    [[nodiscard]] int defaultStatusIdentity() const override { return mDefaultStatusId; }
    [[nodiscard]] QList<TVLStatusItem> statusItems() const override { return mStatusItems; }
    [[nodiscard]] QUuid templateFolderUuid() const override { return {}; }
    [[nodiscard]] QList<TVLCollectionMetaData> collections() const override { return mCollections; }
    [[nodiscard]] QList<TVLBinderKeyword> projectKeywords() const override { return mKeywords; }
    [[nodiscard]] TVLCustomMetaDataSettings customMetaDataSettings() const override
    {
        return mFields;
    }
    [[nodiscard]] QString projectProperty(const QString &tag) const override
    {
        return mProperties.value(tag);
    }
    [[nodiscard]] TVLDraftTarget draftTarget() const override { return mDraftTarget; }
    [[nodiscard]] TVLSessionTarget sessionTarget() const override { return mSessionTarget; }
    [[nodiscard]] bool notifyTargets() const override { return mNotifyTargets; }
    [[nodiscard]] QList<int> favoriteIds() const override { return mFavoriteIds; }
    [[nodiscard]] QList<TVLAutoCompleteItem> autoCompleteList() const override
    {
        return mAutoCompleteList;
    }
    [[nodiscard]] bool backupIncluded() const override { return mBackupIncluded; }
    [[nodiscard]] QVariant fullScreenBackdrop() const override { return mBackdrop; }
    [[nodiscard]] QList<TVLReference> projectReferences() const override { return mReferences; }
    [[nodiscard]] QPrinter *printer() const override;
    [[nodiscard]] QString userProjectData() const override { return {}; }

    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return mIds; }

    void beginBinderRead() override { }
    void endBinderRead() override { }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;
    void setInfo(const TVLProjectInfo &info) override { mInfo = info; }
    void setLabels(const QList<TVLLabel> &labels) override { mLabels = labels; }
    void setDefaultLabelIdentity(int id) override { mDefaultLabelId = id; }
    void setLabelTitle(const QString &title) override { mLabelTitle = title; }
    void setStatusItems(const QList<TVLStatusItem> &items) override { mStatusItems = items; }
    void setDefaultStatusIdentity(int id) override { mDefaultStatusId = id; }
    void setStatusTitle(const QString &title) override { mStatusTitle = title; }
    void adoptTemplateFolder(const QUuid &uuid) override { mTemplateFolderUuid = uuid; }
    void adoptTemplateFolder(int id) override { mTemplateFolderId = id; }
    void setCollections(const QList<TVLCollectionMetaData> &collections) override
    {
        mCollections = collections;
    }
    void addProjectKeywords(const QList<TVLBinderKeyword> &keywords) override
    {
        mKeywords += keywords;
    }
    void setCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings) override
    {
        mFields = settings;
    }
    void setProjectProperty(const QString &tag, const QString &value) override
    {
        mProperties.insert(tag, value);
    }
    void setDraftTarget(const TVLDraftTarget &target) override { mDraftTarget = target; }
    void setSessionTarget(const TVLSessionTarget &target) override { mSessionTarget = target; }
    void setNotifyTargets(bool notify) override { mNotifyTargets = notify; }
    /** Always true: what can't be a favorite is told by deadFavorites(). */
    [[nodiscard]] bool addFavorite(int id) override;
    void setAutoCompleteList(const QList<TVLAutoCompleteItem> &items) override
    {
        mAutoCompleteList = items;
    }
    void adoptBackupIncluded(bool included) override { mBackupIncluded = included; }
    void setFullScreenBackdrop(int nodeId) override { mBackdrop = nodeId; }
    void setFullScreenBackdrop(const QString &filePath) override { mBackdrop = filePath; }
    void setProjectReferences(const QList<TVLReference> &references) override
    {
        mReferences = references;
    }
    void setPrinter(QPrinter *printer) override;

private:
    std::unique_ptr<TVLProjectNode> mRoot;
    QMap<int, QUuid> mIds;
    QMap<QUuid, TVLProjectNode *> mUuids;
    TVLProjectInfo mInfo;
    QString mLabelTitle;
    int mDefaultLabelId = -1;
    QList<TVLLabel> mLabels;
    QString mStatusTitle;
    int mDefaultStatusId = -1;
    QList<TVLStatusItem> mStatusItems;
    std::optional<QUuid> mTemplateFolderUuid;
    std::optional<int> mTemplateFolderId;
    QList<TVLCollectionMetaData> mCollections;
    QList<TVLBinderKeyword> mKeywords;
    TVLCustomMetaDataSettings mFields;
    QMap<QString, QString> mProperties;
    TVLDraftTarget mDraftTarget;
    TVLSessionTarget mSessionTarget;
    bool mNotifyTargets = false;
    QList<int> mFavoriteIds;
    QList<int> mDeadFavorites;
    QList<TVLAutoCompleteItem> mAutoCompleteList;
    bool mBackupIncluded = true;
    QVariant mBackdrop;
    QList<TVLReference> mReferences;
    mutable std::unique_ptr<QPrinter> mPrinter; ///< Null until somebody asks for it.
};
