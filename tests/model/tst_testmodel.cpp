#include "ModelChecks.h"
#include "TestMain.h"

using namespace Qt::StringLiterals;

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
    model->setTitle(firstText(model.get()), u"One"_s);
    QCOMPARE(model.takeSignals(),
             QStringList({u"modifiedChanged(true)"_s, u"dataChanged(3, 3, [])"_s}));
}

void TstTestModel::signalsAreTakenByName()
{
    const TestModel model = blankModel();
    model->setTitle(firstText(model.get()), u"One"_s);
    model->setLabelTitle(u"Kind"_s);
    QCOMPARE(model.takeSignals({u"labelTitleChanged"_s}),
             QStringList({u"labelTitleChanged(Kind)"_s}));
}

void TstTestModel::takenSignalsAreForgotten()
{
    const TestModel model = blankModel();
    model->setLabelTitle(u"Kind"_s);
    QVERIFY(!model.takeSignals({u"labelsChanged"_s}).contains(u"labelTitleChanged(Kind)"_s));
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
    model->setLabelTitle(u"Kind"_s);
    model = blankModel();
    QCOMPARE(model.takeSignals(), QStringList());
    model->setLabelTitle(u"Type"_s);
    QCOMPARE(model.takeSignals({u"labelTitleChanged"_s}),
             QStringList({u"labelTitleChanged(Type)"_s}));
}

TVL_TEST(TstTestModel)
#include "tst_testmodel.moc"
