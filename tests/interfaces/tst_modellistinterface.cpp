#include "Callable.h"
#include "TestMain.h"
#include "TestModel.h"

#include "TVLKeywordModel.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"

#include <QColor>

using namespace Qt::StringLiterals;

/** What a program can call of a project model about labels, keywords, collections and the like. */
class TstModelListInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsAndStatusItems();
    void keywordsOfItems();
    void searchingByKeywords();
    void customMetaData();
    void references();
    void completions();
    void collectionsByPosition();
    void collectionsByIdentity();
    void allCollections();
    void collectionsOfAnExternalFolder();
    void favorites();

    void keywordsAreStoredWithoutAnnouncement();
};

void TstModelListInterface::labelsAndStatusItems()
{
    areCallable([](TVLProjectModel &model) {
        gives<QList<TVLLabel>>(model.labels());
        gives<QList<TVLStatusItem>>(model.statusItems());
        model.setLabels(QList<TVLLabel>());
        model.setStatusItems(QList<TVLStatusItem>());
        model.setDefaultLabelIdentity(1);
        model.setDefaultStatusIdentity(1);
        model.setLabelTitle(u"a"_s);
        model.setStatusTitle(u"a"_s);
    });
}

void TstModelListInterface::keywordsOfItems()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLProjectNode *node) {
        gives<QList<int>>(model.keywordIds(index));
        gives<bool>(model.setKeywordIds(index, QList<int>{1}));
        model.setKeywordIdsPrivate(node, QList<int>{1});
        gives<QStringList>(model.keywords(index));
        gives<bool>(model.setKeywords(index, QStringList{u"a"_s}));
        gives<QList<QColor>>(model.keywordColors(index));
        gives<QList<QPair<QString, QColor>>>(model.keywordsWithColor(index));
        gives<QString>(model.keywordTitle(1));
    });
}

void TstModelListInterface::searchingByKeywords()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &parent) {
        gives<QModelIndexList>(model.matchKeywords(QSet<int>{1}, 1, parent));
        gives<bool>(model.containsKeywords(QSet<int>{1}, parent));
    });
}

void TstModelListInterface::customMetaData()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<TVLCustomMetaDataSettings>(model.customMetaDataSettings());
        model.setCustomMetaDataSettings(TVLCustomMetaDataSettings());
        gives<QMap<QString, QString>>(model.customMetaData(index));
        gives<QString>(model.customMetaData(index, u"a"_s));
        gives<bool>(model.setCustomMetaData(index, u"a"_s, u"b"_s));
        gives<bool>(model.hasCustomMetaData(index));
        gives<QList<TVLCustomMetaDataInfo>>(model.customMetaDataInfo(index, true));
        model.removeCustomMetaDataFromNodes(u"a"_s);
    });
}

void TstModelListInterface::references()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<QList<TVLReference>>(model.references(index));
        gives<bool>(model.setReferences(index, QList<TVLReference>()));
        gives<bool>(model.addReference(index, TVLReference()));
        gives<QList<TVLReference>>(model.projectReferences());
        model.setProjectReferences(QList<TVLReference>());
        model.addProjectReference(TVLReference());
        gives<bool>(model.hasProjectReferences());
    });
}

void TstModelListInterface::completions()
{
    areCallable([](TVLProjectModel &model) {
        model.setAutoCompleteList(QList<TVLAutoCompleteItem>());
        model.addToAutoCompleteList(u"a"_s, TVLAutoCompleteItem::GeneralText, 0);
        gives<QStringList>(model.autoCompleteStrings());
    });
}

void TstModelListInterface::collectionsByPosition()
{
    areCallable([](TVLProjectModel &model, const TVLCollectionMetaData &collection,
                   const QModelIndexList &indexes, const QColor &color) {
        gives<TVLCollectionMetaData>(model.findCollectionByPos(0));
        model.setCollectionByPos(0, collection);
        model.insertCollection(0, collection);
        gives<QString>(model.insertCollection(0, indexes, u"a"_s, color));
        model.removeCollection(0);
        model.moveCollection(0, 1);
        model.addToCollection(0, indexes);
        model.removeFromCollection(0, indexes);
        model.setCollectionColor(0, color);
    });
}

void TstModelListInterface::collectionsByIdentity()
{
    areCallable([](TVLProjectModel &model, const QString &identity,
                   const TVLCollectionMetaData &collection, const QModelIndexList &indexes) {
        gives<int>(model.collectionPos(identity));
        gives<bool>(model.hasCollectionWithId(identity));
        gives<TVLCollectionMetaData>(model.findCollectionById(identity));
        model.setCollectionById(identity, collection);
        model.addToCollection(identity, indexes);
        model.removeFromCollection(identity, indexes);
        model.setCollectionColor(identity, QColor());
    });
}

void TstModelListInterface::allCollections()
{
    areCallable([](TVLProjectModel &model, const TVLCollectionMetaData &collection,
                   const QModelIndexList &context) {
        gives<QList<TVLCollectionMetaData>>(model.collections());
        model.setCollections(QList<TVLCollectionMetaData>());
        model.addDefaultCollections();
        gives<TVLCollectionMetaData>(model.binderCollection());
        gives<TVLCollectionMetaData>(model.recentSearch());
        model.setRecentSearch(collection);
        gives<TVLCollectionMetaData>(model.findCollectionByTitle(u"a"_s));
        model.updateSearchCollections();
        gives<QModelIndexList>(model.collectionIndexes(collection, context));
    });
}

void TstModelListInterface::collectionsOfAnExternalFolder()
{
    areCallable([](TVLProjectModel &model) {
        gives<TVLCollectionMetaData>(model.ensureCollection(u"a"_s, QColor()));
        gives<TVLCollectionMetaData>(model.updatedDocumentsCollection());
        gives<bool>(model.updatedDocumentsCollectionExists());
        model.setCollectionUpdatedDocuments(QList<int>{1});
        gives<TVLCollectionMetaData>(model.syncedDocumentsCollection());
        gives<bool>(model.syncedDocumentsCollectionExists());
        gives<QList<TVLCollectionMetaData>>(model.collectionsForExternalFolderSync());
        gives<bool>(model.hasCollectionsForExternalFolderSync());
    });
}

void TstModelListInterface::favorites()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.setFavorite(index, true, true));
        gives<bool>(model.addToFavorites(index, true));
        gives<bool>(model.removeFromFavorites(index));
        gives<bool>(model.isFavorite(index));
        gives<QModelIndexList>(model.favorites());
        model.setFavorites(QList<int>{1});
        model.clearFavorites();
    });
}

void TstModelListInterface::keywordsAreStoredWithoutAnnouncement()
{
    const TestModel model(TVLProjectModel::createBlankProjectInMemory(u"/nowhere/Novel.tavel"_s));
    const QModelIndex text = model->index(0, 0, model->draftFolder());
    QVERIFY(model->keywordModel()->insertItem(0, QModelIndex(), u"plot"_s));
    TVLProjectNode *node = model->projectNode(text);
    int changes = 0;
    connect(model.get(), &TVLProjectModel::dataChanged, this, [&changes] { ++changes; });
    model->setKeywordIdsPrivate(node, {1});
    QCOMPARE(model->keywords(text), QStringList{u"plot"_s});
    QCOMPARE(model->searchIndex()->affectedDocuments(1), QSet<int>{node->mId});
    QCOMPARE(changes, 0);
}

TVL_TEST(TstModelListInterface)
#include "tst_modellistinterface.moc"
