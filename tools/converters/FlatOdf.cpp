#include "FlatOdf.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace {

const QString OfficeSpace = u"urn:oasis:names:tc:opendocument:xmlns:office:1.0"_s;

void writeRoot(const QXmlStreamReader &reader, QXmlStreamWriter *writer)
{
    const auto declarations = reader.namespaceDeclarations();
    for (const QXmlStreamNamespaceDeclaration &declaration : declarations)
        writer->writeNamespace(declaration.namespaceUri().toString(),
                               declaration.prefix().toString());
    writer->writeStartElement(OfficeSpace, u"document"_s);
    writer->writeAttributes(reader.attributes());
    writer->writeAttribute(OfficeSpace, u"mimetype"_s,
                           u"application/vnd.oasis.opendocument.text"_s);
}

} // namespace

QByteArray flatOdf(const QByteArray &content)
{
    QByteArray flat;
    QXmlStreamReader reader(content);
    QXmlStreamWriter writer(&flat);
    bool isRoot = true;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && isRoot) {
            writeRoot(reader, &writer);
            isRoot = false;
        } else if (!reader.hasError()) {
            writer.writeCurrentToken(reader);
        }
    }
    return reader.hasError() ? QByteArray() : flat;
}
