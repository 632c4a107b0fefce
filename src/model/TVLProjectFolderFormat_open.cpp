/*
 * Opening a project is told here and not with the rest of the folder's class, because it is where a
 * model comes to life: what lies below the model doesn't know it.
 */
#include "TVLProjectFolderFormat.h"

#include "TVLMessageBox.h"
#include "TVLProjectFileNames_p.h"
#include "TVLProjectModel.h"
#include "TVLRedoJournal_p.h"
#include "TVLRegularFile.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

#include <functional>
#include <memory>

namespace {

/** As it is once an interrupted save is completed. */
bool readPlainBinder(const QString &filePath, TVLProjectModel *model)
{
    const std::unique_ptr<QIODevice> binder =
        TVLProjectFolderFormat::openFile(filePath, filePath, nullptr);
    return binder && TVLProjectFolderFormat::readBinder(binder.get(), model, nullptr);
}

/** A file that may hold the project's binder, and how it is read. */
struct BinderSource
{
    QString filePath;
    std::function<bool(const QString &, TVLProjectModel *)> read;
};

QList<BinderSource> binderSources(const QString &projectPath, const QString &binderPath)
{
    return {
        {binderPath, readPlainBinder},
        {TVLProjectFolderFormat::binderAutosaveFilePath(projectPath),
         TVLProjectFolderFormat::readZippedBinderFilePath},
        {TVLProjectFolderFormat::binderBackupFilePath(projectPath),
         TVLProjectFolderFormat::readZippedBinderFilePath},
    };
}

/** A model with what the first readable of the sources holds. */
struct ReadBinder
{
    std::unique_ptr<TVLProjectModel> model; ///< Null when none could be read.
    QString filePath;
    bool wasThere = false; ///< Whether any of the files is there.
};

ReadBinder readFirst(const QList<BinderSource> &sources,
                     const std::function<std::unique_ptr<TVLProjectModel>()> &makeModel)
{
    ReadBinder result;
    for (const BinderSource &source : sources) {
        if (!QFileInfo::exists(source.filePath))
            continue;
        result.wasThere = true;
        // Each attempt starts with a model of its own: what a failed one has read must not mix with
        // what the next finds.
        auto model = makeModel();
        if (!source.read(source.filePath, model.get()))
            continue;
        model->setUserProjectData(TVLProjectFolderFormat::readUserProjectData(source.filePath));
        result.model = std::move(model);
        result.filePath = source.filePath;
        break;
    }
    return result;
}

void showErrors(const QStringList &errors)
{
    TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), TVLProjectFolderFormat::tr("Project Loader"),
        TVLProjectFolderFormat::tr("Errors reading project.\nError: %1").arg(errors.join(u'\n')),
        QString(), QMessageBox::Critical);
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
    const auto makeModel = [&] { return std::make_unique<TVLProjectModel>(projectPath, parent); };
    ReadBinder binder = readFirst(binderSources(projectPath, binderPath), makeModel);
    if (!binder.wasThere) // Without any binder the project is a blank one.
        return initialized(makeModel());
    if (!binder.model)
        return nullptr;
    if (binder.filePath == binderPath)
        compressBinder(path, TVLProjectFileNames::BinderBackup, binderPath);
    return initialized(std::move(binder.model));
}

TVLProjectModel *TVLProjectFolderFormat::openProjectToRead(const QString &path, ReadingScope scope,
                                                           QObject *parent)
{
    const QString projectPath = calcEnclosingPath(path);
    const auto makeModel = [&] {
        auto model = std::make_unique<TVLProjectModel>(projectPath, parent);
        model->setOnlyRead(scope == ItemsAndSearch);
        return model;
    };
    ReadBinder binder =
        readFirst(binderSources(projectPath, presentBinderFilePath(path)), makeModel);
    return binder.model ? initialized(std::move(binder.model)) : nullptr;
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
