#include "TVLSettingsFile_p.h"

#include "TVLRegularFile.h"

#include <QFileInfo>
#include <QLockFile>

QString tvlSettingsPath(const QString &path)
{
    return TVLRegularFile::errorTextAt(path).isEmpty() ? path : path + u"/none"_qs;
}

void tvlRemoveLeftOverGuard(const QString &settingsPath)
{
    const QString guardPath = settingsPath + u".lock"_qs;
    if (QFileInfo(guardPath).isFile())
        (void)QLockFile(guardPath).removeStaleLockFile();
}
