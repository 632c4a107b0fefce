#include "TestBinderProject.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include <QBuffer>

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
    if (TVLProjectNode *node = mUuidMap.value(uuid)) {
        node->mIsTemplateFolder = true;
        mTemplateFolderUuid = uuid;
    }
}

void TestBinderProject::adoptTemplateFolder(int id)
{
    adoptTemplateFolder(mIdMap.value(id));
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
