#include "TVLProjectFolderFormat.h"

#include "TVLBinderProject.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include "TTextDoc.h"
#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLOptions.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLTextRtfReader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <memory>

namespace {

using Format = TVLProjectFolderFormat;

void appendError(QStringList *errors, const QString &text)
{
    if (errors && !text.isEmpty())
        errors->append(text);
}

/** The path of a document's file; empty when there certainly is none. */
QString existingFilePath(const QString &path, int id, TVL::DocumentType type)
{
    const QString filePath =
        Format::filesDocsNodeTypeFilePath(Format::calcEnclosingPath(path), id, type);
    return tvlIsMissing(filePath) ? QString() : filePath;
}

/** Asked for once: from the second project on the option tells of this run. */
bool previousRunEndedNormally()
{
    static const bool prevExitedNormally = tvlOptions()->value(TVLOptions::PreviousExitedNormally);
    return prevExitedNormally;
}

/** Writes from a copy, because inline notes become markup in the text of what is written. */
bool writeRtf(const QString &filePath, const QTextDocument *document, QString *error)
{
    const std::unique_ptr<QTextDocument> clone(TTextDoc::cloneDocumentQtStyle(document, nullptr));
    clone->setUndoRedoEnabled(false);
    TVLTextDoc::toInlineMarkup(clone.get());
    return TVLTextRtf::toRtfFile(filePath, clone.get(), error, true, false);
}

bool removeIfThere(QFile *file)
{
    return !file->exists() || file->remove();
}

bool isUnsaved(const TVLTextDocument *document)
{
    return document && document->isDirty();
}

void setLinks(QTextDocument *document, const TVLTextInternalLinkMap &links,
              const QMap<int, QUuid> &idToUuid)
{
    if (links.mTargets.isEmpty())
        return;
    if (TVLTextDoc::hasTavelinorLinksWithNodeIDs(document))
        TVLTextDoc::convertTavelinorLinkIDsToUuids(document, idToUuid);
    else
        TVLTextDoc::setInternalLinks(document, Format::toTavelinorLinkMap(links, idToUuid));
}

void setLinksAndComments(QTextDocument *document, const TVLProjectLinksAndComments &extras,
                         const TVLBinderProject *model)
{
    if (model) {
        setLinks(document, extras.mTextLinks, model->idToUuid());
        if (!extras.mLinkFileComments.isEmpty() && !TVLTextDoc::hasCommentsWithUuids(document))
            TVLTextDoc::setComments(document, extras.mLinkFileComments);
    }
    if (!extras.mComments.isEmpty())
        TVLTextDoc::setComments(document, extras.mComments);
}

/** Writes the comments, but never over a file of comments that could not be read. */
bool saveComments(const QString &path, const TVLProjectNode *node, QString *error)
{
    const TVLTextDocument *document = node->mTextDocument;
    if (!document->areCommentsReadOnly())
        return Format::writeComments(path, node, document, error);
    // Those that the text only names are in that file; others have no place to go.
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document, -1, -1);
    const bool areInFile =
        std::all_of(comments.begin(), comments.end(),
                    [](const TVLTextCommentLink &comment) { return comment.mRtf.isEmpty(); });
    if (!areInFile)
        tvlSetError(error,
                    Format::tr("Could not load comments file: '%1'")
                        .arg(existingFilePath(path, node->mId, TVL::CommentsFile)));
    return areInFile;
}

} // namespace

bool TVLProjectFolderFormat::readDocument(const QString &path, const TVLProjectNode *node,
                                          TVLTextDocument *document, QString *error)
{
    const QString filePath =
        filesDocsNodeTypeFilePath(calcEnclosingPath(path), node->mId, document->documentType());
    return tvlIsMissing(filePath) || readDocumentFile(filePath, document, error);
}

bool TVLProjectFolderFormat::readDocumentFile(const QString &filePath, TVLTextDocument *document,
                                              QString *error)
{
    const TVL::DocumentType type = document->documentType();
    QFile file(filePath);
    const QString failure = type == TVL::SynopsisText ? readSynopsisFile(&file, document)
                                                      : readRtfFile(&file, document);
    if (failure.isEmpty())
        return true;
    // What could not be read must never be written over.
    document->setReadOnly(true);
    tvlSetError(error, failure);
    return false;
}

