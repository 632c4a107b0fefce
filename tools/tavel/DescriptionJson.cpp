#include "ItemTexts.h"
#include "ProjectDescription.h"

#include "TVLProjectFolderFormat.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

/** A JSON array of what a function makes of each record. */
template <typename Record, typename ToJson>
QJsonArray arrayOf(const QList<Record> &records, ToJson toJson)
{
    QJsonArray array;
    for (const Record &record : records)
        array.append(toJson(record));
    return array;
}

QJsonValue colorOrNull(const QColor &color)
{
    return textOrNull(colorName(color));
}

QJsonObject countsOf(const ProjectDescription &project)
{
    QJsonObject counts;
    for (int type = 0; type < ProjectDescription::TypeCount; ++type)
        counts.insert(TVL::wordOf(TVL::NodeType(type)), project.typeCounts.at(std::size_t(type)));
    return counts;
}

QJsonArray labelsOf(const ProjectDescription &project)
{
    return arrayOf(project.labels, [&project](const TVLLabel &label) {
        return QJsonObject{{u"id"_qs, label.mId},
                           {u"title"_qs, label.mTitle},
                           {u"color"_qs, colorOrNull(label.mColor)},
                           {u"default"_qs, label.mId == project.defaultLabelId}};
    });
}

QJsonArray statusItemsOf(const ProjectDescription &project)
{
    return arrayOf(project.statusItems, [&project](const TVLStatusItem &item) {
        return QJsonObject{{u"id"_qs, item.mId},
                           {u"title"_qs, item.mTitle},
                           {u"default"_qs, item.mId == project.defaultStatusId}};
    });
}

/* A list with each keyword's parent, and no nested one, which JSON's writer would write by
 * recursion. */
QJsonArray keywordsOf(const ProjectDescription &project)
{
    return arrayOf(project.keywords, [](const KeywordUse &use) {
        return QJsonObject{{u"id"_qs, use.keyword.mId},
                           {u"parent"_qs, idOrNull(use.keyword.mParentId)},
                           {u"title"_qs, use.keyword.mTitle},
                           {u"color"_qs, colorOrNull(use.keyword.mColor)},
                           {u"items"_qs, use.items}};
    });
}

QJsonArray fieldsOf(const ProjectDescription &project)
{
    return arrayOf(project.fields, [](const FieldUse &use) {
        return QJsonObject{{u"id"_qs, use.field.mId},
                           {u"title"_qs, use.field.mTitle},
                           {u"color"_qs, colorOrNull(use.field.mColor)},
                           {u"wraps"_qs, use.field.mWraps},
                           {u"items"_qs, use.items}};
    });
}

QJsonArray collectionsOf(const ProjectDescription &project)
{
    return arrayOf(project.collections, [](const TVLCollectionMetaData &collection) {
        // Only a list that is kept by hand has members; the others are sought anew each time.
        const bool hasMembers = collection.mType == TVL::ArbitraryCollection;
        return QJsonObject{
            {u"title"_qs, collection.mTitle},
            {u"kind"_qs, TVL::wordOf(collection.mType)},
            {u"members"_qs, hasMembers ? QJsonValue(collection.mIds.size()) : QJsonValue()}};
    });
}

QJsonArray titledIdsOf(const QList<TitledId> &titledIds)
{
    return arrayOf(titledIds, [](const TitledId &titledId) {
        return QJsonObject{{u"id"_qs, idOrNull(titledId.id)}, {u"title"_qs, titledId.title}};
    });
}

QJsonArray referencesOf(const ProjectDescription &project)
{
    return arrayOf(project.references, [](const TVLReference &reference) {
        return QJsonObject{{u"title"_qs, reference.mTitle},
                           {u"item"_qs, idOrNull(reference.mInternalLink)},
                           {u"url"_qs, textOrNull(reference.mUrl.toString())}};
    });
}

QJsonObject propertiesOf(const ProjectDescription &project)
{
    QJsonObject properties;
    for (const auto &[tag, value] : project.properties)
        properties.insert(tag, textOrNull(value));
    return properties;
}

