#include "TVLKeywordModel.h"

#include "TVL.h"
#include "TVLDoors.h"
#include "TVLGuiUtil.h"
#include "TVLIcon.h"
#include "TVLModel.h"
#include "TVLNearestPosition_p.h"
#include "TVLSearchIndex.h"

#include <QMimeData>
#include <QScopedValueRollback>
#include <QStringList>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int NoId = -1;
constexpr int NoFreeId = -2;

/** Between titles in a drag; no title holds one, as it counts as a blank. */
constexpr QChar TitleSeparator = QChar::LineSeparator;

/**
 * The form in which titles are equal that differ only in case. Folds each character by itself, as
 * a comparison without regard to case does; QString::toCaseFolded() would find more titles equal.
 */
QString comparableTitle(const QString &title)
{
    QString folded;
    folded.reserve(title.size());
    for (qsizetype i = 0; i < title.size(); ++i) {
        const QChar ch = title.at(i);
        if (ch.isHighSurrogate() && i + 1 < title.size() && title.at(i + 1).isLowSurrogate()) {
            const char32_t character = QChar::surrogateToUcs4(ch, title.at(++i));
            folded.append(QStringView(QChar::fromUcs4(QChar::toCaseFolded(character))));
        } else {
            folded.append(ch.toCaseFolded());
        }
    }
    return folded;
}

QColor randomColor()
{
    const int blue = int(tvlRandom(256));
    const int green = int(tvlRandom(256));
    const int red = int(tvlRandom(256));
    return QColor(red, green, blue);
}

} // namespace

TVLKeywordModel::TVLKeywordModel(TVLSearchIndex *searchIndex, QObject *parent)
    : QAbstractItemModel(parent)
    , mSearchIndex(searchIndex)
{
}

TVLKeywordModel::~TVLKeywordModel() = default;

// --- The item model

const QStringList &TVLKeywordModel::headers()
{
    static const QStringList headers = {tr("Click to sort")};
    return headers;
}

QModelIndex TVLKeywordModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || row >= rowCount(parent) || column < 0 || column >= columnCount(parent))
        return {};
    const int id = childIds(idOf(parent)).at(row);
    findItem(id)->rowHint = row;
    return createIndex(row, column, quintptr(id));
}

QModelIndex TVLKeywordModel::parent(const QModelIndex &index) const
{
    const TVLKeywordItem *item = findItem(idOf(index));
    return item ? this->index(item->parentId) : QModelIndex();
}

int TVLKeywordModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(mRootItems.size());
    const TVLKeywordItem *item = findItem(idOf(parent));
    return item ? int(item->children.size()) : 0;
}

int TVLKeywordModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return int(headers().size());
}

QVariant TVLKeywordModel::data(const QModelIndex &index, int role) const
{
    const TVLKeywordItem *item = findItem(idOf(index));
    if (!item)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return item->title;
    case Qt::DecorationRole:
        return QVariant::fromValue<QIcon>(TVLIcon(item->color, TVLIcon::RoundedSquare));
    case ColorRole:
        return item->color;
    default:
        return {};
    }
}

bool TVLKeywordModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return value.canConvert<QString>() && setTitle(index, value.toString());
    case Qt::DecorationRole:
    case ColorRole:
        return value.canConvert<QColor>() && setColor(index, value.value<QColor>());
    default:
        return false;
    }
}

QVariant TVLKeywordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
    if (isText && orientation == Qt::Horizontal && section >= 0 && section < headers().size())
        return headers().at(section);
    return QAbstractItemModel::headerData(section, orientation, role);
}

Qt::ItemFlags TVLKeywordModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled
        | Qt::ItemIsEnabled;
}

// --- Finding keywords

int TVLKeywordModel::idOf(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this ? int(index.internalId()) : NoId;
}

const TVLKeywordModel::TVLKeywordItem *TVLKeywordModel::findItem(int id) const
{
    const auto item = mItems.constFind(id);
    return item == mItems.cend() ? nullptr : &*item;
}

