#include "TVLProjectFile_p.h"

#include "TVLProjectFolderFormat.h"
#include "TVLRedoJournal_p.h"

#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLRegularFile.h"

#include <QBuffer>

TVLProjectFile::TVLProjectFile(const QString &projectPath, int id, TVL::DocumentType type)
    : mProjectPath(TVLProjectFolderFormat::calcEnclosingPath(projectPath))
    , mPath(TVLProjectFolderFormat::filesDocsNodeTypeFilePath(mProjectPath, id, type))
{
}

TVLProjectFile::TVLProjectFile(const QString &projectPath, const QString &filePath)
    : mProjectPath(TVLProjectFolderFormat::calcEnclosingPath(projectPath))
    , mPath(filePath)
{
}

bool TVLProjectFile::isMissing() const
{
    return tvlIsMissing(mPath) && !TVLRedoJournal::pendingContent(mProjectPath, mPath);
}

std::unique_ptr<QIODevice> TVLProjectFile::open(QString *error) const
{
    if (const std::optional<QByteArray> content =
            TVLRedoJournal::pendingContent(mProjectPath, mPath)) {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(*content);
        buffer->open(QIODevice::ReadOnly);
        return buffer;
    }
    auto file = std::make_unique<TVLRegularFile>(mPath);
    if (!file->open(QIODevice::ReadOnly)) {
        tvlSetError(error, file->errorString());
        return nullptr;
    }
    return file;
}
