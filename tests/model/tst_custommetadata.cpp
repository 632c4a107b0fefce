#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Ids = QList<int>;
using Values = QMap<QString, QString>;
using Infos = QList<TVLCustomMetaDataInfo>;

const TVLMetaDataField Pov = {u"pov"_s, u"Point of view"_s, false, Qt::red};
const TVLMetaDataField Day = {u"day"_s, u"Day"_s, true, Qt::blue};
const TVLMetaDataField Place = {u"place"_s, u"Place"_s, false, QColor()};

/** A blank project with the fields pov, day and place, and the items 3 to 6, where 4 holds 5. */
TestModel modelWithFields()
{
    auto model = blankModel();
    addTree(model.get(), model->draftFolder(), u"x(y) z"_s);
    model->setCustomMetaDataSettings({Pov, Day, Place});
    makeAllOld(model.get());
    TVLProjectModelTestAccess::setSaved(model.get());
    return model;
}

TVLCustomMetaDataInfo infoOf(const TVLMetaDataField &field, const QString &value)
{
    TVLCustomMetaDataInfo info;
    static_cast<TVLMetaDataField &>(info) = field;
    info.mValue = value;
    return info;
}

/** Gives an item values as they come from a binder. */
void giveValues(const TVLProjectModel *model, int id, const Values &values)
{
    model->findNode(id)->mCustomMetaData = values;
}

Values valuesOf(const TVLProjectModel *model, int id)
{
    return model->customMetaData(model->index(id));
}

} // namespace

class TstCustomMetaData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Values of items
    void aNewItemHasNoValues();
    void aValueIsSet();
    void anItemCanHaveValuesWithoutAField();
    void anEqualValueHasNoEffect_data();
    void anEqualValueHasNoEffect();
    void anEmptiedValueStaysAsAnEmptyOne();
    void aValueIsRefused_data();
    void aValueIsRefused();
    void idsOfFieldsAreCaseSensitive();
    void everythingIsInPlaceWhenAValueIsAnnounced();
    void valuesOfAnotherModelsItemAreNone();
    void anItemHasMetaDataWhenSomeValueIsNotEmpty_data();
    void anItemHasMetaDataWhenSomeValueIsNotEmpty();

    // The fields
    void aNewProjectHasNoFields();
    void fieldsAreReplaced();
    void theSameFieldsStillMarkAndAnnounce();
    void fieldsThatWentLeaveAllItems();
    void fieldsThatWentWithoutValuesTouchNothing();
    void changedFieldsKeepTheirValues_data();
    void changedFieldsKeepTheirValues();
    void valuesOfNoFieldStay();
    void valuesGoBeforeTheFieldsAreAnnounced();
    void theFieldsAreTheOldOnesUntilTheyHaveChanged();
    void aFieldThatComesBackIsEmpty();
    void theOutlineHasAColumnForEachField();

    // Emptying a field
    void aFieldIsEmptiedInAllItems();
    void anEmptyValueIsRemovedToo();
    void emptyingAFieldOfNoItemMarksNothing();
    void itemsWithoutIdsAreEmptiedToo();
    void everyItemIsEmptyWhenItIsAnnounced();

    // Fields with values
    void theInfosComeInTheOrderOfTheFields();
    void emptyFieldsAreLeftOut_data();
    void emptyFieldsAreLeftOut();
    void valuesOfNoFieldHaveNoInfo();
    void anInfoHasTheWholeField();

    void manyItemsLoseAFieldInOneWalk();
};

// --- Values of items

void TstCustomMetaData::aNewItemHasNoValues()
{
    const auto model = modelWithFields();
    QCOMPARE(valuesOf(model.get(), 4), Values());
    QCOMPARE(model->customMetaData(model->index(4), u"pov"_s), QString());
    QVERIFY(!model->hasCustomMetaData(model->index(4)));
}

