#include "TVLProjectFolderFormat.h"

#include "TVLFileUtil.h"
#include "TVLProjectNodeProperties.h"

#include "TUuid.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/** How the files of a type are called in the two layouts. */
struct DocumentFile
{
    TVL::DocumentType type;
    QStringView docsTail; ///< Behind the item's id, in the folder of all numbered files.
    QStringView dataName; ///< In the item's own folder.
};

constexpr DocumentFile DocumentFiles[] = {
    {TVL::MainText, u".rtf", u"content.rtf"},
    {TVL::NotesText, u"_notes.rtf", u"notes.rtf"},
    {TVL::SynopsisText, u"_synopsis.txt", u"synopsis.txt"},
    {TVL::LinksFile, u".links", u"content.links"},
    {TVL::CommentsFile, u".comments", u"content.comments"},
    {TVL::TextStyles, u".styles", u"content.styles"},
    {TVL::NotesStyles, u"_notes.styles", u"note.styles"},
};

struct DocumentWord
{
    TVL::DocumentType type;
    const char *word;
};

constexpr DocumentWord DocumentWords[] = {
    {TVL::MainText, QT_TRANSLATE_NOOP("TVLProjectFolderFormat", "document")},
    {TVL::NotesText, QT_TRANSLATE_NOOP("TVLProjectFolderFormat", "notes")},
    {TVL::SynopsisText, QT_TRANSLATE_NOOP("TVLProjectFolderFormat", "synopsis")},
};

/** The types that a numbered file's name ends in, in the order in which they are tried. */
constexpr TVL::DocumentType TypesByEnding[] = {
    TVL::NotesText,
    TVL::SynopsisText,
    TVL::LinksFile,
    TVL::CommentsFile,
};

/** The numbered files beside an item's main one, in the order of their enumeration. */
constexpr TVL::DocumentType SupportingTypes[] = {
    TVL::TextStyles, TVL::CommentsFile, TVL::NotesText, TVL::NotesStyles, TVL::SynopsisText,
};

/**
 * The files beside the main one in an item's own folder, in the order of SupportingTypes. The
 * styles of the notes go by another name here than where files are looked up by their type.
 */
constexpr QStringView SupportingDataNames[] = {
    u"content.styles", u"content.comments", u"notes.rtf", u"notes.styles", u"synopsis.txt",
};

constexpr QStringView ContentBaseName = u"content";
constexpr std::array<QStringView, 3> ContentSideSuffixes = {u"comments", u"styles", u"links"};
constexpr QDir::Filters FilesOnly = QDir::Files | QDir::NoDotAndDotDot;

/** The row of a type in a table; null for a type without one. */
template <typename Row, std::size_t Size>
const Row *rowOf(const Row (&table)[Size], TVL::DocumentType type)
{
    const Row *row = std::find_if(std::begin(table), std::end(table),
                                  [type](const Row &each) { return each.type == type; });
    return row == std::end(table) ? nullptr : row;
}

bool isContentSideSuffix(QStringView suffix)
{
    return std::find(ContentSideSuffixes.begin(), ContentSideSuffixes.end(), suffix)
        != ContentSideSuffixes.end();
}

/** A file in a folder; none for a type that has no name there, lest the folder stand for it. */
QString joined(const QString &folder, const QString &name)
{
    return name.isEmpty() ? QString() : folder + u'/' + name;
}

QString extensionWithDot(const QString &extension)
{
    if (extension.isEmpty())
        return u".rtf"_s;
    return extension.startsWith(u'.') ? extension : u'.' + extension;
}

/** Files of an item in the folder of all numbered ones whose names are the id and an extension. */
QFileInfoList numberedFiles(const QString &docsPath, int id, QDir::SortFlags order)
{
    return QDir(docsPath).entryInfoList({u"%1.*"_s.arg(id)}, FilesOnly, order);
}

QStringList existing(QStringList filePaths)
{
    filePaths.removeIf([](const QString &filePath) { return !QFileInfo::exists(filePath); });
    return filePaths;
}

} // namespace

QString TVLProjectFolderFormat::documentFileNameId(int id, TVL::DocumentType type)
{
    const DocumentFile *row = rowOf(DocumentFiles, type);
    return row ? QString::number(id) + row->docsTail.toString() : QString();
}

QString TVLProjectFolderFormat::docTypeToFileName(TVL::DocumentType type)
{
    const DocumentFile *row = rowOf(DocumentFiles, type);
    return row ? row->dataName.toString() : QString();
}

QString TVLProjectFolderFormat::docTypeDescr(TVL::DocumentType type)
{
    const DocumentWord *row = rowOf(DocumentWords, type);
    return row ? tr(row->word) : QString();
}

