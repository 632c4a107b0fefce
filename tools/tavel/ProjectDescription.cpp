#include "ProjectDescription.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

/** What is counted over the items. */
class ItemCounter
{
public:
    ItemCounter(const TVLProjectModel &model, ProjectDescription *project);

    void count(TVLProjectNode *node);
    [[nodiscard]] int itemsWithKeyword(int id) const { return mKeywordItems.value(id); }
    [[nodiscard]] int itemsWithField(const QString &id) const { return mFieldItems.value(id); }

private:
    void countText(TVLProjectNode *node);

    const TVLProjectModel &mModel;
    ProjectDescription *mProject;
    QHash<int, int> mKeywordItems;
    QHash<QString, int> mFieldItems;
};

ItemCounter::ItemCounter(const TVLProjectModel &model, ProjectDescription *project)
    : mModel(model)
    , mProject(project)
{
}

void ItemCounter::count(TVLProjectNode *node)
{
    ++mProject->items;
    ++mProject->typeCounts.at(std::size_t(node->mNodeType));
    for (const int id : QSet<int>(node->mKeywords.cbegin(), node->mKeywords.cend()))
        ++mKeywordItems[id];
    for (auto value = node->mCustomMetaData.cbegin(); value != node->mCustomMetaData.cend();
         ++value) {
        if (!value.value().isEmpty())
            ++mFieldItems[value.key()];
    }
    if (node->canHaveText())
        countText(node);
}

void ItemCounter::countText(TVLProjectNode *node)
{
    QString error;
    const auto document = readItemText(mProject->path, node, TVL::MainText, &error);
    if (!document) {
        ++mProject->texts.unreadable;
        return;
    }
    const TextLength length = lengthOf(*document);
    mProject->texts.all += length;
    if (mModel.draftContains(mModel.createIndex(node)))
        mProject->texts.draft += length;
}

QList<KeywordUse> describeKeywords(const TVLProjectModel &model, const ItemCounter &counter)
{
    QList<KeywordUse> uses;
    QHash<int, int> depths;
    const QList<TVLBinderKeyword> keywords = model.projectKeywords();
    for (const TVLBinderKeyword &keyword : keywords) {
        const int depth = depths.value(keyword.mParentId, -1) + 1;
        depths.insert(keyword.mId, depth);
        uses.append({keyword, depth, counter.itemsWithKeyword(keyword.mId)});
    }
    return uses;
}

QList<FieldUse> describeFields(const TVLProjectModel &model, const ItemCounter &counter)
{
    QList<FieldUse> uses;
    const TVLCustomMetaDataSettings fields = model.customMetaDataSettings();
    for (const TVLMetaDataField &field : fields)
        uses.append({field, counter.itemsWithField(field.mId)});
    return uses;
}

QList<TitledId> favoritesOf(const TVLProjectModel &model)
{
    QList<TitledId> favorites;
    const QModelIndexList indexes = model.favorites();
    for (const QModelIndex &index : indexes) {
        const TVLProjectNode *node = model.projectNode(index);
        favorites.append({node->mId, node->mTitle});
    }
    return favorites;
}

QList<TitledId> notesOf(const TVLProjectModel &model)
{
    QList<TitledId> notes;
    for (const auto &[id, document] : model.projectNotes().mNotes)
        notes.append({id, document->metaInformation(QTextDocument::DocumentTitle)});
    return notes;
}

QList<QPair<QString, QString>> describeProperties(const TVLProjectModel &model)
{
    QList<QPair<QString, QString>> properties;
    for (const QString &tag :
         {TVLProjectFolderFormat::ProjectTitleTag, TVLProjectFolderFormat::AbbreviatedTitleTag,
          TVLProjectFolderFormat::FullNameTag, TVLProjectFolderFormat::LastNameTag,
          TVLProjectFolderFormat::FirstNameTag})
        properties.append({tag, model.projectProperty(tag)});
    return properties;
}

LockDescription describeLock(const QString &projectPath)
{
    LockDescription lock;
    lock.state =
        TVLProjectFolderFormat::compareLockFile(projectPath, &lock.host, &lock.user, &lock.program);
    return lock;
}

} // namespace

ProjectDescription describe(const TVLProjectModel &model)
{
    ProjectDescription project;
    project.name = model.name();
    project.path = model.path().absolutePath();
    project.formatVersion = model.formatVersion();
    project.info = model.info();

    ItemCounter counter(model, &project);
    tvlForEachNode(model.binderRoot(), [&counter](TVLProjectNode *node) { counter.count(node); });

    project.labelTitle = model.labelTitle();
    project.defaultLabelId = model.defaultLabelIdentity();
    project.labels = model.labels();
    project.statusTitle = model.statusTitle();
    project.defaultStatusId = model.defaultStatusIdentity();
    project.statusItems = model.statusItems();
    project.keywords = describeKeywords(model, counter);
    project.fields = describeFields(model, counter);

    project.collections = model.collections();
    project.favorites = favoritesOf(model);
    project.references = model.projectReferences();
    project.notes = notesOf(model);
    project.completions = model.autoCompleteList().size();

    project.properties = describeProperties(model);
    project.draftTarget = model.draftTarget();
    project.sessionTarget = model.sessionTarget();
    project.notifiesTargets = model.notifyTargets();
    project.isInBackups = model.backupIncluded();
    project.lock = describeLock(project.path);
    return project;
}

QString colorName(const QColor &color)
{
    return color.isValid() ? color.name() : QString();
}

QString countTypeWord(int type)
{
    switch (TVLCountType(type)) {
    case TVLCountType::Characters:
        return u"Characters"_s;
    case TVLCountType::Pages:
        return u"Pages"_s;
    default:
        return u"Words"_s;
    }
}
