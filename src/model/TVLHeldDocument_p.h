#pragma once

#include "TVLProjectModel.h"
#include "TVLTextDocument.h"

/** A reference to one of an item's documents, given back at the end of the scope. */
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

    explicit operator bool() const { return mDocument != nullptr; }
    TVLTextDocument *operator->() const { return mDocument; }
    [[nodiscard]] TVLTextDocument *get() const { return mDocument; }

private:
    const TVLProjectModel *mModel;
    TVLTextDocument *mDocument; ///< Null when the item has no such document.
};
