#include "TVLDocumentSave_p.h"

#include "TVLBinderWriter.h"
#include "TVLProjectFile_p.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include "TTextDoc.h"
#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLFileWriting_p.h"
#include "TVLTextDoc.h"
#include "TVLTextRtfWriter.h"

#include <QBuffer>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Change = TVLDocumentSave::Change;

/** Composed from a copy, because inline notes become markup in the text of what is written. */
QByteArray rtfOf(const QTextDocument *document)
{
    const std::unique_ptr<QTextDocument> clone(TTextDoc::cloneDocumentQtStyle(document, nullptr));
    clone->setUndoRedoEnabled(false);
    TVLTextDoc::toInlineMarkup(clone.get());
    return TVLTextRtfWriter(nullptr).toRtf(clone.get(), true);
}

bool isUnsaved(const TVLTextDocument *document)
{
    return document && document->isDirty();
}

QList<TVLTextDocument *> unsavedDocuments(const TVLProjectNode *node)
{
    QList<TVLTextDocument *> documents = {node->mTextDocument, node->mNotesDocument,
                                          node->mSynopsisDocument};
    documents.removeIf([](const TVLTextDocument *document) { return !isUnsaved(document); });
    return documents;
}

Change failure(const QString &filePath, const QString &error)
{
    return {Change::Failure, filePath, {}, error};
}

QString commentsFilePath(const QString &projectPath, const TVLProjectNode *node)
{
    return Format::filesDocsNodeTypeFilePath(Format::calcEnclosingPath(projectPath), node->mId,
                                             TVL::CommentsFile);
}

/** What is told of comments that would have to be written to a file which could not be read. */
QString unreadCommentsText(const QString &projectPath, int id)
{
    const TVLProjectFile comments(projectPath, id, TVL::CommentsFile);
    return comments.isMissing()
        ? Format::tr("Could not load links and notes file: '%1'")
              .arg(TVLProjectFile(projectPath, id, TVL::LinksFile).path())
        : Format::tr("Could not load comments file: '%1'").arg(comments.path());
}

} // namespace

Change TVLDocumentSave::commentsChange(const QString &filePath,
                                       const QList<TVLTextCommentLink> &comments)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.writeStartDocument();
    writer.writeComments(comments, true);
    writer.writeEndDocument();
    return {Change::Write, filePath, buffer.data(), {}, u" - ("_s + filePath + u')'};
}

TVLDocumentSave::TVLDocumentSave(const QString &projectPath)
    : mProjectPath(projectPath)
{
}

// --- Composing

Change TVLDocumentSave::composeDocument(const QString &projectPath, const TVLProjectNode *node,
                                        const TVLTextDocument *document)
{
    // All items without id would share one file.
    if (node->mId < 0)
        return failure(QString(), Format::tr("The item has no id"));
    bool isFolderThere = false;
    Format::docsDirectory(projectPath, &isFolderThere);
    const QString path = Format::calcEnclosingPath(projectPath);
    const TVL::DocumentType type = document->documentType();
    const QString filePath = Format::filesDocsNodeTypeFilePath(path, node->mId, type);
    if (document->isEmpty())
        return {Change::Remove,
                filePath,
                {},
                Format::tr("Document contents is empty, but Tavelinor failed removing its file: "
                           "'%1'")
                    .arg(filePath)};
    if (!isFolderThere)
        return failure(
            filePath,
            Format::tr("Could not create directory: '%1'").arg(Format::filesDocsPath(path)));
    const bool isPlain = type == TVL::SynopsisText;
    return {
        Change::Write, filePath, isPlain ? document->toPlainText().toUtf8() : rtfOf(document), {}};
}

Change TVLDocumentSave::composeComments(const QString &projectPath, const TVLProjectNode *node,
                                        const QTextDocument *document)
{
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document, -1, -1);
    const QString filePath = commentsFilePath(projectPath, node);
    return comments.isEmpty() ? Change{Change::Remove, filePath}
                              : commentsChange(filePath, comments);
}

Change TVLDocumentSave::composeComments(const QString &projectPath, const TVLProjectNode *node)
{
    const TVLTextDocument *document = node->mTextDocument;
    const QList<TVLTextCommentLink> filed = document->filedComments();
    if (filed.isEmpty() && !document->areCommentsReadOnly())
        return composeComments(projectPath, node, document);
    const QString filePath = commentsFilePath(projectPath, node);
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document, -1, -1);
    if (!document->areCommentsReadOnly())
        return commentsChange(filePath, comments + commentsWithout(filed, comments));
    // Those that the text only names are in that file too; others have no place to go.
    const bool areInFile =
        std::all_of(comments.begin(), comments.end(), [&filed](const TVLTextCommentLink &comment) {
            return comment.mRtf.isEmpty() || filed.contains(comment);
        });
    return areInFile ? Change{} : failure(filePath, unreadCommentsText(projectPath, node->mId));
}

