#include "TVLProjectModel_p.h"

#include "TVLCoreUtil.h"
#include "TVLDocumentSave_p.h"
#include "TVLDoors.h"
#include "TVLGuiUtil.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLMessageBox.h"
#include "TVLOptions.h"
#include "TVLProjectFileNames_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectFolderMonitor.h"
#include "TVLProjectNode.h"
#include "TVLProjectSettings.h"
#include "TVLSearchIndex.h"
#include "TVLTextDocument.h"

#include <QApplication>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace {

struct SystemFolderRow
{
    TVL::NodeType type;
    const char *title;
};

constexpr SystemFolderRow SystemFolderRows[] = {
    {TVL::DraftFolder, QT_TRANSLATE_NOOP("TVLProjectModel", "Draft")},
    {TVL::ResearchFolder, QT_TRANSLATE_NOOP("TVLProjectModel", "Research")},
    {TVL::TrashFolder, QT_TRANSLATE_NOOP("TVLProjectModel", "Trash")},
};

struct LabelRow
{
    int id;
    const char *title;
    QRgb color; ///< 0 for none.
};

constexpr LabelRow LabelRows[] = {
    {-1, QT_TRANSLATE_NOOP("TVLProjectModel", "No Label"), 0},
    {0, QT_TRANSLATE_NOOP("TVLProjectModel", "Concept"), qRgb(192, 192, 255)},
    {1, QT_TRANSLATE_NOOP("TVLProjectModel", "Chapter"), qRgb(255, 192, 192)},
};

struct StatusRow
{
    int id;
    const char *title;
};

constexpr StatusRow StatusRows[] = {
    {-1, QT_TRANSLATE_NOOP("TVLProjectModel", "No Status")},
    {0, QT_TRANSLATE_NOOP("TVLProjectModel", "N/A")},
    {1, QT_TRANSLATE_NOOP("TVLProjectModel", "To Do")},
    {2, QT_TRANSLATE_NOOP("TVLProjectModel", "First Draft")},
    {3, QT_TRANSLATE_NOOP("TVLProjectModel", "Revised Draft")},
    {4, QT_TRANSLATE_NOOP("TVLProjectModel", "Final Draft")},
    {5, QT_TRANSLATE_NOOP("TVLProjectModel", "Done")},
};

} // namespace

// --- Coming to life

TVLProjectModel *TVLProjectModel::createBlankProjectInMemory(const QString &path, QObject *parent)
{
    auto *model = new TVLProjectModel(path, parent, false, TVL::FormatVersion18);
    model->initBlankProject();
    return model;
}

void TVLProjectModel::createBlankProjectOnHdd(const QString &path, QObject *parent)
{
    const std::unique_ptr<TVLProjectModel> model(createBlankProjectInMemory(path, parent));
    model->saveAll(true);
}

void TVLProjectModel::initBlankProject()
{
    if (!d->mRootNode->mChildren.isEmpty())
        return;
    const QScopedValueRollback suspend(d->mSuspendModified, true);

    // The format decides whether the first items get ids, so it comes first.
    d->setFolderFormatVersion(TVL::FormatVersion18);
    beginInsertRows(QModelIndex(), 0, int(std::size(SystemFolderRows)) - 1);
    for (const SystemFolderRow &row : SystemFolderRows) {
        // Their ids are those, even where files of another project lie: they have none of their
        // own.
        const int id = d->mMobileProject ? -1 : int(row.type);
        TVLProjectNode *node = createProjectNode(d->mRootNode.get(), -1, QUuid(), id);
        node->mTitle = tr(row.title);
        node->mNodeType = row.type;
    }
    endInsertRows();
    insertRows(0, 1, draftFolder());

    d->mLabelTitle = tr("Label");
    d->mStatusTitle = tr("Status");
    d->addDefaultLabelsAndStatusItems();
    d->addDefaultProjectNotesAndCollections();
    d->ensureProperProjectNotes();
}

void TVLProjectModelPrivate::addDefaultLabelsAndStatusItems()
{
    // A binder without items may have brought lists of its own; those stay.
    if (mSearchIndex->labels().isEmpty()) {
        for (const LabelRow &row : LabelRows)
            mSearchIndex->addLabel(row.id, TVLProjectModel::tr(row.title),
                                   row.color ? QColor(row.color) : QColor());
    }
    if (mSearchIndex->statusItems().isEmpty()) {
        for (const StatusRow &row : StatusRows)
            mSearchIndex->addStatusItem(row.id, TVLProjectModel::tr(row.title));
    }
}

