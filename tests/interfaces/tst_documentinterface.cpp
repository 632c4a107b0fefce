#include "Callable.h"
#include "TestMain.h"

#include "TTextDoc.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextRtf.h"
#include "TVLTextRtfReader.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

/** What a program can call of the files of items and their texts. */
class TstDocumentInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfFiles();
    void pathsOfNumberedFiles();
    void pathsOfFilesInFolders();
    void hashesOfFiles();
    void findingMainFiles();
    void listingFiles();
    void theDocument();
    void readingTexts();
    void writingTexts();
    void linksAndComments();
    void richText();
    void addingFiles();
    void removingFiles();
    void cloningFiles();
    void filesBetweenTheLayouts();
};

void TstDocumentInterface::namesOfFiles()
{
    areCallable([](TVL::DocumentType type, const QString &fileName) {
        gives<QString>(TVLProjectFolderFormat::documentFileNameId(1, type));
        gives<QString>(TVLProjectFolderFormat::docTypeToFileName(type));
        gives<QString>(TVLProjectFolderFormat::docTypeDescr(type));
        gives<int>(TVLProjectFolderFormat::findDocumentTypeId(fileName));
        gives<int>(TVLProjectFolderFormat::findDocumentTypeUuid(fileName));
        gives<bool>(TVLProjectFolderFormat::isNodeDocumentUuid(fileName));
    });
}

void TstDocumentInterface::pathsOfNumberedFiles()
{
    areCallable([](const QString &path, TVL::DocumentType type) {
        gives<QString>(TVLProjectFolderFormat::filesDocsNodeTypeFilePath(path, 1, type));
        gives<QString>(TVLProjectFolderFormat::docsNodeTypeFilePath(path, 1, type));
        gives<bool>(TVLProjectFolderFormat::docsDocumentExists(path, 1, type));
    });
}

void TstDocumentInterface::pathsOfFilesInFolders()
{
    areCallable([](const QString &path, const QUuid &uuid, TVL::DocumentType type,
                   TVL::Platform *platform) {
        gives<QString>(TVLProjectFolderFormat::nodeTypeFileName(uuid, type, true));
        gives<QString>(TVLProjectFolderFormat::filesDataNodeTypeFilePath(path, uuid, type));
        gives<QString>(TVLProjectFolderFormat::dataNodeTypeFilePath(path, uuid, type));
        gives<QString>(TVLProjectFolderFormat::writeDataNodeTypeFilePath(path, uuid, type));
        gives<QString>(
            TVLProjectFolderFormat::readDataNodeTypeFilePath(path, uuid, type, platform));
        gives<QString>(TVLProjectFolderFormat::writeDataNodePath(path, uuid));
        gives<QString>(TVLProjectFolderFormat::mobileDataNodeTypeFilePath(path, uuid, type));
        gives<bool>(TVLProjectFolderFormat::dataDocumentExists(path, uuid, type));
        gives<bool>(TVLProjectFolderFormat::mobileDocumentExists(path, uuid, type));
        gives<bool>(TVLProjectFolderFormat::dataDocumentFolderExists(path, uuid));
        gives<bool>(TVLProjectFolderFormat::mobileDocumentFolderExists(path, uuid));
    });
}

void TstDocumentInterface::hashesOfFiles()
{
    areCallable([](const QString &path, const QUuid &uuid, TVL::DocumentType type) {
        gives<QByteArray>(TVLProjectFolderFormat::md5(path, 1, type));
        gives<QByteArray>(TVLProjectFolderFormat::md5Data(path, uuid, type));
        gives<QByteArray>(TVLProjectFolderFormat::md5Mobile(path, uuid, type));
        gives<QByteArray>(TVLProjectFolderFormat::calcChecksum(path));
    });
}

