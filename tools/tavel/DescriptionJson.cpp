#include "ItemTexts.h"
#include "ProjectDescription.h"

#include "TVLProjectFolderFormat.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

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
        return QJsonObject{{u"id"_s, label.mId},
                           {u"title"_s, label.mTitle},
                           {u"color"_s, colorOrNull(label.mColor)},
                           {u"default"_s, label.mId == project.defaultLabelId}};
    });
}

QJsonArray statusItemsOf(const ProjectDescription &project)
{
    return arrayOf(project.statusItems, [&project](const TVLStatusItem &item) {
        return QJsonObject{{u"id"_s, item.mId},
                           {u"title"_s, item.mTitle},
                           {u"default"_s, item.mId == project.defaultStatusId}};
    });
}

/* A list with each keyword's parent, and no nested one, which JSON's writer would write by
 * recursion. */
QJsonArray keywordsOf(const ProjectDescription &project)
{
    return arrayOf(project.keywords, [](const KeywordUse &use) {
        return QJsonObject{{u"id"_s, use.keyword.mId},
                           {u"parent"_s, idOrNull(use.keyword.mParentId)},
                           {u"title"_s, use.keyword.mTitle},
                           {u"color"_s, colorOrNull(use.keyword.mColor)},
                           {u"items"_s, use.items}};
    });
}

QJsonArray fieldsOf(const ProjectDescription &project)
{
    return arrayOf(project.fields, [](const FieldUse &use) {
        return QJsonObject{{u"id"_s, use.field.mId},
                           {u"title"_s, use.field.mTitle},
                           {u"color"_s, colorOrNull(use.field.mColor)},
                           {u"wraps"_s, use.field.mWraps},
                           {u"items"_s, use.items}};
    });
}

QJsonArray collectionsOf(const ProjectDescription &project)
{
    return arrayOf(project.collections, [](const TVLCollectionMetaData &collection) {
        // Only a list that is kept by hand has members; the others are sought anew each time.
        const bool hasMembers = collection.mType == TVL::ArbitraryCollection;
        return QJsonObject{
            {u"title"_s, collection.mTitle},
            {u"kind"_s, TVL::wordOf(collection.mType)},
            {u"members"_s, hasMembers ? QJsonValue(collection.mIds.size()) : QJsonValue()}};
    });
}

QJsonArray titledIdsOf(const QList<TitledId> &titledIds)
{
    return arrayOf(titledIds, [](const TitledId &titledId) {
        return QJsonObject{{u"id"_s, idOrNull(titledId.id)}, {u"title"_s, titledId.title}};
    });
}

QJsonArray referencesOf(const ProjectDescription &project)
{
    return arrayOf(project.references, [](const TVLReference &reference) {
        return QJsonObject{{u"title"_s, reference.mTitle},
                           {u"item"_s, idOrNull(reference.mInternalLink)},
                           {u"url"_s, textOrNull(reference.mUrl.toString())}};
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
    return {{u"draft"_s,
             QJsonObject{{u"count"_s, draft.mCount},
                         {u"type"_s, countTypeWord(draft.mType)},
                         {u"countIncludedOnly"_s, draft.mCountIncludedOnly},
                         {u"currentCompileGroupOnly"_s, draft.mCurrentCompileGroupOnly},
                         {u"showOverrun"_s, draft.mShowOverrun},
                         {u"buffer"_s, draft.mBuffer},
                         {u"deadline"_s, textOrNull(draft.mDeadline)},
                         {u"ignoreDeadline"_s, draft.mIgnoreDeadline}}},
            {u"session"_s,
             QJsonObject{{u"count"_s, session.mCount},
                         {u"type"_s, countTypeWord(session.mType)},
                         {u"countDraftOnly"_s, session.mCountDraftOnly},
                         {u"allowNegatives"_s, session.mAllowNegatives},
                         {u"reset"_s, TVLSessionTarget::toString(session.mResetType)},
                         {u"fromDeadline"_s, session.mFromDeadline},
                         {u"canWriteOnDeadlineDate"_s, session.mCanWriteOnDeadlineDate},
                         {u"writingDays"_s, textOrNull(session.mWritingDays)}}},
            {u"notify"_s, project.notifiesTargets}};
}

QJsonObject saveOf(const TVLProjectInfo &info)
{
    return {{u"device"_s, textOrNull(info.mDevice)},
            {u"time"_s, toJson(info.mModified)},
            {u"id"_s, toJson(info.mModId)}};
}

QString wordOf(int lockState)
{
    switch (lockState) {
    case TVLProjectFolderFormat::NotLocked:
        return u"none"_s;
    case TVLProjectFolderFormat::LockedHere:
        return u"own"_s;
    case TVLProjectFolderFormat::LockedElsewhere:
        return u"copied"_s;
    case TVLProjectFolderFormat::LockedByOtherProgram:
        return u"otherProgram"_s;
    default:
        return u"other"_s;
    }
}

QJsonObject lockOf(const LockDescription &lock)
{
    return {{u"state"_s, wordOf(lock.state)},
            {u"host"_s, textOrNull(lock.host)},
            {u"user"_s, textOrNull(lock.user)},
            {u"program"_s, textOrNull(lock.program)}};
}

} // namespace

QJsonObject toJson(const ProjectDescription &project)
{
    return {
        {u"name"_s, project.name},
        {u"path"_s, project.path},
        {u"formatVersion"_s, project.formatVersion},
        {u"binderVersion"_s, int(project.info.mBinderVersion)},
        {u"binderVersionText"_s, project.info.mVersion},
        {u"items"_s, project.items},
        {u"counts"_s, countsOf(project)},
        {u"words"_s, project.texts.all.words},
        {u"characters"_s, project.texts.all.characters},
        {u"draftWords"_s, project.texts.draft.words},
        {u"draftCharacters"_s, project.texts.draft.characters},
        {u"unreadableTexts"_s, project.texts.unreadable},
        {u"labelTitle"_s, project.labelTitle},
        {u"labels"_s, labelsOf(project)},
        {u"statusTitle"_s, project.statusTitle},
        {u"statusItems"_s, statusItemsOf(project)},
        {u"keywords"_s, keywordsOf(project)},
        {u"customMetaData"_s, fieldsOf(project)},
        {u"collections"_s, collectionsOf(project)},
        {u"favorites"_s, titledIdsOf(project.favorites)},
        {u"references"_s, referencesOf(project)},
        {u"notes"_s, titledIdsOf(project.notes)},
        {u"completions"_s, project.completions},
        {u"properties"_s, propertiesOf(project)},
        {u"targets"_s, targetsOf(project)},
        {u"inBackups"_s, project.isInBackups},
        {u"save"_s, saveOf(project.info)},
        {u"locked"_s, project.lock.state != TVLProjectFolderFormat::NotLocked},
        {u"lock"_s, lockOf(project.lock)},
    };
}
