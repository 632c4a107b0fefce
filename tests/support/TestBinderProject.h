#pragma once

#include "TVLBinderProject.h"
#include "TVLProjectNode.h"

#include <QMap>

#include <memory>

/** A project that is nothing but what a binder says: the reader's and writer's plainest partner. */
class TestBinderProject : public TVLBinderProject
{
public:
    TestBinderProject();
    explicit TestBinderProject(std::unique_ptr<TVLProjectNode> root);
    ~TestBinderProject() override;

    [[nodiscard]] TVLProjectNode *binderRoot() const override { return mRoot.get(); }
    [[nodiscard]] bool isMobileProject() const override { return mIsMobile; }
    [[nodiscard]] TVL::FormatVersion formatVersion() const override { return mFormatVersion; }
    [[nodiscard]] QString deviceName() const override { return mInfo.mDevice; }
    [[nodiscard]] TVLProjectInfo info() const override { return mInfo; }
    [[nodiscard]] QString labelTitle() const override { return mLabelTitle; }
    [[nodiscard]] int defaultLabelIdentity() const override { return mDefaultLabelId; }
    [[nodiscard]] QList<TVLLabel> labels() const override { return mLabels; }
    [[nodiscard]] QString statusTitle() const override { return mStatusTitle; }
    [[nodiscard]] int defaultStatusIdentity() const override { return mDefaultStatusId; }
    [[nodiscard]] QList<TVLStatusItem> statusItems() const override { return mStatusItems; }
    [[nodiscard]] QUuid templateFolderUuid() const override { return mTemplateFolderUuid; }
    [[nodiscard]] QList<TVLCollectionMetaData> collections() const override { return mCollections; }
    [[nodiscard]] QList<TVLBinderKeyword> projectKeywords() const override { return mKeywords; }
    [[nodiscard]] TVLCustomMetaDataSettings customMetaDataSettings() const override
    {
        return mCustomMetaDataSettings;
    }
    [[nodiscard]] QString projectProperty(const QString &tag) const override
    {
        return mProperties.value(tag);
    }
    [[nodiscard]] TVLDraftTarget draftTarget() const override { return mDraftTarget; }
    [[nodiscard]] TVLSessionTarget sessionTarget() const override { return mSessionTarget; }
    [[nodiscard]] bool notifyTargets() const override { return mNotifyTargets; }
    [[nodiscard]] QList<int> favoriteIds() const override { return mFavorites; }
    [[nodiscard]] QList<TVLAutoCompleteItem> autoCompleteList() const override
    {
        return mAutoCompleteList;
    }
    [[nodiscard]] bool backupIncluded() const override { return mBackupIncluded; }
    [[nodiscard]] QVariant fullScreenBackdrop() const override { return mFullScreenBackdrop; }
    [[nodiscard]] QList<TVLReference> projectReferences() const override
    {
        return mProjectReferences;
    }
    /** Made when it is first asked for. */
    [[nodiscard]] QPrinter *printer() const override;
    [[nodiscard]] QString userProjectData() const override { return mUserProjectData; }
    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return mIdMap; }

    void beginBinderRead() override;
    void endBinderRead() override { mIsReading = false; }
    void setInfo(const TVLProjectInfo &info) override { mInfo = info; }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;
    void setLabels(const QList<TVLLabel> &labels) override { mLabels = labels; }
    void setDefaultLabelIdentity(int id) override { mDefaultLabelId = id; }
    void setLabelTitle(const QString &title) override { mLabelTitle = title; }
    void setStatusItems(const QList<TVLStatusItem> &items) override { mStatusItems = items; }
    void setDefaultStatusIdentity(int id) override { mDefaultStatusId = id; }
    void setStatusTitle(const QString &title) override { mStatusTitle = title; }
    void adoptTemplateFolder(const QUuid &uuid) override;
    void adoptTemplateFolder(int id) override;
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
        mCustomMetaDataSettings = settings;
    }
    void setProjectProperty(const QString &tag, const QString &value) override
    {
        mProperties.insert(tag, value);
    }
    void setDraftTarget(const TVLDraftTarget &target) override { mDraftTarget = target; }
    void setSessionTarget(const TVLSessionTarget &target) override { mSessionTarget = target; }
    void setNotifyTargets(bool notify) override { mNotifyTargets = notify; }
    [[nodiscard]] bool addFavorite(int id) override;
    void setAutoCompleteList(const QList<TVLAutoCompleteItem> &items) override
    {
        mAutoCompleteList = items;
    }
    void adoptBackupIncluded(bool included) override;
    void setFullScreenBackdrop(int nodeId) override { mFullScreenBackdrop = nodeId; }
    void setFullScreenBackdrop(const QString &filePath) override { mFullScreenBackdrop = filePath; }
    void setProjectReferences(const QList<TVLReference> &references) override
    {
        mProjectReferences = references;
    }
    void setPrinter(QPrinter *printer) override;
    /** Whether a page set-up was given to it or asked of it. */
    [[nodiscard]] bool hasPrinter() const { return mPrinter != nullptr; }

    /** Enters all nodes of a tree that wasn't read. */
    void enterTree();

    /** Writes the binder. */
    [[nodiscard]] QByteArray write() const;
    /** Reads a binder; @p error gets the reader's error text. */
    [[nodiscard]] bool read(const QByteArray &binder, QString *error = nullptr);

    std::unique_ptr<TVLProjectNode> mRoot;
    bool mIsMobile = false;
    bool mIsReading = false;
    TVL::FormatVersion mFormatVersion = TVL::FormatVersion18;
    TVLProjectInfo mInfo;
    QString mLabelTitle;
    int mDefaultLabelId = -1;
    QList<TVLLabel> mLabels;
    QString mStatusTitle;
    int mDefaultStatusId = -1;
    QList<TVLStatusItem> mStatusItems;
    QUuid mTemplateFolderUuid;
    QList<TVLCollectionMetaData> mCollections;
    QList<TVLBinderKeyword> mKeywords;
    TVLCustomMetaDataSettings mCustomMetaDataSettings;
    QMap<QString, QString> mProperties;
    TVLDraftTarget mDraftTarget;
    TVLSessionTarget mSessionTarget;
    bool mNotifyTargets = false;
    QList<int> mFavorites;
    QList<TVLAutoCompleteItem> mAutoCompleteList;
    bool mBackupIncluded = true;
    bool mIsModified = false; ///< A binder told of backups.
    QVariant mFullScreenBackdrop;
    QList<TVLReference> mProjectReferences;
    QString mUserProjectData;
    QMap<int, QUuid> mIdMap;
    QMap<QUuid, TVLProjectNode *> mUuidMap;

private:
    [[nodiscard]] TVLProjectNode *nodeOf(int id) const;

    mutable std::unique_ptr<QPrinter> mPrinter;
};