QString TVLProjectFolderFormat::openForReading(QFile *file, const TVLTextDocument *document)
{
    if (QFileInfo(*file).isDir())
        return tr("Error: Trying to read directory as a file: '%1'").arg(file->fileName());
    QString reason;
    // A file that brought the last run down must not do the same to this one.
    if (!previousRunEndedNormally() && document->documentType() != TVL::SynopsisText
        && !TVLCoreUtil::IsReadable(file->fileName(), &reason))
        return tr("RTF Inspector could not read %1 location: '%2'\nError: %3")
            .arg(docTypeDescr(document->documentType()), file->fileName(), reason);
    return file->open(QIODevice::ReadOnly) ? QString() : openFailure(*file, document);
}

QString TVLProjectFolderFormat::openFailure(const QFile &file, const TVLTextDocument *document)
{
    return tr("Could not open %1 file for reading: '%2'\nError: %3")
        .arg(docTypeDescr(document->documentType()), file.fileName(), file.errorString());
}

QString TVLProjectFolderFormat::readSynopsisFile(QFile *file, TVLTextDocument *document)
{
    const QString failure = openForReading(file, document);
    if (!failure.isEmpty())
        return failure;
    QTextStream stream(file);
    stream.setEncoding(QStringConverter::Utf8);
    document->setPlainText(stream.readAll());
    return file->error() == QFileDevice::NoError ? QString() : openFailure(*file, document);
}

QString TVLProjectFolderFormat::readRtfFile(QFile *file, TVLTextDocument *document)
{
    const QString failure = openForReading(file, document);
    if (!failure.isEmpty())
        return failure;
    TVLTextRtfReader reader(document);
    if (!reader.read(file))
        return tr("RTF Reader failed loading %1 file: '%2'\nError: %3")
            .arg(docTypeDescr(document->documentType()), file->fileName(), reader.errorString());
    TVLTextDoc::fromInlineMarkup(document);
    return {};
}

bool TVLProjectFolderFormat::writeDocument(const QString &path, const TVLProjectNode *node,
                                           const TVLTextDocument *document, QString *error)
{
    if (!document)
        return false;
    bool isFolderThere = false;
    docsDirectory(path, &isFolderThere);
    const QString projectPath = calcEnclosingPath(path);
    const TVL::DocumentType type = document->documentType();
    QFile file(filesDocsNodeTypeFilePath(projectPath, node->mId, type));

    if (document->isEmpty()) {
        if (removeIfThere(&file))
            return true;
        tvlSetError(error,
                    tr("Document contents is empty, but Tavelinor failed removing its file: '%1'")
                        .arg(file.fileName()));
        return false;
    }
    if (!isFolderThere) {
        tvlSetError(error, tr("Could not create directory: '%1'").arg(filesDocsPath(projectPath)));
        return false;
    }
    if (type == TVL::SynopsisText)
        return TVLCoreUtil::WriteBinaryFile(document->toPlainText().toUtf8(), file.fileName(),
                                            error);
    return writeRtf(file.fileName(), document, error);
}

bool TVLProjectFolderFormat::writeComments(const QString &path, const TVLProjectNode *node,
                                           const QTextDocument *document, QString *error)
{
    if (!document)
        return false;
    QFile file(filesDocsNodeTypeFilePath(calcEnclosingPath(path), node->mId, TVL::CommentsFile));
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document, -1, -1);
    if (!comments.isEmpty())
        return writeCommentsFile(file.fileName(), comments, error);
    if (removeIfThere(&file))
        return true;
    tvlSetError(error, file.errorString());
    return false;
}

bool TVLProjectFolderFormat::writeCommentsFile(const QString &filePath,
                                               const QList<TVLTextCommentLink> &comments,
                                               QString *error)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.writeStartDocument();
    writer.writeComments(comments, true);
    writer.writeEndDocument();

    QString reason;
    if (TVLCoreUtil::WriteBinaryFile(buffer.data(), filePath, &reason))
        return true;
    tvlSetError(error, reason + u" - (%1)"_qs.arg(filePath));
    return false;
}

bool TVLProjectFolderFormat::parseLinksAndComments(const QString &path, const TVLProjectNode *node,
                                                   TVLProjectLinksAndComments *result,
                                                   QStringList *errors)
{
    if (!result)
        return false;
    const QString commentsPath = existingFilePath(path, node->mId, TVL::CommentsFile);
    if (!commentsPath.isEmpty())
        return parseCommentsFile(commentsPath, result, errors);
    const QString linksPath = existingFilePath(path, node->mId, TVL::LinksFile);
    return linksPath.isEmpty() || parseLinksFile(linksPath, result, errors);
}

