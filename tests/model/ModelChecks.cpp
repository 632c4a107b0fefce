#include "ModelChecks.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextCursor>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QDateTime LongAgo = QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6));
// Ids are tried one by one up to here; only a made-up id is larger.
constexpr int LargestTriedId = 5000;

} // namespace

QString unsavedProjectPath()
{
    static const QTemporaryDir directory;
    return directory.filePath(u"Novel.tavel"_s);
}

TestModel emptyModel(TVL::FormatVersion version, bool mobile)
{
    return TestModel(new TVLProjectModel(unsavedProjectPath(), nullptr, mobile, version));
}

TestModel blankModel()
{
    return TestModel(TVLProjectModel::createBlankProjectInMemory(unsavedProjectPath()));
}

QModelIndex firstText(const TVLProjectModel *model)
{
    return model->index(0, 0, model->draftFolder());
}

QModelIndex addItem(TVLProjectModel *model, const QModelIndex &parent, TVL::NodeType type,
                    const QString &title)
{
    TVLProjectNodeProperties record;
    record.mNodeType = type;
    record.mTitle = title.isEmpty() ? TVLProjectModel::trUntitledTitle() : title;
    record.mCreated = QDateTime::currentDateTime();
    record.mModified = record.mCreated;
    return model->insertRowWithProperties(-1, parent, record);
}

QModelIndex addTextItem(TVLProjectModel *model, const QModelIndex &parent, const QString &title)
{
    return model->insertTextNode(-1, parent, title, title + u" text"_s, title + u" card"_s,
                                 title + u" note"_s);
}

void addTree(TVLProjectModel *model, const QModelIndex &parent, const QString &notation)
{
    QList<QPersistentModelIndex> parents = {parent};
    QPersistentModelIndex last;
    const auto addItemOf = [&](const QString &word) {
        if (word.isEmpty())
            return;
        const QStringList parts = word.split(u':');
        const int type = parts.size() > 1 ? parts.at(1).toInt() : int(TVL::Text);
        last = addItem(model, parents.constLast(), TVL::NodeType(type), parts.constFirst());
    };
    QString word;
    for (const QChar ch : notation) {
        if (ch != u' ' && ch != u'(' && ch != u')') {
            word.append(ch);
            continue;
        }
        addItemOf(std::exchange(word, QString()));
        if (ch == u'(')
            parents.append(last);
        else if (ch == u')')
            parents.removeLast();
    }
    addItemOf(word);
}

QString treeText(const TVLProjectModel *model, const QModelIndex &parent)
{
    QStringList items;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        const QString below = treeText(model, index);
        items.append(model->title(index) + (below.isEmpty() ? below : u'(' + below + u')'));
    }
    return items.join(u' ');
}

QModelIndex itemTitled(const TVLProjectModel *model, const QString &title)
{
    const QModelIndexList indexes = recursiveWalk(model, model->rootIndex());
    for (const QModelIndex &index : indexes) {
        if (model->title(index) == title)
            return index;
    }
    return {};
}

QModelIndexList itemsTitled(const TVLProjectModel *model, const QString &titles)
{
    QModelIndexList indexes;
    const QStringList words = titles.split(u' ', Qt::SkipEmptyParts);
    for (const QString &title : words)
        indexes.append(itemTitled(model, title));
    return indexes;
}

void growRandomTree(TVLProjectModel *model, int nodes, quint32 seed)
{
    QRandomGenerator random(seed);
    QList<TVLProjectNode *> parents = {model->binderRoot()};
    for (int i = 0; i < nodes; ++i) {
        TVLProjectNode *parent = parents.at(random.bounded(int(parents.size())));
        const int row = random.bounded(-1, int(parent->mChildren.size()) + 1);
        parents.append(model->insertNode(row, model->createIndex(parent),
                                         TVL::NodeType(random.bounded(10)), QString(),
                                         u"Item %1"_s.arg(i)));
    }
}

QModelIndexList recursiveWalk(const QAbstractItemModel *model, const QModelIndex &parent)
{
    QModelIndexList found;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex child = model->index(row, 0, parent);
        found.append(child);
        found.append(recursiveWalk(model, child));
    }
    return found;
}

