/* What the records of a binder refer to: its items, labels, status items, keywords and fields. */
#include "ProjectCheck.h"

#include "TUuid.h"

using namespace Qt::StringLiterals;

namespace {

/** The ids of records as a set. */
template <typename Record>
auto idsOf(const QList<Record> &records)
{
    QSet<decltype(Record::mId)> ids;
    ids.reserve(records.size());
    for (const Record &record : records)
        ids.insert(record.mId);
    return ids;
}

QString problemText(int id)
{
    return QString::number(id);
}

QString problemText(const QString &id)
{
    return u'\'' + id + u'\'';
}

} // namespace

template <typename Record>
void ProjectCheck::checkIdsOf(const QList<Record> &records, const QString &kind,
                              const QString &where)
{
    QHash<decltype(Record::mId), QString> titles;
    for (const Record &record : records) {
        const auto first = titles.constFind(record.mId);
        if (first == titles.cend())
            titles.insert(record.mId, record.mTitle);
        else
            add(kind, where,
                u"'%1' has the same id as '%2': %3"_s.arg(record.mTitle, *first,
                                                          problemText(record.mId)));
    }
}

void ProjectCheck::checkTables()
{
    checkIdsOf(mProject->sections().mLabels, u"duplicateLabel"_s, u"LabelSettings"_s);
    checkIdsOf(mProject->sections().mStatusItems, u"duplicateStatus"_s, u"StatusSettings"_s);
    checkIdsOf(mProject->sections().mKeywords, u"duplicateKeyword"_s, u"Keywords"_s);
    checkIdsOf<TVLMetaDataField>(mProject->sections().mCustomMetaDataSettings, u"duplicateField"_s,
                                 u"CustomMetaDataSettings"_s);
}

void ProjectCheck::checkDefaults()
{
    const int label = mProject->sections().mDefaultLabelId;
    if (label != -1 && !idsOf(mProject->sections().mLabels).contains(label))
        add(u"unknownDefaultLabel"_s, u"LabelSettings"_s,
            u"new items are to get the label %1, which doesn't exist"_s.arg(label));
    const int status = mProject->sections().mDefaultStatusId;
    if (status != -1 && !idsOf(mProject->sections().mStatusItems).contains(status))
        add(u"unknownDefaultStatus"_s, u"StatusSettings"_s,
            u"new items are to get the status %1, which doesn't exist"_s.arg(status));
}

void ProjectCheck::checkWhatItemsReferTo()
{
    const QSet<int> labels = idsOf(mProject->sections().mLabels);
    const QSet<int> statusItems = idsOf(mProject->sections().mStatusItems);
    const QSet<int> keywords = idsOf(mProject->sections().mKeywords);
    const QSet<QString> fields =
        idsOf<TVLMetaDataField>(mProject->sections().mCustomMetaDataSettings);
    tvlForEachNode(mProject->binderRoot(), [&](const TVLProjectNode *node) {
        const auto addUnknown = [&](const QString &kind, const QString &what, const QString &id) {
            add(kind, identityOf(node),
                u"'%1' has the %2 %3, which doesn't exist"_s.arg(node->mTitle, what, id));
        };
        if (node->mLabelId != -1 && !labels.contains(node->mLabelId))
            addUnknown(u"unknownLabel"_s, u"label"_s, problemText(node->mLabelId));
        if (node->mStatusId != -1 && !statusItems.contains(node->mStatusId))
            addUnknown(u"unknownStatus"_s, u"status"_s, problemText(node->mStatusId));
        for (const int id : node->mKeywords) {
            if (!keywords.contains(id))
                addUnknown(u"unknownKeyword"_s, u"keyword"_s, problemText(id));
        }
        for (auto value = node->mCustomMetaData.cbegin(); value != node->mCustomMetaData.cend();
             ++value) {
            if (!fields.contains(value.key()))
                addUnknown(u"unknownField"_s, u"custom field"_s, problemText(value.key()));
        }
        const int childTemplate = node->mDefaultChildTemplateId;
        if (childTemplate != -1 && !mById.contains(childTemplate))
            addUnknown(u"unknownChildTemplate"_s, u"template for children"_s,
                       problemText(childTemplate));
        checkReferences(node->mReferences, identityOf(node));
    });
}

void ProjectCheck::checkReferences(const QList<TVLReference> &references, const QString &where)
{
    for (const TVLReference &reference : references) {
        if (reference.isInternal() && !mById.contains(reference.mInternalLink))
            add(u"unknownReference"_s, where,
                u"the reference '%1' leads to the id %2, which no item has"_s.arg(
                    reference.mTitle, problemText(reference.mInternalLink)));
    }
}

void ProjectCheck::checkBackdrop()
{
    const QVariant backdrop = mProject->sections().mFullScreenBackdrop;
    if (backdrop.typeId() == QMetaType::Int && !mById.contains(backdrop.toInt()))
        add(u"unknownBackdrop"_s, u"FullScreenBackdrop"_s,
            u"the backdrop is the item of the id %1, which no item has"_s.arg(backdrop.toInt()));
}

void ProjectCheck::checkTemplateFolder()
{
    const QUuid uuid = mProject->namedTemplateFolderUuid().value_or(QUuid());
    if (!uuid.isNull() && !mByUuid.contains(uuid))
        add(u"unknownTemplateFolder"_s, u"TemplateFolderUUID"_s,
            u"the template folder has the uuid %1, which no item has"_s.arg(
                TUuid::toStringNoBraces(uuid, true)));
    const int id = mProject->namedTemplateFolderId().value_or(-1);
    if (id >= 0 && !mById.contains(id))
        add(u"unknownTemplateFolder"_s, u"TemplateFolderID"_s,
            u"the template folder has the id %1, which no item has"_s.arg(id));
}

void ProjectCheck::checkCollections()
{
    for (const TVLCollectionMetaData &collection : mProject->sections().mCollections) {
        for (const int id : collection.mIds) {
            if (!mById.contains(id))
                add(u"unknownCollectionMember"_s, collection.mTitle,
                    u"the collection holds the id %1, which no item has"_s.arg(id));
        }
    }
}
