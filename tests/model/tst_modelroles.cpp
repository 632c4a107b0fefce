#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QColor>
#include <QIcon>
#include <QPointF>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QUuid SomeUuid = QUuid(u"{11111111-2222-3333-4444-555555555555}"_s);
const QDateTime LaterDate = QDateTime(QDate(2020, 5, 6), QTime(7, 8, 9));

/** An item with a value of its own for each role. */
QModelIndex filledItem(TVLProjectModel *model)
{
    TVLProjectNode *node =
        model->insertNode(-1, model->researchFolder(), TVL::PDF, QString(), u"A <b> title"_s);
    model->changeIndexUuid(model->createIndex(node), SomeUuid);
    node->mLabelId = 1;
    node->mStatusId = 5;
    node->mCreated = SomeDate;
    node->mModified = LaterDate;
    node->mIsTemplateFolder = true;
    node->mIsFavorite = true;
    node->mKeywords = {7, 3, 9};
    return model->createIndex(node);
}

} // namespace

class TstModelRoles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRoleGivesItsValue_data();
    void everyRoleGivesItsValue();
    void everyRoleOfANewItemGivesItsDefault_data();
    void everyRoleOfANewItemGivesItsDefault();
    void anEmptyTitleIsShownAsUntitledAndEditedAsEmpty();
    void theToolTipIsTheSynopsis();
    void theToolTipReadsTheSynopsisFromItsFile();
    void theToolTipOfASystemFolderIsEmpty();
    void theDecorationIsAnIcon();
    void otherRolesGiveNothing_data();
    void otherRolesGiveNothing();
    void anIndexWithoutNodeGivesNothing_data();
    void anIndexWithoutNodeGivesNothing();
    void aSetRoleIsStored_data();
    void aSetRoleIsStored();
    void anUnsuitableValueIsRefused_data();
    void anUnsuitableValueIsRefused();
    void someRolesCannotBeSet_data();
    void someRolesCannotBeSet();
    void anIndexWithoutNodeTakesNothing_data();
    void anIndexWithoutNodeTakesNothing();
    void settingTheFavoriteRolePutsTheItemInFront();
    void anEqualValueIsTakenWithoutEffect_data();
    void anEqualValueIsTakenWithoutEffect();
    void anEqualIdOfAMissingLabelIsRepaired();
    void anEqualIdOfAMissingStatusItemIsRepaired();
    void settersOnAnIndexOfAnotherModelAreRefused();
    void accessorsOnAnIndexOfAnotherModelGiveTheirDefaults();
    void accessorsOnAnInvalidIndexAnswerForTheRoot();
    void titleSubstitutesUntitledOnRequest();
    void theNumbersOfTheRolesAreFixed_data();
    void theNumbersOfTheRolesAreFixed();
    void theNumbersOfTheColumnsAreFixed_data();
    void theNumbersOfTheColumnsAreFixed();
    void withoutCustomFieldsThereAreSixteenOutlineColumns();
    void theTextModesAreGeneralAndScript();
    void theModelHasItsNameAndPathAsProperties();
};

void TstModelRoles::everyRoleGivesItsValue_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    const QString title = u"A <b> title"_s;
    QTest::newRow("display") << int(Qt::DisplayRole) << QVariant(title);
    QTest::newRow("edit") << int(Qt::EditRole) << QVariant(title);
    QTest::newRow("uuid") << 133 << QVariant::fromValue(SomeUuid);
    QTest::newRow("type") << 134 << QVariant(6);
    QTest::newRow("label") << 135 << QVariant(1);
    QTest::newRow("status") << 136 << QVariant(5);
    QTest::newRow("created") << 137 << QVariant(SomeDate);
    QTest::newRow("modified") << 138 << QVariant(LaterDate);
    QTest::newRow("template folder") << 139 << QVariant(true);
    QTest::newRow("favorite") << 140 << QVariant(true);
    QTest::newRow("keywords") << 141 << QVariant(QVariantList({7, 3, 9}));
}

void TstModelRoles::everyRoleGivesItsValue()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, expected);
    const auto model = blankModel();
    const QModelIndex index = filledItem(model.get());
    const QVariant value = model->data(index, role);
    QCOMPARE(value, expected);
    QCOMPARE(value.typeId(), expected.typeId());
    QCOMPARE(model->data(index, TVLProjectModel::NodeIdRole), QVariant(model->nodeIdentity(index)));
}

