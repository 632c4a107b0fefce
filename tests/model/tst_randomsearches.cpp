#include "ModelChecks.h"
#include "ReferenceSearch.h"
#include "TVLSearchIndex.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include <QTest>
#include <QTextCursor>
#include <QUuid>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const int Projects = testCases(1000);
constexpr int Parts = 10;
constexpr int SearchesOfAProject = 15;
constexpr int ItemsOfAProject = 10;

const QStringList FieldIds = {u"pov"_s, u"place"_s};

QModelIndexList items(const TVLProjectModel *model)
{
    QModelIndexList found = recursiveWalk(model, QModelIndex());
    found.removeIf([model](const QModelIndex &item) { return model->isSystemFolder(item); });
    return found;
}

template <typename Records>
QStringList searchedTitles(const Records &records, int id)
{
    QStringList titles;
    for (const auto &record : records) {
        if (record.mId == id)
            titles.append(record.mTitle);
    }
    return titles;
}

SearchedItem searched(const TVLProjectModel *model, const QModelIndex &item)
{
    SearchedItem searched;
    searched.texts = {
        {TVL::TitleProperty, model->title(item, false)},
        {TVL::TextProperty, model->documentPlainText(item, false)},
        {TVL::NotesProperty, model->documentNoteAsPlainText(item)},
        {TVL::SynopsisProperty, model->synopsis(item)},
        {TVL::CustomMetaDataProperty, QStringList(model->customMetaData(item).values()).join(u' ')},
        {TVL::CommentsProperty, model->inspectorNotesToPlainText(item).join(u'\n')},
    };
    searched.titles = {
        {TVL::KeywordsProperty, model->keywords(item)},
        {TVL::LabelProperty, searchedTitles(model->labels(), model->labelIdentity(item))},
        {TVL::StatusProperty, searchedTitles(model->statusItems(), model->statusIdentity(item))},
    };
    return searched;
}

bool isBelowOrOneOf(QModelIndex item, const QModelIndexList &tops)
{
    for (; item.isValid(); item = item.parent()) {
        if (tops.contains(item))
            return true;
    }
    return false;
}

/** Whether a search may show an item, by where it is and whether it is compiled. */
bool isInScope(const TVLProjectModel *model, const TVLCollectionMetaData &search,
               const QModelIndexList &context, const QModelIndex &item)
{
    const int compile = search.mSearchCompile;
    if ((compile == 1 && !model->includeInCompile(item))
        || (compile == 2 && model->includeInCompile(item)))
        return false;
    if (search.mSearchScope & 2)
        return isBelowOrOneOf(item, {model->draftFolder()});
    if ((search.mSearchScope & 4) && isBelowOrOneOf(item, {model->trashFolder()}))
        return false;
    return !(search.mSearchScope & 1) || isBelowOrOneOf(item, context);
}

} // namespace

/** Searches random projects while they change, and walks through all their texts instead. */
class TstRandomSearches : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchesAgreeWithAWalkThroughAllTexts_data();
    void searchesAgreeWithAWalkThroughAllTexts();
    void searchesOfAllKindsHaveFoundSomething();

private:
    [[nodiscard]] int random(int bound) { return mRandom.bounded(bound); }
    [[nodiscard]] QString text(int mostWords) { return randomSearchedText(&mRandom, mostWords); }
    [[nodiscard]] QModelIndex anyItem();
    [[nodiscard]] QModelIndexList someItems();
    void makeProject(const TestProject &project);
    void addItem();
    void setEverything(const QModelIndex &item);
    void replaceText(const QModelIndex &item, TVL::DocumentType type);
    void addComment(const QModelIndex &item);
    void change(const TestProject &project);
    void search();

    QRandomGenerator mRandom;
    TestModel mModel;
    int mFindings = 0;
    QSet<int> mFoundBy; ///< Operators and properties whose searches have found something.
};

QModelIndex TstRandomSearches::anyItem()
{
    const QModelIndexList all = items(mModel.get());
    return all.isEmpty() ? QModelIndex() : all.at(random(int(all.size())));
}

QModelIndexList TstRandomSearches::someItems()
{
    QModelIndexList some;
    for (int i = random(4); i > 0; --i)
        some.append(random(4) ? anyItem() : mModel->draftFolder());
    return some;
}

void TstRandomSearches::makeProject(const TestProject &project)
{
    mModel = project.create();
    TVLCustomMetaDataSettings fields;
    for (const QString &id : FieldIds)
        fields.append({id, id, false, {}});
    mModel->setCustomMetaDataSettings(fields);
    QList<TVLLabel> labels = {{-1, text(2), QColor()}};
    QList<TVLStatusItem> statusItems = {{-1, text(2)}};
    for (int id = 0; id < 4; ++id) {
        labels.append({id, text(2), QColor(Qt::red)});
        statusItems.append({id, text(2)});
    }
    mModel->setLabels(labels);
    mModel->setStatusItems(statusItems);
    for (int i = 0; i < ItemsOfAProject; ++i)
        addItem();
}