void TstCustomMetaData::aValueIsSet()
{
    const auto model = modelWithFields();
    const SignalLog log(model.get());
    QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, u"Ann"_s));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"fields of 4"_s, u"data 4"_s}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"pov"_s, u"Ann"_s}}));
    QCOMPARE(model->customMetaData(model->index(4), u"pov"_s), u"Ann"_s);
    QVERIFY(model->isModified());

    QVERIFY(model->setCustomMetaData(model->index(4), u"day"_s, u"line\nend <&> \u6f22"_s));
    QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, u"Ben"_s));
    QCOMPARE(valuesOf(model.get(), 4),
             Values({{u"day"_s, u"line\nend <&> \u6f22"_s}, {u"pov"_s, u"Ben"_s}}));
    QCOMPARE(valuesOf(model.get(), 5), Values());
    QCOMPARE(log.lines().count(u"fields of 4"_s), 3);
    QCOMPARE(log.lines().size(), 7);
}

void TstCustomMetaData::anItemCanHaveValuesWithoutAField()
{
    const auto model = modelWithFields();
    QVERIFY(model->setCustomMetaData(model->index(4), u"mood"_s, u"dark"_s));
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"mood"_s, u"dark"_s}}));
    QVERIFY(model->setCustomMetaData(model->draftFolder(), u"pov"_s, u"Ann"_s));
    QCOMPARE(valuesOf(model.get(), 0), Values({{u"pov"_s, u"Ann"_s}}));
}

void TstCustomMetaData::anEqualValueHasNoEffect_data()
{
    QTest::addColumn<Values>("before");
    QTest::addColumn<QString>("value");
    QTest::newRow("the same value") << Values({{u"pov"_s, u"Ann"_s}}) << u"Ann"_s;
    QTest::newRow("empty for a missing key") << Values() << u""_s;
    QTest::newRow("null for a missing key") << Values({{u"day"_s, u"1"_s}}) << QString();
    QTest::newRow("null for an empty value") << Values({{u"pov"_s, u""_s}}) << QString();
}

void TstCustomMetaData::anEqualValueHasNoEffect()
{
    QFETCH(const Values, before);
    QFETCH(const QString, value);
    const auto model = modelWithFields();
    giveValues(model.get(), 4, before);
    const SignalLog log(model.get());
    QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, value));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    QCOMPARE(touchedIds(model.get()), Ids());
    QCOMPARE(valuesOf(model.get(), 4), before);
}

void TstCustomMetaData::anEmptiedValueStaysAsAnEmptyOne()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, u"Ann"_s}});
    const SignalLog log(model.get());
    QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, QString()));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"fields of 4"_s, u"data 4"_s}));
    QCOMPARE(touchedIds(model.get()), Ids{4});
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"pov"_s, QString()}}));
    QVERIFY(!model->hasCustomMetaData(model->index(4)));
}

void TstCustomMetaData::aValueIsRefused_data()
{
    using Choose = std::function<QModelIndex(const TVLProjectModel *, const TVLProjectModel *)>;
    QTest::addColumn<Choose>("choose");
    QTest::addColumn<QString>("id");
    const Choose item = [](const TVLProjectModel *model, const TVLProjectModel *) {
        return model->index(4);
    };
    QTest::newRow("empty id") << item << u""_s;
    QTest::newRow("null id") << item << QString();
    QTest::newRow("invalid index")
        << Choose([](const TVLProjectModel *, const TVLProjectModel *) { return QModelIndex(); })
        << u"pov"_s;
    QTest::newRow("root") << Choose([](const TVLProjectModel *model, const TVLProjectModel *) {
        return model->rootIndex();
    }) << u"pov"_s;
    QTest::newRow("item of another model") << Choose(
        [](const TVLProjectModel *, const TVLProjectModel *other) { return other->index(4); })
                                           << u"pov"_s;
}

void TstCustomMetaData::aValueIsRefused()
{
    using Choose = std::function<QModelIndex(const TVLProjectModel *, const TVLProjectModel *)>;
    QFETCH(const Choose, choose);
    QFETCH(const QString, id);
    const auto model = modelWithFields();
    const auto other = modelWithFields();
    const SignalLog log(model.get());
    for (const QString &value : {u"Ann"_s, QString()})
        QVERIFY(!model->setCustomMetaData(choose(model.get(), other.get()), id, value));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved() && other->isSaved());
    QCOMPARE(touchedIds(model.get()), Ids());
    QCOMPARE(valuesOf(model.get(), 4), Values());
    QCOMPARE(valuesOf(other.get(), 4), Values());
    QVERIFY(model->binderRoot()->mCustomMetaData.isEmpty());
}

