#include "TVLProjectModel.h"

#include "TVLDoors.h"
#include "TVLFilesLeft_p.h"
#include "TVLKeywordModel.h"
#include "TVLOptions.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectFolderMonitor.h"
#include "TVLProjectNode.h"
#include "TVLProjectSettings.h"
#include "TVLSearchIndex.h"
#include "TVLTextDocument.h"

#include <QFileInfo>
#include <QHostInfo>
#include <QPrinter>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int LargestId = std::numeric_limits<int>::max();

/** The smallest id of 0 or more that isn't used. Needed only where a damaged binder used up the
 * top. */
int firstGap(const QSet<int> &used)
{
    int id = 0;
    while (used.contains(id))
        ++id;
    return id;
}

/** Hands out ids that aren't among those in use: upwards from the largest, then from the gaps. */
class FreeIds
{
public:
    /** @p isTaken may be true of more ids than those. */
    FreeIds(const QList<int> &used, const std::function<bool(int)> &isTaken)
        : mUsed(used.begin(), used.end())
        , mIsTaken(isTaken)
        , mNext(TVLProjectModel::findNextFreeId(used))
    {
    }

    int take()
    {
        while (mUsed.contains(mNext) || mIsTaken(mNext))
            mNext = mNext < LargestId ? mNext + 1 : 0;
        mUsed.insert(mNext);
        return mNext;
    }

private:
    QSet<int> mUsed;
    std::function<bool(int)> mIsTaken;
    int mNext;
};

} // namespace

const QString TVLProjectModel::GeneralFormatMode = u"General"_s;
const QString TVLProjectModel::ScriptFormatMode = u"Script"_s;

QList<QPointer<TVLProjectModel>> TVLProjectModel::mExistingModels;

TVLProjectModel::TVLProjectModel(const QString &path, QObject *parent, bool mobileProject,
                                 TVL::FormatVersion version)
    : QAbstractItemModel(parent)
    , mName(QFileInfo(path).completeBaseName())
    , mPath(path)
    , mMobileProject(mobileProject)
    , mFilesLeft(std::make_unique<TVLFilesLeft>())
{
    mExistingModels.removeAll(nullptr);
    mExistingModels.append(this);
    if (version == TVL::NoFormatVersion)
        version = TVLProjectFolderFormat::projectFormatVersion(path);
    mFolderFormat = new TVLProjectFolderFormat(path, version, this);
    if (!mobileProject) {
        mFolderMonitor = new TVLProjectFolderMonitor(path, this);
        connect(mFolderMonitor, &TVLProjectFolderMonitor::externallyModified, this,
                &TVLProjectModel::externallyModified);
    }
    mChecksums = std::make_unique<TVLProjectChecksums>(mFolderFormat);
    mSearchIndex = std::make_unique<TVLSearchIndex>(this);
    mRootNode = std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, tvlNewUuid()), nullptr);
    mKeywordModel = new TVLKeywordModel(mSearchIndex.get(), this);
    loadOptions();
    connect(mKeywordModel, &TVLKeywordModel::keywordsAboutToBeRemoved, this,
            &TVLProjectModel::removeKeywordsFromDocuments);
    connect(mKeywordModel, &TVLKeywordModel::dataChanged, this,
            &TVLProjectModel::updateKeywordsForDocuments);
    connect(mKeywordModel, &TVLKeywordModel::modelChanged, this,
            [this] { markProjectAsModified(); });
    connect(tvlOptions(), &TVLOptions::groupsChanged, this, &TVLProjectModel::onOptionsChanged);
    // Before anybody else connects; see beginMoveRow().
    connect(this, &QAbstractItemModel::rowsAboutToBeMoved, this,
            [this] { mIsRootIndexPlain = false; });
    if (QFileInfo::exists(dragAndDropPath()))
        QTimer::singleShot(0, this, [this] {
            if (!mIsOnlyRead)
                cleanDragAndDrop();
        });
    mSettings = newSettings();
    if (QFileInfo::exists(mSettings->fileName()))
        loadProjectSettings();
}

TVLProjectModel::~TVLProjectModel()
{
    delete mKeywordModel; // It holds on to the search index.
    mSearchIndex.reset();
    mRootNode.reset();
}

TVL::FormatVersion TVLProjectModel::formatVersion() const
{
    return mFolderFormat->formatVersion();
}

void TVLProjectModel::setFolderFormatVersion(TVL::FormatVersion version)
{
    mFolderFormat->setFormatVersion(version);
    mInfo.mBinderVersion = TVL::toBinderVersion(version);
}

