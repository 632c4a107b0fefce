#include "TVLFilePresence_p.h"

#include <QFileInfo>

bool tvlIsThere(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymbolicLink() || info.exists(); // In this order one look answers both.
}

bool tvlIsMissing(const QString &path)
{
    if (path.isEmpty()) // Neither is a folder of it.
        return true;
    if (tvlIsThere(path))
        return false;
    const QFileInfo folder(QFileInfo(path).path());
    return folder.isExecutable() || tvlIsMissing(folder.filePath());
}
