/*
 * Opening a project is told here and not with the rest of the folder's class, because it is where a
 * model comes to life: what lies below the model doesn't know it.
 */
#include "TVLProjectFolderFormat.h"

#include "TVLProjectModel.h"
#include "TVLRedoJournal_p.h"
#include "TVLRegularFile.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>

#include <functional>
#include <memory>

namespace {

bool readPlainBinder(const QString &filePath, TVLProjectModel *model)
{
    TVLRegularFile file(filePath);
    return file.open(QIODevice::ReadOnly)
        && TVLProjectFolderFormat::readBinder(&file, model, nullptr);
}

/** A file that may hold the project's binder, and how it is read. */
struct BinderSource
{
    QString filePath;
    std::function<bool(const QString &, TVLProjectModel *)> read;
};

void showErrors(const QStringList &errors)
{
    QMessageBox::critical(
        QApplication::activeWindow(), TVLProjectFolderFormat::tr("Project Loader"),
        TVLProjectFolderFormat::tr("Errors reading project.\nError: %1").arg(errors.join(u'\n')),
        QMessageBox::Ok);
}

/** Completes a model whose binder was read; the caller owns it. */
TVLProjectModel *initialized(std::unique_ptr<TVLProjectModel> model)
{
    QStringList errors;
    model->initProject(&errors);
    if (!errors.isEmpty())
        showErrors(errors);
    return model.release();
}

} // namespace

TVLProjectModel *TVLProjectFolderFormat::openProject(const QString &path,
                                                     const QString &templatePath, QObject *parent)
{
    const QString projectPath = calcEnclosingPath(path);
    // Templates can't be unpacked yet; a blank project in place of one would be a silent surprise.
    if (!templatePath.isEmpty() && !QFileInfo::exists(projectPath))
        return nullptr;
    // Before anything is read: the save that it completes may have been writing any of the files.
    TVLRedoJournal::replay(projectPath);
    const QString binderPath = findOpenBinderFilePath(path);
    const BinderSource sources[] = {
        {binderPath, readPlainBinder},
        {binderAutosaveFilePath(projectPath), readZippedBinderFilePath},
        {binderBackupFilePath(projectPath), readZippedBinderFilePath},
    };

    bool foundBinder = false;
    for (const BinderSource &source : sources) {
        if (!QFileInfo::exists(source.filePath))
            continue;
        foundBinder = true;
        // Each attempt starts with a model of its own: what a failed one has read must not mix with
        // what the next finds.
        auto model = std::make_unique<TVLProjectModel>(projectPath, parent);
        if (!source.read(source.filePath, model.get()))
            continue;
        model->setUserProjectData(readUserProjectData(source.filePath));
        if (source.filePath == binderPath)
            compressBinder(path, u"binder.backup"_qs, binderPath);
        return initialized(std::move(model));
    }
    // Without any binder the project is a blank one.
    return foundBinder ? nullptr
                       : initialized(std::make_unique<TVLProjectModel>(projectPath, parent));
}

TVLProjectModel *TVLProjectFolderFormat::openMobileSyncProject(const QString &path, QObject *parent,
                                                               QString *error)
{
    const QString projectPath = calcEnclosingPath(path);
    TVLRegularFile file(mobileBinderSyncFilePath(projectPath));
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return nullptr;
    auto model = std::make_unique<TVLProjectModel>(projectPath, parent, true);
    if (!readBinder(&file, model.get(), error))
        return nullptr;
    return model.release();
}
