#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** A blank project with a folder of id 4 that holds a text of id 5, and a folder of id 6. */
struct Fixture
{
    Fixture()
        : model(blankModel())
    {
        first = addItem(model.get(), model->researchFolder(), TVL::Folder, u"First"_s);
        text = addItem(model.get(), first, TVL::Text, u"Text"_s);
        second = addItem(model.get(), model->researchFolder(), TVL::Folder, u"Second"_s);
        makeAllOld(model.get());
    }

    TestModel model;
    QModelIndex first;
    QModelIndex text;
    QModelIndex second;
};

bool isMarked(const TVLProjectModel *model, const QModelIndex &index)
{
    return model->data(index, TVLProjectModel::TemplateFolderRole).toBool();
}

} // namespace

class TstTemplateFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProjectHasNoTemplateFolderAtFirst();
    void aFolderBecomesTheTemplateFolder();
    void anotherFolderTakesOver();
    void theTemplateFolderIsGivenUp();
    void theSameFolderAgainDoesNothing();
    void givingUpWithoutOneDoesNothing();
    void theSignalCarriesNewAndOldIndex();
    void whatTheTemplateFolderContains();
    void anAdoptedFolderIsTakenSilently();
    void anUnknownFolderIsNotAdopted();
    void theTemplateFolderSurvivesSaveAndReopen();
};

void TstTemplateFolder::aProjectHasNoTemplateFolderAtFirst()
{
    const auto model = blankModel();
    QCOMPARE(model->templateFolder(), QModelIndex());
    QCOMPARE(model->templateFolderUuid(), QUuid());
}

void TstTemplateFolder::aFolderBecomesTheTemplateFolder()
{
    Fixture fixture;
    const SignalLog log(fixture.model.get());
    fixture.model->setTemplateFolder(fixture.first);
    QCOMPARE(fixture.model->templateFolder(), fixture.first);
    QCOMPARE(fixture.model->templateFolderUuid(), fixture.model->nodeUuid(fixture.first));
    QVERIFY(isMarked(fixture.model.get(), fixture.first));
    QCOMPARE(touchedIds(fixture.model.get()), QList<int>({4}));
    QCOMPARE(log.lines(),
             QStringList({u"data 4"_s, u"data 5"_s, u"modified"_s, u"template folder 4 for -1"_s}));
}

void TstTemplateFolder::anotherFolderTakesOver()
{
    Fixture fixture;
    fixture.model->setTemplateFolder(fixture.first);
    makeAllOld(fixture.model.get());
    const SignalLog log(fixture.model.get());

    fixture.model->setTemplateFolder(fixture.second);
    QCOMPARE(fixture.model->templateFolder(), fixture.second);
    QVERIFY(!isMarked(fixture.model.get(), fixture.first));
    QVERIFY(isMarked(fixture.model.get(), fixture.second));
    QCOMPARE(touchedIds(fixture.model.get()), QList<int>({4, 6}));
    QCOMPARE(log.lines(),
             QStringList({u"data 4"_s, u"data 5"_s, u"data 6"_s, u"template folder 6 for 4"_s}));
}

void TstTemplateFolder::theTemplateFolderIsGivenUp()
{
    for (const bool byClearing : {true, false}) {
        Fixture fixture;
        fixture.model->setTemplateFolder(fixture.first);
        makeAllOld(fixture.model.get());
        const SignalLog log(fixture.model.get());
        if (byClearing)
            fixture.model->clearTemplateFolder();
        else
            fixture.model->setTemplateFolder(QModelIndex());
        QCOMPARE(fixture.model->templateFolder(), QModelIndex());
        QCOMPARE(fixture.model->templateFolderUuid(), QUuid());
        QVERIFY(!isMarked(fixture.model.get(), fixture.first));
        QCOMPARE(touchedIds(fixture.model.get()), QList<int>({4}));
        QCOMPARE(log.lines(),
                 QStringList({u"data 4"_s, u"data 5"_s, u"template folder -1 for 4"_s}));
    }
}

