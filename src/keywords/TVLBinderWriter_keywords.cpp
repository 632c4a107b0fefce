/*
 * What a binder says of a keyword model is told here and not with the rest of the writer, which
 * lies below the model and doesn't know it.
 */
#include "TVLBinderWriter.h"

#include "TVLKeywordModel.h"

void TVLBinderWriter::writeKeywords(const TVLKeywordModel *keywords)
{
    writeKeywords(keywords->binderKeywords());
}
