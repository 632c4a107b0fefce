#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QImage>
#include <QPixmap>
#include <QPrinter>
#include <QUrl>

using namespace Qt::StringLiterals;

/** What a program can call of a project model about single items and about the project. */
class TstModelAttributeInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatAnItemIs();
    void identitiesOfAnItem();
    void flagsOfAnItem();
    void howAnItemIsShown();
    void whetherAnItemHasTexts();
    void addressesAndFiles();
    void imagesOfItems();
    void askingAboutSubtrees();
    void theProject();
    void titleAndAuthor();
    void thePage();
    void settersThatTouch();
    void settersThatDoNotTouch();
    void labelAndStatusThatAreGone();
    void customIcons();
    void theBackdrop();
    void settersOfTheProject();
};

void TstModelAttributeInterface::whatAnItemIs()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<TVL::NodeType>(model.type(index));
        gives<QString>(model.title(index, true));
        gives<QString>(model.title(index));
        gives<QString>(model.extension(index));
        gives<QPair<int, int>>(model.selection(index));
        gives<QDateTime>(model.created(index));
        gives<QDateTime>(model.lastModified(index));
        gives<QDateTime>(model.currentSnapshot(index));
    });
}

void TstModelAttributeInterface::identitiesOfAnItem()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<int>(model.nodeIdentity(index));
        gives<int>(model.labelIdentity(index));
        gives<int>(model.statusIdentity(index));
        gives<QUuid>(model.nodeUuid(index));
        gives<TVLLabel>(model.label(index));
        gives<TVLStatusItem>(model.statusItem(index));
    });
}

void TstModelAttributeInterface::flagsOfAnItem()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.isTemplateFolder(index));
        gives<bool>(model.isFavorite(index));
        gives<bool>(model.hasSnapshots(index));
        gives<bool>(model.includeInCompile(index));
        gives<bool>(model.pageBreakBefore(index));
        gives<bool>(model.preserveFormatting(index));
        gives<bool>(model.showIndexCardImage(index));
        gives<bool>(model.referenced(index));
        gives<bool>(model.isReadOnly(index, TVL::NotesText));
    });
}

void TstModelAttributeInterface::howAnItemIsShown()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<double>(model.scaleFactor(index));
        gives<bool>(model.scaleToFit(index));
        gives<int>(model.rotation(index));
        gives<int>(model.countTarget(index));
        gives<TVL::TargetType>(model.targetType(index));
        gives<QString>(model.textMode(index));
        gives<bool>(model.isScriptMode(index));
        gives<QIcon>(model.icon(index));
    });
}

void TstModelAttributeInterface::whetherAnItemHasTexts()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.hasDocumentNote(index));
        gives<bool>(model.hasText(index));
        gives<bool>(model.hasSynopsis(index));
        gives<bool>(model.hasCustomMetaData(index));
        gives<QByteArray>(model.noteMd5(index));
        gives<QByteArray>(model.textMd5(index));
        gives<QByteArray>(model.synopsisMd5(index));
    });
}

void TstModelAttributeInterface::addressesAndFiles()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLProjectNode *node) {
        gives<QUrl>(model.webUrl(index));
        gives<QUrl>(model.url(node));
        gives<QUrl>(model.nodeUrl(index, true));
        gives<bool>(model.isDynamicWebNode(node));
        gives<bool>(model.isHtmlWebNode(index));
        gives<QString>(model.rootPathTitle(index));
        gives<bool>(model.isLocalNode(node));
    });
}

void TstModelAttributeInterface::imagesOfItems()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLProjectNode *node) {
        gives<bool>(model.hasIndexCardImage(index));
        gives<QImage>(model.rawDataImage(index));
        gives<QPixmap>(model.indexCardPixmap(index));
        gives<bool>(model.setIndexCardImage(index, QImage()));
        gives<bool>(model.isImage(node));
        gives<bool>(model.canDisplayAsImage(index));
        gives<QModelIndexList>(model.imageIndexes(index));
    });
}

void TstModelAttributeInterface::askingAboutSubtrees()
{
    areCallable([](const TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.containsNonTextChildren(index));
        gives<bool>(model.containsFoldersAndTextOnly(index));
        gives<bool>(model.containsDynamicWebNode(index));
        gives<QModelIndexList>(model.textIndexes());
        gives<QModelIndexList>(model.indexesViaType(TVL::Image, index));
        gives<QModelIndexList>(model.scriptIndexes(index));
        gives<QModelIndexList>(model.nonDraftTextChildrenAndSubChildren());
        gives<QModelIndexList>(model.nonDraftChildrenAndSubChildren());
    });
    areCallable([](const TVLProjectModel &model) {
        const auto items = model.findBasicNodeInfo(true, true, true, u" "_s);
        gives<QList<TVLBasicNodeInfo>>(items);
        gives<QUuid>(items.first().mUuid);
        gives<QString>(items.first().mTitle);
        gives<QIcon>(items.first().mIcon);
    });
}