int TVLProjectFolderFormat::findDocumentTypeId(const QString &fileName)
{
    for (const TVL::DocumentType type : TypesByEnding) {
        if (fileName.endsWith(rowOf(DocumentFiles, type)->docsTail))
            return type;
    }
    const QFileInfo info(fileName);
    bool isNumber = false;
    if (info.baseName().toInt(&isNumber) < 0 || !isNumber)
        return -1;
    return info.suffix().toLower() == u"rtf" ? TVL::MainText : TVL::ForeignFile;
}

int TVLProjectFolderFormat::findDocumentTypeUuid(const QString &fileName)
{
    for (const DocumentFile &row : DocumentFiles) {
        if (fileName == row.dataName)
            return row.type;
    }
    return QFileInfo(fileName).baseName() == ContentBaseName ? int(TVL::ForeignFile) : -1;
}

bool TVLProjectFolderFormat::isNodeDocumentUuid(const QString &fileName)
{
    for (const TVL::DocumentType type : {TVL::SynopsisText, TVL::NotesText}) {
        if (fileName == rowOf(DocumentFiles, type)->dataName)
            return true;
    }
    const QString start = ContentBaseName.toString() + u'.';
    return fileName.startsWith(start)
        && !isContentSideSuffix(QStringView(fileName).sliced(start.size()));
}

QString TVLProjectFolderFormat::filesDocsNodeTypeFilePath(const QString &path, int id,
                                                          TVL::DocumentType type)
{
    return joined(filesDocsPath(path), documentFileNameId(id, type));
}

QString TVLProjectFolderFormat::docsNodeTypeFilePath(const QString &path, int id,
                                                     TVL::DocumentType type)
{
    return filesDocsNodeTypeFilePath(path, id, type);
}

bool TVLProjectFolderFormat::docsDocumentExists(const QString &path, int id, TVL::DocumentType type)
{
    return QFileInfo::exists(filesDocsNodeTypeFilePath(calcEnclosingPath(path), id, type));
}

QByteArray TVLProjectFolderFormat::md5(const QString &path, int id, TVL::DocumentType type)
{
    return calcChecksum(filesDocsNodeTypeFilePath(calcEnclosingPath(path), id, type));
}

QString TVLProjectFolderFormat::nodeTypeFileName(const QUuid &uuid, TVL::DocumentType type,
                                                 bool upperCase)
{
    return TUuid::toStringNoBraces(uuid, upperCase) + u'/' + docTypeToFileName(type);
}

QString TVLProjectFolderFormat::filesDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                          TVL::DocumentType type)
{
    return joined(filesDataNodePath(path, uuid), docTypeToFileName(type));
}

QString TVLProjectFolderFormat::dataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                     TVL::DocumentType type)
{
    return filesDataNodeTypeFilePath(path, uuid, type);
}

QString TVLProjectFolderFormat::writeDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                          TVL::DocumentType type)
{
    return filesDataNodeTypeFilePath(path, uuid, type);
}

QString TVLProjectFolderFormat::readDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                         TVL::DocumentType type,
                                                         TVL::Platform *platform)
{
    if (platform)
        *platform = TVL::DesktopPlatform;
    return filesDataNodeTypeFilePath(path, uuid, type);
}

QString TVLProjectFolderFormat::writeDataNodePath(const QString &path, const QUuid &uuid)
{
    return filesDataNodePath(path, uuid);
}

QString TVLProjectFolderFormat::mobileDataNodeTypeFilePath(const QString &path, const QUuid &uuid,
                                                           TVL::DocumentType type)
{
    return joined(mobileDataNodePath(path, uuid), docTypeToFileName(type));
}

QString TVLProjectFolderFormat::findMobileDataNodeTypeFilePath(const QString &path,
                                                               const QUuid &uuid,
                                                               TVL::DocumentType type)
{
    return joined(findMobileDataNodePath(path, uuid), docTypeToFileName(type));
}

bool TVLProjectFolderFormat::dataDocumentExists(const QString &path, const QUuid &uuid,
                                                TVL::DocumentType type)
{
    return QFileInfo::exists(filesDataNodeTypeFilePath(calcEnclosingPath(path), uuid, type));
}

bool TVLProjectFolderFormat::mobileDocumentExists(const QString &path, const QUuid &uuid,
                                                  TVL::DocumentType type)
{
    return QFileInfo::exists(findMobileDataNodeTypeFilePath(calcEnclosingPath(path), uuid, type));
}

bool TVLProjectFolderFormat::dataDocumentFolderExists(const QString &path, const QUuid &uuid)
{
    return filesDataNodePathExists(calcEnclosingPath(path), uuid);
}

bool TVLProjectFolderFormat::mobileDocumentFolderExists(const QString &path, const QUuid &uuid)
{
    return QFileInfo::exists(findMobileDataNodePath(calcEnclosingPath(path), uuid));
}

QByteArray TVLProjectFolderFormat::md5Data(const QString &path, const QUuid &uuid,
                                           TVL::DocumentType type)
{
    return calcChecksum(filesDataNodeTypeFilePath(calcEnclosingPath(path), uuid, type));
}

