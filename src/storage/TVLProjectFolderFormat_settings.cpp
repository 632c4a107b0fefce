#include "TVLProjectFolderFormat.h"

#include "TVLBinderTags_p.h"
#include "TVLErrorText_p.h"
#include "TVLRedoJournal_p.h"
#include "TVLScriptMode.h"

#include <QFileInfo>

const QString TVLProjectFolderFormat::ProjectTitleTag = TVLBinderTags::ProjectTitle;
const QString TVLProjectFolderFormat::AbbreviatedTitleTag = TVLBinderTags::AbbreviatedTitle;
const QString TVLProjectFolderFormat::FullNameTag = TVLBinderTags::FullName;
const QString TVLProjectFolderFormat::LastNameTag = TVLBinderTags::LastName;
const QString TVLProjectFolderFormat::FirstNameTag = TVLBinderTags::FirstName;

bool TVLProjectFolderFormat::readScriptSettings(const QString &path, TVLScriptMode *mode,
                                                QString *error)
{
    // Asking for the file's path would make the folder.
    if (!QFileInfo::exists(settingsPath(calcEnclosingPath(path))))
        return true;
    const QString filePath = scriptformatXmlFilePath(path);
    return !QFileInfo::exists(filePath) || mode->load(filePath, error);
}

bool TVLProjectFolderFormat::writeScriptSettings(const QString &path, const TVLScriptMode &mode,
                                                 QString *error)
{
    const QByteArray xml = mode.toXml();
    if (xml.isEmpty())
        return tvlFail(error, tr("The script mode has names that can't be stored."));
    bool hasFolder = false;
    QStringList errors;
    ensurePathExists(settingsPath(calcEnclosingPath(path)), &hasFolder, &errors);
    if (!hasFolder)
        return tvlFail(error, errors.join(u'\n'));
    return tvlWriteOrUndo(path, {scriptformatXmlFilePath(path), xml}, error);
}
