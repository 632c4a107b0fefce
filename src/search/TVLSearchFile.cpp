#include "TVLSearchFile_p.h"

#include "TVLXmlReading_p.h"
#include "TVLXmlText_p.h"

#include <QCoreApplication>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString RootTag = u"SearchIndexes"_s;
const QString VersionAttribute = u"Version"_s;
const QString Version = u"1.0"_s;
const QString DocumentsTag = u"Documents"_s;
const QString DocumentTag = u"Document"_s;
const QString IdAttribute = u"ID"_s;

struct TextElement
{
    TVL::DocumentProperty property;
    QString tag;
};

/** In the order in which they are written. */
const std::array<TextElement, 6> TextElements = {{
    {TVL::TitleProperty, u"Title"_s},
    {TVL::SynopsisProperty, u"Synopsis"_s},
    {TVL::TextProperty, u"Text"_s},
    {TVL::CustomMetaDataProperty, u"CustomMetaData"_s},
    {TVL::NotesProperty, u"Notes"_s},
    {TVL::CommentsProperty, u"Comments"_s},
}};

QString translated(const char *text)
{
    return QCoreApplication::translate("TVLSearchIndex", text);
}

/** Goes on to the first child of a name; false at the end of the element that the reader is in. */
bool enterChild(QXmlStreamReader *reader, const QString &tag)
{
    while (reader->readNextStartElement()) {
        if (reader->qualifiedName() == tag)
            return true;
        reader->skipCurrentElement();
    }
    return false;
}

/** Goes on to the root element. A document type is refused: the file has none, and what its
 * entities stand for would be missing from the texts. */
bool enterRoot(QXmlStreamReader *reader, const QString &tag)
{
    while (tvlHasMore(*reader) && !reader->isStartElement()) {
        if (reader->readNext() == QXmlStreamReader::DTD)
            reader->raiseError(translated("The search.indexes file has a document type"));
    }
    return !reader->hasError() && reader->qualifiedName() == tag;
}

/** The text of the element that the reader is in, with that of its children, however deep. */
QString readText(QXmlStreamReader *reader)
{
    QString text;
    for (int depth = 1; depth > 0 && tvlHasMore(*reader);) {
        reader->readNext();
        if (reader->isStartElement())
            ++depth;
        else if (reader->isEndElement())
            --depth;
        else if (reader->isCharacters())
            text += reader->text();
    }
    return text;
}

void readDocument(QXmlStreamReader *reader, const TVLSearchFile::TakeDocument &take)
{
    bool isReadable = false;
    const int id = reader->attributes().value(IdAttribute).toInt(&isReadable);
    TVLFiledTexts texts;
    std::array<bool, TextElements.size()> isRead = {};
    while (reader->readNextStartElement()) {
        const auto *element =
            std::find_if(TextElements.begin(), TextElements.end(), [&](const TextElement &known) {
                return known.tag == reader->qualifiedName();
            });
        // Of several the first counts. The title is the binder's.
        if (element == TextElements.end() || element->property == TVL::TitleProperty
            || std::exchange(isRead.at(std::size_t(element - TextElements.begin())), true))
            reader->skipCurrentElement();
        else
            texts[element->property] = readText(reader);
    }
    if (isReadable && id >= 0 && !reader->hasError())
        take(id, texts);
}

} // namespace

QString TVLSearchFile::read(QIODevice *device, const TakeDocument &take)
{
    QXmlStreamReader reader(device);
    reader.setNamespaceProcessing(false);
    reader.setEntityExpansionLimit(0);
    const bool hasDocuments = enterRoot(&reader, RootTag) && enterChild(&reader, DocumentsTag);
    while (hasDocuments && enterChild(&reader, DocumentTag))
        readDocument(&reader, take);
    tvlReadToEnd(&reader);
    if (reader.hasError())
        return translated("line %1, column %2: %3")
            .arg(reader.lineNumber())
            .arg(reader.columnNumber())
            .arg(reader.errorString());
    return hasDocuments ? QString() : translated("The search.indexes file has no documents");
}

void TVLSearchFile::writeStart(QXmlStreamWriter *writer)
{
    writer->setAutoFormatting(true);
    writer->writeStartDocument();
    writer->writeStartElement(RootTag);
    writer->writeAttribute(VersionAttribute, Version);
    writer->writeStartElement(DocumentsTag);
}

void TVLSearchFile::writeDocument(QXmlStreamWriter *writer, int id, const TVLFiledTexts &texts)
{
    writer->writeStartElement(DocumentTag);
    writer->writeAttribute(IdAttribute, QString::number(id));
    for (const TextElement &element : TextElements) {
        const QString text = tvlXmlText(texts.at(element.property));
        if (text.isEmpty())
            continue;
        writer->writeStartElement(element.tag);
        tvlWriteXmlText(writer, text);
        writer->writeEndElement();
    }
    writer->writeEndElement();
}

void TVLSearchFile::writeEnd(QXmlStreamWriter *writer)
{
    writer->writeEndDocument();
}