void TstModelRoles::everyRoleOfANewItemGivesItsDefault_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("display") << int(Qt::DisplayRole) << QVariant(u"Untitled"_s);
    QTest::newRow("edit") << int(Qt::EditRole) << QVariant(QString());
    QTest::newRow("tool tip") << int(Qt::ToolTipRole) << QVariant(QString());
    QTest::newRow("id") << 132 << QVariant(3);
    QTest::newRow("type") << 134 << QVariant(4);
    QTest::newRow("label") << 135 << QVariant(-1);
    QTest::newRow("status") << 136 << QVariant(-1);
    QTest::newRow("template folder") << 139 << QVariant(false);
    QTest::newRow("favorite") << 140 << QVariant(false);
    QTest::newRow("keywords") << 141 << QVariant(QVariantList());
}

void TstModelRoles::everyRoleOfANewItemGivesItsDefault()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, expected);
    const TestProject project;
    const auto model = project.create();
    const QVariant value = model->data(firstText(model.get()), role);
    QCOMPARE(value, expected);
    QCOMPARE(value.typeId(), expected.typeId());
}

void TstModelRoles::anEmptyTitleIsShownAsUntitledAndEditedAsEmpty()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setTitle(index, u"Named"_s));
    QCOMPARE(model->data(index), QVariant(u"Named"_s));
    QVERIFY(model->setTitle(index, QString()));
    QCOMPARE(model->data(index), QVariant(TVLProjectModel::trUntitledTitle()));
    QCOMPARE(model->data(index), QVariant(u"Untitled"_s));
    QCOMPARE(model->data(index, Qt::EditRole), QVariant(QString()));
}

void TstModelRoles::theToolTipIsTheSynopsis()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"a < b\nand c"_s));
    QCOMPARE(model->data(index, Qt::ToolTipRole),
             QVariant(TVL::toHtmlTooltipFormat(u"a < b\nand c"_s)));
}

void TstModelRoles::theToolTipReadsTheSynopsisFromItsFile()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "from the file");
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->data(index, Qt::ToolTipRole),
             QVariant(TVL::toHtmlTooltipFormat(u"from the file"_s)));
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({model->findNode(3)}));
    QVERIFY(model->isSaved());
}

void TstModelRoles::theToolTipOfASystemFolderIsEmpty()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/0_synopsis.txt"_s, "never shown");
    QCOMPARE(model->data(model->draftFolder(), Qt::ToolTipRole), QVariant(QString()));
    QVERIFY(model->loadedNodes().isEmpty());
}

void TstModelRoles::theDecorationIsAnIcon()
{
    const auto model = blankModel();
    QCOMPARE(model->data(firstText(model.get()), Qt::DecorationRole).typeId(),
             int(QMetaType::QIcon));
}

void TstModelRoles::otherRolesGiveNothing_data()
{
    QTest::addColumn<int>("role");
    QTest::newRow("status tip") << int(Qt::StatusTipRole);
    QTest::newRow("font") << int(Qt::FontRole);
    QTest::newRow("alignment") << int(Qt::TextAlignmentRole);
    QTest::newRow("check state") << int(Qt::CheckStateRole);
    QTest::newRow("size hint") << int(Qt::SizeHintRole);
    QTest::newRow("before the first") << 131;
    QTest::newRow("behind the last") << 142;
    QTest::newRow("user") << int(Qt::UserRole);
    QTest::newRow("negative") << -1;
}

void TstModelRoles::otherRolesGiveNothing()
{
    QFETCH(const int, role);
    const auto model = blankModel();
    QCOMPARE(model->data(model->draftFolder(), role), QVariant());
    QVERIFY(!model->data(model->draftFolder(), role).isValid());
}

namespace {

void addRoles()
{
    QTest::addColumn<int>("role");
    for (const int role : {0, 1, 2, 3})
        QTest::addRow("%d", role) << role;
    for (int role = 132; role <= 142; ++role)
        QTest::addRow("%d", role) << role;
}

} // namespace

void TstModelRoles::anIndexWithoutNodeGivesNothing_data()
{
    addRoles();
}

void TstModelRoles::anIndexWithoutNodeGivesNothing()
{
    QFETCH(const int, role);
    const auto model = blankModel();
    const QStringListModel other({u"text"_s});
    QVERIFY(!model->data(QModelIndex(), role).isValid());
    QVERIFY(!model->data(model->rootIndex(), role).isValid());
    QVERIFY(!model->data(other.index(0), role).isValid());
}

