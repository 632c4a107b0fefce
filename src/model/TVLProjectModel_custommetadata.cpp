/*
 * What the writer defined for the project as a whole and items refer to or fill in: custom fields,
 * references and completions. Labels and status items have a file of their own.
 */
#include "TVLProjectModel_p.h"

#include "TVLAnnouncing_p.h"
#include "TVLProjectNode.h"
#include "TVLSearchFeed_p.h"

#include <utility>

// --- Custom fields

void TVLProjectModel::setCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings)
{
    const QStringList oldIds = d->mCustomMetaDataSettings.ids();
    const QStringList newIds = settings.ids();
    for (const QString &id : oldIds) {
        if (!settings.hasId(id))
            removeCustomMetaDataFromNodes(id);
    }
    Q_EMIT customMetaDataSettingsAboutToBeChanged(oldIds, newIds);
    d->mCustomMetaDataSettings = settings;
    markProjectAsModified(true);
    Q_EMIT customMetaDataSettingsChanged(oldIds, newIds);
}

QMap<QString, QString> TVLProjectModel::customMetaData(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node ? node->mCustomMetaData : QMap<QString, QString>();
}

QString TVLProjectModel::customMetaData(const QModelIndex &index, const QString &id) const
{
    return customMetaData(index).value(id);
}

bool TVLProjectModel::setCustomMetaData(const QModelIndex &index, const QString &id,
                                        const QString &value)
{
    TVLProjectNode *node = index.isValid() ? projectNode(index) : nullptr;
    if (!node || id.isEmpty())
        return false;
    if (node->mCustomMetaData.value(id) == value)
        return true;
    node->mCustomMetaData.insert(id, value);
    d->mSearchFeed->updateCustomMetaData(node);
    node->updateModified();
    const QPersistentModelIndex changed = index;
    markProjectAsModified(true);
    if (changed.isValid())
        Q_EMIT customMetaDataChanged(changed);
    tvlAnnounceChange(this, changed);
    return true;
}

QList<TVLCustomMetaDataInfo> TVLProjectModel::customMetaDataInfo(const QModelIndex &index,
                                                                 bool includeEmpty) const
{
    const QMap<QString, QString> values = customMetaData(index);
    QList<TVLCustomMetaDataInfo> infos;
    for (const TVLMetaDataField &field : d->mCustomMetaDataSettings) {
        const QString value = values.value(field.mId);
        if (includeEmpty || !value.isEmpty())
            infos.append({field, value});
    }
    return infos;
}

void TVLProjectModel::removeCustomMetaDataFromNodes(const QString &id)
{
    QList<QPersistentModelIndex> indexes;
    tvlForEachNode(d->mRootNode.get(), [&](TVLProjectNode *node) {
        if (node->mCustomMetaData.remove(id) == 0)
            return;
        d->mSearchFeed->updateCustomMetaData(node);
        node->updateModified();
        indexes.append(createIndex(node));
    });
    // Who hears of one change may move or remove items before the next.
    for (const QPersistentModelIndex &index : std::as_const(indexes)) {
        markProjectAsModified(true);
        if (index.isValid())
            Q_EMIT customMetaDataChanged(index);
    }
}

// --- References

QList<TVLReference> TVLProjectModel::references(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    return node ? node->mReferences : QList<TVLReference>();
}

bool TVLProjectModel::setReferences(const QModelIndex &index, const QList<TVLReference> &references)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return false;
    if (node->mReferences == references)
        return true;
    node->mReferences = references;
    d->followChange(node, index, TVLProjectModelPrivate::Effects::TouchAndAnnounce);
    return true;
}

bool TVLProjectModel::addReference(const QModelIndex &index, const TVLReference &reference)
{
    if (!index.isValid())
        return false;
    QList<TVLReference> references = this->references(index);
    if (!TVLReference::contains(reference, references))
        references.append(reference);
    return setReferences(index, references);
}

void TVLProjectModel::setProjectReferences(const QList<TVLReference> &references)
{
    if (references == d->mProjectReferences)
        return;
    d->mProjectReferences = references;
    Q_EMIT referencesChanged();
    markProjectAsModified(true);
}

void TVLProjectModel::addProjectReference(const TVLReference &reference)
{
    if (!TVLReference::contains(reference, d->mProjectReferences))
        setProjectReferences(d->mProjectReferences + QList<TVLReference>{reference});
}

// --- Completions

void TVLProjectModel::setAutoCompleteList(const QList<TVLAutoCompleteItem> &items)
{
    if (items == d->mAutoCompleteList)
        return;
    d->mAutoCompleteList = items;
    Q_EMIT autoCompleteListChanged();
    markProjectAsModified(true);
}

void TVLProjectModel::addToAutoCompleteList(const QString &text, TVLAutoCompleteItem::Scope scope,
                                            int id)
{
    if (TVLAutoCompleteItem::indexOf(text, d->mAutoCompleteList) >= 0)
        return;
    TVLAutoCompleteItem item;
    item.mScope = TVLAutoCompleteItem::scopeId(scope, id);
    item.mText = text;
    setAutoCompleteList(d->mAutoCompleteList + QList<TVLAutoCompleteItem>{item});
}

QStringList TVLProjectModel::autoCompleteStrings() const
{
    return TVLAutoCompleteItem::toStringList(d->mAutoCompleteList);
}
