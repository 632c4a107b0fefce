#pragma once

#include "TVLBinderProject.h"
#include "TVLProjectNode.h"

#include <QMap>

#include <memory>

/** A project that is nothing but what a binder says: the reader's and writer's plainest partner. */
class TestBinderProject : public TVLBinderProject, public TVLBinderSections
{
public:
    TestBinderProject();
    explicit TestBinderProject(std::unique_ptr<TVLProjectNode> root);
    ~TestBinderProject() override;

    [[nodiscard]] TVLProjectNode *binderRoot() const override { return mRoot.get(); }
    [[nodiscard]] bool isMobileProject() const override { return mIsMobile; }
    [[nodiscard]] TVL::FormatVersion formatVersion() const override { return mFormatVersion; }
    [[nodiscard]] QMap<int, QUuid> idToUuid() const override { return mIdMap; }
    /** Makes a printer unless it is mobile. */
    [[nodiscard]] TVLBinderSections binderSections() const override;

    TVLBinderSections *beginBinderRead() override;
    void endBinderRead() override { mIsReading = false; }
    void setInfo(const TVLProjectInfo &info) override { mInfo = info; }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override;
    [[nodiscard]] bool adoptSection(TVLBinderSection section) override;

    void adoptTemplateFolder(const QUuid &uuid);
    void adoptTemplateFolder(int id);
    [[nodiscard]] bool addFavorite(int id);
    [[nodiscard]] QString projectProperty(const QString &tag) const
    {
        return mProperties.value(tag);
    }
    void setProjectProperty(const QString &tag, const QString &value)
    {
        mProperties.insert(tag, value);
    }
    /** Made when it is first asked for. */
    [[nodiscard]] QPrinter *printer() const;
    void setPrinter(QPrinter *printer);
    /** Whether a page set-up was given to it or asked of it. */
    [[nodiscard]] bool hasPrinter() const { return mPrinter || mDefaultPrinter; }

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
    bool mIsModified = false; ///< A binder told of backups.
    QMap<int, QUuid> mIdMap;
    QMap<QUuid, TVLProjectNode *> mUuidMap;

private:
    [[nodiscard]] TVLProjectNode *nodeOf(int id) const;

    mutable std::shared_ptr<QPrinter> mDefaultPrinter; ///< What stands where no set-up was given.
};