QString mapsOutOfStep(const TVLProjectModel *model)
{
    QSet<QUuid> uuids;
    QSet<int> ids;
    QString wrong;
    int count = 0;
    tvlForEachNode(model->binderRoot(), [&](TVLProjectNode *node) {
        ++count;
        uuids.insert(node->mUuid);
        const bool uuidLeads = model->hasNodeUuid(node->mUuid)
            && model->findNodeByUuid(node->mUuid) == node
            && model->findNodeIdByUuid(node->mUuid) == node->mId;
        if (!uuidLeads)
            wrong = u"uuid of '%1'"_s.arg(node->mTitle);
        if (node->mId < 0)
            return;
        ids.insert(node->mId);
        const bool idLeads = model->hasNodeId(node->mId)
            && model->findNodeUuidById(node->mId) == node->mUuid
            && model->findNode(node->mId) == node;
        if (!idLeads)
            wrong = u"id %1 of '%2'"_s.arg(node->mId).arg(node->mTitle);
    });
    if (!wrong.isEmpty())
        return wrong;
    if (uuids.size() != count)
        return u"a uuid twice in the tree"_s;
    if (model->uniqueUuids() != uuids)
        return u"map by uuid has %1 entries, the tree %2 items"_s.arg(model->uniqueUuids().size())
            .arg(count);
    const int biggest = ids.isEmpty() ? -1 : *std::max_element(ids.begin(), ids.end());
    if (model->findBiggestNodeId() != biggest)
        return u"biggest id %1 instead of %2"_s.arg(model->findBiggestNodeId()).arg(biggest);
    for (int id = -1; id <= qMin(biggest, LargestTriedId); ++id) {
        if (model->hasNodeId(id) != ids.contains(id))
            return u"entry of id %1"_s.arg(id);
    }
    return {};
}

void makeOld(const TVLProjectModel *model, const QModelIndex &index)
{
    model->projectNode(index)->mModified = LongAgo;
}

void makeAllOld(const TVLProjectModel *model)
{
    tvlForEachNode(model->binderRoot(), [](TVLProjectNode *node) { node->mModified = LongAgo; });
}

bool isTouched(const TVLProjectModel *model, const QModelIndex &index)
{
    return model->projectNode(index)->mModified != LongAgo;
}

QList<int> touchedIds(const TVLProjectModel *model)
{
    QList<int> ids;
    tvlForEachNode(model->binderRoot(), [&ids](const TVLProjectNode *node) {
        if (node->mModified != LongAgo)
            ids.append(node->mId);
    });
    return ids;
}

void typeText(const TVLProjectModel *model, const QModelIndex &index, const QString &text,
              TVL::DocumentType type)
{
    TVLTextDocument *document = model->referenceItem(index, type);
    if (!document)
        qFatal("the item has no such document");
    QTextCursor(document).insertText(text);
    model->dereferenceItem(document);
}

void typeTextForGood(const TVLProjectModel *model, const QModelIndex &index, const QString &text,
                     TVL::DocumentType type)
{
    TVLTextDocument *document = model->referenceItem(index, type);
    typeText(model, index, text, type);
    document->clearUndoRedoStacks();
    model->dereferenceItem(document);
}

QStringList documentFiles(const QString &projectPath)
{
    QStringList names =
        QDir(TVLProjectFolderFormat::filesDocsPath(projectPath)).entryList(QDir::Files, QDir::Name);
    names.removeOne(u"docs.checksum"_s);
    return names;
}

void deleteReleasedObjects()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

