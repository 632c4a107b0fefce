#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLQuote.h"
#include "TVLSearchIndex.h"

#include <QProgressDialog>

using namespace Qt::StringLiterals;

/** What a program can call of the search index. */
class TstSearchInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theObjectAndItsFile();
    void items();
    void propertiesOfItems();
    void labels();
    void statusItems();
    void keywords();
    void searching();
    void textsThatAreNotConfirmed();
    void matching();
};

void TstSearchInterface::theObjectAndItsFile()
{
    areCallable([](TVLProjectModel *project, QString *error) {
        TVLSearchIndex index(project);
        const QSqlDatabase &database = index;
        gives<bool>(database.isOpen());
        gives<bool>(index.load(error));
        index.save();
        gives<QString>(index.searchIndexesFilePath());
        index.readSearchIndexes();
        gives<bool>(index.createTables());
        gives<bool>(index.dropTables());
    });
}

void TstSearchInterface::items()
{
    areCallable([](TVLSearchIndex &index, TVLProjectNode *node, const QModelIndex &item) {
        gives<bool>(index.addProjectNode(node));
        gives<bool>(index.addDocument(item));
        gives<bool>(index.addDocumentData(1, u"a"_s, 1, 1, QList<int>{1}));
        index.removeDocument(1);
    });
}

void TstSearchInterface::propertiesOfItems()
{
    areCallable([](TVLSearchIndex &index, TVLProjectNode *node, TVL::DocumentProperty property,
                   TVL::DocumentType type) {
        gives<QSet<int>>(index.stringDocumentProperties());
        index.updatePropertyNode(node, property, QVariant(), true);
        index.invalidatePropertyNode(node, property);
        index.invalidateProperty(1, property);
        index.invalidateDocumentNode(node, type);
        index.invalidateDocument(1, type);
        index.validateProperty(1, property);
        gives<bool>(index.hasText(1, property));
        gives<bool>(index.hasText(node, property));
        gives<TVL::DocumentProperty>(TVL::toDocumentProperty(type));
    });
}

void TstSearchInterface::labels()
{
    areCallable([](TVLSearchIndex &index, bool *ok) {
        gives<bool>(index.addLabel(1, u"a"_s, QColor()));
        gives<TVLLabel>(index.label(1, ok));
        gives<bool>(index.hasLabel(1));
        gives<QList<TVLLabel>>(index.labels());
        gives<bool>(index.setLabels(QList<TVLLabel>()));
        gives<QSet<int>>(index.labelsIDs());
    });
}

void TstSearchInterface::statusItems()
{
    areCallable([](TVLSearchIndex &index, bool *ok) {
        gives<bool>(index.addStatusItem(1, u"a"_s));
        gives<TVLStatusItem>(index.statusItem(1, ok));
        gives<bool>(index.hasStatusItem(1));
        gives<QList<TVLStatusItem>>(index.statusItems());
        gives<bool>(index.setStatusItems(QList<TVLStatusItem>()));
        gives<QSet<int>>(index.statusIDs());
    });
}

void TstSearchInterface::keywords()
{
    areCallable([](TVLSearchIndex &index) {
        gives<bool>(index.addKeyword(1, u"a"_s));
        index.removeKeyword(1);
        gives<bool>(index.updateKeyword(1, u"a"_s));
        index.addDocumentKeyword(1, 2);
        index.removeDocumentKeyword(1, 2);
        gives<bool>(index.setDocumentKeywords(1, QList<int>{2}));
        gives<QSet<int>>(index.affectedDocuments(2));
    });
}

void TstSearchInterface::searching()
{
    areCallable([](TVLSearchIndex &index, const QStringList &words) {
        gives<QList<int>>(index.indexes(TVLCollectionMetaData()));
        gives<QSet<int>>(index.searchTextProperties(words, 2, TVL::TextProperty));
        gives<QSet<int>>(index.searchIntProperties(words, 2, TVL::KeywordsProperty));
    });
}

void TstSearchInterface::textsThatAreNotConfirmed()
{
    areCallable([](TVLSearchIndex &index, QProgressDialog *progress, const QModelIndex &item) {
        index.validateIndexes(progress);
        gives<QMap<int, QList<TVL::DocumentProperty>>>(index.notConfirmedIndexes());
        index.updateIndexProperties(item, QList<TVL::DocumentProperty>{TVL::TextProperty}, true);
    });
}

void TstSearchInterface::matching()
{
    areCallable([](const QString &text, const QStringList &words) {
        gives<bool>(TVLProjectModel::matchQString(text, 2 | 32, words));
        gives<QString>(TVLQuote::singleQuotesSearchPattern());
        gives<QString>(TVLQuote::doubleQuotesSearchPattern());
        gives<QChar>(TVLQuote::asciiSingleQuote());
        gives<QChar>(TVLQuote::asciiDoubleQuote());
    });
}

TVL_TEST(TstSearchInterface)
#include "tst_searchinterface.moc"
