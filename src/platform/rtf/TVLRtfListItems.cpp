#include "TVLRtfListItems_p.h"

#include <private/qtextobject_p.h>

#include <algorithm>

namespace {

QTextBlockGroupPrivate::BlockList &blocksOf(QTextList *list)
{
    return static_cast<QTextBlockGroupPrivate *>(QObjectPrivate::get(list))->blocks;
}

} // namespace

void TVLRtfListItems::add(const QTextBlock &block)
{
    mItems.append(block);
    // The list must not find itself empty, which would be its end.
    if (mList)
        blocksOf(mList) = {block};
}

void TVLRtfListItems::finish()
{
    if (!mList)
        return;
    // A block that stood in for one to come may have left the list meanwhile.
    mItems.removeIf([this](const QTextBlock &block) {
        return block.blockFormat().objectIndex() != mList->objectIndex();
    });
    // Text of a covered cell has gone up to the cell that covers it.
    if (!std::is_sorted(mItems.cbegin(), mItems.cend()))
        std::sort(mItems.begin(), mItems.end());
    blocksOf(mList) = mItems;
}
