#pragma once

#include "TVLBinderProject.h"
#include "TVLProjectNode.h"

#include <memory>

/**
 * What a binder says, and nothing more. In contrast to a model it repairs nothing, adds nothing
 * and knows no folder, so that a check sees the binder as it stands.
 */
class ReadOnlyProject : public TVLBinderProject
{
public:
    ReadOnlyProject();
    ~ReadOnlyProject() override;

    /** Reads a binder file; empty, or what is wrong with it and where. */
    [[nodiscard]] QString read(const QString &filePath);

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
    [[nodiscard]] QString userProjectData() const override { return {}; }

    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return {}; }

    void beginBinderRead() override { }
    void endBinderRead() override { }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override { Q_UNUSED(nodes) }
    void setInfo(const TVLProjectInfo &info) override { mInfo = info; }
    void setLabels(const QList<TVLLabel> &labels) override { mLabels = labels; }
    void setDefaultLabelIdentity(int id) override { mDefaultLabelId = id; }
    void setLabelTitle(const QString &title) override { mLabelTitle = title; }
    void setStatusItems(const QList<TVLStatusItem> &items) override { mStatusItems = items; }
    void setDefaultStatusIdentity(int id) override { mDefaultStatusId = id; }
    void setStatusTitle(const QString &title) override { mStatusTitle = title; }
    void adoptTemplateFolder(const QUuid &uuid) override { Q_UNUSED(uuid) }
    void adoptTemplateFolder(int id) override { Q_UNUSED(id) }
    void setCollections(const QList<TVLCollectionMetaData> &collections) override
    {
        mCollections = collections;
    }
    void addProjectKeywords(const QList<TVLBinderKeyword> &keywords) override
    {
        mKeywords += keywords;
    }

private:
    std::unique_ptr<TVLProjectNode> mRoot;
    TVLProjectInfo mInfo;
    QString mLabelTitle;
    int mDefaultLabelId = -1;
    QList<TVLLabel> mLabels;
    QString mStatusTitle;
    int mDefaultStatusId = -1;
    QList<TVLStatusItem> mStatusItems;
    QList<TVLCollectionMetaData> mCollections;
    QList<TVLBinderKeyword> mKeywords;
};