TVLKeywordModel::TVLKeywordItem *TVLKeywordModel::findItem(int id)
{
    const auto item = mItems.find(id);
    return item == mItems.end() ? nullptr : &*item;
}

const QList<int> &TVLKeywordModel::childIds(int parentId) const
{
    const TVLKeywordItem *item = findItem(parentId);
    return item ? item->children : mRootItems;
}

QList<int> &TVLKeywordModel::childIds(int parentId)
{
    TVLKeywordItem *item = findItem(parentId);
    return item ? item->children : mRootItems;
}

int TVLKeywordModel::rowOf(const TVLKeywordItem &item) const
{
    const QList<int> &siblings = childIds(item.parentId);
    const int row = tvlNearestPosition(int(siblings.size()), item.rowHint, [&](int position) {
        return siblings.at(position) == item.id;
    });
    // Without one it is being removed.
    if (row >= 0)
        item.rowHint = row;
    return row;
}

QModelIndex TVLKeywordModel::index(int id) const
{
    const TVLKeywordItem *item = findItem(id);
    const int row = item ? rowOf(*item) : -1;
    return row < 0 ? QModelIndex() : createIndex(row, 0, quintptr(id));
}

QString TVLKeywordModel::title(const QModelIndex &index) const
{
    const TVLKeywordItem *item = findItem(idOf(index));
    return item ? item->title : QString();
}

QColor TVLKeywordModel::color(const QModelIndex &index) const
{
    const TVLKeywordItem *item = findItem(idOf(index));
    return item ? item->color : QColor();
}

QModelIndex TVLKeywordModel::findTitle(const QString &title) const
{
    const QString comparable = comparableTitle(title.simplified());
    const auto found = mTitles.lower_bound({comparable, std::numeric_limits<int>::min()});
    return found != mTitles.cend() && found->first == comparable ? index(found->second)
                                                                 : QModelIndex();
}

QSet<int> TVLKeywordModel::allChidren(int id) const
{
    QSet<int> found;
    if (!findItem(id))
        return found;
    QList<int> pending = {id};
    while (!pending.isEmpty()) {
        const int next = pending.takeLast();
        found.insert(next);
        pending.append(childIds(next));
    }
    return found;
}

QList<int> TVLKeywordModel::orderedIds() const
{
    QList<int> ids;
    ids.reserve(mItems.size());
    QList<int> pending(mRootItems.crbegin(), mRootItems.crend());
    while (!pending.isEmpty()) {
        const int id = pending.takeLast();
        ids.append(id);
        const QList<int> &children = childIds(id);
        std::copy(children.crbegin(), children.crend(), std::back_inserter(pending));
    }
    return ids;
}

QList<TVLBinderKeyword> TVLKeywordModel::binderKeywords() const
{
    QList<TVLBinderKeyword> keywords;
    const QList<int> ids = orderedIds();
    keywords.reserve(ids.size());
    for (const int id : ids) {
        const QModelIndex keyword = index(id);
        const QModelIndex parent = keyword.parent();
        keywords.append(
            {id, parent.isValid() ? int(parent.internalId()) : -1, title(keyword), color(keyword)});
    }
    return keywords;
}

int TVLKeywordModel::createId() const
{
    if (!mFreedIds.empty())
        return *mFreedIds.begin();
    while (mItems.contains(mNextId)) {
        if (mNextId == std::numeric_limits<int>::max())
            return NoFreeId;
        ++mNextId;
    }
    return mNextId;
}

bool TVLKeywordModel::isInside(int id, int ancestorId) const
{
    for (const TVLKeywordItem *item = findItem(id); item; item = findItem(item->parentId)) {
        if (item->id == ancestorId)
            return true;
    }
    return false;
}

// --- Changing keywords

void TVLKeywordModel::enterTitle(const TVLKeywordItem &item)
{
    mTitles.emplace(comparableTitle(item.title), item.id);
}

void TVLKeywordModel::forgetTitle(const TVLKeywordItem &item)
{
    mTitles.erase({comparableTitle(item.title), item.id});
}