void TstCustomMetaData::idsOfFieldsAreCaseSensitive()
{
    const auto model = modelWithFields();
    QVERIFY(model->setCustomMetaData(model->index(4), u"POV"_s, u"Ann"_s));
    QCOMPARE(model->customMetaData(model->index(4), u"pov"_s), QString());
    QCOMPARE(model->customMetaData(model->index(4), u"POV"_s), u"Ann"_s);
}

void TstCustomMetaData::everythingIsInPlaceWhenAValueIsAnnounced()
{
    const auto model = modelWithFields();
    const QModelIndex item = model->index(4);
    int calls = 0;
    const auto check = [&] {
        ++calls;
        QCOMPARE(model->customMetaData(item, u"pov"_s), u"Ann"_s);
        QVERIFY(isTouched(model.get(), item));
        QVERIFY(model->isModified());
    };
    connect(model.get(), &TVLProjectModel::customMetaDataChanged, this, check);
    connect(model.get(), &TVLProjectModel::dataChanged, this, check);
    QVERIFY(model->setCustomMetaData(item, u"pov"_s, u"Ann"_s));
    QCOMPARE(calls, 2);
}

void TstCustomMetaData::valuesOfAnotherModelsItemAreNone()
{
    const auto model = modelWithFields();
    const auto other = modelWithFields();
    giveValues(other.get(), 4, {{u"pov"_s, u"Ann"_s}});
    const QModelIndex foreign = other->index(4);
    QCOMPARE(model->customMetaData(foreign), Values());
    QCOMPARE(model->customMetaData(foreign, u"pov"_s), QString());
    QVERIFY(!model->hasCustomMetaData(foreign));
    QCOMPARE(model->customMetaDataInfo(foreign, false), Infos());
    QCOMPARE(model->customMetaData(QModelIndex()), Values());
}

void TstCustomMetaData::anItemHasMetaDataWhenSomeValueIsNotEmpty_data()
{
    QTest::addColumn<Values>("values");
    QTest::addColumn<bool>("expected");
    QTest::newRow("no values") << Values() << false;
    QTest::newRow("an empty value") << Values({{u"pov"_s, u""_s}}) << false;
    QTest::newRow("a value") << Values({{u"pov"_s, u"Ann"_s}}) << true;
    QTest::newRow("a value among empty ones")
        << Values({{u"day"_s, u""_s}, {u"pov"_s, u"Ann"_s}}) << true;
    QTest::newRow("a blank") << Values({{u"pov"_s, u" "_s}}) << true;
}

void TstCustomMetaData::anItemHasMetaDataWhenSomeValueIsNotEmpty()
{
    QFETCH(const Values, values);
    QFETCH(const bool, expected);
    const auto model = modelWithFields();
    giveValues(model.get(), 4, values);
    QCOMPARE(model->hasCustomMetaData(model->index(4)), expected);
}

// --- The fields

void TstCustomMetaData::aNewProjectHasNoFields()
{
    const auto model = blankModel();
    QVERIFY(model->customMetaDataSettings().isEmpty());
    QCOMPARE(model->customMetaDataInfo(firstText(model.get()), true), Infos());
}

void TstCustomMetaData::fieldsAreReplaced()
{
    const auto model = modelWithFields();
    const SignalLog log(model.get());
    model->setCustomMetaDataSettings({Day, Pov, Place, {u"mood"_s, u"Mood"_s, false, {}}});
    QCOMPARE(log.lines(),
             QStringList({u"fields pov,day,place to become day,pov,place,mood"_s, u"modified"_s,
                          u"fields pov,day,place became day,pov,place,mood"_s}));
    QCOMPARE(model->customMetaDataSettings().ids(),
             QStringList({u"day"_s, u"pov"_s, u"place"_s, u"mood"_s}));
    QCOMPARE(model->customMetaDataSettings().constFirst(), Day);
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstCustomMetaData::theSameFieldsStillMarkAndAnnounce()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setCustomMetaDataSettings({});
    QCOMPARE(log.lines(),
             QStringList({u"fields  to become "_s, u"modified"_s, u"fields  became "_s}));
}

