#include "ReferenceSearch.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestScale.h"
#include "TestSearchedProject.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>

namespace {

const int Projects = testCases(500);
constexpr int SearchesOfAProject = 20;

} // namespace

/** Searches random projects and walks through all their texts instead. */
class TstSearchRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchesAgreeWithAWalkThroughAllTexts_data();
    void searchesAgreeWithAWalkThroughAllTexts();

private:
    [[nodiscard]] int random(int bound) { return int(mRandom.bounded(quint32(bound))); }
    [[nodiscard]] QString randomText(int mostWords)
    {
        return randomSearchedText(&mRandom, mostWords);
    }
    void makeProject();
    void changeProject();
    [[nodiscard]] QSet<int> walk(const TVLCollectionMetaData &search) const;
    [[nodiscard]] SearchedItem searched(const TVLProjectNode *node) const;
    [[nodiscard]] QStringList titles(int property, const QList<int> &ids) const;

    QRandomGenerator mRandom;
    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
    QMap<int, QString> mTitles[3]; ///< Of keywords, labels and status items, by id.
};

void TstSearchRandom::makeProject()
{
    mIndex.reset();
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
    for (QMap<int, QString> &titles : mTitles) {
        titles.clear();
        for (int id = 0; id < 4; ++id)
            titles.insert(id, randomText(2));
    }
    for (int id = 0; id < 4; ++id) {
        QVERIFY(mIndex->addKeyword(id, mTitles[0].value(id)));
        QVERIFY(mIndex->addLabel(id, mTitles[1].value(id), QColor()));
        QVERIFY(mIndex->addStatusItem(id, mTitles[2].value(id)));
    }
    for (int id = 0; id < 12; ++id) {
        TVLProjectNode *node = mProject->addNode(id, randomText(3));
        node->mLabelId = random(6) - 1;
        node->mStatusId = random(6) - 1;
        while (random(2) && node->mKeywords.size() < 4)
            node->mKeywords.append(random(5));
        for (const int property : {2, 3, 4, 8, 9})
            mProject->setText(id, TVL::DocumentProperty(property), randomText(6));
        QVERIFY(mIndex->addProjectNode(node));
    }
}

/** A change as the program makes it: some are told with the value, some only as having happened. */
void TstSearchRandom::changeProject()
{
    TVLProjectNode *node = mProject->nodes().at(random(int(mProject->nodes().size())));
    const int properties[] = {1, 2, 3, 4, 6, 7, 8, 9};
    const auto property = TVL::DocumentProperty(properties[random(8)]);
    if (property == TVL::LabelProperty || property == TVL::StatusProperty) {
        const int value = random(5);
        (property == TVL::LabelProperty ? node->mLabelId : node->mStatusId) = value;
        mIndex->updatePropertyNode(node, property, value, true);
        return;
    }
    mProject->setText(node->mId, property, randomText(6));
    if (property == TVL::TitleProperty || random(2))
        mIndex->updatePropertyNode(node, property, mProject->text(node->mId, property), true);
    else
        mIndex->invalidatePropertyNode(node, property);
}

QStringList TstSearchRandom::titles(int property, const QList<int> &ids) const
{
    const QMap<int, QString> &byId = mTitles[property - TVL::KeywordsProperty];
    QStringList titles;
    for (const int id : ids) {
        if (byId.contains(id))
            titles.append(byId.value(id));
    }
    return titles;
}

SearchedItem TstSearchRandom::searched(const TVLProjectNode *node) const
{
    SearchedItem item;
    for (const int property : TVLSearchIndex::stringDocumentProperties())
        item.texts.insert(property, mProject->text(node->mId, TVL::DocumentProperty(property)));
    item.titles.insert(5, titles(5, node->mKeywords));
    item.titles.insert(6, titles(6, {node->mLabelId}));
    item.titles.insert(7, titles(7, {node->mStatusId}));
    return item;
}

QSet<int> TstSearchRandom::walk(const TVLCollectionMetaData &search) const
{
    const ReferenceSearch reference(search);
    QSet<int> ids;
    for (const TVLProjectNode *node : mProject->nodes()) {
        if (reference.finds(searched(node)))
            ids.insert(node->mId);
    }
    return ids;
}

void TstSearchRandom::searchesAgreeWithAWalkThroughAllTexts_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < 10; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TstSearchRandom::searchesAgreeWithAWalkThroughAllTexts()
{
    QFETCH(int, seed);
    mRandom.seed(quint32(seed));
    int findings = 0;
    for (int i = 0; i < Projects / 10; ++i) {
        makeProject();
        for (int j = 0; j < SearchesOfAProject; ++j) {
            const TVLCollectionMetaData search = randomSearch(&mRandom);
            const QList<int> ids = mIndex->indexes(search);
            const QSet<int> found(ids.begin(), ids.end());
            QCOMPARE(ids.size(), found.size());
            if (found != walk(search))
                qWarning() << search.mSearchText << int(search.mSearchOperator)
                           << int(search.mSearchProperty) << int(search.mCaseSensitivity);
            QCOMPARE(found, walk(search));
            findings += int(found.size());
            changeProject();
        }
    }
    // The searches are worth something.
    QVERIFY2(findings > Projects / 2, qPrintable(QString::number(findings)));
}

TVL_TEST(TstSearchRandom)
#include "tst_searchrandom.moc"
