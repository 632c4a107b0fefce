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
    [[nodiscard]] std::optional<QUuid> namedTemplateFolderUuid() const;
    [[nodiscard]] std::optional<int> namedTemplateFolderId() const;
    /** What the binder says beside its items. */
    [[nodiscard]] const TVLBinderSections &sections() const { return mSections; }

    [[nodiscard]] TVLProjectNode *binderRoot() const override { return mRoot.get(); }
    [[nodiscard]] bool isMobileProject() const override { return false; }
    [[nodiscard]] TVL::FormatVersion formatVersion() const override { return TVL::NoFormatVersion; }
    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return mIds; }
    [[nodiscard]] TVLBinderSections binderSections() const override;

    TVLBinderSections *beginBinderRead() override { return &mSections; }
    void endBinderRead() override { }
    void setInfo(const TVLProjectInfo &info) override { mSections.mInfo = info; }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;
    /** Always true: what can't be a favorite is told by deadFavorites(). */
    [[nodiscard]] bool adoptSection(TVLBinderSection section) override;

private:
    std::unique_ptr<TVLProjectNode> mRoot;
    QMap<int, QUuid> mIds;
    QMap<QUuid, TVLProjectNode *> mUuids;
    TVLBinderSections mSections;
    QList<int> mDeadFavorites;
};