QByteArray TVLProjectFolderFormat::md5Mobile(const QString &path, const QUuid &uuid,
                                             TVL::DocumentType type)
{
    return calcChecksum(findMobileDataNodeTypeFilePath(calcEnclosingPath(path), uuid, type));
}

QByteArray TVLProjectFolderFormat::calcChecksum(const QString &filePath)
{
    return TVLFileUtil::calcChecksum(filePath, QCryptographicHash::Sha1);
}

QStringList TVLProjectFolderFormat::mobileDataNodePathFiles(const QString &path, const QUuid &uuid)
{
    return QDir(findMobileDataNodePath(path, uuid)).entryList(FilesOnly, QDir::Unsorted);
}

QString TVLProjectFolderFormat::findContentDocument(const QString &folderPath)
{
    const QFileInfoList files = QDir(folderPath).entryInfoList(FilesOnly, QDir::Unsorted);
    for (const QFileInfo &file : files) {
        if (file.baseName() == ContentBaseName && !isContentSideSuffix(file.suffix()))
            return file.absoluteFilePath();
    }
    return {};
}

QString TVLProjectFolderFormat::findDesktopContentDocument(const QString &path, const QUuid &uuid)
{
    return findContentDocument(filesDataNodePath(calcEnclosingPath(path), uuid));
}

QString TVLProjectFolderFormat::findMobileContentDocument(const QString &path, const QUuid &uuid)
{
    return findContentDocument(findMobileDataNodePath(calcEnclosingPath(path), uuid));
}

QString TVLProjectFolderFormat::constructMainNodeFilePath(const QString &path, int id,
                                                          const QString &extension)
{
    return filesDocsPath(path) + u'/' + QString::number(id) + extensionWithDot(extension);
}

QString TVLProjectFolderFormat::findMainNodeFilePathHdd(const QString &path, int id)
{
    const QString rtfPath = filesDocsNodeTypeFilePath(path, id, TVL::MainText);
    if (QFileInfo::exists(rtfPath))
        return rtfPath;
    const QFileInfoList files = numberedFiles(filesDocsPath(path), id, QDir::Name);
    return files.isEmpty() ? QString() : files.constFirst().absoluteFilePath();
}

QString TVLProjectFolderFormat::findExtension(const QString &path, int id)
{
    const QFileInfoList files =
        numberedFiles(filesDocsPath(calcEnclosingPath(path)), id, QDir::Unsorted);
    for (const QFileInfo &file : files) {
        if (!isContentSideSuffix(file.suffix()))
            return file.suffix();
    }
    return {};
}

QStringList TVLProjectFolderFormat::supportingNodeFilePaths(const QString &path, int id)
{
    QStringList filePaths;
    for (const TVL::DocumentType type : SupportingTypes)
        filePaths.append(filesDocsNodeTypeFilePath(path, id, type));
    return filePaths;
}

QStringList TVLProjectFolderFormat::nodeFilePaths(const QString &path, int id,
                                                  const QString &extension)
{
    return QStringList(constructMainNodeFilePath(path, id, extension))
        + supportingNodeFilePaths(path, id);
}

QStringList TVLProjectFolderFormat::existingNodeFilePaths(const QString &path, int id,
                                                          const QString &extension)
{
    return existing(nodeFilePaths(path, id, extension));
}

QStringList TVLProjectFolderFormat::existingNodeFilePaths(const QString &path, const QUuid &uuid,
                                                          const QString &extension)
{
    const QString folder = filesDataNodePath(path, uuid) + u'/';
    QStringList filePaths = {folder + ContentBaseName.toString() + extensionWithDot(extension)};
    for (const QStringView name : SupportingDataNames)
        filePaths.append(folder + name.toString());
    return existing(filePaths);
}

QStringList TVLProjectFolderFormat::existingNodeFilePaths(
    const QString &path, const TVLProjectNodeProperties &properties, TVL::FormatVersion version)
{
    switch (version) {
    case TVL::FormatVersion18:
        return existingNodeFilePaths(path, properties.mId, properties.mFileExtension);
    case TVL::FormatVersion23:
        return existingNodeFilePaths(path, properties.mUuid, properties.mFileExtension);
    default:
        return {};
    }
}

QStringList
TVLProjectFolderFormat::existingNodeFilePaths(const TVLProjectNodeProperties &properties) const
{
    return existingNodeFilePaths(mProjectPath, properties, mFormatVersion);
}

bool TVLProjectFolderFormat::hasFiles(const QString &path, int id)
{
    return id >= 0 && !existingNodeFilePaths(calcEnclosingPath(path), id, u"rtf"_s).isEmpty();
}

bool TVLProjectFolderFormat::hasFiles(const QString &path, const QUuid &uuid)
{
    return dataDocumentFolderExists(path, uuid);
}