bool TVLProjectFolderFormat::parseCommentsFile(const QString &filePath,
                                               TVLProjectLinksAndComments *result,
                                               QStringList *errors)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        appendError(errors, tr("Could not open comments file for reading: '%1'").arg(filePath));
        return false;
    }
    TVLBinderReader reader(&file);
    if (reader.readComments(&result->mComments))
        return true;
    appendError(errors, tr("Could not load comments file: '%1'").arg(filePath));
    return false;
}

bool TVLProjectFolderFormat::parseLinksFile(const QString &filePath,
                                            TVLProjectLinksAndComments *result, QStringList *errors)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    TVLBinderReader reader(&file);
    reader.readNextStartElement();
    if (reader.name() != u"Links")
        return true;
    if (reader.readLinks(&result->mTextLinks, &result->mNotesLinks, &result->mLinkFileComments))
        return true;
    appendError(errors, tr("Could not load links and notes file: '%1'").arg(filePath));
    return false;
}

QMap<TVLTextRange, QString>
TVLProjectFolderFormat::toTavelinorLinkMap(const TVLTextInternalLinkMap &links,
                                           const QMap<int, QUuid> &idToUuid)
{
    QMap<TVLTextRange, QString> addresses;
    for (auto link = links.mTargets.cbegin(); link != links.mTargets.cend(); ++link) {
        const auto uuid = idToUuid.constFind(*link);
        if (uuid != idToUuid.cend())
            addresses.insert(link.key(), TVLTextFormat::internalLinkAddress(*uuid));
    }
    return addresses;
}

bool TVLProjectFolderFormat::readDocuments(TVLProjectNode *node, const TVLBinderProject *model,
                                           QStringList *errors) const
{
    // A folder that was there and isn't now has not lost its texts for that: it is on a disk that
    // is away, or a program that keeps folders in step is about to put it back.
    const bool isFolderThere = hasDocumentsFolder();
    const bool isFolderAway = mHadDocuments && !isFolderThere;
    mHadDocuments = mHadDocuments || isFolderThere;
    bool ok = true;
    TVLProjectLinksAndComments extras;
    if (node->mTextDocument || node->mNotesDocument)
        ok = parseLinksAndComments(mProjectPath, node, &extras, errors);
    if (!ok && node->mTextDocument)
        node->mTextDocument->setCommentsReadOnly(
            !existingFilePath(mProjectPath, node->mId, TVL::CommentsFile).isEmpty());

    const auto isRead = [&](TVLTextDocument *document) {
        QString error;
        const bool done = document
            && (isFolderAway ? readDocumentFile(
                    filesDocsNodeTypeFilePath(calcEnclosingPath(mProjectPath), node->mId,
                                              document->documentType()),
                    document, &error)
                             : readDocument(mProjectPath, node, document, &error));
        ok = ok && (done || !document);
        appendError(errors, error);
        return done;
    };
    if (isRead(node->mTextDocument))
        setLinksAndComments(node->mTextDocument, extras, model);
    if (isRead(node->mNotesDocument) && model)
        setLinks(node->mNotesDocument, extras.mNotesLinks, model->idToUuid());
    (void)isRead(node->mSynopsisDocument);
    if (node->mSynopsisDocument)
        node->mSynopsisDocument->setModified(false);
    return ok;
}

bool TVLProjectFolderFormat::writeDocuments(TVLProjectNode *node, QStringList *errors) const
{
    if (!isUnsaved(node->mTextDocument) && !isUnsaved(node->mNotesDocument)
        && !isUnsaved(node->mSynopsisDocument))
        return true;

    QStringList failures;
    const auto report = [&](const QString &message, const QString &error) {
        failures.append(message.arg(QString::number(node->mId), error));
    };
    const auto save = [&](TVLTextDocument *document, const QString &message) {
        QString error;
        if (!isUnsaved(document))
            return false;
        document->setSaved(writeDocument(mProjectPath, node, document, &error));
        if (!document->isSaved())
            report(message, error);
        return document->isSaved();
    };

    QString error;
    if (save(node->mTextDocument, tr("Failed saving text for document with id: %1 \nError: '%2'"))
        && !saveComments(mProjectPath, node, &error)) {
        // The comments are a part of this document, so it is to be saved again.
        node->mTextDocument->setSaved(false);
        report(tr("Failed saving inspector notes for id: %1 \nError: '%2'"), error);
    }
    save(node->mNotesDocument, tr("Failed saving document notes with id: %1 \nError: '%2'"));
    save(node->mSynopsisDocument, tr("Failed saving document synopsis with id: %1 \nError: '%2'"));
    mHadDocuments = mHadDocuments || hasDocumentsFolder();
    if (errors)
        *errors = failures;
    return failures.isEmpty();
}