void TVLProjectModel::setName(const QString &name)
{
    if (name == mName)
        return;
    mName = name;
    markProjectAsModified(true);
}

QString TVLProjectModel::platformDeviceName()
{
    static const QString name = QHostInfo::localHostName();
    return name;
}

// --- The item model

QModelIndex TVLProjectModel::rootIndex() const
{
    return QAbstractItemModel::createIndex(-1, -1, nullptr);
}

QModelIndex TVLProjectModel::createIndex(const TVLProjectNode *node) const
{
    if (node == mRootNode.get())
        return rootIndex();
    if (!node || !node->mParent)
        return {};
    return QAbstractItemModel::createIndex(node->row(), 0, node);
}

TVLProjectNode *TVLProjectModel::projectNode(const QModelIndex &index) const
{
    if (!index.isValid())
        return mRootNode.get();
    if (index.model() != this)
        return nullptr;
    return static_cast<TVLProjectNode *>(index.internalPointer());
}

QModelIndex TVLProjectModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row == -1 && column == -1 && !parent.isValid())
        return rootIndex();
    const TVLProjectNode *parentNode = projectNode(parent);
    if (!parentNode || row < 0 || row >= parentNode->mChildren.size())
        return {};
    return QAbstractItemModel::createIndex(row, column, parentNode->mChildren.at(row));
}

QModelIndex TVLProjectModel::parent(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    if (!node || (mIsRootIndexPlain && node->mParent == mRootNode.get()))
        return {};
    return createIndex(node->mParent);
}

int TVLProjectModel::rowCount(const QModelIndex &parent) const
{
    const TVLProjectNode *node = projectNode(parent);
    return node ? int(node->mChildren.size()) : 0;
}

int TVLProjectModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return 1;
}

bool TVLProjectModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

Qt::ItemFlags TVLProjectModel::flags(const QModelIndex &index) const
{
    // What may not be edited or dropped on is refused by the operations, not by the flags.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled
        | Qt::ItemIsEnabled;
}

Qt::DropActions TVLProjectModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

Qt::DropActions TVLProjectModel::supportedDragActions() const
{
    return supportedDropActions();
}

QVariant TVLProjectModel::data(const QModelIndex &index, int role) const
{
    const auto *node =
        index.model() == this ? static_cast<TVLProjectNode *>(index.internalPointer()) : nullptr;
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return title(index, true);
    case Qt::DecorationRole:
        return icon(index);
    case Qt::EditRole:
        return node->mTitle;
    case Qt::ToolTipRole:
        return TVL::toHtmlTooltipFormat(synopsis(index));
    case NodeIdRole:
        return node->mId;
    case NodeUuidRole:
        return QVariant::fromValue(node->mUuid);
    case NodeTypeRole:
        return int(node->mNodeType);
    case LabelIdRole:
        return node->mLabelId;
    case StatusIdRole:
        return node->mStatusId;
    case CreatedRole:
        return node->mCreated;
    case ModifiedRole:
        return node->mModified;
    case TemplateFolderRole:
        return node->mIsTemplateFolder;
    case FavoriteRole:
        return node->mIsFavorite;
    case KeywordIdsRole:
        return QVariantList(node->mKeywords.cbegin(), node->mKeywords.cend());
    default:
        return {};
    }
}

namespace {

QList<int> toIntList(const QVariantList &values)
{
    QList<int> numbers;
    numbers.reserve(values.size());
    for (const QVariant &value : values)
        numbers.append(value.toInt());
    return numbers;
}

} // namespace

bool TVLProjectModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (index.model() != this || !index.internalPointer())
        return false;
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return value.canConvert<QString>() && setTitle(index, value.toString());
    case NodeTypeRole:
        return isNumber && setType(index, TVL::NodeType(number));
    case LabelIdRole:
        return isNumber && setLabelIdentity(index, number);
    case StatusIdRole:
        return isNumber && setStatusIdentity(index, number);
    case FavoriteRole:
        return value.canConvert<bool>() && setFavorite(index, value.toBool(), false);
    case KeywordIdsRole:
        return value.canConvert<QVariantList>() && setKeywordIds(index, toIntList(value.toList()));
    default:
        return false;
    }
}

// --- Finding items

TVLProjectNode *TVLProjectModel::findNode(int id) const
{
    if (id < 0)
        return mRootNode.get();
    const auto uuid = mIdMap.constFind(id);
    return uuid == mIdMap.cend() ? nullptr : findNodeByUuid(*uuid);
}

