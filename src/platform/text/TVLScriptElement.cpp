#include "TVLScriptElement.h"

#include "TVLScriptFormats_p.h"

TVLScriptElement::TVLScriptElement(const QString &name, const QTextBlockFormat &blockFormat,
                                   const QTextCharFormat &charFormat)
    : mName(name)
{
    setBlockFormat(blockFormat);
    setCharFormat(charFormat);
}

void TVLScriptElement::setBlockFormat(const QTextBlockFormat &format)
{
    mBlockFormat = TVLScriptFormats::kept(format, TVLScriptFormats::BlockScope).toBlockFormat();
}

void TVLScriptElement::setCharFormat(const QTextCharFormat &format)
{
    mCharFormat = TVLScriptFormats::kept(format, TVLScriptFormats::CharScope).toCharFormat();
}

QVariant TVLScriptElement::toVariant(const QList<TVLScriptElement> &elements)
{
    return QVariant::fromValue(elements);
}

QList<TVLScriptElement> TVLScriptElement::toScriptElementList(const QVariant &variant)
{
    return variant.value<QList<TVLScriptElement>>();
}
