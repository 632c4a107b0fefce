#include "TVLWholeXml_p.h"

#include "TVLXmlReading_p.h"

bool tvlIsWholeXml(QIODevice *device)
{
    QXmlStreamReader reader(device);
    reader.setEntityExpansionLimit(0);
    tvlReadToEnd(&reader);
    return !reader.hasError();
}
