#include "TestSearchedProject.h"

#include <QAbstractListModel>
#include <QFile>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
}

} // namespace

/** Makes indexes of the nodes. */
class TestSearchedProject::Items : public QAbstractListModel
{
public:
    explicit Items(const TVLProjectNode *root)
        : mRoot(root)
    {
    }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(mRoot->mChildren.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex &, int) const override { return {}; }
    [[nodiscard]] QModelIndex indexOf(TVLProjectNode *node) const
    {
        return createIndex(node->row(), 0, node);
    }

private:
    const TVLProjectNode *mRoot;
};

TestSearchedProject::TestSearchedProject()
    : mPath(mDirectory.filePath(u"Novel.tavel"_s))
    , mFolder(mPath, TVL::FormatVersion18)
    , mChecksums(&mFolder)
    , mRoot({-1, QUuid()}, nullptr)
    , mItems(std::make_unique<Items>(&mRoot))
{
    bool ok = false;
    TVLProjectFolderFormat::ensurePathExists(mPath, &ok);
    TVLProjectFolderFormat::docsDirectory(mPath, &ok);
    if (!ok)
        qFatal("The folder of the project could not be made");
}

TestSearchedProject::~TestSearchedProject() = default;

const TVLProjectNode *TestSearchedProject::searchedNode(int id) const
{
    return mById.value(id);
}

const TVLProjectNode *TestSearchedProject::searchedNode(const QModelIndex &index) const
{
    return static_cast<const TVLProjectNode *>(index.internalPointer());
}

QModelIndex TestSearchedProject::searchedIndex(int id) const
{
    TVLProjectNode *node = mById.value(id);
    return node ? mItems->indexOf(node) : QModelIndex();
}

bool TestSearchedProject::referenced(const QModelIndex &index) const
{
    return mReferenced.contains(static_cast<TVLProjectNode *>(index.internalPointer())->mId);
}

QStringList TestSearchedProject::searchedTexts(const QModelIndex &index,
                                               const QList<Property> &properties) const
{
    const int id = static_cast<TVLProjectNode *>(index.internalPointer())->mId;
    QStringList texts;
    for (const Property property : properties) {
        mRequests.append({id, property});
        texts.append(text(id, property));
    }
    return texts;
}

QList<TVLSearchedText>
TestSearchedProject::searchedFileTexts(const QModelIndex &index,
                                       const QList<Property> &properties) const
{
    QList<TVLSearchedText> texts = TVLSearchedProject::searchedFileTexts(index, properties);
    for (TVLSearchedText &text : texts)
        text.isOfFile = mAreTextsOfFiles;
    if (mWhenAsked)
        mWhenAsked();
    return texts;
}

TVLProjectNode *TestSearchedProject::addNode(int id, const QString &title, TVL::NodeType type)
{
    auto *node = new TVLProjectNode({id, QUuid::createUuid()}, &mRoot);
    mById.insert(id, node);
    node->mTitle = title;
    node->mNodeType = type;
    setText(id, TVL::TitleProperty, title);
    return node;
}

void TestSearchedProject::removeNode(int id)
{
    if (const TVLProjectNode *node = mById.take(id))
        (void)mRoot.takeChild(node->row());
}

void TestSearchedProject::setText(int id, Property property, const QString &text)
{
    mTexts.insert({id, property}, text);
}

QString TestSearchedProject::text(int id, Property property) const
{
    return mTexts.value({id, property});
}

QString TestSearchedProject::indexPath() const
{
    return TVLProjectFolderFormat::searchIndexesFilePath(mPath);
}

void TestSearchedProject::writeIndex(const QByteArray &content) const
{
    writeFile(indexPath(), content);
}

QByteArray TestSearchedProject::readIndex() const
{
    QFile file(indexPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestSearchedProject::writeDocument(int id, TVL::DocumentType type,
                                        const QByteArray &content) const
{
    writeFile(TVLProjectFolderFormat::docsNodeTypeFilePath(mPath, id, type), content);
}

void TestSearchedProject::recordHashes()
{
    mChecksums.updateFilesDocsChecksumsFromHdd();
    if (!mChecksums.saveChecksums())
        qFatal("The hashes could not be saved");
}

TVLCollectionMetaData searchFor(const QString &text, int searchOperator, int property,
                                Qt::CaseSensitivity cs)
{
    TVLCollectionMetaData search;
    search.mSearchText = text;
    search.mSearchOperator = TVL::SearchOperator(searchOperator);
    search.mSearchProperty = TVL::DocumentProperty(property);
    search.mCaseSensitivity = cs;
    return search;
}
