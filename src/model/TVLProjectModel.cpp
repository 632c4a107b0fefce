#include "TVLProjectModel_p.h"

#include "TVLCollectionList_p.h"
#include "TVLDoors.h"
#include "TVLFilesLeft_p.h"
#include "TVLItemCloner_p.h"
#include "TVLItemMerger_p.h"
#include "TVLItemRows_p.h"
#include "TVLKeywordModel.h"
#include "TVLLoadedDocuments_p.h"
#include "TVLOptions.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectFolderMonitor.h"
#include "TVLProjectNode.h"
#include "TVLProjectSettings.h"
#include "TVLSearchFeed_p.h"
#include "TVLSearchIndex.h"

#include <QFileInfo>
#include <QHostInfo>
#include <QPrinter>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

const QString TVLProjectModel::GeneralFormatMode = u"General"_s;
const QString TVLProjectModel::ScriptFormatMode = u"Script"_s;

QList<QPointer<TVLProjectModel>> TVLProjectModelPrivate::mExistingModels;

TVLProjectModelPrivate::TVLProjectModelPrivate(TVLProjectModel *model, const QString &path,
                                               bool isMobileProject)
    : q(model)
    , mName(QFileInfo(path).completeBaseName())
    , mPath(path)
    , mMobileProject(isMobileProject)
    , mRows(std::make_unique<TVLItemRows>(model))
    , mCollectionList(std::make_unique<TVLCollectionList>(model))
    , mFilesLeft(std::make_unique<TVLFilesLeft>())
{
}

TVLProjectModelPrivate::~TVLProjectModelPrivate() = default;

TVLProjectModel::TVLProjectModel(const QString &path, QObject *parent, bool mobileProject,
                                 TVL::FormatVersion version)
    : QAbstractItemModel(parent)
    , d(std::make_unique<TVLProjectModelPrivate>(this, path, mobileProject))
{
    TVLProjectModelPrivate::mExistingModels.removeAll(nullptr);
    TVLProjectModelPrivate::mExistingModels.append(this);
    if (version == TVL::NoFormatVersion)
        version = TVLProjectFolderFormat::projectFormatVersion(path);
    d->mFolderFormat = new TVLProjectFolderFormat(path, version, this);
    if (!mobileProject) {
        d->mFolderMonitor = new TVLProjectFolderMonitor(path, this);
        connect(d->mFolderMonitor, &TVLProjectFolderMonitor::externallyModified, this,
                &TVLProjectModel::externallyModified);
    }
    d->mChecksums = std::make_unique<TVLProjectChecksums>(d->mFolderFormat);
    d->mSearchIndex = std::make_unique<TVLSearchIndex>(this);
    d->mSearchFeed =
        std::make_unique<TVLSearchFeed>(this, d->mSearchIndex.get(), d->mChecksums.get());
    d->mDocuments =
        std::make_unique<TVLLoadedDocuments>(this, d->mFolderFormat, d->mSearchFeed.get());
    d->mCloner = std::make_unique<TVLItemCloner>(this, d->mRows.get(), d->mDocuments.get(),
                                                 d->mSearchFeed.get());
    d->mMerger = std::make_unique<TVLItemMerger>(this, d->mDocuments.get());
    d->mRootNode = std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, tvlNewUuid()), nullptr);
    d->mKeywordModel = new TVLKeywordModel(d->mSearchIndex.get(), this);
    loadOptions();
    connect(d->mKeywordModel, &TVLKeywordModel::keywordsAboutToBeRemoved, this,
            &TVLProjectModel::removeKeywordsFromDocuments);
    connect(d->mKeywordModel, &TVLKeywordModel::dataChanged, this,
            &TVLProjectModel::updateKeywordsForDocuments);
    connect(d->mKeywordModel, &TVLKeywordModel::modelChanged, this,
            [this] { markProjectAsModified(); });
    connect(tvlOptions(), &TVLOptions::groupsChanged, this, &TVLProjectModel::onOptionsChanged);
    if (QFileInfo::exists(dragAndDropPath()))
        QTimer::singleShot(0, this, [this] {
            if (!d->mIsOnlyRead)
                cleanDragAndDrop();
        });
    d->mSettings = d->newSettings();
    if (QFileInfo::exists(d->mSettings->fileName()))
        loadProjectSettings();
}

TVLProjectModel::~TVLProjectModel()
{
    delete d->mKeywordModel; // It holds on to the search index.
    d->mSearchIndex.reset();
    d->mRootNode.reset();
}