void TstModelAttributeInterface::theProject()
{
    areCallable([](const TVLProjectModel &model) {
        gives<TVLProjectSettings *>(model.settings());
        gives<QString>(model.directoryName());
        gives<TVL::FormatVersion>(model.formatVersion());
        gives<bool>(model.tintIcons());
        gives<bool>(model.isSaved());
        gives<bool>(model.isModified());
        gives<bool>(model.hasProjectNotes());
        gives<QStringList>(model.customIconNames());
        gives<QPixmap>(model.customIcon(u"a"_s));
        gives<QString>(model.deviceName());
        gives<QString>(model.name());
        gives<QDir>(model.path());
    });
}

void TstModelAttributeInterface::titleAndAuthor()
{
    areCallable([](TVLProjectModel &model, const QString &text) {
        gives<QString>(model.defaultProjectTitle());
        gives<QString>(model.defaultProjectAbbreviatedTitle());
        gives<QString>(model.defaultAuthorFullName());
        gives<QString>(model.defaultAuthorSurname());
        gives<QString>(model.defaultAuthorForename());
        gives<QString>(model.projectTitle());
        gives<QString>(model.projectAbbreviatedTitle());
        gives<QString>(model.authorFullName());
        gives<QString>(model.authorSurname());
        gives<QString>(model.authorForename());
        model.setProjectTitle(text);
        model.setProjectAbbreviatedTitle(text);
        model.setAuthorFullName(text);
        model.setAuthorSurname(text);
        model.setAuthorForename(text);
    });
}

void TstModelAttributeInterface::thePage()
{
    areCallable([](TVLProjectModel &model, QPrinter *printer) {
        gives<QPrinter *>(model.printer());
        model.setPrinter(printer);
        gives<QRectF>(model.printerPageRect());
        gives<QSizeF>(model.printerPageSize());
    });
}

void TstModelAttributeInterface::settersThatTouch()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.setType(index, TVL::Folder));
        gives<bool>(model.setTargetType(index, TVL::CharactersTarget));
        gives<bool>(model.setWebUrl(index, QUrl()));
        gives<bool>(model.setCustomIcon(index, u"a"_s));
        gives<bool>(model.setActualSize(index));
        gives<bool>(model.setScaleFactor(index, 2.0));
        gives<bool>(model.setTitle(index, u"a"_s));
        gives<bool>(model.setLabelIdentity(index, 1));
        gives<bool>(model.setStatusIdentity(index, 1));
        gives<bool>(model.setIncludeInCompile(index, true));
        gives<bool>(model.setPageBreakBefore(index, true));
        gives<bool>(model.setPreserveFormatting(index, true));
        gives<bool>(model.setShowIndexCardImage(index, true));
        gives<bool>(model.setTextMode(index, TVLProjectModel::ScriptFormatMode));
    });
}

void TstModelAttributeInterface::settersThatDoNotTouch()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<bool>(model.setRotation(index, 1));
        gives<bool>(model.setScaleToFit(index, true));
        gives<bool>(model.setCountTarget(index, 1));
        gives<bool>(model.setLastModified(index, QDateTime()));
        gives<bool>(model.setSelection(index, QPair<int, int>(0, 1)));
    });
}

void TstModelAttributeInterface::labelAndStatusThatAreGone()
{
    areCallable(
        [](TVLProjectModel &model, const QModelIndex &index, TVLProjectNodeProperties &item) {
            model.verifyLabelStatusIdentity(index, 1, 1);
            gives<bool>(model.verifyLabelStatusIdentity(item));
        });
}

void TstModelAttributeInterface::customIcons()
{
    areCallable([](TVLProjectModel &model, const QString &name) {
        gives<bool>(model.addCustomIcon(name, QImage()));
        gives<bool>(model.renameCustomIcon(name, name));
        gives<bool>(model.removeCustomIcon(name));
        model.setTintIcons(true);
    });
}

void TstModelAttributeInterface::theBackdrop()
{
    areCallable([](TVLProjectModel &model) {
        model.setFullScreenBackdrop(QVariant());
        model.setFullScreenBackdrop(u"a"_s);
        model.setFullScreenBackdrop(1);
        model.clearFullScreenBackdrop();
        gives<bool>(model.fullScreenBackdropIsNodeId());
        gives<int>(model.fullScreenBackdropNodeId());
        gives<QPixmap>(model.fullScreenBackdropPixmap());
    });
}

void TstModelAttributeInterface::settersOfTheProject()
{
    areCallable([](TVLProjectModel &model, const QString &text) {
        model.setDraftTarget(TVLDraftTarget());
        model.setSessionTarget(TVLSessionTarget());
        model.setName(text);
        model.setDeviceName(text);
        model.setInfo(TVLProjectInfo());
        model.setScriptMode(TVLScriptMode());
        model.setFormatVersion(TVL::FormatVersion23);
        model.setExcludeFromBackup(true);
    });
}

TVL_TEST(TstModelAttributeInterface)
#include "tst_modelattributeinterface.moc"
