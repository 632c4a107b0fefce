#include "TVLBinderWriter.h"

#include "TVLBinderContents.h"
#include "TVLBinderReader.h"
#include "TVLBinderTags_p.h"
#include "TVLBinderWords_p.h"
#include "TVLPropertyWords_p.h"
#include "TVLXmlReading_p.h"

#include "TUuid.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

/** Whether a binder can be read that has these bytes among its sections. */
bool leavesBinderReadable(const QByteArray &bytes)
{
    QByteArray binder = "<TavelinorProject Version=\"1.5\">" + bytes + "</TavelinorProject>";
    QBuffer buffer(&binder);
    buffer.open(QIODevice::ReadOnly);
    TVLBinderContents contents;
    TVLBinderReader reader(&buffer);
    const bool ok = reader.readProject(&contents, contents.binderRoot()) && contents.isLoadable();
    // The reader of a binder ends with its root.
    tvlReadToEnd(&reader);
    return ok && !reader.hasError();
}

} // namespace

/** The elements of a section that holds a title, an id and a list. */
struct TVLBinderWriter::ListTags
{
    const QString &section;
    const QString &defaultId;
    const QString &list;
    const QString &item;
};

template <typename Item>
void TVLBinderWriter::writeListSection(const ListTags &tags, const QString &title, int defaultId,
                                       const QList<Item> &items)
{
    writeStartElement(tags.section);
    writeTextElement(Title, title);
    writeTextElement(tags.defaultId, QString::number(defaultId));
    writeStartElement(tags.list);
    for (const Item &item : items) {
        writeStartElement(tags.item);
        writeAttribute(Attribute::ID, QString::number(item.mId));
        if constexpr (requires { item.mColor; }) {
            if (item.mColor.isValid())
                writeAttribute(Attribute::Color, TVL::colorToFloatString(item.mColor));
        }
        writeCharacters(item.mTitle);
        writeEndElement();
    }
    writeEndElement();
    writeEndElement();
}

void TVLBinderWriter::writeLabels(const QString &title, int defaultId,
                                  const QList<TVLLabel> &labels)
{
    writeListSection({LabelSettings, DefaultLabelID, Labels, Label}, title, defaultId, labels);
}

void TVLBinderWriter::writeStatusItems(const QString &title, int defaultId,
                                       const QList<TVLStatusItem> &items)
{
    writeListSection({StatusSettings, DefaultStatusID, StatusItems, Status}, title, defaultId,
                     items);
}

void TVLBinderWriter::writeTemplateFolderId(const TVLBinderProject *project)
{
    writeTemplateFolder(project->binderSections().mTemplateFolderUuid);
}

void TVLBinderWriter::writeTemplateFolder(const QUuid &uuid)
{
    if (!uuid.isNull())
        writeTextElement(TemplateFolderUUID, TUuid::toStringNoBraces(uuid, true));
}

void TVLBinderWriter::writeCollections(const QList<TVLCollectionMetaData> &collections)
{
    writeStartElement(Collections);
    for (const TVLCollectionMetaData &collection : collections)
        writeCollection(collection);
    writeEndElement();
}

void TVLBinderWriter::writeCollection(const TVLCollectionMetaData &collection)
{
    const auto writeWord = [this](const QString &attribute, QStringView word) {
        writeAttribute(attribute, word.toString());
    };

    writeStartElement(Collection);
    writeAttribute(Attribute::Type, TVL::wordOf(collection.mType));
    writeAttribute(Attribute::ID, collection.mId);
    writeAttribute(Attribute::Color, TVL::colorToFloatString(collection.color()));
    writeTextElement(Title, collection.mTitle);
    if (collection.mType == TVL::RecentSearchCollection
        || collection.mType == TVL::SavedSearchCollection) {
        writeStartElement(SearchSettings);
        writeWord(Attribute::Operator,
                  tvlWordOf(Words::SearchOperators, TVL::SearchOperator(collection.mSearchOperator),
                            u"Exact"));
        writeWord(Attribute::Type, tvlWordOf(TVLPropertyWords, collection.mSearchProperty, u"All"));
        writeWord(Attribute::Scope,
                  tvlWordOf(Words::SearchScopes, collection.mSearchScope, u"All"));
        writeWord(Attribute::CompileSetting,
                  tvlWordOf(Words::SearchCompiles, TVL::SearchCompile(collection.mSearchCompile),
                            u"All"));
        writeWord(Attribute::CaseSensitive,
                  tvlWordOf(Words::CaseSensitivities, collection.mCaseSensitivity, Words::No));
        writeCharacters(collection.mSearchText);
        writeEndElement();
    } else if (collection.mType == TVL::ArbitraryCollection && !collection.mIds.isEmpty()) {
        writeStartElement(BinderIDs);
        for (const int id : collection.mIds)
            writeTextElement(BinderID, QString::number(id));
        writeEndElement();
    }
    writeEndElement();
}

void TVLBinderWriter::writeKeywords(const QList<TVLBinderKeyword> &keywords)
{
    // The keywords whose elements are not closed yet, each inside the one before.
    QList<int> open;
    const auto closeLast = [&] {
        open.removeLast();
        if (open.size() == DeepestIndentedItem)
            setAutoFormatting(true);
        writeEndElement();
    };

    writeStartElement(Keywords);
    bool hasChildren = false; // The last keyword of the open ones.
    for (const TVLBinderKeyword &keyword : keywords) {
        while (!open.isEmpty() && open.constLast() != keyword.mParentId) {
            if (hasChildren)
                writeEndElement();
            closeLast();
            hasChildren = true;
        }
        if (!open.isEmpty() && !hasChildren)
            writeStartElement(Children);
        writeStartElement(Keyword);
        writeAttribute(Attribute::ID, QString::number(keyword.mId));
        writeTextElement(Title, keyword.mTitle);
        if (keyword.mColor.isValid())
            writeTextElement(Color, TVL::colorToFloatString(keyword.mColor));
        open.append(keyword.mId);
        hasChildren = false;
        if (open.size() == DeepestIndentedItem + 1)
            setAutoFormatting(false);
    }
    while (!open.isEmpty()) {
        if (hasChildren)
            writeEndElement();
        closeLast();
        hasChildren = true;
    }
    writeEndElement();
}

void TVLBinderWriter::writeUserProjectData(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.isEmpty())
        return;
    if (!leavesBinderReadable(bytes)) {
        tellLeftOut(u"the user's data, with which the binder couldn't be read again"_s);
        return;
    }
    device()->write("\n    ");
    device()->write(bytes);
}
