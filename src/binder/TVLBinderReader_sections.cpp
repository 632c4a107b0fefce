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

/** The elements of a section that holds a title, an id and a list. */
struct TVLBinderReader::ListTags
{
    const QString &defaultId;
    const QString &list;
    const QString &item;
};

template <typename Item>
bool TVLBinderReader::readListSection(const ListTags &tags, Item (TVLBinderReader::*readItem)(),
                                      QString *title, int *defaultId, QList<Item> *items)
{
    QString readTitle;
    int readId = -1;
    QList<Item> readItems;
    while (readNextStartElement()) {
        if (name() == Title) {
            readTitle = readText();
        } else if (name() == tags.defaultId) {
            readNumber(&readId);
        } else if (name() != tags.list) {
            skipCurrentElement();
        } else {
            while (readNextStartElement()) {
                if (!expectElement(tags.item, __LINE__))
                    return false;
                readItems.append((this->*readItem)());
            }
        }
    }
    if (hasError())
        return false;
    *title = readTitle;
    *defaultId = readId;
    *items = readItems;
    return true;
}

bool TVLBinderReader::readLabels()
{
    return readListSection({DefaultLabelID, Labels, Label}, &TVLBinderReader::readLabel,
                           &mSections->mLabelTitle, &mSections->mDefaultLabelId,
                           &mSections->mLabels);
}

TVLLabel TVLBinderReader::readLabel()
{
    TVLLabel label;
    label.mId = idAttribute(attributes());
    label.mColor = TVL::floatStringToColor(attributes().value(Attribute::Color));
    if (!label.mColor.isValid() && label.mId != -1)
        label.mColor = QColor(QRgb(tvlRandom(16777215)));
    label.mTitle = readText();
    return label;
}

bool TVLBinderReader::readStatusItems()
{
    return readListSection({DefaultStatusID, StatusItems, Status}, &TVLBinderReader::readStatusItem,
                           &mSections->mStatusTitle, &mSections->mDefaultStatusId,
                           &mSections->mStatusItems);
}

TVLStatusItem TVLBinderReader::readStatusItem()
{
    TVLStatusItem item;
    item.mId = idAttribute(attributes());
    item.mTitle = readText();
    return item;
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
