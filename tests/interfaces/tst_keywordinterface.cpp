#include "Callable.h"
#include "TestMain.h"

#include "TVLIcon.h"
#include "TVLKeywordModel.h"
#include "TVLSearchIndex.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

/** What a program can call of the keyword model. */
class TstKeywordInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theObjectAndItsRecord();
    void theItemModel();
    void askingForKeywords();
    void changingKeywords();
    void draggingKeywords();
    void signalsAreFoundByName();
};

void TstKeywordInterface::theObjectAndItsRecord()
{
    areCallable([](TVLSearchIndex *index, QObject *parent) {
        const TVLKeywordModel model(index, parent);
        const TVLKeywordModel alone(nullptr, parent);
        const TVLKeywordModel::TVLKeywordItem item;
        gives<int>(item.id);
        gives<QString>(item.title);
        gives<QColor>(item.color);
        gives<int>(item.parentId);
        gives<QList<int>>(item.children);
        gives<QStringList>(TVLKeywordModel::headers());
    });
}

void TstKeywordInterface::theItemModel()
{
    areCallable([](TVLKeywordModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.index(0, 0, index));
        gives<QModelIndex>(model.parent(index));
        gives<int>(model.rowCount(index));
        gives<int>(model.columnCount(index));
        gives<QVariant>(model.data(index, 33));
        gives<bool>(model.setData(index, QColor(), 33));
        gives<QVariant>(model.headerData(0, Qt::Horizontal, Qt::DisplayRole));
        gives<QIcon>(QIcon(TVLIcon(QColor(), TVLIcon::RoundedSquare)));
    });
}

void TstKeywordInterface::askingForKeywords()
{
    areCallable([](const TVLKeywordModel &model, const QModelIndex &index) {
        gives<QModelIndex>(model.index(1));
        gives<QString>(model.title(index));
        gives<QColor>(model.color(index));
        gives<QModelIndex>(model.findTitle(u"a"_s));
        gives<QSet<int>>(model.allChidren(1));
        gives<int>(model.createId());
    });
}

void TstKeywordInterface::changingKeywords()
{
    areCallable([](TVLKeywordModel &model, const QModelIndex &index) {
        gives<bool>(model.setTitle(index, u"a"_s));
        gives<bool>(model.setColor(index, QColor()));
        gives<bool>(model.insertItem(0, index, u"a"_s));
        gives<QModelIndex>(model.addChild(2, 1));
        gives<bool>(model.removeItem(index));
    });
}

void TstKeywordInterface::draggingKeywords()
{
    areCallable([](TVLKeywordModel &model, const QModelIndex &index, const QMimeData *mime) {
        gives<QStringList>(model.mimeTypes());
        gives<QMimeData *>(model.mimeData(QList<QModelIndex>{index}));
        gives<bool>(model.dropMimeData(mime, Qt::CopyAction, 0, 0, index));
        gives<Qt::DropActions>(model.supportedDropActions());
    });
}

void TstKeywordInterface::signalsAreFoundByName()
{
    const QMetaObject &meta = TVLKeywordModel::staticMetaObject;
    QVERIFY(meta.indexOfSignal("modelChanged()") >= 0);
    QVERIFY(meta.indexOfSignal("keywordsAboutToBeRemoved(QSet<int>)") >= 0);
}

TVL_TEST(TstKeywordInterface)
#include "tst_keywordinterface.moc"
