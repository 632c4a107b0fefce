#include "TVLSettingsFile_p.h"

#include "TVLRegularFile.h"

#include <QFileInfo>
#include <QLockFile>

using namespace Qt::StringLiterals;

QString tvlSettingsPath(const QString &path)
{
    return TVLRegularFile::errorTextAt(path).isEmpty() ? path : path + u"/none"_s;
}

void tvlRemoveLeftOverGuard(const QString &settingsPath)
{
    const QString guardPath = settingsPath + u".lock"_s;
    if (QFileInfo(guardPath).isFile())
        (void)QLockFile(guardPath).removeStaleLockFile();
}