QJsonObject targetsOf(const ProjectDescription &project)
{
    const TVLDraftTarget &draft = project.draftTarget;
    const TVLSessionTarget &session = project.sessionTarget;
    return {{u"draft"_qs,
             QJsonObject{{u"count"_qs, draft.mCount},
                         {u"type"_qs, countTypeWord(draft.mType)},
                         {u"countIncludedOnly"_qs, draft.mCountIncludedOnly},
                         {u"currentCompileGroupOnly"_qs, draft.mCurrentCompileGroupOnly},
                         {u"showOverrun"_qs, draft.mShowOverrun},
                         {u"buffer"_qs, draft.mBuffer},
                         {u"deadline"_qs, textOrNull(draft.mDeadline)},
                         {u"ignoreDeadline"_qs, draft.mIgnoreDeadline}}},
            {u"session"_qs,
             QJsonObject{{u"count"_qs, session.mCount},
                         {u"type"_qs, countTypeWord(session.mType)},
                         {u"countDraftOnly"_qs, session.mCountDraftOnly},
                         {u"allowNegatives"_qs, session.mAllowNegatives},
                         {u"reset"_qs, TVLSessionTarget::toString(session.mResetType)},
                         {u"fromDeadline"_qs, session.mFromDeadline},
                         {u"canWriteOnDeadlineDate"_qs, session.mCanWriteOnDeadlineDate},
                         {u"writingDays"_qs, textOrNull(session.mWritingDays)}}},
            {u"notify"_qs, project.notifiesTargets}};
}

QJsonObject saveOf(const TVLProjectInfo &info)
{
    return {{u"device"_qs, textOrNull(info.mDevice)},
            {u"time"_qs, toJson(info.mModified)},
            {u"id"_qs, toJson(info.mModId)}};
}

QString wordOf(int lockState)
{
    switch (lockState) {
    case TVLProjectFolderFormat::NotLocked:
        return u"none"_qs;
    case TVLProjectFolderFormat::LockedHere:
        return u"own"_qs;
    case TVLProjectFolderFormat::LockedElsewhere:
        return u"copied"_qs;
    case TVLProjectFolderFormat::LockedByOtherProgram:
        return u"otherProgram"_qs;
    default:
        return u"other"_qs;
    }
}

QJsonObject lockOf(const LockDescription &lock)
{
    return {{u"state"_qs, wordOf(lock.state)},
            {u"host"_qs, textOrNull(lock.host)},
            {u"user"_qs, textOrNull(lock.user)},
            {u"program"_qs, textOrNull(lock.program)}};
}

} // namespace

QJsonObject toJson(const ProjectDescription &project)
{
    return {
        {u"name"_qs, project.name},
        {u"path"_qs, project.path},
        {u"formatVersion"_qs, project.formatVersion},
        {u"binderVersion"_qs, int(project.info.mBinderVersion)},
        {u"binderVersionText"_qs, project.info.mVersion},
        {u"items"_qs, project.items},
        {u"counts"_qs, countsOf(project)},
        {u"words"_qs, project.texts.all.words},
        {u"characters"_qs, project.texts.all.characters},
        {u"draftWords"_qs, project.texts.draft.words},
        {u"draftCharacters"_qs, project.texts.draft.characters},
        {u"unreadableTexts"_qs, project.texts.unreadable},
        {u"labelTitle"_qs, project.labelTitle},
        {u"labels"_qs, labelsOf(project)},
        {u"statusTitle"_qs, project.statusTitle},
        {u"statusItems"_qs, statusItemsOf(project)},
        {u"keywords"_qs, keywordsOf(project)},
        {u"customMetaData"_qs, fieldsOf(project)},
        {u"collections"_qs, collectionsOf(project)},
        {u"favorites"_qs, titledIdsOf(project.favorites)},
        {u"references"_qs, referencesOf(project)},
        {u"notes"_qs, titledIdsOf(project.notes)},
        {u"completions"_qs, project.completions},
        {u"properties"_qs, propertiesOf(project)},
        {u"targets"_qs, targetsOf(project)},
        {u"inBackups"_qs, project.isInBackups},
        {u"save"_qs, saveOf(project.info)},
        {u"locked"_qs, project.lock.state != TVLProjectFolderFormat::NotLocked},
        {u"lock"_qs, lockOf(project.lock)},
    };
}
