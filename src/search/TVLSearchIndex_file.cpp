#include "TVLSearchIndex.h"

#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLFileWriting_p.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLRegularFile.h"
#include "TVLSearchSql_p.h"
#include "TVLSearchedProject.h"
#include "TVLXmlReading_p.h"
#include "TVLXmlText_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QHash>
#include <QSqlError>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

using namespace TVLSearchSql;

namespace {

const QString RootTag = u"SearchIndexes"_qs;
const QString VersionAttribute = u"Version"_qs;
const QString Version = u"1.0"_qs;
const QString DocumentsTag = u"Documents"_qs;
const QString DocumentTag = u"Document"_qs;
const QString IdAttribute = u"ID"_qs;

struct TextElement
{
    TVL::DocumentProperty property;
    QString tag;
};

/** In the order in which they are written. */
const std::array<TextElement, 6> TextElements = {{
    {TVL::TitleProperty, u"Title"_qs},
    {TVL::SynopsisProperty, u"Synopsis"_qs},
    {TVL::TextProperty, u"Text"_qs},
    {TVL::CustomMetaDataProperty, u"CustomMetaData"_qs},
    {TVL::NotesProperty, u"Notes"_qs},
    {TVL::CommentsProperty, u"Comments"_qs},
}};

const QString SelectIdentities = u"SELECT DISTINCT identity FROM DocumentSearchProperties"_qs;
const QString SelectText =
    u"SELECT propertyValue FROM DocumentSearchProperties WHERE type=:t AND identity = :i"_qs;

constexpr const char *CannotOpen =
    QT_TRANSLATE_NOOP("TVLSearchIndex", "Could not find or open the search.indexes file");

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

/** Takes an item of the file, with its texts by property. */
using TakeDocument = std::function<void(int id, const QHash<int, QString> &texts)>;

void readDocument(QXmlStreamReader *reader, const TakeDocument &take)
{
    bool isReadable = false;
    const int id = reader->attributes().value(IdAttribute).toInt(&isReadable);
    QHash<int, QString> texts;
    while (reader->readNextStartElement()) {
        const auto element =
            std::find_if(TextElements.begin(), TextElements.end(), [&](const TextElement &known) {
                return known.tag == reader->qualifiedName();
            });
        // Of several the first counts.
        if (element == TextElements.end() || texts.contains(element->property))
            reader->skipCurrentElement();
        else
            texts.insert(element->property, readText(reader));
    }
    if (isReadable && id >= 0 && !reader->hasError())
        take(id, texts);
}

/** Reads all items; empty, or why the file can't be read to its end. */
QString readDocuments(QIODevice *device, const TakeDocument &take)
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

/** Writes an item by its texts, which the queries give in the order of TextElements. */
bool writeDocument(QXmlStreamWriter *writer, int id, std::vector<QSqlQuery> *texts)
{
    writer->writeStartElement(DocumentTag);
    writer->writeAttribute(IdAttribute, QString::number(id));
    for (std::size_t i = 0; i < TextElements.size(); ++i) {
        QSqlQuery &query = texts->at(i);
        query.bindValue(u":i"_qs, id);
        if (!succeeded(query, query.exec(), __LINE__))
            return false;
        const QString text = query.next() ? tvlXmlText(query.value(0).toString()) : QString();
        query.finish();
        if (text.isEmpty())
            continue;
        writer->writeStartElement(TextElements[i].tag);
        tvlWriteXmlCharacters(writer, text);
        writer->writeEndElement();
    }
    writer->writeEndElement();
    return true;
}

/** Writes all items and tells their ids; false when the database fails. */
bool writeDocuments(QXmlStreamWriter *writer, const QSqlDatabase &database, QSet<int> *ids)
{
    QSqlQuery identities(database);
    identities.setForwardOnly(true);
    if (!run(&identities, SelectIdentities, __LINE__))
        return false;
    std::vector<QSqlQuery> texts;
    for (const TextElement &element : TextElements) {
        QSqlQuery &query = texts.emplace_back(database);
        query.setForwardOnly(true);
        if (!prepare(&query, SelectText, __LINE__))
            return false;
        query.bindValue(u":t"_qs, int(element.property));
    }

    writer->writeStartDocument();
    writer->writeStartElement(RootTag);
    writer->writeAttribute(VersionAttribute, Version);
    writer->writeStartElement(DocumentsTag);
    while (identities.next()) {
        const int id = identities.value(0).toInt();
        if (!writeDocument(writer, id, &texts))
            return false;
        ids->insert(id);
    }
    writer->writeEndDocument();
    return succeeded(identities, !identities.lastError().isValid(), __LINE__);
}

} // namespace

QString TVLSearchIndex::searchIndexesFilePath() const
{
    return mProject ? TVLProjectFolderFormat::searchIndexesFilePath(mProject->searchedPath())
                    : QString();
}

