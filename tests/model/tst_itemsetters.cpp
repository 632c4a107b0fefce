#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Model = TVLProjectModel;

const QUrl SomeUrl(u"https://example.com/a%20b?c=d"_s);

/** A setter with a value, and what it has to leave behind. */
struct Setter
{
    const char *name;
    std::function<bool(Model &, const QModelIndex &)> set;
    std::function<QVariant(const TVLProjectNode &)> stored;
    QVariant value;
    bool touches;
    QStringList signalLines; ///< Of an item with id 3, behind "modified".
};

/** The setter that a member of the model is, with a value to set. */
template <typename Parameter, typename Value>
auto setting(bool (Model::*setter)(const QModelIndex &, Parameter), const Value &value)
{
    return [setter, value](Model &model, const QModelIndex &index) {
        return (model.*setter)(index, value);
    };
}

/** A member of the record as a variant. */
template <typename Value>
auto storing(Value TVLProjectNodeProperties::*member)
{
    return [member](const TVLProjectNode &node) {
        if constexpr (std::is_enum_v<Value>)
            return QVariant(int(node.*member));
        else
            return QVariant::fromValue(node.*member);
    };
}

/** What of a node tells how its image is scaled. */
QVariant scaling(const TVLProjectNode &node)
{
    return QVariantList({node.mImageScaleFactor, node.mImageScalesProportionally});
}

const QList<Setter> &setters()
{
    using IntPair = QPair<int, int>;
    static const QStringList data = {u"data 3"_s};
    static const QList<Setter> rows = {
        {"title", setting(&Model::setTitle, u"A"_s), storing(&TVLProjectNode::mTitle), u"A"_s, true,
         data},
        {"type", setting(&Model::setType, TVL::Folder), storing(&TVLProjectNode::mNodeType), 3,
         true, data},
        {"target type", setting(&Model::setTargetType, TVL::CharactersTarget),
         storing(&TVLProjectNode::mTargetType), 1, true, data},
        {"web address", setting(&Model::setWebUrl, SomeUrl), storing(&TVLProjectNode::mOriginalUrl),
         SomeUrl.toString(), true, data},
        {"custom icon", setting(&Model::setCustomIcon, u"Star"_s),
         storing(&TVLProjectNode::mIconFileName), u"Star"_s, true, data},
        {"actual size",
         [](Model &model, const QModelIndex &index) { return model.setActualSize(index); }, scaling,
         QVariantList({1.0, false}), true, data},
        {"scale", setting(&Model::setScaleFactor, 1.5), scaling, QVariantList({1.5, false}), true,
         data},
        {"label", setting(&Model::setLabelIdentity, 1), storing(&TVLProjectNode::mLabelId), 1, true,
         data},
        {"status", setting(&Model::setStatusIdentity, 5), storing(&TVLProjectNode::mStatusId), 5,
         true, data},
        {"rotation", setting(&Model::setRotation, 3), storing(&TVLProjectNode::mImageRotation), 3,
         false, data},
        {"scale to fit", setting(&Model::setScaleToFit, false),
         storing(&TVLProjectNode::mImageScalesProportionally), false, false, data},
        {"target", setting(&Model::setCountTarget, 500), storing(&TVLProjectNode::mTarget), 500,
         false, data},
        {"in compile", setting(&Model::setIncludeInCompile, false),
         storing(&TVLProjectNode::mIncludeInCompile), false, true, data},
        {"page break", setting(&Model::setPageBreakBefore, true),
         storing(&TVLProjectNode::mPageBreakBefore), true, true, data},
        {"formatting", setting(&Model::setPreserveFormatting, true),
         storing(&TVLProjectNode::mCompileAsIs), true, true, data},
        {"card image", setting(&Model::setShowIndexCardImage, true),
         storing(&TVLProjectNode::mShowSynopsisImage), true, true, data},
        {"text mode",
         setting(&Model::setTextMode, u"Script"_s),
         storing(&TVLProjectNode::mTextMode),
         u"Script"_s,
         true,
         {u"mode Script of 3"_s, u"data 3"_s}},
        {"last modified", setting(&Model::setLastModified, SomeDate),
         storing(&TVLProjectNode::mModified), SomeDate, true, data},
        {"selection",
         setting(&Model::setSelection, IntPair(3, 4)),
         storing(&TVLProjectNode::mTextSelection),
         QVariant::fromValue(IntPair(3, 4)),
         false,
         {}},
    };
    return rows;
}

/** What of a node's record is compared when nothing may have changed. */
TVLProjectNodeProperties recordOf(const Model &model, const QModelIndex &index)
{
    return *model.projectNode(index);
}

} // namespace

class TstItemSetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueIsStoredAndAnnounced_data() { setterRows(); }
    void aValueIsStoredAndAnnounced();
    void anEqualValueHasNoEffect_data() { setterRows(); }
    void anEqualValueHasNoEffect();
    void anIndexOfAnotherModelIsRefused_data() { setterRows(); }
    void anIndexOfAnotherModelIsRefused();
    void anInvalidIndexStandsForTheRootAndIsNotAnnounced_data() { setterRows(); }
    void anInvalidIndexStandsForTheRootAndIsNotAnnounced();
    void theValueIsThereWhenItIsAnnounced();
    void anEqualIdOfADeletedLabelIsSetAnew();
    void anEqualIdOfADeletedStatusItemIsSetAnew();
    void noLabelIsKnownToo();
    void actualSizeTurnsScalingToFitOff();
    void anEqualScaleTurnsScalingToFitOff();
    void aScaleIsEqualButForRounding();
    void theGeneralModeIsTheEmptyOne_data();
    void theGeneralModeIsTheEmptyOne();
    void aWebAddressIsComparedAsAnAddress();
    void aStoredAddressThatIsNoneCanBeCleared();
    void unknownIdsAreVerifiedAway_data();
    void unknownIdsAreVerifiedAway();
    void verifyingAnIndexOfAnotherModelIsRefused();

private:
    static void setterRows();
};

void TstItemSetters::setterRows()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < setters().size(); ++row)
        QTest::newRow(setters().at(row).name) << row;
}

void TstItemSetters::aValueIsStoredAndAnnounced()
{
    QFETCH(const int, row);
    const Setter &setter = setters().at(row);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(setter.set(*model, index));
    QCOMPARE(setter.stored(*model->projectNode(index)), setter.value);
    QCOMPARE(log.lines(), QStringList({u"modified"_s}) + setter.signalLines);
    QCOMPARE(isTouched(model.get(), index), setter.touches);
    QCOMPARE(touchedIds(model.get()).size(), setter.touches ? 1 : 0);
    QVERIFY(model->isModified());
}

void TstItemSetters::anEqualValueHasNoEffect()
{
    QFETCH(const int, row);
    const Setter &setter = setters().at(row);
    const auto source = blankModel();
    setter.set(*source, firstText(source.get()));
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->applyAllPreserveIDs(recordOf(*source, firstText(source.get())));
    const TVLProjectNodeProperties before = recordOf(*model, index);
    const SignalLog log(model.get());
    QVERIFY(setter.set(*model, index));
    QVERIFY(recordOf(*model, index) == before);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!model->isModified());
}

void TstItemSetters::anIndexOfAnotherModelIsRefused()
{
    QFETCH(const int, row);
    const Setter &setter = setters().at(row);
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex foreign = firstText(other.get());
    const TVLProjectNodeProperties before = recordOf(*other, foreign);
    const SignalLog log(model.get());
    const SignalLog otherLog(other.get());
    QVERIFY(!setter.set(*model, foreign));
    QVERIFY(recordOf(*other, foreign) == before);
    QCOMPARE(log.lines() + otherLog.lines(), QStringList());
    QVERIFY(!model->isModified());
    QVERIFY(!other->isModified());
}

void TstItemSetters::anInvalidIndexStandsForTheRootAndIsNotAnnounced()
{
    QFETCH(const int, row);
    const Setter &setter = setters().at(row);
    const auto model = blankModel();
    const QSignalSpy dataSpy(model.get(), &Model::dataChanged);
    QVERIFY(setter.set(*model, QModelIndex()));
    QCOMPARE(setter.stored(*model->binderRoot()), setter.value);
    QVERIFY(model->isModified());
    QCOMPARE(dataSpy.count(), 0);
}

void TstItemSetters::theValueIsThereWhenItIsAnnounced()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    makeAllOld(model.get());
    QStringList seen;
    connect(model.get(), &Model::modifiedChanged, this,
            [&] { seen.append(model->textMode(index)); });
    connect(model.get(), &Model::formatModeChanged, this,
            [&] { seen.append(isTouched(model.get(), index) ? u"touched"_s : u"not touched"_s); });
    QVERIFY(model->setTextMode(index, u"Script"_s));
    QCOMPARE(seen, QStringList({u"Script"_s, u"touched"_s}));
}

void TstItemSetters::anEqualIdOfADeletedLabelIsSetAnew()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mLabelId = 99;
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setLabelIdentity(index, 99));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QVERIFY(isTouched(model.get(), index));
    QCOMPARE(model->labelIdentity(index), 99);
}

void TstItemSetters::anEqualIdOfADeletedStatusItemIsSetAnew()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mStatusId = 99;
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setStatusIdentity(index, 99));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QVERIFY(isTouched(model.get(), index));
}

void TstItemSetters::noLabelIsKnownToo()
{
    const auto model = blankModel();
    QVERIFY(model->setLabelIdentity(firstText(model.get()), -1));
    QVERIFY(model->setStatusIdentity(firstText(model.get()), -1));
    QVERIFY(!model->isModified());
}

