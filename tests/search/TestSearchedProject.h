#pragma once

#include "TVLCollectionMetaData.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLSearchedProject.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <utility>

/**
 * The plainest project that a search index can work for: a list of items in a folder of its own,
 * with the texts that a test gives them, and a record of what was asked for.
 */
class TestSearchedProject : public TVLSearchedProject
{
public:
    using Property = TVL::DocumentProperty;
    using Request = std::pair<int, int>; ///< An item and a property.

    TestSearchedProject();
    ~TestSearchedProject() override;

    [[nodiscard]] QString searchedPath() const override { return mPath; }
    [[nodiscard]] TVLProjectChecksums *checksums() const override { return &mChecksums; }
    [[nodiscard]] const TVLProjectNode *searchedNode(int id) const override;
    [[nodiscard]] const TVLProjectNode *searchedNode(const QModelIndex &index) const override;
    [[nodiscard]] QModelIndex searchedIndex(int id) const override;
    [[nodiscard]] bool referenced(const QModelIndex &index) const override;
    [[nodiscard]] QStringList searchedTexts(const QModelIndex &index,
                                            const QList<Property> &properties) const override;

    [[nodiscard]] QList<TVLSearchedText>
    searchedFileTexts(const QModelIndex &index, const QList<Property> &properties) const override;

    /** Adds an item; its properties may be set afterwards. */
    TVLProjectNode *addNode(int id, const QString &title, TVL::NodeType type = TVL::Text);
    void removeNode(int id);
    [[nodiscard]] const QList<TVLProjectNode *> &nodes() const { return mRoot.mChildren; }

    void setText(int id, Property property, const QString &text);
    [[nodiscard]] QString text(int id, Property property) const;
    /** Says of an item that it has a document in memory. */
    void setReferenced(int id) { mReferenced.insert(id); }

    /** Says of all texts that they are those of their files, and what is done whenever some are
     * asked for. */
    void setTextsOfFiles(const std::function<void()> &whenAsked)
    {
        mAreTextsOfFiles = true;
        mWhenAsked = whenAsked;
    }

    /** Which texts were asked for since the last call, in order. */
    [[nodiscard]] QList<Request> takeRequests() const { return std::exchange(mRequests, {}); }

    /** The file of the index. */
    [[nodiscard]] QString indexPath() const;
    void writeIndex(const QByteArray &content) const;
    [[nodiscard]] QByteArray readIndex() const;
    /** Writes a document file, without recording its hash. */
    void writeDocument(int id, TVL::DocumentType type, const QByteArray &content) const;
    /** Records the hashes of all document files, on disk. */
    void recordHashes();

private:
    class Items;

    QTemporaryDir mDirectory;
    QString mPath;
    TVLProjectFolderFormat mFolder;
    mutable TVLProjectChecksums mChecksums;
    TVLProjectNode mRoot;
    std::unique_ptr<Items> mItems;
    QHash<int, TVLProjectNode *> mById;
    QMap<Request, QString> mTexts;
    QSet<int> mReferenced;
    bool mAreTextsOfFiles = false;
    std::function<void()> mWhenAsked;
    mutable QList<Request> mRequests;
};

/** A search for a text, as a collection keeps it. */
[[nodiscard]] TVLCollectionMetaData searchFor(const QString &text, int searchOperator = 0,
                                              int property = 0,
                                              Qt::CaseSensitivity cs = Qt::CaseInsensitive);