void TVLProjectModel::initProject(QStringList *errors)
{
    // Also when the binder gave nothing: a project that has lost its binder may have its notes.
    d->readProjectNotes(errors);
    if (d->mRootNode->mChildren.isEmpty()) {
        initBlankProject();
        return;
    }
    // Damaged, the file is left alone until the user chooses another mode.
    QString error;
    if (!TVLProjectFolderFormat::readScriptSettings(d->mPath, &d->mScriptMode, &error))
        qWarning("Could not read the script mode of '%ls': %ls", qUtf16Printable(d->mPath),
                 qUtf16Printable(error));
    d->reportItemsWithoutId(errors);
    d->updateHasSnapshots();
    if (d->mHasSearch)
        d->fillSearchIndex();
    d->addDefaultProjectNotesAndCollections();
    d->ensureProperProjectNotes();
}

void TVLProjectModel::setOnlyRead(bool withSearch)
{
    d->mIsOnlyRead = true;
    d->mHasSearch = withSearch;
}

/** Tells once of all items that have no place for their texts. */
void TVLProjectModelPrivate::reportItemsWithoutId(QStringList *errors) const
{
    int count = 0;
    QString firstTitle;
    tvlForEachNode(mRootNode.get(), [&](const TVLProjectNode *node) {
        if (node->mId >= 0 || node->mNodeType < TVL::Folder)
            return;
        if (++count == 1)
            firstTitle = node->mTitle.isEmpty() ? TVLProjectModel::trUntitledTitle() : node->mTitle;
    });
    if (count > 0 && errors)
        errors->append(TVLProjectModel::tr(
                           "Items without an id have no place for their texts, which can't be read "
                           "or edited. There are %1, the first of them is '%2'.")
                           .arg(QString::number(count), firstTitle));
}

void TVLProjectModelPrivate::updateHasSnapshots()
{
    // Few items of a large project have snapshots, so the folder is listed once and only what it
    // names is looked into.
    const QDir directory(TVLProjectFolderFormat::snapshotsPath(mPath));
    const QStringList names = directory.entryList({u'*' + TVLProjectFileNames::SnapshotsEnd},
                                                  QDir::Dirs | QDir::NoDotAndDotDot);
    const QSet<QString> present(names.begin(), names.end());
    tvlForEachNode(mRootNode.get(), [&](TVLProjectNode *node) {
        node->mHasSnapshots = !present.isEmpty()
            && present.contains(TVLProjectFileNames::snapshotsFolder(node->mId))
            && TVLProjectFolderFormat::hasSnapshotsViaSnapshotsDir(directory, node->mId);
    });
}

void TVLProjectModelPrivate::addDefaultProjectNotesAndCollections()
{
    addDefaultProjectNotes();
    q->addDefaultCollections();
}

void TVLProjectModel::loadOptions()
{
    d->mTreatTextWithChildrenAsFolder =
        tvlOptions()->value(TVLOptions::TreatTextWithChildrenAsFolder);
    d->mAutoSaveSeconds = tvlOptions()->value(TVLOptions::AutoSaveSeconds);
}

TVLProjectSettings *TVLProjectModelPrivate::newSettings()
{
    // Put together here, because asking for the file's path would make a folder for a project that
    // has none yet.
    return new TVLProjectSettings(TVLProjectFolderFormat::settingsPath(mPath) + u'/'
                                      + TVLProjectFileNames::WindowSettings,
                                  q);
}

void TVLProjectModel::loadProjectSettings()
{
    d->mTintIcons = d->mSettings->value(TVLSettings::TintBinderIcons);
    // Only older projects have it there.
    if (d->mSettings->contains(d->mSettings->keyText(TVLSettings::ExcludeFromBackups)))
        d->mBackupIncluded = !d->mSettings->value(TVLSettings::ExcludeFromBackups);
}

void TVLProjectModel::onOptionsChanged(const QStringList &groups)
{
    if (groups.contains(u"Navigation") || groups.contains(u"General"))
        loadOptions();
    // Passed on from here, so that thousands of documents need no connection of their own.
    const QList<TVLTextDocument *> children =
        findChildren<TVLTextDocument *>(QString(), Qt::FindDirectChildrenOnly);
    const QList<QPointer<TVLTextDocument>> documents(children.begin(), children.end());
    for (const QPointer<TVLTextDocument> &document : documents) {
        if (document)
            document->reflectSettings(groups);
    }
}

