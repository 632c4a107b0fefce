#include "TVLTextDocument.h"

TVLTextDocument::TVLTextDocument(QObject *parent, TVLProjectModel *model, TVLProjectNode *node,
                                 TVL::DocumentType type)
    : QTextDocument(parent)
    , mModel(model)
    , mNode(node)
    , mDocumentType(type)
{
}

TVLTextDocument::TVLTextDocument(QObject *parent)
    : QTextDocument(parent)
{
}

void TVLTextDocument::detach()
{
    mModel = nullptr;
    mNode = nullptr;
    mIndex = QPersistentModelIndex();
}