void TstRandomSearches::addItem()
{
    const std::array folders = {mModel->draftFolder(), mModel->researchFolder(),
                                mModel->trashFolder(), anyItem()};
    const QModelIndex parent = folders.at(std::size_t(random(int(folders.size()))));
    const TVL::NodeType type = random(5) ? TVL::Text : TVL::Image;
    setEverything(::addItem(mModel.get(), parent, type, text(3)));
}

void TstRandomSearches::setEverything(const QModelIndex &item)
{
    for (const auto type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        replaceText(item, type);
    addComment(item);
    QStringList keywords;
    for (int i = random(3); i > 0; --i)
        keywords.append(text(2).simplified());
    keywords.removeAll(QString());
    mModel->setKeywords(item, keywords);
    mModel->setLabelIdentity(item, random(5) - 1);
    mModel->setStatusIdentity(item, random(5) - 1);
    for (const QString &id : FieldIds)
        mModel->setCustomMetaData(item, id, text(2));
    mModel->setIncludeInCompile(item, random(2));
}

void TstRandomSearches::replaceText(const QModelIndex &item, TVL::DocumentType type)
{
    TVLTextDocument *document = mModel->referenceItem(item, type);
    if (!document)
        return;
    QTextCursor all(document);
    all.select(QTextCursor::Document);
    all.insertText(text(6));
    if (random(2))
        document->clearUndoRedoStacks();
    mModel->dereferenceItem(document);
}

void TstRandomSearches::addComment(const QModelIndex &item)
{
    const int length = int(mModel->documentPlainText(item, false).size());
    if (length < 2)
        return;
    // What the notes say has to be plain for this, so it has no marks of the notation.
    const std::array words = {"art", "cart red", "2", "dark blue"};
    const QByteArray note = words.at(std::size_t(random(int(words.size()))));
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    (void)mModel->setInspectorNote(item, {random(length - 1), 1},
                                   TVLTextCommentLink(id, "{\\rtf1 " + note + "}"));
}

void TstRandomSearches::change(const TestProject &project)
{
    const QModelIndex item = anyItem();
    switch (random(14)) {
    case 0:
        addItem();
        break;
    case 1:
        if (item.isValid())
            QVERIFY(mModel->removeIndex(item));
        break;
    case 2:
        mModel->moveToTrash({item});
        break;
    case 3:
        mModel->duplicate({item}, random(2));
        break;
    case 4:
        QVERIFY(mModel->save());
        break;
    case 5:
        mModel->prepareToDestroy();
        mModel = project.open();
        QVERIFY(mModel);
        break;
    case 6:
        mModel->rebuildSearchIndexes(false, nullptr);
        break;
    case 7:
        mModel->emptyTrash();
        break;
    case 8:
        mModel->setTitle(item, text(3));
        break;
    case 9:
        mModel->mergeIndexes({item, anyItem()});
        break;
    default:
        setEverything(item);
        break;
    }
}

void TstRandomSearches::search()
{
    TVLCollectionMetaData search = randomSearch(&mRandom);
    if (random(2)) {
        search.mSearchScope = random(8);
        search.mSearchCompile = TVL::SearchCompile(random(3));
    }
    const QModelIndexList context = someItems();
    QModelIndexList found = mModel->collectionIndexes(search, context);

    QModelIndexList expected;
    const ReferenceSearch reference(search);
    const QModelIndexList all = items(mModel.get());
    for (const QModelIndex &item : all) {
        if (!search.mSearchText.isEmpty() && isInScope(mModel.get(), search, context, item)
            && reference.finds(searched(mModel.get(), item)))
            expected.append(item);
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    if (found != expected)
        qWarning() << search.mSearchText << int(search.mSearchOperator)
                   << int(search.mSearchProperty) << int(search.mCaseSensitivity)
                   << search.mSearchScope << int(search.mSearchCompile)
                   << mModel->nodeIdentityList(found) << mModel->nodeIdentityList(expected);
    QCOMPARE(found, expected);
    mFindings += int(found.size());
    if (!found.isEmpty())
        mFoundBy.unite({search.mSearchOperator, 10 + search.mSearchProperty});
}

void TstRandomSearches::searchesAgreeWithAWalkThroughAllTexts_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < Parts; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TstRandomSearches::searchesAgreeWithAWalkThroughAllTexts()
{
    QFETCH(int, seed);
    mRandom.seed(quint32(seed));
    for (int i = 0; i < Projects / Parts; ++i) {
        const TestProject project;
        makeProject(project);
        for (int j = 0; j < SearchesOfAProject; ++j) {
            search();
            change(project);
            if (QTest::currentTestFailed()) {
                qWarning("project %d, search %d", i, j);
                return;
            }
        }
        mModel->prepareToDestroy();
        mModel.reset();
    }
}

void TstRandomSearches::searchesOfAllKindsHaveFoundSomething()
{
    QVERIFY2(mFindings > 4 * Projects, qPrintable(QString::number(mFindings)));
    QCOMPARE(mFoundBy.size(), 5 + 10);
}

TVL_TEST(TstRandomSearches)
#include "tst_randomsearches.moc"