TVL::FormatVersion TVLProjectModel::formatVersion() const
{
    return d->mFolderFormat->formatVersion();
}

void TVLProjectModelPrivate::setFolderFormatVersion(TVL::FormatVersion version)
{
    mFolderFormat->setFormatVersion(version);
    mInfo.mBinderVersion = TVL::toBinderVersion(version);
}

void TVLProjectModel::setName(const QString &name)
{
    if (name == d->mName)
        return;
    d->mName = name;
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
    if (node == d->mRootNode.get())
        return rootIndex();
    if (!node || !node->mParent)
        return {};
    return QAbstractItemModel::createIndex(node->row(), 0, node);
}

TVLProjectNode *TVLProjectModel::projectNode(const QModelIndex &index) const
{
    if (!index.isValid())
        return d->mRootNode.get();
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
    if (!node || (d->mRows->isRootIndexPlain() && node->mParent == d->mRootNode.get()))
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
        return d->mRootNode.get();
    const auto uuid = d->mIdMap.constFind(id);
    return uuid == d->mIdMap.cend() ? nullptr : findNodeByUuid(*uuid);
}

TVLProjectNode *TVLProjectModel::findNodeByUuid(const QUuid &uuid) const
{
    if (uuid.isNull())
        return d->mRootNode.get();
    if (TVLProjectNode *node = d->mUuidMap.value(uuid))
        return node;
    // The map may lag behind a tree that is being built.
    for (TVLProjectNode *node = d->mRootNode->nextInPreOrder(d->mRootNode.get()); node;
         node = node->nextInPreOrder(d->mRootNode.get())) {
        if (node->mUuid == uuid)
            return node;
    }
    return d->mRootNode.get();
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
    return d->mIdMap.value(id);
}

int TVLProjectModel::findNodeIdByUuid(const QUuid &uuid) const
{
    if (const TVLProjectNode *node = d->mUuidMap.value(uuid))
        return node->mId;
    // 0 for an unknown uuid is what callers of old rely on, though it is an item's id as well.
    return d->mIdMap.key(uuid, 0);
}

QList<QUuid> TVLProjectModel::uuidsListBinderOrder() const
{
    QList<QUuid> uuids;
    tvlForEachNode(d->mRootNode.get(),
                   [&uuids](const TVLProjectNode *node) { uuids.append(node->mUuid); });
    return uuids;
}

QSet<QUuid> TVLProjectModel::uniqueUuids() const
{
    return QSet<QUuid>(d->mUuidMap.keyBegin(), d->mUuidMap.keyEnd());
}

int TVLProjectModel::totalNodesCount() const
{
    int count = 0;
    tvlForEachNode(d->mRootNode.get(), [&count](const TVLProjectNode *) { ++count; });
    return count;
}

QList<int> TVLProjectModel::orderedChildIDs(const TVLProjectNode *node) const
{
    QList<int> ids;
    tvlForEachNode(node ? node : d->mRootNode.get(),
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
    const TVLProjectNode *root = d->mRootNode.get();
    const TVLProjectNode *node = projectNode(index);
    if (!node || node == root)
        return {};
    const TVLProjectNode *next = node->nextInPreOrder(root);
    return createIndex(next ? next : root->mChildren.constFirst());
}

QModelIndex TVLProjectModel::previousIndex(const QModelIndex &index) const
{
    TVLProjectNode *node = projectNode(index);
    if (!node || node == d->mRootNode.get())
        return {};
    const int row = node->row();
    if (row > 0)
        return createIndex(node->mParent->mChildren.at(row - 1)->lastInPreOrder());
    if (node->mParent != d->mRootNode.get())
        return createIndex(node->mParent);
    return createIndex(d->mRootNode->lastInPreOrder());
}

int TVLProjectModel::indexDepth(const QModelIndex &index) const
{
    return index.isValid() ? TVLProjectNode::childLevel(projectNode(index)) : 0;
}

QModelIndex TVLProjectModel::rootParentIndex(const QModelIndex &index) const
{
    const TVLProjectNode *node = projectNode(index);
    while (node && node->mParent && node->mParent != d->mRootNode.get())
        node = node->mParent;
    return createIndex(node);
}

TVL::NodeType TVLProjectModel::rootParentType(const QModelIndex &index) const
{
    return type(rootParentIndex(index));
}
