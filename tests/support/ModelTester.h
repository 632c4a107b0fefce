#pragma once

#include "RowSignals.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>

class TVLProjectModel;

/**
 * Holds a project model to the rules of item models for as long as it lives: a broken one ends the
 * test. So does a row signal that RowSignals finds untrue.
 *
 * The model's root index isn't a default index, on purpose, and that alone Qt's tester doesn't
 * allow. So it looks at the model through a proxy that changes nothing but that; RowSignals listens
 * to the model itself.
 */
class ModelTester
{
public:
    explicit ModelTester(TVLProjectModel *model);
    ~ModelTester();
    Q_DISABLE_COPY_MOVE(ModelTester)

private:
    RowSignals mRowSignals;
    QIdentityProxyModel mProxy;
    QAbstractItemModelTester mTester;
};