TVLProjectNode *TVLProjectModel::findNodeByUuid(const QUuid &uuid) const
{
    if (uuid.isNull())
        return mRootNode.get();
    if (TVLProjectNode *node = mUuidMap.value(uuid))
        return node;
    // The map may lag behind a tree that is being built.
    for (TVLProjectNode *node = mRootNode->nextInPreOrder(mRootNode.get()); node;
         node = node->nextInPreOrder(mRootNode.get())) {
        if (node->mUuid == uuid)
            return node;
    }
    return mRootNode.get();
}

QModelIndex TVLProjectModel::indexByUuid(const QUuid &uuid) const
{
    return createIndex(findNodeByUuid(uuid));
}

QModelIndex TVLProjectModel::index(int id) const
{
    const TVLProjectNode *node = findNode(id);
    return node ? createIndex(node) : rootIndex();
}

QUuid TVLProjectModel::findNodeUuidById(int id) const
{
    return mIdMap.value(id);
}

int TVLProjectModel::findNodeIdByUuid(const QUuid &uuid) const
{
    if (const TVLProjectNode *node = mUuidMap.value(uuid))
        return node->mId;
    // 0 for an unknown uuid is what callers of old rely on, though it is an item's id as well.
    return mIdMap.key(uuid, 0);
}

int TVLProjectModel::findBiggestNodeId() const
{
    return mIdMap.isEmpty() ? -1 : mIdMap.lastKey();
}

int TVLProjectModel::findNextNodeId() const
{
    int id = findBiggestNodeId();
    while (id < LargestId) {
        if (!isLeftBehind(++id))
            return id;
    }
    id = 0;
    while (mIdMap.contains(id) || isLeftBehind(id))
        ++id;
    return id;
}

bool TVLProjectModel::isLeftBehind(int id) const
{
    return mFilesLeft->has(mPath, id);
}

int TVLProjectModel::findNextFreeId(const QList<int> &ids)
{
    if (ids.isEmpty())
        return 0;
    const int biggest = *std::max_element(ids.begin(), ids.end());
    return biggest < LargestId ? biggest + 1 : firstGap(QSet<int>(ids.begin(), ids.end()));
}

QList<QUuid> TVLProjectModel::uuidsListBinderOrder() const
{
    QList<QUuid> uuids;
    tvlForEachNode(mRootNode.get(),
                   [&uuids](const TVLProjectNode *node) { uuids.append(node->mUuid); });
    return uuids;
}

QSet<QUuid> TVLProjectModel::uniqueUuids() const
{
    return QSet<QUuid>(mUuidMap.keyBegin(), mUuidMap.keyEnd());
}

int TVLProjectModel::totalNodesCount() const
{
    int count = 0;
    tvlForEachNode(mRootNode.get(), [&count](const TVLProjectNode *) { ++count; });
    return count;
}

QList<int> TVLProjectModel::orderedChildIDs(const TVLProjectNode *node) const
{
    QList<int> ids;
    tvlForEachNode(node ? node : mRootNode.get(),
                   [&ids](const TVLProjectNode *child) { ids.append(child->mId); });
    return ids;
}

bool TVLProjectModel::indexContainsUuid(const QModelIndex &index, const QUuid &uuid) const
{
    return isChildOf(indexByUuid(uuid), index);
}

bool TVLProjectModel::containsIndex(const QModelIndex &outer, const QModelIndex &inner) const
{
    return isChildOf(inner, outer);
}

bool TVLProjectModel::isChildOf(const QModelIndex &child, const QModelIndex &parent) const
{
    const TVLProjectNode *node = projectNode(child);
    for (node = node ? node->mParent : nullptr; node; node = node->mParent) {
        if (node == parent.internalPointer())
            return true;
    }
    return false;
}

bool TVLProjectModel::isChildOf(const QModelIndex &child, const QModelIndexList &parents) const
{
    return std::any_of(parents.begin(), parents.end(),
                       [&](const QModelIndex &parent) { return isChildOf(child, parent); });
}

QModelIndex TVLProjectModel::findViaTitle(const QString &title, const QModelIndex &parent) const
{
    const TVLProjectNode *parentNode = projectNode(parent);
    if (!parentNode)
        return {};
    for (const TVLProjectNode *child : parentNode->mChildren) {
        if (child->mTitle == title)
            return createIndex(child);
    }
    return {};
}

QModelIndex TVLProjectModel::findDirectIndexByTitle(const QString &title,
                                                    const QModelIndex &parent) const
{
    return findViaTitle(title, parent);
}

