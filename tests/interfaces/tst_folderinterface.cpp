#include "Callable.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectFolderMonitor.h"
#include "TVLProjectModel.h"

#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QProgressDialog>
#include <QUrl>

using namespace Qt::StringLiterals;

/** What a program can call of a project's folder, without that of items' texts. */
class TstFolderInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theObject();
    void pathsAsText();
    void pathsOfTheMobileCopy();
    void foldersThatAreMade();
    void namingAProject();
    void findingTheBinder();
    void formatVersions();
    void readingBinders();
    void writingBinders();
    void openingProjects();
    void datesAndPoints();
    void namesOfProperties();
    void theLock();
    void imagesAndIcons();
    void copyingAndRemovingProjects();
    void theMonitor();
};

void TstFolderInterface::theObject()
{
    areCallable([](QObject *parent, const QString &path) {
        TVLProjectFolderFormat format(path, TVL::FormatVersion18, parent);
        format.setProjectPath(path);
        gives<QString>(format.projectPath());
        gives<TVL::FormatVersion>(format.formatVersion());
    });
}

void TstFolderInterface::pathsAsText()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<QString>(TVLProjectFolderFormat::filesPath(path));
        gives<QString>(TVLProjectFolderFormat::filesDocsPath(path));
        gives<QString>(TVLProjectFolderFormat::filesDataPath(path));
        gives<QString>(TVLProjectFolderFormat::filesDataNodePath(path, uuid));
        gives<QString>(TVLProjectFolderFormat::settingsPath(path));
        gives<QString>(TVLProjectFolderFormat::searchIndexesFilePath(path));
        gives<QString>(TVLProjectFolderFormat::projectChecksumFilePathId(path));
        gives<QString>(TVLProjectFolderFormat::projectChecksumFilePath(path));
        gives<QString>(TVLProjectFolderFormat::filesMobileScriptsChecksumsFilePath(path));
        gives<QString>(TVLProjectFolderFormat::snapshotsPath(path));
        gives<QString>(TVLProjectFolderFormat::snapshotsNodePath(path, uuid));
        gives<QString>(TVLProjectFolderFormat::settingsScriptsMobFilePath(path));
        gives<QString>(TVLProjectFolderFormat::externalFolderSyncFilePath(path));
        gives<bool>(TVLProjectFolderFormat::filesDataNodePathExists(path, uuid));
        gives<bool>(TVLProjectFolderFormat::externalFolderSyncFilePathExists(path));
    });
}

void TstFolderInterface::pathsOfTheMobileCopy()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<QString>(TVLProjectFolderFormat::mobilePath(path));
        gives<QString>(TVLProjectFolderFormat::mobileDataPath(path));
        gives<QString>(TVLProjectFolderFormat::mobileDataNodePath(path, uuid));
        gives<QString>(TVLProjectFolderFormat::mobileBinderSyncFilePath(path));
        gives<QString>(TVLProjectFolderFormat::mobileSearchIndexesFilePath(path));
        gives<QString>(TVLProjectFolderFormat::mobileDataScriptsChecksumsFilePath(path));
        gives<QString>(TVLProjectFolderFormat::mobileDataUuidChecksumsFilePath(path, uuid));
        gives<bool>(TVLProjectFolderFormat::mobileBinderSyncFilePathExists(path));
        gives<bool>(TVLProjectFolderFormat::mobileDataNodePathExists(path, uuid));
    });
}

void TstFolderInterface::foldersThatAreMade()
{
    areCallable([](const QString &path, bool *ok, QStringList *errors) {
        gives<QDir>(TVLProjectFolderFormat::filesDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::iconsDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::docsDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::settingsDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::snapshotsDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::mobileDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::mobileDataDirectory(path, ok));
        gives<QDir>(TVLProjectFolderFormat::ensurePathExists(path, ok, errors));
        gives<QString>(TVLProjectFolderFormat::versionFilePath(path));
        gives<QString>(TVLProjectFolderFormat::settingsUiFilePath(path));
        gives<QString>(TVLProjectFolderFormat::scriptformatXmlFilePath(path));
        gives<QString>(TVLProjectFolderFormat::templateInfoXmlFilePath(path));
    });
}