void TstModelRoles::aSetRoleIsStored_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("display") << int(Qt::DisplayRole) << QVariant(u"x"_s) << QVariant(u"x"_s);
    QTest::newRow("edit") << int(Qt::EditRole) << QVariant(u"x"_s) << QVariant(u"x"_s);
    QTest::newRow("title from a number") << int(Qt::EditRole) << QVariant(12) << QVariant(u"12"_s);
    QTest::newRow("type") << int(TVLProjectModel::NodeTypeRole) << QVariant(3) << QVariant(3);
    QTest::newRow("type from a text")
        << int(TVLProjectModel::NodeTypeRole) << QVariant(u"8"_s) << QVariant(8);
    QTest::newRow("label") << int(TVLProjectModel::LabelIdRole) << QVariant(1) << QVariant(1);
    QTest::newRow("label from a text")
        << int(TVLProjectModel::LabelIdRole) << QVariant(u"0"_s) << QVariant(0);
    QTest::newRow("label from a fraction")
        << int(TVLProjectModel::LabelIdRole) << QVariant(1.0) << QVariant(1);
    QTest::newRow("label that is unknown")
        << int(TVLProjectModel::LabelIdRole) << QVariant(77) << QVariant(77);
    QTest::newRow("status") << int(TVLProjectModel::StatusIdRole) << QVariant(4) << QVariant(4);
    QTest::newRow("status from a text")
        << int(TVLProjectModel::StatusIdRole) << QVariant(u"2"_s) << QVariant(2);
    QTest::newRow("favorite") << int(TVLProjectModel::FavoriteRole) << QVariant(true)
                              << QVariant(true);
    QTest::newRow("favorite from a number")
        << int(TVLProjectModel::FavoriteRole) << QVariant(1) << QVariant(true);
    QTest::newRow("favorite from a text")
        << int(TVLProjectModel::FavoriteRole) << QVariant(u"true"_s) << QVariant(true);
    QTest::newRow("keywords") << int(TVLProjectModel::KeywordIdsRole)
                              << QVariant(QVariantList({4, 2})) << QVariant(QVariantList({4, 2}));
    QTest::newRow("keywords from texts")
        << int(TVLProjectModel::KeywordIdsRole) << QVariant(QStringList({u"4"_s, u"2"_s}))
        << QVariant(QVariantList({4, 2}));
    QTest::newRow("keywords of mixed kinds")
        << int(TVLProjectModel::KeywordIdsRole)
        << QVariant(QVariantList({u"4"_s, 2.0, u"no number"_s}))
        << QVariant(QVariantList({4, 2, 0}));
}

void TstModelRoles::aSetRoleIsStored()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    QFETCH(const QVariant, stored);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    makeAllOld(model.get());
    QSignalSpy changed(model.get(), &TVLProjectModel::dataChanged);

    QVERIFY(model->setData(index, value, role));
    QCOMPARE(model->data(index, role), stored);
    QVERIFY(model->isModified());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), index);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), index);
    QCOMPARE(touchedIds(model.get()), QList<int>({3}));
}

void TstModelRoles::anUnsuitableValueIsRefused_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("title from nothing") << int(Qt::EditRole) << QVariant();
    QTest::newRow("title from a point") << int(Qt::EditRole) << QVariant(QPointF(1, 2));
    QTest::newRow("display from nothing") << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("type from nothing") << int(TVLProjectModel::NodeTypeRole) << QVariant();
    QTest::newRow("type from a point")
        << int(TVLProjectModel::NodeTypeRole) << QVariant(QPointF(1, 2));
    QTest::newRow("label from nothing") << int(TVLProjectModel::LabelIdRole) << QVariant();
    QTest::newRow("label from a point")
        << int(TVLProjectModel::LabelIdRole) << QVariant(QPointF(1, 2));
    QTest::newRow("status from nothing") << int(TVLProjectModel::StatusIdRole) << QVariant();
    QTest::newRow("status from a point")
        << int(TVLProjectModel::StatusIdRole) << QVariant(QPointF(1, 2));
    QTest::newRow("favorite from nothing") << int(TVLProjectModel::FavoriteRole) << QVariant();
    QTest::newRow("favorite from a point")
        << int(TVLProjectModel::FavoriteRole) << QVariant(QPointF(1, 2));
    QTest::newRow("keywords from nothing") << int(TVLProjectModel::KeywordIdsRole) << QVariant();
    QTest::newRow("keywords from a number") << int(TVLProjectModel::KeywordIdsRole) << QVariant(4);
    QTest::newRow("keywords from a point")
        << int(TVLProjectModel::KeywordIdsRole) << QVariant(QPointF(1, 2));
}

