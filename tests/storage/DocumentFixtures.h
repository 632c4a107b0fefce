#pragma once

#include "TVLProjectNode.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"

#include <QByteArray>
#include <QString>

#include <memory>

class TestProject;

/** An item with all its documents in memory and no model around it. */
class LoadedItem
{
public:
    explicit LoadedItem(int id = 12);

    [[nodiscard]] TVLProjectNode *node() { return &mNode; }
    [[nodiscard]] TVLTextDocument *text() { return mNode.mTextDocument; }
    [[nodiscard]] TVLTextDocument *notes() { return mNode.mNotesDocument; }
    [[nodiscard]] TVLTextDocument *synopsis() { return mNode.mSynopsisDocument; }
    [[nodiscard]] TVLTextDocument *document(TVL::DocumentType type);

    /** Puts a text into a document, as an edit does. */
    void edit(TVL::DocumentType type, const QString &text);

private:
    std::unique_ptr<TVLTextDocument> mDocuments[3];
    TVLProjectNode mNode; // Goes before its documents, which it lets go of.
};

/**
 * A file that is there and can't be opened, not even by the superuser, for as long as the object
 * lives: links lead to it.
 */
class UnopenableFile
{
public:
    UnopenableFile();
    ~UnopenableFile();
    Q_DISABLE_COPY_MOVE(UnopenableFile)

    /** Puts the file into a project. */
    void linkTo(const TestProject &project, const QString &relativePath) const;
    /** What is said of an attempt to read it. */
    [[nodiscard]] static QString errorText();

private:
    int mSocket;
};

/**
 * Reads the document of the row's type from a file that can't be opened. What is said of that is
 * @p message with the row's word for the document, the path and what the system says.
 */
void checkUnopenableDocument(const QString &message);

/** Puts a file that opens and then can't be read into a project. */
void linkToUnreadableFile(const TestProject &project, const QString &relativePath);
/** Puts a link into a project, which isn't written through. */
void makeUnwritable(const TestProject &project, const QString &relativePath);
/** What is said of an attempt to write there. */
[[nodiscard]] QString unwritableText(const TestProject &project, const QString &relativePath);

/** The smallest RTF with a text. */
[[nodiscard]] QByteArray rtfOf(const QByteArray &text);
/** Path of a numbered file below the project's folder. */
[[nodiscard]] QString docsPath(TVL::DocumentType type, int id = 12);
/** A comment whose identity is a uuid made of a number. */
[[nodiscard]] TVLTextCommentLink numberedComment(int number);