QModelIndex TVLProjectModel::nextIndex(const QModelIndex &index) const
{
    const TVLProjectNode *root = mRootNode.get();
    const TVLProjectNode *node = projectNode(index);
    if (!node || node == root)
        return {};
    const TVLProjectNode *next = node->nextInPreOrder(root);
    return createIndex(next ? next : root->mChildren.constFirst());
}

QModelIndex TVLProjectModel::previousIndex(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    if (!node || node == mRootNode.get())
        return {};
    const int row = node->row();
    if (row > 0)
        return createIndex(node->mParent->mChildren.at(row - 1)->lastInPreOrder());
    if (node->mParent != mRootNode.get())
        return createIndex(node->mParent);
    return createIndex(mRootNode->lastInPreOrder());
}

int TVLProjectModel::indexDepth(const QModelIndex &index) const
{
    return index.isValid() ? TVLProjectNode::childLevel(projectNode(index)) : 0;
}

QModelIndex TVLProjectModel::rootParentIndex(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    while (node && node->mParent && node->mParent != mRootNode.get())
        node = node->mParent;
    return createIndex(node);
}

TVL::NodeType TVLProjectModel::rootParentType(const QModelIndex &index) const
{
    return type(rootParentIndex(index));
}

// --- Ids and uuids

void TVLProjectModel::changeIndexUuid(const QModelIndex &index, const QUuid &uuid)
{
    TVLProjectNode *node = projectNode(index);
    if (!node || node == mRootNode.get())
        return;
    mUuidMap.remove(node->mUuid);
    if (mTemplateFolderUuid == node->mUuid)
        mTemplateFolderUuid = uuid;
    node->mUuid = uuid;
    mUuidMap.insert(uuid, node);
    if (node->mId >= 0)
        mIdMap.insert(node->mId, uuid);
}

void TVLProjectModel::clearIndexId(const QModelIndex &index)
{
    TVLProjectNode *node = projectNode(index);
    if (!node)
        return;
    // Without its id the item has no files that its words could still go to.
    if (!writeDocuments(node, nullptr)) {
        qWarning("An item keeps its id %d, because its texts can't be written", node->mId);
        return;
    }
    mIdMap.remove(node->mId);
    (void)mSearchIndex->removeDocument(node->mId);
    mForgottenIds.insert(node->mId);
    mFilesLeft->add(mPath, *node);
    node->mId = -1;
}

void TVLProjectModel::populateMissingIDs()
{
    tvlForEachNode(mRootNode.get(), [this](TVLProjectNode *node) {
        if (node->mId >= 0)
            return;
        takeId(node, findNextNodeId());
    });
}

/** Gives an item without id one, and with it files that what is in memory of its texts goes to. */
void TVLProjectModel::takeId(TVLProjectNode *node, int id)
{
    node->mId = id;
    mIdMap.insert(id, node->mUuid);
    addToSearchIndex(node);
    if (!node->mSynopsisDocument)
        return;
    enterLoadedNodes(node);
    for (TVLTextDocument *document :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument}) {
        if (document && !document->isEmpty())
            document->setSaved(false);
    }
}

void TVLProjectModel::populateMobileProjectMissingIDs(const TVLProjectModel *other)
{
    FreeIds freeIds(orderedChildIDs(nullptr) + other->orderedChildIDs(nullptr),
                    [this](int id) { return isLeftBehind(id); });
    tvlForEachNode(mRootNode.get(), [&](TVLProjectNode *node) {
        if (node->mId >= 0)
            return;
        takeId(node, freeIds.take());
    });
}

void TVLProjectModel::reloadCachedUuids(const QSet<QUuid> &uuids)
{
    const QList<TVLProjectNode *> nodes = loadedNodes();
    for (const TVLProjectNode *node : nodes) {
        if (uuids.contains(node->mUuid))
            leaveLoadedNodes(node);
    }
}

// --- Binder reading

void TVLProjectModel::beginBinderRead()
{
    beginResetModel();
    mWasSuspended = std::exchange(mSuspendModified, true);
    mIsReadingBinder = true;
    mIdMap.clear();
    mUuidMap.clear();
    mDocTextChanges.clear();
}

void TVLProjectModel::endBinderRead()
{
    mSuspendModified = mWasSuspended;
    mIsReadingBinder = false;
    endResetModel();
    markProjectAsModified(std::exchange(mIsModifiedByRead, false));
}

void TVLProjectModel::enterNodes(const QList<TVLProjectNode *> &nodes)
{
    tvlEnterNodes(nodes, &mIdMap, &mUuidMap);
}