void TstCustomMetaData::fieldsThatWentLeaveAllItems()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 6, {{u"pov"_s, u"Ann"_s}});
    giveValues(model.get(), 4, {{u"day"_s, u"1"_s}, {u"pov"_s, u"Ben"_s}});
    giveValues(model.get(), 5, {{u"day"_s, u"2"_s}});
    giveValues(model.get(), 2, {{u"place"_s, u"Paris"_s}});
    const SignalLog log(model.get());
    model->setCustomMetaDataSettings({Day});
    QCOMPARE(log.lines(),
             QStringList({u"modified"_s, u"fields of 4"_s, u"fields of 6"_s, u"fields of 2"_s,
                          u"fields pov,day,place to become day"_s,
                          u"fields pov,day,place became day"_s}));
    QCOMPARE(touchedIds(model.get()), Ids({4, 6, 2}));
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"day"_s, u"1"_s}}));
    QCOMPARE(valuesOf(model.get(), 5), Values({{u"day"_s, u"2"_s}}));
    QCOMPARE(valuesOf(model.get(), 6), Values());
    QCOMPARE(valuesOf(model.get(), 2), Values());
}

void TstCustomMetaData::fieldsThatWentWithoutValuesTouchNothing()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"day"_s, u"1"_s}});
    const SignalLog log(model.get());
    model->setCustomMetaDataSettings({Day});
    QCOMPARE(log.lines(),
             QStringList({u"fields pov,day,place to become day"_s, u"modified"_s,
                          u"fields pov,day,place became day"_s}));
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstCustomMetaData::changedFieldsKeepTheirValues_data()
{
    QTest::addColumn<QList<TVLMetaDataField>>("fields");
    using Fields = QList<TVLMetaDataField>;
    TVLMetaDataField changed = Pov;
    changed.mTitle = u"Narrator"_s;
    QTest::newRow("another title") << Fields({changed, Day, Place});
    changed.mColor = Qt::green;
    changed.mWraps = true;
    QTest::newRow("another look") << Fields({changed, Day, Place});
    QTest::newRow("another order") << Fields({Place, Pov, Day});
    QTest::newRow("twice") << Fields({Pov, Day, Pov});
}

void TstCustomMetaData::changedFieldsKeepTheirValues()
{
    QFETCH(const QList<TVLMetaDataField>, fields);
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, u"Ann"_s}});
    TVLCustomMetaDataSettings settings;
    settings.append(fields);
    model->setCustomMetaDataSettings(settings);
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"pov"_s, u"Ann"_s}}));
    QCOMPARE(touchedIds(model.get()), Ids());
    QCOMPARE(QList<TVLMetaDataField>(model->customMetaDataSettings()), fields);
}

void TstCustomMetaData::valuesOfNoFieldStay()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"mood"_s, u"dark"_s}});
    model->setCustomMetaDataSettings({});
    QCOMPARE(valuesOf(model.get(), 4), Values({{u"mood"_s, u"dark"_s}}));
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstCustomMetaData::valuesGoBeforeTheFieldsAreAnnounced()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, u"Ann"_s}});
    QList<int> fieldsAtChange;
    connect(model.get(), &TVLProjectModel::customMetaDataChanged, this, [&] {
        QVERIFY(!model->hasCustomMetaData(model->index(4)));
        fieldsAtChange.append(int(model->customMetaDataSettings().size()));
    });
    model->setCustomMetaDataSettings({});
    QCOMPARE(fieldsAtChange, Ids{3});
}

