#include "TVLFinalDraftWriter.h"

#include "TVLFinalDraftComposer_p.h"
#include "TVLScreenplayDocument_p.h"

#include <QIODevice>

bool TVLFinalDraftWriter::write(QIODevice *device, const QTextDocument *document,
                                const QList<TVLScriptElement> &elements)
{
    if (!device || !document)
        return false;
    const QByteArray xml = toXml(document, elements);
    return device->write(xml) == xml.size();
}

QByteArray TVLFinalDraftWriter::toXml(const QTextDocument *document,
                                      const QList<TVLScriptElement> &elements)
{
    return TVLFinalDraftComposer(tvlScreenplayOf(document, elements)).compose();
}