// --- Saving

void TVLProjectModel::markProjectAsModified(bool set)
{
    if (!set || d->mSuspendModified)
        return;
    const bool wasSaved = d->mSaved;
    d->mSaved = false;
    ++d->mChangeCount;
    if (wasSaved)
        Q_EMIT modifiedChanged(true);
    d->stopAutoSaveTimer();
    d->mAutoSaveTimer = startTimer(d->mAutoSaveSeconds * 1000);
}

void TVLProjectModelPrivate::stopAutoSaveTimer()
{
    if (mAutoSaveTimer != -1)
        q->killTimer(mAutoSaveTimer);
    mAutoSaveTimer = -1;
}

void TVLProjectModel::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == d->mAutoSaveTimer) {
        d->stopAutoSaveTimer();
        if (d->mIsSaving)
            d->mAutoSaveTimer = startTimer(d->mAutoSaveSeconds * 1000);
        else
            save(false);
    } else {
        QAbstractItemModel::timerEvent(event);
    }
}

void TVLProjectModel::setExcludeFromBackup(bool exclude)
{
    d->mBackupIncluded = !exclude;
    markProjectAsModified(true);
}

bool TVLProjectModel::save(bool force)
{
    if (d->mIsOnlyRead)
        return false;
    // Boxes and progress dialogs run the event loop, where others may ask for a save.
    if (d->mIsSaving) {
        // Who insists has changed something that the save under way may be past already.
        markProjectAsModified(force);
        return false;
    }
    const QScopedValueRollback saving(d->mIsSaving, true);
    return d->saveNow(force);
}

bool TVLProjectModelPrivate::saveNow(bool force)
{
    mDocuments->askEditors();
    stopAutoSaveTimer();
    if (mSaved && !force)
        return true;
    // Before a binder comes that gives the id of a removed item to another one.
    if (mSearchIndex->isFileMisleading())
        saveSearch(true);
    const quint64 changeCount = mChangeCount;
    const bool result = q->saveChanges(nullptr);
    mIsDiskBehind = !result || mChangeCount != changeCount;
    // What was changed while a box was up isn't on disk, nor has the user seen an error for it.
    if (mChangeCount != changeCount)
        return result;
    // Also after a failure: the user has seen the error, and the next change asks again.
    mSaved = true;
    Q_EMIT q->modifiedChanged(false);
    return result;
}

bool TVLProjectModel::saveChanges(QStringList *errors) const
{
    if (d->mPath.isEmpty() || d->mIsOnlyRead
        || !TVLGuiUtil::CanWriteLocation(d->mPath, true, true, QApplication::activeWindow()))
        return false;

    if (d->isIncompatible()) {
        // Its ids and uuids could not be read, so the texts would belong to no item afterwards.
        const QStringList failures(
            tr("Project '%1' is incompatible with this version of Tavelinor.").arg(d->mName));
        d->showSaveErrors(failures);
        if (errors)
            *errors = failures;
        return false;
    }
    d->mInfo.mModId = tvlNewUuid();
    d->mInfo.mModified = tvlNow().toUTC();
    d->mInfo.mDevice = platformDeviceName();
    // A kill while it was being written leaves it empty.
    if (QFileInfo(TVLProjectFolderFormat::versionFilePath(d->mPath)).size() == 0)
        TVLProjectFolderFormat::writeFormatVersion(d->mPath, formatVersion());

    QStringList failures;
    d->saveBinder(&failures);
    d->mDocuments->saveAll(&failures);
    d->saveProjectNotes(&failures);

    if (!failures.isEmpty())
        d->showSaveErrors(failures);
    if (errors)
        *errors = failures;
    return failures.isEmpty();
}

void TVLProjectModelPrivate::saveBinder(QStringList *failures) const
{
    QString error;
    if (TVLProjectFolderFormat::writeBinder(mPath, q, &error)) {
        // The binder has it now.
        mSettings->remove(mSettings->keyText(TVLSettings::ExcludeFromBackups));
        return;
    }
    failures->append(
        TVLProjectModel::tr("Could not save Binder.\nError: %1\nLocation: '%2'").arg(error, mPath));
}