void TstCustomMetaData::theFieldsAreTheOldOnesUntilTheyHaveChanged()
{
    const auto model = modelWithFields();
    QList<QStringList> ids;
    const auto takeIds = [&] { ids.append(model->customMetaDataSettings().ids()); };
    connect(model.get(), &TVLProjectModel::customMetaDataSettingsAboutToBeChanged, this, takeIds);
    connect(model.get(), &TVLProjectModel::modifiedChanged, this, takeIds);
    connect(model.get(), &TVLProjectModel::customMetaDataSettingsChanged, this, takeIds);
    model->setCustomMetaDataSettings({Pov});
    const QList<QStringList> expected = {{u"pov"_s, u"day"_s, u"place"_s}, {u"pov"_s}, {u"pov"_s}};
    QCOMPARE(ids, expected);
}

void TstCustomMetaData::aFieldThatComesBackIsEmpty()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, u"Ann"_s}});
    model->setCustomMetaDataSettings({});
    model->setCustomMetaDataSettings({Pov});
    QCOMPARE(model->customMetaDataInfo(model->index(4), true), Infos{infoOf(Pov, QString())});
}

void TstCustomMetaData::theOutlineHasAColumnForEachField()
{
    const auto model = blankModel();
    QCOMPARE(model->maxOutlineColumns(), 16);
    model->setCustomMetaDataSettings({Pov, Day, Place});
    QCOMPARE(model->maxOutlineColumns(), 19);
    model->setCustomMetaDataSettings({Day});
    QCOMPARE(model->maxOutlineColumns(), 17);
}

// --- Emptying a field

void TstCustomMetaData::aFieldIsEmptiedInAllItems()
{
    const auto model = modelWithFields();
    for (const int id : {6, 5, 1, 4})
        giveValues(model.get(), id, {{u"day"_s, u"1"_s}, {u"pov"_s, u"Ann"_s}});
    const SignalLog log(model.get());
    model->removeCustomMetaDataFromNodes(u"pov"_s);
    QCOMPARE(log.lines(),
             QStringList({u"modified"_s, u"fields of 4"_s, u"fields of 5"_s, u"fields of 6"_s,
                          u"fields of 1"_s}));
    QCOMPARE(touchedIds(model.get()), Ids({4, 5, 6, 1}));
    for (const int id : {6, 5, 1, 4})
        QCOMPARE(valuesOf(model.get(), id), Values({{u"day"_s, u"1"_s}}));
    // The field itself stays.
    QCOMPARE(model->customMetaDataSettings().size(), 3);
}

void TstCustomMetaData::anEmptyValueIsRemovedToo()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, QString()}});
    const SignalLog log(model.get());
    model->removeCustomMetaDataFromNodes(u"pov"_s);
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"fields of 4"_s}));
    QCOMPARE(valuesOf(model.get(), 4), Values());
}

void TstCustomMetaData::emptyingAFieldOfNoItemMarksNothing()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"day"_s, u"1"_s}});
    const SignalLog log(model.get());
    for (const QString &id : {u"pov"_s, u"Day"_s, QString()})
        model->removeCustomMetaDataFromNodes(id);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
    QCOMPARE(touchedIds(model.get()), Ids());
}

void TstCustomMetaData::itemsWithoutIdsAreEmptiedToo()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex first = addItem(model.get(), QModelIndex(), TVL::Text);
    const QModelIndex second = addItem(model.get(), QModelIndex(), TVL::Text);
    QCOMPARE(model->nodeIdentity(first), -1);
    for (const QModelIndex &index : {first, second})
        QVERIFY(model->setCustomMetaData(index, u"pov"_s, u"Ann"_s));
    const QSignalSpy changed(model.get(), &TVLProjectModel::customMetaDataChanged);
    model->removeCustomMetaDataFromNodes(u"pov"_s);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), first);
    QCOMPARE(changed.at(1).at(0).toModelIndex(), second);
    QCOMPARE(model->customMetaData(first), Values());
    QCOMPARE(model->customMetaData(second), Values());
}

void TstCustomMetaData::everyItemIsEmptyWhenItIsAnnounced()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"pov"_s, u"Ann"_s}});
    int calls = 0;
    connect(model.get(), &TVLProjectModel::customMetaDataChanged, this,
            [&](const QModelIndex &index) {
                ++calls;
                QCOMPARE(model->customMetaData(index), Values());
                QVERIFY(isTouched(model.get(), index));
                QVERIFY(model->isModified());
            });
    model->removeCustomMetaDataFromNodes(u"pov"_s);
    QCOMPARE(calls, 1);
}

