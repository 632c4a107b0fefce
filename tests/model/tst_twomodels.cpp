#include "ModelChecks.h"
#include "TVLKeywordModel.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** Two projects open at once; the first gives to the second. */
class TstTwoModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aCloneBringsItsFilesAndSnapshots();
    void aCloneBringsAllBelowIt();
    void labelsAndStatusItemsAreFoundByTitle();
    void unknownLabelsAndStatusItemsAreAdded();
    void aLabelWithoutColorGetsOne();
    void noLabelStaysNoLabel();
    void aLabelThatIsNoMoreBecomesNone();
    void keywordsAreFoundByTitle();
    void unknownKeywordsAreAddedWithTheirColor();
    void referencesComeAlong();
    void theSourceStaysAsItIs();
    void picturesStayOutOfTheDraft();
    void nothingIsClonedIntoTheTrash();
    void attributesAreAppliedFromTheOtherProject();

private:
    std::unique_ptr<TestProject> mSourceProject;
    std::unique_ptr<TestProject> mTargetProject;
    TestModel mFrom;
    TestModel mTo;
    QPersistentModelIndex mSource;

    [[nodiscard]] QModelIndex cloneToResearch(const QModelIndex &source)
    {
        return mTo->insertRowAndClone(-1, mTo->researchFolder(), source,
                                      TVLProjectModel::CloneChildren
                                          | TVLProjectModel::CloneSnapshots);
    }
};

void TstTwoModels::init()
{
    mSourceProject = std::make_unique<TestProject>(u"Giver"_s);
    mTargetProject = std::make_unique<TestProject>(u"Taker"_s);
    mFrom = mSourceProject->create();
    mTo = mTargetProject->create();
    mSource = addTextItem(mFrom.get(), mFrom->researchFolder(), u"a"_s);
}

void TstTwoModels::cleanup()
{
    mSource = QModelIndex();
    mFrom.reset();
    mTo.reset();
}

void TstTwoModels::aCloneBringsItsFilesAndSnapshots()
{
    QVERIFY(mFrom->addSnapshot(mSource, u"first"_s));
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->title(copy), u"a"_s);
    QCOMPARE(mTo->documentPlainText(copy, false), u"a text"_s);
    QCOMPARE(mTo->synopsis(copy), u"a card"_s);
    QCOMPARE(mTo->documentNoteAsPlainText(copy), u"a note"_s);
    QVERIFY(mTo->hasSnapshots(copy));
    QCOMPARE(mTo->snapshots(copy).constFirst().mTitle, u"first"_s);
    QVERIFY(mTo->nodeUuid(copy) != mFrom->nodeUuid(mSource));
}

void TstTwoModels::aCloneBringsAllBelowIt()
{
    const QModelIndex child = mFrom->insertTextNode(-1, mSource, u"b"_s, u"b text"_s, {}, {});
    QVERIFY(mFrom->addSnapshot(child, u"second"_s));
    addTree(mFrom.get(), mSource, u"c(d)"_s);
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(treeText(mTo.get(), mTo->researchFolder()), u"a(b c(d))"_s);
    const QModelIndex copiedChild = mTo->index(0, 0, copy);
    QCOMPARE(mTo->documentPlainText(copiedChild, false), u"b text"_s);
    QCOMPARE(mTo->snapshots(copiedChild).size(), 1);
    QCOMPARE(mapsOutOfStep(mTo.get()), QString());
}

void TstTwoModels::labelsAndStatusItemsAreFoundByTitle()
{
    mFrom->setLabels({{7, u"Chapter"_s, Qt::black}});
    mFrom->setStatusItems({{9, u"Done"_s}});
    mFrom->setLabelIdentity(mSource, 7);
    mFrom->setStatusIdentity(mSource, 9);
    const QList<TVLLabel> labels = mTo->labels();
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->labelIdentity(copy), 1);
    QCOMPARE(mTo->statusIdentity(copy), 5);
    QCOMPARE(mTo->labels(), labels);
}

void TstTwoModels::unknownLabelsAndStatusItemsAreAdded()
{
    mFrom->setLabels({{7, u"Harbour"_s, QColor(1, 2, 3)}});
    mFrom->setStatusItems({{9, u"Sunk"_s}});
    mFrom->setLabelIdentity(mSource, 7);
    mFrom->setStatusIdentity(mSource, 9);
    addTree(mFrom.get(), mSource, u"b"_s);
    mFrom->setLabelIdentity(itemTitled(mFrom.get(), u"b"_s), 7);
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->labelIdentity(copy), 2);
    QCOMPARE(mTo->statusIdentity(copy), 6);
    QVERIFY(mTo->labels().constLast() == (TVLLabel{2, u"Harbour"_s, QColor(1, 2, 3)}));
    QVERIFY(mTo->statusItems().constLast() == (TVLStatusItem{6, u"Sunk"_s}));
    QCOMPARE(mTo->labels().size(), 4);
    QCOMPARE(mTo->labelIdentity(mTo->index(0, 0, copy)), 2);
}

void TstTwoModels::aLabelWithoutColorGetsOne()
{
    mFrom->setLabels({{7, u"Harbour"_s, QColor()}});
    mFrom->setLabelIdentity(mSource, 7);
    (void)cloneToResearch(mSource);
    QVERIFY(mTo->labels().constLast().mColor.isValid());
}