namespace {

/** What a refused change must leave alone. */
struct Untouched
{
    explicit Untouched(TVLProjectModel *testedModel)
        : model(testedModel)
        , log(testedModel)
    {
        makeAllOld(model);
    }

    [[nodiscard]] bool holds() const
    {
        return model->isSaved() && log.lines().isEmpty() && touchedIds(model).isEmpty();
    }

    TVLProjectModel *model;
    SignalLog log;
};

} // namespace

void TstModelRoles::anUnsuitableValueIsRefused()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    const auto model = blankModel();
    const Untouched untouched(model.get());
    const QVariant before = model->data(firstText(model.get()), role);
    QVERIFY(!model->setData(firstText(model.get()), value, role));
    QCOMPARE(model->data(firstText(model.get()), role), before);
    QVERIFY(untouched.holds());
}

void TstModelRoles::someRolesCannotBeSet_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("decoration") << int(Qt::DecorationRole) << QVariant(QIcon());
    QTest::newRow("tool tip") << int(Qt::ToolTipRole) << QVariant(u"x"_s);
    QTest::newRow("id") << int(TVLProjectModel::NodeIdRole) << QVariant(9);
    QTest::newRow("uuid") << int(TVLProjectModel::NodeUuidRole) << QVariant::fromValue(SomeUuid);
    QTest::newRow("created") << int(TVLProjectModel::CreatedRole) << QVariant(SomeDate);
    QTest::newRow("modified") << int(TVLProjectModel::ModifiedRole) << QVariant(SomeDate);
    QTest::newRow("template folder") << int(TVLProjectModel::TemplateFolderRole) << QVariant(true);
    QTest::newRow("unknown role") << 142 << QVariant(1);
    QTest::newRow("unknown role before the first") << 131 << QVariant(1);
    QTest::newRow("role of Qt") << int(Qt::CheckStateRole) << QVariant(1);
}

void TstModelRoles::someRolesCannotBeSet()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    const auto model = blankModel();
    const Untouched untouched(model.get());
    const QModelIndex index = firstText(model.get());
    const QVariant before = model->data(index, role);
    QVERIFY(!model->setData(index, value, role));
    if (role != Qt::DecorationRole)
        QCOMPARE(model->data(index, role), before);
    QVERIFY(untouched.holds());
}

void TstModelRoles::anIndexWithoutNodeTakesNothing_data()
{
    addRoles();
}

void TstModelRoles::anIndexWithoutNodeTakesNothing()
{
    QFETCH(const int, role);
    const auto model = blankModel();
    const auto other = blankModel();
    const Untouched untouched(model.get());
    const Untouched otherUntouched(other.get());
    for (const QVariant &value : {QVariant(1), QVariant(QVariantList{QVariant(1)})}) {
        QVERIFY(!model->setData(QModelIndex(), value, role));
        QVERIFY(!model->setData(model->rootIndex(), value, role));
        QVERIFY(!model->setData(firstText(other.get()), value, role));
    }
    QVERIFY(untouched.holds());
    QVERIFY(otherUntouched.holds());
}

void TstModelRoles::settingTheFavoriteRolePutsTheItemInFront()
{
    const auto model = blankModel();
    const QModelIndex first = model->draftFolder();
    const QModelIndex second = model->researchFolder();
    QVERIFY(model->setData(first, true, TVLProjectModel::FavoriteRole));
    QVERIFY(model->setData(second, true, TVLProjectModel::FavoriteRole));
    makeAllOld(model.get());
    // The front of the list takes it without effect, any other place moves it there.
    QVERIFY(model->setData(second, true, TVLProjectModel::FavoriteRole));
    QCOMPARE(touchedIds(model.get()), QList<int>());
    QVERIFY(model->setData(first, true, TVLProjectModel::FavoriteRole));
    QCOMPARE(touchedIds(model.get()), QList<int>({0}));
    QVERIFY(model->setData(first, false, TVLProjectModel::FavoriteRole));
    QCOMPARE(model->data(first, TVLProjectModel::FavoriteRole), QVariant(false));
}