void TstFolderInterface::namingAProject()
{
    areCallable([](const QString &path, QString *error) {
        gives<QString>(TVLProjectFolderFormat::calcEnclosingPath(path));
        gives<QString>(TVLProjectFolderFormat::canonicalPath(path));
        gives<QDir>(TVLProjectFolderFormat::enclosingDirectory(path));
        gives<QString>(TVLProjectFolderFormat::directoryName(path));
        gives<QString>(TVLProjectFolderFormat::projectPathToProjectName(path));
        gives<QString>(TVLProjectFolderFormat::nameFilter());
        gives<bool>(TVLProjectFolderFormat::ensureProjectPathExists(path, error));
    });
}

void TstFolderInterface::findingTheBinder()
{
    areCallable([](const QString &path) {
        gives<QString>(TVLProjectFolderFormat::defaultBinderFilePath(path));
        gives<QString>(TVLProjectFolderFormat::binderFilePathProjectTavelx(path));
        gives<QString>(TVLProjectFolderFormat::findOpenBinderFilePath(path));
        gives<QString>(TVLProjectFolderFormat::findNewestBinderFilePath(path));
    });
}

void TstFolderInterface::formatVersions()
{
    areCallable([](const QString &path) {
        gives<QString>(TVLProjectFolderFormat::readProjectBinderVersion(path));
        gives<TVL::FormatVersion>(TVLProjectFolderFormat::projectFormatVersion(path));
        gives<bool>(TVLProjectFolderFormat::isCompatible(QIODevice::ReadOnly, path));
        gives<int>(TVLProjectFolderFormat::extractVersionNumber(path));
        gives<bool>(TVLProjectFolderFormat::writeFormatVersion(path, TVL::FormatVersion18));
    });
}

void TstFolderInterface::readingBinders()
{
    areCallable([](const QString &path, QIODevice *device, TVLProjectModel *model, QString *error) {
        gives<bool>(TVLProjectFolderFormat::readBinder(device, model, error));
        gives<QString>(TVLProjectFolderFormat::readBinderVersion(device));
        gives<TVLProjectInfo>(TVLProjectFolderFormat::readBinderFileProjectInfo(path));
        gives<bool>(TVLProjectFolderFormat::readZippedBinderFilePath(path, model));
        gives<QString>(TVLProjectFolderFormat::readUserProjectData(path));
    });
    areCallable([](const QString &path, QString *error) {
        gives<QString>(TVLCoreUtil::ReadUnicodeTextFile(path, error, "UTF-8", true));
        gives<bool>(TVLCoreUtil::WriteUnicodeTextFile(path, path, error, "UTF-8"));
    });
}

void TstFolderInterface::writingBinders()
{
    areCallable([](const QString &path, TVLProjectModel *model, QString *error) {
        gives<bool>(TVLProjectFolderFormat::writeBinder(path, model, error));
        gives<bool>(TVLProjectFolderFormat::writeDesktopBinder(path, model, error));
        gives<bool>(TVLProjectFolderFormat::writeMobileBinder(path, model, error));
        gives<bool>(TVLProjectFolderFormat::compressBinder(path, u"binder.backup"_s, path));
    });
}

void TstFolderInterface::openingProjects()
{
    areCallable([](const QString &path, QObject *parent, QString *error) {
        gives<TVLProjectModel *>(TVLProjectFolderFormat::openProject(path, path, parent));
        gives<TVLProjectModel *>(
            TVLProjectFolderFormat::openMobileSyncProject(path, parent, error));
        gives<bool>(TVLProjectFolderFormat::isNewMobileProjectTavelxContents(path));
        gives<bool>(TVLProjectFolderFormat::ensureMobileBinderSyncFileName(path));
    });
}

void TstFolderInterface::datesAndPoints()
{
    areCallable([](const QString &text, bool *ok) {
        gives<QString>(TVLProjectFolderFormat::dateTimeToString(QDateTime(), true));
        gives<QDateTime>(TVLProjectFolderFormat::stringToDateTime(text, true));
        gives<QString>(TVLProjectFolderFormat::pointFToString(QPointF()));
        gives<QPointF>(TVLProjectFolderFormat::stringToPointF(text, ok));
    });
}