// --- Reading

bool TVLSearchIndex::load(QString *error)
{
    mIsLoaded = true;
    mIsModified = false;
    if (!mProject || tvlIsMissing(searchIndexesFilePath()))
        return true;
    TVLRegularFile file(searchIndexesFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
        tvlSetError(error, translated(CannotOpen));
        return false;
    }

    TVLProjectChecksums *checksums = mProject->checksums();
    // Texts of a project that never had hashes are taken as they are. Beside hashes, a text without
    // one isn't that of any file.
    const bool hadNoHashes = !checksums->loadChecksums() && checksums->isFileMissing();
    const bool isRead = canLookIntoDocs()
        && loadDocuments(&file, hadNoHashes ? WithoutHash::AnyText : WithoutHash::NoText, error);
    mIsModified = false;
    // A hash vouches for a text that is here. Without the texts it would confirm that there is
    // none, now or when the file is next read.
    if (!isRead)
        checksums->setChecksums({});
    return isRead;
}

/** Whether it can be told of a document file that it isn't there. The folder need not be. */
bool TVLSearchIndex::canLookIntoDocs() const
{
    const QString path = TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath());
    return QFileInfo(path).isDir() || tvlIsMissing(path);
}

/** All of the file or nothing: what stands before a fault is no more to be relied on. */
bool TVLSearchIndex::loadDocuments(QIODevice *device, WithoutHash withoutHash, QString *error)
{
    Bundle bundle(this);
    const QString readError =
        readDocuments(device, [this, withoutHash](int id, const QHash<int, QString> &texts) {
            mStoredIds.insert(id);
            loadDocument(id, texts, withoutHash);
        });
    tvlSetError(error, readError);
    return readError.isEmpty() && bundle.isOpen() && bundle.keep();
}

void TVLSearchIndex::loadDocument(int id, const QHash<int, QString> &texts, WithoutHash withoutHash)
{
    const auto isCurrent = [&](TVL::DocumentProperty property) {
        return isVouchedFor(id, property,
                            withoutHash == WithoutHash::AnyText || texts.value(property).isEmpty());
    };
    const bool isText = isCurrent(TVL::TextProperty);
    const bool isNotes = isCurrent(TVL::NotesProperty);
    const bool isSynopsis = isCurrent(TVL::SynopsisProperty);
    // Which comments there are, the text says too.
    const bool isComments = isCurrent(TVL::CommentsProperty)
        && (isText || texts.value(TVL::CommentsProperty).isEmpty());
    const bool isAll = isText && isNotes && isSynopsis && isComments;
    // The title is the binder's.
    const std::pair<TVL::DocumentProperty, bool> confirmed[] = {
        {TVL::SynopsisProperty, isSynopsis}, {TVL::TextProperty, isText},
        {TVL::NotesProperty, isNotes},       {TVL::CustomMetaDataProperty, isAll},
        {TVL::CommentsProperty, isComments},
    };
    for (const auto &[property, isConfirmed] : confirmed)
        updatePropertyPrivate(id, property, texts.value(property), isConfirmed);
}

/** Whether the hash of a text says that it is that of its file; of a text that needs none, whether
 * there is no file. */
bool TVLSearchIndex::isVouchedFor(int id, TVL::DocumentProperty property, bool needsNoHash) const
{
    const TVL::DocumentType type = TVL::toDocumentType(property);
    const TVLProjectChecksums *checksums = mProject->checksums();
    return checksums->checksumsMatch(id, type)
        && (needsNoHash || !checksums->loadedChecksum(id, type).isEmpty());
}

QString TVLSearchIndex::fileError(const QString &path)
{
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return translated(CannotOpen);
    return readDocuments(&file, [](int, const QHash<int, QString> &) {});
}

// --- Writing

void TVLSearchIndex::save()
{
    if (!mProject)
        return;
    // The file isn't touched before all that it will hold is there.
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.setAutoFormatting(true);
    QSet<int> ids;
    if (!writeDocuments(&writer, *this, &ids))
        return;
    if (!canReplaceFile() || !mProject->checksums()->withdrawOutdated()
        || !tvlWriteOwnFile(content, searchIndexesFilePath(), nullptr)) {
        qCritical() << "could not write to search indexes file";
        return;
    }
    mStoredIds = ids;
    mIsFileMisleading = false;
    mIsModified = false;
}

/** Whether a file that is there may get other texts. Not while the hashes are away with the folder
 * of the documents: they would vouch for these as soon as they are back. */
bool TVLSearchIndex::canReplaceFile() const
{
    const QFileInfo file(searchIndexesFilePath());
    if (tvlIsMissing(file.filePath()))
        return true;
    return file.isFile() && file.isWritable()
        && QFileInfo(TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath())).isDir();
}