void TVLProjectModelPrivate::showSaveErrors(const QStringList &errors) const
{
    TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), u"Project Writer"_s,
        TVLProjectModel::tr("The following errors occurred while saving your project."),
        errors.join(u"\n--------------------\n")
            + TVLProjectModel::tr("\n\nTo avoid losing your latest changes, make sure you "
                                  "have enough space and write "
                                  "access "
                                  "on your storage device.\nYou can create a copy of your "
                                  "project into another location "
                                  "using the menu File > SaveAs.\nYou might also try to "
                                  "Compile and Save to RTF or DOC "
                                  "format to avoid losing your latest changes."),
        QMessageBox::Critical);
}

void TVLProjectModel::saveAll(bool force)
{
    save(force);
    d->saveSearch(force);
}

bool TVLProjectModelPrivate::isIncompatible() const
{
    return !mInfo.mVersion.isEmpty() && mInfo.mBinderVersion == TVL::NoBinderVersion;
}

bool TVLProjectModel::saveAs(const QString &path, bool showProgress, bool removeOldLock)
{
    if (path.isEmpty() || d->mIsSaving || d->mIsOnlyRead)
        return false;
    const QScopedValueRollback saving(d->mIsSaving, true);
    const QString target = TVLProjectFolderFormat::calcEnclosingPath(path);
    const QString source = TVLProjectFolderFormat::calcEnclosingPath(d->mPath);
    // Clearing the way for the copy must never take the project itself.
    if (TVLCoreUtil::IsSameOrInside(target, source) || TVLCoreUtil::IsSameOrInside(source, target))
        return false;
    if (QFileInfo::exists(target) && !TVLCoreUtil::DeleteFolderAndFiles(target))
        return false;
    if (!TVLProjectFolderFormat::copyProjectProgress(source, target, false, false, false,
                                                     showProgress, QApplication::activeWindow()))
        return false;

    if (d->mFolderMonitor)
        d->mFolderMonitor->stopMonitor();
    if (removeOldLock)
        TVLProjectFolderFormat::removeLock(d->mPath);
    // A lock that was copied along still names the old folder.
    TVLProjectFolderFormat::removeLock(target);
    d->mPath = target;
    d->mFolderFormat->setProjectPath(target);
    d->mName = TVLProjectFolderFormat::projectPathToProjectName(target);
    TVLProjectFolderFormat::addLock(target);
    d->takeSettingsAlong();
    d->askForFailedNotesAgain();
    d->saveNow(d->mIsDiskBehind);
    if (d->mFolderMonitor)
        d->mFolderMonitor->startMonitor(target);
    return true;
}

void TVLProjectModelPrivate::takeSettingsAlong()
{
    TVLProjectSettings *old = mSettings;
    // The copy of the project may have an older state of the file. What can't be kept of it is how
    // the windows look, no reason for the project to stay where it was.
    if (!old->saveToFile(TVLProjectFolderFormat::settingsUiFilePath(mPath)))
        qWarning("Could not take the settings along to '%ls'", qUtf16Printable(mPath));
    mSettings = newSettings();
    old->deleteLater();
}

// --- Ending

void TVLProjectModel::prepareToDestroy()
{
    d->askForFailedNotesAgain();
    save(d->mIsDiskBehind);
    // A change made while a box was up.
    save(false);
    d->saveSearch(false);
    // Until the project is opened again, others may change what lies in its folder.
    TVLProjectFolderFormat::clearSnapshotsCache(d->mPath);
    if (!d->mIsOnlyRead) {
        TVLProjectFolderFormat::removeLock(d->mPath);
        cleanDragAndDrop();
    }
    TVLProjectModelPrivate::mExistingModels.removeAll(this);
}

TVLProjectModel *TVLProjectModel::findProjectModelViaPath(const QString &path)
{
    const QString canonicalPath = TVLProjectFolderFormat::canonicalPath(path);
    for (const QPointer<TVLProjectModel> &model :
         std::as_const(TVLProjectModelPrivate::mExistingModels)) {
        if (model && model->d->mPath == canonicalPath)
            return model;
    }
    return nullptr;
}

QString TVLProjectModel::dragAndDropPath()
{
    return QDir::toNativeSeparators(
        QFileInfo(QDir::tempPath() + u"/Tavelinor/DnD"_s).absoluteFilePath());
}

void TVLProjectModel::cleanDragAndDrop()
{
    if (QFileInfo::exists(dragAndDropPath()))
        TVLCoreUtil::DeleteFolderAndFiles(dragAndDropPath());
}
