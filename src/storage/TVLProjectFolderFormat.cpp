#include "TVLProjectFolderFormat.h"

#include "TVLBinderReader.h"
#include "TVLBinderText.h"
#include "TVLCoreUtil.h"
#include "TVLFileWriting_p.h"
#include "TVLProjectFileNames_p.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

TVLProjectFolderFormat::TVLProjectFolderFormat(const QString &path, TVL::FormatVersion version,
                                               QObject *parent)
    : QObject(parent)
    , mProjectPath(path)
    , mFormatVersion(version)
    , mHadDocuments(hasDocumentsFolder())
{
}

void TVLProjectFolderFormat::setProjectPath(const QString &path)
{
    mProjectPath = calcEnclosingPath(path);
    mHadDocuments = hasDocumentsFolder();
}

bool TVLProjectFolderFormat::hasDocumentsFolder() const
{
    return QFileInfo(filesDocsPath(calcEnclosingPath(mProjectPath))).isDir();
}

int TVLProjectFolderFormat::extractVersionNumber(const QString &text)
{
    QString digits;
    for (const QChar ch : text) {
        if (ch.isNumber())
            digits.append(ch);
    }
    return digits.toInt();
}

TVL::FormatVersion TVLProjectFolderFormat::projectFormatVersion(const QString &path)
{
    const QString filePath =
        filesPath(calcEnclosingPath(path)) + u'/' + TVLProjectFileNames::Version;
    if (QFileInfo::exists(filePath))
        return TVL::FormatVersion(
            extractVersionNumber(TVLCoreUtil::ReadUnicodeTextFile(filePath, nullptr)));

    const QString text = readProjectBinderVersion(path);
    int version = 0;
    if (text == u"1.0")
        version = TVL::FormatVersion16;
    else if (text == u"1.5")
        version = TVL::FormatVersion18;
    else
        version = qMax(0, text.toInt());
    if (version != 0)
        writeFormatVersion(path, version);
    return TVL::FormatVersion(version);
}

bool TVLProjectFolderFormat::writeFormatVersion(const QString &path, int version)
{
    const QString filePath = versionFilePath(path);
    QString text = QString::number(version);
    const QString oldText = QFileInfo::exists(filePath)
        ? TVLCoreUtil::ReadUnicodeTextFile(filePath, nullptr)
        : QString();
    if (!oldText.isEmpty()) {
        if (extractVersionNumber(oldText) > version)
            return false;
        text += oldText.mid(text.size());
    }
    return tvlWriteOwnFile(text.toUtf8(), filePath, nullptr);
}

QString TVLProjectFolderFormat::readBinderVersion(QIODevice *device)
{
    return TVLBinderReader(device).readProjectInfo().mVersion;
}

TVLProjectInfo TVLProjectFolderFormat::readBinderFileProjectInfo(const QString &path)
{
    return TVLBinderReader::readProjectInfo(path);
}

bool TVLProjectFolderFormat::isCompatible(QIODevice::OpenMode mode, const QString &path)
{
    if (mode == QIODevice::ReadOnly)
        return QFileInfo::exists(findOpenBinderFilePath(path))
            && TVL::isValidFormatVersion(projectFormatVersion(path));
    return path.endsWith(u".tavelx") || path.endsWith(u".tavel");
}

bool TVLProjectFolderFormat::hasSnapshotsViaSnapshotsDir(const QDir &snapshotsDir, int id)
{
    QDir itemDir = snapshotsDir;
    return itemDir.cd(TVLProjectFileNames::snapshotsFolder(id)) && itemDir.exists(u"index.xml"_s);
}

QString TVLProjectFolderFormat::dateTimeToString(const QDateTime &dateTime, bool isFileName)
{
    return tvlDateTimeToString(dateTime, isFileName);
}

QDateTime TVLProjectFolderFormat::stringToDateTime(const QString &text, bool isFileName)
{
    return tvlStringToDateTime(text, isFileName);
}

QString TVLProjectFolderFormat::pointFToString(const QPointF &point)
{
    return tvlPointFToString(point);
}

QPointF TVLProjectFolderFormat::stringToPointF(const QString &text, bool *ok)
{
    return tvlStringToPointF(text, ok);
}
