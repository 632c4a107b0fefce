#include "TVLBinderReader.h"

#include "TVLBinderTags_p.h"
#include "TVLBinderWords_p.h"
#include "TVLDoors.h"
#include "TVLPropertyWords_p.h"
#include "TVLXmlReading_p.h"

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

int idAttribute(const QXmlStreamAttributes &attributes)
{
    bool ok = false;
    const int id = attributes.value(Attribute::ID).toInt(&ok);
    return ok ? id : -1;
}

} // namespace

bool TVLBinderReader::readLabels()
{
    QString title;
    int defaultId = -1;
    QList<TVLLabel> labels;
    while (readNextStartElement()) {
        if (name() == Title)
            title = readText();
        else if (name() == DefaultLabelID)
            readNumber(&defaultId);
        else if (name() != Labels)
            skipCurrentElement();
        else if (!readLabelList(&labels))
            return false;
    }
    if (hasError())
        return false;
    mSections->mLabels = labels;
    mSections->mDefaultLabelId = defaultId;
    mSections->mLabelTitle = title;
    return true;
}

bool TVLBinderReader::readLabelList(QList<TVLLabel> *labels)
{
    while (readNextStartElement()) {
        if (!expectElement(Label, __LINE__))
            return false;
        TVLLabel label;
        label.mId = idAttribute(attributes());
        label.mColor = TVL::floatStringToColor(attributes().value(Attribute::Color));
        if (!label.mColor.isValid() && label.mId != -1)
            label.mColor = QColor(QRgb(tvlRandom(16777215)));
        label.mTitle = readText();
        labels->append(label);
    }
    return !hasError();
}

bool TVLBinderReader::readStatusItems()
{
    QString title;
    int defaultId = -1;
    QList<TVLStatusItem> items;
    while (readNextStartElement()) {
        if (name() == Title)
            title = readText();
        else if (name() == DefaultStatusID)
            readNumber(&defaultId);
        else if (name() != StatusItems)
            skipCurrentElement();
        else if (!readStatusItemList(&items))
            return false;
    }
    if (hasError())
        return false;
    mSections->mStatusItems = items;
    mSections->mDefaultStatusId = defaultId;
    mSections->mStatusTitle = title;
    return true;
}

bool TVLBinderReader::readStatusItemList(QList<TVLStatusItem> *items)
{
    while (readNextStartElement()) {
        if (!expectElement(Status, __LINE__))
            return false;
        TVLStatusItem item;
        item.mId = idAttribute(attributes());
        item.mTitle = readText();
        items->append(item);
    }
    return !hasError();
}

bool TVLBinderReader::readTemplateFolderUuid()
{
    mTemplateFolders.append(QUuid::fromString(readText()));
    return !hasError();
}

bool TVLBinderReader::readTemplateFolderId()
{
    int id = -1;
    readNumber(&id);
    mTemplateFolders.append(id);
    return !hasError();
}

bool TVLBinderReader::readUserProjectData(const QString & /*text*/)
{
    return readUserProjectData();
}

bool TVLBinderReader::readUserProjectData()
{
    // Kept as raw text: it is cut from the file, not parsed. So it may use prefixes and entities
    // that nobody declared; a save keeps neither the root's declarations nor the document type.
    TVLUndeclaredEntities entities;
    setNamespaceProcessing(false);
    setEntityResolver(&entities);
    skipCurrentElement();
    setEntityResolver(nullptr);
    setNamespaceProcessing(true);
    return !hasError();
}

bool TVLBinderReader::readProjectCollections()
{
    QList<TVLCollectionMetaData> collections;
    if (!readCollections(&collections))
        return false;
    mCollections = collections;
    return true;
}

bool TVLBinderReader::readCollections(QList<TVLCollectionMetaData> *collections)
{
    if (!expectElement(Collections, __LINE__))
        return false;
    while (readNextStartElement()) {
        if (name() == Collection)
            collections->append(readCollection());
        else
            skipCurrentElement();
    }
    return !hasError();
}

