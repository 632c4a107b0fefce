#include "TestBinderProject.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include <QBuffer>
#include <QPrinter>

#include <algorithm>
#include <utility>

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

TVLBinderSections *TestBinderProject::beginBinderRead()
{
    mIsReading = true;
    mIdMap.clear();
    mUuidMap.clear();
    return this;
}

bool TestBinderProject::adoptSection(TVLBinderSection section)
{
    switch (section) {
    case TVLBinderSection::TemplateFolder:
        for (const ItemName &name : std::as_const(mTemplateFolderNames))
            std::visit([this](const auto &item) { adoptTemplateFolder(item); }, name);
        return true;
    case TVLBinderSection::Favorites: {
        const QList<int> ids = std::exchange(mFavorites, {});
        return std::all_of(ids.cbegin(), ids.cend(), [this](int id) { return addFavorite(id); });
    }
    case TVLBinderSection::Backup:
        mIsModified = true;
        return true;
    default:
        return true;
    }
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

QPrinter *TestBinderProject::printer() const
{
    if (mPrinter)
        return mPrinter.get();
    if (!mDefaultPrinter)
        mDefaultPrinter = std::make_shared<QPrinter>(QPrinter::PrinterResolution);
    return mDefaultPrinter.get();
}

TVLBinderSections TestBinderProject::binderSections() const
{
    TVLBinderSections sections = *this;
    if (!mIsMobile) {
        (void)printer(); // Makes it.
        if (!mPrinter)
            sections.mPrinter = mDefaultPrinter;
    }
    return sections;
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
