#include "TVLProjectModel_p.h"

#include "TVLDoors.h"
#include "TVLModel.h"
#include "TVLProjectNode.h"
#include "TVLSearchIndex.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Indexes = QModelIndexList;

template <typename Key>
bool isLess(const Key &a, const Key &b)
{
    return a < b;
}

bool isLessLocaleAware(const QString &a, const QString &b)
{
    return QString::localeAwareCompare(a, b) < 0;
}

/** Sorts stably by what is asked of each index once. */
template <typename KeyOf, typename Less>
Indexes sortedByKey(const Indexes &indexes, Qt::SortOrder order, KeyOf keyOf, Less less)
{
    using Key = std::decay_t<decltype(keyOf(indexes.constFirst()))>;
    std::vector<std::pair<Key, QModelIndex>> keyed;
    keyed.reserve(std::size_t(indexes.size()));
    for (const QModelIndex &index : indexes)
        keyed.emplace_back(keyOf(index), index);
    std::stable_sort(keyed.begin(), keyed.end(), [&](const auto &a, const auto &b) {
        return order == Qt::AscendingOrder ? less(a.first, b.first) : less(b.first, a.first);
    });
    Indexes sorted;
    sorted.reserve(indexes.size());
    for (const auto &entry : keyed)
        sorted.append(entry.second);
    return sorted;
}

/** A value that the item's record has. */
template <typename Value>
Indexes sortedByMember(const Indexes &indexes, Qt::SortOrder order,
                       Value TVLProjectNodeProperties::*member)
{
    const auto valueOf = [member](const QModelIndex &index) {
        return static_cast<const TVLProjectNode *>(index.internalPointer())->*member;
    };
    return sortedByKey(indexes, order, valueOf, isLess<Value>);
}

template <typename Item>
QHash<int, QString> titlesById(const QList<Item> &items)
{
    QHash<int, QString> titles;
    for (const Item &item : items) {
        if (item.mId != -1)
            titles.insert(item.mId, item.mTitle);
    }
    return titles;
}

/** The title of the label or status item that the record names. */
Indexes sortedByTitle(const Indexes &indexes, Qt::SortOrder order,
                      const QHash<int, QString> &titles, int TVLProjectNodeProperties::*member)
{
    const auto titleOf = [&](const QModelIndex &index) {
        return titles.value(static_cast<const TVLProjectNode *>(index.internalPointer())->*member);
    };
    return sortedByKey(indexes, order, titleOf, isLess<QString>);
}

/** The items, their texts counted; those that have gone in a box about a text aren't among them. */
Indexes counted(const TVLProjectModel &model, const Indexes &indexes)
{
    const QList<QPersistentModelIndex> held(indexes.begin(), indexes.end());
    for (const QPersistentModelIndex &index : held) {
        if (index.isValid())
            (void)model.progress(index, false, false);
    }
    Indexes present(held.begin(), held.end());
    present.removeIf([](const QModelIndex &index) { return !index.isValid(); });
    return present;
}

/** The model of a valid index of a project; else null. */
const TVLProjectModel *modelOfItem(const QModelIndex &index)
{
    return index.isValid() ? qobject_cast<const TVLProjectModel *>(index.model()) : nullptr;
}

/** Where the synopsis is in memory; nowhere comes first. */
quintptr synopsisPlace(const QModelIndex &index)
{
    const auto *node = static_cast<const TVLProjectNode *>(index.internalPointer());
    return reinterpret_cast<quintptr>(node->mSynopsisDocument);
}

} // namespace

