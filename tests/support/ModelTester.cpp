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
    : mRowSignals(model)
    , mTester(withSource(&mProxy, model), QAbstractItemModelTester::FailureReportingMode::Fatal)
{
}

ModelTester::~ModelTester()
{
    if (!mRowSignals.wrong().isEmpty())
        qFatal("the row signals are wrong: %s", qPrintable(mRowSignals.wrong()));
}
