#include "TVLSearchIndex.h"

#include "TVLProjectNode.h"
#include "TVLSearchRows_p.h"
#include "TVLSearchSql_p.h"

#include <QHash>
#include <QSet>

using namespace TVLSearchSql;

/** The items of a project whose rows are made, with what the file of the texts says of them. */
class TVLSearchIndex::Filling
{
public:
    explicit Filling(const TVLSearchIndex *index)
        : mRows(*index, index->mHandle)
    {
    }

    /** False if the items can't be told apart by their ids. */
    [[nodiscard]] bool begin(const QList<const TVLProjectNode *> &nodes)
    {
        for (const TVLProjectNode *node : nodes) {
            if (!isSearchable(node) || node->mId < 0)
                continue;
            if (mItems.contains(node->mId))
                return false;
            mItems.insert(node->mId, {node, false});
        }
        return true;
    }

    void take(int id, const LoadedTexts &texts)
    {
        const auto item = mItems.find(id);
        if (item == mItems.end()) // The file still has texts of what was removed.
            return;
        if (item->isAdded)
            replace(*item, texts);
        else
            add(&*item, texts);
    }

    /** After what was taken turned out to be no more to be relied on, and was rolled back. */
    void forgetTaken()
    {
        mRows.clear();
        mDifferentIds.clear();
        for (Item &item : mItems)
            item.isAdded = false;
    }

    /** Adds those of which the file says nothing, in the order of the binder. */
    [[nodiscard]] bool finish(const QList<const TVLProjectNode *> &nodes)
    {
        static const LoadedTexts None = {{{TVL::TextProperty, {}, false},
                                          {TVL::NotesProperty, {}, false},
                                          {TVL::SynopsisProperty, {}, false},
                                          {TVL::CustomMetaDataProperty, {}, false},
                                          {TVL::CommentsProperty, {}, false}}};
        for (const TVLProjectNode *node : nodes) {
            const auto item = mItems.find(node->mId);
            if (item != mItems.end() && !item->isAdded)
                add(&*item, None);
        }
        return mRows.flush();
    }

    /** Whether the binder has other meta-data than the file. */
    [[nodiscard]] bool isDifferent() const { return !mDifferentIds.isEmpty(); }

private:
    struct Item
    {
        const TVLProjectNode *node;
        bool isAdded;
    };

    /** The binder is saved far more often than the texts, so what it says of meta-data counts. */
    [[nodiscard]] QString textOf(const TVLProjectNode *node, const LoadedText &loaded)
    {
        if (loaded.property != TVL::CustomMetaDataProperty)
            return loaded.text;
        const QString text = customMetaDataText(node);
        if (text == loaded.text)
            mDifferentIds.remove(node->mId);
        else
            mDifferentIds.insert(node->mId);
        return text;
    }

    void add(Item *item, const LoadedTexts &texts)
    {
        const TVLProjectNode *node = item->node;
        mRows.insertText(node->mId, TVL::TitleProperty, node->mTitle, true);
        for (const LoadedText &text : texts)
            mRows.insertText(node->mId, text.property, textOf(node, text), text.isConfirmed);
        mRows.insertInt(node->mId, TVL::LabelProperty, node->mLabelId);
        mRows.insertInt(node->mId, TVL::StatusProperty, node->mStatusId);
        for (const int keywordId : node->mKeywords)
            mRows.insertInt(node->mId, TVL::KeywordsProperty, keywordId);
        item->isAdded = true;
    }

    /** A file that names an item twice means the second. */
    void replace(const Item &item, const LoadedTexts &texts)
    {
        (void)mRows.flush(); // What fails now is told by finish().
        for (const LoadedText &text : texts)
            mRows.update(item.node->mId, text.property, textOf(item.node, text), text.isConfirmed);
    }

    TVLSearchRows mRows;
    QHash<int, Item> mItems;
    QSet<int> mDifferentIds;
};

bool TVLSearchIndex::fill(const QList<const TVLProjectNode *> &nodes, QString *error)
{
    const std::optional<bool> isRead = fillAtOnce(nodes, error);
    return isRead ? *isRead : fillOneByOne(nodes, error);
}

std::optional<bool> TVLSearchIndex::fillAtOnce(const QList<const TVLProjectNode *> &nodes,
                                               QString *error)
{
    Filling filling(this);
    Bundle bundle(this);
    if (!bundle.isOpen() || !filling.begin(nodes))
        return std::nullopt;
    const bool isRead =
        readFile([&](int id, const LoadedTexts &texts) { filling.take(id, texts); }, error);
    if (!isRead)
        filling.forgetTaken();
    if (!filling.finish(nodes) || !bundle.keep())
        return std::nullopt;
    mHasDocumentInts = true;
    mIsModified = filling.isDifferent();
    return isRead;
}

bool TVLSearchIndex::fillOneByOne(const QList<const TVLProjectNode *> &nodes, QString *error)
{
    // Only quicker: each row stands for itself.
    const bool isBundled = transaction();
    QHash<int, QString> metaData;
    for (const TVLProjectNode *node : nodes) {
        addProjectNode(node);
        if (!node->mCustomMetaData.isEmpty())
            metaData.insert(node->mId, customMetaDataText(node));
    }
    if (isBundled)
        commit();
    const bool isRead = load(error);
    setTexts(TVL::CustomMetaDataProperty, metaData);
    return isRead;
}