QModelIndexList TVLProjectModel::sort(const QModelIndexList &indexes, TVL::Columns column,
                                      Qt::SortOrder order)
{
    using Properties = TVLProjectNodeProperties;
    const auto first = std::find_if(indexes.begin(), indexes.end(),
                                    [](const QModelIndex &index) { return modelOfItem(index); });
    if (first == indexes.end())
        return {};
    const TVLProjectModel *model = modelOfItem(*first);
    const auto isForeign = [model](const QModelIndex &index) {
        return !index.isValid() || index.model() != model;
    };
    if (std::any_of(indexes.begin(), indexes.end(), isForeign)) {
        QModelIndexList own = indexes;
        own.removeIf(isForeign);
        return sort(own, column, order);
    }

    switch (column) {
    case TVL::TitleColumn:
        return sortedByKey(
            indexes, order, [model](const QModelIndex &index) { return model->title(index); },
            isLessLocaleAware);
    case TVL::SynopsisColumn:
        return sortedByKey(indexes, order, synopsisPlace, isLess<quintptr>);
    case TVL::LabelColumn:
        return sortedByTitle(indexes, order, titlesById(model->labels()), &Properties::mLabelId);
    case TVL::StatusColumn:
        return sortedByTitle(indexes, order, titlesById(model->statusItems()),
                             &Properties::mStatusId);
    case TVL::CreatedColumn:
        return sortedByMember(indexes, order, &Properties::mCreated);
    case TVL::ModifiedColumn:
        return sortedByMember(indexes, order, &Properties::mModified);
    // The four counts are what the caches hold under these names, not what the columns show.
    case TVL::WordCountColumn:
        return sortedByMember(indexes, order, &Properties::mSessionWordCount);
    case TVL::CharacterCountColumn:
        return sortedByMember(indexes, order, &Properties::mCharacterCount);
    case TVL::TotalWordCountColumn:
        return sortedByMember(indexes, order, &Properties::mWordCount);
    case TVL::TotalCharacterCountColumn:
        return sortedByMember(indexes, order, &Properties::mCharacterCount);
    case TVL::IncludeInCompileColumn:
        return sortedByMember(indexes, order, &Properties::mIncludeInCompile);
    case TVL::PageBreakBeforeColumn:
        return sortedByMember(indexes, order, &Properties::mPageBreakBefore);
    case TVL::PreserveFormattingColumn:
        return sortedByMember(indexes, order, &Properties::mCompileAsIs);
    case TVL::TargetColumn:
        return sortedByMember(indexes, order, &Properties::mTarget);
    case TVL::TargetTypeColumn:
        return sortedByMember(indexes, order, &Properties::mTargetType);
    case TVL::ProgressColumn:
        return sortedByKey(
            counted(*model, indexes), order,
            [model](const QModelIndex &index) { return model->progress(index, false, false); },
            isLess<double>);
    default:
        return sortIndexesStable(indexes);
    }
}

bool TVLProjectModel::lessThanIndex(const QModelIndex &a, const QModelIndex &b)
{
    return TVLModel::lessThanIndex(a, b);
}

QModelIndexList TVLProjectModel::sortIndexes(const QModelIndexList &indexes)
{
    QModelIndexList sorted = indexes;
    std::sort(sorted.begin(), sorted.end(), lessThanIndex);
    return sorted;
}

QModelIndexList TVLProjectModel::sortIndexesStable(const QModelIndexList &indexes)
{
    QModelIndexList sorted = indexes;
    std::stable_sort(sorted.begin(), sorted.end(), lessThanIndex);
    return sorted;
}

QModelIndexList TVLProjectModel::sortIndexesHash(const QModelIndexList &indexes) const
{
    QSet<const TVLProjectNode *> wanted;
    for (const QModelIndex &index : indexes) {
        if (index.isValid() && index.model() == this)
            wanted.insert(projectNode(index));
    }
    QModelIndexList sorted;
    sorted.reserve(wanted.size());
    tvlForEachNode(d->mRootNode.get(), [&](const TVLProjectNode *node) {
        if (wanted.contains(node))
            sorted.append(createIndex(node));
    });
    return sorted;
}

QModelIndexList TVLProjectModel::shuffle(const QModelIndexList &indexes)
{
    QModelIndexList shuffled = indexes;
    for (qsizetype i = 0; i + 1 < shuffled.size(); ++i) {
        const qsizetype other = i + tvlRandom(quint32(shuffled.size() - i));
        shuffled.swapItemsAt(i, other);
    }
    return shuffled;
}