void TVLKeywordModel::insertNew(int row, TVLKeywordItem item)
{
    const int id = item.id;
    item.rowHint = row;
    beginInsertRows(index(item.parentId), row, row);
    childIds(item.parentId).insert(row, id);
    enterTitle(item);
    mFreedIds.erase(id);
    mItems.insert(id, item);
    if (mSearchIndex)
        mSearchIndex->addKeyword(id, item.title);
    endInsertRows();
    Q_EMIT modelChanged();
}

bool TVLKeywordModel::insertItem(int row, const QModelIndex &parent, const QString &title)
{
    TVLKeywordItem item;
    item.title = title.simplified();
    item.parentId = idOf(parent);
    if (mIsRemoving || item.title.isEmpty() || findTitle(item.title).isValid())
        return false;
    if (parent.isValid() && !findItem(item.parentId))
        return false;
    item.id = createId();
    if (item.id == NoFreeId)
        return false;
    item.color = randomColor();
    insertNew(std::clamp(row, 0, rowCount(parent)), std::move(item));
    return true;
}

QModelIndex TVLKeywordModel::addChild(int id, int parentId)
{
    if (mIsRemoving || id < 0)
        return {};
    if (!findItem(parentId))
        parentId = NoId;
    if (findItem(id)) {
        renewItem(id, parentId);
    } else {
        TVLKeywordItem item;
        item.id = id;
        item.parentId = parentId;
        insertNew(int(childIds(parentId).size()), std::move(item));
    }
    return index(id);
}

void TVLKeywordModel::renewItem(int id, int parentId)
{
    if (!isInside(parentId, id))
        moveItem(id, parentId, int(childIds(parentId).size()));
    TVLKeywordItem *item = findItem(id);
    if (!item)
        return;
    item->color = QColor();
    changeTitle(item, QString());
}

bool TVLKeywordModel::setTitle(const QModelIndex &index, const QString &title)
{
    TVLKeywordItem *item = findItem(idOf(index));
    const QString simplified = title.simplified();
    if (!item || simplified.isEmpty())
        return false;
    changeTitle(item, simplified);
    return true;
}

void TVLKeywordModel::changeTitle(TVLKeywordItem *item, const QString &title)
{
    const int id = item->id;
    forgetTitle(*item);
    item->title = title;
    enterTitle(*item);
    if (mSearchIndex)
        mSearchIndex->updateKeyword(id, title);
    announceChange(id);
}

bool TVLKeywordModel::setColor(const QModelIndex &index, const QColor &color)
{
    TVLKeywordItem *item = findItem(idOf(index));
    if (!item)
        return false;
    item->color = color;
    announceChange(item->id);
    return true;
}

void TVLKeywordModel::announceChange(int id)
{
    const QModelIndex changed = index(id);
    if (changed.isValid())
        Q_EMIT dataChanged(changed, changed);
    Q_EMIT modelChanged();
}

bool TVLKeywordModel::removeItem(const QModelIndex &index)
{
    const int id = idOf(index);
    const TVLKeywordItem *item = findItem(id);
    if (mIsRemoving || !item)
        return false;
    const int parentId = item->parentId;
    const int row = rowOf(*item);
    beginRemoveRows(this->index(parentId), row, row);
    childIds(parentId).removeAt(row);
    const QSet<int> ids = allChidren(id);
    {
        // Views are between two states, and can't follow another change of rows.
        const QScopedValueRollback removing(mIsRemoving, true);
        Q_EMIT keywordsAboutToBeRemoved(ids);
    }
    for (const int removedId : ids)
        forgetItem(removedId);
    endRemoveRows();
    Q_EMIT modelChanged();
    return true;
}

void TVLKeywordModel::forgetItem(int id)
{
    forgetTitle(mItems.take(id));
    if (id > 0 && id < mNextId)
        mFreedIds.insert(id);
    if (mSearchIndex)
        mSearchIndex->removeKeyword(id);
}