// --- Fields with values

void TstCustomMetaData::theInfosComeInTheOrderOfTheFields()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4,
               {{u"day"_s, u"1"_s}, {u"place"_s, u"Paris"_s}, {u"pov"_s, u"Ann"_s}});
    const QModelIndex item = model->index(4);
    QCOMPARE(model->customMetaDataInfo(item, false),
             Infos({infoOf(Pov, u"Ann"_s), infoOf(Day, u"1"_s), infoOf(Place, u"Paris"_s)}));
    model->setCustomMetaDataSettings({Place, Pov, Day});
    QCOMPARE(model->customMetaDataInfo(item, false),
             Infos({infoOf(Place, u"Paris"_s), infoOf(Pov, u"Ann"_s), infoOf(Day, u"1"_s)}));
}

void TstCustomMetaData::emptyFieldsAreLeftOut_data()
{
    QTest::addColumn<Values>("values");
    QTest::addColumn<Infos>("all");
    QTest::addColumn<Infos>("withoutEmpty");
    QTest::newRow("no values") << Values()
                               << Infos({infoOf(Pov, {}), infoOf(Day, {}), infoOf(Place, {})})
                               << Infos();
    QTest::newRow("one value") << Values({{u"day"_s, u"1"_s}})
                               << Infos({infoOf(Pov, {}), infoOf(Day, u"1"_s), infoOf(Place, {})})
                               << Infos({infoOf(Day, u"1"_s)});
    QTest::newRow("an empty value")
        << Values({{u"day"_s, u""_s}, {u"place"_s, u" "_s}})
        << Infos({infoOf(Pov, {}), infoOf(Day, {}), infoOf(Place, u" "_s)})
        << Infos({infoOf(Place, u" "_s)});
}

void TstCustomMetaData::emptyFieldsAreLeftOut()
{
    QFETCH(const Values, values);
    const auto model = modelWithFields();
    giveValues(model.get(), 4, values);
    QTEST(model->customMetaDataInfo(model->index(4), true), "all");
    QTEST(model->customMetaDataInfo(model->index(4), false), "withoutEmpty");
    QVERIFY(model->isSaved());
}

void TstCustomMetaData::valuesOfNoFieldHaveNoInfo()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"mood"_s, u"dark"_s}});
    QCOMPARE(model->customMetaDataInfo(model->index(4), false), Infos());
    QCOMPARE(model->customMetaDataInfo(model->index(4), true).size(), 3);
}

void TstCustomMetaData::anInfoHasTheWholeField()
{
    const auto model = modelWithFields();
    giveValues(model.get(), 4, {{u"day"_s, u"1"_s}});
    const TVLCustomMetaDataInfo info = model->customMetaDataInfo(model->index(4), false).value(0);
    QCOMPARE(info.mId, u"day"_s);
    QCOMPARE(info.mTitle, u"Day"_s);
    QVERIFY(info.mWraps);
    QCOMPARE(info.mColor, QColor(Qt::blue));
    QCOMPARE(info.mValue, u"1"_s);
}

void TstCustomMetaData::manyItemsLoseAFieldInOneWalk()
{
    const int Count = testSize(100000);
    const auto model = modelWithFields();
    QVERIFY(model->insertRows(0, Count, model->researchFolder()));
    tvlForEachNode(model->binderRoot(),
                   [](TVLProjectNode *node) { node->mCustomMetaData.insert(u"pov"_s, u"Ann"_s); });
    int calls = 0;
    connect(model.get(), &TVLProjectModel::customMetaDataChanged, this, [&] { ++calls; });
    QElapsedTimer timer;
    timer.start();
    model->setCustomMetaDataSettings({Day});
    qInfo("%d items lost a field in %lld ms", calls, timer.elapsed());
    QCOMPARE(calls, Count + 7);
    QVERIFY(timer.elapsed() < 20000);
}

TVL_TEST(TstCustomMetaData)
#include "tst_custommetadata.moc"
