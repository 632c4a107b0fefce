#include "TVLWholeXml_p.h"

#include <QXmlStreamReader>

bool tvlIsWholeXml(QIODevice *device)
{
    QXmlStreamReader reader(device);
    reader.setEntityExpansionLimit(0);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}
