#include "TVLProjectFolderFormat.h"

#include "TVLBinderProject.h"
#include "TVLBinderReader.h"
#include "TVLDocumentSave_p.h"
#include "TVLProjectFile_p.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLFileWriting_p.h"
#include "TVLOptions.h"
#include "TVLRtfCheck_p.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"

#include <QFileInfo>
#include <QTextStream>

#include <memory>

namespace {

using Format = TVLProjectFolderFormat;

void appendError(QStringList *errors, const QString &text)
{
    if (errors && !text.isEmpty())
        errors->append(text);
}

/** Asked for once: from the second project on the option tells of this run. */
bool previousRunEndedNormally()
{
    static const bool prevExitedNormally = tvlOptions()->value(TVLOptions::PreviousExitedNormally);
    return prevExitedNormally;
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

/** Notes which comments are in their file whatever becomes of the text. */
void noteFiledComments(TVLTextDocument *document, const TVLProjectLinksAndComments &extras)
{
    if (!document->areCommentsReadOnly() && extras.mComments.isEmpty())
        return;
    const QList<TVLTextCommentLink> named = TVLTextDoc::comments(document, -1, -1);
    document->setFiledComments(document->areCommentsReadOnly()
                                   ? named
                                   : TVLDocumentSave::commentsWithout(extras.mComments, named));
}

} // namespace

bool TVLProjectFolderFormat::readDocument(const QString &path, const TVLProjectNode *node,
                                          TVLTextDocument *document, QString *error)
{
    const TVLProjectFile file(path, node->mId, document->documentType());
    return file.isMissing() || readDocumentFile(file, document, error);
}

void TVLProjectFolderFormat::inspectTexts(int id) const
{
    if (id < 0 || previousRunEndedNormally())
        return;
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText})
        (void)tvlIsRtfSafeToLoad(TVLProjectFile(mProjectPath, id, type).path(), true);
}

bool TVLProjectFolderFormat::readDocumentFile(const TVLProjectFile &file, TVLTextDocument *document,
                                              QString *error)
{
    const TVL::DocumentType type = document->documentType();
    const QString failure =
        type == TVL::SynopsisText ? readSynopsisFile(file, document) : readRtfFile(file, document);
    if (failure.isEmpty())
        return true;
    // What could not be read must never be written over.
    document->setReadOnly(true);
    return tvlFail(error, failure);
}

QString TVLProjectFolderFormat::openForReading(const TVLProjectFile &file,
                                               const TVLTextDocument *document,
                                               std::unique_ptr<QIODevice> *device)
{
    if (QFileInfo(file.path()).isDir())
        return tr("Error: Trying to read directory as a file: '%1'").arg(file.path());
    QString reason;
    // A file that brought the last run down must not do the same to this one.
    if (!previousRunEndedNormally() && document->documentType() != TVL::SynopsisText) {
        const QString type = docTypeDescr(document->documentType());
        if (!TVLCoreUtil::IsReadable(file.path(), &reason))
            return tr("RTF Inspector could not read %1 location: '%2'\nError: %3")
                .arg(type, file.path(), reason);
        if (!tvlIsRtfSafeToLoad(file.path(), true))
            return tr("RTF Inspector could not load %1 file: '%2'").arg(type, file.path());
    }
    *device = file.open(&reason);
    return *device ? QString() : openFailure(file, document, reason);
}

QString TVLProjectFolderFormat::openFailure(const TVLProjectFile &file,
                                            const TVLTextDocument *document, const QString &reason)
{
    return tr("Could not open %1 file for reading: '%2'\nError: %3")
        .arg(docTypeDescr(document->documentType()), file.path(), reason);
}

QString TVLProjectFolderFormat::readSynopsisFile(const TVLProjectFile &file,
                                                 TVLTextDocument *document)
{
    std::unique_ptr<QIODevice> device;
    const QString failure = openForReading(file, document, &device);
    if (!failure.isEmpty())
        return failure;
    QTextStream stream(device.get());
    stream.setEncoding(QStringConverter::Utf8);
    document->setPlainText(stream.readAll());
    const auto *onDisk = qobject_cast<const QFileDevice *>(device.get());
    const bool isRead = !onDisk || onDisk->error() == QFileDevice::NoError;
    return isRead ? QString() : openFailure(file, document, device->errorString());
}

QString TVLProjectFolderFormat::readRtfFile(const TVLProjectFile &file, TVLTextDocument *document)
{
    std::unique_ptr<QIODevice> device;
    const QString failure = openForReading(file, document, &device);
    if (!failure.isEmpty())
        return failure;
    TVLTextRtfReader reader(document);
    if (!reader.read(device.get()))
        return tr("RTF Reader failed loading %1 file: '%2'\nError: %3")
            .arg(docTypeDescr(document->documentType()), file.path(), reader.errorString());
    TVLTextDoc::fromInlineMarkup(document);
    return {};
}