void TstModelRoles::anEqualValueIsTakenWithoutEffect_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("title") << int(Qt::EditRole) << QVariant(u"Draft"_s);
    QTest::newRow("display") << int(Qt::DisplayRole) << QVariant(u"Draft"_s);
    QTest::newRow("type") << int(TVLProjectModel::NodeTypeRole) << QVariant(0);
    QTest::newRow("label") << int(TVLProjectModel::LabelIdRole) << QVariant(-1);
    QTest::newRow("status") << int(TVLProjectModel::StatusIdRole) << QVariant(-1);
    QTest::newRow("keywords") << int(TVLProjectModel::KeywordIdsRole) << QVariant(QVariantList());
}

void TstModelRoles::anEqualValueIsTakenWithoutEffect()
{
    QFETCH(const int, role);
    QFETCH(const QVariant, value);
    const auto model = blankModel();
    const Untouched untouched(model.get());
    QVERIFY(model->setData(model->draftFolder(), value, role));
    QVERIFY(untouched.holds());
}

void TstModelRoles::anEqualIdOfAMissingLabelIsRepaired()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mLabelId = 40;
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setLabelIdentity(index, 40));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QCOMPARE(touchedIds(model.get()), QList<int>({3}));
}

void TstModelRoles::anEqualIdOfAMissingStatusItemIsRepaired()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mStatusId = 40;
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(model->setStatusIdentity(index, 40));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QCOMPARE(touchedIds(model.get()), QList<int>({3}));
}

void TstModelRoles::settersOnAnIndexOfAnotherModelAreRefused()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const Untouched untouched(model.get());
    const Untouched otherUntouched(other.get());
    const QModelIndex index = firstText(other.get());
    QVERIFY(!model->setTitle(index, u"x"_s));
    QVERIFY(!model->setType(index, TVL::Folder));
    QVERIFY(!model->setLabelIdentity(index, 1));
    QVERIFY(!model->setStatusIdentity(index, 1));
    QVERIFY(!model->setKeywordIds(index, {1}));
    QVERIFY(!model->setFavorite(index, true, true));
    QVERIFY(!model->addToFavorites(index, true));
    QVERIFY(!model->removeFromFavorites(index));
    QVERIFY(untouched.holds());
    QVERIFY(otherUntouched.holds());
}

void TstModelRoles::accessorsOnAnIndexOfAnotherModelGiveTheirDefaults()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex index = filledItem(other.get());
    QCOMPARE(int(model->type(index)), int(TVL::Other));
    QCOMPARE(model->title(index), QString());
    QCOMPARE(model->title(index, true), QString());
    QCOMPARE(model->nodeIdentity(index), -1);
    QCOMPARE(model->nodeUuid(index), QUuid());
    QCOMPARE(model->labelIdentity(index), -1);
    QCOMPARE(model->statusIdentity(index), -1);
    QCOMPARE(model->isFavorite(index), false);
    QCOMPARE(model->keywordIds(index), QList<int>());
    QCOMPARE(model->synopsis(index), QString());
    QVERIFY(model->icon(index).isNull());
}

void TstModelRoles::accessorsOnAnInvalidIndexAnswerForTheRoot()
{
    const auto model = blankModel();
    TVLProjectNode *root = model->binderRoot();
    root->mTitle = u"hidden"_s;
    root->mLabelId = 1;
    root->mStatusId = 2;
    for (const QModelIndex &index : {QModelIndex(), model->rootIndex()}) {
        QCOMPARE(model->title(index), u"hidden"_s);
        QCOMPARE(model->nodeIdentity(index), -1);
        QCOMPARE(model->nodeUuid(index), root->mUuid);
        QCOMPARE(model->labelIdentity(index), 1);
        QCOMPARE(model->statusIdentity(index), 2);
        QCOMPARE(int(model->type(index)), int(root->mNodeType));
    }
}

void TstModelRoles::titleSubstitutesUntitledOnRequest()
{
    const auto model = blankModel();
    QCOMPARE(model->title(firstText(model.get())), QString());
    QCOMPARE(model->title(firstText(model.get()), true), u"Untitled"_s);
    QCOMPARE(model->title(model->draftFolder(), true), u"Draft"_s);
}

