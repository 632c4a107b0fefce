#include "ModelTester.h"

#include "TVLProjectModel.h"

namespace {

QAbstractItemModel *withSource(QIdentityProxyModel *proxy, TVLProjectModel *model)
{
    proxy->setSourceModel(model);
    return proxy;
}

} // namespace

ModelTester::ModelTester(TVLProjectModel *model)
    : mTester(withSource(&mProxy, model), QAbstractItemModelTester::FailureReportingMode::Fatal)
{
}