bool TVLProjectFolderFormat::writeDocument(const QString &path, const TVLProjectNode *node,
                                           const TVLTextDocument *document, QString *error)
{
    return document
        && TVLDocumentSave(path).write(TVLDocumentSave::composeDocument(path, node, document),
                                       error);
}

bool TVLProjectFolderFormat::writeComments(const QString &path, const TVLProjectNode *node,
                                           const QTextDocument *document, QString *error)
{
    return document
        && TVLDocumentSave(path).write(TVLDocumentSave::composeComments(path, node, document),
                                       error);
}

bool TVLProjectFolderFormat::writeCommentsFile(const QString &filePath,
                                               const QList<TVLTextCommentLink> &comments,
                                               QString *error)
{
    const TVLDocumentSave::Change change = TVLDocumentSave::commentsChange(filePath, comments);
    QString reason;
    return tvlWriteOwnFile(change.mContent, filePath, &reason)
        || tvlFail(error, reason + change.mErrorTail);
}

bool TVLProjectFolderFormat::parseLinksAndComments(const QString &path, const TVLProjectNode *node,
                                                   TVLProjectLinksAndComments *result,
                                                   QStringList *errors)
{
    if (!result)
        return false;
    const TVLProjectFile comments(path, node->mId, TVL::CommentsFile);
    if (!comments.isMissing())
        return parseCommentsFile(comments, result, errors);
    const TVLProjectFile links(path, node->mId, TVL::LinksFile);
    return links.isMissing() || parseLinksFile(links, result, errors);
}

bool TVLProjectFolderFormat::parseCommentsFile(const TVLProjectFile &file,
                                               TVLProjectLinksAndComments *result,
                                               QStringList *errors)
{
    const std::unique_ptr<QIODevice> device = file.open(nullptr);
    if (!device) {
        appendError(errors, tr("Could not open comments file for reading: '%1'").arg(file.path()));
        return false;
    }
    TVLBinderReader reader(device.get());
    if (reader.readComments(&result->mComments))
        return true;
    appendError(errors, tr("Could not load comments file: '%1'").arg(file.path()));
    return false;
}

bool TVLProjectFolderFormat::parseLinksFile(const TVLProjectFile &file,
                                            TVLProjectLinksAndComments *result, QStringList *errors)
{
    const std::unique_ptr<QIODevice> device = file.open(nullptr);
    if (!device)
        return false;
    TVLBinderReader reader(device.get());
    reader.readNextStartElement();
    if (reader.name() != u"Links")
        return true;
    if (reader.readLinks(&result->mTextLinks, &result->mNotesLinks, &result->mLinkFileComments))
        return true;
    appendError(errors, tr("Could not load links and notes file: '%1'").arg(file.path()));
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
    const TVLSilentRtfCheck silent; // The node must not go meanwhile; see inspectTexts().
    const bool isFolderThere = hasDocumentsFolder();
    const bool isFolderAway = mHadDocuments && !isFolderThere;
    mHadDocuments = mHadDocuments || isFolderThere;
    bool ok = true;
    TVLProjectLinksAndComments extras;
    if (node->mTextDocument || node->mNotesDocument)
        ok = parseLinksAndComments(mProjectPath, node, &extras, errors);
    // Neither is a file of comments to be put before a links file that has comments no one has
    // read: it would be the one that counts from then on.
    if (!ok && node->mTextDocument)
        node->mTextDocument->setCommentsReadOnly(true);

    const auto isRead = [&](TVLTextDocument *document) {
        QString error;
        const bool done = document
            && (isFolderAway ? readDocumentFile(
                    TVLProjectFile(mProjectPath, node->mId, document->documentType()), document,
                    &error)
                             : readDocument(mProjectPath, node, document, &error));
        ok = ok && (done || !document);
        appendError(errors, error);
        return done;
    };
    if (isRead(node->mTextDocument)) {
        setLinksAndComments(node->mTextDocument, extras, model);
        noteFiledComments(node->mTextDocument, extras);
    }
    if (isRead(node->mNotesDocument) && model)
        setLinks(node->mNotesDocument, extras.mNotesLinks, model->idToUuid());
    (void)isRead(node->mSynopsisDocument);
    if (node->mSynopsisDocument)
        node->mSynopsisDocument->setModified(false);
    return ok;
}

bool TVLProjectFolderFormat::writeDocuments(TVLProjectNode *node, QStringList *errors) const
{
    TVLDocumentSave save(mProjectPath);
    if (!save.add(node))
        return true;
    save.begin();
    return writeDocuments(node, &save, errors);
}

bool TVLProjectFolderFormat::writeDocuments(TVLProjectNode *node, TVLDocumentSave *save,
                                            QStringList *errors) const
{
    const bool isComplete = save->write(node, errors);
    mHadDocuments = mHadDocuments || hasDocumentsFolder();
    return isComplete;
}
