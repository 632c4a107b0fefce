#pragma once

#include "TVL.h"

#include <QIODevice>
#include <QString>

#include <memory>

/**
 * A file of a project that is to be read, as a save that was interrupted is going to leave it: what
 * the journal still has for a file counts before what the file holds.
 */
class TVLProjectFile
{
public:
    /** A numbered document's file. */
    TVLProjectFile(const QString &projectPath, int id, TVL::DocumentType type);
    TVLProjectFile(const QString &projectPath, const QString &filePath);

    [[nodiscard]] QString path() const { return mPath; }
    /** Whether there certainly is no such file. */
    [[nodiscard]] bool isMissing() const;
    /** The content; null, with the reason in @p error if given, when it can't be read. */
    [[nodiscard]] std::unique_ptr<QIODevice> open(QString *error) const;

private:
    QString mProjectPath;
    QString mPath;
};
