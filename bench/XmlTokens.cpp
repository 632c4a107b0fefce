#include "XmlTokens.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

XmlTokens::XmlTokens(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
            add(Kind::StartDocument);
            break;
        case QXmlStreamReader::EndDocument:
            add(Kind::EndDocument);
            break;
        case QXmlStreamReader::StartElement: {
            add(Kind::StartElement, reader.name());
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes)
                add(Kind::Attribute, attribute.name(), attribute.value());
            break;
        }
        case QXmlStreamReader::EndElement:
            add(Kind::EndElement);
            break;
        case QXmlStreamReader::Characters:
            if (!reader.isWhitespace())
                add(Kind::Text, {}, reader.text());
            break;
        default:
            break;
        }
    }
    mTokens.shrink_to_fit();
}

void XmlTokens::write(QXmlStreamWriter *writer) const
{
    for (const Token &token : mTokens) {
        switch (token.kind) {
        case Kind::StartDocument:
            writer->writeStartDocument();
            break;
        case Kind::EndDocument:
            writer->writeEndDocument();
            break;
        case Kind::StartElement:
            writer->writeStartElement(*token.name);
            break;
        case Kind::EndElement:
            writer->writeEndElement();
            break;
        case Kind::Attribute:
            writer->writeAttribute(*token.name, *token.text);
            break;
        case Kind::Text:
            writer->writeCharacters(*token.text);
            break;
        }
    }
}

void XmlTokens::add(Kind kind, QStringView name, QStringView text)
{
    mTokens.push_back({kind, keep(name), keep(text)});
}

const QString *XmlTokens::keep(QStringView text)
{
    return &*mStrings.insert(text.toString()).first;
}
