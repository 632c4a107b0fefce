#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLBasicNodeInfo.h"

#include <QImage>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/** The titles of items, with blanks between them. */
QString foundTitles(const TVLProjectModel *model, const QModelIndexList &indexes)
{
    QStringList titles;
    for (const QModelIndex &index : indexes)
        titles.append(model->title(index));
    return titles.join(u' ');
}

/** A blank project with items in each of its folders; its first text is called "first". */
TestModel filledModel()
{
    auto model = blankModel();
    model->projectNode(firstText(model.get()))->mTitle = u"first"_s;
    addTree(model.get(), model->draftFolder(), u"part:3(scene image:5(note))"_s);
    addTree(model.get(), model->researchFolder(), u"folder:3(pdf:6 text(other:9)) web:8"_s);
    addTree(model.get(), model->trashFolder(), u"old(older:3)"_s);
    addTree(model.get(), model->rootIndex(), u"top(below)"_s);
    return model;
}

QStringList linesOf(const QList<TVLBasicNodeInfo> &infos)
{
    QStringList lines;
    for (const TVLBasicNodeInfo &info : infos)
        lines.append(info.mTitle);
    return lines;
}

/** What a query says by the plainest of recursions. */
QModelIndexList filtered(const TVLProjectModel *model, const QModelIndex &parent,
                         const std::function<bool(const TVLProjectNode *)> &predicate)
{
    QModelIndexList found = recursiveWalk(model, parent);
    found.removeIf([&](const QModelIndex &index) { return !predicate(model->projectNode(index)); });
    return found;
}

} // namespace

class TstItemQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatLiesBelowAnItem_data();
    void whatLiesBelowAnItem();
    void nothingLiesBelowAnIndexOfAnotherModel();
    void theWholeProjectIsAskedByTheRoot();
    void itemsAreFoundByType();
    void scriptsAreFound();
    void textsAreFound();
    void textsOutsideTheDraftAreFound();
    void itemsOutsideTheDraftAreFound();
    void randomTreesAreSearchedAsByRecursion_data();
    void randomTreesAreSearchedAsByRecursion();
    void aListOfItems_data();
    void aListOfItems();
    void aListOfItemsHasUuidsAndIcons();
    void aListKeepsEmptyTitles();
    void anEmptyProjectHasNothingToList();
};

void TstItemQueries::whatLiesBelowAnItem_data()
{
    QTest::addColumn<QString>("tree"); ///< Below the item "a", which isn't among it.
    QTest::addColumn<bool>("nonText");
    QTest::addColumn<bool>("foldersAndTextOnly");
    QTest::newRow("nothing") << QString() << false << true;
    QTest::newRow("text") << u"b"_s << false << true;
    QTest::newRow("folder") << u"b:3"_s << false << true;
    QTest::newRow("image") << u"b:5"_s << true << false;
    QTest::newRow("last type") << u"b:9"_s << true << false;
    QTest::newRow("deep down") << u"b(c:3(d e:6)) f"_s << true << false;
    QTest::newRow("behind others") << u"b c d(e) f:7"_s << true << false;
    QTest::newRow("system folder") << u"b:2"_s << true << true;
}

void TstItemQueries::whatLiesBelowAnItem()
{
    QFETCH(const QString, tree);
    const auto model = emptyModel();
    // What stands beside and above the item has no part in it.
    addTree(model.get(), model->rootIndex(), u"x:5(a:5) y:8"_s);
    const QModelIndex index = itemTitled(model.get(), u"a"_s);
    addTree(model.get(), index, tree);
    QTEST(model->containsNonTextChildren(index), "nonText");
    QTEST(model->containsFoldersAndTextOnly(index), "foldersAndTextOnly");
    QVERIFY(!model->containsDynamicWebNode(index));
    const QModelIndexList below = recursiveWalk(model.get(), index);
    if (below.isEmpty())
        return;
    TVLProjectNode *last = model->projectNode(below.constLast());
    last->mOriginalUrl = u"https://example.com"_s;
    QVERIFY(model->containsDynamicWebNode(index));
    last->mFileExtension = u"html"_s;
    QVERIFY(!model->containsDynamicWebNode(index));
}

