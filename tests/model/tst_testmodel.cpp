#include "ModelChecks.h"
#include "TestMain.h"

/** What the fixture of all tests that change a model says of it. */
class TstTestModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalsAreTakenInOrder();
    void signalsAreTakenByName();
    void takenSignalsAreForgotten();
    void aModelOfNothingIsNull();
    void anotherModelIsListenedToInstead();
};

void TstTestModel::signalsAreTakenInOrder()
{
    const TestModel model = blankModel();
    model->setTitle(firstText(model.get()), u"One"_qs);
    QCOMPARE(model.takeSignals(),
             QStringList({u"modifiedChanged(true)"_qs, u"dataChanged(3, 3, [])"_qs}));
}

void TstTestModel::signalsAreTakenByName()
{
    const TestModel model = blankModel();
    model->setTitle(firstText(model.get()), u"One"_qs);
    model->setLabelTitle(u"Kind"_qs);
    QCOMPARE(model.takeSignals({u"labelTitleChanged"_qs}),
             QStringList({u"labelTitleChanged(Kind)"_qs}));
}

void TstTestModel::takenSignalsAreForgotten()
{
    const TestModel model = blankModel();
    model->setLabelTitle(u"Kind"_qs);
    QVERIFY(!model.takeSignals({u"labelsChanged"_qs}).contains(u"labelTitleChanged(Kind)"_qs));
    QCOMPARE(model.takeSignals(), QStringList());
}

void TstTestModel::aModelOfNothingIsNull()
{
    const TestModel model(nullptr);
    QVERIFY(!model);
    QVERIFY(model == nullptr);
    QCOMPARE(model.get(), nullptr);
    QCOMPARE(model.takeSignals(), QStringList());
}

void TstTestModel::anotherModelIsListenedToInstead()
{
    TestModel model = blankModel();
    model->setLabelTitle(u"Kind"_qs);
    model = blankModel();
    QCOMPARE(model.takeSignals(), QStringList());
    model->setLabelTitle(u"Type"_qs);
    QCOMPARE(model.takeSignals({u"labelTitleChanged"_qs}),
             QStringList({u"labelTitleChanged(Type)"_qs}));
}

TVL_TEST(TstTestModel)
#include "tst_testmodel.moc"
