#include "TVLRegularFile.h"

#include <QCoreApplication>
#include <QFileInfo>

bool TVLRegularFile::open(OpenMode mode)
{
    const QString error = errorTextAt(fileName());
    if (error.isEmpty())
        return QFile::open(mode);
    setErrorString(error);
    return false;
}

QString TVLRegularFile::errorTextAt(const QString &path)
{
    const QFileInfo info(path);
    // A folder has words of its own for it.
    if (!info.exists() || info.isFile() || info.isDir())
        return {};
    return QCoreApplication::translate("TVLRegularFile", "It isn't an ordinary file");
}