void TstModelRoles::theNumbersOfTheRolesAreFixed_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<int>("number");
    QTest::newRow("id") << int(TVLProjectModel::NodeIdRole) << 132;
    QTest::newRow("uuid") << int(TVLProjectModel::NodeUuidRole) << 133;
    QTest::newRow("type") << int(TVLProjectModel::NodeTypeRole) << 134;
    QTest::newRow("label") << int(TVLProjectModel::LabelIdRole) << 135;
    QTest::newRow("status") << int(TVLProjectModel::StatusIdRole) << 136;
    QTest::newRow("created") << int(TVLProjectModel::CreatedRole) << 137;
    QTest::newRow("modified") << int(TVLProjectModel::ModifiedRole) << 138;
    QTest::newRow("template folder") << int(TVLProjectModel::TemplateFolderRole) << 139;
    QTest::newRow("favorite") << int(TVLProjectModel::FavoriteRole) << 140;
    QTest::newRow("keywords") << int(TVLProjectModel::KeywordIdsRole) << 141;
}

void TstModelRoles::theNumbersOfTheRolesAreFixed()
{
    QFETCH(const int, role);
    QFETCH(const int, number);
    QCOMPARE(role, number);
}

void TstModelRoles::theNumbersOfTheColumnsAreFixed_data()
{
    QTest::addColumn<TVL::Columns>("column");
    QTest::addColumn<int>("number");
    QTest::newRow("title") << TVL::TitleColumn << 0;
    QTest::newRow("synopsis") << TVL::SynopsisColumn << 1;
    QTest::newRow("label") << TVL::LabelColumn << 2;
    QTest::newRow("status") << TVL::StatusColumn << 3;
    QTest::newRow("created") << TVL::CreatedColumn << 4;
    QTest::newRow("modified") << TVL::ModifiedColumn << 5;
    QTest::newRow("words") << TVL::WordCountColumn << 6;
    QTest::newRow("characters") << TVL::CharacterCountColumn << 7;
    QTest::newRow("total words") << TVL::TotalWordCountColumn << 8;
    QTest::newRow("total characters") << TVL::TotalCharacterCountColumn << 9;
    QTest::newRow("include in compile") << TVL::IncludeInCompileColumn << 10;
    QTest::newRow("page break before") << TVL::PageBreakBeforeColumn << 11;
    QTest::newRow("preserve formatting") << TVL::PreserveFormattingColumn << 12;
    QTest::newRow("target") << TVL::TargetColumn << 13;
    QTest::newRow("target type") << TVL::TargetTypeColumn << 14;
    QTest::newRow("progress") << TVL::ProgressColumn << 15;
    QTest::newRow("first custom field") << TVL::FirstCustomColumn << 16;
}

void TstModelRoles::theNumbersOfTheColumnsAreFixed()
{
    QFETCH(const TVL::Columns, column);
    QFETCH(const int, number);
    QCOMPARE(int(column), number);
}

void TstModelRoles::withoutCustomFieldsThereAreSixteenOutlineColumns()
{
    QCOMPARE(emptyModel()->maxOutlineColumns(), 16);
    QCOMPARE(blankModel()->maxOutlineColumns(), 16);
}

void TstModelRoles::theTextModesAreGeneralAndScript()
{
    QCOMPARE(TVLProjectModel::GeneralFormatMode, u"General"_s);
    QCOMPARE(TVLProjectModel::ScriptFormatMode, u"Script"_s);
}

void TstModelRoles::theModelHasItsNameAndPathAsProperties()
{
    const auto model = blankModel();
    QCOMPARE(model->property("name"), QVariant(u"Novel"_s));
    QCOMPARE(model->property("path").value<QDir>(), QDir(unsavedProjectPath()));
    QCOMPARE(model->property("path").value<QDir>(), model->path());
    const QMetaObject *meta = model->metaObject();
    QVERIFY(!meta->property(meta->indexOfProperty("path")).isWritable());

    const SignalLog log(model.get());
    QVERIFY(model->setProperty("name", u"Novel"_s));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->setProperty("name", u"Other"_s));
    QCOMPARE(model->name(), u"Other"_s);
    QCOMPARE(log.lines(), QStringList({u"modified"_s}));
}

TVL_TEST(TstModelRoles)
#include "tst_modelroles.moc"
