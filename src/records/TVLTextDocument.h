#pragma once

#include "TVL.h"
#include "TVLTextCommentLink.h"

#include <QList>
#include <QPersistentModelIndex>
#include <QStringList>
#include <QTextDocument>

class TVLProjectModel;
class TVLProjectNode;

/**
 * The text of one of an item's documents while it is in memory.
 *
 * Neither the model nor the node is owned; both become null when the document outlives its node,
 * which an editor that still shows it has to expect.
 *
 * The document has a layout from the start, so that it tells of each edit what was changed even if
 * nobody looks. That layout shows nothing; an editor sets its own.
 */
class TVL_EXPORT TVLTextDocument : public QTextDocument
{
    Q_OBJECT
    Q_PROPERTY(bool takesComments READ takesComments)

public:
    TVLTextDocument(QObject *parent, TVLProjectModel *model, TVLProjectNode *node,
                    TVL::DocumentType type);
    explicit TVLTextDocument(QObject *parent = nullptr);

    [[nodiscard]] TVLProjectModel *model() const { return mModel; }
    [[nodiscard]] TVLProjectNode *node() const { return mNode; }
    [[nodiscard]] TVL::DocumentType documentType() const { return mDocumentType; }

    /** The item's index in the model; for a document that belongs to no item, the one it was given.
     */
    [[nodiscard]] QModelIndex index() const;
    void setIndex(const QModelIndex &index) { mIndex = index; }

    /** Cuts the document loose from model and node; it lives on as a plain text. */
    void detach();

    [[nodiscard]] int referenceCount() const { return mReferenceCount; }
    void setReferenceCount(int count) { mReferenceCount = count; }

    /** Whether what the file holds is what the document holds; this and not isModified() decides.
     */
    [[nodiscard]] bool isSaved() const { return mIsSaved; }
    void setSaved(bool saved) { mIsSaved = saved; }

    /**
     * Set when the file could not be read; such a document is never written over its file. The
     * documents of an item without id are always so, because they have none.
     */
    [[nodiscard]] bool isReadOnly() const;
    void setReadOnly(bool readOnly) { mReadOnly = readOnly; }

    /** Whether a save has to write the document. */
    [[nodiscard]] bool isDirty() const { return !isReadOnly() && !mIsSaved; }

    /** Whether comments can be hung on the text: only those of a main text have a file. */
    [[nodiscard]] bool takesComments() const;

    /** Set when the file of the text's comments could not be read; it is never written over. */
    [[nodiscard]] bool areCommentsReadOnly() const { return mCommentsReadOnly; }
    void setCommentsReadOnly(bool readOnly) { mCommentsReadOnly = readOnly; }

    /**
     * Comments that the file of the text's comments held when the text was read, and that a save
     * must not take for new ones, nor drop: those that the text doesn't name, or, of a file that
     * could not be read, those of the text.
     */
    [[nodiscard]] QList<TVLTextCommentLink> filedComments() const { return mFiledComments; }
    void setFiledComments(const QList<TVLTextCommentLink> &comments) { mFiledComments = comments; }

    /**
     * Whether a contentsChange() with these arguments only tells that the text has got another
     * layout. To be asked once for each such signal.
     */
    [[nodiscard]] bool isChangeOfLayout(int position, int charsRemoved, int charsAdded);

    /** Gives the whole text the formats that new text has. */
    void convertTextToDefaultFormat();
    /** Takes over the options that say how texts without formats of their own look. The text isn't
     * changed by it. */
    void updateEditorLayout();
    /** updateEditorLayout() if options of the texts are among those that changed. */
    void reflectSettings(const QStringList &groups);

private:
    void init();

    TVLProjectModel *mModel = nullptr;
    TVLProjectNode *mNode = nullptr;
    QPersistentModelIndex mIndex;
    TVL::DocumentType mDocumentType = TVL::MainText;
    int mReferenceCount = 0;
    bool mIsSaved = true;
    bool mReadOnly = false;
    bool mCommentsReadOnly = false;
    QList<TVLTextCommentLink> mFiledComments;
    int mNewLayouts = 0; ///< Those that a contentsChange() is still to come for.
};
