/*
 * The index of a document is told here and not with the rest of its class, because only the model
 * can make one. A persistent index in each document would have to be looked after in every change
 * of the tree, and thousands of documents may be loaded.
 */
#include "TVLTextDocument.h"

#include "TVLProjectModel.h"

QModelIndex TVLTextDocument::index() const
{
    if (mModel && mNode)
        return mModel->createIndex(mNode);
    return mIndex;
}
