#include "TestBinderProject.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include <QBuffer>
#include <QPrinter>

TestBinderProject::TestBinderProject()
    : TestBinderProject(
        std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, QUuid::createUuid()), nullptr))
{
}

TestBinderProject::TestBinderProject(std::unique_ptr<TVLProjectNode> root)
    : mRoot(std::move(root))
{
}

TestBinderProject::~TestBinderProject() = default;

void TestBinderProject::beginBinderRead()
{
    mIsReading = true;
    mIdMap.clear();
    mUuidMap.clear();
}

void TestBinderProject::enterNodes(const QList<TVLProjectNode *> &nodes)
{
    tvlEnterNodes(nodes, &mIdMap, &mUuidMap);
}

void TestBinderProject::adoptTemplateFolder(const QUuid &uuid)
{
    TVLProjectNode *node = mUuidMap.value(uuid);
    if (!node)
        return;
    if (TVLProjectNode *before = mUuidMap.value(mTemplateFolderUuid))
        before->mIsTemplateFolder = false;
    node->mIsTemplateFolder = true;
    mTemplateFolderUuid = uuid;
}

void TestBinderProject::adoptTemplateFolder(int id)
{
    if (const TVLProjectNode *node = nodeOf(id))
        adoptTemplateFolder(node->mUuid);
}

TVLProjectNode *TestBinderProject::nodeOf(int id) const
{
    // An item may well have a null uuid.
    const auto uuid = mIdMap.constFind(id);
    return uuid == mIdMap.cend() ? nullptr : mUuidMap.value(*uuid);
}

bool TestBinderProject::addFavorite(int id)
{
    TVLProjectNode *node = nodeOf(id);
    if (!node)
        return false;
    node->mIsFavorite = true;
    mFavorites.removeAll(id);
    mFavorites.append(id);
    return true;
}

void TestBinderProject::adoptBackupIncluded(bool included)
{
    mBackupIncluded = included;
    mIsModified = true;
}

QPrinter *TestBinderProject::printer() const
{
    if (!mPrinter)
        mPrinter = std::make_unique<QPrinter>(QPrinter::PrinterResolution);
    return mPrinter.get();
}

void TestBinderProject::setPrinter(QPrinter *printer)
{
    mPrinter.reset(printer);
}

void TestBinderProject::enterTree()
{
    QList<TVLProjectNode *> nodes;
    tvlForEachNode(mRoot.get(), [&nodes](TVLProjectNode *node) { nodes.append(node); });
    enterNodes(nodes);
}

QByteArray TestBinderProject::write() const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter(&buffer).writeProject(this, mRoot.get());
    return buffer.data();
}

bool TestBinderProject::read(const QByteArray &binder, QString *error)
{
    QBuffer buffer;
    buffer.setData(binder);
    buffer.open(QIODevice::ReadOnly);
    TVLBinderReader reader(&buffer);
    const bool ok = reader.readProject(this, mRoot.get());
    if (error)
        *error = reader.errorString();
    return ok;
}