void TstItemSetters::actualSizeTurnsScalingToFitOff()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setScaleFactor(index, 3));
    QVERIFY(model->setScaleToFit(index, true));
    QCOMPARE(model->scaleFactor(index), 3.0);
    QVERIFY(model->setActualSize(index));
    QCOMPARE(model->scaleFactor(index), 1.0);
    QVERIFY(!model->scaleToFit(index));
}

void TstItemSetters::anEqualScaleTurnsScalingToFitOff()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setScaleFactor(index, 3));
    QVERIFY(model->setScaleToFit(index, true));
    QVERIFY(model->setScaleFactor(index, 3));
    QVERIFY(!model->scaleToFit(index));
}

void TstItemSetters::aScaleIsEqualButForRounding()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    TVLProjectNode *node = model->projectNode(index);
    node->mImageScaleFactor = 0.1 + 0.2;
    node->mImageScalesProportionally = false;
    QVERIFY(model->setScaleFactor(index, 0.3));
    QVERIFY(!model->isModified());
    QVERIFY(model->setScaleFactor(index, 0.3001));
    QVERIFY(model->isModified());
    QCOMPARE(node->mImageScaleFactor, 0.3001);
}

void TstItemSetters::theGeneralModeIsTheEmptyOne_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("isChange");
    QTest::newRow("General for empty") << QString() << u"General"_s << false;
    QTest::newRow("empty for General") << u"General"_s << QString() << false;
    QTest::newRow("empty for empty") << QString() << QString() << false;
    QTest::newRow("empty for another") << u"Script"_s << QString() << true;
    QTest::newRow("General for another") << u"Script"_s << u"General"_s << true;
    QTest::newRow("another for empty") << QString() << u"Poem"_s << true;
}

void TstItemSetters::theGeneralModeIsTheEmptyOne()
{
    QFETCH(const QString, stored);
    QFETCH(const QString, mode);
    QFETCH(const bool, isChange);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mTextMode = stored;
    const QSignalSpy modeSpy(model.get(), &Model::formatModeChanged);
    QVERIFY(model->setTextMode(index, mode));
    QCOMPARE(model->textMode(index), isChange ? mode : stored);
    QCOMPARE(modeSpy.count(), isChange ? 1 : 0);
    QCOMPARE(model->isModified(), isChange);
}

void TstItemSetters::aWebAddressIsComparedAsAnAddress()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mOriginalUrl = u"HTTPS://Example.com/a b"_s;
    QVERIFY(model->setWebUrl(index, model->webUrl(index)));
    QVERIFY(!model->isModified());
    QVERIFY(model->setWebUrl(index, SomeUrl));
    QCOMPARE(model->webUrl(index), SomeUrl);
    QVERIFY(model->setWebUrl(index, QUrl()));
    QCOMPARE(model->projectNode(index)->mOriginalUrl, QString());
}

void TstItemSetters::aStoredAddressThatIsNoneCanBeCleared()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mOriginalUrl = u"http://[nowhere"_s;
    QVERIFY(!model->webUrl(index).isValid());
    QVERIFY(model->setWebUrl(index, QUrl()));
    QCOMPARE(model->projectNode(index)->mOriginalUrl, QString());
    QVERIFY(model->isModified());
}

void TstItemSetters::unknownIdsAreVerifiedAway_data()
{
    QTest::addColumn<int>("label");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("labelAfter");
    QTest::addColumn<int>("statusAfter");
    QTest::newRow("both known") << 1 << 5 << 1 << 5;
    QTest::newRow("none") << -1 << -1 << -1 << -1;
    QTest::newRow("label unknown") << 42 << 5 << -1 << 5;
    QTest::newRow("status unknown") << 1 << 42 << 1 << -1;
    QTest::newRow("both unknown") << 42 << -7 << -1 << -1;
}

void TstItemSetters::unknownIdsAreVerifiedAway()
{
    QFETCH(const int, label);
    QFETCH(const int, status);
    QFETCH(const int, labelAfter);
    QFETCH(const int, statusAfter);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->verifyLabelStatusIdentity(index, label, status));
    QCOMPARE(model->labelIdentity(index), labelAfter);
    QCOMPARE(model->statusIdentity(index), statusAfter);

    TVLProjectNodeProperties properties;
    properties.mLabelId = label;
    properties.mStatusId = status;
    QCOMPARE(model->verifyLabelStatusIdentity(&properties),
             label == labelAfter && status == statusAfter);
    QCOMPARE(properties.mLabelId, labelAfter);
    QCOMPARE(properties.mStatusId, statusAfter);
}

void TstItemSetters::verifyingAnIndexOfAnotherModelIsRefused()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->verifyLabelStatusIdentity(firstText(other.get()), 1, 1));
    QCOMPARE(other->labelIdentity(firstText(other.get())), -1);
}

TVL_TEST(TstItemSetters)
#include "tst_itemsetters.moc"
