#pragma once

#include "TVLRedoJournal_p.h"

#include <QHash>
#include <QStringList>

#include <optional>

class QTextDocument;
class TVLTextCommentLink;
class TVLProjectNode;
class TVLTextDocument;

/**
 * The documents of some items on their way to disk: all are composed before the first file is
 * opened, and are in the project's journal until the last is closed. What became of each document
 * is in its saved flag.
 *
 * Between begin() and the end of the object the event loop must not run.
 */
class TVLDocumentSave
{
public:
    /** What is to become of a file. */
    struct Change
    {
        enum Kind { Nothing, Write, Remove, Failure } mKind = Nothing;
        QString mFilePath = {};
        QByteArray mContent = {}; ///< What is to be written.
        /** Why nothing can be done, or what is told when a file can't be removed. */
        QString mError = {};
        QString mErrorTail = {}; ///< What is told behind the reason why a file can't be written.
    };

    explicit TVLDocumentSave(const QString &projectPath);

    /** Composes an item's unsaved documents; false when there are none. */
    bool add(const TVLProjectNode *node);
    /** Puts what was composed into the journal. */
    void begin();
    /** Writes an item's unsaved documents; false with @p errors when one could not be. */
    [[nodiscard]] bool write(TVLProjectNode *node, QStringList *errors);

    /** Does one thing, under the journal's protection. */
    [[nodiscard]] bool write(const Change &change, QString *error);

    /** How a text, notes or a synopsis are saved. */
    [[nodiscard]] static Change composeDocument(const QString &projectPath,
                                                const TVLProjectNode *node,
                                                const TVLTextDocument *document);
    /** How a text's comments are saved, also where their file could not be read. */
    [[nodiscard]] static Change composeComments(const QString &projectPath,
                                                const TVLProjectNode *node);
    [[nodiscard]] static Change commentsChange(const QString &filePath,
                                               const QList<TVLTextCommentLink> &comments);
    /** Those of the first comments that aren't among the others, by their identities. */
    [[nodiscard]] static QList<TVLTextCommentLink>
    commentsWithout(QList<TVLTextCommentLink> comments, const QList<TVLTextCommentLink> &others);
    /** As composeComments(), for a text whose file of comments was read. */
    [[nodiscard]] static Change composeComments(const QString &projectPath,
                                                const TVLProjectNode *node,
                                                const QTextDocument *document);

private:
    struct Composed
    {
        int mRevision = -1; ///< Of the document, which may have been edited since.
        Change mDocument;
        Change mComments; ///< Of a main text.
    };

    [[nodiscard]] Composed compose(const TVLProjectNode *node,
                                   const TVLTextDocument *document) const;
    [[nodiscard]] bool apply(const Change &change, QString *error);

    QString mProjectPath;
    QHash<const TVLTextDocument *, Composed> mComposed;
    std::optional<TVLRedoJournal> mJournal;
};