SignalLog::SignalLog(const TVLProjectModel *model)
{
    const auto log = [this](const QString &line) { mLines.append(line); };
    const auto idOf = [model](const QModelIndex &index) { return model->nodeIdentity(index); };
    QObject *context = &mContext;
    QObject::connect(model, &TVLProjectModel::dataChanged, context,
                     [=](const QModelIndex &first, const QModelIndex &last) {
                         log(first == last ? u"data %1"_s.arg(idOf(first)) : u"data of several"_s);
                     });
    QObject::connect(model, &TVLProjectModel::modifiedChanged, context,
                     [=](bool modified) { log(modified ? u"modified"_s : u"saved"_s); });
    QObject::connect(model, &TVLProjectModel::aboutToSave, context, [=](const QModelIndex &index) {
        log(u"about to save %1"_s.arg(idOf(index)));
    });
    QObject::connect(model, &TVLProjectModel::documentContentsChange, context,
                     [=](const QModelIndex &index, TVL::DocumentType type, int position,
                         int charsRemoved, int charsAdded) {
                         log(u"edit of %1.%2 at %3: -%4 +%5"_s.arg(idOf(index))
                                 .arg(type)
                                 .arg(position)
                                 .arg(charsRemoved)
                                 .arg(charsAdded));
                     });
    QObject::connect(model, &TVLProjectModel::documentContentsChanged, context,
                     [=](const QModelIndex &index, TVL::DocumentType type) {
                         log(u"edited %1.%2"_s.arg(idOf(index)).arg(type));
                     });
    QObject::connect(model, &TVLProjectModel::formatModeChanged, context,
                     [=](const QModelIndex &index, const QString &mode) {
                         log(u"mode %1 of %2"_s.arg(mode).arg(idOf(index)));
                     });
    QObject::connect(model, &TVLProjectModel::projectNoteAboutToBeAdded, context,
                     [=](int id) { log(u"note %1 to come"_s.arg(id)); });
    QObject::connect(model, &TVLProjectModel::projectNoteAdded, context,
                     [=](int id) { log(u"note %1 came"_s.arg(id)); });
    QObject::connect(model, &TVLProjectModel::projectNoteAboutToBeRemoved, context,
                     [=](int id) { log(u"note %1 to go"_s.arg(id)); });
    QObject::connect(model, &TVLProjectModel::projectNoteRemoved, context,
                     [=](int id) { log(u"note %1 gone"_s.arg(id)); });
    QObject::connect(
        model, &TVLProjectModel::projectNoteAboutToBeMoved, context,
        [=](int from, int to) { log(u"note at %1 to move to %2"_s.arg(from).arg(to)); });
    QObject::connect(model, &TVLProjectModel::projectNoteMoved, context,
                     [=](int from, int to) { log(u"note at %1 moved to %2"_s.arg(from).arg(to)); });
    QObject::connect(model, &TVLProjectModel::projectNoteRenamed, context,
                     [=](int id) { log(u"note %1 renamed"_s.arg(id)); });
    QObject::connect(model, &TVLProjectModel::labelsChanged, context, [=] { log(u"labels"_s); });
    QObject::connect(model, &TVLProjectModel::statusItemsChanged, context,
                     [=] { log(u"status items"_s); });
    QObject::connect(model, &TVLProjectModel::labelTitleChanged, context,
                     [=](const QString &title) { log(u"label title "_s + title); });
    QObject::connect(model, &TVLProjectModel::statusTitleChanged, context,
                     [=](const QString &title) { log(u"status title "_s + title); });
    QObject::connect(model, &TVLProjectModel::metaDataChanged, context,
                     [=] { log(u"meta data"_s); });
    QObject::connect(
        model, &TVLProjectModel::templateFolderChanged, context,
        [=](const QModelIndex &newIndex, const QModelIndex &oldIndex) {
            log(u"template folder %1 for %2"_s.arg(idOf(newIndex)).arg(idOf(oldIndex)));
        });
    QObject::connect(model, &TVLProjectModel::referencesChanged, context,
                     [=] { log(u"references"_s); });
    QObject::connect(model, &TVLProjectModel::autoCompleteListChanged, context,
                     [=] { log(u"completions"_s); });
    QObject::connect(model, &TVLProjectModel::customMetaDataChanged, context,
                     [=](const QModelIndex &index) { log(u"fields of %1"_s.arg(idOf(index))); });
    QObject::connect(model, &TVLProjectModel::customMetaDataSettingsAboutToBeChanged, context,
                     [=](const QStringList &oldIds, const QStringList &newIds) {
                         log(u"fields %1 to become %2"_s.arg(oldIds.join(u','), newIds.join(u',')));
                     });
    QObject::connect(model, &TVLProjectModel::customMetaDataSettingsChanged, context,
                     [=](const QStringList &oldIds, const QStringList &newIds) {
                         log(u"fields %1 became %2"_s.arg(oldIds.join(u','), newIds.join(u',')));
                     });
    QObject::connect(model, qOverload<>(&TVLProjectModel::collectionChanged), context,
                     [=] { log(u"collections"_s); });
    QObject::connect(
        model, &TVLProjectModel::rowsAboutToBeInserted, context,
        [=](const QModelIndex &parent, int first, int last) {
            log(u"rows %1-%2 below %3 to come"_s.arg(first).arg(last).arg(idOf(parent)));
        });
    QObject::connect(model, &TVLProjectModel::rowsInserted, context,
                     [=](const QModelIndex &parent, int first, int last) {
                         log(u"rows %1-%2 below %3"_s.arg(first).arg(last).arg(idOf(parent)));
                     });
}