void TVLKeywordModel::moveItem(int id, int parentId, int row)
{
    TVLKeywordItem *item = findItem(id);
    const int oldRow = rowOf(*item);
    const int newRow = parentId == item->parentId && row > oldRow ? row - 1 : row;
    if (!beginMoveRows(index(item->parentId), oldRow, oldRow, index(parentId), row))
        return; // It is there already.
    childIds(item->parentId).removeAt(oldRow);
    childIds(parentId).insert(newRow, id);
    item->parentId = parentId;
    item->rowHint = newRow;
    endMoveRows();
}

// --- Drag and drop

QStringList TVLKeywordModel::mimeTypes() const
{
    static const QStringList types = {u"text/plain"_s};
    return types;
}

Qt::DropActions TVLKeywordModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

Qt::DropActions TVLKeywordModel::supportedDragActions() const
{
    return supportedDropActions();
}

QMimeData *TVLKeywordModel::mimeData(const QModelIndexList &indexes) const
{
    QModelIndexList sorted;
    std::copy_if(indexes.cbegin(), indexes.cend(), std::back_inserter(sorted),
                 [this](const QModelIndex &index) { return findItem(idOf(index)); });
    std::stable_sort(sorted.begin(), sorted.end(), TVLModel::lessThanIndex);
    QStringList titles;
    titles.reserve(sorted.size());
    for (const QModelIndex &index : std::as_const(sorted))
        titles.append(title(index));
    const QString text = titles.join(TitleSeparator);
    auto *mime = new QMimeData;
    mime->setData(TVL::KeywordsMimeType, text.toUtf8());
    mime->setText(text);
    return mime;
}

bool TVLKeywordModel::dropMimeData(const QMimeData *mime, Qt::DropAction action, int row,
                                   int column, const QModelIndex &parent)
{
    Q_UNUSED(column)
    if (mIsRemoving || !mime || !mime->hasText() || (parent.isValid() && !findItem(idOf(parent))))
        return false;
    const QStringList titles = mime->text().split(TitleSeparator, Qt::SkipEmptyParts);
    const int dropRow = std::clamp(row, 0, rowCount(parent));
    if (action == Qt::CopyAction) {
        copyTitles(titles, dropRow, parent);
        return true;
    }
    return action == Qt::MoveAction && moveTitles(titles, dropRow, parent);
}

void TVLKeywordModel::copyTitles(const QStringList &titles, int row, const QModelIndex &parent)
{
    const int parentId = idOf(parent);
    for (const QString &title : titles) {
        if (!isParent(parentId))
            return;
        const bool isInserted = insertItem(row, index(parentId), title);
        ++row;
        if (isInserted && isParent(parentId))
            row = rowBehind(idOf(findTitle(title)), parentId, row);
    }
}

bool TVLKeywordModel::isParent(int id) const
{
    return id == NoId || findItem(id);
}

/** The row behind a keyword that lies in a parent; for any other one the row that is given, as far
 * as there are so many. */
int TVLKeywordModel::rowBehind(int id, int parentId, int otherwise) const
{
    const TVLKeywordItem *item = findItem(id);
    return item && item->parentId == parentId ? rowOf(*item) + 1
                                              : std::min(otherwise, int(childIds(parentId).size()));
}

bool TVLKeywordModel::moveTitles(const QStringList &titles, int row, const QModelIndex &parent)
{
    const int parentId = idOf(parent);
    QList<int> ids;
    for (const QString &title : titles) {
        const QModelIndex found = findTitle(title);
        if (!found.isValid()
            || !TVLGuiUtil::allowMove(found, found.parent(), parent, row, Qt::MoveAction))
            return false;
        ids.append(idOf(found));
    }
    // Identities, because each move may shift the rows of what the next one is about, and who hears
    // of it may remove keywords.
    for (const int id : std::as_const(ids)) {
        if (!isParent(parentId))
            break;
        if (!findItem(id))
            continue;
        moveItem(id, parentId, row);
        if (isParent(parentId))
            row = rowBehind(id, parentId, row);
    }
    Q_EMIT modelChanged();
    return true;
}