void TstFolderInterface::namesOfProperties()
{
    areCallable([](TVLProjectModel *model) {
        for (const QString &tag :
             {TVLProjectFolderFormat::ProjectTitleTag, TVLProjectFolderFormat::AbbreviatedTitleTag,
              TVLProjectFolderFormat::FullNameTag, TVLProjectFolderFormat::LastNameTag,
              TVLProjectFolderFormat::FirstNameTag})
            model->setProperty(tag.toLatin1().constData(), u"a"_s);
    });
}

void TstFolderInterface::theLock()
{
    areCallable([](const QString &path, QString *text) {
        gives<bool>(TVLProjectFolderFormat::lockExists(path));
        gives<bool>(TVLProjectFolderFormat::addLock(path));
        gives<bool>(TVLProjectFolderFormat::removeLock(path));
        gives<int>(TVLProjectFolderFormat::compareLockFile(path, text, text, text));
        gives<int>(TVLProjectFolderFormat::compareLockFile(path, nullptr, nullptr, nullptr));
        gives<QUuid>(TVLProjectFolderFormat::userLockId());
    });
}

void TstFolderInterface::imagesAndIcons()
{
    areCallable([](const QString &path, const QString &extension, const QImage &image) {
        gives<QString>(TVLProjectFolderFormat::indexCardImagePath(path, 1, extension));
        gives<QImage>(TVLProjectFolderFormat::indexCardImage(path, 1, extension));
        gives<QPixmap>(TVLProjectFolderFormat::indexCardPixmap(path, 1, extension));
        gives<bool>(TVLProjectFolderFormat::setIndexCardImage(path, 1, extension, image));
        gives<bool>(TVLProjectFolderFormat::setIndexCardPixmap(path, 1, extension, QPixmap()));
        gives<bool>(TVLProjectFolderFormat::writeImageFile(path, 1, extension, image, -1));
        gives<QUrl>(TVLProjectFolderFormat::url(path, 1, extension));
    });
    areCallable([](const QString &path, const QString &name, const QImage &image) {
        gives<bool>(TVLProjectFolderFormat::addIcon(path, name, image));
        gives<bool>(TVLProjectFolderFormat::removeIcon(path, name));
        gives<bool>(TVLProjectFolderFormat::renameIcon(path, name, name));
        gives<QPixmap>(TVLProjectFolderFormat::icon(path, name));
        gives<QStringList>(TVLProjectFolderFormat::icons(path));
    });
}

void TstFolderInterface::copyingAndRemovingProjects()
{
    areCallable([](const QString &path, const QDir &folder, QProgressDialog *progress,
                   TVLProgress &anyProgress, QWidget *parent) {
        gives<bool>(TVLProjectFolderFormat::copyDirectory(folder, folder, progress));
        gives<bool>(TVLProjectFolderFormat::copyDirectory(folder, folder, anyProgress));
        gives<bool>(TVLProjectFolderFormat::copyProject(path, path, true, progress, true, true));
        gives<bool>(TVLProjectFolderFormat::copyProject(path, path, true, anyProgress, true, true));
        gives<bool>(TVLProjectFolderFormat::copyProjectProgress(path, path, true, true, true, true,
                                                                parent));
        gives<bool>(TVLProjectFolderFormat::removeDirectory(folder));
        gives<bool>(TVLProjectFolderFormat::removeProject(path));
    });
}

void TstFolderInterface::theMonitor()
{
    areCallable([](const QString &path, QObject *parent) {
        TVLProjectFolderMonitor monitor(path, parent);
        monitor.setMonitorPath(path);
        gives<bool>(monitor.startMonitor(path));
        gives<bool>(monitor.startMonitor());
        monitor.stopMonitor();
        gives<bool>(std::as_const(monitor).isOk(path));
        QObject::connect(&monitor, &TVLProjectFolderMonitor::externallyModified, parent,
                         [](const QString &) {});
    });
}

TVL_TEST(TstFolderInterface)
#include "tst_folderinterface.moc"
