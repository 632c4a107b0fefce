#pragma once

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>

class TVLProjectModel;

/**
 * Holds a project model to the rules of item models for as long as it lives: a broken one ends the
 * test.
 *
 * The model's root index isn't a default index, on purpose, and that alone the tester doesn't
 * allow. So it looks at the model through a proxy that changes nothing but that.
 */
class ModelTester
{
public:
    explicit ModelTester(TVLProjectModel *model);

private:
    QIdentityProxyModel mProxy;
    QAbstractItemModelTester mTester;
};