void TstTwoModels::noLabelStaysNoLabel()
{
    mTo->setDefaultLabelIdentity(1);
    mTo->setDefaultStatusIdentity(1);
    mFrom->setLabelIdentity(mSource, -1);
    mFrom->setStatusIdentity(mSource, -1);
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->labelIdentity(copy), -1);
    QCOMPARE(mTo->statusIdentity(copy), -1);
}

void TstTwoModels::aLabelThatIsNoMoreBecomesNone()
{
    mFrom->projectNode(mSource)->mLabelId = 77;
    mFrom->projectNode(mSource)->mStatusId = 77;
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->labelIdentity(copy), -1);
    QCOMPARE(mTo->statusIdentity(copy), -1);
    QCOMPARE(mTo->labels().size(), 3);
}

void TstTwoModels::keywordsAreFoundByTitle()
{
    QVERIFY(mTo->keywordModel()->insertItem(0, QModelIndex(), u"Whale"_s));
    QVERIFY(mTo->keywordModel()->insertItem(0, QModelIndex(), u"sea"_s));
    const QColor color = mTo->keywordModel()->color(mTo->keywordModel()->findTitle(u"sea"_s));
    QVERIFY(mFrom->setKeywords(mSource, {u"Sea"_s, u"Whale"_s}));
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->keywords(copy), QStringList({u"sea"_s, u"Whale"_s}));
    QCOMPARE(mTo->keywordModel()->rowCount(QModelIndex()), 2);
    QCOMPARE(mTo->keywordModel()->color(mTo->keywordModel()->findTitle(u"sea"_s)), color);
}

void TstTwoModels::unknownKeywordsAreAddedWithTheirColor()
{
    TVLKeywordModel *keywords = mFrom->keywordModel();
    QVERIFY(keywords->insertItem(0, QModelIndex(), u"Sea"_s));
    QVERIFY(keywords->insertItem(0, keywords->findTitle(u"Sea"_s), u"Storm"_s));
    keywords->setColor(keywords->findTitle(u"Storm"_s), QColor(4, 5, 6));
    QVERIFY(mFrom->setKeywords(mSource, {u"Storm"_s, u"Sea"_s}));
    const QModelIndex copy = cloneToResearch(mSource);
    QCOMPARE(mTo->keywords(copy), QStringList({u"Storm"_s, u"Sea"_s}));
    const TVLKeywordModel *own = mTo->keywordModel();
    QCOMPARE(own->rowCount(QModelIndex()), 2);
    QCOMPARE(own->color(own->findTitle(u"Storm"_s)), QColor(4, 5, 6));
}

void TstTwoModels::referencesComeAlong()
{
    TVLReference reference;
    reference.setUrl(QUrl(u"https://example.org"_s));
    reference.mTitle = u"Home"_s;
    QVERIFY(mFrom->setReferences(mSource, {reference}));
    QCOMPARE(mTo->references(cloneToResearch(mSource)), QList<TVLReference>({reference}));
}

void TstTwoModels::theSourceStaysAsItIs()
{
    QVERIFY(mFrom->setKeywords(mSource, {u"Sea"_s}));
    QVERIFY(mFrom->save(true));
    const TVLProjectNodeProperties record = mFrom->nodeProperties(mSource);
    const auto files = mSourceProject->files();
    (void)cloneToResearch(mSource);
    QVERIFY(mFrom->nodeProperties(mSource) == record);
    QCOMPARE(mSourceProject->files(), files);
    QVERIFY(mFrom->isSaved());
}

void TstTwoModels::picturesStayOutOfTheDraft()
{
    const QModelIndex picture = addItem(mFrom.get(), mFrom->researchFolder(), TVL::Image);
    const QModelIndex text = firstText(mTo.get());
    QVERIFY(!mTo->canClone(picture, text));
    QVERIFY(!mTo->clone(picture, text, false, true, true, true));
    QVERIFY(mTo->canClone(mSource, text));
}

void TstTwoModels::nothingIsClonedIntoTheTrash()
{
    const QModelIndex trashed = addItem(mTo.get(), mTo->trashFolder(), TVL::Text);
    QVERIFY(!mTo->canClone(mSource, trashed));
    QVERIFY(!mTo->clone(mSource, trashed, true, true, true, true));
}

void TstTwoModels::attributesAreAppliedFromTheOtherProject()
{
    const QModelIndex target = firstText(mTo.get());
    const QUuid uuid = mTo->nodeUuid(target);
    mFrom->setLabelIdentity(mSource, 1);
    mFrom->projectNode(mSource)->mTarget = 99;
    QVERIFY(mTo->applyMobileAttributesFromIndex(mSource, target));
    QCOMPARE(mTo->title(target), u"a"_s);
    QCOMPARE(mTo->labelIdentity(target), 1);
    QCOMPARE(mTo->projectNode(target)->mTarget, 0);
    QVERIFY(mTo->applyDesktopAttributesFromIndex(mSource, target));
    QCOMPARE(mTo->projectNode(target)->mTarget, 99);
    QCOMPARE(mTo->nodeUuid(target), uuid);
    QVERIFY(mTo->isModified());
    QVERIFY(!mTo->applyMobileAttributesFromIndex(QModelIndex(), target));
    QVERIFY(!mTo->applyMobileAttributes(mSource, TVLProjectNodeProperties()));
    QVERIFY(mTo->nodeProperties(mSource) == TVLProjectNodeProperties());
}

TVL_TEST(TstTwoModels)
#include "tst_twomodels.moc"
