#pragma once

#include "TVLProjectModel.h"
#include "TVLTextDocument.h"

#include <QPointer>

/**
 * A reference to one of an item's documents, given back at the end of the scope. Taking it may show
 * a box about a file that can't be read, in which the item may go; what was known of the item
 * before is of no use then. The document may go as well, in any box or event loop.
 */
class TVLHeldDocument
{
public:
    TVLHeldDocument(const TVLProjectModel *model, const QModelIndex &index, TVL::DocumentType type)
        : mModel(model)
        , mDocument(model->referenceItem(index, type))
    {
    }
    ~TVLHeldDocument() { mModel->dereferenceItem(mDocument); }
    Q_DISABLE_COPY_MOVE(TVLHeldDocument)

    explicit operator bool() const { return !mDocument.isNull(); }
    TVLTextDocument *operator->() const { return mDocument; }
    [[nodiscard]] TVLTextDocument *get() const { return mDocument; }

private:
    const TVLProjectModel *mModel;
    QPointer<TVLTextDocument> mDocument; ///< Null when the item has no such document.
};
