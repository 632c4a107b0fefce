#include "BinderRoundTrip.h"

#include "FuzzSupport.h"

#include "TestBinderProject.h"

using namespace Qt::StringLiterals;

namespace {

void settleIdentity(TVLProjectNode *node, int number)
{
    if (node->mUuid.isNull())
        node->mUuid = QUuid(uint(number), 0x746c, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 1);
}

void settlePositions(TVLProjectNode *node)
{
    if (node->mFreeformPositions.isEmpty())
        return;
    for (const TVLProjectNode *child : std::as_const(node->mChildren)) {
        if (!node->mFreeformPositions.contains(child->mId))
            node->mFreeformPositions.insert(
                child->mId, {child->mId, QPointF(1, 1), u"2001-01-01 00:00:00 +0000"_s});
    }
}

void settle(TestBinderProject *project)
{
    if (project->mInfo.mBinderVersion == TVL::BinderVersion1)
        project->mInfo.mBinderVersion = TVL::BinderVersion2;
    int number = 0;
    tvlForEachNode(project->binderRoot(), [&number](TVLProjectNode *node) {
        settleIdentity(node, ++number);
        settlePositions(node);
        node->mImageScaleFactor = QString::number(node->mImageScaleFactor, 'g', 6).toDouble();
    });
}

/** The binder says nothing of its kind, but only a mobile one has these two. */
bool looksMobile(const TestBinderProject &project)
{
    return !project.mInfo.mSyncId.isNull() || !project.mInfo.mChecksumsId.isNull();
}

} // namespace

void tvlCheckBinderRoundTrip(TestBinderProject *project)
{
    settle(project);
    project->mIsMobile = looksMobile(*project);
    const QByteArray binder = project->write();

    TestBinderProject again;
    again.mIsMobile = project->mIsMobile;
    again.mUserProjectData = project->mUserProjectData;
    QString error;
    if (!again.read(binder, &error))
        tvlReportDifference("a binder that was written can't be read", binder, error.toUtf8());
    const QByteArray binderAgain = again.write();
    if (binderAgain != binder)
        tvlReportDifference("a binder that was read is written differently", binder, binderAgain);
}
