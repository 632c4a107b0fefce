#pragma once

#include "TVL.h"

#include <QPersistentModelIndex>
#include <QTextDocument>

class TVLProjectModel;
class TVLProjectNode;

/**
 * The text of one of an item's documents while it is in memory.
 *
 * Neither the model nor the node is owned; both become null when the document outlives its node,
 * which an editor that still shows it has to expect.
 */
class TVL_EXPORT TVLTextDocument : public QTextDocument
{
    Q_OBJECT

public:
    TVLTextDocument(QObject *parent, TVLProjectModel *model, TVLProjectNode *node,
                    TVL::DocumentType type);
    explicit TVLTextDocument(QObject *parent = nullptr);

    [[nodiscard]] TVLProjectModel *model() const { return mModel; }
    [[nodiscard]] TVLProjectNode *node() const { return mNode; }
    [[nodiscard]] TVL::DocumentType documentType() const { return mDocumentType; }

    /** The item's index in the model; invalid for a document without one. */
    [[nodiscard]] QModelIndex index() const { return mIndex; }
    void setIndex(const QModelIndex &index) { mIndex = index; }

    /** Cuts the document loose from model and node; it lives on as a plain text. */
    void detach();

    [[nodiscard]] int referenceCount() const { return mReferenceCount; }
    void setReferenceCount(int count) { mReferenceCount = count; }

    /** Whether what the file holds is what the document holds; this and not isModified() decides.
     */
    [[nodiscard]] bool isSaved() const { return mIsSaved; }
    void setSaved(bool saved) { mIsSaved = saved; }

    /** Set when the file could not be read; such a document is never written over its file. */
    [[nodiscard]] bool isReadOnly() const { return mReadOnly; }
    void setReadOnly(bool readOnly) { mReadOnly = readOnly; }

private:
    TVLProjectModel *mModel = nullptr;
    TVLProjectNode *mNode = nullptr;
    QPersistentModelIndex mIndex;
    TVL::DocumentType mDocumentType = TVL::MainText;
    int mReferenceCount = 0;
    bool mIsSaved = true;
    bool mReadOnly = false;
};