TVLCollectionMetaData TVLBinderReader::readCollection()
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLCollectionMetaData collection;
    collection.mType = TVL::toCollectionType(attributes.value(Attribute::Type), collection.mType);
    collection.mId = attributes.hasAttribute(Attribute::ID)
        ? attributes.value(Attribute::ID).toString()
        : TVLCollectionMetaData::generateIdentity();
    collection.mColor = TVL::floatStringToColor(attributes.value(Attribute::Color));
    if (!collection.mColor.isValid())
        collection.mColor = TVLCollectionMetaData::randomColor();
    while (readNextStartElement()) {
        if (name() == Title)
            collection.mTitle = readText();
        else if (name() == SearchSettings)
            readSearchSettings(&collection);
        else if (name() == BinderIDs)
            readCollectionIds(&collection.mIds);
        else
            skipCurrentElement();
    }
    return collection;
}

void TVLBinderReader::readSearchSettings(TVLCollectionMetaData *collection)
{
    const QXmlStreamAttributes attributes = this->attributes();
    const auto read = [&attributes](const auto &table, const QString &attribute, auto *value) {
        using Word = decltype(std::begin(table)->value);
        *value = tvlValueOf(table, attributes.value(attribute), Word(*value));
    };
    read(Words::SearchOperators, Attribute::Operator, &collection->mSearchOperator);
    read(TVLPropertyWords, Attribute::Type, &collection->mSearchProperty);
    read(Words::SearchScopes, Attribute::Scope, &collection->mSearchScope);
    read(Words::SearchCompiles, Attribute::CompileSetting, &collection->mSearchCompile);
    read(Words::CaseSensitivities, Attribute::CaseSensitive, &collection->mCaseSensitivity);
    collection->mSearchText = readText();
}

void TVLBinderReader::readCollectionIds(QList<int> *ids)
{
    while (readNextStartElement()) {
        if (name() != BinderID) {
            skipCurrentElement();
            continue;
        }
        bool ok = false;
        const int id = readText().toInt(&ok);
        if (ok)
            ids->append(id);
    }
}

bool TVLBinderReader::readProjectKeywords()
{
    QList<TVLBinderKeyword> keywords;
    if (!readKeywordTree(&keywords))
        return false;
    mSections->mKeywords += keywords;
    return true;
}

bool TVLBinderReader::readKeywordTree(QList<TVLBinderKeyword> *keywords)
{
    // The keywords that the position is in, and whether it is in a list of keywords.
    QList<qsizetype> open;
    bool inList = true;
    for (;;) {
        if (readNextStartElement()) {
            if (!inList && name() == Children) {
                inList = true;
            } else if (!inList) {
                readKeywordElement(&(*keywords)[open.constLast()]);
            } else if (name() != Keyword) {
                skipCurrentElement();
            } else {
                TVLBinderKeyword keyword;
                if (!readKeywordId(&keyword.mId))
                    return false;
                if (!open.isEmpty())
                    keyword.mParentId = keywords->at(open.constLast()).mId;
                open.append(keywords->size());
                keywords->append(keyword);
                inList = false;
            }
        } else if (hasError()) {
            return false;
        } else if (!inList) {
            open.removeLast();
            inList = true;
        } else if (!open.isEmpty()) {
            inList = false;
        } else {
            return true;
        }
    }
}

bool TVLBinderReader::readKeywordId(int *id)
{
    const QString text = attributes().value(Attribute::ID).toString();
    bool ok = false;
    *id = text.toInt(&ok);
    if (ok && *id >= 0)
        return true;
    raiseError(u"Invalid keyword identity read: %1"_s.arg(text), __LINE__);
    return false;
}

void TVLBinderReader::readKeywordElement(TVLBinderKeyword *keyword)
{
    if (name() == Title)
        keyword->mTitle = readText();
    else if (name() == Color)
        keyword->mColor = TVL::floatStringToColor(readText());
    else
        skipCurrentElement();
}