void TstDocumentInterface::findingMainFiles()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<QStringList>(TVLProjectFolderFormat::mobileDataNodePathFiles(path, uuid));
        gives<QString>(TVLProjectFolderFormat::findContentDocument(path));
        gives<QString>(TVLProjectFolderFormat::findDesktopContentDocument(path, uuid));
        gives<QString>(TVLProjectFolderFormat::findMobileContentDocument(path, uuid));
        gives<QString>(TVLProjectFolderFormat::constructMainNodeFilePath(path, 1, u"pdf"_s));
        gives<QString>(TVLProjectFolderFormat::findMainNodeFilePathHdd(path, 1));
        gives<QString>(TVLProjectFolderFormat::findExtension(path, 1));
    });
}

void TstDocumentInterface::listingFiles()
{
    areCallable([](const TVLProjectFolderFormat &format, const QString &path, const QUuid &uuid,
                   const TVLProjectNodeProperties &item) {
        gives<QStringList>(TVLProjectFolderFormat::supportingNodeFilePaths(path, 1));
        gives<QStringList>(TVLProjectFolderFormat::nodeFilePaths(path, 1, u"pdf"_s));
        gives<QStringList>(TVLProjectFolderFormat::existingNodeFilePaths(path, 1, u"pdf"_s));
        gives<QStringList>(TVLProjectFolderFormat::existingNodeFilePaths(path, uuid, u"pdf"_s));
        gives<QStringList>(
            TVLProjectFolderFormat::existingNodeFilePaths(path, item, TVL::FormatVersion18));
        gives<QStringList>(format.existingNodeFilePaths(item));
        gives<bool>(TVLProjectFolderFormat::hasFiles(path, 1));
        gives<bool>(TVLProjectFolderFormat::hasFiles(path, uuid));
    });
}

void TstDocumentInterface::theDocument()
{
    areCallable([](QObject *parent, TVLProjectModel *model, TVLProjectNode *node) {
        const TVLTextDocument free(parent);
        const TVLTextDocument document(parent, model, node, TVL::NotesText);
        gives<QModelIndex>(document.index());
        gives<TVLProjectModel *>(document.model());
        gives<TVLProjectNode *>(document.node());
        gives<TVL::DocumentType>(document.documentType());
        gives<int>(document.referenceCount());
        gives<bool>(document.isSaved());
        gives<bool>(document.isReadOnly());
        const QTextDocument &base = free;
        gives<bool>(base.isEmpty());
    });
}

void TstDocumentInterface::readingTexts()
{
    areCallable([](TVLProjectFolderFormat &format, TVLProjectNode *node, TVLTextDocument *document,
                   TVLProjectModel *model, QString *error, QStringList *errors) {
        gives<bool>(TVLProjectFolderFormat::readDocument(QString(), node, document, error));
        gives<bool>(format.readDocuments(node, model, errors));
    });
}

void TstDocumentInterface::writingTexts()
{
    areCallable([](TVLProjectFolderFormat &format, TVLProjectNode *node, TVLTextDocument *document,
                   QTextDocument *text, QString *error, QStringList *errors) {
        gives<bool>(TVLProjectFolderFormat::writeDocument(QString(), node, document, error));
        gives<bool>(TVLProjectFolderFormat::writeComments(QString(), node, text, error));
        gives<bool>(TVLProjectFolderFormat::writeCommentsFile(QString(),
                                                              QList<TVLTextCommentLink>(), error));
        gives<bool>(format.writeDocuments(node, errors));
    });
}

void TstDocumentInterface::linksAndComments()
{
    areCallable([](TVLProjectNode *node, TVLProjectLinksAndComments *result, QStringList *errors) {
        gives<bool>(TVLProjectFolderFormat::parseLinksAndComments(QString(), node, result, errors));
        gives<TVLTextInternalLinkMap>(result->mTextLinks);
        gives<TVLTextInternalLinkMap>(result->mNotesLinks);
        gives<QList<TVLTextCommentLink>>(result->mLinkFileComments);
        gives<QList<TVLTextCommentLink>>(result->mComments);
        gives<QMap<TVLTextRange, QString>>(
            TVLProjectModel::toTavelinorLinkMap(result->mTextLinks, QMap<int, QUuid>()));
    });
}