QList<TVLTextCommentLink> TVLDocumentSave::commentsWithout(QList<TVLTextCommentLink> comments,
                                                           const QList<TVLTextCommentLink> &others)
{
    QSet<QString> identities;
    for (const TVLTextCommentLink &other : others)
        identities.insert(other.mIdentity);
    comments.removeIf([&identities](const TVLTextCommentLink &comment) {
        return identities.contains(comment.mIdentity);
    });
    return comments;
}

TVLDocumentSave::Composed TVLDocumentSave::compose(const TVLProjectNode *node,
                                                   const TVLTextDocument *document) const
{
    Composed composed;
    composed.mRevision = document->revision();
    composed.mDocument = composeDocument(mProjectPath, node, document);
    if (document == node->mTextDocument)
        composed.mComments = composeComments(mProjectPath, node);
    return composed;
}

bool TVLDocumentSave::add(const TVLProjectNode *node)
{
    const QList<TVLTextDocument *> documents = unsavedDocuments(node);
    for (const TVLTextDocument *document : documents)
        mComposed.insert(document, compose(node, document));
    return !documents.isEmpty();
}

void TVLDocumentSave::begin()
{
    QList<TVLFileContent> contents;
    QStringList removals;
    const auto enter = [&](const Change &change, bool needsPrevious) {
        if (change.mKind == Change::Write)
            contents.append({change.mFilePath, change.mContent, needsPrevious});
        else if (change.mKind == Change::Remove)
            removals.append(change.mFilePath);
    };
    for (const Composed &composed : std::as_const(mComposed)) {
        enter(composed.mDocument, false);
        enter(composed.mComments, composed.mDocument.mKind == Change::Write);
    }
    mJournal.emplace(mProjectPath, contents, removals);
}

// --- Writing

bool TVLDocumentSave::apply(const Change &change, QString *error)
{
    switch (change.mKind) {
    case Change::Nothing:
        return true;
    case Change::Failure:
        return tvlFail(error, change.mError);
    case Change::Remove: {
        QFile file(change.mFilePath);
        return tvlIsMissing(change.mFilePath) || file.remove()
            || tvlFail(error, change.mError.isEmpty() ? file.errorString() : change.mError);
    }
    case Change::Write:
        break;
    }
    QString reason;
    if (!tvlWriteOwnFile(change.mContent, change.mFilePath, &reason))
        return tvlFail(error, reason + change.mErrorTail);
    if (mJournal)
        mJournal->setWritten(change.mFilePath);
    return true;
}

bool TVLDocumentSave::write(const Change &change, QString *error)
{
    if (change.mKind == Change::Write)
        mJournal.emplace(mProjectPath, QList<TVLFileContent>{{change.mFilePath, change.mContent}});
    return apply(change, error);
}

bool TVLDocumentSave::write(TVLProjectNode *node, QStringList *errors)
{
    QStringList failures;
    const auto report = [&](const QString &message, const QString &error) {
        failures.append(message.arg(QString::number(node->mId), error));
    };
    const auto save = [&](TVLTextDocument *document, const QString &message) {
        if (!isUnsaved(document))
            return;
        Composed composed = mComposed.take(document);
        if (composed.mRevision != document->revision())
            composed = compose(node, document);
        QString error;
        document->setSaved(apply(composed.mDocument, &error));
        if (!document->isSaved()) {
            report(message, error);
            return;
        }
        if (apply(composed.mComments, &error))
            return;
        // The comments are a part of this document, so it is to be saved again.
        document->setSaved(false);
        report(Format::tr("Failed saving inspector notes for id: %1 \nError: '%2'"), error);
    };
    save(node->mTextDocument,
         Format::tr("Failed saving text for document with id: %1 \nError: '%2'"));
    save(node->mNotesDocument,
         Format::tr("Failed saving document notes with id: %1 \nError: '%2'"));
    save(node->mSynopsisDocument,
         Format::tr("Failed saving document synopsis with id: %1 \nError: '%2'"));
    if (errors)
        *errors = failures;
    return failures.isEmpty();
}