void TstItemQueries::nothingLiesBelowAnIndexOfAnotherModel()
{
    const auto model = filledModel();
    const auto other = filledModel();
    const QModelIndex foreign = other->researchFolder();
    QVERIFY(!model->containsNonTextChildren(foreign));
    QVERIFY(model->containsFoldersAndTextOnly(foreign));
    QVERIFY(!model->containsDynamicWebNode(foreign));
    QCOMPARE(model->indexesViaType(TVL::PDF, foreign), QModelIndexList());
    QCOMPARE(model->scriptIndexes(foreign), QModelIndexList());
    QCOMPARE(model->imageIndexes(foreign), QModelIndexList());
}

void TstItemQueries::theWholeProjectIsAskedByTheRoot()
{
    const auto model = filledModel();
    QVERIFY(model->containsNonTextChildren(model->rootIndex()));
    QVERIFY(model->containsNonTextChildren(QModelIndex()));
    QCOMPARE(foundTitles(model.get(), model->indexesViaType(TVL::Image, QModelIndex())),
             u"image"_s);
}

void TstItemQueries::itemsAreFoundByType()
{
    const auto model = filledModel();
    QCOMPARE(foundTitles(model.get(), model->indexesViaType(TVL::Text, model->rootIndex())),
             u"first scene note text old top below"_s);
    QCOMPARE(foundTitles(model.get(), model->indexesViaType(TVL::Folder, model->rootIndex())),
             u"part folder older"_s);
    QCOMPARE(foundTitles(model.get(), model->indexesViaType(TVL::Text, model->researchFolder())),
             u"text"_s);
    QCOMPARE(model->indexesViaType(TVL::Media, model->rootIndex()), QModelIndexList());
}

void TstItemQueries::scriptsAreFound()
{
    const auto model = filledModel();
    QCOMPARE(model->scriptIndexes(model->rootIndex()), QModelIndexList());
    const QModelIndexList scripts = itemsTitled(model.get(), u"part note text"_s);
    for (const QModelIndex &index : scripts)
        model->setTextMode(index, TVLProjectModel::ScriptFormatMode);
    QCOMPARE(model->scriptIndexes(model->rootIndex()), scripts);
    QCOMPARE(foundTitles(model.get(), model->scriptIndexes(scripts.constFirst())), u"note"_s);
}

void TstItemQueries::textsAreFound()
{
    const auto model = filledModel();
    QCOMPARE(foundTitles(model.get(), model->textIndexes()),
             u"first part scene note folder text old older top below"_s);
}

void TstItemQueries::textsOutsideTheDraftAreFound()
{
    const auto model = filledModel();
    QCOMPARE(foundTitles(model.get(), model->nonDraftTextChildrenAndSubChildren()),
             u"folder text old older top below"_s);
}

void TstItemQueries::itemsOutsideTheDraftAreFound()
{
    const auto model = filledModel();
    QCOMPARE(foundTitles(model.get(), model->nonDraftChildrenAndSubChildren()),
             u"Research folder pdf text other web Trash old older top below"_s);
}

void TstItemQueries::randomTreesAreSearchedAsByRecursion_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 5; ++seed)
        QTest::addRow("seed %d", seed) << seed;
}

void TstItemQueries::randomTreesAreSearchedAsByRecursion()
{
    QFETCH(const int, seed);
    const auto model = emptyModel();
    growRandomTree(model.get(), 300, quint32(seed));
    const auto canHaveText = [](const TVLProjectNode *node) { return node->canHaveText(); };
    const auto isNonDraft = [&](const TVLProjectNode *node) {
        return model->rootParentType(model->createIndex(node)) != TVL::DraftFolder;
    };
    const QModelIndex root = model->rootIndex();
    QCOMPARE(model->textIndexes(), filtered(model.get(), root, canHaveText));
    QCOMPARE(model->nonDraftChildrenAndSubChildren(), filtered(model.get(), root, isNonDraft));
    QCOMPARE(model->nonDraftTextChildrenAndSubChildren(),
             filtered(model.get(), root, [&](const TVLProjectNode *node) {
                 return isNonDraft(node) && canHaveText(node);
             }));
    const QModelIndexList all = recursiveWalk(model.get(), root);
    for (const QModelIndex &index : all) {
        const auto isPdf = [](const TVLProjectNode *node) { return node->mNodeType == TVL::PDF; };
        QCOMPARE(model->indexesViaType(TVL::PDF, index), filtered(model.get(), index, isPdf));
        QCOMPARE(model->containsNonTextChildren(index),
                 !filtered(model.get(), index, [&](const TVLProjectNode *node) {
                      return !canHaveText(node);
                  }).isEmpty());
    }
}