void TstDocumentInterface::richText()
{
    areCallable([](QTextDocument *text, QIODevice *device, QString *error) {
        TVLTextRtfReader reader(text);
        gives<bool>(reader.read(device));
        gives<QString>(reader.errorString());
        gives<bool>(TVLTextRtf::toRtfFile(QString(), text, error, true, false));
        gives<QTextDocument *>(TTextDoc::cloneDocumentQtStyle(text, nullptr));
    });
    areCallable([](QTextDocument *text, const QMap<int, QUuid> &idToUuid) {
        TVLTextDoc::fromInlineMarkup(text);
        TVLTextDoc::toInlineMarkup(text);
        gives<QList<TVLTextCommentLink>>(TVLTextDoc::comments(text, -1, -1));
        TVLTextDoc::setComments(text, QList<TVLTextCommentLink>());
        gives<bool>(TVLTextDoc::hasCommentsWithUuids(text));
        gives<bool>(TVLTextDoc::hasTavelinorLinksWithNodeIDs(text));
        TVLTextDoc::convertTavelinorLinkIDsToUuids(text, idToUuid);
        TVLTextDoc::setInternalLinks(text, QMap<TVLTextRange, QString>());
    });
}

void TstDocumentInterface::addingFiles()
{
    areCallable([](const QString &path, const QFileInfo &source) {
        gives<bool>(TVLProjectFolderFormat::importProjectFile(path, source, 1));
        gives<bool>(TVLProjectFolderFormat::copyFile(path, 1, u"pdf"_s, path));
    });
}

void TstDocumentInterface::removingFiles()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<bool>(TVLProjectFolderFormat::removeProjectFiles(path, 1));
        gives<bool>(TVLProjectFolderFormat::removeProjectFiles(path, uuid));
        gives<bool>(TVLProjectFolderFormat::removeProjectFilesMobile(path, uuid));
        gives<bool>(TVLProjectFolderFormat::deleteAllMobileFiles(path));
    });
}

void TstDocumentInterface::cloningFiles()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<bool>(TVLProjectFolderFormat::cloneProjectFiles(path, 1, path, 2));
        gives<bool>(TVLProjectFolderFormat::cloneDesktopV18(path, 1, 2));
        gives<bool>(TVLProjectFolderFormat::cloneSnapshots(path, 1, path, 2));
        gives<bool>(TVLProjectFolderFormat::cloneMobileProjectFiles(path, uuid, path, uuid));
    });
}

void TstDocumentInterface::filesBetweenTheLayouts()
{
    areCallable([](const QString &path, const QUuid &uuid) {
        gives<bool>(TVLProjectFolderFormat::copyDesktopToMobileV23(path, uuid, uuid));
        gives<bool>(TVLProjectFolderFormat::copyMobileToMobile(path, uuid, uuid));
        gives<bool>(TVLProjectFolderFormat::copyMobileToDesktopV23(path, uuid));
        gives<bool>(TVLProjectFolderFormat::syncMobileToDesktopV23(path, uuid));
        gives<bool>(TVLProjectFolderFormat::moveMobileToDesktopV23(path, uuid));
        gives<bool>(TVLProjectFolderFormat::copyDesktopV18ToPath(path, 1, path));
        gives<bool>(TVLProjectFolderFormat::copyDesktopV18ToDesktopV23(path, 1, uuid));
        gives<bool>(TVLProjectFolderFormat::copyDesktopToMobileV18(path, 1, uuid));
        gives<QList<QUuid>>(TVLProjectFolderFormat::folderUUIDs(path));
    });
}

TVL_TEST(TstDocumentInterface)
#include "tst_documentinterface.moc"
