#include "BinderSections.h"

#include "TVLBinderWriter.h"
#include "TVLProjectModel.h"
#include "TVLXmlReading_p.h"

#include <QBuffer>
#include <QFile>
#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

/** Reads over an element; whether it holds anything. */
bool skipElement(QXmlStreamReader *reader)
{
    bool holdsSomething = !reader->attributes().isEmpty();
    while (!reader->hasError() && !reader->atEnd()) {
        reader->readNext();
        if (reader->isEndElement())
            break;
        if (reader->isStartElement()) {
            holdsSomething = true;
            reader->skipCurrentElement();
        } else if (reader->isCharacters() && !reader->isWhitespace()) {
            holdsSomething = true;
        }
    }
    return holdsSomething;
}

/** The names of the elements right below the root that hold something. */
QStringList filledSections(const QByteArray &binder)
{
    QStringList names;
    // What stands in the user's data needs no declaration, as for the reader of a binder.
    TVLUndeclaredEntities entities;
    QXmlStreamReader reader(binder);
    reader.setNamespaceProcessing(false);
    reader.setEntityResolver(&entities);
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        const QString name = reader.name().toString();
        if (skipElement(&reader))
            names.append(name);
    }
    return names;
}

/** The entities that a binder refers to and doesn't say itself: their texts lie elsewhere. */
QStringList externalEntities(const QByteArray &binder)
{
    QStringList names;
    QXmlStreamReader reader(binder);
    bool hasDocumentType = false;
    while (!reader.hasError() && !reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        // Without a document type there are none, and the binder needn't be read once more.
        if (token == QXmlStreamReader::StartElement && !hasDocumentType)
            break;
        if (token == QXmlStreamReader::EntityReference)
            names.append(reader.name().toString());
        if (token != QXmlStreamReader::DTD)
            continue;
        hasDocumentType = true;
        // To those that are declared the reader gives no token of their own.
        const QXmlStreamEntityDeclarations declarations = reader.entityDeclarations();
        for (const QXmlStreamEntityDeclaration &entity : declarations) {
            if (!entity.systemId().isEmpty() && binder.contains('&' + entity.name().toUtf8() + ';'))
                names.append(entity.name().toString());
        }
    }
    names.removeDuplicates();
    return names;
}

QStringList sectionsOfSave(const TVLProjectModel &model)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter(&buffer).writeProject(&model, model.binderRoot());
    return filledSections(buffer.data());
}

/**
 * Parts that a save leaves out when there is nothing to say in them. The library knows all of what
 * is in these, so where one goes, it meant nothing: an empty title, no item, no path.
 */
bool maySaveLeaveOut(const QString &section)
{
    static const QSet<QString> sections{u"TemplateFolderUUID"_s, u"TemplateFolderID"_s,
                                        u"ProjectProperties"_s, u"FullScreenBackdrop"_s};
    return sections.contains(section);
}

} // namespace

QStringList sectionsLostBySaving(const QString &binderPath, const TVLProjectModel &model)
{
    QFile file(binderPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray binder = file.readAll();
    QStringList lost = filledSections(binder);
    const QStringList kept = sectionsOfSave(model);
    lost.removeIf(
        [&kept](const QString &name) { return kept.contains(name) || maySaveLeaveOut(name); });
    const QStringList entities = externalEntities(binder);
    for (const QString &name : entities)
        lost.append(u"the entity '%1'"_s.arg(name));
    return lost;
}