void TstTemplateFolder::theSameFolderAgainDoesNothing()
{
    Fixture fixture;
    fixture.model->setTemplateFolder(fixture.first);
    makeAllOld(fixture.model.get());
    const SignalLog log(fixture.model.get());
    fixture.model->setTemplateFolder(fixture.first);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(touchedIds(fixture.model.get()), QList<int>());
}

void TstTemplateFolder::givingUpWithoutOneDoesNothing()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->clearTemplateFolder();
    model->setTemplateFolder(QModelIndex());
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstTemplateFolder::theSignalCarriesNewAndOldIndex()
{
    Fixture fixture;
    QSignalSpy changed(fixture.model.get(), &TVLProjectModel::templateFolderChanged);
    fixture.model->setTemplateFolder(fixture.first);
    fixture.model->setTemplateFolder(fixture.second);
    fixture.model->clearTemplateFolder();
    QCOMPARE(changed.count(), 3);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), fixture.first);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), QModelIndex());
    QCOMPARE(changed.at(1).at(0).toModelIndex(), fixture.second);
    QCOMPARE(changed.at(1).at(1).toModelIndex(), fixture.first);
    QCOMPARE(changed.at(2).at(0).toModelIndex(), QModelIndex());
    QCOMPARE(changed.at(2).at(1).toModelIndex(), fixture.second);
}

void TstTemplateFolder::whatTheTemplateFolderContains()
{
    Fixture fixture;
    const QModelIndex deep = addItem(fixture.model.get(), fixture.text, TVL::Image);
    QVERIFY(!fixture.model->templatesContain(deep));
    fixture.model->setTemplateFolder(fixture.first);
    QVERIFY(fixture.model->templatesContain(fixture.text));
    QVERIFY(fixture.model->templatesContain(deep));
    QVERIFY(!fixture.model->templatesContain(fixture.first));
    QVERIFY(!fixture.model->templatesContain(fixture.second));
    QVERIFY(!fixture.model->templatesContain(fixture.model->researchFolder()));
    QVERIFY(!fixture.model->templatesContain(fixture.model->rootIndex()));
    QVERIFY(!blankModel()->templatesContain(fixture.text));
}

void TstTemplateFolder::anAdoptedFolderIsTakenSilently()
{
    for (const bool byId : {true, false}) {
        Fixture fixture;
        const SignalLog log(fixture.model.get());
        if (byId)
            fixture.model->adoptTemplateFolder(4);
        else
            fixture.model->adoptTemplateFolder(fixture.model->nodeUuid(fixture.first));
        QCOMPARE(fixture.model->templateFolder(), fixture.first);
        QVERIFY(isMarked(fixture.model.get(), fixture.first));
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(touchedIds(fixture.model.get()), QList<int>());
    }
}

void TstTemplateFolder::anUnknownFolderIsNotAdopted()
{
    const auto model = blankModel();
    model->adoptTemplateFolder(QUuid::createUuid());
    model->adoptTemplateFolder(QUuid());
    model->adoptTemplateFolder(99);
    model->adoptTemplateFolder(-1);
    QCOMPARE(model->templateFolder(), QModelIndex());
    QCOMPARE(model->templateFolderUuid(), QUuid());
    QVERIFY(!model->binderRoot()->mIsTemplateFolder);
    tvlForEachNode(model->binderRoot(),
                   [](const TVLProjectNode *node) { QVERIFY(!node->mIsTemplateFolder); });
}

void TstTemplateFolder::theTemplateFolderSurvivesSaveAndReopen()
{
    const TestProject project;
    QUuid uuid;
    {
        const auto model = project.create();
        const QModelIndex folder = addItem(model.get(), model->researchFolder(), TVL::Folder);
        addItem(model.get(), folder, TVL::Text);
        uuid = model->nodeUuid(folder);
        model->setTemplateFolder(folder);
        QVERIFY(model->save(false));
        model->prepareToDestroy();
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->templateFolderUuid(), uuid);
    QCOMPARE(model->templateFolder(), model->indexByUuid(uuid));
    QVERIFY(isMarked(model.get(), model->templateFolder()));
    QVERIFY(model->templatesContain(model->index(0, 0, model->templateFolder())));
}

TVL_TEST(TstTemplateFolder)
#include "tst_templatefolder.moc"