void TstItemQueries::aListOfItems_data()
{
    QTest::addColumn<bool>("groupsOnly");
    QTest::addColumn<bool>("includeTrash");
    QTest::addColumn<QString>("indentText"); ///< Null for no indentation.
    QTest::addColumn<QString>("lines"); ///< With bars between them.
    const QString none;
    QTest::newRow("all") << false << true << none
                         << u"Draft|first|part|scene|image|note|Research|folder|pdf|text|other|web|"
                            "Trash|old|older|top|below"_s;
    QTest::newRow("without the Trash")
        << false << false << none
        << u"Draft|first|part|scene|image|note|Research|folder|pdf|text|other|web|top|below"_s;
    QTest::newRow("groups") << true << true << none
                            << u"Draft|part|image|Research|folder|text|Trash|old|older|top"_s;
    QTest::newRow("groups without the Trash")
        << true << false << none << u"Draft|part|image|Research|folder|text|top"_s;
    QTest::newRow("indented groups")
        << true << false << u"--"_s << u"Draft|--part|----image|Research|--folder|----text|top"_s;
    QTest::newRow("indented by nothing")
        << true << false << u""_s << u"Draft|part|image|Research|folder|text|top"_s;
}

void TstItemQueries::aListOfItems()
{
    QFETCH(const bool, groupsOnly);
    QFETCH(const bool, includeTrash);
    QFETCH(const QString, indentText);
    const auto model = filledModel();
    const auto infos =
        model->findBasicNodeInfo(groupsOnly, includeTrash, !indentText.isNull(), indentText);
    QTEST(linesOf(infos).join(u'|'), "lines");
    // The text counts for nothing when there is to be no indentation.
    if (indentText.isNull()) {
        QTEST(
            linesOf(model->findBasicNodeInfo(groupsOnly, includeTrash, false, u"--"_s)).join(u'|'),
            "lines");
    }
}

void TstItemQueries::aListOfItemsHasUuidsAndIcons()
{
    const TestProject project;
    const auto model = project.create();
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(model->addCustomIcon(u"Star.png"_s, image));
    QVERIFY(model->setCustomIcon(firstText(model.get()), u"Star.png"_s));
    const QList<TVLBasicNodeInfo> infos = model->findBasicNodeInfo(false, true, true, u"  "_s);
    QCOMPARE(infos.size(), model->totalNodesCount());
    QList<QUuid> uuids;
    for (const TVLBasicNodeInfo &info : infos)
        uuids.append(info.mUuid);
    QCOMPARE(uuids, model->uuidsListBinderOrder());
    QVERIFY(infos.at(0).mIcon.isNull());
    QVERIFY(!infos.at(1).mIcon.isNull());
}

void TstItemQueries::aListKeepsEmptyTitles()
{
    const auto model = blankModel();
    const auto infos = model->findBasicNodeInfo(false, true, true, u"-"_s);
    QCOMPARE(infos.at(1).mTitle, u"-"_s);
}

void TstItemQueries::anEmptyProjectHasNothingToList()
{
    const auto model = emptyModel();
    QCOMPARE(model->findBasicNodeInfo(false, true, true, u"-"_s).size(), 0);
    QCOMPARE(model->findBasicNodeInfo(false, false, true, u"-"_s).size(), 0);
    QCOMPARE(model->textIndexes(), QModelIndexList());
    QCOMPARE(model->nonDraftChildrenAndSubChildren(), QModelIndexList());
}

TVL_TEST(TstItemQueries)
#include "tst_itemqueries.moc"
